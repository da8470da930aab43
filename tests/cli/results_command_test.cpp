// pvx results on a family written for a small project of two elements.
#include <gtest/gtest.h>

#include <filesystem>

#include <cmath>
#include <iostream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "app/project_file.h"
#include "commands.h"
#include "results/result_files.h"
#include "support/temp_dir.h"

namespace pvx {
namespace {

using test::Temp_Dir;

// Runs `pvx results ...` in-process; out and err receive what the command prints.
int Pvx_Results(std::vector<std::string> args, std::string& out, std::string& err) {
  CLI::App app;
  int status = -1;
  cli::Add_Results_Commands(app, status);
  args.insert(args.begin(), {"pvx", "results"});
  std::vector<char*> argv;
  for (std::string& a : args)
    argv.push_back(a.data());
  std::ostringstream o, e;
  auto* old_out = std::cout.rdbuf(o.rdbuf());
  auto* old_err = std::cerr.rdbuf(e.rdbuf());
  try {
    app.parse(static_cast<int>(argv.size()), argv.data());
  } catch (const CLI::ParseError& error) {
    status = app.exit(error);
  }
  std::cout.rdbuf(old_out);
  std::cerr.rdbuf(old_err);
  out = o.str();
  err = e.str();
  return status;
}

class Results_Command : public ::testing::Test {
 protected:
  // Nodes 1..6 at (0,0) (100,0) (100,100) (0,100) (200,0) (200,100); elements 1-2-3-4 and 2-5-6-3.
  void SetUp() override {
    Project p;
    New_Project(p);
    p.Mechanical_Included = True_Flag;
    p.Result_File_Name = "R.RES";
    for (auto [x, y] : {std::pair{0, 0}, {100, 0}, {100, 100}, {0, 100}, {200, 0}, {200, 100}})
      p.Mesh_Node.add({double(x), double(y)});
    Mesh_Element e;
    e.Material = "C";
    e.Corner = {{1, 2, 3, 4}};
    p.Mesh_Element.add(e);
    e.Corner = {{2, 5, 6, 3}};
    p.Mesh_Element.add(e);
    p.Mesh_Support.resize(1);
    test::Write_Text(project, Write_Project_Text(p, 109, "db.txt"));

    Result_Family family;
    family.Layout = Result_Layout_Of(p, true);
    std::string message;
    ASSERT_TRUE(Set_Output_Names(family, {"R.RES", "R.RES"}, dir.path().string(), message));
    ASSERT_TRUE(Open_Result_Files(family, 1, 1, 109, message));
    Run_Index index;
    index.Step_Time = {1, 2};
    for (int step : {0, 2}) {
      std::vector<double> nodes, points(8), disp(12), stress(32), reaction{-1.5};
      for (int i = 1; i <= 6; ++i)
        nodes.push_back(20 + i + step);
      for (int i = 0; i < 8; ++i)
        points[static_cast<std::size_t>(i)] = 0.5 * i + step;
      for (int i = 0; i < 12; ++i)
        disp[static_cast<std::size_t>(i)] = i % 2 == 0 ? 3 : 4;
      for (int k = 0; k < 8; ++k) {  // Sxx, Syy, Sxy, Szz = 4, 0, 0, k
        stress[static_cast<std::size_t>(4 * k)] = 4;
        stress[static_cast<std::size_t>(4 * k + 3)] = k;
      }
      Field_Values f;
      f.Temperature = f.Potential = nodes;
      f.Maturity = f.Hydration = f.C_Maturity = f.Moisture_Content = f.Tensile_Strength =
          f.Compressive_Strength = f.Crack_Opening = points;
      f.Displacement = disp;
      f.Corner_Stress = stress;
      f.Reaction = reaction;
      ASSERT_TRUE(Record_Storage(family, 1, f, step, index, message)) << message;
    }
    index.Extremes[1] = {21, 28, 21, 28, 1, 2};
    ASSERT_TRUE(Write_Run_Index(family, 1, index, message));
    ASSERT_TRUE(Close_Result_Files(family, 1, message));
  }

