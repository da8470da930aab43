#include "frm_design.h"

#include <cmath>

#include <QApplication>
#include <QButtonGroup>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QRadioButton>
#include <QToolBar>
#include <QVBoxLayout>

#include "app/units.h"
#include "design/generation_entry.h"
#include "design/panel_delete.h"
#include "design/panel_edit.h"
#include "design/panel_pick.h"
#include "draw/qt_surface.h"
#include "frm_generate.h"
#include "frm_graf.h"

namespace pvx {

namespace {

constexpr Plot_Colour Bar_Colour{160, 0, 0};
constexpr Plot_Colour Circuit_Colour{0, 150, 220};
constexpr Plot_Colour Prescribed_Colour{255, 128, 0};
constexpr Plot_Colour Support_Colour{160, 0, 160};
constexpr Plot_Colour Load_Colour{0, 128, 0};
constexpr Plot_Colour Current_Colour{0, 0, 255};
constexpr Plot_Colour Polygon_Colour{255, 0, 0};
constexpr Plot_Colour Rubber_Colour{100, 100, 100};
constexpr Plot_Colour Text_Colour{60, 60, 60};

// A frame of no extent cannot be scaled; the picture then shows the frame of a new start.
constexpr double Fallback_X2 = 2000, Fallback_Y2 = 1500;

Border_Layer Layer_Of(Design_Mode mode) {
  if (mode == Design_Mode::BorderT) return Border_Layer::Thermal;
  if (mode == Design_Mode::BorderH) return Border_Layer::Hygral;
  return Border_Layer::None;
}

QString Q(const char* text) {
  return QString::fromUtf8(text);
}

}  // namespace

frmDesign_Picture::frmDesign_Picture(frmDesign& form, QWidget* parent) : QWidget(parent), form_(form) {
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setMinimumSize(200, 150);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setCursor(Qt::CrossCursor);
}

void frmDesign_Picture::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  form_.Picture_Paint(painter, size());
}

void frmDesign_Picture::mousePressEvent(QMouseEvent* event) {
  setFocus();
  form_.Picture_Press(event->button(), event->position(), event->globalPosition().toPoint());
}

void frmDesign_Picture::mouseMoveEvent(QMouseEvent* event) {
  form_.Picture_Move(event->position());
}

void frmDesign_Picture::mouseReleaseEvent(QMouseEvent* event) {
  form_.Picture_Release(event->button(), event->position());
}

void frmDesign_Picture::resizeEvent(QResizeEvent*) {
  update();
}

frmDesign::frmDesign(Gui_Context& context, QWidget* parent) : Work_Form_Widget(parent), context_(context) {
  Reset_Panel(panel_, context_.project);
  Choose_Popup_Entry = [this](const QStringList& entries, QPoint global) {
    QMenu menu(this);
    for (const QString& e : entries)
      menu.addAction(e);
    QAction* chosen = menu.exec(global);
    return chosen ? static_cast<int>(menu.actions().indexOf(chosen)) : -1;
  };
  Choose_Extra = [this](const QStringList& entries) {
    bool ok = false;
    const QString item =
        QInputDialog::getItem(this, tr("Select"), tr("More than one object here:"), entries, 0, false, &ok);
    return ok ? static_cast<int>(entries.indexOf(item)) : -1;
  };
  Open_Editor = [this](Property_Editor editor, int index) {
    return Open_Property_Editor(editor, index, context_, this);
  };
  Beep = [] { QApplication::beep(); };
  Build_Controls();
  Forget_Stale_State();
}

frmDesign::~frmDesign() = default;

