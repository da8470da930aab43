#include "main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QFormLayout>
#include <QMenuBar>
#include <QMessageBox>
#include <QPainter>
#include <QStatusBar>
#include <QStyle>
#include <QToolBar>
#include <QVBoxLayout>

#include "app/project_file.h"
#include "frm_mat_view.h"
#include "frm_printkeuze.h"
#include "frm_units.h"
#include "shell_forms.h"

// The help pages are compiled into the library of the windows, which must register them.
static void Register_Help_Pages() {
  Q_INIT_RESOURCE(help);
}

namespace pvx {

namespace {

QString Q(const std::string& text) {
  return QString::fromStdString(text);
}

// The form names, for the note shown where a form is not part of this build.
const char* Form_Name(Work_Form form) {
  switch (form) {
    case Work_Form::Project_Description:
      return "frmProj";
    case Work_Form::Design:
      return "frmDesign";
    case Work_Form::Mesh:
      return "frmGenMesh";
    case Work_Form::Run_Settings:
      return "frmRun";
    case Work_Form::Diagnostics:
      return "frmDiag";
    case Work_Form::Results:
      return "frmresB";
    case Work_Form::Change_Work_Directory:
      return "frmChangeWorkDir";
  }
  return "";
}

// The caption of the work area when a form is shown; a command may set another one after.
const char* Form_Caption(Work_Form form) {
  switch (form) {
    case Work_Form::Project_Description:
      return "Project description";
    case Work_Form::Design:
      return Design_Panel_Caption;
    case Work_Form::Mesh:
      return "FE mesh generation";
    case Work_Form::Run_Settings:
      return "Set runtime constants";
    case Work_Form::Diagnostics:
      return Start_Computations_Caption;
    case Work_Form::Results:
      return "Visualize computed distributions";
    case Work_Form::Change_Work_Directory:
      return "Change Work Directory";
  }
  return "";
}

const char* State_Text(Work_State state) {
  switch (state) {
    case Work_State::No_Project:
      return "No project";
    case Work_State::Design:
      return "Design";
    case Work_State::Run_Set:
      return "Run set";
    case Work_State::Computed:
      return "Computed";
  }
  return "";
}

// Small pictures for the buttons that have no standard one: the design (a quadrilateral on its
// nodes), the mesh, the run settings (a clock), the results (contour bands), print and units.
enum class Picture { Design, Mesh, Runset, Results, Print, Units };

QIcon Drawn_Icon(Picture picture) {
  QPixmap pixmap(32, 32);
  pixmap.fill(Qt::transparent);
  QPainter g(&pixmap);
  g.setRenderHint(QPainter::Antialiasing);
  const QPolygonF quad({QPointF(5, 26), QPointF(27, 24), QPointF(24, 6), QPointF(8, 8)});
  switch (picture) {
    case Picture::Design:
      g.setPen(QPen(QColor(20, 60, 160), 2));
      g.setBrush(QColor(200, 215, 245));
      g.drawPolygon(quad);
      g.setBrush(QColor(200, 30, 30));
      g.setPen(Qt::NoPen);
      for (const QPointF& corner : quad)
        g.drawEllipse(corner, 2.5, 2.5);
      break;
    case Picture::Mesh:
      g.setPen(QPen(QColor(40, 40, 40), 1.2));
      g.setBrush(QColor(225, 235, 225));
      g.drawPolygon(quad);
      for (int k = 1; k < 3; ++k) {
        const double t = k / 3.0;
        g.drawLine(quad[0] + t * (quad[1] - quad[0]), quad[3] + t * (quad[2] - quad[3]));
        g.drawLine(quad[0] + t * (quad[3] - quad[0]), quad[1] + t * (quad[2] - quad[1]));
      }
      break;
    case Picture::Runset:
      g.setPen(QPen(QColor(30, 30, 30), 2));
      g.setBrush(QColor(250, 240, 200));
      g.drawEllipse(QPointF(16, 16), 12, 12);
      g.drawLine(QPointF(16, 16), QPointF(16, 8));
      g.drawLine(QPointF(16, 16), QPointF(22, 19));
      break;
    case Picture::Results: {
      const QColor bands[4] = {QColor(0, 0, 255), QColor(0, 200, 200), QColor(240, 220, 0),
                               QColor(230, 0, 0)};
      g.setPen(Qt::NoPen);
      for (int i = 0; i < 4; ++i) {
        g.setBrush(bands[i]);
        g.drawRect(QRectF(4, 4 + 6 * i, 24, 6));
      }
      g.setPen(QPen(Qt::black, 1));
      g.setBrush(Qt::NoBrush);
      g.drawRect(QRectF(4, 4, 24, 24));
      break;
    }
    case Picture::Print:
      g.setPen(QPen(QColor(60, 60, 60), 1.5));
      g.setBrush(Qt::white);
      g.drawRect(QRectF(9, 3, 14, 12));
      g.setBrush(QColor(170, 170, 170));
      g.drawRoundedRect(QRectF(3, 13, 26, 11), 2, 2);
      g.setBrush(Qt::white);
      g.drawRect(QRectF(9, 20, 14, 9));
      break;
    case Picture::Units: {
      QFont font = g.font();
      font.setPixelSize(11);
      font.setBold(true);
      g.setFont(font);
      g.setPen(QColor(20, 60, 160));
      g.drawText(QRectF(0, 1, 32, 15), Qt::AlignCenter, "mm");
      g.setPen(QColor(160, 40, 20));
      g.drawText(QRectF(0, 16, 32, 15), Qt::AlignCenter, "in");
      break;
    }
  }
  return QIcon(pixmap);
}

}  // namespace

// The window's share of the host: the dialogs go to the host the window was given, the work area
// is the window's own.
class mdiPVX::Window_Host : public Shell_Host {
 public:
  explicit Window_Host(mdiPVX& window) : window_(window) {}
  Answer Ask(const std::string& question, Question_Buttons buttons) override {
    return window_.outer_host_.Ask(question, buttons);
  }
  void Show_Message(const std::string& text) override { window_.outer_host_.Show_Message(text); }
  bool Choose_Open_File(const std::string& title, const std::string& filter, std::string& path) override {
    return window_.outer_host_.Choose_Open_File(title, filter, path);
  }
  bool Choose_Save_File(const std::string& title, const std::string& filter, std::string& path) override {
    return window_.outer_host_.Choose_Save_File(title, filter, path);
  }
  bool Open_Results(const Project& p, const Shell& shell, std::string& message) override {
    return window_.outer_host_.Open_Results(p, shell, message);
  }
  void Change_Directory(const std::string& directory) override {
    window_.outer_host_.Change_Directory(directory);
  }
  void End_Program() override {
    window_.end_confirmed_ = true;
    window_.outer_host_.End_Program();
    window_.close();
  }
  void Hide_All() override { window_.Hide_All(); }
  void Show_Form(Work_Form form) override { window_.Show_Form(form); }
  void Redraw_Design() override { window_.Redraw_Design(); }
  void Set_Work_Caption(const std::string& caption) override { window_.Set_Work_Caption(Q(caption)); }
  void Show_Mesh_Form(bool existing, bool cooling_button) override {
    // The mesh form reads both from the Project when it is shown.
    (void)existing;
    (void)cooling_button;
    window_.Show_Form(Work_Form::Mesh);
  }

