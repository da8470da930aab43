// What the window tests share: a form's context over a Project of its own with a scripted host, the
// example project copied beside its database and loaded as the program loads it, typing as a user
// types, and the screenshots that scripts/screenshots collects.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QPixmap>
#include <QScreen>
#include <QTest>
#include <QWidget>
#include <filesystem>
#include <string>

#include "app/project_load.h"
#include "app/shell_host_fake.h"
#include "app/units.h"
#include "gui_context.h"
#include "support/temp_dir.h"

namespace pvx::test {

struct Form_Fixture {
  Work_Folder folder;  // the example beside its database
  const Temp_Dir& dir = folder.dir;
  Project project;
  Shell shell;
  Memory_Store store;
  Scripted_Host host;
  int state_changes = 0;
  Gui_Context context{project, shell, store, host, [this] { ++state_changes; }};

  // The example loaded from its copy in `dir`, which becomes the work directory; false with a test
  // failure when it does not load.
  bool Load_Example(Work_State state = Work_State::Run_Set) {
    Read_Report report;
    shell.Work_Directory = folder.path();
    if (Load_Project(folder.project, shell.Work_Directory, project, report) != Load_Result::Loaded) {
      ADD_FAILURE() << report.message;
      return false;
    }
    shell.State = state;
    return true;
  }
  // Another example of examples/ (NAME.PVX) copied beside the same database and loaded instead.
  bool Load_Example_Named(const std::string& name) {
    folder.project = dir.file(name);
    std::filesystem::copy_file(Source_Path("examples/" + name), folder.project);
    return Load_Example();
  }
};

// The old text selected, the new one typed, then Enter.
inline void Type(QLineEdit* entry, const QString& text) {
  ASSERT_NE(entry, nullptr);
  entry->setFocus();
  entry->selectAll();
  QTest::keyClicks(entry, text);
  QTest::keyClick(entry, Qt::Key_Return);
}

// With PVX_SCREENSHOT_DIR set (scripts/screenshots runs the tests under a virtual X display) the
// screen area of the widget's window is stored there as NAME.png; without it nothing is taken.
inline void Take_Screenshot(QWidget& widget, const char* name) {
  const QString directory = qEnvironmentVariable("PVX_SCREENSHOT_DIR");
  if (directory.isEmpty()) return;
  QDir().mkpath(directory);
  QWidget* window = widget.window();
  for (int i = 0; i < 5; ++i)
    QApplication::processEvents();
  QPixmap shot;
  if (QScreen* screen = window->screen()) shot = screen->grabWindow(window->winId());
  if (shot.isNull()) shot = window->grab();
  shot.save(directory + "/" + name + ".png");
}

}  // namespace pvx::test