void frmDesign::Build_Controls() {
  setObjectName("frmDesign");
  setWindowTitle(Q(Design_Panel_Caption));
  auto* root = new QVBoxLayout(this);
  root->setContentsMargins(4, 4, 4, 4);

  auto* toolbar = new QToolBar(this);
  toolbar->setObjectName("Toolbar3");
  auto add = [&](const char* key, const char* text, auto slot) {
    QAction* a = toolbar->addAction(Q(text));
    a->setObjectName(key);
    connect(a, &QAction::triggered, this, slot);
    return a;
  };
  add("StorePic", "Save picture", [this] { Store_Picture_Command(); });
  add("Zoomin", "Magnify", [this] { Zoom_In_Command(); });
  add("Zoomout", "Original size", [this] { Zoom_Out_Command(); });
  add("Settings", "Settings", [this] { Show_Graf(); });
  toolbar->addSeparator();
  add("Undo", "Undo", [this] { Undo_Edit(); })->setToolTip(tr("Undo the last design edit (Ctrl+Z)"));
  add("Redo", "Redo", [this] { Redo_Edit(); })->setToolTip(tr("Redo (Ctrl+Y)"));
  add("Delete_Free_Nodes", "Delete free nodes", [this] { Delete_Free_Nodes_Command(); });
  add("Stop_Macros", "Stop macros", [this] {
    Stop_Macros(context_.project, panel_);
    End_Edit();
  })->setToolTip(tr("Cancel the macro being drawn (Esc)"));
  root->addWidget(toolbar);

  auto* generation = new QToolBar(this);
  generation->setObjectName("Generation");
  auto mode_button = [&](const char* text, Design_Mode mode) {
    QAction* a = generation->addAction(Q(text));
    connect(a, &QAction::triggered, this, [this, mode] { Set_Mode(mode); });
  };
  mode_button("Generation of macros", Design_Mode::Macros);
  QAction* circles = generation->addAction(Q("Generation of circular polygons"));
  circles->setObjectName("Generate_Circle");
  circles->setToolTip(tr("A ring or a full disc of macros round a centre"));
  connect(circles, &QAction::triggered, this, [this] { Show_Circle_Dialog(); });
  QAction* holes = generation->addAction(Q("Generation of holes"));
  holes->setObjectName("Generate_Hole");
  holes->setToolTip(tr("A round hole in a macro (right click on a macro: \"Hole in this macro\")"));
  connect(holes, &QAction::triggered, this, [this] { Show_Hole_Dialog(context_.project.Current_Macro); });
  mode_button("Generation of interfaces", Design_Mode::Interfaces);
  mode_button("Generation of cooling circuits", Design_Mode::Cooling);
  mode_button("Generation of reinforcement bars", Design_Mode::Reinforcement);
  mode_button("Move nodes with mouse pointer", Design_Mode::Nodes);
  root->addWidget(generation);

  caption_label_ = new QLabel(this);
  caption_label_->setObjectName("Caption");
  QFont bold = caption_label_->font();
  bold.setBold(true);
  caption_label_->setFont(bold);
  root->addWidget(caption_label_);

  auto* middle = new QHBoxLayout;
  auto* buttons = new QVBoxLayout;
  modes_ = new QButtonGroup(this);
  for (int i = 0; i < Design_Mode_Count; ++i) {
    const Design_Mode mode = Mode_Of_Button(i);
    auto* b = new QRadioButton(Q(Mode_Button_Caption(mode)), this);
    b->setObjectName(QString("Option1_%1").arg(i));
    modes_->addButton(b, i);
    buttons->addWidget(b);
    if (mode == Design_Mode::Free)  // the out-of-plane settings are set in this mode
      connect(b, &QRadioButton::clicked, this,
              [this] { Edit_Properties(Property_Editor::frmOutofPlane, 0); });
  }
  buttons->addStretch();
  connect(modes_, &QButtonGroup::idClicked, this, [this](int id) { Set_Mode(Mode_Of_Button(id)); });
  middle->addLayout(buttons);
  picture_ = new frmDesign_Picture(*this, this);
  picture_->setObjectName("Picture1");
  middle->addWidget(picture_, 1);
  root->addLayout(middle, 1);

  position_label_ = new QLabel(this);
  position_label_->setObjectName("Position");
  root->addWidget(position_label_);
  hint_label_ = new QLabel(this);
  hint_label_->setObjectName("Hint");
  hint_label_->setStyleSheet("color: rgb(160,0,0)");
  hint_label_->setWordWrap(true);
  root->addWidget(hint_label_);

  modes_->button(static_cast<int>(panel_.Mode))->setChecked(true);
  Update_Caption();
}

void frmDesign::Update_Caption() {
  caption_label_->setText(Q(Mode_Panel_Caption(panel_.Mode)));
}

void frmDesign::Form_Shown() {
  Forget_Stale_State();
  Redraw();
}

void frmDesign::Project_Replaced() {
  const Design_Mode mode = panel_.Mode;
  Reset_Panel(panel_, context_.project);
  panel_.Mode = mode;
  Clear_Undo(undo_);
  drag_ = Drag::None;
  state_.Zoomed = state_.ZoomPending = false;
  seen_nodes_ = -1;
  Forget_Stale_State();
  if (graf_) graf_->Refresh();
  picture_->update();
}

void frmDesign::Redraw() {
  picture_->update();
}

void frmDesign::Set_Mode(Design_Mode mode) {
  if (!panel_.Polygon_Nodes.empty()) {  // a half-drawn macro or circuit does not carry over
    Stop_Macros(context_.project, panel_);
    End_Edit();
  }
  panel_.Mode = mode;
  drag_ = Drag::None;
  if (QAbstractButton* b = modes_->button(static_cast<int>(mode)); b && !b->isChecked()) b->setChecked(true);
  Update_Caption();
  context_.host.Set_Work_Caption(Mode_Panel_Caption(mode));
  picture_->update();
}

QWidget* frmDesign::Picture_Widget() const {
  return picture_;
}

const Picture_State& frmDesign::Picture() {
  Update_Scale();
  return state_;
}

QString frmDesign::Pointer_Text() const {
  return position_label_->text();
}

