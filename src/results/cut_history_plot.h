// The graphs of the line cut and of the history plots, drawn on a Plot_Surface, and the small
// rules of their windows: how the rubber line's start follows the pointer while a cut is drawn,
// which typed axis limits are taken, and the axes of a history graph after a scale change.
//
// Both graphs are laid out in twips of a picture of fixed size (the line cut's graph from X = 570
// over 2700 and from Y = 1700 up over 1400; the history's from X = 800 over 6000 and from Y = 4800
// up over 4500) and that picture is stretched onto the surface: a window of any size shows the
// whole graph, and a point of the graph lands at twips x * (surface width / frame width) across
// and likewise down.
//
// How the windows use it:
//   "Choice of cut direction"  Cut_Direction; the result panel moves the rubber line's start by
//                              Adjust_Cut_Start at every pointer move while the line is drawn.
//   "Results from linecut"     Plot_Cut on every paint; Edit_Cut_Axis for "Minimum"/"Maximum".
//   "Evolution"                Draw_Historie1, or Plot_History_Differences after "Execute";
//                              Plot_Mebin_Value for the cut of "Selection Criteria".
//   "Scale Wizzard"            Edit_History_Scale, Reset_History_Scale, then Set_History_Axes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "results/history.h"
#include "results/line_cut.h"
#include "results/plot_surface.h"

