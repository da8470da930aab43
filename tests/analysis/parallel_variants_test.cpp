// Variants computed side by side, or one by one as the tasks of a job array, write the files that a
// run of the whole set writes, byte for byte.
#include "analysis/parallel_variants.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

#include "analysis/schedule.h"
#include "app/prescribed_data.h"
#include "app/project_load.h"
#include "support/temp_dir.h"

namespace pvx {
namespace {

// The wall on its slab (joint, bars, creep, cracking, drying) with its wall's concrete replaced by
// three materials in turn: three variants, each a family of W.RES, W2.RES, W3.RES.
Project Three_Variants(const test::Temp_Dir& dir) {
  std::filesystem::copy_file(test::Source_Path("examples/WALL-ON-SLAB.PVX"), dir.file("W.PVX"));
  std::filesystem::copy_file(test::Source_Path("examples/PVX-Concrete.txt"), dir.file("PVX-Concrete.txt"));
  Project p;
  Read_Report report;
  EXPECT_EQ(Load_Project(dir.file("W.PVX"), dir.path().string(), p, report), Load_Result::Loaded)
      << report.message;
  bool ok = true;
  std::string message;
  Set_Prescribed_Data(p, ok, message);
  EXPECT_TRUE(ok) << message;
  p.Result_File_Name = "W.RES";
  p.Replace_Material = True_Flag;
  p.Run_Material = Table<std::int16_t>{1, 2, 3};
  Prepare_Runs(p, 1);
  return p;
}

std::map<std::string, std::string> Files_Of(const test::Temp_Dir& dir) {
  std::map<std::string, std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(dir.path())) {
    const std::string name = entry.path().filename().string();
    if (name.rfind("W", 0) != 0 || name == "W.PVX") continue;
    std::ifstream in(entry.path(), std::ios::binary);
    files[name] = std::string(std::istreambuf_iterator<char>(in), {});
  }
  return files;
}

TEST(Parallel_Variants, SideBySideOrAloneTheVariantsWriteTheFilesOfTheWholeSet) {
  Run_State settings;
  settings.Mechanical_Included = true;
  settings.Mechanical_Iteration_Limit = 100;

  test::Temp_Dir whole;
  {
    Project p = Three_Variants(whole);
    Run_State run = settings;
    Analysis_Host host;
    std::string message;
    ASSERT_EQ(Run_Analysis(p, run, host, whole.path().string(), message), Run_Outcome::Completed) << message;
  }
  const auto expected = Files_Of(whole);
  ASSERT_EQ(expected.size(), 3u * 15);  // .RES and 14 siblings (no circuit, so no .COO) per variant

  test::Temp_Dir side_by_side;
  const Project p = Three_Variants(side_by_side);
  const auto results = Run_Variants_In_Parallel(
      p, settings, 2, [](int) { return std::make_unique<Analysis_Host>(); }, side_by_side.path().string());
  ASSERT_EQ(results.size(), 3u);
  for (const Variant_Result& r : results)
    EXPECT_EQ(r.Outcome, Run_Outcome::Completed) << r.Variant << ": " << r.Message;

  test::Temp_Dir array;
  for (const int variant : {3, 1, 2}) {
    Project q = Three_Variants(array);
    std::filesystem::remove(array.file("W.PVX"));
    std::filesystem::remove(array.file("PVX-Concrete.txt"));
    Run_State run = settings;
    run.Only_Variant = variant;
    Analysis_Host host;
    std::string message;
    ASSERT_EQ(Run_Analysis(q, run, host, array.path().string(), message), Run_Outcome::Completed) << message;
  }
  for (const auto* computed : {&side_by_side, &array}) {
    const auto files = Files_Of(*computed);
    ASSERT_EQ(files.size(), expected.size());
    for (const auto& [name, bytes] : expected) {
      ASSERT_TRUE(files.count(name)) << name;
      EXPECT_TRUE(files.at(name) == bytes) << name << " differs";
    }
  }

  // A variant that the set does not have is refused with its message, and writes nothing.
  test::Temp_Dir missing;
  Project q = Three_Variants(missing);
  Run_State run = settings;
  run.Only_Variant = 4;
  Analysis_Host host;
  std::string message;
  EXPECT_EQ(Run_Analysis(q, run, host, missing.path().string(), message), Run_Outcome::Failed);
  EXPECT_EQ(message, "Variant 4 is not in the run set, which has 3 variants (1 to 3).");
  EXPECT_TRUE(Files_Of(missing).empty());
}

}  // namespace
}  // namespace pvx
