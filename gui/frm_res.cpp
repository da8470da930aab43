#include "frm_res.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QCoreApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QTabWidget>
#include <QToolBar>
#include <QVBoxLayout>
#include <tuple>

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "analysis/mechanics/assembly.h"
#include "draw/qt_surface.h"
#include "frm_cool.h"
#include "frm_diag.h"
#include "frm_his.h"
#include "frm_line_cut.h"
#include "results/cooling_view.h"
#include "results/viewer_geometry.h"
#include "results/viewer_pages.h"

namespace pvx {

namespace {

QString Q(const std::string& text) {
  return QString::fromStdString(text);
}

}  // namespace

// Messages and questions go to the shell's host, so that a test can script them; the movie reads
// the toolbar's button and lets the event loop run between its frames.
class Form_Viewer_Host : public Viewer_Host {
 public:
  explicit Form_Viewer_Host(frmRes& form) : form_(form) {}
  void Show_Message(const std::string& text) override { form_.context_.host.Show_Message(text); }
  bool Ask_Yes_No(const std::string& question) override {
    return form_.context_.host.Ask(question, Question_Buttons::Yes_No) == Answer::Yes;
  }
  bool Movie_Button_Down() override {
    QAction* movie = form_.Tool("Movie");
    return movie != nullptr && movie->isChecked();
  }
  void Show_Picture() override {
    ++form_.movie_frames_;
    form_.Show_State();
    form_.Picture_Widget()->repaint();
  }
  void Yield() override {
    QCoreApplication::processEvents();
    if (form_.Movie_Frame_Observer) form_.Movie_Frame_Observer(form_.movie_frames_);
  }

