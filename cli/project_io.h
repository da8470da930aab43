// Reading and saving projects the way the batch tool does it: the work directory is the folder
// that holds the project file.
#pragma once

#include <ostream>
#include <string>

#include "app/project.h"
#include "results/result_files.h"

namespace pvx::cli {

std::string Work_Directory_Of(const std::string& project_path);
// Reads as the program opens a file; on failure prints the program's message to err.
bool Open_Project(const std::string& path, Project& p, std::ostream& err);
// Reads the project and then its material database, as the program loads a project.
bool Open_Project_With_Database(const std::string& path, Project& p, std::ostream& err);
// The run set as pvx run computes it: the result family named by `output`, else the project's, else
// the project file's name with .RES; the variants replace the material of the first element, as the
// run window proposes; then the runs and their result names.
void Prepare_Run_Set(Project& p, const std::string& project_path, const std::string& output);
// Saves under a new name with the folder of that name as work directory.
bool Save_Project_As(Project& p, const std::string& path, std::ostream& out, std::ostream& err);
void Print_Summary(const Project& p, std::ostream& out);
// The project beside a result family whose run wrote it: its result name, or its own name with
// .RES, is the family's. Empty when none or several fit.
std::string Find_Project_Of(const std::string& res_path);
// Whether a result family holds the mechanical records: the project asks for the mechanical
// analysis, or the family's index has sampled the displacements (a run made with --mechanical of a
// project that leaves it off).
bool Family_Is_Mechanical(const Project& p, const std::string& res_path);
// The layout of a family that `pvx run` wrote from this project: the mesh supports are rebuilt
// from the design supports as the run rebuilt them (the file may hold a table of an older mesh or
// none, when it was saved before a computation), and the mechanical records counted in when the
// family has them. A project without design supports keeps the mesh supports it holds.
Result_Layout Layout_Of_Family(Project& p, const std::string& res_path);

}  // namespace pvx::cli
