// The state of one computation: settings, flags, the step table, the numbering and the solution
// vectors, the integration-point states and what is stored. One object per run, passed by
// reference to every stage, so that a test, the batch tool and the desktop program each hold
// their own.
//
// Solution vectors are indexed by equation number (1..n, see Node_Numbering); per-element tables by
// element number; integration points run element outer, point inner: point i of element e is
// Points[4 (e - 1) + i], i = 1..4, in the order (-g,-g), (+g,-g), (+g,+g), (-g,+g).
#pragma once

#include <cstdint>
#include <vector>

#include "analysis/hydration.h"
#include "analysis/mechanics/mechanical_state.h"
#include "analysis/schedule.h"
#include "analysis/solver.h"
#include "analysis/thermal_element.h"
#include "app/table.h"
#include "results/cooling_data.h"
#include "results/extremes.h"
#include "results/run_index.h"

namespace pvx {

// The water of the cooling circuits: per circuit, the temperature at each station (1 = inlet,
// i + 1 = downstream of section i, sections + 2 = outlet) at the start of the step and now, and the
// history of the circuit, one record per step in operation.
struct Cooling_State {
  Table<Table<float>> Water_Old, Water_New;
  Table<Circuit_History> History;
  // The water of the passes of a step, all stations of all circuits in a row: the iterate the last
  // pass was solved with, the change the pass asked for, and the relaxation factor.
  std::vector<double> Iterate, Change;
  double Relaxation = 1;
};

// The three blocks of an element kept for the passes of a step: capacity C, conduction K (without
// the half step) and the unweighted mass M.
struct Element_Matrix_Set {
  Block10 C{}, K{}, M{};
};

struct Run_State {
  // Settings, taken when the run starts.
  bool Mechanical_Included = false;
  int Mechanical_Iteration_Limit = 10;
  double Mechanical_Limits[3] = {0.001, 0.001, 0.001};
  // The one variant of the run set to compute (its result family as the whole set names it), or 0
  // for every variant in turn.
  int Only_Variant = 0;

  // Flags. Stop_Computations is read at the top of each step and after each variant.
  bool Stop_Computations = false;
  bool Moisture_Included = false;
  bool Thermal_Converged = false;
  double Saturation_Limit = 0;

  // The circuit whose inlet, outlet, flow and capacity the run window follows (rows 6 to 8 of the
  // extreme table); 1-based, and may be changed while the run goes on.
  int Diagnostic_Circuit = 1;
  // The time weight of the thermal step: 1/2 is the trapezoidal rule, 1 the backward Euler step.
  double Theta = 0.5;

  // Schedule and what is stored.
  Step_Table Steps;
  double Mid_Step_Time = 0;
  double Current_Time = 0;              // the end of the step being computed; 0 in the initial state
  Run_Index Index;                      // step times, storage times and the extreme table of the variant
  Field_Statistics Statistics;          // per-step extremes for the run window
  std::vector<double> Saved_Step_Time;  // 1..steps+1: 0, then the end of each step done
  int Thermal_Passes = 0;               // passes of the thermal iteration in the last step
  int Moisture_Solves = 0;              // solves of the moisture iteration in the last step

  // Numbering and the linear systems (thermal and moisture share the numbering).
  Node_Numbering Numbering;
  int Equations = 0;
  Table<double> Matrix;
  Table<double> Right_Hand_Side;

  // Nodal fields by equation number.
  Table<double> Temperature_Old, Temperature_New, Temperature_Initial;
  Table<double> Moisture_Old, Moisture_New;
  Table<double> Base_Load;
  Table<std::int16_t> Active_Equation;
  Table<std::int16_t> Moisture_Active;  // the moisture system's own flags
  // The factors of a moisture matrix of the step kept for the passes that follow, and a work vector.
  Table<double> Moisture_Factors, Moisture_Work;
  int Moisture_Factorisations = 0;    // in the last step
  Table<double> Saturated_Potential;  // the head of the saturated flow of the step, m

  // Per element and per integration point.
  Table<std::int16_t> Element_Material;  // material number of each element in this variant; 0 none
  Table<Element_Matrix_Set> Element_Matrices;
  std::vector<Point_State> Points;  // 4 per element, see above; index 0 unused
  Gauss_Points Gauss{};

  // Buffers of one storage, by mesh node and by integration point.
  std::vector<double> Out_Temperature, Out_Potential;
  std::vector<double> Out_Maturity, Out_Hydration, Out_C_Maturity, Out_Moisture, Out_Tensile, Out_Compressive;

  Cooling_State Cooling;

  // The displacements, stresses and supports, when the mechanical analysis is included.
  Mechanical_State Mechanics;
};

inline Point_State& Point(Run_State& run, int element, int point) {
  return run.Points[static_cast<std::size_t>(4 * (element - 1) + point)];
}
inline const Point_State& Point(const Run_State& run, int element, int point) {
  return run.Points[static_cast<std::size_t>(4 * (element - 1) + point)];
}

}  // namespace pvx
