#include "analysis/mechanics/supports_loads.h"

#include <algorithm>
#include <cmath>

#include "analysis/mechanics/element.h"
#include "analysis/thermal.h"
#include "app/prescribed_data.h"
#include "design/time_function.h"

namespace pvx {

namespace {

constexpr double Degrees_Per_Radian = 57.29577951;
constexpr double Full_Circle = 6.283185307;

bool Valid_Node(const Project& p, int n) {
  return n >= 1 && n <= p.Mesh_Node.count();
}

// The angle of the side from mesh node a to mesh node b, degrees.
double Side_Angle(const Project& p, int a, int b) {
  const Mesh_Node& na = p.Mesh_Node[a];
  const Mesh_Node& nb = p.Mesh_Node[b];
  return std::atan2(nb.Y - na.Y, nb.X - na.X) * Degrees_Per_Radian;
}

bool Support_Active(const Support& s, double mid) {
  return s.Present_From <= mid && mid < s.Until;
}

// A support as a row over its places: the displacement along its direction is the sum of coef
// times the displacements (the mean of the two nodes of a side, the bilinear weights inside an
// element), and its force F acts on the places as F coef.
struct Support_Row {
  int n = 0;
  int places[8] = {};
  double coef[8] = {};
  double c = 0, s = 0;
};

Support_Row Row_Of(const Project& p, const Mechanical_State& m, const Support& support,
                   const Support_State& st) {
  Support_Row row;
  double angle = support.Angle;
  if (st.Kind == Support_Kind::Side && support.Is_Global == 0)
    angle += Side_Angle(p, support.Node_A, support.Node_B);
  Direction_Of(angle, row.c, row.s);
  row.n = st.Dof_Count;
  for (int i = 0; i < row.n; ++i) {
    row.places[i] = Place(m, st.Dof[i + 1]);
    const double along = i % 2 == 0 ? row.c : row.s;
    switch (st.Kind) {
      case Support_Kind::Node:
        row.coef[i] = along;
        break;
      case Support_Kind::Side:
        row.coef[i] = along / 2;
        break;
      case Support_Kind::Element:
        row.coef[i] = along * st.Weight[i / 2];
        break;
      case Support_Kind::None:
        break;
    }
  }
  return row;
}

// The spring function of a spring support, or null.
const Function* Spring_Of(const Project& p, const Support& s) {
  if (s.Is_Spring == 0 || !p.Spring_Functions.valid(s.Spring_Function)) return nullptr;
  return &p.Spring_Functions[s.Spring_Function];
}

// The gap that the support closes: minus its displacement, or minus the prescribed displacement
// less its displacement.
double Gap(const Project& p, const Support& s, double u, double t) {
  if (s.Has_Function != 0)
    return -Function_Value(p, Function_Family::Displacement, s.Displacement_Function, t) - u;
  return -u;
}

double Along(const Mechanical_State& m, const Support_Row& row) {
  double u = 0;
  for (int i = 0; i < row.n; ++i)
    u += row.coef[i] * m.Total[row.places[i]];
  return u;
}

void Add_Upper(Mechanical_State& m, int a, int b, double value) {
  if (a <= b) m.Matrix[Profile_Entry(m, a, b)] += value;
}

// Clears row and column of a place.
void Clear_Place(Mechanical_State& m, int c) {
  const auto& cp = m.Column_Pointer;
  for (int pos = cp[static_cast<std::size_t>(c - 1)] + 1; pos <= cp[static_cast<std::size_t>(c)]; ++pos)
    m.Matrix[pos] = 0;
  for (int j = c + 1; j <= m.Equations; ++j) {
    const int top = j - (cp[static_cast<std::size_t>(j)] - cp[static_cast<std::size_t>(j - 1)]) + 1;
    if (c >= top) m.Matrix[Profile_Entry(m, c, j)] = 0;
  }
}

}  // namespace

void Direction_Of(double angle, double& c, double& s) {
  c = std::cos(angle / Degrees_Per_Radian);
  s = std::sin(angle / Degrees_Per_Radian);
  if (std::fabs(c) < 1e-8) c = 0;
  if (std::fabs(s) < 1e-8) s = 0;
}

void Set_External_Loads(const Project& p, Run_State& run, double t) {
  Mechanical_State& m = run.Mechanics;
  const Section section = Section_Of(p);
  const bool axisymmetric = section.Form == Section_Form::Axisymmetric;
  auto add = [&](int node, double share, double c, double s) {
    m.External[Place(m, 2 * node - 1)] += share * c;
    m.External[Place(m, 2 * node)] += share * s;
  };

  for (int i = 1; i <= p.Mesh_Load.count(); ++i) {
    const Load& load = p.Mesh_Load[i];
    if (!(load.Present_From <= t && t < load.Until)) continue;
    if (!Valid_Node(p, load.Node_A) || !Valid_Node(p, load.Node_B)) continue;
    const Mesh_Node& a = p.Mesh_Node[load.Node_A];
    const Mesh_Node& b = p.Mesh_Node[load.Node_B];
    const double side = Side_Angle(p, load.Node_A, load.Node_B);
    double c, s;
    if (load.Is_Level != 0)
      Direction_Of(side + 90, c, s);
    else
      Direction_Of(load.Is_Global != 0 ? load.Angle : load.Angle + side, c, s);
    const double length = std::hypot(b.X - a.X, b.Y - a.Y);
    // In the axisymmetric form the side's radii spread the load below; its thickness, which
    // holds the mean radius there, would count the radius twice.
    const double thickness = axisymmetric ? 1.0 : load.Effective_Thickness;
    double force;
    if (load.Is_Function != 0) {
      force =
          Function_Value(p, Function_Family::Load, load.Load_Function, t) * load.Factor * length * thickness;
    } else if (load.Is_Level != 0) {
      // Water stands to Level (m); a side above it is dry.
      const double depth = load.Level - (a.Y + b.Y) / 2 / 1000;
      force = length * thickness * std::max(depth, 0.0) * 0.00981 * load.Factor;
    } else {
      force = load.Value * length * thickness;
    }
    // The side's nodes as the element along it has them: beyond a joint, the copies.
    const Array1<std::int32_t, 4>& dof = m.Load_Dof[i];
    auto add_side = [&](int end, double share) {
      m.External[Place(m, dof[2 * end + 1])] += share * c;
      m.External[Place(m, dof[2 * end + 2])] += share * s;
    };
    if (axisymmetric) {
      const double r1 = section.Offset_Radius + a.X, r2 = section.Offset_Radius + b.X;
      add_side(0, force * (r1 / 3 + r2 / 6));
      add_side(1, force * (r1 / 6 + r2 / 3));
    } else {
      add_side(0, force / 2);
      add_side(1, force / 2);
    }
  }

  for (const Load& load : p.Point_Load) {
    if (!(load.Present_From <= t && t < load.Until)) continue;
    const double force = load.Is_Function != 0
                             ? load.Factor * Function_Value(p, Function_Family::Load, load.Load_Function, t)
                             : load.Value;
    double c, s;
    Direction_Of(load.Angle, c, s);
    if (p.Mesh_Element.valid(load.Element)) {
      double w[4];
      Corner_Weights(load.Local_X, load.Local_Y, w);
      for (int k = 1; k <= 4; ++k)
        add(p.Mesh_Element[load.Element].Corner[k], w[k - 1] * force, c, s);
    } else if (Valid_Node(p, load.Node_A) && load.Node_B == 0) {
      add(load.Node_A, force, c, s);
    }
  }
}

void Assemble_Support_Stiffness(const Project& p, Run_State& run, double t) {
  Mechanical_State& m = run.Mechanics;
  const double mid = run.Mid_Step_Time;
  const auto diagonal = [&](int place) -> double& {
    return m.Matrix[m.Column_Pointer[static_cast<std::size_t>(place)]];
  };

  // What each support holds, as the elements left it.
  for (int i = 1; i <= m.Supports.count(); ++i) {
    Support_State& st = m.Supports[i];
    st.Diagonal = 0;
    if (st.Kind == Support_Kind::None || !Support_Active(p.Mesh_Support[i], mid)) continue;
    for (int k = 1; k <= st.Dof_Count; ++k)
      st.Diagonal = std::max(st.Diagonal, diagonal(Place(m, st.Dof[k])));
    if (st.Diagonal == 0.0) st.Diagonal = 1000.0;
  }

  for (int i = 1; i <= m.Supports.count(); ++i) {
    const Support& support = p.Mesh_Support[i];
    const Support_State& st = m.Supports[i];
    if (st.Diagonal <= 0) continue;
    const Support_Row row = Row_Of(p, m, support, st);
    double k = p.Support_Penalty * st.Diagonal;
    if (support.Is_Spring != 0) {
      const Function* f = Spring_Of(p, support);
      const double area = support.Effective_Thickness * support.Segment_Length;
      if (!f) {
        k = 0;
      } else if (Active_Form(*f) == Function_Form::Constant) {
        k = f->Constant_Value * area;
      } else {
        // The slope of the spring curve at the support's displacement, by a difference of 0.001 mm.
        const double g = Gap(p, support, Along(m, row) - st.Offset, t);
        k = (Evaluate_Function(*f, g) - Evaluate_Function(*f, g - 0.001)) * 1000 * area;
      }
    }
    if (st.Kind == Support_Kind::Side) {
      // The consistent matrix of the side: 1/3 on the diagonal blocks, 1/6 off them.
      const double d[2] = {row.c, row.s};
      for (int a = 0; a < 2; ++a)
        for (int b = 0; b < 2; ++b)
          for (int da = 0; da < 2; ++da)
            for (int db = 0; db < 2; ++db)
              Add_Upper(m, row.places[2 * a + da], row.places[2 * b + db],
                        k * (a == b ? 1.0 / 3 : 1.0 / 6) * d[da] * d[db]);
    } else {
      for (int a = 0; a < row.n; ++a)
        for (int b = 0; b < row.n; ++b)
          Add_Upper(m, row.places[a], row.places[b], k * row.coef[a] * row.coef[b]);
    }
  }

  // A fixed out-of-plane unknown: the constant part of ezz is the first of the three, then the
  // coefficients of x and of y.
  if (m.Out_Of_Plane_Unknowns) {
    const Out_Of_Plane& o = p.Out_Of_Plane;
    const int n = m.Equations;
    if (o.Dilatation_Fixed != 0) Clear_Place(m, n - 2);
    if (o.Rotation_X_Fixed != 0) Clear_Place(m, n);
    if (o.Rotation_Y_Fixed != 0) Clear_Place(m, n - 1);
  }
  for (int k = 1; k <= m.Equations; ++k) {
    double& d = diagonal(k);
    m.Held[k] = d == 0.0 ? std::int16_t{-1} : std::int16_t{0};
    if (d == 0.0) {
      d = 1.0;
      m.Internal[k] = 0;
    }
  }
}

void Compute_Support_Forces(const Project& p, Run_State& run, double t) {
  Mechanical_State& m = run.Mechanics;
  const double circumference = Section_Of(p).Form == Section_Form::Axisymmetric ? Full_Circle : 1.0;
  for (int i = 1; i <= m.Supports.count(); ++i) {
    const Support& support = p.Mesh_Support[i];
    Support_State& st = m.Supports[i];
    st.Reaction = 0;
    if (st.Kind == Support_Kind::None || !Support_Active(support, run.Mid_Step_Time)) continue;
    const Support_Row row = Row_Of(p, m, support, st);
    double u = Along(m, row);
    if (support.Has_Offset != 0 && support.Present_From <= t && !st.Offset_Taken) {
      st.Offset = u;
      st.Offset_Taken = true;
    }
    u -= st.Offset;
    const double g = Gap(p, support, u, t);
    st.Displacement = -u;
    double force = p.Support_Penalty * st.Diagonal * g;
    if (support.Is_Spring != 0) {
      const Function* f = Spring_Of(p, support);
      const double area = support.Effective_Thickness * support.Segment_Length;
      force = !f                                           ? 0.0
              : Active_Form(*f) == Function_Form::Constant ? area * f->Constant_Value * g
                                                           : area * Evaluate_Function(*f, g);
    }
    st.Reaction = force / 1000 * circumference;
    for (int k = 0; k < row.n; ++k)
      m.Internal[row.places[k]] -= force * row.coef[k];
  }
  for (int k = 1; k <= m.Equations; ++k)
    if (m.Held[k] != 0) m.Internal[k] = 0;
}

}  // namespace pvx
