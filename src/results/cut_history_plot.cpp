#include "results/cut_history_plot.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "app/units.h"
#include "results/plot.h"

namespace pvx {

void Adjust_Cut_Start(const Cut_Direction& d, double pointer_x, double pointer_y, double& start_x,
                      double& start_y) {
  switch (d.CutMode) {
    case Cut_Mode::Horizontally:
      start_y = pointer_y;
      break;
    case Cut_Mode::Vertically:
      start_x = pointer_x;
      break;
    case Cut_Mode::Arbitrarily:
      break;
    case Cut_Mode::Fixed_Angle: {
      const double length = std::hypot(pointer_x - start_x, pointer_y - start_y);
      const double a = d.CutAngle / Degrees_Per_Radian;
      start_x = pointer_x - std::cos(a) * length;
      start_y = pointer_y + std::sin(a) * length;
      break;
    }
  }
}

Graph_Scale Stretch_Of(const Plot_Surface& s, double frame_width, double frame_height) {
  return {s.Pixel_Width() / frame_width, s.Pixel_Height() / frame_height};
}

namespace {

// The graph's drawing area in twips, and the surface it is stretched onto.
struct Graph_Area {
  Plot_Surface& S;
  Graph_Scale K;
  double Left, Top, Right, Bottom;

  double Px(double twips_x) const { return twips_x * K.X; }
  double Py(double twips_y) const { return twips_y * K.Y; }
};

// Cuts the segment (in twips) to the drawing area; false when none of it lies inside.
bool Clip_To_Area(const Graph_Area& a, double& x1, double& y1, double& x2, double& y2) {
  double t0 = 0, t1 = 1;
  const double dx = x2 - x1, dy = y2 - y1;
  const double p[4] = {-dx, dx, -dy, dy};
  const double q[4] = {x1 - a.Left, a.Right - x1, y1 - a.Top, a.Bottom - y1};
  for (int i = 0; i < 4; ++i) {
    if (p[i] == 0) {
      if (q[i] < 0) return false;
      continue;
    }
    const double r = q[i] / p[i];
    if (p[i] < 0)
      t0 = std::max(t0, r);
    else
      t1 = std::min(t1, r);
  }
  if (t0 > t1) return false;
  const double ax = x1 + t0 * dx, ay = y1 + t0 * dy;
  x2 = x1 + t1 * dx;
  y2 = y1 + t1 * dy;
  x1 = ax;
  y1 = ay;
  return true;
}

// A curve's line, given in twips, clipped to the area; true when something was drawn.
bool Curve_Line(const Graph_Area& a, double x1, double y1, double x2, double y2, Plot_Colour colour) {
  if (!std::isfinite(x1) || !std::isfinite(y1) || !std::isfinite(x2) || !std::isfinite(y2)) return false;
  if (!Clip_To_Area(a, x1, y1, x2, y2)) return false;
  a.S.Line(a.Px(x1), a.Py(y1), a.Px(x2), a.Py(y2), colour, Line_Style::Solid, 2);
  return true;
}

// The width of a text of the graph's size, pixels: the labels are placed by it.
double Text_Width(const std::string& text) {
  return 6.0 * static_cast<double>(text.size());
}

// Raster lines over the area, the frame, the labels along both axes (X_Labels from left to right,
// Y_Labels from the bottom up, one per raster line) and the two titles.
struct Raster {
  int Columns = 4, Rows = 4;
  std::vector<std::string> X_Labels, Y_Labels;
  std::string X_Title, Y_Title;
};

void Plot_Raster(const Graph_Area& a, const Raster& r) {
  Plot_Surface& s = a.S;
  const double left = a.Px(a.Left), right = a.Px(a.Right), top = a.Py(a.Top), bottom = a.Py(a.Bottom);
  for (int i = 1; i < r.Columns; ++i) {
    const double x = left + (right - left) * i / r.Columns;
    s.Line(x, top, x, bottom, Graph_Raster_Colour, Line_Style::Solid, 1);
  }
  for (int i = 1; i < r.Rows; ++i) {
    const double y = bottom - (bottom - top) * i / r.Rows;
    s.Line(left, y, right, y, Graph_Raster_Colour, Line_Style::Solid, 1);
  }
  s.Line(left, top, right, top, Black, Line_Style::Solid, 1);
  s.Line(right, top, right, bottom, Black, Line_Style::Solid, 1);
  s.Line(right, bottom, left, bottom, Black, Line_Style::Solid, 1);
  s.Line(left, bottom, left, top, Black, Line_Style::Solid, 1);
  for (std::size_t i = 0; i < r.X_Labels.size(); ++i) {
    const double x = left + (right - left) * static_cast<double>(i) / r.Columns;
    s.Text(x - Text_Width(r.X_Labels[i]) / 2, bottom + 3, r.X_Labels[i], Graph_Text_Size, Black);
  }
  for (std::size_t i = 0; i < r.Y_Labels.size(); ++i) {
    const double y = bottom - (bottom - top) * static_cast<double>(i) / r.Rows;
    s.Text(left - 4 - Text_Width(r.Y_Labels[i]), y - 7, r.Y_Labels[i], Graph_Text_Size, Black);
  }
  s.Text((left + right) / 2 - Text_Width(r.X_Title) / 2, bottom + 20, r.X_Title, Graph_Text_Size, Black);
  s.Text(std::max(2.0, left - 40), top - 20, r.Y_Title, Graph_Text_Size, Black);
}

// The values of a value axis at its raster lines, bottom up, in the variable's scale format.
std::vector<std::string> Value_Labels(int variable, double low, double high, int rows) {
  const Scale_Label_Format f = Scale_Label_Format_Of(variable);
  std::vector<std::string> labels;
  for (int i = 0; i <= rows; ++i)
    labels.push_back(Format_Number_Trimmed(low + (high - low) * i / rows, 16, f.High_Decimals));
  return labels;
}

}  // namespace

Cut_Plot Plot_Cut(Plot_Surface& s, const Line_Cut& cut, const Cut_Graph_Settings& settings, bool metric) {
  Cut_Plot out;
  s.Clear();
  out.Settings_Taken = Plot_Cut_Extents(cut, settings, out.Extents, out.Message);
  const Cut_Extents& e = out.Extents;
  const Graph_Area a{s,
                     Stretch_Of(s, Cut_Frame_Width, Cut_Frame_Height),
                     Cut_Picture_Left,
                     Cut_Picture_Bottom - Cut_Picture_Height,
                     Cut_Picture_Left + Cut_Picture_Width,
                     Cut_Picture_Bottom};

  Raster r;
  out.Length_Label = Cut_Length_Label(cut, e, metric);
  for (int i = 0; i < r.Columns; ++i) {
    const double metres = (e.Fraction_Max - e.Fraction_Min) * cut.CutLength / 1000 * i / r.Columns;
    r.X_Labels.push_back(
        Format_Number_Trimmed(metric ? metres : Convert_Unit(true, Unit_Length_m, metres), 7, 3));
  }
  // The right-hand label is the length the graph spans, as its own format gives it.
  const std::size_t first = out.Length_Label.find_first_not_of(' ');
  r.X_Labels.push_back(first == std::string::npos ? std::string() : out.Length_Label.substr(first));
  r.Y_Labels = Value_Labels(cut.Variable, e.Value_Min, e.Value_Max, r.Rows);
  r.X_Title = Cut_Distance_Title(metric);
  r.Y_Title = Cut_Axis_Title(cut.Variable, metric);
  Plot_Raster(a, r);

  auto draw = [&](const Cut_Piece& piece, double factor, Plot_Colour colour) {
    return Curve_Line(a, Cut_Picture_X(e, piece.Fraction[1]), Cut_Picture_Y(e, piece.Value[1] * factor),
                      Cut_Picture_X(e, piece.Fraction[2]), Cut_Picture_Y(e, piece.Value[2] * factor), colour);
  };
  const bool strength = Cut_Shows_Strength(cut.Variable);
  if (strength) {
    for (const Cut_Piece& piece : cut.CutStrength) {
      out.Strength_Pieces_Drawn += draw(piece, 1, Cut_Strength_Colour);
      out.Strength_Pieces_Drawn += draw(piece, settings.Factor, Cut_Factor_Colour);
    }
  }
  // The variable last, so that it stays in sight where the curves meet.
  for (const Cut_Piece& piece : cut.CutPieces)
    out.Pieces_Drawn += draw(piece, 1, Cut_Value_Colour);

  if (strength) {
    // The legend above the graph's right end: a short line in each colour and its text.
    const Plot_Colour colours[3] = {Cut_Strength_Colour, Cut_Factor_Colour, Cut_Value_Colour};
    double x = a.Px(a.Right);
    for (int i = 2; i >= 0; --i)
      x -= 24 + Text_Width(Cut_Legend_Texts[i]) + 10;
    const double y = a.Py(a.Top) - 20;
    for (int i = 0; i < 3; ++i) {
      s.Line(x, y + 7, x + 20, y + 7, colours[i], Line_Style::Solid, 2);
      s.Text(x + 24, y, Cut_Legend_Texts[i], Graph_Text_Size, colours[i]);
      x += 24 + Text_Width(Cut_Legend_Texts[i]) + 10;
    }
  }
  s.Refresh();
  return out;
}

bool Edit_Cut_Axis(Cut_Graph_Settings& settings, Axis_Box box, double value, std::string& message) {
  const double minimum = box == Axis_Box::Minimum ? value : settings.Minimum;
  const double maximum = box == Axis_Box::Maximum ? value : settings.Maximum;
  if (maximum < minimum) {
    message = Fixed_Axis_Message;
    return false;
  }
  settings.Minimum = minimum;
  settings.Maximum = maximum;
  return true;
}

std::string History_Time_Box_Text(double time) {
  return Format_Number_Trimmed(time, 12, 2);
}

std::string History_Value_Box_Text(double value) {
  return Format_Number_Trimmed(value, 12, 3);
}

bool Edit_History_Scale(History_Scale& scale, Scale_Box_Of_History box, double value, std::string& message) {
  bool refused = false;
  switch (box) {
    case Scale_Box_Of_History::Time_Minimum:
      refused = value >= scale.TimeMax;
      if (!refused) scale.TimeMin = value;
      break;
    case Scale_Box_Of_History::Time_Maximum:
      refused = value <= scale.TimeMin;
      if (!refused) scale.TimeMax = value;
      break;
    case Scale_Box_Of_History::Value_Minimum:
      refused = value >= scale.ValueMax;
      if (!refused) scale.ValueMin = value;
      break;
    case Scale_Box_Of_History::Value_Maximum:
      refused = value <= scale.ValueMin;
      if (!refused) scale.ValueMax = value;
      break;
  }
  if (refused) {
    message = Scale_Order_Message;
    return false;
  }
  scale.Fixed = true;
  return true;
}

Plot_Colour History_Curve_Colour(int variable) {
  return variable >= 13 && variable <= 19 ? Blue : Red;
}

std::string History_Curve_Label(const History_Data& h, int run, int item) {
  std::string label = (h.Variable == 21 ? "Support " : "Point ") + std::to_string(item);
  if (h.Runs > 1 && run >= 1 && static_cast<std::size_t>(run) <= h.Run_Names.size())
    label = h.Run_Names[static_cast<std::size_t>(run - 1)] + ": " + label;
  return label;
}

namespace {

Graph_Area History_Graph_Area(Plot_Surface& s) {
  return {s,
          Stretch_Of(s, History_Frame_Width, History_Frame_Height),
          History_Picture_Left,
          History_Picture_Top,
          History_Picture_Right,
          History_Picture_Bottom};
}

// The raster of a history graph; with `differences` the value labels are those of a difference
// drawn on the same axes, from 0 at the bottom.
void History_Raster(const Graph_Area& a, const History_Data& h, bool metric, bool differences) {
  Raster r;
  r.Columns = 6;
  r.Rows = 5;
  for (int i = 0; i <= r.Columns; ++i)
    r.X_Labels.push_back(Format_Number_Trimmed(h.TimeMin + (h.TimeMax - h.TimeMin) * i / r.Columns, 16, 1));
  const double span = h.ValueMax - h.ValueMin;
  r.Y_Labels = differences ? Value_Labels(h.Variable, 0, span, r.Rows)
                           : Value_Labels(h.Variable, h.ValueMin, h.ValueMax, r.Rows);
  r.X_Title = History_Time_Title;
  r.Y_Title = History_Axis_Title(h.Variable, metric);
  Plot_Raster(a, r);
}

// Labels at the right-hand ends of the curves, moved apart vertically where they would overlap.
void Place_Labels(const Graph_Area& a, std::vector<std::pair<double, std::string>> labels,
                  Plot_Colour colour) {
  std::stable_sort(labels.begin(), labels.end(), [](auto& p, auto& q) { return p.first < q.first; });
  double last = -1e30;
  for (auto& [y, text] : labels) {
    y = std::max(y - 7, last + 13);
    last = y;
    a.S.Text(a.Px(a.Right) + 4, y, text, Graph_Text_Size, colour);
  }
}

}  // namespace

History_Plot Draw_Historie1(Plot_Surface& s, const History_Data& h, bool metric) {
  History_Plot out;
  s.Clear();
  if (h.Variable > 40) {
    s.Refresh();
    return out;
  }
  const Graph_Area a = History_Graph_Area(s);
  History_Raster(a, h, metric, false);
  const Plot_Colour colour = History_Curve_Colour(h.Variable);
  const bool labelled = h.Runs * h.Items > 1;
  std::vector<std::pair<double, std::string>> labels;
  for (int r = 1; r <= h.Runs; ++r)
    for (int p = 1; p <= h.Items; ++p) {
      bool drawn = false;
      for (int k = 1; k < h.Stored; ++k)
        drawn |= Curve_Line(a, History_Picture_X(h, h.Storage_Time[k]),
                            History_Picture_Y(h, HistoryValues(h, r, p, k)),
                            History_Picture_X(h, h.Storage_Time[k + 1]),
                            History_Picture_Y(h, HistoryValues(h, r, p, k + 1)), colour);
      out.Curves += drawn;
      if (labelled && h.Stored > 0) {
        const double y = std::clamp(History_Picture_Y(h, HistoryValues(h, r, p, h.Stored)), a.Top, a.Bottom);
        labels.emplace_back(a.Py(y), History_Curve_Label(h, r, p));
        out.Labels.push_back(labels.back().second);
      }
    }
  Place_Labels(a, labels, colour);
  s.Refresh();
  return out;
}

int Plot_History_Differences(Plot_Surface& s, const History_Data& h, bool metric, int a_item, int b_item) {
  s.Clear();
  const Graph_Area a = History_Graph_Area(s);
  History_Raster(a, h, metric, true);
  int lines = 0;
  std::vector<std::pair<double, std::string>> labels;
  for (int r = 1; r <= h.Runs; ++r) {
    const Table<double> d = History_Difference(h, r, a_item, b_item);
    for (int k = 1; k < d.count(); ++k)
      lines +=
          Curve_Line(a, History_Picture_X(h, h.Storage_Time[k]), Difference_Picture_Y(h, d[k]),
                     History_Picture_X(h, h.Storage_Time[k + 1]), Difference_Picture_Y(h, d[k + 1]), Blue);
    if (!d.empty()) {
      std::string label = "Point " + std::to_string(a_item) + " - Point " + std::to_string(b_item);
      if (h.Runs > 1 && static_cast<std::size_t>(r) <= h.Run_Names.size())
        label = h.Run_Names[static_cast<std::size_t>(r - 1)] + ": " + label;
      labels.emplace_back(a.Py(std::clamp(Difference_Picture_Y(h, d.last()), a.Top, a.Bottom)), label);
    }
  }
  Place_Labels(a, labels, Blue);
  s.Refresh();
  return lines;
}

bool Plot_Mebin_Value(Plot_Surface& s, const History_Data& h, Mebin_Kind kind, double c) {
  const Mebin_Line line = Mebin_Line_Of(h, kind, c);
  if (!line.Drawn) return false;
  const Graph_Scale k = Stretch_Of(s, History_Frame_Width, History_Frame_Height);
  s.Line(line.X1 * k.X, line.Y1 * k.Y, line.X2 * k.X, line.Y2 * k.Y, Black, Line_Style::Solid, 2);
  return true;
}

}  // namespace pvx
