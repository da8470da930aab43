// The graphs of the line cut and of the history plots on the recording surface: their extents, every
// curve point against the picture formulas worked out by hand, the rubber line's start, and the
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
  // (30 - 50 cos 45, 40 + 50 sin 45): below left of the pointer on screen.
  const struct {
    Cut_Direction direction;
    double x, y;
  } rows[] = {
      {{Cut_Mode::Horizontally, 45}, 0, 40},
      {{Cut_Mode::Vertically, 45}, 30, 0},
      {{Cut_Mode::Arbitrarily, 45}, 0, 0},
      {{Cut_Mode::Fixed_Angle, 45}, -5.3553391, 75.3553391},
      {{Cut_Mode::Fixed_Angle, 0}, -20, 40},
      {{Cut_Mode::Fixed_Angle, 90}, 30, 90},
      {{Cut_Mode::Fixed_Angle, -30}, 30 - 25 * std::sqrt(3.0), 15},
  };
  for (const auto& r : rows) {
    double x = 0, y = 0;
    Adjust_Cut_Start(r.direction, 30, 40, x, y);
    EXPECT_LT(std::hypot(x - r.x, y - r.y), 1e-6)
        << static_cast<int>(r.direction.CutMode) << " " << r.direction.CutAngle;
  }
}

