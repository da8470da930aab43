// Cost of one storage of a mechanical run (with the index rewritten behind it), of sampling the
// extremes of a step, and of reading one record back, on a mesh of 10000 elements.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <random>
#include <vector>

#include "results/extremes.h"
#include "results/result_files.h"

namespace {

using namespace pvx;

struct Fields {
  Result_Layout layout;
  std::vector<double> node, point, disp, stress, reaction, interface, bar;
  std::vector<std::int16_t> cracked;
  Field_Values f;

  explicit Fields(std::int64_t elements) {
    layout.Elements = elements;
    layout.Nodes = elements + 2 * 100 + 1;
    layout.Doubled_Nodes = 50;
    layout.Reactions = 200;
    layout.Interfaces = 50;
    layout.Bars = 400;
    layout.Mechanical = true;
    std::mt19937 rng(7);
    std::uniform_real_distribution<double> u(-10, 10);
    auto fill = [&](std::vector<double>& v, std::int64_t n) {
      v.resize(static_cast<std::size_t>(n));
      for (double& x : v)
        x = u(rng);
    };
    fill(node, layout.Nodes);
    fill(point, 4 * elements);
    fill(disp, 2 * (layout.Nodes + layout.Doubled_Nodes));
    fill(stress, 16 * elements);
    fill(reaction, layout.Reactions);
    fill(interface, 4 * layout.Interfaces);
    fill(bar, 5 * layout.Bars);
    cracked.assign(point.size(), -1);
    f.Temperature = f.Potential = node;
    f.Maturity = f.Hydration = f.C_Maturity = f.Moisture_Content = f.Tensile_Strength =
        f.Compressive_Strength = f.Crack_Opening = point;
    f.Cracked = cracked;
    f.Displacement = disp;
    f.Corner_Stress = stress;
    f.Reaction = reaction;
    f.Interface_Stress = interface;
    f.Bar_Values = bar;
  }
};

std::string Folder() {
  const auto dir = std::filesystem::temp_directory_path() / "pvx-bench-results";
  std::filesystem::create_directories(dir);
  return dir.string();
}

void BM_Record_Storage(benchmark::State& state) {
  Fields data(state.range(0));
  Result_Family family;
  family.Layout = data.layout;
  std::string message;
  Set_Output_Names(family, {"BENCH.RES", "BENCH.RES"}, Folder(), message);
  Open_Result_Files(family, 1, 1, 109, message);
  Run_Index index;
  for (int i = 1; i <= 2000; ++i)
    index.Step_Time.add(i);
  for (auto _ : state) {
    if (Storage_Count(index) >= 200) {  // keep the files at a bounded size
      state.PauseTiming();
      Open_Result_Files(family, 1, 1, 109, message);
      index.Storage_Time.clear();
      state.ResumeTiming();
    }
    if (!Record_Storage(family, 1, data.f, 1.0, index, message)) state.SkipWithError(message.c_str());
  }
  Close_Result_Files(family, 1, message);
  state.SetBytesProcessed(state.iterations() * 4 *
                          static_cast<std::int64_t>(data.node.size() * 2 + data.point.size() * 8 +
                                                    data.disp.size() + data.stress.size() +
                                                    data.reaction.size() + data.interface.size() +
                                                    data.bar.size()));
}
BENCHMARK(BM_Record_Storage)->Arg(10000)->Unit(benchmark::kMillisecond);

void BM_Sample_Field_Extremes(benchmark::State& state) {
  Fields data(state.range(0));
  Run_Index index;
  Field_Statistics stats;
  Size_Field_Statistics(stats, 10);
  int row = 1;
  for (auto _ : state) {
    Sample_Field_Extremes(index, stats, row, row, data.f, true);
    row = row % 10 + 1;
  }
}
BENCHMARK(BM_Sample_Field_Extremes)->Arg(10000)->Unit(benchmark::kMicrosecond);

void BM_Read_Result_Variable(benchmark::State& state) {
  Fields data(state.range(0));
  Result_Family family;
  family.Layout = data.layout;
  std::string message;
  Set_Output_Names(family, {"READ.RES", "READ.RES"}, Folder(), message);
  Open_Result_Files(family, 1, 1, 109, message);
  Run_Index index;
  for (int k = 0; k < 20; ++k)
    Record_Storage(family, 1, data.f, k, index, message);
  Close_Result_Files(family, 1, message);
  Open_All_Result_Sets(family, 109, message);
  Read_Run_Index(family, 1, 109, false, index, message);
  Plot_Buffers buffers;
  Dimension_Plot_Buffers(family.Layout, buffers);
  int stored = 1;
  for (auto _ : state) {
    if (!Read_Result_Variable(family, 1, Slot_REJ, stored, 13, false, buffers, message))
      state.SkipWithError(message.c_str());
    stored = stored % 20 + 1;
  }
}
BENCHMARK(BM_Read_Result_Variable)->Arg(10000)->Unit(benchmark::kMicrosecond);

}  // namespace
