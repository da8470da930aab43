// The grid dialog's checks and the undo of the design panel.
#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "design/panel_delete.h"
#include "design/panel_edit.h"
#include "design/panel_undo.h"
#include "panel_fixtures.h"
#include "support/rich_project.h"

namespace pvx {
namespace {

Graf_Settings Valid_Settings() {
  Project p;
  New_Project(p);
  Set_Graphical_Defaults(p);
  return Read_Graf_Settings(p, Design_Display{});
}

TEST(Graf_Settings, Each_Check_Gives_Its_Message_In_Order) {
  std::string message = "stale";
  EXPECT_TRUE(Check_Graf_Settings(Valid_Settings(), message));
  EXPECT_EQ(message, "");
  struct Case {
    std::function<void(Graf_Settings&)> change;
    const char* message;
  };
  const std::vector<Case> cases = {
      {[](Graf_Settings& g) { g.Grid_X_Max = -1; }, "X_max < X_min"},
      {[](Graf_Settings& g) { g.Grid_X_Increment = 0; }, "X_increment =< 0"},
      {[](Graf_Settings& g) { g.Grid_X_Increment = 1.9; }, "X_increment is te klein"},  // 1053 steps
      {[](Graf_Settings& g) { g.Grid_Y_Min = 2000; }, "Y_max < Y_min"},
      {[](Graf_Settings& g) { g.Grid_Y_Increment = -5; }, "Y_increment =< 0"},
      {[](Graf_Settings& g) { g.Grid_Y_Increment = 1.4; }, "Y_increment is te klein"},  // 1072 steps
      {[](Graf_Settings& g) { g.Circ_Outer_Radius = 0; }, "Outer radius =< 0"},
      {[](Graf_Settings& g) { g.Circ_Inner_Radius = -1; }, "Inner radius =< 0"},
      {[](Graf_Settings& g) { g.Circ_End_Angle = -10; }, "Eindhoek < Starthoek"},
      {[](Graf_Settings& g) { g.Circ_Angle_Increment = 0; }, "Increment =< 0"},
      {[](Graf_Settings& g) { g.Snap_Size = 0; }, "Snap grootte =< 0"},
      {[](Graf_Settings& g) { g.Mouse_Radius = 0; }, "Aktiestraal van de muis =< 0"},
  };
  for (const Case& c : cases) {
    Graf_Settings g = Valid_Settings();
    c.change(g);
    EXPECT_FALSE(Check_Graf_Settings(g, message)) << c.message;
    EXPECT_EQ(message, c.message);
  }
  // With every fault at once the first in the order is told.
  Graf_Settings all = Valid_Settings();
  for (auto it = cases.rbegin(); it != cases.rend(); ++it)
    it->change(all);
  EXPECT_FALSE(Check_Graf_Settings(all, message));
  EXPECT_EQ(message, "X_max < X_min");
  // Exactly 1000 steps is still allowed; equal ends are a grid of one line.
  Graf_Settings edge = Valid_Settings();
  edge.Grid_X_Increment = 2;
  edge.Grid_Y_Min = edge.Grid_Y_Max;
  edge.Circ_End_Angle = edge.Circ_Start_Angle;
  EXPECT_TRUE(Check_Graf_Settings(edge, message)) << message;
}

TEST(Graf_Settings, Apply_Writes_All_Or_Nothing) {
  Design_Panel panel;
  Project p = test::Plain_Project(panel);
  Set_Graphical_Defaults(p);
  Design_Display display;
  Graf_Settings g = Read_Graf_Settings(p, display);
  g.Grid_X_Max = 5000;
  g.Circ_Grid_Snap = true;
  g.Snap_On_Grid = true;
  g.Mouse_Radius = 6;
  g.Display.Axes = false;
  g.Snap_Size = 0;
  const Project before = p;
  std::string message;
  EXPECT_FALSE(Apply_Graf_Settings(g, p, display, message));
  EXPECT_EQ(message, "Snap grootte =< 0");
  EXPECT_EQ(p, before);
  EXPECT_TRUE(display.Axes);
  g.Snap_Size = 5;
  ASSERT_TRUE(Apply_Graf_Settings(g, p, display, message));
  EXPECT_EQ(p.Grid_X_Max, 5000);
  EXPECT_EQ(p.Circ_Grid_Snap, True_Flag);
  EXPECT_EQ(p.Snap_Mode, 1);
  EXPECT_EQ(p.Mouse_Radius, 6.0f);
  EXPECT_EQ(p.Snap_Size, 5);
  EXPECT_FALSE(display.Axes);
  EXPECT_EQ(Read_Graf_Settings(p, display), g);
}

Macro_Click Click(Project& p, Design_Panel& panel, double x, double y) {
  test::Point_At(p, panel, x, y);
  return Macro_Mouse_Down(p, panel);
}

TEST(Design_Undo, Restores_The_Exact_Earlier_Project_Step_By_Step) {
  Design_Panel panel;
  Project p = test::Rich_Project();
  Reset_Panel(panel, p);
  p.Snap_Size = 10;
  p.Snap_Mode = 0;
  p.Mouse_Radius = 3;
  p.Mesh_Valid = True_Flag;
  Design_Undo undo;
  const Project original = p;

  Push_Undo(undo, p);  // a macro far from the rest
  for (auto [x, y] : {std::pair{5000.0, 5000.0}, {5100.0, 5000.0}, {5100.0, 5100.0}, {5000.0, 5100.0}})
    Click(p, panel, x, y);
  ASSERT_EQ(p.Macro.count(), original.Macro.count() + 1);
  const Project after_macro = p;
  Push_Undo(undo, p);
  Delete_Macro(p, panel, 1);
  Push_Undo(undo, p);
  Delete_Free_Nodes(p);
  ASSERT_NE(p, after_macro);

  ASSERT_TRUE(Undo(undo, p, panel));
  ASSERT_TRUE(Undo(undo, p, panel));
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
}

TEST(Design_Undo, An_Open_Polygon_Goes_With_The_Step_And_The_Stack_Is_Bounded) {
  Design_Panel panel;
  Project p = test::Two_Squares(panel);
  panel.Mode = Design_Mode::Macros;
  Design_Undo undo;
  undo.Limit = 2;
  const Project original = p;
  Push_Undo(undo, p);
  Click(p, panel, 300, 0);
  Click(p, panel, 300, 100);
  ASSERT_EQ(Polygon_Node_Count(panel), 2);
  ASSERT_TRUE(Undo(undo, p, panel));
  EXPECT_EQ(p, original);
  EXPECT_EQ(Polygon_Node_Count(panel), 0);
  EXPECT_EQ(panel.Polygon_Added, 0);
  for (int k = 1; k <= 3; ++k) {
    Push_Undo(undo, p);
    Add_Node(p, 1000.0 * k, 0);
  }
  EXPECT_TRUE(Undo(undo, p, panel));
  EXPECT_TRUE(Undo(undo, p, panel));
  EXPECT_FALSE(Undo(undo, p, panel));  // the first of three fell off
  EXPECT_EQ(Node_Count(p), 7);
}

}  // namespace
}  // namespace pvx
