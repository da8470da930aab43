// The displacement finite-element frame of the mechanical analysis: numbering of the unknowns, free
// strains of a step, the tangent matrix (once per step), the stresses and internal forces (once per
// iteration) and the corner stresses that are stored.
//
// The formulation is incremental-total: the displacement increment of the step gives the strain
// increment; stresses, strains and the internal force vector are totals, and equilibrium is
// always tested between the total external load and the total internal force.
#pragma once

#include <string>

#include "analysis/run_state.h"
#include "analysis/solver.h"
#include "app/project.h"

namespace pvx {

// Works out what the joints and the bars add to the mesh before a mechanical run or the reading of
// its results: the number of node copies along the joints and of bar nodes (Doubled_Node_Count),
// the bar elements (Mesh_Rebar) and which joints take part (Mesh_Interface's Active). False, with the
// message, when the bars cut at the mesh are more than the analysis can hold; the project is then
// unchanged.
bool Set_Mechanical_Mesh(Project& p, std::string& message);

// Numbers the unknowns: each element gets the equations of its corners, the nodes along the joints
// are doubled and the bars cut at the mesh (their nodes come behind the mesh nodes), each mesh
// support gets the equations it acts on (a support on a side, those of the element along it; a
// support at no node or element, those of a bar end within the mouse radius); then a reversed Cuthill-McKee
// ordering from equation 1 over the equations that share an element or a support (neighbours by ascending
// degree) gives Renumber and the column pointers. In the generalised plane strain form the three out-of-plane
// unknowns are appended with full columns. The pump is called once per equation.
void Set_Mechanical_Equations(const Project& p, Mechanical_State& m, const Event_Pump& pump = {});

// Sizes the system, the vectors, the point states and the storage buffers for the numbering.
void Allocate_Mechanical_Arrays(const Project& p, Mechanical_State& m);

// The mechanical start of a variant: no displacement, no stress, supports without an offset,
// strength factors of 1 and the strengths of every point at the initial state.
void Set_Mechanical_Initial_State(const Project& p, Run_State& run);

// The free strain increment of every point of an element with a mechanical material: thermal,
// autogenous and hygral, from the nodal temperatures and moisture potentials at the start and the
// end of the step and the point's maturity.
void Set_Free_Strains(const Project& p, Run_State& run);

// Clears the matrix and the external load, assembles the tangent of every joint, of every active
// element with a mechanical material and of every bar element in play, and puts the dead weight of the
// elements that carry it (from their dead weight time on) into the external load.
void Assemble_Mechanical_Stiffness(const Project& p, Run_State& run, double dt);

// Residual = external - internal, 0 where a place is held.
void Set_Iteration_Load(Run_State& run);

// The current stress of every point of an active element from the displacement increment of the
// step, of every joint and bar element from the total displacements, and the internal force vector
// from them.
void Compute_Element_Stresses(const Project& p, Run_State& run, double dt);

// The stresses at the element corners for storage, 16 per element (Sxx, Syy, Sxy, Szz per corner):
// the point of a corner's number, averaged over the active elements around the node, or with
// `per_element` the element's own point.
void Compute_Nodal_Stresses(const Project& p, Run_State& run, bool per_element = false);

// The end of a step: displacements and point states of the start become the current ones, and the
// strengths are taken at the maturity reached.
void Update_Mechanical_End_Of_Step(const Project& p, Run_State& run);

// The material of an element when it has a mechanical section, else null.
const Material* Mechanical_Material(const Project& p, const Run_State& run, int element);

// The maturity that a material's mechanical tables follow at a point, at the start or the end of
// the step: the weighted one for a material that keeps its tables in weighted maturity.
double Mechanical_Maturity(const Material& m, const Point_State& s, bool end_of_step);

}  // namespace pvx
