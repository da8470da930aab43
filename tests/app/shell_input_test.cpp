// The filter text of the file choosers and the command line, as the platform sees them.
#include "app/shell_input.h"

#include <gtest/gtest.h>

#include "app/workflow.h"

namespace pvx {
namespace {

using Entries = std::vector<File_Filter_Entry>;

TEST(File_Filter, EntriesInOrderAndTheSuffixOfTheFirstSingleExtension) {
  struct Case {
    std::string filter;
    Entries entries;
    std::string suffix;
  };
  const Case cases[] = {
      {Project_Filter, {{"Alle Files (*.*)", "*.*"}, {"Projekten(*.PVX)", "*.PVX"}}, "PVX"},
      {"Alle Files (*.*)|*.*|Projekten(*.PVX)|*.PVX",
       {{"Alle Files (*.*)", "*.*"}, {"Projekten(*.PVX)", "*.PVX"}},
       "PVX"},
      {"Text|*.txt|Lonely", {{"Text", "*.txt"}}, "txt"},  // a description without pattern is dropped
      {"Any| |", {{"Any", "*"}}, ""},                     // a blank pattern means every file
      {"Tables|*.txt;*.dat|Pictures|*.jpg|", {{"Tables", "*.txt;*.dat"}, {"Pictures", "*.jpg"}}, "jpg"},
      {"", {}, ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.filter);
    EXPECT_EQ(Split_File_Filter(c.filter), c.entries);
    EXPECT_EQ(Default_Suffix(c.filter), c.suffix);
  }
}

TEST(Command_Line, APathWithOrWithoutQuotesOpensTheSameFile) {
  EXPECT_EQ(Quoted_Command_Line("/data/my wall/WALL.PVX"), "\"/data/my wall/WALL.PVX\"");
  EXPECT_EQ(Quoted_Command_Line("\"/data/WALL.PVX\""), "\"/data/WALL.PVX\"");
  EXPECT_EQ(Quoted_Command_Line("  C:\\P\\A.PVX "), "\"C:\\P\\A.PVX\"");
  EXPECT_EQ(Quoted_Command_Line("   "), "");
  EXPECT_EQ(Quoted_Command_Line("x"), "\"x\"");  // a one-letter name keeps its letter once unquoted
}

}  // namespace
}  // namespace pvx
