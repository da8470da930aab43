// pvx study: the variants of a run set side by side once they are computed, wherever that was (one
// process, cores, the tasks of a cluster's job array): per variant its material, the largest
// temperature and the largest Szz/ft with when and where, or what is wrong with its result family.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "analysis/schedule.h"
#include "app/project.h"
#include "app/project_file.h"
#include "commands.h"
#include "project_io.h"
#include "results/study.h"

namespace pvx::cli {

namespace {

struct Study_Options {
  std::string project, output;
  bool csv = false;
  bool count = false;
};

// The run set as pvx run prepares it from the same project and --output: the variants, the
// result family of each and the material it computes with.
bool Plan_Study(const Study_Options& o, Project& p, std::vector<Study_Variant>& variants, std::ostream& err) {
  if (!Open_Project_With_Database(o.project, p, err)) return false;
  if (p.Mesh_Element.empty()) {
    err << "The project has no mesh: make one first (pvx mesh --write).\n";
    return false;
  }
  Prepare_Run_Set(p, o.project, o.output);

  Step_Table steps;
  Set_Time_Steps(p, steps);
  int storages = 1;  // the initial state
  for (int s = 1; s <= Number_Of_Steps(steps); ++s)
    storages += Is_Storage_Step(steps, s) ? 1 : 0;

  const std::filesystem::path work = Work_Directory_Of(o.project);
  for (int k = 1; k <= std::max(Number_Of_Runs(p), 1); ++k) {
    Study_Variant v;
    v.Variant = k;
    // Without material variants the design is computed as it stands, with its own materials.
    v.Material = p.Replace_Material != 0 && p.Run_Material.valid(k) && p.Material.valid(p.Run_Material[k])
                     ? p.Material[p.Run_Material[k]].Name
                     : p.Mesh_Element[1].Material;
    const auto at = static_cast<std::size_t>(k);
    v.Results = (work / (at < p.Result_Names.size() ? p.Result_Names[at] : p.Result_File_Name)).string();
    v.Expected_Storages = storages;
    variants.push_back(v);
  }
  return true;
}

// Values read from the files are singles: their shortest single form. Others get ten digits.
std::string Number(double v) {
  const float f = static_cast<float>(v);
  if (std::isfinite(v) && static_cast<double>(f) == v) return fmt::format("{}", f);
  return fmt::format("{:.10g}", v);
}

// A position in the table: to a tenth of a millimetre, without trailing zeros.
std::string Position(double v) {
  std::string text = fmt::format("{:.1f}", v);
  if (text.ends_with(".0")) text.resize(text.size() - 2);
  return text == "-0" ? "0" : text;
}

std::string Where(const Study_Extreme& x) {
  const std::string at = fmt::format("at ({}, {}) mm", Position(x.X), Position(x.Y));
  if (x.Element == 0) return fmt::format("node {} {}", x.Node, at);
  return fmt::format("element {}, corner {} (node {}) {}", x.Element, x.Corner, x.Node, at);
}

// "62.24 oC at 24 h, node 115 at (2000, 1511.8) mm". When the run's extreme fell on a step between
// storages, the record that can be looked at is the stored step before it, with its own largest
// value: "1.022 between storages; 0.841 at 48 h, element 4, ...".
std::string Extreme_Cell(const Study_Extreme& x, int decimals, const char* unit) {
  if (!x.Found) return "-";
  const std::string run = fmt::format("{:.{}f}{}", x.Run_Value, decimals, unit);
  const std::string stored = fmt::format("{:.{}f}{}", x.Stored_Value, decimals, unit);
  const std::string head = run == stored ? run : fmt::format("{} between storages; {}", run, stored);
  return fmt::format("{} at {} h, {}", head, Number(x.Time), Where(x));
}

const char* State_Word(Study_State s) {
  switch (s) {
    case Study_State::Complete:
      return "complete";
    case Study_State::Missing:
      return "missing";
    case Study_State::Unreadable:
      return "unreadable";
    case Study_State::Incomplete:
      return "incomplete";
    case Study_State::Mismatched:
      return "mismatched";
  }
  return "";
}

void Print_Table(const std::vector<Study_Row>& rows, std::ostream& out) {
  const bool stresses =
      std::any_of(rows.begin(), rows.end(), [](const Study_Row& r) { return r.Mechanical; });
  std::vector<std::vector<std::string>> cells{{"Variant", "Material", "Results", "Highest temperature"}};
  if (stresses) cells[0].push_back("Largest Szz/ft");
  for (const Study_Row& r : rows) {
    std::vector<std::string> line{std::to_string(r.Variant.Variant), r.Variant.Material,
                                  File_Part(r.Variant.Results)};
    if (r.State == Study_State::Complete) {
      line.push_back(Extreme_Cell(r.Temperature, 2, " oC"));
      if (stresses) line.push_back(r.Mechanical ? Extreme_Cell(r.Szz_Ft, 3, "") : "-");
    } else {
      // A short family still tells what it holds, after what is wrong with it.
      std::string text = fmt::format("{}: {}", State_Word(r.State), r.Problem);
      if (r.State == Study_State::Incomplete && r.Temperature.Found)
        text += "; so far " + Extreme_Cell(r.Temperature, 2, " oC");
      line.push_back(text);
    }
    cells.push_back(line);
  }
  // Every column as wide as its widest cell, but for the last one of a row.
  std::vector<std::size_t> width(cells[0].size(), 0);
  for (const auto& line : cells)
    for (std::size_t c = 0; c + 1 < line.size(); ++c)
      width[c] = std::max(width[c], line[c].size());
  for (const auto& line : cells) {
    std::string text;
    for (std::size_t c = 0; c < line.size(); ++c)
      text += c + 1 < line.size() ? fmt::format("{:<{}}  ", line[c], width[c]) : line[c];
    out << text << "\n";
  }
}

std::string Csv_Field(const std::string& text) {
  if (text.find_first_of(",\"\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (char c : text)
    quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + "\"";
}

void Print_Csv(const std::vector<Study_Row>& rows, std::ostream& out) {
  out << "variant,material,results,status,problem,storages,expected_storages,"
         "max_temperature_C,temperature_stored_C,temperature_time_h,temperature_stored_step,"
         "temperature_node,temperature_x_mm,temperature_y_mm,"
         "max_szz_ft,szz_ft_stored,szz_ft_time_h,szz_ft_stored_step,szz_ft_element,szz_ft_corner,"
         "szz_ft_node,szz_ft_x_mm,szz_ft_y_mm\n";
  auto extreme = [](const Study_Extreme& x, bool corner) {
    if (!x.Found) return std::string(corner ? 9 : 7, ',');
    std::string text =
        fmt::format(",{},{},{},{}", Number(x.Run_Value), Number(x.Stored_Value), Number(x.Time), x.Stored);
    if (corner) text += fmt::format(",{},{}", x.Element, x.Corner);
    return text + fmt::format(",{},{:.10g},{:.10g}", x.Node, x.X, x.Y);
  };
  for (const Study_Row& r : rows)
    out << r.Variant.Variant << "," << Csv_Field(r.Variant.Material) << ","
        << Csv_Field(File_Part(r.Variant.Results)) << "," << State_Word(r.State) << ","
        << Csv_Field(r.Problem) << "," << r.Storages << "," << r.Variant.Expected_Storages
        << extreme(r.Temperature, false) << extreme(r.Szz_Ft, true) << "\n";
}

int Show_Study(const Study_Options& o, std::ostream& out, std::ostream& err) {
  Project p;
  std::vector<Study_Variant> variants;
  if (!Plan_Study(o, p, variants, err)) return Exit_Failure;
  if (o.count) {
    out << variants.size() << "\n";
    return Exit_Ok;
  }
  std::vector<Study_Row> rows;
  for (const Study_Variant& v : variants) {
    // Each family gets the project as the reader of one family prepares it.
    Project mesh = p;
    const Result_Layout layout = Layout_Of_Family(mesh, v.Results);
    rows.push_back(Read_Study_Row(mesh, layout, v));
  }
  if (o.csv)
    Print_Csv(rows, out);
  else
    Print_Table(rows, out);
  std::vector<int> missing;
  for (const Study_Row& r : rows)
    if (r.State != Study_State::Complete) missing.push_back(r.Variant.Variant);
  if (missing.empty()) return Exit_Ok;
  std::string list;
  for (int k : missing)
    list += (list.empty() ? "" : ",") + std::to_string(k);
  const bool one = missing.size() == 1;
  err << fmt::format(
      "{} of {} variants {} no complete result family: compute {} again with pvx run {} --variant {}, or as "
      "the tasks --array={} of a job array\n",
      missing.size(), rows.size(), one ? "has" : "have", one ? "it" : "them", o.project,
      one ? list : "K for K in " + list, list);
  return Exit_Failure;
}

}  // namespace

void Add_Study_Commands(CLI::App& app, int& status) {
  auto o = std::make_shared<Study_Options>();
  auto* study = app.add_subcommand(
      "study",
      "After the variants of a run set are computed: one row per variant with its material, the "
      "largest temperature and the largest Szz/ft, when and where they occurred");
  study->add_option("PROJECT", o->project, "Project file (.PVX) whose run set was computed")->required();
  study->add_option("--output", o->output,
                    "Name of the result family, as given to pvx run --output (default: the project's)");
  auto* count = study->add_flag("--count", o->count,
                                "Print only the number of variants of the run set: the tasks of a job array");
  study->add_flag("--csv", o->csv, "Print the table as comma-separated rows with full precision")
      ->excludes(count);
  study->footer(
      "A variant whose result family is missing, unreadable, or holds fewer storages than the schedule "
      "gives (its run failed or was stopped) gets a row that says so. Exit status: 0 every family is "
      "complete; 1 the project cannot be used or a family is not complete.");
  study->callback([&status, o] { status = Show_Study(*o, std::cout, std::cerr); });
}

}  // namespace pvx::cli
