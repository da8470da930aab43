// Where the pointer lies in the mesh of the result viewer: the element under a model point with
// the point's local coordinates, and the bilinear map between local and model coordinates.
//
// Local coordinates (u, v) run from 0 to 1 over an element with corners P1..P4 in the order of its
// macro. The point at (u, v) is
//   P = P1 + (P2 - P1) u + (P4 - P1) v + (P3 - P2 - P4 + P1) u v,
// and a field with corner values f1..f4 has there the value
//   f = f1 + (f2 - f1) u + (f4 - f1) v + (f3 - f2 - f4 + f1) u v.
#pragma once

#include "app/project.h"

namespace pvx {

// Whether the viewer shows the element at `time` (hours): Present_From <= time <=
// Present_Until, both limits included (the analysis itself leaves an element out at its
// Present_Until: the picture still shows it at that instant).
bool Element_Shown(const Mesh_Element& element, double time);

// The model coordinates of the four corners of mesh element `element`; false when the element or
// one of its corner nodes is not in the mesh.
bool Element_Corners(const Project& p, int element, double (&x)[4], double (&y)[4]);

// The bilinear inverse in closed form: the local coordinates (u, v) of the model point (px, py) in
// the quadrilateral x[], y[]. Eliminating u from the map leaves A v^2 + B v + C = 0; when |A| is
// below 1e-25 (a parallelogram, or a side collapsed so that the quadratic term vanishes) v comes
// from the linear equation. Of two roots the one with the plus sign is tried first. True when v and
// then u both lie in [0, 1], limits included.
bool Invert_Bilinear(const double (&x)[4], const double (&y)[4], double px, double py, double& u, double& v);

// The first element in number order that is active at `time`, holds (px, py) within its bounding
// box (limits included) and passes the bilinear inverse. A point on a side shared by two elements
// goes to the lower-numbered one. `element` is 0 and u = v = 0 when none does.
bool Find_Element_At_Point(const Project& p, double time, double px, double py, int& element, double& u,
                           double& v);

// The bilinear interpolation of four corner values at (u, v).
double Bilinear_Value(const double (&f)[4], double u, double v);

// The model position of local point (u, v) of an element; false when the element is not in the mesh.
bool Element_Point(const Project& p, int element, double u, double v, double& x, double& y);

// The element that holds (px, py) by the sum of the angles that its four sides subtend at the point
// (more than 6.0 radians means inside), searched from the last element down to the first, so a
// point on a shared side goes to the higher-numbered element. `selected` is 0 when none does.
// Used where only the element matters, not its local coordinates.
bool Element_Selected(const Project& p, double px, double py, int& selected);

}  // namespace pvx
