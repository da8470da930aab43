// What the pointer is on: the nearest node, a macro, a macro side, a border, an interface, a
// bar, a circuit or a point object. Sides are picked by one rule for every mode; a pick that
// finds nothing existing may add the object of the mode, as each procedure says.
#pragma once

#include "design/panel.h"

namespace pvx {

// The node nearest to the pointer (Pointer_X/Y), the first on equal distance; 0 without nodes.
// The result is left in Closest_Node_Number.
void Closest_Node(const Project& p, Design_Panel& panel);
// The node nearest to (x, y) by the same rule.
int Closest_NodeN(const Project& p, double x, double y);

// The pointer is on the closest node: both |dx| and |dy|, in pixels, at most Mouse_Radius.
bool Node_Selected(const Project& p, const Design_Panel& panel);

// The node nearest to `node` among the others, when it lies closer than Mouse_Radius in mm:
// the two are one node. False (other 0) otherwise.
bool Test_On_Double_Nodes(const Project& p, int node, int& other);

// The angle of (x, y) from the positive X axis in (-pi, pi], in single precision; 0 for (0, 0).
float Atan2(float y, float x);

// The first macro whose quadrilateral holds (x, y), 0 if none. The corners are seen from the
// point: the angles they turn through add up to a full turn inside and to nothing outside.
int Macro_At(const Project& p, double x, double y);
// The same for the pointer; on a hit Current_Macro becomes that macro.
bool Macro_Selected(Project& p, const Design_Panel& panel);

// The side rule: the pointer (mx, my) lies on the side from (x1, y1) to (x2, y2) when its
// distance across, in pixels, is below the mouse radius and its distance along lies in [0, L).
bool Side_Hit(double x1, double y1, double x2, double y2, double mx, double my, double screen_scale,
              float mouse_radius);

// The first macro side under the pointer, macros in order and corners 1 to 4: its macro, side
// number and end nodes in the direction of the side.
struct Macro_Side {
  int Macro = 0, Side = 0;
  int Node_A = 0, Node_B = 0;
};
bool Find_Macro_Side(const Project& p, const Design_Panel& panel, Macro_Side& side);

// A border under the pointer becomes Current_Border. Without one, a macro side under the pointer
// becomes a new border, a copy of the border template with the side's nodes.
bool Border_Selected(Project& p, Design_Panel& panel);
// Only the existing borders: Current_Border on a hit.
bool Border_SelectedN(Project& p, const Design_Panel& panel);

// The side objects of the modes Line_T, Support_L and Load_L. A heating mat on the side of the
// pointer (either direction) becomes current or is added with the default; a line support or load
// is always added, since several may lie on one side.
bool Prescribed_Border_Selected(Project& p, Design_Panel& panel);
// Only existing side objects of the mode on the side of the pointer, collected in
// Selection_List; the last becomes current.
bool Prescribed_Border_Selected_E(Project& p, Design_Panel& panel);

// A side shared by two macros under the pointer: its interface becomes current, or a new one is
// made as a copy of the last (or of the template), with the first interface material when it has
// none, and its nodes ordered by X, then by Y.
bool Interface_Selected(Project& p, Design_Panel& panel);
// Only existing interfaces.
bool Interface_SelectedN(Project& p, Design_Panel& panel);

// Point objects of the mode (Point_T, Support_P, Load_P) within Mouse_Radius pixels in X and in Y
// of the pointer, collected in Selection_List; the last one becomes current.
bool Prescribed_Node_Selected_E(Project& p, Design_Panel& panel);
// Areas that hold the pointer, or lie within Mouse_Radius pixels of it, collected likewise.
bool Prescribed_Area_Selected_E(Project& p, Design_Panel& panel);

// A bar under the pointer by the side rule becomes Current_Rebar.
bool Macro_Bar_Selected(Project& p, const Design_Panel& panel);
// A circuit with a pipe at the node under the pointer becomes Current_Circuit.
bool Circuit_Select(Project& p, const Design_Panel& panel);

}  // namespace pvx
