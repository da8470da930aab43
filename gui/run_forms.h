// The working forms of the run: the run settings and the run diagnostics.
#pragma once

#include "gui_context.h"

namespace pvx {

// frmRun for Work_Form::Run_Settings, frmDiag for Work_Form::Diagnostics, nullptr otherwise.
Work_Form_Widget* Create_Run_Form(Work_Form form, Gui_Context& context, QWidget* parent);

}  // namespace pvx
