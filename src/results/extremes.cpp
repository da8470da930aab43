#include "results/extremes.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace pvx {

namespace {

// A running minimum and maximum; an empty range reads as 0, 0.
struct Range {
  double min = std::numeric_limits<double>::infinity();
  double max = -std::numeric_limits<double>::infinity();
  void add(double v) {
    min = v < min ? v : min;
    max = v > max ? v : max;
  }
  Range done() const { return min <= max ? *this : Range{0, 0}; }
};

Range Over(std::span<const double> values) {
  Range r;
  for (double v : values)
    r.add(v);
  return r.done();
}

// From value `first` (0-based) on, `count` values out of every `stride`.
Range Strided(std::span<const double> values, std::size_t stride, std::size_t first, std::size_t count) {
  Range r;
  for (std::size_t i = first; i < values.size(); i += stride)
    for (std::size_t k = 0; k < count && i + k < values.size(); ++k)
      r.add(values[i + k]);
  return r.done();
}

class Sampler {
 public:
  Sampler(Run_Index& index, Field_Statistics& stats, int row, int stored_index)
      : index_(index), stats_(stats), row_(row), stored_(stored_index) {}

  // Records the step extremes of v, and updates the period extremes with [lo, hi].
  void put(int v, double step_min, double step_max, double lo, double hi) {
    const auto col = static_cast<std::size_t>(v);
    const auto row = static_cast<std::size_t>(row_);
    stats_.Field_Minimum[row][col] = step_min;
    stats_.Field_Maximum[row][col] = step_max;
    Extreme_Row& e = index_.Extremes[v];
    if (row_ == 1) {
      e.PeriodMin = lo;
      e.PeriodMax = hi;
      e.StoredIndexOfMin = 1;
      e.StoredIndexOfMax = 1;
      stats_.Overall_Minimum[col] = step_min;
      stats_.Overall_Maximum[col] = step_max;
      return;
    }
    if (lo < e.PeriodMin) {
      e.PeriodMin = lo;
      e.StoredIndexOfMin = stored_;
    }
    if (hi > e.PeriodMax) {
      e.PeriodMax = hi;
      e.StoredIndexOfMax = stored_;
    }
    stats_.Overall_Minimum[col] = std::min(stats_.Overall_Minimum[col], step_min);
    stats_.Overall_Maximum[col] = std::max(stats_.Overall_Maximum[col], step_max);
  }
  void put(int v, const Range& r) {
    const Range d = r.done();
    put(v, d.min, d.max, d.min, d.max);
  }

  double step_max(int v) const {
    return stats_.Field_Maximum[static_cast<std::size_t>(row_)][static_cast<std::size_t>(v)];
  }

 private:
  Run_Index& index_;
  Field_Statistics& stats_;
  int row_;
  int stored_;
};

}  // namespace

void Size_Field_Statistics(Field_Statistics& stats, int steps) {
  const std::size_t rows = static_cast<std::size_t>(std::max(steps, 0)) + 2;
  stats.Field_Maximum.assign(rows, {});
  stats.Field_Minimum.assign(rows, {});
  stats.Overall_Maximum.fill(0);
  stats.Overall_Minimum.fill(0);
}

void Sample_Field_Extremes(Run_Index& index, Field_Statistics& stats, int row, int stored_index,
                           const Field_Values& f, bool mechanical) {
  if (row < 1) return;
  const auto needed = static_cast<std::size_t>(row) + 1;
  if (stats.Field_Maximum.size() < needed) stats.Field_Maximum.resize(needed);
  if (stats.Field_Minimum.size() < needed) stats.Field_Minimum.resize(needed);
  Sampler s(index, stats, row, stored_index);

  s.put(1, Over(f.Temperature));
  s.put(2, Over(f.Maturity));
  s.put(40, Over(f.Hydration));
  s.put(3, Over(f.C_Maturity));
  s.put(4, Over(f.Potential));
  s.put(5, Over(f.Moisture_Content));

  // The selected circuit: the inlet counts as the step's minimum and the outlet as its maximum,
  // whichever is the lower; the period range takes them in their true order.
  const Circuit_Sample& c = f.Circuit;
  const double first = c.Present ? c.First_Station : 0.0;
  const double last = c.Present ? c.Last_Station : 0.0;
  s.put(6, first, last, std::min(first, last), std::max(first, last));
  const double flow = c.Present ? c.Flow : 0.0;
  s.put(7, flow, flow, flow, flow);
  index.Extremes[7].PeriodMin = 0;
  const double capacity = s.step_max(7) * (c.Present ? c.Liquid_Capacity : 0.0) / 3600 * (last - first);
  s.put(8, capacity, capacity, capacity, capacity);
  Extreme_Row& e8 = index.Extremes[8];
  if (std::fabs(e8.PeriodMax - e8.PeriodMin) < 0.004) e8.PeriodMax = e8.PeriodMin + 0.1;

  s.put(9, Over(f.Tensile_Strength));
  s.put(10, Over(f.Compressive_Strength));

  if (mechanical) {
    s.put(11, Strided(f.Displacement, 2, 0, 1));
    s.put(12, Strided(f.Displacement, 2, 1, 1));
    Range total;
    for (std::size_t i = 0; i + 1 < f.Displacement.size(); i += 2)
      total.add(
          std::sqrt(f.Displacement[i] * f.Displacement[i] + f.Displacement[i + 1] * f.Displacement[i + 1]));
    s.put(20, total);
    index.Extremes[20].PeriodMin = 0;

    Range major, minor, szz, sxx, syy, sxy, ratio;
    const std::size_t corners = f.Corner_Stress.size() / 4;
    for (std::size_t k = 0; k < corners; ++k) {
      const double* q = f.Corner_Stress.data() + 4 * k;
      // The principal stresses of the viewer, with one root for both.
      const double centre = (q[0] + q[1]) / 2, half = (q[0] - q[1]) / 2;
      const double radius = std::sqrt(half * half + q[2] * q[2]);
      major.add(static_cast<float>(centre + radius));
      minor.add(static_cast<float>(centre - radius));
      sxx.add(q[0]);
      syy.add(q[1]);
      sxy.add(q[2]);
      szz.add(q[3]);
      // The point's tensile strength belongs to the same element and corner number.
      const double ft = k < f.Tensile_Strength.size() ? f.Tensile_Strength[k] : 0.0;
      ratio.add(ft > 0 ? std::max(q[3], 0.0) / ft : 10.0);
    }
    s.put(13, major);
    s.put(14, minor);
    s.put(15, szz);
    s.put(16, sxx);
    s.put(17, syy);
    s.put(18, sxy);
    s.put(19, ratio);

    s.put(21, Over(f.Reaction));
    Range crack;
    for (std::size_t k = 0; k < f.Crack_Opening.size(); ++k) {
      const bool cracked = f.Cracked.empty() || (k < f.Cracked.size() && f.Cracked[k] != 0);
      crack.add(cracked ? f.Crack_Opening[k] : 0.0);
    }
    s.put(22, crack);
    s.put(23, Strided(f.Interface_Stress, 4, 0, 2));
    s.put(24, Strided(f.Interface_Stress, 4, 2, 2));
    s.put(25, Strided(f.Bar_Values, 5, 0, 1));
    s.put(26, Strided(f.Bar_Values, 5, 1, 2));
    s.put(27, Strided(f.Bar_Values, 5, 3, 2));
  }

  for (Extreme_Row& e : index.Extremes) {
    e.ScaleMax = e.PeriodMax;
    e.ScaleMin = e.PeriodMin;
  }
}

}  // namespace pvx
