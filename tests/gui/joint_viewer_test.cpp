// The wall on its slab with its construction joint and bars, computed from the run window: the
// viewer charts the joint's stresses along the joint and the bars' stresses along the bars.
#include <gtest/gtest.h>

#include "form_fixture.h"

namespace pvx {
namespace {

TEST(frmRes, TheJointAndTheBarsOfTheWallOnItsSlabAreCharted) {
  test::Form_Fixture f;
  ASSERT_TRUE(f.Load_Example_Named("WALL-ON-SLAB.PVX") && f.Compute());
  // Four joint sides along the foot, five nodes doubled; four bars cut into 58 bar elements with 62
  // nodes of their own.
  EXPECT_EQ(std::tuple(f.project.Mesh_Interface.count(), f.project.Mesh_Rebar.count(),
                       f.project.Doubled_Node_Count),
            std::tuple(4, 58, 5 + 62));
  ASSERT_TRUE(f.Open_Viewer());
  frmRes& w = *f.form;
  struct Chart {
    int variable, drawn;
    const char* title;
    const char* shot;
  };
  for (const Chart& c : {Chart{30, 4, "Normal stresses in interfaces at ", "frmRes_joint"},
                         Chart{33, 58, "Shear stresses at rebars at ", nullptr},
                         Chart{32, 58, "Normal stresses in rebars at ", "frmRes_bars"}}) {
    SCOPED_TRACE(c.variable);
    ASSERT_TRUE(w.Show_Variable(c.variable));
    w.Pick_Time(16);                   // 48 hours, the formwork struck
    (void)w.Picture_Widget()->grab();  // the picture is drawn when it is painted
    EXPECT_EQ(w.Drawn().Elements_Drawn, c.drawn);
    EXPECT_EQ(w.Drawn().Title.rfind(c.title, 0), 0u) << w.Drawn().Title;
    EXPECT_LT(w.State().Buffers.CurrentMin, w.State().Buffers.CurrentMax);
    if (c.shot) test::Take_Screenshot(w, c.shot);
  }
}

}  // namespace
}  // namespace pvx
