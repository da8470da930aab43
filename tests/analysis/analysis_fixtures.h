// Small models for the tests of whole runs: a strip of square elements, a concrete, a schedule,
// borders, and a host that keeps what the run tells it.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "analysis/driver.h"
#include "support/temp_dir.h"

namespace pvx::test {

// A concrete of the given capacity (kJ/m3K) and conductivity (W/mK).
inline Material Concrete(const std::string& heat_model, float capacity = 2400, float conductivity = 2.5f) {
  Material m;
  m.Name = "concrete";
  m.Has_Thermal = true;
  m.Capacity_Wet = capacity;
  m.Conductivity_Wet = conductivity;
  m.Heat_Model = heat_model;
  return m;
}

// A concrete that gives heat by `model` with the parameters of its law.
inline Material Heating(const std::string& model, float H, float a = 0, float b = 0, float d = 0) {
  Material m = Concrete(model);
  m.Heat_H = H;
  m.Heat_a = a;
  m.Heat_b = b;
  m.Heat_d = d;
  return m;
}

// A row of `n` square elements of `size` mm along X, nodes 2i+1 below and 2i+2 above at x = i size,
// starting at T0; from element `second` on (when given) of a second macro starting at T1.
inline Project Strip(int n, double size, const Material& material, float T0, int second = 0, float T1 = 0) {
  Project p;
  New_Project(p);
  p.Material.add(material);
  for (float T : {T0, T1}) {
    Macro m;
    m.Material = material.Name;
    m.Temperature = T;
    p.Macro.add(m);
  }
  for (int i = 0; i <= n; ++i) {
    p.Mesh_Node.add(Mesh_Node{size * i, 0});
    p.Mesh_Node.add(Mesh_Node{size * i, size});
  }
  for (int i = 1; i <= n; ++i) {
    Mesh_Element e;
    e.Macro_Number = static_cast<std::int16_t>(second > 0 && i >= second ? 2 : 1);
    static_cast<Macro_Values&>(e) = p.Macro[e.Macro_Number];
    e.Material = material.Name;
    const auto a = static_cast<std::int16_t>(2 * i - 1);
    e.Corner = {{a, static_cast<std::int16_t>(a + 2), static_cast<std::int16_t>(a + 3),
                 static_cast<std::int16_t>(a + 1)}};
    p.Mesh_Element.add(e);
  }
  p.Replace_Material = False_Flag;
  p.Result_File_Name = "T.RES";
  Set_Result_Names(p);
  return p;
}

inline void Set_Steps(Project& p, double until, double increment, double storage) {
  p.Computation_Time = until;
  p.Period.clear();
  p.Period.add(Period{0, until, storage, increment});
}

// A period of convection only, from `from` to `until`, with the air of temperature function `Ta`.
inline Thermal_Period Convection(double h, double from = 0, double until = 1000, int Ta = 1) {
  return Thermal_Period{from, until, static_cast<std::int16_t>(Ta), h, 0, 0, 0, 0, False_Flag, True_Flag};
}

// Thermal borders with one period from mesh node a to b, for each pair (a, b).
inline void Add_Borders(Project& p, const Thermal_Period& period,
                        std::initializer_list<std::pair<int, int>> sides = {{1, 3}, {3, 4}, {4, 2}, {2, 1}}) {
  for (auto [a, b] : sides) {
    Border br;
    br.Node_A = static_cast<std::int16_t>(a);
    br.Node_B = static_cast<std::int16_t>(b);
    br.Thermal_Active = True_Flag;
    br.Thermal_Periods.add(period);
    p.Mesh_Border.add(br);
  }
}

// A border from mesh node a to b with one hygral period.
inline void Add_Hygral_Border(Project& p, int a, int b, const Hygral_Period& period) {
  Border br;
  br.Node_A = static_cast<std::int16_t>(a);
  br.Node_B = static_cast<std::int16_t>(b);
  br.Hygral_Active = True_Flag;
  br.Hygral_Periods.add(period);
  p.Mesh_Border.add(br);
}

struct Result : Analysis_Host {
  Run_Outcome outcome{};
  Run_State run;
  std::vector<std::string> messages;
  int steps = 0, stop_after = -1;
  double coldest = 1e9;  // the lowest temperature of any node at the end of any step
  void Show_Message(const std::string& text, Message_Kind) override { messages.push_back(text); }
  void Report_Step(const Step_Report&) override {
    ++steps;
    for (int k = 1; k <= run.Equations; ++k)
      coldest = std::min(coldest, run.Temperature_New[k]);
  }
  bool Stop_Requested() override { return stop_after >= 0 && steps >= stop_after; }
  double T(int node) const { return run.Temperature_New[run.Numbering.Node_Equation[node]]; }
};

// Runs the project into the folder; the host asks to stop once `stop_after` steps are reported.
inline void Compute(Project& p, const Temp_Dir& dir, Result& r, int stop_after = -1) {
  r.stop_after = stop_after;
  std::string message;
  r.outcome = Run_Analysis(p, r.run, r, dir.path().string(), message);
}

// Runs the project into a folder of its own that goes with the call.
inline Result Run(Project& p) {
  Temp_Dir dir;
  Result r;
  Compute(p, dir, r);
  return r;
}

}  // namespace pvx::test
