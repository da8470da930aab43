// pvx cut and pvx history: a result variable along a straight line across the section at one
// stored step, and a result variable against time at one point of the mesh, both as CSV.
#include <cctype>
#include <cmath>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "app/prescribed_data.h"
#include "app/project.h"
#include "app/project_file.h"
#include "app/units.h"
#include "commands.h"
#include "project_io.h"
#include "results/history.h"
#include "results/line_cut.h"
#include "results/result_files.h"
#include "results/viewer_geometry.h"

namespace pvx::cli {

namespace {

struct Cut_Options {
  std::string path;
  std::string project;
  std::vector<double> from, to, at;
  int variable = 0;
  int stored = 1;
  int support = 0;
  bool imperial = false;
};

// A family opened for reading with the project that wrote it, and the index of its first run.
struct Open_Results {
  Project p;
  Result_Family family;
  Run_Index index;
};

// Values read from the files are singles: they print in their shortest single form. Numbers
// computed from them get ten significant digits.
std::string Number(double v) {
  const float f = static_cast<float>(v);
  if (std::isfinite(v) && static_cast<double>(f) == v) return fmt::format("{}", f);
  return fmt::format("{:.10g}", v);
}

std::string Lower(std::string t) {
  for (char& c : t)
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return t;
}

// The result names of the runs beside `res_path`: the run set of the project when the path is its
// first run's name, else the one family of the path.
std::vector<std::string> Run_Paths(const Project& p, const std::string& res_path, bool all_runs) {
  std::vector<std::string> names{res_path, res_path};
  const int runs = Number_Of_Runs(p);
  if (!all_runs || runs < 2 || p.Result_Names.size() < static_cast<std::size_t>(runs) + 1) return names;
  const std::filesystem::path given(res_path);
  if (Lower(File_Part(p.Result_Names[1])) != Lower(given.filename().string())) return names;
  for (int r = 2; r <= runs; ++r)
    names.push_back((given.parent_path() / File_Part(p.Result_Names[static_cast<std::size_t>(r)])).string());
  return names;
}

// Opens the project of the results, checks that the variable is in them, and opens the family.
bool Open_For_Reading(const Cut_Options& o, bool all_runs, const char* what, Open_Results& r,
                      std::ostream& err) {
  if (!std::filesystem::exists(o.path)) {
    err << Results_Not_Available(o.path) << "\n";
    return false;
  }
  const std::string project_path = o.project.empty() ? Find_Project_Of(o.path) : o.project;
  if (project_path.empty()) {
    err << fmt::format(
        "A {} is taken on the mesh of its project, and no single project beside the results names them: "
        "give --project\n",
        what);
    return false;
  }
  if (!Open_Project(project_path, r.p, err)) return false;
  r.family.Layout = Layout_Of_Family(r.p, o.path);
  if (!Slot_Exists(r.family.Layout, Slot_Of_Variable(o.variable))) {
    err << fmt::format("Result variable {} ({}) is not in the results of this project\n", o.variable,
                       Viewer_Variable_Name(o.variable));
    return false;
  }
  std::string message;
  if (!Set_Output_Names(r.family, Run_Paths(r.p, o.path, all_runs), "", message) ||
      !Open_All_Result_Sets(r.family, r.p.File_Version, message) ||
      !Read_Run_Index(r.family, 1, r.p.File_Version, o.imperial, r.index, message)) {
    err << message << "\n";
    return false;
  }
  return true;
}

// A length typed on the command line, in mm or in inches, to model mm.
double Model_Length(const Cut_Options& o, double typed) {
  return o.imperial ? Convert_Unit(false, Unit_Length_mm, typed) : typed;
}
double Shown_Length(const Cut_Options& o, double mm) {
  return o.imperial ? Convert_Unit(true, Unit_Length_mm, mm) : mm;
}

int Cut(const Cut_Options& o, std::ostream& out, std::ostream& err) {
  if (!Is_Cut_Variable(o.variable)) {
    err << fmt::format("Result variable {} has no line cut: give 1 to 5, 9 to 20, 22 or 40\n", o.variable);
    return Exit_Failure;
  }
  Open_Results r;
  if (!Open_For_Reading(o, false, "line cut", r, err)) return Exit_Failure;
  const int storages = Storage_Count(r.index);
  if (o.stored < 1 || o.stored > storages) {
    err << fmt::format("Stored step {} is not in the results (1 to {})\n", o.stored, storages);
    return Exit_Failure;
  }
  Plot_Buffers buffers;
  Dimension_Plot_Buffers(r.family.Layout, buffers);
  std::string message;
  if (!Read_Result_Variable(r.family, 1, Slot_Of_Variable(o.variable), o.stored, o.variable, o.imperial,
                            buffers, message)) {
    err << message << "\n";
    return Exit_Failure;
  }
  const double time = r.index.Storage_Time[o.stored];
  const Line_Cut cut =
      Determine_Intersections(r.p, buffers, o.variable, time, Model_Length(o, o.from[0]),
                              Model_Length(o, o.from[1]), Model_Length(o, o.to[0]), Model_Length(o, o.to[1]));
  const bool strength = Cut_Shows_Strength(o.variable);
  out << fmt::format("piece,element,end,fraction,{},{},{},value{}\n",
                     o.imperial ? "distance_yd" : "distance_m", o.imperial ? "x_in" : "x_mm",
                     o.imperial ? "y_in" : "y_mm", strength ? ",strength" : "");
  for (int i = 1; i <= CutCount(cut); ++i) {
    const Cut_Piece& c = cut.CutPieces[i];
    for (int end = 1; end <= 2; ++end) {
      const double metres = c.Fraction[end] * cut.CutLength / 1000;
      out << fmt::format("{},{},{},{},{},{},{},{}", i, c.Element, end, Number(c.Fraction[end]),
                         Number(o.imperial ? Convert_Unit(true, Unit_Length_m, metres) : metres),
                         Number(Shown_Length(o, c.X[end])), Number(Shown_Length(o, c.Y[end])),
                         Number(c.Value[end]));
      if (strength) out << "," << Number(cut.CutStrength[i].Value[end]);
      out << "\n";
    }
  }
  if (CutCount(cut) == 0)
    err << fmt::format("The line crosses no element of the mesh that is present at {} hours\n", Number(time));
  return Exit_Ok;
}

int History(const Cut_Options& o, std::ostream& out, std::ostream& err) {
  if (!Is_History_Variable(o.variable)) {
    err << fmt::format("Result variable {} has no history at a point: give 1 to 5, 9 to 22 or 40\n",
                       o.variable);
    return Exit_Failure;
  }
  const bool reactions = o.variable == 21;
  if (reactions ? o.support < 1 : o.at.size() != 2) {
    err << (reactions ? "The reactions are told at a support: give --support N\n"
                      : "The history is told at a point: give --at X Y\n");
    return Exit_Failure;
  }
  Open_Results r;
  if (!Open_For_Reading(o, true, "history", r, err)) return Exit_Failure;
  Table<History_Point> points;
  Table<std::int32_t> supports;
  if (reactions) {
    if (o.support > r.family.Layout.Reactions) {
      err << fmt::format("Support {} is not in the results (1 to {})\n", o.support,
                         r.family.Layout.Reactions);
      return Exit_Failure;
    }
    supports.add(o.support);
  } else {
    const double x = Model_Length(o, o.at[0]), y = Model_Length(o, o.at[1]);
    History_Point point;
    Locate_Point(r.p, x, y, point.Element, point.U, point.V);
    if (point.Element == 0) {
      err << fmt::format("The point ({}, {}) {} lies in no element of the mesh\n", Number(o.at[0]),
                         Number(o.at[1]), o.imperial ? "in" : "mm");
      return Exit_Failure;
    }
    Element_Point(r.p, point.Element, point.U, point.V, point.X, point.Y);
    points.add(point);
  }
  History_Scale scale;
  History_Data h;
  std::string message;
  if (!Collect_History(r.family, r.p, r.index, o.variable, points, supports, o.imperial, scale, h, message)) {
    err << message << "\n";
    return Exit_Failure;
  }
  const bool strength = o.variable >= 13 && o.variable <= 19;
  auto column = [&h](const char* name, int run) {
    return h.Runs == 1 ? std::string(name) : fmt::format("{}_{}", name, run);
  };
  out << "stored,time_h";
  for (int run = 1; run <= h.Runs; ++run)
    out << "," << column("value", run);
  if (strength)
    for (int run = 1; run <= h.Runs; ++run)
      out << "," << column("strength", run);
  out << "\n";
  for (int s = 1; s <= h.Stored; ++s) {
    out << s << "," << Number(h.Storage_Time[s]);
    for (int run = 1; run <= h.Runs; ++run)
      out << "," << Number(HistoryValues(h, run, 1, s));
    if (strength)
      for (int run = 1; run <= h.Runs; ++run)
        out << "," << Number(HistoryStrength(h, run, 1, s));
    out << "\n";
  }
  return Exit_Ok;
}

}  // namespace

void Add_Cut_Commands(CLI::App& app, int& status) {
  auto* cut = app.add_subcommand(
      "cut",
      "Print one result variable along a straight line across the section at one stored step, as CSV.\n"
      "Each element the line crosses gives one piece, two rows: where the line enters it (end 1) and\n"
      "leaves it (end 2), in element order. Columns: piece, element, end, fraction (0 at --from, 1 at\n"
      "--to), distance from --from (m, or yd with --imperial), x, y (mm, or in), value, and for the\n"
      "stresses 13 to 18 the tensile strength there. An element the line ends in, or only touches at a\n"
      "corner, gives no piece; a line along element sides is cut once along each side, by the first\n"
      "element along it; elements not present at the stored step's time are not cut.");
  auto o = std::make_shared<Cut_Options>();
  cut->add_option("RESULTS", o->path, "Result index file (.RES)")->required();
  cut->add_option("--from", o->from, "Start of the line: X Y (mm, or in with --imperial)")
      ->expected(2)
      ->required();
  cut->add_option("--to", o->to, "End of the line: X Y (mm, or in with --imperial)")->expected(2)->required();
  cut->add_option("--var", o->variable, "Result variable (1 to 5, 9 to 20, 22 or 40)")->required();
  cut->add_option("--stored", o->stored, "Stored step (1 = initial state)")->required();
  cut->add_option("--project", o->project, "Project file of the results (.PVX): its mesh and version");
  cut->add_flag("--imperial", o->imperial,
                "Values, coordinates and distances in the English Imperial System");
  cut->callback([&status, o] { status = Cut(*o, std::cout, std::cerr); });

  auto* history = app.add_subcommand(
      "history",
      "Print one result variable against time at one point of the mesh, as CSV: one row per stored step\n"
      "with its number, its time in hours and the value of each run (value, or value_1, value_2, ... for\n"
      "a run set), then for the stresses 13 to 19 the tensile strength at the point likewise. The point\n"
      "is located in the mesh and its value interpolated from the element's corners, as the result\n"
      "viewer shows it; the reactions (21) are told at a support instead.");
  auto h = std::make_shared<Cut_Options>();
  history->add_option("RESULTS", h->path, "Result index file (.RES) of the first run")->required();
  auto* at = history->add_option("--at", h->at, "The point: X Y (mm, or in with --imperial)")->expected(2);
  history->add_option("--support", h->support, "The support of a reaction history (--var 21)")->excludes(at);
  history->add_option("--var", h->variable, "Result variable (1 to 5, 9 to 22 or 40)")->required();
  history->add_option("--project", h->project, "Project file of the results (.PVX): its mesh and version");
  history->add_flag("--imperial", h->imperial, "Values and coordinates in the English Imperial System");
  history->callback([&status, h] { status = History(*h, std::cout, std::cerr); });
}

}  // namespace pvx::cli
