// The graphs of the line cut and of the history plots on the recording surface: every curve point
// against the picture formulas worked out by hand for small cases, the rubber line's start, and the
// typed axis limits that are taken or refused.
#include "results/cut_history_plot.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "support/recording_surface.h"

namespace pvx {
namespace {

using testing::Recorded_Line;
using testing::Recording_Surface;

TEST(Adjust_Cut_Start, TheStartFollowsThePointerAsTheDirectionSays) {
  // Pointer (30, 40) from a start at (0, 0): L = 50. At 45 degrees the start goes to
  // (30 - 50 cos 45, 40 + 50 sin 45) = (-5.35534, 75.35534): below left of the pointer on screen.
  struct Row {
    Cut_Direction direction;
    double x, y;
  };
  const Row rows[] = {
      {{Cut_Mode::Horizontally, 45}, 0, 40},
      {{Cut_Mode::Vertically, 45}, 30, 0},
      {{Cut_Mode::Arbitrarily, 45}, 0, 0},
      {{Cut_Mode::Fixed_Angle, 45}, -5.3553391, 75.3553391},
      {{Cut_Mode::Fixed_Angle, 0}, -20, 40},
      {{Cut_Mode::Fixed_Angle, 90}, 30, 90},
      {{Cut_Mode::Fixed_Angle, -30}, 30 - 25 * std::sqrt(3.0), 15},
  };
  for (const Row& r : rows) {
    double x = 0, y = 0;
    Adjust_Cut_Start(r.direction, 30, 40, x, y);
    EXPECT_NEAR(x, r.x, 1e-6) << static_cast<int>(r.direction.CutMode) << " " << r.direction.CutAngle;
    EXPECT_NEAR(y, r.y, 1e-6) << static_cast<int>(r.direction.CutMode) << " " << r.direction.CutAngle;
  }
  // At a fixed angle the line keeps its length and direction as the pointer moves on.
  double x = 100, y = 100;
  const Cut_Direction d{Cut_Mode::Fixed_Angle, 30};
  for (const auto& [px, py] : {std::array{140.0, 80.0}, {200.0, 10.0}, {90.0, 130.0}}) {
    const double before = std::hypot(px - x, py - y);
    Adjust_Cut_Start(d, px, py, x, y);
    EXPECT_NEAR(std::hypot(px - x, py - y), before, 1e-9);
    EXPECT_NEAR(std::atan2(y - py, px - x) * Degrees_Per_Radian, 30, 1e-6);
  }
}

// A cut of hand-made pieces: (fraction, value, strength) at both ends.
Line_Cut Cut_Of(int variable, std::vector<std::array<double, 6>> pieces, double length) {
  Line_Cut cut;
  cut.Variable = static_cast<std::int16_t>(variable);
  cut.CutLength = length;
  for (const auto& q : pieces) {
    Cut_Piece c, s;
    c.Fraction = s.Fraction = {{q[0], q[3]}};
    c.Value = {{q[1], q[4]}};
    s.Value = {{q[2], q[5]}};
    cut.CutPieces.add(c);
    cut.CutStrength.add(s);
  }
  return cut;
}

std::vector<Recorded_Line> Lines_In(const Recording_Surface& s, Plot_Colour colour, int width) {
  std::vector<Recorded_Line> out;
  for (const Recorded_Line& l : s.Lines)
    if (l.Colour == colour && l.Width == width) out.push_back(l);
  return out;
}

bool Has_Text(const Recording_Surface& s, const std::string& text) {
  return std::any_of(s.Texts.begin(), s.Texts.end(), [&](auto& t) { return t.Text == text; });
}

void Expect_Line(const Recorded_Line& l, std::array<double, 4> expected, const char* what) {
  EXPECT_NEAR(l.X1, expected[0], 1e-9) << what;
  EXPECT_NEAR(l.Y1, expected[1], 1e-9) << what;
  EXPECT_NEAR(l.X2, expected[2], 1e-9) << what;
  EXPECT_NEAR(l.Y2, expected[3], 1e-9) << what;
}

// Two pieces of Szz: fractions 0 .. 0.5 .. 0.75, values 1, 3, 3, -1, strength 2, 2, 2, 4, factor 1.5
// (3, 3, 3, 6). Extents: fractions 0 .. 0.75, values -1 .. 6. Picture X = 570 + 3600 D, Y = 1700 -
// 200 (V + 1) twips; the frame of 3570 x 2000 twips on 357 x 200 pixels is 0.1 pixel a twip, on
// 714 x 400 pixels 0.2.
TEST(Plot_Cut, PiecesStrengthAndLegendAtThePictureFormulas) {
  const Line_Cut cut = Cut_Of(15, {{0, 1, 2, 0.5, 3, 2}, {0.5, 3, 2, 0.75, -1, 4}}, 4000);
  for (const double k : {0.1, 0.2}) {
    Recording_Surface s(3570 * k, 2000 * k);
    const Cut_Plot plot = Plot_Cut(s, cut, {.Factor = 1.5}, true);
    EXPECT_EQ(s.Clears, 1);
    EXPECT_TRUE(plot.Settings_Taken);
    EXPECT_EQ(plot.Extents, (Cut_Extents{0, 0.75, -1, 6}));
    const auto red = Lines_In(s, Cut_Value_Colour, 2);
    const auto blue = Lines_In(s, Cut_Strength_Colour, 2);
    const auto green = Lines_In(s, Cut_Factor_Colour, 2);
    // Two pieces each, and the legend's line.
    ASSERT_EQ(red.size(), 3u);
    ASSERT_EQ(blue.size(), 3u);
    ASSERT_EQ(green.size(), 3u);
    EXPECT_EQ(plot.Pieces_Drawn, 2);
    EXPECT_EQ(plot.Strength_Pieces_Drawn, 4);
    Expect_Line(red[0], {570 * k, 1300 * k, 2370 * k, 900 * k}, "Szz 1");
    Expect_Line(red[1], {2370 * k, 900 * k, 3270 * k, 1700 * k}, "Szz 2");
    Expect_Line(blue[0], {570 * k, 1100 * k, 2370 * k, 1100 * k}, "ft 1");
    Expect_Line(blue[1], {2370 * k, 1100 * k, 3270 * k, 700 * k}, "ft 2");
    Expect_Line(green[0], {570 * k, 900 * k, 2370 * k, 900 * k}, "factor ft 1");
    Expect_Line(green[1], {2370 * k, 900 * k, 3270 * k, 300 * k}, "factor ft 2");
    for (const char* text : {"ft", "factor * ft", "stress", "Stresses Szz [MPa]", "Distance [m]", "-1.000",
                             "6.000", "0.000", "1.500", "3.000"})
      EXPECT_TRUE(Has_Text(s, text)) << text;
    // 0.75 of 4 m is 3 m.
    EXPECT_EQ(plot.Length_Label, "  3.000");
  }
  // In imperial units the distances are yards: 3 m = 3.281 yd.
  Recording_Surface s(357, 200);
  EXPECT_EQ(Plot_Cut(s, cut, {.Factor = 1.5}, false).Length_Label, "  3.281");
  EXPECT_TRUE(Has_Text(s, "Distance [yd]"));
  EXPECT_TRUE(Has_Text(s, "Stresses Szz [ksi]"));
}

TEST(Plot_Cut, OtherVariablesFixedAxesAndAnEmptyCut) {
  const std::vector<std::array<double, 6>> two = {{0, 1, 2, 0.5, 3, 2}, {0.5, 3, 2, 0.75, -1, 4}};
  // Temperature: the curve only, no legend. Values -1 .. 3: Y = 1700 - 350 (V + 1).
  {
    Recording_Surface s(357, 200);
    const Cut_Plot plot = Plot_Cut(s, Cut_Of(1, two, 4000), {.Factor = 1.5}, true);
    EXPECT_EQ(plot.Strength_Pieces_Drawn, 0);
    EXPECT_TRUE(Lines_In(s, Cut_Strength_Colour, 2).empty());
    EXPECT_FALSE(Has_Text(s, "stress"));
    EXPECT_TRUE(Has_Text(s, "Temperature [oC]"));
    const auto red = Lines_In(s, Cut_Value_Colour, 2);
    ASSERT_EQ(red.size(), 2u);
    Expect_Line(red[0], {57, 100, 237, 30}, "temperature 1");
  }
  // A fixed axis 0 .. 2 (Y = 1700 - 700 V) cuts the curve at the frame: piece 1 leaves the top at
  // V = 2, D = 0.25; piece 2 comes in at V = 2, D = 0.5625, and leaves the bottom at V = 0, D =
  // 0.6875.
  {
    Recording_Surface s(357, 200);
    const Cut_Plot plot =
        Plot_Cut(s, Cut_Of(1, two, 4000), {.Fixed = true, .Minimum = 0, .Maximum = 2}, true);
    const auto red = Lines_In(s, Cut_Value_Colour, 2);
    ASSERT_EQ(red.size(), 2u);
    Expect_Line(red[0], {57, 100, 147, 30}, "clipped 1");
    Expect_Line(red[1], {259.5, 30, 304.5, 170}, "clipped 2");
    EXPECT_TRUE(plot.Settings_Taken);
  }
  // A maximum below the minimum is refused: the curves keep their own extents.
  {
    Recording_Surface s(357, 200);
    const Cut_Plot plot =
        Plot_Cut(s, Cut_Of(1, two, 4000), {.Fixed = true, .Minimum = 2, .Maximum = 0}, true);
    EXPECT_FALSE(plot.Settings_Taken);
    EXPECT_EQ(plot.Message, "Maximum < Minimum");
    EXPECT_EQ(plot.Extents, (Cut_Extents{0, 0.75, -1, 3}));
  }
  // No element crossed: the raster alone.
  {
    Recording_Surface s(357, 200);
    const Cut_Plot plot = Plot_Cut(s, Cut_Of(15, {}, 4000), {}, true);
    EXPECT_EQ(plot.Pieces_Drawn, 0);
    EXPECT_TRUE(Lines_In(s, Cut_Value_Colour, 2).size() == 1u);  // the legend's line
    EXPECT_EQ(plot.Extents, (Cut_Extents{0, 1, 0, 1}));
  }
}

TEST(Edit_Cut_Axis, AMaximumBelowTheMinimumIsRefused) {
  struct Row {
    Axis_Box box;
    double value;
    bool taken;
    double minimum, maximum;
  };
  const Row rows[] = {
      {Axis_Box::Minimum, 10, true, 10, 10},
      {Axis_Box::Minimum, 11, false, 0, 10},
      {Axis_Box::Maximum, -1, false, 0, 10},
      {Axis_Box::Maximum, 25, true, 0, 25},
  };
  for (const Row& r : rows) {
    Cut_Graph_Settings settings{.Fixed = true, .Minimum = 0, .Maximum = 10, .Factor = 1};
    std::string message;
    EXPECT_EQ(Edit_Cut_Axis(settings, r.box, r.value, message), r.taken) << r.value;
    EXPECT_EQ(message, r.taken ? "" : "Maximum < Minimum");
    EXPECT_EQ(settings.Minimum, r.minimum);
    EXPECT_EQ(settings.Maximum, r.maximum);
  }
}

// One run, two points, stored at 0, 10 and 40 hours: point 1 at 20, 30, 25 and point 2 at 20, 22,
// 18. Axes 0 .. 40 hours and 18 .. 30: TimeScale = 150, ValueScale = 375.
History_Data Two_Points(int variable, int runs = 1) {
  History_Data h;
  h.Variable = static_cast<std::int16_t>(variable);
  h.Runs = runs;
  h.Items = 2;
  h.Stored = 3;
  h.Storage_Time = Table<double>{0.0, 10.0, 40.0};
  for (int r = 1; r <= runs; ++r) {
    for (double v : {20.0, 30.0, 25.0, 20.0, 22.0, 18.0})
      h.Values.push_back(v + 100 * (r - 1));
    h.Run_Names.push_back(r == 1 ? "C30" : "C45");
  }
  h.Strength.assign(h.Values.size(), 0.0);
  return h;
}

TEST(Set_History_Axes, AxesFromTheCurvesOrFromAFixedScale) {
  struct Row {
    const char* what;
    History_Data h;
    History_Scale scale;
    History_Scale expected;
  };
  History_Data single;
  single.Variable = 1;
  single.Runs = single.Items = single.Stored = 1;
  single.Storage_Time = Table<double>{0.0};
  single.Values = {12.5};
  History_Data none = single;
  none.Items = 0;
  none.Values.clear();
  const Row rows[] = {
      {"automatic", Two_Points(1), {}, {0, 40, 18, 30, false}},
      {"two runs", Two_Points(1, 2), {}, {0, 40, 18, 130, false}},
      {"fixed", Two_Points(1), {5, 25, -10, 50, true}, {5, 25, -10, 50, true}},
      // A single stored step: an hour of time, a value extent of one.
      {"single step", single, {}, {0, 1, 12.5, 13.5, false}},
      {"no points", none, {}, {0, 1, 0, 1, false}},
  };
  for (Row r : rows) {
    SCOPED_TRACE(r.what);
    Set_History_Axes(r.h, r.scale);
    EXPECT_EQ(r.scale, r.expected);
    EXPECT_EQ(r.h.TimeMin, r.expected.TimeMin);
    EXPECT_EQ(r.h.ValueMax, r.expected.ValueMax);
    EXPECT_DOUBLE_EQ(r.h.TimeScale, 6000 / (r.expected.TimeMax - r.expected.TimeMin));
    EXPECT_DOUBLE_EQ(r.h.ValueScale, 4500 / (r.expected.ValueMax - r.expected.ValueMin));
  }
}

// The picture of 7900 x 5500 twips on 790 x 550 pixels: 0.1 pixel a twip. Picture X = 800 + 150 t,
// Y = 4800 - 375 (V - 18) twips.
TEST(Draw_Historie1, CurvesBetweenTheStoredStepsAtThePictureFormulas) {
  History_Data h = Two_Points(1);
  History_Scale scale;
  Set_History_Axes(h, scale);
  Recording_Surface s(790, 550);
  const History_Plot plot = Draw_Historie1(s, h, true);
  const auto red = Lines_In(s, Red, 2);
  ASSERT_EQ(red.size(), 4u);
  Expect_Line(red[0], {80, 405, 230, 30}, "point 1, 0 to 10 h");
  Expect_Line(red[1], {230, 30, 680, 217.5}, "point 1, 10 to 40 h");
  Expect_Line(red[2], {80, 405, 230, 330}, "point 2, 0 to 10 h");
  Expect_Line(red[3], {230, 330, 680, 480}, "point 2, 10 to 40 h");
  EXPECT_EQ(plot.Curves, 2);
  EXPECT_EQ(plot.Labels, (std::vector<std::string>{"Point 1", "Point 2"}));
  for (const char* text : {"Temperature [oC]", "Time [hours]", "18.00", "30.00", "0.0", "40.0"})
    EXPECT_TRUE(Has_Text(s, text)) << text;

  // Stresses are blue; several runs label their curves with the run's material.
  History_Data stresses = Two_Points(15, 2);
  Set_History_Axes(stresses, scale = {});
  Recording_Surface t(790, 550);
  const History_Plot runs = Draw_Historie1(t, stresses, true);
  EXPECT_EQ(Lines_In(t, Blue, 2).size(), 8u);
  EXPECT_TRUE(Lines_In(t, Red, 2).empty());
  EXPECT_EQ(runs.Labels,
            (std::vector<std::string>{"C30: Point 1", "C30: Point 2", "C45: Point 1", "C45: Point 2"}));
  EXPECT_TRUE(Has_Text(t, "Stresses Szz [MPa]"));
  // The reaction page names its curves by support.
  stresses.Variable = 21;
  EXPECT_EQ(History_Curve_Label(stresses, 1, 2), "C30: Support 2");

  // A single point is not labelled; a variable above 40 leaves the picture cleared.
  History_Data one = Two_Points(1);
  one.Items = 1;
  one.Values.resize(3);
  Set_History_Axes(one, scale = {});
  Recording_Surface u(790, 550);
  EXPECT_TRUE(Draw_Historie1(u, one, true).Labels.empty());
  one.Variable = 41;
  Recording_Surface v(790, 550);
  EXPECT_EQ(Draw_Historie1(v, one, true).Curves, 0);
  EXPECT_EQ(v.Order, "X");
}

TEST(Plot_History_Differences, DifferenceOnTheSameAxesAndTheMebinLine) {
  History_Data h = Two_Points(1);
  History_Scale scale;
  Set_History_Axes(h, scale);
  // Point 1 less point 2: 0, 8, 7 at Y = 4800 - 375 d.
  Recording_Surface s(790, 550);
  EXPECT_EQ(Plot_History_Differences(s, h, true, 1, 2), 2);
  const auto blue = Lines_In(s, Blue, 2);
  ASSERT_EQ(blue.size(), 2u);
  Expect_Line(blue[0], {80, 480, 230, 180}, "0 to 10 h");
  Expect_Line(blue[1], {230, 180, 680, 217.5}, "10 to 40 h");
  // The value labels run from 0 to the extent, 12.
  EXPECT_TRUE(Has_Text(s, "0.00"));
  EXPECT_TRUE(Has_Text(s, "12.00"));
  EXPECT_TRUE(Has_Text(s, "Point 1 - Point 2"));

  // The criterion: 20 hours at X = 3800, the value 24 at Y = 2550; outside the graph nothing.
  struct Row {
    Mebin_Kind kind;
    double c;
    bool drawn;
    std::array<double, 4> line;
  };
  const Row rows[] = {{Mebin_Kind::Time, 20, true, {380, 30, 380, 480}},
                      {Mebin_Kind::Value, 24, true, {80, 255, 680, 255}},
                      {Mebin_Kind::Time, 40, false, {}},
                      {Mebin_Kind::Value, 17, false, {}}};
  for (const Row& r : rows) {
    Recording_Surface t(790, 550);
    EXPECT_EQ(Plot_Mebin_Value(t, h, r.kind, r.c), r.drawn) << r.c;
    ASSERT_EQ(t.Lines.size(), r.drawn ? 1u : 0u);
    if (r.drawn) Expect_Line(t.Lines[0], r.line, "criterion");
  }
}

TEST(Edit_History_Scale, AMinimumAtOrAboveItsMaximumIsRefused) {
  using B = Scale_Box_Of_History;
  struct Row {
    B box;
    double value;
    bool taken;
    History_Scale expected;
  };
  const History_Scale start{0, 40, 18, 30, false};
  const Row rows[] = {
      {B::Time_Minimum, 40, false, start},  {B::Time_Minimum, 39, true, {39, 40, 18, 30, true}},
      {B::Time_Maximum, 0, false, start},   {B::Time_Maximum, 100, true, {0, 100, 18, 30, true}},
      {B::Value_Minimum, 30, false, start}, {B::Value_Minimum, -5, true, {0, 40, -5, 30, true}},
      {B::Value_Maximum, 18, false, start}, {B::Value_Maximum, 18.001, true, {0, 40, 18, 18.001, true}},
  };
  for (const Row& r : rows) {
    History_Scale scale = start;
    std::string message;
    EXPECT_EQ(Edit_History_Scale(scale, r.box, r.value, message), r.taken) << r.value;
    EXPECT_EQ(message, r.taken ? "" : "minimum >= maximum");
    EXPECT_EQ(scale, r.expected);
  }
  History_Scale fixed{0, 1, 0, 1, true};
  Reset_History_Scale(fixed);
  EXPECT_FALSE(fixed.Fixed);
  EXPECT_EQ(History_Time_Box_Text(12.5), "12.50");
  EXPECT_EQ(History_Value_Box_Text(-1.23456), "-1.235");
}

}  // namespace
}  // namespace pvx
