// The iteration settings of the mechanical loop: the number of iterations after which the user is
// asked whether to go on, and the three convergence limits. Opened modally from the run settings
// window (three labels hidden, only OK), and modeless from the running computation with the
// question "More than n have been performed." and a button to stop.
#pragma once

#include <array>
#include <functional>
#include <string>

#include <QDialog>

#include "app/shell.h"

class QLabel;
class QLineEdit;
class QPushButton;

namespace pvx {

class frmDialogIterations : public QDialog {
  Q_OBJECT
 public:
  enum class Mode { Settings, Question };
  // The answers of the exchange with the running computation.
  static constexpr int No_Answer = 1000, Go_On = 1, Stop = 0;

  // Edits the iteration settings held in `settings`.
  frmDialogIterations(Shell& settings, Mode mode, QWidget* parent = nullptr);

  // Writes "More than " n " have been performed." in the question label.
  void Set_Question(int iterations);
  // Fills the four fields from the settings, in blue.
  void Refill();
  int Answer() const { return answer_; }

  // A typed text that is no number is reported here (the number reader's message).
  std::function<void(const std::string&)> On_Message;

  std::array<QLineEdit*, 4> Text1{};
  std::array<QLabel*, 3> Label{};  // the question and its two explanations
  QPushButton* OK = nullptr;
  QPushButton* Cancel = nullptr;

 protected:
  void reject() override;  // closing the window (or Escape) answers as OK does

 private:
  void Enter(int field);
  void Finish(int answer);

  Shell& settings_;
  int answer_ = No_Answer;
};

}  // namespace pvx
