// Cooling pipes: the water that runs through a circuit heats up on its way, and takes that heat from
// the concrete round the pipe holes.
//
// A circuit crosses the section Pipe_Count times; each crossing (a section) is a hole with eight wall
// nodes. The water is known at Pipe_Count + 2 stations: the inlet (1), downstream of each section
// (i + 1) and at the outlet after the last stretch (Pipe_Count + 2). Along a stretch the water follows
// the exact solution of dT/dx = c (S - T) / v for a wall temperature S that runs linearly between
// the walls of the sections at its ends.
//
// Units: flow in m3/h, diameter in mm, transfer coefficient in W/m2K, liquid capacity in kJ/m3K,
// stretch lengths in m, time in hours.
#pragma once

#include <string>

#include "analysis/run_state.h"
#include "app/project.h"

namespace pvx {

// Water speed in m/s of a flow in m3/h through a pipe of the inner diameter in mm:
// 1e6 x 4 / (pi x 3600) = 353.67765.
inline double Water_Speed(double flow, double diameter) {
  return flow * 353.67765 / (diameter * diameter);
}

// In operation at the mid-step time: strictly after Active_From and strictly before Active_Until.
bool Circuit_In_Operation(const Circuit& c, double mid);

// Whether the pipe wall of the circuit exchanges heat with the water in the step: in operation at
// the mid-step time and water flowing at the end of the step. Water that stands takes no heat away:
// a pump switched off must not keep cooling the concrete as if fresh water flowed.
bool Circuit_Exchanges(const Project& p, const Circuit& c, double mid, double t);

// Every pipe section has its eight wall nodes in the mesh (the circuits were integrated).
bool Circuit_Connected(const Project& p, const Circuit& c);

// The first circuit data that the computation cannot take, as a message; empty when all is well.
// A stretch of length 0 would divide the exchange number by zero.
std::string Check_Circuits(const Project& p);

// The start of a variant: every station at the inlet temperature at time 0, and one history record
// at Active_From with capacity 0.
void Set_Cooling_Start(const Project& p, Run_State& run);

// The water temperatures along every circuit at the end t of the step, from the wall temperatures
// (the mean of old and new at the eight wall nodes of each section). Called after every pass of the
// thermal iteration, so that the next pass meets the latest water.
void Update_Water_Temperatures(const Project& p, Run_State& run, double t);

// The passes of a step iterate the water and the temperatures together, each pass solving with the
// water of the pass before. The water of a pass goes in relaxed by Aitken's factor, estimated from
// the changes of the last two passes, so that a strong exchange round the pipes does not cost many
// passes; the settled state is the same. Start_Water_Passes before the first pass, then
// Relax_Water_Temperatures after each Update_Water_Temperatures.
void Start_Water_Passes(Run_State& run);
void Relax_Water_Temperatures(Run_State& run);

// The end of a step: a history record for every circuit in operation, then the new water becomes
// the old one for every circuit.
void Update_Cooling_End_Of_Step(const Project& p, Run_State& run, double t);

// The exchange coefficient of one of the eight sides of a pipe hole, without the time factor: the
// side is an eighth of the circumference (0.7854 r), and a consistent side matrix has L / 3 on its
// diagonal, so k = h x r x 0.2618 with r = diameter / 2000 m.
inline double Pipe_Side_Coefficient(const Circuit& c) {
  return c.Diameter / 2000 * c.Transfer_Coefficient * 0.2618;
}

}  // namespace pvx
