// The picture of the result viewer: one variable at one stored step.
//
// Contour variables are drawn element by element over the active elements with the variable's
// colour scale, then the title with the time, the scale bar, the step's extremes, the line cut and
// the history points. The deformed mesh, the point reactions and the interface and rebar charts
// draw their own pictures with their own titles.
#pragma once

#include <string>

#include "app/project.h"
#include "results/plot.h"
#include "results/plot_surface.h"
#include "results/viewer_state.h"

namespace pvx {

// Point sizes of the viewer's texts.
inline constexpr int Title_Size = 9;
inline constexpr int Extremes_Size = 8;
// Colours of the viewer's overlays and charts.
inline constexpr Plot_Colour Mesh_Outline_Colour = Grey;
inline constexpr Plot_Colour Deformed_Colour = Red;
inline constexpr Plot_Colour Undeformed_Colour = Black;
inline constexpr Plot_Colour Chart_Colour = Red;
inline constexpr Plot_Colour Reaction_Colour = Red;
inline constexpr Plot_Colour History_Point_Colour = Red;
// The deformed mesh shows the scale value as a shift of this many pixels.
inline constexpr double Deformation_Pixels = 33.333;
// A chart line of the largest scale value is this many pixels long.
inline constexpr double Chart_Pixels = 50;
// The longest reaction arrow, pixels.
inline constexpr double Reaction_Arrow_Pixels = 40;

// Where the title of a picture of the given size is printed: x = width / 2 - 110, or 10 when that
// is negative; y = height - 18.
void Title_Position(double width, double height, double& x, double& y);

// What a drawn picture showed, for the window's labels and for tests.
struct Distribution_Picture {
  std::string Title;            // with the time
  Scale_Bar_Labels Labels;      // contour variables: the scale's ends and the step's extremes
  bool Scale_Replaced = false;  // the deformed mesh's scale was below 1e-5 and is now 10
  int Elements_Drawn = 0;       // active elements drawn
};

// Draws the current variable at the current stored step from the buffers (nothing is read):
// the wait pointer during the plot, the picture cleared, then the picture of the variable. The
// deformed mesh may set its scale (row 20's ScaleMax) to 10, hence the state is not const.
Distribution_Picture Plot_Distribution(Plot_Surface& surface, const Picture_State& picture, const Project& p,
                                       Viewer_State& s);

// The parts of Plot_Distribution, for callers that draw one of them on its own.
Distribution_Picture Plot_Contours(Plot_Surface& surface, const Picture_State& picture, const Project& p,
                                   const Viewer_State& s);
Distribution_Picture Plot_Deformed_Mesh(Plot_Surface& surface, const Picture_State& picture, const Project& p,
                                        Viewer_State& s);
Distribution_Picture Plot_Point_Reactions(Plot_Surface& surface, const Picture_State& picture,
                                          const Project& p, const Viewer_State& s);
// Interfaces (30, 31) and rebars (32..34): at each of the two stations of an interface or bar
// element (the Gauss points of its axis) a line across the axis of 50 x value / M pixels, with M
// the larger of |ScaleMin| and |ScaleMax| (1 when both are 0); "Maximum " and "Minimum " of the
// record beneath.
Distribution_Picture Plot_Bar_Charts(Plot_Surface& surface, const Picture_State& picture, const Project& p,
                                     const Viewer_State& s);

// "Zoomin": the window of a drag on the picture, from the model points of its two corners, in any
// order; Zoomed is set and ZoomPending cleared. "Zoomout": both flags cleared. The window then
// calls Set_Scale and redraws.
void Set_Zoom_Window(Picture_State& picture, double x1, double y1, double x2, double y2);
void Clear_Zoom(Picture_State& picture);

// The line cut (dashed, black) and the history points (red circles of radius 2 with their
// numbers), as the state has them on.
void Plot_Overlays(Plot_Surface& surface, const Picture_State& picture, const Viewer_State& s);

}  // namespace pvx
