#include "results/history.h"

#include <algorithm>
#include <cctype>
#include <charconv>

#include "app/project_file.h"
#include "app/units.h"
#include "results/line_cut.h"
#include "results/viewer_values.h"

namespace pvx {

bool Is_History_Variable(int variable) {
  return variable == 21 || variable == 20 || Is_Contour_Variable(variable);
}

bool Collect_History(Result_Family& family, const Project& p, const Run_Index& index, int variable,
                     const Table<History_Point>& points, const Table<std::int32_t>& supports,
                     bool to_imperial, History_Scale& scale, History_Data& h, std::string& message) {
  if (!Is_History_Variable(variable)) return false;
  const bool reactions = variable == 21;
  h = History_Data{};
  h.Variable = static_cast<std::int16_t>(variable);
  h.Runs = std::max(1, Number_Of_Runs(family));
  h.Items = reactions ? supports.count() : points.count();
  h.Stored = Storage_Count(index);
  h.Storage_Time = index.Storage_Time;
  const std::size_t size = static_cast<std::size_t>(h.Runs) * static_cast<std::size_t>(h.Items) *
                           static_cast<std::size_t>(h.Stored);
  h.Values.assign(size, 0.0);
  h.Strength.assign(size, 0.0);
  const std::vector<std::string> names = Run_Names(p);
  for (int r = 1; r <= h.Runs; ++r)
    h.Run_Names.push_back(names.size() >= static_cast<std::size_t>(r) ? names[static_cast<std::size_t>(r - 1)]
                                                                      : std::string());

  const int slot = Slot_Of_Variable(variable);
  Plot_Buffers buffers;
  Dimension_Plot_Buffers(family.Layout, buffers);
  // The runs other than the viewer's may not have been looked at yet: their indices tell how many
  // records their files hold.
  for (int r = 1; r <= h.Runs; ++r) {
    Run_Index run_index;
    if (!Read_Run_Index(family, r, p.File_Version, false, run_index, message)) return false;
  }
  for (int r = 1; r <= h.Runs; ++r)
    for (int s = 1; s <= h.Stored; ++s) {
      if (!Read_Result_Variable(family, r, slot, s, variable, to_imperial, buffers, message)) return false;
      for (int i = 1; i <= h.Items; ++i) {
        double value = 0, strength = 0;
        if (reactions) {
          const int support = supports[i];
          value = buffers.Node.valid(support) ? double{buffers.Node[support]} : 0.0;
        } else {
          const History_Point& point = points[i];
          Point_Reading reading;
          if (Value_At_Point(p, buffers, variable, point.Element, point.U, point.V, !to_imperial, reading)) {
            value = reading.Value;
            strength = reading.Has_Strength ? reading.Strength : 0.0;
          }
        }
        HistoryValues(h, r, i, s) = value;
        HistoryStrength(h, r, i, s) = strength;
      }
    }

  Set_History_Axes(h, scale);
  return true;
}

void Set_History_Axes(History_Data& h, History_Scale& scale) {
  if (!scale.Fixed) {
    double low = 0, high = 0;
    if (!h.Values.empty()) {
      const auto [min, max] = std::minmax_element(h.Values.begin(), h.Values.end());
      low = *min;
      high = *max;
    }
    double time_max = h.Stored > 0 && h.Storage_Time.valid(h.Stored) ? h.Storage_Time[h.Stored] : 0.0;
    if (!(time_max > 0)) time_max = 1;
    if (!(high > low)) high = low + 1;
    scale.TimeMin = 0;
    scale.TimeMax = time_max;
    scale.ValueMin = low;
    scale.ValueMax = high;
  }
  h.TimeMin = scale.TimeMin;
  h.TimeMax = scale.TimeMax;
  h.ValueMin = scale.ValueMin;
  h.ValueMax = scale.ValueMax;
  h.TimeScale = 6000 / (h.TimeMax - h.TimeMin);
  h.ValueScale = 4500 / (h.ValueMax - h.ValueMin);
}

double History_Picture_X(const History_Data& h, double time) {
  return History_Picture_Left + (time - h.TimeMin) * h.TimeScale;
}

double History_Picture_Y(const History_Data& h, double value) {
  return History_Picture_Bottom - (value - h.ValueMin) * h.ValueScale;
}

Table<double> History_Difference(const History_Data& h, int run, int a, int b) {
  Table<double> d;
  if (run < 1 || run > h.Runs || a < 1 || a > h.Items || b < 1 || b > h.Items) return d;
  for (int s = 1; s <= h.Stored; ++s)
    d.add(HistoryValues(h, run, a, s) - HistoryValues(h, run, b, s));
  return d;
}

double Difference_Picture_Y(const History_Data& h, double difference) {
  return History_Picture_Bottom - difference * h.ValueScale;
}

std::string History_Axis_Title(int variable, bool metric) {
  if (variable == 21) return metric ? "Reaction Force [kN]" : "Reaction Force [kip]";
  return Cut_Variable_Name(variable, metric);
}

namespace {

// The value of `run`'s first item at time c, between the stored steps around it.
bool Value_At_Time(const History_Data& h, int run, double c, double& result) {
  for (int s = 1; s < h.Stored; ++s) {
    const double t0 = h.Storage_Time[s], t1 = h.Storage_Time[s + 1];
    if (!(t0 <= c && c < t1)) continue;
    const double v0 = HistoryValues(h, run, 1, s), v1 = HistoryValues(h, run, 1, s + 1);
    result = v0 + (c - t0) * (v1 - v0) / (t1 - t0);
    return true;
  }
  return false;
}

// The time at which `run`'s first item first reaches c.
bool Time_Of_Value(const History_Data& h, int run, double c, double& result) {
  for (int s = 1; s <= h.Stored; ++s) {
    const double v = HistoryValues(h, run, 1, s);
    if (!(c <= v)) continue;
    if (s == 1) {
      result = h.Storage_Time[1];
      return true;
    }
    const double v0 = HistoryValues(h, run, 1, s - 1);
    const double t0 = h.Storage_Time[s - 1], t1 = h.Storage_Time[s];
    result = v == v0 ? t0 : t0 + (c - v0) * (t1 - t0) / (v - v0);
    return true;
  }
  return false;
}

void Add_Line(std::string& out, const std::string& line) {
  out += line;
  out += "\r\n";
}

std::string Shortest(double v) {
  char buffer[64];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, v);
  return std::string(buffer, result.ptr);
}

}  // namespace

