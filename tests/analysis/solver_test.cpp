// The profile solver against dense products and small systems worked by hand, and the node
// numbering against numberings worked by hand.
#include "analysis/solver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <vector>

namespace pvx {
namespace {

std::vector<Solver_Kernel> Kernels() {
  std::vector<Solver_Kernel> k{Solver_Kernel::Portable};
  if (Solver_Kernel_Available(Solver_Kernel::Avx2)) k.push_back(Solver_Kernel::Avx2);
  return k;
}

TEST(Factorise_Profile, SolvesRandomProfilesOfEveryShapeForManyRightHandSides) {
  // Full, banded, random (columns of height 1 and 2 among long ones, which break the four-row
  // blocks of the vector kernel) and staircase profiles like those of a mesh. Each matrix is
  // symmetric and positive definite by a dominant diagonal; b = A x is formed densely.
  std::mt19937_64 random(20240611);
  std::uniform_real_distribution<double> value(-1.0, 1.0);
  for (int n : {1, 2, 3, 7, 40, 131, 300})
    for (int shape = 0; shape < 4; ++shape) {
      std::vector<int> height(n + 1);
      std::vector<std::int32_t> cp(n + 1, 0);
      for (int c = 1; c <= n; ++c) {
        const int heights[4] = {c, std::min(c, 37), std::uniform_int_distribution<int>(1, c)(random),
                                std::min(c, 20 + (c * 7) % 23)};
        height[c] = heights[shape];
        cp[c] = cp[c - 1] + height[c];
      }
      std::vector<std::vector<double>> A(n + 1, std::vector<double>(n + 1, 0.0));
      Table<double> packed;
      packed.resize(cp[n]);
      for (int c = 1; c <= n; ++c)
        for (int r = c - height[c] + 1; r < c; ++r) {
          A[r][c] = A[c][r] = value(random);
          A[r][r] += std::abs(A[r][c]);
          A[c][c] += std::abs(A[r][c]);
        }
      for (int c = 1; c <= n; ++c) {
        A[c][c] += 1 + std::abs(value(random));
        for (int r = c - height[c] + 1; r <= c; ++r)
          packed[cp[c] - c + r] = A[r][c];
      }
      for (Solver_Kernel kernel : Kernels()) {
        SCOPED_TRACE(testing::Message()
                     << "n = " << n << ", shape " << shape << ", kernel " << static_cast<int>(kernel));
        Table<double> a = packed;
        std::vector<std::int32_t> column_pointer = cp;
        bool ok = false;
        std::string message;
        Factorise_Profile(a, n, column_pointer, ok, message, {}, kernel);
        ASSERT_TRUE(ok);
        for (int pass = 0; pass < 2; ++pass) {
          Table<double> x, b, product;
          x.resize(n), b.resize(n), product.resize(n);
          for (double& v : x)
            v = 5 * value(random);
          for (int r = 1; r <= n; ++r)
            for (int c = 1; c <= n; ++c)
              b[r] += A[r][c] * x[c];
          // The product with the packed matrix, as the refinement of the moisture passes forms it.
          Multiply_Profile(packed, n, cp, x, product);
          for (int r = 1; r <= n; ++r)
            ASSERT_NEAR(product[r], b[r], 1e-12) << "row " << r;
          Solve_Profile(a, b, n, column_pointer, kernel);
          for (int r = 1; r <= n; ++r)
            ASSERT_NEAR(b[r], x[r], 1e-11) << "row " << r;
        }
      }
    }
}

TEST(Factorise_Profile, SmallSystemsAndPivotsWorkedByHand) {
  // Only a pivot that is exactly 0.0 when a later column needs it stops the factorisation; the
  // pump is called once per column up to there.
  const double t = std::ldexp(1.0, -40);
  struct Case {
    const char* name;
    Table<double> a;
    std::vector<std::int32_t> cp;
    bool ok;
    int pumps;
    double last;  // the last pivot
  };
  const Case cases[] = {
      {"1 x 1", {4.0}, {0, 1}, true, 1, 4},
      // A column of height 2 has no inner product but is divided: U12 = 0.5, D2 = 5 - 2 x 0.5 = 4.
      {"[4 2; 2 5]", {4.0, 2.0, 5.0}, {0, 1, 3}, true, 2, 4},
      {"[1 2; 2 1], indefinite: the pivot -3 passes", {1.0, 2.0, 1.0}, {0, 1, 3}, true, 2, -3},
      {"[1 1; 1 1]: a zero pivot no later column needs", {1.0, 1.0, 1.0}, {0, 1, 3}, true, 2, 0},
      // [1 1 0; 1 1+t 1; 0 1 1], column 3 reaching row 2: D2 = t, D3 = 1 - 1/t.
      {"D2 = 0, needed by column 3", {1.0, 1.0, 1.0, 1.0, 1.0}, {0, 1, 3, 5}, false, 3, 1},
      {"D2 = 2^-40 passes", {1.0, 1.0, 1.0 + t, 1.0, 1.0}, {0, 1, 3, 5}, true, 3, 1 - 1 / t},
      // D2 = 0 again: the vector kernel reduces columns 3 and 4 as a pair, and still stops in 3.
      {"full 4 x 4", {1.0, 1.0, 1.0, 0.5, 0.25, 3.0, 0.5, 0.5, 0.5, 4.0}, {0, 1, 3, 6, 10}, false, 3, 4},
  };
  for (Solver_Kernel kernel : Kernels())
    for (const Case& c : cases) {
      SCOPED_TRACE(c.name);
      Table<double> a = c.a;
      std::vector<std::int32_t> cp = c.cp;
      const int n = static_cast<int>(cp.size()) - 1;
      bool ok = !c.ok;
      std::string message;
      int pumps = 0;
      Factorise_Profile(
          a, n, cp, ok, message, [&] { ++pumps; }, kernel);
      EXPECT_EQ(ok, c.ok);
      EXPECT_EQ(message, c.ok ? "" : Zero_Pivot_Message);
      EXPECT_EQ(pumps, c.pumps);
      if (c.ok) {
        EXPECT_DOUBLE_EQ(a[cp[n]], c.last);
      }
    }
}

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

TEST(Set_Node_Numbering, SmallMeshesWorkedByHand) {
  // Neighbour lists in element and corner order, sorted by degree with a selection sort,
  // numbered breadth first from node 1, reversed; a column reaches up to its lowest coupled
  // equation.
  struct Case {
    const char* name;
    Project mesh;
    std::vector<int> equation, cp;
    int max_height;
  };
  const Case cases[] = {
      Case("2 x 2 elements: 7 8 9 / 4 5 6 / 1 2 3",
           Mesh(9, {{1, 2, 5, 4}, {2, 3, 6, 5}, {4, 5, 8, 7}, {5, 6, 9, 8}}), {9, 8, 5, 7, 6, 4, 3, 2, 1},
           {0, 1, 3, 5, 9, 11, 17, 23, 28, 32}, 6),
      // Node 1's list [5 4 2 6 3] (degrees 8 5 3 5 3) sorts to [2 3 6 4 5]: the swaps put 6
      // before 4, where a stable sort would keep 4 first.
      Case("7 8 9 / 4 5 6 / 2 1 3: equal degrees follow the selection sort",
           Mesh(9, {{5, 4, 2, 1}, {6, 5, 1, 3}, {4, 5, 8, 7}, {5, 6, 9, 8}}), {9, 8, 7, 5, 4, 6, 1, 2, 3},
           {0, 1, 3, 5, 9, 14, 19, 23, 28, 34}, 6),
      Case("two separate elements and a node of none: three blocks", Mesh(9, {{1, 2, 3, 4}, {5, 6, 7, 8}}),
           {9, 8, 7, 6, 5, 4, 3, 2, 1}, {0, 1, 2, 4, 7, 11, 12, 14, 17, 21}, 4),
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Node_Numbering numbering;
    int pumps = 0;
    Set_Node_Numbering(c.mesh, numbering, [&] { ++pumps; });
    EXPECT_EQ(pumps, c.mesh.Mesh_Node.count());
    EXPECT_EQ(std::vector<int>(numbering.Node_Equation.begin(), numbering.Node_Equation.end()), c.equation);
    EXPECT_EQ(std::vector<int>(numbering.Column_Pointer.begin(), numbering.Column_Pointer.end()), c.cp);
    EXPECT_EQ(numbering.Profile_Size, c.cp.back());
    EXPECT_EQ(numbering.Max_Column_Height, c.max_height);
  }
}

}  // namespace
}  // namespace pvx