 private:
  frmRes& form_;
};

// The picture area: paints through the drawing bridge and passes the pointer to the form. A press
// and release on (nearly) the same pixel is a click; a drag is a rectangle (zoom or cut line).
class Result_Picture : public QWidget {
 public:
  explicit Result_Picture(frmRes& form, QWidget* parent) : QWidget(parent), form_(form) {
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
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    if (!form_.open_) return;
    form_.Update_Scale();
    Qt_Surface surface(painter, size(), logicalDpiX());
    form_.Draw(surface);
    if (dragging_ && Dragged(current_)) {
      painter.setPen(QPen(Qt::black, 1, Qt::DotLine));
      painter.setBrush(Qt::NoBrush);
      if (form_.state_.LineCutPending) {
        // Inverted, so the line shows on every colour of the contours.
        painter.setPen(QPen(Qt::black, 1, Qt::DashLine));
        painter.setCompositionMode(QPainter::RasterOp_NotDestination);
        painter.drawLine(press_, current_);
      } else
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
    if (dragging_ && form_.state_.LineCutPending) Follow_Pointer();
    if (dragging_)
      update();
    else
      form_.Hover_At(current_.x(), current_.y());
  }
  void mouseReleaseEvent(QMouseEvent* event) override {
    if (event->button() != Qt::LeftButton || !dragging_) return;
    dragging_ = false;
    const QPointF release = event->position();
    current_ = release;
    if (form_.state_.LineCutPending) Follow_Pointer();
    if (Dragged(release))
      form_.Drag_To(press_.x(), press_.y(), release.x(), release.y());
    else
      form_.Click_At(release.x(), release.y());
    update();
  }

 private:
  // While a cut line is drawn its start follows the pointer as "Choice of cut direction" says.
  void Follow_Pointer() {
    double x = press_.x(), y = press_.y();
    Adjust_Cut_Start(form_.cut_direction_, current_.x(), current_.y(), x, y);
    press_ = QPointF(x, y);
  }
  bool Dragged(QPointF to) const {
    return std::fabs(to.x() - press_.x()) > 4 || std::fabs(to.y() - press_.y()) > 4;
  }
  frmRes& form_;
  QPointF press_, current_;
  bool dragging_ = false;
};

frmResA::frmResA(frmRes& form, QWidget* parent) : QWidget(parent) {
  setObjectName("frmResA");
  setWindowTitle(Result_Panel_Caption);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  // The toolbar spans the whole form (the frmRes lays it out above both windows) so that all
  // thirteen keys stay in sight.
  Toolbar = new QToolBar(parent);
  for (const char* key : Viewer_Toolbar_Keys) {
    QAction* action = Toolbar->addAction(key);
    action->setObjectName(key);
    const std::string k = key;
    action->setCheckable(k == "Movie" || k == "Linecut" || k == "History1");
    Tools[k] = action;
  }
  // History points and supports may also come from a file, as the tool tips describe.
  for (const auto& [key, text, tip] :
       {std::tuple{"ImportPoints", "Import points", Import_Points_Tip},
        std::tuple{"ImportSupports", "Import supports", Import_Supports_Tip}}) {
    QAction* action = Toolbar->addAction(text);
    action->setObjectName(key);
    action->setToolTip(tip);
    Tools[key] = action;
  }

  auto* lists = new QHBoxLayout;
  List_Times = new QListWidget(this);
  List_Times->setObjectName("List_Times");
  List_Times->setMaximumHeight(120);
  List_Times->hide();
  List_Runs = new QListWidget(this);
  List_Runs->setObjectName("List_Runs");
  List_Runs->setMaximumHeight(120);
  List_Runs->hide();
  Apply_Run = new QPushButton("Apply", this);
  Apply_Run->hide();
  lists->addWidget(List_Times);
  lists->addWidget(List_Runs);
  lists->addWidget(Apply_Run, 0, Qt::AlignTop);
  lists->addStretch(1);
  layout->addLayout(lists);

  auto* labels = new QHBoxLayout;
  Label_Title = new QLabel(this);
  Label_Stored = new QLabel(this);
  labels->addWidget(Label_Title, 1);
  labels->addWidget(Label_Stored);
  layout->addLayout(labels);

  Picture1 = new Result_Picture(form, this);
  layout->addWidget(Picture1, 1);

  auto* pointer = new QHBoxLayout;
  Label_X = new QLabel(this);
  Label_Y = new QLabel(this);
  lblScal = new QLabel(this);
  lblScal->setObjectName("lblScal");
  Label_X->setMinimumWidth(110);
  Label_Y->setMinimumWidth(110);
  pointer->addWidget(Label_X);
  pointer->addWidget(Label_Y);
  pointer->addWidget(lblScal, 1);
  layout->addLayout(pointer);
}

frmresB::frmresB(frmRes&, QWidget* parent) : QWidget(parent) {
  setObjectName("frmresB");
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  SSTab1 = new QTabWidget(this);
  SSTab1->setObjectName("SSTab1");
  layout->addWidget(SSTab1);
}

frmRes::frmRes(Gui_Context& context, QWidget* parent) : Work_Form_Widget(parent), context_(context) {
  setObjectName("frmRes");
  setWindowTitle(Result_Panel_Caption);
  host_ = new Form_Viewer_Host(*this);
  Computing = [] {
    for (QWidget* w : QApplication::allWidgets())
      if (auto* diag = dynamic_cast<frmDiag*>(w); diag && diag->Running()) return true;
    return false;
  };
  auto* outer = new QVBoxLayout(this);
  auto* layout = new QHBoxLayout;
  A = new frmResA(*this, this);
  B = new frmresB(*this, this);
  B->setMinimumWidth(340);
  outer->addWidget(A->Toolbar);
  outer->addLayout(layout, 1);
  layout->addWidget(A, 3);
  layout->addWidget(B, 1);

  for (const auto& [key, action] : A->Tools) {
    const std::string k = key;
    connect(action, &QAction::triggered, this, [this, k](bool checked) {
      if (!open_) return;
      if (k == "Movie") {
        if (checked) Run_Movie();
        return;
      }
      if (k == "History1") {
        state_.History_Button_Down = checked;
        Clear_Pick_Flags(state_);
        if (checked) {
          state_.PickingSupports = shown_variable_ == 21;
          state_.PickingPoints = !state_.PickingSupports;
        }
        A->Picture1->update();
        // Picking done: the history of what was picked.
        if (!checked) Open_History();
        return;
      }
      if (k == "Linecut") {
        state_.LineCutPending = checked;
        A->Picture1->setCursor(checked ? Qt::CrossCursor : Qt::ArrowCursor);
        if (checked) {
          if (cut_window_ == nullptr) cut_window_ = new frmcut(context_, cut_direction_, this);
          cut_window_->Load();
          cut_window_->show();
          cut_window_->raise();
        }
        return;
      }
      Toolbar_Click(k);
    });
  }
  connect(A->List_Times, &QListWidget::itemClicked, this,
          [this](QListWidgetItem* item) { Pick_Time(A->List_Times->row(item)); });
  connect(A->Apply_Run, &QPushButton::clicked, this, [this] { Apply_Selected_Run(); });
  connect(B->SSTab1, &QTabWidget::currentChanged, this, [this] { Tab_Changed(); });
  Set_Toolbar();
}

frmRes::~frmRes() {
  delete host_;
}

Work_Form_Widget* Create_Result_Form(Work_Form form, Gui_Context& context, QWidget* parent) {
  return form == Work_Form::Results ? new frmRes(context, parent) : nullptr;
}

QAction* frmRes::Tool(const std::string& key) const {
  const auto it = A->Tools.find(key);
  return it == A->Tools.end() ? nullptr : it->second;
}

QWidget* frmRes::Picture_Widget() const {
  return A->Picture1;
}

const Result_Page* frmRes::Page_Of(int variable) const {
  for (const Result_Page& page : pages_)
    if (page.Variable == variable) return &page;
  return nullptr;
}

void frmRes::Close_Results() {
  if (his_ != nullptr) his_->Results_Closed();  // the history scales go with the results
  if (line_cut_ != nullptr) line_cut_->hide();
  family_ = Result_Family{};  // the files close with the family
  open_ = false;
  reading_shown_ = false;
}

void frmRes::hideEvent(QHideEvent* event) {
  Close_Results();
  if (cool_ != nullptr) cool_->hide();
  Work_Form_Widget::hideEvent(event);
}

void frmRes::Form_Shown() {
  Close_Results();
  // The results of a mechanical run lie on the joints' node copies and the bars cut at the mesh;
  // a project saved before the run (or run by pvx) is brought up to them. They follow from the mesh
  // and the bars alone, so a project that holds them already stays as it is.
  if (context_.project.Mechanical_Included != False_Flag &&
      (!context_.project.Mesh_Interface.empty() || !context_.project.Rebar.empty())) {
    std::string ignored;
    Set_Mechanical_Mesh(context_.project, ignored);
  }
  const Project& p = context_.project;
  Viewer_State fresh;
  fresh.CurrentRun = state_.CurrentRun;
  fresh.SelectedCircuit = 0;  // none until a click in the circuit list
  state_ = std::move(fresh);
  if (cool_ != nullptr) cool_->hide();
  moisture_ = Moisture_Results(p);
  user_zoomed_ = false;
  picture_.ZoomPending = false;
  Home_View();
  open_ = Open_Viewer(state_, family_, p, context_.shell.Work_Directory, *host_);
  if (!open_) family_ = Result_Family{};
  shown_variable_ = state_.CurrentVariable;
  Build_Tabs();
  A->List_Times->hide();
  A->List_Runs->hide();
  A->Apply_Run->hide();
  for (const char* key : {"Movie", "Linecut", "History1"})
    Tool(key)->setChecked(false);
  Show_State();
}

void frmRes::Redraw() {
  A->Picture1->update();
}

// The mesh's extent with a small border: a picture of the results shows the whole mesh, which may
// outgrow the design frame.
void frmRes::Home_View() {
  const Project& p = context_.project;
  if (p.Mesh_Node.empty()) {
    home_valid_ = false;
    return;
  }
  double x1 = p.Mesh_Node[1].X, x2 = x1, y1 = p.Mesh_Node[1].Y, y2 = y1;
  for (const Mesh_Node& n : p.Mesh_Node) {
    x1 = std::min(x1, n.X);
    x2 = std::max(x2, n.X);
    y1 = std::min(y1, n.Y);
    y2 = std::max(y2, n.Y);
  }
  const double border = 0.02 * std::max({x2 - x1, y2 - y1, 1.0});
  home_[0] = x1 - border;
  home_[1] = y1 - border;
  home_[2] = x2 + border;
  home_[3] = y2 + border;
  home_valid_ = true;
}

void frmRes::Update_Scale() {
  if (!user_zoomed_) {
    picture_.Zoomed = home_valid_;
    picture_.ZoomX1 = home_[0];
    picture_.ZoomY1 = home_[1];
    picture_.ZoomX2 = home_[2];
    picture_.ZoomY2 = home_[3];
  }
  const double twips = 1440.0 / A->Picture1->logicalDpiX();
  Compute_Scale(picture_, context_.project, A->Picture1->width() * twips, A->Picture1->height() * twips,
                twips);
}

const Picture_State& frmRes::Picture() const {
  const_cast<frmRes*>(this)->Update_Scale();
  return picture_;
}

void frmRes::Draw(Plot_Surface& surface) {
  const bool replaced_before = drawn_.Scale_Replaced;
  drawn_ = Plot_Distribution(surface, picture_, context_.project, state_);
  // The deformed mesh may have set its own scale: its box shows the value taken.
  if (drawn_.Scale_Replaced && !replaced_before) Fill_Page();
}

// The tabs of the variables, as far as the results have them. A main tab without any page of the
// run is left out.
void frmRes::Build_Tabs() {
  building_ = true;
  QTabWidget* root = B->SSTab1;
  while (root->count() > 0) {
    QWidget* w = root->widget(0);
    root->removeTab(0);
    delete w;
  }
  pages_.clear();
  B->List1 = nullptr;  // went with its page
  B->Store_Button = nullptr;
  if (!open_) {
    building_ = false;
    return;
  }
  const Result_Layout& layout = family_.Layout;

  auto make_page = [this](int variable) {
    Result_Page page;
    page.Variable = variable;
    page.Page = new QWidget;
    page.Page->setProperty("variable", variable);
    auto* grid = new QGridLayout(page.Page);
    int row = 0;
    auto* heading = new QLabel("Extreme values in period:");
    grid->addWidget(heading, row++, 0, 1, 2);
    page.Label_Maximum = new QLabel;
    page.Label_Minimum = new QLabel;
    grid->addWidget(page.Label_Maximum, row++, 0, 1, 2);
    grid->addWidget(page.Label_Minimum, row++, 0, 1, 2);
    grid->addWidget(new QLabel("Scale Values:"), row++, 0, 1, 2);
    page.Scale_Maximum = new QLineEdit;
    page.Scale_Maximum->setObjectName("Scale_Maximum");
    grid->addWidget(new QLabel("Maximum:"), row, 0);
    grid->addWidget(page.Scale_Maximum, row++, 1);
    const Scale_Box max_box = variable == 20 ? Scale_Box::Deformation : Scale_Box::Maximum;
    QLineEdit* max_edit = page.Scale_Maximum;
    connect(max_edit, &QLineEdit::returnPressed, this,
            [this, max_box, max_edit] { Scale_Entered(max_box, max_edit->text().toStdString()); });
    if (variable != 20) {
      page.Scale_Minimum = new QLineEdit;
      page.Scale_Minimum->setObjectName("Scale_Minimum");
      grid->addWidget(new QLabel("Minimum:"), row, 0);
      grid->addWidget(page.Scale_Minimum, row++, 1);
      QLineEdit* min_edit = page.Scale_Minimum;
      connect(min_edit, &QLineEdit::returnPressed, this,
              [this, min_edit] { Scale_Entered(Scale_Box::Minimum, min_edit->text().toStdString()); });
    } else {
      page.Undeformed = new QCheckBox("Undeformed mesh visible");
      grid->addWidget(page.Undeformed, row++, 0, 1, 2);
      connect(page.Undeformed, &QCheckBox::toggled, this, [this](bool on) {
        state_.Undeformed_Visible = on;
        A->Picture1->update();
      });
    }
    if (variable == 19) {
      page.Ft_Factor = new QLineEdit;
      page.Ft_Factor->setObjectName("Ft_Factor");
      grid->addWidget(new QLabel("ft factor:"), row, 0);
      grid->addWidget(page.Ft_Factor, row++, 1);
      QLineEdit* ft = page.Ft_Factor;
      connect(ft, &QLineEdit::returnPressed, this,
              [this, ft] { Scale_Entered(Scale_Box::Ft_Factor, ft->text().toStdString()); });
    }
    grid->setRowStretch(row, 1);
    grid->setColumnStretch(1, 1);
    pages_.push_back(page);
    return page.Page;
  };
  auto offered = [&](int variable) { return Variable_Offered(layout, moisture_, variable); };
  auto sub_tabs = [this] {
    auto* tabs = new QTabWidget;
    connect(tabs, &QTabWidget::currentChanged, this, [this] { Tab_Changed(); });
    return tabs;
  };
  struct Sub {
    const char* caption;
    int variable;
  };
  auto add_group = [&](const char* caption, std::initializer_list<Sub> subs) {
    QTabWidget* tabs = nullptr;
    for (const Sub& s : subs) {
      if (!offered(s.variable)) continue;
      if (tabs == nullptr) tabs = sub_tabs();
      tabs->addTab(make_page(s.variable), s.caption);
    }
    if (tabs != nullptr) root->addTab(tabs, caption);
  };
  auto add_single = [&](const char* caption, int variable) {
    if (offered(variable)) root->addTab(make_page(variable), caption);
  };

  add_group("Physics", {{"Temperature", 1}, {"Humidity", 4}, {" Moisture Content", 5}});
  add_group("Maturity", {{"Arrhenious", 2}, {"C-Method", 3}});
  if (state_.CoolingDataOk) root->addTab(Make_Cooling_Page(), Cooling_Caption);
  add_group("Mech. Prop.", {{"Tensile str.", 9}, {" Compressive str.", 10}});
  add_group("Displacements", {{"Deformed mesh", 20}, {"Ux", 11}, {"Uy", 12}});
  if (offered(13)) {
    QTabWidget* stresses = sub_tabs();
    QTabWidget* principals = sub_tabs();
    principals->addTab(make_page(13), "Major");
    principals->addTab(make_page(14), " Minor");
    stresses->addTab(principals, "Principals");
    stresses->addTab(make_page(16), "Sxx");
    stresses->addTab(make_page(17), "Syy");
    stresses->addTab(make_page(18), "Sxy");
    stresses->addTab(make_page(15), " Szz");
    stresses->addTab(make_page(19), "Szz / ft");
    root->addTab(stresses, "Stresses");
  }
  add_single("Reactions", 21);
  add_single("Crack opening", 22);
  add_group("Interfaces", {{"Normal Stresses", 30}, {"Shear Stresses", 31}});
  add_group("Reinforcement", {{"Normal Stress", 32}, {"Shear stress", 33}, {"Slip", 34}});
  add_single("D.o.h", 40);
  Select_Page(shown_variable_);
  building_ = false;
}

// The list of the circuits and the button that stores one. The page shows no variable: a change to
// it leaves the picture and the record as they are.
QWidget* frmRes::Make_Cooling_Page() {
  auto* page = new QWidget;
  page->setProperty("variable", Cooling_Page);
  auto* layout = new QVBoxLayout(page);
  B->List1 = new QListWidget(page);
  B->List1->setObjectName("List1");
  for (int c = 1; c <= state_.Circuits.count(); ++c)
    B->List1->addItem(Q(Circuit_Caption(c)));
  B->Store_Button = new QPushButton(Store_Circuit_Caption, page);
  B->Store_Button->setObjectName("Store_Button");
  layout->addWidget(B->List1, 1);
  layout->addWidget(B->Store_Button);
  connect(B->List1, &QListWidget::itemClicked, this,
          [this](QListWidgetItem* item) { Select_Circuit(B->List1->row(item)); });
  connect(B->Store_Button, &QPushButton::clicked, this, [this] { Store_Circuit(); });
  return page;
}

void frmRes::Select_Circuit(int row) {
  if (!open_ || !state_.CoolingDataOk || !state_.Circuits.valid(row + 1)) return;
  state_.SelectedCircuit = row + 1;
  if (cool_ == nullptr) cool_ = new frmCool(this);
  cool_->Show_Circuit(state_.Circuits[row + 1], row + 1, state_.Metric);
  cool_->show();
  cool_->raise();
}

void frmRes::Store_Circuit() {
  if (!open_ || !state_.Circuits.valid(state_.SelectedCircuit)) return;
  // The dialogue opens in the working folder.
  std::string path = context_.shell.Work_Directory;
  if (!path.empty() && path.back() != '/' && path.back() != '\\') path += '/';
  if (!context_.host.Choose_Save_File(Circuit_File_Title, Circuit_File_Filter, path) || path.empty()) return;
  std::string message;
  if (!Store_Circuit_Data(path, state_.Circuits[state_.SelectedCircuit], state_.SelectedCircuit, message))
    context_.host.Show_Message(message);
}

// Makes the page of a variable the current one at every level of the tabs, without reading.
void frmRes::Select_Page(int variable) {
  const Result_Page* page = Page_Of(variable);
  if (page == nullptr) return;
  const bool was_building = building_;
  building_ = true;
  QWidget* w = page->Page;
  while (w != B->SSTab1 && w->parentWidget() != nullptr) {
    QWidget* stack = w->parentWidget();
    auto* tabs = qobject_cast<QTabWidget*>(stack->parentWidget());
    if (tabs == nullptr) break;
    tabs->setCurrentWidget(w);
    w = tabs;
  }
  building_ = was_building;
}

int frmRes::Variable_Of_Current_Tab() const {
  QWidget* w = B->SSTab1->currentWidget();
  while (auto* tabs = qobject_cast<QTabWidget*>(w))
    w = tabs->currentWidget();
  return w == nullptr ? 0 : w->property("variable").toInt();
}

void frmRes::Tab_Changed() {
  if (building_ || !open_) return;
  const int variable = Variable_Of_Current_Tab();
  if (variable == 0 || variable == shown_variable_) return;
  if (Computing && Computing()) {
    Select_Page(shown_variable_);  // the click is ignored: the tab goes back
    return;
  }
  Show_Variable(variable);
}

bool frmRes::Show_Variable(int variable) {
  if (!open_ || Page_Of(variable) == nullptr) return false;
  Select_Page(variable);
  shown_variable_ = variable;
  // The pick modes end with the page; the pick button comes up.
  Tool("History1")->setChecked(false);
  state_.History_Button_Down = false;
  Select_Variable(state_, family_, variable, *host_);
  reading_shown_ = false;
  Show_State();
  return true;
}

void frmRes::Fill_Page() {
  const Result_Page* page = Page_Of(shown_variable_);
  if (page == nullptr) return;
  const Extreme_Labels labels = Extreme_Labels_Of(state_.Index, shown_variable_, state_.Metric);
  page->Label_Maximum->setText(Q(labels.Maximum));
  page->Label_Minimum->setText(Q(labels.Minimum));
  page->Scale_Maximum->setText(Q(labels.Scale_Maximum));
  if (page->Scale_Minimum) page->Scale_Minimum->setText(Q(labels.Scale_Minimum));
  if (page->Ft_Factor) page->Ft_Factor->setText(Q(Scale_Box_Text(state_.FtFactor)));
  if (page->Undeformed) {
    const QSignalBlocker block(page->Undeformed);
    page->Undeformed->setChecked(state_.Undeformed_Visible);
  }
}

void frmRes::Set_Toolbar() {
  for (const auto& [key, action] : A->Tools)
    action->setEnabled(open_);
  if (!open_) return;
  Tool("Backward")->setEnabled(Can_Step_Backward(state_));
  Tool("Forward")->setEnabled(Can_Step_Forward(state_));
  Tool("Select")->setEnabled(Number_Of_Runs(family_) >= 2);
}

void frmRes::Show_State() {
  if (!open_) {
    A->Label_Title->clear();
    A->Label_Stored->clear();
  } else {
    A->Label_Title->setText(Q(Distribution_Title_At(shown_variable_, Current_Time(state_))));
    A->Label_Stored->setText(
        QString("Stored step %1 of %2").arg(state_.CurrentStored).arg(Storage_Count(state_.Index)));
  }
  if (!reading_shown_) {
    A->lblScal->clear();
    A->Label_X->clear();
    A->Label_Y->clear();
  }
  Fill_Page();
  Set_Toolbar();
  A->Picture1->update();
  // The cut follows the step, the page and a reset.
  if (line_cut_ != nullptr && line_cut_->isVisible()) Show_Line_Cut();
}

void frmRes::Toolbar_Click(const std::string& key) {
  QAction* action = Tool(key);
  if (action == nullptr || !action->isEnabled() || !open_) return;
  if (action->isCheckable()) {
    action->trigger();  // toggles, and the button's own handler acts
    return;
  }
  if (key == "StorePic") {
    Store_Picture_Dialog();
  } else if (key == "Zoomin") {
    picture_.ZoomPending = true;
  } else if (key == "Zoomout") {
    user_zoomed_ = false;
    picture_.ZoomPending = false;
  } else if (key == "Backward") {
    Step_Backward(state_, family_, *host_);
  } else if (key == "Forward") {
    Step_Forward(state_, family_, *host_);
  } else if (key == "Minimum") {
    Jump_To_Minimum(state_, family_, *host_);
  } else if (key == "Maximum") {
    Jump_To_Maximum(state_, family_, *host_);
  } else if (key == "Specific") {
    A->List_Times->clear();
    for (const std::string& t : Stored_Time_Texts(state_))
      A->List_Times->addItem(Q(t));
    A->List_Times->setCurrentRow(state_.CurrentStored - 1);
    A->List_Times->show();
    return;
  } else if (key == "Select") {
    A->List_Runs->clear();
    for (const std::string& name : Run_Names(context_.project))
      A->List_Runs->addItem(Q(name));
    A->List_Runs->setCurrentRow(state_.CurrentRun - 1);
    A->List_Runs->show();
    A->Apply_Run->show();
    return;
  } else if (key == "Reset") {
    Reset_Picks(state_, *host_);
  } else if (key == "ImportPoints" || key == "ImportSupports") {
    const bool points = key == "ImportPoints";
    std::string path;
    if (!context_.host.Choose_Open_File(points ? Import_Points_Title : Import_Supports_Title,
                                        Import_File_Filter, path) ||
        path.empty())
      return;
    const int added = points ? Import_History_Points(state_, context_.project, path, *host_)
                             : Import_History_Supports(state_, context_.project, path, *host_);
    if (added > 0) {
      // What was read is shown as the picked points are: with the history button down.
      state_.History_Button_Down = true;
      if (QAction* history = Tool("History1")) {
        const QSignalBlocker block(history);
        history->setChecked(true);
      }
    }
  }
  reading_shown_ = false;
  Show_State();
}

void frmRes::Pick_Time(int row) {
  if (!open_) return;
  A->List_Times->hide();
  Pick_Stored_Step(state_, family_, row + 1, *host_);
  Show_State();
}

void frmRes::Apply_Selected_Run() {
  if (!open_) return;
  const int run = A->List_Runs->currentRow() + 1;
  A->List_Runs->hide();
  A->Apply_Run->hide();
  if (run < 1) return;
  if (!Select_Run(state_, family_, run, *host_)) Close_Results();
  // The runs may differ in whether their cooling history could be read.
  Build_Tabs();
  if (cool_ != nullptr && cool_->isVisible()) {
    if (open_ && state_.Circuits.valid(state_.SelectedCircuit))
      cool_->Show_Circuit(state_.Circuits[state_.SelectedCircuit], state_.SelectedCircuit, state_.Metric);
    else
      cool_->hide();
  }
  Show_State();
}

void frmRes::Run_Movie() {
  if (movie_running_) return;
  movie_running_ = true;
  movie_frames_ = 0;
  Play_Movie(state_, family_, *host_);
  movie_running_ = false;
  if (QAction* movie = Tool("Movie")) {
    const QSignalBlocker block(movie);
    movie->setChecked(false);
  }
  Show_State();
}

void frmRes::Scale_Entered(Scale_Box box, const std::string& text) {
  if (!open_) return;
  const bool taken = Edit_Scale(state_, box, text, context_.shell.Decimal_Comma, *host_);
  Fill_Page();  // a refused value puts the old text back
  if (taken) A->Picture1->update();
  if (taken && box == Scale_Box::Ft_Factor && line_cut_ != nullptr && line_cut_->isVisible()) Show_Line_Cut();
}

void frmRes::Hover_At(double px, double py) {
  if (!open_) return;
  reading_shown_ = false;
  if (shown_variable_ != 21) {
    Update_Scale();
    const double x = Picture_To_World_X(picture_, px), y = Picture_To_World_Y(picture_, py);
    int element = 0;
    double u = 0, v = 0;
    if (Find_Element_At_Point(context_.project, Current_Time(state_), x, y, element, u, v))
      reading_shown_ = Value_At_Point(context_.project, state_.Buffers, shown_variable_, element, u, v,
                                      state_.Metric, reading_);
  }
  if (reading_shown_) {
    A->lblScal->setText(Q(reading_.Text).trimmed());
    A->Label_X->setText("X  " + Q(reading_.X_Text));
    A->Label_Y->setText("Y  " + Q(reading_.Y_Text));
  } else {
    A->lblScal->clear();
    A->Label_X->clear();
    A->Label_Y->clear();
  }
}

void frmRes::Click_At(double px, double py) {
  if (!open_) return;
  Update_Scale();
  const double x = Picture_To_World_X(picture_, px), y = Picture_To_World_Y(picture_, py);
  if (shown_variable_ == 21) {
    int support = 0;
    std::string text;
    if (Reaction_Label(state_, context_.project, x, y, support, text)) A->lblScal->setText(Q(text).trimmed());
    return;
  }
  if (state_.PickingPoints && Pick_History_Point(state_, context_.project, x, y)) A->Picture1->update();
}

void frmRes::Drag_To(double px1, double py1, double px2, double py2) {
  if (!open_) return;
  Update_Scale();
  double x1 = Picture_To_World_X(picture_, px1), x2 = Picture_To_World_X(picture_, px2);
  double y1 = Picture_To_World_Y(picture_, py1), y2 = Picture_To_World_Y(picture_, py2);
  if (state_.LineCutPending) {
    state_.LineCut = Cut_Line{x1, y1, x2, y2};
    state_.LineCutActive = true;
    state_.LineCutPending = false;
    Tool("Linecut")->setChecked(false);
    A->Picture1->setCursor(Qt::ArrowCursor);
    A->Picture1->update();
    Show_Line_Cut();
    line_cut_->show();
    line_cut_->raise();
    return;
  }
  if (x1 > x2) std::swap(x1, x2);
  if (y1 > y2) std::swap(y1, y2);
  if (!(x2 > x1) && !(y2 > y1)) return;
  user_zoomed_ = true;
  picture_.ZoomPending = false;
  picture_.Zoomed = true;
  picture_.ZoomX1 = x1;
  picture_.ZoomX2 = x2;
  picture_.ZoomY1 = y1;
  picture_.ZoomY2 = y2;
  A->Picture1->update();
}

void frmRes::Show_Line_Cut() {
  if (line_cut_ == nullptr) line_cut_ = new frmLineCut(context_, this);
  if (!open_ || !state_.LineCutActive) {
    line_cut_->hide();
    return;
  }
  const Cut_Line& c = state_.LineCut;
  line_cut_->Show_Cut(Determine_Intersections(context_.project, state_.Buffers, state_.CurrentVariable,
                                              Current_Time(state_), c.X1, c.Y1, c.X2, c.Y2),
                      state_.FtFactor, state_.Metric);
}

void frmRes::Open_History() {
  if (!open_) return;
  const bool supports = state_.CurrentVariable == 21;
  if ((supports ? state_.HistorySupports.count() : state_.HistoryPoints.count()) < 1) return;
  if (his_ == nullptr) his_ = new frmHis(context_, this);
  if (!his_->Show_History(family_, state_)) return;
  his_->show();
  his_->raise();
}

void frmRes::Store_Picture_Dialog() {
  std::string path = context_.project.Project_File;
  const std::size_t dot = path.find_last_of('.');
  const std::size_t slash = path.find_last_of("/\\");
  if (dot != std::string::npos && (slash == std::string::npos || dot > slash)) path.erase(dot);
  if (!path.empty()) path += ".jpg";
  if (!context_.host.Choose_Save_File(Store_Picture_Caption, Store_Picture_Filter, path) || path.empty())
    return;
  Update_Scale();
  const QImage image = Draw_To_Image(A->Picture1->size(), [this](Plot_Surface& s) { Draw(s); });
  std::string message;
  if (!Store_Picture(image, path, message)) context_.host.Show_Message(message);
}

}  // namespace pvx
