#include "material/properties.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace pvx {

namespace {

// The argument in the precision of the table; beyond the range of a float it is an infinity,
// which compares as the end of the table.
float As_Single(double x) {
  if (x > static_cast<double>(FLT_MAX)) return INFINITY;
  if (x < -static_cast<double>(FLT_MAX)) return -INFINITY;
  return static_cast<float>(x);
}

// The interval of an axis that holds x: `upper` is the first point with x at most its value (the
// last when there is none), `lower` the one before (at least 1), `weight` the position of x in it.
// An interval shorter than `tolerance` gives weight 0.
struct Bracket {
  int lower, upper;
  double weight;
};
Bracket Find_Bracket(const Table<double>& axis, double x, double tolerance) {
  const int n = axis.count();
  const double* a = axis.data().data();
  int upper = n;
  for (int i = 1; i <= n; ++i) {
    if (x <= a[i - 1]) {
      upper = i;
      break;
    }
  }
  const int lower = std::max(upper - 1, 1);
  const double span = a[upper - 1] - a[lower - 1];
  const double weight = std::fabs(span) >= tolerance ? (x - a[lower - 1]) / span : 0.0;
  return {lower, upper, weight};
}

}  // namespace

double Table_Value(const Property_Table& table, double temperature, double maturity) {
  const double x = table.Depends_On_Maturity ? maturity : temperature;
  const float* v = table.Value.data().data();
  if (table.Is_Constant) return v[0];
  const int n = table.Value.count();
  if (n == 0 || table.Abscissa.count() != n) return 0;
  const float* a = table.Abscissa.data().data();
  const float xs = As_Single(x);
  if (xs > a[n - 1]) return v[n - 1];
  if (xs <= a[0]) return v[0];
  for (int i = 1; i < n; ++i) {
    if (xs <= a[i]) {
      const double a0 = a[i - 1], a1 = a[i], v0 = v[i - 1], v1 = v[i];
      return v0 + (v1 - v0) * (x - a0) / (a1 - a0);
    }
  }
  return v[n - 1];  // only for an x that is no number
}

double Thermal_Capacity(const Material& m, double w_old, double w_new, double T_old, double T_new) {
  const double w = (w_old + w_new) / 2;
  if (m.Capacity_By_Water) {
    const double dry = m.Capacity_Dry, wet = m.Capacity_Wet;
    return dry + w * (wet - dry) / static_cast<double>(m.Water_Reference);
  }
  double value = m.Capacity_Wet;
  if (m.Latent_Active) {
    const double T = (T_old + T_new) / 2;
    const int n = std::min(m.Latent_Temperature.count(), m.Latent_Peak.count());
    const double* at = m.Latent_Temperature.data().data();
    const double* peak = m.Latent_Peak.data().data();
    for (int i = 0; i < n; ++i)
      if (T >= at[i] - 0.5 && T <= at[i] + 0.5) value = static_cast<double>(m.Capacity_Wet) + peak[i];
  }
  return value;
}

double Thermal_Conductivity(const Material& m, double w_old, double w_new) {
  if (!m.Conductivity_By_Water) return m.Conductivity_Wet;
  const double w = (w_old + w_new) / 2;
  const double dry = m.Conductivity_Dry, wet = m.Conductivity_Wet;
  return dry + w * (wet - dry) / static_cast<double>(m.Conductivity_Water_Reference);
}

double Diffusion_Coefficient(const Material& m, double h) {
  if (m.Diffusion_Bazant) {
    const double D0 = m.Diffusion_1, ht = m.Diffusion_2, a = m.Diffusion_3;
    if (h < 0) return D0 * a;
    if (h > 1) return D0;
    const double r = (1 - h) / (1 - ht);
    const double r2 = r * r;
    return D0 * (a + (1 - a) / (1 + r2 * r2));
  }
  const double A1 = m.Diffusion_1, A2 = m.Diffusion_2;
  if (h < 0) return A1;
  if (h <= 1) return A1 * std::exp(A2 * h);
  return A1 * std::exp(A2);
}

double Isotherm_Water(double W_C, double Cement, double alpha, double T, double Air, double H_Limit,
                      double h) {
  const double t = (T - 20) / 25;
  const double p = 0.173 - 0.431 * t;
  const double q = 0.06 + 0.392 * t;
  const double g = 0.17 + t * (0.035 + 0.029 * (W_C - 0.4) / 0.15);
  const double w1 = W_C - g * alpha;      // water at saturation
  const double d = 0.95 - 0.111 * alpha;  // knee potential
  double w35 = (0.125 + 0.35 * (p + 0.35 * q)) * alpha;
  double wd = (0.125 + d * (p + d * q)) * alpha;
  // Keep the curve rising.
  if (w1 <= wd) wd = w1 - 0.001;
  if (wd <= w35) w35 = wd - 0.001;
  const double w2 = Air / Cement + w1;  // water with the air pores full

  double w;
  if (h <= 0) {
    w = 0;
  } else if (h < 0.35) {
    w = w35 * h / 0.35;
  } else if (h < d) {
    w = w35 + (h - 0.35) * (wd - w35) / (d - 0.35);
  } else if (h < 1) {
    w = wd + (w1 - wd) * (h - d) / (1 - d);
  } else if (H_Limit == 1.00001) {
    w = w2;
  } else {
    w = w1 + (h - 1) * (w2 - w1) / (H_Limit - 1.00001);
  }
  return w * Cement;
}

double Isotherm_Table_Water(double alpha, double T, double h, const Isotherm_Grid& table) {
  const int n1 = table.Temperature.count(), n2 = table.Hydration.count(), n3 = table.Potential.count();
  if (n1 == 0 || n2 == 0 || n3 == 0 ||
      table.Value.size() !=
          static_cast<std::size_t>(n1) * static_cast<std::size_t>(n2) * static_cast<std::size_t>(n3))
    return 0;
  const Bracket b1 = Find_Bracket(table.Temperature, T, 1e-7);
  const Bracket b2 = Find_Bracket(table.Hydration, alpha, 1e-6);
  const Bracket b3 = Find_Bracket(table.Potential, h, 1e-6);
  const double* v = table.Value.data();
  auto at = [&](int i, int j, int k) {
    return v[(static_cast<std::size_t>(i - 1) * n2 + static_cast<std::size_t>(j - 1)) * n3 +
             static_cast<std::size_t>(k - 1)];
  };
  // Along the potential, then the hydration, then the temperature.
  auto along_3 = [&](int i, int j) {
    return at(i, j, b3.lower) + b3.weight * (at(i, j, b3.upper) - at(i, j, b3.lower));
  };
  auto along_2 = [&](int i) {
    const double lo = along_3(i, b2.lower);
    return lo + b2.weight * (along_3(i, b2.upper) - lo);
  };
  const double lo = along_2(b1.lower);
  return lo + b1.weight * (along_2(b1.upper) - lo);
}

}  // namespace pvx
