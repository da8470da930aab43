#include "design/panel_undo.h"

#include <utility>

namespace pvx {

namespace {

// One list of the copied fields, used in both directions.
template <class A, class B>
void Copy_Design(A& to, const B& from) {
  to.Node_X = from.Node_X;
  to.Node_Y = from.Node_Y;
  to.Polygon = from.Polygon;
  to.Macro = from.Macro;
  to.Macro_Defaults = from.Macro_Defaults;
  to.Current_Macro = from.Current_Macro;
  to.Current_Node = from.Current_Node;
  to.Border = from.Border;
  to.Current_Border = from.Current_Border;
  to.Interface = from.Interface;
  to.Rebar = from.Rebar;
  to.Current_Rebar = from.Current_Rebar;
  to.Circuit = from.Circuit;
  to.Current_Circuit = from.Current_Circuit;
  to.Point_T = from.Point_T;
  to.Line_T = from.Line_T;
  to.Area_T = from.Area_T;
  to.Point_Support = from.Point_Support;
  to.Line_Support = from.Line_Support;
  to.Point_Load = from.Point_Load;
  to.Line_Load = from.Line_Load;
  to.Out_Of_Plane = from.Out_Of_Plane;
  to.Mesh_Valid = from.Mesh_Valid;
}

void Close_Open_Work(Design_Panel& panel) {
  panel.Polygon_Nodes.clear();
  panel.Polygon_Added = 0;
  panel.Node_Connections.clear();
  panel.Selection_List.clear();
}

}  // namespace

Design_Snapshot Take_Snapshot(const Project& p) {
  Design_Snapshot s;
  Copy_Design(s, p);
  return s;
}

void Restore_Snapshot(const Design_Snapshot& s, Project& p) {
  Copy_Design(p, s);
}

void Push_Undo(Design_Undo& undo, const Project& p) {
  Push_Undo(undo, Take_Snapshot(p));
}

void Push_Undo(Design_Undo& undo, Design_Snapshot snapshot) {
  undo.Undo_Stack.push_back(std::move(snapshot));
  while (undo.Undo_Stack.size() > undo.Limit)
    undo.Undo_Stack.pop_front();
  undo.Redo_Stack.clear();
}

bool Undo(Design_Undo& undo, Project& p, Design_Panel& panel) {
  if (undo.Undo_Stack.empty()) return false;
  undo.Redo_Stack.push_back(Take_Snapshot(p));
  Restore_Snapshot(undo.Undo_Stack.back(), p);
  undo.Undo_Stack.pop_back();
  Close_Open_Work(panel);
  return true;
}

bool Redo(Design_Undo& undo, Project& p, Design_Panel& panel) {
  if (undo.Redo_Stack.empty()) return false;
  undo.Undo_Stack.push_back(Take_Snapshot(p));
  Restore_Snapshot(undo.Redo_Stack.back(), p);
  undo.Redo_Stack.pop_back();
  Close_Open_Work(panel);
  return true;
}

void Clear_Undo(Design_Undo& undo) {
  undo.Undo_Stack.clear();
  undo.Redo_Stack.clear();
}

}  // namespace pvx
