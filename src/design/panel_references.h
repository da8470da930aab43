// Every place where the design layer refers to a design node, for the procedures that renumber,
// merge or test nodes. One list, so that a new kind of reference is added in one place.
#pragma once

#include "app/project.h"

namespace pvx {

// Calls f(reference) for each node reference of the design layer; `P` is Project or const Project.
template <class P, class F>
void Visit_Node_References(P& p, F f) {
  for (auto& m : p.Macro)
    for (auto& c : m.Corner)
      f(c);
  for (auto& polygon : p.Polygon)
    for (auto& c : polygon.Corner)
      f(c);
  for (auto& b : p.Border) {
    f(b.Node_A);
    f(b.Node_B);
  }
  for (auto& i : p.Interface) {
    f(i.Node_A);
    f(i.Node_B);
  }
  for (auto& l : p.Line_T) {
    f(l.Node_A);
    f(l.Node_B);
  }
  for (auto& c : p.Circuit)
    for (auto& n : c.Pipe_Node)
      f(n);
  for (auto& s : p.Line_Support) {
    f(s.Node_A);
    f(s.Node_B);
  }
  for (auto& l : p.Line_Load) {
    f(l.Node_A);
    f(l.Node_B);
  }
}

}  // namespace pvx
