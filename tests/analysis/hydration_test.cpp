#include "analysis/hydration.h"

#include <gtest/gtest.h>

#include <cmath>

namespace pvx {
namespace {

Material Arrhenius(double q_over_r, double t_reference) {
  Material m;
  m.Arrhenius_Active = true;
  m.Q_Over_R = static_cast<float>(q_over_r);
  m.T_Reference = static_cast<float>(t_reference);
  return m;
}

double Rate(const Material& m, double T, double h = 1.0) {
  double M = 0, W = 0;
  Update_Maturity(m, 1.0, T, T, h, h, 0, M, 0, W);
  return M;
}

TEST(Update_Maturity, RealTimeWithoutALaw) {
  Material m;
  double M = 0, W = 0;
  Update_Maturity(m, 2.5, 5, 35, 1, 1, 10, M, 7, W);
  EXPECT_EQ(M, 12.5);
  EXPECT_EQ(W, 7);  // no weighted maturity without its law
}

TEST(Update_Maturity, ArrheniusAboutTheReferenceWithAnOffsetOf273) {
  const Material m = Arrhenius(4000, 293);
  EXPECT_NEAR(Rate(m, 20), 1.0, 1e-12);
  EXPECT_NEAR(Rate(m, 40), std::exp(4000.0 * 20 / (293.0 * 313.0)), 1e-9);
  // The mean of the old and new temperature counts, not either end.
  double M = 0, W = 0;
  Update_Maturity(m, 1.0, 30, 50, 1, 1, 0, M, 0, W);
  EXPECT_NEAR(M, std::exp(4000.0 * (1 / 293.0 - 1 / 313.0)), 1e-9);
}

TEST(Update_Maturity, TheCorrectionBelow20Degrees) {
  Material m = Arrhenius(4000, 293);
  m.dQ_Active = true;
  m.dQ_Over_R = 100;
  EXPECT_NEAR(Rate(m, 10), std::exp((4000.0 + 10 * 100) * (1 / 293.0 - 1 / 283.0)), 1e-12);
  EXPECT_NEAR(Rate(m, 20), 1.0, 1e-12);  // exactly 20 takes the plain Q/R
  EXPECT_NEAR(Rate(m, 30), std::exp(4000.0 * (1 / 293.0 - 1 / 303.0)), 1e-12);
}

TEST(Update_Maturity, HumidityFactorAndHygralStop) {
  Material m;
  m.Humidity_Active = true;
  m.Ac = 5;
  m.Bc = 4;
  EXPECT_NEAR(Rate(m, 20, 0.9), 1 / (1 + std::pow(0.5, 4)), 1e-7);
  Material stop;
  stop.Hygral_Maturity_Stop = true;
  EXPECT_EQ(Rate(stop, 20, 0.5), 0);
  EXPECT_EQ(Rate(stop, 20, 0.3), 0);
  EXPECT_NEAR(Rate(stop, 20, 0.75), 0.0625, 1e-12);
  EXPECT_NEAR(Rate(stop, 20, 1.2), 1.0, 1e-12);
}

TEST(Update_Maturity, WeightedMaturityAt20DegreesIsTheTableFactor) {
  // At 20 oC one hour adds 10 (C^0.755 - C^-2.245) / ln C: the factor by which the mechanical
  // tables of such a material are turned into weighted maturity.
  Material m;
  m.Dutch_Active = true;
  m.Dutch_C = 1.3f;
  const double C = m.Dutch_C;
  double M = 0, W = 0;
  Update_Maturity(m, 3, 20, 20, 1, 1, 0, M, 5, W);
  EXPECT_NEAR(W, 5 + 3 * 10 * (std::pow(C, 0.755) - std::pow(C, -2.245)) / std::log(C), 1e-9);
}

// The heat of a sequence of steps adds up to the heat law at the last maturity.
double Heat_Over(const Material& m, double M_end, int steps, double& hydration) {
  double heat = 0;
  for (int k = 0; k < steps; ++k)
    heat += Hydration_Heat(m, M_end / steps, M_end * k / steps, M_end * (k + 1) / steps, hydration);
  return heat;
}

TEST(Hydration_Heat, EachModelAddsUpToItsClosedForm) {
  double hydration = -1;
  Material cons;
  cons.Heat_Model = "CONS";
  cons.Heat_H = 2.5f;
  EXPECT_NEAR(Heat_Over(cons, 40, 7, hydration), 100, 1e-9);
  EXPECT_EQ(hydration, 1.0);

  Material core;
  core.Heat_Model = "CORE";
  core.Heat_H = 120000;
  core.Heat_a = 0.05f;
  core.Heat_d = 3;
  const double x = (100 - 3) * static_cast<double>(core.Heat_a);
  EXPECT_NEAR(Heat_Over(core, 100, 13, hydration), 120000 * x / (1 + x), 1e-6);
  EXPECT_NEAR(hydration, x / (1 + x), 1e-12);

  Material dani;
  dani.Heat_Model = "DANI";
  dani.Heat_H = 110000;
  dani.Heat_a = 20;
  dani.Heat_b = 1.3f;
  const double b = dani.Heat_b;  // held in single precision
  EXPECT_NEAR(Heat_Over(dani, 72, 9, hydration), 110000 * std::exp(-std::pow(20.0 / 72, b)), 1e-6);
  EXPECT_NEAR(hydration, std::exp(-std::pow(20.0 / 72, b)), 1e-12);

  Material piwi;
  piwi.Heat_Model = "PIWI";
  piwi.Capacity_Wet = 2400;
  piwi.Heat_Table_Time = {0, 24, 72};
  piwi.Heat_Table_Rise = {0, 30, 45};
  piwi.Heat_H = 45 * 2400;
  EXPECT_NEAR(Heat_Over(piwi, 48, 5, hydration), 2400 * 37.5, 1e-6);
  EXPECT_NEAR(hydration, 37.5 / 45, 1e-12);

  Material none;
  none.Heat_Model = "NO H";
  EXPECT_EQ(Heat_Over(none, 50, 3, hydration), 0);
  EXPECT_EQ(hydration, 1.0);
}

TEST(Hydration_Heat, NoHeatBeforeTheDormantPeriodNorAtMaturityZero) {
  Material core;
  core.Heat_Model = "CORE";
  core.Heat_H = 1000;
  core.Heat_a = 0.1f;
  core.Heat_d = 5;
  double hydration = -1;
  EXPECT_EQ(Hydration_Heat(core, 1, 3, 4, hydration), 0);
  EXPECT_EQ(hydration, 0);
  // Crossing d in one step gives the whole of F at the new maturity.
  EXPECT_NEAR(Hydration_Heat(core, 2, 4, 6, hydration), 1000 * 0.1 / 1.1, 1e-5);
  Material dani;
  dani.Heat_Model = "DANI";
  dani.Heat_H = 1000;
  dani.Heat_a = 10;
  dani.Heat_b = 1;
  EXPECT_EQ(Hydration_Heat(dani, 1, 0, 0, hydration), 0);
  EXPECT_EQ(hydration, 0);
  EXPECT_NEAR(Hydration_Heat(dani, 1, 0, 10, hydration), 1000 * std::exp(-1.0), 1e-9);
}

}  // namespace
}  // namespace pvx
