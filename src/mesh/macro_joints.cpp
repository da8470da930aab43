#include "mesh/macro_joints.h"

#include <cmath>

namespace pvx {
namespace {

// The tolerance of the mesh's node merging, in mm.
constexpr double Joint_Tolerance = 0.01;

}  // namespace

std::vector<Unjoined_Node> Find_Unjoined_Nodes(const Project& p) {
  std::vector<Unjoined_Node> found;
  const int nodes = std::min(p.Node_X.count(), p.Node_Y.count());
  // Only nodes that are corners of some macro can carry a mesh there.
  std::vector<bool> corner(static_cast<std::size_t>(nodes) + 1, false);
  for (const Macro& m : p.Macro)
    for (int j = 1; j <= 4; ++j)
      if (m.Corner[j] >= 1 && m.Corner[j] <= nodes) corner[static_cast<std::size_t>(m.Corner[j])] = true;

  for (int k = 1; k <= p.Macro.count(); ++k) {
    const Macro& m = p.Macro[k];
    for (int side = 1; side <= 4; ++side) {
      const int a = m.Corner[side], b = m.Corner[side % 4 + 1];
      if (a < 1 || a > nodes || b < 1 || b > nodes) continue;
      const double ax = p.Node_X[a], ay = p.Node_Y[a];
      const double dx = p.Node_X[b] - ax, dy = p.Node_Y[b] - ay;
      const double length = std::hypot(dx, dy);
      if (length <= Joint_Tolerance) continue;
      for (int n = 1; n <= nodes; ++n) {
        if (!corner[static_cast<std::size_t>(n)] || n == a || n == b) continue;
        if (n == m.Corner[1] || n == m.Corner[2] || n == m.Corner[3] || n == m.Corner[4]) continue;
        const double px = p.Node_X[n] - ax, py = p.Node_Y[n] - ay;
        const double along = (px * dx + py * dy) / length;            // distance from a along the side
        const double across = std::fabs(px * dy - py * dx) / length;  // distance from the side's line
        if (across < Joint_Tolerance && along > Joint_Tolerance && along < length - Joint_Tolerance)
          found.push_back({n, k, side});
      }
    }
  }
  return found;
}

std::string Unjoined_Nodes_Message(const std::vector<Unjoined_Node>& found) {
  if (found.empty()) return {};
  const Unjoined_Node& f = found.front();
  std::string text = "Node " + std::to_string(f.Node) + " lies on side " + std::to_string(f.Side) +
                     " of macro " + std::to_string(f.Macro) +
                     " without being one of its corners: the mesh is not joined there, and the two parts "
                     "pass each other as if separated by a crack. Draw macro " +
                     std::to_string(f.Macro) + " as two macros that share node " + std::to_string(f.Node) +
                     ".";
  if (found.size() > 1) text += " (" + std::to_string(found.size() - 1) + " more such node(s).)";
  return text;
}

}  // namespace pvx
