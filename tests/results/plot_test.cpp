// The picture transformation, band clipping, triangle fills, the scale bar and contour plots,
// against positions, areas and texts worked out by hand.
#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include "results/plot.h"
#include "support/recording_surface.h"

namespace pvx {
namespace {

using testing::Recording_Surface;

// Twice the signed area of a polygon (shoelace).
double Double_Area(const Plot_Point* p, int n) {
  double s = 0;
  for (int i = 0; i < n; ++i) {
    const Plot_Point& a = p[i];
    const Plot_Point& b = p[(i + 1) % n];
    s += static_cast<double>(a.X) * b.Y - static_cast<double>(b.X) * a.Y;
  }
  return s;
}

double Area(const Pixel_Point (&v)[3]) {
  return std::fabs(static_cast<double>(v[1].X - v[0].X) * (v[2].Y - v[0].Y) -
                   static_cast<double>(v[2].X - v[0].X) * (v[1].Y - v[0].Y)) /
         2;
}

Project Default_Frame() {
  Project p;
  Picture_State s;
  Set_Defaults(s, p);
  return p;
}

// --- Placement and the transformation ------------------------------------------------------------

TEST(Place_Picture, SixHundredTwipsSmallerWithFallbacks) {
  EXPECT_EQ(Place_Picture(9600, 7800), (Picture_Placement{360, 80, 9000, 7200}));
  // Too narrow a form: a negative width becomes 50; a width of exactly 0 stays.
  EXPECT_EQ(Place_Picture(500, 700).Width, 50);
  EXPECT_EQ(Place_Picture(600, 700).Width, 0);
  // A height of 0 or less becomes 50.
  EXPECT_EQ(Place_Picture(9600, 600).Height, 50);
  EXPECT_EQ(Place_Picture(9600, 100).Height, 50);
  EXPECT_EQ(Place_Picture(9600, 601).Height, 1);
}

TEST(Set_Scale, WidePictureIsLimitedByItsHeight) {
  // Frame 2000 x 1500 mm in a picture of 9000 x 7200 twips at 15 twips per pixel:
  // x allows 8700 / 30000 = 0.29 px/mm, y allows (7200 - 950) / 22500 = 5/18 px/mm.
  const Project p = Default_Frame();
  Picture_State s;
  Set_Scale(s, p, 9600, 7800, 15);
  EXPECT_DOUBLE_EQ(s.ScaleX, 5.0 / 18);
  EXPECT_EQ(s.ScaleX, s.ScaleY);
  EXPECT_EQ(s.PictureHeight, 480);
  EXPECT_NEAR(s.OriginX, -80, 1e-9);   // 1000 - 300 px / (5/18)
  EXPECT_NEAR(s.OriginY, -150, 1e-9);  // 750 + (230 - 480) / (5/18)
  // Frame centre at the picture's horizontal middle and at row (3600 - 150) / 15 = 230.
  EXPECT_EQ(World_To_X(s, 1000), 300);
  EXPECT_EQ(World_To_Y(s, 750), 230);
  // Frame corners: 80 mm * 5/18 = 22.2 px, 2080 mm -> 577.8 px; rows 480 - 41.7 and 480 - 458.3.
  EXPECT_EQ(World_To_X(s, 0), 22);
  EXPECT_EQ(World_To_X(s, 2000), 578);
  EXPECT_EQ(World_To_Y(s, 0), 438);
  EXPECT_EQ(World_To_Y(s, 1500), 22);
  // Equal model lengths are equal picture lengths in both directions: 720 mm = 200 px.
  EXPECT_EQ(World_To_X(s, 1720) - World_To_X(s, 1000), 200);
  EXPECT_EQ(World_To_Y(s, 210) - World_To_Y(s, 930), 200);
}

TEST(Set_Scale, TallPictureIsLimitedByItsWidthAndKeepsTheSideMargins) {
  // 6000 x 12000 twips: x allows 5700 / 30000 = 0.19, y allows 11050 / 22500 = 0.49.
  const Project p = Default_Frame();
  Picture_State s;
  Set_Scale(s, p, 6600, 12600, 15);
  EXPECT_DOUBLE_EQ(s.ScaleY, 0.19);
  EXPECT_EQ(s.PictureHeight, 800);
  // The frame fills the width less 150 twips = 10 px each side.
  EXPECT_EQ(World_To_X(s, 0), 10);
  EXPECT_EQ(World_To_X(s, 2000), 390);
  EXPECT_EQ(World_To_Y(s, 750), 390);  // (6000 - 150) / 15
  // 500 mm either side of the centre is 95 px.
  EXPECT_EQ(World_To_Y(s, 250), 485);
  EXPECT_EQ(World_To_Y(s, 1250), 295);
}

TEST(Set_Scale, ZoomWindowReplacesTheFrame) {
  const Project p = Default_Frame();
  Picture_State s;
  s.Zoomed = true;
  s.ZoomX1 = 500, s.ZoomX2 = 700, s.ZoomY1 = 200, s.ZoomY2 = 400;
  Set_Scale(s, p, 9600, 7800, 15);
  EXPECT_DOUBLE_EQ(s.ScaleX, 6250.0 / 3000);  // y limits: 6250 twips over 200 mm * 15
  EXPECT_EQ(World_To_X(s, 600), 300);
  EXPECT_EQ(World_To_Y(s, 300), 230);
  EXPECT_EQ(World_To_Y(s, 200), 438);  // 480 - 41.7
  EXPECT_EQ(World_To_Y(s, 400), 22);   // 480 - 458.3
}

TEST(World_To_X, RoundsHalvesToEvenAndReversesThroughThePointer) {
  Picture_State s;
  s.ScaleX = s.ScaleY = 1;
  s.OriginX = s.OriginY = 0;
  s.PictureHeight = 100;
  EXPECT_EQ(World_To_X(s, 2.5), 2);
  EXPECT_EQ(World_To_X(s, 3.5), 4);
  EXPECT_EQ(World_To_X(s, -2.5), -2);
  EXPECT_EQ(World_To_Y(s, 2.5), 98);
  EXPECT_EQ(World_To_Y(s, 3.5), 96);
  // Far outside the picture the position is held at the 32-bit ends instead of wrapping.
  s.ScaleX = 1e6;
  EXPECT_EQ(World_To_X(s, 1e9), 2147483647);
  EXPECT_EQ(World_To_X(s, -1e9), -2147483647 - 1);

  const Project p = Default_Frame();
  Set_Scale(s, p, 9600, 7800, 15);
  for (double x : {0.0, 123.4, 1999.0}) {
    EXPECT_NEAR(Picture_To_World_X(s, World_To_X(s, x)), x, 0.5 / s.ScaleX + 1e-9);
    EXPECT_NEAR(Picture_To_World_Y(s, World_To_Y(s, x)), x, 0.5 / s.ScaleY + 1e-9);
  }
  EXPECT_NEAR(Picture_To_World_X(s, 300), 1000, 1e-9);
  EXPECT_NEAR(Picture_To_World_Y(s, 230), 750, 1e-9);
}

// --- Band clipping -------------------------------------------------------------------------------

// A triangle (0,0), (10,0), (0,10) with the linear field v = x + y/2: values 0, 10, 5. The part
// with v <= c (c <= 5) is the triangle (0,0), (c,0), (0,2c) of area c^2; the part with v >= 6 is
// (6,0), (10,0), (2,8) of area 16.
const Plot_Point Tri[3] = {{0, 0}, {10, 0}, {0, 10}};
const double Tri_Value[3] = {0, 10, 5};

TEST(Clip_Triangle_Polygon, BandBelowTheMiddleVertexCutsAQuadrilateral) {
  Band_Polygon poly;
  ASSERT_TRUE(Clip_Triangle_Polygon(2, 4, Tri, Tri_Value, poly));
  ASSERT_EQ(poly.Count, 4);
  // Along A-B the band starts at x = 2 and ends at x = 4; B-C lies above; C-A enters at
  // v = 4 (y = 8) and leaves at v = 2 (y = 4).
  EXPECT_EQ(poly.Vertex[0], (Plot_Point{2, 0}));
  EXPECT_EQ(poly.Vertex[1], (Plot_Point{4, 0}));
  EXPECT_EQ(poly.Vertex[2], (Plot_Point{0, 8}));
  EXPECT_EQ(poly.Vertex[3], (Plot_Point{0, 4}));
  EXPECT_NEAR(std::fabs(Double_Area(poly.Vertex, poly.Count)) / 2, 16 - 4, 1e-9);
}

TEST(Clip_Triangle_Polygon, BandAroundTheMiddleVertexCutsAPentagon) {
  Band_Polygon poly;
  ASSERT_TRUE(Clip_Triangle_Polygon(4, 6, Tri, Tri_Value, poly));
  ASSERT_EQ(poly.Count, 5);
  EXPECT_EQ(poly.Vertex[0], (Plot_Point{4, 0}));
  EXPECT_EQ(poly.Vertex[1], (Plot_Point{6, 0}));
  EXPECT_EQ(poly.Vertex[2], (Plot_Point{2, 8}));   // v = 6 on B-C, 4/5 of the way
  EXPECT_EQ(poly.Vertex[3], (Plot_Point{0, 10}));  // C itself is inside
  EXPECT_EQ(poly.Vertex[4], (Plot_Point{0, 8}));   // v = 4 on C-A
  EXPECT_NEAR(std::fabs(Double_Area(poly.Vertex, poly.Count)) / 2, 50 - 16 - 16, 1e-9);
}

TEST(Clip_Triangle_Polygon, PiecesOfAllBandsAddUpToTheTriangle) {
  // Uneven bands over a skewed triangle whose values span many of them.
  const Plot_Point t[3] = {{3.5f, 1.25f}, {40, 7}, {12, 30.5f}};
  const double v[3] = {-1.3, 8.7, 3.1};
  const double whole = std::fabs(Double_Area(t, 3)) / 2;
  for (double w : {0.37, 1.0, 2.9}) {
    double sum = 0;
    Band_Polygon poly;
    for (double lo = -2; lo < 10; lo += w) {
      if (!Clip_Triangle_Polygon(lo, lo + w, t, v, poly)) continue;
      ASSERT_LE(poly.Count, 5);
      if (poly.Count >= 3) sum += std::fabs(Double_Area(poly.Vertex, poly.Count)) / 2;
    }
    EXPECT_NEAR(sum, whole, 1e-3 * whole) << "band width " << w;
  }
}

TEST(Clip_Triangle_Polygon, ValuesOnTheLimitsCountAsInside) {
  Band_Polygon poly;
  const double below[3] = {1, 1.5, 0};
  EXPECT_FALSE(Clip_Triangle_Polygon(2, 4, Tri, below, poly));
  EXPECT_EQ(poly.Count, 0);
  const double above[3] = {5, 4.5, 9};
  EXPECT_FALSE(Clip_Triangle_Polygon(2, 4, Tri, above, poly));
  // Every value inside, two on the limits: the triangle itself, each vertex once.
  const double inside[3] = {2, 4, 3};
  ASSERT_TRUE(Clip_Triangle_Polygon(2, 4, Tri, inside, poly));
  ASSERT_EQ(poly.Count, 3);
  EXPECT_EQ(poly.Vertex[0], Tri[1]);
  EXPECT_EQ(poly.Vertex[1], Tri[2]);
  EXPECT_EQ(poly.Vertex[2], Tri[0]);
  // One vertex touching the upper limit from a triangle otherwise above: not rejected.
  const double touching[3] = {4, 6, 7};
  EXPECT_TRUE(Clip_Triangle_Polygon(2, 4, Tri, touching, poly));
}

TEST(Clip_Edge_To_Band, WalksFromAToB) {
  const Plot_Point a{0, 0}, b{10, 20};
  auto clip = [&](double va, double vb) {
    Band_Polygon poly;
    Clip_Edge_To_Band(0.3, 0.7, a, b, va, vb, poly);
    return poly;
  };
  Band_Polygon p = clip(0, 1);  // rising through the band: enters at 0.3, leaves at 0.7
  ASSERT_EQ(p.Count, 2);
  EXPECT_FLOAT_EQ(p.Vertex[0].X, 3);
  EXPECT_FLOAT_EQ(p.Vertex[0].Y, 6);
  EXPECT_FLOAT_EQ(p.Vertex[1].X, 7);
  EXPECT_FLOAT_EQ(p.Vertex[1].Y, 14);
  p = clip(1, 0);  // falling: enters at 0.7 (x = 3), leaves at 0.3 (x = 7)
  ASSERT_EQ(p.Count, 2);
  EXPECT_FLOAT_EQ(p.Vertex[0].X, 3);
  EXPECT_FLOAT_EQ(p.Vertex[1].X, 7);
  p = clip(0, 0.5);  // ends inside: the entry point and B
  ASSERT_EQ(p.Count, 2);
  EXPECT_FLOAT_EQ(p.Vertex[0].X, 6);
  EXPECT_EQ(p.Vertex[1], b);
  p = clip(0.5, 0.9);  // starts inside: only the exit point, A belongs to the previous edge
  ASSERT_EQ(p.Count, 1);
  EXPECT_FLOAT_EQ(p.Vertex[0].X, 5);
  EXPECT_EQ(clip(0.5, 0.6).Count, 1);
  EXPECT_EQ(clip(0.5, 0.6).Vertex[0], b);
  EXPECT_EQ(clip(0, 0.2).Count, 0);
  EXPECT_EQ(clip(0.8, 1).Count, 0);
}

// --- Filling -------------------------------------------------------------------------------------

TEST(Fill_Triangle, SkipsOnlyTrianglesWhollyOutsideOnOneSide) {
  Recording_Surface surface(100, 80);
  auto fills = [&](Plot_Point a, Plot_Point b, Plot_Point c) {
    surface.Fills.clear();
    Fill_Triangle(surface, {a, b, c}, Red);
    return surface.Fills.size();
  };
  EXPECT_EQ(fills({-1, 5}, {-0.5f, 50}, {-30, 20}), 0u);    // all left
  EXPECT_EQ(fills({-1, 5}, {0, 50}, {-30, 20}), 1u);        // one on the left edge
  EXPECT_EQ(fills({101, 5}, {100.5f, 50}, {300, 20}), 0u);  // all right of the width
  EXPECT_EQ(fills({101, 5}, {100, 50}, {300, 20}), 1u);
  EXPECT_EQ(fills({5, -1}, {50, -2}, {20, -0.1f}), 0u);  // all above
  EXPECT_EQ(fills({5, 81}, {50, 90}, {20, 80.5f}), 0u);  // all below the height
  EXPECT_EQ(fills({5, 81}, {50, 90}, {20, 80}), 1u);
  // Spanning the picture from outside on every side: drawn.
  EXPECT_EQ(fills({-50, -50}, {500, -50}, {20, 400}), 1u);
  // Vertices go to whole pixels, halves to even.
  EXPECT_EQ(fills({2.5f, 3.5f}, {10.4f, 7.6f}, {20, 30}), 1u);
  EXPECT_EQ(surface.Fills[0].Vertex[0], (Pixel_Point{2, 4}));
  EXPECT_EQ(surface.Fills[0].Vertex[1], (Pixel_Point{10, 8}));
  EXPECT_EQ(surface.Fills[0].Colour, Red);
}

TEST(Clip_Triangle_To_Band, FillsThePentagonAsAFanFromItsFirstVertex) {
  Recording_Surface surface(100, 100);
  Clip_Triangle_To_Band(surface, 4, 6, Tri, Tri_Value, Blue);
  ASSERT_EQ(surface.Fills.size(), 3u);
  const Pixel_Point p1{4, 0}, p2{6, 0}, p3{2, 8}, p4{0, 10}, p5{0, 8};
  const Pixel_Point expected[3][3] = {{p1, p2, p3}, {p1, p3, p4}, {p1, p4, p5}};
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j)
      EXPECT_EQ(surface.Fills[i].Vertex[j], expected[i][j]);
    EXPECT_EQ(surface.Fills[i].Colour, Blue);
  }
}

