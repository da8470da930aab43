// Joints in the mesh: the doubling of their nodes, their opening and sliding through whole
// mechanical steps, and a joint far stiffer than the concrete that changes nothing.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <memory>
#include <utility>
#include <vector>

#include "analysis/mechanics/interface_element.h"
#include "mechanics_fixture.h"

namespace pvx {
namespace {

// Joint data from index `first` on.
Material Joint(int type, int first, std::initializer_list<double> values) {
  Material m;
  m.Name = "joint";
  m.Is_Interface = true;
  m.Interface_Type = static_cast<std::int16_t>(type);
  for (const double v : values)
    m.Interface_Data[static_cast<std::size_t>(first++)] = v;
  return m;
}
// Type A: ft 1, s1 0.3 ft, w1 0.02, w2 0.15, 35 degrees, slip limit 0.5, k_n 100, k_s 40.
const Material Type_A = Joint(1, 1, {1, 0.3, 0.02, 0.15, 35, 0.5, 100, 40});

// A joint along the horizontal mesh line j of a grid with nx x ny elements, one per element side,
// listed from the middle on so that copies reach neighbours on both sides of the first one.
void Add_Joint(Project& p, int nx, int ny, int j, const Material& joint) {
  if (!p.Material.valid(2)) p.Material.add(joint);
  for (int k = 0; k < nx; ++k) {
    const int i = (k + nx / 2) % nx;
    Interface f;
    f.Node_A = static_cast<std::int16_t>(test::Node_Of(ny, i, j));
    f.Node_B = static_cast<std::int16_t>(test::Node_Of(ny, i + 1, j));
    f.Layer_Material = joint.Name;
    p.Mesh_Interface.add(f);
  }
}

// A chain of three joints along the middle line of a 3 x 2 grid (1000 mm elements): the element
// below each side gets copies of the four nodes on the line, the elements above keep the mesh
// nodes, a support and a load on a side below the line take the copies. A joint on the outline, of
// no length or of no joint material takes no part and makes no copy.
TEST(Joint_Mesh, NodesAlongAJointAreDoubledOnceOnTheSideBelow) {
  Project p = test::Grid(3, 2, 3000, 2000, test::Elastic(30000, 0.2));
  Add_Joint(p, 3, 2, 1, Joint(2, 21, {100, 50, 0.6}));  // positions 1, 2, 0
  Interface outline = p.Mesh_Interface[1];
  outline.Node_A = test::Node_Of(2, 0, 0), outline.Node_B = test::Node_Of(2, 1, 0);
  p.Mesh_Interface.add(outline);
  Interface point = outline;
  point.Node_A = point.Node_B = test::Node_Of(2, 1, 1);
  p.Mesh_Interface.add(point);
  Interface foreign = p.Mesh_Interface[1];
  foreign.Layer_Material = "elastic";
  p.Mesh_Interface.add(foreign);
  // A side support and a line load on the left side of the lower left element, which ends on the
  // line, and a support on the side between the two lower left elements.
  test::Hold(p, test::Node_Of(2, 0, 0), 0).Node_B = static_cast<std::int16_t>(test::Node_Of(2, 0, 1));
  test::Line_Load(p, test::Node_Of(2, 0, 0), test::Node_Of(2, 0, 1), 1, 0, 1);
  test::Hold(p, test::Node_Of(2, 1, 0), 0).Node_B = static_cast<std::int16_t>(test::Node_Of(2, 1, 1));

  test::Mechanical_Run r(p);
  const Mechanical_State& m = r.run.Mechanics;
  auto on_copy = [&](int e, int c) { return Corner_Node(m, e, c) > p.Mesh_Node.count(); };
  EXPECT_EQ(m.Doubled_Nodes, 4);
  EXPECT_EQ(m.Node_Equations, 2 * (12 + 4));
  for (int i = 0; i < 3; ++i) {
    const int below = i * 2 + 1, above = i * 2 + 2;
    EXPECT_TRUE(on_copy(below, 3) && on_copy(below, 4)) << i;
    EXPECT_FALSE(on_copy(below, 1) || on_copy(below, 2) || on_copy(above, 1) || on_copy(above, 2) ||
                 on_copy(above, 3) || on_copy(above, 4))
        << i;
    const Interface_Element& f = m.Interfaces[(i + 2) % 3 + 1];
    ASSERT_TRUE(f.Active);
    EXPECT_EQ(
        std::vector({f.Element[0], f.Element[1], f.Node[0], f.Node[3], f.Node[1], f.Node[2]}),
        std::vector({above, below, f.Node_A, f.Node_B, Corner_Node(m, below, 4), Corner_Node(m, below, 3)}))
        << i;
  }
  // Neighbouring joints share the copy of their common node.
  EXPECT_EQ(m.Interfaces[3].Node[2], m.Interfaces[1].Node[1]);
  for (int i = 4; i <= 6; ++i)
    EXPECT_FALSE(m.Interfaces[i].Active) << i;
  EXPECT_EQ(m.Supports[1].Dof[4], 2 * Corner_Node(m, 1, 4));
  EXPECT_EQ(m.Supports[2].Dof[4], 2 * Corner_Node(m, 1, 3));
  EXPECT_EQ(m.Load_Dof[1][4], 2 * Corner_Node(m, 1, 4));
}

struct Joint_Row {
  double dx, dy;      // the top moved, mm
  double sigma, tau;  // expected at both points, MPa
};

// Two elements of 1000 mm, one on the other, 500 mm thick, with a joint between them; the concrete
// is so stiff that the joint takes all the movement. The foot is held; the top is moved by (dx, dy)
// in steps: a prescribed displacement counts against its support's direction, so the top is held
// at 180 and -90 degrees.
void Follow(const Material& joint, std::initializer_list<Joint_Row> rows) {
  Project p = test::Grid(1, 2, 1000, 2000, test::Elastic(1e10, 0), 500);
  Add_Joint(p, 1, 2, 1, joint);
  for (int i = 0; i <= 1; ++i) {
    test::Hold(p, test::Node_Of(2, i, 0), 0);
    test::Hold(p, test::Node_Of(2, i, 0), 90);
    test::Prescribe(p, test::Hold(p, test::Node_Of(2, i, 2), 180), 0);
    test::Prescribe(p, test::Hold(p, test::Node_Of(2, i, 2), -90), 0);
  }
  test::Mechanical_Run r(p);
  r.run.Mechanical_Iteration_Limit = 1000;
  r.run.Mechanical_Limits[0] = r.run.Mechanical_Limits[1] = r.run.Mechanical_Limits[2] = 1e-10;
  for (const Joint_Row& row : rows) {
    SCOPED_TRACE(testing::Message() << "moved " << row.dx << ", " << row.dy);
    for (const Support& s : p.Mesh_Support)
      if (s.Has_Function == True_Flag)
        p.Displacement_Functions[s.Displacement_Function].Constant_Value = s.Angle == 180 ? row.dx : row.dy;
    ASSERT_EQ(r.Step(p), Mechanical_Step::Converged) << r.message;
    for (const Interface_Point& point : r.run.Mechanics.Interfaces[1].Point) {
      EXPECT_NEAR(point.Sigma, row.sigma, 2e-4);
      EXPECT_NEAR(point.Tau, row.tau, 2e-4);
    }
    // The joint carries what holds the top: 0.5 m2 of it at both ends.
    double reaction[2] = {0, 0};  // x, y in kN
    for (int s = 1; s <= p.Mesh_Support.count(); ++s)
      if (p.Mesh_Support[s].Has_Function == True_Flag)
        reaction[p.Mesh_Support[s].Angle != 180] += r.run.Mechanics.Supports[s].Reaction;
    EXPECT_NEAR(-reaction[0] * 1000, row.tau * 1000 * 500, 100);
    EXPECT_NEAR(-reaction[1] * 1000, row.sigma * 1000 * 500, 100);
    Update_Mechanical_End_Of_Step(p, r.run);
  }
}

// Type A: e0 = 0.01, e1 = 0.03, e2 = 0.16 mm. At 0.005 elastic, 0.5; at 0.02 on the first branch,
// 1 - 0.7 x 0.5 = 0.65; at 0.1 on the second, 0.3 x 0.06 / 0.13 = 0.138462; past 0.16 nothing;
// back to 0.05 still nothing (the secant of the largest opening is 0); pressed by 0.001, -0.1.
// Type C, the same curve as a table, the same values. Type B (k_n 10) carries no tension at all.
TEST(Joint_Mesh, AJointInTensionOpensAsItsLawSaysAndOpenCarriesNothing) {
  const Material c = Joint(3, 31, {35, 0.5, 100, 40, 0, 0, 0, 0, 0, 4, 0.01, 1, 0.02, 0.3, 0.15, 0, 0.5, 0});
  for (const Material* joint : {&Type_A, &c}) {
    SCOPED_TRACE(joint->Interface_Type);
    Follow(*joint, {{0, 0.005, 0.5, 0},
                    {0, 0.02, 0.65, 0},
                    {0, 0.1, 0.138462, 0},
                    {0, 0.2, 0, 0},
                    {0, 0.05, 0, 0},
                    {0, -0.001, -0.1, 0}});
  }
  Follow(Joint(2, 21, {10, 5, 0.2}), {{0, 0.01, 0, 0}, {0, -0.01, -0.1, 0}});
}

// Shear along a closed joint. Type B pressed by 0.01 (sigma = -1, k_n 100) with friction 0.6: 50
// x slip up to 0.6, then it slides at 0.6 and, moved back by 0.004, unloads elastically from its
// plastic slip (0.02 - 0.012 = 0.008): 50 x (0.016 - 0.008) = 0.4. Type A pressed alike, slipped
// by 0.01: 40 x 0.01 = 0.4 below the limit; by 0.1: the cohesion falls to 1 x (1 - 0.1 / 0.5) and
// the limit is 0.8 x (1 + sin 35) / (2 cos 35) + tan 35 x 1 = 0.768392 + 0.700208 = 1.468600.
TEST(Joint_Mesh, ShearAlongAClosedJointFollowsItsFrictionLaw) {
  Follow(Joint(2, 21, {100, 50, 0.6}),
         {{0.005, -0.01, -1, 0.25}, {0.02, -0.01, -1, 0.6}, {0.016, -0.01, -1, 0.4}});
  Follow(Type_A, {{0.01, -0.01, -1, 0.4}, {0.1, -0.01, -1, 1.4686}});
}

// A wall of 2 x 2 elements on a slab of 2 x 2, the wall heated by 20 degrees: with a joint
// 10^6 times stiffer than the concrete across its 500 mm (k 1e7 N/mm3 against E / h = 60) the
// stresses and displacements are those of the wall without a joint, to 1e-4 of the largest stress.
TEST(Joint_Mesh, AJointFarStifferThanTheConcreteChangesNothing) {
  auto compute = [](bool joint) {
    Project p = test::Grid(2, 4, 2000, 2000, test::Elastic(30000, 0.2, 1e-5), 500);
    if (joint) Add_Joint(p, 2, 4, 2, Joint(2, 21, {1e7, 1e7, 0.6}));
    for (int i = 0; i <= 2; ++i) {
      test::Hold(p, test::Node_Of(4, i, 0), 0);
      test::Hold(p, test::Node_Of(4, i, 0), 90);
    }
    auto r = std::make_unique<test::Mechanical_Run>(p);
    for (int node = 1; node <= p.Mesh_Node.count(); ++node)
      if (p.Mesh_Node[node].Y > 1000) r->run.Temperature_New[r->run.Numbering.Node_Equation[node]] += 20;
    EXPECT_EQ(r->Step(p), Mechanical_Step::Converged);
    return r;
  };
  const auto plain = compute(false), joint = compute(true);
  const int elements = 8, nodes = 15;
  double largest = 0;
  for (int e = 1; e <= elements; ++e)
    for (int k = 1; k <= 4; ++k)
      for (int i = 0; i < 4; ++i)
        largest = std::max(largest, std::fabs(plain->S(e, k, i)));
  ASSERT_GT(largest, 1.0);
  for (int e = 1; e <= elements; ++e)
    for (int k = 1; k <= 4; ++k)
      for (int i = 0; i < 4; ++i)
        EXPECT_NEAR(joint->S(e, k, i), plain->S(e, k, i), 1e-4 * largest) << e << " " << k << " " << i;
  for (int node = 1; node <= nodes; ++node)
    EXPECT_NEAR(joint->U(node, 2), plain->U(node, 2), 1e-6) << node;
  // The joint is closed and carries the wall's pull on the slab.
  double pulled = 0;
  for (const Interface_Element& f : joint->run.Mechanics.Interfaces)
    pulled = std::max(pulled, std::fabs(f.Point[0].Tau));
  EXPECT_GT(pulled, 0.1);
}

}  // namespace
}  // namespace pvx
