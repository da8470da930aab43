#include "analysis/solver.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstddef>

#if (defined(__x86_64__) || defined(__i386__)) && defined(__GNUC__)
#define PVX_SOLVER_X86 1
#include <immintrin.h>
#endif

namespace pvx {

namespace {

using Index = std::ptrdiff_t;

// ---- Node numbering --------------------------------------------------------------------------------

// The neighbour lists of all nodes, packed: the neighbours of node v are
// Neighbour[Start[v] .. Start[v+1]-1] (nodes numbered from 1, Start[0] unused).
struct Neighbour_Lists {
  std::vector<std::int32_t> Start;
  std::vector<std::int32_t> Neighbour;
};

// For every node, in the order of the elements that hold it (ascending element number) and within
// an element in corner order, every other corner node once. This is the list that a search of all
// elements per node gives; it is built from the element list of each node to stay linear in the size
// of the mesh.
Neighbour_Lists Build_Neighbour_Lists(const Project& project, int nodes, const Event_Pump& pump) {
  const int elements = project.Mesh_Element.count();
  auto corner = [&](int e, int c) -> int {
    const int v = project.Mesh_Element[e].Corner[c];
    return v >= 1 && v <= nodes ? v : 0;  // a corner outside the node table couples nothing
  };
  // An element that holds a node at two corners still counts once for that node.
  auto first_time = [&](int e, int c) {
    for (int b = 1; b < c; ++b) {
      if (corner(e, b) == corner(e, c)) return false;
    }
    return true;
  };

  std::vector<std::int32_t> element_start(static_cast<std::size_t>(nodes) + 2, 0);
  for (int e = 1; e <= elements; ++e) {
    for (int c = 1; c <= 4; ++c) {
      if (corner(e, c) != 0 && first_time(e, c)) ++element_start[static_cast<std::size_t>(corner(e, c)) + 1];
    }
  }
  for (int v = 1; v <= nodes; ++v)
    element_start[v + 1] += element_start[v];
  std::vector<std::int32_t> node_element(static_cast<std::size_t>(element_start[nodes + 1]));
  std::vector<std::int32_t> fill(element_start.begin(), element_start.end() - 1);
  for (int e = 1; e <= elements; ++e) {
    for (int c = 1; c <= 4; ++c) {
      const int v = corner(e, c);
      if (v != 0 && first_time(e, c)) node_element[static_cast<std::size_t>(fill[v]++)] = e;
    }
  }

  Neighbour_Lists lists;
  lists.Start.assign(static_cast<std::size_t>(nodes) + 2, 0);
  lists.Neighbour.reserve(static_cast<std::size_t>(element_start[nodes + 1]) * 3);
  std::vector<std::int32_t> listed_for(static_cast<std::size_t>(nodes) + 1, 0);
  for (int v = 1; v <= nodes; ++v) {
    lists.Start[v] = static_cast<std::int32_t>(lists.Neighbour.size());
    for (int k = element_start[v]; k < element_start[v + 1]; ++k) {
      const int e = node_element[static_cast<std::size_t>(k)];
      for (int c = 1; c <= 4; ++c) {
        const int w = corner(e, c);
        if (w == 0 || w == v || listed_for[w] == v) continue;
        listed_for[w] = v;
        lists.Neighbour.push_back(w);
      }
    }
    if (pump) pump();
  }
  lists.Start[nodes + 1] = static_cast<std::int32_t>(lists.Neighbour.size());
  return lists;
}

// Orders each neighbour list by ascending degree with a selection sort: the first of equal degrees
// in the remaining list is swapped into place. A selection sort with swaps is not stable, and the
// numbering (with it the rounding of every result) depends on this exact order, so no other sort
// will do.
void Sort_By_Degree(Neighbour_Lists& lists, int nodes) {
  auto degree = [&](int v) { return lists.Start[v + 1] - lists.Start[v]; };
  for (int v = 1; v <= nodes; ++v) {
    const int first = lists.Start[v], last = lists.Start[v + 1] - 1;
    for (int place = first; place < last; ++place) {
      int best = 1000000, best_at = place;
      for (int k = place; k <= last; ++k) {
        const int d = degree(lists.Neighbour[static_cast<std::size_t>(k)]);
        if (d < best) {
          best = d;
          best_at = k;
        }
      }
      std::swap(lists.Neighbour[static_cast<std::size_t>(place)],
                lists.Neighbour[static_cast<std::size_t>(best_at)]);
    }
  }
}

// Cuthill-McKee from `root`, reversed: the equation number of every node. Where the queue runs out
// before all nodes are numbered, the lowest unnumbered node starts the next block.
std::vector<std::int32_t> Number_From_Root(const Neighbour_Lists& lists, int nodes, int root) {
  std::vector<std::int32_t> number(static_cast<std::size_t>(nodes) + 1, 0);
  std::vector<std::int32_t> queue;
  queue.reserve(static_cast<std::size_t>(nodes));
  int next = 0;
  number[root] = ++next;
  queue.push_back(root);
  int lowest_unnumbered = 1;
  for (int k = 1; k <= nodes; ++k) {
    if (k > static_cast<int>(queue.size())) {
      while (number[lowest_unnumbered] != 0)
        ++lowest_unnumbered;
      number[lowest_unnumbered] = ++next;
      queue.push_back(lowest_unnumbered);
    }
    const int v = queue[static_cast<std::size_t>(k - 1)];
    for (int p = lists.Start[v]; p < lists.Start[v + 1]; ++p) {
      const int w = lists.Neighbour[static_cast<std::size_t>(p)];
      if (number[w] != 0) continue;
      number[w] = ++next;
      queue.push_back(w);
    }
  }
  for (int v = 1; v <= nodes; ++v)
    number[v] = nodes + 1 - number[v];
  return number;
}

// ---- Factorisation and solution: portable kernel ----------------------------------------------

// Position p of the packed matrix is a[p - 1]. Entry (row k, column c) is at index
// Column_Offset(cp, c) + k, for rows from the top of the column down to c.
inline Index Column_Offset(const std::int32_t* cp, int c) {
  return Index{cp[c]} - c - 1;
}
inline int Column_Top(const std::int32_t* cp, int c) {
  return c - (cp[c] - cp[c - 1]) + 1;
}

// Four independent sums so that the additions overlap.
inline double Dot_Portable(const double* x, const double* y, Index m) {
  double s0 = 0, s1 = 0, s2 = 0, s3 = 0;
  Index k = 0;
  for (; k + 4 <= m; k += 4) {
    s0 += x[k] * y[k];
    s1 += x[k + 1] * y[k + 1];
    s2 += x[k + 2] * y[k + 2];
    s3 += x[k + 3] * y[k + 3];
  }
  for (; k < m; ++k)
    s0 += x[k] * y[k];
  return (s0 + s1) + (s2 + s3);
}

// The reduction of a column: every entry below the top row is reduced by the inner product of the entries
// above it in column j and the same rows of column i (which is already factorised).
void Reduce_Column_Portable(double* a, const std::int32_t* cp, int j, int top_j) {
  const Index offset_j = Column_Offset(cp, j);
  for (int i = top_j + 1; i <= j - 1; ++i) {
    const int k0 = std::max(Column_Top(cp, i), top_j);
    const Index m = i - k0;
    if (m > 0) a[offset_j + i] -= Dot_Portable(a + (Column_Offset(cp, i) + k0), a + (offset_j + k0), m);
  }
}

void Forward_Reduce_Portable(const double* a, double* b, int n, const std::int32_t* cp) {
  for (int j = 2; j <= n; ++j) {
    const int top = Column_Top(cp, j);
    if (top < j) b[j - 1] -= Dot_Portable(a + (Column_Offset(cp, j) + top), b + (top - 1), j - top);
  }
}

void Back_Substitute_Portable(const double* a, double* b, int n, const std::int32_t* cp) {
  for (int j = n; j >= 2; --j) {
    const double c = b[j - 1];
    const int top = Column_Top(cp, j);
    const double* column = a + (Column_Offset(cp, j) + top);
    double* rows = b + (top - 1);
    for (Index k = 0; k < j - top; ++k)
      rows[k] -= column[k] * c;
  }
}

// ---- Factorisation and solution: AVX2 + FMA kernel ---------------------------------------------
//
// The same reductions and divisions of every entry as the portable kernel; only the sums are
// formed differently. An inner product keeps four vector accumulators; four consecutive rows of a
// column are reduced together so that each load of that column serves four products, and two
// neighbouring columns together so that each load of an earlier column serves two. The division
// of a column runs four entries at a time on a contiguous copy of the pivots. The sums therefore
// round differently from the portable kernel, by a few units in the last place.

#ifdef PVX_SOLVER_X86

#define PVX_AVX2 __attribute__((target("avx2,fma")))

PVX_AVX2 inline double Horizontal_Sum(__m256d v) {
  const __m128d pair = _mm_add_pd(_mm256_castpd256_pd128(v), _mm256_extractf128_pd(v, 1));
  return _mm_cvtsd_f64(_mm_add_sd(pair, _mm_unpackhi_pd(pair, pair)));
}

// The sums of the lanes of v0..v3, in the lanes 0..3 of one vector.
PVX_AVX2 inline __m256d Horizontal_Sum4(__m256d v0, __m256d v1, __m256d v2, __m256d v3) {
  const __m256d h01 = _mm256_hadd_pd(v0, v1), h23 = _mm256_hadd_pd(v2, v3);
  return _mm256_add_pd(_mm256_permute2f128_pd(h01, h23, 0x20), _mm256_permute2f128_pd(h01, h23, 0x31));
}

// Lanes 0..count-1 set (count 0..3): the last few entries of a sum are loaded under this mask, so
// that no sum ends in a scalar loop and nothing past the end of a column is read.
PVX_AVX2 inline __m256i Tail_Mask(Index count) {
  return _mm256_cmpgt_epi64(_mm256_set1_epi64x(count), _mm256_setr_epi64x(0, 1, 2, 3));
}

PVX_AVX2 inline double Dot_Avx2(const double* x, const double* y, Index m) {
  __m256d s0 = _mm256_setzero_pd(), s1 = _mm256_setzero_pd();
  __m256d s2 = _mm256_setzero_pd(), s3 = _mm256_setzero_pd();
  Index k = 0;
  for (; k + 16 <= m; k += 16) {
    s0 = _mm256_fmadd_pd(_mm256_loadu_pd(x + k), _mm256_loadu_pd(y + k), s0);
    s1 = _mm256_fmadd_pd(_mm256_loadu_pd(x + k + 4), _mm256_loadu_pd(y + k + 4), s1);
    s2 = _mm256_fmadd_pd(_mm256_loadu_pd(x + k + 8), _mm256_loadu_pd(y + k + 8), s2);
    s3 = _mm256_fmadd_pd(_mm256_loadu_pd(x + k + 12), _mm256_loadu_pd(y + k + 12), s3);
  }
  for (; k + 4 <= m; k += 4)
    s0 = _mm256_fmadd_pd(_mm256_loadu_pd(x + k), _mm256_loadu_pd(y + k), s0);
  if (k < m) {
    const __m256i mask = Tail_Mask(m - k);
    s1 = _mm256_fmadd_pd(_mm256_maskload_pd(x + k, mask), _mm256_maskload_pd(y + k, mask), s1);
  }
  return Horizontal_Sum(_mm256_add_pd(_mm256_add_pd(s0, s1), _mm256_add_pd(s2, s3)));
}

// The four inner products of y with x0..x3 over m entries, added to s[0..3].
PVX_AVX2 inline void Dot4_Avx2(const double* x0, const double* x1, const double* x2, const double* x3,
                               const double* y, Index m, double s[4]) {
  __m256d a0 = _mm256_setzero_pd(), b0 = _mm256_setzero_pd();
  __m256d a1 = _mm256_setzero_pd(), b1 = _mm256_setzero_pd();
  __m256d a2 = _mm256_setzero_pd(), b2 = _mm256_setzero_pd();
  __m256d a3 = _mm256_setzero_pd(), b3 = _mm256_setzero_pd();
  Index k = 0;
  for (; k + 8 <= m; k += 8) {
    const __m256d ya = _mm256_loadu_pd(y + k), yb = _mm256_loadu_pd(y + k + 4);
    a0 = _mm256_fmadd_pd(_mm256_loadu_pd(x0 + k), ya, a0);
    b0 = _mm256_fmadd_pd(_mm256_loadu_pd(x0 + k + 4), yb, b0);
    a1 = _mm256_fmadd_pd(_mm256_loadu_pd(x1 + k), ya, a1);
    b1 = _mm256_fmadd_pd(_mm256_loadu_pd(x1 + k + 4), yb, b1);
    a2 = _mm256_fmadd_pd(_mm256_loadu_pd(x2 + k), ya, a2);
    b2 = _mm256_fmadd_pd(_mm256_loadu_pd(x2 + k + 4), yb, b2);
    a3 = _mm256_fmadd_pd(_mm256_loadu_pd(x3 + k), ya, a3);
    b3 = _mm256_fmadd_pd(_mm256_loadu_pd(x3 + k + 4), yb, b3);
  }
  if (k + 4 <= m) {
    const __m256d ya = _mm256_loadu_pd(y + k);
    a0 = _mm256_fmadd_pd(_mm256_loadu_pd(x0 + k), ya, a0);
    a1 = _mm256_fmadd_pd(_mm256_loadu_pd(x1 + k), ya, a1);
    a2 = _mm256_fmadd_pd(_mm256_loadu_pd(x2 + k), ya, a2);
    a3 = _mm256_fmadd_pd(_mm256_loadu_pd(x3 + k), ya, a3);
    k += 4;
  }
  if (k < m) {
    const __m256i mask = Tail_Mask(m - k);
    const __m256d yt = _mm256_maskload_pd(y + k, mask);
    b0 = _mm256_fmadd_pd(_mm256_maskload_pd(x0 + k, mask), yt, b0);
    b1 = _mm256_fmadd_pd(_mm256_maskload_pd(x1 + k, mask), yt, b1);
    b2 = _mm256_fmadd_pd(_mm256_maskload_pd(x2 + k, mask), yt, b2);
    b3 = _mm256_fmadd_pd(_mm256_maskload_pd(x3 + k, mask), yt, b3);
  }
  const __m256d sums = Horizontal_Sum4(_mm256_add_pd(a0, b0), _mm256_add_pd(a1, b1), _mm256_add_pd(a2, b2),
                                       _mm256_add_pd(a3, b3));
  _mm256_storeu_pd(s, _mm256_add_pd(_mm256_loadu_pd(s), sums));
}

// The eight inner products of yc and yd with x0..x3 over m entries, added to sc[0..3] and
// sd[0..3]: two columns share each load of the four columns x.
PVX_AVX2 inline void Dot8_Avx2(const double* x0, const double* x1, const double* x2, const double* x3,
                               const double* yc, const double* yd, Index m, double sc[4], double sd[4]) {
  __m256d c0 = _mm256_setzero_pd(), c1 = _mm256_setzero_pd(), c2 = _mm256_setzero_pd(),
          c3 = _mm256_setzero_pd();
  __m256d d0 = _mm256_setzero_pd(), d1 = _mm256_setzero_pd(), d2 = _mm256_setzero_pd(),
          d3 = _mm256_setzero_pd();
  Index k = 0;
  for (; k + 4 <= m; k += 4) {
    const __m256d vc = _mm256_loadu_pd(yc + k), vd = _mm256_loadu_pd(yd + k);
    const __m256d v0 = _mm256_loadu_pd(x0 + k), v1 = _mm256_loadu_pd(x1 + k);
    const __m256d v2 = _mm256_loadu_pd(x2 + k), v3 = _mm256_loadu_pd(x3 + k);
    c0 = _mm256_fmadd_pd(v0, vc, c0);
    d0 = _mm256_fmadd_pd(v0, vd, d0);
    c1 = _mm256_fmadd_pd(v1, vc, c1);
    d1 = _mm256_fmadd_pd(v1, vd, d1);
    c2 = _mm256_fmadd_pd(v2, vc, c2);
    d2 = _mm256_fmadd_pd(v2, vd, d2);
    c3 = _mm256_fmadd_pd(v3, vc, c3);
    d3 = _mm256_fmadd_pd(v3, vd, d3);
  }
  if (k < m) {
    const __m256i mask = Tail_Mask(m - k);
    const __m256d vc = _mm256_maskload_pd(yc + k, mask), vd = _mm256_maskload_pd(yd + k, mask);
    const __m256d v0 = _mm256_maskload_pd(x0 + k, mask), v1 = _mm256_maskload_pd(x1 + k, mask);
    const __m256d v2 = _mm256_maskload_pd(x2 + k, mask), v3 = _mm256_maskload_pd(x3 + k, mask);
    c0 = _mm256_fmadd_pd(v0, vc, c0);
    d0 = _mm256_fmadd_pd(v0, vd, d0);
    c1 = _mm256_fmadd_pd(v1, vc, c1);
    d1 = _mm256_fmadd_pd(v1, vd, d1);
    c2 = _mm256_fmadd_pd(v2, vc, c2);
    d2 = _mm256_fmadd_pd(v2, vd, d2);
    c3 = _mm256_fmadd_pd(v3, vc, c3);
    d3 = _mm256_fmadd_pd(v3, vd, d3);
  }
  _mm256_storeu_pd(sc, _mm256_add_pd(_mm256_loadu_pd(sc), Horizontal_Sum4(c0, c1, c2, c3)));
  _mm256_storeu_pd(sd, _mm256_add_pd(_mm256_loadu_pd(sd), Horizontal_Sum4(d0, d1, d2, d3)));
}

// Reduces the entry of row i of column c on its own.
PVX_AVX2 inline void Reduce_Row_Avx2(double* a, const std::int32_t* cp, Index offset_c, int top_c, int i) {
  const int k0 = std::max(Column_Top(cp, i), top_c);
  if (i > k0) a[offset_c + i] -= Dot_Avx2(a + (Column_Offset(cp, i) + k0), a + (offset_c + k0), i - k0);
}

// Rows i..i+3 of a column, g[0..3], given the sums s[0..3] of their products with the rows above i:
// what is left is a unit lower triangular solve with the entries of columns i..i+3 in rows i..i+2.
// The differences t do not wait for the rows above them, so the chain from row to row is one
// multiply-add long.
PVX_AVX2 inline void Finish_Block(double* g, const double* a, const Index offset[4], int i,
                                  const double s[4]) {
  const double t1 = g[1] - s[1], t2 = g[2] - s[2], t3 = g[3] - s[3];
  g[0] -= s[0];
  g[1] = std::fma(-a[offset[1] + i], g[0], t1);
  g[2] = std::fma(-a[offset[2] + i + 1], g[1], std::fma(-a[offset[2] + i], g[0], t2));
  g[3] = std::fma(-a[offset[3] + i + 2], g[2],
                  std::fma(-a[offset[3] + i + 1], g[1], std::fma(-a[offset[3] + i], g[0], t3)));
}

// Row r's product runs over rows k0[r]..i+r-1. In a block of rows i..i+3 it is split into a part of
// its own (k0[r]..shared-1), a part common to the block (shared..i-1) and the rows of the block
// itself (i..i+r-1), which become final one after the other. The block is taken when the common
// part starts no lower than row i.
PVX_AVX2 inline void Block_Starts(const std::int32_t* cp, int i, int top_c, int k0[4], Index offset[4]) {
  for (int r = 0; r < 4; ++r) {
    k0[r] = std::max(Column_Top(cp, i + r), top_c);
    offset[r] = Column_Offset(cp, i + r);
  }
}
PVX_AVX2 inline void Own_Parts(const double* a, const int k0[4], const Index offset[4], Index offset_c,
                               int shared, double s[4]) {
  for (int r = 0; r < 4; ++r) {
    s[r] = shared > k0[r] ? Dot_Avx2(a + (offset[r] + k0[r]), a + (offset_c + k0[r]), shared - k0[r]) : 0.0;
  }
}

// The reduction of column j alone, four rows at a time.
PVX_AVX2 void Reduce_Column_Avx2(double* a, const std::int32_t* cp, int j, int top_j) {
  const Index offset_j = Column_Offset(cp, j);
  int i = top_j + 1;
  while (i <= j - 1) {
    if (i + 3 <= j - 1) {
      int k0[4];
      Index offset[4];
      Block_Starts(cp, i, top_j, k0, offset);
      const int shared = std::max(std::max(k0[0], k0[1]), std::max(k0[2], k0[3]));
      if (shared <= i) {
        double s[4];
        Own_Parts(a, k0, offset, offset_j, shared, s);
        if (shared < i) {
          Dot4_Avx2(a + (offset[0] + shared), a + (offset[1] + shared), a + (offset[2] + shared),
                    a + (offset[3] + shared), a + (offset_j + shared), i - shared, s);
        }
        Finish_Block(a + (offset_j + i), a, offset, i, s);
        i += 4;
        continue;
      }
    }
    Reduce_Row_Avx2(a, cp, offset_j, top_j, i);
    ++i;
  }
}

// The reduction of columns j and j+1 in all rows above j, together: each load of an earlier
// column serves both. Every entry gets the same products as in the column by column order, since
// rows above j of column j+1 depend on neither column j nor its pivot.
PVX_AVX2 void Reduce_Column_Pair_Avx2(double* a, const std::int32_t* cp, int j, int top_j, int top_next) {
  const Index offset_j = Column_Offset(cp, j), offset_next = Column_Offset(cp, j + 1);
  const int both = std::max(top_j, top_next);  // from this row down both columns hold entries
  for (int i = top_j + 1; i <= both; ++i)
    Reduce_Row_Avx2(a, cp, offset_j, top_j, i);
  for (int i = top_next + 1; i <= both; ++i)
    Reduce_Row_Avx2(a, cp, offset_next, top_next, i);
  int i = both + 1;
  while (i <= j - 1) {
    if (i + 3 <= j - 1) {
      int k0[4], k0_next[4];
      Index offset[4];
      Block_Starts(cp, i, top_j, k0, offset);
      Block_Starts(cp, i, top_next, k0_next, offset);
      const int shared =
          std::max(std::max(std::max(k0[0], k0[1]), std::max(k0[2], k0[3])),
                   std::max(std::max(k0_next[0], k0_next[1]), std::max(k0_next[2], k0_next[3])));
      if (shared <= i) {
        double s[4], s_next[4];
        Own_Parts(a, k0, offset, offset_j, shared, s);
        Own_Parts(a, k0_next, offset, offset_next, shared, s_next);
        if (shared < i) {
          Dot8_Avx2(a + (offset[0] + shared), a + (offset[1] + shared), a + (offset[2] + shared),
                    a + (offset[3] + shared), a + (offset_j + shared), a + (offset_next + shared), i - shared,
                    s, s_next);
        }
        Finish_Block(a + (offset_j + i), a, offset, i, s);
        Finish_Block(a + (offset_next + i), a, offset, i, s_next);
        i += 4;
        continue;
      }
    }
    Reduce_Row_Avx2(a, cp, offset_j, top_j, i);
    Reduce_Row_Avx2(a, cp, offset_next, top_next, i);
    ++i;
  }
}

// Divides the count entries of a column by the pivots of their rows and subtracts entry times
// multiplier from the diagonal. A zero pivot stops it (false) with the entries above it divided.
PVX_AVX2 bool Divide_Column_Avx2(double* column, const double* pivot, Index count, double& diagonal) {
  const __m256d zero = _mm256_setzero_pd();
  __m256d sum = zero;
  Index k = 0;
  for (; k + 4 <= count; k += 4) {
    const __m256d d = _mm256_loadu_pd(pivot + k);
    if (_mm256_movemask_pd(_mm256_cmp_pd(d, zero, _CMP_EQ_OQ)) != 0) break;
    const __m256d e = _mm256_loadu_pd(column + k), multiplier = _mm256_div_pd(e, d);
    _mm256_storeu_pd(column + k, multiplier);
    sum = _mm256_fmadd_pd(e, multiplier, sum);
  }
  double d_j = diagonal - Horizontal_Sum(sum);
  for (; k < count; ++k) {
    if (pivot[k] == 0.0) {
      diagonal = d_j;
      return false;
    }
    const double e = column[k], multiplier = e / pivot[k];
    column[k] = multiplier;
    d_j -= e * multiplier;
  }
  diagonal = d_j;
  return true;
}

// Divides column c by the pivots of its rows and keeps its own pivot; false on a zero pivot.
PVX_AVX2 bool Finish_Column_Avx2(double* a, const std::int32_t* cp, int c, double* pivot) {
  const int top = Column_Top(cp, c);
  if (top < c && !Divide_Column_Avx2(a + (Column_Offset(cp, c) + top), pivot + top, c - top, a[cp[c] - 1])) {
    return false;
  }
  pivot[c] = a[cp[c] - 1];
  return true;
}

// The factorisation with the vector kernel; false on a zero pivot. Two neighbouring columns that
// both need a reduction are reduced together down to the row above the first one's diagonal; the
// first is then divided, and the second gets its last row and its division. The events are pumped
// at the start of each column's own work.
PVX_AVX2 bool Factorise_Avx2(double* a, int n, const std::int32_t* cp, const Event_Pump& pump) {
  std::vector<double> pivot(static_cast<std::size_t>(n) + 1);  // the pivots, contiguous
  for (int j = 1; j <= n; ++j) {
    if (pump) pump();
    const int top = Column_Top(cp, j);
    if (j < n && j - top >= 2 && Column_Top(cp, j + 1) <= j - 1) {
      const int top_next = Column_Top(cp, j + 1);
      Reduce_Column_Pair_Avx2(a, cp, j, top, top_next);
      if (!Finish_Column_Avx2(a, cp, j, pivot.data())) return false;
      ++j;
      if (pump) pump();
      Reduce_Row_Avx2(a, cp, Column_Offset(cp, j), top_next, j - 1);
      if (!Finish_Column_Avx2(a, cp, j, pivot.data())) return false;
      continue;
    }
    if (j - top >= 2) Reduce_Column_Avx2(a, cp, j, top);
    if (!Finish_Column_Avx2(a, cp, j, pivot.data())) return false;
  }
  return true;
}

PVX_AVX2 void Forward_Reduce_Avx2(const double* a, double* b, int n, const std::int32_t* cp) {
  for (int j = 2; j <= n; ++j) {
    const int top = Column_Top(cp, j);
    if (top < j) b[j - 1] -= Dot_Avx2(a + (Column_Offset(cp, j) + top), b + (top - 1), j - top);
  }
}

PVX_AVX2 void Back_Substitute_Avx2(const double* a, double* b, int n, const std::int32_t* cp) {
  for (int j = n; j >= 2; --j) {
    const double c = b[j - 1];
    const int top = Column_Top(cp, j);
    const double* column = a + (Column_Offset(cp, j) + top);
    double* rows = b + (top - 1);
    const Index m = j - top;
    const __m256d cv = _mm256_set1_pd(c);
    Index k = 0;
    for (; k + 4 <= m; k += 4) {
      _mm256_storeu_pd(rows + k,
                       _mm256_fnmadd_pd(_mm256_loadu_pd(column + k), cv, _mm256_loadu_pd(rows + k)));
    }
    for (; k < m; ++k)
      rows[k] -= column[k] * c;
  }
}

bool Cpu_Runs_Avx2() {
  static const bool runs = [] {
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
  }();
  return runs;
}

#else

bool Cpu_Runs_Avx2() {
  return false;
}

#endif

Solver_Kernel Resolve(Solver_Kernel kernel) {
  if (kernel == Solver_Kernel::Automatic)
    return Cpu_Runs_Avx2() ? Solver_Kernel::Avx2 : Solver_Kernel::Portable;
  assert(Solver_Kernel_Available(kernel));
  return kernel;
}

}  // namespace

bool Solver_Kernel_Available(Solver_Kernel kernel) {
  return kernel != Solver_Kernel::Avx2 || Cpu_Runs_Avx2();
}

void Set_Node_Numbering(const Project& project, Node_Numbering& numbering, const Event_Pump& pump) {
  const int nodes = project.Mesh_Node.count();
  numbering.Node_Equation.clear();
  numbering.Node_Equation.resize(nodes);
  numbering.Column_Pointer.assign(static_cast<std::size_t>(nodes) + 1, 0);
  numbering.Profile_Size = 0;
  numbering.Max_Column_Height = 0;
  if (nodes == 0) return;

  Neighbour_Lists lists = Build_Neighbour_Lists(project, nodes, pump);
  Sort_By_Degree(lists, nodes);
  // The root is node 1 and nothing else: the numbering fixes the order of rounding of every result
  // of a run, so it must not depend on a search among roots.
  const std::vector<std::int32_t> equation = Number_From_Root(lists, nodes, 1);

  // Height of column c above its diagonal: the distance to the lowest-numbered node that shares an
  // element with the node of equation c.
  std::vector<std::int32_t> height(static_cast<std::size_t>(nodes) + 1, 0);
  for (int v = 1; v <= nodes; ++v) {
    const int c = equation[v];
    int h = 0;
    for (int p = lists.Start[v]; p < lists.Start[v + 1]; ++p) {
      const int other = equation[lists.Neighbour[static_cast<std::size_t>(p)]];
      if (other < c) h = std::max(h, c - other);
    }
    height[c] = h;
    numbering.Node_Equation[v] = c;
  }
  // Element corners are 16-bit node numbers, so the profile stays below n (n + 1) / 2 < 2^31.
  std::vector<std::int32_t>& cp = numbering.Column_Pointer;
  cp[1] = 1;
  for (int c = 2; c <= nodes; ++c)
    cp[c] = cp[c - 1] + height[c] + 1;
  numbering.Profile_Size = cp[nodes];
  for (int c = 1; c <= nodes; ++c)
    numbering.Max_Column_Height = std::max(numbering.Max_Column_Height, cp[c] - cp[c - 1]);
}

void Factorise_Profile(Table<double>& matrix, int n, std::vector<std::int32_t>& column_pointer, bool& ok,
                       std::string& message, const Event_Pump& pump, Solver_Kernel kernel) {
  column_pointer[0] = 0;
  ok = true;
  if (n < 1) return;
  assert(static_cast<int>(column_pointer.size()) > n && matrix.count() >= column_pointer[n]);
  kernel = Resolve(kernel);
  double* a = matrix.data().data();
  const std::int32_t* cp = column_pointer.data();

#ifdef PVX_SOLVER_X86
  if (kernel == Solver_Kernel::Avx2) {
    if (!Factorise_Avx2(a, n, cp, pump)) {
      ok = false;
      message = Zero_Pivot_Message;
    }
    return;
  }
#endif
  for (int j = 1; j <= n; ++j) {
    if (pump) pump();
    const int h = cp[j] - cp[j - 1];
    if (h < 2) continue;
    const int top = j - h + 1;
    if (h > 2) Reduce_Column_Portable(a, cp, j, top);
    // Divide the column by the pivots of its rows and reduce its own pivot.
    double* column = a + (Column_Offset(cp, j) + top);
    double& diagonal = a[cp[j] - 1];
    double d_j = diagonal;
    for (int r = top; r < j; ++r) {
      const double d = a[cp[r] - 1];
      if (d == 0.0) {
        diagonal = d_j;
        ok = false;
        message = Zero_Pivot_Message;
        return;
      }
      const double e = column[r - top];
      const double multiplier = e / d;
      column[r - top] = multiplier;
      d_j -= e * multiplier;
    }
    diagonal = d_j;
  }
}

void Solve_Profile(const Table<double>& factors, Table<double>& right_hand_side, int n,
                   const std::vector<std::int32_t>& column_pointer, Solver_Kernel kernel) {
  if (n < 1) return;
  assert(static_cast<int>(column_pointer.size()) > n && factors.count() >= column_pointer[n] &&
         right_hand_side.count() >= n);
  kernel = Resolve(kernel);
  const double* a = factors.data().data();
  double* b = right_hand_side.data().data();
  const std::int32_t* cp = column_pointer.data();

#ifdef PVX_SOLVER_X86
  if (kernel == Solver_Kernel::Avx2) {
    Forward_Reduce_Avx2(a, b, n, cp);
  } else {
    Forward_Reduce_Portable(a, b, n, cp);
  }
#else
  Forward_Reduce_Portable(a, b, n, cp);
#endif
  for (int j = 1; j <= n; ++j)
    b[j - 1] /= a[cp[j] - 1];
#ifdef PVX_SOLVER_X86
  if (kernel == Solver_Kernel::Avx2) {
    Back_Substitute_Avx2(a, b, n, cp);
  } else {
    Back_Substitute_Portable(a, b, n, cp);
  }
#else
  Back_Substitute_Portable(a, b, n, cp);
#endif
}

void Multiply_Profile(const Table<double>& matrix, int n, const std::vector<std::int32_t>& column_pointer,
                      const Table<double>& x, Table<double>& y) {
  const double* a = matrix.data().data() - 1;  // positions from 1
  for (int c = 1; c <= n; ++c)
    y[c] = 0;
  for (int c = 1; c <= n; ++c) {
    const std::int32_t last = column_pointer[static_cast<std::size_t>(c)];
    const std::int32_t first = column_pointer[static_cast<std::size_t>(c - 1)] + 1;
    const int top = c - (last - first);
    double sum = 0;
    const double xc = x[c];
    for (std::int32_t q = first; q < last; ++q) {
      const int r = top + (q - first);
      sum += a[q] * x[r];
      y[r] += a[q] * xc;
    }
    y[c] += sum + a[last] * xc;
  }
}

}  // namespace pvx
