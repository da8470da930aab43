#include "results/plot.h"

#include <cmath>
#include <limits>

#include "app/units.h"

namespace pvx {

void Set_Defaults(Picture_State& state, Project& project) {
  state = Picture_State{};
  Set_Graphical_Defaults(project);
}

Picture_Placement Place_Picture(double form_width, double form_height) {
  Picture_Placement place;
  place.Width = form_width - 600;
  place.Height = form_height - 600;
  if (place.Width < 0) place.Width = 50;
  if (place.Height <= 0) place.Height = 50;
  return place;
}

namespace {

// Rounds halves to even (the default rounding mode), held within the 32-bit range.
std::int32_t Round_32(double v) {
  constexpr double lo = std::numeric_limits<std::int32_t>::min();
  constexpr double hi = std::numeric_limits<std::int32_t>::max();
  if (std::isnan(v)) return 0;
  if (v <= lo) return std::numeric_limits<std::int32_t>::min();
  if (v >= hi) return std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::nearbyint(v));
}

}  // namespace

void Compute_Scale(Picture_State& state, const Project& project, double scale_width, double scale_height,
                   double twips_per_pixel) {
  double x1 = project.Grid_X_Min, x2 = project.Grid_X_Max;
  double y1 = project.Grid_Y_Min, y2 = project.Grid_Y_Max;
  if (state.Zoomed) {
    x1 = state.ZoomX1;
    x2 = state.ZoomX2;
    y1 = state.ZoomY1;
    y2 = state.ZoomY2;
  }
  const double dx = x2 - x1, dy = y2 - y1;
  const double cx = (x1 + x2) / 2, cy = (y1 + y2) / 2;
  const double t = twips_per_pixel, s = scale_width, h = scale_height;
  state.ScaleX = (s - 2.0 * state.MarginX) / (t * dx);
  state.ScaleY = (h - state.MarginX - state.MarginY) / (t * dy);
  const double scale = std::fmin(state.ScaleX, state.ScaleY);
  state.ScaleX = scale;
  state.ScaleY = scale;
  state.OriginX = cx - (s / (2 * t)) / state.ScaleX;
  state.PictureHeight = Round_32(h / t);
  state.OriginY =
      cy + (Round_32((h / 2 - state.MarginX) / t) - static_cast<double>(state.PictureHeight)) / state.ScaleY;
}

Picture_Placement Set_Scale(Picture_State& state, const Project& project, double form_width,
                            double form_height, double twips_per_pixel) {
  const Picture_Placement place = Place_Picture(form_width, form_height);
  Compute_Scale(state, project, place.Width, place.Height, twips_per_pixel);
  return place;
}

std::int32_t World_To_X(const Picture_State& state, double x) {
  return Round_32((x - state.OriginX) * state.ScaleX);
}

std::int32_t World_To_Y(const Picture_State& state, double y) {
  return Round_32(state.PictureHeight - std::nearbyint((y - state.OriginY) * state.ScaleY));
}

double Picture_To_World_X(const Picture_State& state, double px) {
  return px / state.ScaleX + state.OriginX;
}

double Picture_To_World_Y(const Picture_State& state, double py) {
  return (state.PictureHeight - py) / state.ScaleY + state.OriginY;
}

namespace {

inline void Append(Band_Polygon& polygon, Plot_Point p) {
  polygon.Vertex[polygon.Count++] = p;
}

// The point of edge A-B where the value is c, for a != b.
inline Plot_Point At_Value(Plot_Point a_point, Plot_Point b_point, double a, double b, double c) {
  const double f = (c - a) / (b - a);
  return {static_cast<float>(a_point.X + (static_cast<double>(b_point.X) - a_point.X) * f),
          static_cast<float>(a_point.Y + (static_cast<double>(b_point.Y) - a_point.Y) * f)};
}

}  // namespace

void Clip_Edge_To_Band(double lo, double hi, Plot_Point a_point, Plot_Point b_point, double a, double b,
                       Band_Polygon& polygon) {
  if (a < lo) {
    if (b < lo) return;
    Append(polygon, At_Value(a_point, b_point, a, b, lo));
    if (b <= hi)
      Append(polygon, b_point);
    else
      Append(polygon, At_Value(a_point, b_point, a, b, hi));
  } else if (a > hi) {
    if (b > hi) return;
    Append(polygon, At_Value(a_point, b_point, a, b, hi));
    if (b >= lo)
      Append(polygon, b_point);
    else
      Append(polygon, At_Value(a_point, b_point, a, b, lo));
  } else {
    if (b < lo)
      Append(polygon, At_Value(a_point, b_point, a, b, lo));
    else if (b > hi)
      Append(polygon, At_Value(a_point, b_point, a, b, hi));
    else
      Append(polygon, b_point);
  }
}

