// Mesh borders and interfaces split into chains by the nodes that cuts put on them, and the drying
// periods of mesh borders after the project file.
#include "mesh/mesh_borders.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>
#include <vector>

#include "mesh_fixtures.h"

namespace pvx {
namespace {

// Follows the chain of entries from `from` to `to` through the table: the nodes in order.
template <class Record>
std::vector<int> Chain(const Table<Record>& entries, int from, int to) {
  std::vector<int> nodes{from};
  while (nodes.back() != to && nodes.size() < 100) {
    const auto next = std::find_if(entries.begin(), entries.end(), [&](const Record& r) {
      return r.Node_A == nodes.back() && r.Node_B != r.Node_A;
    });
    if (next == entries.end()) break;
    nodes.push_back(next->Node_B);
  }
  return nodes;
}

TEST(Split_Borders, TakesTheNodesStrictlyOnTheLineInOrderOfDistance) {
  // What the line is, x and y of each node (1 and 2 the ends of the border, the others new), the
  // chain.
  const std::tuple<const char*, std::vector<double>, std::vector<int>> cases[] = {
      // 3 and 4 within 0.001 of the line; 5 beyond the end, 6 before the start, 7 0.002 off it,
      // 8 on the end itself; 9 as far along as 4, so after it.
      {"along X",
       {0, 0, 100, 0, 75, 0.0005, 25, -0.0009, 150, 0, -5, 0.0002, 50, 0.002, 100, 0, 25, 0},
       {1, 4, 9, 3, 2}},
      // Length 50 along (0.6, 0.8): 3 at 40, 4 at 10; 5 is 0.00064 across and 10.00048 along, 6
      // 0.0016 across.
      {"slanted", {10, 10, 40, 50, 34, 42, 16, 18, 16.0008, 18, 16.002, 18}, {1, 4, 5, 3, 2}},
  };
  for (const auto& [name, nodes, chain] : cases) {
    SCOPED_TRACE(name);
    Project p = test::Empty_Project();
    for (std::size_t k = 0; k < nodes.size(); k += 2)
      p.Mesh_Node.add({nodes[k], nodes[k + 1]});
    Border b = test::On_Side<Border>(1, 2), empty = test::On_Side<Border>(1, 1);  // of zero length
    b.Hygral_Active = empty.Hygral_Active = True_Flag;
    p.Mesh_Border.add(b);
    p.Mesh_Border.add(empty);
    std::string message;
    Project unchanged = p;  // nodes before first_new are not looked at
    ASSERT_TRUE(Split_Borders(unchanged, p.Mesh_Node.count() + 1, message));
    EXPECT_EQ(unchanged.Mesh_Border, p.Mesh_Border);
    ASSERT_TRUE(Split_Borders(p, 3, message));
    EXPECT_EQ(Chain(p.Mesh_Border, 1, 2), chain);
    EXPECT_EQ(p.Mesh_Border.count(), static_cast<int>(chain.size()));
    EXPECT_EQ(p.Mesh_Border[2], empty);  // the first entry keeps its place, the others follow
    for (const Border& m : p.Mesh_Border)
      EXPECT_EQ(m.Hygral_Active, True_Flag);
  }
}

TEST(Split_Borders, ACutPuttingFourNodesOnABorderAndAnInterfaceMakesChains) {
  // The left side of a square carries a border from (0,300) down to (0,0), the right side an
  // interface upwards; a cut in five parts across the square puts four nodes on each.
  Project p = test::Square(300);
  p.Border.add(test::On_Side<Border>(4, 1));
  Interface f = test::On_Side<Interface>(2, 3);
  f.Layer_Material = "Bitumen";
  p.Interface.add(f);
  Mesh_Session s = test::Meshed(p);
  ASSERT_EQ(test::Cut(p, s, 1, 2, 5), "");
  // P(k) are 5, 7, 9, 11 (right edge, upwards) and Q(k) 6, 8, 10, 12 (left edge, upwards).
  EXPECT_EQ(Chain(p.Mesh_Border, 4, 1), (std::vector<int>{4, 12, 10, 8, 6, 1}));
  EXPECT_EQ(p.Mesh_Border.count(), 5);
  EXPECT_EQ(p.Mesh_Border[1].Node_B, 12);
  EXPECT_EQ(Chain(p.Mesh_Interface, 2, 3), (std::vector<int>{2, 5, 7, 9, 11, 3}));
  EXPECT_EQ(p.Mesh_Interface[5].Layer_Material, "Bitumen");  // the data go with each piece

  // A table that would pass its limit is refused with nothing changed.
  p.Mesh_Interface.resize(Max_Mesh_Interfaces, f);
  const Project before = p;
  std::string message;
  EXPECT_FALSE(Split_Interfaces(p, 5, message));
  EXPECT_EQ(message, Too_Many_Interfaces_Message);
  EXPECT_EQ(p, before);
}

// Drying borders through the project file: the mesh borders, which the file holds without hygral
// periods, take them again from the design borders they lie on.
TEST(Border_Periods, TheMeshBordersOfAFileOfAnyVersionDryAsTheMesherMadeThem) {
  // Two 300 x 300 macros side by side. The bottom of the left one dries in two periods; the side
  // they share is held twice, in each macro's order, with one and with three periods.
  Project p = test::Square(300);
  Add_Node(p, 600, 0);
  Add_Node(p, 600, 300);
  test::Add_Macro(p, 2, 5, 6, 3);
  for (const auto& [a, b, periods] : {std::tuple{1, 2, 2}, {2, 3, 1}, {3, 2, 3}}) {
    Border d = test::On_Side<Border>(a, b);
    for (int k = 1; k <= periods; ++k)
      d.Hygral_Periods.add(Hygral_Period{24.0 * k, 8768, 1, 1e-3 * a});
    p.Border.add(d);
  }
  Mesh_Session s = test::Meshed(p);
  ASSERT_EQ(test::Cut(p, s, 1, 1, 3), "");  // the bottom in three
  ASSERT_EQ(test::Cut(p, s, 2, 2, 2), "");  // the shared side in two
  Border stray = p.Border[1];               // on the left end, where no design border lies
  std::tie(stray.Node_A, stray.Node_B) = std::tuple(4, 1);
  ASSERT_EQ(p.Mesh_Border.add(stray), 3 + 2 + 2 + 1);
  Table<Border> expected = p.Mesh_Border;
  expected[8].Hygral_Periods.clear();

  Project back;
  for (const int version : {100, Save_Version(p)}) {
    std::string database;
    Read_Report report;
    ASSERT_TRUE(Parse_Project_Text(Write_Project_Text(p, version, "DB.txt"), back, database, report));
    EXPECT_EQ(back.Mesh_Border, expected) << version;
  }
  // The file stays as it was: the read project saves to the same bytes.
  EXPECT_EQ(Write_Project_Text(back, Save_Version(back), "DB.txt"),
            Write_Project_Text(p, Save_Version(p), "DB.txt"));
}

}  // namespace
}  // namespace pvx
