#include "design/circular.h"

#include "app/units.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <tuple>
#include <utility>
#include <vector>

namespace pvx {

namespace {

constexpr double Pi = 3.14159265358979323846;
constexpr double Degree = Pi / 180;
// Angles this close to the bound still pass: the generated layouts reach a bound exactly only
// where rounding decides.
constexpr double Angle_Slack = 1e-9;

struct Point {
  double x = 0, y = 0;
};

Point operator+(Point a, Point b) {
  return {a.x + b.x, a.y + b.y};
}
Point operator-(Point a, Point b) {
  return {a.x - b.x, a.y - b.y};
}
Point operator*(double s, Point a) {
  return {s * a.x, s * a.y};
}
double Cross(Point a, Point b) {
  return a.x * b.y - a.y * b.x;
}
double Dot(Point a, Point b) {
  return a.x * b.x + a.y * b.y;
}
double Length(Point a) {
  return std::hypot(a.x, a.y);
}
// The points on the axes come out exactly there: cos 90 degrees is 6e-17 in floating point, and a
// support typed at the top of a ring would otherwise fall a hair outside every element.
Point On_Circle(Point centre, double radius, double angle) {
  const auto exact = [](double v) { return std::fabs(v) < 1e-12 ? 0.0 : v; };
  return {centre.x + radius * exact(std::cos(angle)), centre.y + radius * exact(std::sin(angle))};
}

using Quad = std::array<Point, 4>;

double Area(const Quad& q) {
  double twice = 0;
  for (int k = 0; k < 4; ++k)
    twice += Cross(q[k], q[(k + 1) % 4]);
  return twice / 2;
}

// The interior angle at corner k of a counter-clockwise quadrilateral, degrees in (0, 360).
double Corner_Angle(const Quad& q, int k) {
  const Point to_next = q[(k + 1) % 4] - q[k], to_previous = q[(k + 3) % 4] - q[k];
  double a = std::atan2(Cross(to_next, to_previous), Dot(to_next, to_previous)) / Degree;
  if (a <= 0) a += 360;
  return a;
}

std::string Number(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", value);
  return text;
}

// A length in the project's units, as the user typed it: mm to a tenth, or inches to a thousandth.
std::string Length_Text(const Project& p, double mm) {
  if (p.Metric_Units != 0) return Number(std::round(mm * 10) / 10) + " mm";
  return Number(std::round(Convert_Unit(true, Unit_Length_mm, mm) * 1000) / 1000) + " in";
}

// An angle in degrees to a tenth.
std::string Angle_Text(double degrees) {
  return Number(std::round(degrees * 10) / 10);
}

// What a generation builds before anything is changed: corner points, some of them existing
// nodes, and quadrilaterals on them, counter-clockwise.
struct Plan {
  std::vector<Point> points;
  std::vector<int> node;  // per point: the existing node it is (0: a new corner)
  std::vector<std::array<int, 4>> quads;

