// The strip cut: a side of an element, its opposite side and the whole strip of elements that
// continues across those two sides are cut into parts, so that the mesh stays made of
// quadrilaterals that meet corner to corner.
//
// The numbers of the new nodes and elements follow a fixed order (the cut element and the first
// piece of every strip element keep their numbers, the other pieces are appended in strip order),
// because the splitting history names elements by number: replaying a history must give the same
// mesh every time.
#pragma once

#include <string>

#include "app/project.h"
#include "mesh/mesh_session.h"

namespace pvx {

// Cuts side `side` (1..4) of element `element` and the strip through it at the cumulative
// `fractions` (the division is their count, at least 2). On failure (an element or side that does
// not exist, fractions that are not numbers, or a mesh that would pass its limits) returns false
// with a message and leaves the mesh exactly as it was.
bool Splitting(Project& p, Mesh_Session& session, int element, int side, const Table<double>& fractions,
               std::string& message);

}  // namespace pvx
