// The two laws of a reinforcement bar at one point: the steel along the bar and the bond between an
// end of the bar and the concrete around it.
//
// Both are tables of a reinforcement material followed by a plastic point with isotropic hardening:
// the curve is the envelope for both signs, and a point that has slid along it keeps a plastic
// part (the zero crossing of the line it unloads along) and its position on the curve, so that
// loading the other way takes up the curve where the point left it.
// - Steel: curve A, strain in 1/1000 against stress in MPa; the law takes the strain in m/m. It
//   unloads parallel to the curve's first segment (E0).
// - Bond: curve B, slip in mm against bond stress in MPa. It unloads with the "Unloading factor"
//   (Steel_Const_2) times the first segment's slope k0. Steel_Const_1 is the dowel stiffness
//   (N/mm3), used by the bar element and not here; Steel_Const_3 is not used.
// Past the last point of a table the stress stays at its last value with the tangent 1.0, so that
// a bar that carries no more still leaves the stiffness matrix regular. A table with fewer than two
// points or a first segment that does not rise has no modulus: its point carries no stress, with
// the same tangent 1.0, and its state stays as it started. The reader refuses such tables; this
// keeps a hand-made one from dividing by zero.
//
// Each law reads the start-of-step state and writes only the current one, so an iteration can be
// repeated without restoring anything; Roll_Bar_State closes the step.
#pragma once

#include "material/material.h"

namespace pvx {

struct Bar_Steel_State {
  double Plastic_Strain_Start = 0, Plastic_Strain = 0;        // signed, m/m
  double Equivalent_Strain_Start = 0, Equivalent_Strain = 0;  // plastic strain summed over both signs
  double Stress = 0, Tangent = 0;                             // MPa
  double Initial_Modulus = 0;                                 // E0, MPa
};

struct Bar_Bond_State {
  double Plastic_Slip_Start = 0, Plastic_Slip = 0;  // signed, mm
  double Largest_Slip_Start = 0, Largest_Slip = 0;  // furthest position reached on the curve, mm
  double Stress = 0, Tangent = 0;                   // MPa and MPa/mm
  double Initial_Modulus = 0;                       // k0, MPa/mm
};

// Stress and tangent of the steel from the mechanical strain of the bar (m/m).
void Bar_Steel_Stress(const Material& m, double mechanical_strain, Bar_Steel_State& state);

// Bond stress and tangent from the slip of a bar end (mm).
void Bar_Bond_Stress(const Material& m, double slip, Bar_Bond_State& state);

// End of step: the current values become the start values.
void Roll_Bar_State(Bar_Steel_State& state);
void Roll_Bar_State(Bar_Bond_State& state);

}  // namespace pvx
