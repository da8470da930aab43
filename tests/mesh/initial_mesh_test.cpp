// The initial mesh and node merging.
#include <gtest/gtest.h>

#include <random>

#include "mesh/initial_mesh.h"
#include "mesh/mesh_index.h"
#include "mesh_fixtures.h"

namespace pvx {
namespace {

using test::Corners;

// The merge rule written as a plain scan, to hold the indexed search against.
int Scan_Or_Add(std::vector<Mesh_Node>& nodes, double x, double y) {
  for (std::size_t i = 0; i < nodes.size(); ++i)
    if (std::fabs(x - nodes[i].X) < 0.01 && std::fabs(y - nodes[i].Y) < 0.01) return static_cast<int>(i) + 1;
  nodes.push_back({x, y});
  return static_cast<int>(nodes.size());
}

TEST(FindOrAddNode, MergesWithinAHundredthInEachCoordinateAndTakesTheFirst) {
  Project p = test::Empty_Project();
  Mesh_Index index;
  std::string message;
  int n = 0;
  ASSERT_TRUE(Find_Or_Add_Node(p, index, 0, 0, n, message));
  EXPECT_EQ(n, 1);
  ASSERT_TRUE(Find_Or_Add_Node(p, index, 0.015, 0, n, message));
  EXPECT_EQ(n, 2);  // 0.015 apart: two nodes
  ASSERT_TRUE(Find_Or_Add_Node(p, index, 0.008, 0.0099, n, message));
  EXPECT_EQ(n, 1);  // within both: the first in number order
  ASSERT_TRUE(Find_Or_Add_Node(p, index, 0.012, 0, n, message));
  EXPECT_EQ(n, 2);  // 0.012 from node 1: only node 2 is near
  ASSERT_TRUE(Find_Or_Add_Node(p, index, 0, 0.01, n, message));
  EXPECT_EQ(n, 3);  // exactly 0.01 is not "less than"
  ASSERT_TRUE(Find_Or_Add_Node(p, index, -0.0099, -0.0099, n, message));
  EXPECT_EQ(n, 1);
  EXPECT_EQ(p.Mesh_Node.count(), 3);
}

TEST(FindOrAddNode, AgreesWithAPlainScanOnCrowdedPoints) {
  // Points on a lattice of 0.004 mm with jitter, so that most have several nodes within reach.
  std::mt19937 random(7);
  std::uniform_int_distribution<int> cell(-40, 40);
  std::uniform_real_distribution<double> jitter(-0.002, 0.002);
  Project p = test::Empty_Project();
  Mesh_Index index;
  std::vector<Mesh_Node> reference;
  std::string message;
  for (int i = 0; i < 4000; ++i) {
    const double x = 1000 + cell(random) * 0.004 + jitter(random);
    const double y = -500 + cell(random) * 0.004 + jitter(random);
    int n = 0;
    ASSERT_TRUE(Find_Or_Add_Node(p, index, x, y, n, message));
    ASSERT_EQ(n, Scan_Or_Add(reference, x, y)) << i;
  }
  EXPECT_EQ(p.Mesh_Node.count(), static_cast<int>(reference.size()));
}

TEST(FindOrAddNode, StopsBeforeANodeNumberAnElementCannotHold) {
  Project p = test::Empty_Project();
  Mesh_Index index;
  std::string message;
  for (int i = 1; i <= Max_I16_Reference; ++i)
    p.Mesh_Node.add({static_cast<double>(i), 0});
  Rebuild_Mesh_Index(p, index);
  int n = 0;
  EXPECT_TRUE(Find_Or_Add_Node(p, index, 5, 0, n, message));  // an existing one is still found
  EXPECT_EQ(n, 5);
  EXPECT_FALSE(Find_Or_Add_Node(p, index, -1, 0, n, message));
  EXPECT_EQ(message, Too_Many_Nodes_Message);
  EXPECT_EQ(p.Mesh_Node.count(), Max_I16_Reference);
}

TEST(InitialMesh, OneElementPerMacroWithSharedCorners) {
  Project p = test::Empty_Project();
  test::Node(p, 0, 0);
  test::Node(p, 100, 0);
  test::Node(p, 100, 100);
  test::Node(p, 0, 100);
  test::Node(p, 200.0, 0);
  test::Node(p, 200, 100);
  // The second macro's own copies of the shared corners, 0.005 off: still the same mesh nodes.
  test::Node(p, 100.005, -0.005);
  test::Node(p, 99.995, 100.009);
  test::Add_Macro(p, 1, 2, 3, 4);
  p.Macro_Defaults.Temperature = 8;
  p.Macro_Defaults.Dead_Weight_At = 24;
  test::Add_Macro(p, 7, 5, 6, 8, "Granite");
  Mesh_Session s;
  s.Circuits_Integrated = true;
  std::string message;
  ASSERT_TRUE(Make_Initial_Mesh(p, s, message)) << message;
  EXPECT_FALSE(s.Circuits_Integrated);
  EXPECT_EQ(p.Mesh_Node.count(), 6);
  ASSERT_EQ(p.Mesh_Element.count(), 2);
  EXPECT_EQ(Corners(p, 1), (std::array<int, 4>{1, 2, 3, 4}));
  EXPECT_EQ(Corners(p, 2), (std::array<int, 4>{2, 5, 6, 3}));
  EXPECT_EQ(p.Mesh_Element[2].Material, "Granite");
  EXPECT_EQ(p.Mesh_Element[2].Macro_Number, 2);
  EXPECT_EQ(p.Mesh_Element[2].Temperature, 8);
  EXPECT_EQ(p.Mesh_Element[2].Dead_Weight_At, 24);
  EXPECT_EQ(p.Mesh_Element[1].Temperature, 20);
  // The node keeps the coordinates of the corner that made it.
  EXPECT_EQ(p.Mesh_Node[2].X, 100);
  EXPECT_EQ(p.Mesh_Node[2].Y, 0);
  test::Expect_Sound(p);
}

TEST(InitialMesh, BordersAndInterfacesFindTheirNodesByPlace) {
  Project p = test::Square(100);
  test::Node(p, 0, 200);    // design node 5, 2 mesh nodes away from anything
  test::Node(p, 100, 100);  // design node 6, on mesh node 3
  Border b;
  b.Node_A = 2;
  b.Node_B = 3;
  b.Thermal_Active = True_Flag;
  b.Thermal_Periods.add(Thermal_Period{});
  b.Thermal_Periods[1].Convection_Coefficient = 7.5;
  p.Border.add(b);
  b.Node_A = 5;  // no mesh node there: keeps its design number
  b.Node_B = 6;
  p.Border.add(b);
  Interface f;
  f.Node_A = 1;
  f.Node_B = 4;
  f.Layer_Material = "Bitumen";
  p.Interface.add(f);
  Mesh_Session s;
  std::string message;
  ASSERT_TRUE(Make_Initial_Mesh(p, s, message));
  ASSERT_EQ(p.Mesh_Border.count(), 2);
  EXPECT_EQ(p.Mesh_Border[1].Node_A, 2);
  EXPECT_EQ(p.Mesh_Border[1].Node_B, 3);
  EXPECT_EQ(p.Mesh_Border[1].Thermal_Periods[1].Convection_Coefficient, 7.5);
  EXPECT_EQ(p.Mesh_Border[2].Node_A, 5);
  EXPECT_EQ(p.Mesh_Border[2].Node_B, 3);
  ASSERT_EQ(p.Mesh_Interface.count(), 1);
  EXPECT_EQ(p.Mesh_Interface[1].Node_A, 1);
  EXPECT_EQ(p.Mesh_Interface[1].Node_B, 4);
  EXPECT_EQ(p.Mesh_Interface[1].Layer_Material, "Bitumen");
}

TEST(InitialMesh, ReplacesAnOldMeshAndRefusesAMissingCorner) {
  Project p = test::Square(100);
  Mesh_Session s;
  std::string message;
  ASSERT_TRUE(Make_Initial_Mesh(p, s, message));
  p.Mesh_Node.add({5, 5});
  ASSERT_TRUE(Make_Initial_Mesh(p, s, message));
  EXPECT_EQ(p.Mesh_Node.count(), 4);

  const Project before = p;
  p.Macro[1].Corner[3] = 9;
  const auto mesh_nodes = p.Mesh_Node;
  EXPECT_FALSE(Make_Initial_Mesh(p, s, message));
  EXPECT_NE(message.find("node 9"), std::string::npos);
  EXPECT_EQ(p.Mesh_Node, before.Mesh_Node);
  EXPECT_EQ(p.Mesh_Element, before.Mesh_Element);
}

}  // namespace
}  // namespace pvx
