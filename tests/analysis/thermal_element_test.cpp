// The element and side matrices against closed forms and fields they must integrate exactly.
#include "analysis/thermal_element.h"

#include <gtest/gtest.h>

#include <cmath>

namespace pvx {
namespace {

double Entry(const Block10& b, int i, int j) {
  return b.v[Block_Index(i, j)];
}

double Sum(const Block10& b) {
  double sum = 0;
  for (int i = 1; i <= 4; ++i)
    for (int j = 1; j <= 4; ++j)
      sum += Entry(b, i, j);
  return sum;
}

double Energy(const Block10& b, const double (&T)[4]) {
  double energy = 0;
  for (int i = 1; i <= 4; ++i)
    for (int j = 1; j <= 4; ++j)
      energy += T[i - 1] * Entry(b, i, j) * T[j - 1];
  return energy;
}

const double ones[4] = {1, 1, 1, 1};

TEST(Thermal_Element, RectangleMatchesTheClosedForm) {
  // A 2 m by 1 m rectangle, conductivity 1 and capacity 3: the textbook bilinear matrices.
  const Element_Geometry g{{0, 2000, 2000, 0}, {0, 0, 1000, 1000}};
  const double capacity[4] = {3, 3, 3, 3};
  Block10 C, K, M;
  Element_Thermal_Matrices(g, capacity, ones, C, K, M);
  const double A = 2.0, a = 2.0, b = 1.0;
  const struct {
    const Block10& block;
    int i, j;
    double value;
  } cases[] = {
      {M, 1, 1, A / 9},
      {M, 1, 2, A / 18},
      {M, 1, 3, A / 36},
      {K, 1, 1, (b / a + a / b) / 3},
      {K, 1, 2, (-2 * b / a + a / b) / 6},
      {K, 1, 3, -(b / a + a / b) / 6},
      {K, 1, 4, (b / a - 2 * a / b) / 6},
  };
  for (const auto& c : cases)
    EXPECT_NEAR(Entry(c.block, c.i, c.j), c.value, 1e-14) << c.i << "," << c.j;

  // The capacity of integration point k belongs to the Gauss point nearest corner k, at
  // (-g,-g), (+g,-g), (+g,+g), (-g,+g) with g = 1/sqrt(3), where N1 = (1+g)^2/4 = (2+sqrt3)/6:
  // a capacity at point 1 alone gives C11 = c (A/4) N1^2 = c A (7 + 4 sqrt3) / 144.
  for (int k = 0; k < 4; ++k) {
    double one_point[4] = {0, 0, 0, 0};
    one_point[k] = 5;
    Element_Thermal_Matrices(g, one_point, ones, C, K, M);
    const double N = (k == 0 ? 2 + std::sqrt(3.0) : k == 2 ? 2 - std::sqrt(3.0) : 1.0) / 6;
    EXPECT_NEAR(Entry(C, 1, 1), 5 * A / 4 * N * N, 1e-14) << "point " << k + 1;
  }
}

TEST(Thermal_Element, DistortedElementIntegratesLinearFieldsExactly) {
  const Element_Geometry g{{0, 1300, 1100, -200}, {0, 200, 900, 700}};
  const double conductivity[4] = {1.7, 1.7, 1.7, 1.7};
  Block10 C, K, M;
  Element_Thermal_Matrices(g, ones, conductivity, C, K, M);
  double area = 0;  // by the shoelace formula, in m2
  for (int n = 0; n < 4; ++n)
    area += (g.x[n] * g.y[(n + 1) % 4] - g.x[(n + 1) % 4] * g.y[n]) * 1e-6 / 2;
  EXPECT_NEAR(Sum(M), area, 1e-13);
  // A linear field T = 3x - 2y (x, y in m) stores k |grad T|^2 A, whatever constant is added.
  for (double c : {0.0, 7.0})
    EXPECT_NEAR(Energy(K, {c, c + 3 * 1.3 - 2 * 0.2, c + 3 * 1.1 - 2 * 0.9, c + 3 * -0.2 - 2 * 0.7}),
                1.7 * (9 + 4) * area, 1e-12);
}

TEST(Thermal_Element, AxisymmetricWeightIsTheRadius) {
  // A ring section from r = 1 m to 2 m, 1 m high, with the Y axis 500 mm from the axis of
  // revolution: the volume per radian is the integral of r over the section, and a radial field
  // T = r stores the same integral times |grad T|^2 = 1.
  const Element_Geometry g{{500, 1500, 1500, 500}, {0, 0, 1000, 1000}, true, 500};
  Block10 C, K, M;
  Element_Thermal_Matrices(g, ones, ones, C, K, M);
  EXPECT_NEAR(Sum(M), (2.0 * 2.0 - 1.0 * 1.0) / 2, 1e-13);
  EXPECT_NEAR(Energy(K, {0.5, 1.5, 1.5, 0.5}), 1.5, 1e-12);
}

TEST(Side_Matrix, PlaneAndAxisymmetricForms) {
  double s[3];
  Side_Matrix(0, 0, 3000, 4000, false, 0, 6, s);  // L = 5 m: c L [1/3 1/6; 1/6 1/3]
  EXPECT_NEAR(s[0], 10, 1e-12);
  EXPECT_NEAR(s[1], 5, 1e-12);
  EXPECT_NEAR(s[2], 10, 1e-12);
  // Axisymmetric, r from 1 to 3 m: the integrals of r N_i N_j along the side; they add up to
  // c L times the mean radius.
  Side_Matrix(1000, 0, 3000, 0, true, 0, 1, s);
  EXPECT_NEAR(s[0], 2 * (3.0 / 12 + 1.0 / 4), 1e-12);
  EXPECT_NEAR(s[1], 2 * 4.0 / 12, 1e-12);
  EXPECT_NEAR(s[2], 2 * (3.0 / 4 + 1.0 / 12), 1e-12);
}

}  // namespace
}  // namespace pvx
