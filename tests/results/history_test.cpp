// The history plots: the curves at points equal the stored records there, the reactions of supports,
// the axes, the cut of all runs by time and by value, the differences of two curves and the files of
// "Record" and "Store Results".
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "family_support.h"
#include "results/history.h"

namespace pvx {
namespace {

TEST(Collect_History, CurvesAreTheStoredRecordsAtThePointsAndSupports) {
  // The two squares of the viewer tests with a family of two runs written beside them: the initial
  // state and steps 2 and 4 of four one-hour steps are stored (times 0, 2, 4). Every value of every
  // record is Pattern(slot, step, position).
  test::Temp_Dir dir;
  Project p;
  test::Two_Squares(p);
  p.Mesh_Element[2].Present_From = 100;  // not active at any stored step
  for (const char* name : {"C30 ", "C45 "}) {
    p.Material.add({});
    p.Material.last().Name = name;
  }
  p.Run_Material = {1, 2};
  Result_Family family = test::Family_In(
      dir, {.Nodes = 6, .Elements = 2, .Reactions = 2, .Mechanical = true, .Circuit_Stations = {}}, 2);
  Run_Index index, second;
  ASSERT_TRUE(test::Write_Run(family, 1, 4, {2, 4}, index));
  ASSERT_TRUE(test::Write_Run(family, 2, 4, {2, 4}, second));
  std::string message;
  ASSERT_TRUE(Open_All_Result_Sets(family, 109, message)) << message;
  ASSERT_TRUE(Read_Run_Index(family, 1, 109, false, index, message)) << message;
  const int steps_of_stored[3] = {0, 2, 4};
  History_Scale scale;
  History_Data h;

  // Points at corners: element 1 corner 3 (node 3), element 2 corner 2 (node 5) and corner 4 (node 3).
  const std::tuple<int, double, double, int, int> corners[] = {
      {1, 1, 1, 3, 3}, {2, 1, 0, 2, 5}, {2, 0, 1, 4, 3}};
  Table<History_Point> points;
  for (const auto& [e, u, v, c, n] : corners)
    points.add({e, u, v, 0, 0});
  // (variable, its record, the position of its value at corner c of element e on node n): the
  // stresses bring the tensile strength of the point, the other variables none.
  const struct {
    int variable, slot;
    int (*at)(int e, int c, int n);
  } variables[] = {{1, Slot_REA, [](int, int, int n) { return n; }},
                   {17, Slot_REJ, [](int e, int c, int) { return 16 * (e - 1) + 4 * (c - 1) + 2; }},
                   {40, Slot_REP, [](int e, int c, int) { return 4 * (e - 1) + c; }}};
  for (const auto& x : variables) {
    SCOPED_TRACE(x.variable);
    ASSERT_TRUE(Collect_History(family, p, index, x.variable, points, {}, false, scale = {}, h, message))
        << message;
    ASSERT_EQ(std::tuple(h.Runs, h.Items, h.Stored), std::tuple(2, 3, 3));
    for (int r = 1; r <= 2; ++r)
      for (int s = 1; s <= 3; ++s)
        for (int i = 1; i <= 3; ++i) {
          const auto& [e, u, v, c, n] = corners[i - 1];
          const int step = steps_of_stored[s - 1];
          EXPECT_EQ(HistoryValues(h, r, i, s), test::Pattern(x.slot, step, x.at(e, c, n))) << r << s << i;
          EXPECT_EQ(HistoryStrength(h, r, i, s),
                    x.slot == Slot_REJ ? test::Pattern(Slot_REF, step, 4 * (e - 1) + c) : 0.0);
        }
  }
  EXPECT_EQ(h.Run_Names, (std::vector<std::string>{"C30 ", "C45 "}));
  // The axes of the temperature: times 0 to 4; values from node 3 at the start (201.5) to node 5 at
  // step 4 (242.5).
  ASSERT_TRUE(Collect_History(family, p, index, 1, points, {}, false, scale = {}, h, message));
  EXPECT_EQ(std::tuple(h.TimeMin, h.TimeMax, h.ValueMin, h.ValueMax), std::tuple(0.0, 4.0, 201.5, 242.5));

  // The centre of element 1 averages its four corner nodes 1, 2, 3, 4: 200 + 10 k + 1.25, here in
  // degrees Fahrenheit of the imperial display.
  Table<History_Point> centre;
  centre.add({1, 0.5, 0.5, 50, 50});
  ASSERT_TRUE(Collect_History(family, p, index, 1, centre, {}, true, scale, h, message));
  for (int s = 1; s <= 3; ++s)
    EXPECT_NEAR(HistoryValues(h, 1, 1, s), (201.25 + 10 * steps_of_stored[s - 1]) * 9 / 5 + 32, 1e-4);

  // The reactions: item p is support p's entry of the reaction record.
  ASSERT_TRUE(Collect_History(family, p, index, 21, {}, Table<std::int32_t>{2, 1}, false, scale, h, message));
  ASSERT_EQ(h.Items, 2);
  for (int s = 1; s <= 3; ++s) {
    EXPECT_EQ(HistoryValues(h, 2, 1, s), test::Pattern(Slot_REK, steps_of_stored[s - 1], 2));
    EXPECT_EQ(HistoryValues(h, 1, 2, s), test::Pattern(Slot_REK, steps_of_stored[s - 1], 1));
  }
  // Variables without a value at a point: nothing, and no message.
  for (int variable : {6, 30, 34, 41}) {
    message.clear();
    EXPECT_FALSE(Collect_History(family, p, index, variable, centre, {}, false, scale, h, message));
    EXPECT_EQ(message, "");
  }
  // A stored step that the files do not hold is the reader's failure.
  index.Storage_Time.add(6);
  EXPECT_FALSE(Collect_History(family, p, index, 1, centre, {}, false, scale, h, message));
  EXPECT_EQ(message, Results_Corrupted(family.Files[1][Slot_RES].Path));
}

// Curves made by hand: item i of run r takes values[r - 1][i - 1].
History_Data Curves(const std::vector<double>& times,
                    const std::vector<std::vector<std::vector<double>>>& values,
                    std::vector<std::string> names = {}) {
  History_Data h;
  h.Variable = 1;
  h.Runs = static_cast<int>(values.size());
  h.Items = static_cast<int>(values[0].size());
  h.Stored = static_cast<int>(times.size());
  for (double t : times)
    h.Storage_Time.add(t);
  h.Values.assign(static_cast<std::size_t>(h.Runs * h.Items * h.Stored), 0);
  h.Strength = h.Values;
  for (int r = 1; r <= h.Runs; ++r)
    for (int i = 1; i <= h.Items; ++i)
      for (int s = 1; s <= h.Stored; ++s)
        HistoryValues(h, r, i, s) = values[r - 1][i - 1][s - 1];
  h.Run_Names = std::move(names);
  return h;
}

TEST(Set_History_Axes, AxesFromTheCurvesOrFromAFixedScale) {
  History_Data none = Curves({0}, {{{12.5}}});
  none.Items = 0;
  none.Values.clear();
  const struct {
    const char* what;
    History_Data h;
    History_Scale scale, expected;
  } rows[] = {
      {"two runs", Curves({0, 10, 40}, {{{20, 30, 25}}, {{120, 130, 18}}}), {}, {0, 40, 18, 130, false}},
      // A single stored step: an hour of time, a value extent of one.
      {"single step", Curves({0}, {{{12.5}}}), {}, {0, 1, 12.5, 13.5, false}},
      {"no points", none, {}, {0, 1, 0, 1, false}},
  };
  for (auto r : rows) {
    SCOPED_TRACE(r.what);
    Set_History_Axes(r.h, r.scale);
    EXPECT_EQ(r.scale, r.expected);
    EXPECT_EQ(std::tuple(r.h.TimeMin, r.h.TimeMax, r.h.ValueMin, r.h.ValueMax),
              std::tuple(r.expected.TimeMin, r.expected.TimeMax, r.expected.ValueMin, r.expected.ValueMax));
  }
}

// Three runs over the times 0, 10, 20, 40: rising then flat, falling from above, rising slowly.
const History_Data Three_Runs = Curves({0, 10, 20, 40}, {{{0, 5, 15, 15}}, {{20, 30, 10, 0}}, {{1, 2, 3, 4}}},
                                       {"Mat A", "Mat B", "Mat C"});

TEST(Compute_Intersections, ByTimeAndByValueSortedByResultAndStored) {
  const struct {
    Mebin_Kind kind;
    double c;
    std::vector<std::tuple<std::string, double, std::string, int>> rows;
  } rows[] = {
      // Value 10: A reaches it at step 3, 10 + (10 - 5) x 10 / (15 - 5) = 15 h; B starts above, so
      // its first time 0; C never reaches it.
      {Mebin_Kind::Value, 10, {{"Mat B", 0, "0.00", 2}, {"Mat A", 15, "15.00", 1}}},
      // Value 3.5: A between 0 and 5 (7 h), B at once, C between 3 and 4 (20 + 0.5 x 20 = 30 h).
      {Mebin_Kind::Value, 3.5, {{"Mat B", 0, "0.00", 2}, {"Mat A", 7, "7.00", 1}, {"Mat C", 30, "30.00", 3}}},
      // Time 30, between 20 and 40: A 15, B 10 - 10 x 10 / 20 = 5, C 3 + 0.5 = 3.5.
      {Mebin_Kind::Time, 30, {{"Mat C", 3.5, "3.50", 3}, {"Mat B", 5, "5.00", 2}, {"Mat A", 15, "15.00", 1}}},
      // Time 0 is the first step.
      {Mebin_Kind::Time, 0, {{"Mat A", 0, "0.00", 1}, {"Mat C", 1, "1.00", 3}, {"Mat B", 20, "20.00", 2}}},
      // The last time has no later step, and a time before the first none before it.
      {Mebin_Kind::Time, 40, {}},
      {Mebin_Kind::Time, -1, {}},
      {Mebin_Kind::Value, 100, {}},
  };
  for (const auto& r : rows) {
    SCOPED_TRACE(::testing::Message() << int(r.kind) << " " << r.c);
    const Table<Intersection_Row> got = Compute_Intersections(Three_Runs, r.kind, r.c);
    ASSERT_EQ(got.count(), static_cast<int>(r.rows.size()));
    for (int i = 1; i <= got.count(); ++i)
      EXPECT_EQ(std::tuple(got[i].Material, got[i].Result, got[i].Text, got[i].Run),
                r.rows[static_cast<std::size_t>(i - 1)]);
  }
  const Table<Intersection_Row> cut = Compute_Intersections(Three_Runs, Mebin_Kind::Time, 30);
  test::Temp_Dir dir;
  std::string message;
  ASSERT_TRUE(Store_Intersections(dir.file("mebin.txt"), "Wall on slab", 30, cut, message));
  EXPECT_EQ(test::Read_Text(dir.file("mebin.txt")),
            "Wall on slab\r\n30\r\n3\r\n\"Mat C\",3.5,1\r\n\"Mat B\",5,2\r\n\"Mat A\",15,3\r\n");
  EXPECT_FALSE(Store_Intersections(dir.file("no/mebin.txt"), "Wall on slab", 30, cut, message));
  EXPECT_EQ(message, "Error occured writing file  " + dir.file("no/mebin.txt"));
}

TEST(History_Difference, CurveLessCurve) {
  const History_Data h = Curves({0, 1, 2}, {{{5, 7, 4}, {1, 9, 4}}, {{0, 0, 0}, {2, 2, -2}}});
  EXPECT_EQ(History_Difference(h, 1, 1, 2).data(), (std::vector<double>{4, -2, 0}));
  EXPECT_EQ(History_Difference(h, 2, 2, 1).data(), (std::vector<double>{2, 2, -2}));
  EXPECT_TRUE(History_Difference(h, 3, 1, 2).empty());
  EXPECT_TRUE(History_Difference(h, 1, 1, 3).empty());
}

TEST(Recording, FileCharacterByCharacterAndCollectionNames) {
  const History_Data h =
      Curves({0, 2.5, 100}, {{{20, -1.5, 123456}}, {{0.000123, 20.25, -7e-5}}}, {"C30 ", "C45"});
  const std::string expected =
      "Time [hours]  Temperature [oC]\r\n"
      "C30 \r\n"
      "Point 1\r\n"
      "      0.000000  2.0000e+01\r\n"
      "      2.500000 -1.5000e+00\r\n"
      "    100.000000  1.2346e+05\r\n"
      "C45\r\n"
      "Point 1\r\n"
      "      0.000000  1.2300e-04\r\n"
      "      2.500000  2.0250e+01\r\n"
      "    100.000000 -7.0000e-05\r\n";
  // One run: no run line; a variable without a header: no header line.
  History_Data one = Curves({0}, {{{1}, {2}}}, {"C30"});
  one.Variable = 16;
  EXPECT_EQ(Recording_Text(one),
            "Point 1\r\n      0.000000  1.0000e+00\r\nPoint 2\r\n      0.000000  2.0000e+00\r\n");

  // The ending ".txt" in any case gives way to the file's number.
  test::Temp_Dir dir;
  Recording_State state;
  std::string path, message;
  Set_Record_Name(state, dir.file("wall.TxT"));
  ASSERT_TRUE(Recording(state, h, path, message));
  EXPECT_EQ(path, dir.file("wall1.txt"));
  EXPECT_EQ(test::Read_Text(path), expected);
  for (const char* name : {"plain", "a.txt.bak"}) {
    Set_Record_Name(state, name);
    EXPECT_EQ(state.RecordName, name);
  }
}

}  // namespace
}  // namespace pvx
