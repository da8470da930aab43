#include "editors.h"

#include "frm_function.h"
#include "frm_property.h"

namespace pvx {

bool Open_Property_Editor(Property_Editor editor, int index, Gui_Context& context, QWidget* parent) {
  bool ok = false;
  // The two enumerations list the editors in the same order.
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
