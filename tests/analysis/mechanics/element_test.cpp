// The continuum element: the patch test on a distorted mesh and the size of the profile.
#include <algorithm>

#include "mechanics_fixture.h"

namespace pvx {
namespace {

// A linear displacement field gives the same stress at every point of a distorted mesh, and the
// forces at the interior nodes balance to nothing, so that with the boundary nodes held at the
// field the interior nodes take the field too. Plane stress, E 30000, nu 0.25; the field has
// exx = 2e-4, eyy = 5e-4, gxy = 2e-4: Sxx = 32000 (2e-4 + 0.25 x 5e-4) = 10.4,
// Syy = 32000 (5e-4 + 0.25 x 2e-4) = 17.6, Sxy = 12000 x 2e-4 = 2.4.
TEST(Mechanical_Element, PatchTestGivesConstantStressOnDistortedMesh) {
  for (const bool constant_shear : {false, true}) {
    SCOPED_TRACE(constant_shear ? "constant shear" : "fully integrated");
    Project p = test::Grid(3, 2, 300, 200, test::Elastic(30000, 0.25), 10);
    p.Constant_Shear = As_Flag(constant_shear);
    const int moved[3] = {test::Node_Of(2, 1, 1), test::Node_Of(2, 2, 1), test::Node_Of(2, 1, 0)};
    const double dx[3] = {17, -13, 23}, dy[3] = {-11, 9, 0};
    for (int k = 0; k < 3; ++k) {
      p.Mesh_Node[moved[k]].X += dx[k];
      p.Mesh_Node[moved[k]].Y += dy[k];
    }
    test::Mechanical_Run r(p);
    Mechanical_State& m = r.run.Mechanics;
    r.run.Mid_Step_Time = 0.5;
    for (int n = 1; n <= p.Mesh_Node.count(); ++n) {
      const double x = p.Mesh_Node[n].X, y = p.Mesh_Node[n].Y;
      m.Total[Place(m, 2 * n - 1)] = m.Step[Place(m, 2 * n - 1)] = 1e-3 + 2e-4 * x - 1e-4 * y;
      m.Total[Place(m, 2 * n)] = m.Step[Place(m, 2 * n)] = -2e-3 + 3e-4 * x + 5e-4 * y;
    }
    Compute_Element_Stresses(p, r.run, 1);
    for (int e = 1; e <= p.Mesh_Element.count(); ++e)
      for (int k = 1; k <= 4; ++k) {
        EXPECT_NEAR(r.S(e, k, 0), 10.4, 1e-9 * 10.4);
        EXPECT_NEAR(r.S(e, k, 1), 17.6, 1e-9 * 17.6);
        EXPECT_NEAR(r.S(e, k, 2), 2.4, 1e-9 * 2.4);
        EXPECT_EQ(r.S(e, k, 3), 0.0);
      }
    // A boundary node carries forces of the order of 10 MPa x 100 mm x 10 mm; interior ones none.
    for (int n : {moved[0], moved[1]}) {
      EXPECT_NEAR(m.Internal[Place(m, 2 * n - 1)], 0, 1e-9 * 1e4);
      EXPECT_NEAR(m.Internal[Place(m, 2 * n)], 0, 1e-9 * 1e4);
    }
  }
}

// One element couples its eight unknowns: a full triangle of 36 entries; the three out-of-plane
// unknowns add full columns of 9, 10 and 11. A tall strip whose nodes are numbered along its length
// (neighbours across it differ by 41) is renumbered across: no column reaches over more than the
// unknowns of two cross-sections and a few more (six per cross-section), where the node order would
// reach over some 170. Every equation gets a place of its own.
TEST(Mechanical_Element, NumberingAndProfile) {
  struct Case {
    int nx, ny;
    bool out_of_plane;
    int equations, profile, highest;  // a profile of 0 is not checked
  };
  for (const Case& c :
       {Case{1, 1, false, 8, 36, 8}, Case{1, 1, true, 11, 66, 11}, Case{2, 40, false, 246, 0, 15}}) {
    Project p = test::Grid(c.nx, c.ny, 100.0 * c.nx, 100.0 * c.ny, test::Elastic(30000, 0.2));
    p.Out_Of_Plane.Plane_Stress = As_Flag(!c.out_of_plane);
    p.Out_Of_Plane.Plane_Strain = As_Flag(c.out_of_plane);
    Mechanical_State m;
    Set_Mechanical_Equations(p, m);
    EXPECT_EQ(m.Equations, c.equations);
    if (c.profile > 0) {
      EXPECT_EQ(m.Profile_Size, c.profile);
    }
    EXPECT_LE(m.Max_Column_Height, c.highest);
    std::vector<int> seen(static_cast<std::size_t>(m.Equations) + 1, 0);
    for (int q = 1; q <= m.Equations; ++q)
      ++seen[static_cast<std::size_t>(m.Renumber[q])];
    EXPECT_EQ(std::count(seen.begin() + 1, seen.end(), 1), m.Equations);
  }
}

}  // namespace
}  // namespace pvx
