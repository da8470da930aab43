// Cost of exporting a whole run for ParaView: a mechanical family of 25,000 elements (a 250 x 100
// grid) and 50 storages, every stored step read back and written as a grid with the .pvd collection,
// in raw binary and in ASCII; the CSV tables of the same run beside them.
#include <benchmark/benchmark.h>

#include <cmath>
#include <filesystem>
#include <vector>

#include "results/export.h"
#include "results/result_files.h"

namespace {

using namespace pvx;
namespace fs = std::filesystem;

constexpr int Columns = 250, Rows = 100, Storages = 50;

// The family, written once per process into a folder of its own; removed at exit.
struct Run {
  fs::path folder = fs::temp_directory_path() / "pvx-bench-export";
  Export_Mesh mesh;
  Result_Family family;
  Run_Index index;
  std::string message;

  Run() {
    fs::remove_all(folder);
    fs::create_directories(folder);
    for (int j = 0; j <= Rows; ++j)
      for (int i = 0; i <= Columns; ++i) {
        mesh.X.push_back(100.0 * i);
        mesh.Y.push_back(50.0 * j);
      }
    for (int j = 0; j < Rows; ++j)
      for (int i = 0; i < Columns; ++i) {
        const std::int64_t n = j * (Columns + 1) + i;
        mesh.Cells.push_back({n, n + 1, n + Columns + 2, n + Columns + 1});
      }
    const auto nodes = static_cast<std::int64_t>(mesh.X.size()),
               elements = static_cast<std::int64_t>(mesh.Cells.size());
    family.Layout.Nodes = nodes;
    family.Layout.Elements = elements;
    family.Layout.Reactions = 2 * (Columns + 1);
    family.Layout.Mechanical = true;
    Set_Output_Names(family, {"BENCH.RES", "BENCH.RES"}, folder.string(), message);
    Open_Result_Files(family, 1, 1, Run_Index_Version, message);
    std::vector<double> node(static_cast<std::size_t>(nodes)), point(static_cast<std::size_t>(4 * elements)),
        disp(static_cast<std::size_t>(2 * nodes)), stress(static_cast<std::size_t>(16 * elements)),
        reaction(static_cast<std::size_t>(family.Layout.Reactions));
    for (int k = 1; k <= Storages; ++k) {
      // Fields that change from place to place and from step to step, so that no two records agree.
      auto fill = [k](std::vector<double>& v, double scale) {
        for (std::size_t i = 0; i < v.size(); ++i)
          v[i] = scale * std::sin(0.001 * static_cast<double>(i) + 0.1 * k);
      };
      fill(node, 30);
      fill(point, 5);
      fill(disp, 0.2);
      fill(stress, 3);
      fill(reaction, 10);
      Field_Values f;
      f.Temperature = f.Potential = node;
      f.Maturity = f.Hydration = f.C_Maturity = f.Moisture_Content = f.Tensile_Strength =
          f.Compressive_Strength = f.Crack_Opening = point;
      f.Displacement = disp;
      f.Corner_Stress = stress;
      f.Reaction = reaction;
      Record_Storage(family, 1, f, 3.0 * (k - 1), index, message);
    }
    Close_Result_Files(family, 1, message);
    Open_All_Result_Sets(family, Run_Index_Version, message);
    Read_Run_Index(family, 1, Run_Index_Version, false, index, message);
  }
  ~Run() {
    Close_Result_Files(family, 1, message);
    std::error_code ignored;
    fs::remove_all(folder, ignored);
  }
};

Run& The_Run() {
  static Run run;
  return run;
}

void Export(benchmark::State& state, Export_Target target) {
  Run& run = The_Run();
  if (Storage_Count(run.index) != Storages) {
    state.SkipWithError(("the family was not written: " + run.message).c_str());
    return;
  }
  std::uintmax_t bytes = 0;
  for (auto _ : state) {
    std::vector<std::string> written;
    if (!Export_Run(run.family, 1, run.index, run.mesh, "BENCH", target, written, run.message))
      state.SkipWithError(run.message.c_str());
    state.PauseTiming();
    bytes = 0;
    for (const auto& f : fs::recursive_directory_iterator(run.folder / "out"))
      if (f.is_regular_file()) bytes += f.file_size();
    fs::remove_all(run.folder / "out");
    state.ResumeTiming();
  }
  state.counters["MB written"] = static_cast<double>(bytes) / 1e6;
  state.counters["elements"] = static_cast<double>(run.mesh.Cells.size());
  state.counters["storages"] = Storages;
}

void BM_Export_Vtk_Binary(benchmark::State& state) {
  Export(state, {(The_Run().folder / "out").string(), "", Vtk_Encoding::Binary});
}
BENCHMARK(BM_Export_Vtk_Binary)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

void BM_Export_Vtk_Ascii(benchmark::State& state) {
  Export(state, {(The_Run().folder / "out").string(), "", Vtk_Encoding::Ascii});
}
BENCHMARK(BM_Export_Vtk_Ascii)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

void BM_Export_Csv(benchmark::State& state) {
  Export(state, {"", (The_Run().folder / "out").string(), Vtk_Encoding::Binary});
}
BENCHMARK(BM_Export_Csv)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

}  // namespace
