// The moisture field: a slab drying from one face against the series solution of the diffusion
// equation, sealed specimens whose water balances, and the laws and borders that drive it.
#include "analysis/moisture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "analysis_fixtures.h"
#include "app/project_file.h"
#include "design/time_function.h"
#include "material/properties.h"
#include "mesh/mesh_fixtures.h"

namespace pvx {
namespace {

using test::Strip;

// A concrete with a constant diffusion D (m2/h) and the isotherm of w/c 0.5 and 350 kg of cement at
// 20 oC, with a fixed degree of hydration unless `hydration` makes it follow the heat model.
Material Hygral(double D, bool hydration = false) {
  Material m = test::Heating(hydration ? "CORE" : "NO H", 110000, 0.08f, 0, 4);
  m.Has_Hygral = true;
  m.W_C = 0.5, m.Cement = 350, m.H_Limit = 1.00001, m.Diffusion_1 = D, m.Fixed_Temperature = 20;
  m.Hydration_Dependent = hydration;
  m.Default_Hydration = 0.7, m.Consumption_Factor = 0.23;
  return m;
}

// A slab 200 mm thick as a row of 40 elements of 5 mm, at potential 1, drying at x = 0 into air of
// potential 0.5 with the transfer coefficient c (m/h); the other faces are sealed.
Project Drying_Slab(const Material& m, double c, double hours, double dt = 0.5) {
  Project p = Strip(40, 5, m, 20);
  p.Potential_Functions[1].Constant_Value = 0.5;
  test::Add_Hygral_Border(p, 2, 1, Hygral_Period{0, 1000, 1, c});
  test::Set_Steps(p, hours, dt, hours);
  return p;
}

// The water the slab lost through its face, in potential x m: the mass matrices against the drop.
double Loss(Project p) {
  const test::Result r = test::Run(p);
  EXPECT_EQ(r.outcome, Run_Outcome::Completed);
  double loss = 0;
  for (int e = 1; e <= p.Mesh_Element.count(); ++e)
    for (int i = 1; i <= 4; ++i)
      for (int j = 1; j <= 4; ++j) {
        const int k = r.run.Numbering.Node_Equation[p.Mesh_Element[e].Corner[j]];
        loss += r.run.Element_Matrices[e].M.v[Block_Index(i, j)] * (1 - r.run.Moisture_New[k]);
      }
  return loss / 0.005;  // per square metre of face: the strip is 5 mm high
}

TEST(Moisture_Run, ASlabDriesAsTheSeriesSolutionOfTheDiffusionEquation) {
  // A surface of Biot number Bi = c L / D and a sealed back: theta = sum C_n cos(b_n (1 - x / L))
  // exp(-b_n^2 Fo), b tan b = Bi. D = 1e-5 m2/h, L = 0.2 m, c = 2.5e-4 m/h: Bi = 5, Fo = 0.025.
  const double D = 1e-5, L = 0.2, c = 2.5e-4, hours = 100, Fo = D * hours / (L * L);
  std::vector<double> beta;
  for (int n = 0; n < 200; ++n) {
    double low = n * std::numbers::pi + 1e-12, high = low + std::numbers::pi / 2 - 2e-12;
    for (int i = 0; i < 200; ++i)
      ((low + high) / 2 * std::tan((low + high) / 2) < c * L / D ? low : high) = (low + high) / 2;
    beta.push_back((low + high) / 2);
  }
  auto series = [&](auto term) {
    double sum = 0;
    for (double b : beta)
      sum += 4 * std::sin(b) / (2 * b + std::sin(2 * b)) * term(b) * std::exp(-b * b * Fo);
    return sum;
  };
  Project p = Drying_Slab(Hygral(D), c, hours);
  const test::Result r = test::Run(p);
  ASSERT_EQ(r.outcome, Run_Outcome::Completed);
  double worst = 0;
  for (int i = 0; i <= 40; ++i) {
    const double expected = 0.5 + 0.5 * series([&](double b) { return std::cos(b * (1 - 0.005 * i / L)); });
    for (int node : {2 * i + 1, 2 * i + 2})
      worst = std::max(worst, std::fabs(r.run.Moisture_New[r.run.Numbering.Node_Equation[node]] - expected));
  }
  EXPECT_LT(worst, 1e-3);
  const double lost = 0.5 * L * (1 - series([](double b) { return std::sin(b) / b; }));
  EXPECT_NEAR(Loss(p), lost, 0.005 * lost);
}

TEST(Moisture_Run, TheAirActsWithItsPotentialOfTheMiddleOfTheStep) {
  // One step of 2 hours with the air drying from 1 to 0 over 10 hours gives the field of air held
  // at 0.9, its value at 1 hour.
  std::vector<double> fields[2];
  for (int ramp = 0; ramp < 2; ++ramp) {
    Project p = Drying_Slab(Hygral(1e-5), 0.05, 2, 2);
    Function& f = p.Potential_Functions[1];
    f.Constant_Value = 0.9;
    if (ramp) {
      Set_Function_Form(f, Function_Form::Piecewise);
      f.Point_Time = {0, 10};
      f.Point_Value = {1, 0};
    }
    fields[ramp] = test::Run(p).run.Moisture_New.data();
  }
  EXPECT_EQ(fields[0], fields[1]);
  EXPECT_LT(*std::min_element(fields[0].begin(), fields[0].end()), 0.99);

  // A face that passes water almost freely into air of potential 0: the trapezoidal rule throws
  // the face below 0 in the first step, and a potential below 0 is set to 0.
  Project p = Drying_Slab(Hygral(1e-5), 1e3, 1, 1);
  p.Potential_Functions[1].Constant_Value = 0;
  const Table<double> h = test::Run(p).run.Moisture_New;
  EXPECT_EQ(*std::min_element(h.begin(), h.end()), 0.0);
}

// The evaporable water of the isotherm plus the water the hydration bound, kg/m3, at the end of
// the run against the start: a sealed specimen neither gains nor loses water. The source of a step
// is linear in the step's change of potential, so the balance holds to first order in the step:
// 1.12 kg/m3 at quarter-hour steps and 0.57 at eighth-hour steps (of 56 kg/m3 bound).
TEST(Moisture_Run, ASealedSpecimenLosesPotentialByTheWaterHydrationBinds) {
  Material air = Hygral(1e-5);
  air.Air = 1.5;  // percent of the volume: 15 kg of water per m3 when full
  EXPECT_DOUBLE_EQ(Air_Water(air), 15);
  const Material formula = Hygral(1e-5, true);
  auto water = [&](double a, double potential) {
    return Isotherm_Water(formula.W_C, formula.Cement, std::max(a, 0.15), 20, 0, formula.H_Limit, potential) +
           a * formula.Cement * formula.Consumption_Factor;
  };
  double previous = 0;
  // The step; whether the isotherm is a table, tabulated from the formula finely in h.
  for (const auto& [dt, table] : {std::pair{0.25, false}, {0.125, false}, {0.125, true}}) {
    SCOPED_TRACE(testing::Message() << "step " << dt << (table ? ", isotherm table" : ""));
    Material m = formula;
    if (table) {
      Isotherm_Grid& g = m.Isotherm_Table_Data;
      g.Temperature = {10, 30};
      for (int j = 0; j <= 17; ++j)
        g.Hydration.add(0.15 + 0.05 * j);
      for (int k = 0; k <= 200; ++k)
        g.Potential.add(0.005 * k);
      for (double T : g.Temperature)
        for (double a : g.Hydration)
          for (double h : g.Potential)
            g.Value.push_back(Isotherm_Water(m.W_C, m.Cement, a, T, m.Air, m.H_Limit, h));
      m.Isotherm_Table = true;
    }
    Project p = Strip(1, 100, m, 20);
    test::Set_Steps(p, 72, dt, 72);
    const test::Result r = test::Run(p);
    ASSERT_EQ(r.outcome, Run_Outcome::Completed);
    const double h = r.run.Moisture_New[1], alpha = Point(r.run, 1, 1).Hydration_New;
    ASSERT_GT(alpha, 0.5);
    EXPECT_LT(h, 0.98);
    const double error = std::fabs(water(alpha, h) - water(0, 1));
    EXPECT_LT(error, 5 * dt);
    if (table) continue;
    if (previous > 0) {
      EXPECT_LT(error, 0.6 * previous);
    }
    previous = error;
  }
}

TEST(Moisture_Run, APointTakesThePotentialOfItsCornersByTheShapeFunctions) {
  // Potential 1 on the element's left corners and 0.6 on its right ones (the second element's
  // start), with no diffusion to speak of: point 1, by corner 1, holds the water of
  // h = 0.622 x 1 + 0.167 x (0.6 + 1) + 0.044 x 0.6 = 0.9156, point 2 that of 0.6844.
  Material m = Hygral(1e-12);
  Project p = Strip(2, 100, m, 20);
  p.Mesh_Element[2].Potential = 0.6f;
  test::Set_Steps(p, 1, 1, 1);
  const test::Result r = test::Run(p);
  ASSERT_EQ(r.outcome, Run_Outcome::Completed);
  const double expected[2] = {0.622 + 0.167 * 1.6 + 0.044 * 0.6, 0.622 * 0.6 + 0.167 * 1.6 + 0.044};
  for (int i = 1; i <= 2; ++i)
    EXPECT_NEAR(Point(r.run, 1, i).Water_New,
                Isotherm_Water(m.W_C, m.Cement, m.Default_Hydration, 20, 0, m.H_Limit, expected[i - 1]), 1e-4)
        << i;
}

TEST(Moisture_Run, WaterPressureOnAnElementNotYetCastDoesNothing) {
  // The second of two elements is cast at 50 hours, with a water level of 10 m on its far side from
  // the start: the same field as without the pressure, and its own node keeps its value.
  Material m = Hygral(1e-5);
  m.Saturated_Flow_Active = true;
  m.Saturated_Permeability = 1e-3;
  std::vector<double> fields[2];
  for (int with_pressure = 0; with_pressure < 2; ++with_pressure) {
    Project p = Strip(2, 100, m, 20);
    p.Mesh_Element[2].Present_From = 50;
    if (with_pressure) test::Add_Hygral_Border(p, 5, 6, Hygral_Period{0, 1000, 1, 1e-8, True_Flag, 1, 2, 10});
    test::Set_Steps(p, 10, 1, 10);
    const test::Result r = test::Run(p);
    ASSERT_EQ(r.outcome, Run_Outcome::Completed);
    for (int node = 1; node <= 6; ++node)
      fields[with_pressure].push_back(r.run.Moisture_New[r.run.Numbering.Node_Equation[node]]);
  }
  EXPECT_EQ(fields[0], fields[1]);
  EXPECT_DOUBLE_EQ(fields[0][4], 1.0);
}

TEST(Moisture_Run, EarlyDryingLossGrowsWithTheSquareRootOfTime) {
  // A face open to the air (Bi = 1000): the loss is 2 (h0 - ha) sqrt(D t / pi) while the drying has
  // not reached the back; Bazant's law (D0, ht 0.75, a 0.05), which slows as h falls, dries less
  // than its D0 held constant and more than its lowest value a D0.
  const double D = 1e-5;
  for (const double hours : {25.0, 100.0})
    EXPECT_NEAR(Loss(Drying_Slab(Hygral(D), 0.05, hours)), std::sqrt(D * hours / std::numbers::pi),
                0.03 * std::sqrt(D * 25 / std::numbers::pi))
        << hours;
  Material bazant = Hygral(D);
  bazant.Diffusion_Bazant = true;
  bazant.Diffusion_2 = 0.75;
  bazant.Diffusion_3 = 0.05;
  const double bazant_loss = Loss(Drying_Slab(bazant, 0.05, 100));
  EXPECT_LT(bazant_loss, 0.9 * Loss(Drying_Slab(Hygral(D), 0.05, 100)));
  EXPECT_GT(bazant_loss, 1.1 * Loss(Drying_Slab(Hygral(0.05 * D), 0.05, 100)));
}

TEST(Moisture_Run, ADryingSlabComputesTheSameAfterASaveAndARead) {
  // A slab drawn as a macro, drying through its design border, meshed in 20 strips. Computed,
  // written and read (as the current version and as version 100), computed again: the result files
  // are the same byte for byte, and the slab has dried.
  Project p = test::Square(200);
  Border face = test::On_Side<Border>(4, 1);
  face.Hygral_Active = True_Flag;
  face.Hygral_Periods.add(Hygral_Period{0, 8768, 1, 1e-3});
  p.Border.add(face);
  p.Macro[1].Material = "concrete";
  Mesh_Session s = test::Meshed(p);
  ASSERT_EQ(test::Cut(p, s, 1, 1, 20), "");
  p.Material.add(Hygral(1e-5));
  p.Potential_Functions[1].Constant_Value = 0.5;
  p.Replace_Material = False_Flag;
  p.Result_File_Name = "S.RES";
  Set_Result_Names(p);
  test::Set_Steps(p, 48, 1, 12);
  test::Temp_Dir first;
  test::Result r;
  test::Compute(p, first, r);
  EXPECT_LT(*std::min_element(r.run.Moisture_New.begin(), r.run.Moisture_New.end()), 0.8);
  for (const int version : {Save_Version(p), 100}) {
    SCOPED_TRACE(version);
    Project back;
    std::string database;
    Read_Report report;
    ASSERT_TRUE(Parse_Project_Text(Write_Project_Text(p, version, "DB.txt"), back, database, report));
    back.Material = p.Material;  // as the database gives it
    test::Temp_Dir again;
    test::Result r2;
    test::Compute(back, again, r2);
    for (const char* name : {"S.RES", "S.REA", "S.REB", "S.REC", "S.RED", "S.REE", "S.REF", "S.REH"})
      EXPECT_EQ(test::Read_Text(again.file(name)), test::Read_Text(first.file(name))) << name;
  }
}

}  // namespace
}  // namespace pvx
