#include "analysis/mechanics/assembly.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "analysis/mechanics/cracking.h"
#include "analysis/mechanics/element.h"
#include "analysis/mechanics/point_law.h"
#include "analysis/thermal.h"
#include "app/prescribed_data.h"
#include "material/properties.h"

namespace pvx {

namespace {

// A property at a point; a table the material does not fill reads as 0.
double Property(const Property_Table& table, double T, double M) {
  return table.Value.empty() ? 0.0 : Table_Value(table, T, M);
}

constexpr unsigned Element_Factor_Start = 20261124;

// The places of an element's unknowns: its corners, then the out-of-plane unknowns.
void Element_Places(const Mechanical_State& m, int element, int dofs, int places[Max_Element_Dofs]) {
  for (int i = 1; i <= Element_Corner_Dofs; ++i)
    places[i - 1] = Place(m, m.Element_Dof[element][i]);
  for (int i = Element_Corner_Dofs; i < dofs; ++i)
    places[i] = m.Equations - (dofs - 1 - i);
}

// The material of an element that takes part in the mechanical analysis at the mid-step time, or
// null.
const Material* Active_Material(const Project& p, const Run_State& run, int element) {
  if (!Element_Active(p.Mesh_Element[element], run.Mid_Step_Time)) return nullptr;
  return Mechanical_Material(p, run, element);
}

// Nodal values of an element's corners from a field by thermal equation.
void Corner_Values(const Run_State& run, const Mesh_Element& e, const Table<double>& field, double v[4]) {
  for (int n = 0; n < 4; ++n)
    v[n] = field[run.Numbering.Node_Equation[e.Corner[n + 1]]];
}

double Mean_Maturity(const Material& material, const Point_State& s) {
  return (Mechanical_Maturity(material, s, false) + Mechanical_Maturity(material, s, true)) / 2;
}

// The temperatures and humidities of an element's corners at the start and the end of the step.
struct Corner_Fields {
  double T0[4], T1[4], H0[4], H1[4];
};
Corner_Fields Corner_Fields_Of(const Run_State& run, const Mesh_Element& element) {
  Corner_Fields f;
  Corner_Values(run, element, run.Temperature_Old, f.T0);
  Corner_Values(run, element, run.Temperature_New, f.T1);
  Corner_Values(run, element, run.Moisture_Old, f.H0);
  Corner_Values(run, element, run.Moisture_New, f.H1);
  return f;
}

// What the law of point k is told: the means and changes over the step at the point's own corner,
// the maturity of the point and the properties there. Humidity enters the creep laws as the size of
// its mean.
Point_Conditions Conditions_Of(const Material& material, const Run_State& run, const Corner_Fields& f,
                               int element, int k, double dt, bool plane_stress, const Strain_Operator& B) {
  Point_Conditions c;
  const int i = k - 1;
  c.T = (f.T0[i] + f.T1[i]) / 2;
  c.M = Mean_Maturity(material, Point(run, element, k));
  c.E = Property(material.E, c.T, c.M);
  c.Nu = Property(material.Nu, c.T, c.M);
  c.dt = dt;
  c.H = std::fabs((f.H0[i] + f.H1[i]) / 2);
  c.dT = std::fabs(f.T1[i] - f.T0[i]);
  c.dH = std::fabs(f.H1[i] - f.H0[i]);
  c.Plane_Stress = plane_stress;
  c.Band = 2 * std::sqrt(std::fabs(B.Jacobian));
  c.Volume_Factor = run.Mechanics.Volume_Factor[element];
  return c;
}

// A bar element takes part while its window is open and, bonded, while its host does.
bool Bar_In_Play(const Project& p, const Run_State& run, const Bar_Element& b) {
  if (b.Material == 0 || !(b.From <= run.Mid_Step_Time && run.Mid_Step_Time < b.Until)) return false;
  return !b.Bonded() || Active_Material(p, run, b.Host) != nullptr;
}

template <class Record>
void Places_Of(const Mechanical_State& m, const Record& r, int count, int* places) {
  for (int i = 0; i < count; ++i)
    places[i] = Place(m, r.Dof[i + 1]);
}

// Adds a square block over places to the upper profile.
template <int N>
void Add_Block(Mechanical_State& m, const int* places, int count, const double (&K)[N][N]) {
  for (int i = 0; i < count; ++i)
    for (int j = 0; j < count; ++j)
      if (places[i] <= places[j]) m.Matrix[Profile_Entry(m, places[i], places[j])] += K[i][j];
}

// ---- Numbering ------------------------------------------------------------------------------------

// Each list ordered by ascending degree of its entries: a selection sort in which the first of equal
// degrees wins, so that the numbering, and the rounding of every result with it, does not depend
// on the sort's library.
void Sort_By_Degree(std::vector<std::vector<std::int32_t>>& adjacency) {
  auto degree = [&](int q) { return static_cast<int>(adjacency[static_cast<std::size_t>(q)].size()); };
  for (auto& list : adjacency) {
    for (std::size_t place = 0; place + 1 < list.size(); ++place) {
      int best = 1000000;
      std::size_t best_at = place;
      for (std::size_t k = place; k < list.size(); ++k)
        if (degree(list[k]) < best) {
          best = degree(list[k]);
          best_at = k;
        }
      std::swap(list[place], list[best_at]);
    }
  }
}

// Cuthill-McKee from equation 1, reversed: the place of every equation. Where the queue runs dry
// the lowest unnumbered equation starts the next block.
std::vector<std::int32_t> Reversed_Cuthill_McKee(const std::vector<std::vector<std::int32_t>>& adjacency,
                                                 int n) {
  std::vector<std::int32_t> number(static_cast<std::size_t>(n) + 1, 0);
  if (n == 0) return number;
  std::vector<std::int32_t> queue;
  queue.reserve(static_cast<std::size_t>(n));
  int next = 0, lowest = 1;
  number[1] = ++next;
  queue.push_back(1);
  for (int k = 1; k <= n; ++k) {
    if (k > static_cast<int>(queue.size())) {
      while (number[static_cast<std::size_t>(lowest)] != 0)
        ++lowest;
      number[static_cast<std::size_t>(lowest)] = ++next;
      queue.push_back(lowest);
    }
    for (std::int32_t w : adjacency[static_cast<std::size_t>(queue[static_cast<std::size_t>(k - 1)])]) {
      if (number[static_cast<std::size_t>(w)] != 0) continue;
      number[static_cast<std::size_t>(w)] = ++next;
      queue.push_back(w);
    }
  }
  for (int q = 1; q <= n; ++q)
    number[static_cast<std::size_t>(q)] = n + 1 - number[static_cast<std::size_t>(q)];
  return number;
}

// The equations of the side from mesh node a to mesh node b as the element along it has them, so
// that a side beyond a joint takes the copies of its nodes; the mesh nodes' own where no element
// runs along it.
void Side_Dofs(const Side_Index& sides, const Mechanical_State& m, int a, int b, std::int32_t dof[4]) {
  int e = 0, side = 0, na = a, nb = b;
  if (sides.Find(a, b, e, side)) {
    na = Corner_Node(m, e, side);
    nb = Corner_Node(m, e, side % 4 + 1);
  } else if (sides.Find(b, a, e, side)) {
    nb = Corner_Node(m, e, side);
    na = Corner_Node(m, e, side % 4 + 1);
  }
  dof[0] = 2 * na - 1, dof[1] = 2 * na, dof[2] = 2 * nb - 1, dof[3] = 2 * nb;
}

// A support that no node, side or element took, on the end of a bar element within the mouse
// radius (taken as mm) in x and in y: the first bar, end 1 before end 2.
int Bar_Node_At(const Project& p, const Mechanical_State& m, double x, double y) {
  const double r = p.Mouse_Radius;
  for (const Bar_Element& b : m.Bars) {
    if (std::fabs(b.X1 - x) <= r && std::fabs(b.Y1 - y) <= r) return b.Node[0];
    if (std::fabs(b.X2 - x) <= r && std::fabs(b.Y2 - y) <= r) return b.Node[1];
  }
  return 0;
}

void Set_Support_Equations(const Project& p, const Side_Index& sides, Mechanical_State& m) {
  m.Supports.clear();
  const int nodes = p.Mesh_Node.count();
  for (const Support& s : p.Mesh_Support) {
    Support_State st;
    auto add_node = [&](int n) {
      st.Dof[++st.Dof_Count] = 2 * n - 1;
      st.Dof[++st.Dof_Count] = 2 * n;
    };
    if (s.Node_A >= 1 && s.Node_A <= nodes && s.Node_B >= 1 && s.Node_B <= nodes) {
      st.Kind = Support_Kind::Side;
      std::int32_t dof[4];
      Side_Dofs(sides, m, s.Node_A, s.Node_B, dof);
      for (const std::int32_t q : dof)
        st.Dof[++st.Dof_Count] = q;
    } else if (p.Mesh_Element.valid(s.Element)) {
      st.Kind = Support_Kind::Element;
      for (int i = 1; i <= Element_Corner_Dofs; ++i)
        st.Dof[++st.Dof_Count] = m.Element_Dof[s.Element][i];
      Corner_Weights(s.Local_X, s.Local_Y, st.Weight);
    } else if (s.Node_A >= 1 && s.Node_A <= nodes) {
      st.Kind = Support_Kind::Node;
      add_node(s.Node_A);
    } else if (const int bar_node = Bar_Node_At(p, m, s.X, s.Y); bar_node != 0) {
      st.Kind = Support_Kind::Node;
      add_node(bar_node);
    }
    m.Supports.add(st);
  }
  m.Load_Dof.clear();
  for (const Load& load : p.Mesh_Load) {
    Array1<std::int32_t, 4> dof;
    if (load.Node_A >= 1 && load.Node_A <= nodes && load.Node_B >= 1 && load.Node_B <= nodes) {
      std::int32_t q[4];
      Side_Dofs(sides, m, load.Node_A, load.Node_B, q);
      for (int i = 1; i <= 4; ++i)
        dof[i] = q[i - 1];
    }
    m.Load_Dof.add(dof);
  }
}

// The unknowns of the mesh: each element's corners, the copies along the joints, the bar nodes.
bool Number_Mesh_Unknowns(const Project& p, const Side_Index& sides, Mechanical_State& m,
                          std::string& message) {
  const int elements = p.Mesh_Element.count();
  m.Doubled_Nodes = 0;
  m.Element_Dof.resize(elements);
  for (int e = 1; e <= elements; ++e)
    for (int c = 1; c <= 4; ++c) {
      const int node = p.Mesh_Element[e].Corner[c];
      m.Element_Dof[e][2 * c - 1] = 2 * node - 1;
      m.Element_Dof[e][2 * c] = 2 * node;
    }
  Set_Interface_Nodes(p, sides, m);
  return Set_Reinforcement_Elements(p, m, message);
}

// Adds every pair of a group of equations to their adjacency lists.
void Add_Group(std::vector<std::vector<std::int32_t>>& adjacency, const std::int32_t* dof, int count) {
  for (int i = 0; i < count; ++i)
    for (int j = 0; j < count; ++j) {
      const int a = dof[i], b = dof[j];
      if (a == b || a < 1 || b < 1) continue;
      auto& list = adjacency[static_cast<std::size_t>(a)];
      if (std::find(list.begin(), list.end(), b) == list.end()) list.push_back(b);
    }
}

}  // namespace

const Material* Mechanical_Material(const Project& p, const Run_State& run, int element) {
  const int number = run.Element_Material.valid(element) ? run.Element_Material[element] : 0;
  if (!p.Material.valid(number) || !p.Material[number].Has_Mechanical) return nullptr;
  return &p.Material[number];
}

double Mechanical_Maturity(const Material& m, const Point_State& s, bool end_of_step) {
  if (m.Has_Maturity_Law && m.Dutch_Active)
    return end_of_step ? s.Weighted_Maturity_New : s.Weighted_Maturity_Old;
  return end_of_step ? s.Maturity_New : s.Maturity_Old;
}

bool Set_Mechanical_Mesh(Project& p, std::string& message) {
  Mechanical_State m;
  const Side_Index sides(p);
  if (!Number_Mesh_Unknowns(p, sides, m, message)) return false;
  p.Doubled_Node_Count = m.Doubled_Nodes;
  p.Mesh_Rebar.clear();
  for (const Bar_Element& b : m.Bars)
    p.Mesh_Rebar.add(Mesh_Rebar_Of(p, b));
  for (int i = 1; i <= p.Mesh_Interface.count(); ++i)
    p.Mesh_Interface[i].Active = As_Flag(m.Interfaces[i].Active);
  return true;
}

void Set_Mechanical_Equations(const Project& p, Mechanical_State& m, const Event_Pump& pump) {
  const int elements = p.Mesh_Element.count();
  m.Out_Of_Plane_Unknowns = Section_Of(p).Form == Section_Form::Generalised_Plane_Strain;
  const Side_Index sides(p);
  std::string ignored;  // a run refuses too many bar elements before it numbers
  Number_Mesh_Unknowns(p, sides, m, ignored);
  Set_Support_Equations(p, sides, m);
  const int nodes = p.Mesh_Node.count() + m.Doubled_Nodes;
  const int n = 2 * nodes;
  m.Node_Equations = n;

  // The equations that share an element, in element order and within an element in the order of
  // its unknowns; then those that share a joint, a bar element or a support, so that none of their
  // terms falls outside the profile.
  std::vector<std::vector<std::int32_t>> node_elements(static_cast<std::size_t>(nodes) + 1);
  for (int e = 1; e <= elements; ++e)
    for (int c = 1; c <= 4; ++c) {
      const int node = Corner_Node(m, e, c);
      if (node < 1 || node > nodes) continue;
      auto& list = node_elements[static_cast<std::size_t>(node)];
      if (list.empty() || list.back() != e) list.push_back(e);
    }
  std::vector<std::vector<std::int32_t>> adjacency(static_cast<std::size_t>(n) + 1);
  std::vector<std::int32_t> listed_for(static_cast<std::size_t>(n) + 1, 0);
  for (int q = 1; q <= n; ++q) {
    auto& list = adjacency[static_cast<std::size_t>(q)];
    for (std::int32_t e : node_elements[static_cast<std::size_t>((q + 1) / 2)])
      for (int i = 1; i <= Element_Corner_Dofs; ++i) {
        const int w = m.Element_Dof[e][i];
        if (w == q || w < 1 || w > n || listed_for[static_cast<std::size_t>(w)] == q) continue;
        listed_for[static_cast<std::size_t>(w)] = q;
        list.push_back(w);
      }
    if (pump) pump();
  }
  for (const Interface_Element& f : m.Interfaces)
    if (f.Active) Add_Group(adjacency, f.Dof.begin(), 8);
  for (const Bar_Element& b : m.Bars)
    Add_Group(adjacency, b.Dof.begin(), b.Dof_Count());
  for (const Support_State& st : m.Supports)
    Add_Group(adjacency, st.Dof.begin(), st.Dof_Count);
  Sort_By_Degree(adjacency);
  const std::vector<std::int32_t> number = Reversed_Cuthill_McKee(adjacency, n);

  // Column heights: from the lowest place among an equation's neighbours down to its own.
  const int total = n + (m.Out_Of_Plane_Unknowns ? 3 : 0);
  m.Equations = total;
  m.Renumber.resize(total);
  std::vector<std::int32_t> top(static_cast<std::size_t>(n) + 1, 0);
  for (int q = 1; q <= n; ++q) {
    const int c = number[static_cast<std::size_t>(q)];
    m.Renumber[q] = c;
    int low = c;
    for (std::int32_t w : adjacency[static_cast<std::size_t>(q)])
      low = std::min(low, static_cast<int>(number[static_cast<std::size_t>(w)]));
    top[static_cast<std::size_t>(c)] = low;
  }
  m.Column_Pointer.assign(static_cast<std::size_t>(total) + 1, 0);
  for (int c = 1; c <= n; ++c)
    m.Column_Pointer[static_cast<std::size_t>(c)] =
        m.Column_Pointer[static_cast<std::size_t>(c - 1)] + (c - top[static_cast<std::size_t>(c)]) + 1;
  // The out-of-plane unknowns belong to every element: full columns behind the rest.
  for (int c = n + 1; c <= total; ++c) {
    m.Renumber[c] = c;
    m.Column_Pointer[static_cast<std::size_t>(c)] = m.Column_Pointer[static_cast<std::size_t>(c - 1)] + c;
  }
  m.Profile_Size = m.Column_Pointer[static_cast<std::size_t>(total)];
  m.Max_Column_Height = 0;
  for (int c = 1; c <= total; ++c)
    m.Max_Column_Height =
        std::max(m.Max_Column_Height, m.Column_Pointer[static_cast<std::size_t>(c)] -
                                          m.Column_Pointer[static_cast<std::size_t>(c - 1)]);
}

void Allocate_Mechanical_Arrays(const Project& p, Mechanical_State& m) {
  m.Matrix.resize(m.Profile_Size);
  for (Table<double>* v : {&m.External, &m.Internal, &m.Iteration, &m.Total, &m.Start, &m.Step})
    v->resize(m.Equations);
  m.Held.resize(m.Equations);
  const int elements = p.Mesh_Element.count();
  m.Points.assign(static_cast<std::size_t>(4 * elements + 1), Mech_Point{});
  m.Strength_Factor.resize(elements, 1.0);
  m.Volume_Factor.resize(elements, 1.0);
  const auto size = [](std::int64_t n) { return static_cast<std::size_t>(std::max<std::int64_t>(n, 0)); };
  m.Out_Displacement.assign(size(2 * (std::int64_t{p.Mesh_Node.count()} + m.Doubled_Nodes)), 0.0);
  m.Out_Corner_Stress.assign(size(16 * std::int64_t{elements}), 0.0);
  m.Out_Crack_Opening.assign(size(4 * std::int64_t{elements}), 0.0);
  m.Out_Cracked.assign(size(4 * std::int64_t{elements}), 0);
  m.Out_Reaction.assign(size(p.Mesh_Support.count()), 0.0);
  m.Out_Interface.assign(size(4 * std::int64_t{m.Interfaces.count()}), 0.0);
  m.Out_Bar.assign(size(5 * std::int64_t{m.Bars.count()}), 0.0);
}

void Set_Mechanical_Initial_State(const Project& p, Run_State& run) {
  Mechanical_State& m = run.Mechanics;
  for (Table<double>* v : {&m.External, &m.Internal, &m.Iteration, &m.Total, &m.Start, &m.Step})
    std::fill(v->begin(), v->end(), 0.0);
  std::fill(m.Held.begin(), m.Held.end(), std::int16_t{0});
  std::fill(m.Points.begin(), m.Points.end(), Mech_Point{});
  for (Support_State& s : m.Supports) {
    s.Offset = 0;
    s.Offset_Taken = false;
    s.Reaction = 0;
    s.Displacement = 0;
  }
  // The generator of the element factors always starts alike: a run repeated cracks where it
  // cracked before, and variants of one mesh differ by their data, not by their luck.
  Table<const Material*> materials;
  materials.resize(p.Mesh_Element.count(), nullptr);
  for (int e = 1; e <= p.Mesh_Element.count(); ++e)
    materials[e] = Mechanical_Material(p, run, e);
  Draw_Element_Factors(materials, Element_Factor_Start, m.Strength_Factor, m.Volume_Factor);
  for (int e = 1; e <= p.Mesh_Element.count(); ++e) {
    if (!materials[e]) continue;
    const Softening& law = materials[e]->Softening_Law;
    for (int k = 1; k <= 4; ++k) {
      Mech_Point& point = Mech(m, e, k);
      point.Softening = Is_Softening(*materials[e]);
      point.Char_Volume = law.Lvol_Active ? law.Lvol * m.Volume_Factor[e] : 0.0;
    }
  }
  // Joints start closed and bars unstrained, each with the tangent of its law at rest.
  for (Interface_Element& f : m.Interfaces) {
    for (Interface_Point& point : f.Point) {
      point = Interface_Point{};
      if (f.Active) Interface_Point_Update(p.Material[f.Material], 0, 0, point);
    }
  }
  for (Bar_Element& b : m.Bars) {
    b.Steel = Bar_Steel_State{};
    b.Started = false;
    b.Reference_Axial = b.Reference_Transverse = 0;
    b.Free_Strain_Start = b.Free_Strain = 0;
    b.Axial_Strain = b.Transverse_Strain = b.Mechanical_Strain = 0;
    for (Bar_End_State& end : b.End) {
      end.Bond = Bar_Bond_State{};
      end.Slip = end.Dowel = end.Dowel_Stress = end.Reference_Slip = end.Reference_Dowel = 0;
    }
    if (b.Material == 0) continue;
    const Material& material = p.Material[b.Material];
    Bar_Steel_Stress(material, 0, b.Steel);
    for (Bar_End_State& end : b.End)
      Bar_Bond_Stress(material, 0, end.Bond);
  }
  m.Iterations = 0;
  Update_Mechanical_End_Of_Step(p, run);
}

void Set_Free_Strains(const Project& p, Run_State& run) {
  Mechanical_State& m = run.Mechanics;
  for (int e = 1; e <= p.Mesh_Element.count(); ++e) {
    const Material* material = Mechanical_Material(p, run, e);
    if (!material) continue;
    const Mesh_Element& element = p.Mesh_Element[e];
    const Corner_Fields f = Corner_Fields_Of(run, element);
    const double *T0 = f.T0, *T1 = f.T1, *H0 = f.H0, *H1 = f.H1;
    for (int k = 1; k <= 4; ++k) {
      const double Ts = Interpolate_To_Point(T0, k), Te = Interpolate_To_Point(T1, k);
      const double Hs = Interpolate_To_Point(H0, k), He = Interpolate_To_Point(H1, k);
      const double T = (Ts + Te) / 2, H_change = He - Hs;
      const Point_State& s = Point(run, e, k);
      const double M = Mean_Maturity(*material, s);
      // The autogenous part follows the corner's own temperatures, the others the point's.
      const double autogenous =
          Property(material->Autogeneous_Dilatation, T1[k - 1], Mechanical_Maturity(*material, s, true)) -
          Property(material->Autogeneous_Dilatation, T0[k - 1], Mechanical_Maturity(*material, s, false));
      Mech(m, e, k).Free_Strain = Property(material->Thermal_Dilatation, T, M) * (Te - Ts) + autogenous +
                                  Property(material->Hygral_Dilatation, T, M) * H_change;
    }
  }
}

void Assemble_Mechanical_Stiffness(const Project& p, Run_State& run, double dt) {
  Mechanical_State& m = run.Mechanics;
  std::fill(m.Matrix.begin(), m.Matrix.end(), 0.0);
  std::fill(m.External.begin(), m.External.end(), 0.0);
  const Section section = Section_Of(p);
  const int dofs = Element_Dof_Count(section);
  const bool plane_stress = section.Form == Section_Form::Plane_Stress;
  const float now = static_cast<float>(run.Mid_Step_Time);
  for (const Interface_Element& f : m.Interfaces) {
    if (!f.Active) continue;
    int places[8];
    Places_Of(m, f, 8, places);
    double K[8][8];
    Interface_Stiffness(f, K);
    Add_Block(m, places, 8, K);
  }
  for (int e = 1; e <= p.Mesh_Element.count(); ++e) {
    const Material* material = Active_Material(p, run, e);
    if (!material) continue;
    const Mesh_Element& element = p.Mesh_Element[e];
    int places[Max_Element_Dofs];
    Element_Places(m, e, dofs, places);
    const double unit_weight = now > element.Dead_Weight_At ? material->Dead_Weight * 9.81 / 1e9 : 0.0;
    const Corner_Coordinates corners = Corners_Of(p, element);
    const Corner_Fields fields = Corner_Fields_Of(run, element);
    double K[Max_Element_Dofs][Max_Element_Dofs] = {};
    double weight_of_point[4];
    for (int k = 1; k <= 4; ++k) {
      Strain_Operator B;
      double weight, thickness;
      Element_B_Matrix(corners, section, k, element.Thickness, B, weight, thickness);
      const Point_Conditions c = Conditions_Of(*material, run, fields, e, k, dt, plane_stress, B);
      Elastic_Matrices em;
      Set_Elastic_Matrices(c.Nu, plane_stress, em);
      const double factor = thickness * weight * Effective_Modulus(*material, c, Mech(m, e, k));
      double DB[4][Max_Element_Dofs] = {};
      for (int i = 0; i < 4; ++i)
        for (int j = 0; j < dofs; ++j)
          for (int l = 0; l < 4; ++l)
            DB[i][j] += em.D[i][l] * B.B[l][j];
      for (int i = 0; i < dofs; ++i)
        for (int j = 0; j < dofs; ++j) {
          double sum = 0;
          for (int l = 0; l < 4; ++l)
            sum += B.B[l][i] * DB[l][j];
          K[i][j] += factor * sum;
        }
      weight_of_point[k - 1] = thickness * weight * unit_weight;
    }
    // Upper profile only; an unknown that occurs twice in an element sums both of its terms.
    for (int i = 0; i < dofs; ++i)
      for (int j = 0; j < dofs; ++j)
        if (places[i] <= places[j]) m.Matrix[Profile_Entry(m, places[i], places[j])] += K[i][j];
    // The weight of a point goes down at the corner of its number.
    for (int k = 0; k < 4; ++k)
      m.External[places[2 * k + 1]] -= weight_of_point[k];
  }
  for (Bar_Element& b : m.Bars) {
    if (!Bar_In_Play(p, run, b)) continue;
    int places[12];
    Places_Of(m, b, b.Dof_Count(), places);
    if (!b.Started) {
      double u[12] = {};
      for (int i = 0; i < b.Dof_Count(); ++i)
        u[i] = m.Start[places[i]];
      Start_Bar(b, u);
    }
    double K[12][12];
    Bar_Stiffness(b, K);
    Add_Block(m, places, b.Dof_Count(), K);
  }
}

void Set_Iteration_Load(Run_State& run) {
  Mechanical_State& m = run.Mechanics;
  for (int k = 1; k <= m.Equations; ++k)
    m.Iteration[k] = m.Held[k] != 0 ? 0.0 : m.External[k] - m.Internal[k];
}

void Compute_Element_Stresses(const Project& p, Run_State& run, double dt) {
  Mechanical_State& m = run.Mechanics;
  std::fill(m.Internal.begin(), m.Internal.end(), 0.0);
  const Section section = Section_Of(p);
  const int dofs = Element_Dof_Count(section);
  const bool plane_stress = section.Form == Section_Form::Plane_Stress;
  for (int e = 1; e <= p.Mesh_Element.count(); ++e) {
    const Material* material = Active_Material(p, run, e);
    if (!material) continue;
    const Mesh_Element& element = p.Mesh_Element[e];
    int places[Max_Element_Dofs];
    Element_Places(m, e, dofs, places);
    double u[Max_Element_Dofs];
    for (int i = 0; i < dofs; ++i)
      u[i] = m.Step[places[i]];
    const Corner_Coordinates corners = Corners_Of(p, element);
    const Corner_Fields fields = Corner_Fields_Of(run, element);
    const double strength = m.Strength_Factor[e];
    for (int k = 1; k <= 4; ++k) {
      Mech_Point& point = Mech(m, e, k);
      Strain_Operator B;
      double weight, thickness;
      Element_B_Matrix(corners, section, k, element.Thickness, B, weight, thickness);
      const Point_Conditions c = Conditions_Of(*material, run, fields, e, k, dt, plane_stress, B);
      point.Ft = Property(material->Ft, c.T, c.M) * strength;
      point.Fc = Property(material->Fc, c.T, c.M) * strength;
      point.Ft_Copy = point.Ft;

      Components strain{};
      for (int i = 0; i < 4; ++i)
        for (int j = 0; j < dofs; ++j)
          strain[static_cast<std::size_t>(i)] += B.B[i][j] * u[j];
      // The free strain is isotropic: it takes nothing from the shear.
      for (std::size_t i : {0u, 1u, 3u})
        strain[i] -= point.Free_Strain;
      for (std::size_t i = 0; i < 4; ++i)
        point.Strain[0][i] = point.Strain_Start[0][i] + strain[i];
      Update_Point_Stress(*material, c, strain, point);

      const double factor = thickness * weight;
      for (int i = 0; i < dofs; ++i) {
        double sum = 0;
        for (std::size_t j = 0; j < 4; ++j)
          sum += B.B[j][i] * point.Stress[0][j];
        m.Internal[places[i]] += factor * sum;
      }
    }
  }
  for (Interface_Element& f : m.Interfaces) {
    if (!f.Active) continue;
    int places[8];
    Places_Of(m, f, 8, places);
    double u[8], F[8];
    for (int i = 0; i < 8; ++i)
      u[i] = m.Total[places[i]];
    Interface_Stresses(p.Material[f.Material], f, u, F);
    for (int i = 0; i < 8; ++i)
      m.Internal[places[i]] += F[i];
  }
  for (Bar_Element& b : m.Bars) {
    if (!Bar_In_Play(p, run, b)) continue;
    int places[12];
    Places_Of(m, b, b.Dof_Count(), places);
    double u[12] = {}, F[12];
    for (int i = 0; i < b.Dof_Count(); ++i)
      u[i] = m.Total[places[i]];
    Corner_Fields host{};
    if (b.Bonded()) host = Corner_Fields_Of(run, p.Mesh_Element[b.Host]);
    Bar_Stresses(p.Material[b.Material], b, u, host.T0, host.T1, F);
    for (int i = 0; i < b.Dof_Count(); ++i)
      m.Internal[places[i]] += F[i];
  }
}

void Compute_Nodal_Stresses(const Project& p, Run_State& run, bool per_element) {
  Mechanical_State& m = run.Mechanics;
  const int elements = p.Mesh_Element.count();
  std::vector<Components> sum;
  std::vector<int> count;
  std::vector<char> active(static_cast<std::size_t>(elements) + 1, 0);
  if (!per_element) {
    sum.assign(static_cast<std::size_t>(p.Mesh_Node.count() + m.Doubled_Nodes) + 1, Components{});
    count.assign(sum.size(), 0);
    for (int e = 1; e <= elements; ++e) {
      if (!Active_Material(p, run, e)) continue;
      active[static_cast<std::size_t>(e)] = 1;
      for (int c = 1; c <= 4; ++c) {
        const auto node = static_cast<std::size_t>(Corner_Node(m, e, c));
        for (std::size_t i = 0; i < 4; ++i)
          sum[node][i] += Mech(m, e, c).Stress[0][i];
        ++count[node];
      }
    }
  }
  for (int e = 1; e <= elements; ++e)
    for (int c = 1; c <= 4; ++c) {
      const auto node = per_element ? 0 : static_cast<std::size_t>(Corner_Node(m, e, c));
      const bool averaged = !per_element && active[static_cast<std::size_t>(e)] && count[node] > 0;
      for (std::size_t i = 0; i < 4; ++i)
        m.Out_Corner_Stress[static_cast<std::size_t>(16 * (e - 1) + 4 * (c - 1)) + i] =
            averaged ? sum[node][i] / count[node] : Mech(m, e, c).Stress[0][i];
    }
}

void Update_Mechanical_End_Of_Step(const Project& p, Run_State& run) {
  Mechanical_State& m = run.Mechanics;
  m.Start = m.Total;
  std::fill(m.Step.begin(), m.Step.end(), 0.0);
  for (Interface_Element& f : m.Interfaces)
    for (Interface_Point& point : f.Point)
      Interface_End_Of_Step(point);
  for (Bar_Element& b : m.Bars)
    Roll_Bar_Element(b);
  for (int e = 1; e <= p.Mesh_Element.count(); ++e) {
    const Material* material = Mechanical_Material(p, run, e);
    if (!material) continue;
    const Mesh_Element& element = p.Mesh_Element[e];
    const Point_Law law = Law_Of(*material);
    const bool creeping = law == Point_Law::Maxwell_Chain || law == Point_Law::Burger_Model;
    for (int k = 1; k <= 4; ++k) {
      Mech_Point& point = Mech(m, e, k);
      point.Stress_Start = point.Stress;
      point.Strain_Start = point.Strain;
      point.Creep_Strain_Start = point.Creep_Strain;
      point.Stiffness_Factor_Start = point.Stiffness_Factor;
      point.Largest_Strain_Start = point.Largest_Strain;
      point.Crack_Strain_Start = point.Crack_Strain;
      point.Creep_Max_Start = point.Creep_Max;
      const double T = run.Temperature_New[run.Numbering.Node_Equation[element.Corner[k]]];
      const double M = Mechanical_Maturity(*material, Point(run, e, k), true);
      point.Ft = Property(material->Ft, T, M) * m.Strength_Factor[e];
      point.Fc = Property(material->Fc, T, M) * m.Strength_Factor[e];
      // A creeping point keeps the strength its last iteration left: damage lowers it for good.
      if (creeping && point.Ft_Copy > 0) point.Ft = point.Ft_Copy;
    }
  }
}

}  // namespace pvx
