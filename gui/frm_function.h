// The function wizard: one function of a family at a time, chosen by number, with its three forms,
// the cut-off, a table file reader and a live preview of the curve.
#pragma once

#include <QDialog>
#include <QWidget>

#include "design/editor_function.h"
#include "gui_context.h"

class QLineEdit;
class QCheckBox;
class QRadioButton;
class QSpinBox;
class QStackedWidget;
class QTableWidget;
class QPushButton;
class QLabel;

namespace pvx {

// The preview area: draws the working copy through the plotting surface.
class Function_Preview : public QWidget {
 public:
  Function_Preview(const Function_Session& session, const Project& project, QWidget* parent);
  QSize sizeHint() const override { return {420, 260}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const Function_Session& session_;
  const Project& project_;
};

class frmFunction : public QDialog {
 public:
  // `ok` is false (with the message shown) when the number names no function of the family.
  frmFunction(Function_Family family, int number, Gui_Context& context, QWidget* parent, bool& ok);

  bool Changed_Project() const { return changed_; }
  const Function_Session& Session() const { return session_; }
  Function_Preview* Preview() const { return preview_; }
  QLineEdit* Number_Entry() const { return number_; }
  QTableWidget* Grid() const { return grid_; }
  QPushButton* Apply_Button() const { return apply_; }
  QPushButton* Read_File_Button() const { return read_file_; }
  QRadioButton* Form_Option(Function_Form form) const;
  QLineEdit* Value_Entry(Function_Value value) const;

 private:
  void Build();
  void Show_Values();
  void Show_Points();
  void Enter_Value(Function_Value value);
  void Cell_Changed(int row, int column);
  void Read_File();
  void Apply_Clicked();

  Gui_Context& context_;
  Function_Session session_;
  QLineEdit* number_ = nullptr;
  QRadioButton* forms_[3] = {};
  QStackedWidget* frames_ = nullptr;
  QLineEdit* values_[6] = {};  // by Function_Value
  QLabel* average_label_ = nullptr;
  QSpinBox* sine_ = nullptr;
  QTableWidget* grid_ = nullptr;
  QCheckBox* cut_off_ = nullptr;
  QPushButton* apply_ = nullptr;
  QPushButton* read_file_ = nullptr;
  Function_Preview* preview_ = nullptr;
  bool changed_ = false;
  bool showing_ = false;
};

}  // namespace pvx
