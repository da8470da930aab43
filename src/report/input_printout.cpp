#include "report/input_printout.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <iterator>

#include "app/units.h"

namespace pvx {

namespace {

// Wide enough for any value a project holds, so that no number becomes "*": a column too narrow for a value
// pushes the next cell on instead of losing the number.
constexpr int Number_Field = 30;

std::string Num(double value, int decimals) {
  return Format_Number_Trimmed(value, Number_Field, decimals);
}

std::string Yes_No(Flag f) {
  return f != 0 ? "Yes" : "No";
}

// A function reference that the record's flags switch off.
constexpr const char* Not_Used = "-";

template <class Range>
std::string Numbers(const Range& numbers) {
  std::string text;
  for (const auto n : numbers) {
    if (!text.empty()) text += ' ';
    text += std::to_string(n);
  }
  return text;
}

std::string Node_Pair(int a, int b) {
  return std::to_string(a) + " " + std::to_string(b);
}

// The value of a column in the chosen system, and its unit text: metric as stored with the
// printout's own unit text, Imperial through Convert_Unit with the kind's name.
struct Units {
  bool metric = true;

  double Value(int kind, double v) const { return metric ? v : Convert_Unit(true, kind, v); }
  // A temperature difference (an amplitude) has no offset in Fahrenheit.
  double Temperature_Difference(double v) const {
    return metric ? v : Convert_Unit(true, Unit_Temperature, v) - Convert_Unit(true, Unit_Temperature, 0);
  }
  std::string Name(int kind, const char* metric_text) const {
    return metric ? metric_text : Unit_Name(kind, false);
  }
  // Lengths get one decimal more in inches, which are 25 times coarser than mm.
  int Length_Decimals() const { return metric ? 2 : 3; }
  std::string Length(double mm) const { return Num(Value(Unit_Length_mm, mm), Length_Decimals()); }
  // A level in m, with its unit in the cell: it stands in a column that holds other things too.
  std::string Level(double m) const {
    return Num(Value(Unit_Length_m, m), 2) + " " + Name(Unit_Length_m, "m");
  }
};

struct Column_Def {
  const char* name;
  int width;
  Cell_Align align = Cell_Align::Right;
  std::string unit = {};
};

constexpr Cell_Align L = Cell_Align::Left;
constexpr Cell_Align R = Cell_Align::Right;

std::vector<Report_Column> Columns(const std::vector<Column_Def>& defs) {
  std::vector<Report_Column> columns;
  int tab = 0;
  for (const Column_Def& s : defs) {
    columns.push_back({s.name, s.unit, tab, s.width, s.align});
    tab += s.width;
  }
  return columns;
}

Report_Table Make_Table(Report_Table_Kind kind, std::string heading, std::vector<Report_Column> columns) {
  Report_Table t;
  t.Kind = kind;
  t.Heading = std::move(heading);
  t.Columns = std::move(columns);
  return t;
}

// The eight kinds of function of the printout, in its order, with their families.
struct Function_Kind {
  const char* text;
  Function_Family family;
};
constexpr std::array<Function_Kind, 8> Function_Kinds = {{
    {"temp.", Function_Family::Temperature},
    {"rad.", Function_Family::Radiation},
    {"hum.", Function_Family::Moisture_Potential},
    {"flow", Function_Family::Flow},
    {"waterp.", Function_Family::Water_Pressure},
    {"displ.", Function_Family::Displacement},
    {"spring", Function_Family::Spring},
    {"load", Function_Family::Load},
}};
// Kinds 1 to 8 that a printed row refers to.
using Kinds_In_Use = std::array<bool, 9>;
constexpr int Kind_Temperature = 1, Kind_Radiation = 2, Kind_Humidity = 3, Kind_Flow = 4,
              Kind_Water_Pressure = 5, Kind_Displacement = 6, Kind_Spring = 7, Kind_Load = 8;

// A function number in a cell, noting its kind as used; or "-" when the record does not use it.
std::string Function_Cell(bool used, int number, int kind, Kinds_In_Use& in_use) {
  if (!used) return Not_Used;
  in_use[kind] = true;
  return std::to_string(number);
}

Report_Table Macro_Table(const Project& p, const Units& u) {
  Report_Table t = Make_Table(Report_Table_Kind::Macros, "MACRO PROPERTIES",
                              Columns({{"nr.", 5},
                                       {"nodes", 22, L},
                                       {"material", 22, L},
                                       {"temp.", 8, R, u.Name(Unit_Temperature, "oC")},
                                       {"hum.", 7},
                                       {"moist.", 9, R, u.Name(Unit_Density, "kg/m3")},
                                       {"matu.", 9, R, "h"},
                                       {"thick.", 10, R, u.Name(Unit_Length_mm, "mm")},
                                       {"from", 9, R, "h"},
                                       {"until", 9, R, "h"},
                                       {"timew.", 9, R, "h"}}));
  for (int i = 1; i <= p.Macro.count(); ++i) {
    const Macro& m = p.Macro[i];
    t.Rows.push_back(
        {std::to_string(i), Numbers(m.Corner), m.Material, Num(u.Value(Unit_Temperature, m.Temperature), 2),
         Num(m.Potential, 3), Num(u.Value(Unit_Density, m.Moisture_Content), 1), Num(m.Maturity, 2),
         u.Length(m.Thickness), Num(m.Present_From, 2), Num(m.Present_Until, 2), Num(m.Dead_Weight_At, 2)});
  }
  return t;
}

Report_Table Interface_Table(const Project& p) {
  Report_Table t = Make_Table(Report_Table_Kind::Interfaces, "INTERFACE PROPERTIES",
                              Columns({{"nr.", 5}, {"nodes", 16, L}, {"layer type", 30, L}}));
  // The layer's material defines it as much as its type number, and the table has no other place
  // for it.
  for (int i = 1; i <= p.Interface.count(); ++i) {
    const Interface& f = p.Interface[i];
    t.Rows.push_back({std::to_string(i), Node_Pair(f.Node_A, f.Node_B),
                      std::to_string(f.Layer_Type) + " " + f.Layer_Material});
  }
  return t;
}

Report_Table Reinforcement_Table(const Project& p, const Units& u) {
  const std::string mm = u.Name(Unit_Length_mm, "mm");
  Report_Table t = Make_Table(Report_Table_Kind::Reinforcement, "REINFORCEMENT PROPERTIES",
                              Columns({{"nr.", 5},
                                       {"x1", 11, R, mm},
                                       {"y1", 11, R, mm},
                                       {"x2", 11, R, mm},
                                       {"y2", 11, R, mm},
                                       {"material", 22, L},
                                       {"diam.", 9, R, mm},
                                       {"lat.", 8},
                                       {"from", 9, R, "h"},
                                       {"until", 9, R, "h"}}));
  for (int i = 1; i <= p.Rebar.count(); ++i) {
    const Rebar& b = p.Rebar[i];
    t.Rows.push_back({std::to_string(i), u.Length(b.X1), u.Length(b.Y1), u.Length(b.X2), u.Length(b.Y2),
                      b.Material, u.Length(b.Diameter), Num(b.Lateral_Coefficient, 3), Num(b.From, 2),
                      Num(b.Until, 2)});
  }
  return t;
}

Report_Table Circuit_Table(const Project& p, const Units& u, Kinds_In_Use& in_use) {
  Report_Table t = Make_Table(Report_Table_Kind::Cooling_Circuits, "COOLING CIRCUIT PROPERTIES",
                              Columns({{"nr.", 4},
                                       {"pip.", 5},
                                       {"nodes", 20, L},
                                       {"cap.", 9, R, u.Name(Unit_Capacity, "kJ/m3K")},
                                       {"transf.", 13, R, u.Name(Unit_Convection, "J/m2sK")},
                                       {"diam.", 9, R, u.Name(Unit_Length_mm, "mm")},
                                       {"closed", 7, L},
                                       {"temp.", 6},
                                       {"flow", 6},
                                       {"distances", 32, L, u.Name(Unit_Length_m, "m")},
                                       {"from", 9, R, "h"},
                                       {"until", 9, R, "h"}}));
  for (int i = 1; i <= p.Circuit.count(); ++i) {
    const Circuit& c = p.Circuit[i];
    std::string distances;
    for (const double d : c.Distance) {
      if (!distances.empty()) distances += ' ';
      distances += Num(u.Value(Unit_Length_m, d), 2);
    }
    t.Rows.push_back({std::to_string(i), std::to_string(c.Pipe_Count), Numbers(c.Pipe_Node),
                      Num(u.Value(Unit_Capacity, c.Liquid_Capacity), 1),
                      Num(u.Value(Unit_Convection, c.Transfer_Coefficient), 2), u.Length(c.Diameter),
                      Yes_No(c.Closed_Circuit),
                      Function_Cell(true, c.Temperature_Function, Kind_Temperature, in_use),
                      Function_Cell(true, c.Flow_Function, Kind_Flow, in_use), distances,
                      Num(c.Active_From, 2), Num(c.Active_Until, 2)});
  }
  return t;
}

Report_Table Thermal_Table(const Project& p, const Units& u, Kinds_In_Use& in_use) {
  const std::string mm = u.Name(Unit_Length_mm, "mm");
  Report_Table t = Make_Table(Report_Table_Kind::Thermal, "THERMAL BOUNDARY CONDITIONS",
                              Columns({{"cat.", 8, L},
                                       {"nr.", 5},
                                       {"nodes", 12, L},
                                       {"x1", 11, R, mm},
                                       {"y1", 11, R, mm},
                                       {"x2", 11, R, mm},
                                       {"y2", 11, R, mm},
                                       {"from", 9, R, "h"},
                                       {"until", 9, R, "h"},
                                       {"temp.", 6},
                                       {"transf.", 13, R, u.Name(Unit_Convection, "J/m2sK")},
                                       {"es", 6},
                                       {"ea", 6},
                                       {"er", 6},
                                       {"rad.", 6}}));
  // A border prints a row per thermal period; its later periods leave category, number and nodes
  // to the first.
  for (int i = 1; i <= p.Border.count(); ++i) {
    const Border& b = p.Border[i];
    for (int k = 1; k <= b.Thermal_Periods.count(); ++k) {
      const Thermal_Period& q = b.Thermal_Periods[k];
      const bool first = k == 1;
      t.Rows.push_back(
          {first ? "border" : "", first ? std::to_string(i) : "", first ? Node_Pair(b.Node_A, b.Node_B) : "",
           "", "", "", "", Num(q.From, 2), Num(q.Until, 2),
           Function_Cell(true, q.Temperature_Function, Kind_Temperature, in_use),
           Num(u.Value(Unit_Convection, q.Convection_Coefficient), 2), Num(q.Es, 2), Num(q.Ea, 2),
           Num(q.Er, 2), Function_Cell(q.Radiation_On != 0, q.Radiation_Function, Kind_Radiation, in_use)});
    }
  }
  auto prescribed = [&](const char* category, int i, std::string nodes, std::string x1, std::string y1,
                        std::string x2, std::string y2, double from, double until, int function) {
    t.Rows.push_back({category, std::to_string(i), std::move(nodes), std::move(x1), std::move(y1),
                      std::move(x2), std::move(y2), Num(from, 2), Num(until, 2),
                      Function_Cell(true, function, Kind_Temperature, in_use), "", "", "", "", ""});
  };
  for (int i = 1; i <= p.Point_T.count(); ++i) {
    const Point_T& q = p.Point_T[i];
    prescribed("point", i, "", u.Length(q.X), u.Length(q.Y), "", "", q.Present_From, q.Until,
               q.Temperature_Function);
  }
  for (int i = 1; i <= p.Line_T.count(); ++i) {
    const Line_T& q = p.Line_T[i];
    prescribed("line", i, Node_Pair(q.Node_A, q.Node_B), "", "", "", "", q.Present_From, q.Until,
               q.Temperature_Function);
  }
  for (int i = 1; i <= p.Area_T.count(); ++i) {
    const Area_T& q = p.Area_T[i];
    prescribed("area", i, "", u.Length(q.X1), u.Length(q.Y1), u.Length(q.X2), u.Length(q.Y2), q.Present_From,
               q.Until, q.Temperature_Function);
  }
  return t;
}

Report_Table Hygral_Table(const Project& p, const Units& u, Kinds_In_Use& in_use) {
  Report_Table t = Make_Table(Report_Table_Kind::Hygral, "HYGRAL BOUNDARY CONDITIONS",
                              Columns({{"cat.", 8, L},
                                       {"nr.", 5},
                                       {"nodes", 12, L},
                                       {"from", 9, R, "h"},
                                       {"until", 9, R, "h"},
                                       {"hum.", 6},
                                       {"transf.", 11, R, u.Name(Unit_Speed, "m/s")},
                                       {"press.", 8, L},
                                       {"waterp.", 12, L}}));
  // "press." says whether the border holds water pressure instead of evaporation; "waterp." the
  // function it follows, or its constant level.
  for (int i = 1; i <= p.Border.count(); ++i) {
    const Border& b = p.Border[i];
    for (int k = 1; k <= b.Hygral_Periods.count(); ++k) {
      const Hygral_Period& q = b.Hygral_Periods[k];
      const bool first = k == 1;
      const bool pressure = q.Is_Water_Pressure != 0;
      std::string water =
          pressure && q.Pressure_Kind == 2
              ? u.Level(q.Constant_Level)
              : Function_Cell(pressure, q.Water_Pressure_Function, Kind_Water_Pressure, in_use);
      t.Rows.push_back({first ? "border" : "", first ? std::to_string(i) : "",
                        first ? Node_Pair(b.Node_A, b.Node_B) : "", Num(q.From, 2), Num(q.Until, 2),
                        Function_Cell(true, q.Potential_Function, Kind_Humidity, in_use),
                        Num(u.Value(Unit_Speed, q.Transfer_Coefficient), -2), Yes_No(q.Is_Water_Pressure),
                        std::move(water)});
    }
  }
  return t;
}

// Supports and loads begin alike: the category, the number, the nodes of a line, when the
// condition acts, and its direction; `own` are the columns of the kind that follow.
std::vector<Column_Def> Point_Line_Columns(std::initializer_list<Column_Def> own) {
  std::vector<Column_Def> defs{{"cat.", 13, L},     {"nr.", 5},           {"nodes", 12, L},
                               {"from", 9, R, "h"}, {"until", 9, R, "h"}, {"angle", 9, R, "o"},
                               {"ref.", 8, L}};
  defs.insert(defs.end(), own);
  return defs;
}

// A row per point, then a row per line, each beginning with the cells of Point_Line_Columns, then
// `own_cells(condition, line)`. A point's angle always counts from the X axis: it has no side to
// count from.
template <class Condition, class Own_Cells>
void Add_Point_Line_Rows(Report_Table& t, const char* point_category, const Table<Condition>& points,
                         const char* line_category, const Table<Condition>& lines, Own_Cells own_cells) {
  auto add = [&](const char* category, int i, const Condition& c, bool line) {
    std::vector<std::string> row{category,
                                 std::to_string(i),
                                 line ? Node_Pair(c.Node_A, c.Node_B) : "",
                                 Num(c.Present_From, 2),
                                 Num(c.Until, 2),
                                 Num(c.Angle, 2),
                                 !line || c.Is_Global != 0 ? "global" : "local"};
    std::vector<std::string> own = own_cells(c, line);
    row.insert(row.end(), std::make_move_iterator(own.begin()), std::make_move_iterator(own.end()));
    t.Rows.push_back(std::move(row));
  };
  for (int i = 1; i <= points.count(); ++i)
    add(point_category, i, points[i], false);
  for (int i = 1; i <= lines.count(); ++i)
    add(line_category, i, lines[i], true);
}

// The mechanical section: supports, loads, and the out-of-plane state, under one heading carried
// by the first of them.
void Mechanical_Tables(const Project& p, const Units& u, Kinds_In_Use& in_use,
                       std::vector<Report_Table>& out) {
  const char* heading = "MECHANICAL BOUNDARY CONDITIONS";
  const std::string mm = u.Name(Unit_Length_mm, "mm");
  if (!p.Point_Support.empty() || !p.Line_Support.empty()) {
    Report_Table t = Make_Table(
        Report_Table_Kind::Supports, heading,
        Columns(Point_Line_Columns({{"fixed", 6, L}, {"displ.", 7}, {"spring", 7}, {"offset", 11, R, mm}})));
    Add_Point_Line_Rows(
        t, "point supp.", p.Point_Support, "line supp.", p.Line_Support,
        [&](const Support& s, bool) -> std::vector<std::string> {
          return {Yes_No(s.Is_Fixed),
                  Function_Cell(s.Has_Function != 0, s.Displacement_Function, Kind_Displacement, in_use),
                  Function_Cell(s.Is_Spring != 0, s.Spring_Function, Kind_Spring, in_use),
                  s.Has_Offset != 0 ? u.Length(s.Reference_Value) : Not_Used};
        });
    out.push_back(std::move(t));
    heading = "";
  }
  if (!p.Point_Load.empty() || !p.Line_Load.empty()) {
    Report_Table t = Make_Table(Report_Table_Kind::Loads, heading,
                                Columns(Point_Line_Columns({{"force", 11, R, u.Name(Unit_Force_N, "N")},
                                                            {"press.", 10, R, u.Name(Unit_Stress, "MPa")},
                                                            {"load", 11},
                                                            {"factor", 9}})));
    // "load" says how the load follows time: its function, its water level, or "const.".
    Add_Point_Line_Rows(
        t, "point load", p.Point_Load, "line load", p.Line_Load,
        [&](const Load& l, bool line) -> std::vector<std::string> {
          std::string how = l.Is_Function != 0 ? Function_Cell(true, l.Load_Function, Kind_Load, in_use)
                            : l.Is_Level != 0  ? u.Level(l.Level)
                                               : "const.";
          return {line ? "" : Num(u.Value(Unit_Force_N, l.Value), 2),
                  line ? Num(u.Value(Unit_Stress, l.Value), 4) : "", std::move(how), Num(l.Factor, 3)};
        });
    out.push_back(std::move(t));
    heading = "";
  }
  Report_Table t = Make_Table(Report_Table_Kind::Out_Of_Plane, heading,
                              Columns({{"cat.", 13, L},
                                       {"mode", 16, L},
                                       {"radius", 11, R, mm},
                                       {"x-rot.", 7, L},
                                       {"y-rot.", 7, L},
                                       {"dil.", 7, L}}));
  const Out_Of_Plane& o = p.Out_Of_Plane;
  const char* mode = o.Axisymmetric != 0   ? "axisymmetrical"
                     : o.Plane_Strain != 0 ? "plane strain"
                                           : "plane stress";
  auto fixed = [](Flag f) { return std::string(f != 0 ? "fixed" : "free"); };
  t.Rows.push_back({"out-of-plane", mode, u.Length(o.Offset_Radius), fixed(o.Rotation_X_Fixed),
                    fixed(o.Rotation_Y_Fixed), fixed(o.Dilatation_Fixed)});
  out.push_back(std::move(t));
}

// The functions of every kind in use, a block per kind with its own units line.
void Function_Tables(const Project& p, const Units& u, const Kinds_In_Use& in_use,
                     std::vector<Report_Table>& out) {
  bool first_block = true;
  for (int kind = 1; kind <= 8; ++kind) {
    if (!in_use[kind]) continue;
    const Function_Kind& k = Function_Kinds[static_cast<std::size_t>(kind - 1)];
    // Value units and their conversions; the spring's abscissa is a displacement in mm, the others'
    // a time in hours.
    std::string value_unit, per_unit = "1/day", shift_unit = "h";
    const std::function<double(double)> same = [](double v) { return v; };
    std::function<double(double)> to_value = same, to_amplitude = same, to_frequency = same, to_shift = same;
    int decimals = 2;
    auto converted = [&](int unit_kind, const char* metric_text) {
      value_unit = u.Name(unit_kind, metric_text);
      to_value = to_amplitude = [&u, unit_kind](double v) { return u.Value(unit_kind, v); };
    };
    switch (kind) {
      case Kind_Temperature:
        converted(Unit_Temperature, "oC");
        to_amplitude = [&u](double v) { return u.Temperature_Difference(v); };
        break;
      case Kind_Radiation:
        converted(Unit_Radiation, "J/m2s");
        break;
      case Kind_Humidity:
        decimals = 3;
        break;
      case Kind_Flow:
        converted(Unit_Volume_Rate, "m3/h");
        decimals = 3;
        break;
      case Kind_Water_Pressure:
        // The function editor shows the pressure head in yd in Imperial units.
        if (!u.metric) converted(Unit_Length_m, "");
        break;
      case Kind_Displacement:
        converted(Unit_Length_mm, "mm");
        decimals = u.Length_Decimals();
        break;
      case Kind_Spring:
        converted(Unit_Line_Force, "N/mm");
        decimals = 3;
        shift_unit = u.Name(Unit_Length_mm, "mm");
        per_unit = u.metric ? "1/mm" : std::string("1/") + Unit_Name(Unit_Length_mm, false);
        to_shift = [&u](double s) { return u.Value(Unit_Length_mm, s); };
        // A frequency per mm is one per 1/0.03937 in: the same wave over a longer unit.
        to_frequency = [&u](double f) { return u.metric ? f : f / Convert_Unit(true, Unit_Length_mm, 1.0); };
        break;
      case Kind_Load:
        // A ratio that scales the load's value: the function editor shows it unconverted.
        value_unit = u.metric ? "MPa" : "-";
        decimals = 3;
        break;
      default:
        break;
    }
    Report_Table t = Make_Table(Report_Table_Kind::Functions, first_block ? "FUNCTIONS" : "",
                                Columns({{"cat.", 9, L},
                                         {"nr.", 5},
                                         {"const.", 12, R, value_unit},
                                         {"avg.", 12, R, value_unit},
                                         {"ampl.", 12, R, value_unit},
                                         {"freq.", 10, R, per_unit},
                                         {"shift", 10, R, shift_unit},
                                         {"cut-off", 12, R, value_unit}}));
    t.Shows_Column_Names = first_block;
    first_block = false;
    const Table<Function>& functions = Function_Table(p, k.family);
    for (int n = 1; n <= functions.count(); ++n) {
      const Function& f = functions[n];
      const std::string cut_off = f.Has_Cut_Off != 0 ? Num(to_value(f.Cut_Off_Value), decimals) : "";
      std::vector<std::string> row{k.text, std::to_string(n), "", "", "", "", "", cut_off};
      if (f.Is_Constant != 0) {
        row[2] = Num(to_value(f.Constant_Value), decimals);
        t.Rows.push_back(std::move(row));
      } else if (f.Is_Periodical != 0) {
        // The first sine term on the function's line, each further term on a line of its own.
        row[3] = Num(to_value(f.Average), decimals);
        for (int s = 1; s <= Sine_Count(f); ++s) {
          if (s > 1) row = {"", "", "", "", "", "", "", ""};
          row[4] = Num(to_amplitude(f.Amplitude[s]), decimals);
          row[5] = Num(to_frequency(f.Frequency[s]), 3);
          row[6] = Num(to_shift(f.Phase_Shift[s]), 2);
          t.Rows.push_back(std::move(row));
        }
        if (Sine_Count(f) == 0) t.Rows.push_back(std::move(row));
      } else if (f.Is_Piecewise != 0) {
        // "table", then its points as (time, value) pairs, four to a line, from the "avg." column.
        row[2] = "table";
        t.Rows.push_back(std::move(row));
        std::string pairs;
        for (int q = 1; q <= Point_Count(f); ++q) {
          if (!pairs.empty()) pairs += ' ';
          pairs += '(';
          pairs += Num(to_shift(f.Point_Time[q]), 2);
          pairs += ", ";
          pairs += Num(to_value(f.Point_Value[q]), decimals);
          pairs += ')';
          if (q % 4 == 0 || q == Point_Count(f)) {
            t.Rows.push_back({"", "", "", pairs, "", "", "", ""});
            pairs.clear();
          }
        }
      } else {
        t.Rows.push_back(std::move(row));
      }
    }
    out.push_back(std::move(t));
  }
}

Report_Table Node_Table(const Project& p, const Units& u) {
  const std::string mm = u.Name(Unit_Length_mm, "mm");
  Report_Table t = Make_Table(Report_Table_Kind::Nodes, "NODES",
                              Columns({{"nr.", 7}, {"x", 13, R, mm}, {"y", 13, R, mm}}));
  for (int i = 1; i <= p.Mesh_Node.count(); ++i)
    t.Rows.push_back({std::to_string(i), u.Length(p.Mesh_Node[i].X), u.Length(p.Mesh_Node[i].Y)});
  return t;
}

Report_Table Element_Table(const Project& p) {
  Report_Table t = Make_Table(
      Report_Table_Kind::Elements,
      std::string("ELEMENTS") + (p.Constant_Shear != 0 ? " (constant shear)" : " (fully integrated)"),
      Columns({{"nr.", 7}, {"nodes", 26, L}, {"macro", 7}, {"nr.", 9}, {"nodes", 26, L}, {"macro", 7}}));
  for (int i = 1; i <= p.Mesh_Element.count(); i += 2) {
    std::vector<std::string> row;
    for (int e = i; e <= std::min(i + 1, p.Mesh_Element.count()); ++e) {
      const Mesh_Element& m = p.Mesh_Element[e];
      row.insert(row.end(), {std::to_string(e), Numbers(m.Corner), std::to_string(m.Macro_Number)});
    }
    row.resize(6);
    t.Rows.push_back(std::move(row));
  }
  return t;
}

Report_Table Period_Table(const Project& p) {
  Report_Table t = Make_Table(Report_Table_Kind::Periods, "PERIODS",
                              Columns({{"nr.", 5},
                                       {"from", 11, R, "h"},
                                       {"until", 11, R, "h"},
                                       {"stor.", 11, R, "h"},
                                       {"step", 11, R, "h"}}));
  for (int i = 1; i <= p.Period.count(); ++i) {
    const Period& q = p.Period[i];
    t.Rows.push_back({std::to_string(i), Num(q.From, 2), Num(q.Until, 2), Num(q.Storage_Each, 3),
                      Num(q.Time_Increment, 3)});
  }
  return t;
}

std::string Trim_Right(std::string text) {
  const auto last = text.find_last_not_of(' ');
  text.erase(last == std::string::npos ? 0 : last + 1);
  return text;
}

}  // namespace

const char* Print_Section_Name(Print_Section section) {
  static const char* const names[Print_Section_Count] = {
      "Macros",     "Interfaces", "Reinforcement bars", "Cooling circuits", "Thermal", "Hygral",
      "Mechanical", "Nodes",      "Elements",           "Periods"};
  const int i = static_cast<int>(section);
  return i >= 1 && i <= Print_Section_Count ? names[i - 1] : "";
}

bool Section_Has_Data(const Project& p, Print_Section section) {
  switch (section) {
    case Print_Section::Macros:
      return !p.Macro.empty();
    case Print_Section::Interfaces:
      return !p.Interface.empty();
    case Print_Section::Reinforcement_Bars:
      return !p.Rebar.empty();
    case Print_Section::Cooling_Circuits:
      return !p.Circuit.empty();
    case Print_Section::Thermal:
      return !p.Border.empty() || !p.Point_T.empty() || !p.Line_T.empty() || !p.Area_T.empty();
    case Print_Section::Hygral:
      return !p.Border.empty();
    case Print_Section::Mechanical:
      return !p.Point_Support.empty() || !p.Line_Support.empty() || !p.Point_Load.empty() ||
             !p.Line_Load.empty();
    case Print_Section::Nodes:
      return !p.Mesh_Node.empty();
    case Print_Section::Elements:
      return !p.Mesh_Element.empty();
    case Print_Section::Periods:
      return !p.Period.empty();
  }
  return false;
}

Print_Selection Sections_With_Data(const Project& p) {
  Print_Selection s;
  for (int i = 1; i <= Print_Section_Count; ++i)
    s[i] = Section_Has_Data(p, static_cast<Print_Section>(i));
  return s;
}

std::vector<Report_Table> Input_Tables(const Project& p, const Print_Selection& selection, bool metric) {
  const Units u{metric};
  auto ticked = [&](Print_Section s) { return selection[static_cast<int>(s)] && Section_Has_Data(p, s); };
  std::vector<Report_Table> tables;
  Kinds_In_Use in_use{};
  if (ticked(Print_Section::Macros)) tables.push_back(Macro_Table(p, u));
  if (ticked(Print_Section::Interfaces)) tables.push_back(Interface_Table(p));
  if (ticked(Print_Section::Reinforcement_Bars)) tables.push_back(Reinforcement_Table(p, u));
  if (ticked(Print_Section::Cooling_Circuits)) tables.push_back(Circuit_Table(p, u, in_use));
  if (ticked(Print_Section::Thermal)) tables.push_back(Thermal_Table(p, u, in_use));
  if (ticked(Print_Section::Hygral)) tables.push_back(Hygral_Table(p, u, in_use));
  if (ticked(Print_Section::Mechanical)) Mechanical_Tables(p, u, in_use, tables);
  Function_Tables(p, u, in_use, tables);
  if (ticked(Print_Section::Nodes)) tables.push_back(Node_Table(p, u));
  if (ticked(Print_Section::Elements)) tables.push_back(Element_Table(p));
  if (ticked(Print_Section::Periods)) tables.push_back(Period_Table(p));
  return tables;
}

std::vector<std::string> Printout_Header(const Project& p) {
  std::vector<std::string> lines{std::filesystem::path(p.Project_File).filename().string()};
  for (const std::string& text : p.Project_Text)
    lines.push_back(text);
  lines.push_back(" Input data");
  return lines;
}

std::string Table_Line(const std::vector<Report_Column>& columns, const std::vector<std::string>& cells) {
  std::string line;
  const std::size_t n = std::min(columns.size(), cells.size());
  for (std::size_t i = 0; i < n; ++i) {
    const std::string& cell = cells[i];
    if (cell.empty()) continue;
    const Report_Column& c = columns[i];
    const int length = static_cast<int>(cell.size());
    int start = c.Align == Cell_Align::Left ? c.Tab : c.Tab + c.Width - 1 - length;
    const int free_from = line.empty() ? 0 : static_cast<int>(line.size()) + 1;
    start = std::max(start, free_from);
    line.append(static_cast<std::size_t>(start) - line.size(), ' ');
    line += cell;
  }
  return line;
}

Print_Layout Layout_Tables(const std::vector<Report_Table>& tables) {
  Print_Layout layout;
  std::string heading, names;
  for (std::size_t t = 0; t < tables.size(); ++t) {
    const Report_Table& table = tables[t];
    std::vector<std::string> column_names, units;
    for (const Report_Column& c : table.Columns) {
      column_names.push_back(c.Name);
      units.push_back(c.Unit);
    }
    if (!table.Heading.empty()) heading = table.Heading;
    if (table.Shows_Column_Names) names = Trim_Right(Table_Line(table.Columns, column_names));
    const std::string unit_line = Trim_Right(Table_Line(table.Columns, units));
    const int head = static_cast<int>(layout.Heads.size());
    layout.Heads.push_back({heading + " (continued)", names, unit_line});

    if (t > 0) layout.Lines.push_back({"", Print_Line_Role::Blank});
    if (!table.Heading.empty()) layout.Lines.push_back({heading, Print_Line_Role::Heading, head});
    if (table.Shows_Column_Names) layout.Lines.push_back({names, Print_Line_Role::Column_Names, head});
    layout.Lines.push_back({unit_line, Print_Line_Role::Units, head});
    for (const auto& row : table.Rows)
      layout.Lines.push_back({Trim_Right(Table_Line(table.Columns, row)), Print_Line_Role::Row, head});
  }
  return layout;
}

std::vector<std::vector<std::string>> Paginate(const Print_Layout& layout, int lines_per_page) {
  std::vector<std::vector<std::string>> pages;
  std::vector<std::string> page;
  const int capacity = std::max(lines_per_page, 1);
  const auto& lines = layout.Lines;
  auto is_head = [](Print_Line_Role r) {
    return r == Print_Line_Role::Heading || r == Print_Line_Role::Column_Names || r == Print_Line_Role::Units;
  };
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const Print_Line& line = lines[i];
    // The lines that must stand together: a table's head with its first row.
    int need = 1;
    if (is_head(line.Role)) {
      std::size_t j = i;
      while (j < lines.size() && is_head(lines[j].Role))
        ++j;
      need = static_cast<int>(j - i) + (j < lines.size() && lines[j].Role == Print_Line_Role::Row ? 1 : 0);
    }
    if (!page.empty() && static_cast<int>(page.size()) + need > capacity) {
      pages.push_back(std::move(page));
      page.clear();
    }
    if (page.empty()) {
      if (line.Role == Print_Line_Role::Blank) continue;
      // A table that runs on, or a block that continues the heading of the one before: the part of
      // the head above this line again, when the page has room for it and the lines that must
      // stand with this one.
      if (line.Role != Print_Line_Role::Heading && line.Head >= 0) {
        const auto& head = layout.Heads[static_cast<std::size_t>(line.Head)];
        const std::size_t above = line.Role == Print_Line_Role::Row            ? head.size()
                                  : line.Role == Print_Line_Role::Units        ? 2
                                  : line.Role == Print_Line_Role::Column_Names ? 1
                                                                               : 0;
        if (static_cast<int>(above) + need <= capacity)
          page.assign(head.begin(), head.begin() + static_cast<std::ptrdiff_t>(above));
      }
    }
    page.push_back(line.Text);
  }
  if (!page.empty()) pages.push_back(std::move(page));
  return pages;
}

std::string Input_Printout_Text(const Project& p, const Print_Selection& selection, bool metric) {
  const std::vector<Report_Table> tables = Input_Tables(p, selection, metric);
  if (tables.empty()) return "";
  std::string text;
  for (const std::string& line : Printout_Header(p))
    text += line + "\n";
  text += "\n";
  for (const Print_Line& line : Layout_Tables(tables).Lines)
    text += line.Text + "\n";
  return text;
}

}  // namespace pvx
