// Corners of one macro that lie within a side of another: the mesh would not join them there.
#include "mesh/macro_joints.h"

#include <gtest/gtest.h>

#include <vector>

namespace pvx {
namespace {

struct Drawing {
  Project p;
  int Node(double x, double y) {
    p.Node_X.add(x);
    p.Node_Y.add(y);
    return p.Node_X.count();
  }
  void Macro_Of(int a, int b, int c, int d) {
    Macro m;
    m.Corner = {{static_cast<std::int16_t>(a), static_cast<std::int16_t>(b), static_cast<std::int16_t>(c),
                 static_cast<std::int16_t>(d)}};
    p.Macro.add(m);
  }
  // A small macro below the slanted side of the first drawing, with node n as its first corner.
  void Foot_At(int n) {
    const double x = 600 + 300 * p.Macro.count();
    Macro_Of(n, Node(x, -300), Node(x + 100, -250), Node(x + 50, -100));
  }
};

TEST(Find_Unjoined_Nodes, ACornerWithinAnotherMacrosSideIsFound) {
  struct Case {
    const char* name;
    Drawing d;
    std::vector<Unjoined_Node> found;
  };
  auto slab_and_wall = [](bool shared) {
    // A slab 4000 x 500; a wall from x = 1500 to 2500 on its top side, 2500 high. Shared: the slab
    // drawn as three macros whose corners the wall uses; else the slab's side 3 runs on under it.
    Drawing d;
    const int s1 = d.Node(0, 0), s2 = d.Node(4000, 0), s3 = d.Node(4000, 500), s4 = d.Node(0, 500);
    const int w1 = d.Node(1500, 500), w2 = d.Node(2500, 500);
    if (shared) {
      const int b = d.Node(1500, 0), c = d.Node(2500, 0);
      d.Macro_Of(s1, b, w1, s4);
      d.Macro_Of(b, c, w2, w1);
      d.Macro_Of(c, s2, s3, w2);
      d.Node(750, 0);  // a free node on a side is no corner of anything
    } else {
      d.Macro_Of(s1, s2, s3, s4);
    }
    d.Macro_Of(w1, w2, d.Node(2500, 3000), d.Node(1500, 3000));
    return d;
  };
  // A side from (0, 0) to (300, 400), 500 long, and corners of small macros near it: along it by
  // 500/3 and 0.005 mm off it (found); 0.02 mm off it; 0.005 mm short of its end, where the mesh
  // merges it with the end; beyond the end on the side's line.
  auto slanted = [](double along, double across) {
    Drawing d;
    d.Macro_Of(d.Node(0, 0), d.Node(300, 400), d.Node(-400, 700), d.Node(-700, 300));
    d.Foot_At(d.Node(0.6 * along + 0.8 * across, 0.8 * along - 0.6 * across));
    return d;
  };
  const Case cases[] = {
      {"a wall within the slab's top side", slab_and_wall(false), {{5, 1, 3}, {6, 1, 3}}},
      {"the slab in three macros under the wall", slab_and_wall(true), {}},
      {"on the slanted side", slanted(500.0 / 3, 0.005), {{5, 1, 1}}},
      {"beside the slanted side", slanted(500.0 / 3, 0.02), {}},
      {"at the end of the side, within the merging distance", slanted(500 - 0.005, 0), {}},
      {"beyond the end of the side", slanted(550, 0), {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const std::vector<Unjoined_Node> found = Find_Unjoined_Nodes(c.d.p);
    EXPECT_EQ(found, c.found);
    EXPECT_EQ(Unjoined_Nodes_Message(found).empty(), found.empty());
  }
  const std::string message = Unjoined_Nodes_Message({{5, 1, 3}, {6, 1, 3}});
  EXPECT_EQ(message.rfind("Node 5 lies on side 3 of macro 1 without being one of its corners", 0), 0u)
      << message;
  EXPECT_NE(message.find("(1 more such node(s).)"), std::string::npos) << message;
}

}  // namespace
}  // namespace pvx
