#include "frm_design.h"
#include "frm_gen_mesh.h"
#include "frm_res.h"
#include "gui_context.h"
#include "run_forms.h"
#include "shell_forms.h"

namespace pvx {

Work_Form_Widget* Create_Work_Form(Work_Form form, Gui_Context& context, QWidget* parent) {
  if (auto* f = Create_Run_Form(form, context, parent)) return f;
  if (auto* f = Create_Shell_Form(form, context, parent)) return f;
  if (auto* f = Create_Result_Form(form, context, parent)) return f;
  switch (form) {
    case Work_Form::Design:
      return new frmDesign(context, parent);
    case Work_Form::Mesh:
      return new frmGenMesh(context, parent);
    default:
      return nullptr;
  }
}

}  // namespace pvx
