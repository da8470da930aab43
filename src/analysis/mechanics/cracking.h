// Tensile cracking of an integration point: a smeared, rotating crack with one isotropic stiffness
// factor. The point remembers the largest equivalent strain it has reached; the softening curve of
// its material gives the stress it can still carry at that strain, and the stress is cut down to it.
// The curve is written in crack width and turned into strain over the band width of the point, so
// that the energy a crack dissipates per unit of its area is the area under the curve whatever the
// element size.
//
// The damage law (EPFL) lowers the tensile strength with the largest principal creep strain and
// speeds up creep under tension.
//
// Each routine reads the start-of-step state of the point and writes only its current state, so an
// iteration can be repeated without restoring anything.
#pragma once

#include "analysis/mechanics/mechanical_state.h"
#include "app/table.h"
#include "material/material.h"

namespace pvx {

// What the crack laws are told about a point and its step.
struct Crack_Conditions {
  double nu = 0;              // Poisson ratio
  double ft = 0;              // tensile strength at the point (after damage), MPa
  double E = 0;               // the modulus the point's creep strain refers to, MPa
  double Band = 0;            // band width of the point, 2 sqrt(J), mm
  bool Plane_Stress = false;  // else plane strain or axisymmetric: zz takes part
  double Mode_Band = 0;       // the band length of a table law of mode 1: Lch x volume factor, mm
};

// The four values of a bilinear curve: the knee at s1 x ft and width w1, zero stress at width w2,
// and the unloading parameter alfa (0: secant to the origin, 1: parallel to the elastic line).
struct Bilinear_Values {
  double s1 = 0, w1 = 0, w2 = 0, alfa = 0;
};
// The bilinear values of a material: its ISOT line, or those of the damage block when it is on.
Bilinear_Values Bilinear_Of(const Softening& law);

// Bilinear softening. From the current total strain less the current creep strain and the current
// stress row 0: updates Largest_Strain[0], Stiffness_Factor[0] (never above its start value),
// Half_Band (set once), Crack_Strain, Crack_Opening and Cracked, and scales stress row 0 down to
// the curve when the governing stress exceeds it.
void Bilinear_Crack(const Crack_Conditions& c, const Bilinear_Values& v, Mech_Point& point);

// Multilinear softening through the points (Crack_Width(i), Strength_Factor(i)) of the law, with
// the unloading parameter alfa; also stores the direction of the principal axes.
void Table_Crack(const Crack_Conditions& c, const Softening& law, double alfa, Mech_Point& point);

// The damage law, before the creep update of a point of a material whose damage block is on with
// Ct > 0. Returns the factor on the creep time step of the stress update (sinh x / x of the
// start-of-step tension, 1 when there is none) and lowers `ft` by the largest principal creep
// strain reached, which it keeps in Creep_Max; Ft_Copy takes the lowered strength.
double Apply_EPFL_Damage(const Softening& law, double& ft, Mech_Point& point);

// The random factors of the elements at the start of a run: an element of a material with a
// statistical variation v > 0 draws f = 2 v (r - 0.5) + 1 with r uniform in 0..1, once for its
// strength and once for its characteristic volume; every other element keeps 1. The generator
// starts from `first_state`, so that the same start draws the same factors and a run can be repeated.
void Draw_Element_Factors(const Table<const Material*>& element_material, unsigned first_state,
                          Table<double>& strength_factor, Table<double>& volume_factor);

}  // namespace pvx
