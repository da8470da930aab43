// The project description: four lines of free text kept in the project file. The form edits a
// working copy; "Apply" writes it to the Project, "Cancel" takes the Project's text back.
#pragma once

#include <QLineEdit>
#include <QPushButton>

#include "gui_context.h"

namespace pvx {

inline constexpr const char* Project_Text_Labels[4] = {
    "1st textline :", "2nd textline :", "3rd textline :", "4th textline:"};

class frmProj : public Work_Form_Widget {
  Q_OBJECT

 public:
  frmProj(Gui_Context& context, QWidget* parent = nullptr);
  void Form_Shown() override;
  QLineEdit* Text1[4];
  QPushButton* cmdApply;
  QPushButton* cmdCancel;

 private:
  void Apply_Click();
  Gui_Context& context_;
};

}  // namespace pvx
