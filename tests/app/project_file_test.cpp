#include "app/project_file.h"

#include <gtest/gtest.h>

#include <clocale>
#include <filesystem>
#include <locale>
#include <tuple>

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
  if (version < 110) e.Damped_Start_Steps = 0;
  return e;
}

TEST(Project_File, RichProjectRoundTripsInEveryVersionAndAnyMixOfSeparators) {
  Project rich = Rich_Project();
  rich.Damped_Start_Steps = 3;
  for (int version = 100; version <= 110; ++version) {
    SCOPED_TRACE(version);
    const std::string text = Write_Project_Text(rich, version, "PVX-Concrete.txt");
    Project back;
    Read_Report report;
    ASSERT_TRUE(Parses(text, back, report)) << report.detail;
    EXPECT_TRUE(back == Expected_After_Read(rich, version));
  }
  // A project saves with the newest version only when it uses the damped start, so that the files
  // of all others stay as they were.
  EXPECT_EQ(Save_Version(rich), 110);
  EXPECT_EQ(Save_Version(Rich_Project()), 109);
  // Values split by commas only, by bare line ends, and a version above 110 read as 110.
  const std::string text = Write_Project_Text(rich, 110, "db.txt");
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
    Project expected = Expected_After_Read(rich, 110);
    expected.File_Version = back.File_Version;
    EXPECT_TRUE(back == expected);
  }
}

struct Comma_Numpunct : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
};

TEST(Project_File, TheExampleReadsAndWritesBackToItsOwnBytesInACommaLocale) {
  const std::string example = Read_Text(test::Source_Path("examples/WALL.PVX"));
  // Both the C++ global locale and, where one is installed, the C locale write a comma here.
  const std::locale previous = std::locale::global(std::locale(std::locale::classic(), new Comma_Numpunct));
  const bool c_locale =
      std::setlocale(LC_NUMERIC, "de_DE.UTF-8") || std::setlocale(LC_NUMERIC, "nl_NL.UTF-8");
  Project p;
  Read_Report report;
  const bool read = Parses(example, p, report);
  const std::string again = Write_Project_Text(p, 109, "PVX-Concrete.txt");
  p.Mouse_Radius = 0.1f;  // a single with its own digits, not 0.10000000149011612
  const std::string text = Write_Project_Text(p, 109, "PVX-Concrete.txt");
  std::locale::global(previous);
  if (c_locale) std::setlocale(LC_NUMERIC, "C");
  ASSERT_TRUE(read) << report.detail;
  EXPECT_EQ(again, example);                                     // among them doubles that need all 17 digits
  EXPECT_NE(text.find("\r\n10\r\n0.1\r\n"), std::string::npos);  // snap size and mouse radius
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
  ASSERT_EQ(std::tuple(Node_Count(p), p.Macro.count(), p.Border.count(), p.Mesh_Element.count(),
                       p.Mesh_Border.count(), Number_Of_Runs(p)),
            std::tuple(4, 1, 1, 1, 1, 1));
  // The inner radius is not in the file: it keeps its default between the outer radius and the
  // snap mode. The new-project Load function stays.
  EXPECT_EQ(std::tuple(p.Circ_Inner_Radius, p.Circ_Outer_Radius, p.Snap_Mode, p.Current_Node),
            std::tuple(750.0, 900.0, 1, 4));
  EXPECT_EQ(std::tuple(p.Node_Y[3], p.Macro[1].Moisture_Content, p.Spring_Functions[1].Point_Time[1],
                       p.Load_Functions.count()),
            std::tuple(500.0, 130.0, -1.0, 1));
  // Convection switched off wins over the 21 in the file; the mesh border, which lies on the design
  // border, has that border's hygral period.
  const Thermal_Period& t = p.Border[1].Thermal_Periods[1];
  EXPECT_EQ(std::tuple(t.Convection_Coefficient, t.Es, p.Border[1].Hygral_Periods[1].Transfer_Coefficient),
            std::tuple(0.0, 0.5, 1e-8));
  EXPECT_EQ(std::tuple(p.Mesh_Border[1].Hygral_Periods, p.Mesh_Border[1].Thermal_Periods[1].Es),
            std::tuple(p.Border[1].Hygral_Periods, 0.0));  // radiation off
  EXPECT_EQ(p.Mesh_Element[1].Dof, (Array1<std::int32_t, 8>{{1, 2, 3, 4, 5, 6, 7, 8}}));
  EXPECT_EQ(std::tuple(p.Result_File_Name, p.Run_Material[1]), std::tuple(std::string("OLD.RES"), 2));
}

