#include "mesh/pipe_holes.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace pvx {

namespace {

int Corner(const Mesh_Element& e, int j) {
  return e.Corner[(j - 1) % 4 + 1];
}

std::string Node_Text(int node) {
  return std::to_string(node);
}

}  // namespace

bool Split_Pipe_Element(Project& p, Mesh_Session& session, int element, int corner, double x, double y,
                        bool first, int node, double radius, int ring[3], std::string& message) {
  Mesh_Index& index = session.Index;
  const Mesh_Element& e = p.Mesh_Element[element];
  const int far[3] = {Corner(e, corner + 1), Corner(e, corner + 2), Corner(e, corner + 3)};
  // The twelve grid points, ray by ray from the wall to the far corner: R, Q, M, T.
  double gx[13], gy[13];
  for (int ray = 0; ray < 3; ++ray) {
    const Mesh_Node t = p.Mesh_Node[far[ray]];
    const double length = std::hypot(t.X - x, t.Y - y);
    const double rx = x + (t.X - x) * radius / length, ry = y + (t.Y - y) * radius / length;
    const double mx = (rx + t.X) / 2, my = (ry + t.Y) / 2;
    const int g = 4 * ray + 1;
    gx[g] = rx;
    gy[g] = ry;
    gx[g + 1] = (rx + mx) / 2;
    gy[g + 1] = (ry + my) / 2;
    gx[g + 2] = mx;
    gy[g + 2] = my;
    gx[g + 3] = t.X;
    gy[g + 3] = t.Y;
  }
  int g[13] = {};
  int start = 1;
  if (first) {
    Move_Node(p, index, node, gx[1], gy[1]);
    g[1] = node;
    start = 2;
  }
  for (int i = start; i <= 12; ++i)
    if (!Find_Or_Add_Node(p, index, gx[i], gy[i], g[i], message)) return false;

  static constexpr int quads[6][4] = {{1, 2, 6, 5},  {2, 3, 7, 6},   {3, 4, 8, 7},
                                      {5, 6, 10, 9}, {6, 7, 11, 10}, {7, 8, 12, 11}};
  Set_Element_Corners(p, index, element, g[1], g[2], g[6], g[5]);
  for (int q = 1; q < 6; ++q) {
    int added = 0;
    if (!Append_Element(p, index, element, g[quads[q][0]], g[quads[q][1]], g[quads[q][2]], g[quads[q][3]],
                        added, message))
      return false;
  }
  ring[0] = g[1];
  ring[1] = g[5];
  ring[2] = g[9];
  return true;
}

bool Make_Pipe_Hole(Project& p, Mesh_Session& session, int node, double radius, Array1<std::int16_t, 9>& wall,
                    std::string& message) {
  message.clear();
  if (!p.Mesh_Node.valid(node)) {
    message = "The pipe lies at no mesh node; the cooling circuits are not integrated.";
    return false;
  }
  if (!Index_Matches(p, session.Index)) Rebuild_Mesh_Index(p, session.Index);
  const double x = p.Mesh_Node[node].X, y = p.Mesh_Node[node].Y;

  // The elements round the node, in number order, with the corner at which each holds it.
  struct Around {
    int element, corner, a, b;
  };
  std::vector<Around> around;
  const std::string where = "The pipe at mesh node " + Node_Text(node);
  for (int el = 1; el <= p.Mesh_Element.count(); ++el) {
    const Mesh_Element& e = p.Mesh_Element[el];
    int held = 0;
    for (int j = 1; j <= 4; ++j) {
      if (e.Corner[j] != node) continue;
      if (++held > 1) {
        message = where + " is held twice by element " + std::to_string(el) +
                  "; the cooling circuits are not integrated.";
        return false;
      }
      around.push_back({el, j, Corner(e, j + 1), Corner(e, j + 3)});
    }
  }
  if (around.size() != 4) {
    message = where + " is a corner of " + std::to_string(around.size()) +
              " elements; a pipe needs a node inside the mesh where exactly four elements meet. "
              "The cooling circuits are not integrated.";
    return false;
  }
  // The four must close round the node: each shares its ray to corner+3 with the next one's ray to
  // corner+1.
  {
    std::vector<bool> used(4, false);
    used[0] = true;
    int previous = 0;
    for (int step = 1; step < 4; ++step) {
      int next = -1;
      for (int i = 0; i < 4 && next < 0; ++i)
        if (!used[static_cast<std::size_t>(i)] &&
            around[static_cast<std::size_t>(i)].a == around[static_cast<std::size_t>(previous)].b)
          next = i;
      if (next < 0) break;
      used[static_cast<std::size_t>(next)] = true;
      previous = next;
    }
    if (!(used[1] && used[2] && used[3]) || around[0].a != around[static_cast<std::size_t>(previous)].b) {
      message =
          where + " is not surrounded by its four elements in turn; the cooling circuits are not integrated.";
      return false;
    }
  }
  for (const Around& r : around) {
    const Mesh_Element& e = p.Mesh_Element[r.element];
    for (int j = 1; j <= 3; ++j) {
      if (!p.Mesh_Node.valid(Corner(e, r.corner + j))) {
        message = "Element " + std::to_string(r.element) +
                  " refers to a node that does not exist; the cooling circuits are not integrated.";
        return false;
      }
      const Mesh_Node& t = p.Mesh_Node[Corner(e, r.corner + j)];
      const double length = std::hypot(t.X - x, t.Y - y);
      if (!(radius > 0) || !(radius < length)) {
        message = where + " does not fit in element " + std::to_string(r.element) +
                  ": its radius must be above 0 and below the distance to the element's corners. "
                  "The cooling circuits are not integrated.";
        return false;
      }
    }
  }

  int rings[4][3];
  for (int i = 0; i < 4; ++i) {
    if (!Split_Pipe_Element(p, session, around[static_cast<std::size_t>(i)].element,
                            around[static_cast<std::size_t>(i)].corner, x, y, i == 0, node, radius, rings[i],
                            message))
      return false;
  }
  // Chained round the hole: the first wall node of the next piece is the last of the one before.
  int order[4] = {0, -1, -1, -1};
  bool used[4] = {true, false, false, false};
  for (int step = 1; step < 4; ++step) {
    for (int i = 0; i < 4; ++i) {
      if (!used[i] && rings[i][0] == rings[order[step - 1]][2]) {
        order[step] = i;
        used[i] = true;
        break;
      }
    }
    if (order[step] < 0) {
      message = where + ": the wall of the hole does not close; the cooling circuits are not integrated.";
      return false;
    }
  }
  wall[1] = static_cast<std::int16_t>(rings[order[0]][0]);
  wall[2] = static_cast<std::int16_t>(rings[order[0]][1]);
  wall[3] = static_cast<std::int16_t>(rings[order[0]][2]);
  wall[4] = static_cast<std::int16_t>(rings[order[1]][1]);
  wall[5] = static_cast<std::int16_t>(rings[order[1]][2]);
  wall[6] = static_cast<std::int16_t>(rings[order[2]][1]);
  wall[7] = static_cast<std::int16_t>(rings[order[2]][2]);
  wall[8] = static_cast<std::int16_t>(rings[order[3]][1]);
  wall[9] = wall[1];
  return true;
}

