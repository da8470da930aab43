// The sixteen property editors as one dialog driven by the field descriptions of the core: each
// editor (frmBorT, frmSupportL, ...) is this dialog over its own fields, named by its form name.
#pragma once

#include <vector>

#include <QDialog>

#include "design/editor_fields.h"
#include "gui_context.h"

class QLineEdit;
class QCheckBox;
class QComboBox;
class QRadioButton;
class QPushButton;

namespace pvx {

class frmPropertyEditor : public QDialog {
 public:
  // `ok` is false (with the message shown) when `index` names no record; the dialog is then empty.
  frmPropertyEditor(Editor_Kind kind, int index, Gui_Context& context, QWidget* parent, bool& ok);

  // True after an "Apply" that changed the Project.
  bool Changed_Project() const { return changed_; }
  const Editor_Session& Session() const { return session_; }
  // The entry box of a field by its caption as shown (nullptr when there is none); for the tests.
  QLineEdit* Entry(const QString& caption) const;
  QPushButton* Apply_Button() const { return apply_; }
  QPushButton* Cancel_Button() const { return cancel_; }

 private:
  struct Field_Widgets {
    QLineEdit* entry = nullptr;
    QCheckBox* check = nullptr;
    QComboBox* combo = nullptr;
    std::vector<QRadioButton*> options;
  };
  void Build();
  void Show_Values();
  void Enter_Pressed(int field);
  void Open_Wizard(int field);
  void Apply_Clicked();

  Gui_Context& context_;
  Editor_Session session_;
  std::vector<Field_Widgets> widgets_;
  std::vector<int> entry_order_;  // fields with an entry box, in order, for the focus after Enter
  QPushButton* apply_ = nullptr;
  QPushButton* cancel_ = nullptr;
  bool changed_ = false;
  bool showing_ = false;
};

}  // namespace pvx