void frmDesign::Update_Scale() {
  const Project& p = context_.project;
  const double dpi = picture_->logicalDpiX() > 0 ? picture_->logicalDpiX() : 96;
  const double twips = 1440.0 / dpi;
  const bool frame_ok = p.Grid_X_Max > p.Grid_X_Min && p.Grid_Y_Max > p.Grid_Y_Min;
  Picture_State scaled = state_;
  if (!frame_ok && !scaled.Zoomed) {
    scaled.Zoomed = true;
    scaled.ZoomX1 = 0;
    scaled.ZoomY1 = 0;
    scaled.ZoomX2 = Fallback_X2;
    scaled.ZoomY2 = Fallback_Y2;
  }
  Compute_Scale(scaled, p, picture_->width() * twips, picture_->height() * twips, twips);
  state_.ScaleX = scaled.ScaleX;
  state_.ScaleY = scaled.ScaleY;
  state_.OriginX = scaled.OriginX;
  state_.OriginY = scaled.OriginY;
  state_.PictureHeight = scaled.PictureHeight;
  state_.Show_Points = display_.Points;
  state_.Show_Macros = display_.Macros;
  state_.Show_Borders = display_.Borders;
  state_.Show_Circuits = display_.Circuits;
  state_.Show_Frame = display_.Frame;
  state_.Show_Axes = display_.Axes;
  panel_.Screen_Scale = state_.ScaleX;
}

void frmDesign::Picture_Paint(QPainter& painter, QSize size) {
  Update_Scale();
  Qt_Surface surface(painter, size, picture_->logicalDpiX() > 0 ? picture_->logicalDpiX() : 96);
  Draw_Picture(surface);
}

void frmDesign::Draw_Picture(Plot_Surface& surface) {
  Plot_Design(surface, state_, context_.project, Layer_Of(panel_.Mode), false);
  Draw_Objects(surface);
}

