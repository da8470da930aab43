// A thick cylinder under internal pressure in the axisymmetric form, against Lame's solution.
#include "mechanics_fixture.h"

namespace pvx {
namespace {

// Inner radius a = 100, outer b = 200 mm (Ro = 100, the mesh from x = 0 to 100), 10 mm high with
// open ends (held in y along the bottom only), p = 10 MPa inside. Lame: Sr = A - B / r^2,
// Shoop = A + B / r^2, A = p a^2 / (b^2 - a^2) = 10/3, B = p a^2 b^2 / (b^2 - a^2) = 4e5/3; at
// mid-wall, r = 150: Sr = -2.5926, Shoop = 9.2593, and no axial stress.
TEST(Mechanical_Axisymmetric, ThickCylinderFollowsLame) {
  struct Case {
    int nx;
    double radial, hoop, axial;  // relative errors allowed, the axial one of the hoop stress
  };
  // Reached at the node at mid-wall: 10 elements 1.1e-2 (radial), 9.0e-4 (hoop), 5.2e-4 (axial);
  // 20 elements 2.7e-3, 2.3e-4, 1.3e-4: the errors fall with the square of the element size.
  for (const Case& c : {Case{10, 1.2e-2, 1e-3, 6e-4}, Case{20, 3e-3, 2.5e-4, 1.5e-4}}) {
    SCOPED_TRACE(c.nx);
    Project p = test::Grid(c.nx, 1, 100, 10, test::Elastic(30000, 0.25));
    p.Out_Of_Plane.Plane_Stress = False_Flag;
    p.Out_Of_Plane.Axisymmetric = True_Flag;
    p.Out_Of_Plane.Offset_Radius = 100;
    for (int i = 0; i <= c.nx; ++i)
      test::Hold(p, test::Node_Of(1, i, 0), -90);
    test::Line_Load(p, test::Node_Of(1, 0, 0), test::Node_Of(1, 0, 1), 10, 0, 100);
    test::Mechanical_Run r(p);
    ASSERT_EQ(r.Step(p), Mechanical_Step::Converged) << r.message;
    // The node at r = 150 as its elements give it.
    Compute_Nodal_Stresses(p, r.run);
    const std::vector<double>& s = r.run.Mechanics.Out_Corner_Stress;
    const auto corner = static_cast<std::size_t>(16 * (c.nx / 2));  // corner 1 of the element beyond it
    const double A = 10.0 / 3, B = 4e5 / 3, r2 = 150.0 * 150.0;
    EXPECT_NEAR(s[corner] / (A - B / r2), 1, c.radial);
    EXPECT_NEAR(s[corner + 3] / (A + B / r2), 1, c.hoop);
    EXPECT_NEAR(s[corner + 1], 0, c.axial * (A + B / r2));
  }
}

}  // namespace
}  // namespace pvx
