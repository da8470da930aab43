// Reading whole databases: every section into its fields, every fault into its message, and a
// fault never touching the table in hand.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "database_samples.h"
#include "material/database.h"

namespace pvx {
namespace {

using namespace test;

TEST(Database, TheBaseConcreteFillsEverySection) {
  const Read_Result r = Read(Base);
  ASSERT_TRUE(r.ok) << r.report.Message;
  EXPECT_EQ(r.report.Format, 100);
  const Material& m = r.materials[1];
  EXPECT_EQ(m.Name, "Test concrete");
  EXPECT_TRUE(m.Has_Thermal && m.Has_Hygral && m.Has_Mechanical && m.Has_Maturity_Law);
  EXPECT_FALSE(m.Is_Interface || m.Is_Reinforcement);
  EXPECT_EQ(m.Dead_Weight, 2400);
  EXPECT_EQ(m.Capacity_Wet, 2400);
  EXPECT_FALSE(m.Capacity_By_Water);
  EXPECT_EQ(m.Conductivity_Wet, 2.3f);
  EXPECT_TRUE(m.Arrhenius_Active);
  EXPECT_FALSE(m.dQ_Active);
  EXPECT_EQ(m.Q_Over_R, 4000);
  EXPECT_EQ(m.T_Reference, 293);
  EXPECT_EQ(m.Heat_Model, "CORE");
  EXPECT_EQ(m.Heat_H, 100000);
  EXPECT_EQ(m.Heat_a, 0.05f);
  EXPECT_EQ(m.Heat_d, 4);
  EXPECT_EQ(m.Hydration_Factor, 1);
  EXPECT_FALSE(m.Hygral_Maturity_Stop);
  EXPECT_EQ(m.W_C, 0.5);
  EXPECT_FALSE(m.Isotherm_Table);
  EXPECT_EQ(m.Cement, 300);
  EXPECT_DOUBLE_EQ(m.Air, 1.5);  // stored times 100
  EXPECT_EQ(m.H_Limit, 1.05);
  EXPECT_TRUE(m.Temperature_Dependent);
  EXPECT_EQ(m.Fixed_Temperature, 20);
  EXPECT_TRUE(m.Hydration_Dependent);
  EXPECT_EQ(m.Default_Hydration, 0.8);
  EXPECT_FALSE(m.Crack_Diffusion_Active);
  EXPECT_TRUE(m.Diffusion_Bazant);
  EXPECT_EQ(m.Diffusion_1, 0.00001);
  EXPECT_EQ(m.Diffusion_2, 0.8);
  EXPECT_EQ(m.Diffusion_3, 0.05);
  EXPECT_EQ(m.Consumption_Factor, 0.25);
  EXPECT_FALSE(m.Saturated_Flow_Active);
  EXPECT_EQ(m.Saturated_Permeability, 1e-9);
  EXPECT_TRUE(m.Thermal_Dilatation.Is_Constant);
  EXPECT_EQ(m.Thermal_Dilatation.Value[1], 0.00001f);
  EXPECT_FALSE(m.Statistics_Active);
  EXPECT_EQ(m.Model_Name, "Linear Elastic");
  EXPECT_TRUE(m.E.Depends_On_Maturity);
  EXPECT_EQ(Point_Count(m.E), 2);
  EXPECT_EQ(m.E.Abscissa[2], 100);  // no weighted maturity: hours as written
  EXPECT_EQ(m.E.Value[2], 30000);
  EXPECT_EQ(m.Fc.Value[1], 40);
  const Softening& s = m.Softening_Law;
  EXPECT_TRUE(s.Has_Softening);
  EXPECT_EQ(s.s1, 0.3);
  EXPECT_EQ(s.w1, 0.03);
  EXPECT_EQ(s.w2, 0.2);
  EXPECT_EQ(s.alfa, 0);
  EXPECT_FALSE(s.Lvol_Active);
  EXPECT_EQ(s.Mode, 0);
  EXPECT_EQ(r.colours.count(), 1);
  EXPECT_EQ(r.colours[1], 200 + 200 * 256 + 200 * 65536);
}

TEST(Database, TheThermalSectionVariants) {
  Material m = Read_One(With(Base, "2400 capacity", "1800 2400 150 capacity"));
  EXPECT_TRUE(m.Capacity_By_Water);
  EXPECT_EQ(m.Capacity_Dry, 1800);
  EXPECT_EQ(m.Water_Reference, 150);
  m = Read_One(With(Base, "2400 capacity", "2000 2 0 60000 10 500 capacity"));
  EXPECT_TRUE(m.Latent_Active);
  EXPECT_EQ(m.Capacity_Wet, 2000);
  EXPECT_EQ(Latent_Count(m), 2);
  EXPECT_EQ(m.Latent_Temperature[2], 10);
  EXPECT_EQ(m.Latent_Peak[2], 500);
  // Nineteen pairs fill the line; the count decides how many are taken.
  std::string pairs;
  for (int i = 1; i <= 19; ++i) {
    pairs += ' ';
    pairs += std::to_string(i);
    pairs += ' ';
    pairs += std::to_string(100 * i);
  }
  m = Read_One(With(Base, "2400 capacity", "2000 19" + pairs));
  EXPECT_EQ(Latent_Count(m), 19);
  EXPECT_EQ(m.Latent_Peak[19], 1900);
  m = Read_One(With(Base, "2400 capacity", "2000 1 0 100 5 200"));
  EXPECT_EQ(Latent_Count(m), 1);
  m = Read_One(With(Base, "2.3 conductivity", "1.5 2.5 100 conductivity"));
  EXPECT_TRUE(m.Conductivity_By_Water);
  EXPECT_EQ(m.Conductivity_Water_Reference, 100);

  // Maturity: Q/R of 0 means real time; two numbers switch on the correction below 20 oC.
  m = Read_One(With(Base, "4000 activation", "0 activation"));
  EXPECT_TRUE(m.Has_Maturity_Law);
  EXPECT_FALSE(m.Arrhenius_Active);
  m = Read_One(With(Base, "4000 activation", "4000 177 activation"));
  EXPECT_TRUE(m.Arrhenius_Active && m.dQ_Active);
  EXPECT_EQ(m.dQ_Over_R, 177);
  // No MATU block at all: the heat model follows the conductivity.
  m = Read_One(Without(Without(Without(Base, "MATURITY"), "4000 activation"), "293 reference"));
  EXPECT_TRUE(m.Has_Thermal);
  EXPECT_FALSE(m.Has_Maturity_Law || m.Arrhenius_Active);
  EXPECT_EQ(m.Heat_Model, "CORE");
  m = Read_One(With(Base, "293 reference", "293 reference\nMOISture 5 4"));
  EXPECT_TRUE(m.Humidity_Active);
  EXPECT_EQ(m.Ac, 5);
  EXPECT_EQ(m.Bc, 4);
}

TEST(Database, HeatModelsHydrationFactorAndStopFlag) {
  auto heat = [](const std::string& line) { return Read_One(With(Base, "CORE heat 100000 0.05 4", line)); };
  Material m = heat("CONS 50");
  EXPECT_EQ(m.Heat_Model, "CONS");
  EXPECT_EQ(m.Heat_H, 50);
  EXPECT_EQ(m.Hydration_Factor, 1);
  EXPECT_EQ(heat("CONS 50 1.5").Hydration_Factor, 1);
  EXPECT_EQ(heat("CONS 50 -0.2").Hydration_Factor, 0);
  EXPECT_EQ(heat("CONS 50 0.7").Hydration_Factor, 0.7);
  EXPECT_TRUE(heat("CONS 50 0.7 1").Hygral_Maturity_Stop);
  EXPECT_FALSE(heat("CONS 50 0.7 1.0001").Hygral_Maturity_Stop);
  m = heat("CORE 100 0.06 4 0.9 1");
  EXPECT_EQ(m.Hydration_Factor, 0.9);
  EXPECT_TRUE(m.Hygral_Maturity_Stop);
  m = heat("DANIsh 108800 40 0.9 0.95");
  EXPECT_EQ(m.Heat_Model, "DANI");
  EXPECT_EQ(m.Heat_a, 40);
  EXPECT_EQ(m.Heat_b, 0.9f);
  EXPECT_EQ(m.Heat_d, 0);
  EXPECT_EQ(m.Hydration_Factor, 0.95);
  // PIWI: H is the largest rise times the wet capacity (2400).
  m = heat("PIWI 4 0.8\n0 0\n24 30\n48 45\n72 44");
  EXPECT_EQ(m.Heat_Model, "PIWI");
  EXPECT_EQ(m.Heat_Table_Time.count(), 4);
  EXPECT_EQ(m.Heat_Table_Rise[3], 45);
  EXPECT_EQ(m.Heat_H, 45 * 2400);
  EXPECT_EQ(m.Hydration_Factor, 0.8);
  m = heat("NO Heat");
  EXPECT_EQ(m.Heat_Model, "NO H");
  EXPECT_EQ(m.Hydration_Factor, 1);
}

TEST(Database, WeightedMaturityScalesMaturityTablesOnly) {
  // C = 1.3: 10 (1.3^0.755 - 1.3^-2.245) / ln 1.3 = 25.3155078 degree-hours per hour.
  const std::string text = With(With(Base, "293 reference", "293 reference\nC_ME 1.3"), "CONS 0.2 poisson",
                                "TEMP 2 poisson\n0 0.2\n40 0.25");
  const Material m = Read_One(text);
  EXPECT_TRUE(m.Dutch_Active);
  EXPECT_EQ(m.Dutch_C, 1.3f);
  EXPECT_NEAR(m.E.Abscissa[1], 10 * 25.3155078, 1e-3);
  EXPECT_NEAR(m.E.Abscissa[2], 100 * 25.3155078, 1e-2);
  EXPECT_EQ(m.Nu.Abscissa[2], 40);  // a temperature table is left as it is
  EXPECT_TRUE(m.Nu.Depends_On_Temperature);
}

TEST(Database, HygralTablesAndMensiLaw) {
  std::string text = With(Base, "0.5 ratio", "0.5 1 ratio");
  text = With(text, "0.8 default hydration", "0.8 1 default hydration");
  text = With(text, "0.05 third diffusion", "no third diffusion");
  text = With(text, "0.000000001 permeability",
              "0.000000001 permeability\n2\n20\n40\n1\n0.8\n3\n0.5\n0.9\n1\n"
              "1\n2\n3\n4\n5\n6\n"
              "2 crack points\n0 1\n1 50");
  const Material m = Read_One(text);
  EXPECT_TRUE(m.Isotherm_Table);
  EXPECT_FALSE(m.Diffusion_Bazant);
  EXPECT_EQ(m.Diffusion_3, 0);
  const Isotherm_Grid& g = m.Isotherm_Table_Data;
  EXPECT_EQ(g.Temperature.count(), 2);
  EXPECT_EQ(g.Hydration.count(), 1);
  EXPECT_EQ(g.Potential.count(), 3);
  EXPECT_EQ(g.Potential[3], 1);
  EXPECT_EQ(g.Value, (std::vector<double>{1, 2, 3, 4, 5, 6}));
  EXPECT_TRUE(m.Crack_Diffusion_Active);
  EXPECT_EQ(m.Crack_Diffusion_Factor.count(), 2);
  EXPECT_EQ(m.Crack_Diffusion_Factor[2], 50);
  EXPECT_EQ(m.Model_Name, "Linear Elastic");  // the record goes on in step

  // The flags are true for exactly 1.
  const Material n = Read_One(
      With(With(Base, "1 temperature flag", "0.5 temperature flag"), "0 saturated flag", "1 saturated flag"));
  EXPECT_FALSE(n.Temperature_Dependent);
  EXPECT_TRUE(n.Saturated_Flow_Active);
}

TEST(Database, TheVariationLineIsAlwaysConsumed) {
  Material m = Read_One(With(Base, "NO STATISTICS", "STATistical variation 0.15"));
  EXPECT_TRUE(m.Statistics_Active);
  EXPECT_EQ(m.Statistics_Factor, 0.15);
  EXPECT_EQ(m.Model_Name, "Linear Elastic");
  // Without a variation line the model name is taken as the variation line and the next line as
  // the model: an unknown one, which reads nothing, so the E table's first point is the separator.
  m = Read_One(Without(Base, "NO STATISTICS"));
  EXPECT_EQ(m.Model_Name, "MATU 2 modulus");
  EXPECT_EQ(Point_Count(m.E), 0);
}

const std::string Chain_Tail = R"(CONS 0.2 poisson
CONS 3 tensile
CONS 40 compressive
Temperature 2700
Humidity 0.3
Stress level 1 1.5
Transient 0.00001 0.00005
3 units
1 10 100
0.5 0.3 0.2
0.4 0.3 0.3
EPFL 1 0.3 5000 0.03 0.2 0.3 0.5
separator
)";

std::string Chain_Text(int format) {
  std::string text = With(Base, "Linear Elastic", "Maxwell Chain");
  text = text.substr(0, text.find("CONS 0.2 poisson")) + Chain_Tail;
  return With(text, "1 100 materials and format", "1 " + std::to_string(format));
}

TEST(Database, MaxwellChainWithItsOptionsAndRows) {
  const Material m = Read_One(Chain_Text(100));
  EXPECT_EQ(m.Model_Name, "Maxwell Chain");
  EXPECT_TRUE(m.Temperature_Influence);
  EXPECT_EQ(m.QR, 2700);
  EXPECT_TRUE(m.Humidity_Influence);
  EXPECT_EQ(m.Ah, 0.3f);
  EXPECT_TRUE(m.Stress_Level_Active);
  EXPECT_EQ(m.Stress_Level_At, 1);
  EXPECT_EQ(m.Stress_Level_Ac, 1.5);
  EXPECT_TRUE(m.Transient_Creep);
  EXPECT_EQ(m.Transient_a, 0.00001);
  EXPECT_EQ(m.Transient_b, 0.00005);
  EXPECT_FALSE(m.Humidity_Class);
  EXPECT_EQ(Chain_Size(m), 3);
  EXPECT_EQ(m.Retardation_Time[3], 100);
  ASSERT_EQ(m.Chain_Coefficient.count(), 2);  // one row per point of E
  EXPECT_EQ(m.Chain_Coefficient[2][3], 0.3);
  const Softening& s = m.Softening_Law;
  EXPECT_TRUE(s.EPFL_Active);
  EXPECT_FALSE(s.Has_Softening);
  EXPECT_EQ(s.Bcr, 5000);
  EXPECT_EQ(s.EPFL_w2, 0.2);
  EXPECT_EQ(s.Beta, 0.5);
  EXPECT_EQ(s.Ccr, 1);  // absent: read as 1

  // Before format 100 there is no stress-level line: "Stress level" is then the transient line,
  // and the chain size is read from the transient line (its first number, 0.00001, is not 1..50).
  EXPECT_EQ(Fault_Of(Chain_Text(99)), "Error max1");
  // With a constant E there is one row.
  std::string constant = With(Chain_Text(100), "MATU 2 modulus", "CONS 30000 modulus");
  constant = Without(Without(constant, "10 1000"), "100 30000");
  constant = Without(constant, "0.4 0.3 0.3");
  const Material c = Read_One(constant);
  EXPECT_EQ(c.Chain_Coefficient.count(), 1);
}

TEST(Database, CreepOptionLinesClearTheirFlags) {
  std::string text = With(Chain_Text(100), "Temperature 2700", "no temperature influence");
  text = With(text, "Humidity 0.3", "Humidity 0.3 0.4");
  text = With(text, "Stress level 1 1.5", "Stress level 1");
  text = With(text, "Transient 0.00001 0.00005", "Transient 0 0.1 0.2 0.3 0.4");
  const Material m = Read_One(text);
  EXPECT_FALSE(m.Temperature_Influence || m.Humidity_Influence || m.Stress_Level_Active);
  EXPECT_FALSE(m.Transient_Creep);  // a of 0 clears it
  EXPECT_TRUE(m.Humidity_Class);    // five numbers set the classes all the same
  EXPECT_EQ(m.Humidity_Class_b, (std::array<double, 4>{0.1, 0.2, 0.3, 0.4}));
  EXPECT_FALSE(
      Read_One(With(Chain_Text(100), "Transient 0.00001 0.00005", "Transient 0.00001")).Transient_Creep);
}

TEST(Database, BurgerModelHasNoStressLevelLine) {
  std::string text = With(Base, "Linear Elastic", "Burger Model");
  text = text.substr(0, text.find("MATU 2 modulus"));
  text +=
      "MATU 2 maxwell modulus\n10 1000\n100 30000\nCONS 5000 tau\nCONS 90000 kelvin modulus\n"
      "CONS 30 tau\nCONS 0.2\nCONS 3\nCONS 40\nTemperature 2700\nHumidity 0.3\n"
      "Transient 0.00001 0.00005 0.00004 0.00003 0.00002\n"
      "ISOM 3 0.5 0 -1 1 -1\n0 1\n0.05 0.3\n0.2 0\nseparator\n";
  const Material m = Read_One(text);
  EXPECT_EQ(m.Model_Name, "Burger Model");
  EXPECT_EQ(m.E_Mod_A.Value[2], 30000);
  EXPECT_EQ(m.Tau_B.Value[1], 30);
  EXPECT_TRUE(m.Transient_Creep && m.Humidity_Class);
  EXPECT_EQ(m.Humidity_Class_b[0], 0.00005);
  EXPECT_EQ(m.Humidity_Class_b[3], 0.00002);
  const Softening& s = m.Softening_Law;
  // A negative sixth number switches softening off and is kept as 1000; with the fourth and the
  // sixth negative there is no Lvol.
  EXPECT_FALSE(s.Has_Softening);
  EXPECT_EQ(s.ISOM_Extra[0], 1000);
  EXPECT_FALSE(s.Lvol_Active);
  EXPECT_EQ(s.Lvol, 0);
  EXPECT_EQ(s.Mode, 1);
  EXPECT_EQ(s.alfa, 0.5);
  EXPECT_EQ(s.Crack_Width.count(), 3);
  EXPECT_EQ(s.Strength_Factor[2], 0.3);
}

TEST(Database, SofteningForms) {
  auto soft = [](const std::string& line) {
    return Read_One(With(Base, "ISOT softening 0.3 0.03 0.2", line)).Softening_Law;
  };
  Softening s = soft("ISOT 0.3 0.03 0.2 0.5 40 100 1");
  EXPECT_TRUE(s.Has_Softening && s.Lvol_Active);
  EXPECT_EQ(s.Lch, 40);
  EXPECT_EQ(s.Lvol, 100);
  EXPECT_EQ(s.Mode, 1);
  s = soft("ISOT 0.3 0.03 0.2 0.5 40");
  EXPECT_FALSE(s.Lvol_Active);
  s = soft("ISOM 2 0.2 50 -5 0 3\n0 1\n0.1 0");
  EXPECT_TRUE(s.Has_Softening);
  EXPECT_TRUE(s.Lvol_Active);  // the sixth number is not negative
  EXPECT_EQ(s.Lvol, -5);
  EXPECT_EQ(s.ISOM_Extra[0], 3);
  s = soft("ISOM 2 0.2 50\n0 1\n0.1 0");
  EXPECT_FALSE(s.Lvol_Active);  // only three numbers
  s = soft("EPFL 1 2 3 4 5 6 7 -2");
  EXPECT_EQ(s.Ccr, 1);
  s = soft("EPFL 1 2 3 4 5 6 7 2.5");
  EXPECT_EQ(s.Ccr, 2.5);
  EXPECT_EQ(s.aft, 6);
  s = soft("NO Softening");
  EXPECT_FALSE(s.Has_Softening || s.EPFL_Active);
  s = soft("anything else");
  EXPECT_FALSE(s.Has_Softening || s.EPFL_Active);
}

TEST(Database, SoilAndOtherModels) {
  std::string soil = Base.substr(0, Base.find("MATU 2 modulus"));
  soil = With(soil, "Linear Elastic", "Soil");
  Material m = Read_One(soil + "NONLinear 2\n0 0\n0.1 0.001\nseparator\n");
  EXPECT_TRUE(m.Soil_Nonlinear);
  EXPECT_EQ(m.Soil_Curve_Strain[2], 0.001);
  m = Read_One(soil + "NO Tension 0.01\nseparator\n");
  EXPECT_TRUE(m.Soil_Tension);
  EXPECT_EQ(m.Soil_Tension_Limit, 0.01);
  EXPECT_EQ(Fault_Of(soil + "NONLinear 2 3\n"), "Soil 1");
  EXPECT_EQ(Fault_Of(soil + "NO Tension\n"), "Soil 1");
  EXPECT_EQ(Fault_Of(soil + "NONLinear 2\n0 0\n0.1\n"), "Soil 1");
  EXPECT_EQ(Fault_Of(soil + "elastic\n"), "Soil 1");

  // "Nonlinear Elastic" and unknown names read nothing more: the next line is the separator.
  std::string other =
      With(Base.substr(0, Base.find("MATU 2 modulus")), "Linear Elastic", "Nonlinear Elastic");
  EXPECT_EQ(Read_One(other + "separator\n").Model_Name, "Nonlinear Elastic");
  // The name is compared exactly: a trailing blank makes an unknown model.
  other = With(Base.substr(0, Base.find("MATU 2 modulus")), "Linear Elastic", "Linear Elastic ");
  EXPECT_EQ(Read_One(other + "separator\n").Model_Name, "Linear Elastic ");
}

TEST(Database, InterfacesAndReinforcement) {
  const std::string text = R"(5 100
Joint A
INTErface 1
1
2
3
4
5
6
7
8
Joint B
INTE 2
21
22
23
Joint C
INTE 3
31
32
33
34
2 points
0 1.2
0.1 0
Steel
REINforcement
2 points
0 0
2.5 500
3
0 0
1 10
2 12
1000 dowel
1 unloading
0 third
0.000012 dilatancy
Joint D
INTE 4
)";
  const Read_Result r = Read(text);
  ASSERT_TRUE(r.ok) << r.report.Message;
  ASSERT_EQ(r.materials.count(), 5);
  const Material& a = r.materials[1];
  EXPECT_TRUE(a.Is_Interface);
  EXPECT_FALSE(a.Has_Thermal || a.Has_Hygral || a.Has_Mechanical || a.Is_Reinforcement);
  EXPECT_EQ(a.Interface_Type, 1);
  for (int i = 1; i <= 8; ++i)
    EXPECT_EQ(a.Interface_Data[static_cast<std::size_t>(i)], i);
  const Material& b = r.materials[2];
  EXPECT_EQ(b.Interface_Type, 2);
  EXPECT_EQ(b.Interface_Data[21], 21);
  EXPECT_EQ(b.Interface_Data[23], 23);
  EXPECT_EQ(b.Interface_Data[1], 0);
  const Material& c = r.materials[3];
  EXPECT_EQ(c.Interface_Data[34], 34);
  EXPECT_EQ(c.Interface_Data[40], 2);
  EXPECT_EQ(c.Interface_Data[41], 0);
  EXPECT_EQ(c.Interface_Data[42], 1.2);
  EXPECT_EQ(c.Interface_Data[43], 0.1);
  EXPECT_EQ(c.Interface_Data[44], 0);
  const Material& steel = r.materials[4];
  EXPECT_TRUE(steel.Is_Reinforcement);
  EXPECT_FALSE(steel.Is_Interface || steel.Has_Mechanical);
  EXPECT_EQ(steel.Steel_Stress_A[2], 500);
  EXPECT_EQ(steel.Steel_Strain_B.count(), 3);
  EXPECT_EQ(steel.Steel_Stress_B[3], 12);
  EXPECT_EQ(steel.Steel_Const_1, 1000);
  EXPECT_EQ(steel.Steel_Const_2, 1);
  EXPECT_EQ(steel.Steel_Const_3, 0);
  EXPECT_TRUE(steel.Steel_Dilatation.Is_Constant);
  EXPECT_EQ(steel.Steel_Dilatation.Value[1], 0.000012f);
  EXPECT_EQ(r.materials[5].Interface_Type, 4);  // an unknown type reads nothing more

