#include "frm_generate.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/units.h"

namespace pvx {

namespace {

QString Q(const std::string& text) {
  return QString::fromStdString(text);
}

std::string S(const QLineEdit* field) {
  return field->text().toStdString();
}

}  // namespace

frmGenerate::frmGenerate(Gui_Context& context, Kind kind, QWidget* parent)
    : QDialog(parent), context_(context), kind_(kind) {
  const bool circle = kind == Kind::Circle;
  setObjectName(circle ? "frmCircle" : "frmHole");
  setWindowTitle(circle ? "Generation of circular polygons" : "Generation of holes");
  auto* layout = new QVBoxLayout(this);
  auto* grid = new QGridLayout;
  for (int i = 0; i < 5; ++i) {
    auto* field = new QLineEdit(this);
    field->setObjectName(QString("Text1_%1").arg(i));
    field->setMinimumWidth(110);
    entries_[static_cast<std::size_t>(i)] = field;
    captions_[static_cast<std::size_t>(i)] = new QLabel(this);
    grid->addWidget(captions_[static_cast<std::size_t>(i)], i, 0);
    grid->addWidget(field, i, 1);
    // Enter moves on, as in the other dialogs; on the last field it applies.
    connect(field, &QLineEdit::returnPressed, this, [this, i] {
      if (i + 1 < 5)
        entries_[static_cast<std::size_t>(i + 1)]->setFocus();
      else
        Apply_Clicked();
    });
  }
  if (circle) {
    material_ = new QComboBox(this);
    material_->setObjectName("Material");
    for (const std::string& name : Plain_Material_Names(context_.project))
      material_->addItem(Q(name));
    grid->addWidget(new QLabel("Material:", this), 5, 0);
    grid->addWidget(material_, 5, 1);
  } else {
    // Another macro: the hole moves to its middle.
    connect(entries_[0], &QLineEdit::editingFinished, this, [this] { Macro_Entered(); });
  }
  layout->addLayout(grid);

  refusal_ = new QLabel(this);
  refusal_->setObjectName("Refusal");
  refusal_->setStyleSheet("color: rgb(160,0,0)");
  refusal_->setWordWrap(true);
  refusal_->setMaximumWidth(420);
  layout->addWidget(refusal_);

  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  apply_ = new QPushButton("Apply", this);
  apply_->setObjectName("cmdApply");
  auto* cancel = new QPushButton("Cancel", this);
  cancel->setObjectName("cmdCancel");
  buttons->addWidget(apply_);
  buttons->addWidget(cancel);
  layout->addLayout(buttons);
  connect(apply_, &QPushButton::clicked, this, [this] { Apply_Clicked(); });
  connect(cancel, &QPushButton::clicked, this, [this] { reject(); });
}

void frmGenerate::Set_Captions() {
  // The units follow the project, which may have changed system since the dialog was made.
  const QString unit = Unit_Name(Unit_Length_mm, context_.project.Metric_Units != 0);
  const QStringList captions =
      kind_ == Kind::Circle
          ? QStringList{QString("X centre [%1]:").arg(unit), QString("Y centre [%1]:").arg(unit),
                        QString("Outer radius [%1]:").arg(unit),
                        QString("Inner radius [%1] (0: a full disc):").arg(unit),
                        "Segments round the circle:"}
          : QStringList{"Macro:", QString("X centre [%1]:").arg(unit), QString("Y centre [%1]:").arg(unit),
                        QString("Radius [%1]:").arg(unit), "Segments round the circle:"};
  for (int i = 0; i < 5; ++i)
    captions_[static_cast<std::size_t>(i)]->setText(captions[i]);
}

void frmGenerate::Show_Circle(const Circle_Request& c) {
  Set_Captions();
  const Circle_Texts t = Show_Circle_Request(context_.project, c);
  const std::string* texts[5] = {&t.X, &t.Y, &t.Radius, &t.Inner_Radius, &t.Segments};
  for (int i = 0; i < 5; ++i)
    entries_[static_cast<std::size_t>(i)]->setText(Q(*texts[i]));
  if (material_) {
    const int at = material_->findText(Q(c.Material));
    if (at >= 0) material_->setCurrentIndex(at);
  }
  refusal_->clear();
}

void frmGenerate::Show_Hole(const Hole_Request& h) {
  Set_Captions();
  const Hole_Texts t = Show_Hole_Request(context_.project, h);
  const std::string* texts[5] = {&t.Macro, &t.X, &t.Y, &t.Radius, &t.Segments};
  for (int i = 0; i < 5; ++i)
    entries_[static_cast<std::size_t>(i)]->setText(Q(*texts[i]));
  shown_macro_ = h.Macro;
  refusal_->clear();
}

bool frmGenerate::Read_Circle(Circle_Request& c, std::string& message) const {
  const Circle_Texts t{S(entries_[0]), S(entries_[1]),
                       S(entries_[2]), S(entries_[3]),
                       S(entries_[4]), material_ ? material_->currentText().toStdString() : std::string()};
  return Read_Circle_Texts(context_.project, t, context_.shell.Decimal_Comma, c, message);
}

bool frmGenerate::Read_Hole(Hole_Request& h, std::string& message) const {
  const Hole_Texts t{S(entries_[0]), S(entries_[1]), S(entries_[2]), S(entries_[3]), S(entries_[4])};
  return Read_Hole_Texts(context_.project, t, context_.shell.Decimal_Comma, h, message);
}

QString frmGenerate::Refusal() const {
  return refusal_->text();
}

void frmGenerate::Macro_Entered() {
  Hole_Request h;
  std::string message;
  if (!Read_Hole(h, message) || h.Macro == shown_macro_) return;
  const Hole_Request fresh = Default_Hole_Request(context_.project, h.Macro);
  if (fresh.Macro == 0) {
    refusal_->setText(QString("Macro %1 does not exist.").arg(h.Macro));
    return;
  }
  h.X = fresh.X;
  h.Y = fresh.Y;
  h.Radius = fresh.Radius;
  Show_Hole(h);
}

void frmGenerate::Apply_Clicked() {
  std::string message;
  if (kind_ == Kind::Circle) {
    Circle_Request c;
    if (Read_Circle(c, message) && On_Circle) message = On_Circle(c);
  } else {
    Hole_Request h;
    if (Read_Hole(h, message) && On_Hole) message = On_Hole(h);
  }
  refusal_->setText(Q(message));
  if (message.empty()) accept();
}

}  // namespace pvx
