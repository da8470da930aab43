#include "results/viewer_plot.h"

#include <algorithm>
#include <cmath>

#include "app/units.h"
#include "results/result_variables.h"
#include "results/viewer_geometry.h"
#include "results/viewer_values.h"

namespace pvx {

namespace {

constexpr double Degrees_Per_Radian = 57.29577951;
constexpr double Gauss = 0.57735026918962576;  // 1 / sqrt(3)

std::string Trimmed(const std::string& t) {
  const auto first = t.find_first_not_of(' ');
  return first == std::string::npos ? std::string() : t.substr(first);
}

const Extreme_Row* Row_Of(const Viewer_State& s, int variable) {
  const int row = Extreme_Row_Of_Variable(variable);
  if (row < 1 || row > Result_Variable_Count) return nullptr;
  return &s.Index.Extremes[row];
}

void Print_Title(Plot_Surface& surface, const std::string& title) {
  double x, y;
  Title_Position(surface.Pixel_Width(), surface.Pixel_Height(), x, y);
  surface.Text(x, y, title, Title_Size, Black);
}

// The outlines of the active elements, in pixels.
void Plot_Mesh_Outline(Plot_Surface& surface, const Picture_State& picture, const Project& p, double time,
                       Plot_Colour colour) {
  double x[4], y[4];
  for (int e = 1; e <= p.Mesh_Element.count(); ++e) {
    if (!Element_Shown(p.Mesh_Element[e], time) || !Element_Corners(p, e, x, y)) continue;
    for (int i = 0; i < 4; ++i) {
      const int j = (i + 1) % 4;
      surface.Line(World_To_X(picture, x[i]), World_To_Y(picture, y[i]), World_To_X(picture, x[j]),
                   World_To_Y(picture, y[j]), colour, Line_Style::Solid, 1);
    }
  }
}

}  // namespace

void Title_Position(double width, double height, double& x, double& y) {
  x = width / 2 - 110;
  if (x < 0) x = 10;
  y = height - 18;
}

void Set_Zoom_Window(Picture_State& picture, double x1, double y1, double x2, double y2) {
  picture.ZoomX1 = std::min(x1, x2);
  picture.ZoomX2 = std::max(x1, x2);
  picture.ZoomY1 = std::min(y1, y2);
  picture.ZoomY2 = std::max(y1, y2);
  picture.Zoomed = true;
  picture.ZoomPending = false;
}

void Clear_Zoom(Picture_State& picture) {
  picture.Zoomed = false;
  picture.ZoomPending = false;
}

void Plot_Overlays(Plot_Surface& surface, const Picture_State& picture, const Viewer_State& s) {
  if (s.LineCutActive) {
    const Cut_Line& c = s.LineCut;
    surface.Line(World_To_X(picture, c.X1), World_To_Y(picture, c.Y1), World_To_X(picture, c.X2),
                 World_To_Y(picture, c.Y2), Black, Line_Style::Dashed, 1);
  }
  if (s.History_Button_Down) {
    for (int i = 1; i <= s.HistoryPoints.count(); ++i) {
      const History_Point& h = s.HistoryPoints[i];
      const double x = World_To_X(picture, h.X), y = World_To_Y(picture, h.Y);
      surface.Circle(x, y, 2, History_Point_Colour);
      surface.Text(x + 4, y - 12, Trimmed(Format_Number(i, 11, 0)), Extremes_Size, History_Point_Colour);
    }
  }
}

Distribution_Picture Plot_Contours(Plot_Surface& surface, const Picture_State& picture, const Project& p,
                                   const Viewer_State& s) {
  Distribution_Picture out;
  const int v = s.CurrentVariable;
  const Extreme_Row* row = Row_Of(s, v);
  const double low = row ? row->ScaleMin : 0, high = row ? row->ScaleMax : 0;
  const double time = Current_Time(s);
  double f[4];
  for (int e = 1; e <= p.Mesh_Element.count(); ++e) {
    if (!Element_Shown(p.Mesh_Element[e], time)) continue;
    if (!Corner_Values(p, s.Buffers, v, e, f)) continue;
    Plot_Element_Contours(surface, picture, p, e, f, low, high);
    ++out.Elements_Drawn;
  }
  out.Title = Distribution_Title_At(v, time);
  Print_Title(surface, out.Title);
  out.Labels = Plot_Scale_Bar(surface, v, low, high, s.Buffers.CurrentMin, s.Buffers.CurrentMax);
  // The step's own extremes, at the top: the scale may be set wider or narrower than the field.
  const std::string unit = Extreme_Unit(v, s.Metric);
  surface.Text(
      10, 5,
      "Minimum: " + Trimmed(out.Labels.Minimum) + unit + "   Maximum: " + Trimmed(out.Labels.Maximum) + unit,
      Extremes_Size, Black);
  return out;
}

Distribution_Picture Plot_Deformed_Mesh(Plot_Surface& surface, const Picture_State& picture, const Project& p,
                                        Viewer_State& s) {
  Distribution_Picture out;
  Extreme_Row& row = s.Index.Extremes[20];
  if (row.ScaleMax < 1e-5) {
    row.ScaleMax = 10;
    out.Scale_Replaced = true;
  }
  const double m = Deformation_Pixels / row.ScaleMax;
  const double time = Current_Time(s);
  double x[4], y[4];
  for (int e = 1; e <= p.Mesh_Element.count(); ++e) {
    if (!Element_Shown(p.Mesh_Element[e], time) || !Element_Corners(p, e, x, y)) continue;
    double px[4], py[4], dx[4], dy[4];
    for (int c = 0; c < 4; ++c) {
      px[c] = World_To_X(picture, x[c]);
      py[c] = World_To_Y(picture, y[c]);
      const int i = Displacement_Index(p, e, c + 1);
      const double ux = s.Buffers.Node.valid(i) ? s.Buffers.Node[i] : 0.0;
      const double uy = s.Buffers.Node.valid(i + 1) ? s.Buffers.Node[i + 1] : 0.0;
      dx[c] = px[c] + m * ux;
      dy[c] = py[c] - m * uy;
    }
    if (s.Undeformed_Visible)
      for (int c = 0; c < 4; ++c)
        surface.Line(px[c], py[c], px[(c + 1) % 4], py[(c + 1) % 4], Undeformed_Colour, Line_Style::Solid, 1);
    for (int c = 0; c < 4; ++c)
      surface.Line(dx[c], dy[c], dx[(c + 1) % 4], dy[(c + 1) % 4], Deformed_Colour, Line_Style::Solid, 1);
    ++out.Elements_Drawn;
  }
  out.Title = Distribution_Title_At(20, time);
  Print_Title(surface, out.Title);
  // The magnification: a bar of 33.333 pixels is the scale value.
  const double w = surface.Pixel_Width(), h = surface.Pixel_Height();
  surface.Line(w - 80 - Deformation_Pixels - 10, h - 24, w - 80 - 10, h - 24, Black, Line_Style::Solid, 2);
  const Scale_Label_Format f = Scale_Label_Format_Of(20);
  out.Labels.High = Format_Number(row.ScaleMax, f.High_Width, f.High_Decimals);
  out.Labels.Maximum = Format_Number(s.Buffers.CurrentMax, f.High_Width, f.High_Decimals);
  surface.Text(w - 80, h - 29, Trimmed(out.Labels.High) + Extreme_Unit(20, s.Metric), Extremes_Size, Black);
  return out;
}

Distribution_Picture Plot_Point_Reactions(Plot_Surface& surface, const Picture_State& picture,
                                          const Project& p, const Viewer_State& s) {
  Distribution_Picture out;
  const double time = Current_Time(s);
  Plot_Mesh_Outline(surface, picture, p, time, Mesh_Outline_Colour);
  double largest = 0;
  for (int i = 1; i <= p.Mesh_Support.count(); ++i)
    if (s.Buffers.Node.valid(i)) largest = std::max(largest, std::fabs(double{s.Buffers.Node[i]}));
  for (int i = 1; i <= p.Mesh_Support.count() && largest > 0; ++i) {
    if (!s.Buffers.Node.valid(i)) continue;
    const Support& support = p.Mesh_Support[i];
    const double r = s.Buffers.Node[i];
    if (r == 0) continue;
    // The arrow points along the support's direction for a positive reaction and ends at the
    // support; its length is the reaction's share of the largest one.
    const double angle = support.Angle / Degrees_Per_Radian;
    const double sign = r > 0 ? 1 : -1;
    const double ux = sign * std::cos(angle), uy = -sign * std::sin(angle);  // picture y downwards
    const double length = Reaction_Arrow_Pixels * std::fabs(r) / largest;
    const double hx = World_To_X(picture, support.X), hy = World_To_Y(picture, support.Y);
    const double tx = hx - ux * length, ty = hy - uy * length;
    surface.Line(tx, ty, hx, hy, Reaction_Colour, Line_Style::Solid, 2);
    for (double turn : {0.4, -0.4}) {
      const double bx = -(ux * std::cos(turn) - uy * std::sin(turn));
      const double by = -(ux * std::sin(turn) + uy * std::cos(turn));
      surface.Line(hx, hy, hx + 6 * bx, hy + 6 * by, Reaction_Colour, Line_Style::Solid, 2);
    }
  }
  out.Title = Distribution_Title_At(21, time);
  Print_Title(surface, out.Title);
  return out;
}

Distribution_Picture Plot_Bar_Charts(Plot_Surface& surface, const Picture_State& picture, const Project& p,
                                     const Viewer_State& s) {
  Distribution_Picture out;
  const int v = s.CurrentVariable;
  const double time = Current_Time(s);
  Plot_Mesh_Outline(surface, picture, p, time, Mesh_Outline_Colour);
  const Extreme_Row* row = Row_Of(s, v);
  double M = row ? std::max(std::fabs(row->ScaleMin), std::fabs(row->ScaleMax)) : 0;
  if (M == 0) M = 1;

  // One chart along the axis from (x1, y1) to (x2, y2) with a value at each of its two stations.
  auto chart = [&](double x1, double y1, double x2, double y2, double value1, double value2) {
    const double ax = World_To_X(picture, x1), ay = World_To_Y(picture, y1);
    const double bx = World_To_X(picture, x2), by = World_To_Y(picture, y2);
    const double len = std::hypot(bx - ax, by - ay);
    if (len == 0) return;
    // Positive values to the left of the axis as the model sees it, from A to B: upwards along an
    // axis that runs to the right (the picture's y runs downwards).
    const double nx = (by - ay) / len, ny = -(bx - ax) / len;
    double tip_x[2], tip_y[2];
    const double value[2] = {value1, value2};
    for (int k = 0; k < 2; ++k) {
      const double t = k == 0 ? (1 - Gauss) / 2 : (1 + Gauss) / 2;
      const double sx = ax + (bx - ax) * t, sy = ay + (by - ay) * t;
      const double l = Chart_Pixels * value[k] / M;
      tip_x[k] = sx + nx * l;
      tip_y[k] = sy + ny * l;
      surface.Line(sx, sy, tip_x[k], tip_y[k], Chart_Colour, Line_Style::Solid, 2);
    }
    surface.Line(tip_x[0], tip_y[0], tip_x[1], tip_y[1], Chart_Colour, Line_Style::Solid, 1);
    ++out.Elements_Drawn;
  };

  if (v == 30 || v == 31) {
    for (int i = 1; i <= p.Mesh_Interface.count() && i <= s.Buffers.Interface.count(); ++i) {
      const Interface& f = p.Mesh_Interface[i];
      if (!p.Mesh_Node.valid(f.Node_A) || !p.Mesh_Node.valid(f.Node_B)) continue;
      const Interface_Result& r = s.Buffers.Interface[i];
      const float* values = v == 30 ? r.Normal : r.Shear;
      const Mesh_Node &a = p.Mesh_Node[f.Node_A], &b = p.Mesh_Node[f.Node_B];
      chart(a.X, a.Y, b.X, b.Y, values[0], values[1]);
    }
  } else {
    for (int i = 1; i <= p.Mesh_Rebar.count() && i <= s.Buffers.Bar.count(); ++i) {
      const Rebar& bar = p.Mesh_Rebar[i];
      const Bar_Result& r = s.Buffers.Bar[i];
      double v1 = r.Normal, v2 = r.Normal;  // one normal stress along the bar element
      if (v == 33) {
        v1 = r.Shear[0];
        v2 = r.Shear[1];
      } else if (v == 34) {
        v1 = r.Slip[0];
        v2 = r.Slip[1];
      }
      chart(bar.X1, bar.Y1, bar.X2, bar.Y2, v1, v2);
    }
  }

  const int decimals = v == 34 ? 3 : 2;
  const std::string unit = Extreme_Unit(v, s.Metric);
  out.Labels.Maximum = Format_Number(s.Buffers.CurrentMax, 10, decimals);
  out.Labels.Minimum = Format_Number(s.Buffers.CurrentMin, 10, decimals);
  const double h = surface.Pixel_Height();
  surface.Text(10, h - 46, "Maximum " + Trimmed(out.Labels.Maximum) + unit, Extremes_Size, Black);
  surface.Text(10, h - 33, "Minimum " + Trimmed(out.Labels.Minimum) + unit, Extremes_Size, Black);
  out.Title = Distribution_Title_At(v, time);
  Print_Title(surface, out.Title);
  return out;
}

Distribution_Picture Plot_Distribution(Plot_Surface& surface, const Picture_State& picture, const Project& p,
                                       Viewer_State& s) {
  const int v = s.CurrentVariable;
  surface.Set_Wait_Pointer(true);
  surface.Clear();
  Distribution_Picture out;
  if (v == 20)
    out = Plot_Deformed_Mesh(surface, picture, p, s);
  else if (v == 21)
    out = Plot_Point_Reactions(surface, picture, p, s);
  else if (v >= 30 && v <= 34)
    out = Plot_Bar_Charts(surface, picture, p, s);
  else if (Is_Contour_Variable(v))
    out = Plot_Contours(surface, picture, p, s);
  Plot_Overlays(surface, picture, s);
  surface.Refresh();
  surface.Set_Wait_Pointer(false);
  return out;
}

}  // namespace pvx
