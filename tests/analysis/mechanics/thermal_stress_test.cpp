// Stresses from a uniform temperature change or drop of potential, in plane stress and in the
// out-of-plane forms.
#include "mechanics_fixture.h"

namespace pvx {
namespace {

// E 30000, nu 0.25, alpha 1e-5, a rise of 20 degrees: a free strain of 2e-4 and E alpha dT = 6 MPa.
// The material holds alpha in single precision, which is 1e-5 to within 6e-8 of itself: that is the
// accuracy of a free plate. A drop of potential by 0.2 with a hygral dilatation of 0.0015 instead is
// a free strain of -3e-4.
constexpr double E = 30000, nu = 0.25, alpha = 1e-5, dT = 20, beta = 0.0015, dh = -0.2;

// A plate of 1000 x 100 mm in 4 x 2 elements, free (held at its first node both ways and at node
// (4, 0) in y), or with both ends held in x. In generalised plane strain the out-of-plane strain is
// ezz = c0 + c1 x + c2 y, its three unknowns fixed (classic plane strain: ezz = 0) or free.
TEST(Mechanical_Temperature, UniformRiseOrShrinkageInEachOutOfPlaneForm) {
  struct Case {
    const char* name;
    bool plane_strain, dilatation_fixed, rotations_fixed, held, drying;
    double sxx, syy, szz;  // over E times the free strain
    double c0;             // over the free strain
    double expansion;      // of a free plate, over the free strain times L
  };
  const double f = 1 / (1 - nu);
  for (const Case& c :
       {Case{"plane stress, free", false, false, false, false, false, 0, 0, 0, 0, 1},
        Case{"plane stress, held", false, false, false, true, false, -1, 0, 0, 0, 0},
        Case{"plane strain, held", true, true, true, true, false, -f, 0, -f, 0, 0},
        Case{"plane strain, free", true, true, true, false, false, 0, 0, -1, 0, 1 + nu},
        Case{"all free, free", true, false, false, false, false, 0, 0, 0, 1, 1},
        Case{"all free, held", true, false, false, true, false, -1, 0, 0, 1 + nu, 0},
        Case{"dilatation free, free", true, false, true, false, false, 0, 0, 0, 1, 1},
        Case{"drying, plane stress, free", false, false, false, false, true, 0, 0, 0, 0, 1},
        Case{"drying, plane stress, held", false, false, false, true, true, -1, 0, 0, 0, 0}}) {
    SCOPED_TRACE(c.name);
    Material m = test::Elastic(E, nu, c.drying ? 0 : alpha);
    if (c.drying) m.Hygral_Dilatation = test::Constant_Property(beta);
    const double free_strain = c.drying ? beta * dh : alpha * dT, stress = E * free_strain;
    Project p = test::Grid(4, 2, 1000, 100, m, 10);
    test::Hold(p, 1, -90);
    test::Hold(p, 1, 0);
    if (c.held) {
      test::Hold_Column(p, 2, 0, {0});
      test::Hold_Column(p, 2, 4, {0});
    } else {
      test::Hold(p, test::Node_Of(2, 4, 0), -90);
    }
    p.Out_Of_Plane.Plane_Stress = As_Flag(!c.plane_strain);
    p.Out_Of_Plane.Plane_Strain = As_Flag(c.plane_strain);
    p.Out_Of_Plane.Dilatation_Fixed = As_Flag(c.dilatation_fixed);
    p.Out_Of_Plane.Rotation_X_Fixed = p.Out_Of_Plane.Rotation_Y_Fixed = As_Flag(c.rotations_fixed);
    test::Mechanical_Run r(p);
    for (double& h : r.run.Moisture_New)
      h += c.drying ? dh : 0;
    ASSERT_EQ(r.Step(p, c.drying ? 0 : dT), Mechanical_Step::Converged) << r.message;
    // Held ends are penalties that give way by about 1/1000 of what they hold.
    const double give = c.held ? 3e-3 : 1e-7, tolerance = give * std::fabs(stress);
    for (int e = 1; e <= p.Mesh_Element.count(); ++e) {
      EXPECT_NEAR(r.S(e, 2, 0), c.sxx * stress, tolerance);
      EXPECT_NEAR(r.S(e, 2, 1), c.syy * stress, tolerance);
      EXPECT_NEAR(r.S(e, 2, 3), c.szz * stress, tolerance);
    }
    if (!c.held) {
      EXPECT_NEAR(r.U(test::Node_Of(2, 4, 2), 1), c.expansion * free_strain * 1000,
                  1e-7 * std::fabs(free_strain) * 1000);
    }
    if (!c.plane_strain) continue;
    const Mechanical_State& ms = r.run.Mechanics;
    EXPECT_NEAR(ms.Total[ms.Equations - 2], c.c0 * free_strain, 3e-3 * free_strain);
    // No curvature: over the plate the out-of-plane strain varies by no more than the supports give.
    EXPECT_NEAR(ms.Total[ms.Equations - 1] * 1000, 0, give * free_strain);
    EXPECT_NEAR(ms.Total[ms.Equations] * 100, 0, give * free_strain);
  }
}

}  // namespace
}  // namespace pvx
