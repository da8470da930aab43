// Reinforcement bars in the mesh: how they are cut, a bar that follows the concrete, the pull-out
// of a bar against the shear-lag solution, and a free bar between two supports.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "analysis/mechanics/bar_element.h"
#include "analysis/mechanics/interface_element.h"
#include "mechanics_fixture.h"

namespace pvx {
namespace {

// Steel of E0 = 200000 MPa, linear up to 10 per mille (2000 MPa); a bond linear at k MPa/mm up to
// 10 mm; a dowel stiffness of 1000 N/mm3; thermal dilatancy alpha.
Material Steel(double k = 20, double alpha = 0) {
  Material m;
  m.Name = "steel";
  m.Is_Reinforcement = true;
  m.Steel_Strain_A = {0, 10}, m.Steel_Stress_A = {0, 2000};
  m.Steel_Strain_B = {0, 10}, m.Steel_Stress_B = {0, 10 * k};
  m.Steel_Const_1 = 1000;
  m.Steel_Const_2 = 1;
  m.Steel_Dilatation = test::Constant_Property(alpha);
  return m;
}

Rebar& Add_Bar(Project& p, double x1, double y1, double x2, double y2, double diameter = 16) {
  if (!p.Material.valid(2)) p.Material.add(Steel());
  Rebar r;
  r.Material = p.Material[2].Name;
  r.Diameter = diameter;
  r.X1 = x1, r.Y1 = y1, r.X2 = x2, r.Y2 = y2;
  r.From = 0, r.Until = 1000;
  p.Rebar.add(r);
  return p.Rebar.last();
}

// A support that no node or element takes: it goes to the bar end within the mouse radius.
Support& Hold_Bar_End(Project& p, double x, double y, double angle) {
  Support s;
  s.X = x, s.Y = y;
  s.Angle = angle;
  p.Mesh_Support.add(s);
  return p.Mesh_Support.last();
}

// The tangent times u against the force given back, to 1e-9 of the largest force.
template <int N>
void Expect_Linear(const double (&K)[N][N], const double* u, const double (&F)[N], const char* what) {
  double largest = 0;
  for (const double f : F)
    largest = std::max(largest, std::fabs(f));
  ASSERT_GT(largest, 1.0) << what;
  for (int i = 0; i < N; ++i) {
    double Ku = 0;
    for (int j = 0; j < N; ++j)
      Ku += K[i][j] * u[j];
    EXPECT_NEAR(Ku, F[i], 1e-9 * largest) << what << " row " << i;
  }
}

// In the elastic range of their laws a bonded bar element and a joint element are linear: the
// tangent times any small displacement is the force they give back. Bar: 16 mm, 120 mm at 30
// degrees, host weights of two inner points, transverse switch 0.5. Joint: type A, 800 mm at -20
// degrees, end weights 1.5e5 and 2.5e5 mm2, displacements of 1e-4 mm (below its 0.01 mm of opening).
TEST(Bar_Element, TangentTimesDisplacementIsTheForceInTheElasticRange) {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> small(-1e-4, 1e-4);
  double u[12];
  for (double& v : u)
    v = small(random);
  const Material steel = Steel(20, 1e-5);
  Bar_Element b;
  b.Material = 1, b.Host = 1;
  b.Diameter = 16, b.Transverse = 0.5, b.Length = 120;
  b.Cos = std::cos(0.5235987756), b.Sin = std::sin(0.5235987756);
  b.Area = 0.785398163 * 256, b.Perimeter = 3.141592654 * 16;
  b.Dowel_Stiffness = steel.Steel_Const_1;
  for (int i = 0; i < 4; ++i)
    b.N[0][i] = 0.4 - 0.1 * i, b.N[1][i] = 0.1 + 0.1 * i;
  Set_Bar_Matrices(b);
  Bar_Steel_Stress(steel, 0, b.Steel);
  for (Bar_End_State& end : b.End)
    Bar_Bond_Stress(steel, 0, end.Bond);
  double K[12][12], F[12];
  Bar_Stiffness(b, K);
  const double T[4] = {20, 20, 20, 20};
  Bar_Stresses(steel, b, u, T, T, F);
  Expect_Linear(K, u, F, "bar");

  Material joint;
  joint.Is_Interface = true;
  joint.Interface_Type = 1;
  const double a[8] = {1, 0.3, 0.02, 0.15, 35, 0.5, 100, 40};
  for (int i = 0; i < 8; ++i)
    joint.Interface_Data[static_cast<std::size_t>(i + 1)] = a[i];
  Interface_Element f;
  f.Length = 800, f.Cos = std::cos(-0.3490658504), f.Sin = std::sin(-0.3490658504);
  f.Weight[0] = 1.5e5, f.Weight[1] = 2.5e5;
  for (Interface_Point& point : f.Point)
    Interface_Point_Update(joint, 0, 0, point);
  double Kj[8][8], Fj[8];
  Interface_Stiffness(f, Kj);
  Interface_Stresses(joint, f, u, Fj);
  Expect_Linear(Kj, u, Fj, "joint");
}

// A 5 x 3 grid of 100 mm elements whose top row of nodes is shifted right by 30 mm, so that the
// elements of the top row are not rectangles. Each bar is cut at every side it crosses; the pieces
// run end to end, keep the bar's whole length, lie in their host (the mapped ends within 0.01 mm)
// and share the nodes where they meet.
TEST(Bar_Cutting, BarsCutAtTheMeshKeepTheirLengthAndLieInTheirHosts) {
  const struct {
    const char* what;
    double x1, y1, x2, y2;
    int pieces, free_pieces;
  } cases[] = {
      {"diagonal", 25, 40, 475, 260, 7, 0},
      {"ending on a side", 0, 50, 300, 50, 3, 0},
      {"ending just past a side", 0, 50, 300.03, 50, 3, 0},
      {"along a mesh line", 0, 100, 300, 100, 3, 0},
      {"partly outside", -200, 150, 150, 150, 3, 1},
      {"wholly outside", 700, 0, 900, 300, 1, 1},
      {"within one element", 110, 110, 160, 150, 1, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Project p = test::Grid(5, 3, 500, 300, test::Elastic(30000, 0.2));
    for (Mesh_Node& n : p.Mesh_Node)
      if (n.Y > 250) n.X += 30;
    Add_Bar(p, c.x1, c.y1, c.x2, c.y2);
    Table<Bar_Element> bars;
    int nodes = 0;
    std::string message;
    ASSERT_TRUE(Cut_Reinforcement(p, 100, bars, nodes, message));
    ASSERT_EQ(bars.count(), c.pieces);
    EXPECT_EQ(nodes, c.pieces + 1);
    double length = 0;
    int free = 0;
    for (int i = 1; i <= bars.count(); ++i) {
      const Bar_Element& b = bars[i];
      length += b.Length;
      EXPECT_GT(b.Length, Bar_Tolerance);
      EXPECT_TRUE(i == 1 || (b.Node[0] == bars[i - 1].Node[1] && std::fabs(b.X1 - bars[i - 1].X2) < 1e-9));
      free += !b.Bonded();
      for (int end = 0; end < 2 && b.Bonded(); ++end) {
        const Mesh_Element& host = p.Mesh_Element[b.Host];
        double x = 0, y = 0, weights = 0;  // the end mapped from its host's corners
        for (int k = 0; k < 4; ++k) {
          const double xi = k == 1 || k == 2 ? 1 : -1, eta = k >= 2 ? 1 : -1;
          const double n = (1 + xi * b.Xi[end]) * (1 + eta * b.Eta[end]) / 4;
          x += n * p.Mesh_Node[host.Corner[k + 1]].X, y += n * p.Mesh_Node[host.Corner[k + 1]].Y;
          weights += b.N[end][k];
        }
        EXPECT_NEAR(x, end == 0 ? b.X1 : b.X2, 0.01);
        EXPECT_NEAR(y, end == 0 ? b.Y1 : b.Y2, 0.01);
        EXPECT_NEAR(weights, 1, 1e-12);
      }
    }
    EXPECT_NEAR(length, std::hypot(c.x2 - c.x1, c.y2 - c.y1), 1e-9);
    EXPECT_EQ(free, c.free_pieces);
  }
}

// Two bars whose ends lie within 0.05 mm share that node; 0.06 mm apart they do not.
TEST(Bar_Cutting, BarsMeetingWithinTheToleranceShareANode) {
  for (const double gap : {0.04, 0.06}) {
    Project p = test::Grid(2, 1, 200, 100, test::Elastic(30000, 0.2));
    Add_Bar(p, 10, 50, 60, 50);
    Add_Bar(p, 60 + gap, 50 - gap, 150, 80);
    Table<Bar_Element> bars;
    int nodes = 0;
    std::string message;
    ASSERT_TRUE(Cut_Reinforcement(p, 1, bars, nodes, message));
    ASSERT_EQ(bars.count(), 3);
    EXPECT_EQ(bars[2].Node[0] == bars[1].Node[1], gap < Bar_Tolerance) << gap;
    EXPECT_EQ(nodes, gap < Bar_Tolerance ? 4 : 5);
  }
}

// 300 bars across a 100 x 100 grid make 30000 pieces, more than the 25000 the analysis holds: the
// mesh is refused with the message and the project keeps its former bar elements and counts.
TEST(Bar_Cutting, MoreBarElementsThanTheAnalysisHoldsAreRefused) {
  Project p = test::Grid(100, 100, 1000, 1000, test::Elastic(30000, 0.2));
  for (int i = 0; i < 300; ++i)
    Add_Bar(p, 0.5, 0.05 + i * 3.3, 999.5, 0.05 + i * 3.3);
  p.Mesh_Rebar.add(Rebar{});
  p.Doubled_Node_Count = 7;
  std::string message;
  EXPECT_FALSE(Set_Mechanical_Mesh(p, message));
  EXPECT_NE(message.find("more than 25000 bar elements"), std::string::npos) << message;
  EXPECT_EQ(std::tuple(p.Mesh_Rebar.count(), p.Doubled_Node_Count), std::tuple(1, 7));
  p.Rebar.resize(2);
  ASSERT_TRUE(Set_Mechanical_Mesh(p, message));
  EXPECT_EQ(std::tuple(p.Mesh_Rebar.count(), p.Doubled_Node_Count), std::tuple(200, 202));
}

// A run for steps of an hour with tight limits.
std::unique_ptr<test::Mechanical_Run> Tight_Run(const Project& p) {
  auto r = std::make_unique<test::Mechanical_Run>(p);
  r->run.Mechanical_Iteration_Limit = 1000;
  r->run.Mechanical_Limits[0] = r->run.Mechanical_Limits[1] = r->run.Mechanical_Limits[2] = 1e-12;
  return r;
}
std::unique_ptr<test::Mechanical_Run> Run_Step(const Project& p, double dT = 0) {
  auto r = Tight_Run(p);
  EXPECT_EQ(r->Step(p, dT), Mechanical_Step::Converged) << r->message;
  return r;
}

// A block of 4 x 2 elements (400 x 200 mm) stretched uniformly in three steps, to 5e-4, 5e-4 and
// 7.5e-4, with a bar through it at y = 70 whose ends, 10 mm beyond the faces, move with the same
// strain. A bar there from the start follows the concrete at E_s x strain (100, 100, 150 MPa); a
// bar placed after the first hour comes into play stress-free and takes only what follows (0, 0,
// 50 MPa). Neither slips beyond what the penalty supports leave (they reach their displacements to
// about 1e-4).
TEST(Bar_Mesh, ABarUnderUniformStrainCarriesEsTimesTheStrainFromWhenItIsPlaced) {
  struct Placing {
    double from;
    double stresses[3];
  };
  for (const Placing& placing : {Placing{0, {100, 100, 150}}, Placing{1, {0, 0, 50}}}) {
    SCOPED_TRACE(placing.from);
    Project p = test::Grid(4, 2, 400, 200, test::Elastic(30000, 0), 100);
    Add_Bar(p, -10, 70, 410, 70).From = placing.from;
    std::vector<std::pair<int, double>> moved;  // functions moved with the strain, by their x
    auto prescribed = [&](Support& s, double x) {
      test::Prescribe(p, s, 0);
      moved.emplace_back(s.Displacement_Function, x);
    };
    for (int j = 0; j <= 2; ++j) {
      test::Hold(p, test::Node_Of(2, 0, j), 0);
      prescribed(test::Hold(p, test::Node_Of(2, 4, j), 180), 400);
    }
    test::Hold(p, 1, 90);
    for (const double x : {-10, 410}) {
      prescribed(Hold_Bar_End(p, x, 70, 180), x);
      Hold_Bar_End(p, x, 70, 90);
    }
    const auto r = Tight_Run(p);
    ASSERT_EQ(r->run.Mechanics.Bars.count(), 6);
    const double strains[3] = {5e-4, 5e-4, 7.5e-4};
    for (int step = 0; step < 3; ++step) {
      SCOPED_TRACE(step + 1);
      for (const auto& [function, x] : moved)
        p.Displacement_Functions[function].Constant_Value = strains[step] * x;
      r->run.Mid_Step_Time = step + 0.5;
      Set_Free_Strains(p, r->run);
      ASSERT_EQ(Solve_Mechanical_Step(p, r->run, r->host, 1, step + 1, r->message),
                Mechanical_Step::Converged);
      for (const Bar_Element& b : r->run.Mechanics.Bars) {
        EXPECT_NEAR(b.Steel.Stress, placing.stresses[step], 0.1) << b.X1;
        for (const Bar_End_State& end : b.End)
          EXPECT_NEAR(end.Slip, 0, 1e-4) << b.X1;
      }
      Update_Mechanical_End_Of_Step(p, r->run);
    }
  }
}

// A bar with the concrete's dilatancy, heated with it by 20 degrees in a block free to expand,
// carries no stress; with none of its own and a stiff bond (2000 MPa/mm) it holds the block back:
// in the middle E_s alpha_c dT / (1 + n rho) = 40 / (1 + 6.67 x 0.01) = 37.5 MPa.
TEST(Bar_Mesh, ABarExpandsWithItsHostByItsOwnDilatancy) {
  for (const double alpha : {1e-5, 0.0}) {
    Project p = test::Grid(4, 2, 400, 200, test::Elastic(30000, 0, 1e-5), 100);
    p.Material.add(Steel(2000, alpha));
    Add_Bar(p, 20, 70, 380, 70);
    test::Hold(p, 1, 0);
    test::Hold(p, 1, 90);
    test::Hold(p, test::Node_Of(2, 4, 0), 90);
    const auto r = Run_Step(p, 20);
    double largest = 0;
    for (const Bar_Element& b : r->run.Mechanics.Bars)
      largest = std::max(largest, std::fabs(b.Steel.Stress));
    if (alpha > 0) {
      EXPECT_LT(largest, 1e-6);
    } else {
      EXPECT_NEAR(r->run.Mechanics.Bars[3].Steel.Stress, 37.5, 1.0);
    }
  }
}

// Pull-out: a 16 mm bar embedded over L = 500 mm in a block that does not deform (E = 1e9), bond
// k = 20 MPa/mm, pulled at a free end 20 mm outside. The shear-lag equation E A s'' = P k s with
// no force at the far end gives the slip s(x) = s0 cosh(w (L - x)) / cosh(w L), x from the loaded
// face, and the force N = E A w tanh(w L) s0, w = sqrt(P k / (E A)) = 0.005 / mm. The bond is
// lumped at the ends of each bar element, so the error is of second order in its length h: with
// h = 50 mm (w h = 0.25) the force is 0.76 % high and the slips within 0.11 % of s0; with 25 mm,
// 0.19 % and 0.028 %; with 12.5 mm, 0.048 % and 0.007 %.
TEST(Bar_Mesh, PullOutFollowsTheShearLagSolution) {
  struct Fineness {
    int elements;
    double force, slip;  // the largest errors allowed, relative to N and to s0
  };
  std::vector<double> force_errors;
  for (const Fineness f :
       {Fineness{10, 0.008, 0.0012}, Fineness{20, 0.002, 0.0003}, Fineness{40, 0.0005, 0.000075}}) {
    SCOPED_TRACE(f.elements);
    Project p = test::Grid(f.elements, 2, 500, 100, test::Elastic(1e9, 0), 200);
    Add_Bar(p, -20, 30, 500, 30);
    test::Hold_Column(p, 2, f.elements, {0, 90});
    test::Prescribe(p, Hold_Bar_End(p, -20, 30, 0), 0.2);  // moved to -0.2 mm
    Hold_Bar_End(p, -20, 30, 90);
    const auto r = Run_Step(p);
    const Mechanical_State& m = r->run.Mechanics;
    const Bar_Element& outside = m.Bars[1];
    ASSERT_FALSE(outside.Bonded());
    const double EA = 200000 * outside.Area, P = outside.Perimeter;
    const double w = std::sqrt(P * 20 / EA), L = 500;
    const double N = outside.Steel.Stress * outside.Area;
    const double s0 = -m.Bars[2].End[0].Slip;
    ASSERT_GT(s0, 0.15);
    const double force_error = N / (EA * w * std::tanh(w * L) * s0) - 1;
    EXPECT_GT(force_error, 0);
    EXPECT_LT(force_error, f.force);
    force_errors.push_back(force_error);
    double slip_error = 0;
    for (int i = 2; i <= m.Bars.count(); ++i)
      for (int end = 0; end < 2; ++end) {
        const double x = end == 0 ? m.Bars[i].X1 : m.Bars[i].X2;
        slip_error = std::max(
            slip_error, std::fabs(-m.Bars[i].End[end].Slip / s0 - std::cosh(w * (L - x)) / std::cosh(w * L)));
      }
    EXPECT_LT(slip_error, f.slip);
  }
  ASSERT_EQ(force_errors.size(), 3u);
  for (std::size_t i = 1; i < 3; ++i)
    EXPECT_NEAR(force_errors[i - 1] / force_errors[i], 4, 0.2) << i;
}

// A bar outside the mesh, 1000 mm long, held at one end and pulled by 0.5 mm at the other, is a
// truss: sigma = E (u2 - u1) / L with the displacements it reached, and its reaction is sigma A.
// It has two nodes and four unknowns of its own.
TEST(Bar_Mesh, AFreeBarBetweenTwoSupportsStretchesAsATruss) {
  Project p = test::Grid(1, 1, 100, 100, test::Elastic(30000, 0.2));
  test::Hold(p, 1, 0);
  test::Hold(p, 1, 90);
  test::Hold(p, 2, 90);
  Add_Bar(p, 200, 0, 1200, 0);
  Hold_Bar_End(p, 200, 0, 0);
  Hold_Bar_End(p, 200, 0, 90);
  test::Prescribe(p, Hold_Bar_End(p, 1200, 0, 180), 0.5);
  Hold_Bar_End(p, 1200, 0, 90);
  const auto r = Run_Step(p);
  const Mechanical_State& m = r->run.Mechanics;
  ASSERT_EQ(m.Bars.count(), 1);
  const Bar_Element& b = m.Bars[1];
  EXPECT_EQ(b.Dof_Count(), 4);
  EXPECT_EQ(m.Node_Equations, 2 * (4 + 2));
  const double u1 = m.Total[Place(m, b.Dof[1])], u2 = m.Total[Place(m, b.Dof[3])];
  EXPECT_NEAR(u2, 0.5, 1e-3);
  EXPECT_NEAR(b.Steel.Stress, 200000 * (u2 - u1) / 1000, 1e-9);
  EXPECT_NEAR(m.Supports[6].Reaction * 1000, -b.Steel.Stress * b.Area, 1e-6 * b.Steel.Stress * b.Area);
}

}  // namespace
}  // namespace pvx
