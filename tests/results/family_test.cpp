// A family written by the analysis stages: its bytes checked with plain reads at the offsets of the
// format, then read back by the viewer stages; families that are missing, short, damaged or left by
// a stopped run.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <sstream>
#include <tuple>

#include "app/project_file.h"
#include "family_support.h"

namespace pvx::test {
namespace {

using ::testing::DoubleEq;
using ::testing::DoubleNear;
using ::testing::Pointwise;

class Round_Trip : public ::testing::Test {
 protected:
  void SetUp() override {
    family = Family_In(dir, Small_Layout());
    ASSERT_TRUE(Write_Run(family, 1, 3, {2, 3}, written));  // storages 1, 2, 3: steps 0, 2, 3
    ASSERT_TRUE(Open_For_Viewing(family, 1, o)) << o.message;
  }
  void Read(int variable, int stored, bool imperial = false) {
    ASSERT_TRUE(Read_Result_Variable(family, 1, Slot_Of_Variable(variable), stored, variable, imperial,
                                     o.buffers, o.message))
        << o.message;
  }
  Temp_Dir dir;
  Result_Family family;
  Run_Index written;
  Opened o;
};

TEST_F(Round_Trip, EachVariableReadsItsRecordWithItsExtremes) {
  EXPECT_EQ(o.index, written);
  // Value i of a slot at storage 2, step 2. Corner p of element e holds Sxx, Syy, Sxy, Szz at values
  // 16(e - 1) + 4(p - 1) + 1..4, all rising with the corner: so do the major principal stress
  // (a + b)/2 + sqrt(((a - b)/2)^2 + c^2) and Szz / ft, from the first corner to the last.
  auto V = [](int slot, int i) { return Pattern(slot, 2, i); };
  auto major = [&](int k) {
    const double a = V(Slot_REJ, 4 * k - 3), b = V(Slot_REJ, 4 * k - 2), c = V(Slot_REJ, 4 * k - 1);
    return (a + b) / 2 + std::sqrt((a - b) * (a - b) / 4 + c * c);
  };
  auto ratio = [&](int k) { return V(Slot_REJ, 4 * k) / V(Slot_REF, k); };
  Plot_Buffers& b = o.buffers;  // dimensioned once: a place in it stays put from read to read
  const std::tuple<int, int, double, double, const float*, double> rows[] = {
      // Variable, storage, the record's extremes for it, one place of the record and its value.
      {1, 3, 230.5, 231.5, &b.Node[1], 230.5},
      {40, 1, Pattern(Slot_REP, 0, 1), Pattern(Slot_REP, 0, 8), &b.Element_A[2][3][1],
       Pattern(Slot_REP, 0, 7)},
      // The tensile strength of the same storage is read beside every variable of a mechanical run.
      {2, 2, V(Slot_REC, 1), V(Slot_REC, 8), &b.Element_B[1][2][1], V(Slot_REF, 2)},
      // Ux are the odd entries, Uy the even ones, the total is the magnitude with its minimum at 0.
      {11, 2, V(Slot_REI, 1), V(Slot_REI, 7), &b.Node[1], V(Slot_REI, 1)},
      {12, 2, V(Slot_REI, 2), V(Slot_REI, 8), &b.Node[8], V(Slot_REI, 8)},
      {20, 2, 0, std::hypot(V(Slot_REI, 7), V(Slot_REI, 8)), &b.Node[7], V(Slot_REI, 7)},
      {16, 2, V(Slot_REJ, 1), V(Slot_REJ, 29), &b.Element_A[2][3][2], V(Slot_REJ, 16 + 8 + 2)},
      {15, 2, V(Slot_REJ, 4), V(Slot_REJ, 32), &b.Element_A[1][1][4], V(Slot_REJ, 4)},
      {13, 2, major(1), major(8), &b.Element_A[1][2][3], V(Slot_REJ, 7)},
      {19, 2, ratio(1), ratio(8), &b.Element_B[2][4][1], V(Slot_REF, 8)},
      // Interfaces: normal stresses are values 1, 2 and shear stresses 3, 4.
      {30, 2, V(Slot_REM, 1), V(Slot_REM, 2), &b.Interface[1].Normal[1], V(Slot_REM, 2)},
      {31, 2, V(Slot_REM, 3), V(Slot_REM, 4), &b.Interface[1].Shear[0], V(Slot_REM, 3)},
      // Bars: normal 1, 6; shear 2, 3, 7, 8; slip 4, 5, 9, 10.
      {32, 2, V(Slot_REO, 1), V(Slot_REO, 6), &b.Bar[2].Normal, V(Slot_REO, 6)},
      {33, 2, V(Slot_REO, 2), V(Slot_REO, 8), &b.Bar[2].Shear[1], V(Slot_REO, 8)},
      {34, 2, V(Slot_REO, 4), V(Slot_REO, 10), &b.Bar[2].Slip[0], V(Slot_REO, 9)},
      {21, 2, V(Slot_REK, 1), V(Slot_REK, 2), &b.Node[2], V(Slot_REK, 2)}};
  for (const auto& [variable, stored, min, max, place, value] : rows) {
    SCOPED_TRACE(variable);
    Read(variable, stored);
    EXPECT_NEAR(b.CurrentMin, min, 1e-3);
    EXPECT_NEAR(b.CurrentMax, max, 1e-3);
    EXPECT_EQ(*place, float(value));
  }
}

TEST_F(Round_Trip, EverySiblingHoldsItsRecordsValueByValue) {
  // Record lengths of the small mesh, by hand: N = 3, Nx = 1, E = 2, R = 2, I = 1, B = 2.
  const int lengths[][2] = {{Slot_REA, 3}, {Slot_REB, 3}, {Slot_REC, 8},  {Slot_RED, 8},  {Slot_REE, 8},
                            {Slot_REF, 8}, {Slot_REH, 8}, {Slot_REI, 8},  {Slot_REJ, 32}, {Slot_REK, 2},
                            {Slot_REL, 8}, {Slot_REM, 4}, {Slot_REO, 10}, {Slot_REP, 8}};
  for (const auto& [slot, length] : lengths) {
    SCOPED_TRACE("slot " + std::to_string(slot));
    const std::string bytes = Read_Text(family.Files[1][static_cast<std::size_t>(slot)].Path);
    ASSERT_EQ(bytes.size(), 3u * 4 * length);
    for (int k = 0; k < 3; ++k)  // the records of steps 0, 2 and 3
      for (int i = 1; i <= length; ++i) {
        // Every second crack opening is of a point that is not cracked, and stored as 0.
        const double expected = slot == Slot_REL && i % 2 == 0 ? 0 : Pattern(slot, k == 0 ? 0 : k + 1, i);
        EXPECT_EQ(At<float>(bytes, 4 * std::size_t(k * length + i - 1)), float(expected)) << k << " " << i;
      }
  }
}

TEST_F(Round_Trip, TheIndexHeaderFieldByField) {
  const std::string h = Read_Text(dir.file("B.RES"));
  ASSERT_EQ(h.size(), 4u + 3 * 8 + 4 + 3 * 8 + 40 * 36);
  // The step count and times, then the storage count and times.
  EXPECT_EQ((std::array{At<std::int32_t>(h, 0), At<std::int32_t>(h, 28)}), (std::array{3, 3}));
  EXPECT_EQ((std::array{At<double>(h, 4), At<double>(h, 12), At<double>(h, 20), At<double>(h, 32),
                        At<double>(h, 40), At<double>(h, 48)}),
            (std::array{1.0, 2.0, 3.0, 0.0, 2.0, 3.0}));
  // Rows of PeriodMin, PeriodMax, ScaleMin, ScaleMax (the scale is the period range) and the two
  // storages of the extremes. The temperature is lowest at node 1 initially and highest at node 3
  // after step 3; the circuit's inlet is 10 + step, its outlet 12 + 2 step, its flow 1.5 (minimum
  // held at 0), its capacity 1.5 x 4180 / 3600 x (outlet - inlet).
  const double c = 1.5 * 4180 / 3600, u = std::hypot(Pattern(Slot_REI, 3, 7), Pattern(Slot_REI, 3, 8));
  const double rows[][5] = {{1, 200.5, 231.5, 1, 3}, {40, 1600.5, 1634, 1, 3}, {6, 10, 18, 1, 3},
                            {7, 0, 1.5, 1, 1},       {8, 2 * c, 5 * c, 1, 3},  {20, 0, u, 1, 3},
                            {35, 0, 0, 0, 0}};  // a row without a quantity
  for (const auto& [v, min, max, stored_min, stored_max] : rows) {
    const std::size_t at = 56 + 36 * std::size_t(v - 1);
    EXPECT_THAT((std::array{At<double>(h, at), At<double>(h, at + 8), At<double>(h, at + 16),
                            At<double>(h, at + 24)}),
                Pointwise(DoubleEq(), {min, max, min, max}))
        << v;
    EXPECT_EQ(At<std::int16_t>(h, at + 32), stored_min) << v;
    EXPECT_EQ(At<std::int16_t>(h, at + 34), stored_max) << v;
  }
}

TEST_F(Round_Trip, CoolingTextHoldsCountsAndRecordsInOrderAndReadsBack) {
  std::string text = Read_Text(dir.file("B.COO"));
  EXPECT_NE(text.find("\r\n"), std::string::npos);
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c == '\r' || c == '\n'; }, ',');
  std::vector<double> v;
  std::stringstream s(text);
  for (std::string token; std::getline(s, token, ',');)
    if (!token.empty()) v.push_back(std::stod(token));
  // Count 2, then Time, Flow, Capacity and the 4 stations (11 to 14) of each record.
  ASSERT_THAT(v, Pointwise(DoubleNear(1e-5), {2.0, 0.5, 1.5, 3 * 1.5 * 4180 / 3600, 11.0, 12.0, 13.0, 14.0,
                                              1.0, 2.0, 3 * 2.0 * 4180 / 3600, 11.0, 12.0, 13.0, 14.0}));
  Table<Circuit_History> circuits;
  bool ok = false;
  ASSERT_TRUE(Read_Cooling_Data(family, 1, circuits, ok, o.message) && ok);
  ASSERT_EQ(std::tuple(circuits.count(), circuits[1].History.count()), std::tuple(1, 2));
  const auto& last = circuits[1].History[2];
  EXPECT_THAT((std::array<double, 4>{last.Time, last.Flow, last.Capacity, last.Water[4]}),
              Pointwise(DoubleNear(1e-5), {v[8], v[9], v[10], v[14]}));
}

