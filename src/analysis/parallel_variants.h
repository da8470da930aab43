// The variants of a run set computed side by side: each on a copy of the project with a run state
// of its own, so that nothing mutable is shared, and each writing the result family that a run of
// the whole set gives it. The files are those of the variants computed one after the other.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "analysis/driver.h"

namespace pvx {

struct Variant_Result {
  int Variant = 0;
  Run_Outcome Outcome = Run_Outcome::Completed;
  std::string Message;  // the last message of the variant
};

// Computes variants 1..Number_Of_Runs (at least one) on up to `jobs` threads, taking the next
// variant as a thread comes free. Each variant starts from `settings` (Only_Variant set to it) and
// talks to the host that `host_of` makes for it, from its own thread: a host that several variants
// share must guard what it changes. A variant that fails, or stops because more iterations were
// refused, leaves the others running; the user's stop (the host's Stop_Requested) lets no further
// variant start. The results are in variant order.
std::vector<Variant_Result> Run_Variants_In_Parallel(
    const Project& p, const Run_State& settings, int jobs,
    const std::function<std::unique_ptr<Analysis_Host>(int variant)>& host_of,
    const std::string& work_directory);

}  // namespace pvx
