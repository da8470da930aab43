#include "analysis/hydration.h"

#include <algorithm>
#include <cmath>

#include "design/time_function.h"

namespace pvx {

void Update_Maturity(const Material& m, double dt, double T_old, double T_new, double h_old, double h_new,
                     double M_old, double& M_new, double W_old, double& W_new) {
  const double T = (T_old + T_new) / 2;
  const double h = (h_old + h_new) / 2;
  double f = 1.0;
  if (m.Arrhenius_Active) {
    double A = m.Q_Over_R;
    if (m.dQ_Active && T < 20.0) A = (20 - T) * m.dQ_Over_R + m.Q_Over_R;
    // The absolute temperature is taken with an offset of 273, as the maturity tables were made.
    f = std::exp(A * (1 / static_cast<double>(m.T_Reference) - 1 / (T + 273)));
  }
  if (m.Humidity_Active) f = f / (1 + std::pow(m.Ac - m.Ac * h, static_cast<double>(m.Bc)));
  if (m.Hygral_Maturity_Stop) {
    const double u = std::min(2 * h - 1, 1.0);
    f = u < 0 ? 0 : f * u * u * u * u;
  }
  M_new = M_old + f * dt;
  if (m.Dutch_Active) {
    const double C = m.Dutch_C;
    W_new = W_old + dt * 10 * (std::pow(C, 0.1 * T - 1.245) - std::pow(C, -2.245)) / std::log(C);
  } else {
    W_new = W_old;
  }
}

double Hydration_Heat(const Material& m, double dt, double M_old, double M_new, double& Hydration_New) {
  Hydration_New = 1.0;
  const std::string& model = m.Heat_Model;
  const double M1 = M_old, M2 = M_new;
  if (model == "CONS") return m.Heat_H * dt;
  if (model == "CORE") {
    if (M2 <= m.Heat_d) {
      Hydration_New = 0;
      return 0;
    }
    const double x = (M2 - m.Heat_d) * m.Heat_a;
    Hydration_New = x / (x + 1);
    double difference = x / (x + 1);
    if (M1 > m.Heat_d) {
      const double y = (M1 - m.Heat_d) * m.Heat_a;
      difference -= y / (y + 1);
    }
    return m.Heat_H * difference;
  }
  if (model == "DANI") {
    auto G = [&](double M) {
      return M > 0 ? std::exp(-std::pow(m.Heat_a / M, static_cast<double>(m.Heat_b))) : 0.0;
    };
    const double g2 = G(M2);
    Hydration_New = g2;
    return m.Heat_H * (g2 - (M1 > 0 ? G(M1) : 0.0));
  }
  if (model == "PIWI") {
    auto P = [&](double M) {
      return M > 0 ? Piecewise_Linear(m.Heat_Table_Time, m.Heat_Table_Rise, M) : 0.0;
    };
    const double q2 = m.Capacity_Wet * P(M2);
    Hydration_New = M2 > 0 && m.Heat_H != 0 ? q2 / m.Heat_H : 0.0;
    return q2 - (M1 > 0 ? m.Capacity_Wet * P(M1) : 0.0);
  }
  return 0;
}

}  // namespace pvx