// A cut of hand-made pieces: (fraction, value, strength) at both ends.
Line_Cut Cut_Of(int variable, std::vector<std::array<double, 6>> pieces, double length = 4000) {
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

TEST(Plot_Cut_Extents, PiecesStrengthFixedAxisAndDegenerateExtents) {
  const std::vector<std::array<double, 6>> two = {{0.2, 1.5, 3, 0.4, -0.5, 2}, {0.4, -0.5, 2, 0.7, 0.25, 4}};
  const struct {
    const char* what;
    int variable;
    std::vector<std::array<double, 6>> pieces;
    Cut_Graph_Settings settings;
    Cut_Extents expected;
    bool ok;
  } rows[] = {
      {"values only", 1, two, {}, {0.2, 0.7, -0.5, 1.5}, true},
      // 13 to 18 take in ft (up to 4) and factor x ft (up to 6); Szz / ft has no strength curve.
      {"strength and factor", 16, two, {.Factor = 1.5}, {0.2, 0.7, -0.5, 6}, true},
      {"strength, small factor", 16, two, {.Factor = 0.1}, {0.2, 0.7, -0.5, 4}, true},
      {"ratio", 19, two, {.Factor = 1.5}, {0.2, 0.7, -0.5, 1.5}, true},
      {"fixed", 1, two, {.Fixed = true, .Minimum = -10, .Maximum = 10}, {0.2, 0.7, -10, 10}, true},
      {"fixed, equal ends", 1, two, {.Fixed = true, .Minimum = 3, .Maximum = 3}, {0.2, 0.7, 3, 4}, true},
      {"fixed, refused", 1, two, {.Fixed = true, .Minimum = 3, .Maximum = 2}, {0.2, 0.7, -0.5, 1.5}, false},
      {"flat and one point", 1, {{0.3, 7, 0, 0.3, 7, 0}}, {}, {0.3, 1.3, 7, 8}, true},
      {"hydration", 40, two, {.Fixed = true, .Minimum = -10, .Maximum = 10}, {0.2, 0.7, 0, 1}, true},
      {"no pieces", 1, {}, {}, {0, 1, 0, 1}, true},
  };
  for (const auto& r : rows) {
    SCOPED_TRACE(r.what);
    Cut_Extents e;
    std::string message;
    EXPECT_EQ(Plot_Cut_Extents(Cut_Of(r.variable, r.pieces), r.settings, e, message), r.ok);
    EXPECT_EQ(message, r.ok ? "" : "Maximum < Minimum");
    EXPECT_EQ(e, r.expected);
  }
}

std::vector<Recorded_Line> Lines_In(const Recording_Surface& s, Plot_Colour colour) {
  std::vector<Recorded_Line> out;
  for (const Recorded_Line& l : s.Lines)
    if (l.Colour == colour && l.Width == 2) out.push_back(l);
  return out;
}

bool Has_Text(const Recording_Surface& s, const std::string& text) {
  return std::any_of(s.Texts.begin(), s.Texts.end(), [&](auto& t) { return t.Text == text; });
}

void Expect_Line(const Recorded_Line& l, std::array<double, 4> e, const char* what) {
  EXPECT_LT(std::hypot(l.X1 - e[0], l.Y1 - e[1]) + std::hypot(l.X2 - e[2], l.Y2 - e[3]), 1e-9)
      << what << ": " << l.X1 << ", " << l.Y1 << " - " << l.X2 << ", " << l.Y2;
}

// Two pieces: fractions 0 .. 0.5 .. 0.75, values 1, 3, 3, -1, strength 2, 2, 2, 4.
const std::vector<std::array<double, 6>> Two_Pieces = {{0, 1, 2, 0.5, 3, 2}, {0.5, 3, 2, 0.75, -1, 4}};

// Szz with factor 1.5 (3, 3, 3, 6): fractions 0 .. 0.75, values -1 .. 6, so picture X = 570 + 3600 D
// and Y = 1700 - 200 (V + 1) twips; the frame of 3570 x 2000 twips on 357 x 200 pixels is 0.1 pixel
// a twip, on 714 x 400 pixels 0.2.
TEST(Plot_Cut, PiecesStrengthAndLegendAtThePictureFormulas) {
  const Line_Cut cut = Cut_Of(15, Two_Pieces);
  for (const double k : {0.1, 0.2}) {
    Recording_Surface s(3570 * k, 2000 * k);
    const Cut_Plot plot = Plot_Cut(s, cut, {.Factor = 1.5}, true);
    EXPECT_EQ(plot.Extents, (Cut_Extents{0, 0.75, -1, 6}));
    const auto red = Lines_In(s, Cut_Value_Colour), blue = Lines_In(s, Cut_Strength_Colour),
               green = Lines_In(s, Cut_Factor_Colour);
    // Two pieces each, and the legend's line.
    ASSERT_EQ(red.size(), 3u);
    ASSERT_EQ(blue.size(), 3u);
    ASSERT_EQ(green.size(), 3u);
    EXPECT_EQ(plot.Strength_Pieces_Drawn, 4);
    Expect_Line(red[0], {570 * k, 1300 * k, 2370 * k, 900 * k}, "Szz 1");
    Expect_Line(red[1], {2370 * k, 900 * k, 3270 * k, 1700 * k}, "Szz 2");
    Expect_Line(blue[0], {570 * k, 1100 * k, 2370 * k, 1100 * k}, "ft 1");
    Expect_Line(blue[1], {2370 * k, 1100 * k, 3270 * k, 700 * k}, "ft 2");
    Expect_Line(green[0], {570 * k, 900 * k, 2370 * k, 900 * k}, "factor ft 1");
    Expect_Line(green[1], {2370 * k, 900 * k, 3270 * k, 300 * k}, "factor ft 2");
    for (const char* text : {"Stresses Szz [MPa]", "-1.000", "6.000"})
      EXPECT_TRUE(Has_Text(s, text)) << text;
    EXPECT_EQ(plot.Length_Label, "  3.000");  // 0.75 of 4 m
  }
  // In imperial units the distances are yards: 3 m = 3.281 yd.
  Recording_Surface s(357, 200);
  EXPECT_EQ(Plot_Cut(s, cut, {.Factor = 1.5}, false).Length_Label, "  3.281");
  EXPECT_TRUE(Has_Text(s, "Stresses Szz [ksi]"));

  // The temperature: the curve only, no legend. Values -1 .. 3: Y = 1700 - 350 (V + 1).
  Recording_Surface t(357, 200), u(357, 200);
  EXPECT_EQ(Plot_Cut(t, Cut_Of(1, Two_Pieces), {.Factor = 1.5}, true).Strength_Pieces_Drawn, 0);
  EXPECT_TRUE(Lines_In(t, Cut_Strength_Colour).empty());
  auto red = Lines_In(t, Cut_Value_Colour);
  ASSERT_EQ(red.size(), 2u);
  Expect_Line(red[0], {57, 100, 237, 30}, "temperature 1");
  // A fixed axis 0 .. 2 (Y = 1700 - 700 V) cuts the curve at the frame: piece 1 leaves the top at
  // V = 2, D = 0.25; piece 2 comes in at V = 2, D = 0.5625, and leaves the bottom at V = 0, D = 0.6875.
  EXPECT_TRUE(
      Plot_Cut(u, Cut_Of(1, Two_Pieces), {.Fixed = true, .Minimum = 0, .Maximum = 2}, true).Settings_Taken);
  red = Lines_In(u, Cut_Value_Colour);
  ASSERT_EQ(red.size(), 2u);
  Expect_Line(red[0], {57, 100, 147, 30}, "clipped 1");
  Expect_Line(red[1], {259.5, 30, 304.5, 170}, "clipped 2");
}

TEST(Edit_Cut_Axis, AMaximumBelowTheMinimumIsRefused) {
  const struct {
    Axis_Box box;
    double value;
    bool taken;
    double minimum, maximum;
  } rows[] = {{Axis_Box::Minimum, 10, true, 10, 10},
              {Axis_Box::Minimum, 11, false, 0, 10},
              {Axis_Box::Maximum, -1, false, 0, 10},
              {Axis_Box::Maximum, 25, true, 0, 25}};
  for (const auto& r : rows) {
    Cut_Graph_Settings settings{.Fixed = true, .Minimum = 0, .Maximum = 10, .Factor = 1};
    std::string message;
    EXPECT_EQ(Edit_Cut_Axis(settings, r.box, r.value, message), r.taken) << r.value;
    EXPECT_EQ(message, r.taken ? "" : "Maximum < Minimum");
    EXPECT_EQ(std::pair(settings.Minimum, settings.Maximum), std::pair(r.minimum, r.maximum));
  }
}

// Runs of two points stored at 0, 10 and 40 hours: point 1 at 20, 30, 25 and point 2 at 20, 22, 18,
// each later run 100 higher. Axes 0 .. 40 hours and 18 .. 30: TimeScale = 150, ValueScale = 375.
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
  History_Scale scale;
  Set_History_Axes(h, scale);
  return h;
}

