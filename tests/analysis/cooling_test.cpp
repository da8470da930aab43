// Cooling pipes: the water along a circuit against the exchange equation, and whole runs of a block
// with a pipe hole against the heat balance, standing water, closed circuits and periods of operation.
#include "analysis/cooling.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>

#include "analysis_fixtures.h"
#include "design/time_function.h"
#include "mesh/mesh_fixtures.h"
#include "mesh/pipe_holes.h"

namespace pvx {
namespace {

using test::Concrete;

// The exchange number c of the water equation dT/dx = c (S - T) / v, by its physical meaning:
// the wall takes h pi D per metre of pipe, the water carries rho c Q: c / v = h pi D / (rho c Q).
double Decay_Per_Metre(double h, double diameter_mm, double capacity, double flow_m3_h) {
  const double D = diameter_mm / 1000, Q = flow_m3_h / 3600;
  return h * 3.14159265358979 * D / (capacity * 1000 * Q);
}

// A circuit with water of 10 oC at its inlet, whose section i has eight wall nodes of its own at
// temperature wall[i] (old and new).
struct Water_Model {
  Project p;
  Run_State run;
  Water_Model(const std::vector<double>& wall, const std::vector<double>& distance, double flow) {
    New_Project(p);
    Circuit c;
    Resize_Pipes(c, static_cast<int>(wall.size()));
    c.Diameter = 25;
    c.Transfer_Coefficient = 400;
    c.Liquid_Capacity = 4180;
    c.Active_From = 0;
    c.Active_Until = 100;
    for (std::size_t i = 0; i < distance.size(); ++i)
      c.Distance[static_cast<int>(i) + 1] = distance[i];
    const int nodes = 8 * static_cast<int>(wall.size());
    run.Numbering.Node_Equation.resize(nodes);
    run.Temperature_Old.resize(nodes);
    run.Temperature_New.resize(nodes);
    for (int i = 1; i <= c.Pipe_Count; ++i)
      for (int j = 1; j <= 9; ++j) {
        const int node = 8 * (i - 1) + (j - 1) % 8 + 1;
        c.Pipe_Connection[i][j] = static_cast<std::int16_t>(node);
        if (j == 9) continue;
        p.Mesh_Node.add(Mesh_Node{double(node), 0});
        run.Numbering.Node_Equation[node] = node;
        // Old and new differ, but their mean is the section's wall temperature.
        run.Temperature_Old[node] = wall[static_cast<std::size_t>(i - 1)] - 3;
        run.Temperature_New[node] = wall[static_cast<std::size_t>(i - 1)] + 3;
      }
    p.Circuit.add(c);
    p.Temperature_Functions[1].Constant_Value = 10;
    p.Flow_Functions[1].Constant_Value = flow;
    run.Mid_Step_Time = 0.5;
    Set_Cooling_Start(p, run);
  }
  const Table<float>& water() const { return run.Cooling.Water_New[1]; }
};

// The water equation integrated by small Runge-Kutta steps, for a wall that is constant over the
// first stretch, linear between the walls of neighbouring sections and constant over the last.
std::vector<double> Integrated_Water(const std::vector<double>& wall, const std::vector<double>& distance,
                                     double decay, double inlet) {
  std::vector<double> T{inlet};
  const std::size_t n = wall.size();
  for (std::size_t i = 0; i <= n; ++i) {
    const double S0 = i == 0 ? wall[0] : wall[std::min(i, n) - 1];
    const double S1 = wall[std::min(i, n - 1)];
    const int steps = 2000;
    const double h = distance[i] / steps;
    double x = 0, y = T.back();
    auto f = [&](double at, double value) { return decay * (S0 + (S1 - S0) * at / distance[i] - value); };
    for (int k = 0; k < steps; ++k) {
      const double k1 = f(x, y), k2 = f(x + h / 2, y + h / 2 * k1), k3 = f(x + h / 2, y + h / 2 * k2),
                   k4 = f(x + h, y + h * k3);
      y += h / 6 * (k1 + 2 * k2 + 2 * k3 + k4);
      x += h;
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
      {"one wall temperature", {35, 35, 35}, {2, 3, 1.5, 4}, 0.9, {}},
      {"walls that change from section to section", {40, 28, 33, 20}, {2.5, 1, 3, 2, 0.5}, 0.6, {}},
      {"a slow flow: stretches of x = 0.7 to 4.1, below ln 100",
       {40, 28, 33, 20},
       {2.5, 1, 3, 2, 0.5},
       0.02,
       {}},
      {"no flow: the water stands at the inlet value", {40, 28, 33}, {2, 2, 2, 2}, 0, {10, 10, 10, 10, 10}},
      {"a trickle: every station takes its wall, the outlet the last section's",
       {40, 28, 33},
       {2, 2, 2, 2},
       1e-4,
       {10, 40, 28, 33, 33}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Water_Model m(c.wall, c.distance, c.flow);
    Update_Water_Temperatures(m.p, m.run, 1.0);
    const std::vector<double> expected =
        c.expected.empty() ? Integrated_Water(c.wall, c.distance, Decay_Per_Metre(400, 25, 4180, c.flow), 10)
                           : c.expected;
    ASSERT_EQ(m.water().count(), static_cast<int>(expected.size()));
    for (int k = 1; k <= m.water().count(); ++k)
      EXPECT_NEAR(m.water()[k], expected[static_cast<std::size_t>(k - 1)], 2e-5) << "station " << k;
  }
}

// A 600 x 600 mm block of concrete without heat, cut 6 x 6, with one pipe of 30 mm at its centre,
// insulated, at 40 oC; water of 10 oC flows at `flow` m3/h through two stretches of `stretch` m.
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
  p.Material.add(Concrete("NO H"));
  Circuit& c = p.Circuit[1];
  c.Transfer_Coefficient = 500;
  c.Liquid_Capacity = 4180;
  c.Active_From = 0;
  c.Active_Until = 1000;
  c.Distance = {stretch, stretch};
  p.Temperature_Functions[1].Constant_Value = 10;
  p.Flow_Functions[1].Constant_Value = flow;
  p.Replace_Material = False_Flag;
  p.Result_File_Name = "B.RES";
  Set_Result_Names(p);
  return p;
}

// The heat the concrete lost, kJ per metre of depth: its capacity matrices times the cooling.
double Concrete_Heat_Loss(const Project& p, const test::Result& r) {
  double loss = 0;
  for (int e = 1; e <= p.Mesh_Element.count(); ++e) {
    const Element_Matrix_Set& set = r.run.Element_Matrices[e];
    for (int i = 1; i <= 4; ++i)
      for (int j = 1; j <= 4; ++j) {
        const int node = p.Mesh_Element[e].Corner[j];
        loss += set.C.v[Block_Index(std::min(i, j), std::max(i, j))] * (40 - r.T(node));
      }
  }
  return loss;
}

// The heat the water carried away, kJ: its capacity in kW by the trapezoidal rule over the records.
double Water_Heat_Gain(const Circuit_History& h) {
  double gain = 0;
  for (int k = 2; k <= h.History.count(); ++k)
    gain += (h.History[k - 1].Capacity + h.History[k].Capacity) / 2 *
            (h.History[k].Time - h.History[k - 1].Time) * 3600;
  return gain;
}

TEST(Cooling_Run, TheWaterCarriesAwayTheHeatTheConcreteLoses) {
  // The section stands for a pipe of two equal stretches, 2 L: the concrete loses h pi D (S - Tw)
  // per metre against the water downstream of the first stretch, while the water gains
  // rho c Q (S - Tin)(1 - exp(-x)) over both. For a wall S constant along the pipe the two differ
  // by the factor 2 sinh(x / 2) / x, x = c 2L / v. What remains is the time discretisation of the
  // run: the history books the water of the end of a step, whose walls are the step's mean. It is
  // first order in the step, 0.44 % at 0.1 h and 0.22 % at 0.05 h. With a damped start the first
  // steps take the whole step at the end value, which the trapezoidal sum of the history books at
  // half: 2.6 % and 1.2 %, still halving with the step.
  const double flow = 0.3, stretch = 2;
  const double x = Decay_Per_Metre(500, 30, 4180, flow) * 2 * stretch;
  const double model = 2 * std::sinh(x / 2) / x;
  for (const int damped : {0, 4}) {
    double previous_error = 0;
    for (const double dt : {0.1, 0.05}) {
      SCOPED_TRACE(testing::Message() << "step " << dt << " h, damped start " << damped);
      Project p = Block_With_Pipe(flow, stretch);
      p.Damped_Start_Steps = static_cast<std::int16_t>(damped);
      test::Set_Steps(p, 12, dt, 12);
      const test::Result r = test::Run(p);
      ASSERT_EQ(r.outcome, Run_Outcome::Completed);
      const double concrete = Concrete_Heat_Loss(p, r) * 2 * stretch;
      const double water = Water_Heat_Gain(r.run.Cooling.History[1]);
      ASSERT_GT(concrete, 1000.0);
      const double error = std::fabs(water / concrete / model - 1);
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
  // Pumps off: the block keeps its temperature.
  Project p = Block_With_Pipe(0, 5);
  test::Set_Steps(p, 4, 0.5, 4);
  const test::Result r = test::Run(p);
  ASSERT_EQ(r.outcome, Run_Outcome::Completed);
  for (int node = 1; node <= p.Mesh_Node.count(); ++node)
    ASSERT_NEAR(r.T(node), 40, 1e-5) << node;
}

TEST(Cooling_Run, ClosedCircuitFeedsItsOutletBack) {
  // The inlet function is read at time 0 only: afterwards the water warms towards the concrete.
  Project p = Block_With_Pipe(0.3, 5);
  p.Circuit[1].Closed_Circuit = True_Flag;
  test::Set_Steps(p, 6, 0.25, 6);
  const test::Result r = test::Run(p);
  ASSERT_EQ(r.outcome, Run_Outcome::Completed);
  const Table<History_Record>& h = r.run.Cooling.History[1].History;
  ASSERT_EQ(h.count(), 25);
  for (int k = 3; k <= h.count(); ++k) {
    SCOPED_TRACE(k);
    // The inlet takes the outlet of the pass before the last, within what the iteration settles.
    EXPECT_NEAR(h[k].Water[1], h[k].Water[3], 0.05);
    // The sudden start makes the trapezoidal rule ring from step to step; every other step the
    // water is warmer.
    EXPECT_GT(h[k].Water[1], h[k - 2].Water[1]);
    EXPECT_GT(h[k].Water[1], 20);
  }
}

TEST(Cooling_Run, ACircuitInOperationForPartOfTheRunKeepsThatPart) {
  // In operation from 2.25 to 6 hours of a 10-hour run in half-hour steps: the first record at
  // 2.25 h, then one per step whose middle lies strictly inside (not the step to 2.5 h, whose
  // middle is 2.25), the last at 6 h. Before it the block keeps its temperature.
  Project p = Block_With_Pipe(0.3, 5);
  p.Circuit[1].Active_From = 2.25;
  p.Circuit[1].Active_Until = 6;
  test::Set_Steps(p, 10, 0.5, 1);
  test::Temp_Dir dir;
  test::Result r;
  test::Compute(p, dir, r, 5);  // stopped after 2.5 hours: nothing cooled yet
  ASSERT_EQ(r.outcome, Run_Outcome::Stopped);
  for (int node = 1; node <= p.Mesh_Node.count(); ++node)
    ASSERT_NEAR(r.T(node), 40, 1e-9) << node;

  test::Result whole;
  test::Compute(p, dir, whole);
  ASSERT_EQ(whole.outcome, Run_Outcome::Completed);
  const Table<History_Record>& h = whole.run.Cooling.History[1].History;
  ASSERT_EQ(h.count(), 8);
  EXPECT_DOUBLE_EQ(h[1].Time, 2.25);
  for (int k = 2; k <= 8; ++k)
    EXPECT_DOUBLE_EQ(h[k].Time, 2.5 + 0.5 * (k - 1)) << k;
  EXPECT_GT(h[8].Capacity, 0);

  // The history file holds the same numbers, read here by the test's own tokenizer.
  std::string all = test::Read_Text(dir.file("B.COO"));
  std::replace(all.begin(), all.end(), ',', ' ');
  std::istringstream numbers(all);
  int count = 0;
  numbers >> count;
  ASSERT_EQ(count, 8);
  for (int k = 1; k <= count; ++k) {
    double time = 0, flow = 0, capacity = 0, water[3] = {};
    numbers >> time >> flow >> capacity >> water[0] >> water[1] >> water[2];
    ASSERT_TRUE(numbers) << k;
    EXPECT_DOUBLE_EQ(time, h[k].Time);
    EXPECT_FLOAT_EQ(static_cast<float>(flow), 0.3f);
    // Capacity = (outlet - inlet) x flow x liquid capacity / 3600, in kW.
    EXPECT_NEAR(capacity, (water[2] - water[0]) * 0.3 * 4180 / 3600, 1e-4);
    for (int st = 0; st < 3; ++st)
      EXPECT_FLOAT_EQ(static_cast<float>(water[st]), h[k].Water[st + 1]);
  }
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
  // Water of 10 oC starts at once in a block of 40 oC. In half-hour steps the trapezoidal rule
  // overshoots: the wall round the pipe goes below the water. Four backward Euler steps at the
  // start, and again when the circuit stops and starts, keep every node above it, and the heat
  // balance holds as before.
  struct Case {
    int damped;
    bool overshoots;
  };
  for (const Case c : {Case{0, true}, Case{4, false}}) {
    SCOPED_TRACE(c.damped);
    Project p = Block_With_Pipe(0.3, 2);
    p.Damped_Start_Steps = static_cast<std::int16_t>(c.damped);
    p.Circuit[1].Active_Until = 3;
    test::Set_Steps(p, 6, 0.5, 6);
    const test::Result r = test::Run(p);
    ASSERT_EQ(r.outcome, Run_Outcome::Completed);
    EXPECT_EQ(r.coldest < 10, c.overshoots) << r.coldest;
  }
}

}  // namespace
}  // namespace pvx
