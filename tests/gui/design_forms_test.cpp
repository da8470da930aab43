// The design panel, the property editors and the function wizard driven as a user drives them:
// macros drawn by clicks at the pixels of model points, borders given, undo and redo, popups, the
// grid dialog, typed text and Enter, the buttons, the gate before results are destroyed, the
// stored picture. The Project is checked afterwards; questions, messages and file choosers go
// through a scripted host.
#include <gtest/gtest.h>

#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTableWidget>
#include <cmath>

#include "form_fixture.h"
#include "frm_design.h"
#include "frm_function.h"
#include "frm_graf.h"
#include "frm_property.h"

namespace pvx {
namespace {

using test::Type;

struct Design_Fixture : ::testing::Test, test::Form_Fixture {
  std::vector<std::pair<Property_Editor, int>> editors;
  std::unique_ptr<frmDesign> form;

  Design_Fixture() {
    New_Project(project);
    Set_Graphical_Defaults(project);  // 0..2000 by 0..1500, grid of 100, grid snapping on
    project.Snap_Mode = 1;
    shell.State = Work_State::Design;
  }
  void Make_Form() {
    form = std::make_unique<frmDesign>(context);
    form->Open_Editor = [this](Property_Editor e, int index) {
      editors.emplace_back(e, index);
      return false;
    };
    form->Beep = [] {};
    form->resize(1100, 800);
    form->show();
    QApplication::processEvents();
  }
  QPoint Pixel(double x, double y) const {
    return {World_To_X(form->Picture(), x), World_To_Y(form->Picture(), y)};
  }
  void Click(double x, double y, QPoint off = {}, Qt::MouseButton b = Qt::LeftButton) {
    QTest::mouseClick(form->Picture_Widget(), b, Qt::NoModifier, Pixel(x, y) + off);
  }
  void Key(Qt::Key key) { QTest::keyClick(form->Picture_Widget(), key, Qt::ControlModifier); }
  void Choose_Mode(Design_Mode mode) {
    auto* button = form->findChild<QRadioButton*>(QString("Option1_%1").arg(static_cast<int>(mode)));
    ASSERT_NE(button, nullptr);
    QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, QPoint(5, button->height() / 2));
    ASSERT_EQ(form->Mode(), mode);
  }
  QString Label(const char* name) const { return form->findChild<QLabel*>(name)->text(); }
  // Two macros side by side, each clicked a few pixels off its grid points.
  void Draw_Two_Macros() {
    for (auto [x, y] : {std::pair{100.0, 100.0}, {500.0, 100.0}, {500.0, 400.0}, {100.0, 400.0}})
      Click(x, y, QPoint(4, -3));
    for (auto [x, y] : {std::pair{500.0, 100.0}, {900.0, 100.0}, {900.0, 400.0}, {500.0, 400.0}})
      Click(x, y, QPoint(-5, 2));
  }
};

TEST_F(Design_Fixture, TwoMacrosDrawnWithTheMouseThenABorderAndUndo) {
  Make_Form();
  int beeps = 0;
  form->Beep = [&] { ++beeps; };
  Choose_Mode(Design_Mode::Macros);
  ASSERT_GT(form->Picture().ScaleX, 0.2);  // a 4 pixel slip stays well within the grid's pull
  Draw_Two_Macros();
  ASSERT_EQ(project.Macro.count(), 2);
  ASSERT_EQ(Node_Count(project), 6);  // the shared corners were taken, not doubled
  EXPECT_EQ(std::tuple(project.Node_X[1], project.Node_Y[1], project.Node_X[6], project.Node_Y[6]),
            std::tuple(100.0, 100.0, 900.0, 400.0));
  EXPECT_EQ(project.Macro[2].Corner, (Array1<std::int16_t, 4>{{2, 5, 6, 3}}));

  // Ctrl+Z takes the second macro and its two new nodes away; Ctrl+Y brings them back.
  Key(Qt::Key_Z);
  EXPECT_EQ(project.Macro.count(), 1);
  EXPECT_EQ(Node_Count(project), 4);
  Key(Qt::Key_Y);
  EXPECT_EQ(Node_Count(project), 6);
  // A right click in the second macro offers its editors; the one chosen opens on that macro.
  form->Choose_Popup_Entry = [](const QStringList& entries, QPoint) {
    return static_cast<int>(entries.indexOf("General Macro Properties"));
  };
  Click(700, 250, {}, Qt::RightButton);
  EXPECT_EQ(editors, (std::vector<std::pair<Property_Editor, int>>{{Property_Editor::frmMacroProp, 2}}));

  // A click inside a macro makes nothing; a corner within another macro's side is refused with a
  // hint; an existing corner is taken and the hint goes; Escape cancels the open polygon.
  Click(300, 250);
  EXPECT_EQ(beeps, 1);
  Click(300, 400);
  EXPECT_EQ(Label("Hint"), Corner_Refused_Hint);
  Click(100, 400);
  EXPECT_TRUE(Label("Hint").isEmpty());
  Click(1200, 700);
  EXPECT_EQ(Node_Count(project), 7);
  QTest::keyClick(form->Picture_Widget(), Qt::Key_Escape);
  EXPECT_EQ(Node_Count(project), 6);

  Choose_Mode(Design_Mode::BorderT);
  Click(300, 100, QPoint(0, 1));  // the bottom side of the first macro
  ASSERT_EQ(project.Border.count(), 1);
  EXPECT_EQ(project.Border[1].Node_A, 1);
  EXPECT_EQ(project.Border[1].Node_B, 2);
  EXPECT_EQ(project.Mesh_Valid, False_Flag);
  test::Take_Screenshot(*form, "design_borders_drawn");
  Key(Qt::Key_Z);
  EXPECT_EQ(project.Border.count(), 0);
  host.files = {dir.file("design")};
  form->Store_Picture_Command();
  EXPECT_TRUE(std::filesystem::exists(dir.file("design.jpg")));  // no extension: JPEG
}

TEST_F(Design_Fixture, TheExampleWallInThreeViews) {
  ASSERT_TRUE(Load_Example(Work_State::Design));
  Make_Form();
  form->Form_Shown();
  // The example's frame is smaller than its wall: widen it through the dialog to see it whole.
  frmGraf& graf = form->Show_Graf();
  for (auto [field, text] : {std::pair{"Grid_X_Max", "4500"},
                             {"Grid_Y_Max", "3500"},
                             {"Grid_X_Increment", "250"},
                             {"Grid_Y_Increment", "250"}})
    graf.Field(field)->setText(text);
  // One entry that is no number refuses them all.
  graf.Field("Snap_Size")->setText("x");
  QTest::mouseClick(graf.findChild<QPushButton*>("Apply"), Qt::LeftButton);
  EXPECT_EQ(host.messages, std::vector<std::string>{Number_Error_Message});
  EXPECT_NE(project.Grid_X_Max, 4500);
  graf.Field("Snap_Size")->setText(QString::number(project.Snap_Size));
  ASSERT_TRUE(graf.Apply());
  graf.hide();
  Choose_Mode(Design_Mode::Macros);
  project.Current_Macro = 2;
  // A third macro half drawn on the right of the wall: two corners and the band to the pointer.
  Click(3000, 1000);
  Click(4000, 1000);
  QTest::mouseMove(form->Picture_Widget(), Pixel(4000, 2000) + QPoint(6, 4));
  test::Take_Screenshot(*form, "design_macros_wall");
  Choose_Mode(Design_Mode::BorderT);  // leaving the mode cancels the open polygon
  EXPECT_EQ(Node_Count(project), 10);
  test::Take_Screenshot(*form, "design_borders_wall");
  form->Show_Graf();
  graf.Tabs()->setCurrentIndex(1);
  test::Take_Screenshot(graf, "design_grid_dialog");
}

struct Example : test::Form_Fixture {
  Example() { Load_Example(Work_State::Design); }
};

TEST(EditorForms, TypedValuesReachTheProjectAtApplyBehindTheGateAndRefusalsKeepTheOldOnes) {
  Example e;
  bool ok = false;
  frmPropertyEditor macro(Editor_Kind::MacroProp, 2, e.context, nullptr, ok);
  ASSERT_TRUE(ok);
  macro.show();
  QLineEdit* thickness = macro.Entry("Thickness [mm]");
  Type(thickness, "750");
  EXPECT_EQ(thickness->text(), "750.000");
  EXPECT_EQ(macro.focusWidget(), macro.Entry("Present from [hours]"));  // Enter moves on
  EXPECT_EQ(e.project.Macro[2].Thickness, 1000);
  QTest::mouseClick(macro.Apply_Button(), Qt::LeftButton);
  EXPECT_EQ(e.project.Macro[2].Thickness, 750);
  EXPECT_EQ(e.state_changes, 1);
  EXPECT_TRUE(e.host.questions.empty());  // no results, nothing to ask

  const Project before = e.project;
  frmPropertyEditor plane(Editor_Kind::OutofPlane, 0, e.context, nullptr, ok);
  ASSERT_TRUE(ok);
  plane.show();
  QLineEdit* ro = plane.Entry("Ro [mm] =");
  const struct {
    const char* typed;
    const char* shown;
    std::vector<std::string> messages;
  } rows[] = {{"12,5x", "0.000", {Number_Error_Message}},
              {"-3", "0.000", {"Ro cannot be below 0."}},
              {"12,5", "12.500", {}}};  // either decimal sign
  for (const auto& row : rows) {
    e.host.messages.clear();
    Type(ro, row.typed);
    EXPECT_EQ(ro->text(), row.shown) << row.typed;
    EXPECT_EQ(e.host.messages, row.messages) << row.typed;
  }
  plane.findChild<QRadioButton*>("Option1_2")->click();  // Axisymmetrical
  QTest::mouseClick(plane.Cancel_Button(), Qt::LeftButton);
  EXPECT_EQ(e.project, before);
  EXPECT_EQ(e.state_changes, 1);

  // In the imperial system a length is shown with the rounded factor and taken back with the exact
  // one (100 mm shows as 3.937 in, which gives 99.9998 mm), and a temperature in degrees Fahrenheit
  // takes its offset: 44.6 oF is 7 oC. With results computed Apply asks first.
  e.project.Metric_Units = False_Flag;
  e.project.Node_X[2] = 100;
  e.shell.State = Work_State::Computed;
  frmPropertyEditor form(Editor_Kind::Node, 2, e.context, nullptr, ok);
  ASSERT_TRUE(ok);
  form.show();
  QLineEdit* x = form.Entry("X [in]:");
  EXPECT_EQ(x->text(), "3.937");
  Type(x, "3.937");
  // No: the results stay and so does the node; the editor stays open.
  e.host.answers = {Answer::No, Answer::Yes};
  QTest::mouseClick(form.Apply_Button(), Qt::LeftButton);
  EXPECT_EQ(e.host.questions, std::vector<std::string>{Destroy_Output_Question});
  EXPECT_EQ(e.project.Node_X[2], 100);
  EXPECT_EQ(e.shell.State, Work_State::Computed);
  EXPECT_TRUE(form.isVisible());
  QTest::mouseClick(form.Apply_Button(), Qt::LeftButton);
  EXPECT_NEAR(e.project.Node_X[2], 99.9998, 1e-9);
  EXPECT_EQ(e.shell.State, Work_State::Run_Set);

  frmFunction wizard(Function_Family::Temperature, 1, e.context, nullptr, ok);
  ASSERT_TRUE(ok);
  wizard.show();
  wizard.Form_Option(Function_Form::Constant)->click();
  Type(wizard.Value_Entry(Function_Value::Constant), "44.6");
  QTest::mouseClick(wizard.Apply_Button(), Qt::LeftButton);
  EXPECT_NEAR(e.project.Temperature_Functions[1].Constant_Value, 7, 1e-9);
}

// The row of the picture where the preview's curve (its red pixels) crosses column x; -1 if none.
int Curve_Row(const QImage& image, double x) {
  for (int y = 0; y < image.height(); ++y) {
    const QColor c = image.pixelColor(static_cast<int>(std::lround(x)), y);
    if (c.red() > 150 && c.green() < 80 && c.blue() < 80) return y;
  }
  return -1;
}

TEST(FunctionWizardForm, ThePreviewDrawsTheTableWhereItsValuesLie) {
  Example e;
  bool ok = false;
  frmFunction wizard(Function_Family::Displacement, 1, e.context, nullptr, ok);
  ASSERT_TRUE(ok);
  wizard.show();
  wizard.Form_Option(Function_Form::Piecewise)->click();
  QTableWidget* grid = wizard.Grid();
  ASSERT_EQ(grid->rowCount(), 2);
  auto set_cell = [&](int row, int column, const QString& text) {
    grid->item(row, column)->setText(text);
    QApplication::processEvents();
  };
  // A ramp from (0, 0) to (100, 100): the frame runs from -10 to 110 hours and, with 5 % room,
  // from -5 to 105 mm.
  set_cell(1, 0, "100");
  set_cell(0, 1, "0");
  set_cell(1, 1, "100");
  set_cell(0, 0, "0");
  Function_Preview* preview = wizard.Preview();
  preview->resize(420, 300);
  const QImage image = preview->grab().toImage();
  const double left = 60, right = image.width() - 15, top = 25, bottom = image.height() - 40;
  auto px = [&](double t) { return left + (t + 10) / 120 * (right - left); };
  auto py = [&](double v) { return bottom - (v + 5) / 110 * (bottom - top); };
  // On the ramp the value is t; outside the table the function stays at its end values.
  for (auto [t, v] :
       {std::pair{10.0, 10.0}, {25.0, 25.0}, {50.0, 50.0}, {90.0, 90.0}, {-5.0, 0.0}, {105.0, 100.0}})
    EXPECT_NEAR(Curve_Row(image, px(t)), py(v), 2.5) << "at t = " << t;
  // A time typed out of order is refused and the old one shows again.
  set_cell(0, 0, "150");
  EXPECT_EQ(e.host.messages, std::vector<std::string>{Function_Times_Out_Of_Order});
  EXPECT_EQ(grid->item(0, 0)->text(), "0.000");
  QTest::mouseClick(wizard.Apply_Button(), Qt::LeftButton);
  EXPECT_EQ(e.project.Displacement_Functions[1].Point_Value[2], 100);
}

TEST(EditorScreens, TwoEditorsAndTheWizardAsTheUserSeesThem) {
  if (qEnvironmentVariableIsEmpty("PVX_SCREENSHOT_DIR")) GTEST_SKIP() << "no screenshot folder";
  Example e;
  bool ok = false;
  e.project.Circuit.add(e.project.Circuit_Default);
  const std::pair<Editor_Kind, int> editors[] = {{Editor_Kind::BorH, 1},
                                                 {Editor_Kind::Circuit, e.project.Circuit.count()}};
  for (auto [kind, index] : editors) {
    frmPropertyEditor form(kind, index, e.context, nullptr, ok);
    ASSERT_TRUE(ok);
    form.show();
    test::Take_Screenshot(form, kind == Editor_Kind::BorH ? "frmBorH" : "frmCircuit");
  }
  frmFunction wizard(Function_Family::Temperature, 2, e.context, nullptr, ok);
  ASSERT_TRUE(ok);
  wizard.show();
  test::Take_Screenshot(wizard, "frmFunction");
  wizard.Form_Option(Function_Form::Piecewise)->click();
  test::Take_Screenshot(wizard, "frmFunction_piecewise");
}

}  // namespace
}  // namespace pvx
