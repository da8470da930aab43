// Strip cuts worked by hand: node and element numbers, corners and coordinates. Cuts across a cut
// mesh, and the counts they give, are walked through by the panel's own tests.
#include "mesh/splitting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "mesh_fixtures.h"

namespace pvx {
namespace {

// Three macros in a row, 100 wide and 50 high: bottom nodes 1..4, top nodes 5..8; the middle one
// of another material and warmer.
Project Row_Of_Three() {
  Project p = test::Empty_Project();
  for (int i = 0; i < 8; ++i)
    Add_Node(p, 100.0 * (i % 4), i < 4 ? 0 : 50);
  test::Add_Macro(p, 1, 2, 6, 5);
  test::Add_Macro(p, 2, 3, 7, 6, "Steel fibre");
  test::Add_Macro(p, 3, 4, 8, 7);
  p.Macro[2].Temperature = 35;
  return p;
}

// A square ring round a square hole: outer corners 1..4, inner corners 5..8; four macros
// (bottom, right, top, left).
Project Ring() {
  Project p = test::Square(300);
  for (auto [x, y] : {std::pair{100, 100}, {200, 100}, {200, 200}, {100, 200}})
    Add_Node(p, x, y);
  p.Macro[1].Corner = {{1, 2, 6, 5}};
  test::Add_Macro(p, 2, 3, 7, 6);
  test::Add_Macro(p, 3, 4, 8, 7);
  test::Add_Macro(p, 4, 1, 5, 8);
  return p;
}

TEST(Splitting, StripCutsWorkedByHand) {
  struct Case {
    const char* name;
    Project p;
    int element, side;
    Table<double> fractions;
    std::vector<double> new_nodes;  // x, y of each, from node first_new on
    std::vector<int> corners;       // of every element afterwards, four by four
    std::vector<int> macros;        // that each element lies in
  };
  // n parts make n-1 new elements per strip element and 2(n-1) new nodes, P(k) on the cut side and
  // Q(k) on the opposite one, in pairs.
  const Case cases[] = {
      Case("one element in three", test::Square(300), 1, 1, {1.0 / 3, 2.0 / 3, 1},
           {100, 0, 100, 300, 200, 0, 200, 300}, {1, 5, 6, 4, 5, 7, 8, 6, 7, 2, 3, 8}, {1, 1, 1}),
      // Side 3 runs from (300,300) to (0,300): the first piece starts at corner 3.
      Case("from side 3 the first piece turns", test::Square(300), 1, 3, {0.25, 1}, {225, 300, 225, 0},
           {3, 5, 6, 2, 5, 4, 1, 6}, {1, 1}),
      // Mesh nodes are numbered as the macros meet their corners: (0,0) 1, (100,0) 2, (100,50) 3,
      // (0,50) 4, (200,0) 5, (200,50) 6, (300,0) 7, (300,50) 8; so the middle element reads
      // 2 5 6 3 and its side 2 runs up its right edge. Weights 1 : 2 : 1; step 1 on x = 200 (P)
      // and x = 100 (Q), then the walk to the right (x = 300), then to the left.
      Case("a strip through three macros", Row_Of_Three(), 2, 2, {0.25, 0.75, 1},
           {200, 12.5, 100, 12.5, 200, 37.5, 100, 37.5, 300, 12.5, 300, 37.5, 0, 12.5, 0, 37.5},
           {2, 10, 15, 1,  5,  9, 10, 2, 7, 13, 9,  5,  9,  11, 12, 10, 11, 6,
            3, 12, 13, 14, 11, 9, 14, 8, 6, 11, 10, 12, 16, 15, 12, 3,  4,  16},
           {1, 2, 3, 2, 2, 3, 3, 1, 1}),
      // Outer corners (0,0) 1, (300,0) 2, (300,300) 5, (0,300) 7; inner (100,100) 4, (200,100) 3,
      // (200,200) 6, (100,200) 8. Side 2 of the bottom element runs from (300,0) to (200,100); the
      // walk goes round through the right, top and left elements, and its last node (50,50) falls
      // on node 10 of the first step and is merged.
      Case("a ring closes on itself", Ring(), 1, 2, {0.5, 1}, {250, 50, 50, 50, 250, 250, 50, 250},
           {2, 9, 10, 1,  5,  11, 9, 2, 7,  12, 11, 5,  1,  10, 12, 7,
            9, 3, 4,  10, 11, 6,  3, 9, 12, 8,  6,  11, 10, 4,  8,  12},
           {1, 2, 3, 4, 1, 2, 3, 4}),
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Project p = c.p;
    Mesh_Session s = test::Meshed(p);
    const int first_new = p.Mesh_Node.count() + 1;
    std::string message;
    ASSERT_TRUE(Splitting(p, s, c.element, c.side, c.fractions, message)) << message;
    std::vector<double> nodes;
    for (int n = first_new; n <= p.Mesh_Node.count(); ++n)
      nodes.insert(nodes.end(), {p.Mesh_Node[n].X, p.Mesh_Node[n].Y});
    EXPECT_THAT(nodes, testing::Pointwise(testing::DoubleNear(1e-9), c.new_nodes));
    std::vector<int> corners, macros;
    for (int e = 1; e <= p.Mesh_Element.count(); ++e) {
      const auto four = test::Corners(p, e);
      corners.insert(corners.end(), four.begin(), four.end());
      // Each piece is a copy of the element it came from, so of the macro it lies in.
      const Mesh_Element& element = p.Mesh_Element[e];
      macros.push_back(element.Macro_Number);
      ASSERT_TRUE(p.Macro.valid(element.Macro_Number)) << e;
      EXPECT_EQ(element.Material, p.Macro[element.Macro_Number].Material) << e;
      EXPECT_EQ(element.Temperature, p.Macro[element.Macro_Number].Temperature) << e;
    }
    EXPECT_EQ(macros, c.macros);
    EXPECT_EQ(corners, c.corners);
    test::Expect_Sound(p);
  }
}

TEST(Splitting, RefusesWhatIsNoCut) {
  Project p = test::Square(300);
  Mesh_Session s = test::Meshed(p);
  const Project before = p;
  std::string message;
  EXPECT_FALSE(Splitting(p, s, 2, 1, Table<double>{0.5, 1}, message));
  EXPECT_FALSE(message.empty());
  EXPECT_FALSE(Splitting(p, s, 1, 5, Table<double>{0.5, 1}, message));
  EXPECT_FALSE(Splitting(p, s, 1, 1, Table<double>{1}, message));
  EXPECT_FALSE(Splitting(p, s, 1, 1, Table<double>{std::nan(""), std::nan("")}, message));
  EXPECT_EQ(p, before);
}

}  // namespace
}  // namespace pvx
