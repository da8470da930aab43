// The mechanical part of a run's state: the numbering of the displacement unknowns and its
// profile, the global vectors of the modified Newton iteration, and the state of every
// integration point and support.
//
// Equation numbers: node n owns 2n-1 (x) and 2n (y). In the generalised plane strain form three
// more unknowns follow the node equations, shared by every element. The solver works in positions:
// Renumber maps an equation to its place in the profile, and every global vector (loads, forces,
// displacements) is indexed by that place. The three out-of-plane unknowns keep the last three
// places.
//
// Stress and strain are kept as totals with a start-of-step and a current copy; an iteration writes
// only current values and the end of the step copies them, so that a step can be iterated without
// restoring anything. Row 0 of the stress and strain tables is the total; the creep laws keep their
// units (a Maxwell chain) or their Kelvin rate (a Burger model) in further rows.
#pragma once

#include <array>
#include <cassert>
#include <cstdint>
#include <vector>

#include "analysis/mechanics/bar_element.h"
#include "analysis/mechanics/interface_element.h"
#include "app/table.h"

namespace pvx {

// xx, yy, xy, zz (strains: exx, eyy, gxy, ezz).
using Components = std::array<double, 4>;

struct Mech_Point {
  std::vector<Components> Stress_Start = std::vector<Components>(1);
  std::vector<Components> Stress = std::vector<Components>(1);
  std::vector<Components> Strain_Start = std::vector<Components>(1);
  std::vector<Components> Strain = std::vector<Components>(1);
  Components Creep_Strain_Start{}, Creep_Strain{};
  double Free_Strain = 0;  // free strain increment of the step, the same for xx, yy and zz
  double Ft = 0, Fc = 0;   // strengths at the point, the element's factor applied, MPa
  double Ft_Copy = 0;      // ft between steps, for a damage law that lowers it
  // Cracking: a softening point scales its stiffness by a factor and remembers the largest
  // equivalent strain it has seen. Only entry 0 of the three directions is in use: the crack model
  // is rotating, with one isotropic factor.
  bool Softening = false;
  std::array<double, 3> Stiffness_Factor_Start{1, 1, 1}, Stiffness_Factor{1, 1, 1};
  std::array<double, 3> Largest_Strain_Start{}, Largest_Strain{};
  double Half_Band = 0;                             // mm; set at the first crack check from the point's area
  double Crack_Cos = 1, Crack_Sin = 0;              // direction of the principal axes (table law)
  double Crack_Strain_Start = 0, Crack_Strain = 0;  // inelastic strain of the crack band
  double Char_Volume = 0;  // mm, the material's Lvol times the element's volume factor
  // EPFL damage: the largest principal creep strain reached.
  double Creep_Max_Start = 0, Creep_Max = 0;
  bool Cracked = false;      // the equivalent strain has passed the cracking strain
  double Crack_Opening = 0;  // mm
};

// Where a mesh support acts.
enum class Support_Kind {
  None,     // outside all elements: left out
  Node,     // at one mesh node (Node_A)
  Side,     // on the element side from Node_A to Node_B
  Element,  // at a local point of an element
};

struct Support_State {
  Support_Kind Kind = Support_Kind::None;
  Array1<std::int32_t, 8> Dof;  // equations: 2 (node), 4 (side) or 8 (element)
  int Dof_Count = 0;
  double Weight[4] = {};  // corner weights of a point inside an element
  double Diagonal = 0;    // largest diagonal it holds, found anew at each assembly
  double Offset = 0;      // displacement reached when it started, with a reset
  bool Offset_Taken = false;
  double Reaction = 0;      // kN (the whole circumference when axisymmetric)
  double Displacement = 0;  // as shown: minus the displacement along its direction, mm
};

struct Mechanical_State {
  // Numbering. Nodes behind the mesh nodes: the copies made along the joints, then the bar nodes.
  int Doubled_Nodes = 0;
  int Node_Equations = 0;  // 2 x (mesh nodes + Doubled_Nodes)
  int Equations = 0;       // and the three out-of-plane unknowns when there are any
  bool Out_Of_Plane_Unknowns = false;
  Table<Array1<std::int32_t, 8>> Element_Dof;  // per element: x, y of corner 1 to 4
  Table<Support_State> Supports;               // one per mesh support
  Table<Array1<std::int32_t, 4>> Load_Dof;     // per mesh load: x, y of its side's two nodes
  Table<Interface_Element> Interfaces;         // one per mesh interface
  Table<Bar_Element> Bars;                     // the bars cut at the mesh
  Table<std::int32_t> Renumber;                // equation -> place in the profile
  std::vector<std::int32_t> Column_Pointer;    // 0..Equations, as for the solver
  std::int32_t Profile_Size = 0;
  std::int32_t Max_Column_Height = 0;

  // The linear system of a step and the vectors of the iteration, by place.
  Table<double> Matrix;
  Table<double> External;            // loads and dead weight, N
  Table<double> Internal;            // forces of the stresses and the supports, N
  Table<double> Iteration;           // the residual, then the last solved increment, mm
  Table<double> Total, Start, Step;  // displacements: current, start of step, current less start
  Table<std::int16_t> Held;          // -1 where a place is held at its value this step
  int Iterations = 0;                // solves of the last step

  std::vector<Mech_Point> Points;  // 4 per element: point i of element e at 4 (e - 1) + i; 0 unused
  Table<double> Strength_Factor;   // per element, on ft and fc
  Table<double> Volume_Factor;     // per element, on the characteristic volume

  // Buffers of one storage.
  std::vector<double> Out_Displacement, Out_Corner_Stress, Out_Crack_Opening, Out_Reaction;
  std::vector<std::int16_t> Out_Cracked;
  std::vector<double> Out_Interface, Out_Bar;
};

inline Mech_Point& Mech(Mechanical_State& m, int element, int point) {
  return m.Points[static_cast<std::size_t>(4 * (element - 1) + point)];
}
inline const Mech_Point& Mech(const Mechanical_State& m, int element, int point) {
  return m.Points[static_cast<std::size_t>(4 * (element - 1) + point)];
}

// The node that corner c of element e stands on: its mesh node, or the copy made along a joint.
inline int Corner_Node(const Mechanical_State& m, int e, int c) {
  return m.Element_Dof[e][2 * c] / 2;
}

// The place of equation q in the profile.
inline int Place(const Mechanical_State& m, int q) {
  return m.Renumber[q];
}

// Position in the packed profile of entry (r, c) of the symmetric matrix, r and c places.
inline int Profile_Entry(const Mechanical_State& m, int r, int c) {
  if (r > c) {
    const int t = r;
    r = c;
    c = t;
  }
  const int diagonal = m.Column_Pointer[static_cast<std::size_t>(c)];
  assert(c - r < diagonal - m.Column_Pointer[static_cast<std::size_t>(c - 1)]);
  return diagonal - (c - r);
}

}  // namespace pvx