 private:
  mdiPVX& window_;
};

mdiPVX::mdiPVX(Shell_Host& host, Settings_Store& store, const std::string& application_path, QWidget* parent)
    : QMainWindow(parent),
      outer_host_(host),
      store_(store),
      host_(std::make_unique<Window_Host>(*this)),
      context_{project_, shell_, store_, *host_} {
  setObjectName("mdiPVX");
  shell_.Application_Path = application_path;
  context_.state_changed = [this] { Refresh(); };
  Build_Work_Area();
  Build_Menus();
  Build_Toolbars();
  Build_Workdata();
  resize(1280, 860);
  Refresh();
}

mdiPVX::~mdiPVX() {
  // The forms hold the context; they go before the Project and the host they refer to.
  delete stack_;
  stack_ = nullptr;
  delete help_;
}

void mdiPVX::Start(bool decimal_comma, const std::string& command_line) {
  Start_Main_Window(project_, shell_, *host_, store_, decimal_comma, command_line);
  Refresh();
}

void mdiPVX::Build_Work_Area() {
  auto* central = new QWidget(this);
  auto* layout = new QVBoxLayout(central);
  layout->setContentsMargins(4, 4, 4, 4);
  layout->setSpacing(2);
  work_caption_ = new QLabel(central);
  work_caption_->setObjectName("lblWorkCaption");
  work_caption_->setStyleSheet(
      "QLabel { background: #2c4f86; color: white; font-weight: bold; padding: 3px 8px; }");
  stack_ = new QStackedWidget(central);
  stack_->setObjectName("WorkArea");
  auto* blank = new QLabel(stack_);
  blank->setAlignment(Qt::AlignCenter);
  blank->setText(QString("<p style='font-size:20pt; color:#7a8aa8'><b>%1</b></p>"
                         "<p style='font-size:12pt; color:#8a8a8a'>%2<br>%3<br>%4</p>")
                     .arg(Program_Name, Thermal_Label, Mechanical_Label, Moisture_Label));
  blank_ = blank;
  stack_->addWidget(blank_);
  layout->addWidget(work_caption_);
  Set_Work_Caption(QString());
  layout->addWidget(stack_, 1);
  setCentralWidget(central);
}

void mdiPVX::Build_Menus() {
  project_menu_ = menuBar()->addMenu("&Project");
  project_menu_->setObjectName("mnuProject");
  const char* items[6] = {"&New", "Change Work Directory", "&Open", "&Save", "Save &as ...", "&Exit"};
  for (int i = 0; i < 6; ++i) {
    QAction* action = project_menu_->addAction(items[i]);
    action->setObjectName(QString("mnuProject_%1").arg(i));
    connect(action, &QAction::triggered, this, [this, i] { Project_Menu(i); });
  }
  recent_separator_ = project_menu_->addSeparator();

  using B = Toolbar_Button;
  auto command = [this](QMenu* menu, const char* text, B button) {
    QAction* action = menu->addAction(text);
    action->setObjectName(QString("mnu_%1").arg(Button_Key(button)));
    connect(action, &QAction::triggered, this, [this, button] { Toolbar_Click(Button_Key(button)); });
    menu_commands_.emplace_back(action, button);
  };
  QMenu* design = menuBar()->addMenu("&Design");
  command(design, "Project description", B::Project_information);
  command(design, "Design panel", B::Design_Panel);
  command(design, "FE mesh generation", B::Mesh);
  command(design, "Refresh", B::Refresh);
  QMenu* loads = menuBar()->addMenu("&Loads");
  command(loads, "Set runtime constants", B::Runset);
  command(loads, "Compute", B::Compute);
  QMenu* results = menuBar()->addMenu("&Results");
  command(results, "Visualize computed distributions", B::Results);
  QMenu* help = menuBar()->addMenu("&Help");
  QAction* about = help->addAction("&About");
  about->setObjectName("mnuAbout");
  connect(about, &QAction::triggered, this, [this] { Show_About(); });
  QAction* workflow = help->addAction("&Workflow");
  workflow->setObjectName("mnuHelpWorkflow");
  workflow->setShortcut(QKeySequence::HelpContents);
  connect(workflow, &QAction::triggered, this, [this] { Show_Help(); });
}

void mdiPVX::Build_Toolbars() {
  using B = Toolbar_Button;
  QToolBar* bar = addToolBar("Toolbar1");
  bar->setObjectName("Toolbar1");
  bar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
  bar->setIconSize(QSize(28, 28));
  QStyle* s = style();
  const QIcon icons[Toolbar_Button_Count] = {s->standardIcon(QStyle::SP_DialogOpenButton),
                                             s->standardIcon(QStyle::SP_DialogCloseButton),
                                             s->standardIcon(QStyle::SP_FileDialogInfoView),
                                             Drawn_Icon(Picture::Design),
                                             Drawn_Icon(Picture::Mesh),
                                             s->standardIcon(QStyle::SP_BrowserReload),
                                             Drawn_Icon(Picture::Runset),
                                             s->standardIcon(QStyle::SP_MediaPlay),
                                             Drawn_Icon(Picture::Results)};
  for (int i = 0; i < Toolbar_Button_Count; ++i) {
    const B button = static_cast<B>(i);
    QString text = Button_Key(button);
    text.replace('_', ' ');
    QAction* action = bar->addAction(icons[i], text);
    action->setObjectName(Button_Key(button));
    action->setToolTip(Button_Tool_Tip(button));
    const std::string key = Button_Key(button);
    connect(action, &QAction::triggered, this, [this, key] { Toolbar_Click(key); });
    toolbar1_[i] = action;
  }

  QToolBar* bar2 = addToolBar("Toolbar2");
  bar2->setObjectName("Toolbar2");
  bar2->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
  bar2->setIconSize(QSize(28, 28));
  QAction* mdv = bar2->addAction(s->standardIcon(QStyle::SP_FileDialogContentsView), "MDV");
  mdv->setObjectName("MDV");
  mdv->setToolTip("Input and computed data");
  connect(mdv, &QAction::triggered, this, [this] { Show_Material_Viewer(); });
  mdv_ = mdv;
  QAction* print = bar2->addAction(Drawn_Icon(Picture::Print), "Print");
  print->setObjectName("Print");
  print->setToolTip("Print the input of the project");
  print->setEnabled(false);
  connect(print, &QAction::triggered, this, [this] { Show_Print(); });
  print_ = print;
  QAction* units = bar2->addAction(Drawn_Icon(Picture::Units), "Units");
  units->setObjectName("Units");
  units->setToolTip("Units of display and entry");
  connect(units, &QAction::triggered, this, [this] { Show_Units(); });
}

void mdiPVX::Build_Workdata() {
  auto* dock = new QDockWidget("Work data", this);
  dock->setObjectName("Workdata");
  dock->setFeatures(QDockWidget::NoDockWidgetFeatures);
  auto* panel = new QWidget(dock);
  auto* form = new QFormLayout(panel);
  form->setRowWrapPolicy(QFormLayout::WrapLongRows);
  form->setLabelAlignment(Qt::AlignLeft);
  const std::pair<const char*, const char*> rows[] = {{"lblState", "State:"},
                                                      {"lblProjectFile", "Project:"},
                                                      {"lblWorkDirectory", "Work dir.:"},
                                                      {"lblDatabase", "Database:"},
                                                      {"lblNodes", "Nodes:"},
                                                      {"lblMacros", "Macros:"},
                                                      {"lblMeshNodes", "Mesh nodes:"},
                                                      {"lblMeshElements", "Mesh elements:"},
                                                      {"lblUnits", "Units:"}};
  for (const auto& [name, caption] : rows) {
    auto* label = new QLabel(panel);
    label->setObjectName(name);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setMinimumWidth(120);
    form->addRow(caption, label);
    labels_[name] = label;
  }
  panel->setMinimumWidth(250);
  panel->setMaximumWidth(300);
  dock->setWidget(panel);
  addDockWidget(Qt::LeftDockWidgetArea, dock);
}

void mdiPVX::Set_Workdata() {
  auto set = [this](const char* name, const QString& text) { labels_.at(name)->setText(text); };
  // A file is shown by its name, its full path in the tool tip; a folder in full, with places to
  // break the line after each separator so that a long path wraps where it is read.
  auto path = [this](const char* name, const std::string& full, bool name_only) {
    QLabel* label = labels_.at(name);
    label->setToolTip(Q(full));
    if (full.empty()) {
      label->setText("-");
    } else if (name_only) {
      label->setText(Q(File_Part(full)));
    } else {
      QString text = Q(full);
      text.replace('/', QString("/") + QChar(0x200B));
      text.replace('\\', QString("\\") + QChar(0x200B));
      label->setText(text);
    }
  };
  set("lblState", State_Text(shell_.State));
  path("lblProjectFile", project_.Project_File, true);
  path("lblWorkDirectory", shell_.Work_Directory, false);
  path("lblDatabase", project_.Material_Database_Path, true);
  set("lblNodes", QString::number(Node_Count(project_)));
  set("lblMacros", QString::number(project_.Macro.count()));
  set("lblMeshNodes", QString::number(project_.Mesh_Node.count()));
  set("lblMeshElements", QString::number(project_.Mesh_Element.count()));
  set("lblUnits", project_.Metric_Units != False_Flag ? SI_Units_Text : Imperial_Units_Text);
}

void mdiPVX::Fill_Recent_Menu() {
  // The entries are made once and relabelled: an entry may be the one whose command is running.
  if (recent_actions_.empty())
    for (int position = 1; position <= Recent_List_Length; ++position) {
      QAction* action = project_menu_->addAction(QString());
      action->setObjectName(QString("mnuRecent%1").arg(position));
      connect(action, &QAction::triggered, this, [this, position] { Open_Recent(position); });
      recent_actions_.push_back(action);
    }
  const std::vector<std::string> list = Read_Recent_Files(store_);
  for (std::size_t i = 0; i < recent_actions_.size(); ++i) {
    QAction* action = recent_actions_[i];
    const bool used = i < list.size();
    action->setText(used ? QString("&%1 %2").arg(i + 1).arg(Q(list[i])) : QString());
    action->setVisible(used);
  }
  recent_separator_->setVisible(!list.empty());
}

void mdiPVX::Refresh() {
  const Button_Set shown = Buttons_Of(shell_.State);
  for (int i = 0; i < Toolbar_Button_Count; ++i)
    toolbar1_[i]->setVisible(shown[static_cast<std::size_t>(i)]);
  for (const auto& [action, button] : menu_commands_)
    action->setEnabled(Shows(shown, button));
  print_->setEnabled(shell_.State != Work_State::No_Project);
  mdv_->setEnabled(!project_.Material.empty());
  // An open material viewer follows the database and the units.
  if (mat_view_ && mat_view_->isVisible())
    mat_view_->Show_Materials(project_.Material, project_.Metric_Units != False_Flag);
  setWindowTitle(Q(Main_Caption(project_, shell_)));
  Set_Workdata();
  Fill_Recent_Menu();
}

QWidget* mdiPVX::Form_Widget(Work_Form form) const {
  auto it = forms_.find(form);
  return it == forms_.end() ? nullptr : it->second;
}

QWidget* mdiPVX::Shown_Form() const {
  QWidget* current = stack_->currentWidget();
  return current == blank_ ? nullptr : current;
}

QWidget* mdiPVX::Form_For(Work_Form form) {
  if (QWidget* made = Form_Widget(form)) return made;
  Work_Form_Widget* widget = Create_Work_Form(form, context_, stack_);
  if (!widget) widget = Create_Shell_Form(form, context_, stack_);
  QWidget* page = widget;
  if (widget) {
    work_forms_[form] = widget;
  } else {
    auto* note = new QLabel(QString("The window \"%1\" (%2) is not available in this build.")
                                .arg(Form_Caption(form), Form_Name(form)),
                            stack_);
    note->setObjectName(QString("%1_missing").arg(Form_Name(form)));
    note->setAlignment(Qt::AlignCenter);
    page = note;
  }
  stack_->addWidget(page);
  forms_[form] = page;
  return page;
}

void mdiPVX::Hide_All() {
  if (mat_view_) mat_view_->hide();
  stack_->setCurrentWidget(blank_);
  Set_Work_Caption(QString());
}

void mdiPVX::Set_Work_Caption(const QString& caption) {
  // The bar goes with the form: an empty work area has no title.
  work_caption_->setText(caption);
  work_caption_->setVisible(!caption.isEmpty());
}

void mdiPVX::Show_Form(Work_Form form) {
  QWidget* page = Form_For(form);
  stack_->setCurrentWidget(page);
  Set_Work_Caption(Form_Caption(form));
  if (auto it = work_forms_.find(form); it != work_forms_.end()) it->second->Form_Shown();
}

void mdiPVX::Redraw_Design() {
  if (auto it = work_forms_.find(Work_Form::Design); it != work_forms_.end()) it->second->Redraw();
}

bool mdiPVX::Refused_During_Run() {
  for (const auto& [form, widget] : work_forms_)
    if (widget->Busy()) {
      host_->Show_Message(Run_In_Progress_Message);
      return true;
    }
  return false;
}

void mdiPVX::Project_Menu(int index) {
  if (Refused_During_Run()) return;
  const bool saving = index == 3 || index == 4;
  const Flag was_saved = project_.Project_Saved;
  if (saving) project_.Project_Saved = False_Flag;
  mnuProject_Click(index, project_, shell_, *host_, store_);
  // A save is silent otherwise: the status bar says where it went. A save that did not happen
  // (the chooser cancelled) leaves the saved state as it was.
  if (saving && project_.Project_Saved != False_Flag)
    statusBar()->showMessage(QString("Saved %1").arg(QString::fromStdString(project_.Project_File)), 8000);
  else if (saving)
    project_.Project_Saved = was_saved;
  Refresh();
}

void mdiPVX::Toolbar_Click(const std::string& key) {
  if (Refused_During_Run()) return;
  Toolbar1_ButtonClick(key, project_, shell_, *host_, store_);
  Refresh();
}

void mdiPVX::Open_Recent(int position) {
  if (Refused_During_Run()) return;
  Hide_All();
  Open_Recent_File(position, project_, shell_, *host_, store_);
  Refresh();
}

void mdiPVX::Show_Units() {
  if (Refused_During_Run()) return;
  auto* dialog = new frmUnits(context_, this);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  // The form in view shows its values and unit labels again in the chosen system.
  connect(dialog, &QDialog::accepted, this, [this] {
    for (const auto& [form, widget] : work_forms_)
      if (widget == stack_->currentWidget()) widget->Form_Shown();
    Redraw_Design();
  });
  dialog->open();
}

// A run works on the Project while it goes: the printout waits for its end.
void mdiPVX::Show_Print() {
  if (shell_.State == Work_State::No_Project || Refused_During_Run()) return;
  auto* dialog = new frmPrintkeuze(context_, this);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->open();
}

// Viewing the materials only reads them, so it is offered during a computation too.
void mdiPVX::Show_Material_Viewer() {
  if (project_.Material.empty()) return;
  if (!mat_view_) mat_view_ = new frmMatView(this);
  mat_view_->Show_Materials(project_.Material, project_.Metric_Units != False_Flag);
  mat_view_->show();
  mat_view_->raise();
  mat_view_->activateWindow();
}

void mdiPVX::Show_About() {
  auto* box = new QMessageBox(
      QMessageBox::Information, "About",
      QString("%1\n\n%2\n%3\n%4").arg(Program_Name, Thermal_Label, Mechanical_Label, Moisture_Label),
      QMessageBox::Ok, this);
  box->setObjectName("frmAbout");
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->open();
}

void mdiPVX::Show_Help() {
  if (!help_) {
    Register_Help_Pages();
    help_ = new QTextBrowser;
    help_->setObjectName("HTMLHelp");
    help_->setWindowTitle(QString("%1 - Help").arg(Program_Name));
    help_->setOpenExternalLinks(true);
    help_->setSource(QUrl(Help_Page));
    help_->resize(720, 760);
  }
  help_->show();
  help_->raise();
}

void mdiPVX::closeEvent(QCloseEvent* event) {
  // The run holds the Project on the stack below this event: the window stays until it ends.
  if (!end_confirmed_ && Refused_During_Run()) {
    event->ignore();
    return;
  }
  if (!end_confirmed_ && !Query_Close(project_, shell_, *host_, store_)) {
    event->ignore();
    Refresh();
    return;
  }
  end_confirmed_ = true;
  if (mat_view_) mat_view_->close();
  if (help_) help_->close();
  event->accept();
}

}  // namespace pvx
