// The one bridge from the program's drawing surface to Qt: every picture of the desktop program
// and every picture that the batch tool writes is drawn by the same plotting code through this
// class onto a QPainter. Only Qt GUI is used here (no widgets), so the batch tool can draw onto an
// image or an SVG generator without a window or a display.
#pragma once

#include <functional>
#include <string>

#include <QPainter>
#include <QSize>

#include "results/plot_surface.h"

class QImage;

namespace pvx {

class Qt_Surface : public Plot_Surface {
 public:
  // `painter` must be active on a device of `size` pixels and outlive the surface. `dots_per_inch`
  // gives the twips per pixel (1440 / dpi).
  Qt_Surface(QPainter& painter, QSize size, double dots_per_inch = 96);

  double Pixel_Width() const override { return size_.width(); }
  double Pixel_Height() const override { return size_.height(); }
  double Twips_Per_Pixel() const override { return 1440.0 / dpi_; }

  void Clear() override;
  void Refresh() override;
  void Line(double x1, double y1, double x2, double y2, Plot_Colour colour, Line_Style style,
            int width) override;
  void Box(double x1, double y1, double x2, double y2, Plot_Colour colour) override;
  void Circle(double x, double y, double radius, Plot_Colour colour) override;
  void Text(double x, double y, std::string_view text, int size, Plot_Colour colour) override;
  void Fill_Polygon(const Pixel_Point (&vertex)[3], Plot_Colour colour) override;
  void Set_Wait_Pointer(bool waiting) override;

  // What Refresh and Set_Wait_Pointer do: a window repaints and pumps its events, a picture
  // on an image has nothing to show.
  std::function<void()> On_Refresh;
  std::function<void(bool)> On_Wait_Pointer;

 private:
  QPainter& painter_;
  QSize size_;
  double dpi_;
};

// Stores a picture by the extension of `path`: ".jpg"/".jpeg" as JPEG of quality 90, ".bmp" as a
// bitmap, ".png" as PNG. Returns false with a message for an unknown extension or a failed write.
// The file is written beside the target first and renamed, so a failed write leaves an older
// picture of the same name as it was.
bool Store_Picture(const QImage& image, const std::string& path, std::string& message);

// Draws `draw` onto a white image of `size` pixels.
QImage Draw_To_Image(QSize size, const std::function<void(Plot_Surface&)>& draw);

// Draws `draw` into an SVG file of `size` pixels; false with a message when it cannot be written.
bool Draw_To_Svg(const std::string& path, QSize size, const std::function<void(Plot_Surface&)>& draw,
                 std::string& message);

}  // namespace pvx
