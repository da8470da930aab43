#include "design/generation_entry.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

#include "app/units.h"

namespace pvx {

namespace {

constexpr int Default_Segments = 16;
constexpr int Length_Decimals = 3;

bool Metric(const Project& p) {
  return p.Metric_Units != 0;
}

std::string Length_Text(const Project& p, double mm) {
  const double shown = Metric(p) ? mm : Convert_Unit(true, Unit_Length_mm, mm);
  return Format_Number_Trimmed(shown, 40, Length_Decimals);
}

bool Is_Plain(const Material& m) {
  return !m.Is_Interface && !m.Is_Reinforcement;
}

// Reads one typed number by the entry rule; on a faulty text the message names the field.
bool Read_Number(std::string_view text, bool decimal_comma, const char* field, double& value,
                 std::string& message) {
  std::string fault;
  const double v = Check_Number(text, decimal_comma, &fault);
  if (!fault.empty()) {
    message = std::string(field) + ": " + fault;
    return false;
  }
  value = v;
  return true;
}

bool Read_Length(const Project& p, std::string_view text, bool decimal_comma, const char* field, double& mm,
                 std::string& message) {
  double v = 0;
  if (!Read_Number(text, decimal_comma, field, v, message)) return false;
  mm = Metric(p) ? v : Convert_Unit(false, Unit_Length_mm, v);
  return true;
}

bool Read_Count(std::string_view text, bool decimal_comma, const char* field, int& count,
                std::string& message) {
  std::string fault;
  const int v = Check_Integer(text, decimal_comma, &fault);
  if (!fault.empty()) {
    message = std::string(field) + ": " + fault;
    return false;
  }
  count = v;
  return true;
}

}  // namespace

Circle_Texts Show_Circle_Request(const Project& p, const Circle_Request& c) {
  return {Length_Text(p, c.X),        Length_Text(p, c.Y),
          Length_Text(p, c.Radius),   Length_Text(p, c.Inner_Radius),
          std::to_string(c.Segments), c.Material};
}

Hole_Texts Show_Hole_Request(const Project& p, const Hole_Request& h) {
  return {std::to_string(h.Macro), Length_Text(p, h.X), Length_Text(p, h.Y), Length_Text(p, h.Radius),
          std::to_string(h.Segments)};
}

std::vector<std::string> Plain_Material_Names(const Project& p) {
  std::vector<std::string> names;
  for (const Material& m : p.Material)
    if (Is_Plain(m)) names.push_back(m.Name);
  return names;
}

Circle_Request Default_Circle_Request(const Project& p) {
  Circle_Request c;
  const double width = p.Grid_X_Max - p.Grid_X_Min, height = p.Grid_Y_Max - p.Grid_Y_Min;
  if (width > 0 && height > 0) {
    c.X = (p.Grid_X_Min + p.Grid_X_Max) / 2;
    c.Y = (p.Grid_Y_Min + p.Grid_Y_Max) / 2;
    c.Radius = std::min(width, height) / 10;
  } else {
    c.Radius = 1000;
  }
  c.Segments = Default_Segments;
  if ((p.Circ_Grid_Visible != 0 || p.Circ_Grid_Snap != 0) && p.Circ_Outer_Radius > 0) {
    // A circular grid the user has set up is where the circle is meant to go.
    c.X = p.Circ_X_Center;
    c.Y = p.Circ_Y_Center;
    c.Radius = p.Circ_Outer_Radius;
    c.Inner_Radius = p.Circ_Inner_Radius > 0 && p.Circ_Inner_Radius < c.Radius ? p.Circ_Inner_Radius : 0;
    if (p.Circ_Angle_Increment > 0) {
      int n = static_cast<int>(std::lround(std::clamp(360 / p.Circ_Angle_Increment, 8.0, 256.0)));
      if (c.Inner_Radius == 0) n -= n % 4;  // a disc needs a multiple of 4
      c.Segments = n;
    }
  }
  const std::vector<std::string> plain = Plain_Material_Names(p);
  if (p.Macro.valid(p.Current_Macro) &&
      std::find(plain.begin(), plain.end(), p.Macro[p.Current_Macro].Material) != plain.end())
    c.Material = p.Macro[p.Current_Macro].Material;
  else if (!plain.empty())
    c.Material = plain.front();
  return c;
}

Hole_Request Default_Hole_Request(const Project& p, int macro) {
  Hole_Request h;
  h.Segments = Default_Segments;
  if (!p.Macro.valid(macro)) return h;
  const Macro& m = p.Macro[macro];
  for (int k = 1; k <= 4; ++k)
    if (!p.Node_X.valid(m.Corner[k])) return h;
  h.Macro = macro;
  for (int k = 1; k <= 4; ++k) {
    h.X += p.Node_X[m.Corner[k]] / 4;
    h.Y += p.Node_Y[m.Corner[k]] / 4;
  }
  double nearest = std::numeric_limits<double>::infinity();
  for (int k = 1; k <= 4; ++k) {
    const int a = m.Corner[k], b = m.Corner[k % 4 + 1];
    const double dx = p.Node_X[b] - p.Node_X[a], dy = p.Node_Y[b] - p.Node_Y[a];
    const double length = std::hypot(dx, dy);
    if (length > 0)
      nearest = std::min(nearest, std::fabs((h.X - p.Node_X[a]) * dy - (h.Y - p.Node_Y[a]) * dx) / length);
  }
  h.Radius = std::isfinite(nearest) ? nearest / 3 : 0;
  return h;
}

bool Read_Circle_Texts(const Project& p, const Circle_Texts& t, bool decimal_comma, Circle_Request& c,
                       std::string& message) {
  Circle_Request read;
  if (!Read_Length(p, t.X, decimal_comma, "X centre", read.X, message) ||
      !Read_Length(p, t.Y, decimal_comma, "Y centre", read.Y, message) ||
      !Read_Length(p, t.Radius, decimal_comma, "Outer radius", read.Radius, message) ||
      !Read_Length(p, t.Inner_Radius, decimal_comma, "Inner radius", read.Inner_Radius, message) ||
      !Read_Count(t.Segments, decimal_comma, "Segments", read.Segments, message))
    return false;
  read.Material = t.Material;
  c = read;
  return true;
}

bool Read_Hole_Texts(const Project& p, const Hole_Texts& t, bool decimal_comma, Hole_Request& h,
                     std::string& message) {
  Hole_Request read;
  if (!Read_Count(t.Macro, decimal_comma, "Macro", read.Macro, message) ||
      !Read_Length(p, t.X, decimal_comma, "X centre", read.X, message) ||
      !Read_Length(p, t.Y, decimal_comma, "Y centre", read.Y, message) ||
      !Read_Length(p, t.Radius, decimal_comma, "Radius", read.Radius, message) ||
      !Read_Count(t.Segments, decimal_comma, "Segments", read.Segments, message))
    return false;
  h = read;
  return true;
}

std::string Generation_Summary(const Generation_Result& r, bool had_mesh) {
  std::string text = std::to_string(r.Macros_Added) + " macros and " + std::to_string(r.Nodes_Added) +
                     " nodes added, " + std::to_string(r.Nodes_Reused) + " nodes reused";
  if (r.Macros_Split > 0) text += ", " + std::to_string(r.Macros_Split) + " neighbouring macros cut";
  char angles[80];
  std::snprintf(angles, sizeof angles, "; corner angles %.1f to %.1f degrees.", r.Smallest_Angle,
                r.Largest_Angle);
  text += angles;
  if (had_mesh) text += std::string(" ") + Stale_Mesh_Note;
  return text;
}

}  // namespace pvx
