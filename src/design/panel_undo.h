// Undo of the design panel's edits: before each edit the design layer is copied onto a bounded
// stack, and Undo puts the last copy back. The copies hold only the design layer (and the flag of
// the mesh that was made from it), so a step back costs a copy of what the user drew, not of the
// mesh or the materials.
#pragma once

#include <deque>

#include "design/panel.h"

namespace pvx {

struct Design_Snapshot {
  Table<double> Node_X, Node_Y;
  Table<pvx::Polygon> Polygon;
  Table<pvx::Macro> Macro;
  Macro_Values Macro_Defaults;
  std::int32_t Current_Macro = 0, Current_Node = 0;
  Table<pvx::Border> Border;
  std::int16_t Current_Border = 0;
  Table<pvx::Interface> Interface;
  Table<pvx::Rebar> Rebar;
  std::int32_t Current_Rebar = 0;
  Table<pvx::Circuit> Circuit;
  std::int16_t Current_Circuit = 0;
  Table<pvx::Point_T> Point_T;
  Table<pvx::Line_T> Line_T;
  Table<pvx::Area_T> Area_T;
  Table<Support> Point_Support, Line_Support;
  Table<Load> Point_Load, Line_Load;
  pvx::Out_Of_Plane Out_Of_Plane;
  Flag Mesh_Valid = False_Flag;
};

struct Design_Undo {
  std::deque<Design_Snapshot> Undo_Stack, Redo_Stack;
  std::size_t Limit = 50;  // the oldest copies go first
};

Design_Snapshot Take_Snapshot(const Project& p);
void Restore_Snapshot(const Design_Snapshot& s, Project& p);

// Before an edit: the design layer as it is goes on the stack and the redo stack is emptied.
void Push_Undo(Design_Undo& undo, const Project& p);
// The same with a copy taken earlier: for an edit that is known to have changed something only
// after it ran (a dialog that may be cancelled).
void Push_Undo(Design_Undo& undo, Design_Snapshot snapshot);
// Puts the last copy back (the present state goes to the redo stack) and closes an open polygon
// of the panel. False when there is nothing to undo.
bool Undo(Design_Undo& undo, Project& p, Design_Panel& panel);
// Takes back the last Undo. False when there is nothing to redo.
bool Redo(Design_Undo& undo, Project& p, Design_Panel& panel);
// A Project read or made anew: the copies belong to another model.
void Clear_Undo(Design_Undo& undo);

}  // namespace pvx
