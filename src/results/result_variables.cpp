#include "results/result_variables.h"

#include <array>
#include <cmath>

#include "app/units.h"

namespace pvx {

namespace {

using L = Result_Location;

constexpr Result_Variable_Info Empty_Row{};

// Rows 1..40 of the extreme table; index 0 is the empty record.
constexpr std::array<Result_Variable_Info, Result_Variable_Count + 1> Rows = [] {
  std::array<Result_Variable_Info, Result_Variable_Count + 1> r{};
  auto set = [&r](int v, const char* name, int kind, int slot, L where, bool mech) {
    r[static_cast<std::size_t>(v)] = {v, name, kind, slot, where, mech};
  };
  for (int v = 1; v <= Result_Variable_Count; ++v)
    set(v, "", 0, 0, L::None, false);
  set(1, "Temperature", Unit_Temperature, Slot_REA, L::Node, false);
  set(2, "Maturity", 0, Slot_REC, L::Point, false);
  set(3, "C-Maturity", 0, Slot_RED, L::Point, false);
  set(4, "Moisture potential", 0, Slot_REB, L::Node, false);
  set(5, "Moisture content", Unit_Density, Slot_REE, L::Point, false);
  set(6, "Water temperature in the selected cooling circuit", 0, 0, L::Circuit, false);
  set(7, "Flow rate of the selected circuit", 0, 0, L::Circuit, false);
  set(8, "Cooling capacity of the selected circuit", 0, 0, L::Circuit, false);
  set(9, "Tensile strength", Unit_Stress_2, Slot_REF, L::Point, false);
  set(10, "Compressive strength", Unit_Stress_2, Slot_REH, L::Point, false);
  set(11, "Displacement Ux", Unit_Length_mm, Slot_REI, L::Node, true);
  set(12, "Displacement Uy", Unit_Length_mm, Slot_REI, L::Node, true);
  set(13, "Major principal stress", Unit_Stress_2, Slot_REJ, L::Corner, true);
  set(14, "Minor principal stress", Unit_Stress_2, Slot_REJ, L::Corner, true);
  set(15, "Stress Szz", Unit_Stress_2, Slot_REJ, L::Corner, true);
  set(16, "Stress Sxx", Unit_Stress_2, Slot_REJ, L::Corner, true);
  set(17, "Stress Syy", Unit_Stress_2, Slot_REJ, L::Corner, true);
  set(18, "Stress Sxy", Unit_Stress_2, Slot_REJ, L::Corner, true);
  set(19, "Ratio Szz/ft", Unit_Stress_2, Slot_REJ, L::Corner, true);
  set(20, "Total displacement", Unit_Length_mm, Slot_REI, L::Node, true);
  set(21, "Reaction", Unit_Force_kN, Slot_REK, L::Reaction, true);
  set(22, "Crack opening", Unit_Length_mm, Slot_REL, L::Point, true);
  set(23, "Normal stress in interfaces", Unit_Stress_2, Slot_REM, L::Interface, true);
  set(24, "Shear stress in interfaces", Unit_Stress_2, Slot_REM, L::Interface, true);
  set(25, "Normal stress in rebars", Unit_Stress_2, Slot_REO, L::Bar, true);
  set(26, "Shear stress at rebars", Unit_Stress_2, Slot_REO, L::Bar, true);
  set(27, "Slip of rebars", Unit_Length_mm, Slot_REO, L::Bar, true);
  set(30, "", Unit_Stress_2, 0, L::None, true);
  set(40, "Degree of hydration", 0, Slot_REP, L::Point, false);
  return r;
}();

}  // namespace

char Slot_Letter(int slot) {
  static constexpr char letters[] = {0,   'S', 'A', 'B', 'C', 'D', 'E', 'F', 'H',
                                     'I', 'J', 'K', 0,   'L', 'M', 'O', 'P'};
  if (slot < 1 || slot > Result_Slot_Count) return 0;
  return letters[slot];
}

const Result_Variable_Info& Result_Variable(int v) {
  if (v < 1 || v > Result_Variable_Count) return Empty_Row;
  return Rows[static_cast<std::size_t>(v)];
}

int Extreme_Row_Unit_Kind(int v, int project_version) {
  if ((v == 26 || v == 27 || v == 30) && project_version <= 106) return 0;
  return Result_Variable(v).unit_kind;
}

int Slot_Of_Variable(int viewer_variable) {
  switch (viewer_variable) {
    case 30:
    case 31:
      return Slot_REM;
    case 32:
    case 33:
    case 34:
      return Slot_REO;
    default:
      if (viewer_variable >= 23 && viewer_variable <= 29) return 0;
      return Result_Variable(viewer_variable).slot;
  }
}

int Extreme_Row_Of_Variable(int viewer_variable) {
  if (viewer_variable >= 30 && viewer_variable <= 34) return viewer_variable - 7;
  return viewer_variable;
}

const char* Viewer_Variable_Name(int viewer_variable) {
  if (viewer_variable >= 30 && viewer_variable <= 34)
    return Result_Variable(Extreme_Row_Of_Variable(viewer_variable)).name;
  return Result_Variable(viewer_variable).name;
}

float Major_Principal(double sxx, double syy, double sxy) {
  const double half = (sxx - syy) / 2;
  return static_cast<float>((sxx + syy) / 2 + std::sqrt(half * half + sxy * sxy));
}

float Minor_Principal(double sxx, double syy, double sxy) {
  const double half = (sxx - syy) / 2;
  return static_cast<float>((sxx + syy) / 2 - std::sqrt(half * half + sxy * sxy));
}

}  // namespace pvx
