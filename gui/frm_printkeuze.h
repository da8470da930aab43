// The print selection: the user ticks the sections of the input tables and prints them on a
// printer (or a PDF file, which the platform's print dialog offers as a printer) in the unit
// system the session displays. A box whose section has no data is greyed out.
#pragma once

#include <functional>

#include <QCheckBox>
#include <QDateTime>
#include <QDialog>
#include <QGroupBox>
#include <QPushButton>

#include "gui_context.h"
#include "report/input_printout.h"

class QPagedPaintDevice;
class QPrinter;

namespace pvx {

class frmPrintkeuze : public QDialog {
  Q_OBJECT

 public:
  frmPrintkeuze(Gui_Context& context, QWidget* parent = nullptr);

  // The ticked boxes; a greyed-out box counts as not ticked.
  Print_Selection Selection() const;
  // Ticks exactly the boxes of `selection` that have data.
  void Set_Selection(const Print_Selection& selection);
  // What "Print ..." prints: the ticked sections laid out in the session's unit system.
  Print_Layout Printed_Layout() const;
  // Prints the ticked sections on the pages of `device` as they are set, headed with `when`.
  // Returns the page count: 0 with nothing ticked (nothing is drawn) or when the device fails.
  int Print_To(QPagedPaintDevice& device, const QDateTime& when) const;

  // "Print ...": with a box ticked, lets the user choose the printer and prints; the window closes
  // once the pages went out. A cancelled choice leaves the window open; a failed print says so.
  void Printknop_Click();
  // The printer's choice: true when the user confirmed it. The platform's print dialog; tests put
  // a choice of their own here.
  std::function<bool(QPrinter&)> Choose_Printer;

  // printkeuze[0..9]: the boxes in the order of Print_Section.
  QCheckBox* printkeuze[Print_Section_Count];
  QGroupBox* Frame[3];  // "Object properties", "Boundary conditions", "Mesh and time marching"
  QPushButton* Printknop;
  QPushButton* cmdCancel;

 private:
  bool Run_Print_Dialog(QPrinter& printer);
  Gui_Context& context_;
};

}  // namespace pvx
