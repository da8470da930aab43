// Any bytes as a result family: the readers must refuse with the program's message or accept,
// without a crash, a hang or an unbounded allocation.
//
// Input: a 2-byte little-endian length L, then L bytes of the `.RES` index, then the bytes that
// every sibling file (and, as text, the cooling file) is given. The family belongs to a small
// mechanical mesh of 2 nodes, 1 element, 1 reaction, 1 interface, 1 bar and 1 circuit.
#include <unistd.h>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "results/result_files.h"

namespace {

const std::string& Folder() {
  static const std::string folder = [] {
    char pattern[] = "/tmp/pvx-results-fuzz-XXXXXX";
    const char* made = mkdtemp(pattern);
    if (made == nullptr) std::abort();
    return std::string(made);
  }();
  return folder;
}

void Put(const std::string& path, const std::uint8_t* data, std::size_t size) {
  std::FILE* f = std::fopen(path.c_str(), "wb");
  if (f == nullptr) std::abort();
  if (size > 0) std::fwrite(data, 1, size, f);
  std::fclose(f);
}

pvx::Result_Layout Layout() {
  pvx::Result_Layout l;
  l.Nodes = 2;
  l.Elements = 1;
  l.Reactions = 1;
  l.Interfaces = 1;
  l.Bars = 1;
  l.Mechanical = true;
  l.Circuit_Stations.add(3);
  return l;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  std::size_t res_size = data[0] | (std::size_t{data[1]} << 8);
  data += 2;
  size -= 2;
  if (res_size > size) res_size = size;
  const std::uint8_t* rest = data + res_size;
  const std::size_t rest_size = size - res_size;

  // The header parser alone, in both widths of the step count.
  for (int version : {107, 108}) {
    pvx::Run_Index index;
    std::string detail;
    if (pvx::Parse_Run_Index(data, res_size, version, index, detail)) {
      if (pvx::Run_Index_Size(pvx::Number_Of_Steps(index), pvx::Storage_Count(index)) >
          res_size + (version < 108 ? 2 : 0))
        std::abort();
    } else if (detail.empty()) {
      std::abort();
    }
  }

  // The whole family through the viewer's stages.
  pvx::Result_Family family;
  family.Layout = Layout();
  std::string message;
  if (!pvx::Set_Output_Names(family, {"F.RES", "F.RES"}, Folder(), message)) std::abort();
  for (int slot = 1; slot <= pvx::Result_Slot_Count; ++slot) {
    const std::string& path = family.Files[1][static_cast<std::size_t>(slot)].Path;
    if (slot == pvx::Slot_RES)
      Put(path, data, res_size);
    else
      Put(path, rest, rest_size);
  }
  const std::string res_path = family.Files[1][pvx::Slot_RES].Path;
  if (!pvx::Open_All_Result_Sets(family, 109, message)) std::abort();  // every file is there
  pvx::Run_Index index;
  const bool to_imperial = res_size % 2 == 1;
  if (!pvx::Read_Run_Index(family, 1, 109, to_imperial, index, message)) {
    if (message != pvx::Results_Corrupted(res_path)) std::abort();
    return 0;
  }
  if (pvx::Storage_Count(index) < 1) std::abort();
  pvx::Plot_Buffers buffers;
  pvx::Dimension_Plot_Buffers(family.Layout, buffers);
  const int count = pvx::Storage_Count(index);
  for (int stored : {1, count, count + 1}) {
    for (int variable : {1, 2, 4, 5, 9, 10, 11, 12, 13, 14, 15, 19, 20, 21, 22, 30, 31, 32, 33, 34, 40}) {
      const bool ok = pvx::Read_Result_Variable(family, 1, pvx::Slot_Of_Variable(variable), stored, variable,
                                                to_imperial, buffers, message);
      if (!ok && message != pvx::Results_Corrupted(res_path)) std::abort();
      if (ok && stored > count) std::abort();
    }
  }
  pvx::Table<pvx::Circuit_History> circuits;
  bool cooling_ok = true;
  if (!pvx::Read_Cooling_Data(family, 1, circuits, cooling_ok, message)) {
    if (cooling_ok || message != pvx::Cooling_Corrupted(family.Files[1][pvx::Slot_COO].Path)) std::abort();
  } else if (!cooling_ok || circuits.count() != 1) {
    std::abort();
  }
  return 0;
}