  Temp_Dir dir;
  std::string project = dir.file("R.PVX");
  std::string res = dir.file("R.RES");
  std::string out, err;
};

TEST_F(Results_Command, PrintsTheIndex) {
  ASSERT_EQ(Pvx_Results({res}, out, err), 0) << err;
  EXPECT_NE(out.find("Steps:          2\n"), std::string::npos) << out;
  EXPECT_NE(out.find("Storages:       2\n"), std::string::npos);
  EXPECT_NE(out.find("Storage times:  0 2\n"), std::string::npos);
  EXPECT_NE(out.find("Temperature"), std::string::npos);

  ASSERT_EQ(Pvx_Results({res, "--json", "--project", project}, out, err), 0) << err;
  const auto j = nlohmann::json::parse(out);
  EXPECT_EQ(j["storages"], 2);
  EXPECT_EQ(j["step_times"][1], 2.0);
  ASSERT_EQ(j["extremes"].size(), 40u);
  EXPECT_EQ(j["extremes"][0]["period_max"], 28.0);
  EXPECT_EQ(j["extremes"][0]["stored_index_of_max"], 2);
}

TEST_F(Results_Command, NodeRecordAsCsvWithCoordinates) {
  ASSERT_EQ(Pvx_Results({res, "--var", "1", "--stored", "2", "--csv", "--project", project}, out, err), 0)
      << err;
  EXPECT_EQ(out,
            "node,x,y,value\n1,0,0,23\n2,100,0,24\n3,100,100,25\n4,0,100,26\n5,200,0,27\n6,200,100,28\n");
  ASSERT_EQ(Pvx_Results({res, "--var", "20", "--project", project}, out, err), 0) << err;
  EXPECT_NE(out.find("\n6,200,100,5\n"), std::string::npos) << out;  // |(3, 4)| = 5
}

TEST_F(Results_Command, PointAndCornerRecords) {
  ASSERT_EQ(Pvx_Results({res, "--var", "2", "--stored", "1", "--project", project, "--json"}, out, err), 0)
      << err;
  const auto j = nlohmann::json::parse(out);
  ASSERT_EQ(j["rows"].size(), 8u);
  // Point 1 of element 1 lies at 50 (1 - 1/sqrt 3) in both directions; point 3 of element 2 at
  // 150 + 50/sqrt 3, 50 + 50/sqrt 3.
  const double g = 1 / std::sqrt(3.0);
  EXPECT_NEAR(j["rows"][0][2].get<double>(), 50 * (1 - g), 1e-9);
  EXPECT_NEAR(j["rows"][0][3].get<double>(), 50 * (1 - g), 1e-9);
  EXPECT_NEAR(j["rows"][6][2].get<double>(), 150 + 50 * g, 1e-9);
  EXPECT_NEAR(j["rows"][6][3].get<double>(), 50 + 50 * g, 1e-9);
  EXPECT_EQ(j["rows"][6][4], 3.0);
  EXPECT_EQ(j["maximum"], 3.5);

  // Major stress of (4, 0, 0) is 4 at every corner; Szz / ft at corner 2 of element 2: 5 / 2.5.
  ASSERT_EQ(Pvx_Results({res, "--var", "13", "--stored", "2", "--project", project}, out, err), 0) << err;
  EXPECT_NE(out.find("element,corner,node,x,y,value\n1,1,1,0,0,4\n"), std::string::npos) << out;
  ASSERT_EQ(Pvx_Results({res, "--var", "19", "--stored", "1", "--project", project}, out, err), 0) << err;
  EXPECT_NE(out.find("\n2,2,5,200,0,2\n"), std::string::npos) << out;
}

TEST_F(Results_Command, ImperialDisplayOnRequest) {
  ASSERT_EQ(Pvx_Results({res, "--var", "1", "--project", project, "--imperial"}, out, err), 0) << err;
  // 21 oC = 69.8 oF at node 1; 100 mm = 3.937 in.
  EXPECT_NE(out.find("\n2,3.937,0,71.6"), std::string::npos) << out;
  ASSERT_EQ(Pvx_Results({res, "--json", "--imperial"}, out, err), 0) << err;
  EXPECT_NEAR(nlohmann::json::parse(out)["extremes"][0]["period_max"].get<double>(), 28 * 1.8 + 32, 1e-9);
}

TEST_F(Results_Command, FailuresGiveTheProgramsMessage) {
  EXPECT_EQ(Pvx_Results({dir.file("NONE.RES")}, out, err), 1);
  EXPECT_EQ(err, "Results (" + dir.file("NONE.RES") + ") not available\n");
  test::Write_Text(res, test::Read_Text(res).substr(0, 40));
  EXPECT_EQ(Pvx_Results({res}, out, err), 1);
  EXPECT_EQ(err,
            "Results (" + res + ") not available or corrupted! The program returns to the design mode.\n");
  EXPECT_EQ(Pvx_Results({res, "--var", "1", "--project", project}, out, err), 1);
  EXPECT_EQ(err,
            "Results (" + res + ") not available or corrupted! The program returns to the design mode.\n");
}

TEST_F(Results_Command, RequestsOutsideTheResultsAreRefused) {
  // Without --project the mesh comes from the project beside the family that names it.
  ASSERT_EQ(Pvx_Results({res, "--var", "1", "--project", project}, out, err), 0);
  const std::string with_project = out;
  EXPECT_EQ(Pvx_Results({res, "--var", "1"}, out, err), 0);
  EXPECT_EQ(out, with_project);
  std::filesystem::rename(project, project + ".away");
  EXPECT_EQ(Pvx_Results({res, "--var", "1"}, out, err), 1);  // no project, no mesh
  EXPECT_NE(err.find("give --project"), std::string::npos);
  std::filesystem::rename(project + ".away", project);
  EXPECT_EQ(Pvx_Results({res, "--var", "1", "--stored", "3", "--project", project}, out, err), 1);
  EXPECT_NE(err.find("1 to 2"), std::string::npos);
  EXPECT_EQ(Pvx_Results({res, "--var", "7", "--project", project}, out, err),
            1);  // the circuit's flow has no record
  EXPECT_EQ(Pvx_Results({res, "--var", "30", "--project", project}, out, err), 1);  // no interfaces
  EXPECT_EQ(Pvx_Results({res, "--var", "1", "--csv", "--json", "--project", project}, out, err), 1);
}

}  // namespace
}  // namespace pvx
