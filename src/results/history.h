// The history plots: a result variable against time at the points picked on the result panel (or,
// on the reaction page, at the picked supports), one curve per run and point.
//
// Collect_History reads every stored step of every run once and serves all points from that one
// record, so its cost grows with the steps and runs, not with the points. What the "Evolution"
// window does with the result:
//   the curves       History_Picture_X and History_Picture_Y of each stored step, joined by lines.
//   "Differences"    History_Difference of the two chosen curves, drawn with Difference_Picture_Y.
//   "Mebin Criteria" Compute_Intersections, Mebin_Line for the line, Store_Intersections.
//   "Record"         Recording (after Set_Record_Name when no collection name was given yet).
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "app/project.h"
#include "results/result_files.h"
#include "results/run_index.h"
#include "results/viewer_state.h"

namespace pvx {

// The program's texts of the history plots.
inline constexpr const char* History_Caption = "Evolution";
inline constexpr const char* Mebin_Caption = "Selection Criteria";
inline constexpr const char* Mebin_Materials_Column = "Materials ";
inline constexpr const char* Mebin_Results_Column = "Results:";
inline constexpr const char* Mebin_Result_File_Title = "Select Result File";
inline constexpr const char* Mebin_Result_File_Filter = "(*.txt)|*.txt|Alle Files (*.*)|*.*|Projekten";
inline constexpr const char* Collection_Name_Message =
    "A collection name for the files to be stored must be provided.";
inline constexpr const char* History_Time_Title = "Time [hours]";

// The axes of one variable's history graph, set by the "Scale Wizzard"; Fixed keeps them.
struct History_Scale {
  double TimeMin = 0, TimeMax = 0, ValueMin = 0, ValueMax = 0;
  bool Fixed = false;
  bool operator==(const History_Scale&) const = default;
};
using History_Scales = std::array<History_Scale, Result_Variable_Count + 1>;  // by variable, 0..40

// The curves of a history plot and the axes they are drawn on.
struct History_Data {
  std::int16_t Variable = 0;
  int Runs = 0;    // R
  int Items = 0;   // P: points, or supports for the reactions (21)
  int Stored = 0;  // S
  // HistoryValues[r, p, s] and HistoryStrength[r, p, s], run outer, stored step inner; the
  // strength is the tensile strength at the point for 13 to 19, else 0.
  std::vector<double> Values, Strength;
  Table<double> Storage_Time;          // the time of each stored step, hours
  std::vector<std::string> Run_Names;  // the material name of each run, entry r - 1 for run r
  // The axes (steps 5 and 6) and the picture's scales in twips per unit (step 7).
  double TimeMin = 0, TimeMax = 1, ValueMin = 0, ValueMax = 1;
  double TimeScale = 0, ValueScale = 0;
};
inline double& HistoryValues(History_Data& h, int run, int item, int stored) {
  return h.Values[static_cast<std::size_t>(((run - 1) * h.Items + (item - 1)) * h.Stored + (stored - 1))];
}
inline double HistoryValues(const History_Data& h, int run, int item, int stored) {
  return h.Values[static_cast<std::size_t>(((run - 1) * h.Items + (item - 1)) * h.Stored + (stored - 1))];
}
inline double& HistoryStrength(History_Data& h, int run, int item, int stored) {
  return h.Strength[static_cast<std::size_t>(((run - 1) * h.Items + (item - 1)) * h.Stored + (stored - 1))];
}
inline double HistoryStrength(const History_Data& h, int run, int item, int stored) {
  return h.Strength[static_cast<std::size_t>(((run - 1) * h.Items + (item - 1)) * h.Stored + (stored - 1))];
}

// Whether a variable has a history: a value at a point (Value_At_Point), or the reactions (21).
bool Is_History_Variable(int variable);

// The curves of `variable` for all runs of an open family. The stored steps and their times are
// those of `index` (the current run's); the index of every run is read first (in the project's
// file version), so a run whose files hold fewer stored steps fails with the reader's message. Every stored
// step of every run is read once, into buffers of its own (the viewer's record stays as it is); each point
// takes Value_At_Point of its element and local coordinates, whether or not its element is active then; on
// the reaction page (21) item p is the reaction of support p. The axes are then set as
// Set_History_Axes sets them. False without a message for a variable without a history; false with
// the reader's message when a record cannot be read.
bool Collect_History(Result_Family& family, const Project& p, const Run_Index& index, int variable,
                     const Table<History_Point>& points, const Table<std::int32_t>& supports,
                     bool to_imperial, History_Scale& scale, History_Data& data, std::string& message);

// The axes of a history graph from its curves: unless `scale.Fixed`, the time from 0 to the last
// stored time and the values over all curves, an extent that is not positive made one long, and
// these become the scale's four values; then the graph takes the scale's values, TimeScale = 6000 /
// (TimeMax - TimeMin) and ValueScale = 4500 / (ValueMax - ValueMin). Collect_History ends with it;
// the "Scale Wizzard" calls it again after a scale changed, without reading the records again.
void Set_History_Axes(History_Data& h, History_Scale& scale);

// The picture of the graph, in twips: times from X = 800 over 6000, values from Y = 4800 up over
// 4500.
inline constexpr double History_Picture_Left = 800, History_Picture_Right = 6800;
inline constexpr double History_Picture_Top = 300, History_Picture_Bottom = 4800;
double History_Picture_X(const History_Data& h, double time);
double History_Picture_Y(const History_Data& h, double value);

// "Differences": curve a less curve b (items of the same run) at every stored step, and its picture
// Y, 4800 - difference ValueScale: the graph is not rescaled for it.
Table<double> History_Difference(const History_Data& h, int run, int a, int b);
double Difference_Picture_Y(const History_Data& h, double difference);

// The title of the value axis: "Reaction Force [kN]" (or [kip]) for 21, else the name the line cut
// gives the variable in its file ("Major principle stresses [MPa]", "Ratio  Szz/ft", ...).
std::string History_Axis_Title(int variable, bool metric);

// The cut of all runs of "Selection Criteria": by time (at time c, the value of each run's first
// item, interpolated linearly between the two stored steps with t(s) <= c < t(s + 1); a time
// outside that gives no row) or by value (the first stored step whose value reaches c, c <= V(s),
// and the time where the curve meets c, interpolated with the step before; the first step's time
// when the first step reaches c, the earlier time when the two values are equal, no row for a run
// that never reaches c).
enum class Mebin_Kind { Time = 0, Value = 1 };
struct Intersection_Row {
  std::string Material;  // the run's material name
  double Result = 0;
  std::string Text;  // the result in the pattern "0.00"
  int Run = 0;
  bool operator==(const Intersection_Row&) const = default;
};
// The rows sorted by result, ascending (runs of equal result in run order).
Table<Intersection_Row> Compute_Intersections(const History_Data& h, Mebin_Kind kind, double c);

// The line of the criterion in the graph: a vertical line at time c from Y = 300 to 4800 when its
// picture X lies in [800, 6800), or a horizontal line at value c from X = 800 to 6800 when its
// picture Y lies in [300, 4800); else nothing is drawn.
struct Mebin_Line {
  bool Drawn = false;
  double X1 = 0, Y1 = 0, X2 = 0, Y2 = 0;
};
Mebin_Line Mebin_Line_Of(const History_Data& h, Mebin_Kind kind, double c);

// The text of "Store Results", CR LF line ends: the project title, the criterion value, the number
// of rows, then one line per row with the material name in double quotes, the result and the row's
// place in the sorted order, separated by commas. Numbers in their shortest exact form.
std::string Intersections_Text(const std::string& title, double c, const Table<Intersection_Row>& rows);
// Writes it through a temporary file and a rename; false with Write_Failed_Message + path.
bool Store_Intersections(const std::string& path, const std::string& title, double c,
                         const Table<Intersection_Row>& rows, std::string& message);

// The collection of recorded files: the base name and the counter of files written under it.
struct Recording_State {
  std::string RecordName;
  std::int16_t RecordCount = 0;
};
// The base name from the name of the save dialog: an ending ".TXT", in any case, is cut.
void Set_Record_Name(Recording_State& state, const std::string& chosen);

// The header line of a recorded file ("Time [hours]  Temperature [oC]", ...; always metric); ""
// for a variable without one.
std::string Recording_Header(int variable);

// The text of a recorded file, CR LF line ends: the header line (when the variable has one); per
// run a line with its name when there are several; per item "Point " and its number, then one line
// per stored step with the time (decimals 6, width 14) and the value (decimals -4, width 12), the
// value in the print zone after the time (column 15).
std::string Recording_Text(const History_Data& h);

// "Record": without a collection name false with Collection_Name_Message (the window shows it and
// the save dialog, Set_Record_Name, and records again). Otherwise the counter rises and the file
// RecordName + counter + ".txt" is written; `message` is "File " + that name + " is stored ", or
// Write_Failed_Message + the name on failure. `path` gets the file's name.
bool Recording(Recording_State& state, const History_Data& h, std::string& path, std::string& message);

}  // namespace pvx
