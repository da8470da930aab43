// The run settings window: the period table of the run, the material variants and the iteration
// settings. A thin view over the schedule rules: each field is taken on Enter through its rule,
// the Project changes as the rule says, and the fields are refilled from the Project.
#pragma once

#include <array>

#include "analysis/schedule.h"
#include "gui_context.h"

class QCheckBox;
class QSpinBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QTableWidget;
class QToolButton;

namespace pvx {

class frmRun : public Work_Form_Widget {
  Q_OBJECT
 public:
  frmRun(Gui_Context& context, QWidget* parent = nullptr);

  // Binds the materials (Set_Mebin) and fills every field from the Project (Set_Run).
  void Form_Shown() override;

  const Run_Window& Window() const { return window_; }

  // The fields, by what they hold.
  QLineEdit* Text_Computation_Time = nullptr;  // "Computations up to"
  QLineEdit* Text_Period_Count = nullptr;      // "Number of periods"
  QLineEdit* Text_From = nullptr;              // read only
  QLineEdit* Text_Until = nullptr;
  QLineEdit* Text_Storage_Each = nullptr;
  QLineEdit* Text_Time_Increment = nullptr;
  QGroupBox* Frame_Period = nullptr;  // its title is "In period " + number
  QWidget* UpDown1 = nullptr;
  QToolButton* UpDown1_Up = nullptr;
  QToolButton* UpDown1_Down = nullptr;
  QLabel* Label_Total_Steps = nullptr;
  QLabel* Label_Total_Storages = nullptr;
  QListWidget* List1 = nullptr;  // "Material to be replaced:"
  QTableWidget* flg1 = nullptr;  // mark and name of every material
  QLabel* Label_Runs = nullptr;
  QPushButton* Command_Mark_All = nullptr;
  QPushButton* Command_Unmark_All = nullptr;
  QCheckBox* Check1 = nullptr;            // "Smoothen stresses"
  QSpinBox* Spin_Damped_Start = nullptr;  // the damped start, 0 = off
  QPushButton* Command_Limits = nullptr;

 private:
  // Reads a field's number; a text that is no number is reported and gives 0, which every rule of
  // this window refuses.
  double Read(QLineEdit* field) const;
  void Taken(bool changed);
  void Refill_Schedule();
  void Refill_Variants();
  void Open_Limits();

  Gui_Context& context_;
  Run_Window window_;
  bool filling_ = false;
};

}  // namespace pvx
