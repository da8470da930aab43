#include "design/editor_fields.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>

#include "app/units.h"

namespace pvx {
namespace {

// A Project with one record of every kind an editor edits.
Project Editable_Project() {
  Project p;
  New_Project(p);
  Add_Node(p, 100, 250);
  Add_Node(p, 600, 250);
  Border b;
  b.Node_A = 1;
  b.Node_B = 2;
  b.Thermal_Periods.add(p.Thermal_Period_Default);
  b.Hygral_Periods.add(p.Hygral_Period_Default);
  p.Border.add(b);
  p.Point_T.add(Point_T{});
  p.Line_T.add(p.Line_T_Default);
  p.Area_T.add(Area_T{});
  p.Point_Support.add(p.Support_Default);
  p.Line_Support.add(p.Support_Default);
  p.Point_Load.add(p.Load_Default);
  p.Line_Load.add(p.Load_Default);
  Circuit c = p.Circuit_Default;
  c.Pipe_Node[1] = 1;
  c.Pipe_Node[2] = 2;
  p.Circuit.add(c);
  Macro m;
  m.Material = "C30";
  m.Corner = {{1, 2, 2, 1}};
  p.Macro.add(m);
  p.Rebar.add(Rebar{});
  p.Interface.add(Interface{});
  Material concrete, layer, steel;
  concrete.Name = "C30";
  layer.Name = "Bitumen";
  layer.Is_Interface = true;
  steel.Name = "B500";
  steel.Is_Reinforcement = true;
  p.Material.add(concrete);
  p.Material.add(layer);
  p.Material.add(steel);
  return p;
}

int Field_Of(const Editor_Session& s, const std::string& caption) {
  for (std::size_t i = 0; i < s.fields.size(); ++i)
    if (Field_Caption(s, static_cast<int>(i)) == caption) return static_cast<int>(i);
  ADD_FAILURE() << "no field " << caption;
  return 0;
}

bool Type(Editor_Session& s, Project& p, const std::string& caption, const std::string& text,
          std::string* message = nullptr, bool answer = true) {
  std::string local;
  const bool ok = Enter_Field(
      s, Field_Of(s, caption), text, p, [&](const std::string&) { return answer; }, local);
  if (message) *message = local;
  return ok;
}

TEST(EditorEntry, ImperialLengthsShowAndComeBackThroughTheProgramsFactors) {
  Project p = Editable_Project();
  p.Node_X[1] = 100;
  p.Metric_Units = False_Flag;
  p.Mesh_Valid = True_Flag;
  Editor_Session s;
  std::string message;
  ASSERT_TRUE(Open_Editor(p, Editor_Kind::Node, 1, s, message));
  const int x = Field_Of(s, "X [in]:");
  EXPECT_EQ(Field_Text(s, x), "3.937");  // 100 x 0.03937
  ASSERT_TRUE(Type(s, p, "X [in]:", "3.937"));
  EXPECT_NEAR(s.copy.Node_X, 99.9998, 1e-9);  // 3.937 x 25.4: the two factors are not inverse
  EXPECT_EQ(p.Node_X[1], 100);                // the record changes only at Apply
  EXPECT_EQ(Field_Text(s, x), "3.937");
  Apply_Editor(s, p);
  EXPECT_NEAR(p.Node_X[1], 99.9998, 1e-9);
  EXPECT_EQ(p.Mesh_Valid, False_Flag);  // a moved node invalidates the mesh

  // Temperatures convert with their offset: 20 oC is 68 oF, 212 oF is 100 oC.
  ASSERT_TRUE(Open_Editor(p, Editor_Kind::MacroProp, 1, s, message));
  EXPECT_EQ(Field_Text(s, Field_Of(s, "Temperature [oF]")), "68.00");
  ASSERT_TRUE(Type(s, p, "Temperature [oF]", "212"));
  EXPECT_NEAR(s.copy.Macro.Temperature, 100.0, 1e-5);
}

TEST(EditorEntry, CaptionsCarryTheUnitsOfTheChosenSystem) {
  Project p = Editable_Project();
  Editor_Session s;
  std::string message;
  ASSERT_TRUE(Open_Editor(p, Editor_Kind::Circuit, 1, s, message));
  Field_Of(s, "Transfer coeff. [W/m2K]:");
  Field_Of(s, "Capacity liquid [kJ/m3K]:");
  Field_Of(s, "Diameter pipes [mm]:");
  Field_Of(s, "Out of plane distances between: [m]");
  p.Metric_Units = False_Flag;
  ASSERT_TRUE(Open_Editor(p, Editor_Kind::Circuit, 1, s, message));
  Field_Of(s, "Transfer coeff. [BtuIT/hft2oF]:");
  Field_Of(s, "Capacity liquid [BtuIT/yd3oF]:");
  const int diameter = Field_Of(s, "Diameter pipes [in]:");
  EXPECT_EQ(Field_Text(s, diameter), "1.102");  // 28 mm x 0.03937 = 1.10236
  Field_Of(s, "Out of plane distances between: [yd]");
  ASSERT_TRUE(Open_Editor(p, Editor_Kind::OutofPlane, 0, s, message));
  Field_Of(s, "Ro [in] =");
}

TEST(EditorEntry, RefusedValuesKeepTheOldOneWithTheProgramsMessage) {
  Project p = Editable_Project();
  Editor_Session s;
  std::string message;
  ASSERT_TRUE(Open_Editor(p, Editor_Kind::OutofPlane, 0, s, message));
  s.copy.Out_Of_Plane.Offset_Radius = 40;
  EXPECT_FALSE(Type(s, p, "Ro [mm] =", "12x", &message));
  EXPECT_EQ(message, Number_Error_Message);
  EXPECT_FALSE(Type(s, p, "Ro [mm] =", "-0.5", &message));
  EXPECT_EQ(message, "Ro cannot be below 0.");
  EXPECT_EQ(s.copy.Out_Of_Plane.Offset_Radius, 40);
  EXPECT_TRUE(Type(s, p, "Ro [mm] =", "0", &message));
  EXPECT_EQ(s.copy.Out_Of_Plane.Offset_Radius, 0);

  // A whole number beyond 16 bits cannot be held.
  ASSERT_TRUE(Open_Editor(p, Editor_Kind::Interface, 1, s, message));
  s.copy.Interface.Layer_Type = 3;
  EXPECT_FALSE(Type(s, p, "Layer type:", "40000", &message));
  EXPECT_EQ(message, Number_Error_Message);
  EXPECT_EQ(s.copy.Interface.Layer_Type, 3);
  EXPECT_TRUE(Type(s, p, "Layer type:", "2,4"));  // either decimal sign; rounded
  EXPECT_EQ(s.copy.Interface.Layer_Type, 2);

  // A circuit has exactly one distance more than pipes; there is no fourth of two pipes.
  ASSERT_TRUE(Open_Editor(p, Editor_Kind::Circuit, 1, s, message));
  EXPECT_FALSE(Type(s, p, "Distance no:", "4", &message));
  EXPECT_EQ(message, "Distance no: 1 to 3");
  EXPECT_EQ(s.copy.Row, 1);
  EXPECT_FALSE(Type(s, p, "Number of pipes", "3"));  // follows the nodes picked on the panel
  EXPECT_FALSE(Open_Editor(p, Editor_Kind::Node, 3, s, message));
  EXPECT_EQ(message, Editor_No_Record_Message);
}

TEST(EditorEntry, FunctionNumbersAboveTheCountOfferToAddAFunction) {
  Project p = Editable_Project();
  Editor_Session s;
  std::string message;
  ASSERT_TRUE(Open_Editor(p, Editor_Kind::SupportP, 1, s, message));
  p.Displacement_Functions[1].Constant_Value = 4.5;
  std::vector<std::string> questions;
  auto ask = [&](bool yes) {
    return [&questions, yes](const std::string& q) {
      questions.push_back(q);
      return yes;
    };
  };
  const int field = Field_Of(s, "Displacement function:");
  EXPECT_TRUE(Enter_Field(s, field, "7", p, ask(false), message));
  EXPECT_EQ(s.copy.Support.Displacement_Function, 1);  // No keeps the number
  EXPECT_EQ(p.Displacement_Functions.count(), 1);
  EXPECT_TRUE(Enter_Field(s, field, "7", p, ask(true), message));
  ASSERT_EQ(questions.size(), 2u);
  EXPECT_EQ(questions[0],
            "The actual number of Displacement functions is 1 !  Do you want to add a function ?");
  EXPECT_EQ(s.copy.Support.Displacement_Function, 2);  // count + 1, not the typed 7
  ASSERT_EQ(p.Displacement_Functions.count(), 2);
  EXPECT_EQ(p.Displacement_Functions[2].Constant_Value, 4.5);  // a copy of the last
  EXPECT_TRUE(Enter_Field(s, field, "-3", p, ask(true), message));
  EXPECT_EQ(s.copy.Support.Displacement_Function, 1);
  EXPECT_EQ(questions.size(), 2u);
}

TEST(EditorEntry, APeriodNumberAboveTheCountAddsOnePeriodFromTheDefaults) {
  Project p = Editable_Project();
  p.Thermal_Period_Default.Convection_Coefficient = 17;
  p.Border[1].Thermal_Periods[1].Convection_Coefficient = 5;
  Editor_Session s;
  std::string message;
  ASSERT_TRUE(Open_Editor(p, Editor_Kind::Convection, 1, s, message));
  const int coeff = Field_Of(s, "Coeff. [W/m2K]:");
  EXPECT_EQ(Field_Text(s, coeff), "5.00");
  ASSERT_TRUE(Type(s, p, "Period no:", "9"));
  EXPECT_EQ(s.copy.Row, 2);
  EXPECT_EQ(Editor_Row_Count(s), 2);
  EXPECT_EQ(Field_Text(s, coeff), "17.00");
  ASSERT_TRUE(Type(s, p, "Coeff. [W/m2K]:", "0"));
  ASSERT_TRUE(Type(s, p, "es", "0.9"));
  ASSERT_TRUE(Type(s, p, "Period no:", "1"));
  EXPECT_EQ(Field_Text(s, coeff), "5.00");
  EXPECT_EQ(p.Border[1].Thermal_Periods.count(), 1);
  Apply_Editor(s, p);
  ASSERT_EQ(p.Border[1].Thermal_Periods.count(), 2);
  // The flags follow the coefficients: no convection without a coefficient, radiation with es.
  EXPECT_EQ(p.Border[1].Thermal_Periods[2].Convection_On, False_Flag);
  EXPECT_EQ(p.Border[1].Thermal_Periods[2].Radiation_On, True_Flag);
  EXPECT_EQ(p.Border[1].Thermal_Periods[2].Es, 0.9);
  EXPECT_EQ(p.Border[1].Thermal_Periods[1].Radiation_On, False_Flag);  // es = ea = er = 0
}

TEST(EditorApply, ApplyWritesBackAndAnEditorLeftWithoutApplyChangesNothing) {
  Project p = Editable_Project();
  const Project before = p;
  Editor_Session s;
  std::string message;
  ASSERT_TRUE(Open_Editor(p, Editor_Kind::LoadL, 1, s, message));
  EXPECT_FALSE(Editor_Changed(s));
  ASSERT_TRUE(Type(s, p, "Value [MPa]", "2.5"));
  Set_Field_Value(s, Field_Of(s, "Load given by:"), 2);
  EXPECT_TRUE(Editor_Changed(s));
  EXPECT_EQ(p, before);  // Cancel: the session is dropped, the Project is as it was
  Apply_Editor(s, p);
  EXPECT_EQ(p.Line_Load[1].Value, 2.5);
  EXPECT_EQ(p.Line_Load[1].Is_Function, True_Flag);
  EXPECT_EQ(p.Line_Load[1].Is_Level, False_Flag);
  EXPECT_EQ(p.Point_Load[1], before.Point_Load[1]);

  // A value typed equal to the old one is no change.
  ASSERT_TRUE(Open_Editor(p, Editor_Kind::LoadL, 1, s, message));
  ASSERT_TRUE(Type(s, p, "Value [MPa]", "2.50"));
  EXPECT_FALSE(Editor_Changed(s));
}

TEST(EditorApply, WhatFollowsFromTheFieldsIsDerivedAtApply) {
  Project p = Editable_Project();
  Editor_Session s;
  std::string message;
  // A 3-4-5 bar.
  ASSERT_TRUE(Open_Editor(p, Editor_Kind::Reinforce, 1, s, message));
  Type(s, p, "X1 [mm]:", "10");
  Type(s, p, "Y1 [mm]:", "20");
  Type(s, p, "X2 [mm]:", "40");
  Type(s, p, "Y2 [mm]:", "60");
  p.Mesh_Valid = True_Flag;
  Apply_Editor(s, p);
  EXPECT_DOUBLE_EQ(p.Rebar[1].Length, 50);
  EXPECT_DOUBLE_EQ(p.Rebar[1].Direction_Cos, 0.6);
  EXPECT_DOUBLE_EQ(p.Rebar[1].Direction_Sin, 0.8);
  EXPECT_EQ(p.Mesh_Valid, False_Flag);
  // Both ends together: a length of 100 and the X direction.
  ASSERT_TRUE(Open_Editor(p, Editor_Kind::Reinforce, 1, s, message));
  Type(s, p, "X2 [mm]:", "10");
  Type(s, p, "Y2 [mm]:", "20");
  Apply_Editor(s, p);
  EXPECT_EQ(p.Rebar[1].Length, 100);
  EXPECT_EQ(p.Rebar[1].Direction_Cos, 1);
  EXPECT_EQ(p.Rebar[1].Direction_Sin, 0);

  // An area typed from its far corner is stored with X1 <= X2 and Y1 <= Y2.
  ASSERT_TRUE(Open_Editor(p, Editor_Kind::AreaT, 1, s, message));
  Type(s, p, "X1 [mm]:", "500");
  Type(s, p, "Y1 [mm]:", "300");
  Type(s, p, "X2 [mm]:", "100");
  Type(s, p, "Y2 [mm]:", "-50");
  Apply_Editor(s, p);
  EXPECT_EQ(p.Area_T[1].X1, 100);
  EXPECT_EQ(p.Area_T[1].X2, 500);
  EXPECT_EQ(p.Area_T[1].Y1, -50);
  EXPECT_EQ(p.Area_T[1].Y2, 300);

  // The offset reference is cleared when the flag changes, and only then.
  p.Point_Support[1].Reference_Value = 0.75;
  ASSERT_TRUE(Open_Editor(p, Editor_Kind::SupportP, 1, s, message));
  Type(s, p, "Angle [Degr.]", "45");
  Apply_Editor(s, p);
  EXPECT_EQ(p.Point_Support[1].Reference_Value, 0.75);
  ASSERT_TRUE(Open_Editor(p, Editor_Kind::SupportP, 1, s, message));
  Set_Field_Value(s, Field_Of(s, "Offset"), 1);
  Set_Field_Value(s, Field_Of(s, "Support:"), 1);
  Apply_Editor(s, p);
  EXPECT_EQ(p.Point_Support[1].Reference_Value, 0);
  EXPECT_EQ(p.Point_Support[1].Is_Spring, True_Flag);
  EXPECT_EQ(p.Point_Support[1].Is_Fixed, False_Flag);

  // The next macro starts from the values of the last one applied.
  ASSERT_TRUE(Open_Editor(p, Editor_Kind::MacroProp, 1, s, message));
  Type(s, p, "Thickness [mm]", "250");
  Set_Field_Text(s, Field_Of(s, "Material:"), "B500");
  Apply_Editor(s, p);
  EXPECT_EQ(p.Macro[1].Thickness, 250);
  EXPECT_EQ(p.Macro[1].Material, "B500");
  EXPECT_EQ(p.Macro_Defaults.Thickness, 250);
  ASSERT_TRUE(Open_Editor(p, Editor_Kind::MacroProp, 0, s, message));
  EXPECT_EQ(Field_Text(s, Field_Of(s, "Thickness [mm]")), "250.000");

  // Exactly one mode of the out-of-plane block.
  ASSERT_TRUE(Open_Editor(p, Editor_Kind::OutofPlane, 0, s, message));
  Set_Field_Value(s, Field_Of(s, "Mode:"), 1);
  Apply_Editor(s, p);
  EXPECT_EQ(p.Out_Of_Plane.Plane_Stress, False_Flag);
  EXPECT_EQ(p.Out_Of_Plane.Axisymmetric, True_Flag);
  EXPECT_EQ(p.Out_Of_Plane.Plane_Strain, False_Flag);
}

// Every text field of every editor, typed with a value of its own, must land in the record member
// its caption names, and nowhere else.
using Reader = std::function<double(const Project&)>;
struct Editor_Case {
  Editor_Kind kind;
  int index;
  std::map<std::string, Reader> members;
};

TEST(EditorFields, EveryTypedFieldLandsInTheMemberItsCaptionNames) {
  const auto thermal = [](const Project& p) -> const Thermal_Period& {
    return p.Border[1].Thermal_Periods[1];
  };
  const auto hygral = [](const Project& p) -> const Hygral_Period& { return p.Border[1].Hygral_Periods[1]; };
  const std::vector<Editor_Case> cases = {
      {Editor_Kind::BorT,
       1,
       {{"From [hours]:", [=](const Project& p) { return thermal(p).From; }},
        {"Until [hours]:", [=](const Project& p) { return thermal(p).Until; }},
        {"Temperature function:", [=](const Project& p) { return thermal(p).Temperature_Function; }}}},
      {Editor_Kind::Convection,
       1,
       {{"From [hours]:", [=](const Project& p) { return thermal(p).From; }},
        {"Until [hours]:", [=](const Project& p) { return thermal(p).Until; }},
        {"Coeff. [W/m2K]:", [=](const Project& p) { return thermal(p).Convection_Coefficient; }},
        {"Radiation function:", [=](const Project& p) { return thermal(p).Radiation_Function; }},
        {"es", [=](const Project& p) { return thermal(p).Es; }},
        {"ea", [=](const Project& p) { return thermal(p).Ea; }},
        {"er", [=](const Project& p) { return thermal(p).Er; }}}},
      {Editor_Kind::BorH,
       1,
       {{"From [hours]:", [=](const Project& p) { return hygral(p).From; }},
        {"Until [hours]:", [=](const Project& p) { return hygral(p).Until; }},
        {"Potential function:", [=](const Project& p) { return hygral(p).Potential_Function; }},
        {"Transfer coefficient:", [=](const Project& p) { return hygral(p).Transfer_Coefficient; }},
        {"Water pressure function:", [=](const Project& p) { return hygral(p).Water_Pressure_Function; }},
        {"Constant level [m]:", [=](const Project& p) { return hygral(p).Constant_Level; }}}},
      {Editor_Kind::PointT,
       1,
       {{"Present from [hours]:", [](const Project& p) { return p.Point_T[1].Present_From; }},
        {"Until [hours]:", [](const Project& p) { return p.Point_T[1].Until; }},
        {"Temperature function:", [](const Project& p) { return p.Point_T[1].Temperature_Function; }},
        {"X [mm]:", [](const Project& p) { return p.Point_T[1].X; }},
        {"Y [mm]:", [](const Project& p) { return p.Point_T[1].Y; }}}},
      {Editor_Kind::LineT,
       1,
       {{"Present from [hours]:", [](const Project& p) { return p.Line_T[1].Present_From; }},
        {"Until [hours]:", [](const Project& p) { return p.Line_T[1].Until; }},
        {"Temperature function:", [](const Project& p) { return p.Line_T[1].Temperature_Function; }}}},
      {Editor_Kind::AreaT,
       1,
       {{"Present from [hours]:", [](const Project& p) { return p.Area_T[1].Present_From; }},
        {"Until [hours]:", [](const Project& p) { return p.Area_T[1].Until; }},
        {"Temperature function:", [](const Project& p) { return p.Area_T[1].Temperature_Function; }},
        {"X1 [mm]:", [](const Project& p) { return p.Area_T[1].X1; }},
        {"Y1 [mm]:", [](const Project& p) { return p.Area_T[1].Y1; }},
        {"X2 [mm]:", [](const Project& p) { return p.Area_T[1].X2; }},
        {"Y2 [mm]:", [](const Project& p) { return p.Area_T[1].Y2; }}}},
      {Editor_Kind::SupportP,
       1,
       {{"Present from [hours]:", [](const Project& p) { return p.Point_Support[1].Present_From; }},
        {"Until [hours]:", [](const Project& p) { return p.Point_Support[1].Until; }},
        {"Displacement function:", [](const Project& p) { return p.Point_Support[1].Displacement_Function; }},
        {"Spring function:", [](const Project& p) { return p.Point_Support[1].Spring_Function; }},
        {"Angle [Degr.]", [](const Project& p) { return p.Point_Support[1].Angle; }},
        {"X [mm]:", [](const Project& p) { return p.Point_Support[1].X; }},
        {"Y [mm]:", [](const Project& p) { return p.Point_Support[1].Y; }}}},
      {Editor_Kind::SupportL,
       1,
       {{"Present from [hours]:", [](const Project& p) { return p.Line_Support[1].Present_From; }},
        {"Until [hours]:", [](const Project& p) { return p.Line_Support[1].Until; }},
        {"Displacement function:", [](const Project& p) { return p.Line_Support[1].Displacement_Function; }},
        {"Spring function:", [](const Project& p) { return p.Line_Support[1].Spring_Function; }},
        {"Angle [Degr.]", [](const Project& p) { return p.Line_Support[1].Angle; }}}},
      {Editor_Kind::LoadP,
       1,
       {{"Present from [hours]:", [](const Project& p) { return p.Point_Load[1].Present_From; }},
        {"Until [hours]:", [](const Project& p) { return p.Point_Load[1].Until; }},
        {"Value [N/mm]", [](const Project& p) { return p.Point_Load[1].Value; }},
        {"Factor [N/mm]", [](const Project& p) { return p.Point_Load[1].Factor; }},
        {"Level [m]", [](const Project& p) { return p.Point_Load[1].Level; }},
        {"Load function:", [](const Project& p) { return p.Point_Load[1].Load_Function; }},
        {"Angle [Degr.]", [](const Project& p) { return p.Point_Load[1].Angle; }},
        {"X [mm]:", [](const Project& p) { return p.Point_Load[1].X; }},
        {"Y [mm]:", [](const Project& p) { return p.Point_Load[1].Y; }}}},
      {Editor_Kind::LoadL,
       1,
       {{"Present from [hours]:", [](const Project& p) { return p.Line_Load[1].Present_From; }},
        {"Until [hours]:", [](const Project& p) { return p.Line_Load[1].Until; }},
        {"Value [MPa]", [](const Project& p) { return p.Line_Load[1].Value; }},
        {"Factor [MPa]", [](const Project& p) { return p.Line_Load[1].Factor; }},
        {"Level [m]", [](const Project& p) { return p.Line_Load[1].Level; }},
        {"Load function:", [](const Project& p) { return p.Line_Load[1].Load_Function; }},
        {"Angle [Degr.]", [](const Project& p) { return p.Line_Load[1].Angle; }}}},
      {Editor_Kind::Circuit,
       1,
       {{"Diameter pipes [mm]:", [](const Project& p) { return p.Circuit[1].Diameter; }},
        {"Transfer coeff. [W/m2K]:", [](const Project& p) { return p.Circuit[1].Transfer_Coefficient; }},
        {"Capacity liquid [kJ/m3K]:", [](const Project& p) { return p.Circuit[1].Liquid_Capacity; }},
        {"Temperature function:", [](const Project& p) { return p.Circuit[1].Temperature_Function; }},
        {"Flow function:", [](const Project& p) { return p.Circuit[1].Flow_Function; }},
        {"Out of plane distances between: [m]", [](const Project& p) { return p.Circuit[1].Distance[1]; }},
        {"Active from [hours]", [](const Project& p) { return p.Circuit[1].Active_From; }},
        {"Until: [hours]", [](const Project& p) { return p.Circuit[1].Active_Until; }}}},
      {Editor_Kind::MacroProp,
       1,
       {{"Temperature [oC]", [](const Project& p) { return p.Macro[1].Temperature; }},
        {"Moisture potential [-]", [](const Project& p) { return p.Macro[1].Potential; }},
        {"Maturity [hours]", [](const Project& p) { return p.Macro[1].Maturity; }},
        {"Thickness [mm]", [](const Project& p) { return p.Macro[1].Thickness; }},
        {"Present from [hours]", [](const Project& p) { return p.Macro[1].Present_From; }},
        {"Until [hours]", [](const Project& p) { return p.Macro[1].Present_Until; }},
        {"Dead weight applied at [hours]", [](const Project& p) { return p.Macro[1].Dead_Weight_At; }},
        {"Moisture content [kg/m3]", [](const Project& p) { return p.Macro[1].Moisture_Content; }}}},
      {Editor_Kind::Reinforce,
       1,
       {{"Diameter [mm]", [](const Project& p) { return p.Rebar[1].Diameter; }},
        {"Lateral coef", [](const Project& p) { return p.Rebar[1].Lateral_Coefficient; }},
        {"X1 [mm]:", [](const Project& p) { return p.Rebar[1].X1; }},
        {"Y1 [mm]:", [](const Project& p) { return p.Rebar[1].Y1; }},
        {"X2 [mm]:", [](const Project& p) { return p.Rebar[1].X2; }},
        {"Y2 [mm]:", [](const Project& p) { return p.Rebar[1].Y2; }},
        {"From [hours]:", [](const Project& p) { return p.Rebar[1].From; }},
        {"Until [hours]:", [](const Project& p) { return p.Rebar[1].Until; }}}},
      {Editor_Kind::Interface,
       1,
       {{"Layer type:", [](const Project& p) { return p.Interface[1].Layer_Type; }}}},
      {Editor_Kind::OutofPlane,
       0,
       {{"Ro [mm] =", [](const Project& p) { return p.Out_Of_Plane.Offset_Radius; }}}},
      {Editor_Kind::Node,
       2,
       {{"X [mm]:", [](const Project& p) { return p.Node_X[2]; }},
        {"Y [mm]:", [](const Project& p) { return p.Node_Y[2]; }}}},
  };
  ASSERT_EQ(cases.size(), static_cast<std::size_t>(Editor_Kind_Count));
  for (const Editor_Case& c : cases) {
    SCOPED_TRACE(Editor_Form_Name(c.kind));
    Project p = Editable_Project();
    Editor_Session s;
    std::string message;
    ASSERT_TRUE(Open_Editor(p, c.kind, c.index, s, message));
    // Every text field of the editor is in the expected list, and the reverse.
    std::size_t text_fields = 0;
    for (std::size_t i = 0; i < s.fields.size(); ++i) {
      const Editor_Field& f = s.fields[i];
      if (f.read_only || f.type == Field_Type::Check || f.type == Field_Type::Option ||
          f.type == Field_Type::Material || f.type == Field_Type::Row_Selector)
        continue;
      ++text_fields;
      EXPECT_TRUE(c.members.count(Field_Caption(s, static_cast<int>(i))))
          << Field_Caption(s, static_cast<int>(i));
    }
    EXPECT_EQ(text_fields, c.members.size());
    // Distinct values per field; function numbers 1 (the only function) to avoid the question.
    std::map<std::string, double> typed;
    double value = 0.25;
    for (const auto& [caption, reader] : c.members) {
      const Editor_Field& f = s.fields[static_cast<std::size_t>(Field_Of(s, caption))];
      const bool whole = f.type != Field_Type::Number;
      double v = f.type == Field_Type::Function_Number ? 1 : whole ? 7 + typed.size() : value;
      if (caption == "Thickness [mm]" || caption.rfind("Diameter", 0) == 0) v += 1;
      ASSERT_TRUE(Type(s, p, caption, Format_Number(v, 20, 4), &message)) << caption << ": " << message;
      typed[caption] = v;
      value += 1.5;
    }
    Apply_Editor(s, p);
    for (const auto& [caption, reader] : c.members)
      EXPECT_NEAR(reader(p), typed[caption], 1e-6) << caption;
  }
}

}  // namespace
}  // namespace pvx
