// The result viewer: the "Result Panel" (frmResA, the picture with its toolbar and the value at the
// pointer) beside frmresB (the tabs that choose the variable, the period extremes and the scale).
// Both are views over one Viewer_State and the open result family; every step, jump, scale edit
// and pick is the core's, and every message or question goes through the shell's host.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "gui_context.h"
#include "results/cut_history_plot.h"
#include "results/plot.h"
#include "results/result_files.h"
#include "results/viewer_plot.h"
#include "results/viewer_state.h"
#include "results/viewer_values.h"

class QAction;
class QCheckBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QTabWidget;
class QToolBar;

namespace pvx {

inline constexpr const char* Result_Panel_Caption = "Result Panel";
inline constexpr const char* Store_Picture_Caption = "Store Picture";
inline constexpr const char* Store_Picture_Filter = "(*.JPG)|*.jpg|(*.BMP)|*.bmp|(*.GIF)|*.gif";

class Result_Picture;
class frmRes;
class frmCool;
class frmcut;
class frmLineCut;
class frmHis;

// The page of one variable in frmresB: its extremes and its scale boxes.
struct Result_Page {
  int Variable = 0;
  QWidget* Page = nullptr;
  QLabel* Label_Maximum = nullptr;  // "Maximum: " + value + unit
  QLabel* Label_Minimum = nullptr;
  QLineEdit* Scale_Maximum = nullptr;  // the deformed mesh's one scale box is this one
  QLineEdit* Scale_Minimum = nullptr;  // none on the deformed mesh page
  QCheckBox* Undeformed = nullptr;     // "Undeformed mesh visible", deformed mesh page only
  QLineEdit* Ft_Factor = nullptr;      // "ft factor:", the Szz / ft page only
};

// The picture and its toolbar.
class frmResA : public QWidget {
 public:
  frmResA(frmRes& form, QWidget* parent);
  QToolBar* Toolbar = nullptr;
  std::map<std::string, QAction*> Tools;  // by key, in the order of Viewer_Toolbar_Keys
  Result_Picture* Picture1 = nullptr;
  QLabel* Label_Title = nullptr;   // the picture's title with the time
  QLabel* Label_Stored = nullptr;  // the stored step and the count of them
  QLabel* lblScal = nullptr;       // the value at the pointer
  QLabel* Label_X = nullptr;
  QLabel* Label_Y = nullptr;
  QListWidget* List_Times = nullptr;  // "Specific": the stored times
  QListWidget* List_Runs = nullptr;   // "Select": the runs by their materials
  QPushButton* Apply_Run = nullptr;
};

// The tabs of the variables, and the page of the cooling circuits when the run has their history.
class frmresB : public QWidget {
 public:
  frmresB(frmRes& form, QWidget* parent);
  QTabWidget* SSTab1 = nullptr;
  QListWidget* List1 = nullptr;         // "Circuit 1", "Circuit 2", ...; null without the page
  QPushButton* Store_Button = nullptr;  // "Store results in a file"
};

class frmRes : public Work_Form_Widget {
 public:
  frmRes(Gui_Context& context, QWidget* parent = nullptr);
  ~frmRes() override;

  // Opens the Project's results (closing what was open) and shows the first page.
  void Form_Shown() override;
  void Redraw() override;

  // The toolbar by key; a key that is disabled does nothing.
  void Toolbar_Click(const std::string& key);
  QAction* Tool(const std::string& key) const;

  // The pointer over the picture at pixel (px, py) with the button up: the value there.
  void Hover_At(double px, double py);
  // A click on the picture: a history point, a support or a reaction label, as the modes say.
  void Click_At(double px, double py);
  // A dragged rectangle: a zoom, or the cut line while a line cut is pending.
  void Drag_To(double px1, double py1, double px2, double py2);

