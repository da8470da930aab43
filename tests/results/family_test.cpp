// A family written by the analysis stages and read back by the viewer stages; families that are
// missing, short, damaged or left by a stopped run.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

#include "family_support.h"

namespace pvx::test {
namespace {

struct Opened {
  Run_Index index;
  Plot_Buffers buffers;
  std::string message;
};

// Opens a written family as the viewer does; false with the message on failure.
bool Open_For_Viewing(Result_Family& family, int variant, Opened& o, bool imperial = false,
                      int version = 109) {
  Dimension_Plot_Buffers(family.Layout, o.buffers);
  return Open_All_Result_Sets(family, version, o.message) &&
         Read_Run_Index(family, variant, version, imperial, o.index, o.message);
}

class Round_Trip : public ::testing::Test {
 protected:
  void SetUp() override {
    family = Family_In(dir, Small_Layout());
    ASSERT_TRUE(Write_Run(family, 1, 3, {2, 3}, written));
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

TEST_F(Round_Trip, IndexComesBackAsWritten) {
  EXPECT_EQ(o.index, written);
  EXPECT_EQ(Storage_Count(o.index), 3);
  EXPECT_EQ(o.index.Storage_Time[3], 3.0);
}

TEST_F(Round_Trip, NodeAndPointRecordsWithTheirExtremes) {
  Read(1, 2);  // storage 2 is step 2
  EXPECT_EQ(o.buffers.Node[3], 221.5f);
  EXPECT_EQ(o.buffers.CurrentMin, 220.5);
  EXPECT_EQ(o.buffers.CurrentMax, 221.5);
  Read(2, 3);  // maturity, element 2 point 4 is value 8
  EXPECT_EQ(o.buffers.Element_A[2][4][1], float(Pattern(Slot_REC, 3, 8)));
  EXPECT_EQ(o.buffers.CurrentMax, Pattern(Slot_REC, 3, 8));
  // The tensile strength of the same storage is read beside every variable of a mechanical run.
  EXPECT_EQ(o.buffers.Element_B[1][2][1], float(Pattern(Slot_REF, 3, 2)));
  Read(40, 1);
  EXPECT_EQ(o.buffers.CurrentMin, Pattern(Slot_REP, 0, 1));
}

TEST_F(Round_Trip, DisplacementExtremesFollowTheVariable) {
  // Ux are the odd entries, Uy the even ones, the total is the magnitude with its minimum at 0.
  Read(11, 2);
  EXPECT_EQ(o.buffers.CurrentMin, Pattern(Slot_REI, 2, 1));
  EXPECT_EQ(o.buffers.CurrentMax, Pattern(Slot_REI, 2, 7));
  Read(12, 2);
  EXPECT_EQ(o.buffers.CurrentMin, Pattern(Slot_REI, 2, 2));
  EXPECT_EQ(o.buffers.CurrentMax, Pattern(Slot_REI, 2, 8));
  Read(20, 2);
  EXPECT_EQ(o.buffers.CurrentMin, 0.0);
  EXPECT_DOUBLE_EQ(o.buffers.CurrentMax, std::hypot(Pattern(Slot_REI, 2, 7), Pattern(Slot_REI, 2, 8)));
  EXPECT_EQ(o.buffers.Node[8], float(Pattern(Slot_REI, 2, 8)));
}

TEST_F(Round_Trip, StressExtremesOverTheSelectedComponent) {
  // Corner p of element e holds Sxx, Syy, Sxy, Szz at values 16(e-1) + 4(p-1) + 1..4.
  auto value = [](int e, int p, int c) { return Pattern(Slot_REJ, 2, 16 * (e - 1) + 4 * (p - 1) + c); };
  Read(16, 2);
  EXPECT_EQ(o.buffers.CurrentMin, value(1, 1, 1));
  EXPECT_EQ(o.buffers.CurrentMax, value(2, 4, 1));
  Read(15, 2);
  EXPECT_EQ(o.buffers.CurrentMax, value(2, 4, 4));
  EXPECT_EQ(o.buffers.Element_A[2][3][2], float(value(2, 3, 2)));
  Read(13, 2);
  // Major stress of the last corner: (a + b)/2 + sqrt(((a - b)/2)^2 + c^2) by hand.
  const double a = value(2, 4, 1), b = value(2, 4, 2), c = value(2, 4, 3);
  EXPECT_NEAR(o.buffers.CurrentMax, (a + b) / 2 + std::sqrt((a - b) * (a - b) / 4 + c * c), 1e-3);
  Read(19, 2);
  // Szz / ft per point, both positive here; the largest ratio by brute force over the corners.
  double best = 0;
  for (int e = 1; e <= 2; ++e)
    for (int p = 1; p <= 4; ++p)
      best = std::max(best, value(e, p, 4) / Pattern(Slot_REF, 2, 4 * (e - 1) + p));
  EXPECT_NEAR(o.buffers.CurrentMax, best, 1e-6);
}

TEST_F(Round_Trip, InterfaceAndBarRecords) {
  Read(30, 2);
  EXPECT_EQ(o.buffers.Interface[1].Normal[1], float(Pattern(Slot_REM, 2, 2)));
  EXPECT_EQ(o.buffers.Interface[1].Shear[0], float(Pattern(Slot_REM, 2, 3)));
  EXPECT_EQ(o.buffers.CurrentMax, Pattern(Slot_REM, 2, 2));
  Read(31, 2);
  EXPECT_EQ(o.buffers.CurrentMin, Pattern(Slot_REM, 2, 3));
  Read(33, 2);  // both shear values of both bars: values 2, 3, 7, 8
  EXPECT_EQ(o.buffers.CurrentMin, Pattern(Slot_REO, 2, 2));
  EXPECT_EQ(o.buffers.CurrentMax, Pattern(Slot_REO, 2, 8));
  Read(34, 2);  // slips: values 4, 5, 9, 10
  EXPECT_EQ(o.buffers.CurrentMax, Pattern(Slot_REO, 2, 10));
  EXPECT_EQ(o.buffers.Bar[2].Slip[0], float(Pattern(Slot_REO, 2, 9)));
  Read(21, 1);
  EXPECT_EQ(o.buffers.Node[2], float(Pattern(Slot_REK, 0, 2)));
}

TEST_F(Round_Trip, ImperialDisplayConvertsRecordsAndTable) {
  Read(1, 2, true);
  EXPECT_NEAR(o.buffers.Node[1], 220.5 * 1.8 + 32, 1e-3);  // oF
  Read(16, 2, true);
  EXPECT_NEAR(o.buffers.CurrentMax, Pattern(Slot_REJ, 2, 29) * 0.14503774, 1e-3);  // ksi
  EXPECT_NEAR(o.buffers.Element_B[1][1][1], Pattern(Slot_REF, 2, 1) * 0.14503774, 1e-3);
  Read(34, 2, true);
  EXPECT_NEAR(o.buffers.Bar[1].Slip[1], Pattern(Slot_REO, 2, 5) * 0.03937, 1e-4);  // in
  Read(21, 2, true);
  EXPECT_NEAR(o.buffers.Node[1], Pattern(Slot_REK, 2, 1) / 4.4482216, 1e-4);  // kip

  Opened imperial;
  ASSERT_TRUE(Open_For_Viewing(family, 1, imperial, true)) << imperial.message;
  EXPECT_DOUBLE_EQ(imperial.index.Extremes[1].PeriodMax, written.Extremes[1].PeriodMax * 1.8 + 32);
  EXPECT_DOUBLE_EQ(imperial.index.Extremes[2].PeriodMax, written.Extremes[2].PeriodMax);  // no unit
  EXPECT_NEAR(imperial.index.Extremes[26].ScaleMax, written.Extremes[26].ScaleMax * 0.14503774, 1e-3);
  // Rows 26, 27 and 30 are converted only in files of project version above 106.
  Run_Index as_106 = written;
  as_106.Extremes[26].ScaleMax = 7;
  Convert_Extreme_Table(as_106, 106);
  EXPECT_EQ(as_106.Extremes[26].ScaleMax, 7.0);
}

TEST_F(Round_Trip, StoredIndexOutsideTheRunIsRefused) {
  for (int k : {0, 4, -1}) {
    EXPECT_FALSE(Read_Result_Variable(family, 1, Slot_REA, k, 1, false, o.buffers, o.message));
    EXPECT_EQ(o.message, Results_Corrupted(family.Files[1][Slot_RES].Path));
  }
  EXPECT_FALSE(Read_Result_Variable(family, 1, Slot_COO, 1, 6, false, o.buffers, o.message));
}

TEST_F(Round_Trip, CoolingHistoryComesBack) {
  Table<Circuit_History> circuits;
  bool ok = false;
  ASSERT_TRUE(Read_Cooling_Data(family, 1, circuits, ok, o.message));
  EXPECT_TRUE(ok);
  ASSERT_EQ(circuits.count(), 1);
  ASSERT_EQ(circuits[1].History.count(), 2);
  EXPECT_EQ(circuits[1].History[2].Time, 1.0);
  EXPECT_EQ(circuits[1].History[2].Water[4], 14.0f);
  EXPECT_FLOAT_EQ(circuits[1].History[2].Capacity, 3.0f * 2.0f * 4180 / 3600);
}

// ----------------------------------------------------------------------------------------------

TEST(Variants, EachRunItsOwnFamily) {
  Temp_Dir dir;
  Result_Family family = Family_In(dir, Small_Layout(false), 2);
  Run_Index first, second;
  ASSERT_TRUE(Write_Run(family, 1, 2, {1, 2}, first));
  ASSERT_TRUE(Write_Run(family, 2, 1, {}, second));
  EXPECT_TRUE(std::filesystem::exists(dir.file("B.RES")));
  EXPECT_TRUE(std::filesystem::exists(dir.file("B2.RES")));
  EXPECT_TRUE(std::filesystem::exists(dir.file("B2.REP")));
  Opened o;
  ASSERT_TRUE(Open_For_Viewing(family, 2, o)) << o.message;
  EXPECT_EQ(Storage_Count(o.index), 1);
  ASSERT_TRUE(Read_Run_Index(family, 1, 109, false, o.index, o.message));
  EXPECT_EQ(Storage_Count(o.index), 3);
}

TEST(Robustness, AStoppedRunIsReadableUpToItsLastStorage) {
  Temp_Dir dir;
  {
    Result_Family family = Family_In(dir, Small_Layout());
    Run_Index index;
    // Stops after step 2 of 5, without the closing stages: the files close as the family goes.
    ASSERT_TRUE(Write_Run(family, 1, 2, {1, 2}, index, false));
  }
  Result_Family family = Family_In(dir, Small_Layout());
  Opened o;
  ASSERT_TRUE(Open_For_Viewing(family, 1, o)) << o.message;
  EXPECT_EQ(Storage_Count(o.index), 3);
  ASSERT_TRUE(Read_Result_Variable(family, 1, Slot_REA, 3, 1, false, o.buffers, o.message));
  EXPECT_EQ(o.buffers.Node[1], float(Pattern(Slot_REA, 2, 1)));
}

TEST(Robustness, AFailedStorageIsNotCountedAndWritesNothing) {
  Temp_Dir dir;
  Result_Family family = Family_In(dir, Small_Layout());
  Run_Index index;
  ASSERT_TRUE(Write_Run(family, 1, 1, {1}, index, false));
  Step_Data bad(family.Layout, 9);
  std::vector<double> short_field(2);
  bad.values.Maturity = short_field;
  std::string message;
  EXPECT_FALSE(Record_Storage(family, 1, bad.values, 9, index, message));
  EXPECT_NE(message.find("maturity"), std::string::npos);
  EXPECT_EQ(Read_Text(family.Files[1][Slot_REA].Path).size(), 2u * 4 * 3);
  ASSERT_TRUE(Close_Result_Files(family, 1, message));
  Opened o;
  ASSERT_TRUE(Open_For_Viewing(family, 1, o));
  EXPECT_EQ(Storage_Count(o.index), 2);
}

TEST(Robustness, AnIndexNeverCountsMoreThanEverySiblingHolds) {
  Temp_Dir dir;
  Result_Family family = Family_In(dir, Small_Layout(false));
  Run_Index index;
  ASSERT_TRUE(Write_Run(family, 1, 1, {1}, index, false));
  index.Storage_Time.add(5);  // a storage the files never got
  std::string message;
  ASSERT_TRUE(Write_Run_Index(family, 1, index, message));
  ASSERT_TRUE(Close_Result_Files(family, 1, message));
  EXPECT_EQ(I32_At(Read_Text(dir.file("B.RES")), 4 + 8), 2);
}

TEST(Robustness, ANewRunOverAnOldFamilyEmptiesTheIndexAtOnce) {
  Temp_Dir dir;
  Result_Family family = Family_In(dir, Small_Layout(false));
  Run_Index index;
  ASSERT_TRUE(Write_Run(family, 1, 4, {1, 2, 3, 4}, index));
  std::string message;
  // The new run dies before its first storage.
  ASSERT_TRUE(Open_Result_Files(family, 1, 1, 109, message));
  ASSERT_TRUE(Close_Result_Files(family, 1, message));
  Opened o;
  EXPECT_FALSE(Open_For_Viewing(family, 1, o));
  EXPECT_EQ(o.message, Results_Corrupted(dir.file("B.RES")));
}

TEST(Robustness, AShorterRunOverALongerOneLeavesATailThatIsIgnored) {
  Temp_Dir dir;
  Result_Family family = Family_In(dir, Small_Layout(false));
  Run_Index index;
  ASSERT_TRUE(Write_Run(family, 1, 4, {1, 2, 3, 4}, index));
  ASSERT_TRUE(Write_Run(family, 1, 1, {}, index));
  EXPECT_EQ(Read_Text(dir.file("B.REA")).size(), 5u * 4 * 3);  // the old run's five records
  Opened o;
  ASSERT_TRUE(Open_For_Viewing(family, 1, o)) << o.message;
  EXPECT_EQ(Storage_Count(o.index), 1);
  ASSERT_TRUE(Read_Result_Variable(family, 1, Slot_REA, 1, 1, false, o.buffers, o.message));
  EXPECT_EQ(o.buffers.Node[1], float(Pattern(Slot_REA, 0, 1)));
  EXPECT_FALSE(Read_Result_Variable(family, 1, Slot_REA, 2, 1, false, o.buffers, o.message));
}

TEST(Robustness, MissingFilesAreNotAvailable) {
  Temp_Dir dir;
  Result_Family family = Family_In(dir, Small_Layout());
  Opened o;
  EXPECT_FALSE(Open_For_Viewing(family, 1, o));
  EXPECT_EQ(o.message, "Results (" + dir.file("B.RES") + ") not available");
  Run_Index index;
  ASSERT_TRUE(Write_Run(family, 1, 1, {1}, index));
  std::filesystem::remove(dir.file("B.REB"));
  EXPECT_FALSE(Open_For_Viewing(family, 1, o));
  EXPECT_EQ(o.message, Results_Not_Available(dir.file("B.RES")));
}

TEST(Robustness, EveryTruncationOfTheIndexIsRefused) {
  Temp_Dir dir;
  Result_Family family = Family_In(dir, Small_Layout(false));
  Run_Index index;
  ASSERT_TRUE(Write_Run(family, 1, 3, {3}, index));
  const std::string whole = Read_Text(dir.file("B.RES"));
  for (std::size_t n = 0; n < whole.size(); ++n) {
    Write_Text(dir.file("B.RES"), whole.substr(0, n));
    Opened o;
    ASSERT_FALSE(Open_For_Viewing(family, 1, o)) << n;
    ASSERT_EQ(o.message, "Results (" + dir.file("B.RES") +
                             ") not available or corrupted! The program returns to the design mode.");
  }
}

TEST(Robustness, DamagedCountsAndShortSiblingsAreRefused) {
  Temp_Dir dir;
  Result_Family family = Family_In(dir, Small_Layout(false));
  Run_Index index;
  ASSERT_TRUE(Write_Run(family, 1, 3, {3}, index));
  const std::string whole = Read_Text(dir.file("B.RES"));
  auto with_i32 = [&](std::size_t offset, std::int32_t v) {
    std::string s = whole;
    std::memcpy(s.data() + offset, &v, 4);
    return s;
  };
  const std::string damaged[] = {
      with_i32(0, 0x7fffffff),                                      // steps beyond any file
      with_i32(0, -1),                                              // negative steps
      with_i32(28, 0x7fffffff), with_i32(28, -5), with_i32(28, 0),  // no storage at all
  };
  for (const std::string& bytes : damaged) {
    Write_Text(dir.file("B.RES"), bytes);
    Opened o;
    EXPECT_FALSE(Open_For_Viewing(family, 1, o));
    EXPECT_EQ(o.message, Results_Corrupted(dir.file("B.RES")));
  }
  Write_Text(dir.file("B.RES"), whole);
  const std::string rec = Read_Text(dir.file("B.REC"));
  Write_Text(dir.file("B.REC"), rec.substr(0, rec.size() - 1));
  Opened o;
  EXPECT_FALSE(Open_For_Viewing(family, 1, o));
  EXPECT_EQ(o.message, Results_Corrupted(dir.file("B.RES")));
}

TEST(Robustness, OldHeadersHaveATwoByteStepCount) {
  // Version 107: i16 steps, then as ever.
  std::string h(2 + 8 + 4 + 8 + 1440, '\0');
  const std::int16_t steps = 1;
  const double t = 2.5;
  const std::int32_t storages = 1;
  std::memcpy(h.data(), &steps, 2);
  std::memcpy(h.data() + 2, &t, 8);
  std::memcpy(h.data() + 10, &storages, 4);
  const double top = 42;
  std::memcpy(h.data() + 22 + 36 * 39 + 8, &top, 8);  // PeriodMax of row 40
  Temp_Dir dir;
  Write_Text(dir.file("OLD.RES"), h);
  Run_Index index;
  std::string message;
  ASSERT_TRUE(Read_Run_Index_File(dir.file("OLD.RES"), 107, false, index, message)) << message;
  EXPECT_EQ(Number_Of_Steps(index), 1);
  EXPECT_EQ(index.Step_Time[1], 2.5);
  EXPECT_EQ(Storage_Count(index), 1);
  EXPECT_EQ(index.Extremes[40].PeriodMax, 42.0);
  // The same bytes read with a 4-byte count give no storage and are refused.
  EXPECT_FALSE(Read_Run_Index_File(dir.file("OLD.RES"), 108, false, index, message));
  EXPECT_EQ(message, Results_Corrupted(dir.file("OLD.RES")));
  EXPECT_FALSE(Read_Run_Index_File(dir.file("NONE.RES"), 108, false, index, message));
  EXPECT_EQ(message, Results_Not_Available(dir.file("NONE.RES")));
}

TEST(Robustness, CoolingFileMissingOrDamaged) {
  Temp_Dir dir;
  Result_Family family = Family_In(dir, Small_Layout(false));
  Run_Index index;
  ASSERT_TRUE(Write_Run(family, 1, 1, {1}, index));
  const std::string coo = dir.file("B.COO");
  const std::string whole = Read_Text(coo);
  const std::string expected =
      "File " + coo + " is corrupted. Computed data on water temperatures in cooling pipes is not available";
  for (const std::string& text : {whole.substr(0, whole.size() / 2), std::string("x"), std::string("-1"),
                                  std::string("30000\r\n1,2,3")}) {
    Write_Text(coo, text);
    Opened o;
    ASSERT_TRUE(Open_For_Viewing(family, 1, o)) << o.message;  // the other results stay usable
    Table<Circuit_History> circuits;
    bool ok = true;
    EXPECT_FALSE(Read_Cooling_Data(family, 1, circuits, ok, o.message));
    EXPECT_FALSE(ok);
    EXPECT_EQ(o.message, expected);
  }
  // A project of version 104 has no cooling file: it is not even looked for.
  std::string message;
  ASSERT_TRUE(Open_All_Result_Sets(family, 104, message));
  EXPECT_EQ(family.Files[1][Slot_COO].Stream, nullptr);
  ASSERT_TRUE(Open_All_Result_Sets(family, 105, message));
  EXPECT_NE(family.Files[1][Slot_COO].Stream, nullptr);
}

}  // namespace
}  // namespace pvx::test
