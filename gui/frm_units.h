// The choice of the unit system for display and entry. Stored values never change; OK sets the
// Project's flag and the forms show their labels and values in the chosen system.
#pragma once

#include <QDialog>
#include <QPushButton>
#include <QRadioButton>

#include "gui_context.h"

namespace pvx {

inline constexpr const char* SI_Units_Text = "S.I.";
inline constexpr const char* SI_Units_Note = "(mm, kg, oC, kPa, MPa, N, kN, m/s, W/m2K, kJ/m3K)";
inline constexpr const char* Imperial_Units_Text = "English Imperial System";
inline constexpr const char* Imperial_Units_Note =
    "(in, lb, oF, psi, ksi, lbf, kip, mph, BtuIT/hft2oF, BtuIT/yd3oF)";

class frmUnits : public QDialog {
  Q_OBJECT

 public:
  frmUnits(Gui_Context& context, QWidget* parent = nullptr);
  QRadioButton* Option1[2];  // 0 S.I., 1 English Imperial System
  QPushButton* cmdOK;
  QPushButton* cmdCancel;

 private:
  void OK_Click();
  Gui_Context& context_;
};

}  // namespace pvx
