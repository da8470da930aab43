#include <gtest/gtest.h>

#include <sstream>

#include "app/project_file.h"
#include "project_io.h"
#include "support/rich_project.h"
#include "support/temp_dir.h"

namespace pvx {
namespace {

using test::Temp_Dir;
using test::Write_Text;

// What differs between two reads of the same model from two files.
void Forget_File_Identity(Project& p) {
  p.Project_File.clear();
  p.File_Version = 0;
}

TEST(Convert, EveryVersionBecomesA109FileThatReadsBackToTheSameModel) {
  for (int version = 100; version <= 109; ++version) {
    SCOPED_TRACE(version);
    Temp_Dir dir;
    Write_Text(dir.file("PVX-Concrete.txt"), "database");
    const std::string in = dir.file("OLD.PVX");
    Write_Text(in, Write_Project_Text(test::Rich_Project(), version, "PVX-Concrete.txt"));
    std::ostringstream out, err;
    Project opened;
    ASSERT_TRUE(cli::Open_Project(in, opened, err)) << err.str();
    Project converted = opened;
    const std::string target = dir.file("NEW.PVX");
    ASSERT_TRUE(cli::Save_Project_As(converted, target, out, err)) << err.str();
    EXPECT_EQ(out.str(), "");  // the database lies beside the project: nothing to copy
    Project back;
    ASSERT_TRUE(cli::Open_Project(target, back, err)) << err.str();
    EXPECT_EQ(back.File_Version, 109);
    // An old result name is forgotten on opening a file older than 108.
    EXPECT_EQ(back.Result_File_Name, version < 108 ? "" : "RICH.RES");
    Forget_File_Identity(opened);
    Forget_File_Identity(back);
    EXPECT_TRUE(back == opened);
  }
}

TEST(Convert, AMissingOrDamagedFileGivesTheProgramsMessage) {
  Temp_Dir dir;
  std::ostringstream err;
  Project p;
  EXPECT_FALSE(cli::Open_Project(dir.file("none.PVX"), p, err));
  EXPECT_EQ(err.str().substr(0, 24), "File cannot be opened !\n");
  Write_Text(dir.file("bad.PVX"), "109\r\n\"db.txt\"\r\n\"a\"\r\n");
  std::ostringstream err2;
  EXPECT_FALSE(cli::Open_Project(dir.file("bad.PVX"), p, err2));
  EXPECT_NE(err2.str().find("File cannot be opened !"), std::string::npos);
  EXPECT_NE(err2.str().find("bad.PVX"), std::string::npos);
}

TEST(Convert, TheWorkDirectoryIsTheFolderOfTheProjectFile) {
  Temp_Dir dir;
  std::filesystem::create_directories(dir.path() / "a");
  const std::string in = (dir.path() / "a" / "P.PVX").string();
  Write_Text(in, Write_Project_Text(test::Rich_Project(), 109, "X:\\old\\PVX2003.txt"));
  std::ostringstream err;
  Project p;
  ASSERT_TRUE(cli::Open_Project(in, p, err));
  EXPECT_EQ(p.Material_Database_Path, (dir.path() / "a" / "PVX2003.txt").string());
}

}  // namespace
}  // namespace pvx
