// The function wizard without its window: values in the display system, the points grid, the
// choice of a function by number, table files, Apply, and the preview.
#include "design/editor_function.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <tuple>

#include "app/units.h"
#include "support/temp_dir.h"

namespace pvx {
namespace {

Function_Session Open(Project& p, Function_Family family, int number = 1) {
  Function_Session s;
  std::string message;
  EXPECT_TRUE(Open_Function_Session(p, family, number, s, message)) << message;
  return s;
}

TEST(FunctionWizard, ValuesAndTableFilesInTheChosenSystemTimesInOrderAndANumberAboveTheCountAddsACopy) {
  Project p;
  New_Project(p);
  p.Metric_Units = False_Flag;
  Function_Session s = Open(p, Function_Family::Temperature);
  // The default temperature function: constant 20, average 15, amplitude 3. An amplitude is a
  // difference: 3 K are 5.4 oF, without the offset of 32.
  EXPECT_EQ(std::tuple(Function_Value_Text(s, Function_Value::Constant),
                       Function_Value_Text(s, Function_Value::Average),
                       Function_Value_Text(s, Function_Value::Amplitude)),
            std::tuple("68.000", "59.000", "5.400"));
  std::string message;
  ASSERT_TRUE(Enter_Function_Value(s, Function_Value::Amplitude, "9", message));
  EXPECT_NEAR(s.current.Amplitude[1], 5, 1e-12);
  // The spring's abscissa is a displacement: 1 mm shows as 0.039 in.
  EXPECT_EQ(Point_Cell_Text(Open(p, Function_Family::Spring), 1, 1), "-0.039");

  // Point times may repeat (a jump) but not go backwards.
  p.Metric_Units = True_Flag;
  s = Open(p, Function_Family::Temperature);  // points (0, 15) (72, 15)
  EXPECT_FALSE(Enter_Point_Cell(s, 2, 1, "-1", message));
  EXPECT_EQ(message, Function_Times_Out_Of_Order);
  EXPECT_TRUE(Enter_Point_Cell(s, 2, 1, "0", message));
  EXPECT_TRUE(Enter_Point_Cell(s, 2, 2, "25", message));
  EXPECT_EQ(std::tuple(s.current.Point_Time[2], s.current.Point_Value[2]), std::tuple(0.0, 25.0));

  // A number above the count asks, then adds a copy of the first function; Apply replaces only
  // the function shown.
  s = Open(p, Function_Family::Flow);
  s.current.Constant_Value = 9;  // not applied: dropped when another function is chosen
  std::vector<std::string> questions;
  Choose_Function(s, p, 5, [&](const std::string& q) {
    questions.push_back(q);
    return true;
  });
  EXPECT_EQ(questions, std::vector<std::string>{
                           "The actual number of Flow functions is 1 !  Do you want to add a function ?"});
  EXPECT_EQ(std::tuple(s.number, p.Flow_Functions.count(), s.current.Constant_Value), std::tuple(2, 2, 1.0));
  EXPECT_EQ(p.Flow_Functions[2], p.Flow_Functions[1]);
  Choose_Function(s, p, 9, [](const std::string&) { return false; });
  EXPECT_EQ(std::tuple(s.number, p.Flow_Functions.count()), std::tuple(2, 2));
  Choose_Function(s, p, 0, nullptr);
  EXPECT_EQ(s.number, 1);

  const Project before = p;
  s = Open(p, Function_Family::Flow, 2);
  EXPECT_FALSE(Function_Changed(s, p));
  ASSERT_TRUE(Enter_Function_Value(s, Function_Value::Constant, "0.4", message));
  EXPECT_TRUE(Function_Changed(s, p));
  EXPECT_EQ(p, before);
  Apply_Function(s, p);
  EXPECT_EQ(p.Flow_Functions[2].Constant_Value, 0.4);
  EXPECT_EQ(p.Flow_Functions[1], before.Flow_Functions[1]);

  // A table file gives the points in stored units.
  test::Temp_Dir dir;
  const std::string file = dir.file("table.txt");
  test::Write_Text(file, "0,32\n10,212\n");
  // In the Imperial system the file holds Imperial values: 32 and 212 oF are 0 and 100 oC, hours
  // stay hours; a spring's abscissa is in inches (10 in = 254 mm) and its value in lbf/in
  // (212 x 4.4482216152605 / 25.4 N/mm); a load has no unit.
  // clang-format off
  const std::tuple<bool, Function_Family, double, double, double> rows[] = {
      {true, Function_Family::Temperature, 10, 32, 212}, {false, Function_Family::Temperature, 10, 0, 100},
      {false, Function_Family::Spring, 254, 32 * 4.4482216152605 / 25.4, 212 * 4.4482216152605 / 25.4},
      {false, Function_Family::Load, 10, 32, 212}};
  // clang-format on
  for (const auto& [metric, family, time, first, second] : rows) {
    p.Metric_Units = As_Flag(metric);
    s = Open(p, family);
    Function_File_Report report;
    ASSERT_TRUE(Read_Function_Table(s, file, report)) << report.message;
    EXPECT_NEAR(s.current.Point_Time[2], time, 1e-9);
    EXPECT_NEAR(s.current.Point_Value[1], first, 1e-9);
    EXPECT_NEAR(s.current.Point_Value[2], second, 1e-9);
  }
}

TEST(FunctionPreview, SamplesFollowTheCurveAtHandPickedTimes) {
  Function f = Default_Function(Function_Family::Temperature);  // 15 + 3 sin, one period a day
  Set_Function_Form(f, Function_Form::Periodical);
  EXPECT_EQ(Function_Preview_Range(f, Function_Family::Temperature, 48), std::pair(0.0, 48.0));
  Function g = Default_Function(Function_Family::Temperature);
  Set_Function_Form(g, Function_Form::Piecewise);
  g.Point_Time = {0, 10, 10, 40};
  g.Point_Value = {10, 20, 30, 0};
  // A tenth of the 40 hours either side.
  EXPECT_EQ(Function_Preview_Range(g, Function_Family::Temperature, 72), std::pair(-4.0, 44.0));
  // A spring's abscissa is a displacement: its table (-1, -1) (0, 0) gives the range whatever the
  // form.
  Function spring = Default_Function(Function_Family::Spring);
  Set_Function_Form(spring, Function_Form::Constant);
  EXPECT_EQ(Function_Preview_Range(spring, Function_Family::Spring, 72), std::pair(-1.1, 0.1));
  // Every hour of two days: a quarter day is the crest, three quarters the trough, a half day the
  // average. Every 4 hours from -4 to 44, plus 10 with its value before and after the jump.
  const auto sine = Function_Preview_Samples(f, 0, 48, 48), table = Function_Preview_Samples(g, -4, 44, 12);
  EXPECT_EQ(std::pair(sine.size(), table.size()), std::pair(std::size_t{49}, std::size_t{15}));
  // clang-format off
  const std::tuple<const std::vector<std::pair<double, double>>*, double, double> expected[] = {
      {&sine, 6, 18}, {&sine, 18, 12}, {&sine, 12, 15}, {&sine, 30, 18}, {&table, -4, 10}, {&table, 0, 10},
      {&table, 4, 14}, {&table, 8, 18}, {&table, 10, 20}, {&table, 10, 30}, {&table, 12, 28},
      {&table, 20, 20}, {&table, 44, 0}};
  // clang-format on
  for (const auto& [samples, t, value] : expected)
    EXPECT_TRUE(std::any_of(
        samples->begin(), samples->end(),
        [&](const auto& q) { return std::abs(q.first - t) < 1e-12 && std::abs(q.second - value) < 1e-5; }))
        << t << " " << value;
}

}  // namespace
}  // namespace pvx
