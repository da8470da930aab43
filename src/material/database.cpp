#include "material/database.h"

#include <algorithm>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace pvx {

std::string Database_Open_Message(const std::string& name) {
  return "Material Database (" + name + ") could not be opened. Do you want to browse for this file ?";
}

namespace {

constexpr std::int32_t Colour_Cycle[10] = {
    Pack_RGB(200, 200, 200), Pack_RGB(0, 0, 225), Pack_RGB(0, 128, 255), Pack_RGB(0, 255, 255),
    Pack_RGB(0, 255, 128),   Pack_RGB(0, 255, 0), Pack_RGB(128, 255, 0), Pack_RGB(255, 255, 0),
    Pack_RGB(255, 128, 0),   Pack_RGB(255, 0, 0)};

bool Fail(const Database_Reader& r, Database_Report& report, Database_Fault fault, std::string message) {
  report.Fault = fault;
  report.Message = std::move(message);
  report.Line = r.Database_Line_Number;
  return false;
}
// A fault the reader names.
bool Format_Fault(const Database_Reader& r, Database_Report& report, const char* message) {
  return Fail(r, report, Database_Fault::Format, message);
}
// What the run-time trap around the reader catches: a value that its field cannot hold, an index
// beyond a fixed array, an end of file inside a record.
bool Corrupted(const Database_Reader& r, Database_Report& report) {
  return Fail(r, report, Database_Fault::Corrupted, Database_Corrupted_Message);
}

// Assignment of a number to a 16-bit integer field: rounded to the nearest integer, halves to
// even; a value beyond the range of the field is a fault.
bool To_I16(double v, std::int16_t& out) {
  const double rounded = std::nearbyint(v);
  if (!(rounded >= -32768.0 && rounded <= 32767.0)) return false;
  out = static_cast<std::int16_t>(rounded);
  return true;
}
// Assignment to a single-precision field; a value beyond its range is a fault.
bool To_Single(double v, float& out) {
  if (!(std::fabs(v) <= static_cast<double>(FLT_MAX))) return false;
  out = static_cast<float>(v);
  return true;
}

// The integer a number stands for, as a count to compare with limits: rounded like To_I16 but
// never out of range, so that a huge count fails its limit test instead of overflowing.
double Rounded(double v) {
  return std::nearbyint(v);
}

// Conversion of an unsigned decimal text "ddd.ddd" with an optional exponent "E[+-]ddd" (the
// decimal sign already a point). False when the value overflows a double; an underflow gives 0.
bool Convert_Unsigned(const std::string& s, double& value) {
  const auto [end, error] = std::from_chars(s.data(), s.data() + s.size(), value);
  if (error == std::errc() && end == s.data() + s.size()) return std::isfinite(value);
  if (error != std::errc::result_out_of_range) return false;
  // Out of range: tell overflow from underflow by the decimal exponent of the first significant
  // digit.
  long long position = 0;  // exponent of the first significant digit, before the written exponent
  bool found = false;
  long long integer_digits = 0;
  std::size_t i = 0;
  for (; i < s.size() && s[i] != '.' && s[i] != 'E' && s[i] != 'e'; ++i) {
    if (!found && s[i] != '0') {
      found = true;
      integer_digits = 0;
    }
    if (found) ++integer_digits;
  }
  if (found) {
    position = integer_digits - 1;
  } else if (i < s.size() && s[i] == '.') {
    long long zeros = 0;
    for (++i; i < s.size() && s[i] != 'E' && s[i] != 'e'; ++i) {
      if (s[i] != '0') {
        found = true;
        break;
      }
      ++zeros;
    }
    position = -(zeros + 1);
  }
  if (!found) {
    value = 0;
    return true;
  }
  long long exponent = 0;
  const std::size_t e = s.find_first_of("Ee");
  if (e != std::string::npos) {
    std::size_t j = e + 1;
    bool negative = false;
    if (j < s.size() && (s[j] == '+' || s[j] == '-')) negative = s[j++] == '-';
    for (; j < s.size(); ++j)
      exponent = std::min<long long>(exponent * 10 + (s[j] - '0'), 1'000'000'000LL);
    if (negative) exponent = -exponent;
  }
  if (position + exponent > 0) return false;
  value = 0;
  return true;
}

bool Is_Digit(char c) {
  return c >= '0' && c <= '9';
}

// Stores the token in hand in the next number slot.
bool Store_Token(Database_Reader& r, std::string& token, Database_Report& report) {
  bool ok = false;
  const double value = Parse_Database_Number(token, r.Decimal_Comma, ok);
  if (!ok || r.Number_Count >= Max_Database_Numbers) {
    return Fail(r, report, Database_Fault::Syntax,
                "Syntax error in line " + std::to_string(r.Database_Line_Number) + "\n" + r.Raw_Line);
  }
  r.Number[++r.Number_Count] = value;
  token.clear();
  return true;
}

// Reads a line and checks that it holds a number of numbers within [low, high].
bool Read_Counted(Database_Reader& r, Database_Report& report, int low, int high, const char* message) {
  if (!Read_Database_Line(r, report)) return false;
  if (r.Number_Count < low || r.Number_Count > high) return Format_Fault(r, report, message);
  return true;
}

// Heat capacity or conductivity: one number (constant), or three (linear in the water content
// between dry and wet). `latent` allows the capacity's latent pairs behind a count.
bool Read_Water_Law(Database_Reader& r, Database_Report& report, bool latent, bool& by_water, float& dry,
                    float& wet, float& reference, Material* latent_of) {
  if (!Read_Database_Line(r, report)) return false;
  const int n = r.Number_Count;
  if (n == 1) {
    if (!To_Single(r.Number[1], wet)) return Corrupted(r, report);
    return true;
  }
  if (n == 3) {
    if (!To_Single(r.Number[1], dry) || !To_Single(r.Number[2], wet) || !To_Single(r.Number[3], reference))
      return Corrupted(r, report);
    by_water = true;
    if (reference == 0.0f) return Format_Fault(r, report, "illegal water content");
    return true;
  }
  if (n > 3 && latent) {
    if (!To_Single(r.Number[1], wet)) return Corrupted(r, report);
    std::int16_t pairs = 0;
    if (!To_I16(r.Number[2], pairs) || pairs > Max_Latent_Pairs) return Corrupted(r, report);
    latent_of->Latent_Active = true;
    for (int i = 1; i <= pairs; ++i) {
      latent_of->Latent_Temperature.add(r.Number[2 * i + 1]);
      latent_of->Latent_Peak.add(r.Number[2 * i + 2]);
    }
    return true;
  }
  return Format_Fault(r, report, "error 1");
}

bool Read_Thermal(Database_Reader& r, Database_Report& report, Material& m) {
  if (!Read_Water_Law(r, report, true, m.Capacity_By_Water, m.Capacity_Dry, m.Capacity_Wet, m.Water_Reference,
                      &m))
    return false;
  if (!Read_Water_Law(r, report, false, m.Conductivity_By_Water, m.Conductivity_Dry, m.Conductivity_Wet,
                      m.Conductivity_Water_Reference, nullptr))
    return false;

  if (!Read_Database_Line(r, report)) return false;
  if (r.Key == "MATU") {
    m.Has_Maturity_Law = true;
    if (!Read_Database_Line(r, report)) return false;
    if (r.Number_Count == 1) {
      if (!To_Single(r.Number[1], m.Q_Over_R)) return Corrupted(r, report);
      m.Arrhenius_Active = m.Q_Over_R > 0;
    } else if (r.Number_Count == 2) {
      if (!To_Single(r.Number[1], m.Q_Over_R) || !To_Single(r.Number[2], m.dQ_Over_R))
        return Corrupted(r, report);
      m.Arrhenius_Active = true;
      m.dQ_Active = true;
    } else {
      return Format_Fault(r, report, "error 2");
    }
    if (!Read_Counted(r, report, 1, 1, "error 3")) return false;
    if (!To_Single(r.Number[1], m.T_Reference)) return Corrupted(r, report);
    if (!Read_Database_Line(r, report)) return false;
  }
  if (r.Key == "C_ME") {
    if (r.Number_Count != 1) return Format_Fault(r, report, "error 4");
    if (!To_Single(r.Number[1], m.Dutch_C)) return Corrupted(r, report);
    m.Dutch_Active = true;
    if (!Read_Database_Line(r, report)) return false;
  }
  if (r.Key == "MOIS") {
    if (r.Number_Count != 2) return Format_Fault(r, report, "error 5");
    if (!To_Single(r.Number[1], m.Ac) || !To_Single(r.Number[2], m.Bc)) return Corrupted(r, report);
    m.Humidity_Active = true;
    if (!Read_Database_Line(r, report)) return false;
  }

  m.Heat_Model = r.Key;
  const int n = r.Number_Count;
  int factor_slot = 0;  // the number that holds the hydration factor; the stop flag follows it
  if (r.Key == "CONS") {
    if (n < 1 || n > 3) return Format_Fault(r, report, "error 6");
    if (!To_Single(r.Number[1], m.Heat_H)) return Corrupted(r, report);
    factor_slot = 2;
  } else if (r.Key == "CORE" || r.Key == "DANI") {
    if (n < 3 || n > 5) return Format_Fault(r, report, r.Key == "CORE" ? "error 7" : "error 8");
    float& third = r.Key == "CORE" ? m.Heat_d : m.Heat_b;
    if (!To_Single(r.Number[1], m.Heat_H) || !To_Single(r.Number[2], m.Heat_a) ||
        !To_Single(r.Number[3], third))
      return Corrupted(r, report);
    factor_slot = 4;
  } else if (r.Key == "PIWI") {
    if (n < 1 || n > 3) return Format_Fault(r, report, "error 8");
    std::int16_t points = 0;
    if (!To_I16(r.Number[1], points)) return Corrupted(r, report);
    // The factor and flag are on this line; take them before the points are read.
    const double factor = n >= 2 ? r.Number[2] : 1.0;
    const bool stop = n >= 3 && r.Number[3] == 1.0;
    double largest = -1000;
    for (int i = 1; i <= points; ++i) {
      if (!Read_Database_Line(r, report)) return false;
      m.Heat_Table_Time.add(r.Number[1]);
      m.Heat_Table_Rise.add(r.Number[2]);
      largest = std::max(largest, r.Number[2]);
    }
    if (!To_Single(largest * static_cast<double>(m.Capacity_Wet), m.Heat_H)) return Corrupted(r, report);
    m.Hydration_Factor = std::clamp(factor, 0.0, 1.0);
    m.Hygral_Maturity_Stop = stop;
  } else if (r.Key != "NO H") {
    return Format_Fault(r, report, "Error 9");
  }
  if (factor_slot > 0) {
    m.Hydration_Factor = n >= factor_slot ? std::clamp(r.Number[factor_slot], 0.0, 1.0) : 1.0;
    m.Hygral_Maturity_Stop = n >= factor_slot + 1 && r.Number[factor_slot + 1] == 1.0;
  }
  return Read_Database_Line(r, report);
}

// One axis of the isotherm table: a count line and a line per value.
bool Read_Axis(Database_Reader& r, Database_Report& report, Table<double>& axis) {
  if (!Read_Database_Line(r, report)) return false;
  std::int16_t n = 0;
  if (!To_I16(r.Number[1], n) || n < 1) return Corrupted(r, report);
  for (int i = 1; i <= n; ++i) {
    if (!Read_Database_Line(r, report)) return false;
    axis.add(r.Number[1]);
  }
  return true;
}

bool Read_Hygral(Database_Reader& r, Database_Report& report, Material& m) {
  if (!Read_Counted(r, report, 1, 2, "Error 9c")) return false;
  m.W_C = r.Number[1];
  m.Isotherm_Table = r.Number_Count == 2 && r.Number[2] == 1.0;
  if (!Read_Counted(r, report, 1, 1, "Error 9d")) return false;
  m.Cement = r.Number[1];
  if (!Read_Counted(r, report, 1, 1, "Error 9d1")) return false;
  m.Air = r.Number[1] * 100.0;
  if (!std::isfinite(m.Air)) return Corrupted(r, report);
  if (!Read_Counted(r, report, 1, 1, "Error 9d2")) return false;
  m.H_Limit = r.Number[1];
  if (!Read_Counted(r, report, 1, 1, "Error 9e")) return false;
  m.Temperature_Dependent = r.Number[1] == 1.0;
  if (!Read_Counted(r, report, 1, 1, "Error 9f")) return false;
  m.Fixed_Temperature = r.Number[1];
  if (!Read_Counted(r, report, 1, 1, "Error 9g")) return false;
  m.Hydration_Dependent = r.Number[1] == 1.0;
  if (!Read_Counted(r, report, 1, 2, "Error 9h")) return false;
  m.Default_Hydration = r.Number[1];
  if (r.Number_Count == 2) {
    std::int16_t crack = 0;
    if (!To_I16(r.Number[2], crack)) return Corrupted(r, report);
    m.Crack_Diffusion_Active = crack != 0;
  }
  if (!Read_Counted(r, report, 1, 1, "Error 9h")) return false;
  m.Diffusion_1 = r.Number[1];
  if (!Read_Counted(r, report, 1, 1, "Error 9i")) return false;
  m.Diffusion_2 = r.Number[1];
  if (!Read_Counted(r, report, 0, 1, "Error 9j")) return false;
  m.Diffusion_3 = r.Number[1];
  m.Diffusion_Bazant = r.Number_Count == 1;
  if (!Read_Counted(r, report, 1, 1, "Error 9k")) return false;
  m.Consumption_Factor = r.Number[1];
  if (!Read_Counted(r, report, 1, 1, "Error 9l")) return false;
  m.Saturated_Flow_Active = r.Number[1] == 1.0;
  if (!Read_Counted(r, report, 1, 1, "Error 9m")) return false;
  m.Saturated_Permeability = r.Number[1];

  if (m.Isotherm_Table) {
    Isotherm_Grid& g = m.Isotherm_Table_Data;
    if (!Read_Axis(r, report, g.Temperature) || !Read_Axis(r, report, g.Hydration) ||
        !Read_Axis(r, report, g.Potential))
      return false;
    // At most 32767^3 values: the count is reached only by reading as many lines, so the table
    // grows with the text and never ahead of it.
    const long long values =
        static_cast<long long>(g.Temperature.count()) * g.Hydration.count() * g.Potential.count();
    for (long long i = 0; i < values; ++i) {
      if (!Read_Database_Line(r, report)) return false;
      g.Value.push_back(r.Number[1]);
    }
  }
  if (m.Crack_Diffusion_Active) {
    if (!Read_Database_Line(r, report)) return false;
    std::int16_t n = 0;
    if (!To_I16(r.Number[1], n)) return Corrupted(r, report);
    for (int i = 1; i <= n; ++i) {
      if (!Read_Database_Line(r, report)) return false;
      m.Crack_Diffusion_Damage.add(r.Number[1]);
      m.Crack_Diffusion_Factor.add(r.Number[2]);
    }
  }
  return Read_Database_Line(r, report);
}

// The three or four creep option lines of the Burger model and the Maxwell chain.
bool Read_Creep_Options(Database_Reader& r, Database_Report& report, Material& m, bool stress_level_line) {
  if (!Read_Database_Line(r, report)) return false;
  m.Temperature_Influence = r.Number_Count == 1;
  if (m.Temperature_Influence && !To_Single(r.Number[1], m.QR)) return Corrupted(r, report);
  if (!Read_Database_Line(r, report)) return false;
  m.Humidity_Influence = r.Number_Count == 1;
  if (m.Humidity_Influence && !To_Single(r.Number[1], m.Ah)) return Corrupted(r, report);
  if (stress_level_line) {
    if (!Read_Database_Line(r, report)) return false;
    m.Stress_Level_Active = r.Number_Count == 2;
    if (m.Stress_Level_Active) {
      m.Stress_Level_At = r.Number[1];
      m.Stress_Level_Ac = r.Number[2];
    }
  }
  if (!Read_Database_Line(r, report)) return false;
  if (r.Number_Count > 1) {
    m.Transient_Creep = true;
    m.Transient_a = r.Number[1];
    m.Transient_b = r.Number[2];
    if (r.Number_Count == 5) {
      m.Humidity_Class = true;
      for (int i = 0; i < 4; ++i)
        m.Humidity_Class_b[static_cast<std::size_t>(i)] = r.Number[i + 2];
    }
    if (r.Number[1] == 0.0 || r.Number[2] == 0.0) m.Transient_Creep = false;
  }
  return true;
}

bool Read_Chain(Database_Reader& r, Database_Report& report, Material& m, int chain_size_limit) {
  if (!Read_Database_Line(r, report)) return false;
  const double size = Rounded(r.Number[1]);
  if (!(size >= 1 && size <= chain_size_limit)) return Format_Fault(r, report, "Error max1");
  const int n = static_cast<int>(size);
  if (!Read_Database_Line(r, report)) return false;
  if (r.Number_Count != n) return Format_Fault(r, report, "Error max3");
  for (int i = 1; i <= n; ++i)
    m.Retardation_Time.add(r.Number[i]);
  const int rows = (m.E.Depends_On_Maturity || m.E.Depends_On_Temperature) ? Point_Count(m.E) : 1;
  for (int row = 1; row <= rows; ++row) {
    if (!Read_Database_Line(r, report)) return false;
    if (r.Number_Count != n) return Format_Fault(r, report, "Error max3");
    Table<double> coefficients;
    for (int i = 1; i <= n; ++i)
      coefficients.add(r.Number[i]);
    m.Chain_Coefficient.add(std::move(coefficients));
  }
  return true;
}

bool Read_Soil(Database_Reader& r, Database_Report& report, Material& m) {
  if (!Read_Database_Line(r, report)) return false;
  if (r.Key == "NONL") {
    if (r.Number_Count != 1) return Format_Fault(r, report, "Soil 1");
    std::int16_t n = 0;
    if (!To_I16(r.Number[1], n)) return Corrupted(r, report);
    m.Soil_Nonlinear = true;
    for (int i = 1; i <= n; ++i) {
      if (!Read_Counted(r, report, 2, 2, "Soil 1")) return false;
      m.Soil_Curve_Stress.add(r.Number[1]);
      m.Soil_Curve_Strain.add(r.Number[2]);
    }
    return true;
  }
  if (r.Key == "NO T" && r.Number_Count == 1) {
    m.Soil_Tension = true;
    m.Soil_Tension_Limit = r.Number[1];
    return true;
  }
  return Format_Fault(r, report, "Soil 1");
}

bool Read_Mechanical(Database_Reader& r, Database_Report& report, Material& m, int format,
                     const Database_Settings& settings) {
  const bool dutch = m.Dutch_Active;
  const float c = m.Dutch_C;
  if (!Read_Property(r, m.Thermal_Dilatation, dutch, c, report) ||
      !Read_Property(r, m.Autogeneous_Dilatation, dutch, c, report) ||
      !Read_Property(r, m.Hygral_Dilatation, dutch, c, report))
    return false;
  // The line after the dilatations is the variation line whatever it says; only a `STAT` key
  // gives it a meaning.
  if (!Read_Database_Line(r, report)) return false;
  if (r.Key == "STAT") {
    if (r.Number_Count != 1) return Format_Fault(r, report, "Error variation");
    m.Statistics_Factor = r.Number[1];
    m.Statistics_Active = true;
  }
  if (!Read_Database_Line(r, report)) return false;
  m.Model_Name = r.Raw_Line;
  const std::string& model = m.Model_Name;
  auto props = [&](std::initializer_list<Property_Table*> tables) {
    for (Property_Table* t : tables)
      if (!Read_Property(r, *t, dutch, c, report)) return false;
    return true;
  };
  if (model == "Linear Elastic") {
    return props({&m.E, &m.Nu, &m.Ft, &m.Fc}) && Read_Softening(r, m.Softening_Law, report);
  }
  if (model == "Burger Model") {
    return props({&m.E_Mod_A, &m.Tau_A, &m.E_Mod_B, &m.Tau_B, &m.Nu, &m.Ft, &m.Fc}) &&
           Read_Creep_Options(r, report, m, false) && Read_Softening(r, m.Softening_Law, report);
  }
  if (model == "Maxwell Chain") {
    return props({&m.E, &m.Nu, &m.Ft, &m.Fc}) && Read_Creep_Options(r, report, m, format > 99) &&
           Read_Chain(r, report, m, settings.Chain_Size_Limit) && Read_Softening(r, m.Softening_Law, report);
  }
  if (model == "Soil") return Read_Soil(r, report, m);
  return true;  // "Nonlinear Elastic" and unknown models read nothing more
}

bool Read_Interface(Database_Reader& r, Database_Report& report, Material& m) {
  m.Is_Interface = true;
  std::int16_t type = 0;
  if (!To_I16(r.Number[1], type)) return Corrupted(r, report);
  m.Interface_Type = std::max<std::int16_t>(type, 1);
  auto fill = [&](int first, int count) {
    for (int i = first; i < first + count; ++i) {
      if (!Read_Database_Line(r, report)) return false;
      m.Interface_Data[static_cast<std::size_t>(i)] = r.Number[1];
    }
    return true;
  };
  if (m.Interface_Type == 1) return fill(1, 8);
  if (m.Interface_Type == 2) return fill(21, 3);
  if (m.Interface_Type != 3) return true;
  if (!fill(31, 4)) return false;
  if (!fill(40, 1)) return false;
  for (int i = 1; i <= m.Interface_Data[40]; ++i) {
    if (!Read_Database_Line(r, report)) return false;
    if (40 + 2 * i > Max_Interface_Data_Index) return Corrupted(r, report);
    m.Interface_Data[static_cast<std::size_t>(39 + 2 * i)] = r.Number[1];
    m.Interface_Data[static_cast<std::size_t>(40 + 2 * i)] = r.Number[2];
  }
  return true;
}

bool Read_Steel_Curve(Database_Reader& r, Database_Report& report, Table<double>& x, Table<double>& y) {
  static const char* message = "Problems with reinforcement data";
  if (!Read_Database_Line(r, report)) return false;
  if (!(Rounded(r.Number[1]) >= 2)) return Format_Fault(r, report, message);
  std::int16_t n = 0;
  if (!To_I16(r.Number[1], n)) return Corrupted(r, report);
  for (int i = 1; i <= n; ++i) {
    if (!Read_Counted(r, report, 2, 2, message)) return false;
    x.add(r.Number[1]);
    y.add(r.Number[2]);
  }
  return true;
}

bool Read_Reinforcement(Database_Reader& r, Database_Report& report, Material& m) {
  m.Is_Reinforcement = true;
  if (!Read_Steel_Curve(r, report, m.Steel_Strain_A, m.Steel_Stress_A) ||
      !Read_Steel_Curve(r, report, m.Steel_Strain_B, m.Steel_Stress_B))
    return false;
  double* constants[3] = {&m.Steel_Const_1, &m.Steel_Const_2, &m.Steel_Const_3};
  for (double* value : constants) {
    if (!Read_Database_Line(r, report)) return false;
    *value = r.Number[1];
  }
  if (!Read_Database_Line(r, report)) return false;
  float dilatancy = 0;
  if (!To_Single(r.Number[1], dilatancy)) return Corrupted(r, report);
  m.Steel_Dilatation.Is_Constant = true;
  m.Steel_Dilatation.Abscissa = {0.0f};
  m.Steel_Dilatation.Value = {dilatancy};
  return true;
}

bool Read_One_Material(Database_Reader& r, Database_Report& report, Material& m, int format,
                       const Database_Settings& settings) {
  if (!Read_Database_Line(r, report)) return false;
  m.Name = r.Raw_Line;
  if (!Read_Database_Line(r, report)) return false;
  if (r.Key == "INTE") return Read_Interface(r, report, m);
  if (r.Key == "REIN") return Read_Reinforcement(r, report, m);

  if (r.Number_Count != 1) return Format_Fault(r, report, "Problems with Dead Weight");
  m.Dead_Weight = r.Number[1];
  if (!Read_Database_Line(r, report)) return false;

  if (r.Key == "THER") {
    m.Has_Thermal = true;
    if (!Read_Thermal(r, report, m)) return false;
  } else if (r.Key == "NO T") {
    if (!Read_Database_Line(r, report)) return false;
  } else {
    return Format_Fault(r, report, "Error 9a");
  }

  if (r.Key == "HYGR") {
    m.Has_Hygral = true;
    if (!Read_Hygral(r, report, m)) return false;
  } else if (r.Key == "NO H") {
    if (!Read_Database_Line(r, report)) return false;
  } else {
    return Format_Fault(r, report, "Error 9b");
  }

  if (r.Key == "MECH") {
    m.Has_Mechanical = true;
    if (!Read_Mechanical(r, report, m, format, settings)) return false;
  } else if (r.Key != "NO M") {
    return Format_Fault(r, report, "Error 15");
  }
  // The separator line of the records.
  return Read_Database_Line(r, report);
}

}  // namespace

double Parse_Database_Number(std::string_view token, bool decimal_comma, bool& ok) {
  ok = true;
  if (token.empty() || token == "," || token == ".") return 0;
  // The first decimal sign of the other kind becomes the locale's; then the locale's sign is the
  // decimal sign and anything else is no number.
  std::string text(token);
  const char other = decimal_comma ? '.' : ',';
  const char own = decimal_comma ? ',' : '.';
  if (const std::size_t at = text.find(other); at != std::string::npos) text[at] = own;

  std::size_t i = 0;
  bool negative = false;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
  std::string plain;  // unsigned, with a decimal point
  int digits = 0;
  for (; i < text.size() && Is_Digit(text[i]); ++i, ++digits)
    plain += text[i];
  if (i < text.size() && text[i] == own) {
    plain += '.';
    for (++i; i < text.size() && Is_Digit(text[i]); ++i, ++digits)
      plain += text[i];
  }
  if (digits == 0) {
    ok = false;
    return 0;
  }
  if (i < text.size() && (text[i] == 'E' || text[i] == 'e')) {
    plain += 'e';
    ++i;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) plain += text[i++];
    int exponent_digits = 0;
    for (; i < text.size() && Is_Digit(text[i]); ++i, ++exponent_digits)
      plain += text[i];
    if (exponent_digits == 0) {
      ok = false;
      return 0;
    }
  }
  if (i != text.size()) {
    ok = false;
    return 0;
  }
  double value = 0;
  if (!Convert_Unsigned(plain, value)) {
    ok = false;
    return 0;
  }
  return negative ? -value : value;
}

