// The crack laws at one point without a mesh, against hand-worked values: the corners of the curve,
// unloading, the damage law and the random element factors. The energy a crack dissipates is
// measured on a cracking bar (crack_bar_test.cpp).
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>

#include "analysis/mechanics/cracking.h"

namespace pvx {
namespace {

constexpr double E = 30000, ft = 3, s1 = 0.3, w1 = 0.05, w2 = 0.3, et = ft / E;

// The previous step ends; the new one brings the strain exx in uniaxial stress (lateral strain
// -nu exx where the plane is free to contract) and the stress sxx of the update.
void Next_Step(Mech_Point& p, const Crack_Conditions& c, double exx, double sxx) {
  p.Stress_Start = p.Stress;
  p.Largest_Strain_Start = p.Largest_Strain;
  p.Stiffness_Factor_Start = p.Stiffness_Factor;
  p.Strain[0] = {exx, c.Plane_Stress ? -c.nu * exx : 0, 0, 0};
  p.Stress[0] = {sxx, 0, 0, 0};
}

// Fresh points given a strain and the stress of the update (width -1: not checked). h 100, so
// e1 = 0.9 / E + w1 / 100; a knee before et moves to et + 1e-5, an end before the knee to the knee
// + 1e-5 (g1 = 0.9 / E + 0.1 / 100 for w1 0.1). The last point is in compression only.
TEST(Cracking, CornersAndGuardsOfTheCurve) {
  constexpr double e1 = 0.9 / E + w1 / 100, g1 = 0.9 / E + 0.1 / 100;
  const struct {
    double w1, w2, strain, stress, expected, width;
  } cases[] = {{w1, w2, e1, 0.9, 0.9, w1},
               {w1, w2, w2 / 100, 0, 0, w2},
               {w1, w2, (e1 + w2 / 100) / 2, 20, 0.45, -1},
               {0, w2, et + 1e-5, 20, 0.9, -1},
               {0, w2, et + 5e-6, 20, 1.95, -1},
               {0.1, 0.05, g1 + 5e-6, 20, 0.45, -1},
               {0.1, 0.05, g1 + 1e-5, 20, 0, -1},
               {w1, w2, -1e-4, -3, -3, 0}};
  for (const auto& k : cases) {
    Mech_Point p;
    const Crack_Conditions c{0.2, ft, E, 100, true, 0};
    Next_Step(p, c, k.strain, k.stress);
    if (k.strain < 0) p.Stress[0][1] = k.stress;  // compressed both ways: no tension anywhere
    Bilinear_Crack(c, {s1, k.w1, k.w2, 0}, p);
    EXPECT_NEAR(p.Stress[0][0], k.expected, 1e-9) << k.strain;
    EXPECT_TRUE(k.width < 0 || std::abs(p.Crack_Opening - k.width) < 1e-12) << k.strain;
    EXPECT_EQ(p.Cracked, k.strain > 0) << k.strain;
  }
}

// Cracked at the knee and unloaded: the stress reaches 0 at alfa (e1 - 0.9 / E), alfa 0 being the
// secant to the origin and 1 the parallel to the elastic line (factor 1); reloading climbs back the
// same line to the knee, and the factor holds even though the concrete has hardened to ft 4.
TEST(Cracking, UnloadingLineFollowsAlfa) {
  const Crack_Conditions c{0, ft, E, 100, false, 0};
  const double e1 = 0.9 / E + w1 / 100;
  for (const double alfa : {0.0, 0.5, 1.0}) {
    Mech_Point p;
    const double zero = alfa * (e1 - 0.9 / E), strains[] = {e1, zero, e1};
    for (int i = 0; i < 3; ++i) {
      const double f = p.Stiffness_Factor[0];
      Next_Step(p, c, strains[i], i == 0 ? E * e1 : p.Stress[0][0] + f * E * (strains[i] - strains[i - 1]));
      Bilinear_Crack(i < 2 ? c : Crack_Conditions{0, 4, E, 100, false, 0}, {s1, w1, w2, alfa}, p);
      EXPECT_NEAR(p.Stress[0][0], i == 1 ? 0 : 0.9, 1e-12) << alfa;
      EXPECT_TRUE(i == 0 || std::abs(p.Stiffness_Factor[0] - f) < 1e-12) << alfa;
    }
    EXPECT_TRUE(alfa == 0.5 || std::abs(p.Stiffness_Factor[0] - (alfa == 1 ? 1 : 0.9 / (E * e1))) < 1e-12);
  }
}

// Table law, h 100, alfa 0: e1 = 5.3e-4, e2 = 3e-3. At 1e-3 the crack forms (sc = 1.8 / 2.47) and
// the factor keeps 1; at 1.5e-3 (sc = 1.35 / 2.47) the line pivots about the earlier crack strain
// 1e-3 - sc / E: factor = 1.35 / (2.47 x 15 + 1.8) = 1.35 / 38.85.
TEST(Cracking, TableUnloadingPivotsAboutTheEarlierCrackStrain) {
  Softening law;
  law.Crack_Width = {0, w1, w2}, law.Strength_Factor = {1, s1, 0};
  const Crack_Conditions c{0, ft, E, 100, false, 0};
  Mech_Point p;
  for (const double e : {1e-3, 1.5e-3}) {
    p.Crack_Strain_Start = p.Crack_Strain;
    Next_Step(p, c, e, E * e);
    Table_Crack(c, law, 0, p);
    EXPECT_NEAR(p.Stiffness_Factor[0], e == 1e-3 ? 1 : 1.35 / 38.85, 1e-12);
  }
}

// Ct 2, Acr 0.5, Bcr 1000, Ccr 2, ft 3: x = s Ct / ft of the largest start stress, szz included;
// the largest principal creep strain, never below its start value, lowers ft. Compression and an x
// below 0.001 leave the step as it is, an x of 0.002 lengthens it by x^2 / 6.
TEST(Cracking, EPFLDamageAcceleratesCreepAndLowersStrength) {
  Softening law;
  law.Ct = 2, law.Acr = 0.5, law.Bcr = 1000, law.Ccr = 2;
  const struct {
    Components stress, creep;
    double start, x, creep_max;
  } cases[] = {{{1.5, 0, 0, 0}, {1e-3, -2e-4, 0, 0}, 5e-4, 1, 1e-3},
               {{0.5, 0, 0, 2.4}, {0, 0, 0, 2e-3}, 0, 1.6, 2e-3},
               {{0, 0, 0.9, 0}, {0, 0, 1e-3, 0}, 8e-4, 0.6, 8e-4},
               {{-2, 0, 0, 0}, {-1e-3, 0, 0, 0}, 0, 0, 0},
               {{1e-3, 0, 0, 0}, {}, 0, 0, 0},
               {{3e-3, 0, 0, 0}, {}, 0, 2e-3, 0}};
  for (const auto& k : cases) {
    Mech_Point p;
    p.Stress_Start[0] = k.stress, p.Creep_Strain_Start = k.creep, p.Creep_Max_Start = k.start;
    double f = ft;
    EXPECT_NEAR(Apply_EPFL_Damage(law, f, p), k.x > 0 ? std::sinh(k.x) / k.x : 1, 1e-12) << k.x;
    EXPECT_NEAR(p.Creep_Max, k.creep_max, 1e-15) << k.x;
    EXPECT_NEAR(f, ft * (1 - std::pow(0.5 * (1 - std::exp(-1000 * k.creep_max)), 2)), 1e-12);
    EXPECT_EQ(p.Ft_Copy, f);
  }
}

// 20,000 elements of spread v = 0.1: f = 1 + 2 v (r - 0.5) is uniform in [0.9, 1.1], mean 1 and
// standard deviation v / sqrt(3). A switched-off spread, a spread of -1 and no material leave 1;
// 200 elements of spread 150 % are held short of 100 %.
TEST(Cracking, ElementFactorsAreUniformAndRepeatable) {
  Material varied, off, negative, wide;
  varied.Statistics_Active = negative.Statistics_Active = wide.Statistics_Active = true;
  varied.Statistics_Factor = off.Statistics_Factor = 0.1, negative.Statistics_Factor = -1;
  wide.Statistics_Factor = 1.5;
  constexpr int n = 20000;
  Table<const Material*> materials;
  materials.resize(n, &varied);
  materials.add(&off), materials.add(&negative), materials.add(nullptr);
  materials.resize(n + 203, &wide);
  Table<double> fs, fv, gs, gv;
  Draw_Element_Factors(materials, 7, fs, fv);
  Draw_Element_Factors(materials, 7, gs, gv);
  EXPECT_TRUE(fs == gs && fv == gv && fs[1] != fv[1]);
  for (const Table<double>* t : {&fs, &fv}) {
    const auto [low, high] = std::minmax_element(t->begin(), t->begin() + n);
    EXPECT_TRUE(*low >= 0.9 && *high <= 1.1);
    const double mean = std::accumulate(t->begin(), t->begin() + n, 0.0) / n;
    const double square = std::inner_product(t->begin(), t->begin() + n, t->begin(), 0.0) / n;
    EXPECT_NEAR(mean, 1, 3 * 0.1 / std::sqrt(3.0 * n));
    EXPECT_NEAR(std::sqrt(square - mean * mean), 0.1 / std::sqrt(3.0), 3e-3);
    EXPECT_TRUE((*t)[n + 1] == 1 && (*t)[n + 2] == 1 && (*t)[n + 3] == 1);
    const auto [wide_low, wide_high] = std::minmax_element(t->begin() + n + 3, t->end());
    EXPECT_TRUE(*wide_low > 0.01 - 1e-12 && *wide_high < 1.99 + 1e-12);
  }
}

}  // namespace
}  // namespace pvx
