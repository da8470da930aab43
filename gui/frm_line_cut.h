// The line cut of the result viewer: "Choice of cut direction" (frmcut), which sets how the line
// drawn on the result panel is held, and "Results from linecut" (frmLineCut), which shows the
// current variable along that line as the core draws it, compares stresses with the tensile
// strength, and stores the cut as text or as a picture.
#pragma once

#include <QWidget>
#include <string>

#include "graph_window.h"
#include "gui_context.h"
#include "results/cut_history_plot.h"
#include "results/line_cut.h"

class QCheckBox;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace pvx {

// "Choice of cut direction": the four options and the angle of "Fixed angle:". The window works on
// a copy of the viewer's direction and writes it back at "Apply", which closes it.
class frmcut : public QWidget {
 public:
  frmcut(Gui_Context& context, Cut_Direction& direction, QWidget* parent);

  // Fills the controls from the viewer's direction.
  void Load();
  // "Apply": the choice and the angle are taken, and the window closes. An angle that is no number
  // is shown as such and the window stays open.
  bool Apply();

  QRadioButton* Option[4] = {};  // "Horizontally", "Vertically", "Arbitrarily", "Fixed angle:"
  QLineEdit* Text_Angle = nullptr;
  QPushButton* Apply_Button = nullptr;

 private:
  Gui_Context& context_;
  Cut_Direction& direction_;
};

// "Results from linecut": the graph, "Fixed axis" with its "Minimum" and "Maximum" boxes, the
// "Factor" of the strength curve (stresses only), and the two store buttons.
class frmLineCut : public QWidget {
 public:
  frmLineCut(Gui_Context& context, QWidget* parent);

  // Shows a new cut of the viewer. The "Factor" box takes the viewer's ft factor when that has
  // changed since the last cut, so a factor typed here stays while the user steps through time.
  void Show_Cut(const Line_Cut& cut, double ft_factor, bool metric);

  // "Fixed axis" switched. The boxes hold the extents of the first cut of each variable until the
  // user types other limits.
  void Fixed_Axis_Toggled(bool on);
  // Enter in "Minimum" or "Maximum": a maximum below the minimum is refused with its message and
  // the box shows its old number again.
  void Axis_Entered(Axis_Box box, const std::string& text);
  // Enter in "Factor".
  void Factor_Entered(const std::string& text);
  // "Store results from linecut in a file" and "Store picture".
  void Store_Results();
  void Store_Graph_Picture();

  void Draw(Plot_Surface& surface);
  const Line_Cut& Cut() const { return cut_; }
  const Cut_Graph_Settings& Settings() const { return settings_; }
  const Cut_Plot& Drawn() const { return drawn_; }
  bool Metric() const { return metric_; }

  Graph_Picture* Picture1 = nullptr;
  QCheckBox* Check_Fixed = nullptr;
  QLineEdit* Text_Minimum = nullptr;
  QLineEdit* Text_Maximum = nullptr;
  QLineEdit* Text_Factor = nullptr;
  QPushButton* Store_Button = nullptr;
  QPushButton* Picture_Button = nullptr;

 private:
  void Fill_Boxes();
  void Start_Boxes();
  std::string Proposal(const char* extension) const;

  Gui_Context& context_;
  Line_Cut cut_;
  Cut_Graph_Settings settings_;
  Cut_Plot drawn_;
  bool metric_ = true;
  bool boxes_set_ = false;  // the fixed axis boxes hold numbers
  int boxes_variable_ = 0;  // ... for this variable
  double last_ft_factor_ = 0;
  bool factor_known_ = false;
};

}  // namespace pvx
