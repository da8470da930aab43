// The design panel's two generators driven as a user drives them: a circular pier with a central
// void from "Generation of circular polygons", and a wall drawn by clicks with a round duct from a
// right click's "Hole in this macro". The typed numbers go through the entry rule and the units, a
// refusal stays in the dialog and costs nothing, one Ctrl+Z takes a generation back; borders are
// clicked onto the generated sides and both sections mesh and compute in the run window.
#include <gtest/gtest.h>

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QRadioButton>
#include <algorithm>
#include <cmath>
#include <numbers>

#include "form_fixture.h"
#include "frm_design.h"
#include "frm_generate.h"
#include "material/database.h"
#include "mesh/mesh_panel.h"
#include "mesh/split_history.h"
#include "results/result_files.h"

namespace pvx {
namespace {

using test::Type;

double Polygon_Area(double radius, int segments) {
  return segments / 2.0 * radius * radius * std::sin(2 * std::numbers::pi / segments);
}

double Macros_Area(const Project& p) {
  double area = 0;
  for (const Macro& m : p.Macro)
    for (int k = 1; k <= 4; ++k) {
      const int a = m.Corner[k], b = m.Corner[k % 4 + 1];
      area += (p.Node_X[a] * p.Node_Y[b] - p.Node_X[b] * p.Node_Y[a]) / 2;
    }
  return area;
}

struct Generation_Fixture : ::testing::Test, test::Form_Fixture {
  std::unique_ptr<frmDesign> form;

