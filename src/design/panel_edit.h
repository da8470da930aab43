// The edits of the design panel: new nodes, macros drawn corner by corner, cooling circuits made
// pipe by pipe, point objects, areas and bars, nodes moved and merged, and the corner neighbours
// of a node for the rubber bands.
#pragma once

#include "design/panel.h"

namespace pvx {

// A node at the snapped position; it becomes current. Returns its number.
int Add_Node(Project& p, Design_Panel& panel);

// What a click of the macro mode did.
enum class Macro_Click {
  Inside_Macro,  // the pointer lies in an existing macro: a beep, nothing else
  Ignored,       // the node is already in the open polygon
  Added,         // a corner was added to the open polygon
  Closed         // the fourth corner closed the polygon into a new macro
};
// A left click of the macro mode at the pointer (Snap_Position already done). A node under the
// pointer is taken, else a new one is made; the fourth corner closes the macro.
Macro_Click Macro_Mouse_Down(Project& p, Design_Panel& panel);
// Turns the four corners of the open polygon into a macro with the values of Macro_Defaults and
// the material of the last macro (or the first plain material of the database). The corners are
// ordered anticlockwise, so that neighbours share sides in opposite order whatever way they were
// clicked. The first corner becomes current.
void Close_Polygon(Project& p, Design_Panel& panel);
// Cancels an open polygon and the nodes it made.
void Stop_Macros(Project& p, Design_Panel& panel);

// What a click of the cooling mode did.
enum class Cooling_Click { Selected, Ignored, Added, Made };
// A left click of the cooling mode: a node of an existing circuit selects it; otherwise the node
// under the pointer (or a new one) is the next pipe of the circuit being made, which is made when
// it has the default number of pipes.
Cooling_Click Cooling_Mouse_Down(Project& p, Design_Panel& panel);
// A circuit of the default over the open list of pipe nodes; it becomes current.
void Make_Cooling_Circuit(Project& p, Design_Panel& panel);

// A point object of the mode (Point_T, Support_P, Load_P) at the pointer; it becomes current.
// Returns its number, 0 in another mode.
int Add_Point_Object(Project& p, Design_Panel& panel);
// A prescribed area over the rectangle of two corners, ordered so that X1 <= X2 and Y1 <= Y2.
int Add_Area(Project& p, Design_Panel& panel, double x1, double y1, double x2, double y2);
// A bar from (x1, y1) to (x2, y2), a copy of the last bar (or of the template), with the first
// reinforcement material when it has none; its length and direction are set (a bar of zero
// length holds 100 and (1, 0)).
int Add_Bar(Project& p, double x1, double y1, double x2, double y2);

// Moves a node; the macros on it change shape.
void Move_Node(Project& p, int node, double x, double y);

// The corner neighbours of the current node in all macros, for the rubber bands.
void Determine_Node_Connections(const Project& p, Design_Panel& panel);
// Adds a neighbour that is not yet listed.
void Set_Node_Connections(Design_Panel& panel, int node);

}  // namespace pvx
