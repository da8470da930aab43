// The function wizard without its window: the working copy of one function of a family, the entry
// of its values in the display system, the choice of another function by number (adding one above
// the count), the table file, "Apply", and the preview curve drawn on a plotting surface.
//
// The working copy is held in stored units; values are converted when shown and when typed.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/project.h"
#include "design/time_function.h"
#include "results/plot_surface.h"

namespace pvx {

struct Function_Session {
  Function_Family family = Function_Family::Temperature;
  int number = 1;
  bool metric = true;
  bool decimal_comma = false;
  Function current;  // the working copy of function `number`
  int sine = 1;      // the sine term shown
};

// The values of the form that are typed in a text box.
enum class Function_Value { Constant, Average, Amplitude, Frequency, Phase_Shift, Cut_Off };

inline constexpr const char* Function_Times_Out_Of_Order = "The times of the points must not decrease.";

// Opens the wizard on function `number` of `family`; a number outside the family is refused with a
// message.
bool Open_Function_Session(const Project& p, Function_Family family, int number, Function_Session& s,
                           std::string& message);

// The value as shown (display system, Format_Number, no leading blanks), and the Enter rule for it.
std::string Function_Value_Text(const Function_Session& s, Function_Value v);
bool Enter_Function_Value(Function_Session& s, Function_Value v, std::string_view text, std::string& message);

// A cell of the points grid: column 1 the time (a displacement for Spring), column 2 the value.
// A time that would put the point before its predecessor or after its successor is refused.
std::string Point_Cell_Text(const Function_Session& s, int row, int column);
bool Enter_Point_Cell(Function_Session& s, int row, int column, std::string_view text, std::string& message);

// The function number typed in the wizard: below 1 gives 1, above the count asks to add a function
// (a copy of the last, appended to the Project at once). The working copy becomes that function;
// edits of the one shown before that were not applied are dropped.
void Choose_Function(Function_Session& s, Project& p, int typed,
                     const std::function<bool(const std::string& question)>& ask);

// "Read File": reads the points of a table file into the working copy; in the Imperial system the
// numbers are Imperial and converted. On a fault the copy is unchanged and `report` says why.
bool Read_Function_Table(Function_Session& s, const std::string& path, Function_File_Report& report);

// True when Apply would change the family table.
bool Function_Changed(const Function_Session& s, const Project& p);
// "Apply": the working copy replaces the function in its family.
void Apply_Function(const Function_Session& s, Project& p);

// ---- Preview -----------------------------------------------------------------------------------

// The abscissa range of the preview: a piecewise function from its first to its last point with a
// tenth of that span either side (its constant ends show); the other forms from 0 to the
// computation time (72 hours when that is not positive). For Spring the range of a table function
// is used for every form, as its abscissa is a displacement.
std::pair<double, double> Function_Preview_Range(const Function& f, Function_Family family,
                                                 double computation_time);

// The curve of the preview: `n` + 1 evenly spaced abscissae from t0 to t1, with the table times of
// a piecewise function inside the range added, so its corners are drawn exactly. In stored units.
std::vector<std::pair<double, double>> Function_Preview_Samples(const Function& f, double t0, double t1,
                                                                int n);

// Draws the preview of the working copy on a surface: a frame, the axis captions of the family,
// the scale values at the corners and the curve in the display system.
void Plot_Function_Frame(Plot_Surface& surface, const Function_Session& s, double computation_time);

}  // namespace pvx
