// The state of the result viewer and what its toolbar and pages do with it, without a window.
//
// One Viewer_State holds what the viewer shows: the variable, the stored step and the run, the one
// record in the plot buffers, the index of the run (whose scale values the user may edit in memory
// only), the picked history points and supports, and the mode flags. The result family stays open
// beside it, from Open_Viewer to the return to design mode.
//
// Messages and Yes/No questions go through a Viewer_Host that the window (or a test) supplies, so
// nothing here ever blocks on a dialogue of its own.
//
// How the two viewer windows drive it:
//   "Results"        Open_Viewer; the tabs from Offered_Pages (viewer_pages.h); the first page:
//                    Select_Variable.
//   a page (tab)     Select_Variable; Plot_Distribution (viewer_plot.h); Extreme_Labels_Of
//                    (viewer_values.h) for "Extreme values in period:" and "Scale Values:".
//   Enter in a box   Edit_Scale; on true Plot_Distribution from the buffers, on false the box
//                    text goes back to Scale_Box_Text of the kept value.
//   pointer move     Value_Under_Pointer: the label next to the pointer, or hidden on false.
//   pointer press    Pick_History_Point (point mode), Reaction_Label (reaction page).
//   toolbar          Step_Backward, Step_Forward, Play_Movie, Jump_To_Minimum, Jump_To_Maximum,
//                    Stored_Time_Texts + Pick_Stored_Step ("Specific"), Run_Names + Select_Run
//                    ("Select"), Reset_Picks, Set_Zoom_Window / Clear_Zoom (viewer_plot.h);
//                    after each that returns true, Plot_Distribution.
//   import button    Import_History_Points / Import_History_Supports with the file chosen in a
//                    dialogue titled Import_Points_Title / Import_Supports_Title.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "app/project.h"
#include "results/cooling_data.h"
#include "results/plot.h"
#include "results/result_files.h"
#include "results/run_index.h"
#include "results/viewer_values.h"

namespace pvx {

// The program's texts of the viewer.
inline constexpr const char* Max_Not_Above_Min_Message = "Max =< Min";
inline constexpr const char* Min_Not_Below_Max_Message = "Min >= Max";
inline constexpr const char* Scale_Not_Positive_Message = "Scale value =< 0";
inline constexpr const char* Error_In_File_Message = "Error in file";
inline constexpr const char* Reset_Line_Cut_Question = "Must actual line cut be elimitated ?";
inline constexpr const char* Reset_Points_Question = "Must selected points for history plots be elimitated ?";
inline constexpr const char* Reset_Areas_Question = "Must selected area's for history plots be elimitated ?";
inline constexpr const char* Reset_Supports_Question =
    "Must selected supports for history plots be eliminated ?";
inline constexpr const char* Import_Points_Tip =
    "import coordinates from a file; format:  number of points  1  x(1)  y(1)  2  x(2)  y(2)  3 ....";
inline constexpr const char* Import_Supports_Tip =
    "import support number from a file; format:  number of supports  1  supportnr1  2  supportnr2   3 ....";
inline constexpr const char* Import_File_Filter = "(*.txt)|*.txt|";
inline constexpr const char* Import_Points_Title = "Select file for history points";
inline constexpr const char* Import_Supports_Title = "Select file for history support points";

// The keys of the result panel's toolbar, in order.
inline constexpr const char* Viewer_Toolbar_Keys[] = {"StorePic", "Zoomin",  "Zoomout", "Backward", "Forward",
                                                      "Movie",    "Minimum", "Maximum", "Specific", "Linecut",
                                                      "History1", "Select",  "Reset"};

// What the viewer asks of its window.
class Viewer_Host {
 public:
  virtual ~Viewer_Host() = default;
  // A message box with the text and an OK button.
  virtual void Show_Message(const std::string& text) = 0;
  // A Yes/No box; true for Yes.
  virtual bool Ask_Yes_No(const std::string& question) = 0;
  // Whether the "Movie" button is still down; read before every frame of the movie.
  virtual bool Movie_Button_Down() = 0;
  // Draws the picture of the state as it is now (a movie frame).
  virtual void Show_Picture() = 0;
  // Lets the event loop run, so that the button can be released during a movie.
  virtual void Yield() = 0;
};

// A picked point for the history plots: its element and local coordinates, and its model position
// as the bilinear map gives it.
struct History_Point {
  std::int32_t Element = 0;
  double U = 0, V = 0;
  double X = 0, Y = 0;
  bool operator==(const History_Point&) const = default;
};

// A rectangle picked for the history plots, model mm, X1 <= X2 and Y1 <= Y2.
struct History_Area {
  double X1 = 0, Y1 = 0, X2 = 0, Y2 = 0;
  bool operator==(const History_Area&) const = default;
};

// The line of the line cut, model mm.
struct Cut_Line {
  double X1 = 0, Y1 = 0, X2 = 0, Y2 = 0;
};

struct Viewer_State {
  std::int16_t CurrentVariable = 1;  // the viewer's number: 1..40, 30..34 interfaces and rebars
  std::int16_t CurrentStored = 1;    // 1 .. Storage_Count
  std::int16_t CurrentRun = 1;       // 1 .. Number_Of_Runs
  int SelectedCircuit = 1;           // the circuit of the cooling tab

