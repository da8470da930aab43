#include "analysis/mechanics/stress_loop.h"

#include <algorithm>
#include <cmath>

#include "analysis/mechanics/assembly.h"
#include "analysis/mechanics/supports_loads.h"
#include "analysis/solver.h"

namespace pvx {

Mechanical_Step Solve_Mechanical_Step(const Project& p, Run_State& run, Analysis_Host& host, double dt,
                                      double t, std::string& message) {
  Mechanical_State& m = run.Mechanics;
  m.Iterations = 0;
  Assemble_Mechanical_Stiffness(p, run, dt);
  Set_External_Loads(p, run, t);
  Assemble_Support_Stiffness(p, run, t);
  bool ok = true;
  Factorise_Profile(m.Matrix, m.Equations, m.Column_Pointer, ok, message, [&host] { host.Pump_Events(); });
  if (!ok) return Mechanical_Step::Singular;

  int n = 0;
  for (;;) {
    Set_Iteration_Load(run);
    host.Pump_Events();
    if (host.Stop_Requested()) run.Stop_Computations = true;
    if (run.Stop_Computations) return Mechanical_Step::Stopped;
    ++n;
    if (n >= run.Mechanical_Iteration_Limit) {
      if (!host.Ask_More_Iterations(n, run.Mechanical_Iteration_Limit, run.Mechanical_Limits)) {
        run.Stop_Computations = true;
        return Mechanical_Step::Refused;
      }
      n = 3;
    }
    Solve_Profile(m.Matrix, m.Iteration, m.Equations, m.Column_Pointer);
    ++m.Iterations;
    for (int k = 1; k <= m.Equations; ++k) {
      // Written so that an increment that is no number stops the run as well.
      if (!(std::fabs(m.Iteration[k]) <= Displacement_Limit)) {
        message = Displacement_Limit_Message;
        run.Stop_Computations = true;
        return Mechanical_Step::Displacement_Limit;
      }
      m.Total[k] += m.Iteration[k];
      m.Step[k] = m.Total[k] - m.Start[k];
    }
    Compute_Element_Stresses(p, run, dt);
    Compute_Support_Forces(p, run, t);
    if (m.Iterations == 1) continue;

    double A = 0, B = 0;
    for (int k = 1; k <= m.Equations; ++k) {
      A = std::max(A, std::fabs(m.Iteration[k]));
      B = std::max(B, std::fabs(m.Step[k]));
    }
    const double* limit = run.Mechanical_Limits;
    if (A <= limit[0] || B <= limit[1] || A / B <= limit[2]) return Mechanical_Step::Converged;
  }
}

}  // namespace pvx
