#include "analysis/schedule.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace pvx {

namespace {

// Rounds half to even, as the counts of steps and storages are rounded (2.5 gives 2, 3.5 gives
// 4), independent of the floating-point environment. A quotient that is no finite number (a zero
// increment in a damaged file) counts as 0, which the callers turn into one step.
long long Round_Count(double x) {
  if (!std::isfinite(x)) return 0;
  constexpr double limit = std::numeric_limits<std::int32_t>::max();
  if (x > limit) return static_cast<long long>(limit);
  if (x < -limit) return -static_cast<long long>(limit);
  double r = std::round(x);  // halves away from zero
  if (std::fabs(x - std::trunc(x)) == 0.5) r = 2.0 * std::round(x / 2.0);
  return static_cast<long long>(r);
}

// Step times are searched often (once per storage target), so while the table is in ascending
// order, which it is for any chained period table, a binary search stands in for the scan. Both
// give the same step: the nearest, and of equally near steps the first.
constexpr double No_Step_Distance = 100000000.0;

int Nearest_Step_Scan(const std::vector<double>& t, double target) {
  double best = No_Step_Distance;
  int found = 0;
  for (std::size_t i = 0; i < t.size(); ++i) {
    const double d = std::fabs(t[i] - target);
    if (d < best) {
      best = d;
      found = static_cast<int>(i) + 1;
    }
  }
  return found;
}

int Nearest_Step_Sorted(const std::vector<double>& t, double target) {
  const auto right = std::lower_bound(t.begin(), t.end(), target);
  int found = 0;
  double best = No_Step_Distance;
  if (right != t.begin()) {
    // The first of the steps that share the time just below the target.
    const auto left = std::lower_bound(t.begin(), right, *(right - 1));
    const double d = std::fabs(*left - target);
    if (d < best) {
      best = d;
      found = static_cast<int>(left - t.begin()) + 1;
    }
  }
  if (right != t.end()) {
    const double d = std::fabs(*right - target);
    if (d < best) found = static_cast<int>(right - t.begin()) + 1;
  }
  return found;
}

}  // namespace

void Set_Time_Steps(const Project& p, Step_Table& steps) {
  steps.Step_Time.clear();
  steps.Step_Store_Flag.clear();
  std::vector<double>& times = steps.Step_Time.data();
  bool ascending = true;
  for (const Period& period : p.Period) {
    const double length = period.Until - period.From;

    long long n = Round_Count(length / period.Time_Increment);
    if (n == 0) n = 1;
    const double d = length / static_cast<double>(n);
    for (long long k = 1; k <= n; ++k) {
      const double t = static_cast<double>(k) * d + period.From;
      if (!times.empty() && !(t >= times.back())) ascending = false;
      if (std::isnan(t)) ascending = false;
      steps.Step_Time.add(t);
      steps.Step_Store_Flag.add(False_Flag);
      // The test follows the append: a period that starts beyond the end still makes one step.
      if (p.Computation_Time <= t) break;
    }

    long long m = Round_Count(length / period.Storage_Each);
    if (m == 0) m = 1;
    const double s = length / static_cast<double>(m);
    for (long long k = 1; k <= m; ++k) {
      const double target = static_cast<double>(k) * s + period.From;
      const int step = ascending ? Nearest_Step_Sorted(times, target) : Nearest_Step_Scan(times, target);
      if (step != 0) steps.Step_Store_Flag[step] = True_Flag;
    }
  }
}

Schedule_Totals Compute_Schedule_Totals(const Project& p) {
  Schedule_Totals totals;
  for (const Period& period : p.Period) {
    if (!(period.From <= p.Computation_Time)) continue;
    const double length =
        p.Computation_Time < period.Until ? p.Computation_Time - period.From : period.Until - period.From;
    if (period.Time_Increment > 0) totals.Steps += std::max(1LL, Round_Count(length / period.Time_Increment));
    if (period.Storage_Each > 0) totals.Storages += std::max(1LL, Round_Count(length / period.Storage_Each));
  }
  return totals;
}

Run_View Set_Run(const Project& p, Run_Window& w) {
  const int count = p.Period.count();
  w.Current_Period = std::clamp(w.Current_Period, std::min(1, count), count);
  Run_View v;
  v.Computation_Time = p.Computation_Time;
  v.Period_Count = count;
  v.Current_Period = w.Current_Period;
  v.Period_Caption = "In period " + std::to_string(w.Current_Period);
  if (p.Period.valid(w.Current_Period)) {
    const Period& period = p.Period[w.Current_Period];
    v.From = period.From;
    v.Until = period.Until;
    v.Storage_Each = period.Storage_Each;
    v.Time_Increment = period.Time_Increment;
  }
  v.Totals = Compute_Schedule_Totals(p);
  return v;
}

void Move_Current_Period(const Project& p, Run_Window& w, int delta) {
  const int count = p.Period.count();
  w.Current_Period = std::clamp(w.Current_Period + delta, std::min(1, count), count);
}

bool Enter_Computation_Time(Project& p, double value) {
  if (!(value > 0)) return false;
  p.Computation_Time = value;
  return true;
}

bool Enter_Damped_Start(Project& p, int steps) {
  if (steps < 0 || steps > 100) return false;
  p.Damped_Start_Steps = static_cast<std::int16_t>(steps);
  return true;
}

