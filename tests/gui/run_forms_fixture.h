// What the tests of the run windows share: the example project copied with its database into a
// fresh folder and loaded as the program loads it, a scripted shell host and the context of the
// windows.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

#include "app/project_load.h"
#include "app/shell_host_fake.h"
#include "gui_context.h"
#include "support/temp_dir.h"

namespace pvx::test {

struct Run_Forms_Fixture {
  Temp_Dir dir;
  Project project;
  Shell shell;
  Memory_Store store;
  Scripted_Host host;
  int state_changes = 0;
  Gui_Context context{project, shell, store, host, [this] { ++state_changes; }};

  // Loads examples/WALL.PVX from a copy beside its database; false with a test failure otherwise.
  bool Load_Example() {
    namespace fs = std::filesystem;
    fs::copy_file(Source_Path("examples/WALL.PVX"), dir.file("WALL.PVX"));
    fs::copy_file(Source_Path("examples/PVX-Concrete.txt"), dir.file("PVX-Concrete.txt"));
    Read_Report report;
    shell.Work_Directory = dir.path().string() + "/";
    if (Load_Project(dir.file("WALL.PVX"), shell.Work_Directory, project, report) != Load_Result::Loaded) {
      ADD_FAILURE() << report.message;
      return false;
    }
    shell.State = Work_State::Run_Set;
    return true;
  }
};

}  // namespace pvx::test
