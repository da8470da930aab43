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

std::vector<int> Storage_Steps(const Step_Table& s) {
  std::vector<int> steps;
  for (int i = 1; i <= Number_Of_Steps(s); ++i)
    if (Is_Storage_Step(s, i)) steps.push_back(i);
  return steps;
}

using Steps = std::vector<int>;

TEST(Set_Time_Steps, StepCountIsRoundedHalfToEvenAndMeetsThePeriodEnd) {
  Step_Table s;
  // 10 / 3 = 3.33 gives 3 steps of 10/3 h; storage targets 2, 4, 6, 8, 10 fall on steps
  // 1, 1, 2, 2, 3: five targets, three storages.
  Set_Time_Steps(With_Periods(10, {{0, 10, 2, 3}}), s);
  ASSERT_EQ(Number_Of_Steps(s), 3);
  EXPECT_DOUBLE_EQ(s.Step_Time[1], 10.0 / 3);
  EXPECT_DOUBLE_EQ(s.Step_Time[2], 20.0 / 3);
  EXPECT_EQ(s.Step_Time[3], 10);
  EXPECT_EQ(Storage_Steps(s), (Steps{1, 2, 3}));

  // 2.5 / 1 rounds to the even 2: steps of 1.25 h. 3.5 / 1 rounds to the even 4.
  Set_Time_Steps(With_Periods(100, {{0, 2.5, 1, 1}}), s);
  ASSERT_EQ(Number_Of_Steps(s), 2);
  EXPECT_EQ(s.Step_Time[1], 1.25);
  EXPECT_EQ(s.Step_Time[2], 2.5);
  Set_Time_Steps(With_Periods(100, {{0, 3.5, 1, 1}}), s);
  ASSERT_EQ(Number_Of_Steps(s), 4);
  EXPECT_EQ(s.Step_Time[1], 0.875);

  // An increment larger than the period gives one step.
  Set_Time_Steps(With_Periods(100, {{0, 2, 1, 5}}), s);
  ASSERT_EQ(Number_Of_Steps(s), 1);
  EXPECT_EQ(s.Step_Time[1], 2);
}

TEST(Set_Time_Steps, StorageLargerThanThePeriodGoesToItsLastStep) {
  Step_Table s;
  Set_Time_Steps(With_Periods(10, {{0, 10, 25, 1}}), s);
  ASSERT_EQ(Number_Of_Steps(s), 10);
  EXPECT_EQ(Storage_Steps(s), (Steps{10}));
}

TEST(Set_Time_Steps, ComputationTimeInsideTheFirstPeriod) {
  // The first period stops at the step that reaches 5.5 h. Its storage targets are still spread
  // over the whole period: 10 / 4 = 2.5 rounds to 2, targets 5 and 10; 10 lies beyond the cut
  // and goes to the last step. The second period starts beyond the end and still makes its first
  // step (at 12 h), which takes both of its targets (15 and 20).
  Step_Table s;
  const Project p = With_Periods(5.5, {{0, 10, 4, 1}, {10, 20, 5, 2}});
  Set_Time_Steps(p, s);
  ASSERT_EQ(Number_Of_Steps(s), 7);
  for (int i = 1; i <= 6; ++i)
    EXPECT_EQ(s.Step_Time[i], i);
  EXPECT_EQ(s.Step_Time[7], 12);
  EXPECT_EQ(Storage_Steps(s), (Steps{5, 6, 7}));
  // The window counts only what lies before the end: 5.5 steps round to 6, 5.5 / 4 to 1.
  EXPECT_EQ(Compute_Schedule_Totals(p), (Schedule_Totals{6, 1}));

  // A step that lands exactly on the end is the last of its period.
  Set_Time_Steps(With_Periods(5, {{0, 10, 4, 1}}), s);
  ASSERT_EQ(Number_Of_Steps(s), 5);
  EXPECT_EQ(Storage_Steps(s), (Steps{5}));
}

TEST(Set_Time_Steps, SeveralPeriodsInSequence) {
  Step_Table s;
  const Project p = With_Periods(8, {{0, 2, 1, 0.5}, {2, 8, 3, 2}});
  Set_Time_Steps(p, s);
  const std::vector<double> expected = {0.5, 1, 1.5, 2, 4, 6, 8};
  EXPECT_EQ(s.Step_Time.data(), expected);
  // Targets 1, 2 of the first period; 5 and 8 of the second, where 5 is as near to 4 as to 6
  // and the first of the two takes it.
  EXPECT_EQ(Storage_Steps(s), (Steps{2, 4, 5, 7}));
  EXPECT_EQ(Compute_Schedule_Totals(p), (Schedule_Totals{7, 4}));
}

