// The logic of the run window, where a computation is started, stopped and watched: its button,
// which graphs are shown where, their titles, and the two curves of a graph in picture
// coordinates. Drawing them is the window's part.
#pragma once

#include <array>
#include <string>
#include <vector>

namespace pvx {

inline constexpr const char* Start_Caption = "Start computations";
inline constexpr const char* Stop_Caption = "Stop computations";
inline constexpr int Diagnostic_Graph_Count = 13;
inline constexpr int Diagnostic_Positions = 8;

// The start/stop button. Its caption is its only state.
struct Run_Button {
  std::string Caption = Start_Caption;
  bool Mechanical_Switch_Enabled = true;  // the switch of the mechanical analysis
};
// Pressing it: while a run goes the press asks the run to stop (and returns false); otherwise the
// caption turns to stop and true tells the caller to start the run.
bool Press_Run_Button(Run_Button& button, bool& stop_computations);

// Title of graph 0..12 in the metric or the imperial system.
const char* Diagnostic_Graph_Title(int graph, bool metric);

// The row of the extreme tables (result variable 1..40) that graph 0..12 draws: temperature,
// maturity, C-maturity, moisture potential and content (1..5), the selected circuit's water
// temperatures, flow and capacity (6..8), the displacements Ux, Uy (11, 12), the major, minor and
// out-of-plane stresses (13..15). 0 for another graph number.
int Diagnostic_Graph_Variable(int graph);
// The unit kind (Convert_Unit) with which the values of a graph are shown in the imperial
// system; 0 where the quantity has no imperial unit. The capacity in kW converts as kJ to Btu,
// per second.
int Diagnostic_Graph_Unit_Kind(int graph);

// The scan options: Check1(0..5) temperature, maturity, C-maturity, moisture potential, moisture
// content, cooling; Check3(0..4) Ux, Uy, major, minor stress, Szz.
struct Scan_Options {
  std::array<bool, 6> Check1{};
  std::array<bool, 5> Check3{};
};

// The position (0..7) of each of the 13 graphs, -1 where it is not shown. Graphs 0..4 come first,
// then the mechanical graphs 8..12, then the three cooling graphs 5, 6, 7, which all follow the
// cooling option. The mechanical graphs stop when the position counter stands at 7, or at 4 when
// the cooling option is on, to keep the last positions for the cooling graphs.
std::array<int, Diagnostic_Graph_Count> Place_Diagnostic_Graphs(const Scan_Options& options);

struct Graph_Point {
  double x = 0, y = 0;
};

// The two curves of one graph up to row `row` (rows from 1; vectors indexed by row, entry 0 not
// used): x = time x 2200 / time(row), y = 1500 - (value - minimum) x 1200 / (maximum - minimum) with
// the overall extremes of the quantity. An overall minimum that is not below the maximum is first
// put 0.01 below it (and so given back). At row 1, or with no time elapsed, there is no curve
// (false).
bool Diagnostic_Curves(const std::vector<double>& time, const std::vector<double>& field_maximum,
                       const std::vector<double>& field_minimum, int row, double overall_maximum,
                       double& overall_minimum, std::vector<Graph_Point>& maximum_curve,
                       std::vector<Graph_Point>& minimum_curve);

}  // namespace pvx
