// pvx run of a run set of three variants: side by side on two cores, and variant by variant as the
// tasks of a job array, it writes the files of the whole set computed in one go, byte for byte.
#include <filesystem>
#include <map>

#include "cli_support.h"

namespace pvx {
namespace {

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
  Project p;
  const test::Pvx_Run one = test::Pvx({"run", test::Three_Variants(whole, p)});
  ASSERT_EQ(one.status, 0) << one.err;
  const auto expected = Results_In(whole);
  ASSERT_EQ(expected.size(), 3u * 15) << one.out;

  const test::Pvx_Run parallel = test::Pvx({"run", test::Three_Variants(jobs, p), "--jobs", "2"});
  ASSERT_EQ(parallel.status, 0) << parallel.err;
  for (const char* line :
       {"variant 1/3: 120 of 120 steps", "variant 2/3: 120 of 120 steps", "variant 3/3: 120 of 120 steps"})
    EXPECT_NE(parallel.out.find(line), std::string::npos) << parallel.out;

  const std::string project = test::Three_Variants(array, p);
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
