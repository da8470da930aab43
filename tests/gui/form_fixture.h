// What the window tests share: a form's context over a Project of its own with a scripted host, the
// example project copied beside its database and loaded as the program loads it, computed by the run
// window and opened in the result viewer, the main window, typing as a user types, and the
// screenshots that scripts/screenshots collects.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QWidget>
#include <filesystem>
#include <memory>
#include <string>

#include "app/project_load.h"
#include "app/shell_host_fake.h"
#include "app/units.h"
#include "frm_diag.h"
#include "frm_res.h"
#include "gui_context.h"
#include "main_window.h"
#include "results/viewer_geometry.h"
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
  // The loaded example computed by the run window `run`.
  bool Compute(frmDiag& run) {
    run.Form_Shown();
    QTest::mouseClick(run.Command2, Qt::LeftButton);
    EXPECT_EQ(run.Last_Outcome(), Run_Outcome::Completed) << run.Label_Messages->text().toStdString();
    return run.Last_Outcome() == Run_Outcome::Completed;
  }
  bool Compute() {
    frmDiag run(context);
    return Compute(run);
  }
  // The result viewer over the computed project, shown.
  std::unique_ptr<frmRes> form;
  bool Open_Viewer() {
    form = std::make_unique<frmRes>(context);
    form->resize(1200, 760);
    form->show();
    form->Form_Shown();
    EXPECT_TRUE(form->Is_Open()) << (host.messages.empty() ? "" : host.messages.back());
    return form->Is_Open();
  }
};

// WALL computed once for the whole program; its tests only read the family.
struct Computed_Example : Form_Fixture {
  bool ok = Load_Example() && Compute();
};
inline const Computed_Example& Example() {
  static Computed_Example example;
  return example;
}

// A viewer over a copy of the computed WALL with a host of its own, and its records read apart.
struct Viewer : Form_Fixture {
  bool Open() {
    if (!Example().ok) return false;
    project = Example().project;
    shell = Example().shell;
    return Open_Viewer();
  }
  Run_Index Index() const {
    Run_Index index;
    std::string message;
    EXPECT_TRUE(
        Read_Run_Index_File(Example().dir.file("WALL.RES"), project.File_Version, false, index, message))
        << message;
    return index;
  }
  Plot_Buffers Read(int variable, int stored) const {
    Plot_Buffers buffers;
    Result_Family family;
    Run_Index index;  // tells how many records each file holds
    std::string message;
    bool ok = Prepare_Result_Family(family, project, project.Mechanical_Included != 0, shell.Work_Directory,
                                    message) &&
              Open_All_Result_Sets(family, project.File_Version, message) &&
              Read_Run_Index(family, 1, project.File_Version, false, index, message);
    if (ok) {
      Dimension_Plot_Buffers(family.Layout, buffers);
      ok = Read_Result_Variable(family, 1, Slot_Of_Variable(variable), stored, variable, false, buffers,
                                message);
    }
    EXPECT_TRUE(ok) << message;
    return buffers;
  }
  // The pixel of a model point in the viewer's picture, unrounded.
  QPointF Pixel(double x, double y) const {
    const Picture_State& p = form->Picture();
    const double x0 = Picture_To_World_X(p, 0), y0 = Picture_To_World_Y(p, 0);
    return {(x - x0) / (Picture_To_World_X(p, 1) - x0), (y - y0) / (Picture_To_World_Y(p, 1) - y0)};
  }
};

// The main window started in a folder of its own beside the example and its database.
struct Window_Fixture {
  Work_Folder folder;
  Scripted_Host host;
  Memory_Store store;
  mdiPVX window{host, store, folder.dir.path().string()};
  Window_Fixture() {
    host.answers = {Answer::Yes};  // the proposed default database
    window.Start(false, "");
    window.show();
  }
  void Open_Example() {
    host.files = {folder.project};
    window.findChild<QAction*>("Open")->trigger();
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

// The number of the image's pixels of a colour.
inline int Pixels_Of(const QImage& image, QColor colour) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      count += image.pixelColor(x, y) == colour;
  return count;
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
