// The material record: one entry of the material database, found in the model by its name.
//
// A record is filled by the database reader (database.h) and read, never changed, by the property
// evaluators (properties.h) and the analysis. Which fields mean anything depends on the kind:
// - a concrete or other continuum material has `Dead_Weight` and any of the thermal, hygral and
//   mechanical sections (`Has_Thermal`, `Has_Hygral`, `Has_Mechanical`);
// - an interface material (`Is_Interface`) has only `Interface_Type` and `Interface_Data`;
// - a reinforcement material (`Is_Reinforcement`) has only the two steel curves, the three steel
//   constants and `Steel_Dilatation`.
// Fields of a section that a material lacks keep their defaults.
//
// Tables are numbered from 1; a table's count is its size. Fields that the analysis takes in
// single precision are `float`, as the reader stores them.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "app/table.h"

namespace pvx {

// A property that is a constant or a table by maturity or by temperature (E-modulus, strengths,
// Poisson ratio, dilatation coefficients, ...). A constant has one point: its value is Value(1) and
// Abscissa(1) is 0. A table has at least 2 points with strictly rising abscissae: maturity in hours
// (weighted maturity for a material with `Dutch_Active`) or temperature in oC.
struct Property_Table {
  bool Is_Constant = false;
  bool Depends_On_Maturity = false;
  bool Depends_On_Temperature = false;
  Table<float> Abscissa;
  Table<float> Value;
  bool operator==(const Property_Table&) const = default;
};
inline int Point_Count(const Property_Table& t) {
  return t.Value.count();
}

// Tensile softening of a cracking material. Bilinear (`ISOT`): the stress falls from ft to s1 x ft
// at crack width w1 and to 0 at w2. Multilinear (`ISOM`): the points (Crack_Width(i),
// Strength_Factor(i)), 2 to 21 of them; an empty table means bilinear. EPFL damage is a block of
// its own with its own flag.
struct Softening {
  bool Has_Softening = false;
  double s1 = 0;    // strength factor at the knee, [-]
  double w1 = 0;    // crack width at the knee, mm
  double w2 = 0;    // crack width at zero stress, mm
  double alfa = 0;  // unloading parameter, [-]
  double Lch = 0;   // crack band width, mm
  // EPFL damage block.
  bool EPFL_Active = false;
  double Ct = 0, Acr = 0, Bcr = 0, EPFL_w1 = 0, EPFL_w2 = 0, aft = 0, Beta = 0;
  double Ccr = 1;  // a value of 0 or less in the database is read as 1
  // Multilinear law; the count is the table size.
  Table<double> Crack_Width;      // mm, strictly rising
  Table<double> Strength_Factor;  // [-]
  // Numbers 6 to 8 of an `ISOM` line, kept as read; a negative sixth number switches the softening
  // off and is kept as 1000.
  std::array<double, 3> ISOM_Extra{};
  bool Lvol_Active = false;
  double Lvol = 0;        // characteristic volume, mm
  std::int16_t Mode = 0;  // 1: Lch is the crack band width
  bool operator==(const Softening&) const = default;
};

// The sorption isotherm as a table: evaporable water (kg/m3) on three axes, temperature (oC),
// degree of hydration and potential, each rising. `Value` holds one entry per combination with
// the potential index running fastest, then hydration, then temperature, so that temperature i,
// hydration j and potential k sit at Value[((i - 1) n2 + (j - 1)) n3 + k - 1].
struct Isotherm_Grid {
  Table<double> Temperature, Hydration, Potential;
  std::vector<double> Value;
  bool operator==(const Isotherm_Grid&) const = default;
};

struct Material {
  std::string Name;  // the name line as it stands in the database, blanks included

  // Kind of material and the sections present.
  bool Has_Thermal = false;
  bool Has_Hygral = false;
  bool Has_Mechanical = false;
  bool Has_Maturity_Law = false;  // the thermal section has a `MATU` block
  bool Is_Interface = false;
  bool Is_Reinforcement = false;

  double Dead_Weight = 0;  // kg/m3

  // Heat capacity, kJ/m3K: constant `Capacity_Wet`, or linear in the evaporable water w (kg/m3)
  // from `Capacity_Dry` at w = 0 to `Capacity_Wet` at w = `Water_Reference`. A constant capacity
  // may carry latent peaks one degree wide: `Latent_Peak`(i) is added around
  // `Latent_Temperature`(i) (oC). `Latent_Count` is the size of both tables.
  bool Capacity_By_Water = false;
  float Capacity_Dry = 0, Capacity_Wet = 0, Water_Reference = 0;
  bool Latent_Active = false;
  Table<double> Latent_Temperature, Latent_Peak;

  // Conductivity, W/mK, by the same rule as the capacity (no latent part).
  bool Conductivity_By_Water = false;
  float Conductivity_Dry = 0, Conductivity_Wet = 0, Conductivity_Water_Reference = 0;

