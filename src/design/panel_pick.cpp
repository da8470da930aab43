#include "design/panel_pick.h"

#include <cmath>

namespace pvx {

int Closest_NodeN(const Project& p, double x, double y) {
  int best = 0;
  double best_distance = 0;
  for (int n = 1; n <= Node_Count(p); ++n) {
    const double d = std::hypot(p.Node_X[n] - x, p.Node_Y[n] - y);
    if (best == 0 || d < best_distance) {
      best = n;
      best_distance = d;
    }
  }
  return best;
}

void Closest_Node(const Project& p, Design_Panel& panel) {
  panel.Closest_Node_Number = Closest_NodeN(p, Pointer_X(panel), Pointer_Y(panel));
}

bool Node_Selected(const Project& p, const Design_Panel& panel) {
  const int n = panel.Closest_Node_Number;
  if (n <= 0 || n > Node_Count(p)) return false;
  const double dx = std::fabs(p.Node_X[n] - Pointer_X(panel)) * panel.Screen_Scale;
  const double dy = std::fabs(p.Node_Y[n] - Pointer_Y(panel)) * panel.Screen_Scale;
  return dx <= p.Mouse_Radius && dy <= p.Mouse_Radius;
}

bool Test_On_Double_Nodes(const Project& p, int node, int& other) {
  other = 0;
  if (node < 1 || node > Node_Count(p)) return false;
  double best = 0;
  for (int n = 1; n <= Node_Count(p); ++n) {
    if (n == node) continue;
    const double d = std::hypot(p.Node_X[n] - p.Node_X[node], p.Node_Y[n] - p.Node_Y[node]);
    if (d < p.Mouse_Radius && (other == 0 || d < best)) {
      other = n;
      best = d;
    }
  }
  return other != 0;
}

float Atan2(float y, float x) {
  return std::atan2(y, x);
}

int Macro_At(const Project& p, double x, double y) {
  constexpr float pi = 3.14159265f;
  for (int m = 1; m <= p.Macro.count(); ++m) {
    const Macro& macro = p.Macro[m];
    bool valid = true;
    float angle[4];
    for (int k = 1; k <= 4; ++k) {
      const int n = macro.Corner[k];
      if (n < 1 || n > Node_Count(p)) {
        valid = false;
        break;
      }
      angle[k - 1] = Atan2(static_cast<float>(p.Node_Y[n] - y), static_cast<float>(p.Node_X[n] - x));
    }
    if (!valid) continue;
    float turn = 0;
    for (int k = 0; k < 4; ++k) {
      float d = angle[(k + 1) % 4] - angle[k];
      if (d > pi) d -= 2 * pi;
      if (d < -pi) d += 2 * pi;
      turn += d;
    }
    if (std::fabs(turn) > pi) return m;
  }
  return 0;
}

bool Macro_Selected(Project& p, const Design_Panel& panel) {
  const int m = Macro_At(p, Pointer_X(panel), Pointer_Y(panel));
  if (m == 0) return false;
  p.Current_Macro = m;
  return true;
}

bool Side_Hit(double x1, double y1, double x2, double y2, double mx, double my, double screen_scale,
              float mouse_radius) {
  const double dx = x2 - x1, dy = y2 - y1;
  const double length = std::sqrt(dx * dx + dy * dy);
  double c = 1, s = 0;
  if (length > 0) {
    c = dx / length;
    s = dy / length;
  }
  const double u = (mx - x1) * c + (my - y1) * s;
  const double v = (my - y1) * c - (mx - x1) * s;
  const float across = static_cast<float>(std::fabs(v)) * static_cast<float>(screen_scale);
  return across < mouse_radius && u >= 0 && u < length;
}

namespace {

bool Node_Side_Hit(const Project& p, const Design_Panel& panel, int a, int b) {
  if (a < 1 || a > Node_Count(p) || b < 1 || b > Node_Count(p)) return false;
  return Side_Hit(p.Node_X[a], p.Node_Y[a], p.Node_X[b], p.Node_Y[b], Pointer_X(panel), Pointer_Y(panel),
                  panel.Screen_Scale, p.Mouse_Radius);
}

// Every macro side under the pointer, in macro order and corners 1 to 4, until `take` accepts one.
template <class Accept>
bool Scan_Macro_Sides(const Project& p, const Design_Panel& panel, Macro_Side& side, Accept take) {
  for (int m = 1; m <= p.Macro.count(); ++m)
    for (int j = 1; j <= 4; ++j) {
      const int a = p.Macro[m].Corner[j], b = p.Macro[m].Corner[j % 4 + 1];
      if (!Node_Side_Hit(p, panel, a, b)) continue;
      side = Macro_Side{m, j, a, b};
      if (take(side)) return true;
    }
  side = Macro_Side{};
  return false;
}

bool Same_Pair(int a, int b, int c, int d) {
  return (a == c && b == d) || (a == d && b == c);
}

// Another macro holds the side from b to a.
bool Shared_Side(const Project& p, int macro, int a, int b) {
  for (int m = 1; m <= p.Macro.count(); ++m) {
    if (m == macro) continue;
    for (int j = 1; j <= 4; ++j)
      if (p.Macro[m].Corner[j] == b && p.Macro[m].Corner[j % 4 + 1] == a) return true;
  }
  return false;
}

}  // namespace

bool Find_Macro_Side(const Project& p, const Design_Panel& panel, Macro_Side& side) {
  return Scan_Macro_Sides(p, panel, side, [](const Macro_Side&) { return true; });
}

bool Border_SelectedN(Project& p, const Design_Panel& panel) {
  for (int k = 1; k <= p.Border.count(); ++k)
    if (Node_Side_Hit(p, panel, p.Border[k].Node_A, p.Border[k].Node_B)) {
      p.Current_Border = static_cast<std::int16_t>(k);
      return true;
    }
  return false;
}

bool Border_Selected(Project& p, Design_Panel& panel) {
  if (Border_SelectedN(p, panel)) return true;
  Macro_Side side;
  if (!Find_Macro_Side(p, panel, side)) return false;
  Border border = panel.Current_Border_Template;
  border.Node_A = static_cast<std::int16_t>(side.Node_A);
  border.Node_B = static_cast<std::int16_t>(side.Node_B);
  if (border.Thermal_Periods.empty()) border.Thermal_Periods.add(p.Thermal_Period_Default);
  if (border.Hygral_Periods.empty()) border.Hygral_Periods.add(p.Hygral_Period_Default);
  if (panel.Mode == Design_Mode::BorderT) border.Thermal_Active = True_Flag;
  if (panel.Mode == Design_Mode::BorderH) border.Hygral_Active = True_Flag;
  p.Mesh_Valid = False_Flag;  // the mesh borders are taken from the borders
  p.Current_Border = static_cast<std::int16_t>(p.Border.add(border));
  return true;
}

bool Prescribed_Border_Selected(Project& p, Design_Panel& panel) {
  Macro_Side side;
  if (!Find_Macro_Side(p, panel, side)) return false;
  const auto a = static_cast<std::int16_t>(side.Node_A), b = static_cast<std::int16_t>(side.Node_B);
  switch (panel.Mode) {
    case Design_Mode::Line_T: {
      for (int k = 1; k <= p.Line_T.count(); ++k)
        if (Same_Pair(p.Line_T[k].Node_A, p.Line_T[k].Node_B, a, b)) {
          panel.Current_Line_T = k;
          return true;
        }
      Line_T line = p.Line_T_Default;
      line.Node_A = a;
      line.Node_B = b;
      panel.Current_Line_T = p.Line_T.add(line);
      return true;
    }
    case Design_Mode::Support_L: {
      Support support = p.Support_Default;
      support.Node_A = a;
      support.Node_B = b;
      panel.Current_Line_Support = p.Line_Support.add(support);
      return true;
    }
    case Design_Mode::Load_L: {
      Load load = p.Load_Default;
      load.Node_A = a;
      load.Node_B = b;
      panel.Current_Line_Load = p.Line_Load.add(load);
      return true;
    }
    default:
      return false;
  }
}

bool Prescribed_Border_Selected_E(Project& p, Design_Panel& panel) {
  panel.Selection_List.clear();
  auto collect = [&](auto& table, int& current) {
    for (int k = 1; k <= table.count(); ++k)
      if (Node_Side_Hit(p, panel, table[k].Node_A, table[k].Node_B) ||
          Node_Side_Hit(p, panel, table[k].Node_B, table[k].Node_A)) {
        panel.Selection_List.add(static_cast<std::int16_t>(k));
        current = k;
      }
  };
  switch (panel.Mode) {
    case Design_Mode::Line_T:
      collect(p.Line_T, panel.Current_Line_T);
      break;
    case Design_Mode::Support_L:
      collect(p.Line_Support, panel.Current_Line_Support);
      break;
    case Design_Mode::Load_L:
      collect(p.Line_Load, panel.Current_Line_Load);
      break;
    default:
      break;
  }
  return !panel.Selection_List.empty();
}

bool Interface_SelectedN(Project& p, Design_Panel& panel) {
  Macro_Side side;
  if (!Scan_Macro_Sides(p, panel, side,
                        [&](const Macro_Side& s) { return Shared_Side(p, s.Macro, s.Node_A, s.Node_B); }))
    return false;
  for (int k = 1; k <= p.Interface.count(); ++k)
    if (Same_Pair(p.Interface[k].Node_A, p.Interface[k].Node_B, side.Node_A, side.Node_B)) {
      panel.Current_Interface = k;
      return true;
    }
  return false;
}

bool Interface_Selected(Project& p, Design_Panel& panel) {
  Macro_Side side;
  if (!Scan_Macro_Sides(p, panel, side,
                        [&](const Macro_Side& s) { return Shared_Side(p, s.Macro, s.Node_A, s.Node_B); }))
    return false;
  for (int k = 1; k <= p.Interface.count(); ++k)
    if (Same_Pair(p.Interface[k].Node_A, p.Interface[k].Node_B, side.Node_A, side.Node_B)) {
      panel.Current_Interface = k;
      return true;
    }
  Interface entry = p.Interface.empty() ? p.Interface_Template : p.Interface.last();
  if (entry.Layer_Material.empty())
    for (const Material& m : p.Material)
      if (m.Is_Interface) {
        entry.Layer_Material = m.Name;
        break;
      }
  int a = side.Node_A, b = side.Node_B;
  if (p.Node_X[b] < p.Node_X[a] || (p.Node_X[b] == p.Node_X[a] && p.Node_Y[b] < p.Node_Y[a])) std::swap(a, b);
  entry.Node_A = a;
  entry.Node_B = b;
  p.Mesh_Valid = False_Flag;  // the mesh interfaces are taken from the interfaces
  panel.Current_Interface = p.Interface.add(entry);
  return true;
}

namespace {

bool Near_Point(const Project& p, const Design_Panel& panel, double x, double y) {
  return std::fabs(x - Pointer_X(panel)) * panel.Screen_Scale <= p.Mouse_Radius &&
         std::fabs(y - Pointer_Y(panel)) * panel.Screen_Scale <= p.Mouse_Radius;
}

}  // namespace

bool Prescribed_Node_Selected_E(Project& p, Design_Panel& panel) {
  panel.Selection_List.clear();
  auto collect = [&](const auto& table, int& current) {
    for (int k = 1; k <= table.count(); ++k)
      if (Near_Point(p, panel, table[k].X, table[k].Y)) {
        panel.Selection_List.add(static_cast<std::int16_t>(k));
        current = k;
      }
  };
  switch (panel.Mode) {
    case Design_Mode::Point_T:
      collect(p.Point_T, panel.Current_Point_T);
      break;
    case Design_Mode::Support_P:
      collect(p.Point_Support, panel.Current_Point_Support);
      break;
    case Design_Mode::Load_P:
      collect(p.Point_Load, panel.Current_Point_Load);
      break;
    default:
      break;
  }
  return !panel.Selection_List.empty();
}

bool Prescribed_Area_Selected_E(Project& p, Design_Panel& panel) {
  panel.Selection_List.clear();
  const double reach = panel.Screen_Scale > 0 ? p.Mouse_Radius / panel.Screen_Scale : 0;
  const double x = Pointer_X(panel), y = Pointer_Y(panel);
  for (int k = 1; k <= p.Area_T.count(); ++k) {
    const Area_T& a = p.Area_T[k];
    if (x >= a.X1 - reach && x <= a.X2 + reach && y >= a.Y1 - reach && y <= a.Y2 + reach) {
      panel.Selection_List.add(static_cast<std::int16_t>(k));
      panel.Current_Area_T = k;
    }
  }
  return !panel.Selection_List.empty();
}

bool Macro_Bar_Selected(Project& p, const Design_Panel& panel) {
  for (int k = 1; k <= p.Rebar.count(); ++k) {
    const Rebar& r = p.Rebar[k];
    if (Side_Hit(r.X1, r.Y1, r.X2, r.Y2, Pointer_X(panel), Pointer_Y(panel), panel.Screen_Scale,
                 p.Mouse_Radius) ||
        Near_Point(p, panel, r.X2, r.Y2)) {
      p.Current_Rebar = k;
      return true;
    }
  }
  return false;
}

bool Circuit_Select(Project& p, const Design_Panel& panel) {
  Design_Panel probe = panel;
  Closest_Node(p, probe);
  if (!Node_Selected(p, probe)) return false;
  for (int c = 1; c <= p.Circuit.count(); ++c)
    for (std::int16_t n : p.Circuit[c].Pipe_Node)
      if (n == probe.Closest_Node_Number) {
        p.Current_Circuit = static_cast<std::int16_t>(c);
        return true;
      }
  return false;
}

}  // namespace pvx
