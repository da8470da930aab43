// Corner values per variable, principal stresses against Mohr's circle, the value and its text at a
// point, the labels of a page and its scale boxes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

#include "app/units.h"
#include "family_support.h"
#include "results/viewer_values.h"

namespace pvx {
namespace {

using ::testing::DoubleNear;
using ::testing::Pointwise;

// The two-square mesh with buffers for one record of a mechanical run.
struct Two_Elements {
  Project p;
  Plot_Buffers b;
  Two_Elements() {
    test::Two_Squares(p);
    Dimension_Plot_Buffers({.Nodes = 6, .Elements = 2, .Circuit_Stations = {}}, b);
  }
  void Row(int e, int corner, float a1, float a2, float a3, float a4) {
    auto& r = b.Element_A[e][corner];
    r[1] = a1, r[2] = a2, r[3] = a3, r[4] = a4;
  }
};

TEST(Corner_Values, EachVariableTakesItsNodeColumnOrPrincipalStress) {
  Two_Elements t;
  // Element 1, Sxx Syy Sxy: centre 30, radius sqrt(20^2 + 15^2) = 25; equal normal stresses without
  // shear; pure shear 7; centre -5, radius sqrt(3^2 + 4^2) = 5.
  t.Row(1, 1, 50, 10, 15, 0);
  t.Row(1, 2, -20, -20, 0, 0);
  t.Row(1, 3, 0, 0, 7, 0);
  t.Row(1, 4, -2, -8, -4, 0);
  // Element 2: Sxx c, Syy 10 + c, Sxy 20 + c, Szz c - 2 at corner c; ft 4, 4, 4, 0.
  for (int c = 1; c <= 4; ++c) {
    t.Row(2, c, float(c), float(10 + c), float(20 + c), float(c - 2));
    t.b.Element_B[2][c][1] = c == 4 ? 0.0f : 4.0f;
  }
  // Node buffer entry k holds k: temperature of node n is n, its Ux is 2n - 1 and its Uy 2n.
  for (int k = 1; k <= 12; ++k)
    t.b.Node[k] = static_cast<float>(k);
  // Variable, element, the four corner values; element 2 has nodes 2, 5, 6, 3; the ratio counts
  // only tension against a positive strength.
  const double rows[][6] = {
      {13, 1, 55, -20, 7, 0},  {14, 1, 5, -20, -7, -10},
      {1, 2, 2, 5, 6, 3},      {11, 2, 3, 9, 11, 5},
      {12, 2, 4, 10, 12, 6},   {20, 2, 5, std::sqrt(181.0), std::sqrt(265.0), std::sqrt(61.0)},
      {40, 2, 1, 2, 3, 4},     {16, 2, 1, 2, 3, 4},
      {17, 2, 11, 12, 13, 14}, {18, 2, 21, 22, 23, 24},
      {15, 2, -1, 0, 1, 2},    {19, 2, 0, 0, 0.25, 0}};
  for (const auto& r : rows) {
    double f[4] = {};
    ASSERT_TRUE(Corner_Values(t.p, t.b, int(r[0]), int(r[1]), f)) << r[0];
    EXPECT_THAT(f, Pointwise(DoubleNear(1e-5), std::vector(r + 2, r + 6))) << r[0];
  }
  // Equation numbers of the element win over the corner's node (a doubled node of an interface).
  t.p.Mesh_Element[2].Dof[3] = 11;
  double f[4];
  ASSERT_TRUE(Corner_Values(t.p, t.b, 11, 2, f));
  EXPECT_EQ(f[1], 11);
  for (const auto& [variable, element] : {std::pair{21, 1}, {30, 1}, {1, 3}})
    EXPECT_FALSE(Corner_Values(t.p, t.b, variable, element, f)) << variable << " " << element;
}

TEST(Value_At_Point, InterpolatedValueAndItsText) {
  Two_Elements t;
  // Node buffer entry k holds 10 k: element 1 has the temperatures 10, 20, 30, 40 and Ux 10, 30,
  // 50, 70. Sxx 1, 2, 3, 4 at its corners, Szz 8 at corner 3 and -1 elsewhere, ft 2 everywhere.
  for (int k = 1; k <= 12; ++k)
    t.b.Node[k] = static_cast<float>(10 * k);
  for (int c = 1; c <= 4; ++c) {
    t.Row(1, c, float(c), 0, 0, c == 3 ? 8.0f : -1.0f);
    t.b.Element_B[1][c][1] = 2;
  }
  const std::tuple<int, double, double, bool, double, std::string> rows[] = {
      // 10 + 10/4 + 30/2 + (30 - 20 - 40 + 10)/8 = 25.
      {1, 0.25, 0.5, true, 25, "     25.00 oC"},
      {1, 0.25, 0.5, false, 25, "     25.00 oF"},
      {16, 0.5, 0.5, true, 2.5, "      2.50  (ft=   2.00] Mpa"},
      {16, 0.5, 0.5, false, 2.5, "      2.50  (ft=   2.00] ksi"},
      // The ratio of the interpolated fields: Szz at the centre (-1 - 1 + 8 - 1) / 4 = 1.25, ft 2.
      {19, 0.5, 0.5, true, 0.625, "      0.63"},
      {19, 0.1, 0.1, true, 0, "      0.00"},  // Szz < 0 near corner 1
      // 10 + 20 x 0.3 + 60 x 0.3 + (50 - 30 - 70 + 10) x 0.09: three decimals for displacements.
      {11, 0.3, 0.3, true, 30.4, "    30.400 mm"}};
  for (const auto& [variable, u, v, metric, value, text] : rows) {
    SCOPED_TRACE(text);
    Point_Reading r;
    ASSERT_TRUE(Value_At_Point(t.p, t.b, variable, 1, u, v, metric, r));
    EXPECT_NEAR(r.Value, value, 1e-5);
    EXPECT_EQ(std::tuple(r.Text, r.Has_Strength), std::tuple(text, variable == 16 || variable == 19));
    EXPECT_EQ(std::tuple(r.X, r.Y, r.X_Text), std::tuple(100 * u, 100 * v, Coordinate_Text(100 * u)));
  }
  Point_Reading r;
  EXPECT_FALSE(Value_At_Point(t.p, t.b, 21, 1, 0.3, 0.3, true, r));
  EXPECT_EQ(Coordinate_Text(25), "25.00");
}

TEST(Viewer_Texts, PageLabelsAndScaleBoxes) {
  Run_Index index;
  index.Extremes[26] = {-1.5, 2.25, 4, 70, 1, 1};  // viewer variable 33 shows row 26
  const Extreme_Labels l = Extreme_Labels_Of(index, 33, true);
  EXPECT_EQ(std::tuple(l.Maximum, l.Minimum, l.Scale_Maximum, l.Scale_Minimum),
            std::tuple("Maximum:     2.25 [MPa]", "Minimum:    -1.50 [MPa]", "70", "4"));
  // A scale box shows the shortest text that reads back through the number entry to the same single.
  EXPECT_EQ(Scale_Box_Text(65.00244552467068), "65.00245");
  for (double v : {0.1, 1.0 / 3, -2.5e20, 0.9704449037645112})
    EXPECT_EQ(float(Check_Number(Scale_Box_Text(v), false, nullptr)), float(v)) << Scale_Box_Text(v);
}

}  // namespace
}  // namespace pvx
