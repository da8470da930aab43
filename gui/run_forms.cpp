#include "run_forms.h"

#include "frm_diag.h"
#include "frm_run.h"

namespace pvx {

Work_Form_Widget* Create_Run_Form(Work_Form form, Gui_Context& context, QWidget* parent) {
  switch (form) {
    case Work_Form::Run_Settings:
      return new frmRun(context, parent);
    case Work_Form::Diagnostics:
      return new frmDiag(context, parent);
    default:
      return nullptr;
  }
}

}  // namespace pvx