TEST(Layout_Files, OnlyTheFilesOfTheLayout) {
  // Mechanical, interfaces, bars, a circuit; per slot its letter when the file is there, * for the
  // cooling file.
  const std::tuple<bool, int, int, bool, std::string> rows[] = {{false, 1, 2, false, "SABCDEFH-------P"},
                                                                {true, 0, 0, true, "SABCDEFHIJK*L--P"},
                                                                {true, 1, 2, true, "SABCDEFHIJK*LMOP"}};
  for (const auto& [mechanical, interfaces, bars, circuit, files] : rows) {
    Temp_Dir dir;
    Result_Layout layout = Small_Layout(mechanical);
    layout.Interfaces = interfaces, layout.Bars = bars;
    if (!circuit) layout.Circuit_Stations.clear();
    Result_Family family = Family_In(dir, layout);
    Run_Index index;
    ASSERT_TRUE(Write_Run(family, 1, 0, {}, index));
    std::string there;
    for (std::size_t slot = 1; slot <= Result_Slot_Count; ++slot)
      there += !std::filesystem::exists(family.Files[1][slot].Path) ? '-'
               : slot == Slot_COO                                   ? '*'
                                                                    : Slot_Letter(static_cast<int>(slot));
    EXPECT_EQ(there, files);
    // A run of no steps still has its initial record and an index of one storage.
    EXPECT_EQ(Read_Text(dir.file("B.RES")).size(), 4u + 4 + 8 + 1440);
    EXPECT_EQ(Read_Text(dir.file("B.REA")).size(), 12u);
  }
}

