// The viewer's stepping, extreme jumps, scale boxes, picks and imports on a small family written by
// hand: two elements, four stored steps at 0, 1, 2 and 3 hours, temperature 10 k + n at node n of
// stored step k.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "results/viewer_pages.h"
#include "results/viewer_state.h"
#include "support/temp_dir.h"

namespace pvx {
namespace {

using test::Temp_Dir;

// Answers questions from a script and records what it was shown.
class Scripted_Host : public Viewer_Host {
 public:
  void Show_Message(const std::string& text) override { Messages.push_back(text); }
  bool Ask_Yes_No(const std::string& question) override {
    Questions.push_back(question);
    return Answer;
  }
  bool Movie_Button_Down() override { return Frames_Before_Release < 0 || Pictures < Frames_Before_Release; }
  void Show_Picture() override {
    ++Pictures;
    Stored_Shown.push_back(Shown_Stored != nullptr ? *Shown_Stored : 0);
  }
  void Yield() override { ++Yields; }

  std::vector<std::string> Messages, Questions;
  bool Answer = true;
  int Frames_Before_Release = -1;  // -1: the movie button stays down
  int Pictures = 0, Yields = 0;
  const std::int16_t* Shown_Stored = nullptr;
  std::vector<int> Stored_Shown;
};

class Viewer_State_Test : public ::testing::Test {
 protected:
  void SetUp() override {
    for (auto [x, y] : {std::pair{0, 0}, {100, 0}, {100, 100}, {0, 100}, {200, 0}, {200, 100}})
      p.Mesh_Node.add({double(x), double(y)});
    Mesh_Element e;
    e.Corner = {{1, 2, 3, 4}};
    p.Mesh_Element.add(e);
    e.Corner = {{2, 5, 6, 3}};
    e.Present_From = 1.5;  // element 2 is cast at 1.5 hours
    p.Mesh_Element.add(e);
    Support s;
    s.X = 200;
    s.Y = 0;
    p.Mesh_Support.add(s);
    s.X = 0;
    p.Mesh_Support.add(s);
    p.Result_File_Name = "V.RES";

    // Run 2 of the set (a second material) holds 100 more everywhere.
    p.Result_Names = {"V.RES", "V.RES", "V2.RES"};
    p.Material.resize(2);
    p.Material[1].Name = "Concrete A";
    p.Material[2].Name = "Concrete B";
    p.Run_Material = {1, 2};
    Write_Family("V.RES", 0);
    Write_Family("V2.RES", 100);
  }

  void Write_Family(const std::string& name, double offset) {
    Result_Family family;
    family.Layout = Result_Layout_Of(p, false);
    std::string message;
    ASSERT_TRUE(Set_Output_Names(family, {name, name}, dir.path().string(), message));
    ASSERT_TRUE(Open_Result_Files(family, 1, 1, 108, message));
    Run_Index index;
    index.Step_Time = {1, 2, 3};
    for (int k = 1; k <= 4; ++k) {
      std::vector<double> nodes, points(8, 1.0);
      for (int n = 1; n <= 6; ++n)
        nodes.push_back(offset + 10 * k + n);
      Field_Values f;
      f.Temperature = nodes;
      f.Potential = nodes;
      f.Maturity = f.Hydration = f.C_Maturity = f.Moisture_Content = f.Tensile_Strength =
          f.Compressive_Strength = points;
      ASSERT_TRUE(Record_Storage(family, 1, f, k - 1.0, index, message)) << message;
    }
    index.Extremes[1] = {11, 46, 11, 46, 2, 4};
    index.Extremes[40] = {0, 1, 0, 1, 1, 7};  // rows above 30 are not capped in the file
    ASSERT_TRUE(Write_Run_Index(family, 1, index, message));
    ASSERT_TRUE(Close_Result_Files(family, 1, message));
  }

  bool Open() { return Open_Viewer(s, family, p, dir.path().string(), host); }
  double Node_Value(int n) const { return s.Buffers.Node[n]; }