Table<Intersection_Row> Compute_Intersections(const History_Data& h, Mebin_Kind kind, double c) {
  std::vector<Intersection_Row> rows;
  if (h.Items < 1) return {};
  for (int r = 1; r <= h.Runs; ++r) {
    double result = 0;
    const bool found =
        kind == Mebin_Kind::Time ? Value_At_Time(h, r, c, result) : Time_Of_Value(h, r, c, result);
    if (!found) continue;
    const std::string name =
        static_cast<std::size_t>(r) <= h.Run_Names.size() ? h.Run_Names[static_cast<std::size_t>(r - 1)] : "";
    rows.push_back({name, result, Format_Number_Trimmed(result, 40, 2), r});
  }
  std::stable_sort(rows.begin(), rows.end(),
                   [](const Intersection_Row& a, const Intersection_Row& b) { return a.Result < b.Result; });
  Table<Intersection_Row> sorted;
  for (const Intersection_Row& row : rows)
    sorted.add(row);
  return sorted;
}

Mebin_Line Mebin_Line_Of(const History_Data& h, Mebin_Kind kind, double c) {
  Mebin_Line line;
  if (kind == Mebin_Kind::Time) {
    const double x = History_Picture_X(h, c);
    if (x >= History_Picture_Left && x < History_Picture_Right)
      line = {true, x, History_Picture_Top, x, History_Picture_Bottom};
  } else {
    const double y = History_Picture_Y(h, c);
    if (y >= History_Picture_Top && y < History_Picture_Bottom)
      line = {true, History_Picture_Left, y, History_Picture_Right, y};
  }
  return line;
}

std::string Intersections_Text(const std::string& title, double c, const Table<Intersection_Row>& rows) {
  std::string out;
  Add_Line(out, title);
  Add_Line(out, Shortest(c));
  Add_Line(out, std::to_string(rows.count()));
  for (int i = 1; i <= rows.count(); ++i)
    Add_Line(out, '"' + rows[i].Material + "\"," + Shortest(rows[i].Result) + ',' + std::to_string(i));
  return out;
}

bool Store_Intersections(const std::string& path, const std::string& title, double c,
                         const Table<Intersection_Row>& rows, std::string& message) {
  if (Write_File_Replacing(path, Intersections_Text(title, c, rows))) return true;
  message = Write_Failed_Message + path;
  return false;
}

void Set_Record_Name(Recording_State& state, const std::string& chosen) {
  std::string name = chosen;
  if (name.size() >= 4) {
    std::string ending = name.substr(name.size() - 4);
    for (char& ch : ending)
      ch = static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
    if (ending == ".TXT") name.resize(name.size() - 4);
  }
  state.RecordName = name;
}

std::string Recording_Header(int variable) {
  const char* unit = "";
  switch (variable) {
    case 1:
      unit = "Temperature [oC]";
      break;
    case 2:
      unit = "Maturity [hours]";
      break;
    case 3:
      unit = "C-Maturity [oChours]";
      break;
    case 4:
      unit = "Moisture Potential [-]";
      break;
    case 5:
      unit = "Moisture Content [kg/m3]";
      break;
    case 9:
      unit = "Tensile strength [MPa]";
      break;
    case 10:
      unit = "Compressive strength [MPa]";
      break;
    case 21:
      unit = "Reaction Force [kN]";
      break;
    case 40:
      unit = "D.o.h";
      break;
    default:
      return "";
  }
  return std::string("Time [hours]  ") + unit;
}

std::string Recording_Text(const History_Data& h) {
  std::string out;
  const std::string header = Recording_Header(h.Variable);
  if (!header.empty()) Add_Line(out, header);
  for (int r = 1; r <= h.Runs; ++r) {
    if (h.Runs > 1)
      Add_Line(out, static_cast<std::size_t>(r) <= h.Run_Names.size()
                        ? h.Run_Names[static_cast<std::size_t>(r - 1)]
                        : std::string());
    for (int i = 1; i <= h.Items; ++i) {
      Add_Line(out, "Point " + std::to_string(i));
      for (int s = 1; s <= h.Stored; ++s) {
        std::string line = Format_Number(h.Storage_Time[s], 14, 6);
        // A comma of a print list moves on to the next zone of 14 columns.
        line.append((14 - line.size() % 14) % 14, ' ');
        line += Format_Number(HistoryValues(h, r, i, s), 12, -4);
        Add_Line(out, line);
      }
    }
  }
  return out;
}

bool Recording(Recording_State& state, const History_Data& h, std::string& path, std::string& message) {
  path.clear();
  if (state.RecordName.empty()) {
    message = Collection_Name_Message;
    return false;
  }
  ++state.RecordCount;
  path = state.RecordName + std::to_string(state.RecordCount) + ".txt";
  if (!Write_File_Replacing(path, Recording_Text(h))) {
    message = Write_Failed_Message + path;
    return false;
  }
  message = "File " + path + " is stored ";
  return true;
}

}  // namespace pvx
