// The equation solver: one direct LDL-transposed factorisation in place, of the column-reduction
// kind, for every symmetric linear system of the analysis (thermal, moisture, saturated flow and
// mechanical), and the node numbering that keeps the profile of the node-based systems small.
//
// Skyline (active column) storage
// -------------------------------
// A symmetric matrix of n equations is kept as its upper triangle, packed column by column, and of
// each column only the part from its first non-zero row down to the diagonal (its "height"):
//
//   Column_Pointer[0] = 0, Column_Pointer[1] = 1, and Column_Pointer[c] is the position of the
//   diagonal of column c in the packed matrix.
//   height(c) = Column_Pointer[c] - Column_Pointer[c-1] (the diagonal included).
//   Column c occupies the positions Column_Pointer[c-1]+1 .. Column_Pointer[c], top down, the
//   diagonal last; position p holds the row r = c - Column_Pointer[c] + p, so the top row of the
//   column is c - height(c) + 1.
//   The packed matrix is a table of Column_Pointer[n] doubles (positions numbered from 1).
//
// For example the 3 x 3 matrix
//     | a11 a12  .  |
//     |     a22 a23 |      Column_Pointer = {0, 1, 3, 5}
//     |         a33 |      matrix         = {a11, a12, a22, a23, a33}
//
// Column_Pointer is an array 0..n and is therefore a std::vector indexed from 0; the matrix and the
// right-hand side are numbered from 1 like every other table of the model. Everything in a column
// lies at consecutive addresses: this is what makes the inner products of the factorisation and of
// the forward reduction run at the speed of the memory.
//
// After the factorisation the diagonal holds D and the positions above it the multipliers of the
// unit upper factor U, with A = U^T D U. There is no scaling, pivoting or condition estimate.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "app/project.h"
#include "app/table.h"

namespace pvx {

// Lets the user interface handle pending events during long work (the stop button, repainting).
// May be empty.
using Event_Pump = std::function<void()>;

inline constexpr const char* Zero_Pivot_Message = "Error division by zero in solver";

// The numbering of the node-based problems (temperature and moisture share it).
struct Node_Numbering {
  Table<std::int32_t> Node_Equation;         // mesh node -> equation number, 1..node count
  std::vector<std::int32_t> Column_Pointer;  // 0..n, see above
  std::int32_t Profile_Size = 0;             // Column_Pointer[n]
  std::int32_t Max_Column_Height = 0;        // the largest height(c), for reporting
};

// Numbers the mesh nodes by reversed Cuthill-McKee from mesh node 1, neighbours taken by ascending
// degree, and derives the column pointers of the profile: two nodes are coupled when they are
// corners of a common element. A mesh that falls apart is numbered block by block (the next block
// starts at its lowest unnumbered node). The pump, when given, is called once per node while the
// neighbour lists are built.
void Set_Node_Numbering(const Project& project, Node_Numbering& numbering, const Event_Pump& pump = {});

// The arithmetic kernels. Portable runs anywhere; Avx2 (chosen at run time, on processors with
// AVX2 and FMA) evaluates the inner products with vector accumulators, four rows of a column and
// two neighbouring columns at a time, so its sums round differently, by a few units in the last
// place. Automatic takes the fastest one the processor runs; the others exist so that the tests
// and the benchmark can hold the kernels against each other.
enum class Solver_Kernel { Automatic, Portable, Avx2 };
bool Solver_Kernel_Available(Solver_Kernel kernel);

// Replaces the profile matrix of n equations by its factors D and U, column by column. The pump,
// when given, is called once per column, before the column is divided by the pivots above it. Sets
// column_pointer[0] to 0. A pivot that is exactly 0.0 when it is needed ends the factorisation with ok false
// and `message` = Zero_Pivot_Message, for the caller to show as a critical message; the matrix is then only
// partly factorised. Any other pivot, negative or tiny, passes.
void Factorise_Profile(Table<double>& matrix, int n, std::vector<std::int32_t>& column_pointer, bool& ok,
                       std::string& message, const Event_Pump& pump = {},
                       Solver_Kernel kernel = Solver_Kernel::Automatic);

// Replaces the right-hand side (1..n) by the solution of the factorised system: forward reduction,
// diagonal scaling, back-substitution. Any number of right-hand sides can be solved in turn on one
// factorisation.
void Solve_Profile(const Table<double>& factors, Table<double>& right_hand_side, int n,
                   const std::vector<std::int32_t>& column_pointer,
                   Solver_Kernel kernel = Solver_Kernel::Automatic);

// y = A x for the symmetric profile matrix A (not factorised), x and y numbered from 1.
void Multiply_Profile(const Table<double>& matrix, int n, const std::vector<std::int32_t>& column_pointer,
                      const Table<double>& x, Table<double>& y);

}  // namespace pvx
