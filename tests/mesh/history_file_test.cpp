// The splitting history goes through the project file and replays to the mesh that was saved.
#include <gtest/gtest.h>

#include "app/project_file.h"
#include "mesh/initial_mesh.h"
#include "mesh/split_history.h"
#include "mesh_fixtures.h"

namespace pvx {
namespace {

TEST(HistoryFile, ASavedHistoryReplaysToTheSavedMesh) {
  Project p = test::Square(300);
  Border b;
  b.Node_A = 1;
  b.Node_B = 2;
  b.Thermal_Periods.add(Thermal_Period{});
  b.Hygral_Periods.add(Hygral_Period{});
  p.Border.add(b);
  Mesh_Session s;
  std::string message;
  ASSERT_TRUE(Make_Initial_Mesh(p, s, message));
  const int options[3] = {Ratio_Doubling, Ratio_Geometric, Ratio_Doubling_Mirror};
  for (int k = 0; k < 3; ++k) {
    s.Parameters.PickedElement = 1 + k;
    s.Parameters.PickedSide = 1 + k % 2;
    s.Parameters.Division = 3 + k;
    s.Parameters.RatioOption = options[k];
    s.Parameters.FactorA = 1.0 / 3;  // fractions that need all their digits
    ASSERT_TRUE(Split_Execution(p, s, message)) << message;
  }
  Project back;
  std::string database;
  Read_Report report;
  ASSERT_TRUE(
      Parse_Project_Text(Write_Project_Text(p, Current_File_Version, "DB.txt"), back, database, report))
      << report.detail;
  EXPECT_EQ(back.Split, p.Split);
  EXPECT_EQ(back.Split_Position, 3);
  EXPECT_EQ(back.Mesh_Node, p.Mesh_Node);
  EXPECT_EQ(back.Mesh_Element, p.Mesh_Element);

  Mesh_Session fresh;
  ASSERT_TRUE(History_All(back, fresh, message)) << message;
  EXPECT_EQ(back.Mesh_Node, p.Mesh_Node);
  EXPECT_EQ(back.Mesh_Element, p.Mesh_Element);
  EXPECT_EQ(back.Mesh_Border, p.Mesh_Border);
}

}  // namespace
}  // namespace pvx