// A missing file is refused with the same message, as the batch tool's tests show.
TEST(Project_File, ADamagedFileIsRefusedWithTheProgramsMessageAndTheOpenProjectStays) {
  const std::string good = Write_Project_Text(Rich_Project(), 109, "db.txt");
  auto replaced = [&](const std::string& from, const std::string& to) {
    return std::string(good).replace(good.find(from), from.size(), to);  // throws when from is missing
  };
  // The node count 6 stands behind the grid block, the macro count 2 behind the polygon.
  const std::string nodes = "\r\n6\r\n100.25,", macros = "\r\n2\r\n\"C30/37 CEM I\"";
  const std::pair<const char*, std::string> damaged[] = {
      {"a huge node count", replaced(nodes, "\r\n2000000000\r\n100.25,")},
      {"a negative node count", replaced(nodes, "\r\n-6\r\n100.25,")},
      {"a text for a count", replaced(nodes, "\r\n\"six\"\r\n100.25,")},
      {"a macro count beyond 16 bits", replaced(macros, "\r\n40000\r\n\"C30/37 CEM I\"")},
      {"more macros than the file holds", replaced(macros, "\r\n32767\r\n\"C30/37 CEM I\"")},
      {"an unclosed text", replaced("\"Wall, slab and pipes\"", "\"Wall, slab and pipes")},
      {"zero bytes", std::string("109\r\n\"x\"\r\n") + std::string(100, '\0')},
  };
  Temp_Dir dir;
  Project open = Rich_Project();
  open.Project_File = "open.PVX";
  const Project before = open;
  Read_Report report;
  for (const auto& [what, text] : damaged) {
    SCOPED_TRACE(what);
    Write_Text(dir.file("BAD.PVX"), text);
    report = {};
    EXPECT_FALSE(Read_Project(dir.file("BAD.PVX"), dir.path().string(), open, report));
    EXPECT_EQ(report.message, "File cannot be opened !");
    EXPECT_FALSE(report.detail.empty());
  }
  EXPECT_TRUE(open == before);
  // Every cut of a good file, also to nothing, is refused; only one inside the very last value can
  // still read (as a shorter number or flag).
  int refused = 0, cuts = 0;
  for (std::size_t cut = 0; cut < good.size(); cut += 3, ++cuts) {
    Project p;
    report = {};
    const bool read = Parses(good.substr(0, cut), p, report);
    refused += read ? 0 : 1;
    EXPECT_EQ(report.message, read ? "" : "File cannot be opened !");
  }
  EXPECT_GE(refused, cuts - 3);
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
  EXPECT_EQ(p.Project_Saved, True_Flag);
  EXPECT_EQ(Read_Text(p.Project_File), Write_Project_Text(p, 109, "db.txt"));
  EXPECT_EQ(std::distance(fs::directory_iterator(dir.path()), fs::directory_iterator{}), 2);  // no temporary
  // Read back, the project counts as not saved, and the results of its two runs are named.
  Project back;
  Read_Report read;
  ASSERT_TRUE(Read_Project(p.Project_File, dir.path().string(), back, read));
  EXPECT_EQ(back.Project_Saved, False_Flag);
  EXPECT_EQ(back.Result_Names, (std::vector<std::string>{"RICH.RES", "RICH.RES", "RICH2.RES"}));

  // A database elsewhere is copied beside the project under the project's name, once (the copy,
  // the message and the file's header are checked by the batch tool's convert); one that cannot be
  // copied is named in full, and the project is still saved.
  fs::create_directories(dir.path() / "db");
  Write_Text(dir.file("db/PVX2003.txt"), "the database");
  p.Material_Database_Path = dir.file("db/PVX2003.txt");
  Save_Report copied, again, failed;
  ASSERT_TRUE(Save_Project(p, dir.path().string(), copied));
  EXPECT_EQ(p.Material_Database_Path, Join_Path(dir.path().string(), "P.txt"));
  ASSERT_TRUE(Save_Project(p, dir.path().string(), again));
  EXPECT_TRUE(again.messages.empty());
  const std::string missing = "/nonexistent-folder/PVX2003.txt";
  p.Material_Database_Path = missing;
  ASSERT_TRUE(Save_Project(p, dir.path().string(), failed));
  ASSERT_EQ(failed.messages.size(), 1u);
  EXPECT_NE(failed.messages[0].find("(" + missing + ") to file (" + dir.file("P.txt") + ")"),
            std::string::npos);
  EXPECT_EQ(Read_Text(p.Project_File).substr(0, 40), "109\r\n\"/nonexistent-folder/PVX2003.txt\"\r\n");

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

// The other path parts are met in the tests of saving, of the workflow and of the batch tool.
TEST(Project_File, PathPartsOfAWindowsPathAndOfABareName) {
  EXPECT_EQ(getdir("C:\\a\\b.txt"), "C:\\a\\");
  EXPECT_EQ(getdir("b.txt"), "");
  EXPECT_EQ(Join_Path("", "x.txt"), "x.txt");
}

}  // namespace
}  // namespace pvx