bool Read_Database_Line(Database_Reader& r, Database_Report& report) {
  const std::string_view t = r.Text;
  const std::size_t n = t.size();
  std::size_t p = r.Position;
  if (p >= n) return Corrupted(r, report);  // input past the end of the file

  auto is_end = [&](std::size_t at) { return t[at] == '\n' || t[at] == '\r'; };
  std::size_t first = p;
  while (first < n && t[first] == ' ')
    ++first;
  std::string_view value;
  if (first < n && t[first] == '"') {
    // A quoted value runs to the closing quote and may hold commas; what follows up to the
    // delimiter is dropped.
    std::size_t end = first + 1;
    while (end < n && t[end] != '"' && !is_end(end))
      ++end;
    value = t.substr(first + 1, end - first - 1);
    p = end;
    while (p < n && t[p] != ',' && !is_end(p))
      ++p;
  } else {
    std::size_t end = p;
    while (end < n && t[end] != ',' && !is_end(end))
      ++end;
    value = t.substr(p, end - p);
    p = end;
  }
  if (p < n) {
    if (t[p] == '\r' && p + 1 < n && t[p + 1] == '\n') ++p;
    ++p;
  }
  r.Position = p;

  ++r.Database_Line_Number;
  r.Raw_Line.assign(value);
  std::string upper(value.substr(std::min(value.find_first_not_of(' '), value.size())));
  for (char& ch : upper)
    if (ch >= 'a' && ch <= 'z') ch = static_cast<char>(ch - 'a' + 'A');
  r.Key = upper.size() >= 4 ? upper.substr(0, 4) : std::string();
  std::fill(std::begin(r.Number), std::end(r.Number), 0.0);
  r.Number_Count = 0;
  r.Continuation = false;

  std::string token;
  for (const char ch : upper) {
    if (Is_Digit(ch) || ch == '-' || ch == '+' || ch == ',' || ch == '.') {
      token += ch;
    } else if (ch == 'E') {
      if (!token.empty()) token += ch;
    } else {
      if (ch == '/') r.Continuation = true;
      if (!token.empty() && !Store_Token(r, token, report)) return false;
    }
  }
  if (!token.empty() && !Store_Token(r, token, report)) return false;
  return true;
}

