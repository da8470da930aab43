#include "analysis/material_curves.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>

#include "analysis/hydration.h"
#include "analysis/mechanics/bar_law.h"
#include "analysis/mechanics/creep.h"
#include "analysis/mechanics/interface_law.h"
#include "analysis/mechanics/point_law.h"
#include "analysis/moisture.h"
#include "app/units.h"
#include "material/properties.h"
#include "results/plot.h"
#include "results/viewer_plot.h"

namespace pvx {

namespace {

// ---- Numbers and units ------------------------------------------------------------------------

// A parameter as the database gives it: six significant digits, no padding.
std::string Number_Text(double v) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%g", v);
  return buffer;
}

// A value of a unit kind as the picture shows it; kind 0 is a quantity without a unit.
double Shown(bool metric, int kind, double v) {
  return metric || kind == 0 ? v : Convert_Unit(true, kind, v);
}
std::string Unit_Text(bool metric, int kind) {
  return kind == 0 ? "-" : Unit_Name(kind, metric);
}
std::string Titled(const char* name, const std::string& unit) {
  return std::string(name) + " [" + unit + "]";
}

// The conductivity, W/mK, has no kind of its own: it is the transfer coefficient (W/m2K) per metre
// of thickness, so in the imperial system that coefficient's factor per foot.
constexpr double Metres_Per_Foot = 0.3048;
double Shown_Conductivity(bool metric, double v) {
  return metric ? v : Convert_Unit(true, Unit_Convection, v) / Metres_Per_Foot;
}
// The diffusion coefficient is an area per hour.
double Shown_Diffusion(bool metric, double v) {
  return Shown(metric, Unit_Area, v);
}

std::string Trimmed(const std::string& text) {
  const auto first = text.find_first_not_of(" \t");
  if (first == std::string::npos) return "";
  const auto last = text.find_last_not_of(" \t");
  return text.substr(first, last - first + 1);
}

// ---- Axes -------------------------------------------------------------------------------------

// Ticks of a linear axis over [lo, hi]: about six intervals of 1, 2 or 5 times a power of ten, the
// ends rounded outwards to whole steps. An end within a millionth of a step of a tick is on it, so
// that a value held in single precision does not add a step.
struct Ticks {
  double First = 0, Last = 1, Step = 1;
};
Ticks Linear_Ticks(double lo, double hi) {
  if (!(hi > lo)) hi = lo + 1;
  const double raw = (hi - lo) / 6;
  const double magnitude = std::pow(10.0, std::floor(std::log10(raw)));
  const double r = raw / magnitude;
  const double nice = r < 1.5 ? 1 : r < 3 ? 2 : r < 7 ? 5 : 10;
  const double step = nice * magnitude;
  return {std::floor(lo / step + 1e-6) * step, std::ceil(hi / step - 1e-6) * step, step};
}

// The rounded end of an axis from 0 that holds `end`, so that a curve sampled up to it fills its
// frame.
double Axis_End(double end) {
  return Linear_Ticks(0, end).Last;
}

// The sampled grid over [lo, hi] and the points of `extra` within it, rising, without doubles.
std::vector<double> Grid(double lo, double hi, const std::vector<double>& extra = {}) {
  std::vector<double> x;
  x.reserve(Curve_Intervals + 1 + extra.size());
  for (int i = 0; i <= Curve_Intervals; ++i)
    x.push_back(lo + (hi - lo) * i / Curve_Intervals);
  for (double e : extra)
    if (e >= lo && e <= hi) x.push_back(e);
  std::sort(x.begin(), x.end());
  const double tolerance = 1e-12 * std::max(std::abs(lo), std::abs(hi));
  x.erase(std::unique(x.begin(), x.end(), [tolerance](double a, double b) { return b - a <= tolerance; }),
          x.end());
  return x;
}

// ---- The maturity law -------------------------------------------------------------------------

// The rates of the plain and the weighted maturity at a constant temperature and humidity: the
// growth over one hour.
struct Maturity_Rates {
  double Plain = 0, Weighted = 0;
};
Maturity_Rates Rates_At(const Material& m, double T, double h) {
  Maturity_Rates r;
  Update_Maturity(m, 1.0, T, T, h, h, 0, r.Plain, 0, r.Weighted);
  return r;
}

// Mechanical tables of a material with the weighted maturity hold it; the viewer shows them
// against hours at 20 oC, each of which adds this much weighted maturity.
double Weighted_Per_Hour(const Material& m) {
  return m.Dutch_Active ? Rates_At(m, 20, 1).Weighted : 1.0;
}
bool In_Weighted_Maturity(const Material& m, const Property_Table& t) {
  return m.Dutch_Active && t.Depends_On_Maturity;
}

constexpr double Standard_Maturity_End = 672;  // 28 days
const char* const Maturity_Title = "Maturity [hours]";
const char* const Weighted_Note = "(Tables in weighted maturity, shown in hours at 20 oC)";

// ---- Curves from property tables ---------------------------------------------------------------

struct Table_Kind {
  const char* Name;
  int Unit = 0;             // kind of Convert_Unit, 0 for none
  const char* Unit_Text{};  // for a quantity without a kind: its unit ("-" when null)
};

Material_Curve Table_Curve(const Material& m, const Property_Table& t, const Table_Kind& kind, bool metric) {
  Material_Curve c;
  c.Y_Title = Titled(kind.Name, kind.Unit_Text ? kind.Unit_Text : Unit_Text(metric, kind.Unit));
  auto shown = [&](double v) { return Shown(metric, kind.Unit, v); };
  const int n = std::min(t.Abscissa.count(), t.Value.count());
  Curve_Series s;
  if (t.Is_Constant || (!t.Depends_On_Maturity && !t.Depends_On_Temperature) || n == 0) {
    c.X_Title = Maturity_Title;
    if (t.Is_Constant) c.Caption.push_back(Constant_Table_Caption);
    for (double x : Grid(0, Axis_End(Standard_Maturity_End))) {
      s.X.push_back(x);
      s.Y.push_back(shown(Table_Value(t, 20, x)));
    }
  } else if (t.Depends_On_Maturity) {
    c.X_Title = Maturity_Title;
    const double per_hour = In_Weighted_Maturity(m, t) ? Weighted_Per_Hour(m) : 1.0;
    if (In_Weighted_Maturity(m, t)) c.Caption.push_back(Weighted_Note);
    std::vector<double> points;
    for (int i = 1; i <= n; ++i) {
      points.push_back(t.Abscissa[i] / per_hour);
      c.Mark_X.push_back(points.back());
      c.Mark_Y.push_back(shown(t.Value[i]));
    }
    for (double x : Grid(0, Axis_End(std::max(Standard_Maturity_End, points.back())), points)) {
      s.X.push_back(x);
      s.Y.push_back(shown(Mechanical_Property(m, t, 20, x, x * per_hour)));
    }
  } else {
    c.X_Title = Titled("Temperature", Unit_Name(Unit_Temperature, metric));
    std::vector<double> points;
    for (int i = 1; i <= n; ++i) {
      points.push_back(t.Abscissa[i]);
      c.Mark_X.push_back(Shown(metric, Unit_Temperature, t.Abscissa[i]));
      c.Mark_Y.push_back(shown(t.Value[i]));
    }
    // A quarter of the table's span beyond either end shows the end values held.
    const double margin = (points.back() - points.front()) / 4;
    const Ticks range = Linear_Ticks(points.front() - margin, points.back() + margin);
    for (double T : Grid(range.First, range.Last, points)) {
      s.X.push_back(Shown(metric, Unit_Temperature, T));
      s.Y.push_back(shown(Mechanical_Property(m, t, T, 0, 0)));
    }
  }
  c.Series.push_back(std::move(s));
  return c;
}

const Property_Table* Table_Of(const Material& m, Material_Property p) {
  switch (p) {
    case Material_Property::Thermal_Dilatation:
      return &m.Thermal_Dilatation;
    case Material_Property::Autogeneous_Dilatation:
      return &m.Autogeneous_Dilatation;
    case Material_Property::Hygral_Dilatation:
      return &m.Hygral_Dilatation;
    case Material_Property::E:
      return &m.E;
    case Material_Property::Nu:
      return &m.Nu;
    case Material_Property::Ft:
      return &m.Ft;
    case Material_Property::Fc:
      return &m.Fc;
    case Material_Property::E_Mod_A:
      return &m.E_Mod_A;
    case Material_Property::Tau_A:
      return &m.Tau_A;
    case Material_Property::E_Mod_B:
      return &m.E_Mod_B;
    case Material_Property::Tau_B:
      return &m.Tau_B;
    case Material_Property::Steel_Dilatation:
      return &m.Steel_Dilatation;
    default:
      return nullptr;
  }
}

Table_Kind Kind_Of(Material_Property p) {
  switch (p) {
    case Material_Property::Thermal_Dilatation:
      return {"Thermal dilatation coefficient", Unit_Per_Degree};
    case Material_Property::Autogeneous_Dilatation:
      return {"Autogeneous dilatation", 0};
    case Material_Property::Hygral_Dilatation:
      return {"Hygral dilatation", 0};
    case Material_Property::E:
      return {"Modulus of elasticity", Unit_Stress};
    case Material_Property::Nu:
      return {"Poisson ratio", 0};
    case Material_Property::Ft:
      return {"Tensile strength", Unit_Stress};
    case Material_Property::Fc:
      return {"Compressive strength", Unit_Stress};
    case Material_Property::E_Mod_A:
      return {"E-mod A", Unit_Stress};
    case Material_Property::Tau_A:
      return {"Tau A", 0, "hours"};
    case Material_Property::E_Mod_B:
      return {"E-mod B", Unit_Stress};
    case Material_Property::Tau_B:
      return {"Tau B", 0, "hours"};
    case Material_Property::Steel_Dilatation:
      return {"Thermal dilatancy", Unit_Per_Degree};
    default:
      return {"", 0};
  }
}

// ---- Thermal ----------------------------------------------------------------------------------

// The evaporable water over which capacity and conductivity are drawn: up to the reference water
// content, at least up to that of a saturated young concrete.
constexpr double Water_Range = 150;

std::string By_Water_Caption(const char* name, double dry, double wet, double water) {
  return std::string(name) + ": dry = " + Number_Text(dry) + "   wet = " + Number_Text(wet) + " at " +
         Number_Text(water) + " kg/m3 of water";
}

Material_Curve Capacity_Curve(const Material& m, bool metric) {
  Material_Curve c;
  c.Y_Title = Titled("Heat capacity", Unit_Name(Unit_Capacity, metric));
  Curve_Series s;
  if (m.Latent_Active && !m.Capacity_By_Water && Latent_Count(m) > 0) {
    // Each peak is one degree wide: its edges are drawn as steps.
    c.X_Title = Titled("Temperature", Unit_Name(Unit_Temperature, metric));
    std::vector<double> edges;
    double lo = -10, hi = 40;
    for (int i = 1; i <= Latent_Count(m); ++i) {
      const double at = m.Latent_Temperature[i];
      for (double e : {at - 0.5, at + 0.5}) {
        edges.push_back(e);
        edges.push_back(e + (e < at ? -1e-6 : 1e-6));
      }
      lo = std::min(lo, at - 10);
      hi = std::max(hi, at + 10);
    }
    c.Caption.push_back("(Latent heat: peaks one degree wide)");
    c.Caption.push_back("Capacity [kJ/m3K] = " + Number_Text(m.Capacity_Wet));
    for (int i = 1; i <= Latent_Count(m); ++i)
      c.Caption.push_back("Peak at " + Number_Text(m.Latent_Temperature[i]) +
                          " oC [kJ/m3K] = " + Number_Text(m.Latent_Peak[i]));
    const Ticks range = Linear_Ticks(lo, hi);
    for (double T : Grid(range.First, range.Last, edges)) {
      s.X.push_back(Shown(metric, Unit_Temperature, T));
      s.Y.push_back(Shown(metric, Unit_Capacity, Thermal_Capacity(m, 0, 0, T, T)));
    }
  } else {
    c.X_Title = Titled("Evaporable water", Unit_Name(Unit_Density, metric));
    if (m.Capacity_By_Water)
      c.Caption.push_back(
          By_Water_Caption("Capacity [kJ/m3K]", m.Capacity_Dry, m.Capacity_Wet, m.Water_Reference));
    else
      c.Caption = {Constant_Capacity_Caption, "Capacity [kJ/m3K] = " + Number_Text(m.Capacity_Wet)};
    const double end = Axis_End(std::max<double>(Water_Range, m.Capacity_By_Water ? m.Water_Reference : 0));
    for (double w : Grid(0, end)) {
      s.X.push_back(Shown(metric, Unit_Density, w));
      s.Y.push_back(Shown(metric, Unit_Capacity, Thermal_Capacity(m, w, w, 20, 20)));
    }
  }
  c.Series.push_back(std::move(s));
  return c;
}

Material_Curve Conductivity_Curve(const Material& m, bool metric) {
  Material_Curve c;
  c.Y_Title = Titled("Conductivity", metric ? "W/mK" : "BtuIT/hftoF");
  c.X_Title = Titled("Evaporable water", Unit_Name(Unit_Density, metric));
  if (m.Conductivity_By_Water)
    c.Caption.push_back(By_Water_Caption("Conductivity [W/mK]", m.Conductivity_Dry, m.Conductivity_Wet,
                                         m.Conductivity_Water_Reference));
  else
    c.Caption = {Constant_Capacity_Caption, "Conductivity [W/mK] = " + Number_Text(m.Conductivity_Wet)};
  const double end =
      Axis_End(std::max<double>(Water_Range, m.Conductivity_By_Water ? m.Conductivity_Water_Reference : 0));
  Curve_Series s;
  for (double w : Grid(0, end)) {
    s.X.push_back(Shown(metric, Unit_Density, w));
    s.Y.push_back(Shown_Conductivity(metric, Thermal_Conductivity(m, w, w)));
  }
  c.Series.push_back(std::move(s));
  return c;
}

// The temperatures of the maturity rates: from frost to a hot summer's concrete.
constexpr double Rate_Low = -10, Rate_High = 60;
// The humidities of a law that slows down in dry concrete.
constexpr double Rate_Humidities[4] = {1.0, 0.9, 0.8, 0.7};

Material_Curve Maturity_Rate_Curve(const Material& m, bool metric) {
  Material_Curve c;
  c.X_Title = Titled("Temperature", Unit_Name(Unit_Temperature, metric));
  c.Y_Title = "Maturity rate dM/dt [-]";
  if (m.Arrhenius_Active) {
    c.Caption.push_back(std::string(" dM/dt = ") + (m.Humidity_Active ? Humidity_Maturity_Caption : "") +
                        (m.dQ_Active ? Arrhenius_dQ_Caption : Arrhenius_Caption) + Arrhenius_End_Caption);
    std::string values = "Q/R [K] = " + Number_Text(m.Q_Over_R);
    if (m.dQ_Active) values += "   dQ/R [K] = " + Number_Text(m.dQ_Over_R);
    values += "   Tref [K] = " + Number_Text(m.T_Reference);
    c.Caption.push_back(values);
  } else {
    c.Caption.push_back(m.Humidity_Active ? std::string(" dM/dt = ") + Humidity_Maturity_Caption + "1)"
                                          : "(Maturity is real time: dM/dt = 1)");
  }
  if (m.Humidity_Active)
    c.Caption.push_back("Ac [-] = " + Number_Text(m.Ac) + "   Bc [-] = " + Number_Text(m.Bc));
  if (m.Hygral_Maturity_Stop) c.Caption.push_back(" * (2H-1)^4: no maturity at H <= 0.5");
  const bool by_humidity = m.Humidity_Active || m.Hygral_Maturity_Stop;
  const std::vector<double> temperatures = Grid(Rate_Low, Rate_High, {20});
  for (double h : Rate_Humidities) {
    Curve_Series s;
    if (by_humidity) s.Label = "H = " + Format_Number_Trimmed(h, 6, 2);
    for (double T : temperatures) {
      s.X.push_back(Shown(metric, Unit_Temperature, T));
      s.Y.push_back(Rates_At(m, T, h).Plain);
    }
    c.Series.push_back(std::move(s));
    if (!by_humidity) break;
  }
  return c;
}

Material_Curve Weighted_Rate_Curve(const Material& m, bool metric) {
  Material_Curve c;
  c.X_Title = Titled("Temperature", Unit_Name(Unit_Temperature, metric));
  c.Y_Title = "Weighted maturity rate dM/dt [oC]";
  c.Caption = {Weighted_Maturity_Caption, "C [-] = " + Number_Text(m.Dutch_C)};
  Curve_Series s;
  for (double T : Grid(Rate_Low, Rate_High, {20})) {
    s.X.push_back(Shown(metric, Unit_Temperature, T));
    s.Y.push_back(Rates_At(m, T, 1).Weighted);
  }
  c.Series.push_back(std::move(s));
  return c;
}

// The heat models' captions and parameters.
void Heat_Caption(const Material& m, Material_Curve& c) {
  const std::string& model = m.Heat_Model;
  if (model == "CONS") {
    c.Caption = {Constant_Heat_Caption, Heat_Rate_Caption + Number_Text(m.Heat_H) + " kJ/m3h"};
  } else if (model == "CORE") {
    c.Caption = {Core_Heat_Caption, "H [kJ/m3] = " + Number_Text(m.Heat_H) + "   a [1/h] = " +
                                        Number_Text(m.Heat_a) + "   d [h] = " + Number_Text(m.Heat_d)};
  } else if (model == "DANI") {
    c.Caption = {Danish_Heat_Caption, "H [kJ/m3] = " + Number_Text(m.Heat_H) + "   a [h] = " +
                                          Number_Text(m.Heat_a) + "   b [-] = " + Number_Text(m.Heat_b)};
  } else if (model == "PIWI") {
    c.Caption = {
        " Capacity * adiabatic temperature rise (table)",
        "H [kJ/m3] = " + Number_Text(m.Heat_H) + "   Capacity [kJ/m3K] = " + Number_Text(m.Capacity_Wet)};
  } else {
    c.Caption = {"(No heat of hydration)"};
  }
}

Material_Curve Heat_Curve(const Material& m, bool hydration, bool metric) {
  Material_Curve c;
  Heat_Caption(m, c);
  const bool per_time = m.Heat_Model == "CONS";
  c.X_Title = per_time ? "Time [hours]" : Maturity_Title;
  c.Y_Title =
      hydration ? "Degree of hydration [-]" : Titled("Heat of hydration", Unit_Name(Unit_Heat, metric));
  if (hydration) c.Caption.push_back("Hydration factor [-] = " + Number_Text(m.Hydration_Factor));

  std::vector<double> corners;
  double end = Standard_Maturity_End;
  if (m.Heat_Model == "PIWI") {
    for (int i = 1; i <= m.Heat_Table_Time.count() && i <= m.Heat_Table_Rise.count(); ++i) {
      corners.push_back(m.Heat_Table_Time[i]);
      end = std::max(end, m.Heat_Table_Time[i]);
      if (!hydration) {
        c.Mark_X.push_back(m.Heat_Table_Time[i]);
        c.Mark_Y.push_back(Shown(metric, Unit_Heat, m.Capacity_Wet * m.Heat_Table_Rise[i]));
      }
    }
  }
  if (m.Heat_Model == "CORE") corners.push_back(m.Heat_d);
  // The heat is summed step by step from maturity 0, as the analysis sums it.
  Curve_Series s;
  double heat = 0, previous = 0;
  for (double M : Grid(0, Axis_End(end), corners)) {
    double degree = 0;
    heat += Hydration_Heat(m, M - previous, previous, M, degree);
    previous = M;
    s.X.push_back(M);
    s.Y.push_back(hydration ? degree * m.Hydration_Factor : Shown(metric, Unit_Heat, heat));
  }
  c.Series.push_back(std::move(s));
  return c;
}

// ---- Hygral -----------------------------------------------------------------------------------

// The degrees of hydration of an isotherm that follows hydration; the analysis floors the degree
// at 0.15.
constexpr double Isotherm_Hydrations[4] = {0.4, 0.6, 0.8, 1.0};
constexpr double Lowest_Isotherm_Hydration = 0.15;

double Potential_End(const Material& m) {
  return std::max(1.0, m.H_Limit);
}

Material_Curve Isotherm_Curve(const Material& m, bool metric) {
  Material_Curve c;
  c.X_Title = "Potential h [-]";
  c.Y_Title = Titled("Evaporable water", Unit_Name(Unit_Density, metric));
  if (m.Isotherm_Table) c.Caption.push_back("(Sorption isotherm by table)");
  c.Caption.push_back(W_C_Caption + Number_Text(m.W_C) + "   " + Cement_Caption + Number_Text(m.Cement) +
                      "   " + Air_Caption + Number_Text(m.Air));
  c.Caption.push_back(H_Limit_Caption + Number_Text(m.H_Limit) + "   " + Consumption_Caption +
                      Number_Text(m.Consumption_Factor));
  const double T = m.Temperature_Dependent ? 20 : m.Fixed_Temperature;
  if (m.Temperature_Dependent)
    c.Caption.push_back("(Drawn at 20 oC)");
  else
    c.Caption.push_back(Fixed_Temperature_Caption + Number_Text(m.Fixed_Temperature));
  std::vector<double> alphas;
  if (m.Hydration_Dependent) {
    alphas.assign(std::begin(Isotherm_Hydrations), std::end(Isotherm_Hydrations));
  } else {
    c.Caption.push_back(Default_Hydration_Caption + Number_Text(m.Default_Hydration));
    alphas.push_back(m.Default_Hydration);
  }
  // The potentials run up to the saturation limit, where the analysis caps them.
  std::vector<double> corners = {0.35, 1.0, m.H_Limit};
  for (double a : alphas) {
    const double alpha = std::max(a, Lowest_Isotherm_Hydration);
    if (!m.Isotherm_Table) corners.push_back(0.95 - 0.111 * alpha);
  }
  if (m.Isotherm_Table)
    for (double h : m.Isotherm_Table_Data.Potential)
      corners.push_back(h);
  const std::vector<double> potentials = Grid(0, Potential_End(m), corners);
  for (double a : alphas) {
    const double alpha = std::max(a, Lowest_Isotherm_Hydration);
    Curve_Series s;
    if (m.Hydration_Dependent) s.Label = "D.o.h. " + Format_Number_Trimmed(a, 6, 1);
    for (double h : potentials) {
      s.X.push_back(h);
      s.Y.push_back(Shown(metric, Unit_Density, Isotherm(m, alpha, T, h)));
    }
    c.Series.push_back(std::move(s));
  }
  return c;
}

Material_Curve Diffusion_Curve(const Material& m, bool metric) {
  Material_Curve c;
  c.X_Title = "Potential h [-]";
  c.Y_Title = Titled("Diffusion coefficient", metric ? "m2/h" : "yd2/h");
  c.Log_Y = true;
  if (m.Diffusion_Bazant)
    c.Caption = {Bazant_Caption, D0_Caption + Number_Text(m.Diffusion_1) + "   " + A_Caption +
                                     Number_Text(m.Diffusion_3) + "   " + Ht_Caption +
                                     Number_Text(m.Diffusion_2)};
  else
    c.Caption = {Mensi_Caption,
                 A1_Caption + Number_Text(m.Diffusion_1) + "   " + A2_Caption + Number_Text(m.Diffusion_2)};
  Curve_Series s;
  for (double h : Grid(0, Potential_End(m), {1.0, m.Diffusion_Bazant ? m.Diffusion_2 : 0.0})) {
    s.X.push_back(h);
    s.Y.push_back(Shown_Diffusion(metric, Diffusion_Coefficient(m, h)));
  }
  c.Series.push_back(std::move(s));
  return c;
}

// ---- Creep ------------------------------------------------------------------------------------

// The end of a step of a point: its current rows become the start rows.
void Roll_Point(Mech_Point& p) {
  p.Stress_Start = p.Stress;
  p.Strain_Start = p.Strain;
  p.Creep_Strain_Start = p.Creep_Strain;
}

std::vector<double> Durations() {
  std::vector<double> d;
  const int decades = static_cast<int>(std::lround(std::log10(Last_Duration / First_Duration)));
  for (int k = 0; k <= decades * Durations_Per_Decade; ++k)
    d.push_back(First_Duration * std::pow(10.0, static_cast<double>(k) / Durations_Per_Decade));
  return d;
}

std::string Hours_Text(double hours) {
  return Format_Number_Trimmed(hours, 10, 0) + " h";
}

Material_Curve Relaxation_Curve(const Material& m, bool metric) {
  Material_Curve c;
  c.X_Title = "Load duration [hours]";
  c.Y_Title = Titled("Relaxation modulus", Unit_Name(Unit_Stress, metric));
  c.Log_X = true;
  c.Caption = {"(A strain held from the loading age on, at 20 oC and H = 1; the concrete hardens meanwhile)",
               "(No cracking, stress level or transient creep)"};
  if (m.Temperature_Influence) c.Caption.push_back("QR [K] = " + Number_Text(m.QR));
  // The law of the point without its crack: the curve is the creep alone.
  Material law = m;
  law.Softening_Law.Has_Softening = false;
  law.Softening_Law.EPFL_Active = false;
  // The maturity at 20 oC grows by the law's rate there; a weighted maturity, in hours at 20 oC,
  // by one an hour. The point law reads its tables at the weighted maturity where there is one.
  const double per_hour = Weighted_Per_Hour(m);
  const double rate = Rates_At(m, 20, 1).Plain;
  auto conditions = [&](double age, double held, double dt) {
    Point_Conditions pc;
    const double hours = age + (m.Dutch_Active ? held : rate * held);
    pc.T = 20;
    pc.H = 1;
    pc.Nu = 0;
    pc.Plane_Stress = true;
    pc.M = m.Dutch_Active ? hours * per_hour : hours;
    pc.E = Mechanical_Property(m, m.E, 20, hours, hours * per_hour);
    pc.dt = dt;
    return pc;
  };
  constexpr int Substeps = 4;
  const std::vector<double> durations = Durations();
  for (double age : Loading_Ages) {
    Curve_Series s;
    s.Label = "Loaded at " + Hours_Text(age);
    Mech_Point point;
    const Components loading{Relaxation_Strain, 0, 0, 0};
    point.Strain[0] = loading;
    Update_Point_Stress(law, conditions(age, 0, Loading_Step), loading, point);
    Roll_Point(point);
    double held = 0;
    for (double d : durations) {
      const double dt = (d - held) / Substeps;
      for (int k = 0; k < Substeps; ++k) {
        Update_Point_Stress(law, conditions(age, held + (k + 0.5) * dt, dt), Components{}, point);
        Roll_Point(point);
      }
      held = d;
      s.X.push_back(d);
      s.Y.push_back(Shown(metric, Unit_Stress, point.Stress[0][0] / Relaxation_Strain));
    }
    c.Series.push_back(std::move(s));
  }
  return c;
}

Material_Curve Chain_Curve(const Material& m) {
  Material_Curve c;
  c.X_Title = Maturity_Title;
  c.Y_Title = "Unit coefficient c [-]";
  c.Caption = {"E of unit m = E * c(m), relaxation time tau(m)"};
  const double per_hour = In_Weighted_Maturity(m, m.E) ? Weighted_Per_Hour(m) : 1.0;
  if (In_Weighted_Maturity(m, m.E)) c.Caption.push_back(Weighted_Note);
  std::vector<double> points;
  if (m.E.Depends_On_Maturity)
    for (int i = 1; i <= Point_Count(m.E); ++i)
      points.push_back(m.E.Abscissa[i] / per_hour);
  const double end = Axis_End(std::max(Standard_Maturity_End, points.empty() ? 0.0 : points.back()));
  const std::vector<double> maturities = Grid(0, end, points);
  for (int unit = 1; unit <= Chain_Size(m); ++unit) {
    Curve_Series s;
    s.Label = "tau = " + Number_Text(m.Retardation_Time[unit]) + " h";
    for (double x : maturities) {
      s.X.push_back(x);
      s.Y.push_back(Unit_Coefficient(m, Chain_Rows_At(m, x * per_hour), unit));
    }
    for (std::size_t i = 0; i < points.size(); ++i) {
      const int row = static_cast<int>(i) + 1;
      if (!m.Chain_Coefficient.valid(row) || !m.Chain_Coefficient[row].valid(unit)) continue;
      c.Mark_X.push_back(points[i]);
      c.Mark_Y.push_back(m.Chain_Coefficient[row][unit]);
    }
    c.Series.push_back(std::move(s));
  }
  return c;
}

// ---- Joints -----------------------------------------------------------------------------------

double Data(const Material& m, int i) {
  return m.Interface_Data[static_cast<std::size_t>(i)];
}

// The stiffness a closed joint has across, N/mm3.
double Normal_Stiffness(const Material& m) {
  switch (m.Interface_Type) {
    case 2:
      return Data(m, 21);
    case 3:
      return Data(m, 33);
    default:
      return Data(m, 7);
  }
}

const char* Joint_Type_Caption(const Material& m) {
  switch (m.Interface_Type) {
    case 2:
      return "Type B: no tension, Coulomb friction";
    case 3:
      return "Type C: softening by table";
    default:
      return "Type A: bilinear softening";
  }
}

Material_Curve Joint_Normal_Curve(const Material& m, bool metric) {
  Material_Curve c;
  c.X_Title = Titled("Opening", Unit_Name(Unit_Length_mm, metric));
  c.Y_Title = Titled("Normal stress", Unit_Name(Unit_Stress, metric));
  c.Caption.push_back(Joint_Type_Caption(m));
  const double k_n = Normal_Stiffness(m);
  std::vector<double> corners;
  double lo = 0, hi = 0.1;
  if (m.Interface_Type == 2) {
    lo = -hi;
    corners = {1e-5, 1.0001e-5};
    c.Caption.push_back("Normal stiffness [N/mm3] = " + Number_Text(k_n));
  } else if (m.Interface_Type == 3) {
    const int n = static_cast<int>(Data(m, 40));
    for (int i = 1; i <= n && 40 + 2 * i <= 100; ++i) {
      const double opening = i == 1 ? Data(m, 41) : Data(m, 41) + Data(m, 39 + 2 * i);
      corners.push_back(opening);
      c.Mark_X.push_back(Shown(metric, Unit_Length_mm, opening));
      c.Mark_Y.push_back(Shown(metric, Unit_Stress, Data(m, 40 + 2 * i)));
    }
    if (!corners.empty()) hi = 1.25 * corners.back();
    c.Caption.push_back("Normal stiffness [N/mm3] = " + Number_Text(k_n));
  } else {
    const double e0 = k_n != 0 ? Data(m, 1) / k_n : 0.0;
    corners = {e0, e0 + Data(m, 3), e0 + Data(m, 4)};
    hi = 1.25 * std::max(corners[1], corners[2]);
    c.Caption.push_back(
        "Ft [MPa] = " + Number_Text(Data(m, 1)) + "   Factor for s1 = " + Number_Text(Data(m, 2)) +
        "   w1 [mm] = " + Number_Text(Data(m, 3)) + "   w2 [mm] = " + Number_Text(Data(m, 4)));
    c.Caption.push_back("Normal stiffness [N/mm3] = " + Number_Text(k_n));
  }
  const Ticks range = Linear_Ticks(lo, hi > lo ? hi : lo + 0.1);
  Curve_Series s;
  for (double x : Grid(range.First, range.Last, corners)) {
    Interface_Point point;
    Interface_Point_Update(m, x, 0, point);
    s.X.push_back(Shown(metric, Unit_Length_mm, x));
    s.Y.push_back(Shown(metric, Unit_Stress, point.Sigma));
  }
  c.Series.push_back(std::move(s));
  return c;
}

// The normal stresses of the shear curves: none, and a compression of 1 MPa.
constexpr double Shear_Normal_Stresses[2] = {0, -1};

Material_Curve Joint_Shear_Curve(const Material& m, bool metric) {
  Material_Curve c;
  c.X_Title = Titled("Slip", Unit_Name(Unit_Length_mm, metric));
  c.Y_Title = Titled("Shear stress", Unit_Name(Unit_Stress, metric));
  c.Caption.push_back(Joint_Type_Caption(m));
  const bool type_b = m.Interface_Type == 2;
  const double k_n = Normal_Stiffness(m);
  const double k_s = Data(m, type_b ? 22 : m.Interface_Type == 3 ? 34 : 8);
  double end = 1;
  if (type_b) {
    c.Caption.push_back("Coulomb friction = " + Number_Text(Data(m, 23)) +
                        "   Shear stiffness [N/mm3] = " + Number_Text(k_s));
    if (k_s > 0) end = 2 * Data(m, 23) / k_s;
  } else {
    const int at = m.Interface_Type == 3 ? 31 : 5;
    c.Caption.push_back("Friction angle [degrees] = " + Number_Text(Data(m, at)) + "   Maximum slip [mm] = " +
                        Number_Text(Data(m, at + 1)) + "   Shear stiffness [N/mm3] = " + Number_Text(k_s));
    if (Data(m, at + 1) > 0) end = 1.25 * Data(m, at + 1);
  }
  const Ticks range = Linear_Ticks(0, end > 0 ? end : 1);
  const std::vector<double> slips = Grid(0, range.Last);
  for (double sigma : Shear_Normal_Stresses) {
    Curve_Series s;
    s.Label = "Normal stress " + Format_Number_Trimmed(Shown(metric, Unit_Stress, sigma), 8, metric ? 0 : 3) +
              " " + Unit_Name(Unit_Stress, metric);
    const double opening = k_n > 0 ? sigma / k_n : 0.0;
    for (double x : slips) {
      Interface_Point point;
      Interface_Point_Update(m, opening, x, point);
      s.X.push_back(Shown(metric, Unit_Length_mm, x));
      s.Y.push_back(Shown(metric, Unit_Stress, point.Tau));
    }
    c.Series.push_back(std::move(s));
  }
  return c;
}

// ---- Reinforcement ----------------------------------------------------------------------------

Material_Curve Steel_Curve(const Material& m, bool steel, bool metric) {
  Material_Curve c;
  const Table<double>& x_table = steel ? m.Steel_Strain_A : m.Steel_Strain_B;
  const Table<double>& y_table = steel ? m.Steel_Stress_A : m.Steel_Stress_B;
  const int n = std::min(x_table.count(), y_table.count());
  const int x_kind = steel ? 0 : Unit_Length_mm;
  c.X_Title = steel ? "Strain [1/1000]" : Titled("Slip", Unit_Name(Unit_Length_mm, metric));
  c.Y_Title = Titled(steel ? "Steel stress" : "Bond stress", Unit_Name(Unit_Stress, metric));
  if (steel)
    c.Caption.push_back("(Unloads parallel to the first segment)");
  else
    c.Caption = {"(Unloads with the unloading factor times the first slope)",
                 "Dowel stiffness [N/mm3] = " + Number_Text(m.Steel_Const_1) +
                     "   Unloading factor [-] = " + Number_Text(m.Steel_Const_2)};
  std::vector<double> corners;
  for (int i = 1; i <= n; ++i) {
    corners.push_back(x_table[i]);
    c.Mark_X.push_back(Shown(metric, x_kind, x_table[i]));
    c.Mark_Y.push_back(Shown(metric, Unit_Stress, y_table[i]));
  }
  const double end = Axis_End(corners.empty() ? 1.0 : 1.1 * std::max(corners.back(), 0.0));
  Curve_Series s;
  for (double x : Grid(0, end, corners)) {
    double stress = 0;
    if (steel) {
      Bar_Steel_State state;
      Bar_Steel_Stress(m, x * 1e-3, state);
      stress = state.Stress;
    } else {
      Bar_Bond_State state;
      Bar_Bond_Stress(m, x, state);
      stress = state.Stress;
    }
    s.X.push_back(Shown(metric, x_kind, x));
    s.Y.push_back(Shown(metric, Unit_Stress, stress));
  }
  c.Series.push_back(std::move(s));
  return c;
}

}  // namespace

