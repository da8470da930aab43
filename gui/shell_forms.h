// The working forms of the shell itself: the project description and the work directory.
#pragma once

#include "gui_context.h"

namespace pvx {

// frmProj for Project_Description, frmChangeWorkDir for Change_Work_Directory, nullptr otherwise.
Work_Form_Widget* Create_Shell_Form(Work_Form form, Gui_Context& context, QWidget* parent);

}  // namespace pvx
