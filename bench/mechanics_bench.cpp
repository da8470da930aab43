// The mechanical analysis of a wall of 250 x 100 square elements (25,000 elements, 50,702
// displacement unknowns, plane stress), held in both directions along one end and warmed evenly
// by 20 degrees:
//
//   BM_Mechanical_Factorisation: one factorisation of its stiffness matrix (numbered as the run
//     numbers it, supports included) with each kernel and its rate in GFLOP/s from the exact
//     operation count of the profile, beside Eigen's sparse LDL^T (SimplicialLDLT, AMD ordering) of
//     the same matrix.
//   BM_Mechanical_Step: one whole elastic step as the run makes it, part by part: free strains,
//     assembly, factorisation, the iterations, the end of the step, the corner stresses, the fields
//     of the step with their extremes, and one storage through the result files.
//   BM_Cracking_Step: the wall of a creeping concrete with a crack law, held at both ends and cooled
//     a degree an hour until it cracks: the step in which a hundred elements crack, its solves, and
//     one stress update
//     of all 100,000 points.
//
// Times are the CPU time of this thread, so that other work on a shared machine does not count
// against either side.
#include <benchmark/benchmark.h>

#include <Eigen/SparseCholesky>
#include <Eigen/SparseCore>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "analysis/driver.h"
#include "analysis/mechanics/assembly.h"
#include "analysis/mechanics/stress_loop.h"
#include "analysis/mechanics/supports_loads.h"
#include "material/properties.h"
#include "profile_flops.h"
#include "results/result_files.h"