  Generation_Fixture() {
    New_Project(project);
    Set_Graphical_Defaults(project);  // 0..2000 by 0..1500, grid of 100, grid snapping on
    project.Snap_Mode = 1;
    std::string message;
    EXPECT_TRUE(Read_Material_Database(dir.file("PVX-Concrete.txt"), project.Material, project.Material_Color,
                                       message))
        << message;
    shell.State = Work_State::Design;
    shell.Work_Directory = folder.path();
    form = std::make_unique<frmDesign>(context);
    form->Beep = [] {};
    form->resize(1100, 800);
    form->show();
    QApplication::processEvents();
  }
  QPoint Pixel(double x, double y) const {
    return {World_To_X(form->Picture(), x), World_To_Y(form->Picture(), y)};
  }
  void Click(double x, double y, Qt::MouseButton b = Qt::LeftButton) {
    QTest::mouseClick(form->Picture_Widget(), b, Qt::NoModifier, Pixel(x, y));
  }
  void Choose_Mode(Design_Mode mode) {
    auto* button = form->findChild<QRadioButton*>(QString("Option1_%1").arg(static_cast<int>(mode)));
    ASSERT_NE(button, nullptr);
    QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, QPoint(5, button->height() / 2));
  }
  frmGenerate* Dialog(const char* name) const { return form->findChild<frmGenerate*>(name); }
  // Types the texts into the dialog's fields and presses "Apply".
  void Fill_And_Apply(frmGenerate& d, const std::vector<QString>& texts) {
    for (std::size_t i = 0; i < texts.size(); ++i) {
      d.Entry(static_cast<int>(i))->setFocus();
      d.Entry(static_cast<int>(i))->selectAll();
      QTest::keyClicks(d.Entry(static_cast<int>(i)), texts[i]);
    }
    QTest::mouseClick(d.Apply_Button(), Qt::LeftButton);
  }
  // A thermal border clicked onto the middle of every side between the nodes on a circle (within
  // half a millimetre). The sides of a circle lie off the grid: the user turns its snapping off.
  int Border_Circle(double cx, double cy, double radius) {
    project.Snap_Mode = 0;
    Choose_Mode(Design_Mode::BorderT);
    std::vector<std::pair<double, int>> on;  // angle, node
    for (int n = 1; n <= Node_Count(project); ++n)
      if (std::fabs(std::hypot(project.Node_X[n] - cx, project.Node_Y[n] - cy) - radius) < 0.5)
        on.emplace_back(std::atan2(project.Node_Y[n] - cy, project.Node_X[n] - cx), n);
    std::sort(on.begin(), on.end());
    for (std::size_t i = 0; i < on.size(); ++i) {
      const int a = on[i].second, b = on[(i + 1) % on.size()].second;
      Click((project.Node_X[a] + project.Node_X[b]) / 2, (project.Node_Y[a] + project.Node_Y[b]) / 2);
    }
    return project.Border.count();
  }
  // The mesh of the macros as they are, computed for 24 hours by the run window.
  void Mesh_And_Compute(const char* name) {
    Mesh_Session s;
    std::string message;
    project.Mesh_Element.clear();
    ASSERT_TRUE(Open_Mesh_Session(project, s, message)) << message;
    const double area = Macros_Area(project);
    double mesh_area = 0;
    for (const Mesh_Element& e : project.Mesh_Element)
      for (int k = 1; k <= 4; ++k) {
        const Mesh_Node& a = project.Mesh_Node[e.Corner[k]];
        const Mesh_Node& b = project.Mesh_Node[e.Corner[k % 4 + 1]];
        mesh_area += (a.X * b.Y - b.X * a.Y) / 2;
      }
    EXPECT_NEAR(mesh_area, area, 1e-9 * area);
    project.Result_File_Name = std::string(name) + ".RES";
    project.Project_File = dir.file(std::string(name) + ".PVX");
    project.Computation_Time = 24;
    project.Period.clear();
    project.Period.add(Period{0, 24, 12, 2});
    project.Mechanical_Included = False_Flag;
    shell.State = Work_State::Run_Set;
    ASSERT_TRUE(Compute());
    // Twelve steps of two hours, and the hydration has warmed the concrete from its 20 oC.
    Run_Index index;
    ASSERT_TRUE(Read_Run_Index_File(dir.file(std::string(name) + ".RES"), project.File_Version, false, index,
                                    message))
        << message;
    EXPECT_EQ(Number_Of_Steps(index), 12);
    EXPECT_GT(index.Extremes[1].PeriodMax, 21);
    EXPECT_NEAR(index.Extremes[1].PeriodMin, 20, 1e-3);
  }
};

TEST_F(Generation_Fixture, ACircularPierWithACentralVoidFromTheDialog) {
  form->findChild<QAction*>("Generate_Circle")->trigger();
  frmGenerate* d = Dialog("frmCircle");
  ASSERT_NE(d, nullptr);
  ASSERT_TRUE(d->isVisible());
  EXPECT_EQ(d->windowTitle(), "Generation of circular polygons");
  // It opens on a disc of 16 segments in the middle of the frame.
  EXPECT_EQ(d->Entry(0)->text(), "1000.000");
  EXPECT_EQ(d->Entry(3)->text(), "0.000");
  d->Material_List()->setCurrentText("C35/45 CEM III/B");

  // A text that is no number is told with its field, and nothing is asked or made.
  Fill_And_Apply(*d, {"1000", "750", "6x0", "250", "16"});
  EXPECT_EQ(d->Refusal().toStdString(), std::string("Outer radius: ") + Number_Error_Message);
  // A ring whose inner radius is not inside it is the generator's refusal, shown in the dialog.
  Fill_And_Apply(*d, {"1000", "750", "600", "650", "16"});
  EXPECT_FALSE(d->Refusal().isEmpty());
  EXPECT_TRUE(d->isVisible());
  EXPECT_EQ(project.Macro.count(), 0);
  EXPECT_TRUE(host.questions.empty());
  EXPECT_TRUE(form->Undo_Stack().Undo_Stack.empty());

  // Either decimal sign is taken.
  Fill_And_Apply(*d, {"1000", "750", "600", "250,0", "16"});
  EXPECT_FALSE(d->isVisible());
  form->Undo_Edit();
  d = &form->Show_Circle_Dialog();  // it opens again on the circle last made
  EXPECT_EQ(d->Entry(3)->text(), "250.000");
  test::Take_Screenshot(*d, "design_circle_dialog");
  QTest::mouseClick(d->Apply_Button(), Qt::LeftButton);
  EXPECT_TRUE(d->Refusal().isEmpty());
  EXPECT_FALSE(d->isVisible());
  ASSERT_GT(project.Macro.count(), 0);
  EXPECT_EQ(project.Macro.count() % 16, 0);
  EXPECT_NEAR(Macros_Area(project), Polygon_Area(600, 16) - Polygon_Area(250, 16), 1e-6);
  for (const Macro& m : project.Macro)
    EXPECT_EQ(m.Material, "C35/45 CEM III/B");
  EXPECT_EQ(form->Undo_Stack().Undo_Stack.size(), 1u);
  EXPECT_TRUE(form->Hint_Text().contains("macros and")) << form->Hint_Text().toStdString();
  test::Take_Screenshot(*form, "design_circular_pier");

  // The outer face and the void's face take borders like any drawn sides.
  EXPECT_EQ(Border_Circle(1000, 750, 600), 16);
  EXPECT_EQ(Border_Circle(1000, 750, 250), 32);
  test::Take_Screenshot(*form, "design_circular_pier_borders");
  Mesh_And_Compute("PIER");
}

TEST_F(Generation_Fixture, AWallWithARoundDuctFromTheMacrosPopupInInches) {
  Choose_Mode(Design_Mode::Macros);
  for (auto [x, y] : {std::pair{200.0, 300.0}, {1800.0, 300.0}, {1800.0, 1100.0}, {200.0, 300.0 + 800}})
    Click(x, y);
  ASSERT_EQ(project.Macro.count(), 1);
  project.Macro[1].Material = "C30/37 CEM I";

  // The right click in the wall offers the hole; the dialog opens on its middle.
  form->Choose_Popup_Entry = [](const QStringList& entries, QPoint) {
    return static_cast<int>(entries.indexOf("Hole in this macro"));
  };
  Click(600, 500, Qt::RightButton);
  frmGenerate* d = Dialog("frmHole");
  ASSERT_NE(d, nullptr);
  ASSERT_TRUE(d->isVisible());
  EXPECT_EQ(std::tuple(d->Entry(0)->text(), d->Entry(1)->text(), d->Entry(2)->text()),
            std::tuple(QString("1"), QString("1000.000"), QString("700.000")));

  // The same dialog in inches: a hole of radius 5.906 in (150 mm) at the wall's middle.
  project.Metric_Units = False_Flag;
  d = &form->Show_Hole_Dialog(1);
  const double in = Convert_Unit(true, Unit_Length_mm, 1.0);
  EXPECT_EQ(d->Entry(1)->text().toDouble(), std::round(1000 * in * 1000) / 1000);
  // Too big to keep its margin from the wall's faces: refused, nothing asked, nothing changed.
  const Project before = project;
  Fill_And_Apply(
      *d, {"1", QString::number(1000 * in), QString::number(700 * in), QString::number(380 * in), "16"});
  EXPECT_FALSE(d->Refusal().isEmpty());
  EXPECT_TRUE(project == before);
  EXPECT_TRUE(host.questions.empty());
  EXPECT_EQ(d->findChildren<QLabel*>().at(3)->text(), "Radius [in]:");
  test::Take_Screenshot(*d, "design_hole_refused");
  d->Entry(3)->setText(QString::number(150 * in));
  QTest::mouseClick(d->Apply_Button(), Qt::LeftButton);
  ASSERT_TRUE(d->Refusal().isEmpty()) << d->Refusal().toStdString();
  project.Metric_Units = True_Flag;
  const double radius = Convert_Unit(false, Unit_Length_mm, QString::number(150 * in).toDouble());
  EXPECT_NEAR(Macros_Area(project), 1600.0 * 800 - Polygon_Area(radius, 16), 1e-3);
  for (const Macro& m : project.Macro)
    EXPECT_EQ(m.Material, "C30/37 CEM I");
  test::Take_Screenshot(*form, "design_wall_duct");

  // One Ctrl+Z gives the plain wall back; Ctrl+Y the duct again.
  const int macros = project.Macro.count();
  QTest::keyClick(form->Picture_Widget(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(project.Macro.count(), 1);
  QTest::keyClick(form->Picture_Widget(), Qt::Key_Y, Qt::ControlModifier);
  EXPECT_EQ(project.Macro.count(), macros);

  // The duct's face takes borders, as the wall's outer faces would.
  EXPECT_EQ(Border_Circle(1000, 700, radius), 16);
  Mesh_And_Compute("DUCT");
}

}  // namespace
}  // namespace pvx
