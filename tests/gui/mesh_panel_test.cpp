// The mesh panel driven as a user drives it: clicks on element sides at the pixels of model
// points, the history keys, the numbers typed into the splitting window, the cooling pipes made
// into holes, and the gate before computed results are lost. Counts and node positions are worked
// by hand from the geometry.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QRadioButton>
#include <QSpinBox>
#include <QTest>

#include <filesystem>

#include "app/project_load.h"
#include "app/shell_host_fake.h"
#include "draw/qt_surface.h"
#include "frm_gen_mesh.h"
#include "gui_context.h"
#include "screenshot.h"
#include "support/temp_dir.h"

namespace pvx {
namespace {

// One window with its own Project, shell and scripted host.
struct Panel {
  Project project;
  Shell shell;
  test::Memory_Store store;
  test::Scripted_Host host;
  Gui_Context context{project, shell, store, host};
  int changes = 0;
  std::unique_ptr<frmGenMesh> form;

  void Open() {
    shell.State = Work_State::Design;
    context.state_changed = [this] { ++changes; };
    form = std::make_unique<frmGenMesh>(context);
    form->resize(1100, 700);
    form->show();
    QApplication::processEvents();
    form->Form_Shown();
    QApplication::processEvents();
  }
  QPoint Pixel(double x, double y) const {
    const Picture_State& s = form->Picture();
    return {World_To_X(s, x), World_To_Y(s, y)};
  }
  void Click(double x, double y) {
    QTest::mouseClick(form->Picture_Widget(), Qt::LeftButton, {}, Pixel(x, y));
  }
  void Type(QLineEdit* box, const QString& text) {
    box->selectAll();
    QTest::keyClicks(box, text);
    QTest::keyClick(box, Qt::Key_Return);
  }
  // The pointer moved over the picture with no button down. Sent directly: on a real display a
  // test's pointer move goes through the window system and arrives later.
  void Move(double x, double y) {
    QWidget* picture = form->Picture_Widget();
    const QPointF local = Pixel(x, y);
    QMouseEvent move(QEvent::MouseMove, local, picture->mapToGlobal(local), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QApplication::sendEvent(picture, &move);
  }
  void Press(const char* key) { form->Tool(key)->trigger(); }
  int Elements() const { return project.Mesh_Element.count(); }
  int Nodes() const { return project.Mesh_Node.count(); }
};

// One macro from (0, 0) to (1000, 600) in a frame of 1200 x 800.
void One_Macro(Project& p) {
  New_Project(p);
  p.Grid_X_Min = -100;
  p.Grid_X_Max = 1100;
  p.Grid_Y_Min = -100;
  p.Grid_Y_Max = 700;
  Add_Node(p, 0, 0);
  Add_Node(p, 1000, 0);
  Add_Node(p, 1000, 600);
  Add_Node(p, 0, 600);
  Macro m;
  static_cast<Macro_Values&>(m) = p.Macro_Defaults;
  m.Material = "C30/37";
  m.Corner = {{1, 2, 3, 4}};
  p.Macro.add(m);
}

// The nodes numbered from `first` on, as (x, y) pairs sorted.
std::vector<std::pair<double, double>> Nodes_From(const Project& p, int first) {
  std::vector<std::pair<double, double>> v;
  for (int n = first; n <= p.Mesh_Node.count(); ++n)
    v.emplace_back(p.Mesh_Node[n].X, p.Mesh_Node[n].Y);
  std::sort(v.begin(), v.end());
  return v;
}

void Expect_Points(const std::vector<std::pair<double, double>>& got,
                   const std::vector<std::pair<double, double>>& want) {
  ASSERT_EQ(got.size(), want.size());
  for (std::size_t i = 0; i < got.size(); ++i) {
    EXPECT_NEAR(got[i].first, want[i].first, 1e-9) << i;
    EXPECT_NEAR(got[i].second, want[i].second, 1e-9) << i;
  }
}

TEST(MeshPanel, AClickCutsTheStripIntoEqualPartsAndTheHistoryStepsBackAndForth) {
  Panel w;
  One_Macro(w.project);
  w.Open();
  ASSERT_EQ(w.Elements(), 1);  // the initial mesh, made when the panel opened
  ASSERT_EQ(w.Nodes(), 4);
  EXPECT_GE(w.changes, 1);

  w.Type(w.form->Splitting_Window()->Division_Box(), "5");
  w.Click(300, 0);  // on the bottom side
  // Five strips of 200 mm: 5 elements, and the cut nodes at x = 200 .. 800 on both long sides.
  EXPECT_EQ(w.Elements(), 5);
  EXPECT_EQ(w.Nodes(), 12);
  Expect_Points(Nodes_From(w.project, 5),
                {{200, 0}, {200, 600}, {400, 0}, {400, 600}, {600, 0}, {600, 600}, {800, 0}, {800, 600}});
  EXPECT_EQ(w.form->Splitting_Window()->Elements_Label()->text(), "Generated elements : 5");
  EXPECT_EQ(w.form->Splitting_Window()->Nodes_Label()->text(), "Generated nodes    : 12");
  EXPECT_EQ(w.project.Split.count(), 1);
  EXPECT_NE(w.project.Mesh_Valid, 0);
  EXPECT_EQ(w.project.Project_Saved, 0);

  // "|1 : 2 : 4 :....| " into 3 on the left side, which runs from (0, 600) down to (0, 0): the
  // fractions are 1/7 and 3/7 from the top, and the strip crosses all five elements.
  w.form->Splitting_Window()->Option(Ratio_Doubling)->click();
  w.Type(w.form->Splitting_Window()->Division_Box(), "3");
  w.Click(0, 300);
  EXPECT_EQ(w.Elements(), 15);
  EXPECT_EQ(w.Nodes(), 24);
  for (const auto& [x, y] : Nodes_From(w.project, 13)) {
    EXPECT_TRUE(std::fabs(y - (600 - 600.0 / 7)) < 1e-9 || std::fabs(y - (600 - 1800.0 / 7)) < 1e-9) << y;
    EXPECT_NEAR(std::fmod(x, 200.0), 0, 1e-9);
  }
  EXPECT_TRUE(w.form->Tool("Backward")->isEnabled());
  EXPECT_FALSE(w.form->Tool("Forward")->isEnabled());
  EXPECT_TRUE(w.form->Tool("Reset")->isEnabled());
  EXPECT_FALSE(w.form->Tool("Integrate")->isVisible());  // no circuits

  w.Press("Backward");
  EXPECT_EQ(w.Elements(), 5);
  EXPECT_EQ(w.project.Split_Position, 1);
  EXPECT_TRUE(w.form->Tool("Forward")->isEnabled());
  w.Press("Backward");
  EXPECT_EQ(w.Elements(), 1);
  EXPECT_FALSE(w.form->Tool("Backward")->isEnabled());
  w.Press("Forward");
  EXPECT_EQ(w.Elements(), 5);
  w.Press("All");
  EXPECT_EQ(w.Elements(), 15);
  EXPECT_EQ(w.form->Splitting_Window()->Elements_Label()->text(), "Generated elements : 15");
  w.Press("Reset");
  EXPECT_EQ(w.Elements(), 1);
  EXPECT_EQ(w.project.Split.count(), 2);
  // A cut at position 0 drops both stored cuts.
  w.form->Splitting_Window()->Option(Ratio_Equal)->click();
  w.Click(1000, 300);  // the right side, into 3 equal parts
  EXPECT_EQ(w.Elements(), 3);
  EXPECT_EQ(w.project.Split.count(), 1);
  Expect_Points(Nodes_From(w.project, 5), {{0, 200}, {0, 400}, {1000, 200}, {1000, 400}});
  w.Press("Clean");
  EXPECT_EQ(w.project.Split.count(), 0);
  EXPECT_EQ(w.Elements(), 1);
  EXPECT_TRUE(w.host.messages.empty());
}

TEST(MeshPanel, TypedNumbersAreCheckedWithEitherDecimalSignAndARefusalKeepsTheOldValue) {
  Panel w;
  One_Macro(w.project);
  w.Open();
  frmelem& e = *w.form->Splitting_Window();
  const Splitting_Parameters& s = w.form->Session().Parameters;

  w.Type(e.Division_Box(), "1");
  ASSERT_EQ(w.host.messages.size(), 1u);
  EXPECT_EQ(w.host.messages.back(), "Subdivision always > 1");
  EXPECT_EQ(s.Division, 4);
  EXPECT_EQ(e.Division_Box()->text(), "4");
  w.Type(e.Division_Box(), "3");
  EXPECT_EQ(s.Division, 3);

  // The factor a is open only to the two geometric options, the weights only to "User defined".
  EXPECT_FALSE(e.Factor_Box()->isEnabled());
  EXPECT_FALSE(e.Weight_Box()->isEnabled());
  e.Option(Ratio_Geometric)->click();
  EXPECT_TRUE(e.Factor_Box()->isEnabled());
  EXPECT_FALSE(e.Weight_Box()->isEnabled());
  w.Type(e.Factor_Box(), "2,5");
  EXPECT_DOUBLE_EQ(s.FactorA, 2.5);
  w.Type(e.Factor_Box(), "-0.5");
  EXPECT_EQ(w.host.messages.back(), "Factor a always > 0.");
  EXPECT_DOUBLE_EQ(s.FactorA, 2.5);
  EXPECT_EQ(e.Factor_Box()->text(), "2.5");
  w.Type(e.Factor_Box(), "abc");
  EXPECT_EQ(w.host.messages.back(), "Fout gekonstateerd in opgegeven getal");
  EXPECT_DOUBLE_EQ(s.FactorA, 2.5);
  w.Type(e.Factor_Box(), "0");  // zero itself passes
  EXPECT_DOUBLE_EQ(s.FactorA, 0);
  const std::size_t messages = w.host.messages.size();

  e.Option(Ratio_User)->click();
  EXPECT_FALSE(e.Factor_Box()->isEnabled());
  EXPECT_TRUE(e.Weight_Box()->isEnabled());
  EXPECT_EQ(e.Weight_Position()->maximum(), 3);
  e.Weight_Position()->setValue(2);
  w.Type(e.Weight_Box(), "-1");
  EXPECT_EQ(w.host.messages.back(), "Factor always > 0.");
  EXPECT_DOUBLE_EQ(s.UserRatios[2], 1);
  w.Type(e.Weight_Box(), "2,0");
  EXPECT_DOUBLE_EQ(s.UserRatios[2], 2);
  EXPECT_EQ(w.host.messages.size(), messages + 1);
  // The weights 1 : 2 : 1 put the cuts of the 1000 mm side at 250 and 750.
  w.Click(500, 0);
  EXPECT_EQ(w.Elements(), 3);
  Expect_Points(Nodes_From(w.project, 5), {{250, 0}, {250, 600}, {750, 0}, {750, 600}});

  // A longer division keeps the typed weights and adds ones.
  w.Type(e.Division_Box(), "5");
  EXPECT_DOUBLE_EQ(s.UserRatios[2], 2);
  EXPECT_DOUBLE_EQ(s.UserRatios[4], 1);
  EXPECT_DOUBLE_EQ(s.UserRatios[5], 1);
  e.Weight_Position()->setValue(5);
  EXPECT_EQ(e.Weight_Box()->text(), "1");
}

TEST(MeshPanel, TheCutAtThePointerFallsWhereTheUserClicked) {
  Panel w;
  One_Macro(w.project);
  w.Open();
  w.form->Splitting_Window()->Option(Ratio_At_Pointer)->click();
  w.Click(300, 600);  // the top side
  ASSERT_EQ(w.Elements(), 2);
  const double half_pixel = 0.5 / w.form->Picture().ScaleX + 1e-9;
  for (int n = 5; n <= 6; ++n)
    EXPECT_NEAR(w.project.Mesh_Node[n].X, 300, half_pixel);
  EXPECT_EQ(w.form->Session().Parameters.Division, 2);
}

TEST(MeshPanel, AClickAwayFromEverySideCutsNothing) {
  Panel w;
  One_Macro(w.project);
  w.Open();
  w.Click(500, 300);  // the middle of the element
  w.Click(0, 0);      // a corner: at no side strictly between its ends
  EXPECT_EQ(w.Elements(), 1);
  EXPECT_EQ(w.project.Split.count(), 0);
  // The radius of the pick is Mouse_Radius pixels: 2 pixels off the side still picks it.
  const QPoint p = w.Pixel(500, 0);
  QTest::mouseClick(w.form->Picture_Widget(), Qt::LeftButton, {}, p + QPoint(0, 2));
  EXPECT_EQ(w.Elements(), 4);
}

TEST(MeshPanel, IntegrateMakesThePipeAHoleAndStopsFurtherCutsUntilAStepBack) {
  Panel w;
  One_Macro(w.project);
  Add_Node(w.project, 500, 300);
  Circuit c = w.project.Circuit_Default;
  Resize_Pipes(c, 1);
  c.Pipe_Node[1] = 5;
  c.Diameter = 40;
  w.project.Circuit.add(c);
  w.Open();
  EXPECT_TRUE(w.form->Tool("Integrate")->isVisible());
  w.Type(w.form->Splitting_Window()->Division_Box(), "2");
  w.Click(200, 0);
  w.Click(0, 200);
  ASSERT_EQ(w.Elements(), 4);  // four elements meet at the pipe (500, 300)
  ASSERT_EQ(w.Nodes(), 9);
  test::Take_Screenshot(*w.form, "mesh_panel_pipe_before_integration");
  w.Press("Integrate");
  ASSERT_TRUE(w.host.messages.empty()) << w.host.messages.at(0);
  EXPECT_EQ(w.Elements(), 4 + 20);
  EXPECT_EQ(w.Nodes(), 9 + 23);  // the pipe's node becomes one of the eight wall nodes
  EXPECT_TRUE(w.form->Session().Circuits_Integrated);
  EXPECT_FALSE(w.form->Tool("Integrate")->isVisible());
  EXPECT_TRUE(w.form->Tool("Backward")->isEnabled());
  for (int k = 1; k <= 8; ++k) {
    const Mesh_Node& n = w.project.Mesh_Node[w.project.Circuit[1].Pipe_Connection[1][k]];
    EXPECT_NEAR(std::hypot(n.X - 500, n.Y - 300), 20, 1e-9) << k;
  }
  test::Take_Screenshot(*w.form, "mesh_panel_integrated");

  w.Click(0, 100);
  ASSERT_EQ(w.host.messages.size(), 1u);
  EXPECT_EQ(w.host.messages[0],
            "Cooling circuits are integrated, so no additional splitting is possible. If you still want to "
            "refine the mesh go one step back.");
  EXPECT_EQ(w.Elements(), 24);
  w.Press("Backward");
  EXPECT_EQ(w.Elements(), 2);
  EXPECT_FALSE(w.form->Session().Circuits_Integrated);
  EXPECT_TRUE(w.form->Tool("Integrate")->isVisible());
}

TEST(MeshPanel, APipeNotWhereFourElementsMeetIsRefusedWithAMessageAndNothingChanges) {
  Panel w;
  One_Macro(w.project);
  Add_Node(w.project, 500, 300);
  Circuit c = w.project.Circuit_Default;
  Resize_Pipes(c, 1);
  c.Pipe_Node[1] = 5;
  w.project.Circuit.add(c);
  w.Open();
  // Four strips: the node nearest the pipe is on the outline, a corner of two elements only.
  w.Click(200, 0);
  ASSERT_EQ(w.Elements(), 4);
  w.Press("Integrate");
  ASSERT_EQ(w.host.messages.size(), 1u);
  EXPECT_NE(w.host.messages[0].find("not integrated"), std::string::npos) << w.host.messages[0];
  EXPECT_EQ(w.Elements(), 4);
  EXPECT_EQ(w.Nodes(), 10);
  EXPECT_FALSE(w.form->Session().Circuits_Integrated);
  EXPECT_TRUE(w.form->Tool("Integrate")->isVisible());
}

TEST(MeshPanel, ChangesAfterAComputationAskFirstAndNoChangesNothing) {
  Panel w;
  One_Macro(w.project);
  w.Open();
  w.shell.State = Work_State::Computed;
  w.host.answers = {Answer::No};
  w.Click(500, 0);
  EXPECT_EQ(w.host.questions.size(), 1u);
  EXPECT_EQ(w.host.questions[0], Destroy_Output_Question);
  EXPECT_EQ(w.Elements(), 1);
  EXPECT_EQ(w.shell.State, Work_State::Computed);
  // The element type is a setting of the analysis, behind the same gate.
  w.host.answers = {Answer::No};
  w.form->Splitting_Window()->Element_Type(true)->click();
  EXPECT_EQ(w.project.Constant_Shear, 0);
  EXPECT_TRUE(w.form->Splitting_Window()->Element_Type(false)->isChecked());

  const int changes = w.changes;
  w.host.answers = {Answer::Yes};
  w.Click(500, 0);
  EXPECT_EQ(w.Elements(), 4);
  EXPECT_NE(w.shell.State, Work_State::Computed);
  EXPECT_GT(w.changes, changes);
  // Without results nothing is asked.
  w.Press("Backward");
  EXPECT_EQ(w.host.questions.size(), 3u);
  EXPECT_EQ(w.Elements(), 1);
  w.form->Splitting_Window()->Element_Type(true)->click();
  EXPECT_NE(w.project.Constant_Shear, 0);
}

TEST(MeshPanel, TheSideUnderThePointerIsHighlightedAndThePictureIsStored) {
  Panel w;
  One_Macro(w.project);
  w.Open();
  const QPoint mid = w.Pixel(500, 600);
  w.Move(500, 600);
  EXPECT_EQ(w.form->Highlighted_Element(), 1);
  EXPECT_EQ(w.form->Highlighted_Side(), 3);
  const QImage image = Draw_To_Image(w.form->Picture_Widget()->size(), [&](Plot_Surface& s) {
    Plot_Mesh_Panel(s, w.form->Picture(), w.project, false, 1, 3);
  });
  EXPECT_EQ(image.pixelColor(mid), QColor(255, 0, 255));
  EXPECT_EQ(image.pixelColor(w.Pixel(500, 0) + QPoint(0, 0)), QColor(0, 0, 0));  // an unpicked side
  EXPECT_EQ(image.pixelColor(w.Pixel(500, 300)), QColor(255, 255, 255));

  test::Temp_Dir folder;
  w.host.files = {folder.file("mesh.png")};
  w.Press("Store");
  ASSERT_EQ(w.host.chooser_titles.size(), 1u);
  EXPECT_EQ(w.host.chooser_titles[0], Store_Picture_Title);
  QImage stored(QString::fromStdString(folder.file("mesh.png")));
  ASSERT_FALSE(stored.isNull());
  EXPECT_EQ(stored.size(), w.form->Picture_Widget()->size());
  EXPECT_EQ(stored.pixelColor(mid), QColor(255, 0, 255));
}

TEST(MeshPanel, ADraggedRectangleZoomsAndZoomoutReturns) {
  Panel w;
  One_Macro(w.project);
  w.Open();
  const double scale = w.form->Picture().ScaleX;
  // From the top right to the bottom left of the box (0, 0) .. (500, 300): reversed corners.
  QWidget* picture = w.form->Picture_Widget();
  QTest::mousePress(picture, Qt::LeftButton, {}, w.Pixel(500, 300));
  QTest::mouseMove(picture, w.Pixel(250, 150));
  QTest::mouseRelease(picture, Qt::LeftButton, {}, w.Pixel(0, 0));
  EXPECT_EQ(w.Elements(), 1);  // a drag cuts nothing
  const Picture_State& zoomed = w.form->Picture();
  EXPECT_TRUE(zoomed.Zoomed);
  EXPECT_LT(zoomed.ZoomX1, zoomed.ZoomX2);
  EXPECT_LT(zoomed.ZoomY1, zoomed.ZoomY2);
  EXPECT_NEAR(zoomed.ZoomX2 - zoomed.ZoomX1, 500, 2 / scale);
  // The box is less than half the frame each way, so the picture is more than twice as large.
  EXPECT_GT(zoomed.ScaleX, 2 * scale);
  w.Press("Zoomout");
  EXPECT_FALSE(w.form->Picture().Zoomed);
  EXPECT_DOUBLE_EQ(w.form->Picture().ScaleX, scale);
}

TEST(MeshPanel, TheExampleWallIsCutThroughSlabAndWall) {
  test::Temp_Dir folder;
  std::filesystem::copy_file(test::Source_Path("examples/WALL.PVX"), folder.file("WALL.PVX"));
  std::filesystem::copy_file(test::Source_Path("examples/PVX-Concrete.txt"), folder.file("PVX-Concrete.txt"));
  Panel w;
  Read_Report report;
  ASSERT_EQ(Load_Project(folder.file("WALL.PVX"), folder.path().string(), w.project, report),
            Load_Result::Loaded)
      << report.message;
  // With its mesh and history cleared the panel starts from the four macros and their ten nodes.
  w.project.Mesh_Node.clear();
  w.project.Mesh_Element.clear();
  w.project.Mesh_Border.clear();
  w.project.Mesh_Interface.clear();
  w.project.Split.clear();
  w.project.Split_Position = 0;
  w.Open();
  ASSERT_EQ(w.Elements(), 4);
  ASSERT_EQ(w.Nodes(), 10);
  EXPECT_FALSE(w.form->Tool("Integrate")->isVisible());

  // The slab's middle part (1500 .. 2500) carries the wall: a cut of its bottom side into 4 runs
  // up through the wall, 2 x 4 elements in place of 2, with 3 new nodes at y = 0, 500 and 3000.
  w.Click(2000, 0);
  EXPECT_EQ(w.Elements(), 10);
  EXPECT_EQ(w.Nodes(), 19);
  int at_top = 0;
  for (const auto& [x, y] : Nodes_From(w.project, 11)) {
    EXPECT_NEAR(std::fmod(x - 1500, 250.0), 0, 1e-9);
    at_top += y == 3000;
  }
  EXPECT_EQ(at_top, 3);
  // The wall's left side (x = 1500, from 500 to 3000) into 5: the strip is the wall alone, four
  // elements wide; the slab is not cut.
  w.Type(w.form->Splitting_Window()->Division_Box(), "5");
  w.Click(1500, 1750);
  EXPECT_EQ(w.Elements(), 10 + 4 * 4);
  EXPECT_EQ(w.Nodes(), 19 + 5 * 4);
  // The left slab part into 3 along its bottom, and the whole slab height into 2.
  w.Type(w.form->Splitting_Window()->Division_Box(), "3");
  w.Click(750, 0);
  w.Type(w.form->Splitting_Window()->Division_Box(), "2");
  w.Click(0, 250);
  // Slab: 3 + 4 + 1 columns by 2 rows; wall 4 by 5.
  EXPECT_EQ(w.Elements(), 8 * 2 + 4 * 5);
  EXPECT_EQ(w.project.Split.count(), 4);
  w.Move(3250, 500);
  test::Take_Screenshot(*w.form, "mesh_panel_wall");
  w.Press("Backward");
  EXPECT_EQ(w.Elements(), 8 + 4 * 5);
  w.Press("Forward");
  EXPECT_EQ(w.Elements(), 8 * 2 + 4 * 5);
  EXPECT_TRUE(w.host.messages.empty());
}

}  // namespace
}  // namespace pvx

namespace pvx {
namespace {

// A wall drawn on the slab's top side without sharing its corners: the panel says so when it opens.
TEST(MeshPanel, OpeningTellsOfMacrosThatTouchWithoutSharingCorners) {
  Panel w;
  One_Macro(w.project);
  w.Open();
  EXPECT_TRUE(w.host.messages.empty());

  Add_Node(w.project, 300, 600);
  Add_Node(w.project, 700, 600);
  Add_Node(w.project, 700, 1000);
  Add_Node(w.project, 300, 1000);
  Macro wall;
  static_cast<Macro_Values&>(wall) = w.project.Macro_Defaults;
  wall.Material = "C30/37";
  wall.Corner = {{5, 6, 7, 8}};
  w.project.Macro.add(wall);
  w.project.Mesh_Element.clear();
  w.project.Mesh_Node.clear();
  w.form->Form_Shown();
  ASSERT_EQ(w.host.messages.size(), 1u);
  EXPECT_EQ(w.host.messages[0].rfind("Node 5 lies on side 3 of macro 1 without being one of its corners", 0),
            0u)
      << w.host.messages[0];
}

}  // namespace
}  // namespace pvx