bool Enter_Period_Count(Project& p, Run_Window& w, int value) {
  if (value <= 0 || value > Max_I16_Reference) {
    w.Current_Period = p.Period.count();
    return false;
  }
  while (p.Period.count() < value) {
    Period next;  // with no period at all, the first is that of a new Project
    if (!p.Period.empty()) {
      const Period& before = p.Period.last();
      next.From = before.Until;
      next.Storage_Each = before.Storage_Each;
      next.Time_Increment = before.Time_Increment;
      next.Until = next.From + next.Storage_Each;
    }
    p.Period.add(next);
  }
  p.Period.resize(value);
  w.Current_Period = p.Period.count();
  return true;
}

bool Enter_Period_Until(Project& p, const Run_Window& w, double value) {
  if (!p.Period.valid(w.Current_Period)) return false;
  Period& period = p.Period[w.Current_Period];
  if (!(value > period.From)) return false;
  period.Until = value;
  for (int j = w.Current_Period + 1; j <= p.Period.count(); ++j) {
    p.Period[j].From = p.Period[j - 1].Until;
    if (!(p.Period[j].Until > p.Period[j].From)) p.Period[j].Until = p.Period[j].From + 1.0;
  }
  return true;
}

bool Enter_Storage_Each(Project& p, const Run_Window& w, double value) {
  if (!p.Period.valid(w.Current_Period) || !(value > 0)) return false;
  p.Period[w.Current_Period].Storage_Each = value;
  return true;
}

bool Enter_Time_Increment(Project& p, const Run_Window& w, double value) {
  if (!p.Period.valid(w.Current_Period) || !(value > 0)) return false;
  p.Period[w.Current_Period].Time_Increment = value;
  return true;
}

namespace {

void Bind_Element_Materials(const Project& p, Run_Window& w) {
  w.Element_Material.clear();
  w.Element_Material.reserve(p.Mesh_Element.count());
  for (const Mesh_Element& e : p.Mesh_Element) {
    std::int16_t number = 0;
    for (int m = 1; m <= p.Material.count(); ++m) {
      if (p.Material[m].Name == e.Material) {
        number = static_cast<std::int16_t>(m);
        break;
      }
    }
    w.Element_Material.add(number);
  }
}

void Runs_From_Marks(Project& p, const Run_Window& w) {
  p.Run_Material.clear();
  for (int row = 1; row <= w.Material_Mark.count(); ++row)
    if (w.Material_Mark[row] != 0) p.Run_Material.add(static_cast<std::int16_t>(row));
}

}  // namespace

void Set_Mebin(Project& p, Run_Window& w) {
  Bind_Element_Materials(p, w);
  w.Replaceable_Material.clear();
  for (std::int16_t m : w.Element_Material) {
    if (m == 0) continue;  // a name the database does not know cannot be listed
    if (std::find(w.Replaceable_Material.begin(), w.Replaceable_Material.end(), m) ==
        w.Replaceable_Material.end())
      w.Replaceable_Material.add(m);
  }
  Choose_Replaced_Material(p, w,
                           w.Replaceable_Material.empty() ? std::int16_t{0} : w.Replaceable_Material[1]);
  w.Material_Mark.clear();
  w.Material_Mark.resize(p.Material.count(), p.Replace_Material != 0 ? True_Flag : False_Flag);
  Runs_From_Marks(p, w);
}

void Choose_Replaced_Material(Project& p, Run_Window& w, std::int16_t material) {
  if (w.Element_Material.count() != p.Mesh_Element.count()) Bind_Element_Materials(p, w);
  w.Replaced_Material = material;
  p.Element_Replaced.assign(static_cast<std::size_t>(p.Mesh_Element.count()), false);
  if (material == 0) return;
  for (int e = 1; e <= w.Element_Material.count(); ++e)
    if (w.Element_Material[e] == material) p.Element_Replaced[static_cast<std::size_t>(e - 1)] = true;
}

void Toggle_Material_Mark(Project& p, Run_Window& w, int row) {
  if (w.Material_Mark.count() != p.Material.count()) w.Material_Mark.resize(p.Material.count(), False_Flag);
  if (!w.Material_Mark.valid(row)) return;
  w.Material_Mark[row] = w.Material_Mark[row] != 0 ? False_Flag : True_Flag;
  Runs_From_Marks(p, w);
}

void Mark_All_Materials(Project& p, Run_Window& w) {
  w.Material_Mark.clear();
  w.Material_Mark.resize(p.Material.count(), True_Flag);
  Runs_From_Marks(p, w);
}

void Unmark_All_Materials(Project& p, Run_Window& w) {
  w.Material_Mark.clear();
  w.Material_Mark.resize(p.Material.count(), False_Flag);
  p.Run_Material.clear();
}

void Prepare_Runs(Project& p, std::int16_t replaced_material) {
  // Without material variants there is one result name, hence one run.
  if (Number_Of_Runs(p) == 0 || (p.Replace_Material == 0 && Number_Of_Runs(p) > 1)) {
    p.Run_Material.clear();
    p.Run_Material.add(replaced_material);
  }
  Set_Result_File_Names(p);
}

bool Enter_Iteration_Setting(Shell& s, int index, double value) {
  if (index < 0 || index > 3 || !(value > 0) || !std::isfinite(value)) return false;
  if (index == 0) {
    const long long limit = Round_Count(value);
    if (limit > Max_I16_Reference) return false;
    s.Mechanical_Iteration_Limit = static_cast<std::int16_t>(limit);
  } else {
    s.Mechanical_Limits[index - 1] = value;
  }
  return true;
}

}  // namespace pvx
