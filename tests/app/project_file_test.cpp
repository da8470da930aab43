#include "app/project_file.h"

#include <gtest/gtest.h>

#include <clocale>
#include <filesystem>
#include <functional>
#include <locale>
#include <random>

#include "support/rich_project.h"
#include "support/temp_dir.h"

namespace pvx {
namespace {

namespace fs = std::filesystem;
using test::Read_Text;
using test::Rich_Project;
using test::Temp_Dir;
using test::Write_Text;

bool Parses(const std::string& text, Project& p, Read_Report& report) {
  std::string database;
  return Parse_Project_Text(text, p, database, report);
}

// What the reader must make of the rich project written in `version`: the parts that version
// does not hold come out as the reader's rules say, independently of how the writer did it.
Project Expected_After_Read(const Project& written, int version) {
  Project e = written;
  Project fresh;
  New_Project(fresh);
  e.File_Version = static_cast<std::int16_t>(version);
  e.Split_Position = static_cast<std::int16_t>(e.Split.count());
  if (version < 101) e.Circ_Inner_Radius = 750;
  if (version < 102) e.Load_Functions = fresh.Load_Functions;
  if (version < 103) {
    e.Point_Load.clear();
    e.Line_Load.clear();
  }
  if (version < 104) e.Mesh_Support.clear();
  if (version < 106) {
    for (auto& el : e.Mesh_Element)
      for (int j = 1; j <= 4; ++j) {
        el.Dof[2 * j - 1] = 2 * el.Corner[j] - 1;
        el.Dof[2 * j] = 2 * el.Corner[j];
      }
    for (auto& s : e.Mesh_Support)
      s.Dof = {{2 * s.Node_A - 1, 2 * s.Node_A, 2 * s.Node_B - 1, 2 * s.Node_B}};
  }
  if (version < 109) e.Material_Color.clear();
  return e;
}

TEST(Project_File, RichProjectRoundTripsInEveryVersionAndAnyMixOfSeparators) {
  const Project rich = Rich_Project();
  for (int version = 100; version <= 109; ++version) {
    SCOPED_TRACE(version);
    const std::string text = Write_Project_Text(rich, version, "PVX-Concrete.txt");
    Project back;
    Read_Report report;
    ASSERT_TRUE(Parses(text, back, report)) << report.detail;
    EXPECT_TRUE(back == Expected_After_Read(rich, version));
  }
  // Values split by commas only, by bare line ends, and a version above 109 read as 109.
  const std::string text = Write_Project_Text(rich, 109, "db.txt");
  std::string one_line, unix_ends;
  for (const char c : text) {
    if (c == '\r') continue;
    one_line += c == '\n' ? ',' : c;
    unix_ends += c;
  }
  for (const std::string& variant : {one_line, unix_ends, "115" + text.substr(3)}) {
    Project back;
    Read_Report report;
    ASSERT_TRUE(Parses(variant, back, report)) << report.detail;
    Project expected = Expected_After_Read(rich, 109);
    expected.File_Version = back.File_Version;
    EXPECT_TRUE(back == expected);
  }
  // The example, read and written again, gives back its own bytes.
  const std::string example = Read_Text(test::Source_Path("examples/WALL.PVX"));
  Project p;
  Read_Report report;
  ASSERT_TRUE(Parses(example, p, report)) << report.detail;
  EXPECT_EQ(Write_Project_Text(p, 109, "PVX-Concrete.txt"), example);
}

struct Comma_Numpunct : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
};

TEST(Project_File, NumbersAreWrittenShortestWithAPointInAnyLocale) {
  // Both the C++ global locale and, where one is installed, the C locale write a comma here.
  const std::locale previous = std::locale::global(std::locale(std::locale::classic(), new Comma_Numpunct));
  const bool c_locale =
      std::setlocale(LC_NUMERIC, "de_DE.UTF-8") || std::setlocale(LC_NUMERIC, "nl_NL.UTF-8");
  Project p;
  New_Project(p);
  p.Project_Text[0] = "Wall, slab";
  p.Grid_X_Increment = 0.1 + 0.2;  // needs 17 digits
  p.Grid_Y_Increment = 2.5;
  p.Snap_Size = 1e-8;
  p.Mouse_Radius = 0.1f;  // a single with its own digits, not 0.10000000149011612
  const std::string text = Write_Project_Text(p, 109, "db.txt");
  std::locale::global(previous);
  if (c_locale) std::setlocale(LC_NUMERIC, "C");
  EXPECT_EQ(text.substr(0, 29), "109\r\n\"db.txt\"\r\n\"Wall, slab\"\r\n");
  // Grid increments x and y; snap size and mouse radius.
  EXPECT_NE(text.find("\r\n0.30000000000000004\r\n2.5\r\n"), std::string::npos);
  EXPECT_NE(text.find("\r\n1E-08\r\n0.1\r\n"), std::string::npos);
  EXPECT_EQ(text.find("2,5"), std::string::npos);
}

// A version-100 file typed by hand, value by value, so that the reader's order is checked
// against the format itself and not against the writer.
const char* const Hand_Written_100 =
    "100\r\n\"C:\\data\\PVX2002.txt\"\r\n\"a\"\r\n\"b\"\r\n\"c\"\r\n\"d\"\r\n"
    // grid: snap, visible, xmin, xmax, ymin, ymax, dx, dy, circ snap, circ visible, cx, cy, outer
    "#TRUE#\r\n#FALSE#\r\n0\r\n2000\r\n0\r\n1500\r\n100\r\n50\r\n#FALSE#\r\n#TRUE#\r\n1\r\n2\r\n900\r\n"
    // (no inner radius) start, end, increment, snap size, mouse radius, snap mode, reserved x2
    "0\r\n90\r\n5\r\n10\r\n3\r\n1\r\n0\r\n0\r\n"
    // nodes
    "4\r\n0,0\r\n1000,0\r\n1000,500\r\n0,500\r\n"
    // polygons, macros
    "0\r\n1\r\n\"Beton\"\r\n1\r\n2\r\n3\r\n4\r\n1001\r\n0\r\n0\r\n1\r\n20\r\n1\r\n1000\r\n130\r\n"
    // seven function families (no Load family in 100), one constant function each
    "1\r\n-1\r\n20\r\n0\r\n1\r\n15\r\n3\r\n1\r\n0\r\n0\r\n2\r\n0\r\n15\r\n72\r\n15\r\n0\r\n-100\r\n"
    "1\r\n0\r\n300\r\n-1\r\n1\r\n250\r\n400\r\n1\r\n0\r\n0\r\n2\r\n0\r\n250\r\n72\r\n250\r\n-1\r\n0\r\n"
    "1\r\n-1\r\n1\r\n0\r\n1\r\n0.75\r\n0.25\r\n1\r\n0\r\n0\r\n2\r\n0\r\n1\r\n36\r\n1\r\n-1\r\n0\r\n"
    "1\r\n-1\r\n1\r\n0\r\n1\r\n1\r\n0.2\r\n1\r\n0\r\n0\r\n2\r\n0\r\n0\r\n72\r\n1\r\n0\r\n-100\r\n"
    "1\r\n0\r\n1\r\n0\r\n1\r\n1\r\n0.2\r\n1\r\n0\r\n-1\r\n2\r\n-1\r\n-1\r\n0\r\n0\r\n0\r\n-1000\r\n"
    "1\r\n-1\r\n0.7\r\n0\r\n1\r\n0.7\r\n0.15\r\n1\r\n0\r\n0\r\n2\r\n0\r\n0.6\r\n72\r\n0.6\r\n0\r\n0\r\n"
    "1\r\n-1\r\n30\r\n0\r\n1\r\n10\r\n4\r\n1\r\n0\r\n0\r\n2\r\n0\r\n5\r\n72\r\n5\r\n0\r\n0\r\n"
    // one border 1-2 with one thermal period: convection OFF but a coefficient of 21 in the file
    "1\r\n1\r\n2\r\n-1\r\n0\r\n1\r\n#FALSE#\r\n21\r\n#TRUE#\r\n0.5\r\n0\r\n0\r\n0\r\n72\r\n1\r\n1\r\n"
    "1\r\n0\r\n8768\r\n1\r\n1E-08\r\n1\r\n#FALSE#\r\n1\r\n30\r\n"
    // circuits; mesh valid, current macro, node, circuit, border; splits
    "0\r\n#TRUE#\r\n1\r\n4\r\n0\r\n1\r\n0\r\n"
    // mesh: 4 nodes, 1 element (no Dof below 106), 1 mesh border
    "4\r\n0\r\n0\r\n1000\r\n0\r\n1000\r\n500\r\n0\r\n500\r\n"
    "1\r\n\"Beton\"\r\n1\r\n2\r\n3\r\n4\r\n1\r\n1001\r\n0\r\n0\r\n1\r\n20\r\n1\r\n1000\r\n130\r\n"
    "1\r\n1\r\n2\r\n-1\r\n-1\r\n1\r\n#TRUE#\r\n21\r\n#FALSE#\r\n0.5\r\n0.5\r\n0.5\r\n0\r\n72\r\n1\r\n1\r\n"
    // computation time, periods
    "72\r\n1\r\n0\r\n72\r\n1\r\n0.25\r\n"
    // out of plane
    "#TRUE#\r\n#FALSE#\r\n#FALSE#\r\n0\r\n#FALSE#\r\n#FALSE#\r\n#FALSE#\r\n"
    // no prescribed temperatures, supports; (no mesh supports, no loads below 104 and 103)
    "0\r\n0\r\n0\r\n0\r\n0\r\n"
    // results, runs
    "\"OLD.RES\"\r\n#TRUE#\r\n#FALSE#\r\n1\r\n2\r\n"
    // doubled nodes, interfaces, bars, constant shear (no colours below 109)
    "0\r\n0\r\n0\r\n0\r\n0\r\n#FALSE#\r\n";

TEST(Project_File, HandWrittenVersion100FollowsTheOldLayout) {
  Project p;
  std::string database;
  Read_Report report;
  ASSERT_TRUE(Parse_Project_Text(Hand_Written_100, p, database, report)) << report.detail;
  EXPECT_EQ(database, "C:\\data\\PVX2002.txt");
  EXPECT_EQ(p.Circ_Inner_Radius, 750);  // not in the file
  EXPECT_EQ(p.Circ_Outer_Radius, 900);
  EXPECT_EQ(p.Snap_Mode, 1);
  ASSERT_EQ(Node_Count(p), 4);
  EXPECT_EQ(p.Node_Y[3], 500);
  ASSERT_EQ(p.Macro.count(), 1);
  EXPECT_EQ(p.Macro[1].Moisture_Content, 130);
  EXPECT_EQ(p.Spring_Functions[1].Point_Time[1], -1);
  EXPECT_EQ(p.Load_Functions.count(), 1);  // the new-project Load function stays
  ASSERT_EQ(p.Border.count(), 1);
  const Thermal_Period& t = p.Border[1].Thermal_Periods[1];
  EXPECT_EQ(t.Convection_Coefficient, 0);  // the switch wins over the 21 in the file
  EXPECT_EQ(t.Es, 0.5);
  EXPECT_EQ(p.Border[1].Hygral_Periods[1].Transfer_Coefficient, 1e-8);
  EXPECT_EQ(p.Current_Node, 4);
  ASSERT_EQ(p.Mesh_Element.count(), 1);
  EXPECT_EQ(p.Mesh_Element[1].Dof, (Array1<std::int32_t, 8>{{1, 2, 3, 4, 5, 6, 7, 8}}));
  ASSERT_EQ(p.Mesh_Border.count(), 1);
  EXPECT_EQ(p.Mesh_Border[1].Hygral_Periods.count(), 0);
  EXPECT_EQ(p.Mesh_Border[1].Thermal_Periods[1].Es, 0);  // radiation off
  EXPECT_EQ(p.Result_File_Name, "OLD.RES");
  ASSERT_EQ(Number_Of_Runs(p), 1);
  EXPECT_EQ(p.Run_Material[1], 2);
}

TEST(Project_File, ADamagedFileIsRefusedWithTheProgramsMessageAndTheOpenProjectStays) {
  const std::string good = Write_Project_Text(Rich_Project(), 109, "db.txt");
  auto replaced = [&](const std::string& from, const std::string& to) {
    std::string t = good;
    const std::size_t k = t.find(from);
    EXPECT_NE(k, std::string::npos) << from;
    return k == std::string::npos ? t : t.replace(k, from.size(), to);
  };
  // The node count 6 stands behind the grid block, the macro count 2 behind the polygon.
  const std::string nodes = "\r\n6\r\n100.25,", macros = "\r\n2\r\n\"C30/37 CEM I\"";
  const std::pair<const char*, std::string> damaged[] = {
      {"cut in half", good.substr(0, good.size() / 2)},
      {"a huge node count", replaced(nodes, "\r\n2000000000\r\n100.25,")},
      {"a negative node count", replaced(nodes, "\r\n-6\r\n100.25,")},
      {"a text for a count", replaced(nodes, "\r\n\"six\"\r\n100.25,")},
      {"a macro count beyond 16 bits", replaced(macros, "\r\n40000\r\n\"C30/37 CEM I\"")},
      {"more macros than the file holds", replaced(macros, "\r\n32767\r\n\"C30/37 CEM I\"")},
      {"an unclosed text", replaced("\"Wall, slab and pipes\"", "\"Wall, slab and pipes")},
      {"empty", ""},
      {"zero bytes", std::string("109\r\n\"x\"\r\n") + std::string(100, '\0')},
  };
  Temp_Dir dir;
  Project open = Rich_Project();
  open.Project_File = "open.PVX";
  const Project before = open;
  Read_Report report;
  EXPECT_FALSE(Read_Project(dir.file("missing.PVX"), dir.path().string(), open, report));
  EXPECT_EQ(report.message, "File cannot be opened !");
  for (const auto& [what, text] : damaged) {
    SCOPED_TRACE(what);
    Write_Text(dir.file("BAD.PVX"), text);
    report = {};
    EXPECT_FALSE(Read_Project(dir.file("BAD.PVX"), dir.path().string(), open, report));
    EXPECT_EQ(report.message, "File cannot be opened !");
    EXPECT_FALSE(report.detail.empty());
  }
  EXPECT_TRUE(open == before);
}

TEST(Project_File, EveryCutOfAFileIsRefusedCleanly) {
  const std::string text = Write_Project_Text(Rich_Project(), 109, "db.txt");
  int refused = 0, cuts = 0;
  for (std::size_t cut = 0; cut < text.size(); cut += 3, ++cuts) {
    Project p;
    Read_Report report;
    const bool read = Parses(text.substr(0, cut), p, report);
    refused += read ? 0 : 1;
    EXPECT_EQ(report.message, read ? "" : "File cannot be opened !");
  }
  // Only a cut inside the very last value can still read (as a shorter number or flag).
  EXPECT_GE(refused, cuts - 3);
}

TEST(Project_File, ReadingFindsTheDatabaseInTheWorkDirectoryAndNamesTheResults) {
  Temp_Dir dir;
  Write_Text(dir.file("RICH.PVX"), Write_Project_Text(Rich_Project(), 109, "D:\\elsewhere\\PVX2003.txt"));
  Project p;
  Read_Report report;
  ASSERT_TRUE(Read_Project(dir.file("RICH.PVX"), dir.path().string(), p, report));
  EXPECT_EQ(p.Material_Database_Path, (dir.path() / "PVX2003.txt").string());
  EXPECT_EQ(p.Project_File, dir.file("RICH.PVX"));
  EXPECT_EQ(p.Project_Saved, False_Flag);
  EXPECT_EQ(p.Result_Names, (std::vector<std::string>{"RICH.RES", "RICH.RES", "RICH2.RES"}));  // two runs
}

TEST(Project_File, SaveReplacesTheFileWholeOrKeepsThePreviousOne) {
  Temp_Dir dir;
  Write_Text(dir.file("db.txt"), "database");
  Project p = Rich_Project();
  p.Project_File = dir.file("P.PVX");
  p.Material_Database_Path = dir.file("db.txt");
  Write_Text(p.Project_File, "an older and much longer file ............................................");
  Save_Report report;
  ASSERT_TRUE(Save_Project(p, dir.path().string(), report)) << report.error;
  EXPECT_TRUE(report.messages.empty());
  EXPECT_EQ(p.Project_Saved, True_Flag);
  EXPECT_EQ(Read_Text(p.Project_File), Write_Project_Text(p, 109, "db.txt"));
  EXPECT_EQ(std::distance(fs::directory_iterator(dir.path()), fs::directory_iterator{}), 2);  // no temporary

  // The target is a folder: nothing can be renamed over it, and nothing is lost; nor in a folder
  // that does not exist.
  fs::create_directories(dir.path() / "F.PVX");
  p.Project_File = dir.file("F.PVX");
  EXPECT_FALSE(Save_Project(p, dir.path().string(), report));
  EXPECT_FALSE(report.error.empty());
  EXPECT_EQ(p.Project_Saved, False_Flag);
  EXPECT_TRUE(fs::is_directory(dir.path() / "F.PVX"));
  EXPECT_FALSE(fs::exists(dir.file("F.PVX.saving")));
  p.Project_File = (dir.path() / "no" / "P.PVX").string();
  EXPECT_FALSE(Save_Project(p, dir.path().string(), report));
}

TEST(Project_File, ADatabaseOutsideTheWorkDirectoryIsCopiedBesideTheProjectOrNamedInFull) {
  Temp_Dir dir;
  fs::create_directories(dir.path() / "db");
  fs::create_directories(dir.path() / "work");
  Write_Text((dir.path() / "db" / "PVX2003.txt").string(), "the database");
  Project p = Rich_Project();
  const std::string work = (dir.path() / "work").string();
  p.Project_File = (dir.path() / "work" / "WALL.PVX").string();
  p.Material_Database_Path = (dir.path() / "db" / "PVX2003.txt").string();
  Save_Report report;
  ASSERT_TRUE(Save_Project(p, work, report));
  EXPECT_EQ(report.messages, std::vector<std::string>{"Material Database File is saved as:  WALL.txt"});
  EXPECT_EQ(Read_Text((dir.path() / "work" / "WALL.txt").string()), "the database");
  EXPECT_EQ(p.Material_Database_Path, Join_Path(work, "WALL.txt"));
  EXPECT_EQ(Read_Text(p.Project_File).substr(0, 17), "109\r\n\"WALL.txt\"\r\n");
  // Saved again, the copy is in the work directory now: no second copy, no message.
  Save_Report again;
  ASSERT_TRUE(Save_Project(p, work, again));
  EXPECT_TRUE(again.messages.empty());

  // A copy that fails stores the full path, and the project is still saved.
  const std::string missing = "/nonexistent-folder/PVX2003.txt";
  p.Material_Database_Path = missing;
  Save_Report failed;
  ASSERT_TRUE(Save_Project(p, work, failed));
  EXPECT_EQ(failed.messages,
            std::vector<std::string>{"With making a copy of file (" + missing + ") to file (" +
                                     (dir.path() / "work" / "WALL.txt").string() +
                                     ") an error occured ! The complete path is stored of "
                                     "the original database in the .PVX file ! "});
  EXPECT_EQ(Read_Text(p.Project_File).substr(0, 40), "109\r\n\"/nonexistent-folder/PVX2003.txt\"\r\n");
}

TEST(Project_File, PathParts) {
  EXPECT_EQ(getdir("C:\\a\\b.txt"), "C:\\a\\");
  EXPECT_EQ(getdir("b.txt"), "");
  EXPECT_EQ(File_Part("/a/b/c.txt"), "c.txt");
  EXPECT_EQ(Join_Path("/w/", "x.txt"), "/w/x.txt");
  EXPECT_EQ(Join_Path("", "x.txt"), "x.txt");
}

}  // namespace
}  // namespace pvx
