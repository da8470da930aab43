// The export for ParaView and the CSV tables: the written grids, collections and tables parsed back
// and their numbers held against closed forms of a written family, and the run sets of several
// variants as the command exports them. (The computed example against `pvx results` is a ctest.)
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <sstream>
#include <tuple>

#include "cli/cli_support.h"
#include "family_support.h"
#include "results/export.h"

namespace pvx::test {
namespace {

namespace fs = std::filesystem;

std::string Attribute(const std::string& tag, const std::string& name) {
  const auto at = tag.find(" " + name + "=\"");
  if (at == std::string::npos) return "";
  const auto start = at + name.size() + 3;
  return tag.substr(start, tag.find('"', start) - start);
}

// A .vtu as ParaView reads it: the arrays by name, ASCII or appended raw with 64-bit headers.
struct Vtu {
  std::string text;
  explicit Vtu(const std::string& path) : text(Read_Text(path)) {}
  std::string Header() const { return text.substr(0, text.find("<AppendedData")); }
  std::string Tag(const std::string& name) const {
    const auto at = Header().find(" Name=\"" + name + "\"");
    if (at == std::string::npos) return "";
    const auto start = text.rfind('<', at);
    return text.substr(start, text.find('>', at) - start);
  }
  std::vector<double> Array(const std::string& name) const {
    const std::string tag = Tag(name), type = Attribute(tag, "type");
    std::vector<double> values;
    if (Attribute(tag, "format") == "ascii") {
      const auto start = text.find(tag) + tag.size() + 1;
      std::istringstream in(text.substr(start, text.find("</DataArray>", start) - start));
      for (double v; in >> v;)
        values.push_back(v);
      return values;
    }
    const std::size_t at =
        text.find('_', text.find("<AppendedData")) + 1 + std::stoull(Attribute(tag, "offset"));
    const auto bytes = at + 8 <= text.size() ? At<std::uint64_t>(text, at) : 0;
    if (at + 8 + bytes > text.size()) return {};  // an offset or a size beyond the data
    const std::size_t size = type == "UInt8" ? 1 : type == "Float32" ? 4 : 8;
    for (std::size_t i = 0; i < bytes / size; ++i) {
      const std::size_t p = at + 8 + i * size;
      values.push_back(type == "Float32"   ? At<float>(text, p)
                       : type == "Float64" ? At<double>(text, p)
                       : type == "Int64"   ? static_cast<double>(At<std::int64_t>(text, p))
                                           : static_cast<unsigned char>(text[p]));
    }
    return values;
  }
};

// The timestep and file of every entry of a collection.
std::vector<std::pair<double, std::string>> Pvd_Entries(const std::string& path) {
  const std::string text = Read_Text(path);
  std::vector<std::pair<double, std::string>> entries;
  for (auto at = text.find("<DataSet"); at != std::string::npos; at = text.find("<DataSet", at + 1)) {
    const std::string tag = text.substr(at, text.find('>', at) - at);
    entries.emplace_back(std::stod(Attribute(tag, "timestep")), Attribute(tag, "file"));
  }
  return entries;
}

std::vector<std::vector<std::string>> Csv_Rows(const std::string& text) {
  std::vector<std::vector<std::string>> rows;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    rows.emplace_back();
    std::istringstream cells(line);
    for (std::string cell; std::getline(cells, cell, ',');)
      rows.back().push_back(cell);
  }
  return rows;
}

// The small family of family_support on a mesh of its 3 nodes: storages 1, 2, 3 at steps 0, 2, 3.
class Small_Family : public ::testing::TestWithParam<std::tuple<bool, Vtk_Encoding>> {
 protected:
  void SetUp() override {
    family = Family_In(dir, Small_Layout(mechanical));
    ASSERT_TRUE(Write_Run(family, 1, 3, {2, 3}, written));
    ASSERT_TRUE(Open_For_Viewing(family, 1, o)) << o.message;
    mesh.X = {0, 100, 100};
    mesh.Y = {0, 0, 50};
    mesh.Cells = {{0, 1, 2, 2}, {2, 1, 0, 0}};
  }
  bool mechanical = std::get<0>(GetParam());
  Temp_Dir dir;
  Result_Family family;
  Run_Index written;
  Opened o;
  Export_Mesh mesh;
};

TEST_P(Small_Family, EveryStoredStepReadsBackWithItsTimeAndClosedFormValues) {
  const std::string out = dir.file("new/folder");  // made when missing
  std::vector<std::string> files;
  const Export_Target target{out, out, std::get<1>(GetParam())};
  ASSERT_TRUE(Export_Run(family, 1, o.index, mesh, "B", target, files, o.message)) << o.message;
  EXPECT_EQ(files, (std::vector<std::string>{out + "/B.pvd", out + "/B_nodes.csv", out + "/B_elements.csv"}));
  const auto entries = Pvd_Entries(out + "/B.pvd");
  ASSERT_EQ(entries.size(), 3u);
  const auto nodes = Csv_Rows(Read_Text(out + "/B_nodes.csv")),
             cells = Csv_Rows(Read_Text(out + "/B_elements.csv"));
  ASSERT_EQ(nodes.size(), 1 + 3 * 3u);
  ASSERT_EQ(cells.size(), 1 + 3 * 2u);
  for (int k = 1; k <= 3; ++k) {
    SCOPED_TRACE(k);
    const int s = k == 1 ? 0 : k;  // the step stored
    auto P = [s](int slot, double i) { return Pattern(slot, s, 0) + 0.5 * i; };
    EXPECT_EQ(entries[k - 1].first, written.Storage_Time[k]);
    const Vtu v(out + "/" + entries[k - 1].second);
    EXPECT_NE(v.text.find("NumberOfPoints=\"3\" NumberOfCells=\"2\""), std::string::npos);
    EXPECT_EQ(v.Array("Points"), (std::vector<double>{0, 0, 0, 100, 0, 0, 100, 50, 0}));
    EXPECT_EQ(v.Array("connectivity"), (std::vector<double>{0, 1, 2, 2, 2, 1, 0, 0}));
    EXPECT_EQ(v.Array("offsets"), (std::vector<double>{4, 8}));
    EXPECT_EQ(v.Array("types"), (std::vector<double>{9, 9}));
    EXPECT_EQ(v.Tag("Crack opening max [mm]").empty(), !mechanical);
    // (array, tuple, component, value): node n and element e by the pattern of their values.
    std::vector<std::tuple<std::string, int, int, double>> expected = {
        {"Temperature [oC]", 2, 0, P(Slot_REA, 3)},
        {"Moisture potential [-]", 0, 0, P(Slot_REB, 1)},
        {"Maturity mean [hours]", 1, 0, P(Slot_REC, 6.5)},  // points 5..8
        {"Maturity min [hours]", 1, 0, P(Slot_REC, 5)},
        {"C-Maturity max [oChours]", 1, 0, P(Slot_RED, 8)},
        {"Degree of hydration max [-]", 0, 0, P(Slot_REP, 4)},
        {"Moisture content min [kg/m3]", 0, 0, P(Slot_REE, 1)},
        {"Tensile strength mean [MPa]", 1, 0, P(Slot_REF, 6.5)},
        {"Compressive strength mean [MPa]", 0, 0, P(Slot_REH, 2.5)}};
    if (mechanical) {
      const double ux = P(Slot_REI, 5), uy = P(Slot_REI, 6);
      expected.insert(expected.end(),
                      {{"Displacement [mm]", 2, 0, ux},
                       {"Displacement [mm]", 2, 1, uy},
                       {"Displacement [mm]", 2, 2, 0},
                       {"Total displacement [mm]", 2, 0, std::hypot(ux, uy)},
                       // Points 2 and 4 of an element are not cracked: their opening is stored as 0.
                       {"Crack opening mean [mm]", 1, 0, (P(Slot_REL, 5) + P(Slot_REL, 7)) / 4},
                       {"Crack opening min [mm]", 1, 0, 0},
                       {"Crack opening max [mm]", 1, 0, P(Slot_REL, 7)},
                       // Sxy of element 2 at its corners: values 16 + 3, 7, 11, 15.
                       {"Stress Sxy [MPa]", 1, 0, P(Slot_REJ, 16 + 9)},
                       {"Stress Szz [MPa]", 0, 0, P(Slot_REJ, 10)}});
    }
    for (const auto& [name, tuple, component, value] : expected) {
      SCOPED_TRACE(name);
      const bool point = v.text.find(v.Tag(name)) < v.text.find("<CellData");
      const std::size_t k3 = name == "Displacement [mm]" ? 3 : 1, at = k3 * tuple + component;
      const auto values = v.Array(name);
      ASSERT_EQ(values.size(), k3 * (point ? 3 : 2));
      EXPECT_NEAR(values[at], value, 1e-6 * std::abs(value));
      if (component == 2) continue;  // z is not a column
      // The tables hold the same numbers, in the row of the step and node or element.
      const auto& table = point ? nodes : cells;
      const std::string column = k3 == 3 ? (component == 0 ? "Ux [mm]" : "Uy [mm]") : name;
      const auto c =
          static_cast<std::size_t>(std::find(table[0].begin(), table[0].end(), column) - table[0].begin());
      ASSERT_LT(c, table[0].size()) << column;
      const auto& row = table[static_cast<std::size_t>((k - 1) * (point ? 3 : 2) + tuple + 1)];
      EXPECT_EQ(std::stod(row[0]), written.Storage_Time[k]);
      EXPECT_EQ(row[1] + "," + row[2], std::to_string(k) + "," + std::to_string(tuple + 1));
      EXPECT_EQ(std::stof(row[c]), static_cast<float>(values[at]));
    }
  }
  // An element's place in its table is the mean of its corners.
  EXPECT_EQ(cells[2][3] + "," + cells[2][4], "50,12.5");
}

TEST_P(Small_Family, FailuresAreToldAndLeaveNoCollection) {
  Export_Mesh short_mesh = mesh, bad_corner = mesh;
  short_mesh.X.pop_back();
  short_mesh.Y.pop_back();
  bad_corner.Cells[1][3] = 3;
  Write_Text(dir.file("file"), "in the way");
  const std::tuple<const char*, Export_Mesh, std::string, std::string> cases[] = {
      {"mesh of another run", short_mesh, dir.file("a"),
       "The mesh has 2 nodes and 2 elements; the results hold 3 "},
      {"corner outside the nodes", bad_corner, dir.file("b"),
       "Element 2 has a corner that is not a mesh node"},
      {"folder that cannot be made", mesh, dir.file("file"), "cannot be made"},
      // An index that counts one storage more than the siblings hold: three grids, then the failure.
      {"storage beyond the records", mesh, dir.file("d"), "not available or corrupted!"}};
  for (const auto& [what, grid, folder, message] : cases) {
    SCOPED_TRACE(what);
    if (std::string(what) == "storage beyond the records") o.index.Storage_Time.add(9);
    std::vector<std::string> files;
    EXPECT_FALSE(
        Export_Run(family, 1, o.index, grid, "B", {folder, "", std::get<1>(GetParam())}, files, o.message));
    EXPECT_NE(o.message.find(message), std::string::npos) << o.message;
    EXPECT_TRUE(files.empty());
    EXPECT_FALSE(fs::exists(folder + "/B.pvd"));
  }
}

INSTANTIATE_TEST_SUITE_P(Export, Small_Family,
                         ::testing::Combine(::testing::Bool(),
                                            ::testing::Values(Vtk_Encoding::Binary, Vtk_Encoding::Ascii)));

// A run set of two variants, V.RES with 3 storages and V2.RES with 2, on two elements without
// mechanics; the temperature of node n at storage k of variant r is 10 r + k + n / 8.
TEST(Export_Command, ARunSetGivesACollectionPerVariant) {
  Temp_Dir dir;
  Project p;
  New_Project(p);
  Two_Squares(p);
  p.Replace_Material = True_Flag;
  p.Run_Material = {1, 1};
  p.Result_File_Name = "V.RES";
  Write_Text(dir.file("V.PVX"), Write_Project_Text(p, 109, "db.txt"));
  std::string message;
  std::error_code ec;
  for (int r = 1; r <= 2; ++r) {
    Result_Family family;
    family.Layout = Result_Layout_Of(p, false);
    const std::string name = r == 1 ? "V.RES" : "V2.RES";
    ASSERT_TRUE(Set_Output_Names(family, {name, name}, dir.path().string(), message));
    ASSERT_TRUE(Open_Result_Files(family, 1, 1, 109, message));
    Run_Index index;
    for (int k = 1; k <= 4 - r; ++k) {
      std::vector<double> nodes, points(8, 1.0);
      for (int n = 1; n <= 6; ++n)
        nodes.push_back(10 * r + k + n / 8.0);
      Field_Values f;
      f.Temperature = f.Potential = nodes;
      f.Maturity = f.Hydration = f.C_Maturity = f.Moisture_Content = f.Tensile_Strength =
          f.Compressive_Strength = points;
      ASSERT_TRUE(Record_Storage(family, 1, f, 5.0 * (k - 1), index, message));
    }
    ASSERT_TRUE(Close_Result_Files(family, 1, message));
  }
  // A family whose records are whole and whose index is cut short.
  for (const char letter : std::string("ABCDEFHP"))
    fs::copy_file(dir.file(std::string("V.RE") + letter), dir.file(std::string("C.RE") + letter));
  Write_Text(dir.file("C.RES"), "short");
  // (arguments, exit status, collections written with their number of steps, text of the output)
  const std::tuple<std::vector<std::string>, int, std::map<std::string, int>, std::string> cases[] = {
      {{"V.RES"}, 0, {{"V", 3}, {"V2", 2}}, "V2.pvd: 2 stored steps, 0 to 5 hours"},
      {{"V2.RES"}, 0, {{"V2", 2}}, ""},
      {{"V.RES", "--variant", "2"}, 0, {{"V2", 2}}, ""},
      {{"V.RES", "--variant", "3"}, 1, {}, "Variant 3 is not in the run set, which has 2 variants (1 to 2)."},
      {{"NONE.RES", "--project", dir.file("V.PVX")},
       1,
       {},
       "Results (" + dir.file("NONE.RES") + ") not available\n"},
      {{"C.RES", "--project", dir.file("V.PVX"), "--variant", "1"}, 1, {}, "not available or corrupted!"}};
  int folder = 0;
  for (const auto& [arguments, status, collections, text] : cases) {
    SCOPED_TRACE(arguments.front() + (arguments.size() > 1 ? " " + arguments[1] + " ..." : ""));
    const std::string out = dir.file("out" + std::to_string(++folder));
    std::vector<std::string> a{"export", dir.file(arguments.front()), "--vtk", out + "/deeper"};
    a.insert(a.end(), arguments.begin() + 1, arguments.end());
    Pvx_Run run = Pvx(a);
    EXPECT_EQ(run.status, status) << run.err;
    EXPECT_NE((run.out + run.err).find(text), std::string::npos) << run.out << run.err;
    EXPECT_EQ(std::count(run.out.begin(), run.out.end(), '\n'), static_cast<long>(collections.size()));
    std::map<std::string, int> found;
    for (const auto& f : fs::directory_iterator(out + "/deeper", ec))
      if (f.path().extension() == ".pvd") {
        const auto entries = Pvd_Entries(f.path().string());
        found[f.path().stem().string()] = static_cast<int>(entries.size());
        const Vtu last(out + "/deeper/" + entries.back().second);
        const int r = f.path().stem() == "V" ? 1 : 2;
        EXPECT_FLOAT_EQ(static_cast<float>(last.Array("Temperature [oC]")[5]), 10 * r + (4 - r) + 6 / 8.0);
      }
    EXPECT_EQ(found, collections);
  }
}

}  // namespace
}  // namespace pvx::test
