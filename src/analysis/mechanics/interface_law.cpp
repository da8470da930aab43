#include "analysis/mechanics/interface_law.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace pvx {

namespace {

constexpr double Contact = 1e-5;  // mm: up to this opening a joint is closed

double Data(const Material& m, int i) {
  return m.Interface_Data[static_cast<std::size_t>(i)];
}

// The softening of a joint of type A or C: stress and secant at an opening.
struct Joint_Curve {
  // Type A.
  bool table = false;
  double ft = 0, s1 = 0, e0 = 0, e1 = 0, e2 = 0;
  // Type C: the openings and the reduced stresses of the points.
  std::vector<double> opening, stress;

  void at(double x, double& s, double& secant) const {
    if (!table) {
      Interface_Softening_Type_A(ft, s1, e0, e1, e2, x, s, secant);
      return;
    }
    s = secant = 0;
    const std::size_t n = opening.size();
    if (n < 2) return;
    if (x <= opening[0]) {
      s = stress[0];
      secant = opening[0] != 0 ? stress[0] / opening[0] : 0.0;
      return;
    }
    for (std::size_t p = 1; p < n; ++p)
      if (x <= opening[p]) {
        const double span = opening[p] - opening[p - 1];
        s = span != 0 ? stress[p - 1] + (stress[p] - stress[p - 1]) * (x - opening[p - 1]) / span : stress[p];
        secant = s / x;
        return;
      }
  }
  // The opening up to which the joint is elastic.
  double elastic() const { return table ? (opening.empty() ? 0.0 : opening[0]) : e0; }
};

// Above its shear limit a point slides: the shear stress holds the limit and the slip goes plastic.
void Limit_Shear(double u_s, double tau_max, double k_s, Interface_Point& p) {
  if (std::fabs(p.Tau) > tau_max) {
    p.Tau = p.Tau < 0 ? -tau_max : tau_max;
    p.Slip = k_s != 0 ? u_s - p.Tau / k_s : u_s;
    p.K_Shear = 0;
  }
}

}  // namespace

double Interface_Friction_Factor(const Material& m) {
  if (m.Interface_Type == 2) return Data(m, 23);
  const double phi = Data(m, m.Interface_Type == 3 ? 31 : 5) * 0.017453;
  return std::cos(phi) > 0 ? (1 + std::sin(phi)) / (2 * std::cos(phi)) : 0.0;
}

void Interface_Softening_Type_A(double ft, double s1, double e0, double e1, double e2, double x,
                                double& stress, double& secant) {
  if (x <= e0) {
    stress = ft;
    secant = e0 != 0 ? ft / e0 : 0.0;
  } else if (x <= e1) {
    stress = ft + (s1 - ft) * (x - e0) / (e1 - e0);
    secant = stress / x;
  } else if (x <= e2) {
    stress = s1 * (e2 - x) / (e2 - e1);
    secant = stress / x;
  } else {
    stress = secant = 0;
  }
}

void Interface_Point_Update(const Material& m, double u_n, double u_s, Interface_Point& p) {
  p.Opening = p.Opening_Start;
  p.Slip = p.Slip_Start;

  if (m.Interface_Type == 2) {
    if (u_n <= Contact) {
      p.K_Normal = Data(m, 21);
      p.K_Shear = Data(m, 22);
      p.Sigma = u_n * p.K_Normal;
      p.Tau = (u_s - p.Slip_Start) * p.K_Shear;
      Limit_Shear(u_s, std::fabs(p.Sigma * Interface_Friction_Factor(m)), p.K_Shear, p);
    } else {
      // Open: nothing is carried, and the slip starts anew from where the joint stands.
      p.K_Normal = p.K_Shear = 0;
      p.Sigma = p.Tau = 0;
      p.Slip = u_s;
    }
    return;
  }

  const bool table = m.Interface_Type == 3;
  const double friction_angle = Data(m, table ? 31 : 5), max_slip = Data(m, table ? 32 : 6);
  const double k_n = Data(m, table ? 33 : 7), k_s = Data(m, table ? 34 : 8);
  p.Largest_Slip = std::max(p.Largest_Slip, std::fabs(u_s));
  // The largest slip wears the strength down; a joint without a slip limit has none.
  const double reduction = max_slip > 0 ? std::max(1 - p.Largest_Slip / max_slip, 0.0) : 0.0;

  Joint_Curve curve;
  curve.table = table;
  if (table) {
    const int points = static_cast<int>(Data(m, 40));
    for (int i = 1; i <= points && 40 + 2 * i <= 100; ++i) {
      const double x = Data(m, 39 + 2 * i);
      curve.opening.push_back(i == 1 ? x : curve.opening.front() + x);
      curve.stress.push_back(reduction * Data(m, 40 + 2 * i));
    }
  } else {
    curve.ft = Data(m, 1) * reduction;
    curve.e0 = k_n != 0 ? curve.ft / k_n : 0.0;
    curve.e1 = curve.e0 + Data(m, 3);
    if (curve.e1 <= curve.e0) curve.e1 += 0.01;
    curve.e2 = curve.e0 + Data(m, 4);
    if (curve.e2 <= curve.e1) curve.e2 = curve.e1 + 0.1;
    curve.s1 = Data(m, 1) != 0 ? curve.ft * Data(m, 2) : 0.0;
  }

  double stress = 0, secant = 0;
  if (u_n <= Contact) {
    p.K_Normal = k_n;
    p.Sigma = u_n * p.K_Normal;
  } else if (u_n <= p.Opening_Start) {
    // Back on the secant to the largest opening reached.
    curve.at(p.Opening_Start, stress, secant);
    p.K_Normal = secant;
    p.Sigma = u_n * p.K_Normal;
  } else {
    p.Opening = u_n;
    curve.at(u_n, stress, secant);
    p.K_Normal = secant;
    p.Sigma = u_n <= curve.elastic() ? u_n * p.K_Normal : stress;
  }

  double cohesion = 0;
  curve.at(p.Opening, cohesion, secant);
  p.K_Shear = k_s;
  p.Tau = (u_s - p.Slip_Start) * k_s;
  // A joint without cohesion, touching but pulled, holds no shear; its limit does not go below 0.
  const double tau_max =
      std::max(cohesion * Interface_Friction_Factor(m) - std::tan(friction_angle * 0.017453) * p.Sigma, 0.0);
  Limit_Shear(u_s, tau_max, k_s, p);
}

void Interface_End_Of_Step(Interface_Point& p) {
  p.Opening_Start = p.Opening;
  p.Slip_Start = p.Slip;
}

}  // namespace pvx
