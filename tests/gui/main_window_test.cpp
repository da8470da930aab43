// The main window driven as a user drives it: menus and toolbar buttons are triggered, questions
// and file choices come from a scripted host, the recent list lives in a map. What is checked is
// the Project, the files written and what the window shows afterwards.
#include "main_window.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <algorithm>

#include "form_fixture.h"
#include "frm_change_work_dir.h"
#include "frm_diag.h"
#include "frm_proj.h"
#include "frm_units.h"

namespace pvx {
namespace {

namespace fs = std::filesystem;
using Keys = std::vector<std::string>;

// The program's folder with its database and a copy of the example, the window started in it.
struct Desk {
  test::Work_Folder folder;
  const test::Temp_Dir& dir = folder.dir;
  std::string project = folder.project;
  test::Scripted_Host host;
  test::Memory_Store store;
  mdiPVX window{host, store, dir.path().string()};
  mdiPVX& w = window;

  Desk() {
    host.answers = {Answer::Yes};  // the proposed default database
    window.Start(false, "");
    window.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
  }
  QAction* Action(const char* name) { return window.findChild<QAction*>(name); }
  void Trigger(const char* name) { Action(name)->trigger(); }
  QString Label(const char* name) { return window.findChild<QLabel*>(name)->text(); }
  Keys Buttons() {
    Keys keys;
    for (int i = 0; i < Toolbar_Button_Count; ++i)
      if (window.Toolbar_Action(static_cast<Toolbar_Button>(i))->isVisible())
        keys.push_back(Button_Key(static_cast<Toolbar_Button>(i)));
    return keys;
  }
  void Open_Example() {
    host.files = {project};
    Trigger("Open");
  }
};

const Keys Design_Keys = {"Open", "Quit", "Project_information", "Design_Panel", "Mesh", "Refresh", "Runset"};
const Keys Computed_Keys = {
    "Open", "Quit", "Project_information", "Design_Panel", "Mesh", "Refresh", "Runset", "Compute", "Results"};

TEST(MainWindow, StartsEmptyThenOpensTheExampleAndFallsBackWhenItsResultsAreMissing) {
  Desk desk;
  EXPECT_EQ(desk.Buttons(), (Keys{"Open", "Quit", "Project_information", "Design_Panel"}));
  test::Take_Screenshot(desk.w, "main_window_start");

  desk.Open_Example();
  ASSERT_TRUE(desk.host.messages.empty()) << desk.host.messages[0];
  // The example names its result files, so the window offers them.
  EXPECT_EQ(desk.Buttons(), Computed_Keys);
  EXPECT_EQ(desk.w.windowTitle().toStdString(),
            desk.w.project().Material_Database_Path + " - " + desk.project + " - KIVA version 8.6.2");
  EXPECT_EQ(desk.Label("lblMacros") + " " + desk.Label("lblMeshElements") + " " + desk.Label("lblState"),
            "4 104 Computed");

  // The results are not there: the program says so and returns to the design.
  desk.host.results_message = "Results (WALL.RES) not available";
  desk.Trigger("Results");
  EXPECT_EQ(desk.host.messages, Keys{"Results (WALL.RES) not available"});
  EXPECT_EQ(desk.Buttons(), Design_Keys);
  EXPECT_EQ(desk.Label("lblState"), "Design");
  desk.Trigger("Project_information");
  test::Take_Screenshot(desk.w, "main_window_example");

  // A description typed and cancelled shows the old one again; applied and saved under a new name
  // it reads back with the rest of the project.
  Project& p = desk.w.project();
  auto* form = qobject_cast<frmProj*>(desk.w.Shown_Form());
  ASSERT_NE(form, nullptr);
  const std::string before = p.Project_Text[0];
  test::Type(form->Text1[0], "Tunnel wall, pour 3");
  QTest::mouseClick(form->cmdCancel, Qt::LeftButton);
  EXPECT_EQ(p.Project_Text[0], before);
  EXPECT_EQ(form->Text1[0]->text().toStdString(), before);
  test::Type(form->Text1[0], "Tunnel wall, pour 3");
  QTest::mouseClick(form->cmdApply, Qt::LeftButton);
  const std::string copy = desk.dir.file("COPY.PVX");
  desk.host.files = {copy};
  desk.Trigger("mnuProject_4");
  EXPECT_EQ(p.Project_File, copy);
  EXPECT_EQ(p.Project_Saved, True_Flag);
  Project back;
  Read_Report report;
  ASSERT_EQ(Load_Project(copy, desk.dir.path().string(), back, report), Load_Result::Loaded) << report.detail;
  EXPECT_EQ(back.Project_Text[0], "Tunnel wall, pour 3");
  back.Project_Saved = p.Project_Saved;  // a read counts as not saved until the next save
  EXPECT_TRUE(back == p);
  // Save keeps the name without asking. Apply without a change leaves the project saved; a changed
  // line makes it unsaved again.
  desk.host.chooser_titles.clear();
  desk.Trigger("mnuProject_3");
  EXPECT_TRUE(desk.host.chooser_titles.empty());
  QTest::mouseClick(form->cmdApply, Qt::LeftButton);
  EXPECT_EQ(p.Project_Saved, True_Flag);
  QTest::keyClicks(form->Text1[2], "!");
  QTest::mouseClick(form->cmdApply, Qt::LeftButton);
  EXPECT_EQ(p.Project_Saved, False_Flag);
  desk.Trigger("mnuHelpWorkflow");
  QTextBrowser* help = desk.w.Help_Window();
  EXPECT_TRUE(help->toPlainText().contains("Runtime settings"));
  test::Take_Screenshot(*help, "help");
  help->close();
}

TEST(MainWindow, TheSettingsAreKeptAndNewExitAndTheRecentListAskFirst) {
  Desk desk;
  // OK takes the system clicked, Cancel keeps the one in force, which the dialog opens on.
  for (auto [option, ok, metric] :
       {std::tuple{1, true, False_Flag}, {0, false, False_Flag}, {0, true, True_Flag}}) {
    desk.Trigger("Units");
    frmUnits* units = desk.w.findChild<frmUnits*>();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(units));
    EXPECT_TRUE(units->Option1[desk.w.project().Metric_Units ? 0 : 1]->isChecked());
    if (option == 1) test::Take_Screenshot(*units, "units");
    // Where a user clicks a radio button: on its circle, not in the empty space of a wide column.
    QTest::mouseClick(units->Option1[option], Qt::LeftButton, {},
                      QPoint(6, units->Option1[option]->height() / 2));
    QTest::mouseClick(ok ? units->cmdOK : units->cmdCancel, Qt::LeftButton);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(desk.w.project().Metric_Units, metric);
    EXPECT_EQ(desk.Label("lblUnits"), metric ? SI_Units_Text : Imperial_Units_Text);
  }

