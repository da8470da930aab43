// Small design models for the panel tests, laid out so that every answer can be worked by hand,
// and the panel's headers they use.
#pragma once

#include <initializer_list>
#include <utility>
#include <vector>

#include "app/project.h"
#include "design/panel.h"
#include "design/panel_delete.h"
#include "design/panel_edit.h"
#include "design/panel_pick.h"
#include "design/panel_snap.h"
#include "design/panel_undo.h"

namespace pvx::test {

using Points = std::initializer_list<std::pair<double, double>>;
using Corners = std::initializer_list<Array1<std::int16_t, 4>>;

inline void Add_Nodes(Project& p, Points points) {
  for (auto [x, y] : points)
    Add_Node(p, x, y);
}

// Quadrilateral macros of concrete C30 on the given corners.
inline void Add_Macros(Project& p, Corners corners) {
  for (const auto& c : corners) {
    Macro m;
    m.Material = "C30";
    m.Corner = c;
    p.Macro.add(m);
  }
}

// A new Project with a snap of 10 mm, no grid snapping and a mouse radius of 3 pixels at one
// pixel per millimetre, holding the given nodes and macros.
inline Project Plain_Project(Design_Panel& panel, Points nodes = {}, Corners macros = {}) {
  Project p;
  New_Project(p);
  Reset_Panel(panel, p);
  p.Snap_Size = 10;
  p.Snap_Mode = 0;
  p.Mouse_Radius = 3;
  panel.Screen_Scale = 1;
  Add_Nodes(p, nodes);
  Add_Macros(p, macros);
  return p;
}

// Two squares of 100 mm side by side: nodes 1 (0,0), 2 (100,0), 3 (100,100), 4 (0,100),
// 5 (200,0), 6 (200,100); macro 1 is 1-2-3-4 and macro 2 is 2-5-6-3, so side 2 of macro 1 (2 to 3)
// is side 4 of macro 2 (3 to 2).
inline Project Two_Squares(Design_Panel& panel) {
  return Plain_Project(panel, {{0, 0}, {100, 0}, {100, 100}, {0, 100}, {200, 0}, {200, 100}},
                       {{1, 2, 3, 4}, {2, 5, 6, 3}});
}

// Left clicks of the macro mode at the given points, with what each did.
inline std::vector<Macro_Click> Clicks(Project& p, Design_Panel& panel, Points points) {
  std::vector<Macro_Click> done;
  for (auto [x, y] : points) {
    Snap_Position(p, panel, x, y);
    done.push_back(Macro_Mouse_Down(p, panel));
  }
  return done;
}

// An object on the macro side from node a to node b, its other members at their defaults.
template <class T>
T On_Side(int a, int b) {
  T t;
  t.Node_A = static_cast<decltype(t.Node_A)>(a);
  t.Node_B = static_cast<decltype(t.Node_B)>(b);
  return t;
}

}  // namespace pvx::test
