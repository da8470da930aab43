// The splitting history: every cut is kept as (element, side, fractions), so the mesh is a function
// of the macros and the list, and stepping back and forward is a replay of the list's first part.
#pragma once

#include <string>

#include "app/project.h"
#include "mesh/mesh_session.h"

namespace pvx {

inline constexpr const char* Circuits_Integrated_Message =
    "Cooling circuits are integrated, so no additional splitting is possible. If you still want to "
    "refine the mesh go one step back.";

// Makes a cut with the session's parameters (PickedElement, PickedSide, the option and its
// numbers): the ratios are set, the cut is carried out, the operations beyond the position are
// dropped and the cut is appended, so that position and count both rise by one. A refused cut
// changes neither the mesh nor the history.
bool Split_Execution(Project& p, Mesh_Session& session, std::string& message);

// Rebuilds the mesh from the macros with the first `count` operations of the history. When an
// operation cannot be carried out the replay stops before it: `applied` tells how many were, and
// the message says which failed and why.
bool Repeat_Splitting(Project& p, Mesh_Session& session, int count, int& applied, std::string& message);

// The history keys of the mesh panel. Each leaves Split_Position equal to the operations applied.
bool History_Backward(Project& p, Mesh_Session& session, std::string& message);
bool History_Forward(Project& p, Mesh_Session& session, std::string& message);
bool History_All(Project& p, Mesh_Session& session, std::string& message);
bool History_Reset(Project& p, Mesh_Session& session, std::string& message);
// The initial mesh and an empty history.
bool History_Clean(Project& p, Mesh_Session& session, std::string& message);

// Which keys of the panel's toolbar are on.
struct Toolbar_State {
  bool Backward = false, Forward = false, Reset = false, Integrate_Visible = false;
};
Toolbar_State Set_Toolbar(const Project& p, const Mesh_Session& session);

}  // namespace pvx
