// A cantilever in plane stress against beam theory, as the mesh is refined.
#include "mechanics_fixture.h"

namespace pvx {
namespace {

// L 2000, h 200, thickness 100 mm, E 30000, nu 0, clamped at x = 0 (every node held both ways) and
// loaded by P = 10 kN of shear on its free end. Beam theory with the shear term:
// P L^3 / (3 E I) + P L / (5/6 G A) = 13.3333 + 0.0800 = 13.4133 mm.
double Tip_Deflection_Ratio(int nx, int ny, bool constant_shear) {
  const double L = 2000, h = 200, t = 100, E = 30000, P = 10000;
  Project p = test::Grid(nx, ny, L, h, test::Elastic(E, 0), t);
  p.Constant_Shear = As_Flag(constant_shear);
  test::Hold_Column(p, ny, 0, {0, -90});
  for (int j = 0; j < ny; ++j)
    test::Line_Load(p, test::Node_Of(ny, nx, j), test::Node_Of(ny, nx, j + 1), P / (h * t), -90, t);
  test::Mechanical_Run r(p);
  EXPECT_EQ(r.Step(p), Mechanical_Step::Converged) << r.message;
  double tip = 0;
  for (int j = 0; j <= ny; ++j)
    tip -= r.U(test::Node_Of(ny, nx, j), 2) / (ny + 1);
  const double I = t * h * h * h / 12;
  return tip / (P * L * L * L / (3 * E * I) + P * L / (5.0 / 6 * E / 2 * h * t));
}

// Ratios reached, constant shear / fully integrated: 5 x 1: 0.989 / 0.333; 10 x 2: 0.997 / 0.666;
// 20 x 4: 0.999 / 0.889; 40 x 8: 1.000 / 0.970. One fully integrated element across the depth, twice
// as long as deep, has a parasitic shear that leaves 1 / (1 + (a/b)^2 / 2) = 1/3 of the bending
// deflection.
TEST(Mechanical_Cantilever, ConstantShearConvergesWhereFullIntegrationLocks) {
  struct Case {
    int nx, ny;
    double shear_at_least, full_at_most;
  };
  double previous = 0;
  for (const Case& c : {Case{5, 1, 0.985, 0.34}, Case{10, 2, 0.995, 0.67}, Case{20, 4, 0.998, 0.89},
                        Case{40, 8, 0.999, 0.97}}) {
    SCOPED_TRACE(std::to_string(c.nx) + " x " + std::to_string(c.ny));
    const double shear = Tip_Deflection_Ratio(c.nx, c.ny, true);
    const double full = Tip_Deflection_Ratio(c.nx, c.ny, false);
    EXPECT_GT(shear, c.shear_at_least);
    EXPECT_LT(shear, 1.001);
    EXPECT_LT(full, c.full_at_most);
    EXPECT_GT(full, previous);  // it does converge, slowly
    if (c.ny == 1) {
      EXPECT_NEAR(full, 1.0 / 3, 0.003);
    }
    previous = full;
  }
}

}  // namespace
}  // namespace pvx