  Run_Index Index;       // of the current run, extreme table in display units
  Plot_Buffers Buffers;  // one record; CurrentMin and CurrentMax are its extremes
  Table<Circuit_History> Circuits;
  bool CoolingDataOk = false;

  double FtFactor = 1;              // the "ft factor:" box, for the line cut
  bool Undeformed_Visible = false;  // "Undeformed mesh visible" of the deformed mesh page

  Table<History_Point> HistoryPoints;
  Table<History_Area> HistoryAreas;
  Table<std::int32_t> HistorySupports;  // support numbers (reaction entries)

  bool PickingPoints = false, PickingAreas = false, PickingSupports = false;
  bool LineCutActive = false, LineCutPending = false;
  Cut_Line LineCut;
  bool History_Button_Down = false;  // the "History1" button: the picked points are drawn

  bool Metric = true;  // the project's display system
  int Project_Version = Run_Index_Version;
};

// The time of the stored step shown, hours (0 before any index is read).
double Current_Time(const Viewer_State& s);

// Whether the results of a project include the moisture field: an element's material has hygral
// properties.
bool Moisture_Results(const Project& p);
// Whether the page of a variable is offered: the temperature, maturities, strengths and degree of
// hydration always; humidity and moisture content with moisture results; displacements, stresses,
// reactions and crack opening in a mechanical family; interfaces and rebars when the family has
// their files.
bool Variable_Offered(const Result_Layout& layout, bool moisture, int variable);

// Opens the results of a project for the viewer: the family of its result names (relative names in
// `work_directory`), all runs for reading, then the run CurrentRun as Load_Run does. On failure the
// host shows "Results (" + path + ") not available" or the corrupted message and false returns.
bool Open_Viewer(Viewer_State& s, Result_Family& family, const Project& p, const std::string& work_directory,
                 Viewer_Host& host);

// Makes run `run` current: its index (the extreme table converted for display when not metric),
// buffers sized for the family, its cooling history when the family has circuits (an unreadable
// one is shown and leaves CoolingDataOk false), the stored step capped into 1..Storage_Count, and
// the record of the current variable read.
bool Load_Run(Viewer_State& s, Result_Family& family, int run, Viewer_Host& host);

// CurrentStored 0 (or below) becomes 1, above Storage_Count becomes Storage_Count.
void Cap_Stored(Viewer_State& s);

// Reads the record of CurrentStored for CurrentVariable into the buffers, after capping the stored
// step. A variable without a record (the circuit variables) reads nothing and returns true. A read
// failure is shown and returns false.
bool Read_Current(Viewer_State& s, Result_Family& family, Viewer_Host& host);

// The pick modes are switched off (the window releases its pick button).
void Clear_Pick_Flags(Viewer_State& s);

// A change of page: pick flags cleared, the variable set, its record read. The window then draws
// Plot_Distribution and fills the page from Extreme_Labels_Of.
bool Select_Variable(Viewer_State& s, Result_Family& family, int variable, Viewer_Host& host);

// "Backward" and "Forward": one stored step down or up and read; false (nothing done) at the ends.
bool Can_Step_Backward(const Viewer_State& s);
bool Can_Step_Forward(const Viewer_State& s);
bool Step_Backward(Viewer_State& s, Result_Family& family, Viewer_Host& host);
bool Step_Forward(Viewer_State& s, Result_Family& family, Viewer_Host& host);

// "Minimum" and "Maximum": the stored step at which the variable's period extreme occurred, capped
// into 1..Storage_Count before the read (rows above 30 are not capped in the file).
int Stored_Index_Of_Minimum(const Viewer_State& s);
int Stored_Index_Of_Maximum(const Viewer_State& s);
bool Jump_To_Minimum(Viewer_State& s, Result_Family& family, Viewer_Host& host);
bool Jump_To_Maximum(Viewer_State& s, Result_Family& family, Viewer_Host& host);

// "Specific": the list of all stored times (decimals 6, width 14; entry k is stored step k), and the
// pick of entry k.
std::vector<std::string> Stored_Time_Texts(const Viewer_State& s);
bool Pick_Stored_Step(Viewer_State& s, Result_Family& family, int stored, Viewer_Host& host);

// "Movie": the frame after `frame` (1 for frame 0), or 0 after the last stored step.
int Next_Movie_Frame(const Viewer_State& s, int frame);
// Shows every stored step from the first while the button stays down: set, read, picture, yield.
// A released button stops at the step reached. Returns the number of frames shown.
int Play_Movie(Viewer_State& s, Result_Family& family, Viewer_Host& host);

// "Select": the runs by their material names (entry r is run r), and the loading of one, as
// Load_Run. A run whose files are not open shows "Results (" + path + ") not available", one whose
// index cannot be read Run_Not_Loaded(path); the viewer then stays on its run.
std::string Run_Not_Loaded(const std::string& path);  // "Results (" + path + ") not available or corrupted. "
std::vector<std::string> Run_Names(const Project& p);
bool Select_Run(Viewer_State& s, Result_Family& family, int run, Viewer_Host& host);

// The boxes of the scale. Enter parses the typed text (either decimal sign); a refused value shows
// its message, keeps the old value and returns false, and the window puts the old text back
// (Scale_Box_Text of the value). A taken value returns true; the window redraws from the buffers.
enum class Scale_Box { Maximum, Minimum, Deformation, Ft_Factor };
bool Edit_Scale(Viewer_State& s, Scale_Box box, const std::string& text, bool decimal_comma,
                Viewer_Host& host);

// "Reset": each of the line cut, the history points, the areas and the supports that is there is
// cleared when the host answers Yes to its question.
void Reset_Picks(Viewer_State& s, Viewer_Host& host);

// What the pointer at picture pixel (px, py) shows: the model point by the inverse transformation,
// the element under it at the current time and the value there with its text. False (the label is
// hidden) on the reaction page, for a variable without values at a point, or off the active mesh.
bool Value_Under_Pointer(const Viewer_State& s, const Picture_State& picture, const Project& p, double px,
                         double py, Point_Reading& reading);

// A press in point mode: the element under the model point (x, y) at the current time, and a new
// history point with its mapped position; false when the point lies in no active element.
bool Pick_History_Point(Viewer_State& s, const Project& p, double x, double y);

// The support nearest the model point (x, y) (from a best distance of 1e30); 0 without supports.
int Nearest_Support(const Project& p, double x, double y);
// The text of a reaction: decimals 3, width 11, then " [kN]" or " [kip]".
std::string Reaction_Text(const Viewer_State& s, int support);
// A press on the reaction page: the nearest support and its text; false without supports. In
// support mode the support also goes into HistorySupports.
bool Reaction_Label(Viewer_State& s, const Project& p, double x, double y, int& support, std::string& text);

// The numbers of a list-input text: separated by blanks, commas or line ends. False on a word that
// is no number.
bool Read_List_Numbers(const std::string& text, std::vector<double>& numbers);

// Imports history points from a text file: the count, then for each point its running number and
// x, y (model mm). The points are added after those there are; a point in no active element is
// dropped without a message. A file that cannot be read, is short or holds a word that is no number
// shows "Error in file" and adds nothing. Returns the number of points added, -1 on error.
int Import_History_Points(Viewer_State& s, const Project& p, const std::string& path, Viewer_Host& host);
// The same for supports: the count, then per support its running number and the support number.
// A support number that the mesh does not have is dropped.
int Import_History_Supports(Viewer_State& s, const Project& p, const std::string& path, Viewer_Host& host);

}  // namespace pvx
