// The property editors without their windows: what a user types lands in the member its caption
// names, in stored units, and only at Apply; what follows from the fields is derived there.
#include "design/editor_fields.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <tuple>

#include "app/units.h"
#include "support/rich_project.h"

namespace pvx {
namespace {

int Field_Of(const Editor_Session& s, const std::string& caption) {
  for (std::size_t i = 0; i < s.fields.size(); ++i)
    if (Field_Caption(s, static_cast<int>(i)) == caption) return static_cast<int>(i);
  ADD_FAILURE() << "no field " << caption;
  return 0;
}

std::string told;  // what the last entry told the user

// Every question is answered yes.
bool Type(Editor_Session& s, Project& p, const std::string& caption, const std::string& text) {
  return Enter_Field(
      s, Field_Of(s, caption), text, p, [](const std::string&) { return true; }, told);
}

Editor_Session Open(const Project& p, Editor_Kind kind, int index) {
  Editor_Session s;
  std::string message;
  EXPECT_TRUE(Open_Editor(p, kind, index, s, message)) << message;
  return s;
}

using Reader = std::function<double(const Project&)>;
#define AT(member) [](const Project& p) -> double { return p.member; }
#define TP(member) AT(Border[1].Thermal_Periods[1].member)
#define HP(member) AT(Border[1].Hygral_Periods[1].member)

// Every text field of every editor, typed with a value of its own, must land in the record member
// its caption names, and nowhere else.
TEST(EditorFields, EveryTypedFieldLandsInTheMemberItsCaptionNames) {
  const std::string from = "Present from [hours]:", until = "Until [hours]:";
  // clang-format off
  const std::vector<std::tuple<Editor_Kind, int, std::map<std::string, Reader>>> cases = {
      {Editor_Kind::BorT, 1, {{"From [hours]:", TP(From)}, {until, TP(Until)},
        {"Temperature function:", TP(Temperature_Function)}}},
      {Editor_Kind::Convection, 1, {{"From [hours]:", TP(From)}, {until, TP(Until)},
        {"Coeff. [W/m2K]:", TP(Convection_Coefficient)}, {"Radiation function:", TP(Radiation_Function)},
        {"es", TP(Es)}, {"ea", TP(Ea)}, {"er", TP(Er)}}},
      {Editor_Kind::BorH, 1, {{"From [hours]:", HP(From)}, {until, HP(Until)},
        {"Potential function:", HP(Potential_Function)}, {"Transfer coefficient [m/h]:", HP(Transfer_Coefficient)},
        {"Water pressure function:", HP(Water_Pressure_Function)},
        {"Constant level [m]:", HP(Constant_Level)}}},
      {Editor_Kind::PointT, 1, {{from, AT(Point_T[1].Present_From)}, {until, AT(Point_T[1].Until)},
        {"Temperature function:", AT(Point_T[1].Temperature_Function)}, {"X [mm]:", AT(Point_T[1].X)},
        {"Y [mm]:", AT(Point_T[1].Y)}}},
      {Editor_Kind::LineT, 1, {{from, AT(Line_T[1].Present_From)}, {until, AT(Line_T[1].Until)},
        {"Temperature function:", AT(Line_T[1].Temperature_Function)}}},
      {Editor_Kind::AreaT, 1, {{from, AT(Area_T[1].Present_From)}, {until, AT(Area_T[1].Until)},
        {"Temperature function:", AT(Area_T[1].Temperature_Function)}, {"X1 [mm]:", AT(Area_T[1].X1)},
        {"Y1 [mm]:", AT(Area_T[1].Y1)}, {"X2 [mm]:", AT(Area_T[1].X2)}, {"Y2 [mm]:", AT(Area_T[1].Y2)}}},
      {Editor_Kind::SupportP, 1, {{from, AT(Point_Support[1].Present_From)},
        {until, AT(Point_Support[1].Until)},
        {"Displacement function:", AT(Point_Support[1].Displacement_Function)},
        {"Spring function:", AT(Point_Support[1].Spring_Function)},
        {"Angle [Degr.]", AT(Point_Support[1].Angle)}, {"X [mm]:", AT(Point_Support[1].X)},
        {"Y [mm]:", AT(Point_Support[1].Y)}}},
      {Editor_Kind::SupportL, 1, {{from, AT(Line_Support[1].Present_From)},
        {until, AT(Line_Support[1].Until)},
        {"Displacement function:", AT(Line_Support[1].Displacement_Function)},
        {"Spring function:", AT(Line_Support[1].Spring_Function)},
        {"Angle [Degr.]", AT(Line_Support[1].Angle)}}},
      {Editor_Kind::LoadP, 1, {{from, AT(Point_Load[1].Present_From)}, {until, AT(Point_Load[1].Until)},
        {"Value [N/mm]", AT(Point_Load[1].Value)}, {"Factor [N/mm]", AT(Point_Load[1].Factor)},
        {"Level [m]", AT(Point_Load[1].Level)}, {"Load function:", AT(Point_Load[1].Load_Function)},
        {"Angle [Degr.]", AT(Point_Load[1].Angle)}, {"X [mm]:", AT(Point_Load[1].X)},
        {"Y [mm]:", AT(Point_Load[1].Y)}}},
      {Editor_Kind::LoadL, 1, {{from, AT(Line_Load[1].Present_From)}, {until, AT(Line_Load[1].Until)},
        {"Value [MPa]", AT(Line_Load[1].Value)}, {"Factor [MPa]", AT(Line_Load[1].Factor)},
        {"Level [m]", AT(Line_Load[1].Level)}, {"Load function:", AT(Line_Load[1].Load_Function)},
        {"Angle [Degr.]", AT(Line_Load[1].Angle)}}},
      {Editor_Kind::Circuit, 1, {{"Diameter pipes [mm]:", AT(Circuit[1].Diameter)},
        {"Transfer coeff. [W/m2K]:", AT(Circuit[1].Transfer_Coefficient)},
        {"Capacity liquid [kJ/m3K]:", AT(Circuit[1].Liquid_Capacity)},
        {"Temperature function:", AT(Circuit[1].Temperature_Function)},
        {"Flow function:", AT(Circuit[1].Flow_Function)},
        {"Out of plane distances between: [m]", AT(Circuit[1].Distance[1])},
        {"Active from [hours]", AT(Circuit[1].Active_From)},
        {"Until: [hours]", AT(Circuit[1].Active_Until)}}},
      {Editor_Kind::MacroProp, 1, {{"Temperature [oC]", AT(Macro[1].Temperature)},
        {"Moisture potential [-]", AT(Macro[1].Potential)}, {"Maturity [hours]", AT(Macro[1].Maturity)},
        {"Thickness [mm]", AT(Macro[1].Thickness)}, {"Present from [hours]", AT(Macro[1].Present_From)},
        {"Until [hours]", AT(Macro[1].Present_Until)},
        {"Dead weight applied at [hours]", AT(Macro[1].Dead_Weight_At)},
        {"Moisture content [kg/m3]", AT(Macro[1].Moisture_Content)}}},
      {Editor_Kind::Reinforce, 1, {{"Diameter [mm]", AT(Rebar[1].Diameter)},
        {"Lateral coef", AT(Rebar[1].Lateral_Coefficient)}, {"X1 [mm]:", AT(Rebar[1].X1)},
        {"Y1 [mm]:", AT(Rebar[1].Y1)}, {"X2 [mm]:", AT(Rebar[1].X2)}, {"Y2 [mm]:", AT(Rebar[1].Y2)},
        {"From [hours]:", AT(Rebar[1].From)}, {"Until [hours]:", AT(Rebar[1].Until)}}},
      {Editor_Kind::Interface, 1, {{"Layer type:", AT(Interface[1].Layer_Type)}}},
      {Editor_Kind::OutofPlane, 0, {{"Ro [mm] =", AT(Out_Of_Plane.Offset_Radius)}}},
      {Editor_Kind::Node, 2, {{"X [mm]:", AT(Node_X[2])}, {"Y [mm]:", AT(Node_Y[2])}}}};
  // clang-format on
  ASSERT_EQ(cases.size(), static_cast<std::size_t>(Editor_Kind_Count));
  for (const auto& [kind, index, members] : cases) {
    SCOPED_TRACE(Editor_Form_Name(kind));
    Project p = test::Rich_Project();
    Editor_Session s = Open(p, kind, index);
    // Every text field gets a value of its own: function number 1, which every family has, so
    // that no question comes; 7 more than its place for a whole number, a quarter above that for
    // any other. It must be one of the expected fields, and the reverse.
    std::map<std::string, double> typed;
    for (std::size_t i = 0; i < s.fields.size(); ++i) {
      using enum Field_Type;
      const Field_Type type = s.fields[i].type;
      const std::string caption = Field_Caption(s, static_cast<int>(i));
      if (s.fields[i].read_only || (type != Number && type != Integer && type != Function_Number)) continue;
      const double v = type == Function_Number ? 1 : 7.0 + i + 0.25 * (type == Number);
      EXPECT_TRUE(members.count(caption)) << caption;
      ASSERT_TRUE(Type(s, p, caption, Format_Number(v, 20, 4))) << caption << ": " << told;
      typed[caption] = v;
    }
    EXPECT_EQ(typed.size(), members.size());
    Apply_Editor(s, p);
    // Only a moved node or bar makes the mesh out of date.
    EXPECT_EQ(p.Mesh_Valid, As_Flag(kind != Editor_Kind::Node && kind != Editor_Kind::Reinforce));
    for (const auto& [caption, reader] : members)
      EXPECT_NEAR(reader(p), typed[caption], 1e-6) << caption;
  }
}

// The rich project's border 1 has two thermal periods, the first with a coefficient of 5.5; its
// macro 1 is at 13.5 oC.
TEST(EditorEntry, WhatFollowsFromTheFieldsIsDerivedAtApplyOnlyAndRefusalsKeepTheOldValue) {
  Project p = test::Rich_Project();
  std::tie(p.Line_Load[1].Is_Function, p.Line_Load[1].Is_Level) = std::tuple(False_Flag, True_Flag);
  const Project before = p;
  Editor_Session s = Open(p, Editor_Kind::LoadL, 1);
  ASSERT_TRUE(Type(s, p, "Value [MPa]", "2.5"));
  Set_Field_Value(s, Field_Of(s, "Load given by:"), 2);
  EXPECT_TRUE(Editor_Changed(s));
  EXPECT_EQ(p, before);  // Cancel: the session is dropped, the Project is as it was
  Apply_Editor(s, p);
  EXPECT_EQ(std::tuple(p.Line_Load[1].Value, p.Line_Load[1].Is_Function, p.Line_Load[1].Is_Level),
            std::tuple(2.5, True_Flag, False_Flag));
  s = Open(p, Editor_Kind::LoadL, 1);
  ASSERT_TRUE(Type(s, p, "Value [MPa]", "2.50"));
  EXPECT_FALSE(Editor_Changed(s));  // a value typed equal to the old one is no change

  // A 5-12-13 bar, then one of no length: 100 long along X. An area typed from its far corner is
  // stored with X1 <= X2 and Y1 <= Y2.
  const std::tuple<Editor_Kind, const char*, const char*, const char*, const char*> corners[] = {
      {Editor_Kind::Reinforce, "10", "20", "22", "25"},
      {Editor_Kind::Reinforce, "10", "20", "10", "20"},
      {Editor_Kind::AreaT, "500", "300", "100", "-50"}};
  std::vector<std::tuple<double, double, double>> bars;
  for (const auto& [kind, x1, y1, x2, y2] : corners) {
    s = Open(p, kind, 1);
    for (const auto& [caption, text] :
         {std::pair{"X1 [mm]:", x1}, {"Y1 [mm]:", y1}, {"X2 [mm]:", x2}, {"Y2 [mm]:", y2}})
      Type(s, p, caption, text);
    Apply_Editor(s, p);
    bars.emplace_back(p.Rebar[1].Length, p.Rebar[1].Direction_Cos, p.Rebar[1].Direction_Sin);
  }
  EXPECT_EQ(bars[0], std::tuple(13.0, 12.0 / 13, 5.0 / 13));
  EXPECT_EQ(bars[1], std::tuple(100.0, 1.0, 0.0));
  EXPECT_EQ(std::tuple(p.Area_T[1].X1, p.Area_T[1].Y1, p.Area_T[1].X2, p.Area_T[1].Y2),
            std::tuple(100, -50, 500, 300));
  // The offset reference is cleared when the flag changes, and only then.
  p.Point_Support[1].Reference_Value = 0.75;
  s = Open(p, Editor_Kind::SupportP, 1);
  Type(s, p, "Angle [Degr.]", "45");
  Apply_Editor(s, p);
  EXPECT_EQ(p.Point_Support[1].Reference_Value, 0.75);
  s = Open(p, Editor_Kind::SupportP, 1);
  Set_Field_Value(s, Field_Of(s, "Offset"), 1);
  Set_Field_Value(s, Field_Of(s, "Support:"), 1);
  Apply_Editor(s, p);
  EXPECT_EQ(std::tuple(p.Point_Support[1].Reference_Value, p.Point_Support[1].Is_Spring,
                       p.Point_Support[1].Is_Fixed),
            std::tuple(0.0, True_Flag, False_Flag));
  // The next macro starts from the values of the last one applied.
  s = Open(p, Editor_Kind::MacroProp, 1);
  Type(s, p, "Thickness [mm]", "250");
  Set_Field_Text(s, Field_Of(s, "Material:"), "B500");
  Apply_Editor(s, p);
  EXPECT_EQ(std::tuple(p.Macro[1].Thickness, p.Macro[1].Material, p.Macro_Defaults.Thickness),
            std::tuple(250, "B500", 250));

  // Refused: a whole number beyond 16 bits, a row that is not there, and a field that follows the
  // nodes picked on the panel.
  const std::tuple<Editor_Kind, int, const char*, const char*, const char*> refusals[] = {
      {Editor_Kind::Interface, 1, "Layer type:", "40000", Number_Error_Message},
      {Editor_Kind::Circuit, 1, "Distance no:", "5", "Distance no: 1 to 4"},
      {Editor_Kind::Circuit, 1, "Number of pipes", "3", nullptr}};
  for (const auto& [kind, index, caption, text, expected] : refusals) {
    Editor_Session t = Open(p, kind, index);
    EXPECT_FALSE(Type(t, p, caption, text)) << text;
    EXPECT_TRUE(!expected || told == expected) << told;
    EXPECT_FALSE(Editor_Changed(t)) << text;
  }
  // The limit of Ro itself is allowed.
  s = Open(p, Editor_Kind::OutofPlane, 0);
  EXPECT_TRUE(Type(s, p, "Ro [mm] =", "0"));
  EXPECT_EQ(s.copy.Out_Of_Plane.Offset_Radius, 0);
  EXPECT_FALSE(Open_Editor(p, Editor_Kind::Node, 7, s, told));
  EXPECT_EQ(told, Editor_No_Record_Message);

  // A period number above the count adds one period from the defaults, by the same rule as a
  // function number in the function wizard.
  p.Thermal_Period_Default.Convection_Coefficient = 17;
  p.Border[1].Thermal_Periods[2].Radiation_On = True_Flag;  // with es = ea = er = 0
  s = Open(p, Editor_Kind::Convection, 1);
  const int coeff = Field_Of(s, "Coeff. [W/m2K]:");
  EXPECT_EQ(Field_Text(s, coeff), "5.50");
  ASSERT_TRUE(Type(s, p, "Period no:", "9"));
  EXPECT_EQ(std::tuple(s.copy.Row, Editor_Row_Count(s), Field_Text(s, coeff)), std::tuple(3, 3, "17.00"));
  ASSERT_TRUE(Type(s, p, "Coeff. [W/m2K]:", "0"));
  ASSERT_TRUE(Type(s, p, "es", "0.9"));
  ASSERT_TRUE(Type(s, p, "Period no:", "1"));
  EXPECT_EQ(Field_Text(s, coeff), "5.50");
  EXPECT_EQ(p.Border[1].Thermal_Periods.count(), 2);
  Apply_Editor(s, p);
  ASSERT_EQ(p.Border[1].Thermal_Periods.count(), 3);
  // The flags follow the coefficients: no convection without a coefficient, radiation with es.
  const Thermal_Period& added = p.Border[1].Thermal_Periods[3];
  EXPECT_EQ(std::tuple(added.Convection_On, added.Radiation_On, added.Es),
            std::tuple(False_Flag, True_Flag, 0.9));
  EXPECT_EQ(p.Border[1].Thermal_Periods[2].Radiation_On, False_Flag);

  // Temperatures convert with their offset: 13.5 oC is 56.3 oF, 212 oF is 100 oC.
  p.Metric_Units = False_Flag;
  s = Open(p, Editor_Kind::MacroProp, 1);
  EXPECT_EQ(Field_Text(s, Field_Of(s, "Temperature [oF]")), "56.30");
  ASSERT_TRUE(Type(s, p, "Temperature [oF]", "212"));
  EXPECT_NEAR(s.copy.Macro.Temperature, 100.0, 1e-5);
  // The hygral transfer coefficient acts in m/h: 2.5e-9 m/h are 2.734e-9 yd/h.
  s = Open(p, Editor_Kind::BorH, 1);
  EXPECT_EQ(Field_Text(s, Field_Of(s, "Transfer coefficient [yd/h]:")), "2.734e-09");
}

}  // namespace
}  // namespace pvx
