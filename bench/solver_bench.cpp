// The skyline solver on thermal-like systems (one unknown per node) of square-element meshes, beside
// Eigen's sparse LDL^T (SimplicialLDLT, AMD ordering) on the same matrices.
//
// Reported per mesh: the time of one factorisation and one solution (thread CPU time), their rate in
// GFLOP/s from the exact operation count of the profile, and the Eigen times with their ratio to
// ours.
#include <benchmark/benchmark.h>

#include <Eigen/SparseCholesky>
#include <Eigen/SparseCore>
#include <array>
#include <ctime>
#include <map>
#include <vector>

#include "analysis/solver.h"
#include "profile_flops.h"

namespace pvx {
namespace {

struct Case {
  int nx = 0, ny = 0;
  Project project;
  Node_Numbering numbering;
  Table<double> matrix;  // assembled, not factorised
  Eigen::SparseMatrix<double> sparse;
  double factorise_flops = 0, solve_flops = 0;
};

// Grid of nx by ny unit squares, node 1 at a corner, nodes row by row.
Project Grid(int nx, int ny) {
  Project p;
  const int row = nx + 1;
  p.Mesh_Node.resize(row * (ny + 1));
  for (int iy = 0; iy < ny; ++iy) {
    for (int ix = 0; ix < nx; ++ix) {
      const int n = iy * row + ix + 1;
      Mesh_Element e;
      const std::array<int, 4> corners{n, n + 1, n + row + 1, n + row};
      for (int c = 1; c <= 4; ++c)
        e.Corner[c] = static_cast<std::int16_t>(corners[c - 1]);
      p.Mesh_Element.add(e);
    }
  }
  return p;
}

Case& Get_Case(int elements) {
  static std::map<int, Case> cases;
  auto found = cases.find(elements);
  if (found != cases.end()) return found->second;
  Case& c = cases[elements];
  c.nx = elements == 1000 ? 40 : elements == 5000 ? 100 : 157;
  c.ny = elements == 1000 ? 25 : elements == 5000 ? 50 : 157;
  c.project = Grid(c.nx, c.ny);
  Set_Node_Numbering(c.project, c.numbering);
  const int n = c.project.Mesh_Node.count();
  const auto& cp = c.numbering.Column_Pointer;

  // Conduction of a unit square bilinear element (conductivity 1) and a lumped capacity / dt.
  const double k[4][4] = {{4, -1, -2, -1}, {-1, 4, -1, -2}, {-2, -1, 4, -1}, {-1, -2, -1, 4}};
  const double capacity = 0.25 * 0.4;
  c.matrix.resize(c.numbering.Profile_Size);
  std::vector<Eigen::Triplet<double>> triplets;
  for (const Mesh_Element& e : c.project.Mesh_Element) {
    for (int r = 0; r < 4; ++r) {
      for (int s = 0; s < 4; ++s) {
        const int er = c.numbering.Node_Equation[e.Corner[r + 1]],
                  es = c.numbering.Node_Equation[e.Corner[s + 1]];
        const double v = k[r][s] / 6 + (r == s ? capacity : 0.0);
        triplets.emplace_back(er - 1, es - 1, v);
        if (er <= es) c.matrix[cp[es] - es + er] += v;
      }
    }
  }
  c.sparse.resize(n, n);
  c.sparse.setFromTriplets(triplets.begin(), triplets.end());
  c.factorise_flops = bench::Profile_Flops(cp, n);
  c.solve_flops = 4.0 * (c.numbering.Profile_Size - n) + n;
  return c;
}

// Times are the CPU time of this thread, so that other work on a shared machine does not count
// against either solver.
using Clock_Point = double;
Clock_Point Now() {
  timespec t{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
  return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
}
double Seconds_Since(Clock_Point start) {
  return Now() - start;
}

void Describe(benchmark::State& state, const Case& c) {
  state.counters["equations"] = c.project.Mesh_Node.count();
  state.counters["profile"] = c.numbering.Profile_Size;
  state.counters["max_height"] = c.numbering.Max_Column_Height;
}

void BM_Factorise(benchmark::State& state) {
  Case& c = Get_Case(static_cast<int>(state.range(0)));
  const auto kernel = static_cast<Solver_Kernel>(state.range(1));
  if (!Solver_Kernel_Available(kernel)) {
    state.SkipWithError("kernel not available on this processor");
    return;
  }
  const int n = c.project.Mesh_Node.count();
  Table<double> a;
  for (auto _ : state) {
    a = c.matrix;
    const auto start = Now();
    bool ok = false;
    std::string message;
    Factorise_Profile(a, n, c.numbering.Column_Pointer, ok, message, {}, kernel);
    state.SetIterationTime(Seconds_Since(start));
    if (!ok) state.SkipWithError(message.c_str());
  }
  Describe(state, c);
  state.counters["GFLOP/s"] =
      benchmark::Counter(c.factorise_flops * 1e-9, benchmark::Counter::kIsIterationInvariantRate);
  state.SetLabel(kernel == Solver_Kernel::Avx2 ? "avx2" : "portable");
}

void BM_Solve(benchmark::State& state) {
  Case& c = Get_Case(static_cast<int>(state.range(0)));
  const auto kernel = static_cast<Solver_Kernel>(state.range(1));
  if (!Solver_Kernel_Available(kernel)) {
    state.SkipWithError("kernel not available on this processor");
    return;
  }
  const int n = c.project.Mesh_Node.count();
  Table<double> a = c.matrix, b;
  bool ok = false;
  std::string message;
  Factorise_Profile(a, n, c.numbering.Column_Pointer, ok, message, {}, kernel);
  for (auto _ : state) {
    b.clear();
    b.resize(n, 1.0);
    const auto start = Now();
    Solve_Profile(a, b, n, c.numbering.Column_Pointer, kernel);
    state.SetIterationTime(Seconds_Since(start));
    benchmark::DoNotOptimize(b[n]);
  }
  state.counters["GFLOP/s"] =
      benchmark::Counter(c.solve_flops * 1e-9, benchmark::Counter::kIsIterationInvariantRate);
  state.SetLabel(kernel == Solver_Kernel::Avx2 ? "avx2" : "portable");
}

// Both factorisations in each iteration: ours, then Eigen's numeric factorisation on the pattern
// analysed once (its AMD ordering and symbolic step are reported apart, as our numbering is).
void BM_Side_By_Side(benchmark::State& state) {
  Case& c = Get_Case(static_cast<int>(state.range(0)));
  const int n = c.project.Mesh_Node.count();
  Eigen::SimplicialLDLT<Eigen::SparseMatrix<double>> eigen;
  auto start = Now();
  eigen.analyzePattern(c.sparse);
  const double analyse = Seconds_Since(start);
  start = Now();
  Node_Numbering numbering;
  Set_Node_Numbering(c.project, numbering);
  const double number = Seconds_Since(start);

  double ours = 0, theirs = 0;
  Table<double> a;
  for (auto _ : state) {
    a = c.matrix;
    start = Now();
    bool ok = false;
    std::string message;
    Factorise_Profile(a, n, c.numbering.Column_Pointer, ok, message);
    const double t_ours = Seconds_Since(start);
    start = Now();
    eigen.factorize(c.sparse);
    const double t_theirs = Seconds_Since(start);
    ours += t_ours;
    theirs += t_theirs;
    state.SetIterationTime(t_ours);
    if (!ok || eigen.info() != Eigen::Success) state.SkipWithError("factorisation failed");
  }
  // The solutions must agree, or the comparison means nothing.
  Table<double> b;
  b.resize(n, 1.0);
  Solve_Profile(a, b, n, c.numbering.Column_Pointer);
  const Eigen::VectorXd x = eigen.solve(Eigen::VectorXd::Ones(n));
  double difference = 0;
  for (int i = 0; i < n; ++i)
    difference = std::max(difference, std::abs(x[i] - b[i + 1]));

  const double iterations = static_cast<double>(state.iterations());
  Describe(state, c);
  state.counters["ours_ms"] = 1e3 * ours / iterations;
  state.counters["eigen_ms"] = 1e3 * theirs / iterations;
  state.counters["eigen/ours"] = theirs / ours;
  state.counters["eigen_analyse_ms"] = 1e3 * analyse;
  state.counters["numbering_ms"] = 1e3 * number;
  state.counters["eigen_L_nonzeros"] = static_cast<double>(eigen.matrixL().nestedExpression().nonZeros());
  state.counters["max_difference"] = difference;
}

void BM_Eigen_Solve(benchmark::State& state) {
  Case& c = Get_Case(static_cast<int>(state.range(0)));
  Eigen::SimplicialLDLT<Eigen::SparseMatrix<double>> eigen(c.sparse);
  const Eigen::VectorXd ones = Eigen::VectorXd::Ones(c.project.Mesh_Node.count());
  Eigen::VectorXd x;
  for (auto _ : state) {
    x = eigen.solve(ones);
    benchmark::DoNotOptimize(x.data());
  }
}

void Sizes_And_Kernels(benchmark::internal::Benchmark* b) {
  for (int elements : {1000, 5000, 25000}) {
    for (Solver_Kernel kernel : {Solver_Kernel::Portable, Solver_Kernel::Avx2}) {
      b->Args({elements, static_cast<int>(kernel)});
    }
  }
}

BENCHMARK(BM_Factorise)->Apply(Sizes_And_Kernels)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Solve)->Apply(Sizes_And_Kernels)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Side_By_Side)->Arg(1000)->Arg(5000)->Arg(25000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Eigen_Solve)->Arg(1000)->Arg(5000)->Arg(25000)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace pvx
