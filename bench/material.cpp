// The property evaluators as the analysis calls them, once per integration point and step, and
// the reading of the example database.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "material/database.h"
#include "material/properties.h"

namespace {

pvx::Table<pvx::Material> Example() {
  pvx::Table<pvx::Material> materials;
  pvx::Table<std::int32_t> colours;
  std::string message;
  // The build compiles this file by its full path: the examples lie beside its folder.
  const auto path = std::filesystem::path(__FILE__).parent_path().parent_path() / "examples/PVX-Concrete.txt";
  if (!pvx::Read_Material_Database(path.string(), materials, colours, message)) std::abort();
  return materials;
}

void BM_Table_Value(benchmark::State& state) {
  const pvx::Material m = Example()[1];
  double maturity = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(pvx::Table_Value(m.E, 20, maturity));
    maturity = maturity > 700 ? 0 : maturity + 0.37;
  }
}
BENCHMARK(BM_Table_Value);

void BM_Isotherm_Water(benchmark::State& state) {
  double h = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(pvx::Isotherm_Water(0.5, 330, 0.6, 25, 15, 1.02, h));
    h = h > 1.02 ? 0 : h + 0.0013;
  }
}
BENCHMARK(BM_Isotherm_Water);

void BM_Isotherm_Table_Water(benchmark::State& state) {
  const pvx::Material m = Example()[2];
  double h = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(pvx::Isotherm_Table_Water(0.6, 30, h, m.Isotherm_Table_Data));
    h = h > 1.02 ? 0 : h + 0.0013;
  }
}
BENCHMARK(BM_Isotherm_Table_Water);

void BM_Diffusion_Coefficient(benchmark::State& state) {
  const pvx::Material m = Example()[1];
  double h = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(pvx::Diffusion_Coefficient(m, h));
    h = h > 1.02 ? 0 : h + 0.0013;
  }
}
BENCHMARK(BM_Diffusion_Coefficient);

void BM_Read_Example_Database(benchmark::State& state) {
  for (auto _ : state)
    benchmark::DoNotOptimize(Example());
}
BENCHMARK(BM_Read_Example_Database);

}  // namespace
