#include "frm_diag.h"

#include <algorithm>
#include <cmath>

#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

#include "analysis/run_preparation.h"
#include "app/prescribed_data.h"
#include "app/units.h"
#include "qt_analysis_host.h"

namespace pvx {

namespace {

constexpr double Picture_Width = 2200, Picture_Height = 1500;
const QColor Grid_Colour(200, 200, 200);
const QColor Maximum_Colour(220, 0, 0);
const QColor Minimum_Colour(0, 0, 220);

inline constexpr const char* No_Output_Name = "A path and a filename must be given for your output !";

// A scale end or a time as the labels show it: two decimals, large values in scientific form.
QString Label_Number(double value) {
  const int decimals = std::fabs(value) >= 1.0e5 ? -2 : 2;
  return QString::fromStdString(Format_Number(value, 16, decimals)).trimmed();
}

}  // namespace

QPolygonF Screen_Polyline(const std::vector<Graph_Point>& curve, double sx, double sy) {
  // A long run has far more rows than the graph has pixel columns. Within one column only the
  // first, lowest, highest and last points can be seen, so the line keeps those: the picture is
  // the same, and its cost follows the graph's width instead of the number of steps.
  QPolygonF line;
  line.reserve(static_cast<qsizetype>(std::min<std::size_t>(curve.size(), 4096)));
  std::size_t i = 0;
  while (i < curve.size()) {
    const long column = std::lround(curve[i].x * sx);
    std::size_t end = i + 1;
    std::size_t low = i, high = i;
    while (end < curve.size() && std::lround(curve[end].x * sx) == column) {
      if (curve[end].y < curve[low].y) low = end;
      if (curve[end].y > curve[high].y) high = end;
      ++end;
    }
    std::size_t keep[4] = {i, std::min(low, high), std::max(low, high), end - 1};
    for (int k = 0; k < 4; ++k)
      if (k == 0 || keep[k] != keep[k - 1])
        line.append(QPointF(curve[keep[k]].x * sx, curve[keep[k]].y * sy));
    i = end;
  }
  return line;
}

void Diagnostic_Graph::Set_Curves(std::vector<Graph_Point> maximum, std::vector<Graph_Point> minimum) {
  maximum_ = std::move(maximum);
  minimum_ = std::move(minimum);
  update();
}

void Diagnostic_Graph::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Qt::white);
  const double sx = (width() - 1) / Picture_Width, sy = (height() - 1) / Picture_Height;
  painter.setPen(QPen(Grid_Colour, 1));
  for (int k = 0; k <= 10; ++k) {
    const double x = k * 220 * sx;
    painter.drawLine(QPointF(x, 0), QPointF(x, height() - 1));
  }
  for (int k = 0; k <= 5; ++k) {
    const double y = k * 300 * sy;
    painter.drawLine(QPointF(0, y), QPointF(width() - 1, y));
  }
  painter.setRenderHint(QPainter::Antialiasing, true);
  auto draw = [&](const std::vector<Graph_Point>& curve, const QColor& colour) {
    if (curve.size() < 2) return;
    painter.setPen(QPen(colour, 1.5));
    painter.drawPolyline(Screen_Polyline(curve, sx, sy));
  };
  draw(maximum_, Maximum_Colour);
  draw(minimum_, Minimum_Colour);
}

