// What the run window does with the Project before a computation starts: which material the
// variants replace, the result names of the variants, and the name proposed for the results of a
// project that has none yet.
#pragma once

#include <cstdint>
#include <string>

#include "app/project.h"

namespace pvx {

// The material whose elements the variants replace: the material of the first element flagged in
// Element_Replaced (the choice made in the run settings window), otherwise that of the first
// element; 0 when neither names a material of the table.
std::int16_t Replaced_Material_Of(const Project& p);

// Binds the replaced material when no element is flagged yet (a project just read, whose window of
// the run settings was not opened), and makes the result names of the runs: no run becomes one run
// of the replaced material. Returns the replaced material.
std::int16_t Prepare_Run_Variants(Project& p);

// The result name proposed for a project without one: the project file's name with the extension
// ".RES" in place of its own ("WALL.PVX" gives "WALL.RES"), "RESULTS.RES" for a project never saved.
std::string Proposed_Result_Name(const Project& p);

// The folder in which relative result names are taken: the work directory when there is one,
// otherwise the folder of the project file.
std::string Run_Directory(const Project& p, const std::string& work_directory);

}  // namespace pvx
