#include "app/run_window.h"

#include "app/units.h"

namespace pvx {

bool Press_Run_Button(Run_Button& button, bool& stop_computations) {
  if (button.Caption != Start_Caption) {
    stop_computations = true;
    button.Caption = Start_Caption;
    button.Mechanical_Switch_Enabled = true;
    return false;
  }
  button.Caption = Stop_Caption;
  button.Mechanical_Switch_Enabled = false;
  return true;
}

const char* Diagnostic_Graph_Title(int graph, bool metric) {
  static const char* const titles[Diagnostic_Graph_Count][2] = {
      {"Temperature [oC]", "Temperature [oF]"},
      {"Maturity [hours]", "Maturity [hours]"},
      {"C-Maturity [oChours] ", "C-Maturity [oChours] "},
      {"Moisture Potential [-]", "Moisture Potential [-]"},
      {"Moisture Content [kg/m3]", "Moisture Content [lb/yd3]"},
      {"Inlet and outlet temperature [oC]", "Inlet and outlet temperature [oF]"},
      {"Flow rate [m3/h]", "Flow rate [yd3/h]"},
      {"Capacity [kWatt]", "Capacity [BtuIT/s]"},
      {"Displacements  Ux [mm]", "Displacements  Ux [in]"},
      {"Displacements  Uy [mm]", "Displacements  Uy [in]"},
      {"Major stresses in X-Y plane [MPa]", "Major stresses in X-Y plane [ksi]"},
      {"Minor stresses in X-Y plane [MPa]", "Minor stresses in X-Y plane [ksi]"},
      {"Stresses Szz   [MPa]", "Stresses Szz   [ksi]"}};
  if (graph < 0 || graph >= Diagnostic_Graph_Count) return "";
  return titles[graph][metric ? 0 : 1];
}

int Diagnostic_Graph_Variable(int graph) {
  static constexpr int variables[Diagnostic_Graph_Count] = {1, 2, 3, 4, 5, 6, 7, 8, 11, 12, 13, 14, 15};
  if (graph < 0 || graph >= Diagnostic_Graph_Count) return 0;
  return variables[graph];
}

int Diagnostic_Graph_Unit_Kind(int graph) {
  static constexpr int kinds[Diagnostic_Graph_Count] = {Unit_Temperature,
                                                        0,
                                                        0,
                                                        0,
                                                        Unit_Density,
                                                        Unit_Temperature,
                                                        Unit_Volume_Rate,
                                                        Unit_Energy,
                                                        Unit_Length_mm,
                                                        Unit_Length_mm,
                                                        Unit_Stress_2,
                                                        Unit_Stress_2,
                                                        Unit_Stress_2};
  if (graph < 0 || graph >= Diagnostic_Graph_Count) return 0;
  return kinds[graph];
}

std::array<int, Diagnostic_Graph_Count> Place_Diagnostic_Graphs(const Scan_Options& options) {
  std::array<int, Diagnostic_Graph_Count> position;
  position.fill(-1);
  int next = 0;
  for (int g = 0; g <= 4; ++g)
    if (options.Check1[static_cast<std::size_t>(g)]) position[static_cast<std::size_t>(g)] = next++;
  const bool cooling = options.Check1[5];
  const int last = cooling ? 4 : 7;
  for (int k = 0; k < 5 && next < last; ++k)
    if (options.Check3[static_cast<std::size_t>(k)]) position[static_cast<std::size_t>(8 + k)] = next++;
  if (cooling)
    for (int g = 5; g <= 7; ++g)
      position[static_cast<std::size_t>(g)] = next++;
  return position;
}

bool Diagnostic_Curves(const std::vector<double>& time, const std::vector<double>& field_maximum,
                       const std::vector<double>& field_minimum, int row, double overall_maximum,
                       double& overall_minimum, std::vector<Graph_Point>& maximum_curve,
                       std::vector<Graph_Point>& minimum_curve) {
  maximum_curve.clear();
  minimum_curve.clear();
  const auto r = static_cast<std::size_t>(row);
  if (row <= 1 || time.size() <= r || field_maximum.size() <= r || field_minimum.size() <= r) return false;
  if (!(time[r] > 0)) return false;
  if (!(overall_minimum < overall_maximum)) overall_minimum = overall_maximum - 0.01;
  const double x_scale = 2200 / time[r];
  const double y_scale = 1200 / (overall_maximum - overall_minimum);
  for (std::size_t i = 1; i <= r; ++i) {
    maximum_curve.push_back({time[i] * x_scale, 1500 - (field_maximum[i] - overall_minimum) * y_scale});
    minimum_curve.push_back({time[i] * x_scale, 1500 - (field_minimum[i] - overall_minimum) * y_scale});
  }
  return true;
}

}  // namespace pvx
