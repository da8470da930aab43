#include "frm_elem.h"

#include <algorithm>
#include <string>

#include <QButtonGroup>
#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace pvx {

frmelem::frmelem(const Project& project, Splitting_Parameters& parameters, Shell_Host& host,
                 bool decimal_comma, QWidget* parent)
    : QWidget(parent),
      project_(project),
      parameters_(parameters),
      host_(host),
      decimal_comma_(decimal_comma) {
  setObjectName("frmelem");
  auto* layout = new QVBoxLayout(this);

  // The two count lines are aligned on their colons, so they need a fixed-width font.
  const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  nodes_ = new QLabel(this);
  elements_ = new QLabel(this);
  nodes_->setFont(fixed);
  elements_->setFont(fixed);
  layout->addWidget(nodes_);
  layout->addWidget(elements_);

  auto* division_row = new QGridLayout;
  division_row->addWidget(new QLabel("Number of subdivisions:", this), 0, 0);
  division_ = new QLineEdit(this);
  division_->setObjectName("Division");
  division_->setMaximumWidth(80);
  division_row->addWidget(division_, 0, 1);
  layout->addLayout(division_row);

  auto* ratio_box = new QGroupBox("Ratio of the parts", this);
  auto* ratio_layout = new QGridLayout(ratio_box);
  options_ = new QButtonGroup(this);
  for (int i = 0; i < 7; ++i) {
    option_[i] = new QRadioButton(Ratio_Option_Caption[i], ratio_box);
    option_[i]->setObjectName(QString("Option%1").arg(i));
    options_->addButton(option_[i], i);
    ratio_layout->addWidget(option_[i], i, 0, 1, 3);
  }
  factor_label_ = new QLabel("Factor a", ratio_box);
  factor_ = new QLineEdit(ratio_box);
  factor_->setObjectName("FactorA");
  factor_->setMaximumWidth(80);
  ratio_layout->addWidget(factor_label_, 7, 0);
  ratio_layout->addWidget(factor_, 7, 1);
  weight_label_ = new QLabel("Part", ratio_box);
  position_ = new QSpinBox(ratio_box);
  position_->setObjectName("WeightPosition");
  weight_ = new QLineEdit(ratio_box);
  weight_->setObjectName("UserRatio");
  weight_->setMaximumWidth(80);
  ratio_layout->addWidget(weight_label_, 8, 0);
  ratio_layout->addWidget(position_, 8, 1);
  ratio_layout->addWidget(weight_, 8, 2);
  layout->addWidget(ratio_box);

  auto* type_box = new QGroupBox("Element type", this);
  auto* type_layout = new QVBoxLayout(type_box);
  full_ = new QRadioButton("Fully integrated", type_box);
  shear_ = new QRadioButton("Constant shear", type_box);
  type_layout->addWidget(full_);
  type_layout->addWidget(shear_);
  layout->addWidget(type_box);
  layout->addStretch(1);

  connect(division_, &QLineEdit::returnPressed, this, [this] { Division_Entered(); });
  connect(factor_, &QLineEdit::returnPressed, this, [this] { Factor_Entered(); });
  connect(weight_, &QLineEdit::returnPressed, this, [this] { Weight_Entered(); });
  connect(position_, &QSpinBox::valueChanged, this, [this](int k) {
    if (!filling_) Set_Division(k);
  });
  connect(options_, &QButtonGroup::idToggled, this, [this](int id, bool on) {
    if (on && !filling_) Option_Chosen(id);
  });
  connect(full_, &QRadioButton::toggled, this, [this](bool on) {
    if (on && !filling_) Element_Type_Chosen(false);
  });
  connect(shear_, &QRadioButton::toggled, this, [this](bool on) {
    if (on && !filling_) Element_Type_Chosen(true);
  });

  Fit_Ratio_Tables(parameters_);
  Set_Femlabels();
  Update_Splitting_Display();
}

QString frmelem::Number_Text(double value) const {
  QString text = QString::number(value, 'g', 12);
  if (decimal_comma_) text.replace('.', ',');
  return text;
}

void frmelem::Set_Femlabels() {
  nodes_->setText(QString::fromStdString(Generated_Nodes_Label(project_)));
  elements_->setText(QString::fromStdString(Generated_Elements_Label(project_)));
}

void frmelem::Update_Splitting_Display() {
  filling_ = true;
  Fit_Ratio_Tables(parameters_);
  division_->setText(QString::number(parameters_.Division));
  const int option = std::clamp(parameters_.RatioOption, 0, 6);
  option_[option]->setChecked(true);
  factor_->setText(Number_Text(parameters_.FactorA));
  const bool geometric = option == Ratio_Geometric || option == Ratio_Geometric_Mirror;
  factor_->setEnabled(geometric);
  factor_label_->setEnabled(geometric);
  const bool user = option == Ratio_User;
  weight_label_->setEnabled(user);
  position_->setEnabled(user);
  weight_->setEnabled(user);
  position_->setRange(1, parameters_.Division);
  filling_ = false;
  Set_Division(position_->value());
  filling_ = true;
  ((project_.Constant_Shear != 0) ? shear_ : full_)->setChecked(true);
  filling_ = false;
}

void frmelem::Set_Division(int k) {
  Fit_Ratio_Tables(parameters_);
  k = std::clamp(k, 1, parameters_.Division);
  const bool was_filling = filling_;
  filling_ = true;
  position_->setValue(k);
  weight_->setText(Number_Text(parameters_.UserRatios[k]));
  filling_ = was_filling;
}

void frmelem::Division_Entered() {
  std::string message;
  if (!Enter_Division(division_->text().toStdString(), decimal_comma_, parameters_, message))
    host_.Show_Message(message);
  // Either way the box shows what holds now: the new value, or the old one kept.
  Update_Splitting_Display();
}

void frmelem::Factor_Entered() {
  std::string message;
  if (!Enter_Factor_A(factor_->text().toStdString(), decimal_comma_, parameters_, message))
    host_.Show_Message(message);
  Update_Splitting_Display();
}

void frmelem::Weight_Entered() {
  std::string message;
  const int k = position_->value();
  if (!Enter_User_Ratio(weight_->text().toStdString(), decimal_comma_, k, parameters_, message) &&
      !message.empty())
    host_.Show_Message(message);
  Set_Division(k);
}

void frmelem::Option_Chosen(int option) {
  parameters_.RatioOption = option;
  Update_Splitting_Display();
}

void frmelem::Element_Type_Chosen(bool constant_shear) {
  if (constant_shear == (project_.Constant_Shear != 0)) return;
  const bool accepted = On_Element_Type && On_Element_Type(constant_shear);
  if (!accepted) Update_Splitting_Display();  // back to the type the project has
}

}  // namespace pvx
