// What the mesh panel needs of the core beyond the cut itself: the state in which it opens on a
// Project, and whether a mesh read from a file already has its cooling pipes made into holes.
#pragma once

#include <string>

#include "app/project.h"
#include "mesh/mesh_session.h"

namespace pvx {

// Opens the panel on the Project. Without a mesh the initial mesh is made from the macros and the
// position goes to 0 (the history is kept, so "Forward" and "All" can replay it). With a mesh, the
// mesh is shown as it stands: the look-up index is rebuilt, the position is held within the
// history, and the integrated state is worked out from the mesh (see Mesh_Is_Integrated). The
// splitting parameters are fitted to their division. Mesh_Valid follows whether a mesh exists.
bool Open_Mesh_Session(Project& p, Mesh_Session& session, std::string& message);

// True when the Project's mesh is the mesh of its history up to Split_Position with the cooling
// circuits made into holes. The integrated state is not kept in the project file, and a mesh with
// pipe holes must not be cut further (the wall nodes of the circuits would no longer bound a hole).
bool Mesh_Is_Integrated(const Project& p);

// True when the two meshes have the same elements with the same corners and the same nodes within
// the ring closure tolerance.
bool Same_Mesh(const Project& a, const Project& b);

}  // namespace pvx
