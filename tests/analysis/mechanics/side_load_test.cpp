// A bar pulled by a load on its end side, the side named in either order: the project's line load
// and supports go through the transfer to the mesh, which takes the thickness from the element
// that has the side, and the bar carries the load over its section.
#include "app/prescribed_data.h"
#include "mechanics_fixture.h"

namespace pvx {
namespace {

TEST(Mechanical_Side_Load, ABarCarriesItsEndLoadWhicheverWayTheSideIsNamed) {
  // 1000 x 100 mm in 4 x 1 elements, 50 mm thick; 2.5 MPa on the end x = 1000 along +x.
  constexpr double value = 2.5, thickness = 50;
  for (const bool reversed : {false, true}) {
    SCOPED_TRACE(reversed ? "end side named downwards" : "end side named as the element runs");
    Project p = test::Grid(4, 1, 1000, 100, test::Elastic(30000, 0.2), thickness);
    Load pull;
    pull.Node_A = static_cast<std::int16_t>(Add_Node(p, 1000, reversed ? 100 : 0));
    pull.Node_B = static_cast<std::int16_t>(Add_Node(p, 1000, reversed ? 0 : 100));
    pull.Is_Level = False_Flag;
    pull.Value = value;
    pull.Angle = 0;
    p.Line_Load.add(pull);
    // Held in x along the other end and in y at its lower corner: free to contract across.
    Support end;
    end.Node_A = static_cast<std::int16_t>(Add_Node(p, 0, 0));
    end.Node_B = static_cast<std::int16_t>(Add_Node(p, 0, 100));
    end.Angle = 0;
    p.Line_Support.add(end);
    Support corner;
    corner.X = 0;
    corner.Y = 0;
    corner.Angle = -90;
    p.Point_Support.add(corner);
    bool ok = false;
    std::string message;
    Set_Prescribed_Data(p, ok, message);
    ASSERT_TRUE(ok) << message;

    test::Mechanical_Run r(p);
    ASSERT_EQ(r.Step(p), Mechanical_Step::Converged) << r.message;
    // F / A: the load of value x 100 x 50 N over the section of 100 x 50 mm2.
    for (int e = 1; e <= 4; ++e)
      for (int k = 1; k <= 4; ++k) {
        EXPECT_NEAR(r.S(e, k, 0), value, 1e-9);
        EXPECT_NEAR(r.S(e, k, 1), 0, 1e-9);
      }
    double reaction = 0;
    for (const Support_State& s : r.run.Mechanics.Supports)
      reaction += s.Reaction;
    EXPECT_NEAR(reaction, -value * 100 * thickness / 1000, 1e-9);  // kN, against the load
  }
}

}  // namespace
}  // namespace pvx
