#include "analysis/driver.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <span>

#include "analysis/cooling.h"
#include "analysis/mechanics/assembly.h"
#include "analysis/mechanics/point_law.h"
#include "analysis/mechanics/stress_loop.h"
#include "analysis/moisture.h"
#include "analysis/thermal.h"
#include "material/properties.h"
#include "results/result_files.h"

namespace pvx {

namespace {

inline int Equation(const Run_State& run, int node) {
  return run.Numbering.Node_Equation[node];
}

// How the temperature iteration of a step ended.
enum class Thermal_Step { Settled, Singular, Stopped, Not_Settled };

// The temperature iteration of one step: one factorisation, then passes on the right-hand side
// until no temperature moves by more than 0.01 degrees. Every pass lets the host's events through,
// so that a step that is slow to settle can still be stopped; a step that has not settled after
// Max_Thermal_Passes passes, or whose temperatures are no longer numbers, ends with a message.
Thermal_Step Solve_Thermal_Step(const Project& p, Run_State& run, Analysis_Host& host, double dt, double t,
                                std::string& message) {
  Assemble_Thermal_System(p, run, dt, t);
  bool ok = true;
  Factorise_Profile(run.Matrix, run.Equations, run.Numbering.Column_Pointer, ok, message,
                    [&host] { host.Pump_Events(); });
  if (!ok) return Thermal_Step::Singular;
  run.Thermal_Passes = 0;
  Start_Water_Passes(run);
  double largest = 0;
  int worst = 0;
  do {
    host.Pump_Events();
    if (host.Stop_Requested()) run.Stop_Computations = true;
    if (run.Stop_Computations) return Thermal_Step::Stopped;
    if (run.Thermal_Passes == Max_Thermal_Passes) {
      int node = 0;
      for (int n = 1; n <= p.Mesh_Node.count() && node == 0; ++n)
        if (Equation(run, n) == worst) node = n;
      message = Not_Settled_Message(t, Max_Thermal_Passes, largest, node);
      return Thermal_Step::Not_Settled;
    }
    Set_Thermal_Load(p, run, dt, t);
    Solve_Profile(run.Matrix, run.Right_Hand_Side, run.Equations, run.Numbering.Column_Pointer);
    run.Thermal_Converged = true;
    largest = 0;
    worst = 0;
    for (int k = 1; k <= run.Equations; ++k) {
      const double change = std::fabs(run.Right_Hand_Side[k] - run.Temperature_New[k]);
      // Written so that a temperature that is no number never counts as settled.
      if (!(change <= 0.01)) {
        run.Thermal_Converged = false;
        if (!(change <= largest)) {
          largest = change;
          worst = k;
        }
      }
      run.Temperature_New[k] = run.Right_Hand_Side[k];
    }
    ++run.Thermal_Passes;
    Update_Water_Temperatures(p, run, t);
    Relax_Water_Temperatures(run);
  } while (!run.Thermal_Converged);
  return Thermal_Step::Settled;
}

// The moisture iteration of a step: the saturated flow once, then solves with the matrix rebuilt
// each time, until no potential moves by more than 0.005. A pass that has not settled goes on from
// the mean of its solution and the start of the step, so that the diffusion coefficient is taken at
// mid-step; the 26th solve is taken as it stands. Where the step changes a potential by more than
// 0.01 the test cannot pass, since it compares the solution with that mean; the passes then settle
// on their fixed point within a few solves and repeat it to rounding. So once the passes left would
// move the mean by less than 1e-9 in all (a hundredth of what the stored single precision keeps),
// the solution is taken. Negative potentials are set to 0. False on a zero pivot,
// with the solver's message.
bool Solve_Moisture_Step(const Project& p, Run_State& run, Analysis_Host& host, double dt, double t,
                         std::string& message) {
  const Event_Pump pump = [&host] { host.Pump_Events(); };
  if (!Set_Saturated_Flow(p, run, dt, t, message, pump)) return false;
  const int n = run.Equations;
  const std::vector<std::int32_t>& columns = run.Numbering.Column_Pointer;
  Table<double>& solution = run.Right_Hand_Side;
  Table<double> load;
  run.Moisture_Solves = 0;
  run.Moisture_Factorisations = 0;
  double previous_move = 0;
  for (;;) {
    Assemble_Moisture_System(p, run, dt, t);
    Set_Moisture_Load(p, run, dt, t);
    // The matrix follows the potential of the pass only through the diffusion coefficient, so the
    // factors of an earlier pass of the step solve the new matrix by a few corrections
    // (y += F^-1 (b - A y)) to 1e-11, a hundredth of what ends the passes; where six do not get
    // there, the matrix is factorised anew.
    bool solved = false;
    if (run.Moisture_Factorisations > 0) {
      load = solution;
      Solve_Profile(run.Moisture_Factors, solution, n, columns);
      for (int i = 0; i < 6 && !solved; ++i) {
        Multiply_Profile(run.Matrix, n, columns, solution, run.Moisture_Work);
        double largest = 0, change = 0;
        for (int k = 1; k <= n; ++k) {
          run.Moisture_Work[k] = load[k] - run.Moisture_Work[k];
          largest = std::max(largest, std::fabs(solution[k]));
        }
        Solve_Profile(run.Moisture_Factors, run.Moisture_Work, n, columns);
        for (int k = 1; k <= n; ++k) {
          solution[k] += run.Moisture_Work[k];
          change = std::max(change, std::fabs(run.Moisture_Work[k]));
        }
        solved = change <= 1e-11 * std::max(largest, 1.0);
      }
      if (!solved) solution = load;
    }
    if (!solved) {
      run.Moisture_Factors = run.Matrix;
      bool ok = true;
      Factorise_Profile(run.Moisture_Factors, n, run.Numbering.Column_Pointer, ok, message, pump);
      if (!ok) return false;
      Solve_Profile(run.Moisture_Factors, solution, n, columns);
      ++run.Moisture_Factorisations;
    }
    host.Pump_Events();
    if (++run.Moisture_Solves > 25) break;
    bool settled = true;
    for (int k = 1; k <= n && settled; ++k)
      settled = std::fabs(run.Moisture_New[k] - solution[k]) <= 0.005;
    if (settled) break;
    double moved = 0;
    for (int k = 1; k <= n; ++k) {
      const double mean = (solution[k] + run.Moisture_Old[k]) / 2;
      moved = std::max(moved, std::fabs(mean - run.Moisture_New[k]));
      run.Moisture_New[k] = mean;
    }
    // The passes contract by a steady factor; what they would still move is moved x f / (1 - f).
    const double factor = previous_move > 0 ? moved / previous_move : 1.0;
    if (moved < 1e-9 || (factor < 0.5 && moved * factor / (1 - factor) < 1e-9)) break;
    previous_move = moved;
  }
  for (int k = 1; k <= n; ++k)
    run.Moisture_New[k] = std::max(solution[k], 0.0);
  return true;
}

// The warnings of a mechanical variant: what this version computes otherwise than the project asks,
// and a model that nothing holds.
void Report_Mechanical_Warnings(const Project& p, const Run_State& run,
                                const std::function<void(const std::string&)>& warn) {
  std::vector<int> told;
  for (int e = 1; e <= run.Element_Material.count(); ++e) {
    const int m = run.Element_Material[e];
    if (!p.Material.valid(m) || std::find(told.begin(), told.end(), m) != told.end()) continue;
    told.push_back(m);
    const Material& material = p.Material[m];
    if (!material.Has_Mechanical)
      warn("Material \"" + material.Name + "\" has no mechanical data: its elements take no part in the " +
           "mechanical analysis.");
    else if (Law_Of(material) == Point_Law::Other)
      warn("Material \"" + material.Name + "\" has the model \"" + material.Model_Name +
           "\", which has no stress law in this version: its elements carry no stress and add no " +
           "stiffness.");
  }
  // A point support that lies in no element holds nothing; where none holds anything, the model is
  // as free as one without supports, and only the rounding of the matrix stands between its
  // iteration and the rigid-body motions.
  int holding = 0, lost = 0, first_lost = 0;
  for (int i = 1; i <= run.Mechanics.Supports.count(); ++i)
    if (run.Mechanics.Supports[i].Kind != Support_Kind::None)
      ++holding;
    else if (++lost == 1)
      first_lost = i;
  if (lost > 0) {
    char where[96];
    std::snprintf(where, sizeof where, "(support %d first, at x = %g, y = %g mm)", first_lost,
                  p.Mesh_Support[first_lost].X, p.Mesh_Support[first_lost].Y);
    warn(std::to_string(lost) + " support(s) lie in no element and take no part in the mechanical analysis " +
         where + ": a point support must lie inside an element or on its edge.");
  }
  if (holding == 0)
    warn(
        "No support holds the model: the displacements of a free body are not determined, and its "
        "mechanical iteration may not converge.");
  // Joints and bars that are left out.
  int joints = 0, first_joint = 0;
  for (int i = 1; i <= run.Mechanics.Interfaces.count(); ++i)
    if (!run.Mechanics.Interfaces[i].Active && ++joints == 1) first_joint = i;
  if (joints > 0)
    warn(std::to_string(joints) + " interface(s) take no part in the mechanical analysis (interface " +
         std::to_string(first_joint) + " first): a layer material that is no interface material of the " +
         "database, a side without an element on both sides, or a side of no length. The elements on " +
         "both sides stay joined there.");
  std::vector<int> bars_told;
  for (const Bar_Element& b : run.Mechanics.Bars)
    if (b.Material == 0 && std::find(bars_told.begin(), bars_told.end(), b.Bar) == bars_told.end()) {
      bars_told.push_back(b.Bar);
      warn("Reinforcement bar " + std::to_string(b.Bar) + " has the material \"" + p.Rebar[b.Bar].Material +
           "\", which is no reinforcement material of the database: it carries nothing.");
    }
}

}  // namespace

Field_Values Current_Fields(const Project& p, Run_State& run) {
  for (int node = 1; node <= p.Mesh_Node.count(); ++node) {
    const int k = Equation(run, node);
    run.Out_Temperature[static_cast<std::size_t>(node - 1)] = run.Temperature_New[k];
    run.Out_Potential[static_cast<std::size_t>(node - 1)] = run.Moisture_New[k];
  }
  for (int e = 1; e <= p.Mesh_Element.count(); ++e) {
    const int m = run.Element_Material[e];
    const Material* material = p.Material.valid(m) ? &p.Material[m] : nullptr;
    for (int i = 1; i <= 4; ++i) {
      const Point_State& s = Point(run, e, i);
      const auto at = static_cast<std::size_t>(4 * (e - 1) + i - 1);
      run.Out_Maturity[at] = s.Maturity_New;
      run.Out_Hydration[at] = s.Hydration_New;
      run.Out_C_Maturity[at] = s.Weighted_Maturity_New;
      run.Out_Moisture[at] = s.Water_New;
      // Strengths as the material tables give them at the point's maturity (the weighted one for a
      // material that keeps its tables in weighted maturity) and its corner temperature.
      double ft = 0, fc = 0;
      if (material && material->Has_Mechanical) {
        const double T = run.Temperature_New[Equation(run, p.Mesh_Element[e].Corner[i])];
        const double M = material->Dutch_Active ? s.Weighted_Maturity_New : s.Maturity_New;
        ft = Table_Value(material->Ft, T, M);
        fc = Table_Value(material->Fc, T, M);
      }
      run.Out_Tensile[at] = ft;
      run.Out_Compressive[at] = fc;
    }
  }
  Field_Values f;
  const Cooling_State& cool = run.Cooling;
  if (p.Circuit.valid(run.Diagnostic_Circuit) && cool.Water_New.valid(run.Diagnostic_Circuit)) {
    const Circuit& c = p.Circuit[run.Diagnostic_Circuit];
    const Table<float>& water = cool.Water_New[run.Diagnostic_Circuit];
    f.Circuit.Present = !water.empty();
    if (f.Circuit.Present) {
      f.Circuit.First_Station = water[1];
      f.Circuit.Last_Station = water.last();
    }
    f.Circuit.Flow = Function_Value(p, Function_Family::Flow, c.Flow_Function, run.Current_Time);
    f.Circuit.Liquid_Capacity = c.Liquid_Capacity;
  }
  f.Temperature = run.Out_Temperature;
  f.Potential = run.Out_Potential;
  f.Maturity = run.Out_Maturity;
  f.Hydration = run.Out_Hydration;
  f.C_Maturity = run.Out_C_Maturity;
  f.Moisture_Content = run.Out_Moisture;
  f.Tensile_Strength = run.Out_Tensile;
  f.Compressive_Strength = run.Out_Compressive;
  if (run.Mechanical_Included) {
    Mechanical_State& m = run.Mechanics;
    for (int node = 1; node <= p.Mesh_Node.count() + m.Doubled_Nodes; ++node) {
      const auto at = static_cast<std::size_t>(2 * (node - 1));
      m.Out_Displacement[at] = m.Total[Place(m, 2 * node - 1)];
      m.Out_Displacement[at + 1] = m.Total[Place(m, 2 * node)];
    }
    Compute_Nodal_Stresses(p, run);
    for (std::size_t k = 1; k < m.Points.size(); ++k) {
      m.Out_Crack_Opening[k - 1] = m.Points[k].Crack_Opening;
      m.Out_Cracked[k - 1] = m.Points[k].Cracked ? 1 : 0;
      // The strength the crack law works with: the element's random factor and any damage in.
      if (m.Points[k].Softening || m.Points[k].Ft != 0) run.Out_Tensile[k - 1] = m.Points[k].Ft;
    }
    for (int i = 1; i <= m.Supports.count(); ++i)
      m.Out_Reaction[static_cast<std::size_t>(i - 1)] = m.Supports[i].Reaction;
    for (int i = 1; i <= m.Interfaces.count(); ++i) {
      const Interface_Element& f = m.Interfaces[i];
      double* out = &m.Out_Interface[static_cast<std::size_t>(4 * (i - 1))];
      out[0] = f.Point[0].Sigma, out[1] = f.Point[1].Sigma;
      out[2] = f.Point[0].Tau, out[3] = f.Point[1].Tau;
    }
    for (int i = 1; i <= m.Bars.count(); ++i) {
      const Bar_Element& b = m.Bars[i];
      double* out = &m.Out_Bar[static_cast<std::size_t>(5 * (i - 1))];
      out[0] = b.Steel.Stress;
      out[1] = b.End[0].Bond.Stress, out[2] = b.End[1].Bond.Stress;
      out[3] = b.End[0].Slip, out[4] = b.End[1].Slip;
    }
    f.Displacement = m.Out_Displacement;
    f.Corner_Stress = m.Out_Corner_Stress;
    f.Crack_Opening = m.Out_Crack_Opening;
    f.Cracked = m.Out_Cracked;
    f.Reaction = m.Out_Reaction;
    f.Interface_Stress = m.Out_Interface;
    f.Bar_Values = m.Out_Bar;
  }
  return f;
}

void Allocate_Solution_Arrays(const Project& p, Run_State& run, Analysis_Host& host) {
  const Event_Pump pump = [&host] { host.Pump_Events(); };
  Set_Node_Numbering(p, run.Numbering, pump);
  if (run.Mechanical_Included) {
    Set_Mechanical_Equations(p, run.Mechanics, pump);
    Allocate_Mechanical_Arrays(p, run.Mechanics);
  }
  const int n = p.Mesh_Node.count();
  run.Equations = n;
  run.Matrix.resize(run.Numbering.Profile_Size);
  run.Right_Hand_Side.resize(n);
  for (Table<double>* v : {&run.Temperature_Old, &run.Temperature_New, &run.Temperature_Initial,
                           &run.Moisture_Old, &run.Moisture_New, &run.Base_Load, &run.Saturated_Potential})
    v->resize(n);
  run.Active_Equation.resize(n);
  run.Moisture_Active.resize(n);
  run.Moisture_Work.resize(n);
  const int elements = p.Mesh_Element.count();
  run.Element_Matrices.resize(elements);
  run.Element_Material.resize(elements);
  run.Points.assign(static_cast<std::size_t>(4 * elements + 1), Point_State{});
  run.Out_Temperature.resize(static_cast<std::size_t>(n));
  run.Out_Potential.resize(static_cast<std::size_t>(n));
  for (auto* v : {&run.Out_Maturity, &run.Out_Hydration, &run.Out_C_Maturity, &run.Out_Moisture,
                  &run.Out_Tensile, &run.Out_Compressive})
    v->resize(static_cast<std::size_t>(4 * elements));
}

std::string Missing_Variant_Message(int variant, int variants) {
  return "Variant " + std::to_string(variant) + " is not in the run set, which has " +
         std::to_string(variants) +
         (variants == 1 ? " variant." : " variants (1 to " + std::to_string(variants) + ").");
}

std::string Not_Settled_Message(double time, int passes, double change, int node) {
  char text[320];
  std::snprintf(
      text, sizeof text,
      "The temperatures of the step ending at %g hours did not settle within %d iterations (the last "
      "one still changed node %d by %g degrees); the computation of this variant is ended.",
      time, passes, node, change);
  return text;
}

void Set_Initial_State(const Project& p, Run_State& run, int variant) {
  Project& writable = const_cast<Project&>(p);  // only the replacement flags are sized
  const int elements = p.Mesh_Element.count();
  if (p.Replace_Material != 0 && static_cast<int>(p.Element_Replaced.size()) != elements)
    writable.Element_Replaced.assign(static_cast<std::size_t>(elements), false);

  for (int e = 1; e <= elements; ++e) {
    const Mesh_Element& element = p.Mesh_Element[e];
    std::int16_t number = 0;
    for (int m = 1; m <= p.Material.count(); ++m)
      if (p.Material[m].Name == element.Material) {
        number = static_cast<std::int16_t>(m);
        break;
      }
    if (p.Replace_Material != 0 && static_cast<std::size_t>(e - 1) < p.Element_Replaced.size() &&
        p.Element_Replaced[static_cast<std::size_t>(e - 1)] && p.Run_Material.valid(variant))
      number = p.Run_Material[variant];
    run.Element_Material[e] = number;

    const bool no_heat = p.Material.valid(number) && p.Material[number].Heat_Model == "NO H";
    for (int i = 1; i <= 4; ++i) {
      Point_State& s = Point(run, e, i);
      s.Maturity_Old = s.Maturity_New = element.Maturity;
      s.Weighted_Maturity_Old = s.Weighted_Maturity_New = element.Maturity;
      s.Water_Old = s.Water_New = element.Moisture_Content;
      s.Hydration_Old = s.Hydration_New = no_heat ? 1.0 : 0.0;
    }
  }

  run.Moisture_Included = false;
  for (int e = 1; e <= elements; ++e) {
    const int m = run.Element_Material[e];
    if (p.Material.valid(m) && p.Material[m].Has_Hygral) {
      run.Moisture_Included = true;
      run.Saturation_Limit = p.Material[m].H_Limit;
    }
  }

  // Starting fields at the nodes, macro by macro: a node shared by two macros keeps the value of
  // the macro with the higher number.
  std::fill(run.Temperature_Old.begin(), run.Temperature_Old.end(), 0.0);
  std::fill(run.Moisture_Old.begin(), run.Moisture_Old.end(), 0.0);
  std::vector<std::vector<int>> by_macro(static_cast<std::size_t>(p.Macro.count()) + 1);
  for (int e = 1; e <= elements; ++e) {
    const int m = p.Mesh_Element[e].Macro_Number;
    if (m >= 1 && m <= p.Macro.count()) by_macro[static_cast<std::size_t>(m)].push_back(e);
  }
  for (const auto& list : by_macro)
    for (int e : list) {
      const Mesh_Element& element = p.Mesh_Element[e];
      for (int n = 1; n <= 4; ++n) {
        const int k = Equation(run, element.Corner[n]);
        run.Temperature_Old[k] = element.Temperature;
        run.Moisture_Old[k] = element.Potential;
      }
    }
  run.Temperature_New = run.Temperature_Old;
  run.Temperature_Initial = run.Temperature_Old;
  run.Moisture_New = run.Moisture_Old;
  run.Current_Time = 0;
  Set_Cooling_Start(p, run);
  if (run.Mechanical_Included) Set_Mechanical_Initial_State(p, run);
}

void Update_End_Of_Step(Run_State& run) {
  run.Temperature_Old = run.Temperature_New;
  run.Moisture_Old = run.Moisture_New;
  for (Point_State& s : run.Points) {
    s.Maturity_Old = s.Maturity_New;
    s.Weighted_Maturity_Old = s.Weighted_Maturity_New;
    s.Water_Old = s.Water_New;
    s.Hydration_Old = s.Hydration_New;
  }
}

Run_Outcome Run_Analysis(Project& p, Run_State& run, Analysis_Host& host, const std::string& work_directory,
                         std::string& message) {
  Run_Outcome outcome = Run_Outcome::Completed;
  auto report = [&](const std::string& text, Message_Kind kind) {
    message = text;
    host.Show_Message(text, kind);
  };
  const std::string circuits = Check_Circuits(p);
  if (!circuits.empty()) {
    report(circuits, Message_Kind::Critical);
    return Run_Outcome::Failed;
  }
  // The joints' node copies and the bar elements belong to the mesh the results are stored on.
  if (run.Mechanical_Included && !Set_Mechanical_Mesh(p, message)) {
    report(message, Message_Kind::Critical);
    return Run_Outcome::Failed;
  }
  Allocate_Solution_Arrays(p, run, host);
  Result_Family family;
  std::string text;
  if (!Prepare_Result_Family(family, p, run.Mechanical_Included, work_directory, text)) {
    report(text, Message_Kind::Critical);
    return Run_Outcome::Failed;
  }

  const int variants = std::max(Number_Of_Runs(family), 1);
  if (run.Only_Variant < 0 || run.Only_Variant > variants) {
    report(Missing_Variant_Message(run.Only_Variant, variants), Message_Kind::Critical);
    return Run_Outcome::Failed;
  }
  const int first = run.Only_Variant > 0 ? run.Only_Variant : 1;
  const int last = run.Only_Variant > 0 ? run.Only_Variant : variants;
  for (int variant = first; variant <= last; ++variant) {
    if (!Open_Result_Files(family, variant, 1, Run_Index_Version, text)) {
      report(text, Message_Kind::Critical);
      outcome = Run_Outcome::Failed;
      break;
    }
    bool variant_failed = false;
    Set_Initial_State(p, run, variant);
    int unknown = 0, first_unknown = 0;
    for (int e = 1; e <= run.Element_Material.count(); ++e)
      if (run.Element_Material[e] == 0 && ++unknown == 1) first_unknown = e;
    if (unknown > 0)
      report(std::to_string(unknown) + " element(s) have a material that is not in the database (element " +
                 std::to_string(first_unknown) + ": \"" + p.Mesh_Element[first_unknown].Material +
                 "\"); they take no part in the computation.",
             Message_Kind::Warning);
    for (int c = 1; c <= p.Circuit.count(); ++c)
      if (!Circuit_Connected(p, p.Circuit[c]))
        report("Circuit " + std::to_string(c) +
                   " is not integrated into the mesh: it takes no part in the computation, and its water "
                   "stands at the inlet temperature.",
               Message_Kind::Warning);
    if (run.Mechanical_Included)
      Report_Mechanical_Warnings(p, run,
                                 [&](const std::string& text) { report(text, Message_Kind::Warning); });
    run.Gauss = Set_Gauss_Points();
    Set_Time_Steps(p, run.Steps);
    const int steps = Number_Of_Steps(run.Steps);

    run.Index = Run_Index{};
    run.Index.Step_Time = run.Steps.Step_Time;
    Field_Values fields = Current_Fields(p, run);
    if (!Record_Storage(family, variant, fields, 0.0, run.Index, text)) {
      report(text, Message_Kind::Critical);
      variant_failed = true;
    }
    run.Saved_Step_Time.assign(static_cast<std::size_t>(steps) + 2, 0.0);
    Size_Field_Statistics(run.Statistics, steps);
    int row = 1, flagged = 1;
    Sample_Field_Extremes(run.Index, run.Statistics, row, flagged, fields, run.Mechanical_Included);

    run.Stop_Computations = false;
    host.Pump_Events();
    std::vector<bool> exchanging(static_cast<std::size_t>(p.Circuit.count()), false);
    int damped_left = p.Damped_Start_Steps;
    for (int step = 1; step <= steps && !variant_failed; ++step) {
      host.Pump_Events();
      if (host.Stop_Requested()) run.Stop_Computations = true;
      if (run.Stop_Computations) break;
      const double t = run.Steps.Step_Time[step];
      const double previous = step == 1 ? 0.0 : run.Steps.Step_Time[step - 1];
      run.Mid_Step_Time = step == 1 ? t * 0.5 : (previous + t) * 0.5;
      run.Current_Time = t;
      // A sudden change of the boundary makes the trapezoidal rule ring round the pipes, and the
      // wall there overshoots beyond the water. The damped start takes backward Euler steps after
      // the start and after a circuit starts or stops exchanging, until the jump has spread.
      for (int c = 1; c <= p.Circuit.count(); ++c) {
        const bool now = Circuit_Exchanges(p, p.Circuit[c], run.Mid_Step_Time, t);
        if (now != exchanging[static_cast<std::size_t>(c - 1)]) damped_left = p.Damped_Start_Steps;
        exchanging[static_cast<std::size_t>(c - 1)] = now;
      }
      run.Theta = damped_left > 0 ? 1.0 : 0.5;
      if (damped_left > 0) --damped_left;
      const double dt = step == 1 ? t : t - previous;

      const Thermal_Step thermal = Solve_Thermal_Step(p, run, host, dt, t, text);
      if (thermal == Thermal_Step::Stopped) break;
      if (thermal != Thermal_Step::Settled) {
        // A singular model or a step that does not settle ends this variant only: the others still run.
        report(text, Message_Kind::Critical);
        run.Stop_Computations = false;
        variant_failed = true;
        break;
      }

      if (run.Moisture_Included && !Solve_Moisture_Step(p, run, host, dt, t, text)) {
        // As for the temperatures: a singular model ends this variant only.
        report(text, Message_Kind::Critical);
        run.Stop_Computations = false;
        variant_failed = true;
        break;
      }

      if (run.Mechanical_Included) {
        Set_Free_Strains(p, run);
        const Mechanical_Step mechanical = Solve_Mechanical_Step(p, run, host, dt, t, text);
        if (mechanical == Mechanical_Step::Singular) {
          // As for the temperatures: a singular model ends this variant only.
          report(text, Message_Kind::Critical);
          run.Stop_Computations = false;
          variant_failed = true;
          break;
        }
        if (mechanical == Mechanical_Step::Displacement_Limit) {
          // A model that runs away ends the whole run: the other variants would run away too.
          report(text, Message_Kind::Critical);
          run.Stop_Computations = true;
          variant_failed = true;
          break;
        }
        if (mechanical != Mechanical_Step::Converged) break;  // refused or stopped: the stop flag is set
      }

      Update_End_Of_Step(run);
      Update_Cooling_End_Of_Step(p, run, t);
      if (run.Mechanical_Included) Update_Mechanical_End_Of_Step(p, run);
      ++row;
      run.Saved_Step_Time[static_cast<std::size_t>(row)] = t;
      const bool store = Is_Storage_Step(run.Steps, step);
      if (store) ++flagged;
      fields = Current_Fields(p, run);
      Sample_Field_Extremes(run.Index, run.Statistics, row, flagged, fields, run.Mechanical_Included);
      if (store) {
        if (!Record_Storage(family, variant, fields, t, run.Index, text)) {
          report(text, Message_Kind::Critical);
          variant_failed = true;
          break;
        }
        host.Pump_Events();
      }
      host.Report_Step(Step_Report{variant, variants, step, steps, t, Storage_Count(run.Index),
                                   run.Mechanical_Included ? run.Mechanics.Iterations : 0});
    }

    Clamp_Plot_Storages(run.Index);
    if (p.Circuit.count() > 0 && !Write_Cooling_Data(family, variant, run.Cooling.History, text)) {
      report(text, Message_Kind::Critical);
      variant_failed = true;
    }
    if (!Write_Run_Index(family, variant, run.Index, text)) {
      report(text, Message_Kind::Critical);
      variant_failed = true;
    }
    if (!Close_Result_Files(family, variant, text)) {
      report(text, Message_Kind::Critical);
      variant_failed = true;
    }
    host.Report_Variant(variant, variants, Storage_Count(run.Index));
    if (variant_failed) outcome = Run_Outcome::Failed;
    if (run.Stop_Computations) {
      if (outcome != Run_Outcome::Failed) outcome = Run_Outcome::Stopped;
      break;
    }
  }
  host.Pump_Events();
  return outcome;
}

}  // namespace pvx
