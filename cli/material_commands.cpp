// pvx materials: what a material database holds, as a list or as every field in JSON.
#include <cstdint>
#include <iostream>
#include <memory>
#include <string>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "commands.h"
#include "material/database.h"

namespace pvx::cli {

namespace {

using nlohmann::json;

// A single-precision field as the number it was written as (0.06, not 0.0599999986...).
double Shortest(float value) {
  return std::stod(fmt::format("{}", value));
}

template <class T>
json Array_Of(const Table<T>& table) {
  json out = json::array();
  for (const T& v : table) {
    if constexpr (std::is_same_v<T, float>) {
      out.push_back(Shortest(v));
    } else {
      out.push_back(v);
    }
  }
  return out;
}

json Property_Json(const Property_Table& t) {
  return {{"Is_Constant", t.Is_Constant},
          {"Depends_On_Maturity", t.Depends_On_Maturity},
          {"Depends_On_Temperature", t.Depends_On_Temperature},
          {"Point_Count", Point_Count(t)},
          {"Abscissa", Array_Of(t.Abscissa)},
          {"Value", Array_Of(t.Value)}};
}

json Softening_Json(const Softening& s) {
  return {{"Has_Softening", s.Has_Softening},
          {"s1", s.s1},
          {"w1", s.w1},
          {"w2", s.w2},
          {"alfa", s.alfa},
          {"Lch", s.Lch},
          {"EPFL_Active", s.EPFL_Active},
          {"Ct", s.Ct},
          {"Acr", s.Acr},
          {"Bcr", s.Bcr},
          {"EPFL_w1", s.EPFL_w1},
          {"EPFL_w2", s.EPFL_w2},
          {"aft", s.aft},
          {"Beta", s.Beta},
          {"Ccr", s.Ccr},
          {"Crack_Width", Array_Of(s.Crack_Width)},
          {"Strength_Factor", Array_Of(s.Strength_Factor)},
          {"ISOM_Extra", s.ISOM_Extra},
          {"Lvol_Active", s.Lvol_Active},
          {"Lvol", s.Lvol},
          {"Mode", s.Mode}};
}

json Material_Json(const Material& m) {
  json chain = json::array();
  for (const auto& row : m.Chain_Coefficient)
    chain.push_back(Array_Of(row));
  const Isotherm_Grid& g = m.Isotherm_Table_Data;
  return {
      {"Name", m.Name},
      {"Has_Thermal", m.Has_Thermal},
      {"Has_Hygral", m.Has_Hygral},
      {"Has_Mechanical", m.Has_Mechanical},
      {"Has_Maturity_Law", m.Has_Maturity_Law},
      {"Is_Interface", m.Is_Interface},
      {"Is_Reinforcement", m.Is_Reinforcement},
      {"Dead_Weight", m.Dead_Weight},
      {"Capacity_By_Water", m.Capacity_By_Water},
      {"Capacity_Dry", Shortest(m.Capacity_Dry)},
      {"Capacity_Wet", Shortest(m.Capacity_Wet)},
      {"Water_Reference", Shortest(m.Water_Reference)},
      {"Latent_Active", m.Latent_Active},
      {"Latent_Count", Latent_Count(m)},
      {"Latent_Temperature", Array_Of(m.Latent_Temperature)},
      {"Latent_Peak", Array_Of(m.Latent_Peak)},
      {"Conductivity_By_Water", m.Conductivity_By_Water},
      {"Conductivity_Dry", Shortest(m.Conductivity_Dry)},
      {"Conductivity_Wet", Shortest(m.Conductivity_Wet)},
      {"Conductivity_Water_Reference", Shortest(m.Conductivity_Water_Reference)},
      {"Arrhenius_Active", m.Arrhenius_Active},
      {"Q_Over_R", Shortest(m.Q_Over_R)},
      {"dQ_Active", m.dQ_Active},
      {"dQ_Over_R", Shortest(m.dQ_Over_R)},
      {"T_Reference", Shortest(m.T_Reference)},
      {"Humidity_Active", m.Humidity_Active},
      {"Ac", Shortest(m.Ac)},
      {"Bc", Shortest(m.Bc)},
      {"Hygral_Maturity_Stop", m.Hygral_Maturity_Stop},
      {"Dutch_Active", m.Dutch_Active},
      {"Dutch_C", Shortest(m.Dutch_C)},
      {"Heat_Model", m.Heat_Model},
      {"Heat_H", Shortest(m.Heat_H)},
      {"Heat_a", Shortest(m.Heat_a)},
      {"Heat_b", Shortest(m.Heat_b)},
      {"Heat_d", Shortest(m.Heat_d)},
      {"Heat_Table_Time", Array_Of(m.Heat_Table_Time)},
      {"Heat_Table_Rise", Array_Of(m.Heat_Table_Rise)},
      {"Hydration_Factor", m.Hydration_Factor},
      {"W_C", m.W_C},
      {"Cement", m.Cement},
      {"Air", m.Air},
      {"H_Limit", m.H_Limit},
      {"Temperature_Dependent", m.Temperature_Dependent},
      {"Fixed_Temperature", m.Fixed_Temperature},
      {"Hydration_Dependent", m.Hydration_Dependent},
      {"Default_Hydration", m.Default_Hydration},
      {"Crack_Diffusion_Active", m.Crack_Diffusion_Active},
      {"Diffusion_Bazant", m.Diffusion_Bazant},
      {"Diffusion_1", m.Diffusion_1},
      {"Diffusion_2", m.Diffusion_2},
      {"Diffusion_3", m.Diffusion_3},
      {"Consumption_Factor", m.Consumption_Factor},
      {"Saturated_Flow_Active", m.Saturated_Flow_Active},
      {"Saturated_Permeability", m.Saturated_Permeability},
      {"Isotherm_Table", m.Isotherm_Table},
      {"Isotherm_Table_Data",
       {{"Temperature", Array_Of(g.Temperature)},
        {"Hydration", Array_Of(g.Hydration)},
        {"Potential", Array_Of(g.Potential)},
        {"Value", g.Value}}},
      {"Crack_Diffusion_Damage", Array_Of(m.Crack_Diffusion_Damage)},
      {"Crack_Diffusion_Factor", Array_Of(m.Crack_Diffusion_Factor)},
      {"Thermal_Dilatation", Property_Json(m.Thermal_Dilatation)},
      {"Autogeneous_Dilatation", Property_Json(m.Autogeneous_Dilatation)},
      {"Hygral_Dilatation", Property_Json(m.Hygral_Dilatation)},
      {"Statistics_Active", m.Statistics_Active},
      {"Statistics_Factor", m.Statistics_Factor},
      {"Model_Name", m.Model_Name},
      {"E", Property_Json(m.E)},
      {"Nu", Property_Json(m.Nu)},
      {"Ft", Property_Json(m.Ft)},
      {"Fc", Property_Json(m.Fc)},
      {"E_Mod_A", Property_Json(m.E_Mod_A)},
      {"Tau_A", Property_Json(m.Tau_A)},
      {"E_Mod_B", Property_Json(m.E_Mod_B)},
      {"Tau_B", Property_Json(m.Tau_B)},
      {"Temperature_Influence", m.Temperature_Influence},
      {"QR", Shortest(m.QR)},
      {"Humidity_Influence", m.Humidity_Influence},
      {"Ah", Shortest(m.Ah)},
      {"Stress_Level_Active", m.Stress_Level_Active},
      {"Stress_Level_At", m.Stress_Level_At},
      {"Stress_Level_Ac", m.Stress_Level_Ac},
      {"Transient_Creep", m.Transient_Creep},
      {"Transient_a", m.Transient_a},
      {"Transient_b", m.Transient_b},
      {"Humidity_Class", m.Humidity_Class},
      {"Humidity_Class_b", m.Humidity_Class_b},
      {"Chain_Size", Chain_Size(m)},
      {"Retardation_Time", Array_Of(m.Retardation_Time)},
      {"Chain_Coefficient", chain},
      {"Softening_Law", Softening_Json(m.Softening_Law)},
      {"Soil_Nonlinear", m.Soil_Nonlinear},
      {"Soil_Curve_Stress", Array_Of(m.Soil_Curve_Stress)},
      {"Soil_Curve_Strain", Array_Of(m.Soil_Curve_Strain)},
      {"Soil_Tension", m.Soil_Tension},
      {"Soil_Tension_Limit", m.Soil_Tension_Limit},
      {"Interface_Type", m.Interface_Type},
      {"Interface_Data", m.Interface_Data},
      {"Steel_Strain_A", Array_Of(m.Steel_Strain_A)},
      {"Steel_Stress_A", Array_Of(m.Steel_Stress_A)},
      {"Steel_Strain_B", Array_Of(m.Steel_Strain_B)},
      {"Steel_Stress_B", Array_Of(m.Steel_Stress_B)},
      {"Steel_Const_1", m.Steel_Const_1},
      {"Steel_Const_2", m.Steel_Const_2},
      {"Steel_Const_3", m.Steel_Const_3},
      {"Steel_Dilatation", Property_Json(m.Steel_Dilatation)},
  };
}

// The kind of a material in words: "interface type 2", "reinforcement", or the sections it has
// ("thermal, hygral, mechanical: Maxwell Chain").
std::string Kind_Of(const Material& m) {
  if (m.Is_Interface) return fmt::format("interface type {}", m.Interface_Type);
  if (m.Is_Reinforcement) return "reinforcement";
  std::string kind;
  auto add = [&](const std::string& part) { kind += (kind.empty() ? "" : ", ") + part; };
  if (m.Has_Thermal) add("thermal");
  if (m.Has_Hygral) add("hygral");
  if (m.Has_Mechanical) add("mechanical: " + m.Model_Name);
  return kind.empty() ? "no analysis data" : kind;
}

void Print_List(const std::string& path, const Database_Report& report, const Table<Material>& materials,
                std::ostream& out) {
  out << fmt::format("Database:   {}\n", path);
  out << fmt::format("Format:     {}\n", report.Format);
  out << fmt::format("Materials:  {}\n", materials.count());
  std::size_t width = 4;
  for (const Material& m : materials)
    width = std::max(width, m.Name.size());
  out << fmt::format("{:>3}  {:<{}}  {:<5}  {}\n", "No.", "Name", width, "Heat", "Kind");
  for (int i = 1; i <= materials.count(); ++i) {
    const Material& m = materials[i];
    const std::string heat = m.Has_Thermal ? m.Heat_Model : "-";
    out << fmt::format("{:>3}  {:<{}}  {:<5}  {}\n", i, m.Name, width, heat, Kind_Of(m));
  }
}

}  // namespace

void Add_Material_Commands(CLI::App& app, int& status) {
  struct Options {
    std::string path;
    bool json = false;
  };
  auto options = std::make_shared<Options>();
  auto* materials = app.add_subcommand("materials", "List the materials of a material database");
  materials->add_option("DATABASE", options->path, "Material database (text)")->required();
  materials->add_flag("--json", options->json, "Print every field of every material as JSON");
  materials->callback([&status, options] {
    Table<Material> table;
    Table<std::int32_t> colours;
    Database_Report report;
    if (!Read_Material_Database(options->path, Database_Settings{}, table, colours, report)) {
      std::cerr << report.Message << "\n";
      status = Exit_Failure;
      return;
    }
    if (options->json) {
      json list = json::array();
      for (const Material& m : table)
        list.push_back(Material_Json(m));
      const json out = {{"Database", options->path},
                        {"Format", report.Format},
                        {"Material_Count", table.count()},
                        {"Material_Color", Array_Of(colours)},
                        {"Material", list}};
      std::cout << out.dump(2) << "\n";
    } else {
      Print_List(options->path, report, table, std::cout);
    }
    status = Exit_Ok;
  });
}

}  // namespace pvx::cli
