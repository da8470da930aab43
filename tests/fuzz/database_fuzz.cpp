// Any bytes as a material database file: the reader must accept or refuse them without a crash,
// a hang or an unbounded allocation; what it refuses leaves the table in hand as it was, and what
// it accepts reads the same a second time.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <unistd.h>

#include "material/database.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string path =
      (std::filesystem::temp_directory_path() / ("pvx-database-fuzz-" + std::to_string(getpid()) + ".txt"))
          .string();
  {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  }
  pvx::Table<pvx::Material> materials = {pvx::Material{}};
  materials[1].Name = "kept";
  const pvx::Table<pvx::Material> before = materials;
  pvx::Table<std::int32_t> colours = {1};
  std::string message;
  if (!pvx::Read_Material_Database(path, materials, colours, message)) {
    if (message.empty() || !(materials == before) || colours.count() != 1) std::abort();
    return 0;
  }
  if (colours.count() != materials.count()) std::abort();
  pvx::Table<pvx::Material> again;
  pvx::Table<std::int32_t> colours_again;
  if (!pvx::Read_Material_Database(path, again, colours_again, message) || !(again == materials))
    std::abort();
  return 0;
}
