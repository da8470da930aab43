// Maturity and the heat of hydration at one integration point.
//
// Hardening is tracked by a maturity per integration point (hours of equivalent age at the
// reference temperature); the heat of hydration and the degree of hydration follow from it by one
// of four heat models. Both procedures are plain functions of their arguments: the analysis calls
// them once per point and per thermal pass, the material viewer calls them to draw its curves.
#pragma once

#include "material/material.h"

namespace pvx {

// The state of one integration point as pairs of start-of-step (old) and current (new) values.
// Every iteration writes only new values; the end of the step copies them to the old ones, so a
// step can be iterated without restoring anything.
struct Point_State {
  double Maturity_Old = 0, Maturity_New = 0;                    // hours
  double Weighted_Maturity_Old = 0, Weighted_Maturity_New = 0;  // degree-hours (weighted maturity)
  double Water_Old = 0, Water_New = 0;                          // evaporable water, kg/m3
  double Hydration_Old = 0, Hydration_New = 0;                  // degree of hydration, 0..1
};

// Advances the maturity over a step of dt hours from the mean temperature (oC) and the mean
// moisture potential of the step. M_new and W_new are set from M_old and W_old.
void Update_Maturity(const Material& material, double dt, double T_old, double T_new, double h_old,
                     double h_new, double M_old, double& M_new, double W_old, double& W_new);

// The heat released in the step from maturity M_old to M_new, in kJ/m3, by the material's heat
// model; sets the degree of hydration reached at M_new (before the material's hydration factor).
double Hydration_Heat(const Material& material, double dt, double M_old, double M_new, double& Hydration_New);

}  // namespace pvx
