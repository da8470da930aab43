// A wall on a slab with a construction joint along its foot and 200 starter bars across the joint:
// a slab of 250 x 25 elements of 100 mm, a wall of 200 x 93 on it (6,250 + 18,600 = 24,850
// elements, 500 mm thick, plane stress), held along the slab's bottom. The joint is of type A (ft
// 1 MPa, 35 degrees) over the 200 sides of the foot; each bar (16 mm, bonded) runs from 1 m below
// the joint to 1 m above it, one in the middle of every column of the wall, cut into 20 bar
// elements. The wall is warmed by 20 degrees over the step, so that the joint and the bars work.
//
//   BM_Joint_Bar_Step: one step as the run makes it (assembly, factorisation, iterations), and the
//     share of it spent in the joint and bar elements: their tangents put into the profile once and
//     their stresses and forces once per iteration of the step, timed apart over the same state.
//     Beside it the same step of the same mesh without joint and bars, and what the whole step
//     costs more with them (more unknowns, a wider profile, more iterations).
//
// Times are the CPU time of this thread.
#include <benchmark/benchmark.h>

#include <ctime>
#include <string>

#include "analysis/driver.h"
#include "analysis/mechanics/assembly.h"
#include "analysis/mechanics/stress_loop.h"
#include "analysis/mechanics/supports_loads.h"