std::vector<Material_Property> Material_Properties(const Material& m) {
  using P = Material_Property;
  std::vector<P> list;
  if (m.Is_Interface) return {P::Joint_Normal, P::Joint_Shear};
  if (m.Is_Reinforcement) return {P::Steel, P::Bond, P::Steel_Dilatation};
  if (m.Has_Thermal) {
    list.insert(list.end(), {P::Capacity, P::Conductivity, P::Maturity_Rate});
    if (m.Dutch_Active) list.push_back(P::Weighted_Maturity_Rate);
    if (m.Heat_Model == "CONS" || m.Heat_Model == "CORE" || m.Heat_Model == "DANI" || m.Heat_Model == "PIWI")
      list.insert(list.end(), {P::Heat, P::Hydration});
  }
  if (m.Has_Hygral) list.insert(list.end(), {P::Isotherm, P::Diffusion});
  if (m.Has_Mechanical) {
    list.insert(list.end(), {P::Thermal_Dilatation, P::Autogeneous_Dilatation, P::Hygral_Dilatation});
    for (P p : {P::E, P::E_Mod_A, P::Tau_A, P::E_Mod_B, P::Tau_B, P::Nu, P::Ft, P::Fc})
      if (Point_Count(*Table_Of(m, p)) > 0) list.push_back(p);
    const Point_Law law = Law_Of(m);
    if ((law == Point_Law::Maxwell_Chain && Chain_Size(m) > 0) || law == Point_Law::Burger_Model)
      list.push_back(P::Relaxation);
    if (law == Point_Law::Maxwell_Chain && Chain_Size(m) > 0) list.push_back(P::Chain_Coefficients);
  }
  return list;
}