  // Maturity law: Arrhenius rate with Q/R (K), optionally raised below 20 oC by dQ/R per degree,
  // about `T_Reference` (K); humidity reduction by Ac, Bc; maturity stops below a humidity when
  // `Hygral_Maturity_Stop`.
  bool Arrhenius_Active = false;
  float Q_Over_R = 0;
  bool dQ_Active = false;
  float dQ_Over_R = 0;
  float T_Reference = 0;
  bool Humidity_Active = false;
  float Ac = 0, Bc = 0;
  bool Hygral_Maturity_Stop = false;
  // Weighted ("Dutch") maturity with the factor C; mechanical maturity tables are then held in
  // weighted maturity.
  bool Dutch_Active = false;
  float Dutch_C = 0;

  // Heat model, by its four-letter key: "CONS", "CORE", "DANI", "PIWI" or "NO H" (empty when the
  // material has no thermal section).
  std::string Heat_Model;
  float Heat_H = 0;  // kJ/m3 (for "CONS" the heat rate, kJ/m3h)
  float Heat_a = 0, Heat_b = 0;
  float Heat_d = 0;  // hours
  // "PIWI": adiabatic temperature rise (oC) against maturity (hours).
  Table<double> Heat_Table_Time, Heat_Table_Rise;
  double Hydration_Factor = 1;  // 0 to 1

  // Hygral section. `Air` is stored in the unit of the database times 100.
  double W_C = 0, Cement = 0, Air = 0, H_Limit = 0;
  bool Temperature_Dependent = false;
  double Fixed_Temperature = 0;
  bool Hydration_Dependent = false;
  double Default_Hydration = 0;
  bool Crack_Diffusion_Active = false;
  // Diffusion law: Bazant with D0 (m2/h), ht, a, or Mensi with A1 (m2/h), A2.
  bool Diffusion_Bazant = false;
  double Diffusion_1 = 0, Diffusion_2 = 0, Diffusion_3 = 0;
  double Consumption_Factor = 0;
  bool Saturated_Flow_Active = false;
  double Saturated_Permeability = 0;  // m/h
  // The sorption isotherm as a table (`Isotherm_Table_Data`) instead of the formula.
  bool Isotherm_Table = false;
  Isotherm_Grid Isotherm_Table_Data;
  // Diffusion factor against damage (both tables the same size).
  Table<double> Crack_Diffusion_Damage, Crack_Diffusion_Factor;

  // Mechanical section.
  Property_Table Thermal_Dilatation;      // 1/oC
  Property_Table Autogeneous_Dilatation;  // [-]
  Property_Table Hygral_Dilatation;       // [-]
  bool Statistics_Active = false;
  double Statistics_Factor = 0;  // variation factor
  // The model line as it stands: "Linear Elastic", "Nonlinear Elastic", "Burger Model",
  // "Maxwell Chain", "Soil", or anything else (no model).
  std::string Model_Name;
  Property_Table E, Nu, Ft, Fc;  // MPa, [-], MPa, MPa
  // Burger model: the Maxwell (A) and Kelvin (B) units, moduli in MPa and times in hours.
  Property_Table E_Mod_A, Tau_A, E_Mod_B, Tau_B;
  // Creep options of the Burger model and the Maxwell chain.
  bool Temperature_Influence = false;
  float QR = 0;  // K
  bool Humidity_Influence = false;
  float Ah = 0;
  bool Stress_Level_Active = false;  // Maxwell chain only
  double Stress_Level_At = 0, Stress_Level_Ac = 0;
  bool Transient_Creep = false;
  double Transient_a = 0;  // 1/MPaK
  double Transient_b = 0;  // 1/MPa
  bool Humidity_Class = false;
  std::array<double, 4> Humidity_Class_b{};  // b1..b4
  // Maxwell chain: retardation times (hours), one per unit (the chain size is their count), and
  // one row of unit coefficients per point of E (one row for a constant E).
  Table<double> Retardation_Time;
  Table<Table<double>> Chain_Coefficient;
  Softening Softening_Law;

  // Soil: a nonlinear curve (stress MPa, strain), or a tension limit.
  bool Soil_Nonlinear = false;
  Table<double> Soil_Curve_Stress, Soil_Curve_Strain;
  bool Soil_Tension = false;
  double Soil_Tension_Limit = 0;

  // Interface material: type 1 to 3 (A, B, C) and its values, indexed 0 to 100. Type A fills 1..8,
  // type B 21..23, type C 31..34, the point count in 40 and point i in 39 + 2i and 40 + 2i.
  std::int16_t Interface_Type = 0;
  std::array<double, 101> Interface_Data{};

  // Reinforcement: curve A is strain (1/1000) against stress (MPa) of the steel, curve B slip (mm)
  // against bond stress (MPa); the constants and the bar's thermal dilatancy (a constant table).
  Table<double> Steel_Strain_A, Steel_Stress_A, Steel_Strain_B, Steel_Stress_B;
  double Steel_Const_1 = 0, Steel_Const_2 = 0, Steel_Const_3 = 0;
  Property_Table Steel_Dilatation;

  bool operator==(const Material&) const = default;
};

inline int Latent_Count(const Material& m) {
  return m.Latent_Temperature.count();
}
inline int Chain_Size(const Material& m) {
  return m.Retardation_Time.count();
}

}  // namespace pvx
