// The picture transformation, band clipping, triangle fills, the scale bar and contour plots,
// against positions, areas and texts worked out by hand.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <vector>

#include "results/plot.h"
#include "support/recording_surface.h"

namespace pvx {
namespace {

using testing::Recording_Surface;

// The area of a polygon (shoelace), of plot or pixel points.
template <class Point>
double Area(const Point* p, int n) {
  double s = 0;
  for (int i = 0; i < n; ++i)
    s += double(p[i].X) * p[(i + 1) % n].Y - double(p[(i + 1) % n].X) * p[i].Y;
  return std::fabs(s) / 2;
}

TEST(Place_Picture, SixHundredTwipsSmallerWithFallbacks) {
  // Too narrow a form gives a width of 50 for a negative one (0 stays); a height <= 0 becomes 50.
  const double rows[][4] = {{9600, 7800, 9000, 7200}, {500, 700, 50, 100},   {600, 700, 0, 100},
                            {9600, 600, 9000, 50},    {9600, 100, 9000, 50}, {9600, 601, 9000, 1}};
  for (const auto& r : rows)
    EXPECT_EQ(Place_Picture(r[0], r[1]), (Picture_Placement{360, 80, r[2], r[3]})) << r[0] << " x " << r[1];
}

TEST(Set_Scale, TheFrameOrZoomWindowFillsThePictureAtOneScaleRoundedToEven) {
  // The default frame of 2000 x 1500 mm at 15 twips per pixel, margins of 150 twips at the sides
  // and the top and 800 at the bottom.
  Project p;
  Picture_State s;
  Set_Defaults(s, p);
  auto X = [&](double x) { return World_To_X(s, x); };
  auto Y = [&](double y) { return World_To_Y(s, y); };
  // 9000 x 7200 twips: x allows 8700 / 30000 = 0.29 px/mm, y (7200 - 950) / 22500 = 5/18. The
  // frame's centre goes to the middle column and to row (3600 - 150) / 15 = 230; 720 mm are 200 px.
  Set_Scale(s, p, 9600, 7800, 15);
  EXPECT_DOUBLE_EQ(s.ScaleX, 5.0 / 18);
  EXPECT_EQ(s.ScaleX, s.ScaleY);
  EXPECT_EQ(s.PictureHeight, 480);
  EXPECT_EQ((std::array{X(1000), X(0), X(2000), X(1720), Y(750), Y(0), Y(1500), Y(210)}),
            (std::array{300, 22, 578, 500, 230, 438, 22, 380}));
  EXPECT_NEAR(Picture_To_World_Y(s, Y(123.4)), 123.4, 0.5 / s.ScaleY);  // back through the pointer
  // 6000 x 12000 twips: x allows 5700 / 30000 = 0.19, y 11050 / 22500; 10 px side margins.
  Set_Scale(s, p, 6600, 12600, 15);
  EXPECT_DOUBLE_EQ(s.ScaleY, 0.19);
  EXPECT_EQ(s.PictureHeight, 800);
  EXPECT_EQ((std::array{X(0), X(2000), Y(750), Y(250), Y(1250)}), (std::array{10, 390, 390, 485, 295}));
  // The zoom window 500..700 x 200..400: y limits, 6250 twips over 200 mm x 15.
  s.Zoomed = true;
  s.ZoomX1 = 500, s.ZoomX2 = 700, s.ZoomY1 = 200, s.ZoomY2 = 400;
  Set_Scale(s, p, 9600, 7800, 15);
  EXPECT_DOUBLE_EQ(s.ScaleX, 6250.0 / 3000);
  EXPECT_EQ((std::array{X(600), Y(300), Y(200), Y(400)}), (std::array{300, 230, 438, 22}));
  // One pixel per mm and 100 rows: halves round to even; far outside the picture a position is
  // held at the 32-bit ends instead of wrapping.
  s = {.PictureHeight = 100};
  EXPECT_EQ((std::array{X(2.5), X(3.5), X(-2.5), Y(2.5), Y(3.5)}), (std::array{2, 4, -2, 98, 96}));
  s.ScaleX = 1e6;
  EXPECT_EQ((std::array{X(1e9), X(-1e9)}), (std::array{2147483647, -2147483647 - 1}));
}

TEST(Clip_Triangle_Polygon, ThePartWithinTheBandLimitsIncluded) {
  // A triangle A (0,0), B (10,0), C (0,10); with v = x + y/2 its values are 0, 10, 5.
  const Plot_Point Tri[3] = {{0, 0}, {10, 0}, {0, 10}};
  const struct {
    double lo, hi, v[3];
    std::vector<Plot_Point> polygon;  // none: the triangle is passed over
  } rows[] = {
      // Along A-B the band runs from x = 2 to 4; B-C lies above; C-A enters at v = 4 (y = 8) and
      // leaves at v = 2 (y = 4).
      {2, 4, {0, 10, 5}, {{2, 0}, {4, 0}, {0, 8}, {0, 4}}},
      // Around the middle vertex: v = 6 on B-C is 4/5 of the way, C itself is inside.
      {4, 6, {0, 10, 5}, {{4, 0}, {6, 0}, {2, 8}, {0, 10}, {0, 8}}},
      {2, 4, {1, 1.5, 0}, {}},                      // all below
      {2, 4, {5, 4.5, 9}, {}},                      // all above
      {2, 4, {2, 4, 3}, {Tri[1], Tri[2], Tri[0]}},  // all inside: each vertex once
      {2, 4, {4, 6, 7}, {Tri[0], Tri[0], Tri[0]}},  // only A, on the upper limit
  };
  for (const auto& r : rows) {
    SCOPED_TRACE(std::to_string(r.lo) + " .. " + std::to_string(r.hi) + ", B " + std::to_string(r.v[1]));
    Band_Polygon poly;
    EXPECT_EQ(Clip_Triangle_Polygon(r.lo, r.hi, Tri, r.v, poly), !r.polygon.empty());
    EXPECT_EQ(std::vector<Plot_Point>(poly.Vertex, poly.Vertex + poly.Count), r.polygon);
  }
  // Uneven bands over a skewed triangle whose values span many of them cover it exactly.
  const Plot_Point t[3] = {{3.5f, 1.25f}, {40, 7}, {12, 30.5f}};
  const double v[3] = {-1.3, 8.7, 3.1};
  for (double w : {0.37, 1.0, 2.9}) {
    double sum = 0;
    Band_Polygon poly;
    for (double lo = -2; lo < 10; lo += w)
      if (Clip_Triangle_Polygon(lo, lo + w, t, v, poly)) sum += Area(poly.Vertex, poly.Count);
    EXPECT_NEAR(sum, Area(t, 3), 1e-3 * Area(t, 3)) << "band width " << w;
  }
}

TEST(Fill_Triangle, SkipsOnlyTrianglesWhollyOutsideOnOneSide) {
  Recording_Surface surface(100, 80);
  const struct {
    Plot_Point v[3];
    bool drawn;
  } rows[] = {{{{-1, 5}, {-0.5f, 50}, {-30, 20}}, false},   {{{-1, 5}, {0, 50}, {-30, 20}}, true},  // left
              {{{101, 5}, {100.5f, 50}, {300, 20}}, false}, {{{101, 5}, {100, 50}, {300, 20}}, true},
              {{{5, -1}, {50, -2}, {20, -0.1f}}, false},    {{{5, 81}, {50, 90}, {20, 80.5f}}, false},
              {{{5, 81}, {50, 90}, {20, 80}}, true},        {{{-50, -50}, {500, -50}, {20, 400}}, true}};
  for (const auto& r : rows) {
    surface.Fills.clear();
    Fill_Triangle(surface, r.v, Red);
    EXPECT_EQ(surface.Fills.size(), r.drawn ? 1u : 0u) << r.v[0].X << ", " << r.v[0].Y;
  }
  surface.Fills.clear();  // vertices go to whole pixels, halves to even
  Fill_Triangle(surface, {Plot_Point{2.5f, 3.5f}, {10.4f, 7.6f}, {20, 30}}, Red);
  ASSERT_EQ(surface.Fills.size(), 1u);
  EXPECT_EQ((std::array{surface.Fills[0].Vertex[0], surface.Fills[0].Vertex[1]}),
            (std::array{Pixel_Point{2, 4}, Pixel_Point{10, 8}}));
}

TEST(Plot_Scale_Bar, TenBandsAlongTheBottomWithTheScaleEndsBeneath) {
  Recording_Surface surface(600, 400);
  const Scale_Bar_Labels labels = Plot_Scale_Bar(surface, 1, 12.5, 40.25, 13.125, 38);
  ASSERT_EQ(surface.Boxes.size(), 10u);
  for (int k = 1; k <= 10; ++k) {  // bands of (600 - 100) / 10 = 50 px from x = 50
    const auto& box = surface.Boxes[static_cast<std::size_t>(k - 1)];
    EXPECT_EQ((std::array{box.X1, box.X2, box.Y1, box.Y2}),
              (std::array{50.0 * k, 50.0 * k + 50, 360.0, 370.0}));
    EXPECT_EQ(box.Colour, ScaleColours[k]);
  }
  ASSERT_EQ(surface.Texts.size(), 2u);
  EXPECT_EQ(std::tuple(surface.Texts[0].Text, surface.Texts[0].X, surface.Texts[0].Y, surface.Texts[1].Text,
                       surface.Texts[1].X),
            std::tuple(" 12.50", 20.0, 371.0, " 40.25", 520.0));
  EXPECT_EQ(std::tuple(labels.Minimum, labels.Maximum), std::tuple(" 13.13", " 38.00"));
  // The formats follow the variable: low and high scale values, their texts.
  const std::tuple<int, double, double, std::string, std::string> formats[] = {
      {3, 1234.5, -7, "    1234.5", "      -7.0"},  // 1 decimal, 10 places
      {13, -1.5, 2.25, "   -1.50", "   2.250"},     // stresses: 2 decimals low, 3 high, 8 places
      {1, 12345.678, 0, "*", "  0.00"},             // does not fit 6 places
      {20, 3, 250, "", " 250.000"}};                // the deformed mesh has only a high label
  for (const auto& [v, low, high, low_text, high_text] : formats) {
    Recording_Surface s(300, 200);
    const Scale_Bar_Labels l = Plot_Scale_Bar(s, v, low, high, low, high);
    EXPECT_EQ(std::tuple(l.Low, l.High, s.Texts.size()), std::tuple(low_text, high_text, v == 20 ? 1u : 2u))
        << v;
  }
}

// A picture of 100 rows at one pixel per mm, model (x, y) at pixel (x, 100 - y), and a square
// element over 10..50 x 10..50.
const double Square_X[4] = {10, 50, 50, 10};
const double Square_Y[4] = {10, 10, 50, 50};
const Picture_State Unit_Picture{.PictureHeight = 100};

// The band (1..10) of a fill's colour, 0 when it is none of the scale's.
int Band_Of(Plot_Colour c) {
  for (int k = 1; k <= Scale_Band_Count; ++k)
    if (c == ScaleColours[k]) return k;
  return 0;
}

TEST(Plot_Element_Contours, LinearFieldFillsTenEqualStrips) {
  // v = x with the scale 10..50: band k is the strip 10 + 4(k-1) <= x <= 10 + 4k, 4 x 40 px^2.
  Recording_Surface surface(200, 200);
  const double v[4] = {10, 50, 50, 10};
  Plot_Element_Contours(surface, Unit_Picture, Square_X, Square_Y, v, 10, 50);
  std::map<int, double> area;
  int previous_band = 0;
  for (const auto& fill : surface.Fills) {
    const int band = Band_Of(fill.Colour);
    ASSERT_GE(band, std::max(previous_band, 1));  // bands are drawn from the low end up
    previous_band = band;
    area[band] += Area(fill.Vertex, 3);
    for (const Pixel_Point& p : fill.Vertex) {
      EXPECT_TRUE(p.X >= 10 + 4 * (band - 1) && p.X <= 10 + 4 * band) << band;
      EXPECT_TRUE(p.Y >= 50 && p.Y <= 90);
    }
  }
  ASSERT_EQ(area.size(), 10u);
  for (const auto& [band, a] : area)
    EXPECT_NEAR(a, 160, 1e-9) << "band " << band;
}

TEST(Plot_Element_Contours, UniformValuesOnLimitsAndOutsideTheScale) {
  // Value, scale ends, the bands of the first and the last fill, fills (four triangles per band).
  // 26 is the limit of band 4 (22..26) and band 5 (26..30), the upper drawn last; equal scale ends
  // have bands of a thousandth.
  const double rows[][6] = {{26, 10, 50, 4, 5, 8}, {9.99, 10, 50, 0, 0, 0},   {50.01, 10, 50, 0, 0, 0},
                            {5, 5, 5, 1, 1, 4},    {5.0095, 5, 5, 10, 10, 4}, {5.0105, 5, 5, 0, 0, 0},
                            {4.999, 5, 5, 0, 0, 0}};
  for (const auto& [value, low, high, first, last, fills] : rows) {
    Recording_Surface surface(200, 200);
    const double v[4] = {value, value, value, value};
    Plot_Element_Contours(surface, Unit_Picture, Square_X, Square_Y, v, low, high);
    ASSERT_EQ(surface.Fills.size(), std::size_t(fills)) << value;
    if (fills > 0) {
      EXPECT_EQ(std::pair(Band_Of(surface.Fills.front().Colour), Band_Of(surface.Fills.back().Colour)),
                std::pair(int(first), int(last)))
          << value;
    }
  }
  // An element left of the picture leaves nothing, whatever its values.
  Recording_Surface surface(200, 200);
  const double left_x[4] = {-50, -10, -10, -50}, inside[4] = {20, 30, 40, 20};
  Plot_Element_Contours(surface, Unit_Picture, left_x, Square_Y, inside, 10, 50);
  EXPECT_TRUE(surface.Fills.empty());
}

}  // namespace
}  // namespace pvx
