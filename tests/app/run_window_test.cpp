#include "app/run_window.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "app/units.h"

namespace pvx {
namespace {

using Positions = std::array<int, Diagnostic_Graph_Count>;

TEST(Run_Window, EachGraphNamesTheUnitItsScaleShowsAndTheButtonLocksTheSwitch) {
  for (int g = 0; g < Diagnostic_Graph_Count; ++g) {
    SCOPED_TRACE(g);
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
  for (const int g : {-1, 13})
    EXPECT_EQ(std::pair(Diagnostic_Graph_Variable(g), std::string(Diagnostic_Graph_Title(g, true))),
              std::pair(0, std::string()));
  // 1 kW = 1 kJ/s = 0.9478171 Btu/s.
  EXPECT_NEAR(Convert_Unit(true, Diagnostic_Graph_Unit_Kind(7), 1.0), 0.9478171, 1e-7);

  // The button locks the mechanical switch while the run goes. Its captions, and the stop it asks
  // for, are walked through by the run window's own tests.
  Run_Button button;
  bool stop = false;
  EXPECT_TRUE(Press_Run_Button(button, stop));
  EXPECT_FALSE(button.Mechanical_Switch_Enabled || stop);
  EXPECT_FALSE(Press_Run_Button(button, stop));
  EXPECT_TRUE(button.Mechanical_Switch_Enabled && stop);
}

TEST(Run_Window, GraphsTakeTheFreePositionsInTheirOrder) {
  // The field and mechanical graphs ticked, the positions of the thirteen graphs.
  const std::tuple<std::vector<int>, std::vector<int>, Positions> cases[] = {
      {{}, {}, {-1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1}},
      // Five field graphs, then mechanical ones until the counter stands at 7.
      {{0, 1, 2, 3, 4}, {0, 1, 2, 3, 4}, {0, 1, 2, 3, 4, -1, -1, -1, 5, 6, -1, -1, -1}},
      // With cooling the mechanical graphs stop at 4 and the cooling graphs follow.
      {{0, 1, 2, 3, 4, 5}, {0, 1, 2, 3, 4}, {0, 1, 2, 3, 4, 5, 6, 7, -1, -1, -1, -1, -1}},
      {{0}, {0, 1, 2, 3, 4}, {0, -1, -1, -1, -1, -1, -1, -1, 1, 2, 3, 4, 5}},
      {{0, 5}, {0, 1, 2, 3, 4}, {0, -1, -1, -1, -1, 4, 5, 6, 1, 2, 3, -1, -1}},
      {{3}, {4}, {-1, -1, -1, 0, -1, -1, -1, -1, -1, -1, -1, -1, 1}},
  };
  for (const auto& [check1, check3, positions] : cases) {
    Scan_Options o;
    for (const int i : check1)
      o.Check1[static_cast<std::size_t>(i)] = true;
    for (const int i : check3)
      o.Check3[static_cast<std::size_t>(i)] = true;
    EXPECT_EQ(Place_Diagnostic_Graphs(o), positions) << check1.size() << " " << check3.size();
  }
}

TEST(Run_Window, CurvesScaleToTheLatestTimeAndTheOverallRange) {
  using V = std::vector<double>;
  const auto points = [](const std::vector<Graph_Point>& curve) {
    V xy;
    for (const Graph_Point& g : curve)
      xy.insert(xy.end(), {g.x, g.y});
    return xy;
  };
  const V time{0, 0, 2, 4}, maximum{0, 10, 20, 30}, minimum{0, 0, 5, 10};
  std::vector<Graph_Point> top, bottom;
  double overall_min = 0;
  // 2200 / 4 h horizontally, 1200 / 30 vertically from 1500 at the bottom.
  ASSERT_TRUE(Diagnostic_Curves(time, maximum, minimum, 3, 30, overall_min, top, bottom));
  EXPECT_THAT(points(top), testing::Pointwise(testing::DoubleEq(), V{0, 1100, 1100, 700, 2200, 300}));
  EXPECT_THAT(points(bottom), testing::Pointwise(testing::DoubleEq(), V{0, 1500, 1100, 1300, 2200, 1100}));
  // At row 2 the time axis spans 2 hours; row 1 is the frame only.
  ASSERT_TRUE(Diagnostic_Curves(time, maximum, minimum, 2, 30, overall_min, top, bottom));
  EXPECT_THAT(points(top), testing::Pointwise(testing::DoubleEq(), V{0, 1100, 2200, 700}));
  EXPECT_FALSE(Diagnostic_Curves(time, maximum, minimum, 1, 30, overall_min, top, bottom));
  EXPECT_TRUE(top.empty() && bottom.empty());

  // A constant quantity: the minimum goes 0.01 below it, and the curve runs flat along the top.
  const V flat{0, 1, 1, 1};
  overall_min = 1;
  ASSERT_TRUE(Diagnostic_Curves(time, flat, flat, 3, 1, overall_min, top, bottom));
  EXPECT_DOUBLE_EQ(overall_min, 0.99);
  EXPECT_THAT(points(top), testing::Pointwise(testing::DoubleNear(1e-9), V{0, 300, 1100, 300, 2200, 300}));
}

}  // namespace
}  // namespace pvx