const char* Property_Name(Material_Property p) {
  using P = Material_Property;
  switch (p) {
    case P::Capacity:
      return "Heat capacity";
    case P::Conductivity:
      return "Conductivity";
    case P::Maturity_Rate:
      return "Maturity rate";
    case P::Weighted_Maturity_Rate:
      return "Weighted maturity rate";
    case P::Heat:
      return "Heat of hydration";
    case P::Hydration:
      return "Degree of hydration";
    case P::Isotherm:
      return "Sorption isotherm";
    case P::Diffusion:
      return "Diffusion coefficient";
    case P::Thermal_Dilatation:
      return "Thermal dilatation";
    case P::Autogeneous_Dilatation:
      return "Autogeneous dilatation";
    case P::Hygral_Dilatation:
      return "Hygral dilatation";
    case P::E:
      return "E-modulus";
    case P::Nu:
      return "Poisson ratio";
    case P::Ft:
      return "Tensile strength";
    case P::Fc:
      return "Compressive strength";
    case P::E_Mod_A:
      return "E-mod A (Maxwell)";
    case P::Tau_A:
      return "Tau A (Maxwell)";
    case P::E_Mod_B:
      return "E-mod B (Kelvin)";
    case P::Tau_B:
      return "Tau B (Kelvin)";
    case P::Relaxation:
      return "Relaxation";
    case P::Chain_Coefficients:
      return "Chain coefficients";
    case P::Joint_Normal:
      return "Normal stress - opening";
    case P::Joint_Shear:
      return "Shear stress - slip";
    case P::Steel:
      return "Steel stress - strain";
    case P::Bond:
      return "Bond stress - slip";
    case P::Steel_Dilatation:
      return "Thermal dilatancy";
  }
  return "";
}

