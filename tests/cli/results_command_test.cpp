// pvx results and pvx plot on the two-element family, whose values are known by construction.
#include <gtest/gtest.h>

#include <QColor>
#include <QImage>

#include <cmath>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "cli_support.h"
#include "results/plot.h"

namespace pvx {
namespace {

using test::Pvx;

class Two_Elements : public ::testing::Test {
 protected:
  void SetUp() override { test::Write_Two_Element_Family(dir); }
  test::Temp_Dir dir;
  std::string project = dir.file("R.PVX"), res = dir.file("R.RES");
};

TEST_F(Two_Elements, TheIndexAndTheRecordsAreTabledWhereTheirValuesLie) {
  // Without --var the index: its steps and storages with their times. Node 2 at 22 oC is 71.6 oF at
  // 3.937 in. Every node moves by (3, 4): 5 mm in all. The stresses (4, -2, 4) have their centre at 1
  // and radius sqrt(3^2 + 4^2) = 5: principal 6 and -4. Corner 2 of element 2 (node 5) holds Szz 6
  // against a tensile strength of 75: 0.08.
  const std::pair<std::vector<std::string>, std::string> cases[] = {
      {{}, "\nSteps:          2\nStep times:     1 2\nStorages:       2\nStorage times:  0 2\n"},
      {{"--var", "1", "--stored", "2", "--csv"},
       "node,x,y,value\n1,0,0,23\n2,100,0,24\n3,100,100,25\n4,0,100,26\n5,200,0,27\n6,200,100,28\n"},
      {{"--var", "1", "--imperial"}, "\n2,3.937,0,71.6\n"},
      {{"--var", "11"}, "\n6,200,100,3\n"},
      {{"--var", "20"}, "\n6,200,100,5\n"},
      {{"--var", "13", "--stored", "2"}, "element,corner,node,x,y,value\n1,1,1,0,0,6\n"},
      {{"--var", "14"}, "\n2,4,3,100,100,-4\n"},
      {{"--var", "19", "--stored", "2"}, "\n2,2,5,200,0,0.08\n"},
      {{"--var", "21"}, "entry,value\n1,-1.5\n"},
  };
  for (const auto& [options, rows] : cases) {
    std::vector<std::string> arguments{"results", res, "--project", project};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const test::Pvx_Run run = Pvx(arguments);
    EXPECT_EQ(run.status, 0) << ::testing::PrintToString(options) << run.err;
    EXPECT_NE(run.out.find(rows), std::string::npos) << ::testing::PrintToString(options) << "\n" << run.out;
  }
  // The extremes in the index, here in degrees Fahrenheit, and where the maximum was stored.
  const auto index = nlohmann::json::parse(Pvx({"results", res, "--json", "--imperial"}).out);
  ASSERT_EQ(index["extremes"].size(), 40u);
  EXPECT_NEAR(index["extremes"][0]["period_max"].get<double>(), 28 * 1.8 + 32, 1e-4);
  EXPECT_EQ(index["extremes"][0]["stored_index_of_max"], 2);
  // The points of element 1 lie at 50 (1 -+ 1/sqrt 3), those of element 2 100 further; point 3 of
  // element 2 at (150 + 50/sqrt 3, 50 + 50/sqrt 3). Without --project the project beside the
  // family that names it gives the mesh.
  const test::Pvx_Run run = Pvx({"results", res, "--var", "2", "--stored", "2", "--json"});
  ASSERT_EQ(run.status, 0) << run.err;
  const auto j = nlohmann::json::parse(run.out);
  ASSERT_EQ(j["rows"].size(), 8u);
  const double g = 1 / std::sqrt(3.0);
  EXPECT_NEAR(j["rows"][0][2].get<double>(), 50 * (1 - g), 1e-9);
  EXPECT_NEAR(j["rows"][0][3].get<double>(), 50 * (1 - g), 1e-9);
  EXPECT_NEAR(j["rows"][6][2].get<double>(), 150 + 50 * g, 1e-9);
  EXPECT_NEAR(j["rows"][6][3].get<double>(), 50 + 50 * g, 1e-9);
  EXPECT_EQ(j["rows"][6][4], 75.0);
  EXPECT_EQ(j["rows"][1][4], 25.0);
  EXPECT_EQ(j["maximum"], 75.0);
}

// The pixel of model point (x, y) in a picture of w x h pixels that shows the mesh 0..200 x 0..100
// with a border of 2 % of its larger side.
QPoint Pixel_Of(const std::string& project, double x, double y, int w, int h) {
  Project p;
  Read_Report report;
  EXPECT_TRUE(Read_Project(project, "", p, report));
  Picture_State s;
  s.Zoomed = true;
  s.ZoomX1 = -4, s.ZoomX2 = 204, s.ZoomY1 = -4, s.ZoomY2 = 104;
  Compute_Scale(s, p, w * 15.0, h * 15.0, 15);
  return {World_To_X(s, x), World_To_Y(s, y)};
}

TEST_F(Two_Elements, PlotDrawsEachElementInTheBandOfItsValue) {
  // On the scale 0..100 in ten bands, 25 lies in band 3, 75 in band 8, and 0 in band 1.
  const std::string png = dir.file("m.png");
  const QPoint left = Pixel_Of(project, 50, 50, 500, 320), right = Pixel_Of(project, 150, 50, 500, 320);
  const std::tuple<std::vector<std::string>, QColor, QColor> cases[] = {
      {{"--stored", "2"}, QColor(0, 128, 255), QColor(255, 255, 0)},
      {{"--at-max"}, QColor(0, 128, 255), QColor(255, 255, 0)},
      {{"--stored", "1"}, QColor(0, 0, 128), QColor(0, 0, 128)},
  };
  for (const auto& [options, left_colour, right_colour] : cases) {
    std::vector<std::string> arguments{"plot", res, "--var", "2", "--png", png, "--size", "500x320"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const test::Pvx_Run run = Pvx(arguments);
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out.rfind(png + " (500x320): Maturity distribution at ", 0), 0u) << run.out;
    const QImage image(QString::fromStdString(png));
    ASSERT_EQ(image.size(), QSize(500, 320));
    EXPECT_EQ(image.pixelColor(left), left_colour) << options[0];
    EXPECT_EQ(image.pixelColor(right), right_colour) << options[0];
  }
  const std::string svg = dir.file("m.svg");
  const test::Pvx_Run run =
      Pvx({"plot", res, "--var", "2", "--stored", "2", "--svg", svg, "--project", project});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_NE(test::Read_Text(svg).find("<svg"), std::string::npos);
}

TEST_F(Two_Elements, RequestsOutsideTheResultsAreRefusedWithTheirMessages) {
  const std::string png = dir.file("x.png"), none = dir.file("NONE.RES");
  const std::string corrupted = "Results (" + res +
                                ") not available or corrupted! The program returns to the "
                                "design mode.\n";
  const std::pair<std::vector<std::string>, std::string> cases[] = {
      {{"results", none}, "Results (" + none + ") not available\n"},
      {{"results", res, "--var", "1", "--stored", "3"}, "Stored step 3 is not in the results (1 to 2)\n"},
      {{"results", res, "--var", "7"}, "Result variable 7 has no record in the result files\n"},
      {{"results", res, "--var", "30"}, "Result variable 30 ("},  // no interfaces
      {{"results", res, "--var", "1", "--csv", "--json"}, "--csv and --json exclude each other\n"},
      {{"plot", none, "--var", "2", "--stored", "1", "--png", png}, "Results (" + none + ") not available\n"},
      {{"plot", res, "--var", "7", "--stored", "1", "--png", png}, "Result variable 7 has no picture"},
      {{"plot", res, "--var", "2", "--stored", "3", "--png", png},
       "Stored step 3 is not in the results (1 to 2)\n"},
      {{"plot", res, "--var", "2", "--stored", "0", "--png", png},
       "Stored step 0 is not in the results (1 to 2)\n"},
      {{"plot", res, "--var", "2", "--stored", "1", "--png", dir.file("x.gif")},
       "Unknown picture extension \".gif\""},
      {{"plot", res, "--var", "2", "--stored", "1", "--svg", png}, "Unknown picture extension \".png\""},
      {{"plot", res, "--var", "2", "--stored", "1"},
       "Give one picture file: --png OUT.png or --svg OUT.svg\n"},
      {{"plot", res, "--var", "2", "--stored", "1", "--png", png, "--size", "12"}, "Picture size \"12\""},
  };
  for (const auto& [arguments, message] : cases) {
    const test::Pvx_Run run = Pvx(arguments);
    EXPECT_EQ(run.status, 1) << arguments[2];
    EXPECT_EQ(run.err.substr(0, message.size()), message) << arguments[2];
  }
  EXPECT_FALSE(std::filesystem::exists(png));
  // Without its project beside it a family has no mesh; a cut family is corrupted.
  std::filesystem::rename(project, project + ".away");
  EXPECT_NE(Pvx({"results", res, "--var", "1"}).err.find("give --project"), std::string::npos);
  std::filesystem::rename(project + ".away", project);
  test::Write_Text(res, test::Read_Text(res).substr(0, 40));
  EXPECT_EQ(Pvx({"results", res}).err, corrupted);
  EXPECT_EQ(Pvx({"results", res, "--var", "1", "--project", project}).err, corrupted);
}

}  // namespace
}  // namespace pvx
