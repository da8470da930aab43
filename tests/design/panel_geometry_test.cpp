// Snapping, nearest node, macro and side picking of the design panel on small models worked by hand.
#include <gtest/gtest.h>

#include <cmath>

#include "design/panel_edit.h"
#include "design/panel_pick.h"
#include "panel_fixtures.h"

namespace pvx {
namespace {

using test::Plain_Project;
using test::Point_At;
using test::Two_Squares;

TEST(Panel_Modes, Words_Captions_And_Buttons_Agree) {
  Design_Panel panel;
  EXPECT_EQ(panel.Mode, Design_Mode::Free);
  EXPECT_STREQ(Mode_Panel_Caption(Design_Mode::Free), "No mode");
  EXPECT_STREQ(Mode_Button_Caption(Design_Mode::Free), "Out of plane");
  EXPECT_STREQ(Mode_Word(Design_Mode::BorderT), "BorderT");
  EXPECT_STREQ(Mode_Button_Caption(Design_Mode::BorderT), "Convection and Radiation");
  EXPECT_STREQ(Mode_Panel_Caption(Design_Mode::Point_T), "Mode prescribed temperatures in points");
  EXPECT_STREQ(Mode_Button_Caption(Design_Mode::BorderH), "Transfer/ pressure");
  int distinct_words = 0;
  for (int i = 0; i < Design_Mode_Count; ++i) {
    Design_Mode found = Design_Mode::Free;
    ASSERT_TRUE(Find_Mode(Mode_Word(Mode_Of_Button(i)), found)) << i;
    EXPECT_EQ(found, Mode_Of_Button(i));
    distinct_words += found == Mode_Of_Button(i);
  }
  EXPECT_EQ(distinct_words, 15);
  Design_Mode mode = Design_Mode::Nodes;
  EXPECT_FALSE(Find_Mode("nodes", mode));  // words are exact
}

TEST(Snap_Position, Snap_Size_Then_Tenth_Of_A_Millimetre) {
  Design_Panel panel;
  Project p = Plain_Project(panel);
  Point_At(p, panel, 1234.56, -47);
  EXPECT_EQ(panel.Mouse_X, 1230);
  EXPECT_EQ(panel.Mouse_Y, -50);
  EXPECT_EQ(panel.Snap_X, 1230);
  EXPECT_EQ(panel.Snap_Y, -50);
  // 1.13 / 0.25 = 4.52 -> 5 -> 1.25; 2.37 / 0.25 = 9.48 -> 9 -> 2.25; then tenths, halves to even.
  p.Snap_Size = 0.25;
  Point_At(p, panel, 1.13, 2.37);
  EXPECT_DOUBLE_EQ(panel.Mouse_X, 1.25);
  EXPECT_DOUBLE_EQ(panel.Mouse_Y, 2.25);
  EXPECT_DOUBLE_EQ(panel.Snap_X, 1.2);
  EXPECT_DOUBLE_EQ(panel.Snap_Y, 2.2);
  // The grid is ignored while "Snap on Grid" is off.
  p.Snap_Size = 10;
  p.Rect_Grid_Snap = True_Flag;
  p.Grid_X_Increment = p.Grid_Y_Increment = 100;
  Point_At(p, panel, 149, 251);
  EXPECT_EQ(panel.Snap_X, 150);
  EXPECT_EQ(panel.Snap_Y, 250);
}

TEST(Snap_Position, Rectangular_Grid_Rounds_Halves_To_Even) {
  Design_Panel panel;
  Project p = Plain_Project(panel);
  p.Snap_Mode = 1;
  p.Rect_Grid_Snap = True_Flag;
  p.Circ_Grid_Snap = True_Flag;  // the rectangular grid goes first
  p.Grid_X_Increment = 100;
  p.Grid_Y_Increment = 40;
  // (149, 251) -> snap size (150, 250) -> 1.5 and 6.25 increments -> 2 and 6 -> (200, 240).
  Point_At(p, panel, 149, 251);
  EXPECT_EQ(panel.Mouse_X, 150);
  EXPECT_EQ(panel.Mouse_Y, 250);
  EXPECT_EQ(panel.Snap_X, 200);
  EXPECT_EQ(panel.Snap_Y, 240);
  // 250 / 100 = 2.5 -> 2; -61 -> -60 -> -1.5 increments -> -2 -> -80.
  Point_At(p, panel, 251, -61);
  EXPECT_EQ(panel.Snap_X, 200);
  EXPECT_EQ(panel.Snap_Y, -80);
  // An increment that is no multiple of the snap size: 37 -> 40 -> 1.08 x 37 -> 37 -> 40.
  p.Grid_X_Increment = 37;
  Point_At(p, panel, 37, 0);
  EXPECT_EQ(panel.Snap_X, 40);
}

TEST(Snap_Position, Circular_Grid_Takes_The_Nearest_Point_Of_Either_Circle) {
  Design_Panel panel;
  Project p = Plain_Project(panel);
  p.Snap_Size = 1;
  p.Snap_Mode = 1;
  p.Rect_Grid_Snap = False_Flag;
  p.Circ_Grid_Snap = True_Flag;
  p.Circ_X_Center = 100;
  p.Circ_Y_Center = 200;
  p.Circ_Outer_Radius = 1000;
  p.Circ_Inner_Radius = 500;
  p.Circ_Start_Angle = 0;
  p.Circ_End_Angle = 90;
  p.Circ_Angle_Increment = 15;
  const double deg = 3.14159265358979 / 180;
  // At 28 degrees and radius 980: the outer point at 30 degrees, (100 + 866.03, 200 + 500).
  Point_At(p, panel, 100 + 980 * std::cos(28 * deg), 200 + 980 * std::sin(28 * deg));
  EXPECT_EQ(panel.Snap_X, 966);
  EXPECT_EQ(panel.Snap_Y, 700);
  // At 47 degrees and radius 520: the inner point at 45 degrees, 353.55 from the centre each way.
  Point_At(p, panel, 100 + 520 * std::cos(47 * deg), 200 + 520 * std::sin(47 * deg));
  EXPECT_EQ(panel.Snap_X, 454);
  EXPECT_EQ(panel.Snap_Y, 554);
  // Far below the centre: the nearest is the start point of the inner circle, (600, 200).
  Point_At(p, panel, 600, -3000);
  EXPECT_EQ(panel.Snap_X, 600);
  EXPECT_EQ(panel.Snap_Y, 200);
  // An end angle between steps: n = round(100 / 15) = 7 points up to 105 degrees.
  p.Circ_End_Angle = 100;
  Point_At(p, panel, 100 + 1000 * std::cos(106 * deg), 200 + 1000 * std::sin(106 * deg));
  EXPECT_EQ(panel.Snap_X, std::nearbyint(100 + 1000 * std::cos(105 * deg)));
  EXPECT_EQ(panel.Snap_Y, std::nearbyint(200 + 1000 * std::sin(105 * deg)));
}

TEST(Position_Label, Two_Decimals_In_Display_Units) {
  Design_Panel panel;
  Project p = Plain_Project(panel);
  EXPECT_EQ(Position_Label(p, 1234.5), "1234.50");
  EXPECT_EQ(Position_Label(p, -0.25), "-0.25");
  p.Metric_Units = False_Flag;
  EXPECT_EQ(Position_Label(p, 254), "10.00");  // 254 mm is 10 inches
}

TEST(Closest_Node, Nearest_First_On_Equal_Distance_And_None) {
  Design_Panel panel;
  Project p = Plain_Project(panel);
  Point_At(p, panel, 10, 0);
  Closest_Node(p, panel);
  EXPECT_EQ(panel.Closest_Node_Number, 0);
  Add_Node(p, 0, 0);
  Add_Node(p, 20, 0);
  Closest_Node(p, panel);
  EXPECT_EQ(panel.Closest_Node_Number, 1);  // both 10 mm away
  Point_At(p, panel, 20, 10);
  Closest_Node(p, panel);
  EXPECT_EQ(panel.Closest_Node_Number, 2);
  // The raw position counts when asked for: the snapped one is 0, the raw one 20 (rounded to 10).
  p.Snap_Mode = 1;
  p.Rect_Grid_Snap = True_Flag;
  p.Grid_X_Increment = p.Grid_Y_Increment = 100;
  Point_At(p, panel, 19, 0);
  Closest_Node(p, panel);
  EXPECT_EQ(panel.Closest_Node_Number, 1);
  panel.Use_Raw_Position = true;
  Closest_Node(p, panel);
  EXPECT_EQ(panel.Closest_Node_Number, 2);
}

TEST(Node_Selected, Within_The_Mouse_Radius_In_Pixels_On_Both_Axes) {
  Design_Panel panel;
  Project p = Plain_Project(panel);
  p.Snap_Size = 0.1;
  Add_Node(p, 100, 100);
  panel.Screen_Scale = 0.5;  // 3 pixels are 6 mm
  Point_At(p, panel, 106, 94);
  Closest_Node(p, panel);
  EXPECT_TRUE(Node_Selected(p, panel));
  Point_At(p, panel, 106.2, 100);
  Closest_Node(p, panel);
  EXPECT_FALSE(Node_Selected(p, panel));
}

TEST(Macro_Selected, Inside_Outside_And_The_First_Of_Overlapping) {
  Design_Panel panel;
  Project p = Two_Squares(panel);
  EXPECT_EQ(Macro_At(p, 50, 50), 1);
  EXPECT_EQ(Macro_At(p, 150, 99), 2);
  EXPECT_EQ(Macro_At(p, 250, 50), 0);
  EXPECT_EQ(Macro_At(p, 50, -1), 0);
  // A concave quadrilateral (an arrow head): its notch is outside.
  Add_Node(p, 300, 0);
  Add_Node(p, 400, 50);
  Add_Node(p, 300, 100);
  Add_Node(p, 350, 50);
  p.Macro.add(test::Quad(7, 8, 9, 10));
  EXPECT_EQ(Macro_At(p, 320, 50), 0);
  EXPECT_EQ(Macro_At(p, 370, 50), 3);
  Point_At(p, panel, 150, 50);
  EXPECT_TRUE(Macro_Selected(p, panel));
  EXPECT_EQ(p.Current_Macro, 2);
}

TEST(Side_Picking, Across_Tolerance_In_Pixels_And_Half_Open_Along) {
  // Across: 5.9 mm at 0.5 pixel per mm is 2.95 pixels, within 3; 6 mm is 3 pixels, not below.
  EXPECT_TRUE(Side_Hit(0, 0, 100, 0, 50, 5.9, 0.5, 3));
  EXPECT_FALSE(Side_Hit(0, 0, 100, 0, 50, 6, 0.5, 3));
  EXPECT_TRUE(Side_Hit(0, 0, 100, 0, 50, -5.9, 0.5, 3));
  // Along: the start is on the side, the end is not.
  EXPECT_TRUE(Side_Hit(0, 0, 100, 0, 0, 0, 0.5, 3));
  EXPECT_FALSE(Side_Hit(0, 0, 100, 0, 100, 0, 0.5, 3));
  EXPECT_FALSE(Side_Hit(0, 0, 100, 0, -0.1, 0, 0.5, 3));
  // A slanted side: (30, 40) is 50 along (0, 0)-(60, 80); (34, 37) is 5 across it.
  EXPECT_TRUE(Side_Hit(0, 0, 60, 80, 34, 37, 0.5, 3));
  EXPECT_FALSE(Side_Hit(0, 0, 60, 80, 34, 37, 0.7, 3));
  // A side of no length is never hit.
  EXPECT_FALSE(Side_Hit(5, 5, 5, 5, 5, 5, 1, 3));
}

TEST(Side_Picking, A_Corner_Belongs_To_The_Side_That_Starts_There) {
  Design_Panel panel;
  Project p = Two_Squares(panel);
  Macro_Side side;
  Point_At(p, panel, 0, 0);
  ASSERT_TRUE(Find_Macro_Side(p, panel, side));
  EXPECT_EQ(side.Macro, 1);
  EXPECT_EQ(side.Side, 1);       // side 4 ends at corner 1
  Point_At(p, panel, 100, 100);  // corner 3 of macro 1: side 3 starts there
  ASSERT_TRUE(Find_Macro_Side(p, panel, side));
  EXPECT_EQ(side.Macro, 1);
  EXPECT_EQ(side.Side, 3);
  EXPECT_EQ(side.Node_A, 3);
  EXPECT_EQ(side.Node_B, 4);
  Point_At(p, panel, 200, 100);  // corner 3 of macro 2
  ASSERT_TRUE(Find_Macro_Side(p, panel, side));
  EXPECT_EQ(side.Macro, 2);
  EXPECT_EQ(side.Side, 3);
  Point_At(p, panel, 200, 50);
  ASSERT_TRUE(Find_Macro_Side(p, panel, side));
  EXPECT_EQ(side.Side, 2);
  Point_At(p, panel, 250, 50);
  EXPECT_FALSE(Find_Macro_Side(p, panel, side));
}

TEST(Border_Selected, Existing_Border_First_Else_A_New_One_On_The_Side) {
  Design_Panel panel;
  Project p = Two_Squares(panel);
  p.Mesh_Valid = True_Flag;
  panel.Mode = Design_Mode::BorderT;
  Point_At(p, panel, 50, 0);
  ASSERT_TRUE(Border_Selected(p, panel));
  ASSERT_EQ(p.Border.count(), 1);
  EXPECT_EQ(p.Border[1].Node_A, 1);
  EXPECT_EQ(p.Border[1].Node_B, 2);
  EXPECT_NE(p.Border[1].Thermal_Active, 0);
  EXPECT_EQ(p.Border[1].Hygral_Active, 0);
  EXPECT_EQ(p.Border[1].Thermal_Periods.count(), 1);
  EXPECT_EQ(p.Border[1].Thermal_Periods[1].Temperature_Function, 1);
  EXPECT_EQ(p.Mesh_Valid, False_Flag);
  panel.Mode = Design_Mode::BorderH;
  Point_At(p, panel, 200, 50);
  ASSERT_TRUE(Border_Selected(p, panel));
  ASSERT_EQ(p.Border.count(), 2);
  EXPECT_EQ(p.Border[2].Node_A, 5);
  EXPECT_EQ(p.Border[2].Node_B, 6);
  EXPECT_NE(p.Border[2].Hygral_Active, 0);
  EXPECT_EQ(p.Current_Border, 2);
  // The first side again: the border that is there, no second one.
  Point_At(p, panel, 60, 0);
  ASSERT_TRUE(Border_Selected(p, panel));
  EXPECT_EQ(p.Border.count(), 2);
  EXPECT_EQ(p.Current_Border, 1);
  Point_At(p, panel, 50, 50);
  EXPECT_FALSE(Border_Selected(p, panel));
  EXPECT_EQ(p.Border.count(), 2);
}

TEST(Prescribed_Border_Selected, Mats_Once_Per_Side_Supports_And_Loads_Always) {
  Design_Panel panel;
  Project p = Two_Squares(panel);
  panel.Mode = Design_Mode::Line_T;
  p.Line_T.add(Line_T{0, 500, 1, 2, 1});  // on side 1 of macro 1, against its direction
  Point_At(p, panel, 50, 0);
  ASSERT_TRUE(Prescribed_Border_Selected(p, panel));
  EXPECT_EQ(p.Line_T.count(), 1);
  EXPECT_EQ(panel.Current_Line_T, 1);
  Point_At(p, panel, 0, 50);
  ASSERT_TRUE(Prescribed_Border_Selected(p, panel));
  ASSERT_EQ(p.Line_T.count(), 2);
  EXPECT_EQ(p.Line_T[2].Node_A, 4);
  EXPECT_EQ(p.Line_T[2].Node_B, 1);
  EXPECT_EQ(p.Line_T[2].Until, 1000);
  panel.Mode = Design_Mode::Support_L;
  Point_At(p, panel, 50, 0);
  ASSERT_TRUE(Prescribed_Border_Selected(p, panel));
  ASSERT_TRUE(Prescribed_Border_Selected(p, panel));
  EXPECT_EQ(p.Line_Support.count(), 2);
  EXPECT_EQ(p.Line_Support[2].Angle, -90);
  EXPECT_EQ(panel.Current_Line_Support, 2);
  panel.Mode = Design_Mode::Load_L;
  ASSERT_TRUE(Prescribed_Border_Selected(p, panel));
  EXPECT_EQ(p.Line_Load.count(), 1);
  EXPECT_EQ(p.Line_Load[1].Node_A, 1);
  // The existing ones of the mode under the pointer.
  panel.Mode = Design_Mode::Support_L;
  ASSERT_TRUE(Prescribed_Border_Selected_E(p, panel));
  EXPECT_EQ(panel.Selection_List.count(), 2);
}

TEST(Interface_Selected, Only_Shared_Sides_With_Nodes_Ordered_By_X_Then_Y) {
  Design_Panel panel;
  Project p = test::Plain_Project(panel);
  // Macro 1 = 1-3-2-4 runs its shared side from 3 (100, 0) up to 2 (100, 100): of equal X, the
  // interface starts at the lower end, 3.
  for (auto [x, y] :
       {std::pair{0.0, 0.0}, {100.0, 100.0}, {100.0, 0.0}, {0.0, 100.0}, {200.0, 0.0}, {200.0, 100.0}})
    Add_Node(p, x, y);
  p.Macro.add(test::Quad(1, 3, 2, 4));
  p.Macro.add(test::Quad(3, 5, 6, 2));
  Material plain, layer;
  plain.Name = "C30";
  layer.Name = "Joint";
  layer.Is_Interface = true;
  p.Material.add(plain);
  p.Material.add(layer);
  panel.Mode = Design_Mode::Interfaces;
  Point_At(p, panel, 50, 0);
  EXPECT_FALSE(Interface_Selected(p, panel));  // an outer side
  Point_At(p, panel, 100, 50);
  ASSERT_TRUE(Interface_Selected(p, panel));
  ASSERT_EQ(p.Interface.count(), 1);
  EXPECT_EQ(p.Interface[1].Node_A, 3);
  EXPECT_EQ(p.Interface[1].Node_B, 2);
  EXPECT_EQ(p.Interface[1].Layer_Material, "Joint");
  ASSERT_TRUE(Interface_Selected(p, panel));
  EXPECT_EQ(p.Interface.count(), 1);
  // A horizontal shared side run from right to left in the first macro: Node_A is the left end.
  Add_Node(p, 0, 200);                  // 7
  Add_Node(p, 100, 200);                // 8
  p.Macro.add(test::Quad(4, 2, 8, 7));  // its side 1 (4 -> 2) is side 3 of macro 1 (2 -> 4)
  p.Interface[1].Layer_Material = "Kept";
  Point_At(p, panel, 50, 100);
  ASSERT_TRUE(Interface_Selected(p, panel));
  ASSERT_EQ(p.Interface.count(), 2);
  EXPECT_EQ(p.Interface[2].Node_A, 4);
  EXPECT_EQ(p.Interface[2].Node_B, 2);
  EXPECT_EQ(p.Interface[2].Layer_Material, "Kept");  // a copy of the last entry
  EXPECT_EQ(panel.Current_Interface, 2);
}

TEST(Point_Objects, Collected_Within_The_Radius_And_The_Last_Is_Current) {
  Design_Panel panel;
  Project p = Plain_Project(panel);
  p.Snap_Size = 1;
  panel.Mode = Design_Mode::Support_P;
  for (double x : {100.0, 102.0, 110.0}) {
    Point_At(p, panel, x, 50);
    Add_Point_Object(p, panel);
  }
  EXPECT_EQ(p.Point_Support[2].X, 102);
  EXPECT_EQ(p.Point_Support[2].Angle, -90);
  Point_At(p, panel, 101, 52);
  ASSERT_TRUE(Prescribed_Node_Selected_E(p, panel));
  ASSERT_EQ(panel.Selection_List.count(), 2);
  EXPECT_EQ(panel.Selection_List[1], 1);
  EXPECT_EQ(panel.Selection_List[2], 2);
  EXPECT_EQ(panel.Current_Point_Support, 2);
  Point_At(p, panel, 101, 54);  // 4 pixels off in Y
  EXPECT_FALSE(Prescribed_Node_Selected_E(p, panel));
  panel.Mode = Design_Mode::Area_T;
  Add_Area(p, panel, 300, 200, 100, 0);
  EXPECT_EQ(p.Area_T[1].X1, 100);
  EXPECT_EQ(p.Area_T[1].Y2, 200);
  Point_At(p, panel, 150, 150);
  EXPECT_TRUE(Prescribed_Area_Selected_E(p, panel));
  Point_At(p, panel, 304, 150);
  EXPECT_FALSE(Prescribed_Area_Selected_E(p, panel));
}

TEST(Add_Bar, Length_Direction_And_The_Zero_Length_Bar) {
  Design_Panel panel;
  Project p = Plain_Project(panel);
  Add_Bar(p, 0, 0, 30, 40);
  EXPECT_DOUBLE_EQ(p.Rebar[1].Length, 50);
  EXPECT_DOUBLE_EQ(p.Rebar[1].Direction_Cos, 0.6);
  EXPECT_DOUBLE_EQ(p.Rebar[1].Direction_Sin, 0.8);
  p.Rebar[1].Diameter = 25;
  Add_Bar(p, 10, 10, 10, 10);
  EXPECT_EQ(p.Rebar[2].Length, 100);
  EXPECT_EQ(p.Rebar[2].Direction_Cos, 1);
  EXPECT_EQ(p.Rebar[2].Direction_Sin, 0);
  EXPECT_EQ(p.Rebar[2].Diameter, 25);  // a bar starts as its predecessor
  Point_At(p, panel, 20, 30);          // 36 mm along the first bar, 2 mm across
  EXPECT_TRUE(Macro_Bar_Selected(p, panel));
  EXPECT_EQ(p.Current_Rebar, 1);
}

}  // namespace
}  // namespace pvx
