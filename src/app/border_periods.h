// The project file keeps the hygral periods of the design borders only. After a read, every mesh
// border takes them again from the design border it lies on, so that a project computes the same
// moisture field whether or not it went through its file.
#pragma once

#include "app/project.h"

namespace pvx {

// How far a mesh node may lie from the design side it was made on, in mm: the distance within
// which the mesher takes a mesh node for a design node, plus a millionth of the side's length for
// the rounding of the nodes that cuts put on long sides.
inline constexpr double Border_Match_Tolerance = 0.01;
inline constexpr double Border_Match_Relative = 1e-6;

// The design border on whose side both ends of the mesh border lie, or 0 when none holds it (or
// the mesh border refers to a node that does not exist). Of several, the first that runs the same
// way as the mesh border, else the first.
int Design_Border_Of(const Project& p, const Border& mesh_border);

// Gives every mesh border the hygral periods of its design border. A mesh border on no design
// border is left as it is.
void Restore_Mesh_Hygral_Periods(Project& p);

}  // namespace pvx
