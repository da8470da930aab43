#include "app/shell_input.h"

namespace pvx {

std::vector<File_Filter_Entry> Split_File_Filter(const std::string& filter) {
  std::vector<std::string> parts;
  std::string part;
  for (char c : filter) {
    if (c == '|') {
      parts.push_back(part);
      part.clear();
    } else {
      part += c;
    }
  }
  if (!part.empty()) parts.push_back(part);
  std::vector<File_Filter_Entry> entries;
  for (std::size_t i = 0; i + 1 < parts.size(); i += 2) {
    File_Filter_Entry entry{parts[i], parts[i + 1]};
    if (entry.Patterns.find_first_not_of(' ') == std::string::npos) entry.Patterns.assign(1, '*');
    entries.push_back(entry);
  }
  return entries;
}

std::string Default_Suffix(const std::string& filter) {
  for (const File_Filter_Entry& entry : Split_File_Filter(filter)) {
    const std::string& pattern = entry.Patterns;
    if (pattern.size() > 2 && pattern.compare(0, 2, "*.") == 0 &&
        pattern.find_first_of("*?; ", 2) == std::string::npos)
      return pattern.substr(2);
  }
  return {};
}

std::string Quoted_Command_Line(const std::string& argument) {
  const auto first = argument.find_first_not_of(" \t");
  if (first == std::string::npos) return {};
  const auto last = argument.find_last_not_of(" \t");
  const std::string path = argument.substr(first, last - first + 1);
  if (path.size() >= 2 && path.front() == '"' && path.back() == '"') return path;
  return '"' + path + '"';
}

}  // namespace pvx
