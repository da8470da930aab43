// pvx materials on the example database and on faulty ones.
#include <gtest/gtest.h>

#include <iostream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include "commands.h"
#include "support/temp_dir.h"

namespace pvx {
namespace {

struct Command_Run {
  int status = -1;
  std::string out, err;
};

// Runs `pvx <arguments>` in this process and captures what it prints.
Command_Run Pvx(const std::string& arguments) {
  Command_Run run;
  CLI::App app;
  app.require_subcommand(1);
  cli::Add_Material_Commands(app, run.status);
  std::ostringstream out, err;
  auto* old_out = std::cout.rdbuf(out.rdbuf());
  auto* old_err = std::cerr.rdbuf(err.rdbuf());
  app.parse(arguments, false);
  std::cout.rdbuf(old_out);
  std::cerr.rdbuf(old_err);
  run.out = out.str();
  run.err = err.str();
  return run;
}

const std::string Example = test::Source_Path("examples/PVX-Concrete.txt");

TEST(Materials_Command, ListsEveryMaterialWithItsKindAndHeatModel) {
  const Command_Run run = Pvx("materials " + Example);
  EXPECT_EQ(run.status, cli::Exit_Ok);
  EXPECT_EQ(run.err, "");
  EXPECT_NE(run.out.find("Materials:  9\n"), std::string::npos);
  EXPECT_NE(run.out.find("Format:     100\n"), std::string::npos);
  auto line_of = [&](const std::string& name) {
    const std::size_t at = run.out.find(name);
    EXPECT_NE(at, std::string::npos) << name;
    return run.out.substr(at, run.out.find('\n', at) - at);
  };
  EXPECT_NE(line_of("C30/37 CEM I ").find("CORE   thermal, hygral, mechanical: Linear Elastic"),
            std::string::npos);
  EXPECT_NE(line_of("C35/45").find("DANI   thermal, hygral, mechanical: Maxwell Chain"), std::string::npos);
  EXPECT_NE(line_of("mass concrete").find("PIWI   thermal, mechanical: Burger Model"), std::string::npos);
  EXPECT_NE(line_of("Sliding layer").find("interface type 2"), std::string::npos);
  EXPECT_NE(line_of("B500B").find("reinforcement"), std::string::npos);
}

TEST(Materials_Command, JsonHoldsTheFieldsUnderTheirNames) {
  const Command_Run run = Pvx("materials --json " + Example);
  ASSERT_EQ(run.status, cli::Exit_Ok) << run.err;
  const nlohmann::json j = nlohmann::json::parse(run.out);
  EXPECT_EQ(j["Material_Count"], 9);
  EXPECT_EQ(j["Material_Color"][0], 200 + 200 * 256 + 200 * 65536);
  const auto& c = j["Material"][0];
  EXPECT_EQ(c["Name"], "C30/37 CEM I");
  EXPECT_EQ(c["Heat_a"], 0.06);  // a single shown as written
  EXPECT_EQ(c["Heat_H"], 132000);
  EXPECT_EQ(c["Air"], 1.5);
  EXPECT_EQ(c["E"]["Value"].size(), 6u);
  EXPECT_EQ(c["Softening_Law"]["s1"], 0.3);
  const auto& slag = j["Material"][1];
  EXPECT_EQ(slag["Chain_Coefficient"].size(), 5u);
  EXPECT_EQ(slag["Isotherm_Table_Data"]["Value"].size(), 16u);
  EXPECT_EQ(j["Material"][7]["Interface_Data"].size(), 101u);
  EXPECT_EQ(j["Material"][8]["Steel_Dilatation"]["Value"][0], 1.2e-5);
}

TEST(Materials_Command, AFaultyDatabaseGivesTheProgramsMessage) {
  test::Temp_Dir dir;
  test::Write_Text(dir.file("bad.txt"), "1\nConcrete\n2400 2\n");
  Command_Run run = Pvx("materials " + dir.file("bad.txt"));
  EXPECT_EQ(run.status, cli::Exit_Failure);
  EXPECT_EQ(run.err, "Problems with Dead Weight\n");
  EXPECT_EQ(run.out, "");
  run = Pvx("materials " + dir.file("none.txt"));
  EXPECT_EQ(run.status, cli::Exit_Failure);
  EXPECT_EQ(run.err, "Material Database (" + dir.file("none.txt") +
                         ") could not be opened. Do you want to browse for this file ?\n");
}

}  // namespace
}  // namespace pvx
