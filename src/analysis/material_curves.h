// The material viewer's curves: every property of a material of the database drawn against what it
// depends on, with its formula text and parameters.
//
// A curve is sampled through the procedures the analysis itself calls (the table lookup, the
// thermal and hygral laws, the maturity law and the heat models, the point law of the creep
// models, the joint law and the bar laws), never through a formula of its own, so that what the
// user sees is what a run computes. Where a law has a state (creep, joints, bars) each curve is a
// loading from the virgin state: the stress of a strain held from a loading age on, the envelope of
// a joint opened or slid once, the steel and bond curves of a bar pulled once.
//
// The values are held as the picture shows them, in the metric or the imperial system; the
// parameter lines of the captions keep the units of the database, in which the laws are written.
#pragma once

#include <string>
#include <vector>

#include "material/material.h"
#include "results/plot_surface.h"

namespace pvx {

// Captions of the maturity law and the heat models.
inline constexpr const char* Humidity_Maturity_Caption = "(1/(1+(Ac-Ac*H)^Bc) * ";
inline constexpr const char* Arrhenius_dQ_Caption = "Exp(Q/R +dQ/R*(20-T))*";
inline constexpr const char* Arrhenius_Caption = "Exp(Q/R*";
inline constexpr const char* Arrhenius_End_Caption = "(1/Tref-1/T))";
inline constexpr const char* Weighted_Maturity_Caption =
    " dM/dt = 10 * (C^(0.1*T-1.245) - C^(-2.245)) / Log(C)";
inline constexpr const char* Core_Heat_Caption = " H*a*(M-d)/(1+a*(M-d))";
inline constexpr const char* Danish_Heat_Caption = " H*Exp(-(a/M)^b)";
inline constexpr const char* Constant_Heat_Caption = "(The heat rate is constant !)";
inline constexpr const char* Heat_Rate_Caption = "Heat rate = ";
// Captions of the hygral parameters.
inline constexpr const char* W_C_Caption = "W/C = ";
inline constexpr const char* Cement_Caption = "C [kg/m3] = ";
inline constexpr const char* Air_Caption = "Air [%] = ";
inline constexpr const char* H_Limit_Caption = "H limit [-] = ";
inline constexpr const char* Consumption_Caption = "Consump.fact. = ";
inline constexpr const char* Fixed_Temperature_Caption = "Fixed temperature [C] =";
inline constexpr const char* Default_Hydration_Caption = "Default D.o.h. [-] =";

// What the viewer can draw of a material.
enum class Material_Property {
  Capacity,                // heat capacity against water content (or temperature with latent peaks)
  Conductivity,            // against water content
  Maturity_Rate,           // dM/dt against temperature, a curve per humidity where humidity counts
  Weighted_Maturity_Rate,  // the weighted maturity's rate against temperature
  Heat,                    // heat of hydration against maturity (against time for a constant rate)
  Hydration,               // degree of hydration against maturity
  Isotherm,                // evaporable water against potential, a curve per degree of hydration
  Diffusion,               // diffusion coefficient against potential (logarithmic)
  Thermal_Dilatation,
  Autogeneous_Dilatation,
  Hygral_Dilatation,
  E,
  Nu,
  Ft,
  Fc,
  E_Mod_A,
  Tau_A,
  E_Mod_B,
  Tau_B,
  Relaxation,          // stress per unit of strain held from a loading age on (logarithmic time)
  Chain_Coefficients,  // the unit coefficients of a Maxwell chain against maturity
  Joint_Normal,        // normal stress of a joint against its opening
  Joint_Shear,         // shear stress of a closed joint against its slip
  Steel,               // steel stress against strain
  Bond,                // bond stress against slip
  Steel_Dilatation,    // the bar's thermal dilatancy
};

// The properties a material has, in the viewer's order: thermal, hygral, mechanical; a joint its
// two curves, a reinforcement its three.
std::vector<Material_Property> Material_Properties(const Material& m);
// The name of a property in the viewer's list.
const char* Property_Name(Material_Property p);

// The points of a curve between the ends of its range (the sampled grid holds this many intervals,
// plus the points of the material's tables so that their corners are drawn where they are).
inline constexpr int Curve_Intervals = 200;
// The loading ages of the relaxation curves, hours of maturity at 20 oC (1, 3, 7 and 28 days), and
// the load durations after them: ten a decade from 0.01 to 10000 hours.
inline constexpr double Loading_Ages[4] = {24, 72, 168, 672};
inline constexpr int Durations_Per_Decade = 10;
inline constexpr double First_Duration = 0.01, Last_Duration = 10000;
// The strain of the relaxation curves, held after a loading step of this length (hours).
inline constexpr double Relaxation_Strain = 1e-4;
inline constexpr double Loading_Step = 1e-6;

// One line of a picture: its points in display units, and its name in the legend ("" for none).
struct Curve_Series {
  std::string Label;
  std::vector<double> X, Y;
};

struct Material_Curve {
  std::string Title;             // material name - property name
  std::string X_Title, Y_Title;  // with their units
  std::vector<std::string> Caption;
  std::vector<Curve_Series> Series;
  // The points the material gives (its table), marked on the curve; in display units.
  std::vector<double> Mark_X, Mark_Y;
  bool Log_X = false, Log_Y = false;
};

// The curve of property p of material m, in the metric or the imperial system. A property the
// material does not have gives a curve without series.
Material_Curve Material_Curve_Of(const Material& m, Material_Property p, bool metric);

// What a drawn picture showed.
struct Material_Picture {
  std::string Title;
  bool Graph_Drawn = false;  // false when the picture is too small for a graph
  int Segments = 0;          // curve segments drawn
  int Marks = 0;             // table points marked
};

// Clears the picture and draws the title, the caption lines, and below them the graph: its frame
// on rounded axis ends with a light raster at the ticks, the tick values, the axis titles, the
// curves (the first blue, then red, green, ...), a legend when there are several, and the table
// points as black circles. A logarithmic axis has a tick per decade and leaves out values that are
// not positive. A picture with less than 60 pixels for the graph either way shows the texts only.
Material_Picture Plot_Material_Curve(Plot_Surface& s, const Material_Curve& c);

}  // namespace pvx
