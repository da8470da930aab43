// Stresses from a uniform temperature change, in plane stress and in the out-of-plane forms.
#include "mechanics_fixture.h"

namespace pvx {
namespace {

// E 30000, nu 0.25, alpha 1e-5, a rise of 20 degrees: E alpha dT = 6 MPa. The material holds alpha
// in single precision, which is 1e-5 to within 6e-8 of itself: that is the accuracy of a free plate.
constexpr double E = 30000, nu = 0.25, alpha = 1e-5, dT = 20, Eat = E * alpha * dT;

// A plate of 1000 x 100 mm in 4 x 2 elements, free (held at its first node both ways and at node
// (4, 0) in y), or with both ends held in x. In generalised plane strain the out-of-plane strain is
// ezz = c0 + c1 x + c2 y, its three unknowns fixed (classic plane strain: ezz = 0) or free.
TEST(Mechanical_Temperature, UniformRiseInEachOutOfPlaneForm) {
  struct Case {
    const char* name;
    bool plane_strain, dilatation_fixed, rotations_fixed, held;
    double sxx, syy, szz;  // over E alpha dT
    double c0;             // over alpha dT
    double expansion;      // of a free plate, over alpha dT L
  };
  const double f = 1 / (1 - nu);
  for (const Case& c : {Case{"plane stress, free", false, false, false, false, 0, 0, 0, 0, 1},
                        Case{"plane stress, held", false, false, false, true, -1, 0, 0, 0, 0},
                        Case{"plane strain, held", true, true, true, true, -f, 0, -f, 0, 0},
                        Case{"plane strain, free", true, true, true, false, 0, 0, -1, 0, 1 + nu},
                        Case{"all free, free", true, false, false, false, 0, 0, 0, 1, 1},
                        Case{"all free, held", true, false, false, true, -1, 0, 0, 1 + nu, 0},
                        Case{"dilatation free, free", true, false, true, false, 0, 0, 0, 1, 1}}) {
    SCOPED_TRACE(c.name);
    Project p = test::Grid(4, 2, 1000, 100, test::Elastic(E, nu, alpha), 10);
    test::Hold(p, 1, -90);
    test::Hold(p, 1, 0);
    for (int j = 0; j <= 2 && c.held; ++j) {
      test::Hold(p, test::Node_Of(2, 0, j), 0);
      test::Hold(p, test::Node_Of(2, 4, j), 0);
    }
    if (!c.held) test::Hold(p, test::Node_Of(2, 4, 0), -90);
    p.Out_Of_Plane.Plane_Stress = As_Flag(!c.plane_strain);
    p.Out_Of_Plane.Plane_Strain = As_Flag(c.plane_strain);
    p.Out_Of_Plane.Dilatation_Fixed = As_Flag(c.dilatation_fixed);
    p.Out_Of_Plane.Rotation_X_Fixed = p.Out_Of_Plane.Rotation_Y_Fixed = As_Flag(c.rotations_fixed);
    test::Mechanical_Run r(p);
    ASSERT_EQ(r.Step(p, dT), Mechanical_Step::Converged) << r.message;
    // Held ends are penalties that give way by about 1/1000 of what they hold.
    const double give = c.held ? 3e-3 : 1e-7, tolerance = give * Eat;
    for (int e = 1; e <= p.Mesh_Element.count(); ++e) {
      EXPECT_NEAR(r.S(e, 2, 0), c.sxx * Eat, tolerance);
      EXPECT_NEAR(r.S(e, 2, 1), c.syy * Eat, tolerance);
      EXPECT_NEAR(r.S(e, 2, 3), c.szz * Eat, tolerance);
    }
    if (!c.held) {
      EXPECT_NEAR(r.U(test::Node_Of(2, 4, 2), 1), c.expansion * alpha * dT * 1000, 1e-7 * 0.2);
    }
    if (!c.plane_strain) continue;
    const Mechanical_State& m = r.run.Mechanics;
    EXPECT_NEAR(m.Total[m.Equations - 2], c.c0 * alpha * dT, 3e-3 * alpha * dT);
    // No curvature: over the plate the out-of-plane strain varies by no more than the supports give.
    EXPECT_NEAR(m.Total[m.Equations - 1] * 1000, 0, give * alpha * dT);
    EXPECT_NEAR(m.Total[m.Equations] * 100, 0, give * alpha * dT);
  }
}

TEST(Mechanical_Moisture, ADropOfPotentialShrinksByTheHygralDilatation) {
  // Plane stress, the potential falls by 0.2 with a hygral dilatation of 0.0015: a free plate
  // shortens by 0.0003 of its length, a held one carries E 0.0003 = 9 MPa of tension.
  const double beta = 0.0015, dh = -0.2;
  for (const bool held : {false, true}) {
    SCOPED_TRACE(held ? "held" : "free");
    Material m = test::Elastic(E, nu);
    m.Hygral_Dilatation = test::Constant_Property(beta);
    Project p = test::Grid(4, 2, 1000, 100, m, 10);
    test::Hold(p, 1, -90);
    test::Hold(p, 1, 0);
    for (int j = 0; j <= 2 && held; ++j) {
      test::Hold(p, test::Node_Of(2, 0, j), 0);
      test::Hold(p, test::Node_Of(2, 4, j), 0);
    }
    if (!held) test::Hold(p, test::Node_Of(2, 4, 0), -90);
    test::Mechanical_Run r(p);
    for (double& h : r.run.Moisture_New)
      h += dh;
    ASSERT_EQ(r.Step(p), Mechanical_Step::Converged) << r.message;
    if (held) {
      for (int e = 1; e <= p.Mesh_Element.count(); ++e)
        EXPECT_NEAR(r.S(e, 2, 0), -E * beta * dh, 3e-3 * E * beta * -dh);
    } else {
      EXPECT_NEAR(r.U(test::Node_Of(2, 4, 2), 1), beta * dh * 1000, 1e-6 * 0.3);
    }
  }
}

}  // namespace
}  // namespace pvx