  Temp_Dir dir;
  Project p;
  Result_Family family;
  Viewer_State s;
  Scripted_Host host;
};

TEST_F(Viewer_State_Test, OpeningCapsTheStoredStepAndReadsIt) {
  s.CurrentStored = 0;
  ASSERT_TRUE(Open()) << (host.Messages.empty() ? "" : host.Messages[0]);
  EXPECT_EQ(s.CurrentStored, 1);
  EXPECT_EQ(Node_Value(3), 13);
  EXPECT_EQ(s.Buffers.CurrentMin, 11);
  EXPECT_EQ(s.Buffers.CurrentMax, 16);

  s.CurrentStored = 9;
  ASSERT_TRUE(Open());
  EXPECT_EQ(s.CurrentStored, 4);
  EXPECT_EQ(Node_Value(3), 43);
  EXPECT_DOUBLE_EQ(Current_Time(s), 3);

  // A family that is not there: the program's message, nothing opened.
  p.Result_Names = {"NONE.RES", "NONE.RES"};
  Viewer_State other;
  EXPECT_FALSE(Open_Viewer(other, family, p, dir.path().string(), host));
  ASSERT_FALSE(host.Messages.empty());
  EXPECT_EQ(host.Messages.back(), "Results (" + dir.file("NONE.RES") + ") not available");
}

TEST_F(Viewer_State_Test, SteppingStopsAtBothEnds) {
  ASSERT_TRUE(Open());
  EXPECT_FALSE(Can_Step_Backward(s));
  EXPECT_FALSE(Step_Backward(s, family, host));
  EXPECT_EQ(s.CurrentStored, 1);
  for (int k = 2; k <= 4; ++k) {
    ASSERT_TRUE(Step_Forward(s, family, host));
    EXPECT_EQ(s.CurrentStored, k);
    EXPECT_EQ(Node_Value(1), 10 * k + 1);
  }
  EXPECT_FALSE(Can_Step_Forward(s));
  EXPECT_FALSE(Step_Forward(s, family, host));
  ASSERT_TRUE(Step_Backward(s, family, host));
  EXPECT_EQ(Node_Value(1), 31);
  EXPECT_TRUE(host.Messages.empty());
}

TEST_F(Viewer_State_Test, ExtremeJumpsCapIndicesBeyondTheStorages) {
  ASSERT_TRUE(Open());
  ASSERT_TRUE(Jump_To_Minimum(s, family, host));
  EXPECT_EQ(s.CurrentStored, 2);
  EXPECT_EQ(Node_Value(1), 21);
  ASSERT_TRUE(Jump_To_Maximum(s, family, host));
  EXPECT_EQ(s.CurrentStored, 4);
  // Degree of hydration: the file says stored step 7 of 4; the read goes to 4 and succeeds.
  ASSERT_TRUE(Select_Variable(s, family, 40, host));
  ASSERT_TRUE(Jump_To_Minimum(s, family, host));
  EXPECT_EQ(s.CurrentStored, 1);
  ASSERT_TRUE(Jump_To_Maximum(s, family, host));
  EXPECT_EQ(s.CurrentStored, 4);
  EXPECT_TRUE(host.Messages.empty());
}

TEST_F(Viewer_State_Test, SpecificTimesAndTheMovie) {
  ASSERT_TRUE(Open());
  const std::vector<std::string> times = Stored_Time_Texts(s);
  ASSERT_EQ(times.size(), 4u);
  EXPECT_EQ(times[2], "      2.000000");
  ASSERT_TRUE(Pick_Stored_Step(s, family, 3, host));
  EXPECT_EQ(Node_Value(2), 32);
  EXPECT_FALSE(Pick_Stored_Step(s, family, 5, host));

  host.Shown_Stored = &s.CurrentStored;
  EXPECT_EQ(Play_Movie(s, family, host), 4);
  EXPECT_EQ(host.Stored_Shown, (std::vector<int>{1, 2, 3, 4}));
  EXPECT_EQ(host.Yields, 4);
  // Released after two frames: the viewer stays at the step reached.
  host.Pictures = 0;
  host.Stored_Shown.clear();
  host.Frames_Before_Release = 2;
  EXPECT_EQ(Play_Movie(s, family, host), 2);
  EXPECT_EQ(s.CurrentStored, 2);
  EXPECT_EQ(Node_Value(1), 21);
  EXPECT_EQ(Next_Movie_Frame(s, 4), 0);
}

TEST_F(Viewer_State_Test, ScaleBoxesRefuseCrossedValues) {
  ASSERT_TRUE(Open());
  EXPECT_FALSE(Edit_Scale(s, Scale_Box::Maximum, "11", false, host));
  EXPECT_EQ(host.Messages.back(), "Max =< Min");
  EXPECT_EQ(s.Index.Extremes[1].ScaleMax, 46);
  EXPECT_TRUE(Edit_Scale(s, Scale_Box::Maximum, "50,5", true, host));
  EXPECT_EQ(s.Index.Extremes[1].ScaleMax, 50.5);
  EXPECT_FALSE(Edit_Scale(s, Scale_Box::Minimum, "50.5", false, host));
  EXPECT_EQ(host.Messages.back(), "Min >= Max");
  EXPECT_TRUE(Edit_Scale(s, Scale_Box::Minimum, "-3", false, host));
  EXPECT_EQ(s.Index.Extremes[1].ScaleMin, -3);
  EXPECT_FALSE(Edit_Scale(s, Scale_Box::Deformation, "0", false, host));
  EXPECT_EQ(host.Messages.back(), "Scale value =< 0");
  EXPECT_TRUE(Edit_Scale(s, Scale_Box::Deformation, "2.5", false, host));
  EXPECT_EQ(s.Index.Extremes[20].ScaleMax, 2.5);
  EXPECT_TRUE(Edit_Scale(s, Scale_Box::Ft_Factor, "0.7", false, host));
  EXPECT_EQ(s.FtFactor, 0.7);
  EXPECT_FALSE(Edit_Scale(s, Scale_Box::Maximum, "abc", false, host));
  EXPECT_EQ(s.Index.Extremes[1].ScaleMax, 50.5);
}

TEST_F(Viewer_State_Test, HistoryPicksImportsAndReset) {
  ASSERT_TRUE(Open());
  // At 0 hours element 2 is not cast yet: its points cannot be picked.
  EXPECT_TRUE(Pick_History_Point(s, p, 25, 75));
  EXPECT_FALSE(Pick_History_Point(s, p, 150, 50));
  ASSERT_EQ(s.HistoryPoints.count(), 1);
  EXPECT_EQ(s.HistoryPoints[1], (History_Point{1, 0.25, 0.75, 25, 75}));

  // An import: three points, of which (150, 50) falls in no active element and (300, 0) outside.
  Pick_Stored_Step(s, family, 2, host);  // 1 hour: element 2 still absent
  test::Write_Text(dir.file("points.txt"), "3\n1, 50, 50\n2 150 50\r\n3,300,0\n");
  EXPECT_EQ(Import_History_Points(s, p, dir.file("points.txt"), host), 1);
  ASSERT_EQ(s.HistoryPoints.count(), 2);
  EXPECT_EQ(s.HistoryPoints[2].Element, 1);
  Pick_Stored_Step(s, family, 3, host);  // 2 hours: now it is there
  EXPECT_EQ(Import_History_Points(s, p, dir.file("points.txt"), host), 2);
  EXPECT_EQ(s.HistoryPoints[4], (History_Point{2, 0.5, 0.5, 150, 50}));
  // Short files and words are errors.
  test::Write_Text(dir.file("short.txt"), "2 1 50 50 2 60");
  EXPECT_EQ(Import_History_Points(s, p, dir.file("short.txt"), host), -1);
  EXPECT_EQ(host.Messages.back(), "Error in file");
  test::Write_Text(dir.file("word.txt"), "1 1 x 50");
  EXPECT_EQ(Import_History_Points(s, p, dir.file("word.txt"), host), -1);
  EXPECT_EQ(Import_History_Points(s, p, dir.file("missing.txt"), host), -1);
  EXPECT_EQ(s.HistoryPoints.count(), 4);

  test::Write_Text(dir.file("supports.txt"), "3 1 2 2 1 3 9");
  EXPECT_EQ(Import_History_Supports(s, p, dir.file("supports.txt"), host), 2);  // support 9 is not there
  EXPECT_EQ(s.HistorySupports.data(), (std::vector<std::int32_t>{2, 1}));
  // The nearest support to a press.
  EXPECT_EQ(Nearest_Support(p, 180, 30), 1);
  EXPECT_EQ(Nearest_Support(p, 20, 30), 2);

  // Reset asks for each thing there is; "No" keeps the points.
  s.LineCutActive = true;
  host.Answer = false;
  host.Questions.clear();
  Reset_Picks(s, host);
  EXPECT_EQ(host.Questions,
            (std::vector<std::string>{"Must actual line cut be elimitated ?",
                                      "Must selected points for history plots be elimitated ?",
                                      "Must selected supports for history plots be eliminated ?"}));
  EXPECT_EQ(s.HistoryPoints.count(), 4);
  EXPECT_TRUE(s.LineCutActive);
  host.Answer = true;
  Reset_Picks(s, host);
  EXPECT_TRUE(s.HistoryPoints.empty());
  EXPECT_TRUE(s.HistorySupports.empty());
  EXPECT_FALSE(s.LineCutActive);
}

TEST_F(Viewer_State_Test, SelectingAnotherRunKeepsTheStepAndVariable) {
  ASSERT_TRUE(Open());
  EXPECT_EQ(Run_Names(p), (std::vector<std::string>{"Concrete A", "Concrete B"}));
  ASSERT_TRUE(Pick_Stored_Step(s, family, 3, host));
  ASSERT_TRUE(Select_Run(s, family, 2, host));
  EXPECT_EQ(s.CurrentRun, 2);
  EXPECT_EQ(s.CurrentStored, 3);
  EXPECT_EQ(Node_Value(1), 131);
  EXPECT_FALSE(Select_Run(s, family, 3, host));
  // An index that became unreadable: the message of a failed selection, the viewer stays.
  ASSERT_TRUE(Select_Run(s, family, 1, host));
  test::Write_Text(dir.file("V2.RES"), "");
  EXPECT_FALSE(Select_Run(s, family, 2, host));
  EXPECT_EQ(host.Messages.back(), "Results (" + dir.file("V2.RES") + ") not available or corrupted. ");
  EXPECT_EQ(s.CurrentRun, 1);
  EXPECT_EQ(Node_Value(1), 31);
}

TEST_F(Viewer_State_Test, ValueUnderThePointer) {
  ASSERT_TRUE(Open());
  // Two pixels per mm, the model origin at the picture's bottom-left corner, 300 pixels high.
  Picture_State picture;
  picture.ScaleX = picture.ScaleY = 2;
  picture.PictureHeight = 300;
  Point_Reading r;
  // Pixel (100, 200) is the model point (50, 50), the centre of element 1 (nodes 11, 12, 13, 14):
  // 11 + 1/2 + 3/2 + (13 - 12 - 14 + 11)/4 = 12.5.
  ASSERT_TRUE(Value_Under_Pointer(s, picture, p, 100, 200, r));
  EXPECT_DOUBLE_EQ(r.Value, 12.5);
  EXPECT_EQ(r.Text, "     12.50 oC");
  EXPECT_EQ(r.X_Text, "50.00");
  // Element 2 is not cast at 0 hours; nothing lies right of x = 200; no label on the reaction page.
  EXPECT_FALSE(Value_Under_Pointer(s, picture, p, 300, 200, r));
  EXPECT_FALSE(Value_Under_Pointer(s, picture, p, 500, 200, r));
  s.CurrentVariable = 21;
  EXPECT_FALSE(Value_Under_Pointer(s, picture, p, 100, 200, r));
}

TEST_F(Viewer_State_Test, PagesFollowTheResultsOfTheRun) {
  Result_Layout l;
  EXPECT_TRUE(Variable_Offered(l, false, 1));
  EXPECT_TRUE(Variable_Offered(l, false, 40));
  EXPECT_FALSE(Variable_Offered(l, false, 4));
  EXPECT_TRUE(Variable_Offered(l, true, 5));
  EXPECT_FALSE(Variable_Offered(l, true, 13));
  l.Mechanical = true;
  EXPECT_TRUE(Variable_Offered(l, false, 13));
  EXPECT_TRUE(Variable_Offered(l, false, 21));
  EXPECT_FALSE(Variable_Offered(l, false, 30));
  l.Interfaces = 1;
  EXPECT_TRUE(Variable_Offered(l, false, 31));
  EXPECT_FALSE(Variable_Offered(l, false, 34));
  l.Bars = 2;
  EXPECT_TRUE(Variable_Offered(l, false, 34));
  // The tabs of a thermal run without moisture, and of a mechanical run with interfaces, bars,
  // moisture and cooling.
  auto tabs = [](const std::vector<Viewer_Page>& pages) {
    std::vector<int> v;
    for (const Viewer_Page& page : pages)
      v.push_back(page.Variable);
    return v;
  };
  EXPECT_EQ(tabs(Offered_Pages(Result_Layout{}, false, false)), (std::vector<int>{1, 2, 3, 9, 10, 40}));
  EXPECT_EQ(tabs(Offered_Pages(l, true, true)),
            (std::vector<int>{1,  4,  5,  2,  3,  0,  9,  10, 20, 11, 12, 13, 14,
                              16, 17, 18, 15, 19, 21, 22, 30, 31, 32, 33, 34, 40}));
  // A tab change clears the pick modes but keeps the picked points.
  ASSERT_TRUE(Open());
  s.PickingPoints = s.PickingSupports = true;
  Pick_History_Point(s, p, 10, 10);
  ASSERT_TRUE(Select_Variable(s, family, 2, host));
  EXPECT_FALSE(s.PickingPoints || s.PickingSupports || s.PickingAreas);
  EXPECT_EQ(s.HistoryPoints.count(), 1);
  EXPECT_EQ(s.Buffers.Element_A[1][3][1], 1.0f);
}

}  // namespace
}  // namespace pvx
