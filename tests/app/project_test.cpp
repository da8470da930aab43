#include "app/project.h"

#include <gtest/gtest.h>

namespace pvx {
namespace {

TEST(New_Project, HoldsOneFunctionPerFamilyAndOnePeriod) {
  Project p;
  New_Project(p);
  for (int k = 1; k <= Function_Family_Count; ++k) {
    EXPECT_EQ(Function_Table(p, static_cast<Function_Family>(k)).count(), 1) << k;
  }
  ASSERT_EQ(p.Period.count(), 1);
  EXPECT_EQ(p.Period[1].Time_Increment, 0.25);
  EXPECT_EQ(p.Computation_Time, 72);
  EXPECT_EQ(p.File_Version, 108);
  EXPECT_EQ(p.Metric_Units, True_Flag);
  EXPECT_EQ(p.Out_Of_Plane.Plane_Stress, True_Flag);
}

}  // namespace
}  // namespace pvx