namespace pvx {
namespace {

constexpr int Nx = 250, Ny = 100;                    // elements along and across the wall
constexpr double Size = 100;                         // mm, side of an element
constexpr double E = 30000, Nu = 0.2, Alpha = 1e-5;  // MPa, -, 1/K
constexpr double T_Start = 20, T_End = 40, Dt = 1;   // degrees, hours
constexpr double Length = Nx * Size;                 // mm

double Now() {
  timespec t{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
  return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
}
double Wall_Now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

Property_Table Constant(double v) {
  Property_Table t;
  t.Is_Constant = true;
  t.Abscissa.add(0);
  t.Value.add(static_cast<float>(v));
  return t;
}

std::string Result_Path() {
  return (std::filesystem::temp_directory_path() / "pvx-bench-mechanics.RES").string();
}

// The wall: node (i, j) numbered i (Ny + 1) + j + 1, corners anticlockwise, 500 mm thick, of a
// linear elastic concrete that carries its dead weight from the start; every node of the end x = 0
// held along x and y. `material` may change the concrete, `both_ends` holds the end x = Length
// along x too.
Project Wall(const std::function<void(Material&)>& material = {}, bool both_ends = false) {
  Project p;
  New_Project(p);
  Material m;
  m.Name = "C30/37";
  m.Has_Thermal = m.Has_Mechanical = true;
  m.Capacity_Wet = 2400;
  m.Conductivity_Wet = 2.3f;
  m.Heat_Model = "NO H";
  m.Model_Name = "Linear Elastic";
  m.Dead_Weight = 2400;
  m.E = Constant(E);
  m.Nu = Constant(Nu);
  m.Ft = Constant(2.9);
  m.Fc = Constant(38);
  m.Thermal_Dilatation = Constant(Alpha);
  if (material) material(m);
  p.Material.add(m);
  p.Replace_Material = False_Flag;
  p.Result_File_Name = Result_Path();
  Set_Result_Names(p);
  p.Out_Of_Plane.Plane_Stress = True_Flag;
  p.Out_Of_Plane.Plane_Strain = p.Out_Of_Plane.Axisymmetric = False_Flag;
  for (int i = 0; i <= Nx; ++i)
    for (int j = 0; j <= Ny; ++j)
      p.Mesh_Node.add(Mesh_Node{Size * i, Size * j});
  auto node = [](int i, int j) { return static_cast<std::int16_t>(i * (Ny + 1) + j + 1); };
  for (int i = 0; i < Nx; ++i)
    for (int j = 0; j < Ny; ++j) {
      Mesh_Element e;
      e.Material = m.Name;
      e.Thickness = 500;
      e.Dead_Weight_At = 0;
      e.Corner = {{node(i, j), node(i + 1, j), node(i + 1, j + 1), node(i, j + 1)}};
      p.Mesh_Element.add(e);
    }
  for (int i : {0, Nx}) {
    if (i == Nx && !both_ends) break;
    for (int j = 0; j <= Ny; ++j)
      for (double angle : {0.0, -90.0}) {
        if (i == Nx && angle != 0) continue;
        Support s;
        s.Node_A = node(i, j);
        s.Angle = angle;
        p.Mesh_Support.add(s);
      }
  }
  return p;
}

// The same count for a sparse factor: a column with c entries below its diagonal updates the
// c (c + 1) / 2 entries of the columns it reaches (one multiply-add each) and is divided by its
// pivot.
double Sparse_Flops(const Eigen::SparseMatrix<double>& L) {
  double count = 0;
  for (Eigen::Index j = 0; j < L.outerSize(); ++j) {
    const double c = L.outerIndexPtr()[j + 1] - L.outerIndexPtr()[j];
    count += c * (c + 1) / 2 + c;
  }
  return 2 * count;
}

struct Case {
  Project p;
  Run_State run;
  double numbering_seconds = 0;
  Table<double> assembled;  // the stiffness of the step with its supports, not factorised
  Eigen::SparseMatrix<double> sparse;
  double profile_flops = 0;
};

Case& Get_Case() {
  static Case c = [] {
    Case c;
    c.p = Wall();
    Run_State& run = c.run;
    run.Mechanical_Included = true;
    Analysis_Host host;
    Allocate_Solution_Arrays(c.p, run, host);
    // The numbering again, alone, for its time.
    Mechanical_State numbered;
    const double start = Now();
    Set_Mechanical_Equations(c.p, numbered);
    c.numbering_seconds = Now() - start;
    Set_Initial_State(c.p, run, 1);

    // The matrix that the step factorises.
    Mechanical_State& m = run.Mechanics;
    run.Mid_Step_Time = Dt / 2;
    Assemble_Mechanical_Stiffness(c.p, run, Dt);
    Set_External_Loads(c.p, run, Dt);
    Assemble_Support_Stiffness(c.p, run, Dt);
    c.assembled = m.Matrix;
    c.profile_flops = bench::Profile_Flops(m.Column_Pointer, m.Equations);

    // Eigen gets the entries of every pair of unknowns that share an element (the supports act on
    // one node each, so they add none), both triangles, with the values of the profile.
    std::vector<std::pair<int, int>> pairs;
    pairs.reserve(static_cast<std::size_t>(64 * c.p.Mesh_Element.count()));
    for (int e = 1; e <= c.p.Mesh_Element.count(); ++e)
      for (int r = 1; r <= 8; ++r)
        for (int s = 1; s <= 8; ++s)
          pairs.emplace_back(Place(m, m.Element_Dof[e][r]), Place(m, m.Element_Dof[e][s]));
    std::sort(pairs.begin(), pairs.end());
    pairs.erase(std::unique(pairs.begin(), pairs.end()), pairs.end());
    std::vector<Eigen::Triplet<double>> triplets;
    triplets.reserve(pairs.size());
    for (const auto& [r, s] : pairs)
      triplets.emplace_back(r - 1, s - 1, c.assembled[Profile_Entry(m, r, s)]);
    c.sparse.resize(m.Equations, m.Equations);
    c.sparse.setFromTriplets(triplets.begin(), triplets.end());
    return c;
  }();
  return c;
}

// Ours, then Eigen's numeric factorisation on the pattern analysed once (its AMD ordering and
// symbolic step are reported apart, as our numbering is).
void BM_Mechanical_Factorisation(benchmark::State& state) {
  Case& c = Get_Case();
  const auto kernel = static_cast<Solver_Kernel>(state.range(0));
  if (!Solver_Kernel_Available(kernel)) {
    state.SkipWithError("kernel not available on this processor");
    return;
  }
  Mechanical_State& m = c.run.Mechanics;
  const int n = m.Equations;
  Eigen::SimplicialLDLT<Eigen::SparseMatrix<double>> eigen;
  double start = Now();
  eigen.analyzePattern(c.sparse);
  const double analyse = Now() - start;

  double ours = 0, theirs = 0;
  Table<double> a;
  for (auto _ : state) {
    a = c.assembled;
    start = Now();
    bool ok = false;
    std::string message;
    Factorise_Profile(a, n, m.Column_Pointer, ok, message, {}, kernel);
    const double t_ours = Now() - start;
    start = Now();
    eigen.factorize(c.sparse);
    const double t_theirs = Now() - start;
    ours += t_ours;
    theirs += t_theirs;
    state.SetIterationTime(t_ours);
    if (!ok || eigen.info() != Eigen::Success) {
      state.SkipWithError("factorisation failed");
      return;
    }
  }
  // Both must solve the same system, or the comparison means nothing: the dead weight as load.
  Table<double> b = m.External;
  Solve_Profile(a, b, n, m.Column_Pointer, kernel);
  Eigen::VectorXd load(n);
  for (int i = 0; i < n; ++i)
    load[i] = m.External[i + 1];
  const Eigen::VectorXd x = eigen.solve(load);
  double difference = 0, largest = 0;
  for (int i = 0; i < n; ++i) {
    difference = std::max(difference, std::abs(x[i] - b[i + 1]));
    largest = std::max(largest, std::abs(b[i + 1]));
  }

  const double iterations = static_cast<double>(state.iterations());
  const auto& L = eigen.matrixL().nestedExpression();
  const double eigen_flops = Sparse_Flops(L);
  state.counters["equations"] = n;
  state.counters["profile"] = m.Profile_Size;
  state.counters["max_height"] = m.Max_Column_Height;
  state.counters["eigen_factor"] = static_cast<double>(L.nonZeros() + n);  // diagonal included
  state.counters["GFLOP"] = c.profile_flops * 1e-9;
  state.counters["eigen_GFLOP"] = eigen_flops * 1e-9;
  state.counters["GFLOP/s"] =
      benchmark::Counter(c.profile_flops * 1e-9, benchmark::Counter::kIsIterationInvariantRate);
  state.counters["eigen_GFLOP/s"] = eigen_flops * 1e-9 * iterations / theirs;
  state.counters["ours_ms"] = 1e3 * ours / iterations;
  state.counters["eigen_ms"] = 1e3 * theirs / iterations;
  state.counters["ours/eigen"] = ours / theirs;
  state.counters["eigen_analyse_ms"] = 1e3 * analyse;
  state.counters["numbering_ms"] = 1e3 * c.numbering_seconds;
  state.counters["rel_difference"] = largest > 0 ? difference / largest : difference;
  state.SetLabel(kernel == Solver_Kernel::Avx2 ? "avx2" : "portable");
}

// Marks where the step's factorisation begins (its first column) and ends (the first iteration's
// events), from the events the step lets through; nothing else is done per column.
class Step_Clock : public Analysis_Host {
 public:
  int columns = 0;
  int calls = 0;
  double factorisation_start = 0, factorisation_end = 0;
  void Pump_Events() override {
    ++calls;
    if (calls == 1)
      factorisation_start = Now();
    else if (calls == columns + 1)
      factorisation_end = Now();
  }
};

void Remove_Result_Files() {
  const std::filesystem::path res = Result_Path();
  for (const auto& entry : std::filesystem::directory_iterator(res.parent_path())) {
    const std::string name = entry.path().filename().string();
    if (name.rfind(res.stem().string() + ".", 0) == 0) {
      std::error_code ec;
      std::filesystem::remove(entry.path(), ec);
    }
  }
}

void BM_Mechanical_Step(benchmark::State& state) {
  Case& c = Get_Case();
  const Project& p = c.p;
  Run_State& run = c.run;
  Mechanical_State& m = run.Mechanics;
  Result_Family family;
  std::string message;
  if (!Prepare_Result_Family(family, p, true, "", message) ||
      !Open_Result_Files(family, 1, 1, Run_Index_Version, message)) {
    state.SkipWithError(message.c_str());
    return;
  }
  Field_Statistics statistics;
  Size_Field_Statistics(statistics, 1);

  // The fields are gathered as the driver gathers them, the corner stresses with them.
  enum { Free, Assembly, Factorisation, Iterations, End, Fields, Extremes, Storage, Parts };
  const char* names[Parts] = {"free_strains_ms", "assembly_ms",    "factorisation_ms",
                              "iterations_ms",   "end_of_step_ms", "nodal_stresses_and_fields_ms",
                              "extremes_ms",     "storage_ms"};
  double spent[Parts] = {};
  double wall = 0;
  int solves = 0;
  for (auto _ : state) {
    // The state of the start of the run, the nodes warmed from 20 to 40 degrees over the step.
    Set_Initial_State(p, run, 1);
    std::fill(run.Temperature_Old.begin(), run.Temperature_Old.end(), T_Start);
    std::fill(run.Temperature_New.begin(), run.Temperature_New.end(), T_End);
    run.Index = Run_Index{};
    run.Index.Step_Time.add(Dt);
    run.Mid_Step_Time = Dt / 2;
    Step_Clock clock;
    clock.columns = m.Equations;

    double part_time[Parts] = {};
    const double wall_start = Wall_Now();
    double t = Now();
    auto lap = [&](int part) {
      const double now = Now();
      part_time[part] = now - t;
      t = now;
    };
    Set_Free_Strains(p, run);
    lap(Free);
    const Mechanical_Step outcome = Solve_Mechanical_Step(p, run, clock, Dt, Dt, message);
    const double step_end = Now();
    part_time[Assembly] = clock.factorisation_start - t;
    part_time[Factorisation] = clock.factorisation_end - clock.factorisation_start;
    part_time[Iterations] = step_end - clock.factorisation_end;
    t = step_end;
    Update_End_Of_Step(run);
    Update_Mechanical_End_Of_Step(p, run);
    lap(End);
    const Field_Values fields = Current_Fields(p, run);
    lap(Fields);
    Sample_Field_Extremes(run.Index, statistics, 2, 2, fields, true);
    lap(Extremes);
    const bool stored = Record_Storage(family, 1, fields, Dt, run.Index, message);
    lap(Storage);
    wall += Wall_Now() - wall_start;

    double step = 0;
    for (int part = 0; part < Parts; ++part) {
      spent[part] += part_time[part];
      step += part_time[part];
    }
    state.SetIterationTime(step);
    solves = m.Iterations;
    if (outcome != Mechanical_Step::Converged || !stored || clock.calls <= clock.columns) {
      state.SkipWithError(outcome != Mechanical_Step::Converged ? "the step did not converge"
                          : !stored                             ? message.c_str()
                                                                : "the factorisation was not seen");
      break;
    }
  }
  Close_Result_Files(family, 1, message);
  Remove_Result_Files();

  const double iterations = static_cast<double>(state.iterations());
  double step = 0;
  for (int part = 0; part < Parts; ++part) {
    state.counters[names[part]] = 1e3 * spent[part] / iterations;
    step += spent[part];
  }
  state.counters["step_ms"] = 1e3 * step / iterations;
  state.counters["wall_ms"] = 1e3 * wall / iterations;
  state.counters["solves"] = solves;
  // The free end at mid-height, where the bending under the wall's weight moves nothing along x,
  // moves by the free expansion alpha dT L, a little more for the held end that keeps the wall from
  // growing in height there (its Poisson effect lengthens it).
  const int free_end = Nx * (Ny + 1) + Ny / 2 + 1;
  state.counters["free_end/free"] =
      m.Total[Place(m, 2 * free_end - 1)] / (Alpha * (T_End - T_Start) * Length);
}

// The wall of a creeping, cracking concrete without its weight: a 6-unit Maxwell chain and bilinear
// softening at every point, strengths that vary by 10 % from element to element, both ends held.
void BM_Cracking_Step(benchmark::State& state) {
  static const Project p = Wall(
      [](Material& m) {
        m.Model_Name = "Maxwell Chain";
        m.Dead_Weight = 0;
        m.Chain_Coefficient.add({});
        const double tau[6] = {0.3, 3, 30, 300, 3000, 30000}, c[6] = {0.1, 0.15, 0.15, 0.2, 0.2, 0.2};
        for (int u = 0; u < 6; ++u) {
          m.Retardation_Time.add(tau[u]);
          m.Chain_Coefficient[1].add(c[u]);
        }
        m.Temperature_Influence = true;
        m.QR = 2700;
        m.Statistics_Active = true;
        m.Statistics_Factor = 0.1;
        Softening& s = m.Softening_Law;
        s.Has_Softening = true;
        s.s1 = 0.3;
        s.w1 = 0.03;
        s.w2 = 0.2;
        s.alfa = 0.5;
      },
      true);
  Run_State run;
  run.Mechanical_Included = true;
  run.Mechanical_Iteration_Limit = 1000;
  Analysis_Host quiet;
  Allocate_Solution_Arrays(p, run, quiet);
  Mechanical_State& m = run.Mechanics;
  std::string message;

  auto cool = [&](double from, double to, double t) {
    std::fill(run.Temperature_Old.begin(), run.Temperature_Old.end(), from);
    std::fill(run.Temperature_New.begin(), run.Temperature_New.end(), to);
    run.Mid_Step_Time = t - Dt / 2;
    Set_Free_Strains(p, run);
  };
  auto count_cracked = [&] {
    int n = 0;
    for (std::size_t k = 1; k < m.Points.size(); ++k)
      n += m.Points[k].Cracked ? 1 : 0;
    return n;
  };
  double step_seconds = 0, update_seconds = 0;
  int solves = 0, cracked = 0, hours = 0;
  for (auto _ : state) {
    // Cooled by a degree an hour until a hundred elements have cracked; the step in which that
    // happens is the one measured.
    Set_Initial_State(p, run, 1);
    Mechanical_Step outcome = Mechanical_Step::Converged;
    double step = 0;
    for (hours = 1; hours <= 40; ++hours) {
      cool(T_Start - (hours - 1), T_Start - hours, hours * Dt);
      const double start = Now();
      outcome = Solve_Mechanical_Step(p, run, quiet, Dt, hours * Dt, message);
      step = Now() - start;
      if (outcome != Mechanical_Step::Converged || count_cracked() >= 400) break;
      Update_Mechanical_End_Of_Step(p, run);
    }
    // The stress update alone, once more from the converged displacements.
    const double update_start = Now();
    Compute_Element_Stresses(p, run, Dt);
    update_seconds += Now() - update_start;
    step_seconds += step;
    state.SetIterationTime(step);
    solves = m.Iterations;
    cracked = count_cracked();
    if (outcome != Mechanical_Step::Converged || cracked == 0) {
      state.SkipWithError(cracked == 0 ? "the wall did not crack" : "the cracking step did not converge");
      break;
    }
  }
  const double iterations = static_cast<double>(state.iterations());
  state.counters["step_ms"] = 1e3 * step_seconds / iterations;
  state.counters["solves"] = solves;
  state.counters["per_solve_ms"] = 1e3 * step_seconds / iterations / std::max(solves, 1);
  state.counters["stress_update_ms"] = 1e3 * update_seconds / iterations;
  state.counters["cracked_points"] = cracked;
  state.counters["cooled_hours"] = hours;
}

BENCHMARK(BM_Mechanical_Factorisation)
    ->Arg(static_cast<int>(Solver_Kernel::Portable))
    ->Arg(static_cast<int>(Solver_Kernel::Avx2))
    ->UseManualTime()
    ->Iterations(3)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Mechanical_Step)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Cracking_Step)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace pvx
