// Supports, loads and the control of the iteration, through the run as the program makes it.
#include <algorithm>
#include <numbers>

#include "analysis/mechanics/supports_loads.h"
#include "mechanics_fixture.h"
#include "support/temp_dir.h"

namespace pvx {
namespace {

class Recorder : public Analysis_Host {
 public:
  std::vector<int> asked;  // the count at each question
  int yes = 0;             // questions answered with yes before a no
  std::vector<std::string> messages;
  void Show_Message(const std::string& text, Message_Kind) override { messages.push_back(text); }
  bool Ask_More_Iterations(int iterations, int&, double[3]) override {
    asked.push_back(iterations);
    return static_cast<int>(asked.size()) <= yes;
  }
};

// A block of 2 x 2 elements of 1000 mm, 500 mm thick, of density 2400, standing on two side
// supports along its bottom (downwards) and held at its first node in x; 0.2 MPa presses on its top
// at -60 degrees and 5 kN acts at 30 degrees inside element 1. One step of an hour.
Project Block(float dead_weight_at) {
  Project p = test::Grid(2, 2, 2000, 2000, test::Elastic(30000, 0.25, 0, 2400), 500);
  for (Mesh_Element& e : p.Mesh_Element)
    e.Dead_Weight_At = dead_weight_at;
  for (int i = 0; i < 2; ++i) {
    Support& s = test::Hold(p, test::Node_Of(2, i, 0), -90);
    s.Node_B = static_cast<std::int16_t>(test::Node_Of(2, i + 1, 0));
    s.Segment_Length = 1000;
    s.Effective_Thickness = 500;
    test::Line_Load(p, test::Node_Of(2, i, 2), test::Node_Of(2, i + 1, 2), 0.2, -60, 500);
  }
  test::Hold(p, 1, 0);
  Load point;
  point.Element = 1;
  point.Local_X = 0.3;
  point.Local_Y = 0.6;
  point.Is_Level = False_Flag;
  point.Value = 5000;
  point.Angle = 30;
  p.Point_Load.add(point);
  p.Computation_Time = 1;
  p.Period.clear();
  p.Period.add(Period{0, 1, 1, 1});
  return p;
}

// The reactions (kN, along each support's direction) balance the loads and the dead weight,
// 2400 x 9.81e-9 N/mm3 x 2e9 mm3 = 47088 N from the dead weight time on (reached: 5e-11 of the
// top load); the storage carries them.
TEST(Mechanical_Supports, ReactionsBalanceLoadsAndDeadWeight) {
  for (const float dead_weight_at : {0.0f, 1001.0f}) {
    SCOPED_TRACE(dead_weight_at);
    test::Temp_Dir dir;
    Project p = Block(dead_weight_at);
    Run_State run;
    run.Mechanical_Included = true;
    Recorder host;
    std::string message;
    ASSERT_EQ(Run_Analysis(p, run, host, dir.path().string(), message), Run_Outcome::Completed) << message;
    const double c60 = 0.5, s60 = std::sqrt(3.0) / 2, top = 0.2 * 2000 * 500;
    const double weight = dead_weight_at == 0 ? 47088 : 0;
    double fx = top * c60 + 5000 * s60, fy = -top * s60 + 5000 * 0.5 - weight;
    const double directions[3][2] = {{0, -1}, {0, -1}, {1, 0}};
    for (int i = 1; i <= 3; ++i) {
      fx += 1000 * run.Mechanics.Supports[i].Reaction * directions[i - 1][0];
      fy += 1000 * run.Mechanics.Supports[i].Reaction * directions[i - 1][1];
    }
    EXPECT_NEAR(fx, 0, 1e-9 * top);
    EXPECT_NEAR(fy, 0, 1e-9 * top);
    // The stored step carries them into the extremes of the run.
    EXPECT_EQ(run.Index.Extremes[21].PeriodMin,
              std::min({run.Mechanics.Supports[1].Reaction, run.Mechanics.Supports[2].Reaction,
                        run.Mechanics.Supports[3].Reaction, 0.0}));
  }
}

// The resultant of a line load on the right side of a block 2000 mm high and 500 mm thick, the side
// taken from its foot up. Water to 3 m presses to the left of the side, into the block, with
// 0.00981 N/mm2 per m x 500 mm x 1000 mm x (2.5 + 1.5 m) = 19620 N; to 1.5 m only the lower segment
// is wet: 4905 N; to 1 m the lower one with 0.5 m at its middle, 2452.5 N, and the dry upper one
// does not pull. A load function of 3 times a factor of 0.1 MPa gives 300 kN along its angle;
// 0.2 MPa at -90 degrees from the side's direction (up) gives 200 kN along x.
TEST(Mechanical_Loads, ResultantOfEachKindOfLineLoad) {
  struct Case {
    const char* name;
    double level;
    bool function, global;
    double angle, fx, fy;
  };
  const double c30 = std::sqrt(3.0) / 2;
  for (const Case& c : {Case{"water to 3 m", 3, false, true, 0, -19620, 0},
                        Case{"water to 1.5 m", 1.5, false, true, 0, -4905, 0},
                        Case{"water to 1 m", 1, false, true, 0, -2452.5, 0},
                        Case{"function", 0, true, true, 30, 3e5 * c30, 3e5 * 0.5},
                        Case{"angle from the side", 0, false, false, -90, 2e5, 0}}) {
    SCOPED_TRACE(c.name);
    Project p = test::Grid(2, 2, 2000, 2000, test::Elastic(30000, 0.25), 500);
    Function three = Default_Function(Function_Family::Load);
    Set_Function_Form(three, Function_Form::Constant);
    three.Constant_Value = 3;
    const int function = p.Load_Functions.add(three);
    for (int j = 0; j < 2; ++j) {
      Load& l = test::Line_Load(p, test::Node_Of(2, 2, j), test::Node_Of(2, 2, j + 1), 0.2, c.angle, 500);
      l.Is_Level = As_Flag(c.level > 0);
      l.Level = c.level;
      l.Is_Function = As_Flag(c.function);
      l.Load_Function = static_cast<std::int16_t>(function);
      l.Factor = c.function ? 0.1 : 1;
      l.Is_Global = As_Flag(c.global);
    }
    test::Mechanical_Run r(p);
    Set_External_Loads(p, r.run, 0.5);
    double fx = 0, fy = 0;
    for (int n = 1; n <= p.Mesh_Node.count(); ++n) {
      fx += r.run.Mechanics.External[Place(r.run.Mechanics, 2 * n - 1)];
      fy += r.run.Mechanics.External[Place(r.run.Mechanics, 2 * n)];
    }
    EXPECT_NEAR(fx, c.fx, 1e-9 * 3e5);
    EXPECT_NEAR(fy, c.fy, 1e-9 * 3e5);
  }
}

// A bar of 1000 mm held at x = 0 and pulled to 0.3 mm at x = 1000 by a prescribed displacement (its
// direction points back, at 180 degrees, and the displacement counts against it): Sxx = E 0.3 / 1000
// = 9 MPa, short by what the penalty of 1000 times the diagonal gives way (reached: 1.1e-4 below).
TEST(Mechanical_Supports, PrescribedDisplacementReachesETimesStrain) {
  Project p = test::Grid(4, 1, 1000, 100, test::Elastic(30000, 0.25), 10);
  test::Hold(p, 1, -90);
  for (int j = 0; j <= 1; ++j) {
    test::Hold(p, test::Node_Of(1, 0, j), 0);
    test::Prescribe(p, test::Hold(p, test::Node_Of(1, 4, j), 180), 0.3);
  }
  test::Mechanical_Run r(p);
  ASSERT_EQ(r.Step(p), Mechanical_Step::Converged) << r.message;
  for (int e = 1; e <= 4; ++e) {
    EXPECT_LT(r.S(e, 1, 0) / 9, 1);
    EXPECT_GT(r.S(e, 1, 0) / 9, 1 - 1e-3);
  }
  EXPECT_NEAR(r.run.Mechanics.Supports[3].Displacement, 0.3, 1e-3 * 0.3);
}

// An iteration that cannot converge (the limits are negative) asks at the limit of 5 iterations;
// a yes counts on from 3, so it asks again after two more, and a no stops the run. Held at two
// nodes of one side instead, the element can turn about them: a mechanism, which the solver meets
// as a zero pivot before anything is asked.
TEST(Mechanical_Iteration, AsksAtTheLimitAndStopsWhenRefusedOrMeetsAMechanism) {
  for (const bool mechanism : {false, true}) {
    SCOPED_TRACE(mechanism ? "mechanism" : "held at the bottom");
    Project p = test::Grid(1, 1, 100, 100, test::Elastic(30000, 0.25), 10);
    test::Hold(p, 1, 0);
    test::Hold(p, 1, -90);
    test::Hold(p, mechanism ? 2 : 3, -90);
    Recorder host;
    host.yes = 1;
    test::Mechanical_Run r(p, &host);
    r.run.Mechanical_Iteration_Limit = 5;
    for (double& limit : r.run.Mechanical_Limits)
      limit = -1;
    if (mechanism) {
      EXPECT_EQ(r.Step(p, 10), Mechanical_Step::Singular);
      EXPECT_EQ(r.message, Zero_Pivot_Message);
      EXPECT_TRUE(host.asked.empty());
      continue;
    }
    EXPECT_EQ(r.Step(p, 10), Mechanical_Step::Refused);
    EXPECT_EQ(host.asked, (std::vector<int>{5, 5}));
    EXPECT_EQ(r.run.Mechanics.Iterations, 4 + 2);
    EXPECT_TRUE(r.run.Stop_Computations);
  }
}

// A material of E = 0.001 MPa under 1 kN moves by kilometres: the run stops with its message.
TEST(Mechanical_Iteration, DisplacementLimitStopsTheRun) {
  test::Temp_Dir dir;
  Project p = test::Grid(2, 1, 1000, 100, test::Elastic(0.001, 0.25), 10);
  test::Hold_Column(p, 1, 0, {0, -90});
  test::Line_Load(p, test::Node_Of(1, 2, 0), test::Node_Of(1, 2, 1), 1, 0, 10);
  Run_State run;
  run.Mechanical_Included = true;
  Recorder host;
  std::string message;
  EXPECT_EQ(Run_Analysis(p, run, host, dir.path().string(), message), Run_Outcome::Failed);
  EXPECT_EQ(message, Displacement_Limit_Message);
  EXPECT_EQ(Storage_Count(run.Index), 1);  // the initial state
}

// A point support that no element holds (placed outside the mesh, or a hair beyond its outline) is
// named; when no support holds the model at all, the run is told that it is free.
TEST(Mechanical_Supports, ThoseInNoElementAreNamedAndAFreeModelIsTold) {
  for (const bool held : {true, false}) {
    SCOPED_TRACE(held ? "held" : "free");
    test::Temp_Dir dir;
    Project p = test::Grid(2, 1, 1000, 100, test::Elastic(30000, 0.25), 10);
    if (held) test::Hold_Column(p, 1, 0, {0, -90});
    for (const double x : {1000 + 1e-9, 5000.0}) {
      Support lost;
      lost.X = x;
      lost.Y = 0;
      p.Mesh_Support.add(lost);
    }
    p.Computation_Time = 1;
    p.Period.clear();
    p.Period.add(Period{0, 1, 1, 1});
    Run_State run;
    run.Mechanical_Included = true;
    Recorder host;
    std::string message;
    Run_Analysis(p, run, host, dir.path().string(), message);
    const int first = held ? 5 : 1;
    const std::string lost =
        "2 support(s) lie in no element and take no part in the mechanical analysis (support " +
        std::to_string(first) + " first, at x = 1000, y = 0 mm)";
    auto told = [&](const std::string& start) {
      return std::count_if(host.messages.begin(), host.messages.end(),
                           [&](const std::string& m) { return m.rfind(start, 0) == 0; });
    };
    EXPECT_EQ(told(lost), 1);
    EXPECT_EQ(told("No support holds the model"), held ? 0 : 1);
  }
}

}  // namespace
}  // namespace pvx
