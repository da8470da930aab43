#include "analysis/mechanics/element.h"

#include <cmath>

#include "analysis/thermal_element.h"

namespace pvx {

namespace {

// Shape function derivatives by x and y at (a, b), with the Jacobian determinant there.
struct Gradients {
  double N[4], dN_dx[4], dN_dy[4];
  double det;
};

Gradients Gradients_At(const Corner_Coordinates& c, double a, double b) {
  Gradients g{};
  double Na[4], Nb[4];
  Shape_Functions(a, b, g.N, Na, Nb);
  double xa = 0, xb = 0, ya = 0, yb = 0;
  for (int n = 0; n < 4; ++n) {
    xa += Na[n] * c.x[n];
    xb += Nb[n] * c.x[n];
    ya += Na[n] * c.y[n];
    yb += Nb[n] * c.y[n];
  }
  g.det = xa * yb - xb * ya;
  for (int n = 0; n < 4; ++n) {
    g.dN_dx[n] = (yb * Na[n] - ya * Nb[n]) / g.det;
    g.dN_dy[n] = (xa * Nb[n] - xb * Na[n]) / g.det;
  }
  return g;
}

}  // namespace

Section Section_Of(const Project& p) {
  Section s;
  if (p.Out_Of_Plane.Axisymmetric != 0)
    s.Form = Section_Form::Axisymmetric;
  else if (p.Out_Of_Plane.Plane_Strain != 0)
    s.Form = Section_Form::Generalised_Plane_Strain;
  s.Offset_Radius = p.Out_Of_Plane.Offset_Radius;
  s.Constant_Shear = p.Constant_Shear != 0;
  return s;
}

Corner_Coordinates Corners_Of(const Project& p, const Mesh_Element& e) {
  Corner_Coordinates c;
  for (int n = 0; n < 4; ++n) {
    const Mesh_Node& node = p.Mesh_Node[e.Corner[n + 1]];
    c.x[n] = node.X;
    c.y[n] = node.Y;
  }
  return c;
}

void Element_B_Matrix(const Corner_Coordinates& corners, const Section& section, int point, double thickness,
                      Strain_Operator& B, double& weight, double& thickness_factor) {
  static const double g = 1 / std::sqrt(3.0);
  static const double xi[4] = {-g, g, g, -g}, eta[4] = {-g, -g, g, g};
  B = Strain_Operator{};
  const Gradients at = Gradients_At(corners, xi[point - 1], eta[point - 1]);
  const Gradients shear = section.Constant_Shear ? Gradients_At(corners, 0, 0) : at;
  double x = 0, y = 0;
  for (int n = 0; n < 4; ++n) {
    B.B[0][2 * n] = at.dN_dx[n];
    B.B[1][2 * n + 1] = at.dN_dy[n];
    B.B[2][2 * n] = shear.dN_dy[n];
    B.B[2][2 * n + 1] = shear.dN_dx[n];
    x += at.N[n] * corners.x[n];
    y += at.N[n] * corners.y[n];
  }
  weight = at.det;
  B.Jacobian = at.det;
  thickness_factor = thickness;
  switch (section.Form) {
    case Section_Form::Plane_Stress:
      break;
    case Section_Form::Axisymmetric: {
      const double r = section.Offset_Radius + x;
      for (int n = 0; n < 4; ++n)
        B.B[3][2 * n] = at.N[n] / r;
      weight *= r;
      thickness_factor = 1.0;
      break;
    }
    case Section_Form::Generalised_Plane_Strain:
      B.B[3][8] = 1;
      B.B[3][9] = x;
      B.B[3][10] = y;
      break;
  }
}

void Set_Elastic_Matrices(double nu, bool plane_stress, Elastic_Matrices& m) {
  m = Elastic_Matrices{};
  auto& D = m.D;
  auto& C = m.C;
  if (plane_stress) {
    D[0][0] = D[1][1] = 1 / (1 - nu * nu);
    D[0][1] = D[1][0] = nu * D[0][0];
    D[2][2] = 1 / (2 * (1 + nu));
    C[0][0] = C[1][1] = 1;
    C[0][1] = C[1][0] = -nu;
    C[2][2] = 2 * (1 + nu);
    return;
  }
  const double d = (1 - nu) / ((1 - 2 * nu) * (1 + nu));
  const double o = d * nu / (1 - nu);
  for (int i : {0, 1, 3})
    for (int j : {0, 1, 3}) {
      D[i][j] = i == j ? d : o;
      C[i][j] = i == j ? 1 : -nu;
    }
  D[2][2] = 1 / (2 * (1 + nu));
  C[2][2] = 2 * (1 + nu);
}

double Interpolate_To_Point(const double corner_values[4], int point) {
  const int own = point - 1;
  return Own_Corner_Weight * corner_values[own] +
         Next_Corner_Weight * (corner_values[(own + 1) % 4] + corner_values[(own + 3) % 4]) +
         Opposite_Corner_Weight * corner_values[(own + 2) % 4];
}

}  // namespace pvx
