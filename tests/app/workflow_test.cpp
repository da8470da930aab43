#include "app/workflow.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "app/project_file.h"
#include "shell_host_fake.h"
#include "support/temp_dir.h"

namespace pvx {
namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;
using test::Session;
using test::Temp_Dir;
using test::Work_Folder;

TEST(Workflow, EachStateAddsButtonsAndAHiddenButtonDoesNothing) {
  const Texts all = {"Open",    "Quit",   "Project_information", "Design_Panel", "Mesh", "Refresh", "Runset",
                     "Compute", "Results"};
  const std::pair<Work_State, std::size_t> shown[] = {{Work_State::No_Project, 4},
                                                      {Work_State::Design, 7},
                                                      {Work_State::Run_Set, 8},
                                                      {Work_State::Computed, 9}};
  for (const auto& [state, count] : shown)
    for (std::size_t i = 0; i < all.size(); ++i) {
      Toolbar_Button button{};
      ASSERT_TRUE(Find_Button(all[i], button));
      EXPECT_EQ(static_cast<std::size_t>(button), i);
      EXPECT_EQ(Shows(Buttons_Of(state), button), i < count) << all[i] << " " << count;
    }
  Session s;
  Initialize_Program(s.shell, s.p, false);
  for (const char* key : {"Mesh", "Runset", "Compute", "Results", "Refresh", "nonsense"})
    s.Click(key);
  EXPECT_EQ(s.host.hide_all, 0);
  EXPECT_TRUE(s.host.forms.empty());
  EXPECT_EQ(s.shell.State, Work_State::No_Project);

  s.Click("Design_Panel");
  EXPECT_EQ(s.shell.State, Work_State::Design);
  EXPECT_EQ(s.host.forms, std::vector<Work_Form>{Work_Form::Design});
  EXPECT_EQ(s.host.work_captions, Texts{"Design panel"});
  EXPECT_EQ(s.host.redraws, 1);
  // The mesh form shows an existing mesh, and the cooling button only with circuits.
  s.Click("Mesh");
  EXPECT_FALSE(s.host.mesh_existing || s.host.mesh_cooling);
  s.p.Mesh_Element.add(Mesh_Element{});
  s.p.Circuit.add(Circuit{});
  s.Click("Mesh");
  EXPECT_TRUE(s.host.mesh_existing && s.host.mesh_cooling);
  s.Click("Runset");
  EXPECT_EQ(s.shell.State, Work_State::Run_Set);
  EXPECT_EQ(s.host.forms.back(), Work_Form::Run_Settings);
  EXPECT_TRUE(s.host.questions.empty());  // no results yet: nothing to destroy
  EXPECT_EQ(s.host.hide_all, 4);          // every command hides the working forms first
}

TEST(Workflow, FromOpeningTheExampleToItsResults) {
  Work_Folder folder;
  Temp_Dir elsewhere;
  Session s;
  s.shell.Work_Directory = elsewhere.path().string();
  s.host.files = {"", folder.project};  // the first choice is cancelled: nothing moves
  s.Menu(2);
  EXPECT_EQ(s.shell.Work_Directory, elsewhere.path().string());
  // The project's folder becomes the work directory, where its database is found.
  s.Menu(2);
  ASSERT_TRUE(s.host.messages.empty()) << s.host.messages[0];
  EXPECT_EQ(s.host.chooser_titles, Texts(2, "Select project"));
  EXPECT_EQ(s.shell.Work_Directory, folder.path());
  EXPECT_EQ(s.host.directories, Texts{folder.path()});
  EXPECT_EQ(s.p.Material_Database_Path, folder.path() + "PVX-Concrete.txt");
  EXPECT_EQ(s.shell.Caption, s.p.Material_Database_Path + " - " + folder.project + " - KIVA version 8.6.2");
  EXPECT_EQ(s.shell.State, Work_State::Computed);  // the example names its results

  // Changing the run settings destroys the results: No keeps them and the form stays away.
  s.host.answers = {Answer::No, Answer::Yes};
  s.Click("Runset");
  EXPECT_EQ(s.shell.State, Work_State::Computed);
  EXPECT_TRUE(s.host.forms.empty());
  s.Click("Runset");
  EXPECT_EQ(s.host.questions, Texts(2,
                                    "Already computed results will be destroyed by performing this action. "
                                    "Do you still want to continue. "));
  EXPECT_EQ(s.shell.State, Work_State::Run_Set);
  EXPECT_FALSE(Shows(Buttons_Of(s.shell.State), Toolbar_Button::Results));

  // Compute rebuilds the prescribed data from nothing and opens the run window.
  Prescribed_Node stale;
  stale.Mesh_Node = 999999;
  s.p.Prescribed_Node.add(stale);
  s.Click("Compute");
  EXPECT_EQ(s.host.work_captions, Texts{"Start computations"});
  EXPECT_EQ(s.host.forms.back(), Work_Form::Diagnostics);
  EXPECT_EQ(s.p.Prescribed_Node.count(), 0);
  Computation_Ended(s.shell, false);  // stopped before anything was stored
  EXPECT_EQ(s.shell.State, Work_State::Run_Set);
  Computation_Ended(s.shell, true);
  EXPECT_EQ(s.shell.State, Work_State::Computed);

  // Results that cannot be opened send the user back to the design.
  s.host.results_message = "Results (B.RES) not available";
  s.Click("Results");
  EXPECT_EQ(s.host.messages, Texts{"Results (B.RES) not available"});
  EXPECT_EQ(s.shell.State, Work_State::Design);
  s.shell.State = Work_State::Computed;
  s.host.results_ok = true;
  s.Click("Results");
  EXPECT_EQ(s.host.forms.back(), Work_Form::Results);
  EXPECT_EQ(s.shell.State, Work_State::Computed);

  // Without a mesh the toolbar refuses to start.
  s.p.Mesh_Element.clear();
  s.shell.State = Work_State::Run_Set;
  s.host.messages.clear();
  s.Click("Compute");
  EXPECT_EQ(s.host.forms.back(), Work_Form::Results);
  EXPECT_EQ(s.host.messages, Texts{"There is no mesh to compute: make one with Mesh first."});
}

TEST(Workflow, ADamagedOrVanishedFileChangesNothing) {
  Work_Folder folder;
  Session s;
  s.shell.Work_Directory = folder.path();
  ASSERT_TRUE(s.Open(folder.project));
  s.shell.State = Work_State::Run_Set;
  const std::string text = test::Read_Text(folder.project);
  test::Write_Text(folder.dir.file("DAMAGED.PVX"), text.substr(0, text.size() / 2));
  Add_Recent_File(s.store, folder.dir.file("GONE.PVX"));
  const Project before = s.p;
  const std::string caption = s.shell.Caption;
  s.host.files = {folder.dir.file("DAMAGED.PVX")};
  s.Menu(2);
  EXPECT_FALSE(Open_Recent_File(1, s.p, s.shell, s.host, s.store));
  EXPECT_EQ(s.host.messages, Texts(2, "File cannot be opened !"));
  EXPECT_TRUE(s.p == before);
  EXPECT_EQ(s.shell.State, Work_State::Run_Set);
  EXPECT_EQ(s.shell.Caption, caption);
  EXPECT_EQ(Read_Recent_Files(s.store), (Texts{folder.dir.file("GONE.PVX"), folder.project}));
}

TEST(Workflow, AFileWithResultsIsComputedUnlessItsVersionPredatesThem) {
  Work_Folder folder;
  Session s;
  s.shell.Work_Directory = folder.path();
  ASSERT_TRUE(s.Open(folder.project));
  s.p.Result_File_Name = "B.RES";
  const std::string with_results = folder.dir.file("RESULTS.PVX"), old = folder.dir.file("OLD.PVX");
  test::Write_Text(with_results, Write_Project_Text(s.p, 109, "PVX-Concrete.txt"));
  test::Write_Text(old, Write_Project_Text(s.p, 107, "PVX-Concrete.txt"));
  // Started from the command line, the path in quotes; the file's folder becomes the work directory.
  s.shell.Work_Directory = "/nowhere/";
  ASSERT_TRUE(Direct_Start("\"" + with_results + "\"", s.p, s.shell, s.host, s.store));
  EXPECT_EQ(s.shell.Work_Directory, folder.path());
  EXPECT_EQ(s.shell.State, Work_State::Computed);
  EXPECT_EQ(s.p.Result_File_Name, "B.RES");
  ASSERT_TRUE(s.Open(old));
  EXPECT_EQ(s.shell.State, Work_State::Design);
  EXPECT_EQ(s.p.Result_File_Name, "");
  // From the recent list, as from the menu.
  s.shell.Work_Directory = "/nowhere/";
  ASSERT_EQ(Read_Recent_Files(s.store), (Texts{old, with_results, folder.project}));
  ASSERT_TRUE(Open_Recent_File(2, s.p, s.shell, s.host, s.store));
  EXPECT_EQ(s.shell.Work_Directory, folder.path());
  EXPECT_EQ(s.shell.State, Work_State::Computed);
  EXPECT_EQ(Read_Recent_Files(s.store).front(), with_results);
}

TEST(Workflow, ClosingAnUnsavedProjectAsksWithThreeAnswers) {
  Temp_Dir dir, other;
  const std::string target = other.file("new.PVX");
  // Saved or not, the answers, the file chooser's choices, whether the program ends, the choosers.
  const std::tuple<bool, std::deque<Answer>, std::deque<std::string>, int, std::size_t> cases[] = {
      {true, {}, {}, 1, 0},                     // saved: nothing to ask
      {false, {Answer::Cancel}, {}, 0, 0},      // cancel refuses
      {false, {Answer::No}, {}, 1, 0},          // no closes without writing
      {false, {Answer::Yes}, {""}, 0, 1},       // yes, but the save dialog is cancelled
      {false, {Answer::Yes}, {target}, 1, 1}};  // yes with a name: written there
  for (const auto& [saved, answers, files, ended, choosers] : cases) {
    Session s;
    Initialize_Program(s.shell, s.p, false);
    s.shell.Work_Directory = dir.path().string() + "/";
    Add_Node(s.p, 12.5, -3);
    s.p.Project_Saved = saved ? True_Flag : False_Flag;
    if (choosers == 0) s.p.Project_File = dir.file("kept.PVX");  // never written here
    s.host.answers = answers;
    s.host.files = files;
    s.Menu(5);
    EXPECT_EQ(s.host.ended, ended);
    EXPECT_EQ(s.host.questions, saved ? Texts{} : Texts{"Warning ! Project not saved yet. Saving now ?"});
    EXPECT_EQ(s.host.chooser_titles, Texts(choosers, "Save project as"));
    EXPECT_EQ(s.host.chooser_filters, Texts(choosers, "Alle Files (*.*)|*.*|Projekten(*.PVX)|*.PVX|"));
  }
  Project back;
  Read_Report report;
  ASSERT_TRUE(Read_Project(target, other.path().string(), back, report)) << report.detail;
  ASSERT_EQ(Node_Count(back), 1);
  EXPECT_EQ(back.Node_X[1], 12.5);
  EXPECT_EQ(back.Node_Y[1], -3);
  EXPECT_TRUE(fs::is_empty(dir.path()));
}

TEST(Workflow, TheCaptionNamesDatabaseProjectAndLabelOrTheMissingDatabase) {
  Project p;
  Shell shell;
  EXPECT_EQ(Main_Caption(p, shell), "KIVA version 8.6.2  (No material database connected.)");
  p.Material_Database_Path = "D:\\data\\PVX-Concrete.txt";
  p.Project_File = "D:\\data\\WALL.PVX";
  shell.Version_Label = Mechanical_Label;
  EXPECT_EQ(Main_Caption(p, shell), "D:\\data\\PVX-Concrete.txt - D:\\data\\WALL.PVX - TRV version 8.6.2");
}

TEST(Workflow, TheLastSortedPvxTextFileIsProposedAndAFaultyChoiceAskedAgain) {
  Temp_Dir dir;
  const std::string good = test::Read_Text(test::Source_Path("examples/PVX-Concrete.txt"));
  for (const char* name : {"PVX-Concrete.txt", "PVXbeta.txt", "zzz.txt", "PVXzz.dat"})
    test::Write_Text(dir.file(name), good);  // "pvxb" sorts after "pvx-"; only .txt counts
  test::Write_Text(dir.file("PVX-half.txt"), good.substr(0, good.size() / 2));
  fs::create_directory(dir.file("PVXzzz.txt"));  // a folder is no file
  const std::string app = dir.path().string() + "/";
  // Yes keeps the proposal and moves to the program's folder.
  Session yes;
  yes.shell.Application_Path = app;
  yes.host.answers = {Answer::Yes};
  ASSERT_TRUE(Choose_Default_Database(yes.p, yes.shell, yes.host));
  EXPECT_EQ(yes.host.questions, Texts{"Default Database = " + app + "PVXbeta.txt. Is this correct ?"});
  EXPECT_EQ(yes.p.Material_Database_Path, app + "PVXbeta.txt");
  EXPECT_EQ(yes.p.Material.count(), 9);
  EXPECT_EQ(yes.p.Material_Color.count(), 9);
  EXPECT_EQ(yes.host.directories, Texts{app});
  // No: the chooser; a file that is no database is refused and the chooser comes again.
  Session no;
  no.shell.Application_Path = app;
  no.host.answers = {Answer::No};
  no.host.files = {dir.file("missing.txt"), dir.file("PVX-half.txt"), dir.file("PVX-Concrete.txt")};
  ASSERT_TRUE(Choose_Default_Database(no.p, no.shell, no.host));
  EXPECT_EQ(no.host.chooser_titles, Texts(3, "Select Database"));
  EXPECT_EQ(no.host.messages, Texts(2, "Default Material Database cannot be opened, try another one !"));
  EXPECT_EQ(no.p.Material_Database_Path, dir.file("PVX-Concrete.txt"));
  // No proposal at all: straight to the chooser; cancelled, no database.
  Temp_Dir empty;
  Session none;
  none.shell.Application_Path = empty.path().string();
  EXPECT_FALSE(Choose_Default_Database(none.p, none.shell, none.host));
  EXPECT_TRUE(none.host.questions.empty());
  EXPECT_EQ(none.host.chooser_titles.size(), 1u);
  EXPECT_TRUE(none.p.Material_Database_Path.empty());
}

TEST(Workflow, TheWorkDirectoryFileIsWrittenOnClosingItsFormAndReadAtStart) {
  Temp_Dir app, work;
  Session s;
  s.shell.Application_Path = app.path().string();
  Close_Work_Directory_Form(work.path().string(), s.shell, s.host);
  EXPECT_EQ(s.shell.Work_Directory, work.path().string());
  EXPECT_EQ(test::Read_Text(app.file("workdir.tmp")), work.path().string() + "\n");
  // A record as written, in quotes with a carriage return, or naming no folder.
  const std::pair<std::string, bool> records[] = {{work.path().string() + "\n", true},
                                                  {"\"" + work.path().string() + "\"\r\n", true},
                                                  {"", false},
                                                  {"\n", false},
                                                  {app.file("no-such-folder") + "\n", false},
                                                  {app.file("workdir.tmp") + "\n", false},
                                                  {"\x01\xff\xfe garbage", false}};
  for (const auto& [record, read] : records) {
    test::Write_Text(app.file("workdir.tmp"), record);
    Session next;
    next.shell.Application_Path = app.path().string();
    next.shell.Work_Directory = "before";
    EXPECT_EQ(Read_Work_Directory(next.shell, next.host), read) << record;
    EXPECT_EQ(next.shell.Work_Directory, read ? work.path().string() : "before") << record;
    EXPECT_EQ(next.host.directories, read ? Texts{work.path().string()} : Texts{}) << record;
  }
  fs::remove(app.file("workdir.tmp"));
  EXPECT_FALSE(Read_Work_Directory(s.shell, s.host));
}

TEST(Workflow, StartReadsTheWorkDirectoryTheDatabaseAndTheCommandLineInThatOrder) {
  Temp_Dir app;
  Work_Folder work;
  fs::copy_file(test::Source_Path("examples/PVX-Concrete.txt"), app.file("PVX-Concrete.txt"));
  test::Write_Text(app.file("workdir.tmp"), work.path() + "\n");
  Session s;
  s.shell.Application_Path = app.path().string() + "/";
  Add_Recent_File(s.store, "old.PVX");
  s.host.answers = {Answer::No};  // the proposal is refused and the chooser cancelled
  EXPECT_EQ(Start_Main_Window(s.p, s.shell, s.host, s.store, true, ""), Texts{"old.PVX"});
  EXPECT_EQ(s.shell.Work_Directory, work.path());
  EXPECT_EQ(s.shell.State, Work_State::No_Project);
  EXPECT_EQ(s.shell.Caption, "KIVA version 8.6.2  (No material database connected.)");
  EXPECT_TRUE(s.shell.Decimal_Comma);
  // Yes to the proposal reads the default database in the program's folder; the file of the
  // command line then makes its own folder the work directory and reads the database beside it.
  s.host.answers = {Answer::Yes};
  EXPECT_EQ(Start_Main_Window(s.p, s.shell, s.host, s.store, false, "\"" + work.project + "\""),
            (Texts{work.project, "old.PVX"}));
  EXPECT_EQ(s.shell.Work_Directory, work.path());
  EXPECT_EQ(s.p.Material_Database_Path, work.path() + "PVX-Concrete.txt");
  EXPECT_EQ(s.shell.State, Work_State::Computed);

  // New asks before it deletes the nodes; OK starts a design with the default database.
  s.host.questions.clear();
  s.host.answers = {Answer::Cancel, Answer::OK, Answer::Yes};
  s.Menu(0);
  EXPECT_EQ(Node_Count(s.p), 10);
  EXPECT_EQ(s.host.questions, Texts{"All present data will be deleted"});
  EXPECT_EQ(s.shell.State, Work_State::Computed);
  s.Menu(0);
  EXPECT_EQ(Node_Count(s.p), 0);
  EXPECT_EQ(s.p.Material_Database_Path, app.path().string() + "/PVX-Concrete.txt");
  EXPECT_EQ(s.p.Material.count(), 9);
  EXPECT_EQ(s.p.Grid_X_Max, 2000);
  EXPECT_EQ(s.shell.State, Work_State::Design);
  EXPECT_EQ(s.host.redraws, 1);
}

}  // namespace
}  // namespace pvx
