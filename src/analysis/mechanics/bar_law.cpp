#include "analysis/mechanics/bar_law.h"

#include <algorithm>
#include <cmath>

namespace pvx {

namespace {

constexpr double Past_Last_Tangent = 1.0;

struct Curve {
  const Table<double>& x;  // abscissa in its table unit, times `scale` to the law's unit
  const Table<double>& y;
  double scale;
  int count() const { return std::min(x.count(), y.count()); }
};

// The slope of the first segment; 0 when there is none or it does not rise.
double First_Slope(const Curve& c) {
  if (c.count() < 2) return 0;
  const double slope = (c.y[2] - c.y[1]) / ((c.x[2] - c.x[1]) * c.scale);
  return slope > 0 && std::isfinite(slope) ? slope : 0.0;
}

struct Curve_Value {
  double stress, tangent;
};

// The curve at the position p >= 0: on the first segment that reaches p, else the last value.
Curve_Value Curve_At(const Curve& c, double p) {
  const int n = c.count();
  for (int i = 1; i < n; ++i)
    if (p <= c.x[i + 1] * c.scale) {
      const double slope = (c.y[i + 1] - c.y[i]) / ((c.x[i + 1] - c.x[i]) * c.scale);
      return {c.y[i] + (p - c.x[i] * c.scale) * slope, slope};
    }
  return {c.y[n], Past_Last_Tangent};
}

}  // namespace

void Bar_Steel_Stress(const Material& m, double mechanical_strain, Bar_Steel_State& s) {
  s.Plastic_Strain = s.Plastic_Strain_Start;
  s.Equivalent_Strain = s.Equivalent_Strain_Start;
  const Curve curve{m.Steel_Strain_A, m.Steel_Stress_A, 1e-3};
  const double E0 = First_Slope(curve);
  s.Initial_Modulus = E0;
  if (E0 == 0) {
    s.Stress = 0, s.Tangent = Past_Last_Tangent;
    return;
  }
  const double x = mechanical_strain - s.Plastic_Strain_Start;
  // The elastic range is that of the virgin steel, the end of the first segment, however far the
  // point has hardened: beyond it the point goes back onto the curve at its equivalent strain. A
  // hardened point reloaded between the virgin and the hardened yield stress thus jumps from its
  // elastic line to just below the hardened stress.
  if (std::abs(x) <= curve.y[2] / E0) {
    s.Stress = E0 * x, s.Tangent = E0;
    return;
  }
  const double y = std::abs(x) + s.Equivalent_Strain_Start;
  const Curve_Value v = Curve_At(curve, y);
  s.Stress = std::copysign(v.stress, x), s.Tangent = v.tangent;
  s.Equivalent_Strain = y - v.stress / E0;
  s.Plastic_Strain = mechanical_strain - s.Stress / E0;
}

// The steel's scheme with the unloading modulus K = factor x k0. Since K is not the slope of the
// first segment, the elastic range cannot end at that segment as the steel's does: a point unloads
// and reloads along its line as long as K |x| stays below the stress it reached on the curve, and
// a fresh point (nothing reached) follows the curve from the start, with the tangent k0 at zero
// slip. A factor that is not positive unloads with k0.
void Bar_Bond_Stress(const Material& m, double slip, Bar_Bond_State& b) {
  b.Plastic_Slip = b.Plastic_Slip_Start;
  b.Largest_Slip = b.Largest_Slip_Start;
  const Curve curve{m.Steel_Strain_B, m.Steel_Stress_B, 1.0};
  const double k0 = First_Slope(curve);
  b.Initial_Modulus = k0;
  if (k0 == 0) {
    b.Stress = 0, b.Tangent = Past_Last_Tangent;
    return;
  }
  const double K = (m.Steel_Const_2 > 0 ? m.Steel_Const_2 : 1.0) * k0;
  const double x = slip - b.Plastic_Slip_Start;
  const double reached = Curve_At(curve, b.Largest_Slip_Start).stress;
  if (K * std::abs(x) < reached) {
    b.Stress = K * x, b.Tangent = K;
    return;
  }
  // Back on the curve where the line meets it, at the largest slip, and on along it.
  const double y = std::abs(x) - reached / K + b.Largest_Slip_Start;
  const Curve_Value v = Curve_At(curve, y);
  b.Stress = std::copysign(v.stress, x), b.Tangent = v.tangent;
  b.Largest_Slip = y;
  b.Plastic_Slip = slip - b.Stress / K;
}

void Roll_Bar_State(Bar_Steel_State& s) {
  s.Plastic_Strain_Start = s.Plastic_Strain;
  s.Equivalent_Strain_Start = s.Equivalent_Strain;
}

void Roll_Bar_State(Bar_Bond_State& b) {
  b.Plastic_Slip_Start = b.Plastic_Slip;
  b.Largest_Slip_Start = b.Largest_Slip;
}

}  // namespace pvx
