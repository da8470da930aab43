// Opening the mesh panel: the initial mesh when there is none, the mesh of a file as it stands, and
// the integrated state of a file's mesh worked out again, so that a mesh with pipe holes is not cut.
#include "mesh/mesh_panel.h"

#include <gtest/gtest.h>

#include <tuple>

#include "mesh/pipe_holes.h"
#include "mesh_fixtures.h"

namespace pvx {
namespace {

TEST(Open_Mesh_Session, AFilesMeshIsShownAsItStandsAndWithoutOneTheHistoryWaits) {
  Project p = test::Square(300);
  Mesh_Session s;
  std::string message;
  ASSERT_TRUE(Open_Mesh_Session(p, s, message)) << message;
  EXPECT_EQ(p.Mesh_Element.count(), 1);
  EXPECT_NE(p.Mesh_Valid, 0);
  ASSERT_EQ(test::Cut(p, s, 1, 1, 3), "");       // three upright strips
  ASSERT_EQ(test::Cut(p, s, 2, 2, 2), "");       // across them: 6 elements
  ASSERT_TRUE(History_Backward(p, s, message));  // position 1 of 2: 3 elements
  Project back = test::Through_File(p);
  back.Split_Position = 7;  // beyond the history: held at its end
  Mesh_Session fresh;
  ASSERT_TRUE(Open_Mesh_Session(back, fresh, message)) << message;
  EXPECT_EQ(back.Split_Position, 2);
  EXPECT_EQ(back.Mesh_Element.count(), 3);  // not replayed: the stored mesh is the one shown
  EXPECT_FALSE(fresh.Circuits_Integrated);
  // The index was rebuilt for this mesh: cutting the right side of the middle strip into 4 runs
  // across all three, 3 x 4 elements on a grid of 4 x 5 nodes.
  ASSERT_EQ(test::Cut(back, fresh, 2, 2, 4), "");
  EXPECT_EQ(back.Mesh_Element.count(), 12);
  EXPECT_EQ(back.Mesh_Node.count(), 20);
  test::Expect_Sound(back);

  // The mesh dropped, as a file without one has it, with the history kept: the initial mesh at
  // position 0, from where the history can go forward.
  back.Mesh_Element.clear();
  back.Mesh_Node.clear();
  ASSERT_TRUE(Open_Mesh_Session(back, fresh, message)) << message;
  EXPECT_EQ(std::tuple(back.Mesh_Element.count(), back.Split_Position), std::tuple(1, 0));
  EXPECT_TRUE(Set_Toolbar(back, fresh).Forward);
}

TEST(Open_Mesh_Session, AnIntegratedMeshIsRecognisedAfterTheFileAndRefusesCuts) {
  // A 200 x 200 square with one pipe of 20 mm at its centre, where four elements meet.
  Project p = test::Square(200);
  test::Add_Circuit(p, {Add_Node(p, 100, 100)}, 20);
  Mesh_Session s = test::Meshed(p);
  std::string message;
  ASSERT_EQ(test::Cut(p, s, 1, 1, 2), "");
  ASSERT_EQ(test::Cut(p, s, 1, 2, 2), "");
  EXPECT_FALSE(Mesh_Is_Integrated(p));
  ASSERT_TRUE(Integrate_Circuits(p, s, message)) << message;

  Project back = test::Through_File(p);
  EXPECT_TRUE(Mesh_Is_Integrated(back));
  Mesh_Session fresh;
  ASSERT_TRUE(Open_Mesh_Session(back, fresh, message));
  EXPECT_TRUE(fresh.Circuits_Integrated);
  EXPECT_EQ(test::Cut(back, fresh, 1, 1, 2), Circuits_Integrated_Message);
  // One step back leaves the integrated state.
  ASSERT_TRUE(History_Backward(back, fresh, message));
  EXPECT_FALSE(fresh.Circuits_Integrated || Mesh_Is_Integrated(back));

  // A mesh that is neither the replay nor its holes is not integrated; the closure tolerance is
  // the margin of the same mesh.
  Project moved = p, within = p;
  moved.Mesh_Node[moved.Mesh_Node.count()].X += 0.5;  // a wall node out of place
  within.Mesh_Node[1].Y += 0.0005;
  EXPECT_FALSE(Mesh_Is_Integrated(moved));
  EXPECT_FALSE(Same_Mesh(p, moved));
  EXPECT_TRUE(Same_Mesh(p, within));
}

}  // namespace
}  // namespace pvx
