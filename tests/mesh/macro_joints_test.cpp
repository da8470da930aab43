// A wall drawn on a slab whose top side runs on under the wall's foot: the wall's corners lie
// within the slab's side, and the mesh would not join them.
#include "mesh/macro_joints.h"

#include <gtest/gtest.h>

namespace pvx {
namespace {

int New_Node(Project& p, double x, double y) {
  p.Node_X.add(x);
  p.Node_Y.add(y);
  return p.Node_X.count();
}

void New_Macro(Project& p, int a, int b, int c, int d) {
  Macro m;
  m.Corner[1] = static_cast<std::int16_t>(a);
  m.Corner[2] = static_cast<std::int16_t>(b);
  m.Corner[3] = static_cast<std::int16_t>(c);
  m.Corner[4] = static_cast<std::int16_t>(d);
  p.Macro.add(m);
}

TEST(MacroJoints, AWallStandingWithinTheSlabsTopSideIsFound) {
  Project p;
  const int s1 = New_Node(p, 0, 0), s2 = New_Node(p, 4000, 0), s3 = New_Node(p, 4000, 500),
            s4 = New_Node(p, 0, 500);
  New_Macro(p, s1, s2, s3, s4);  // the slab: its side 3 runs from (4000, 500) to (0, 500)
  const int w1 = New_Node(p, 1500, 500), w2 = New_Node(p, 2500, 500), w3 = New_Node(p, 2500, 3000),
            w4 = New_Node(p, 1500, 3000);
  New_Macro(p, w1, w2, w3, w4);
  const std::vector<Unjoined_Node> found = Find_Unjoined_Nodes(p);
  ASSERT_EQ(found.size(), 2u);
  EXPECT_EQ(found[0], (Unjoined_Node{w1, 1, 3}));
  EXPECT_EQ(found[1], (Unjoined_Node{w2, 1, 3}));
  const std::string message = Unjoined_Nodes_Message(found);
  EXPECT_NE(message.find("Node 5 lies on side 3 of macro 1"), std::string::npos) << message;
  EXPECT_NE(message.find("1 more"), std::string::npos);
}

TEST(MacroJoints, MacrosThatShareTheirCornersAreJoined) {
  // The slab drawn as three macros, the middle one under the wall: every meeting is at a corner.
  Project p;
  const int a = New_Node(p, 0, 0), b = New_Node(p, 1500, 0), c = New_Node(p, 2500, 0),
            d = New_Node(p, 4000, 0);
  const int e = New_Node(p, 4000, 500), f = New_Node(p, 2500, 500), g = New_Node(p, 1500, 500),
            h = New_Node(p, 0, 500);
  New_Macro(p, a, b, g, h);
  New_Macro(p, b, c, f, g);
  New_Macro(p, c, d, e, f);
  const int w3 = New_Node(p, 2500, 3000), w4 = New_Node(p, 1500, 3000);
  New_Macro(p, g, f, w3, w4);
  EXPECT_TRUE(Find_Unjoined_Nodes(p).empty());
  EXPECT_EQ(Unjoined_Nodes_Message({}), "");

  // A free node on a side is no corner of anything: nothing to join.
  New_Node(p, 750, 0);
  EXPECT_TRUE(Find_Unjoined_Nodes(p).empty());
}

TEST(MacroJoints, NearnessIsMeasuredAcrossAndAlongASlantedSide) {
  Project p;
  // A side from (0, 0) to (300, 400), 500 long; a triangle-free second macro puts corners near it.
  const int a = New_Node(p, 0, 0), b = New_Node(p, 300, 400), c = New_Node(p, -400, 700),
            d = New_Node(p, -700, 300);
  New_Macro(p, a, b, c, d);
  // On the side at 1/3 of its length, 0.005 mm off it: within the tolerance.
  const int on = New_Node(p, 100 + 0.005 * 0.8, 400.0 / 3 - 0.005 * 0.6);
  // 0.02 mm off the side: beside it, not on it.
  const int off = New_Node(p, 200 + 0.02 * 0.8, 800.0 / 3 - 0.02 * 0.6);
  // Beyond the end b along the side's line: not within the side.
  const int beyond = New_Node(p, 330, 440);
  // Each of them a corner of a small macro of its own below the side.
  for (int n : {on, off, beyond}) {
    const double x = 600 + 300 * (n - on);
    New_Macro(p, n, New_Node(p, x, -300), New_Node(p, x + 100, -250), New_Node(p, x + 50, -100));
  }
  const std::vector<Unjoined_Node> found = Find_Unjoined_Nodes(p);
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0], (Unjoined_Node{on, 1, 1}));
}

}  // namespace
}  // namespace pvx