bool Clip_Triangle_Polygon(double lo, double hi, const Plot_Point (&vertex)[3], const double (&value)[3],
                           Band_Polygon& polygon) {
  polygon.Count = 0;
  if (value[0] < lo && value[1] < lo && value[2] < lo) return false;
  if (value[0] > hi && value[1] > hi && value[2] > hi) return false;
  Clip_Edge_To_Band(lo, hi, vertex[0], vertex[1], value[0], value[1], polygon);
  Clip_Edge_To_Band(lo, hi, vertex[1], vertex[2], value[1], value[2], polygon);
  Clip_Edge_To_Band(lo, hi, vertex[2], vertex[0], value[2], value[0], polygon);
  return true;
}

namespace {

void Fill_Band_Polygon(Plot_Surface& surface, double width, double height, const Band_Polygon& polygon,
                       Plot_Colour colour) {
  const Plot_Point* v = polygon.Vertex;
  if (polygon.Count >= 3) Fill_Triangle(surface, width, height, {v[0], v[1], v[2]}, colour);
  if (polygon.Count >= 4) Fill_Triangle(surface, width, height, {v[0], v[2], v[3]}, colour);
  if (polygon.Count >= 5) Fill_Triangle(surface, width, height, {v[0], v[3], v[4]}, colour);
}

}  // namespace

void Clip_Triangle_To_Band(Plot_Surface& surface, double lo, double hi, const Plot_Point (&vertex)[3],
                           const double (&value)[3], Plot_Colour colour) {
  Band_Polygon polygon;
  if (!Clip_Triangle_Polygon(lo, hi, vertex, value, polygon)) return;
  Fill_Band_Polygon(surface, surface.Pixel_Width(), surface.Pixel_Height(), polygon, colour);
}

void Fill_Triangle(Plot_Surface& surface, double width, double height, const Plot_Point (&vertex)[3],
                   Plot_Colour colour) {
  const Plot_Point &a = vertex[0], &b = vertex[1], &c = vertex[2];
  if (a.X < 0 && b.X < 0 && c.X < 0) return;
  if (a.X > width && b.X > width && c.X > width) return;
  if (a.Y < 0 && b.Y < 0 && c.Y < 0) return;
  if (a.Y > height && b.Y > height && c.Y > height) return;
  const Pixel_Point corner[3] = {
      {Round_32(a.X), Round_32(a.Y)}, {Round_32(b.X), Round_32(b.Y)}, {Round_32(c.X), Round_32(c.Y)}};
  surface.Fill_Polygon(corner, colour);
}

void Fill_Triangle(Plot_Surface& surface, const Plot_Point (&vertex)[3], Plot_Colour colour) {
  Fill_Triangle(surface, surface.Pixel_Width(), surface.Pixel_Height(), vertex, colour);
}

void Plot_Element_Contours(Plot_Surface& surface, const Picture_State& state, const double (&x)[4],
                           const double (&y)[4], const double (&corner_value)[4], double low, double high) {
  double w = (high - low) / Scale_Band_Count;
  if (w == 0) w = 0.001;

  Plot_Point corner[4];
  for (int i = 0; i < 4; ++i)
    corner[i] = {static_cast<float>(World_To_X(state, x[i])), static_cast<float>(World_To_Y(state, y[i]))};
  const Plot_Point centre{(corner[0].X + corner[1].X + corner[2].X + corner[3].X) / 4,
                          (corner[0].Y + corner[1].Y + corner[2].Y + corner[3].Y) / 4};
  const double centre_value = (corner_value[0] + corner_value[1] + corner_value[2] + corner_value[3]) / 4;

  // The element's values span few bands: a triangle wholly outside a band is passed over before
  // any clipping, so most of the forty band-triangle pairs cost two comparisons.
  double v_min = centre_value, v_max = centre_value;
  for (double v : corner_value) {
    v_min = std::fmin(v_min, v);
    v_max = std::fmax(v_max, v);
  }

  const double width = surface.Pixel_Width(), height = surface.Pixel_Height();
  Band_Polygon polygon;
  for (int k = 1; k <= Scale_Band_Count; ++k) {
    const double lo = low + (k - 1) * w;
    const double hi = lo + w;
    if (v_max < lo || v_min > hi) continue;
    for (int t = 0; t < 4; ++t) {
      const int next = (t + 1) % 4;
      const Plot_Point triangle[3] = {corner[t], corner[next], centre};
      const double value[3] = {corner_value[t], corner_value[next], centre_value};
      if (Clip_Triangle_Polygon(lo, hi, triangle, value, polygon))
        Fill_Band_Polygon(surface, width, height, polygon, ScaleColours[k]);
    }
  }
}

