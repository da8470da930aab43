// Any bytes as a project file: the reader must refuse or accept without a crash, a hang or an
// unbounded allocation, and what it accepts must write and read back to the same text.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "app/project_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  pvx::Project p;
  std::string database;
  pvx::Read_Report report;
  if (!pvx::Parse_Project_Text(text, p, database, report)) {
    if (report.message != pvx::File_Cannot_Be_Opened) std::abort();
    return 0;
  }
  const std::string written = pvx::Write_Project_Text(p, pvx::Current_File_Version, database);
  pvx::Project again;
  std::string database_again;
  if (!pvx::Parse_Project_Text(written, again, database_again, report)) std::abort();
  if (pvx::Write_Project_Text(again, pvx::Current_File_Version, database_again) != written) std::abort();
  return 0;
}