Material_Curve Material_Curve_Of(const Material& m, Material_Property p, bool metric) {
  const std::vector<Material_Property> offered = Material_Properties(m);
  Material_Curve c;
  if (std::find(offered.begin(), offered.end(), p) != offered.end()) {
    using P = Material_Property;
    switch (p) {
      case P::Capacity:
        c = Capacity_Curve(m, metric);
        break;
      case P::Conductivity:
        c = Conductivity_Curve(m, metric);
        break;
      case P::Maturity_Rate:
        c = Maturity_Rate_Curve(m, metric);
        break;
      case P::Weighted_Maturity_Rate:
        c = Weighted_Rate_Curve(m, metric);
        break;
      case P::Heat:
      case P::Hydration:
        c = Heat_Curve(m, p == P::Hydration, metric);
        break;
      case P::Isotherm:
        c = Isotherm_Curve(m, metric);
        break;
      case P::Diffusion:
        c = Diffusion_Curve(m, metric);
        break;
      case P::Relaxation:
        c = Relaxation_Curve(m, metric);
        break;
      case P::Chain_Coefficients:
        c = Chain_Curve(m);
        break;
      case P::Joint_Normal:
        c = Joint_Normal_Curve(m, metric);
        break;
      case P::Joint_Shear:
        c = Joint_Shear_Curve(m, metric);
        break;
      case P::Steel:
      case P::Bond:
        c = Steel_Curve(m, p == P::Steel, metric);
        break;
      default:
        c = Table_Curve(m, *Table_Of(m, p), Kind_Of(p), metric);
        break;
    }
  }
  c.Title = Trimmed(m.Name) + " - " + Property_Name(p);
  return c;
}

