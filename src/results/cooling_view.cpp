#include "results/cooling_view.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <vector>

#include "app/project_file.h"
#include "app/units.h"
#include "results/plot.h"
#include "results/result_files.h"
#include "results/viewer_plot.h"

namespace pvx {

namespace {

inline constexpr Plot_Colour Raster_Colour{200, 200, 200};
inline constexpr Plot_Colour Water_Colour = Red;
inline constexpr Plot_Colour Quantity_Colour = Blue;  // flow and capacity
// The layout in twips: a margin of 2300 across (room for the scale ends left of each graph and a
// small border on the right) and 1000 down (the titles above, the time axis below); a graph
// narrower or lower than 101 is not drawn.
inline constexpr double Margin_X = 2300, Margin_Y = 1000;
inline constexpr double Smallest_Graph = 101;
inline constexpr double Raster = 600;  // between the raster lines
inline constexpr double Graph_Top = 500;
inline constexpr double Label_Room = 700;  // left of each graph
inline constexpr double Circuit_Title_Y = 30;
inline constexpr double Graph_Title_Above = 230;
inline constexpr double Time_Caption_Below = 220;

// A point of a curve: time (hours) and value.
struct Sample {
  double Time, Value;
};

// One graph: its curves over the records, the values that its value axis covers (more than the
// curves for the temperatures, which are scaled over every station), the smallest extent of that
// axis and the decimals of its scale ends.
struct Graph {
  const char* Title;
  const char* Unit;
  std::vector<std::vector<Sample>> Curves;
  std::vector<double> Extent_Values;
  double Smallest_Extent;
  int Decimals;
  Plot_Colour Colour;
};

// The graph with its left edge at `left`, w wide and h high (twips), over the times t0..t1.
// `markers` names the curves at their ends, or is null.
void Plot_Graph(Plot_Surface& s, const Graph& g, double t0, double t1, double left, double w, double h,
                const char* const* markers) {
  const double tpp = s.Twips_Per_Pixel();
  const double top = Graph_Top, bottom = Graph_Top + h, right = left + w;
  auto px = [tpp](double twips) { return twips / tpp; };

  double lo = 0, hi = 0;
  if (!g.Extent_Values.empty()) {
    const auto [min, max] = std::minmax_element(g.Extent_Values.begin(), g.Extent_Values.end());
    lo = *min;
    hi = *max;
  }
  if (hi - lo < g.Smallest_Extent) hi = lo + g.Smallest_Extent;

  for (double x = left + Raster; x < right; x += Raster)
    s.Line(px(x), px(top), px(x), px(bottom), Raster_Colour, Line_Style::Solid, 1);
  for (double y = bottom - Raster; y > top; y -= Raster)
    s.Line(px(left), px(y), px(right), px(y), Raster_Colour, Line_Style::Solid, 1);
  s.Line(px(left), px(top), px(right), px(top), Black, Line_Style::Solid, 1);
  s.Line(px(right), px(top), px(right), px(bottom), Black, Line_Style::Solid, 1);
  s.Line(px(right), px(bottom), px(left), px(bottom), Black, Line_Style::Solid, 1);
  s.Line(px(left), px(bottom), px(left), px(top), Black, Line_Style::Solid, 1);

  auto x_of = [&](double t) { return px(left + (t - t0) / (t1 - t0) * w); };
  auto y_of = [&](double v) { return px(bottom - (v - lo) / (hi - lo) * h); };
  for (const std::vector<Sample>& curve : g.Curves)
    for (std::size_t k = 1; k < curve.size(); ++k)
      s.Line(x_of(curve[k - 1].Time), y_of(curve[k - 1].Value), x_of(curve[k].Time), y_of(curve[k].Value),
             g.Colour, Line_Style::Solid, 2);
  // "in" and "out" at the end of their curves, the higher one above its line and the lower one
  // below, so that the two stay apart where the curves come close; both within the frame, clear
  // of the texts around it.
  if (markers != nullptr && g.Curves.size() == 2 && !g.Curves[0].empty() && !g.Curves[1].empty()) {
    const Sample in = g.Curves[0].back(), out = g.Curves[1].back();
    const bool out_above = out.Value >= in.Value;
    auto mark = [&](const Sample& end, bool above, const char* text) {
      // In a graph lower than a text the top wins.
      const double y = std::max(px(top) + 1, std::min(y_of(end.Value) + (above ? -14 : 2), px(bottom) - 13));
      s.Text(x_of(end.Time) - 24, y, text, Extremes_Size, g.Colour);
    };
    mark(in, !out_above, markers[0]);
    mark(out, out_above, markers[1]);
  }

  s.Text(px(left), px(top - Graph_Title_Above), g.Title, Extremes_Size, Black);
  const double label_x = px(left - Label_Room + 50);
  s.Text(label_x, px(top) - 6, Format_Number_Trimmed(hi, 12, g.Decimals), Extremes_Size, Black);
  s.Text(label_x, px(top) + 10, g.Unit, Extremes_Size, Black);
  s.Text(label_x, px(bottom) - 6, Format_Number_Trimmed(lo, 12, g.Decimals), Extremes_Size, Black);
  s.Text(px(left), px(bottom) + 3, Format_Number_Trimmed(t0, 12, 2), Extremes_Size, Black);
  s.Text(px(right) - 30, px(bottom) + 3, Format_Number_Trimmed(t1, 12, 2), Extremes_Size, Black);
  s.Text(px(left + w / 2) - 35, px(bottom + Time_Caption_Below), Time_Axis_Caption, Extremes_Size, Black);
}

// Pads `line` with blanks so that the next field starts in column `column` (1-based), as a print
// with a tab stop does. A line already past the column gets one blank instead of a new line, so
// that every record stays on a line of its own for a program that reads the file back.
void Tab_To(std::string& line, std::size_t column) {
  if (line.size() < column)
    line.append(column - 1 - line.size(), ' ');
  else
    line += ' ';
}

void Add_Line(std::string& out, const std::string& line) {
  out += line;
  out += "\r\n";
}

// A number of the CSV in the shortest text that reads back to the same value: the records hold
// singles, the times doubles.
template <class T>
std::string Csv_Number(T v) {
  char buffer[64];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, v);
  return std::string(buffer, result.ptr);
}

}  // namespace

