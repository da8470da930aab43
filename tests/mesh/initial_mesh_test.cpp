// The initial mesh and node merging.
#include "mesh/initial_mesh.h"

#include <gtest/gtest.h>

#include <random>
#include <tuple>

#include "mesh/mesh_index.h"
#include "mesh_fixtures.h"

namespace pvx {
namespace {

TEST(Find_Or_Add_Node, MergesWithinAHundredthInEachCoordinateAndTakesTheFirst) {
  // What the call is, the point, the node it gives.
  const std::tuple<const char*, double, double, int> calls[] = {
      {"the first", 0, 0, 1},
      {"0.015 apart: a node of its own", 0.015, 0, 2},
      {"within both: the first in number order", 0.008, 0.0099, 1},
      {"0.012 from node 1: only node 2 is near", 0.012, 0, 2},
      {"exactly 0.01 is not less than 0.01", 0, 0.01, 3},
      {"below and left", -0.0099, -0.0099, 1},
  };
  Project p = test::Empty_Project();
  Mesh_Index index;
  std::string message;
  for (const auto& [name, x, y, node] : calls) {
    int n = 0;
    ASSERT_TRUE(Find_Or_Add_Node(p, index, x, y, n, message));
    EXPECT_EQ(n, node) << name;
  }
  EXPECT_EQ(p.Mesh_Node.count(), 3);

  // On crowded points (a lattice of 0.004 mm with jitter) the index answers what a plain scan in
  // number order answers.
  std::mt19937 random(7);
  std::uniform_int_distribution<int> cell(-40, 40);
  std::uniform_real_distribution<double> jitter(-0.002, 0.002);
  std::vector<Mesh_Node> scanned;
  auto scan = [&](double x, double y) {
    for (std::size_t i = 0; i < scanned.size(); ++i)
      if (std::fabs(x - scanned[i].X) < 0.01 && std::fabs(y - scanned[i].Y) < 0.01)
        return static_cast<int>(i) + 1;
    scanned.push_back({x, y});
    return static_cast<int>(scanned.size());
  };
  Project q = test::Empty_Project();
  Mesh_Index crowded;
  for (int i = 0; i < 4000; ++i) {
    const double x = 1000 + cell(random) * 0.004 + jitter(random),
                 y = -500 + cell(random) * 0.004 + jitter(random);
    int n = 0;
    ASSERT_TRUE(Find_Or_Add_Node(q, crowded, x, y, n, message));
    ASSERT_EQ(n, scan(x, y)) << i;
  }

  // At the largest node number an element can hold an existing node is still found, a new one is
  // refused.
  Project full = test::Empty_Project();
  for (int i = 1; i <= Max_I16_Reference; ++i)
    full.Mesh_Node.add({static_cast<double>(i), 0});
  Rebuild_Mesh_Index(full, index);
  int n = 0;
  EXPECT_TRUE(Find_Or_Add_Node(full, index, 5, 0, n, message));
  EXPECT_EQ(n, 5);
  EXPECT_FALSE(Find_Or_Add_Node(full, index, -1, 0, n, message));
  EXPECT_EQ(message, Too_Many_Nodes_Message);
  EXPECT_EQ(full.Mesh_Node.count(), Max_I16_Reference);
}

TEST(Make_Initial_Mesh, OneElementPerMacroWithSharedCornersAndBordersByPlace) {
  Project p = test::Square(100);
  // Nodes 7 and 8 are the second macro's own copies of the shared corners, 0.005 off: still the
  // same mesh nodes; node 9 is far from any.
  for (const auto& [x, y] :
       {std::pair{200.0, 0.0}, {200.0, 100.0}, {100.005, -0.005}, {99.995, 100.009}, {0.0, 300.0}})
    Add_Node(p, x, y);
  p.Macro_Defaults.Temperature = 8;
  test::Add_Macro(p, 7, 5, 6, 8, "Granite");
  Border b = test::On_Side<Border>(7, 3);  // node 7, the copy of node 2, is mesh node 2
  b.Thermal_Periods.add(Thermal_Period{});
  b.Thermal_Periods[1].Convection_Coefficient = 7.5;
  p.Border.add(b);
  b.Node_A = 9;  // no mesh node there: keeps its design number
  p.Border.add(b);
  Interface f = test::On_Side<Interface>(1, 4);
  f.Layer_Material = "Bitumen";
  p.Interface.add(f);
  Mesh_Session s;
  s.Circuits_Integrated = true;
  p.Mesh_Node.add({5, 5});  // an old mesh, replaced
  std::string message;
  ASSERT_TRUE(Make_Initial_Mesh(p, s, message)) << message;
  EXPECT_FALSE(s.Circuits_Integrated);
  EXPECT_EQ(p.Mesh_Node.count(), 6);
  ASSERT_EQ(p.Mesh_Element.count(), 2);
  EXPECT_EQ(test::Corners(p, 1), (std::array<int, 4>{1, 2, 3, 4}));
  EXPECT_EQ(test::Corners(p, 2), (std::array<int, 4>{2, 5, 6, 3}));
  EXPECT_EQ(p.Mesh_Element[2].Temperature, 8);     // each element a copy of its macro
  EXPECT_EQ(p.Mesh_Node[2], (Mesh_Node{100, 0}));  // the node keeps the corner that made it
  test::Expect_Sound(p);
  // Borders and interfaces keep their data, on the mesh nodes at their ends.
  b.Node_A = 2;
  EXPECT_EQ(p.Mesh_Border, (Table<Border>{b, p.Border[2]}));
  EXPECT_EQ(p.Mesh_Interface, p.Interface);

  // A macro corner that names no node is refused with the mesh as it was.
  const Project before = p;
  p.Macro[1].Corner[3] = 99;
  EXPECT_FALSE(Make_Initial_Mesh(p, s, message));
  EXPECT_NE(message.find("node 99"), std::string::npos) << message;
  EXPECT_EQ(p.Mesh_Node, before.Mesh_Node);
  EXPECT_EQ(p.Mesh_Element, before.Mesh_Element);
}

}  // namespace
}  // namespace pvx