// --- Scale bar -----------------------------------------------------------------------------------

TEST(Plot_Scale_Bar, TenBandsAlongTheBottomWithTheScaleEndsBeneath) {
  Recording_Surface surface(600, 400);
  const Scale_Bar_Labels labels = Plot_Scale_Bar(surface, 1, 12.5, 40.25, 13.125, 38);
  ASSERT_EQ(surface.Boxes.size(), 10u);
  for (int k = 1; k <= 10; ++k) {  // bands of (600 - 100) / 10 = 50 px from x = 50
    const auto& box = surface.Boxes[static_cast<std::size_t>(k - 1)];
    EXPECT_DOUBLE_EQ(box.X1, 50 + 50.0 * (k - 1));
    EXPECT_DOUBLE_EQ(box.X2, 50 + 50.0 * k);
    EXPECT_DOUBLE_EQ(box.Y1, 360);
    EXPECT_DOUBLE_EQ(box.Y2, 370);
    EXPECT_EQ(box.Colour, ScaleColours[k]);
  }
  EXPECT_EQ(surface.Boxes.front().Colour, (Plot_Colour{0, 0, 128}));
  EXPECT_EQ(surface.Boxes.back().Colour, Red);
  ASSERT_EQ(surface.Texts.size(), 2u);
  EXPECT_EQ(surface.Texts[0].Text, " 12.50");
  EXPECT_DOUBLE_EQ(surface.Texts[0].X, 20);
  EXPECT_DOUBLE_EQ(surface.Texts[0].Y, 371);
  EXPECT_EQ(surface.Texts[1].Text, " 40.25");
  EXPECT_DOUBLE_EQ(surface.Texts[1].X, 520);
  EXPECT_DOUBLE_EQ(surface.Texts[1].Y, 371);
  EXPECT_EQ(labels.Minimum, " 13.13");
  EXPECT_EQ(labels.Maximum, " 38.00");
}

