// The one way the analysis reaches whoever runs it: the desktop program, the batch tool or a test.
//
// The analysis runs in the caller's thread. It pumps the host's events at fixed places (before the
// first step, at the top of each step, in every pass of the temperature iteration, in each mechanical
// iteration, after each storage, once per
// matrix column of a factorisation), so that a window stays alive and a stop request can reach the
// run state. Every method has a do-nothing default: a host overrides what it needs.
#pragma once

#include <string>

namespace pvx {

enum class Message_Kind { Information, Warning, Critical };

// What the host is told after each step.
struct Step_Report {
  int variant = 0;  // 1..Number_Of_Runs
  int variants = 0;
  int step = 0;  // 1..steps
  int steps = 0;
  double time = 0;   // end of the step, hours
  int storages = 0;  // storages written so far, the initial state included
  int mechanical_iterations = 0;
};

class Analysis_Host {
 public:
  virtual ~Analysis_Host() = default;

  // Lets the host handle pending user input; the host may set the stop flag of the run from here.
  virtual void Pump_Events() {}
  // A message box of the program ("Error division by zero in solver", ...).
  virtual void Show_Message(const std::string& text, Message_Kind kind) {
    (void)text;
    (void)kind;
  }
  // The iteration question: "More than " n " have been performed." The host may change the
  // iteration limit and the three convergence limits it is given; returns true to go on.
  virtual bool Ask_More_Iterations(int iterations, int& iteration_limit, double limits[3]) {
    (void)iterations;
    (void)iteration_limit;
    (void)limits;
    return false;
  }
  // Progress after each step (labels and graphs of the run window, a progress bar, a recorder).
  virtual void Report_Step(const Step_Report& report) { (void)report; }
  // The end of a variant: its files are closed and hold `storages` storages.
  virtual void Report_Variant(int variant, int variants, int storages) {
    (void)variant;
    (void)variants;
    (void)storages;
  }
  // Whether the user asked to stop; read at the top of each step and in every pass of its
  // temperature iteration.
  virtual bool Stop_Requested() { return false; }
};

}  // namespace pvx
