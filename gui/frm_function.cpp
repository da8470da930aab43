#include "frm_function.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTableWidget>
#include <QVBoxLayout>

#include "app/units.h"
#include "draw/qt_surface.h"

namespace pvx {

namespace {

QString Q(const std::string& s) {
  return QString::fromStdString(s);
}

}  // namespace

Function_Preview::Function_Preview(const Function_Session& session, const Project& project, QWidget* parent)
    : QWidget(parent), session_(session), project_(project) {
  setObjectName("Picture1");
  setMinimumSize(320, 200);
}

void Function_Preview::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  Qt_Surface surface(painter, size());
  Plot_Function_Frame(surface, session_, project_.Computation_Time);
}

frmFunction::frmFunction(Function_Family family, int number, Gui_Context& context, QWidget* parent, bool& ok)
    : QDialog(parent), context_(context) {
  setObjectName("frmFunction");
  std::string message;
  ok = Open_Function_Session(context_.project, family, number, session_, message);
  if (!ok) {
    context_.host.Show_Message(message);
    return;
  }
  session_.decimal_comma = context_.shell.Decimal_Comma;
  Build();
  Show_Values();
}

QRadioButton* frmFunction::Form_Option(Function_Form form) const {
  return forms_[static_cast<int>(form)];
}

QLineEdit* frmFunction::Value_Entry(Function_Value value) const {
  return values_[static_cast<int>(value)];
}