bool Read_Property(Database_Reader& r, Property_Table& table, bool dutch_flag, float dutch_c,
                   Database_Report& report) {
  table = Property_Table{};
  if (!Read_Database_Line(r, report)) return false;
  if (r.Key == "CONS") {
    if (r.Number_Count != 1) return Format_Fault(r, report, "Error 10");
    float value = 0;
    if (!To_Single(r.Number[1], value)) return Corrupted(r, report);
    table.Is_Constant = true;
    table.Abscissa = {0.0f};
    table.Value = {value};
    return true;
  }
  if (r.Key == "TEMP") {
    table.Depends_On_Temperature = true;
  } else if (r.Key == "MATU") {
    table.Depends_On_Maturity = true;
  } else {
    return Format_Fault(r, report, "Error 15");
  }
  if (r.Number_Count != 1) return Format_Fault(r, report, "Error 12");
  if (!(Rounded(r.Number[1]) >= 2)) return Format_Fault(r, report, "Error 11");
  std::int16_t n = 0;
  if (!To_I16(r.Number[1], n)) return Corrupted(r, report);
  for (int i = 1; i <= n; ++i) {
    if (!Read_Database_Line(r, report)) return false;
    if (r.Number_Count != 2) return Format_Fault(r, report, "Error 13");
    float x = 0, value = 0;
    if (!To_Single(r.Number[1], x) || !To_Single(r.Number[2], value)) return Corrupted(r, report);
    if (i > 1 && !(x > table.Abscissa.last())) return Format_Fault(r, report, "Error 14");
    table.Abscissa.add(x);
    table.Value.add(value);
  }
  if (table.Depends_On_Maturity && dutch_flag) {
    // Tables are given in hours at 20 oC; the weighted maturity gains this much per such hour.
    const double c = dutch_c;
    const double factor = 10.0 * (std::pow(c, 0.755) - std::pow(c, -2.245)) / std::log(c);
    if (!std::isfinite(factor)) return Corrupted(r, report);
    for (float& x : table.Abscissa)
      if (!To_Single(static_cast<double>(x) * factor, x)) return Corrupted(r, report);
  }
  return true;
}

