#include "app/border_periods.h"

#include <algorithm>
#include <cmath>

namespace pvx {

namespace {

struct Point {
  double x = 0, y = 0;
};

// Distance from q to the segment a-b (to the nearer end when q lies beyond one).
double Distance_To_Segment(Point q, Point a, Point b) {
  const double dx = b.x - a.x, dy = b.y - a.y;
  const double length2 = dx * dx + dy * dy;
  double s = length2 > 0 ? ((q.x - a.x) * dx + (q.y - a.y) * dy) / length2 : 0;
  s = std::clamp(s, 0.0, 1.0);
  return std::hypot(q.x - (a.x + s * dx), q.y - (a.y + s * dy));
}

}  // namespace

int Design_Border_Of(const Project& p, const Border& mesh_border) {
  if (!p.Mesh_Node.valid(mesh_border.Node_A) || !p.Mesh_Node.valid(mesh_border.Node_B)) return 0;
  const Point q1{p.Mesh_Node[mesh_border.Node_A].X, p.Mesh_Node[mesh_border.Node_A].Y};
  const Point q2{p.Mesh_Node[mesh_border.Node_B].X, p.Mesh_Node[mesh_border.Node_B].Y};
  int first = 0;
  for (int k = 1; k <= p.Border.count(); ++k) {
    const Border& d = p.Border[k];
    if (!p.Node_X.valid(d.Node_A) || !p.Node_X.valid(d.Node_B)) continue;
    const Point a{p.Node_X[d.Node_A], p.Node_Y[d.Node_A]};
    const Point b{p.Node_X[d.Node_B], p.Node_Y[d.Node_B]};
    const double tolerance =
        Border_Match_Tolerance + Border_Match_Relative * std::hypot(b.x - a.x, b.y - a.y);
    if (!(Distance_To_Segment(q1, a, b) <= tolerance && Distance_To_Segment(q2, a, b) <= tolerance)) continue;
    // The mesher copies a design border with its direction, and cuts keep it. So when a side is
    // held twice (two macros that share it hold it in opposite order), the border that runs the
    // same way is the one the mesh border was made from. Of two that run the same way the first
    // wins: the panel picks among the existing borders in table order, so the first is the one
    // the user sees and edits on that side.
    const double along = (q2.x - q1.x) * (b.x - a.x) + (q2.y - q1.y) * (b.y - a.y);
    if (along > 0) return k;
    if (first == 0) first = k;
  }
  return first;
}

void Restore_Mesh_Hygral_Periods(Project& p) {
  for (Border& m : p.Mesh_Border) {
    const int k = Design_Border_Of(p, m);
    if (k != 0) m.Hygral_Periods = p.Border[k].Hygral_Periods;
  }
}

}  // namespace pvx
