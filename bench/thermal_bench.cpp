// A whole thermal step of a square concrete section with hydration: assembly, factorisation, the
// passes on the right-hand side and one storage. Compare the runs of 1 and 9 steps: their
// difference over 8 is the time per step, without the numbering and the opening of the files.
#include <benchmark/benchmark.h>

#include <filesystem>

#include "analysis/driver.h"

namespace {

pvx::Project Square_Section(int n) {
  pvx::Project p;
  pvx::New_Project(p);
  pvx::Material m;
  m.Name = "C30/37";
  m.Has_Thermal = true;
  m.Capacity_Wet = 2400;
  m.Conductivity_Wet = 2.3f;
  m.Heat_Model = "CORE";
  m.Heat_H = 132000;
  m.Heat_a = 0.06f;
  m.Heat_d = 4;
  m.Arrhenius_Active = true;
  m.Q_Over_R = 4030;
  m.T_Reference = 293;
  p.Material.add(m);
  pvx::Macro macro;
  macro.Material = m.Name;
  macro.Corner = {{1, 2, 3, 4}};
  p.Macro.add(macro);
  const double size = 4000.0 / n;
  for (int j = 0; j <= n; ++j)
    for (int i = 0; i <= n; ++i)
      p.Mesh_Node.add(pvx::Mesh_Node{i * size, j * size});
  auto node = [n](int i, int j) { return static_cast<std::int16_t>(j * (n + 1) + i + 1); };
  for (int j = 0; j < n; ++j)
    for (int i = 0; i < n; ++i) {
      pvx::Mesh_Element e;
      static_cast<pvx::Macro_Values&>(e) = macro;
      e.Material = m.Name;
      e.Macro_Number = 1;
      e.Corner = {{node(i, j), node(i + 1, j), node(i + 1, j + 1), node(i, j + 1)}};
      p.Mesh_Element.add(e);
    }
  for (int i = 0; i < n; ++i) {  // air on the top face
    pvx::Border b;
    b.Node_A = node(i + 1, n);
    b.Node_B = node(i, n);
    b.Thermal_Active = pvx::True_Flag;
    b.Thermal_Periods.add(pvx::Thermal_Period{});
    b.Thermal_Periods[1].Until = 1000;
    p.Mesh_Border.add(b);
  }
  p.Replace_Material = pvx::False_Flag;
  p.Result_File_Name = (std::filesystem::temp_directory_path() / "pvx-bench-thermal.RES").string();
  pvx::Set_Result_Names(p);
  return p;
}

// The section computed for `steps` hours in steps of an hour, once per benchmark iteration; the
// run state of the last iteration is left in `last`. The family goes afterwards.
void Run_Hours(benchmark::State& state, pvx::Project& p, int steps, pvx::Run_State& last) {
  p.Computation_Time = steps;
  p.Period.clear();
  p.Period.add(pvx::Period{0, static_cast<double>(steps), 1, 1});
  pvx::Set_Result_Names(p);
  pvx::Analysis_Host host;
  for (auto _ : state) {
    last = pvx::Run_State{};
    std::string message;
    if (pvx::Run_Analysis(p, last, host, "", message) != pvx::Run_Outcome::Completed) {
      state.SkipWithError(message.c_str());
      break;
    }
  }
  for (const char* ext : {".RES", ".REA", ".REB", ".REC", ".RED", ".REE", ".REF", ".REH", ".REP", ".COO"}) {
    std::error_code ec;
    std::filesystem::remove(std::filesystem::temp_directory_path() / (std::string("pvx-bench-thermal") + ext),
                            ec);
  }
}

void BM_Thermal_Run(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  pvx::Project p = Square_Section(n);
  pvx::Run_State run;
  Run_Hours(state, p, static_cast<int>(state.range(1)), run);
  state.counters["elements"] = n * n;
  state.counters["passes_last_step"] = run.Thermal_Passes;
}
BENCHMARK(BM_Thermal_Run)
    ->Args({32, 1})
    ->Args({32, 9})
    ->Args({158, 1})
    ->Args({158, 9})
    ->Unit(benchmark::kMillisecond)
    ->MinTime(1.0);

// The same section of 158 x 158 elements with four circuits of 20 pipe sections each, against none:
// the difference of the runs of 1 and 9 steps over 8 is the time per step. A section's wall is the
// ring of the eight grid nodes round a node: the exchange needs only the ring's topology, and the
// run costs the same as round a hole.
void BM_Cooled_Run(benchmark::State& state) {
  const int n = 158;
  const int circuits = static_cast<int>(state.range(0));
  pvx::Project p = Square_Section(n);
  p.Temperature_Functions[1].Constant_Value = 12;
  p.Flow_Functions[1].Constant_Value = 1;
  auto node = [n](int i, int j) { return static_cast<std::int16_t>(j * (n + 1) + i + 1); };
  for (int c = 0; c < circuits; ++c) {
    pvx::Circuit circuit;
    pvx::Resize_Pipes(circuit, 20);
    circuit.Active_Until = 1000;
    for (int k = 1; k <= 21; ++k)
      circuit.Distance[k] = 5;
    const int j = 20 + 38 * c;
    for (int s = 1; s <= 20; ++s) {
      const int i = 8 * s - 4;
      const int ring[8][2] = {{-1, -1}, {0, -1}, {1, -1}, {1, 0}, {1, 1}, {0, 1}, {-1, 1}, {-1, 0}};
      for (int r = 0; r < 8; ++r)
        circuit.Pipe_Connection[s][r + 1] = node(i + ring[r][0], j + ring[r][1]);
      circuit.Pipe_Connection[s][9] = circuit.Pipe_Connection[s][1];
    }
    p.Circuit.add(circuit);
  }
  pvx::Run_State run;
  Run_Hours(state, p, static_cast<int>(state.range(1)), run);
  state.counters["elements"] = n * n;
  state.counters["sections"] = 20 * circuits;
  state.counters["passes_last_step"] = run.Thermal_Passes;
}
BENCHMARK(BM_Cooled_Run)
    ->Args({0, 1})
    ->Args({0, 9})
    ->Args({4, 1})
    ->Args({4, 9})
    ->Unit(benchmark::kMillisecond)
    ->MinTime(1.0);

// The same section with a hygral concrete (Bazant's diffusion, the formula isotherm following
// temperature and hydration) drying from its top face: the moisture iteration in every step. The
// difference of the runs of 1 and 9 steps over 8 is the time per step.
void BM_Drying_Run(benchmark::State& state) {
  const int n = 158;
  pvx::Project p = Square_Section(n);
  pvx::Material& m = p.Material[1];
  m.Has_Hygral = true;
  m.W_C = 0.5;
  m.Cement = 330;
  m.Air = 1.5;
  m.H_Limit = 1.02;
  m.Temperature_Dependent = true;
  m.Hydration_Dependent = true;
  m.Diffusion_Bazant = true;
  m.Diffusion_1 = 1.2e-5;
  m.Diffusion_2 = 0.8;
  m.Diffusion_3 = 0.05;
  m.Consumption_Factor = 0.16;
  p.Potential_Functions[1].Constant_Value = 0.5;
  for (pvx::Border& b : p.Mesh_Border) {
    b.Hygral_Active = pvx::True_Flag;
    b.Hygral_Periods.add(pvx::Hygral_Period{0, 1000, 1, 1e-3});
  }
  pvx::Run_State run;
  Run_Hours(state, p, static_cast<int>(state.range(0)), run);
  state.counters["elements"] = n * n;
  state.counters["moisture_solves_last_step"] = run.Moisture_Solves;
  state.counters["factorisations_last_step"] = run.Moisture_Factorisations;
}
BENCHMARK(BM_Drying_Run)->Arg(1)->Arg(9)->Unit(benchmark::kMillisecond)->MinTime(1.0);

}  // namespace