void frmDesign::Draw_Objects(Plot_Surface& s) {
  const Project& p = context_.project;
  auto X = [&](double x) { return static_cast<double>(World_To_X(state_, x)); };
  auto Y = [&](double y) { return static_cast<double>(World_To_Y(state_, y)); };
  auto line = [&](double x1, double y1, double x2, double y2, Plot_Colour c, Line_Style style, int width) {
    s.Line(X(x1), Y(y1), X(x2), Y(y2), c, style, width);
  };
  auto node_line = [&](int a, int b, Plot_Colour c, Line_Style style, int width) {
    if (p.Node_X.valid(a) && p.Node_X.valid(b))
      line(p.Node_X[a], p.Node_Y[a], p.Node_X[b], p.Node_Y[b], c, style, width);
  };
  auto box = [&](double x, double y, double half, Plot_Colour c) {
    s.Box(X(x) - half, Y(y) - half, X(x) + half, Y(y) + half, c);
  };
  auto arrow = [&](double x, double y, double angle_degrees, Plot_Colour c) {
    const double a = angle_degrees / 57.29577951, length = 25;  // pixels, pointing at the point
    const double x0 = X(x) - length * std::cos(a), y0 = Y(y) + length * std::sin(a);
    s.Line(x0, y0, X(x), Y(y), c, Line_Style::Solid, 2);
    for (double side : {0.5, -0.5})
      s.Line(X(x), Y(y), X(x) - 8 * std::cos(a + side), Y(y) + 8 * std::sin(a + side), c, Line_Style::Solid,
             2);
  };

  if (panel_.Mode == Design_Mode::Macros && p.Macro.valid(p.Current_Macro)) {
    const Macro& m = p.Macro[p.Current_Macro];
    for (int j = 1; j <= 4; ++j)
      node_line(m.Corner[j], m.Corner[j % 4 + 1], Current_Colour, Line_Style::Solid, 2);
  }
  for (int k = 1; k <= p.Rebar.count(); ++k) {
    const Rebar& r = p.Rebar[k];
    line(r.X1, r.Y1, r.X2, r.Y2, Bar_Colour, Line_Style::Solid, k == p.Current_Rebar ? 3 : 2);
  }
  if (display_.Circuits)
    for (const Circuit& c : p.Circuit) {
      for (int k = 1; k < c.Pipe_Node.count(); ++k)
        node_line(c.Pipe_Node[k], c.Pipe_Node[k + 1], Circuit_Colour, Line_Style::Dashed, 1);
      for (std::int16_t n : c.Pipe_Node)
        if (p.Node_X.valid(n)) s.Circle(X(p.Node_X[n]), Y(p.Node_Y[n]), 5, Circuit_Colour);
    }
  for (const Point_T& t : p.Point_T)
    box(t.X, t.Y, 3, Prescribed_Colour);
  for (const Line_T& l : p.Line_T)
    node_line(l.Node_A, l.Node_B, Prescribed_Colour, Line_Style::Solid, 3);
  for (const Area_T& a : p.Area_T) {
    line(a.X1, a.Y1, a.X2, a.Y1, Prescribed_Colour, Line_Style::Dashed, 1);
    line(a.X2, a.Y1, a.X2, a.Y2, Prescribed_Colour, Line_Style::Dashed, 1);
    line(a.X2, a.Y2, a.X1, a.Y2, Prescribed_Colour, Line_Style::Dashed, 1);
    line(a.X1, a.Y2, a.X1, a.Y1, Prescribed_Colour, Line_Style::Dashed, 1);
  }
  for (const Support& sp : p.Point_Support) {
    box(sp.X, sp.Y, 4, Support_Colour);
    arrow(sp.X, sp.Y, sp.Angle, Support_Colour);
  }
  for (const Support& sp : p.Line_Support)
    node_line(sp.Node_A, sp.Node_B, Support_Colour, Line_Style::Dashed, 3);
  for (const Load& l : p.Point_Load)
    arrow(l.X, l.Y, l.Angle, Load_Colour);
  for (const Load& l : p.Line_Load)
    node_line(l.Node_A, l.Node_B, Load_Colour, Line_Style::Solid, 2);

  if (display_.Coordinates)
    for (int n = 1; n <= Node_Count(p); ++n) {
      const std::string text = Position_Label(p, p.Node_X[n]) + "; " + Position_Label(p, p.Node_Y[n]);
      s.Text(X(p.Node_X[n]) + 4, Y(p.Node_Y[n]) + 2, text, 7, Text_Colour);
    }

  // The macro or circuit being drawn, with the rubber band from its last corner to the pointer.
  for (int k = 1; k < Polygon_Node_Count(panel_); ++k)
    node_line(panel_.Polygon_Nodes[k], panel_.Polygon_Nodes[k + 1], Polygon_Colour, Line_Style::Solid, 2);
  if (!panel_.Polygon_Nodes.empty() && pointer_in_picture_) {
    const int last = panel_.Polygon_Nodes.last();
    if (p.Node_X.valid(last))
      line(p.Node_X[last], p.Node_Y[last], panel_.Snap_X, panel_.Snap_Y, Rubber_Colour, Line_Style::Dashed,
           1);
  }
  // A node being dragged pulls the sides of its macros along.
  if (drag_ == Drag::Node)
    for (std::int32_t n : panel_.Node_Connections)
      node_line(p.Current_Node, n, Polygon_Colour, Line_Style::Dashed, 1);
  if (drag_ == Drag::Bar)
    line(drag_x_, drag_y_, panel_.Snap_X, panel_.Snap_Y, Bar_Colour, Line_Style::Dashed, 2);
  if (drag_ == Drag::Area || drag_ == Drag::Zoom) {
    const double x2 = drag_ == Drag::Zoom ? raw_x_ : panel_.Snap_X;
    const double y2 = drag_ == Drag::Zoom ? raw_y_ : panel_.Snap_Y;
    line(drag_x_, drag_y_, x2, drag_y_, Rubber_Colour, Line_Style::Dashed, 1);
    line(x2, drag_y_, x2, y2, Rubber_Colour, Line_Style::Dashed, 1);
    line(x2, y2, drag_x_, y2, Rubber_Colour, Line_Style::Dashed, 1);
    line(drag_x_, y2, drag_x_, drag_y_, Rubber_Colour, Line_Style::Dashed, 1);
  }
}

void frmDesign::Track_Pointer(QPointF pixel) {
  Update_Scale();
  pointer_in_picture_ = true;
  raw_x_ = Picture_To_World_X(state_, pixel.x());
  raw_y_ = Picture_To_World_Y(state_, pixel.y());
  Snap_Position(context_.project, panel_, raw_x_, raw_y_);
  position_label_->setText(QString("X: %1   Y: %2   %3")
                               .arg(QString::fromStdString(Position_Label(context_.project, panel_.Snap_X)),
                                    QString::fromStdString(Position_Label(context_.project, panel_.Snap_Y)),
                                    Q(Unit_Name(Unit_Length_mm, context_.project.Metric_Units != 0))));
}

void frmDesign::Forget_Stale_State() {
  const Project& p = context_.project;
  const bool changed = seen_nodes_ >= 0 && (p.Project_File != seen_file_ || Node_Count(p) != seen_nodes_ ||
                                            p.Macro.count() != seen_macros_);
  if (changed) {
    Clear_Undo(undo_);
    panel_.Polygon_Nodes.clear();
    panel_.Polygon_Added = 0;
    panel_.Node_Connections.clear();
    drag_ = Drag::None;
  }
  seen_file_ = p.Project_File;
  seen_nodes_ = Node_Count(p);
  seen_macros_ = p.Macro.count();
}

bool frmDesign::Begin_Edit() {
  bool ok = true;
  Destroy_Output(context_.shell, context_.host, ok);
  if (!ok) return false;
  Push_Undo(undo_, context_.project);
  return true;
}

void frmDesign::End_Edit() {
  seen_nodes_ = -1;  // the Project is as this form left it
  Forget_Stale_State();
  context_.state_changed();
  picture_->update();
}

