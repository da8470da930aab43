#include "design/editor_function.h"

#include <gtest/gtest.h>

#include <cmath>

#include "app/units.h"
#include "support/recording_surface.h"
#include "support/temp_dir.h"

namespace pvx {
namespace {

Function_Session Open(Project& p, Function_Family family, int number = 1) {
  Function_Session s;
  std::string message;
  EXPECT_TRUE(Open_Function_Session(p, family, number, s, message)) << message;
  return s;
}

TEST(FunctionWizard, ValuesShowAndEnterInTheChosenSystem) {
  Project p;
  New_Project(p);
  p.Metric_Units = False_Flag;
  Function_Session s = Open(p, Function_Family::Temperature);
  // The default temperature function: constant 20, average 15, amplitude 3.
  EXPECT_EQ(Function_Value_Text(s, Function_Value::Constant), "68.000");
  EXPECT_EQ(Function_Value_Text(s, Function_Value::Average), "59.000");
  // An amplitude is a difference: 3 K are 5.4 oF, without the offset of 32.
  EXPECT_EQ(Function_Value_Text(s, Function_Value::Amplitude), "5.400");
  std::string message;
  ASSERT_TRUE(Enter_Function_Value(s, Function_Value::Average, "50", message));
  EXPECT_NEAR(s.current.Average, 10, 1e-12);  // (50 - 32) / 1.8
  ASSERT_TRUE(Enter_Function_Value(s, Function_Value::Amplitude, "9", message));
  EXPECT_NEAR(s.current.Amplitude[1], 5, 1e-12);
  EXPECT_FALSE(Enter_Function_Value(s, Function_Value::Cut_Off, "1.2.3", message));
  EXPECT_EQ(message, Number_Error_Message);
  // The spring's abscissa is a displacement: 1 mm shows as 0.039 in.
  Function_Session spring = Open(p, Function_Family::Spring);
  EXPECT_EQ(Point_Cell_Text(spring, 1, 1), "-0.039");
}

TEST(FunctionWizard, PointTimesMayNotGoBackwardsButMayRepeat) {
  Project p;
  New_Project(p);
  Function_Session s = Open(p, Function_Family::Temperature);  // points (0,15) (72,15)
  Add_Point_Row(s.current);                                    // (144,15)
  std::string message;
  EXPECT_FALSE(Enter_Point_Cell(s, 2, 1, "150", message));
  EXPECT_EQ(message, Function_Times_Out_Of_Order);
  EXPECT_FALSE(Enter_Point_Cell(s, 2, 1, "-1", message));
  EXPECT_EQ(s.current.Point_Time[2], 72);
  EXPECT_TRUE(Enter_Point_Cell(s, 2, 1, "0", message));  // a jump at 0
  EXPECT_TRUE(Enter_Point_Cell(s, 2, 2, "25", message));
  EXPECT_EQ(s.current.Point_Time[2], 0);
  EXPECT_EQ(s.current.Point_Value[2], 25);
}

TEST(FunctionWizard, ANumberAboveTheCountAddsACopyOfTheLastFunction) {
  Project p;
  New_Project(p);
  Function_Session s = Open(p, Function_Family::Flow);
  s.current.Constant_Value = 9;  // not applied: dropped when another function is chosen
  std::vector<std::string> questions;
  Choose_Function(s, p, 5, [&](const std::string& q) {
    questions.push_back(q);
    return true;
  });
  ASSERT_EQ(questions.size(), 1u);
  EXPECT_EQ(questions[0], "The actual number of Flow functions is 1 !  Do you want to add a function ?");
  EXPECT_EQ(s.number, 2);
  ASSERT_EQ(p.Flow_Functions.count(), 2);
  EXPECT_EQ(s.current, p.Flow_Functions[1]);
  EXPECT_EQ(s.current.Constant_Value, 1);
  Choose_Function(s, p, 9, [](const std::string&) { return false; });
  EXPECT_EQ(s.number, 2);
  EXPECT_EQ(p.Flow_Functions.count(), 2);
  Choose_Function(s, p, 0, nullptr);
  EXPECT_EQ(s.number, 1);
}

TEST(FunctionWizard, ApplyReplacesOnlyTheFunctionShown) {
  Project p;
  New_Project(p);
  p.Load_Functions.add(p.Load_Functions[1]);
  const Project before = p;
  Function_Session s = Open(p, Function_Family::Load, 2);
  EXPECT_FALSE(Function_Changed(s, p));
  std::string message;
  ASSERT_TRUE(Enter_Function_Value(s, Function_Value::Constant, "0.4", message));
  EXPECT_TRUE(Function_Changed(s, p));
  EXPECT_EQ(p, before);
  Apply_Function(s, p);
  EXPECT_EQ(p.Load_Functions[2].Constant_Value, 0.4);
  EXPECT_EQ(p.Load_Functions[1], before.Load_Functions[1]);
}

TEST(FunctionWizard, ATableFileGivesThePointsAndAFaultyOneChangesNothing) {
  test::Temp_Dir dir;
  const std::string good = dir.file("table.txt"), bad = dir.file("bad.txt");
  test::Write_Text(good, "0,10\n24,20\r\n48, 15\n");
  test::Write_Text(bad, "0,10\n24\n");
  Project p;
  New_Project(p);
  Function_Session s = Open(p, Function_Family::Temperature);
  Function_File_Report report;
  ASSERT_TRUE(Read_Function_Table(s, good, report)) << report.message;
  ASSERT_EQ(Point_Count(s.current), 3);
  EXPECT_EQ(s.current.Point_Time[2], 24);
  EXPECT_EQ(s.current.Point_Value[3], 15);
  const Function kept = s.current;
  EXPECT_FALSE(Read_Function_Table(s, bad, report));
  EXPECT_FALSE(report.message.empty());
  EXPECT_EQ(s.current, kept);
  EXPECT_FALSE(Read_Function_Table(s, dir.file("missing.txt"), report));
  EXPECT_EQ(report.message, Function_File_Cannot_Be_Opened);
  // In the Imperial system the file holds oF: 32 and 212 are 0 and 100 oC.
  test::Write_Text(good, "0,32\n10,212\n");
  p.Metric_Units = False_Flag;
  s = Open(p, Function_Family::Temperature);
  ASSERT_TRUE(Read_Function_Table(s, good, report));
  EXPECT_NEAR(s.current.Point_Value[1], 0, 1e-12);
  EXPECT_NEAR(s.current.Point_Value[2], 100, 1e-12);
  EXPECT_EQ(s.current.Point_Time[2], 10);  // hours are hours
}

TEST(FunctionPreview, SamplesFollowTheCurveAtHandPickedTimes) {
  Function f;
  Set_Function_Form(f, Function_Form::Periodical);
  f.Average = 15;
  Add_Sine_Term(f);  // amplitude 3, one period a day
  const auto [t0, t1] = Function_Preview_Range(f, Function_Family::Temperature, 48);
  EXPECT_EQ(t0, 0);
  EXPECT_EQ(t1, 48);
  const auto samples = Function_Preview_Samples(f, t0, t1, 48);
  ASSERT_EQ(samples.size(), 49u);
  // A quarter day is the crest, three quarters the trough, a half day the average.
  EXPECT_NEAR(samples[6].second, 18, 1e-6);
  EXPECT_NEAR(samples[18].second, 12, 1e-6);
  EXPECT_NEAR(samples[12].second, 15, 1e-5);
  EXPECT_EQ(samples[30].first, 30);
  EXPECT_NEAR(samples[30].second, 18, 1e-6);

  Function g;
  Set_Function_Form(g, Function_Form::Piecewise);
  g.Point_Time = {0, 10, 10, 40};
  g.Point_Value = {10, 20, 30, 0};
  const auto [u0, u1] = Function_Preview_Range(g, Function_Family::Temperature, 72);
  EXPECT_DOUBLE_EQ(u0, -4);  // a tenth of the 40 hours either side
  EXPECT_DOUBLE_EQ(u1, 44);
  // Every 4 hours, plus 10 with its value before and after the jump.
  const auto points = Function_Preview_Samples(g, u0, u1, 12);
  ASSERT_EQ(points.size(), 15u);
  EXPECT_EQ(points[4], std::make_pair(10.0, 20.0));
  EXPECT_EQ(points[5], std::make_pair(10.0, 30.0));
  auto value_at = [&](double t) {
    for (const auto& [pt, pv] : points)
      if (std::abs(pt - t) < 1e-12) return pv;
    ADD_FAILURE() << "no sample at " << t;
    return 0.0;
  };
  EXPECT_DOUBLE_EQ(value_at(-4), 10);
  EXPECT_DOUBLE_EQ(value_at(4), 14);
  EXPECT_DOUBLE_EQ(value_at(10), 20);  // at the jump the first value holds
  EXPECT_DOUBLE_EQ(value_at(20), 20);  // two thirds of the way from 30 to 0
  EXPECT_DOUBLE_EQ(value_at(44), 0);

  // A spring's abscissa is a displacement: its table gives the range whatever the form.
  Function spring = Default_Function(Function_Family::Spring);  // points (-1,-1) (0,0)
  Set_Function_Form(spring, Function_Form::Constant);
  const auto [d0, d1] = Function_Preview_Range(spring, Function_Family::Spring, 72);
  EXPECT_DOUBLE_EQ(d0, -1.1);
  EXPECT_DOUBLE_EQ(d1, 0.1);
}

TEST(FunctionPreview, TheFrameShowsTheCurveInsideItWithTheFamilysCaptions) {
  Project p;
  New_Project(p);
  Function_Session s = Open(p, Function_Family::Displacement);  // constant 1 mm
  testing::Recording_Surface surface(400, 300);
  Plot_Function_Frame(surface, s, 72);
  int curve = 0;
  for (const auto& line : surface.Lines) {
    if (line.Width != 2) continue;
    ++curve;
    // A flat curve lies in the middle of the frame (top 25, bottom 260).
    EXPECT_NEAR(line.Y1, 142.5, 1e-9);
    EXPECT_NEAR(line.Y2, 142.5, 1e-9);
    EXPECT_GE(std::min(line.X1, line.X2), 60 - 1e-9);
    EXPECT_LE(std::max(line.X1, line.X2), 385 + 1e-9);
  }
  EXPECT_EQ(curve, 200);
  bool x_caption = false, y_caption = false;
  for (const auto& text : surface.Texts) {
    x_caption |= text.Text == "Time [hours]";
    y_caption |= text.Text == "Displacement [mm]";
  }
  EXPECT_TRUE(x_caption);
  EXPECT_TRUE(y_caption);
  EXPECT_EQ(surface.Clears, 1);
}

}  // namespace
}  // namespace pvx
