#include "design/panel_snap.h"

#include <cmath>

#include "app/units.h"

namespace pvx {

namespace {

// The nearest multiple of `step`, halves to the even multiple; a step of 0 or less leaves v.
double Round_To(double v, double step) {
  if (!(step > 0)) return v;
  return std::nearbyint(v / step) * step;
}

}  // namespace

void Snap_Position(const Project& p, Design_Panel& panel, double x, double y) {
  x = Round_To(x, p.Snap_Size);
  y = Round_To(y, p.Snap_Size);
  panel.Mouse_X = x;
  panel.Mouse_Y = y;
  if (p.Snap_Mode == 1 && p.Rect_Grid_Snap != 0) {
    x = Round_To(Round_To(x, p.Grid_X_Increment), p.Snap_Size);
    y = Round_To(Round_To(y, p.Grid_Y_Increment), p.Snap_Size);
  } else if (p.Snap_Mode == 1 && p.Circ_Grid_Snap != 0 && p.Circ_Angle_Increment > 0) {
    const double n = std::nearbyint((p.Circ_End_Angle - p.Circ_Start_Angle) / p.Circ_Angle_Increment);
    double best = 1e+28, best_x = x, best_y = y;
    for (double radius : {p.Circ_Outer_Radius, p.Circ_Inner_Radius})
      for (double i = 0; i <= n; ++i) {
        const double angle = (i * p.Circ_Angle_Increment + p.Circ_Start_Angle) / 57.29577951;
        const double gx = p.Circ_X_Center + radius * std::cos(angle);
        const double gy = p.Circ_Y_Center + radius * std::sin(angle);
        const double d = (gx - x) * (gx - x) + (gy - y) * (gy - y);
        if (d < best) {
          best = d;
          best_x = gx;
          best_y = gy;
        }
      }
    x = Round_To(best_x, p.Snap_Size);
    y = Round_To(best_y, p.Snap_Size);
  }
  panel.Snap_X = std::nearbyint(x * 10) / 10;
  panel.Snap_Y = std::nearbyint(y * 10) / 10;
}

std::string Position_Label(const Project& p, double value_mm) {
  const double shown = p.Metric_Units != 0 ? value_mm : Convert_Unit(true, Unit_Length_mm, value_mm);
  std::string text = Format_Number(shown, 24, 2);
  const auto first = text.find_first_not_of(' ');
  return first == std::string::npos ? text : text.substr(first);
}

Graf_Settings Read_Graf_Settings(const Project& p, const Design_Display& display) {
  Graf_Settings g;
  g.Rect_Grid_Snap = p.Rect_Grid_Snap != 0;
  g.Rect_Grid_Visible = p.Rect_Grid_Visible != 0;
  g.Grid_X_Min = p.Grid_X_Min;
  g.Grid_X_Max = p.Grid_X_Max;
  g.Grid_X_Increment = p.Grid_X_Increment;
  g.Grid_Y_Min = p.Grid_Y_Min;
  g.Grid_Y_Max = p.Grid_Y_Max;
  g.Grid_Y_Increment = p.Grid_Y_Increment;
  g.Circ_Grid_Snap = p.Circ_Grid_Snap != 0;
  g.Circ_Grid_Visible = p.Circ_Grid_Visible != 0;
  g.Circ_X_Center = p.Circ_X_Center;
  g.Circ_Y_Center = p.Circ_Y_Center;
  g.Circ_Outer_Radius = p.Circ_Outer_Radius;
  g.Circ_Inner_Radius = p.Circ_Inner_Radius;
  g.Circ_Start_Angle = p.Circ_Start_Angle;
  g.Circ_End_Angle = p.Circ_End_Angle;
  g.Circ_Angle_Increment = p.Circ_Angle_Increment;
  g.Snap_Size = p.Snap_Size;
  g.Mouse_Radius = p.Mouse_Radius;
  g.Snap_On_Grid = p.Snap_Mode == 1;
  g.Display = display;
  return g;
}

bool Check_Graf_Settings(const Graf_Settings& g, std::string& message) {
  auto fail = [&](const char* text) {
    message = text;
    return false;
  };
  if (g.Grid_X_Max < g.Grid_X_Min) return fail("X_max < X_min");
  if (g.Grid_X_Increment <= 0) return fail("X_increment =< 0");
  if ((g.Grid_X_Max - g.Grid_X_Min) / g.Grid_X_Increment > Max_Grid_Intervals)
    return fail("X_increment is te klein");
  if (g.Grid_Y_Max < g.Grid_Y_Min) return fail("Y_max < Y_min");
  if (g.Grid_Y_Increment <= 0) return fail("Y_increment =< 0");
  if ((g.Grid_Y_Max - g.Grid_Y_Min) / g.Grid_Y_Increment > Max_Grid_Intervals)
    return fail("Y_increment is te klein");
  if (g.Circ_Outer_Radius <= 0) return fail("Outer radius =< 0");
  if (g.Circ_Inner_Radius <= 0) return fail("Inner radius =< 0");
  if (g.Circ_End_Angle < g.Circ_Start_Angle) return fail("Eindhoek < Starthoek");
  if (g.Circ_Angle_Increment <= 0) return fail("Increment =< 0");
  if (g.Snap_Size <= 0) return fail("Snap grootte =< 0");
  if (g.Mouse_Radius <= 0) return fail("Aktiestraal van de muis =< 0");
  message.clear();
  return true;
}

bool Apply_Graf_Settings(const Graf_Settings& g, Project& p, Design_Display& display, std::string& message) {
  if (!Check_Graf_Settings(g, message)) return false;
  p.Rect_Grid_Snap = As_Flag(g.Rect_Grid_Snap);
  p.Rect_Grid_Visible = As_Flag(g.Rect_Grid_Visible);
  p.Grid_X_Min = g.Grid_X_Min;
  p.Grid_X_Max = g.Grid_X_Max;
  p.Grid_X_Increment = g.Grid_X_Increment;
  p.Grid_Y_Min = g.Grid_Y_Min;
  p.Grid_Y_Max = g.Grid_Y_Max;
  p.Grid_Y_Increment = g.Grid_Y_Increment;
  p.Circ_Grid_Snap = As_Flag(g.Circ_Grid_Snap);
  p.Circ_Grid_Visible = As_Flag(g.Circ_Grid_Visible);
  p.Circ_X_Center = g.Circ_X_Center;
  p.Circ_Y_Center = g.Circ_Y_Center;
  p.Circ_Outer_Radius = g.Circ_Outer_Radius;
  p.Circ_Inner_Radius = g.Circ_Inner_Radius;
  p.Circ_Start_Angle = g.Circ_Start_Angle;
  p.Circ_End_Angle = g.Circ_End_Angle;
  p.Circ_Angle_Increment = g.Circ_Angle_Increment;
  p.Snap_Size = g.Snap_Size;
  p.Mouse_Radius = static_cast<float>(g.Mouse_Radius);
  p.Snap_Mode = g.Snap_On_Grid ? 1 : 0;
  display = g.Display;
  return true;
}

}  // namespace pvx
