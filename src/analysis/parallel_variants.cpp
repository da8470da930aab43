#include "analysis/parallel_variants.h"

#include <algorithm>
#include <atomic>
#include <thread>

namespace pvx {

std::vector<Variant_Result> Run_Variants_In_Parallel(
    const Project& p, const Run_State& settings, int jobs,
    const std::function<std::unique_ptr<Analysis_Host>(int variant)>& host_of,
    const std::string& work_directory) {
  const int variants = std::max(Number_Of_Runs(p), 1);
  std::vector<Variant_Result> results(static_cast<std::size_t>(variants));
  std::atomic<int> next{1};
  std::atomic<bool> stopped{false};
  auto work = [&] {
    for (;;) {
      const int variant = next.fetch_add(1);
      if (variant > variants || stopped.load()) return;
      Variant_Result& r = results[static_cast<std::size_t>(variant - 1)];
      r.Variant = variant;
      Project copy = p;
      Run_State run = settings;
      run.Only_Variant = variant;
      const std::unique_ptr<Analysis_Host> host = host_of(variant);
      r.Outcome = Run_Analysis(copy, run, *host, work_directory, r.Message);
      // The user's stop ends the whole set; a variant that stopped on its own (more iterations
      // refused) leaves the others to run.
      if (r.Outcome == Run_Outcome::Stopped && host->Stop_Requested()) stopped = true;
    }
  };
  const int threads = std::clamp(jobs, 1, variants);
  std::vector<std::thread> pool;
  for (int i = 1; i < threads; ++i)
    pool.emplace_back(work);
  work();
  for (std::thread& t : pool)
    t.join();
  // A variant that never started because the run was stopped says so.
  for (int v = 1; v <= variants; ++v) {
    Variant_Result& r = results[static_cast<std::size_t>(v - 1)];
    if (r.Variant == 0) {
      r.Variant = v;
      r.Outcome = Run_Outcome::Stopped;
    }
  }
  return results;
}

}  // namespace pvx
