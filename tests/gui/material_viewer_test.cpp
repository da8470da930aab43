// The material viewer opened from the main window's "MDV" button on the loaded example: a material
// and a property picked in its lists, the curve it draws, the shell's units, hidden by a working form.
#include <gtest/gtest.h>

#include <QImage>
#include <QListWidget>
#include <QToolBar>

#include "form_fixture.h"
#include "frm_mat_view.h"
#include "material/properties.h"

namespace pvx {
namespace {

void Click_Item(QListWidget* list, const QString& text) {
  const QList<QListWidgetItem*> found = list->findItems(text, Qt::MatchExactly);
  ASSERT_EQ(found.size(), 1) << text.toStdString();
  QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(found[0]).center());
}

TEST(frmMatView, OpensFromTheMdvButtonAndDrawsTheChosenCurve) {
  test::Window_Fixture f;
  mdiPVX& window = f.window;
  f.Open_Example();
  ASSERT_TRUE(f.host.messages.empty()) << f.host.messages[0];
  QAction* mdv = window.findChild<QAction*>("MDV");
  ASSERT_TRUE(mdv != nullptr && mdv->isEnabled());
  QTest::mouseClick(window.findChild<QToolBar*>("Toolbar2")->widgetForAction(mdv), Qt::LeftButton);
  auto* view = dynamic_cast<frmMatView*>(window.findChild<QWidget*>("frmMatView"));
  ASSERT_TRUE(view != nullptr && view->isVisible());
  EXPECT_EQ(view->List1->count(), 9);

  // The CORE heat curve of the first concrete.
  Click_Item(view->List1, "C30/37 CEM I");
  EXPECT_EQ(view->Material_Number(), 1);
  Click_Item(view->List2, "Heat of hydration");
  const Material_Curve& heat = view->Curve();
  ASSERT_EQ(heat.Series.size(), 1u);
  const QImage picture = view->Picture1->grab().toImage();
  EXPECT_EQ(view->Last_Picture().Title, "C30/37 CEM I - Heat of hydration");
  EXPECT_EQ(view->Last_Picture().Segments, static_cast<int>(heat.Series[0].X.size()) - 1);
  EXPECT_GT(test::Pixels_Of(picture, QColor(0, 0, 255)), 300);  // the curve
  EXPECT_EQ(view->windowTitle(), "Material properties - C30/37 CEM I");

  // Another material keeps the property where it has it; the steel has its own.
  Click_Item(view->List1, "C35/45 CEM III/B");
  EXPECT_EQ(view->Curve().Title, "C35/45 CEM III/B - Heat of hydration");
  EXPECT_EQ(view->Curve().Caption.at(0), Danish_Heat_Caption);
  Click_Item(view->List1, "B500B reinforcing steel");
  ASSERT_EQ(view->List2->count(), 3);
  EXPECT_EQ(view->Curve().Title, "B500B reinforcing steel - Steel stress - strain");
  view->Picture1->grab();
  EXPECT_EQ(view->Last_Picture().Marks, 3);  // the table's points

  // The relaxation of the chain at its four loading ages, in the view for the screenshot.
  ASSERT_TRUE(view->Select_Material(1));
  ASSERT_TRUE(view->Select_Property(Material_Property::Relaxation));
  view->Picture1->grab();
  EXPECT_EQ(view->Last_Picture().Segments, 4 * 60);
  test::Take_Screenshot(*view, "frmMatView");

  // The shell's units: the viewer follows them.
  ASSERT_TRUE(view->Select_Property(Material_Property::E));
  EXPECT_EQ(view->Curve().Y_Title, "Modulus of elasticity [MPa]");
  window.project().Metric_Units = False_Flag;
  window.Refresh();
  EXPECT_EQ(view->Curve().Y_Title, "Modulus of elasticity [ksi]");
  EXPECT_EQ(view->Curve().Title, "C30/37 CEM I - E-modulus");
  EXPECT_NEAR(view->Curve().Series[0].Y.back(), 33000 * 645.16 / 4448.2216152605, 1e-6);

  // A working form hides it, as it hides every other.
  window.Toolbar_Click("Design_Panel");
  EXPECT_FALSE(view->isVisible());
}

TEST(frmMatView, AViewerWithoutMaterialsSaysSo) {
  frmMatView view;
  view.Show_Materials({}, true);
  view.resize(700, 400);
  view.show();
  view.Picture1->grab();
  EXPECT_EQ(view.List1->count(), 0);
  EXPECT_EQ(view.List2->count(), 0);
  EXPECT_EQ(view.Material_Number(), 0);
  EXPECT_EQ(view.Last_Picture().Title, No_Materials_Text);
  EXPECT_FALSE(view.Last_Picture().Graph_Drawn);
  EXPECT_FALSE(view.Select_Material(1));
}

}  // namespace
}  // namespace pvx
