// pvx run of a run set of three variants: side by side on two cores, and variant by variant as the
// tasks of a job array, it writes the files of the whole set computed in one go, byte for byte.
#include <filesystem>
#include <map>

#include "app/project_load.h"
#include "cli_support.h"

namespace pvx {
namespace {

// The wall on its slab, its wall's concrete replaced by three materials in turn, saved as W.PVX in
// a folder of its own.
std::string Three_Variants(const test::Temp_Dir& dir) {
  std::filesystem::copy_file(test::Source_Path("examples/PVX-Concrete.txt"), dir.file("PVX-Concrete.txt"));
  std::filesystem::copy_file(test::Source_Path("examples/WALL-ON-SLAB.PVX"), dir.file("W.PVX"));
  Project p;
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

std::map<std::string, std::string> Results_In(const test::Temp_Dir& dir) {
  std::map<std::string, std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(dir.path())) {
    const std::string name = entry.path().filename().string();
    if (name.size() > 4 && name.compare(name.size() - 4, 3, ".RE") == 0)
      files[name] = test::Read_Text(entry.path().string());
  }
  return files;
}

TEST(Pvx_Run_Variants, JobsAndSingleVariantsWriteTheFilesOfTheWholeSet) {
  test::Temp_Dir whole, jobs, array;
  const test::Pvx_Run one = test::Pvx({"run", Three_Variants(whole)});
  ASSERT_EQ(one.status, 0) << one.err;
  const auto expected = Results_In(whole);
  ASSERT_EQ(expected.size(), 3u * 15) << one.out;

  const test::Pvx_Run parallel = test::Pvx({"run", Three_Variants(jobs), "--jobs", "2"});
  ASSERT_EQ(parallel.status, 0) << parallel.err;
  for (const char* line :
       {"variant 1/3: 120 of 120 steps", "variant 2/3: 120 of 120 steps", "variant 3/3: 120 of 120 steps"})
    EXPECT_NE(parallel.out.find(line), std::string::npos) << parallel.out;

  const std::string project = Three_Variants(array);
  for (const char* k : {"2", "3", "1"}) {
    const test::Pvx_Run task = test::Pvx({"run", project, "--variant", k});
    ASSERT_EQ(task.status, 0) << task.err;
  }
  // A task for a variant the set does not have is refused and writes nothing.
  const test::Pvx_Run missing = test::Pvx({"run", project, "--variant", "4"});
  EXPECT_EQ(missing.status, 1);
  EXPECT_NE(missing.err.find("Variant 4 is not in the run set, which has 3 variants (1 to 3)."),
            std::string::npos)
      << missing.err;
  for (const auto* dir : {&jobs, &array}) {
    const auto files = Results_In(*dir);
    ASSERT_EQ(files.size(), expected.size());
    for (const auto& [name, bytes] : expected)
      EXPECT_TRUE(files.count(name) && files.at(name) == bytes) << name;
  }
}

}  // namespace
}  // namespace pvx