// The picture of 7900 x 5500 twips on 790 x 550 pixels: 0.1 pixel a twip. Picture X = 800 + 150 t,
// Y = 4800 - 375 (V - 18) twips.
TEST(Draw_Historie1, CurvesBetweenTheStoredStepsAtThePictureFormulas) {
  Recording_Surface s(790, 550);
  const History_Plot plot = Draw_Historie1(s, Two_Points(1), true);
  const auto red = Lines_In(s, Red);
  ASSERT_EQ(red.size(), 4u);
  Expect_Line(red[0], {80, 405, 230, 30}, "point 1, 0 to 10 h");
  Expect_Line(red[1], {230, 30, 680, 217.5}, "point 1, 10 to 40 h");
  Expect_Line(red[2], {80, 405, 230, 330}, "point 2, 0 to 10 h");
  Expect_Line(red[3], {230, 330, 680, 480}, "point 2, 10 to 40 h");
  EXPECT_EQ(plot.Labels, (std::vector<std::string>{"Point 1", "Point 2"}));
  for (const char* text : {"18.00", "30.00", "0.0", "40.0"})
    EXPECT_TRUE(Has_Text(s, text)) << text;

  // Stresses are blue; several runs label their curves with the run's material; the reaction page
  // by support.
  History_Data stresses = Two_Points(15, 2);
  Recording_Surface t(790, 550);
  EXPECT_EQ(Draw_Historie1(t, stresses, true).Labels,
            (std::vector<std::string>{"C30: Point 1", "C30: Point 2", "C45: Point 1", "C45: Point 2"}));
  EXPECT_EQ(Lines_In(t, Blue).size(), 8u);
  EXPECT_TRUE(Lines_In(t, Red).empty());
  stresses.Variable = 21;
  EXPECT_EQ(History_Curve_Label(stresses, 1, 2), "C30: Support 2");

  // A variable above 40 leaves the picture cleared.
  Recording_Surface v(790, 550);
  EXPECT_EQ(Draw_Historie1(v, Two_Points(41), true).Curves, 0);
  EXPECT_EQ(v.Order, "X");
}

