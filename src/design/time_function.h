// Time functions: their evaluation, which every analysis module calls, the reading of a table of
// points from a text file, and the rules of the function editor that do not depend on a window.
//
// The editor works on a copy of one function (the working copy) in stored units; a window shows
// it, converted to the display system, and writes it back to its family at "Apply".
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "app/project.h"

namespace pvx {

// 2 pi / 24 with seven digits: a frequency of 1 [1/day] has a period of 24 hours. The value is
// kept at this precision on purpose, so that results stay comparable with earlier runs.
inline constexpr double Function_Day_Factor = 0.2617994;

// The value of a function at time t (for the family `Spring`, at a displacement t). Pure.
// Constant, else periodical, else piecewise linear, else 0; then the cut-off as a lower limit.
// A piecewise function stays constant outside its table; a point whose time is not above the
// previous one makes a jump, and at that time the earlier value holds.
double Evaluate_Function(const Function& f, double t);

// ---- The editor ------------------------------------------------------------------------------

enum class Function_Form { Constant, Periodical, Piecewise };

// The form in use: the first of the flags set, Constant when none is.
Function_Form Active_Form(const Function& f);
// Chooses a form: its flag is set and the other two are cleared.
void Set_Function_Form(Function& f, Function_Form form);

inline constexpr const char* At_Least_Two_Points_Message =
    "At least 2 points must be present in the function";

// Appends a sine term with amplitude 3, frequency 1 and phase shift 0; returns its number.
int Add_Sine_Term(Function& f);
// Removes sine term k. Refused (false) when k is no term or when it is the only one: a periodical
// function keeps at least one term.
bool Delete_Sine_Term(Function& f, int k);

// Appends a point after the last one, at the last time plus the spacing of the last two points
// (plus 1 hour when that spacing is not positive), with the last value; returns its number.
int Add_Point_Row(Function& f);
// Removes point `row`. At two points (or fewer) it is refused with At_Least_Two_Points_Message.
bool Delete_Point_Row(Function& f, int row, std::string& message);
// "Delete all but 2 rows": keeps the first two points.
void Delete_All_But_Two_Rows(Function& f);

// Captions of the editor for one family.
struct Function_Captions {
  const char* title;        // "Temperature function "
  const char* x_caption;    // "Time [hours]", for Spring "Displ. [mm]" / "Displ. [in]"
  const char* y_caption;    // "Temperature [oC]" / "Temperature [oF]"
  const char* value_label;  // "Average Temperature"
};
Function_Captions Function_Family_Captions(Function_Family family, bool metric);

// The unit kinds (of Convert_Unit) of a family's axes; 0 for a quantity without a unit.
// The time axis has a kind only for `Spring`, whose abscissa is a displacement.
struct Function_Unit_Kinds {
  int time_kind;
  int value_kind;
};
Function_Unit_Kinds Function_Family_Unit_Kinds(Function_Family family);

// Converts between systems as Convert_Unit(to_imperial, kind, value) does.
using Unit_Converter = std::function<double(bool to_imperial, int kind, double value)>;

// Entering a function number in a property editor. A number below 1 becomes 1. A number above
// the count of the family asks Function_Number_Question: Yes appends a copy of the last function
// and gives count + 1; No keeps `old_number`. Returns the number to keep.
std::string Function_Number_Question(Function_Family family, int count);
std::int16_t Enter_Function_Number(Project& p, Function_Family family, int typed, std::int16_t old_number,
                                   const std::function<bool(const std::string& question)>& ask);

// ---- Table files -------------------------------------------------------------------------------

inline constexpr const char* Function_File_Dialog_Title = "Select file for function data";
inline constexpr const char* Function_File_Filter = "Alle Files (*.*)|*.*|Projekten(*.txt)|*.txt|";
inline constexpr const char* Function_File_Cannot_Be_Opened = "File cannot be opened !";

struct Function_File_Report {
  std::string message;  // what the user is shown
  std::string detail;   // what exactly was wrong, and where
};

// Reads the pairs (time, value) of a table file's text. Numbers are separated by commas, line
// ends, blanks or tabs and use "." as decimal sign. The text must hold whole pairs, at least two,
// of finite numbers; otherwise false with a report, and the tables are left as they were.
bool Parse_Function_Points(std::string_view text, Table<double>& times, Table<double>& values,
                           Function_File_Report& report);

// Reads a table file into the points of `f` (the point count becomes the number of pairs); the
// other fields and forms are kept. On any fault `f` is left as it was. With a converter the
// numbers are taken as Imperial values of the family and converted to stored units.
bool Read_Function_File(const std::string& path, Function& f, Function_File_Report& report);
bool Read_Function_File(const std::string& path, Function_Family family, const Unit_Converter& from_imperial,
                        Function& f, Function_File_Report& report);

}  // namespace pvx
