#include "app/workflow.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <tuple>

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

// Which buttons each state shows, and a failure to open results, are walked through by the main
// window's tests.
TEST(Workflow, AHiddenButtonDoesNothingAShownOneOpensItsFormAndClosingAsksWhenUnsaved) {
  Session s;
  Initialize_Program(s.shell, s.p, false);
  for (const char* key : {"Mesh", "Runset", "Compute", "Results", "Refresh", "nonsense"})
    s.Click(key);
  EXPECT_EQ(std::tuple(s.host.hide_all, s.host.forms.size(), s.shell.State),
            std::tuple(0, 0u, Work_State::No_Project));

  s.Click("Design_Panel");
  EXPECT_EQ(std::tuple(s.shell.State, s.host.forms, s.host.work_captions, s.host.redraws),
            std::tuple(Work_State::Design, std::vector{Work_Form::Design}, Texts{"Design panel"}, 1));
  // The mesh form shows an existing mesh, and the cooling button only with circuits.
  s.Click("Mesh");
  EXPECT_FALSE(s.host.mesh_existing || s.host.mesh_cooling);
  s.p.Mesh_Element.add(Mesh_Element{});
  s.Click("Mesh");
  EXPECT_TRUE(s.host.mesh_existing && !s.host.mesh_cooling);
  s.p.Circuit.add(Circuit{});
  s.Click("Mesh");
  EXPECT_TRUE(s.host.mesh_cooling);
  // No results yet: nothing to destroy, no question. Every command hides the working forms first.
  s.Click("Runset");
  EXPECT_EQ(std::tuple(s.shell.State, s.host.forms.back(), s.host.questions.size(), s.host.hide_all),
            std::tuple(Work_State::Run_Set, Work_Form::Run_Settings, 0u, 5));

  // Closing a saved project ends at once; an unsaved one asks first, and Yes saves it under the
  // name chosen (Cancel, No, and Yes with the chooser cancelled are walked through by the main
  // window's tests).
  Temp_Dir dir;
  s.shell.Work_Directory = dir.path().string() + "/";
  Add_Node(s.p, 12.5, -3);
  s.p.Project_Saved = True_Flag;
  s.Menu(5);
  EXPECT_TRUE(s.host.ended == 1 && s.host.questions.empty());
  s.p.Project_Saved = False_Flag;
  s.host.answers = {Answer::Yes};
  s.host.files = {dir.file("new.PVX")};
  s.Menu(5);
  EXPECT_EQ(std::tuple(s.host.ended, s.host.questions),
            std::tuple(2, Texts{"Warning ! Project not saved yet. Saving now ?"}));
  // The one node, after the grid block: count and coordinates.
  EXPECT_NE(test::Read_Text(dir.file("new.PVX")).find("\r\n1\r\n12.5,-3\r\n"), std::string::npos);
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
  EXPECT_EQ(s.host.directories, Texts{folder.path()});
  EXPECT_EQ(s.p.Material_Database_Path, folder.path() + "PVX-Concrete.txt");
  EXPECT_EQ(s.shell.State, Work_State::Computed);  // the example names its results

  // A file of a version that predates results forgets them and opens in the design. From the
  // command line, the path in quotes, or from the recent list, the file's folder becomes the work
  // directory.
  const std::string old = folder.dir.file("OLD.PVX");
  test::Write_Text(old, Write_Project_Text(s.p, 107, "PVX-Concrete.txt"));
  s.shell.Work_Directory = "/nowhere/";
  ASSERT_TRUE(Direct_Start("\"" + old + "\"", s.p, s.shell, s.host, s.store));
  EXPECT_EQ(std::tuple(s.shell.Work_Directory, s.shell.State, s.p.Result_File_Name),
            std::tuple(folder.path(), Work_State::Design, ""));
  s.shell.Work_Directory = "/nowhere/";
  ASSERT_EQ(Read_Recent_Files(s.store), (Texts{old, folder.project}));
  ASSERT_TRUE(Open_Recent_File(2, s.p, s.shell, s.host, s.store));
  EXPECT_EQ(std::tuple(s.shell.Work_Directory, s.shell.State),
            std::tuple(folder.path(), Work_State::Computed));

  // A damaged file from the menu, a vanished one from the recent list: the program's message, and
  // the project, its state and the list as they were.
  const std::string text = test::Read_Text(folder.project);
  test::Write_Text(folder.dir.file("DAMAGED.PVX"), text.substr(0, text.size() / 2));
  Add_Recent_File(s.store, folder.dir.file("GONE.PVX"));
  const Project before = s.p;
  s.host.files = {folder.dir.file("DAMAGED.PVX")};
  s.Menu(2);
  EXPECT_FALSE(Open_Recent_File(1, s.p, s.shell, s.host, s.store));
  EXPECT_EQ(s.host.messages, Texts(2, "File cannot be opened !"));
  EXPECT_TRUE(s.p == before && s.shell.State == Work_State::Computed);
  EXPECT_EQ(Read_Recent_Files(s.store), (Texts{folder.dir.file("GONE.PVX"), folder.project, old}));
  s.host.messages.clear();

  // Changing the run settings destroys the results: No keeps them and the form stays away.
  s.host.answers = {Answer::No, Answer::Yes};
  s.Click("Runset");
  EXPECT_TRUE(s.shell.State == Work_State::Computed && s.host.forms.empty());
  s.Click("Runset");
  EXPECT_EQ(s.host.questions, Texts(2,
                                    "Already computed results will be destroyed by performing this action. "
                                    "Do you still want to continue. "));
  EXPECT_EQ(s.shell.State, Work_State::Run_Set);
  EXPECT_FALSE(Shows(Buttons_Of(s.shell.State), Toolbar_Button::Results));

  // Compute rebuilds the prescribed data from nothing and opens the run window.
  s.p.Prescribed_Node.add({.Mesh_Node = 999999});
  s.Click("Compute");
  EXPECT_EQ(std::tuple(s.host.forms.back(), s.p.Prescribed_Node.count()),
            std::tuple(Work_Form::Diagnostics, 0));
  Computation_Ended(s.shell, false);  // stopped before anything was stored
  EXPECT_EQ(s.shell.State, Work_State::Run_Set);
  Computation_Ended(s.shell, true);
  EXPECT_EQ(s.shell.State, Work_State::Computed);
  s.host.results_ok = true;
  s.Click("Results");
  EXPECT_EQ(std::tuple(s.host.forms.back(), s.shell.State),
            std::tuple(Work_Form::Results, Work_State::Computed));

  // Without a mesh the toolbar refuses to start.
  s.p.Mesh_Element.clear();
  s.shell.State = Work_State::Run_Set;
  s.Click("Compute");
  EXPECT_EQ(s.host.forms.back(), Work_Form::Results);
  EXPECT_EQ(s.host.messages, Texts{"There is no mesh to compute: make one with Mesh first."});
}

