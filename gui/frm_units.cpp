#include "frm_units.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace pvx {

frmUnits::frmUnits(Gui_Context& context, QWidget* parent) : QDialog(parent), context_(context) {
  setObjectName("frmUnits");
  setWindowTitle("Units");
  auto* grid = new QGridLayout;
  const char* texts[2] = {SI_Units_Text, Imperial_Units_Text};
  const char* notes[2] = {SI_Units_Note, Imperial_Units_Note};
  for (int i = 0; i < 2; ++i) {
    Option1[i] = new QRadioButton(texts[i], this);
    Option1[i]->setObjectName(QString("Option1_%1").arg(i));
    auto* note = new QLabel(notes[i], this);
    note->setObjectName(QString("Label1_%1").arg(i));
    grid->addWidget(Option1[i], 2 * i, 0);
    grid->addWidget(note, 2 * i + 1, 0);
    grid->setRowMinimumHeight(2 * i + 1, 24);
    note->setContentsMargins(24, 0, 0, 8);
  }
  const bool metric = context_.project.Metric_Units != False_Flag;
  Option1[metric ? 0 : 1]->setChecked(true);

  cmdOK = new QPushButton("OK", this);
  cmdOK->setObjectName("cmdOK");
  cmdOK->setDefault(true);
  cmdCancel = new QPushButton("Cancel", this);
  cmdCancel->setObjectName("cmdCancel");
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(cmdOK);
  buttons->addWidget(cmdCancel);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(grid);
  layout->addLayout(buttons);
  connect(cmdOK, &QPushButton::clicked, this, [this] { OK_Click(); });
  connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

void frmUnits::OK_Click() {
  context_.project.Metric_Units = Option1[0]->isChecked() ? True_Flag : False_Flag;
  context_.state_changed();
  accept();
}

}  // namespace pvx