void frmDesign::Edit_Properties(Property_Editor editor, int index) {
  Design_Snapshot before = Take_Snapshot(context_.project);
  if (Open_Editor && Open_Editor(editor, index)) {
    Push_Undo(undo_, std::move(before));
    End_Edit();
  }
}

int frmDesign::Select_Extra(const char* what) {
  const int count = panel_.Selection_List.count();
  if (count <= 1) return count == 1 ? panel_.Selection_List[1] : 0;
  QStringList entries;
  for (std::int16_t k : panel_.Selection_List)
    entries << QString("%1 %2").arg(Q(what)).arg(k);
  const int chosen = Choose_Extra ? Choose_Extra(entries) : -1;
  return chosen >= 0 && chosen < count ? panel_.Selection_List[chosen + 1] : 0;
}

void frmDesign::Choose_Current_Object() {
  if (panel_.Selection_List.count() < 2) return;  // the one hit is current already
  const int k = Select_Extra(Mode_Word(panel_.Mode));
  if (k == 0) return;
  switch (panel_.Mode) {
    case Design_Mode::Point_T:
      panel_.Current_Point_T = k;
      break;
    case Design_Mode::Area_T:
      panel_.Current_Area_T = k;
      break;
    case Design_Mode::Support_P:
      panel_.Current_Point_Support = k;
      break;
    case Design_Mode::Load_P:
      panel_.Current_Point_Load = k;
      break;
    default:
      break;
  }
}

void frmDesign::Picture_Press(Qt::MouseButton button, QPointF pixel, QPoint global) {
  Forget_Stale_State();
  Track_Pointer(pixel);
  if (button == Qt::LeftButton && state_.ZoomPending) {
    drag_ = Drag::Zoom;
    drag_x_ = Picture_To_World_X(state_, pixel.x());
    drag_y_ = Picture_To_World_Y(state_, pixel.y());
  } else if (button == Qt::LeftButton) {
    Left_Press();
  } else if (button == Qt::RightButton) {
    Popup(global);
  }
  picture_->update();
}

void frmDesign::Left_Press() {
  Project& p = context_.project;
  auto edit = [&](auto&& change) {
    if (!Begin_Edit()) return;
    if (change()) {
      End_Edit();
    } else {
      undo_.Undo_Stack.pop_back();  // nothing changed: no step to take back
    }
  };
  switch (panel_.Mode) {
    case Design_Mode::Nodes:
      Closest_Node(p, panel_);
      if (Node_Selected(p, panel_)) {
        p.Current_Node = panel_.Closest_Node_Number;
        Determine_Node_Connections(p, panel_);
        drag_ = Drag::Node;
        drag_edit_begun_ = false;
        node_start_x_ = p.Node_X[p.Current_Node];
        node_start_y_ = p.Node_Y[p.Current_Node];
      } else {
        edit([&] { return Add_Node(p, panel_) > 0; });
      }
      break;
    case Design_Mode::Macros:
      if (panel_.Polygon_Nodes.empty()) {
        Closest_Node(p, panel_);
        if (!Node_Selected(p, panel_) && Macro_At(p, Pointer_X(panel_), Pointer_Y(panel_)) != 0) {
          Refuse_Corner();
          break;
        }
        if (!Begin_Edit()) break;  // one undo step for the whole macro
      }
      if (Macro_Mouse_Down(p, panel_) == Macro_Click::Inside_Macro)
        Refuse_Corner();
      else
        hint_label_->clear();
      End_Edit();
      break;
    case Design_Mode::Cooling:
      if (panel_.Polygon_Nodes.empty()) {
        if (Circuit_Select(p, panel_)) break;
        if (!Begin_Edit()) break;
      }
      Cooling_Mouse_Down(p, panel_);
      End_Edit();
      break;
    case Design_Mode::BorderT:
    case Design_Mode::BorderH: {
      Macro_Side side;
      if (Border_SelectedN(p, panel_) || !Find_Macro_Side(p, panel_, side)) break;
      edit([&] { return Border_Selected(p, panel_); });
      break;
    }
    case Design_Mode::Interfaces: {
      Macro_Side side;
      if (Interface_SelectedN(p, panel_) || !Find_Macro_Side(p, panel_, side)) break;
      edit([&] { return Interface_Selected(p, panel_); });
      break;
    }
    case Design_Mode::Line_T:
    case Design_Mode::Support_L:
    case Design_Mode::Load_L: {
      Macro_Side side;
      if (panel_.Mode == Design_Mode::Line_T && Prescribed_Border_Selected_E(p, panel_)) break;
      if (!Find_Macro_Side(p, panel_, side)) break;
      edit([&] { return Prescribed_Border_Selected(p, panel_); });
      break;
    }
    case Design_Mode::Point_T:
    case Design_Mode::Support_P:
    case Design_Mode::Load_P:
      if (Prescribed_Node_Selected_E(p, panel_)) {
        Choose_Current_Object();
        break;
      }
      edit([&] { return Add_Point_Object(p, panel_) > 0; });
      break;
    case Design_Mode::Area_T:
      if (Prescribed_Area_Selected_E(p, panel_)) {
        Choose_Current_Object();
        break;
      }
      drag_ = Drag::Area;
      drag_x_ = panel_.Snap_X;
      drag_y_ = panel_.Snap_Y;
      break;
    case Design_Mode::Reinforcement:
      if (Macro_Bar_Selected(p, panel_)) break;
      drag_ = Drag::Bar;
      drag_x_ = panel_.Snap_X;
      drag_y_ = panel_.Snap_Y;
      break;
    case Design_Mode::Free:
      break;
  }
}

