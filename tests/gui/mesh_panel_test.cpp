// The mesh panel driven as a user drives it: clicks on element sides at the pixels of model
// points, the history keys, the numbers typed into the splitting window, the cooling pipes made
// into holes, and the gate before computed results are lost. Counts and node positions are worked
// by hand from the geometry.
#include <gtest/gtest.h>

#include <QAction>
#include <QImage>
#include <QLabel>
#include <QMouseEvent>
#include <QRadioButton>
#include <QSpinBox>

#include "draw/qt_surface.h"
#include "form_fixture.h"
#include "frm_gen_mesh.h"
#include "mesh/mesh_fixtures.h"

namespace pvx {
namespace {

using test::Type;
using Points = std::vector<std::pair<double, double>>;

struct Panel : test::Form_Fixture {
  std::unique_ptr<frmGenMesh> form;
  frmelem* split = nullptr;

  void Open() {
    form = std::make_unique<frmGenMesh>(context);
    form->resize(1100, 700);
    form->show();
    form->Form_Shown();
    split = form->Splitting_Window();
  }
  QPoint Pixel(double x, double y) const {
    return {World_To_X(form->Picture(), x), World_To_Y(form->Picture(), y)};
  }
  void Click(double x, double y, QPoint off = {}) {
    QTest::mouseClick(form->Picture_Widget(), Qt::LeftButton, {}, Pixel(x, y) + off);
  }
  void Press(const char* key) { form->Tool(key)->trigger(); }
  int Elements() const { return project.Mesh_Element.count(); }
  int Nodes() const { return project.Mesh_Node.count(); }
  // The positions of the nodes numbered from `first` on, to a millionth of a millimetre, sorted.
  Points Nodes_From(int first) const {
    Points got;
    for (int n = first; n <= Nodes(); ++n)
      got.emplace_back(std::round(project.Mesh_Node[n].X * 1e6) / 1e6,
                       std::round(project.Mesh_Node[n].Y * 1e6) / 1e6);
    std::sort(got.begin(), got.end());
    return got;
  }
  // One macro from (0, 0) to (1000, 600) in a frame of 1200 x 800.
  void One_Macro() {
    New_Project(project);
    shell.State = Work_State::Design;
    project.Grid_X_Min = project.Grid_Y_Min = -100;
    project.Grid_X_Max = 1100;
    project.Grid_Y_Max = 700;
    for (auto [x, y] : Points{{0, 0}, {1000, 0}, {1000, 600}, {0, 600}})
      Add_Node(project, x, y);
    test::Add_Macro(project, 1, 2, 3, 4);
  }
};

TEST(MeshPanel, AClickCutsTheStripThroughTheSideAndTheHistoryStepsBackAndForth) {
  Panel w;
  w.One_Macro();
  w.Open();
  ASSERT_EQ(w.Elements(), 1);  // the initial mesh, made when the panel opened
  w.Click(500, 300);           // the middle of the element
  w.Click(0, 0);               // a corner: at no side strictly between its ends
  EXPECT_EQ(w.Elements(), 1);

  Type(w.split->Division_Box(), "5");
  w.Click(300, 0, QPoint(0, 2));  // 2 pixels off the bottom side, within the pick radius
  // Five strips of 200 mm: the cut nodes at x = 200 .. 800 on both long sides.
  EXPECT_EQ(w.Elements(), 5);
  EXPECT_EQ(w.Nodes_From(5),
            (Points{{200, 0}, {200, 600}, {400, 0}, {400, 600}, {600, 0}, {600, 600}, {800, 0}, {800, 600}}));
  EXPECT_EQ(w.split->Nodes_Label()->text(), "Generated nodes    : 12");

  // "|1 : 2 : 4 :....| " into 3 on the left side, which runs from (0, 600) down to (0, 0): the
  // fractions are 1/7 and 3/7 from the top, and the strip crosses all five elements.
  w.split->Option(Ratio_Doubling)->click();
  Type(w.split->Division_Box(), "3");
  w.Click(0, 300);
  EXPECT_EQ(w.Elements(), 15);
  EXPECT_EQ(w.Nodes(), 24);
  const Points strip = w.Nodes_From(13);  // from x = 0 to 1000, at 3/7 and 1/7 below the top
  EXPECT_NEAR(strip.front().second, 600 - 1800.0 / 7, 1e-6);
  EXPECT_NEAR(strip.back().second, 600 - 600.0 / 7, 1e-6);

  const struct {
    const char* key;
    int elements;
  } history[] = {{"Backward", 5}, {"Backward", 1}, {"Forward", 5}, {"All", 15}, {"Reset", 1}};
  for (const auto& step : history) {
    w.Press(step.key);
    EXPECT_EQ(w.Elements(), step.elements) << step.key;
  }
  EXPECT_EQ(w.project.Split.count(), 2);
  // A cut at position 0 drops both stored cuts.
  w.split->Option(Ratio_Equal)->click();
  w.Click(1000, 300);  // the right side, into 3 equal parts
  EXPECT_EQ(w.project.Split.count(), 1);
  EXPECT_EQ(w.Nodes_From(5), (Points{{0, 200}, {0, 400}, {1000, 200}, {1000, 400}}));
  w.Press("Clean");
  EXPECT_EQ(w.project.Split.count(), 0);
  EXPECT_EQ(w.Elements(), 1);

  // With results computed a cut asks first; No changes nothing, Yes cuts and the results go.
  w.shell.State = Work_State::Computed;
  w.host.answers = {Answer::No, Answer::No, Answer::Yes};
  w.Click(500, 0);
  w.split->Element_Type(true)->click();  // the element type is behind the same gate
  EXPECT_EQ(w.Elements(), 1);
  EXPECT_EQ(w.project.Constant_Shear, 0);
  EXPECT_EQ(w.shell.State, Work_State::Computed);
  w.Click(500, 0);
  EXPECT_EQ(w.host.questions, std::vector<std::string>(3, Destroy_Output_Question));
  EXPECT_EQ(w.Elements(), 3);
  EXPECT_NE(w.shell.State, Work_State::Computed);
}

TEST(MeshPanel, TheSideUnderThePointerIsStoredHighlightedAndTypedNumbersPlaceTheCuts) {
  Panel w;
  w.One_Macro();
  w.Open();
  // The pointer moved with no button down, sent directly: on a real display a test's pointer move
  // goes through the window system and arrives later.
  QWidget* picture = w.form->Picture_Widget();
  const QPoint mid = w.Pixel(500, 600);
  QMouseEvent move(QEvent::MouseMove, mid, picture->mapToGlobal(mid), Qt::NoButton, Qt::NoButton, {});
  QApplication::sendEvent(picture, &move);
  EXPECT_EQ(w.form->Highlighted_Element(), 1);
  EXPECT_EQ(w.form->Highlighted_Side(), 3);
  test::Temp_Dir folder;
  w.host.files = {folder.file("mesh.png")};
  w.Press("Store");
  EXPECT_EQ(w.host.chooser_titles, std::vector<std::string>{Store_Picture_Title});
  const QImage stored(QString::fromStdString(folder.file("mesh.png")));
  ASSERT_EQ(stored.size(), picture->size());
  EXPECT_EQ(stored.pixelColor(mid), QColor(255, 0, 255));  // the picked side
  EXPECT_EQ(stored.pixelColor(w.Pixel(500, 0)), QColor(0, 0, 0));
  EXPECT_EQ(stored.pixelColor(w.Pixel(500, 300)), QColor(255, 255, 255));

  frmelem& e = *w.split;
  const Splitting_Parameters& s = w.form->Session().Parameters;
  e.Option(Ratio_Geometric)->click();
  // Each row: what is typed into which box, the message (none when taken), the value then in force.
  const struct {
    QLineEdit* box;
    const char* typed;
    const char* message;
    double division, factor;
  } typed[] = {
      {e.Division_Box(), "1", "Subdivision always > 1", 4, 1.5},
      {e.Division_Box(), "3", nullptr, 3, 1.5},
      {e.Factor_Box(), "2,5", nullptr, 3, 2.5},
      {e.Factor_Box(), "-0.5", "Factor a always > 0.", 3, 2.5},
      {e.Factor_Box(), "abc", Number_Error_Message, 3, 2.5},
      {e.Factor_Box(), "0", nullptr, 3, 0},
  };
  for (const auto& row : typed) {
    w.host.messages.clear();
    Type(row.box, row.typed);
    EXPECT_EQ(w.host.messages,
              row.message ? std::vector<std::string>{row.message} : std::vector<std::string>{})
        << row.typed;
    EXPECT_EQ(s.Division, row.division) << row.typed;
    EXPECT_EQ(s.FactorA, row.factor) << row.typed;
  }

  // The weights 1 : 2 : 1 put the cuts of the 1000 mm side at 250 and 750.
  e.Option(Ratio_User)->click();
  e.Weight_Position()->setValue(2);
  Type(e.Weight_Box(), "2,0");
  w.Click(500, 0);
  EXPECT_EQ(w.Nodes_From(5), (Points{{250, 0}, {250, 600}, {750, 0}, {750, 600}}));

  // At the pointer: the cut falls where the user clicked, within half a pixel.
  w.Press("Clean");
  e.Option(Ratio_At_Pointer)->click();
  w.Click(300, 600);  // the top side
  ASSERT_EQ(w.Elements(), 2);
  for (int n = 5; n <= 6; ++n)
    EXPECT_NEAR(w.project.Mesh_Node[n].X, 300, 0.5 / w.form->Picture().ScaleX + 1e-9);
}

TEST(MeshPanel, APipeWhereFourElementsMeetBecomesAHoleAndStopsFurtherCuts) {
  Panel w;
  w.One_Macro();
  test::Add_Circuit(w.project, {Add_Node(w.project, 500, 300)}, 40);
  w.Open();
  Type(w.split->Division_Box(), "2");
  w.Click(200, 0);
  w.Click(0, 200);
  ASSERT_EQ(w.Elements(), 4);  // four elements meet at the pipe (500, 300)
  ASSERT_EQ(w.Nodes(), 9);
  test::Take_Screenshot(*w.form, "mesh_panel_pipe_before_integration");
  w.Press("Integrate");
  ASSERT_TRUE(w.host.messages.empty()) << w.host.messages[0];
  EXPECT_EQ(w.Elements(), 4 + 20);  // the hole's walls are worked by hand in the mesh tests
  test::Take_Screenshot(*w.form, "mesh_panel_integrated");
  w.Click(0, 100);
  EXPECT_EQ(w.host.messages.back(), Circuits_Integrated_Message);
  EXPECT_EQ(w.Elements(), 24);
  w.Press("Backward");
  EXPECT_EQ(w.Elements(), 2);
  EXPECT_TRUE(w.form->Tool("Integrate")->isVisible());
}

TEST(MeshPanel, TheExampleWallIsCutThroughSlabAndWall) {
  Panel w;
  ASSERT_TRUE(w.Load_Example(Work_State::Design));
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
  // The slab's middle part (1500 .. 2500) carries the wall: a cut of its bottom side into 4 runs
  // up through the wall, 2 x 4 elements in place of 2, with 3 new nodes at y = 0, 500 and 3000.
  w.Click(2000, 0);
  EXPECT_EQ(w.Elements(), 10);
  EXPECT_EQ(w.Nodes(), 19);
  // The wall's left side (x = 1500, from 500 to 3000) into 5: the strip is the wall alone, four
  // elements wide; the slab is not cut. Then the left slab part into 3 along its bottom, and the
  // whole slab height into 2: the slab 3 + 4 + 1 columns by 2 rows, the wall 4 by 5.
  const struct {
    const char* division;
    double x, y;
    int elements;
  } cuts[] = {{"5", 1500, 1750, 10 + 4 * 4}, {"3", 750, 0, 8 + 4 * 5}, {"2", 0, 250, 8 * 2 + 4 * 5}};
  for (const auto& cut : cuts) {
    Type(w.split->Division_Box(), cut.division);
    w.Click(cut.x, cut.y);
    EXPECT_EQ(w.Elements(), cut.elements) << cut.x << ", " << cut.y;
  }
  test::Take_Screenshot(*w.form, "mesh_panel_wall");
  w.Press("Backward");
  EXPECT_EQ(w.Elements(), 8 + 4 * 5);
  EXPECT_TRUE(w.host.messages.empty());
}

}  // namespace
}  // namespace pvx
