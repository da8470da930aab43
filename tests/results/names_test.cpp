// Names of the files of a family, the file table, and the numbering of the result variables.
#include <gtest/gtest.h>

#include "app/project.h"
#include "app/project_file.h"
#include "results/result_files.h"

namespace pvx {
namespace {

TEST(Output_Names, SiblingsDifferInTheLastLetter) {
  EXPECT_EQ(Sibling_Name("B.RES", Slot_REA), "B.REA");
  EXPECT_EQ(Sibling_Name("B.RES", Slot_REH), "B.REH");
  EXPECT_EQ(Sibling_Name("B.RES", Slot_REL), "B.REL");
  EXPECT_EQ(Sibling_Name("B.RES", Slot_REO), "B.REO");
  EXPECT_EQ(Sibling_Name("B.RES", Slot_REP), "B.REP");
  EXPECT_EQ(Sibling_Name("B.RES", Slot_COO), "B.COO");
  EXPECT_EQ(Sibling_Name("B2.RES", Slot_RES), "B2.RES");
  std::string letters;
  for (int slot = 1; slot <= Result_Slot_Count; ++slot)
    letters += Slot_Letter(slot) == 0 ? '-' : Slot_Letter(slot);
  EXPECT_EQ(letters, "SABCDEFHIJK-LMOP");
}

TEST(Output_Names, VariantsOfAProjectGetTheirOwnFamilies) {
  Project p;
  New_Project(p);
  p.Result_File_Name = "B.RES";
  p.Replace_Material = True_Flag;
  p.Run_Material = {1, 2, 3};
  Set_Result_Names(p);
  Result_Family family;
  std::string message;
  ASSERT_TRUE(Prepare_Result_Family(family, p, false, "/work/dir", message)) << message;
  ASSERT_EQ(Number_Of_Runs(family), 3);
  EXPECT_EQ(family.Files[1][Slot_RES].Path, Join_Path("/work/dir", "B.RES"));
  EXPECT_EQ(family.Files[2][Slot_RES].Path, Join_Path("/work/dir", "B2.RES"));
  EXPECT_EQ(family.Files[2][Slot_REA].Path, Join_Path("/work/dir", "B2.REA"));
  EXPECT_EQ(family.Files[3][Slot_COO].Path, Join_Path("/work/dir", "B3.COO"));
  // Handles count up from 11 over the sixteen slots of run 1, then of run 2.
  EXPECT_EQ(family.Files[1][Slot_RES].Unit, 11);
  EXPECT_EQ(family.Files[1][Slot_REP].Unit, 26);
  EXPECT_EQ(family.Files[2][Slot_RES].Unit, 27);
  EXPECT_EQ(family.Files[3][Slot_REA].Unit, 44);

  // Without material replacement: one run under the given name; an absolute name stays as it is.
  p.Replace_Material = False_Flag;
  p.Result_File_Name = "/data/ONE.RES";
  Set_Result_Names(p);
  ASSERT_TRUE(Prepare_Result_Family(family, p, false, "/work/dir", message));
  ASSERT_EQ(Number_Of_Runs(family), 1);
  EXPECT_EQ(family.Files[1][Slot_REB].Path, "/data/ONE.REB");

  p.Result_File_Name.clear();
  Set_Result_Names(p);
  EXPECT_FALSE(Prepare_Result_Family(family, p, false, "/work/dir", message));
  EXPECT_EQ(message, "A path and a filename must be given for your output !");
}

TEST(Output_Names, RecordLengthsOfAProjectMesh) {
  Project p;
  New_Project(p);
  p.Mesh_Node.resize(10);
  p.Mesh_Element.resize(4);
  p.Doubled_Node_Count = 2;
  p.Mesh_Support.resize(3);
  p.Mesh_Interface.resize(2);
  const Result_Layout l = Result_Layout_Of(p, true);
  EXPECT_EQ(Record_Length(l, Slot_REA), 10);
  EXPECT_EQ(Record_Length(l, Slot_REP), 16);
  EXPECT_EQ(Record_Length(l, Slot_REI), 24);
  EXPECT_EQ(Record_Length(l, Slot_REJ), 64);
  EXPECT_EQ(Record_Length(l, Slot_REK), 3);
  EXPECT_EQ(Record_Length(l, Slot_REM), 8);
  EXPECT_TRUE(Slot_Exists(l, Slot_REM));
  EXPECT_FALSE(Slot_Exists(l, Slot_REO));  // no bars
  EXPECT_FALSE(Slot_Exists(l, Slot_COO));  // no circuits
  EXPECT_FALSE(Slot_Exists(Result_Layout_Of(p, false), Slot_REI));
}

TEST(Result_Variables, ViewerVariablesToSlotsAndRows) {
  const std::pair<int, int> slots[] = {{1, 2},   {2, 4},   {3, 5},   {4, 3},   {5, 6},   {9, 7},   {10, 8},
                                       {11, 9},  {12, 9},  {20, 9},  {13, 10}, {19, 10}, {21, 11}, {22, 13},
                                       {30, 14}, {31, 14}, {32, 15}, {33, 15}, {34, 15}, {40, 16}, {6, 0},
                                       {7, 0},   {8, 0},   {23, 0},  {35, 0}};
  for (const auto& [v, slot] : slots)
    EXPECT_EQ(Slot_Of_Variable(v), slot) << v;
  EXPECT_EQ(Extreme_Row_Of_Variable(30), 23);
  EXPECT_EQ(Extreme_Row_Of_Variable(34), 27);
  EXPECT_EQ(Extreme_Row_Of_Variable(40), 40);
  EXPECT_STREQ(Viewer_Variable_Name(32), "Normal stress in rebars");
  EXPECT_STREQ(Result_Variable(40).name, "Degree of hydration");
  EXPECT_STREQ(Result_Variable(31).name, "");
}

TEST(Result_Variables, UnitKindsOfTheExtremeRows) {
  const std::pair<int, int> kinds[] = {{1, 3},   {2, 0},   {5, 10},  {6, 0},  {9, 12},
                                       {11, 1},  {19, 12}, {20, 1},  {21, 9}, {22, 1},
                                       {25, 12}, {27, 1},  {30, 12}, {31, 0}, {40, 0}};
  for (const auto& [v, kind] : kinds)
    EXPECT_EQ(Extreme_Row_Unit_Kind(v, 108), kind) << v;
  EXPECT_EQ(Extreme_Row_Unit_Kind(26, 106), 0);
  EXPECT_EQ(Extreme_Row_Unit_Kind(30, 106), 0);
  EXPECT_EQ(Extreme_Row_Unit_Kind(25, 106), 12);
}

}  // namespace
}  // namespace pvx
