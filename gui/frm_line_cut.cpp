#include "frm_line_cut.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "app/units.h"
#include "frm_res.h"
#include "results/plot.h"
#include "results/viewer_values.h"

namespace pvx {

namespace {

QString Q(const std::string& text) {
  return QString::fromStdString(text);
}

}  // namespace

frmcut::frmcut(Gui_Context& context, Cut_Direction& direction, QWidget* parent)
    : QWidget(parent, Qt::Tool), context_(context), direction_(direction) {
  setObjectName("frmcut");
  setWindowTitle(Cut_Direction_Caption);
  auto* layout = new QGridLayout(this);
  for (int i = 0; i < 4; ++i) {
    Option[i] = new QRadioButton(Cut_Mode_Captions[i], this);
    Option[i]->setObjectName(QString("Option%1").arg(i));
    layout->addWidget(Option[i], i, 0);
  }
  Text_Angle = new QLineEdit(this);
  Text_Angle->setObjectName("Text_Angle");
  Text_Angle->setMaximumWidth(70);
  layout->addWidget(Text_Angle, 3, 1);
  layout->addWidget(new QLabel(Cut_Angle_Unit, this), 3, 2);
  Apply_Button = new QPushButton("Apply", this);
  Apply_Button->setObjectName("Apply_Button");
  layout->addWidget(Apply_Button, 4, 0, 1, 3, Qt::AlignRight);
  connect(Apply_Button, &QPushButton::clicked, this, [this] { Apply(); });
  connect(Text_Angle, &QLineEdit::returnPressed, this, [this] { Apply(); });
  // The angle matters only for its option.
  connect(Option[3], &QRadioButton::toggled, Text_Angle, &QLineEdit::setEnabled);
  Load();
}

void frmcut::Load() {
  Option[static_cast<int>(direction_.CutMode)]->setChecked(true);
  Text_Angle->setText(Q(Scale_Box_Text(direction_.CutAngle)));
  Text_Angle->setEnabled(direction_.CutMode == Cut_Mode::Fixed_Angle);
}

bool frmcut::Apply() {
  std::string message;
  const double angle = Check_Number(Text_Angle->text().toStdString(), context_.shell.Decimal_Comma, &message);
  if (!message.empty()) {
    context_.host.Show_Message(message);
    return false;
  }
  Cut_Direction chosen;
  for (int i = 0; i < 4; ++i)
    if (Option[i]->isChecked()) chosen.CutMode = static_cast<Cut_Mode>(i);
  chosen.CutAngle = angle;
  direction_ = chosen;
  close();
  return true;
}

frmLineCut::frmLineCut(Gui_Context& context, QWidget* parent)
    : QWidget(parent, Qt::Window), context_(context) {
  setObjectName("frmLineCut");
  setWindowTitle(Line_Cut_Caption);
  auto* layout = new QVBoxLayout(this);
  Picture1 = new Graph_Picture([this](Plot_Surface& s) { Draw(s); }, QSize(420, 260), this);
  layout->addWidget(Picture1, 1);

  auto* controls = new QHBoxLayout;
  Check_Fixed = new QCheckBox("Fixed axis", this);
  Check_Fixed->setObjectName("Check_Fixed");
  Text_Minimum = new QLineEdit(this);
  Text_Minimum->setObjectName("Text_Minimum");
  Text_Maximum = new QLineEdit(this);
  Text_Maximum->setObjectName("Text_Maximum");
  Text_Factor = new QLineEdit(this);
  Text_Factor->setObjectName("Text_Factor");
  for (QLineEdit* box : {Text_Minimum, Text_Maximum, Text_Factor})
    box->setMaximumWidth(80);
  controls->addWidget(Check_Fixed);
  controls->addWidget(new QLabel("Minimum", this));
  controls->addWidget(Text_Minimum);
  controls->addWidget(new QLabel("Maximum", this));
  controls->addWidget(Text_Maximum);
  controls->addSpacing(16);
  controls->addWidget(new QLabel("Factor", this));
  controls->addWidget(Text_Factor);
  controls->addStretch(1);
  layout->addLayout(controls);

  auto* buttons = new QHBoxLayout;
  Store_Button = new QPushButton(Store_Line_Cut_Caption, this);
  Store_Button->setObjectName("Store_Button");
  Picture_Button = new QPushButton("Store picture", this);
  Picture_Button->setObjectName("Picture_Button");
  buttons->addWidget(Store_Button);
  buttons->addWidget(Picture_Button);
  buttons->addStretch(1);
  layout->addLayout(buttons);

  connect(Check_Fixed, &QCheckBox::toggled, this, [this](bool on) { Fixed_Axis_Toggled(on); });
  connect(Text_Minimum, &QLineEdit::returnPressed, this,
          [this] { Axis_Entered(Axis_Box::Minimum, Text_Minimum->text().toStdString()); });
  connect(Text_Maximum, &QLineEdit::returnPressed, this,
          [this] { Axis_Entered(Axis_Box::Maximum, Text_Maximum->text().toStdString()); });
  connect(Text_Factor, &QLineEdit::returnPressed, this,
          [this] { Factor_Entered(Text_Factor->text().toStdString()); });
  connect(Store_Button, &QPushButton::clicked, this, [this] { Store_Results(); });
  connect(Picture_Button, &QPushButton::clicked, this, [this] { Store_Graph_Picture(); });
  resize(780, 540);
}

void frmLineCut::Show_Cut(const Line_Cut& cut, double ft_factor, bool metric) {
  cut_ = cut;
  metric_ = metric;
  if (!factor_known_ || ft_factor != last_ft_factor_) settings_.Factor = ft_factor;
  last_ft_factor_ = ft_factor;
  factor_known_ = true;
  Text_Factor->setText(Q(Scale_Box_Text(settings_.Factor)));
  Text_Factor->setEnabled(Cut_Shows_Strength(cut.Variable));
  // The boxes of the fixed axis start from the first cut of each variable.
  if (!boxes_set_ || cut.Variable != boxes_variable_) {
    Start_Boxes();
    boxes_variable_ = cut.Variable;
  }
  Picture1->update();
}

void frmLineCut::Draw(Plot_Surface& surface) {
  drawn_ = Plot_Cut(surface, cut_, settings_, metric_);
}

void frmLineCut::Fill_Boxes() {
  Text_Minimum->setText(Q(Scale_Box_Text(settings_.Minimum)));
  Text_Maximum->setText(Q(Scale_Box_Text(settings_.Maximum)));
}

void frmLineCut::Start_Boxes() {
  // The graph as it stands, in the variable's decimals, as a start for the user's own limits.
  Cut_Extents e;
  std::string ignored;
  Plot_Cut_Extents(cut_, {.Factor = settings_.Factor}, e, ignored);
  const int decimals = Scale_Label_Format_Of(cut_.Variable).High_Decimals;
  settings_.Minimum = Check_Number(Format_Number_Trimmed(e.Value_Min, 16, decimals), false);
  settings_.Maximum = Check_Number(Format_Number_Trimmed(e.Value_Max, 16, decimals), false);
  boxes_set_ = true;
  Fill_Boxes();
}

void frmLineCut::Fixed_Axis_Toggled(bool on) {
  settings_.Fixed = on;
  if (Check_Fixed->isChecked() != on) {
    const QSignalBlocker block(Check_Fixed);
    Check_Fixed->setChecked(on);
  }
  Picture1->update();
}

void frmLineCut::Axis_Entered(Axis_Box box, const std::string& text) {
  std::string message;
  const double value = Check_Number(text, context_.shell.Decimal_Comma, &message);
  if (message.empty() && Edit_Cut_Axis(settings_, box, value, message)) {
    Fill_Boxes();
    Picture1->update();
    return;
  }
  context_.host.Show_Message(message);
  Fill_Boxes();  // the old number again
}

void frmLineCut::Factor_Entered(const std::string& text) {
  std::string message;
  const double value = Check_Number(text, context_.shell.Decimal_Comma, &message);
  if (!message.empty()) {
    context_.host.Show_Message(message);
  } else {
    settings_.Factor = value;
    Picture1->update();
  }
  Text_Factor->setText(Q(Scale_Box_Text(settings_.Factor)));
}

std::string frmLineCut::Proposal(const char* extension) const {
  return In_Work_Directory(context_.shell.Work_Directory, std::string("linecut") + extension);
}

void frmLineCut::Store_Results() {
  std::string path = Proposal(".txt");
  if (!context_.host.Choose_Save_File(Store_Line_Cut_Title, Store_Line_Cut_Filter, path) || path.empty())
    return;
  std::string message;
  Store_Line_Cut(path, cut_, metric_, message);
  if (!message.empty()) context_.host.Show_Message(message);
}

void frmLineCut::Store_Graph_Picture() {
  Store_Picture_Of_Graph(context_, *Picture1, Proposal(".jpg"));
}

}  // namespace pvx
