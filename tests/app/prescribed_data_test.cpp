#include "app/prescribed_data.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "app/project.h"

namespace pvx {
namespace {

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

void Expect_At(const Project& p, double x, double y, int element, double xi, double eta,
               double tolerance = 1e-12) {
  int found = -1;
  double fx = -1, fy = -1;
  Locate_Point(p, x, y, found, fx, fy);
  EXPECT_EQ(found, element) << x << ", " << y;
  EXPECT_NEAR(fx, xi, tolerance) << x << ", " << y;
  EXPECT_NEAR(fy, eta, tolerance) << x << ", " << y;
}

TEST(Locate_Point, InvertsTheBilinearMapOfEveryShape) {
  // Parallelogram (a3 = b3 = 0, the linear inverse): corner 1 + 0.5 (4,0) + 0.25 (1,2) = (2.25, 0.5).
  // Trapezoid: x = 4 xi + eta - 2 xi eta, y = 2 eta. General: x = 4 xi + xi eta, y = 2 eta + xi eta.
  // Folded: x = 4 xi - 3 xi eta, y = 4 eta - 3 xi eta, where (2.5, 0.5) has the pre-images (5/6, 1/3)
  // from eta = (-B + sqrt D) / 2A and (1, 1/2) from the other root; the first is taken. Almost a
  // parallelogram: corner 2 at 0.1 + 0.2 and corner 3 at 0.3 leave a3 = -5.6e-17, a tiny A above the
  // affine limit, where the textbook root formula loses every digit; the element is x = 0.3 xi.
  // Points inside the bounding box but beyond a slanted side are in no element.
  const std::array<double, 8> parallelogram{0, 0, 4, 0, 5, 2, 1, 2}, trapezoid{0, 0, 4, 0, 3, 2, 1, 2},
      general{0, 0, 4, 0, 5, 3, 0, 2}, folded{0, 0, 4, 0, 1, 1, 0, 4},
      almost{0, 0, 0.1 + 0.2, 0, 0.3, 1, 0, 1};
  struct Case {
    const std::array<double, 8>& corners;
    double x, y;
    int element;
    double xi, eta;
  };
  // clang-format off
  const Case cases[] = {
      {parallelogram, 2.25, 0.5, 1, 0.5, 0.25}, {parallelogram, 0.2, 1.5, 0, 0, 0},
      {trapezoid, 1.25, 1, 1, 0.25, 0.5},       {trapezoid, 0.2, 1.8, 0, 0, 0},
      {general, 2.25, 1.25, 1, 0.5, 0.5},       {general, 0.98, 1.98, 1, 0.2, 0.9}, {general, 5, 3, 1, 1, 1},
      {folded, 2.5, 0.5, 1, 5.0 / 6, 1.0 / 3},
      {almost, 0.1, 0.25, 1, 1.0 / 3, 0.25},    {almost, 0.29, 0.9, 1, 0.29 / 0.3, 0.9},
  };
  // clang-format on
  for (const Case& c : cases)
    Expect_At(One_Quad(c.corners), c.x, c.y, c.element, c.xi, c.eta);

  // A distorted quad rotated by 30 degrees: points of a 3 x 3 grid of (xi, eta) map forward and back.
  const double cs = std::cos(0.5235987755982988), sn = std::sin(0.5235987755982988);
  const double lx[4] = {0, 40, 55, -5}, ly[4] = {0, 0, 30, 20};
  std::array<double, 8> g{};
  for (int k = 0; k < 4; ++k) {
    g[2 * k] = 1000 + cs * lx[k] - sn * ly[k];
    g[2 * k + 1] = 500 + sn * lx[k] + cs * ly[k];
  }
  for (int i = 1; i <= 3; ++i)
    for (int j = 1; j <= 3; ++j) {
      double w[4];
      Corner_Weights(0.25 * i, 0.25 * j, w);
      const double x = w[0] * g[0] + w[1] * g[2] + w[2] * g[4] + w[3] * g[6];
      const double y = w[0] * g[1] + w[1] * g[3] + w[2] * g[5] + w[3] * g[7];
      Expect_At(One_Quad(g), x, y, 1, 0.25 * i, 0.25 * j, 1e-9);
    }

  // In a mesh a shared side or node goes to the first element; outside, also just beyond the edge,
  // is element 0.
  const Project p = Grid_2x2();
  Expect_At(p, 100, 30, 1, 1, 0.3);
  Expect_At(p, 100, 100, 1, 1, 1);
  Expect_At(p, 175, 125, 4, 0.75, 0.25);
  for (const auto& [x, y] : {std::pair{-1.0, 50.0}, {50.0, 200.000001}, {300.0, 300.0}})
    Expect_At(p, x, y, 0, 0, 0, 0);
}

// The message of the transfer, "refused: " in front when it stops the computation.
std::string Transfer(Project& p) {
  bool ok = false;
  std::string message = "left over";
  Set_Prescribed_Data(p, ok, message);
  return (ok ? "" : "refused: ") + message;
}

template <class Record>
Record On_Side(int a, int b, std::int16_t function = 1) {
  Record r;
  r.Node_A = static_cast<std::int16_t>(a);
  r.Node_B = static_cast<std::int16_t>(b);
  if constexpr (std::is_same_v<Record, Line_T>) r.Temperature_Function = function;
  return r;
}

std::vector<int> Prescribed_Nodes(const Project& p) {
  std::vector<int> nodes;
  for (const auto& e : p.Prescribed_Node)
    nodes.push_back(e.Mesh_Node);
  return nodes;
}

TEST(Set_Prescribed_Data, ALineTemperatureTakesTheNodesWithinOneMicronOfItsSide) {
  // The mesh node (200, 0) against a side from (0, y) to (end_x, y): at the end, 0.0009 and 0.0011
  // beyond it, 0.0009 and 0.0011 beside it, and 0.0009 on the other side.
  const std::tuple<double, double, std::vector<int>> cases[] = {
      {200, 0, {1, 2, 3}},      {199.9991, 0, {1, 2, 3}}, {199.9989, 0, {1, 2}},
      {200, 0.0009, {1, 2, 3}}, {200, 0.0011, {}},        {200, -0.0009, {1, 2, 3}}};
  for (const auto& [end_x, y, nodes] : cases) {
    Project p = Grid_2x2();
    p.Line_T.add(On_Side<Line_T>(Add_Node(p, 0, y), Add_Node(p, end_x, y)));
    EXPECT_EQ(Transfer(p), "");
    EXPECT_EQ(Prescribed_Nodes(p), nodes) << end_x << " " << y;
  }
  // Before the start: a side from (0.0009, 0) takes node 1, one from (0.0011, 200) not node 7. The
  // function and the period of the line go with every node.
  Project p = Grid_2x2();
  Line_T line = On_Side<Line_T>(Add_Node(p, 0.0009, 0), Add_Node(p, 100, 0), 2);
  line.Present_From = 5;
  line.Until = 50;
  p.Line_T.add(line);
  p.Line_T.add(On_Side<Line_T>(Add_Node(p, 0.0011, 200), Add_Node(p, 100, 200), 3));
  EXPECT_EQ(Transfer(p), "");
  EXPECT_EQ(Prescribed_Nodes(p), (std::vector<int>{1, 2, 8}));
  EXPECT_EQ(p.Prescribed_Node[2], (Prescribed_Node{2, 2, 5, 50}));
  EXPECT_EQ(p.Prescribed_Node[3].Temperature_Function, 3);
}

TEST(Set_Prescribed_Data, AreaComesFirstAndOnlyTheLastEntryMayBeDoubled) {
  Project p = Grid_2x2();
  Area_T area;
  area.X1 = 0, area.Y1 = 0, area.X2 = 200, area.Y2 = 200;  // the whole mesh, limits included
  area.Temperature_Function = 2;
  p.Area_T.add(area);
  p.Line_T.add(On_Side<Line_T>(1, 2, 3));  // bottom edge: nodes 1 2 3, all already listed
  p.Line_T.add(On_Side<Line_T>(3, 4, 3));  // top edge: nodes 7 8 9; node 9 is the last entry
  EXPECT_EQ(Transfer(p), "");
  ASSERT_EQ(Prescribed_Nodes(p), (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 9}));
  for (int i = 1; i <= 10; ++i)
    EXPECT_EQ(p.Prescribed_Node[i].Temperature_Function, i < 10 ? 2 : 3) << i;
  // The list is rebuilt from nothing at every transfer; an area that touches no node adds nothing.
  area.X1 = 10, area.X2 = 90, area.Y1 = 10, area.Y2 = 90;
  p.Area_T[1] = area;
  p.Line_T.clear();
  EXPECT_EQ(Transfer(p), "");
  EXPECT_EQ(p.Prescribed_Node.count(), 0);
}

TEST(Set_Prescribed_Data, BadEndNodesStopWithTheirMessages) {
  // The limit is the mesh node count: design node 10 fails on a mesh of 9 nodes.
  const std::string tail = " again. An unexpected node connnection has been detected in ";
  const std::tuple<int, int, std::string> cases[] = {
      {0, 0, "Check line temperatures" + tail + "line temperature 2"},
      {1, 0, "Check line temperature" + tail + "line temperature 2"},
      {10, 1, "Check line temperatures" + tail + "line temperature 2"},
  };
  for (const auto& [a, b, message] : cases) {
    Project p = Grid_2x2();
    for (int k = 5; k <= 10; ++k)
      Add_Node(p, 0, 0);
    p.Line_T.add(On_Side<Line_T>(1, 2));
    p.Line_T.add(On_Side<Line_T>(a, b));
    EXPECT_EQ(Transfer(p), "refused: " + message);
    EXPECT_EQ(p.Prescribed_Node.count(), 0);  // the check comes before any line is worked
  }
  for (const bool bad_a : {true, false}) {
    Project p = Grid_2x2();
    p.Point_Support.add(Support{});
    p.Line_Support.add(On_Side<Support>(bad_a ? 0 : 1, bad_a ? 2 : 99));
    EXPECT_EQ(Transfer(p), "refused: Check line supports" + tail + "line support 1");
    EXPECT_EQ(p.Mesh_Support.count(), 1);  // point supports were done when the check stopped
    p = Grid_2x2();
    p.Line_Load.add(On_Side<Load>(1, 2));
    p.Line_Load.add(On_Side<Load>(bad_a ? -3 : 1, bad_a ? 2 : 10));
    EXPECT_EQ(Transfer(p), std::string("refused: ") + (bad_a ? "Check line load" : "Check line loads") +
                               tail + "line load 2");
  }
}

TEST(Set_Prescribed_Data, LineSupportsFollowTheSideInOrderWithTheThicknessOfTheFirstElement) {
  Project p = Grid_2x2();
  const int bottom = Add_Node(p, 100, 0), top = Add_Node(p, 100, 200);
  Support up = On_Side<Support>(bottom, top);
  up.Angle = 30;
  up.Effective_Thickness = 77;     // whatever the design record holds is replaced
  p.Point_Support.add(Support{});  // placed first, at (0, 0)
  p.Line_Support.add(up);
  p.Line_Support.add(On_Side<Support>(top, bottom));
  EXPECT_EQ(Transfer(p), "");
  ASSERT_EQ(p.Mesh_Support.count(), 5);
  EXPECT_EQ(p.Mesh_Support[1].Node_A, 0);
  EXPECT_EQ(p.Mesh_Support[1].Element, 1);
  // Up 2 -> 5 -> 8 and down again. Side 2-5 belongs to elements 1 and 2, side 5-8 to 3 and 4: the
  // first of each pair gives the thickness, 10 and 30.
  const int a[] = {2, 5, 8, 5}, b[] = {5, 8, 5, 2};
  const double y[] = {50, 150, 150, 50}, thickness[] = {10, 30, 30, 10};
  for (int k = 0; k < 4; ++k) {
    const Support& m = p.Mesh_Support[k + 2];
    EXPECT_EQ(m.Node_A, a[k]) << k;
    EXPECT_EQ(m.Node_B, b[k]) << k;
    EXPECT_EQ(m.X, 100);
    EXPECT_EQ(m.Y, y[k]) << k;
    EXPECT_EQ(m.Segment_Length, 100);
    EXPECT_EQ(m.Effective_Thickness, thickness[k]) << k;
    EXPECT_EQ(m.Angle, k < 2 ? 30 : Support{}.Angle) << k;
  }
  // An element of no thickness gives way to the next one with the side.
  p.Mesh_Element[1].Thickness = 0;
  EXPECT_EQ(Transfer(p), "");
  EXPECT_EQ(p.Mesh_Support[2].Effective_Thickness, 20);
  EXPECT_EQ(p.Mesh_Support[3].Effective_Thickness, 30);
}

TEST(Set_Prescribed_Data, MeshNodesAlongALongSideAreSortedFromItsFirstNode) {
  // A strip of four elements along the line from (0,0) to (400,300), numbered out of order: the
  // node at fraction t[k] of the line is mesh node k + 1, its partner 100 mm off the line k + 6.
  Project p;
  const double t[] = {0.5, 0, 1, 0.25, 0.75};
  for (const double off : {0, 1})
    for (const double f : t)
      p.Mesh_Node.add(Mesh_Node{400 * f - 60 * off, 300 * f + 80 * off});
  // Elements from the start of the line, on the node pairs (2, 4), (4, 1), (1, 5), (5, 3); thickness 1..4.
  const int along[] = {2, 4, 1, 5, 3};
  for (int e = 0; e < 4; ++e)
    Add_Element(p, along[e], along[e + 1], along[e + 1] + 5, along[e] + 5, static_cast<float>(e + 1));
  p.Line_Load.add(On_Side<Load>(Add_Node(p, 400, 300), Add_Node(p, 0, 0)));
  p.Line_Load[1].Level = 7;
  EXPECT_EQ(Transfer(p), "");
  EXPECT_EQ(Transfer(p), "");  // rebuilt, not added to
  // From (400,300): nodes 3 (t 1), 5 (0.75), 1 (0.5), 4 (0.25), 2 (0); segments of 125 mm.
  const int order[] = {3, 5, 1, 4, 2};
  ASSERT_EQ(p.Mesh_Load.count(), 4);
  for (int k = 0; k < 4; ++k) {
    const Load& m = p.Mesh_Load[k + 1];
    EXPECT_EQ(m.Node_A, order[k]) << k;
    EXPECT_EQ(m.Node_B, order[k + 1]) << k;
    EXPECT_NEAR(m.Node_Spacing, 125, 1e-12);
    EXPECT_NEAR(m.X, 400 * (0.875 - 0.25 * k), 1e-12);
    EXPECT_NEAR(m.Y, 300 * (0.875 - 0.25 * k), 1e-12);
    EXPECT_EQ(m.Effective_Thickness, 4 - k);  // the elements run the other way
    EXPECT_EQ(m.Level, 7);
  }
}

TEST(Set_Prescribed_Data, PointsAreLocatedInPlaceWithTheirThicknessOrAxisymmetricRadius) {
  for (const bool axisymmetric : {false, true}) {
    SCOPED_TRACE(axisymmetric);
    Project p = Grid_2x2();
    // A skewed top row, so that a radius comes from the corner weights, not a plain scale.
    p.Mesh_Node[8].X = 130;
    p.Out_Of_Plane.Axisymmetric = axisymmetric ? True_Flag : False_Flag;
    p.Out_Of_Plane.Offset_Radius = 1000;
    Point_T pt;
    pt.X = 25, pt.Y = 75;
    p.Point_T.add(pt);
    Load load;
    load.X = 150, load.Y = 120, load.Node_A = 7, load.Node_B = 8;  // a point load keeps its nodes
    p.Point_Load.add(load);
    load.X = -10;  // outside
    p.Point_Load.add(load);
    Support support;
    support.X = 120, support.Y = 150, support.Node_A = 3;
    p.Point_Support.add(support);
    support.X = 250;  // outside
    p.Point_Support.add(support);
    p.Line_Support.add(On_Side<Support>(1, 2));
    EXPECT_EQ(Transfer(p), "");

    EXPECT_EQ(p.Point_T[1].Element, 1);
    EXPECT_DOUBLE_EQ(p.Point_T[1].Local_X, 0.25);
    EXPECT_DOUBLE_EQ(p.Point_T[1].Local_Y, 0.75);
    const Load& in = p.Point_Load[1];
    EXPECT_EQ(in.Element, 4);
    EXPECT_NEAR(in.Effective_Thickness, axisymmetric ? 1150 : 40, 1e-9);  // radius x + Ro
    EXPECT_EQ(in.Node_A, 7);
    EXPECT_EQ(in.Node_B, 8);
    EXPECT_EQ(p.Point_Load[2].Element, 0);
    EXPECT_EQ(p.Point_Load[2].Effective_Thickness, 0);
    ASSERT_EQ(p.Mesh_Support.count(), 4);
    EXPECT_EQ(p.Mesh_Support[1].Element, 4);
    EXPECT_NEAR(p.Mesh_Support[1].Effective_Thickness, axisymmetric ? 1120 : 40, 1e-9);
    EXPECT_EQ(p.Mesh_Support[1].Node_A, 0);   // a point support has no side
    EXPECT_EQ(p.Point_Support[1].Node_A, 3);  // the design record is left alone
    EXPECT_EQ(p.Mesh_Support[2].Element, 0);
    EXPECT_EQ(p.Mesh_Support[2].Effective_Thickness, 0);
    // Segments of the bottom side: element thickness 10 and 20, or the mean X of their nodes + Ro.
    EXPECT_DOUBLE_EQ(p.Mesh_Support[3].Effective_Thickness, axisymmetric ? 1050 : 10);
    EXPECT_DOUBLE_EQ(p.Mesh_Support[4].Effective_Thickness, axisymmetric ? 1150 : 20);
  }
}

}  // namespace
}  // namespace pvx
