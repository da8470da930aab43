// The extremes of every result variable over the model, sampled after each step: per step for the
// run diagnostics, and over the whole run for the extreme table of the `.RES` index.
#pragma once

#include <array>
#include <vector>

#include "results/result_variables.h"
#include "results/run_index.h"
#include "results/storage.h"

namespace pvx {

// Per row (0 .. Number_Of_Steps + 1) and variable (0..40), in memory only. Row 1 is the initial
// state, row i + 1 the end of step i.
struct Field_Statistics {
  std::vector<std::array<double, Result_Variable_Count + 1>> Field_Maximum;
  std::vector<std::array<double, Result_Variable_Count + 1>> Field_Minimum;
  // Running extremes over all rows sampled so far, for the scales of the diagnostics graphs.
  std::array<double, Result_Variable_Count + 1> Overall_Maximum{};
  std::array<double, Result_Variable_Count + 1> Overall_Minimum{};
};

// Sizes both tables to rows 0 .. steps + 1, all zero.
void Size_Field_Statistics(Field_Statistics& stats, int steps);

// Samples the step `row` (1 for the initial state): the minimum and maximum of each
// variable over the model go to row `row` of the statistics, and the period extremes of `index`
// are updated; `stored_index` is the number of storages flagged so far, this step's included. At
// the end every row's colour scale is set to its period range. The mechanical variables are
// sampled only when `mechanical`. A field left empty samples as 0.
void Sample_Field_Extremes(Run_Index& index, Field_Statistics& stats, int row, int stored_index,
                           const Field_Values& fields, bool mechanical);

}  // namespace pvx
