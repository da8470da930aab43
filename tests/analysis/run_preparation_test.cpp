// The material variants of a run, as the run settings window chooses them and as a project just
// read binds them, their result names, and the name and folder proposed for the results.
#include "analysis/run_preparation.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "analysis/schedule.h"

namespace pvx {
namespace {

// Materials A, B, C; five elements of B, A, B, C and one the database does not know; no geometry.
Project Variant_Project() {
  Project p;
  New_Project(p);
  p.Result_File_Name = "W.RES";
  for (const char* name : {"A", "B", "C"}) {
    Material m;
    m.Name = name;
    p.Material.add(m);
  }
  for (const char* name : {"B", "A", "B", "C", "X"}) {
    Mesh_Element e;
    e.Material = name;
    p.Mesh_Element.add(e);
  }
  return p;
}

using Flags = std::vector<bool>;
using Numbers = Table<std::int16_t>;

TEST(Material_Variants, TheMeshMaterialsAreListedOnceAndEachRunNamesItsResults) {
  // Marking and choosing in the window are walked through by the form's own tests.
  Project p = Variant_Project();
  Run_Window w;
  Set_Mebin(p, w);
  EXPECT_EQ(w.Element_Material, (Numbers{2, 1, 2, 3, 0}));
  EXPECT_EQ(w.Replaceable_Material, (Numbers{2, 1, 3}));
  EXPECT_EQ(p.Element_Replaced, (Flags{true, false, true, false, false}));
  EXPECT_EQ(p.Run_Material, (Numbers{1, 2, 3}));
  Prepare_Runs(p, w.Replaced_Material);
  EXPECT_EQ(p.Result_Names, (std::vector<std::string>{"W.RES", "W.RES", "W2.RES", "W3.RES"}));
  EXPECT_EQ(p.Element_Replaced, (Flags{true, false, true, false, false}));  // kept through the naming
  // No marked run computes the design once, as it stands: B replaced by B.
  Unmark_All_Materials(p, w);
  Prepare_Runs(p, w.Replaced_Material);
  EXPECT_EQ(p.Run_Material, (Numbers{2}));
  // Without variants there is one run whatever is marked.
  p.Replace_Material = False_Flag;
  Mark_All_Materials(p, w);
  Prepare_Runs(p, w.Replaced_Material);
  EXPECT_EQ(Number_Of_Runs(p), 1);
  // A mesh without known materials has nothing to replace.
  for (Mesh_Element& e : p.Mesh_Element)
    e.Material = std::string(1, 'X');  // not from a literal: GCC 12 warns wrongly on that assignment
  Set_Mebin(p, w);
  EXPECT_TRUE(w.Replaceable_Material.empty());
  EXPECT_EQ(w.Replaced_Material, 0);
  EXPECT_EQ(p.Element_Replaced, Flags(5, false));
}

TEST(Run_Preparation, TheReplacedMaterialIsTheWindowsChoiceOrElseTheFirstElements) {
  Project p = Variant_Project();
  p.Run_Material = Numbers{1, 3};         // as read from a file: runs, no flags
  EXPECT_EQ(Replaced_Material_Of(p), 2);  // B, the first element's
  EXPECT_EQ(Prepare_Run_Variants(p), 2);
  EXPECT_EQ(p.Element_Replaced, (Flags{true, false, true, false, false}));
  // C chosen in the window (only the fourth element) and no run marked: C as it stands, once.
  p.Element_Replaced = {false, false, false, true, false};
  p.Run_Material.clear();
  EXPECT_EQ(Prepare_Run_Variants(p), 3);
  EXPECT_EQ(p.Run_Material, (Numbers{3}));
  // Without material variants nothing is flagged behind the user's back.
  Project plain = Variant_Project();
  plain.Replace_Material = False_Flag;
  Prepare_Run_Variants(plain);
  EXPECT_EQ(std::count(plain.Element_Replaced.begin(), plain.Element_Replaced.end(), true), 0);
}

TEST(Run_Preparation, ProposedNamesAndFolders) {
  Project p;
  EXPECT_EQ(Replaced_Material_Of(p), 0);
  EXPECT_EQ(Proposed_Result_Name(p), "RESULTS.RES");
  p.Project_File = "/data/walls/WALL.PVX";
  EXPECT_EQ(Proposed_Result_Name(p), "WALL.RES");
  p.Project_File = "/data/v1.2/Slab";
  EXPECT_EQ(Proposed_Result_Name(p), "Slab.RES");
  EXPECT_EQ(Run_Directory(p, "/work"), "/work");
  EXPECT_EQ(Run_Directory(p, ""), "/data/v1.2/");
}

}  // namespace
}  // namespace pvx