TEST(Set_Time_Steps, TargetsOfTwoPeriodsOnOneStepStoreOnce) {
  // The first period stores at 4; the second (4 to 5, every 0.4 h, 2.5 rounds to 2) at 4.5,
  // which is as near to 4 as to 5 and lands on 4 again, and at 5.
  Step_Table s;
  Set_Time_Steps(With_Periods(5, {{0, 4, 4, 1}, {4, 5, 0.4, 1}}), s);
  ASSERT_EQ(Number_Of_Steps(s), 5);
  EXPECT_EQ(Storage_Steps(s), (Steps{4, 5}));
}

TEST(Set_Time_Steps, EqualTimesAndOutOfOrderPeriodsKeepTheFirstNearestStep) {
  // A period of zero length repeats the time 4; of the two, the first takes every target.
  Step_Table s;
  Set_Time_Steps(With_Periods(8, {{0, 4, 4, 2}, {4, 4, 1, 1}, {4, 8, 0.4, 4}}), s);
  const std::vector<double> expected = {2, 4, 4, 8};
  EXPECT_EQ(s.Step_Time.data(), expected);
  // Targets 4.4 .. 6.0 go to the first 4 (6.0 is a tie with 8), 6.4 .. 8 to 8.
  EXPECT_EQ(Storage_Steps(s), (Steps{2, 4}));

  // Periods out of order: the search still runs over the whole table, and the first of equally
  // near steps wins there too. Targets: 10 -> step 2; 2 and 4 -> step 3; 6 (as near to 8 as to 4)
  // and 8 -> step 1, the first of the two steps at 8.
  Set_Time_Steps(With_Periods(100, {{6, 10, 4, 2}, {0, 4, 2, 4}, {4, 8, 2, 4}}), s);
  const std::vector<double> unordered = {8, 10, 4, 8};
  EXPECT_EQ(s.Step_Time.data(), unordered);
  EXPECT_EQ(Storage_Steps(s), (Steps{1, 2, 3}));
}

TEST(Set_Time_Steps, NoPeriodNoStepAndDamagedPeriodsDoNotFault) {
  Step_Table s;
  s.Step_Time.add(3);
  s.Step_Store_Flag.add(True_Flag);
  Set_Time_Steps(With_Periods(72, {}), s);
  EXPECT_EQ(Number_Of_Steps(s), 0);
  EXPECT_EQ(s.Step_Store_Flag.count(), 0);
  // A zero increment or storage interval (only a damaged file holds one): one step, one storage.
  Set_Time_Steps(With_Periods(72, {{0, 6, 0, 0}}), s);
  ASSERT_EQ(Number_Of_Steps(s), 1);
  EXPECT_EQ(s.Step_Time[1], 6);
  EXPECT_EQ(Storage_Steps(s), (Steps{1}));
  // A period that runs backwards makes no step.
  Set_Time_Steps(With_Periods(72, {{6, 0, 1, 1}}), s);
  EXPECT_EQ(Number_Of_Steps(s), 0);
}

TEST(Set_Time_Steps, NewProjectRunsInQuarterHoursAndStoresHourly) {
  Project p;
  New_Project(p);
  Step_Table s;
  Set_Time_Steps(p, s);
  ASSERT_EQ(Number_Of_Steps(s), 288);
  EXPECT_EQ(s.Step_Time[288], 72);
  const Steps stored = Storage_Steps(s);
  ASSERT_EQ(stored.size(), 72u);
  for (int k = 1; k <= 72; ++k)
    EXPECT_EQ(stored[static_cast<std::size_t>(k - 1)], 4 * k);
  EXPECT_EQ(Compute_Schedule_Totals(p), (Schedule_Totals{288, 72}));
}

TEST(Schedule_Totals, SkipPeriodsBeyondTheEndAndNonPositiveIntervals) {
  // 30 h: the first period whole (10 steps of 1, 2 storages of 5), the second up to 30 h (20 h:
  // 10 steps of 2; no storage counted for a zero interval), the third starts beyond.
  const Project p = With_Periods(30, {{0, 10, 5, 1}, {10, 40, 0, 2}, {40, 50, 1, 1}});
  EXPECT_EQ(Compute_Schedule_Totals(p), (Schedule_Totals{20, 2}));
  // A period starting exactly at the end counts one step and one storage.
  EXPECT_EQ(Compute_Schedule_Totals(With_Periods(10, {{0, 10, 5, 1}, {10, 20, 1, 1}})),
            (Schedule_Totals{11, 3}));
}

