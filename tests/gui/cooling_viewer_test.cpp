// The cooled block computed from the run window, and its water history in the viewer: the list, the
// window of the clicked circuit and the stored text.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QImage>
#include <QListWidget>
#include <QPushButton>
#include <QTabWidget>

#include "form_fixture.h"
#include "frm_cool.h"
#include "results/cooling_view.h"

namespace pvx {
namespace {

TEST(frmRes, TheCooledBlockComputesAndItsWaterHistoryShows) {
  test::Form_Fixture f;
  ASSERT_TRUE(f.Load_Example_Named("BLOCK-COOLED.PVX"));
  frmDiag diag(f.context);
  diag.resize(1200, 820);
  diag.show();
  ASSERT_TRUE(f.Compute(diag));
  EXPECT_TRUE(diag.Combo1->isVisible());
  EXPECT_EQ(diag.Last_Run().Diagnostic_Circuit, 1);
  test::Take_Screenshot(diag, "frmDiag_cooling");

  ASSERT_TRUE(f.Open_Viewer());
  frmRes& w = *f.form;
  QTabWidget* root = w.B->SSTab1;
  for (int tab = 0; tab < root->count(); ++tab)
    if (root->tabText(tab) == "Cooling") root->setCurrentIndex(tab);
  ASSERT_EQ(root->tabText(root->currentIndex()), "Cooling");
  EXPECT_EQ(w.State().CurrentVariable, 1);  // the page reads no variable
  QListWidget* list = w.B->List1;
  ASSERT_TRUE(list != nullptr && list->count() == 1);
  // Five days in operation: the record at the start, 96 quarter-hour and 192 half-hour steps.
  ASSERT_EQ(w.State().Circuits[1].History.count(), 289);
  QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(0)).center());
  EXPECT_EQ(w.State().SelectedCircuit, 1);
  frmCool* cool = w.Cool_Window();
  ASSERT_TRUE(cool != nullptr && cool->isVisible());
  EXPECT_GT(test::Pixels_Of(cool->Picture1->grab().toImage(), Qt::red), 50);  // the inlet and outlet curves
  test::Take_Screenshot(*cool, "frmCool");

  const std::string path = f.dir.file("circuit 1.txt");
  f.host.files = {path};
  QTest::mouseClick(w.B->Store_Button, Qt::LeftButton);
  EXPECT_EQ(test::Read_Text(path), Circuit_Data_Text(w.State().Circuits[1], 1));
}

}  // namespace
}  // namespace pvx
