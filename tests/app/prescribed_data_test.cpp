#include "app/prescribed_data.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "app/project.h"

namespace pvx {
namespace {

int Add_Mesh_Node(Project& p, double x, double y) {
  return p.Mesh_Node.add(Mesh_Node{x, y});
}

int Add_Element(Project& p, int n1, int n2, int n3, int n4, float thickness = 1) {
  Mesh_Element e;
  e.Corner[1] = static_cast<std::int16_t>(n1);
  e.Corner[2] = static_cast<std::int16_t>(n2);
  e.Corner[3] = static_cast<std::int16_t>(n3);
  e.Corner[4] = static_cast<std::int16_t>(n4);
  e.Thickness = thickness;
  return p.Mesh_Element.add(e);
}

int Add_Quad(Project& p, double x1, double y1, double x2, double y2, double x3, double y3, double x4,
             double y4) {
  const int n1 = Add_Mesh_Node(p, x1, y1), n2 = Add_Mesh_Node(p, x2, y2);
  const int n3 = Add_Mesh_Node(p, x3, y3), n4 = Add_Mesh_Node(p, x4, y4);
  return Add_Element(p, n1, n2, n3, n4);
}

// A 2 x 2 mesh of 100 mm squares on (0,0)-(200,200). Mesh node (i, j) is 3j + i + 1, so the bottom
// row is 1 2 3, the middle 4 5 6, the top 7 8 9; elements 1 2 below, 3 4 above, counter-clockwise
// from the lower left corner. Element e has thickness 10 e. Design nodes 1..4 are the corners of the
// square, counter-clockwise from (0,0).
Project Grid_2x2() {
  Project p;
  for (int j = 0; j <= 2; ++j)
    for (int i = 0; i <= 2; ++i)
      Add_Mesh_Node(p, 100.0 * i, 100.0 * j);
  for (int j = 0; j < 2; ++j)
    for (int i = 0; i < 2; ++i) {
      const int n = 3 * j + i + 1;
      const int e = p.Mesh_Element.count() + 1;
      Add_Element(p, n, n + 1, n + 4, n + 3, 10.0f * e);
    }
  Add_Node(p, 0, 0);
  Add_Node(p, 200, 0);
  Add_Node(p, 200, 200);
  Add_Node(p, 0, 200);
  return p;
}

struct Located {
  int element;
  double xi, eta;
};

Located Locate(const Project& p, double x, double y) {
  Located r{-1, -1, -1};
  Locate_Point(p, x, y, r.element, r.xi, r.eta);
  return r;
}

void Expect_At(const Project& p, double x, double y, int element, double xi, double eta,
               double tolerance = 1e-12) {
  const Located r = Locate(p, x, y);
  EXPECT_EQ(r.element, element) << x << ", " << y;
  EXPECT_NEAR(r.xi, xi, tolerance) << x << ", " << y;
  EXPECT_NEAR(r.eta, eta, tolerance) << x << ", " << y;
}

// ---------------------------------------------------------------------------------------------
// Locate_Point

TEST(Locate_Point, ParallelogramUsesTheLinearInverse) {
  // a3 = b3 = 0, so A = 0 and eta = -C / B. The point corner 1 + 0.5 (4,0) + 0.25 (1,2) = (2.25, 0.5).
  Project p;
  Add_Quad(p, 0, 0, 4, 0, 5, 2, 1, 2);
  Expect_At(p, 2.25, 0.5, 1, 0.5, 0.25);
  // Beside the slanted side, still within the bounding box: outside.
  EXPECT_EQ(Locate(p, 0.2, 1.5).element, 0);
}

TEST(Locate_Point, TrapezoidAndGeneralQuadUseTheQuadraticInverse) {
  // Trapezoid: x = 4 xi + eta - 2 xi eta, y = 2 eta. At xi 0.25, eta 0.5: (1.25, 1).
  Project trapezoid;
  Add_Quad(trapezoid, 0, 0, 4, 0, 3, 2, 1, 2);
  Expect_At(trapezoid, 1.25, 1, 1, 0.25, 0.5);
  // Inside the bounding box but outside the slanted side.
  EXPECT_EQ(Locate(trapezoid, 0.2, 1.8).element, 0);

  // General quad: x = 4 xi + xi eta, y = 2 eta + xi eta. At (0.5, 0.5): (2.25, 1.25); at
  // (0.2, 0.9): (0.98, 1.98).
  Project quad;
  Add_Quad(quad, 0, 0, 4, 0, 5, 3, 0, 2);
  Expect_At(quad, 2.25, 1.25, 1, 0.5, 0.5);
  Expect_At(quad, 0.98, 1.98, 1, 0.2, 0.9);
  // Corners map to the corners of the unit square.
  Expect_At(quad, 5, 3, 1, 1, 1);
}

TEST(Locate_Point, FoldedElementTakesThePlusRootFirst) {
  // Corner 3 pulled inwards: x = 4 xi - 3 xi eta, y = 4 eta - 3 xi eta. The point (2.5, 0.5) has two
  // pre-images: (5/6, 1/3) from eta = (-B + sqrt D) / 2A and (1, 1/2) from the other root
  // (A = -12, B = 10, C = -2, D = 4). The first one is taken.
  Project p;
  Add_Quad(p, 0, 0, 4, 0, 1, 1, 0, 4);
  Expect_At(p, 2.5, 0.5, 1, 5.0 / 6, 1.0 / 3);
}

TEST(Locate_Point, AlmostParallelogramKeepsItsDigits) {
  // Corner 2 at 0.1 + 0.2 and corner 3 at 0.3 leave a3 = -5.6e-17: A is tiny but above the affine
  // limit, and the textbook root formula would lose every digit here (it gives eta 0 for the first
  // point). The element is the rectangle x = 0.3 xi, y = eta.
  Project p;
  Add_Quad(p, 0, 0, 0.1 + 0.2, 0, 0.3, 1, 0, 1);
  Expect_At(p, 0.1, 0.25, 1, 1.0 / 3, 0.25);
  Expect_At(p, 0.29, 0.9, 1, 0.29 / 0.3, 0.9);
}

TEST(Locate_Point, RoundTripsThroughTheBilinearMapOfARotatedElement) {
  // A distorted quad rotated by 30 degrees: interior points of a 5 x 5 grid of (xi, eta) map
  // forward and back.
  const double c = std::cos(0.5235987755982988), s = std::sin(0.5235987755982988);
  const double lx[4] = {0, 40, 55, -5}, ly[4] = {0, 0, 30, 20};
  double gx[4], gy[4];
  for (int k = 0; k < 4; ++k) {
    gx[k] = 1000 + c * lx[k] - s * ly[k];
    gy[k] = 500 + s * lx[k] + c * ly[k];
  }
  Project p;
  Add_Quad(p, gx[0], gy[0], gx[1], gy[1], gx[2], gy[2], gx[3], gy[3]);
  for (int i = 1; i <= 3; ++i)
    for (int j = 1; j <= 3; ++j) {
      double w[4];
      Corner_Weights(0.25 * i, 0.25 * j, w);
      const double x = w[0] * gx[0] + w[1] * gx[1] + w[2] * gx[2] + w[3] * gx[3];
      const double y = w[0] * gy[0] + w[1] * gy[1] + w[2] * gy[2] + w[3] * gy[3];
      Expect_At(p, x, y, 1, 0.25 * i, 0.25 * j, 1e-9);
    }
}

TEST(Locate_Point, SharedSidesGoToTheFirstElementAndOutsideGivesZero) {
  const Project p = Grid_2x2();
  // On the side shared by elements 1 and 2: element 1, at its far side.
  Expect_At(p, 100, 30, 1, 1, 0.3);
  // The middle node belongs to all four elements: element 1 at its corner 3.
  Expect_At(p, 100, 100, 1, 1, 1);
  // Inside element 4 only.
  Expect_At(p, 175, 125, 4, 0.75, 0.25);
  // Outside the mesh, also just beyond its edge.
  for (const auto& [x, y] : {std::pair{-1.0, 50.0}, {50.0, 200.000001}, {300.0, 300.0}}) {
    Expect_At(p, x, y, 0, 0, 0, 0);
  }
  // No elements at all.
  EXPECT_EQ(Locate(Project{}, 0, 0).element, 0);
}

TEST(Set_In_Order, SortsKeysAndCarriesNodes) {
  Table<double> keys{3.5, -1, 2, 0, 9};
  Table<std::int32_t> nodes{35, -10, 20, 0, 90};
  // Only the first four entries take part.
  Set_In_Order(keys, nodes, 4);
  EXPECT_EQ(keys, (Table<double>{-1, 0, 2, 3.5, 9}));
  EXPECT_EQ(nodes, (Table<std::int32_t>{-10, 0, 20, 35, 90}));
  Set_In_Order(keys, nodes, 0);
  EXPECT_EQ(nodes, (Table<std::int32_t>{-10, 0, 20, 35, 90}));
}

// ---------------------------------------------------------------------------------------------
// Set_Prescribed_Data

struct Transfer {
  bool ok = false;
  std::string message;
};

Transfer Transfer_Data(Project& p) {
  Transfer t;
  t.message = "left over";
  Set_Prescribed_Data(p, t.ok, t.message);
  return t;
}

Line_T Line(int a, int b, std::int16_t function) {
  Line_T l;
  l.Node_A = static_cast<std::int16_t>(a);
  l.Node_B = static_cast<std::int16_t>(b);
  l.Temperature_Function = function;
  return l;
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

TEST(Set_Prescribed_Data, LineTemperatureTakesTheNodesOnItsSide) {
  Project p = Grid_2x2();
  Line_T top = Line(3, 4, 2);  // (200,200) to (0,200)
  top.Present_From = 5;
  top.Until = 50;
  p.Line_T.add(top);
  const Transfer t = Transfer_Data(p);
  ASSERT_TRUE(t.ok);
  EXPECT_EQ(t.message, "");
  EXPECT_EQ(Prescribed_Nodes(p), (std::vector<int>{7, 8, 9}));
  for (const auto& e : p.Prescribed_Node) {
    EXPECT_EQ(e.Temperature_Function, 2);
    EXPECT_EQ(e.From, 5);
    EXPECT_EQ(e.Until, 50);
  }
}

TEST(Set_Prescribed_Data, SideToleranceIsOneMicronAlongAndAcross) {
  // The mesh node (200, 0) against a side from (0,0) that ends short of it.
  struct Case {
    double end_x, y;
    std::vector<int> nodes;
  };
  const Case cases[] = {
      {200, 0, {1, 2, 3}},        // exactly at the end
      {199.9991, 0, {1, 2, 3}},   // 0.0009 beyond the end
      {199.9989, 0, {1, 2}},      // 0.0011 beyond the end
      {200, 0.0009, {1, 2, 3}},   // 0.0009 beside the side
      {200, 0.0011, {}},          // 0.0011 beside it
      {200, -0.0009, {1, 2, 3}},  // and on the other side
  };
  for (const Case& c : cases) {
    Project p = Grid_2x2();
    const int a = Add_Node(p, 0, c.y), b = Add_Node(p, c.end_x, c.y);
    p.Line_T.add(Line(a, b, 1));
    ASSERT_TRUE(Transfer_Data(p).ok);
    EXPECT_EQ(Prescribed_Nodes(p), c.nodes) << c.end_x << " " << c.y;
  }
  // Before the start: a side from (0.0009, 0) takes node 1, from (0.0011, 0) does not.
  Project p = Grid_2x2();
  p.Line_T.add(Line(Add_Node(p, 0.0009, 0), Add_Node(p, 100, 0), 1));
  p.Line_T.add(Line(Add_Node(p, 0.0011, 200), Add_Node(p, 100, 200), 1));
  ASSERT_TRUE(Transfer_Data(p).ok);
  EXPECT_EQ(Prescribed_Nodes(p), (std::vector<int>{1, 2, 8}));
}

TEST(Set_Prescribed_Data, AreaComesFirstAndOnlyTheLastEntryMayBeDoubled) {
  Project p = Grid_2x2();
  Area_T area;
  area.X1 = 0, area.Y1 = 0, area.X2 = 200, area.Y2 = 200;  // the whole mesh, limits included
  area.Temperature_Function = 2;
  p.Area_T.add(area);
  p.Line_T.add(Line(1, 2, 3));  // bottom edge: nodes 1 2 3, all already listed
  p.Line_T.add(Line(3, 4, 3));  // top edge: nodes 7 8 9; node 9 is the last entry
  ASSERT_TRUE(Transfer_Data(p).ok);
  ASSERT_EQ(Prescribed_Nodes(p), (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 9}));
  // The first entry of every node carries the area's function; the doubled one follows it.
  for (int i = 1; i <= 9; ++i)
    EXPECT_EQ(p.Prescribed_Node[i].Temperature_Function, 2) << i;
  EXPECT_EQ(p.Prescribed_Node[10].Temperature_Function, 3);

  // A second area over the right column after the first: nothing new but the last node again.
  area.X1 = 200;
  area.Temperature_Function = 4;
  p.Line_T.clear();
  p.Area_T.add(area);
  ASSERT_TRUE(Transfer_Data(p).ok);
  ASSERT_EQ(Prescribed_Nodes(p), (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 9}));
  EXPECT_EQ(p.Prescribed_Node[10].Temperature_Function, 4);

