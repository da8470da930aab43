#include "app/recent_files.h"

#include <gtest/gtest.h>

#include "shell_host_fake.h"

namespace pvx {
namespace {

using List = std::vector<std::string>;

TEST(Recent_Files, MostRecentFirstWithoutDuplicatesAndCappedAtFour) {
  test::Memory_Store store;
  // Each step adds one name and shows the list the menu then holds.
  const std::pair<const char*, List> steps[] = {
      {"a.pvx", {"a.pvx"}},
      {"b.pvx", {"b.pvx", "a.pvx"}},
      {"c.pvx", {"c.pvx", "b.pvx", "a.pvx"}},
      {"d.pvx", {"d.pvx", "c.pvx", "b.pvx", "a.pvx"}},
      {"b.pvx", {"b.pvx", "d.pvx", "c.pvx", "a.pvx"}},  // opened again: to the front
      // The same file in other letter case and with blanks around: the newer spelling, trimmed.
      {"  C.PVX \t", {"C.PVX", "b.pvx", "d.pvx", "a.pvx"}},
      {"e.pvx", {"e.pvx", "C.PVX", "b.pvx", "d.pvx"}},  // the oldest goes
      {"   ", {"e.pvx", "C.PVX", "b.pvx", "d.pvx"}},    // a blank name is no file
  };
  for (const auto& [name, list] : steps) {
    SCOPED_TRACE(name);
    Add_Recent_File(store, name);
    EXPECT_EQ(Read_Recent_Files(store), list);
  }
  // Stored under the program's section with numbered keys, no more than four.
  EXPECT_EQ(store.values.count({"PVX", "Recent File List", "File5"}), 0u);

  // A store with gaps and duplicates is tidied by the next insert; unused positions are written
  // empty, so an older longer list leaves nothing behind.
  test::Memory_Store gaps;
  const std::string app = "PVX", section = "Recent File List";
  for (const auto& [key, name] :
       {std::pair{"File1", "x.pvx"}, {"File2", "  "}, {"File3", "X.PVX"}, {"File4", "y.pvx"}})
    gaps.values[{app, section, key}] = name;
  EXPECT_EQ(Read_Recent_Files(gaps), (List{"x.pvx", "X.PVX", "y.pvx"}));
  Add_Recent_File(gaps, "z.pvx");
  EXPECT_EQ(Read_Recent_Files(gaps), (List{"z.pvx", "x.pvx", "y.pvx"}));
  EXPECT_EQ(gaps.values.at({app, section, "File4"}), "");
}

}  // namespace
}  // namespace pvx
