// Macros meet only at shared corner nodes: the mesh of a macro is made from its own four corners,
// so a node of one macro that lies within a side of another is not joined to it, and the two
// meshes pass each other there as if a crack ran along the side. This finds such nodes, so that
// the user is told before meshing rather than after computing.
#pragma once

#include <string>
#include <vector>

#include "app/project.h"

namespace pvx {

struct Unjoined_Node {
  int Node = 0;   // design node that lies within the side
  int Macro = 0;  // macro whose side it is
  int Side = 0;   // 1..4, from corner j to corner j+1
  bool operator==(const Unjoined_Node&) const = default;
};

// Every design node of a macro corner that lies within a side of another macro (closer than 0.01
// mm to it, and not at either end), in the order of macros, sides and nodes.
std::vector<Unjoined_Node> Find_Unjoined_Nodes(const Project& p);

// The message for the user, naming the first such node; empty when there is none.
std::string Unjoined_Nodes_Message(const std::vector<Unjoined_Node>& found);

}  // namespace pvx
