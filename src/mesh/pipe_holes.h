// Cooling pipes as holes in the mesh: each pipe section's node becomes a ring of eight wall nodes,
// so that the pipe wall is a boundary of the thermal model. The four elements round the node are
// each replaced by six, in three rays from the wall outwards.
#pragma once

#include <string>

#include "app/project.h"
#include "mesh/mesh_session.h"

namespace pvx {

// Makes every section of every circuit into a hole of the circuit's pipe diameter and stores its
// wall nodes (the ninth repeating the first) in the circuit's Pipe_Connection. All or nothing:
// when one section cannot be made into a hole the mesh and the circuits stay as they were.
bool Integrate_Circuits(Project& p, Mesh_Session& session, std::string& message);

// Makes a hole of the given radius round mesh node `node`, which must be the corner where exactly
// four elements meet, one after the other round it. Otherwise refused before anything changes.
// `wall` gets the eight wall nodes in order round the hole, entry 9 repeating entry 1.
bool Make_Pipe_Hole(Project& p, Mesh_Session& session, int node, double radius, Array1<std::int16_t, 9>& wall,
                    std::string& message);

// Replaces element `element`, whose corner `corner` is the pipe node `node` with its centre at
// (x, y), by six elements round the wall. With `first` the pipe node itself becomes the first wall
// node. `ring` gets the wall nodes on the rays to corners corner+1, corner+2 and corner+3.
bool Split_Pipe_Element(Project& p, Mesh_Session& session, int element, int corner, double x, double y,
                        bool first, int node, double radius, int ring[3], std::string& message);

}  // namespace pvx
