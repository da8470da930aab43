// The property editors of the design objects without their windows: what each editor shows (its
// fields, captions with units, the unit kind of each number, the limits a record cannot go past),
// the working copy it edits, the entry of a typed number and the writing back at "Apply".
//
// An editor works on a copy of its record. Numbers are held in stored (S.I. working) units at all
// times; a field is converted to the display system only when it is shown, and a typed Imperial
// number is converted back when it is entered. So a value the user does not touch never goes
// through the two length factors, which are not each other's inverse.
#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "app/project.h"

namespace pvx {

// The sixteen editors, in the order of the desktop program's seam.
enum class Editor_Kind {
  BorT,
  BorH,
  Convection,
  PointT,
  LineT,
  AreaT,
  SupportP,
  SupportL,
  LoadP,
  LoadL,
  Circuit,
  MacroProp,
  Reinforce,
  Interface,
  OutofPlane,
  Node
};
inline constexpr int Editor_Kind_Count = 16;

// The form name ("frmBorT", ...) and the window title of an editor.
const char* Editor_Form_Name(Editor_Kind kind);
const char* Editor_Title(Editor_Kind kind);

// The working copy: the one record the editor edits, and the row of its table that is shown
// (the period of a border, the distance of a circuit). Only the member of the editor's kind is used.
struct Editor_Copy {
  pvx::Border Border;
  pvx::Point_T Point_T;
  pvx::Line_T Line_T;
  pvx::Area_T Area_T;
  pvx::Support Support;
  pvx::Load Load;
  pvx::Circuit Circuit;
  pvx::Macro Macro;
  pvx::Rebar Rebar;
  pvx::Interface Interface;
  pvx::Out_Of_Plane Out_Of_Plane;
  double Node_X = 0, Node_Y = 0;
  int Row = 1;
};

enum class Field_Type {
  Number,           // a typed number, unit-converted by its kind
  Integer,          // a typed whole number (16 bits)
  Function_Number,  // a number in a function family; above the count it offers to add one
  Row_Selector,     // the row of the editor's table that the row fields show; above the count adds a row
  Check,            // a check box: value 0 or 1
  Option,           // a group of option buttons: value is the chosen index from 0
  Material          // a material name chosen from the database
};

// Which materials a material field offers.
enum class Material_Filter { Any, Interface, Reinforcement };

struct Editor_Field {
  Field_Type type = Field_Type::Number;
  // The caption; "{}" stands for the unit name of `unit_kind` in the session's system
  // ("Diameter pipes [{}]:").
  std::string caption;
  int unit_kind = 0;  // kind of Convert_Unit; 0 for a value without conversion
  int decimals = 2;   // for Format_Number
  Function_Family family = Function_Family::Temperature;  // Function_Number
  std::vector<std::string> options;                       // Option: the captions of the buttons
  Material_Filter filter = Material_Filter::Any;          // Material
  // Limits in stored units that the record cannot go past; a typed value outside them is refused
  // with `limit_message` and the old value stays.
  double minimum = -std::numeric_limits<double>::infinity();
  double maximum = std::numeric_limits<double>::infinity();
  std::string limit_message;
  bool row_field = false;  // belongs to the row of the table that the selector shows
  bool read_only = false;  // shown, set elsewhere (the number of pipes follows the nodes picked)
  // Row_Selector only: the number of rows, and the appending of a row (none: the rows are fixed).
  std::function<int(const Editor_Copy&)> row_count;
  std::function<void(Editor_Copy&)> add_row;
  // Access to the working copy (numbers, flags as 0/1, option index, row number).
  std::function<double(const Editor_Copy&)> get;
  std::function<void(Editor_Copy&, double)> set;
  // Material fields only.
  std::function<std::string(const Editor_Copy&)> get_text;
  std::function<void(Editor_Copy&, const std::string&)> set_text;
};

struct Editor_Session {
  Editor_Kind kind = Editor_Kind::Node;
  int index = 0;  // the record of the Project (see Open_Editor)
  bool metric = true;
  bool decimal_comma = false;
  Editor_Copy original;  // the record as it was read, to tell whether Apply changes anything
  Editor_Copy copy;      // the working copy
  std::vector<Editor_Field> fields;
};

inline constexpr const char* Editor_No_Record_Message = "There is no such item to edit.";

// Opens an editor on its record:
//   BorT, BorH, Convection: border number (Border table); the thermal or hygral periods are rows.
//   PointT, LineT, AreaT: number in Point_T, Line_T, Area_T.
//   SupportP, SupportL: number in Point_Support, Line_Support.
//   LoadP, LoadL: number in Point_Load, Line_Load.
//   Circuit: circuit number; the out-of-plane distances are rows.
//   MacroProp: macro number, or 0 for the defaults that a new macro copies (Macro_Defaults).
//   Reinforce: bar number (Rebar table).
//   Interface: interface number (Interface table).
//   OutofPlane: not used (the one block).
//   Node: design node number.
// False with Editor_No_Record_Message when the number names no record.
bool Open_Editor(const Project& p, Editor_Kind kind, int index, Editor_Session& session,
                 std::string& message);

// The caption of a field in the session's unit system: "Diameter pipes [mm]:" or "Diameter pipes
// [in]:"; a field without unit keeps its caption.
std::string Field_Caption(const Editor_Session& s, int field);
// The value of a field as shown: converted to Imperial when the session is not metric, formatted
// by Format_Number with the field's decimals and without leading blanks.
std::string Field_Text(const Editor_Session& s, int field);
// The number of rows of the table that the row selector of the editor shows (0 when it has none).
int Editor_Row_Count(const Editor_Session& s);

// The Enter key in a text field: the text goes through Check_Number (a faulty number keeps the old
// value with the number message), back to stored units if the session is Imperial, past the
// field's limits (refused with the limit message) and into the working copy. A function number
// above the count of its family asks `ask` whether to add one (which adds it to the Project at
// once, as a function is shared by the whole Project). A row number above the count adds a row
// to the working copy. Returns false when the value was refused; `message` is then what the user
// is shown.
using Editor_Question = std::function<bool(const std::string& question)>;
bool Enter_Field(Editor_Session& s, int field, std::string_view text, Project& p, const Editor_Question& ask,
                 std::string& message);
// A check box, an option button or a material chosen: no entry rule, stored at once.
void Set_Field_Value(Editor_Session& s, int field, double value);
void Set_Field_Text(Editor_Session& s, int field, const std::string& text);

// The names offered by a material field: the database materials that pass its filter.
std::vector<std::string> Material_Choices(const Project& p, Material_Filter filter);

// True when Apply would change the Project.
bool Editor_Changed(const Editor_Session& s);
// Writes the working copy back to its record, with what follows from it: the radiation and
// convection flags of the thermal periods, the length and direction of a bar, the reference of a
// support whose offset flag changed, the sorted corners of an area, the defaults of the next macro,
// and a cleared mesh when the geometry of a node or a bar changed.
void Apply_Editor(const Editor_Session& s, Project& p);

}  // namespace pvx
