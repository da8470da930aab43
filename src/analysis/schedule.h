// The period and step schedule of a run, and the logic of the window of the run settings.
//
// The user never types time steps: a run is a total time and a table of periods, each with its
// own time increment and storage interval. Set_Time_Steps turns them into the step table that
// the driver walks through. The window also chooses the material variants of the run: one
// material of the mesh is replaced, in turn, by each marked material, each variant into result
// files of its own.
#pragma once

#include <cstdint>
#include <string>

#include "app/project.h"
#include "app/shell.h"

namespace pvx {

// ---- Step table --------------------------------------------------------------------------------

// The steps of one run: the time at the end of each step, in hours, and whether the fields are
// stored after it. Both tables have Number_Of_Steps entries.
struct Step_Table {
  Table<double> Step_Time;
  Table<Flag> Step_Store_Flag;
  bool operator==(const Step_Table&) const = default;
};
inline int Number_Of_Steps(const Step_Table& s) {
  return s.Step_Time.count();
}
inline bool Is_Storage_Step(const Step_Table& s, int step) {
  return s.Step_Store_Flag[step] != 0;
}

// Builds the step table from the periods. For each period of length L, n = L / Time_Increment
// rounded half to even (at least 1) steps of L / n are appended, stopping in the period at the
// first step that reaches Computation_Time; a period that starts beyond it still gets its first
// step. Then m = L / Storage_Each rounded likewise (at least 1) storage targets, evenly spread,
// each flag the step nearest to it in the whole table (the first of equally near steps).
void Set_Time_Steps(const Project& p, Step_Table& steps);

// "Total number of time steps" and "Total number of storages" of the window: over the periods
// that start at or before Computation_Time, cut off at it.
struct Schedule_Totals {
  long long Steps = 0;
  long long Storages = 0;
  bool operator==(const Schedule_Totals&) const = default;
};
Schedule_Totals Compute_Schedule_Totals(const Project& p);

// ---- The window of the run settings ----------------------------------------------------------------

// The state of the window beside the Project: the period shown, the material to be replaced and
// the marks of the material grid.
struct Run_Window {
  int Current_Period = 1;
  std::int16_t Replaced_Material = 0;  // number of the material to be replaced, 0 for none
  Table<Flag> Material_Mark;           // one per material of the project: "V" or nothing
  // "Material to be replaced:": each material that occurs in the mesh, once, in order of first
  // occurrence.
  Table<std::int16_t> Replaceable_Material;
  // Material number of each mesh element, by exact name; 0 where the name is not in the table.
  Table<std::int16_t> Element_Material;
};

// What the window shows of the schedule (Set_Run): the current period's fields, its caption
// and the two totals.
struct Run_View {
  double Computation_Time = 0;
  int Period_Count = 0;
  int Current_Period = 0;
  std::string Period_Caption;  // "In period 2"
  double From = 0, Until = 0, Storage_Each = 0, Time_Increment = 0;
  Schedule_Totals Totals;
};
inline constexpr const char* Time_Increment_Remark = "  (0,25 hours is recommanded)";

// Keeps Current_Period within 1..Period_Count and fills the view.
Run_View Set_Run(const Project& p, Run_Window& w);
// The up-down control: moves Current_Period by `delta` within 1..Period_Count.
void Move_Current_Period(const Project& p, Run_Window& w, int delta);

// Entries of the window. Each takes a value already read by the number routine, returns whether
// it was taken, and leaves everything unchanged when it was not. A refusal has no message: the
// field simply shows the old value again.
//
// "Computations up to": must be greater than 0.
bool Enter_Computation_Time(Project& p, double value);
// "Number of periods": 0 or less is ignored (but the last period is shown). More periods are
// appended, each from the Until of the one before, with its storage interval and increment, and
// lasting one storage interval; fewer cut the table. The last period becomes the current one.
bool Enter_Period_Count(Project& p, Run_Window& w, int value);
// Until of the current period: must be greater than its From. The later periods are chained:
// each From becomes the Until before it, and an Until not above its From becomes From + 1.
bool Enter_Period_Until(Project& p, const Run_Window& w, double value);
// From is not taken from the user; it follows from the chain.
inline bool Enter_Period_From(Project&, const Run_Window&, double) {
  return false;
}
// "Storage each", "Time increment": must be greater than 0.
bool Enter_Storage_Each(Project& p, const Run_Window& w, double value);
bool Enter_Time_Increment(Project& p, const Run_Window& w, double value);

// "Damped start": the number of backward Euler steps after the start of a variant and after each
// switch of a cooling circuit, 0 (off) to 100.
bool Enter_Damped_Start(Project& p, int steps);

// ---- Material variants -------------------------------------------------------------------------

// Binds the element materials to numbers, lists the materials of the mesh, takes the first
// element's material as the one to be replaced (and flags its elements in Element_Replaced), and
// sets the marks: with Replace_Material every material is marked and each is a run.
void Set_Mebin(Project& p, Run_Window& w);
// Choosing in the list: sets Replaced_Material and flags the elements of that material.
void Choose_Replaced_Material(Project& p, Run_Window& w, std::int16_t material);
// A click on grid row `row` toggles its mark and rebuilds the runs from the marks, in row order.
void Toggle_Material_Mark(Project& p, Run_Window& w, int row);
// "Mark all": every material is a run, Run_Material(i) = i. "Unmark all": no run.
void Mark_All_Materials(Project& p, Run_Window& w);
void Unmark_All_Materials(Project& p, Run_Window& w);
// The text of a grid row's mark column.
inline const char* Mark_Text(const Run_Window& w, int row) {
  return w.Material_Mark[row] != 0 ? "V" : "";
}

// Before the result files are named: no run becomes one run of the replaced material, so the
// design is computed once as it stands; so is it without material variants (Replace_Material
// false), whatever the marks. Then the result file names of the runs are made
// (B.RES, B2.RES, ...). Element_Replaced is kept.
void Prepare_Runs(Project& p, std::int16_t replaced_material);

// ---- Iteration settings ------------------------------------------------------------------------

// "Set convergence limits for mechanics": field `index` of the dialog, 0 the iteration limit
// (rounded half to even to an integer), 1 to 3 the three convergence limits. A value not greater
// than 0, or a limit beyond 16 bits, is ignored.
bool Enter_Iteration_Setting(Shell& s, int index, double value);

}  // namespace pvx
