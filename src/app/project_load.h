// Opening a project as the program does: the project file, then its material database, with the
// colours the file keeps for the materials.
#pragma once

#include <string>

#include "app/project.h"
#include "app/project_file.h"

namespace pvx {

// How far a load got: the project file may read while its database does not.
enum class Load_Result { Loaded, Project_Failed, Database_Failed };

// Reads the project file and the database it names (looked for in the work directory). The database
// gives the material table and a default colour per material; the colours stored in the project
// replace these as far as their count reaches. `p` is replaced only when both read; on a failure
// report.message holds the program's message ("File cannot be opened !", a database fault, or
// "Material Database (name) could not be opened. ...").
Load_Result Load_Project(const std::string& path, const std::string& work_directory, Project& p,
                         Read_Report& report);

// Puts the stored colours over the default ones of the database.
void Apply_Stored_Colours(const Table<std::int32_t>& stored, Table<std::int32_t>& colours);

}  // namespace pvx
