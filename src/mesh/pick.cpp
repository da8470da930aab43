#include "mesh/pick.h"

#include <cmath>

namespace pvx {

bool Pick_Element_Side(const Project& p, double x, double y, double scale, int& element, int& side) {
  element = 0;
  side = 0;
  for (int e = 1; e <= p.Mesh_Element.count(); ++e) {
    const Mesh_Element& el = p.Mesh_Element[e];
    for (int s = 1; s <= 4; ++s) {
      const int na = el.Corner[s], nb = el.Corner[s % 4 + 1];
      if (!p.Mesh_Node.valid(na) || !p.Mesh_Node.valid(nb)) continue;
      const Mesh_Node& a = p.Mesh_Node[na];
      const Mesh_Node& b = p.Mesh_Node[nb];
      const double length = std::hypot(b.X - a.X, b.Y - a.Y);
      if (!(length > 0)) continue;
      const double ux = (b.X - a.X) / length, uy = (b.Y - a.Y) / length;
      const double along = (x - a.X) * ux + (y - a.Y) * uy;
      if (!(along > 0 && along < length)) continue;
      const double across = std::fabs((x - a.X) * uy - (y - a.Y) * ux);
      if (across * scale <= p.Mouse_Radius) {
        element = e;
        side = s;
        return true;
      }
    }
  }
  return false;
}

}  // namespace pvx