void Plot_Element_Contours(Plot_Surface& surface, const Picture_State& state, const Project& project,
                           int element, const double (&corner_value)[4], double low, double high) {
  const Mesh_Element& e = project.Mesh_Element[element];
  double x[4], y[4];
  for (int i = 0; i < 4; ++i) {
    const Mesh_Node& n = project.Mesh_Node[e.Corner[i + 1]];
    x[i] = n.X;
    y[i] = n.Y;
  }
  Plot_Element_Contours(surface, state, x, y, corner_value, low, high);
}

Scale_Label_Format Scale_Label_Format_Of(int variable) {
  Scale_Label_Format f;  // 2 decimals in 8 places where no format of its own is set
  auto both = [&f](int decimals, int width) {
    f.Low_Decimals = f.High_Decimals = decimals;
    f.Low_Width = f.High_Width = width;
  };
  switch (variable) {
    case 1:
      both(2, 6);
      break;
    case 2:
      both(1, 8);
      break;
    case 3:
      both(1, 10);
      break;
    case 4:
      both(3, 6);
      break;
    case 5:
      both(1, 8);
      break;
    case 9:
    case 10:
      both(2, 8);
      break;
    case 20:
      f.Has_Low = false;
      f.High_Decimals = 3;
      f.High_Width = 8;
      break;
    case 22:
      f.High_Decimals = 3;
      break;
    case 40:
      both(1, 8);
      break;
    default:
      if (variable >= 11 && variable <= 19) f.High_Decimals = 3;
      break;
  }
  return f;
}

Scale_Bar_Labels Plot_Scale_Bar(Plot_Surface& surface, int variable, double low, double high,
                                double step_minimum, double step_maximum) {
  const double width = surface.Pixel_Width(), height = surface.Pixel_Height();
  const double band = (width - 100) / Scale_Band_Count;
  const double bottom = height - 30, top = bottom - 10;
  for (int k = 1; k <= Scale_Band_Count; ++k)
    surface.Box(50 + (k - 1) * band, top, 50 + k * band, bottom, ScaleColours[k]);

  const Scale_Label_Format f = Scale_Label_Format_Of(variable);
  Scale_Bar_Labels labels;
  if (f.Has_Low) {
    labels.Low = Format_Number(low, f.Low_Width, f.Low_Decimals);
    labels.Minimum = Format_Number(step_minimum, f.Low_Width, f.Low_Decimals);
  }
  labels.High = Format_Number(high, f.High_Width, f.High_Decimals);
  labels.Maximum = Format_Number(step_maximum, f.High_Width, f.High_Decimals);
  if (f.Has_Low) surface.Text(20, bottom + 1, labels.Low, Scale_Label_Size, Black);
  surface.Text(width - 80, bottom + 1, labels.High, Scale_Label_Size, Black);
  return labels;
}

}  // namespace pvx

