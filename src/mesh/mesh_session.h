// The state of mesh generation beside the Project's tables: the parameters of the next cut,
// whether the cooling circuits have been made into holes, and the look-up index of the mesh.
// One session belongs to one Project; it is passed by reference to the procedures that cut.
#pragma once

#include "mesh/mesh_index.h"
#include "mesh/ratios.h"

namespace pvx {

struct Mesh_Session {
  Splitting_Parameters Parameters;
  bool Circuits_Integrated = false;
  Mesh_Index Index;
};

}  // namespace pvx
