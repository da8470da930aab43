// A strip cut round a closed ring of elements: the frame round a hole stays whole, so heat flows
// round it both ways. The frame and its starting field are mirror images about y = 150 mm, and so
// must the computed field be; a slit where the strip closes would break that symmetry.
#include <gtest/gtest.h>

#include <cmath>

#include "analysis/driver.h"
#include "mesh/initial_mesh.h"
#include "mesh/splitting.h"
#include "support/temp_dir.h"

namespace pvx {
namespace {

// A square frame 300 mm wide round a hole of 100 mm, of four macros (bottom, right, top, left);
// the left one starts hot (a node shared by two macros starts at the value of the later one).
Project Frame() {
  Project p;
  New_Project(p);
  Material m;
  m.Name = "concrete";
  m.Has_Thermal = true;
  m.Capacity_Wet = 2400;
  m.Conductivity_Wet = 2.5f;
  m.Heat_Model = "NO H";
  p.Material.add(m);
  for (auto [x, y] : {std::pair{0.0, 0.0},
                      {300.0, 0.0},
                      {300.0, 300.0},
                      {0.0, 300.0},
                      {100.0, 100.0},
                      {200.0, 100.0},
                      {200.0, 200.0},
                      {100.0, 200.0}})
    Add_Node(p, x, y);
  const int corners[4][4] = {{1, 2, 6, 5}, {2, 3, 7, 6}, {3, 4, 8, 7}, {4, 1, 5, 8}};
  for (const auto& c : corners) {
    Macro macro;
    static_cast<Macro_Values&>(macro) = p.Macro_Defaults;
    macro.Material = m.Name;
    macro.Corner = {{static_cast<std::int16_t>(c[0]), static_cast<std::int16_t>(c[1]),
                     static_cast<std::int16_t>(c[2]), static_cast<std::int16_t>(c[3])}};
    macro.Temperature = p.Macro.count() == 3 ? 60.0f : 20.0f;
    macro.Thickness = 1000;
    macro.Present_From = 0;
    macro.Present_Until = 1000;
    p.Macro.add(macro);
  }
  p.Computation_Time = 12;
  p.Period.clear();
  p.Period.add(Period{0, 12, 12, 1});
  p.Replace_Material = False_Flag;
  p.Result_File_Name = "F.RES";
  Set_Result_Names(p);
  return p;
}

TEST(Ring_Cut, TheFrameClosesWholeAndConductsRoundTheRing) {
  struct Case {
    int parts, nodes, elements;
  };
  // Every radial side gets parts-1 new nodes, each at a position of its own.
  for (const Case c : {Case{2, 12, 8}, Case{3, 16, 12}, Case{5, 24, 20}}) {
    SCOPED_TRACE("cut into " + std::to_string(c.parts));
    Project p = Frame();
    Mesh_Session session;
    std::string message;
    ASSERT_TRUE(Make_Initial_Mesh(p, session, message)) << message;
    Table<double> fractions;
    for (int k = 1; k <= c.parts; ++k)
      fractions.add(static_cast<double>(k) / c.parts);
    // Across the radial side from the outer corner (300, 0) to the inner one (200, 100).
    ASSERT_TRUE(Splitting(p, session, 1, 2, fractions, message)) << message;
    ASSERT_EQ(p.Mesh_Node.count(), c.nodes);
    ASSERT_EQ(p.Mesh_Element.count(), c.elements);
    for (int a = 1; a <= p.Mesh_Node.count(); ++a)
      for (int b = a + 1; b <= p.Mesh_Node.count(); ++b)
        EXPECT_FALSE(std::fabs(p.Mesh_Node[a].X - p.Mesh_Node[b].X) < 1e-6 &&
                     std::fabs(p.Mesh_Node[a].Y - p.Mesh_Node[b].Y) < 1e-6)
            << "nodes " << a << " and " << b << " coincide";

    test::Temp_Dir dir;
    Run_State run;
    Analysis_Host host;
    ASSERT_EQ(Run_Analysis(p, run, host, dir.path().string(), message), Run_Outcome::Completed) << message;
    auto T = [&](int node) { return run.Temperature_New[run.Numbering.Node_Equation[node]]; };
    int mirrored = 0;
    for (int a = 1; a <= p.Mesh_Node.count(); ++a)
      for (int b = 1; b <= p.Mesh_Node.count(); ++b)
        if (std::fabs(p.Mesh_Node[a].X - p.Mesh_Node[b].X) < 1e-6 &&
            std::fabs(300 - p.Mesh_Node[a].Y - p.Mesh_Node[b].Y) < 1e-6) {
          EXPECT_NEAR(T(a), T(b), 1e-6) << "nodes " << a << " and " << b;
          ++mirrored;
        }
    EXPECT_EQ(mirrored, c.nodes);
    // The heat has spread round to the corners of the frame opposite the hot part.
    for (int n = 1; n <= p.Mesh_Node.count(); ++n)
      if (p.Mesh_Node[n].X == 300 && (p.Mesh_Node[n].Y == 0 || p.Mesh_Node[n].Y == 300)) {
        EXPECT_GT(T(n), 20.5);
      }
  }
}

}  // namespace
}  // namespace pvx
