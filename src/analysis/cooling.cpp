#include "analysis/cooling.h"

#include <algorithm>
#include <cmath>

#include "analysis/thermal.h"

namespace pvx {

namespace {

double Inlet_Temperature(const Project& p, const Circuit& c, double t) {
  return Function_Value(p, Function_Family::Temperature, c.Temperature_Function, t);
}

double Flow(const Project& p, const Circuit& c, double t) {
  return Function_Value(p, Function_Family::Flow, c.Flow_Function, t);
}

int Stations(const Circuit& c) {
  return std::max<int>(c.Pipe_Count, 0) + 2;
}

void Fill(Table<float>& water, int stations, double value) {
  water.clear();
  water.resize(stations, static_cast<float>(value));
}

// The mean wall temperature of section `section`, old and new at its eight wall nodes.
double Wall_Temperature(const Run_State& run, const Circuit& c, int section) {
  double sum = 0;
  for (int j = 1; j <= 8; ++j) {
    const int k = run.Numbering.Node_Equation[c.Pipe_Connection[section][j]];
    sum += (run.Temperature_Old[k] + run.Temperature_New[k]) / 2;
  }
  return sum / 8;
}

}  // namespace

bool Circuit_In_Operation(const Circuit& c, double mid) {
  return c.Active_From < mid && mid < c.Active_Until;
}

bool Circuit_Exchanges(const Project& p, const Circuit& c, double mid, double t) {
  return Circuit_In_Operation(c, mid) && Flow(p, c, t) > 0 && Circuit_Connected(p, c);
}

bool Circuit_Connected(const Project& p, const Circuit& c) {
  if (c.Pipe_Count < 1 || c.Pipe_Connection.count() < c.Pipe_Count) return false;
  for (int i = 1; i <= c.Pipe_Count; ++i)
    for (int j = 1; j <= 8; ++j)
      if (!p.Mesh_Node.valid(c.Pipe_Connection[i][j])) return false;
  return true;
}

std::string Check_Circuits(const Project& p) {
  for (int n = 1; n <= p.Circuit.count(); ++n) {
    const Circuit& c = p.Circuit[n];
    const std::string name = "Circuit " + std::to_string(n);
    if (c.Distance.count() < c.Pipe_Count + 1)
      return name + " has fewer distances than its " + std::to_string(c.Pipe_Count) +
             " pipes need; open the circuit and give every distance.";
    for (int i = 1; i <= c.Pipe_Count + 1; ++i)
      if (!(c.Distance[i] > 0))
        return name + ": distance " + std::to_string(i) +
               " is not above 0 m. The water heats up over the length of each stretch, so every distance "
               "of a circuit must be above 0.";
    if (!(c.Diameter > 0)) return name + ": the diameter of its pipes must be above 0.";
    if (!(c.Liquid_Capacity > 0)) return name + ": the capacity of its liquid must be above 0.";
  }
  return {};
}

void Set_Cooling_Start(const Project& p, Run_State& run) {
  Cooling_State& cool = run.Cooling;
  const int circuits = p.Circuit.count();
  cool.Water_Old.resize(circuits);
  cool.Water_New.resize(circuits);
  cool.History.resize(circuits);
  for (int n = 1; n <= circuits; ++n) {
    const Circuit& c = p.Circuit[n];
    const double T0 = Inlet_Temperature(p, c, 0.0);
    Fill(cool.Water_Old[n], Stations(c), T0);
    Fill(cool.Water_New[n], Stations(c), T0);
    History_Record first;
    first.Time = c.Active_From;
    first.Flow = static_cast<float>(Flow(p, c, c.Active_From));
    first.Capacity = 0;
    first.Water = cool.Water_New[n];
    cool.History[n].History.clear();
    cool.History[n].History.add(std::move(first));
  }
}

void Update_Water_Temperatures(const Project& p, Run_State& run, double t) {
  Cooling_State& cool = run.Cooling;
  for (int n = 1; n <= p.Circuit.count() && n <= cool.Water_New.count(); ++n) {
    const Circuit& c = p.Circuit[n];
    Table<float>& water = cool.Water_New[n];
    const int sections = Stations(c) - 2;
    if (!Circuit_In_Operation(c, run.Mid_Step_Time) || !Circuit_Connected(p, c)) {
      // Out of operation the circuit stands filled at the inlet temperature.
      Fill(water, Stations(c), Inlet_Temperature(p, c, t));
      continue;
    }
    const double speed = Water_Speed(Flow(p, c, t), c.Diameter);
    water[1] = c.Closed_Circuit != 0 ? water[sections + 2] : static_cast<float>(Inlet_Temperature(p, c, t));
    const double exchange = 4 * c.Transfer_Coefficient / (c.Liquid_Capacity * c.Diameter);

    double previous_wall = -1000.0, wall = 0;
    for (int i = 1; i <= sections + 1; ++i) {
      // The last stretch, from the last section to the outlet, keeps the last section's wall.
      if (i <= sections) wall = Wall_Temperature(run, c, i);
      if (!(speed > 0)) {
        water[i + 1] = water[i];  // the water stands
        continue;
      }
      const double x = exchange * c.Distance[i] / speed;
      if (x < 4.6051) {
        const double e = std::exp(-x);
        const double P = (1 + 1 / x) * (1 - e) - 1;
        const double Q = 1 - (1 - e) / x;
        if (previous_wall < -900) previous_wall = wall;
        water[i + 1] = static_cast<float>(water[i] * e + previous_wall * P + wall * Q);
        previous_wall = wall;
      } else {
        // Beyond ln 100 the water has taken the wall's temperature. The previous wall is left as
        // it was, so a short stretch after a long one starts from the last short one's wall.
        water[i + 1] = static_cast<float>(wall);
      }
    }
  }
}

void Start_Water_Passes(Run_State& run) {
  Cooling_State& cool = run.Cooling;
  cool.Iterate.clear();
  for (const Table<float>& water : cool.Water_New)
    for (float w : water)
      cool.Iterate.push_back(w);
  cool.Change.clear();
  cool.Relaxation = 1;
}

void Relax_Water_Temperatures(Run_State& run) {
  Cooling_State& cool = run.Cooling;
  if (cool.Iterate.empty()) return;
  // The change the pass asks for, r = g(x) - x, against the one before: Aitken's factor
  // w = -w_before (r_before . (r - r_before)) / |r - r_before|^2.
  std::size_t i = 0;
  double along = 0, squared = 0;
  std::vector<double> change(cool.Iterate.size());
  for (const Table<float>& water : cool.Water_New)
    for (float w : water) {
      change[i] = w - cool.Iterate[i];
      if (!cool.Change.empty()) {
        const double difference = change[i] - cool.Change[i];
        along += cool.Change[i] * difference;
        squared += difference * difference;
      }
      ++i;
    }
  if (!cool.Change.empty() && squared > 0) {
    const double factor = -cool.Relaxation * along / squared;
    // A factor out of reason (a pass that hardly changed, or the start of an oscillation) falls
    // back to the plain update.
    cool.Relaxation = factor > 0.05 && factor < 2 ? factor : 1;
  }
  i = 0;
  for (Table<float>& water : cool.Water_New)
    for (float& w : water) {
      cool.Iterate[i] += cool.Relaxation * change[i];
      w = static_cast<float>(cool.Iterate[i]);
      ++i;
    }
  cool.Change = std::move(change);
}

void Update_Cooling_End_Of_Step(const Project& p, Run_State& run, double t) {
  Cooling_State& cool = run.Cooling;
  for (int n = 1; n <= p.Circuit.count() && n <= cool.Water_New.count(); ++n) {
    const Circuit& c = p.Circuit[n];
    if (Circuit_In_Operation(c, run.Mid_Step_Time))
      Append_History_Record(cool.History[n], t, Flow(p, c, t), cool.Water_New[n], c.Liquid_Capacity);
    cool.Water_Old[n] = cool.Water_New[n];
  }
}

}  // namespace pvx
