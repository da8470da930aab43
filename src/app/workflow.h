// The main window's logic without the window: the workflow states and their toolbar buttons, the
// Project menu and toolbar commands, the gate before results are destroyed, the closing question,
// the caption, the default material database and the work directory file. The window is a thin
// view: it passes its menu indices and button keys here and answers questions through a
// Shell_Host, which the tests script.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "app/project.h"
#include "app/recent_files.h"
#include "app/shell.h"

namespace pvx {

// The main toolbar, in its order.
enum class Toolbar_Button {
  Open,
  Quit,
  Project_information,
  Design_Panel,
  Mesh,
  Refresh,
  Runset,
  Compute,
  Results
};
inline constexpr int Toolbar_Button_Count = 9;
using Button_Set = std::array<bool, Toolbar_Button_Count>;  // visible, indexed by Toolbar_Button

const char* Button_Key(Toolbar_Button button);       // "Open", "Quit", ..., "Results"
const char* Button_Tool_Tip(Toolbar_Button button);  // "Open project", ...; "" for Refresh
bool Find_Button(const std::string& key, Toolbar_Button& button);
inline bool Shows(const Button_Set& set, Toolbar_Button button) {
  return set[static_cast<std::size_t>(button)];
}

// The visible buttons of a state. Each state adds to the one before: No Project has Open, Quit,
// Project_information and Design_Panel; Design adds Mesh, Refresh and Runset; Run set adds
// Compute; Computed adds Results.
Button_Set Buttons_Of(Work_State state);

// The program's texts of the shell.
inline constexpr const char* Destroy_Output_Question =
    "Already computed results will be destroyed by performing this action. Do you still want to continue. ";
inline constexpr const char* Not_Saved_Question = "Warning ! Project not saved yet. Saving now ?";
inline constexpr const char* All_Data_Deleted_Warning = "All present data will be deleted";
inline constexpr const char* Default_Database_Failed =
    "Default Material Database cannot be opened, try another one !";
inline constexpr const char* Select_Project_Title = "Select project";
inline constexpr const char* Save_Project_Title = "Save project as";
inline constexpr const char* Project_Filter = "Alle Files (*.*)|*.*|Projekten(*.PVX)|*.PVX|";
inline constexpr const char* Design_Panel_Caption = "Design panel";
inline constexpr const char* No_Mesh_To_Compute = "There is no mesh to compute: make one with Mesh first.";
inline constexpr const char* Start_Computations_Caption = "Start computations";
inline constexpr const char* Work_Directory_File = "workdir.tmp";
// "Default Database = " + name + ". Is this correct ?"
std::string Default_Database_Question(const std::string& name);

enum class Answer { Yes, No, Cancel, OK };
enum class Question_Buttons { Yes_No, Yes_No_Cancel, OK_Cancel };

// The working forms the commands show.
enum class Work_Form {
  Project_Description,
  Design,
  Mesh,
  Run_Settings,
  Diagnostics,
  Results,
  Change_Work_Directory
};

// What the commands need of the windowing platform. The dialog methods must be answered; the
// others have do-nothing defaults.
class Shell_Host {
 public:
  virtual ~Shell_Host() = default;
  virtual Answer Ask(const std::string& question, Question_Buttons buttons) = 0;
  virtual void Show_Message(const std::string& text) = 0;
  // File choosers: false when the user cancels; `path` may hold a proposal on entry.
  virtual bool Choose_Open_File(const std::string& title, const std::string& filter, std::string& path) = 0;
  virtual bool Choose_Save_File(const std::string& title, const std::string& filter, std::string& path) = 0;

