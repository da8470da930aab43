#include "frm_property.h"

#include <algorithm>

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "editors.h"

namespace pvx {

namespace {

QString Q(const std::string& s) {
  return QString::fromStdString(s);
}

bool Has_Entry(const Editor_Field& f) {
  return f.type == Field_Type::Number || f.type == Field_Type::Integer ||
         f.type == Field_Type::Function_Number || f.type == Field_Type::Row_Selector;
}

}  // namespace

frmPropertyEditor::frmPropertyEditor(Editor_Kind kind, int index, Gui_Context& context, QWidget* parent,
                                     bool& ok)
    : QDialog(parent), context_(context) {
  setObjectName(Editor_Form_Name(kind));
  setWindowTitle(Editor_Title(kind));
  std::string message;
  ok = Open_Editor(context_.project, kind, index, session_, message);
  if (!ok) {
    context_.host.Show_Message(message);
    return;
  }
  session_.decimal_comma = context_.shell.Decimal_Comma;
  Build();
  Show_Values();
}

void frmPropertyEditor::Build() {
  auto* outer = new QVBoxLayout(this);
  auto* form = new QFormLayout;
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  outer->addLayout(form);
  widgets_.resize(session_.fields.size());
  int text_number = 0, check_number = 0, option_number = 0, combo_number = 0;
  for (std::size_t i = 0; i < session_.fields.size(); ++i) {
    const int field = static_cast<int>(i);
    const Editor_Field& f = session_.fields[i];
    const QString caption = Q(Field_Caption(session_, field));
    Field_Widgets& w = widgets_[i];
    if (Has_Entry(f)) {
      w.entry = new QLineEdit(this);
      w.entry->setObjectName(QString("Text%1").arg(++text_number));
      w.entry->setAccessibleName(caption);
      w.entry->setEnabled(!f.read_only);  // shown, set elsewhere
      w.entry->setAlignment(Qt::AlignRight);
      w.entry->setMinimumWidth(110);
      connect(w.entry, &QLineEdit::returnPressed, this, [this, field] { Enter_Pressed(field); });
      if (!f.read_only) entry_order_.push_back(field);
      if (f.type == Field_Type::Function_Number) {
        // The function itself is edited in the wizard, on the family of the field.
        auto* row = new QHBoxLayout;
        row->addWidget(w.entry, 1);
        auto* wizard = new QPushButton("Function...", this);
        wizard->setObjectName(QString("Wizard%1").arg(text_number));
        wizard->setAutoDefault(false);
        connect(wizard, &QPushButton::clicked, this, [this, field] { Open_Wizard(field); });
        row->addWidget(wizard);
        form->addRow(caption, row);
      } else {
        form->addRow(caption, w.entry);
      }
    } else if (f.type == Field_Type::Check) {
      w.check = new QCheckBox(caption, this);
      w.check->setObjectName(QString("Check%1").arg(++check_number));
      connect(w.check, &QCheckBox::toggled, this, [this, field](bool on) {
        if (!showing_) Set_Field_Value(session_, field, on ? 1 : 0);
      });
      form->addRow(QString(), w.check);
    } else if (f.type == Field_Type::Option) {
      auto* box = new QGroupBox(caption, this);
      box->setObjectName(QString("Frame%1").arg(++option_number));
      auto* row = new QHBoxLayout(box);
      auto* group = new QButtonGroup(box);
      for (std::size_t k = 0; k < f.options.size(); ++k) {
        auto* button = new QRadioButton(Q(f.options[k]), box);
        button->setObjectName(QString("Option%1_%2").arg(option_number).arg(k + 1));
        group->addButton(button, static_cast<int>(k));
        row->addWidget(button);
        w.options.push_back(button);
      }
      connect(group, &QButtonGroup::idToggled, this, [this, field](int id, bool on) {
        if (on && !showing_) Set_Field_Value(session_, field, id);
      });
      form->addRow(box);
    } else if (f.type == Field_Type::Material) {
      w.combo = new QComboBox(this);
      w.combo->setObjectName(QString("Combo%1").arg(++combo_number));
      w.combo->setAccessibleName(caption);
      for (const std::string& name : Material_Choices(context_.project, f.filter))
        w.combo->addItem(Q(name));
      const QString current = Q(f.get_text(session_.copy));
      if (!current.isEmpty() && w.combo->findText(current) < 0) w.combo->addItem(current);
      connect(w.combo, &QComboBox::textActivated, this,
              [this, field](const QString& text) { Set_Field_Text(session_, field, text.toStdString()); });
      form->addRow(caption, w.combo);
    }
  }
  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  apply_ = new QPushButton("Apply", this);
  apply_->setObjectName("cmdApply");
  apply_->setAutoDefault(false);
  cancel_ = new QPushButton("Cancel", this);
  cancel_->setObjectName("cmdCancel");
  cancel_->setAutoDefault(false);
  buttons->addWidget(apply_);
  buttons->addWidget(cancel_);
  outer->addLayout(buttons);
  connect(apply_, &QPushButton::clicked, this, [this] { Apply_Clicked(); });
  connect(cancel_, &QPushButton::clicked, this, &QDialog::reject);
  if (!entry_order_.empty()) widgets_[static_cast<std::size_t>(entry_order_.front())].entry->setFocus();
}

void frmPropertyEditor::Show_Values() {
  showing_ = true;
  for (std::size_t i = 0; i < session_.fields.size(); ++i) {
    const Editor_Field& f = session_.fields[i];
    Field_Widgets& w = widgets_[i];
    if (w.entry) w.entry->setText(Q(Field_Text(session_, static_cast<int>(i))));
    if (w.check) w.check->setChecked(f.get(session_.copy) != 0);
    if (!w.options.empty()) {
      const auto chosen = static_cast<std::size_t>(f.get(session_.copy));
      if (chosen < w.options.size()) w.options[chosen]->setChecked(true);
    }
    if (w.combo) w.combo->setCurrentText(Q(f.get_text(session_.copy)));
  }
  showing_ = false;
}

void frmPropertyEditor::Enter_Pressed(int field) {
  QLineEdit* entry = widgets_[static_cast<std::size_t>(field)].entry;
  std::string message;
  const bool ok = Enter_Field(
      session_, field, entry->text().toStdString(), context_.project,
      [this](const std::string& question) {
        return context_.host.Ask(question, Question_Buttons::Yes_No) == Answer::Yes;
      },
      message);
  if (!ok && !message.empty()) context_.host.Show_Message(message);
  // The value kept or taken is written back in its format; a new row shows all its fields.
  Show_Values();
  const auto at = std::find(entry_order_.begin(), entry_order_.end(), field);
  if (at != entry_order_.end() && std::next(at) != entry_order_.end()) {
    QLineEdit* next = widgets_[static_cast<std::size_t>(*std::next(at))].entry;
    next->setFocus();
    next->selectAll();
  } else {
    apply_->setFocus();
  }
}

void frmPropertyEditor::Open_Wizard(int field) {
  const Editor_Field& f = session_.fields[static_cast<std::size_t>(field)];
  Open_Function_Editor(static_cast<int>(f.family), static_cast<int>(f.get(session_.copy)), context_, this);
}

void frmPropertyEditor::Apply_Clicked() {
  if (Editor_Changed(session_)) {
    bool ok = false;
    Destroy_Output(context_.shell, context_.host, ok);
    if (!ok) return;  // the results stay; the editor stays open with its values
    Apply_Editor(session_, context_.project);
    changed_ = true;
    context_.state_changed();
  }
  accept();
}

QLineEdit* frmPropertyEditor::Entry(const QString& caption) const {
  for (const Field_Widgets& w : widgets_)
    if (w.entry && w.entry->accessibleName() == caption) return w.entry;
  return nullptr;
}

}  // namespace pvx
