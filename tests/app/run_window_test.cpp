#include "app/run_window.h"

#include <gtest/gtest.h>

namespace pvx {
namespace {

using Positions = std::array<int, Diagnostic_Graph_Count>;

Scan_Options Options(std::initializer_list<int> check1, std::initializer_list<int> check3) {
  Scan_Options o;
  for (int i : check1)
    o.Check1[static_cast<std::size_t>(i)] = true;
  for (int i : check3)
    o.Check3[static_cast<std::size_t>(i)] = true;
  return o;
}

TEST(Run_Window, TheButtonStartsAndThenStops) {
  Run_Button button;
  bool stop = false;
  EXPECT_TRUE(Press_Run_Button(button, stop));
  EXPECT_EQ(button.Caption, "Stop computations");
  EXPECT_FALSE(button.Mechanical_Switch_Enabled);
  EXPECT_FALSE(stop);
  EXPECT_FALSE(Press_Run_Button(button, stop));
  EXPECT_TRUE(stop);
  EXPECT_EQ(button.Caption, "Start computations");
  EXPECT_TRUE(button.Mechanical_Switch_Enabled);
}

TEST(Run_Window, TitlesInBothUnitSystems) {
  EXPECT_STREQ(Diagnostic_Graph_Title(0, true), "Temperature [oC]");
  EXPECT_STREQ(Diagnostic_Graph_Title(0, false), "Temperature [oF]");
  EXPECT_STREQ(Diagnostic_Graph_Title(2, false), "C-Maturity [oChours] ");
  EXPECT_STREQ(Diagnostic_Graph_Title(4, false), "Moisture Content [lb/yd3]");
  EXPECT_STREQ(Diagnostic_Graph_Title(7, false), "Capacity [BtuIT/s]");
  EXPECT_STREQ(Diagnostic_Graph_Title(8, true), "Displacements  Ux [mm]");
  EXPECT_STREQ(Diagnostic_Graph_Title(12, false), "Stresses Szz   [ksi]");
  EXPECT_STREQ(Diagnostic_Graph_Title(13, true), "");
}

TEST(Run_Window, GraphsTakeTheFreePositionsInTheirOrder) {
  // Nothing chosen: nothing shown.
  Positions none;
  none.fill(-1);
  EXPECT_EQ(Place_Diagnostic_Graphs(Scan_Options{}), none);

  // Everything without cooling: five field graphs, then mechanical until the counter stands at 7.
  EXPECT_EQ(Place_Diagnostic_Graphs(Options({0, 1, 2, 3, 4}, {0, 1, 2, 3, 4})),
            (Positions{0, 1, 2, 3, 4, -1, -1, -1, 5, 6, -1, -1, -1}));
  // With cooling the mechanical graphs give way entirely; the cooling graphs follow the field graphs.
  EXPECT_EQ(Place_Diagnostic_Graphs(Options({0, 1, 2, 3, 4, 5}, {0, 1, 2, 3, 4})),
            (Positions{0, 1, 2, 3, 4, 5, 6, 7, -1, -1, -1, -1, -1}));
  // A switched-off graph takes no position.
  EXPECT_EQ(Place_Diagnostic_Graphs(Options({0}, {0, 1, 2, 3, 4})),
            (Positions{0, -1, -1, -1, -1, -1, -1, -1, 1, 2, 3, 4, 5}));
  EXPECT_EQ(Place_Diagnostic_Graphs(Options({0, 5}, {0, 1, 2, 3, 4})),
            (Positions{0, -1, -1, -1, -1, 4, 5, 6, 1, 2, 3, -1, -1}));
  EXPECT_EQ(Place_Diagnostic_Graphs(Options({3}, {4})),
            (Positions{-1, -1, -1, 0, -1, -1, -1, -1, -1, -1, -1, -1, 1}));
}

TEST(Run_Window, CurvesScaleToTheLatestTimeAndTheOverallRange) {
  const std::vector<double> time{0, 0, 2, 4}, maximum{0, 10, 20, 30}, minimum{0, 0, 5, 10};
  std::vector<Graph_Point> top, bottom;
  double overall_min = 0;
  ASSERT_TRUE(Diagnostic_Curves(time, maximum, minimum, 3, 30, overall_min, top, bottom));
  ASSERT_EQ(top.size(), 3u);
  ASSERT_EQ(bottom.size(), 3u);
  // 2200 / 4 h horizontally, 1200 / 30 vertically from 1500 at the bottom.
  const double x[] = {0, 1100, 2200}, y_top[] = {1100, 700, 300}, y_bottom[] = {1500, 1300, 1100};
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_DOUBLE_EQ(top[i].x, x[i]);
    EXPECT_DOUBLE_EQ(bottom[i].x, x[i]);
    EXPECT_DOUBLE_EQ(top[i].y, y_top[i]);
    EXPECT_DOUBLE_EQ(bottom[i].y, y_bottom[i]);
  }
  // At row 2 the time axis spans only 2 hours.
  ASSERT_TRUE(Diagnostic_Curves(time, maximum, minimum, 2, 30, overall_min, top, bottom));
  ASSERT_EQ(top.size(), 2u);
  EXPECT_DOUBLE_EQ(top[1].x, 2200);

  // Row 1: the frame only.
  EXPECT_FALSE(Diagnostic_Curves(time, maximum, minimum, 1, 30, overall_min, top, bottom));
  EXPECT_TRUE(top.empty());
  EXPECT_TRUE(bottom.empty());
}

TEST(Run_Window, AConstantQuantityRunsFlat) {
  const std::vector<double> time{0, 0, 1, 2}, value{0, 1, 1, 1};
  std::vector<Graph_Point> top, bottom;
  double overall_min = 1;
  ASSERT_TRUE(Diagnostic_Curves(time, value, value, 3, 1, overall_min, top, bottom));
  EXPECT_DOUBLE_EQ(overall_min, 0.99);
  // 0.01 above the minimum of a 0.01 range: the top of the graph.
  for (const Graph_Point& point : top)
    EXPECT_NEAR(point.y, 300, 1e-9);
}

}  // namespace
}  // namespace pvx
