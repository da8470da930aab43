// Snapping and the grid settings, nearest node, macro and side picking of the design panel, and the
// objects placed on points and sides, on small models worked by hand.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <tuple>

#include "panel_fixtures.h"

namespace pvx {
namespace {

using namespace test;

TEST(Pointer, SnapsBySizeThenGridThenTenthsAndPicksNodesAndPointObjectsWithinTheRadiusInPixels) {
  Design_Panel panel;
  Project p = Plain_Project(panel);
  // The circular grid: centre (100, 200), radii 1000 and 500, 0 to 90 degrees by 15.
  std::tie(p.Circ_X_Center, p.Circ_Y_Center, p.Circ_Outer_Radius, p.Circ_Inner_Radius, p.Circ_Start_Angle,
           p.Circ_Angle_Increment) = std::tuple(100, 200, 1000, 500, 0, 15);
  const double deg = 3.14159265358979 / 180, n = NAN;
  auto x_at = [&](double r, double degrees) { return 100 + r * std::cos(degrees * deg); };
  auto y_at = [&](double r, double degrees) { return 200 + r * std::sin(degrees * deg); };
  // Snap size, snap on grid, rectangular and circular grid on, X and Y increments, end angle; the
  // pointer; the position rounded to the snap size (NAN: not checked) and the snapped one.
  // - 1.13 / 0.25 = 4.52 -> 5 -> 1.25; 2.37 / 0.25 = 9.48 -> 9 -> 2.25; then tenths, halves to even.
  // - The grid is ignored while "Snap on Grid" is off.
  // - (149, 251) -> (150, 250) -> 1.5 and 6.25 increments -> 2 and 6 -> (200, 240); 250 / 100 = 2.5
  //   -> 2; -61 -> -60 -> -1.5 increments -> -2 -> -80. The rectangular grid goes first.
  // - An increment that is no multiple of the snap size: 37 -> 40 -> 1.08 x 37 -> 37 -> 40.
  // - At 28 degrees and radius 980 the outer point at 30 degrees, (100 + 866.03, 200 + 500); at 47
  //   degrees and radius 520 the inner point at 45 degrees, 353.55 from the centre each way; far
  //   below the centre the start of the inner circle; with an end angle between steps
  //   round(100 / 15) = 7 steps go up to 105 degrees: (100 - 258.82, 200 + 965.93).
  // clang-format off
  const std::array<double, 13> rows[] = {
      {10, 0, 0, 0, 100, 100, 90, 1234.56, -47, 1230, -50, 1230, -50},
      {0.25, 0, 0, 0, 100, 100, 90, 1.13, 2.37, 1.25, 2.25, 1.2, 2.2},
      {10, 0, 1, 0, 100, 100, 90, 149, 251, 150, 250, 150, 250},
      {10, 1, 1, 1, 100, 40, 90, 149, 251, 150, 250, 200, 240},
      {10, 1, 1, 1, 100, 40, 90, 251, -61, 250, -60, 200, -80},
      {10, 1, 1, 0, 37, 40, 90, 37, 0, 40, 0, 40, 0},
      {1, 1, 0, 1, 100, 100, 90, x_at(980, 28), y_at(980, 28), n, n, 966, 700},
      {1, 1, 0, 1, 100, 100, 90, x_at(520, 47), y_at(520, 47), n, n, 454, 554},
      {1, 1, 0, 1, 100, 100, 90, 600, -3000, 600, -3000, 600, 200},
      {1, 1, 0, 1, 100, 100, 100, x_at(1000, 106), y_at(1000, 106), n, n, -159, 1166},
      {1, 0, 0, 1, 100, 100, 90, 600, -3000, 600, -3000, 600, -3000}};
  // clang-format on
  for (const auto& [snap, on_grid, rect, circ, gx, gy, end, x, y, mouse_x, mouse_y, snap_x, snap_y] : rows) {
    std::tie(p.Snap_Size, p.Grid_X_Increment, p.Grid_Y_Increment, p.Circ_End_Angle) =
        std::tie(snap, gx, gy, end);
    std::tie(p.Snap_Mode, p.Rect_Grid_Snap, p.Circ_Grid_Snap) =
        std::tuple(on_grid, As_Flag(rect), As_Flag(circ));
    Snap_Position(p, panel, x, y);
    SCOPED_TRACE(testing::Message() << x << ", " << y);
    EXPECT_TRUE(std::isnan(mouse_x) || (panel.Mouse_X == mouse_x && panel.Mouse_Y == mouse_y))
        << panel.Mouse_X << ", " << panel.Mouse_Y;
    EXPECT_NEAR(panel.Snap_X, snap_x, 1e-12);
    EXPECT_NEAR(panel.Snap_Y, snap_y, 1e-12);
  }

  // The nearest node, the first of equally near ones.
  p = Plain_Project(panel);
  auto closest = [&](double x, double y) {
    Snap_Position(p, panel, x, y);
    Closest_Node(p, panel);
    return panel.Closest_Node_Number;
  };
  EXPECT_EQ(closest(10, 0), 0);  // no nodes
  Add_Nodes(p, {{0, 0}, {20, 0}});
  EXPECT_EQ(closest(10, 0), 1);  // both 10 mm away
  EXPECT_EQ(closest(20, 10), 2);
  // The raw position counts when asked for: the snapped one is 0, the raw one 20 (rounded to 10).
  std::tie(p.Snap_Mode, p.Rect_Grid_Snap, p.Grid_X_Increment, p.Grid_Y_Increment) =
      std::tuple(1, True_Flag, 100, 100);
  EXPECT_EQ(closest(19, 0), 1);
  panel.Use_Raw_Position = true;
  EXPECT_EQ(closest(19, 0), 2);
  // 3 pixels are 6 mm at half a pixel per mm, on both axes.
  p = Plain_Project(panel, {{100, 100}});
  p.Snap_Size = 0.1;
  panel.Screen_Scale = 0.5;
  for (const auto& [x, y, selected] :
       {std::tuple{106.0, 94.0, true}, {106.2, 100.0, false}, {100.0, 93.8, false}}) {
    EXPECT_EQ(closest(x, y), 1);
    EXPECT_EQ(Node_Selected(p, panel), selected) << x << " " << y;
  }

  // Point objects are collected within the radius, the last one current; bars go by the side rule.
  p = Plain_Project(panel);
  p.Snap_Size = 1;
  panel.Mode = Design_Mode::Support_P;
  for (double x : {100.0, 102.0, 110.0}) {
    Snap_Position(p, panel, x, 50);
    Add_Point_Object(p, panel);
  }
  EXPECT_EQ(std::tuple(p.Point_Support[2].X, p.Point_Support[2].Angle), std::tuple(102.0, -90.0));
  Snap_Position(p, panel, 101, 52);
  ASSERT_TRUE(Prescribed_Node_Selected_E(p, panel));
  EXPECT_EQ(std::tuple(panel.Selection_List, panel.Current_Point_Support),
            std::tuple(Table<std::int16_t>{1, 2}, 2));
  Snap_Position(p, panel, 101, 54);  // 4 pixels off in Y
  EXPECT_FALSE(Prescribed_Node_Selected_E(p, panel));
  panel.Mode = Design_Mode::Area_T;
  Add_Area(p, panel, 300, 200, 100, 0);
  EXPECT_EQ(std::tuple(p.Area_T[1].X1, p.Area_T[1].Y1, p.Area_T[1].X2, p.Area_T[1].Y2),
            std::tuple(100, 0, 300, 200));
  for (const auto& [x, selected] : {std::pair{150.0, true}, {302.0, true}, {304.0, false}}) {
    Snap_Position(p, panel, x, 150);
    EXPECT_EQ(Prescribed_Area_Selected_E(p, panel), selected) << x;
  }
  // A bar: its length and direction, the one of no length 100 along X, a copy of its predecessor.
  Add_Bar(p, 0, 0, 30, 40);
  p.Rebar[1].Diameter = 25;
  Add_Bar(p, 10, 10, 10, 10);
  const Rebar &r1 = p.Rebar[1], &r2 = p.Rebar[2];
  EXPECT_EQ(std::tuple(r1.Length, r1.Direction_Cos, r1.Direction_Sin, r2.Length, r2.Direction_Cos,
                       r2.Direction_Sin, r2.Diameter),
            std::tuple(50.0, 0.6, 0.8, 100.0, 1.0, 0.0, 25.0));
  Snap_Position(p, panel, 20, 30);  // 36 mm along the first bar, 2 mm across
  EXPECT_TRUE(Macro_Bar_Selected(p, panel));
  EXPECT_EQ(p.Current_Rebar, 1);
}

TEST(Picking, MacrosInsideSidesHalfOpenWithinTheRadiusAndTheObjectsOnThem) {
  // A radius of 3 pixels. Across: 5.9 mm at 0.5 pixel per mm is 2.95 pixels, within 3; 6 mm is
  // 3 pixels, not below. Along: the start is on the side, the end is not. (30, 40) is 50 along
  // (0, 0)-(60, 80) and (34, 37) 5 across it. A side of no length is never hit.
  // clang-format off
  const std::array<double, 8> rows[] = {
      {0, 0, 100, 0, 50, 5.9, 0.5, 1}, {0, 0, 100, 0, 50, 6, 0.5, 0}, {0, 0, 100, 0, 50, -5.9, 0.5, 1},
      {0, 0, 100, 0, 0, 0, 0.5, 1}, {0, 0, 100, 0, 100, 0, 0.5, 0}, {0, 0, 100, 0, -0.1, 0, 0.5, 0},
      {0, 0, 60, 80, 34, 37, 0.5, 1}, {0, 0, 60, 80, 34, 37, 0.7, 0}, {5, 5, 5, 5, 5, 5, 1, 0}};
  // clang-format on
  for (const auto& [x1, y1, x2, y2, mx, my, scale, hit] : rows)
    EXPECT_EQ(Side_Hit(x1, y1, x2, y2, mx, my, scale, 3), hit != 0) << mx << " " << my;

  // A concave quadrilateral (an arrow head) beside the two squares: its notch is outside. Of
  // overlapping macros the first counts.
  Design_Panel panel;
  Project p = Two_Squares(panel);
  Add_Nodes(p, {{300, 0}, {400, 50}, {300, 100}, {350, 50}});
  Add_Macros(p, {{7, 8, 9, 10}});
  for (const auto& [x, y, macro] :
       {std::tuple{50, 50, 1}, {150, 99, 2}, {250, 50, 0}, {50, -1, 0}, {320, 50, 0}, {370, 50, 3}})
    EXPECT_EQ(Macro_At(p, x, y), macro) << x << " " << y;
  Snap_Position(p, panel, 150, 50);
  EXPECT_TRUE(Macro_Selected(p, panel));
  EXPECT_EQ(p.Current_Macro, 2);
  // A corner belongs to the side that starts there; between the squares and the arrow head there
  // is no side.
  // clang-format off
  for (const auto& [x, y, macro, side, a, b] : {std::array<int, 6>{0, 0, 1, 1, 1, 2}, {100, 100, 1, 3, 3, 4},
       {200, 100, 2, 3, 6, 3}, {200, 50, 2, 2, 5, 6}, {50, 100, 1, 3, 3, 4}, {250, 50, 0, 0, 0, 0}}) {
    // clang-format on
    Snap_Position(p, panel, x, y);
    Macro_Side found;
    EXPECT_EQ(Find_Macro_Side(p, panel, found), macro != 0) << x << " " << y;
    EXPECT_EQ(std::tuple(found.Macro, found.Side, found.Node_A, found.Node_B), std::tuple(macro, side, a, b));
  }

  p.Mesh_Valid = True_Flag;
  // A border made in a border mode is active in that mode; on a side that has one, that one is
  // taken.
  // clang-format off
  for (const auto& [mode, x, y, count, current] : {std::tuple{Design_Mode::BorderT, 50, 0, 1, 1},
       {Design_Mode::BorderH, 200, 50, 2, 2}, {Design_Mode::BorderH, 60, 0, 2, 1}}) {
    // clang-format on
    panel.Mode = mode;
    Snap_Position(p, panel, x, y);
    ASSERT_TRUE(Border_Selected(p, panel));
    EXPECT_EQ(std::tuple(p.Border.count(), p.Current_Border), std::tuple(count, current));
  }
  const Border &b1 = p.Border[1], &b2 = p.Border[2];
  EXPECT_EQ(std::tuple(b1.Node_A, b1.Node_B, b1.Thermal_Active, b1.Hygral_Active, b1.Thermal_Periods.count()),
            std::tuple(1, 2, True_Flag, False_Flag, 1));
  EXPECT_EQ(std::tuple(b2.Node_A, b2.Node_B, b2.Hygral_Active, p.Mesh_Valid),
            std::tuple(5, 6, True_Flag, False_Flag));

  // A heating mat on the side of the pointer in either direction is taken; a new one runs with
  // the side, until 1000 hours. Line supports and loads are added at every click.
  panel.Mode = Design_Mode::Line_T;
  p.Line_T.add(Line_T{0, 500, 1, 2, 1});
  Snap_Position(p, panel, 50, 0);
  ASSERT_TRUE(Prescribed_Border_Selected(p, panel));
  EXPECT_EQ(std::tuple(p.Line_T.count(), panel.Current_Line_T), std::tuple(1, 1));
  Snap_Position(p, panel, 0, 50);
  ASSERT_TRUE(Prescribed_Border_Selected(p, panel));
  ASSERT_EQ(p.Line_T.count(), 2);
  EXPECT_EQ(std::tuple(p.Line_T[2].Node_A, p.Line_T[2].Node_B, p.Line_T[2].Until), std::tuple(4, 1, 1000.0));
  Snap_Position(p, panel, 50, 0);
  for (Design_Mode mode : {Design_Mode::Support_L, Design_Mode::Support_L, Design_Mode::Load_L}) {
    panel.Mode = mode;
    ASSERT_TRUE(Prescribed_Border_Selected(p, panel));
  }
  EXPECT_EQ(std::tuple(p.Line_Support.count(), p.Line_Support[2].Angle, panel.Current_Line_Support),
            std::tuple(2, -90.0, 2));
  EXPECT_EQ(std::tuple(p.Line_Load.count(), p.Line_Load[1].Node_A), std::tuple(1, 1));
  panel.Mode = Design_Mode::Support_L;  // the existing ones of the mode under the pointer
  ASSERT_TRUE(Prescribed_Border_Selected_E(p, panel));
  EXPECT_EQ(panel.Selection_List.count(), 2);
}

TEST(Interface_Selected, OnlySharedSidesWithNodesOrderedByXThenY) {
  // Macro 1 = 1-3-2-4 runs its shared side from 3 (100, 0) up to 2 (100, 100): of equal X, the
  // interface starts at the lower end, 3. Macro 3's side 1 (4 -> 2) is side 3 of macro 1 (2 -> 4):
  // run from right to left in the first macro, it starts at the left end.
  Design_Panel panel;
  Project p = Plain_Project(
      panel, {{0, 0}, {100, 100}, {100, 0}, {0, 100}, {200, 0}, {200, 100}, {0, 200}, {100, 200}},
      {{1, 3, 2, 4}, {3, 5, 6, 2}, {4, 2, 8, 7}});
  p.Material.add({});
  p.Material.add({});
  std::tie(p.Material[1].Name, p.Material[2].Name, p.Material[2].Is_Interface) =
      std::tuple("C30", "Joint", true);
  panel.Mode = Design_Mode::Interfaces;
  Snap_Position(p, panel, 50, 0);
  EXPECT_FALSE(Interface_Selected(p, panel));  // an outer side
  Snap_Position(p, panel, 100, 50);
  ASSERT_TRUE(Interface_Selected(p, panel) && Interface_Selected(p, panel));
  ASSERT_EQ(p.Interface.count(), 1);
  EXPECT_EQ(std::tuple(p.Interface[1].Node_A, p.Interface[1].Node_B, p.Interface[1].Layer_Material),
            std::tuple(3, 2, "Joint"));
  p.Interface[1].Layer_Material = "Kept";
  Snap_Position(p, panel, 50, 100);
  ASSERT_TRUE(Interface_Selected(p, panel));
  ASSERT_EQ(p.Interface.count(), 2);
  // A copy of the last entry.
  EXPECT_EQ(std::tuple(p.Interface[2].Node_A, p.Interface[2].Node_B, p.Interface[2].Layer_Material,
                       panel.Current_Interface),
            std::tuple(4, 2, "Kept", 2));
}

TEST(Graf_Settings, EachCheckGivesItsMessageAndApplyWritesAllOrNothing) {
  Design_Panel panel;
  Project p = Plain_Project(panel);
  Set_Graphical_Defaults(p);  // X 0..2000 and Y 0..1500 by 100, radii 1000 and 750, 0..90 by 5
  Design_Display display;
  const Graf_Settings valid = Read_Graf_Settings(p, display);
  std::string message = "stale";
  EXPECT_TRUE(Check_Graf_Settings(valid, message) && message.empty());
  // 2000 / 1.9 = 1053 and 1500 / 1.4 = 1072 steps are too many.
  using G = Graf_Settings;
  // clang-format off
  const std::tuple<double G::*, double, const char*> faults[] = {
      {&G::Grid_X_Max, -1, "X_max < X_min"},         {&G::Grid_X_Increment, 0, "X_increment =< 0"},
      {&G::Grid_X_Increment, 1.9, "X_increment is te klein"}, {&G::Grid_Y_Min, 2000, "Y_max < Y_min"},
      {&G::Grid_Y_Increment, -5, "Y_increment =< 0"}, {&G::Grid_Y_Increment, 1.4, "Y_increment is te klein"},
      {&G::Circ_Outer_Radius, 0, "Outer radius =< 0"}, {&G::Circ_Inner_Radius, -1, "Inner radius =< 0"},
      {&G::Circ_End_Angle, -10, "Eindhoek < Starthoek"}, {&G::Circ_Angle_Increment, 0, "Increment =< 0"},
      {&G::Snap_Size, 0, "Snap grootte =< 0"},       {&G::Mouse_Radius, 0, "Aktiestraal van de muis =< 0"}};
  // clang-format on
  for (const auto& [member, value, expected] : faults) {
    Graf_Settings g = valid;
    g.*member = value;
    EXPECT_FALSE(Check_Graf_Settings(g, message)) << expected;
    EXPECT_EQ(message, expected);
  }
  // Exactly 1000 steps are still allowed; equal ends are a grid of one line.
  Graf_Settings edge = valid;
  std::tie(edge.Grid_X_Increment, edge.Grid_Y_Min, edge.Circ_End_Angle) =
      std::tuple(2, valid.Grid_Y_Max, valid.Circ_Start_Angle);
  EXPECT_TRUE(Check_Graf_Settings(edge, message)) << message;

  Graf_Settings g = valid;
  std::tie(g.Grid_X_Max, g.Mouse_Radius, g.Snap_Size) = std::tuple(5000, 6, 0);
  g.Circ_Grid_Snap = g.Snap_On_Grid = true;
  g.Display.Axes = false;
  const Project before = p;
  EXPECT_FALSE(Apply_Graf_Settings(g, p, display, message));
  EXPECT_TRUE(p == before && display.Axes);
  g.Snap_Size = 5;
  ASSERT_TRUE(Apply_Graf_Settings(g, p, display, message));
  EXPECT_EQ(std::tuple(p.Snap_Mode, display.Axes), std::tuple(1, false));
  EXPECT_EQ(Read_Graf_Settings(p, display), g);
}

}  // namespace
}  // namespace pvx