TEST_F(Round_Trip, ImperialDisplayConvertsRecordsAndTable) {
  // oF, ksi (a record and the strength beside it), in, kip.
  const std::tuple<int, const float*, double> rows[] = {
      {1, &o.buffers.Node[1], 220.5 * 1.8 + 32},
      {16, &o.buffers.Element_A[2][4][1], Pattern(Slot_REJ, 2, 29) * 0.14503774},
      {16, &o.buffers.Element_B[1][1][1], Pattern(Slot_REF, 2, 1) * 0.14503774},
      {34, &o.buffers.Bar[1].Slip[1], Pattern(Slot_REO, 2, 5) * 0.03937},
      {21, &o.buffers.Node[1], Pattern(Slot_REK, 2, 1) / 4.4482216}};
  for (const auto& [variable, place, value] : rows) {
    Read(variable, 2, true);
    EXPECT_NEAR(*place, value, 1e-3) << variable;
  }
  EXPECT_NEAR(o.buffers.CurrentMax, Pattern(Slot_REK, 2, 2) / 4.4482216, 1e-4);  // extremes in kip too
  Opened imperial;
  ASSERT_TRUE(Open_For_Viewing(family, 1, imperial, true)) << imperial.message;
  EXPECT_DOUBLE_EQ(imperial.index.Extremes[1].PeriodMax, written.Extremes[1].PeriodMax * 1.8 + 32);
  EXPECT_DOUBLE_EQ(imperial.index.Extremes[2].PeriodMax, written.Extremes[2].PeriodMax);  // no unit
  EXPECT_NEAR(imperial.index.Extremes[26].ScaleMax, written.Extremes[26].ScaleMax * 0.14503774, 1e-3);
  Run_Index as_106 = written;  // rows 26, 27 and 30 are converted only in files of version above 106
  Convert_Extreme_Table(as_106, 106);
  EXPECT_EQ(std::tuple(as_106.Extremes[26].ScaleMax, as_106.Extremes[30].ScaleMax),
            std::tuple(written.Extremes[26].ScaleMax, written.Extremes[30].ScaleMax));
  EXPECT_NEAR(as_106.Extremes[25].ScaleMax, written.Extremes[25].ScaleMax * 0.14503774, 1e-3);
}

