// The moisture field of a time step, after the temperatures of the step.
//
// The unknown is the moisture potential h at the nodes (relative humidity as a fraction; a little
// above 1 stands for free water in the pores). It diffuses with a coefficient D(h) in m2/h, by the
// trapezoidal rule in time, and moves by sources from the sorption isotherm: where hydration binds
// water or the temperature changes, the evaporable water w(h, T, alpha) stays as it was (less what
// hydration bound), and h follows. Water in saturated zones and under pressure at a border flows
// first by a steady stage of its own (Set_Saturated_Flow).
//
// The moisture system shares the numbering, matrix and solution vector of the thermal one. Only
// elements whose material has a hygral section take part; a node on none of them keeps its value.
#pragma once

#include <string>

#include "analysis/run_state.h"
#include "analysis/solver.h"
#include "app/project.h"

namespace pvx {

// The water the air pores of the material hold when full, kg/m3: its air content in percent of
// the volume, times 10.
double Air_Water(const Material& m);

// The evaporable water of the material, kg/m3, by its formula or its table, at degree of hydration
// alpha, temperature T and potential h.
double Isotherm(const Material& m, double alpha, double T, double h);

// Whether element e takes part in the moisture analysis at the run's mid-step time.
bool Moisture_Element(const Project& p, const Run_State& run, int e);

// Builds the moisture matrix of the step ending at t: the mass and the diffusion of the elements
// (blocks 1 and 2 of their matrices are refilled; block 3 keeps the mass for the sources), the
// exchange at the drying borders, and the active-equation flags.
void Assemble_Moisture_System(const Project& p, Run_State& run, double dt, double t);

// Builds the right-hand side in run.Right_Hand_Side, and sets the evaporable water of every point
// from its new potential.
void Set_Moisture_Load(const Project& p, Run_State& run, double dt, double t);

// Water in the saturated part of the model and under pressure at a border: a steady flow solved
// on that part, which fills the wet elements towards the saturation limit, in Moisture_Old and
// Moisture_New. False with the solver's message on a zero pivot.
bool Set_Saturated_Flow(const Project& p, Run_State& run, double dt, double t, std::string& message,
                        const Event_Pump& pump = {});

}  // namespace pvx
