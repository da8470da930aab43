// The joint laws at one point, driven through histories of opening and slip and checked against
// values worked by hand.
#include "analysis/mechanics/interface_law.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>

namespace pvx {
namespace {

// Joint data from index `first` on.
Material Joint(int type, int first, std::initializer_list<double> values) {
  Material m;
  m.Is_Interface = true;
  m.Interface_Type = static_cast<std::int16_t>(type);
  for (const double v : values)
    m.Interface_Data[static_cast<std::size_t>(first++)] = v;
  return m;
}
// Type A: ft 2 MPa, s1 at 0.25 ft, w1 0.05, w2 0.3 mm, friction 30 degrees, slip limit 1 mm,
// stiffnesses 100 and 50 N/mm3: e0 = 0.02, e1 = 0.07, e2 = 0.32 mm, s1 = 0.5 MPa.
Material Type_A(double max_slip = 1) {
  return Joint(1, 1, {2, 0.25, 0.05, 0.3, 30, max_slip, 100, 50});
}
// Type C with the same curve as a table of 3 points: (0.02, 2), then 0.05 and 0.3 mm further, (0.5, 0).
const Material Type_C = Joint(3, 31, {30, 1, 100, 50, 0, 0, 0, 0, 0, 3, 0.02, 2, 0.05, 0.5, 0.3, 0});
const Material Type_B = Joint(2, 21, {100, 50, 0.6});

struct Step {
  double u_n, u_s;
  double sigma, k_normal, tau, slip;
};

void Follow(const Material& m, std::initializer_list<Step> history) {
  Interface_Point p;
  int k = 0;
  for (const Step& s : history) {
    SCOPED_TRACE(testing::Message() << "step " << ++k << ": opening " << s.u_n << ", slip " << s.u_s);
    Interface_Point_Update(m, s.u_n, s.u_s, p);
    EXPECT_NEAR(p.Sigma, s.sigma, 1e-9);
    if (s.k_normal >= 0) {
      EXPECT_NEAR(p.K_Normal, s.k_normal, 1e-6);
    }
    EXPECT_NEAR(p.Tau, s.tau, 1e-4);
    EXPECT_NEAR(p.Slip, s.slip, 1e-5);
    Interface_End_Of_Step(p);
  }
}

TEST(Interface_Law, TensionOpensAlongTheSofteningCurveAndUnloadsOnTheSecant) {
  // Elastic up to e0; at 0.045 on the first branch, 2 - 1.5 x 0.5 = 1.25 (secant 1.25 / 0.045);
  // back to 0.02 on that secant; 0.2 on the second branch, 0.5 x 0.12 / 0.25 = 0.24; nothing
  // beyond 0.32; closed at exactly 1e-5 mm; compression on the normal stiffness.
  const double secant = 1.25 / 0.045;
  for (const Material& m : {Type_A(), Type_C}) {
    SCOPED_TRACE(m.Interface_Type == 1 ? "bilinear" : "table");
    Follow(m, {{0.01, 0, 1.0, 100, 0, 0},
               {0.045, 0, 1.25, secant, 0, 0},
               {0.02, 0, 0.02 * secant, secant, 0, 0},
               {0.2, 0, 0.24, 1.2, 0, 0},
               {0.4, 0, 0, 0, 0, 0},
               {1e-5, 0, 1e-3, 100, 0, 0},
               {-0.01, 0, -1.0, 100, 0, 0}});
  }
  // Without a slip limit there is no tensile strength. Type B carries no tension at all, and open
  // its slip starts from where it stands (0.003): closed again at 1e-5 mm and slip 0 it holds at
  // most 0.6 x 1e-3 MPa, so it slides back to 0.0006 / 50 short of 0.
  Follow(Type_A(0), {{0.01, 0, 0, 0, 0, 0}});
  Follow(Type_B, {{0.01, 0.003, 0, 0, 0, 0.003}, {1e-5, 0, 1e-3, 100, -0.0006, 0.0006 / 50}});
  Follow(Type_B, {{2e-5, 0, 0, -1, 0, 0}});  // just past contact: open
}

TEST(Interface_Law, ShearOfAClosedJointFollowsCohesionAndFriction) {
  // Pressed by 1 MPa. Type A: the friction factor (1 + sin 30) / (2 cos 30) = 0.86603; at a slip
  // of 0.01 the strength is 2 x 0.99 and the limit 1.98 x 0.86603 + tan 30 = 2.2920, above 0.5;
  // at 0.1 it is 1.8 x 0.86603 + 0.57735 = 2.1362 against 5, so the joint slides with a plastic
  // slip of 0.1 - 2.1362 / 50; back at 0.08 it unloads from there. Type B: Coulomb, 0.6 x 1.
  const double limit = 1.8 * 0.866025 + 0.577350, plastic = 0.1 - limit / 50;
  EXPECT_NEAR(Interface_Friction_Factor(Type_A()), 0.866025, 1e-5);
  Follow(Type_A(),
         {{-0.01, 0.01, -1, 100, 0.5, 0},
          {-0.01, 0.1, -1, 100, limit, plastic},
          {-0.01, 0.08, -1, 100, (0.08 - plastic) * 50, plastic},
          {-0.01, -0.2, -1, 100, -(0.8 * 2 * 0.866025 + 0.577350), -0.2 + (1.6 * 0.866025 + 0.577350) / 50}});
  Follow(Type_B, {{-0.01, 0.005, -1, 100, 0.25, 0}, {-0.01, 0.02, -1, 100, 0.6, 0.02 - 0.6 / 50}});

  // A slip of half the limit halves the strength and its softening: ft' = 1, e0 = 0.01, e1 = 0.06,
  // s1' = 0.25. Pressed, the joint slides at 0.86603 + 0.57735; then opened to 0.045 it holds
  // 1 - 0.75 x 0.035 / 0.05 = 0.475, and shear up to 0.475 (0.86603 - 0.57735).
  const double slid = 0.5 - (0.866025 + 0.577350) / 50, open_limit = 0.475 * (0.866025 - 0.577350);
  Follow(Type_A(), {{-0.01, 0.5, -1, 100, 0.866025 + 0.577350, slid},
                    {0.045, 0.5, 0.475, 0.475 / 0.045, open_limit, 0.5 - open_limit / 50}});
}

}  // namespace
}  // namespace pvx
