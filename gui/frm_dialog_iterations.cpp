#include "frm_dialog_iterations.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "analysis/schedule.h"
#include "app/units.h"

namespace pvx {

namespace {

const QColor Edit_Colour(0, 120, 0);  // a typed value not yet taken
const QColor Taken_Colour(0, 0, 255);

void Set_Text_Colour(QLineEdit* field, const QColor& colour) {
  QPalette palette = field->palette();
  palette.setColor(QPalette::Text, colour);
  field->setPalette(palette);
}

}  // namespace

frmDialogIterations::frmDialogIterations(Shell& settings, Mode mode, QWidget* parent)
    : QDialog(parent), settings_(settings) {
  setObjectName("frmDialogIterations");
  setWindowTitle("Convergence limits for mechanics");
  auto* layout = new QVBoxLayout(this);

  Label[0] = new QLabel(this);
  Label[1] = new QLabel("Go on with the iterations, with the limits below if you change them,", this);
  Label[2] = new QLabel("or stop the computations.", this);
  for (int i = 0; i < 3; ++i) {
    Label[static_cast<std::size_t>(i)]->setObjectName(QString("Label%1").arg(i));
    layout->addWidget(Label[static_cast<std::size_t>(i)]);
    Label[static_cast<std::size_t>(i)]->setVisible(mode == Mode::Question);
  }

  auto* grid = new QGridLayout;
  const char* captions[4] = {
      "Number of iterations before asking:", "Limit of the last increment [mm]:",
      "Limit of the displacement of the step [mm]:", "Limit of the ratio increment / step [-]:"};
  for (int i = 0; i < 4; ++i) {
    auto* field = new QLineEdit(this);
    field->setObjectName(QString("Text1_%1").arg(i));
    field->setMinimumWidth(110);
    Text1[static_cast<std::size_t>(i)] = field;
    grid->addWidget(new QLabel(captions[i], this), i, 0);
    grid->addWidget(field, i, 1);
    connect(field, &QLineEdit::textEdited, this, [field] { Set_Text_Colour(field, Edit_Colour); });
    connect(field, &QLineEdit::returnPressed, this, [this, i] { Enter(i); });
  }
  layout->addLayout(grid);

  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  OK = new QPushButton(mode == Mode::Question ? "Go on" : "OK", this);
  OK->setObjectName("OK");
  buttons->addWidget(OK);
  Cancel = new QPushButton("Stop computations", this);
  Cancel->setObjectName("Cancel");
  Cancel->setVisible(mode == Mode::Question);
  buttons->addWidget(Cancel);
  layout->addLayout(buttons);
  // Enter belongs to the fields: no button is pressed by it behind their back.
  for (QPushButton* b : {OK, Cancel}) {
    b->setAutoDefault(false);
    b->setDefault(false);
  }
  connect(OK, &QPushButton::clicked, this, [this] { Finish(Go_On); });
  connect(Cancel, &QPushButton::clicked, this, [this] { Finish(Stop); });
  Refill();
}

void frmDialogIterations::Set_Question(int iterations) {
  Label[0]->setText(
      QString::fromStdString("More than " + std::to_string(iterations) + " have been performed."));
}

void frmDialogIterations::Refill() {
  Text1[0]->setText(QString::number(settings_.Mechanical_Iteration_Limit));
  for (int i = 1; i <= 3; ++i) {
    QString text = QString::number(settings_.Mechanical_Limits[i - 1], 'g', 10);
    if (settings_.Decimal_Comma) text.replace('.', ',');
    Text1[static_cast<std::size_t>(i)]->setText(text);
  }
  for (QLineEdit* field : Text1)
    Set_Text_Colour(field, Taken_Colour);
}

void frmDialogIterations::Enter(int field) {
  std::string message;
  const double value = Check_Number(Text1[static_cast<std::size_t>(field)]->text().toStdString(),
                                    settings_.Decimal_Comma, &message);
  if (!message.empty() && On_Message) On_Message(message);
  Enter_Iteration_Setting(settings_, field, value);
  Refill();
  if (field < 3)
    Text1[static_cast<std::size_t>(field + 1)]->setFocus();
  else
    OK->click();
}

void frmDialogIterations::reject() {
  Finish(Go_On);
}

void frmDialogIterations::Finish(int answer) {
  answer_ = answer;
  if (answer == Go_On)
    QDialog::accept();
  else
    QDialog::done(QDialog::Rejected);
}

}  // namespace pvx
