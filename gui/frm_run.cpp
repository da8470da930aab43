#include "frm_run.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>
#include <QTableWidget>
#include <QToolButton>
#include <QVBoxLayout>

#include "app/units.h"
#include "frm_dialog_iterations.h"

namespace pvx {

namespace {

const QColor Edit_Colour(0, 120, 0);  // a typed value not yet taken

void Set_Text_Colour(QLineEdit* field, const QColor& colour) {
  QPalette palette = field->palette();
  palette.setColor(QPalette::Text, colour);
  field->setPalette(palette);
}

QString Show(double value, bool decimal_comma) {
  QString text = QString::number(value, 'g', 10);
  if (decimal_comma) text.replace('.', ',');
  return text;
}

}  // namespace

frmRun::frmRun(Gui_Context& context, QWidget* parent) : Work_Form_Widget(parent), context_(context) {
  setObjectName("frmRun");
  setWindowTitle("Runtime Specifications");
  auto* layout = new QVBoxLayout(this);

  auto make_field = [this](const char* name) {
    auto* field = new QLineEdit(this);
    field->setObjectName(name);
    field->setMaximumWidth(120);
    connect(field, &QLineEdit::textEdited, this, [this, field] {
      if (!filling_) Set_Text_Colour(field, Edit_Colour);
    });
    return field;
  };

  auto* top = new QGridLayout;
  Text_Computation_Time = make_field("Text_Computation_Time");
  Text_Period_Count = make_field("Text_Period_Count");
  top->addWidget(new QLabel("Computations up to", this), 0, 0);
  top->addWidget(Text_Computation_Time, 0, 1);
  top->addWidget(new QLabel("hours", this), 0, 2);
  top->addWidget(new QLabel("Number of periods", this), 1, 0);
  top->addWidget(Text_Period_Count, 1, 1);
  top->setColumnStretch(3, 1);
  layout->addLayout(top);

  Frame_Period = new QGroupBox(this);
  Frame_Period->setObjectName("Frame_Period");
  auto* period = new QGridLayout(Frame_Period);
  Text_From = make_field("Text_From");
  Text_From->setReadOnly(true);
  Text_Until = make_field("Text_Until");
  Text_Storage_Each = make_field("Text_Storage_Each");
  Text_Time_Increment = make_field("Text_Time_Increment");
  period->addWidget(new QLabel("From", Frame_Period), 0, 0);
  period->addWidget(Text_From, 0, 1);
  period->addWidget(new QLabel("until", Frame_Period), 0, 2);
  period->addWidget(Text_Until, 0, 3);
  period->addWidget(new QLabel("hours", Frame_Period), 0, 4);
  period->addWidget(new QLabel("Storage each", Frame_Period), 1, 0);
  period->addWidget(Text_Storage_Each, 1, 1);
  period->addWidget(new QLabel("hours", Frame_Period), 1, 2);
  period->addWidget(new QLabel("Time increment", Frame_Period), 2, 0);
  period->addWidget(Text_Time_Increment, 2, 1);
  period->addWidget(new QLabel(QString("hours") + Time_Increment_Remark, Frame_Period), 2, 2, 1, 3);

  UpDown1 = new QWidget(Frame_Period);
  UpDown1->setObjectName("UpDown1");
  auto* arrows = new QVBoxLayout(UpDown1);
  arrows->setContentsMargins(0, 0, 0, 0);
  arrows->setSpacing(0);
  UpDown1_Up = new QToolButton(UpDown1);
  UpDown1_Up->setArrowType(Qt::UpArrow);
  UpDown1_Up->setToolTip("Next period");
  UpDown1_Down = new QToolButton(UpDown1);
  UpDown1_Down->setArrowType(Qt::DownArrow);
  UpDown1_Down->setToolTip("Previous period");
  arrows->addWidget(UpDown1_Up);
  arrows->addWidget(UpDown1_Down);
  period->addWidget(UpDown1, 0, 5, 3, 1);
  period->setColumnStretch(6, 1);
  layout->addWidget(Frame_Period);

  auto* totals = new QGridLayout;
  Label_Total_Steps = new QLabel(this);
  Label_Total_Steps->setObjectName("Label_Total_Steps");
  Label_Total_Storages = new QLabel(this);
  Label_Total_Storages->setObjectName("Label_Total_Storages");
  totals->addWidget(new QLabel("Total number of time steps", this), 0, 0);
  totals->addWidget(Label_Total_Steps, 0, 1);
  totals->addWidget(new QLabel("Total number of storages", this), 1, 0);
  totals->addWidget(Label_Total_Storages, 1, 1);
  totals->setColumnStretch(2, 1);
  layout->addLayout(totals);

  auto* variants = new QGroupBox("Material variants", this);
  auto* variant_layout = new QGridLayout(variants);
  List1 = new QListWidget(variants);
  List1->setObjectName("List1");
  flg1 = new QTableWidget(0, 2, variants);
  flg1->setObjectName("flg1");
  flg1->setHorizontalHeaderLabels({"", "Material"});
  flg1->verticalHeader()->setVisible(false);
  flg1->horizontalHeader()->setStretchLastSection(true);
  flg1->setColumnWidth(0, 28);
  flg1->setEditTriggers(QAbstractItemView::NoEditTriggers);
  flg1->setSelectionMode(QAbstractItemView::NoSelection);
  Command_Mark_All = new QPushButton("Mark all", variants);
  Command_Unmark_All = new QPushButton("Unmark all", variants);
  Label_Runs = new QLabel(variants);
  Label_Runs->setObjectName("Label_Runs");
  variant_layout->addWidget(new QLabel("Material to be replaced:", variants), 0, 0);
  variant_layout->addWidget(new QLabel("Replaced by each marked material:", variants), 0, 1, 1, 2);
  variant_layout->addWidget(List1, 1, 0, 3, 1);
  variant_layout->addWidget(flg1, 1, 1, 3, 1);
  variant_layout->addWidget(Command_Mark_All, 1, 2);
  variant_layout->addWidget(Command_Unmark_All, 2, 2);
  variant_layout->addWidget(Label_Runs, 4, 1);
  variant_layout->setRowStretch(3, 1);
  layout->addWidget(variants, 1);

  auto* damped = new QHBoxLayout;
  Spin_Damped_Start = new QSpinBox(this);
  Spin_Damped_Start->setObjectName("Spin_Damped_Start");
  Spin_Damped_Start->setRange(0, 100);
  Spin_Damped_Start->setSpecialValueText("off");
  Spin_Damped_Start->setToolTip(
      "Backward Euler steps after the start and after a cooling circuit is switched on or off. They "
      "keep the temperatures round the pipes from overshooting the water; off computes every step by "
      "the trapezoidal rule.");
  damped->addWidget(new QLabel("Damped start: steps of backward Euler", this));
  damped->addWidget(Spin_Damped_Start);
  damped->addStretch();
  layout->addLayout(damped);

  auto* bottom = new QHBoxLayout;
  Check1 = new QCheckBox("Smoothen stresses", this);
  Check1->setObjectName("Check1");
  Command_Limits = new QPushButton("Set convergence limits for mechanics", this);
  Command_Limits->setObjectName("Command_Limits");
  bottom->addWidget(Check1);
  bottom->addStretch();
  bottom->addWidget(Command_Limits);
  layout->addLayout(bottom);

  Project& p = context_.project;
  connect(Text_Computation_Time, &QLineEdit::returnPressed, this,
          [this, &p] { Taken(Enter_Computation_Time(p, Read(Text_Computation_Time))); });
  connect(Text_Period_Count, &QLineEdit::returnPressed, this, [this, &p] {
    std::string message;
    const int count =
        Check_Integer(Text_Period_Count->text().toStdString(), context_.shell.Decimal_Comma, &message);
    if (!message.empty()) context_.host.Show_Message(message);
    Taken(Enter_Period_Count(p, window_, count));
  });
  connect(Text_Until, &QLineEdit::returnPressed, this,
          [this, &p] { Taken(Enter_Period_Until(p, window_, Read(Text_Until))); });
  connect(Text_Storage_Each, &QLineEdit::returnPressed, this,
          [this, &p] { Taken(Enter_Storage_Each(p, window_, Read(Text_Storage_Each))); });
  connect(Text_Time_Increment, &QLineEdit::returnPressed, this,
          [this, &p] { Taken(Enter_Time_Increment(p, window_, Read(Text_Time_Increment))); });
  connect(UpDown1_Up, &QToolButton::clicked, this, [this, &p] {
    Move_Current_Period(p, window_, 1);
    Refill_Schedule();
  });
  connect(UpDown1_Down, &QToolButton::clicked, this, [this, &p] {
    Move_Current_Period(p, window_, -1);
    Refill_Schedule();
  });
  connect(List1, &QListWidget::currentRowChanged, this, [this, &p](int row) {
    if (filling_ || row < 0 || row >= window_.Replaceable_Material.count()) return;
    Choose_Replaced_Material(p, window_, window_.Replaceable_Material[row + 1]);
    context_.state_changed();
  });
  connect(flg1, &QTableWidget::cellClicked, this, [this, &p](int row, int) {
    Toggle_Material_Mark(p, window_, row + 1);
    Refill_Variants();
    context_.state_changed();
  });
  connect(Command_Mark_All, &QPushButton::clicked, this, [this, &p] {
    Mark_All_Materials(p, window_);
    Refill_Variants();
    context_.state_changed();
  });
  connect(Command_Unmark_All, &QPushButton::clicked, this, [this, &p] {
    Unmark_All_Materials(p, window_);
    Refill_Variants();
    context_.state_changed();
  });
  connect(Command_Limits, &QPushButton::clicked, this, [this] { Open_Limits(); });
  connect(Spin_Damped_Start, &QSpinBox::valueChanged, this, [this, &p](int steps) {
    if (filling_ || steps == p.Damped_Start_Steps) return;
    if (Enter_Damped_Start(p, steps)) context_.state_changed();
  });
}

void frmRun::Form_Shown() {
  Set_Mebin(context_.project, window_);
  Refill_Schedule();
  Refill_Variants();
}

double frmRun::Read(QLineEdit* field) const {
  std::string message;
  const double value = Check_Number(field->text().toStdString(), context_.shell.Decimal_Comma, &message);
  if (!message.empty()) context_.host.Show_Message(message);
  return value;
}

void frmRun::Taken(bool changed) {
  // A refused value simply shows the old one again.
  Refill_Schedule();
  if (changed) context_.state_changed();
}

void frmRun::Refill_Schedule() {
  filling_ = true;
  const Run_View v = Set_Run(context_.project, window_);
  const bool comma = context_.shell.Decimal_Comma;
  Text_Computation_Time->setText(Show(v.Computation_Time, comma));
  Text_Period_Count->setText(QString::number(v.Period_Count));
  Frame_Period->setTitle(QString::fromStdString(v.Period_Caption));
  Text_From->setText(Show(v.From, comma));
  Text_Until->setText(Show(v.Until, comma));
  Text_Storage_Each->setText(Show(v.Storage_Each, comma));
  Text_Time_Increment->setText(Show(v.Time_Increment, comma));
  for (QLineEdit* field : {Text_Computation_Time, Text_Period_Count, Text_From, Text_Until, Text_Storage_Each,
                           Text_Time_Increment})
    field->setPalette(QPalette());
  Spin_Damped_Start->setValue(context_.project.Damped_Start_Steps);
  Label_Total_Steps->setText(QString::number(v.Totals.Steps));
  Label_Total_Storages->setText(QString::number(v.Totals.Storages));
  UpDown1_Up->setEnabled(v.Current_Period < v.Period_Count);
  UpDown1_Down->setEnabled(v.Current_Period > 1);
  filling_ = false;
}

void frmRun::Refill_Variants() {
  filling_ = true;
  const Project& p = context_.project;
  List1->clear();
  for (std::int16_t m : window_.Replaceable_Material) {
    List1->addItem(QString::fromStdString(p.Material.valid(m) ? p.Material[m].Name : std::string()));
    if (m == window_.Replaced_Material) List1->setCurrentRow(List1->count() - 1);
  }
  flg1->setRowCount(p.Material.count());
  for (int row = 1; row <= p.Material.count(); ++row) {
    auto* mark = new QTableWidgetItem(Mark_Text(window_, row));
    mark->setTextAlignment(Qt::AlignCenter);
    flg1->setItem(row - 1, 0, mark);
    flg1->setItem(row - 1, 1, new QTableWidgetItem(QString::fromStdString(p.Material[row].Name)));
  }
  Label_Runs->setText(QString("Number of variants: %1").arg(Number_Of_Runs(p)));
  filling_ = false;
}

void frmRun::Open_Limits() {
  frmDialogIterations dialog(context_.shell, frmDialogIterations::Mode::Settings, this);
  dialog.On_Message = [this](const std::string& text) { context_.host.Show_Message(text); };
  dialog.exec();
}

}  // namespace pvx
