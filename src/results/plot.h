// The drawing layer under the design panel, the mesh panel and the result panel: one
// world-to-picture transformation for the whole project, the ten-colour scale, and contour plots
// made of filled triangles, element by element.
//
// World coordinates are model millimetres with y upwards; picture coordinates are pixels with y
// downwards. One scale serves both axes, so a square in the model is a square on the screen.
#pragma once

#include <cstdint>
#include <string>

#include "app/project.h"
#include "results/plot_surface.h"

namespace pvx {

inline constexpr Plot_Colour Black{0, 0, 0};
inline constexpr Plot_Colour White{255, 255, 255};
inline constexpr Plot_Colour Grey{128, 128, 128};
inline constexpr Plot_Colour Red{255, 0, 0};
inline constexpr Plot_Colour Green{0, 255, 0};
inline constexpr Plot_Colour Blue{0, 0, 255};
inline constexpr Plot_Colour Yellow{255, 255, 0};

inline constexpr int Scale_Band_Count = 10;
// The colours of every contour plot, from the low end of the scale (1) to the high end (10).
inline constexpr Array1<Plot_Colour, Scale_Band_Count> ScaleColours{{
    {0, 0, 128},
    {0, 0, 255},
    {0, 128, 255},
    {0, 255, 255},
    {0, 255, 200},
    {0, 255, 0},
    {180, 255, 0},
    {255, 255, 0},
    {255, 128, 0},
    {255, 0, 0},
}};

// The state of the picture transformation and of what the design panel shows. The frame itself
// (Grid_X_Min .. Grid_Y_Max) belongs to the Project.
struct Picture_State {
  double ScaleX = 1, ScaleY = 1;    // pixels per mm, equal after Set_Scale
  double OriginX = 0, OriginY = 0;  // model point at the picture's left edge and bottom row
  std::int32_t PictureHeight = 0;   // pixels
  std::int32_t MarginX = 150;       // twips
  std::int32_t MarginY = 800;       // twips
  bool Zoomed = false, ZoomPending = false;
  double ZoomX1 = 0, ZoomY1 = 0, ZoomX2 = 0, ZoomY2 = 0;  // zoom window, model mm
  bool Show_Grid = true, Show_Frame = true, Show_Axes = true, Show_Points = true, Show_Macros = true,
       Show_Borders = true, Show_Circuits = true;
};

// The picture state of a new start, and the project's frame and grids at their defaults.
void Set_Defaults(Picture_State& state, Project& project);

// Where a picture sits in its form, in twips.
struct Picture_Placement {
  double Left = 360, Top = 80, Width = 50, Height = 50;
  bool operator==(const Picture_Placement&) const = default;
};

// The picture's place in a form of the given size (twips): 600 twips smaller than the form, at
// least 50 wide when the form is too narrow and 50 high when it is too low.
Picture_Placement Place_Picture(double form_width, double form_height);

// The transformation for a picture of scale width S and height H in twips, on a display of
// `twips_per_pixel`: the frame (or the zoom window when zoomed) fills the picture within its
// margins at one scale for both axes, centred horizontally.
void Compute_Scale(Picture_State& state, const Project& project, double scale_width, double scale_height,
                   double twips_per_pixel);
// Places the picture in a form of the given size (twips) and computes the transformation for it;
// the picture's scale size is its size.
Picture_Placement Set_Scale(Picture_State& state, const Project& project, double form_width,
                            double form_height, double twips_per_pixel);

// Model to pixel, rounded halves to even; a position beyond the 32-bit range is held at its end.
std::int32_t World_To_X(const Picture_State& state, double x);
std::int32_t World_To_Y(const Picture_State& state, double y);
// Pixel to model, for the pointer.
double Picture_To_World_X(const Picture_State& state, double px);
double Picture_To_World_Y(const Picture_State& state, double py);

// A point of a contour triangle in pixels, kept in single precision between the corners.
struct Plot_Point {
  float X = 0, Y = 0;
  bool operator==(const Plot_Point&) const = default;
};

// The polygon of one triangle within one band, at most five vertices.
struct Band_Polygon {
  Plot_Point Vertex[6];
  int Count = 0;
};

// Appends to `polygon` where the part of edge A-B with values in [lo, hi] starts and ends, in
// walking order from A to B; A itself is left to the edge that ends in it.
void Clip_Edge_To_Band(double lo, double hi, Plot_Point a_point, Plot_Point b_point, double a, double b,
                       Band_Polygon& polygon);

// The part of a triangle with linearly varying values that lies within [lo, hi], both limits
// included. Returns false (and an empty polygon) when all three values lie below lo or all three
// above hi.
bool Clip_Triangle_Polygon(double lo, double hi, const Plot_Point (&vertex)[3], const double (&value)[3],
                           Band_Polygon& polygon);

// Fills the band part of a triangle as a fan of triangles from its first vertex.
void Clip_Triangle_To_Band(Plot_Surface& surface, double lo, double hi, const Plot_Point (&vertex)[3],
                           const double (&value)[3], Plot_Colour colour);

// Fills a triangle on whole pixels, unless all three vertices lie left of the picture, or all
// right of its width, or all above it, or all below its height.
void Fill_Triangle(Plot_Surface& surface, const Plot_Point (&vertex)[3], Plot_Colour colour);
// The same with the picture's pixel size given, for callers that fill many triangles.
void Fill_Triangle(Plot_Surface& surface, double width, double height, const Plot_Point (&vertex)[3],
                   Plot_Colour colour);

// One element of a contour plot with the scale [low, high]: four triangles from the corners to the
// centre, each filled band by band from the low end, so a value on a band limit shows in the
// upper band. Values outside the scale stay unpainted.
void Plot_Element_Contours(Plot_Surface& surface, const Picture_State& state, const double (&x)[4],
                           const double (&y)[4], const double (&corner_value)[4], double low, double high);
// The same for mesh element `element` of the Project.
void Plot_Element_Contours(Plot_Surface& surface, const Picture_State& state, const Project& project,
                           int element, const double (&corner_value)[4], double low, double high);

// The number formats of the scale bar's labels for result variable v; a side without a label has
// no format (Has_Low false for the deformed mesh, which shows only its magnification).
struct Scale_Label_Format {
  bool Has_Low = true;
  int Low_Decimals = 2, Low_Width = 8;
  int High_Decimals = 2, High_Width = 8;
};
Scale_Label_Format Scale_Label_Format_Of(int variable);

// The texts of the scale bar: the scale's ends and the current step's extremes.
struct Scale_Bar_Labels {
  std::string Low, High, Minimum, Maximum;
};

// The colour scale along the picture's bottom with the low and high scale values beneath it.
// Returns the four label texts; the step's extremes are for the viewer's own labels.
Scale_Bar_Labels Plot_Scale_Bar(Plot_Surface& surface, int variable, double low, double high,
                                double step_minimum, double step_maximum);

// The point size of the scale bar's labels.
inline constexpr int Scale_Label_Size = 8;

}  // namespace pvx

namespace pvx {

// Which border lines the design layers show: only the two border modes draw them.
enum class Border_Layer { None, Thermal, Hygral };

// Colours and sizes of the design layers.
inline constexpr Plot_Colour Grid_Colour = Grey;
inline constexpr Plot_Colour Outline_Colour = Black;
inline constexpr Plot_Colour Node_Colour = Blue;
inline constexpr Plot_Colour Frame_Colour = Grey;
inline constexpr Plot_Colour Axes_Colour = Black;
inline constexpr Plot_Colour Interface_Colour = Green;
inline constexpr Plot_Colour Thermal_Border_Colour = Red;
inline constexpr Plot_Colour Hygral_Border_Colour = Blue;
inline constexpr double Grid_Point_Radius = 1;
inline constexpr double Node_Radius = 2;

// Clears the picture and draws the design in layers, bottom first: grid points, the circular grid,
// the macros (or, for the mesh panel, the mesh elements), the nodes, the frame, the axes, the
// interfaces and, in a border mode, the border lines of that mode.
void Plot_Design(Plot_Surface& surface, const Picture_State& state, const Project& project,
                 Border_Layer borders, bool mesh_in_place_of_macros);

}  // namespace pvx
