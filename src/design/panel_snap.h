// Snapping of the pointer and the grid settings of the panel ("Graphical aids and options").
#pragma once

#include <string>

#include "design/panel.h"

namespace pvx {

// Every pointer position passes here. The position is rounded to the snap size (halves to the
// even multiple) and kept as Mouse_X/Y; with grid snapping on it goes to the nearest point of the
// rectangular grid, or else of the circular grid, and back to the snap size; last, Snap_X/Y get
// it rounded to a tenth of a millimetre.
void Snap_Position(const Project& p, Design_Panel& panel, double x, double y);

// A coordinate of the panel's labels in display units with two decimals ("1234.50").
std::string Position_Label(const Project& p, double value_mm);

// What the picture shows, by the tick boxes of the grid dialog.
struct Design_Display {
  bool Points = true, Macros = true, Borders = true, Circuits = true, Frame = true, Axes = true,
       Coordinates = false;
  bool operator==(const Design_Display&) const = default;
};

// The working copy of the grid dialog: the Project's grid and snap settings and what is shown.
struct Graf_Settings {
  bool Rect_Grid_Snap = false, Rect_Grid_Visible = false;
  double Grid_X_Min = 0, Grid_X_Max = 0, Grid_X_Increment = 0;
  double Grid_Y_Min = 0, Grid_Y_Max = 0, Grid_Y_Increment = 0;
  bool Circ_Grid_Snap = false, Circ_Grid_Visible = false;
  double Circ_X_Center = 0, Circ_Y_Center = 0;
  double Circ_Outer_Radius = 0, Circ_Inner_Radius = 0;
  double Circ_Start_Angle = 0, Circ_End_Angle = 0, Circ_Angle_Increment = 0;
  double Snap_Size = 10;
  double Mouse_Radius = 3;
  bool Snap_On_Grid = false;  // Snap_Mode 1
  Design_Display Display;
  bool operator==(const Graf_Settings&) const = default;
};

// A grid with more intervals than this along one axis is refused: its points would cover the
// picture and take long to draw.
inline constexpr double Max_Grid_Intervals = 1000;

Graf_Settings Read_Graf_Settings(const Project& p, const Design_Display& display);

// The checks of "Apply", in their order; the first that fails gives its message ("X_max < X_min",
// ...) and false.
bool Check_Graf_Settings(const Graf_Settings& g, std::string& message);

// "Apply": with the checks passed the settings go to the Project and the display; otherwise
// nothing changes.
bool Apply_Graf_Settings(const Graf_Settings& g, Project& p, Design_Display& display, std::string& message);

}  // namespace pvx
