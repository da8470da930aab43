#include "app/run_window.h"

#include <gtest/gtest.h>

#include "app/units.h"

namespace pvx {
namespace {

using Positions = std::array<int, Diagnostic_Graph_Count>;

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

TEST(Run_Window, EachGraphDrawsItsRowAndNamesTheUnitItsScaleShows) {
  const int variable[Diagnostic_Graph_Count] = {1, 2, 3, 4, 5, 6, 7, 8, 11, 12, 13, 14, 15};
  for (int g = 0; g < Diagnostic_Graph_Count; ++g) {
    SCOPED_TRACE(g);
    EXPECT_EQ(Diagnostic_Graph_Variable(g), variable[g]);
    const int kind = Diagnostic_Graph_Unit_Kind(g);
    for (const bool metric : {true, false}) {
      const std::string title = Diagnostic_Graph_Title(g, metric);
      const auto open = title.find('['), close = title.find(']');
      ASSERT_NE(close, std::string::npos) << title;
      const std::string unit = title.substr(open + 1, close - open - 1);
      // The capacity in kWatt converts as kJ per second; quantities without an imperial unit keep
      // their title.
      if (g == 7)
        EXPECT_EQ(unit, metric ? "kWatt" : "BtuIT/s");
      else if (kind == 0)
        EXPECT_EQ(title, Diagnostic_Graph_Title(g, !metric));
      else
        EXPECT_EQ(unit, Unit_Name(kind, metric));
    }
  }
  for (const int g : {-1, 13}) {
    EXPECT_EQ(Diagnostic_Graph_Variable(g), 0);
    EXPECT_STREQ(Diagnostic_Graph_Title(g, true), "");
  }
  // 1 kW = 1 kJ/s = 0.9478171 Btu/s.
  EXPECT_NEAR(Convert_Unit(true, Diagnostic_Graph_Unit_Kind(7), 1.0), 0.9478171, 1e-7);
}

TEST(Run_Window, GraphsTakeTheFreePositionsInTheirOrder) {
  struct Case {
    std::vector<int> check1, check3;
    Positions positions;
  };
  const Case cases[] = {
      {{}, {}, {-1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1}},
      // Five field graphs, then mechanical ones until the counter stands at 7.
      {{0, 1, 2, 3, 4}, {0, 1, 2, 3, 4}, {0, 1, 2, 3, 4, -1, -1, -1, 5, 6, -1, -1, -1}},
      // With cooling the mechanical graphs stop at 4 and the cooling graphs follow.
      {{0, 1, 2, 3, 4, 5}, {0, 1, 2, 3, 4}, {0, 1, 2, 3, 4, 5, 6, 7, -1, -1, -1, -1, -1}},
      {{0}, {0, 1, 2, 3, 4}, {0, -1, -1, -1, -1, -1, -1, -1, 1, 2, 3, 4, 5}},
      {{0, 5}, {0, 1, 2, 3, 4}, {0, -1, -1, -1, -1, 4, 5, 6, 1, 2, 3, -1, -1}},
      {{3}, {4}, {-1, -1, -1, 0, -1, -1, -1, -1, -1, -1, -1, -1, 1}},
  };
  for (const Case& c : cases) {
    Scan_Options o;
    for (const int i : c.check1)
      o.Check1[static_cast<std::size_t>(i)] = true;
    for (const int i : c.check3)
      o.Check3[static_cast<std::size_t>(i)] = true;
    EXPECT_EQ(Place_Diagnostic_Graphs(o), c.positions) << c.check1.size() << " " << c.check3.size();
  }
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
  // At row 2 the time axis spans 2 hours; row 1 is the frame only.
  ASSERT_TRUE(Diagnostic_Curves(time, maximum, minimum, 2, 30, overall_min, top, bottom));
  ASSERT_EQ(top.size(), 2u);
  EXPECT_DOUBLE_EQ(top[1].x, 2200);
  EXPECT_FALSE(Diagnostic_Curves(time, maximum, minimum, 1, 30, overall_min, top, bottom));
  EXPECT_TRUE(top.empty() && bottom.empty());

  // A constant quantity: the minimum goes 0.01 below it, and the curve runs flat along the top.
  const std::vector<double> flat{0, 1, 1, 1};
  overall_min = 1;
  ASSERT_TRUE(Diagnostic_Curves(time, flat, flat, 3, 1, overall_min, top, bottom));
  EXPECT_DOUBLE_EQ(overall_min, 0.99);
  for (const Graph_Point& point : top)
    EXPECT_NEAR(point.y, 300, 1e-9);
}

}  // namespace
}  // namespace pvx