  test::Temp_Dir work;
  desk.Trigger("mnuProject_1");
  auto* form = qobject_cast<frmChangeWorkDir*>(desk.w.Shown_Form());
  ASSERT_NE(form, nullptr);
  form->Select_Directory(QString::fromStdString(work.path().string()));
  QTest::mouseClick(form->cmdExit, Qt::LeftButton);
  const std::string& chosen = desk.w.shell().Work_Directory;
  EXPECT_EQ(fs::path(chosen), work.path());
  EXPECT_EQ(fs::path(test::Read_Text(desk.dir.file("workdir.tmp")).substr(0, chosen.size())), work.path());

  desk.Open_Example();  // and so to the head of the recent list
  desk.host.questions.clear();
  desk.host.answers = {Answer::Cancel, Answer::Cancel};
  desk.Trigger("mnuProject_0");
  EXPECT_FALSE(desk.w.close());
  EXPECT_EQ(desk.host.questions, (Keys{All_Data_Deleted_Warning, Not_Saved_Question}));
  EXPECT_EQ(desk.w.project().Macro.count(), 4);

  desk.host.answers = {Answer::OK, Answer::Yes};  // all data deleted; the default database
  desk.Trigger("mnuProject_0");
  EXPECT_EQ(Node_Count(desk.w.project()), 0);
  EXPECT_EQ(desk.Buttons(), Design_Keys);
  desk.Trigger("mnuRecent1");
  EXPECT_EQ(desk.w.project().Project_File, desk.project);
  EXPECT_EQ(desk.Label("lblMeshElements"), "104");

  // A new project has no name: Yes asks for one, and a cancelled chooser saves nothing, so the
  // window stays. Exit asks the same, and No ends the program without asking again.
  desk.host.answers = {Answer::OK, Answer::Yes, Answer::Yes, Answer::No};
  desk.host.files = {""};
  desk.Trigger("mnuProject_0");
  desk.Trigger("Quit");
  EXPECT_EQ(desk.host.chooser_titles.back(), "Save project as");
  EXPECT_EQ(desk.host.ended, 0);
  desk.Trigger("mnuProject_5");
  EXPECT_EQ(desk.host.ended, 1);
  EXPECT_FALSE(desk.w.isVisible());
  EXPECT_TRUE(desk.host.answers.empty());
}

// The run holds the Project while it pumps events: a command that would replace the Project, or
// the closing of the window, must wait until it ends.
TEST(MainWindow, CommandsAndClosingAreRefusedWhileAComputationRuns) {
  Desk desk;
  desk.Open_Example();
  desk.host.answers = {Answer::Yes};  // the example names results: they may go
  desk.Trigger("Compute");
  auto* diag = qobject_cast<frmDiag*>(desk.w.Shown_Form());
  ASSERT_NE(diag, nullptr);
  desk.host.messages.clear();
  desk.host.files = {desk.dir.file("COPY.PVX")};
  bool tried = false, visible_after_close = false;
  QTimer::singleShot(0, [&] {
    tried = true;
    desk.Trigger("Open");
    desk.Trigger("Design_Panel");
    desk.w.close();
    visible_after_close = desk.w.isVisible();
  });
  QTest::mouseClick(diag->Command2, Qt::LeftButton);
  ASSERT_TRUE(tried);
  EXPECT_TRUE(visible_after_close);
  EXPECT_EQ(desk.host.messages, Keys(3, Run_In_Progress_Message));
  EXPECT_EQ(desk.host.files.size(), 1u);     // no file chooser came up
  EXPECT_EQ(desk.w.Shown_Form(), diag);      // the run window stayed in view
  EXPECT_EQ(desk.Buttons(), Computed_Keys);  // the run ended and wrote its results
  // After the run the same commands work again.
  desk.host.messages.clear();
  desk.Trigger("Design_Panel");
  EXPECT_TRUE(desk.host.messages.empty());
  EXPECT_NE(desk.w.Shown_Form(), diag);
}

}  // namespace
}  // namespace pvx
