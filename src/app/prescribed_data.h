// From design objects to mesh objects: prescribed temperatures, supports and loads.
//
// The engineer attaches conditions to a point, a macro side or a rectangle; the analysis works on
// mesh nodes, element sides and element-local points. `Set_Prescribed_Data` rebuilds the mesh side
// of these conditions from nothing before each computation.
//
// Element-local coordinates run from 0 to 1. The point at (xi, eta) of an element with corners
// P1..P4 is P1 + xi (P2 - P1) + eta (P4 - P1) + xi eta (P3 - P2 - P4 + P1); the four corner weights
// are (1-xi)(1-eta), xi(1-eta), xi eta and (1-xi) eta.
#pragma once

#include <cstdint>
#include <string>

#include "app/project.h"
#include "app/table.h"

namespace pvx {

// Rebuilds `Prescribed_Node`, `Mesh_Support` and `Mesh_Load`, and places every `Point_T`, point
// support and point load in its element. On return `ok` is true, or false with the message to show,
// in which case the computation must not start. A point outside all elements gets element 0 and
// thickness 0 without a message. A line support or load takes, per mesh segment, the thickness of
// the first element that has the segment as a side in either direction; a segment that is no
// element's side stops the transfer with a message.
void Set_Prescribed_Data(Project& p, bool& ok, std::string& message);

// Finds the first element, in element order, that holds the point (x, y), limits included, and the
// point's local coordinates in it. element is 0 (and xi, eta 0) when no element holds the point.
void Locate_Point(const Project& p, double x, double y, int& element, double& xi, double& eta);

// Sorts keys(1..count) rising and carries nodes(1..count) along. Equal keys keep no set order.
void Set_In_Order(Table<double>& keys, Table<std::int32_t>& nodes, int count);

// The corner weights of the local point (xi, eta), in corner order.
inline void Corner_Weights(double xi, double eta, double w[4]) {
  w[0] = (1 - xi) * (1 - eta);
  w[1] = xi * (1 - eta);
  w[2] = xi * eta;
  w[3] = (1 - xi) * eta;
}

}  // namespace pvx
