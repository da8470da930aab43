#include "analysis/mechanics/bar_element.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <vector>

#include "analysis/mechanics/mechanical_state.h"

namespace pvx {

namespace {

int Reinforcement_Material(const Project& p, const std::string& name) {
  for (int i = 1; i <= p.Material.count(); ++i)
    if (p.Material[i].Is_Reinforcement && p.Material[i].Name == name) return i;
  return 0;
}

double Cross(double ax, double ay, double bx, double by) {
  return ax * by - ay * bx;
}

struct Box {
  double x0, y0, x1, y1;
};

Box Box_Of(const Project& p, const Mesh_Element& e) {
  Box b{1e300, 1e300, -1e300, -1e300};
  for (int c = 1; c <= 4; ++c) {
    const Mesh_Node& n = p.Mesh_Node[e.Corner[c]];
    b.x0 = std::min(b.x0, n.X), b.y0 = std::min(b.y0, n.Y);
    b.x1 = std::max(b.x1, n.X), b.y1 = std::max(b.y1, n.Y);
  }
  return b;
}

bool Elements_Valid(const Project& p, const Mesh_Element& e) {
  for (int c = 1; c <= 4; ++c)
    if (!p.Mesh_Node.valid(e.Corner[c])) return false;
  return true;
}

// True when the point lies in the element or on its outline within the tolerance: on each side it
// is not further than that outside. The elements of a strip-cut mesh are convex.
bool Holds(const Project& p, const Mesh_Element& e, double x, double y) {
  double area = 0;
  for (int c = 1; c <= 4; ++c) {
    const Mesh_Node& a = p.Mesh_Node[e.Corner[c]];
    const Mesh_Node& b = p.Mesh_Node[e.Corner[c % 4 + 1]];
    area += Cross(a.X, a.Y, b.X, b.Y);
  }
  const double orientation = area >= 0 ? 1.0 : -1.0;
  for (int c = 1; c <= 4; ++c) {
    const Mesh_Node& a = p.Mesh_Node[e.Corner[c]];
    const Mesh_Node& b = p.Mesh_Node[e.Corner[c % 4 + 1]];
    const double length = std::hypot(b.X - a.X, b.Y - a.Y);
    if (length == 0) continue;
    const double distance_inside = orientation * Cross(b.X - a.X, b.Y - a.Y, x - a.X, y - a.Y) / length;
    if (distance_inside < -Bar_Tolerance) return false;
  }
  return true;
}

// Bar ends by cells of the tolerance, so that ends that meet are found without comparing all.
class End_Index {
 public:
  // The node of an end within the tolerance in x and in y of (x, y), the lowest of them; 0 if none.
  int Find(double x, double y) const {
    const long long cx = Cell(x), cy = Cell(y);
    int best = 0;
    for (long long i = cx - 1; i <= cx + 1; ++i)
      for (long long j = cy - 1; j <= cy + 1; ++j) {
        const auto it = cells_.find(Key(i, j));
        if (it == cells_.end()) continue;
        for (const Entry& e : it->second)
          if (std::fabs(e.x - x) <= Bar_Tolerance && std::fabs(e.y - y) <= Bar_Tolerance &&
              (best == 0 || e.node < best))
            best = e.node;
      }
    return best;
  }
  void Add(double x, double y, int node) { cells_[Key(Cell(x), Cell(y))].push_back({x, y, node}); }

