// The Maxwell chain: the creep law of hardening concrete as N parallel Maxwell units (a spring in
// series with a dashpot), unit m with modulus E c(m) and relaxation time tau(m). The unit
// coefficients c follow the maturity along the points of the E-modulus table, so that the chain
// stiffens as the concrete hardens.
//
// Each unit is integrated exactly over a step in which the strain grows at a constant rate: with
// x = dt*/tau, the unit's start stress decays by exp(-x) and the step's strain increment enters
// with the modulus E c (1 - exp(-x)) / x. The sum of those moduli is the step's effective modulus, used
// both for the tangent matrix and for the stress update, so that the iteration converges to the
// same stress the update gives.
//
// State: stress row 0 of a point is the total, row m the stress of unit m. Only start-of-step rows
// are read, so a step can be repeated without restoring anything.
//
// Not computed here yet: the acceleration by humidity and by stress level, transient creep with
// its humidity classes, the unit scaling after cracking, and the Burger model.
#pragma once

#include "analysis/mechanics/mechanical_state.h"
#include "material/material.h"

namespace pvx {

// The step length of the creep law, hours: dt, lengthened above 20 oC and shortened below when the
// material has its temperature influence, by exp(QR (1/293 - 1/(T + 273))), T in oC.
double Creep_Time_Step(const Material& m, double dt, double T);

// The rows of the unit coefficient table around maturity M and the weight of the second:
// c(unit) = (1 - f) c(r1, unit) + f c(r2, unit). Below the first point of E the first row holds,
// above the last the last; a material whose E does not follow maturity has one row.
struct Chain_Rows {
  int r1 = 1, r2 = 1;
  double f = 1;
};
Chain_Rows Chain_Rows_At(const Material& m, double M);
double Unit_Coefficient(const Material& m, const Chain_Rows& rows, int unit);

// The share of a unit's modulus that a step of length dt* keeps, (1 - exp(-x)) / x with
// x = dt*/tau: 1 for a unit that does not flow in the step (x = 0), towards 0 for a unit much
// faster than the step.
double Unit_Step_Factor(double dt_star, double tau);

// The effective modulus of a step, MPa: the sum over the units of E c(m) times their step factor.
// E is the E-modulus at the point's temperature and maturity.
double Maxwell_Effective_Modulus(const Material& m, double E, double M, double dt_star);

// The current stress rows from the start-of-step rows and the unit stress increment (the
// unit-modulus stiffness applied to the mechanical strain increment): unit m takes
// g_m s + exp(-dt*/tau_m) start_m, and row 0 is the sum of the units. The point's stress rows are
// grown to N + 1 with zero stress when they are shorter.
void Maxwell_Update(const Material& m, double E, double M, double dt_star, const Components& unit_increment,
                    Mech_Point& point);

// The creep strain of a point: its current total strain less the elastic strain of its current
// total stress, C the unit-modulus compliance and E the E-modulus at the point.
Components Creep_Strain_Of(const double C[4][4], double E, const Mech_Point& point);

}  // namespace pvx
