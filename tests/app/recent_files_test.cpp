#include "app/recent_files.h"

#include <gtest/gtest.h>

#include "shell_host_fake.h"

namespace pvx {
namespace {

using List = std::vector<std::string>;

TEST(Recent_Files, StoredUnderTheApplicationSectionAndNumberedKeys) {
  test::Memory_Store store;
  Add_Recent_File(store, "C:\\work\\A.PVX");
  Add_Recent_File(store, "C:\\work\\B.PVX");
  EXPECT_EQ(store.values.at({"PVX", "Recent File List", "File1"}), "C:\\work\\B.PVX");
  EXPECT_EQ(store.values.at({"PVX", "Recent File List", "File2"}), "C:\\work\\A.PVX");
  EXPECT_EQ(store.values.at({"PVX", "Recent File List", "File3"}), "");
  EXPECT_EQ(store.values.at({"PVX", "Recent File List", "File4"}), "");
  EXPECT_EQ(store.values.count({"PVX", "Recent File List", "File5"}), 0u);
  EXPECT_EQ(Read_Recent_Files(store), (List{"C:\\work\\B.PVX", "C:\\work\\A.PVX"}));
}

TEST(Recent_Files, MostRecentFirstWithoutDuplicatesAndCappedAtFour) {
  test::Memory_Store store;
  EXPECT_TRUE(Read_Recent_Files(store).empty());
  for (const char* name : {"a.pvx", "b.pvx", "c.pvx", "d.pvx"})
    Add_Recent_File(store, name);
  EXPECT_EQ(Read_Recent_Files(store), (List{"d.pvx", "c.pvx", "b.pvx", "a.pvx"}));

  // An entry opened again moves to the front; the others keep their order.
  Add_Recent_File(store, "b.pvx");
  EXPECT_EQ(Read_Recent_Files(store), (List{"b.pvx", "d.pvx", "c.pvx", "a.pvx"}));

  // Names that differ only in letter case and surrounding blanks are the same file; the newer
  // spelling, trimmed, replaces the older.
  Add_Recent_File(store, "  C.PVX \t");
  EXPECT_EQ(Read_Recent_Files(store), (List{"C.PVX", "b.pvx", "d.pvx", "a.pvx"}));

  // A fifth name pushes out the oldest.
  Add_Recent_File(store, "e.pvx");
  EXPECT_EQ(Read_Recent_Files(store), (List{"e.pvx", "C.PVX", "b.pvx", "d.pvx"}));

  // A blank name is no file.
  Add_Recent_File(store, "   ");
  EXPECT_EQ(Read_Recent_Files(store), (List{"e.pvx", "C.PVX", "b.pvx", "d.pvx"}));
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
  EXPECT_EQ(Recent_Compare_Form(" A\\B.Pvx  "), "a\\b.pvx");
}

}  // namespace
}  // namespace pvx
