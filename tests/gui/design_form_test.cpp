// The design panel driven with the mouse offscreen: macros drawn by clicks at the pixels of model
// points, a border given, undo and redo, the gate before results are destroyed, popups, the grid
// dialog, the stored picture and the pointer label.
#include <gtest/gtest.h>

#include <filesystem>

#include <QCheckBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QtTest/QTest>

#include "../app/shell_host_fake.h"
#include "app/project_load.h"
#include "app/units.h"
#include "frm_design.h"
#include "frm_graf.h"
#include "screenshot.h"
#include "support/temp_dir.h"

namespace pvx {
namespace {

struct Design_Fixture : ::testing::Test {
  Project project;
  Shell shell;
  test::Scripted_Host host;
  test::Memory_Store store;
  int changes = 0;
  Gui_Context context{project, shell, store, host, [this] { ++changes; }};
  std::vector<std::pair<Property_Editor, int>> editors;

  Design_Fixture() {
    New_Project(project);
    Set_Graphical_Defaults(project);  // 0..2000 by 0..1500, grid of 100, grid snapping on
    project.Snap_Mode = 1;
    shell.State = Work_State::Design;
  }

  std::unique_ptr<frmDesign> Make_Form() {
    auto form = std::make_unique<frmDesign>(context);
    form->Open_Editor = [this](Property_Editor e, int index) {
      editors.emplace_back(e, index);
      return false;
    };
    form->Beep = [] {};
    form->resize(1100, 800);
    form->show();
    QApplication::processEvents();
    return form;
  }

