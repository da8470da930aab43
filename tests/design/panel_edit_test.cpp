// Editing on the design panel: macros drawn corner by corner and cancelled, circuits, node
// connections and merges; deleting, where gaps close and every node reference follows; undo.
#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "panel_fixtures.h"
#include "support/rich_project.h"

namespace pvx {
namespace {

using namespace test;

TEST(Macro_Creation, ClosesAnticlockwiseAtTheFourthCornerOnSharedNodesAndStopRemovesOnlyNewOnes) {
  using enum Macro_Click;
  Design_Panel panel;
  Project p = Plain_Project(panel);
  p.Macro_Defaults.Temperature = 12.5f;
  p.Material.add({});
  p.Material[1].Name = "C30/37";
  panel.Mode = Design_Mode::Macros;
  // Snapped to (0, 0), (100, 0), (100, 100), (0, 100).
  EXPECT_EQ(Clicks(p, panel, {{1, -2}, {101, 3}, {98, 104}, {-4, 96}}),
            (std::vector{Added, Added, Added, Closed}));
  ASSERT_EQ(p.Macro.count(), 1);
  EXPECT_EQ(p.Macro[1].Corner, (Array1<std::int16_t, 4>{{1, 2, 3, 4}}));
  EXPECT_EQ(std::tuple(p.Macro[1].Temperature, p.Macro[1].Material, Polygon_Node_Count(panel), p.Current_Node,
                       p.Current_Macro),
            std::tuple(12.5f, "C30/37", 0, 1, 1));

  // A neighbour drawn clockwise from the shared corners: the shared nodes are taken, not doubled,
  // and the corners are turned anticlockwise so that the shared side runs 3 -> 2.
  p.Macro.last().Material = "C35/45";
  Clicks(p, panel, {{100, 0}, {100, 100}, {200, 100}, {200, 0}});
  ASSERT_EQ(p.Macro.count(), 2);
  EXPECT_EQ(std::tuple(Node_Count(p), p.Macro[2].Corner, p.Macro[2].Material, p.Current_Node),
            std::tuple(6, Array1<std::int16_t, 4>{{2, 6, 5, 3}}, "C35/45", 2));  // the material of the last

  // A click inside a macro, or on a corner already in the polygon, does nothing; Stop removes the
  // nodes the polygon added (7 and 8), not node 2 that it took.
  const Project before = p;
  EXPECT_EQ(Clicks(p, panel, {{50, 50}, {300, 0}, {301, 1}, {300, 100}, {100, 0}, {300, 0}}),
            (std::vector{Inside_Macro, Added, Ignored, Added, Added, Ignored}));
  EXPECT_EQ(std::tuple(Polygon_Node_Count(panel), Node_Count(p), panel.Polygon_Added), std::tuple(3, 8, 2));
  Stop_Macros(p, panel);
  EXPECT_EQ(p, before);
  EXPECT_EQ(Polygon_Node_Count(panel), 0);
  // A polygon started after it counts from nothing.
  Clicks(p, panel, {{300, 0}});
  EXPECT_EQ(panel.Polygon_Added, 1);
  Stop_Macros(p, panel);

  // A cooling circuit is made at the default count of two pipes, then selected by a click on it.
  panel.Mode = Design_Mode::Cooling;
  Snap_Position(p, panel, 50, 50);
  EXPECT_EQ(Cooling_Mouse_Down(p, panel), Cooling_Click::Added);
  Snap_Position(p, panel, 150, 50);
  EXPECT_EQ(Cooling_Mouse_Down(p, panel), Cooling_Click::Made);
  ASSERT_EQ(p.Circuit.count(), 1);
  EXPECT_EQ(std::tuple(p.Circuit[1].Pipe_Node, p.Current_Circuit), std::tuple(Table<std::int16_t>{7, 8}, 1));
  p.Current_Circuit = 0;
  EXPECT_EQ(Cooling_Mouse_Down(p, panel), Cooling_Click::Selected);
  EXPECT_EQ(std::tuple(p.Current_Circuit, p.Circuit.count()), std::tuple(1, 1));
}

TEST(Node_Edits, NeighboursForTheRubberBandsAndMergesUnlessAMacroHoldsBoth) {
  Design_Panel panel;
  Project p = Two_Squares(panel);
  // A third square whose corner 9 is dropped 3.6 mm from node 6.
  Add_Nodes(p, {{300, 0}, {300, 100}, {203, 98}});
  Add_Macros(p, {{5, 7, 8, 9}});
  // Node 2: 1 before and 3 after in macro 1, 3 before and 5 after in macro 2; node 1 only in
  // macro 1; node 8 between 7 and 9.
  for (const auto& [node, expected] :
       {std::pair{2, Table<std::int32_t>{1, 3, 5}}, {1, {4, 2}}, {8, {7, 9}}}) {
    p.Current_Node = node;
    Determine_Node_Connections(p, panel);
    EXPECT_EQ(panel.Node_Connections, expected) << node;
  }
  p.Mouse_Radius = 5;
  int other = 0;
  ASSERT_TRUE(Test_On_Double_Nodes(p, 9, other));
  EXPECT_EQ(other, 6);
  ASSERT_TRUE(Double_Nodes(p, 9, other));
  EXPECT_EQ(std::tuple(Node_Count(p), p.Macro[3].Corner[4]), std::tuple(8, 6));
  // Node 8 onto node 7 of the same macro: refused, nothing changes; 8 is 100 mm from anything.
  const Project before = p;
  EXPECT_FALSE(Double_Nodes(p, 8, 7));
  EXPECT_EQ(p, before);
  EXPECT_FALSE(Test_On_Double_Nodes(p, 8, other));
  EXPECT_EQ(other, 0);
}

// The node references of a model with one object of every kind that refers to nodes, in the order
// polygon, border, interface, heating mat, circuit, line support, line load; the current node last.
std::vector<int> References(const Project& p) {
  std::vector<int> r;
  for (const Macro& m : p.Macro)
    r.insert(r.end(), m.Corner.v, m.Corner.v + 4);
  r.insert(r.end(), p.Polygon[1].Corner.v, p.Polygon[1].Corner.v + 4);
  r.insert(r.end(), {p.Border[1].Node_A, p.Border[1].Node_B, p.Interface[1].Node_A, p.Interface[1].Node_B,
                     p.Line_T[1].Node_A, p.Line_T[1].Node_B, p.Circuit[1].Pipe_Node[1],
                     p.Circuit[1].Pipe_Node[2], p.Line_Support[1].Node_A, p.Line_Support[1].Node_B,
                     p.Line_Load[1].Node_A, p.Line_Load[1].Node_B, p.Current_Node});
  return r;
}

TEST(Delete, OnlyFreeNodesGoEveryReferenceFollowsAndAMacroTakesTheObjectsOfItsOwnSides) {
  // Two squares with a free node at number 3: nodes 1 (0,0), 2 (100,0), 3 free, 4 (100,100),
  // 5 (0,100), 6 (200,0), 7 (200,100); macros 1-2-4-5 and 2-6-7-4; a polygon 1-2-4-5, a border
  // 2-6, an interface 2-4, a heating mat 4-5, a circuit 5-7, a line support 6-7 and a line load 1-2.
  Design_Panel panel;
  Project p = Plain_Project(panel, {{0, 0}, {100, 0}, {500, 500}, {100, 100}, {0, 100}, {200, 0}, {200, 100}},
                            {{1, 2, 4, 5}, {2, 6, 7, 4}});
  p.Polygon.add(Polygon{"old", {{1, 2, 4, 5}}});
  p.Border.add(On_Side<Border>(2, 6));
  p.Interface.add(On_Side<Interface>(2, 4));
  p.Line_T.add(On_Side<Line_T>(4, 5));
  p.Circuit.add(p.Circuit_Default);
  p.Circuit[1].Pipe_Node = {5, 7};
  p.Line_Support.add(On_Side<Support>(6, 7));
  p.Line_Load.add(On_Side<Load>(1, 2));
  p.Current_Node = 7;
  p.Mesh_Valid = True_Flag;
  EXPECT_EQ(Delete_Free_Nodes(p), 1);
  EXPECT_EQ(std::tuple(Node_Count(p), p.Node_X[3], p.Node_Y[3], p.Mesh_Valid),
            std::tuple(6, 100, 100, False_Flag));  // node 3 is the old node 4
  // Every reference above 3 is one lower.
  EXPECT_EQ(References(p),
            (std::vector<int>{1, 2, 3, 4, 2, 5, 6, 3, 1, 2, 3, 4, 2, 5, 2, 3, 3, 4, 4, 6, 5, 6, 1, 2, 6}));

  // Macro 2 (now 2-5-6-3) goes with the border 2-5, the support 5-6 and a mat 5-6 of its own;
  // the interface 2-3 is no longer shared; the mat 3-4 and the load 1-2 lie on macro 1. Nodes stay
  // until asked; then the circuit keeps 6 and node 5 goes.
  p.Current_Macro = 2;
  p.Line_T.add(On_Side<Line_T>(5, 6));
  Delete_Macro(p, panel, 2);
  EXPECT_EQ(std::tuple(p.Macro.count(), p.Current_Macro, p.Border.count(), p.Interface.count(),
                       p.Line_Support.count(), p.Line_T.count(), p.Line_T[1].Node_A, p.Line_Load.count(),
                       Node_Count(p)),
            std::tuple(1, 0, 0, 0, 0, 1, 3, 1, 6));
  EXPECT_EQ(Delete_Free_Nodes(p), 1);
  EXPECT_EQ(p.Circuit[1].Pipe_Node, (Table<std::int16_t>{4, 5}));

  // Free nodes next to each other: 1, 3 and 4 of five in a row go; the circuit alone keeps 2 and 5.
  p = Plain_Project(panel, {{10, 0}, {20, 0}, {30, 0}, {40, 0}, {50, 0}});
  p.Circuit.add(p.Circuit_Default);
  p.Circuit[1].Pipe_Node = {2, 5};
  EXPECT_EQ(Delete_Free_Nodes(p), 3);
  EXPECT_EQ(p.Node_X, (Table<double>{20, 50}));
  EXPECT_EQ(p.Circuit[1].Pipe_Node, (Table<std::int16_t>{1, 2}));

  // Gaps close and the current entry follows; when it goes itself, none is current.
  for (int a : {10, 11, 12})
    p.Border.add(On_Side<Border>(a, 0));
  p.Current_Border = 3;
  Delete_Border(p, 2);
  EXPECT_EQ(std::tuple(p.Border.count(), p.Border.last().Node_A, p.Current_Border), std::tuple(2, 12, 2));
  Delete_Border(p, 2);
  EXPECT_EQ(p.Current_Border, 0);
  for (double x : {1.0, 2.0, 3.0})
    p.Point_T.add(Point_T{0, 1000, 1, x, 0, 0, 0, 0});
  panel.Current_Point_T = 3;
  Delete_Mode_Object(p, panel, Design_Mode::Point_T, 1);
  EXPECT_EQ(std::tuple(p.Point_T.count(), p.Point_T[1].X, panel.Current_Point_T), std::tuple(2, 2.0, 2));
  Delete_Mode_Object(p, panel, Design_Mode::Point_T, 7);  // no such entry
  EXPECT_EQ(p.Point_T.count(), 2);
}

TEST(Design_Undo, RestoresTheExactEarlierProjectStepByStepWithinItsLimit) {
  Design_Panel panel;
  Project p = Rich_Project();
  Reset_Panel(panel, p);
  Design_Undo undo;
  const Project original = p;
  Push_Undo(undo, p);  // a macro far from the rest
  Clicks(p, panel, {{5000, 5000}, {5100, 5000}, {5100, 5100}, {5000, 5100}});
  ASSERT_EQ(p.Macro.count(), original.Macro.count() + 1);
  const Project after_macro = p;
  Push_Undo(undo, p);
  Delete_Macro(p, panel, 1);
  ASSERT_TRUE(Undo(undo, p, panel));
  EXPECT_EQ(p, after_macro);
  ASSERT_TRUE(Undo(undo, p, panel));
  EXPECT_FALSE(Undo(undo, p, panel));  // nothing left to undo: the project stays
  EXPECT_EQ(p, original);
  ASSERT_TRUE(Redo(undo, p, panel));
  EXPECT_EQ(p, after_macro);
  Push_Undo(undo, p);  // a new edit forgets what could be redone
  Add_Node(p, 1, 1);
  EXPECT_FALSE(Redo(undo, p, panel));

  // An open polygon goes with the step; of three steps with a limit of two the first falls off.
  undo = Design_Undo{{}, {}, 2};
  const Project before = p;
  Push_Undo(undo, p);
  Clicks(p, panel, {{9000, 0}, {9000, 100}});
  ASSERT_EQ(Polygon_Node_Count(panel), 2);
  ASSERT_TRUE(Undo(undo, p, panel));
  EXPECT_EQ(p, before);
  EXPECT_EQ(std::tuple(Polygon_Node_Count(panel), panel.Polygon_Added), std::tuple(0, 0));
  for (int k = 1; k <= 3; ++k) {
    Push_Undo(undo, p);
    Add_Node(p, 1000.0 * k, 0);
  }
  EXPECT_TRUE(Undo(undo, p, panel) && Undo(undo, p, panel));
  EXPECT_FALSE(Undo(undo, p, panel));
  EXPECT_EQ(Node_Count(p), Node_Count(before) + 1);
}

}  // namespace
}  // namespace pvx