TEST(Plot_History_Differences, DifferenceOnTheSameAxesAndTheMebinLine) {
  const History_Data h = Two_Points(1);
  // Point 1 less point 2: 0, 8, 7 at Y = 4800 - 375 d, labelled from 0 to the extent, 12.
  Recording_Surface s(790, 550);
  EXPECT_EQ(Plot_History_Differences(s, h, true, 1, 2), 2);
  const auto blue = Lines_In(s, Blue);
  ASSERT_EQ(blue.size(), 2u);
  Expect_Line(blue[0], {80, 480, 230, 180}, "0 to 10 h");
  Expect_Line(blue[1], {230, 180, 680, 217.5}, "10 to 40 h");
  for (const char* text : {"0.00", "12.00", "Point 1 - Point 2"})
    EXPECT_TRUE(Has_Text(s, text)) << text;

  // The criterion: 20 hours at X = 3800, the value 24 at Y = 2550; the left and top edges are in
  // the graph, the right and bottom ones not.
  const struct {
    Mebin_Kind kind;
    double c;
    std::vector<double> line;
  } rows[] = {{Mebin_Kind::Time, 20, {380, 30, 380, 480}},
              {Mebin_Kind::Value, 24, {80, 255, 680, 255}},
              {Mebin_Kind::Time, 0, {80, 30, 80, 480}},
              {Mebin_Kind::Value, 30, {80, 30, 680, 30}},
              {Mebin_Kind::Time, 40, {}},
              {Mebin_Kind::Value, 18, {}},
              {Mebin_Kind::Time, -1, {}},
              {Mebin_Kind::Value, 31, {}}};
  for (const auto& r : rows) {
    Recording_Surface t(790, 550);
    EXPECT_EQ(Plot_Mebin_Value(t, h, r.kind, r.c), !r.line.empty()) << r.c;
    ASSERT_EQ(t.Lines.size(), r.line.empty() ? 0u : 1u);
    if (!r.line.empty()) Expect_Line(t.Lines[0], {r.line[0], r.line[1], r.line[2], r.line[3]}, "criterion");
  }
}

TEST(Edit_History_Scale, AMinimumAtOrAboveItsMaximumIsRefused) {
  using B = Scale_Box_Of_History;
  const History_Scale start{0, 40, 18, 30, false};
  const struct {
    B box;
    double value;
    bool taken;
    History_Scale expected;
  } rows[] = {
      {B::Time_Minimum, 40, false, start},  {B::Time_Minimum, 39, true, {39, 40, 18, 30, true}},
      {B::Time_Maximum, 0, false, start},   {B::Time_Maximum, 100, true, {0, 100, 18, 30, true}},
      {B::Value_Minimum, 30, false, start}, {B::Value_Minimum, -5, true, {0, 40, -5, 30, true}},
      {B::Value_Maximum, 18, false, start}, {B::Value_Maximum, 18.001, true, {0, 40, 18, 18.001, true}},
  };
  for (const auto& r : rows) {
    History_Scale scale = start;
    std::string message;
    EXPECT_EQ(Edit_History_Scale(scale, r.box, r.value, message), r.taken) << r.value;
    EXPECT_EQ(message, r.taken ? "" : "minimum >= maximum");
    EXPECT_EQ(scale, r.expected);
  }
  History_Scale fixed{0, 1, 0, 1, true};
  Reset_History_Scale(fixed);
  EXPECT_FALSE(fixed.Fixed);
}

}  // namespace
}  // namespace pvx