namespace pvx {

// The program's texts of the cut direction window.
inline constexpr const char* Cut_Direction_Caption = "Choice of cut direction";
inline constexpr const char* Cut_Mode_Captions[4] = {"Horizontally", "Vertically", "Arbitrarily",
                                                     "Fixed angle:"};
inline constexpr const char* Cut_Angle_Unit = "Degr.";
inline constexpr double Degrees_Per_Radian = 57.29577951;

enum class Cut_Mode : std::int16_t { Horizontally = 0, Vertically = 1, Arbitrarily = 2, Fixed_Angle = 3 };

struct Cut_Direction {
  Cut_Mode CutMode = Cut_Mode::Arbitrarily;
  double CutAngle = 45;  // degrees, "Fixed angle:"
  bool operator==(const Cut_Direction&) const = default;
};

// One pointer move while the line is drawn (pixels, y downwards): the line's end is the pointer and
// its start follows the mode. "Horizontally": the start takes the pointer's Y; "Vertically": its X;
// "Arbitrarily": it stays; "Fixed angle:": with L the distance from the start to the pointer and a
// the angle, the start moves to (pointer X - cos(a) L, pointer Y + sin(a) L), so the line rises at
// a to the right on the screen and keeps its length.
void Adjust_Cut_Start(const Cut_Direction& direction, double pointer_x, double pointer_y, double& start_x,
                      double& start_y);

// The picture of a graph in twips and its stretch onto a surface: pixels per twip across and down.
struct Graph_Scale {
  double X = 1, Y = 1;
  bool operator==(const Graph_Scale&) const = default;
};
// The line cut's picture: the graph with room for the value labels on its left, the legend and the
// value title above it and the distances below it.
inline constexpr double Cut_Frame_Width = 3570, Cut_Frame_Height = 2000;
// The history's picture: the graph with room for the curve labels on its right.
inline constexpr double History_Frame_Width = 7900, History_Frame_Height = 5500;
Graph_Scale Stretch_Of(const Plot_Surface& surface, double frame_width, double frame_height);

// The colours of the line cut: the variable red, "ft" blue, "factor * ft" dark green.
inline constexpr Plot_Colour Cut_Value_Colour{255, 0, 0};
inline constexpr Plot_Colour Cut_Strength_Colour{0, 0, 255};
inline constexpr Plot_Colour Cut_Factor_Colour{0, 150, 0};
inline constexpr Plot_Colour Graph_Raster_Colour{200, 200, 200};
inline constexpr int Graph_Text_Size = 8;
inline constexpr const char* Cut_Legend_Texts[3] = {"ft", "factor * ft", "stress"};

// What a drawn line cut showed.
struct Cut_Plot {
  Cut_Extents Extents;
  bool Settings_Taken = true;     // false: a fixed axis with its maximum below its minimum
  std::string Message;            // Fixed_Axis_Message then
  int Pieces_Drawn = 0;           // red pieces
  int Strength_Pieces_Drawn = 0;  // blue and green pieces together
  std::string Length_Label;       // the right-hand distance label
};

// Clears the surface and draws the graph of the cut: the raster with the values on the left and
// the distances along the line below (the right-hand one Cut_Length_Label), the value title above
// and "Distance [m]" (or [yd]) below; each piece as a red line of width 2 from end 1 to end 2; for
// 13 to 18 the strength pieces in blue ("ft") and the same times the factor in dark green ("factor
// * ft") and the legend "ft", "factor * ft", "stress". Lines are clipped to the graph, so that a
// fixed axis narrower than the values leaves the labels clear.
Cut_Plot Plot_Cut(Plot_Surface& surface, const Line_Cut& cut, const Cut_Graph_Settings& settings,
                  bool metric);

// Enter in the "Minimum" or "Maximum" box of the fixed axis: the value is taken unless the
// maximum would lie below the minimum; then false with Fixed_Axis_Message and the settings as they
// were (the window puts the old text back).
enum class Axis_Box { Minimum, Maximum };
bool Edit_Cut_Axis(Cut_Graph_Settings& settings, Axis_Box box, double value, std::string& message);

// The texts of the scale window.
inline constexpr const char* Scales_Caption = "Scale Wizzard";
inline constexpr const char* Scale_Order_Message = "minimum >= maximum";
inline constexpr const char* Reset_Scaling_Caption = "Reset automatical scaling";
// The box texts: times with decimals 2, values with decimals 3 (width 12, trimmed).
std::string History_Time_Box_Text(double time);
std::string History_Value_Box_Text(double value);

// Enter in a box of the scale window: a minimum at or above its maximum, or a maximum at or below
// its minimum, is refused with Scale_Order_Message; a taken value makes the scale Fixed.
enum class Scale_Box_Of_History { Time_Minimum, Time_Maximum, Value_Minimum, Value_Maximum };
bool Edit_History_Scale(History_Scale& scale, Scale_Box_Of_History box, double value, std::string& message);
// "Reset automatical scaling": the scale follows the curves again.
inline void Reset_History_Scale(History_Scale& scale) {
  scale.Fixed = false;
}

// The colour of the history curves: red, blue for 13 to 19.
Plot_Colour History_Curve_Colour(int variable);
// The label of a curve when there are several: "Point p" (or "Support p" on the reaction page),
// preceded by the run's material name and ": " when there are several runs.
std::string History_Curve_Label(const History_Data& h, int run, int item);

// What a drawn history graph showed.
struct History_Plot {
  int Curves = 0;                   // curves with at least one line
  std::vector<std::string> Labels;  // the curve labels printed
};

// Clears the surface and draws the history graph: the raster with the values on the left and the
// times below, the value title (History_Axis_Title) above and "Time [hours]" below, and per run and
// item the lines between the stored steps, width 2, in History_Curve_Colour, each curve labelled at
// its end when there are several. Nothing but the cleared surface for a variable above 40.
History_Plot Draw_Historie1(Plot_Surface& surface, const History_Data& h, bool metric);

// "Differences" after "Execute": the raster of the same axes, its values now the differences (the
// graph is not rescaled: a difference d lies at Y = 4800 - d ValueScale, so the labels run from 0),
// and for every run item a less item b between each pair of stored steps in blue, width 2.
// Returns the number of lines drawn.
int Plot_History_Differences(Plot_Surface& surface, const History_Data& h, bool metric, int a, int b);

// The criterion of "Selection Criteria" as a black line of width 2 over the graph (Mebin_Line_Of);
// false when it lies outside the graph and nothing is drawn.
bool Plot_Mebin_Value(Plot_Surface& surface, const History_Data& h, Mebin_Kind kind, double c);

}  // namespace pvx
