// Helpers of the result tests. A small analysis: a mesh of 3 nodes (and 1 doubled node), 2 elements,
// 2 reaction entries, 1 interface and 2 bars, with one cooling circuit of 4 stations. Every value
// of every field is known by a formula, so a test can say what any byte must hold.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "results/extremes.h"
#include "results/result_files.h"
#include "support/temp_dir.h"

namespace pvx::test {

static_assert(std::endian::native == std::endian::little, "the byte checks read values with memcpy");

inline Result_Layout Small_Layout(bool mechanical = true) {
  Result_Layout l{.Nodes = 3,
                  .Elements = 2,
                  .Doubled_Nodes = 1,
                  .Reactions = 2,
                  .Interfaces = 1,
                  .Bars = 2,
                  .Mechanical = mechanical,
                  .Circuit_Stations = {}};
  l.Circuit_Stations.add(4);
  return l;
}

// Value i (1-based) of the field of `slot` after `step` (0 = the initial state): exact in single
// precision, and different in every file, step and position.
inline double Pattern(int slot, int step, int i) {
  return slot * 100.0 + step * 10.0 + i * 0.5;
}

// The arrays of one step; Field_Values points into them.
struct Step_Data {
  std::vector<double> field[Result_Slot_Count + 1];
  std::vector<std::int16_t> cracked;
  Field_Values values;

  Step_Data(const Result_Layout& l, int step) {
    for (int slot = Slot_REA; slot <= Result_Slot_Count; ++slot)  // none for the cooling text
      for (int i = 1; i <= Record_Length(l, slot); ++i)
        field[slot].push_back(Pattern(slot, step, i));
    // Every second point is cracked; the others must store an opening of 0.
    for (std::size_t k = 0; k < field[Slot_REL].size(); ++k)
      cracked.push_back(k % 2 == 0 ? -1 : 0);
    auto& f = values;
    f.Temperature = field[Slot_REA], f.Potential = field[Slot_REB], f.Maturity = field[Slot_REC];
    f.C_Maturity = field[Slot_RED], f.Moisture_Content = field[Slot_REE], f.Hydration = field[Slot_REP];
    f.Tensile_Strength = field[Slot_REF], f.Compressive_Strength = field[Slot_REH];
    if (l.Mechanical) {
      f.Displacement = field[Slot_REI], f.Corner_Stress = field[Slot_REJ], f.Reaction = field[Slot_REK];
      f.Crack_Opening = field[Slot_REL], f.Cracked = cracked, f.Interface_Stress = field[Slot_REM];
      f.Bar_Values = field[Slot_REO];
    }
    f.Circuit = {true, 10.0 + step, 12.0 + 2 * step, 1.5, 4180};
  }
  Step_Data(const Step_Data&) = delete;
};

// Runs the writing stages in the order of the analysis driver: the initial storage, then `steps`
// steps of 1 hour, storing those in `stored`. Returns false if any stage failed.
inline bool Write_Run(Result_Family& family, int variant, int steps, const std::vector<int>& stored,
                      Run_Index& index, bool finish = true) {
  std::string message;
  if (!Open_Result_Files(family, variant, 1, 109, message)) return false;
  index = Run_Index{};
  for (int i = 1; i <= steps; ++i)
    index.Step_Time.add(i);
  Field_Statistics stats;
  Size_Field_Statistics(stats, steps);
  {
    Step_Data initial(family.Layout, 0);
    if (!Record_Storage(family, variant, initial.values, 0.0, index, message)) return false;
    Sample_Field_Extremes(index, stats, 1, 1, initial.values, family.Layout.Mechanical);
  }
  int flagged = 1;
  for (int step = 1; step <= steps; ++step) {
    Step_Data data(family.Layout, step);
    const bool store = std::find(stored.begin(), stored.end(), step) != stored.end();
    if (store) ++flagged;
    Sample_Field_Extremes(index, stats, step + 1, flagged, data.values, family.Layout.Mechanical);
    if (store && !Record_Storage(family, variant, data.values, step, index, message)) return false;
  }
  if (!finish) return true;
  Clamp_Plot_Storages(index);
  Table<Circuit_History> circuits;
  circuits.resize(1);
  Table<float> water = {11, 12, 13, 14};
  Append_History_Record(circuits[1], 0.5, 1.5, water, 4180);
  Append_History_Record(circuits[1], 1.0, 2.0, water, 4180);
  return Write_Cooling_Data(family, variant, circuits, message) &&
         Write_Run_Index(family, variant, index, message) && Close_Result_Files(family, variant, message);
}

inline Result_Family Family_In(const Temp_Dir& dir, const Result_Layout& layout, int runs = 1) {
  Result_Family family;
  family.Layout = layout;
  std::vector<std::string> names{"B.RES", "B.RES", "B2.RES", "B3.RES"};
  names.resize(static_cast<std::size_t>(runs) + 1);
  std::string message;
  Set_Output_Names(family, names, dir.path().string(), message);
  return family;
}

// The viewers' mesh: two squares of 100 mm side over 0..200 x 0..100, element 1 on nodes
// 1 (0,0), 2 (100,0), 3 (100,100), 4 (0,100) and element 2 on nodes 2, 5 (200,0), 6 (200,100), 3.
inline void Two_Squares(Project& p) {
  for (auto [x, y] : {std::pair{0, 0}, {100, 0}, {100, 100}, {0, 100}, {200, 0}, {200, 100}})
    p.Mesh_Node.add({double(x), double(y)});
  Mesh_Element e;
  e.Corner = {{1, 2, 3, 4}};
  p.Mesh_Element.add(e);
  e.Corner = {{2, 5, 6, 3}};
  p.Mesh_Element.add(e);
}

// What a plain reader finds at a 0-based offset of the file's bytes: A<float>, A<std::int32_t>, ...
template <class T>
T At(const std::string& bytes, std::size_t offset) {
  T v{};
  std::memcpy(&v, bytes.data() + offset, sizeof v);
  return v;
}

// A written family opened as the viewer opens it; false with the message on failure.
struct Opened {
  Run_Index index;
  Plot_Buffers buffers;
  std::string message;
};
inline bool Open_For_Viewing(Result_Family& family, int variant, Opened& o, bool imperial = false) {
  Dimension_Plot_Buffers(family.Layout, o.buffers);
  return Open_All_Result_Sets(family, 109, o.message) &&
         Read_Run_Index(family, variant, 109, imperial, o.index, o.message);
}

}  // namespace pvx::test