void frmDesign::Picture_Move(QPointF pixel) {
  Track_Pointer(pixel);
  if (drag_ == Drag::Node) {
    Project& p = context_.project;
    if (!drag_edit_begun_) {
      if (!Begin_Edit()) {
        drag_ = Drag::None;
        return;
      }
      drag_edit_begun_ = true;
    }
    Move_Node(p, p.Current_Node, panel_.Snap_X, panel_.Snap_Y);
  }
  picture_->update();
}

void frmDesign::Picture_Release(Qt::MouseButton button, QPointF pixel) {
  if (button != Qt::LeftButton || drag_ == Drag::None) return;
  Track_Pointer(pixel);
  Project& p = context_.project;
  const Drag drag = drag_;
  drag_ = Drag::None;
  switch (drag) {
    case Drag::Node:
      if (drag_edit_begun_) {
        int other = 0;
        if (Test_On_Double_Nodes(p, p.Current_Node, other) && !Double_Nodes(p, p.Current_Node, other))
          Move_Node(p, p.Current_Node, node_start_x_, node_start_y_);  // it would close a macro up
        End_Edit();
      }
      panel_.Node_Connections.clear();
      break;
    case Drag::Bar:
      if ((panel_.Snap_X != drag_x_ || panel_.Snap_Y != drag_y_) && Begin_Edit()) {
        Add_Bar(p, drag_x_, drag_y_, panel_.Snap_X, panel_.Snap_Y);
        End_Edit();
      }
      break;
    case Drag::Area:
      if (panel_.Snap_X != drag_x_ && panel_.Snap_Y != drag_y_ && Begin_Edit()) {
        Add_Area(p, panel_, drag_x_, drag_y_, panel_.Snap_X, panel_.Snap_Y);
        End_Edit();
      }
      break;
    case Drag::Zoom: {
      double x1 = drag_x_, y1 = drag_y_;
      double x2 = Picture_To_World_X(state_, pixel.x()), y2 = Picture_To_World_Y(state_, pixel.y());
      if (std::fabs(x2 - x1) * state_.ScaleX < 5 || std::fabs(y2 - y1) * state_.ScaleY < 5) {
        // A click: twice as large about the point.
        const double half_x = picture_->width() / state_.ScaleX / 4;
        const double half_y = picture_->height() / state_.ScaleY / 4;
        x1 = x2 - half_x;
        x2 = x2 + half_x;
        y1 = y2 - half_y;
        y2 = y2 + half_y;
      }
      state_.Zoomed = true;
      state_.ZoomPending = false;
      state_.ZoomX1 = std::fmin(x1, x2);
      state_.ZoomX2 = std::fmax(x1, x2);
      state_.ZoomY1 = std::fmin(y1, y2);
      state_.ZoomY2 = std::fmax(y1, y2);
      break;
    }
    case Drag::None:
      break;
  }
  picture_->update();
}

