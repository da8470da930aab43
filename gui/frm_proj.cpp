#include "frm_proj.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace pvx {

frmProj::frmProj(Gui_Context& context, QWidget* parent) : Work_Form_Widget(parent), context_(context) {
  setObjectName("frmProj");
  setWindowTitle("Project description");
  auto* form = new QFormLayout;
  for (int i = 0; i < 4; ++i) {
    Text1[i] = new QLineEdit(this);
    Text1[i]->setObjectName(QString("Text1_%1").arg(i));
    Text1[i]->setMinimumWidth(480);
    form->addRow(Project_Text_Labels[i], Text1[i]);
  }
  cmdApply = new QPushButton("Apply", this);
  cmdApply->setObjectName("cmdApply");
  cmdCancel = new QPushButton("Cancel", this);
  cmdCancel->setObjectName("cmdCancel");
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(cmdApply);
  buttons->addWidget(cmdCancel);
  buttons->addStretch();
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(form);
  layout->addLayout(buttons);
  layout->addStretch();
  connect(cmdApply, &QPushButton::clicked, this, [this] { Apply_Click(); });
  connect(cmdCancel, &QPushButton::clicked, this, [this] { Form_Shown(); });
  Form_Shown();
}

void frmProj::Form_Shown() {
  for (int i = 0; i < 4; ++i)
    Text1[i]->setText(QString::fromStdString(context_.project.Project_Text[i]));
}

void frmProj::Apply_Click() {
  bool changed = false;
  for (int i = 0; i < 4; ++i) {
    const std::string text = Text1[i]->text().toStdString();
    changed = changed || text != context_.project.Project_Text[i];
    context_.project.Project_Text[i] = text;
  }
  // A changed description is a change of the file that the closing question must know about.
  if (changed) context_.project.Project_Saved = False_Flag;
  context_.state_changed();
}

}  // namespace pvx
