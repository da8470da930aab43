// The material viewer's curves of the example database against values worked out by hand from the
// database text and the laws as written, and their picture on the recording surface.
#include "analysis/material_curves.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "material/database.h"
#include "material/properties.h"
#include "results/plot.h"
#include "results/viewer_plot.h"
#include "support/recording_surface.h"
#include "support/temp_dir.h"

namespace pvx {
namespace {

using P = Material_Property;
using Points = std::vector<std::pair<double, double>>;

constexpr double Ksi_Per_MPa = 645.16 / 4448.2216152605;
constexpr double Btu_yd3_Per_kJ_m3 = 0.764554857984 / 1.05505585262;

const Table<Material>& Example() {
  static const Table<Material> materials = [] {
    Table<Material> m;
    Table<std::int32_t> colours;
    std::string message;
    EXPECT_TRUE(Read_Material_Database(test::Source_Path("examples/PVX-Concrete.txt"), m, colours, message))
        << message;
    return m;
  }();
  return materials;
}

const Material& Named(const std::string& name) {
  for (const Material& m : Example())
    if (m.Name.rfind(name, 0) == 0) return m;
  ADD_FAILURE() << "no material " << name;
  static const Material none;
  return none;
}

// The value of a curve at a sampled x (which must be one).
double At(const Curve_Series& s, double x) {
  for (std::size_t i = 0; i < s.X.size(); ++i)
    if (std::abs(s.X[i] - x) <= 1e-9 * (1 + std::abs(x))) return s.Y[i];
  ADD_FAILURE() << "x = " << x << " is not sampled";
  return NAN;
}

void Expect_Near(double actual, double expected, double relative, const std::string& where) {
  EXPECT_NEAR(actual, expected, relative * std::max(std::abs(expected), 1e-300)) << where;
}

// Linear between the points, the end values held beyond them: the table lookup as the text says it.
double Interpolated(const Points& p, double x) {
  if (x <= p.front().first) return p.front().second;
  for (std::size_t i = 1; i < p.size(); ++i)
    if (x <= p[i].first)
      return p[i - 1].second +
             (p[i].second - p[i - 1].second) * (x - p[i - 1].first) / (p[i].first - p[i - 1].first);
  return p.back().second;
}

TEST(MaterialCurves, ConstantTablesAreFlatLinesWithTheirCaption) {
  struct Case {
    const char* material;
    P property;
    bool metric;
    double value;
    const char* y_title;
  } cases[] = {
      {"C30/37", P::Nu, true, 0.2, "Poisson ratio [-]"},
      {"Existing", P::E, false, 33000 * Ksi_Per_MPa, "Modulus of elasticity [ksi]"},
      {"C30/37", P::Thermal_Dilatation, false, 1e-5 / 1.8, "Thermal dilatation coefficient [1/oF]"},
      {"B500B", P::Steel_Dilatation, true, 1.2e-5, "Thermal dilatancy [1/oC]"},
  };
  for (const Case& k : cases) {
    const std::string where = std::string(k.material) + " " + Property_Name(k.property);
    const Material_Curve c = Material_Curve_Of(Named(k.material), k.property, k.metric);
    ASSERT_EQ(c.Series.size(), 1u) << where;
    EXPECT_EQ(c.Series[0].Y.size(), static_cast<std::size_t>(Curve_Intervals + 1)) << where;
    for (double y : c.Series[0].Y)
      Expect_Near(y, k.value, 1e-6, where);
    EXPECT_EQ(c.Y_Title, k.y_title) << where;
  }
}

TEST(MaterialCurves, MaturityTablesInterpolateLinearlyBetweenTheirPoints) {
  // The points as the database text gives them, in hours (the slag cement's tables are held in
  // weighted maturity and shown in hours at 20 oC again).
  struct Case {
    const char* material;
    P property;
    bool metric;
    Points points;
    double tolerance;
  } cases[] = {
      {"C30/37",
       P::E,
       true,
       {{6, 500}, {12, 12000}, {24, 20000}, {72, 27000}, {168, 30000}, {672, 33000}},
       1e-6},
      {"C30/37", P::Fc, false, {{6, 0.5}, {12, 5}, {24, 12}, {72, 24}, {168, 32}, {672, 38}}, 1e-6},
      {"C35/45", P::E, true, {{12, 4000}, {24, 12000}, {72, 24000}, {168, 30000}, {672, 35000}}, 1e-5},
      {"C35/45", P::Autogeneous_Dilatation, true, {{0, 0}, {24, -2e-5}, {168, -5e-5}, {672, -8e-5}}, 1e-5},
      {"C25/30", P::E_Mod_B, true, {{12, 20000}, {24, 50000}, {168, 90000}, {672, 110000}}, 1e-6},
  };
  for (const Case& k : cases) {
    const std::string where = std::string(k.material) + " " + Property_Name(k.property);
    const Material_Curve c = Material_Curve_Of(Named(k.material), k.property, k.metric);
    const double factor = k.metric || k.property == P::Autogeneous_Dilatation ? 1 : Ksi_Per_MPa;
    ASSERT_EQ(c.Series.size(), 1u) << where;
    const Curve_Series& s = c.Series[0];
    EXPECT_GE(s.X.size(), static_cast<std::size_t>(Curve_Intervals + 1)) << where;
    EXPECT_EQ(s.X.front(), 0) << where;
    EXPECT_EQ(s.X.back(), 700) << where;  // 28 days, rounded up to the axis
    for (std::size_t i = 0; i < s.X.size(); ++i)
      EXPECT_NEAR(s.Y[i], factor * Interpolated(k.points, s.X[i]),
                  k.tolerance * factor * std::abs(k.points.back().second))
          << where << " at " << s.X[i];
    ASSERT_EQ(c.Mark_X.size(), k.points.size()) << where;
    for (std::size_t i = 0; i < k.points.size(); ++i) {
      EXPECT_NEAR(c.Mark_X[i], k.points[i].first, 1e-4) << where;
      Expect_Near(c.Mark_Y[i], factor * k.points[i].second, 1e-6, where);
      Expect_Near(At(s, c.Mark_X[i]), c.Mark_Y[i], 1e-6, where + " (corner)");
    }
  }
}

TEST(MaterialCurves, TemperatureTableReadsAgainstTemperatureInBothSystems) {
  Material m;
  m.Name = "Hand-made";
  m.Has_Mechanical = true;
  m.Model_Name = "Linear Elastic";
  m.Thermal_Dilatation.Depends_On_Temperature = true;
  m.Thermal_Dilatation.Abscissa = {0, 40};
  m.Thermal_Dilatation.Value = {1e-5f, 1.4e-5f};
  struct Case {
    bool metric;
    double x;  // oC or oF
    double value;
  } cases[] = {{true, -10, 1e-5}, {true, 29, 1.29e-5}, {true, 50, 1.4e-5}, {false, 68, 1.2e-5 / 1.8}};
  for (const Case& k : cases) {
    const Material_Curve c = Material_Curve_Of(m, P::Thermal_Dilatation, k.metric);
    EXPECT_EQ(c.X_Title, k.metric ? "Temperature [oC]" : "Temperature [oF]");
    ASSERT_EQ(c.Series.size(), 1u);
    Expect_Near(At(c.Series[0], k.x), k.value, 1e-6, "at " + std::to_string(k.x));
  }
}

// The value of a curve at a sampled point against the law worked out by hand from the database.
TEST(MaterialCurves, PointsOfTheLawsAgainstTheirFormulas) {
  constexpr double Btu_hftF_Per_W_mK = 0.5777893;
  constexpr double Phi_Factor = 0.960479058875367, Tan_Phi = 0.7001922804288622;
  const struct {
    const char* material;
    P property;
    bool metric;
    std::size_t series;
    double x, value;
    double tolerance = 1e-6;  // of the value, at least 1
  } cases[] = {
      // CORE: H a (M - d) / (1 + a (M - d)) with H 132000, a 0.06, d 4: at 14 hours 0.6 / 1.6 of H.
      // DANI: H exp(-(a/M)^b) with H 108800, a 40, b 0.9. PIWI: the wet capacity 2450 times the rise.
      {"C30/37", P::Heat, true, 0, 3.5, 0},
      {"C30/37", P::Heat, true, 0, 14, 49500},
      {"C30/37", P::Heat, true, 0, 49, 132000 * 2.7 / 3.7},
      {"C30/37", P::Heat, true, 0, 364, 132000 * 21.6 / 22.6},
      {"C30/37", P::Heat, false, 0, 14, 49500 * Btu_yd3_Per_kJ_m3},
      {"C30/37", P::Hydration, true, 0, 14, 0.375},
      {"C30/37", P::Hydration, true, 0, 364, 21.6 / 22.6},
      {"C35/45", P::Heat, true, 0, 42, 41782.28081293972},
      {"C35/45", P::Hydration, true, 0, 42, 41782.28081293972 / 108800},
      {"C25/30", P::Heat, true, 0, 42, 2450 * (25 + 18 * 11.0 / 24)},
      {"C25/30", P::Heat, true, 0, 700, 2450 * 47},
      {"C25/30", P::Hydration, true, 0, 24, 25.0 / 47},
      {"Existing", P::Heat, true, 0, 98, 0},
      {"Existing", P::Hydration, true, 0, 98, 1},
      // exp(Q/R (1/293 - 1/(T + 273))) with Q/R 4030, raised by 177 a degree below 20 oC for the
      // slag cement; the mass concrete divides by 1 + (5 - 5 H)^4 (series 1 to 3: H 0.9, 0.8, 0.7).
      // In the imperial system the temperatures are in oF: 20 oC is 68 oF.
      {"C30/37", P::Maturity_Rate, true, 0, 4, 0.4518205232364601},
      {"C30/37", P::Maturity_Rate, true, 0, 32, 1.7179839091905813},
      {"C30/37", P::Maturity_Rate, false, 0, 68, 1, 1e-9},
      {"C35/45", P::Maturity_Rate, true, 0, 4, 0.25852368743540177},
      {"C35/45", P::Maturity_Rate, true, 0, 32, 1.7179839091905813},
      {"C25/30", P::Maturity_Rate, true, 1, 20, 1 / 1.0625},
      {"C25/30", P::Maturity_Rate, true, 2, 20, 0.5},
      {"C25/30", P::Maturity_Rate, true, 3, 32, 1.7179839091905813 / (1 + std::pow(1.5, 4))},
      // 10 (C^0.755 - C^-2.245) / ln C with C 1.3.
      {"C35/45", P::Weighted_Maturity_Rate, true, 0, 20, 25.315507794825255},
      // The formula isotherm at 20 oC saturates at (W/C - 0.17 alpha) C; above h = 1 the air pores
      // (15 kg/m3) fill up to the limit 1.02. Bazant: D0 (a + (1 - a) / (1 + ((1 - h)/(1 - ht))^4)).
      {"C30/37", P::Isotherm, true, 0, 0, 0, 1e-9},
      {"C30/37", P::Isotherm, true, 0, 1, (0.5 - 0.17 * 0.4) * 330, 1e-9},
      {"C30/37", P::Isotherm, true, 2, 1, (0.5 - 0.17 * 0.8) * 330, 1e-9},
      {"C30/37", P::Isotherm, true, 2, 1.02, (0.5 - 0.17 * 0.8) * 330 + 15 * 0.02 / 0.01999, 1e-9},
      {"C30/37", P::Diffusion, true, 0, 1, 1.2e-5, 1e-9},
      {"C30/37", P::Diffusion, true, 0, 0.8, 1.2e-5 * (0.05 + 0.95 / 2), 1e-9},
      {"C30/37", P::Diffusion, true, 0, 0, 1.2e-5 * (0.05 + 0.95 / 626), 1e-9},
      {"C35/45", P::Diffusion, true, 0, 0.51, 1e-7 * std::exp(4.6 * 0.51), 1e-9},
      {"C35/45", P::Diffusion, true, 0, 1.02, 1e-7 * std::exp(4.6), 1e-9},
      // Capacity and conductivity grow with the water up to 150 kg/m3; a latent peak one degree wide.
      {"C25/30", P::Capacity, true, 0, 0, 1900, 1e-9},
      {"C25/30", P::Capacity, true, 0, 80, 1900 + 80 * 550.0 / 150, 1e-9},
      {"C25/30", P::Conductivity, true, 0, 80, 1.8 + 80 * 0.6 / 150},
      {"C25/30", P::Conductivity, false, 0, 80 * 0.764554857984 / 0.45359237, 2.12 * Btu_hftF_Per_W_mK, 1e-5},
      {"Subsoil", P::Capacity, true, 0, 0, 62000, 1e-9},
      {"Subsoil", P::Capacity, true, 0, 0.5, 62000, 1e-9},
      {"Subsoil", P::Capacity, true, 0, 0.500001, 2000, 1e-9},
      {"C30/37", P::Capacity, true, 0, 100, 2400, 1e-9},
      // Joint type A: ft 1 MPa, s1 0.3 ft, w1 0.02, w2 0.15 mm, normal stiffness 100 N/mm3: elastic
      // up to e0 = 0.01 mm, the knee at 0.03 mm, zero stress at 0.16 mm. Shear of a closed joint:
      // 40 N/mm3 up to the cohesion ft (1 - slip/0.5) (1 + sin 35)/(2 cos 35), plus tan 35 under
      // 1 MPa (series 1). In inches and ksi in the imperial system.
      {"Construction", P::Joint_Normal, true, 0, 0.005, 0.5, 1e-9},
      {"Construction", P::Joint_Normal, true, 0, 0.01, 1, 1e-9},
      {"Construction", P::Joint_Normal, false, 0, 0.01 * 0.03937, Ksi_Per_MPa, 1e-9},
      {"Construction", P::Joint_Normal, true, 0, 0.02, 0.65, 1e-9},
      {"Construction", P::Joint_Normal, true, 0, 0.03, 0.3, 1e-9},
      {"Construction", P::Joint_Normal, true, 0, 0.095, 0.15, 1e-9},
      {"Construction", P::Joint_Normal, true, 0, 0.16, 0, 1e-9},
      {"Construction", P::Joint_Normal, true, 0, 0.2, 0, 1e-9},
      {"Construction", P::Joint_Shear, true, 0, 0.007, 0.28, 1e-9},
      {"Construction", P::Joint_Shear, true, 0, 0.245, Phi_Factor * 0.51, 1e-9},
      {"Construction", P::Joint_Shear, true, 0, 0.49, Phi_Factor * 0.02, 1e-9},
      {"Construction", P::Joint_Shear, true, 0, 0.595, 0, 1e-9},
      {"Construction", P::Joint_Shear, true, 1, 0.245, Phi_Factor * 0.51 + Tan_Phi, 1e-9},
      // Type C: the openings 0.012 and 0.012 + 0.02, 0.1, 0.3 mm carry the table's stresses.
      {"Rough", P::Joint_Normal, true, 0, 0.006, 0.6, 1e-9},
      {"Rough", P::Joint_Normal, true, 0, 0.012, 1.2, 1e-9},
      {"Rough", P::Joint_Normal, true, 0, 0.032, 0.5, 1e-9},
      {"Rough", P::Joint_Normal, true, 0, 0.112, 0.15, 1e-9},
      {"Rough", P::Joint_Normal, true, 0, 0.312, 0, 1e-9},
      // Type B: no tension, 10 N/mm3 in compression; friction 0.2 under 1 MPa after 0.01 N/mm3.
      {"Sliding", P::Joint_Normal, true, 0, -0.05, -0.5, 1e-9},
      {"Sliding", P::Joint_Normal, true, 0, 0.05, 0, 1e-9},
      {"Sliding", P::Joint_Shear, true, 0, 10, 0, 1e-9},
      {"Sliding", P::Joint_Shear, true, 1, 10, 0.1, 1e-9},
      {"Sliding", P::Joint_Shear, true, 1, 30, 0.2, 1e-9},
      // The chain's unit 5: 0.45 at 168 hours, 0.50 at 672; halfway between them 0.475; held beyond.
      {"C30/37", P::Chain_Coefficients, true, 4, 168, 0.45, 1e-12},
      {"C30/37", P::Chain_Coefficients, true, 4, 420, 0.475, 1e-12},
      {"C30/37", P::Chain_Coefficients, true, 4, 700, 0.5, 1e-12},
      {"C30/37", P::Chain_Coefficients, true, 0, 0, 0.3, 1e-12},
  };
  for (const auto& k : cases) {
    const std::string where = std::string(k.material) + " " + Property_Name(k.property) + " at " +
                              std::to_string(k.x) + (k.metric ? "" : " imperial");
    const Material_Curve c = Material_Curve_Of(Named(k.material), k.property, k.metric);
    ASSERT_GT(c.Series.size(), k.series) << where;
    EXPECT_NEAR(At(c.Series[k.series], k.x), k.value, k.tolerance * std::max(1.0, std::abs(k.value)))
        << where;
  }
  // The titles, labels and marks that tell the curves apart.
  EXPECT_EQ(Material_Curve_Of(Named("C30/37"), P::Heat, true).Caption[1],
            "H [kJ/m3] = 132000   a [1/h] = 0.06   d [h] = 4");
  EXPECT_EQ(Material_Curve_Of(Named("C35/45"), P::Heat, false).Y_Title, "Heat of hydration [Btu/yd3]");
  EXPECT_EQ(Material_Curve_Of(Named("C25/30"), P::Heat, true).Mark_X.size(), 8u);  // the table's points
  EXPECT_EQ(Material_Curve_Of(Named("C25/30"), P::Maturity_Rate, true).Series[2].Label, "H = 0.80");
  EXPECT_TRUE(Material_Curve_Of(Named("C30/37"), P::Diffusion, true).Log_Y);
  EXPECT_EQ(Material_Curve_Of(Named("C30/37"), P::Isotherm, true).Series[2].Label, "D.o.h. 0.8");
  EXPECT_EQ(Material_Curve_Of(Named("Subsoil"), P::Capacity, false).X_Title, "Temperature [oF]");
  EXPECT_EQ(Material_Curve_Of(Named("Rough"), P::Joint_Normal, true).Mark_X,
            (std::vector<double>{0.012, 0.032, 0.112, 0.312}));
  const Material_Curve chain = Material_Curve_Of(Named("C30/37"), P::Chain_Coefficients, true);
  EXPECT_EQ(chain.Series[4].Label, "tau = 5000 h");
  EXPECT_EQ(chain.Mark_X.size(), 30u);  // six rows of five units
}

TEST(MaterialCurves, SteelAndBondCurvesPassThroughTheirTablePoints) {
  struct Case {
    P property;
    bool metric;
    Points table;  // as the database gives it: strain 1/1000 or slip mm, stress MPa
    double x_factor;
  } cases[] = {
      {P::Steel, true, {{0, 0}, {2.5, 500}, {50, 540}}, 1},
      {P::Bond, true, {{0, 0}, {0.6, 10}, {2, 12}}, 1},
      {P::Bond, false, {{0, 0}, {0.6, 10}, {2, 12}}, 0.03937},
  };
  for (const Case& k : cases) {
    const std::string where = std::string(Property_Name(k.property)) + (k.metric ? " metric" : " imperial");
    const Material_Curve c = Material_Curve_Of(Named("B500B"), k.property, k.metric);
    const double y_factor = k.metric ? 1 : Ksi_Per_MPa;
    ASSERT_EQ(c.Series.size(), 1u) << where;
    ASSERT_EQ(c.Mark_X.size(), k.table.size()) << where;
    for (std::size_t i = 0; i < k.table.size(); ++i) {
      const double x = k.table[i].first * k.x_factor, y = k.table[i].second * y_factor;
      Expect_Near(c.Mark_X[i], x, 1e-12, where);
      Expect_Near(c.Mark_Y[i], y, 1e-12, where);
      Expect_Near(At(c.Series[0], x), y, 1e-9, where + " at point " + std::to_string(i + 1));
    }
    // Past its last point the curve holds the last stress.
    Expect_Near(c.Series[0].Y.back(), k.table.back().second * y_factor, 1e-12, where + " at the end");
    EXPECT_GT(c.Series[0].X.back(), k.table.back().first * k.x_factor) << where;
  }
  EXPECT_EQ(Material_Curve_Of(Named("B500B"), P::Steel, true).X_Title, "Strain [1/1000]");
  EXPECT_EQ(Material_Curve_Of(Named("B500B"), P::Bond, false).X_Title, "Slip [in]");
}

TEST(MaterialCurves, ChainRelaxationIsTheSumOfItsDecayingUnits) {
  // A strain held from the loading age on: each unit keeps E c(m) exp(-t / tau(m)) of it. At 24 hours
  // E is 20000 MPa with the third row of coefficients, at 72 hours 27000 MPa with the fourth.
  const double tau[5] = {0.5, 5, 50, 500, 5000};
  struct Case {
    std::size_t series;
    double E;
    double c[5];
  } cases[] = {
      {0, 20000, {0.15, 0.20, 0.20, 0.20, 0.25}},
      {1, 27000, {0.10, 0.15, 0.20, 0.20, 0.35}},
  };
  const Material_Curve curve = Material_Curve_Of(Named("C30/37"), P::Relaxation, true);
  EXPECT_TRUE(curve.Log_X);
  ASSERT_EQ(curve.Series.size(), 4u);
  EXPECT_EQ(curve.Series[0].Label, "Loaded at 24 h");
  for (const Case& k : cases) {
    const Curve_Series& s = curve.Series[k.series];
    ASSERT_EQ(s.X.size(), 61u);
    EXPECT_NEAR(s.X.front(), 0.01, 1e-15);
    EXPECT_NEAR(s.X.back(), 10000, 1e-8);
    for (std::size_t i = 0; i < s.X.size(); ++i) {
      double expected = 0;
      for (int m = 0; m < 5; ++m)
        expected += k.E * k.c[m] * std::exp(-s.X[i] / tau[m]);
      Expect_Near(s.Y[i], expected, 1e-5, s.Label + " at " + std::to_string(s.X[i]));
    }
  }
}

Property_Table Constant(float value) {
  Property_Table t;
  t.Is_Constant = true;
  t.Abscissa = {0};
  t.Value = {value};
  return t;
}

TEST(MaterialCurves, BurgerRelaxationAgainstTheBodysClosedForm) {
  // A Maxwell unit (A 20000 MPa, tau_A 1000 h) in series with a Kelvin unit (B 50000 MPa, tau_B
  // 10 h) obeys s + p1 s' + p2 s'' = q1 e' + q2 e'' with p1 = tau_A + tau_A A/B + tau_B,
  // p2 = tau_A tau_B, q1 = A tau_A, q2 = A tau_A tau_B; a held strain relaxes as
  // [(q1 - q2 r1) exp(-r1 t) - (q1 - q2 r2) exp(-r2 t)] / sqrt(p1^2 - 4 p2), r the roots of
  // p2 r^2 - p1 r + 1.
  Material m;
  m.Name = "Burger body";
  m.Has_Mechanical = true;
  m.Model_Name = "Burger Model";
  m.E_Mod_A = Constant(20000);
  m.Tau_A = Constant(1000);
  m.E_Mod_B = Constant(50000);
  m.Tau_B = Constant(10);
  m.Nu = Constant(0.2f);
  const double A = 20000, tA = 1000, B = 50000, tB = 10;
  const double p1 = tA + tA * A / B + tB, p2 = tA * tB, q1 = A * tA, q2 = A * tA * tB;
  const double root = std::sqrt(p1 * p1 - 4 * p2);
  const double r1 = (p1 - root) / (2 * p2), r2 = (p1 + root) / (2 * p2);
  const Material_Curve c = Material_Curve_Of(m, P::Relaxation, true);
  ASSERT_EQ(c.Series.size(), 4u);
  for (const Curve_Series& s : c.Series)  // the same at every age: nothing hardens
    for (std::size_t i = 0; i < s.X.size(); ++i) {
      const double t = s.X[i];
      const double expected =
          ((q1 - q2 * r1) * std::exp(-r1 * t) - (q1 - q2 * r2) * std::exp(-r2 * t)) / root;
      EXPECT_NEAR(s.Y[i], expected, 2e-4 * A) << s.Label << " at " << t;
    }
}

TEST(MaterialCurves, EachKindOfMaterialOffersItsCurves) {
  auto names = [](const char* material) {
    std::vector<std::string> out;
    for (P p : Material_Properties(Named(material)))
      out.push_back(Property_Name(p));
    return out;
  };
  using Names = std::vector<std::string>;
  EXPECT_EQ(names("C30/37"),
            (Names{"Heat capacity", "Conductivity", "Maturity rate", "Heat of hydration",
                   "Degree of hydration", "Sorption isotherm", "Diffusion coefficient", "Thermal dilatation",
                   "Autogeneous dilatation", "Hygral dilatation", "E-modulus", "Poisson ratio",
                   "Tensile strength", "Compressive strength", "Relaxation", "Chain coefficients"}));
  EXPECT_EQ(names("C25/30"),
            (Names{"Heat capacity", "Conductivity", "Maturity rate", "Heat of hydration",
                   "Degree of hydration", "Thermal dilatation", "Autogeneous dilatation", "Hygral dilatation",
                   "E-mod A (Maxwell)", "Tau A (Maxwell)", "E-mod B (Kelvin)", "Tau B (Kelvin)",
                   "Poisson ratio", "Tensile strength", "Compressive strength", "Relaxation"}));
  EXPECT_EQ(names("Subsoil"), (Names{"Heat capacity", "Conductivity", "Maturity rate", "Thermal dilatation",
                                     "Autogeneous dilatation", "Hygral dilatation"}));
  EXPECT_EQ(names("Rough"), (Names{"Normal stress - opening", "Shear stress - slip"}));
  EXPECT_EQ(names("B500B"), (Names{"Steel stress - strain", "Bond stress - slip", "Thermal dilatancy"}));
  // A property the material lacks gives a picture without curves.
  const Material_Curve none = Material_Curve_Of(Named("B500B"), P::Heat, true);
  EXPECT_TRUE(none.Series.empty());
  EXPECT_EQ(none.Title, "B500B reinforcing steel - Heat of hydration");
}

// ---- The picture ----

using testing::Recording_Surface;

Material_Curve Hand_Curve() {
  Material_Curve c;
  c.Title = "Hand - Line";
  c.X_Title = "x [-]";
  c.Y_Title = "y [-]";
  c.Caption = {"first line", "second line"};
  c.Series = {{"one", {0, 5, 10}, {0, 5, 10}}, {"two", {0, 10}, {10, 0}}};
  c.Mark_X = {5};
  c.Mark_Y = {5};
  return c;
}

std::vector<testing::Recorded_Line> Curve_Lines(const Recording_Surface& s) {
  std::vector<testing::Recorded_Line> out;
  for (const auto& l : s.Lines)
    if (l.Width == 2) out.push_back(l);
  return out;
}

TEST(MaterialPicture, TitleCaptionsCurvesMarksAndLegend) {
  Recording_Surface s(800, 500);
  const Material_Picture p = Plot_Material_Curve(s, Hand_Curve());
  EXPECT_EQ(s.Clears, 1);
  EXPECT_TRUE(p.Graph_Drawn);
  EXPECT_EQ(p.Title, "Hand - Line");
  ASSERT_GE(s.Texts.size(), 3u);
  EXPECT_EQ(s.Texts[0].Text, "Hand - Line");
  EXPECT_EQ(s.Texts[0].Size, Title_Size);
  EXPECT_EQ(s.Texts[1].Text, "first line");
  EXPECT_EQ(s.Texts[2].Text, "second line");
  EXPECT_LT(s.Texts[1].Y, s.Texts[2].Y);
  // Two segments of the first curve, one of the second, and one legend line for each.
  EXPECT_EQ(p.Segments, 3);
  const auto lines = Curve_Lines(s);
  ASSERT_EQ(lines.size(), 5u);
  EXPECT_EQ(lines[0].Colour, (Plot_Colour{0, 0, 255}));
  EXPECT_EQ(lines[2].Colour, (Plot_Colour{220, 0, 0}));
  // Both axes run 0 to 10: the first curve goes from the frame's lower-left corner to its
  // upper-right one, through the mark in the middle; the second crosses it there.
  const double left = lines[0].X1, bottom = lines[0].Y1, right = lines[1].X2, top = lines[1].Y2;
  EXPECT_GT(right - left, 600);
  EXPECT_GT(bottom - top, 300);
  EXPECT_EQ(lines[2].X1, left);
  EXPECT_EQ(lines[2].Y1, top);
  EXPECT_EQ(lines[2].X2, right);
  EXPECT_EQ(lines[2].Y2, bottom);
  ASSERT_EQ(s.Circles.size(), 1u);
  EXPECT_DOUBLE_EQ(s.Circles[0].X, (left + right) / 2);
  EXPECT_DOUBLE_EQ(s.Circles[0].Y, (top + bottom) / 2);
  EXPECT_EQ(p.Marks, 1);
  // The frame's corners are those of the curve.
  int frame = 0;
  for (const auto& l : s.Lines)
    frame += l.Width == 1 && l.Colour == Black &&
             ((l.X1 == left && l.Y1 == top && l.X2 == right && l.Y2 == top) ||
              (l.X1 == right && l.Y1 == bottom && l.X2 == left && l.Y2 == bottom));
  EXPECT_EQ(frame, 2);
  auto has_text = [&](const std::string& t) {
    return std::any_of(s.Texts.begin(), s.Texts.end(), [&](const auto& x) { return x.Text == t; });
  };
  for (const char* t : {"one", "two", "x [-]", "y [-]", "0", "10"})
    EXPECT_TRUE(has_text(t)) << t;
  EXPECT_EQ(s.Boxes.size(), 1u);  // under the legend
}

TEST(MaterialPicture, FlatLineInTheMiddleLogAxesAndSmallPictures) {
  // A constant stands in the middle of an axis from 0 to twice its value.
  Recording_Surface flat(600, 400);
  const Material_Curve constant = Material_Curve_Of(Named("C30/37"), P::Nu, true);
  const Material_Picture p = Plot_Material_Curve(flat, constant);
  EXPECT_EQ(p.Segments, Curve_Intervals);
  const auto lines = Curve_Lines(flat);
  ASSERT_FALSE(lines.empty());
  double top = 1e9, bottom = -1e9;
  for (const auto& l : flat.Lines)
    if (l.Width == 1 && l.Colour == Black && l.Y1 == l.Y2 && std::abs(l.X2 - l.X1) > 100) {
      top = std::min(top, l.Y1);
      bottom = std::max(bottom, l.Y1);
    }
  for (const auto& l : lines) {
    EXPECT_NEAR(l.Y1, (top + bottom) / 2, 1e-3);
    EXPECT_NEAR(l.Y2, (top + bottom) / 2, 1e-3);
  }
  EXPECT_EQ(flat.Texts[1].Text, Constant_Table_Caption);
  EXPECT_TRUE(flat.Boxes.empty());  // one curve needs no legend

  // On a logarithmic axis a value that is not positive is left out, with its segments.
  Material_Curve log = Hand_Curve();
  log.Log_Y = true;
  log.Series = {{"", {0, 1, 2, 3}, {0, 1, 10, 100}}};
  Recording_Surface logarithmic(600, 400);
  EXPECT_EQ(Plot_Material_Curve(logarithmic, log).Segments, 2);
  const auto log_lines = Curve_Lines(logarithmic);
  ASSERT_EQ(log_lines.size(), 2u);
  // A decade is a decade: 1 to 10 rises as much as 10 to 100.
  EXPECT_NEAR(log_lines[0].Y1 - log_lines[0].Y2, log_lines[1].Y1 - log_lines[1].Y2, 1e-9);

  Recording_Surface small(100, 120);
  const Material_Picture q = Plot_Material_Curve(small, Hand_Curve());
  EXPECT_FALSE(q.Graph_Drawn);
  EXPECT_EQ(q.Segments, 0);
  EXPECT_TRUE(Curve_Lines(small).empty());
  EXPECT_EQ(small.Texts.size(), 3u);  // the title and the captions only
}

}  // namespace
}  // namespace pvx
