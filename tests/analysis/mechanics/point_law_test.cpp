// The law of one point as the stress loop calls it: the model name picks the law, the conditions of
// the step reach it, and a softening point's factor and crack cut act on the law's stress.
// Uniaxial in plane stress with nu = 0, so the unit stiffness is 1 along xx.
#include <gtest/gtest.h>

#include <cmath>

#include "analysis/mechanics/point_law.h"
#include "mechanics_fixture.h"

namespace pvx {
namespace {

constexpr double E = 30000;

Material Law(const char* model) {
  Material m = test::Elastic(E, 0);
  m.Model_Name = model;
  m.Retardation_Time.add(10);
  m.Chain_Coefficient.add({1.0});
  m.E_Mod_A = test::Constant_Property(20000), m.Tau_A = test::Constant_Property(50);
  m.E_Mod_B = test::Constant_Property(40000), m.Tau_B = test::Constant_Property(5);
  return m;
}

double Strained(const Material& m, Point_Conditions c, double strain, Mech_Point& p) {
  p.Strain[0][0] += strain;
  Update_Point_Stress(m, c, Components{strain, 0, 0, 0}, p);
  return p.Stress[0][0];
}

TEST(Point_Law, TheModelPicksTheLawAndTheStepReachesIt) {
  Point_Conditions c;
  c.E = E, c.dt = 1, c.Plane_Stress = true, c.Band = 100;
  // A chain unit of tau 10 held after a strain of 1e-4 keeps exp(-0.1) a step, less the transient
  // share a |dT| = 0.01 of a degree a step.
  Material chain = Law("Maxwell Chain");
  chain.Transient_Creep = true, chain.Transient_a = 0.01;
  Mech_Point p;
  const double first = Strained(chain, c, 1e-4, p);
  EXPECT_NEAR(first, E * 1e-4 * (1 - std::exp(-0.1)) / 0.1, 1e-9);
  c.dT = 1;
  for (int n = 1; n <= 5; ++n) {
    p.Stress_Start = p.Stress;
    EXPECT_NEAR(Strained(chain, c, 0, p), first * std::pow(std::exp(-0.1) - 0.01, n), 1e-9) << n;
  }
  c.dT = 0;
  // The Burger body's step compliance 1/A + dt/(2 A tA) + (1 - (1 - exp(-dt/tB)) tB/dt)/B; a model
  // without a law carries nothing; linear elastic is E.
  const double burger = 1 / (1 / 2e4 + 1 / (2 * 2e4 * 50) + (1 - (1 - std::exp(-0.2)) * 5) / 4e4);
  EXPECT_NEAR(Effective_Modulus(Law("Burger Model"), c, Mech_Point{}), burger, 1e-9 * burger);
  EXPECT_EQ(Effective_Modulus(Law("Soil"), c, Mech_Point{}), 0);
  Mech_Point soil;
  EXPECT_EQ(Strained(Law("Soil"), c, 1e-3, soil), 0);
  EXPECT_EQ(Effective_Modulus(Law("Linear Elastic"), c, Mech_Point{}), E);
}

// A softening point: its start factor scales the stress increment, its current factor the tangent;
// a cut of a chain point's total takes its unit along. Bilinear, ft 3, s1 0.3, w1 0.05 over a band
// of 100: et = 1e-4, e1 = 0.9 / E + 5e-4 = 5.3e-4; at a strain of 3e-4 the curve is at
// 3 - 2.1 (2 / 4.3) = 2.0232558.
TEST(Point_Law, SofteningScalesTheLawAndCutsItsStress) {
  Point_Conditions c;
  c.E = E, c.dt = 1, c.Plane_Stress = true, c.Band = 100;
  for (const char* model : {"Linear Elastic", "Maxwell Chain"}) {
    Material m = Law(model);
    m.Retardation_Time[1] = 1e30;  // a chain unit that does not flow: elastic
    m.Softening_Law.Has_Softening = true;
    m.Softening_Law.s1 = 0.3, m.Softening_Law.w1 = 0.05, m.Softening_Law.w2 = 0.3;
    Mech_Point p;
    p.Ft = 3;
    p.Stiffness_Factor_Start[0] = p.Stiffness_Factor[0] = 0.5;
    EXPECT_EQ(Effective_Modulus(m, c, p), 0.5 * E) << model;
    EXPECT_NEAR(Strained(m, c, 1e-4, p), 0.5 * E * 1e-4, 1e-9) << model;
    // A unit that does not flow leaves no creep strain, however soft the crack has made the point.
    EXPECT_NEAR(p.Creep_Strain[0], 0, 1e-15) << model;
    Mech_Point q;
    q.Ft = 3;
    EXPECT_NEAR(Strained(m, c, 3e-4, q), 3 - 2.1 * 2 / 4.3, 1e-9) << model;
    EXPECT_TRUE(q.Cracked && !p.Cracked);
    const double unit = q.Stress.size() > 1 ? q.Stress[1][0] : q.Stress[0][0];
    EXPECT_NEAR(unit, q.Stress[0][0], 1e-12) << model;
  }
}

}  // namespace
}  // namespace pvx
