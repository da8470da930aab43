// pvx check and pvx convert: read a project as the program opens it, report or save it anew.
#include <cctype>
#include <filesystem>
#include <iostream>
#include <memory>
#include <utility>

#include <fmt/format.h>

#include "analysis/mechanics/assembly.h"
#include "analysis/schedule.h"
#include "app/prescribed_data.h"
#include "app/project_file.h"
#include "app/project_load.h"
#include "app/shell.h"
#include "commands.h"
#include "material/database.h"
#include "project_io.h"

namespace pvx::cli {

std::string Work_Directory_Of(const std::string& project_path) {
  std::error_code ec;
  std::filesystem::path absolute = std::filesystem::absolute(project_path, ec);
  if (ec) absolute = project_path;
  return absolute.parent_path().string();
}

bool Open_Project(const std::string& path, Project& p, std::ostream& err) {
  Read_Report report;
  if (!Read_Project(path, Work_Directory_Of(path), p, report)) {
    err << report.message << "\n";
    if (!report.detail.empty()) err << "  (" << path << ": " << report.detail << ")\n";
    return false;
  }
  After_Opening(p);
  return true;
}

bool Open_Project_With_Database(const std::string& path, Project& p, std::ostream& err) {
  Read_Report report;
  const Load_Result result = Load_Project(path, Work_Directory_Of(path), p, report);
  if (result != Load_Result::Loaded) {
    err << report.message << "\n";
    if (!report.detail.empty()) err << "  (" << report.detail << ")\n";
    return false;
  }
  After_Opening(p);
  return true;
}

void Prepare_Run_Set(Project& p, const std::string& project_path, const std::string& output) {
  if (!output.empty()) {
    p.Result_File_Name = output;
  } else if (p.Result_File_Name.empty()) {
    std::string name = File_Part(project_path);
    const auto dot = name.find_last_of('.');
    p.Result_File_Name = (dot == std::string::npos ? name : name.substr(0, dot)) + ".RES";
  }
  std::int16_t replaced = 0;
  if (!p.Mesh_Element.empty())
    for (int m = 1; m <= p.Material.count(); ++m)
      if (p.Material[m].Name == p.Mesh_Element[1].Material) {
        replaced = static_cast<std::int16_t>(m);
        break;
      }
  Run_Window window;
  if (p.Replace_Material != 0) Choose_Replaced_Material(p, window, replaced);
  Prepare_Runs(p, replaced);
}

bool Save_Project_As(Project& p, const std::string& path, std::ostream& out, std::ostream& err) {
  p.Project_File = path;
  Save_Report report;
  const bool ok = Save_Project(p, Work_Directory_Of(path), report);
  for (const auto& message : report.messages)
    out << message << "\n";
  if (!ok) err << report.error << "\n";
  return ok;
}

void Print_Summary(const Project& p, std::ostream& out) {
  out << fmt::format("Project:        {}\n", p.Project_File);
  out << fmt::format("Version:        {}\n", p.File_Version);
  out << fmt::format("Database:       {}\n", File_Part(p.Material_Database_Path));
  out << fmt::format("Materials:      {}\n", p.Material.count());
  out << fmt::format("Nodes:          {}\n", Node_Count(p));
  out << fmt::format("Macros:         {}\n", p.Macro.count());
  out << fmt::format("Borders:        {}\n", p.Border.count());
  out << fmt::format("Circuits:       {}\n", p.Circuit.count());
  out << fmt::format("Mesh nodes:     {}\n", p.Mesh_Node.count());
  out << fmt::format("Mesh elements:  {}\n", p.Mesh_Element.count());
  out << fmt::format("Periods:        {}\n", p.Period.count());
  out << fmt::format("Runs:           {}\n", Number_Of_Runs(p));
}

void Add_Project_Commands(CLI::App& app, int& status) {
  auto* check = app.add_subcommand("check", "Read a project file and print a short summary of it");
  auto check_path = std::make_shared<std::string>();
  check->add_option("PROJECT", *check_path, "Project file (.PVX)")->required();
  check->callback([&status, check_path] {
    Project p;
    if (!Open_Project_With_Database(*check_path, p, std::cerr)) {
      status = Exit_Failure;
      return;
    }
    Print_Summary(p, std::cout);
    status = Exit_Ok;
  });

  auto* convert =
      app.add_subcommand("convert", "Read a project of any version and save it as the current version");
  auto paths = std::make_shared<std::pair<std::string, std::string>>();
  convert->add_option("IN", paths->first, "Project file to read")->required();
  convert->add_option("OUT", paths->second, "Project file to write")->required();
  convert->callback([&status, paths] {
    const auto& [in_path, out_path] = *paths;
    Project p;
    if (!Open_Project(in_path, p, std::cerr)) {
      status = Exit_Failure;
      return;
    }
    const int from = p.File_Version;
    if (!Save_Project_As(p, out_path, std::cout, std::cerr)) {
      status = Exit_Failure;
      return;
    }
    std::cout << fmt::format("{} (version {}) saved as {} (version {})\n", in_path, from, out_path,
                             p.File_Version);
    status = Exit_Ok;
  });
}

// The project beside a result family whose run wrote it: its result name, or its own name with
// .RES, is the family's. Empty when none or several fit.
std::string Find_Project_Of(const std::string& res_path) {
  namespace fs = std::filesystem;
  auto lower = [](std::string t) {
    for (char& c : t)
      c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return t;
  };
  const fs::path res = fs::absolute(res_path);
  const std::string wanted = lower(res.filename().string());
  std::string found;
  std::error_code ec;
  for (const auto& entry : fs::directory_iterator(res.parent_path(), ec)) {
    if (!entry.is_regular_file() || lower(entry.path().extension().string()) != ".pvx") continue;
    Project p;
    Read_Report report;
    if (!Read_Project(entry.path().string(), res.parent_path().string(), p, report)) continue;
    bool fits = lower(entry.path().stem().string() + ".RES") == wanted;
    for (const std::string& name : p.Result_Names)
      fits = fits || lower(File_Part(name)) == wanted;
    if (!fits) continue;
    if (!found.empty()) return {};
    found = entry.path().string();
  }
  return found;
}

bool Family_Is_Mechanical(const Project& p, const std::string& res_path) {
  if (p.Mechanical_Included != 0) return true;
  Run_Index index;
  std::string ignored;
  if (!Read_Run_Index_File(res_path, p.File_Version, false, index, ignored)) return false;
  // A run samples the rows of the mechanical variables only when it computes them; a sampled row
  // points at a stored step.
  const Extreme_Row& displacement = index.Extremes[11];
  return displacement.StoredIndexOfMin != 0 || displacement.StoredIndexOfMax != 0;
}

Result_Layout Layout_Of_Family(Project& p, const std::string& res_path) {
  if (!p.Point_Support.empty() || !p.Line_Support.empty()) {
    bool ok = true;
    std::string ignored;
    Set_Prescribed_Data(p, ok, ignored);
  }
  const bool mechanical = Family_Is_Mechanical(p, res_path);
  // The run stored its displacements and bar results on the joints' node copies and the bars cut
  // at the mesh, which a project saved before the run does not hold yet.
  // Which joints took part depends on their materials: the database is read for them when the
  // project came without it (a results reader needs it for nothing else).
  std::string ignored;
  if (mechanical && p.Material.empty() && !p.Mesh_Interface.empty()) {
    Table<std::int32_t> colours;
    Read_Material_Database(p.Material_Database_Path, p.Material, colours, ignored);
  }
  if (mechanical) Set_Mechanical_Mesh(p, ignored);
  return Result_Layout_Of(p, mechanical);
}

}  // namespace pvx::cli