void frmFunction::Build() {
  const Function_Captions captions = Function_Family_Captions(session_.family, session_.metric);
  setWindowTitle(QString("Function wizzard - ") + captions.title);
  auto* outer = new QHBoxLayout(this);
  auto* left = new QVBoxLayout;
  outer->addLayout(left);

  auto* top = new QFormLayout;
  number_ = new QLineEdit(this);
  number_->setObjectName("txtNumber");
  number_->setMaximumWidth(80);
  connect(number_, &QLineEdit::returnPressed, this, [this] {
    std::string message;
    const int typed = Check_Integer(number_->text().toStdString(), session_.decimal_comma, &message);
    if (!message.empty()) {
      context_.host.Show_Message(message);
    } else {
      Choose_Function(session_, context_.project, typed, [this](const std::string& question) {
        return context_.host.Ask(question, Question_Buttons::Yes_No) == Answer::Yes;
      });
    }
    Show_Values();
  });
  // The titles end in a blank or not; the caption has exactly one before "no:".
  top->addRow(Q(std::string(captions.title)).trimmed() + " no:", number_);
  left->addLayout(top);

  auto* type_box = new QGroupBox("Function type:", this);
  auto* type_row = new QHBoxLayout(type_box);
  auto* type_group = new QButtonGroup(type_box);
  const char* form_names[3] = {"Constant", "Periodical", "Piecewise linear"};
  for (int k = 0; k < 3; ++k) {
    forms_[k] = new QRadioButton(form_names[k], type_box);
    forms_[k]->setObjectName(QString("Option%1").arg(k + 1));
    type_group->addButton(forms_[k], k);
    type_row->addWidget(forms_[k]);
  }
  connect(type_group, &QButtonGroup::idToggled, this, [this](int id, bool on) {
    if (!on || showing_) return;
    Set_Function_Form(session_.current, static_cast<Function_Form>(id));
    Show_Values();
  });
  left->addWidget(type_box);

  auto make_entry = [this](Function_Value v, const char* name) {
    auto* entry = new QLineEdit(this);
    entry->setObjectName(name);
    entry->setAlignment(Qt::AlignRight);
    entry->setMaximumWidth(120);
    connect(entry, &QLineEdit::returnPressed, this, [this, v] { Enter_Value(v); });
    values_[static_cast<int>(v)] = entry;
    return entry;
  };

  frames_ = new QStackedWidget(this);
  // Constant.
  auto* constant = new QWidget(frames_);
  auto* constant_form = new QFormLayout(constant);
  constant_form->addRow(Q(captions.y_caption) + ":", make_entry(Function_Value::Constant, "txtConstant"));
  frames_->addWidget(constant);
  // Periodical.
  auto* periodical = new QWidget(frames_);
  auto* periodical_form = new QFormLayout(periodical);
  average_label_ = new QLabel(Q(std::string(captions.value_label) + ":"), periodical);
  periodical_form->addRow(average_label_, make_entry(Function_Value::Average, "txtAverage"));
  auto* sine_row = new QHBoxLayout;
  sine_ = new QSpinBox(periodical);
  sine_->setObjectName("UpDown1");
  sine_->setMinimum(1);
  connect(sine_, &QSpinBox::valueChanged, this, [this](int k) {
    if (showing_) return;
    session_.sine = k;
    Show_Values();
  });
  auto* add_sine = new QPushButton("Add", periodical);
  add_sine->setAutoDefault(false);
  connect(add_sine, &QPushButton::clicked, this, [this] {
    session_.sine = Add_Sine_Term(session_.current);
    Show_Values();
  });
  auto* delete_sine = new QPushButton("Delete", periodical);
  delete_sine->setAutoDefault(false);
  connect(delete_sine, &QPushButton::clicked, this, [this] {
    if (Delete_Sine_Term(session_.current, session_.sine))
      session_.sine = std::min(session_.sine, Sine_Count(session_.current));
    Show_Values();
  });
  sine_row->addWidget(sine_);
  sine_row->addWidget(add_sine);
  sine_row->addWidget(delete_sine);
  periodical_form->addRow("Sinus function no:", sine_row);
  periodical_form->addRow("Amplitude;", make_entry(Function_Value::Amplitude, "txtAmplitude"));
  auto* frequency_row = new QHBoxLayout;
  frequency_row->addWidget(make_entry(Function_Value::Frequency, "txtFrequency"));
  frequency_row->addWidget(new QLabel("[1/day]", periodical));
  periodical_form->addRow("Frequency:", frequency_row);
  auto* phase_row = new QHBoxLayout;
  phase_row->addWidget(make_entry(Function_Value::Phase_Shift, "txtPhase"));
  phase_row->addWidget(new QLabel("[hours]", periodical));
  periodical_form->addRow("Phase shift:", phase_row);
  frames_->addWidget(periodical);
  // Piecewise linear.
  auto* piecewise = new QWidget(frames_);
  auto* piecewise_layout = new QVBoxLayout(piecewise);
  grid_ = new QTableWidget(0, 2, piecewise);
  grid_->setObjectName("FlexA");
  grid_->setHorizontalHeaderLabels({Q(captions.x_caption), Q(captions.y_caption)});
  grid_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  grid_->setSelectionBehavior(QAbstractItemView::SelectRows);
  grid_->setMinimumHeight(150);
  connect(grid_, &QTableWidget::cellChanged, this,
          [this](int row, int column) { Cell_Changed(row, column); });
  piecewise_layout->addWidget(grid_);
  auto* grid_buttons = new QGridLayout;
  auto* add_row = new QPushButton("Add row", piecewise);
  auto* delete_row = new QPushButton("Delete selected row", piecewise);
  auto* delete_all = new QPushButton("Delete all but 2 rows", piecewise);
  read_file_ = new QPushButton("Read File", piecewise);
  read_file_->setObjectName("cmdReadFile");
  for (QPushButton* b : {add_row, delete_row, delete_all, read_file_})
    b->setAutoDefault(false);
  grid_buttons->addWidget(add_row, 0, 0);
  grid_buttons->addWidget(delete_row, 0, 1);
  grid_buttons->addWidget(delete_all, 1, 0);
  grid_buttons->addWidget(read_file_, 1, 1);
  piecewise_layout->addLayout(grid_buttons);
  connect(add_row, &QPushButton::clicked, this, [this] {
    Add_Point_Row(session_.current);
    Show_Values();
  });
  connect(delete_row, &QPushButton::clicked, this, [this] {
    const int row = grid_->currentRow() + 1;
    if (row < 1) return;
    std::string message;
    if (!Delete_Point_Row(session_.current, row, message) && !message.empty())
      context_.host.Show_Message(message);
    Show_Values();
  });
  connect(delete_all, &QPushButton::clicked, this, [this] {
    Delete_All_But_Two_Rows(session_.current);
    Show_Values();
  });
  connect(read_file_, &QPushButton::clicked, this, [this] { Read_File(); });
  frames_->addWidget(piecewise);
  left->addWidget(frames_);

  auto* cut_row = new QHBoxLayout;
  cut_off_ = new QCheckBox("Cut off", this);
  cut_off_->setObjectName("chkCutOff");
  connect(cut_off_, &QCheckBox::toggled, this, [this](bool on) {
    if (showing_) return;
    session_.current.Has_Cut_Off = As_Flag(on);
    Show_Values();
  });
  cut_row->addWidget(cut_off_);
  cut_row->addWidget(new QLabel("Value:", this));
  cut_row->addWidget(make_entry(Function_Value::Cut_Off, "txtCutOff"));
  cut_row->addStretch(1);
  left->addLayout(cut_row);
  left->addStretch(1);

  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  apply_ = new QPushButton("Apply", this);
  apply_->setObjectName("cmdApply");
  apply_->setAutoDefault(false);
  auto* cancel = new QPushButton("Cancel", this);
  cancel->setObjectName("cmdCancel");
  cancel->setAutoDefault(false);
  buttons->addWidget(apply_);
  buttons->addWidget(cancel);
  left->addLayout(buttons);
  connect(apply_, &QPushButton::clicked, this, [this] { Apply_Clicked(); });
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

  preview_ = new Function_Preview(session_, context_.project, this);
  outer->addWidget(preview_, 1);
}

