// The property evaluators against values worked out by hand from the laws.
#include <gtest/gtest.h>

#include <cmath>

#include "material/properties.h"

namespace pvx {
namespace {

Property_Table Table_Of(bool by_maturity, std::initializer_list<std::pair<float, float>> points) {
  Property_Table t;
  t.Depends_On_Maturity = by_maturity;
  t.Depends_On_Temperature = !by_maturity;
  for (const auto& [x, v] : points) {
    t.Abscissa.add(x);
    t.Value.add(v);
  }
  return t;
}

TEST(Table_Value, IsLinearBetweenPointsAndHeldAtTheEnds) {
  const Property_Table t = Table_Of(true, {{10, 100}, {20, 300}, {40, 400}});
  // The temperature argument is ignored by a maturity table.
  EXPECT_DOUBLE_EQ(Table_Value(t, 999, 15), 200);  // halfway 100..300
  EXPECT_DOUBLE_EQ(Table_Value(t, 999, 30), 350);  // halfway 300..400
  EXPECT_DOUBLE_EQ(Table_Value(t, 999, 25), 325);
  // On a point: that point's value.
  EXPECT_DOUBLE_EQ(Table_Value(t, 0, 10), 100);
  EXPECT_DOUBLE_EQ(Table_Value(t, 0, 20), 300);
  EXPECT_DOUBLE_EQ(Table_Value(t, 0, 40), 400);
  // Outside: the end values, no extrapolation.
  EXPECT_DOUBLE_EQ(Table_Value(t, 0, -5), 100);
  EXPECT_DOUBLE_EQ(Table_Value(t, 0, 1e9), 400);
  EXPECT_DOUBLE_EQ(Table_Value(t, 0, 1e300), 400);

  const Property_Table by_temperature = Table_Of(false, {{0, 1}, {20, 3}});
  EXPECT_DOUBLE_EQ(Table_Value(by_temperature, 5, 1000), 1.5);
  EXPECT_DOUBLE_EQ(Table_Value(by_temperature, -10, 1000), 1);
}

TEST(Table_Value, ConstantsAndSinglePointsGiveTheirValueEverywhere) {
  Property_Table constant;
  constant.Is_Constant = true;
  constant.Abscissa = {0.0f};
  constant.Value = {0.2f};
  for (double x : {-100.0, 0.0, 1e6})
    EXPECT_DOUBLE_EQ(Table_Value(constant, x, x), 0.2f);
  const Property_Table one_point = Table_Of(true, {{5, 7}});
  for (double x : {-1.0, 5.0, 6.0})
    EXPECT_DOUBLE_EQ(Table_Value(one_point, 0, x), 7);
}

TEST(Table_Value, ComparesTheArgumentInSinglePrecision) {
  // 1 + 1e-9 is above the last point in double precision but equal to it as a float: the point is
  // then inside the table and the last interval is evaluated at the argument itself.
  const Property_Table t = Table_Of(true, {{0, 0}, {1, 1}});
  const double x = 1 + 1e-9;
  EXPECT_EQ(Table_Value(t, 0, x), x);
  EXPECT_EQ(Table_Value(t, 0, 1 + 1e-6), 1.0);  // a float apart: held at the end
}

TEST(Mechanical_Property, UsesWeightedMaturityOnlyForDutchMaturityTables) {
  Material m;
  const Property_Table by_maturity = Table_Of(true, {{0, 0}, {100, 100}});
  const Property_Table by_temperature = Table_Of(false, {{0, 0}, {100, 100}});
  EXPECT_DOUBLE_EQ(Mechanical_Property(m, by_maturity, 10, 20, 50), 20);
  m.Dutch_Active = true;
  EXPECT_DOUBLE_EQ(Mechanical_Property(m, by_maturity, 10, 20, 50), 50);
  EXPECT_DOUBLE_EQ(Mechanical_Property(m, by_temperature, 10, 20, 50), 10);
}

TEST(Thermal_Capacity, IsLinearInTheMeanWaterContent) {
  Material m;
  m.Capacity_By_Water = true;
  m.Capacity_Dry = 1800;
  m.Capacity_Wet = 2400;
  m.Water_Reference = 150;
  // w = (50 + 100) / 2 = 75: 1800 + 75 x 600 / 150 = 2100.
  EXPECT_DOUBLE_EQ(Thermal_Capacity(m, 50, 100, 0, 0), 2100);
  EXPECT_DOUBLE_EQ(Thermal_Capacity(m, 0, 0, 0, 0), 1800);
  EXPECT_DOUBLE_EQ(Thermal_Capacity(m, 150, 150, 0, 0), 2400);
  // Latent peaks do not apply to a capacity by water.
  m.Latent_Active = true;
  m.Latent_Temperature = {0.0};
  m.Latent_Peak = {60000.0};
  EXPECT_DOUBLE_EQ(Thermal_Capacity(m, 50, 100, 0, 0), 2100);
}

TEST(Thermal_Capacity, LatentPeaksAreOneDegreeWideAndTheLastMatchWins) {
  Material m;
  m.Capacity_Wet = 2000;
  EXPECT_DOUBLE_EQ(Thermal_Capacity(m, 0, 0, 0, 0), 2000);
  m.Latent_Active = true;
  m.Latent_Temperature = {0.0, 0.25};
  m.Latent_Peak = {60000.0, 100.0};
  // Peak 1 covers [-0.5, 0.5], peak 2 [-0.25, 0.75], both ends included; T is the mean.
  EXPECT_DOUBLE_EQ(Thermal_Capacity(m, 0, 0, -1, 0), 62000);        // T = -0.5: peak 1 only
  EXPECT_DOUBLE_EQ(Thermal_Capacity(m, 0, 0, -0.25, -0.25), 2100);  // both: the later one
  EXPECT_DOUBLE_EQ(Thermal_Capacity(m, 0, 0, 0.5, 0.5), 2100);
  EXPECT_DOUBLE_EQ(Thermal_Capacity(m, 0, 0, 0.5, 1.0), 2100);   // T = 0.75: peak 2 only
  EXPECT_DOUBLE_EQ(Thermal_Capacity(m, 0, 0, 0.75, 1.0), 2000);  // T = 0.875: none
  EXPECT_DOUBLE_EQ(Thermal_Capacity(m, 0, 0, -1.5, 0), 2000);    // T = -0.75: none
}

TEST(Thermal_Conductivity, IsLinearInTheMeanWaterContentOrConstant) {
  Material m;
  m.Conductivity_Wet = 2.5;
  EXPECT_DOUBLE_EQ(Thermal_Conductivity(m, 0, 100), 2.5);
  m.Conductivity_By_Water = true;
  m.Conductivity_Dry = 1.5;
  m.Conductivity_Water_Reference = 100;
  // w = 40: 1.5 + 40 x 1.0 / 100.
  EXPECT_NEAR(Thermal_Conductivity(m, 20, 60), 1.9, 1e-15);
  EXPECT_DOUBLE_EQ(Thermal_Conductivity(m, 100, 100), 2.5);
}

TEST(Diffusion_Coefficient, BazantLawWithThePlusSign) {
  Material m;
  m.Diffusion_Bazant = true;
  m.Diffusion_1 = 2;     // D0
  m.Diffusion_2 = 0.75;  // ht
  m.Diffusion_3 = 0.05;  // a
  // h = 0.5: (1 - h) / (1 - ht) = 2, to the fourth 16: 2 (0.05 + 0.95 / 17).
  EXPECT_NEAR(Diffusion_Coefficient(m, 0.5), 0.21176470588235294, 1e-15);
  // h = 0: the ratio is 4, to the fourth 256.
  EXPECT_NEAR(Diffusion_Coefficient(m, 0), 2 * (0.05 + 0.95 / 257), 1e-15);
  // h = ht: half way between a and 1.
  EXPECT_NEAR(Diffusion_Coefficient(m, 0.75), 2 * 0.525, 1e-15);
  EXPECT_DOUBLE_EQ(Diffusion_Coefficient(m, 1), 2);       // 1 - a + a
  EXPECT_DOUBLE_EQ(Diffusion_Coefficient(m, 1.3), 2);     // above 1: D0
  EXPECT_DOUBLE_EQ(Diffusion_Coefficient(m, -0.1), 0.1);  // below 0: D0 a
}

TEST(Diffusion_Coefficient, MensiLawHeldOutsideZeroToOne) {
  Material m;
  m.Diffusion_1 = 1e-7;                                                         // A1
  m.Diffusion_2 = 4.6;                                                          // A2
  EXPECT_NEAR(Diffusion_Coefficient(m, 0.5), 1e-7 * 9.974182454814718, 1e-20);  // e^2.3
  EXPECT_NEAR(Diffusion_Coefficient(m, 1), 1e-7 * 99.48431564193386, 1e-19);    // e^4.6
  EXPECT_NEAR(Diffusion_Coefficient(m, 2), 1e-7 * 99.48431564193386, 1e-19);
  EXPECT_DOUBLE_EQ(Diffusion_Coefficient(m, 0), 1e-7);
  EXPECT_DOUBLE_EQ(Diffusion_Coefficient(m, -1), 1e-7);
}

// W/C 0.5, 300 kg cement, alpha 0.5 at 20 oC (t = 0): p = 0.173, q = 0.06, g = 0.17, so
// w1 = 0.5 - 0.085 = 0.415, d = 0.95 - 0.0555 = 0.8945,
// w35 = (0.125 + 0.35 (0.173 + 0.021)) 0.5 = 0.09645,
// wd = (0.125 + 0.8945 (0.173 + 0.8945 x 0.06)) 0.5 = 0.1638781575, Air 15: w2 = 0.05 + 0.415.
TEST(Isotherm_Water, FourBranchesPerKilogramOfCement) {
  auto w = [](double h, double limit = 1.05) { return Isotherm_Water(0.5, 300, 0.5, 20, 15, limit, h); };
  EXPECT_DOUBLE_EQ(w(0), 0);
  EXPECT_DOUBLE_EQ(w(-0.3), 0);
  EXPECT_NEAR(w(0.2), 0.09645 * 0.2 / 0.35 * 300, 1e-9);  // 16.5342857
  EXPECT_NEAR(w(0.35), 28.935, 1e-9);
  // 0.6: 0.09645 + 0.25 (0.1638781575 - 0.09645) / 0.5445 = 0.1274087, x 300.
  EXPECT_NEAR(w(0.6), 38.222625, 1e-6);
  // Just below the knee and at the knee both give wd.
  EXPECT_NEAR(w(0.8945), 0.1638781575 * 300, 1e-7);
  // 0.95: wd + (0.415 - wd)(0.0555 / 0.1055).
  EXPECT_NEAR(w(0.95), 88.79547263, 1e-6);
  EXPECT_NEAR(w(1.0), 124.5, 1e-9);  // saturation: W_C - g alpha
  // Above 1 towards H_Limit 1.05: 0.415 + 0.02 x 0.05 / 0.04999, x 300.
  EXPECT_NEAR(w(1.02), 130.50120024, 1e-6);
  // With H_Limit exactly 1.00001 the pores are full at once.
  EXPECT_NEAR(w(1.0, 1.00001), 139.5, 1e-9);
  EXPECT_NEAR(w(1.3, 1.00001), 139.5, 1e-9);
  // Not capped at H_Limit: beyond it the line goes on.
  EXPECT_GT(w(1.2), 0.465 * 300);
}

TEST(Isotherm_Water, WithoutHydrationOnlyTheSaturationWaterRemains) {
  // alpha 0: w35 = wd = 0 and w1 = W_C. The rising rule then moves w35 to wd - 0.001, so below
  // the knee (d = 0.95) the water is slightly negative, of the order of a gram per kg of cement;
  // above the knee the line rises to W_C at h = 1.
  auto w = [](double h) { return Isotherm_Water(0.45, 350, 0, 20, 10, 1.05, h); };
  EXPECT_NEAR(w(0.1), -0.001 * 0.1 / 0.35 * 350, 1e-12);
  EXPECT_NEAR(w(0.5), (-0.001 + 0.15 * 0.001 / 0.6) * 350, 1e-12);
  EXPECT_NEAR(w(0.9), (-0.001 + 0.55 * 0.001 / 0.6) * 350, 1e-12);
  EXPECT_NEAR(w(0.95), 0, 1e-12);
  EXPECT_NEAR(w(0.99), 0.45 * 0.04 / 0.05 * 350, 1e-9);
  EXPECT_NEAR(w(1.0), 0.45 * 350, 1e-9);
}

TEST(Isotherm_Water, CorrectionsKeepTheCurveRising) {
  // W/C 0.25, alpha 1 at 20 oC: w1 = 0.08 lies below wd = 0.31238, so wd = 0.079, and then
  // w35 = 0.1929 is above it, so w35 = 0.078.
  auto w = [](double h) { return Isotherm_Water(0.25, 300, 1, 20, 15, 1.05, h); };
  EXPECT_NEAR(w(0.35), 0.078 * 300, 1e-9);
  EXPECT_NEAR(w(0.839), 0.079 * 300, 1e-9);
  EXPECT_NEAR(w(0.999), (0.079 + 0.001 * 0.16 / 0.161) * 300, 1e-9);
  double previous = -1;
  for (double h = 0.01; h < 1.0; h += 0.01) {
    EXPECT_GT(w(h), previous) << h;
    previous = w(h);
  }
}

TEST(Isotherm_Water, TemperatureAndWaterCementRatioEnterTheCurve) {
  // 45 oC: t = 1, p = -0.258, q = 0.452; W/C 0.55: g = 0.205 + 0.029 = 0.234;
  // w35 = (0.125 + 0.35 (-0.258 + 0.1582)) 0.5 = 0.045035.
  EXPECT_NEAR(Isotherm_Water(0.55, 300, 0.5, 45, 15, 1.05, 0.35), 0.045035 * 300, 1e-9);
  // wd = (0.125 + 0.8945 (-0.258 + 0.404314)) 0.5 = 0.12793894; at 0.7 the second branch.
  EXPECT_NEAR(Isotherm_Water(0.55, 300, 0.5, 45, 15, 1.05, 0.7),
              (0.045035 + 0.35 * (0.1279389365 - 0.045035) / 0.5445) * 300, 1e-7);
  // At 20 oC the water-cement ratio has no influence on g: saturation is W_C - 0.17 alpha.
  EXPECT_NEAR(Isotherm_Water(0.3, 300, 0.5, 20, 15, 1.05, 1.0), (0.3 - 0.085) * 300, 1e-9);
  EXPECT_NEAR(Isotherm_Water(0.6, 300, 0.5, 20, 15, 1.05, 1.0), (0.6 - 0.085) * 300, 1e-9);
}

// A multilinear function is reproduced exactly by trilinear interpolation, inside and, along the
// last interval, beyond the table.
double F(double T, double a, double h) {
  return 1 + 2 * T + 30 * a + 50 * h + 0.5 * T * a * h;
}

Isotherm_Grid Grid_Of_F() {
  Isotherm_Grid g;
  g.Temperature = {0.0, 10.0, 30.0};
  g.Hydration = {0.2, 0.7};
  g.Potential = {0.3, 0.6, 1.0};
  for (double T : g.Temperature)
    for (double a : g.Hydration)
      for (double h : g.Potential)
        g.Value.push_back(F(T, a, h));
  return g;
}

TEST(Isotherm_Table_Water, TrilinearInsideWithTheLastValuesHeldBelowAndExtrapolatedAbove) {
  const Isotherm_Grid g = Grid_Of_F();
  EXPECT_NEAR(Isotherm_Table_Water(0.5, 25, 0.8, g), F(25, 0.5, 0.8), 1e-12);
  EXPECT_NEAR(Isotherm_Table_Water(0.2, 10, 0.6, g), F(10, 0.2, 0.6), 1e-12);  // a grid point
  EXPECT_NEAR(Isotherm_Table_Water(0.45, 5, 0.45, g), F(5, 0.45, 0.45), 1e-12);
  // Below the first point of an axis the first point holds.
  EXPECT_NEAR(Isotherm_Table_Water(0.5, -5, 0.8, g), F(0, 0.5, 0.8), 1e-12);
  EXPECT_NEAR(Isotherm_Table_Water(0.1, 25, 0.1, g), F(25, 0.2, 0.3), 1e-12);
  // Beyond the last point the last interval goes on.
  EXPECT_NEAR(Isotherm_Table_Water(0.5, 40, 0.8, g), F(40, 0.5, 0.8), 1e-12);
  EXPECT_NEAR(Isotherm_Table_Water(0.9, 25, 1.2, g), F(25, 0.9, 1.2), 1e-12);
}

TEST(Isotherm_Table_Water, ShortIntervalsGiveWeightZeroWithTheirOwnTolerances) {
  // Two temperature points 5e-8 apart (below 1e-7): the lower point counts for any temperature.
  Isotherm_Grid g;
  g.Temperature = {20.0, 20.00000005};
  g.Hydration = {0.5};
  g.Potential = {1.0};
  g.Value = {100.0, 200.0};
  EXPECT_DOUBLE_EQ(Isotherm_Table_Water(0.5, 30, 1.0, g), 100);
  // 5e-7 apart is weighted on the temperature axis ...
  g.Temperature = {20.0, 20.0000005};
  EXPECT_NEAR(Isotherm_Table_Water(0.5, 20.00000025, 1.0, g), 150, 1e-6);
  // ... but not on the hydration axis, whose tolerance is 1e-6.
  Isotherm_Grid h;
  h.Temperature = {20.0};
  h.Hydration = {0.5, 0.5000005};
  h.Potential = {1.0};
  h.Value = {100.0, 200.0};
  EXPECT_DOUBLE_EQ(Isotherm_Table_Water(0.50000025, 20, 1.0, h), 100);
}

TEST(Multiply_Symmetric, MultipliesTheUpperTriangleAsAFullMatrix) {
  // B = [1 2 3 4; 2 5 6 7; 3 6 8 9; 4 7 9 10], v = (1, -1, 2, 0.5).
  Array1<double, 10> block;
  for (int i = 1; i <= 10; ++i)
    block[i] = i;
  Array1<double, 4> v;
  v[1] = 1;
  v[2] = -1;
  v[3] = 2;
  v[4] = 0.5;
  Array1<double, 4> r;
  Multiply_Symmetric(r, block, v);
  EXPECT_DOUBLE_EQ(r[1], 1 - 2 + 6 + 2);
  EXPECT_DOUBLE_EQ(r[2], 2 - 5 + 12 + 3.5);
  EXPECT_DOUBLE_EQ(r[3], 3 - 6 + 16 + 4.5);
  EXPECT_DOUBLE_EQ(r[4], 4 - 7 + 18 + 5);
}

}  // namespace
}  // namespace pvx
