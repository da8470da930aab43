#include "mesh/splitting.h"

#include <cmath>
#include <utility>
#include <vector>

#include "mesh/mesh_borders.h"

namespace pvx {

namespace {

// What a cut changed, so that a cut that fails half-way can be undone.
struct Journal {
  int nodes = 0, elements = 0;
  std::vector<std::pair<int, Mesh_Element>> saved;  // old elements before each change, in order
  std::vector<int> touched;                         // elements whose corners the cut set
};

struct Cut {
  Project& p;
  Mesh_Index& index;
  Journal& journal;
  const Table<double>& f;
  int n;
  std::string& message;

  void Save(int el) {
    if (el <= journal.elements) journal.saved.emplace_back(el, p.Mesh_Element[el]);
  }
  void Set(int el, int c1, int c2, int c3, int c4) {
    Set_Element_Corners(p, index, el, c1, c2, c3, c4);
    journal.touched.push_back(el);
  }
  bool Add(int model, int c1, int c2, int c3, int c4) {
    int el = 0;
    if (!Append_Element(p, index, model, c1, c2, c3, c4, el, message)) return false;
    journal.touched.push_back(el);
    return true;
  }
  // A strip element read from a file may refer to nodes that do not exist.
  bool Valid_Corners(int el, int r, int t) {
    if (p.Mesh_Node.valid(r) && p.Mesh_Node.valid(t)) return true;
    message = "Element " + std::to_string(el) +
              " refers to a node that does not exist; the cut is not carried out.";
    return false;
  }
  // Appends the n-1 nodes from node `from` towards node `to` at the fractions of the cut.
  bool Nodes_Along(int from, int to, std::vector<int>& out) {
    const Mesh_Node a = p.Mesh_Node[from];
    const Mesh_Node b = p.Mesh_Node[to];
    for (int k = 1; k <= n - 1; ++k) {
      if (!Append_Node(p, index, a.X + (b.X - a.X) * f[k], a.Y + (b.Y - a.Y) * f[k], out[k], message))
        return false;
    }
    return true;
  }
};

void Roll_Back(Project& p, Mesh_Index& index, const Journal& journal) {
  p.Mesh_Element.resize(journal.elements);
  for (auto it = journal.saved.rbegin(); it != journal.saved.rend(); ++it)
    p.Mesh_Element[it->first] = it->second;
  p.Mesh_Node.resize(journal.nodes);
  Rebuild_Mesh_Index(p, index);
}

int Corner(const Mesh_Element& e, int j) {
  return e.Corner[(j - 1) % 4 + 1];
}

// The side of g that runs from `from` to `to`, 0 when there is none.
int Side_Of(const Mesh_Element& g, int from, int to) {
  for (int j = 1; j <= 4; ++j)
    if (g.Corner[j] == from && Corner(g, j + 1) == to) return j;
  return 0;
}

bool Cut_Strip(Cut& cut, int element, int side) {
  Project& p = cut.p;
  const int n = cut.n;
  const Mesh_Element& e = p.Mesh_Element[element];
  const int a = Corner(e, side), b = Corner(e, side + 1), c = Corner(e, side + 2), d = Corner(e, side + 3);

  // The element itself: nodes P(k) on a-b and Q(k) on d-c, appended in pairs.
  std::vector<int> P(static_cast<std::size_t>(n) + 1), Q(static_cast<std::size_t>(n) + 1);
  {
    const Mesh_Node na = p.Mesh_Node[a], nb = p.Mesh_Node[b], nc = p.Mesh_Node[c], nd = p.Mesh_Node[d];
    for (int k = 1; k <= n - 1; ++k) {
      const double f = cut.f[k];
      if (!Append_Node(p, cut.index, na.X + (nb.X - na.X) * f, na.Y + (nb.Y - na.Y) * f, P[k], cut.message) ||
          !Append_Node(p, cut.index, nd.X + (nc.X - nd.X) * f, nd.Y + (nc.Y - nd.Y) * f, Q[k], cut.message))
        return false;
    }
  }
  cut.Save(element);
  cut.Set(element, a, P[1], Q[1], d);
  for (int k = 2; k <= n - 1; ++k)
    if (!cut.Add(element, P[k - 1], P[k], Q[k], Q[k - 1])) return false;
  if (!cut.Add(element, P[n - 1], b, c, Q[n - 1])) return false;

  // The two edges of the strip as they now stand, from one end to the other.
  std::vector<int> side_a(static_cast<std::size_t>(n) + 2), side_b(side_a.size()), R(side_a.size());
  side_a[1] = a;
  side_b[1] = d;
  for (int k = 1; k <= n - 1; ++k) {
    side_a[k + 1] = P[k];
    side_b[k + 1] = Q[k];
  }
  side_a[n + 1] = b;
  side_b[n + 1] = c;

  // Across side a-b: the neighbour holds the edge as b -> a.
  int from = b, to = a;
  for (;;) {
    const int g = Find_Element_With_Side(cut.index, from, to, element);
    if (g == 0) break;
    const Mesh_Element& ge = p.Mesh_Element[g];
    const int j = Side_Of(ge, from, to);
    const int pn = Corner(ge, j), q = Corner(ge, j + 1), r = Corner(ge, j + 2), t = Corner(ge, j + 3);
    if (!cut.Valid_Corners(g, r, t) || !cut.Nodes_Along(r, t, R)) return false;
    cut.Save(g);
    cut.Set(g, r, R[1], side_a[2], q);
    for (int k = 2; k <= n - 1; ++k)
      if (!cut.Add(g, R[k - 1], R[k], side_a[k + 1], side_a[k])) return false;
    if (!cut.Add(g, R[n - 1], t, pn, side_a[n])) return false;
    side_a[1] = r;
    for (int k = 1; k <= n - 1; ++k)
      side_a[k + 1] = R[k];
    side_a[n + 1] = t;
    from = t;
    to = r;
  }

  // Across side c-d: the neighbour holds the edge as d -> c.
  from = d;
  to = c;
  for (;;) {
    const int g = Find_Element_With_Side(cut.index, from, to, element);
    if (g == 0) break;
    const Mesh_Element& ge = p.Mesh_Element[g];
    const int j = Side_Of(ge, from, to);
    const int pn = Corner(ge, j), q = Corner(ge, j + 1), r = Corner(ge, j + 2), t = Corner(ge, j + 3);
    if (!cut.Valid_Corners(g, r, t) || !cut.Nodes_Along(t, r, R)) return false;
    cut.Save(g);
    cut.Set(g, pn, side_b[2], R[1], t);
    for (int k = 2; k <= n - 1; ++k)
      if (!cut.Add(g, side_b[k], side_b[k + 1], R[k], R[k - 1])) return false;
    if (!cut.Add(g, side_b[n], q, r, R[n - 1])) return false;
    side_b[1] = t;
    for (int k = 1; k <= n - 1; ++k)
      side_b[k + 1] = R[k];
    side_b[n + 1] = r;
    from = t;
    to = r;
  }

  // A strip round a hole comes back to where it started: the nodes of its closing edge, the last
  // n-1 appended, then lie on nodes of the first edge and take their places, so that the ring
  // closes whole. A strip that does not close leaves its nodes as they are.
  const int last = p.Mesh_Node.count();
  std::vector<int> twin(static_cast<std::size_t>(n), 0);
  int merged = 0;
  for (int k = 0; k < n - 1 && last - k > cut.journal.nodes; ++k) {
    const Mesh_Node& node = p.Mesh_Node[last - k];
    const int same = Find_Node(p, cut.index, node.X, node.Y, Ring_Closure_Tolerance, last - k);
    if (same == 0 || same > last - (n - 1)) break;
    twin[static_cast<std::size_t>(k)] = same;
    ++merged;
  }
  // Merged nodes come off the end of the node table, so only an unbroken run from the last node
  // can go; a closing edge normally has a twin for every node.
  if (merged > 0) {
    const int first_merged = last - merged + 1;
    for (const int el : cut.journal.touched) {
      Mesh_Element& m = p.Mesh_Element[el];
      bool holds = false;
      int corners[4];
      for (int jj = 1; jj <= 4; ++jj) {
        const int c = m.Corner[jj];
        corners[jj - 1] = c >= first_merged ? twin[static_cast<std::size_t>(last - c)] : c;
        holds = holds || c >= first_merged;
      }
      if (holds) Set_Element_Corners(p, cut.index, el, corners[0], corners[1], corners[2], corners[3]);
    }
    for (int k = 0; k < merged; ++k)
      Remove_Last_Node(p, cut.index);
  }
  return true;
}

}  // namespace

bool Splitting(Project& p, Mesh_Session& session, int element, int side, const Table<double>& fractions,
               std::string& message) {
  message.clear();
  const int n = fractions.count();
  if (!p.Mesh_Element.valid(element) || side < 1 || side > 4) {
    message = "Element " + std::to_string(element) + " has no side " + std::to_string(side) +
              "; the cut is not carried out.";
    return false;
  }
  if (n < 2) {
    message = "A cut needs at least two parts; the cut is not carried out.";
    return false;
  }
  for (const double f : fractions) {
    if (!std::isfinite(f)) {
      message =
          "The parts of the cut cannot be computed (their weights add up to zero); the cut is not carried "
          "out.";
      return false;
    }
  }
  for (const int corner : p.Mesh_Element[element].Corner) {
    if (!p.Mesh_Node.valid(corner)) {
      message = "Element " + std::to_string(element) +
                " refers to a node that does not exist; the cut is not carried out.";
      return false;
    }
  }
  if (!Index_Matches(p, session.Index)) Rebuild_Mesh_Index(p, session.Index);

  Journal journal;
  journal.nodes = p.Mesh_Node.count();
  journal.elements = p.Mesh_Element.count();
  const int first_new = journal.nodes + 1;
  Cut cut{p, session.Index, journal, fractions, n, message};
  if (!Cut_Strip(cut, element, side)) {
    Roll_Back(p, session.Index, journal);
    return false;
  }

  const Chain_Plan borders = Plan_Border_Chains(p, p.Mesh_Border, first_new);
  const Chain_Plan interfaces = Plan_Interface_Chains(p, p.Mesh_Interface, first_new);
  if (p.Mesh_Border.count() + borders.appended > Max_I16_Reference ||
      p.Mesh_Interface.count() + interfaces.appended > Max_Mesh_Interfaces) {
    message = p.Mesh_Interface.count() + interfaces.appended > Max_Mesh_Interfaces
                  ? Too_Many_Interfaces_Message
                  : Too_Many_Borders_Message;
    Roll_Back(p, session.Index, journal);
    return false;
  }
  Apply_Border_Chains(p.Mesh_Border, borders);
  Apply_Interface_Chains(p.Mesh_Interface, interfaces);
  return true;
}

}  // namespace pvx
