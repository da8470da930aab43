// Deleting design objects: gaps close and every node reference follows.
#include <gtest/gtest.h>

#include "design/panel_delete.h"
#include "panel_fixtures.h"

namespace pvx {
namespace {

// Two squares with a free node at number 3 and one object of every kind that refers to nodes:
// nodes 1 (0,0), 2 (100,0), 3 free, 4 (100,100), 5 (0,100), 6 (200,0), 7 (200,100); macros
// 1-2-4-5 and 2-6-7-4.
Project Referenced_Model(Design_Panel& panel) {
  Project p = test::Plain_Project(panel);
  for (auto [x, y] : {std::pair{0.0, 0.0},
                      {100.0, 0.0},
                      {500.0, 500.0},
                      {100.0, 100.0},
                      {0.0, 100.0},
                      {200.0, 0.0},
                      {200.0, 100.0}})
    Add_Node(p, x, y);
  p.Macro.add(test::Quad(1, 2, 4, 5));
  p.Macro.add(test::Quad(2, 6, 7, 4));
  p.Polygon.add(Polygon{"old", {{1, 2, 4, 5}}});
  Border b;
  b.Node_A = 2;
  b.Node_B = 6;
  p.Border.add(b);
  Interface f;
  f.Node_A = 2;
  f.Node_B = 4;
  p.Interface.add(f);
  p.Line_T.add(Line_T{0, 1000, 1, 4, 5});
  Circuit c = p.Circuit_Default;
  c.Pipe_Node[1] = 5;
  c.Pipe_Node[2] = 7;
  p.Circuit.add(c);
  Support s;
  s.Node_A = 6;
  s.Node_B = 7;
  p.Line_Support.add(s);
  Load l;
  l.Node_A = 1;
  l.Node_B = 2;
  p.Line_Load.add(l);
  p.Current_Node = 7;
  return p;
}

TEST(Delete_Node, Refuses_A_Node_In_Use_Of_Any_Kind) {
  Design_Panel panel;
  Project p = Referenced_Model(panel);
  EXPECT_TRUE(Node_Is_Not_Connected(p, 3));
  for (int n : {1, 2, 4, 5, 6, 7})
    EXPECT_FALSE(Node_Is_Not_Connected(p, n)) << n;
  // Node 7 is held by macro 2, the circuit and the line support; take away the macro and the
  // support and the circuit alone still holds it.
  p.Macro.remove(2);
  p.Line_Support.clear();
  EXPECT_FALSE(Node_Is_Not_Connected(p, 7));
  p.Circuit.clear();
  EXPECT_TRUE(Node_Is_Not_Connected(p, 7));
  const Project before = p;
  EXPECT_FALSE(Delete_Node(p, 4));
  EXPECT_EQ(p, before);
}

TEST(Delete_Free_Nodes, Renumbers_Macros_Borders_Lines_Circuits_Polygons_Supports_And_Loads) {
  Design_Panel panel;
  Project p = Referenced_Model(panel);
  p.Mesh_Valid = True_Flag;
  EXPECT_EQ(Delete_Free_Nodes(p), 1);
  ASSERT_EQ(Node_Count(p), 6);
  EXPECT_EQ(p.Node_X[3], 100);  // the old node 4 moved up
  EXPECT_EQ(p.Node_Y[3], 100);
  EXPECT_EQ(p.Macro[1].Corner, (Array1<std::int16_t, 4>{{1, 2, 3, 4}}));
  EXPECT_EQ(p.Macro[2].Corner, (Array1<std::int16_t, 4>{{2, 5, 6, 3}}));
  EXPECT_EQ(p.Polygon[1].Corner, (Array1<std::int16_t, 4>{{1, 2, 3, 4}}));
  EXPECT_EQ(p.Border[1].Node_A, 2);
  EXPECT_EQ(p.Border[1].Node_B, 5);
  EXPECT_EQ(p.Interface[1].Node_A, 2);
  EXPECT_EQ(p.Interface[1].Node_B, 3);
  EXPECT_EQ(p.Line_T[1].Node_A, 3);
  EXPECT_EQ(p.Line_T[1].Node_B, 4);
  EXPECT_EQ(p.Circuit[1].Pipe_Node[1], 4);
  EXPECT_EQ(p.Circuit[1].Pipe_Node[2], 6);
  EXPECT_EQ(p.Line_Support[1].Node_A, 5);
  EXPECT_EQ(p.Line_Support[1].Node_B, 6);
  EXPECT_EQ(p.Line_Load[1].Node_A, 1);
  EXPECT_EQ(p.Line_Load[1].Node_B, 2);
  EXPECT_EQ(p.Current_Node, 6);
  EXPECT_EQ(p.Mesh_Valid, False_Flag);
  EXPECT_EQ(Delete_Free_Nodes(p), 0);
}

TEST(Delete_Free_Nodes, Free_Nodes_In_A_Row) {
  Design_Panel panel;
  Project p = test::Plain_Project(panel);
  for (int k = 1; k <= 5; ++k)
    Add_Node(p, 10.0 * k, 0);
  p.Circuit.add(p.Circuit_Default);
  p.Circuit[1].Pipe_Node[1] = 2;
  p.Circuit[1].Pipe_Node[2] = 5;
  EXPECT_EQ(Delete_Free_Nodes(p), 3);  // 1, 3 and 4, two of them next to each other
  ASSERT_EQ(Node_Count(p), 2);
  EXPECT_EQ(p.Node_X[1], 20);
  EXPECT_EQ(p.Node_X[2], 50);
  EXPECT_EQ(p.Circuit[1].Pipe_Node[1], 1);
  EXPECT_EQ(p.Circuit[1].Pipe_Node[2], 2);
}

TEST(Delete_Macro, Takes_The_Objects_Of_Its_Own_Sides_Along) {
  Design_Panel panel;
  Project p = Referenced_Model(panel);
  p.Current_Macro = 2;
  p.Line_T.add(Line_T{0, 1000, 1, 6, 7});  // on macro 2 only
  Delete_Macro(p, panel, 2);
  EXPECT_EQ(p.Macro.count(), 1);
  EXPECT_EQ(p.Current_Macro, 0);
  EXPECT_EQ(p.Border.count(), 0);        // 2-6 was macro 2's
  EXPECT_EQ(p.Interface.count(), 0);     // 2-4 is no longer shared
  EXPECT_EQ(p.Line_Support.count(), 0);  // 6-7
  ASSERT_EQ(p.Line_T.count(), 1);        // 4-5 stays on macro 1
  EXPECT_EQ(p.Line_T[1].Node_A, 4);
  EXPECT_EQ(p.Line_Load.count(), 1);  // 1-2 stays
  EXPECT_EQ(Node_Count(p), 7);        // nodes stay until asked
  // The circuit keeps 7; nodes 3 and 6 go.
  EXPECT_EQ(Delete_Free_Nodes(p), 2);
  EXPECT_EQ(p.Circuit[1].Pipe_Node[1], 4);
  EXPECT_EQ(p.Circuit[1].Pipe_Node[2], 5);
  EXPECT_EQ(p.Line_T[1].Node_A, 3);
}

TEST(Delete_Objects, Gaps_Close_And_The_Current_Entry_Follows) {
  Design_Panel panel;
  Project p = Referenced_Model(panel);
  for (int k = 0; k < 2; ++k) {
    Border b = p.Border[1];
    b.Node_A = static_cast<std::int16_t>(10 + k);
    p.Border.add(b);
  }
  p.Current_Border = 3;
  Delete_Border(p, 2);
  ASSERT_EQ(p.Border.count(), 2);
  EXPECT_EQ(p.Border[2].Node_A, 11);
  EXPECT_EQ(p.Current_Border, 2);
  Delete_Border(p, 2);
  EXPECT_EQ(p.Current_Border, 0);

  p.Circuit.add(p.Circuit_Default);
  p.Circuit[2].Diameter = 40;
  p.Current_Circuit = 1;
  Delete_Circuit(p, 1);
  ASSERT_EQ(p.Circuit.count(), 1);
  EXPECT_EQ(p.Circuit[1].Diameter, 40);
  EXPECT_EQ(p.Current_Circuit, 0);

  for (double x : {1.0, 2.0, 3.0}) {
    Point_T t;
    t.X = x;
    p.Point_T.add(t);
  }
  panel.Current_Point_T = 3;
  Delete_Mode_Object(p, panel, Design_Mode::Point_T, 1);
  ASSERT_EQ(p.Point_T.count(), 2);
  EXPECT_EQ(p.Point_T[1].X, 2);
  EXPECT_EQ(panel.Current_Point_T, 2);
  Delete_Mode_Object(p, panel, Design_Mode::Point_T, 7);  // no such entry
  EXPECT_EQ(p.Point_T.count(), 2);
}

}  // namespace
}  // namespace pvx