 private:
  struct Entry {
    double x, y;
    int node;
  };
  static long long Cell(double v) { return static_cast<long long>(std::floor(v / Bar_Tolerance)); }
  static std::uint64_t Key(long long i, long long j) {
    return (static_cast<std::uint64_t>(i) << 32) ^ static_cast<std::uint64_t>(j & 0xffffffffLL);
  }
  std::unordered_map<std::uint64_t, std::vector<Entry>> cells_;
};

constexpr int Max_Bar_Elements = Max_Mesh_Rebars;

}  // namespace

void Sort_Values(Table<double>& values, int n) {
  for (int i = 2; i <= n; ++i) {
    const double v = values[i];
    int low = 1, high = i;  // the place of v among 1..i-1: the first entry above it
    while (low < high) {
      const int mid = (low + high) / 2;
      if (values[mid] <= v)
        low = mid + 1;
      else
        high = mid;
    }
    for (int k = i; k > low; --k)
      values[k] = values[k - 1];
    values[low] = v;
  }
}

void Natural_Coordinates(const Project& p, const Mesh_Element& e, double x, double y, double& xi,
                         double& eta) {
  double cx[4], cy[4];
  for (int c = 0; c < 4; ++c) {
    cx[c] = p.Mesh_Node[e.Corner[c + 1]].X;
    cy[c] = p.Mesh_Node[e.Corner[c + 1]].Y;
  }
  auto distance = [&](double a, double b) {
    const double n[4] = {(1 - a) * (1 - b) / 4, (1 + a) * (1 - b) / 4, (1 + a) * (1 + b) / 4,
                         (1 - a) * (1 + b) / 4};
    double mx = 0, my = 0;
    for (int c = 0; c < 4; ++c)
      mx += n[c] * cx[c], my += n[c] * cy[c];
    return std::fabs(mx - x) + std::fabs(my - y);
  };
  xi = eta = 0;
  double step = 0.1;
  for (int round = 0; round < 12; ++round) {
    double best = 1e25, best_xi = xi, best_eta = eta;
    for (int i = -10; i <= 10; ++i)
      for (int j = -10; j <= 10; ++j) {
        const double a = xi + i * step, b = eta + j * step;
        const double d = distance(a, b);
        if (d < best) best = d, best_xi = a, best_eta = b;
      }
    xi = best_xi, eta = best_eta;
    if (best <= 0.01) break;
    step /= 10;
  }
}

bool Cut_Reinforcement(const Project& p, int first_node, Table<Bar_Element>& bars, int& new_nodes,
                       std::string& message) {
  bars.clear();
  new_nodes = 0;
  const int elements = p.Mesh_Element.count();
  std::vector<Box> boxes(static_cast<std::size_t>(elements) + 1, Box{0, 0, -1, -1});
  for (int e = 1; e <= elements; ++e)
    if (Elements_Valid(p, p.Mesh_Element[e]))
      boxes[static_cast<std::size_t>(e)] = Box_Of(p, p.Mesh_Element[e]);
  End_Index ends;
  int pieces = 0;
  struct Hit {
    double at;
    int element;
  };
  for (int r = 1; r <= p.Rebar.count(); ++r) {
    const Rebar& bar = p.Rebar[r];
    const double dx = bar.X2 - bar.X1, dy = bar.Y2 - bar.Y1;
    const double length = std::hypot(dx, dy);
    if (!(length > Bar_Tolerance)) continue;
    const Box reach{std::min(bar.X1, bar.X2) - Bar_Tolerance, std::min(bar.Y1, bar.Y2) - Bar_Tolerance,
                    std::max(bar.X1, bar.X2) + Bar_Tolerance, std::max(bar.Y1, bar.Y2) + Bar_Tolerance};
    // Where the bar crosses a side, as a distance from end 1, and the element of that side.
    std::vector<Hit> hits;
    for (int e = 1; e <= elements; ++e) {
      const Box& b = boxes[static_cast<std::size_t>(e)];
      if (b.x1 < reach.x0 || b.x0 > reach.x1 || b.y1 < reach.y0 || b.y0 > reach.y1) continue;
      const Mesh_Element& element = p.Mesh_Element[e];
      for (int c = 1; c <= 4; ++c) {
        const Mesh_Node& a = p.Mesh_Node[element.Corner[c]];
        const Mesh_Node& q = p.Mesh_Node[element.Corner[c % 4 + 1]];
        const double ex = q.X - a.X, ey = q.Y - a.Y;
        const double side = std::hypot(ex, ey);
        const double denominator = Cross(dx, dy, ex, ey);
        // A side along the bar is crossed where its neighbours are.
        if (side == 0 || std::fabs(denominator) <= 1e-12 * length * side) continue;
        const double s = Cross(a.X - bar.X1, a.Y - bar.Y1, ex, ey) / denominator;
        const double u = Cross(a.X - bar.X1, a.Y - bar.Y1, dx, dy) / denominator;
        const double slack = Bar_Tolerance / side;
        if (s < 0 || s > 1 || u < -slack || u > 1 + slack) continue;
        hits.push_back({s * length, e});
      }
    }
    Table<double> at;
    at.add(0.0);
    at.add(length);
    for (const Hit& h : hits)
      at.add(h.at);
    Sort_Values(at, at.count());
    std::vector<double> kept{at[1]};
    for (int i = 2; i <= at.count(); ++i)
      if (at[i] - kept.back() >= Bar_Tolerance) kept.push_back(at[i]);
    // The bar keeps its length: a crossing just before the end gives way to the end.
    kept.back() = length;
    if (kept.size() < 2) continue;

    const int material = Reinforcement_Material(p, bar.Material);
    const double c = dx / length, s = dy / length;
    for (std::size_t k = 0; k + 1 < kept.size(); ++k) {
      if (++pieces > Max_Bar_Elements) {
        message =
            "The reinforcement bars cut at the mesh give more than " + std::to_string(Max_Bar_Elements) +
            " bar elements, the most the analysis can hold (bar " + std::to_string(r) +
            " is the first that does not fit). Use fewer or shorter bars, or a coarser mesh where they run.";
        bars.clear();
        return false;
      }
      Bar_Element b;
      b.Bar = r;
      b.Material = material;
      b.Diameter = bar.Diameter;
      b.Transverse = bar.Lateral_Coefficient;
      b.From = bar.From;
      b.Until = bar.Until;
      b.X1 = bar.X1 + c * kept[k], b.Y1 = bar.Y1 + s * kept[k];
      b.X2 = bar.X1 + c * kept[k + 1], b.Y2 = bar.Y1 + s * kept[k + 1];
      if (k + 1 == kept.size() - 1) b.X2 = bar.X2, b.Y2 = bar.Y2;
      b.Length = std::hypot(b.X2 - b.X1, b.Y2 - b.Y1);
      b.Cos = c, b.Sin = s;
      b.Area = 0.785398163 * b.Diameter * b.Diameter;
      b.Perimeter = 3.141592654 * b.Diameter;

      // The host: an element crossed at either end of the piece that holds its middle, else the
      // first element that does.
      const double mx = (b.X1 + b.X2) / 2, my = (b.Y1 + b.Y2) / 2;
      for (const Hit& h : hits)
        if ((std::fabs(h.at - kept[k]) < Bar_Tolerance || std::fabs(h.at - kept[k + 1]) < Bar_Tolerance) &&
            Holds(p, p.Mesh_Element[h.element], mx, my)) {
          b.Host = h.element;
          break;
        }
      for (int e = 1; e <= elements && b.Host == 0; ++e) {
        const Box& box = boxes[static_cast<std::size_t>(e)];
        if (mx < box.x0 - Bar_Tolerance || mx > box.x1 + Bar_Tolerance || my < box.y0 - Bar_Tolerance ||
            my > box.y1 + Bar_Tolerance)
          continue;
        if (Holds(p, p.Mesh_Element[e], mx, my)) b.Host = e;
      }
      if (b.Host != 0) {
        const Mesh_Element& host = p.Mesh_Element[b.Host];
        for (int end = 0; end < 2; ++end) {
          Natural_Coordinates(p, host, end == 0 ? b.X1 : b.X2, end == 0 ? b.Y1 : b.Y2, b.Xi[end], b.Eta[end]);
          const double xi = b.Xi[end], eta = b.Eta[end];
          b.N[end][0] = (1 - xi) * (1 - eta) / 4;
          b.N[end][1] = (1 + xi) * (1 - eta) / 4;
          b.N[end][2] = (1 + xi) * (1 + eta) / 4;
          b.N[end][3] = (1 - xi) * (1 + eta) / 4;
        }
      }
      for (int end = 0; end < 2; ++end) {
        const double x = end == 0 ? b.X1 : b.X2, y = end == 0 ? b.Y1 : b.Y2;
        int node = ends.Find(x, y);
        if (node == 0) {
          node = first_node + new_nodes++;
          ends.Add(x, y, node);
        }
        b.Node[end] = node;
      }
      bars.add(b);
    }
  }
  return true;
}

bool Set_Reinforcement_Elements(const Project& p, Mechanical_State& m, std::string& message) {
  int new_nodes = 0;
  if (!Cut_Reinforcement(p, p.Mesh_Node.count() + m.Doubled_Nodes + 1, m.Bars, new_nodes, message))
    return false;
  m.Doubled_Nodes += new_nodes;
  for (Bar_Element& b : m.Bars) {
    for (int end = 0; end < 2; ++end) {
      b.Dof[2 * end + 1] = 2 * b.Node[end] - 1;
      b.Dof[2 * end + 2] = 2 * b.Node[end];
    }
    for (int i = 1; i <= 8; ++i)
      b.Dof[4 + i] = b.Bonded() ? m.Element_Dof[b.Host][i] : 0;
    b.Dowel_Stiffness = b.Material != 0 ? p.Material[b.Material].Steel_Const_1 : 0.0;
    Set_Bar_Matrices(b);
  }
  return true;
}

void Set_Bar_Matrices(Bar_Element& b) {
  const double c = b.Cos, s = b.Sin;
  const double axial[4] = {-c, -s, c, s}, transverse[4] = {s, -c, -s, c};
  for (int j = 0; j < 4; ++j)
    b.Axial[0][j] = axial[j], b.Axial[1][j] = transverse[j];
  for (Bar_End_State& end : b.End)
    std::fill(&end.Operator[0][0], &end.Operator[0][0] + 20, 0.0);
  if (!b.Bonded()) return;
  for (int k = 0; k < 2; ++k) {
    double(&B)[2][10] = b.End[k].Operator;
    // The bar's node along and across the bar, less the host at the same point.
    B[0][0] = c, B[0][1] = s;
    B[1][0] = -s, B[1][1] = c;
    for (int i = 0; i < 4; ++i) {
      const double n = b.N[k][i];
      B[0][2 + 2 * i] = -n * c, B[0][3 + 2 * i] = -n * s;
      B[1][2 + 2 * i] = n * s, B[1][3 + 2 * i] = -n * c;
    }
  }
}

namespace {

// The column of the bar element's equations that column j of end k's slip operator stands for.
int End_Column(int k, int j) {
  return j < 2 ? 2 * k + j : 4 + (j - 2);
}

}  // namespace

void Bar_Stiffness(const Bar_Element& b, double K[12][12]) {
  std::fill(&K[0][0], &K[0][0] + 144, 0.0);
  const double k_axial = b.Steel.Tangent * b.Area / b.Length;
  const double k_across = Bar_Transverse_Stiffness * b.Area * b.Transverse / b.Length;
  for (int i = 0; i < 4; ++i)
    for (int j = 0; j < 4; ++j)
      K[i][j] += b.Axial[0][i] * k_axial * b.Axial[0][j] + b.Axial[1][i] * k_across * b.Axial[1][j];
  if (!b.Bonded()) return;
  for (int k = 0; k < 2; ++k) {
    const Bar_End_State& end = b.End[k];
    const double along = b.Perimeter * end.Bond.Tangent * b.Length / 2;
    const double across = b.Diameter * b.Dowel_Stiffness * b.Length / 2;
    for (int i = 0; i < 10; ++i)
      for (int j = 0; j < 10; ++j)
        K[End_Column(k, i)][End_Column(k, j)] += end.Operator[0][i] * along * end.Operator[0][j] +
                                                 end.Operator[1][i] * across * end.Operator[1][j];
  }
}

namespace {

double Row_Times(const double (&row)[4], const double u[12]) {
  return row[0] * u[0] + row[1] * u[1] + row[2] * u[2] + row[3] * u[3];
}
double End_Row_Times(const double (&row)[10], int k, const double u[12]) {
  double sum = 0;
  for (int j = 0; j < 10; ++j)
    sum += row[j] * u[End_Column(k, j)];
  return sum;
}

}  // namespace

void Start_Bar(Bar_Element& b, const double u[12]) {
  b.Reference_Axial = Row_Times(b.Axial[0], u) / b.Length;
  b.Reference_Transverse = Row_Times(b.Axial[1], u) / b.Length;
  for (int k = 0; k < 2 && b.Bonded(); ++k) {
    b.End[k].Reference_Slip = End_Row_Times(b.End[k].Operator[0], k, u);
    b.End[k].Reference_Dowel = End_Row_Times(b.End[k].Operator[1], k, u);
  }
  b.Started = true;
}

void Bar_Stresses(const Material& material, Bar_Element& b, const double u[12], const double T_start[4],
                  const double T_end[4], double F[12]) {
  std::fill(F, F + 12, 0.0);
  b.Axial_Strain = Row_Times(b.Axial[0], u) / b.Length - b.Reference_Axial;
  b.Transverse_Strain = Row_Times(b.Axial[1], u) / b.Length - b.Reference_Transverse;
  b.Free_Strain = b.Free_Strain_Start;
  if (b.Bonded()) {
    const double alpha = material.Steel_Dilatation.Value.empty() ? 0.0 : material.Steel_Dilatation.Value[1];
    double change = 0;
    for (int i = 0; i < 4; ++i)
      change += (b.N[0][i] + b.N[1][i]) / 2 * (T_end[i] - T_start[i]);
    b.Free_Strain += alpha * change;
  }
  b.Mechanical_Strain = b.Axial_Strain - b.Free_Strain;
  Bar_Steel_Stress(material, b.Mechanical_Strain, b.Steel);
  const double axial = b.Area * b.Steel.Stress;
  const double across = Bar_Transverse_Stiffness * b.Transverse * b.Area * b.Transverse_Strain;
  for (int i = 0; i < 4; ++i)
    F[i] += b.Axial[0][i] * axial + b.Axial[1][i] * across;
  if (!b.Bonded()) return;
  for (int k = 0; k < 2; ++k) {
    Bar_End_State& end = b.End[k];
    end.Slip = End_Row_Times(end.Operator[0], k, u) - end.Reference_Slip;
    end.Dowel = End_Row_Times(end.Operator[1], k, u) - end.Reference_Dowel;
    Bar_Bond_Stress(material, end.Slip, end.Bond);
    end.Dowel_Stress = b.Dowel_Stiffness * end.Dowel;
    const double along = b.Perimeter * end.Bond.Stress * b.Length / 2;
    const double dowel = b.Diameter * end.Dowel_Stress * b.Length / 2;
    for (int j = 0; j < 10; ++j)
      F[End_Column(k, j)] += end.Operator[0][j] * along + end.Operator[1][j] * dowel;
  }
}

void Roll_Bar_Element(Bar_Element& b) {
  Roll_Bar_State(b.Steel);
  Roll_Bar_State(b.End[0].Bond);
  Roll_Bar_State(b.End[1].Bond);
  b.Free_Strain_Start = b.Free_Strain;
}

Rebar Mesh_Rebar_Of(const Project& p, const Bar_Element& b) {
  Rebar r;
  if (p.Rebar.valid(b.Bar)) r = p.Rebar[b.Bar];
  r.Material_Number = static_cast<std::int16_t>(b.Material);
  r.Active = As_Flag(b.Material != 0);
  r.Diameter = b.Diameter;
  r.Lateral_Coefficient = b.Transverse;
  r.X1 = b.X1, r.Y1 = b.Y1, r.X2 = b.X2, r.Y2 = b.Y2;
  r.From = b.From, r.Until = b.Until;
  r.Length = b.Length;
  r.Direction_Cos = b.Cos, r.Direction_Sin = b.Sin;
  r.Dof = b.Dof;
  r.Element_Number = b.Host;
  for (int i = 1; i <= 4; ++i) {
    r.Node_Factor_A[i] = b.N[0][i - 1];
    r.Node_Factor_B[i] = b.N[1][i - 1];
  }
  return r;
}

}  // namespace pvx