namespace pvx {

namespace {

struct Layer_Pen {
  Plot_Surface& surface;
  const Picture_State& state;
  void Line(double x1, double y1, double x2, double y2, Plot_Colour colour, Line_Style style, int width) {
    surface.Line(World_To_X(state, x1), World_To_Y(state, y1), World_To_X(state, x2), World_To_Y(state, y2),
                 colour, style, width);
  }
  void Point(double x, double y, double radius, Plot_Colour colour) {
    surface.Circle(World_To_X(state, x), World_To_Y(state, y), radius, colour);
  }
};

// The multiples of `increment` within [from, to].
void Grid_Range(double from, double to, double increment, long long& first, long long& last) {
  first = static_cast<long long>(std::ceil(from / increment - 1e-9));
  last = static_cast<long long>(std::floor(to / increment + 1e-9));
}

void Plot_Side(Layer_Pen& pen, const Table<double>& x, const Table<double>& y, int a, int b,
               Plot_Colour colour, int width) {
  if (x.valid(a) && x.valid(b) && y.valid(a) && y.valid(b))
    pen.Line(x[a], y[a], x[b], y[b], colour, Line_Style::Solid, width);
}

void Plot_Mesh_Side(Layer_Pen& pen, const Table<Mesh_Node>& node, int a, int b, Plot_Colour colour,
                    int width) {
  if (node.valid(a) && node.valid(b))
    pen.Line(node[a].X, node[a].Y, node[b].X, node[b].Y, colour, Line_Style::Solid, width);
}

}  // namespace

void Plot_Design(Plot_Surface& surface, const Picture_State& state, const Project& p, Border_Layer borders,
                 bool mesh_in_place_of_macros) {
  surface.Clear();
  Layer_Pen pen{surface, state};
  const double x_min = p.Grid_X_Min, x_max = p.Grid_X_Max, y_min = p.Grid_Y_Min, y_max = p.Grid_Y_Max;

  if (state.Show_Grid && p.Rect_Grid_Visible && p.Grid_X_Increment > 0 && p.Grid_Y_Increment > 0) {
    long long i1, i2, j1, j2;
    Grid_Range(x_min, x_max, p.Grid_X_Increment, i1, i2);
    Grid_Range(y_min, y_max, p.Grid_Y_Increment, j1, j2);
    for (long long i = i1; i <= i2; ++i)
      for (long long j = j1; j <= j2; ++j)
        pen.Point(static_cast<double>(i) * p.Grid_X_Increment, static_cast<double>(j) * p.Grid_Y_Increment,
                  Grid_Point_Radius, Grid_Colour);
  }

  if (state.Show_Grid && p.Circ_Grid_Visible && p.Circ_Angle_Increment > 0) {
    // The same points as the circular snap: n + 1 angles on the outer and on the inner circle.
    const long long n = std::llround((p.Circ_End_Angle - p.Circ_Start_Angle) / p.Circ_Angle_Increment);
    for (double radius : {p.Circ_Outer_Radius, p.Circ_Inner_Radius})
      for (long long i = 0; i <= n; ++i) {
        const double angle =
            (static_cast<double>(i) * p.Circ_Angle_Increment + p.Circ_Start_Angle) / 57.29577951;
        pen.Point(p.Circ_X_Center + radius * std::cos(angle), p.Circ_Y_Center + radius * std::sin(angle),
                  Grid_Point_Radius, Grid_Colour);
      }
  }

  if (state.Show_Macros) {
    if (mesh_in_place_of_macros) {
      for (const Mesh_Element& e : p.Mesh_Element)
        for (int j = 1; j <= 4; ++j)
          Plot_Mesh_Side(pen, p.Mesh_Node, e.Corner[j], e.Corner[j % 4 + 1], Outline_Colour, 1);
    } else {
      for (const Macro& m : p.Macro)
        for (int j = 1; j <= 4; ++j)
          Plot_Side(pen, p.Node_X, p.Node_Y, m.Corner[j], m.Corner[j % 4 + 1], Outline_Colour, 1);
    }
  }

  if (state.Show_Points)
    for (int n = 1; n <= Node_Count(p); ++n)
      pen.Point(p.Node_X[n], p.Node_Y[n], Node_Radius, Node_Colour);

  if (state.Show_Frame) {
    pen.Line(x_min, y_min, x_max, y_min, Frame_Colour, Line_Style::Dashed, 1);
    pen.Line(x_max, y_min, x_max, y_max, Frame_Colour, Line_Style::Dashed, 1);
    pen.Line(x_max, y_max, x_min, y_max, Frame_Colour, Line_Style::Dashed, 1);
    pen.Line(x_min, y_max, x_min, y_min, Frame_Colour, Line_Style::Dashed, 1);
  }

  if (state.Show_Axes) {  // the axes through the model origin, across the frame where they cross it
    if (y_min <= 0 && 0 <= y_max) pen.Line(x_min, 0, x_max, 0, Axes_Colour, Line_Style::Solid, 1);
    if (x_min <= 0 && 0 <= x_max) pen.Line(0, y_min, 0, y_max, Axes_Colour, Line_Style::Solid, 1);
  }

  if (mesh_in_place_of_macros) {
    for (const Interface& f : p.Mesh_Interface)
      Plot_Mesh_Side(pen, p.Mesh_Node, f.Node_A, f.Node_B, Interface_Colour, 3);
  } else {
    for (const Interface& f : p.Interface)
      Plot_Side(pen, p.Node_X, p.Node_Y, f.Node_A, f.Node_B, Interface_Colour, 3);
  }

  if (state.Show_Borders && borders != Border_Layer::None) {
    const bool thermal = borders == Border_Layer::Thermal;
    const Plot_Colour colour = thermal ? Thermal_Border_Colour : Hygral_Border_Colour;
    const Table<Border>& table = mesh_in_place_of_macros ? p.Mesh_Border : p.Border;
    for (const Border& b : table) {
      if (!(thermal ? b.Thermal_Active : b.Hygral_Active)) continue;
      if (mesh_in_place_of_macros)
        Plot_Mesh_Side(pen, p.Mesh_Node, b.Node_A, b.Node_B, colour, 2);
      else
        Plot_Side(pen, p.Node_X, p.Node_Y, b.Node_A, b.Node_B, colour, 2);
    }
  }
}

}  // namespace pvx