TEST(Run_Window, ShowsTheCurrentPeriodAndTheTotals) {
  Project p = With_Periods(30, {{0, 10, 5, 1}, {10, 30, 10, 2}});
  Run_Window w;
  w.Current_Period = 7;
  Run_View v = Set_Run(p, w);
  EXPECT_EQ(w.Current_Period, 2);
  EXPECT_EQ(v.Period_Caption, "In period 2");
  EXPECT_EQ(v.From, 10);
  EXPECT_EQ(v.Until, 30);
  EXPECT_EQ(v.Storage_Each, 10);
  EXPECT_EQ(v.Time_Increment, 2);
  EXPECT_EQ(v.Period_Count, 2);
  EXPECT_EQ(v.Totals, (Schedule_Totals{20, 4}));
  Move_Current_Period(p, w, -1);
  EXPECT_EQ(w.Current_Period, 1);
  Move_Current_Period(p, w, -1);
  EXPECT_EQ(w.Current_Period, 1);
  Move_Current_Period(p, w, +5);
  EXPECT_EQ(w.Current_Period, 2);
}

TEST(Run_Window, EntriesMustBePositive) {
  Project p;
  New_Project(p);
  Run_Window w;
  EXPECT_FALSE(Enter_Computation_Time(p, 0));
  EXPECT_FALSE(Enter_Computation_Time(p, -3));
  EXPECT_EQ(p.Computation_Time, 72);
  EXPECT_TRUE(Enter_Computation_Time(p, 48));
  EXPECT_EQ(p.Computation_Time, 48);
  EXPECT_FALSE(Enter_Storage_Each(p, w, 0));
  EXPECT_FALSE(Enter_Time_Increment(p, w, -0.25));
  EXPECT_EQ(p.Period[1], (Period{0, 72, 1, 0.25}));
  EXPECT_TRUE(Enter_Storage_Each(p, w, 2));
  EXPECT_TRUE(Enter_Time_Increment(p, w, 0.5));
  EXPECT_EQ(p.Period[1], (Period{0, 72, 2, 0.5}));
  EXPECT_FALSE(Enter_Period_From(p, w, 5));
  EXPECT_FALSE(Enter_Period_Until(p, w, 0));  // not after its From
  EXPECT_EQ(p.Period[1].Until, 72);
}

TEST(Run_Window, MorePeriodsContinueTheLastOne) {
  Project p;
  New_Project(p);
  Run_Window w;
  p.Period[1].Storage_Each = 6;
  EXPECT_TRUE(Enter_Period_Count(p, w, 3));
  ASSERT_EQ(p.Period.count(), 3);
  EXPECT_EQ(p.Period[2], (Period{72, 78, 6, 0.25}));
  EXPECT_EQ(p.Period[3], (Period{78, 84, 6, 0.25}));
  EXPECT_EQ(w.Current_Period, 3);
  w.Current_Period = 1;
  EXPECT_FALSE(Enter_Period_Count(p, w, 0));
  EXPECT_EQ(p.Period.count(), 3);
  EXPECT_EQ(w.Current_Period, 3);
  EXPECT_TRUE(Enter_Period_Count(p, w, 2));
  EXPECT_EQ(p.Period.count(), 2);
  EXPECT_EQ(w.Current_Period, 2);
  EXPECT_EQ(p.Period[2], (Period{72, 78, 6, 0.25}));
}

TEST(Run_Window, AChangedEndMovesTheLaterPeriods) {
  Project p = With_Periods(30, {{0, 10, 1, 1}, {10, 20, 1, 1}, {20, 30, 1, 1}});
  Run_Window w;
  w.Current_Period = 1;
  ASSERT_TRUE(Enter_Period_Until(p, w, 25));
  EXPECT_EQ(p.Period[1].Until, 25);
  EXPECT_EQ(p.Period[2].From, 25);
  EXPECT_EQ(p.Period[2].Until, 26);  // 20 is no longer after 25
  EXPECT_EQ(p.Period[3].From, 26);
  EXPECT_EQ(p.Period[3].Until, 30);
  // Shortening keeps the later ends.
  ASSERT_TRUE(Enter_Period_Until(p, w, 5));
  EXPECT_EQ(p.Period[2], (Period{5, 26, 1, 1}));
  EXPECT_EQ(p.Period[3].From, 26);
}

// Materials A, B, C; four elements of materials B, A, B and one the database does not know.
Project Variant_Project() {
  Project p;
  New_Project(p);
  p.Result_File_Name = "B.RES";
  for (const char* name : {"A", "B", "C"}) {
    Material m;
    m.Name = name;
    p.Material.add(m);
  }
  for (const char* name : {"B", "A", "B", "X"}) {
    Mesh_Element e;
    e.Material = name;
    p.Mesh_Element.add(e);
  }
  return p;
}