void frmDesign::Popup(QPoint global) {
  Project& p = context_.project;
  QStringList entries;
  std::vector<std::function<void()>> actions;
  auto entry = [&](const char* text, std::function<void()> action) {
    entries << Q(text);
    actions.push_back(std::move(action));
  };
  auto deletion = [&](const char* text, std::function<void()> change) {
    entry(text, [this, change] {
      if (!Begin_Edit()) return;
      change();
      End_Edit();
    });
  };
  auto editor = [&](const char* text, Property_Editor e, int index) {
    entry(text, [this, e, index] { Edit_Properties(e, index); });
  };
  switch (panel_.Mode) {
    case Design_Mode::Nodes:
      Closest_Node(p, panel_);
      if (Node_Selected(p, panel_)) {
        const int n = panel_.Closest_Node_Number;
        p.Current_Node = n;
        editor("Node properties", Property_Editor::frmNode, n);
        if (Node_Is_Not_Connected(p, n))
          deletion("Delete node", [this, n] { Delete_Node(context_.project, n); });
      }
      break;
    case Design_Mode::Macros:
      if (!panel_.Polygon_Nodes.empty())
        entry("Stop macros", [this] {
          Stop_Macros(context_.project, panel_);
          End_Edit();
        });
      if (Macro_Selected(p, panel_)) {
        const int m = p.Current_Macro;
        editor("General Macro Properties", Property_Editor::frmMacroProp, m);
        const int corner = Closest_NodeN(p, Pointer_X(panel_), Pointer_Y(panel_));
        editor("Nodes", Property_Editor::frmNode, corner);
        editor("Reinforcement bars", Property_Editor::frmReinforce, p.Current_Rebar);
        entry("Hole in this macro", [this, m] { Show_Hole_Dialog(m); });
        deletion("Delete macro", [this, m] { Delete_Macro(context_.project, panel_, m); });
      }
      break;
    case Design_Mode::Interfaces:
      if (Interface_SelectedN(p, panel_)) {
        const int k = panel_.Current_Interface;
        editor("Interface properties", Property_Editor::frmInterface, k);
        deletion("Delete interface", [this, k] { Delete_Interface(context_.project, panel_, k); });
      }
      break;
    case Design_Mode::Reinforcement:
      if (Macro_Bar_Selected(p, panel_)) {
        const int k = p.Current_Rebar;
        editor("Bar properties", Property_Editor::frmReinforce, k);
        deletion("Delete bar", [this, k] { Delete_Rebar(context_.project, k); });
      }
      break;
    case Design_Mode::BorderT:
    case Design_Mode::BorderH:
      if (Border_SelectedN(p, panel_)) {
        const int k = p.Current_Border;
        if (panel_.Mode == Design_Mode::BorderT) {
          editor("Convection and radiation", Property_Editor::frmBorT, k);
          editor("Convection", Property_Editor::frmConvection, k);
        } else {
          editor("Transfer/ pressure", Property_Editor::frmBorH, k);
        }
        deletion("Delete border", [this, k] { Delete_Border(context_.project, k); });
      }
      break;
    case Design_Mode::Point_T:
    case Design_Mode::Support_P:
    case Design_Mode::Load_P:
    case Design_Mode::Line_T:
    case Design_Mode::Support_L:
    case Design_Mode::Load_L:
    case Design_Mode::Area_T: {
      const Design_Mode mode = panel_.Mode;
      const bool point =
          mode == Design_Mode::Point_T || mode == Design_Mode::Support_P || mode == Design_Mode::Load_P;
      const bool found = point                         ? Prescribed_Node_Selected_E(p, panel_)
                         : mode == Design_Mode::Area_T ? Prescribed_Area_Selected_E(p, panel_)
                                                       : Prescribed_Border_Selected_E(p, panel_);
      if (!found) break;
      const int k = Select_Extra(Mode_Word(mode));
      if (k == 0) break;
      const Property_Editor e = mode == Design_Mode::Point_T     ? Property_Editor::frmPointT
                                : mode == Design_Mode::Line_T    ? Property_Editor::frmLineT
                                : mode == Design_Mode::Area_T    ? Property_Editor::frmAreaT
                                : mode == Design_Mode::Support_P ? Property_Editor::frmSupportP
                                : mode == Design_Mode::Support_L ? Property_Editor::frmSupportL
                                : mode == Design_Mode::Load_P    ? Property_Editor::frmLoadP
                                                                 : Property_Editor::frmLoadL;
      editor("Properties", e, k);
      deletion("Delete", [this, mode, k] { Delete_Mode_Object(context_.project, panel_, mode, k); });
      break;
    }
    case Design_Mode::Cooling:
      if (Circuit_Select(p, panel_)) {
        const int k = p.Current_Circuit;
        editor("Circuit properties", Property_Editor::frmCircuit, k);
        deletion("Delete circuit", [this, k] { Delete_Circuit(context_.project, k); });
      }
      break;
    case Design_Mode::Free:
      editor("Out of plane", Property_Editor::frmOutofPlane, 0);
      break;
  }
  entry("Delete free nodes", [this] { Delete_Free_Nodes_Command(); });
  const int chosen = Choose_Popup_Entry ? Choose_Popup_Entry(entries, global) : -1;
  if (chosen >= 0 && chosen < static_cast<int>(actions.size())) actions[static_cast<std::size_t>(chosen)]();
}

bool frmDesign::Undo_Edit() {
  Forget_Stale_State();
  if (undo_.Undo_Stack.empty()) return false;
  bool ok = true;
  Destroy_Output(context_.shell, context_.host, ok);
  if (!ok || !Undo(undo_, context_.project, panel_)) return false;
  drag_ = Drag::None;
  End_Edit();
  return true;
}

bool frmDesign::Redo_Edit() {
  Forget_Stale_State();
  if (undo_.Redo_Stack.empty()) return false;
  bool ok = true;
  Destroy_Output(context_.shell, context_.host, ok);
  if (!ok || !Redo(undo_, context_.project, panel_)) return false;
  End_Edit();
  return true;
}