  // A type below 1 is type 1 with its eight lines.
  const Read_Result zero = Read("1\nJoint\nINTE 0\n1\n2\n3\n4\n5\n6\n7\n8\n");
  ASSERT_TRUE(zero.ok) << zero.report.Message;
  EXPECT_EQ(zero.materials[1].Interface_Type, 1);
  EXPECT_EQ(zero.materials[1].Interface_Data[8], 8);
  EXPECT_EQ(zero.report.Format, 0);  // no format number on the first line
}

TEST(Database, ColoursCycleThroughTen) {
  std::string text = "12 100\n";
  for (int i = 1; i <= 12; ++i)
    text += "Joint " + std::to_string(i) + "\nINTE 2\n1\n2\n3\n";
  const Read_Result r = Read(text);
  ASSERT_TRUE(r.ok) << r.report.Message;
  ASSERT_EQ(r.colours.count(), 12);
  EXPECT_EQ(r.colours[1], Pack_RGB(200, 200, 200));
  EXPECT_EQ(r.colours[2], 225 * 65536);  // (0, 0, 225): blue in the high byte
  EXPECT_EQ(r.colours[3], 128 * 256 + 255 * 65536);
  EXPECT_EQ(r.colours[10], 255);  // (255, 0, 0)
  EXPECT_EQ(r.colours[11], r.colours[1]);
  EXPECT_EQ(r.colours[12], r.colours[2]);
}

}  // namespace
}  // namespace pvx
