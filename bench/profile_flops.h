// The operation count of a skyline factorisation, shared by the solver benchmarks.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace pvx::bench {

// Two multiply-adds per entry of every inner product and per division of a column entry; cp holds
// the column pointers 0..n of the packed profile.
inline double Profile_Flops(const std::vector<std::int32_t>& cp, int n) {
  double count = 0;
  for (int j = 1; j <= n; ++j) {
    const int h = cp[j] - cp[j - 1], first = j - h + 2;
    for (int i = first; i <= j - 1; ++i)
      count += std::max(0, std::min(cp[i] - cp[i - 1] - 1, i - first + 1));
    count += std::max(0, h - 1);
  }
  return 2 * count;
}

}  // namespace pvx::bench
