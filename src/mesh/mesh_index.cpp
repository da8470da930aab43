#include "mesh/mesh_index.h"

#include <cmath>

namespace pvx {

namespace {

constexpr double Cell_Size = 2 * Node_Merge_Tolerance;

bool Cell_Of(double v, std::int64_t& cell) {
  if (!std::isfinite(v)) return false;
  double c = std::floor(v / Cell_Size);
  // Far away cells are lumped together; the exact test still decides.
  constexpr double limit = 1.0e15;
  if (c > limit) c = limit;
  if (c < -limit) c = -limit;
  cell = static_cast<std::int64_t>(c);
  return true;
}

std::uint64_t Cell_Key(std::int64_t cx, std::int64_t cy) {
  return (static_cast<std::uint64_t>(static_cast<std::uint32_t>(cx)) << 32) | static_cast<std::uint32_t>(cy);
}

std::uint64_t Side_Key(int from, int to) {
  return (static_cast<std::uint64_t>(static_cast<std::uint32_t>(from)) << 32) |
         static_cast<std::uint32_t>(to);
}

void Erase_Pair(std::unordered_multimap<std::uint64_t, int>& map, std::uint64_t key, int value) {
  auto [first, last] = map.equal_range(key);
  for (auto it = first; it != last; ++it) {
    if (it->second == value) {
      map.erase(it);
      return;
    }
  }
}

void Insert_Node(Mesh_Index& index, const Mesh_Node& n, int number) {
  std::int64_t cx = 0, cy = 0;
  if (Cell_Of(n.X, cx) && Cell_Of(n.Y, cy)) index.node_cells.emplace(Cell_Key(cx, cy), number);
}

void Erase_Node(Mesh_Index& index, const Mesh_Node& n, int number) {
  std::int64_t cx = 0, cy = 0;
  if (Cell_Of(n.X, cx) && Cell_Of(n.Y, cy)) Erase_Pair(index.node_cells, Cell_Key(cx, cy), number);
}

void Insert_Sides(Mesh_Index& index, const Mesh_Element& e, int number) {
  for (int j = 1; j <= 4; ++j)
    index.element_sides.emplace(Side_Key(e.Corner[j], e.Corner[j % 4 + 1]), number);
}

void Erase_Sides(Mesh_Index& index, const Mesh_Element& e, int number) {
  for (int j = 1; j <= 4; ++j)
    Erase_Pair(index.element_sides, Side_Key(e.Corner[j], e.Corner[j % 4 + 1]), number);
}

}  // namespace

void Rebuild_Mesh_Index(const Project& p, Mesh_Index& index) {
  index.node_cells.clear();
  index.element_sides.clear();
  index.node_cells.reserve(static_cast<std::size_t>(p.Mesh_Node.count()) * 2);
  index.element_sides.reserve(static_cast<std::size_t>(p.Mesh_Element.count()) * 8);
  for (int n = 1; n <= p.Mesh_Node.count(); ++n)
    Insert_Node(index, p.Mesh_Node[n], n);
  for (int e = 1; e <= p.Mesh_Element.count(); ++e)
    Insert_Sides(index, p.Mesh_Element[e], e);
  index.node_count = p.Mesh_Node.count();
  index.element_count = p.Mesh_Element.count();
}

int Find_Node(const Project& p, const Mesh_Index& index, double x, double y, double tolerance, int skip) {
  std::int64_t cx = 0, cy = 0;
  if (!Cell_Of(x, cx) || !Cell_Of(y, cy)) return 0;  // a point at infinity or NaN matches nothing
  int best = 0;
  for (std::int64_t i = cx - 1; i <= cx + 1; ++i) {
    for (std::int64_t j = cy - 1; j <= cy + 1; ++j) {
      auto [first, last] = index.node_cells.equal_range(Cell_Key(i, j));
      for (auto it = first; it != last; ++it) {
        const int n = it->second;
        if (n == skip || (best != 0 && n > best)) continue;
        const Mesh_Node& node = p.Mesh_Node[n];
        if (std::fabs(x - node.X) < tolerance && std::fabs(y - node.Y) < tolerance) best = n;
      }
    }
  }
  return best;
}

bool Append_Node(Project& p, Mesh_Index& index, double x, double y, int& node, std::string& message) {
  if (p.Mesh_Node.count() >= Max_I16_Reference) {
    message = Too_Many_Nodes_Message;
    return false;
  }
  node = p.Mesh_Node.add(Mesh_Node{x, y});
  Insert_Node(index, p.Mesh_Node[node], node);
  index.node_count = p.Mesh_Node.count();
  return true;
}

bool Find_Or_Add_Node(Project& p, Mesh_Index& index, double x, double y, int& node, std::string& message) {
  node = Find_Node(p, index, x, y);
  if (node != 0) return true;
  return Append_Node(p, index, x, y, node, message);
}

void Remove_Last_Node(Project& p, Mesh_Index& index) {
  const int n = p.Mesh_Node.count();
  if (n == 0) return;
  Erase_Node(index, p.Mesh_Node[n], n);
  p.Mesh_Node.remove(n);
  index.node_count = p.Mesh_Node.count();
}

void Move_Node(Project& p, Mesh_Index& index, int n, double x, double y) {
  Erase_Node(index, p.Mesh_Node[n], n);
  p.Mesh_Node[n].X = x;
  p.Mesh_Node[n].Y = y;
  Insert_Node(index, p.Mesh_Node[n], n);
}

int Find_Element_With_Side(const Mesh_Index& index, int from, int to, int skip) {
  int best = 0;
  auto [first, last] = index.element_sides.equal_range(Side_Key(from, to));
  for (auto it = first; it != last; ++it) {
    if (it->second != skip && (best == 0 || it->second < best)) best = it->second;
  }
  return best;
}

void Set_Default_Dof(Mesh_Element& e) {
  for (int j = 1; j <= 4; ++j) {
    e.Dof[2 * j - 1] = 2 * e.Corner[j] - 1;
    e.Dof[2 * j] = 2 * e.Corner[j];
  }
}

void Set_Element_Corners(Project& p, Mesh_Index& index, int el, int c1, int c2, int c3, int c4) {
  Mesh_Element& e = p.Mesh_Element[el];
  Erase_Sides(index, e, el);
  e.Corner = {{static_cast<std::int16_t>(c1), static_cast<std::int16_t>(c2), static_cast<std::int16_t>(c3),
               static_cast<std::int16_t>(c4)}};
  Set_Default_Dof(e);
  Insert_Sides(index, e, el);
}

bool Append_Element(Project& p, Mesh_Index& index, int model, int c1, int c2, int c3, int c4, int& el,
                    std::string& message) {
  if (p.Mesh_Element.count() >= Max_Mesh_Elements) {
    message = Too_Many_Elements_Message;
    return false;
  }
  Mesh_Element copy = p.Mesh_Element[model];
  copy.Corner = {{static_cast<std::int16_t>(c1), static_cast<std::int16_t>(c2), static_cast<std::int16_t>(c3),
                  static_cast<std::int16_t>(c4)}};
  Set_Default_Dof(copy);
  el = p.Mesh_Element.add(std::move(copy));
  Insert_Sides(index, p.Mesh_Element[el], el);
  index.element_count = p.Mesh_Element.count();
  return true;
}

}  // namespace pvx
