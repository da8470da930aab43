#include "analysis/driver.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <numbers>

#include "results/result_files.h"
#include "support/temp_dir.h"

namespace pvx {
namespace {

// A row of `n` square elements of `size` mm along X, one macro, nodes 1..n+1 below and above.
Project Strip(int n, double size, const Material& material, double T0) {
  Project p;
  New_Project(p);
  p.Material.add(material);
  Macro m;
  m.Material = material.Name;
  m.Corner = {{1, 2, 3, 4}};
  m.Temperature = static_cast<float>(T0);
  m.Thickness = 1000;
  p.Macro.add(m);
  for (int i = 0; i <= n; ++i) {
    p.Mesh_Node.add(Mesh_Node{size * i, 0});
    p.Mesh_Node.add(Mesh_Node{size * i, size});
  }
  for (int i = 1; i <= n; ++i) {
    Mesh_Element e;
    static_cast<Macro_Values&>(e) = m;
    e.Material = material.Name;
    e.Macro_Number = 1;
    const auto a = static_cast<std::int16_t>(2 * i - 1);
    e.Corner = {{a, static_cast<std::int16_t>(a + 2), static_cast<std::int16_t>(a + 3),
                 static_cast<std::int16_t>(a + 1)}};
    p.Mesh_Element.add(e);
  }
  p.Replace_Material = False_Flag;
  p.Result_File_Name = "T.RES";
  Set_Result_Names(p);
  return p;
}

Material Concrete(const std::string& heat_model) {
  Material m;
  m.Name = "concrete";
  m.Has_Thermal = true;
  m.Capacity_Wet = 2400;      // kJ/m3K
  m.Conductivity_Wet = 2.5f;  // W/mK
  m.Heat_Model = heat_model;
  return m;
}

void Set_Steps(Project& p, double until, double increment, double storage) {
  p.Computation_Time = until;
  p.Period.clear();
  p.Period.add(Period{0, until, storage, increment});
}

class Recorder : public Analysis_Host {
 public:
  std::vector<std::string> messages;
  std::vector<Step_Report> steps;
  std::function<void(const Step_Report&)> on_step;
  int stop_after = -1;
  void Show_Message(const std::string& text, Message_Kind) override { messages.push_back(text); }
  void Report_Step(const Step_Report& r) override {
    steps.push_back(r);
    if (on_step) on_step(r);
  }
  bool Stop_Requested() override { return stop_after >= 0 && static_cast<int>(steps.size()) >= stop_after; }
};

struct Result {
  Run_Outcome outcome;
  Run_State run;
  Recorder host;
};

Result Compute(Project& p, const test::Temp_Dir& dir, std::function<void(const Step_Report&)> on_step = {}) {
  Result r;
  r.host.on_step = std::move(on_step);
  std::string message;
  r.outcome = Run_Analysis(p, r.run, r.host, dir.path().string(), message);
  return r;
}

double Node_Temperature(const Run_State& run, int node) {
  return run.Temperature_New[run.Numbering.Node_Equation[node]];
}

TEST(Run_Analysis, AdiabaticRiseWithConstantHeat) {
  test::Temp_Dir dir;
  Material m = Concrete("CONS");
  m.Heat_H = 120;  // kJ/m3 per hour
  Project p = Strip(3, 500, m, 15);
  Set_Steps(p, 24, 1, 6);
  std::vector<double> mean_at_step;
  Result r = Compute(p, dir);
  ASSERT_EQ(r.outcome, Run_Outcome::Completed);
  // No border: all heat stays. dT/dt = H / c, whatever the mesh.
  for (int node = 1; node <= p.Mesh_Node.count(); ++node)
    EXPECT_NEAR(Node_Temperature(r.run, node), 15 + 120.0 * 24 / 2400, 1e-9) << node;
  EXPECT_EQ(Storage_Count(r.run.Index), 5);  // the initial state and every 6 hours
  EXPECT_EQ(r.host.steps.size(), 24u);
}

TEST(Run_Analysis, AdiabaticRiseFollowsTheMaturityOfTheConcrete) {
  // CORE heat with an Arrhenius maturity: dT/dt = (H/c) dF/dM f(T), F = a(M-d)/(1+a(M-d)).
  // Integrated independently with a fine Runge-Kutta scheme.
  test::Temp_Dir dir;
  Material m = Concrete("CORE");
  m.Heat_H = 110000;
  m.Heat_a = 0.08f;
  m.Heat_d = 4;
  m.Has_Maturity_Law = true;
  m.Arrhenius_Active = true;
  m.Q_Over_R = 4000;
  m.T_Reference = 293;
  Project p = Strip(2, 500, m, 12);
  Set_Steps(p, 96, 0.25, 24);
  Result r = Compute(p, dir);
  ASSERT_EQ(r.outcome, Run_Outcome::Completed);

  const double H = m.Heat_H, a = m.Heat_a, d = m.Heat_d, c = m.Capacity_Wet;
  auto rhs = [&](double T, double M, double& dT, double& dM) {
    dM = std::exp(4000.0 * (1 / 293.0 - 1 / (T + 273)));
    const double x = a * (M - d);
    dT = M > d ? H / c * a / ((1 + x) * (1 + x)) * dM : 0;
  };
  double T = 12, M = 0;
  const double h = 0.001;
  for (int k = 0; k < 96000; ++k) {
    double k1T, k1M, k2T, k2M, k3T, k3M, k4T, k4M;
    rhs(T, M, k1T, k1M);
    rhs(T + h / 2 * k1T, M + h / 2 * k1M, k2T, k2M);
    rhs(T + h / 2 * k2T, M + h / 2 * k2M, k3T, k3M);
    rhs(T + h * k3T, M + h * k3M, k4T, k4M);
    T += h / 6 * (k1T + 2 * k2T + 2 * k3T + k4T);
    M += h / 6 * (k1M + 2 * k2M + 2 * k3M + k4M);
  }
  // The passes stop at a change of 0.01 degrees and the maturity takes the mean temperature of a
  // step: with steps of 0.25 h this agrees to a few thousandths of a degree over a rise of 40.
  EXPECT_GT(T - 12, 30);
  EXPECT_NEAR(Node_Temperature(r.run, 1), T, 0.002);
  EXPECT_NEAR(Point(r.run, 1, 1).Maturity_New, M, 0.05);
}

TEST(Run_Analysis, HeatBalanceOfAnInsulatedBody) {
  // DANI heat, real-time maturity: the heat released equals the heat stored, c (T - T0) V.
  test::Temp_Dir dir;
  Material m = Concrete("DANI");
  m.Heat_H = 100000;
  m.Heat_a = 15;
  m.Heat_b = 1.2f;
  Project p = Strip(4, 250, m, 20);
  Set_Steps(p, 48, 0.5, 48);
  Result r = Compute(p, dir);
  ASSERT_EQ(r.outcome, Run_Outcome::Completed);
  const double released = m.Heat_H * std::exp(-std::pow(m.Heat_a / 48.0, static_cast<double>(m.Heat_b)));
  EXPECT_NEAR(Node_Temperature(r.run, 5), 20 + released / m.Capacity_Wet, 1e-6);
  EXPECT_NEAR(Point(r.run, 2, 3).Hydration_New, released / m.Heat_H, 1e-6);
}

TEST(Run_Analysis, AdiabaticRiseFollowsTheTableOfAPiecewiseMaterial) {
  // PIWI: the table is the adiabatic temperature rise against maturity, so with real-time maturity
  // and a constant capacity the temperature reproduces the table itself, between its points too.
  test::Temp_Dir dir;
  Material m = Concrete("PIWI");
  m.Heat_Table_Time = {0, 10, 24, 72};
  m.Heat_Table_Rise = {0, 8, 30, 42};
  m.Heat_H = 42 * 2400;
  Project p = Strip(2, 300, m, 18);
  Set_Steps(p, 40, 0.5, 40);
  Result r = Compute(p, dir);
  ASSERT_EQ(r.outcome, Run_Outcome::Completed);
  EXPECT_NEAR(Node_Temperature(r.run, 3), 18 + 30 + 12.0 * 16 / 48, 1e-9);
  EXPECT_NEAR(Point(r.run, 1, 2).Hydration_New, (30 + 12.0 * 16 / 48) / 42, 1e-12);
}

TEST(Run_Analysis, UniformFieldStaysUniformUnderEqualAir) {
  test::Temp_Dir dir;
  Project p = Strip(3, 400, Concrete("NO H"), 20);
  // Convection on every outer side, air at 20 oC.
  const int n = 3;
  auto border = [&](int a, int b) {
    Border br;
    br.Node_A = static_cast<std::int16_t>(a);
    br.Node_B = static_cast<std::int16_t>(b);
    br.Thermal_Active = True_Flag;
    Thermal_Period t = p.Thermal_Period_Default;
    t.Until = 100;
    t.Radiation_On = False_Flag;
    br.Thermal_Periods.add(t);
    p.Mesh_Border.add(br);
  };
  for (int i = 1; i <= n; ++i) {
    border(2 * i - 1, 2 * i + 1);
    border(2 * i + 2, 2 * i);
  }
  border(2, 1);
  border(2 * n + 1, 2 * n + 2);
  Set_Steps(p, 10, 1, 5);
  Result r = Compute(p, dir);
  ASSERT_EQ(r.outcome, Run_Outcome::Completed);
  for (int node = 1; node <= p.Mesh_Node.count(); ++node)
    EXPECT_NEAR(Node_Temperature(r.run, node), 20, 1e-10);
}

TEST(Run_Analysis, NewtonCoolingOfASmallConvectiveBlock) {
  // One 100 mm block, very conductive, convection h on all four sides: lumped cooling
  // T = Ta + (T0 - Ta) exp(-3.6 h P t / (c A)), P the perimeter and A the area (both in m).
  test::Temp_Dir dir;
  Material m = Concrete("NO H");
  m.Conductivity_Wet = 1000;
  Project p = Strip(1, 100, m, 60);
  const int sides[4][2] = {{1, 3}, {3, 4}, {4, 2}, {2, 1}};
  for (const auto& s : sides) {
    Border b;
    b.Node_A = static_cast<std::int16_t>(s[0]);
    b.Node_B = static_cast<std::int16_t>(s[1]);
    b.Thermal_Active = True_Flag;
    Thermal_Period t;
    t.Until = 1000;
    t.Convection_Coefficient = 10;
    t.Radiation_On = False_Flag;
    b.Thermal_Periods.add(t);
    p.Mesh_Border.add(b);
  }
  p.Temperature_Functions[1].Constant_Value = 20;
  Set_Steps(p, 20, 0.05, 20);
  Result r = Compute(p, dir);
  ASSERT_EQ(r.outcome, Run_Outcome::Completed);
  const double rate = 3.6 * 10 * 0.4 / (2400 * 0.01);
  const double expected = 20 + 40 * std::exp(-rate * 20);
  EXPECT_NEAR(Node_Temperature(r.run, 1), expected, 1e-4);
}

TEST(Run_Analysis, SlabConductionAgainstItsSeriesSolution) {
  // A 1 m strip in 40 elements, x = 0 held at 0 by a prescribed line, the other faces insulated,
  // starting at 100: T = sum 400/((2k+1) pi) sin(lambda x) exp(-lambda^2 alpha t), lambda =
  // (2k+1) pi / 2L. The hold is a penalty of 1000 on the row, so the end is not exactly 0; with
  // 25 mm elements and 0.1 h steps the field agrees to some hundredths of a degree.
  test::Temp_Dir dir;
  Material m = Concrete("NO H");
  m.Conductivity_Wet = 2.0f;
  m.Capacity_Wet = 2000;  // alpha = 3.6 * 2 / 2000 m2/h
  const int n = 40;
  Project p = Strip(n, 25, m, 100);
  p.Temperature_Functions[1].Constant_Value = 0;
  for (int node : {1, 2})
    p.Prescribed_Node.add(Prescribed_Node{1, node, 0, 1e6});
  Set_Steps(p, 24, 0.1, 24);
  Result r = Compute(p, dir);
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
  for (int i : {4, 10, 20, 40}) {
    const double x = i * 0.025;
    EXPECT_NEAR(Node_Temperature(r.run, 2 * i + 1), exact(x), 0.1) << x;
  }
}

TEST(Run_Analysis, StopEndsAtTheTopOfAStepWithClosedReadableFiles) {
  test::Temp_Dir dir;
  Material m = Concrete("CONS");
  m.Heat_H = 10;
  Project p = Strip(2, 500, m, 20);
  Set_Steps(p, 20, 1, 2);
  Result r;
  r.host.stop_after = 7;
  std::string message;
  r.outcome = Run_Analysis(p, r.run, r.host, dir.path().string(), message);
  EXPECT_EQ(r.outcome, Run_Outcome::Stopped);
  EXPECT_EQ(r.host.steps.size(), 7u);
  // Storages at 0, 2, 4, 6: the family reads back with exactly those.
  Run_Index index;
  std::string read_message;
  ASSERT_TRUE(Read_Run_Index_File(dir.file("T.RES"), 108, false, index, read_message)) << read_message;
  EXPECT_EQ(Storage_Count(index), 4);
  EXPECT_EQ(index.Storage_Time[4], 6);
}

TEST(Run_Analysis, AZeroPivotEndsItsVariantAndTheNextVariantRuns) {
  // Two 1 m elements; in variant 1 the second one is of a material with neither capacity nor
  // conduction, so its two outer nodes (5 and 6) have nothing of their own. A prescribed point on
  // their side gives them the block q [1 1; 1 1] (q = 1000 x the element's largest diagonal / 4):
  // the second of the two pivots reduces to exactly q - q = 0, and the next column, coupled to
  // it through the element, meets it. Variant 2 gives the element an ordinary concrete.
  test::Temp_Dir dir;
  Material good = Concrete("NO H");
  Material empty = Concrete("NO H");
  empty.Name = "empty";
  empty.Capacity_Wet = 0;
  empty.Conductivity_Wet = 0;
  Project p = Strip(2, 1000, good, 20);
  p.Material.add(empty);
  p.Point_T.add(Point_T{0, 1e6, 1, 2000, 500, 2, 1.0, 0.5});  // element 2, on the side of nodes 5 and 6
  p.Replace_Material = True_Flag;
  p.Run_Material.clear();
  p.Run_Material.add(2);
  p.Run_Material.add(1);
  p.Element_Replaced = {false, true};
  Set_Result_File_Names(p);
  Set_Steps(p, 4, 1, 1);
  Result r = Compute(p, dir);
  EXPECT_EQ(r.outcome, Run_Outcome::Failed);
  ASSERT_EQ(r.host.messages.size(), 1u);
  EXPECT_EQ(r.host.messages[0], "Error division by zero in solver");
  Run_Index first, second;
  std::string read_message;
  // Variant 1 keeps its initial storage, closed and readable; variant 2 ran every step.
  ASSERT_TRUE(Read_Run_Index_File(dir.file("T.RES"), 108, false, first, read_message)) << read_message;
  EXPECT_EQ(Storage_Count(first), 1);
  ASSERT_TRUE(Read_Run_Index_File(dir.file("T2.RES"), 108, false, second, read_message)) << read_message;
  EXPECT_EQ(Storage_Count(second), 5);
  EXPECT_EQ(r.host.steps.size(), 4u);  // the steps reported are those of variant 2
}

}  // namespace
}  // namespace pvx
