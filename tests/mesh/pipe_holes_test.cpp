// Cooling pipes made into holes: the wall nodes, the six elements per quarter, and refusals.
#include "mesh/pipe_holes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "mesh_fixtures.h"

namespace pvx {
namespace {

using test::Corners;

// Four 100 x 100 macros round the design node (100, 100), with a circuit of one pipe there. The
// mesh numbers the corners as the macros meet them: (0,0) 1, (100,0) 2, (100,100) 3, (0,100) 4,
// (200,0) 5, (200,100) 6, (200,200) 7, (100,200) 8, (0,200) 9.
Project Four_Around(double diameter) {
  Project p = test::Empty_Project();
  for (int j = 0; j < 9; ++j)
    Add_Node(p, 100.0 * (j % 3), 100.0 * (j / 3));  // design node j + 1
  for (const int c : {1, 2, 5, 4})
    test::Add_Macro(p, c, c + 1, c + 4, c + 3);
  test::Add_Circuit(p, {5}, diameter);
  return p;
}

// The wall of pipe k: eight nodes at `radius` from (x, y), the ninth the first again; round a pipe
// on its node 45 degrees apart counter-clockwise (round one moved to it, on the rays to the
// corners and side midpoints of the elements instead).
void Expect_Wall(const Project& p, int k, double x, double y, double radius, bool regular = true) {
  const auto& wall = p.Circuit[1].Pipe_Connection[k];
  EXPECT_EQ(wall[9], wall[1]);
  const double first = std::atan2(p.Mesh_Node[wall[1]].Y - y, p.Mesh_Node[wall[1]].X - x);
  for (int j = 1; j <= 8; ++j) {
    const Mesh_Node& n = p.Mesh_Node[wall[j]];
    EXPECT_NEAR(std::hypot(n.X - x, n.Y - y), radius, 1e-9) << j;
    const double turn = std::atan2(n.Y - y, n.X - x) - first - (j - 1) * std::numbers::pi / 4;
    EXPECT_NEAR(regular ? std::remainder(turn, 2 * std::numbers::pi) : 0, 0, 1e-9) << j;
  }
}

TEST(Integrate_Circuits, EightWallNodesAndSixElementsPerQuarter) {
  Project p = Four_Around(20);
  Mesh_Session s = test::Meshed(p);
  std::string message;
  ASSERT_TRUE(Integrate_Circuits(p, s, message)) << message;
  EXPECT_TRUE(s.Circuits_Integrated);
  // 20 elements more; 23 nodes more (the pipe's node becomes the first wall node).
  ASSERT_EQ(p.Mesh_Element.count(), 24);
  ASSERT_EQ(p.Mesh_Node.count(), 32);
  // The wall counter-clockwise from the ray towards (0,100), at 180 degrees.
  EXPECT_EQ(p.Circuit[1].Pipe_Connection[1][1], 3);
  EXPECT_NEAR(p.Mesh_Node[3].X, 90, 1e-12);
  Expect_Wall(p, 1, 100, 100, 10);
  // First quarter, element 1 with the pipe at its corner 3: rays to (0,100), (0,0), (100,0), with
  // R on the wall, Q half way to M, M half way from R to the outer corner: on the first ray
  // R (90,100) 3, Q (67.5,100) 10, M (45,100) 11; on the diagonal R 12, Q 13, M 14.
  const std::array<int, 4> quarter[6] = {{3, 10, 13, 12},  {10, 11, 14, 13}, {11, 4, 1, 14},
                                         {12, 13, 16, 15}, {13, 14, 17, 16}, {14, 1, 2, 17}};
  for (int k = 0; k < 6; ++k)
    EXPECT_EQ(Corners(p, k == 0 ? 1 : 4 + k), quarter[k]) << k;
  EXPECT_NEAR(p.Mesh_Node[10].X, 67.5, 1e-12);
  EXPECT_NEAR(p.Mesh_Node[11].X, 45, 1e-12);
  const double r = 100 - 10 / std::sqrt(2.0);  // the wall point on the diagonal
  EXPECT_NEAR(p.Mesh_Node[12].X, r, 1e-12);
  EXPECT_NEAR(p.Mesh_Node[13].Y, (r + r / 2) / 2, 1e-12);
  EXPECT_NEAR(p.Mesh_Node[14].Y, r / 2, 1e-12);
  // Each quarter: the element and five copies of it, in quarter order.
  for (int e = 1; e <= 24; ++e)
    EXPECT_EQ(p.Mesh_Element[e].Macro_Number, e <= 4 ? e : (e - 5) / 5 + 1) << e;
  // The hole is the regular octagon of radius 10.
  EXPECT_NEAR(test::Mesh_Area(p), 200.0 * 200 - 2 * std::sqrt(2.0) * 100, 1e-9);
  test::Expect_Sound(p);

  // Integrating twice is refused.
  const Project integrated = p;
  EXPECT_FALSE(Integrate_Circuits(p, s, message));
  EXPECT_EQ(p, integrated);
}

TEST(Integrate_Circuits, TwoPipesInACutMeshOneOffItsNode) {
  // A 400 x 200 block cut into a 4 x 2 grid, pipes of 30 mm at (100,100) and 0.3 mm above the
  // mesh node (300,100): that node is moved to the pipe.
  Project p = test::Empty_Project();
  for (auto [x, y] :
       {std::pair{0.0, 0.0}, {400.0, 0.0}, {400.0, 200.0}, {0.0, 200.0}, {100.0, 100.0}, {300.0, 100.3}})
    Add_Node(p, x, y);
  test::Add_Macro(p, 1, 2, 3, 4);
  test::Add_Circuit(p, {5, 6}, 30);
  Mesh_Session s = test::Meshed(p);
  ASSERT_EQ(test::Cut(p, s, 1, 1, 4), "");
  ASSERT_EQ(test::Cut(p, s, 1, 2, 2), "");
  const int nodes = p.Mesh_Node.count();
  std::string message;
  ASSERT_TRUE(Integrate_Circuits(p, s, message)) << message;
  EXPECT_EQ(p.Mesh_Element.count(), 8 + 2 * 20);
  EXPECT_EQ(p.Mesh_Node.count(), nodes + 2 * 23);
  Expect_Wall(p, 1, 100, 100, 15);
  Expect_Wall(p, 2, 300, 100.3, 15, false);
  test::Expect_Sound(p);
}

TEST(Integrate_Circuits, RefusedWithNothingChanged) {
  // A pipe on the outline, where two elements meet; a second pipe at the same place, which finds
  // the first pipe's wall (all of it is undone); a pipe wider than its elements.
  const char* messages[3] = {"mesh node 2 is a corner of 2 elements", "", "does not fit"};
  for (int k = 0; k < 3; ++k) {
    Project p = Four_Around(k == 2 ? 250 : 20);
    Resize_Pipes(p.Circuit[1], k == 1 ? 2 : 1);
    p.Circuit[1].Pipe_Node[k == 1 ? 2 : 1] = static_cast<std::int16_t>(k == 0 ? 2 : 5);
    Mesh_Session s = test::Meshed(p);
    const Project before = p;
    std::string message;
    EXPECT_FALSE(Integrate_Circuits(p, s, message)) << k;
    EXPECT_NE(message.find(messages[k]), std::string::npos) << message;
    EXPECT_EQ(p, before);
    EXPECT_FALSE(s.Circuits_Integrated);
  }
}

}  // namespace
}  // namespace pvx
