// The element under a point and the value there, against inverses and interpolations worked by hand.
#include <gtest/gtest.h>

#include <cmath>

#include "results/viewer_geometry.h"

namespace pvx {
namespace {

// A project whose mesh is the given quadrilaterals, each with its own four nodes.
Project Mesh_Of(std::initializer_list<std::array<std::pair<double, double>, 4>> quads) {
  Project p;
  for (const auto& q : quads) {
    Mesh_Element e;
    for (int c = 1; c <= 4; ++c)
      e.Corner[c] = static_cast<std::int16_t>(p.Mesh_Node.add({q[c - 1].first, q[c - 1].second}));
    p.Mesh_Element.add(e);
  }
  return p;
}

// Corners (0,0) (4,0) (6,4) (0,2): e = 4, f = 0, g = 0, h = 2, c = d = 2.
const std::array<std::pair<double, double>, 4> Distorted{{{0, 0}, {4, 0}, {6, 4}, {0, 2}}};

TEST(Find_Element_At_Point, DistortedQuadrilateralGivesTheHandWorkedRoots) {
  const Project p = Mesh_Of({Distorted});
  int e = -1;
  double u = -1, v = -1;
  // (2.5, 1.5): a = 2.5, b = 1.5, A = 4, B = 10, C = -6, so 2v^2 + 5v - 3 = 0: v = 1/2 (or -3),
  // and u = a / (v c + e) = 2.5 / 5.
  ASSERT_TRUE(Find_Element_At_Point(p, 0, 2.5, 1.5, e, u, v));
  EXPECT_EQ(e, 1);
  EXPECT_NEAR(u, 0.5, 1e-14);
  EXPECT_NEAR(v, 0.5, 1e-14);
  // (1.375, 1.875) is the image of (1/4, 3/4): (1, 0) + (0, 1.5) + 3/16 (2, 2).
  ASSERT_TRUE(Find_Element_At_Point(p, 0, 1.375, 1.875, e, u, v));
  EXPECT_NEAR(u, 0.25, 1e-14);
  EXPECT_NEAR(v, 0.75, 1e-14);
  // Corners come back as the corners of the unit square.
  ASSERT_TRUE(Find_Element_At_Point(p, 0, 6, 4, e, u, v));
  EXPECT_NEAR(u, 1, 1e-14);
  EXPECT_NEAR(v, 1, 1e-14);
  // The bilinear map takes the found (u, v) back to the point.
  double x = 0, y = 0;
  ASSERT_TRUE(Element_Point(p, 1, 0.25, 0.75, x, y));
  EXPECT_NEAR(x, 1.375, 1e-14);
  EXPECT_NEAR(y, 1.875, 1e-14);
}

TEST(Find_Element_At_Point, PointsOutsideEveryElementAreNotFound) {
  const Project p = Mesh_Of({Distorted});
  int e = -1;
  double u = -1, v = -1;
  // Inside the bounding box [0,6] x [0,4] but right of side 2-3 (x = 4.5 at y = 1).
  EXPECT_FALSE(Find_Element_At_Point(p, 0, 5, 1, e, u, v));
  EXPECT_EQ(e, 0);
  // Inside the box but above side 4-3 (y = 2 + x/3, 3 at x = 3).
  EXPECT_FALSE(Find_Element_At_Point(p, 0, 3, 3.2, e, u, v));
  EXPECT_FALSE(Find_Element_At_Point(p, 0, -0.001, 1, e, u, v));
  EXPECT_FALSE(Find_Element_At_Point(p, 0, 7, 1, e, u, v));
  EXPECT_EQ(u, 0);
  EXPECT_EQ(v, 0);
}

TEST(Find_Element_At_Point, DegenerateElementsPassTheLinearCase) {
  // Side 2-3 of zero length, a triangle: c = 0, d = -4, so A = 0. At (1, 1): B = 12, C = -4,
  // v = 1/3 and u = a / e = 1/4.
  {
    const Project p = Mesh_Of({{{{0, 0}, {4, 0}, {4, 0}, {0, 4}}}});
    int e = 0;
    double u = 0, v = 0;
    ASSERT_TRUE(Find_Element_At_Point(p, 0, 1, 1, e, u, v));
    EXPECT_NEAR(u, 0.25, 1e-14);
    EXPECT_NEAR(v, 1.0 / 3, 1e-14);
    // The collapsed corner itself (B = C = 0: every v fits) is on the element, at u = 1.
    ASSERT_TRUE(Find_Element_At_Point(p, 0, 4, 0, e, u, v));
    EXPECT_DOUBLE_EQ(u, 1);
    // Beyond the hypotenuse x + y = 4.
    EXPECT_FALSE(Find_Element_At_Point(p, 0, 2.5, 2, e, u, v));
  }
  // A parallelogram (parallel sides): c = d = 0. At (2.5, 1): B = 8, C = -4, v = 1/2, u = 2/4.
  {
    const Project p = Mesh_Of({{{{0, 0}, {4, 0}, {5, 2}, {1, 2}}}});
    int e = 0;
    double u = 0, v = 0;
    ASSERT_TRUE(Find_Element_At_Point(p, 0, 2.5, 1, e, u, v));
    EXPECT_NEAR(u, 0.5, 1e-14);
    EXPECT_NEAR(v, 0.5, 1e-14);
    EXPECT_FALSE(Find_Element_At_Point(p, 0, 0.2, 1.9, e, u, v));  // left of side 4-1
  }
  // A side whose first corner is the fourth corner too: side 4-1 of zero length.
  {
    const Project p = Mesh_Of({{{{0, 0}, {4, 0}, {0, 4}, {0, 0}}}});
    int e = 0;
    double u = 0, v = 0;
    ASSERT_TRUE(Find_Element_At_Point(p, 0, 1, 1, e, u, v));
    double x = 0, y = 0;
    Element_Point(p, 1, u, v, x, y);
    EXPECT_NEAR(x, 1, 1e-12);
    EXPECT_NEAR(y, 1, 1e-12);
  }
}

TEST(Find_Element_At_Point, SharedSideAndInactiveElements) {
  Project p =
      Mesh_Of({{{{0, 0}, {100, 0}, {100, 100}, {0, 100}}}, {{{100, 0}, {200, 0}, {200, 100}, {100, 100}}}});
  int e = 0, selected = 0;
  double u = 0, v = 0;
  // On the shared side x = 100: the lower number by the inverse, the higher by the angle sum.
  ASSERT_TRUE(Find_Element_At_Point(p, 0, 100, 40, e, u, v));
  EXPECT_EQ(e, 1);
  EXPECT_DOUBLE_EQ(u, 1);
  EXPECT_DOUBLE_EQ(v, 0.4);
  ASSERT_TRUE(Element_Selected(p, 100, 40, selected));
  EXPECT_EQ(selected, 2);
  // Off the side each finds the one element.
  ASSERT_TRUE(Element_Selected(p, 60, 40, selected));
  EXPECT_EQ(selected, 1);
  EXPECT_FALSE(Element_Selected(p, 250, 40, selected));
  EXPECT_EQ(selected, 0);

  // Element 1 exists from 10 to 20 hours, both limits included.
  p.Mesh_Element[1].Present_From = 10;
  p.Mesh_Element[1].Present_Until = 20;
  ASSERT_TRUE(Find_Element_At_Point(p, 5, 100, 40, e, u, v));
  EXPECT_EQ(e, 2);
  EXPECT_DOUBLE_EQ(u, 0);
  EXPECT_FALSE(Find_Element_At_Point(p, 5, 50, 40, e, u, v));
  EXPECT_TRUE(Find_Element_At_Point(p, 10, 50, 40, e, u, v));
  EXPECT_TRUE(Find_Element_At_Point(p, 20, 50, 40, e, u, v));
  EXPECT_FALSE(Find_Element_At_Point(p, 20.001, 50, 40, e, u, v));
}

TEST(Element_Selected, ClockwiseCornersAndCornersOnThePoint) {
  // The same square numbered clockwise: the angles sum to minus a full turn.
  const Project p = Mesh_Of({{{{0, 0}, {0, 10}, {10, 10}, {10, 0}}}});
  int selected = 0;
  EXPECT_TRUE(Element_Selected(p, 3, 7, selected));
  EXPECT_TRUE(Element_Selected(p, 10, 10, selected));  // a corner
  EXPECT_FALSE(Element_Selected(p, 10.5, 5, selected));
}

TEST(Bilinear_Value, CornersEdgesAndTheTwistTerm) {
  const double f[4] = {10, 20, 50, 30};  // twist f3 - f2 - f4 + f1 = 10
  EXPECT_DOUBLE_EQ(Bilinear_Value(f, 0, 0), 10);
  EXPECT_DOUBLE_EQ(Bilinear_Value(f, 1, 0), 20);
  EXPECT_DOUBLE_EQ(Bilinear_Value(f, 1, 1), 50);
  EXPECT_DOUBLE_EQ(Bilinear_Value(f, 0, 1), 30);
  EXPECT_DOUBLE_EQ(Bilinear_Value(f, 0.5, 0.5), 27.5);      // mean of the corners
  EXPECT_DOUBLE_EQ(Bilinear_Value(f, 0.25, 0.75), 29.375);  // 10 + 2.5 + 15 + 0.1875 * 10
}

}  // namespace
}  // namespace pvx