TEST(Plot_Scale_Bar, LabelFormatsFollowTheVariable) {
  Recording_Surface surface(300, 200);
  auto labels = [&](int v, double low, double high) {
    surface.Texts.clear();
    return Plot_Scale_Bar(surface, v, low, high, low, high);
  };
  Scale_Bar_Labels l = labels(3, 1234.5, -7);  // 1 decimal, 10 places
  EXPECT_EQ(l.Low, "    1234.5");
  EXPECT_EQ(l.High, "      -7.0");
  l = labels(4, 0.5, 0.125);  // 3 decimals, 6 places
  EXPECT_EQ(l.Low, " 0.500");
  EXPECT_EQ(l.High, " 0.125");
  l = labels(13, -1.5, 2.25);  // stresses: 2 decimals low, 3 high, 8 places
  EXPECT_EQ(l.Low, "   -1.50");
  EXPECT_EQ(l.High, "   2.250");
  l = labels(22, 0, 1);
  EXPECT_EQ(l.Low, "    0.00");
  EXPECT_EQ(l.High, "   1.000");
  l = labels(40, 0.25, 100);
  EXPECT_EQ(l.High, "   100.0");
  l = labels(1, 12345.678, 0);  // does not fit 6 places
  EXPECT_EQ(l.Low, "*");
  // The deformed mesh has only a high label.
  l = labels(20, 3, 250);
  EXPECT_EQ(l.Low, "");
  EXPECT_EQ(l.Minimum, "");
  EXPECT_EQ(l.High, " 250.000");
  ASSERT_EQ(surface.Texts.size(), 1u);
  EXPECT_DOUBLE_EQ(surface.Texts[0].X, 220);
}

