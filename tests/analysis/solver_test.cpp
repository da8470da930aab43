#include "analysis/solver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <vector>

namespace pvx {
namespace {

// ---- Profile matrices and independent factorisations ---------------------------------------------

struct Profile_System {
  int n = 0;
  std::vector<std::int32_t> cp;  // 0..n
  Table<double> a;               // packed upper triangle, positions from 1
  std::vector<std::vector<double>> dense;
};

int Top(const std::vector<std::int32_t>& cp, int c) {
  return c - (cp[c] - cp[c - 1]) + 1;
}
// Position of entry (row r, column c), r in the column.
int Position(const std::vector<std::int32_t>& cp, int r, int c) {
  return cp[c] - c + r;
}

// A random symmetric matrix with the given column heights, made positive definite by a dominant
// diagonal.
Profile_System Random_System(const std::vector<int>& height, std::mt19937_64& random) {
  Profile_System s;
  s.n = static_cast<int>(height.size());
  s.cp.assign(s.n + 1, 0);
  for (int c = 1; c <= s.n; ++c)
    s.cp[c] = s.cp[c - 1] + height[c - 1];
  s.a.resize(s.cp[s.n]);
  s.dense.assign(s.n + 1, std::vector<double>(s.n + 1, 0.0));
  std::uniform_real_distribution<double> value(-1.0, 1.0);
  std::vector<double> row_sum(s.n + 1, 0.0);
  for (int c = 1; c <= s.n; ++c) {
    for (int r = Top(s.cp, c); r < c; ++r) {
      const double v = value(random);
      s.dense[r][c] = s.dense[c][r] = v;
      row_sum[r] += std::abs(v);
      row_sum[c] += std::abs(v);
    }
  }
  for (int c = 1; c <= s.n; ++c) {
    s.dense[c][c] = 1.0 + row_sum[c] + std::abs(value(random));
    for (int r = Top(s.cp, c); r <= c; ++r)
      s.a[Position(s.cp, r, c)] = s.dense[r][c];
  }
  return s;
}

// Dense A = L D L^T, written out plainly: L unit lower, returned with D on its diagonal.
std::vector<std::vector<double>> Dense_LDLT(std::vector<std::vector<double>> m, int n) {
  for (int j = 1; j <= n; ++j) {
    for (int k = 1; k < j; ++k)
      m[j][j] -= m[j][k] * m[j][k] * m[k][k];
    for (int i = j + 1; i <= n; ++i) {
      for (int k = 1; k < j; ++k)
        m[i][j] -= m[i][k] * m[j][k] * m[k][k];
      m[i][j] /= m[j][j];
    }
  }
  return m;
}

// The column reduction in its plainest form, position by position, one sum at a time.
void Literal_Factorise(Table<double>& a, int n, const std::vector<std::int32_t>& cp) {
  for (int j = 1; j <= n; ++j) {
    const int p0 = cp[j - 1], p1 = cp[j], h = p1 - p0, first = j - h + 2;
    for (int i = first; i <= j - 1; ++i) {
      const int m = std::min(cp[i] - cp[i - 1] - 1, i - first + 1);
      const int p = p0 + (i - first + 2);
      for (int k = 1; k <= m; ++k)
        a[p] -= a[p - k] * a[cp[i] - k];
    }
    for (int p = p0 + 1; p <= p1 - 1; ++p) {
      const int row = j - p1 + p;
      const double e = a[p];
      a[p] = e / a[cp[row]];
      a[p1] -= e * a[p];
    }
  }
}

std::vector<Solver_Kernel> Kernels() {
  std::vector<Solver_Kernel> k{Solver_Kernel::Portable};
  if (Solver_Kernel_Available(Solver_Kernel::Avx2)) k.push_back(Solver_Kernel::Avx2);
  return k;
}

// Column heights of the shapes that matter: full, banded, random (columns of height 1 and 2
// among long ones, which break the four-row blocks), and a staircase like a mesh profile.
std::vector<std::vector<int>> Profiles(std::mt19937_64& random) {
  std::vector<std::vector<int>> all;
  for (int n : {1, 2, 3, 7, 40, 131, 300}) {
    std::vector<int> full(n), band(n), any(n), stairs(n);
    for (int c = 1; c <= n; ++c) {
      full[c - 1] = c;
      band[c - 1] = std::min(c, 37);
      any[c - 1] = std::uniform_int_distribution<int>(1, c)(random);
      stairs[c - 1] = std::min(c, 20 + (c * 7) % 23);
    }
    all.insert(all.end(), {full, band, any, stairs});
  }
  return all;
}

double Relative_Difference(double x, double y) {
  return std::abs(x - y) / std::max(1.0, std::abs(y));
}

TEST(Factorise_Profile, FactorsAreThoseOfADenseLdltAndFillStaysInTheProfile) {
  std::mt19937_64 random(20240611);
  for (const auto& heights : Profiles(random)) {
    const Profile_System s = Random_System(heights, random);
    const auto ldlt = Dense_LDLT(s.dense, s.n);
    for (Solver_Kernel kernel : Kernels()) {
      Table<double> a = s.a;
      std::vector<std::int32_t> cp = s.cp;
      bool ok = false;
      std::string message;
      Factorise_Profile(a, s.n, cp, ok, message, {}, kernel);
      ASSERT_TRUE(ok);
      double worst = 0;
      for (int c = 1; c <= s.n; ++c) {
        for (int r = 1; r < Top(cp, c); ++r)
          EXPECT_NEAR(ldlt[c][r], 0.0, 1e-13) << r << "," << c;
        for (int r = Top(cp, c); r < c; ++r)
          worst = std::max(worst, Relative_Difference(a[Position(cp, r, c)], ldlt[c][r]));
        worst = std::max(worst, Relative_Difference(a[cp[c]], ldlt[c][c]));
      }
      EXPECT_LT(worst, 1e-12) << "n = " << s.n;
    }
  }
}

TEST(Factorise_Profile, FastKernelsAgreeWithTheLiteralColumnReductionToRounding) {
  std::mt19937_64 random(7);
  for (const auto& heights : Profiles(random)) {
    const Profile_System s = Random_System(heights, random);
    Table<double> literal = s.a;
    Literal_Factorise(literal, s.n, s.cp);
    for (Solver_Kernel kernel : Kernels()) {
      Table<double> a = s.a;
      std::vector<std::int32_t> cp = s.cp;
      bool ok = false;
      std::string message;
      Factorise_Profile(a, s.n, cp, ok, message, {}, kernel);
      ASSERT_TRUE(ok);
      for (int p = 1; p <= a.count(); ++p)
        ASSERT_LT(Relative_Difference(a[p], literal[p]), 1e-13) << p;
    }
  }
}

TEST(Solve_Profile, SolvesManyRightHandSidesOnOneFactorisation) {
  std::mt19937_64 random(99);
  std::uniform_real_distribution<double> value(-5.0, 5.0);
  for (const auto& heights : Profiles(random)) {
    const Profile_System s = Random_System(heights, random);
    for (Solver_Kernel kernel : Kernels()) {
      Table<double> a = s.a;
      std::vector<std::int32_t> cp = s.cp;
      bool ok = false;
      std::string message;
      Factorise_Profile(a, s.n, cp, ok, message, {}, kernel);
      for (int pass = 0; pass < 3; ++pass) {
        std::vector<double> x(s.n + 1);
        for (double& v : x)
          v = value(random);
        Table<double> b;
        b.resize(s.n);
        for (int r = 1; r <= s.n; ++r) {
          for (int c = 1; c <= s.n; ++c)
            b[r] += s.dense[r][c] * x[c];
        }
        Solve_Profile(a, b, s.n, cp, kernel);
        for (int r = 1; r <= s.n; ++r)
          ASSERT_NEAR(b[r], x[r], 1e-11) << "n = " << s.n << " row " << r;
      }
    }
  }
}

TEST(Factorise_Profile, SmallSystemsWorkedByHand) {
  for (Solver_Kernel kernel : Kernels()) {
    bool ok = false;
    std::string message;
    // 1 x 1: nothing to reduce; the solution is a division.
    Table<double> one{4.0}, b1{6.0};
    std::vector<std::int32_t> cp1{0, 1};
    Factorise_Profile(one, 1, cp1, ok, message, {}, kernel);
    EXPECT_TRUE(ok);
    EXPECT_EQ(one[1], 4.0);
    Solve_Profile(one, b1, 1, cp1, kernel);
    EXPECT_EQ(b1[1], 1.5);
    // [4 2; 2 5]: a column of height 2 has no inner product but is divided: U12 = 0.5, D2 = 4.
    Table<double> two{4.0, 2.0, 5.0}, b2{8.0, 9.0};
    std::vector<std::int32_t> cp2{0, 1, 3};
    Factorise_Profile(two, 2, cp2, ok, message, {}, kernel);
    EXPECT_TRUE(ok);
    EXPECT_EQ(two[2], 0.5);
    EXPECT_EQ(two[3], 4.0);
    Solve_Profile(two, b2, 2, cp2, kernel);
    EXPECT_DOUBLE_EQ(b2[1], 1.375);
    EXPECT_DOUBLE_EQ(b2[2], 1.25);
    // [1 2; 2 1] is indefinite: the negative pivot -3 passes and the solution is still right.
    Table<double> indefinite{1.0, 2.0, 1.0}, b3{3.0, 3.0};
    Factorise_Profile(indefinite, 2, cp2, ok, message, {}, kernel);
    EXPECT_TRUE(ok);
    EXPECT_EQ(indefinite[3], -3.0);
    Solve_Profile(indefinite, b3, 2, cp2, kernel);
    EXPECT_DOUBLE_EQ(b3[1], 1.0);
    EXPECT_DOUBLE_EQ(b3[2], 1.0);
  }
}

TEST(Factorise_Profile, OnlyAnExactlyZeroPivotThatIsUsedStopsIt) {
  for (Solver_Kernel kernel : Kernels()) {
    // [1 1 0; 1 1+t 1; 0 1 1] in a profile with column 3 reaching row 2: D2 = t.
    std::vector<std::int32_t> cp{0, 1, 3, 5};
    for (double t : {0.0, std::ldexp(1.0, -40)}) {
      Table<double> a{1.0, 1.0, 1.0 + t, 1.0, 1.0};
      bool ok = true;
      std::string message;
      int pumps = 0;
      Factorise_Profile(
          a, 3, cp, ok, message, [&] { ++pumps; }, kernel);
      if (t == 0.0) {
        EXPECT_FALSE(ok);
        EXPECT_EQ(message, "Error division by zero in solver");
        EXPECT_EQ(pumps, 3);  // it stops in the third column
      } else {
        EXPECT_TRUE(ok);  // a tiny pivot passes without a word
        EXPECT_EQ(a[3], t);
        EXPECT_DOUBLE_EQ(a[5], 1.0 - 1.0 / t);
      }
    }
    // Full 4 x 4 with D2 = 0: column 3 needs it (columns 3 and 4 are reduced as a pair by the
    // vector kernel; the stop still comes in column 3).
    Table<double> full{1.0, 1.0, 1.0, 0.5, 0.25, 3.0, 0.5, 0.5, 0.5, 4.0};
    std::vector<std::int32_t> cp4{0, 1, 3, 6, 10};
    bool stopped = true;
    std::string text;
    int pumps = 0;
    Factorise_Profile(
        full, 4, cp4, stopped, text, [&] { ++pumps; }, kernel);
    EXPECT_FALSE(stopped);
    EXPECT_EQ(text, Zero_Pivot_Message);
    EXPECT_EQ(pumps, 3);
    // A zero pivot that no later column needs is not seen: [1 1; 1 1] factorises to D2 = 0.
    Table<double> singular{1.0, 1.0, 1.0};
    std::vector<std::int32_t> cp2{0, 1, 3};
    bool ok = false;
    std::string message;
    Factorise_Profile(singular, 2, cp2, ok, message, {}, kernel);
    EXPECT_TRUE(ok);
    EXPECT_EQ(singular[3], 0.0);
  }
}

// ---- Node numbering ------------------------------------------------------------------------------

Project Mesh(int nodes, const std::vector<std::array<int, 4>>& elements) {
  Project p;
  p.Mesh_Node.resize(nodes);
  for (const auto& corners : elements) {
    Mesh_Element e;
    for (int c = 1; c <= 4; ++c)
      e.Corner[c] = static_cast<std::int16_t>(corners[c - 1]);
    p.Mesh_Element.add(e);
  }
  return p;
}

void Expect_Numbering(const Project& p, const std::vector<int>& equation, const std::vector<int>& cp,
                      int max_height) {
  Node_Numbering numbering;
  int pumps = 0;
  Set_Node_Numbering(p, numbering, [&] { ++pumps; });
  EXPECT_EQ(pumps, p.Mesh_Node.count());
  EXPECT_EQ(std::vector<int>(numbering.Node_Equation.begin(), numbering.Node_Equation.end()), equation);
  EXPECT_EQ(std::vector<int>(numbering.Column_Pointer.begin(), numbering.Column_Pointer.end()), cp);
  EXPECT_EQ(numbering.Profile_Size, cp.back());
  EXPECT_EQ(numbering.Max_Column_Height, max_height);
}

// The expected numbers below are worked by hand: neighbour lists in element and corner order,
// sorted by degree with a selection sort, numbered breadth first from node 1, reversed.
TEST(Set_Node_Numbering, SmallMeshesWorkedByHand) {
  // 2 x 1 elements:  4 5 6 / 1 2 3.
  Expect_Numbering(Mesh(6, {{1, 2, 5, 4}, {2, 3, 6, 5}}), {6, 3, 2, 5, 4, 1}, {0, 1, 3, 6, 10, 13, 17}, 4);
  // 2 x 2 elements:  7 8 9 / 4 5 6 / 1 2 3.
  Expect_Numbering(Mesh(9, {{1, 2, 5, 4}, {2, 3, 6, 5}, {4, 5, 8, 7}, {5, 6, 9, 8}}),
                   {9, 8, 5, 7, 6, 4, 3, 2, 1}, {0, 1, 3, 5, 9, 11, 17, 23, 28, 32}, 6);
}

TEST(Set_Node_Numbering, EqualDegreesFollowTheSelectionSortNotAStableOne) {
  // 2 x 2 elements, node 1 in the middle of the bottom side:  7 8 9 / 4 5 6 / 2 1 3. Node 1's list
  // [5 4 2 6 3] (degrees 8 5 3 5 3) sorts to [2 3 6 4 5]: the swaps put 6 before 4, where a stable
  // sort would keep 4 first.
  Expect_Numbering(Mesh(9, {{5, 4, 2, 1}, {6, 5, 1, 3}, {4, 5, 8, 7}, {5, 6, 9, 8}}),
                   {9, 8, 7, 5, 4, 6, 1, 2, 3}, {0, 1, 3, 5, 9, 14, 19, 23, 28, 34}, 6);
}

TEST(Set_Node_Numbering, ADisconnectedMeshIsNumberedBlockByBlock) {
  // Two separate elements and a node of none: the profile has three blocks.
  Expect_Numbering(Mesh(9, {{1, 2, 3, 4}, {5, 6, 7, 8}}), {9, 8, 7, 6, 5, 4, 3, 2, 1},
                   {0, 1, 2, 4, 7, 11, 12, 14, 17, 21}, 4);
}

TEST(Set_Node_Numbering, AGridProfileHoldsEveryCouplingAndBeatsRowByRowNumbering) {
  const int nx = 13, ny = 9, row = nx + 1, nodes = row * (ny + 1);
  std::vector<std::array<int, 4>> elements;
  for (int iy = 0; iy < ny; ++iy) {
    for (int ix = 0; ix < nx; ++ix) {
      const int n = iy * row + ix + 1;
      elements.push_back({n, n + 1, n + row + 1, n + row});
    }
  }
  const Project p = Mesh(nodes, elements);
  Node_Numbering numbering;
  Set_Node_Numbering(p, numbering);
  std::vector<int> seen(nodes + 1, 0), lowest(nodes + 1);
  for (int v = 1; v <= nodes; ++v)
    ++seen[numbering.Node_Equation[v]];
  EXPECT_EQ(std::count(seen.begin() + 1, seen.end(), 1), nodes);
  // The top of each column is its lowest coupled equation: every coupling inside, no slack above.
  for (int c = 1; c <= nodes; ++c)
    lowest[c] = c;
  for (const auto& e : elements) {
    for (int u : e) {
      for (int v : e) {
        const int cu = numbering.Node_Equation[u], cv = numbering.Node_Equation[v];
        lowest[std::max(cu, cv)] = std::min(lowest[std::max(cu, cv)], std::min(cu, cv));
      }
    }
  }
  for (int c = 1; c <= nodes; ++c)
    EXPECT_EQ(Top(numbering.Column_Pointer, c), lowest[c]) << c;
  // Row by row, node (ix, iy) reaches back to (ix-1, iy-1): heights nx+3, nx+2 at the left edge,
  // 2 along the first row and 1 for node 1.
  const int row_by_row = 1 + 2 * nx + ny * (nx + 2) + ny * nx * (nx + 3);
  EXPECT_LT(numbering.Profile_Size, row_by_row);
}

}  // namespace
}  // namespace pvx
