// The recent file list of the Project menu, kept in the per-user settings store so that it
// outlives the program. The store is reached through a small interface, so the desktop program
// can use the platform's store and the tests a map.
#pragma once

#include <string>
#include <vector>

namespace pvx {

inline constexpr const char* Settings_Application = "PVX";
inline constexpr const char* Recent_Section = "Recent File List";
inline constexpr const char* Recent_Key_Prefix = "File";
// Entries the menu shows; a name pushed beyond the last is forgotten.
inline constexpr int Recent_List_Length = 4;

class Settings_Store {
 public:
  virtual ~Settings_Store() = default;
  // The value under (application, section, key), or `fallback` when there is none.
  virtual std::string Get_Setting(const std::string& application, const std::string& section,
                                  const std::string& key, const std::string& fallback) = 0;
  virtual void Save_Setting(const std::string& application, const std::string& section,
                            const std::string& key, const std::string& value) = 0;
};

// The key of position `position` (1 = most recent): "File1", "File2", ...
std::string Recent_Key(int position);

// The form in which two names are compared: trimmed of blanks at both ends and in lower case.
std::string Recent_Compare_Form(const std::string& name);

// The list as it is stored, most recent first, blank entries left out.
std::vector<std::string> Read_Recent_Files(Settings_Store& store);

// Puts `name` (trimmed) at the front of the list. An entry that compares equal is taken out of its
// old place, so a name is never listed twice; the list is cut to Recent_List_Length. Every
// position is written, unused ones as empty texts. A blank name changes nothing.
void Add_Recent_File(Settings_Store& store, const std::string& name);

}  // namespace pvx
