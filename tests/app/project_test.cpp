#include "app/project.h"

#include <gtest/gtest.h>

#include "app/shell.h"

namespace pvx {
namespace {

// The start of the program, which clears the design, is walked through by the workflow tests.
TEST(New_Project, EveryFunctionFormIsFilledAndResultsAreNamedPerVariant) {
  Project p;
  New_Project(p);
  for (int k = 1; k <= Function_Family_Count; ++k) {
    SCOPED_TRACE(k);
    const auto& table = Function_Table(p, static_cast<Function_Family>(k));
    ASSERT_EQ(table.count(), 1);
    // Whichever form the user switches to has one sine term and two points to edit.
    EXPECT_EQ(Sine_Count(table[1]), 1);
    EXPECT_EQ(Point_Count(table[1]), 2);
    EXPECT_EQ((table[1].Is_Constant != 0) + (table[1].Is_Periodical != 0) + (table[1].Is_Piecewise != 0), 1);
  }
  // A circuit has one out-of-plane distance more than it has pipes.
  EXPECT_EQ(p.Circuit_Default.Distance.count(), p.Circuit_Default.Pipe_Count + 1);
  // The single period ends where the computation does.
  ASSERT_EQ(p.Period.count(), 1);
  EXPECT_EQ(p.Period[1].Until, p.Computation_Time);

  // Result names: variants two and on get their number before the extension.
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
