#include "qt_analysis_host.h"

#include <QCoreApplication>
#include <QEventLoop>

#include "frm_dialog_iterations.h"

namespace pvx {

void Qt_Analysis_Host::Pump_Events() {
  if (!step_pump_due_ && since_pump_.elapsed() < Pump_Interval_Ms) return;
  step_pump_due_ = false;
  since_pump_.restart();
  QCoreApplication::processEvents();
}

void Qt_Analysis_Host::Show_Message(const std::string& text, Message_Kind kind) {
  if (On_Message) On_Message(text, kind);
}

bool Qt_Analysis_Host::Ask_More_Iterations(int iterations, int& iteration_limit, double limits[3]) {
  // The dialog edits a copy of the run's settings; what the user takes there counts at once for
  // the run and for later runs.
  Shell working = settings_;
  working.Mechanical_Iteration_Limit = static_cast<std::int16_t>(iteration_limit);
  for (int i = 0; i < 3; ++i)
    working.Mechanical_Limits[i] = limits[i];
  frmDialogIterations dialog(working, frmDialogIterations::Mode::Question, dialog_parent_);
  dialog.setWindowModality(Qt::NonModal);
  dialog.Set_Question(iterations);
  dialog.On_Message = [this](const std::string& text) { Show_Message(text, Message_Kind::Warning); };
  QEventLoop wait;
  QObject::connect(&dialog, &QDialog::finished, &wait, &QEventLoop::quit);
  dialog.show();
  if (dialog.Answer() == frmDialogIterations::No_Answer) wait.exec();
  iteration_limit = working.Mechanical_Iteration_Limit;
  for (int i = 0; i < 3; ++i)
    limits[i] = working.Mechanical_Limits[i];
  settings_.Mechanical_Iteration_Limit = working.Mechanical_Iteration_Limit;
  for (int i = 0; i < 3; ++i)
    settings_.Mechanical_Limits[i] = working.Mechanical_Limits[i];
  return dialog.Answer() == frmDialogIterations::Go_On;
}

void Qt_Analysis_Host::Report_Step(const Step_Report& report) {
  step_pump_due_ = true;
  if (On_Step) On_Step(report);
}

void Qt_Analysis_Host::Report_Variant(int variant, int variants, int storages) {
  if (On_Variant) On_Variant(variant, variants, storages);
}

}  // namespace pvx
