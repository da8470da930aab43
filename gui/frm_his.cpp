#include "frm_his.h"

#include <QAction>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QToolBar>
#include <QVBoxLayout>
#include <filesystem>

#include "app/units.h"
#include "frm_res.h"

namespace pvx {

namespace {

QString Q(const std::string& text) {
  return QString::fromStdString(text);
}

inline constexpr const char* Mebin_Kind_Captions[2] = {"Value", "Time"};
// The collection of recorded files is named in a save dialogue like the other result files.
inline constexpr const char* Record_File_Filter = "(*.txt)|*.txt";

}  // namespace

// ---------------------------------------------------------------------------------------------
// "Scale Wizzard"

frmScales::frmScales(Gui_Context& context, frmHis& his, QWidget* parent)
    : QWidget(parent, Qt::Tool), context_(context), his_(his) {
  setObjectName("frmScales");
  setWindowTitle(Scales_Caption);
  auto* layout = new QVBoxLayout(this);
  auto box_pair = [this, layout](const char* title, QLineEdit*& minimum, QLineEdit*& maximum,
                                 Scale_Box_Of_History min_box, Scale_Box_Of_History max_box) {
    auto* group = new QGroupBox(title, this);
    auto* grid = new QGridLayout(group);
    minimum = new QLineEdit(group);
    maximum = new QLineEdit(group);
    grid->addWidget(new QLabel("Minimum:", group), 0, 0);
    grid->addWidget(minimum, 0, 1);
    grid->addWidget(new QLabel("Maximum:", group), 1, 0);
    grid->addWidget(maximum, 1, 1);
    layout->addWidget(group);
    QLineEdit* min_edit = minimum;
    QLineEdit* max_edit = maximum;
    connect(min_edit, &QLineEdit::returnPressed, this,
            [this, min_edit, min_box] { Box_Entered(min_box, min_edit->text().toStdString()); });
    connect(max_edit, &QLineEdit::returnPressed, this,
            [this, max_edit, max_box] { Box_Entered(max_box, max_edit->text().toStdString()); });
  };
  box_pair("Horizontal scale:", Text_Time_Minimum, Text_Time_Maximum, Scale_Box_Of_History::Time_Minimum,
           Scale_Box_Of_History::Time_Maximum);
  box_pair("Vertical scale:", Text_Value_Minimum, Text_Value_Maximum, Scale_Box_Of_History::Value_Minimum,
           Scale_Box_Of_History::Value_Maximum);
  Text_Time_Minimum->setObjectName("Text_Time_Minimum");
  Text_Time_Maximum->setObjectName("Text_Time_Maximum");
  Text_Value_Minimum->setObjectName("Text_Value_Minimum");
  Text_Value_Maximum->setObjectName("Text_Value_Maximum");
  Reset_Button = new QPushButton(Reset_Scaling_Caption, this);
  Reset_Button->setObjectName("Reset_Button");
  layout->addWidget(Reset_Button);
  connect(Reset_Button, &QPushButton::clicked, this, [this] { Reset_Scaling(); });
}

void frmScales::Set_His_Scales() {
  const History_Scale& s = his_.Scale();
  Text_Time_Minimum->setText(Q(History_Time_Box_Text(s.TimeMin)));
  Text_Time_Maximum->setText(Q(History_Time_Box_Text(s.TimeMax)));
  Text_Value_Minimum->setText(Q(History_Value_Box_Text(s.ValueMin)));
  Text_Value_Maximum->setText(Q(History_Value_Box_Text(s.ValueMax)));
}

void frmScales::Box_Entered(Scale_Box_Of_History box, const std::string& text) {
  std::string message;
  const double value = Check_Number(text, context_.shell.Decimal_Comma, &message);
  if (message.empty() && Edit_History_Scale(his_.Scale(), box, value, message)) {
    his_.Scale_Changed();
  } else {
    context_.host.Show_Message(message);
  }
  Set_His_Scales();
}

void frmScales::Reset_Scaling() {
  Reset_History_Scale(his_.Scale());
  his_.Scale_Changed();
  Set_His_Scales();
}

// ---------------------------------------------------------------------------------------------
// "Selection Criteria"

frmMebin::frmMebin(Gui_Context& context, frmHis& his, QWidget* parent)
    : QWidget(parent, Qt::Tool), context_(context), his_(his) {
  setObjectName("frmMebin");
  setWindowTitle(Mebin_Caption);
  auto* layout = new QGridLayout(this);
  Combo_Kind = new QComboBox(this);
  Combo_Kind->setObjectName("Combo_Kind");
  for (const char* kind : Mebin_Kind_Captions)
    Combo_Kind->addItem(kind);
  Text_Position = new QLineEdit(this);
  Text_Position->setObjectName("Text_Position");
  layout->addWidget(new QLabel("Cut option: ", this), 0, 0);
  layout->addWidget(Combo_Kind, 0, 1);
  layout->addWidget(new QLabel("Position:", this), 1, 0);
  layout->addWidget(Text_Position, 1, 1);
  flg3 = new QTableWidget(0, 2, this);
  flg3->setObjectName("flg3");
  flg3->setHorizontalHeaderLabels({Mebin_Materials_Column, Mebin_Results_Column});
  flg3->horizontalHeader()->setStretchLastSection(true);
  flg3->verticalHeader()->setVisible(false);
  flg3->setEditTriggers(QAbstractItemView::NoEditTriggers);
  layout->addWidget(flg3, 2, 0, 1, 2);
  Store_Button = new QPushButton("Store Results", this);
  Store_Button->setObjectName("Store_Button");
  layout->addWidget(Store_Button, 3, 0, 1, 2, Qt::AlignRight);
  connect(Text_Position, &QLineEdit::returnPressed, this, [this] { Compute(); });
  connect(Combo_Kind, &QComboBox::currentIndexChanged, this, [this] {
    if (!Text_Position->text().trimmed().isEmpty()) Compute();
  });
  connect(Store_Button, &QPushButton::clicked, this, [this] { Store_Results(); });
  resize(320, 300);
}

void frmMebin::Compute() {
  const std::string text = Text_Position->text().trimmed().toStdString();
  if (text.empty()) return;
  std::string message;
  const double c = Check_Number(text, context_.shell.Decimal_Comma, &message);
  if (!message.empty()) {
    context_.host.Show_Message(message);
    return;
  }
  kind_ = Combo_Kind->currentIndex() == 1 ? Mebin_Kind::Time : Mebin_Kind::Value;
  value_ = c;
  rows_ = Compute_Intersections(his_.Data(), kind_, c);
  flg3->setRowCount(rows_.count());
  for (int i = 1; i <= rows_.count(); ++i) {
    flg3->setItem(i - 1, 0, new QTableWidgetItem(Q(rows_[i].Material)));
    flg3->setItem(i - 1, 1, new QTableWidgetItem(Q(rows_[i].Text)));
  }
  his_.Set_Mebin_Line(true, kind_, c);
}

void frmMebin::Store_Results() {
  std::string path = context_.shell.Work_Directory;
  if (!context_.host.Choose_Save_File(Mebin_Result_File_Title, Mebin_Result_File_Filter, path) ||
      path.empty())
    return;
  // The project's title is the name of its file.
  const std::string title = std::filesystem::path(context_.project.Project_File).filename().string();
  std::string message;
  if (!Store_Intersections(path, title, value_, rows_, message)) context_.host.Show_Message(message);
}

// ---------------------------------------------------------------------------------------------
// "Evolution"

frmHis::frmHis(Gui_Context& context, QWidget* parent) : QWidget(parent, Qt::Window), context_(context) {
  setObjectName("frmHis");
  setWindowTitle(History_Caption);
  auto* layout = new QVBoxLayout(this);
  Toolbar = new QToolBar(this);
  for (const char* key : {"Picture", "Scale", "Record"}) {
    QAction* action = Toolbar->addAction(key);
    action->setObjectName(key);
    const std::string k = key;
    Tools[k] = action;
    connect(action, &QAction::triggered, this, [this, k] { Toolbar_Click(k); });
  }
  layout->addWidget(Toolbar);
  Picture1 = new Graph_Picture([this](Plot_Surface& s) { Draw(s); }, QSize(520, 360), this);
  layout->addWidget(Picture1, 1);

  auto* controls = new QHBoxLayout;
  Option_Standard = new QRadioButton("Standard", this);
  Option_Standard->setObjectName("Option_Standard");
  Option_Differences = new QRadioButton("Differences", this);
  Option_Differences->setObjectName("Option_Differences");
  Option_Standard->setChecked(true);
  Combo1 = new QComboBox(this);
  Combo1->setObjectName("Combo1");
  Combo2 = new QComboBox(this);
  Combo2->setObjectName("Combo2");
  Execute_Button = new QPushButton("Execute", this);
  Execute_Button->setObjectName("Execute_Button");
  Mebin_Button = new QPushButton("Mebin Criteria", this);
  Mebin_Button->setObjectName("Mebin_Button");
  controls->addWidget(Option_Standard);
  controls->addWidget(Option_Differences);
  controls->addSpacing(12);
  controls->addWidget(Combo1);
  controls->addWidget(new QLabel("-", this));
  controls->addWidget(Combo2);
  controls->addWidget(Execute_Button);
  controls->addStretch(1);
  controls->addWidget(Mebin_Button);
  layout->addLayout(controls);

  Scales = new frmScales(context_, *this, this);
  Mebin = new frmMebin(context_, *this, this);
  connect(Option_Differences, &QRadioButton::toggled, this, [this](bool on) { Set_Differences(on); });
  connect(Execute_Button, &QPushButton::clicked, this, [this] { Execute(); });
  connect(Mebin_Button, &QPushButton::clicked, this, [this] {
    Mebin->show();
    Mebin->raise();
  });
  Set_Differences(false);
  resize(860, 620);
}

QAction* frmHis::Tool(const std::string& key) const {
  const auto it = Tools.find(key);
  return it == Tools.end() ? nullptr : it->second;
}

History_Scale& frmHis::Scale() {
  const int v = data_.Variable;
  return scales_[static_cast<std::size_t>(v >= 0 && v <= Result_Variable_Count ? v : 0)];
}

bool frmHis::Show_History(Result_Family& family, const Viewer_State& s) {
  std::string message;
  History_Data data;
  const int v = s.CurrentVariable;
  if (v < 0 || v > Result_Variable_Count) return false;
  if (!Collect_History(family, context_.project, s.Index, v, s.HistoryPoints, s.HistorySupports, !s.Metric,
                       scales_[static_cast<std::size_t>(v)], data, message)) {
    if (!message.empty()) context_.host.Show_Message(message);
    return false;
  }
  data_ = std::move(data);
  metric_ = s.Metric;
  differences_shown_ = false;
  mebin_shown_ = false;
  for (QComboBox* list : {Combo1, Combo2}) {
    list->clear();
    for (int i = 1; i <= data_.Items; ++i)
      list->addItem(QString::number(i));
  }
  Combo2->setCurrentIndex(data_.Items >= 2 ? 1 : 0);
  Mebin->flg3->setRowCount(0);
  if (Scales->isVisible()) Scales->Set_His_Scales();
  Picture1->update();
  return true;
}

void frmHis::Results_Closed() {
  scales_ = History_Scales{};
  data_ = History_Data{};
  Scales->hide();
  Mebin->hide();
  hide();
}

void frmHis::Toolbar_Click(const std::string& key) {
  if (key == "Picture") {
    Store_Graph_Picture();
  } else if (key == "Scale") {
    Scales->Set_His_Scales();
    Scales->show();
    Scales->raise();
  } else if (key == "Record") {
    Record();
  }
}

void frmHis::Set_Differences(bool on) {
  Combo1->setEnabled(on);
  Combo2->setEnabled(on);
  Execute_Button->setEnabled(on);
  if (Option_Differences->isChecked() != on) {
    const QSignalBlocker block(Option_Differences);
    Option_Differences->setChecked(on);
    Option_Standard->setChecked(!on);
  }
  if (!on && differences_shown_) {
    differences_shown_ = false;
    Picture1->update();
  }
}

void frmHis::Execute() {
  if (!Option_Differences->isChecked() || data_.Items < 1) return;
  difference_a_ = Combo1->currentIndex() + 1;
  difference_b_ = Combo2->currentIndex() + 1;
  differences_shown_ = true;
  Picture1->update();
}

void frmHis::Set_Mebin_Line(bool shown, Mebin_Kind kind, double c) {
  mebin_shown_ = shown;
  mebin_kind_ = kind;
  mebin_value_ = c;
  Picture1->update();
}

void frmHis::Scale_Changed() {
  Set_History_Axes(data_, Scale());
  Picture1->update();
}

void frmHis::Draw(Plot_Surface& surface) {
  if (differences_shown_) {
    difference_lines_ = Plot_History_Differences(surface, data_, metric_, difference_a_, difference_b_);
    return;
  }
  drawn_ = Draw_Historie1(surface, data_, metric_);
  if (mebin_shown_) Plot_Mebin_Value(surface, data_, mebin_kind_, mebin_value_);
}

void frmHis::Record() {
  std::string path, message;
  if (Recording(recording_, data_, path, message)) {
    context_.host.Show_Message(message);
    return;
  }
  if (!recording_.RecordName.empty()) {  // the file could not be written
    context_.host.Show_Message(message);
    return;
  }
  context_.host.Show_Message(message);  // a collection name is wanted first
  std::string chosen = In_Work_Directory(context_.shell.Work_Directory, "");
  if (!context_.host.Choose_Save_File(Mebin_Result_File_Title, Record_File_Filter, chosen) || chosen.empty())
    return;
  Set_Record_Name(recording_, chosen);
  Recording(recording_, data_, path, message);
  context_.host.Show_Message(message);
}

void frmHis::Store_Graph_Picture() {
  Store_Picture_Of_Graph(context_, *Picture1,
                         In_Work_Directory(context_.shell.Work_Directory, "history.jpg"));
}

}  // namespace pvx
