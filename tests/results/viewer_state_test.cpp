// The viewer's opening, stepping, extreme jumps, scale boxes, picks, imports and runs on a family of
// two runs written by the analysis stages over the two-square mesh.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <tuple>
#include <vector>

#include "family_support.h"
#include "results/viewer_state.h"

namespace pvx {
namespace {

using test::Pattern;

// Records the messages it was shown; says yes to every question.
struct Scripted_Host : Viewer_Host {
  void Show_Message(const std::string& text) override { Messages.push_back(text); }
  bool Ask_Yes_No(const std::string&) override { return true; }
  bool Movie_Button_Down() override { return false; }
  void Show_Picture() override {}
  void Yield() override {}
  std::vector<std::string> Messages;
};

// Steps of 1 hour; run 1 stores steps 1, 2, 3 (stored step k is step k - 1, at k - 1 hours) and
// run 2 steps 2 and 4. Element 2 is cast at 1.5 hours.
class Viewer_State_Test : public ::testing::Test {
 protected:
  void SetUp() override {
    test::Two_Squares(p);
    p.Mesh_Element[2].Present_From = 1.5;
    for (const double x : {200.0, 0.0}) {
      Support s;
      s.X = x;
      p.Mesh_Support.add(s);
    }
    p.Result_Names = {"B.RES", "B.RES", "B2.RES"};
    Result_Family written = test::Family_In(dir, Result_Layout_Of(p, false), 2);
    Run_Index index;
    ASSERT_TRUE(test::Write_Run(written, 1, 3, {1, 2, 3}, index));
    ASSERT_TRUE(test::Write_Run(written, 2, 4, {2, 4}, index));
  }
  bool Open() { return Open_Viewer(s, family, p, dir.path().string(), host); }
  double Node(int n) const { return s.Buffers.Node[n]; }
  static double T(int step, int n) { return Pattern(Slot_REA, step, n); }

