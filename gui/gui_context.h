// What every window of the desktop program shares: the one Project, the shell's state, the
// settings store and the host that answers the shell's questions. The main window owns them and
// hands this record to each form it makes.
#pragma once

#include <functional>

#include <QWidget>

#include "app/project.h"
#include "app/recent_files.h"
#include "app/shell.h"
#include "app/workflow.h"

namespace pvx {

struct Gui_Context {
  Project& project;
  Shell& shell;
  Settings_Store& store;
  Shell_Host& host;
  // A form calls this after it changed the work state or the Project's name, so that the main
  // window brings its toolbar, caption and status labels up to date.
  std::function<void()> state_changed = [] {};
};

// A working form of the main window's work area. The main window makes each once, when it is
// first shown, and tells it when it is shown again so that it refills its fields from the Project.
class Work_Form_Widget : public QWidget {
 public:
  using QWidget::QWidget;
  virtual void Form_Shown() {}
  // Draws the form's picture again (the design panel after a change made elsewhere).
  virtual void Redraw() {}
  // True while the form holds the Project in a long operation (a computation): the main window
  // then refuses every command that would change or replace the Project, and its closing.
  virtual bool Busy() const { return false; }
};

// Makes the working form of the given kind, or nullptr for a kind that has no window yet.
Work_Form_Widget* Create_Work_Form(Work_Form form, Gui_Context& context, QWidget* parent);

}  // namespace pvx
