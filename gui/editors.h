// The property editors of the design objects and the function wizard, each a modal dialog over a
// working copy of its record that is written back to the Project at "Apply".
#pragma once

#include <QWidget>

#include "gui_context.h"

namespace pvx {

enum class Property_Editor {
  frmBorT,
  frmBorH,
  frmConvection,
  frmPointT,
  frmLineT,
  frmAreaT,
  frmSupportP,
  frmSupportL,
  frmLoadP,
  frmLoadL,
  frmCircuit,
  frmMacroProp,
  frmReinforce,
  frmInterface,
  frmOutofPlane,
  frmNode
};

// Opens an editor over record `index` of the table it edits, as a modal dialog:
//   frmBorT, frmBorH, frmConvection: border number (Project::Border); the editor shows the thermal
//     (frmBorT, frmConvection) or hygral (frmBorH) periods of that border one at a time, chosen by
//     "Period no:"; a number above the count adds a period from the period defaults.
//   frmPointT, frmLineT, frmAreaT: number in Point_T, Line_T, Area_T.
//   frmSupportP, frmSupportL: number in Point_Support, Line_Support.
//   frmLoadP, frmLoadL: number in Point_Load, Line_Load.
//   frmCircuit: circuit number (Project::Circuit).
//   frmMacroProp: macro number, or 0 for Macro_Defaults (the values a new macro starts from).
//   frmReinforce: bar number (Project::Rebar).
//   frmInterface: interface number (Project::Interface).
//   frmOutofPlane: ignored (the Project has one out-of-plane block).
//   frmNode: design node number.
// A number that names no record shows "There is no such item to edit." and opens nothing.
// "Apply" passes Destroy_Output before it changes the Project and calls state_changed after.
// Returns true when "Apply" changed the Project.
bool Open_Property_Editor(Property_Editor editor, int index, Gui_Context& context, QWidget* parent);

// Opens the function wizard on function `number` of family `family` (1..8, in the order of
// Function_Family). Returns true when an "Apply" changed the Project. A function added by typing a
// number above the count is added at once and stays, whatever the wizard's end.
bool Open_Function_Editor(int family, int number, Gui_Context& context, QWidget* parent);

}  // namespace pvx
