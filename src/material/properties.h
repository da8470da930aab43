// Material properties at a state: the table lookup of every property that varies with maturity
// or temperature, and the thermal and hygral laws. These have no side effects; the analysis calls
// them per integration point and step, and the material viewer draws its curves with the same
// functions, so a curve on screen is what the analysis uses.
#pragma once

#include "app/table.h"
#include "material/material.h"

namespace pvx {

// Captions of the material viewer.
inline constexpr const char* Constant_Table_Caption = "(Independent of temperature and maturity)";
inline constexpr const char* Constant_Capacity_Caption = "(Independent of water content)";
inline constexpr const char* Mensi_Caption = " A1 * Exp( A2 * h) -> Mensi's law";
// The caption shows a minus sign; the law is computed with a plus (see Diffusion_Coefficient).
inline constexpr const char* Bazant_Caption = " Do * (a - (1 - a)/(1. + ((1-h)/(1-ht))^4)) -> Bazant";
inline constexpr const char* D0_Caption = "Do [m2/h] = ";
inline constexpr const char* A_Caption = "a [-] = ";
inline constexpr const char* Ht_Caption = "ht [-] = ";
inline constexpr const char* A1_Caption = "A1 [m2/h] = ";
inline constexpr const char* A2_Caption = "A2 [-] = ";

// The value of a property table: at `maturity` if the table depends on maturity, else at
// `temperature`. The abscissa is compared in single precision, as the table holds it; between
// points the value is linear, outside the table the end values hold.
double Table_Value(const Property_Table& table, double temperature, double maturity);

// A mechanical property of a material at a point: the weighted maturity is the argument for a
// table that follows maturity in a material with `Dutch_Active`, otherwise the plain maturity.
inline double Mechanical_Property(const Material& m, const Property_Table& table, double temperature,
                                  double maturity, double weighted_maturity) {
  return Table_Value(table, temperature,
                     m.Dutch_Active && table.Depends_On_Maturity ? weighted_maturity : maturity);
}

// Heat capacity, kJ/m3K, over a step: w (evaporable water, kg/m3) and T (oC) are the means of the
// old and new values. Linear in w when `Capacity_By_Water`; otherwise `Capacity_Wet`, raised by
// `Latent_Peak`(i) where T lies within 0.5 degrees of `Latent_Temperature`(i) (the last matching
// peak counts).
double Thermal_Capacity(const Material& m, double w_old, double w_new, double T_old, double T_new);

// Conductivity, W/mK, at the mean water content of the step.
double Thermal_Conductivity(const Material& m, double w_old, double w_new);

// Moisture diffusion coefficient, m2/h, at potential h. Bazant's law (`Diffusion_Bazant`, with D0,
// ht, a in Diffusion_1..3): D0 (a + (1 - a) / (1 + ((1 - h) / (1 - ht))^4)) for 0 <= h <= 1,
// D0 a below 0 and D0 above 1. Mensi's law (A1, A2): A1 exp(A2 h), held at h = 0 below and h = 1
// above. ht must not be 1.
double Diffusion_Coefficient(const Material& m, double h);

// The sorption isotherm as a formula: evaporable water, kg/m3, of a paste of water-cement ratio
// W_C with Cement kg/m3 and Air (as stored), at degree of hydration alpha, temperature T (oC) and
// potential h. Four linear branches per kilogram of cement: up to h = 0.35, up to the knee
// d = 0.95 - 0.111 alpha, up to saturation at h = 1, and the filling of the air pores up to
// H_Limit. Above 1 the value is not capped at H_Limit: the caller caps h.
double Isotherm_Water(double W_C, double Cement, double alpha, double T, double Air, double H_Limit,
                      double h);

// The sorption isotherm as a table: trilinear in temperature, hydration and potential; below the
// first point of an axis the first value holds, beyond the last the last interval is extrapolated.
double Isotherm_Table_Water(double alpha, double T, double h, const Isotherm_Grid& table);

// result = B v for the symmetric 4 x 4 matrix B stored as its upper triangle in the order 11, 12,
// 13, 14, 22, 23, 24, 33, 34, 44.
inline void Multiply_Symmetric(Array1<double, 4>& result, const Array1<double, 10>& block,
                               const Array1<double, 4>& vector) {
  const double* b = block.v;
  const double* v = vector.v;
  result.v[0] = b[0] * v[0] + b[1] * v[1] + b[2] * v[2] + b[3] * v[3];
  result.v[1] = b[1] * v[0] + b[4] * v[1] + b[5] * v[2] + b[6] * v[3];
  result.v[2] = b[2] * v[0] + b[5] * v[1] + b[7] * v[2] + b[8] * v[3];
  result.v[3] = b[3] * v[0] + b[6] * v[1] + b[8] * v[2] + b[9] * v[3];
}

}  // namespace pvx
