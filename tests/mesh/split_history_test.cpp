// The splitting history: replay, stepping back and forward, dropping the undone cuts, and cuts
// refused at the limits with nothing changed.
#include <gtest/gtest.h>

#include "mesh/initial_mesh.h"
#include "mesh/pipe_holes.h"
#include "mesh/split_history.h"
#include "mesh_fixtures.h"

namespace pvx {
namespace {

bool Cut(Project& p, Mesh_Session& s, int element, int side, int division, int option = Ratio_Equal,
         double a = 1.5) {
  s.Parameters.PickedElement = element;
  s.Parameters.PickedSide = side;
  s.Parameters.Division = division;
  s.Parameters.RatioOption = option;
  s.Parameters.FactorA = a;
  std::string message;
  const bool ok = Split_Execution(p, s, message);
  EXPECT_EQ(ok, message.empty()) << message;
  return ok;
}

// Two macros side by side with a border and an interface, cut a few times over.
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
  std::string message;
  EXPECT_TRUE(Make_Initial_Mesh(p, s, message));
  EXPECT_TRUE(Cut(p, s, 1, 1, 3, Ratio_Doubling));
  EXPECT_TRUE(Cut(p, s, 2, 1, 4, Ratio_Geometric_Mirror, 1.7));
  EXPECT_TRUE(Cut(p, s, 2, 2, 5, Ratio_Doubling_Mirror));
  EXPECT_TRUE(Cut(p, s, 7, 3, 2));
  return p;
}

void Expect_Same_Mesh(const Project& a, const Project& b) {
  EXPECT_EQ(a.Mesh_Node, b.Mesh_Node);
  EXPECT_EQ(a.Mesh_Element, b.Mesh_Element);
  EXPECT_EQ(a.Mesh_Border, b.Mesh_Border);
  EXPECT_EQ(a.Mesh_Interface, b.Mesh_Interface);
}

TEST(SplitHistory, ExecutionRecordsTheCutAndReplayGivesTheSameNumbers) {
  Mesh_Session s;
  const Project p = Cut_Project(s);
  ASSERT_EQ(p.Split.count(), 4);
  EXPECT_EQ(p.Split_Position, 4);
  EXPECT_EQ(p.Split[2].Element, 2);
  EXPECT_EQ(p.Split[2].Side, 1);
  ASSERT_EQ(p.Split[2].Fractions.count(), 4);
  // 1 : 1.7 : 1.7 : 1, total 5.4.
  EXPECT_NEAR(p.Split[2].Fractions[1], 1 / 5.4, 1e-15);
  EXPECT_NEAR(p.Split[2].Fractions[2], 2.7 / 5.4, 1e-15);
  EXPECT_EQ(p.Split[2].Fractions[4], 1);
  test::Expect_Sound(p);
  EXPECT_NEAR(test::Mesh_Area(p), 600 * 300, 1e-6);

  // A fresh session from the macros and the history alone, twice.
  for (int run = 0; run < 2; ++run) {
    Project q = p;
    q.Mesh_Node.clear();
    q.Mesh_Element.clear();
    Mesh_Session fresh;
    int applied = 0;
    std::string message;
    ASSERT_TRUE(Repeat_Splitting(q, fresh, q.Split.count(), applied, message)) << message;
    EXPECT_EQ(applied, 4);
    Expect_Same_Mesh(q, p);
  }
}

TEST(SplitHistory, BackForwardAllResetAndClean) {
  Mesh_Session s;
  Project p = Cut_Project(s);
  const Project full = p;
  std::string message;
  // The mesh after two cuts, made directly.
  Mesh_Session s2;
  Project two = p;
  int applied = 0;
  ASSERT_TRUE(Repeat_Splitting(two, s2, 2, applied, message));

  ASSERT_TRUE(History_Backward(p, s, message));
  ASSERT_TRUE(History_Backward(p, s, message));
  EXPECT_EQ(p.Split_Position, 2);
  EXPECT_EQ(p.Split.count(), 4);
  Expect_Same_Mesh(p, two);
  Toolbar_State t = Set_Toolbar(p, s);
  EXPECT_TRUE(t.Backward && t.Forward && t.Reset);

  ASSERT_TRUE(History_All(p, s, message));
  EXPECT_EQ(p.Split_Position, 4);
  Expect_Same_Mesh(p, full);
  ASSERT_TRUE(History_Forward(p, s, message));  // at the end: nothing happens
  EXPECT_EQ(p.Split_Position, 4);
  t = Set_Toolbar(p, s);
  EXPECT_FALSE(t.Forward);
  EXPECT_TRUE(t.Backward);

  ASSERT_TRUE(History_Reset(p, s, message));
  EXPECT_EQ(p.Split_Position, 0);
  EXPECT_EQ(p.Split.count(), 4);
  EXPECT_EQ(p.Mesh_Element.count(), 2);
  ASSERT_TRUE(History_Forward(p, s, message));
  ASSERT_TRUE(History_Forward(p, s, message));
  Expect_Same_Mesh(p, two);

  ASSERT_TRUE(History_Clean(p, s, message));
  EXPECT_EQ(p.Split.count(), 0);
  EXPECT_EQ(p.Split_Position, 0);
  EXPECT_EQ(p.Mesh_Element.count(), 2);
  t = Set_Toolbar(p, s);
  EXPECT_FALSE(t.Backward || t.Forward || t.Reset || t.Integrate_Visible);
}

TEST(SplitHistory, BackTwiceAndCutOnceDropsTheTwoLaterCuts) {
  Mesh_Session s;
  Project p = Cut_Project(s);
  const Split_Record first = p.Split[1], second = p.Split[2];
  std::string message;
  ASSERT_TRUE(History_Backward(p, s, message));
  ASSERT_TRUE(History_Backward(p, s, message));
  ASSERT_TRUE(Cut(p, s, 3, 2, 2));
  ASSERT_EQ(p.Split.count(), 3);
  EXPECT_EQ(p.Split_Position, 3);
  EXPECT_EQ(p.Split[1], first);
  EXPECT_EQ(p.Split[2], second);
  EXPECT_EQ(p.Split[3].Element, 3);
  EXPECT_EQ(p.Split[3].Side, 2);
  EXPECT_EQ(p.Split[3].Fractions.data(), (std::vector<double>{0.5, 1}));
  // The mesh is the replay of the new history.
  Project q = p;
  Mesh_Session fresh;
  int applied = 0;
  ASSERT_TRUE(Repeat_Splitting(q, fresh, 3, applied, message));
  Expect_Same_Mesh(q, p);
  EXPECT_FALSE(Set_Toolbar(p, s).Forward);
}

TEST(SplitHistory, ACutPastTheElementLimitChangesNothing) {
  // 200 columns, then a cut across them into 126 rows would make 25200 elements.
  Project p = test::Square(1000);
  Mesh_Session s;
  std::string message;
  ASSERT_TRUE(Make_Initial_Mesh(p, s, message));
  ASSERT_TRUE(Cut(p, s, 1, 1, 200));
  const Project before = p;
  s.Parameters.PickedElement = 1;
  s.Parameters.PickedSide = 2;
  s.Parameters.Division = 126;
  EXPECT_FALSE(Split_Execution(p, s, message));
  EXPECT_EQ(message, Too_Many_Elements_Message);
  EXPECT_EQ(p, before);
  // The index was put back too: the same cut into 125 rows reaches exactly 25000.
  ASSERT_TRUE(Cut(p, s, 1, 2, 125));
  EXPECT_EQ(p.Mesh_Element.count(), Max_Mesh_Elements);
  EXPECT_EQ(p.Mesh_Node.count(), 201 * 126);
  EXPECT_EQ(p.Split.count(), 2);
  test::Expect_Sound(p);
  EXPECT_NEAR(test::Mesh_Area(p), 1.0e6, 1e-3);
}

TEST(SplitHistory, ACutPastTheNodeLimitChangesNothing) {
  // 8000 separate squares hold 32000 nodes; a cut of one into 400 parts needs 798 more.
  Project p = test::Empty_Project();
  for (int i = 0; i < 8000; ++i) {
    const double x = 20.0 * (i % 100), y = 20.0 * (i / 100);
    const int a = test::Node(p, x, y), b = test::Node(p, x + 10, y), c = test::Node(p, x + 10, y + 10),
              d = test::Node(p, x, y + 10);
    test::Add_Macro(p, a, b, c, d);
  }
  Mesh_Session s;
  std::string message;
  ASSERT_TRUE(Make_Initial_Mesh(p, s, message));
  ASSERT_EQ(p.Mesh_Node.count(), 32000);
  ASSERT_TRUE(Cut(p, s, 5, 1, 3));
  const Project before = p;
  s.Parameters.PickedElement = 7;
  s.Parameters.PickedSide = 1;
  s.Parameters.Division = 400;
  EXPECT_FALSE(Split_Execution(p, s, message));
  EXPECT_EQ(message, Too_Many_Nodes_Message);
  EXPECT_EQ(p, before);
  // 383 parts need 764 nodes, to 32768: one too many; 382 parts reach 32766.
  s.Parameters.Division = 383;
  EXPECT_FALSE(Split_Execution(p, s, message));
  EXPECT_EQ(p, before);
  EXPECT_TRUE(Cut(p, s, 7, 1, 382));
  EXPECT_EQ(p.Mesh_Node.count(), 32004 + 762);
}

TEST(SplitHistory, ReplayStopsAtACutThatCannotBeMade) {
  Mesh_Session s;
  Project p = Cut_Project(s);
  p.Split[3].Element = 999;
  std::string message;
  ASSERT_FALSE(History_All(p, s, message));
  EXPECT_EQ(p.Split_Position, 2);
  EXPECT_EQ(message.rfind("Cut 3 of the splitting history cannot be carried out: ", 0), 0u) << message;
}

TEST(SplitHistory, NoCutOnceTheCircuitsAreIntegrated) {
  Project p = test::Square(300);
  Mesh_Session s;
  std::string message;
  ASSERT_TRUE(Make_Initial_Mesh(p, s, message));
  s.Circuits_Integrated = true;
  const Project before = p;
  s.Parameters.PickedElement = 1;
  s.Parameters.PickedSide = 1;
  EXPECT_FALSE(Split_Execution(p, s, message));
  EXPECT_EQ(message,
            "Cooling circuits are integrated, so no additional splitting is possible. If you still want to "
            "refine the mesh go one step back.");
  EXPECT_EQ(p, before);
  // One step back leaves the integrated state.
  ASSERT_TRUE(Set_Toolbar(p, s).Backward);
  ASSERT_TRUE(History_Backward(p, s, message));
  EXPECT_FALSE(s.Circuits_Integrated);
  EXPECT_TRUE(Cut(p, s, 1, 1, 2));
}

}  // namespace
}  // namespace pvx
