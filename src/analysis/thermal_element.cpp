#include "analysis/thermal_element.h"

#include <cmath>

namespace pvx {

Gauss_Points Set_Gauss_Points() {
  const double g = 1 / std::sqrt(3.0);
  return Gauss_Points{{0, -g, +g, +g, -g}, {0, -g, -g, +g, +g}};
}

void Shape_Functions(double a, double b, double N[4], double dN_da[4], double dN_db[4]) {
  N[0] = (1 - a) * (1 - b) / 4;
  N[1] = (1 + a) * (1 - b) / 4;
  N[2] = (1 + a) * (1 + b) / 4;
  N[3] = (1 - a) * (1 + b) / 4;
  dN_da[0] = -(1 - b) / 4;
  dN_da[1] = (1 - b) / 4;
  dN_da[2] = (1 + b) / 4;
  dN_da[3] = -(1 + b) / 4;
  dN_db[0] = -(1 - a) / 4;
  dN_db[1] = -(1 + a) / 4;
  dN_db[2] = (1 + a) / 4;
  dN_db[3] = (1 - a) / 4;
}

void Element_Thermal_Matrices(const Element_Geometry& g, const double capacity[4],
                              const double conductivity[4], Block10& C, Block10& K, Block10& M) {
  C.fill(0);
  K.fill(0);
  M.fill(0);
  const Gauss_Points gp = Set_Gauss_Points();
  double x[4], y[4];
  for (int n = 0; n < 4; ++n) {
    x[n] = g.x[n] * 0.001;
    y[n] = g.y[n] * 0.001;
  }
  for (int p = 0; p < 4; ++p) {
    double N[4], Na[4], Nb[4];
    Shape_Functions(gp.Xi[p + 1], gp.Eta[p + 1], N, Na, Nb);
    double xa = 0, xb = 0, ya = 0, yb = 0, r = 0;
    for (int n = 0; n < 4; ++n) {
      xa += Na[n] * x[n];
      xb += Nb[n] * x[n];
      ya += Na[n] * y[n];
      yb += Nb[n] * y[n];
      r += N[n] * x[n];
    }
    const double J = xa * yb - xb * ya;
    const double W = J * (g.axisymmetric ? r + g.offset_radius * 0.001 : 1.0);
    // Cartesian derivatives through the inverse Jacobian.
    double Nx[4], Ny[4];
    for (int n = 0; n < 4; ++n) {
      Nx[n] = (yb * Na[n] - ya * Nb[n]) / J;
      Ny[n] = (-xb * Na[n] + xa * Nb[n]) / J;
    }
    int k = 0;
    for (int i = 0; i < 4; ++i) {
      for (int j = i; j < 4; ++j, ++k) {
        const double mass = W * N[i] * N[j];
        M[k] += mass;
        C[k] += capacity[p] * mass;
        K[k] += conductivity[p] * W * (Nx[i] * Nx[j] + Ny[i] * Ny[j]);
      }
    }
  }
}

void Side_Matrix(double x1, double y1, double x2, double y2, bool axisymmetric, double offset_radius,
                 double coefficient, double result[3]) {
  const double L = std::hypot(x2 - x1, y2 - y1) * 0.001;
  const double c = coefficient;
  if (!axisymmetric) {
    result[0] = c * L / 3;
    result[1] = result[0] / 2;
    result[2] = result[0];
    return;
  }
  const double r1 = (x1 + offset_radius) * 0.001;
  const double r2 = (x2 + offset_radius) * 0.001;
  result[0] = c * L * (r2 / 12 + r1 / 4);
  result[1] = c * L * (r1 + r2) / 12;
  result[2] = c * L * (r2 / 4 + r1 / 12);
}

}  // namespace pvx
