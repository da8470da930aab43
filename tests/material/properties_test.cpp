// The property evaluators against values worked out by hand from the laws.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <tuple>

#include "material/properties.h"

namespace pvx {
namespace {

Property_Table Table_Of(bool by_maturity, Table<float> abscissa, Table<float> value) {
  return {false, by_maturity, !by_maturity, abscissa, value};
}

TEST(Table_Value, LinearBetweenPointsHeldOutsideAndComparedInSinglePrecision) {
  const Property_Table t = Table_Of(true, {10, 20, 40}, {100, 300, 400});
  const Property_Table by_temperature = Table_Of(false, {0, 20}, {1, 3}),
                       one_point = Table_Of(true, {5}, {7});
  const Property_Table constant{true, false, false, {0, 10}, {0.2f, 5}},
      unit = Table_Of(true, {0, 1}, {0, 1});
  // Halfway 100..300 (a maturity table ignores the temperature), halfway 300..400, on a point its
  // value, below the first value, above the last (also beyond the range of a float). 1 + 1e-9 is
  // above the last point in double precision but equal to it as a float: the last interval is
  // then evaluated at the argument itself; a float further it is held.
  // clang-format off
  const std::tuple<const Property_Table*, double, double, double> rows[] = {
      {&t, 999, 15, 200}, {&t, 0, 30, 350}, {&t, 0, 20, 300}, {&t, 0, -5, 100}, {&t, 0, 1e9, 400},
      {&t, 0, 1e300, 400}, {&by_temperature, 5, 1000, 1.5}, {&constant, 5, 5, 0.2f}, {&one_point, 0, 6, 7},
      {&unit, 0, 1 + 1e-9, 1 + 1e-9}, {&unit, 0, 1 + 1e-6, 1}};
  // clang-format on
  for (const auto& [table, temperature, maturity, expected] : rows)
    EXPECT_DOUBLE_EQ(Table_Value(*table, temperature, maturity), expected) << temperature << " " << maturity;
  // The weighted maturity is the argument only for a maturity table of a material that uses it.
  Material m;
  const Property_Table ramp = Table_Of(true, {0, 100}, {0, 100}), warm = Table_Of(false, {0, 100}, {0, 100});
  EXPECT_DOUBLE_EQ(Mechanical_Property(m, ramp, 10, 20, 50), 20);
  m.Dutch_Active = true;
  EXPECT_DOUBLE_EQ(Mechanical_Property(m, ramp, 10, 20, 50), 50);
  EXPECT_DOUBLE_EQ(Mechanical_Property(m, warm, 10, 20, 50), 10);
}

TEST(Thermal_Properties, CapacityAndConductivityAtTheMeansOfTheStep) {
  // 1800 dry, 2400 at 150 kg/m3 (latent peaks do not apply); peak 1 covers [-0.5, 0.5], peak 2
  // [-0.25, 0.75], both ends included.
  Material by_water, latent;
  std::tie(by_water.Capacity_By_Water, by_water.Capacity_Dry, by_water.Capacity_Wet, by_water.Water_Reference,
           by_water.Latent_Active, by_water.Latent_Temperature, by_water.Latent_Peak) =
      std::tuple(true, 1800, 2400, 150, true, Table<double>{0.0}, Table<double>{60000.0});
  std::tie(latent.Capacity_Wet, latent.Latent_Active, latent.Latent_Temperature, latent.Latent_Peak) =
      std::tuple(2000, true, Table<double>{0.0, 0.25}, Table<double>{60000.0, 100.0});
  // w = 75: 1800 + 75 x 600 / 150; at T = -0.5 peak 1 only, at -0.25 both (the later one counts),
  // at 0.75 peak 2 only, at 0.875 and -0.75 none.
  // clang-format off
  const std::tuple<const Material*, double, double, double, double, double> rows[] = {
      {&by_water, 50, 100, 0, 0, 2100}, {&by_water, 150, 150, 0, 0, 2400}, {&latent, 0, 0, -1, 0, 62000},
      {&latent, 0, 0, -0.25, -0.25, 2100}, {&latent, 0, 0, 0.5, 1.0, 2100}, {&latent, 0, 0, 0.75, 1.0, 2000},
      {&latent, 0, 0, -1.5, 0, 2000}};
  // clang-format on
  for (const auto& [m, w_old, w_new, T_old, T_new, expected] : rows)
    EXPECT_DOUBLE_EQ(Thermal_Capacity(*m, w_old, w_new, T_old, T_new), expected) << w_new << " " << T_old;
  Material m;
  std::tie(m.Conductivity_Dry, m.Conductivity_Wet, m.Conductivity_Water_Reference) =
      std::tuple(1.5, 2.5, 100);
  EXPECT_DOUBLE_EQ(Thermal_Conductivity(m, 0, 100), 2.5);
  m.Conductivity_By_Water = true;
  EXPECT_NEAR(Thermal_Conductivity(m, 20, 60), 1.9, 1e-15);  // w = 40: 1.5 + 40 x 1.0 / 100
}

TEST(Diffusion_Coefficient, BazantWithThePlusSignAndMensiHeldOutsideZeroToOne) {
  Material bazant, mensi;
  std::tie(bazant.Diffusion_Bazant, bazant.Diffusion_1, bazant.Diffusion_2, bazant.Diffusion_3) =
      std::tuple(true, 2, 0.75, 0.05);
  std::tie(mensi.Diffusion_1, mensi.Diffusion_2) = std::tuple(1e-7, 4.6);
  const std::tuple<const Material*, double, double> rows[] = {
      {&bazant, 0.5, 2 * (0.05 + 0.95 / 17)},   // (1 - h) / (1 - ht) = 2, to the fourth 16
      {&bazant, 0, 2 * (0.05 + 0.95 / 257)},    // the ratio 4, to the fourth 256
      {&bazant, 0.75, 2 * 0.525},               // at ht half way between a and 1
      {&bazant, 1.3, 2},                        // above 1: D0
      {&bazant, -0.1, 0.1},                     // below 0: D0 a
      {&mensi, 0.5, 1e-7 * 9.974182454814718},  // A1 e^2.3
      {&mensi, 2, 1e-7 * 99.48431564193386},    // above 1: A1 e^4.6
      {&mensi, -1, 1e-7},
  };
  for (const auto& [m, h, expected] : rows)
    EXPECT_NEAR(Diffusion_Coefficient(*m, h), expected, 1e-13 * expected) << h;
}

// W/C 0.5, 300 kg cement, alpha 0.5 at 20 oC (t = 0): p = 0.173, q = 0.06, g = 0.17, so
// w1 = 0.5 - 0.085 = 0.415, d = 0.95 - 0.0555 = 0.8945, w35 = (0.125 + 0.35 (0.173 + 0.021)) 0.5
// = 0.09645, wd = (0.125 + 0.8945 (0.173 + 0.8945 x 0.06)) 0.5 = 0.1638781575; Air 15: w2 = 0.465.
// Without hydration w35 = wd = 0 and w1 = W_C; the rising rule then moves w35 to wd - 0.001, so
// below the knee (d = 0.95) the water is slightly negative.
// W/C 0.25, alpha 1: w1 = 0.08 lies below wd = 0.31238, so wd = 0.079, and w35 = 0.1929 above it,
// so w35 = 0.078 (knee 0.839).
// 45 oC: t = 1, p = -0.258, q = 0.452; W/C 0.55: g = 0.205 + 0.029 = 0.234;
// w35 = (0.125 + 0.35 (-0.258 + 0.1582)) 0.5 = 0.045035, wd = (0.125 + 0.8945 (-0.258 + 0.404314)) 0.5
// = 0.1279389365. At 20 oC the water-cement ratio has no influence on g.
TEST(Isotherm_Water, FourBranchesPerKilogramOfCement) {
  const double wd = 0.1638781575;
  // W/C, cement, alpha, T, air, H_Limit, h, water, tolerance.
  const std::array<double, 9> rows[] = {
      {0.5, 300, 0.5, 20, 15, 1.05, -0.3, 0, 0},
      {0.5, 300, 0.5, 20, 15, 1.05, 0.2, 0.09645 * 0.2 / 0.35 * 300, 1e-9},
      {0.5, 300, 0.5, 20, 15, 1.05, 0.35, 28.935, 1e-9},
      {0.5, 300, 0.5, 20, 15, 1.05, 0.6, (0.09645 + 0.25 * (wd - 0.09645) / 0.5445) * 300, 1e-6},
      {0.5, 300, 0.5, 20, 15, 1.05, 0.95, (wd + (0.415 - wd) * 0.0555 / 0.1055) * 300, 1e-6},
      {0.5, 300, 0.5, 20, 15, 1.05, 1.0, 0.415 * 300, 1e-9},
      {0.5, 300, 0.5, 20, 15, 1.05, 1.2, (0.415 + 0.2 * 0.05 / 0.04999) * 300, 1e-6},  // not capped
      {0.5, 300, 0.5, 20, 15, 1.00001, 1.3, 0.465 * 300, 1e-9},  // the pores full at once
      {0.45, 350, 0, 20, 10, 1.05, 0.5, (-0.001 + 0.15 * 0.001 / 0.6) * 350, 1e-12},
      {0.25, 300, 1, 20, 15, 1.05, 0.35, 0.078 * 300, 1e-9},
      {0.25, 300, 1, 20, 15, 1.05, 0.999, (0.079 + 0.001 * 0.16 / 0.161) * 300, 1e-9},
      {0.55, 300, 0.5, 45, 15, 1.05, 0.7, (0.045035 + 0.35 * (0.1279389365 - 0.045035) / 0.5445) * 300, 1e-7},
      {0.55, 300, 0.5, 45, 15, 1.05, 1.0, (0.55 - 0.234 * 0.5) * 300, 1e-9},
      {0.3, 300, 0.5, 20, 15, 1.05, 1.0, (0.3 - 0.085) * 300, 1e-9},
  };
  for (const auto& [W_C, cement, alpha, T, air, limit, h, water, tolerance] : rows)
    EXPECT_NEAR(Isotherm_Water(W_C, cement, alpha, T, air, limit, h), water, tolerance) << W_C << " " << h;
  // The corrections keep the curve rising.
  for (double h = 0.01; h < 1.0; h += 0.01)
    EXPECT_GT(Isotherm_Water(0.25, 300, 1, 20, 15, 1.05, h),
              Isotherm_Water(0.25, 300, 1, 20, 15, 1.05, h - 0.01));
}

// A multilinear function is reproduced exactly by trilinear interpolation, inside and, along the
// last interval, beyond the table.
double F(double T, double a, double h) {
  return 1 + 2 * T + 30 * a + 50 * h + 0.5 * T * a * h;
}

TEST(Isotherm_Table_Water, TrilinearInsideFirstValuesBelowExtrapolatedAbove) {
  // Temperatures, degrees of hydration and potentials; the values follow.
  Isotherm_Grid g{{0.0, 10.0, 30.0}, {0.2, 0.7}, {0.3, 0.6, 1.0}, {}};
  for (double T : g.Temperature)
    for (double a : g.Hydration)
      for (double h : g.Potential)
        g.Value.push_back(F(T, a, h));
  const std::array<double, 4> rows[] = {{0.5, 25, 0.8, F(25, 0.5, 0.8)},   {0.2, 10, 0.6, F(10, 0.2, 0.6)},
                                        {0.45, 5, 0.45, F(5, 0.45, 0.45)}, {0.5, -5, 0.8, F(0, 0.5, 0.8)},
                                        {0.1, 25, 0.1, F(25, 0.2, 0.3)},   {0.5, 40, 0.8, F(40, 0.5, 0.8)},
                                        {0.9, 25, 1.2, F(25, 0.9, 1.2)}};
  for (const auto& [alpha, T, h, expected] : rows)
    EXPECT_NEAR(Isotherm_Table_Water(alpha, T, h, g), expected, 1e-12) << alpha << " " << T << " " << h;
  // Intervals shorter than 1e-7 in temperature or 1e-6 in hydration give the lower point.
  Isotherm_Grid s{
      .Temperature = {20.0, 20.00000005}, .Hydration = {0.5}, .Potential = {1.0}, .Value = {100, 200}};
  EXPECT_DOUBLE_EQ(Isotherm_Table_Water(0.5, 30, 1.0, s), 100);
  s.Temperature = {20.0, 20.0000005};
  EXPECT_NEAR(Isotherm_Table_Water(0.5, 20.00000025, 1.0, s), 150, 1e-6);
  s.Temperature = {20.0};
  s.Hydration = {0.5, 0.5000005};
  EXPECT_DOUBLE_EQ(Isotherm_Table_Water(0.50000025, 20, 1.0, s), 100);
}

}  // namespace
}  // namespace pvx
