// The index of a result family: the time axis of a run and the table of extreme values, as the
// `.RES` file holds it.
//
// Layout, little-endian, from byte 0:
//   Number_Of_Steps           i32 (i16 in files of project version below 108)
//   Step_Time[1..steps]       f64 each, hours
//   Storage_Count             i32
//   Storage_Time[1..count]    f64 each, hours; the first is 0, the initial state
//   40 rows, each             PeriodMin, PeriodMax, ScaleMin, ScaleMax (f64),
//                             StoredIndexOfMin, StoredIndexOfMax (i16)
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "app/table.h"
#include "results/result_variables.h"

namespace pvx {

// The project version from which Number_Of_Steps takes four bytes; the writer always uses it.
inline constexpr int Run_Index_Version = 108;
inline constexpr int Extreme_Row_Bytes = 4 * 8 + 2 * 2;

struct Extreme_Row {
  double PeriodMin = 0;  // smallest value of the variable during the run
  double PeriodMax = 0;  // largest value
  double ScaleMin = 0;   // default colour scale, lower end
  double ScaleMax = 0;   // upper end
  // Stored steps at which the extremes occurred. Kept wider than the file's 16 bits so that the
  // sampling never wraps; the file takes them capped at 32767.
  std::int32_t StoredIndexOfMin = 0;
  std::int32_t StoredIndexOfMax = 0;
  bool operator==(const Extreme_Row&) const = default;
};

struct Run_Index {
  Table<double> Step_Time;     // end of each computation step, hours (Number_Of_Steps entries)
  Table<double> Storage_Time;  // time of each stored step (Storage_Count entries)
  Array1<Extreme_Row, Result_Variable_Count> Extremes;
  bool operator==(const Run_Index&) const = default;
};
inline int Number_Of_Steps(const Run_Index& index) {
  return index.Step_Time.count();
}
inline int Storage_Count(const Run_Index& index) {
  return index.Storage_Time.count();
}

// Bytes of a header of the given counts (4-byte step count).
std::size_t Run_Index_Size(std::int64_t steps, std::int64_t storages);

// The header bytes of `index`, with at most `storage_limit` storages (the storages whose records
// are complete in every sibling). Always the 4-byte form.
std::vector<unsigned char> Encode_Run_Index(const Run_Index& index, int storage_limit);

// Parses a header. Counts are checked against the bytes there are before anything is allocated;
// bytes after the header are ignored (a file may be reused). On failure `detail` says what was
// wrong and `index` is unspecified.
bool Parse_Run_Index(const unsigned char* data, std::size_t size, int project_version, Run_Index& index,
                     std::string& detail);

// Converts the four values of every row to imperial display, in place, with the row's unit kind.
void Convert_Extreme_Table(Run_Index& index, int project_version);

// Caps the stored indices of rows 1..30 at Storage_Count. Rows above 30 are left alone, so a reader
// caps those itself (see Display_Stored_Index).
void Clamp_Plot_Storages(Run_Index& index);

// The stored index of an extreme as the viewer may step to it: within 1..Storage_Count.
int Display_Stored_Index(const Run_Index& index, std::int32_t stored_index);

}  // namespace pvx
