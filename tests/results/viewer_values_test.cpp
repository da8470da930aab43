// Corner values per variable, principal stresses against Mohr's circle, the value and its text at a
// point, titles and the labels of a page.
#include <gtest/gtest.h>

#include <cmath>

#include "app/units.h"
#include "results/viewer_values.h"

namespace pvx {
namespace {

// One square element 0..100 with nodes 1..4 and a second one, 2-5-6-3, to its right.
struct Two_Elements {
  Project p;
  Plot_Buffers b;
  Two_Elements() {
    for (auto [x, y] : {std::pair{0, 0}, {100, 0}, {100, 100}, {0, 100}, {200, 0}, {200, 100}})
      p.Mesh_Node.add({double(x), double(y)});
    Mesh_Element e;
    e.Corner = {{1, 2, 3, 4}};
    p.Mesh_Element.add(e);
    e.Corner = {{2, 5, 6, 3}};
    p.Mesh_Element.add(e);
    Result_Layout l;
    l.Nodes = 6;
    l.Elements = 2;
    l.Mechanical = true;
    Dimension_Plot_Buffers(l, b);
  }
  void Stress(int e, int corner, float sxx, float syy, float sxy, float szz) {
    b.Element_A[e][corner][1] = sxx;
    b.Element_A[e][corner][2] = syy;
    b.Element_A[e][corner][3] = sxy;
    b.Element_A[e][corner][4] = szz;
  }
};

TEST(Corner_Values, PrincipalStressesLieOnMohrsCircle) {
  Two_Elements t;
  // Centre 30, radius sqrt(20^2 + 15^2) = 25: 55 and 5.
  t.Stress(1, 1, 50, 10, 15, 0);
  // Equal normal stresses without shear: a circle of radius 0 at -20.
  t.Stress(1, 2, -20, -20, 0, 0);
  // Pure shear 7: centre 0, radius 7.
  t.Stress(1, 3, 0, 0, 7, 0);
  // Centre -5, radius sqrt(3^2 + 4^2) = 5: 0 and -10.
  t.Stress(1, 4, -2, -8, -4, 0);
  double major[4], minor[4];
  ASSERT_TRUE(Corner_Values(t.p, t.b, 13, 1, major));
  ASSERT_TRUE(Corner_Values(t.p, t.b, 14, 1, minor));
  const double want_major[4] = {55, -20, 7, 0}, want_minor[4] = {5, -20, -7, -10};
  for (int c = 0; c < 4; ++c) {
    EXPECT_NEAR(major[c], want_major[c], 1e-5) << c;
    EXPECT_NEAR(minor[c], want_minor[c], 1e-5) << c;
  }
}

TEST(Corner_Values, EachVariableTakesItsColumnOrNode) {
  Two_Elements t;
  for (int n = 1; n <= 6; ++n)
    t.b.Node[n] = static_cast<float>(10 * n);
  double f[4];
  // Element 2 has nodes 2, 5, 6, 3.
  ASSERT_TRUE(Corner_Values(t.p, t.b, 1, 2, f));
  EXPECT_EQ(f[0], 20);
  EXPECT_EQ(f[1], 50);
  EXPECT_EQ(f[2], 60);
  EXPECT_EQ(f[3], 30);

  // Displacements: Ux, Uy of node n at 2n - 1, 2n; here node n has (n, -2n).
  for (int n = 1; n <= 6; ++n) {
    t.b.Node[2 * n - 1] = static_cast<float>(n);
    t.b.Node[2 * n] = static_cast<float>(-2 * n);
  }
  ASSERT_TRUE(Corner_Values(t.p, t.b, 11, 2, f));
  EXPECT_EQ(f[1], 5);
  ASSERT_TRUE(Corner_Values(t.p, t.b, 12, 2, f));
  EXPECT_EQ(f[1], -10);
  ASSERT_TRUE(Corner_Values(t.p, t.b, 20, 2, f));
  EXPECT_NEAR(f[1], std::sqrt(125.0), 1e-12);
  // Equation numbers of the element win over the corner's node (a doubled node of an interface).
  t.p.Mesh_Element[2].Dof[3] = 11;  // corner 2 takes node 6's pair
  t.p.Mesh_Element[2].Dof[4] = 12;
  ASSERT_TRUE(Corner_Values(t.p, t.b, 11, 2, f));
  EXPECT_EQ(f[1], 6);

  for (int c = 1; c <= 4; ++c) {
    t.b.Element_A[1][c][1] = static_cast<float>(c);
    t.Stress(2, c, 1, 2, 3, static_cast<float>(c - 2));  // Szz -1, 0, 1, 2
    t.b.Element_B[2][c][1] = c == 4 ? 0.0f : 4.0f;       // ft 4, 4, 4, 0
  }
  ASSERT_TRUE(Corner_Values(t.p, t.b, 40, 1, f));
  EXPECT_EQ(f[2], 3);
  ASSERT_TRUE(Corner_Values(t.p, t.b, 16, 2, f));
  EXPECT_EQ(f[0], 1);
  ASSERT_TRUE(Corner_Values(t.p, t.b, 17, 2, f));
  EXPECT_EQ(f[0], 2);
  ASSERT_TRUE(Corner_Values(t.p, t.b, 18, 2, f));
  EXPECT_EQ(f[0], 3);
  ASSERT_TRUE(Corner_Values(t.p, t.b, 15, 2, f));
  EXPECT_EQ(f[3], 2);
  // Only tension against a positive strength: 0, 0, 1/4, and 0 where ft = 0.
  ASSERT_TRUE(Corner_Values(t.p, t.b, 19, 2, f));
  EXPECT_EQ(f[0], 0);
  EXPECT_EQ(f[1], 0);
  EXPECT_EQ(f[2], 0.25);
  EXPECT_EQ(f[3], 0);

  EXPECT_FALSE(Corner_Values(t.p, t.b, 21, 1, f));
  EXPECT_FALSE(Corner_Values(t.p, t.b, 30, 1, f));
  EXPECT_FALSE(Corner_Values(t.p, t.b, 1, 3, f));
}

TEST(Value_At_Point, InterpolatedValueTextsAndStrength) {
  Two_Elements t;
  for (int n = 1; n <= 6; ++n)
    t.b.Node[n] = static_cast<float>(10 * n);  // element 1: 10, 20, 30, 40
  Point_Reading r;
  // At (0.25, 0.5): 10 + 10/4 + 30/2 + (30 - 20 - 40 + 10)/8 = 25.
  ASSERT_TRUE(Value_At_Point(t.p, t.b, 1, 1, 0.25, 0.5, true, r));
  EXPECT_DOUBLE_EQ(r.Value, 25);
  EXPECT_EQ(r.Text, "     25.00 oC");
  EXPECT_DOUBLE_EQ(r.X, 25);
  EXPECT_DOUBLE_EQ(r.Y, 50);
  EXPECT_EQ(r.X_Text, "25.00");
  ASSERT_TRUE(Value_At_Point(t.p, t.b, 1, 1, 0.25, 0.5, false, r));
  EXPECT_EQ(r.Text, "     25.00 oF");

  // Stresses with the strength: Sxx 1, 2, 3, 4 at the corners, ft 2 everywhere.
  for (int c = 1; c <= 4; ++c) {
    t.Stress(1, c, static_cast<float>(c), 0, 0, c == 3 ? 8.0f : -1.0f);
    t.b.Element_B[1][c][1] = 2;
  }
  ASSERT_TRUE(Value_At_Point(t.p, t.b, 16, 1, 0.5, 0.5, true, r));
  EXPECT_DOUBLE_EQ(r.Value, 2.5);
  EXPECT_TRUE(r.Has_Strength);
  EXPECT_EQ(r.Text, "      2.50  (ft=   2.00] Mpa");
  ASSERT_TRUE(Value_At_Point(t.p, t.b, 16, 1, 0.5, 0.5, false, r));
  EXPECT_EQ(r.Text, "      2.50  (ft=   2.00] ksi");
  // The ratio of the interpolated fields: Szz at the centre (-1 - 1 + 8 - 1) / 4 = 1.25, ft 2.
  ASSERT_TRUE(Value_At_Point(t.p, t.b, 19, 1, 0.5, 0.5, true, r));
  EXPECT_DOUBLE_EQ(r.Value, 0.625);
  EXPECT_EQ(r.Text, "      0.63");
  // Near corner 1 Szz is negative: the ratio is 0.
  ASSERT_TRUE(Value_At_Point(t.p, t.b, 19, 1, 0.1, 0.1, true, r));
  EXPECT_EQ(r.Value, 0);

  // Displacements show three decimals and their unit.
  for (int n = 1; n <= 6; ++n) {
    t.b.Node[2 * n - 1] = 0.5f;
    t.b.Node[2 * n] = 0;
  }
  ASSERT_TRUE(Value_At_Point(t.p, t.b, 11, 1, 0.3, 0.3, true, r));
  EXPECT_EQ(r.Text, "     0.500 mm");
  EXPECT_FALSE(Value_At_Point(t.p, t.b, 21, 1, 0.3, 0.3, true, r));
}

TEST(Viewer_Texts, TitlesUnitsAndPageLabels) {
  EXPECT_EQ(Distribution_Title_At(1, 12.5), "Temperature distribution at      12.500000 hours");
  EXPECT_EQ(Distribution_Title_At(19, 3), "Ratio Szz/ft       3.000000 hours");
  EXPECT_EQ(Distribution_Title_At(20, 12.25), "Deformations at       12.3 hours");
  EXPECT_EQ(Distribution_Title_At(34, 1), "Slip of rebars at        1.0 hours");
  EXPECT_EQ(Extreme_Unit(5, false), " lb/yd3");
  EXPECT_EQ(Extreme_Unit(21, true), " [kN]");
  EXPECT_EQ(Point_Value_Unit(22, true), "");
  EXPECT_EQ(Point_Value_Unit(40, true), " ");

  Run_Index index;
  index.Extremes[1] = {5.126, 61.5, 4, 70, 1, 3};
  const Extreme_Labels l = Extreme_Labels_Of(index, 1, true);
  EXPECT_EQ(l.Maximum, "Maximum:  61.50 oC");  // decimals 2 in 6 places
  EXPECT_EQ(l.Minimum, "Minimum:   5.13 oC");
  EXPECT_EQ(l.Scale_Maximum, "70");
  EXPECT_EQ(l.Scale_Minimum, "4");
  // Viewer variable 33 shows extreme row 26.
  index.Extremes[26] = {-1.5, 2.25, -1.5, 2.25, 1, 1};
  EXPECT_EQ(Extreme_Labels_Of(index, 33, true).Maximum, "Maximum:     2.25 [MPa]");
  // A scale box shows the digits of single precision and reads back through the number entry to
  // the same single.
  EXPECT_EQ(Scale_Box_Text(0.1), "0.1");
  EXPECT_EQ(Scale_Box_Text(65.00244552467068), "65.00245");
  for (double v : {1.0 / 3, 1e-5, -2.5e20, 46.0, -0.0625, 0.9704449037645112}) {
    std::string message;
    EXPECT_EQ(static_cast<float>(Check_Number(Scale_Box_Text(v), false, &message)), static_cast<float>(v))
        << Scale_Box_Text(v);
    EXPECT_EQ(message, "");
  }
}

}  // namespace
}  // namespace pvx
