#include "frm_gen_mesh.h"

#include <algorithm>
#include <cmath>

#include <QAction>
#include <QHBoxLayout>
#include <QImage>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QToolBar>
#include <QVBoxLayout>

#include "draw/qt_surface.h"
#include "mesh/macro_joints.h"
#include "mesh/mesh_panel.h"
#include "mesh/pick.h"
#include "mesh/pipe_holes.h"
#include "mesh/split_history.h"

namespace pvx {

void Plot_Mesh_Panel(Plot_Surface& surface, const Picture_State& state, const Project& project,
                     bool circuits_integrated, int element, int side) {
  Plot_Design(surface, state, project, Border_Layer::None, true);
  for (const Mesh_Node& n : project.Mesh_Node)
    surface.Circle(World_To_X(state, n.X), World_To_Y(state, n.Y), 2, Mesh_Node_Colour);

  // Until the pipes are holes, their places are shown as circles of the pipe's size, so the user
  // can cut the mesh to put a node where four elements meet at each of them.
  if (!circuits_integrated) {
    constexpr int segments = 24;
    const double pi = std::acos(-1.0);
    for (const Circuit& c : project.Circuit) {
      const double radius = std::max(c.Diameter / 2 * state.ScaleX, 3.0);
      for (int k = 1; k <= c.Pipe_Node.count(); ++k) {
        const int node = c.Pipe_Node[k];
        if (node < 1 || node > project.Node_X.count()) continue;
        const double cx = World_To_X(state, project.Node_X[node]),
                     cy = World_To_Y(state, project.Node_Y[node]);
        for (int i = 0; i < segments; ++i) {
          const double a1 = 2 * pi * i / segments, a2 = 2 * pi * (i + 1) / segments;
          surface.Line(cx + radius * std::cos(a1), cy + radius * std::sin(a1), cx + radius * std::cos(a2),
                       cy + radius * std::sin(a2), Pipe_Colour, Line_Style::Solid, 1);
        }
      }
    }
  }

  if (project.Mesh_Element.valid(element) && side >= 1 && side <= 4) {
    const Mesh_Element& e = project.Mesh_Element[element];
    const int a = e.Corner[side], b = e.Corner[side % 4 + 1];
    if (project.Mesh_Node.valid(a) && project.Mesh_Node.valid(b)) {
      const Mesh_Node& na = project.Mesh_Node[a];
      const Mesh_Node& nb = project.Mesh_Node[b];
      surface.Line(World_To_X(state, na.X), World_To_Y(state, na.Y), World_To_X(state, nb.X),
                   World_To_Y(state, nb.Y), Picked_Side_Colour, Line_Style::Solid, 3);
    }
  }
}

// The picture area: paints through the drawing bridge and passes the pointer to the panel. A press
// and release on (nearly) the same pixel is a click that cuts; a drag is a zoom rectangle.
class Mesh_Picture : public QWidget {
 public:
  explicit Mesh_Picture(frmGenMesh& form, QWidget* parent) : QWidget(parent), form_(form) {
    setObjectName("Picture1");
    setMouseTracking(true);
    setMinimumSize(300, 250);
    setAutoFillBackground(true);
    QPalette palette = this->palette();
    palette.setColor(QPalette::Window, Qt::white);
    setPalette(palette);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    form_.Update_Scale();
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    Qt_Surface surface(painter, size(), logicalDpiX());
    form_.Draw(surface);
    if (dragging_ && Dragged(current_)) {
      painter.setPen(QPen(Qt::black, 1, Qt::DotLine));
      painter.setBrush(Qt::NoBrush);
      painter.drawRect(QRectF(press_, current_).normalized());
    }
  }
  void mousePressEvent(QMouseEvent* event) override {
    if (event->button() != Qt::LeftButton) return;
    press_ = current_ = event->position();
    dragging_ = true;
  }
  void mouseMoveEvent(QMouseEvent* event) override {
    current_ = event->position();
    if (dragging_)
      update();
    else
      form_.Hover_At(current_.x(), current_.y());
  }
  void mouseReleaseEvent(QMouseEvent* event) override {
    if (event->button() != Qt::LeftButton || !dragging_) return;
    dragging_ = false;
    const QPointF release = event->position();
    if (Dragged(release))
      form_.Zoom_To(press_.x(), press_.y(), release.x(), release.y());
    else
      form_.Click_At(release.x(), release.y());
  }