bool Read_Softening(Database_Reader& r, Softening& block, Database_Report& report) {
  block = Softening{};
  if (!Read_Database_Line(r, report)) return false;
  const int n = r.Number_Count;
  const double* v = r.Number;  // v[1..40], the numbers beyond the count are 0
  if (r.Key == "ISOT") {
    if (n < 3) return Format_Fault(r, report, "Error max3");
    block.Has_Softening = true;
    block.s1 = v[1];
    block.w1 = v[2];
    block.w2 = v[3];
    block.alfa = v[4];
    block.Lch = v[5];
    if (n >= 6) {
      block.Lvol_Active = true;
      block.Lvol = v[6];
    }
    if (!To_I16(v[7], block.Mode)) return Corrupted(r, report);
    return true;
  }
  if (r.Key == "ISOM") {
    if (n < 3) return Format_Fault(r, report, "Error ISOM first line (3 numbers needed)");
    const double points = Rounded(v[1]);
    if (!(points >= 2 && points <= 21))
      return Format_Fault(r, report, "Error ISOM first line (No points out of range.");
    block.alfa = v[2];
    block.Lch = v[3];
    if (!To_I16(v[5], block.Mode)) return Corrupted(r, report);
    // The Lvol test looks at the sixth number as written, before a negative one becomes 1000.
    block.Lvol_Active = n > 3 && (v[4] >= 0 || v[6] >= 0);
    block.Lvol = block.Lvol_Active ? v[4] : 0;
    block.Has_Softening = !(v[6] < 0);
    block.ISOM_Extra = {v[6] < 0 ? 1000.0 : v[6], v[7], v[8]};
    for (int i = 1; i <= static_cast<int>(points); ++i) {
      if (!Read_Database_Line(r, report)) return false;
      if (r.Number_Count != 2)
        return Format_Fault(r, report, "Error ISOM (at least 2 numbers needed for a point).");
      if (i > 1 && !(r.Number[1] > block.Crack_Width.last()))
        return Format_Fault(r, report, "Error ISOM (WW of points should always increase).");
      block.Crack_Width.add(r.Number[1]);
      block.Strength_Factor.add(r.Number[2]);
    }
    return true;
  }
  if (r.Key == "EPFL") {
    if (n < 5 || n > 8) return Format_Fault(r, report, "Error max6");
    block.EPFL_Active = true;
    block.Ct = v[1];
    block.Acr = v[2];
    block.Bcr = v[3];
    block.EPFL_w1 = v[4];
    block.EPFL_w2 = v[5];
    block.aft = v[6];
    block.Beta = v[7];
    block.Ccr = v[8] <= 0 ? 1.0 : v[8];
    return true;
  }
  return true;  // `NO S` and any other key: no softening
}

