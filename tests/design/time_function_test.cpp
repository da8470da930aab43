// Time functions against values worked out by hand, the editor's rules for terms and points, and
// the reading of table files.
#include "design/time_function.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

#include "support/temp_dir.h"

namespace pvx {
namespace {

Function Of_Form(Function f, Function_Form form, double cut_off = NAN) {
  Set_Function_Form(f, form);
  f.Has_Cut_Off = As_Flag(!std::isnan(cut_off));
  f.Cut_Off_Value = std::isnan(cut_off) ? 0 : cut_off;
  return f;
}

// A sum of sines: average, then amplitude, frequency [1/day] and phase shift [hours] of each term.
Function Sines(double average, Table<double> amplitude, Table<double> frequency, Table<double> phase,
               double cut_off = NAN) {
  Function f;
  std::tie(f.Average, f.Amplitude, f.Frequency, f.Phase_Shift) =
      std::tie(average, amplitude, frequency, phase);
  return Of_Form(f, Function_Form::Periodical, cut_off);
}

Function Points(Table<double> times, Table<double> values, double cut_off = NAN) {
  Function f;
  std::tie(f.Point_Time, f.Point_Value) = std::tie(times, values);
  return Of_Form(f, Function_Form::Piecewise, cut_off);
}

TEST(Evaluate_Function, AgainstValuesWorkedByHand) {
  const Function twenty = Of_Form(Default_Function(Function_Family::Temperature), Function_Form::Constant);
  Function constant_wins = Points({0, 10}, {1, 2});  // the constant form goes first
  std::tie(constant_wins.Is_Constant, constant_wins.Constant_Value) = std::tuple(True_Flag, 9);
  // 15 + 3 sin(2 pi t / 24): the crest at 6 h, the trough at 18 h; a phase shift of 6 h moves the
  // crest to 12 h. The seven-digit day factor is larger than 2 pi / 24 by 1.2200851e-8, so after
  // 24000 hours the sine stands at 2.928204e-4 rad instead of 0.
  const Function sine = Sines(15, {3}, {1}, {0}), shifted = Sines(15, {3}, {1}, {6});
  // At t = 2: 2 sin(pi/6) = 1, sin(2 (2 - 3) pi/12) = -0.5, 0.5 sin(0.5 (2 + 6) pi/12) = sqrt(3)/4.
  const Function three = Sines(10, {2, 1, 0.5}, {1, 2, 0.5}, {0, 3, -6});
  const Function half = Sines(0, {400}, {1}, {0}, 0),
                 radiation = Default_Function(Function_Family::Radiation);
  const Function table = Points({0, 10, 30}, {10, 20, -20}), jump = Points({0, 10, 10, 20}, {0, 20, 40, 0});
  // Spring: (-1, -1) (0, 0), by displacement.
  const Function spring = Default_Function(Function_Family::Spring),
                 cut_spring = Points({-1, 0}, {-1, 0}, -0.5);
  Function half_pair = Points({5}, {7});
  half_pair.Point_Time.add(10);  // a time without a value: only whole pairs count
  // clang-format off
  const std::tuple<Function, double, double, double> rows[] = {
      {twenty, -5, 20, 0}, {twenty, 1e6, 20, 0}, {Of_Form(twenty, Function_Form::Constant, 25), 3, 25, 0},
      {Of_Form(twenty, Function_Form::Constant, 15), 3, 20, 0}, {Function{}, 7, 0, 0},
      {Of_Form({}, Function_Form::Constant, 5), 7, 5, 0}, {constant_wins, 5, 9, 0},
      {sine, 0, 15, 1e-12}, {sine, 6, 18, 1e-9}, {sine, 12, 15, 1e-6}, {sine, 18, 12, 1e-9},
      {shifted, 12, 18, 1e-9}, {shifted, 6, 15, 1e-9}, {sine, 24000, 15 + 3 * 2.928204e-4, 1e-8},
      {three, 2, 10 + 1 - 0.5 + 0.25 * std::sqrt(3.0), 1e-6}, {three, 6, 10 + 2 + 1 + 0.5, 1e-6},
      {half, 6, 400, 1e-6}, {half, 2, 200, 1e-4}, {half, 18, 0, 0}, {half, 14, 0, 0},
      {radiation, 6, 650, 1e-6}, {radiation, 18, 0, 0}, {radiation, 26, 250 + 400 * 0.5, 1e-3},
      {table, -100, 10, 0}, {table, 0, 10, 0}, {table, 2.5, 12.5, 1e-12}, {table, 10, 20, 0},
      {table, 15, 10, 1e-12}, {table, 25, -10, 1e-12}, {table, 30, -20, 0}, {table, 1e9, -20, 0},
      {jump, 10, 20, 0}, {jump, 10.5, 38, 1e-12}, {jump, 5, 10, 1e-12},  // at a jump the first value holds
      {spring, -0.25, -0.25, 1e-15}, {spring, 3, 0, 0}, {spring, -5, -1, 0},
      {cut_spring, -0.75, -0.5, 0}, {cut_spring, -0.25, -0.25, 1e-15},
      {Points({}, {}), 1, 0, 0}, {Points({5}, {7}), 1, 7, 0}, {half_pair, 100, 7, 0},
      {Sines(4, {}, {}, {}), 3, 4, 0}};
  // clang-format on
  for (const auto& [f, t, expected, tolerance] : rows)
    EXPECT_NEAR(Evaluate_Function(f, t), expected, tolerance)
        << "t " << t << ", form " << static_cast<int>(Active_Form(f)) << ", value " << f.Constant_Value;
}

TEST(Function_Editor, SineTermsAndPointRowsKeepTheirTablesInStep) {
  Function f = Default_Function(Function_Family::Temperature);
  // A periodical function keeps at least one term; a new term is 3 sin(2 pi t / 24).
  EXPECT_FALSE(Delete_Sine_Term(f, 1));
  EXPECT_EQ(Add_Sine_Term(f), 2);
  EXPECT_EQ(std::tuple(f.Amplitude[2], f.Frequency[2], f.Phase_Shift[2]), std::tuple(3.0, 1.0, 0.0));
  f.Amplitude[1] = 7;
  EXPECT_FALSE(Delete_Sine_Term(f, 3));
  EXPECT_TRUE(Delete_Sine_Term(f, 1));
  EXPECT_EQ(std::tuple(Sine_Count(f), f.Amplitude.count(), f.Phase_Shift.count()), std::tuple(1, 1, 1));
  EXPECT_EQ(f.Amplitude[1], 3);  // the later term moved up

  f = Points({0, 10, 20, 30}, {1, 2, 5, 6});
  std::string message;
  EXPECT_TRUE(Delete_Point_Row(f, 2, message));
  EXPECT_EQ(std::tuple(Point_Count(f), f.Point_Time[2], f.Point_Value[2], message),
            std::tuple(3, 20.0, 5.0, ""));
  // After (20, 5) (30, 6) the next point is at 40 with the value 6; after a jump, 1 hour on.
  EXPECT_EQ(Add_Point_Row(f), 4);
  EXPECT_EQ(std::tuple(f.Point_Time[4], f.Point_Value[4]), std::tuple(40.0, 6.0));
  f.Point_Time[4] = 30;
  EXPECT_EQ(Add_Point_Row(f), 5);
  EXPECT_EQ(f.Point_Time[5], 31);
  Delete_All_But_Two_Rows(f);
  EXPECT_EQ(std::tuple(Point_Count(f), f.Point_Value.count(), f.Point_Time[2]), std::tuple(2, 2, 20.0));
  EXPECT_FALSE(Delete_Point_Row(f, 1, message));
  EXPECT_EQ(message, "At least 2 points must be present in the function");
  EXPECT_EQ(Point_Count(f), 2);
}

TEST(Function_File, PairsAreReadWholeOrNotAtAll) {
  test::Temp_Dir dir;
  const std::string path = dir.file("f.txt");
  test::Write_Text(path, "0,15\r\n24, 18.5\n48,\n-2.5e1\n72,+15");
  Function f = Default_Function(Function_Family::Temperature);
  const Function before = f;
  Function_File_Report report;
  ASSERT_TRUE(Read_Function_File(path, f, report)) << report.detail;
  EXPECT_EQ(f.Point_Time, (Table<double>{0, 24, 48, 72}));
  EXPECT_EQ(f.Point_Value, (Table<double>{15, 18.5, -25, 15}));
  // Only the points change.
  std::tie(f.Point_Time, f.Point_Value) = std::tie(before.Point_Time, before.Point_Value);
  EXPECT_EQ(f, before);

  const std::string cannot = "File cannot be opened !",
                    two = "At least 2 points must be present in the function";
  // clang-format off
  const std::pair<const char*, std::string> faults[] = {
      {"0,1\n10,abc\n", cannot}, {"0,1\n10,2\n20\n", cannot}, {"0,1\n10,2e999\n", cannot}, {"0,1\n", two},
      {"0,nan\n10,2\n", cannot}, {"0;1\n10;2\n", cannot}, {"0,1\n10,\x01\n", cannot}, {"", two}};
  // clang-format on
  for (const auto& [text, message] : faults) {
    test::Write_Text(path, text);
    EXPECT_FALSE(Read_Function_File(path, f, report)) << text;
    EXPECT_EQ(report.message, message) << text;
    EXPECT_EQ(f, before);
  }
  EXPECT_FALSE(Read_Function_File(dir.file("missing.txt"), f, report));
  EXPECT_EQ(report.message, cannot);
  EXPECT_EQ(f, before);
}

}  // namespace
}  // namespace pvx
