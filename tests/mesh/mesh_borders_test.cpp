// Mesh borders and interfaces split into chains by the nodes that cuts put on them.
#include <gtest/gtest.h>

#include "mesh/initial_mesh.h"
#include "mesh/mesh_borders.h"
#include "mesh/splitting.h"
#include "mesh_fixtures.h"

namespace pvx {
namespace {

// Follows the chain of entries from `from` to `to` through the table: the nodes in order.
template <class Record>
std::vector<int> Chain(const Table<Record>& entries, int from, int to) {
  std::vector<int> nodes{from};
  int guard = 0;
  while (nodes.back() != to && ++guard < 100) {
    int next = 0;
    for (const Record& r : entries)
      if (r.Node_A == nodes.back()) next = r.Node_B;
    if (next == 0) break;
    nodes.push_back(next);
  }
  return nodes;
}

TEST(SplitBorders, TakesTheNodesStrictlyOnTheLineInOrderOfDistance) {
  Project p = test::Empty_Project();
  p.Mesh_Node.add({0, 0});         // 1: start
  p.Mesh_Node.add({100, 0});       // 2: end
  p.Mesh_Node.add({75, 0.0005});   // 3: on the line (within 0.001)
  p.Mesh_Node.add({25, -0.0009});  // 4: on the line
  p.Mesh_Node.add({150, 0});       // 5: on the line beyond the end
  p.Mesh_Node.add({-5, 0.0002});   // 6: before the start
  p.Mesh_Node.add({50, 0.002});    // 7: too far from the line
  p.Mesh_Node.add({100, 0});       // 8: at the end itself, not strictly inside
  p.Mesh_Node.add({25, 0});        // 9: same distance as node 4: after it
  Border b;
  b.Node_A = 1;
  b.Node_B = 2;
  b.Hygral_Active = True_Flag;
  p.Mesh_Border.add(b);
  Border empty = b;
  empty.Node_B = 1;  // zero length
  p.Mesh_Border.add(empty);
  std::string message;
  ASSERT_TRUE(Split_Borders(p, 3, message));
  ASSERT_EQ(p.Mesh_Border.count(), 5);
  EXPECT_EQ(p.Mesh_Border[1].Node_A, 1);
  EXPECT_EQ(p.Mesh_Border[1].Node_B, 4);
  EXPECT_EQ(p.Mesh_Border[2], empty);
  EXPECT_EQ(p.Mesh_Border[3].Node_A, 4);
  EXPECT_EQ(p.Mesh_Border[3].Node_B, 9);
  EXPECT_EQ(p.Mesh_Border[4].Node_A, 9);
  EXPECT_EQ(p.Mesh_Border[4].Node_B, 3);
  EXPECT_EQ(p.Mesh_Border[5].Node_A, 3);
  EXPECT_EQ(p.Mesh_Border[5].Node_B, 2);
  for (int k = 3; k <= 5; ++k)
    EXPECT_EQ(p.Mesh_Border[k].Hygral_Active, True_Flag);

  // Nodes before first_new are not looked at.
  Project q = p;
  ASSERT_TRUE(Split_Borders(q, 10, message));
  EXPECT_EQ(q.Mesh_Border, p.Mesh_Border);
}

TEST(SplitBorders, DiagonalBorderTakesNodesAlongIt) {
  Project p = test::Empty_Project();
  p.Mesh_Node.add({10, 10});
  p.Mesh_Node.add({40, 50});       // length 50 along (0.6, 0.8)
  p.Mesh_Node.add({34, 42});       // s = 40
  p.Mesh_Node.add({16, 18});       // s = 10
  p.Mesh_Node.add({16.0008, 18});  // t = -0.8 * 0.0008 = -0.00064: on it, s = 10.00048
  p.Mesh_Node.add({16.002, 18});   // t = -0.0016: off
  Border b;
  b.Node_A = 1;
  b.Node_B = 2;
  p.Mesh_Border.add(b);
  std::string message;
  ASSERT_TRUE(Split_Borders(p, 3, message));
  EXPECT_EQ(Chain(p.Mesh_Border, 1, 2), (std::vector<int>{1, 4, 5, 3, 2}));
}

TEST(SplitBorders, ACutPuttingFourNodesOnABorderGivesFiveEntriesInSequence) {
  // The left side of a square carries a border from (0,300) down to (0,0); a cut in five parts
  // across the square puts four nodes on it.
  Project p = test::Square(300);
  Border b;
  b.Node_A = 4;
  b.Node_B = 1;
  b.Thermal_Active = True_Flag;
  p.Border.add(b);
  Interface f;
  f.Node_A = 2;
  f.Node_B = 3;
  f.Layer_Material = "Bitumen";
  f.Layer_Type = 3;
  p.Interface.add(f);
  Mesh_Session s;
  std::string message;
  ASSERT_TRUE(Make_Initial_Mesh(p, s, message));
  // Side 2 runs up the right edge; Q(k) then lie on the left edge from (0,0) upwards.
  ASSERT_TRUE(Splitting(p, s, 1, 2, test::Fractions({0.1, 0.3, 0.6, 0.8, 1}), message)) << message;
  ASSERT_EQ(p.Mesh_Border.count(), 5);
  // P(k) are 5, 7, 9, 11 (right edge, upwards) and Q(k) 6, 8, 10, 12 (left edge, upwards). The
  // border runs downwards, so it meets them in the order 12, 10, 8, 6.
  EXPECT_EQ(Chain(p.Mesh_Border, 4, 1), (std::vector<int>{4, 12, 10, 8, 6, 1}));
  EXPECT_EQ(p.Mesh_Border[1].Node_B, 12);
  for (const Border& m : p.Mesh_Border)
    EXPECT_EQ(m.Thermal_Active, True_Flag);
  // The interface on the right edge runs upwards through the P(k).
  ASSERT_EQ(p.Mesh_Interface.count(), 5);
  EXPECT_EQ(Chain(p.Mesh_Interface, 2, 3), (std::vector<int>{2, 5, 7, 9, 11, 3}));
  for (const Interface& m : p.Mesh_Interface) {
    EXPECT_EQ(m.Layer_Material, "Bitumen");
    EXPECT_EQ(m.Layer_Type, 3);
  }
  // Lengths add up to the side.
  double length = 0;
  for (const Border& m : p.Mesh_Border)
    length += std::hypot(p.Mesh_Node[m.Node_B].X - p.Mesh_Node[m.Node_A].X,
                         p.Mesh_Node[m.Node_B].Y - p.Mesh_Node[m.Node_A].Y);
  EXPECT_NEAR(length, 300, 1e-9);
}

TEST(SplitInterfaces, RefusedWhenTheTableWouldPassItsLimit) {
  Project p = test::Empty_Project();
  p.Mesh_Node.add({0, 0});
  p.Mesh_Node.add({100, 0});
  p.Mesh_Node.add({50, 0});
  Interface f;
  f.Node_A = 1;
  f.Node_B = 2;
  p.Mesh_Interface.resize(Max_Mesh_Interfaces, f);
  const Project before = p;
  std::string message;
  EXPECT_FALSE(Split_Interfaces(p, 3, message));
  EXPECT_EQ(message, Too_Many_Interfaces_Message);
  EXPECT_EQ(p, before);
}

}  // namespace
}  // namespace pvx
