// The element under a point and the value there, against inverses and interpolations worked by hand.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <tuple>

#include "results/viewer_geometry.h"

namespace pvx {
namespace {

using ::testing::DoubleNear;
using ::testing::Pointwise;
using Quad = std::array<std::pair<double, double>, 4>;

// A project whose mesh is the given quadrilaterals, each with its own four nodes.
Project Mesh_Of(std::initializer_list<Quad> quads) {
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
const Quad Distorted{{{0, 0}, {4, 0}, {6, 4}, {0, 2}}};
// Side 2-3 of zero length: c = 0, d = -4, so A = 0 and v comes from the linear equation.
const Quad Triangle{{{0, 0}, {4, 0}, {4, 0}, {0, 4}}};
const Quad Parallelogram{{{0, 0}, {4, 0}, {5, 2}, {1, 2}}};  // c = d = 0
// Corner 4 on corner 1: the map is (4u(1 - v), 4uv).
const Quad Side_4_1_Collapsed{{{0, 0}, {4, 0}, {0, 4}, {0, 0}}};

TEST(Find_Element_At_Point, InvertsTheBilinearMapOrFindsNothing) {
  const struct {
    const char* what;
    const Quad& quad;
    double x, y;
    bool found;
    double u, v;
  } rows[] = {
      // a = 2.5, b = 1.5: A = 4, B = 10, C = -6, so 2v^2 + 5v - 3 = 0, v = 1/2; u = a / (vc + e).
      {"distorted", Distorted, 2.5, 1.5, true, 0.5, 0.5},
      // The image of (1/4, 3/4): (1, 0) + (0, 1.5) + 3/16 (2, 2).
      {"distorted", Distorted, 1.375, 1.875, true, 0.25, 0.75},
      {"distorted corner 3", Distorted, 6, 4, true, 1, 1},
      {"right of side 2-3", Distorted, 5, 1, false, 0, 0},
      {"above side 4-3", Distorted, 3, 3.2, false, 0, 0},
      {"left of the box", Distorted, -0.001, 1, false, 0, 0},
      {"right of the box", Distorted, 7, 1, false, 0, 0},
      // At (1, 1): B = 12, C = -4, v = 1/3 and u = a / e = 1/4.
      {"triangle", Triangle, 1, 1, true, 0.25, 1.0 / 3},
      {"collapsed corner, every v fits", Triangle, 4, 0, true, 1, 0},
      {"beyond the hypotenuse", Triangle, 2.5, 2, false, 0, 0},
      {"parallelogram", Parallelogram, 2.5, 1, true, 0.5, 0.5},  // B = 8, C = -4
      {"left of side 4-1", Parallelogram, 0.2, 1.9, false, 0, 0},
      {"side 4-1 collapsed", Side_4_1_Collapsed, 1, 1, true, 0.5, 0.5},
  };
  for (const auto& r : rows) {
    SCOPED_TRACE(std::string(r.what) + " at " + std::to_string(r.x) + ", " + std::to_string(r.y));
    const Project p = Mesh_Of({r.quad});
    int e = -1;
    double u = -1, v = -1;
    EXPECT_EQ(Find_Element_At_Point(p, 0, r.x, r.y, e, u, v), r.found);
    EXPECT_EQ(e, r.found ? 1 : 0);
    EXPECT_THAT((std::array{u, v}), Pointwise(DoubleNear(1e-14), {r.u, r.v}));
    double x = r.x, y = r.y;  // and the map takes the local point back
    if (r.found) {
      ASSERT_TRUE(Element_Point(p, 1, u, v, x, y));
    }
    EXPECT_THAT((std::array{x, y}), Pointwise(DoubleNear(1e-12), {r.x, r.y}));
  }
}

TEST(Find_Element_At_Point, SharedSideAndInactiveElements) {
  Project p =
      Mesh_Of({{{{0, 0}, {100, 0}, {100, 100}, {0, 100}}}, {{{100, 0}, {200, 0}, {200, 100}, {100, 100}}}});
  int e = 0, selected = 0;
  double u = 0, v = 0;
  // On the shared side x = 100: the lower number by the inverse, the higher by the angle sum.
  ASSERT_TRUE(Find_Element_At_Point(p, 0, 100, 40, e, u, v));
  EXPECT_EQ(std::tuple(e, u, v), std::tuple(1, 1.0, 0.4));
  for (const auto& [x, want] : {std::pair{100.0, 2}, {60.0, 1}, {250.0, 0}}) {
    EXPECT_EQ(Element_Selected(p, x, 40, selected), want != 0) << x;
    EXPECT_EQ(selected, want) << x;
  }
  // Element 1 is shown from 10 to 20 hours, both limits included; before, the side is element 2's.
  p.Mesh_Element[1].Present_From = 10;
  p.Mesh_Element[1].Present_Until = 20;
  ASSERT_TRUE(Find_Element_At_Point(p, 5, 100, 40, e, u, v));
  EXPECT_EQ(std::tuple(e, u, v), std::tuple(2, 0.0, 0.4));
  for (const auto& [time, shown] : {std::pair{5.0, false}, {10.0, true}, {20.0, true}, {20.001, false}})
    EXPECT_EQ(Find_Element_At_Point(p, time, 50, 40, e, u, v), shown) << time;
  // The same square numbered clockwise: the angles sum to minus a full turn.
  const Project cw = Mesh_Of({{{{0, 0}, {0, 10}, {10, 10}, {10, 0}}}});
  EXPECT_TRUE(Element_Selected(cw, 3, 7, selected));
  EXPECT_TRUE(Element_Selected(cw, 10, 10, selected));  // a corner
  EXPECT_FALSE(Element_Selected(cw, 10.5, 5, selected));
}

}  // namespace
}  // namespace pvx