frmDiag::frmDiag(Gui_Context& context, QWidget* parent) : Work_Form_Widget(parent), context_(context) {
  setObjectName("frmDiag");
  setWindowTitle("Run diagnostics");
  auto* layout = new QHBoxLayout(this);

  auto* side = new QVBoxLayout;
  Command2 = new QPushButton(Start_Caption, this);
  Command2->setObjectName("Command2");
  Command2->setMinimumHeight(32);
  side->addWidget(Command2);
  Check2 = new QCheckBox("Mechanical analysis included", this);
  Check2->setObjectName("Check2");
  side->addWidget(Check2);

  auto* scan = new QGroupBox("Scan options", this);
  auto* scan_layout = new QVBoxLayout(scan);
  const char* names1[6] = {"Temperature",        "Maturity",         "C-Maturity",
                           "Moisture Potential", "Moisture Content", "Cooling"};
  for (int i = 0; i < 6; ++i) {
    auto* box = new QCheckBox(names1[i], scan);
    box->setObjectName(QString("Check1_%1").arg(i));
    box->setChecked(i < 5);
    Check1[static_cast<std::size_t>(i)] = box;
    scan_layout->addWidget(box);
  }
  side->addWidget(scan);

  Frame5 = new QGroupBox("Mechanical scan options", this);
  Frame5->setObjectName("Frame5");
  auto* frame5_layout = new QVBoxLayout(Frame5);
  const char* names3[5] = {"Displacements Ux", "Displacements Uy", "Major stress ", "Minor stress ",
                           "Stress Szz "};
  for (int i = 0; i < 5; ++i) {
    auto* box = new QCheckBox(names3[i], Frame5);
    box->setObjectName(QString("Check3_%1").arg(i));
    Check3[static_cast<std::size_t>(i)] = box;
    frame5_layout->addWidget(box);
  }
  side->addWidget(Frame5);

  auto* circuit = new QHBoxLayout;
  Label_Circuit = new QLabel("Circuit:", this);
  Combo1 = new QComboBox(this);
  Combo1->setObjectName("Combo1");
  circuit->addWidget(Label_Circuit);
  circuit->addWidget(Combo1, 1);
  side->addLayout(circuit);

  Label_Step = new QLabel(this);
  Label_Step->setObjectName("Label_Step");
  Label_Storages = new QLabel(this);
  Label_Storages->setObjectName("Label_Storages");
  Label_Iterations = new QLabel(this);
  Label_Iterations->setObjectName("Label_Iterations");
  Label_Outcome = new QLabel(this);
  Label_Outcome->setObjectName("Label_Outcome");
  Label_Messages = new QLabel(this);
  Label_Messages->setObjectName("Label_Messages");
  Label_Messages->setWordWrap(true);
  Label_Messages->setStyleSheet("color: rgb(160,0,0)");
  Label_Messages->setMaximumWidth(260);
  for (QLabel* label : {Label_Step, Label_Storages, Label_Iterations, Label_Outcome, Label_Messages})
    side->addWidget(label);
  side->addStretch();
  layout->addLayout(side);

  auto* graphs = new QWidget(this);
  positions_ = new QGridLayout(graphs);
  positions_->setSpacing(6);
  for (int g = 0; g < Diagnostic_Graph_Count; ++g) {
    const auto k = static_cast<std::size_t>(g);
    auto* box = new QFrame(graphs);
    box->setFrameShape(QFrame::StyledPanel);
    box->setObjectName(QString("Graph_%1").arg(g));
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(4, 2, 4, 2);
    grid->setVerticalSpacing(1);
    Label5[k] = new QLabel(box);
    QFont bold = Label5[k]->font();
    bold.setBold(true);
    Label5[k]->setFont(bold);
    Label7[k] = new QLabel(box);
    Label8[k] = new QLabel(box);
    Label9[k] = new QLabel(box);
    Label9[k]->setAlignment(Qt::AlignRight);
    Label7[k]->setStyleSheet(QString("color: rgb(%1,%2,%3)")
                                 .arg(Maximum_Colour.red())
                                 .arg(Maximum_Colour.green())
                                 .arg(Maximum_Colour.blue()));
    Label8[k]->setStyleSheet(QString("color: rgb(%1,%2,%3)")
                                 .arg(Minimum_Colour.red())
                                 .arg(Minimum_Colour.green())
                                 .arg(Minimum_Colour.blue()));
    Picture1[k] = new Diagnostic_Graph(box);
    Picture1[k]->setMinimumSize(220, 110);
    Picture1[k]->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    grid->addWidget(Label5[k], 0, 0, 1, 2);
    grid->addWidget(Label7[k], 1, 0, 1, 2);
    grid->addWidget(Picture1[k], 2, 0, 1, 2);
    grid->addWidget(Label8[k], 3, 0);
    grid->addWidget(Label9[k], 3, 1);
    box->hide();
    Graph_Box[k] = box;
  }
  layout->addWidget(graphs, 1);

  connect(Command2, &QPushButton::clicked, this, [this] { Command2_Click(); });
  connect(Check2, &QCheckBox::clicked, this, [this] { Check2_Click(); });
  for (QCheckBox* box : Check1)
    connect(box, &QCheckBox::clicked, this, [this] { Update_Diagnostics(last_row_); });
  for (QCheckBox* box : Check3)
    connect(box, &QCheckBox::clicked, this, [this] { Update_Diagnostics(last_row_); });
  // The run reads the circuit at each step, so a change during a run shows from the next step on.
  connect(Combo1, &QComboBox::currentIndexChanged, this, [this] {
    run_.Diagnostic_Circuit = std::max(1, Diagnostic_Circuit());
    Update_Diagnostics(last_row_);
  });
}

