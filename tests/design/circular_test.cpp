// Generated circular sections against closed forms: the macros of a ring or disc cover exactly the
// polygon N/2 R^2 sin(2 pi / N) (less the inner one), a block with a hole exactly the block less
// the hole's polygon; every macro is convex, counter-clockwise and within the angle bound, and
// macros meet side to side only. A refused request changes nothing, an undo restores the project
// file byte for byte, and a meshed disc cools like a cylinder by the Bessel series.
#include "design/circular.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <set>
#include <tuple>
#include <utility>
#include <vector>

#include "analysis/analysis_fixtures.h"
#include "app/prescribed_data.h"
#include "app/project_file.h"
#include "mesh/initial_mesh.h"
#include "mesh/splitting.h"
#include "panel_fixtures.h"

namespace pvx {
namespace {

constexpr double Pi = 3.14159265358979323846;
using Make = std::function<Generation_Result(Project&, Design_Undo&)>;
Make Circle(Circle_Request c) {
  return [c](Project& p, Design_Undo& u) { return Generate_Circle(p, u, c); };
}
Make Hole(Hole_Request h) {
  return [h](Project& p, Design_Undo& u) { return Generate_Hole(p, u, h); };
}

double Polygon_Area(double radius, int segments) {
  return segments / 2.0 * radius * radius * std::sin(2 * Pi / segments);
}

Project With_Materials() {
  Project p;
  New_Project(p);
  p.Material.add({});
  p.Material[1].Name = "C30";
  p.Material.add({});
  p.Material[2].Name = "JOINT";
  p.Material[2].Is_Interface = true;
  return p;
}

// A block of C30 from (x0, y0) to (x1, y1), anticlockwise, on the nodes already at its corners.
void Add_Block(Project& p, double x0, double y0, double x1, double y1) {
  Macro m;
  m.Material = "C30";
  for (int k = 0; k < 4; ++k) {
    const double x = k == 1 || k == 2 ? x1 : x0, y = k >= 2 ? y1 : y0;
    int n = Node_Count(p);
    while (n > 0 && !(p.Node_X[n] == x && p.Node_Y[n] == y))
      --n;
    m.Corner[k + 1] = static_cast<std::int16_t>(n > 0 ? n : Add_Node(p, x, y));
  }
  p.Macro.add(m);
}

// The area of quadrilaterals by the shoelace formula, from their corners' coordinates.
template <class Quads, class Point_Of>
double Area(const Quads& quads, Point_Of xy) {
  double twice = 0;
  for (const auto& q : quads)
    for (int k = 1; k <= 4; ++k) {
      const auto [xa, ya] = xy(q.Corner[k]);
      const auto [xb, yb] = xy(q.Corner[k % 4 + 1]);
      twice += xa * yb - xb * ya;
    }
  return twice / 2;
}
double Total_Area(const Project& p) {
  return Area(p.Macro, [&](int n) { return std::pair(p.Node_X[n], p.Node_Y[n]); });
}
double Mesh_Area(const Project& p) {
  return Area(p.Mesh_Element, [&](int n) { return std::pair(p.Mesh_Node[n].X, p.Mesh_Node[n].Y); });
}

// Every corner of every macro turns left by an angle within the bound (or within (0, 180)).
void Expect_Well_Shaped(const Project& p, bool bound = true) {
  for (const Macro& m : p.Macro)
    for (int k = 1; k <= 4; ++k) {
      const int o = m.Corner[k], next = m.Corner[k % 4 + 1], previous = m.Corner[(k + 2) % 4 + 1];
      const double ux = p.Node_X[next] - p.Node_X[o], uy = p.Node_Y[next] - p.Node_Y[o];
      const double vx = p.Node_X[previous] - p.Node_X[o], vy = p.Node_Y[previous] - p.Node_Y[o];
      const double angle = std::atan2(ux * vy - uy * vx, ux * vx + uy * vy) * 180 / Pi;
      EXPECT_GT(angle, bound ? Min_Macro_Angle - 1e-9 : 0);
      EXPECT_LT(angle, bound ? Max_Macro_Angle + 1e-9 : 180);
    }
}

// Macros meet side to side: a side runs once each way at most, no node lies inside another
// macro's side and no two nodes share a place. Returns the sides used once (the outline).
std::vector<std::pair<int, int>> Expect_Whole_Sides(const Project& p) {
  std::map<std::pair<int, int>, int> used;
  std::set<std::pair<double, int>> by_x;  // to look only at nodes within a side's reach
  for (const Macro& m : p.Macro)
    for (int k = 1; k <= 4; ++k) {
      ++used[{m.Corner[k], m.Corner[k % 4 + 1]}];
      by_x.emplace(p.Node_X[m.Corner[k]], m.Corner[k]);
    }
  std::vector<std::pair<int, int>> outline;
  for (const auto& [side, count] : used) {
    EXPECT_EQ(count, 1) << side.first << "-" << side.second;
    if (!used.contains({side.second, side.first})) outline.push_back(side);
    const double ax = p.Node_X[side.first], ay = p.Node_Y[side.first];
    const double dx = p.Node_X[side.second] - ax, dy = p.Node_Y[side.second] - ay,
                 length = std::hypot(dx, dy);
    for (auto it = by_x.lower_bound({std::min(ax, ax + dx) - 1e-6, 0});
         it != by_x.end() && it->first <= std::max(ax, ax + dx) + 1e-6; ++it) {
      const int n = it->second;
      const double along = ((p.Node_X[n] - ax) * dx + (p.Node_Y[n] - ay) * dy) / length;
      const double across = ((p.Node_Y[n] - ay) * dx - (p.Node_X[n] - ax) * dy) / length;
      EXPECT_FALSE(n != side.first && n != side.second && std::fabs(across) < 1e-6 * length &&
                   along > -1e-6 && along < length + 1e-6)
          << n;
    }
  }
  return outline;
}

// The outline sides with both ends on the circle.
int Sides_On_Circle(const Project& p, const std::vector<std::pair<int, int>>& outline, double cx, double cy,
                    double radius) {
  auto on = [&](int n) {
    return std::fabs(std::hypot(p.Node_X[n] - cx, p.Node_Y[n] - cy) - radius) < 1e-9 * radius;
  };
  return static_cast<int>(
      std::count_if(outline.begin(), outline.end(), [&](auto s) { return on(s.first) && on(s.second); }));
}

TEST(Circular_Polygons, CoverThePolygonExactlyWithWellShapedMacrosMeetingSideToSide) {
  const std::tuple<double, double, int> cases[] = {{500, 0, 8},    {730, 0, 32},     {2000, 0, 256},
                                                   {500, 300, 8},  {500, 100, 20},   {1000, 990, 64},
                                                   {1000, 50, 13}, {3000, 2000, 256}};
  const double cx = 1000, cy = -500;
  for (const auto& [radius, inner, segments] : cases) {
    SCOPED_TRACE(testing::Message() << "R " << radius << " r " << inner << " N " << segments);
    Project p = With_Materials();
    Design_Undo undo;
    const Generation_Result r = Generate_Circle(p, undo, {cx, cy, radius, inner, segments, "C30"});
    ASSERT_TRUE(r.Done) << r.Message;
    const double expected = Polygon_Area(radius, segments) - Polygon_Area(inner, segments);
    EXPECT_NEAR(Total_Area(p), expected, 1e-12 * expected);
    Expect_Well_Shaped(p);
    // The outline is the polygon (and the inner one), corner to corner.
    const auto outline = Expect_Whole_Sides(p);
    EXPECT_EQ(static_cast<int>(outline.size()), inner > 0 ? 2 * segments : segments);
    EXPECT_EQ(Sides_On_Circle(p, outline, cx, cy, radius), segments);
    EXPECT_EQ(Sides_On_Circle(p, outline, cx, cy, inner), inner > 0 ? segments : 0);
    EXPECT_EQ(std::tuple(r.Macros_Added, r.Nodes_Added, p.Macro[1].Material, undo.Undo_Stack.size()),
              std::tuple(p.Macro.count(), Node_Count(p), "C30", 1u));
    // Corners on the axes through the centre lie exactly on them, where a support is typed.
    for (int n = 1; n <= Node_Count(p); ++n) {
      if (std::fabs(p.Node_X[n] - cx) < 1e-6) {
        EXPECT_EQ(p.Node_X[n], cx);
      }
      if (std::fabs(p.Node_Y[n] - cy) < 1e-6) {
        EXPECT_EQ(p.Node_Y[n], cy);
      }
    }
  }
}

TEST(Circular_Polygons, EveryDiscThatMayBeAskedForKeepsTheAngleBound) {
  double smallest = 360, largest = 0;
  for (int segments = Min_Circle_Segments; segments <= Max_Circle_Segments; segments += 4) {
    Project p = With_Materials();
    Design_Undo undo;
    const Generation_Result r = Generate_Circle(p, undo, {0, 0, 5000, 0, segments, "C30"});
    ASSERT_TRUE(r.Done) << segments << ": " << r.Message;
    smallest = std::min(smallest, r.Smallest_Angle);
    largest = std::max(largest, r.Largest_Angle);
  }
  EXPECT_NEAR(smallest, 47.5, 0.1);  // at 256 segments
  EXPECT_NEAR(largest, 135, 1e-9);   // where a ring meets a corner of the block
}

TEST(Generation, BadRequestsAreRefusedWithTheirReasonAndChangeNothing) {
  const std::pair<Make, const char*> cases[] = {
      {Circle({0, 0, 0, 0, 16, "C30"}), "The radius must be greater than 0."},
      {Circle({0, 0, 500, -1, 16, "C30"}), "The inner radius must not be below 0."},
      {Circle({0, 0, 500, 500, 16, "C30"}), "The inner radius must be smaller than the outer radius."},
      {Circle({0, 0, 500, 0, 18, "C30"}), "A full disc needs a number of segments that is a multiple of 4."},
      {Circle({0, 0, 500, 200, 7, "C30"}), "At least 8 segments are needed round the circle."},
      {Circle({0, 0, 500, 200, 260, "C30"}), "At most 256 segments are possible round the circle."},
      {Circle({0, 0, 500, 0, 16, "C35"}), "Material \"C35\" is not in the material database."},
      {Circle({0, 0, 500, 0, 16, "JOINT"}), "Material \"JOINT\" is an interface or reinforcement material."},
      // Sides under 2 mm round a circle of 20 mm: the node tolerance of 3 mm would merge corners.
      {Circle({0, 0, 20, 0, 64, "C30"}), "less than twice the node tolerance of 3 mm"},
      {Circle({1100, 500, 150, 0, 16, "C30"}), "The circle overlaps macro 1."},
      {Hole({2, 500, 500, 200, 16}), "Macro 2 does not exist."},
      {Hole({1, 500, 500, 200, 6}), "At least 8 segments are needed round the hole."},
      // 380 mm from the side at x = 1000: less than the radius and a quarter more.
      {Hole({1, 620, 500, 400, 16}),
       "The circle is not well inside macro 1: it must keep at least 100 mm (a "
       "quarter of its radius) from every side of the macro."},
      {Hole({1, 880, 880, 100, 16}), "Cooling circuit 1 has a pipe inside the hole."},
      // Close to a corner, the lines from the centre to the far corners leave thin corners.
      {Hole({1, 200, 200, 100, 16}), "Macro 1 is not a good shape round this circle"},
  };
  for (const auto& [make, message] : cases) {
    SCOPED_TRACE(message);
    Project p = With_Materials();
    Add_Block(p, 0, 0, 1000, 1000);
    Circuit pipe = p.Circuit_Default;
    Resize_Pipes(pipe, 1);
    pipe.Pipe_Node[1] = static_cast<std::int16_t>(Add_Node(p, 900, 900));
    p.Circuit.add(pipe);
    const Project before = p;
    Design_Undo undo;
    const Generation_Result r = make(p, undo);
    EXPECT_FALSE(r.Done);
    EXPECT_NE(r.Message.find(message), std::string::npos) << r.Message;
    EXPECT_EQ(p, before);
    EXPECT_TRUE(undo.Undo_Stack.empty());
  }
}

TEST(Circular_Polygons, ADiscFillsARingOnItsCornersAndNearNodesAreTaken) {
  Project p = With_Materials();
  Design_Undo undo;
  // A free node 1 mm off the ring's first outer corner (at 45 degrees), within the tolerance of 3 mm.
  Add_Node(p, 800 * std::cos(Pi / 4) + 1, 800 * std::sin(Pi / 4));
  const Generation_Result ring = Generate_Circle(p, undo, {0, 0, 800, 500, 24, "C30"});
  const Generation_Result disc = Generate_Circle(p, undo, {0, 0, 500, 0, 24, "C30"});
  ASSERT_TRUE(ring.Done && disc.Done);
  EXPECT_EQ(std::tuple(ring.Nodes_Reused, disc.Nodes_Reused),
            std::tuple(1, 24));  // the disc: the ring's corners
  // One section, side to side; its area is the polygon's with the taken corner 1 mm along X, which
  // adds half the rise between its neighbours (at 30 and 60 degrees) times 1 mm.
  EXPECT_EQ(Expect_Whole_Sides(p).size(), 24u);
  const double moved = Polygon_Area(800, 24) + 0.5 * 800 * (std::sin(Pi / 3) - std::sin(Pi / 6));
  EXPECT_NEAR(Total_Area(p), moved, 1e-9 * moved);
}

TEST(Holes, TheBlockLessTheHolesPolygonIsCoveredAndNoMacroCoversTheHole) {
  struct Case {
    const char* name;
    double x1, y1, cx, cy, radius;  // the block from (0, 0)
    int segments;
    bool long_block;  // cut into a block about as long as wide and end blocks of its own shape
  };
  const Case cases[] = {
      {"square, centred, 8", 1000, 1000, 500, 500, 200, 8, false},
      {"square, centred, 16", 1000, 1000, 500, 500, 300, 16, false},
      {"square, off the middle, 12", 1000, 1000, 400, 600, 150, 12, false},
      {"square, 10 segments", 1000, 1000, 500, 500, 200, 10, false},
      {"rectangle 2:1, 24", 2000, 1000, 1000, 500, 250, 24, false},
      {"wall 1:2.5, 16", 1000, 2500, 500, 1250, 200, 16, true},
      {"wall 1:2.5 near its foot, 32", 1000, 2500, 500, 600, 200, 32, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Project p = With_Materials();
    Add_Block(p, 0, 0, c.x1, c.y1);
    Design_Undo undo;
    const Generation_Result r = Generate_Hole(p, undo, {1, c.cx, c.cy, c.radius, c.segments});
    ASSERT_TRUE(r.Done) << r.Message;
    const double expected = c.x1 * c.y1 - Polygon_Area(c.radius, c.segments);
    EXPECT_NEAR(Total_Area(p), expected, 1e-9 * expected);
    EXPECT_EQ(Macro_At(p, c.cx, c.cy), 0);
    EXPECT_EQ(Sides_On_Circle(p, Expect_Whole_Sides(p), c.cx, c.cy, c.radius), c.segments);
    Expect_Well_Shaped(p, !c.long_block);
    EXPECT_TRUE(r.Smallest_Angle >= Min_Macro_Angle && r.Largest_Angle <= Max_Macro_Angle);
    EXPECT_EQ(std::tuple(r.Macros_Added + 1, p.Mesh_Valid), std::tuple(p.Macro.count(), False_Flag));
  }
}

TEST(Holes, NeighboursAreCutIntoStripsAndObjectsOnDividedSidesFollow) {
  // Three blocks in a row; the hole in the left one divides its right side into 4 (16 segments).
  Project p = With_Materials();
  for (double x : {0, 1000, 2000})
    Add_Block(p, x, 0, x + 1000, 1000);
  // Nodes: 1 (0,0) 2 (1000,0) 3 (1000,1000) 4 (0,1000) 5 (2000,0) 6 (2000,1000) 7 (3000,0) 8 (3000,1000).
  Border far = test::On_Side<Border>(7, 8);
  far.Thermal_Active = True_Flag;
  p.Border.add(far);
  p.Border.add(test::On_Side<Border>(3, 4));  // the top of the hole's block
  p.Line_T.add(test::On_Side<Line_T>(6, 5));  // named against macro 2's side
  Interface joint = test::On_Side<Interface>(2, 3);
  joint.Layer_Material = "JOINT";
  p.Interface.add(joint);
  Design_Undo undo;
  const Generation_Result r = Generate_Hole(p, undo, {1, 500, 500, 250, 16});
  ASSERT_TRUE(r.Done) << r.Message;
  EXPECT_EQ(r.Macros_Split, 2);
  EXPECT_NEAR(Total_Area(p), 3e6 - Polygon_Area(250, 16), 1e-6);
  Expect_Whole_Sides(p);

  // Every object lies on a macro side (a border along it), and each family's pieces add up to
  // the 1000 mm it had (the borders 2000).
  auto family = [&](const auto& table, bool directed) {
    double length = 0;
    for (const auto& o : table) {
      bool on = false;
      for (const Macro& m : p.Macro)
        for (int k = 1; k <= 4; ++k) {
          const int from = m.Corner[k], to = m.Corner[k % 4 + 1];
          on =
              on || (from == o.Node_A && to == o.Node_B) || (!directed && from == o.Node_B && to == o.Node_A);
        }
      EXPECT_TRUE(on) << o.Node_A << "-" << o.Node_B;
      length += std::hypot(p.Node_X[o.Node_B] - p.Node_X[o.Node_A], p.Node_Y[o.Node_B] - p.Node_Y[o.Node_A]);
    }
    return length;
  };
  EXPECT_NEAR(family(p.Border, true), 2000, 1e-9);
  EXPECT_NEAR(family(p.Line_T, false), 1000, 1e-9);
  EXPECT_NEAR(family(p.Interface, false), 1000, 1e-9);
  EXPECT_EQ(std::tuple(p.Border.count(), p.Line_T.count(), p.Interface.count()), std::tuple(8, 4, 4));
  for (const Interface& i : p.Interface)
    EXPECT_EQ(std::tuple(p.Node_Y[i.Node_A] < p.Node_Y[i.Node_B], i.Layer_Material),
              std::tuple(true, "JOINT"));
  for (const Border& b : p.Border)  // the far border's pieces keep its conditions
    EXPECT_EQ(b.Thermal_Active, p.Node_X[b.Node_A] == 3000 ? True_Flag : False_Flag);
}

TEST(Generation, OneUndoLeavesTheProjectFileByteForByteAsItWas) {
  const std::pair<const char*, Make> cases[] = {
      {"disc", Circle({5000, 0, 600, 0, 32, "C30"})},
      {"ring", Circle({5000, 0, 600, 400, 30, "C30"})},
      {"hole with strips", Hole({1, 500, 500, 200, 16})},
      {"hole in a long block", Hole({2, 1500, 1500, 200, 16})},
  };
  for (const auto& [name, make] : cases) {
    SCOPED_TRACE(name);
    Project p = With_Materials();
    Add_Block(p, 0, 0, 1000, 1000);
    Add_Block(p, 1000, 0, 2000, 3000);  // long, beside the first
    Add_Block(p, 0, -500, 1000, 0);     // under the first
    p.Border.add(test::On_Side<Border>(2, 1));
    const std::string before = Write_Project_Text(p, Save_Version(p), "DB.txt");
    Design_Undo undo;
    Design_Panel panel;
    ASSERT_TRUE(make(p, undo).Done);
    const std::string after = Write_Project_Text(p, Save_Version(p), "DB.txt");
    EXPECT_NE(after, before);
    ASSERT_TRUE(Undo(undo, p, panel));
    EXPECT_EQ(Write_Project_Text(p, Save_Version(p), "DB.txt"), before);
    EXPECT_FALSE(Undo(undo, p, panel));  // one step
    ASSERT_TRUE(Redo(undo, p, panel));
    EXPECT_EQ(Write_Project_Text(p, Save_Version(p), "DB.txt"), after);
  }
}

TEST(Generated_Mesh, KeepsTheAreaAndACutRoundTheOuterRingClosesIt) {
  struct Case {
    const char* name;
    Make make;
    double area, outer;  // the outline's radius; 0: the block's
    int segments;
  };
  const Case cases[] = {
      {"disc", Circle({0, 0, 500, 0, 24, "C30"}), Polygon_Area(500, 24), 500, 24},
      {"ring", Circle({0, 0, 500, 350, 20, "C30"}), Polygon_Area(500, 20) - Polygon_Area(350, 20), 500, 20},
      {"block with a hole",
       [](Project& p, Design_Undo& u) {
         Add_Block(p, -500, -500, 500, 500);
         return Generate_Hole(p, u, {1, 0, 0, 200, 16});
       },
       1e6 - Polygon_Area(200, 16), 0, 16},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Project p = With_Materials();
    Design_Undo undo;
    ASSERT_TRUE(c.make(p, undo).Done);
    Mesh_Session s;
    std::string message;
    ASSERT_TRUE(Make_Initial_Mesh(p, s, message)) << message;
    EXPECT_NEAR(Mesh_Area(p), c.area, 1e-9 * c.area);
    int element = 0;  // which element holds the centre: none in a ring or a hole
    double xi = 0, eta = 0;
    Locate_Point(p, 0, 0, element, xi, eta);
    EXPECT_EQ(element == 0, c.name != std::string("disc"));
    if (c.outer == 0) continue;

    // A side from the outline inwards: its cut goes round the outer ring and closes on itself.
    auto out = [&](int n) {
      return std::fabs(std::hypot(p.Mesh_Node[n].X, p.Mesh_Node[n].Y) - c.outer) < 1e-6;
    };
    int cut = 0, side = 0;
    for (int e = 1; e <= p.Mesh_Element.count() && cut == 0; ++e)
      for (int k = 1; k <= 4 && cut == 0; ++k)
        if (out(p.Mesh_Element[e].Corner[k]) != out(p.Mesh_Element[e].Corner[k % 4 + 1]))
          std::tie(cut, side) = std::tuple(e, k);
    const int nodes = p.Mesh_Node.count(), elements = p.Mesh_Element.count();
    ASSERT_TRUE(Splitting(p, s, cut, side, {0.5, 1.0}, message)) << message;
    // As many new nodes as elements cut: no slit where the ring closes.
    EXPECT_EQ(std::tuple(p.Mesh_Node.count() - nodes, p.Mesh_Element.count() - elements),
              std::tuple(c.segments, c.segments));
    EXPECT_NEAR(Mesh_Area(p), c.area, 1e-9 * c.area);
  }
}

// The temperature at the axis of a cylinder of radius R, at 1 throughout at first and its surface
// held at 0, when a t / R^2 = fo: the sum of 2 exp(-l^2 fo) / (l J1(l)) over the roots l of J0.
double Cylinder_Axis(double fo) {
  double sum = 0, root = 2.4;
  for (int n = 0; n < 12; ++n, root += Pi) {  // the next root lies about pi further
    for (int i = 0; i < 50; ++i)              // Newton on J0, whose derivative is -J1
      root += std::cyl_bessel_j(0.0, root) / std::cyl_bessel_j(1.0, root);
    sum += 2 * std::exp(-root * root * fo) / (root * std::cyl_bessel_j(1.0, root));
  }
  return sum;
}

TEST(Cylinder_Cooling, TheAxisOfAMeshedDiscFollowsTheBesselSeriesCloserAsTheMeshIsRefined) {
  // Concrete of 2400 kJ/m3K and 2.5 W/mK: a = 2.5 / 2.4e6 m2/s = 3750 mm2/h; with R = 500 mm,
  // 6.667 h is fo = 0.1. The edge is held by a penalty, within a thousandth of a degree of 0.
  const double R = 500, hours = 20.0 / 3, exact = 20 * Cylinder_Axis(3750 * hours / (R * R));
  double previous_error = 1e9;
  for (int segments : {8, 16, 32, 64, 128}) {
    SCOPED_TRACE(segments);
    Project p = With_Materials();
    p.Material[1] = test::Concrete("NO H");
    p.Material[1].Name = "C30";
    p.Macro_Defaults.Temperature = 20;
    Design_Undo undo;
    ASSERT_TRUE(Generate_Circle(p, undo, {0, 0, R, 0, segments, "C30"}).Done);
    Mesh_Session s;
    std::string message;
    ASSERT_TRUE(Make_Initial_Mesh(p, s, message)) << message;
    // Each side of the outline held at 0 by a heating mat on it.
    p.Temperature_Functions[1].Constant_Value = 0;
    for (const auto& [from, to] : Expect_Whole_Sides(p))
      p.Line_T.add(test::On_Side<Line_T>(from, to));
    bool ok = false;
    Set_Prescribed_Data(p, ok, message);
    ASSERT_TRUE(ok) << message;
    p.Replace_Material = False_Flag;
    p.Result_File_Name = "C.RES";
    Set_Result_Names(p);
    test::Set_Steps(p, hours, hours / (5 * segments), hours);  // time refined with the mesh
    const test::Result r = test::Run(p);
    ASSERT_EQ(r.outcome, Run_Outcome::Completed);
    int axis = 0;
    for (int n = 1; n <= p.Mesh_Node.count(); ++n)
      if (std::hypot(p.Mesh_Node[n].X, p.Mesh_Node[n].Y) < 1e-9) axis = n;
    ASSERT_NE(axis, 0);
    const double error = std::fabs(r.T(axis) - exact);
    EXPECT_LT(error, previous_error);
    previous_error = error;
  }
  EXPECT_LT(previous_error, 0.05);  // 16.98 against 16.97 oC at 128 segments (17.95 at 8)
}

}  // namespace
}  // namespace pvx
