// pvx export: every stored step of a result family, on the mesh of its project, as a ParaView time
// series (a .pvd collection of .vtu grids) and as CSV tables. The arrays and files are described in
// src/results/export.h; the text of --help says the same to the user.
#include <algorithm>
#include <cctype>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "analysis/driver.h"
#include "app/project.h"
#include "app/project_file.h"
#include "commands.h"
#include "project_io.h"
#include "results/export.h"

namespace pvx::cli {

namespace {

struct Export_Options {
  std::string path;
  std::string project;
  std::string vtk, csv;
  bool ascii = false;
  int variant = 0;
};

std::string Lower(std::string t) {
  for (char& c : t)
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return t;
}

// The families to export. A run set of several variants keeps them beside each other, B.RES, B2.RES,
// ...: the first name stands for the whole set (or the one variant asked for), a later one for
// itself alone.
bool Families_To_Export(const Project& p, const Export_Options& o, std::vector<std::string>& paths,
                        std::ostream& err) {
  namespace fs = std::filesystem;
  const int runs = p.Replace_Material != 0 ? Number_Of_Runs(p) : 1;
  const std::string given = Lower(File_Part(o.path));
  for (int r = 2; r <= runs && r < static_cast<int>(p.Result_Names.size()); ++r)
    if (given == Lower(File_Part(p.Result_Names[static_cast<std::size_t>(r)]))) {
      if (o.variant != 0 && o.variant != r) {
        err << fmt::format(
            "{} holds variant {} of its run set: give the set's first name with --variant {}\n", o.path, r,
            o.variant);
        return false;
      }
      paths = {o.path};
      return true;
    }
  const int count = std::max(runs, 1);
  if (o.variant < 0 || o.variant > count) {
    err << Missing_Variant_Message(o.variant, count) << "\n";
    return false;
  }
  const fs::path first(o.path);
  for (int r = 1; r <= count; ++r) {
    if (o.variant != 0 && r != o.variant) continue;
    if (r == 1) {
      paths.push_back(o.path);
    } else {
      fs::path variant = first;
      variant.replace_filename(first.stem().string() + std::to_string(r) + first.extension().string());
      paths.push_back(variant.string());
    }
  }
  return true;
}

int Export_Family(const Export_Options& o, const std::string& project_path, const std::string& path,
                  std::ostream& out, std::ostream& err) {
  std::error_code ec;
  if (!std::filesystem::is_regular_file(path, ec)) {
    err << Results_Not_Available(path) << "\n";
    return Exit_Failure;
  }
  Project p;
  if (!Open_Project(project_path, p, err)) return Exit_Failure;
  Result_Family family;
  family.Layout = Layout_Of_Family(p, path);
  std::string message;
  Run_Index index;
  if (!Set_Output_Names(family, {path, path}, "", message) ||
      !Open_All_Result_Sets(family, p.File_Version, message) ||
      !Read_Run_Index(family, 1, p.File_Version, false, index, message)) {
    err << message << "\n";
    return Exit_Failure;
  }
  Export_Target target;
  target.Vtk_Folder = o.vtk;
  target.Csv_Folder = o.csv;
  target.Encoding = o.ascii ? Vtk_Encoding::Ascii : Vtk_Encoding::Binary;
  std::vector<std::string> written;
  const std::string name = std::filesystem::path(path).stem().string();
  if (!Export_Run(family, 1, index, Export_Mesh_Of(p), name, target, written, message)) {
    err << message << "\n";
    return Exit_Failure;
  }
  const int storages = Storage_Count(index);
  for (const std::string& file : written)
    out << fmt::format("{}: {} stored step{}, {} to {} hours\n", file, storages, storages == 1 ? "" : "s",
                       index.Storage_Time[1], index.Storage_Time[storages]);
  return Exit_Ok;
}

int Export(const Export_Options& o, std::ostream& out, std::ostream& err) {
  if (o.vtk.empty() && o.csv.empty()) {
    err << "Give the folder of the export: --vtk DIR, --csv DIR or both\n";
    return Exit_Failure;
  }
  std::error_code ec;
  if (!std::filesystem::is_regular_file(o.path, ec)) {
    err << Results_Not_Available(o.path) << "\n";
    return Exit_Failure;
  }
  const std::string project_path = o.project.empty() ? Find_Project_Of(o.path) : o.project;
  if (project_path.empty()) {
    err << "An export is drawn on the mesh of its project, and no single project beside the results names "
           "it: give --project\n";
    return Exit_Failure;
  }
  Project p;
  if (!Open_Project(project_path, p, err)) return Exit_Failure;
  std::vector<std::string> paths;
  if (!Families_To_Export(p, o, paths, err)) return Exit_Failure;
  for (const std::string& path : paths)
    if (const int status = Export_Family(o, project_path, path, out, err); status != Exit_Ok) return status;
  return Exit_Ok;
}

}  // namespace

void Add_Export_Commands(CLI::App& app, int& status) {
  auto* command = app.add_subcommand(
      "export", "Write every stored step of a result family as a ParaView time series or as CSV tables");
  auto o = std::make_shared<Export_Options>();
  command->add_option("RESULTS", o->path, "Result index file (.RES)")->required();
  command->add_option("--vtk", o->vtk,
                      "Folder of the ParaView files: B.pvd, the collection over the stored steps with their "
                      "times in hours, and B/B_0001.vtu ..., one unstructured grid per stored step");
  command->add_option("--csv", o->csv,
                      "Folder of the tables B_nodes.csv and B_elements.csv: one row per node (element) and "
                      "stored step, with the time and the stored step in the first columns");
  command->add_flag("--ascii", o->ascii, "Write the grids as ASCII text (default: appended raw binary)");
  command->add_option("--project", o->project, "Project file of the results (.PVX): its mesh and version");
  command->add_option("--variant", o->variant,
                      "Only this variant of a run set (default: every variant, B.RES, B2.RES, ... as B.pvd, "
                      "B2.pvd, ...)");
  command->footer(
      "Points are the mesh nodes (x, y in mm, z = 0), cells the elements (VTK_QUAD). Point data: "
      "\"Temperature [oC]\", \"Moisture potential [-]\", and with mechanics \"Displacement [mm]\" (Ux, Uy, "
      "0) and \"Total displacement [mm]\". Cell data: for maturity, C-maturity, degree of hydration, "
      "moisture content, tensile and compressive strength and, with mechanics, crack opening, the mean, "
      "minimum and maximum over the four integration points of an element (\"Maturity mean [hours]\", "
      "\"Maturity min [hours]\", \"Maturity max [hours]\", ...); with mechanics the corner stresses as the "
      "mean over the four corners (\"Stress Sxx [MPa]\", Syy, Sxy, Szz). Values are metric. B is the name "
      "of the family without its extension.");
  command->callback([&status, o] { status = Export(*o, std::cout, std::cerr); });
}

}  // namespace pvx::cli
