// The input tables: the project's input printed as fixed-pitch tables under a running
// header, so that a computation can be checked and filed.
//
// The user ticks sections (the ten boxes of the print selection); each ticked section becomes one
// or more tables in a fixed order, each table a heading line, a line of column names, a line of
// units and the rows. The tables are built once as cell texts (what the tests and any front end
// read), and laid out as text lines at tab stops (what is printed). Paging is a matter of the
// lines alone, so the page frame of a printer or a PDF only decides how many lines fit.
//
// Units. Metric values are the stored values with the unit texts of the printout ("oC", "mm",
// "J/m2sK", ...). Imperial values are converted with Convert_Unit and labelled with Unit_Name of
// the kind of their column:
// - lengths in mm (coordinates, thickness, diameters, radius, offsets): kind 1, "in";
// - temperatures: kind 3, "oF" (an amplitude of a temperature function is a difference: x 1.8);
// - moisture content: kind 10, "lb/yd3"; circuit distances and levels in m: kind 7, "yd";
// - the liquid capacity: kind 16; the convective transfer of circuits and borders: kind 14;
// - the hygral transfer coefficient, a speed in m/s: kind 13, "mph";
// - forces of point loads: kind 8, "lbf"; pressures of line loads: kind 4, "ksi";
// - function values by kind: radiation kind 17, flow kind 6, displacement kind 1, spring kind 11,
//   water pressure kind 7; humidity and load functions are ratios and stay as they are;
// - times, angles, counts, emissivities and the lateral coefficient have no Imperial form.
#pragma once

#include <string>
#include <vector>

#include "app/project.h"
#include "app/table.h"

namespace pvx {

// The boxes of the print selection, in the order of the window: "Object properties" (1 to 4),
// "Boundary conditions" (5 to 7), "Mesh and time marching" (8 to 10).
enum class Print_Section {
  Macros = 1,
  Interfaces,
  Reinforcement_Bars,
  Cooling_Circuits,
  Thermal,
  Hygral,
  Mechanical,
  Nodes,
  Elements,
  Periods
};
inline constexpr int Print_Section_Count = 10;

// The box's caption: "Macros", "Interfaces", "Reinforcement bars", "Cooling circuits", "Thermal",
// "Hygral", "Mechanical", "Nodes", "Elements", "Periods".
const char* Print_Section_Name(Print_Section section);

// Ticked boxes, numbered as Print_Section.
using Print_Selection = Array1<bool, Print_Section_Count>;

// Whether a box has data: a box without is greyed out when the window opens. Macros, interfaces,
// bars and circuits need one of their kind; "Thermal" a border or a prescribed temperature,
// "Hygral" a border, "Mechanical" a support or a load; "Nodes" and "Elements" the mesh's nodes and
// elements; "Periods" a calculation period.
bool Section_Has_Data(const Project& p, Print_Section section);
// Every box that has data ticked: the selection the window opens with.
Print_Selection Sections_With_Data(const Project& p);

// What a table shows, in the printout's order. The mechanical section has up to three tables
// under one heading, the functions one block per kind of function under one heading.
enum class Report_Table_Kind {
  Macros,
  Interfaces,
  Reinforcement,
  Cooling_Circuits,
  Thermal,
  Hygral,
  Supports,
  Loads,
  Out_Of_Plane,
  Functions,
  Nodes,
  Elements,
  Periods
};

enum class Cell_Align { Left, Right };

struct Report_Column {
  std::string Name;  // "nr.", "x1", ...
  std::string Unit;  // the unit line's text under it, "" for none
  int Tab = 0;       // tab stop: the column's first character position, from 0
  int Width = 0;     // characters up to the next tab stop
  Cell_Align Align = Cell_Align::Right;
};

struct Report_Table {
  Report_Table_Kind Kind = Report_Table_Kind::Macros;
  // "MACRO PROPERTIES", ...; empty for a table that continues the heading of the one before (the
  // loads and the out-of-plane state of the mechanical section, the second and later function
  // blocks).
  std::string Heading;
  // Whether the column names are printed: a function block after the first shares them.
  bool Shows_Column_Names = true;
  std::vector<Report_Column> Columns;
  // One text per column; a continuation line of a record (the second sine term of a function,
  // the second period of a border) leaves the record's identifying cells empty.
  std::vector<std::vector<std::string>> Rows;
};

// The tables of the ticked sections, in the printout's order, with values in the chosen unit
// system. The functions follow the mechanical section when a ticked section refers to functions:
// a block for each kind that a printed row refers to, with all functions of that kind. Nothing is
// ticked: no tables.
std::vector<Report_Table> Input_Tables(const Project& p, const Print_Selection& selection, bool metric);

// The header block of every page: the project's title (the project file's name), its four
// description lines and " Input data".
std::vector<std::string> Printout_Header(const Project& p);

// What a line of the printout is, for the paging.
enum class Print_Line_Role { Heading, Column_Names, Units, Row, Blank };

struct Print_Line {
  std::string Text;
  Print_Line_Role Role = Print_Line_Role::Row;
  // The number of its table's head in Print_Layout::Heads (-1 for a blank line): the lines
  // repeated at the top of a page on which the table continues.
  int Head = -1;
};

struct Print_Layout {
  std::vector<Print_Line> Lines;
  // The lines repeated above a table that runs on to a new page: its heading with " (continued)",
  // its column names and its units.
  std::vector<std::vector<std::string>> Heads;
};

// The tables laid out in fixed pitch at their tab stops: each table its heading (when it has one),
// names and units lines, then its rows; a blank line between tables. Trailing blanks are cut.
Print_Layout Layout_Tables(const std::vector<Report_Table>& tables);

// One table line: each cell at its column's tab stop, left-aligned there or right-aligned against
// the next stop less one blank. A cell that runs past its width pushes the next one on, so that
// two cells are always parted by at least one blank.
std::string Table_Line(const std::vector<Report_Column>& columns, const std::vector<std::string>& cells);

// The lines on pages of `lines_per_page` lines (below the page header). A table that runs on to
// a new page gets its head repeated there, and a table that continues the heading of the one
// before (a function block, the loads) gets the heading and names it shares; a heading, names or
// units line is not left at the foot of a page without its first row; a blank line is not put at
// the top of a page. Every page holds at least one line of the printout, whatever the page size.
std::vector<std::vector<std::string>> Paginate(const Print_Layout& layout, int lines_per_page);

// The whole printout as text: the header block, a blank line and the tables. Nothing ticked (or
// nothing to print): the empty text.
std::string Input_Printout_Text(const Project& p, const Print_Selection& selection, bool metric);

}  // namespace pvx
