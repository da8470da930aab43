// The creep laws of hardening concrete at one integration point: the Maxwell chain and the Burger
// body, with the step length that temperature, humidity and stress level stretch, and transient
// creep.
//
// The Maxwell chain is N parallel Maxwell units (a spring in series with a dashpot), unit m with
// modulus E c(m) and relaxation time tau(m). The unit coefficients c follow the maturity along the
// points of the E-modulus table, so that the chain stiffens as the concrete hardens. Each unit is
// integrated exactly over a step in which the strain grows at a constant rate: with x = dt*/tau, the
// unit's start stress decays by exp(-x) and the step's strain increment enters with the modulus
// E c (1 - exp(-x)) / x. The sum of those moduli is the step's effective modulus, used both for the
// tangent matrix and for the stress update, so that the iteration converges to the same stress the
// update gives.
//
// The Burger body is a Maxwell unit (spring A, dashpot A tau_A) in series with a Kelvin unit
// (spring B beside a dashpot B tau_B). Over a step in which the stress changes at a constant rate
// the Kelvin unit is integrated exactly and the Maxwell dashpot by the trapezoidal rule, which is
// exact for such a stress too; its state is the Kelvin strain rate q.
//
// State: stress row 0 of a point is the total. A chain keeps the stress of unit m in row m, a
// Burger body its rate q in strain row 1. Only start-of-step rows are read, so a step can be
// repeated without restoring anything.
//
// Not computed here: the acceleration of the step by damage and the crack law itself (the crack
// law cuts row 0 and then calls Scale_Chain_Units), and the choice of the law by the model name.
#pragma once

#include "analysis/mechanics/mechanical_state.h"
#include "material/material.h"

namespace pvx {

// What the step length of a point depends on: the step dt (hours), the point's temperature T (oC)
// and humidity H, and its strengths ft, fc (MPa).
struct Creep_Step {
  double dt = 0, T = 20, H = 1, Ft = 0, Fc = 0;
};

// The step length of the creep law, dt*, hours: dt, lengthened above 20 oC and shortened below by
// exp(QR (1/293 - 1/(T + 273))) when the material has its temperature influence; shortened in dry
// concrete by Ah + (1 - Ah) h^2 (h at most 1) with its humidity influence; and for a Maxwell chain
// with its stress-level influence lengthened by Stress_Level_Factor of the start-of-step stress.
double Creep_Time_Step(const Material& m, const Creep_Step& c, const Mech_Point& point);
// The temperature factor alone.
double Creep_Time_Step(const Material& m, double dt, double T);

// Highly stressed concrete creeps faster. With s1, s3 the largest and smallest principal stress (the
// in-plane pair, widened by zz), the tension ratio rt = 1.5 s1/ft - 0.5 and the compression ratio
// rc = 1.5 |s3|/fc - 0.5, each limited to 0..1 and 0 for a strength that is not positive: the
// factor is 1 + at rt^2 when rt > rc, else 1 + ac rc^2. 1 without the stress-level influence.
double Stress_Level_Factor(const Material& m, const Components& stress, double ft, double fc);

// The transient creep coefficient b (1/MPa) at a point of mean humidity H: the material's own, or
// with its humidity classes b1..b4 by the limits 0.7, 0.8, 0.9 (chain) or 0.7, 0.85, 0.95 (Burger
// body); a humidity at a limit belongs to the lower class.
double Transient_b(const Material& m, double H);

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

// The current stress rows from the start-of-step rows and the unit stress increment s (the
// unit-modulus stiffness applied to the mechanical strain increment): unit m takes
// g_m s + (exp(-dt*/tau_m) - transient) start_m, and row 0 is the sum of the units. `transient` is
// the share of the start stress that transient creep takes in the step, a |dT| + b |dH| (0 without
// it). The point's stress rows are grown to N + 1 with zero stress when they are shorter.
void Maxwell_Update(const Material& m, double E, double M, double dt_star, const Components& s,
                    double transient, Mech_Point& point);

// After the crack law has cut the total stress of a chain point, the units carry the cut total in
// their old proportions: for a positive stiffness factor, per component j whose unit stresses add up
// to a nonzero S, every unit stress j is scaled by the total j over S. A component whose units add up
// to 0 keeps them, and a fully cracked point (factor 0) keeps all.
void Scale_Chain_Units(Mech_Point& point, int units, double factor);

// The Burger constants at temperature T and maturity M (in the unit of the material's tables):
// moduli A, B in MPa, times Tau_A, Tau_B in hours.
struct Burger_Constants {
  double A = 0, Tau_A = 0, B = 0, Tau_B = 0;
};
Burger_Constants Burger_At(const Material& m, double T, double M);

// The step compliance of a Burger body under a stress that changes at a constant rate, split into
// the spring of A (c), the dashpot of A (d) and the Kelvin unit (b); all 0 but c = 1/A for a step
// of zero length. The effective modulus of the step is 1/(c + d + b), MPa.
struct Burger_Compliance {
  double c = 0, d = 0, b = 0;
};
Burger_Compliance Burger_Compliance_Of(const Burger_Constants& b, double dt_star);
double Burger_Effective_Modulus(const Burger_Constants& b, double dt_star);

// The Burger stress update. D is the unit-modulus stiffness (already scaled by a crack factor), C
// its compliance, s the unit stress increment and `transient` as for the chain. Writes the total
// stress (row 0), the new Kelvin rate (strain row 1, from the start rate in Strain_Start row 1; the
// strain rows are grown to 2 with zeros when shorter) and the creep strain, the total strain less
// C stress / A.
void Burger_Update(const Burger_Constants& b, double dt_star, const double D[4][4], const double C[4][4],
                   const Components& s, double transient, Mech_Point& point);

// The creep strain of a point: its current total strain less the elastic strain of its current
// total stress, C the unit-modulus compliance and E the modulus of the spring that is not creep.
Components Creep_Strain_Of(const double C[4][4], double E, const Mech_Point& point);

}  // namespace pvx
