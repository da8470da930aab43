// The analysis driver: carries a computation from the start to the closing of the result files.
//
// Run_Analysis owns the order of the stages, the iterations of a time step, the stop flag and the
// decision of what is stored when. For every material variant of the project it opens the result
// family, sets the initial state, stores it, and walks the step table: per step the thermal
// problem (one factorisation, then passes on the right-hand side until no temperature moves by
// more than 0.01 degrees, at most Max_Thermal_Passes times), then the moisture and mechanical problems, the
// end of the step, the sampling of the extremes and, at a storage step, one storage of all fields.
//
// It runs in the caller's thread and reaches the caller only through the Analysis_Host.
#pragma once

#include <string>

#include "analysis/host.h"
#include "analysis/run_state.h"
#include "app/project.h"
#include "results/storage.h"

namespace pvx {

// A step whose temperatures have not settled after this many passes ends its variant: the
// iteration would otherwise go on for ever.
inline constexpr int Max_Thermal_Passes = 1000;

// The message of such a step: when it ends, how many passes ran and the mesh node whose
// temperature still moved most in the last one, and by how much.
std::string Not_Settled_Message(double time, int passes, double change, int node);

// The message of a run asked for a variant that the run set does not have.
std::string Missing_Variant_Message(int variant, int variants);

enum class Run_Outcome {
  Completed,  // every variant ran to its last step
  Stopped,    // the user stopped the run (or refused more iterations); the files are closed
  Failed      // a variant failed (zero pivot, result files); the files that were open are closed
};

// Runs every material variant of the project, or the one that run.Only_Variant names; variants
// share nothing mutable but the project's tables of the mesh that the run completes, so copies of
// one project can compute different variants in parallel. Before the call the caller has prepared the
// prescribed data (Set_Prescribed_Data) and the runs and their result names (Prepare_Runs);
// relative result names are taken in `work_directory`. `run` carries the settings in and the state
// of the last variant out. Messages reach the host as they arise; the last one is also returned.
Run_Outcome Run_Analysis(Project& p, Run_State& run, Analysis_Host& host, const std::string& work_directory,
                         std::string& message);

// Numbers the equations of the run (the nodes for temperature and moisture, the displacement
// unknowns when the mechanical analysis is included) and sizes every table of the run for the mesh.
void Allocate_Solution_Arrays(const Project& p, Run_State& run, Analysis_Host& host);

// The initial state of a variant: material numbers (with the variant's replacement), the state of
// every integration point, the starting temperatures and moistures at the nodes (a node shared by
// two macros takes the value of the higher macro), and with the mechanical analysis no displacement
// and no stress.
void Set_Initial_State(const Project& p, Run_State& run, int variant);

// The fields of the current state in the order of the result records, for the extremes and a
// storage; with mechanics, the corner stresses are worked out for them first.
Field_Values Current_Fields(const Project& p, Run_State& run);

// Moves the current state of the step to the start of the next: temperatures, moistures and every
// integration point's pairs.
void Update_End_Of_Step(Run_State& run);

}  // namespace pvx
