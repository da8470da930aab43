#include "app/prescribed_data.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <utility>
#include <vector>

namespace pvx {

namespace {

// A mesh node lies on a side when it is this close to it, across and beyond its ends (mm).
constexpr double On_Side_Tolerance = 0.001;
// Below this the bilinear map is taken as affine and its inverse as linear.
constexpr double Affine_Limit = 1e-25;

// A design side as a start point, a unit direction and a length.
struct Side_Frame {
  double x0 = 0, y0 = 0;
  double c = 1, s = 0;
  double length = 0;
};

Side_Frame Make_Side_Frame(double xa, double ya, double xb, double yb) {
  Side_Frame f;
  f.x0 = xa;
  f.y0 = ya;
  const double dx = xb - xa, dy = yb - ya;
  f.length = std::sqrt(dx * dx + dy * dy);
  if (f.length > 0) {
    f.c = dx / f.length;
    f.s = dy / f.length;
  }
  return f;
}

// True when the point lies on the side; u is then its distance along it from the start.
inline bool On_Side(const Side_Frame& f, double x, double y, double& u) {
  const double dx = x - f.x0, dy = y - f.y0;
  u = f.c * dx + f.s * dy;
  const double v = f.c * dy - f.s * dx;
  return std::fabs(v) < On_Side_Tolerance && u > -On_Side_Tolerance && u < f.length + On_Side_Tolerance;
}

// A design node number that can be used: the check runs against the mesh node count, as the
// program always has; a number that passes it but lies beyond the design table cannot be read and
// is refused with the same message.
bool Side_Node_Valid(const Project& p, int node) {
  return node >= 1 && node <= p.Mesh_Node.count() && node <= Node_Count(p);
}

// Checks the end nodes of every side object. On a fault, message holds the text for the first bad
// object and the result is false.
template <class Record>
bool Check_Side_Nodes(const Project& p, const Table<Record>& table, const char* message_a,
                      const char* message_b, std::string& message) {
  for (int i = 1; i <= table.count(); ++i) {
    if (!Side_Node_Valid(p, table[i].Node_A)) {
      message = message_a + std::to_string(i);
      return false;
    }
    if (!Side_Node_Valid(p, table[i].Node_B)) {
      message = message_b + std::to_string(i);
      return false;
    }
  }
  return true;
}

Side_Frame Design_Side(const Project& p, int a, int b) {
  return Make_Side_Frame(p.Node_X[a], p.Node_Y[a], p.Node_X[b], p.Node_Y[b]);
}

// A line support or load between mesh nodes that no element joins would act on nothing: it has no
// thickness to turn its value into a force, and the run would go on as if it were not there.
template <class Record>
std::string Off_Element_Message(const char* plural, const char* singular, int entry, const Record& r,
                                int mesh_a, int mesh_b) {
  return std::string("Check ") + plural + " again. " + singular + " " + std::to_string(entry) +
         ", from node " + std::to_string(r.Node_A) + " to node " + std::to_string(r.Node_B) +
         ", does not lie on element sides: no element has a side between mesh nodes " +
         std::to_string(mesh_a) + " and " + std::to_string(mesh_b);
}

// Appends prescribed nodes. A node is not added again when it already stands among the entries 1
// to count-1; the last entry is deliberately not looked at, so a node may be doubled there, which
// does no harm because the analysis takes the first match. The first position of every node is
// kept so that the test costs nothing per entry.
class Prescribed_Builder {
 public:
  explicit Prescribed_Builder(Project& p)
      : list_(p.Prescribed_Node), first_(static_cast<std::size_t>(p.Mesh_Node.count()) + 1, 0) {
    list_.clear();
  }

  void Add(int node, std::int16_t function, double from, double until) {
    int& first = first_[static_cast<std::size_t>(node)];
    if (first != 0 && first <= list_.count() - 1) return;
    Prescribed_Node entry;
    entry.Temperature_Function = function;
    entry.Mesh_Node = node;
    entry.From = from;
    entry.Until = until;
    const int position = list_.add(entry);
    if (first == 0) first = position;
  }