// ---- The picture ------------------------------------------------------------------------------

namespace {

inline constexpr Plot_Colour Raster_Colour{225, 225, 225};
inline constexpr Plot_Colour Series_Colours[] = {
    {0, 0, 255}, {220, 0, 0}, {0, 150, 0}, {255, 128, 0}, {160, 0, 160}, {0, 150, 150}, {120, 120, 0},
};
inline constexpr int Series_Colour_Count = sizeof Series_Colours / sizeof Series_Colours[0];
inline constexpr int Caption_Size = Extremes_Size;
inline constexpr double Smallest_Graph = 60;

// A text's size in pixels, as the surface's font sets it roughly: a character is 0.65 of the point
// size wide (a digit of the common sans fonts), a line 1.5 of it high.
struct Text_Metrics {
  double pixels_per_point;
  double width(const std::string& text, int size) const {
    return 0.65 * size * pixels_per_point * text.size();
  }
  double height(int size) const { return 1.5 * size * pixels_per_point; }
};

// One axis of the graph: where its ticks are, their texts, and the position of a value along it as
// a fraction of the axis.
struct Axis {
  bool log = false;
  double lo = 0, hi = 1;  // in the axis's own measure (log10 of the value on a log axis)
  std::vector<double> ticks;
  std::vector<std::string> labels;

