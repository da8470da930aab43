// The main window: the Project menu and the two toolbars that drive the work from design to
// results, the work area where the working forms are shown one at a time, and the panel of work
// data. It holds the one Project and the shell's state; every command is a procedure of the core,
// after which the window brings its toolbar, caption, labels and recent list up to date. Questions
// and file choices go to the Shell_Host it is given, so that tests can script them.
#pragma once

#include <map>
#include <memory>
#include <string>

#include <QAction>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QStackedWidget>
#include <QTextBrowser>

#include "gui_context.h"

namespace pvx {

class frmMatView;

inline constexpr const char* Run_In_Progress_Message =
    "A computation is running. Stop it first with \"Stop computations\".";

// The help page of the workflow, shipped with the program.
inline constexpr const char* Help_Page = "qrc:/help/workflow.html";

class mdiPVX : public QMainWindow {
 public:
  mdiPVX(Shell_Host& host, Settings_Store& store, const std::string& application_path,
         QWidget* parent = nullptr);
  ~mdiPVX() override;

  // The start of the program: work directory, defaults, default database, recent list and the
  // project of the command line (in quotes; empty for none).
  void Start(bool decimal_comma, const std::string& command_line);

  Project& project() { return project_; }
  Shell& shell() { return shell_; }
  Gui_Context& context() { return context_; }

  // The commands, as the menus and toolbars give them.
  void Project_Menu(int index);
  void Toolbar_Click(const std::string& key);
  void Open_Recent(int position);
  void Show_Units();
  // "MDV": the material viewer over the database's materials, in the shell's units.
  void Show_Material_Viewer();
  // The print selection of the input tables, over the loaded project.
  void Show_Print();
  void Show_About();
  void Show_Help();

  // Brings toolbar, caption, work data and the recent list up to date with the Project.
  void Refresh();
  void Set_Workdata();

  QAction* Toolbar_Action(Toolbar_Button button) const { return toolbar1_[static_cast<int>(button)]; }
  // The widget of a form in the work area (nullptr before it was first shown), and the one shown.
  QWidget* Form_Widget(Work_Form form) const;
  QWidget* Shown_Form() const;
  QString Work_Caption() const { return work_caption_->text(); }
  QTextBrowser* Help_Window() const { return help_; }

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  // While a computation runs, the commands that would change or replace the Project are refused
  // with a message; true when that happened.
  bool Refused_During_Run();
  class Window_Host;
  friend class Window_Host;

  void Build_Menus();
  void Build_Toolbars();
  void Build_Work_Area();
  void Build_Workdata();
  void Fill_Recent_Menu();
  QWidget* Form_For(Work_Form form);
  void Hide_All();
  void Show_Form(Work_Form form);
  void Redraw_Design();
  void Set_Work_Caption(const QString& caption);

  Project project_;
  Shell shell_;
  Shell_Host& outer_host_;
  Settings_Store& store_;
  std::unique_ptr<Window_Host> host_;
  Gui_Context context_;
  bool end_confirmed_ = false;

  QAction* toolbar1_[Toolbar_Button_Count] = {};
  QAction* print_ = nullptr;  // "Print" of the second toolbar: with a project loaded
  std::map<Work_Form, QWidget*> forms_;
  std::map<Work_Form, Work_Form_Widget*> work_forms_;
  QStackedWidget* stack_ = nullptr;
  QWidget* blank_ = nullptr;
  QLabel* work_caption_ = nullptr;
  QMenu* project_menu_ = nullptr;
  QAction* recent_separator_ = nullptr;
  std::vector<QAction*> recent_actions_;
  std::vector<std::pair<QAction*, Toolbar_Button>> menu_commands_;
  std::map<std::string, QLabel*> labels_;
  QTextBrowser* help_ = nullptr;
  QAction* mdv_ = nullptr;          // "MDV" of the second toolbar: with materials
  frmMatView* mat_view_ = nullptr;  // made at the first "MDV"
};

}  // namespace pvx