TEST(Material_Variants, OpeningListsTheMeshMaterialsAndMarksAll) {
  Project p = Variant_Project();
  Run_Window w;
  Set_Mebin(p, w);
  EXPECT_EQ(w.Element_Material, (Table<std::int16_t>{2, 1, 2, 0}));
  EXPECT_EQ(w.Replaceable_Material, (Table<std::int16_t>{2, 1}));
  EXPECT_EQ(w.Replaced_Material, 2);
  EXPECT_EQ(p.Element_Replaced, (std::vector<bool>{true, false, true, false}));
  EXPECT_EQ(p.Run_Material, (Table<std::int16_t>{1, 2, 3}));
  EXPECT_STREQ(Mark_Text(w, 3), "V");

  Choose_Replaced_Material(p, w, 1);
  EXPECT_EQ(p.Element_Replaced, (std::vector<bool>{false, true, false, false}));

  Toggle_Material_Mark(p, w, 2);
  EXPECT_STREQ(Mark_Text(w, 2), "");
  EXPECT_EQ(p.Run_Material, (Table<std::int16_t>{1, 3}));
  Toggle_Material_Mark(p, w, 1);
  EXPECT_EQ(p.Run_Material, (Table<std::int16_t>{3}));
  Toggle_Material_Mark(p, w, 2);
  EXPECT_EQ(p.Run_Material, (Table<std::int16_t>{2, 3}));

  Unmark_All_Materials(p, w);
  EXPECT_EQ(Number_Of_Runs(p), 0);
  Mark_All_Materials(p, w);
  EXPECT_EQ(p.Run_Material, (Table<std::int16_t>{1, 2, 3}));
}

TEST(Material_Variants, EachRunGetsItsOwnResultName) {
  Project p = Variant_Project();
  Run_Window w;
  Set_Mebin(p, w);
  Prepare_Runs(p, w.Replaced_Material);
  EXPECT_EQ(p.Result_Names, (std::vector<std::string>{"B.RES", "B.RES", "B2.RES", "B3.RES"}));
  // The elements chosen for replacement survive the naming.
  EXPECT_EQ(p.Element_Replaced, (std::vector<bool>{true, false, true, false}));
}

TEST(Material_Variants, NoMarkedRunComputesTheDesignOnce) {
  Project p = Variant_Project();
  Run_Window w;
  Set_Mebin(p, w);
  Unmark_All_Materials(p, w);
  Prepare_Runs(p, w.Replaced_Material);
  EXPECT_EQ(p.Run_Material, (Table<std::int16_t>{2}));  // B replaced by B: as it stands
  EXPECT_EQ(p.Result_Names, (std::vector<std::string>{"B.RES", "B.RES"}));

  // Without variants the grid starts unmarked and there is one run whatever is marked later.
  p.Replace_Material = False_Flag;
  Set_Mebin(p, w);
  EXPECT_STREQ(Mark_Text(w, 1), "");
  EXPECT_EQ(Number_Of_Runs(p), 0);
  Mark_All_Materials(p, w);
  Prepare_Runs(p, w.Replaced_Material);
  EXPECT_EQ(Number_Of_Runs(p), 1);
  EXPECT_EQ(p.Result_Names.size(), 2u);
}

TEST(Material_Variants, AMeshWithoutKnownMaterialsHasNothingToReplace) {
  Project p = Variant_Project();
  for (Mesh_Element& e : p.Mesh_Element)
    e.Material = std::string(1, 'X');  // not from a literal: GCC 12 warns wrongly on that assignment
  Run_Window w;
  Set_Mebin(p, w);
  EXPECT_TRUE(w.Replaceable_Material.empty());
  EXPECT_EQ(w.Replaced_Material, 0);
  EXPECT_EQ(p.Element_Replaced, (std::vector<bool>(4, false)));
}

TEST(Iteration_Settings, PositiveValuesAreTakenAndTheLimitRounded) {
  Shell s;
  EXPECT_FALSE(Enter_Iteration_Setting(s, 0, 0));
  EXPECT_FALSE(Enter_Iteration_Setting(s, 1, -1e-3));
  EXPECT_FALSE(Enter_Iteration_Setting(s, 0, 40000));
  EXPECT_EQ(s.Mechanical_Iteration_Limit, 10);
  EXPECT_EQ(s.Mechanical_Limits[0], 0.001);
  EXPECT_TRUE(Enter_Iteration_Setting(s, 0, 2.5));
  EXPECT_EQ(s.Mechanical_Iteration_Limit, 2);
  EXPECT_TRUE(Enter_Iteration_Setting(s, 0, 3.5));
  EXPECT_EQ(s.Mechanical_Iteration_Limit, 4);
  EXPECT_TRUE(Enter_Iteration_Setting(s, 3, 0.05));
  EXPECT_EQ(s.Mechanical_Limits[2], 0.05);
  EXPECT_EQ(s.Mechanical_Limits[1], 0.001);
  EXPECT_FALSE(Enter_Iteration_Setting(s, 4, 1));
}

}  // namespace
}  // namespace pvx
