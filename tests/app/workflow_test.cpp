#include "app/workflow.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "app/project_file.h"
#include "app/project_load.h"
#include "shell_host_fake.h"
#include "support/temp_dir.h"

namespace pvx {
namespace {

namespace fs = std::filesystem;
using B = Toolbar_Button;
using test::Memory_Store;
using test::Scripted_Host;
using test::Temp_Dir;

std::vector<std::string> Visible_Keys(Work_State state) {
  std::vector<std::string> keys;
  const Button_Set set = Buttons_Of(state);
  for (int i = 0; i < Toolbar_Button_Count; ++i)
    if (set[static_cast<std::size_t>(i)]) keys.push_back(Button_Key(static_cast<B>(i)));
  return keys;
}

// A work folder with the example project and its database.
struct Work_Folder {
  Temp_Dir dir;
  std::string project = dir.file("WALL.PVX");
  Work_Folder() {
    fs::copy_file(test::Source_Path("examples/WALL.PVX"), project);
    fs::copy_file(test::Source_Path("examples/PVX-Concrete.txt"), dir.file("PVX-Concrete.txt"));
  }
  std::string path() const { return dir.path().string() + "/"; }
};

TEST(Workflow_Buttons, EachStateAddsToThePreviousOne) {
  using V = std::vector<std::string>;
  EXPECT_EQ(Visible_Keys(Work_State::No_Project), (V{"Open", "Quit", "Project_information", "Design_Panel"}));
  EXPECT_EQ(Visible_Keys(Work_State::Design),
            (V{"Open", "Quit", "Project_information", "Design_Panel", "Mesh", "Refresh", "Runset"}));
  EXPECT_EQ(Visible_Keys(Work_State::Run_Set), (V{"Open", "Quit", "Project_information", "Design_Panel",
                                                  "Mesh", "Refresh", "Runset", "Compute"}));
  EXPECT_EQ(Visible_Keys(Work_State::Computed), (V{"Open", "Quit", "Project_information", "Design_Panel",
                                                   "Mesh", "Refresh", "Runset", "Compute", "Results"}));

  // Keys and tool tips of the toolbar, found back from the key.
  const char* tips[] = {"Open project",
                        "Quit",
                        "Project description",
                        "Design Panel",
                        "FE mesh generation",
                        "",
                        "Set runtime constants",
                        "Compute",
                        "Visualize computed distributions"};
  for (int i = 0; i < Toolbar_Button_Count; ++i) {
    B found{};
    ASSERT_TRUE(Find_Button(Button_Key(static_cast<B>(i)), found));
    EXPECT_EQ(found, static_cast<B>(i));
    EXPECT_STREQ(Button_Tool_Tip(found), tips[i]);
  }
  B found{};
  EXPECT_FALSE(Find_Button("MDV", found));
  EXPECT_FALSE(Find_Button("open", found));
}

TEST(Workflow_Buttons, AHiddenButtonDoesNothingAndVisibleOnesMoveTheState) {
  Project p;
  Shell shell;
  Initialize_Program(shell, p, false);
  Scripted_Host host;
  Memory_Store store;

  // No Project: Mesh, Runset, Compute and Results are not there to be pressed.
  for (const char* key : {"Mesh", "Runset", "Compute", "Results", "Refresh", "nonsense"})
    Toolbar1_ButtonClick(key, p, shell, host, store);
  EXPECT_EQ(host.hide_all, 0);
  EXPECT_TRUE(host.forms.empty());
  EXPECT_EQ(shell.State, Work_State::No_Project);

  Toolbar1_ButtonClick("Design_Panel", p, shell, host, store);
  EXPECT_EQ(shell.State, Work_State::Design);
  EXPECT_EQ(host.forms, std::vector<Work_Form>{Work_Form::Design});
  EXPECT_EQ(host.work_captions, std::vector<std::string>{"Design panel"});
  EXPECT_EQ(host.redraws, 1);

  Toolbar1_ButtonClick("Mesh", p, shell, host, store);
  EXPECT_EQ(host.mesh_forms, 1);
  EXPECT_FALSE(host.mesh_existing);
  EXPECT_FALSE(host.mesh_cooling);
  p.Mesh_Element.add(Mesh_Element{});
  p.Circuit.add(Circuit{});
  Toolbar1_ButtonClick("Mesh", p, shell, host, store);
  EXPECT_TRUE(host.mesh_existing);
  EXPECT_TRUE(host.mesh_cooling);

  Toolbar1_ButtonClick("Runset", p, shell, host, store);
  EXPECT_EQ(shell.State, Work_State::Run_Set);
  EXPECT_EQ(host.forms.back(), Work_Form::Run_Settings);
  EXPECT_TRUE(host.questions.empty());  // no results yet: nothing to destroy
  EXPECT_EQ(host.hide_all, 4);          // every command hides the working forms first
}

TEST(Workflow_Commands, ComputeRebuildsThePrescribedDataAndOpensTheRunWindow) {
  Work_Folder folder;
  Project p;
  Shell shell;
  shell.Work_Directory = folder.path();
  Scripted_Host host;
  Memory_Store store;
  ASSERT_TRUE(Open_Project_File(folder.project, p, shell, host, store)) << host.messages.at(0);
  ASSERT_GT(p.Mesh_Element.count(), 0);
  ASSERT_EQ(shell.State, Work_State::Computed);  // the example names its results
  Prescribed_Node stale;
  stale.Mesh_Node = 999999;
  p.Prescribed_Node.add(stale);
  host.answers = {Answer::Yes};
  Toolbar1_ButtonClick("Runset", p, shell, host, store);
  ASSERT_EQ(host.questions.size(), 1u);
  Toolbar1_ButtonClick("Compute", p, shell, host, store);
  EXPECT_EQ(host.work_captions, std::vector<std::string>{"Start computations"});
  ASSERT_FALSE(host.forms.empty());
  EXPECT_EQ(host.forms.back(), Work_Form::Diagnostics);
  for (const Prescribed_Node& node : p.Prescribed_Node)  // rebuilt from nothing
    EXPECT_NE(node.Mesh_Node, 999999);
  EXPECT_TRUE(host.messages.empty());
  EXPECT_EQ(shell.State, Work_State::Run_Set);
  Computation_Ended(shell, false);  // stopped before a storage
  EXPECT_EQ(shell.State, Work_State::Run_Set);
  Computation_Ended(shell, true);
  EXPECT_EQ(shell.State, Work_State::Computed);

  // Without a mesh the toolbar refuses to start.
  p.Mesh_Element.clear();
  const std::size_t forms = host.forms.size();
  shell.State = Work_State::Run_Set;
  Toolbar1_ButtonClick("Compute", p, shell, host, store);
  EXPECT_EQ(host.forms.size(), forms);
  EXPECT_EQ(host.messages,
            std::vector<std::string>{"There is no mesh to compute: make one with Mesh first."});
}

TEST(Workflow_Commands, ResultsThatCannotBeOpenedFallBackToTheDesign) {
  Project p;
  Shell shell;
  shell.State = Work_State::Computed;
  Scripted_Host host;
  Memory_Store store;
  host.results_message = "Results (B.RES) not available";
  Toolbar1_ButtonClick("Results", p, shell, host, store);
  EXPECT_EQ(host.messages, std::vector<std::string>{"Results (B.RES) not available"});
  EXPECT_EQ(shell.State, Work_State::Design);
  EXPECT_TRUE(host.forms.empty());

  shell.State = Work_State::Computed;
  host.results_ok = true;
  Toolbar1_ButtonClick("Results", p, shell, host, store);
  EXPECT_EQ(shell.State, Work_State::Computed);
  EXPECT_EQ(host.forms, std::vector<Work_Form>{Work_Form::Results});
}

TEST(Destroy_Output, AsksOnlyWithResultsAndYesDropsTheResultsButton) {
  Scripted_Host host;
  Shell shell;
  bool ok = false;
  for (Work_State state : {Work_State::No_Project, Work_State::Design, Work_State::Run_Set}) {
    shell.State = state;
    Destroy_Output(shell, host, ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(shell.State, state);
  }
  EXPECT_TRUE(host.questions.empty());

  shell.State = Work_State::Computed;
  host.answers = {Answer::No};
  Destroy_Output(shell, host, ok);
  EXPECT_FALSE(ok);
  EXPECT_EQ(shell.State, Work_State::Computed);
  ASSERT_EQ(host.questions.size(), 1u);
  EXPECT_EQ(host.questions[0],
            "Already computed results will be destroyed by performing this action. Do you still want to "
            "continue. ");

  host.answers = {Answer::Yes};
  Destroy_Output(shell, host, ok);
  EXPECT_TRUE(ok);
  EXPECT_EQ(shell.State, Work_State::Run_Set);
  EXPECT_FALSE(Shows(Buttons_Of(shell.State), B::Results));

  // Through the toolbar: No ends the run settings command before its form.
  Project p;
  Memory_Store store;
  shell.State = Work_State::Computed;
  host.answers = {Answer::No};
  Toolbar1_ButtonClick("Runset", p, shell, host, store);
  EXPECT_TRUE(host.forms.empty());
  EXPECT_EQ(shell.State, Work_State::Computed);
}

TEST(Closing, AnUnsavedProjectAsksWithThreeAnswers) {
  Temp_Dir dir;
  Memory_Store store;
  auto fresh = [&](Project& p, Shell& shell) {
    Initialize_Program(shell, p, false);
    shell.Work_Directory = dir.path().string() + "/";
  };

  {  // Saved: nothing to ask.
    Project p;
    Shell shell;
    fresh(p, shell);
    p.Project_Saved = True_Flag;
    Scripted_Host host;
    EXPECT_TRUE(Query_Close(p, shell, host, store));
    EXPECT_TRUE(host.questions.empty());
  }
  {  // Cancel refuses; No closes without writing.
    Project p;
    Shell shell;
    fresh(p, shell);
    p.Project_File = dir.file("kept.PVX");
    Scripted_Host host;
    host.answers = {Answer::Cancel, Answer::No};
    EXPECT_FALSE(Query_Close(p, shell, host, store));
    EXPECT_TRUE(Query_Close(p, shell, host, store));
    EXPECT_EQ(host.questions, (std::vector<std::string>(2, "Warning ! Project not saved yet. Saving now ?")));
    EXPECT_FALSE(fs::exists(dir.file("kept.PVX")));
  }
  {  // Yes without a file name: the save dialog comes; cancelled, the closing is refused.
    Project p;
    Shell shell;
    fresh(p, shell);
    Scripted_Host host;
    host.answers = {Answer::Yes};
    host.files = {""};
    mnuProject_Click(5, p, shell, host, store);
    EXPECT_EQ(host.ended, 0);
    EXPECT_EQ(host.chooser_titles, std::vector<std::string>{"Save project as"});
    EXPECT_EQ(host.chooser_filters, std::vector<std::string>{"Alle Files (*.*)|*.*|Projekten(*.PVX)|*.PVX|"});
    EXPECT_EQ(p.Project_Saved, False_Flag);
  }
  {  // Yes with a name chosen: written, and the program ends.
    Project p;
    Shell shell;
    fresh(p, shell);
    Add_Node(p, 12.5, -3);
    Temp_Dir other;
    const std::string target = other.file("new.PVX");
    Scripted_Host host;
    host.answers = {Answer::Yes};
    host.files = {target};
    mnuProject_Click(5, p, shell, host, store);
    EXPECT_EQ(host.ended, 1);
    EXPECT_EQ(p.Project_Saved, True_Flag);
    ASSERT_TRUE(fileexist(target));
    EXPECT_EQ(shell.Work_Directory, other.path().string() + "/");
    EXPECT_EQ(Read_Recent_Files(store).front(), target);
    Project back;
    Read_Report report;
    ASSERT_TRUE(Read_Project(target, shell.Work_Directory, back, report)) << report.detail;
    ASSERT_EQ(Node_Count(back), 1);
    EXPECT_EQ(back.Node_X[1], 12.5);
    EXPECT_EQ(back.Node_Y[1], -3);
  }
}

TEST(Caption, DatabaseProjectAndLabelOrTheMissingDatabaseNote) {
  Project p;
  Shell shell;
  EXPECT_EQ(Main_Caption(p, shell), "KIVA version 8.6.2  (No material database connected.)");
  p.Material_Database_Path = "D:\\data\\PVX-Concrete.txt";
  p.Project_File = "D:\\data\\WALL.PVX";
  EXPECT_EQ(Main_Caption(p, shell), "D:\\data\\PVX-Concrete.txt - D:\\data\\WALL.PVX - KIVA version 8.6.2");
  shell.Version_Label = Mechanical_Label;
  EXPECT_EQ(Main_Caption(p, shell), "D:\\data\\PVX-Concrete.txt - D:\\data\\WALL.PVX - TRV version 8.6.2");
}

TEST(Default_Database, TheLastSortedPvxTextFileIsProposed) {
  Temp_Dir dir;
  const std::string good = test::Read_Text(test::Source_Path("examples/PVX-Concrete.txt"));
  test::Write_Text(dir.file("PVX-Concrete.txt"), good);
  test::Write_Text(dir.file("pvx-zeta.txt"), "this is no database");
  test::Write_Text(dir.file("PVXbeta.txt"), good);  // "pvxb" sorts after "pvx-"
  test::Write_Text(dir.file("zzz.txt"), good);
  test::Write_Text(dir.file("PVX-half.txt"), good.substr(0, good.size() / 2));
  test::Write_Text(dir.file("PVXzz.dat"), good);
  fs::create_directory(dir.file("PVXzzz.txt"));  // a folder is no file
  const std::string app = dir.path().string() + "/";
  EXPECT_EQ(Default_Database_Proposal(app), app + "PVXbeta.txt");

  {  // Yes keeps the proposal and moves to the program's folder.
    Project p;
    Shell shell;
    shell.Application_Path = app;
    Scripted_Host host;
    host.answers = {Answer::Yes};
    ASSERT_TRUE(Choose_Default_Database(p, shell, host));
    EXPECT_EQ(host.questions,
              std::vector<std::string>{"Default Database = " + app + "PVXbeta.txt. Is this correct ?"});
    EXPECT_TRUE(host.chooser_titles.empty());
    EXPECT_EQ(p.Material_Database_Path, app + "PVXbeta.txt");
    EXPECT_EQ(p.Material.count(), 9);
    EXPECT_EQ(p.Material_Color.count(), 9);
    EXPECT_EQ(host.directories, std::vector<std::string>{app});
    EXPECT_EQ(shell.Caption, app + "PVXbeta.txt - " + " - KIVA version 8.6.2");
  }
  {  // No: the chooser; a file that is no database is refused and the chooser comes again.
    Project p;
    Shell shell;
    shell.Application_Path = app;
    Scripted_Host host;
    host.answers = {Answer::No};
    host.files = {dir.file("missing.txt"), dir.file("PVX-half.txt"), dir.file("PVX-Concrete.txt")};
    ASSERT_TRUE(Choose_Default_Database(p, shell, host));
    EXPECT_EQ(host.chooser_titles, (std::vector<std::string>(3, "Select Database")));
    EXPECT_EQ(host.chooser_filters[0], "All Files (*.*)|*.*|Projekten(*.txt)|*.txt|");
    EXPECT_EQ(host.messages,
              (std::vector<std::string>(2, "Default Material Database cannot be opened, try another one !")));
    EXPECT_EQ(p.Material_Database_Path, dir.file("PVX-Concrete.txt"));
    EXPECT_TRUE(host.directories.empty());
  }
  {  // No proposal at all: straight to the chooser; cancelled, no database.
    Temp_Dir empty;
    Project p;
    Shell shell;
    shell.Application_Path = empty.path().string();
    Scripted_Host host;
    EXPECT_EQ(Default_Database_Proposal(shell.Application_Path), "");
    EXPECT_FALSE(Choose_Default_Database(p, shell, host));
    EXPECT_TRUE(host.questions.empty());
    EXPECT_EQ(host.chooser_titles.size(), 1u);
    EXPECT_TRUE(p.Material_Database_Path.empty());
  }
}

TEST(Work_Directory_File, WrittenOnClosingTheFormAndReadAtStart) {
  Temp_Dir app, work;
  Shell shell;
  shell.Application_Path = app.path().string();
  Scripted_Host host;
  Close_Work_Directory_Form(work.path().string(), shell, host);
  EXPECT_EQ(shell.Work_Directory, work.path().string());
  EXPECT_EQ(test::Read_Text(app.file("workdir.tmp")), work.path().string() + "\n");

  Shell next;
  next.Application_Path = app.path().string();
  Scripted_Host start;
  ASSERT_TRUE(Read_Work_Directory(next, start));
  EXPECT_EQ(next.Work_Directory, work.path().string());
  EXPECT_EQ(start.directories, std::vector<std::string>{work.path().string()});

  // A record in quotes and with a carriage return reads the same.
  test::Write_Text(app.file("workdir.tmp"), "\"" + work.path().string() + "\"\r\n");
  next.Work_Directory = "before";
  EXPECT_TRUE(Read_Work_Directory(next, start));
  EXPECT_EQ(next.Work_Directory, work.path().string());

  // Anything that names no folder is ignored.
  for (const std::string& bad : {std::string(""), std::string("\n"), app.file("no-such-folder") + "\n",
                                 app.file("workdir.tmp") + "\n", std::string("\x01\xff\xfe garbage")}) {
    test::Write_Text(app.file("workdir.tmp"), bad);
    next.Work_Directory = "before";
    EXPECT_FALSE(Read_Work_Directory(next, start)) << bad;
    EXPECT_EQ(next.Work_Directory, "before");
  }
  fs::remove(app.file("workdir.tmp"));
  EXPECT_FALSE(Read_Work_Directory(next, start));
  EXPECT_EQ(next.Work_Directory, "before");
}

TEST(Opening, ADamagedFileLeavesTheProjectAndTheStateAsTheyWere) {
  Work_Folder folder;
  Project p;
  Shell shell;
  shell.Work_Directory = folder.path();
  Scripted_Host host;
  Memory_Store store;
  host.files = {folder.project};
  mnuProject_Click(2, p, shell, host, store);
  ASSERT_TRUE(host.messages.empty()) << host.messages[0];
  EXPECT_EQ(host.chooser_titles, std::vector<std::string>{"Select project"});
  EXPECT_EQ(shell.State, Work_State::Computed);  // the example names its results
  EXPECT_EQ(p.Project_File, folder.project);
  EXPECT_EQ(p.Project_Saved, False_Flag);
  EXPECT_EQ(shell.Caption, p.Material_Database_Path + " - " + folder.project + " - KIVA version 8.6.2");
  shell.State = Work_State::Run_Set;

  const std::string text = test::Read_Text(folder.project);
  const std::string damaged = folder.dir.file("DAMAGED.PVX");
  test::Write_Text(damaged, text.substr(0, text.size() / 2));
  const Project before = p;
  const std::string caption = shell.Caption;
  host.files = {damaged};
  mnuProject_Click(2, p, shell, host, store);
  EXPECT_EQ(host.messages, std::vector<std::string>{"File cannot be opened !"});
  EXPECT_TRUE(p == before);
  EXPECT_EQ(shell.State, Work_State::Run_Set);
  EXPECT_EQ(shell.Caption, caption);
  EXPECT_EQ(Read_Recent_Files(store), std::vector<std::string>{folder.project});

  // A recent entry whose file went away says so and changes nothing.
  Add_Recent_File(store, folder.dir.file("GONE.PVX"));
  host.messages.clear();
  EXPECT_FALSE(Open_Recent_File(1, p, shell, host, store));
  EXPECT_EQ(host.messages, std::vector<std::string>{"File cannot be opened !"});
  EXPECT_TRUE(p == before);
}

TEST(Opening, AFileWithResultsIsComputedUnlessItsVersionPredatesThem) {
  Work_Folder folder;
  Project p;
  Shell shell;
  shell.Work_Directory = folder.path();
  Scripted_Host host;
  Memory_Store store;
  ASSERT_TRUE(Open_Project_File(folder.project, p, shell, host, store));
  p.Result_File_Name = "B.RES";
  const std::string with_results = folder.dir.file("RESULTS.PVX");
  test::Write_Text(with_results, Write_Project_Text(p, 109, "PVX-Concrete.txt"));
  const std::string old = folder.dir.file("OLD.PVX");
  test::Write_Text(old, Write_Project_Text(p, 107, "PVX-Concrete.txt"));

  // Started from the command line, the path in quotes; the file's folder becomes the work directory.
  shell.Work_Directory = "/nowhere/";
  ASSERT_TRUE(Direct_Start("\"" + with_results + "\"", p, shell, host, store));
  EXPECT_EQ(shell.Work_Directory, folder.path());
  EXPECT_EQ(shell.State, Work_State::Computed);
  EXPECT_EQ(p.Result_File_Name, "B.RES");

  ASSERT_TRUE(Open_Project_File(old, p, shell, host, store));
  EXPECT_EQ(shell.State, Work_State::Design);
  EXPECT_EQ(p.Result_File_Name, "");

  // From the recent list: the folder of the file becomes the work directory.
  shell.Work_Directory = "/nowhere/";
  const std::vector<std::string> recent = Read_Recent_Files(store);
  ASSERT_EQ(recent.size(), 3u);
  EXPECT_EQ(recent[1], with_results);
  ASSERT_TRUE(Open_Recent_File(2, p, shell, host, store));
  EXPECT_EQ(shell.Work_Directory, folder.path());
  EXPECT_EQ(shell.State, Work_State::Computed);
  EXPECT_EQ(Read_Recent_Files(store).front(), with_results);
}

TEST(New_Command, AsksBeforeDeletingNodesAndStartsADesign) {
  Temp_Dir app;
  test::Write_Text(app.file("PVX-Concrete.txt"),
                   test::Read_Text(test::Source_Path("examples/PVX-Concrete.txt")));
  Project p;
  Shell shell;
  Initialize_Program(shell, p, false);
  shell.Application_Path = app.path().string();
  Memory_Store store;
  Add_Node(p, 1, 2);
  p.Project_Saved = True_Flag;
  Scripted_Host host;
  host.answers = {Answer::Cancel};
  mnuProject_Click(0, p, shell, host, store);
  EXPECT_EQ(Node_Count(p), 1);
  EXPECT_EQ(host.questions, std::vector<std::string>{"All present data will be deleted"});
  EXPECT_EQ(shell.State, Work_State::No_Project);

  host.answers = {Answer::OK, Answer::Yes};
  mnuProject_Click(0, p, shell, host, store);
  EXPECT_EQ(Node_Count(p), 0);
  EXPECT_EQ(p.Project_Saved, False_Flag);
  EXPECT_EQ(p.Material.count(), 9);
  EXPECT_EQ(p.Grid_X_Max, 2000);
  EXPECT_EQ(shell.State, Work_State::Design);
  EXPECT_EQ(host.redraws, 1);
}

TEST(Start, WorkDirectoryDatabaseAndCommandLineInTheirOrder) {
  Temp_Dir app;
  Work_Folder work;
  test::Write_Text(app.file("PVX-Concrete.txt"),
                   test::Read_Text(test::Source_Path("examples/PVX-Concrete.txt")));
  test::Write_Text(app.file("workdir.tmp"), work.path() + "\n");
  Project p;
  Shell shell;
  shell.Application_Path = app.path().string() + "/";
  Scripted_Host host;
  Memory_Store store;
  Add_Recent_File(store, "old.PVX");

  host.answers = {Answer::No};  // the proposal is refused and the chooser cancelled
  std::vector<std::string> recent = Start_Main_Window(p, shell, host, store, true, "");
  EXPECT_EQ(shell.Work_Directory, work.path());
  EXPECT_EQ(shell.State, Work_State::No_Project);
  EXPECT_EQ(shell.Caption, "KIVA version 8.6.2  (No material database connected.)");
  EXPECT_TRUE(shell.Decimal_Comma);
  EXPECT_EQ(recent, std::vector<std::string>{"old.PVX"});

  // Yes to the proposal moves to the program's folder and reads the default database there; the
  // file of the command line then makes its own folder the work directory and reads the database
  // beside it.
  host.answers = {Answer::Yes};
  recent = Start_Main_Window(p, shell, host, store, false, "\"" + work.project + "\"");
  EXPECT_EQ(shell.Work_Directory, work.path());
  EXPECT_EQ(p.Project_File, work.project);
  EXPECT_EQ(p.Material_Database_Path, work.path() + "PVX-Concrete.txt");
  EXPECT_EQ(shell.State, Work_State::Computed);
  EXPECT_EQ(recent, (std::vector<std::string>{work.project, "old.PVX"}));
}

TEST(File_Exist, OnlyRegularFilesAndNoErrors) {
  Temp_Dir dir;
  test::Write_Text(dir.file("a.txt"), "x");
  EXPECT_TRUE(fileexist(dir.file("a.txt")));
  EXPECT_FALSE(fileexist(dir.file("b.txt")));
  EXPECT_FALSE(fileexist(dir.path().string()));
  EXPECT_FALSE(fileexist(""));
  EXPECT_FALSE(fileexist(std::string(5000, 'x')));
}

}  // namespace
}  // namespace pvx