void frmDesign::Delete_Free_Nodes_Command() {
  Forget_Stale_State();
  Project& p = context_.project;
  bool any = false;
  for (int n = 1; n <= Node_Count(p) && !any; ++n)
    any = Node_Is_Not_Connected(p, n);
  if (!any || !Begin_Edit()) return;
  Delete_Free_Nodes(p);
  End_Edit();
}

void frmDesign::Store_Picture_Command() {
  std::string path;
  if (!context_.host.Choose_Save_File("Save picture", "JPEG (*.jpg)|*.jpg|Bitmap (*.bmp)|*.bmp|", path))
    return;
  const QString lower = QString::fromStdString(path).toLower();
  if (!lower.endsWith(".jpg") && !lower.endsWith(".jpeg") && !lower.endsWith(".bmp")) path += ".jpg";
  Update_Scale();
  const QImage image = Draw_To_Image(picture_->size(), [this](Plot_Surface& s) { Draw_Picture(s); });
  std::string message;
  if (!Store_Picture(image, path, message)) context_.host.Show_Message(message);
}

void frmDesign::Zoom_In_Command() {
  state_.ZoomPending = true;
}

void frmDesign::Zoom_Out_Command() {
  state_.Zoomed = false;
  state_.ZoomPending = false;
  picture_->update();
}

frmGraf& frmDesign::Show_Graf() {
  if (!graf_)
    graf_ = new frmGraf(
        context_, display_, [this] { picture_->update(); }, this);
  graf_->Refresh();
  graf_->show();
  graf_->raise();
  return *graf_;
}

void frmDesign::keyPressEvent(QKeyEvent* event) {
  const bool control = event->modifiers() & Qt::ControlModifier;
  const bool shift = event->modifiers() & Qt::ShiftModifier;
  if (control && event->key() == Qt::Key_Z && !shift) {
    Undo_Edit();
  } else if (control && (event->key() == Qt::Key_Y || (event->key() == Qt::Key_Z && shift))) {
    Redo_Edit();
  } else if (event->key() == Qt::Key_Escape && !panel_.Polygon_Nodes.empty()) {
    Stop_Macros(context_.project, panel_);
    End_Edit();
  } else {
    Work_Form_Widget::keyPressEvent(event);
  }
}

void frmDesign::Refuse_Corner() {
  Beep();
  // A silent refusal leaves the user guessing; the usual case is a wall drawn onto a slab's side.
  Tell(Corner_Refused_Hint, true);
}

void frmDesign::Tell(const QString& text, bool refusal) {
  hint_label_->setStyleSheet(refusal ? "color: rgb(160,0,0)" : "color: rgb(0,100,0)");
  hint_label_->setText(text);
}

QString frmDesign::Hint_Text() const {
  return hint_label_->text();
}

frmGenerate& frmDesign::Show_Circle_Dialog() {
  Forget_Stale_State();
  if (!circle_dialog_) {
    circle_dialog_ = new frmGenerate(context_, frmGenerate::Kind::Circle, this);
    circle_dialog_->On_Circle = [this](const Circle_Request& c) { return Generate_Circle_Command(c); };
    last_circle_ = Default_Circle_Request(context_.project);
  }
  circle_dialog_->Show_Circle(last_circle_);
  circle_dialog_->show();
  circle_dialog_->raise();
  return *circle_dialog_;
}

frmGenerate& frmDesign::Show_Hole_Dialog(int macro) {
  Forget_Stale_State();
  if (!hole_dialog_) {
    hole_dialog_ = new frmGenerate(context_, frmGenerate::Kind::Hole, this);
    hole_dialog_->On_Hole = [this](const Hole_Request& h) { return Generate_Hole_Command(h); };
  }
  hole_dialog_->Show_Hole(Default_Hole_Request(context_.project, macro));
  hole_dialog_->show();
  hole_dialog_->raise();
  return *hole_dialog_;
}

std::string frmDesign::Generate(const std::function<Generation_Result(Project&, Design_Undo&)>& generate) {
  Forget_Stale_State();
  // Tried on a copy first: a refused request must not cost the user the results.
  Project work = context_.project;
  Design_Undo scratch;
  const Generation_Result r = generate(work, scratch);
  if (!r.Done) return r.Message;
  bool ok = true;
  Destroy_Output(context_.shell, context_.host, ok);
  if (!ok) return {};
  const bool had_mesh = context_.project.Mesh_Element.count() > 0;
  Push_Undo(undo_, context_.project);
  context_.project = std::move(work);
  Tell(QString::fromStdString(Generation_Summary(r, had_mesh)), false);
  End_Edit();
  return {};
}

std::string frmDesign::Generate_Circle_Command(const Circle_Request& c) {
  std::string refusal = Generate([&c](Project& p, Design_Undo& u) { return Generate_Circle(p, u, c); });
  if (refusal.empty()) last_circle_ = c;
  return refusal;
}

std::string frmDesign::Generate_Hole_Command(const Hole_Request& h) {
  return Generate([&h](Project& p, Design_Undo& u) { return Generate_Hole(p, u, h); });
}

}  // namespace pvx
