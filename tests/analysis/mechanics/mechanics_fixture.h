// Small meshes, materials, supports and loads for the tests of the mechanical analysis, and one
// mechanical step driven through the same stages as the run.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <string>

#include "analysis/driver.h"
#include "analysis/mechanics/assembly.h"
#include "analysis/mechanics/stress_loop.h"
#include "design/time_function.h"

namespace pvx::test {

inline Property_Table Constant_Property(double v) {
  Property_Table t;
  t.Is_Constant = true;
  t.Abscissa.add(0);
  t.Value.add(static_cast<float>(v));
  return t;
}

// A linear elastic concrete without heat of its own.
inline Material Elastic(double E, double nu, double alpha = 0, double density = 0) {
  Material m;
  m.Name = "elastic";
  m.Has_Thermal = m.Has_Mechanical = true;
  m.Capacity_Wet = 2400;
  m.Conductivity_Wet = 2.5f;
  m.Heat_Model = "NO H";
  m.Model_Name = "Linear Elastic";
  m.Dead_Weight = density;
  m.E = Constant_Property(E);
  m.Nu = Constant_Property(nu);
  m.Ft = Constant_Property(3);
  m.Fc = Constant_Property(40);
  m.Thermal_Dilatation = Constant_Property(alpha);
  return m;
}

// nx by ny elements over [0, width] x [0, height], node (i, j) numbered i (ny + 1) + j + 1, corners
// anticlockwise, all of `thickness`.
inline Project Grid(int nx, int ny, double width, double height, const Material& m, double thickness = 1) {
  Project p;
  New_Project(p);
  p.Material.add(m);
  p.Replace_Material = False_Flag;
  p.Result_File_Name = "M.RES";
  Set_Result_Names(p);
  for (int i = 0; i <= nx; ++i)
    for (int j = 0; j <= ny; ++j)
      p.Mesh_Node.add(Mesh_Node{width * i / nx, height * j / ny});
  auto node = [&](int i, int j) { return static_cast<std::int16_t>(i * (ny + 1) + j + 1); };
  for (int i = 0; i < nx; ++i)
    for (int j = 0; j < ny; ++j) {
      Mesh_Element e;
      e.Material = m.Name;
      e.Thickness = static_cast<float>(thickness);
      e.Corner = {{node(i, j), node(i + 1, j), node(i + 1, j + 1), node(i, j + 1)}};
      p.Mesh_Element.add(e);
    }
  return p;
}

// Node (i, j) of a grid with ny elements across.
inline int Node_Of(int ny, int i, int j) {
  return i * (ny + 1) + j + 1;
}

// A support at a mesh node along `angle` (degrees); with a displacement it is prescribed by a
// constant displacement function.
inline Support& Hold(Project& p, int node, double angle) {
  Support s;
  s.Node_A = static_cast<std::int16_t>(node);
  s.Angle = angle;
  p.Mesh_Support.add(s);
  return p.Mesh_Support.last();
}
// Every node of column i of a grid with ny elements across, held along each of `angles`.
inline void Hold_Column(Project& p, int ny, int i, std::initializer_list<double> angles) {
  for (int j = 0; j <= ny; ++j)
    for (const double angle : angles)
      Hold(p, Node_Of(ny, i, j), angle);
}
inline void Prescribe(Project& p, Support& s, double displacement) {
  Function f = Default_Function(Function_Family::Displacement);
  Set_Function_Form(f, Function_Form::Constant);
  f.Constant_Value = displacement;
  s.Has_Function = True_Flag;
  s.Displacement_Function = static_cast<std::int16_t>(p.Displacement_Functions.add(f));
}

// A line load from mesh node a to b: constant value (MPa) along a global angle.
inline Load& Line_Load(Project& p, int a, int b, double value, double angle, double thickness) {
  Load l;
  l.Node_A = static_cast<std::int16_t>(a);
  l.Node_B = static_cast<std::int16_t>(b);
  l.Is_Level = False_Flag;
  l.Value = value;
  l.Angle = angle;
  l.Effective_Thickness = thickness;
  p.Mesh_Load.add(l);
  return p.Mesh_Load.last();
}

// The run state of one variant, ready for mechanical steps that start at time 0.
struct Mechanical_Run {
  Run_State run;
  Analysis_Host quiet;
  Analysis_Host& host;
  std::string message;
  explicit Mechanical_Run(const Project& p, Analysis_Host* asked = nullptr) : host(asked ? *asked : quiet) {
    run.Mechanical_Included = true;
    Allocate_Solution_Arrays(p, run, host);
    Set_Initial_State(p, run, 1);
  }
  // One step of 1 hour in which every temperature rises by dT.
  Mechanical_Step Step(const Project& p, double dT = 0) {
    for (double& T : run.Temperature_New)
      T += dT;
    run.Mid_Step_Time = 0.5;
    Set_Free_Strains(p, run);
    return Solve_Mechanical_Step(p, run, host, 1, 1, message);
  }
  double U(int node, int direction) const {  // direction 1 x, 2 y
    return run.Mechanics.Total[Place(run.Mechanics, 2 * node - 2 + direction)];
  }
  // Component (0 xx, 1 yy, 2 xy, 3 zz) of the stress at point k of element e.
  double S(int e, int k, int component) const {
    return Mech(run.Mechanics, e, k).Stress[0][static_cast<std::size_t>(component)];
  }
};

}  // namespace pvx::test
