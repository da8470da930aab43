// Deleting design objects. Tables close their gaps; every node reference above a deleted node
// goes down by one, and the current entries follow the entries they point at.
#pragma once

#include "design/panel.h"

namespace pvx {

// No macro, polygon, border, interface, heating mat, circuit, line support or line load refers to
// the node.
bool Node_Is_Not_Connected(const Project& p, int node);

// Deletes a node that nothing refers to and lowers every node reference above it by one.
// A node in use is kept (false).
bool Delete_Node(Project& p, int node);
// Tries Delete_Node on every node; returns how many went.
int Delete_Free_Nodes(Project& p);

// Deletes a macro, and with it the borders, heating mats, line supports and line loads on sides
// that no other macro has, and the interfaces on sides no longer shared. Its nodes stay (free
// nodes go with Delete_Free_Nodes).
void Delete_Macro(Project& p, Design_Panel& panel, int macro);

void Delete_Border(Project& p, int border);
void Delete_Circuit(Project& p, int circuit);
void Delete_Interface(Project& p, Design_Panel& panel, int interface);
void Delete_Rebar(Project& p, int rebar);
// The object tables of the modes Point_T, Line_T, Area_T, Support_P, Support_L, Load_P, Load_L:
// deletes entry k of the table of `mode`.
void Delete_Mode_Object(Project& p, Design_Panel& panel, Design_Mode mode, int k);

// Merges node `moved` into node `kept`: every reference to `moved` goes to `kept` and `moved` is
// deleted. Refused (false, nothing changed) when a macro holds both, as it would lose a corner.
bool Double_Nodes(Project& p, int moved, int kept);

}  // namespace pvx
