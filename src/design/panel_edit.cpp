#include "design/panel_edit.h"

#include <cmath>

#include "design/panel_pick.h"
#include "design/panel_references.h"

namespace pvx {

int Add_Node(Project& p, Design_Panel& panel) {
  const int n = Add_Node(p, Pointer_X(panel), Pointer_Y(panel));
  p.Current_Node = n;
  p.Mesh_Valid = False_Flag;
  return n;
}

namespace {

bool Listed(const Table<std::int16_t>& list, int node) {
  for (std::int16_t n : list)
    if (n == node) return true;
  return false;
}

// The node under the pointer, or a new one counted in Polygon_Added.
int Node_At_Pointer(Project& p, Design_Panel& panel) {
  Closest_Node(p, panel);
  if (Node_Selected(p, panel)) return panel.Closest_Node_Number;
  ++panel.Polygon_Added;
  return Add_Node(p, panel);
}

std::string First_Plain_Material(const Project& p) {
  for (const Material& m : p.Material)
    if (!m.Is_Interface && !m.Is_Reinforcement) return m.Name;
  return {};
}

}  // namespace

Macro_Click Macro_Mouse_Down(Project& p, Design_Panel& panel) {
  Closest_Node(p, panel);
  if (!Node_Selected(p, panel) && Macro_At(p, Pointer_X(panel), Pointer_Y(panel)) != 0)
    return Macro_Click::Inside_Macro;
  if (panel.Polygon_Nodes.empty()) panel.Polygon_Added = 0;  // a new polygon opens
  const bool on_node = Node_Selected(p, panel);
  if (on_node && Listed(panel.Polygon_Nodes, panel.Closest_Node_Number)) return Macro_Click::Ignored;
  const int node = Node_At_Pointer(p, panel);
  panel.Polygon_Nodes.add(static_cast<std::int16_t>(node));
  p.Current_Node = node;
  if (Polygon_Node_Count(panel) < 4) return Macro_Click::Added;
  Close_Polygon(p, panel);
  return Macro_Click::Closed;
}

void Close_Polygon(Project& p, Design_Panel& panel) {
  if (Polygon_Node_Count(panel) != 4) return;
  Macro m;
  static_cast<Macro_Values&>(m) = p.Macro_Defaults;
  m.Material = p.Macro.empty() ? First_Plain_Material(p) : p.Macro.last().Material;
  for (int k = 1; k <= 4; ++k)
    m.Corner[k] = panel.Polygon_Nodes[k];
  double area2 = 0;  // twice the signed area
  for (int k = 1; k <= 4; ++k) {
    const int a = m.Corner[k], b = m.Corner[k % 4 + 1];
    area2 += p.Node_X[a] * p.Node_Y[b] - p.Node_X[b] * p.Node_Y[a];
  }
  if (area2 < 0) std::swap(m.Corner[2], m.Corner[4]);
  p.Current_Macro = p.Macro.add(m);
  p.Current_Node = m.Corner[1];
  p.Mesh_Valid = False_Flag;
  panel.Polygon_Nodes.clear();
  panel.Polygon_Added = 0;
}

void Stop_Macros(Project& p, Design_Panel& panel) {
  const int keep = Node_Count(p) - panel.Polygon_Added;
  if (panel.Polygon_Added > 0 && keep >= 0) {
    p.Node_X.resize(keep);
    p.Node_Y.resize(keep);
    if (p.Current_Node > keep) p.Current_Node = 0;
  }
  panel.Polygon_Nodes.clear();
  panel.Polygon_Added = 0;
}

Cooling_Click Cooling_Mouse_Down(Project& p, Design_Panel& panel) {
  if (panel.Polygon_Nodes.empty()) {
    if (Circuit_Select(p, panel)) return Cooling_Click::Selected;
    panel.Polygon_Added = 0;
  }
  Closest_Node(p, panel);
  if (Node_Selected(p, panel) && Listed(panel.Polygon_Nodes, panel.Closest_Node_Number))
    return Cooling_Click::Ignored;
  const int node = Node_At_Pointer(p, panel);
  panel.Polygon_Nodes.add(static_cast<std::int16_t>(node));
  p.Current_Node = node;
  const int pipes = p.Circuit_Default.Pipe_Count > 0 ? p.Circuit_Default.Pipe_Count : 2;
  if (Polygon_Node_Count(panel) < pipes) return Cooling_Click::Added;
  Make_Cooling_Circuit(p, panel);
  return Cooling_Click::Made;
}

void Make_Cooling_Circuit(Project& p, Design_Panel& panel) {
  if (panel.Polygon_Nodes.empty()) return;
  Circuit c = p.Circuit_Default;
  Resize_Pipes(c, Polygon_Node_Count(panel));
  for (int k = 1; k <= Polygon_Node_Count(panel); ++k)
    c.Pipe_Node[k] = panel.Polygon_Nodes[k];
  p.Current_Circuit = static_cast<std::int16_t>(p.Circuit.add(c));
  p.Mesh_Valid = False_Flag;
  panel.Polygon_Nodes.clear();
  panel.Polygon_Added = 0;
}

int Add_Point_Object(Project& p, Design_Panel& panel) {
  const double x = Pointer_X(panel), y = Pointer_Y(panel);
  switch (panel.Mode) {
    case Design_Mode::Point_T: {
      Point_T t;
      t.X = x;
      t.Y = y;
      return panel.Current_Point_T = p.Point_T.add(t);
    }
    case Design_Mode::Support_P: {
      Support s = p.Support_Default;
      s.X = x;
      s.Y = y;
      return panel.Current_Point_Support = p.Point_Support.add(s);
    }
    case Design_Mode::Load_P: {
      Load l = p.Load_Default;
      l.X = x;
      l.Y = y;
      return panel.Current_Point_Load = p.Point_Load.add(l);
    }
    default:
      return 0;
  }
}

int Add_Area(Project& p, Design_Panel& panel, double x1, double y1, double x2, double y2) {
  Area_T a;
  a.X1 = std::fmin(x1, x2);
  a.X2 = std::fmax(x1, x2);
  a.Y1 = std::fmin(y1, y2);
  a.Y2 = std::fmax(y1, y2);
  return panel.Current_Area_T = p.Area_T.add(a);
}

int Add_Bar(Project& p, double x1, double y1, double x2, double y2) {
  Rebar r = p.Rebar.empty() ? p.Rebar_Template : p.Rebar.last();
  if (r.Material.empty())
    for (int k = 1; k <= p.Material.count(); ++k)
      if (p.Material[k].Is_Reinforcement) {
        r.Material = p.Material[k].Name;
        r.Material_Number = static_cast<std::int16_t>(k);
        break;
      }
  r.X1 = x1;
  r.Y1 = y1;
  r.X2 = x2;
  r.Y2 = y2;
  const double length = std::hypot(x2 - x1, y2 - y1);
  if (length > 0) {
    r.Length = length;
    r.Direction_Cos = (x2 - x1) / length;
    r.Direction_Sin = (y2 - y1) / length;
  } else {
    r.Length = 100;
    r.Direction_Cos = 1;
    r.Direction_Sin = 0;
  }
  p.Current_Rebar = p.Rebar.add(r);
  p.Mesh_Valid = False_Flag;
  return p.Current_Rebar;
}

void Move_Node(Project& p, int node, double x, double y) {
  if (node < 1 || node > Node_Count(p)) return;
  p.Node_X[node] = x;
  p.Node_Y[node] = y;
  p.Mesh_Valid = False_Flag;
}

void Determine_Node_Connections(const Project& p, Design_Panel& panel) {
  panel.Node_Connections.clear();
  const int node = p.Current_Node;
  if (node < 1) return;
  for (const Macro& m : p.Macro)
    for (int k = 1; k <= 4; ++k)
      if (m.Corner[k] == node) {
        Set_Node_Connections(panel, m.Corner[(k + 2) % 4 + 1]);  // the corner before
        Set_Node_Connections(panel, m.Corner[k % 4 + 1]);        // the corner after
      }
}

void Set_Node_Connections(Design_Panel& panel, int node) {
  for (std::int32_t n : panel.Node_Connections)
    if (n == node) return;
  panel.Node_Connections.add(node);
}

}  // namespace pvx
