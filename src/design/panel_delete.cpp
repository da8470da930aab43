#include "design/panel_delete.h"

#include "design/panel_references.h"

namespace pvx {

namespace {

// The current number of a table after entry k went: later entries move up, k itself is gone.
template <class T>
void Follow_Removal(T& current, int k) {
  if (current == k)
    current = 0;
  else if (current > k)
    current = static_cast<T>(current - 1);
}

template <class T>
bool Side_In_Macros(const Project& p, const T& a, const T& b) {
  for (const Macro& m : p.Macro)
    for (int j = 1; j <= 4; ++j) {
      const int c = m.Corner[j], d = m.Corner[j % 4 + 1];
      if ((c == a && d == b) || (c == b && d == a)) return true;
    }
  return false;
}

// The side from a to b and from b to a both stand in macros.
bool Side_Shared(const Project& p, int a, int b) {
  bool forward = false, backward = false;
  for (const Macro& m : p.Macro)
    for (int j = 1; j <= 4; ++j) {
      const int c = m.Corner[j], d = m.Corner[j % 4 + 1];
      forward = forward || (c == a && d == b);
      backward = backward || (c == b && d == a);
    }
  return forward && backward;
}

// Deletes, from the back, the entries of a side table whose side no macro has any longer.
template <class Table_Type, class Delete>
void Drop_Loose_Sides(const Project& p, Table_Type& table, Delete remove) {
  for (int k = table.count(); k >= 1; --k)
    if (!Side_In_Macros(p, table[k].Node_A, table[k].Node_B)) remove(k);
}

}  // namespace

bool Node_Is_Not_Connected(const Project& p, int node) {
  bool used = false;
  Visit_Node_References(p, [&](const auto& ref) { used = used || ref == node; });
  return !used;
}

bool Delete_Node(Project& p, int node) {
  if (node < 1 || node > Node_Count(p) || !Node_Is_Not_Connected(p, node)) return false;
  p.Node_X.remove(node);
  p.Node_Y.remove(node);
  Visit_Node_References(p, [&](auto& ref) {
    if (ref > node) --ref;
  });
  Follow_Removal(p.Current_Node, node);
  p.Mesh_Valid = False_Flag;
  return true;
}

int Delete_Free_Nodes(Project& p) {
  int deleted = 0;
  for (int n = 1; n <= Node_Count(p);) {
    if (Delete_Node(p, n))
      ++deleted;  // the next node has moved into place n
    else
      ++n;
  }
  return deleted;
}

void Delete_Macro(Project& p, Design_Panel& panel, int macro) {
  if (!p.Macro.valid(macro)) return;
  p.Macro.remove(macro);
  Follow_Removal(p.Current_Macro, macro);
  Drop_Loose_Sides(p, p.Border, [&](int k) { Delete_Border(p, k); });
  Drop_Loose_Sides(p, p.Line_T, [&](int k) { Delete_Mode_Object(p, panel, Design_Mode::Line_T, k); });
  Drop_Loose_Sides(p, p.Line_Support,
                   [&](int k) { Delete_Mode_Object(p, panel, Design_Mode::Support_L, k); });
  Drop_Loose_Sides(p, p.Line_Load, [&](int k) { Delete_Mode_Object(p, panel, Design_Mode::Load_L, k); });
  for (int k = p.Interface.count(); k >= 1; --k)
    if (!Side_Shared(p, p.Interface[k].Node_A, p.Interface[k].Node_B)) Delete_Interface(p, panel, k);
  p.Mesh_Valid = False_Flag;
}

void Delete_Border(Project& p, int border) {
  if (!p.Border.valid(border)) return;
  p.Border.remove(border);
  Follow_Removal(p.Current_Border, border);
  p.Mesh_Valid = False_Flag;
}

void Delete_Circuit(Project& p, int circuit) {
  if (!p.Circuit.valid(circuit)) return;
  p.Circuit.remove(circuit);
  Follow_Removal(p.Current_Circuit, circuit);
  p.Mesh_Valid = False_Flag;
}

void Delete_Interface(Project& p, Design_Panel& panel, int interface) {
  if (!p.Interface.valid(interface)) return;
  p.Interface.remove(interface);
  Follow_Removal(panel.Current_Interface, interface);
  p.Mesh_Valid = False_Flag;
}

void Delete_Rebar(Project& p, int rebar) {
  if (!p.Rebar.valid(rebar)) return;
  p.Rebar.remove(rebar);
  Follow_Removal(p.Current_Rebar, rebar);
  p.Mesh_Valid = False_Flag;
}

void Delete_Mode_Object(Project& p, Design_Panel& panel, Design_Mode mode, int k) {
  auto drop = [k](auto& table, int& current) {
    if (!table.valid(k)) return;
    table.remove(k);
    Follow_Removal(current, k);
  };
  switch (mode) {
    case Design_Mode::Point_T:
      drop(p.Point_T, panel.Current_Point_T);
      break;
    case Design_Mode::Line_T:
      drop(p.Line_T, panel.Current_Line_T);
      break;
    case Design_Mode::Area_T:
      drop(p.Area_T, panel.Current_Area_T);
      break;
    case Design_Mode::Support_P:
      drop(p.Point_Support, panel.Current_Point_Support);
      break;
    case Design_Mode::Support_L:
      drop(p.Line_Support, panel.Current_Line_Support);
      break;
    case Design_Mode::Load_P:
      drop(p.Point_Load, panel.Current_Point_Load);
      break;
    case Design_Mode::Load_L:
      drop(p.Line_Load, panel.Current_Line_Load);
      break;
    default:
      break;
  }
}

bool Double_Nodes(Project& p, int moved, int kept) {
  if (moved == kept || moved < 1 || kept < 1 || moved > Node_Count(p) || kept > Node_Count(p)) return false;
  for (const Macro& m : p.Macro) {
    bool has_moved = false, has_kept = false;
    for (int c : m.Corner) {
      has_moved = has_moved || c == moved;
      has_kept = has_kept || c == kept;
    }
    if (has_moved && has_kept) return false;
  }
  Visit_Node_References(p, [&](auto& ref) {
    if (ref == moved) ref = static_cast<std::remove_reference_t<decltype(ref)>>(kept);
  });
  if (p.Current_Node == moved) p.Current_Node = kept;
  Delete_Node(p, moved);
  return true;
}

}  // namespace pvx
