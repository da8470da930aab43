// Corners of one macro that lie within a side of another: the mesh would not join them there.
#include "mesh/macro_joints.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "mesh_fixtures.h"

namespace pvx {
namespace {

using test::Add_Macro;

TEST(Find_Unjoined_Nodes, ACornerWithinAnotherMacrosSideIsFound) {
  auto slab_and_wall = [](bool shared) {
    // A slab 4000 x 500; a wall from x = 1500 to 2500 on its top side, 2500 high. Shared: the slab
    // drawn as three macros whose corners the wall uses; else the slab's side 3 runs on under it.
    Project p;
    const int s1 = Add_Node(p, 0, 0), s2 = Add_Node(p, 4000, 0), s3 = Add_Node(p, 4000, 500),
              s4 = Add_Node(p, 0, 500), w1 = Add_Node(p, 1500, 500), w2 = Add_Node(p, 2500, 500);
    if (shared) {
      const int b = Add_Node(p, 1500, 0), c = Add_Node(p, 2500, 0);
      Add_Macro(p, s1, b, w1, s4);
      Add_Macro(p, b, c, w2, w1);
      Add_Macro(p, c, s2, s3, w2);
      Add_Node(p, 750, 0);  // a free node on a side is no corner of anything
    } else {
      Add_Macro(p, s1, s2, s3, s4);
    }
    Add_Macro(p, w1, w2, Add_Node(p, 2500, 3000), Add_Node(p, 1500, 3000));
    return p;
  };
  // A side from (0, 0) to (300, 400), 500 long, and the first corner of a small macro near it:
  // along it by 500/3 and 0.005 mm off it (found); 0.02 mm off it; 0.005 mm short of its end, where
  // the mesh merges it with the end; beyond the end on the side's line.
  auto slanted = [](double along, double across) {
    Project p;
    for (const auto& [x, y] : {std::pair{0, 0}, {300, 400}, {-400, 700}, {-700, 300}})
      Add_Node(p, x, y);
    Add_Macro(p, 1, 2, 3, 4);
    Add_Node(p, 0.6 * along + 0.8 * across, 0.8 * along - 0.6 * across);
    for (const auto& [x, y] : {std::pair{900, -300}, {1000, -250}, {950, -100}})
      Add_Node(p, x, y);
    Add_Macro(p, 5, 6, 7, 8);
    return p;
  };
  // What the drawing shows, the drawing, the corners found within another macro's side.
  const std::tuple<const char*, Project, std::vector<Unjoined_Node>> cases[] = {
      {"a wall within the slab's top side", slab_and_wall(false), {{5, 1, 3}, {6, 1, 3}}},
      {"the slab in three macros under the wall", slab_and_wall(true), {}},
      {"on the slanted side", slanted(500.0 / 3, 0.005), {{5, 1, 1}}},
      {"beside the slanted side", slanted(500.0 / 3, 0.02), {}},
      {"at the end of the side, within the merging distance", slanted(500 - 0.005, 0), {}},
      {"beyond the end of the side", slanted(550, 0), {}},
  };
  for (const auto& [name, p, expected] : cases) {
    SCOPED_TRACE(name);
    const std::vector<Unjoined_Node> found = Find_Unjoined_Nodes(p);
    EXPECT_EQ(found, expected);
    EXPECT_EQ(Unjoined_Nodes_Message(found).empty(), found.empty());
  }
  const std::string message = Unjoined_Nodes_Message({{5, 1, 3}, {6, 1, 3}});
  EXPECT_EQ(message.rfind("Node 5 lies on side 3 of macro 1 without being one of its corners", 0), 0u)
      << message;
  EXPECT_NE(message.find("(1 more such node(s).)"), std::string::npos) << message;
}

}  // namespace
}  // namespace pvx
