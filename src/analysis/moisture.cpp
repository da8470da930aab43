#include "analysis/moisture.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "analysis/field_system.h"
#include "analysis/thermal.h"
#include "material/properties.h"

namespace pvx {

namespace {

// The values at the four points from the four corners, by the shape functions at the 2 x 2 points
// rounded: 0.622 for the point's own corner, 0.167 for its two neighbours, 0.044 for the opposite.
void At_Points(const double corner[4], double point[4]) {
  for (int i = 0; i < 4; ++i)
    point[i] =
        0.622 * corner[i] + 0.167 * (corner[(i + 1) % 4] + corner[(i + 3) % 4]) + 0.044 * corner[(i + 2) % 4];
}

void Corner_Values(const Run_State& run, const Mesh_Element& e, const Table<double>& field, double out[4]) {
  for (int n = 0; n < 4; ++n)
    out[n] = field[Node_Equation(run, e.Corner[n + 1])];
}

void Add_Element_Block(Run_State& run, const Mesh_Element& e, const Block10& a, double factor_b,
                       const Block10& b) {
  int eq[4];
  for (int n = 0; n < 4; ++n)
    eq[n] = Node_Equation(run, e.Corner[n + 1]);
  for (int i = 1; i <= 4; ++i)
    for (int j = i; j <= 4; ++j) {
      const int k = Block_Index(i, j);
      run.Matrix[Profile_Position(run, eq[i - 1], eq[j - 1])] +=
          (i == j || eq[i - 1] != eq[j - 1] ? 1.0 : 2.0) * (a.v[k] + factor_b * b.v[k]);
    }
}

const Hygral_Period* Hygral_Interval(const Border& b, double t) {
  for (const Hygral_Period& period : b.Hygral_Periods)
    if (period.From <= t && period.Until >= t) return &period;
  return nullptr;
}

bool Hygral_Border(const Project& p, const Border& b) {
  return b.Hygral_Active != 0 && Border_Nodes_Valid(p, b);
}

// The factor of the diffusion coefficient of a cracked point: the material's table of factor against
// damage, damage = 1 - the smallest stiffness factor of the point.
double Crack_Factor(const Material& m, const Mech_Point& point) {
  const double damage =
      1 - std::min({point.Stiffness_Factor[0], point.Stiffness_Factor[1], point.Stiffness_Factor[2]});
  const Table<double>& x = m.Crack_Diffusion_Damage;
  const Table<double>& f = m.Crack_Diffusion_Factor;
  const int n = std::min(x.count(), f.count());
  if (n < 2) return n == 1 ? f[1] : 1.0;
  int i = 2;
  while (i < n && damage > x[i])
    ++i;
  const double span = x[i] - x[i - 1];
  const double w = span != 0 ? (damage - x[i - 1]) / span : 0.0;
  return f[i - 1] + (f[i] - f[i - 1]) * w;
}

}  // namespace

double Isotherm(const Material& m, double alpha, double T, double h) {
  return m.Isotherm_Table ? Isotherm_Table_Water(alpha, T, h, m.Isotherm_Table_Data)
                          : Isotherm_Water(m.W_C, m.Cement, alpha, T, Air_Water(m), m.H_Limit, h);
}

double Air_Water(const Material& m) {
  return 10 * m.Air;
}

bool Moisture_Element(const Project& p, const Run_State& run, int e) {
  if (!Element_Active(p.Mesh_Element[e], run.Mid_Step_Time)) return false;
  const int m = run.Element_Material[e];
  return p.Material.valid(m) && p.Material[m].Has_Hygral;
}

void Assemble_Moisture_System(const Project& p, Run_State& run, double dt, double t) {
  (void)t;
  const double mid = run.Mid_Step_Time;
  std::fill(run.Matrix.begin(), run.Matrix.end(), 0.0);
  std::fill(run.Right_Hand_Side.begin(), run.Right_Hand_Side.end(), 0.0);
  const bool cracks = run.Mechanical_Included && run.Mechanics.Points.size() > 1;

  for (int k = 1; k <= p.Mesh_Element.count(); ++k) {
    if (!Moisture_Element(p, run, k)) continue;
    const Mesh_Element& e = p.Mesh_Element[k];
    const Material& material = p.Material[run.Element_Material[k]];
    double h0[4], h1[4], p0[4], p1[4];
    Corner_Values(run, e, run.Moisture_Old, h0);
    Corner_Values(run, e, run.Moisture_New, h1);
    At_Points(h0, p0);
    At_Points(h1, p1);
    double ones[4] = {1, 1, 1, 1}, D[4];
    for (int i = 0; i < 4; ++i) {
      D[i] = Diffusion_Coefficient(material, (p0[i] + p1[i]) / 2);
      if (cracks && material.Crack_Diffusion_Active) {
        const double f = Crack_Factor(material, Mech(run.Mechanics, k, i + 1));
        if (f > 1) D[i] *= f;
      }
    }
    Element_Matrix_Set& set = run.Element_Matrices[k];
    Element_Thermal_Matrices(Geometry_Of(p, e), ones, D, set.C, set.K, set.M);
    Add_Element_Block(run, e, set.C, dt / 2, set.K);
  }

  for (const Border& b : p.Mesh_Border) {
    if (!Hygral_Border(p, b)) continue;
    const Hygral_Period* period = Hygral_Interval(b, mid);
    if (!period || period->Is_Water_Pressure != 0) continue;
    const int e1 = Node_Equation(run, b.Node_A), e2 = Node_Equation(run, b.Node_B);
    if (!(Profile_Diagonal(run, e1) > 0) || !(Profile_Diagonal(run, e2) > 0)) continue;
    double s[3];
    Border_Side(p, b, period->Transfer_Coefficient, s);
    Profile_Diagonal(run, e1) += dt / 2 * s[0];
    run.Matrix[Profile_Position(run, e1, e2)] += (e1 == e2 ? 2.0 : 1.0) * dt / 2 * s[1];
    Profile_Diagonal(run, e2) += dt / 2 * s[2];
  }

  for (int k = 1; k <= run.Equations; ++k) {
    double& d = Profile_Diagonal(run, k);
    if (d <= 0) {
      d = 1.0;
      run.Moisture_Active[k] = 0;
    } else {
      run.Moisture_Active[k] = -1;
    }
  }
}

void Set_Moisture_Load(const Project& p, Run_State& run, double dt, double t) {
  (void)t;
  const double mid = run.Mid_Step_Time;
  Table<double>& r = run.Right_Hand_Side;
  std::fill(r.begin(), r.end(), 0.0);

  for (int k = 1; k <= p.Mesh_Element.count(); ++k) {
    if (!Moisture_Element(p, run, k)) continue;
    const Mesh_Element& e = p.Mesh_Element[k];
    const Material& m = p.Material[run.Element_Material[k]];
    const Element_Matrix_Set& set = run.Element_Matrices[k];
    int eq[4];
    for (int n = 0; n < 4; ++n)
      eq[n] = Node_Equation(run, e.Corner[n + 1]);

    // The trapezoidal rule: (M - dt/2 D) h_old.
    Block10 explicit_block;
    for (int b = 0; b < 10; ++b)
      explicit_block.v[b] = set.C.v[b] - dt / 2 * set.K.v[b];
    Array1<double, 4> h_old, product;
    for (int i = 0; i < 4; ++i)
      h_old.v[i] = run.Moisture_Old[eq[i]];
    Multiply_Symmetric(product, explicit_block, h_old);
    for (int i = 0; i < 4; ++i)
      r[eq[i]] += product.v[i];

    // The sources of the isotherm at each point.
    double c_h0[4], c_h1[4], c_T0[4], c_T1[4], h0[4], h1[4], T0[4], T1[4];
    Corner_Values(run, e, run.Moisture_Old, c_h0);
    Corner_Values(run, e, run.Moisture_New, c_h1);
    Corner_Values(run, e, run.Temperature_Old, c_T0);
    Corner_Values(run, e, run.Temperature_New, c_T1);
    At_Points(c_h0, h0);
    At_Points(c_h1, h1);
    At_Points(c_T0, T0);
    At_Points(c_T1, T1);
    Array1<double, 4> q;
    for (int i = 0; i < 4; ++i) {
      Point_State& s = Point(run, k, i + 1);
      const double T = m.Temperature_Dependent ? (T0[i] + T1[i]) / 2 : m.Fixed_Temperature;
      double a_old = m.Default_Hydration, a_new = m.Default_Hydration, a_mean = m.Default_Hydration;
      if (m.Hydration_Dependent) {
        a_old = s.Hydration_Old;
        a_new = s.Hydration_New;
        a_mean = (a_old + a_new) / 2;
      }
      // The isotherm means nothing below a degree of hydration of 0.15.
      a_old = std::max(a_old, 0.15);
      a_new = std::max(a_new, 0.15);
      a_mean = std::max(a_mean, 0.15);
      const double ho = std::min(h0[i], m.H_Limit), hn = std::min(h1[i], m.H_Limit);
      const double hm = (ho + hn) / 2;
      s.Water_New = Isotherm(m, a_new, T, hn);
      const double slope =
          (Isotherm(m, a_mean, T, hm + 0.0005) - Isotherm(m, a_mean, T, hm - 0.0005)) / 0.001;
      const double from_temperature =
          m.Temperature_Dependent ? Isotherm(m, a_mean, T1[i], hm) - Isotherm(m, a_mean, T0[i], hm) : 0.0;
      const double from_hydration =
          m.Hydration_Dependent ? Isotherm(m, a_new, T, hm) - Isotherm(m, a_old, T, hm) +
                                      (s.Hydration_New - s.Hydration_Old) * m.Cement * m.Consumption_Factor
                                : 0.0;
      q.v[i] = slope == 0 ? 0.0 : (from_temperature + from_hydration) / slope;
    }
    Multiply_Symmetric(product, set.M, q);
    for (int i = 0; i < 4; ++i)
      r[eq[i]] -= product.v[i];
  }

  for (const Border& b : p.Mesh_Border) {
    if (!Hygral_Border(p, b)) continue;
    const Hygral_Period* period = Hygral_Interval(b, mid);
    if (!period || period->Is_Water_Pressure != 0) continue;
    const int e1 = Node_Equation(run, b.Node_A), e2 = Node_Equation(run, b.Node_B);
    if (run.Moisture_Active[e1] == 0 || run.Moisture_Active[e2] == 0) continue;
    double s[3];
    Border_Side(p, b, 1.0, s);
    // The ambient potential of the middle of the step, doubled in the trapezoidal sum.
    const double ha = Function_Value(p, Function_Family::Moisture_Potential, period->Potential_Function, mid);
    const double g1 = 2 * ha - run.Moisture_Old[e1], g2 = 2 * ha - run.Moisture_Old[e2];
    const double c = dt / 2 * period->Transfer_Coefficient;
    r[e1] += c * (s[0] * g1 + s[1] * g2);
    r[e2] += c * (s[2] * g2 + s[1] * g1);
  }

  for (int k = 1; k <= run.Equations; ++k)
    if (run.Moisture_Active[k] == 0) r[k] = run.Moisture_Old[k];
}

bool Set_Saturated_Flow(const Project& p, Run_State& run, double dt, double t, std::string& message,
                        const Event_Pump& pump) {
  (void)t;
  const double mid = run.Mid_Step_Time;
  // Most steps of most models have nothing wet and no water under pressure: no flow, and no
  // system to build.
  bool anything = false;
  for (int k = 1; k <= p.Mesh_Element.count() && !anything; ++k) {
    if (!Moisture_Element(p, run, k)) continue;
    const Material& m = p.Material[run.Element_Material[k]];
    if (!m.Saturated_Flow_Active) continue;
    double h[4];
    Corner_Values(run, p.Mesh_Element[k], run.Moisture_New, h);
    anything = *std::max_element(h, h + 4) >= m.H_Limit - 0.001;
  }
  for (const Border& b : p.Mesh_Border)
    if (!anything && Hygral_Border(p, b))
      for (const Hygral_Period& h : b.Hygral_Periods)
        if (h.From < mid && h.Until > mid) {
          anything = h.Is_Water_Pressure != 0;
          break;
        }
  if (!anything) {
    std::fill(run.Saturated_Potential.begin(), run.Saturated_Potential.end(), 0.0);
    return true;
  }

  Table<double>& head = run.Right_Hand_Side;
  std::fill(run.Matrix.begin(), run.Matrix.end(), 0.0);
  std::fill(head.begin(), head.end(), 0.0);
  std::vector<char> marked(static_cast<std::size_t>(run.Equations) + 1, 0);

  struct Wet {
    int element;
    Block10 K;
  };
  std::vector<Wet> wet;
  // The nodes of the elements that take part now: water under pressure on a side of an element
  // that is not yet cast acts on nothing.
  std::vector<char> present(static_cast<std::size_t>(run.Equations) + 1, 0);
  for (int k = 1; k <= p.Mesh_Element.count(); ++k) {
    if (!Moisture_Element(p, run, k)) continue;
    for (int n = 1; n <= 4; ++n)
      present[static_cast<std::size_t>(Node_Equation(run, p.Mesh_Element[k].Corner[n]))] = 1;
    const Material& m = p.Material[run.Element_Material[k]];
    if (!m.Saturated_Flow_Active) continue;
    const Mesh_Element& e = p.Mesh_Element[k];
    double h[4];
    Corner_Values(run, e, run.Moisture_New, h);
    const double threshold = m.H_Limit - 0.001;
    const int full = static_cast<int>(std::count_if(h, h + 4, [&](double v) { return v >= threshold; }));
    if (full == 0) continue;
    // The permeability matrix: the conduction block with the permeability for the conductivity.
    const double ones[4] = {1, 1, 1, 1};
    const double k_sat[4] = {m.Saturated_Permeability, m.Saturated_Permeability, m.Saturated_Permeability,
                             m.Saturated_Permeability};
    Block10 C, K, M;
    Element_Thermal_Matrices(Geometry_Of(p, e), ones, k_sat, C, K, M);
    if (full == 4) Add_Element_Block(run, e, Block10{}, 1.0, K);
    wet.push_back(Wet{k, K});
  }

  // Water under pressure at a border: the head of its nodes held by a penalty; those nodes are full.
  auto pin = [&](int node, double value) {
    const int k = Node_Equation(run, node);
    if (marked[static_cast<std::size_t>(k)]) return;
    marked[static_cast<std::size_t>(k)] = 1;
    const double d = Profile_Diagonal(run, k);
    const double penalty = d != 0 ? 10000 * d : 10000;
    head[k] = value * penalty;
    Profile_Diagonal(run, k) += penalty;
  };
  for (const Border& b : p.Mesh_Border) {
    if (!Hygral_Border(p, b)) continue;
    const Hygral_Period* period = nullptr;
    for (const Hygral_Period& h : b.Hygral_Periods)
      if (h.From < mid && h.Until > mid) {
        period = &h;
        break;
      }
    if (!period || period->Is_Water_Pressure == 0) continue;
    if (!present[static_cast<std::size_t>(Node_Equation(run, b.Node_A))] ||
        !present[static_cast<std::size_t>(Node_Equation(run, b.Node_B))])
      continue;
    for (const int node : {int(b.Node_A), int(b.Node_B)}) {
      const double value = period->Pressure_Kind == 2 ? p.Mesh_Node[node].Y / 1000 + period->Constant_Level
                                                      : Function_Value(p, Function_Family::Water_Pressure,
                                                                       period->Water_Pressure_Function, mid);
      const int k = Node_Equation(run, node);
      if (!marked[static_cast<std::size_t>(k)]) {
        run.Moisture_Old[k] = run.Saturation_Limit;
        run.Moisture_New[k] = run.Saturation_Limit;
      }
      pin(node, value);
    }
  }
  // Nothing wet and no water under pressure: no flow, and no system to solve.
  if (wet.empty() && std::find(marked.begin(), marked.end(), 1) == marked.end()) {
    std::fill(run.Saturated_Potential.begin(), run.Saturated_Potential.end(), 0.0);
    return true;
  }
  // Water leaves the saturated zone at the nodes of wet elements that are not full: head 0.
  for (const Wet& w : wet) {
    const Material& m = p.Material[run.Element_Material[w.element]];
    const Mesh_Element& e = p.Mesh_Element[w.element];
    for (int n = 1; n <= 4; ++n)
      if (run.Moisture_New[Node_Equation(run, e.Corner[n])] < m.H_Limit - 0.001) pin(e.Corner[n], 0.0);
  }
  // A saturated zone that touches neither a pressure side nor a node that is not full has no flow:
  // a relative 1e-9 on every diagonal keeps its head at 0, where the system would be singular.
  for (int k = 1; k <= run.Equations; ++k)
    if (!(Profile_Diagonal(run, k) > 0)) {
      Profile_Diagonal(run, k) = 1.0;
      head[k] = 0;
    } else {
      Profile_Diagonal(run, k) *= 1 + 1e-9;
    }

  bool ok = true;
  Factorise_Profile(run.Matrix, run.Equations, run.Numbering.Column_Pointer, ok, message, pump);
  if (!ok) return false;
  Solve_Profile(run.Matrix, head, run.Equations, run.Numbering.Column_Pointer);
  run.Saturated_Potential = head;

  for (const Wet& w : wet) {
    const Material& m = p.Material[run.Element_Material[w.element]];
    const Mesh_Element& e = p.Mesh_Element[w.element];
    const int k = w.element;
    Array1<double, 4> phi, flow;
    for (int n = 0; n < 4; ++n)
      phi.v[n] = run.Saturated_Potential[Node_Equation(run, e.Corner[n + 1])];
    Multiply_Symmetric(flow, w.K, phi);
    double Q = 0;
    for (double f : flow.v)
      if (f > 0) Q += f;
    // The element's volume per metre (or radian) from its unweighted mass matrix.
    const Element_Matrix_Set& set = run.Element_Matrices[k];
    double V = 0;
    for (int i = 1; i <= 4; ++i)
      for (int j = 1; j <= 4; ++j)
        V += set.M.v[Block_Index(i, j)];
    double h[4], T[4], corner_h = 0, mean_T = 0;
    Corner_Values(run, e, run.Moisture_New, h);
    Corner_Values(run, e, run.Temperature_New, T);
    double alpha = 0;
    for (int n = 0; n < 4; ++n) {
      corner_h += h[n];
      mean_T += T[n] / 4;
      alpha += (m.Hydration_Dependent ? Point(run, k, n + 1).Hydration_New : m.Default_Hydration) / 4;
    }
    const double mean_h = corner_h / 4;
    const double w_full = Isotherm_Water(m.W_C, m.Cement, alpha, mean_T, Air_Water(m), m.H_Limit, m.H_Limit);
    const double w_now = Isotherm_Water(m.W_C, m.Cement, alpha, mean_T, Air_Water(m), m.H_Limit, mean_h);
    const double filling = Q != 0 ? (w_full - w_now) * V / (Q * 1000) : 1e35;
    double target = m.H_Limit;
    if (dt < filling) {
      // The mean potential that holds the water the flow brings in the step, by bisection; an
      // interval that cannot reach the water ends at its last middle.
      const double water = w_now + (w_full - w_now) * dt / filling;
      double low = mean_h, high = m.H_Limit;
      target = (low + high) / 2;
      for (int i = 0; i < 100; ++i) {
        target = (low + high) / 2;
        const double w = Isotherm_Water(m.W_C, m.Cement, alpha, mean_T, Air_Water(m), m.H_Limit, target);
        if (std::fabs(w - water) <= 0.1) break;
        (w < water ? low : high) = target;
      }
    }
    const double room = 4 * m.H_Limit - corner_h;
    const double fraction = room != 0 ? (4 * target - corner_h) / room : 0.0;
    for (int n = 1; n <= 4; ++n) {
      const int eq = Node_Equation(run, e.Corner[n]);
      const double moved = run.Moisture_New[eq] + (m.H_Limit - run.Moisture_New[eq]) * fraction;
      run.Moisture_New[eq] = moved;
      run.Moisture_Old[eq] = moved;
    }
  }
  return true;
}

}  // namespace pvx