  test::Temp_Dir dir;
  Project p;
  Result_Family family;
  Viewer_State s;
  Scripted_Host host;
};

TEST_F(Viewer_State_Test, OpeningCapsTheStoredStepAndReadsIt) {
  for (const auto& [asked, opened] : {std::pair{0, 1}, {1, 1}, {4, 4}, {9, 4}}) {
    SCOPED_TRACE(asked);
    s.CurrentStored = static_cast<std::int16_t>(asked);
    ASSERT_TRUE(Open()) << (host.Messages.empty() ? "" : host.Messages[0]);
    EXPECT_EQ(
        std::tuple(s.CurrentStored, Node(3), s.Buffers.CurrentMin, s.Buffers.CurrentMax, Current_Time(s)),
        std::tuple(opened, T(opened - 1, 3), T(opened - 1, 1), T(opened - 1, 6), opened - 1.0));
  }
  p.Result_Names = {"NONE.RES", "NONE.RES"};
  EXPECT_FALSE(Open());
  EXPECT_EQ(host.Messages, std::vector<std::string>{"Results (" + dir.file("NONE.RES") + ") not available"});
}

TEST_F(Viewer_State_Test, SteppingAndJumpsStayWithinTheStorages) {
  // The file's degree of hydration claims its maximum at stored step 7 of 4 (rows above 30 are
  // not capped on writing): patched at row 40's last i16 after 4 + 3 x 8 + 4 + 4 x 8 bytes.
  std::string res = test::Read_Text(dir.file("B.RES"));
  const std::int16_t seven = 7;
  std::memcpy(res.data() + 64 + 36 * 39 + 34, &seven, 2);
  test::Write_Text(dir.file("B.RES"), res);
  s.CurrentStored = 4;
  ASSERT_TRUE(Open());
  EXPECT_FALSE(Can_Step_Forward(s) || Step_Forward(s, family, host));
  ASSERT_TRUE(Step_Backward(s, family, host));
  EXPECT_EQ(Node(1), T(2, 1));
  ASSERT_TRUE(Jump_To_Minimum(s, family, host));
  EXPECT_EQ(Node(1), T(0, 1));
  ASSERT_TRUE(Select_Variable(s, family, 40, host));
  ASSERT_TRUE(Jump_To_Maximum(s, family, host));
  EXPECT_EQ(std::tuple(s.CurrentStored, s.Buffers.Element_A[2][4][1]),
            std::tuple(4, float(Pattern(Slot_REP, 3, 8))));
  EXPECT_FALSE(Pick_Stored_Step(s, family, 5, host));
}

TEST_F(Viewer_State_Test, ScaleBoxesTakeADecimalCommaAndRefuseACrossedOrZeroScale) {
  ASSERT_TRUE(Open());  // the temperature's scale is 200.5 .. 233
  EXPECT_TRUE(Edit_Scale(s, Scale_Box::Maximum, "250,5", true, host));
  EXPECT_FALSE(Edit_Scale(s, Scale_Box::Minimum, "250.5", false, host));
  EXPECT_FALSE(Edit_Scale(s, Scale_Box::Deformation, "0", false, host));
  EXPECT_EQ(host.Messages, (std::vector<std::string>{"Min >= Max", "Scale value =< 0"}));
  EXPECT_EQ(std::tuple(s.Index.Extremes[1].ScaleMin, s.Index.Extremes[1].ScaleMax), std::tuple(200.5, 250.5));
}

TEST_F(Viewer_State_Test, HistoryPicksAndImportsFollowTheCastElements) {
  ASSERT_TRUE(Open());
  // At 0 hours element 2 is not cast yet: its points cannot be picked.
  EXPECT_TRUE(Pick_History_Point(s, p, 25, 75));
  EXPECT_FALSE(Pick_History_Point(s, p, 150, 50));
  // Three points, of which (150, 50) lies in element 2 and (300, 0) outside.
  test::Write_Text(dir.file("points.txt"), "3\n1, 50, 50\n2 150 50\r\n3,300,0\n");
  Pick_Stored_Step(s, family, 2, host);  // 1 hour: element 2 still absent
  EXPECT_EQ(Import_History_Points(s, p, dir.file("points.txt"), host), 1);
  Pick_Stored_Step(s, family, 3, host);  // 2 hours: now it is there
  EXPECT_EQ(Import_History_Points(s, p, dir.file("points.txt"), host), 2);
  const std::vector<History_Point> points{
      {1, 0.25, 0.75, 25, 75}, {1, 0.5, 0.5, 50, 50}, {1, 0.5, 0.5, 50, 50}, {2, 0.5, 0.5, 150, 50}};
  EXPECT_EQ(s.HistoryPoints.data(), points);
  test::Write_Text(dir.file("short.txt"), "2 1 50 50 2 60");  // a short file is an error that adds nothing
  EXPECT_EQ(Import_History_Points(s, p, dir.file("short.txt"), host), -1);
  EXPECT_EQ(host.Messages, std::vector<std::string>{"Error in file"});
  EXPECT_EQ(s.HistoryPoints.data(), points);
  test::Write_Text(dir.file("supports.txt"), "3 1 2 2 1 3 9");  // support 9 is not there
  EXPECT_EQ(Import_History_Supports(s, p, dir.file("supports.txt"), host), 2);
  EXPECT_EQ(s.HistorySupports.data(), (std::vector<std::int32_t>{2, 1}));
  EXPECT_EQ(Nearest_Support(p, 180, 30), 1);
  EXPECT_EQ(Nearest_Support(p, 20, 30), 2);
}

TEST_F(Viewer_State_Test, AnotherRunKeepsTheStoredStepOrStaysWhenUnreadable) {
  ASSERT_TRUE(Open());
  ASSERT_TRUE(Pick_Stored_Step(s, family, 3, host));
  ASSERT_TRUE(Select_Run(s, family, 2, host));
  EXPECT_EQ(Node(1), T(4, 1));  // stored step 3 of run 2 is step 4
  ASSERT_TRUE(Select_Run(s, family, 1, host));
  test::Write_Text(dir.file("B2.RES"), "");
  EXPECT_FALSE(Select_Run(s, family, 2, host));
  EXPECT_EQ(host.Messages.back(), "Results (" + dir.file("B2.RES") + ") not available or corrupted. ");
  EXPECT_EQ(std::tuple(s.CurrentRun, Node(1)), std::tuple(std::int16_t{1}, T(2, 1)));
}

TEST_F(Viewer_State_Test, ValueUnderThePointer) {
  ASSERT_TRUE(Open());
  // Two pixels per mm, the model origin at the picture's bottom-left corner, 300 pixels high.
  const Picture_State picture{.ScaleX = 2, .ScaleY = 2, .PictureHeight = 300};
  Point_Reading r;
  // Pixel (100, 200) is the model point (50, 50), the centre of element 1: the mean of its nodes
  // 200.5, 201, 201.5 and 202.
  ASSERT_TRUE(Value_Under_Pointer(s, picture, p, 100, 200, r));
  EXPECT_EQ(r.Value, 201.25);
  // Element 2 is not cast at 0 hours; nothing lies right of x = 200.
  EXPECT_FALSE(Value_Under_Pointer(s, picture, p, 300, 200, r));
  EXPECT_FALSE(Value_Under_Pointer(s, picture, p, 500, 200, r));
}

}  // namespace
}  // namespace pvx
