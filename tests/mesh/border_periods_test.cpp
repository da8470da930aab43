// Drying borders through the project file: the mesh borders, which the file holds without hygral
// periods, take them again from the design borders they lie on.
#include <gtest/gtest.h>

#include <tuple>

#include "mesh_fixtures.h"

namespace pvx {
namespace {

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
