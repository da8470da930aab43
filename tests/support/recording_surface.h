// A drawing surface that keeps every call, for tests of the plotting logic.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "results/plot_surface.h"

namespace pvx::testing {

struct Recorded_Line {
  double X1, Y1, X2, Y2;
  Plot_Colour Colour;
  Line_Style Style;
  int Width;
};
struct Recorded_Box {
  double X1, Y1, X2, Y2;
  Plot_Colour Colour;
};
struct Recorded_Circle {
  double X, Y, Radius;
  Plot_Colour Colour;
};
struct Recorded_Text {
  double X, Y;
  std::string Text;
  int Size;
  Plot_Colour Colour;
};
struct Recorded_Fill {
  Pixel_Point Vertex[3];
  Plot_Colour Colour;
};

class Recording_Surface : public Plot_Surface {
 public:
  Recording_Surface(double width, double height, double twips_per_pixel = 15)
      : width_(width), height_(height), twips_(twips_per_pixel) {}

  double Pixel_Width() const override { return width_; }
  double Pixel_Height() const override { return height_; }
  double Twips_Per_Pixel() const override { return twips_; }
  void Clear() override {
    ++Clears;
    Order += 'X';
  }
  void Refresh() override { ++Refreshes; }
  void Line(double x1, double y1, double x2, double y2, Plot_Colour colour, Line_Style style,
            int width) override {
    Lines.push_back({x1, y1, x2, y2, colour, style, width});
    Order += 'L';
  }
  void Box(double x1, double y1, double x2, double y2, Plot_Colour colour) override {
    Boxes.push_back({x1, y1, x2, y2, colour});
    Order += 'B';
  }
  void Circle(double x, double y, double radius, Plot_Colour colour) override {
    Circles.push_back({x, y, radius, colour});
    Order += 'C';
  }
  void Text(double x, double y, std::string_view text, int size, Plot_Colour colour) override {
    Texts.push_back({x, y, std::string(text), size, colour});
    Order += 'T';
  }
  void Fill_Polygon(const Pixel_Point (&vertex)[3], Plot_Colour colour) override {
    Fills.push_back({{vertex[0], vertex[1], vertex[2]}, colour});
    Order += 'F';
  }
  void Set_Wait_Pointer(bool waiting) override { Waiting = waiting; }

  int Clears = 0, Refreshes = 0;
  // One letter per call in call order: X clear, L line, B box, C circle, T text, F fill.
  std::string Order;
  bool Waiting = false;
  std::vector<Recorded_Line> Lines;
  std::vector<Recorded_Box> Boxes;
  std::vector<Recorded_Circle> Circles;
  std::vector<Recorded_Text> Texts;
  std::vector<Recorded_Fill> Fills;

 private:
  double width_, height_, twips_;
};

}  // namespace pvx::testing
