// The Project made ready for a run from the window: the replaced material, the variants and their
// result names, the proposed result name and the folder of the results.
#include "analysis/run_preparation.h"

#include <gtest/gtest.h>

#include "analysis/schedule.h"

namespace pvx {
namespace {

// Three materials; four elements of materials B, A, B, C (in that order), no geometry needed.
Project Three_Materials() {
  Project p;
  New_Project(p);
  for (const char* name : {"A", "B", "C"}) {
    Material m;
    m.Name = name;
    p.Material.add(m);
  }
  for (const char* name : {"B", "A", "B", "C"}) {
    Mesh_Element e;
    e.Material = name;
    p.Mesh_Element.add(e);
  }
  p.Result_File_Name = "W.RES";
  return p;
}

TEST(Run_Preparation, AProjectJustReadReplacesTheFirstElementsMaterialInEveryVariant) {
  Project p = Three_Materials();
  p.Run_Material.clear();
  for (std::int16_t m : {1, 3})
    p.Run_Material.add(m);                // as read from a file: runs, no flags
  EXPECT_EQ(Replaced_Material_Of(p), 2);  // B, the first element's
  EXPECT_EQ(Prepare_Run_Variants(p), 2);
  EXPECT_EQ(p.Element_Replaced, (std::vector<bool>{true, false, true, false}));
  ASSERT_EQ(Number_Of_Runs(p), 2);
  EXPECT_EQ(p.Result_Names.at(1), "W.RES");
  EXPECT_EQ(p.Result_Names.at(2), "W2.RES");
}

TEST(Run_Preparation, TheChoiceOfTheSettingsWindowIsKeptAndNoRunBecomesOne) {
  Project p = Three_Materials();
  Run_Window window;
  Set_Mebin(p, window);
  Choose_Replaced_Material(p, window, 3);  // C: only the last element
  Unmark_All_Materials(p, window);
  EXPECT_EQ(Prepare_Run_Variants(p), 3);
  EXPECT_EQ(p.Element_Replaced, (std::vector<bool>{false, false, false, true}));
  ASSERT_EQ(Number_Of_Runs(p), 1);  // computed once as it stands
  EXPECT_EQ(p.Run_Material[1], 3);
  EXPECT_EQ(p.Result_Names.at(1), "W.RES");

  // Without material variants nothing is flagged behind the user's back.
  Project plain = Three_Materials();
  plain.Replace_Material = False_Flag;
  Prepare_Run_Variants(plain);
  EXPECT_TRUE(plain.Element_Replaced.empty() || plain.Element_Replaced == std::vector<bool>(4, false));
  EXPECT_EQ(Number_Of_Runs(plain), 1);
}

TEST(Run_Preparation, ProposedNamesAndFolders) {
  Project p;
  EXPECT_EQ(Proposed_Result_Name(p), "RESULTS.RES");
  p.Project_File = "/data/walls/WALL.PVX";
  EXPECT_EQ(Proposed_Result_Name(p), "WALL.RES");
  p.Project_File = "/data/v1.2/Slab";
  EXPECT_EQ(Proposed_Result_Name(p), "Slab.RES");
  EXPECT_EQ(Run_Directory(p, "/work"), "/work");
  EXPECT_EQ(Run_Directory(p, ""), "/data/v1.2/");
  Project none;
  EXPECT_EQ(Replaced_Material_Of(none), 0);
}

}  // namespace
}  // namespace pvx
