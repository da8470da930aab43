// The mechanical problem of one time step: the tangent matrix of the start of the step, the loads
// and supports, one factorisation, then a modified Newton iteration on the residual between the
// external loads and the internal forces until the displacements settle.
#pragma once

#include <string>

#include "analysis/host.h"
#include "analysis/run_state.h"
#include "app/project.h"

namespace pvx {

inline constexpr const char* Displacement_Limit_Message =
    "Displacements > 10000 mm. Computations have been stopped.";
// An iterative displacement above this (mm) stops the run: the model has come apart.
inline constexpr double Displacement_Limit = 10000;

enum class Mechanical_Step {
  Converged,
  Singular,            // a zero pivot: `message` holds the solver's text
  Displacement_Limit,  // an increment above 10000 mm: `message` holds the program's text
  Refused,             // the host did not allow more iterations
  Stopped,             // the host asked to stop
};

// Solves the step of length dt ending at t (the run's Mid_Step_Time is set; the free strains of the
// step are in place). Each iteration solves for the increment of the residual, adds it to the total
// displacement and recomputes stresses and support forces; from the second on it ends when the
// largest increment A is at most the run's first limit, or the largest displacement of the step B
// at most the second, or A / B at most the third. The host's events are let through once per
// iteration. When the count reaches the run's iteration limit the host is asked whether to go on:
// yes counts on from 3 (so it is asked again after the limit less 3 more), no ends the step as
// Refused with the stop flag set. run.Mechanics.Iterations holds the number of solves.
Mechanical_Step Solve_Mechanical_Step(const Project& p, Run_State& run, Analysis_Host& host, double dt,
                                      double t, std::string& message);

}  // namespace pvx
