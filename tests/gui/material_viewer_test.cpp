// The material viewer opened from the main window's "MDV" button on the loaded example: a material
// and a property picked in its lists, the curve it draws, the shell's units, hidden by a working form.
#include <gtest/gtest.h>

#include <QImage>
#include <QListWidget>
#include <QToolBar>
#include <QToolButton>

#include "form_fixture.h"
#include "frm_mat_view.h"
#include "main_window.h"
#include "material/properties.h"

namespace pvx {
namespace {

// The number of the picture's pixels of a colour.
int Pixels_Of(const QImage& image, QColor colour) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      count += image.pixelColor(x, y) == colour;
  return count;
}

void Click_Item(QListWidget* list, const QString& text) {
  const QList<QListWidgetItem*> found = list->findItems(text, Qt::MatchExactly);
  ASSERT_EQ(found.size(), 1) << text.toStdString();
  QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(found[0]).center());
}

TEST(frmMatView, OpensFromTheMdvButtonAndDrawsTheChosenCurve) {
  test::Work_Folder folder;
  test::Scripted_Host host;
  test::Memory_Store store;
  mdiPVX window(host, store, folder.dir.path().string());
  host.answers = {Answer::Yes};  // the proposed default database
  window.Start(false, "");
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  host.files = {folder.project};
  window.findChild<QAction*>("Open")->trigger();
  ASSERT_TRUE(host.messages.empty()) << host.messages[0];

  QAction* mdv = window.findChild<QAction*>("MDV");
  ASSERT_NE(mdv, nullptr);
  ASSERT_TRUE(mdv->isEnabled());
  QToolBar* bar = window.findChild<QToolBar*>("Toolbar2");
  QTest::mouseClick(bar->widgetForAction(mdv), Qt::LeftButton);
  auto* view = dynamic_cast<frmMatView*>(window.findChild<QWidget*>("frmMatView"));
  ASSERT_NE(view, nullptr);
  ASSERT_TRUE(view->isVisible());
  EXPECT_EQ(view->List1->count(), 9);
  EXPECT_EQ(view->Label1->text(), "Materials (9)");

  // The CORE heat curve of the first concrete.
  Click_Item(view->List1, "C30/37 CEM I");
  EXPECT_EQ(view->Material_Number(), 1);
  Click_Item(view->List2, "Heat of hydration");
  const Material_Curve& heat = view->Curve();
  ASSERT_EQ(heat.Series.size(), 1u);
  const QImage picture = view->Picture1->grab().toImage();
  EXPECT_EQ(view->Last_Picture().Title, "C30/37 CEM I - Heat of hydration");
  EXPECT_EQ(view->Last_Picture().Segments, static_cast<int>(heat.Series[0].X.size()) - 1);
  EXPECT_GT(Pixels_Of(picture, QColor(0, 0, 255)), 300);  // the curve
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