std::string Circuit_Caption(int circuit_number) {
  return "Circuit " + std::to_string(circuit_number);
}

void Plot_Circuit_Data(Plot_Surface& s, const Circuit_History& h, int circuit_number, bool metric) {
  s.Clear();
  const double tpp = s.Twips_Per_Pixel();
  s.Text(Label_Room / tpp, Circuit_Title_Y / tpp, Circuit_Caption(circuit_number), Title_Size, Black);
  const double w = std::nearbyint((s.Pixel_Width() * tpp - Margin_X) / 3);
  const double height = std::nearbyint(s.Pixel_Height() * tpp - Margin_Y);
  if (w < Smallest_Graph || height < Smallest_Graph) {
    s.Refresh();
    return;
  }

  Graph water{"Water temperature in pipe sections", metric ? "oC" : "oF", {{}, {}}, {}, 0.1, 2, Water_Colour};
  Graph flow{"Flow", metric ? "[m3/h]" : "[yd3/h]", {{}}, {}, 0.1, 2, Quantity_Colour};
  Graph capacity{"Cooling capacity requirement for a closed system",
                 metric ? "[kW]" : "[BtuIT/s]",
                 {{}},
                 {},
                 0.01,
                 3,
                 Quantity_Colour};
  auto shown = [metric](int kind, double v) { return metric ? v : Convert_Unit(true, kind, v); };
  auto add = [](Graph& g, std::size_t curve, double time, double value) {
    g.Curves[curve].push_back({time, value});
    g.Extent_Values.push_back(value);
  };
  for (const History_Record& r : h.History) {
    add(flow, 0, r.Time, shown(Unit_Volume_Rate, r.Flow));
    // The capacity in kW is kJ per second, shown as Btu per second.
    add(capacity, 0, r.Time, shown(Unit_Energy, r.Capacity));
    if (r.Water.empty()) continue;
    water.Curves[0].push_back({r.Time, shown(Unit_Temperature, r.Water[1])});
    water.Curves[1].push_back({r.Time, shown(Unit_Temperature, r.Water.last())});
    for (float v : r.Water)
      water.Extent_Values.push_back(shown(Unit_Temperature, v));
  }

  const Table<History_Record>& records = h.History;
  const double t0 = records.empty() ? 0 : records[1].Time;
  double t1 = records.empty() ? 0 : records.last().Time;
  if (t1 - t0 < 1) t1 = t0 + 1;

  static const char* const in_out[2] = {"in", "out"};
  const Graph* graphs[3] = {&water, &flow, &capacity};
  for (int i = 0; i < 3; ++i) {
    const double left = Label_Room + i * (w + Label_Room);
    Plot_Graph(s, *graphs[i], t0, t1, left, w, height, i == 0 ? in_out : nullptr);
  }
  s.Refresh();
}

std::string Circuit_Data_Text(const Circuit_History& h, int circuit_number) {
  std::string out;
  Add_Line(out, "Seleceted circuit : " + std::to_string(circuit_number));
  const Table<History_Record>& records = h.History;
  const int stations = records.empty() ? 0 : records[1].Water.count();
  for (int k = 1; k <= stations; ++k) {
    Add_Line(out, "Water temperature in pipe section: " + std::to_string(k));
    Add_Line(out, "  Hours    oC");
    for (const History_Record& r : records) {
      std::string line = Format_Number(r.Time, 10, 1);
      Tab_To(line, 15);
      line += Format_Number(r.Water.valid(k) ? double{r.Water[k]} : 0.0, 8, 2);
      Add_Line(out, line);
    }
  }
  Add_Line(out, "Cooling capacity requirement for a closed system");
  Add_Line(out, "  [Hours]    [kW]        ");
  for (const History_Record& r : records) {
    std::string line = Format_Number(r.Time, 10, 2);
    Tab_To(line, 15);
    line += Format_Number(r.Capacity, 8, 3);
    Add_Line(out, line);
  }
  return out;
}

bool Store_Circuit_Data(const std::string& path, const Circuit_History& h, int circuit_number,
                        std::string& message) {
  if (Write_File_Replacing(path, Circuit_Data_Text(h, circuit_number))) return true;
  message = Write_Failed_Message + path;
  return false;
}

std::string Circuit_History_Csv(const Table<Circuit_History>& circuits) {
  int stations = 0;
  for (const Circuit_History& c : circuits)
    for (const History_Record& r : c.History)
      stations = std::max(stations, r.Water.count());
  std::string out = "circuit,time_h,flow_m3_per_h,capacity_kW";
  for (int k = 1; k <= stations; ++k)
    out += ",water_" + std::to_string(k);
  out += '\n';
  for (int c = 1; c <= circuits.count(); ++c)
    for (const History_Record& r : circuits[c].History) {
      out += std::to_string(c) + ',' + Csv_Number(r.Time) + ',' + Csv_Number(r.Flow) + ',' +
             Csv_Number(r.Capacity);
      for (int k = 1; k <= stations; ++k)
        out += ',' + (r.Water.valid(k) ? Csv_Number(r.Water[k]) : std::string());
      out += '\n';
    }
  return out;
}

}  // namespace pvx
