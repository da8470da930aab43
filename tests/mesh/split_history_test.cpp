// The splitting history: replay, also after the project file, stepping back and forward, dropping
// the undone cuts, and cuts refused at the limits with nothing changed.
#include "mesh/split_history.h"

#include <gtest/gtest.h>

#include "mesh_fixtures.h"

namespace pvx {
namespace {

// Two macros side by side with a border and an interface, cut four times over.
Project Cut_Project(Mesh_Session& s) {
  Project p = test::Square(300);
  test::Node(p, 600, 0);
  test::Node(p, 600, 300);
  test::Add_Macro(p, 2, 5, 6, 3, "Other");
  Border b;
  b.Node_A = 1;
  b.Node_B = 2;
  p.Border.add(b);
  Interface f;
  f.Node_A = 2;
  f.Node_B = 3;
  p.Interface.add(f);
  s = test::Meshed(p);
  EXPECT_TRUE(test::Cut(p, s, 1, 1, 3, Ratio_Doubling));
  EXPECT_TRUE(test::Cut(p, s, 2, 1, 4, Ratio_Geometric_Mirror, 1.7));
  EXPECT_TRUE(test::Cut(p, s, 2, 2, 5, Ratio_Doubling_Mirror));
  EXPECT_TRUE(test::Cut(p, s, 7, 3, 2));
  return p;
}

void Expect_Same_Mesh(const Project& a, const Project& b) {
  EXPECT_EQ(a.Mesh_Node, b.Mesh_Node);
  EXPECT_EQ(a.Mesh_Element, b.Mesh_Element);
  EXPECT_EQ(a.Mesh_Border, b.Mesh_Border);
  EXPECT_EQ(a.Mesh_Interface, b.Mesh_Interface);
}

TEST(Split_History, EachCutIsRecordedAndTheHistoryReplaysToTheSameMeshAfterTheFile) {
  Mesh_Session s;
  const Project p = Cut_Project(s);
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
  for (int run = 0; run < 2; ++run) {
    back.Mesh_Node.clear();
    back.Mesh_Element.clear();
    Mesh_Session fresh;
    int applied = 0;
    std::string message;
    ASSERT_TRUE(Repeat_Splitting(back, fresh, back.Split.count(), applied, message)) << message;
    EXPECT_EQ(applied, 4);
    Expect_Same_Mesh(back, p);
  }
}

TEST(Split_History, GoingBackReplaysTheFirstCutsAndAReplayStopsAtACutThatCannotBeMade) {
  // The history keys themselves are walked through by the panel's own tests.
  Mesh_Session s;
  Project p = Cut_Project(s);
  const Project full = p;
  std::string message;
  ASSERT_TRUE(History_Backward(p, s, message));
  ASSERT_TRUE(History_Backward(p, s, message));
  EXPECT_EQ(p.Split_Position, 2);
  Project two = p;  // the mesh after two cuts, made directly
  Mesh_Session s2;
  int applied = 0;
  ASSERT_TRUE(Repeat_Splitting(two, s2, 2, applied, message));
  Expect_Same_Mesh(p, two);
  // A cut there drops the two later ones.
  ASSERT_TRUE(test::Cut(p, s, 3, 2, 2));
  EXPECT_EQ(p.Split.count(), 3);
  EXPECT_EQ(p.Split[3], (Split_Record{3, 2, Table<double>{0.5, 1}}));

  // A replay stops before a cut that cannot be made, and says which.
  p = full;
  p.Split[3].Element = 999;
  EXPECT_FALSE(History_All(p, s, message));
  EXPECT_EQ(p.Split_Position, 2);
  EXPECT_EQ(message.rfind("Cut 3 of the splitting history cannot be carried out: ", 0), 0u) << message;
}

TEST(Split_History, ACutPastTheElementOrNodeLimitChangesNothing) {
  // 200 columns, then a cut across them into 126 rows would make 25200 elements; 125 rows reach
  // exactly 25000 (the index was put back after the refusal).
  Project p = test::Square(1000);
  Mesh_Session s = test::Meshed(p);
  ASSERT_TRUE(test::Cut(p, s, 1, 1, 200));
  Project before = p;
  std::string message;
  s.Parameters.PickedSide = 2;
  s.Parameters.Division = 126;
  EXPECT_FALSE(Split_Execution(p, s, message));
  EXPECT_EQ(message, Too_Many_Elements_Message);
  EXPECT_EQ(p, before);
  ASSERT_TRUE(test::Cut(p, s, 1, 2, 125));
  EXPECT_EQ(p.Mesh_Element.count(), Max_Mesh_Elements);
  EXPECT_EQ(p.Mesh_Node.count(), 201 * 126);
  test::Expect_Sound(p);

  // 8000 separate squares hold 32000 nodes and a cut into 3 makes 4 more; a square cut into
  // n parts needs 2 (n - 1) more: 383 parts reach 32768, one too many, 382 parts 32766.
  p = test::Empty_Project();
  for (int i = 0; i < 8000; ++i) {
    const double x = 20.0 * (i % 100), y = 20.0 * (i / 100);
    test::Add_Macro(p, test::Node(p, x, y), test::Node(p, x + 10, y), test::Node(p, x + 10, y + 10),
                    test::Node(p, x, y + 10));
  }
  s = test::Meshed(p);
  ASSERT_TRUE(test::Cut(p, s, 5, 1, 3));
  before = p;
  s.Parameters.PickedElement = 7;
  for (int division : {400, 383}) {
    s.Parameters.Division = division;
    EXPECT_FALSE(Split_Execution(p, s, message)) << division;
    EXPECT_EQ(message, Too_Many_Nodes_Message);
    EXPECT_EQ(p, before);
  }
  EXPECT_TRUE(test::Cut(p, s, 7, 1, 382));
  EXPECT_EQ(p.Mesh_Node.count(), 32766);
}

}  // namespace
}  // namespace pvx
