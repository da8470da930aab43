// Small design models for the panel tests, laid out so that every answer can be worked by hand.
#pragma once

#include "app/project.h"
#include "design/panel.h"
#include "design/panel_snap.h"

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

inline Macro Quad(int a, int b, int c, int d) {
  Macro m;
  m.Material = "C30";
  m.Corner = {{static_cast<std::int16_t>(a), static_cast<std::int16_t>(b), static_cast<std::int16_t>(c),
               static_cast<std::int16_t>(d)}};
  return m;
}

// Two unit squares of 100 mm side by side: nodes 1 (0,0), 2 (100,0), 3 (100,100), 4 (0,100),
// 5 (200,0), 6 (200,100); macro 1 is 1-2-3-4 and macro 2 is 2-5-6-3, so side 2 of macro 1 (2 to 3)
// is side 4 of macro 2 (3 to 2).
inline Project Two_Squares(Design_Panel& panel) {
  Project p = Plain_Project(panel);
  for (auto [x, y] :
       {std::pair{0.0, 0.0}, {100.0, 0.0}, {100.0, 100.0}, {0.0, 100.0}, {200.0, 0.0}, {200.0, 100.0}})
    Add_Node(p, x, y);
  p.Macro.add(Quad(1, 2, 3, 4));
  p.Macro.add(Quad(2, 5, 6, 3));
  return p;
}

}  // namespace pvx::test
