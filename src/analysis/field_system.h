// What the temperature and the moisture systems share: they are built on one node numbering, in one
// profile matrix, over the same elements and border sides.
#pragma once

#include <utility>

#include "analysis/run_state.h"
#include "analysis/thermal_element.h"
#include "app/project.h"

namespace pvx {

// Position of entry (r, c) of the symmetric matrix in the packed upper triangle of the profile.
inline int Profile_Position(const Run_State& run, int r, int c) {
  if (r > c) std::swap(r, c);
  return run.Numbering.Column_Pointer[static_cast<std::size_t>(c)] - (c - r);
}
inline double& Profile_Diagonal(Run_State& run, int k) {
  return run.Matrix[Profile_Position(run, k, k)];
}

inline int Node_Equation(const Run_State& run, int node) {
  return run.Numbering.Node_Equation[node];
}

// The corners of an element in mm, and the out-of-plane form of the project.
inline Element_Geometry Geometry_Of(const Project& p, const Mesh_Element& e) {
  Element_Geometry g;
  for (int n = 0; n < 4; ++n) {
    const Mesh_Node& node = p.Mesh_Node[e.Corner[n + 1]];
    g.x[n] = node.X;
    g.y[n] = node.Y;
  }
  g.axisymmetric = p.Out_Of_Plane.Axisymmetric != 0;
  g.offset_radius = p.Out_Of_Plane.Offset_Radius;
  return g;
}

inline bool Border_Nodes_Valid(const Project& p, const Border& b) {
  return p.Mesh_Node.valid(b.Node_A) && p.Mesh_Node.valid(b.Node_B);
}

// The side matrix (entries 11, 12, 22) of a border side, times the coefficient.
inline void Border_Side(const Project& p, const Border& b, double coefficient, double s[3]) {
  const Mesh_Node& a = p.Mesh_Node[b.Node_A];
  const Mesh_Node& c = p.Mesh_Node[b.Node_B];
  Side_Matrix(a.X, a.Y, c.X, c.Y, p.Out_Of_Plane.Axisymmetric != 0, p.Out_Of_Plane.Offset_Radius, coefficient,
              s);
}

}  // namespace pvx
