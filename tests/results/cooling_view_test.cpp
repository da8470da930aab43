// The cooling results of a circuit: its text file character by character, and its three graphs on
// the recording surface against positions and scale ends worked out by hand.
#include "results/cooling_view.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

#include "results/plot.h"
#include "support/cooling_family.h"
#include "support/recording_surface.h"

namespace pvx {
namespace {

using testing::Recording_Surface;

TEST(CircuitText, StationsThenCapacitiesInTheirColumnsStoredAsAFile) {
  const std::string expected =
      "Seleceted circuit : 2\r\n"
      "Water temperature in pipe section: 1\r\n  Hours    oC\r\n       0.5       10.00\r\n      12.3        "
      "9.50\r\n"
      "Water temperature in pipe section: 2\r\n  Hours    oC\r\n       0.5       11.25\r\n      12.3       "
      "10.00\r\n"
      "Water temperature in pipe section: 3\r\n  Hours    oC\r\n       0.5       12.50\r\n      12.3       "
      "10.75\r\n"
      "Cooling capacity requirement for a closed system\r\n  [Hours]    [kW]        \r\n"
      "      0.50       2.500\r\n     12.30      -0.750\r\n";
  EXPECT_EQ(Circuit_Data_Text(test::Two_Record_History(), 2), expected);
  test::Temp_Dir dir;  // a stored file is read back by the viewer's test
  std::string message;
  EXPECT_FALSE(Store_Circuit_Data(dir.file("none/c.txt"), test::Two_Record_History(), 2, message));
  EXPECT_EQ(message, "Error occured writing file  " + dir.file("none/c.txt"));
}

// 600 x 400 pixels at 15 twips a pixel: graphs of w = (9000 - 2300) / 3 = 2233 twips and
// h = 6000 - 1000 = 5000, the first from 700 to 2933 across and from 500 to 5500 down.
TEST(CircuitGraphs, FramedRasteredGraphsWithTheirCurvesAndScaleEnds) {
  Circuit_History idle, once;
  idle.History.add({0, 0, 0, {15, 15, 15}});
  idle.History.add({24, 0, 0, {15, 15, 15}});
  once.History.add({5, 1, 0.5f, {12, 13, 14}});
  // 12.5 oC = 54.5 oF, 9.5 oC = 49.1 oF; 2 m3/h = 2 / 0.764554857984 = 2.616 yd3/h; 2.5 kW =
  // 2.5 / 1.05505585262 = 2.3695 Btu/s. A flat zero flow scales 0 to 0.1, its capacity 0 to 0.01;
  // a single record has an hour of time axis and no line.
  const std::tuple<Circuit_History, bool, std::vector<std::string>, std::size_t> cases[] = {
      {test::Two_Record_History(),
       true,
       {"oC", "[m3/h]", "[kW]", "12.50", "9.50", "2.00", "2.500", "12.30"},
       4},
      {test::Two_Record_History(),
       false,
       {"oF", "[yd3/h]", "[BtuIT/s]", "54.50", "49.10", "2.62", "2.370"},
       4},
      {idle, true, {"0.10", "0.010", "15.10", "24.00"}, 4},
      {once, true, {"5.00", "6.00", "in", "out"}, 0}};
  for (const auto& [history, metric, labels, curves] : cases) {
    Recording_Surface s(600, 400);
    Plot_Circuit_Data(s, history, 2, metric);
    std::vector<std::string> texts;
    for (const auto& t : s.Texts)
      texts.push_back(t.Text);
    EXPECT_EQ(texts.front(), "Circuit 2");
    EXPECT_EQ(std::count(texts.begin(), texts.end(), "Time in hours"), 3);
    for (const std::string& t : labels)
      EXPECT_NE(std::find(texts.begin(), texts.end(), t), texts.end()) << t;
    EXPECT_EQ(std::count_if(s.Lines.begin(), s.Lines.end(), [](auto& l) { return l.Width == 2; }), curves);
    // A raster line every 600 twips: 3 across and 8 down in each graph.
    EXPECT_EQ(std::count_if(s.Lines.begin(), s.Lines.end(), [](auto& l) { return l.Colour.R == 200; }), 33);
  }
}

TEST(CircuitGraphs, TooSmallAPictureShowsOnlyItsTitle) {
  // 173 pixels give w = (2595 - 2300) / 3 = 98 twips, 174 give 103; 73 pixels leave 95 twips of
  // height, 74 leave 110.
  for (const auto& [width, height, drawn] :
       {std::tuple{173, 400, false}, {174, 400, true}, {600, 73, false}, {600, 74, true}}) {
    Recording_Surface s(width, height);
    Plot_Circuit_Data(s, test::Two_Record_History(), 1, true);
    EXPECT_EQ(!s.Lines.empty(), drawn) << width << " x " << height;
    EXPECT_EQ(s.Texts.size() > 1, drawn) << width << " x " << height;
  }
}

}  // namespace
}  // namespace pvx
