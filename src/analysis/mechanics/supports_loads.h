// The user's mechanical boundary conditions as terms of the global system: penalty supports,
// springs and prescribed displacements, line and point loads, and the out-of-plane condition of
// the section in the generalised plane strain form.
//
// A support acts along one direction (c, s). A fixed support is a penalty of Support_Penalty (1000)
// times the largest diagonal that the elements put on its equations: it is that much stiffer than
// what it holds, and so not exact (a prescribed displacement is reached to about 1/1000). The
// support force follows from the total displacement, so a prescribed motion enters through the
// residual and not through the load vector. Reactions are in kN, over the whole circumference in
// the axisymmetric form.
#pragma once

#include "analysis/run_state.h"
#include "app/project.h"

namespace pvx {

// Line and point loads active at t (Present_From <= t < Until) into the external load vector,
// after the stiffness assembly has cleared it and put the dead weight in. A line load is the
// constant Value, or Factor times its load function at t, or the water pressure of Factor times
// 0.00981 N/mm2 per metre below its Level, along the normal of the side (to the left of the side
// from Node_A to Node_B). In the axisymmetric form a line load is spread by the radii of the side's
// nodes; a point load is taken per radian as it stands.
void Set_External_Loads(const Project& p, Run_State& run, double t);

// Support terms of the supports active at the mid-step time, then the out-of-plane conditions: a
// fixed out-of-plane unknown and every place that nothing holds get a unit diagonal and are held
// at their value (their residual is 0), so that a section of classic plane strain and elements
// that have not started yet factorise. A real mechanism still meets a zero pivot.
void Assemble_Support_Stiffness(const Project& p, Run_State& run, double t);

// The support forces from the current displacements: subtracted from the internal force vector,
// and stored as reactions with the support displacements. A support with an offset takes the
// displacement it has when it starts (at t >= Present_From) as its zero.
void Compute_Support_Forces(const Project& p, Run_State& run, double t);

// The direction of an angle in degrees, with components below 1e-8 set to 0.
void Direction_Of(double angle, double& c, double& s);

}  // namespace pvx