  // A rectangle touching no node adds nothing; the list is rebuilt from nothing each time.
  p.Area_T.clear();
  area.X1 = 10, area.X2 = 90, area.Y1 = 10, area.Y2 = 90;
  p.Area_T.add(area);
  ASSERT_TRUE(Transfer_Data(p).ok);
  EXPECT_EQ(p.Prescribed_Node.count(), 0);
}

TEST(Set_Prescribed_Data, BadEndNodesStopWithTheirMessages) {
  const std::string tail = " again. An unexpected node connnection has been detected in ";
  {
    // A line whose end nodes were deleted holds node 0.
    Project p = Grid_2x2();
    p.Line_T.add(Line(0, 0, 1));
    const Transfer t = Transfer_Data(p);
    EXPECT_FALSE(t.ok);
    EXPECT_EQ(t.message, "Check line temperatures" + tail + "line temperature 1");
  }
  {
    Project p = Grid_2x2();
    p.Line_T.add(Line(1, 2, 1));
    p.Line_T.add(Line(1, 0, 1));
    const Transfer t = Transfer_Data(p);
    EXPECT_FALSE(t.ok);
    EXPECT_EQ(t.message, "Check line temperature" + tail + "line temperature 2");
    // The stop comes before any line is worked: only the areas would be in the list.
    EXPECT_EQ(p.Prescribed_Node.count(), 0);
  }
  {
    // The limit is the mesh node count: design node 10 of 10 fails on a mesh of 9 nodes.
    Project p = Grid_2x2();
    for (int k = 5; k <= 10; ++k)
      Add_Node(p, 0, 0);
    p.Line_T.add(Line(10, 1, 1));
    EXPECT_EQ(Transfer_Data(p).message, "Check line temperatures" + tail + "line temperature 1");
  }
  for (const bool bad_a : {true, false}) {
    Project p = Grid_2x2();
    p.Point_Support.add(Support{});
    p.Line_Support.add(On_Side<Support>(bad_a ? 0 : 1, bad_a ? 2 : 99));
    const Transfer t = Transfer_Data(p);
    EXPECT_FALSE(t.ok);
    EXPECT_EQ(t.message, "Check line supports" + tail + "line support 1");
    // Point supports were already done when the check stopped.
    EXPECT_EQ(p.Mesh_Support.count(), 1);
  }
  for (const bool bad_a : {true, false}) {
    Project p = Grid_2x2();
    p.Line_Load.add(On_Side<Load>(1, 2));
    p.Line_Load.add(On_Side<Load>(bad_a ? -3 : 1, bad_a ? 2 : 10));
    const Transfer t = Transfer_Data(p);
    EXPECT_FALSE(t.ok);
    EXPECT_EQ(t.message, (bad_a ? "Check line load" : "Check line loads") + tail + "line load 2");
  }
}

TEST(Set_Prescribed_Data, LineSupportOnOneMeshSideGivesOneMeshSupport) {
  // One element of 300 x 100 and thickness 250; the support on its right side, corner 2 to 3.
  Project p;
  Add_Quad(p, 0, 0, 300, 0, 300, 100, 0, 100);
  p.Mesh_Element[1].Thickness = 250;
  const int a = Add_Node(p, 300, 0), b = Add_Node(p, 300, 100);
  Support s = On_Side<Support>(a, b);
  s.Angle = 30;
  s.Is_Global = False_Flag;
  s.Effective_Thickness = 77;  // whatever the design record holds is replaced
  p.Line_Support.add(s);
  ASSERT_TRUE(Transfer_Data(p).ok);
  ASSERT_EQ(p.Mesh_Support.count(), 1);
  const Support& m = p.Mesh_Support[1];
  EXPECT_EQ(m.Node_A, 2);
  EXPECT_EQ(m.Node_B, 3);
  EXPECT_DOUBLE_EQ(m.X, 300);
  EXPECT_DOUBLE_EQ(m.Y, 50);
  EXPECT_DOUBLE_EQ(m.Segment_Length, 100);
  EXPECT_DOUBLE_EQ(m.Effective_Thickness, 250);
  EXPECT_EQ(m.Angle, 30);
  EXPECT_EQ(m.Is_Global, False_Flag);

  // Drawn the other way round no element has the side 3 -> 2, and the thickness is 0.
  std::swap(p.Line_Support[1].Node_A, p.Line_Support[1].Node_B);
  ASSERT_TRUE(Transfer_Data(p).ok);
  ASSERT_EQ(p.Mesh_Support.count(), 1);
  EXPECT_EQ(p.Mesh_Support[1].Node_A, 3);
  EXPECT_EQ(p.Mesh_Support[1].Node_B, 2);
  EXPECT_EQ(p.Mesh_Support[1].Effective_Thickness, 0);
}

TEST(Set_Prescribed_Data, LineSupportsFollowTheSideInOrderAndTakeTheMatchingElement) {
  Project p = Grid_2x2();
  const int bottom = Add_Node(p, 100, 0), top = Add_Node(p, 100, 200);
  p.Point_Support.add(Support{});  // placed first, at (0, 0)
  p.Line_Support.add(On_Side<Support>(bottom, top));
  p.Line_Support.add(On_Side<Support>(top, bottom));
  ASSERT_TRUE(Transfer_Data(p).ok);
  ASSERT_EQ(p.Mesh_Support.count(), 5);
  EXPECT_EQ(p.Mesh_Support[1].Node_A, 0);
  EXPECT_EQ(p.Mesh_Support[1].Element, 1);
  // Upwards 2 -> 5 -> 8: sides of elements 1 (side 2) and 3 (side 2), thickness 10 and 30.
  // Downwards 8 -> 5 -> 2: sides of elements 4 (side 4) and 2 (side 4), thickness 40 and 20.
  const int a[] = {2, 5, 8, 5}, b[] = {5, 8, 5, 2};
  const double y[] = {50, 150, 150, 50}, thickness[] = {10, 30, 40, 20};
  for (int k = 0; k < 4; ++k) {
    const Support& m = p.Mesh_Support[k + 2];
    EXPECT_EQ(m.Node_A, a[k]) << k;
    EXPECT_EQ(m.Node_B, b[k]) << k;
    EXPECT_DOUBLE_EQ(m.X, 100);
    EXPECT_DOUBLE_EQ(m.Y, y[k]);
    EXPECT_DOUBLE_EQ(m.Segment_Length, 100);
    EXPECT_DOUBLE_EQ(m.Effective_Thickness, thickness[k]) << k;
  }
  // An element of no thickness does not count.
  p.Mesh_Element[1].Thickness = 0;
  ASSERT_TRUE(Transfer_Data(p).ok);
  ASSERT_EQ(p.Mesh_Support.count(), 5);
  EXPECT_EQ(p.Mesh_Support[2].Effective_Thickness, 0);
  EXPECT_EQ(p.Mesh_Support[3].Effective_Thickness, 30);
}

TEST(Set_Prescribed_Data, MeshNodesAlongALongSideAreSorted) {
  // Five mesh nodes on a slanted line, numbered out of order; the side runs from (400,300) to (0,0).
  Project p;
  const double t[] = {0.5, 0, 1, 0.25, 0.75};
  for (double f : t)
    Add_Mesh_Node(p, 400 * f, 300 * f);
  Add_Mesh_Node(p, 1000, 1000);  // off the line
  const int a = Add_Node(p, 400, 300), b = Add_Node(p, 0, 0);
  p.Line_Load.add(On_Side<Load>(a, b));
  p.Line_Load[1].Level = 7;
  // The table is rebuilt, not added to, at the second transfer.
  ASSERT_TRUE(Transfer_Data(p).ok);
  ASSERT_TRUE(Transfer_Data(p).ok);
  // From (400,300): node 3 (f 1), 5 (0.75), 1 (0.5), 4 (0.25), 2 (0); segments of 125 mm.
  const int order[] = {3, 5, 1, 4, 2};
  ASSERT_EQ(p.Mesh_Load.count(), 4);
  for (int k = 0; k < 4; ++k) {
    const Load& m = p.Mesh_Load[k + 1];
    EXPECT_EQ(m.Node_A, order[k]);
    EXPECT_EQ(m.Node_B, order[k + 1]);
    EXPECT_NEAR(m.Node_Spacing, 125, 1e-12);
    const double mid = 1 - 0.25 * k - 0.125;
    EXPECT_NEAR(m.X, 400 * mid, 1e-12);
    EXPECT_NEAR(m.Y, 300 * mid, 1e-12);
    EXPECT_EQ(m.Effective_Thickness, 0);  // no elements
    EXPECT_EQ(m.Level, 7);
  }
}

TEST(Set_Prescribed_Data, AxisymmetricRadiusIsTheXOfThePointPlusTheOffset) {
  Project p = Grid_2x2();
  p.Out_Of_Plane.Plane_Stress = False_Flag;
  p.Out_Of_Plane.Axisymmetric = True_Flag;
  p.Out_Of_Plane.Offset_Radius = 1000;
  // A skewed top row, so that the radius comes from the corner weights, not a plain scale.
  p.Mesh_Node[8].X = 130;
  Support point;
  point.X = 120;
  point.Y = 150;
  p.Point_Support.add(point);
  p.Line_Support.add(On_Side<Support>(1, 2));
  Load load;
  load.X = 40;
  load.Y = 160;
  p.Point_Load.add(load);
  load.Node_A = 1;
  load.Node_B = 2;
  p.Line_Load.add(load);
  ASSERT_TRUE(Transfer_Data(p).ok);
  ASSERT_EQ(p.Mesh_Support.count(), 3);
  // A located point lies at its own X: radius x + Ro.
  EXPECT_EQ(p.Mesh_Support[1].Element, 4);
  EXPECT_NEAR(p.Mesh_Support[1].Effective_Thickness, 1120, 1e-9);
  EXPECT_NEAR(p.Point_Load[1].Effective_Thickness, 1040, 1e-9);
  // Segments: mean X of their two nodes plus Ro.
  EXPECT_DOUBLE_EQ(p.Mesh_Support[2].Effective_Thickness, 1050);
  EXPECT_DOUBLE_EQ(p.Mesh_Support[3].Effective_Thickness, 1150);
  ASSERT_EQ(p.Mesh_Load.count(), 2);
  EXPECT_DOUBLE_EQ(p.Mesh_Load[1].Effective_Thickness, 1050);
  EXPECT_DOUBLE_EQ(p.Mesh_Load[2].Effective_Thickness, 1150);
}

TEST(Set_Prescribed_Data, PointObjectsAreLocatedInPlace) {
  Project p = Grid_2x2();
  Point_T pt;
  pt.X = 25;
  pt.Y = 75;
  p.Point_T.add(pt);
  Load load;
  load.X = 150;
  load.Y = 120;
  load.Node_A = 7;  // a point load keeps these as they are
  load.Node_B = 8;
  p.Point_Load.add(load);
  load.X = -10;  // outside
  p.Point_Load.add(load);
  Support support;
  support.X = 250;  // outside
  support.Node_A = 3;
  p.Point_Support.add(support);
  ASSERT_TRUE(Transfer_Data(p).ok);

  EXPECT_EQ(p.Point_T[1].Element, 1);
  EXPECT_DOUBLE_EQ(p.Point_T[1].Local_X, 0.25);
  EXPECT_DOUBLE_EQ(p.Point_T[1].Local_Y, 0.75);

  const Load& in = p.Point_Load[1];
  EXPECT_EQ(in.Element, 4);
  EXPECT_DOUBLE_EQ(in.Local_X, 0.5);
  EXPECT_DOUBLE_EQ(in.Local_Y, 0.2);
  EXPECT_EQ(in.Effective_Thickness, 40);
  EXPECT_EQ(in.Node_A, 7);
  EXPECT_EQ(in.Node_B, 8);
  EXPECT_EQ(p.Point_Load[2].Element, 0);
  EXPECT_EQ(p.Point_Load[2].Effective_Thickness, 0);

  ASSERT_EQ(p.Mesh_Support.count(), 1);
  EXPECT_EQ(p.Mesh_Support[1].Element, 0);
  EXPECT_EQ(p.Mesh_Support[1].Effective_Thickness, 0);
  EXPECT_EQ(p.Mesh_Support[1].Node_A, 0);   // a point support has no side
  EXPECT_EQ(p.Point_Support[1].Node_A, 3);  // the design record is left alone
  EXPECT_EQ(p.Mesh_Load.count(), 0);
}

}  // namespace
}  // namespace pvx
