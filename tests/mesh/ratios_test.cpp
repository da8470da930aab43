// The seven grading options, the entries of the splitting window and picking a side.
#include <gtest/gtest.h>

#include "mesh/initial_mesh.h"
#include "mesh/pick.h"
#include "mesh/ratios.h"
#include "mesh_fixtures.h"

namespace pvx {
namespace {

std::vector<double> Ratios_Of(int option, int division, double a = 1.5) {
  Project p = test::Empty_Project();
  Splitting_Parameters s;
  s.RatioOption = option;
  s.Division = division;
  s.FactorA = a;
  Set_Ratios(p, s);
  return s.Ratios.data();
}

void Expect_Fractions(const std::vector<double>& got, std::initializer_list<double> want) {
  ASSERT_EQ(got.size(), want.size());
  std::size_t i = 0;
  for (const double w : want) {
    EXPECT_NEAR(got[i], w, 1e-15) << "fraction " << i + 1;
    ++i;
  }
}

TEST(SetRatios, CumulativeFractionsOfEachOption) {
  Expect_Fractions(Ratios_Of(Ratio_Equal, 4), {0.25, 0.5, 0.75, 1});
  // 1 : 2 : 4 : 8, total 15.
  Expect_Fractions(Ratios_Of(Ratio_Doubling, 4), {1.0 / 15, 3.0 / 15, 7.0 / 15, 1});
  // Mirrored doubling: 1 1; 1 2 1; 1 2 2 1; 1 2 4 2 1.
  Expect_Fractions(Ratios_Of(Ratio_Doubling_Mirror, 2), {0.5, 1});
  Expect_Fractions(Ratios_Of(Ratio_Doubling_Mirror, 3), {0.25, 0.75, 1});
  Expect_Fractions(Ratios_Of(Ratio_Doubling_Mirror, 4), {1.0 / 6, 0.5, 5.0 / 6, 1});
  Expect_Fractions(Ratios_Of(Ratio_Doubling_Mirror, 5), {0.1, 0.3, 0.7, 0.9, 1});
  // a, a2, a3 with a = 2: 2 4 8, total 14.
  Expect_Fractions(Ratios_Of(Ratio_Geometric, 3, 2), {2.0 / 14, 6.0 / 14, 1});
  // Factor 1 is the equal cut.
  Expect_Fractions(Ratios_Of(Ratio_Geometric, 5, 1), {0.2, 0.4, 0.6, 0.8, 1});
  // 1 3 9 3 1, total 17.
  Expect_Fractions(Ratios_Of(Ratio_Geometric_Mirror, 5, 3), {1.0 / 17, 4.0 / 17, 13.0 / 17, 16.0 / 17, 1});
}

TEST(SetRatios, UserWeightsIncludingZero) {
  Project p = test::Empty_Project();
  Splitting_Parameters s;
  s.RatioOption = Ratio_User;
  s.Division = 3;
  s.UserRatios = Table<double>{2, 0, 1};
  Set_Ratios(p, s);
  Expect_Fractions(s.Ratios.data(), {2.0 / 3, 2.0 / 3, 1});
  // Weights not typed yet are 1.
  s.Division = 5;
  Set_Ratios(p, s);
  Expect_Fractions(s.Ratios.data(), {0.4, 0.4, 0.6, 0.8, 1});
}

TEST(SetRatios, IntoTwoAtThePointer) {
  Project p = test::Square(300);
  Mesh_Session session;
  std::string message;
  ASSERT_TRUE(Make_Initial_Mesh(p, session, message));
  Splitting_Parameters s;
  s.RatioOption = Ratio_At_Pointer;
  s.Division = 6;
  s.PickedElement = 1;
  s.PickedSide = 2;  // (300,0) to (300,300)
  s.Pointer_X = 301;
  s.Pointer_Y = 120;
  Set_Ratios(p, s);
  EXPECT_EQ(s.Division, 2);
  Expect_Fractions(s.Ratios.data(), {0.4, 1});
  // Beyond the end of the side: an equal cut.
  s.Pointer_Y = 400;
  Set_Ratios(p, s);
  Expect_Fractions(s.Ratios.data(), {0.5, 1});
  s.Pointer_Y = 0;  // at the end itself
  Set_Ratios(p, s);
  Expect_Fractions(s.Ratios.data(), {0.5, 1});
}

TEST(SplittingEntries, DivisionFactorAndWeights) {
  Splitting_Parameters s;
  s.Division = 3;
  s.UserRatios = Table<double>{2, 3, 4};
  s.Ratios = Table<double>{0.1, 0.2, 1};
  std::string message;
  EXPECT_FALSE(Enter_Division("1", false, s, message));
  EXPECT_EQ(message, "Subdivision always > 1");
  EXPECT_EQ(s.Division, 3);
  EXPECT_TRUE(Enter_Division("5", false, s, message));
  EXPECT_EQ(s.Division, 5);
  EXPECT_EQ(s.UserRatios.data(), (std::vector<double>{2, 3, 4, 1, 1}));
  EXPECT_TRUE(Enter_Division("2", false, s, message));
  EXPECT_EQ(s.UserRatios.data(), (std::vector<double>{2, 3}));
  EXPECT_FALSE(Enter_Division("abc", false, s, message));
  EXPECT_EQ(s.Division, 2);

  EXPECT_FALSE(Enter_Factor_A("-0,5", true, s, message));
  EXPECT_EQ(message, "Factor a always > 0.");
  EXPECT_EQ(s.FactorA, 1.5);
  EXPECT_TRUE(Enter_Factor_A("0", false, s, message));  // zero passes, whatever the text says
  EXPECT_EQ(s.FactorA, 0);
  EXPECT_TRUE(Enter_Factor_A("1,25", true, s, message));
  EXPECT_EQ(s.FactorA, 1.25);

  EXPECT_FALSE(Enter_User_Ratio("-1", false, 2, s, message));
  EXPECT_EQ(message, "Factor always > 0.");
  EXPECT_EQ(s.UserRatios[2], 3);
  EXPECT_TRUE(Enter_User_Ratio("0", false, 2, s, message));
  EXPECT_EQ(s.UserRatios[2], 0);
}

TEST(SplittingLabels, Counts) {
  Project p = test::Square(10);
  Mesh_Session s;
  std::string message;
  ASSERT_TRUE(Make_Initial_Mesh(p, s, message));
  EXPECT_EQ(Generated_Nodes_Label(p), "Generated nodes    : 4");
  EXPECT_EQ(Generated_Elements_Label(p), "Generated elements : 1");
}

TEST(PickElementSide, WithinTheMouseRadiusAtTheDisplayScale) {
  // Two squares side by side: element 1 from x = 0 to 300, element 2 from 300 to 600.
  Project p = test::Square(300);
  test::Node(p, 600, 0);
  test::Node(p, 600, 300);
  test::Add_Macro(p, 2, 5, 6, 3);
  p.Mouse_Radius = 3;
  Mesh_Session s;
  std::string message;
  ASSERT_TRUE(Make_Initial_Mesh(p, s, message));
  int e = 0, side = 0;
  ASSERT_TRUE(Pick_Element_Side(p, 150, 2, 1.0, e, side));
  EXPECT_EQ(e, 1);
  EXPECT_EQ(side, 1);
  // 4 mm off at 1 pixel per mm is out of reach; at 0.5 pixel per mm it is 2 pixels.
  EXPECT_FALSE(Pick_Element_Side(p, 150, 4, 1.0, e, side));
  EXPECT_EQ(e, 0);
  ASSERT_TRUE(Pick_Element_Side(p, 150, 4, 0.5, e, side));
  EXPECT_EQ(side, 1);
  // On the shared side: the first element wins.
  ASSERT_TRUE(Pick_Element_Side(p, 300.5, 100, 1.0, e, side));
  EXPECT_EQ(e, 1);
  EXPECT_EQ(side, 2);
  // Beside a corner the along-distance must lie strictly inside: side 4 of element 1, not side 1.
  ASSERT_TRUE(Pick_Element_Side(p, -1, 0.5, 1.0, e, side));
  EXPECT_EQ(e, 1);
  EXPECT_EQ(side, 4);
  ASSERT_TRUE(Pick_Element_Side(p, 599, 150, 1.0, e, side));
  EXPECT_EQ(e, 2);
  EXPECT_EQ(side, 2);
}

}  // namespace
}  // namespace pvx
