#include "results/run_index.h"

#include <algorithm>
#include <limits>

#include "app/units.h"
#include "results/binary.h"

namespace pvx {

namespace {

std::int16_t File_Index(std::int32_t v) {
  return static_cast<std::int16_t>(std::clamp<std::int32_t>(v, std::numeric_limits<std::int16_t>::min(),
                                                            std::numeric_limits<std::int16_t>::max()));
}

}  // namespace

std::size_t Run_Index_Size(std::int64_t steps, std::int64_t storages) {
  return static_cast<std::size_t>(4 + 8 * steps + 4 + 8 * storages +
                                  std::int64_t{Result_Variable_Count} * Extreme_Row_Bytes);
}

std::vector<unsigned char> Encode_Run_Index(const Run_Index& index, int storage_limit) {
  const int storages = std::clamp(Storage_Count(index), 0, std::max(storage_limit, 0));
  binary::Writer w;
  w.bytes.reserve(Run_Index_Size(Number_Of_Steps(index), storages));
  w.i32(Number_Of_Steps(index));
  for (double t : index.Step_Time)
    w.f64(t);
  w.i32(storages);
  for (int k = 1; k <= storages; ++k)
    w.f64(index.Storage_Time[k]);
  for (const Extreme_Row& row : index.Extremes) {
    w.f64(row.PeriodMin);
    w.f64(row.PeriodMax);
    w.f64(row.ScaleMin);
    w.f64(row.ScaleMax);
    w.i16(File_Index(row.StoredIndexOfMin));
    w.i16(File_Index(row.StoredIndexOfMax));
  }
  return std::move(w.bytes);
}

bool Parse_Run_Index(const unsigned char* data, std::size_t size, int project_version, Run_Index& index,
                     std::string& detail) {
  binary::Reader r{data, size};
  const std::int32_t steps = project_version < Run_Index_Version ? r.i16() : r.i32();
  if (r.failed) {
    detail = "the file ends before the number of steps";
    return false;
  }
  if (steps < 0) {
    detail = "the number of steps is negative";
    return false;
  }
  // Each count must leave room for its times and for the table behind them, so that a damaged
  // count never makes us allocate more than the file could hold.
  const std::size_t tail = 4 + static_cast<std::size_t>(Result_Variable_Count) * Extreme_Row_Bytes;
  if (static_cast<std::uint64_t>(steps) * 8 + tail > r.remaining()) {
    detail = "the file is too short for " + std::to_string(steps) + " steps";
    return false;
  }
  index.Step_Time.clear();
  index.Step_Time.resize(steps);
  for (double& t : index.Step_Time)
    t = r.f64();
  const std::int32_t storages = r.i32();
  if (storages < 0) {
    detail = "the number of storages is negative";
    return false;
  }
  const std::size_t table = static_cast<std::size_t>(Result_Variable_Count) * Extreme_Row_Bytes;
  if (static_cast<std::uint64_t>(storages) * 8 + table > r.remaining()) {
    detail = "the file is too short for " + std::to_string(storages) + " storages";
    return false;
  }
  index.Storage_Time.clear();
  index.Storage_Time.resize(storages);
  for (double& t : index.Storage_Time)
    t = r.f64();
  for (Extreme_Row& row : index.Extremes) {
    row.PeriodMin = r.f64();
    row.PeriodMax = r.f64();
    row.ScaleMin = r.f64();
    row.ScaleMax = r.f64();
    row.StoredIndexOfMin = r.i16();
    row.StoredIndexOfMax = r.i16();
  }
  if (r.failed) {
    detail = "the file ends inside the extreme table";
    return false;
  }
  return true;
}

void Convert_Extreme_Table(Run_Index& index, int project_version) {
  for (int v = 1; v <= Result_Variable_Count; ++v) {
    const int kind = Extreme_Row_Unit_Kind(v, project_version);
    if (kind == 0) continue;
    Extreme_Row& row = index.Extremes[v];
    row.PeriodMin = Convert_Unit(true, kind, row.PeriodMin);
    row.PeriodMax = Convert_Unit(true, kind, row.PeriodMax);
    row.ScaleMin = Convert_Unit(true, kind, row.ScaleMin);
    row.ScaleMax = Convert_Unit(true, kind, row.ScaleMax);
  }
}

void Clamp_Plot_Storages(Run_Index& index) {
  const int count = Storage_Count(index);
  for (int v = 1; v <= 30; ++v) {
    Extreme_Row& row = index.Extremes[v];
    row.StoredIndexOfMin = std::min(row.StoredIndexOfMin, count);
    row.StoredIndexOfMax = std::min(row.StoredIndexOfMax, count);
  }
}

int Display_Stored_Index(const Run_Index& index, std::int32_t stored_index) {
  return std::clamp<std::int32_t>(stored_index, 1, std::max(Storage_Count(index), 1));
}

}  // namespace pvx
