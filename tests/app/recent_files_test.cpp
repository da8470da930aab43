#include "app/recent_files.h"

#include <gtest/gtest.h>

#include "shell_host_fake.h"

namespace pvx {
namespace {

using List = std::vector<std::string>;

TEST(Recent_Files, MostRecentFirstWithoutDuplicatesAndCappedAtFour) {
  test::Memory_Store store;
  EXPECT_TRUE(Read_Recent_Files(store).empty());
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
  // Stored under the program's section with numbered keys, most recent first.
  EXPECT_EQ(store.values.at({"PVX", "Recent File List", "File1"}), "e.pvx");
  EXPECT_EQ(store.values.at({"PVX", "Recent File List", "File4"}), "d.pvx");
  EXPECT_EQ(store.values.count({"PVX", "Recent File List", "File5"}), 0u);
}

TEST(Recent_Files, AStoreWithGapsAndDuplicatesIsTidiedByTheNextInsert) {
  test::Memory_Store store;
  const std::string app = "PVX", section = "Recent File List";
  store.values[{app, section, "File1"}] = "x.pvx";
  store.values[{app, section, "File2"}] = "  ";
  store.values[{app, section, "File3"}] = "X.PVX";
  store.values[{app, section, "File4"}] = "y.pvx";
  EXPECT_EQ(Read_Recent_Files(store), (List{"x.pvx", "X.PVX", "y.pvx"}));
  Add_Recent_File(store, "z.pvx");
  EXPECT_EQ(Read_Recent_Files(store), (List{"z.pvx", "x.pvx", "y.pvx"}));
  // Unused positions are written empty, so an older longer list leaves nothing behind.
  EXPECT_EQ(store.values.at({app, section, "File4"}), "");
}

}  // namespace
}  // namespace pvx