 private:
  Table<Prescribed_Node>& list_;
  std::vector<int> first_;
};

// The thickness at every element side, built once per transfer so that many line supports on a
// large mesh do not scan all elements for every segment. A side counts in either direction: the
// order of a line object's nodes sets which way its load or support acts, not which element carries
// it. A side picked on the far one of two macros that share it, or a project written by a script,
// names the nodes against the element's own order.
class Side_Thickness_Index {
 public:
  // False when no element has a side between mesh nodes a and b. Otherwise thickness is that of the
  // first element, in element order, that has the side and a thickness above 0; 0 when none has.
  bool Find(const Project& p, int a, int b, double& thickness) {
    if (!built_) Build(p);
    const auto it = thickness_.find(Key(a, b));
    thickness = it == thickness_.end() ? 0 : it->second;
    return it != thickness_.end();
  }

 private:
  // The same key for both directions of a side.
  static std::uint64_t Key(int a, int b) {
    const auto low = static_cast<std::uint32_t>(std::min(a, b));
    const auto high = static_cast<std::uint32_t>(std::max(a, b));
    return (static_cast<std::uint64_t>(low) << 32) | high;
  }

  void Build(const Project& p) {
    built_ = true;
    thickness_.reserve(static_cast<std::size_t>(p.Mesh_Element.count()) * 4);
    for (int e = 1; e <= p.Mesh_Element.count(); ++e) {
      const Mesh_Element& el = p.Mesh_Element[e];
      const double t = el.Thickness > 0 ? el.Thickness : 0;
      for (int k = 1; k <= 4; ++k) {
        // Elements come in order, so the first with a thickness keeps the side.
        double& side = thickness_.try_emplace(Key(el.Corner[k], el.Corner[k % 4 + 1]), 0.0).first->second;
        if (side == 0) side = t;
      }
    }
  }

  bool built_ = false;
  std::unordered_map<std::uint64_t, double> thickness_;
};

// Thickness, or radius in the axisymmetric mode, at a local point of an element; 0 without one.
double Point_Thickness(const Project& p, int element, double xi, double eta) {
  if (element == 0) return 0;
  const Mesh_Element& el = p.Mesh_Element[element];
  if (p.Out_Of_Plane.Axisymmetric != 0) {
    double w[4];
    Corner_Weights(xi, eta, w);
    double x = 0;
    for (int k = 1; k <= 4; ++k)
      x += w[k - 1] * p.Mesh_Node[el.Corner[k]].X;
    return x + p.Out_Of_Plane.Offset_Radius;
  }
  return el.Thickness;
}

// The mesh segments along a design side: each pair of neighbouring mesh nodes on it, in the order
// of their distance from node a.
struct Segment {
  int node_a = 0, node_b = 0;
  double x = 0, y = 0;  // middle
  double length = 0;
  double thickness = 0;     // or radius when axisymmetric
  bool on_element = false;  // some element has this side
};

class Segment_Maker {
 public:
  explicit Segment_Maker(const Project& p) : p_(p) {}

  const std::vector<Segment>& Along(int a, int b) {
    const Side_Frame f = Design_Side(p_, a, b);
    keys_.clear();
    nodes_.clear();
    for (int n = 1; n <= p_.Mesh_Node.count(); ++n) {
      double u;
      if (On_Side(f, p_.Mesh_Node[n].X, p_.Mesh_Node[n].Y, u)) {
        keys_.add(u);
        nodes_.add(n);
      }
    }
    Set_In_Order(keys_, nodes_, keys_.count());
    segments_.clear();
    const bool axisymmetric = p_.Out_Of_Plane.Axisymmetric != 0;
    for (int i = 1; i < nodes_.count(); ++i) {
      Segment s;
      s.node_a = nodes_[i];
      s.node_b = nodes_[i + 1];
      const pvx::Mesh_Node& na = p_.Mesh_Node[s.node_a];
      const pvx::Mesh_Node& nb = p_.Mesh_Node[s.node_b];
      s.x = (na.X + nb.X) / 2;
      s.y = (na.Y + nb.Y) / 2;
      s.length = std::hypot(nb.X - na.X, nb.Y - na.Y);
      s.on_element = thickness_.Find(p_, s.node_a, s.node_b, s.thickness);
      if (axisymmetric) s.thickness = (na.X + nb.X) / 2 + p_.Out_Of_Plane.Offset_Radius;
      segments_.push_back(s);
    }
    return segments_;
  }

