#include "app/prescribed_data.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <tuple>
#include <vector>

#include "app/project.h"

namespace pvx {
namespace {

using testing::DoubleNear;
using testing::Pointwise;

void Add_Element(Project& p, int n1, int n2, int n3, int n4, float thickness = 1) {
  Mesh_Element e;
  e.Corner = {{static_cast<std::int16_t>(n1), static_cast<std::int16_t>(n2), static_cast<std::int16_t>(n3),
               static_cast<std::int16_t>(n4)}};
  e.Thickness = thickness;
  p.Mesh_Element.add(e);
}

// One element on four new mesh nodes, given as x1, y1, ..., x4, y4.
Project One_Quad(const std::array<double, 8>& c) {
  Project p;
  for (int k = 0; k < 4; ++k)
    p.Mesh_Node.add(Mesh_Node{c[2 * k], c[2 * k + 1]});
  Add_Element(p, 1, 2, 3, 4);
  return p;
}

// A 2 x 2 mesh of 100 mm squares on (0,0)-(200,200). Mesh node (i, j) is 3j + i + 1, so the bottom
// row is 1 2 3, the middle 4 5 6, the top 7 8 9; elements 1 2 below, 3 4 above, counter-clockwise
// from the lower left corner. Element e has thickness 10 e. Design nodes 1..4 are the corners of the
// square, counter-clockwise from (0,0).
Project Grid_2x2() {
  Project p;
  for (int j = 0; j <= 2; ++j)
    for (int i = 0; i <= 2; ++i)
      p.Mesh_Node.add(Mesh_Node{100.0 * i, 100.0 * j});
  for (int e = 1, j = 0; j < 2; ++j)
    for (int i = 0; i < 2; ++i, ++e)
      Add_Element(p, 3 * j + i + 1, 3 * j + i + 2, 3 * j + i + 5, 3 * j + i + 4, 10.0f * e);
  for (const auto& [x, y] : {std::pair{0, 0}, {200, 0}, {200, 200}, {0, 200}})
    Add_Node(p, x, y);
  return p;
}

TEST(Locate_Point, InvertsTheBilinearMapOfEveryShape) {
  // Parallelogram (a3 = b3 = 0, the linear inverse): corner 1 + 0.5 (4,0) + 0.25 (1,2) = (2.25, 0.5).
  // Trapezoid: x = 4 xi + eta - 2 xi eta, y = 2 eta. General: x = 4 xi + xi eta, y = 2 eta + xi eta.
  // Folded: x = 4 xi - 3 xi eta, y = 4 eta - 3 xi eta, where (2.5, 0.5) has the pre-images (5/6, 1/3)
  // from eta = (-B + sqrt D) / 2A and (1, 1/2) from the other root; the first is taken. Almost a
  // parallelogram: corner 2 at 0.1 + 0.2 and corner 3 at 0.3 leave a3 = -5.6e-17, a tiny A above the
  // affine limit, where the textbook root formula loses every digit; the element is x = 0.3 xi.
  // Wide: x = xi + 4 xi eta, y = eta, where (1.5, 0.5) gives B = -1 < 0, the other form of the roots.
  // Points inside the bounding box but beyond a slanted side are in no element. In a mesh a shared
  // side or node goes to the first element; outside, also just beyond the edge, is element 0.
  const Project parallelogram = One_Quad({0, 0, 4, 0, 5, 2, 1, 2}),
                trapezoid = One_Quad({0, 0, 4, 0, 3, 2, 1, 2}), general = One_Quad({0, 0, 4, 0, 5, 3, 0, 2}),
                folded = One_Quad({0, 0, 4, 0, 1, 1, 0, 4}),
                almost = One_Quad({0, 0, 0.1 + 0.2, 0, 0.3, 1, 0, 1}),
                wide = One_Quad({0, 0, 1, 0, 5, 1, 0, 1}), grid = Grid_2x2();
  // The mesh, the point, the element it lies in, its local coordinates.
  // clang-format off
  const std::tuple<const Project&, double, double, int, double, double> cases[] = {
      {parallelogram, 2.25, 0.5, 1, 0.5, 0.25}, {parallelogram, 0.2, 1.5, 0, 0, 0},
      {trapezoid, 1.25, 1, 1, 0.25, 0.5},       {trapezoid, 0.2, 1.8, 0, 0, 0},
      {general, 2.25, 1.25, 1, 0.5, 0.5},       {general, 0.98, 1.98, 1, 0.2, 0.9}, {general, 5, 3, 1, 1, 1},
      {folded, 2.5, 0.5, 1, 5.0 / 6, 1.0 / 3},  {wide, 1.5, 0.5, 1, 0.5, 0.5},
      {almost, 0.1, 0.25, 1, 1.0 / 3, 0.25},    {almost, 0.29, 0.9, 1, 0.29 / 0.3, 0.9},
      {grid, 100, 30, 1, 1, 0.3},               {grid, 100, 100, 1, 1, 1},          {grid, 175, 125, 4, 0.75, 0.25},
      {grid, -1, 50, 0, 0, 0},                  {grid, 50, 200.000001, 0, 0, 0},    {grid, 300, 300, 0, 0, 0},
  };
  // clang-format on
  for (const auto& [mesh, x, y, element, xi, eta] : cases) {
    int found = -1;
    double local[2] = {-1, -1};
    Locate_Point(mesh, x, y, found, local[0], local[1]);
    EXPECT_EQ(found, element) << x << ", " << y;
    EXPECT_THAT(local, Pointwise(DoubleNear(1e-12), {xi, eta})) << x << ", " << y;
  }
}

// The message of the transfer, "refused: " in front when it stops the computation.
std::string Transfer(Project& p) {
  bool ok = false;
  std::string message = "left over";
  Set_Prescribed_Data(p, ok, message);
  return (ok ? "" : "refused: ") + message;
}

template <class Record>
Record On_Side(int a, int b) {
  Record r;
  r.Node_A = static_cast<std::int16_t>(a);
  r.Node_B = static_cast<std::int16_t>(b);
  return r;
}

std::vector<int> Prescribed_Nodes(const Project& p) {
  std::vector<int> nodes;
  for (const auto& e : p.Prescribed_Node)
    nodes.push_back(e.Mesh_Node);
  return nodes;
}

TEST(Set_Prescribed_Data, ALineTemperatureTakesTheNodesWithinOneMicronOfItsSide) {
  // A side from (start_x, y) to (end_x, y) against the mesh nodes (0, 0), (200, 0) and (0, 200):
  // at the end, 0.0009 and 0.0011 beyond it, 0.0009 and 0.0011 beside it, 0.0009 on the other
  // side, 0.0009 and 0.0011 before the start.
  const std::tuple<double, double, double, std::vector<int>> cases[] = {
      {0, 200, 0, {1, 2, 3}},      {0, 199.9991, 0, {1, 2, 3}}, {0, 199.9989, 0, {1, 2}},
      {0, 200, 0.0009, {1, 2, 3}}, {0, 200, 0.0011, {}},        {0, 200, -0.0009, {1, 2, 3}},
      {0.0009, 100, 0, {1, 2}},    {0.0011, 100, 200, {8}}};
  for (const auto& [start_x, end_x, y, nodes] : cases) {
    Project p = Grid_2x2();
    p.Line_T.add(On_Side<Line_T>(Add_Node(p, start_x, y), Add_Node(p, end_x, y)));
    EXPECT_EQ(Transfer(p), "");
    EXPECT_EQ(Prescribed_Nodes(p), nodes) << start_x << " " << end_x << " " << y;
  }
}

TEST(Set_Prescribed_Data, AreaComesFirstAndOnlyTheLastEntryMayBeDoubled) {
  // The whole mesh, limits included; the bottom edge, nodes 1 2 3, all already listed; the top edge,
  // nodes 7 8 9, where node 9 is the last entry. Function and period go with each node.
  Project p = Grid_2x2();
  p.Area_T.add({.Temperature_Function = 2, .X1 = 0, .Y1 = 0, .X2 = 200, .Y2 = 200});
  p.Line_T.add({.Temperature_Function = 3, .Node_A = 1, .Node_B = 2});
  p.Line_T.add({.Present_From = 5, .Until = 50, .Temperature_Function = 3, .Node_A = 3, .Node_B = 4});
  EXPECT_EQ(Transfer(p), "");
  ASSERT_EQ(Prescribed_Nodes(p), (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 9}));
  for (int i = 1; i <= 9; ++i)
    EXPECT_EQ(p.Prescribed_Node[i], (Prescribed_Node{2, i, 0, 1000})) << i;
  EXPECT_EQ(p.Prescribed_Node[10], (Prescribed_Node{3, 9, 5, 50}));
  // The list is rebuilt from nothing at every transfer; an area that touches no node adds nothing.
  p.Area_T[1] = {.X1 = 10, .Y1 = 10, .X2 = 90, .Y2 = 90};
  p.Line_T.clear();
  EXPECT_EQ(Transfer(p), "");
  EXPECT_EQ(p.Prescribed_Node.count(), 0);
}

TEST(Set_Prescribed_Data, BadEndNodesAndLinesOffTheElementSidesStopTheTransfer) {
  // The kind of line, its design nodes, the mesh supports made when the check stopped (line
  // temperatures come before the point support, line supports after it, line loads after the line
  // supports), the end of the message. Design node 10 fails on a mesh of 9 nodes. The diagonals pass
  // mesh node 5, and no element has a side from a corner to it.
  const std::string off = "does not lie on element sides: no element has a side between mesh nodes ";
  const std::tuple<char, int, int, int, std::string> cases[] = {
      {'T', 0, 0, 0, "line temperature 2"}, {'T', 10, 1, 0, "line temperature 2"},
      {'S', 1, 99, 1, "line support 2"},    {'S', 2, 4, 3, "from node 2 to node 4, " + off + "3 and 5"},
      {'L', -3, 2, 3, "line load 2"},       {'L', 1, 3, 3, "from node 1 to node 3, " + off + "1 and 5"},
  };
  for (const auto& [kind, a, b, supports, ending] : cases) {
    SCOPED_TRACE(ending);
    Project p = Grid_2x2();
    for (int k = 5; k <= 10; ++k)
      Add_Node(p, 0, 0);
    p.Point_Support.add(Support{});
    p.Line_T.add(On_Side<Line_T>(1, 2));
    if (kind != 'T') p.Line_Support.add(On_Side<Support>(1, 2));
    if (kind == 'L') p.Line_Load.add(On_Side<Load>(1, 2));
    if (kind == 'T') p.Line_T.add(On_Side<Line_T>(a, b));
    if (kind == 'S') p.Line_Support.add(On_Side<Support>(a, b));
    if (kind == 'L') p.Line_Load.add(On_Side<Load>(a, b));
    EXPECT_THAT(Transfer(p),
                testing::AllOf(testing::StartsWith("refused: Check line"), testing::EndsWith(ending)));
    EXPECT_EQ(p.Mesh_Support.count(), supports);
    EXPECT_EQ(p.Prescribed_Node.count(), kind == 'T' ? 0 : 3);
  }
}

TEST(Set_Prescribed_Data, LineSupportsAndLoadsTakeTheFirstElementWithTheSideWhicheverWayItIsNamed) {
  // Side 2-5 belongs to elements 1 (which runs it upwards) and 2 (downwards), side 5-8 to elements 3
  // and 4; the bottom sides 1-2 and 2-3 to elements 1 and 2 alone, which run them to the right.
  // Each row: element 1 of no thickness, the design nodes of the line, the mesh nodes along it in
  // order, the middles of the two segments, their thicknesses. The first element with a thickness
  // gives it; a side whose elements have none gets 0 and still carries the line.
  using N = std::int16_t;
  const std::tuple<bool, N, N, std::vector<int>, std::vector<double>, std::vector<double>> cases[] = {
      {false, 5, 6, {2, 5, 8}, {100, 50, 100, 150}, {10, 30}},
      {false, 6, 5, {8, 5, 2}, {100, 150, 100, 50}, {30, 10}},
      {false, 1, 2, {1, 2, 3}, {50, 0, 150, 0}, {10, 20}},
      {false, 2, 1, {3, 2, 1}, {150, 0, 50, 0}, {20, 10}},
      {true, 6, 5, {8, 5, 2}, {100, 150, 100, 50}, {30, 20}},
      {true, 1, 2, {1, 2, 3}, {50, 0, 150, 0}, {0, 20}},
  };
  for (const auto& [thin, a, b, nodes, middles, thickness] : cases) {
    SCOPED_TRACE(testing::Message() << a << " to " << b << (thin ? ", element 1 thin" : ""));
    Project p = Grid_2x2();
    Add_Node(p, 100, 0);  // design node 5
    Add_Node(p, 100, 200);
    if (thin) p.Mesh_Element[1].Thickness = 0;
    // Whatever thickness the design record holds is replaced.
    p.Line_Support.add({.Angle = 30, .Node_A = a, .Node_B = b, .Effective_Thickness = 77, .Dof = {}});
    p.Line_Load.add({.Node_A = a, .Node_B = b});
    EXPECT_EQ(Transfer(p), "");
    ASSERT_EQ(std::pair(p.Mesh_Support.count(), p.Mesh_Load.count()), std::pair(2, 2));
    for (int k = 0; k < 2; ++k) {
      const Support& s = p.Mesh_Support[k + 1];
      const Load& l = p.Mesh_Load[k + 1];
      const auto want =
          std::tuple(nodes[k], nodes[k + 1], middles[2 * k], middles[2 * k + 1], 100.0, thickness[k]);
      EXPECT_EQ(std::tuple(int{s.Node_A}, int{s.Node_B}, s.X, s.Y, s.Segment_Length, s.Effective_Thickness),
                want);
      EXPECT_EQ(std::tuple(int{l.Node_A}, int{l.Node_B}, l.X, l.Y, l.Node_Spacing, l.Effective_Thickness),
                want);
      EXPECT_EQ(s.Angle, 30);
    }
  }
}

TEST(Set_Prescribed_Data, MeshNodesAlongALongSideAreSortedFromItsFirstNode) {
  // A strip of four elements along the line from (0,0) to (400,300), numbered out of order: the
  // node at fraction t[k] of the line is mesh node k + 1, its partner 100 mm off the line k + 6.
  // Elements from the start of the line on the node pairs (2, 4), (4, 1), (1, 5), (5, 3), thickness 1..4.
  Project p;
  const double t[] = {0.5, 0, 1, 0.25, 0.75};
  for (const double off : {0, 1})
    for (const double f : t)
      p.Mesh_Node.add(Mesh_Node{400 * f - 60 * off, 300 * f + 80 * off});
  const int along[] = {2, 4, 1, 5, 3};
  for (int e = 0; e < 4; ++e)
    Add_Element(p, along[e], along[e + 1], along[e + 1] + 5, along[e] + 5, static_cast<float>(e + 1));
  p.Line_Load.add(On_Side<Load>(Add_Node(p, 400, 300), Add_Node(p, 0, 0)));
  p.Line_Load[1].Level = 7;
  EXPECT_EQ(Transfer(p), "");
  EXPECT_EQ(Transfer(p), "");  // rebuilt, not added to
  // From (400,300): nodes 3 (t 1), 5 (0.75), 1 (0.5), 4 (0.25), 2 (0); segments of 125 mm, whose
  // elements run the other way: thicknesses 4 down to 1.
  const int order[] = {3, 5, 1, 4, 2};
  ASSERT_EQ(p.Mesh_Load.count(), 4);
  for (int k = 0; k < 4; ++k) {
    const Load& m = p.Mesh_Load[k + 1];
    EXPECT_EQ(std::tuple(int{m.Node_A}, int{m.Node_B}, m.Effective_Thickness, m.Level),
              std::tuple(order[k], order[k + 1], 4.0 - k, 7.0));
    EXPECT_THAT((std::array{m.Node_Spacing, m.X, m.Y}),
                Pointwise(DoubleNear(1e-12), {125.0, 350.0 - 100 * k, 262.5 - 75 * k}));
  }
}

TEST(Set_Prescribed_Data, PointsAreLocatedInPlaceWithTheirThicknessOrAxisymmetricRadius) {
  for (const bool axisymmetric : {false, true}) {
    SCOPED_TRACE(axisymmetric);
    Project p = Grid_2x2();
    p.Mesh_Node[8].X = 130;  // a skewed top row
    p.Out_Of_Plane.Axisymmetric = axisymmetric ? True_Flag : False_Flag;
    p.Out_Of_Plane.Offset_Radius = 1000;
    p.Point_T.add({.X = 25, .Y = 75});
    p.Point_Load.add({.X = 150, .Y = 120, .Node_A = 7, .Node_B = 8});  // a point load keeps its nodes
    p.Point_Load.add({.X = -10, .Y = 120});                            // outside
    p.Point_Support.add({.X = 120, .Y = 150, .Node_A = 3, .Dof = {}});
    p.Point_Support.add({.X = 250, .Y = 150, .Dof = {}});  // outside
    p.Line_Support.add(On_Side<Support>(1, 2));
    EXPECT_EQ(Transfer(p), "");
    EXPECT_EQ(std::tuple(int{p.Point_T[1].Element}, p.Point_T[1].Local_X, p.Point_T[1].Local_Y),
              std::tuple(1, 0.25, 0.75));
    EXPECT_EQ(std::tuple(int{p.Point_Load[1].Node_A}, int{p.Point_Load[1].Node_B}), std::tuple(7, 8));
    EXPECT_EQ(p.Mesh_Support[1].Node_A, 0);   // a point support has no side
    EXPECT_EQ(p.Point_Support[1].Node_A, 3);  // the design record is left alone
    // Element and thickness of the point loads, then of the mesh supports: the two points, then the
    // segments of the bottom side, of elements 1 and 2. The radius is x + Ro: of the point, or of
    // the middle of the segment.
    std::vector<double> got;
    for (const Load& l : p.Point_Load)
      got.insert(got.end(), {static_cast<double>(l.Element), l.Effective_Thickness});
    for (const Support& s : p.Mesh_Support)
      got.insert(got.end(), {static_cast<double>(s.Element), s.Effective_Thickness});
    const std::vector<double> plane{4, 40, 0, 0, 4, 40, 0, 0, 0, 10, 0, 20},
        radius{4, 1150, 0, 0, 4, 1120, 0, 0, 0, 1050, 0, 1150};
    EXPECT_THAT(got, Pointwise(DoubleNear(1e-9), axisymmetric ? radius : plane));
  }
}

}  // namespace
}  // namespace pvx
