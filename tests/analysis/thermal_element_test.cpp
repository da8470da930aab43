#include "analysis/thermal_element.h"

#include <gtest/gtest.h>

#include <cmath>

namespace pvx {
namespace {

double Entry(const Block10& b, int i, int j) {
  return b[static_cast<std::size_t>(Block_Index(i, j))];
}

const double ones[4] = {1, 1, 1, 1};

TEST(Thermal_Element, RectangleMatchesTheClosedForm) {
  // A 2 m by 1 m rectangle, conductivity 1 and capacity 3: the textbook bilinear matrices.
  Element_Geometry g{{0, 2000, 2000, 0}, {0, 0, 1000, 1000}};
  const double capacity[4] = {3, 3, 3, 3};
  Block10 C, K, M;
  Element_Thermal_Matrices(g, capacity, ones, C, K, M);
  const double A = 2.0, a = 2.0, b = 1.0;
  EXPECT_NEAR(Entry(M, 1, 1), A / 9, 1e-14);
  EXPECT_NEAR(Entry(M, 1, 2), A / 18, 1e-14);
  EXPECT_NEAR(Entry(M, 1, 3), A / 36, 1e-14);
  EXPECT_NEAR(Entry(M, 2, 4), A / 36, 1e-14);
  EXPECT_NEAR(Entry(C, 3, 4), 3 * A / 18, 1e-14);
  EXPECT_NEAR(Entry(K, 1, 1), (b / a + a / b) / 3, 1e-14);
  EXPECT_NEAR(Entry(K, 1, 2), (-2 * b / a + a / b) / 6, 1e-14);
  EXPECT_NEAR(Entry(K, 1, 3), -(b / a + a / b) / 6, 1e-14);
  EXPECT_NEAR(Entry(K, 1, 4), (b / a - 2 * a / b) / 6, 1e-14);
  EXPECT_NEAR(Entry(K, 3, 3), (b / a + a / b) / 3, 1e-14);
}

TEST(Thermal_Element, DistortedElementIntegratesLinearFieldsExactly) {
  Element_Geometry g{{0, 1300, 1100, -200}, {0, 200, 900, 700}};
  const double conductivity[4] = {1.7, 1.7, 1.7, 1.7};
  Block10 C, K, M;
  Element_Thermal_Matrices(g, ones, conductivity, C, K, M);
  // Area by the shoelace formula, in m2.
  double area = 0;
  for (int n = 0; n < 4; ++n) {
    const int m = (n + 1) % 4;
    area += (g.x[n] * g.y[m] - g.x[m] * g.y[n]) * 1e-6 / 2;
  }
  double mass = 0;
  for (int i = 1; i <= 4; ++i)
    for (int j = 1; j <= 4; ++j)
      mass += Entry(M, i, j);
  EXPECT_NEAR(mass, area, 1e-13);
  // A constant field carries no heat; a linear field T = 3x - 2y (x, y in m) stores energy
  // k |grad T|^2 area.
  const double T[4] = {3 * 0.0 - 2 * 0.0, 3 * 1.3 - 2 * 0.2, 3 * 1.1 - 2 * 0.9, 3 * -0.2 - 2 * 0.7};
  double energy = 0;
  for (int i = 1; i <= 4; ++i) {
    double row = 0;
    for (int j = 1; j <= 4; ++j) {
      row += Entry(K, i, j);
      energy += T[i - 1] * Entry(K, i, j) * T[j - 1];
    }
    EXPECT_NEAR(row, 0, 1e-12);
  }
  EXPECT_NEAR(energy, 1.7 * (9 + 4) * area, 1e-12);
}

TEST(Thermal_Element, AxisymmetricWeightIsTheRadius) {
  // A ring section from r = 1 m to 2 m, 1 m high, with the Y axis 500 mm from the axis of
  // revolution: the volume per radian is the integral of r over the section.
  Element_Geometry g{{500, 1500, 1500, 500}, {0, 0, 1000, 1000}, true, 500};
  Block10 C, K, M;
  Element_Thermal_Matrices(g, ones, ones, C, K, M);
  double mass = 0;
  for (int i = 1; i <= 4; ++i)
    for (int j = 1; j <= 4; ++j)
      mass += Entry(M, i, j);
  EXPECT_NEAR(mass, (2.0 * 2.0 - 1.0 * 1.0) / 2, 1e-13);
  // A field linear in x (radial): energy = integral of r over the section times |grad|^2.
  const double T[4] = {0.5, 1.5, 1.5, 0.5};
  double energy = 0;
  for (int i = 1; i <= 4; ++i)
    for (int j = 1; j <= 4; ++j)
      energy += T[i - 1] * Entry(K, i, j) * T[j - 1];
  EXPECT_NEAR(energy, 1.5, 1e-12);
}

TEST(Side_Matrix, PlaneAndAxisymmetricForms) {
  double s[3];
  Side_Matrix(0, 0, 3000, 4000, false, 0, 6, s);  // L = 5 m
  EXPECT_NEAR(s[0], 10, 1e-12);
  EXPECT_NEAR(s[1], 5, 1e-12);
  EXPECT_NEAR(s[2], 10, 1e-12);
  // Axisymmetric: the entries add up to c L times the mean radius.
  Side_Matrix(1000, 0, 3000, 0, true, 0, 1, s);
  EXPECT_NEAR(s[0], 2 * (3.0 / 12 + 1.0 / 4), 1e-12);
  EXPECT_NEAR(s[1], 2 * 4.0 / 12, 1e-12);
  EXPECT_NEAR(s[2], 2 * (3.0 / 4 + 1.0 / 12), 1e-12);
  EXPECT_NEAR(s[0] + 2 * s[1] + s[2], 2 * 2.0, 1e-12);
}

TEST(Gauss_Points, OrderAroundTheElement) {
  const Gauss_Points gp = Set_Gauss_Points();
  const double g = 1 / std::sqrt(3.0);
  EXPECT_EQ(gp.Xi[1], -g);
  EXPECT_EQ(gp.Eta[1], -g);
  EXPECT_EQ(gp.Xi[2], g);
  EXPECT_EQ(gp.Eta[2], -g);
  EXPECT_EQ(gp.Xi[3], g);
  EXPECT_EQ(gp.Eta[3], g);
  EXPECT_EQ(gp.Xi[4], -g);
  EXPECT_EQ(gp.Eta[4], g);
}

}  // namespace
}  // namespace pvx
