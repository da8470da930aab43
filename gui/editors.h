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

// Opens an editor over record `index` of the table it edits (the meaning of `index` per editor
// is given where the editors are made). Returns true when "Apply" changed the Project.
bool Open_Property_Editor(Property_Editor editor, int index, Gui_Context& context, QWidget* parent);

// Opens the function wizard on function `number` of family `family` (1..8). Returns true when
// "Apply" changed the Project.
bool Open_Function_Editor(int family, int number, Gui_Context& context, QWidget* parent);

}  // namespace pvx
