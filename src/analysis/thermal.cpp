#include "analysis/thermal.h"

#include <algorithm>
#include <cmath>

#include "analysis/cooling.h"
#include "analysis/field_system.h"
#include "design/time_function.h"
#include "material/properties.h"

namespace pvx {

bool Element_Active(const Mesh_Element& e, double t) {
  const float time = static_cast<float>(t);
  return e.Present_From <= time && e.Present_Until > time;
}

double Function_Value(const Project& p, Function_Family family, int number, double t) {
  const Table<Function>& table = Function_Table(p, family);
  return table.valid(number) ? Evaluate_Function(table[number], t) : 0.0;
}

namespace {

void Element_Equations(const Run_State& run, const Mesh_Element& e, int eq[4]) {
  for (int n = 0; n < 4; ++n)
    eq[n] = Node_Equation(run, e.Corner[n + 1]);
}

// Calls f(k, element, material, eq) for each element that takes part at the mid-step time and
// has a material; eq holds the equations of its four corners.
template <class F>
void For_Each_Active_Element(const Project& p, const Run_State& run, F&& f) {
  for (int k = 1; k <= p.Mesh_Element.count(); ++k) {
    const Mesh_Element& e = p.Mesh_Element[k];
    if (!Element_Active(e, run.Mid_Step_Time)) continue;
    const int m = run.Element_Material[k];
    if (!p.Material.valid(m)) continue;
    int eq[4];
    Element_Equations(run, e, eq);
    f(k, e, p.Material[m], eq);
  }
}

// The first interval of a border that holds time t, or null.
const Thermal_Period* Interval_At(const Border& b, double t) {
  for (const Thermal_Period& period : b.Thermal_Periods)
    if (period.From <= t && period.Until >= t) return &period;
  return nullptr;
}

}  // namespace

void Assemble_Thermal_System(const Project& p, Run_State& run, double dt, double t) {
  // The implicit weight of the step: half at theta = 1/2 (the trapezoidal rule), the whole step at 1.
  const double half = Half_Step(dt) * (2 * run.Theta);
  const double mid = run.Mid_Step_Time;
  std::fill(run.Matrix.begin(), run.Matrix.end(), 0.0);
  std::fill(run.Base_Load.begin(), run.Base_Load.end(), 0.0);

  // Elements: capacity and conductivity per integration point from the water of the point and the
  // temperature of its corner node, old and new.
  For_Each_Active_Element(
      p, run, [&](int k, const Mesh_Element& e, const Material& material, const int eq[4]) {
        double capacity[4], conductivity[4];
        for (int i = 0; i < 4; ++i) {
          const Point_State& s = Point(run, k, i + 1);
          capacity[i] = Thermal_Capacity(material, s.Water_Old, s.Water_New, run.Temperature_Old[eq[i]],
                                         run.Temperature_New[eq[i]]);
          conductivity[i] = Thermal_Conductivity(material, s.Water_Old, s.Water_New);
        }
        Element_Matrix_Set& set = run.Element_Matrices[k];
        Element_Thermal_Matrices(Geometry_Of(p, e), capacity, conductivity, set.C, set.K, set.M);
        for (int i = 1; i <= 4; ++i)
          for (int j = i; j <= 4; ++j) {
            const int b = Block_Index(i, j);
            run.Matrix[Profile_Position(run, eq[i - 1], eq[j - 1])] +=
                (i == j || eq[i - 1] != eq[j - 1] ? 1.0 : 2.0) * (set.C.v[b] + half * set.K.v[b]);
          }
      });

  // Convection on the borders whose two nodes belong to active elements.
  for (const Border& b : p.Mesh_Border) {
    if (b.Thermal_Active == 0 || !Border_Nodes_Valid(p, b)) continue;
    const Thermal_Period* period = Interval_At(b, mid);
    if (!period) continue;
    const int e1 = Node_Equation(run, b.Node_A), e2 = Node_Equation(run, b.Node_B);
    if (Profile_Diagonal(run, e1) <= 0 || Profile_Diagonal(run, e2) <= 0) continue;
    if (period->Convection_On == 0) continue;
    double s[3];
    Border_Side(p, b, period->Convection_Coefficient, s);
    Profile_Diagonal(run, e1) += half * s[0];
    run.Matrix[Profile_Position(run, e1, e2)] += (e1 == e2 ? 2.0 : 1.0) * half * s[1];
    Profile_Diagonal(run, e2) += half * s[2];
  }

  // Prescribed nodes: the row is dominated by a penalty of 1000 times its diagonal. With several
  // conditions on one node the last load wins while the factors multiply up.
  for (const Prescribed_Node& node : p.Prescribed_Node) {
    if (!(node.From <= mid && node.Until >= mid) || !p.Mesh_Node.valid(node.Mesh_Node)) continue;
    const double T = Function_Value(p, Function_Family::Temperature, node.Temperature_Function, t);
    const int k = Node_Equation(run, node.Mesh_Node);
    const double d = Profile_Diagonal(run, k);
    if (d > 0) {
      run.Base_Load[k] = p.Prescribed_Penalty * d * T;
      Profile_Diagonal(run, k) = d + p.Prescribed_Penalty * d;
    }
  }

  // Prescribed points inside an element, spread over its corners by the bilinear weights.
  for (const Point_T& point : p.Point_T) {
    if (!(point.Present_From <= mid && point.Until >= mid) || !p.Mesh_Element.valid(point.Element)) continue;
    const Mesh_Element& e = p.Mesh_Element[point.Element];
    if (!Element_Active(e, mid)) continue;
    const double T = Function_Value(p, Function_Family::Temperature, point.Temperature_Function, t);
    int eq[4];
    Element_Equations(run, e, eq);
    double d = 0;
    for (int i = 0; i < 4; ++i)
      d = std::max(d, Profile_Diagonal(run, eq[i]));
    if (d <= 0) continue;
    const double u = point.Local_X, v = point.Local_Y;
    const double w[4] = {(1 - u) * (1 - v), (1 - v) * u, u * v, (1 - u) * v};
    for (int i = 0; i < 4; ++i) {
      run.Base_Load[eq[i]] += p.Prescribed_Penalty * d * w[i] * T;
      for (int j = i; j < 4; ++j)
        run.Matrix[Profile_Position(run, eq[i], eq[j])] +=
            (i == j || eq[i] != eq[j] ? 1.0 : 2.0) * p.Prescribed_Penalty * d * w[i] * w[j];
    }
  }

  // Cooling pipes: each of the eight sides round a hole is a convective border towards the water.
  for (int n = 1; n <= p.Circuit.count(); ++n) {
    const Circuit& c = p.Circuit[n];
    if (!Circuit_Exchanges(p, c, mid, t)) continue;
    const double E = half * Pipe_Side_Coefficient(c);
    for (int i = 1; i <= c.Pipe_Count; ++i)
      for (int j = 1; j <= 8; ++j) {
        const int a = Node_Equation(run, c.Pipe_Connection[i][j]);
        const int b = Node_Equation(run, c.Pipe_Connection[i][j % 8 + 1]);
        if (Profile_Diagonal(run, a) <= 0 || Profile_Diagonal(run, b) <= 0) continue;
        Profile_Diagonal(run, a) += E;
        Profile_Diagonal(run, b) += E;
        run.Matrix[Profile_Position(run, a, b)] += (a == b ? 2.0 : 1.0) * E / 2;
      }
  }

  // A node of no active element is decoupled with a unit diagonal and keeps its temperature.
  for (int k = 1; k <= run.Equations; ++k) {
    double& d = Profile_Diagonal(run, k);
    if (d <= 0) {
      d = 1.0;
      run.Active_Equation[k] = 0;
    } else {
      run.Active_Equation[k] = -1;
    }
  }
}

void Set_Thermal_Load(const Project& p, Run_State& run, double dt, double t) {
  const double half = Half_Step(dt);
  // The weights of the new and the old values, twice theta and twice (1 - theta): both 1 for the
  // trapezoidal rule, so that it computes exactly as written for theta = 1/2.
  const double implicit = 2 * run.Theta, explicit_weight = 2 * (1 - run.Theta);
  const double mid = run.Mid_Step_Time;
  Table<double>& r = run.Right_Hand_Side;
  std::copy(run.Base_Load.begin(), run.Base_Load.end(), r.begin());

  For_Each_Active_Element(p, run, [&](int k, const Mesh_Element&, const Material& material, const int eq[4]) {
    const Element_Matrix_Set& set = run.Element_Matrices[k];

    // The trapezoidal rule: (C - dt/2 K) T_old.
    Block10 explicit_block;
    for (int b = 0; b < 10; ++b)
      explicit_block.v[b] = set.C.v[b] - half * explicit_weight * set.K.v[b];
    Array1<double, 4> T_old, product;
    for (int i = 0; i < 4; ++i)
      T_old.v[i] = run.Temperature_Old[eq[i]];
    Multiply_Symmetric(product, explicit_block, T_old);
    for (int i = 0; i < 4; ++i)
      r[eq[i]] += product.v[i];

    // Maturity and the heat of the step at each point, from its corner node.
    Array1<double, 4> q;
    for (int i = 0; i < 4; ++i) {
      Point_State& s = Point(run, k, i + 1);
      Update_Maturity(material, dt, run.Temperature_Old[eq[i]], run.Temperature_New[eq[i]],
                      run.Moisture_Old[eq[i]], run.Moisture_New[eq[i]], s.Maturity_Old, s.Maturity_New,
                      s.Weighted_Maturity_Old, s.Weighted_Maturity_New);
      q.v[i] = Hydration_Heat(material, dt, s.Maturity_Old, s.Maturity_New, s.Hydration_New);
      s.Hydration_New *= material.Hydration_Factor;
    }
    // The heat is already the integral over the step: it enters without the half step.
    Multiply_Symmetric(product, set.M, q);
    for (int i = 0; i < 4; ++i)
      r[eq[i]] += product.v[i];
  });

  for (const Border& b : p.Mesh_Border) {
    if (b.Thermal_Active == 0 || !Border_Nodes_Valid(p, b)) continue;
    const Thermal_Period* period = Interval_At(b, mid);
    if (!period) continue;
    const int e1 = Node_Equation(run, b.Node_A), e2 = Node_Equation(run, b.Node_B);
    if (run.Active_Equation[e1] == 0 || run.Active_Equation[e2] == 0) continue;
    double s[3];
    Border_Side(p, b, 1.0, s);
    const double m11 = s[0], m12 = s[1], m22 = s[2];
    const double Ta = Function_Value(p, Function_Family::Temperature, period->Temperature_Function, mid);
    if (period->Convection_On != 0) {
      const double T1 = run.Temperature_Old[e1], T2 = run.Temperature_Old[e2];
      const double g1 = 2 * Ta - explicit_weight * T1, g2 = 2 * Ta - explicit_weight * T2;
      const double h = half * period->Convection_Coefficient;
      r[e1] += h * (m11 * g1 + m12 * g2);
      r[e2] += h * (m22 * g2 + m12 * g1);
    }
    if (period->Radiation_On != 0) {
      // Long-wave exchange with the surroundings, explicit in the current temperatures.
      auto fourth = [](double T) {
        const double K = T + 273;
        return K * K * K * K;
      };
      const double F1 = 5.77e-8 * (period->Ea * fourth(Ta) - period->Es * fourth(run.Temperature_New[e1]));
      const double F2 = 5.77e-8 * (period->Ea * fourth(Ta) - period->Es * fourth(run.Temperature_New[e2]));
      r[e1] += 2 * half * (m11 * F1 + m12 * F2);
      r[e2] += 2 * half * (m22 * F2 + m12 * F1);
      if (period->Radiation_Function > 0) {
        const double Q = Function_Value(p, Function_Family::Radiation, period->Radiation_Function, mid);
        const double sun = (m11 + m12) * half * period->Er * 2 * Q;
        r[e1] += sun;
        r[e2] += sun;
      }
    }
  }

  // The water at the downstream end of each section's stretch, old and new, pulls on its wall nodes.
  for (int n = 1; n <= p.Circuit.count() && n <= run.Cooling.Water_New.count(); ++n) {
    const Circuit& c = p.Circuit[n];
    if (!Circuit_Exchanges(p, c, mid, t)) continue;
    const double E = half * Pipe_Side_Coefficient(c);
    const Table<float>& old_water = run.Cooling.Water_Old[n];
    const Table<float>& new_water = run.Cooling.Water_New[n];
    for (int i = 1; i <= c.Pipe_Count; ++i) {
      const double s = implicit * new_water[i + 1] + explicit_weight * old_water[i + 1];
      for (int j = 1; j <= 8; ++j) {
        const int a = Node_Equation(run, c.Pipe_Connection[i][j]);
        const int b = Node_Equation(run, c.Pipe_Connection[i][j % 8 + 1]);
        if (run.Active_Equation[a] == 0 || run.Active_Equation[b] == 0) continue;
        const double h1 = s - explicit_weight * run.Temperature_Old[a];
        const double h2 = s - explicit_weight * run.Temperature_Old[b];
        r[a] += E * h1 + E * h2 / 2;
        r[b] += E * h2 + E * h1 / 2;
      }
    }
  }

  for (int k = 1; k <= run.Equations; ++k)
    if (run.Active_Equation[k] == 0) r[k] = run.Temperature_Old[k];
}

}  // namespace pvx
