// Element and side matrices of the heat equation on 4-node quadrilaterals.
//
// A symmetric 4 x 4 element matrix is kept as its upper triangle in ten doubles, in the order
// 11, 12, 13, 14, 22, 23, 24, 33, 34, 44. Node coordinates come in mm and are turned into metres
// here (factor 0.001), so capacities in kJ/m3K and conductivities in W/mK give matrices per metre
// of thickness (plane) or per radian (axisymmetric).
#pragma once

#include <array>

namespace pvx {

using Block10 = std::array<double, 10>;

// Position in a Block10 of entry (i, j), 1 <= i, j <= 4, either order.
constexpr int Block_Index(int i, int j) {
  if (i > j) {
    const int t = i;
    i = j;
    j = t;
  }
  constexpr int first[5] = {0, 0, 4, 7, 9};
  return first[i] + (j - i);
}

// The 2 x 2 integration points in the order (-g,-g), (+g,-g), (+g,+g), (-g,+g), g = 1/sqrt(3).
struct Gauss_Points {
  double Xi[5];
  double Eta[5];
};
Gauss_Points Set_Gauss_Points();

// The bilinear shape functions at (a, b) in [-1, 1]^2 and their derivatives.
void Shape_Functions(double a, double b, double N[4], double dN_da[4], double dN_db[4]);

// Element geometry: corner coordinates in mm, and the out-of-plane form. In an axisymmetric
// problem the weight of a point is its radius, x plus offset_radius (both mm, turned into m).
struct Element_Geometry {
  double x[4], y[4];
  bool axisymmetric = false;
  double offset_radius = 0;
};

// The capacity matrix C = sum c N N^T w, the conduction matrix K = sum k grad N grad N^T w and the
// unweighted mass matrix M = sum N N^T w over the four points, with w = det J (times the radius
// when axisymmetric). capacity and conductivity hold one value per integration point.
void Element_Thermal_Matrices(const Element_Geometry& g, const double capacity[4],
                              const double conductivity[4], Block10& C, Block10& K, Block10& M);

// The three distinct entries (11, 12, 22) of the consistent side matrix of a 2-node side, times
// the coefficient. Coordinates in mm; r is x + offset_radius when axisymmetric.
void Side_Matrix(double x1, double y1, double x2, double y2, bool axisymmetric, double offset_radius,
                 double coefficient, double result[3]);

}  // namespace pvx
