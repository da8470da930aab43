#include "analysis/mechanics/interface_element.h"

#include <algorithm>
#include <cmath>

#include "analysis/mechanics/mechanical_state.h"

namespace pvx {

namespace {

std::uint64_t Side_Key(int a, int b) {
  return (static_cast<std::uint64_t>(static_cast<std::uint32_t>(a)) << 32) | static_cast<std::uint32_t>(b);
}

int Next_Side(int side) {
  return side % 4 + 1;
}
int Previous_Side(int side) {
  return side == 1 ? 4 : side - 1;
}

// The node that corner `corner` of element e now stands on, and giving it another.
int Slot_Node(const Mechanical_State& m, int e, int corner) {
  return m.Element_Dof[e][2 * corner] / 2;
}
void Set_Slot_Node(Mechanical_State& m, int e, int corner, int node) {
  m.Element_Dof[e][2 * corner - 1] = 2 * node - 1;
  m.Element_Dof[e][2 * corner] = 2 * node;
}

int Interface_Material(const Project& p, const std::string& name) {
  for (int i = 1; i <= p.Material.count(); ++i)
    if (p.Material[i].Is_Interface && p.Material[i].Name == name) return i;
  return 0;
}

}  // namespace

int Edge_Start_Node(const Mesh_Element& e, int side) {
  return e.Corner[side];
}
int Edge_End_Node(const Mesh_Element& e, int side) {
  return e.Corner[Next_Side(side)];
}

Side_Index::Side_Index(const Project& p) {
  sides_.reserve(static_cast<std::size_t>(4 * p.Mesh_Element.count()));
  for (int e = 1; e <= p.Mesh_Element.count(); ++e)
    for (int side = 1; side <= 4; ++side) {
      const Mesh_Element& element = p.Mesh_Element[e];
      // The first element along a side keeps it: a mesh has one element on each side of a side.
      sides_.emplace(Side_Key(Edge_Start_Node(element, side), Edge_End_Node(element, side)),
                     std::pair<std::int32_t, std::int32_t>{e, side});
    }
}

bool Side_Index::Find(int a, int b, int& element, int& side) const {
  const auto it = sides_.find(Side_Key(a, b));
  element = it == sides_.end() ? 0 : it->second.first;
  side = it == sides_.end() ? 0 : it->second.second;
  return element != 0;
}

void Set_Interface_Nodes(const Project& p, const Side_Index& sides, Mechanical_State& m) {
  const int mesh_nodes = p.Mesh_Node.count();
  const bool axisymmetric = Section_Of(p).Form == Section_Form::Axisymmetric;
  const double offset = Section_Of(p).Offset_Radius;
  m.Interfaces.clear();
  for (const Interface& mesh : p.Mesh_Interface) {
    Interface_Element f;
    f.Node_A = mesh.Node_A;
    f.Node_B = mesh.Node_B;
    f.Material = Interface_Material(p, mesh.Layer_Material);
    const bool nodes = p.Mesh_Node.valid(f.Node_A) && p.Mesh_Node.valid(f.Node_B);
    if (nodes) {
      const Mesh_Node &a = p.Mesh_Node[f.Node_A], &b = p.Mesh_Node[f.Node_B];
      f.Length = std::hypot(b.X - a.X, b.Y - a.Y);
      if (f.Length > 0) {
        f.Cos = (b.X - a.X) / f.Length;
        f.Sin = (b.Y - a.Y) / f.Length;
      }
    }
    const bool found = nodes && sides.Find(f.Node_A, f.Node_B, f.Element[0], f.Side[0]) &&
                       sides.Find(f.Node_B, f.Node_A, f.Element[1], f.Side[1]);
    f.Active = found && f.Material != 0 && f.Length > 0;
    if (f.Active) {
      // Element 2 runs from b to a: the end of its side is a, the start b. Each copy follows into
      // the direct neighbour across element 2's adjacent side at that node.
      const int e2 = f.Element[1], s2 = f.Side[1];
      const Mesh_Element& element2 = p.Mesh_Element[e2];
      int e = 0, s = 0;
      if (Slot_Node(m, e2, Next_Side(s2)) <= mesh_nodes) {
        const int copy = mesh_nodes + ++m.Doubled_Nodes;
        Set_Slot_Node(m, e2, Next_Side(s2), copy);
        const int next = Next_Side(s2);
        if (sides.Find(Edge_End_Node(element2, next), Edge_Start_Node(element2, next), e, s))
          Set_Slot_Node(m, e, Next_Side(s), copy);
      }
      if (Slot_Node(m, e2, s2) <= mesh_nodes) {
        const int copy = mesh_nodes + ++m.Doubled_Nodes;
        Set_Slot_Node(m, e2, s2, copy);
        const int previous = Previous_Side(s2);
        if (sides.Find(Edge_End_Node(element2, previous), Edge_Start_Node(element2, previous), e, s))
          Set_Slot_Node(m, e, s, copy);
      }
      const Mesh_Element& element1 = p.Mesh_Element[f.Element[0]];
      const double thickness = std::min(element1.Thickness, element2.Thickness);
      for (int k = 0; k < 2; ++k) {
        const Mesh_Node& end = p.Mesh_Node[k == 0 ? f.Node_A : f.Node_B];
        f.Weight[k] = (axisymmetric ? offset + end.X : thickness) * f.Length / 2;
      }
    }
    m.Interfaces.add(f);
  }
  // The joints take their nodes once all are doubled, so that a joint whose element got a copy
  // from a later joint follows it.
  for (Interface_Element& f : m.Interfaces) {
    if (!f.Active) continue;
    const int e1 = f.Element[0], s1 = f.Side[0], e2 = f.Element[1], s2 = f.Side[1];
    f.Node[0] = Slot_Node(m, e1, s1);
    f.Node[1] = Slot_Node(m, e2, Next_Side(s2));
    f.Node[2] = Slot_Node(m, e2, s2);
    f.Node[3] = Slot_Node(m, e1, Next_Side(s1));
    for (int k = 0; k < 4; ++k) {
      f.Dof[2 * k + 1] = 2 * f.Node[k] - 1;
      f.Dof[2 * k + 2] = 2 * f.Node[k];
    }
  }
}

void Interface_B_Matrix(const Interface_Element& f, int point, double B[2][8]) {
  std::fill(&B[0][0], &B[0][0] + 16, 0.0);
  const double c = f.Cos, s = f.Sin;
  // The side-1 node and the side-2 node of the pair, as columns.
  const int one = point == 1 ? 0 : 6, two = point == 1 ? 2 : 4;
  B[0][one] = -s;
  B[0][one + 1] = c;
  B[0][two] = s;
  B[0][two + 1] = -c;
  B[1][one] = c;
  B[1][one + 1] = s;
  B[1][two] = -c;
  B[1][two + 1] = -s;
}

void Interface_Stiffness(const Interface_Element& f, double K[8][8]) {
  std::fill(&K[0][0], &K[0][0] + 64, 0.0);
  for (int point = 1; point <= 2; ++point) {
    double B[2][8];
    Interface_B_Matrix(f, point, B);
    const Interface_Point& state = f.Point[point - 1];
    const double k[2] = {f.Weight[point - 1] * state.K_Normal, f.Weight[point - 1] * state.K_Shear};
    for (int i = 0; i < 8; ++i)
      for (int j = 0; j < 8; ++j)
        K[i][j] += B[0][i] * k[0] * B[0][j] + B[1][i] * k[1] * B[1][j];
  }
}

void Interface_Stresses(const Material& material, Interface_Element& f, const double u[8], double F[8]) {
  std::fill(F, F + 8, 0.0);
  for (int point = 1; point <= 2; ++point) {
    double B[2][8];
    Interface_B_Matrix(f, point, B);
    double u_n = 0, u_s = 0;
    for (int j = 0; j < 8; ++j) {
      u_n += B[0][j] * u[j];
      u_s += B[1][j] * u[j];
    }
    Interface_Point& state = f.Point[point - 1];
    Interface_Point_Update(material, u_n, u_s, state);
    const double w = f.Weight[point - 1];
    for (int i = 0; i < 8; ++i)
      F[i] += w * (B[0][i] * state.Sigma + B[1][i] * state.Tau);
  }
}

}  // namespace pvx
