// The splitting history: replay, also after the project file, stepping back and forward, dropping
// the undone cuts, and cuts refused at the limits with nothing changed.
#include "mesh/split_history.h"

#include <gtest/gtest.h>

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
  EXPECT_EQ(p.Split_Position, 4);
  EXPECT_EQ(p.Split[2].Element, 2);
  EXPECT_EQ(p.Split[2].Side, 1);
  // 1 : 1.7 : 1.7 : 1, total 5.4: fractions that need all their digits in the file.
  const double weights[4] = {1, 2.7, 4.4, 5.4};
  ASSERT_EQ(p.Split[2].Fractions.count(), 4);
  for (int k = 1; k <= 4; ++k)
    EXPECT_NEAR(p.Split[2].Fractions[k], weights[k - 1] / 5.4, 1e-15) << k;
  test::Expect_Sound(p);
  EXPECT_NEAR(test::Mesh_Area(p), 600 * 300, 1e-6);

  Project back = test::Through_File(p);
  EXPECT_EQ(back.Split, p.Split);
  EXPECT_EQ(back.Split_Position, 4);
  Expect_Same_Mesh(back, p);
  // From the macros and the history alone, in a fresh session, twice.
  std::string message;
  for (int run = 0; run < 2; ++run) {
    back.Mesh_Node.clear();
    back.Mesh_Element.clear();
    Mesh_Session fresh;
    int applied = 0;
    ASSERT_TRUE(Repeat_Splitting(back, fresh, back.Split.count(), applied, message)) << message;
    EXPECT_EQ(applied, 4);
    Expect_Same_Mesh(back, p);
  }

  // A replay stops before a cut that cannot be made, and says which.
  back.Split[3].Element = 999;
  EXPECT_FALSE(History_All(back, s, message));
  EXPECT_EQ(back.Split_Position, 2);
  EXPECT_EQ(message.rfind("Cut 3 of the splitting history cannot be carried out: ", 0), 0u) << message;

  // Two steps back, a cut drops the two later ones. The history keys themselves are walked through
  // by the panel's own tests.
  ASSERT_TRUE(History_Backward(p, s, message));
  ASSERT_TRUE(History_Backward(p, s, message));
  EXPECT_EQ(p.Split_Position, 2);
  ASSERT_EQ(test::Cut(p, s, 3, 2, 2), "");
  EXPECT_EQ(p.Split.count(), 3);
  EXPECT_EQ(p.Split[3], (Split_Record{3, 2, Table<double>{0.5, 1}}));
}

TEST(Split_History, ACutPastTheElementOrNodeLimitChangesNothing) {
  // 200 columns, then a cut across them into 126 rows would make 25200 elements; 125 rows reach
  // exactly 25000 (the index was put back after the refusal).
  Project p = test::Square(1000);
  Mesh_Session s = test::Meshed(p);
  ASSERT_EQ(test::Cut(p, s, 1, 1, 200), "");
  Project before = p;
  EXPECT_EQ(test::Cut(p, s, 1, 2, 126), Too_Many_Elements_Message);
  EXPECT_EQ(p, before);
  ASSERT_EQ(test::Cut(p, s, 1, 2, 125), "");
  EXPECT_EQ(p.Mesh_Element.count(), Max_Mesh_Elements);
  EXPECT_EQ(p.Mesh_Node.count(), 201 * 126);
  test::Expect_Sound(p);

  // 8000 separate squares hold 32000 nodes and a cut into 3 makes 4 more; a square cut into
  // n parts needs 2 (n - 1) more: 383 parts reach 32768, one too many, 382 parts 32766.
  p = test::Empty_Project();
  for (int i = 0; i < 8000; ++i) {
    const double x = 20.0 * (i % 100), y = 20.0 * (i / 100);
    test::Add_Macro(p, Add_Node(p, x, y), Add_Node(p, x + 10, y), Add_Node(p, x + 10, y + 10),
                    Add_Node(p, x, y + 10));
  }
  s = test::Meshed(p);
  ASSERT_EQ(test::Cut(p, s, 5, 1, 3), "");
  before = p;
  for (int division : {400, 383}) {
    EXPECT_EQ(test::Cut(p, s, 7, 1, division), Too_Many_Nodes_Message) << division;
    EXPECT_EQ(p, before);
  }
  EXPECT_EQ(test::Cut(p, s, 7, 1, 382), "");
  EXPECT_EQ(p.Mesh_Node.count(), 32766);
}

}  // namespace
}  // namespace pvx