namespace pvx {
namespace {

constexpr int Slab_X = 250, Slab_Y = 25, Wall_X = 200, Wall_Y = 93, Wall_From = 25;
constexpr double Size = 100;

double Now() {
  timespec t{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
  return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
}

Property_Table Constant(double v) {
  Property_Table t;
  t.Is_Constant = true;
  t.Abscissa.add(0);
  t.Value.add(static_cast<float>(v));
  return t;
}

Project Wall_On_Slab(bool joint_and_bars) {
  Project p;
  New_Project(p);
  Material c;
  c.Name = "C30/37";
  c.Has_Thermal = c.Has_Mechanical = true;
  c.Capacity_Wet = 2400;
  c.Conductivity_Wet = 2.3f;
  c.Heat_Model = "NO H";
  c.Model_Name = "Linear Elastic";
  c.E = Constant(30000);
  c.Nu = Constant(0.2);
  c.Ft = Constant(2.9);
  c.Fc = Constant(38);
  c.Thermal_Dilatation = Constant(1e-5);
  p.Material.add(c);
  Material joint;
  joint.Name = "Construction joint";
  joint.Is_Interface = true;
  joint.Interface_Type = 1;
  const double a[8] = {1, 0.3, 0.02, 0.15, 35, 0.5, 100, 40};
  for (int i = 0; i < 8; ++i)
    joint.Interface_Data[static_cast<std::size_t>(i + 1)] = a[i];
  p.Material.add(joint);
  Material steel;
  steel.Name = "B500B";
  steel.Is_Reinforcement = true;
  steel.Steel_Strain_A = {0, 2.5, 50}, steel.Steel_Stress_A = {0, 500, 540};
  steel.Steel_Strain_B = {0, 0.6, 2}, steel.Steel_Stress_B = {0, 10, 12};
  steel.Steel_Const_1 = 1000, steel.Steel_Const_2 = 1;
  steel.Steel_Dilatation = Constant(1.2e-5);
  p.Material.add(steel);
  p.Replace_Material = False_Flag;
  p.Result_File_Name = "JOINT.RES";
  Set_Result_Names(p);
  p.Out_Of_Plane.Plane_Stress = True_Flag;
  p.Out_Of_Plane.Plane_Strain = p.Out_Of_Plane.Axisymmetric = False_Flag;

  // Slab nodes (i, j), then the wall's nodes above the slab's top row.
  auto slab = [](int i, int j) { return i * (Slab_Y + 1) + j + 1; };
  const int slab_nodes = (Slab_X + 1) * (Slab_Y + 1);
  auto node = [&](int i, int j) {
    return static_cast<std::int16_t>(j <= Slab_Y ? slab(i, j)
                                                 : slab_nodes + (i - Wall_From) * Wall_Y + (j - Slab_Y));
  };
  for (int i = 0; i <= Slab_X; ++i)
    for (int j = 0; j <= Slab_Y; ++j)
      p.Mesh_Node.add(Mesh_Node{Size * i, Size * j});
  for (int i = Wall_From; i <= Wall_From + Wall_X; ++i)
    for (int j = Slab_Y + 1; j <= Slab_Y + Wall_Y; ++j)
      p.Mesh_Node.add(Mesh_Node{Size * i, Size * j});
  auto element = [&](int i, int j) {
    Mesh_Element e;
    e.Material = c.Name;
    e.Thickness = 500;
    e.Corner = {{node(i, j), node(i + 1, j), node(i + 1, j + 1), node(i, j + 1)}};
    p.Mesh_Element.add(e);
  };
  for (int i = 0; i < Slab_X; ++i)
    for (int j = 0; j < Slab_Y; ++j)
      element(i, j);
  for (int i = Wall_From; i < Wall_From + Wall_X; ++i)
    for (int j = Slab_Y; j < Slab_Y + Wall_Y; ++j)
      element(i, j);
  for (int i = 0; i <= Slab_X; ++i)
    for (const double angle : {0.0, -90.0}) {
      Support s;
      s.Node_A = node(i, 0);
      s.Angle = angle;
      p.Mesh_Support.add(s);
    }
  if (!joint_and_bars) return p;
  for (int i = Wall_From; i < Wall_From + Wall_X; ++i) {
    Interface f;
    f.Node_A = node(i, Slab_Y);
    f.Node_B = node(i + 1, Slab_Y);
    f.Layer_Material = joint.Name;
    p.Mesh_Interface.add(f);
  }
  for (int i = Wall_From; i < Wall_From + Wall_X; ++i) {
    Rebar r;
    r.Material = steel.Name;
    r.Diameter = 16;
    r.X1 = r.X2 = Size * (i + 0.5);
    r.Y1 = Size * Slab_Y - 1000, r.Y2 = Size * Slab_Y + 1000;
    p.Rebar.add(r);
  }
  return p;
}

struct Step_Times {
  double step = 0;   // assembly, factorisation and iterations
  double parts = 0;  // the joint and bar elements' own work in it
  int solves = 0;
  int equations = 0;
  std::int64_t profile = 0;
};

Step_Times One_Step(Project& p) {
  std::string message;
  Set_Mechanical_Mesh(p, message);
  Run_State run;
  run.Mechanical_Included = true;
  run.Mechanical_Iteration_Limit = 100;
  Analysis_Host host;
  Allocate_Solution_Arrays(p, run, host);
  Set_Initial_State(p, run, 1);
  for (int node = 1; node <= p.Mesh_Node.count(); ++node)
    if (p.Mesh_Node[node].Y > Size * Slab_Y) run.Temperature_New[run.Numbering.Node_Equation[node]] += 20;
  run.Mid_Step_Time = 0.5;
  Set_Free_Strains(p, run);
  Step_Times t;
  double start = Now();
  if (Solve_Mechanical_Step(p, run, host, 1, 1, message) != Mechanical_Step::Converged) return {};
  t.step = Now() - start;
  Mechanical_State& m = run.Mechanics;
  t.solves = m.Iterations;
  t.equations = m.Equations;
  t.profile = m.Profile_Size;

  // The joint and bar work of the step over its converged state: the tangents once, the stresses
  // as often as the step solved.
  Table<double> scratch = m.Matrix;
  start = Now();
  for (const Interface_Element& f : m.Interfaces) {
    double K[8][8];
    Interface_Stiffness(f, K);
    for (int i = 0; i < 8; ++i)
      for (int j = 0; j < 8; ++j) {
        const int a = Place(m, f.Dof[i + 1]), b = Place(m, f.Dof[j + 1]);
        if (a <= b) scratch[Profile_Entry(m, a, b)] += K[i][j];
      }
  }
  for (const Bar_Element& b : m.Bars) {
    double K[12][12];
    Bar_Stiffness(b, K);
    for (int i = 0; i < b.Dof_Count(); ++i)
      for (int j = 0; j < b.Dof_Count(); ++j) {
        const int r = Place(m, b.Dof[i + 1]), s = Place(m, b.Dof[j + 1]);
        if (r <= s) scratch[Profile_Entry(m, r, s)] += K[i][j];
      }
  }
  for (int pass = 0; pass < t.solves; ++pass) {
    for (Interface_Element& f : m.Interfaces) {
      double u[8], F[8];
      for (int i = 0; i < 8; ++i)
        u[i] = m.Total[Place(m, f.Dof[i + 1])];
      Interface_Stresses(p.Material[f.Material], f, u, F);
      for (int i = 0; i < 8; ++i)
        scratch[Place(m, f.Dof[i + 1])] += F[i];
    }
    for (Bar_Element& b : m.Bars) {
      double u[12] = {}, F[12];
      for (int i = 0; i < b.Dof_Count(); ++i)
        u[i] = m.Total[Place(m, b.Dof[i + 1])];
      const double T0[4] = {20, 20, 20, 20}, T1[4] = {40, 40, 40, 40};
      Bar_Stresses(p.Material[b.Material], b, u, T0, T1, F);
      for (int i = 0; i < b.Dof_Count(); ++i)
        scratch[Place(m, b.Dof[i + 1])] += F[i];
    }
  }
  t.parts = Now() - start;
  benchmark::DoNotOptimize(scratch.data().data());
  return t;
}

void BM_Joint_Bar_Step(benchmark::State& state) {
  Project with = Wall_On_Slab(true), plain = Wall_On_Slab(false);
  Step_Times w, q;
  for (auto _ : state) {
    w = One_Step(with);
    q = One_Step(plain);
    if (w.step == 0 || q.step == 0) {
      state.SkipWithError("a step did not converge");
      return;
    }
    state.SetIterationTime(w.step);
  }
  state.counters["elements"] = with.Mesh_Element.count();
  state.counters["joint_elements"] = with.Mesh_Interface.count();
  state.counters["bar_elements"] = with.Mesh_Rebar.count();
  state.counters["step_ms"] = 1e3 * w.step;
  state.counters["joint_bar_work_ms"] = 1e3 * w.parts;
  state.counters["joint_bar_share"] = w.parts / w.step;
  state.counters["solves"] = w.solves;
  state.counters["equations"] = w.equations;
  state.counters["profile"] = static_cast<double>(w.profile);
  state.counters["plain_step_ms"] = 1e3 * q.step;
  state.counters["plain_solves"] = q.solves;
  state.counters["plain_profile"] = static_cast<double>(q.profile);
  state.counters["step_cost_over_plain"] = w.step / q.step - 1;
}

}  // namespace

BENCHMARK(BM_Joint_Bar_Step)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace pvx