  int Add(Point at, int existing = 0) {
    points.push_back(at);
    node.push_back(existing);
    return static_cast<int>(points.size()) - 1;
  }
  Quad Corners(const std::array<int, 4>& quad) const {
    return {points[quad[0]], points[quad[1]], points[quad[2]], points[quad[3]]};
  }
};

Point Node_Point(const Project& p, int n) {
  return {p.Node_X[n], p.Node_Y[n]};
}

// The node tolerance of the panel: nodes closer than this are one node.
double Node_Tolerance(const Project& p) {
  return p.Mouse_Radius > 0 ? static_cast<double>(p.Mouse_Radius) : 0.0;
}

// Decides for each new point whether it takes an existing node (the nearest one closer than the
// tolerance) and moves it there, so that the checks see the macros as they will stand. Returns how
// many points took a node.
int Take_Existing_Nodes(const Project& p, Plan& plan) {
  const double tolerance = Node_Tolerance(p);
  int taken = 0;
  for (std::size_t i = 0; i < plan.points.size(); ++i) {
    if (plan.node[i] != 0 || tolerance <= 0) continue;
    double best = tolerance;
    for (int n = 1; n <= Node_Count(p); ++n) {
      const double d = Length(Node_Point(p, n) - plan.points[i]);
      if (d < best) {
        best = d;
        plan.node[i] = n;
      }
    }
    if (plan.node[i] != 0) {
      plan.points[i] = Node_Point(p, plan.node[i]);
      ++taken;
    }
  }
  return taken;
}

// Sides or diagonals shorter than twice the tolerance could take one existing node for two
// corners; such a request is refused before any node is taken.
std::string Check_Spacing(const Project& p, const Plan& plan, const std::vector<std::array<int, 4>>& quads) {
  const double tolerance = Node_Tolerance(p);
  double shortest = std::numeric_limits<double>::infinity();
  for (const auto& quad : quads) {
    const Quad q = plan.Corners(quad);
    for (int k = 0; k < 4; ++k)
      shortest = std::min(shortest, Length(q[(k + 1) % 4] - q[k]));
    shortest = std::min({shortest, Length(q[2] - q[0]), Length(q[3] - q[1])});
  }
  if (shortest < 2 * tolerance)
    return "The sides of the generated macros would be " + Length_Text(p, shortest) +
           " long, less than twice the node tolerance of " + Length_Text(p, tolerance) +
           ": use fewer segments or a larger circle.";
  return {};
}

// Every quadrilateral counter-clockwise, convex and with its angles within the bound. Fills the
// extreme angles; the message tells the worst one.
std::string Check_Shapes(const Plan& plan, double& smallest, double& largest) {
  smallest = 360;
  largest = 0;
  std::string message;
  for (const auto& quad : plan.quads) {
    const Quad q = plan.Corners(quad);
    if (Area(q) <= 0) {
      if (message.empty()) message = "A generated macro would be turned inside out.";
      continue;
    }
    for (int k = 0; k < 4; ++k) {
      const double a = Corner_Angle(q, k);
      smallest = std::min(smallest, a);
      largest = std::max(largest, a);
    }
  }
  if (!message.empty()) return message;
  if (smallest < Min_Macro_Angle - Angle_Slack || largest > Max_Macro_Angle + Angle_Slack)
    return "The generated macros would not be well shaped: they would have corners of " +
           Angle_Text(smallest < Min_Macro_Angle ? smallest : largest) + " degrees, where " +
           Angle_Text(Min_Macro_Angle) + " to " + Angle_Text(Max_Macro_Angle) + " degrees are needed.";
  return {};
}

// The area two polygons have in common; `clip` must be convex and counter-clockwise.
double Common_Area(std::vector<Point> subject, const Quad& clip) {
  for (int k = 0; k < 4 && !subject.empty(); ++k) {
    const Point a = clip[k], b = clip[(k + 1) % 4];
    std::vector<Point> kept;
    for (std::size_t i = 0; i < subject.size(); ++i) {
      const Point s = subject[i], e = subject[(i + 1) % subject.size()];
      const double ds = Cross(b - a, s - a), de = Cross(b - a, e - a);
      if (ds >= 0) kept.push_back(s);
      if ((ds >= 0) != (de >= 0)) kept.push_back(s + (ds / (ds - de)) * (e - s));
    }
    subject = std::move(kept);
  }
  double twice = 0;
  for (std::size_t i = 0; i < subject.size(); ++i)
    twice += Cross(subject[i], subject[(i + 1) % subject.size()]);
  return std::fabs(twice) / 2;
}

// The first existing macro that a generated one overlaps (more than a sliver), 0 if none.
int Overlapped_Macro(const Project& p, const Plan& plan) {
  for (int m = 1; m <= p.Macro.count(); ++m) {
    std::vector<Point> corners;
    double x0 = 1e300, x1 = -1e300, y0 = 1e300, y1 = -1e300;
    for (int k = 1; k <= 4; ++k) {
      const int n = p.Macro[m].Corner[k];
      if (!p.Node_X.valid(n)) break;
      corners.push_back(Node_Point(p, n));
      x0 = std::min(x0, corners.back().x);
      x1 = std::max(x1, corners.back().x);
      y0 = std::min(y0, corners.back().y);
      y1 = std::max(y1, corners.back().y);
    }
    if (corners.size() != 4) continue;
    for (const auto& quad : plan.quads) {
      const Quad q = plan.Corners(quad);
      double qx0 = 1e300, qx1 = -1e300, qy0 = 1e300, qy1 = -1e300;
      for (const Point& c : q) {
        qx0 = std::min(qx0, c.x);
        qx1 = std::max(qx1, c.x);
        qy0 = std::min(qy0, c.y);
        qy1 = std::max(qy1, c.y);
      }
      if (qx1 <= x0 || qx0 >= x1 || qy1 <= y0 || qy0 >= y1) continue;
      if (Common_Area(corners, q) > 1e-6 * Area(q)) return m;
    }
  }
  return 0;
}

bool Fits_I16(int count) {
  return count <= Max_I16_Reference;
}

// The node of each of the plan's points: the existing node it takes, or a new one.
std::vector<int> Place_Nodes(Project& p, const Plan& plan, Generation_Result& result) {
  std::vector<int> node(plan.points.size());
  const int existing = Node_Count(p);
  for (std::size_t i = 0; i < plan.points.size(); ++i) {
    if (plan.node[i] != 0) {
      node[i] = plan.node[i];
      continue;
    }
    node[i] = Add_Node(p, plan.points[i].x, plan.points[i].y);
  }
  result.Nodes_Added += Node_Count(p) - existing;
  return node;
}

Macro Macro_On(const Macro& model, const std::vector<int>& node, const std::array<int, 4>& quad) {
  Macro m = model;
  for (int k = 0; k < 4; ++k)
    m.Corner[k + 1] = static_cast<std::int16_t>(node[quad[k]]);
  return m;
}

int Existing(const Plan& plan) {
  return static_cast<int>(std::count_if(plan.node.begin(), plan.node.end(), [](int n) { return n != 0; }));
}

// ---- Rings and discs ----

double Corner_Angle_Of(int k, int segments) {
  return (45 + 360.0 * k / segments) * Degree;
}

// Rings of N macros between two closed rows of N points each (row `inner` inside row `outer`).
void Ring_Between(Plan& plan, const std::vector<int>& inner, const std::vector<int>& outer) {
  const std::size_t n = inner.size();
  for (std::size_t k = 0; k < n; ++k) {
    const std::size_t next = (k + 1) % n;
    plan.quads.push_back({inner[next], inner[k], outer[k], outer[next]});
  }
}

// Rings whose radii grow by a constant factor, as many as keep each macro about as long (along
// the radius) as wide.
int Ring_Count(double inner, double outer, int segments) {
  const double per_ring = std::log1p(2 * Pi / segments);
  return std::max(1, static_cast<int>(std::lround(std::log(outer / inner) / per_ring)));
}

void Plan_Ring(Plan& plan, Point centre, double inner, double outer, int segments) {
  const int rings = Ring_Count(inner, outer, segments);
  std::vector<int> row(static_cast<std::size_t>(segments)), next(row.size());
  for (int k = 0; k < segments; ++k)
    row[k] = plan.Add(On_Circle(centre, inner, Corner_Angle_Of(k, segments)));
  for (int ring = 1; ring <= rings; ++ring) {
    const double radius = inner * std::pow(outer / inner, static_cast<double>(ring) / rings);
    for (int k = 0; k < segments; ++k)
      next[k] = plan.Add(On_Circle(centre, radius, Corner_Angle_Of(k, segments)));
    Ring_Between(plan, row, next);
    row = next;
  }
}

// The disc: a square block of q x q macros of half width R/2 with its corners on the diagonals,
// whose 4q edge points are joined to the 4q corners of the circle's polygon (the block's corner at
// 45 degrees to the polygon's corner at 45 degrees) by rings of quadrilaterals. The rings' rows
// lie at even steps from the block's edge to the circle, as many as keep the macros about as long
// as wide. The block's macros are square; the widest angle, 135 degrees, is where a ring meets a
// corner of the block, and the narrowest of all the discs that may be asked for is 47.5 degrees,
// at 256 segments.
void Plan_Disc(Plan& plan, Point centre, double radius, int segments) {
  const int q = segments / 4;
  const double half = radius / 2;
  std::vector<int> grid(static_cast<std::size_t>((q + 1) * (q + 1)));
  auto at = [&](int i, int j) -> int& { return grid[j * (q + 1) + i]; };
  for (int j = 0; j <= q; ++j)
    for (int i = 0; i <= q; ++i)
      at(i, j) = plan.Add({centre.x - half + 2 * half * i / q, centre.y - half + 2 * half * j / q});
  for (int j = 0; j < q; ++j)
    for (int i = 0; i < q; ++i)
      plan.quads.push_back({at(i, j), at(i + 1, j), at(i + 1, j + 1), at(i, j + 1)});

  // The block's edge anticlockwise from its corner at 45 degrees.
  std::vector<int> edge;
  for (int k = 0; k < q; ++k)
    edge.push_back(at(q - k, q));
  for (int k = 0; k < q; ++k)
    edge.push_back(at(0, q - k));
  for (int k = 0; k < q; ++k)
    edge.push_back(at(k, 0));
  for (int k = 0; k < q; ++k)
    edge.push_back(at(q, k));

  const int rings =
      std::max(1, static_cast<int>(std::lround((radius - half) / (2 * Pi * radius / segments))));
  std::vector<int> row = edge, next(edge.size());
  for (int ring = 1; ring <= rings; ++ring) {
    const double w = static_cast<double>(ring) / rings;
    for (int k = 0; k < segments; ++k) {
      const Point from = plan.points[edge[k]];
      const Point to = On_Circle(centre, radius, Corner_Angle_Of(k, segments));
      next[k] = plan.Add(from + w * (to - from));
    }
    Ring_Between(plan, row, next);
    row = next;
  }
}

bool Is_Plain_Material(const Material& m) {
  return !m.Is_Interface && !m.Is_Reinforcement;
}

// ---- Holes ----

// Signed distance of point c from the line through a and b (positive on the left).
double Left_Distance(Point a, Point b, Point c) {
  const double length = Length(b - a);
  return length > 0 ? Cross(b - a, c - a) / length : 0;
}

// Where the ray from `from` in direction `angle` meets the segment a-b: the fraction along a-b.
bool Ray_Meets(Point from, double angle, Point a, Point b, double& fraction) {
  const Point u{std::cos(angle), std::sin(angle)}, e = b - a;
  const double denominator = Cross(u, e);
  if (std::fabs(denominator) < 1e-15) return false;
  const double along_ray = Cross(a - from, e) / denominator;
  fraction = Cross(a - from, u) / denominator;
  return along_ray > 0 && fraction > -1e-12 && fraction < 1 + 1e-12;
}

// The angular distance between two directions, in (-pi, pi].
double Turn(double from, double to) {
  double d = std::fmod(to - from, 2 * Pi);
  if (d > Pi) d -= 2 * Pi;
  if (d <= -Pi) d += 2 * Pi;
  return d;
}

// One side of the hole's macro as the hole divides it: its end nodes and the plan points strictly
// between them, in order from `from` to `to`, with their fractions along the side.
struct Divided_Side {
  int from = 0, to = 0;  // nodes
  std::vector<int> points;
  std::vector<double> fractions;
};

// A neighbouring macro cut into strips, and the pieces that replace it.
struct Strip_Cut {
  int macro = 0;
  std::vector<std::array<int, 4>> pieces;  // plan points
};

int Point_Of_Node(Plan& plan, const Project& p, int n) {
  for (std::size_t i = 0; i < plan.node.size(); ++i)
    if (plan.node[i] == n) return static_cast<int>(i);
  return plan.Add(Node_Point(p, n), n);
}

// The macro with a side from node a to node b, and that side (1..4).
int Macro_With_Side(const Project& p, int a, int b, int& side) {
  for (int m = 1; m <= p.Macro.count(); ++m) {
    for (int k = 1; k <= 4; ++k)
      if (p.Macro[m].Corner[k] == a && p.Macro[m].Corner[k % 4 + 1] == b) {
        side = k;
        return m;
      }
  }
  return 0;
}

// Cuts the strip of macros beyond a divided side: the macro holding the side as b -> a is cut into
// pieces by lines from the side's points to points at the same fractions on its opposite side,
// which is then the divided side of the next macro, until a side that no macro shares.
std::string Cut_Strip(const Project& p, Plan& plan, const Divided_Side& divided, int hole_macro,
                      std::vector<Strip_Cut>& cuts, std::vector<Divided_Side>& sides) {
  // The side as the next macro holds it: from `to` back to `from`.
  int a = divided.to, b = divided.from;
  std::vector<int> inner(divided.points.rbegin(), divided.points.rend());
  std::vector<double> fractions;
  for (auto it = divided.fractions.rbegin(); it != divided.fractions.rend(); ++it)
    fractions.push_back(1 - *it);
  for (;;) {
    int side = 0;
    const int g = Macro_With_Side(p, a, b, side);
    if (g == 0) return {};
    if (g == hole_macro)
      return "The strip of macros beyond a side of macro " + std::to_string(hole_macro) +
             " comes back to it; the hole cannot divide it.";
    for (const Strip_Cut& cut : cuts)
      if (cut.macro == g)
        return "Macro " + std::to_string(g) +
               " would be cut into strips twice by the hole's divisions; make the hole in a macro whose "
               "strips of neighbours do not cross.";
    const Macro& macro = p.Macro[g];
    const int r = macro.Corner[(side + 1) % 4 + 1], t = macro.Corner[(side + 2) % 4 + 1];
    // The macro reads a, b, r, t: the opposite side runs from r to t, t next to a.
    const int pa = Point_Of_Node(plan, p, a), pb = Point_Of_Node(plan, p, b);
    const int pr = Point_Of_Node(plan, p, r), pt = Point_Of_Node(plan, p, t);
    std::vector<int> across;  // on t -> r at the fractions of a -> b
    for (double f : fractions)
      across.push_back(plan.Add(plan.points[pt] + f * (plan.points[pr] - plan.points[pt])));
    Strip_Cut cut;
    cut.macro = g;
    std::vector<int> along{pa}, opposite{pt};
    along.insert(along.end(), inner.begin(), inner.end());
    opposite.insert(opposite.end(), across.begin(), across.end());
    along.push_back(pb);
    opposite.push_back(pr);
    for (std::size_t i = 0; i + 1 < along.size(); ++i)
      cut.pieces.push_back({along[i], along[i + 1], opposite[i + 1], opposite[i]});
    cuts.push_back(cut);

    // The opposite side, r -> t, is divided in turn; its neighbour holds it as t -> r.
    Divided_Side next;
    next.from = r;
    next.to = t;
    next.points.assign(across.rbegin(), across.rend());
    for (auto it = fractions.rbegin(); it != fractions.rend(); ++it)
      next.fractions.push_back(1 - *it);
    sides.push_back(next);
    a = t;
    b = r;
    inner = across;
  }
}

// Replaces every side object on a -> b (in either direction) by a chain of copies along the
// points between them, in the object's own direction. An interface, whose first node has the
// smaller X (then Y), stays so: the points run the same way along the line.
template <class Record>
void Divide_Objects(Table<Record>& table, int a, int b, const std::vector<int>& between) {
  const int count = table.count();
  for (int i = 1; i <= count; ++i) {
    Record& record = table[i];
    const int A = record.Node_A, B = record.Node_B;
    if (!((A == a && B == b) || (A == b && B == a))) continue;
    std::vector<int> chain{A};
    if (A == a)
      chain.insert(chain.end(), between.begin(), between.end());
    else
      chain.insert(chain.end(), between.rbegin(), between.rend());
    chain.push_back(B);
    using Node_Type = decltype(record.Node_A);
    const Record model = record;
    record.Node_B = static_cast<Node_Type>(chain[1]);
    for (std::size_t k = 1; k + 1 < chain.size(); ++k) {
      Record piece = model;
      piece.Node_A = static_cast<Node_Type>(chain[k]);
      piece.Node_B = static_cast<Node_Type>(chain[k + 1]);
      table.add(piece);
    }
  }
}

void Divide_Side_Objects(Project& p, int a, int b, const std::vector<int>& between) {
  Divide_Objects(p.Border, a, b, between);
  Divide_Objects(p.Line_T, a, b, between);
  Divide_Objects(p.Line_Support, a, b, between);
  Divide_Objects(p.Line_Load, a, b, between);
  Divide_Objects(p.Interface, a, b, between);
}

// A macro replaced by new ones: the plan of their corners (the replacement's quadrilaterals are
// the plan's), the one that keeps the macro's number, the strips cut beyond its divided sides and
// every side divided on the way.
struct Replacement {
  Plan plan;
  int keep = 0;
  std::vector<Strip_Cut> cuts;
  std::vector<Divided_Side> divided;
  int taken = 0;  // points that took an existing node
};

// Cuts the strips beyond the macro's divided sides, then takes existing nodes for the new points.
std::string Finish_Replacement(const Project& p, int m, const std::array<Divided_Side, 4>& own,
                               Replacement& r) {
  for (const Divided_Side& side : own)
    if (!side.points.empty()) r.divided.push_back(side);
  const std::size_t own_sides = r.divided.size();
  for (std::size_t i = 0; i < own_sides; ++i) {
    const Divided_Side side = r.divided[i];
    std::string message = Cut_Strip(p, r.plan, side, m, r.cuts, r.divided);
    if (!message.empty()) return message;
  }
  for (const Strip_Cut& cut : r.cuts) {
    std::string message = Check_Spacing(p, r.plan, cut.pieces);
    if (!message.empty()) return message;
  }
  r.taken = Take_Existing_Nodes(p, r.plan);
  int pieces = 0;
  for (const Strip_Cut& cut : r.cuts) {
    for (const auto& piece : cut.pieces)
      if (Area(r.plan.Corners(piece)) <= 0)
        return "Macro " + std::to_string(cut.macro) + " cannot be cut into strips at the hole's points.";
    pieces += static_cast<int>(cut.pieces.size()) - 1;
  }
  const int new_nodes = static_cast<int>(r.plan.points.size()) - Existing(r.plan);
  if (!Fits_I16(Node_Count(p) + new_nodes) ||
      !Fits_I16(p.Macro.count() + static_cast<int>(r.plan.quads.size()) - 1 + pieces))
    return "The hole would make more nodes or macros than a project can hold (" +
           std::to_string(Max_I16_Reference) + ").";
  return {};
}

void Apply_Replacement(Project& p, int m, const Replacement& r, Generation_Result& result) {
  const std::vector<int> node = Place_Nodes(p, r.plan, result);
  result.Nodes_Reused += r.taken;
  const Macro model = p.Macro[m];
  for (std::size_t i = 0; i < r.plan.quads.size(); ++i) {
    const Macro piece = Macro_On(model, node, r.plan.quads[i]);
    if (static_cast<int>(i) == r.keep)
      p.Macro[m] = piece;
    else
      p.Macro.add(piece);
  }
  result.Macros_Added += static_cast<int>(r.plan.quads.size()) - 1;
  for (const Strip_Cut& cut : r.cuts) {
    const Macro parent = p.Macro[cut.macro];
    for (std::size_t i = 0; i < cut.pieces.size(); ++i) {
      const Macro piece = Macro_On(parent, node, cut.pieces[i]);
      if (i == 0)
        p.Macro[cut.macro] = piece;
      else
        p.Macro.add(piece);
    }
    result.Macros_Added += static_cast<int>(cut.pieces.size()) - 1;
  }
  result.Macros_Split += static_cast<int>(r.cuts.size());
  for (const Divided_Side& side : r.divided) {
    std::vector<int> between;
    for (int point : side.points)
      between.push_back(node[point]);
    Divide_Side_Objects(p, side.from, side.to, between);
  }
  p.Current_Macro = m;
  p.Mesh_Valid = False_Flag;
}

std::array<Point, 4> Corner_Points(const Project& p, int m) {
  std::array<Point, 4> at{};
  for (int k = 0; k < 4; ++k)
    at[k] = Node_Point(p, p.Macro[m].Corner[k + 1]);
  return at;
}

enum class Hole_Fit { Fits, Refused, Misshapen };

// The hole in macro m: the polygon's corners joined to the macro's corners and, between them, to
// the points where lines from the centre through them meet the macro's sides; rows of macros
// along those lines; the strips beyond. Misshapen when that gives corners outside the bound.
Hole_Fit Plan_Hole(const Project& p, int m, Point centre, double radius, int n, Replacement& r,
                   std::string& message, double& smallest, double& largest) {
  std::array<int, 4> corner{};
  for (int k = 0; k < 4; ++k)
    corner[k] = p.Macro[m].Corner[k + 1];
  const std::array<Point, 4> at = Corner_Points(p, m);
  const double margin = Hole_Margin * radius;
  for (int k = 0; k < 4; ++k)
    if (Left_Distance(at[k], at[(k + 1) % 4], centre) < radius + margin) {
      message = "The circle is not well inside macro " + std::to_string(m) + ": it must keep at least " +
                Length_Text(p, margin) + " (a quarter of its radius) from every side of the macro.";
      return Hole_Fit::Refused;
    }

  // The polygon turned so that its corners lie as close as can be to the directions of the
  // macro's corners from the centre; among equal fits, with a corner at 45 degrees as a circle's.
  const double step = 2 * Pi / n;
  std::array<double, 4> direction{};
  for (int k = 0; k < 4; ++k)
    direction[k] = std::atan2(at[k].y - centre.y, at[k].x - centre.x);
  std::vector<double> offsets{45 * Degree};
  for (double d : direction)
    offsets.push_back(d);
  for (int s = 1; s < 16; ++s)
    offsets.push_back(45 * Degree + step * s / 16);
  double start = 0, best_misfit = std::numeric_limits<double>::infinity();
  for (double offset : offsets) {
    double misfit = 0;
    for (double d : direction) {
      const double t = Turn(offset, d);
      misfit = std::max(misfit, std::fabs(t - step * std::round(t / step)));
    }
    if (misfit < best_misfit - 1e-12) {
      best_misfit = misfit;
      start = offset;
    }
  }
  auto node_angle = [&](int j) { return start + step * j; };
  // The polygon corner each macro corner is joined to.
  std::array<int, 4> joined{};
  for (int k = 0; k < 4; ++k) {
    const double t = Turn(start, direction[k]);
    joined[k] = ((static_cast<int>(std::lround(t / step)) % n) + n) % n;
  }
  int spans = 0;
  for (int k = 0; k < 4; ++k) {
    const int span = ((joined[(k + 1) % 4] - joined[k]) % n + n) % n;
    if (span == 0) {
      message = "Too few segments for a hole in macro " + std::to_string(m) +
                ": two of its corners would be joined to one corner of the hole.";
      return Hole_Fit::Refused;
    }
    spans += span;
  }
  if (spans != n) {
    message = "Macro " + std::to_string(m) + " is too irregular round the circle for a hole.";
    return Hole_Fit::Refused;
  }

  Plan& plan = r.plan;
  std::vector<int> outer(static_cast<std::size_t>(n), -1);
  std::array<Divided_Side, 4> own{};
  for (int k = 0; k < 4; ++k)
    outer[joined[k]] = plan.Add(at[k], corner[k]);
  for (int k = 0; k < 4; ++k) {
    Divided_Side& side = own[k];
    const int next = (k + 1) % 4;
    side.from = corner[k];
    side.to = corner[next];
    for (int j = (joined[k] + 1) % n; j != joined[next]; j = (j + 1) % n) {
      double f = 0;
      if (!Ray_Meets(centre, node_angle(j), at[k], at[next], f) || f <= 0 || f >= 1) {
        message = "Macro " + std::to_string(m) + " is too irregular round the circle for a hole.";
        return Hole_Fit::Refused;
      }
      outer[j] = plan.Add(at[k] + f * (at[next] - at[k]));
      side.points.push_back(outer[j]);
      side.fractions.push_back(f);
    }
  }

  // Rows of macros along the lines from each polygon corner to its point on the macro's edge,
  // their distances from the centre growing by a constant factor.
  double mean_distance = 0;
  for (int j = 0; j < n; ++j)
    mean_distance += Length(plan.points[outer[j]] - centre);
  mean_distance /= n;
  const int rows = Ring_Count(radius, mean_distance, n);
  std::vector<int> row(static_cast<std::size_t>(n)), next_row(row.size());
  for (int j = 0; j < n; ++j)
    row[j] = plan.Add(On_Circle(centre, radius, node_angle(j)));
  for (int level = 1; level <= rows; ++level) {
    for (int j = 0; j < n; ++j) {
      if (level == rows) {
        next_row[j] = outer[j];
        continue;
      }
      const Point inner = On_Circle(centre, radius, node_angle(j));
      const Point edge = plan.points[outer[j]];
      const double reach = Length(edge - centre) / radius;
      const double w = (std::pow(reach, static_cast<double>(level) / rows) - 1) / (reach - 1);
      next_row[j] = plan.Add(inner + w * (edge - inner));
    }
    Ring_Between(plan, row, next_row);
    row = next_row;
  }
  r.keep = 0;
  auto misshapen = [&] {
    message = "Macro " + std::to_string(m) +
              " is not a good shape round this circle: the macros round the hole would have corners of " +
              Angle_Text(smallest < Min_Macro_Angle ? smallest : largest) + " degrees, where " +
              Angle_Text(Min_Macro_Angle) + " to " + Angle_Text(Max_Macro_Angle) +
              " are needed. Place the hole nearer the middle of the macro.";
  };
  // The shape first, as the layout gives it: a long macro is then worth cutting to size.
  if (!Check_Shapes(plan, smallest, largest).empty()) {
    misshapen();
    return Hole_Fit::Misshapen;
  }
  message = Check_Spacing(p, plan, plan.quads);
  if (!message.empty()) return Hole_Fit::Refused;
  message = Finish_Replacement(p, m, own, r);
  if (!message.empty()) return Hole_Fit::Refused;
  // Again with the nodes taken.
  if (!Check_Shapes(plan, smallest, largest).empty()) {
    misshapen();
    return Hole_Fit::Refused;
  }
  return Hole_Fit::Fits;
}

// A macro much longer than wide is cut across its length into a block about as long as wide round
// the centre and one or two end blocks, so that the macros round a hole in the block are well
// shaped. False when the macro is not long enough to need it (or the cut would leave the block the
// whole macro); `message` tells a refusal of the cut itself.
bool Plan_Ends(const Project& p, int m, Point centre, Replacement& r, std::string& message) {
  std::array<int, 4> corner{};
  for (int k = 0; k < 4; ++k)
    corner[k] = p.Macro[m].Corner[k + 1];
  const std::array<Point, 4> at = Corner_Points(p, m);
  auto side = [&](int k) { return Length(at[(k + 1) % 4] - at[k]); };
  const double along_0 = (side(0) + side(2)) / 2, along_1 = (side(1) + side(3)) / 2;
  // Named so that the length runs from a to b (and from d to c).
  const int s = along_0 >= along_1 ? 0 : 1;
  const double length = std::max(along_0, along_1), width = std::min(along_0, along_1);
  if (length < 1.2 * width) return false;
  auto idx = [&](int k) { return (k + s) % 4; };
  const Point A = at[idx(0)], B = at[idx(1)], C = at[idx(2)], D = at[idx(3)];
  auto from = [&](double u) { return A + u * (B - A); };
  auto to = [&](double u) { return D + u * (C - D); };
  // The cross line through the centre, by halving.
  double lo = 0, hi = 1;
  for (int i = 0; i < 60; ++i) {
    const double u = (lo + hi) / 2;
    (Cross(to(u) - from(u), centre - from(u)) < 0 ? lo : hi) = u;
  }
  const double middle = (lo + hi) / 2, share = width / length;
  double u1 = middle - share / 2, u2 = middle + share / 2;
  // An end block thinner than about a third of the block is not worth its own macro.
  if (u1 < 0.35 * share) u1 = 0;
  if (u2 > 1 - 0.35 * share) u2 = 1;
  if (u1 == 0 && u2 == 1) return false;

  Plan& plan = r.plan;
  const int a = plan.Add(A, corner[idx(0)]), b = plan.Add(B, corner[idx(1)]);
  const int c = plan.Add(C, corner[idx(2)]), d = plan.Add(D, corner[idx(3)]);
  std::array<Divided_Side, 4> own{};
  Divided_Side& ab = own[0];
  Divided_Side& cd = own[1];
  ab.from = corner[idx(0)];
  ab.to = corner[idx(1)];
  cd.from = corner[idx(2)];
  cd.to = corner[idx(3)];
  int s1 = a, t1 = d, s2 = b, t2 = c;
  if (u1 > 0) {
    s1 = plan.Add(from(u1));
    t1 = plan.Add(to(u1));
    plan.quads.push_back({a, s1, t1, d});
  }
  if (u2 < 1) {
    s2 = plan.Add(from(u2));
    t2 = plan.Add(to(u2));
  }
  r.keep = static_cast<int>(plan.quads.size());
  plan.quads.push_back({s1, s2, t2, t1});
  if (u2 < 1) plan.quads.push_back({s2, b, c, t2});
  for (const auto& [u, sp, tp] : {std::tuple{u1, s1, t1}, std::tuple{u2, s2, t2}}) {
    if (u <= 0 || u >= 1) continue;
    ab.points.push_back(sp);
    ab.fractions.push_back(u);
    cd.points.insert(cd.points.begin(), tp);
    cd.fractions.insert(cd.fractions.begin(), 1 - u);
  }
  message = Check_Spacing(p, plan, plan.quads);
  if (message.empty()) message = Finish_Replacement(p, m, own, r);
  return message.empty();
}

}  // namespace

std::string Check_Circle_Request(const Project& p, const Circle_Request& c) {
  if (!(c.Radius > 0)) return "The radius must be greater than 0.";
  if (!(c.Inner_Radius >= 0)) return "The inner radius must not be below 0.";
  if (c.Inner_Radius >= c.Radius) return "The inner radius must be smaller than the outer radius.";
  if (c.Segments < Min_Circle_Segments)
    return "At least " + std::to_string(Min_Circle_Segments) + " segments are needed round the circle.";
  if (c.Segments > Max_Circle_Segments)
    return "At most " + std::to_string(Max_Circle_Segments) + " segments are possible round the circle.";
  if (c.Inner_Radius == 0 && c.Segments % 4 != 0)
    return "A full disc needs a number of segments that is a multiple of 4.";
  for (const Material& m : p.Material)
    if (m.Name == c.Material) {
      if (!Is_Plain_Material(m))
        return "Material \"" + c.Material + "\" is an interface or reinforcement material.";
      return {};
    }
  return "Material \"" + c.Material + "\" is not in the material database.";
}

Generation_Result Generate_Circle(Project& p, Design_Undo& undo, const Circle_Request& c) {
  Generation_Result result;
  result.Message = Check_Circle_Request(p, c);
  if (!result.Message.empty()) return result;

  Plan plan;
  const Point centre{c.X, c.Y};
  if (c.Inner_Radius > 0)
    Plan_Ring(plan, centre, c.Inner_Radius, c.Radius, c.Segments);
  else
    Plan_Disc(plan, centre, c.Radius, c.Segments);

  result.Message = Check_Spacing(p, plan, plan.quads);
  if (!result.Message.empty()) return result;
  const int taken = Take_Existing_Nodes(p, plan);
  result.Message = Check_Shapes(plan, result.Smallest_Angle, result.Largest_Angle);
  if (!result.Message.empty()) return result;
  if (const int m = Overlapped_Macro(p, plan); m != 0) {
    result.Message = "The circle overlaps macro " + std::to_string(m) + ".";
    return result;
  }
  const int new_nodes = static_cast<int>(plan.points.size()) - Existing(plan);
  if (!Fits_I16(Node_Count(p) + new_nodes) ||
      !Fits_I16(p.Macro.count() + static_cast<int>(plan.quads.size()))) {
    result.Message = "The circle would make more nodes or macros than a project can hold (" +
                     std::to_string(Max_I16_Reference) + ").";
    return result;
  }

  Push_Undo(undo, p);
  const std::vector<int> node = Place_Nodes(p, plan, result);
  Macro model;
  static_cast<Macro_Values&>(model) = p.Macro_Defaults;
  model.Material = c.Material;
  const int first = p.Macro.count() + 1;
  for (const auto& quad : plan.quads)
    p.Macro.add(Macro_On(model, node, quad));
  result.Macros_Added = static_cast<int>(plan.quads.size());
  result.Nodes_Reused = taken;
  p.Current_Macro = first;
  p.Mesh_Valid = False_Flag;
  result.Done = true;
  return result;
}

Generation_Result Generate_Hole(Project& p, Design_Undo& undo, const Hole_Request& h) {
  Generation_Result result;
  auto refuse = [&](std::string message) {
    result.Message = std::move(message);
    return result;
  };
  const int m = h.Macro;
  if (!p.Macro.valid(m)) return refuse("Macro " + std::to_string(m) + " does not exist.");
  if (!(h.Radius > 0)) return refuse("The radius must be greater than 0.");
  if (h.Segments < Min_Circle_Segments)
    return refuse("At least " + std::to_string(Min_Circle_Segments) + " segments are needed round the hole.");
  if (h.Segments > Max_Circle_Segments)
    return refuse("At most " + std::to_string(Max_Circle_Segments) +
                  " segments are possible round the hole.");
  for (int k = 1; k <= 4; ++k)
    if (!p.Node_X.valid(p.Macro[m].Corner[k]))
      return refuse("Macro " + std::to_string(m) + " refers to a node that does not exist.");
  const std::array<Point, 4> at = Corner_Points(p, m);
  const Quad outline{at[0], at[1], at[2], at[3]};
  for (int k = 0; k < 4; ++k)
    if (Area(outline) <= 0 || Corner_Angle(outline, k) >= 180)
      return refuse("Macro " + std::to_string(m) + " is not convex; a hole needs a convex macro.");
  const Point centre{h.X, h.Y};
  for (int c = 1; c <= p.Circuit.count(); ++c)
    for (const std::int16_t n : p.Circuit[c].Pipe_Node)
      if (p.Node_X.valid(n) && Length(Node_Point(p, n) - centre) < h.Radius)
        return refuse("Cooling circuit " + std::to_string(c) + " has a pipe inside the hole.");

  Replacement hole;
  std::string message;
  const Hole_Fit fit = Plan_Hole(p, m, centre, h.Radius, h.Segments, hole, message, result.Smallest_Angle,
                                 result.Largest_Angle);
  if (fit == Hole_Fit::Fits) {
    Push_Undo(undo, p);
    Apply_Replacement(p, m, hole, result);
    result.Done = true;
    return result;
  }
  if (fit == Hole_Fit::Misshapen) {
    // A long macro: the hole goes into a block about as long as wide cut from it.
    Replacement ends;
    std::string cut_message;
    if (Plan_Ends(p, m, centre, ends, cut_message)) {
      Project work = p;
      Generation_Result made;
      Apply_Replacement(work, m, ends, made);
      Replacement in_block;
      std::string block_message;
      if (Plan_Hole(work, m, centre, h.Radius, h.Segments, in_block, block_message, made.Smallest_Angle,
                    made.Largest_Angle) == Hole_Fit::Fits) {
        Push_Undo(undo, p);
        Apply_Replacement(work, m, in_block, made);
        p = std::move(work);
        made.Done = true;
        return made;
      }
      if (!block_message.empty()) message = block_message;
    } else if (!cut_message.empty()) {
      message = cut_message;
    }
  }
  return refuse(message);
}

}  // namespace pvx
