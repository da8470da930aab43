// Strip cuts worked by hand: node and element numbers, corners and coordinates.
#include <gtest/gtest.h>

#include "mesh/initial_mesh.h"
#include "mesh/splitting.h"
#include "mesh_fixtures.h"

namespace pvx {
namespace {

using test::At;
using test::Corners;
using test::Fractions;

constexpr double Eps = 1e-9;

TEST(Splitting, OneElementInThreeEqualParts) {
  Project p = test::Square(300);
  Mesh_Session s;
  std::string message;
  ASSERT_TRUE(Make_Initial_Mesh(p, s, message)) << message;
  ASSERT_TRUE(Splitting(p, s, 1, 1, Fractions({1.0 / 3, 2.0 / 3, 1}), message)) << message;

  // n elements and 2(n-1) new nodes; P(k) on the cut side and Q(k) on the opposite one, in pairs.
  ASSERT_EQ(p.Mesh_Node.count(), 8);
  ASSERT_EQ(p.Mesh_Element.count(), 3);
  const double expected[8][2] = {{0, 0},   {300, 0},   {300, 300}, {0, 300},
                                 {100, 0}, {100, 300}, {200, 0},   {200, 300}};
  for (int n = 1; n <= 8; ++n) {
    EXPECT_NEAR(At(p, n).X, expected[n - 1][0], Eps) << n;
    EXPECT_NEAR(At(p, n).Y, expected[n - 1][1], Eps) << n;
  }
  EXPECT_EQ(Corners(p, 1), (std::array<int, 4>{1, 5, 6, 4}));
  EXPECT_EQ(Corners(p, 2), (std::array<int, 4>{5, 7, 8, 6}));
  EXPECT_EQ(Corners(p, 3), (std::array<int, 4>{7, 2, 3, 8}));
  for (int e = 1; e <= 3; ++e) {
    EXPECT_NEAR(test::Element_Area(p, e), 30000, 1e-6);
    EXPECT_EQ(p.Mesh_Element[e].Material, "C30/37");
    EXPECT_EQ(p.Mesh_Element[e].Macro_Number, 1);
  }
  test::Expect_Sound(p);
}

TEST(Splitting, FromAnotherSideRotatesTheFirstPiece) {
  // Cutting side 3 (from (300,300) to (0,300)) of the square: the first piece starts at corner 3.
  Project p = test::Square(300);
  Mesh_Session s;
  std::string message;
  ASSERT_TRUE(Make_Initial_Mesh(p, s, message));
  ASSERT_TRUE(Splitting(p, s, 1, 3, Fractions({0.25, 1}), message));
  ASSERT_EQ(p.Mesh_Node.count(), 6);
  EXPECT_NEAR(At(p, 5).X, 225, Eps);  // on 3 -> 4
  EXPECT_NEAR(At(p, 5).Y, 300, Eps);
  EXPECT_NEAR(At(p, 6).X, 225, Eps);  // on 2 -> 1 from corner 2
  EXPECT_NEAR(At(p, 6).Y, 0, Eps);
  EXPECT_EQ(Corners(p, 1), (std::array<int, 4>{3, 5, 6, 2}));
  EXPECT_EQ(Corners(p, 2), (std::array<int, 4>{5, 4, 1, 6}));
  test::Expect_Sound(p);
}

// Three macros in a row, 100 wide and 50 high: bottom nodes 1..4, top nodes 5..8.
Project Row_Of_Three() {
  Project p = test::Empty_Project();
  for (int i = 0; i < 4; ++i)
    test::Node(p, 100.0 * i, 0);
  for (int i = 0; i < 4; ++i)
    test::Node(p, 100.0 * i, 50);
  test::Add_Macro(p, 1, 2, 6, 5);
  test::Add_Macro(p, 2, 3, 7, 6, "Steel fibre");
  test::Add_Macro(p, 3, 4, 8, 7);
  return p;
}

TEST(Splitting, StripThroughThreeMacrosCarriesTheGrading) {
  Project p = Row_Of_Three();
  p.Macro[2].Temperature = 35;
  Mesh_Session s;
  std::string message;
  ASSERT_TRUE(Make_Initial_Mesh(p, s, message));
  ASSERT_EQ(p.Mesh_Node.count(), 8);
  ASSERT_EQ(Corners(p, 2), (std::array<int, 4>{2, 5, 6, 3}));
  // Side 2 of the middle element runs up its right edge; weights 1 : 2 : 1.
  ASSERT_TRUE(Splitting(p, s, 2, 2, Fractions({0.25, 0.75, 1}), message)) << message;

  ASSERT_EQ(p.Mesh_Node.count(), 16);
  ASSERT_EQ(p.Mesh_Element.count(), 9);
  // Mesh nodes are numbered as the macros meet their corners: (0,0) 1, (100,0) 2, (100,50) 3,
  // (0,50) 4, (200,0) 5, (200,50) 6, (300,0) 7, (300,50) 8; so the middle element reads 2 5 6 3.
  // Step 1 on x = 200 (P) and x = 100 (Q), then the walk to the right (x = 300), then to the left.
  const double expected[8][2] = {{200, 12.5}, {100, 12.5}, {200, 37.5}, {100, 37.5},
                                 {300, 12.5}, {300, 37.5}, {0, 12.5},   {0, 37.5}};
  for (int k = 0; k < 8; ++k) {
    EXPECT_NEAR(At(p, 9 + k).X, expected[k][0], Eps) << 9 + k;
    EXPECT_NEAR(At(p, 9 + k).Y, expected[k][1], Eps) << 9 + k;
  }
  EXPECT_EQ(Corners(p, 2), (std::array<int, 4>{5, 9, 10, 2}));
  EXPECT_EQ(Corners(p, 4), (std::array<int, 4>{9, 11, 12, 10}));
  EXPECT_EQ(Corners(p, 5), (std::array<int, 4>{11, 6, 3, 12}));
  EXPECT_EQ(Corners(p, 3), (std::array<int, 4>{7, 13, 9, 5}));
  EXPECT_EQ(Corners(p, 6), (std::array<int, 4>{13, 14, 11, 9}));
  EXPECT_EQ(Corners(p, 7), (std::array<int, 4>{14, 8, 6, 11}));
  EXPECT_EQ(Corners(p, 1), (std::array<int, 4>{2, 10, 15, 1}));
  EXPECT_EQ(Corners(p, 8), (std::array<int, 4>{10, 12, 16, 15}));
  EXPECT_EQ(Corners(p, 9), (std::array<int, 4>{12, 3, 4, 16}));
  // Pieces are copies of the element they came from.
  for (int e : {2, 4, 5}) {
    EXPECT_EQ(p.Mesh_Element[e].Material, "Steel fibre");
    EXPECT_EQ(p.Mesh_Element[e].Macro_Number, 2);
    EXPECT_EQ(p.Mesh_Element[e].Temperature, 35);
  }
  for (int e : {3, 6, 7})
    EXPECT_EQ(p.Mesh_Element[e].Macro_Number, 3);
  for (int e : {1, 8, 9})
    EXPECT_EQ(p.Mesh_Element[e].Macro_Number, 1);
  EXPECT_NEAR(test::Mesh_Area(p), 300 * 50, 1e-6);
  test::Expect_Sound(p);
}

// A square ring round a square hole: outer corners 1..4, inner corners 5..8; four macros
// (bottom, right, top, left).
Project Ring() {
  Project p = test::Empty_Project();
  test::Node(p, 0, 0);
  test::Node(p, 300, 0);
  test::Node(p, 300, 300);
  test::Node(p, 0, 300);
  test::Node(p, 100, 100);
  test::Node(p, 200, 100);
  test::Node(p, 200, 200);
  test::Node(p, 100, 200);
  test::Add_Macro(p, 1, 2, 6, 5);
  test::Add_Macro(p, 2, 3, 7, 6);
  test::Add_Macro(p, 3, 4, 8, 7);
  test::Add_Macro(p, 4, 1, 5, 8);
  return p;
}

TEST(Splitting, RingRoundAHoleClosesOnItself) {
  Project p = Ring();
  Mesh_Session s;
  std::string message;
  ASSERT_TRUE(Make_Initial_Mesh(p, s, message));
  ASSERT_EQ(Corners(p, 1), (std::array<int, 4>{1, 2, 3, 4}));
  // Side 2 of the bottom element runs from the outer corner (300,0) to the inner one (200,100).
  ASSERT_TRUE(Splitting(p, s, 1, 2, Fractions({0.5, 1}), message)) << message;

  // The walk goes round through the right, top and left elements; its last node (50,50) falls on
  // node 10 of the first step and is merged, so 12 nodes remain.
  ASSERT_EQ(p.Mesh_Element.count(), 8);
  ASSERT_EQ(p.Mesh_Node.count(), 12);
  const double expected[4][2] = {{250, 50}, {50, 50}, {250, 250}, {50, 250}};
  for (int k = 0; k < 4; ++k) {
    EXPECT_NEAR(At(p, 9 + k).X, expected[k][0], Eps);
    EXPECT_NEAR(At(p, 9 + k).Y, expected[k][1], Eps);
  }
  // Mesh numbering of the corners: outer (0,0) 1, (300,0) 2, (300,300) 5, (0,300) 7; inner
  // (100,100) 4, (200,100) 3, (200,200) 6, (100,200) 8.
  EXPECT_EQ(Corners(p, 1), (std::array<int, 4>{2, 9, 10, 1}));
  EXPECT_EQ(Corners(p, 5), (std::array<int, 4>{9, 3, 4, 10}));
  EXPECT_EQ(Corners(p, 2), (std::array<int, 4>{5, 11, 9, 2}));
  EXPECT_EQ(Corners(p, 6), (std::array<int, 4>{11, 6, 3, 9}));
  EXPECT_EQ(Corners(p, 3), (std::array<int, 4>{7, 12, 11, 5}));
  EXPECT_EQ(Corners(p, 7), (std::array<int, 4>{12, 8, 6, 11}));
  // The left element's new node fell on node 10 and was replaced by it.
  EXPECT_EQ(Corners(p, 4), (std::array<int, 4>{1, 10, 12, 7}));
  EXPECT_EQ(Corners(p, 8), (std::array<int, 4>{10, 4, 8, 12}));
  EXPECT_NEAR(test::Mesh_Area(p), 300.0 * 300 - 100.0 * 100, 1e-6);
  test::Expect_Sound(p);
}

// A ring cut into more than two parts: tests/analysis/ring_heat_test.cpp (node count and heat
// flowing round the closed ring).
TEST(Splitting, ElementWithoutNeighboursMakesNElementsAnd2nMinus2Nodes) {
  for (int n = 2; n <= 7; ++n) {
    Project p = Row_Of_Three();
    Mesh_Session s;
    std::string message;
    ASSERT_TRUE(Make_Initial_Mesh(p, s, message));
    Table<double> f;
    for (int k = 1; k <= n; ++k)
      f.add(static_cast<double>(k) / n);
    // Side 1 of the middle element is on the outline, and so is side 3: a strip of one element.
    ASSERT_TRUE(Splitting(p, s, 2, 1, f, message));
    EXPECT_EQ(p.Mesh_Element.count(), 3 + n - 1);
    EXPECT_EQ(p.Mesh_Node.count(), 8 + 2 * (n - 1));
    test::Expect_Sound(p);
  }
}

TEST(Splitting, CrossingCutsMakeAGridOfEqualCells) {
  // Two cuts across a square: 4 x 5 cells of 75 x 60, 30 nodes.
  Project p = test::Square(300);
  Mesh_Session s;
  std::string message;
  ASSERT_TRUE(Make_Initial_Mesh(p, s, message));
  ASSERT_TRUE(Splitting(p, s, 1, 1, Fractions({0.25, 0.5, 0.75, 1}), message));
  ASSERT_TRUE(Splitting(p, s, 1, 2, Fractions({0.2, 0.4, 0.6, 0.8, 1}), message));
  EXPECT_EQ(p.Mesh_Element.count(), 20);
  EXPECT_EQ(p.Mesh_Node.count(), 30);
  for (int e = 1; e <= 20; ++e)
    EXPECT_NEAR(test::Element_Area(p, e), 75 * 60, 1e-6) << e;
  test::Expect_Sound(p);
}

TEST(Splitting, RefusesWhatIsNoCut) {
  Project p = test::Square(300);
  Mesh_Session s;
  std::string message;
  ASSERT_TRUE(Make_Initial_Mesh(p, s, message));
  const Project before = p;
  EXPECT_FALSE(Splitting(p, s, 2, 1, Fractions({0.5, 1}), message));
  EXPECT_FALSE(message.empty());
  EXPECT_FALSE(Splitting(p, s, 1, 5, Fractions({0.5, 1}), message));
  EXPECT_FALSE(Splitting(p, s, 1, 1, Fractions({1}), message));
  EXPECT_FALSE(Splitting(p, s, 1, 1, Fractions({std::nan(""), std::nan("")}), message));
  EXPECT_EQ(p, before);
}

}  // namespace
}  // namespace pvx
