// Whole runs against closed forms: adiabatic rises and a slab's series solution; and how a run
// ends when it is stopped, a step does not settle or a variant fails. Either way the result family
// is closed and reads back with the storages made before.
#include "analysis/driver.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <numbers>

#include "analysis_fixtures.h"
#include "results/result_files.h"

namespace pvx {
namespace {

using test::Compute;
using test::Concrete;
using test::Result;
using test::Set_Steps;
using test::Strip;

// CORE heat with an Arrhenius maturity, dT/dt = (H/c) dF/dM f(T), F = a(M-d)/(1+a(M-d)),
// integrated with a fine Runge-Kutta scheme: the temperature and maturity after `hours`.
std::array<double, 2> Core_Rise(const Material& m, double T0, double hours) {
  using State = std::array<double, 2>;  // T, M
  const double H = m.Heat_H, a = m.Heat_a, d = m.Heat_d, c = m.Capacity_Wet, h = 0.001;
  auto rate = [&](const State& s) {
    const double dM = std::exp(4000.0 * (1 / 293.0 - 1 / (s[0] + 273))), x = a * (s[1] - d);
    return State{s[1] > d ? H / c * a / ((1 + x) * (1 + x)) * dM : 0, dM};
  };
  auto ahead = [](const State& s, double step, const State& k) {
    return State{s[0] + step * k[0], s[1] + step * k[1]};
  };
  State s{T0, 0};
  for (int step = 0; step < std::lround(hours / h); ++step) {
    const State k1 = rate(s), k2 = rate(ahead(s, h / 2, k1)), k3 = rate(ahead(s, h / 2, k2)),
                k4 = rate(ahead(s, h, k3));
    for (int i : {0, 1})
      s[i] += h / 6 * (k1[i] + 2 * k2[i] + 2 * k3[i] + k4[i]);
  }
  return s;
}

TEST(Run_Analysis, AnInsulatedBodyWarmsByItsHeatAlone) {
  // No border: all heat stays, c (T - T0) = heat released, at every node. The heat laws themselves
  // are checked point by point (hydration_test.cpp); here a constant heat and CORE, whose rate
  // follows the temperature through the maturity.
  Material core = test::Heating("CORE", 110000, 0.08f, 0, 4);
  core.Has_Maturity_Law = core.Arrhenius_Active = true;
  core.Q_Over_R = 4000;
  core.T_Reference = 293;
  const auto [core_T, core_M] = Core_Rise(core, 12, 96);
  ASSERT_GT(core_T - 12, 30);

  struct Case {
    const char* name;
    Material m;
    double T0, until, dt;
    double T, maturity, hydration;
    double tolerance;  // of the temperature; the maturity takes 25 times as much
  };
  // The passes stop at a change of 0.01 degrees and the maturity takes the mean temperature of a
  // step: with steps of 0.25 h the CORE rise of 40 degrees agrees to a few thousandths.
  const Case cases[] = {
      {"CONS, 120 kJ/m3 an hour", test::Heating("CONS", 120), 15, 24, 1, 15 + 120.0 * 24 / 2400, 24, 1.0,
       1e-9},
      {"CORE", core, 12, 96, 0.25, core_T, core_M, (core_T - 12) * 2400 / 110000, 0.002},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Project p = Strip(3, 400, c.m, c.T0);
    Set_Steps(p, c.until, c.dt, c.until / 4);
    const Result r = test::Run(p);
    ASSERT_EQ(r.outcome, Run_Outcome::Completed);
    for (int node = 1; node <= p.Mesh_Node.count(); ++node)
      EXPECT_NEAR(r.T(node), c.T, c.tolerance) << node;
    EXPECT_NEAR(Point(r.run, 2, 3).Maturity_New, c.maturity, 25 * c.tolerance);
    EXPECT_NEAR(Point(r.run, 3, 1).Hydration_New, c.hydration, 1e-4);
    EXPECT_EQ(Storage_Count(r.run.Index), 5);  // the initial state and four more
    EXPECT_EQ(r.steps, std::lround(c.until / c.dt));
  }
}

TEST(Run_Analysis, SlabConductionAgainstItsSeriesSolution) {
  // A 1 m strip in 40 elements, x = 0 held at 0 by a prescribed line, the other faces insulated,
  // starting at 100: T = sum 400/((2k+1) pi) sin(lambda x) exp(-lambda^2 alpha t), lambda =
  // (2k+1) pi / 2L. The hold is a penalty of 1000 on the row, so the end is not exactly 0; with
  // 25 mm elements and 0.1 h steps the field agrees to some hundredths of a degree.
  Project p = Strip(40, 25, Concrete("NO H", 2000, 2), 100);  // alpha = 3.6 * 2 / 2000 m2/h
  p.Temperature_Functions[1].Constant_Value = 0;
  for (int node : {1, 2})
    p.Prescribed_Node.add(Prescribed_Node{1, node, 0, 1e6});
  Set_Steps(p, 24, 0.1, 24);
  const Result r = test::Run(p);
  ASSERT_EQ(r.outcome, Run_Outcome::Completed);
  const double L = 1.0, alpha = 3.6 * 2.0 / 2000, t = 24;
  auto exact = [&](double x) {
    double T = 0;
    for (int k = 0; k < 200; ++k) {
      const double lambda = (2 * k + 1) * std::numbers::pi / (2 * L);
      T += 400 / ((2 * k + 1) * std::numbers::pi) * std::sin(lambda * x) *
           std::exp(-lambda * lambda * alpha * t);
    }
    return T;
  };
  for (int i : {4, 10, 20, 40})
    EXPECT_NEAR(r.T(2 * i + 1), exact(i * 0.025), 0.1) << i;
}

// The storage times of a closed result family, read back from its index.
std::vector<double> Stored_Times(const test::Temp_Dir& dir, const char* name) {
  Run_Index index;
  std::string message;
  EXPECT_TRUE(Read_Run_Index_File(dir.file(name), 108, false, index, message)) << message;
  return index.Storage_Time.data();
}

TEST(Run_Analysis, StopEndsAtTheTopOfAStepWithClosedReadableFiles) {
  test::Temp_Dir dir;
  Project p = Strip(2, 500, test::Heating("CONS", 10), 20);
  Set_Steps(p, 20, 1, 2);
  Result r;
  Compute(p, dir, r, 7);
  EXPECT_EQ(r.outcome, Run_Outcome::Stopped);
  EXPECT_EQ(r.steps, 7);
  EXPECT_EQ(Stored_Times(dir, "T.RES"), (std::vector<double>{0, 2, 4, 6}));
}

// A 1 m square of so small a capacity that its explicit long-wave radiation, from 1.5 h on (the
// second step), overshoots further at every pass; the host counts the events let through after the
// first step and asks to stop once `stop_after` have passed.
struct Pumping : Result {
  int pumps = 0;
  void Pump_Events() override {
    if (steps >= 1) ++pumps;
  }
  bool Stop_Requested() override { return stop_after >= 0 && pumps >= stop_after; }
};

TEST(Run_Analysis, AStepThatDoesNotSettleCanBeStoppedOrEndsWithAMessage) {
  struct Case {
    const char* name;
    int stop_at;
    Run_Outcome outcome;
    const char* message_start;
  };
  const Case cases[] = {
      {"stopped in the 50th pass", 50, Run_Outcome::Stopped, nullptr},
      {"left alone", -1, Run_Outcome::Failed,
       "The temperatures of the step ending at 2 hours did not settle within 1000 iterations"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Project p = Strip(1, 1000, Concrete("NO H", 1, 1), 20);
    test::Add_Borders(p, Thermal_Period{1.5, 100, 0, 0, 0, 1, 1, 0, True_Flag, False_Flag}, {{1, 3}});
    Set_Steps(p, 4, 1, 1);
    test::Temp_Dir dir;
    Pumping r;
    Compute(p, dir, r, c.stop_at);
    EXPECT_EQ(r.outcome, c.outcome);
    EXPECT_EQ(r.steps, 1);  // the first step, without radiation, settles
    if (c.message_start) {
      ASSERT_EQ(r.messages.size(), 1u);
      EXPECT_EQ(r.messages[0].rfind(c.message_start, 0), 0u) << r.messages[0];
      EXPECT_EQ(r.run.Thermal_Passes, Max_Thermal_Passes);
    } else {
      EXPECT_TRUE(r.messages.empty());
      // The stop is seen in the pass during which it was asked for (the factorisation lets one
      // event through per column first).
      EXPECT_LT(r.pumps, 50 + 10);
    }
    // The family is closed and holds the initial state and the first step.
    EXPECT_EQ(Stored_Times(dir, "T.RES"), (std::vector<double>{0, 1}));
  }
}

TEST(Run_Analysis, AZeroPivotEndsItsVariantAndTheNextVariantRuns) {
  // Two 1 m elements; in variant 1 the second one is of a material with neither capacity nor
  // conduction, so its two outer nodes (5 and 6) have nothing of their own. A prescribed point on
  // their side gives them the block q [1 1; 1 1] (q = 1000 x the element's largest diagonal / 4):
  // the second of the two pivots reduces to exactly q - q = 0, and the next column, coupled to
  // it through the element, meets it. Variant 2 gives the element an ordinary concrete.
  test::Temp_Dir dir;
  Material empty = Concrete("NO H", 0, 0);
  empty.Name = "empty";
  Project p = Strip(2, 1000, Concrete("NO H"), 20);
  p.Material.add(empty);
  p.Point_T.add(Point_T{0, 1e6, 1, 2000, 500, 2, 1.0, 0.5});  // element 2, on the side of nodes 5 and 6
  p.Replace_Material = True_Flag;
  p.Run_Material = Table<std::int16_t>{2, 1};
  p.Element_Replaced = {false, true};
  Set_Result_File_Names(p);
  Set_Steps(p, 4, 1, 1);
  Result r;
  Compute(p, dir, r);
  EXPECT_EQ(r.outcome, Run_Outcome::Failed);
  ASSERT_EQ(r.messages.size(), 1u);
  EXPECT_EQ(r.messages[0], "Error division by zero in solver");
  // Variant 1 keeps its initial storage, closed and readable; variant 2 ran every step.
  EXPECT_EQ(Stored_Times(dir, "T.RES"), (std::vector<double>{0}));
  EXPECT_EQ(Stored_Times(dir, "T2.RES"), (std::vector<double>{0, 1, 2, 3, 4}));
  EXPECT_EQ(r.steps, 4);  // the steps reported are those of variant 2
}

}  // namespace
}  // namespace pvx
