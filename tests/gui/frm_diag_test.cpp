// The run window computing the example project: the run started, watched, stopped and started
// again by its button, with the result family read back afterwards.
#include "frm_diag.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include <QCheckBox>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "analysis/schedule.h"
#include "app/units.h"
#include "results/result_files.h"
#include "run_forms_fixture.h"
#include "screenshot.h"

namespace pvx {
namespace {

struct Diag_Form : test::Run_Forms_Fixture {
  std::unique_ptr<frmDiag> form;
  std::vector<Step_Report> reports;
  std::function<void(const Step_Report&)> on_step;
  bool Open() {
    if (!Load_Example()) return false;
    form = std::make_unique<frmDiag>(context);
    form->resize(1200, 820);
    form->show();
    form->Form_Shown();
    form->Step_Observer = [this](const Step_Report& r) {
      reports.push_back(r);
      if (on_step) on_step(r);
    };
    return true;
  }
  void Press() { QTest::mouseClick(form->Command2, Qt::LeftButton); }
  // The schedule worked out apart from the run: its steps and its storages with the initial one.
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
  bool Read_Index(Run_Index& index) const {
    std::string message;
    const bool ok = Read_Run_Index_File(dir.file(project.Result_File_Name), 108, false, index, message);
    EXPECT_TRUE(ok) << message;
    return ok;
  }
};

TEST(frmDiag, OpeningSetsTheSwitchesAndTitles) {
  Diag_Form f;
  ASSERT_TRUE(f.Open());
  frmDiag& w = *f.form;
  EXPECT_EQ(w.Command2->text(), "Start computations");
  EXPECT_FALSE(w.Check2->isChecked());
  EXPECT_FALSE(w.Frame5->isEnabled());
  EXPECT_FALSE(w.Check3[0]->isEnabled());
  EXPECT_FALSE(w.Check3[1]->isEnabled());
  EXPECT_EQ(w.Label5[0]->text(), "Temperature [oC]");
  // Before any run the five field graphs stand at the first five places, frames without curves.
  for (int g = 0; g < 5; ++g) {
    EXPECT_TRUE(w.Graph_Box[static_cast<std::size_t>(g)]->isVisible()) << g;
    EXPECT_TRUE(w.Picture1[static_cast<std::size_t>(g)]->Maximum_Curve().empty());
  }
  for (int g = 5; g < Diagnostic_Graph_Count; ++g)
    EXPECT_FALSE(w.Graph_Box[static_cast<std::size_t>(g)]->isVisible());

  // The mechanical switch opens its frame; switching it off clears its options again.
  QTest::mouseClick(w.Check2, Qt::LeftButton);
  EXPECT_TRUE(w.Frame5->isEnabled());
  QTest::mouseClick(w.Check3[2], Qt::LeftButton);
  EXPECT_TRUE(w.Graph_Box[10]->isVisible());  // "Major stresses" takes the sixth place
  QTest::mouseClick(w.Check2, Qt::LeftButton);
  EXPECT_FALSE(w.Check3[2]->isChecked());
  EXPECT_FALSE(w.Graph_Box[10]->isVisible());

  // In the imperial system the titles and the scale ends change.
  f.project.Metric_Units = False_Flag;
  w.Form_Shown();
  EXPECT_EQ(w.Label5[0]->text(), "Temperature [oF]");
}

TEST(frmDiag, TheExampleRunsToTheEndFromTheButton) {
  Diag_Form f;
  ASSERT_TRUE(f.Open());
  frmDiag& w = *f.form;
  const int steps = f.Steps();
  ASSERT_GT(steps, 10);
  std::string caption_during;
  bool switch_during = true;
  f.on_step = [&](const Step_Report& r) {
    if (r.step == 1) {
      caption_during = w.Command2->text().toStdString();
      switch_during = w.Check2->isEnabled();
    }
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
  EXPECT_FALSE(w.Running());
  EXPECT_EQ(w.Last_Outcome(), Run_Outcome::Completed);
  EXPECT_EQ(caption_during, "Stop computations");
  EXPECT_FALSE(switch_during);
  EXPECT_EQ(w.Command2->text(), "Start computations");
  EXPECT_TRUE(w.Check2->isEnabled());

  // One report per step, in order, and the labels of the last.
  ASSERT_EQ(static_cast<int>(f.reports.size()), steps);
  for (int i = 0; i < steps; ++i)
    EXPECT_EQ(f.reports[static_cast<std::size_t>(i)].step, i + 1);
  EXPECT_EQ(w.Label_Step->text(), QString("Step %1 of %1").arg(steps));
  const int storages = f.Storages_Up_To(steps);
  EXPECT_EQ(w.Label_Storages->text(), QString("Number of data storages: %1").arg(storages));

  // The family is on disk with every storage of the schedule, the initial state included.
  Run_Index index;
  ASSERT_TRUE(f.Read_Index(index));
  EXPECT_EQ(Storage_Count(index), storages);
  EXPECT_EQ(Number_Of_Steps(index), steps);

  // The temperature graph holds a point per row (the initial state and each step); its curves
  // run from the left edge to the right edge of the picture and stay within its height.
  const auto& maximum = w.Picture1[0]->Maximum_Curve();
  const auto& minimum = w.Picture1[0]->Minimum_Curve();
  ASSERT_EQ(static_cast<int>(maximum.size()), steps + 1);
  ASSERT_EQ(static_cast<int>(minimum.size()), steps + 1);
  EXPECT_DOUBLE_EQ(maximum.front().x, 0);
  EXPECT_DOUBLE_EQ(maximum.back().x, 2200);
  for (std::size_t i = 0; i < maximum.size(); ++i) {
    EXPECT_LE(maximum[i].y, minimum[i].y + 1e-9);  // the maximum above the minimum
    EXPECT_GE(maximum[i].y, 300 - 1e-9);
    EXPECT_LE(minimum[i].y, 1500 + 1e-9);
  }
  // The scale ends are the extremes of the whole run, which the index keeps too.
  const Extreme_Row& temperature = index.Extremes[1];
  EXPECT_EQ(w.Label7[0]->text(),
            "max " + QString::fromStdString(Format_Number(temperature.PeriodMax, 16, 2)).trimmed());
  EXPECT_EQ(w.Label8[0]->text(),
            "min " + QString::fromStdString(Format_Number(temperature.PeriodMin, 16, 2)).trimmed());

  EXPECT_EQ(f.shell.State, Work_State::Computed);
  EXPECT_EQ(f.state_changes, 1);
  test::Take_Screenshot(w, "frmDiag_end");

  // Shown in the imperial system the scale ends are in degrees Fahrenheit, the time unchanged.
  f.project.Metric_Units = False_Flag;
  w.Form_Shown();
  EXPECT_EQ(w.Label5[0]->text(), "Temperature [oF]");
  EXPECT_EQ(
      w.Label7[0]->text(),
      "max " + QString::fromStdString(Format_Number(temperature.PeriodMax * 1.8 + 32, 16, 2)).trimmed());
  EXPECT_EQ(static_cast<int>(w.Picture1[0]->Maximum_Curve().size()), steps + 1);

  // Once the results are destroyed (the state goes back to Run set) the window opens empty.
  f.shell.State = Work_State::Run_Set;
  w.Form_Shown();
  EXPECT_TRUE(w.Picture1[0]->Maximum_Curve().empty());
  EXPECT_TRUE(w.Label_Step->text().isEmpty());
}

TEST(frmDiag, StopFromTheButtonDuringTheRunThenAStartRunsAgainToTheEnd) {
  Diag_Form f;
  ASSERT_TRUE(f.Open());
  frmDiag& w = *f.form;
  const int steps = f.Steps();
  // The button is clicked from the event pump of the run, as a user's click arrives.
  f.on_step = [&](const Step_Report& r) {
    if (r.step == 5) QTimer::singleShot(0, [&] { f.Press(); });
  };
  f.Press();
  EXPECT_EQ(w.Last_Outcome(), Run_Outcome::Stopped);
  const int done = static_cast<int>(f.reports.size());
  EXPECT_GE(done, 5);
  EXPECT_LE(done, 6);  // honoured at the top of the next step
  EXPECT_EQ(w.Command2->text(), "Start computations");
  Run_Index index;
  ASSERT_TRUE(f.Read_Index(index));  // closed and readable
  EXPECT_EQ(Storage_Count(index), f.Storages_Up_To(done));
  EXPECT_EQ(static_cast<int>(w.Picture1[0]->Maximum_Curve().size()), done + 1);
  EXPECT_EQ(f.state_changes, 1);
  EXPECT_TRUE(w.Label_Outcome->text().startsWith(QString("Computation stopped after step %1 of").arg(done)));

  // A new press starts from the beginning and runs to the end.
  f.reports.clear();
  f.on_step = {};
  f.Press();
  EXPECT_EQ(w.Last_Outcome(), Run_Outcome::Completed);
  ASSERT_EQ(static_cast<int>(f.reports.size()), steps);
  EXPECT_EQ(f.reports.front().step, 1);
  ASSERT_TRUE(f.Read_Index(index));
  EXPECT_EQ(Storage_Count(index), f.Storages_Up_To(steps));
  EXPECT_EQ(f.state_changes, 2);
}

TEST(frmDiag, StartPressedAgainWhileAStoppedRunEndsRestartsIt) {
  Diag_Form f;
  ASSERT_TRUE(f.Open());
  frmDiag& w = *f.form;
  const int steps = f.Steps();
  int first_runs = 0;
  f.on_step = [&](const Step_Report& r) {
    if (r.step == 3 && first_runs++ == 0) {
      f.Press();  // stop
      f.Press();  // and start again before the run has come to its end
    }
  };
  f.Press();
  EXPECT_EQ(w.Last_Outcome(), Run_Outcome::Completed);
  ASSERT_EQ(static_cast<int>(f.reports.size()), 3 + steps);
  EXPECT_EQ(f.reports[3].step, 1);
  EXPECT_EQ(f.state_changes, 1);
  EXPECT_EQ(w.Command2->text(), "Start computations");
}

TEST(frmDiag, MessagesOfTheRunAndAMissingResultNameReachTheUser) {
  Diag_Form f;
  ASSERT_TRUE(f.Open());
  // An element whose material the database does not know: the run says so and goes on.
  f.project.Mesh_Element[1].Material = "No such concrete";
  f.project.Result_File_Name.clear();
  f.project.Period.clear();
  f.project.Period.add(Period{0, 2, 1, 0.5});
  f.host.files.push_back("");  // the user cancels the name of the results
  f.Press();
  ASSERT_EQ(f.host.chooser_titles.size(), 1u);
  ASSERT_EQ(f.host.messages.size(), 1u);
  EXPECT_EQ(f.host.messages[0], "A path and a filename must be given for your output !");
  EXPECT_TRUE(f.reports.empty());
  EXPECT_EQ(f.shell.State, Work_State::Run_Set);

  f.host.files.push_back(f.dir.file("OTHER.RES"));
  f.Press();
  EXPECT_EQ(f.project.Result_File_Name, f.dir.file("OTHER.RES"));
  EXPECT_EQ(static_cast<int>(f.reports.size()), 4);
  // The warning stands in the window; it does not hold the run up with a box.
  EXPECT_TRUE(f.form->Label_Messages->text().contains("not in the database"));
  for (const std::string& m : f.host.messages)
    EXPECT_EQ(m.find("not in the database"), std::string::npos) << m;
  EXPECT_EQ(f.form->Label_Outcome->text(), "Computation completed.");
  EXPECT_TRUE(std::filesystem::exists(f.dir.file("OTHER.RES")));
  EXPECT_EQ(f.shell.State, Work_State::Computed);
}

// A run of many steps draws its curves with a few points per pixel column, and no extreme of a
// column is lost.
TEST(Diagnostic_Graph, LongCurvesKeepTheExtremesOfEveryPixelColumn) {
  std::vector<Graph_Point> curve;
  const int rows = 20000;
  for (int i = 0; i < rows; ++i)
    curve.push_back({2200.0 * i / (rows - 1), 750 + 700 * std::sin(i * 0.37)});
  const double sx = 199.0 / 2200, sy = 0.1;
  const QPolygonF line = Screen_Polyline(curve, sx, sy);
  EXPECT_LE(line.size(), 4 * 200);
  EXPECT_EQ(line.front(), QPointF(curve.front().x * sx, curve.front().y * sy));
  EXPECT_EQ(line.back(), QPointF(curve.back().x * sx, curve.back().y * sy));
  // Per column, the lowest and highest of the full curve are in the thinned one.
  std::map<long, std::pair<double, double>> full, thin;
  auto add = [](std::map<long, std::pair<double, double>>& m, double x, double y) {
    auto [it, fresh] = m.try_emplace(std::lround(x), y, y);
    if (!fresh) it->second = {std::min(it->second.first, y), std::max(it->second.second, y)};
  };
  for (const Graph_Point& p : curve)
    add(full, p.x * sx, p.y * sy);
  for (const QPointF& p : line)
    add(thin, p.x(), p.y());
  EXPECT_EQ(full, thin);
  // A short curve stays as it is.
  const std::vector<Graph_Point> few = {{0, 100}, {1100, 200}, {2200, 50}};
  EXPECT_EQ(Screen_Polyline(few, sx, sy).size(), 3);
}

}  // namespace
}  // namespace pvx
