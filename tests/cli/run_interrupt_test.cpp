// Ctrl-C on `pvx run` acts as the stop button: the run ends at the top of a step, the result
// files are closed and readable, and the exit status says "stopped".
#include <gtest/gtest.h>

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <fcntl.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "app/project_file.h"
#include "results/result_files.h"
#include "results/run_index.h"
#include "support/temp_dir.h"

extern char** environ;

namespace pvx {
namespace {

// A 60 x 60 element section of the example's concrete with a long schedule: far more steps than
// run before the interrupt arrives.
void Write_Long_Project(const test::Temp_Dir& dir) {
  Project p;
  New_Project(p);
  const int n = 60;
  Macro macro;
  macro.Material = "C30/37 CEM I";
  macro.Corner = {{1, 2, 3, 4}};
  Add_Node(p, 0, 0);
  Add_Node(p, 3000, 0);
  Add_Node(p, 3000, 3000);
  Add_Node(p, 0, 3000);
  p.Macro.add(macro);
  for (int j = 0; j <= n; ++j)
    for (int i = 0; i <= n; ++i)
      p.Mesh_Node.add(Mesh_Node{50.0 * i, 50.0 * j});
  auto node = [](int i, int j) { return static_cast<std::int16_t>(j * (n + 1) + i + 1); };
  for (int j = 0; j < n; ++j)
    for (int i = 0; i < n; ++i) {
      Mesh_Element e;
      static_cast<Macro_Values&>(e) = macro;
      e.Material = macro.Material;
      e.Macro_Number = 1;
      e.Corner = {{node(i, j), node(i + 1, j), node(i + 1, j + 1), node(i, j + 1)}};
      p.Mesh_Element.add(e);
    }
  p.Computation_Time = 5000;
  p.Period.clear();
  p.Period.add(Period{0, 5000, 1, 0.25});
  p.Replace_Material = False_Flag;
  p.Result_File_Name = "LONG.RES";
  p.Project_File = dir.file("LONG.PVX");
  std::filesystem::copy_file(test::Source_Path("examples/PVX-Concrete.txt"), dir.file("PVX-Concrete.txt"));
  p.Material_Database_Path = dir.file("PVX-Concrete.txt");
  Save_Report report;
  ASSERT_TRUE(Save_Project(p, dir.path().string(), report)) << report.error;
}

TEST(Pvx_Run, InterruptStopsAtTheTopOfAStepAndLeavesReadableFiles) {
  test::Temp_Dir dir;
  Write_Long_Project(dir);
  const std::string pvx = std::string(PVX_BINARY_DIR) + "/cli/pvx";
  const std::string project = dir.file("LONG.PVX");
  const char* argv[] = {pvx.c_str(), "run", project.c_str(), nullptr};
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
  pid_t pid = 0;
  ASSERT_EQ(posix_spawn(&pid, pvx.c_str(), &actions, nullptr, const_cast<char**>(argv), environ), 0);
  posix_spawn_file_actions_destroy(&actions);

  // Interrupt once the run has stored something beyond its initial state.
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  int storages = 0;
  while (std::chrono::steady_clock::now() < deadline) {
    Run_Index index;
    std::string message;
    if (Read_Run_Index_File(dir.file("LONG.RES"), 108, false, index, message))
      storages = Storage_Count(index);
    if (storages >= 3) break;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  ASSERT_GE(storages, 3) << "the run did not get going";
  ASSERT_EQ(kill(pid, SIGINT), 0);
  int status = 0;
  ASSERT_EQ(waitpid(pid, &status, 0), pid);
  ASSERT_TRUE(WIFEXITED(status)) << "pvx ended by a signal, not by the stop";
  EXPECT_EQ(WEXITSTATUS(status), 2);

  // The family opens for reading and every sibling holds the storages the index counts.
  Project p;
  Read_Report read;
  ASSERT_TRUE(Read_Project(project, dir.path().string(), p, read));
  Result_Family family;
  std::string message;
  ASSERT_TRUE(Prepare_Result_Family(family, p, false, dir.path().string(), message)) << message;
  ASSERT_TRUE(Open_Result_Files(family, 1, 2, 109, message)) << message;
  Run_Index index;
  ASSERT_TRUE(Read_Run_Index(family, 1, 109, false, index, message)) << message;
  EXPECT_GE(Storage_Count(index), storages);
  EXPECT_LT(Storage_Count(index), 5001);
}

}  // namespace
}  // namespace pvx
