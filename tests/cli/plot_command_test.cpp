// pvx plot on a family written for a project of two square elements, maturity 25 in the left one
// and 75 in the right one, on the scale 0..100.
#include <gtest/gtest.h>

#include <QColor>
#include <QImage>

#include <iostream>
#include <sstream>

#include "app/project_file.h"
#include "commands.h"
#include "results/plot.h"
#include "results/result_files.h"
#include "support/temp_dir.h"

namespace pvx {
namespace {

using test::Temp_Dir;

int Pvx_Plot(std::vector<std::string> args, std::string& out, std::string& err) {
  CLI::App app;
  int status = -1;
  cli::Add_Plot_Commands(app, status);
  args.insert(args.begin(), {"pvx", "plot"});
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

class Plot_Command : public ::testing::Test {
 protected:
  void SetUp() override {
    New_Project(p);
    p.Result_File_Name = "P.RES";
    for (auto [x, y] : {std::pair{0, 0}, {100, 0}, {100, 100}, {0, 100}, {200, 0}, {200, 100}})
      p.Mesh_Node.add({double(x), double(y)});
    Mesh_Element e;
    e.Material = "C";
    e.Corner = {{1, 2, 3, 4}};
    p.Mesh_Element.add(e);
    e.Corner = {{2, 5, 6, 3}};
    p.Mesh_Element.add(e);
    test::Write_Text(project, Write_Project_Text(p, 108, "db.txt"));

    Result_Family family;
    family.Layout = Result_Layout_Of(p, false);
    std::string message;
    ASSERT_TRUE(Set_Output_Names(family, {"P.RES", "P.RES"}, dir.path().string(), message));
    ASSERT_TRUE(Open_Result_Files(family, 1, 1, 108, message));
    Run_Index index;
    index.Step_Time = {1};
    for (int step : {0, 1}) {
      std::vector<double> nodes(6, 20.0), points{25, 25, 25, 25, 75, 75, 75, 75};
      if (step == 0) points.assign(8, 0.0);
      Field_Values f;
      f.Temperature = f.Potential = nodes;
      f.Maturity = f.Hydration = f.C_Maturity = f.Moisture_Content = f.Tensile_Strength =
          f.Compressive_Strength = points;
      ASSERT_TRUE(Record_Storage(family, 1, f, step, index, message)) << message;
    }
    index.Extremes[2] = {0, 75, 0, 100, 1, 2};
    ASSERT_TRUE(Write_Run_Index(family, 1, index, message));
    ASSERT_TRUE(Close_Result_Files(family, 1, message));
  }

  // The pixel of model point (x, y) in a picture of w x h pixels that shows the mesh 0..200 x
  // 0..100 with a border of 2 % of its larger side.
  QPoint Pixel_Of(double x, double y, int w, int h) {
    Picture_State s;
    s.Zoomed = true;
    s.ZoomX1 = -4;
    s.ZoomX2 = 204;
    s.ZoomY1 = -4;
    s.ZoomY2 = 104;
    Compute_Scale(s, p, w * 15.0, h * 15.0, 15);
    return {World_To_X(s, x), World_To_Y(s, y)};
  }

  Temp_Dir dir;
  Project p;
  std::string project = dir.file("P.PVX");
  std::string res = dir.file("P.RES");
  std::string out, err;
};

TEST_F(Plot_Command, PngHasTheSizeAndTheBandColoursOfTheValues) {
  const std::string png = dir.file("m.png");
  ASSERT_EQ(Pvx_Plot({res, "--var", "2", "--stored", "2", "--png", png, "--size", "500x320"}, out, err), 0)
      << err;
  EXPECT_NE(out.find("Maturity distribution at       1.000000 hours"), std::string::npos) << out;
  QImage image(QString::fromStdString(png));
  ASSERT_FALSE(image.isNull());
  EXPECT_EQ(image.width(), 500);
  EXPECT_EQ(image.height(), 320);
  // 25 on 0..100 lies in band 3 (20..30), 75 in band 8 (70..80).
  const QColor left = image.pixelColor(Pixel_Of(50, 50, 500, 320));
  const QColor right = image.pixelColor(Pixel_Of(150, 50, 500, 320));
  EXPECT_EQ(left, QColor(0, 128, 255));
  EXPECT_EQ(right, QColor(255, 255, 0));
  // Stored step 1 is all 0: band 1 everywhere.
  ASSERT_EQ(Pvx_Plot({res, "--var", "2", "--stored", "1", "--png", png, "--size", "500x320"}, out, err), 0);
  EXPECT_EQ(QImage(QString::fromStdString(png)).pixelColor(Pixel_Of(150, 50, 500, 320)), QColor(0, 0, 128));
}

TEST_F(Plot_Command, SvgIsWritten) {
  const std::string svg = dir.file("m.svg");
  ASSERT_EQ(Pvx_Plot({res, "--var", "2", "--stored", "2", "--svg", svg, "--project", project}, out, err), 0)
      << err;
  const std::string text = test::Read_Text(svg);
  EXPECT_NE(text.find("<svg"), std::string::npos);
  EXPECT_NE(text.find("Maturity distribution at"), std::string::npos);
}

TEST_F(Plot_Command, BadArgumentsGiveTheirMessagesAndStatusOne) {
  const std::string png = dir.file("x.png");
  EXPECT_EQ(Pvx_Plot({dir.file("NONE.RES"), "--var", "2", "--stored", "1", "--png", png}, out, err), 1);
  EXPECT_EQ(err, "Results (" + dir.file("NONE.RES") + ") not available\n");
  EXPECT_EQ(Pvx_Plot({res, "--var", "7", "--stored", "1", "--png", png}, out, err), 1);
  EXPECT_NE(err.find("Result variable 7 has no picture"), std::string::npos) << err;
  EXPECT_EQ(Pvx_Plot({res, "--var", "13", "--stored", "1", "--png", png}, out, err), 1);
  EXPECT_NE(err.find("is not in the results of this project"), std::string::npos) << err;
  EXPECT_EQ(Pvx_Plot({res, "--var", "2", "--stored", "3", "--png", png}, out, err), 1);
  EXPECT_EQ(err, "Stored step 3 is not in the results (1 to 2)\n");
  EXPECT_EQ(Pvx_Plot({res, "--var", "2", "--stored", "0", "--png", png}, out, err), 1);
  EXPECT_EQ(Pvx_Plot({res, "--var", "2", "--stored", "1", "--png", dir.file("x.gif")}, out, err), 1);
  EXPECT_NE(err.find("Unknown picture extension \".gif\""), std::string::npos) << err;
  EXPECT_EQ(Pvx_Plot({res, "--var", "2", "--stored", "1", "--svg", png}, out, err), 1);
  EXPECT_EQ(Pvx_Plot({res, "--var", "2", "--stored", "1"}, out, err), 1);
  EXPECT_EQ(Pvx_Plot({res, "--var", "2", "--stored", "1", "--png", png, "--size", "12"}, out, err), 1);
  EXPECT_NE(err.find("Picture size \"12\""), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(png));
}

// A mechanical family of the same mesh: Szz 1 in the left element and 3 in the right one against a
// tensile strength of 4, so the ratio Szz/ft is 0.25 and 0.75; Ux 2 mm at every node.
TEST_F(Plot_Command, MechanicalRatioAndDeformedMesh) {
  p.Mechanical_Included = True_Flag;
  p.Result_File_Name = "M.RES";
  const std::string mech_project = dir.file("M.PVX");
  test::Write_Text(mech_project, Write_Project_Text(p, 108, "db.txt"));
  Result_Family family;
  family.Layout = Result_Layout_Of(p, true);
  std::string message;
  ASSERT_TRUE(Set_Output_Names(family, {"M.RES", "M.RES"}, dir.path().string(), message));
  ASSERT_TRUE(Open_Result_Files(family, 1, 1, 108, message));
  Run_Index index;
  std::vector<double> nodes(6, 20.0), strength(8, 4.0), zero(8, 0.0), disp(12, 0.0), stress(32, 0.0);
  for (int n = 0; n < 6; ++n)
    disp[static_cast<std::size_t>(2 * n)] = 2;
  for (int k = 0; k < 8; ++k)
    stress[static_cast<std::size_t>(4 * k + 3)] = k < 4 ? 1 : 3;
  Field_Values f;
  f.Temperature = f.Potential = nodes;
  f.Maturity = f.Hydration = f.C_Maturity = f.Moisture_Content = f.Compressive_Strength = f.Crack_Opening =
      zero;
  f.Tensile_Strength = strength;
  f.Displacement = disp;
  f.Corner_Stress = stress;
  ASSERT_TRUE(Record_Storage(family, 1, f, 0, index, message)) << message;
  index.Extremes[19] = {0, 0.75, 0, 1, 1, 1};
  index.Extremes[20] = {0, 2, 0, 2, 1, 1};
  ASSERT_TRUE(Write_Run_Index(family, 1, index, message));
  ASSERT_TRUE(Close_Result_Files(family, 1, message));

  const std::string png = dir.file("r.png");
  const std::string res_m = dir.file("M.RES");
  ASSERT_EQ(Pvx_Plot({res_m, "--var", "19", "--stored", "1", "--png", png, "--size", "500x320"}, out, err), 0)
      << err;
  QImage ratio(QString::fromStdString(png));
  EXPECT_EQ(ratio.pixelColor(Pixel_Of(50, 50, 500, 320)), QColor(0, 128, 255));   // 0.25: band 3
  EXPECT_EQ(ratio.pixelColor(Pixel_Of(150, 50, 500, 320)), QColor(255, 255, 0));  // 0.75: band 8

  // The deformed mesh: the scale of 2 mm shows as 33.333 pixels, and Ux is 2 mm everywhere, so the
  // left side of element 1 is drawn 33.333 pixels right of its place; nothing is left there.
  ASSERT_EQ(Pvx_Plot({res_m, "--var", "20", "--stored", "1", "--png", png, "--size", "500x320"}, out, err), 0)
      << err;
  EXPECT_NE(out.find("Deformations at        0.0 hours"), std::string::npos) << out;
  QImage deformed(QString::fromStdString(png));
  const QPoint corner = Pixel_Of(0, 50, 500, 320);
  EXPECT_EQ(deformed.pixelColor(corner + QPoint(33, 0)), QColor(255, 0, 0));
  EXPECT_EQ(deformed.pixelColor(corner), QColor(255, 255, 255));
}

}  // namespace
}  // namespace pvx