  // NaN for a value the axis cannot show.
  double fraction(double v) const {
    if (!std::isfinite(v) || (log && v <= 0)) return NAN;
    const double at = log ? std::log10(v) : v;
    return (at - lo) / (hi - lo);
  }
};

// The decimals of a tick value on a linear axis of this step and extent: a fixed number as fine as
// the step, or scientific notation for very small or very large values.
int Tick_Decimals(double step, double largest) {
  if (largest >= 1e6 || step < 1e-3) return -2;
  if (step >= 1) return 0;
  return std::clamp(static_cast<int>(std::ceil(-std::log10(step) - 1e-9)), 1, 10);
}

Axis Make_Axis(const std::vector<double>& values, bool log, bool data_fills) {
  Axis a;
  a.log = log;
  double lo = INFINITY, hi = -INFINITY;
  for (double v : values)
    if (std::isfinite(v) && (!log || v > 0)) {
      lo = std::min(lo, v);
      hi = std::max(hi, v);
    }
  if (log) {
    if (!(lo <= hi)) lo = 1, hi = 10;
    int first = static_cast<int>(std::floor(std::log10(lo) + 1e-9));
    int last = static_cast<int>(std::ceil(std::log10(hi) - 1e-9));
    if (last <= first) last = first + 1;
    a.lo = first;
    a.hi = last;
    for (int k = first; k <= last; ++k) {
      a.ticks.push_back(k);
      const double v = std::pow(10.0, k);
      a.labels.push_back(k >= 0 && k <= 5   ? Format_Number_Trimmed(v, 14, 0)
                         : k < 0 && k >= -3 ? Format_Number_Trimmed(v, 14, -k)
                                            : Format_Number_Trimmed(v, 14, -1));
    }
    return a;
  }
  if (!(lo <= hi)) lo = 0, hi = 1;
  if (!data_fills) {
    // A value axis starts at zero where the values keep one sign and zero is near; a flat line
    // stands in the middle of its axis.
    if (lo == hi) {
      if (lo == 0) {
        lo = -1, hi = 1;
      } else {
        const double twice = 2 * lo;
        lo = std::min(0.0, twice);
        hi = std::max(0.0, twice);
      }
    } else if (lo > 0 && lo <= 0.5 * hi) {
      lo = 0;
    } else if (hi < 0 && hi >= 0.5 * lo) {
      hi = 0;
    }
  }
  const Ticks t = Linear_Ticks(lo, hi);
  // The axis of the sampled quantity ends where its samples end, with the ticks within; a value
  // axis ends at whole ticks.
  a.lo = data_fills && hi > lo ? lo : t.First;
  a.hi = data_fills && hi > lo ? hi : t.Last;
  const long long first = std::llround(std::ceil(a.lo / t.Step - 1e-6));
  const long long last = std::llround(std::floor(a.hi / t.Step + 1e-6));
  const int decimals = Tick_Decimals(t.Step, std::max(std::abs(t.First), std::abs(t.Last)));
  for (long long k = first; k <= last; ++k) {
    const double v = k == 0 ? 0.0 : static_cast<double>(k) * t.Step;  // no "-0"
    a.ticks.push_back(v);
    a.labels.push_back(Format_Number_Trimmed(v, 14, decimals));
  }
  return a;
}

}  // namespace

