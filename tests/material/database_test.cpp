// Reading whole databases: every line of every section into its fields.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "database_samples.h"
#include "material/database.h"

namespace pvx {
namespace {

using namespace test;

TEST(Database, EveryLineLandsInItsField) {
  std::string nineteen_pairs = "2000 19";
  for (int i = 1; i <= 19; ++i)
    nineteen_pairs.append(" ").append(std::to_string(i)).append(" ").append(std::to_string(100 * i));
  const std::string heat = "CORE heat 100000 0.05 4", soft = "ISOT softening 0.3 0.03 0.2";
  std::string hygral = With(Base_With("0.5 ratio", "0.5 1 ratio"), "0.8 default hydration", "0.8 1 default");
  hygral = With(
      With(hygral, "0.05 third diffusion", "no third diffusion"), "0.000000001 permeability",
      "0.000000001 permeability\n2\n20\n40\n1\n0.8\n3\n0.5\n0.9\n1\n1\n2\n3\n4\n5\n6\n2 crack\n0 1\n1 50");
  const std::string weighted = With(Base_With("293 reference", "293 reference\nC_ME 1.3"), "CONS 0.2 poisson",
                                    "TEMP 2 poisson\n0 0.2\n40 0.25");
  const std::string soil = Before(Base_With("Linear Elastic", "Soil"), "MATU 2 modulus");
  std::string creep = With(Chain_Text(), "Temperature 2700", "no temperature influence");
  creep = With(With(creep, "Humidity 0.3", "Humidity 0.3 0.4"), "Stress level 1 1.5", "Stress level 1");
  creep = With(creep, "Transient 0.00001 0.00005", "Transient 0 0.1 0.2 0.3 0.4");
  const std::string burger =
      Before(Base_With("Linear Elastic", "Burger Model"), "MATU 2 modulus") +
      "MATU 2 maxwell\n10 1000\n100 30000\nCONS 5000 tau\nCONS 90000 kelvin\nCONS 30 tau\nCONS 0.2\nCONS 3\n"
      "CONS 40\nTemperature 2700\nHumidity 0.3\nTransient 0.00001 0.00005 0.00004 0.00003 0.00002\n"
      "ISOM 3 0.5 0 -1 1 -1\n0 1\n0.05 0.3\n0.2 0\nseparator\n";

  const std::pair<std::string, Check> rows[] = {
      {Base, HOLDS(m.Name == "Test concrete" && m.Dead_Weight == 2400 && m.Capacity_Wet == 2400)},
      {Base, HOLDS(!m.Capacity_By_Water && m.Conductivity_Wet == 2.3f && m.Q_Over_R == 4000)},
      {Base, HOLDS(m.Arrhenius_Active && !m.dQ_Active && m.T_Reference == 293 && m.Heat_Model == "CORE")},
      {Base, HOLDS(m.Heat_H == 100000 && m.Heat_a == 0.05f && m.Heat_d == 4 && m.Hydration_Factor == 1)},
      // Air is stored times 100.
      {Base, HOLDS(m.W_C == 0.5 && m.Cement == 300 && std::abs(m.Air - 1.5) < 1e-12 && m.H_Limit == 1.05)},
      {Base, HOLDS(m.Temperature_Dependent && m.Fixed_Temperature == 20 && m.Default_Hydration == 0.8)},
      {Base, HOLDS(m.Diffusion_1 == 0.00001 && m.Diffusion_2 == 0.8 && m.Diffusion_3 == 0.05)},
      {Base, HOLDS(m.Consumption_Factor == 0.25 && m.Saturated_Permeability == 1e-9)},
      // Without weighted maturity the abscissae are the hours as written.
      {Base,
       HOLDS(m.Thermal_Dilatation.Value[1] == 0.00001f && Point_Count(m.E) == 2 && m.E.Abscissa[2] == 100)},
      {Base,
       HOLDS(m.E.Value[2] == 30000 && m.Fc.Value[1] == 40 && s.s1 == 0.3 && s.w1 == 0.03 && s.w2 == 0.2)},
      {Base_With("2400 capacity", "1800 2400 150 capacity"),
       HOLDS(m.Capacity_By_Water && m.Capacity_Dry == 1800 && m.Capacity_Wet == 2400 &&
             m.Water_Reference == 150)},
      {Base_With("2400 capacity", "2000 2 0 60000 10 500 capacity"),
       HOLDS(m.Latent_Active && Latent_Count(m) == 2 && m.Latent_Temperature[2] == 10 &&
             m.Latent_Peak[2] == 500)},
      // Nineteen pairs fill the line; the count decides how many are taken.
      {Base_With("2400 capacity", nineteen_pairs), HOLDS(Latent_Count(m) == 19 && m.Latent_Peak[19] == 1900)},
      {Base_With("2400 capacity", "2000 1 0 100 5 200"), HOLDS(Latent_Count(m) == 1)},
      {Base_With("2.3 conductivity", "1.5 2.5 100"),
       HOLDS(m.Conductivity_By_Water && m.Conductivity_Dry == 1.5 && m.Conductivity_Water_Reference == 100)},
      // Q/R of 0 means real time; two numbers switch on the correction below 20 oC.
      {Base_With("4000 activation", "0 activation"), HOLDS(m.Has_Maturity_Law && !m.Arrhenius_Active)},
      {Base_With("4000 activation", "4000 177"), HOLDS(m.dQ_Active && m.dQ_Over_R == 177)},
      // No maturity block: the heat model follows the conductivity.
      {With(With(Base_With("MATURITY", ""), "4000 activation", ""), "293 reference", ""),
       HOLDS(m.Has_Thermal && !m.Has_Maturity_Law && m.Heat_Model == "CORE")},
      {Base_With("293 reference", "293 reference\nMOISture 5 4"),
       HOLDS(m.Humidity_Active && m.Ac == 5 && m.Bc == 4)},
      // The hydration factor is held to [0, 1]; the stop flag is set by exactly 1.
      {Base_With(heat, "CONS 50 1.5"),
       HOLDS(m.Heat_Model == "CONS" && m.Heat_H == 50 && m.Hydration_Factor == 1)},
      {Base_With(heat, "CONS 50 -0.2"), HOLDS(m.Hydration_Factor == 0)},
      {Base_With(heat, "CONS 50 0.7 1"), HOLDS(m.Hydration_Factor == 0.7 && m.Hygral_Maturity_Stop)},
      {Base_With(heat, "CONS 50 0.7 1.0001"), HOLDS(!m.Hygral_Maturity_Stop)},
      {Base_With(heat, "CORE 100 0.06 4 0.9 1"), HOLDS(m.Hydration_Factor == 0.9 && m.Hygral_Maturity_Stop)},
      {Base_With(heat, "DANIsh 108800 40 0.9 0.95"),
       HOLDS(m.Heat_Model == "DANI" && m.Heat_a == 40 && m.Heat_b == 0.9f && m.Hydration_Factor == 0.95)},
      // Tabulated heat: H is the largest rise times the wet capacity.
      {Base_With(heat, "PIWI 4 0.8\n0 0\n24 30\n48 45\n72 44"),
       HOLDS(m.Heat_Table_Rise[3] == 45 && m.Heat_H == 45 * 2400 && m.Hydration_Factor == 0.8)},
      {Base_With(heat, "NO Heat"), HOLDS(m.Heat_Model == "NO H" && m.Hydration_Factor == 1)},
      // C = 1.3: 10 (1.3^0.755 - 1.3^-2.245) / ln 1.3 = 25.3155078 degree-hours per hour; a
      // temperature table keeps its abscissae.
      {weighted,
       HOLDS(m.Dutch_Active && std::abs(m.E.Abscissa[2] - 2531.55078) < 1e-2 && m.Nu.Abscissa[2] == 40)},
      {hygral, HOLDS(m.Isotherm_Table && !m.Diffusion_Bazant && m.Diffusion_3 == 0)},
      {hygral, HOLDS(m.Isotherm_Table_Data.Potential[3] == 1 &&
                     m.Isotherm_Table_Data.Value == std::vector<double>{1, 2, 3, 4, 5, 6})},
      // The record goes on in step after the crack table.
      {hygral, HOLDS(m.Crack_Diffusion_Factor[2] == 50 && m.Model_Name == "Linear Elastic")},
      // The flags are set by exactly 1.
      {Base_With("1 temperature flag", "0.5"), HOLDS(!m.Temperature_Dependent)},
      {Base_With("0 saturated flag", "1"), HOLDS(m.Saturated_Flow_Active)},
      {Base_With("NO STATISTICS", "STAT 0.15"),
       HOLDS(m.Statistics_Factor == 0.15 && m.Model_Name == "Linear Elastic")},
      // Without a variation line the model name is taken for it and the next line as the model: an
      // unknown one, which reads nothing, so the E table's first point is the separator.
      {Base_With("NO STATISTICS", ""), HOLDS(m.Model_Name == "MATU 2 modulus" && Point_Count(m.E) == 0)},
      {Before(Base_With("Linear Elastic", "Linear Elastic "), "MATU 2") + "separator\n",
       HOLDS(m.Model_Name == "Linear Elastic ")},
      {Base_With(soft, "ISOT 0.3 0.03 0.2 0.5 40 100 1"),
       HOLDS(s.Lvol_Active && s.alfa == 0.5 && s.Lch == 40 && s.Lvol == 100 && s.Mode == 1)},
      {Base_With(soft, "ISOT 0.3 0.03 0.2 0.5 40"), HOLDS(s.Has_Softening && !s.Lvol_Active)},
      // The sixth number of ISOM is not negative: softening and Lvol stay on.
      {Base_With(soft, "ISOM 2 0.2 50 -5 0 3\n0 1\n0.1 0"),
       HOLDS(s.Has_Softening && s.Lvol_Active && s.Lvol == -5 && s.ISOM_Extra[0] == 3)},
      {Base_With(soft, "ISOM 2 0.2 50\n0 1\n0.1 0"), HOLDS(!s.Lvol_Active)},
      {Base_With(soft, "EPFL 1 2 3 4 5 6 7 2.5"), HOLDS(s.EPFL_Active && s.Ccr == 2.5 && s.aft == 6)},
      {soil + "NONLinear 2\n0 0\n0.1 0.001\nseparator\n",
       HOLDS(m.Soil_Nonlinear && m.Soil_Curve_Strain[2] == 0.001)},
      {soil + "NO Tension 0.01\nseparator\n", HOLDS(m.Soil_Tension && m.Soil_Tension_Limit == 0.01)},
      {Chain_Text(), HOLDS(m.Temperature_Influence && m.QR == 2700 && m.Humidity_Influence && m.Ah == 0.3f)},
      {Chain_Text(), HOLDS(m.Stress_Level_At == 1 && m.Stress_Level_Ac == 1.5 && m.Transient_b == 0.00005)},
      // One row of chain coefficients per point of E; Ccr absent is 1.
      {Chain_Text(),
       HOLDS(Chain_Size(m) == 3 && m.Retardation_Time[3] == 100 && m.Chain_Coefficient[2][3] == 0.3)},
      {Chain_Text(),
       HOLDS(!s.Has_Softening && s.Bcr == 5000 && s.EPFL_w2 == 0.2 && s.Beta == 0.5 && s.Ccr == 1)},
      // Option lines without their numbers clear their flags; a transient a of 0 clears it too, and
      // five numbers set the humidity classes.
      {creep, HOLDS(!m.Temperature_Influence && !m.Humidity_Influence && !m.Stress_Level_Active)},
      {creep, HOLDS(!m.Transient_Creep && m.Humidity_Class_b == std::array<double, 4>{0.1, 0.2, 0.3, 0.4})},
      // The Burger model has no stress-level line. A negative sixth number of ISOM switches
      // softening off and is kept as 1000; with the fourth and the sixth negative there is no Lvol.
      {burger, HOLDS(m.Tau_B.Value[1] == 30 && m.Humidity_Class && m.Humidity_Class_b[3] == 0.00002)},
      {burger,
       HOLDS(!s.Has_Softening && s.ISOM_Extra[0] == 1000 && !s.Lvol_Active && s.Strength_Factor[2] == 0.3)},
  };
  for (const auto& [text, check] : rows) {
    SCOPED_TRACE(check.what);
    EXPECT_TRUE(check.holds(Read_One(text)));
  }
}

TEST(Database, InterfacesReinforcementAndTheirColours) {
  const Read_Result r = Read(
      "5 100\nJoint A\nINTErface 1\n1\n2\n3\n4\n5\n6\n7\n8\nJoint B\nINTE 2\n21\n22\n23\n"
      "Joint C\nINTE 3\n31\n32\n33\n34\n2 points\n0 1.2\n0.1 0\n"
      "Steel\nREINforcement\n2 points\n0 0\n2.5 500\n3\n0 0\n1 10\n2 12\n1000 dowel\n1 unloading\n0 third\n"
      "0.000012 dilatancy\nJoint D\nINTE 4\n");
  ASSERT_TRUE(r.ok) << r.report.Message;
  ASSERT_EQ(r.materials.count(), 5);
  Expect_All(r.materials[1],
             {HOLDS(m.Is_Interface && !m.Has_Thermal && !m.Has_Mechanical && !m.Is_Reinforcement),
              HOLDS(m.Interface_Type == 1 && m.Interface_Data[1] == 1 && m.Interface_Data[8] == 8)});
  // Type 2 keeps its data at 21..23, type 3 at 31..34 and its points from 40 on.
  Expect_All(r.materials[2], {HOLDS(m.Interface_Data[1] == 0 && m.Interface_Data[23] == 23)});
  Expect_All(r.materials[3], {HOLDS(m.Interface_Data[34] == 34 && m.Interface_Data[40] == 2 &&
                                    m.Interface_Data[42] == 1.2 && m.Interface_Data[43] == 0.1)});
  Expect_All(r.materials[4],
             {HOLDS(m.Is_Reinforcement && !m.Is_Interface && !m.Has_Mechanical && m.Steel_Stress_A[2] == 500),
              HOLDS(m.Steel_Strain_B.count() == 3 && m.Steel_Stress_B[3] == 12 && m.Steel_Const_1 == 1000),
              HOLDS(m.Steel_Const_2 == 1 && m.Steel_Dilatation.Value[1] == 0.000012f)});
  EXPECT_EQ(r.materials[5].Interface_Type, 4);  // an unknown type reads nothing more
  // A type below 1 is type 1 with its eight lines.
  EXPECT_EQ(Read_One("1\nJoint\nINTE 0\n1\n2\n3\n4\n5\n6\n7\n8\n").Interface_Data[8], 8);
  EXPECT_EQ(r.report.Format, 100);

  // The colours cycle through ten, red in the low byte: (200, 200, 200), (0, 0, 225), (0, 128,
  // 255), ..., (255, 0, 0).
  std::string twelve = "12 100\n";
  for (int i = 1; i <= 12; ++i)
    twelve += "Joint " + std::to_string(i) + "\nINTE 2\n1\n2\n3\n";
  const Read_Result c = Read(twelve);
  ASSERT_EQ(c.colours.count(), 12);
  EXPECT_EQ(std::tuple(c.colours[1], c.colours[10], c.colours[11]),
            std::tuple(200 + 200 * 256 + 200 * 65536, 255, c.colours[1]));
}

}  // namespace
}  // namespace pvx
