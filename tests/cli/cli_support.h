// The program pvx run as a user runs it, a run set of three variants, and a small result family
// whose values are known.
#pragma once

#include <gtest/gtest.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <filesystem>
#include <string>
#include <vector>

#include "app/project_file.h"
#include "app/project_load.h"
#include "results/result_files.h"
#include "support/temp_dir.h"

extern char** environ;

namespace pvx::test {

struct Pvx_Run {
  int status = -1;  // the exit status; -1 when pvx did not end by itself
  std::string out, err;
};

// Starts pvx with its standard output and error going to the files out and err.
inline pid_t Start_Pvx(const std::vector<std::string>& arguments, const std::string& out,
                       const std::string& err) {
  static const std::string program = std::string(PVX_BINARY_DIR) + "/cli/pvx";
  std::vector<char*> argv{const_cast<char*>(program.c_str())};
  for (const std::string& a : arguments)
    argv.push_back(const_cast<char*>(a.c_str()));
  argv.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  posix_spawn_file_actions_addopen(&actions, 2, err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  pid_t pid = 0;
  const int failed = posix_spawn(&pid, program.c_str(), &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  EXPECT_EQ(failed, 0) << program;
  return failed ? -1 : pid;
}

inline int Wait_For(pid_t pid) {
  int status = 0;
  if (pid <= 0 || waitpid(pid, &status, 0) != pid || !WIFEXITED(status)) return -1;
  return WEXITSTATUS(status);
}

// Runs pvx to its end.
inline Pvx_Run Pvx(const std::vector<std::string>& arguments) {
  static const Temp_Dir capture;
  Pvx_Run run;
  run.status = Wait_For(Start_Pvx(arguments, capture.file("out"), capture.file("err")));
  run.out = Read_Text(capture.file("out"));
  run.err = Read_Text(capture.file("err"));
  return run;
}

// The wall on its slab, its wall's concrete replaced by materials 1, 2 and 4 in turn, saved as W.PVX
// beside its database in a folder of its own; the project as loaded, with its database, in `p`.
inline std::string Three_Variants(const Temp_Dir& dir, Project& p) {
  std::filesystem::copy_file(Source_Path("examples/PVX-Concrete.txt"), dir.file("PVX-Concrete.txt"));
  std::filesystem::copy_file(Source_Path("examples/WALL-ON-SLAB.PVX"), dir.file("W.PVX"));
  Read_Report read;
  EXPECT_EQ(Load_Project(dir.file("W.PVX"), dir.path().string(), p, read), Load_Result::Loaded)
      << read.message;
  p.Result_File_Name = "W.RES";
  p.Replace_Material = True_Flag;
  p.Run_Material = Table<std::int16_t>{1, 2, 4};
  p.Project_File = dir.file("W.PVX");
  Save_Report saved;
  EXPECT_TRUE(Save_Project(p, dir.path().string(), saved)) << saved.error;
  return dir.file("W.PVX");
}

// R.PVX with a mechanical result family R.RES of two storages, at 0 and 2 hours. Mesh nodes 1..6
// lie at (0,0) (100,0) (100,100) (0,100) (200,0) (200,100); elements 1-2-3-4 and 2-5-6-3. At stored
// step s node n has the temperature 20 + n + 2 (s - 1); the point values (maturity, strengths, ...)
// are 0 at step 1, and 25 in element 1 and 75 in element 2 at step 2. Every node moves by (3, 4);
// corner k (1..8 over both elements) has Sxx 4, Syy -2, Sxy 4 and Szz k. The scale of the maturity
// is 0..100.
inline void Write_Two_Element_Family(const Temp_Dir& dir) {
  Project p;
  New_Project(p);
  p.Mechanical_Included = True_Flag;
  p.Result_File_Name = "R.RES";
  for (auto [x, y] : {std::pair{0, 0}, {100, 0}, {100, 100}, {0, 100}, {200, 0}, {200, 100}})
    p.Mesh_Node.add({double(x), double(y)});
  Mesh_Element e;
  e.Material = "C";
  e.Corner = {{1, 2, 3, 4}};
  p.Mesh_Element.add(e);
  e.Corner = {{2, 5, 6, 3}};
  p.Mesh_Element.add(e);
  p.Mesh_Support.resize(1);
  Write_Text(dir.file("R.PVX"), Write_Project_Text(p, 109, "db.txt"));

  Result_Family family;
  family.Layout = Result_Layout_Of(p, true);
  std::string message;
  ASSERT_TRUE(Set_Output_Names(family, {"R.RES", "R.RES"}, dir.path().string(), message));
  ASSERT_TRUE(Open_Result_Files(family, 1, 1, 109, message));
  Run_Index index;
  index.Step_Time = {1, 2};
  for (const int step : {0, 2}) {
    std::vector<double> nodes, points, displacement, stress;
    for (int n = 1; n <= 6; ++n) {
      nodes.push_back(20 + n + step);
      displacement.insert(displacement.end(), {3, 4});
    }
    for (int k = 1; k <= 8; ++k) {
      points.push_back(step == 0 ? 0 : k <= 4 ? 25 : 75);
      stress.insert(stress.end(), {4, -2, 4, double(k)});
    }
    const std::vector<double> reaction{-1.5};
    Field_Values f;
    f.Temperature = f.Potential = nodes;
    f.Maturity = f.Hydration = f.C_Maturity = f.Moisture_Content = f.Tensile_Strength =
        f.Compressive_Strength = f.Crack_Opening = points;
    f.Displacement = displacement;
    f.Corner_Stress = stress;
    f.Reaction = reaction;
    ASSERT_TRUE(Record_Storage(family, 1, f, step, index, message)) << message;
  }
  index.Extremes[1] = {21, 28, 21, 28, 1, 2};
  index.Extremes[2] = {0, 75, 0, 100, 1, 2};
  ASSERT_TRUE(Write_Run_Index(family, 1, index, message));
  ASSERT_TRUE(Close_Result_Files(family, 1, message));
}

}  // namespace pvx::test
