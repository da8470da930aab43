// Reading and saving projects the way the batch tool does it: the work directory is the folder
// that holds the project file.
#pragma once

#include <ostream>
#include <string>

#include "app/project.h"

namespace pvx::cli {

std::string Work_Directory_Of(const std::string& project_path);
// Reads as the program opens a file; on failure prints the program's message to err.
bool Open_Project(const std::string& path, Project& p, std::ostream& err);
// Reads the project and then its material database, as the program loads a project.
bool Open_Project_With_Database(const std::string& path, Project& p, std::ostream& err);
// Saves under a new name with the folder of that name as work directory.
bool Save_Project_As(Project& p, const std::string& path, std::ostream& out, std::ostream& err);
void Print_Summary(const Project& p, std::ostream& out);
// The project beside a result family whose run wrote it: its result name, or its own name with
// .RES, is the family's. Empty when none or several fit.
std::string Find_Project_Of(const std::string& res_path);

}  // namespace pvx::cli