void frmFunction::Show_Values() {
  showing_ = true;
  number_->setText(QString::number(session_.number));
  const Function_Form form = Active_Form(session_.current);
  forms_[static_cast<int>(form)]->setChecked(true);
  frames_->setCurrentIndex(static_cast<int>(form));
  sine_->setMaximum(Sine_Count(session_.current));
  sine_->setValue(session_.sine);
  for (int v = 0; v < 6; ++v)
    values_[v]->setText(Q(Function_Value_Text(session_, static_cast<Function_Value>(v))));
  cut_off_->setChecked(session_.current.Has_Cut_Off != 0);
  values_[static_cast<int>(Function_Value::Cut_Off)]->setEnabled(session_.current.Has_Cut_Off != 0);
  showing_ = false;
  Show_Points();
  preview_->update();
}

void frmFunction::Show_Points() {
  showing_ = true;
  const int n = Point_Count(session_.current);
  grid_->setRowCount(n);
  for (int row = 1; row <= n; ++row)
    for (int column = 1; column <= 2; ++column) {
      auto* item = new QTableWidgetItem(Q(Point_Cell_Text(session_, row, column)));
      item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
      grid_->setItem(row - 1, column - 1, item);
    }
  showing_ = false;
}

void frmFunction::Enter_Value(Function_Value value) {
  std::string message;
  if (!Enter_Function_Value(session_, value, values_[static_cast<int>(value)]->text().toStdString(), message))
    context_.host.Show_Message(message);
  Show_Values();
}

void frmFunction::Cell_Changed(int row, int column) {
  if (showing_) return;
  std::string message;
  const QString text = grid_->item(row, column)->text();
  if (!Enter_Point_Cell(session_, row + 1, column + 1, text.toStdString(), message) && !message.empty())
    context_.host.Show_Message(message);
  // Shown again in its format after the queued edit ends; the value refused shows the old one.
  QMetaObject::invokeMethod(
      this, [this] { Show_Values(); }, Qt::QueuedConnection);
}

void frmFunction::Read_File() {
  std::string path;
  if (!context_.host.Choose_Open_File(Function_File_Dialog_Title, Function_File_Filter, path)) return;
  Function_File_Report report;
  if (!Read_Function_Table(session_, path, report)) context_.host.Show_Message(report.message);
  Show_Values();
}

void frmFunction::Apply_Clicked() {
  if (!Function_Changed(session_, context_.project)) return;
  bool ok = false;
  Destroy_Output(context_.shell, context_.host, ok);
  if (!ok) return;
  Apply_Function(session_, context_.project);
  changed_ = true;
  context_.state_changed();
  Show_Values();
}

}  // namespace pvx