  virtual void Hide_All() {}
  virtual void Show_Form(Work_Form form) { (void)form; }
  virtual void Redraw_Design() {}
  // The caption of the work window (the form that is shown).
  virtual void Set_Work_Caption(const std::string& caption) { (void)caption; }
  // The mesh form: `existing` when a mesh is there to show, `cooling_button` with circuits.
  virtual void Show_Mesh_Form(bool existing, bool cooling_button) {
    (void)existing;
    (void)cooling_button;
  }
  // Opens the result family of the Project for the viewers and reads its index. On failure the
  // message is the program's ("Results (name) not available", or "... not available or corrupted!
  // The program returns to the design mode.").
  virtual bool Open_Results(const Project& p, const Shell& shell, std::string& message) {
    (void)p;
    (void)shell;
    message.clear();
    return false;
  }
  // Changes the process's current drive and directory.
  virtual void Change_Directory(const std::string& directory) { (void)directory; }
  // The main window goes; the program ends.
  virtual void End_Program() {}
};

// The caption of the main window: database name, " - ", project file, " - ", label; without a
// database the label followed by "  (No material database connected.)".
std::string Main_Caption(const Project& p, const Shell& shell);

// The gate before anything that invalidates results: with results the user is asked, and Yes drops
// the Results button (the state goes back to Run set). Without results ok is true and nothing is
// asked.
void Destroy_Output(Shell& shell, Shell_Host& host, bool& ok);

// true if `name` exists as a regular file; any error of the test gives false.
bool fileexist(const std::string& name);

// The default database proposal: the last, in sorted order, of the files PVX*.txt in `directory`
// (letter case ignored), with its full path; empty when there is none.
std::string Default_Database_Proposal(const std::string& directory);

// Chooses and reads the default material database: the proposal is asked about; No or no proposal
// opens the file chooser; a database that cannot be read says so and the chooser comes again.
// Returns false when the user cancels the chooser (the Project keeps no database then). On success
// Material_Database_Path, Material and Material_Color of `p` are set.
bool Choose_Default_Database(Project& p, Shell& shell, Shell_Host& host);

// The work directory file beside the program. Reading takes the first line; a line that names no
// existing directory, or any failure, leaves Work_Directory as it was (returns false).
bool Read_Work_Directory(Shell& shell, Shell_Host& host);
bool Write_Work_Directory(const Shell& shell);
// The work directory form closes with the directory the user chose (empty: none chosen): it becomes
// the work directory and the current directory, and is written to the work directory file.
void Close_Work_Directory_Form(const std::string& chosen, Shell& shell, Shell_Host& host);

// Opens a project file into `p` with its database; on failure shows the message and leaves `p` and
// the state untouched. On success: After_Opening, the caption, no current macro, the state Design
// (Computed when the file names results), and the name goes to the recent list.
bool Open_Project_File(const std::string& path, Project& p, Shell& shell, Shell_Host& host,
                       Settings_Store& store);

// The program started with a file argument: the command line in quotes. The file's folder becomes
// the work directory, as with Open.
bool Direct_Start(const std::string& command_line, Project& p, Shell& shell, Shell_Host& host,
                  Settings_Store& store);

// A recent entry chosen from the menu (position from 1): a missing file gives "File cannot be
// opened !"; otherwise the work directory becomes the file's directory and the file is opened.
bool Open_Recent_File(int position, Project& p, Shell& shell, Shell_Host& host, Settings_Store& store);

// Closing the main window: false when the closing is refused.
bool Query_Close(Project& p, Shell& shell, Shell_Host& host, Settings_Store& store);

// The start of the main window in its order: the work directory file, Initialize_Program, the
// default database, the caption, and the Project named on the command line (empty: none).
// Returns the recent file list for the menu.
std::vector<std::string> Start_Main_Window(Project& p, Shell& shell, Shell_Host& host, Settings_Store& store,
                                           bool decimal_comma, const std::string& command_line);

// The Project menu: 0 New, 1 Change Work Directory, 2 Open, 3 Save, 4 Save as, 5 Exit.
void mnuProject_Click(int index, Project& p, Shell& shell, Shell_Host& host, Settings_Store& store);

// The main toolbar by key word; an unknown key does nothing.
void Toolbar1_ButtonClick(const std::string& key, Project& p, Shell& shell, Shell_Host& host,
                          Settings_Store& store);

// The run window reports the end of a computation; results that were written make the state
// Computed.
void Computation_Ended(Shell& shell, bool results_written);

}  // namespace pvx
