// The input printout: the tables hold the project's values, in either unit system, in the
// printout's order and words; the boxes without data are greyed; the lines are paged.
#include "report/input_printout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "app/project_load.h"
#include "support/temp_dir.h"

namespace pvx {
namespace {

using Row = std::vector<std::string>;
using Rows = std::vector<Row>;
using S = Print_Section;
using K = Report_Table_Kind;

// The example wall as the program loads it: project and database from a folder of their own.
Project Load_Wall() {
  test::Temp_Dir dir;
  for (const char* name : {"WALL.PVX", "PVX-Concrete.txt"})
    std::filesystem::copy_file(test::Source_Path(std::string("examples/") + name), dir.file(name));
  Project p;
  Read_Report report;
  EXPECT_EQ(Load_Project(dir.file("WALL.PVX"), dir.path().string(), p, report), Load_Result::Loaded)
      << report.message;
  return p;
}

Print_Selection Ticked(std::initializer_list<S> sections) {
  Print_Selection selection;
  for (const S s : sections)
    selection[static_cast<int>(s)] = true;
  return selection;
}

Print_Selection All() {
  Print_Selection selection;
  std::fill(selection.begin(), selection.end(), true);
  return selection;
}

// The table of a kind; function blocks are told apart by the kind text of their first row.
const Report_Table& Table_Of(const std::vector<Report_Table>& tables, K kind, const std::string& text = "") {
  for (const Report_Table& t : tables)
    if (t.Kind == kind && (text.empty() || (!t.Rows.empty() && t.Rows[0][0] == text))) return t;
  static const Report_Table none;
  ADD_FAILURE() << "no table of kind " << static_cast<int>(kind) << " " << text;
  return none;
}

std::size_t Column(const Report_Table& t, const std::string& name) {
  for (std::size_t c = 0; c < t.Columns.size(); ++c)
    if (t.Columns[c].Name == name) return c;
  ADD_FAILURE() << "no column " << name;
  return 0;
}

// The rows of a table, their cells joined by '|'.
std::vector<std::string> Lines(const Report_Table& t) {
  std::vector<std::string> lines;
  for (const Row& row : t.Rows) {
    std::string line;
    for (const std::string& cell : row)
      line.append(1, '|').append(cell);
    lines.push_back(line.substr(1));
  }
  return lines;
}

std::string Unit(const Report_Table& t, const std::string& name) {
  return t.Columns[Column(t, name)].Unit;
}

TEST(Input_Printout, The_Example_Prints_Its_Sections_In_Order) {
  Project p = Load_Wall();
  const auto tables = Input_Tables(p, Sections_With_Data(p), true);
  std::vector<K> kinds;
  for (const Report_Table& t : tables)
    kinds.push_back(t.Kind);
  EXPECT_EQ(kinds, (std::vector<K>{K::Macros, K::Thermal, K::Hygral, K::Supports, K::Out_Of_Plane,
                                   K::Functions, K::Functions, K::Nodes, K::Elements, K::Periods}));
  // Four macros of "C30/37 CEM I", 1000 mm thick at 20 oC; in Imperial 39.370 in at 68 oF, and
  // 130 kg/m3 x 0.764554857984 / 0.45359237 = 219.12 lb/yd3.
  for (const bool metric : {true, false}) {
    const Report_Table macros = Input_Tables(p, Ticked({S::Macros}), metric)[0];
    EXPECT_EQ(Lines(macros)[0],
              metric ? "1|1 2 7 8|C30/37 CEM I|20.00|1.000|130.0|0.00|1000.00|0.00|1000.00|1001.00"
                     : "1|1 2 7 8|C30/37 CEM I|68.00|1.000|219.1|0.00|39.370|0.00|1000.00|1001.00");
    EXPECT_EQ(Lines(macros)[3].substr(0, 11), "4|7 6 10 9|");
    EXPECT_EQ(Unit(macros, "temp.") + " " + Unit(macros, "thick."), metric ? "oC mm" : "oF in");
  }
  // Borders 3 and 5 have a second thermal period (formwork until 48 h, open air after), whose row
  // leaves category, number and nodes to the first.
  const Report_Table& thermal = Table_Of(tables, K::Thermal);
  ASSERT_EQ(thermal.Rows.size(), 7u);
  EXPECT_EQ(Lines(thermal)[2], "border|3|6 10|||||0.00|48.00|2|5.00|0.00|0.00|0.00|-");
  EXPECT_EQ(Lines(thermal)[3], "|||||||48.00|168.00|2|21.00|0.00|0.00|0.00|-");
  // The borders' temperature, function 2: 15 oC swinging 5 oC once a day, shifted 9 h; in oF the
  // mean moves by the offset, the swing by the factor only. No radiation is on: no "rad." block.
  EXPECT_EQ(Lines(Table_Of(tables, K::Functions)),
            (Row{"temp.|1|20.00|||||", "temp.|2||15.00|5.00|1.000|9.00|"}));
  EXPECT_EQ(Lines(Table_Of(Input_Tables(p, Sections_With_Data(p), false), K::Functions))[1],
            "temp.|2||59.00|9.00|1.000|9.00|");
  const Report_Table& humidity = Table_Of(tables, K::Functions, "hum.");
  EXPECT_FALSE(humidity.Shows_Column_Names);
  EXPECT_EQ(Lines(humidity), (Row{"hum.|1|0.700|||||"}));
  // The text ends with the periods: 0 to 24 h stored every 2 h in steps of 0.5 h, then to 168 h by 6
  // and 2 h.
  const std::string text = Input_Printout_Text(p, Sections_With_Data(p), true);
  const std::string tail =
      "\n   1       0.00      24.00      2.000      0.500\n   2      24.00     168.00      6.000      "
      "2.000\n";
  EXPECT_EQ(text.substr(text.size() - tail.size()), tail);
  // Nothing ticked, or only boxes without data (greyed, so not tickable): nothing at all.
  EXPECT_EQ(Input_Printout_Text(p, Print_Selection{}, true), "");
  EXPECT_EQ(Input_Printout_Text(p, Ticked({S::Interfaces}), true), "");
  EXPECT_TRUE(Paginate(Layout_Tables({}), 40).empty());
  // Elements two to a line, with their corners and macro; an odd count leaves half a line.
  const Report_Table elements = Input_Tables(p, Ticked({S::Elements}), true)[0];
  ASSERT_EQ(elements.Rows.size(), 52u);
  for (int e = 1; e <= 104; ++e) {
    const Row& row = elements.Rows[static_cast<std::size_t>((e - 1) / 2)];
    const std::size_t at = (e - 1) % 2 * 3;
    const Mesh_Element& m = p.Mesh_Element[e];
    EXPECT_EQ(row[at] + "|" + row[at + 1] + "|" + row[at + 2],
              std::to_string(e) + "|" + std::to_string(m.Corner[1]) + " " + std::to_string(m.Corner[2]) +
                  " " + std::to_string(m.Corner[3]) + " " + std::to_string(m.Corner[4]) + "|" +
                  std::to_string(m.Macro_Number));
  }
  p.Constant_Shear = True_Flag;
  EXPECT_EQ(Input_Tables(p, Ticked({S::Elements}), true)[0].Heading, "ELEMENTS (constant shear)");
  p.Mesh_Element.remove(104);
  const Report_Table odd = Input_Tables(p, Ticked({S::Elements}), true)[0];
  EXPECT_EQ(Lines(odd).back(), "103|" + odd.Rows.back()[1] + "|4|||");
}

// A project with one of everything the boundary and object tables and the functions show.
Project Boundary_Project() {
  Project p;
  New_Project(p);
  const Hygral_Period by_function{.Is_Water_Pressure = True_Flag},
      by_level{.Is_Water_Pressure = True_Flag, .Pressure_Kind = 2, .Constant_Level = 12.5};
  p.Border.add(
      {1, 2, True_Flag, True_Flag, {Thermal_Period{.Es = 0.9}}, {Hygral_Period{}, by_function, by_level}});
  p.Point_T.add({.X = 100, .Y = 254});
  p.Line_T.add({.Node_A = 3, .Node_B = 4});
  p.Area_T.add({.X1 = 1, .Y1 = 2, .X2 = 3, .Y2 = 4});
  Circuit c = p.Circuit_Default;
  c.Pipe_Node = {3, 4};
  c.Closed_Circuit = 1;  // any non-zero flag is true, not only -1
  p.Circuit.add(c);
  c.Closed_Circuit = False_Flag;
  p.Circuit.add(c);
  Support point, line;
  point.Has_Function = True_Flag;
  point.Is_Global = False_Flag;  // a point has no side: its angle counts from the X axis all the same
  line.Is_Fixed = line.Is_Global = False_Flag;
  line.Has_Offset = line.Is_Spring = True_Flag;
  line.Reference_Value = 2.54;
  line.Angle = 45;
  line.Node_A = 2, line.Node_B = 3;
  p.Point_Support.add(point);
  p.Line_Support.add(line);
  p.Point_Load.add({.Value = 4448.2216152605, .Is_Level = False_Flag});  // 1000 lbf
  p.Line_Load.add({.Value = 0.5, .Is_Level = False_Flag, .Is_Function = True_Flag, .Node_A = 1, .Node_B = 2});
  p.Line_Load.add({.Is_Global = False_Flag, .Node_A = 2, .Node_B = 3});
  p.Interface.add({.Node_A = 3, .Node_B = 7, .Layer_Material = "Joint", .Layer_Type = 2});
  Rebar bar;
  bar.Material = "B500";
  bar.Diameter = 12;
  bar.Lateral_Coefficient = 0.25;
  bar.X1 = 10, bar.Y1 = 20, bar.X2 = 1010, bar.Y2 = 20.5;
  p.Rebar.add(bar);
  return p;
}

TEST(Input_Printout, Boundary_And_Object_Rows_Use_The_Printouts_Words) {
  const Project p = Boundary_Project();
  const auto tables = Input_Tables(p, All(), true);
  EXPECT_EQ(Lines(Table_Of(tables, K::Thermal)),
            (Row{"border|1|1 2|||||0.00|72.00|1|21.00|0.90|0.00|0.00|1",
                 "point|1||100.00|254.00|||0.00|1000.00|1|||||", "line|1|3 4|||||0.00|1000.00|1|||||",
                 "area|1||1.00|2.00|3.00|4.00|0.00|1000.00|1|||||"}));
  EXPECT_EQ(Lines(Table_Of(tables, K::Hygral)),
            (Row{"border|1|1 2|0.00|8768.00|1|1.00e-08|No|-", "|||0.00|8768.00|1|1.00e-08|Yes|1",
                 "|||0.00|8768.00|1|1.00e-08|Yes|12.50 m"}));
  EXPECT_EQ(Lines(Table_Of(tables, K::Cooling_Circuits)),
            (Row{"1|2|3 4|4180.0|1000.00|28.00|Yes|1|1|5.00 10.00 5.00|0.00|36.00",
                 "2|2|3 4|4180.0|1000.00|28.00|No|1|1|5.00 10.00 5.00|0.00|36.00"}));
  const Report_Table& supports = Table_Of(tables, K::Supports);
  EXPECT_EQ(Lines(supports), (Row{"point supp.|1||0.00|10000.00|-90.00|global|Yes|1|-|-",
                                  "line supp.|1|2 3|0.00|10000.00|45.00|local|No|-|1|2.54"}));
  // Loads continue under the supports' heading with names of their own.
  const Report_Table& loads = Table_Of(tables, K::Loads);
  EXPECT_EQ(supports.Heading + "|" + loads.Heading, "MECHANICAL BOUNDARY CONDITIONS|");
  EXPECT_EQ(Lines(loads), (Row{"point load|1||0.00|1000.00|0.00|global|4448.22||const.|1.000",
                               "line load|1|1 2|0.00|1000.00|0.00|global||0.5000|1|1.000",
                               "line load|2|2 3|0.00|1000.00|0.00|local||1000.0000|20.00 m|1.000"}));
  EXPECT_EQ(Lines(Table_Of(tables, K::Interfaces)), (Row{"1|3 7|2 Joint"}));
  EXPECT_EQ(Lines(Table_Of(tables, K::Reinforcement)),
            (Row{"1|10.00|20.00|1010.00|20.50|B500|12.00|0.250|0.00|1000.00"}));
  EXPECT_EQ(Lines(Table_Of(Input_Tables(p, All(), false), K::Reinforcement)),
            (Row{"1|0.394|0.787|39.764|0.807|B500|0.472|0.250|0.00|1000.00"}));
}

TEST(Input_Printout, Imperial_Columns_Convert_By_Their_Kind) {
  const auto tables = Input_Tables(Boundary_Project(), All(), false);
  // Expected from the units' definitions: 1 in = 25.4 mm, 1 Btu/(h ft2 oF) = 5.678263 W/m2K,
  // 1 Btu/(yd3 oF) = 2.48391 kJ/m3K, 1 mph = 0.44704 m/s, 1 lbf = 4.4482216152605 N,
  // 1 ksi = 6.894757 MPa.
  const struct {
    K kind;
    std::size_t row;
    const char* column;
    double value, tolerance;
    const char* unit;
  } cases[] = {
      {K::Thermal, 1, "y1", 254 / 25.4, 0.001, "in"},
      {K::Thermal, 0, "transf.", 21 / 5.678263, 0.005, "BtuIT/hft2oF"},
      {K::Cooling_Circuits, 0, "cap.", 4180 / 2.48391, 0.05, "BtuIT/yd3oF"},
      {K::Cooling_Circuits, 0, "diam.", 28 / 25.4, 0.001, "in"},
      {K::Hygral, 0, "transf.", 1e-8 / 0.44704, 0.005e-8, "mph"},
      {K::Supports, 1, "offset", 0.1, 0.0005, "in"},
      {K::Loads, 0, "force", 1000, 0.005, "lbf"},
      {K::Loads, 1, "press.", 0.5 / 6.894757, 0.00005, "ksi"},
  };
  for (const auto& c : cases) {
    const Report_Table& t = Table_Of(tables, c.kind);
    EXPECT_NEAR(std::stod(t.Rows[c.row][Column(t, c.column)]), c.value, c.tolerance) << c.column;
    EXPECT_EQ(Unit(t, c.column), c.unit) << c.column;
  }
  // Distances and levels in m go to yards (0.9144 m); times, angles and emissivities stay.
  EXPECT_EQ(Table_Of(tables, K::Cooling_Circuits).Rows[0][9], "5.47 10.94 5.47");
  EXPECT_EQ(Table_Of(tables, K::Hygral).Rows[2][8], "13.67 yd");
  EXPECT_EQ(Table_Of(tables, K::Thermal).Rows[0][11], "0.90");
  EXPECT_EQ(Table_Of(tables, K::Supports).Rows[1][5], "45.00");
}

TEST(Input_Printout, Out_Of_Plane_Row_Names_The_Mode_And_The_Fixed_Unknowns) {
  Project p = Boundary_Project();
  const struct {
    Out_Of_Plane o;
    std::string row;
  } cases[] = {
      {{}, "out-of-plane|plane stress|0.00|free|free|free"},
      {{False_Flag, False_Flag, 0, True_Flag, True_Flag, False_Flag, True_Flag},
       "out-of-plane|plane strain|0.00|fixed|free|fixed"},
      {{False_Flag, True_Flag, 750, False_Flag, False_Flag, True_Flag, False_Flag},
       "out-of-plane|axisymmetrical|750.00|free|fixed|free"},
  };
  for (const auto& c : cases) {
    p.Out_Of_Plane = c.o;
    const Report_Table t = Table_Of(Input_Tables(p, Ticked({S::Mechanical}), true), K::Out_Of_Plane);
    EXPECT_EQ(Lines(t), Row{c.row});
    EXPECT_EQ(t.Heading, "");
  }
  // With loads only, the loads carry the heading; with neither the box is greyed.
  p.Point_Support.clear();
  p.Line_Support.clear();
  const auto tables = Input_Tables(p, Ticked({S::Mechanical}), true);
  ASSERT_FALSE(tables.empty());
  EXPECT_EQ(tables[0].Kind, K::Loads);
  EXPECT_EQ(tables[0].Heading, "MECHANICAL BOUNDARY CONDITIONS");
  p.Point_Load.clear();
  p.Line_Load.clear();
  EXPECT_TRUE(Input_Tables(p, Ticked({S::Mechanical}), true).empty());
}

TEST(Input_Printout, Function_Blocks_Follow_The_Kinds_That_Printed_Rows_Use) {
  const Project p = Boundary_Project();
  const std::pair<S, std::vector<std::string>> selections[] = {
      {S::Macros, {}},
      {S::Cooling_Circuits, {"temp.", "flow"}},
      {S::Thermal, {"temp.", "rad."}},
      {S::Hygral, {"hum.", "waterp."}},
      {S::Mechanical, {"displ.", "spring", "load"}},
  };
  for (const auto& [section, expected] : selections) {
    std::vector<std::string> kinds;
    for (const Report_Table& t : Input_Tables(p, Ticked({section}), true))
      if (t.Kind == K::Functions) {
        kinds.push_back(t.Rows.at(0)[0]);
        EXPECT_EQ(t.Heading, kinds.size() == 1 ? "FUNCTIONS" : "");
      }
    EXPECT_EQ(kinds, expected) << Print_Section_Name(section);
  }
  // Units of the value cells (const., avg., ampl., cut-off), of "freq." and of "shift": the spring's
  // abscissa is a displacement; a water pressure is a head in yd.
  const struct {
    const char* kind;
    bool metric;
    const char *value, *frequency, *shift;
  } units[] = {{"spring", true, "N/mm", "1/mm", "mm"},
               {"spring", false, "lbf/in", "1/in", "in"},
               {"waterp.", false, "yd", "1/day", "h"}};
  for (const auto& u : units) {
    const Report_Table t = Table_Of(Input_Tables(p, All(), u.metric), K::Functions, u.kind);
    for (const char* column : {"const.", "avg.", "ampl.", "cut-off"})
      EXPECT_EQ(Unit(t, column), u.value) << u.kind << " " << column;
    EXPECT_EQ(Unit(t, "freq.") + " " + Unit(t, "shift"), std::string(u.frequency) + " " + u.shift) << u.kind;
  }
}

TEST(Input_Printout, Function_Rows_Show_The_Cells_Of_Their_Form) {
  Project p = Boundary_Project();
  // Radiation 1 of a new project is periodic: mean 250, amplitude 400, once a day, cut off at 0.
  Function& radiation = p.Radiation_Functions[1];
  Resize_Sines(radiation, 2);
  radiation.Amplitude[2] = 50;
  radiation.Frequency[2] = 2;
  radiation.Phase_Shift[2] = 6;
  Function table = Default_Function(Function_Family::Temperature);
  table.Is_Constant = False_Flag;
  table.Is_Piecewise = True_Flag;
  Resize_Points(table, 5);
  for (int k = 1; k <= 5; ++k) {
    table.Point_Time[k] = 10.0 * k;
    table.Point_Value[k] = k;
  }
  p.Temperature_Functions.add(table);
  // The spring made periodic over a displacement: 0.5 per mm, shifted 25.4 mm.
  Function& spring = p.Spring_Functions[1];
  spring.Is_Piecewise = False_Flag;
  spring.Is_Periodical = True_Flag;
  spring.Frequency[1] = 0.5;
  spring.Phase_Shift[1] = 25.4;
  const struct {
    const char* kind;
    bool metric;
    Row rows;
  } cases[] = {
      {"rad.", true, {"rad.|1||250.00|400.00|1.000|0.00|0.00", "||||50.00|2.000|6.00|"}},
      // A table four points to a line; its values in oF (1 oC is 33.8 oF), times as they are.
      {"temp.",
       false,
       {"temp.|1|68.00|||||", "temp.|2|table|||||",
        "|||(10.00, 33.80) (20.00, 35.60) (30.00, 37.40) (40.00, 39.20)||||", "|||(50.00, 41.00)||||"}},
      // 1 N/mm is 5.710 lbf/in; 0.5 per mm is 12.7 per inch; 25.4 mm is 1 inch.
      {"spring", true, {"spring|1||1.000|0.200|0.500|25.40|"}},
      {"spring", false, {"spring|1||5.710|1.142|12.700|1.00|"}},
  };
  for (const auto& c : cases)
    EXPECT_EQ(Lines(Table_Of(Input_Tables(p, All(), c.metric), K::Functions, c.kind)), c.rows)
        << c.kind << c.metric;
}

TEST(Input_Printout, Boxes_Without_Data_Are_Greyed) {
  Project empty;
  New_Project(empty);
  // A new project has its one calculation period and nothing else.
  EXPECT_EQ(Sections_With_Data(empty), Ticked({S::Periods}));
  empty.Period.clear();
  const struct {
    const char* what;
    void (*add)(Project&);
    std::initializer_list<S> lit;
  } cases[] = {
      {"border", [](Project& p) { p.Border.add({}); }, {S::Thermal, S::Hygral}},
      {"point temperature", [](Project& p) { p.Point_T.add({}); }, {S::Thermal}},
      {"line temperature", [](Project& p) { p.Line_T.add({}); }, {S::Thermal}},
      {"area temperature", [](Project& p) { p.Area_T.add({}); }, {S::Thermal}},
      {"point support", [](Project& p) { p.Point_Support.add({}); }, {S::Mechanical}},
      {"line support", [](Project& p) { p.Line_Support.add({}); }, {S::Mechanical}},
      {"point load", [](Project& p) { p.Point_Load.add({}); }, {S::Mechanical}},
      {"line load", [](Project& p) { p.Line_Load.add({}); }, {S::Mechanical}},
      {"mesh node", [](Project& p) { p.Mesh_Node.add({}); }, {S::Nodes}},
      {"mesh element", [](Project& p) { p.Mesh_Element.add({}); }, {S::Elements}},
      // Design nodes are no mesh: "Nodes" prints the mesh's nodes, which the elements refer to.
      {"design node", [](Project& p) { Add_Node(p, 1, 2); }, {}},
  };
  for (const auto& c : cases) {
    Project p = empty;
    c.add(p);
    EXPECT_EQ(Sections_With_Data(p), Ticked(c.lit)) << c.what;
  }
}

TEST(Input_Printout, Cells_Stand_At_Their_Tab_Stops) {
  const std::vector<Report_Column> columns{{"a", "", 0, 6, Cell_Align::Right},
                                           {"b", "", 6, 8, Cell_Align::Left},
                                           {"c", "", 14, 6, Cell_Align::Right}};
  const std::pair<Row, std::string> cases[] = {
      // Right-aligned against the next stop less one blank, left-aligned at the stop.
      {{"12", "abc", "7"}, "   12 abc         7"},
      {{"", "", "-1.5"}, "               -1.5"},
      // A cell too wide for its column pushes the next one on, one blank apart.
      {{"1234567", "abcdefghij", "1"}, "1234567 abcdefghij 1"},
      {{"1"}, "    1"},
  };
  for (const auto& [cells, line] : cases)
    EXPECT_EQ(Table_Line(columns, cells), line);
}

// `tables` tables T1, T2, ... of `rows` rows "T1 r1", ..., with the names line "row" and units "u".
Print_Layout Numbered_Tables(int tables, int rows, bool continued_blocks = false) {
  std::vector<Report_Table> list;
  for (int k = 1; k <= tables; ++k) {
    Report_Table t;
    const std::string name = "T" + std::to_string(k);
    t.Heading = continued_blocks && k > 1 ? std::string() : name;
    t.Shows_Column_Names = !continued_blocks || k == 1;
    t.Columns = {{"row", "u" + std::to_string(k), 0, 20, Cell_Align::Left}};
    for (int r = 1; r <= rows; ++r)
      t.Rows.push_back({name + " r" + std::to_string(r)});
    list.push_back(t);
  }
  return Layout_Tables(list);
}

TEST(Input_Printout, Pages_Repeat_The_Head_Of_A_Table_That_Runs_On) {
  // R rows on pages of C lines: the first page has heading, names, units and C - 3 rows, every
  // further page the head again and C - 3 rows: ceil(R / (C - 3)) pages.
  for (const auto& [rows, capacity] : {std::pair{100, 13}, {100, 14}, {10, 13}, {11, 13}, {1, 4}, {27, 10}}) {
    const auto pages = Paginate(Numbered_Tables(1, rows), capacity);
    EXPECT_EQ(static_cast<int>(pages.size()), (rows + capacity - 4) / (capacity - 3))
        << rows << " " << capacity;
    int next = 1;
    for (std::size_t n = 0; n < pages.size(); ++n) {
      ASSERT_GE(pages[n].size(), 4u);
      EXPECT_LE(static_cast<int>(pages[n].size()), capacity);
      EXPECT_EQ(Row(pages[n].begin(), pages[n].begin() + 3),
                (Row{n == 0 ? "T1" : "T1 (continued)", "row", "u1"}));
      for (std::size_t i = 3; i < pages[n].size(); ++i)
        EXPECT_EQ(pages[n][i], "T1 r" + std::to_string(next++));
    }
    EXPECT_EQ(next, rows + 1);
  }
}

TEST(Input_Printout, Pages_Keep_A_Head_With_Its_First_Row_And_Drop_Blank_Tops) {
  // On pages of 10 the second head would just fit at the foot of page one, without a row.
  EXPECT_EQ(Paginate(Numbered_Tables(2, 3), 10), (Rows{{"T1", "row", "u1", "T1 r1", "T1 r2", "T1 r3", ""},
                                                       {"T2", "row", "u2", "T2 r1", "T2 r2", "T2 r3"}}));
  // On pages of 6 the blank between the tables would open page two.
  EXPECT_EQ(Paginate(Numbered_Tables(2, 3), 6)[1].front(), "T2");
  // A block that shares the heading and names of the one before gets them at the top of a page.
  EXPECT_EQ(Paginate(Numbered_Tables(2, 3, true), 7)[1],
            (Row{"T1 (continued)", "row", "u2", "T2 r1", "T2 r2", "T2 r3"}));
  // Pages too small for a head: every line once, none repeated, no page empty or overfull.
  const Print_Layout layout = Numbered_Tables(3, 5);
  for (const int capacity : {1, 2, 3, 4}) {
    int rows = 0, lines = 0;
    for (const auto& page : Paginate(layout, capacity)) {
      EXPECT_TRUE(!page.empty() && static_cast<int>(page.size()) <= capacity);
      lines += static_cast<int>(page.size());
      rows += static_cast<int>(
          std::count_if(page.begin(), page.end(), [](auto& l) { return l.find(" r") != l.npos; }));
    }
    EXPECT_EQ(rows, 15) << capacity;
    if (capacity == 1) {
      EXPECT_EQ(lines, static_cast<int>(layout.Lines.size()) - 2);  // less the two blanks
    }
  }
}

}  // namespace
}  // namespace pvx
