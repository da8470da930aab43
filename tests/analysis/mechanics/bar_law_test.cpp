// The steel and bond laws of a bar at one point, driven through a history without a mesh, against
// hand-worked values.
#include <gtest/gtest.h>

#include <cmath>
#include <span>

#include "analysis/mechanics/bar_law.h"

namespace pvx {
namespace {

// A row reaches its point fresh ('f'), at the next step ('s': the previous one rolled) or in
// another iteration of the same step ('i': nothing rolled). Strain and plastic part are in `unit`.
struct Row {
  char go;
  double strain, stress, tangent, plastic;
};

template <class State, class Law>
void Drive(std::span<const Row> rows, Law law, double State::*plastic, double unit) {
  State s;
  for (const Row& r : rows) {
    if (r.go == 'f') s = State{};
    if (r.go == 's') Roll_Bar_State(s);
    law(r.strain * unit, s);
    EXPECT_TRUE(std::abs(s.Stress - r.stress) < 1e-9 && std::abs(s.Tangent - r.tangent) < 1e-9 &&
                std::abs(s.*plastic / unit - r.plastic) < 1e-9)
        << r.strain << ": " << s.Stress << " " << s.Tangent << " " << s.*plastic / unit;
  }
}

// Bilinear steel, strains in 1/1000: E0 = 400 / 0.002 = 200000, then 40 MPa over 40 (H = 1000) to
// 440. At 12: 400 + 10 H = 410, permanent 12 - 410 / E0 = 9.95. Unloading and compressing within 2
// of it is elastic; reloading to 20 rejoins the curve (418, permanent 20 - 2.09); 50 is past the
// end (440, tangent 1). In compression the same with signs turned; reversed by 3 the point hardens
// on from 9.95: 400 + 10.95 H = 410.95, permanent moved by 2.05475. A table of one point or none
// has no modulus: no stress, tangent 1.
TEST(BarLaw, SteelYieldsUnloadsWithE0AndHardensBothWays) {
  Material m;
  m.Steel_Strain_A = {0, 2, 42}, m.Steel_Stress_A = {0, 400, 440};
  const auto law = [&](double e, Bar_Steel_State& s) { Bar_Steel_Stress(m, e, s); };
  const Row rows[] = {
      {'f', 1, 200, 2e5, 0},        {'s', 12, 410, 1e3, 9.95},    {'s', 10.95, 200, 2e5, 9.95},
      {'s', 8.45, -300, 2e5, 9.95}, {'s', 20, 418, 1e3, 17.91},   {'i', 10.95, 200, 2e5, 9.95},
      {'s', 50, 440, 1, 47.8},      {'f', -12, -410, 1e3, -9.95}, {'s', -6.95, 410.95, 1e3, -9.00475}};
  Drive(rows, law, &Bar_Steel_State::Plastic_Strain, 1e-3);
  const Row nothing[] = {{'f', 10, 0, 1, 0}};
  for (const Table<double>& one : {Table<double>{}, Table<double>{2}}) {
    m.Steel_Strain_A = one, m.Steel_Stress_A = one;
    Drive(nothing, law, &Bar_Steel_State::Plastic_Strain, 1e-3);
  }
}

// Bond curve k0 = 20 to 10 MPa at 0.5 mm, then slope 2 to 13 at 2 mm; unloading factor 0.5, K = 10.
// A fresh point follows the curve (0.25: 5, plastic 0.25 - 5 / K); at 1 mm 11, plastic -0.1; back
// to 0.5 and -0.5 along K; at -1.3 the line meets the curve again (K |x| = 12 > 11) at 1 + 0.1 mm:
// 11.2, plastic -1.3 + 1.12. Iterated to 3 mm from the start of that step instead: past the end,
// 13, plastic 3 - 1.3; then 0.5 back on K. At the last point the last segment's slope holds. A
// factor that is not positive unloads with k0 (plastic 1 - 11 / 20); a table of one point or none
// carries nothing.
TEST(BarLaw, BondFollowsTheCurveAndUnloadsWithTheFactor) {
  Material m;
  m.Steel_Strain_B = {0, 0.5, 2}, m.Steel_Stress_B = {0, 10, 13}, m.Steel_Const_2 = 0.5;
  const auto law = [&](double u, Bar_Bond_State& b) { Bar_Bond_Stress(m, u, b); };
  const Row rows[] = {{'f', 0, 0, 20, 0},      {'f', 0.25, 5, 20, -0.25}, {'s', 1, 11, 2, -0.1},
                      {'s', 0.5, 6, 10, -0.1}, {'s', -0.5, -4, 10, -0.1}, {'s', -1.3, -11.2, 2, -0.18},
                      {'i', 3, 13, 1, 1.7},    {'s', 2.2, 5, 10, 1.7},    {'f', 2, 13, 2, 0.7},
                      {'f', 2.5, 13, 1, 1.2}};
  Drive(rows, law, &Bar_Bond_State::Plastic_Slip, 1);
  m.Steel_Const_2 = 0;
  const Row k0_rows[] = {{'f', 1, 11, 2, 0.45}, {'s', 0.5, 1, 20, 0.45}};
  Drive(k0_rows, law, &Bar_Bond_State::Plastic_Slip, 1);
  const Row nothing[] = {{'f', 1, 0, 1, 0}};
  for (const Table<double>& one : {Table<double>{}, Table<double>{1}}) {
    m.Steel_Strain_B = one, m.Steel_Stress_B = one;
    Drive(nothing, law, &Bar_Bond_State::Plastic_Slip, 1);
  }
}

}  // namespace
}  // namespace pvx
