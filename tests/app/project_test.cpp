#include "app/project.h"

#include <gtest/gtest.h>

#include "app/shell.h"

namespace pvx {
namespace {

TEST(New_Project, EveryFunctionFormIsFilledAndEveryTemplateNamesAFunctionThatExists) {
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
  EXPECT_TRUE(p.Temperature_Functions.valid(p.Thermal_Period_Default.Temperature_Function));
  EXPECT_TRUE(p.Radiation_Functions.valid(p.Thermal_Period_Default.Radiation_Function));
  EXPECT_TRUE(p.Potential_Functions.valid(p.Hygral_Period_Default.Potential_Function));
  EXPECT_TRUE(p.Water_Pressure_Functions.valid(p.Hygral_Period_Default.Water_Pressure_Function));
  EXPECT_TRUE(p.Temperature_Functions.valid(p.Circuit_Default.Temperature_Function));
  EXPECT_TRUE(p.Flow_Functions.valid(p.Circuit_Default.Flow_Function));
  EXPECT_TRUE(p.Temperature_Functions.valid(p.Line_T_Default.Temperature_Function));
  EXPECT_TRUE(p.Displacement_Functions.valid(p.Support_Default.Displacement_Function));
  EXPECT_TRUE(p.Spring_Functions.valid(p.Support_Default.Spring_Function));
  EXPECT_TRUE(p.Load_Functions.valid(p.Load_Default.Load_Function));
  // A circuit has one out-of-plane distance more than it has pipes; a bar divides by its length.
  EXPECT_EQ(p.Circuit_Default.Distance.count(), p.Circuit_Default.Pipe_Count + 1);
  EXPECT_GT(p.Rebar_Template.Length, 0);
  // The single period ends where the computation does.
  ASSERT_EQ(p.Period.count(), 1);
  EXPECT_EQ(p.Period[1].Until, p.Computation_Time);
}

TEST(Initialize_Program, ClearsTheDesignAndListsTheNumberFormatsWithoutTheIntegerOne) {
  Shell shell;
  shell.Mechanical_Iteration_Limit = 3;
  Project p;
  p.Replace_Material = False_Flag;
  Add_Node(p, 1, 2);
  Initialize_Program(shell, p, true);
  EXPECT_TRUE(shell.Decimal_Comma);
  EXPECT_EQ(shell.Mechanical_Iteration_Limit, 10);  // fixed at every start
  EXPECT_EQ(p.Replace_Material, True_Flag);
  EXPECT_EQ(Node_Count(p), 0);
  // Five scientific patterns, then one to ten decimals.
  ASSERT_EQ(shell.Number_Formats.size(), 15u);
  EXPECT_EQ(shell.Number_Formats[4], "0.0e+00");
  EXPECT_EQ(shell.Number_Formats[5], "0.0");
}

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
