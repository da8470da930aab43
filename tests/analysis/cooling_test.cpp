// Cooling pipes: the water along a circuit against the exchange equation, and whole runs of a block
// with a pipe hole against the heat balance, standing water, closed circuits and periods of operation.
#include "analysis/cooling.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "analysis_fixtures.h"
#include "design/time_function.h"
#include "mesh/mesh_fixtures.h"
#include "mesh/pipe_holes.h"

namespace pvx {
namespace {

// The exchange number of dT/dx = c (S - T) / v by its physical meaning: c / v = h pi D / (rho c Q).
double Decay_Per_Metre(double h, double diameter_mm, double capacity, double flow_m3_h) {
  return h * 3.14159265358979 * diameter_mm / 1000 / (capacity * 1000 * flow_m3_h / 3600);
}

// A circuit with water of 10 oC at its inlet; the wall of section i is mesh node i, whose old and
// new temperatures differ but have the mean wall[i].
struct Water_Model {
  Project p;
  Run_State run;
  Water_Model(const std::vector<double>& wall, const std::vector<double>& distance, double flow) {
    New_Project(p);
    Circuit c;
    const int sections = static_cast<int>(wall.size());
    Resize_Pipes(c, sections);
    c.Diameter = 25, c.Transfer_Coefficient = 400, c.Liquid_Capacity = 4180, c.Active_Until = 100;
    c.Distance.data() = distance;
    run.Numbering.Node_Equation.resize(sections);
    run.Temperature_Old.resize(sections);
    run.Temperature_New.resize(sections);
    for (int i = 1; i <= sections; ++i) {
      for (int j = 1; j <= 9; ++j)
        c.Pipe_Connection[i][j] = static_cast<std::int16_t>(i);
      p.Mesh_Node.add(Mesh_Node{double(i), 0});
      run.Numbering.Node_Equation[i] = i;
      run.Temperature_Old[i] = wall[static_cast<std::size_t>(i - 1)] - 3;
      run.Temperature_New[i] = wall[static_cast<std::size_t>(i - 1)] + 3;
    }
    p.Circuit.add(c);
    p.Temperature_Functions[1].Constant_Value = 10;
    p.Flow_Functions[1].Constant_Value = flow;
    run.Mid_Step_Time = 0.5;
    Set_Cooling_Start(p, run);
  }
};

// The water equation integrated by small Runge-Kutta steps, for a wall that is constant over the
// first stretch, linear between the walls of neighbouring sections and constant over the last.
std::vector<double> Integrated_Water(const std::vector<double>& wall, const std::vector<double>& distance,
                                     double decay) {
  std::vector<double> T{10};
  const std::size_t n = wall.size();
  for (std::size_t i = 0; i <= n; ++i) {
    const double S0 = wall[i == 0 ? 0 : i - 1], S1 = wall[std::min(i, n - 1)], h = distance[i] / 2000;
    auto f = [&](double at, double value) { return decay * (S0 + (S1 - S0) * at / distance[i] - value); };
    double y = T.back();
    for (int k = 0; k < 2000; ++k) {
      const double x = k * h, k1 = f(x, y), k2 = f(x + h / 2, y + h / 2 * k1),
                   k3 = f(x + h / 2, y + h / 2 * k2), k4 = f(x + h, y + h * k3);
      y += h / 6 * (k1 + 2 * k2 + 2 * k3 + k4);
    }
    T.push_back(y);
  }
  return T;
}

TEST(Water_Temperatures, FollowTheExchangeEquationAlongTheCircuit) {
  struct Case {
    const char* name;
    std::vector<double> wall, distance;
    double flow;
    std::vector<double> expected;  // where the equation is not integrated
  };
  const Case cases[] = {
      {"walls that change from section to section", {40, 28, 33, 20}, {2.5, 1, 3, 2, 0.5}, 0.6, {}},
      {"a slow flow: stretches of x = 0.7 to 4.1, below ln 100",
       {40, 28, 33, 20},
       {2.5, 1, 3, 2, 0.5},
       0.02,
       {}},
      {"no flow: the water stands at the inlet value", {40, 28, 33}, {2, 2, 2, 2}, 0, {10, 10, 10, 10, 10}},
      {"a trickle: each station takes its wall", {40, 28, 33}, {2, 2, 2, 2}, 1e-4, {10, 40, 28, 33, 33}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Water_Model m(c.wall, c.distance, c.flow);
    Update_Water_Temperatures(m.p, m.run, 1.0);
    const std::vector<double> expected =
        c.expected.empty() ? Integrated_Water(c.wall, c.distance, Decay_Per_Metre(400, 25, 4180, c.flow))
                           : c.expected;
    const Table<float>& water = m.run.Cooling.Water_New[1];
    ASSERT_EQ(water.count(), static_cast<int>(expected.size()));
    for (int k = 1; k <= water.count(); ++k)
      EXPECT_NEAR(water[k], expected[static_cast<std::size_t>(k - 1)], 2e-5) << "station " << k;
  }
}

// A 600 x 600 mm block of concrete without heat, cut 6 x 6, with one insulated pipe of 30 mm at its
// centre, at 40 oC; water of 10 oC flows at `flow` m3/h through two stretches of `stretch` m.
Project Block_With_Pipe(double flow, double stretch) {
  Project p = test::Empty_Project();
  p.Macro_Defaults.Temperature = 40;
  for (auto [x, y] : {std::pair{0.0, 0.0}, {600.0, 0.0}, {600.0, 600.0}, {0.0, 600.0}, {300.0, 300.0}})
    Add_Node(p, x, y);
  test::Add_Macro(p, 1, 2, 3, 4, "concrete");
  test::Add_Circuit(p, {5}, 30);
  Mesh_Session s = test::Meshed(p);
  EXPECT_EQ(test::Cut(p, s, 1, 1, 6), "");
  EXPECT_EQ(test::Cut(p, s, 1, 2, 6), "");
  std::string message;
  EXPECT_TRUE(Integrate_Circuits(p, s, message)) << message;
  p.Material.add(test::Concrete("NO H"));
  Circuit& c = p.Circuit[1];
  c.Transfer_Coefficient = 500, c.Liquid_Capacity = 4180, c.Active_From = 0, c.Active_Until = 1000;
  c.Distance = {stretch, stretch};
  p.Temperature_Functions[1].Constant_Value = 10;
  p.Flow_Functions[1].Constant_Value = flow;
  p.Replace_Material = False_Flag;
  p.Result_File_Name = "B.RES";
  Set_Result_Names(p);
  return p;
}

test::Result Run_Block(Project& p, double hours, double dt, double storage) {
  test::Set_Steps(p, hours, dt, storage);
  test::Result r = test::Run(p);
  EXPECT_EQ(r.outcome, Run_Outcome::Completed);
  return r;
}

TEST(Cooling_Run, TheWaterCarriesAwayTheHeatTheConcreteLoses) {
  // The concrete loses h pi D (S - Tw) per metre against the water after the first stretch, the
  // water gains rho c Q (S - Tin)(1 - exp(-x)) over both: for a wall constant along the pipe they
  // differ by 2 sinh(x / 2) / x, x = c 2L / v. The rest is the time discretisation, first order in
  // the step (0.44 % at 0.1 h); a damped start books its first steps at their end, 2.6 % at 0.1 h.
  const double flow = 0.3, stretch = 2, x = Decay_Per_Metre(500, 30, 4180, flow) * 2 * stretch;
  for (const int damped : {0, 4}) {
    double previous_error = 0;
    for (const double dt : {0.1, 0.05}) {
      SCOPED_TRACE(testing::Message() << "step " << dt << " h, damped start " << damped);
      Project p = Block_With_Pipe(flow, stretch);
      p.Damped_Start_Steps = static_cast<std::int16_t>(damped);
      const test::Result r = Run_Block(p, 12, dt, 12);
      // The heat the concrete lost (its capacity matrices times the cooling) over the pipe's length.
      double concrete = 0;
      for (int e = 1; e <= p.Mesh_Element.count(); ++e)
        for (int i = 1; i <= 4; ++i)
          for (int j = 1; j <= 4; ++j)
            concrete += r.run.Element_Matrices[e].C.v[Block_Index(std::min(i, j), std::max(i, j))] *
                        (40 - r.T(p.Mesh_Element[e].Corner[j])) * 2 * stretch;
      // The heat the water carried away: its capacity in kW by the trapezoidal rule over the records.
      const Table<History_Record>& h = r.run.Cooling.History[1].History;
      double water = 0;
      for (int k = 2; k <= h.count(); ++k)
        water += (h[k - 1].Capacity + h[k].Capacity) / 2 * (h[k].Time - h[k - 1].Time) * 3600;
      ASSERT_GT(concrete, 1000.0);
      const double error = std::fabs(water / concrete / (2 * std::sinh(x / 2) / x) - 1);
      EXPECT_LT(error, (damped ? 0.3 : 0.06) * dt)
          << "water " << water << " kJ, concrete " << concrete << " kJ";
      if (previous_error > 0) {
        EXPECT_LT(error, 0.6 * previous_error);
      }
      previous_error = error;
    }
  }
}

TEST(Cooling_Run, StandingWaterTakesNoHeat) {
  Project p = Block_With_Pipe(0, 5);
  EXPECT_NEAR(Run_Block(p, 4, 0.5, 4).coldest, 40, 1e-5);
}

TEST(Cooling_Run, ClosedCircuitFeedsItsOutletBack) {
  // The inlet function is read at time 0 only: afterwards the water warms towards the concrete.
  Project p = Block_With_Pipe(0.3, 5);
  p.Circuit[1].Closed_Circuit = True_Flag;
  const test::Result r = Run_Block(p, 6, 0.25, 6);
  const Table<History_Record>& h = r.run.Cooling.History[1].History;
  ASSERT_EQ(h.count(), 25);
  for (int k = 3; k <= h.count(); ++k) {
    SCOPED_TRACE(k);
    // The inlet takes the outlet of the pass before the last, within what the iteration settles;
    // the sudden start makes the trapezoidal rule ring, so compare every other step.
    EXPECT_NEAR(h[k].Water[1], h[k].Water[3], 0.05);
    EXPECT_GT(h[k].Water[1], h[k - 2].Water[1]);
    EXPECT_GT(h[k].Water[1], 20);
  }
}

TEST(Cooling_Run, ACircuitInOperationForPartOfTheRunKeepsThatPart) {
  // In operation from 2.25 to 6 hours, in half-hour steps: a record at 2.25 h, then one per step
  // whose middle lies strictly inside (not the step to 2.5 h, whose middle is 2.25), the last at 6 h.
  Project p = Block_With_Pipe(0.3, 5);
  p.Circuit[1].Active_From = 2.25;
  p.Circuit[1].Active_Until = 6;
  test::Set_Steps(p, 10, 0.5, 1);
  test::Temp_Dir dir;
  test::Result r;
  test::Compute(p, dir, r, 5);  // stopped after 2.5 hours: nothing cooled yet
  ASSERT_EQ(r.outcome, Run_Outcome::Stopped);
  EXPECT_NEAR(r.coldest, 40, 1e-9);
  test::Result whole;
  test::Compute(p, dir, whole);
  ASSERT_EQ(whole.outcome, Run_Outcome::Completed);
  const Table<History_Record>& h = whole.run.Cooling.History[1].History;
  ASSERT_EQ(h.count(), 8);
  EXPECT_DOUBLE_EQ(h[1].Time, 2.25);
  for (int k = 2; k <= 8; ++k)
    EXPECT_DOUBLE_EQ(h[k].Time, 2.5 + 0.5 * (k - 1)) << k;
  EXPECT_GT(h[8].Capacity, 0);
  EXPECT_EQ(test::Read_Text(dir.file("B.COO")).substr(0, 3), "8\r\n");  // the history file has them all
}

TEST(Cooling_Run, AStretchOfNoLengthIsRefusedBeforeTheRun) {
  Project p = Block_With_Pipe(0.3, 5);
  p.Circuit[1].Distance[2] = 0;
  test::Set_Steps(p, 1, 0.5, 1);
  const test::Result r = test::Run(p);
  EXPECT_EQ(r.outcome, Run_Outcome::Failed);
  ASSERT_EQ(r.messages.size(), 1u);
  EXPECT_NE(r.messages[0].find("Circuit 1: distance 2 is not above 0 m"), std::string::npos) << r.messages[0];
}

TEST(Cooling_Run, TheDampedStartKeepsThePipeWallAboveTheWater) {
  // In half-hour steps the trapezoidal rule overshoots: the wall round the pipe goes below the
  // water of 10 oC. Backward Euler steps at the start and the stop keep every node above it.
  for (const int damped : {0, 4}) {
    SCOPED_TRACE(damped);
    Project p = Block_With_Pipe(0.3, 2);
    p.Damped_Start_Steps = static_cast<std::int16_t>(damped);
    p.Circuit[1].Active_Until = 3;
    EXPECT_EQ(Run_Block(p, 6, 0.5, 6).coldest < 10, damped == 0);
  }
}

}  // namespace
}  // namespace pvx