// --- Contours ------------------------------------------------------------------------------------

// A picture of 100 rows at one pixel per mm: model (x, y) is pixel (x, 100 - y).
Picture_State Unit_Picture() {
  Picture_State s;
  s.ScaleX = s.ScaleY = 1;
  s.OriginX = s.OriginY = 0;
  s.PictureHeight = 100;
  return s;
}

const double Square_X[4] = {10, 50, 50, 10};
const double Square_Y[4] = {10, 10, 50, 50};

TEST(Plot_Element_Contours, LinearFieldFillsTenEqualStrips) {
  // v = x over a 40 x 40 element with the scale 10..50: band k is the strip
  // 10 + 4(k-1) <= x <= 10 + 4k, 4 x 40 = 160 px^2, in the colour of its band.
  Recording_Surface surface(200, 200);
  const double v[4] = {10, 50, 50, 10};
  Plot_Element_Contours(surface, Unit_Picture(), Square_X, Square_Y, v, 10, 50);
  std::map<int, double> area;
  int previous_band = 0;
  for (const auto& fill : surface.Fills) {
    int band = 0;
    for (int k = 1; k <= 10; ++k)
      if (fill.Colour == ScaleColours[k]) band = k;
    ASSERT_NE(band, 0);
    EXPECT_GE(band, previous_band);  // bands are drawn from the low end up
    previous_band = band;
    area[band] += Area(fill.Vertex);
    for (const Pixel_Point& p : fill.Vertex) {
      EXPECT_GE(p.X, 10 + 4 * (band - 1));
      EXPECT_LE(p.X, 10 + 4 * band);
      EXPECT_GE(p.Y, 50);
      EXPECT_LE(p.Y, 90);
    }
  }
  ASSERT_EQ(area.size(), 10u);
  for (const auto& [band, a] : area)
    EXPECT_NEAR(a, 160, 1e-9) << "band " << band;
}

