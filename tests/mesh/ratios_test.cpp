// The grading options of a cut. The window's entries and messages, and picking the side to cut,
// are walked through by the panel's own tests.
#include "mesh/ratios.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "mesh_fixtures.h"

namespace pvx {
namespace {

TEST(Set_Ratios, CumulativeFractionsOfEachOption) {
  // Side 2 of the 300 mm square runs from (300, 0) to (300, 300); the pointer is beside it.
  // What the cut is, the option, the division, the factor a, the pointer's height, the fractions.
  const std::tuple<const char*, int, int, double, double, std::vector<double>> cases[] = {
      {"equal", Ratio_Equal, 4, 0, 0, {0.25, 0.5, 0.75, 1}},
      {"1 2 4 8", Ratio_Doubling, 4, 0, 0, {1.0 / 15, 3.0 / 15, 7.0 / 15, 1}},
      {"1 1", Ratio_Doubling_Mirror, 2, 0, 0, {0.5, 1}},
      {"1 2 1", Ratio_Doubling_Mirror, 3, 0, 0, {0.25, 0.75, 1}},
      {"1 2 2 1", Ratio_Doubling_Mirror, 4, 0, 0, {1.0 / 6, 0.5, 5.0 / 6, 1}},
      {"1 2 4 2 1", Ratio_Doubling_Mirror, 5, 0, 0, {0.1, 0.3, 0.7, 0.9, 1}},
      {"a a2 a3, a = 2", Ratio_Geometric, 3, 2, 0, {2.0 / 14, 6.0 / 14, 1}},
      {"a = 1 is the equal cut", Ratio_Geometric, 5, 1, 0, {0.2, 0.4, 0.6, 0.8, 1}},
      {"1 3 9 3 1", Ratio_Geometric_Mirror, 5, 3, 0, {1.0 / 17, 4.0 / 17, 13.0 / 17, 16.0 / 17, 1}},
      {"user 2 0 1", Ratio_User, 3, 0, 0, {2.0 / 3, 2.0 / 3, 1}},
      {"user 2 0 1, weights not typed yet are 1", Ratio_User, 5, 0, 0, {0.4, 0.4, 0.6, 0.8, 1}},
      {"at the pointer, 120 mm up", Ratio_At_Pointer, 6, 0, 120, {0.4, 1}},
      {"beyond the end of the side: equal", Ratio_At_Pointer, 6, 0, 400, {0.5, 1}},
      {"at the end itself: equal", Ratio_At_Pointer, 6, 0, 0, {0.5, 1}},
  };
  Project p = test::Square(300);
  test::Meshed(p);
  for (const auto& [name, option, division, a, pointer_y, fractions] : cases) {
    SCOPED_TRACE(name);
    Splitting_Parameters s;
    s.RatioOption = option;
    s.Division = division;
    s.FactorA = a;
    s.UserRatios = Table<double>{2, 0, 1};
    s.PickedElement = 1;
    s.PickedSide = 2;
    s.Pointer_X = 301;
    s.Pointer_Y = pointer_y;
    Set_Ratios(p, s);
    EXPECT_EQ(s.Division, static_cast<int>(fractions.size()));
    EXPECT_THAT(std::vector<double>(s.Ratios.begin(), s.Ratios.end()),
                testing::Pointwise(testing::DoubleNear(1e-15), fractions));
  }
}

}  // namespace
}  // namespace pvx