 private:
  const Project& p_;
  Side_Thickness_Index thickness_;
  Table<double> keys_;
  Table<std::int32_t> nodes_;
  std::vector<Segment> segments_;
};

// Places a point object (Point_T, point support, point load) in its element.
template <class Record>
void Place_Point(const Project& p, Record& r) {
  int element;
  Locate_Point(p, r.X, r.Y, element, r.Local_X, r.Local_Y);
  r.Element = static_cast<std::int16_t>(element);
}

// Tries one root eta of the inverse map; true with xi when the element holds the point.
inline bool Try_Root(double eta, double dx, double dy, double a1, double b1, double a2, double b2, double a3,
                     double b3, double& xi) {
  if (!(eta >= 0 && eta <= 1)) return false;
  // Both divisions give the same xi; the larger divisor keeps the rounding small when one side of
  // the element runs nearly along an axis.
  const double d1 = eta * a3 + a1;
  const double d2 = eta * b3 + b1;
  if (d1 == 0 && d2 == 0)
    xi = -1;
  else if (std::fabs(d1) >= std::fabs(d2))
    xi = (dx - eta * a2) / d1;
  else
    xi = (dy - eta * b2) / d2;
  return xi >= 0 && xi <= 1;
}

}  // namespace

void Set_In_Order(Table<double>& keys, Table<std::int32_t>& nodes, int count) {
  if (count < 2) return;
  std::vector<std::pair<double, std::int32_t>> pairs(static_cast<std::size_t>(count));
  for (int i = 1; i <= count; ++i)
    pairs[static_cast<std::size_t>(i - 1)] = {keys[i], nodes[i]};
  std::sort(pairs.begin(), pairs.end());
  for (int i = 1; i <= count; ++i) {
    keys[i] = pairs[static_cast<std::size_t>(i - 1)].first;
    nodes[i] = pairs[static_cast<std::size_t>(i - 1)].second;
  }
}

void Locate_Point(const Project& p, double x, double y, int& element, double& xi, double& eta) {
  element = 0;
  xi = 0;
  eta = 0;
  const int node_count = p.Mesh_Node.count();
  for (int e = 1; e <= p.Mesh_Element.count(); ++e) {
    const Mesh_Element& el = p.Mesh_Element[e];
    const int n1 = el.Corner[1], n2 = el.Corner[2], n3 = el.Corner[3], n4 = el.Corner[4];
    if (n1 < 1 || n2 < 1 || n3 < 1 || n4 < 1 || n1 > node_count || n2 > node_count || n3 > node_count ||
        n4 > node_count)
      continue;
    const double x1 = p.Mesh_Node[n1].X, y1 = p.Mesh_Node[n1].Y;
    const double x2 = p.Mesh_Node[n2].X, y2 = p.Mesh_Node[n2].Y;
    const double x3 = p.Mesh_Node[n3].X, y3 = p.Mesh_Node[n3].Y;
    const double x4 = p.Mesh_Node[n4].X, y4 = p.Mesh_Node[n4].Y;
    if (x < std::min(std::min(x1, x2), std::min(x3, x4)) ||
        x > std::max(std::max(x1, x2), std::max(x3, x4)) ||
        y < std::min(std::min(y1, y2), std::min(y3, y4)) || y > std::max(std::max(y1, y2), std::max(y3, y4)))
      continue;

    const double dx = x - x1, dy = y - y1;
    const double a1 = x2 - x1, b1 = y2 - y1;
    const double a2 = x4 - x1, b2 = y4 - y1;
    const double a3 = x3 - x2 - x4 + x1, b3 = y3 - y2 - y4 + y1;
    // Eliminating xi from the bilinear map leaves A eta^2 + B eta + C = 0.
    const double A = a3 * b2 - a2 * b3;
    const double B = b2 * a1 + (dx * b3 - dy * a3) - a2 * b1;
    const double C = dx * b1 - dy * a1;

    double root;
    if (std::fabs(A) <= Affine_Limit) {
      if (B == 0) continue;
      root = -C / B;
      if (Try_Root(root, dx, dy, a1, b1, a2, b2, a3, b3, xi)) {
        element = e;
        eta = root;
        return;
      }
      continue;
    }

    const double D = B * B - 4 * A * C;
    if (D < 0) continue;
    // The roots (-B + sqrt D) / 2A and (-B - sqrt D) / 2A, tried in that order, each computed
    // without subtracting nearly equal numbers: an element that is almost a parallelogram has a
    // tiny A, and the plain formula would then lose all digits of one root.
    const double root_d = std::sqrt(D);
    double plus_root, minus_root;
    if (B >= 0) {
      const double q = -0.5 * (B + root_d);
      if (q == 0) {
        plus_root = minus_root = 0;
      } else {
        plus_root = C / q;
        minus_root = q / A;
      }
    } else {
      const double q = -0.5 * (B - root_d);
      plus_root = q / A;
      minus_root = C / q;
    }
    if (Try_Root(plus_root, dx, dy, a1, b1, a2, b2, a3, b3, xi)) {
      element = e;
      eta = plus_root;
      return;
    }
    if (Try_Root(minus_root, dx, dy, a1, b1, a2, b2, a3, b3, xi)) {
      element = e;
      eta = minus_root;
      return;
    }
  }
  xi = 0;
  eta = 0;
}

void Set_Prescribed_Data(Project& p, bool& ok, std::string& message) {
  ok = true;
  message.clear();
  Prescribed_Builder prescribed(p);
  const int node_count = p.Mesh_Node.count();

  // Areas, limits included.
  for (const Area_T& area : p.Area_T) {
    for (int n = 1; n <= node_count; ++n) {
      const double x = p.Mesh_Node[n].X, y = p.Mesh_Node[n].Y;
      if (x >= area.X1 && x <= area.X2 && y >= area.Y1 && y <= area.Y2)
        prescribed.Add(n, area.Temperature_Function, area.Present_From, area.Until);
    }
  }

  if (!Check_Side_Nodes(p, p.Line_T,
                        "Check line temperatures again. An unexpected node connnection has been detected in "
                        "line temperature ",
                        "Check line temperature again. An unexpected node connnection has been detected in "
                        "line temperature ",
                        message)) {
    ok = false;
    return;
  }

  for (const Line_T& line : p.Line_T) {
    const Side_Frame f = Design_Side(p, line.Node_A, line.Node_B);
    for (int n = 1; n <= node_count; ++n) {
      double u;
      if (On_Side(f, p.Mesh_Node[n].X, p.Mesh_Node[n].Y, u))
        prescribed.Add(n, line.Temperature_Function, line.Present_From, line.Until);
    }
  }

  for (Point_T& point : p.Point_T)
    Place_Point(p, point);

  p.Mesh_Support.clear();
  p.Mesh_Support.reserve(p.Point_Support.count());
  for (const Support& support : p.Point_Support) {
    Support s = support;
    s.Node_A = 0;
    s.Node_B = 0;
    Place_Point(p, s);
    s.Effective_Thickness = Point_Thickness(p, s.Element, s.Local_X, s.Local_Y);
    p.Mesh_Support.add(s);
  }

  const char* support_message =
      "Check line supports again. An unexpected node connnection has been detected in line support ";
  if (!Check_Side_Nodes(p, p.Line_Support, support_message, support_message, message)) {
    ok = false;
    return;
  }

  Segment_Maker segments(p);
  for (int i = 1; i <= p.Line_Support.count(); ++i) {
    const Support& line = p.Line_Support[i];
    for (const Segment& seg : segments.Along(line.Node_A, line.Node_B)) {
      if (!seg.on_element) {
        message = Off_Element_Message("line supports", "Line support", i, line, seg.node_a, seg.node_b);
        ok = false;
        return;
      }
      Support s = line;
      s.Node_A = static_cast<std::int16_t>(seg.node_a);
      s.Node_B = static_cast<std::int16_t>(seg.node_b);
      s.X = seg.x;
      s.Y = seg.y;
      s.Segment_Length = seg.length;
      s.Effective_Thickness = seg.thickness;
      p.Mesh_Support.add(s);
    }
  }

  for (Load& load : p.Point_Load) {
    Place_Point(p, load);
    load.Effective_Thickness = Point_Thickness(p, load.Element, load.Local_X, load.Local_Y);
  }

  if (!Check_Side_Nodes(
          p, p.Line_Load,
          "Check line load again. An unexpected node connnection has been detected in line load ",
          "Check line loads again. An unexpected node connnection has been detected in line load ",
          message)) {
    ok = false;
    return;
  }

  p.Mesh_Load.clear();
  for (int i = 1; i <= p.Line_Load.count(); ++i) {
    const Load& line = p.Line_Load[i];
    for (const Segment& seg : segments.Along(line.Node_A, line.Node_B)) {
      if (!seg.on_element) {
        message = Off_Element_Message("line loads", "Line load", i, line, seg.node_a, seg.node_b);
        ok = false;
        return;
      }
      Load l = line;
      l.Node_A = static_cast<std::int16_t>(seg.node_a);
      l.Node_B = static_cast<std::int16_t>(seg.node_b);
      l.X = seg.x;
      l.Y = seg.y;
      l.Node_Spacing = seg.length;
      l.Effective_Thickness = seg.thickness;
      p.Mesh_Load.add(l);
    }
  }
}

}  // namespace pvx