void frmDiag::Form_Shown() {
  if (running_) return;
  const Project& p = context_.project;
  // The window opens with the project's own choice, so that a project that was computed with its
  // stresses is computed with them again, and its results are read as they were written.
  Check2->setChecked(p.Mechanical_Included != 0);
  Frame5->setEnabled(Check2->isChecked());
  for (QCheckBox* box : Check3)
    box->setChecked(false);
  // The displacement graphs cannot be chosen.
  Check3[0]->setEnabled(false);
  Check3[1]->setEnabled(false);
  Check1[5]->setChecked(p.Circuit.count() > 0);
  const bool metric = p.Metric_Units != 0;
  for (int g = 0; g < Diagnostic_Graph_Count; ++g)
    Label5[static_cast<std::size_t>(g)]->setText(Diagnostic_Graph_Title(g, metric));
  Combo1->blockSignals(true);
  Combo1->clear();
  for (int c = 1; c <= p.Circuit.count(); ++c)
    Combo1->addItem(QString::number(c));
  Combo1->blockSignals(false);
  Show_Button();
  // The curves of the last run stay while its results stand (the window shown again, the units
  // changed); once they were destroyed, or another project came in, the window starts empty.
  if (context_.shell.State != Work_State::Computed || p.Project_File != run_project_) {
    run_ = Run_State{};
    last_row_ = 0;
    for (QLabel* label : {Label_Step, Label_Storages, Label_Iterations, Label_Outcome, Label_Messages})
      label->clear();
  }
  Update_Diagnostics(last_row_);
}

void frmDiag::Redraw() {
  Update_Diagnostics(last_row_);
}

void frmDiag::hideEvent(QHideEvent* event) {
  // The option of the mechanical analysis is remembered with the Project (and for the viewers).
  if (!running_) context_.project.Mechanical_Included = Check2->isChecked() ? True_Flag : False_Flag;
  Work_Form_Widget::hideEvent(event);
}

int frmDiag::Diagnostic_Circuit() const {
  return Combo1->currentIndex() + 1;
}

Scan_Options frmDiag::Options() const {
  Scan_Options o;
  for (std::size_t i = 0; i < Check1.size(); ++i)
    o.Check1[i] = Check1[i]->isChecked();
  for (std::size_t i = 0; i < Check3.size(); ++i)
    o.Check3[i] = Check3[i]->isChecked();
  return o;
}

void frmDiag::Update_Diagnostics(int row) {
  const Project& p = context_.project;
  const bool circuits = p.Circuit.count() > 0;
  Label_Circuit->setVisible(circuits);
  Combo1->setVisible(circuits);
  const bool metric = p.Metric_Units != 0;

  const auto position = Place_Diagnostic_Graphs(Options());
  // The boxes move only when the options change, not at every step.
  const bool moved = !placed_once_ || position != placed_;
  if (moved) {
    placed_once_ = true;
    for (QFrame* box : Graph_Box)
      positions_->removeWidget(box);
    placed_ = position;
  }
  for (int g = 0; g < Diagnostic_Graph_Count; ++g) {
    const auto k = static_cast<std::size_t>(g);
    if (position[k] < 0) {
      Graph_Box[k]->hide();
      continue;
    }
    if (moved) positions_->addWidget(Graph_Box[k], position[k] / 2, position[k] % 2);
    Graph_Box[k]->show();

    const Field_Statistics& stats = run_.Statistics;
    const auto r = static_cast<std::size_t>(row);
    if (row < 1 || stats.Field_Maximum.size() <= r || stats.Field_Minimum.size() <= r ||
        run_.Saved_Step_Time.size() <= r) {
      Picture1[k]->Set_Curves({}, {});
      Label7[k]->clear();
      Label8[k]->clear();
      Label9[k]->clear();
      continue;
    }
    const auto v = static_cast<std::size_t>(Diagnostic_Graph_Variable(g));
    std::vector<double> time(r + 1), maximum(r + 1), minimum(r + 1);
    for (std::size_t i = 1; i <= r; ++i) {
      time[i] = run_.Saved_Step_Time[i];
      maximum[i] = stats.Field_Maximum[i][v];
      minimum[i] = stats.Field_Minimum[i][v];
    }
    // The scale takes a copy of the running extremes: a flat quantity is widened for the drawing
    // only, so that the sampling of later steps keeps its true minimum.
    const double overall_maximum = stats.Overall_Maximum[v];
    double overall_minimum = stats.Overall_Minimum[v];
    std::vector<Graph_Point> maximum_curve, minimum_curve;
    Diagnostic_Curves(time, maximum, minimum, row, overall_maximum, overall_minimum, maximum_curve,
                      minimum_curve);
    Picture1[k]->Set_Curves(std::move(maximum_curve), std::move(minimum_curve));
    const int kind = Diagnostic_Graph_Unit_Kind(g);
    auto shown = [&](double value) { return metric || kind == 0 ? value : Convert_Unit(true, kind, value); };
    Label7[k]->setText("max " + Label_Number(shown(overall_maximum)));
    Label8[k]->setText("min " + Label_Number(shown(overall_minimum)));
    Label9[k]->setText(Label_Number(time[r]) + " hours");
  }
}

void frmDiag::Show_Button() {
  Command2->setText(QString::fromStdString(button_.Caption));
  Check2->setEnabled(button_.Mechanical_Switch_Enabled);
}

