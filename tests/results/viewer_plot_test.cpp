// The distribution picture of known fields over the two-square mesh, drawn to the recording
// surface.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>

#include <algorithm>
#include <cmath>

#include "family_support.h"
#include "results/viewer_plot.h"
#include "support/recording_surface.h"

namespace pvx {
namespace {

using ::testing::DoubleNear;
using ::testing::Pointwise;
using testing::Recording_Surface;

bool Has_Text(const Recording_Surface& surface, const std::string& text) {
  return std::any_of(surface.Texts.begin(), surface.Texts.end(),
                     [&](const auto& t) { return t.Text == text; });
}

// The lengths of the red chart lines (width 2), in drawing order.
std::vector<double> Chart_Lengths(const Recording_Surface& surface) {
  std::vector<double> lengths;
  for (const auto& l : surface.Lines)
    if (l.Colour == Red && l.Width == 2) lengths.push_back(std::hypot(l.X2 - l.X1, l.Y2 - l.Y1));
  return lengths;
}

// A picture of 400 x 300 pixels over the frame 0..200 x 0..100; stored step 2 at 12.5 hours.
struct Picture_Test : ::testing::Test {
  Project p;
  Picture_State picture;
  Viewer_State s;
  Recording_Surface surface{400, 300};

  void SetUp() override {
    test::Two_Squares(p);
    p.Grid_X_Min = 0, p.Grid_X_Max = 200, p.Grid_Y_Min = 0, p.Grid_Y_Max = 100;
    Compute_Scale(picture, p, 400 * 15, 300 * 15, 15);
    Dimension_Plot_Buffers(
        {.Nodes = 6, .Elements = 2, .Reactions = 2, .Interfaces = 1, .Bars = 1, .Circuit_Stations = {}},
        s.Buffers);
    s.Index.Storage_Time = {0, 12.5};
    s.CurrentStored = 2;
  }
  double X(double x) const { return World_To_X(picture, x); }
  double Y(double y) const { return World_To_Y(picture, y); }
};

TEST_F(Picture_Test, LinearFieldFallsInTheBandsItsValuesGive) {
  // T = x / 10: 0 at the left, 20 at the right; the scale 0..20 has bands of 2 degrees.
  for (int n = 1; n <= 6; ++n)
    s.Buffers.Node[n] = static_cast<float>(p.Mesh_Node[n].X / 10);
  s.Buffers.CurrentMax = 20;
  s.Index.Extremes[1] = {0, 20, 0, 20, 1, 2};
  const Distribution_Picture d = Plot_Distribution(surface, picture, p, s);
  EXPECT_EQ(std::tuple(d.Elements_Drawn, surface.Clears, surface.Waiting), std::tuple(2, 1, false));
  // Every vertex lies where the field is within its fill's band, give or take a pixel. That each
  // band is one strip of the element is worked out in the contour tests.
  EXPECT_GE(surface.Fills.size(), 20u);
  const double pixel = 1.0 / picture.ScaleX / 10 + 1e-9;
  for (const auto& fill : surface.Fills) {
    const auto band = std::find(ScaleColours.begin(), ScaleColours.end(), fill.Colour) - ScaleColours.begin();
    for (const Pixel_Point& v : fill.Vertex)
      EXPECT_NEAR(Picture_To_World_X(picture, v.X) / 10, 2.0 * band + 1, 1 + pixel) << band;
  }
  // The scale bar's ends with two decimals in six places, the title with the time, the extremes.
  EXPECT_EQ(std::tuple(d.Labels.Low, d.Labels.High, d.Title),
            std::tuple("  0.00", " 20.00", "Temperature distribution at      12.500000 hours"));
  EXPECT_TRUE(Has_Text(surface, d.Title));
  EXPECT_TRUE(Has_Text(surface, "Minimum: 0.00 oC   Maximum: 20.00 oC"));
}

TEST_F(Picture_Test, DeformedMeshShiftsCornersByTheMagnification) {
  // Ux = 3 mm at node 5, Uy = -6 mm at node 6; ScaleMax 0 is replaced by 10: 3.3333 pixels per mm.
  s.Buffers.Node[2 * 5 - 1] = 3;
  s.Buffers.Node[2 * 6] = -6;
  s.CurrentVariable = 20;
  s.Undeformed_Visible = true;
  const Distribution_Picture d = Plot_Distribution(surface, picture, p, s);
  EXPECT_EQ(std::tuple(d.Scale_Replaced, s.Index.Extremes[20].ScaleMax, d.Title),
            std::tuple(true, 10.0, "Deformations at       12.5 hours"));
  int red = 0, black = 0, side = 0, node6 = 0;
  for (const auto& l : surface.Lines) {
    red += l.Colour == Red;
    black += l.Colour == Black && l.Width == 1;
    // Element 2's side 1-2 runs from node 2 to node 5 shifted 10 pixels right.
    if (l.Colour == Red && l.X1 == X(100) && l.Y1 == Y(0) && l.Y2 == l.Y1) {
      EXPECT_NEAR(l.X2, X(200) + 10, 1e-3);
      ++side;
    }
    node6 += l.Colour == Red && std::fabs(l.Y1 - (Y(100) + 20)) < 1e-3;  // 20 pixels down
  }
  EXPECT_EQ(std::tuple(red, black, side, node6 > 0), std::tuple(8, 8, 1, true));
}

TEST_F(Picture_Test, InterfaceAndBarChartsScaleToTheLargestScaleValue) {
  Interface side;  // the vertical side x = 100
  std::tie(side.Node_A, side.Node_B) = std::pair(2, 3);
  p.Mesh_Interface.add(side);
  s.Buffers.Interface[1] = {{2, -1}, {0, 0}};
  s.Buffers.CurrentMin = -1, s.Buffers.CurrentMax = 2;
  s.Index.Extremes[23] = {-1, 2, -1, 4, 1, 1};  // M = 4: 2 -> 25 pixels, -1 -> 12.5 pixels
  s.CurrentVariable = 30;
  EXPECT_EQ(Plot_Distribution(surface, picture, p, s).Title,
            "Normal stresses in interfaces at       12.5 hours");
  EXPECT_THAT(Chart_Lengths(surface), Pointwise(DoubleNear(1e-9), {25.0, 12.5}));
  EXPECT_TRUE(Has_Text(surface, "Maximum 2.00 [MPa]") && Has_Text(surface, "Minimum -1.00 [MPa]"));
  // A bar's slip in imperial display, along y = 50 to the right.
  Rebar bar;
  std::tie(bar.X1, bar.X2, bar.Y1, bar.Y2) = std::tuple(0.0, 200.0, 50.0, 50.0);
  p.Mesh_Rebar.add(bar);
  s.Buffers.Bar[1] = {0, {0, 0}, {0.5f, 0.25f}};
  s.Index.Extremes[27] = {0, 0.5, 0, 0.5, 1, 1};
  s.CurrentVariable = 34;
  s.Metric = false;
  Recording_Surface bars(400, 300);
  Plot_Distribution(bars, picture, p, s);
  EXPECT_THAT(Chart_Lengths(bars), Pointwise(DoubleNear(1e-9), {50.0, 25.0}));
  // Positive slips are drawn upwards, at the Gauss stations of the bar's axis.
  for (const auto& l : bars.Lines)
    if (l.Colour == Red && l.Width == 2) {
      EXPECT_TRUE(l.Y2 < l.Y1 && l.X2 == l.X1);
    }
  const double g = 1 / std::sqrt(3.0);  // the last line joins the tips
  EXPECT_NEAR(bars.Lines.back().X1, X(0) + (X(200) - X(0)) * (1 - g) / 2, 1e-9);
  EXPECT_NEAR(bars.Lines.back().X2, X(0) + (X(200) - X(0)) * (1 + g) / 2, 1e-9);
}

}  // namespace
}  // namespace pvx
