// The run settings window and the iteration dialog, driven as a user drives them: values typed
// and taken with Enter, arrows, clicks on the material grid. The Project is checked afterwards
// against values worked out by hand.
#include "frm_run.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <QTimer>
#include <QToolButton>

#include "frm_dialog_iterations.h"
#include "qt_analysis_host.h"
#include "run_forms_fixture.h"
#include "screenshot.h"

namespace pvx {
namespace {

void Type(QLineEdit* field, const QString& text) {
  field->setFocus();
  field->selectAll();
  QTest::keyClicks(field, text);
  QTest::keyClick(field, Qt::Key_Return);
}

QColor Text_Colour(QLineEdit* field) {
  return field->palette().color(QPalette::Text);
}

void Click_Row(QTableWidget* grid, int row) {
  const QRect cell = grid->visualItemRect(grid->item(row, 1));
  QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
}

struct Run_Form : test::Run_Forms_Fixture {
  std::unique_ptr<frmRun> form;
  bool Open() {
    if (!Load_Example()) return false;
    form = std::make_unique<frmRun>(context);
    form->resize(760, 640);
    form->show();
    form->Form_Shown();
    return true;
  }
};

TEST(frmRun, PeriodsAreEditedByTheirRulesAndTheTotalsFollow) {
  Run_Form f;
  ASSERT_TRUE(f.Open());
  Project& p = f.project;
  frmRun& w = *f.form;

  // Start from one period of 0..10 hours so that every count below is easy to follow by hand.
  Type(w.Text_Period_Count, "1");
  Type(w.Text_Computation_Time, "30");
  EXPECT_DOUBLE_EQ(p.Computation_Time, 30);
  Type(w.Text_Until, "10");
  Type(w.Text_Storage_Each, "2");
  Type(w.Text_Time_Increment, "0,5");  // either decimal sign
  ASSERT_EQ(p.Period.count(), 1);
  EXPECT_EQ(p.Period[1], (Period{0, 10, 2, 0.5}));
  const int changes = f.state_changes;
  EXPECT_GE(changes, 5);

  // Refusals keep the old value and show it again: 0 for the increment, 0 for the total time, an
  // end not after the start, a start typed at all.
  QTest::keyClicks(w.Text_Time_Increment, "0");
  EXPECT_EQ(Text_Colour(w.Text_Time_Increment), QColor(0, 120, 0));  // not taken yet
  Type(w.Text_Time_Increment, "0");
  EXPECT_DOUBLE_EQ(p.Period[1].Time_Increment, 0.5);
  EXPECT_EQ(w.Text_Time_Increment->text(), "0.5");
  EXPECT_NE(Text_Colour(w.Text_Time_Increment), QColor(0, 120, 0));
  Type(w.Text_Computation_Time, "0");
  EXPECT_DOUBLE_EQ(p.Computation_Time, 30);
  Type(w.Text_Until, "-4");
  EXPECT_DOUBLE_EQ(p.Period[1].Until, 10);
  EXPECT_TRUE(w.Text_From->isReadOnly());
  EXPECT_EQ(f.state_changes, changes);  // nothing was taken

  // Three periods: each new one starts where the one before ends and lasts one storage interval,
  // with the interval and increment of the one before. The last becomes the current one.
  Type(w.Text_Period_Count, "3");
  ASSERT_EQ(p.Period.count(), 3);
  EXPECT_EQ(p.Period[2], (Period{10, 12, 2, 0.5}));
  EXPECT_EQ(p.Period[3], (Period{12, 14, 2, 0.5}));
  EXPECT_EQ(w.Frame_Period->title(), "In period 3");
  EXPECT_EQ(w.Text_From->text(), "12");
  EXPECT_FALSE(w.UpDown1_Up->isEnabled());

  // Period 3 gets a longer increment; then back to period 1 with the arrows and its end moved to
  // 13: period 2 is chained to 13..14 (its end 12 is not after 13, so 13 + 1), period 3 to 14..15.
  Type(w.Text_Time_Increment, "1");
  QTest::mouseClick(w.UpDown1_Down, Qt::LeftButton);
  QTest::mouseClick(w.UpDown1_Down, Qt::LeftButton);
  EXPECT_EQ(w.Frame_Period->title(), "In period 1");
  EXPECT_FALSE(w.UpDown1_Down->isEnabled());
  Type(w.Text_Until, "13");
  EXPECT_EQ(p.Period[1], (Period{0, 13, 2, 0.5}));
  EXPECT_EQ(p.Period[2], (Period{13, 14, 2, 0.5}));
  EXPECT_EQ(p.Period[3], (Period{14, 15, 2, 1}));

  // Totals by hand, up to 30 hours: period 1 13 / 0.5 = 26 steps and 13 / 2 = 6.5, to the even 6,
  // storages; period 2 1 / 0.5 = 2 steps and 0.5, to the even 0, so at least 1 storage; period 3
  // 1 / 1 = 1 step, 1 storage. 29 steps, 8 storages.
  EXPECT_EQ(w.Label_Total_Steps->text(), "29");
  EXPECT_EQ(w.Label_Total_Storages->text(), "8");
  // Up to 5 hours only the first period counts, cut at 5: 10 steps and 2.5, to the even 2, storages.
  Type(w.Text_Computation_Time, "5");
  EXPECT_EQ(w.Label_Total_Steps->text(), "10");
  EXPECT_EQ(w.Label_Total_Storages->text(), "2");

  // Fewer periods cut the table.
  Type(w.Text_Period_Count, "2");
  EXPECT_EQ(p.Period.count(), 2);
  EXPECT_EQ(w.Frame_Period->title(), "In period 2");
  Type(w.Text_Period_Count, "abc");
  EXPECT_EQ(p.Period.count(), 2);
  EXPECT_FALSE(f.host.messages.empty());  // the number reader said the text was no number
}

TEST(frmRun, MaterialVariantsAreMarkedAndTheReplacedMaterialChosen) {
  Run_Form f;
  ASSERT_TRUE(f.Open());
  Project& p = f.project;
  frmRun& w = *f.form;
  const int materials = p.Material.count();
  ASSERT_GE(materials, 3);
  ASSERT_EQ(w.flg1->rowCount(), materials);
  // The example computes its design once; with variants asked for, the window opens with every
  // material marked as a run of its own.
  EXPECT_EQ(Number_Of_Runs(p), 0);
  EXPECT_EQ(w.flg1->item(0, 0)->text(), "");
  p.Replace_Material = True_Flag;
  w.Form_Shown();
  EXPECT_EQ(Number_Of_Runs(p), materials);
  EXPECT_EQ(w.flg1->item(0, 0)->text(), "V");
  EXPECT_EQ(w.flg1->item(1, 1)->text().toStdString(), p.Material[2].Name);

  Click_Row(w.flg1, 1);  // row 2 off
  EXPECT_EQ(w.flg1->item(1, 0)->text(), "");
  EXPECT_EQ(Number_Of_Runs(p), materials - 1);
  EXPECT_EQ(p.Run_Material[1], 1);
  EXPECT_EQ(p.Run_Material[2], 3);  // the runs in row order, row 2 left out

  QTest::mouseClick(w.Command_Unmark_All, Qt::LeftButton);
  EXPECT_EQ(Number_Of_Runs(p), 0);
  Click_Row(w.flg1, 2);
  ASSERT_EQ(Number_Of_Runs(p), 1);
  EXPECT_EQ(p.Run_Material[1], 3);
  EXPECT_EQ(w.Label_Runs->text(), "Number of variants: 1");
  QTest::mouseClick(w.Command_Mark_All, Qt::LeftButton);
  ASSERT_EQ(Number_Of_Runs(p), materials);
  for (int i = 1; i <= materials; ++i)
    EXPECT_EQ(p.Run_Material[i], i);

  // The list holds each material of the mesh once; choosing one flags exactly its elements.
  ASSERT_GE(w.List1->count(), 1);
  for (int row = 0; row < w.List1->count(); ++row) {
    w.List1->setCurrentRow(row);
    const std::string name = w.List1->item(row)->text().toStdString();
    int expected = 0, flagged = 0;
    for (int e = 1; e <= p.Mesh_Element.count(); ++e) {
      const bool of_it = p.Mesh_Element[e].Material == name;
      expected += of_it;
      flagged += p.Element_Replaced.at(static_cast<std::size_t>(e - 1));
      EXPECT_EQ(p.Element_Replaced.at(static_cast<std::size_t>(e - 1)), of_it) << name << " element " << e;
    }
    EXPECT_GT(expected, 0);
    EXPECT_EQ(flagged, expected);
  }
  test::Take_Screenshot(w, "frmRun");
}

TEST(frmDialogIterations, EnterTakesPositiveValuesAndRoundsTheLimit) {
  Shell settings;
  frmDialogIterations dialog(settings, frmDialogIterations::Mode::Settings);
  dialog.show();
  for (QLabel* label : dialog.Label)
    EXPECT_FALSE(label->isVisible());
  EXPECT_FALSE(dialog.Cancel->isVisible());
  EXPECT_EQ(dialog.OK->text(), "OK");
  EXPECT_EQ(dialog.Text1[0]->text(), "10");

  QTest::keyClicks(dialog.Text1[0], "x");
  EXPECT_EQ(Text_Colour(dialog.Text1[0]), QColor(0, 120, 0));
  Type(dialog.Text1[0], "-3");
  EXPECT_EQ(settings.Mechanical_Iteration_Limit, 10);
  EXPECT_EQ(dialog.Text1[0]->text(), "10");
  EXPECT_EQ(Text_Colour(dialog.Text1[0]), QColor(0, 0, 255));
  EXPECT_EQ(dialog.focusWidget(), dialog.Text1[1]);  // Enter moves on
  Type(dialog.Text1[0], "12.6");
  EXPECT_EQ(settings.Mechanical_Iteration_Limit, 13);
  Type(dialog.Text1[0], "2,5");
  EXPECT_EQ(settings.Mechanical_Iteration_Limit, 2);  // halves to the even neighbour
  Type(dialog.Text1[1], "0,002");
  EXPECT_DOUBLE_EQ(settings.Mechanical_Limits[0], 0.002);
  Type(dialog.Text1[2], "0");
  EXPECT_DOUBLE_EQ(settings.Mechanical_Limits[1], 0.001);
  Type(dialog.Text1[3], "0.05");  // the last field presses OK
  EXPECT_DOUBLE_EQ(settings.Mechanical_Limits[2], 0.05);
  EXPECT_EQ(dialog.Answer(), frmDialogIterations::Go_On);
  EXPECT_FALSE(dialog.isVisible());
}

// The dialog that the run brings up, found among the windows when it is shown.
frmDialogIterations* Shown_Dialog() {
  for (QWidget* w : QApplication::topLevelWidgets())
    if (auto* d = qobject_cast<frmDialogIterations*>(w); d && d->isVisible()) return d;
  return nullptr;
}

TEST(frmDialogIterations, TheRunAsksModelessAndTakesTheAnswerAndTheNewLimits) {
  Shell settings;
  bool stop = false;
  Qt_Analysis_Host host(stop, settings, nullptr);
  int limit = 10;
  double limits[3] = {0.001, 0.001, 0.001};

  std::string question;
  bool modeless = false, labels_shown = false;
  QTimer::singleShot(0, [&] {
    frmDialogIterations* d = Shown_Dialog();
    ASSERT_NE(d, nullptr);
    question = d->Label[0]->text().toStdString();
    modeless = !d->isModal();
    labels_shown = d->Label[1]->isVisible() && d->Cancel->isVisible();
    Type(d->Text1[0], "25");
    Type(d->Text1[1], "0.01");
    QTest::mouseClick(d->Cancel, Qt::LeftButton);
  });
  EXPECT_FALSE(host.Ask_More_Iterations(10, limit, limits));
  EXPECT_EQ(question, "More than 10 have been performed.");
  EXPECT_TRUE(modeless);
  EXPECT_TRUE(labels_shown);
  EXPECT_EQ(limit, 25);
  EXPECT_DOUBLE_EQ(limits[0], 0.01);
  EXPECT_DOUBLE_EQ(limits[1], 0.001);
  EXPECT_EQ(settings.Mechanical_Iteration_Limit, 25);  // they hold for later runs too

  // Closing the window goes on, as OK does.
  QTimer::singleShot(0, [&] {
    frmDialogIterations* d = Shown_Dialog();
    ASSERT_NE(d, nullptr);
    d->close();
  });
  EXPECT_TRUE(host.Ask_More_Iterations(7, limit, limits));
}

TEST(frmRun, TheLimitsButtonOpensTheDialogModallyOnTheShellSettings) {
  Run_Form f;
  ASSERT_TRUE(f.Open());
  bool modal = false;
  QTimer::singleShot(0, [&] {
    frmDialogIterations* d = Shown_Dialog();
    ASSERT_NE(d, nullptr);
    modal = d->isModal();
    Type(d->Text1[0], "4");
    QTest::mouseClick(d->OK, Qt::LeftButton);
  });
  QTest::mouseClick(f.form->Command_Limits, Qt::LeftButton);
  EXPECT_TRUE(modal);
  EXPECT_EQ(f.shell.Mechanical_Iteration_Limit, 4);
}

}  // namespace
}  // namespace pvx
