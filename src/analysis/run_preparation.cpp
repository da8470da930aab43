#include "analysis/run_preparation.h"

#include <algorithm>

#include "analysis/schedule.h"
#include "app/project_file.h"

namespace pvx {

namespace {

std::int16_t Material_Number(const Project& p, const std::string& name) {
  for (int m = 1; m <= p.Material.count(); ++m)
    if (p.Material[m].Name == name) return static_cast<std::int16_t>(m);
  return 0;
}

}  // namespace

std::int16_t Replaced_Material_Of(const Project& p) {
  const int elements = std::min<int>(p.Mesh_Element.count(), static_cast<int>(p.Element_Replaced.size()));
  for (int e = 1; e <= elements; ++e)
    if (p.Element_Replaced[static_cast<std::size_t>(e - 1)])
      return Material_Number(p, p.Mesh_Element[e].Material);
  if (p.Mesh_Element.empty()) return 0;
  return Material_Number(p, p.Mesh_Element[1].Material);
}

std::int16_t Prepare_Run_Variants(Project& p) {
  const std::int16_t replaced = Replaced_Material_Of(p);
  bool flagged = false;
  for (bool f : p.Element_Replaced)
    flagged = flagged || f;
  if (!flagged && p.Replace_Material != 0) {
    Run_Window window;
    Choose_Replaced_Material(p, window, replaced);
  }
  Prepare_Runs(p, replaced);
  return replaced;
}

std::string Proposed_Result_Name(const Project& p) {
  const std::string name = File_Part(p.Project_File);
  if (name.empty()) return "RESULTS.RES";
  const auto dot = name.find_last_of('.');
  return (dot == std::string::npos || dot == 0 ? name : name.substr(0, dot)) + ".RES";
}

std::string Run_Directory(const Project& p, const std::string& work_directory) {
  if (!work_directory.empty()) return work_directory;
  return getdir(p.Project_File);
}

}  // namespace pvx
