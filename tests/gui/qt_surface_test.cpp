// The QPainter bridge: what the plotting code draws must land on the pixels it names, contour
// bands must tile an element without seams, and pictures must be stored in the asked format.
#include "qt_surface.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QImage>
#include <QImageReader>

#include "results/plot.h"
#include "support/temp_dir.h"

namespace pvx {
namespace {

QColor Pixel(const QImage& image, int x, int y) {
  return image.pixelColor(x, y);
}
QColor Qt_Colour(Plot_Colour c) {
  return QColor(c.R, c.G, c.B);
}

TEST(QtSurface, FillsLinesAndBoxesLandOnTheirPixels) {
  const QImage image = Draw_To_Image(QSize(100, 80), [](Plot_Surface& s) {
    EXPECT_DOUBLE_EQ(s.Pixel_Width(), 100);
    EXPECT_DOUBLE_EQ(s.Pixel_Height(), 80);
    EXPECT_DOUBLE_EQ(s.Twips_Per_Pixel(), 15);
    const Pixel_Point triangle[3] = {{10, 10}, {50, 10}, {10, 50}};
    s.Fill_Polygon(triangle, Red);
    s.Box(60, 60, 70, 70, Blue);
    s.Line(0, 75, 99, 75, Green, Line_Style::Solid, 1);
  });
  EXPECT_EQ(Pixel(image, 20, 20), Qt_Colour(Red));
  EXPECT_EQ(Pixel(image, 45, 45), QColor(Qt::white));  // beyond the hypotenuse
  EXPECT_EQ(Pixel(image, 65, 65), Qt_Colour(Blue));
  EXPECT_EQ(Pixel(image, 50, 75), Qt_Colour(Green));
  EXPECT_EQ(Pixel(image, 50, 74), QColor(Qt::white));
}

TEST(QtSurface, ContourBandsOfALinearFieldTileTheElementWithoutSeams) {
  // A square element of 100 x 100 mm drawn at 1 pixel per mm; the value rises from 0 at the left
  // side to 10 at the right, so with the scale 0..10 each band is a column 10 pixels wide.
  Project project;
  Picture_State state;
  state.ScaleX = state.ScaleY = 1;
  state.OriginX = state.OriginY = 0;
  state.PictureHeight = 100;
  const double x[4] = {0, 100, 100, 0}, y[4] = {0, 0, 100, 100};
  const double value[4] = {0, 10, 10, 0};
  const QImage image = Draw_To_Image(
      QSize(101, 101), [&](Plot_Surface& s) { Plot_Element_Contours(s, state, x, y, value, 0, 10); });
  for (int py = 2; py <= 98; py += 4) {
    for (int px = 1; px <= 99; ++px) {
      if (px % 10 == 0) continue;  // a band limit: either neighbour's colour is right
      const int band = px / 10 + 1;
      ASSERT_EQ(Pixel(image, px, py), Qt_Colour(ScaleColours[band])) << "at " << px << "," << py;
    }
  }
}

TEST(QtSurface, TextIsDrawnBelowItsTopLeftCorner) {
  const QImage image =
      Draw_To_Image(QSize(200, 60), [](Plot_Surface& s) { s.Text(10, 20, "HHHH", 12, Black); });
  int top = 60, bottom = -1;
  for (int py = 0; py < 60; ++py)
    for (int px = 0; px < 200; ++px)
      if (qGray(image.pixel(px, py)) < 128) {
        top = std::min(top, py);
        bottom = std::max(bottom, py);
      }
  EXPECT_GE(top, 20);
  EXPECT_LE(bottom, 20 + 25);
  EXPECT_GT(bottom, top);
}

TEST(QtSurface, PicturesAreStoredByTheirExtension) {
  test::Temp_Dir dir;
  const QImage image = Draw_To_Image(QSize(40, 30), [](Plot_Surface& s) { s.Box(0, 0, 40, 30, Yellow); });
  std::string message;
  const std::string jpeg = dir.file("picture.jpg"), bitmap = dir.file("picture.bmp");
  ASSERT_TRUE(Store_Picture(image, jpeg, message)) << message;
  ASSERT_TRUE(Store_Picture(image, bitmap, message)) << message;
  EXPECT_EQ(QImageReader(QString::fromStdString(jpeg)).format(), "jpeg");
  EXPECT_EQ(QImageReader(QString::fromStdString(bitmap)).format(), "bmp");
  const QImage back(QString::fromStdString(bitmap));
  EXPECT_EQ(back.size(), QSize(40, 30));
  EXPECT_EQ(back.pixelColor(20, 15), Qt_Colour(Yellow));
  EXPECT_FALSE(QFile::exists(QString::fromStdString(jpeg + ".saving")));

  EXPECT_FALSE(Store_Picture(image, dir.file("picture.xyz"), message));
  EXPECT_NE(message.find("picture.xyz"), std::string::npos);
  EXPECT_FALSE(Store_Picture(image, dir.file("no-such-folder/picture.jpg"), message));
  EXPECT_FALSE(message.empty());
}

TEST(QtSurface, SvgPicturesHoldTheDrawing) {
  test::Temp_Dir dir;
  std::string message;
  const std::string path = dir.file("picture.svg");
  ASSERT_TRUE(Draw_To_Svg(
      path, QSize(120, 90), [](Plot_Surface& s) { s.Box(10, 10, 50, 50, Red); }, message))
      << message;
  const std::string text = test::Read_Text(path);
  EXPECT_NE(text.find("<svg"), std::string::npos);
  EXPECT_NE(text.find("#ff0000"), std::string::npos);
  EXPECT_FALSE(Draw_To_Svg(
      dir.file("no-such-folder/p.svg"), QSize(10, 10), [](Plot_Surface&) {}, message));
}

}  // namespace
}  // namespace pvx