TEST(Plot_Element_Contours, ValueOnABandLimitEndsInTheUpperBand) {
  Recording_Surface surface(200, 200);
  const double v[4] = {26, 26, 26, 26};  // limit between band 4 (22..26) and band 5 (26..30)
  Plot_Element_Contours(surface, Unit_Picture(), Square_X, Square_Y, v, 10, 50);
  ASSERT_EQ(surface.Fills.size(), 8u);  // four triangles in each of the two bands
  for (int i = 0; i < 4; ++i)
    EXPECT_EQ(surface.Fills[static_cast<std::size_t>(i)].Colour, ScaleColours[4]);
  for (int i = 4; i < 8; ++i)
    EXPECT_EQ(surface.Fills[static_cast<std::size_t>(i)].Colour, ScaleColours[5]);
  // The four triangles meet in the centre (30, 70) and cover the element. A triangle wholly in
  // its band comes out starting from the end of its first edge: second corner, centre, first.
  double total = 0;
  for (int i = 4; i < 8; ++i) {
    EXPECT_EQ(surface.Fills[static_cast<std::size_t>(i)].Vertex[1], (Pixel_Point{30, 70}));
    total += Area(surface.Fills[static_cast<std::size_t>(i)].Vertex);
  }
  EXPECT_DOUBLE_EQ(total, 1600);
}

