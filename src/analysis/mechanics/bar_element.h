// Reinforcement bars in the analysis: the design's bars cut at the mesh into bar elements, each a
// two-node truss with a transverse stiffness, and, where it lies inside a concrete element (its
// host), bonded to the host at both ends by the bond law along the bar and a dowel spring across it.
// A bar element outside every element is a free bar with only its own four unknowns: it must be
// held by supports or by other bars.
//
// Bar nodes are nodes of their own, numbered behind the mesh nodes and the doubled nodes of the
// joints; neighbouring bar elements of one bar, and bars whose ends meet within 0.05 mm, share them.
//
// A bonded element takes part while its host does (the host is active and has a mechanical
// material) and the bar's own time window is open; a free one by its window alone. An element that
// comes into play later than the start counts its strain and slips from the displacements it finds
// then: a bar is stress-free when it is placed.
//
// Units: mm, N, MPa; the steel law takes the strain in m/m.
#pragma once

#include <string>

#include "analysis/mechanics/bar_law.h"
#include "app/project.h"
#include "app/table.h"

namespace pvx {

struct Mechanical_State;

// Points closer than this (mm) along a bar, or between bar ends, are one point.
inline constexpr double Bar_Tolerance = 0.05;
// The stiffness across a bar element per unit of its transverse switch value, on A / L.
inline constexpr double Bar_Transverse_Stiffness = 100000;

struct Bar_End_State {
  double Slip = 0, Dowel = 0;  // along and across the bar, bar less host, mm
  Bar_Bond_State Bond;
  double Dowel_Stress = 0;                         // MPa (force per mm of bar and mm of diameter)
  double Operator[2][10] = {};                     // slip and dowel over the end's 2 + 8 equations
  double Reference_Slip = 0, Reference_Dowel = 0;  // where the element came into play
};

struct Bar_Element {
  int Bar = 0;                 // the design bar it was cut from
  int Material = 0;            // 0 leaves it out
  double Diameter = 0;         // mm
  double Transverse = 0;       // the switch value g of the stiffness across the bar
  double From = 0, Until = 0;  // hours
  double X1 = 0, Y1 = 0, X2 = 0, Y2 = 0;
  double Length = 0, Cos = 1, Sin = 0;  // from end 1 to end 2
  double Area = 0, Perimeter = 0;       // mm2, mm
  double Dowel_Stiffness = 0;           // N/mm3, of the material
  int Node[2] = {0, 0};
  Array1<std::int32_t, 12> Dof;  // x, y of end 1 and end 2, then the host's eight
  int Host = 0;                  // 0 for a free bar
  double Xi[2] = {}, Eta[2] = {};
  double N[2][4] = {};      // the host's shape functions at both ends
  double Axial[2][4] = {};  // the axial and the transverse row over the bar's four equations
  double Axial_Strain = 0, Transverse_Strain = 0, Mechanical_Strain = 0;
  Bar_Steel_State Steel;
  double Free_Strain_Start = 0, Free_Strain = 0;
  Bar_End_State End[2];
  bool Started = false;  // has come into play
  double Reference_Axial = 0, Reference_Transverse = 0;

  bool Bonded() const { return Host != 0; }
  int Dof_Count() const { return Bonded() ? 12 : 4; }
};

// Inserts values(1..n) in rising order, the place of each found by halving the part already sorted.
void Sort_Values(Table<double>& values, int n);

// The natural coordinates (xi, eta in -1..1) of the point (x, y) in a mesh element, by the search of
// a 21 x 21 grid that narrows by ten each round until the point mapped is within 0.01 mm (at
// most twelve rounds).
void Natural_Coordinates(const Project& p, const Mesh_Element& e, double x, double y, double& xi,
                         double& eta);

// Cuts every bar of the design at the sides of the mesh elements into bar elements, finds their
// hosts and shape functions and numbers their nodes from `first_node` on (the count of new nodes
// is returned in `new_nodes`). False, with the message, when the pieces pass the 25000 the
// analysis can hold.
bool Cut_Reinforcement(const Project& p, int first_node, Table<Bar_Element>& bars, int& new_nodes,
                       std::string& message);

// Cuts the bars (Cut_Reinforcement) behind the nodes numbered so far (mesh and doubled nodes), adds
// the new nodes to Doubled_Nodes, and fills each element's equations and operators.
bool Set_Reinforcement_Elements(const Project& p, Mechanical_State& m, std::string& message);

// The operators of a bar element: axial and transverse rows, and the slip operator of each end.
void Set_Bar_Matrices(Bar_Element& b);

// The tangent of a bar element over its equations (4 free, 12 bonded).
void Bar_Stiffness(const Bar_Element& b, double K[12][12]);

// The stresses of a bar element from its total displacements and the temperatures of its host's
// corners at the start and end of the step (ignored for a free bar), and its forces.
void Bar_Stresses(const Material& material, Bar_Element& b, const double u[12], const double T_start[4],
                  const double T_end[4], double F[12]);

// Takes the state of a bar element that comes into play at displacements u as its zero.
void Start_Bar(Bar_Element& b, const double u[12]);

// End of step: the current values become the start values.
void Roll_Bar_Element(Bar_Element& b);

// The mesh record of a bar element, as the project file and the viewer keep it.
Rebar Mesh_Rebar_Of(const Project& p, const Bar_Element& b);

}  // namespace pvx
