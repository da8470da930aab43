// The law of a joint between two macros at one of its two integration points: the normal stress
// from the opening and the shear stress from the slip, of the three kinds of joint material.
//
// A: a tensile strength that softens bilinearly with the opening (down to s1 at w1, to 0 at w2)
//    and falls with the largest slip; shear limited by the remaining cohesion and friction.
// B: no tension; closed it holds by its stiffnesses, with Coulomb friction; open it carries nothing.
// C: as A with the softening given as a table of (opening, stress) points.
//
// Openings and slips in mm, stiffnesses in N/mm3, stresses in MPa. The opening is positive when
// the joint separates. A point is closed up to an opening of 1e-5 mm.
#pragma once

#include "material/material.h"

namespace pvx {

// The state of one integration point of a joint: values at the start of the step and current ones.
struct Interface_Point {
  double Opening_Start = 0, Opening = 0;  // the largest opening reached, mm
  double Slip_Start = 0, Slip = 0;        // the plastic slip, mm
  double Largest_Slip = 0;                // the largest absolute slip, mm (one value for both)
  double Sigma = 0, Tau = 0;              // normal and shear stress, MPa
  double K_Normal = 0, K_Shear = 0;       // the stiffnesses of the tangent, N/mm3
};

// The factor of the cohesion in the shear limit: (1 + sin phi) / (2 cos phi) for the friction
// angle of types A and C (0 where cos phi <= 0), the Coulomb friction of type B.
double Interface_Friction_Factor(const Material& m);

// The bilinear softening of type A at opening x: the stress and the secant stress / x.
void Interface_Softening_Type_A(double ft, double s1, double e0, double e1, double e2, double x,
                                double& stress, double& secant);

// The stresses and stiffnesses of a point from its opening u_n and slip u_s, the totals of the step.
void Interface_Point_Update(const Material& m, double u_n, double u_s, Interface_Point& p);

// The end of a step: the largest opening and the plastic slip become the start values.
void Interface_End_Of_Step(Interface_Point& p);

}  // namespace pvx
