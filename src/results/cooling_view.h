// The cooling results as an engineer reads them: the history of one circuit's water drawn as three
// graphs (inlet and outlet temperature, flow, the capacity a closed system would need), the same
// history as a text file, and all circuits as CSV for a spreadsheet.
#pragma once

#include <string>

#include "app/table.h"
#include "results/cooling_data.h"
#include "results/plot_surface.h"

namespace pvx {

// The program's texts of the cooling results.
inline constexpr const char* Cooling_Caption = "Cooling";
inline constexpr const char* Store_Circuit_Caption = "Store results in a file";
inline constexpr const char* Circuit_File_Title = "Select Result File";
inline constexpr const char* Circuit_File_Filter = "(*.txt)|*.txt|Alle Files (*.*)|*.*|Projekten";
inline constexpr const char* Time_Axis_Caption = "Time in hours";

// "Circuit " + number.
std::string Circuit_Caption(int circuit_number);

// Clears the picture, prints the title, and draws the three graphs of the circuit side by side,
// each w = (width - 2300) / 3 twips wide and (height - 1000) twips high; below 101 twips either
// way the graphs are left out. The time axis runs from the first record to the last, at least one
// hour. The values show in the metric or the imperial system; a flat quantity gets the smallest
// extent of its graph (0.1 for temperature and flow, 0.01 for capacity), so that its scale stays
// valid.
void Plot_Circuit_Data(Plot_Surface& s, const Circuit_History& h, int circuit_number, bool metric);

// The text file of one circuit, always metric: per station the times and water temperatures, then
// the times and capacities, with CR LF line ends as the program's other text files.
std::string Circuit_Data_Text(const Circuit_History& h, int circuit_number);

// Writes Circuit_Data_Text to `path` through a temporary file beside it and a rename, so a failed
// write leaves an older file as it was. On failure `message` is "Error occured writing file  " +
// path.
bool Store_Circuit_Data(const std::string& path, const Circuit_History& h, int circuit_number,
                        std::string& message);

// All circuits as CSV, metric: the header circuit,time_h,flow_m3_per_h,capacity_kW,water_1..water_N
// with N the most stations of any circuit, then one row per record of every circuit in order; a
// circuit with fewer stations leaves its last cells empty.
std::string Circuit_History_Csv(const Table<Circuit_History>& circuits);

}  // namespace pvx
