// A bar held at both ends and cooled until it cracks through: the stress reaches the strength of
// its weakest element, a crack opens there and, once the bar is free of stress, the work the
// cooling did on the bar is the energy its crack dissipated. Per unit of crack area that is the
// fracture energy of the softening law, whatever the element size, since the law is written in
// crack width and spread over the band width of the element.
#include <algorithm>

#include "mechanics_fixture.h"

namespace pvx {
namespace {

constexpr double E = 30000, alpha = 1e-5, ft = 1, L = 200, t = 10;
// Bilinear softening: ft down to s1 ft at w1, to 0 at w2. Fracture energy, N/mm:
// ft w1 (1 + s1) / 2 + s1 ft (w2 - w1) / 2.
constexpr double s1 = 0.3, w1 = 0.05, w2 = 0.3;
constexpr double Gf = ft * w1 * (1 + s1) / 2 + s1 * ft * (w2 - w1) / 2;
constexpr double Weak = 0.95;  // strength factor of the element where the crack is to form

enum class Curve { None, Bilinear, Table };

Material Softening_Concrete(Curve curve) {
  Material m = test::Elastic(E, 0, alpha);
  m.Ft = test::Constant_Property(ft);
  Softening& s = m.Softening_Law;
  s.Has_Softening = curve != Curve::None;
  s.s1 = s1;
  s.w1 = w1;
  s.w2 = w2;
  s.alfa = 0;
  if (curve == Curve::Table) {  // the same curve as three points
    s.Crack_Width = {0, w1, w2};
    s.Strength_Factor = {1, s1, 0};
  }
  return m;
}

struct Bar_Result {
  double peak = 0;         // largest stress of the weak element, MPa
  double dissipated = 0;   // work of the cooling on the bar, per unit of its cross-section, N/mm
  double last_stress = 0;  // of the weak element at the end, MPa
  double opening = 0;      // crack opening of the weak element at the end, mm
  bool cracked_elsewhere = false;
};

// nx square elements along the bar (one across it), plane stress with nu = 0: a uniaxial bar.
// Cooled by `cooling` degrees in steps that are fine until the bar cracks, coarser after.
Bar_Result Cool_Bar(Curve curve, int nx, double cooling) {
  const double a = L / nx;
  Project p = test::Grid(nx, 1, L, a, Softening_Concrete(curve), t);
  test::Hold(p, 1, -90);
  test::Hold_Column(p, 1, 0, {0});
  test::Hold_Column(p, 1, nx, {0});
  test::Mechanical_Run r(p);
  Run_State& run = r.run;
  run.Mechanical_Iteration_Limit = 500;
  run.Mechanical_Limits[0] = 1e-10;
  run.Mechanical_Limits[1] = 0;
  run.Mechanical_Limits[2] = 0;
  const int weak = nx / 2 + 1;
  run.Mechanics.Strength_Factor[weak] = Weak;

  Bar_Result out;
  double cooled = 0;
  while (cooled < cooling - 1e-9) {
    const double dT = std::min(cooled < 4 ? 0.02 : 0.25, cooling - cooled);
    cooled += dT;
    EXPECT_EQ(r.Step(p, -dT), Mechanical_Step::Converged) << r.message << " at " << cooled;
    // Work of the step on every point: the mean stress over the step times the mechanical strain
    // increment, over the area a point stands for (a quarter of the element).
    for (int e = 1; e <= nx; ++e)
      for (int k = 1; k <= 4; ++k) {
        const Mech_Point& q = Mech(run.Mechanics, e, k);
        for (std::size_t i = 0; i < 4; ++i)
          out.dissipated += (q.Stress_Start[0][i] + q.Stress[0][i]) / 2 *
                            (q.Strain[0][i] - q.Strain_Start[0][i]) * a * a / 4 * t;
        if (e == weak) out.peak = std::max(out.peak, q.Stress[0][0]);
        if (e != weak && q.Cracked) out.cracked_elsewhere = true;
      }
    Update_Mechanical_End_Of_Step(p, run);
    Update_End_Of_Step(run);
  }
  out.dissipated /= a * t;
  out.last_stress = r.S(weak, 1, 0);
  out.opening = Mech(run.Mechanics, weak, 1).Crack_Opening;
  return out;
}

TEST(Cracking_Bar, DissipatesTheFractureEnergyPerCrackAreaForAnyElementSize) {
  // Cooled by 180 degrees the bar shortens by alpha 180 L = 0.36 mm, more than w2: the crack
  // opens through and the bar ends free of stress with the whole shortening in its crack.
  struct Case {
    Curve curve;
    int nx;
  } cases[] = {{Curve::Bilinear, 10}, {Curve::Bilinear, 5}, {Curve::Table, 8}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.nx);
    const Bar_Result b = Cool_Bar(c.curve, c.nx, 180);
    // The stress climbs by 0.006 MPa a step to the weak element's strength and no higher.
    EXPECT_LE(b.peak, Weak * ft + 1e-9);
    EXPECT_GE(b.peak, Weak * ft - 0.01);
    EXPECT_NEAR(b.last_stress, 0, 1e-6);
    EXPECT_FALSE(b.cracked_elsewhere);
    // The crack takes what the free bar would shorten, less the give of the held ends.
    EXPECT_NEAR(b.opening, alpha * 180 * L, 5e-4 * alpha * 180 * L);
    // Each converged step lies on the curve and the curve is straight between its corners, so the
    // trapezoids of the steps add up to its area. The weak element's curve is the material's, its
    // stresses scaled by its strength factor.
    const double expected = Weak * Gf;
    EXPECT_NEAR(b.dissipated, expected, 1e-3 * expected);
  }
}

TEST(Cracking_Bar, WithoutSofteningTheStressPassesTheStrength) {
  const Bar_Result b = Cool_Bar(Curve::None, 5, 5);
  // E alpha 5 = 1.5 MPa, half as much again as the strength.
  EXPECT_NEAR(b.last_stress, E * alpha * 5, 3e-3 * E * alpha * 5);
  EXPECT_EQ(b.opening, 0);
}

}  // namespace
}  // namespace pvx
