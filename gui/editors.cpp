#include "editors.h"

#include "frm_function.h"
#include "frm_property.h"

namespace pvx {

// The seam's enumeration and the core's list the editors in the same order.
static_assert(static_cast<int>(Property_Editor::frmBorT) == static_cast<int>(Editor_Kind::BorT));
static_assert(static_cast<int>(Property_Editor::frmCircuit) == static_cast<int>(Editor_Kind::Circuit));
static_assert(static_cast<int>(Property_Editor::frmNode) == static_cast<int>(Editor_Kind::Node));

bool Open_Property_Editor(Property_Editor editor, int index, Gui_Context& context, QWidget* parent) {
  bool ok = false;
  frmPropertyEditor form(static_cast<Editor_Kind>(static_cast<int>(editor)), index, context, parent, ok);
  if (!ok) return false;
  form.exec();
  return form.Changed_Project();
}

bool Open_Function_Editor(int family, int number, Gui_Context& context, QWidget* parent) {
  if (family < 1 || family > Function_Family_Count) return false;
  bool ok = false;
  frmFunction form(static_cast<Function_Family>(family), number, context, parent, ok);
  if (!ok) return false;
  form.exec();
  return form.Changed_Project();
}

}  // namespace pvx