bool Integrate_Circuits(Project& p, Mesh_Session& session, std::string& message) {
  message.clear();
  if (session.Circuits_Integrated) {
    message = "The cooling circuits are integrated already.";
    return false;
  }
  if (!Index_Matches(p, session.Index)) Rebuild_Mesh_Index(p, session.Index);
  // Kept to put back when a section fails.
  const Table<Mesh_Node> nodes = p.Mesh_Node;
  const Table<Mesh_Element> elements = p.Mesh_Element;
  const Table<Circuit> circuits = p.Circuit;
  auto fail = [&] {
    p.Mesh_Node = nodes;
    p.Mesh_Element = elements;
    p.Circuit = circuits;
    Rebuild_Mesh_Index(p, session.Index);
    return false;
  };

  for (int c = 1; c <= p.Circuit.count(); ++c) {
    Circuit& circuit = p.Circuit[c];
    const int sections = std::max<int>(circuit.Pipe_Count, 0);
    if (circuit.Pipe_Node.count() < sections) {
      message = "Circuit " + std::to_string(c) +
                " has fewer nodes than pipes; the cooling circuits are not integrated.";
      return fail();
    }
    circuit.Pipe_Connection.resize(sections);
    for (int k = 1; k <= sections; ++k) {
      const int design = circuit.Pipe_Node[k];
      if (!p.Node_X.valid(design)) {
        message = "Pipe " + std::to_string(k) + " of circuit " + std::to_string(c) +
                  " lies at no node; the cooling circuits are not integrated.";
        return fail();
      }
      const double x = p.Node_X[design], y = p.Node_Y[design];
      // The nearest mesh node. The first two tests compare a distance with a squared distance:
      // a quick rejection that can pass by a nearer node once the best is below 1 mm2. Kept, since
      // which node a pipe takes decides the mesh that follows.
      double best = 1e9;
      int nearest = 0;
      for (int i = 1; i <= p.Mesh_Node.count(); ++i) {
        const double dx = p.Mesh_Node[i].X - x, dy = p.Mesh_Node[i].Y - y;
        if (!(std::fabs(dx) < best) || !(std::fabs(dy) < best)) continue;
        const double d2 = dx * dx + dy * dy;
        if (d2 < best) {
          best = d2;
          nearest = i;
        }
      }
      if (nearest == 0) {
        message = "Pipe " + std::to_string(k) + " of circuit " + std::to_string(c) +
                  " lies far from the mesh; the cooling circuits are not integrated.";
        return fail();
      }
      Move_Node(p, session.Index, nearest, x, y);
      if (!Make_Pipe_Hole(p, session, nearest, circuit.Diameter / 2, circuit.Pipe_Connection[k], message))
        return fail();
    }
  }
  session.Circuits_Integrated = true;
  return true;
}

}  // namespace pvx