TEST(Workflow, StartReadsTheWorkDirectoryTheDatabaseAndTheCommandLineInThatOrder) {
  // The program's folder holds databases, of which the last .txt file whose name starts with PVX
  // in sorted order is proposed ("pvxb" sorts after "pvx-"; a folder is no file), and a file that
  // is no database.
  Temp_Dir app;
  Work_Folder work;
  const std::string dir = app.path().string() + "/";
  const std::string good = test::Read_Text(test::Source_Path("examples/PVX-Concrete.txt"));
  for (const char* name : {"PVX-Concrete.txt", "PVXbeta.txt", "zzz.txt", "PVXzz.dat"})
    test::Write_Text(app.file(name), good);
  test::Write_Text(app.file("PVX-half.txt"), good.substr(0, good.size() / 2));
  fs::create_directory(app.file("PVXzzz.txt"));

  // The work directory file, with a record as written (writing it on closing its form is walked
  // through by the main window's tests), in quotes with a carriage return, or naming no folder.
  const std::string folder = work.dir.path().string();
  const std::pair<std::string, bool> records[] = {{folder + "\n", true},
                                                  {"\"" + folder + "\"\r\n", true},
                                                  {"", false},
                                                  {"\n", false},
                                                  {app.file("no-such-folder") + "\n", false},
                                                  {app.file("zzz.txt") + "\n", false},
                                                  {"\x01\xff\xfe garbage", false}};
  for (const auto& [record, read] : records) {
    test::Write_Text(app.file("workdir.tmp"), record);
    Session next;
    next.shell.Application_Path = dir;
    next.shell.Work_Directory = "before";
    EXPECT_EQ(Read_Work_Directory(next.shell, next.host), read) << record;
    EXPECT_EQ(next.shell.Work_Directory, read ? folder : "before") << record;
    EXPECT_EQ(next.host.directories, read ? Texts{folder} : Texts{}) << record;
  }

  // The proposal refused, the chooser comes until it gives a database or is cancelled: no database.
  test::Write_Text(app.file("workdir.tmp"), work.path() + "\n");
  Session s;
  s.shell.Application_Path = dir;
  Add_Recent_File(s.store, "old.PVX");
  Add_Node(s.p, 1, 2);
  s.p.Replace_Material = False_Flag;
  s.host.answers = {Answer::No};
  s.host.files = {app.file("missing.txt"), app.file("PVX-half.txt"), ""};
  EXPECT_EQ(Start_Main_Window(s.p, s.shell, s.host, s.store, true, ""), Texts{"old.PVX"});
  EXPECT_EQ(s.host.questions, Texts{"Default Database = " + dir + "PVXbeta.txt. Is this correct ?"});
  EXPECT_EQ(s.host.chooser_titles, Texts(3, "Select Database"));
  EXPECT_EQ(s.host.messages, Texts(2, "Default Material Database cannot be opened, try another one !"));
  EXPECT_EQ(s.shell.Work_Directory, work.path());
  EXPECT_EQ(s.shell.State, Work_State::No_Project);
  EXPECT_EQ(s.shell.Caption, "KIVA version 8.6.2  (No material database connected.)");
  // The design is cleared.
  EXPECT_EQ(Node_Count(s.p), 0);
  EXPECT_EQ(s.p.Replace_Material, True_Flag);

  // Yes to the proposal moves to the program's folder; the file of the command line then makes its
  // own folder the work directory and reads the database beside it.
  s.host.answers = {Answer::Yes};
  s.host.directories.clear();
  EXPECT_EQ(Start_Main_Window(s.p, s.shell, s.host, s.store, false, "\"" + work.project + "\""),
            (Texts{work.project, "old.PVX"}));
  EXPECT_EQ(s.host.directories, (Texts{work.path(), dir, work.path()}));
  EXPECT_EQ(s.p.Material_Database_Path, work.path() + "PVX-Concrete.txt");
  EXPECT_EQ(s.shell.State, Work_State::Computed);

  // New, which asks before it deletes the data and offers the default database again, is walked
  // through by the main window's tests.

  // With no proposal at all the chooser comes straight away.
  Temp_Dir empty;
  Session none;
  none.shell.Application_Path = empty.path().string();
  EXPECT_FALSE(Choose_Default_Database(none.p, none.shell, none.host));
  EXPECT_TRUE(none.host.questions.empty());
  EXPECT_EQ(none.host.chooser_titles.size(), 1u);
}

}  // namespace
}  // namespace pvx
