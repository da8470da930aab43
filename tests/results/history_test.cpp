// The history plots: the curves at nodes equal the stored records there, the axes, the reactions
// of supports, the cut of all runs by time and by value, the differences of two curves and the
// files of "Record" and "Store Results".
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "family_support.h"
#include "results/history.h"

namespace pvx {
namespace {

// The two squares of the viewer tests with a family of two runs written beside them: the initial
// state and steps 2 and 4 of four one-hour steps are stored (times 0, 2, 4). Every value of every
// record is Pattern(slot, step, position).
struct Written_Family {
  test::Temp_Dir dir;
  Project p;
  Result_Family family;
  Run_Index index;
  const int steps_of_stored[3] = {0, 2, 4};

  explicit Written_Family(int steps = 4, std::vector<int> stored = {2, 4}) {
    test::Two_Squares(p);
    p.Mesh_Element[2].Present_From = 100;  // not active at any stored step
    for (const char* name : {"C30 ", "C45 "}) {
      Material m;
      m.Name = name;
      p.Material.add(m);
    }
    p.Run_Material = {1, 2};
    Result_Layout layout{.Nodes = 6,
                         .Elements = 2,
                         .Doubled_Nodes = 0,
                         .Reactions = 2,
                         .Interfaces = 0,
                         .Bars = 0,
                         .Mechanical = true,
                         .Circuit_Stations = {}};
    family = test::Family_In(dir, layout, 2);
    Run_Index second;
    EXPECT_TRUE(test::Write_Run(family, 1, steps, stored, index));
    EXPECT_TRUE(test::Write_Run(family, 2, steps, stored, second));
    std::string message;
    EXPECT_TRUE(Open_All_Result_Sets(family, 109, message)) << message;
    EXPECT_TRUE(Read_Run_Index(family, 1, 109, false, index, message)) << message;
  }
};

// The value of a variable at corner c of element e, picked by hand from a record read on its own.
double Stored_Corner_Value(Result_Family& family, const Project& p, int run, int variable, int stored, int e,
                           int c, double* strength) {
  Plot_Buffers b;
  Dimension_Plot_Buffers(family.Layout, b);
  std::string message;
  EXPECT_TRUE(
      Read_Result_Variable(family, run, Slot_Of_Variable(variable), stored, variable, false, b, message));
  const int node = p.Mesh_Element[e].Corner[c];
  if (strength) *strength = b.Element_B[e][c][1];
  switch (variable) {
    case 1:
      return b.Node[node];
    case 11:
      return b.Node[2 * node - 1];
    case 12:
      return b.Node[2 * node];
    case 15:
      return b.Element_A[e][c][4];
    case 17:
      return b.Element_A[e][c][2];
    default:  // 2, 16, 40: the first column of the element's row
      return b.Element_A[e][c][1];
  }
}

TEST(Collect_History, CurvesAtNodesAreTheStoredRecords) {
  Written_Family w;
  // Points at corners: element 1 corner 3 (node 3), element 2 corner 2 (node 5) and corner 4 (node 3).
  const std::tuple<int, double, double, int> corners[] = {{1, 1, 1, 3}, {2, 1, 0, 2}, {2, 0, 1, 4}};
  Table<History_Point> points;
  for (const auto& [e, u, v, c] : corners)
    points.add({e, u, v, 0, 0});
  for (int variable : {1, 2, 11, 12, 15, 16, 17, 40}) {
    SCOPED_TRACE(variable);
    History_Scale scale;
    History_Data h;
    std::string message;
    ASSERT_TRUE(Collect_History(w.family, w.p, w.index, variable, points, {}, false, scale, h, message))
        << message;
    ASSERT_EQ(std::tuple(h.Runs, h.Items, h.Stored), std::tuple(2, 3, 3));
    for (int r = 1; r <= 2; ++r)
      for (int s = 1; s <= 3; ++s)
        for (int i = 1; i <= 3; ++i) {
          const auto& [e, u, v, c] = corners[i - 1];
          double strength = 0;
          const double expected = Stored_Corner_Value(w.family, w.p, r, variable, s, e, c, &strength);
          EXPECT_EQ(HistoryValues(h, r, i, s), expected) << r << " " << s << " " << i;
          EXPECT_EQ(HistoryStrength(h, r, i, s), variable >= 13 && variable <= 19 ? strength : 0.0);
        }
  }
  // Independently of the readers: the temperature of node n after step k is 200 + 10 k + n / 2.
  History_Scale scale;
  History_Data h;
  std::string message;
  ASSERT_TRUE(Collect_History(w.family, w.p, w.index, 1, points, {}, false, scale, h, message));
  for (int s = 1; s <= 3; ++s) {
    EXPECT_EQ(HistoryValues(h, 1, 1, s), test::Pattern(Slot_REA, w.steps_of_stored[s - 1], 3));
    EXPECT_EQ(HistoryValues(h, 2, 2, s), test::Pattern(Slot_REA, w.steps_of_stored[s - 1], 5));
  }
  EXPECT_EQ(h.Run_Names, (std::vector<std::string>{"C30 ", "C45 "}));
  // The axes: times 0 to 4; values from node 3 at the start (201.5) to node 5 at step 4 (242.5).
  EXPECT_EQ(std::tuple(h.TimeMin, h.TimeMax, h.ValueMin, h.ValueMax), std::tuple(0.0, 4.0, 201.5, 242.5));
  EXPECT_EQ(std::tuple(scale.TimeMin, scale.TimeMax, scale.ValueMin, scale.ValueMax, scale.Fixed),
            std::tuple(0.0, 4.0, 201.5, 242.5, false));
  EXPECT_DOUBLE_EQ(h.TimeScale, 1500);
  EXPECT_DOUBLE_EQ(h.ValueScale, 4500.0 / 41);
  EXPECT_DOUBLE_EQ(History_Picture_X(h, 2), 3800);
  EXPECT_DOUBLE_EQ(History_Picture_Y(h, 201.5), 4800);
  EXPECT_DOUBLE_EQ(History_Picture_Y(h, 242.5), 300);
}

TEST(Collect_History, InterpolatedPointsReactionsScalesAndFailures) {
  Written_Family w;
  std::string message;
  // The centre of element 1 averages its four corner nodes 1, 2, 3, 4: 200 + 10 k + 1.25.
  Table<History_Point> centre;
  centre.add({1, 0.5, 0.5, 50, 50});
  History_Scale scale{.TimeMin = -1, .TimeMax = 9, .ValueMin = 100, .ValueMax = 300, .Fixed = true};
  History_Data h;
  ASSERT_TRUE(Collect_History(w.family, w.p, w.index, 1, centre, {}, false, scale, h, message));
  for (int s = 1; s <= 3; ++s)
    EXPECT_DOUBLE_EQ(HistoryValues(h, 1, 1, s), 201.25 + 10 * w.steps_of_stored[s - 1]);
  // A fixed scale gives the axes and is kept.
  EXPECT_EQ(std::tuple(h.TimeMin, h.TimeMax, h.ValueMin, h.ValueMax), std::tuple(-1.0, 9.0, 100.0, 300.0));
  EXPECT_TRUE(scale.Fixed);
  EXPECT_DOUBLE_EQ(h.TimeScale, 600);
  EXPECT_DOUBLE_EQ(h.ValueScale, 22.5);

  // In imperial display the same point reads in degrees Fahrenheit.
  History_Scale free;
  ASSERT_TRUE(Collect_History(w.family, w.p, w.index, 1, centre, {}, true, free, h, message));
  EXPECT_NEAR(HistoryValues(h, 1, 1, 3), (241.25 * 9 / 5) + 32, 1e-4);

  // The reactions: item p is support p's entry of the reaction record.
  Table<std::int32_t> supports = {2, 1};
  ASSERT_TRUE(Collect_History(w.family, w.p, w.index, 21, {}, supports, false, free, h, message));
  ASSERT_EQ(h.Items, 2);
  for (int s = 1; s <= 3; ++s) {
    EXPECT_EQ(HistoryValues(h, 2, 1, s), test::Pattern(Slot_REK, w.steps_of_stored[s - 1], 2));
    EXPECT_EQ(HistoryValues(h, 1, 2, s), test::Pattern(Slot_REK, w.steps_of_stored[s - 1], 1));
  }

  // Variables without a value at a point: nothing, and no message.
  for (int variable : {6, 30, 34, 41}) {
    message.clear();
    EXPECT_FALSE(Collect_History(w.family, w.p, w.index, variable, centre, {}, false, free, h, message));
    EXPECT_EQ(message, "");
  }
  // A stored step that the files do not hold is the reader's failure.
  Run_Index longer = w.index;
  longer.Storage_Time.add(6);
  EXPECT_FALSE(Collect_History(w.family, w.p, longer, 1, centre, {}, false, free, h, message));
  EXPECT_EQ(message, Results_Corrupted(w.family.Files[1][Slot_RES].Path));
}

TEST(Collect_History, SingleStoredStepHasOneHourAndOneUnit) {
  Written_Family w(0, {});
  Table<History_Point> points;
  points.add({1, 0, 0, 0, 0});
  History_Scale scale;
  History_Data h;
  std::string message;
  ASSERT_TRUE(Collect_History(w.family, w.p, w.index, 1, points, {}, false, scale, h, message)) << message;
  EXPECT_EQ(h.Stored, 1);
  EXPECT_EQ(std::tuple(h.TimeMin, h.TimeMax, h.ValueMin, h.ValueMax), std::tuple(0.0, 1.0, 200.5, 201.5));
}

// Curves made by hand: item i of run r takes values[r - 1][i - 1].
History_Data Curves(const std::vector<double>& times,
                    const std::vector<std::vector<std::vector<double>>>& values,
                    std::vector<std::string> names) {
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

TEST(Compute_Intersections, ByTimeAndByValueSortedByResult) {
  // Three runs over the times 0, 10, 20, 40: rising then flat, falling from above, rising slowly.
  const History_Data h = Curves({0, 10, 20, 40}, {{{0, 5, 15, 15}}, {{20, 30, 10, 0}}, {{1, 2, 3, 4}}},
                                {"Mat A", "Mat B", "Mat C"});
  struct Row {
    Mebin_Kind kind;
    double c;
    std::vector<std::tuple<std::string, double, std::string, int>> rows;
  };
  const Row rows[] = {
      // Value 10: A reaches it at step 3, 10 + (10 - 5) x 10 / (15 - 5) = 15 h; B starts above, so
      // its first time 0; C never reaches it.
      {Mebin_Kind::Value, 10, {{"Mat B", 0, "0.00", 2}, {"Mat A", 15, "15.00", 1}}},
      {Mebin_Kind::Value, 15, {{"Mat B", 0, "0.00", 2}, {"Mat A", 20, "20.00", 1}}},
      // Value 3.5: A between 0 and 5 (7 h), B at once, C between 3 and 4 (20 + 0.5 x 20 = 30 h).
      {Mebin_Kind::Value, 3.5, {{"Mat B", 0, "0.00", 2}, {"Mat A", 7, "7.00", 1}, {"Mat C", 30, "30.00", 3}}},
      // Time 30, between 20 and 40: A 15, B 10 - 10 x 10 / 20 = 5, C 3 + 0.5 = 3.5.
      {Mebin_Kind::Time, 30, {{"Mat C", 3.5, "3.50", 3}, {"Mat B", 5, "5.00", 2}, {"Mat A", 15, "15.00", 1}}},
      // Time 15: A 10, B 20, C 2.5; time 0 is the first step.
      {Mebin_Kind::Time,
       15,
       {{"Mat C", 2.5, "2.50", 3}, {"Mat A", 10, "10.00", 1}, {"Mat B", 20, "20.00", 2}}},
      {Mebin_Kind::Time, 0, {{"Mat A", 0, "0.00", 1}, {"Mat C", 1, "1.00", 3}, {"Mat B", 20, "20.00", 2}}},
      // The last time has no later step, and a time before the first none before it.
      {Mebin_Kind::Time, 40, {}},
      {Mebin_Kind::Time, -1, {}},
      {Mebin_Kind::Value, 100, {}},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(::testing::Message() << int(r.kind) << " " << r.c);
    const Table<Intersection_Row> got = Compute_Intersections(h, r.kind, r.c);
    ASSERT_EQ(got.count(), static_cast<int>(r.rows.size()));
    for (int i = 1; i <= got.count(); ++i) {
      const auto& [name, result, text, run] = r.rows[static_cast<std::size_t>(i - 1)];
      EXPECT_EQ(got[i].Material, name);
      EXPECT_DOUBLE_EQ(got[i].Result, result);
      EXPECT_EQ(got[i].Text, text);
      EXPECT_EQ(got[i].Run, run);
    }
  }
}

TEST(Compute_Intersections, LineOfTheCriterionAndStoredFile) {
  History_Data h = Curves({0, 10, 20, 40}, {{{0, 5, 15, 15}}, {{20, 30, 10, 0}}, {{1, 2, 3, 4}}},
                          {"Mat A", "Mat B", "Mat C"});
  h.TimeMin = 0, h.TimeMax = 40, h.ValueMin = 0, h.ValueMax = 30;
  h.TimeScale = 150, h.ValueScale = 150;
  struct Row {
    Mebin_Kind kind;
    double c;
    bool drawn;
    double x1, y1, x2, y2;
  };
  const Row rows[] = {
      {Mebin_Kind::Time, 10, true, 2300, 300, 2300, 4800},
      {Mebin_Kind::Time, 0, true, 800, 300, 800, 4800},
      {Mebin_Kind::Time, 40, false, 0, 0, 0, 0},
      {Mebin_Kind::Time, -1, false, 0, 0, 0, 0},
      {Mebin_Kind::Value, 10, true, 800, 3300, 6800, 3300},
      {Mebin_Kind::Value, 0, false, 0, 0, 0, 0},
      {Mebin_Kind::Value, 30, true, 800, 300, 6800, 300},
      {Mebin_Kind::Value, 31, false, 0, 0, 0, 0},
  };
  for (const Row& r : rows) {
    const Mebin_Line l = Mebin_Line_Of(h, r.kind, r.c);
    EXPECT_EQ(std::tuple(l.Drawn, l.X1, l.Y1, l.X2, l.Y2), std::tuple(r.drawn, r.x1, r.y1, r.x2, r.y2))
        << int(r.kind) << " " << r.c;
  }

  const Table<Intersection_Row> cut = Compute_Intersections(h, Mebin_Kind::Time, 30);
  const std::string expected =
      "Wall on slab\r\n"
      "30\r\n"
      "3\r\n"
      "\"Mat C\",3.5,1\r\n"
      "\"Mat B\",5,2\r\n"
      "\"Mat A\",15,3\r\n";
  EXPECT_EQ(Intersections_Text("Wall on slab", 30, cut), expected);
  test::Temp_Dir dir;
  std::string message;
  ASSERT_TRUE(Store_Intersections(dir.file("mebin.txt"), "Wall on slab", 30, cut, message));
  EXPECT_EQ(test::Read_Text(dir.file("mebin.txt")), expected);
  EXPECT_FALSE(Store_Intersections(dir.file("no/mebin.txt"), "Wall on slab", 30, cut, message));
  EXPECT_EQ(message, "Error occured writing file  " + dir.file("no/mebin.txt"));
}

TEST(History_Difference, CurveLessCurveAndItsPicture) {
  History_Data h = Curves({0, 1, 2}, {{{5, 7, 4}, {1, 9, 4}}, {{0, 0, 0}, {2, 2, -2}}}, {"A", "B"});
  h.ValueScale = 10;
  EXPECT_EQ(History_Difference(h, 1, 1, 2).data(), (std::vector<double>{4, -2, 0}));
  EXPECT_EQ(History_Difference(h, 2, 2, 1).data(), (std::vector<double>{2, 2, -2}));
  EXPECT_TRUE(History_Difference(h, 3, 1, 2).empty());
  EXPECT_TRUE(History_Difference(h, 1, 1, 3).empty());
  // Not rescaled: the difference 0 lies on the bottom of the graph.
  EXPECT_DOUBLE_EQ(Difference_Picture_Y(h, 0), 4800);
  EXPECT_DOUBLE_EQ(Difference_Picture_Y(h, -2), 4820);
}

TEST(Recording, FileCharacterByCharacterAndCollectionNames) {
  History_Data h = Curves({0, 2.5, 100}, {{{20, -1.5, 123456}}, {{0.000123, 20.25, -7e-5}}}, {"C30 ", "C45"});
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
  EXPECT_EQ(Recording_Text(h), expected);
  // One run: no run line; a variable without a header: no header line.
  History_Data one = Curves({0}, {{{1}, {2}}}, {"C30"});
  one.Variable = 16;
  EXPECT_EQ(Recording_Text(one),
            "Point 1\r\n      0.000000  1.0000e+00\r\nPoint 2\r\n      0.000000  2.0000e+00\r\n");

  test::Temp_Dir dir;
  Recording_State state;
  std::string path, message;
  EXPECT_FALSE(Recording(state, h, path, message));
  EXPECT_EQ(message, "A collection name for the files to be stored must be provided.");
  EXPECT_EQ(state.RecordCount, 0);
  Set_Record_Name(state, dir.file("wall.TxT"));
  EXPECT_EQ(state.RecordName, dir.file("wall"));
  for (int k = 1; k <= 2; ++k) {
    ASSERT_TRUE(Recording(state, h, path, message));
    EXPECT_EQ(path, dir.file("wall" + std::to_string(k) + ".txt"));
    EXPECT_EQ(message, "File " + path + " is stored ");
    EXPECT_EQ(test::Read_Text(path), expected);
  }
  Set_Record_Name(state, "plain");
  EXPECT_EQ(state.RecordName, "plain");
  Set_Record_Name(state, "a.txt.bak");
  EXPECT_EQ(state.RecordName, "a.txt.bak");
}

}  // namespace
}  // namespace pvx
