// The Maxwell chain at one point, driven through the point law by a strain or a stress history
// without a mesh, against the closed forms of spring-and-dashpot models. Uniaxial: only xx is loaded.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "analysis/mechanics/creep.h"
#include "analysis/mechanics/point_law.h"

namespace pvx {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double Identity[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};

Material Chain(const std::vector<double>& tau, const std::vector<double>& c, double QR = 0) {
  Material m;
  m.Model_Name = "Maxwell Chain";
  m.Temperature_Influence = QR > 0;
  m.QR = static_cast<float>(QR);
  m.Chain_Coefficient.add({});
  for (std::size_t i = 0; i < tau.size(); ++i) {
    m.Retardation_Time.add(tau[i]);
    m.Chain_Coefficient[1].add(c[i]);
  }
  return m;
}

// One step of length dt with strain increment d at temperature T; returns the total stress.
double Step(const Material& m, Mech_Point& p, double E, double dt, double d, double T = 20) {
  p.Strain[0][0] += d;
  Update_Point_Stress(m, Point_Conditions{E, dt, T, 0, Identity}, Components{d, 0, 0, 0}, p);
  p.Stress_Start = p.Stress;
  return p.Stress[0][0];
}

// Strain 1e-3 applied over a first step h, then held over uneven steps up to t = 30. The closed
// form of a sudden strain is the sum of E c_m e exp(-t/tau_m); the ramp leaves every unit higher by
// about h / 2 tau_m of its share, a lag that halves with h.
TEST(Maxwell_Chain, RelaxesAsSumOfExponentials) {
  struct Case {
    std::vector<double> tau, c;
  } cases[] = {{{10}, {1}}, {{10, 20, 50}, {0.3, 0.5, 0.2}}};
  for (const Case& k : cases) {
    const Material m = Chain(k.tau, k.c);
    double last_error = 0;
    for (const double h : {2.0, 1.0, 0.5, 0.25}) {
      Mech_Point p;
      double s = Step(m, p, 30000, h, 1e-3), sudden = 0, lag = 0;
      for (const double share : {0.1, 0.6, 0.3})
        s = Step(m, p, 30000, share * (30 - h), 0);
      for (std::size_t u = 0; u < k.tau.size(); ++u) {
        sudden += 30 * k.c[u] * std::exp(-30 / k.tau[u]);
        lag += 30 * k.c[u] * std::exp(-30 / k.tau[u]) * h / (2 * k.tau[u]);
      }
      EXPECT_NEAR(s - sudden, lag, 0.1 * lag) << k.tau.size() << " " << h;
      if (last_error != 0) {
        EXPECT_NEAR((s - sudden) / last_error, 0.5, 0.03) << k.tau.size() << " " << h;
      }
      last_error = s - sudden;
    }
  }
}

// Constant stress 6 MPa, E 25000, each step's strain increment from the effective modulus (a wrong
// one leaves the stress off 6 and the strain off the closed form). One unit
// is a spring and dashpot in series: strain S/E (1 + t*/tau), exact at any step, with t* = t at
// 20 oC and t exp(4000 (1/293 - 1/313)) at 40 oC. A spring E0 = 0.4 E beside a unit 0.6 E, tau is
// the standard solid, J = 1/E0 - (1/E0 - 1/E) exp(-t E0 / (tau E)), approached with the square of
// the step (tolerances 16 times smaller for a step 4 times shorter).
TEST(Maxwell_Chain, ConstantStressFollowsCreepCompliance) {
  struct Case {
    double tau0, T, h, tolerance;  // relative
  } cases[] = {{0, 20, 2, 1e-9}, {0, 40, 2, 1e-6}, {inf, 20, 1, 1e-4}, {inf, 20, 0.25, 6.25e-6}};
  for (const Case& k : cases) {
    const Material m = k.tau0 == 0 ? Chain({8}, {1}, 4000) : Chain({inf, 8}, {0.4, 0.6});
    Mech_Point p;
    p.Stress_Start.resize(static_cast<std::size_t>(Chain_Size(m)) + 1);
    double t = 0;
    for (double dt = 1e-9; t < 40 - 1e-9; t += dt, dt = k.h) {
      double relaxed = 0;  // what the step leaves of the stress without a strain increment
      for (int u = 1; u <= Chain_Size(m); ++u)
        relaxed += std::exp(-Creep_Time_Step(m, dt, k.T) / m.Retardation_Time[u]) * p.Stress_Start[u][0];
      Step(m, p, 25000, dt, (6 - relaxed) / Effective_Modulus(m, Point_Conditions{25000, dt, k.T}), k.T);
    }
    const double J = k.tau0 == 0 ? (1 + t * (k.T == 20 ? 1 : 2.3924655) / 8) / 25000
                                 : 1 / 1e4 - (1 / 1e4 - 1 / 25000.0) * std::exp(-t * 0.4 / 8);
    EXPECT_NEAR(p.Strain[0][0], 6 * J, k.tolerance * 6 * J) << k.tau0 << " " << k.T << " " << k.h;
    EXPECT_NEAR(p.Creep_Strain[0], 6 * J - 6 / 25000.0, k.tolerance * 6 * J);
  }
}

// Units that do not flow (an infinite or a huge relaxation time) keep their whole modulus at any
// step: a spring of E times the coefficients, interpolated by maturity between the rows of the
// points of E (10 and 100 hours) and held outside them.
TEST(Maxwell_Chain, UnitsWithoutFlowAreElasticWithCoefficientsByMaturity) {
  for (const double tau : {inf, 1e30}) {
    Material m = Chain({tau, tau}, {0.25, 0.5});
    m.E = Property_Table{false, true, false, {10, 100}, {1, 1}};
    m.Chain_Coefficient.add({0.65, 0.5});
    for (const auto& [M, sum] :
         {std::pair{0.0, 0.75}, {10.0, 0.75}, {32.5, 0.85}, {100.0, 1.15}, {1e4, 1.15}}) {
      Mech_Point p;
      double strain = 0;
      for (const auto& [dt, d] : {std::pair{1.0, 2e-4}, {100.0, -5e-5}, {1e4, 0.0}}) {
        EXPECT_DOUBLE_EQ(Maxwell_Effective_Modulus(m, 30000, M, dt), 30000 * sum) << tau << " " << M;
        Maxwell_Update(m, 30000, M, dt, Components{d, 0, 0, 0}, p);
        p.Stress_Start = p.Stress;
        EXPECT_NEAR(p.Stress[0][0], 30000 * sum * (strain += d), 1e-12) << tau << " " << M;
      }
    }
  }
}

}  // namespace
}  // namespace pvx