std::int32_t Default_Material_Colour(int i) {
  return Colour_Cycle[(i - 1) % 10];
}

bool Read_Database_Text(std::string_view text, const Database_Settings& settings, Table<Material>& materials,
                        Table<std::int32_t>& colours, Database_Report& report) {
  report = Database_Report{};
  Database_Reader r;
  r.Text = text;
  r.Decimal_Comma = settings.Decimal_Comma;
  if (!Read_Database_Line(r, report)) return false;
  std::int16_t count = 0, format = 0;
  if (!To_I16(r.Number[1], count) || count < 0 || !To_I16(r.Number[2], format)) return Corrupted(r, report);
  report.Format = format;

  Table<Material> fresh;
  for (int i = 1; i <= count; ++i) {
    Material m;
    if (!Read_One_Material(r, report, m, format, settings)) return false;
    fresh.add(std::move(m));
  }
  Table<std::int32_t> fresh_colours;
  for (int i = 1; i <= fresh.count(); ++i)
    fresh_colours.add(Default_Material_Colour(i));
  materials = std::move(fresh);
  colours = std::move(fresh_colours);
  return true;
}

bool Read_Material_Database(const std::string& path, const Database_Settings& settings,
                            Table<Material>& materials, Table<std::int32_t>& colours,
                            Database_Report& report) {
  report = Database_Report{};
  std::error_code ec;
  std::ifstream in;
  if (!std::filesystem::is_directory(path, ec)) in.open(path, std::ios::binary);
  if (!in) {
    report.Fault = Database_Fault::Cannot_Open;
    report.Message = Database_Open_Message(path);
    return false;
  }
  std::ostringstream contents;
  contents << in.rdbuf();
  if (in.bad()) {
    report.Fault = Database_Fault::Cannot_Open;
    report.Message = Database_Open_Message(path);
    return false;
  }
  return Read_Database_Text(contents.str(), settings, materials, colours, report);
}

bool Read_Material_Database(const std::string& path, Table<Material>& materials, Table<std::int32_t>& colours,
                            std::string& message) {
  Database_Report report;
  const bool ok = Read_Material_Database(path, Database_Settings{}, materials, colours, report);
  message = ok ? std::string() : report.Message;
  return ok;
}

}  // namespace pvx