TEST(Plot_Element_Contours, ValuesOutsideTheScaleOrThePictureLeaveNothing) {
  Recording_Surface surface(200, 200);
  const double above[4] = {60, 70, 55, 51};
  Plot_Element_Contours(surface, Unit_Picture(), Square_X, Square_Y, above, 10, 50);
  const double below[4] = {9.99, 0, -5, 3};
  Plot_Element_Contours(surface, Unit_Picture(), Square_X, Square_Y, below, 10, 50);
  const double left_x[4] = {-50, -10, -10, -50};
  const double inside[4] = {20, 30, 40, 20};
  Plot_Element_Contours(surface, Unit_Picture(), left_x, Square_Y, inside, 10, 50);
  EXPECT_TRUE(surface.Fills.empty());
}

TEST(Plot_Element_Contours, EqualScaleEndsPaintOnlyWithinAHundredthAboveLow) {
  Recording_Surface surface(200, 200);
  auto painted = [&](double value) {
    surface.Fills.clear();
    const double v[4] = {value, value, value, value};
    Plot_Element_Contours(surface, Unit_Picture(), Square_X, Square_Y, v, 5, 5);
    return !surface.Fills.empty();
  };
  EXPECT_TRUE(painted(5));
  EXPECT_TRUE(painted(5.0095));
  EXPECT_EQ(surface.Fills.back().Colour, ScaleColours[10]);
  EXPECT_FALSE(painted(5.0105));
  EXPECT_FALSE(painted(4.999));
}

TEST(Plot_Element_Contours, MeshElementOfTheProjectByItsCornerNodes) {
  Project p;
  for (int i = 0; i < 4; ++i)  // nodes numbered against the corner order
    p.Mesh_Node.add({Square_X[3 - i], Square_Y[3 - i]});
  Mesh_Element e;
  for (int i = 1; i <= 4; ++i)
    e.Corner[i] = static_cast<std::int16_t>(5 - i);
  p.Mesh_Element.add(e);
  const double v[4] = {12, 47, 33, 18};
  Recording_Surface by_project(200, 200), by_corners(200, 200);
  Plot_Element_Contours(by_project, Unit_Picture(), p, 1, v, 10, 50);
  Plot_Element_Contours(by_corners, Unit_Picture(), Square_X, Square_Y, v, 10, 50);
  ASSERT_FALSE(by_corners.Fills.empty());
  ASSERT_EQ(by_project.Fills.size(), by_corners.Fills.size());
  for (std::size_t i = 0; i < by_corners.Fills.size(); ++i)
    for (int j = 0; j < 3; ++j)
      EXPECT_EQ(by_project.Fills[i].Vertex[j], by_corners.Fills[i].Vertex[j]);
}

}  // namespace
}  // namespace pvx
