// The filter text of the file choosers and the command line, as the platform sees them.
#include "app/shell_input.h"

#include <gtest/gtest.h>

#include <tuple>

#include "app/workflow.h"

namespace pvx {
namespace {

using Entries = std::vector<File_Filter_Entry>;

// The project filter itself, as the choosers show it, is walked through by the platform's tests.
TEST(File_Filter, EntriesInOrderAndTheSuffixOfTheFirstSingleExtension) {
  // The filter, its entries, the suffix a name without one gets.
  const std::tuple<std::string, Entries, std::string> cases[] = {
      {"Alle Files (*.*)|*.*|Projekten(*.PVX)|*.PVX",
       {{"Alle Files (*.*)", "*.*"}, {"Projekten(*.PVX)", "*.PVX"}},
       "PVX"},
      {"Text|*.txt|Lonely", {{"Text", "*.txt"}}, "txt"},  // a description without pattern is dropped
      {"Any| |", {{"Any", "*"}}, ""},                     // a blank pattern means every file
      {"Tables|*.txt;*.dat|Pictures|*.jpg|", {{"Tables", "*.txt;*.dat"}, {"Pictures", "*.jpg"}}, "jpg"},
      {"", {}, ""},
  };
  for (const auto& [filter, entries, suffix] : cases) {
    SCOPED_TRACE(filter);
    EXPECT_EQ(Split_File_Filter(filter), entries);
    EXPECT_EQ(Default_Suffix(filter), suffix);
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