  // Selects the page of a variable (as a click on its tab does); false when it has no page.
  bool Show_Variable(int variable);
  // Enter in a scale box of the current page: the core takes or refuses the text.
  void Scale_Entered(Scale_Box box, const std::string& text);
  // "Specific" and "Select": the pick of a stored time (0-based row) and of a run (0-based row).
  void Pick_Time(int row);
  void Apply_Selected_Run();
  // A click on line `row` (0-based) of the circuit list: the circuit is selected and frmCool shows
  // its history.
  void Select_Circuit(int row);
  // "Store results in a file": with a selected circuit, the file chosen in the save dialogue gets
  // its history as text; a failure is shown through the host.
  void Store_Circuit();
  // The window of the selected circuit, nullptr before the first selection.
  frmCool* Cool_Window() const { return cool_; }

  // The line cut: "Choice of cut direction" (opened by "Linecut"), the direction it sets for the
  // rubber line, and "Results from linecut", which shows the cut of the current variable along the
  // drawn line and follows the viewer's step, page and ft factor. Null before their first use.
  frmcut* Cut_Direction_Window() const { return cut_window_; }
  frmLineCut* Line_Cut_Window() const { return line_cut_; }
  const Cut_Direction& Direction() const { return cut_direction_; }
  // "Evolution", opened when "History1" comes up with a point (a support on the reaction page)
  // picked; null before.
  frmHis* History_Window() const { return his_; }
  void Open_History();

  bool Is_Open() const { return open_; }
  void Close_Results();
  const Viewer_State& State() const { return state_; }
  const Picture_State& Picture() const;
  const Distribution_Picture& Drawn() const { return drawn_; }
  const Point_Reading& Reading() const { return reading_; }
  bool Reading_Shown() const { return reading_shown_; }
  // The page of a variable, nullptr when the run has none.
  const Result_Page* Page_Of(int variable) const;
  QWidget* Picture_Widget() const;

  // Called after each frame of the movie has been shown and the events have run (tests release
  // the button from here).
  std::function<void(int frame)> Movie_Frame_Observer;
  // Whether an analysis is computing; tab clicks are ignored then. By default the run windows
  // of the main window are asked.
  std::function<bool()> Computing;

  frmResA* A = nullptr;
  frmresB* B = nullptr;

 private:
  friend class Result_Picture;
  friend class Form_Viewer_Host;
  void hideEvent(QHideEvent* event) override;
  void Build_Tabs();
  QWidget* Make_Cooling_Page();
  void Select_Page(int variable);
  void Tab_Changed();
  int Variable_Of_Current_Tab() const;
  void Update_Scale();
  void Home_View();
  void Draw(Plot_Surface& surface);
  // After the state changed: the picture, the labels of the page and of the step, the toolbar.
  void Show_State();
  void Fill_Page();
  void Set_Toolbar();
  void Store_Picture_Dialog();
  void Run_Movie();

  Gui_Context& context_;
  Viewer_State state_;
  Result_Family family_;
  bool open_ = false;
  bool moisture_ = false;
  Picture_State picture_;
  Distribution_Picture drawn_;
  Point_Reading reading_;
  bool reading_shown_ = false;
  bool building_ = false;  // the tabs are being filled: their signals are not the user's
  int shown_variable_ = 1;
  int movie_frames_ = 0;
  bool movie_running_ = false;
  bool user_zoomed_ = false;  // a dragged window; else the whole mesh is shown
  bool home_valid_ = false;
  double home_[4] = {0, 0, 0, 0};  // the whole mesh with a border: x1, y1, x2, y2
  std::vector<Result_Page> pages_;
  class Form_Viewer_Host* host_ = nullptr;
  frmCool* cool_ = nullptr;
  void Show_Line_Cut();
  Cut_Direction cut_direction_;
  frmcut* cut_window_ = nullptr;
  frmLineCut* line_cut_ = nullptr;
  frmHis* his_ = nullptr;
};

// The working form of the results, nullptr for any other kind.
Work_Form_Widget* Create_Result_Form(Work_Form form, Gui_Context& context, QWidget* parent);

}  // namespace pvx
