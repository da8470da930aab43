// Drawing on the design panel: macros corner by corner, cancelling, circuits, node connections.
#include <gtest/gtest.h>

#include "design/panel_delete.h"
#include "design/panel_edit.h"
#include "design/panel_pick.h"
#include "panel_fixtures.h"

namespace pvx {
namespace {

using test::Plain_Project;
using test::Point_At;

Macro_Click Click(Project& p, Design_Panel& panel, double x, double y) {
  Point_At(p, panel, x, y);
  return Macro_Mouse_Down(p, panel);
}

TEST(Macro_Creation, Closes_By_Itself_At_The_Fourth_Corner) {
  Design_Panel panel;
  Project p = Plain_Project(panel);
  p.Macro_Defaults.Temperature = 12.5f;
  Material concrete;
  concrete.Name = "C30/37";
  p.Material.add(concrete);
  panel.Mode = Design_Mode::Macros;
  EXPECT_EQ(Click(p, panel, 1, -2), Macro_Click::Added);  // snapped to (0, 0)
  EXPECT_EQ(Click(p, panel, 101, 3), Macro_Click::Added);
  EXPECT_EQ(Click(p, panel, 98, 104), Macro_Click::Added);
  EXPECT_EQ(p.Macro.count(), 0);
  EXPECT_EQ(Polygon_Node_Count(panel), 3);
  EXPECT_EQ(Click(p, panel, -4, 96), Macro_Click::Closed);
  ASSERT_EQ(p.Macro.count(), 1);
  EXPECT_EQ(Node_Count(p), 4);
  EXPECT_EQ(p.Node_X[2], 100);
  EXPECT_EQ(p.Node_Y[3], 100);
  EXPECT_EQ(p.Node_X[4], 0);
  const Macro& m = p.Macro[1];
  EXPECT_EQ(m.Corner[1], 1);
  EXPECT_EQ(m.Corner[2], 2);
  EXPECT_EQ(m.Corner[3], 3);
  EXPECT_EQ(m.Corner[4], 4);
  EXPECT_EQ(m.Temperature, 12.5f);
  EXPECT_EQ(m.Material, "C30/37");
  EXPECT_EQ(Polygon_Node_Count(panel), 0);
  EXPECT_EQ(p.Current_Node, 1);
  EXPECT_EQ(p.Current_Macro, 1);

  // A neighbour drawn clockwise from the shared corners: the shared nodes are taken, not doubled,
  // and the corners are turned anticlockwise so that the shared side runs 3 -> 2.
  p.Macro.last().Material = "C35/45";
  EXPECT_EQ(Click(p, panel, 100, 0), Macro_Click::Added);
  EXPECT_EQ(Click(p, panel, 100, 100), Macro_Click::Added);
  EXPECT_EQ(Click(p, panel, 200, 100), Macro_Click::Added);
  EXPECT_EQ(Click(p, panel, 200, 0), Macro_Click::Closed);
  ASSERT_EQ(p.Macro.count(), 2);
  EXPECT_EQ(Node_Count(p), 6);
  const Macro& n = p.Macro[2];
  EXPECT_EQ(n.Corner[1], 2);
  EXPECT_EQ(n.Corner[2], 6);
  EXPECT_EQ(n.Corner[3], 5);
  EXPECT_EQ(n.Corner[4], 3);
  EXPECT_EQ(n.Material, "C35/45");  // as the last macro
  Point_At(p, panel, 100, 50);
  EXPECT_TRUE(Interface_Selected(p, panel));  // so the side counts as shared
}

TEST(Macro_Creation, Clicks_Inside_A_Macro_And_On_The_Same_Node_Change_Nothing) {
  Design_Panel panel;
  Project p = test::Two_Squares(panel);
  panel.Mode = Design_Mode::Macros;
  const Project before = p;
  EXPECT_EQ(Click(p, panel, 50, 50), Macro_Click::Inside_Macro);
  EXPECT_EQ(p, before);
  EXPECT_EQ(Polygon_Node_Count(panel), 0);
  EXPECT_EQ(Click(p, panel, 200, 100), Macro_Click::Added);  // node 6
  EXPECT_EQ(Click(p, panel, 201, 99), Macro_Click::Ignored);
  EXPECT_EQ(Click(p, panel, 300, 100), Macro_Click::Added);
  EXPECT_EQ(Click(p, panel, 200, 100), Macro_Click::Ignored);  // no corner twice
  EXPECT_EQ(Polygon_Node_Count(panel), 2);
  EXPECT_EQ(Node_Count(p), 7);
}

TEST(Stop_Macros, Removes_Only_The_Nodes_The_Polygon_Made) {
  Design_Panel panel;
  Project p = test::Two_Squares(panel);
  panel.Mode = Design_Mode::Macros;
  Click(p, panel, 200, 0);    // existing node 5
  Click(p, panel, 300, 0);    // new 7
  Click(p, panel, 300, 100);  // new 8
  EXPECT_EQ(Node_Count(p), 8);
  EXPECT_EQ(panel.Polygon_Added, 2);
  Stop_Macros(p, panel);
  EXPECT_EQ(Node_Count(p), 6);
  EXPECT_EQ(Polygon_Node_Count(panel), 0);
  EXPECT_EQ(p.Macro.count(), 2);
  // A polygon started after it counts from nothing.
  Click(p, panel, 300, 0);
  EXPECT_EQ(panel.Polygon_Added, 1);
}

TEST(Cooling_Circuit, Made_At_The_Default_Pipe_Count_Then_Selected) {
  Design_Panel panel;
  Project p = test::Two_Squares(panel);
  panel.Mode = Design_Mode::Cooling;
  Point_At(p, panel, 50, 50);
  EXPECT_EQ(Cooling_Mouse_Down(p, panel), Cooling_Click::Added);
  Point_At(p, panel, 150, 50);
  EXPECT_EQ(Cooling_Mouse_Down(p, panel), Cooling_Click::Made);
  ASSERT_EQ(p.Circuit.count(), 1);
  EXPECT_EQ(p.Circuit[1].Pipe_Count, 2);
  EXPECT_EQ(p.Circuit[1].Pipe_Node[1], 7);
  EXPECT_EQ(p.Circuit[1].Pipe_Node[2], 8);
  EXPECT_EQ(p.Circuit[1].Distance[2], 10);
  EXPECT_EQ(p.Current_Circuit, 1);
  p.Current_Circuit = 0;
  Point_At(p, panel, 150, 50);
  EXPECT_EQ(Cooling_Mouse_Down(p, panel), Cooling_Click::Selected);
  EXPECT_EQ(p.Current_Circuit, 1);
  EXPECT_EQ(p.Circuit.count(), 1);
}

TEST(Node_Connections, Neighbours_Before_And_After_In_Every_Macro_Once) {
  Design_Panel panel;
  Project p = test::Two_Squares(panel);
  p.Current_Node = 2;  // macro 1: 1 before, 3 after; macro 2: 3 before, 5 after
  Determine_Node_Connections(p, panel);
  ASSERT_EQ(panel.Node_Connections.count(), 3);
  EXPECT_EQ(panel.Node_Connections[1], 1);
  EXPECT_EQ(panel.Node_Connections[2], 3);
  EXPECT_EQ(panel.Node_Connections[3], 5);
  p.Current_Node = 1;
  Determine_Node_Connections(p, panel);
  ASSERT_EQ(panel.Node_Connections.count(), 2);
  EXPECT_EQ(panel.Node_Connections[1], 4);
  EXPECT_EQ(panel.Node_Connections[2], 2);
  Add_Node(p, 500, 500);
  p.Current_Node = 7;
  Determine_Node_Connections(p, panel);
  EXPECT_TRUE(panel.Node_Connections.empty());
}

TEST(Double_Nodes, A_Node_Dragged_Onto_Another_Merges_Unless_A_Macro_Holds_Both) {
  Design_Panel panel;
  Project p = test::Two_Squares(panel);
  // A third square whose corner 9 is dropped on node 6.
  Add_Node(p, 300, 0);    // 7
  Add_Node(p, 300, 100);  // 8
  Add_Node(p, 203, 98);   // 9
  p.Macro.add(test::Quad(5, 7, 8, 9));
  p.Mouse_Radius = 5;
  int other = 0;
  ASSERT_TRUE(Test_On_Double_Nodes(p, 9, other));
  EXPECT_EQ(other, 6);  // 3.6 mm away
  ASSERT_TRUE(Double_Nodes(p, 9, other));
  EXPECT_EQ(Node_Count(p), 8);
  EXPECT_EQ(p.Macro[3].Corner[4], 6);
  // Node 8 onto node 7 of the same macro: refused, nothing changes.
  const Project before = p;
  EXPECT_FALSE(Double_Nodes(p, 8, 7));
  EXPECT_EQ(p, before);
  EXPECT_FALSE(Test_On_Double_Nodes(p, 8, other));  // 100 mm from anything
  EXPECT_EQ(other, 0);
}

}  // namespace
}  // namespace pvx
