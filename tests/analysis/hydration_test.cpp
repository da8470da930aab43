// Maturity and the heat of hydration at one point, against the laws worked out by hand.
#include "analysis/hydration.h"

#include <gtest/gtest.h>

#include <cmath>

#include "analysis_fixtures.h"

namespace pvx {
namespace {

TEST(Update_Maturity, RateOfEachLawOverAStep) {
  Material arrhenius, raised, humid, stop, dutch;
  arrhenius.Arrhenius_Active = raised.Arrhenius_Active = raised.dQ_Active = true;
  arrhenius.Q_Over_R = raised.Q_Over_R = 4000;
  arrhenius.T_Reference = raised.T_Reference = 293;
  raised.dQ_Over_R = 100;  // per degree below 20
  humid.Humidity_Active = stop.Hygral_Maturity_Stop = dutch.Dutch_Active = true;
  humid.Ac = 5;
  humid.Bc = 4;
  dutch.Dutch_C = 1.3f;
  const double C = dutch.Dutch_C;
  struct Case {
    const char* name;
    Material m;
    double dt, T_old, T_new, h;
    double M, W;  // from M = 10, W = 5
  };
  const Case cases[] = {
      {"real time, no law", Material{}, 2.5, 5, 35, 1, 12.5, 5},
      {"Arrhenius at 40, offset 273", arrhenius, 1, 40, 40, 1, 10 + std::exp(4000.0 * 20 / (293.0 * 313.0)),
       5},
      {"Arrhenius at the mean of 30 and 50", arrhenius, 2, 30, 50, 1,
       10 + 2 * std::exp(4000.0 * (1 / 293.0 - 1 / 313.0)), 5},
      {"raised Q/R at 10", raised, 1, 10, 10, 1, 10 + std::exp((4000.0 + 10 * 100) * (1 / 293.0 - 1 / 283.0)),
       5},
      {"plain Q/R at 30", raised, 1, 30, 30, 1, 10 + std::exp(4000.0 * (1 / 293.0 - 1 / 303.0)), 5},
      {"humidity 0.9", humid, 1, 20, 20, 0.9, 10 + 1 / (1 + std::pow(0.5, 4)), 5},
      {"stop below h 0.5", stop, 1, 20, 20, 0.3, 10, 5},
      {"slowed at h 0.75", stop, 1, 20, 20, 0.75, 10.0625, 5},
      {"not slowed above h 1", stop, 1, 20, 20, 1.2, 11, 5},
      // At 20 oC an hour adds 10 (C^0.755 - C^-2.245) / ln C of weighted maturity.
      {"weighted", dutch, 3, 20, 20, 1, 13,
       5 + 3 * 10 * (std::pow(C, 0.755) - std::pow(C, -2.245)) / std::log(C)},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    double M = 0, W = 0;
    Update_Maturity(c.m, c.dt, c.T_old, c.T_new, c.h, c.h, 10, M, 5, W);
    EXPECT_NEAR(M, c.M, 1e-7);
    EXPECT_NEAR(W, c.W, 1e-9);
  }
}

TEST(Hydration_Heat, StepsAddUpToTheHeatLawOfEachModel) {
  using test::Heating;
  Material piwi = Heating("PIWI", 45 * 2400);  // c = 2400
  piwi.Heat_Table_Time = {0, 24, 72};
  piwi.Heat_Table_Rise = {0, 30, 45};
  const double x = (100 - 3) * static_cast<double>(0.05f), b = 1.3f;  // as held in single precision
  struct Case {
    const char* name;
    Material m;
    double M_from, M_to;
    int steps;
    double heat, hydration;
  };
  const Case cases[] = {
      {"CONS: H per hour", Heating("CONS", 2.5f), 0, 40, 7, 100, 1},
      {"CORE: a(M-d)/(1+a(M-d))", Heating("CORE", 120000, 0.05f, 0, 3), 0, 100, 13, 120000 * x / (1 + x),
       x / (1 + x)},
      {"CORE before d", Heating("CORE", 1000, 0.1f, 0, 5), 3, 4, 1, 0, 0},
      {"CORE across d in one step", Heating("CORE", 1000, 0.1f, 0, 5), 4, 6, 1, 1000 * 0.1 / 1.1, 0.1 / 1.1},
      {"DANI: exp(-(a/M)^b)", Heating("DANI", 110000, 20, 1.3f), 0, 72, 9,
       110000 * std::exp(-std::pow(20.0 / 72, b)), std::exp(-std::pow(20.0 / 72, b))},
      {"DANI at maturity 0", Heating("DANI", 1000, 10, 1), 0, 0, 1, 0, 0},
      {"DANI from maturity 0", Heating("DANI", 1000, 10, 1), 0, 10, 1, 1000 * std::exp(-1.0), std::exp(-1.0)},
      {"PIWI: the rise table times c", piwi, 0, 48, 5, 2400 * 37.5, 37.5 / 45},
      {"NO H", Heating("NO H", 0), 0, 50, 3, 0, 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    double heat = 0, hydration = -1;
    const double dM = (c.M_to - c.M_from) / c.steps;
    for (int k = 0; k < c.steps; ++k)
      heat += Hydration_Heat(c.m, dM, c.M_from + dM * k, c.M_from + dM * (k + 1), hydration);
    EXPECT_NEAR(heat, c.heat, 1e-5);
    EXPECT_NEAR(hydration, c.hydration, 1e-7);
  }
}

}  // namespace
}  // namespace pvx
