// The bytes of every file of a family, checked with plain reads at the offsets of the format.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "family_support.h"

namespace pvx::test {
namespace {

class Layout : public ::testing::Test {
 protected:
  void SetUp() override {
    family = Family_In(dir, Small_Layout());
    // Steps 1, 2, 3 of one hour; step 2 is stored, so the records are the initial state and step 2.
    ASSERT_TRUE(Write_Run(family, 1, 3, {2}, index));
  }
  std::string Bytes(int slot) { return Read_Text(family.Files[1][static_cast<std::size_t>(slot)].Path); }

  Temp_Dir dir;
  Result_Family family;
  Run_Index index;
};

TEST_F(Layout, EverySiblingHoldsItsRecordsValueByValue) {
  // Record lengths of the small mesh, by hand: N = 3, Nx = 1, E = 2, R = 2, I = 1, B = 2.
  const std::pair<int, std::size_t> lengths[] = {{Slot_REA, 3},  {Slot_REB, 3}, {Slot_REC, 8}, {Slot_RED, 8},
                                                 {Slot_REE, 8},  {Slot_REF, 8}, {Slot_REH, 8}, {Slot_REI, 8},
                                                 {Slot_REJ, 32}, {Slot_REK, 2}, {Slot_REL, 8}, {Slot_REM, 4},
                                                 {Slot_REO, 10}, {Slot_REP, 8}};
  const int steps_of_record[] = {0, 2};
  for (const auto& [slot, length] : lengths) {
    SCOPED_TRACE("slot " + std::to_string(slot));
    const std::string bytes = Bytes(slot);
    ASSERT_EQ(bytes.size(), 2 * 4 * length);
    for (std::size_t k = 1; k <= 2; ++k)
      for (std::size_t i = 1; i <= length; ++i) {
        float expected = static_cast<float>(Pattern(slot, steps_of_record[k - 1], static_cast<int>(i)));
        // Crack openings: every second point is not cracked and stores 0.
        if (slot == Slot_REL && i % 2 == 0) expected = 0;
        EXPECT_EQ(F32_At(bytes, (k - 1) * 4 * length + 4 * (i - 1)), expected)
            << "record " << k << " value " << i;
      }
  }
}

TEST_F(Layout, TheIndexHeaderFieldByField) {
  const std::string h = Bytes(Slot_RES);
  // 4 + 3 x 8 + 4 + 2 x 8 + 40 x 36 bytes.
  ASSERT_EQ(h.size(), 1488u);
  EXPECT_EQ(I32_At(h, 0), 3);
  EXPECT_EQ(F64_At(h, 4), 1.0);
  EXPECT_EQ(F64_At(h, 12), 2.0);
  EXPECT_EQ(F64_At(h, 20), 3.0);
  EXPECT_EQ(I32_At(h, 28), 2);
  EXPECT_EQ(F64_At(h, 32), 0.0);
  EXPECT_EQ(F64_At(h, 40), 2.0);
  auto row = [&](int v, int field) {
    return F64_At(h, 48 + 36 * static_cast<std::size_t>(v - 1) + 8 * field);
  };
  auto stored = [&](int v, int which) {
    return I16_At(h, 48 + 36 * static_cast<std::size_t>(v - 1) + 32 + 2 * which);
  };
  // Temperature: lowest at the initial state, node 1; highest after step 3, node 3. Step 3 is not
  // stored; the index it gets is the count of storages flagged by then, 2.
  EXPECT_EQ(row(1, 0), 200.5);
  EXPECT_EQ(row(1, 1), 231.5);
  EXPECT_EQ(row(1, 2), 200.5);  // the colour scale is the period range
  EXPECT_EQ(row(1, 3), 231.5);
  EXPECT_EQ(stored(1, 0), 1);
  EXPECT_EQ(stored(1, 1), 2);
  // Degree of hydration lives in row 40, from the .REP values.
  EXPECT_EQ(row(40, 0), 1600.5);
  EXPECT_EQ(row(40, 1), 1634.0);
  // Circuit: flow minimum held at 0; capacity 1.5 x 4180 / 3600 x (outlet - inlet).
  EXPECT_EQ(row(7, 0), 0.0);
  EXPECT_EQ(row(7, 1), 1.5);
  EXPECT_DOUBLE_EQ(row(8, 0), 1.5 * 4180 / 3600 * 2);
  EXPECT_DOUBLE_EQ(row(8, 1), 1.5 * 4180 / 3600 * 5);
  EXPECT_EQ(row(6, 0), 10.0);
  EXPECT_EQ(row(6, 1), 18.0);
  // Total displacement: minimum held at 0, maximum the largest node of step 3.
  EXPECT_EQ(row(20, 0), 0.0);
  EXPECT_DOUBLE_EQ(row(20, 1), std::hypot(Pattern(Slot_REI, 3, 7), Pattern(Slot_REI, 3, 8)));
  // Rows without a quantity are there and empty.
  EXPECT_EQ(row(35, 0), 0.0);
  EXPECT_EQ(stored(35, 1), 0);
}

TEST_F(Layout, CoolingTextHoldsCountsAndRecordsInOrder) {
  std::string text = Bytes(Slot_COO);
  EXPECT_NE(text.find("\r\n"), std::string::npos);
  for (char& c : text)
    if (c == '\r' || c == '\n') c = ',';
  std::vector<double> v;
  std::stringstream s(text);
  for (std::string token; std::getline(s, token, ',');)
    if (!token.empty()) v.push_back(std::stod(token));
  // Count 2, then Time, Flow, Capacity and 4 stations per record.
  ASSERT_EQ(v.size(), 1u + 2 * 7);
  EXPECT_EQ(v[0], 2);
  EXPECT_EQ(v[1], 0.5);
  EXPECT_EQ(v[2], 1.5);
  EXPECT_NEAR(v[3], (14.0 - 11.0) * 1.5 * 4180 / 3600, 1e-5);
  EXPECT_EQ(v[4], 11);
  EXPECT_EQ(v[7], 14);
  EXPECT_EQ(v[8], 1.0);
  EXPECT_NEAR(v[10], 3.0 * 2.0 * 4180 / 3600, 1e-5);
}

TEST(Layout_Thermal, OnlyTheAlwaysFilesWithoutMechanics) {
  Temp_Dir dir;
  Result_Layout layout = Small_Layout(false);
  layout.Circuit_Stations.clear();
  Result_Family family = Family_In(dir, layout);
  Run_Index index;
  ASSERT_TRUE(Write_Run(family, 1, 0, {}, index));
  for (int slot = 1; slot <= Result_Slot_Count; ++slot) {
    const bool always = slot <= Slot_REH || slot == Slot_REP;
    EXPECT_EQ(std::filesystem::exists(family.Files[1][static_cast<std::size_t>(slot)].Path), always) << slot;
  }
  // A run of no steps still has its initial record and an index of one storage.
  const std::string h = Read_Text(family.Files[1][Slot_RES].Path);
  ASSERT_EQ(h.size(), 4u + 4 + 8 + 1440);
  EXPECT_EQ(I32_At(h, 0), 0);
  EXPECT_EQ(I32_At(h, 4), 1);
  EXPECT_EQ(F64_At(h, 8), 0.0);
  EXPECT_EQ(Read_Text(family.Files[1][Slot_REA].Path).size(), 12u);
}

TEST(Layout_Mechanical, NoInterfaceOrBarFileWithoutThem) {
  Temp_Dir dir;
  Result_Layout layout = Small_Layout();
  layout.Interfaces = 0;
  layout.Bars = 0;
  Result_Family family = Family_In(dir, layout);
  Run_Index index;
  ASSERT_TRUE(Write_Run(family, 1, 1, {1}, index));
  EXPECT_FALSE(std::filesystem::exists(family.Files[1][Slot_REM].Path));
  EXPECT_FALSE(std::filesystem::exists(family.Files[1][Slot_REO].Path));
  EXPECT_TRUE(std::filesystem::exists(family.Files[1][Slot_REK].Path));
  EXPECT_EQ(Read_Text(family.Files[1][Slot_REJ].Path).size(), 2u * 4 * 32);
}

}  // namespace
}  // namespace pvx::test
