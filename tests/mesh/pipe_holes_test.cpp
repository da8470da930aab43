// Cooling pipes made into holes: the wall nodes, the six elements per quarter, and refusals.
#include <gtest/gtest.h>

#include <cmath>

#include "mesh/initial_mesh.h"
#include "mesh/pipe_holes.h"
#include "mesh/split_history.h"
#include "mesh_fixtures.h"

namespace pvx {
namespace {

using test::Corners;

// Four 100 x 100 macros round the design node (100, 100), with a circuit of one pipe there.
// The mesh numbers the corners as the macros meet them: (0,0) 1, (100,0) 2, (100,100) 3,
// (0,100) 4, (200,0) 5, (200,100) 6, (200,200) 7, (100,200) 8, (0,200) 9.
Project Four_Around(double diameter) {
  Project p = test::Empty_Project();
  for (int j = 0; j < 3; ++j)
    for (int i = 0; i < 3; ++i)
      test::Node(p, 100.0 * i, 100.0 * j);  // design node 3j + i + 1
  test::Add_Macro(p, 1, 2, 5, 4);
  test::Add_Macro(p, 2, 3, 6, 5);
  test::Add_Macro(p, 5, 6, 9, 8);
  test::Add_Macro(p, 4, 5, 8, 7);
  Circuit c = p.Circuit_Default;
  Resize_Pipes(c, 1);
  c.Pipe_Node[1] = 5;
  c.Diameter = diameter;
  p.Circuit.add(c);
  return p;
}

TEST(PipeHole, EightWallNodesAndSixElementsPerQuarter) {
  Project p = Four_Around(20);
  Mesh_Session s;
  std::string message;
  ASSERT_TRUE(Make_Initial_Mesh(p, s, message));
  ASSERT_EQ(Corners(p, 1), (std::array<int, 4>{1, 2, 3, 4}));
  ASSERT_EQ(Corners(p, 4), (std::array<int, 4>{4, 3, 8, 9}));
  EXPECT_TRUE(Set_Toolbar(p, s).Integrate_Visible);
  ASSERT_TRUE(Integrate_Circuits(p, s, message)) << message;
  EXPECT_TRUE(s.Circuits_Integrated);
  EXPECT_FALSE(Set_Toolbar(p, s).Integrate_Visible);
  EXPECT_TRUE(Set_Toolbar(p, s).Backward);

  // 20 elements more; 23 nodes more (the pipe's node becomes the first wall node).
  EXPECT_EQ(p.Mesh_Element.count(), 24);
  EXPECT_EQ(p.Mesh_Node.count(), 32);
  // The wall, counter-clockwise from the ray towards (0,100): 180, 225, ..., 135 degrees.
  const auto& wall = p.Circuit[1].Pipe_Connection[1];
  const int expected_wall[9] = {3, 12, 15, 18, 21, 24, 27, 30, 3};
  for (int k = 1; k <= 9; ++k) {
    EXPECT_EQ(wall[k], expected_wall[k - 1]) << k;
    const Mesh_Node& n = p.Mesh_Node[wall[k]];
    EXPECT_NEAR(std::hypot(n.X - 100, n.Y - 100), 10, 1e-9) << k;
    const double angle = std::atan2(n.Y - 100, n.X - 100) * 180 / std::acos(-1.0);
    const double want = std::fmod(180 + 45 * (k - 1), 360.0);
    EXPECT_NEAR(std::fmod(angle + 360, 360.0), want, 1e-9) << k;
  }
  // First quarter, element 1 with the pipe at its corner 3: rays to (0,100), (0,0), (100,0).
  // The grid points along the first ray: R (90,100), Q (67.5,100), M (45,100).
  EXPECT_EQ(Corners(p, 1), (std::array<int, 4>{3, 10, 13, 12}));
  EXPECT_EQ(Corners(p, 5), (std::array<int, 4>{10, 11, 14, 13}));
  EXPECT_EQ(Corners(p, 6), (std::array<int, 4>{11, 4, 1, 14}));
  EXPECT_EQ(Corners(p, 7), (std::array<int, 4>{12, 13, 16, 15}));
  EXPECT_EQ(Corners(p, 8), (std::array<int, 4>{13, 14, 17, 16}));
  EXPECT_EQ(Corners(p, 9), (std::array<int, 4>{14, 1, 2, 17}));
  EXPECT_NEAR(p.Mesh_Node[3].X, 90, 1e-12);
  EXPECT_NEAR(p.Mesh_Node[10].X, 67.5, 1e-12);
  EXPECT_NEAR(p.Mesh_Node[11].X, 45, 1e-12);
  const double r = 100 - 10 / std::sqrt(2.0);  // wall point on the diagonal
  EXPECT_NEAR(p.Mesh_Node[12].X, r, 1e-12);
  EXPECT_NEAR(p.Mesh_Node[14].Y, r / 2, 1e-12);            // M = (R + corner) / 2
  EXPECT_NEAR(p.Mesh_Node[13].Y, (r + r / 2) / 2, 1e-12);  // Q = (R + M) / 2
  // Each quarter: the element and five copies of it.
  for (int quarter = 0; quarter < 4; ++quarter) {
    EXPECT_EQ(p.Mesh_Element[quarter + 1].Macro_Number, quarter + 1);
    for (int k = 0; k < 5; ++k)
      EXPECT_EQ(p.Mesh_Element[5 + 5 * quarter + k].Macro_Number, quarter + 1);
  }
  // No element keeps a corner at the centre; the hole is the regular octagon of radius 10.
  for (const Mesh_Element& e : p.Mesh_Element)
    for (const int c : e.Corner)
      EXPECT_GT(std::hypot(p.Mesh_Node[c].X - 100, p.Mesh_Node[c].Y - 100), 9.999);
  EXPECT_NEAR(test::Mesh_Area(p), 200.0 * 200 - 2 * std::sqrt(2.0) * 100, 1e-9);
  test::Expect_Sound(p);

  // Integrating twice is refused; a cut is refused; one step back gives the plain mesh again.
  const Project integrated = p;
  EXPECT_FALSE(Integrate_Circuits(p, s, message));
  EXPECT_EQ(p, integrated);
  ASSERT_TRUE(History_Backward(p, s, message));
  EXPECT_EQ(p.Mesh_Element.count(), 4);
  EXPECT_FALSE(s.Circuits_Integrated);
}

TEST(PipeHole, TheNearestNodeIsMovedToThePipe) {
  Project p = Four_Around(28);
  Mesh_Session s;
  std::string message;
  ASSERT_TRUE(Make_Initial_Mesh(p, s, message));
  // The design node lies 0.3 mm off the mesh node.
  p.Node_X[5] = 100.3;
  ASSERT_TRUE(Integrate_Circuits(p, s, message)) << message;
  for (int k = 1; k <= 8; ++k) {
    const Mesh_Node& n = p.Mesh_Node[p.Circuit[1].Pipe_Connection[1][k]];
    EXPECT_NEAR(std::hypot(n.X - 100.3, n.Y - 100), 14, 1e-9);
  }
}

TEST(PipeHole, RefusedWhereFourElementsDoNotMeetWithNothingChanged) {
  Project p = Four_Around(20);
  p.Circuit[1].Pipe_Node[1] = 2;  // (100, 0) on the outline: two elements
  Mesh_Session s;
  std::string message;
  ASSERT_TRUE(Make_Initial_Mesh(p, s, message));
  const Project before = p;
  EXPECT_FALSE(Integrate_Circuits(p, s, message));
  EXPECT_NE(message.find("mesh node 2 is a corner of 2 elements"), std::string::npos) << message;
  EXPECT_EQ(p, before);
  EXPECT_FALSE(s.Circuits_Integrated);

  // A second pipe at the same place finds the first pipe's wall and is refused: all of it is undone.
  p = Four_Around(20);
  Resize_Pipes(p.Circuit[1], 2);
  p.Circuit[1].Pipe_Node[1] = 5;
  p.Circuit[1].Pipe_Node[2] = 5;
  ASSERT_TRUE(Make_Initial_Mesh(p, s, message));
  const Project twice = p;
  EXPECT_FALSE(Integrate_Circuits(p, s, message));
  EXPECT_EQ(p, twice);

  // A pipe wider than its elements.
  p = Four_Around(250);
  ASSERT_TRUE(Make_Initial_Mesh(p, s, message));
  const Project wide = p;
  EXPECT_FALSE(Integrate_Circuits(p, s, message));
  EXPECT_NE(message.find("does not fit"), std::string::npos);
  EXPECT_EQ(p, wide);
}

TEST(PipeHole, TwoPipesInACutMesh) {
  // A 400 x 200 block cut into a 4 x 2 grid has interior nodes at (100,100), (200,100), (300,100).
  Project p = test::Empty_Project();
  test::Node(p, 0, 0);
  test::Node(p, 400, 0);
  test::Node(p, 400, 200);
  test::Node(p, 0, 200);
  const int left = test::Node(p, 100, 100), right = test::Node(p, 300, 100);
  test::Add_Macro(p, 1, 2, 3, 4);
  Circuit c = p.Circuit_Default;
  Resize_Pipes(c, 2);
  c.Pipe_Node[1] = static_cast<std::int16_t>(left);
  c.Pipe_Node[2] = static_cast<std::int16_t>(right);
  c.Diameter = 30;
  p.Circuit.add(c);
  Mesh_Session s;
  std::string message;
  ASSERT_TRUE(Make_Initial_Mesh(p, s, message));
  s.Parameters.PickedElement = 1;
  s.Parameters.PickedSide = 1;
  s.Parameters.Division = 4;
  ASSERT_TRUE(Split_Execution(p, s, message));
  s.Parameters.PickedSide = 2;
  s.Parameters.Division = 2;
  ASSERT_TRUE(Split_Execution(p, s, message));
  ASSERT_EQ(p.Mesh_Element.count(), 8);
  const int nodes = p.Mesh_Node.count();
  ASSERT_TRUE(Integrate_Circuits(p, s, message)) << message;
  EXPECT_EQ(p.Mesh_Element.count(), 8 + 2 * 20);
  EXPECT_EQ(p.Mesh_Node.count(), nodes + 2 * 23);
  for (int k = 1; k <= 2; ++k) {
    const double cx = k == 1 ? 100 : 300;
    const auto& wall = p.Circuit[1].Pipe_Connection[k];
    EXPECT_EQ(wall[9], wall[1]);
    for (int j = 1; j <= 8; ++j)
      EXPECT_NEAR(std::hypot(p.Mesh_Node[wall[j]].X - cx, p.Mesh_Node[wall[j]].Y - 100), 15, 1e-9);
  }
  EXPECT_NEAR(test::Mesh_Area(p), 400.0 * 200 - 2 * 2 * std::sqrt(2.0) * 225, 1e-6);
  test::Expect_Sound(p);
}

}  // namespace
}  // namespace pvx