TEST(Output_Names, TheFilesOfEveryRun) {
  // Relative names are taken in the work directory, absolute ones as they are; an empty one is refused.
  Result_Family family;
  std::string message;
  ASSERT_TRUE(Set_Output_Names(family, {"B.RES", "B.RES", "/data/B2.RES"}, "/work/dir", message)) << message;
  EXPECT_EQ(
      std::tuple(Number_Of_Runs(family), family.Files[1][Slot_REP].Path, family.Files[2][Slot_REA].Path),
      std::tuple(2, Join_Path("/work/dir", "B.REP"), std::string("/data/B2.REA")));
  EXPECT_FALSE(Set_Output_Names(family, {"", ""}, "/work/dir", message));
  EXPECT_EQ(message, "A path and a filename must be given for your output !");
}

TEST_F(Round_Trip, StoredIndexOutsideTheRunIsRefused) {
  for (int k : {0, 4, -1}) {
    EXPECT_FALSE(Read_Result_Variable(family, 1, Slot_REA, k, 1, false, o.buffers, o.message));
    EXPECT_EQ(o.message, Results_Corrupted(family.Files[1][Slot_RES].Path));
  }
  EXPECT_FALSE(Read_Result_Variable(family, 1, Slot_COO, 1, 6, false, o.buffers, o.message));
}

