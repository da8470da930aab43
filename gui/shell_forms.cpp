#include "shell_forms.h"

#include "frm_change_work_dir.h"
#include "frm_proj.h"

namespace pvx {

Work_Form_Widget* Create_Shell_Form(Work_Form form, Gui_Context& context, QWidget* parent) {
  switch (form) {
    case Work_Form::Project_Description:
      return new frmProj(context, parent);
    case Work_Form::Change_Work_Directory:
      return new frmChangeWorkDir(context, parent);
    default:
      return nullptr;
  }
}

}  // namespace pvx
