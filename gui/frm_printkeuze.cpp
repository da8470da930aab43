#include "frm_printkeuze.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QPageLayout>
#include <QPrintDialog>
#include <QPrinter>
#include <QVBoxLayout>

#include "print_pages.h"

namespace pvx {

namespace {

// The frames and the boxes each holds, by their first and last section.
struct Frame_Boxes {
  const char* caption;
  const char* name;
  Print_Section first, last;
};
constexpr Frame_Boxes Frames[3] = {
    {"Object properties", "Frame1", Print_Section::Macros, Print_Section::Cooling_Circuits},
    {"Boundary conditions", "Frame2", Print_Section::Thermal, Print_Section::Mechanical},
    {"Mesh and time marching", "Frame3", Print_Section::Nodes, Print_Section::Periods}};

bool Any(const Print_Selection& selection) {
  for (int i = 1; i <= Print_Section_Count; ++i)
    if (selection[i]) return true;
  return false;
}

}  // namespace

frmPrintkeuze::frmPrintkeuze(Gui_Context& context, QWidget* parent) : QDialog(parent), context_(context) {
  setObjectName("frmPrintkeuze");
  setWindowTitle("Print selection");
  auto* frames = new QHBoxLayout;
  for (int f = 0; f < 3; ++f) {
    Frame[f] = new QGroupBox(Frames[f].caption, this);
    Frame[f]->setObjectName(Frames[f].name);
    auto* boxes = new QVBoxLayout(Frame[f]);
    for (int s = static_cast<int>(Frames[f].first); s <= static_cast<int>(Frames[f].last); ++s) {
      const auto section = static_cast<Print_Section>(s);
      QCheckBox*& box = printkeuze[s - 1];
      box = new QCheckBox(Print_Section_Name(section), Frame[f]);
      box->setObjectName(QString("printkeuze_%1").arg(s - 1));
      box->setEnabled(Section_Has_Data(context_.project, section));
      boxes->addWidget(box);
    }
    boxes->addStretch();
    frames->addWidget(Frame[f], 1);
  }
  Set_Selection(Sections_With_Data(context_.project));

  Printknop = new QPushButton("Print ...", this);
  Printknop->setObjectName("Printknop");
  Printknop->setDefault(true);
  cmdCancel = new QPushButton("Cancel", this);
  cmdCancel->setObjectName("cmdCancel");
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(Printknop);
  buttons->addWidget(cmdCancel);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(frames);
  layout->addSpacing(6);
  layout->addLayout(buttons);

  Choose_Printer = [this](QPrinter& printer) { return Run_Print_Dialog(printer); };
  connect(Printknop, &QPushButton::clicked, this, [this] { Printknop_Click(); });
  connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

Print_Selection frmPrintkeuze::Selection() const {
  Print_Selection selection{};
  for (int s = 1; s <= Print_Section_Count; ++s)
    selection[s] = printkeuze[s - 1]->isEnabled() && printkeuze[s - 1]->isChecked();
  return selection;
}

void frmPrintkeuze::Set_Selection(const Print_Selection& selection) {
  for (int s = 1; s <= Print_Section_Count; ++s)
    printkeuze[s - 1]->setChecked(selection[s] && printkeuze[s - 1]->isEnabled());
}

Print_Layout frmPrintkeuze::Printed_Layout() const {
  const bool metric = context_.project.Metric_Units != False_Flag;
  return Layout_Tables(Input_Tables(context_.project, Selection(), metric));
}

int frmPrintkeuze::Print_To(QPagedPaintDevice& device, const QDateTime& when) const {
  const Print_Layout layout = Printed_Layout();
  if (layout.Lines.empty()) return 0;
  return Print_Pages(device, Printout_Header(context_.project), layout, when);
}

bool frmPrintkeuze::Run_Print_Dialog(QPrinter& printer) {
  QPrintDialog dialog(&printer, this);
  dialog.setWindowTitle("Print");
  return dialog.exec() == QDialog::Accepted;
}

void frmPrintkeuze::Printknop_Click() {
  // Nothing ticked: nothing to print, so no printer is asked for either.
  if (!Any(Selection())) return;
  QPrinter printer(QPrinter::HighResolution);
  // Landscape by default: the widest tables (the thermal conditions, the circuits) need some 130
  // characters of the fixed-pitch font, more than a portrait A4 or Letter line holds.
  printer.setPageOrientation(QPageLayout::Landscape);
  printer.setPageMargins(QMarginsF(15, 15, 15, 15), QPageLayout::Millimeter);
  const std::vector<std::string> header = Printout_Header(context_.project);
  printer.setDocName(QString::fromStdString(header.front() + " input"));
  printer.setCreator(QStringLiteral("KIVA_TRV_PELDANOR_8"));
  if (!Choose_Printer(printer)) return;
  if (Print_To(printer, QDateTime::currentDateTime()) == 0) {
    context_.host.Show_Message("The input tables could not be printed.");
    return;
  }
  accept();
}

}  // namespace pvx
