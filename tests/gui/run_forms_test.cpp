// The run settings window, the iteration dialog and the run window over the example project,
// driven as a user drives them: values typed and taken with Enter, arrows, clicks on the material
// grid, the run started, watched, stopped and started again by its button. The Project, the
// labels and the result family on disk are checked against values worked out apart from the forms.
#include <gtest/gtest.h>

#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTableWidget>
#include <QTimer>
#include <QToolButton>
#include <cmath>

#include "analysis/schedule.h"
#include "form_fixture.h"
#include "frm_diag.h"
#include "frm_dialog_iterations.h"
#include "frm_run.h"
#include "qt_shell_host.h"
#include "results/result_files.h"

namespace pvx {
namespace {

using test::Type;

template <class Form>
struct Opened : test::Form_Fixture {
  std::unique_ptr<Form> form;
  Opened() {
    EXPECT_TRUE(Load_Example());
    form = std::make_unique<Form>(context);
    form->resize(1200, 820);
    form->show();
    form->Form_Shown();
  }
};

TEST(frmRun, PeriodsAreEditedByTheirRulesAndTheTotalsFollow) {
  Opened<frmRun> f;
  Project& p = f.project;
  frmRun& w = *f.form;
  // Start from one period of 0..10 hours so that every count below is easy to follow by hand.
  for (auto [field, text] : {std::pair{w.Text_Period_Count, "1"},
                             {w.Text_Computation_Time, "30"},
                             {w.Text_Until, "10"},
                             {w.Text_Storage_Each, "2"},
                             {w.Text_Time_Increment, "0,5"}})
    Type(field, text);  // "0,5": either decimal sign
  ASSERT_EQ(p.Period.count(), 1);
  EXPECT_EQ(p.Period[1], (Period{0, 10, 2, 0.5}));
  EXPECT_DOUBLE_EQ(p.Computation_Time, 30);
  const int changes = f.state_changes;

  // Refusals keep the old value and show it again: 0 for the increment, 0 for the total time, an
  // end not after the start.
  Type(w.Text_Time_Increment, "0");
  EXPECT_EQ(w.Text_Time_Increment->text(), "0.5");
  Type(w.Text_Computation_Time, "0");
  Type(w.Text_Until, "-4");
  EXPECT_EQ(p.Period[1], (Period{0, 10, 2, 0.5}));
  EXPECT_DOUBLE_EQ(p.Computation_Time, 30);
  EXPECT_EQ(f.state_changes, changes);

  // Three periods: each new one starts where the one before ends and lasts one storage interval,
  // with the interval and increment of the one before. The last becomes the current one.
  Type(w.Text_Period_Count, "3");
  ASSERT_EQ(p.Period.count(), 3);
  EXPECT_EQ(p.Period[3], (Period{12, 14, 2, 0.5}));
  EXPECT_EQ(w.Frame_Period->title(), "In period 3");
  // Period 3 gets a longer increment; then back to period 1 with the arrows and its end moved to
  // 13: period 2 is chained to 13..14 (its end 12 is not after 13, so 13 + 1), period 3 to 14..15.
  Type(w.Text_Time_Increment, "1");
  QTest::mouseClick(w.UpDown1_Down, Qt::LeftButton);
  QTest::mouseClick(w.UpDown1_Down, Qt::LeftButton);
  EXPECT_EQ(w.Frame_Period->title(), "In period 1");
  Type(w.Text_Until, "13");
  EXPECT_EQ(p.Period[1], (Period{0, 13, 2, 0.5}));
  EXPECT_EQ(p.Period[2], (Period{13, 14, 2, 0.5}));
  EXPECT_EQ(p.Period[3], (Period{14, 15, 2, 1}));

  // Totals by hand, up to 30 hours: period 1 13 / 0.5 = 26 steps and 13 / 2 = 6.5, to the even 6,
  // storages; period 2 1 / 0.5 = 2 steps and 0.5, to the even 0, so at least 1 storage; period 3
  // 1 / 1 = 1 step, 1 storage. 29 steps, 8 storages. Up to 5 hours only the first period counts,
  // cut at 5: 10 steps and 2.5, to the even 2, storages.
  EXPECT_EQ(w.Label_Total_Steps->text() + " " + w.Label_Total_Storages->text(), "29 8");
  Type(w.Text_Computation_Time, "5");
  EXPECT_EQ(w.Label_Total_Steps->text() + " " + w.Label_Total_Storages->text(), "10 2");

  // Fewer periods cut the table; a text that is no number is reported and changes nothing.
  Type(w.Text_Period_Count, "2");
  Type(w.Text_Period_Count, "abc");
  EXPECT_EQ(p.Period.count(), 2);
  EXPECT_EQ(f.host.messages, std::vector<std::string>{Number_Error_Message});
}

TEST(frmRun, MaterialVariantsAreMarkedAndTheReplacedMaterialChosen) {
  Opened<frmRun> f;
  Project& p = f.project;
  frmRun& w = *f.form;
  const int materials = p.Material.count();
  ASSERT_GE(materials, 3);
  // With variants asked for, the window opens with every material marked as a run of its own.
  p.Replace_Material = True_Flag;
  w.Form_Shown();
  EXPECT_EQ(Number_Of_Runs(p), materials);
  const auto click_row = [&](int row) {
    QTest::mouseClick(w.flg1->viewport(), Qt::LeftButton, {},
                      w.flg1->visualItemRect(w.flg1->item(row, 1)).center());
  };
  click_row(1);  // row 2 off: the runs in row order, row 2 left out
  EXPECT_EQ(Number_Of_Runs(p), materials - 1);
  EXPECT_EQ(p.Run_Material[2], 3);
  QTest::mouseClick(w.Command_Unmark_All, Qt::LeftButton);
  click_row(2);
  ASSERT_EQ(Number_Of_Runs(p), 1);
  EXPECT_EQ(p.Run_Material[1], 3);
  EXPECT_EQ(w.Label_Runs->text(), "Number of variants: 1");
  QTest::mouseClick(w.Command_Mark_All, Qt::LeftButton);
  EXPECT_EQ(Number_Of_Runs(p), materials);
  // Choosing the last material of the mesh in the list flags exactly its elements.
  w.List1->setCurrentRow(w.List1->count() - 1);
  const std::string name = w.List1->currentItem()->text().toStdString();
  for (int e = 1; e <= p.Mesh_Element.count(); ++e)
    EXPECT_EQ(p.Element_Replaced.at(e - 1), p.Mesh_Element[e].Material == name) << name << " element " << e;
  test::Take_Screenshot(w, "frmRun");
}

// The dialog that the window or the run brings up, found among the windows when it is shown.
frmDialogIterations* Shown_Dialog() {
  for (QWidget* w : QApplication::topLevelWidgets())
    if (auto* d = qobject_cast<frmDialogIterations*>(w); d && d->isVisible()) return d;
  return nullptr;
}

// Opened modally from the run settings, the dialog takes positive values with Enter and moves on;
// the limit is rounded, halves to the even neighbour; Enter in the last field presses OK.
TEST(frmDialogIterations, TheLimitsButtonEditsTheSettingsAndEnterTakesPositiveValues) {
  Opened<frmRun> f;
  Shell& s = f.shell;
  const auto value = [&](int field) {
    return field == 0 ? s.Mechanical_Iteration_Limit : s.Mechanical_Limits[field - 1];
  };
  const struct {
    int field;
    const char* typed;
    double taken;
  } rows[] = {{0, "-3", 10},       {0, "12.6", 13}, {0, "2,5", 2},
              {1, "0,002", 0.002}, {2, "0", 0.001}, {3, "0.05", 0.05}};
  bool modal = false;
  QTimer::singleShot(0, [&] {
    frmDialogIterations* d = Shown_Dialog();
    ASSERT_NE(d, nullptr);
    modal = d->isModal();
    for (const auto& row : rows) {
      Type(d->Text1[row.field], row.typed);
      EXPECT_DOUBLE_EQ(value(row.field), row.taken) << row.typed;
      if (row.field < 3) {
        EXPECT_EQ(d->focusWidget(), d->Text1[row.field + 1]) << row.typed;
      }
    }
    EXPECT_EQ(d->Text1[2]->text(), "0.001");  // the refused 0 shows the old value again
    EXPECT_FALSE(d->isVisible());
  });
  QTest::mouseClick(f.form->Command_Limits, Qt::LeftButton);
  EXPECT_TRUE(modal);
  EXPECT_EQ(s.Mechanical_Iteration_Limit, 2);
}

struct Diag_Form : Opened<frmDiag> {
  std::vector<Step_Report> reports;
  std::function<void(const Step_Report&)> on_step;
  Diag_Form() {
    form->Step_Observer = [this](const Step_Report& r) {
      reports.push_back(r);
      if (on_step) on_step(r);
    };
  }
  void Press() { QTest::mouseClick(form->Command2, Qt::LeftButton); }
  int Reports() const { return static_cast<int>(reports.size()); }
  // The schedule worked out apart from the run: its steps, and its storages with the initial one.
  int Steps() const {
    Step_Table t;
    Set_Time_Steps(project, t);
    return Number_Of_Steps(t);
  }
  int Storages_Up_To(int steps) const {
    Step_Table t;
    Set_Time_Steps(project, t);
    int n = 1;
    for (int i = 1; i <= steps; ++i)
      n += Is_Storage_Step(t, i);
    return n;
  }
  // The index on disk, read apart from the window: its number of storages, -1 if unreadable.
  Run_Index index;
  int Stored() {
    std::string message;
    if (Read_Run_Index_File(dir.file(project.Result_File_Name), 108, false, index, message))
      return Storage_Count(index);
    ADD_FAILURE() << message;
    return -1;
  }
};

TEST(frmDiag, TheExampleRunsToTheEndFromTheButtonAndItsResultsOpen) {
  Diag_Form f;
  frmDiag& w = *f.form;
  const int steps = f.Steps();
  ASSERT_GT(steps, 10);
  std::string caption_during;
  f.on_step = [&](const Step_Report& r) {
    if (r.step == 1) caption_during = w.Command2->text().toStdString();
    // The window draws at most every Redraw_Interval_Ms; this run is faster than that, so it is
    // held up once before the middle step, as a larger model would be, and the middle step is drawn.
    if (r.step == steps / 2 - 1) QTest::qWait(Redraw_Interval_Ms + 20);
    if (r.step == steps / 2) {
      EXPECT_EQ(w.Label_Step->text(), QString("Step %1 of %2").arg(r.step).arg(steps));
      EXPECT_EQ(static_cast<int>(w.Picture1[0]->Maximum_Curve().size()), r.step + 1);
      test::Take_Screenshot(w, "frmDiag_running");
    }
  };
  f.Press();
  EXPECT_EQ(w.Last_Outcome(), Run_Outcome::Completed);
  EXPECT_EQ(caption_during, "Stop computations");
  EXPECT_EQ(w.Command2->text(), "Start computations");
  ASSERT_EQ(f.Reports(), steps);
  EXPECT_EQ(w.Label_Step->text(), QString("Step %1 of %1").arg(steps));
  const int storages = f.Storages_Up_To(steps);
  EXPECT_EQ(w.Label_Storages->text(), QString("Number of data storages: %1").arg(storages));
  EXPECT_EQ(f.Stored(), storages);
  EXPECT_EQ(f.shell.State, Work_State::Computed);
  EXPECT_EQ(f.state_changes, 1);

  // The temperature graph holds a point per row (the initial state and each step); its scale ends
  // are the extremes of the whole run, which the index keeps.
  EXPECT_EQ(static_cast<int>(w.Picture1[0]->Maximum_Curve().size()), steps + 1);
  const auto label = [](const char* word, double value) {
    return word + QString::fromStdString(Format_Number(value, 16, 2)).trimmed();
  };
  EXPECT_EQ(w.Label7[0]->text(), label("max ", f.index.Extremes[1].PeriodMax));
  EXPECT_EQ(w.Label8[0]->text(), label("min ", f.index.Extremes[1].PeriodMin));
  test::Take_Screenshot(w, "frmDiag_end");

  // The viewers may open the family; cut short after its index was written, it is refused.
  Qt_Shell_Host viewer_host;
  std::string message;
  EXPECT_TRUE(viewer_host.Open_Results(f.project, f.shell, message)) << message;
  const std::string temperatures = Sibling_Name(f.dir.file("WALL.RES"), 2);
  std::filesystem::resize_file(temperatures, std::filesystem::file_size(temperatures) / 2);
  EXPECT_FALSE(viewer_host.Open_Results(f.project, f.shell, message));
  EXPECT_EQ(message, Results_Corrupted(f.dir.file("WALL.RES")));
}

TEST(frmDiag, StopFromTheButtonDuringTheRunThenAStartRunsAgainToTheEnd) {
  Diag_Form f;
  frmDiag& w = *f.form;
  const int steps = f.Steps();
  // The button is clicked from the event pump of the run, as a user's click arrives.
  f.on_step = [&](const Step_Report& r) {
    if (r.step == 5) QTimer::singleShot(0, [&] { f.Press(); });
  };
  f.Press();
  EXPECT_EQ(w.Last_Outcome(), Run_Outcome::Stopped);
  const int done = f.Reports();
  EXPECT_GE(done, 5);
  EXPECT_LE(done, 6);  // honoured at the top of the next step
  EXPECT_EQ(w.Command2->text(), "Start computations");
  EXPECT_EQ(f.Stored(), f.Storages_Up_To(done));  // closed and readable
  EXPECT_EQ(static_cast<int>(w.Picture1[0]->Maximum_Curve().size()), done + 1);
  EXPECT_TRUE(w.Label_Outcome->text().startsWith(QString("Computation stopped after step %1 of").arg(done)));

  // A new press starts from the beginning; stop and start pressed again before the stopped run has
  // come to its end: it starts anew and runs to the end.
  f.reports.clear();
  f.on_step = [&](const Step_Report& r) {
    if (r.step == 3 && f.Reports() == 3) {
      f.Press();
      f.Press();
    }
  };
  f.Press();
  EXPECT_EQ(w.Last_Outcome(), Run_Outcome::Completed);
  ASSERT_EQ(f.Reports(), 3 + steps);
  EXPECT_EQ(std::pair(f.reports[0].step, f.reports[3].step), std::pair(1, 1));
  EXPECT_EQ(f.Stored(), f.Storages_Up_To(steps));
  EXPECT_EQ(f.state_changes, 2);  // one per start from the button: the restart is part of the second
}

TEST(frmDiag, MessagesOfTheRunAndAMissingResultNameReachTheUser) {
  Diag_Form f;
  // An element whose material the database does not know: the run says so and goes on.
  f.project.Mesh_Element[1].Material = "No such concrete";
  f.project.Result_File_Name.clear();
  f.project.Period.clear();
  f.project.Period.add(Period{0, 2, 1, 0.5});
  f.host.files = {"", f.dir.file("OTHER.RES")};  // the user first cancels the name of the results
  f.Press();
  EXPECT_EQ(f.host.messages,
            std::vector<std::string>{"A path and a filename must be given for your output !"});
  EXPECT_TRUE(f.reports.empty());
  f.Press();
  EXPECT_EQ(f.project.Result_File_Name, f.dir.file("OTHER.RES"));
  EXPECT_EQ(f.Reports(), 4);
  // The warning stands in the window; it does not hold the run up with a box.
  EXPECT_TRUE(f.form->Label_Messages->text().contains("not in the database"));
  EXPECT_EQ(f.host.messages.size(), 1u);
  EXPECT_EQ(f.Stored(), 3);  // the initial state and one at each of the two hours
}

}  // namespace
}  // namespace pvx
