// Look-up structures over the mesh layer, so that node merging and the strip walk need no scan of
// the whole mesh: a grid of the node coordinates and a table of the directed element sides.
//
// Both answer exactly what a scan in number order would answer (the first node within the
// tolerance, the lowest-numbered element with a given side); they only avoid the scan. The index
// belongs to one Project's mesh and must follow every change of node coordinates and element
// corners; the procedures of this subsystem keep it in step, and `Index_Matches` tells a caller
// whether the counts still agree (after a file was read, for example) so it can be rebuilt.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

#include "app/project.h"

namespace pvx {

// Two points closer than this in both X and Y are one mesh node (mm).
inline constexpr double Node_Merge_Tolerance = 0.01;
// Tolerance of the ring closure of a cut and of the border line test (mm).
inline constexpr double Ring_Closure_Tolerance = 0.001;

struct Mesh_Index {
  // Nodes by grid cell. A cell is twice the merge tolerance wide, so every node within the
  // tolerance of a point lies in the point's cell or one of its eight neighbours.
  std::unordered_multimap<std::uint64_t, int> node_cells;
  // Elements by directed side (from-node, to-node).
  std::unordered_multimap<std::uint64_t, int> element_sides;
  int node_count = 0;     // the mesh node count the index was built for
  int element_count = 0;  // the element count the index was built for
};

// Builds the index from the mesh as it stands.
void Rebuild_Mesh_Index(const Project& p, Mesh_Index& index);
// True when the index was kept for a mesh of the present size.
inline bool Index_Matches(const Project& p, const Mesh_Index& index) {
  return index.node_count == p.Mesh_Node.count() && index.element_count == p.Mesh_Element.count();
}

// The first node, in number order, whose X and Y each differ from (x, y) by less than
// `tolerance` (at most Node_Merge_Tolerance), skipping `skip`; 0 when there is none.
int Find_Node(const Project& p, const Mesh_Index& index, double x, double y,
              double tolerance = Node_Merge_Tolerance, int skip = 0);

// Returns in `node` the mesh node at (x, y) within Node_Merge_Tolerance, appending one if there
// is none. Fails, with nothing changed, when a new node would be numbered above what an element
// corner can hold.
bool Find_Or_Add_Node(Project& p, Mesh_Index& index, double x, double y, int& node, std::string& message);

// Appends a node without looking for an existing one.
bool Append_Node(Project& p, Mesh_Index& index, double x, double y, int& node, std::string& message);
// Removes the last node (no element may refer to it any more).
void Remove_Last_Node(Project& p, Mesh_Index& index);
// Moves node n to (x, y).
void Move_Node(Project& p, Mesh_Index& index, int n, double x, double y);

// The lowest-numbered element other than `skip` that has a side running from node `from` to node
// `to`; 0 when there is none.
int Find_Element_With_Side(const Mesh_Index& index, int from, int to, int skip);

// Sets the corners of element el (keeping the index and the default equation numbers in step).
void Set_Element_Corners(Project& p, Mesh_Index& index, int el, int c1, int c2, int c3, int c4);
// Appends a copy of element `model` with the given corners. Fails, with nothing changed, when the
// element table is full.
bool Append_Element(Project& p, Mesh_Index& index, int model, int c1, int c2, int c3, int c4, int& el,
                    std::string& message);

// The default mechanical equation numbers of an element: 2n-1 and 2n for each corner node n.
void Set_Default_Dof(Mesh_Element& e);

// Messages of the limits.
inline constexpr const char* Too_Many_Elements_Message =
    "The mesh cannot hold more than 25000 elements; the operation is not carried out.";
inline constexpr const char* Too_Many_Nodes_Message =
    "The mesh cannot hold more than 32767 nodes; the operation is not carried out.";

}  // namespace pvx
