#include "frm_graf.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

#include "app/units.h"

namespace pvx {

namespace {

// The length fields, shown and typed in display units.
constexpr const char* Length_Fields[] = {"Grid_X_Min",        "Grid_X_Max",    "Grid_X_Increment",
                                         "Grid_Y_Min",        "Grid_Y_Max",    "Grid_Y_Increment",
                                         "Circ_X_Center",     "Circ_Y_Center", "Circ_Outer_Radius",
                                         "Circ_Inner_Radius", "Snap_Size"};

bool Is_Length(const char* name) {
  for (const char* f : Length_Fields)
    if (std::string_view(f) == name) return true;
  return false;
}

}  // namespace

frmGraf::frmGraf(Gui_Context& context, Design_Display& display, std::function<void()> applied,
                 QWidget* parent)
    : QDialog(parent), context_(context), display_(display), applied_(std::move(applied)) {
  setObjectName("frmGraf");
  setWindowTitle("Graphical aids and options");
  setMinimumWidth(480);
  auto* root = new QVBoxLayout(this);
  tabs_ = new QTabWidget(this);
  root->addWidget(tabs_);
  const bool metric = context_.project.Metric_Units != 0;
  const QString unit = QString(" [%1]").arg(Unit_Name(Unit_Length_mm, metric));

  auto page = [&](const char* title) {
    auto* w = new QWidget(tabs_);
    new QFormLayout(w);
    tabs_->addTab(w, title);
    return w;
  };
  QWidget* visible = page("Visible");
  Add_Tick(visible, "Points", "Points");
  Add_Tick(visible, "Macros", "Macros");
  Add_Tick(visible, "Borders", "Borders");
  Add_Tick(visible, "Circuits", "Circuits");
  Add_Tick(visible, "Frame", "Frame");
  Add_Tick(visible, "Axes", "Axes");
  Add_Tick(visible, "Coordinates", "Coordinates");

  QWidget* rect = page("Rectangular grid");
  Add_Tick(rect, "Rect_Grid_Visible", "Visible");
  Add_Tick(rect, "Rect_Grid_Snap", "Snap");
  Add_Field(rect, "Grid_X_Min", "X_min" + unit);
  Add_Field(rect, "Grid_X_Max", "X_max" + unit);
  Add_Field(rect, "Grid_X_Increment", "X_increment" + unit);
  Add_Field(rect, "Grid_Y_Min", "Y_min" + unit);
  Add_Field(rect, "Grid_Y_Max", "Y_max" + unit);
  Add_Field(rect, "Grid_Y_Increment", "Y_increment" + unit);

  QWidget* circ = page("Circular grid");
  Add_Tick(circ, "Circ_Grid_Visible", "Visible");
  Add_Tick(circ, "Circ_Grid_Snap", "Snap");
  Add_Field(circ, "Circ_X_Center", "X centre" + unit);
  Add_Field(circ, "Circ_Y_Center", "Y centre" + unit);
  Add_Field(circ, "Circ_Outer_Radius", "Outer radius" + unit);
  Add_Field(circ, "Circ_Inner_Radius", "Inner radius" + unit);
  Add_Field(circ, "Circ_Start_Angle", "Start angle [Degr.]");
  Add_Field(circ, "Circ_End_Angle", "End angle [Degr.]");
  Add_Field(circ, "Circ_Angle_Increment", "Increment [Degr.]");

  QWidget* snap = page("Snap and Mouse");
  Add_Tick(snap, "Snap_Mode", "Snap on Grid");
  Add_Field(snap, "Snap_Size", "Snap size" + unit);
  Add_Field(snap, "Mouse_Radius", "Actionradius of mouse [pixels]");

  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  auto* apply = new QPushButton("Apply", this);
  apply->setObjectName("Apply");
  auto* close = new QPushButton("Close", this);
  close->setObjectName("Close");
  buttons->addWidget(apply);
  buttons->addWidget(close);
  root->addLayout(buttons);
  connect(apply, &QPushButton::clicked, this, [this] { Apply(); });
  connect(close, &QPushButton::clicked, this, &QDialog::reject);
  Refresh();
}

QLineEdit* frmGraf::Add_Field(QWidget* page, const char* name, const QString& label) {
  auto* edit = new QLineEdit(page);
  edit->setObjectName(name);
  static_cast<QFormLayout*>(page->layout())->addRow(label, edit);
  return edit;
}

QCheckBox* frmGraf::Add_Tick(QWidget* page, const char* name, const QString& label) {
  auto* box = new QCheckBox(label, page);
  box->setObjectName(name);
  static_cast<QFormLayout*>(page->layout())->addRow(box);
  return box;
}

QLineEdit* frmGraf::Field(const char* name) const {
  return findChild<QLineEdit*>(name);
}

QCheckBox* frmGraf::Tick(const char* name) const {
  return findChild<QCheckBox*>(name);
}

void frmGraf::Refresh() {
  const Project& p = context_.project;
  const Graf_Settings g = Read_Graf_Settings(p, display_);
  const bool metric = p.Metric_Units != 0;
  auto set = [&](const char* name, double value) {
    if (!metric && Is_Length(name)) value = Convert_Unit(true, Unit_Length_mm, value);
    Field(name)->setText(QString::number(value, 'g', 12));
  };
  set("Grid_X_Min", g.Grid_X_Min);
  set("Grid_X_Max", g.Grid_X_Max);
  set("Grid_X_Increment", g.Grid_X_Increment);
  set("Grid_Y_Min", g.Grid_Y_Min);
  set("Grid_Y_Max", g.Grid_Y_Max);
  set("Grid_Y_Increment", g.Grid_Y_Increment);
  set("Circ_X_Center", g.Circ_X_Center);
  set("Circ_Y_Center", g.Circ_Y_Center);
  set("Circ_Outer_Radius", g.Circ_Outer_Radius);
  set("Circ_Inner_Radius", g.Circ_Inner_Radius);
  set("Circ_Start_Angle", g.Circ_Start_Angle);
  set("Circ_End_Angle", g.Circ_End_Angle);
  set("Circ_Angle_Increment", g.Circ_Angle_Increment);
  set("Snap_Size", g.Snap_Size);
  set("Mouse_Radius", g.Mouse_Radius);
  Tick("Rect_Grid_Visible")->setChecked(g.Rect_Grid_Visible);
  Tick("Rect_Grid_Snap")->setChecked(g.Rect_Grid_Snap);
  Tick("Circ_Grid_Visible")->setChecked(g.Circ_Grid_Visible);
  Tick("Circ_Grid_Snap")->setChecked(g.Circ_Grid_Snap);
  Tick("Snap_Mode")->setChecked(g.Snap_On_Grid);
  Tick("Points")->setChecked(g.Display.Points);
  Tick("Macros")->setChecked(g.Display.Macros);
  Tick("Borders")->setChecked(g.Display.Borders);
  Tick("Circuits")->setChecked(g.Display.Circuits);
  Tick("Frame")->setChecked(g.Display.Frame);
  Tick("Axes")->setChecked(g.Display.Axes);
  Tick("Coordinates")->setChecked(g.Display.Coordinates);
}

bool frmGraf::Apply() {
  Project& p = context_.project;
  const bool metric = p.Metric_Units != 0;
  std::string message;
  auto get = [&](const char* name) {
    std::string fault;
    double v = Check_Number(Field(name)->text().toStdString(), context_.shell.Decimal_Comma, &fault);
    if (!fault.empty() && message.empty()) message = fault;
    if (!metric && Is_Length(name)) v = Convert_Unit(false, Unit_Length_mm, v);
    return v;
  };
  Graf_Settings g;
  g.Grid_X_Min = get("Grid_X_Min");
  g.Grid_X_Max = get("Grid_X_Max");
  g.Grid_X_Increment = get("Grid_X_Increment");
  g.Grid_Y_Min = get("Grid_Y_Min");
  g.Grid_Y_Max = get("Grid_Y_Max");
  g.Grid_Y_Increment = get("Grid_Y_Increment");
  g.Circ_X_Center = get("Circ_X_Center");
  g.Circ_Y_Center = get("Circ_Y_Center");
  g.Circ_Outer_Radius = get("Circ_Outer_Radius");
  g.Circ_Inner_Radius = get("Circ_Inner_Radius");
  g.Circ_Start_Angle = get("Circ_Start_Angle");
  g.Circ_End_Angle = get("Circ_End_Angle");
  g.Circ_Angle_Increment = get("Circ_Angle_Increment");
  g.Snap_Size = get("Snap_Size");
  g.Mouse_Radius = get("Mouse_Radius");
  g.Rect_Grid_Visible = Tick("Rect_Grid_Visible")->isChecked();
  g.Rect_Grid_Snap = Tick("Rect_Grid_Snap")->isChecked();
  g.Circ_Grid_Visible = Tick("Circ_Grid_Visible")->isChecked();
  g.Circ_Grid_Snap = Tick("Circ_Grid_Snap")->isChecked();
  g.Snap_On_Grid = Tick("Snap_Mode")->isChecked();
  g.Display.Points = Tick("Points")->isChecked();
  g.Display.Macros = Tick("Macros")->isChecked();
  g.Display.Borders = Tick("Borders")->isChecked();
  g.Display.Circuits = Tick("Circuits")->isChecked();
  g.Display.Frame = Tick("Frame")->isChecked();
  g.Display.Axes = Tick("Axes")->isChecked();
  g.Display.Coordinates = Tick("Coordinates")->isChecked();
  if (!message.empty() || !Apply_Graf_Settings(g, p, display_, message)) {
    context_.host.Show_Message(message);
    return false;
  }
  if (applied_) applied_();
  return true;
}

}  // namespace pvx
