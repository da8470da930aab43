// Which quantity each graph of the run window draws, and in which unit its scale is shown.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "app/run_window.h"
#include "app/units.h"

namespace pvx {
namespace {

// The unit between the brackets of a title ("Temperature [oC]" gives "oC").
std::string Bracketed(const std::string& title) {
  const auto open = title.find('['), close = title.find(']');
  return title.substr(open + 1, close - open - 1);
}

TEST(Run_Window_Graphs, EachGraphDrawsItsRowOfTheExtremeTable) {
  const int expected[Diagnostic_Graph_Count] = {1, 2, 3, 4, 5, 6, 7, 8, 11, 12, 13, 14, 15};
  for (int g = 0; g < Diagnostic_Graph_Count; ++g)
    EXPECT_EQ(Diagnostic_Graph_Variable(g), expected[g]) << g;
  EXPECT_EQ(Diagnostic_Graph_Variable(-1), 0);
  EXPECT_EQ(Diagnostic_Graph_Variable(13), 0);
}

TEST(Run_Window_Graphs, TheImperialUnitOfAScaleIsTheOneItsTitleNames) {
  // Every graph with a unit kind shows, in both systems, the unit that its title names; the
  // capacity (kWatt, BtuIT/s) is the exception checked by its factor below.
  for (int g = 0; g < Diagnostic_Graph_Count; ++g) {
    const int kind = Diagnostic_Graph_Unit_Kind(g);
    if (kind == 0 || g == 7) continue;
    EXPECT_EQ(Bracketed(Diagnostic_Graph_Title(g, true)), Unit_Name(kind, true)) << g;
    EXPECT_EQ(Bracketed(Diagnostic_Graph_Title(g, false)), Unit_Name(kind, false)) << g;
  }
  // Quantities without an imperial unit keep the same title in both systems.
  for (int g : {1, 2, 3}) {
    EXPECT_EQ(Diagnostic_Graph_Unit_Kind(g), 0);
    EXPECT_STREQ(Diagnostic_Graph_Title(g, true), Diagnostic_Graph_Title(g, false));
  }
  // 1 kW is 1 kJ/s = 0.9478171 Btu/s (1 Btu = 1.05505585 kJ); 20 oC is 68 oF; 100 mm is 3.937 in.
  EXPECT_NEAR(Convert_Unit(true, Diagnostic_Graph_Unit_Kind(7), 1.0), 0.9478171, 1e-7);
  EXPECT_DOUBLE_EQ(Convert_Unit(true, Diagnostic_Graph_Unit_Kind(0), 20.0), 68.0);
  EXPECT_DOUBLE_EQ(Convert_Unit(true, Diagnostic_Graph_Unit_Kind(8), 100.0), 3.937);
  EXPECT_EQ(Diagnostic_Graph_Unit_Kind(99), 0);
}

}  // namespace
}  // namespace pvx
