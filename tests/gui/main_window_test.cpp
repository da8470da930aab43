// The main window driven as a user drives it: menus and toolbar buttons are triggered, questions
// and file choices come from a scripted host, the recent list lives in a map. What is checked is
// the Project, the files written and what the window shows afterwards.
#include "main_window.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QStatusBar>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <filesystem>

#include "app/project_load.h"
#include "app/shell_host_fake.h"
#include "app/shell_input.h"
#include "frm_change_work_dir.h"
#include "frm_diag.h"
#include "frm_proj.h"
#include "frm_units.h"
#include "screenshot.h"
#include "support/temp_dir.h"

namespace pvx {
namespace {

namespace fs = std::filesystem;

// The program's folder with its database, and a copy of the example beside it.
struct Desk {
  test::Temp_Dir dir;
  std::string app = dir.path().string();
  std::string project = dir.file("WALL.PVX");
  std::string database = dir.file("PVX-Concrete.txt");
  test::Scripted_Host host;
  test::Memory_Store store;
  std::unique_ptr<mdiPVX> window;

  Desk() {
    fs::copy_file(test::Source_Path("examples/WALL.PVX"), project);
    fs::copy_file(test::Source_Path("examples/PVX-Concrete.txt"), database);
    window = std::make_unique<mdiPVX>(host, store, app);
    host.answers = {Answer::Yes};  // the proposed default database
    window->Start(false, "");
    window->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(window.get()));
  }
  QAction* Action(const char* name) { return window->findChild<QAction*>(name); }
  void Trigger(const char* name) {
    QAction* action = Action(name);
    ASSERT_NE(action, nullptr) << name;
    action->trigger();
  }
  QString Label(const char* name) { return window->findChild<QLabel*>(name)->text(); }
  std::vector<std::string> Visible_Buttons() {
    std::vector<std::string> keys;
    for (int i = 0; i < Toolbar_Button_Count; ++i)
      if (window->Toolbar_Action(static_cast<Toolbar_Button>(i))->isVisible())
        keys.push_back(Button_Key(static_cast<Toolbar_Button>(i)));
    return keys;
  }
  void Open_Example() {
    host.files = {project};
    Trigger("Open");
  }
};

using Keys = std::vector<std::string>;

// Where a user clicks a radio button: on its circle, not in the empty space of a wide column.
QPoint Indicator(const QWidget* button) {
  return QPoint(6, button->height() / 2);
}
const Keys No_Project_Keys = {"Open", "Quit", "Project_information", "Design_Panel"};
const Keys Design_Keys = {"Open", "Quit", "Project_information", "Design_Panel", "Mesh", "Refresh", "Runset"};
const Keys Computed_Keys = {
    "Open", "Quit", "Project_information", "Design_Panel", "Mesh", "Refresh", "Runset", "Compute", "Results"};

TEST(MainWindow, StartsEmptyThenOpensTheExampleAndFallsBackWhenItsResultsAreMissing) {
  Desk desk;
  mdiPVX& w = *desk.window;
  EXPECT_EQ(desk.host.questions, Keys{"Default Database = " + desk.database + ". Is this correct ?"});
  EXPECT_EQ(desk.Visible_Buttons(), No_Project_Keys);
  EXPECT_EQ(w.windowTitle().toStdString(), desk.database + " -  - KIVA version 8.6.2");
  EXPECT_EQ(desk.Label("lblState"), "No project");
  EXPECT_EQ(desk.Label("lblMacros"), "0");
  EXPECT_EQ(desk.Action("Open")->toolTip(), "Open project");
  EXPECT_EQ(desk.Action("Results")->toolTip(), "Visualize computed distributions");
  EXPECT_FALSE(desk.Action("MDV")->isEnabled());
  EXPECT_TRUE(desk.Action("Units")->isEnabled());
  test::Take_Screenshot(w, "main_window_start");
  EXPECT_FALSE(w.findChild<QLabel*>("lblWorkCaption")->isVisible());  // nothing in the work area

  desk.Open_Example();
  ASSERT_TRUE(desk.host.messages.empty()) << desk.host.messages[0];
  EXPECT_EQ(desk.host.chooser_titles, Keys{"Select project"});
  EXPECT_EQ(desk.host.chooser_filters, Keys{"Alle Files (*.*)|*.*|Projekten(*.PVX)|*.PVX|"});
  // The example names its result files, so the window offers them.
  EXPECT_EQ(desk.Visible_Buttons(), Computed_Keys);
  EXPECT_EQ(w.windowTitle().toStdString(),
            w.project().Material_Database_Path + " - " + desk.project + " - KIVA version 8.6.2");
  EXPECT_EQ(fs::path(w.project().Material_Database_Path), fs::path(desk.database));
  EXPECT_EQ(desk.Label("lblMacros"), "4");
  EXPECT_EQ(desk.Label("lblMeshElements"), "104");
  EXPECT_EQ(desk.Label("lblProjectFile"), "WALL.PVX");
  EXPECT_EQ(desk.window->findChild<QLabel*>("lblProjectFile")->toolTip().toStdString(), desk.project);
  EXPECT_EQ(desk.Label("lblDatabase"), "PVX-Concrete.txt");
  EXPECT_EQ(desk.Label("lblState"), "Computed");

  // The results are not there: the program says so and returns to the design.
  desk.host.results_ok = false;
  desk.host.results_message = "Results (WALL.RES) not available";
  desk.Trigger("Results");
  EXPECT_EQ(desk.host.messages, Keys{"Results (WALL.RES) not available"});
  EXPECT_EQ(desk.Visible_Buttons(), Design_Keys);
  EXPECT_EQ(desk.Label("lblState"), "Design");
  EXPECT_FALSE(desk.Action("mnu_Results")->isEnabled());
  EXPECT_TRUE(desk.Action("mnu_Runset")->isEnabled());

  // The design panel has a place in the work area whether or not its window is built in.
  desk.Trigger("Design_Panel");
  ASSERT_NE(w.Shown_Form(), nullptr);
  EXPECT_EQ(w.Work_Caption(), "Design panel");
  EXPECT_TRUE(w.findChild<QLabel*>("lblWorkCaption")->isVisible());
  if (auto* note = qobject_cast<QLabel*>(w.Shown_Form())) {
    EXPECT_TRUE(note->text().contains("not available in this build"));
  }
  desk.Trigger("Runset");
  EXPECT_EQ(desk.Visible_Buttons(), (Keys{"Open", "Quit", "Project_information", "Design_Panel", "Mesh",
                                          "Refresh", "Runset", "Compute"}));
  desk.Trigger("Project_information");
  test::Take_Screenshot(w, "main_window_example");
}

TEST(MainWindow, SaveAsWritesAFileThatReadsBackEqual) {
  Desk desk;
  desk.Open_Example();
  Project& p = desk.window->project();
  const std::string copy = desk.dir.file("COPY.PVX");
  desk.host.files = {copy};
  desk.Trigger("mnuProject_4");
  ASSERT_TRUE(fs::exists(copy));
  EXPECT_EQ(p.Project_File, copy);
  EXPECT_EQ(p.Project_Saved, True_Flag);
  EXPECT_EQ(desk.window->statusBar()->currentMessage().toStdString(), "Saved " + copy);
  EXPECT_EQ(desk.window->windowTitle().toStdString(),
            p.Material_Database_Path + " - " + copy + " - KIVA version 8.6.2");
  Project back;
  Read_Report report;
  ASSERT_EQ(Load_Project(copy, desk.app, back, report), Load_Result::Loaded) << report.detail;
  back.Project_Saved = p.Project_Saved;  // a read counts as not saved until the next save
  EXPECT_EQ(back.Macro, p.Macro);
  EXPECT_EQ(back.Mesh_Element, p.Mesh_Element);
  EXPECT_TRUE(back == p);
  // The new name heads the recent list in the menu.
  EXPECT_EQ(desk.Action("mnuRecent1")->text().toStdString(), "&1 " + copy);
  EXPECT_EQ(desk.Action("mnuRecent2")->text().toStdString(), "&2 " + desk.project);
  // Save keeps the name and asks nothing.
  desk.host.chooser_titles.clear();
  desk.Trigger("mnuProject_3");
  EXPECT_TRUE(desk.host.chooser_titles.empty());
}

TEST(MainWindow, NewAndExitAskFirstAndCancelKeepsEverything) {
  Desk desk;
  mdiPVX& w = *desk.window;
  desk.Open_Example();
  desk.host.questions.clear();
  desk.host.answers = {Answer::Cancel};
  desk.Trigger("mnuProject_0");
  EXPECT_EQ(desk.host.questions, Keys{"All present data will be deleted"});
  EXPECT_EQ(w.project().Macro.count(), 4);
  EXPECT_EQ(w.project().Project_File, desk.project);

  desk.host.questions.clear();
  desk.host.answers = {Answer::Cancel};
  EXPECT_FALSE(w.close());
  EXPECT_TRUE(w.isVisible());
  EXPECT_EQ(desk.host.questions, Keys{"Warning ! Project not saved yet. Saving now ?"});

  desk.host.answers = {Answer::OK, Answer::Yes};  // all data deleted; the default database
  desk.Trigger("mnuProject_0");
  EXPECT_EQ(Node_Count(w.project()), 0);
  EXPECT_TRUE(w.project().Project_File.empty());
  EXPECT_EQ(desk.Label("lblMacros"), "0");
  EXPECT_EQ(desk.Visible_Buttons(), Design_Keys);

  // A new project has no name: Yes asks for one, and a cancelled chooser saves nothing, so the
  // window stays. Quit asks the same.
  desk.host.answers = {Answer::Yes};
  desk.host.files = {""};
  desk.host.chooser_titles.clear();
  desk.Trigger("Quit");
  EXPECT_EQ(desk.host.chooser_titles, Keys{"Save project as"});
  EXPECT_TRUE(w.isVisible());
  EXPECT_EQ(desk.host.ended, 0);

  desk.host.answers = {Answer::No};
  desk.Trigger("mnuProject_5");
  EXPECT_EQ(desk.host.ended, 1);
  EXPECT_FALSE(w.isVisible());
  // The closing was confirmed once; the window does not ask again as it goes.
  EXPECT_EQ(desk.host.questions.back(), "Warning ! Project not saved yet. Saving now ?");
  EXPECT_TRUE(desk.host.answers.empty());
}

TEST(MainWindow, TheRecentMenuListsTheOpenedFileAndOpensIt) {
  Desk desk;
  EXPECT_FALSE(desk.Action("mnuRecent1")->isVisible());
  desk.Open_Example();
  QAction* recent = desk.Action("mnuRecent1");
  ASSERT_NE(recent, nullptr);
  EXPECT_EQ(recent->text().toStdString(), "&1 " + desk.project);
  EXPECT_EQ(desk.store.Get_Setting("PVX", "Recent File List", "File1", ""), desk.project);

  desk.host.answers = {Answer::OK, Answer::Yes};
  desk.Trigger("mnuProject_0");
  ASSERT_EQ(desk.window->project().Macro.count(), 0);
  desk.Trigger("mnuRecent1");
  EXPECT_EQ(desk.window->project().Macro.count(), 4);
  EXPECT_EQ(desk.window->project().Project_File, desk.project);
  EXPECT_EQ(desk.Label("lblMeshElements"), "104");

  // A listed file that went away says so.
  fs::remove(desk.project);
  desk.Trigger("mnuRecent1");
  EXPECT_EQ(desk.host.messages, Keys{"File cannot be opened !"});
}

TEST(MainWindow, UnitsOkSetsTheSystemAndCancelKeepsIt) {
  Desk desk;
  mdiPVX& w = *desk.window;
  desk.Trigger("Units");
  frmUnits* units = w.findChild<frmUnits*>();
  ASSERT_NE(units, nullptr);
  EXPECT_TRUE(QTest::qWaitForWindowExposed(units));
  EXPECT_TRUE(units->Option1[0]->isChecked());
  EXPECT_NE(units->findChild<QLabel*>("Label1_1"), nullptr);
  EXPECT_EQ(units->findChild<QLabel*>("Label1_1")->text(),
            "(in, lb, oF, psi, ksi, lbf, kip, mph, BtuIT/hft2oF, BtuIT/yd3oF)");
  EXPECT_EQ(units->findChild<QLabel*>("Label1_0")->text(),
            "(mm, kg, oC, kPa, MPa, N, kN, m/s, W/m2K, kJ/m3K)");
  test::Take_Screenshot(*units, "units");
  QTest::mouseClick(units->Option1[1], Qt::LeftButton, {}, Indicator(units->Option1[1]));
  QTest::mouseClick(units->cmdOK, Qt::LeftButton);
  EXPECT_EQ(w.project().Metric_Units, False_Flag);
  EXPECT_EQ(desk.Label("lblUnits"), "English Imperial System");
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

  desk.Trigger("Units");
  units = w.findChild<frmUnits*>();
  ASSERT_NE(units, nullptr);
  EXPECT_TRUE(QTest::qWaitForWindowExposed(units));
  EXPECT_TRUE(units->Option1[1]->isChecked());  // the dialog opens on the present system
  QTest::mouseClick(units->Option1[0], Qt::LeftButton, {}, Indicator(units->Option1[0]));
  QTest::mouseClick(units->cmdCancel, Qt::LeftButton);
  EXPECT_EQ(w.project().Metric_Units, False_Flag);
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

  // The form in view is filled again after OK, so it shows its values in the chosen system.
  desk.Trigger("Project_information");
  auto* form = qobject_cast<frmProj*>(w.Shown_Form());
  ASSERT_NE(form, nullptr);
  w.project().Project_Text[0] = "set while the form was open";
  desk.Trigger("Units");
  units = w.findChild<frmUnits*>();
  ASSERT_NE(units, nullptr);
  EXPECT_TRUE(QTest::qWaitForWindowExposed(units));
  QTest::mouseClick(units->Option1[0], Qt::LeftButton, {}, Indicator(units->Option1[0]));
  QTest::mouseClick(units->cmdOK, Qt::LeftButton);
  EXPECT_EQ(w.project().Metric_Units, True_Flag);
  EXPECT_EQ(form->Text1[0]->text(), "set while the form was open");
}

TEST(MainWindow, TheCommandLineOpensItsProjectAtTheStart) {
  test::Temp_Dir dir;
  const std::string project = dir.file("WALL.PVX");
  fs::copy_file(test::Source_Path("examples/WALL.PVX"), project);
  fs::copy_file(test::Source_Path("examples/PVX-Concrete.txt"), dir.file("PVX-Concrete.txt"));
  test::Scripted_Host host;
  test::Memory_Store store;
  mdiPVX window(host, store, dir.path().string());
  host.answers = {Answer::Yes};
  window.Start(false, Quoted_Command_Line(project));
  ASSERT_TRUE(host.messages.empty()) << host.messages[0];
  EXPECT_EQ(window.project().Project_File, project);
  EXPECT_EQ(window.project().Macro.count(), 4);
  EXPECT_EQ(window.windowTitle().toStdString(),
            window.project().Material_Database_Path + " - " + project + " - KIVA version 8.6.2");
  EXPECT_EQ(window.findChild<QLabel*>("lblMeshElements")->text(), "104");
  EXPECT_TRUE(window.findChild<QAction*>("mnuRecent1")->isVisible());
}

TEST(MainWindow, ProjectDescriptionIsWrittenBackOnlyAtApply) {
  Desk desk;
  mdiPVX& w = *desk.window;
  desk.Open_Example();
  const std::string before = w.project().Project_Text[0];
  desk.Trigger("Project_information");
  auto* form = qobject_cast<frmProj*>(w.Shown_Form());
  ASSERT_NE(form, nullptr);
  EXPECT_EQ(w.Work_Caption(), "Project description");
  EXPECT_EQ(form->Text1[0]->text().toStdString(), before);
  form->Text1[0]->clear();
  QTest::keyClicks(form->Text1[0], "Tunnel wall, pour 3");
  QTest::mouseClick(form->cmdCancel, Qt::LeftButton);
  EXPECT_EQ(w.project().Project_Text[0], before);
  EXPECT_EQ(form->Text1[0]->text().toStdString(), before);

  form->Text1[0]->clear();
  QTest::keyClicks(form->Text1[0], "Tunnel wall, pour 3");
  form->Text1[3]->clear();
  QTest::keyClicks(form->Text1[3], "C35/45");
  QTest::mouseClick(form->cmdApply, Qt::LeftButton);
  EXPECT_EQ(w.project().Project_Text[0], "Tunnel wall, pour 3");
  EXPECT_EQ(w.project().Project_Text[3], "C35/45");

  // The description goes to the file with the next save.
  desk.Trigger("mnuProject_3");
  Project back;
  Read_Report report;
  ASSERT_TRUE(Read_Project(desk.project, desk.app, back, report)) << report.detail;
  EXPECT_EQ(back.Project_Text[0], "Tunnel wall, pour 3");
  EXPECT_EQ(back.Project_Text[3], "C35/45");

  // Apply without a change leaves the project saved; a changed line makes it unsaved again.
  ASSERT_EQ(w.project().Project_Saved, True_Flag);
  QTest::mouseClick(form->cmdApply, Qt::LeftButton);
  EXPECT_EQ(w.project().Project_Saved, True_Flag);
  QTest::keyClicks(form->Text1[2], "!");
  QTest::mouseClick(form->cmdApply, Qt::LeftButton);
  EXPECT_EQ(w.project().Project_Saved, False_Flag);

  // Shown again after another command, the form shows the Project's text.
  desk.Trigger("Design_Panel");
  w.project().Project_Text[1] = "changed elsewhere";
  desk.Trigger("Project_information");
  EXPECT_EQ(form->Text1[1]->text(), "changed elsewhere");
}

TEST(MainWindow, TheWorkDirectoryChosenIsKeptForTheNextStart) {
  Desk desk;
  test::Temp_Dir work;
  mdiPVX& w = *desk.window;
  desk.Trigger("mnuProject_1");
  auto* form = qobject_cast<frmChangeWorkDir*>(w.Shown_Form());
  ASSERT_NE(form, nullptr);
  form->Select_Directory(QString::fromStdString(work.path().string()));
  QTest::mouseClick(form->cmdExit, Qt::LeftButton);
  EXPECT_EQ(fs::path(w.shell().Work_Directory), work.path());
  EXPECT_EQ(
      fs::path(test::Read_Text(desk.dir.file("workdir.tmp")).substr(0, w.shell().Work_Directory.size())),
      work.path());
  EXPECT_EQ(desk.host.directories.back(), w.shell().Work_Directory);
  EXPECT_EQ(desk.Label("lblWorkDirectory").remove(QChar(0x200B)).toStdString(), w.shell().Work_Directory);
  EXPECT_EQ(w.Shown_Form(), nullptr);
}

TEST(MainWindow, HelpAndAboutShowTheProgramsTexts) {
  Desk desk;
  mdiPVX& w = *desk.window;
  desk.Trigger("mnuAbout");
  auto* about = w.findChild<QMessageBox*>("frmAbout");
  ASSERT_NE(about, nullptr);
  for (const char* label : {"KIVA version 8.6.2", "TRV version 8.6.2", "PELDANOR version 8.6.2"})
    EXPECT_TRUE(about->text().contains(label)) << label;
  about->close();
  desk.Trigger("mnuHelpWorkflow");
  QTextBrowser* help = w.Help_Window();
  ASSERT_NE(help, nullptr);
  const QString text = help->toPlainText();
  for (const char* heading : {"Open the example", "Design", "Mesh", "Runtime settings", "Compute", "Results"})
    EXPECT_TRUE(text.contains(heading)) << heading;
  test::Take_Screenshot(*help, "help");
  help->close();
}

}  // namespace
}  // namespace pvx

