// The drawing surface under every picture of the program: the design panel, the mesh panel and the
// result viewers.
//
// The plotting logic draws only through this interface, in the surface's pixel coordinates
// (x to the right, y downwards, (0, 0) the top-left corner). A windowing toolkit supplies one
// implementation per picture area; the tests record the calls; the benchmarks discard them.
//
// Pointer events (press, move, release in surface pixels) travel the other way: the toolkit's
// picture area calls the panel logic with them, so they are not operations of the surface.
#pragma once

#include <cstdint>
#include <string_view>

namespace pvx {

struct Plot_Colour {
  std::uint8_t R = 0, G = 0, B = 0;
  bool operator==(const Plot_Colour&) const = default;
};

enum class Line_Style { Solid, Dashed };

// A vertex of a filled polygon, on whole pixels: a fill goes by pixels, so neighbouring
// triangles that share rounded vertices share their edges without gaps.
struct Pixel_Point {
  std::int32_t X = 0, Y = 0;
  bool operator==(const Pixel_Point&) const = default;
};

class Plot_Surface {
 public:
  virtual ~Plot_Surface() = default;

  // The drawable size in pixels (the scale width and height in pixel mode).
  virtual double Pixel_Width() const = 0;
  virtual double Pixel_Height() const = 0;
  // Twips per pixel of the display (15 on a display of 96 dots per inch).
  virtual double Twips_Per_Pixel() const = 0;

  virtual void Clear() = 0;
  // Shows what has been drawn so far at once, so that a long plot shows its progress.
  virtual void Refresh() = 0;

  // A line from (x1, y1) to (x2, y2); width 1 to 3 pixels.
  virtual void Line(double x1, double y1, double x2, double y2, Plot_Colour colour, Line_Style style,
                    int width) = 0;
  // A filled rectangle between two opposite corners.
  virtual void Box(double x1, double y1, double x2, double y2, Plot_Colour colour) = 0;
  // A point marker: a circle of the radius in pixels around (x, y).
  virtual void Circle(double x, double y, double radius, Plot_Colour colour) = 0;
  // Text whose top-left corner is at (x, y), in the surface's font at the size in points.
  virtual void Text(double x, double y, std::string_view text, int size, Plot_Colour colour) = 0;
  // A solid fill of the triangle, with no outline.
  virtual void Fill_Polygon(const Pixel_Point (&vertex)[3], Plot_Colour colour) = 0;

  // The wait cursor during a long plot (true), the normal pointer after it (false).
  virtual void Set_Wait_Pointer(bool waiting) = 0;
};

}  // namespace pvx
