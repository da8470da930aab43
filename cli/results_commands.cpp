// pvx results: the index of a result family (time axis and extreme table), one stored record of
// one result variable as a table with the mesh positions of its values, or the water history of
// the cooling circuits.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "app/project.h"
#include "app/project_file.h"
#include "app/units.h"
#include "commands.h"
#include "project_io.h"
#include "results/cooling_view.h"
#include "results/result_files.h"

namespace pvx::cli {

namespace {

struct Results_Options {
  std::string path;
  std::string project;
  int variable = 0;
  int stored = 1;
  bool json = false;
  bool csv = false;
  bool imperial = false;  // the unit system is a setting of the session, not of the project file
  bool summary = false;
  bool cooling = false;
};

// One value of the record with where it lies. Empty optionals are printed as empty cells.
struct Row {
  std::vector<std::optional<double>> cells;
};
struct Record_Table {
  std::vector<std::string> columns;
  std::vector<Row> rows;
};

// Values read from the files are singles: they print in their shortest single form (71.6, not
// 71.59999847). Other numbers get ten significant digits.
std::string Number(double v) {
  const float f = static_cast<float>(v);
  if (std::isfinite(v) && static_cast<double>(f) == v) return fmt::format("{}", f);
  return fmt::format("{:.10g}", v);
}

std::string Cell(const std::optional<double>& v) {
  return v ? Number(*v) : std::string();
}

void Print_Index_Text(const std::string& path, const Run_Index& index, std::ostream& out) {
  out << fmt::format("Results:        {}\n", path);
  out << fmt::format("Steps:          {}\n", Number_Of_Steps(index));
  std::string times;
  for (double t : index.Step_Time)
    times += " " + Number(t);
  out << fmt::format("Step times:    {}\n", times);
  out << fmt::format("Storages:       {}\n", Storage_Count(index));
  times.clear();
  for (double t : index.Storage_Time)
    times += " " + Number(t);
  out << fmt::format("Storage times: {}\n", times);
  out << "Extreme values:\n";
  out << fmt::format("{:>4}  {:<50} {:>14} {:>14} {:>14} {:>14} {:>6} {:>6}\n", "v", "variable", "period min",
                     "period max", "scale min", "scale max", "at min", "at max");
  for (int v = 1; v <= Result_Variable_Count; ++v) {
    const Extreme_Row& r = index.Extremes[v];
    const char* name = Result_Variable(v).name;
    if (*name == '\0' && r == Extreme_Row{}) continue;
    out << fmt::format("{:>4}  {:<50} {:>14.7g} {:>14.7g} {:>14.7g} {:>14.7g} {:>6} {:>6}\n", v, name,
                       r.PeriodMin, r.PeriodMax, r.ScaleMin, r.ScaleMax, r.StoredIndexOfMin,
                       r.StoredIndexOfMax);
  }
}

nlohmann::json Index_Json(const std::string& path, const Run_Index& index) {
  nlohmann::json j;
  j["results"] = path;
  j["steps"] = Number_Of_Steps(index);
  j["step_times"] = index.Step_Time.data();
  j["storages"] = Storage_Count(index);
  j["storage_times"] = index.Storage_Time.data();
  nlohmann::json rows = nlohmann::json::array();
  for (int v = 1; v <= Result_Variable_Count; ++v) {
    const Extreme_Row& r = index.Extremes[v];
    rows.push_back({{"variable", v},
                    {"name", Result_Variable(v).name},
                    {"period_min", r.PeriodMin},
                    {"period_max", r.PeriodMax},
                    {"scale_min", r.ScaleMin},
                    {"scale_max", r.ScaleMax},
                    {"stored_index_of_min", r.StoredIndexOfMin},
                    {"stored_index_of_max", r.StoredIndexOfMax}});
  }
  j["extremes"] = rows;
  return j;
}

// The position of mesh node n in display units, when there is such a node.
std::optional<double> Node_Coordinate(const Project& p, int n, bool x, bool imperial) {
  if (!p.Mesh_Node.valid(n)) return std::nullopt;
  const double v = x ? p.Mesh_Node[n].X : p.Mesh_Node[n].Y;
  return imperial ? Convert_Unit(true, Unit_Length_mm, v) : v;
}

// Integration point p of element e, by the bilinear map of its corners.
std::pair<std::optional<double>, std::optional<double>> Point_Position(const Project& p, int e, int point,
                                                                       bool imperial) {
  static constexpr double g = 0.57735026918962576;  // 1 / sqrt(3)
  static constexpr double xi[4] = {-g, g, g, -g}, eta[4] = {-g, -g, g, g};
  static constexpr double cx[4] = {-1, 1, 1, -1}, cy[4] = {-1, -1, 1, 1};
  if (!p.Mesh_Element.valid(e)) return {};
  double x = 0, y = 0;
  for (int c = 1; c <= 4; ++c) {
    const int n = p.Mesh_Element[e].Corner[c];
    if (!p.Mesh_Node.valid(n)) return {};
    const double w = (1 + cx[c - 1] * xi[point - 1]) * (1 + cy[c - 1] * eta[point - 1]) / 4;
    x += w * p.Mesh_Node[n].X;
    y += w * p.Mesh_Node[n].Y;
  }
  if (imperial) {
    x = Convert_Unit(true, Unit_Length_mm, x);
    y = Convert_Unit(true, Unit_Length_mm, y);
  }
  return {x, y};
}

// The value the viewer shows at corner p of element e for a stress variable.
double Corner_Value(const Plot_Buffers& b, int variable, int e, int p) {
  const auto& s = b.Element_A[e][p];
  switch (variable) {
    case 13:
      return Major_Principal(s[1], s[2], s[3]);
    case 14:
      return Minor_Principal(s[1], s[2], s[3]);
    case 15:
      return s[4];
    case 16:
      return s[1];
    case 17:
      return s[2];
    case 18:
      return s[3];
    default: {  // 19
      const float ft = b.Element_B[e][p][1];
      return ft > 0 && s[4] > 0 ? s[4] / ft : 0.0;
    }
  }
}

Record_Table Tabulate(const Project& p, const Result_Layout& layout, const Plot_Buffers& b, int variable,
                      bool imperial) {
  Record_Table t;
  const int elements = static_cast<int>(layout.Elements);
  switch (variable) {
    case 1:
    case 4:
      t.columns = {"node", "x", "y", "value"};
      for (int n = 1; n <= static_cast<int>(layout.Nodes); ++n)
        t.rows.push_back(
            {{n, Node_Coordinate(p, n, true, imperial), Node_Coordinate(p, n, false, imperial), b.Node[n]}});
      break;
    case 11:
    case 12:
    case 20:
      t.columns = {"node", "x", "y", "value"};
      for (int n = 1; n <= static_cast<int>(layout.Nodes + layout.Doubled_Nodes); ++n) {
        const double ux = b.Node[2 * n - 1], uy = b.Node[2 * n];
        const double v = variable == 11 ? ux : variable == 12 ? uy : std::hypot(ux, uy);
        t.rows.push_back(
            {{n, Node_Coordinate(p, n, true, imperial), Node_Coordinate(p, n, false, imperial), v}});
      }
      break;
    case 13:
    case 14:
    case 15:
    case 16:
    case 17:
    case 18:
    case 19:
      t.columns = {"element", "corner", "node", "x", "y", "value"};
      for (int e = 1; e <= elements; ++e)
        for (int c = 1; c <= 4; ++c) {
          const int n = p.Mesh_Element.valid(e) ? p.Mesh_Element[e].Corner[c] : 0;
          t.rows.push_back({{e, c, n, Node_Coordinate(p, n, true, imperial),
                             Node_Coordinate(p, n, false, imperial), Corner_Value(b, variable, e, c)}});
        }
      break;
    case 21:
      t.columns = {"entry", "value"};
      for (int i = 1; i <= static_cast<int>(layout.Reactions); ++i)
        t.rows.push_back({{i, b.Node[i]}});
      break;
    case 30:
    case 31:
      t.columns = {"interface", "point", "value"};
      for (int i = 1; i <= b.Interface.count(); ++i)
        for (int k = 0; k < 2; ++k)
          t.rows.push_back({{i, k + 1, variable == 30 ? b.Interface[i].Normal[k] : b.Interface[i].Shear[k]}});
      break;
    case 32:
      t.columns = {"bar", "value"};
      for (int i = 1; i <= b.Bar.count(); ++i)
        t.rows.push_back({{i, b.Bar[i].Normal}});
      break;
    case 33:
    case 34:
      t.columns = {"bar", "station", "value"};
      for (int i = 1; i <= b.Bar.count(); ++i)
        for (int k = 0; k < 2; ++k)
          t.rows.push_back({{i, k + 1, variable == 33 ? b.Bar[i].Shear[k] : b.Bar[i].Slip[k]}});
      break;
    default:  // one value per element point
      t.columns = {"element", "point", "x", "y", "value"};
      for (int e = 1; e <= elements; ++e)
        for (int q = 1; q <= 4; ++q) {
          const auto [x, y] = Point_Position(p, e, q, imperial);
          t.rows.push_back({{e, q, x, y, b.Element_A[e][q][1]}});
        }
      break;
  }
  return t;
}

// Where in the mesh a record takes its largest value: the row of the table that holds it, told as
// "node 57 at (1500, 700) mm" or "element 12, corner 3 (node 40) at (...) mm", and the value.
std::string Where_Largest(const Record_Table& t, bool imperial, double& largest) {
  const std::size_t value = t.columns.size() - 1;
  const Row* best = nullptr;
  for (const Row& r : t.rows)
    if (r.cells[value] && (!best || *r.cells[value] > *best->cells[value])) best = &r;
  if (!best) return "";
  largest = *best->cells[value];
  auto cell = [&](const char* name) -> std::optional<double> {
    for (std::size_t c = 0; c < t.columns.size(); ++c)
      if (t.columns[c] == name) return best->cells[c];
    return std::nullopt;
  };
  std::string where;
  if (cell("element")) {
    where = fmt::format("element {}", Cell(cell("element")));
    if (cell("corner"))
      where += fmt::format(", corner {} (node {})", Cell(cell("corner")), Cell(cell("node")));
  } else if (cell("node")) {
    where = fmt::format("node {}", Cell(cell("node")));
  }
  if (cell("x") && cell("y"))
    where += fmt::format(" at ({}, {}) {}", Cell(cell("x")), Cell(cell("y")), imperial ? "in" : "mm");
  return where;
}

// The few figures a user looks at first: the size of the run, the highest and lowest temperature
// with when and where, and, for a mechanical run, the largest ratio Szz/ft and the widest crack.
int Show_Summary(const Results_Options& o, std::ostream& out, std::ostream& err) {
  const std::string project_path = o.project.empty() ? Find_Project_Of(o.path) : o.project;
  if (project_path.empty()) {
    err << "A summary names places in the mesh of its project, and no single project beside the results "
           "names them: give --project\n";
    return Exit_Failure;
  }
  Project p;
  if (!Open_Project(project_path, p, err)) return Exit_Failure;
  Result_Family family;
  family.Layout = Layout_Of_Family(p, o.path);
  std::string message;
  Run_Index index;
  if (!Set_Output_Names(family, {o.path, o.path}, "", message) ||
      !Open_All_Result_Sets(family, p.File_Version, message) ||
      !Read_Run_Index(family, 1, p.File_Version, o.imperial, index, message)) {
    err << message << "\n";
    return Exit_Failure;
  }
  const int steps = Number_Of_Steps(index), storages = Storage_Count(index);
  out << fmt::format("Results:   {}\n", o.path);
  out << fmt::format("Steps:     {}{}\n", steps,
                     steps > 0 ? fmt::format(", to {} hours", Number(index.Step_Time[steps])) : "");
  out << fmt::format("Storages:  {}\n", storages);
  struct Line {
    const char* label;
    int variable;
    bool maximum;
  };
  const char* degrees = o.imperial ? "oF" : "oC";
  for (const Line& line : {Line{"Highest temperature", 1, true}, Line{"Lowest temperature", 1, false},
                           Line{"Largest Szz/ft", 19, true}, Line{"Widest crack", 22, true}}) {
    const Extreme_Row& r = index.Extremes[line.variable];
    if (line.variable == 22 && !(r.PeriodMax > 0)) continue;  // nothing cracked
    const int stored = line.maximum ? r.StoredIndexOfMax : r.StoredIndexOfMin;
    if (stored < 1 || stored > storages || !Slot_Exists(family.Layout, Slot_Of_Variable(line.variable)))
      continue;
    Plot_Buffers buffers;
    Dimension_Plot_Buffers(family.Layout, buffers);
    if (!Read_Result_Variable(family, 1, Slot_Of_Variable(line.variable), stored, line.variable, o.imperial,
                              buffers, message)) {
      err << message << "\n";
      return Exit_Failure;
    }
    Record_Table t = Tabulate(p, family.Layout, buffers, line.variable, o.imperial);
    if (!line.maximum)
      for (Row& row : t.rows)
        if (row.cells.back()) row.cells.back() = -*row.cells.back();
    // The run's extreme may fall on a step between storages; the stored step nearest to it is the
    // one that can be looked at, and its own extreme is told beside the run's. Values are singles,
    // shown with the digits a single holds.
    double largest = 0;
    const std::string where = Where_Largest(t, o.imperial, largest);
    const float run_value = static_cast<float>(line.maximum ? r.PeriodMax : r.PeriodMin);
    const float stored_value = static_cast<float>(line.maximum ? largest : -largest);
    const std::string unit = line.variable == 1    ? std::string(" ") + degrees
                             : line.variable == 22 ? (o.imperial ? " in" : " mm")
                                                   : "";
    out << fmt::format("{}: {}{}", line.label, run_value, unit);
    if (stored_value != run_value)
      out << fmt::format(" (between storages); stored: {}{}", stored_value, unit);
    out << fmt::format(" at {} hours (stored step {}), {}\n", Number(index.Storage_Time[stored]), stored,
                       where);
  }
  return Exit_Ok;
}

int Show_Index(const Results_Options& o, std::ostream& out, std::ostream& err) {
  Run_Index index;
  std::string message;
  if (o.project.empty()) {
    if (!Read_Run_Index_File(o.path, Run_Index_Version, o.imperial, index, message)) {
      err << message << "\n";
      return Exit_Failure;
    }
  } else {
    Project p;
    if (!Open_Project(o.project, p, err)) return Exit_Failure;
    Result_Family family;
    family.Layout = Layout_Of_Family(p, o.path);
    if (!Set_Output_Names(family, {o.path, o.path}, "", message) ||
        !Open_All_Result_Sets(family, p.File_Version, message) ||
        !Read_Run_Index(family, 1, p.File_Version, o.imperial, index, message)) {
      err << message << "\n";
      return Exit_Failure;
    }
  }
  if (o.json)
    out << Index_Json(o.path, index).dump(2) << "\n";
  else
    Print_Index_Text(o.path, index, out);
  return Exit_Ok;
}

int Show_Record(const Results_Options& given, std::ostream& out, std::ostream& err) {
  Results_Options o = given;
  const int slot = Slot_Of_Variable(o.variable);
  if (slot == 0) {
    err << fmt::format("Result variable {} has no record in the result files\n", o.variable);
    return Exit_Failure;
  }
  if (o.project.empty()) o.project = Find_Project_Of(o.path);
  if (o.project.empty()) {
    err << "A record is shown on the mesh of its project, and no single project beside the results names "
           "them: "
           "give --project\n";
    return Exit_Failure;
  }
  Project p;
  if (!Open_Project(o.project, p, err)) return Exit_Failure;
  Result_Family family;
  family.Layout = Layout_Of_Family(p, o.path);
  if (!Slot_Exists(family.Layout, slot)) {
    err << fmt::format("Result variable {} ({}) is not in the results of this project\n", o.variable,
                       Viewer_Variable_Name(o.variable));
    return Exit_Failure;
  }
  std::string message;
  Run_Index index;
  const bool imperial = o.imperial;
  if (!Set_Output_Names(family, {o.path, o.path}, "", message) ||
      !Open_All_Result_Sets(family, p.File_Version, message) ||
      !Read_Run_Index(family, 1, p.File_Version, imperial, index, message)) {
    err << message << "\n";
    return Exit_Failure;
  }
  if (o.stored < 1 || o.stored > Storage_Count(index)) {
    err << fmt::format("Stored step {} is not in the results (1 to {})\n", o.stored, Storage_Count(index));
    return Exit_Failure;
  }
  Plot_Buffers buffers;
  Dimension_Plot_Buffers(family.Layout, buffers);
  if (!Read_Result_Variable(family, 1, slot, o.stored, o.variable, imperial, buffers, message)) {
    err << message << "\n";
    return Exit_Failure;
  }
  const Record_Table t = Tabulate(p, family.Layout, buffers, o.variable, o.imperial);
  if (o.json) {
    nlohmann::json j;
    j["results"] = o.path;
    j["variable"] = o.variable;
    j["name"] = Viewer_Variable_Name(o.variable);
    j["stored"] = o.stored;
    j["time"] = index.Storage_Time[o.stored];
    j["minimum"] = buffers.CurrentMin;
    j["maximum"] = buffers.CurrentMax;
    j["columns"] = t.columns;
    nlohmann::json rows = nlohmann::json::array();
    for (const Row& r : t.rows) {
      nlohmann::json row = nlohmann::json::array();
      for (const auto& c : r.cells)
        row.push_back(c ? nlohmann::json(*c) : nlohmann::json());
      rows.push_back(row);
    }
    j["rows"] = rows;
    out << j.dump(2) << "\n";
    return Exit_Ok;
  }
  for (std::size_t c = 0; c < t.columns.size(); ++c)
    out << (c ? "," : "") << t.columns[c];
  out << "\n";
  for (const Row& r : t.rows) {
    for (std::size_t c = 0; c < r.cells.size(); ++c)
      out << (c ? "," : "") << Cell(r.cells[c]);
    out << "\n";
  }
  return Exit_Ok;
}

// One circuit's history as a table: time, flow, capacity, then the water at each station from the
// inlet to the outlet.
void Print_Circuit(int number, const Circuit_History& h, int stations, bool imperial, std::ostream& out) {
  auto shown = [imperial](int kind, double v) { return imperial ? Convert_Unit(true, kind, v) : v; };
  const int sections = stations - 2;
  out << fmt::format("Circuit {}: {} pipe section{}, {} record{}; water in {}\n", number, sections,
                     sections == 1 ? "" : "s", h.History.count(), h.History.count() == 1 ? "" : "s",
                     Unit_Name(Unit_Temperature, !imperial));
  out << fmt::format("{:>10} {:>12} {:>14}", "time h",
                     fmt::format("flow {}", Unit_Name(Unit_Volume_Rate, !imperial)),
                     imperial ? "capacity BtuIT/s" : "capacity kW");
  for (int k = 1; k <= stations; ++k)
    out << fmt::format(" {:>10}", k == 1 ? "inlet" : k == stations ? "outlet" : fmt::format("station {}", k));
  out << "\n";
  for (const History_Record& r : h.History) {
    out << fmt::format("{:>10.2f} {:>12.3f} {:>14.3f}", r.Time, shown(Unit_Volume_Rate, r.Flow),
                       shown(Unit_Energy, r.Capacity));
    for (float w : r.Water)
      out << fmt::format(" {:>10.2f}", shown(Unit_Temperature, w));
    out << "\n";
  }
}

int Show_Cooling(const Results_Options& o, std::ostream& out, std::ostream& err) {
  const std::string project_path = o.project.empty() ? Find_Project_Of(o.path) : o.project;
  if (project_path.empty()) {
    err << "The circuits of a cooling history are those of its project, and no single project beside the "
           "results names them: give --project\n";
    return Exit_Failure;
  }
  Project p;
  if (!Open_Project(project_path, p, err)) return Exit_Failure;
  Result_Family family;
  family.Layout = Layout_Of_Family(p, o.path);
  // Projects of version 104 and before kept no history of their circuits.
  if (!Slot_Exists(family.Layout, Slot_COO) || p.File_Version <= 104) {
    out << "The results have no cooling circuits.\n";
    return Exit_Ok;
  }
  std::string message;
  Table<Circuit_History> circuits;
  bool read = false;
  if (!Set_Output_Names(family, {o.path, o.path}, "", message) ||
      !Open_All_Result_Sets(family, p.File_Version, message) ||
      !Read_Cooling_Data(family, 1, circuits, read, message)) {
    err << message << "\n";
    return Exit_Failure;
  }
  if (o.csv) {
    out << Circuit_History_Csv(circuits);
    return Exit_Ok;
  }
  for (int c = 1; c <= circuits.count(); ++c) {
    if (c > 1) out << "\n";
    Print_Circuit(c, circuits[c], family.Layout.Circuit_Stations[c], o.imperial, out);
  }
  return Exit_Ok;
}

}  // namespace

void Add_Results_Commands(CLI::App& app, int& status) {
  auto* results = app.add_subcommand(
      "results", "Print the index of a result family, or one stored record of a result variable");
  auto o = std::make_shared<Results_Options>();
  results->add_option("RESULTS", o->path, "Result index file (.RES)")->required();
  results->add_option("--project", o->project, "Project file of the results (.PVX): its mesh and version");
  auto* var =
      results->add_option("--var", o->variable, "Result variable (1 to 40; 30 to 34 interfaces, rebars)");
  results->add_option("--stored", o->stored, "Stored step of the record (1 = initial state)")->needs(var);
  results->add_flag(
      "--csv", o->csv,
      "Print the record (the default for --var) or the cooling history as comma-separated rows");
  auto* json = results->add_flag("--json", o->json, "Print as JSON");
  results->add_flag("--imperial", o->imperial, "Show values in the English Imperial System");
  results
      ->add_flag("--summary", o->summary,
                 "Print only the run's size and its extremes that matter, with when and where")
      ->excludes(var);
  results
      ->add_flag("--cooling", o->cooling,
                 "Print the water history of every cooling circuit: time, flow, capacity and the water "
                 "temperature at each station (with --csv always metric)")
      ->excludes(var)
      ->excludes(json)
      ->excludes("--summary");
  results->callback([&status, o] {
    if (o->csv && o->json) {
      std::cerr << "--csv and --json exclude each other\n";
      status = Exit_Failure;
      return;
    }
    if (o->csv && o->variable == 0 && !o->cooling) {
      std::cerr << "--csv prints a record (--var) or the cooling history (--cooling)\n";
      status = Exit_Failure;
      return;
    }
    if (o->cooling)
      status = Show_Cooling(*o, std::cout, std::cerr);
    else if (o->summary)
      status = Show_Summary(*o, std::cout, std::cerr);
    else
      status =
          o->variable != 0 ? Show_Record(*o, std::cout, std::cerr) : Show_Index(*o, std::cout, std::cerr);
  });
}

}  // namespace pvx::cli