Material_Picture Plot_Material_Curve(Plot_Surface& s, const Material_Curve& c) {
  s.Clear();
  Material_Picture picture;
  picture.Title = c.Title;
  const Text_Metrics text{20 / s.Twips_Per_Pixel()};
  const double width = s.Pixel_Width(), height = s.Pixel_Height();
  const double margin = 12;
  double y = 6;
  s.Text(margin, y, c.Title, Title_Size, Black);
  y += text.height(Title_Size) + 2;
  for (const std::string& line : c.Caption) {
    s.Text(margin, y, line, Caption_Size, Black);
    y += text.height(Caption_Size);
  }

  std::vector<double> xs = c.Mark_X, ys = c.Mark_Y;
  for (const Curve_Series& series : c.Series) {
    xs.insert(xs.end(), series.X.begin(), series.X.end());
    ys.insert(ys.end(), series.Y.begin(), series.Y.end());
  }
  if (c.Series.empty()) {
    s.Refresh();
    return picture;
  }
  const Axis ax = Make_Axis(xs, c.Log_X, true), ay = Make_Axis(ys, c.Log_Y, false);

  double label_width = 0;
  for (const std::string& label : ay.labels)
    label_width = std::max(label_width, text.width(label, Caption_Size));
  const double line = text.height(Caption_Size);
  const double top = y + line + 10;
  const double left = margin + std::max(label_width + 8, 30.0);
  const double right = width - 24;
  const double bottom = height - 2 * line - 14;
  if (right - left < Smallest_Graph || bottom - top < Smallest_Graph) {
    s.Refresh();
    return picture;
  }
  picture.Graph_Drawn = true;
  auto px = [&](double v) { return left + ax.fraction(v) * (right - left); };
  auto py = [&](double v) { return bottom - ay.fraction(v) * (bottom - top); };

  // The raster at the ticks, then the frame over it.
  auto inside = [](double fraction) { return fraction > 1e-6 && fraction < 1 - 1e-6; };
  for (std::size_t k = 0; k < ax.ticks.size(); ++k) {
    const double f = (ax.ticks[k] - ax.lo) / (ax.hi - ax.lo);
    const double x = left + f * (right - left);
    if (inside(f)) s.Line(x, top, x, bottom, Raster_Colour, Line_Style::Solid, 1);
    s.Line(x, bottom, x, bottom + 4, Black, Line_Style::Solid, 1);
    s.Text(x - text.width(ax.labels[k], Caption_Size) / 2, bottom + 6, ax.labels[k], Caption_Size, Black);
  }
  for (std::size_t k = 0; k < ay.ticks.size(); ++k) {
    const double f = (ay.ticks[k] - ay.lo) / (ay.hi - ay.lo);
    const double yk = bottom - f * (bottom - top);
    if (inside(f)) s.Line(left, yk, right, yk, Raster_Colour, Line_Style::Solid, 1);
    s.Line(left - 4, yk, left, yk, Black, Line_Style::Solid, 1);
    s.Text(left - 6 - text.width(ay.labels[k], Caption_Size), yk - line / 2 + 1, ay.labels[k], Caption_Size,
           Black);
  }
  // A zero line where the values change sign.
  if (!ay.log && ay.lo < 0 && ay.hi > 0) s.Line(left, py(0), right, py(0), Grey, Line_Style::Dashed, 1);
  s.Line(left, top, right, top, Black, Line_Style::Solid, 1);
  s.Line(right, top, right, bottom, Black, Line_Style::Solid, 1);
  s.Line(right, bottom, left, bottom, Black, Line_Style::Solid, 1);
  s.Line(left, bottom, left, top, Black, Line_Style::Solid, 1);
  s.Text((left + right) / 2 - text.width(c.X_Title, Caption_Size) / 2, bottom + 6 + line, c.X_Title,
         Caption_Size, Black);
  s.Text(margin, top - line - 4, c.Y_Title, Caption_Size, Black);

  for (std::size_t i = 0; i < c.Series.size(); ++i) {
    const Curve_Series& series = c.Series[i];
    const Plot_Colour colour = Series_Colours[i % Series_Colour_Count];
    const std::size_t n = std::min(series.X.size(), series.Y.size());
    for (std::size_t k = 1; k < n; ++k) {
      const double x1 = px(series.X[k - 1]), y1 = py(series.Y[k - 1]);
      const double x2 = px(series.X[k]), y2 = py(series.Y[k]);
      if (!std::isfinite(x1) || !std::isfinite(y1) || !std::isfinite(x2) || !std::isfinite(y2)) continue;
      s.Line(x1, y1, x2, y2, colour, Line_Style::Solid, 2);
      ++picture.Segments;
    }
  }
  for (std::size_t k = 0; k < c.Mark_X.size() && k < c.Mark_Y.size(); ++k) {
    const double x = px(c.Mark_X[k]), yk = py(c.Mark_Y[k]);
    if (!std::isfinite(x) || !std::isfinite(yk)) continue;
    s.Circle(x, yk, 3, Black);
    ++picture.Marks;
  }

  // The legend goes into the corner of the frame that the curves cross least.
  bool labelled = c.Series.size() > 1;
  double legend_width = 0;
  for (const Curve_Series& series : c.Series)
    legend_width = std::max(legend_width, text.width(series.Label, Caption_Size));
  if (labelled) {
    const double w = legend_width + 40, h = line * c.Series.size() + 8;
    const double corners[4][2] = {{right - w - 6, top + 6},
                                  {right - w - 6, bottom - h - 6},
                                  {left + 6, top + 6},
                                  {left + 6, bottom - h - 6}};
    int best = 0;
    std::size_t fewest = SIZE_MAX;
    for (int k = 0; k < 4; ++k) {
      std::size_t inside = 0;
      for (const Curve_Series& series : c.Series)
        for (std::size_t j = 0; j < series.X.size() && j < series.Y.size(); ++j) {
          const double x = px(series.X[j]), yj = py(series.Y[j]);
          inside +=
              x >= corners[k][0] && x <= corners[k][0] + w && yj >= corners[k][1] && yj <= corners[k][1] + h;
        }
      if (inside < fewest) fewest = inside, best = k;
    }
    const double x0 = corners[best][0], y0 = corners[best][1];
    s.Box(x0, y0, x0 + w, y0 + h, White);
    for (std::size_t i = 0; i < c.Series.size(); ++i) {
      const double yi = y0 + 4 + i * line;
      const Plot_Colour colour = Series_Colours[i % Series_Colour_Count];
      s.Line(x0 + 6, yi + line / 2, x0 + 30, yi + line / 2, colour, Line_Style::Solid, 2);
      s.Text(x0 + 34, yi, c.Series[i].Label, Caption_Size, Black);
    }
  }
  s.Refresh();
  return picture;
}

}  // namespace pvx
