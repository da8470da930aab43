#include "gui_context.h"

namespace pvx {

Work_Form_Widget* Create_Work_Form(Work_Form form, Gui_Context& context, QWidget* parent) {
  (void)context;
  (void)parent;
  switch (form) {
    default:
      return nullptr;
  }
}

}  // namespace pvx
