// The filter text of the file choosers and the command line, as the platform sees them.
#include "app/shell_input.h"

#include <gtest/gtest.h>

#include "app/workflow.h"

namespace pvx {
namespace {

TEST(FileFilter, TheProjectFilterGivesItsTwoEntriesInOrder) {
  const std::vector<File_Filter_Entry> entries = Split_File_Filter(Project_Filter);
  const std::vector<File_Filter_Entry> expected = {{"Alle Files (*.*)", "*.*"},
                                                   {"Projekten(*.PVX)", "*.PVX"}};
  EXPECT_EQ(entries, expected);
  // Without the closing bar the text reads the same; a lone description has no entry.
  EXPECT_EQ(Split_File_Filter("Alle Files (*.*)|*.*|Projekten(*.PVX)|*.PVX"), expected);
  EXPECT_EQ(Split_File_Filter("Text|*.txt|Lonely"), (std::vector<File_Filter_Entry>{{"Text", "*.txt"}}));
  EXPECT_EQ(Split_File_Filter("Any| |"), (std::vector<File_Filter_Entry>{{"Any", "*"}}));
  EXPECT_TRUE(Split_File_Filter("").empty());
}

TEST(FileFilter, ASavedNameWithoutExtensionGetsThatOfTheFirstSingleExtensionEntry) {
  EXPECT_EQ(Default_Suffix(Project_Filter), "PVX");  // "*.*" names no extension
  EXPECT_EQ(Default_Suffix("Tables|*.txt;*.dat|Pictures|*.jpg|"), "jpg");
  EXPECT_EQ(Default_Suffix("Alle Files (*.*)|*.*|"), "");
  EXPECT_EQ(Default_Suffix(""), "");
}

TEST(CommandLine, APathWithOrWithoutQuotesOpensTheSameFile) {
  EXPECT_EQ(Quoted_Command_Line("/data/my wall/WALL.PVX"), "\"/data/my wall/WALL.PVX\"");
  EXPECT_EQ(Quoted_Command_Line("\"/data/WALL.PVX\""), "\"/data/WALL.PVX\"");
  EXPECT_EQ(Quoted_Command_Line("  C:\\P\\A.PVX "), "\"C:\\P\\A.PVX\"");
  EXPECT_EQ(Quoted_Command_Line("   "), "");
  EXPECT_EQ(Quoted_Command_Line("x"), "\"x\"");  // a one-letter name keeps its letter once unquoted
}

}  // namespace
}  // namespace pvx

#include <filesystem>

#include "shell_host_fake.h"
#include "support/temp_dir.h"

namespace pvx {
namespace {

// A project opened from the menu in a folder other than the work directory finds its database
// beside it, because that folder becomes the work directory.
TEST(OpenCommand, TheProjectsFolderBecomesTheWorkDirectory) {
  test::Temp_Dir elsewhere, folder;
  const std::string project = folder.file("WALL.PVX");
  std::filesystem::copy_file(test::Source_Path("examples/WALL.PVX"), project);
  std::filesystem::copy_file(test::Source_Path("examples/PVX-Concrete.txt"), folder.file("PVX-Concrete.txt"));
  Project p;
  Shell shell;
  shell.Work_Directory = elsewhere.path().string();
  test::Scripted_Host host;
  test::Memory_Store store;
  host.files = {project};
  mnuProject_Click(2, p, shell, host, store);
  ASSERT_TRUE(host.messages.empty()) << host.messages[0];
  const std::string directory = folder.path().string() + "/";
  EXPECT_EQ(shell.Work_Directory, directory);
  EXPECT_EQ(host.directories, std::vector<std::string>{directory});
  EXPECT_EQ(p.Material_Database_Path, directory + "PVX-Concrete.txt");
  EXPECT_EQ(p.Macro.count(), 4);

  // Cancelling the chooser leaves the work directory alone.
  host.files = {""};
  shell.Work_Directory = elsewhere.path().string();
  mnuProject_Click(2, p, shell, host, store);
  EXPECT_EQ(shell.Work_Directory, elsewhere.path().string());
  EXPECT_EQ(host.directories.size(), 1u);
}

}  // namespace
}  // namespace pvx
