#include "app/project.h"

#include <gtest/gtest.h>

namespace pvx {
namespace {

// The start of the program, which clears the design, is walked through by the workflow tests.
TEST(Set_Result_Names, VariantsTwoAndOnGetTheirNumberBeforeTheExtension) {
  Project p;
  New_Project(p);
  p.Result_File_Name = "WALL.RES";
  for (int k = 1; k <= 3; ++k)
    p.Run_Material.add(static_cast<std::int16_t>(k));
  Set_Result_Names(p);
  EXPECT_EQ(p.Result_Names, (std::vector<std::string>{"WALL.RES", "WALL.RES", "WALL2.RES", "WALL3.RES"}));
  // Without material replacement there is one family.
  p.Replace_Material = False_Flag;
  Set_Result_Names(p);
  EXPECT_EQ(p.Result_Names, (std::vector<std::string>{"WALL.RES", "WALL.RES"}));
}

}  // namespace
}  // namespace pvx
