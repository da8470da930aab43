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

TEST(Macro_Creation, ClosesByItselfAtTheFourthCornerAnticlockwise) {
  Design_Panel panel;
  Project p = Plain_Project(panel);
  p.Macro_Defaults.Temperature = 12.5f;
  Material concrete;
  concrete.Name = "C30/37";
  p.Material.add(concrete);
  panel.Mode = Design_Mode::Macros;
  // Snapped to (0, 0), (100, 0), (100, 100), (0, 100).
  // clang-format off
  for (const auto& [x, y, result] : {std::tuple{1, -2, Macro_Click::Added}, {101, 3, Macro_Click::Added},
                                     {98, 104, Macro_Click::Added}, {-4, 96, Macro_Click::Closed}}) {
    // clang-format on
    EXPECT_EQ(p.Macro.count(), 0);
    EXPECT_EQ(Click(p, panel, x, y), result);
  }
  ASSERT_EQ(p.Macro.count(), 1);
  EXPECT_EQ(p.Node_X, (Table<double>{0, 100, 100, 0}));
  EXPECT_EQ(p.Node_Y, (Table<double>{0, 0, 100, 100}));
  EXPECT_EQ(p.Macro[1].Corner, (Array1<std::int16_t, 4>{{1, 2, 3, 4}}));
  EXPECT_EQ(std::tuple(p.Macro[1].Temperature, p.Macro[1].Material, Polygon_Node_Count(panel), p.Current_Node,
                       p.Current_Macro),
            std::tuple(12.5f, "C30/37", 0, 1, 1));

  // A neighbour drawn clockwise from the shared corners: the shared nodes are taken, not doubled,
  // and the corners are turned anticlockwise so that the shared side runs 3 -> 2.
  p.Macro.last().Material = "C35/45";
  for (const auto& [x, y] : {std::pair{100, 0}, {100, 100}, {200, 100}, {200, 0}})
    Click(p, panel, x, y);
  ASSERT_EQ(p.Macro.count(), 2);
  EXPECT_EQ(Node_Count(p), 6);
  EXPECT_EQ(p.Macro[2].Corner, (Array1<std::int16_t, 4>{{2, 6, 5, 3}}));
  EXPECT_EQ(p.Macro[2].Material, "C35/45");  // as the last macro
  Point_At(p, panel, 100, 50);
  EXPECT_TRUE(Interface_Selected(p, panel));  // so the side counts as shared
}

TEST(Macro_Creation, ClicksInsideAMacroOrTwiceOnANodeChangeNothingAndStopRemovesOnlyNewNodes) {
  Design_Panel panel;
  Project p = Two_Squares(panel);
  panel.Mode = Design_Mode::Macros;
  const Project before = p;
  EXPECT_EQ(Click(p, panel, 50, 50), Macro_Click::Inside_Macro);
  EXPECT_EQ(p, before);
  // clang-format off
  for (const auto& [x, y, result] : {std::tuple{200, 0, Macro_Click::Added}, {201, 1, Macro_Click::Ignored},
                                     {300, 0, Macro_Click::Added}, {300, 100, Macro_Click::Added},
                                     {200, 0, Macro_Click::Ignored}})  // no corner twice
    // clang-format on
    EXPECT_EQ(Click(p, panel, x, y), result) << x << " " << y;
  EXPECT_EQ(std::tuple(Polygon_Node_Count(panel), Node_Count(p), panel.Polygon_Added), std::tuple(3, 8, 2));
  Stop_Macros(p, panel);
  EXPECT_EQ(p, before);
  EXPECT_EQ(Polygon_Node_Count(panel), 0);
  // A polygon started after it counts from nothing.
  Click(p, panel, 300, 0);
  EXPECT_EQ(panel.Polygon_Added, 1);
}

TEST(Cooling_Circuit, MadeAtTheDefaultPipeCountThenSelected) {
  Design_Panel panel;
  Project p = Two_Squares(panel);
  panel.Mode = Design_Mode::Cooling;
  Point_At(p, panel, 50, 50);
  EXPECT_EQ(Cooling_Mouse_Down(p, panel), Cooling_Click::Added);
  Point_At(p, panel, 150, 50);
  EXPECT_EQ(Cooling_Mouse_Down(p, panel), Cooling_Click::Made);
  ASSERT_EQ(p.Circuit.count(), 1);
  EXPECT_EQ(std::tuple(p.Circuit[1].Pipe_Count, p.Circuit[1].Distance[2], p.Current_Circuit),
            std::tuple(2, 10.0, 1));
  EXPECT_EQ(p.Circuit[1].Pipe_Node, (Table<std::int16_t>{7, 8}));
  p.Current_Circuit = 0;
  EXPECT_EQ(Cooling_Mouse_Down(p, panel), Cooling_Click::Selected);
  EXPECT_EQ(std::tuple(p.Current_Circuit, p.Circuit.count()), std::tuple(1, 1));
}

