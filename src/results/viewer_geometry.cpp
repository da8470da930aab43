#include "results/viewer_geometry.h"

#include <algorithm>
#include <cmath>

namespace pvx {

namespace {

constexpr double Linear_Limit = 1e-25;
constexpr double Inside_Angle_Sum = 6.0;  // radians; a full turn around an inside point is 2 pi

// u for a root v, from whichever of the two equations of the map has the larger divisor: both give
// the same u, and the larger divisor keeps the rounding small when a side runs almost along an
// axis. A divisor of exactly 0 in both means no u.
bool U_Of_Root(double v, double a, double b, double c, double d, double e, double f, double g, double h,
               double& u) {
  if (!(v >= 0 && v <= 1)) return false;
  const double w1 = v * c + e;
  const double w2 = v * d + f;
  if (w1 == 0 && w2 == 0) return false;
  u = std::fabs(w1) >= std::fabs(w2) ? (a - v * g) / w1 : (b - v * h) / w2;
  return u >= 0 && u <= 1;
}

}  // namespace

bool Element_Shown(const Mesh_Element& element, double time) {
  return element.Present_From <= time && time <= element.Present_Until;
}

bool Element_Corners(const Project& p, int element, double (&x)[4], double (&y)[4]) {
  if (!p.Mesh_Element.valid(element)) return false;
  const Mesh_Element& el = p.Mesh_Element[element];
  for (int i = 0; i < 4; ++i) {
    const int n = el.Corner[i + 1];
    if (!p.Mesh_Node.valid(n)) return false;
    x[i] = p.Mesh_Node[n].X;
    y[i] = p.Mesh_Node[n].Y;
  }
  return true;
}

bool Invert_Bilinear(const double (&x)[4], const double (&y)[4], double px, double py, double& u, double& v) {
  const double a = px - x[0], b = py - y[0];
  const double e = x[1] - x[0], f = y[1] - y[0];
  const double g = x[3] - x[0], h = y[3] - y[0];
  const double c = x[2] - x[1] - x[3] + x[0], d = y[2] - y[1] - y[3] + y[0];
  const double A = c * h - g * d;
  const double B = a * d - b * c - g * f + h * e;
  const double C = a * f - b * e;
  u = v = 0;
  if (std::fabs(A) < Linear_Limit) {
    // B = C = 0 holds for every v: the point is the collapsed corner of a side of zero length,
    // reached from v = 0.
    if (B == 0 && C != 0) return false;
    const double root = B == 0 ? 0.0 : -C / B;
    if (!U_Of_Root(root, a, b, c, d, e, f, g, h, u)) return false;
    v = root;
    return true;
  }
  const double D = B * B - 4 * A * C;
  if (D < 0) return false;
  // The roots (-B + sqrt D) / 2A and (-B - sqrt D) / 2A, each computed without subtracting nearly
  // equal numbers: an element that is almost a parallelogram has a tiny A, and the plain formula
  // would lose every digit of one root.
  const double s = std::sqrt(D);
  double plus_root = 0, minus_root = 0;
  if (B >= 0) {
    const double q = -0.5 * (B + s);
    if (q != 0) {
      plus_root = C / q;
      minus_root = q / A;
    }
  } else {
    const double q = -0.5 * (B - s);
    plus_root = q / A;
    minus_root = C / q;
  }
  for (double root : {plus_root, minus_root}) {
    if (U_Of_Root(root, a, b, c, d, e, f, g, h, u)) {
      v = root;
      return true;
    }
  }
  u = 0;
  return false;
}

bool Find_Element_At_Point(const Project& p, double time, double px, double py, int& element, double& u,
                           double& v) {
  element = 0;
  u = v = 0;
  double x[4], y[4];
  for (int e = 1; e <= p.Mesh_Element.count(); ++e) {
    if (!Element_Shown(p.Mesh_Element[e], time) || !Element_Corners(p, e, x, y)) continue;
    if (px < std::min({x[0], x[1], x[2], x[3]}) || px > std::max({x[0], x[1], x[2], x[3]}) ||
        py < std::min({y[0], y[1], y[2], y[3]}) || py > std::max({y[0], y[1], y[2], y[3]}))
      continue;
    if (Invert_Bilinear(x, y, px, py, u, v)) {
      element = e;
      return true;
    }
  }
  u = v = 0;
  return false;
}

double Bilinear_Value(const double (&f)[4], double u, double v) {
  return f[0] + (f[1] - f[0]) * u + (f[3] - f[0]) * v + (f[2] - f[1] - f[3] + f[0]) * u * v;
}

bool Element_Point(const Project& p, int element, double u, double v, double& x, double& y) {
  double cx[4], cy[4];
  if (!Element_Corners(p, element, cx, cy)) return false;
  x = Bilinear_Value(cx, u, v);
  y = Bilinear_Value(cy, u, v);
  return true;
}

bool Element_Selected(const Project& p, double px, double py, int& selected) {
  double x[4], y[4];
  for (int e = p.Mesh_Element.count(); e >= 1; --e) {
    if (!Element_Corners(p, e, x, y)) continue;
    double sum = 0;
    bool on_boundary = false;
    for (int i = 0; i < 4; ++i) {
      const int j = (i + 1) % 4;
      const double ax = x[i] - px, ay = y[i] - py;
      const double bx = x[j] - px, by = y[j] - py;
      const double cross = ax * by - ay * bx, dot = ax * bx + ay * by;
      // On a side the subtended angle is a half turn whose sign depends on the sign of a zero;
      // on a corner it is undefined. Both are on the element.
      if (cross == 0 && dot <= 0) on_boundary = true;
      sum += std::atan2(cross, dot);
    }
    // Corners in either turning sense: the sum is plus or minus a full turn inside.
    if (on_boundary || std::fabs(sum) > Inside_Angle_Sum) {
      selected = e;
      return true;
    }
  }
  selected = 0;
  return false;
}

}  // namespace pvx
