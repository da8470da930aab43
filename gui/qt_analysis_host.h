// The desktop program's side of a running computation. The analysis runs in the window's thread;
// each Pump_Events lets Qt handle what is pending (repaints, the stop button, the iteration
// dialog), so the window stays alive without a second thread.
#pragma once

#include <QElapsedTimer>
#include <functional>
#include <string>

#include "analysis/host.h"
#include "app/shell.h"

class QWidget;

namespace pvx {

inline constexpr int Pump_Interval_Ms = 10;

class Qt_Analysis_Host : public Analysis_Host {
 public:
  // `stop` is the flag that the stop button sets; the iteration settings changed in the dialog go
  // to `settings` as well, so that the next run starts with them.
  Qt_Analysis_Host(const bool& stop, Shell& settings, QWidget* dialog_parent)
      : stop_(stop), settings_(settings), dialog_parent_(dialog_parent) {
    since_pump_.start();
  }

  void Pump_Events() override;
  void Show_Message(const std::string& text, Message_Kind kind) override;
  // Shows the iteration dialog modeless with the question and waits in an event loop for its
  // answer; the limits typed in it are given back.
  bool Ask_More_Iterations(int iterations, int& iteration_limit, double limits[3]) override;
  void Report_Step(const Step_Report& report) override;
  void Report_Variant(int variant, int variants, int storages) override;
  bool Stop_Requested() override { return stop_; }

  // Where the host's reports go: the run window's labels and graphs, and its message route.
  std::function<void(const std::string&, Message_Kind)> On_Message;
  std::function<void(const Step_Report&)> On_Step;
  std::function<void(int variant, int variants, int storages)> On_Variant;

 private:
  const bool& stop_;
  Shell& settings_;
  QWidget* dialog_parent_;
  // The analysis pumps at every step and at every matrix column of a factorisation. The first
  // pump after a step always lets Qt run (so a stop takes effect at the next step); the others
  // only when some milliseconds have passed, since asking the window system thousands of times a
  // step for nothing would cost more than the computation.
  bool step_pump_due_ = true;
  QElapsedTimer since_pump_;
};

}  // namespace pvx
