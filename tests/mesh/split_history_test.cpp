// The splitting history: replay, also after the project file, a cut after stepping back that drops
// the undone ones, and a cut refused at the element limit with nothing changed (the node limit is
// the node index's, met in the tests of the initial mesh).
#include "mesh/split_history.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "mesh_fixtures.h"

namespace pvx {
namespace {

void Expect_Same_Mesh(const Project& a, const Project& b) {
  EXPECT_EQ(a.Mesh_Node, b.Mesh_Node);
  EXPECT_EQ(a.Mesh_Element, b.Mesh_Element);
  EXPECT_EQ(a.Mesh_Border, b.Mesh_Border);
  EXPECT_EQ(a.Mesh_Interface, b.Mesh_Interface);
}

TEST(Split_History, EachCutIsRecordedReplaysAfterTheFileAndACutAfterGoingBackDropsTheLaterOnes) {
  // Two macros side by side with a border and an interface, cut four times over.
  Project p = test::Square(300);
  Add_Node(p, 600, 0);
  Add_Node(p, 600, 300);
  test::Add_Macro(p, 2, 5, 6, 3, "Other");
  p.Border.add(test::On_Side<Border>(1, 2));
  p.Interface.add(test::On_Side<Interface>(2, 3));
  Mesh_Session s = test::Meshed(p);
  ASSERT_EQ(test::Cut(p, s, 1, 1, 3, Ratio_Doubling), "");
  ASSERT_EQ(test::Cut(p, s, 2, 1, 4, Ratio_Geometric_Mirror, 1.7), "");
  ASSERT_EQ(test::Cut(p, s, 2, 2, 5, Ratio_Doubling_Mirror), "");
  ASSERT_EQ(test::Cut(p, s, 7, 3, 2), "");
  ASSERT_EQ(p.Split.count(), 4);
  // 1 : 1.7 : 1.7 : 1, total 5.4: fractions that need all their digits in the file.
  EXPECT_EQ(std::tuple(p.Split_Position, p.Split[2].Element, p.Split[2].Side), std::tuple(4, 2, 1));
  EXPECT_THAT(p.Split[2].Fractions.data(),
              testing::Pointwise(testing::DoubleNear(1e-15), {1 / 5.4, 2.7 / 5.4, 4.4 / 5.4, 1.0}));
  test::Expect_Sound(p);
  EXPECT_NEAR(test::Mesh_Area(p), 600 * 300, 1e-6);

  Project back = test::Through_File(p);
  EXPECT_EQ(std::tuple(back.Split, back.Split_Position), std::tuple(p.Split, 4));
  Expect_Same_Mesh(back, p);
  // From the macros and the history alone, in a fresh session.
  std::string message;
  back.Mesh_Node.clear();
  back.Mesh_Element.clear();
  Mesh_Session fresh;
  int applied = 0;
  ASSERT_TRUE(Repeat_Splitting(back, fresh, back.Split.count(), applied, message)) << message;
  EXPECT_EQ(applied, 4);
  Expect_Same_Mesh(back, p);

  // A replay stops before a cut that cannot be made, and says which.
  back.Split[3].Element = 999;
  EXPECT_FALSE(History_All(back, s, message));
  EXPECT_EQ(back.Split_Position, 2);
  EXPECT_EQ(message.rfind("Cut 3 of the splitting history cannot be carried out: ", 0), 0u) << message;

  // Two steps back, a cut drops the two later ones.
  ASSERT_TRUE(History_Backward(p, s, message) && History_Backward(p, s, message));
  ASSERT_EQ(test::Cut(p, s, 3, 2, 2), "");
  EXPECT_EQ(p.Split.data(),
            (std::vector<Split_Record>{p.Split[1], p.Split[2], {3, 2, Table<double>{0.5, 1}}}));
}

TEST(Split_History, ACutPastTheElementLimitChangesNothing) {
  // 200 columns, then a cut across them into 126 rows would make 25200 elements; 125 rows reach
  // exactly 25000 (the index was put back after the refusal).
  Project p = test::Square(1000);
  Mesh_Session s = test::Meshed(p);
  ASSERT_EQ(test::Cut(p, s, 1, 1, 200), "");
  const Project before = p;
  EXPECT_EQ(test::Cut(p, s, 1, 2, 126), Too_Many_Elements_Message);
  EXPECT_EQ(p, before);
  ASSERT_EQ(test::Cut(p, s, 1, 2, 125), "");
  EXPECT_EQ(p.Mesh_Element.count(), Max_Mesh_Elements);
  EXPECT_EQ(p.Mesh_Node.count(), 201 * 126);
  test::Expect_Sound(p);
}

}  // namespace
}  // namespace pvx
