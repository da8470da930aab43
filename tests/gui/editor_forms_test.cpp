// The property editors and the function wizard driven as a user drives them: typed text and Enter,
// the buttons, and the Project checked afterwards. Questions, messages and file choosers go
// through a scripted host.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

#include "app/project_load.h"
#include "app/shell_host_fake.h"
#include "app/units.h"
#include "editors.h"
#include "frm_function.h"
#include "frm_property.h"
#include "screenshot.h"
#include "support/temp_dir.h"

namespace pvx {
namespace {

// The example project, loaded through the core from a copy beside its database.
struct Example {
  test::Temp_Dir dir;
  Project project;
  Shell shell;
  test::Scripted_Host host;
  test::Memory_Store store;
  int state_changes = 0;
  Gui_Context context{project, shell, store, host, [this] { ++state_changes; }};

  Example() {
    for (const char* name : {"WALL.PVX", "PVX-Concrete.txt"})
      std::filesystem::copy_file(test::Source_Path(std::string("examples/") + name), dir.file(name));
    Read_Report report;
    const Load_Result result = Load_Project(dir.file("WALL.PVX"), dir.path().string(), project, report);
    EXPECT_EQ(result, Load_Result::Loaded) << report.message;
    shell.Work_Directory = dir.path().string();
    shell.State = Work_State::Design;
  }
};

// Types into an entry as a user does: the old text selected, the new one typed, then Enter.
void Type(QLineEdit* entry, const QString& text) {
  ASSERT_NE(entry, nullptr);
  entry->setFocus();
  entry->selectAll();
  QTest::keyClicks(entry, text);
  QTest::keyClick(entry, Qt::Key_Return);
}

TEST(EditorForms, TypedValuesReachTheProjectAtApplyAndNotBefore) {
  Example e;
  bool ok = false;
  frmPropertyEditor form(Editor_Kind::MacroProp, 2, e.context, nullptr, ok);
  ASSERT_TRUE(ok);
  EXPECT_EQ(form.objectName(), "frmMacroProp");
  form.show();
  QLineEdit* thickness = form.Entry("Thickness [mm]");
  ASSERT_NE(thickness, nullptr);
  EXPECT_EQ(thickness->text(), "1000.000");
  Type(thickness, "750");
  EXPECT_EQ(thickness->text(), "750.000");
  // Enter moves on to the next field.
  EXPECT_EQ(form.focusWidget(), form.Entry("Present from [hours]"));
  EXPECT_EQ(e.project.Macro[2].Thickness, 1000);
  QTest::mouseClick(form.Apply_Button(), Qt::LeftButton);
  EXPECT_EQ(e.project.Macro[2].Thickness, 750);
  EXPECT_EQ(e.project.Macro[1].Thickness, 1000);
  EXPECT_EQ(e.state_changes, 1);
  EXPECT_TRUE(e.host.questions.empty());  // no results, nothing to ask
  EXPECT_EQ(form.result(), QDialog::Accepted);
}

TEST(EditorForms, ARefusedValueKeepsTheOldOneWithTheMessageAndCancelLeavesTheProject) {
  Example e;
  const Project before = e.project;
  bool ok = false;
  frmPropertyEditor form(Editor_Kind::OutofPlane, 0, e.context, nullptr, ok);
  ASSERT_TRUE(ok);
  form.show();
  QLineEdit* ro = form.Entry("Ro [mm] =");
  Type(ro, "12,5x");
  ASSERT_EQ(e.host.messages.size(), 1u);
  EXPECT_EQ(e.host.messages[0], Number_Error_Message);
  EXPECT_EQ(ro->text(), "0.000");
  Type(ro, "-3");
  ASSERT_EQ(e.host.messages.size(), 2u);
  EXPECT_EQ(e.host.messages[1], "Ro cannot be below 0.");
  Type(ro, "12,5");  // either decimal sign
  EXPECT_EQ(ro->text(), "12.500");
  form.findChild<QRadioButton*>("Option1_2")->click();  // Axisymmetrical
  QTest::mouseClick(form.Cancel_Button(), Qt::LeftButton);
  EXPECT_EQ(form.result(), QDialog::Rejected);
  EXPECT_EQ(e.project, before);
  EXPECT_EQ(e.state_changes, 0);
}

TEST(EditorForms, ImperialEntryAndTheGateBeforeResultsAreDestroyed) {
  Example e;
  e.project.Metric_Units = False_Flag;
  e.project.Node_X[2] = 100;
  e.shell.State = Work_State::Computed;
  bool ok = false;
  frmPropertyEditor form(Editor_Kind::Node, 2, e.context, nullptr, ok);
  ASSERT_TRUE(ok);
  form.show();
  QLineEdit* x = form.Entry("X [in]:");
  EXPECT_EQ(x->text(), "3.937");
  Type(x, "3.937");
  // No: the results stay and so does the node; the editor stays open.
  e.host.answers = {Answer::No};
  QTest::mouseClick(form.Apply_Button(), Qt::LeftButton);
  ASSERT_EQ(e.host.questions.size(), 1u);
  EXPECT_EQ(e.host.questions[0], Destroy_Output_Question);
  EXPECT_EQ(e.project.Node_X[2], 100);
  EXPECT_EQ(e.shell.State, Work_State::Computed);
  EXPECT_TRUE(form.isVisible());
  e.host.answers = {Answer::Yes};
  QTest::mouseClick(form.Apply_Button(), Qt::LeftButton);
  EXPECT_NEAR(e.project.Node_X[2], 99.9998, 1e-9);
  EXPECT_EQ(e.shell.State, Work_State::Run_Set);
  EXPECT_EQ(e.state_changes, 1);
}

TEST(EditorForms, TheSeamOpensAModalEditorAndReportsTheChange) {
  Example e;
  ASSERT_GE(e.project.Border.count(), 1);
  bool typed = false;
  QTimer::singleShot(0, [&] {
    auto* form = dynamic_cast<frmPropertyEditor*>(QApplication::activeModalWidget());
    ASSERT_NE(form, nullptr);
    Type(form->Entry("Coeff. [W/m2K]:"), "8");
    typed = true;
    QTest::mouseClick(form->Apply_Button(), Qt::LeftButton);
  });
  EXPECT_TRUE(Open_Property_Editor(Property_Editor::frmConvection, 1, e.context, nullptr));
  EXPECT_TRUE(typed);
  EXPECT_EQ(e.project.Border[1].Thermal_Periods[1].Convection_Coefficient, 8);
  // A number that names nothing opens nothing and says so.
  EXPECT_FALSE(Open_Property_Editor(Property_Editor::frmNode, 999, e.context, nullptr));
  EXPECT_EQ(e.host.messages.back(), Editor_No_Record_Message);
}

TEST(EditorForms, AFunctionFieldAddsAFunctionAndOpensTheWizardOnItsFamily) {
  Example e;
  const int count = e.project.Load_Functions.count();
  if (e.project.Line_Load.empty()) e.project.Line_Load.add(e.project.Load_Default);
  bool ok = false;
  frmPropertyEditor load(Editor_Kind::LoadL, 1, e.context, nullptr, ok);
  ASSERT_TRUE(ok);
  load.show();
  e.host.answers = {Answer::Yes};
  Type(load.Entry("Load function:"), QString::number(count + 5));
  ASSERT_EQ(e.host.questions.size(), 1u);
  EXPECT_EQ(e.host.questions[0], "The actual number of Load functions is " + std::to_string(count) +
                                     " !  Do you want to add a function ?");
  EXPECT_EQ(load.Entry("Load function:")->text(), QString::number(count + 1));
  EXPECT_EQ(e.project.Load_Functions.count(), count + 1);

  QString wizard_title, wizard_number;
  QTimer::singleShot(0, [&] {
    auto* wizard = dynamic_cast<frmFunction*>(QApplication::activeModalWidget());
    ASSERT_NE(wizard, nullptr);
    wizard_title = wizard->windowTitle();
    wizard_number = wizard->Number_Entry()->text();
    wizard->reject();
  });
  QPushButton* button = nullptr;
  for (QPushButton* b : load.findChildren<QPushButton*>())
    if (b->text() == "Function...") button = b;
  ASSERT_NE(button, nullptr);
  QTest::mouseClick(button, Qt::LeftButton);
  EXPECT_EQ(wizard_title, "Function wizzard - Load Function ");
  EXPECT_EQ(wizard_number, QString::number(count + 1));
}

TEST(FunctionWizardForm, TypingANumberAboveTheCountAddsAFunction) {
  Example e;
  const int count = e.project.Temperature_Functions.count();
  bool ok = false;
  frmFunction wizard(Function_Family::Temperature, 1, e.context, nullptr, ok);
  ASSERT_TRUE(ok);
  wizard.show();
  e.host.answers = {Answer::No, Answer::Yes};
  Type(wizard.Number_Entry(), QString::number(count + 3));
  EXPECT_EQ(wizard.Number_Entry()->text(), "1");
  EXPECT_EQ(e.project.Temperature_Functions.count(), count);
  Type(wizard.Number_Entry(), QString::number(count + 3));
  EXPECT_EQ(wizard.Number_Entry()->text(), QString::number(count + 1));
  ASSERT_EQ(e.project.Temperature_Functions.count(), count + 1);
  EXPECT_EQ(e.project.Temperature_Functions[count + 1], e.project.Temperature_Functions[count]);
  EXPECT_EQ(e.host.questions.size(), 2u);

  // Make it a constant 7 oC and apply.
  wizard.Form_Option(Function_Form::Constant)->click();
  Type(wizard.Value_Entry(Function_Value::Constant), "7");
  QTest::mouseClick(wizard.Apply_Button(), Qt::LeftButton);
  EXPECT_EQ(e.project.Temperature_Functions[count + 1].Is_Constant, True_Flag);
  EXPECT_EQ(e.project.Temperature_Functions[count + 1].Constant_Value, 7);
  EXPECT_EQ(e.state_changes, 1);
}

TEST(FunctionWizardForm, SineTermsAreAddedAndEditedOneAtATime) {
  Example e;
  bool ok = false;
  frmFunction wizard(Function_Family::Water_Pressure, 1, e.context, nullptr, ok);
  ASSERT_TRUE(ok);
  wizard.show();
  bool caption = false;
  for (QLabel* label : wizard.findChildren<QLabel*>())
    caption |= label->text() == "Water pressure function no:";
  EXPECT_TRUE(caption);
  wizard.Form_Option(Function_Form::Periodical)->click();
  const int terms = Sine_Count(wizard.Session().current);
  QPushButton* add = nullptr;
  for (QPushButton* b : wizard.findChildren<QPushButton*>())
    if (b->text() == "Add") add = b;
  ASSERT_NE(add, nullptr);
  QTest::mouseClick(add, Qt::LeftButton);
  auto* up_down = wizard.findChild<QSpinBox*>("UpDown1");
  EXPECT_EQ(up_down->maximum(), terms + 1);
  EXPECT_EQ(up_down->value(), terms + 1);
  EXPECT_EQ(wizard.Value_Entry(Function_Value::Amplitude)->text(), "3.000");  // a new term
  Type(wizard.Value_Entry(Function_Value::Amplitude), "2.5");
  up_down->setValue(1);
  EXPECT_EQ(wizard.Value_Entry(Function_Value::Amplitude)->text(),
            QString::fromStdString(Format_Number(e.project.Water_Pressure_Functions[1].Amplitude[1], 12, 3))
                .trimmed());
  QTest::mouseClick(wizard.Apply_Button(), Qt::LeftButton);
  const Function& f = e.project.Water_Pressure_Functions[1];
  ASSERT_EQ(Sine_Count(f), terms + 1);
  EXPECT_EQ(f.Amplitude[terms + 1], 2.5);
  EXPECT_EQ(f.Is_Periodical, True_Flag);
  EXPECT_EQ(f.Is_Constant, False_Flag);
}

// The row of the picture where the preview's curve (its red pixels) crosses column x; -1 if none.
int Curve_Row(const QImage& image, int x) {
  for (int y = 0; y < image.height(); ++y) {
    const QColor c = image.pixelColor(x, y);
    if (c.red() > 150 && c.green() < 80 && c.blue() < 80) return y;
  }
  return -1;
}

TEST(FunctionWizardForm, ThePreviewDrawsTheCurveWhereItsValuesLie) {
  Example e;
  bool ok = false;
  frmFunction wizard(Function_Family::Displacement, 1, e.context, nullptr, ok);
  ASSERT_TRUE(ok);
  wizard.show();
  wizard.Form_Option(Function_Form::Piecewise)->click();
  // A ramp from (0, 0) to (100, 100): the frame runs from -10 to 110 hours and, with 5 % room,
  // from -5 to 105 mm.
  QTableWidget* grid = wizard.Grid();
  ASSERT_EQ(grid->rowCount(), 2);
  auto set_cell = [&](int row, int column, const QString& text) {
    grid->item(row, column)->setText(text);
    QApplication::processEvents();
  };
  set_cell(1, 0, "100");
  set_cell(0, 1, "0");
  set_cell(1, 1, "100");
  set_cell(0, 0, "0");
  ASSERT_EQ(wizard.Session().current.Point_Time[2], 100);
  ASSERT_EQ(wizard.Session().current.Point_Value[2], 100);
  Function_Preview* preview = wizard.Preview();
  preview->resize(420, 300);
  const QImage image = preview->grab().toImage();
  const double left = 60, right = image.width() - 15, top = 25, bottom = image.height() - 40;
  auto px = [&](double t) { return left + (t + 10) / 120 * (right - left); };
  auto py = [&](double v) { return bottom - (v + 5) / 110 * (bottom - top); };
  for (double t : {10.0, 25.0, 50.0, 90.0}) {
    const int row = Curve_Row(image, static_cast<int>(std::lround(px(t))));
    EXPECT_NEAR(row, py(t), 2.5) << "at t = " << t;  // on the ramp the value is t
  }
  // Outside the table the function stays at its end values.
  EXPECT_NEAR(Curve_Row(image, static_cast<int>(std::lround(px(-5)))), py(0), 2.5);
  EXPECT_NEAR(Curve_Row(image, static_cast<int>(std::lround(px(105)))), py(100), 2.5);
  // A time typed out of order is refused and the old one shows again.
  set_cell(0, 0, "150");
  ASSERT_FALSE(e.host.messages.empty());
  EXPECT_EQ(e.host.messages.back(), Function_Times_Out_Of_Order);
  EXPECT_EQ(grid->item(0, 0)->text(), "0.000");
}

TEST(FunctionWizardForm, ReadFileFillsTheTableThroughTheChooser) {
  Example e;
  const std::string good = e.dir.file("table.txt"), bad = e.dir.file("bad.txt");
  test::Write_Text(good, "0,12\n12,18\n24,11.5\n");
  test::Write_Text(bad, "0,12\nabc,4\n");
  bool ok = false;
  frmFunction wizard(Function_Family::Temperature, 1, e.context, nullptr, ok);
  ASSERT_TRUE(ok);
  wizard.show();
  wizard.Form_Option(Function_Form::Piecewise)->click();
  e.host.files = {good, bad, ""};
  QTest::mouseClick(wizard.Read_File_Button(), Qt::LeftButton);
  ASSERT_EQ(e.host.chooser_titles.size(), 1u);
  EXPECT_EQ(e.host.chooser_titles[0], "Select file for function data");
  EXPECT_EQ(e.host.chooser_filters[0], "Alle Files (*.*)|*.*|Projekten(*.txt)|*.txt|");
  QTableWidget* grid = wizard.Grid();
  ASSERT_EQ(grid->rowCount(), 3);
  EXPECT_EQ(grid->item(2, 0)->text(), "24.000");
  EXPECT_EQ(grid->item(2, 1)->text(), "11.500");
  QTest::mouseClick(wizard.Read_File_Button(), Qt::LeftButton);  // a faulty file: a message, no change
  EXPECT_EQ(e.host.messages.size(), 1u);
  EXPECT_EQ(grid->rowCount(), 3);
  QTest::mouseClick(wizard.Read_File_Button(), Qt::LeftButton);  // cancelled
  EXPECT_EQ(e.host.messages.size(), 1u);
  QTest::mouseClick(wizard.Apply_Button(), Qt::LeftButton);
  const Function& f = e.project.Temperature_Functions[1];
  ASSERT_EQ(Point_Count(f), 3);
  EXPECT_EQ(f.Point_Value[2], 18);
  EXPECT_EQ(f.Is_Piecewise, True_Flag);
}

TEST(EditorScreens, TwoEditorsAndTheWizardAsTheUserSeesThem) {
  if (qEnvironmentVariableIsEmpty("PVX_SCREENSHOT_DIR")) GTEST_SKIP() << "no screenshot folder";
  Example e;
  bool ok = false;
  {
    frmPropertyEditor form(Editor_Kind::BorH, 1, e.context, nullptr, ok);
    ASSERT_TRUE(ok);
    form.show();
    test::Take_Screenshot(form, "frmBorH");
  }
  {
    Circuit c = e.project.Circuit_Default;
    e.project.Circuit.add(c);
    frmPropertyEditor form(Editor_Kind::Circuit, e.project.Circuit.count(), e.context, nullptr, ok);
    ASSERT_TRUE(ok);
    form.show();
    test::Take_Screenshot(form, "frmCircuit");
  }
  {
    frmFunction wizard(Function_Family::Temperature, 2, e.context, nullptr, ok);
    ASSERT_TRUE(ok);
    wizard.show();
    test::Take_Screenshot(wizard, "frmFunction");
    wizard.Form_Option(Function_Form::Piecewise)->click();
    test::Take_Screenshot(wizard, "frmFunction_piecewise");
  }
}

}  // namespace
}  // namespace pvx
