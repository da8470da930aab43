// The distribution picture of known fields, drawn to the recording surface.
#include <gtest/gtest.h>

#include <cmath>

#include "results/viewer_plot.h"
#include "support/recording_surface.h"

namespace pvx {
namespace {

using testing::Recording_Surface;

// Two square elements of 100 mm side, 0..200 x 0..100, nodes 1 2 3 / 4 5 6 along the bottom and
// the top; a picture of 400 x 300 pixels over the frame 0..200 x 0..100.
struct Picture_Test : ::testing::Test {
  Project p;
  Picture_State picture;
  Viewer_State s;
  Recording_Surface surface{400, 300};

  void SetUp() override {
    for (auto [x, y] : {std::pair{0, 0}, {100, 0}, {200, 0}, {0, 100}, {100, 100}, {200, 100}})
      p.Mesh_Node.add({double(x), double(y)});
    Mesh_Element e;
    e.Corner = {{1, 2, 5, 4}};
    p.Mesh_Element.add(e);
    e.Corner = {{2, 3, 6, 5}};
    p.Mesh_Element.add(e);
    p.Grid_X_Min = 0;
    p.Grid_X_Max = 200;
    p.Grid_Y_Min = 0;
    p.Grid_Y_Max = 100;
    Compute_Scale(picture, p, 400 * 15, 300 * 15, 15);
    Result_Layout l;
    l.Nodes = 6;
    l.Elements = 2;
    l.Mechanical = true;
    l.Reactions = 2;
    l.Interfaces = 1;
    l.Bars = 1;
    Dimension_Plot_Buffers(l, s.Buffers);
    s.Index.Storage_Time = {0, 12.5};
    s.CurrentStored = 2;
  }

