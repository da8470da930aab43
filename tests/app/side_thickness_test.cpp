#include <gtest/gtest.h>

#include <string>

#include "app/prescribed_data.h"
#include "app/project.h"

namespace pvx {
namespace {

// Four squares of 100 mm, corners counter-clockwise from the lower left: element 1
// (thickness 100) on (0,0)-(100,100) and element 2 (250) on (300,0)-(400,100) share nothing;
// elements 3 (70) on (0,300)-(100,400) and 4 (40) on (100,300)-(200,400) share the side x = 100,
// which element 3 runs upwards and element 4 downwards.
Project Four_Squares() {
  Project p;
  const double x0[] = {0, 300, 0, 100}, y0[] = {0, 0, 300, 300};
  const float thickness[] = {100, 250, 70, 40};
  for (int e = 0; e < 4; ++e) {
    Mesh_Element el;
    const double dx[] = {0, 100, 100, 0}, dy[] = {0, 0, 100, 100};
    for (int k = 1; k <= 4; ++k) {
      int node = 0;  // shared corners are one mesh node
      for (int n = 1; n <= p.Mesh_Node.count(); ++n)
        if (p.Mesh_Node[n] == Mesh_Node{x0[e] + dx[k - 1], y0[e] + dy[k - 1]}) node = n;
      if (node == 0) node = p.Mesh_Node.add(Mesh_Node{x0[e] + dx[k - 1], y0[e] + dy[k - 1]});
      el.Corner[k] = static_cast<std::int16_t>(node);
    }
    el.Thickness = thickness[e];
    p.Mesh_Element.add(el);
  }
  return p;
}

template <class Record>
Record Between(Project& p, double xa, double ya, double xb, double yb) {
  Record r;
  r.Node_A = static_cast<std::int16_t>(Add_Node(p, xa, ya));
  r.Node_B = static_cast<std::int16_t>(Add_Node(p, xb, yb));
  return r;
}

TEST(Side_Thickness, EitherDirectionTakesTheFirstElementWithTheSide) {
  struct Case {
    double xa, ya, xb, yb;
    double thickness;
  };
  const Case cases[] = {
      {100, 0, 100, 100, 100},   // element 1, its own direction
      {100, 100, 100, 0, 100},   // element 1, against it
      {300, 100, 300, 0, 250},   // element 2, its own direction
      {300, 0, 300, 100, 250},   // element 2, against it
      {100, 300, 100, 400, 70},  // shared: element 3's direction
      {100, 400, 100, 300, 70},  // shared: element 4's direction, element 3 still comes first
  };
  for (const Case& c : cases) {
    Project p = Four_Squares();
    p.Line_Support.add(Between<Support>(p, c.xa, c.ya, c.xb, c.yb));
    p.Line_Load.add(Between<Load>(p, c.xa, c.ya, c.xb, c.yb));
    bool ok = false;
    std::string message = "left over";
    Set_Prescribed_Data(p, ok, message);
    ASSERT_TRUE(ok) << message;
    ASSERT_EQ(p.Mesh_Support.count(), 1);
    ASSERT_EQ(p.Mesh_Load.count(), 1);
    const Support& s = p.Mesh_Support[1];
    const Load& l = p.Mesh_Load[1];
    EXPECT_EQ(s.Effective_Thickness, c.thickness) << c.xa << "," << c.ya;
    EXPECT_EQ(l.Effective_Thickness, c.thickness) << c.xa << "," << c.ya;
    // The given order stays: the segment starts at the first node.
    for (const int node : {int{s.Node_A}, int{l.Node_A}}) {
      EXPECT_EQ(p.Mesh_Node[node].X, c.xa);
      EXPECT_EQ(p.Mesh_Node[node].Y, c.ya);
    }
  }
}

TEST(Side_Thickness, ALineOffTheElementSidesIsRefused) {
  const std::string tail = ", does not lie on element sides: no element has a side between mesh nodes ";
  {
    // The diagonal of element 1, as the second load: mesh nodes 1 (0,0) and 3 (100,100).
    Project p = Four_Squares();
    p.Line_Load.add(Between<Load>(p, 0, 0, 100, 0));
    p.Line_Load.add(Between<Load>(p, 0, 0, 100, 100));
    bool ok = true;
    std::string message;
    Set_Prescribed_Data(p, ok, message);
    EXPECT_FALSE(ok);
    EXPECT_EQ(message, "Check line loads again. Line load 2, from node 3 to node 4" + tail + "1 and 3");
  }
  {
    // From element 1 to element 2 along y = 0: mesh nodes 2 (100,0) and 5 (300,0), no element.
    Project p = Four_Squares();
    p.Line_Support.add(Between<Support>(p, 300, 0, 100, 0));
    bool ok = true;
    std::string message;
    Set_Prescribed_Data(p, ok, message);
    EXPECT_FALSE(ok);
    EXPECT_EQ(message, "Check line supports again. Line support 1, from node 1 to node 2" + tail + "5 and 2");
  }
}

}  // namespace
}  // namespace pvx