  static QPoint Pixel(frmDesign& form, double x, double y) {
    const Picture_State& s = form.Picture();
    return QPoint(World_To_X(s, x), World_To_Y(s, y));
  }
  static void Click(frmDesign& form, double x, double y, QPoint off = {},
                    Qt::MouseButton b = Qt::LeftButton) {
    QTest::mouseClick(form.Picture_Widget(), b, Qt::NoModifier, Pixel(form, x, y) + off);
  }
  static void Choose_Mode(frmDesign& form, Design_Mode mode) {
    auto* button = form.findChild<QRadioButton*>(QString("Option1_%1").arg(static_cast<int>(mode)));
    ASSERT_NE(button, nullptr);
    QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, QPoint(5, button->height() / 2));
    ASSERT_EQ(form.Mode(), mode);
  }
  // Two macros side by side, each clicked a few pixels off its grid points.
  static void Draw_Two_Macros(frmDesign& form) {
    for (auto [x, y] : {std::pair{100.0, 100.0}, {500.0, 100.0}, {500.0, 400.0}, {100.0, 400.0}})
      Click(form, x, y, QPoint(4, -3));
    for (auto [x, y] : {std::pair{500.0, 100.0}, {900.0, 100.0}, {900.0, 400.0}, {500.0, 400.0}})
      Click(form, x, y, QPoint(-5, 2));
  }
};

TEST_F(Design_Fixture, Two_Macros_Drawn_With_The_Mouse_Then_A_Border_And_Undo) {
  auto form = Make_Form();
  EXPECT_EQ(form->findChild<QLabel*>("Caption")->text(), "No mode");
  Choose_Mode(*form, Design_Mode::Macros);
  EXPECT_EQ(form->findChild<QLabel*>("Caption")->text(), "Macro mode");
  EXPECT_EQ(host.work_captions.back(), "Macro mode");
  ASSERT_GT(form->Picture().ScaleX, 0.2);  // a 4 pixel slip stays well within the grid's pull
  Draw_Two_Macros(*form);

  ASSERT_EQ(project.Macro.count(), 2);
  ASSERT_EQ(Node_Count(project), 6);  // the shared corners were taken, not doubled
  const double expected[6][2] = {{100, 100}, {500, 100}, {500, 400}, {100, 400}, {900, 100}, {900, 400}};
  for (int n = 1; n <= 6; ++n) {
    EXPECT_EQ(project.Node_X[n], expected[n - 1][0]) << n;
    EXPECT_EQ(project.Node_Y[n], expected[n - 1][1]) << n;
  }
  EXPECT_EQ(project.Macro[1].Corner, (Array1<std::int16_t, 4>{{1, 2, 3, 4}}));
  EXPECT_EQ(project.Macro[2].Corner, (Array1<std::int16_t, 4>{{2, 5, 6, 3}}));
  EXPECT_GT(changes, 0);

  // Ctrl+Z takes the second macro and its two new nodes away; Ctrl+Y brings them back.
  QTest::keyClick(form->Picture_Widget(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(project.Macro.count(), 1);
  EXPECT_EQ(Node_Count(project), 4);
  QTest::keyClick(form->Picture_Widget(), Qt::Key_Y, Qt::ControlModifier);
  EXPECT_EQ(project.Macro.count(), 2);
  EXPECT_EQ(Node_Count(project), 6);

  Choose_Mode(*form, Design_Mode::BorderT);
  Click(*form, 300, 100, QPoint(0, 1));  // the bottom side of the first macro
  ASSERT_EQ(project.Border.count(), 1);
  EXPECT_EQ(project.Border[1].Node_A, 1);
  EXPECT_EQ(project.Border[1].Node_B, 2);
  EXPECT_NE(project.Border[1].Thermal_Active, 0);
  Click(*form, 300, 100);  // the same side again: the same border
  EXPECT_EQ(project.Border.count(), 1);
  Click(*form, 300, 250);  // inside, on no side
  EXPECT_EQ(project.Border.count(), 1);
  EXPECT_EQ(project.Mesh_Valid, False_Flag);
  test::Take_Screenshot(*form, "design_borders_drawn");

  QTest::keyClick(form->Picture_Widget(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(project.Border.count(), 0);
  QTest::keyClick(form->Picture_Widget(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(project.Macro.count(), 1);
  EXPECT_EQ(Node_Count(project), 4);
}

TEST_F(Design_Fixture, A_Click_In_A_Macro_Makes_Nothing_And_Escape_Cancels_A_Polygon) {
  auto form = Make_Form();
  int beeps = 0;
  form->Beep = [&] { ++beeps; };
  Choose_Mode(*form, Design_Mode::Macros);
  Draw_Two_Macros(*form);
  Click(*form, 300, 250);
  EXPECT_EQ(beeps, 1);
  EXPECT_EQ(Node_Count(project), 6);
  Click(*form, 900, 700);
  Click(*form, 1200, 700);
  EXPECT_EQ(Node_Count(project), 8);
  EXPECT_EQ(Polygon_Node_Count(form->Panel()), 2);
  QTest::keyClick(form->Picture_Widget(), Qt::Key_Escape);
  EXPECT_EQ(Node_Count(project), 6);
  EXPECT_EQ(Polygon_Node_Count(form->Panel()), 0);
}

TEST_F(Design_Fixture, Edits_With_Results_Ask_First_And_No_Keeps_The_Project) {
  auto form = Make_Form();
  Choose_Mode(*form, Design_Mode::Nodes);
  shell.State = Work_State::Computed;
  host.answers = {Answer::No, Answer::Yes};
  Click(*form, 700, 700);
  EXPECT_EQ(Node_Count(project), 0);
  ASSERT_EQ(host.questions.size(), 1u);
  EXPECT_EQ(host.questions[0], Destroy_Output_Question);
  EXPECT_EQ(shell.State, Work_State::Computed);
  Click(*form, 700, 700);
  ASSERT_EQ(Node_Count(project), 1);
  EXPECT_EQ(project.Node_X[1], 700);
  EXPECT_EQ(shell.State, Work_State::Run_Set);
  EXPECT_EQ(host.questions.size(), 2u);
}

TEST_F(Design_Fixture, A_Node_Dragged_Onto_Another_Is_Merged) {
  auto form = Make_Form();
  Choose_Mode(*form, Design_Mode::Nodes);
  Click(*form, 100, 100);
  Click(*form, 600, 100);
  ASSERT_EQ(Node_Count(project), 2);
  project.Mouse_Radius = 50;  // merging compares millimetres
  QWidget* picture = form->Picture_Widget();
  QTest::mousePress(picture, Qt::LeftButton, Qt::NoModifier, Pixel(*form, 600, 100));
  QTest::mouseMove(picture, Pixel(*form, 400, 200));
  EXPECT_EQ(project.Node_X[2], 400);
  EXPECT_EQ(project.Node_Y[2], 200);
  QTest::mouseMove(picture, Pixel(*form, 100, 100) + QPoint(3, 3));
  QTest::mouseRelease(picture, Qt::LeftButton, Qt::NoModifier, Pixel(*form, 100, 100) + QPoint(3, 3));
  EXPECT_EQ(Node_Count(project), 1);
  QTest::keyClick(picture, Qt::Key_Z, Qt::ControlModifier);
  ASSERT_EQ(Node_Count(project), 2);
  EXPECT_EQ(project.Node_X[2], 600);
}

TEST_F(Design_Fixture, Popups_Open_Editors_And_Delete) {
  auto form = Make_Form();
  Choose_Mode(*form, Design_Mode::Macros);
  Draw_Two_Macros(*form);
  QStringList shown;
  QString wanted = "General Macro Properties";
  form->Choose_Popup_Entry = [&](const QStringList& entries, QPoint) {
    shown = entries;
    return static_cast<int>(entries.indexOf(wanted));
  };
  Click(*form, 700, 250, {}, Qt::RightButton);
  ASSERT_EQ(shown.value(0), "General Macro Properties");
  ASSERT_EQ(editors.size(), 1u);
  EXPECT_EQ(editors[0].first, Property_Editor::frmMacroProp);
  EXPECT_EQ(editors[0].second, 2);
  EXPECT_EQ(project.Current_Macro, 2);

  Choose_Mode(*form, Design_Mode::BorderT);
  Click(*form, 900, 250);  // the right side of the second macro
  ASSERT_EQ(project.Border.count(), 1);
  Choose_Mode(*form, Design_Mode::Macros);
  wanted = "Delete macro";
  Click(*form, 700, 250, {}, Qt::RightButton);
  EXPECT_EQ(project.Macro.count(), 1);
  EXPECT_EQ(project.Border.count(), 0);  // it lay on the deleted macro's own side
  EXPECT_EQ(Node_Count(project), 6);
  wanted = "Delete free nodes";
  Click(*form, 1500, 1000, {}, Qt::RightButton);
  EXPECT_EQ(shown.size(), 1);
  EXPECT_EQ(Node_Count(project), 4);
}

TEST_F(Design_Fixture, Grid_Dialog_Applies_Through_The_Checks) {
  auto form = Make_Form();
  frmGraf& graf = form->Show_Graf();
  EXPECT_EQ(graf.windowTitle(), "Graphical aids and options");
  ASSERT_EQ(graf.Tabs()->count(), 4);
  EXPECT_EQ(graf.Tabs()->tabText(3), "Snap and Mouse");
  EXPECT_EQ(graf.Field("Grid_X_Max")->text(), "2000");
  graf.Field("Grid_X_Max")->setText("-5");
  graf.Field("Snap_Size")->setText("0");
  QTest::mouseClick(graf.findChild<QPushButton*>("Apply"), Qt::LeftButton);
  ASSERT_FALSE(host.messages.empty());
  EXPECT_EQ(host.messages.back(), "X_max < X_min");
  EXPECT_EQ(project.Grid_X_Max, 2000);
  graf.Field("Grid_X_Max")->setText("3000");
  EXPECT_FALSE(graf.Apply());
  EXPECT_EQ(host.messages.back(), "Snap grootte =< 0");
  graf.Field("Snap_Size")->setText("x");
  EXPECT_FALSE(graf.Apply());
  EXPECT_EQ(host.messages.back(), Number_Error_Message);
  graf.Field("Snap_Size")->setText("25");
  graf.Field("Grid_X_Increment")->setText("250");
  graf.Tick("Axes")->setChecked(false);
  ASSERT_TRUE(graf.Apply());
  EXPECT_EQ(project.Grid_X_Max, 3000);
  EXPECT_EQ(project.Snap_Size, 25);
  EXPECT_FALSE(form->Picture().Show_Axes);
  // The wider frame and the new grid reach the pointer: 260 mm snaps to 250.
  Choose_Mode(*form, Design_Mode::Nodes);
  Click(*form, 260, 300);
  ASSERT_EQ(Node_Count(project), 1);
  EXPECT_EQ(project.Node_X[1], 250);
  EXPECT_TRUE(form->Pointer_Text().contains("250.00")) << form->Pointer_Text().toStdString();
}

TEST_F(Design_Fixture, Picture_Stored_As_Bitmap_At_The_Size_Of_The_Picture) {
  auto form = Make_Form();
  test::Temp_Dir dir;
  host.files = {dir.file("design")};
  form->Store_Picture_Command();
  const std::string path = dir.file("design.jpg");  // no extension: JPEG
  ASSERT_TRUE(std::filesystem::exists(path));
  host.files = {dir.file("design.bmp")};
  form->Store_Picture_Command();
  QImage image(QString::fromStdString(dir.file("design.bmp")));
  ASSERT_FALSE(image.isNull());
  EXPECT_EQ(image.size(), form->Picture_Widget()->size());
  // The frame corner (0, 0) is drawn where the transformation puts it, in the frame's grey.
  const QPoint corner = Pixel(*form, 2000, 1500);
  EXPECT_EQ(image.pixelColor(corner), QColor(Frame_Colour.R, Frame_Colour.G, Frame_Colour.B));
}

TEST_F(Design_Fixture, Example_Wall_In_Three_Views) {
  Read_Report report;
  const std::string path = test::Source_Path("examples/WALL.PVX");
  ASSERT_EQ(Load_Project(path, std::filesystem::path(path).parent_path().string(), project, report),
            Load_Result::Loaded)
      << report.message;
  auto form = Make_Form();
  form->Form_Shown();
  // The example's frame is smaller than its wall: widen it through the dialog to see it whole.
  frmGraf& graf = form->Show_Graf();
  graf.Field("Grid_X_Max")->setText("4500");
  graf.Field("Grid_Y_Max")->setText("3500");
  graf.Field("Grid_X_Increment")->setText("250");
  graf.Field("Grid_Y_Increment")->setText("250");
  ASSERT_TRUE(graf.Apply());
  graf.hide();
  Choose_Mode(*form, Design_Mode::Macros);
  project.Current_Macro = 2;
  // A third macro half drawn on the right of the wall: two corners and the band to the pointer.
  Click(*form, 3000, 1000);
  Click(*form, 4000, 1000);
  QTest::mouseMove(form->Picture_Widget(), Pixel(*form, 4000, 2000) + QPoint(6, 4));
  EXPECT_EQ(Polygon_Node_Count(form->Panel()), 2);
  test::Take_Screenshot(*form, "design_macros_wall");
  Choose_Mode(*form, Design_Mode::BorderT);  // leaving the mode cancels the open polygon
  EXPECT_EQ(Node_Count(project), 10);
  test::Take_Screenshot(*form, "design_borders_wall");
  form->Show_Graf();
  graf.Tabs()->setCurrentIndex(1);
  test::Take_Screenshot(graf, "design_grid_dialog");
  EXPECT_EQ(project.Macro.count(), 4);
}

}  // namespace
}  // namespace pvx

namespace pvx {
namespace {

TEST_F(Design_Fixture, Magnify_A_Dragged_Window_And_Back_To_Original_Size) {
  auto form = Make_Form();
  const double scale = form->Picture().ScaleX;
  form->Zoom_In_Command();
  QWidget* picture = form->Picture_Widget();
  const QPoint from = Pixel(*form, 0, 0), to = Pixel(*form, 1000, 750);
  QTest::mousePress(picture, Qt::LeftButton, Qt::NoModifier, from);
  QTest::mouseMove(picture, to);
  QTest::mouseRelease(picture, Qt::LeftButton, Qt::NoModifier, to);
  const Picture_State& zoomed = form->Picture();
  ASSERT_TRUE(zoomed.Zoomed);
  EXPECT_NEAR(zoomed.ZoomX1, 0, 1 / scale);  // within a pixel of the dragged corners
  EXPECT_NEAR(zoomed.ZoomX2, 1000, 1 / scale);
  EXPECT_NEAR(zoomed.ZoomY2, 750, 1 / scale);
  EXPECT_NEAR(zoomed.ScaleX / scale, 2.0, 0.02);  // half the frame fills the picture
  EXPECT_EQ(Node_Count(project), 0);              // the drag made nothing in the mode
  form->Zoom_Out_Command();
  EXPECT_FALSE(form->Picture().Zoomed);
  EXPECT_DOUBLE_EQ(form->Picture().ScaleX, scale);
}

TEST_F(Design_Fixture, Out_Of_Plane_Button_Opens_Its_Editor_And_Modes_Change_The_Caption) {
  auto form = Make_Form();
  Choose_Mode(*form, Design_Mode::Nodes);
  Choose_Mode(*form, Design_Mode::Free);
  ASSERT_EQ(editors.size(), 1u);
  EXPECT_EQ(editors[0].first, Property_Editor::frmOutofPlane);
  const char* expected[] = {"Node mode", "Macro mode", "Interface mode", "Reinforcement mode"};
  for (int i = 0; i < 4; ++i) {
    Choose_Mode(*form, Mode_Of_Button(i));
    EXPECT_EQ(form->findChild<QLabel*>("Caption")->text(), expected[i]);
  }
  // An editor that applies a change gives an undo step; one that is cancelled gives none.
  form->Open_Editor = [this](Property_Editor, int) {
    project.Out_Of_Plane.Offset_Radius = 250;
    return true;
  };
  Choose_Mode(*form, Design_Mode::Free);
  EXPECT_EQ(project.Out_Of_Plane.Offset_Radius, 250);
  EXPECT_EQ(form->Undo_Stack().Undo_Stack.size(), 1u);
  EXPECT_TRUE(form->Undo_Edit());
  EXPECT_EQ(project.Out_Of_Plane.Offset_Radius, 0);
}

TEST_F(Design_Fixture, Point_Supports_Placed_And_One_Of_Two_Chosen) {
  auto form = Make_Form();
  Choose_Mode(*form, Design_Mode::Support_P);
  Click(*form, 600, 300);
  Click(*form, 600, 300, QPoint(1, 0));  // on the first one: chosen, not doubled
  ASSERT_EQ(project.Point_Support.count(), 1);
  EXPECT_EQ(project.Point_Support[1].X, 600);
  EXPECT_EQ(project.Point_Support[1].Y, 300);
  project.Point_Support.add(project.Point_Support[1]);  // a second on the same point
  QStringList offered;
  form->Choose_Extra = [&](const QStringList& entries) {
    offered = entries;
    return 0;
  };
  Click(*form, 600, 300);
  EXPECT_EQ(offered, (QStringList{"Support_P 1", "Support_P 2"}));
  EXPECT_EQ(form->Panel().Current_Point_Support, 1);
  EXPECT_EQ(project.Point_Support.count(), 2);
}

TEST_F(Design_Fixture, A_Project_Made_Anew_Takes_No_Undo_Copies_Of_The_Old_One) {
  auto form = Make_Form();
  Choose_Mode(*form, Design_Mode::Macros);
  Draw_Two_Macros(*form);
  ASSERT_FALSE(form->Undo_Stack().Undo_Stack.empty());
  New_Project(project);  // as the "New" command does, behind the form's back
  Set_Graphical_Defaults(project);
  form->Form_Shown();
  EXPECT_FALSE(form->Undo_Edit());
  EXPECT_EQ(project.Macro.count(), 0);
  Click(*form, 100, 100);
  Click(*form, 300, 100);
  form->Project_Replaced();
  EXPECT_EQ(Polygon_Node_Count(form->Panel()), 0);
  EXPECT_EQ(form->Mode(), Design_Mode::Macros);
  EXPECT_FALSE(form->Undo_Edit());
}

}  // namespace
}  // namespace pvx

namespace pvx {
namespace {

// A corner clicked on another macro's side is refused, and the panel says why.
TEST_F(Design_Fixture, A_Corner_On_Another_Macros_Side_Is_Refused_With_A_Hint) {
  auto form = Make_Form();
  Choose_Mode(*form, Design_Mode::Macros);
  for (auto [x, y] : {std::pair{100.0, 100.0}, {900.0, 100.0}, {900.0, 400.0}, {100.0, 400.0}})
    Click(*form, x, y);
  ASSERT_EQ(project.Macro.count(), 1);
  auto* hint = form->findChild<QLabel*>("Hint");
  ASSERT_NE(hint, nullptr);
  EXPECT_TRUE(hint->text().isEmpty());
  Click(*form, 400, 400);  // within the top side, not a corner
  EXPECT_EQ(Node_Count(project), 4);
  EXPECT_EQ(hint->text(), Corner_Refused_Hint);
  Click(*form, 100, 400);  // an existing corner is taken, and the hint goes
  EXPECT_TRUE(hint->text().isEmpty());
}

}  // namespace
}  // namespace pvx
