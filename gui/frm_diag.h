// "Run diagnostics": the window from which a computation is started, stopped and watched. Its
// button runs the analysis of the Project in the window's thread; after each step the graphs of
// the chosen quantities show the extremes over the model against time.
#pragma once

#include <QPolygonF>
#include <array>
#include <functional>
#include <string>
#include <vector>

#include "analysis/driver.h"
#include "app/run_window.h"
#include "gui_context.h"

class QCheckBox;
class QComboBox;
class QFrame;
class QGridLayout;
class QGroupBox;
class QLabel;
class QPushButton;

namespace pvx {

// One graph: the grey grid and the maximum and minimum curves, in picture coordinates of a
// 2200 x 1500 area scaled to the widget.
class Diagnostic_Graph : public QWidget {
 public:
  using QWidget::QWidget;
  void Set_Curves(std::vector<Graph_Point> maximum, std::vector<Graph_Point> minimum);
  const std::vector<Graph_Point>& Maximum_Curve() const { return maximum_; }
  const std::vector<Graph_Point>& Minimum_Curve() const { return minimum_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  std::vector<Graph_Point> maximum_, minimum_;
};

inline constexpr int Redraw_Interval_Ms = 50;

// The curve of a graph in widget pixels, thinned to what the pixel columns can show.
QPolygonF Screen_Polyline(const std::vector<Graph_Point>& curve, double sx, double sy);

class frmDiag : public Work_Form_Widget {
  Q_OBJECT
 public:
  frmDiag(Gui_Context& context, QWidget* parent = nullptr);

  // Opening the window: the mechanical analysis off, its scan options off, the titles in the
  // project's unit system, the circuits in Combo1. Nothing changes while a run goes on.
  void Form_Shown() override;
  void Redraw() override;

  // Shows and places the graphs of the chosen quantities and draws them from rows 1..row of the
  // last run's extremes.
  void Update_Diagnostics(int row);

  bool Running() const { return running_; }
  bool Busy() const override { return running_; }
  const Run_State& Last_Run() const { return run_; }
  Run_Outcome Last_Outcome() const { return outcome_; }
  int Diagnostic_Circuit() const;

  // Seen after the labels and graphs of each step have been updated (tests, and a caller that
  // wants to follow the run).
  std::function<void(const Step_Report&)> Step_Observer;

  QPushButton* Command2 = nullptr;  // "Start computations" / "Stop computations"
  QCheckBox* Check2 = nullptr;      // "Mechanical analysis included"
  QGroupBox* Frame5 = nullptr;      // the mechanical scan options
  std::array<QCheckBox*, 6> Check1{};
  std::array<QCheckBox*, 5> Check3{};
  QLabel* Label_Circuit = nullptr;
  QComboBox* Combo1 = nullptr;  // "Circuit:"
  QLabel* Label_Step = nullptr;
  QLabel* Label_Storages = nullptr;
  QLabel* Label_Iterations = nullptr;
  QLabel* Label_Outcome = nullptr;   // how the last run ended
  QLabel* Label_Messages = nullptr;  // the warnings of the last run
  std::array<QFrame*, Diagnostic_Graph_Count> Graph_Box{};
  std::array<Diagnostic_Graph*, Diagnostic_Graph_Count> Picture1{};
  std::array<QLabel*, Diagnostic_Graph_Count> Label5{}, Label7{}, Label8{}, Label9{};

 protected:
  void hideEvent(QHideEvent* event) override;

 private:
  void Command2_Click();
  void Show_Button();
  void Check2_Click();
  Scan_Options Options() const;
  // Runs until the run ends without a restart asked during it.
  void Run();
  bool Run_Once();

  Gui_Context& context_;
  Run_Button button_;
  bool stop_ = false;
  bool running_ = false;
  bool restart_ = false;
  int last_row_ = 0;
  Run_State run_;
  Run_Outcome outcome_ = Run_Outcome::Completed;
  QGridLayout* positions_ = nullptr;
  std::array<int, Diagnostic_Graph_Count> placed_{};  // the positions the boxes stand at
  bool placed_once_ = false;
  std::string run_project_;  // the project file of the last run
};

}  // namespace pvx