namespace pvx {
namespace {

// The run holds the Project while it pumps events: a command that would replace the Project, or
// the closing of the window, must wait until it ends.
TEST(MainWindow, CommandsAndClosingAreRefusedWhileAComputationRuns) {
  Desk desk;
  mdiPVX& w = *desk.window;
  desk.Open_Example();
  desk.host.answers = {Answer::Yes};  // the example names results: they may go
  desk.Trigger("Compute");
  auto* diag = qobject_cast<frmDiag*>(w.Shown_Form());
  ASSERT_NE(diag, nullptr);
  const std::string opened = w.project().Project_File;

  desk.host.messages.clear();
  desk.host.files = {desk.project};
  bool tried = false;
  bool visible_after_close = false;
  QTimer::singleShot(0, [&] {
    tried = true;
    desk.Trigger("Open");
    desk.Trigger("Design_Panel");
    w.close();
    visible_after_close = w.isVisible();
  });
  QTest::mouseClick(diag->Command2, Qt::LeftButton);
  ASSERT_TRUE(tried);
  EXPECT_TRUE(visible_after_close);
  EXPECT_EQ(std::count(desk.host.messages.begin(), desk.host.messages.end(), Run_In_Progress_Message), 3);
  EXPECT_EQ(desk.host.files.size(), 1u);  // no file chooser came up
  EXPECT_EQ(w.Shown_Form(), diag);        // the run window stayed in view
  EXPECT_EQ(w.project().Project_File, opened);
  EXPECT_EQ(desk.Visible_Buttons(), Computed_Keys);  // the run ended and wrote its results

  // After the run the same commands work again.
  desk.host.messages.clear();
  desk.Trigger("Design_Panel");
  EXPECT_TRUE(desk.host.messages.empty());
  EXPECT_NE(w.Shown_Form(), diag);
}

}  // namespace
}  // namespace pvx
