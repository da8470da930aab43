// The temperature field of a time step.
//
// The heat equation is discretised in space with 4-node quadrilaterals and in time with the
// trapezoidal rule (theta = 0.5). Long-wave radiation and the heat of hydration are explicit:
// the matrix of a step holds only capacity, conduction, convection and pipe exchange, is factorised
// once, and the right-hand side is iterated (Set_Thermal_Load) until the temperatures settle.
//
// Units: coordinates in mm (metres in the element routines), time in hours, capacity kJ/m3K,
// conductivity W/mK, convection W/m2K. 1 W = 3.6 kJ/h joins them: Half_Step = dt * 3.6 / 2.
#pragma once

#include "analysis/run_state.h"
#include "app/project.h"

namespace pvx {

inline double Half_Step(double dt) {
  return dt * 3.6 / 2;
}

// An element takes part at time t when Present_From <= t < Present_Until, both compared in single
// precision as the element holds them.
bool Element_Active(const Mesh_Element& e, double t);

// The value of function `number` of a family at time t; 0 for a number that names no function.
double Function_Value(const Project& p, Function_Family family, int number, double t);

// Builds the thermal matrix of the step ending at t (activity and border intervals at the run's
// Mid_Step_Time), the base load of prescribed temperatures, the active-equation flags and the
// element matrices kept for the passes.
void Assemble_Thermal_System(const Project& p, Run_State& run, double dt, double t);

// Builds the right-hand side of one pass in run.Right_Hand_Side, and advances maturity and
// hydration of every integration point from the start of the step to the current temperatures.
void Set_Thermal_Load(const Project& p, Run_State& run, double dt, double t);

}  // namespace pvx
