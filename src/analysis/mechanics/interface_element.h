// The joint element: a zero-thickness line between two elements along a side where the user has
// put an interface, so that the two sides can open and slip.
//
// At the start of the analysis the nodes of the side are doubled: the element on one side keeps
// the mesh nodes, the element on the other gets new ones (numbered behind the mesh nodes), and so
// does its direct neighbour across each adjacent side, so that the joint's far side moves on its
// own. The joint then ties the two copies of each end node together through its laws, with one
// integration point on each end node.
//
// Direction: from Node_A (a) to Node_B (b) of the mesh interface. Element 1 runs along the side
// from a to b and lies to its left, element 2 runs from b to a; an opening (u_n > 0) moves element
// 1 away from element 2, a slip (u_s) moves it along a to b relative to element 2.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <utility>

#include "analysis/mechanics/element.h"
#include "analysis/mechanics/interface_law.h"
#include "app/project.h"
#include "app/table.h"

namespace pvx {

struct Mechanical_State;

struct Interface_Element {
  int Node_A = 0, Node_B = 0;           // mesh nodes of the side
  int Element[2] = {0, 0};              // the element to the left of a to b, then the one to the right
  int Side[2] = {0, 0};                 // their side numbers, 1..4
  int Material = 0;                     // 0 leaves the joint out
  int Node[4] = {0, 0, 0, 0};           // a on element 1, a on element 2, b on element 2, b on element 1
  Array1<std::int32_t, 8> Dof;          // x and y of those four nodes
  bool Active = false;                  // both elements found, a material and a length
  double Length = 0, Cos = 1, Sin = 0;  // from a to b
  double Weight[2] = {0, 0};            // the area each end point stands for, mm2 (per radian)
  Interface_Point Point[2];             // at a, at b
};

// The start node and the end node of side `side` (1..4) of a mesh element: side k runs from corner
// k to corner k + 1, side 4 back to corner 1.
int Edge_Start_Node(const Mesh_Element& e, int side);
int Edge_End_Node(const Mesh_Element& e, int side);

// The mesh elements by their sides: which element runs along the side from mesh node a to mesh node
// b, and as which of its sides.
class Side_Index {
 public:
  explicit Side_Index(const Project& p);
  // The element and side number running from a to b; false (and zeros) when none does.
  bool Find(int a, int b, int& element, int& side) const;

 private:
  std::unordered_map<std::uint64_t, std::pair<std::int32_t, std::int32_t>> sides_;
};

// Finds the elements of every mesh interface and doubles the nodes along the active ones, writing
// the new numbers into the elements' equations (Element_Dof) and counting them in Doubled_Nodes.
// Where two joints meet at a node, the copy made by the first stays. The element equations must
// hold the mesh nodes' equations when it is called.
void Set_Interface_Nodes(const Project& p, const Side_Index& sides, Mechanical_State& m);

// The operator of end point `point` (1 at a, 2 at b): row 0 the opening, row 1 the slip, over the
// joint's eight equations.
void Interface_B_Matrix(const Interface_Element& f, int point, double B[2][8]);

// Tangent of a joint from its points' stored stiffnesses: the sum over both points of
// B^T diag(w k_n, w k_s) B.
void Interface_Stiffness(const Interface_Element& f, double K[8][8]);

// The stresses of both points from the joint's eight total displacements, and its internal forces.
void Interface_Stresses(const Material& material, Interface_Element& f, const double u[8], double F[8]);

}  // namespace pvx
