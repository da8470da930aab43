// The extreme table and the per-step extremes against values worked out by hand.
#include <gtest/gtest.h>

#include <array>
#include <tuple>
#include <vector>

#include "results/extremes.h"

namespace pvx {
namespace {

struct Sampling {
  Run_Index index;
  Field_Statistics stats;
  Field_Values f;
  void sample(int row, int stored, bool mechanical = false) {
    Sample_Field_Extremes(index, stats, row, stored, f, mechanical);
  }
  const Extreme_Row& row(int v) const { return index.Extremes[v]; }
};

TEST(Sample_Field_Extremes, PeriodExtremesMoveOnlyOnStrictlyNewValues) {
  Sampling s;
  Size_Field_Statistics(s.stats, 3);
  // Per step: the temperatures, the storages flagged by then, row 1 after it (period and scale).
  const std::tuple<std::vector<double>, int, Extreme_Row> steps[] = {
      {{5, 7, 6}, 1, {5, 7, 5, 7, 1, 1}},
      {{4, 9, 6}, 1, {4, 9, 4, 9, 1, 1}},  // not stored: the extremes point at the next storage, 1 still
      {{4, 9, 6}, 2, {4, 9, 4, 9, 1, 1}},  // stored as 2: equal values keep the old indices
      {{3, 8, 8}, 2, {3, 9, 3, 9, 2, 1}}};
  for (int r = 1; r <= 4; ++r) {
    SCOPED_TRACE(r);
    const auto& [temperature, stored, want] = steps[r - 1];
    s.f.Temperature = temperature;
    s.sample(r, stored);
    EXPECT_EQ(s.row(1), want);
  }
  // Per step, and overall for the diagnostics.
  EXPECT_EQ((std::array{s.stats.Field_Minimum[2][1], s.stats.Field_Maximum[4][1], s.stats.Overall_Minimum[1],
                        s.stats.Overall_Maximum[1]}),
            (std::array{4.0, 8.0, 3.0, 9.0}));
  EXPECT_EQ(s.row(13), Extreme_Row{});  // without mechanics the mechanical rows are not touched
  s.sample(9, 2);                       // a row beyond the table grows it rather than writing past it
  EXPECT_EQ(s.stats.Field_Maximum.size(), 10u);
}

TEST(Sample_Field_Extremes, MechanicalAndUniformFields) {
  Sampling s;
  const std::vector<double> maturity(8, 7.0), reaction{-3, -3};  // uniform: both ends are the value
  // Two nodes: (3, 4) of length 5 and (-6, 8) of length 10.
  const std::vector<double> displacement{3, 4, -6, 8}, crack{0.1, 0.5, 0.2, 0.3};
  // Corners Sxx, Syy, Sxy, Szz: (1,1,0) -> principal 1, 1; (4,0,0) -> 4, 0; (0,0,3) -> 3, -3; 0.
  const std::vector<double> stress{1, 1, 0, -2, 4, 0, 0, 3, 0, 0, 3, 1, 0, 0, 0, 0};
  const std::vector<double> strength{2, 2, 0, 2};          // Szz / ft: -2 -> 0; 1.5; ft 0 -> 10; 0
  const std::vector<std::int16_t> cracked{-1, 0, -1, -1};  // the 0.5 is not a crack
  const std::vector<double> interfaces{1, -2, 5, 6, 3, 4, -7, 0},
      bars{10, 1, 2, 0.1, 0.2, -20, 3, -4, 0.3, -0.4};
  s.f.Maturity = maturity, s.f.Reaction = reaction, s.f.Displacement = displacement;
  s.f.Corner_Stress = stress, s.f.Tensile_Strength = strength;
  s.f.Crack_Opening = crack, s.f.Cracked = cracked;
  s.f.Interface_Stress = interfaces, s.f.Bar_Values = bars;
  s.sample(1, 1, true);
  // Row, minimum and maximum; row 20, the total displacement, has its period minimum held at 0.
  const double rows[][3] = {{2, 7, 7},   {21, -3, -3},   {11, -6, 3}, {12, 4, 8},  {20, 0, 10},
                            {13, 0, 4},  {14, -3, 1},    {15, -2, 3}, {16, 0, 4},  {18, 0, 3},
                            {19, 0, 10}, {22, 0, 0.3},   {23, -2, 4}, {24, -7, 6}, {25, -20, 10},
                            {26, -4, 3}, {27, -0.4, 0.3}};
  for (const auto& [v, min, max] : rows)
    EXPECT_EQ(s.row(int(v)), (Extreme_Row{min, max, min, max, 1, 1})) << "row " << v;
  EXPECT_EQ(s.stats.Field_Minimum[1][20], 5);  // the step keeps its true minimum
}

TEST(Sample_Field_Extremes, TheCircuitRows) {
  Sampling s;
  // Water cools along the circuit, inlet 20, outlet 15: the step's minimum is the inlet and its
  // maximum the outlet as they stand; the period range is in true order.
  s.f.Circuit = {true, 20, 15, 2, 4180};
  s.sample(1, 1);
  EXPECT_EQ(std::tuple(s.stats.Field_Minimum[1][6], s.stats.Field_Maximum[1][6]), std::tuple(20.0, 15.0));
  EXPECT_EQ(s.row(6), (Extreme_Row{15, 20, 15, 20, 1, 1}));
  // Capacity 2 x 4180 / 3600 x (15 - 20); a collapsed range opens by 0.1, to the scale as well.
  const double capacity = 2.0 * 4180 / 3600 * -5;
  EXPECT_DOUBLE_EQ(s.row(8).PeriodMin, capacity);
  EXPECT_DOUBLE_EQ(s.row(8).ScaleMax, capacity + 0.1);
  // A later, larger flow: its period minimum is held at 0; capacity 3 x 4180 / 3600 x -4.
  s.f.Circuit = {true, 20, 16, 3, 4180};
  s.sample(2, 2);
  EXPECT_EQ(s.row(7), (Extreme_Row{0, 3, 0, 3, 1, 2}));
  EXPECT_DOUBLE_EQ(s.row(8).PeriodMin, 3.0 * 4180 / 3600 * -4);
  EXPECT_EQ(s.row(8).StoredIndexOfMin, 2);
  Sampling none;  // no circuit: the capacity's range is 0 opened to 0.1
  none.sample(1, 1);
  EXPECT_EQ(std::tuple(none.row(8).PeriodMin, none.row(8).PeriodMax), std::tuple(0.0, 0.1));
}

TEST(Run_Index, StoredIndicesAreCappedForTheViewerAndTheFile) {
  Run_Index index;
  index.Storage_Time = {0, 1, 2};
  for (Extreme_Row& row : index.Extremes)
    row.StoredIndexOfMin = row.StoredIndexOfMax = 5;
  index.Extremes[2].StoredIndexOfMin = 2;
  Clamp_Plot_Storages(index);  // rows up to 30 only; above, the viewer caps them itself
  EXPECT_EQ((std::array{index.Extremes[1].StoredIndexOfMax, index.Extremes[2].StoredIndexOfMin,
                        index.Extremes[30].StoredIndexOfMin, index.Extremes[31].StoredIndexOfMin,
                        Display_Stored_Index(index, 5), Display_Stored_Index(index, 0)}),
            (std::array{3, 2, 3, 5, 3, 1}));
  // The file keeps 16 bits: row 1's StoredIndexOfMax after 4 + 4 + 8 bytes and 34 of the row.
  index.Extremes[1].StoredIndexOfMax = 40000;
  const std::vector<unsigned char> bytes = Encode_Run_Index(index, 1);
  EXPECT_EQ(bytes[50] | (bytes[51] << 8), 32767);
}

}  // namespace
}  // namespace pvx
