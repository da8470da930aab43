// The project file (.PVX): one text file, written and read in one pass in the same order. It has
// no section marks and no field names: a value's meaning is its position. Values are separated by
// commas and line ends; the reader takes them one at a time and does not care which.
#pragma once

#include <string>
#include <vector>

#include "app/project.h"

namespace pvx {

// The version every save writes, and the thresholds at which the format grew.
inline constexpr int Current_File_Version = 110;
inline constexpr int Version_Inner_Radius = 101;   // Circ_Inner_Radius (before: 750)
inline constexpr int Version_Load_Family = 102;    // the function family Load
inline constexpr int Version_Loads = 103;          // point and line loads
inline constexpr int Version_Mesh_Supports = 104;  // mesh supports
inline constexpr int Version_Dof = 106;            // Dof of mesh elements and supports (before: derived)
inline constexpr int Version_Colours = 109;        // material colours
inline constexpr int Version_Damped_Start = 110;   // the damped start of the temperature steps

// The version a project is saved with: the newest only when it uses what only the newest holds,
// so that a project without a damped start is written as before, byte for byte.
int Save_Version(const Project& p);

inline constexpr const char* File_Cannot_Be_Opened = "File cannot be opened !";

// Messages a save shows to the user (the database copy), in the order they arise.
struct Save_Report {
  std::vector<std::string> messages;
  std::string error;  // set when the file could not be written
};

// Where a read went wrong, for the user and for tests; the message shown is always
// File_Cannot_Be_Opened.
struct Read_Report {
  std::string message;  // the program's message
  std::string detail;   // what exactly was wrong, and where
};

// The whole text of a project file of the given version (100 to 110). Saving writes 110 for a
// project with a damped start and 109 for all others; older versions are written for tests and
// conversions of the reader only.
std::string Write_Project_Text(const Project& p, int version, const std::string& database_record);

// Parses the text of a project file into `p`, which is reset first. On failure returns false and
// fills `report`; `p` is then in an unspecified state, so callers read into a fresh Project.
// The database record is returned as it stands in the file (record 2). The mesh borders, which the
// file holds without hygral periods, get those of their design borders (border_periods.h).
bool Parse_Project_Text(const std::string& text, Project& p, std::string& database_record,
                        Read_Report& report);

// Writes the text beside `path` and renames it over the file, so that a failed write leaves the
// previous file whole; false when the file could not be written.
bool Write_File_Replacing(const std::string& path, const std::string& text);

// The directory part of a path up to and including its last separator ("/" or "\"), or empty.
std::string getdir(const std::string& path);
// The part of a path behind its last separator.
std::string File_Part(const std::string& path);
// work_directory joined with name by one separator.
std::string Join_Path(const std::string& work_directory, const std::string& name);

// Reads a project file into `p`. The file is read into a fresh Project that replaces `p` only on
// success; on failure `p` is untouched and report.message is "File cannot be opened !".
// The database name in the file is joined to `work_directory` to form Material_Database_Path.
// Does not read the material database (see Load_Project).
bool Read_Project(const std::string& path, const std::string& work_directory, Project& p,
                  Read_Report& report);

// Writes p to p.Project_File, as version 109. The text goes to a temporary file beside the target
// that is renamed over it, so a failed save leaves the previous file as it was. A database outside
// the work directory is first copied beside the project (see the messages in the report).
bool Save_Project(Project& p, const std::string& work_directory, Save_Report& report);

}  // namespace pvx