  double World_X(double px) const { return Picture_To_World_X(picture, px); }
};

TEST_F(Picture_Test, LinearFieldFallsInTheBandsItsValuesGive) {
  // T = x / 10: 0 at the left, 20 at the right; the scale 0..20 has bands of 2 degrees.
  for (int n = 1; n <= 6; ++n)
    s.Buffers.Node[n] = static_cast<float>(p.Mesh_Node[n].X / 10);
  s.Buffers.CurrentMin = 0;
  s.Buffers.CurrentMax = 20;
  s.Index.Extremes[1] = {0, 20, 0, 20, 1, 2};
  s.CurrentVariable = 1;
  const Distribution_Picture d = Plot_Distribution(surface, picture, p, s);

  EXPECT_EQ(d.Elements_Drawn, 2);
  EXPECT_EQ(surface.Clears, 1);
  EXPECT_FALSE(surface.Waiting);
  bool seen[Scale_Band_Count + 1] = {};
  ASSERT_FALSE(surface.Fills.empty());
  for (const auto& fill : surface.Fills) {
    int band = 0;
    for (int k = 1; k <= Scale_Band_Count; ++k)
      if (fill.Colour == ScaleColours[k]) band = k;
    ASSERT_NE(band, 0);
    seen[band] = true;
    // Every vertex lies where the field is within the band, give or take the pixel rounding.
    const double tolerance = 1.0 / picture.ScaleX / 10 + 1e-9;  // one pixel in degrees
    for (const Pixel_Point& v : fill.Vertex) {
      const double value = World_X(v.X) / 10;
      EXPECT_GE(value, 2.0 * (band - 1) - tolerance) << band;
      EXPECT_LE(value, 2.0 * band + tolerance) << band;
    }
  }
  for (int k = 1; k <= Scale_Band_Count; ++k)
    EXPECT_TRUE(seen[k]) << k;

  // The scale bar's ends with two decimals in six places, the title with the time, the extremes.
  EXPECT_EQ(d.Labels.Low, "  0.00");
  EXPECT_EQ(d.Labels.High, " 20.00");
  EXPECT_EQ(d.Title, "Temperature distribution at      12.500000 hours");
  bool title = false, extremes = false;
  for (const auto& t : surface.Texts) {
    if (t.Text == d.Title) {
      title = true;
      EXPECT_EQ(t.X, 400.0 / 2 - 110);
      EXPECT_EQ(t.Y, 300 - 18);
    }
    if (t.Text == "Minimum: 0.00 oC   Maximum: 20.00 oC") extremes = true;
  }
  EXPECT_TRUE(title);
  EXPECT_TRUE(extremes);
}

TEST_F(Picture_Test, InactiveElementsStayBlankAndOverlaysFollowTheFlags) {
  for (int n = 1; n <= 6; ++n)
    s.Buffers.Node[n] = 5;
  s.Index.Extremes[1] = {0, 10, 0, 10, 1, 1};
  s.CurrentVariable = 1;
  p.Mesh_Element[2].Present_From = 13;  // cast after 12.5 hours
  Distribution_Picture d = Plot_Distribution(surface, picture, p, s);
  EXPECT_EQ(d.Elements_Drawn, 1);
  const double right_of_element_1 = World_To_X(picture, 100);
  for (const auto& fill : surface.Fills) {
    for (const Pixel_Point& v : fill.Vertex)
      EXPECT_LE(v.X, right_of_element_1);
  }
  // 5 lies on the limit of bands 5 and 6, [4, 5] and [5, 6]: both take it, band 6 is drawn last.
  EXPECT_EQ(surface.Fills.back().Colour, ScaleColours[6]);
  EXPECT_TRUE(surface.Lines.empty());
  EXPECT_TRUE(surface.Circles.empty());

  // Line cut and history points (drawn only with the "History1" button down).
  s.LineCutActive = true;
  s.LineCut = {0, 50, 200, 50};
  s.HistoryPoints.add({1, 0.5, 0.5, 50, 50});
  s.HistoryPoints.add({1, 0.25, 0.5, 25, 50});
  Recording_Surface again(400, 300);
  Plot_Distribution(again, picture, p, s);
  ASSERT_EQ(again.Lines.size(), 1u);
  EXPECT_EQ(again.Lines[0].Style, Line_Style::Dashed);
  EXPECT_EQ(again.Lines[0].Colour, Black);
  EXPECT_EQ(again.Lines[0].Y1, World_To_Y(picture, 50));
  EXPECT_TRUE(again.Circles.empty());
  s.History_Button_Down = true;
  Recording_Surface third(400, 300);
  Plot_Distribution(third, picture, p, s);
  ASSERT_EQ(third.Circles.size(), 2u);
  EXPECT_EQ(third.Circles[1].X, World_To_X(picture, 25));
  EXPECT_EQ(third.Circles[1].Radius, 2);
  EXPECT_EQ(third.Circles[1].Colour, Red);
  EXPECT_EQ(third.Texts.back().Text, "2");
}

TEST_F(Picture_Test, ZoomWindowFromADragInAnyDirection) {
  Set_Zoom_Window(picture, 150, 80, 50, 20);
  EXPECT_TRUE(picture.Zoomed);
  EXPECT_FALSE(picture.ZoomPending);
  Compute_Scale(picture, p, 400 * 15, 300 * 15, 15);
  // The window 50..150 x 20..80 now fills the picture: its centre is the picture's horizontal
  // centre, and the scale doubles against the whole frame of 200 mm.
  EXPECT_EQ(World_To_X(picture, 100), 200);
  Picture_State whole;
  Compute_Scale(whole, p, 400 * 15, 300 * 15, 15);
  EXPECT_NEAR(picture.ScaleX, 2 * whole.ScaleX, 1e-12);
  Clear_Zoom(picture);
  EXPECT_FALSE(picture.Zoomed);
}

TEST_F(Picture_Test, DeformedMeshShiftsCornersByTheMagnification) {
  // Ux = 3 mm at node 3 only; ScaleMax 0 is replaced by 10: m = 3.3333 pixels per mm.
  s.Buffers.Node[2 * 3 - 1] = 3;
  s.Buffers.Node[2 * 6] = -6;  // Uy of node 6
  s.CurrentVariable = 20;
  s.Undeformed_Visible = true;
  const Distribution_Picture d = Plot_Distribution(surface, picture, p, s);
  EXPECT_TRUE(d.Scale_Replaced);
  EXPECT_EQ(s.Index.Extremes[20].ScaleMax, 10);
  EXPECT_EQ(d.Title, "Deformations at       12.5 hours");
  // Element 2's red side 1-2 runs from node 2 to node 3 shifted 10 pixels right.
  int red = 0, black = 0;
  bool found = false;
  for (const auto& l : surface.Lines) {
    if (l.Colour == Red) ++red;
    if (l.Colour == Black && l.Width == 1) ++black;
    if (l.Colour == Red && l.X1 == World_To_X(picture, 100) && l.Y1 == World_To_Y(picture, 0) &&
        l.Y2 == l.Y1) {
      EXPECT_NEAR(l.X2, World_To_X(picture, 200) + 10, 1e-3);
      found = true;
    }
  }
  EXPECT_TRUE(found);
  EXPECT_EQ(red, 8);
  EXPECT_EQ(black, 8);
  // Node 6 moves by Uy = -6 mm: 20 pixels down the picture, whose y grows downwards.
  bool node6 = false;
  for (const auto& l : surface.Lines)
    if (l.Colour == Red && std::fabs(l.Y1 - (World_To_Y(picture, 100) + 20)) < 1e-3) node6 = true;
  EXPECT_TRUE(node6);
}

TEST_F(Picture_Test, InterfaceAndBarChartsScaleToTheLargestScaleValue) {
  Interface f;
  f.Node_A = 2;
  f.Node_B = 5;  // the vertical side x = 100
  p.Mesh_Interface.add(f);
  s.Buffers.Interface[1].Normal[0] = 2;
  s.Buffers.Interface[1].Normal[1] = -1;
  s.Buffers.CurrentMin = -1;
  s.Buffers.CurrentMax = 2;
  s.Index.Extremes[23] = {-1, 2, -1, 4, 1, 1};  // M = 4: 2 -> 25 pixels, -1 -> 12.5 pixels
  s.CurrentVariable = 30;
  const Distribution_Picture d = Plot_Distribution(surface, picture, p, s);
  EXPECT_EQ(d.Title, "Normal stresses in interfaces at       12.5 hours");
  std::vector<double> lengths;
  for (const auto& l : surface.Lines)
    if (l.Colour == Red && l.Width == 2) lengths.push_back(std::hypot(l.X2 - l.X1, l.Y2 - l.Y1));
  ASSERT_EQ(lengths.size(), 2u);
  EXPECT_NEAR(lengths[0], 25, 1e-9);
  EXPECT_NEAR(lengths[1], 12.5, 1e-9);
  bool max_text = false, min_text = false;
  for (const auto& t : surface.Texts) {
    max_text |= t.Text == "Maximum 2.00 [MPa]";
    min_text |= t.Text == "Minimum -1.00 [MPa]";
  }
  EXPECT_TRUE(max_text);
  EXPECT_TRUE(min_text);

  // A bar's slip in imperial display.
  Rebar bar;
  bar.X1 = 0;
  bar.Y1 = 50;
  bar.X2 = 200;
  bar.Y2 = 50;
  p.Mesh_Rebar.add(bar);
  s.Buffers.Bar[1].Slip[0] = 0.5f;
  s.Buffers.Bar[1].Slip[1] = 0.25f;
  s.Index.Extremes[27] = {0, 0.5, 0, 0.5, 1, 1};
  s.CurrentVariable = 34;
  s.Metric = false;
  Recording_Surface bars(400, 300);
  Plot_Distribution(bars, picture, p, s);
  lengths.clear();
  for (const auto& l : bars.Lines)
    if (l.Colour == Red && l.Width == 2) lengths.push_back(std::hypot(l.X2 - l.X1, l.Y2 - l.Y1));
  ASSERT_EQ(lengths.size(), 2u);
  EXPECT_NEAR(lengths[0], 50, 1e-9);
  EXPECT_NEAR(lengths[1], 25, 1e-9);
  // The bar runs to the right: positive slips are drawn upwards, at the Gauss stations of its axis.
  for (const auto& l : bars.Lines)
    if (l.Colour == Red && l.Width == 2) {
      EXPECT_LT(l.Y2, l.Y1);
      EXPECT_EQ(l.X2, l.X1);
    }
  const double g = 1 / std::sqrt(3.0);
  const double a = World_To_X(picture, 0), b = World_To_X(picture, 200);
  EXPECT_NEAR(bars.Lines.back().X1, a + (b - a) * (1 - g) / 2, 1e-9);  // the line joining the tips
  EXPECT_NEAR(bars.Lines.back().X2, a + (b - a) * (1 + g) / 2, 1e-9);
}

TEST_F(Picture_Test, ReactionArrowsPointAlongTheSupportAndEndAtIt) {
  Support a;
  a.X = 0;
  a.Y = 0;
  a.Angle = -90;  // a support holding downwards
  p.Mesh_Support.add(a);
  a.X = 200;
  a.Angle = 0;
  p.Mesh_Support.add(a);
  s.Buffers.Node[1] = 4;   // along -90: downwards on the model, y grows on the picture
  s.Buffers.Node[2] = -2;  // against 0: pointing to -x, half as long
  s.CurrentVariable = 21;
  const Distribution_Picture d = Plot_Distribution(surface, picture, p, s);
  EXPECT_EQ(d.Title, "Point reactions at       12.5 hours");
  int arrows = 0;
  for (const auto& l : surface.Lines) {
    if (l.Colour != Red) continue;
    if (l.X2 == World_To_X(picture, 0) && l.Y2 == World_To_Y(picture, 0)) {
      EXPECT_NEAR(l.X1, l.X2, 1e-6);       // 57.29577951 degrees per radian is not quite 180 / pi
      EXPECT_NEAR(l.Y1, l.Y2 - 40, 1e-9);  // 40 pixels above, pointing down onto the support
      ++arrows;
    }
    if (l.X2 == World_To_X(picture, 200) && l.Y2 == World_To_Y(picture, 0)) {
      EXPECT_NEAR(l.X1, l.X2 + 20, 1e-9);
      ++arrows;
    }
  }
  EXPECT_EQ(arrows, 2);
  s.Buffers.Node[1] = 1.25f;
  int support = 0;
  std::string text;
  ASSERT_TRUE(Reaction_Label(s, p, 30, 10, support, text));
  EXPECT_EQ(support, 1);
  EXPECT_EQ(text, "      1.250 [kN]");
}

}  // namespace
}  // namespace pvx