 private:
  bool Dragged(QPointF to) const {
    return std::fabs(to.x() - press_.x()) > 4 || std::fabs(to.y() - press_.y()) > 4;
  }
  frmGenMesh& form_;
  QPointF press_, current_;
  bool dragging_ = false;
};

frmGenMesh::frmGenMesh(Gui_Context& context, QWidget* parent) : Work_Form_Widget(parent), context_(context) {
  setObjectName("frmGenMesh");
  setWindowTitle("FE mesh generation");
  picture_.Show_Grid = false;    // grid points would hide the mesh nodes
  picture_.Show_Points = false;  // the mesh nodes are drawn instead of the design nodes
  // The frame and the axes are guides for drawing the design; over a mesh their lines would read as
  // element sides.
  picture_.Show_Frame = false;
  picture_.Show_Axes = false;

  auto* layout = new QVBoxLayout(this);
  toolbar_ = new QToolBar(this);
  toolbar_->setToolButtonStyle(Qt::ToolButtonTextOnly);
  for (const char* key : {"Zoomout", "Clean", "Backward", "Forward", "All", "Reset", "Integrate", "Store"}) {
    QAction* action = toolbar_->addAction(key == std::string("Store") ? Store_Picture_Title : key);
    action->setObjectName(key);
    const std::string k = key;
    connect(action, &QAction::triggered, this, [this, k] { Toolbar_Click(k); });
    tools_[k] = action;
  }
  tools_["Zoomout"]->setToolTip("Show the whole mesh");
  tools_["Clean"]->setToolTip("Start again from the macros, forgetting the splitting history");
  tools_["Backward"]->setToolTip("One cut back");
  tools_["Forward"]->setToolTip("One cut forward");
  tools_["All"]->setToolTip("All cuts of the history");
  tools_["Reset"]->setToolTip("The mesh of the macros, keeping the history");
  tools_["Integrate"]->setToolTip("Make the cooling pipes into holes in the mesh");
  layout->addWidget(toolbar_);

  auto* body = new QHBoxLayout;
  picture_widget_ = new Mesh_Picture(*this, this);
  body->addWidget(picture_widget_, 1);
  elem_ =
      new frmelem(context_.project, session_.Parameters, context_.host, context_.shell.Decimal_Comma, this);
  elem_->On_Element_Type = [this](bool constant_shear) {
    if (!May_Change()) return false;
    context_.project.Constant_Shear = As_Flag(constant_shear);
    context_.project.Project_Saved = False_Flag;
    context_.state_changed();
    return true;
  };
  body->addWidget(elem_, 0);
  layout->addLayout(body, 1);
  Set_Toolbar();
}

void frmGenMesh::Form_Shown() {
  std::string message;
  const bool had_mesh = context_.project.Mesh_Element.count() > 0;
  if (!Open_Mesh_Session(context_.project, session_, message)) context_.host.Show_Message(message);
  hover_element_ = hover_side_ = 0;
  Home_View();
  elem_->Set_Femlabels();
  elem_->Update_Splitting_Display();
  Set_Toolbar();
  picture_widget_->update();
  // A mesh made here from the macros is a change of the Project.
  if (!had_mesh && context_.project.Mesh_Element.count() > 0) {
    context_.project.Project_Saved = False_Flag;
    context_.state_changed();
  }
  // Macros that touch without sharing corners give meshes that are not joined: say so before
  // the user cuts and computes.
  if (const std::string joints = Unjoined_Nodes_Message(Find_Unjoined_Nodes(context_.project));
      !joints.empty())
    context_.host.Show_Message(joints);
}

void frmGenMesh::Redraw() {
  picture_widget_->update();
}

void frmGenMesh::Home_View() {
  const Project& p = context_.project;
  double x1 = p.Grid_X_Min, x2 = p.Grid_X_Max, y1 = p.Grid_Y_Min, y2 = p.Grid_Y_Max;
  bool widened = !(x2 > x1) || !(y2 > y1);
  if (widened && p.Mesh_Node.count() > 0) {
    x1 = x2 = p.Mesh_Node[1].X;
    y1 = y2 = p.Mesh_Node[1].Y;
  }
  for (const Mesh_Node& n : p.Mesh_Node) {
    if (n.X < x1 || n.X > x2 || n.Y < y1 || n.Y > y2) widened = true;
    x1 = std::min(x1, n.X);
    x2 = std::max(x2, n.X);
    y1 = std::min(y1, n.Y);
    y2 = std::max(y2, n.Y);
  }
  if (!(x2 > x1)) x2 = x1 + 1;
  if (!(y2 > y1)) y2 = y1 + 1;
  if (widened) {  // a little room round a mesh that fills the view, so its outline is not on the edge
    const double pad = 0.02 * std::max(x2 - x1, y2 - y1);
    x1 -= pad;
    x2 += pad;
    y1 -= pad;
    y2 += pad;
  }
  home_zoomed_ = widened;
  home_[0] = x1;
  home_[1] = y1;
  home_[2] = x2;
  home_[3] = y2;
  picture_.Zoomed = home_zoomed_;
  picture_.ZoomX1 = x1;
  picture_.ZoomY1 = y1;
  picture_.ZoomX2 = x2;
  picture_.ZoomY2 = y2;
}

void frmGenMesh::Update_Scale() {
  const double twips_per_pixel = 1440.0 / std::max(1, picture_widget_->logicalDpiX());
  Compute_Scale(picture_, context_.project, picture_widget_->width() * twips_per_pixel,
                picture_widget_->height() * twips_per_pixel, twips_per_pixel);
}

const Picture_State& frmGenMesh::Picture() const {
  const_cast<frmGenMesh*>(this)->Update_Scale();
  return picture_;
}

QWidget* frmGenMesh::Picture_Widget() const {
  return picture_widget_;
}

QAction* frmGenMesh::Tool(const std::string& key) const {
  const auto it = tools_.find(key);
  return it == tools_.end() ? nullptr : it->second;
}

void frmGenMesh::Draw(Plot_Surface& surface) {
  Plot_Mesh_Panel(surface, picture_, context_.project, session_.Circuits_Integrated, hover_element_,
                  hover_side_);
}

void frmGenMesh::Set_Toolbar() {
  const Toolbar_State t = pvx::Set_Toolbar(context_.project, session_);
  tools_["Backward"]->setEnabled(t.Backward);
  tools_["Forward"]->setEnabled(t.Forward);
  tools_["Reset"]->setEnabled(t.Reset);
  tools_["All"]->setEnabled(t.Forward || (t.Reset && session_.Circuits_Integrated));
  tools_["Integrate"]->setVisible(t.Integrate_Visible);
}

bool frmGenMesh::May_Change() {
  bool ok = true;
  Destroy_Output(context_.shell, context_.host, ok);
  return ok;
}

void frmGenMesh::Mesh_Changed() {
  Project& p = context_.project;
  p.Mesh_Valid = As_Flag(p.Mesh_Element.count() > 0);
  p.Project_Saved = False_Flag;
  hover_element_ = hover_side_ = 0;
  elem_->Set_Femlabels();
  elem_->Update_Splitting_Display();
  Set_Toolbar();
  picture_widget_->update();
  context_.state_changed();
}

void frmGenMesh::Toolbar_Click(const std::string& key) {
  QAction* action = Tool(key);
  if (!action || !action->isEnabled() || (key == "Integrate" && !action->isVisible())) return;
  if (key == "Zoomout") {
    Home_View();
    picture_widget_->update();
    return;
  }
  if (key == "Store") {
    Store_Picture_Dialog();
    return;
  }
  bool (*step)(Project&, Mesh_Session&, std::string&) = nullptr;
  if (key == "Clean") step = History_Clean;
  if (key == "Backward") step = History_Backward;
  if (key == "Forward") step = History_Forward;
  if (key == "All") step = History_All;
  if (key == "Reset") step = History_Reset;
  if (key == "Integrate") step = Integrate_Circuits;
  if (!step || !May_Change()) return;
  std::string message;
  // A replay that stops part-way still leaves a sound mesh of the cuts it made; show that one.
  if (!step(context_.project, session_, message) && !message.empty()) context_.host.Show_Message(message);
  Mesh_Changed();
}

void frmGenMesh::Click_At(double px, double py) {
  Project& p = context_.project;
  Update_Scale();
  const double x = Picture_To_World_X(picture_, px), y = Picture_To_World_Y(picture_, py);
  int element = 0, side = 0;
  if (!Pick_Element_Side(p, x, y, picture_.ScaleX, element, side)) return;
  if (session_.Circuits_Integrated) {
    context_.host.Show_Message(Circuits_Integrated_Message);
    return;
  }
  if (!May_Change()) return;
  Splitting_Parameters& s = session_.Parameters;
  s.PickedElement = element;
  s.PickedSide = side;
  s.Pointer_X = x;
  s.Pointer_Y = y;
  std::string message;
  if (!Split_Execution(p, session_, message)) {
    context_.host.Show_Message(message);
    return;
  }
  Mesh_Changed();
  Hover_At(px, py);
}

void frmGenMesh::Hover_At(double px, double py) {
  Update_Scale();
  const double x = Picture_To_World_X(picture_, px), y = Picture_To_World_Y(picture_, py);
  int element = 0, side = 0;
  Pick_Element_Side(context_.project, x, y, picture_.ScaleX, element, side);
  if (element == hover_element_ && side == hover_side_) return;
  hover_element_ = element;
  hover_side_ = side;
  picture_widget_->update();
}

void frmGenMesh::Zoom_To(double px1, double py1, double px2, double py2) {
  Update_Scale();
  double x1 = Picture_To_World_X(picture_, px1), x2 = Picture_To_World_X(picture_, px2);
  double y1 = Picture_To_World_Y(picture_, py1), y2 = Picture_To_World_Y(picture_, py2);
  if (x1 > x2) std::swap(x1, x2);
  if (y1 > y2) std::swap(y1, y2);
  if (!(x2 > x1) && !(y2 > y1)) return;
  picture_.Zoomed = true;
  picture_.ZoomX1 = x1;
  picture_.ZoomX2 = x2;
  picture_.ZoomY1 = y1;
  picture_.ZoomY2 = y2;
  picture_widget_->update();
}

void frmGenMesh::Store_Picture_Dialog() {
  std::string path = context_.project.Project_File;
  const std::size_t dot = path.find_last_of('.');
  const std::size_t slash = path.find_last_of("/\\");
  if (dot != std::string::npos && (slash == std::string::npos || dot > slash)) path.erase(dot);
  if (!path.empty()) path += "-mesh.jpg";
  if (!context_.host.Choose_Save_File(Store_Picture_Title, Picture_Filter, path) || path.empty()) return;
  Update_Scale();
  const QImage image = Draw_To_Image(picture_widget_->size(), [this](Plot_Surface& s) { Draw(s); });
  std::string message;
  if (!Store_Picture(image, path, message)) context_.host.Show_Message(message);
}

}  // namespace pvx
