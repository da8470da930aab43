#include "editors.h"

namespace pvx {

// The editors come with their own change; until then nothing opens.
bool Open_Property_Editor(Property_Editor editor, int index, Gui_Context& context, QWidget* parent) {
  (void)editor;
  (void)index;
  (void)context;
  (void)parent;
  return false;
}

bool Open_Function_Editor(int family, int number, Gui_Context& context, QWidget* parent) {
  (void)family;
  (void)number;
  (void)context;
  (void)parent;
  return false;
}

}  // namespace pvx
