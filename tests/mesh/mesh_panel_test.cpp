// Opening the mesh panel: the initial mesh when there is none, the mesh of a file as it stands, and
// the integrated state of a file's mesh worked out again, so that a mesh with pipe holes is not cut.
#include <gtest/gtest.h>

#include "app/project_file.h"
#include "mesh/mesh_panel.h"
#include "mesh/pipe_holes.h"
#include "mesh/split_history.h"
#include "mesh_fixtures.h"

namespace pvx {
namespace {

bool Cut(Project& p, Mesh_Session& s, int element, int side, int division) {
  s.Parameters.PickedElement = element;
  s.Parameters.PickedSide = side;
  s.Parameters.Division = division;
  s.Parameters.RatioOption = Ratio_Equal;
  std::string message;
  const bool ok = Split_Execution(p, s, message);
  EXPECT_TRUE(ok) << message;
  return ok;
}

// Through the project file, as the panel meets a mesh after a load.
Project Through_File(const Project& p) {
  Project back;
  std::string database;
  Read_Report report;
  EXPECT_TRUE(
      Parse_Project_Text(Write_Project_Text(p, Current_File_Version, "DB.txt"), back, database, report))
      << report.detail;
  return back;
}

// A 200 x 200 square with one pipe of 20 mm at its centre (design node 5).
Project Square_With_Pipe() {
  Project p = test::Square(200);
  test::Node(p, 100, 100);
  Circuit c = p.Circuit_Default;
  Resize_Pipes(c, 1);
  c.Pipe_Node[1] = 5;
  c.Diameter = 20;
  p.Circuit.add(c);
  return p;
}

TEST(MeshPanel, WithoutAMeshTheMacrosGiveTheInitialMeshAndTheHistoryWaits) {
  Project p = test::Square(300);
  Mesh_Session s;
  std::string message;
  ASSERT_TRUE(Open_Mesh_Session(p, s, message)) << message;
  EXPECT_EQ(p.Mesh_Element.count(), 1);
  EXPECT_EQ(p.Mesh_Node.count(), 4);
  EXPECT_NE(p.Mesh_Valid, 0);
  ASSERT_TRUE(Cut(p, s, 1, 1, 3));  // 3 strips: 3 elements, 8 nodes
  ASSERT_TRUE(Cut(p, s, 1, 2, 2));  // across the strips: 6 elements, 12 nodes
  ASSERT_EQ(p.Mesh_Element.count(), 6);

  // The mesh is dropped (as a file without one would have it) with the history kept.
  p.Mesh_Element.clear();
  p.Mesh_Node.clear();
  Mesh_Session fresh;
  ASSERT_TRUE(Open_Mesh_Session(p, fresh, message)) << message;
  EXPECT_EQ(p.Mesh_Element.count(), 1);
  EXPECT_EQ(p.Split_Position, 0);
  EXPECT_EQ(p.Split.count(), 2);
  EXPECT_TRUE(Set_Toolbar(p, fresh).Forward);
  ASSERT_TRUE(History_All(p, fresh, message)) << message;
  EXPECT_EQ(p.Mesh_Element.count(), 6);
  EXPECT_EQ(p.Mesh_Node.count(), 12);
}

TEST(MeshPanel, AFilesMeshIsShownAsItStandsAndCanBeCutFurther) {
  Project p = test::Square(300);
  Mesh_Session s;
  std::string message;
  ASSERT_TRUE(Open_Mesh_Session(p, s, message));
  ASSERT_TRUE(Cut(p, s, 1, 1, 3));
  ASSERT_TRUE(Cut(p, s, 2, 2, 2));
  ASSERT_TRUE(History_Backward(p, s, message));  // position 1 of 2, 3 elements
  Project back = Through_File(p);
  back.Split_Position = 7;  // beyond the history: held at its end

  Mesh_Session fresh;
  ASSERT_TRUE(Open_Mesh_Session(back, fresh, message)) << message;
  EXPECT_EQ(back.Split_Position, 2);
  EXPECT_EQ(back.Mesh_Element.count(), 3);  // not replayed: the stored mesh is the one shown
  EXPECT_FALSE(fresh.Circuits_Integrated);
  // The index was rebuilt for this mesh: the first cut made three upright strips; cutting the
  // right side of the middle one into 4 runs across all three, so 3 x 4 elements on a grid of
  // 4 x 5 nodes.
  ASSERT_TRUE(Cut(back, fresh, 2, 2, 4));
  EXPECT_EQ(back.Mesh_Element.count(), 12);
  EXPECT_EQ(back.Mesh_Node.count(), 8 + 4 * 3);
  EXPECT_EQ(back.Split.count(), 3);
  test::Expect_Sound(back);
}

TEST(MeshPanel, AnIntegratedMeshIsRecognisedAfterTheFileAndRefusesCuts) {
  Project p = Square_With_Pipe();
  Mesh_Session s;
  std::string message;
  ASSERT_TRUE(Open_Mesh_Session(p, s, message));
  ASSERT_TRUE(Cut(p, s, 1, 1, 2));
  ASSERT_TRUE(Cut(p, s, 1, 2, 2));  // four elements round (100, 100)
  ASSERT_EQ(p.Mesh_Element.count(), 4);
  EXPECT_FALSE(Mesh_Is_Integrated(p));
  ASSERT_TRUE(Integrate_Circuits(p, s, message)) << message;
  ASSERT_EQ(p.Mesh_Element.count(), 24);

  Project back = Through_File(p);
  EXPECT_TRUE(Mesh_Is_Integrated(back));
  Mesh_Session fresh;
  ASSERT_TRUE(Open_Mesh_Session(back, fresh, message));
  EXPECT_TRUE(fresh.Circuits_Integrated);
  EXPECT_FALSE(Set_Toolbar(back, fresh).Integrate_Visible);
  fresh.Parameters.PickedElement = 1;
  fresh.Parameters.PickedSide = 1;
  EXPECT_FALSE(Split_Execution(back, fresh, message));
  EXPECT_EQ(message, Circuits_Integrated_Message);
  EXPECT_EQ(back.Mesh_Element.count(), 24);

  // One step back leaves the integrated state: position 1, two elements, cuts allowed again.
  ASSERT_TRUE(History_Backward(back, fresh, message));
  EXPECT_FALSE(fresh.Circuits_Integrated);
  EXPECT_EQ(back.Mesh_Element.count(), 2);
  EXPECT_FALSE(Mesh_Is_Integrated(back));
}

TEST(MeshPanel, AMeshThatIsNeitherTheReplayNorItsHolesIsNotIntegrated) {
  Project p = Square_With_Pipe();
  Mesh_Session s;
  std::string message;
  ASSERT_TRUE(Open_Mesh_Session(p, s, message));
  ASSERT_TRUE(Cut(p, s, 1, 1, 2));
  ASSERT_TRUE(Cut(p, s, 1, 2, 2));
  ASSERT_TRUE(Integrate_Circuits(p, s, message));
  Project moved = p;
  moved.Mesh_Node[moved.Mesh_Node.count()].X += 0.5;  // a wall node out of place
  EXPECT_FALSE(Mesh_Is_Integrated(moved));
  EXPECT_TRUE(Same_Mesh(p, p));
  EXPECT_FALSE(Same_Mesh(p, moved));
  Project within = p;
  within.Mesh_Node[1].Y += 0.0005;  // inside the closure tolerance
  EXPECT_TRUE(Same_Mesh(p, within));
}

}  // namespace
}  // namespace pvx
