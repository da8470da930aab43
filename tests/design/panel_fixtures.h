// Small design models for the panel tests, laid out so that every answer can be worked by hand,
// and the panel's headers they use.
#pragma once

#include <initializer_list>
#include <utility>

#include "app/project.h"
#include "design/panel.h"
#include "design/panel_delete.h"
#include "design/panel_edit.h"
#include "design/panel_pick.h"
#include "design/panel_snap.h"
#include "design/panel_undo.h"

// Designated initializers leave the members they do not name at their defaults, as intended in
// these tests.
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"

namespace pvx::test {

// A new Project with a snap of 10 mm, no grid snapping and a mouse radius of 3 pixels at one
// pixel per millimetre.
inline Project Plain_Project(Design_Panel& panel) {
  Project p;
  New_Project(p);
  Reset_Panel(panel, p);
  p.Snap_Size = 10;
  p.Snap_Mode = 0;
  p.Mouse_Radius = 3;
  panel.Screen_Scale = 1;
  return p;
}

inline void Point_At(const Project& p, Design_Panel& panel, double x, double y) {
  Snap_Position(p, panel, x, y);
}

// A left click of the macro mode at (x, y).
inline Macro_Click Click(Project& p, Design_Panel& panel, double x, double y) {
  Point_At(p, panel, x, y);
  return Macro_Mouse_Down(p, panel);
}

inline void Add_Nodes(Project& p, std::initializer_list<std::pair<double, double>> points) {
  for (auto [x, y] : points)
    Add_Node(p, x, y);
}

inline Macro Quad(int a, int b, int c, int d) {
  Macro m;
  m.Material = "C30";
  m.Corner = {{static_cast<std::int16_t>(a), static_cast<std::int16_t>(b), static_cast<std::int16_t>(c),
               static_cast<std::int16_t>(d)}};
  return m;
}

// Two squares of 100 mm side by side: nodes 1 (0,0), 2 (100,0), 3 (100,100), 4 (0,100),
// 5 (200,0), 6 (200,100); macro 1 is 1-2-3-4 and macro 2 is 2-5-6-3, so side 2 of macro 1 (2 to 3)
// is side 4 of macro 2 (3 to 2).
inline Project Two_Squares(Design_Panel& panel) {
  Project p = Plain_Project(panel);
  Add_Nodes(p, {{0, 0}, {100, 0}, {100, 100}, {0, 100}, {200, 0}, {200, 100}});
  p.Macro.add(Quad(1, 2, 3, 4));
  p.Macro.add(Quad(2, 5, 6, 3));
  return p;
}

}  // namespace pvx::test
