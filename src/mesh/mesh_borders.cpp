#include "mesh/mesh_borders.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "mesh/mesh_index.h"

namespace pvx {

namespace {

// The new nodes sorted by X and by Y, so that each entry looks only at the nodes in the slab
// round its line rather than at all of them.
struct Node_Slabs {
  std::vector<std::pair<double, int>> by_x, by_y;
};

Node_Slabs Make_Slabs(const Project& p, int first_new) {
  Node_Slabs slabs;
  const int last = p.Mesh_Node.count();
  if (first_new < 1) first_new = 1;
  for (int i = first_new; i <= last; ++i) {
    const Mesh_Node& n = p.Mesh_Node[i];
    if (!std::isfinite(n.X) || !std::isfinite(n.Y)) continue;  // can lie on no line
    slabs.by_x.emplace_back(n.X, i);
    slabs.by_y.emplace_back(n.Y, i);
  }
  std::sort(slabs.by_x.begin(), slabs.by_x.end());
  std::sort(slabs.by_y.begin(), slabs.by_y.end());
  return slabs;
}

using Slab_Range = std::pair<std::vector<std::pair<double, int>>::const_iterator,
                             std::vector<std::pair<double, int>>::const_iterator>;

Slab_Range Slab(const std::vector<std::pair<double, int>>& sorted, double low, double high) {
  auto first = std::lower_bound(sorted.begin(), sorted.end(), std::make_pair(low, 0));
  auto last = std::upper_bound(sorted.begin(), sorted.end(), std::make_pair(high, Max_I16_Reference + 1));
  if (last < first) last = first;
  return {first, last};
}

template <class Number>
bool Plan_Entry(const Project& p, const Node_Slabs& slabs, Number node_a, Number node_b,
                std::vector<int>& out) {
  out.clear();
  if (!p.Mesh_Node.valid(node_a) || !p.Mesh_Node.valid(node_b)) return false;
  const Mesh_Node& a = p.Mesh_Node[node_a];
  const Mesh_Node& b = p.Mesh_Node[node_b];
  const double length = std::sqrt((b.X - a.X) * (b.X - a.X) + (b.Y - a.Y) * (b.Y - a.Y));
  if (!(length > 0) || !std::isfinite(length)) return false;  // no node lies strictly inside
  const double cos = (b.X - a.X) / length, sin = (b.Y - a.Y) / length;

  // A node on the line lies within the tolerance of the segment; the margin covers rounding.
  constexpr double margin = 2 * Ring_Closure_Tolerance;
  const Slab_Range in_x = Slab(slabs.by_x, std::min(a.X, b.X) - margin, std::max(a.X, b.X) + margin);
  const Slab_Range in_y = Slab(slabs.by_y, std::min(a.Y, b.Y) - margin, std::max(a.Y, b.Y) + margin);
  const Slab_Range& slab = (in_x.second - in_x.first) <= (in_y.second - in_y.first) ? in_x : in_y;

  std::vector<std::pair<double, int>> found;  // (s, node)
  for (auto it = slab.first; it != slab.second; ++it) {
    const Mesh_Node& n = p.Mesh_Node[it->second];
    const double s = sin * (n.Y - a.Y) + cos * (n.X - a.X);
    const double t = -sin * (n.X - a.X) + cos * (n.Y - a.Y);
    if (std::fabs(t) < Ring_Closure_Tolerance && s > 0 && s < length) found.emplace_back(s, it->second);
  }
  if (found.empty()) return false;
  // Collected in node order, then ordered by s; equal s keeps node order.
  std::sort(found.begin(), found.end(), [](const auto& x, const auto& y) { return x.second < y.second; });
  std::stable_sort(found.begin(), found.end(),
                   [](const auto& x, const auto& y) { return x.first < y.first; });
  for (const auto& f : found)
    out.push_back(f.second);
  return true;
}

template <class Record>
Chain_Plan Plan_Chains(const Project& p, const Table<Record>& entries, int first_new) {
  Chain_Plan plan;
  if (first_new > p.Mesh_Node.count()) return plan;
  const Node_Slabs slabs = Make_Slabs(p, first_new);
  std::vector<int> nodes;
  for (int k = 1; k <= entries.count(); ++k) {
    if (Plan_Entry(p, slabs, entries[k].Node_A, entries[k].Node_B, nodes)) {
      plan.appended += static_cast<int>(nodes.size());
      plan.entries.push_back({k, nodes});
    }
  }
  return plan;
}

template <class Record>
void Apply_Chains(Table<Record>& entries, const Chain_Plan& plan) {
  using Number = decltype(Record{}.Node_A);
  entries.reserve(entries.count() + plan.appended);
  for (const auto& change : plan.entries) {
    const int k = change.entry;
    const Number last_end = entries[k].Node_B;
    const std::vector<int>& c = change.nodes;
    const int m = static_cast<int>(c.size());
    entries[k].Node_B = static_cast<Number>(c[0]);
    for (int j = 1; j <= m; ++j) {
      Record copy = entries[k];
      copy.Node_A = static_cast<Number>(c[j - 1]);
      copy.Node_B = j < m ? static_cast<Number>(c[j]) : last_end;
      entries.add(std::move(copy));
    }
  }
}

}  // namespace

Chain_Plan Plan_Border_Chains(const Project& p, const Table<Border>& entries, int first_new) {
  return Plan_Chains(p, entries, first_new);
}
Chain_Plan Plan_Interface_Chains(const Project& p, const Table<Interface>& entries, int first_new) {
  return Plan_Chains(p, entries, first_new);
}
void Apply_Border_Chains(Table<Border>& entries, const Chain_Plan& plan) {
  Apply_Chains(entries, plan);
}
void Apply_Interface_Chains(Table<Interface>& entries, const Chain_Plan& plan) {
  Apply_Chains(entries, plan);
}

bool Split_Borders(Project& p, int first_new, std::string& message) {
  const Chain_Plan plan = Plan_Border_Chains(p, p.Mesh_Border, first_new);
  if (p.Mesh_Border.count() + plan.appended > Max_I16_Reference) {
    message = Too_Many_Borders_Message;
    return false;
  }
  Apply_Border_Chains(p.Mesh_Border, plan);
  return true;
}

bool Split_Interfaces(Project& p, int first_new, std::string& message) {
  const Chain_Plan plan = Plan_Interface_Chains(p, p.Mesh_Interface, first_new);
  if (p.Mesh_Interface.count() + plan.appended > Max_Mesh_Interfaces) {
    message = Too_Many_Interfaces_Message;
    return false;
  }
  Apply_Interface_Chains(p.Mesh_Interface, plan);
  return true;
}

}  // namespace pvx
