#include "app/project.h"

#include <gtest/gtest.h>

#include "app/shell.h"

namespace pvx {
namespace {

TEST(New_Project, HoldsOneFunctionPerFamilyAndOnePeriod) {
  Project p;
  New_Project(p);
  for (int k = 1; k <= Function_Family_Count; ++k) {
    const auto& table = Function_Table(p, static_cast<Function_Family>(k));
    ASSERT_EQ(table.count(), 1) << k;
    // Every form is filled in, whichever is chosen: one sine term and two points at least.
    EXPECT_EQ(Sine_Count(table[1]), 1);
    EXPECT_EQ(Point_Count(table[1]), 2);
    EXPECT_EQ((table[1].Is_Constant != 0) + (table[1].Is_Periodical != 0) + (table[1].Is_Piecewise != 0), 1);
  }
  ASSERT_EQ(p.Period.count(), 1);
  EXPECT_EQ(p.Period[1].Until, 72);
  EXPECT_EQ(p.Period[1].Storage_Each, 1);
  EXPECT_EQ(p.Period[1].Time_Increment, 0.25);
  EXPECT_EQ(p.Computation_Time, 72);
  EXPECT_EQ(p.File_Version, 108);
  EXPECT_EQ(p.Metric_Units, True_Flag);
  EXPECT_EQ(p.Out_Of_Plane.Plane_Stress, True_Flag);
  EXPECT_EQ(p.Out_Of_Plane.Plane_Strain | p.Out_Of_Plane.Axisymmetric, 0);
  EXPECT_EQ(Node_Count(p), 0);
  EXPECT_EQ(p.Macro.count(), 0);
  EXPECT_EQ(p.Prescribed_Penalty, 1000.0);
  EXPECT_EQ(p.Support_Penalty, 1000.0);
}

TEST(New_Project, TemplatesReferToFunctionsThatExist) {
  Project p;
  New_Project(p);
  // A new border period, a circuit and a line temperature all name function 1 of their family.
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
  // The circuit template has one out-of-plane distance more than it has pipes.
  EXPECT_EQ(p.Circuit_Default.Pipe_Count, 2);
  EXPECT_EQ(p.Circuit_Default.Distance.count(), 3);
  EXPECT_EQ(p.Circuit_Default.Distance[2], 10);
  // A bar of zero length holds a length and a direction that divide safely.
  EXPECT_EQ(p.Rebar_Template.Length, 100);
  EXPECT_EQ(p.Rebar_Template.Direction_Cos, 1);
  EXPECT_EQ(p.Rebar_Template.Direction_Sin, 0);
}

TEST(New_Project, FunctionFamiliesStartAsTheEngineerExpects) {
  // Air at 20 oC, a daily sun of 250 +- 400 W/m2 cut off at night, a spring through the origin.
  const Function air = Default_Function(Function_Family::Temperature);
  EXPECT_EQ(air.Is_Constant, True_Flag);
  EXPECT_EQ(air.Constant_Value, 20);
  const Function sun = Default_Function(Function_Family::Radiation);
  EXPECT_EQ(sun.Is_Periodical, True_Flag);
  EXPECT_EQ(sun.Average, 250);
  EXPECT_EQ(sun.Amplitude[1], 400);
  EXPECT_EQ(sun.Has_Cut_Off, True_Flag);
  EXPECT_EQ(sun.Cut_Off_Value, 0);
  const Function spring = Default_Function(Function_Family::Spring);
  EXPECT_EQ(spring.Is_Piecewise, True_Flag);
  EXPECT_EQ(spring.Point_Time[1], -1);
  EXPECT_EQ(spring.Point_Value[1], -1);
  EXPECT_EQ(spring.Point_Time[2], 0);
  EXPECT_EQ(spring.Cut_Off_Value, -1000);
  EXPECT_EQ(Default_Function(Function_Family::Flow).Point_Time[2], 36);
  EXPECT_STREQ(Function_Family_Word(Function_Family::Moisture_Potential), "Moisture Potential");
}

TEST(Initialize_Program, SetsTheRunDefaultsAndTheGrids) {
  Shell shell;
  shell.Mechanical_Iteration_Limit = 3;
  Project p;
  p.Replace_Material = False_Flag;
  Add_Node(p, 1, 2);
  Initialize_Program(shell, p, true);
  EXPECT_EQ(shell.Mechanical_Iteration_Limit, 10);
  for (double limit : shell.Mechanical_Limits)
    EXPECT_EQ(limit, 0.001);
  EXPECT_TRUE(shell.Decimal_Comma);
  EXPECT_EQ(p.Replace_Material, True_Flag);
  EXPECT_EQ(Node_Count(p), 0);
  ASSERT_EQ(shell.Number_Formats.size(), 15u);
  EXPECT_EQ(shell.Number_Formats.front(), "0.00000e+00");
  EXPECT_EQ(shell.Number_Formats[5], "0.0");
  EXPECT_EQ(shell.Number_Formats.back(), "0.0000000000");
  EXPECT_EQ(p.Rect_Grid_Snap, True_Flag);
  EXPECT_EQ(p.Grid_X_Max, 2000);
  EXPECT_EQ(p.Grid_Y_Max, 1500);
  EXPECT_EQ(p.Circ_Grid_Snap, False_Flag);
  EXPECT_EQ(p.Circ_Outer_Radius, 1000);
  EXPECT_EQ(p.Circ_Inner_Radius, 750);
  EXPECT_EQ(p.Circ_End_Angle, 90);
  EXPECT_EQ(p.Circ_Angle_Increment, 5);
}

TEST(Set_Result_Names, VariantsGetNumberedNames) {
  Project p;
  New_Project(p);
  p.Result_File_Name = "WALL.RES";
  for (int k = 0; k < 3; ++k)
    p.Run_Material.add(static_cast<std::int16_t>(k + 1));
  Set_Result_Names(p);
  ASSERT_EQ(p.Result_Names.size(), 4u);
  EXPECT_EQ(p.Result_Names[0], "WALL.RES");
  EXPECT_EQ(p.Result_Names[1], "WALL.RES");
  EXPECT_EQ(p.Result_Names[2], "WALL2.RES");
  EXPECT_EQ(p.Result_Names[3], "WALL3.RES");
  p.Replace_Material = False_Flag;
  Set_Result_Names(p);
  EXPECT_EQ(p.Result_Names.size(), 2u);
}

}  // namespace
}  // namespace pvx
