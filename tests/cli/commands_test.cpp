// pvx run, convert and materials, run as a user runs them.
#include <gtest/gtest.h>

#include <signal.h>

#include <chrono>
#include <cmath>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>
#include <thread>

#include <fmt/format.h>

#include "app/shell.h"
#include "cli_support.h"
#include "results/run_index.h"
#include "support/rich_project.h"

namespace pvx {
namespace {

namespace fs = std::filesystem;
using test::Pvx;
using test::Temp_Dir;

std::string Copy_Example(const Temp_Dir& dir) {
  fs::copy_file(test::Source_Path("examples/WALL.PVX"), dir.file("WALL.PVX"));
  fs::copy_file(test::Source_Path("examples/PVX-Concrete.txt"), dir.file("PVX-Concrete.txt"));
  return dir.file("WALL.PVX");
}

TEST(Pvx_Run, TheExampleIsComputedOnItsScheduleAndItsSummaryPointsAtTheRecord) {
  Temp_Dir dir;
  const std::string project = Copy_Example(dir), res = dir.file("out/WALL.RES");
  // Steps and storages by hand from the periods: each period steps by its increment and stores
  // every so many hours; the initial state is stored too.
  Project p;
  Read_Report report;
  ASSERT_TRUE(Read_Project(project, dir.path().string(), p, report));
  int steps = 0, storages = 1;
  for (const Period& period : p.Period) {
    steps += static_cast<int>(std::lround((period.Until - period.From) / period.Time_Increment));
    storages += static_cast<int>(std::lround((period.Until - period.From) / period.Storage_Each));
  }
  test::Pvx_Run run = Pvx({"run", project, "--output", "out/WALL.RES"});  // a folder yet to be made
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(
      run.out.rfind(
          fmt::format("variant 1/1: {0} of {0} steps, {1} storages in out/WALL.RES (", steps, storages), 0),
      0u)
      << run.out;
  EXPECT_EQ(nlohmann::json::parse(Pvx({"results", res, "--json"}).out)["storage_times"].back(),
            p.Computation_Time);

  // The summary names the highest temperature of the run and, where that fell between storages,
  // the largest of the nearest stored step: the record of that step has its largest value, that
  // one, at the node named, and it lies below the run's.
  run = Pvx({"results", res, "--summary", "--project", project});
  ASSERT_EQ(run.status, 0) << run.err;
  std::smatch m;
  ASSERT_TRUE(std::regex_search(
      run.out, m,
      std::regex("Highest temperature: ([0-9.]+) oC \\(between storages\\); stored: ([0-9.]+) "
                 "oC at [0-9.]+ hours \\(stored step ([0-9]+)\\), node ([0-9]+) at "
                 "\\(([0-9.]+), ([0-9.]+)\\) mm")))
      << run.out;
  // The example's wall cracks at its faces while its core is hot: the widest crack is told too.
  EXPECT_TRUE(std::regex_search(run.out, std::regex("\nWidest crack: 0[.]0[0-9]+ mm .*, element [0-9]+ at ")))
      << run.out;
  // The matches point into the output, which the next run replaces.
  const std::vector<std::string> found(m.begin(), m.end());
  run = Pvx({"results", res, "--var", "1", "--stored", found[3], "--project", project});
  ASSERT_EQ(run.status, 0) << run.err;
  std::istringstream rows(run.out);
  std::string row, hottest;
  double highest = -1e300;
  std::getline(rows, row);  // the header
  while (std::getline(rows, row))
    if (const double t = std::stod(row.substr(row.rfind(',') + 1)); t > highest) highest = t, hottest = row;
  EXPECT_EQ(hottest.substr(0, hottest.rfind(',')), found[4] + "," + found[5] + "," + found[6]);
  EXPECT_NEAR(highest, std::stod(found[2]), 1e-4);
  EXPECT_LT(highest, std::stod(found[1]));

  // A project that cannot be used stops with the program's message.
  Project bare;
  New_Project(bare);
  test::Write_Text(dir.file("BARE.PVX"), Write_Project_Text(bare, 109, "PVX-Concrete.txt"));
  run = Pvx({"run", dir.file("BARE.PVX")});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "The project has no mesh: make one first (pvx mesh --write).\n");
}

// Ctrl-C acts as the stop button: the run ends at the top of a step with its files closed and
// readable, and the exit status says "stopped".
TEST(Pvx_Run, AnInterruptStopsTheRunAndLeavesReadableFiles) {
  Temp_Dir dir;
  // The example on a schedule of years: far more steps than run before the interrupt arrives.
  Project p;
  Read_Report report;
  ASSERT_TRUE(Read_Project(Copy_Example(dir), dir.path().string(), p, report));
  p.Computation_Time = 20000;
  p.Period = {Period{0, 20000, 1, 0.25}};
  p.Result_File_Name = "LONG.RES";
  test::Write_Text(dir.file("LONG.PVX"), Write_Project_Text(p, 109, "PVX-Concrete.txt"));
  const pid_t pid = test::Start_Pvx({"run", dir.file("LONG.PVX")}, "/dev/null", "/dev/null");
  ASSERT_GT(pid, 0);
  // Interrupt once the run has stored something beyond its initial state.
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  int storages = 0;
  while (storages < 3 && std::chrono::steady_clock::now() < deadline) {
    Run_Index index;
    std::string message;
    if (Read_Run_Index_File(dir.file("LONG.RES"), 108, false, index, message))
      storages = Storage_Count(index);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  ASSERT_EQ(kill(pid, SIGINT), 0);
  ASSERT_EQ(test::Wait_For(pid), 2) << "pvx did not stop as the stop button stops it";
  ASSERT_GE(storages, 3) << "the run did not get going";
  // The family opens for reading and every sibling holds the storages the index counts.
  const test::Pvx_Run run = Pvx({"results", dir.file("LONG.RES"), "--var", "1", "--stored", "3"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(std::count(run.out.begin(), run.out.end(), '\n'), 1 + p.Mesh_Node.count());
  const auto index = nlohmann::json::parse(Pvx({"results", dir.file("LONG.RES"), "--json"}).out);
  EXPECT_GE(index["storages"].get<int>(), storages);
  EXPECT_LT(index["storages"].get<int>(), 20001);
}

TEST(Pvx_Convert, EveryVersionBecomesA109FileOfTheSameModelWithItsDatabaseBeside) {
  // The files name a database elsewhere: it is looked for beside the project, and copied beside
  // the converted one under its name.
  Temp_Dir dir;
  fs::create_directories(dir.path() / "b");
  test::Write_Text(dir.file("PVX2003.txt"), "the database");
  const std::string in = dir.file("OLD.PVX"), out = dir.file("b/NEW.PVX");
  for (int version = 100; version <= 109; ++version) {
    SCOPED_TRACE(version);
    test::Write_Text(in, Write_Project_Text(test::Rich_Project(), version, "X:\\old\\PVX2003.txt"));
    const test::Pvx_Run run = Pvx({"convert", in, out});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "Material Database File is saved as:  NEW.txt\n" + in + " (version " +
                           std::to_string(version) + ") saved as " + out + " (version 109)\n");
    EXPECT_EQ(test::Read_Text(dir.file("b/NEW.txt")), "the database");
    EXPECT_EQ(test::Read_Text(out).substr(0, 16), "109\r\n\"NEW.txt\"\r\n");
    Project opened, back;
    Read_Report report;
    ASSERT_TRUE(Read_Project(in, dir.path().string(), opened, report));
    ASSERT_TRUE(Read_Project(out, dir.file("b"), back, report));
    // An old result name is forgotten on opening a file older than 108.
    EXPECT_EQ(back.Result_File_Name, version < 108 ? "" : "RICH.RES");
    After_Opening(opened);
    opened.Project_File = back.Project_File;
    opened.File_Version = back.File_Version;
    opened.Material_Database_Path = back.Material_Database_Path;
    EXPECT_TRUE(back == opened);
    fs::remove(dir.file("b/NEW.txt"));
  }
  test::Write_Text(dir.file("bad.PVX"), "109\r\n\"db.txt\"\r\n\"a\"\r\n");
  for (const std::string& faulty : {dir.file("bad.PVX"), dir.file("none.PVX")}) {
    const test::Pvx_Run run = Pvx({"convert", faulty, dir.file("out.PVX")});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err.substr(0, 28 + faulty.size()), "File cannot be opened !\n  (" + faulty + ":")
        << run.err;
    EXPECT_FALSE(fs::exists(dir.file("out.PVX")));
  }
}

TEST(Pvx_Materials, ListsEveryMaterialWithItsKindAndHeatModelOrTheDatabasesFault) {
  const std::string example = test::Source_Path("examples/PVX-Concrete.txt");
  test::Pvx_Run run = Pvx({"materials", example});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  const std::pair<const char*, const char*> lines[] = {
      {"Materials:  ", "9"},
      {"Format:     ", "100"},
      {"C30/37 CEM I ", "CORE   thermal, hygral, mechanical: Maxwell Chain"},
      {"C35/45", "DANI   thermal, hygral, mechanical: Maxwell Chain"},
      {"mass concrete", "PIWI   thermal, mechanical: Burger Model"},
      {"Sliding layer", "interface type 2"},
      {"B500B", "reinforcement"}};
  for (const auto& [name, text] : lines) {
    const std::size_t at = run.out.find(name);
    ASSERT_NE(at, std::string::npos) << name;
    EXPECT_NE(run.out.substr(at, run.out.find('\n', at) - at).find(text), std::string::npos) << name;
  }
  run = Pvx({"materials", "--json", example});
  ASSERT_EQ(run.status, 0) << run.err;
  const nlohmann::json j = nlohmann::json::parse(run.out);
  EXPECT_EQ(j["Material"][0]["Heat_a"], 0.06);  // a single shown as written
  EXPECT_EQ(j["Material"][1]["Isotherm_Table_Data"]["Value"].size(), 16u);

  Temp_Dir dir;
  test::Write_Text(dir.file("bad.txt"), "1\nConcrete\n2400 2\n");
  run = Pvx({"materials", dir.file("bad.txt")});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "Problems with Dead Weight\n");
  EXPECT_EQ(run.out, "");
  run = Pvx({"materials", dir.file("none.txt")});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "Material Database (" + dir.file("none.txt") +
                         ") could not be opened. Do you want to browse for this file ?\n");
}

}  // namespace
}  // namespace pvx
