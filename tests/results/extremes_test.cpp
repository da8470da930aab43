// The extreme table and the per-step extremes against values worked out by hand.
#include <gtest/gtest.h>

#include <vector>

#include "results/extremes.h"

namespace pvx {
namespace {

struct Sampling {
  Run_Index index;
  Field_Statistics stats;
  std::vector<double> temperature, displacement, stress, strength, crack;
  std::vector<std::int16_t> cracked;
  Field_Values f;

  void sample(int row, int stored, bool mechanical = false) {
    f.Temperature = temperature;
    f.Displacement = displacement;
    f.Corner_Stress = stress;
    f.Tensile_Strength = strength;
    f.Crack_Opening = crack;
    f.Cracked = cracked;
    Sample_Field_Extremes(index, stats, row, stored, f, mechanical);
  }
  const Extreme_Row& row(int v) const { return index.Extremes[v]; }
};

TEST(Sample_Field_Extremes, PeriodExtremesMoveOnlyOnStrictlyNewValues) {
  Sampling s;
  Size_Field_Statistics(s.stats, 3);
  s.temperature = {5, 7, 6};
  s.sample(1, 1);
  EXPECT_EQ(s.row(1), (Extreme_Row{5, 7, 5, 7, 1, 1}));
  s.temperature = {4, 9, 6};  // step 1, not stored: its extremes point at the next storage, 1 still
  s.sample(2, 1);
  EXPECT_EQ(s.row(1), (Extreme_Row{4, 9, 4, 9, 1, 1}));
  s.temperature = {4, 9, 6};  // step 2, stored as storage 2: equal values keep the old indices
  s.sample(3, 2);
  EXPECT_EQ(s.row(1).StoredIndexOfMin, 1);
  EXPECT_EQ(s.row(1).StoredIndexOfMax, 1);
  s.temperature = {3, 8, 8};
  s.sample(4, 2);
  EXPECT_EQ(s.row(1), (Extreme_Row{3, 9, 3, 9, 2, 1}));
  // Per step, and overall for the diagnostics.
  EXPECT_EQ(s.stats.Field_Minimum[2][1], 4);
  EXPECT_EQ(s.stats.Field_Maximum[2][1], 9);
  EXPECT_EQ(s.stats.Field_Maximum[4][1], 8);
  EXPECT_EQ(s.stats.Overall_Minimum[1], 3);
  EXPECT_EQ(s.stats.Overall_Maximum[1], 9);
  // Without mechanics the mechanical rows are not touched.
  EXPECT_EQ(s.row(13), Extreme_Row{});
  // The table grows for a row beyond its size rather than writing past it.
  s.sample(9, 2);
  EXPECT_EQ(s.stats.Field_Maximum.size(), 10u);
}

TEST(Sample_Field_Extremes, TheCircuitRows) {
  Sampling s;
  // Water cools along the circuit: inlet 20, outlet 15. The step's minimum is the inlet and its
  // maximum the outlet as they stand; the period range is in true order.
  s.f.Circuit = {true, 20, 15, 2, 4180};
  s.sample(1, 1);
  EXPECT_EQ(s.stats.Field_Minimum[1][6], 20);
  EXPECT_EQ(s.stats.Field_Maximum[1][6], 15);
  EXPECT_EQ(s.row(6).PeriodMin, 15);
  EXPECT_EQ(s.row(6).PeriodMax, 20);
  // Flow: its period minimum is held at 0.
  EXPECT_EQ(s.row(7).PeriodMin, 0);
  EXPECT_EQ(s.row(7).PeriodMax, 2);
  // Capacity 2 x 4180 / 3600 x (15 - 20) = -11.6111; a collapsed range opens by 0.1.
  const double capacity = 2.0 * 4180 / 3600 * -5;
  EXPECT_DOUBLE_EQ(s.stats.Field_Maximum[1][8], capacity);
  EXPECT_DOUBLE_EQ(s.row(8).PeriodMin, capacity);
  EXPECT_DOUBLE_EQ(s.row(8).PeriodMax, capacity + 0.1);
  EXPECT_DOUBLE_EQ(s.row(8).ScaleMax, capacity + 0.1);
  // A later, larger flow: capacity 3 x 4180 / 3600 x (16 - 20) = -13.9333.
  s.f.Circuit = {true, 20, 16, 3, 4180};
  s.sample(2, 2);
  EXPECT_EQ(s.row(7).PeriodMin, 0);
  EXPECT_EQ(s.row(7).PeriodMax, 3);
  EXPECT_DOUBLE_EQ(s.row(8).PeriodMin, 3.0 * 4180 / 3600 * -4);
  EXPECT_EQ(s.row(8).StoredIndexOfMin, 2);
  EXPECT_DOUBLE_EQ(s.row(8).PeriodMax, capacity + 0.1);
  // No circuit at all: rows 6 to 8 stay at 0, with the capacity's range opened to 0.1.
  Sampling none;
  none.sample(1, 1);
  EXPECT_EQ(none.row(8).PeriodMin, 0);
  EXPECT_DOUBLE_EQ(none.row(8).PeriodMax, 0.1);
}

TEST(Sample_Field_Extremes, MechanicalRows) {
  Sampling s;
  s.temperature = {0};
  // Two nodes: (3, 4) of length 5 and (-6, 8) of length 10.
  s.displacement = {3, 4, -6, 8};
  // Three corners of an element (the fourth all zero): Sxx, Syy, Sxy, Szz.
  s.stress = {1, 1, 0, -2, 4, 0, 0, 3, 0, 0, 3, 1, 0, 0, 0, 0};
  s.strength = {2, 2, 0, 2};
  s.crack = {0.1, 0.5, 0.2, 0.3};
  s.cracked = {-1, 0, -1, -1};  // the 0.5 is not a crack
  s.sample(1, 1, true);
  EXPECT_EQ(s.row(11).PeriodMin, -6);
  EXPECT_EQ(s.row(11).PeriodMax, 3);
  EXPECT_EQ(s.row(12).PeriodMin, 4);
  EXPECT_EQ(s.row(12).PeriodMax, 8);
  EXPECT_EQ(s.stats.Field_Minimum[1][20], 5);  // the step keeps its true minimum ...
  EXPECT_EQ(s.row(20).PeriodMin, 0);           // ... the period's is held at 0
  EXPECT_EQ(s.row(20).PeriodMax, 10);
  // Principal stresses: (1,1,0) -> 1, 1; (4,0,0) -> 4, 0; (0,0,3) -> 3, -3; (0,0,0) -> 0, 0.
  EXPECT_EQ(s.row(13).PeriodMax, 4);
  EXPECT_EQ(s.row(13).PeriodMin, 0);
  EXPECT_EQ(s.row(14).PeriodMin, -3);
  EXPECT_EQ(s.row(14).PeriodMax, 1);
  EXPECT_EQ(s.row(15).PeriodMin, -2);
  EXPECT_EQ(s.row(15).PeriodMax, 3);
  EXPECT_EQ(s.row(18).PeriodMax, 3);
  // Szz / ft: -2 reads as 0 -> 0; 3 / 2 = 1.5; strength 0 -> 10; 0 / 2 = 0.
  EXPECT_EQ(s.row(19).PeriodMin, 0);
  EXPECT_EQ(s.row(19).PeriodMax, 10);
  EXPECT_EQ(s.row(22).PeriodMin, 0);  // the point that is not cracked counts as 0
  EXPECT_EQ(s.row(22).PeriodMax, 0.3);
  // No interfaces or bars: their rows are 0.
  EXPECT_EQ(s.row(23), (Extreme_Row{0, 0, 0, 0, 1, 1}));
}

TEST(Sample_Field_Extremes, InterfaceAndBarRows) {
  Sampling s;
  const std::vector<double> interfaces = {1, -2, 5, 6, 3, 4, -7, 0};
  const std::vector<double> bars = {10, 1, 2, 0.1, 0.2, -20, 3, -4, 0.3, -0.4};
  s.f.Interface_Stress = interfaces;
  s.f.Bar_Values = bars;
  s.sample(1, 1, true);
  EXPECT_EQ(s.row(23).PeriodMin, -2);  // normal: 1, -2, 3, 4
  EXPECT_EQ(s.row(23).PeriodMax, 4);
  EXPECT_EQ(s.row(24).PeriodMin, -7);  // shear: 5, 6, -7, 0
  EXPECT_EQ(s.row(24).PeriodMax, 6);
  EXPECT_EQ(s.row(25).PeriodMin, -20);
  EXPECT_EQ(s.row(25).PeriodMax, 10);
  EXPECT_EQ(s.row(26).PeriodMin, -4);  // shear: 1, 2, 3, -4
  EXPECT_EQ(s.row(26).PeriodMax, 3);
  EXPECT_EQ(s.row(27).PeriodMin, -0.4);  // slip: 0.1, 0.2, 0.3, -0.4
  EXPECT_EQ(s.row(27).PeriodMax, 0.3);
}

TEST(Clamp_Plot_Storages, CapsRowsUpToThirtyOnly) {
  Run_Index index;
  index.Storage_Time = {0, 1, 2};
  for (Extreme_Row& row : index.Extremes)
    row.StoredIndexOfMin = row.StoredIndexOfMax = 5;
  index.Extremes[2].StoredIndexOfMin = 2;
  Clamp_Plot_Storages(index);
  EXPECT_EQ(index.Extremes[1].StoredIndexOfMax, 3);
  EXPECT_EQ(index.Extremes[2].StoredIndexOfMin, 2);
  EXPECT_EQ(index.Extremes[30].StoredIndexOfMin, 3);
  EXPECT_EQ(index.Extremes[31].StoredIndexOfMin, 5);
  EXPECT_EQ(index.Extremes[40].StoredIndexOfMax, 5);  // the reader caps this one itself
  EXPECT_EQ(Display_Stored_Index(index, index.Extremes[40].StoredIndexOfMax), 3);
  EXPECT_EQ(Display_Stored_Index(index, 0), 1);
}

TEST(Run_Index, StoredIndicesBeyondSixteenBitsAreCappedInTheFile) {
  Run_Index index;
  index.Storage_Time = {0};
  index.Extremes[1].StoredIndexOfMax = 40000;
  const std::vector<unsigned char> bytes = Encode_Run_Index(index, 1);
  ASSERT_EQ(bytes.size(), Run_Index_Size(0, 1));
  const std::size_t at = 4 + 4 + 8 + 34;
  EXPECT_EQ(bytes[at] | (bytes[at + 1] << 8), 32767);
}

}  // namespace
}  // namespace pvx
