// "Graphical aids and options": the grids, the snap and what the design panel shows. The dialog
// keeps its fields as typed until "Apply", which takes them all through the checks of the core
// and writes them to the Project only when every check passes.
#pragma once

#include <functional>

#include <QDialog>

#include "design/panel_snap.h"
#include "gui_context.h"

class QCheckBox;
class QLineEdit;
class QTabWidget;

namespace pvx {

class frmGraf : public QDialog {
 public:
  // `display` is the design panel's; `applied` redraws the panel after a successful "Apply".
  frmGraf(Gui_Context& context, Design_Display& display, std::function<void()> applied, QWidget* parent);

  // Fills the fields from the Project and the panel's display.
  void Refresh();
  // "Apply": false, with the message shown through the host, when a number or a check fails.
  bool Apply();

  QLineEdit* Field(const char* name) const;
  QCheckBox* Tick(const char* name) const;
  QTabWidget* Tabs() const { return tabs_; }

 private:
  QLineEdit* Add_Field(QWidget* page, const char* name, const QString& label);
  QCheckBox* Add_Tick(QWidget* page, const char* name, const QString& label);

  Gui_Context& context_;
  Design_Display& display_;
  std::function<void()> applied_;
  QTabWidget* tabs_ = nullptr;
};

}  // namespace pvx