void frmDiag::Check2_Click() {
  const bool on = Check2->isChecked();
  Frame5->setEnabled(on);
  if (!on)
    for (QCheckBox* box : Check3)
      box->setChecked(false);
  Update_Diagnostics(last_row_);
}

void frmDiag::Command2_Click() {
  const bool start = Press_Run_Button(button_, stop_);
  Show_Button();
  if (!start) return;
  if (running_) {
    // Start pressed again before the stopped run came to its end: it ends at its next step and
    // the computation starts again from the beginning.
    restart_ = true;
    stop_ = true;
    return;
  }
  Run();
}

void frmDiag::Run() {
  running_ = true;
  bool written = false;
  do {
    restart_ = false;
    stop_ = false;
    written = Run_Once();
  } while (restart_);
  running_ = false;
  button_.Caption = Start_Caption;
  button_.Mechanical_Switch_Enabled = true;
  Show_Button();
  Computation_Ended(context_.shell, written);
  context_.state_changed();
}

bool frmDiag::Run_Once() {
  Project& p = context_.project;
  Shell& shell = context_.shell;
  if (p.Mesh_Element.empty()) return false;
  bool ok = true;
  std::string message;
  Set_Prescribed_Data(p, ok, message);
  if (!ok) {
    context_.host.Show_Message(message);
    return false;
  }
  if (p.Result_File_Name.empty()) {
    std::string path = Proposed_Result_Name(p);
    if (!context_.host.Choose_Save_File("Select output file", "(*.RES)|*.RES", path) || path.empty()) {
      context_.host.Show_Message(No_Output_Name);
      return false;
    }
    p.Result_File_Name = path;
  }
  Prepare_Run_Variants(p);

  run_ = Run_State{};
  run_.Diagnostic_Circuit = std::max(1, Diagnostic_Circuit());
  run_project_ = p.Project_File;
  run_.Mechanical_Included = Check2->isChecked();
  run_.Mechanical_Iteration_Limit = shell.Mechanical_Iteration_Limit;
  for (int i = 0; i < 3; ++i)
    run_.Mechanical_Limits[i] = shell.Mechanical_Limits[i];
  last_row_ = 0;
  Label_Iterations->clear();

  bool written = false;
  Qt_Analysis_Host host(stop_, shell, this);
  Label_Outcome->clear();
  Label_Messages->clear();
  // Warnings of the run (what this version leaves out, elements without a material) are listed in
  // the window, so that a run is not held up by a box at every start; faults still ask for an OK.
  host.On_Message = [this](const std::string& text, Message_Kind kind) {
    if (kind == Message_Kind::Warning) {
      const QString line = QString::fromStdString(text);
      if (!Label_Messages->text().contains(line))
        Label_Messages->setText(Label_Messages->text().isEmpty() ? line
                                                                 : Label_Messages->text() + "\n" + line);
      return;
    }
    context_.host.Show_Message(text);
  };
  int steps = 0, done = 0;
  QElapsedTimer drawn;
  drawn.start();
  Step_Report last;
  auto show_step = [this](const Step_Report& r) {
    Label_Step->setText(QString("Step %1 of %2").arg(r.step).arg(r.steps));
    Label_Storages->setText(QString("Number of data storages: %1").arg(r.storages));
    if (run_.Mechanical_Included)
      Label_Iterations->setText(QString("Number of iterations: %1").arg(r.mechanical_iterations));
  };
  host.On_Step = [&, this](const Step_Report& r) {
    steps = r.steps;
    done = r.step;
    last = r;
    last_row_ = r.step + 1;
    // Labels and graphs are drawn again some twenty times a second at most; a fast run would
    // otherwise spend its time on pictures that nobody can see.
    if (r.step == r.steps || drawn.elapsed() >= Redraw_Interval_Ms) {
      show_step(r);
      Update_Diagnostics(last_row_);
      drawn.restart();
    }
    if (Step_Observer) Step_Observer(r);
  };
  host.On_Variant = [&written](int, int, int storages) { written = written || storages > 0; };
  outcome_ = Run_Analysis(p, run_, host, Run_Directory(p, shell.Work_Directory), message);
  if (done > 0) show_step(last);
  Update_Diagnostics(last_row_);
  switch (outcome_) {
    case Run_Outcome::Completed:
      Label_Outcome->setText("Computation completed.");
      break;
    case Run_Outcome::Stopped:
      Label_Outcome->setText(QString("Computation stopped after step %1 of %2: the result files hold "
                                     "the storages up to there.")
                                 .arg(done)
                                 .arg(steps));
      break;
    case Run_Outcome::Failed:
      Label_Outcome->setText("Computation failed.");
      break;
  }
  Label_Outcome->setWordWrap(true);
  Label_Outcome->setMaximumWidth(260);
  return written;
}

}  // namespace pvx
