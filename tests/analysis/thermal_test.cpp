// The temperature step against hand calculations: conditions that begin or end inside a step take
// effect by the middle of the step; long-wave radiation and convection move exactly the heat that
// their laws give.
#include "analysis/thermal.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "analysis_fixtures.h"
#include "design/time_function.h"

namespace pvx {
namespace {

using test::Concrete;
using test::Result;
using test::Set_Steps;
using test::Strip;

// One 1 m square element at 20 oC with convection h = 10 on all sides and steps of 1 h. The field
// stays uniform, and each node is the lumped trapezoidal rule of its share: capacity c A / 4 = 600,
// exchange half step x h x (two half sides) = 1.8 x 10 x 1 = 18.
double Convected(double T, double Ta) {
  const double a = 2400.0 / 4, b = 1.8 * 10 * 1.0;
  return ((a - b) * T + 2 * b * Ta) / (a + b);
}

TEST(Thermal_Step, ConditionsAreJudgedAtTheMiddleOfTheStep) {
  struct Case {
    const char* name;
    std::function<void(Project&)> set;
    int steps;
    double T, tolerance;
  };
  auto convection = [](double from, double until, int Ta = 1) {
    return [=](Project& p) { test::Add_Borders(p, test::Convection(10, from, until, Ta)); };
  };
  auto held = [](double from, double until) {
    return [=](Project& p) {
      for (int node = 1; node <= 4; ++node)
        p.Prescribed_Node.add(Prescribed_Node{1, node, from, until});
    };
  };
  // The element gives 240 kJ/m3 an hour, 0.1 degree, while it is present.
  auto present = [](float from, float until) {
    return [=](Project& p) {
      p.Material[1] = test::Heating("CONS", 240);
      p.Mesh_Element[1].Present_From = from;
      p.Mesh_Element[1].Present_Until = until;
    };
  };
  // Held at 0 by a penalty of 1000 times the diagonal: within a tenth of a degree of it.
  const Case cases[] = {
      {"convection from 0.6 h: off in step 1", convection(0.6, 100), 1, 20, 1e-9},
      {"convection from 1.6 h: off in step 2, on in step 3", convection(1.6, 100), 3, Convected(20, 0), 1e-9},
      {"convection until 1.4 h: on in step 1 only", convection(0, 1.4), 2, Convected(20, 0), 1e-9},
      {"ambient 10 t: 5 in step 1, 15 in step 2", convection(0, 100, 2), 2, Convected(Convected(20, 5), 15),
       1e-9},
      {"held from 0.6 h: free in step 1", held(0.6, 100), 1, 20, 1e-9},
      {"held until 0.8 h: held in step 1", held(0, 0.8), 1, 0, 0.1},
      {"held from 1.6 h: free in step 2", held(1.6, 100), 2, 20, 1e-9},
      {"present from 0.8 h: heat in step 2 only", present(0.8f, 1000), 2, 20.1, 1e-9},
      {"present from 1.8 h: heat in step 3 only", present(1.8f, 1000), 3, 20.1, 1e-9},
      {"present until 1.5 h, the middle of step 2: gone in it", present(0, 1.5f), 2, 20.1, 1e-9},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Project p = Strip(1, 1000, Concrete("NO H"), 20);
    p.Temperature_Functions[1].Constant_Value = 0;
    Function ramp = Default_Function(Function_Family::Temperature);
    Set_Function_Form(ramp, Function_Form::Piecewise);
    ramp.Point_Time = {0, 10};
    ramp.Point_Value = {0, 100};
    p.Temperature_Functions.add(ramp);
    c.set(p);
    Set_Steps(p, c.steps, 1, 1);
    const Result r = test::Run(p);
    ASSERT_EQ(r.outcome, Run_Outcome::Completed);
    for (int node = 1; node <= 4; ++node)
      EXPECT_NEAR(r.T(node), c.T, c.tolerance) << node;
  }
}

TEST(Thermal_Step, LongWaveRadiationMovesTheHeatOfTheStefanBoltzmannLaw) {
  // A 1 m cube (per metre of thickness) radiating on all four sides stays uniform; the heat it
  // stores in one short step, c V dT, is what 4 m2 of side exchange in that time,
  // sigma (Ea (Ta + 273)^4 - Es (T + 273)^4) with sigma = 5.77e-8 and T at the end of the step
  // (the exchange is iterated on the current temperature).
  struct Case {
    double Ea, Es, T0, Ta;
  };
  for (const Case c :
       {Case{0.9, 0.9, 60, 0}, Case{1, 0, 20, 30}, Case{0, 0.95, 20, 10}, Case{0.8, 0.95, 15, 15}}) {
    SCOPED_TRACE(testing::Message() << "Ea " << c.Ea << " Es " << c.Es << " T0 " << c.T0 << " Ta " << c.Ta);
    Project p = Strip(1, 1000, Concrete("NO H"), c.T0);
    p.Temperature_Functions[1].Constant_Value = c.Ta;
    test::Add_Borders(p, Thermal_Period{0, 1000, 1, 0, 0, c.Es, c.Ea, 0, True_Flag, False_Flag});
    const double dt = 0.05;
    Set_Steps(p, dt, dt, dt);
    const Result r = test::Run(p);
    ASSERT_EQ(r.outcome, Run_Outcome::Completed);
    const double T = r.T(1), Ka = c.Ta + 273, K = T + 273;
    const double stored = 2400 * 1.0 * (T - c.T0);
    const double exchanged = 3.6 * dt * 4.0 * 5.77e-8 * (c.Ea * Ka * Ka * Ka * Ka - c.Es * K * K * K * K);
    EXPECT_GT(std::fabs(T - c.T0), 0.01);
    EXPECT_NEAR(stored, exchanged, 1e-4 * std::fabs(exchanged));
    EXPECT_NEAR(r.T(4), T, 1e-9);
  }
}

TEST(Thermal_Step, ConvectionBetweenNodesOfDifferentTemperatures) {
  // Two 1 m elements, the first at 40 and the second at 10 (the shared nodes 3 and 4 take the
  // later macro's 10); convection h = 10 from air at 0 on the bottom side of the first, nodes 1
  // (40) and 3 (10), given either way round. Over a step the heat stored in the strip,
  // sum over the elements of c A / 4 x the change at its corners, is what the trapezoidal rule
  // of h (Ta - T) brings in over the side and the step: 3.6 h L dt (Ta - mean of T at both
  // nodes, start and end).
  for (auto [a, b] : {std::pair{1, 3}, {3, 1}}) {
    SCOPED_TRACE(testing::Message() << "border " << a << " to " << b);
    Project p = Strip(2, 1000, Concrete("NO H"), 40, 2, 10);
    p.Temperature_Functions[1].Constant_Value = 0;
    test::Add_Borders(p, test::Convection(10), {{a, b}});
    Set_Steps(p, 1, 1, 1);
    const Result r = test::Run(p);
    ASSERT_EQ(r.outcome, Run_Outcome::Completed);
    const double start[7] = {0, 40, 40, 10, 10, 10, 10};
    double stored = 0;
    for (const Mesh_Element& e : p.Mesh_Element)
      for (int j = 1; j <= 4; ++j)
        stored += 2400 * 1.0 / 4 * (r.T(e.Corner[j]) - start[e.Corner[j]]);
    const double mean = (40 + 10 + r.T(1) + r.T(3)) / 4;
    EXPECT_NEAR(stored, 3.6 * 10 * 1.0 * 1.0 * (0 - mean), 1e-9 * std::fabs(stored));
    EXPECT_LT(r.T(1), 40);
  }
}

}  // namespace
}  // namespace pvx
