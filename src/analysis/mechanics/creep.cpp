#include "analysis/mechanics/creep.h"

#include <algorithm>
#include <cmath>

#include "material/properties.h"

namespace pvx {

namespace {

bool Is_Chain(const Material& m) {
  return m.Model_Name == "Maxwell Chain";
}

// A strength ratio of the stress-level law: 0 at a third of the strength, 1 from the strength up.
double Level_Ratio(double stress, double strength) {
  if (strength <= 0) return 0;
  return std::clamp(1.5 * stress / strength - 0.5, 0.0, 1.0);
}

}  // namespace

double Creep_Time_Step(const Material& m, double dt, double T) {
  if (!m.Temperature_Influence) return dt;
  return dt * std::exp(static_cast<double>(m.QR) * (1.0 / 293.0 - 1.0 / (T + 273.0)));
}

double Creep_Time_Step(const Material& m, const Creep_Step& c, const Mech_Point& point) {
  double dt_star = Creep_Time_Step(m, c.dt, c.T);
  if (m.Humidity_Influence) {
    // Wetter than saturated creeps no faster than saturated.
    const double h = std::min(c.H, 1.0);
    const double Ah = m.Ah;
    dt_star *= Ah + (1 - Ah) * h * h;
  }
  if (Is_Chain(m) && m.Stress_Level_Active)
    dt_star *= Stress_Level_Factor(m, point.Stress_Start[0], c.Ft, c.Fc);
  return dt_star;
}

double Stress_Level_Factor(const Material& m, const Components& stress, double ft, double fc) {
  if (!m.Stress_Level_Active) return 1;
  const double mean = (stress[0] + stress[1]) / 2;
  const double half = (stress[0] - stress[1]) / 2;
  const double R = std::sqrt(half * half + stress[2] * stress[2]);
  const double s1 = std::max(mean + R, stress[3]);
  const double s3 = std::min(mean - R, stress[3]);
  const double rt = Level_Ratio(s1, ft);
  const double rc = Level_Ratio(std::abs(s3), fc);
  // Where both are as high, compression decides.
  return rt > rc ? 1 + m.Stress_Level_At * rt * rt : 1 + m.Stress_Level_Ac * rc * rc;
}

double Transient_b(const Material& m, double H) {
  if (!m.Humidity_Class) return m.Transient_b;
  // The two laws have class limits of their own.
  const bool burger = m.Model_Name == "Burger Model";
  const double limits[3] = {0.7, burger ? 0.85 : 0.8, burger ? 0.95 : 0.9};
  std::size_t k = 0;
  while (k < 3 && H > limits[k])
    ++k;
  return m.Humidity_Class_b[k];
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

void Maxwell_Update(const Material& m, double E, double M, double dt_star, const Components& s,
                    double transient, Mech_Point& point) {
  const int n = Chain_Size(m);
  const auto rows_needed = static_cast<std::size_t>(n) + 1;
  if (point.Stress_Start.size() < rows_needed) point.Stress_Start.resize(rows_needed, Components{});
  if (point.Stress.size() < rows_needed) point.Stress.resize(rows_needed, Components{});
  const Chain_Rows rows = Chain_Rows_At(m, M);
  Components& total = point.Stress[0];
  total = Components{};
  for (int unit = 1; unit <= n; ++unit) {
    const double tau = m.Retardation_Time[unit];
    const double keep = std::exp(-dt_star / tau) - transient;
    const double g = E * Unit_Coefficient(m, rows, unit) * Unit_Step_Factor(dt_star, tau);
    const Components& start = point.Stress_Start[static_cast<std::size_t>(unit)];
    Components& current = point.Stress[static_cast<std::size_t>(unit)];
    for (std::size_t i = 0; i < 4; ++i) {
      current[i] = g * s[i] + keep * start[i];
      total[i] += current[i];
    }
  }
}

void Scale_Chain_Units(Mech_Point& point, int units, double factor) {
  if (factor <= 0) return;
  const std::size_t last = std::min(static_cast<std::size_t>(std::max(units, 0)), point.Stress.size() - 1);
  for (std::size_t j = 0; j < 4; ++j) {
    double S = 0;
    for (std::size_t u = 1; u <= last; ++u)
      S += point.Stress[u][j];
    if (S == 0) continue;
    const double scale = point.Stress[0][j] / S;
    for (std::size_t u = 1; u <= last; ++u)
      point.Stress[u][j] *= scale;
  }
}

Burger_Constants Burger_At(const Material& m, double T, double M) {
  return {Table_Value(m.E_Mod_A, T, M), Table_Value(m.Tau_A, T, M), Table_Value(m.E_Mod_B, T, M),
          Table_Value(m.Tau_B, T, M)};
}

Burger_Compliance Burger_Compliance_Of(const Burger_Constants& b, double dt_star) {
  if (dt_star == 0) return {1 / b.A, 0, 0};
  // The Kelvin unit's share, 1 - (1 - e) tB/dt*, is 1 less its step factor.
  return {1 / b.A, dt_star / (2 * b.A * b.Tau_A), (1 - Unit_Step_Factor(dt_star, b.Tau_B)) / b.B};
}

double Burger_Effective_Modulus(const Burger_Constants& b, double dt_star) {
  const Burger_Compliance j = Burger_Compliance_Of(b, dt_star);
  return 1 / (j.c + j.d + j.b);
}

void Burger_Update(const Burger_Constants& b, double dt_star, const double D[4][4], const double C[4][4],
                   const Components& s, double transient, Mech_Point& point) {
  if (point.Strain_Start.size() < 2) point.Strain_Start.resize(2, Components{});
  if (point.Strain.size() < 2) point.Strain.resize(2, Components{});
  const Burger_Compliance j = Burger_Compliance_Of(b, dt_star);
  const double Cp = j.c + j.d + j.b, Cm = j.c - j.d + j.b;
  const double e = dt_star > 0 ? std::exp(-dt_star / b.Tau_B) : 1.0;
  // The Kelvin strain the start rate brings in the step, (1 - e) tB per unit of rate, written so
  // that a Kelvin unit that does not flow (tB infinite) gives dt*.
  const double k = dt_star * Unit_Step_Factor(dt_star, b.Tau_B);
  const Components& q_start = point.Strain_Start[1];
  const Components& start = point.Stress_Start[0];
  Components& current = point.Stress[0];
  Components ds{};
  for (std::size_t i = 0; i < 4; ++i) {
    double w = 0;
    for (std::size_t l = 0; l < 4; ++l)
      w += D[i][l] * q_start[l];
    current[i] = (s[i] - k * w + Cm * start[i]) / Cp - transient * start[i];
    ds[i] = current[i] - start[i];
  }
  // The rate a stress change drives into the Kelvin unit over the step, per unit of C ds. A step of
  // zero length takes the limit of a short one, 1 / (B tB): the Kelvin spring B must be in it, or
  // the rate would not even be a strain rate.
  const double drive = dt_star > 0 ? -std::expm1(-dt_star / b.Tau_B) / (b.B * dt_star) : 1 / (b.B * b.Tau_B);
  Components& q = point.Strain[1];
  for (std::size_t i = 0; i < 4; ++i) {
    double Cds = 0;
    for (std::size_t l = 0; l < 4; ++l)
      Cds += C[i][l] * ds[l];
    q[i] = e * q_start[i] + Cds * drive;
  }
  point.Creep_Strain = Creep_Strain_Of(C, b.A, point);
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
