// The steps and storages made from the periods, and the entries of the run settings window.
#include "analysis/schedule.h"

#include <gtest/gtest.h>

#include <vector>

namespace pvx {
namespace {

Project With_Periods(double computation_time, std::initializer_list<Period> periods) {
  Project p;
  New_Project(p);
  p.Computation_Time = computation_time;
  p.Period.clear();
  for (const Period& period : periods)
    p.Period.add(period);
  return p;
}

using Times = std::vector<double>;
using Steps = std::vector<int>;

TEST(Set_Time_Steps, StepsAndStoragesOfThePeriods) {
  // Periods are {From, Until, Storage_Each, Time_Increment}. Step and storage counts are rounded
  // half to even; each storage target flags the first of its nearest steps in the whole table.
  struct Case {
    const char* name;
    Project p;
    Times times;
    Steps stored;
  };
  const Case cases[] = {
      Case("10/3 steps round to 3; targets 2 .. 10 fall on steps 1, 1, 2, 2, 3",
           With_Periods(10, {{0, 10, 2, 3}}), {10.0 / 3, 20.0 / 3, 10}, {1, 2, 3}),
      Case("2.5 rounds to the even 2", With_Periods(100, {{0, 2.5, 1, 1}}), {1.25, 2.5}, {1, 2}),
      Case("3.5 rounds to the even 4", With_Periods(100, {{0, 3.5, 1, 1}}), {0.875, 1.75, 2.625, 3.5},
           {1, 2, 3, 4}),
      Case("an increment beyond the period: one step", With_Periods(100, {{0, 2, 1, 5}}), {2}, {1}),
      Case("a storage beyond the period: its last step", With_Periods(10, {{0, 10, 25, 1}}),
           {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, {10}),
      // The first period stops at the step reaching 5.5 h; its target 10 goes to the last step.
      // The second starts beyond the end and still makes its first step, with both its targets.
      Case("the end inside the first period", With_Periods(5.5, {{0, 10, 4, 1}, {10, 20, 5, 2}}),
           {1, 2, 3, 4, 5, 6, 12}, {5, 6, 7}),
      Case("a step exactly on the end is the last", With_Periods(5, {{0, 10, 4, 1}}), {1, 2, 3, 4, 5}, {5}),
      // Target 5 is as near to 4 as to 6: the first takes it.
      Case("periods in sequence", With_Periods(8, {{0, 2, 1, 0.5}, {2, 8, 3, 2}}), {0.5, 1, 1.5, 2, 4, 6, 8},
           {2, 4, 5, 7}),
      Case("targets of two periods on one step store once", With_Periods(5, {{0, 4, 4, 1}, {4, 5, 0.4, 1}}),
           {1, 2, 3, 4, 5}, {4, 5}),
      // Targets 4.4 .. 6.0 go to the first 4 (6.0 ties with 8), 6.4 .. 8 to 8.
      Case("a period of zero length repeats a time",
           With_Periods(8, {{0, 4, 4, 2}, {4, 4, 1, 1}, {4, 8, 0.4, 4}}), {2, 4, 4, 8}, {2, 4}),
      // Targets 10 -> step 2; 2 and 4 -> step 3; 6 (a tie of 4 and 8) and 8 -> step 1.
      Case("periods out of order", With_Periods(100, {{6, 10, 4, 2}, {0, 4, 2, 4}, {4, 8, 2, 4}}),
           {8, 10, 4, 8}, {1, 2, 3}),
      Case("no period", With_Periods(72, {}), {}, {}),
      Case("zero increment and storage of a damaged file", With_Periods(72, {{0, 6, 0, 0}}), {6}, {1}),
      Case("a period running backwards", With_Periods(72, {{6, 0, 1, 1}}), {}, {}),
  };
  Step_Table s;  // one table for all: each call starts afresh
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Set_Time_Steps(c.p, s);
    ASSERT_EQ(s.Step_Time.count(), static_cast<int>(c.times.size()));
    ASSERT_EQ(s.Step_Store_Flag.count(), s.Step_Time.count());
    for (int i = 1; i <= Number_Of_Steps(s); ++i)
      EXPECT_DOUBLE_EQ(s.Step_Time[i], c.times[static_cast<std::size_t>(i - 1)]) << i;
    Steps stored;
    for (int i = 1; i <= Number_Of_Steps(s); ++i)
      if (Is_Storage_Step(s, i)) stored.push_back(i);
    EXPECT_EQ(stored, c.stored);
  }
}

TEST(Schedule_Totals, CountOnlyWhatLiesBeforeTheEnd) {
  // 5.5 steps round to 6, 5.5 / 4 storages to 1; the second period starts beyond the end.
  EXPECT_EQ(Compute_Schedule_Totals(With_Periods(5.5, {{0, 10, 4, 1}, {10, 20, 5, 2}})),
            (Schedule_Totals{6, 1}));
  // The second period up to 30 h: 10 steps, no storage for a zero interval; the third is beyond.
  EXPECT_EQ(Compute_Schedule_Totals(With_Periods(30, {{0, 10, 5, 1}, {10, 40, 0, 2}, {40, 50, 1, 1}})),
            (Schedule_Totals{20, 2}));
  // A period starting exactly at the end counts one step and one storage.
  EXPECT_EQ(Compute_Schedule_Totals(With_Periods(10, {{0, 10, 5, 1}, {10, 20, 1, 1}})),
            (Schedule_Totals{11, 3}));
}

}  // namespace
}  // namespace pvx
