#include "design/time_function.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/temp_dir.h"

namespace pvx {
namespace {

Function Constant(double value) {
  Function f;
  Set_Function_Form(f, Function_Form::Constant);
  f.Constant_Value = value;
  return f;
}

Function Periodical(double average) {
  Function f;
  Set_Function_Form(f, Function_Form::Periodical);
  f.Average = average;
  return f;
}

void Add_Term(Function& f, double amplitude, double frequency, double phase) {
  const int k = Add_Sine_Term(f);
  f.Amplitude[k] = amplitude;
  f.Frequency[k] = frequency;
  f.Phase_Shift[k] = phase;
}

Function Piecewise(std::initializer_list<std::pair<double, double>> points) {
  Function f;
  Set_Function_Form(f, Function_Form::Piecewise);
  for (auto [t, v] : points) {
    f.Point_Time.add(t);
    f.Point_Value.add(v);
  }
  return f;
}

TEST(Evaluate_Function, ConstantIgnoresTimeAndIsLimitedByTheCutOff) {
  Function f = Constant(20);
  EXPECT_EQ(Evaluate_Function(f, -5), 20);
  EXPECT_EQ(Evaluate_Function(f, 1e6), 20);
  f.Has_Cut_Off = True_Flag;
  f.Cut_Off_Value = 25;  // a lower limit, also for a constant
  EXPECT_EQ(Evaluate_Function(f, 3), 25);
  f.Cut_Off_Value = 15;
  EXPECT_EQ(Evaluate_Function(f, 3), 20);
  // Nothing chosen: 0, still subject to the cut-off.
  Function none;
  EXPECT_EQ(Evaluate_Function(none, 7), 0);
  none.Has_Cut_Off = True_Flag;
  none.Cut_Off_Value = 5;
  EXPECT_EQ(Evaluate_Function(none, 7), 5);
}

TEST(Evaluate_Function, ConstantFormWinsOverTheOthers) {
  Function f = Piecewise({{0, 1}, {10, 2}});
  f.Is_Constant = True_Flag;
  f.Constant_Value = 9;
  EXPECT_EQ(Evaluate_Function(f, 5), 9);
}

TEST(Evaluate_Function, OneSineHasAPeriodOfOneDayPerUnitFrequency) {
  Function f = Periodical(15);
  Add_Term(f, 3, 1, 0);
  // sin(pi/2) at 6 h, sin(pi) at 12 h, sin(3 pi / 2) at 18 h.
  EXPECT_NEAR(Evaluate_Function(f, 0), 15, 1e-12);
  EXPECT_NEAR(Evaluate_Function(f, 6), 18, 1e-9);
  EXPECT_NEAR(Evaluate_Function(f, 12), 15, 1e-6);
  EXPECT_NEAR(Evaluate_Function(f, 18), 12, 1e-9);
  // A phase shift of 6 h moves the crest from 6 h to 12 h.
  f.Phase_Shift[1] = 6;
  EXPECT_NEAR(Evaluate_Function(f, 12), 18, 1e-9);
}

TEST(Evaluate_Function, SeveralSineTermsAddUp) {
  Function f = Periodical(10);
  Add_Term(f, 2, 1, 0);       // at t = 2: 2 sin(pi/6)            = 1
  Add_Term(f, 1, 2, 3);       //           1 sin(2 (2-3) pi/12)    = -0.5
  Add_Term(f, 0.5, 0.5, -6);  //         0.5 sin(0.5 (2+6) pi/12) = 0.5 sqrt(3)/2
  EXPECT_NEAR(Evaluate_Function(f, 2), 10 + 1 - 0.5 + 0.25 * std::sqrt(3.0), 1e-6);
  // At t = 6: 2 sin(pi/2) + sin(pi/2) + 0.5 sin(pi/2) = 3.5.
  EXPECT_NEAR(Evaluate_Function(f, 6), 13.5, 1e-6);
}

TEST(Evaluate_Function, DayFactorKeepsItsSevenDigits) {
  // With 2 pi / 24 exactly, 1000 days end where they began. The seven-digit factor is larger by
  // 1.2200851e-8, so after 24000 hours the sine stands at 24000 x that = 2.928204e-4 rad.
  Function f = Periodical(15);
  Add_Term(f, 3, 1, 0);
  EXPECT_NEAR(Evaluate_Function(f, 24000), 15 + 3 * 2.928204e-4, 1e-8);
}

TEST(Evaluate_Function, CutOffKeepsThePositiveHalfOfASine) {
  Function f = Periodical(0);
  Add_Term(f, 400, 1, 0);
  f.Has_Cut_Off = True_Flag;
  f.Cut_Off_Value = 0;
  EXPECT_NEAR(Evaluate_Function(f, 6), 400, 1e-6);
  EXPECT_NEAR(Evaluate_Function(f, 2), 200, 1e-4);
  EXPECT_EQ(Evaluate_Function(f, 18), 0);
  EXPECT_EQ(Evaluate_Function(f, 14), 0);
  // The default radiation function: 250 + 400 sin, cut at 0, so the night is dark.
  const Function radiation = Default_Function(Function_Family::Radiation);
  EXPECT_NEAR(Evaluate_Function(radiation, 6), 650, 1e-6);
  EXPECT_EQ(Evaluate_Function(radiation, 18), 0);
  EXPECT_NEAR(Evaluate_Function(radiation, 26), 450, 1e-3);  // 250 + 400 sin(pi/6)
}

TEST(Evaluate_Function, PiecewiseInterpolatesAndHoldsOutsideItsTable) {
  const Function f = Piecewise({{0, 10}, {10, 20}, {30, -20}});
  EXPECT_EQ(Evaluate_Function(f, -100), 10);
  EXPECT_EQ(Evaluate_Function(f, 0), 10);
  EXPECT_DOUBLE_EQ(Evaluate_Function(f, 2.5), 12.5);
  EXPECT_EQ(Evaluate_Function(f, 10), 20);  // on a point: the point's value
  EXPECT_DOUBLE_EQ(Evaluate_Function(f, 15), 10);
  EXPECT_DOUBLE_EQ(Evaluate_Function(f, 25), -10);
  EXPECT_EQ(Evaluate_Function(f, 30), -20);
  EXPECT_EQ(Evaluate_Function(f, 1e9), -20);
}

TEST(Evaluate_Function, TwoPointsAtOneTimeMakeAJump) {
  const Function f = Piecewise({{0, 0}, {10, 20}, {10, 40}, {20, 0}});
  EXPECT_EQ(Evaluate_Function(f, 10), 20);  // at the jump the first value holds
  EXPECT_NEAR(Evaluate_Function(f, 10.5), 38, 1e-12);
  EXPECT_DOUBLE_EQ(Evaluate_Function(f, 5), 10);
}

TEST(Evaluate_Function, PiecewiseWithCutOffAndSpringAbscissa) {
  Function f = Default_Function(Function_Family::Spring);  // (-1,-1) (0,0), by displacement
  EXPECT_DOUBLE_EQ(Evaluate_Function(f, -0.25), -0.25);
  EXPECT_EQ(Evaluate_Function(f, 3), 0);
  EXPECT_EQ(Evaluate_Function(f, -5), -1);
  f.Has_Cut_Off = True_Flag;
  f.Cut_Off_Value = -0.5;
  EXPECT_EQ(Evaluate_Function(f, -0.75), -0.5);
  EXPECT_DOUBLE_EQ(Evaluate_Function(f, -0.25), -0.25);
}

TEST(Evaluate_Function, DamagedTablesGiveAValueWithoutFault) {
  Function f = Piecewise({});
  EXPECT_EQ(Evaluate_Function(f, 1), 0);
  f = Piecewise({{5, 7}});
  EXPECT_EQ(Evaluate_Function(f, 1), 7);
  EXPECT_EQ(Evaluate_Function(f, 100), 7);
  f.Point_Time.add(10);  // a time without value: only the whole pair counts
  EXPECT_EQ(Evaluate_Function(f, 100), 7);
  Function g = Periodical(4);  // no sine term
  EXPECT_EQ(Evaluate_Function(g, 3), 4);
}

TEST(Function_Editor, FormsAndSineTerms) {
  Function f = Default_Function(Function_Family::Temperature);
  Set_Function_Form(f, Function_Form::Piecewise);
  EXPECT_EQ(f.Is_Piecewise, True_Flag);
  EXPECT_EQ(f.Is_Constant | f.Is_Periodical, 0);
  EXPECT_EQ(Active_Form(f), Function_Form::Piecewise);

  EXPECT_FALSE(Delete_Sine_Term(f, 1));  // the only term stays
  EXPECT_EQ(Add_Sine_Term(f), 2);
  EXPECT_EQ(f.Amplitude[2], 3);
  EXPECT_EQ(f.Frequency[2], 1);
  EXPECT_EQ(f.Phase_Shift[2], 0);
  f.Amplitude[1] = 7;
  EXPECT_FALSE(Delete_Sine_Term(f, 3));
  EXPECT_TRUE(Delete_Sine_Term(f, 1));
  ASSERT_EQ(Sine_Count(f), 1);
  EXPECT_EQ(f.Amplitude[1], 3);  // the later term moved up
  EXPECT_EQ(f.Amplitude.count(), 1);
  EXPECT_EQ(f.Phase_Shift.count(), 1);
}

TEST(Function_Editor, AtLeastTwoPointsStay) {
  Function f = Piecewise({{0, 1}, {10, 2}, {20, 5}, {30, 6}});
  std::string message;
  EXPECT_TRUE(Delete_Point_Row(f, 2, message));
  EXPECT_EQ(Point_Count(f), 3);
  EXPECT_EQ(f.Point_Time[2], 20);
  EXPECT_EQ(f.Point_Value[2], 5);
  EXPECT_TRUE(message.empty());
  EXPECT_EQ(Add_Point_Row(f), 4);  // after (20,5) (30,6): at 40 with value 6
  EXPECT_EQ(f.Point_Time[4], 40);
  EXPECT_EQ(f.Point_Value[4], 6);
  Delete_All_But_Two_Rows(f);
  ASSERT_EQ(Point_Count(f), 2);
  EXPECT_EQ(f.Point_Value.count(), 2);
  EXPECT_EQ(f.Point_Time[2], 20);
  EXPECT_FALSE(Delete_Point_Row(f, 1, message));
  EXPECT_EQ(message, "At least 2 points must be present in the function");
  EXPECT_EQ(Point_Count(f), 2);
}

TEST(Function_Editor, TypedNumberAboveTheFamilyAddsACopyOnYes) {
  Project p;
  New_Project(p);
  std::string asked;
  auto yes = [&](const std::string& q) {
    asked = q;
    return true;
  };
  auto no = [](const std::string&) { return false; };
  EXPECT_EQ(Enter_Function_Number(p, Function_Family::Moisture_Potential, 0, 1, no), 1);
  EXPECT_EQ(Enter_Function_Number(p, Function_Family::Moisture_Potential, 1, 1, no), 1);
  EXPECT_EQ(Enter_Function_Number(p, Function_Family::Moisture_Potential, 5, 1, no), 1);
  EXPECT_EQ(p.Potential_Functions.count(), 1);
  p.Potential_Functions[1].Constant_Value = 0.55;
  EXPECT_EQ(Enter_Function_Number(p, Function_Family::Moisture_Potential, 5, 1, yes), 2);
  EXPECT_EQ(asked,
            "The actual number of Moisture Potential functions is 1 !  Do you want to add a function ?");
  ASSERT_EQ(p.Potential_Functions.count(), 2);
  EXPECT_EQ(p.Potential_Functions[2], p.Potential_Functions[1]);
  EXPECT_EQ(p.Temperature_Functions.count(), 1);
}

TEST(Function_File, ReadsPairsSeparatedByCommasAndLineEnds) {
  test::Temp_Dir dir;
  const std::string path = dir.file("f.txt");
  test::Write_Text(path, "0,15\r\n24, 18.5\n48,\n-2.5e1\n72,+15");
  Function f = Default_Function(Function_Family::Temperature);
  const Function before = f;
  Function_File_Report report;
  ASSERT_TRUE(Read_Function_File(path, f, report)) << report.detail;
  ASSERT_EQ(Point_Count(f), 4);
  EXPECT_EQ(f.Point_Time[2], 24);
  EXPECT_EQ(f.Point_Value[2], 18.5);
  EXPECT_EQ(f.Point_Value[3], -25);
  EXPECT_EQ(f.Point_Time[4], 72);
  EXPECT_EQ(f.Point_Value[4], 15);
  // Only the points change.
  EXPECT_EQ(f.Is_Constant, before.Is_Constant);
  EXPECT_EQ(f.Constant_Value, before.Constant_Value);
  Set_Function_Form(f, Function_Form::Piecewise);
  EXPECT_DOUBLE_EQ(Evaluate_Function(f, 36), (18.5 - 25) / 2);
}

TEST(Function_File, BadFilesAreRefusedAndLeaveTheFunction) {
  test::Temp_Dir dir;
  const Function before = Default_Function(Function_Family::Flow);
  struct Case {
    const char* text;
    const char* message;
  } cases[] = {
      {"0,1\n10,abc\n", "File cannot be opened !"},
      {"0,1\n10,2\n20\n", "File cannot be opened !"},
      {"0,1\n10,2e999\n", "File cannot be opened !"},
      {"0,nan\n10,2\n", "File cannot be opened !"},
      {"0;1\n10;2\n", "File cannot be opened !"},
      {"0,1\n", "At least 2 points must be present in the function"},
      {"", "At least 2 points must be present in the function"},
      {"0,1\n10,\x01\n", "File cannot be opened !"},
  };
  for (const Case& c : cases) {
    const std::string path = dir.file("bad.txt");
    test::Write_Text(path, c.text);
    Function f = before;
    Function_File_Report report;
    EXPECT_FALSE(Read_Function_File(path, f, report)) << c.text;
    EXPECT_EQ(report.message, c.message) << c.text;
    EXPECT_EQ(f, before);
  }
  Function f = before;
  Function_File_Report report;
  EXPECT_FALSE(Read_Function_File(dir.file("missing.txt"), f, report));
  EXPECT_EQ(report.message, "File cannot be opened !");
  EXPECT_EQ(f, before);
}

TEST(Function_File, ImperialValuesAreConvertedOnReading) {
  test::Temp_Dir dir;
  const std::string path = dir.file("f.txt");
  test::Write_Text(path, "0,32\n10,212\n");
  // Imperial to S.I. as the unit routine does it for the two kinds used here.
  Unit_Converter convert = [](bool to_imperial, int kind, double v) {
    EXPECT_FALSE(to_imperial);
    if (kind == 3) return (v - 32) / 1.8;
    if (kind == 1) return v * 25.4;
    if (kind == 11) return v * 4.4482216152605 / 25.4;
    ADD_FAILURE() << "kind " << kind;
    return 0.0;
  };
  Function f;
  Function_File_Report report;
  ASSERT_TRUE(Read_Function_File(path, Function_Family::Temperature, convert, f, report));
  EXPECT_EQ(f.Point_Time[2], 10);  // time stays in hours
  EXPECT_NEAR(f.Point_Value[1], 0, 1e-12);
  EXPECT_NEAR(f.Point_Value[2], 100, 1e-12);
  // For a spring the abscissa is a displacement and is converted too.
  ASSERT_TRUE(Read_Function_File(path, Function_Family::Spring, convert, f, report));
  EXPECT_NEAR(f.Point_Time[2], 254, 1e-12);
  // A family without unit takes the numbers as they are.
  ASSERT_TRUE(Read_Function_File(path, Function_Family::Load, convert, f, report));
  EXPECT_EQ(f.Point_Value[2], 212);
}

}  // namespace
}  // namespace pvx
