// The history plots of the result viewer: "Evolution" (frmHis) draws the current variable against
// time at the picked points or supports, one curve per run and point, shows the difference of two
// curves and records the curves in text files; "Scale Wizzard" (frmScales) fixes its axes and
// "Selection Criteria" (frmMebin) cuts all runs at one time or one value. Every number comes from
// the core (history.h, cut_history_plot.h); the windows hold the data and the settings.
#pragma once

#include <QWidget>
#include <map>
#include <string>

#include "graph_window.h"
#include "gui_context.h"
#include "results/cut_history_plot.h"
#include "results/history.h"
#include "results/viewer_state.h"

class QAction;
class QComboBox;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTableWidget;
class QToolBar;

namespace pvx {

class frmHis;

// "Scale Wizzard": the time and the value axis of the variable shown in frmHis.
class frmScales : public QWidget {
 public:
  frmScales(Gui_Context& context, frmHis& his, QWidget* parent);

  // Fills the four boxes from the scale of the variable shown.
  void Set_His_Scales();
  // Enter in a box: a refused number shows "minimum >= maximum" and the box its old number; a
  // taken one fixes the scale and the graph is drawn again.
  void Box_Entered(Scale_Box_Of_History box, const std::string& text);
  // "Reset automatical scaling".
  void Reset_Scaling();

  QLineEdit* Text_Time_Minimum = nullptr;
  QLineEdit* Text_Time_Maximum = nullptr;
  QLineEdit* Text_Value_Minimum = nullptr;
  QLineEdit* Text_Value_Maximum = nullptr;
  QPushButton* Reset_Button = nullptr;

 private:
  Gui_Context& context_;
  frmHis& his_;
};

// "Selection Criteria": the runs cut at one time or one value of their first curve.
class frmMebin : public QWidget {
 public:
  frmMebin(Gui_Context& context, frmHis& his, QWidget* parent);

  // The cut of the present box values: the table is filled and the line drawn in the graph. An
  // empty position does nothing; a position that is no number is shown as such.
  void Compute();
  // "Store Results": the rows in the file chosen in the dialogue.
  void Store_Results();
  const Table<Intersection_Row>& Rows() const { return rows_; }

  QComboBox* Combo_Kind = nullptr;  // "Value", "Time"
  QLineEdit* Text_Position = nullptr;
  QTableWidget* flg3 = nullptr;
  QPushButton* Store_Button = nullptr;

 private:
  Gui_Context& context_;
  frmHis& his_;
  Table<Intersection_Row> rows_;
  Mebin_Kind kind_ = Mebin_Kind::Value;
  double value_ = 0;
};

class frmHis : public QWidget {
 public:
  frmHis(Gui_Context& context, QWidget* parent);

  // Collects the curves of the viewer's current variable at its points (or supports on the
  // reaction page) from the open family and shows them. False when the variable has no history or
  // a record cannot be read (the reader's message is shown then).
  bool Show_History(Result_Family& family, const Viewer_State& s);
  // The results are closed: every variable's scale is forgotten and the windows go.
  void Results_Closed();

  // "Picture", "Scale", "Record".
  void Toolbar_Click(const std::string& key);
  QAction* Tool(const std::string& key) const;
  // "Standard" or "Differences"; the lists serve the differences only.
  void Set_Differences(bool on);
  // "Execute": the difference of the curves chosen in the two lists.
  void Execute();
  // The criterion of frmMebin to draw over the standard graph (or none).
  void Set_Mebin_Line(bool shown, Mebin_Kind kind, double c);

  // The scale of the variable shown, and a redraw after it changed.
  History_Scale& Scale();
  void Scale_Changed();
  // The scale a variable keeps while the results are open.
  const History_Scale& Scale_Of(int variable) const { return scales_.at(static_cast<std::size_t>(variable)); }

  void Draw(Plot_Surface& surface);
  const History_Data& Data() const { return data_; }
  const History_Plot& Drawn() const { return drawn_; }
  bool Differences_Shown() const { return differences_shown_; }
  int Difference_Lines() const { return difference_lines_; }
  const Recording_State& Record_State() const { return recording_; }

  QToolBar* Toolbar = nullptr;
  std::map<std::string, QAction*> Tools;
  Graph_Picture* Picture1 = nullptr;
  QRadioButton* Option_Standard = nullptr;
  QRadioButton* Option_Differences = nullptr;
  QComboBox* Combo1 = nullptr;
  QComboBox* Combo2 = nullptr;
  QPushButton* Execute_Button = nullptr;
  QPushButton* Mebin_Button = nullptr;
  frmScales* Scales = nullptr;
  frmMebin* Mebin = nullptr;

 private:
  void Record();
  void Store_Graph_Picture();

  Gui_Context& context_;
  History_Scales scales_{};
  History_Data data_;
  History_Plot drawn_;
  bool metric_ = true;
  Recording_State recording_;
  bool differences_shown_ = false;
  int difference_a_ = 1, difference_b_ = 1;
  int difference_lines_ = 0;
  bool mebin_shown_ = false;
  Mebin_Kind mebin_kind_ = Mebin_Kind::Value;
  double mebin_value_ = 0;
};

}  // namespace pvx