TEST(Robustness, AStoppedRunCountsOnlyStoragesThatEverySiblingHolds) {
  Temp_Dir dir;
  {
    Result_Family family = Family_In(dir, Small_Layout());
    Run_Index index;
    ASSERT_TRUE(Write_Run(family, 1, 2, {1, 2}, index, false));
    // A field of the wrong length fails the storage before anything is written.
    Step_Data bad(family.Layout, 9);
    bad.values.Maturity = bad.values.Maturity.first(2);
    std::string message;
    EXPECT_FALSE(Record_Storage(family, 1, bad.values, 9, index, message));
    EXPECT_NE(message.find("maturity"), std::string::npos);
    EXPECT_EQ(Read_Text(dir.file("B.REA")).size(), 3u * 4 * 3);
    index.Storage_Time.add(5);  // an index that claims a storage the files never got
    ASSERT_TRUE(Write_Run_Index(family, 1, index, message));
    EXPECT_EQ(At<std::int32_t>(Read_Text(dir.file("B.RES")), 4 + 2 * 8), 3);
  }  // the run stops without its closing stages: the files close as the family goes
  Result_Family family = Family_In(dir, Small_Layout());
  Opened o;
  ASSERT_TRUE(Open_For_Viewing(family, 1, o)) << o.message;
  EXPECT_EQ(Storage_Count(o.index), 3);
  ASSERT_TRUE(Read_Result_Variable(family, 1, Slot_REA, 3, 1, false, o.buffers, o.message));
  EXPECT_EQ(o.buffers.Node[1], float(Pattern(Slot_REA, 2, 1)));
}

TEST(Robustness, ANewRunOverAnOldFamily) {
  Temp_Dir dir;
  Result_Family family = Family_In(dir, Small_Layout(false));
  Run_Index index;
  ASSERT_TRUE(Write_Run(family, 1, 4, {1, 2, 3, 4}, index));
  // A shorter run leaves the old run's five records, a tail the index ignores.
  ASSERT_TRUE(Write_Run(family, 1, 1, {}, index));
  EXPECT_EQ(Read_Text(dir.file("B.REA")).size(), 5u * 4 * 3);
  Opened o;
  ASSERT_TRUE(Open_For_Viewing(family, 1, o)) << o.message;
  EXPECT_EQ(Storage_Count(o.index), 1);
  ASSERT_TRUE(Read_Result_Variable(family, 1, Slot_REA, 1, 1, false, o.buffers, o.message));
  EXPECT_EQ(o.buffers.Node[1], float(Pattern(Slot_REA, 0, 1)));
  EXPECT_FALSE(Read_Result_Variable(family, 1, Slot_REA, 2, 1, false, o.buffers, o.message));
  // A new run that dies before its first storage has already emptied the index.
  std::string message;
  ASSERT_TRUE(Open_Result_Files(family, 1, 1, 109, message));
  ASSERT_TRUE(Close_Result_Files(family, 1, message));
  EXPECT_FALSE(Open_For_Viewing(family, 1, o));
  EXPECT_EQ(o.message, Results_Corrupted(dir.file("B.RES")));
}

