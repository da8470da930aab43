#include "analysis/mechanics/creep.h"

#include <algorithm>
#include <cmath>

namespace pvx {

double Creep_Time_Step(const Material& m, double dt, double T) {
  if (!m.Temperature_Influence) return dt;
  return dt * std::exp(static_cast<double>(m.QR) * (1.0 / 293.0 - 1.0 / (T + 273.0)));
}

Chain_Rows Chain_Rows_At(const Material& m, double M) {
  const int n = std::min(Point_Count(m.E), m.Chain_Coefficient.count());
  if (!m.E.Depends_On_Maturity || n <= 1) return {};
  // The abscissae are held in single precision and compared so.
  const float at = static_cast<float>(M);
  if (at <= m.E.Abscissa[1]) return {1, 1, 1.0};
  if (at >= m.E.Abscissa[n]) return {n, n, 0.0};
  int p = 2;
  while (m.E.Abscissa[p] < at)
    ++p;
  const double lower = m.E.Abscissa[p - 1], upper = m.E.Abscissa[p];
  return {p - 1, p, (M - lower) / (upper - lower)};
}

double Unit_Coefficient(const Material& m, const Chain_Rows& rows, int unit) {
  auto value = [&](int row) {
    if (!m.Chain_Coefficient.valid(row)) return 0.0;
    const Table<double>& c = m.Chain_Coefficient[row];
    return c.valid(unit) ? c[unit] : 0.0;
  };
  return (1 - rows.f) * value(rows.r1) + rows.f * value(rows.r2);
}

double Unit_Step_Factor(double dt_star, double tau) {
  const double x = dt_star / tau;
  // expm1 keeps the factor near 1 for a slow unit, where 1 - exp(-x) would cancel to 0.
  return x > 0 ? -std::expm1(-x) / x : 1.0;
}

double Maxwell_Effective_Modulus(const Material& m, double E, double M, double dt_star) {
  const Chain_Rows rows = Chain_Rows_At(m, M);
  double sum = 0;
  for (int unit = 1; unit <= Chain_Size(m); ++unit)
    sum += E * Unit_Coefficient(m, rows, unit) * Unit_Step_Factor(dt_star, m.Retardation_Time[unit]);
  return sum;
}

void Maxwell_Update(const Material& m, double E, double M, double dt_star, const Components& unit_increment,
                    Mech_Point& point) {
  const int n = Chain_Size(m);
  const auto rows_needed = static_cast<std::size_t>(n) + 1;
  if (point.Stress_Start.size() < rows_needed) point.Stress_Start.resize(rows_needed, Components{});
  if (point.Stress.size() < rows_needed) point.Stress.resize(rows_needed, Components{});
  const Chain_Rows rows = Chain_Rows_At(m, M);
  Components& total = point.Stress[0];
  total = Components{};
  for (int unit = 1; unit <= n; ++unit) {
    const double tau = m.Retardation_Time[unit];
    const double decay = std::exp(-dt_star / tau);
    const double g = E * Unit_Coefficient(m, rows, unit) * Unit_Step_Factor(dt_star, tau);
    const Components& start = point.Stress_Start[static_cast<std::size_t>(unit)];
    Components& current = point.Stress[static_cast<std::size_t>(unit)];
    for (std::size_t i = 0; i < 4; ++i) {
      current[i] = g * unit_increment[i] + decay * start[i];
      total[i] += current[i];
    }
  }
}

Components Creep_Strain_Of(const double C[4][4], double E, const Mech_Point& point) {
  Components creep = point.Strain[0];
  if (E <= 0) return creep;
  for (std::size_t i = 0; i < 4; ++i)
    for (std::size_t j = 0; j < 4; ++j)
      creep[i] -= C[i][j] * point.Stress[0][j] / E;
  return creep;
}

}  // namespace pvx
