// The state of the program around the Project: where it works, its labels, the iteration
// settings of the run, and the start-up order of its defaults. The windows are the desktop
// program's; the values are here so that the batch tool and the tests start the same way.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "app/project.h"

namespace pvx {

inline constexpr const char* Thermal_Label = "KIVA version 8.6.2";
inline constexpr const char* Mechanical_Label = "TRV version 8.6.2";
inline constexpr const char* Moisture_Label = "PELDANOR version 8.6.2";
inline constexpr const char* Program_Name = "KIVA_TRV_PELDANOR_8";

// Where the user stands in the work from design to results; it decides the buttons of the main
// toolbar (see workflow.h).
enum class Work_State { No_Project, Design, Run_Set, Computed };

struct Shell {
  std::string Work_Directory;    // relative names of the database and the results refer to it
  std::string Application_Path;  // the program's folder, where the default database is looked for
  std::string Version_Label = Thermal_Label;
  // Iterations of the mechanical loop before the user is asked whether to go on, and the three
  // convergence limits of that loop. Fixed defaults at every start.
  std::int16_t Mechanical_Iteration_Limit = 10;
  double Mechanical_Limits[3] = {0.001, 0.001, 0.001};
  bool Decimal_Comma = false;
  // The number formats of the scales, from five decimals in scientific form to ten fixed.
  std::vector<std::string> Number_Formats;
  // Size constants of the design panel, in pixels.
  int Panel_Size_Small = 150;
  int Panel_Size_Large = 800;
  Work_State State = Work_State::No_Project;
  std::string Caption;  // of the main window
};

// Start-up of the values: iteration settings, material variants on, the decimal sign of the
// locale, a new Project, the tables of number formats and the graphical defaults.
void Initialize_Program(Shell& shell, Project& p, bool decimal_comma);

// What opening a file does beyond reading it: a file older than version 108 had its results
// written under other rules, so its result name is forgotten; the project counts as not saved.
void After_Opening(Project& p);

}  // namespace pvx
