#include "app/project_load.h"

#include "material/database.h"

namespace pvx {

void Apply_Stored_Colours(const Table<std::int32_t>& stored, Table<std::int32_t>& colours) {
  for (int i = 1; i <= stored.count() && i <= colours.count(); ++i)
    colours[i] = stored[i];
}

Load_Result Load_Project(const std::string& path, const std::string& work_directory, Project& p,
                         Read_Report& report) {
  Project fresh;
  if (!Read_Project(path, work_directory, fresh, report)) return Load_Result::Project_Failed;
  Table<Material> materials;
  Table<std::int32_t> colours;
  std::string message;
  if (!Read_Material_Database(fresh.Material_Database_Path, materials, colours, message)) {
    report.message = message;
    report.detail = fresh.Material_Database_Path;
    return Load_Result::Database_Failed;
  }
  Apply_Stored_Colours(fresh.Material_Color, colours);
  fresh.Material = std::move(materials);
  fresh.Material_Color = std::move(colours);
  p = std::move(fresh);
  return Load_Result::Loaded;
}

}  // namespace pvx