TEST(Node_Edits, NeighboursForTheRubberBandsAndMergesUnlessAMacroHoldsBoth) {
  Design_Panel panel;
  Project p = Two_Squares(panel);
  // A third square whose corner 9 is dropped 3.6 mm from node 6.
  Add_Nodes(p, {{300, 0}, {300, 100}, {203, 98}});
  p.Macro.add(Quad(5, 7, 8, 9));
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

// Two squares with a free node at number 3 and one object of every kind that refers to nodes:
// nodes 1 (0,0), 2 (100,0), 3 free, 4 (100,100), 5 (0,100), 6 (200,0), 7 (200,100); macros
// 1-2-4-5 and 2-6-7-4; a polygon 1-2-4-5, a border 2-6, an interface 2-4, a heating mat 4-5, a
// circuit 5-7, a line support 6-7 and a line load 1-2.
Project Referenced_Model(Design_Panel& panel) {
  Project p = Plain_Project(panel);
  Add_Nodes(p, {{0, 0}, {100, 0}, {500, 500}, {100, 100}, {0, 100}, {200, 0}, {200, 100}});
  p.Macro.add(Quad(1, 2, 4, 5));
  p.Macro.add(Quad(2, 6, 7, 4));
  p.Polygon.add(Polygon{"old", {{1, 2, 4, 5}}});
  p.Border.add(Border{.Node_A = 2, .Node_B = 6});
  p.Interface.add(Interface{.Node_A = 2, .Node_B = 4});
  p.Line_T.add(Line_T{0, 1000, 1, 4, 5});
  p.Circuit.add(p.Circuit_Default);
  p.Circuit[1].Pipe_Node = {5, 7};
  p.Line_Support.add(Support{.Node_A = 6, .Node_B = 7});
  p.Line_Load.add(Load{.Node_A = 1, .Node_B = 2});
  p.Current_Node = 7;
  return p;
}

// The node references of that model in its order, the current node last.
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

TEST(Delete_Nodes, OnlyFreeNodesGoAndEveryReferenceAboveFollows) {
  Design_Panel panel;
  Project p = Referenced_Model(panel);
  for (int n = 1; n <= 7; ++n)
    EXPECT_EQ(Node_Is_Not_Connected(p, n), n == 3) << n;
  Project held = p;
  // Node 7 is held by macro 2, the circuit and the line support; without the macro and the
  // support the circuit alone still holds it.
  held.Macro.remove(2);
  held.Line_Support.clear();
  EXPECT_FALSE(Node_Is_Not_Connected(held, 7));
  held.Circuit.clear();
  EXPECT_TRUE(Node_Is_Not_Connected(held, 7));
  const Project before = p;
  EXPECT_FALSE(Delete_Node(p, 4));
  EXPECT_EQ(p, before);

  p.Mesh_Valid = True_Flag;
  EXPECT_EQ(Delete_Free_Nodes(p), 1);
  ASSERT_EQ(Node_Count(p), 6);
  EXPECT_EQ(std::tuple(p.Node_X[3], p.Node_Y[3], p.Mesh_Valid),
            std::tuple(100, 100, False_Flag));  // old node 4
  // Every reference above 3 is one lower.
  EXPECT_EQ(References(p),
            (std::vector<int>{1, 2, 3, 4, 2, 5, 6, 3, 1, 2, 3, 4, 2, 5, 2, 3, 3, 4, 4, 6, 5, 6, 1, 2, 6}));
  EXPECT_EQ(Delete_Free_Nodes(p), 0);

  // Free nodes next to each other: 1, 3 and 4 of five in a row go; the circuit keeps 2 and 5.
  p = Plain_Project(panel);
  Add_Nodes(p, {{10, 0}, {20, 0}, {30, 0}, {40, 0}, {50, 0}});
  p.Circuit.add(p.Circuit_Default);
  p.Circuit[1].Pipe_Node = {2, 5};
  EXPECT_EQ(Delete_Free_Nodes(p), 3);
  EXPECT_EQ(p.Node_X, (Table<double>{20, 50}));
  EXPECT_EQ(p.Circuit[1].Pipe_Node, (Table<std::int16_t>{1, 2}));
}

TEST(Delete_Macro, TakesTheObjectsOfItsOwnSidesAlong) {
  Design_Panel panel;
  Project p = Referenced_Model(panel);
  p.Current_Macro = 2;
  p.Line_T.add(Line_T{0, 1000, 1, 6, 7});  // on macro 2 only
  Delete_Macro(p, panel, 2);
  // The border 2-6 and the support 6-7 were macro 2's, the interface 2-4 is no longer shared; the
  // mat 4-5 and the load 1-2 lie on macro 1. Nodes stay until asked.
  EXPECT_EQ(std::tuple(p.Macro.count(), p.Current_Macro, p.Border.count(), p.Interface.count(),
                       p.Line_Support.count(), p.Line_T.count(), p.Line_Load.count(), Node_Count(p)),
            std::tuple(1, 0, 0, 0, 0, 1, 1, 7));
  EXPECT_EQ(p.Line_T[1].Node_A, 4);
  // The circuit keeps 7; nodes 3 and 6 go.
  EXPECT_EQ(Delete_Free_Nodes(p), 2);
  EXPECT_EQ(std::tuple(p.Circuit[1].Pipe_Node[1], p.Circuit[1].Pipe_Node[2], p.Line_T[1].Node_A),
            std::tuple(4, 5, 3));
}

TEST(Delete_Objects, GapsCloseAndTheCurrentEntryFollows) {
  Design_Panel panel;
  Project p = Referenced_Model(panel);
  for (std::int16_t a : {10, 11})
    p.Border.add(Border{.Node_A = a});
  p.Current_Border = 3;
  Delete_Border(p, 2);
  ASSERT_EQ(p.Border.count(), 2);
  EXPECT_EQ(std::tuple(p.Border[2].Node_A, p.Current_Border), std::tuple(11, 2));
  Delete_Border(p, 2);
  EXPECT_EQ(p.Current_Border, 0);  // the current entry itself went

  for (double x : {1.0, 2.0, 3.0})
    p.Point_T.add(Point_T{.X = x});
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
  p.Snap_Size = 10;
  p.Snap_Mode = 0;
  p.Mesh_Valid = True_Flag;
  Design_Undo undo;
  const Project original = p;
  Push_Undo(undo, p);  // a macro far from the rest
  for (const auto& [x, y] : {std::pair{5000, 5000}, {5100, 5000}, {5100, 5100}, {5000, 5100}})
    Click(p, panel, x, y);
  ASSERT_EQ(p.Macro.count(), original.Macro.count() + 1);
  const Project after_macro = p;
  Push_Undo(undo, p);
  Delete_Macro(p, panel, 1);
  Push_Undo(undo, p);
  Delete_Free_Nodes(p);
  ASSERT_NE(p, after_macro);
  ASSERT_TRUE(Undo(undo, p, panel) && Undo(undo, p, panel));
  EXPECT_EQ(p, after_macro);
  ASSERT_TRUE(Undo(undo, p, panel));
  EXPECT_EQ(p, original);
  EXPECT_FALSE(Undo(undo, p, panel));
  EXPECT_EQ(p, original);
  ASSERT_TRUE(Redo(undo, p, panel));
  EXPECT_EQ(p, after_macro);
  // A new edit forgets what could be redone.
  Push_Undo(undo, p);
  Add_Node(p, 1, 1);
  EXPECT_FALSE(Redo(undo, p, panel));

  // An open polygon goes with the step; of three steps with a limit of two the first falls off.
  p = Two_Squares(panel);
  panel.Mode = Design_Mode::Macros;
  undo = Design_Undo{.Limit = 2};
  const Project two_squares = p;
  Push_Undo(undo, p);
  Click(p, panel, 300, 0);
  Click(p, panel, 300, 100);
  ASSERT_EQ(Polygon_Node_Count(panel), 2);
  ASSERT_TRUE(Undo(undo, p, panel));
  EXPECT_EQ(p, two_squares);
  EXPECT_EQ(std::tuple(Polygon_Node_Count(panel), panel.Polygon_Added), std::tuple(0, 0));
  for (int k = 1; k <= 3; ++k) {
    Push_Undo(undo, p);
    Add_Node(p, 1000.0 * k, 0);
  }
  EXPECT_TRUE(Undo(undo, p, panel) && Undo(undo, p, panel));
  EXPECT_FALSE(Undo(undo, p, panel));
  EXPECT_EQ(Node_Count(p), 7);
}

}  // namespace
}  // namespace pvx
