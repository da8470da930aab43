// Small projects for the mesh tests, the cuts and the file round trip they share, and checks that
// hold for any sound mesh.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <initializer_list>
#include <map>
#include <string>
#include <utility>

#include "app/project.h"
#include "app/project_file.h"
#include "mesh/initial_mesh.h"
#include "mesh/split_history.h"

namespace pvx::test {

inline Project Empty_Project() {
  Project p;
  New_Project(p);
  return p;
}

inline int Add_Macro(Project& p, int c1, int c2, int c3, int c4, const std::string& material = "C30/37") {
  Macro m;
  static_cast<Macro_Values&>(m) = p.Macro_Defaults;
  m.Material = material;
  m.Corner = {{static_cast<std::int16_t>(c1), static_cast<std::int16_t>(c2), static_cast<std::int16_t>(c3),
               static_cast<std::int16_t>(c4)}};
  return p.Macro.add(m);
}

// One square macro from (0, 0) to (size, size), corners counter-clockwise from the origin.
inline Project Square(double size) {
  Project p = Empty_Project();
  for (const auto& [x, y] : {std::pair{0.0, 0.0}, {size, 0.0}, {size, size}, {0.0, size}})
    Add_Node(p, x, y);
  Add_Macro(p, 1, 2, 3, 4);
  return p;
}

// A cooling circuit with a pipe of `diameter` at each of the design nodes.
inline void Add_Circuit(Project& p, std::initializer_list<int> nodes, double diameter) {
  Circuit c = p.Circuit_Default;
  Resize_Pipes(c, static_cast<int>(nodes.size()));
  int k = 0;
  for (const int node : nodes)
    c.Pipe_Node[++k] = static_cast<std::int16_t>(node);
  c.Diameter = diameter;
  p.Circuit.add(c);
}

// The initial mesh of the project, in a session of its own.
inline Mesh_Session Meshed(Project& p) {
  Mesh_Session s;
  std::string message;
  EXPECT_TRUE(Make_Initial_Mesh(p, s, message)) << message;
  return s;
}

// A cut through the history, as the panel makes it: side `side` of `element` into `division` parts.
// The message of a refusal; empty when the cut was made.
inline std::string Cut(Project& p, Mesh_Session& s, int element, int side, int division,
                       int option = Ratio_Equal, double a = 1.5) {
  s.Parameters.PickedElement = element;
  s.Parameters.PickedSide = side;
  s.Parameters.Division = division;
  s.Parameters.RatioOption = option;
  s.Parameters.FactorA = a;
  std::string message;
  const bool ok = Split_Execution(p, s, message);
  EXPECT_EQ(ok, message.empty()) << message;
  return message;
}

// The same side of a line object, border or interface between nodes a and b.
template <class Record>
Record On_Side(int a, int b) {
  Record r;
  r.Node_A = static_cast<std::int16_t>(a);
  r.Node_B = static_cast<std::int16_t>(b);
  return r;
}

// Through the project file, as a mesh is met after a load.
inline Project Through_File(const Project& p) {
  Project back;
  std::string database;
  Read_Report report;
  EXPECT_TRUE(
      Parse_Project_Text(Write_Project_Text(p, Current_File_Version, "DB.txt"), back, database, report))
      << report.detail;
  return back;
}

inline std::array<int, 4> Corners(const Project& p, int element) {
  const auto& c = p.Mesh_Element[element].Corner;
  return {c[1], c[2], c[3], c[4]};
}

// Signed area of an element (positive when its corners run counter-clockwise).
inline double Element_Area(const Project& p, int element) {
  double area = 0;
  for (int j = 1; j <= 4; ++j) {
    const Mesh_Node& a = p.Mesh_Node[p.Mesh_Element[element].Corner[j]];
    const Mesh_Node& b = p.Mesh_Node[p.Mesh_Element[element].Corner[j % 4 + 1]];
    area += a.X * b.Y - b.X * a.Y;
  }
  return area / 2;
}

inline double Mesh_Area(const Project& p) {
  double area = 0;
  for (int e = 1; e <= p.Mesh_Element.count(); ++e)
    area += Element_Area(p, e);
  return area;
}

// Every element turns the same way and has a positive area, and the mesh is conforming: each
// directed side is used once, and a side is either shared in the opposite sense or on the outline.
inline void Expect_Sound(const Project& p) {
  std::map<std::pair<int, int>, int> sides;
  for (int e = 1; e <= p.Mesh_Element.count(); ++e) {
    EXPECT_GT(Element_Area(p, e), 0) << "element " << e;
    for (int j = 1; j <= 4; ++j) {
      const int a = p.Mesh_Element[e].Corner[j], b = p.Mesh_Element[e].Corner[j % 4 + 1];
      ASSERT_TRUE(p.Mesh_Node.valid(a) && p.Mesh_Node.valid(b)) << "element " << e;
      EXPECT_EQ(++sides[std::make_pair(a, b)], 1) << "side " << a << "-" << b << " used twice";
      EXPECT_EQ(p.Mesh_Element[e].Dof[2 * j - 1], 2 * a - 1);
      EXPECT_EQ(p.Mesh_Element[e].Dof[2 * j], 2 * a);
    }
  }
}

}  // namespace pvx::test
