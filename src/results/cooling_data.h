// The water temperature history of the cooling circuits, kept by the analysis during a run and
// stored at its end in the family's `.COO` text file.
//
// The file follows the text convention of the project file: numbers in plain decimal with a point,
// separated by commas and line ends (a reader takes either). For each circuit in order: its
// History_Count, then per record Time (double), Flow, Capacity (singles) and the water temperature
// at each station (singles), station 1 to the circuit's number of pipe sections + 2.
#pragma once

#include <cstdint>
#include <string>

#include "app/table.h"

namespace pvx {

// "File " + name + " is corrupted. Computed data on water temperatures in cooling pipes is not
// available"
std::string Cooling_Corrupted(const std::string& name);

struct History_Record {
  double Time = 0;     // hours
  float Flow = 0;      // m3/h, the circuit's flow function at Time
  float Capacity = 0;  // kW
  Table<float> Water;  // oC, per station
  bool operator==(const History_Record&) const = default;
};

struct Circuit_History {
  Table<History_Record> History;  // History_Count records, in time order
  bool operator==(const Circuit_History&) const = default;
};

// Appends a record at the end of a step: `water` per station, and the capacity a closed system
// would need, (last station - first station) x flow x liquid capacity / 3600, in kW.
void Append_History_Record(Circuit_History& circuit, double time, double flow, const Table<float>& water,
                           double liquid_capacity);

// The text of the file, and its parsing. `stations` gives each circuit's number of stations; a
// parse fails on a missing or malformed number, a negative count, a count that the rest of the
// text cannot hold, or a count above the 16 bits of the format.
std::string Encode_Cooling_Text(const Table<Circuit_History>& circuits);
bool Parse_Cooling_Text(const std::string& text, const Table<int>& stations, Table<Circuit_History>& circuits,
                        std::string& detail);

}  // namespace pvx
