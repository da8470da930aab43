// The mesh before any cut: one element per macro, nodes shared where macro corners meet, and the
// design's borders and interfaces carried over to the mesh layer.
#pragma once

#include <string>

#include "app/project.h"
#include "mesh/mesh_session.h"

namespace pvx {

// Replaces the mesh layer (nodes, elements, mesh borders, mesh interfaces) by the initial mesh and
// clears the integrated state. Fails with a message, leaving the mesh as it was, when the macros
// or interfaces are more than the mesh tables can hold or a macro refers to a missing node.
bool Make_Initial_Mesh(Project& p, Mesh_Session& session, std::string& message);

}  // namespace pvx
