// The pages of the viewer's variable window: its tabs with their captions, the variable each page
// shows, and which of them a family of results offers. The window builds its tabs from this table.
#pragma once

#include <string>
#include <vector>

#include "results/result_files.h"

namespace pvx {

// Captions on every variable page.
inline constexpr const char* Extremes_Caption = "Extreme values in period:";
inline constexpr const char* Period_Maximum_Caption = "Maximum: ";
inline constexpr const char* Period_Minimum_Caption = "Minimum: ";
inline constexpr const char* Scale_Values_Caption = "Scale Values:";
inline constexpr const char* Scale_Maximum_Caption = "Maximum:";
inline constexpr const char* Scale_Minimum_Caption = "Minimum:";
inline constexpr const char* Undeformed_Visible_Caption = "Undeformed mesh visible";
inline constexpr const char* Ft_Factor_Caption = "ft factor:";

// The variable of the cooling page, whose content is the list of circuits rather than a variable.
inline constexpr int Cooling_Page = 0;

struct Viewer_Page {
  const char* Main_Tab;  // "Physics", "Maturity", ...
  const char* Group;     // a tab within the sub-tabs ("Principals"), or ""
  const char* Sub_Tab;   // "" where the main tab has one page
  int Variable;          // the viewer's number; Cooling_Page for the circuits
};

// All pages in the order of the tabs.
inline constexpr Viewer_Page Viewer_Pages[] = {
    {"Physics", "", "Temperature", 1},
    {"Physics", "", "Humidity", 4},
    {"Physics", "", " Moisture Content", 5},
    {"Maturity", "", "Arrhenious", 2},
    {"Maturity", "", "C-Method", 3},
    {"Cooling", "", "", Cooling_Page},
    {"Mech. Prop.", "", "Tensile str.", 9},
    {"Mech. Prop.", "", " Compressive str.", 10},
    {"Displacements", "", "Deformed mesh", 20},
    {"Displacements", "", "Ux", 11},
    {"Displacements", "", "Uy", 12},
    {"Stresses", "Principals", "Major", 13},
    {"Stresses", "Principals", " Minor", 14},
    {"Stresses", "", "Sxx", 16},
    {"Stresses", "", "Syy", 17},
    {"Stresses", "", "Sxy", 18},
    {"Stresses", "", " Szz", 15},
    {"Stresses", "", "Szz / ft", 19},
    {"Reactions", "", "", 21},
    {"Crack opening", "", "", 22},
    {"Interfaces", "", "Normal Stresses", 30},
    {"Interfaces", "", "Shear Stresses", 31},
    {"Reinforcement", "", "Normal Stress", 32},
    {"Reinforcement", "", "Shear stress", 33},
    {"Reinforcement", "", "Slip", 34},
    {"D.o.h", "", "", 40},
};

// The pages a run's results offer, in tab order: the cooling page when its history was read, the
// others as Variable_Offered says (viewer_state.h).
std::vector<Viewer_Page> Offered_Pages(const Result_Layout& layout, bool moisture, bool cooling_data_ok);

}  // namespace pvx