TEST(Robustness, MissingTruncatedOrDamagedFilesAreRefused) {
  Temp_Dir dir;
  Result_Family family = Family_In(dir, Small_Layout(false));
  const std::string res = dir.file("B.RES");
  Opened o;
  EXPECT_FALSE(Open_For_Viewing(family, 1, o));
  EXPECT_EQ(o.message, "Results (" + res + ") not available");
  Run_Index index;
  ASSERT_TRUE(Write_Run(family, 1, 3, {3}, index));
  // The message's wording is checked by the batch tool's tests.
  const std::string whole = Read_Text(res);
  std::vector<std::string> damaged;
  for (std::size_t n = 0; n < whole.size(); ++n)
    damaged.push_back(whole.substr(0, n));  // every truncation
  // Steps beyond any file or negative (offset 0); storages beyond the file, negative or none (28).
  for (const auto& [offset, v] :
       {std::pair<std::size_t, std::int32_t>{0, 0x7fffffff}, {0, -1}, {28, 0x7fffffff}, {28, -5}, {28, 0}})
    std::memcpy(damaged.emplace_back(whole).data() + offset, &v, 4);
  for (std::size_t k = 0; k < damaged.size(); ++k) {
    Write_Text(res, damaged[k]);
    ASSERT_FALSE(Open_For_Viewing(family, 1, o)) << k;
    ASSERT_EQ(o.message, Results_Corrupted(res)) << k;
  }
  Write_Text(res, whole);  // a sibling one byte short
  Write_Text(dir.file("B.REC"), Read_Text(dir.file("B.REC")).substr(1));
  EXPECT_FALSE(Open_For_Viewing(family, 1, o));
  EXPECT_EQ(o.message, Results_Corrupted(res));
  std::filesystem::remove(dir.file("B.REB"));  // a sibling missing
  EXPECT_FALSE(Open_For_Viewing(family, 1, o));
  EXPECT_EQ(o.message, Results_Not_Available(res));
}

TEST(Robustness, OldHeadersHaveATwoByteStepCount) {
  // Version 107: i16 steps (1), a step time (2.5), i32 storages (1), a storage time, the rows;
  // PeriodMax of row 40 at 22 + 36 x 39 + 8.
  std::string h(2 + 8 + 4 + 8 + 1440, '\0');
  const std::int16_t steps = 1;
  const std::int32_t storages = 1;
  const double t = 2.5, top = 42;
  std::memcpy(h.data(), &steps, 2), std::memcpy(h.data() + 2, &t, 8);
  std::memcpy(h.data() + 10, &storages, 4), std::memcpy(h.data() + 22 + 36 * 39 + 8, &top, 8);
  Temp_Dir dir;
  const std::string old = dir.file("OLD.RES");
  Write_Text(old, h);
  Run_Index index;
  std::string message;
  ASSERT_TRUE(Read_Run_Index_File(old, 107, false, index, message)) << message;
  EXPECT_EQ(std::tuple(index.Step_Time.data(), Storage_Count(index), index.Extremes[40].PeriodMax),
            std::tuple(std::vector<double>{2.5}, 1, 42.0));
  // The same bytes read with a 4-byte count give no storage and are refused.
  EXPECT_FALSE(Read_Run_Index_File(old, 108, false, index, message));
  EXPECT_EQ(message, Results_Corrupted(old));
}

TEST(Robustness, CoolingFileMissingOrDamaged) {
  Temp_Dir dir;
  Result_Family family = Family_In(dir, Small_Layout(false));
  Run_Index index;
  ASSERT_TRUE(Write_Run(family, 1, 1, {1}, index));
  const std::string coo = dir.file("B.COO"), whole = Read_Text(coo);
  for (const std::string& text : {whole.substr(0, whole.size() / 2), std::string("x"), std::string("-1"),
                                  std::string("30000\r\n1,2,3")}) {
    Write_Text(coo, text);
    Opened o;
    ASSERT_TRUE(Open_For_Viewing(family, 1, o)) << o.message;  // the other results stay usable
    Table<Circuit_History> circuits;
    bool ok = true;
    EXPECT_FALSE(Read_Cooling_Data(family, 1, circuits, ok, o.message) || ok);
    EXPECT_EQ(o.message,
              "File " + coo +
                  " is corrupted. Computed data on water temperatures in cooling pipes is not available");
  }
  // A project of version 104 has no cooling file: it is not even looked for.
  std::string message;
  ASSERT_TRUE(Open_All_Result_Sets(family, 104, message));
  EXPECT_EQ(family.Files[1][Slot_COO].Stream, nullptr);
  ASSERT_TRUE(Open_All_Result_Sets(family, 105, message) && family.Files[1][Slot_COO].Stream != nullptr);
}

}  // namespace
}  // namespace pvx::test
