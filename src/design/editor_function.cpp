#include "design/editor_function.h"

#include <algorithm>
#include <cmath>

#include "app/units.h"

namespace pvx {

namespace {

// An amplitude is a difference of two values: of a temperature it takes the factor and not the
// offset of the conversion.
double To_Display(const Function_Session& s, int kind, double value, bool difference) {
  if (s.metric || kind == 0) return value;
  if (difference) return Convert_Unit(true, kind, value) - Convert_Unit(true, kind, 0);
  return Convert_Unit(true, kind, value);
}
double To_Stored(const Function_Session& s, int kind, double value, bool difference) {
  if (s.metric || kind == 0) return value;
  if (difference) return Convert_Unit(false, kind, value) - Convert_Unit(false, kind, 0);
  return Convert_Unit(false, kind, value);
}

// The value of the form that a text box shows, for a session or a const one.
template <class Session>
auto& Value_Of(Session& s, Function_Value v) {
  auto& f = s.current;
  switch (v) {
    case Function_Value::Constant:
      return f.Constant_Value;
    case Function_Value::Average:
      return f.Average;
    case Function_Value::Amplitude:
      return f.Amplitude[s.sine];
    case Function_Value::Frequency:
      return f.Frequency[s.sine];
    case Function_Value::Phase_Shift:
      return f.Phase_Shift[s.sine];
    case Function_Value::Cut_Off:
      return f.Cut_Off_Value;
  }
  return f.Constant_Value;
}

int Kind_Of(const Function_Session& s, Function_Value v) {
  const Function_Unit_Kinds kinds = Function_Family_Unit_Kinds(s.family);
  switch (v) {
    case Function_Value::Frequency:
    case Function_Value::Phase_Shift:
      return 0;
    default:
      return kinds.value_kind;
  }
}

int Decimals_Of(Function_Value v) {
  (void)v;
  return 3;
}

// Sine tables of equal size with a term to show.
void Tidy_Sines(Function_Session& s) {
  Function& f = s.current;
  if (Sine_Count(f) < 1) Add_Sine_Term(f);
  Resize_Sines(f, Sine_Count(f));
  s.sine = std::clamp(s.sine, 1, Sine_Count(f));
  if (Point_Count(f) < 2) {
    while (Point_Count(f) < 2)
      Add_Point_Row(f);
  }
  Resize_Points(f, Point_Count(f));
}

}  // namespace

bool Open_Function_Session(const Project& p, Function_Family family, int number, Function_Session& s,
                           std::string& message) {
  const Table<Function>& table = Function_Table(p, family);
  if (!table.valid(number)) {
    message = std::string("There is no ") + Function_Family_Word(family) + " function " +
              std::to_string(number) + ".";
    return false;
  }
  s = Function_Session{};
  s.family = family;
  s.number = number;
  s.metric = p.Metric_Units != 0;
  s.current = table[number];
  Tidy_Sines(s);
  return true;
}

std::string Function_Value_Text(const Function_Session& s, Function_Value v) {
  const double value = Value_Of(s, v);
  return Format_Number_Trimmed(To_Display(s, Kind_Of(s, v), value, v == Function_Value::Amplitude), 40,
                               Decimals_Of(v));
}

bool Enter_Function_Value(Function_Session& s, Function_Value v, std::string_view text,
                          std::string& message) {
  message.clear();
  double value = Check_Number(text, s.decimal_comma, &message);
  if (!message.empty()) return false;
  Value_Of(s, v) = To_Stored(s, Kind_Of(s, v), value, v == Function_Value::Amplitude);
  return true;
}

std::string Point_Cell_Text(const Function_Session& s, int row, int column) {
  const Function_Unit_Kinds kinds = Function_Family_Unit_Kinds(s.family);
  const Function& f = s.current;
  const double value = column == 1 ? To_Display(s, kinds.time_kind, f.Point_Time[row], false)
                                   : To_Display(s, kinds.value_kind, f.Point_Value[row], false);
  return Format_Number_Trimmed(value, 40, 3);
}

bool Enter_Point_Cell(Function_Session& s, int row, int column, std::string_view text, std::string& message) {
  message.clear();
  Function& f = s.current;
  if (row < 1 || row > Point_Count(f)) return false;
  double value = Check_Number(text, s.decimal_comma, &message);
  if (!message.empty()) return false;
  const Function_Unit_Kinds kinds = Function_Family_Unit_Kinds(s.family);
  if (column == 1) {
    value = To_Stored(s, kinds.time_kind, value, false);
    // Equal times are allowed: they make a jump.
    if ((row > 1 && value < f.Point_Time[row - 1]) ||
        (row < Point_Count(f) && value > f.Point_Time[row + 1])) {
      message = Function_Times_Out_Of_Order;
      return false;
    }
    f.Point_Time[row] = value;
  } else {
    f.Point_Value[row] = To_Stored(s, kinds.value_kind, value, false);
  }
  return true;
}

void Choose_Function(Function_Session& s, Project& p, int typed,
                     const std::function<bool(const std::string& question)>& ask) {
  const int number = Enter_Function_Number(p, s.family, typed, static_cast<std::int16_t>(s.number), ask);
  if (number == s.number) return;
  const bool decimal_comma = s.decimal_comma;
  std::string message;
  Open_Function_Session(p, s.family, number, s, message);
  s.decimal_comma = decimal_comma;
}

bool Read_Function_Table(Function_Session& s, const std::string& path, Function_File_Report& report) {
  Unit_Converter from_imperial;
  if (!s.metric)
    from_imperial = [](bool to_imperial, int kind, double v) { return Convert_Unit(to_imperial, kind, v); };
  return Read_Function_File(path, s.family, from_imperial, s.current, report);
}

bool Function_Changed(const Function_Session& s, const Project& p) {
  const Table<Function>& table = Function_Table(p, s.family);
  return !table.valid(s.number) || !(table[s.number] == s.current);
}

void Apply_Function(const Function_Session& s, Project& p) {
  Table<Function>& table = Function_Table(p, s.family);
  if (table.valid(s.number)) table[s.number] = s.current;
}

std::pair<double, double> Function_Preview_Range(const Function& f, Function_Family family,
                                                 double computation_time) {
  const bool table_range = Active_Form(f) == Function_Form::Piecewise || family == Function_Family::Spring;
  if (table_range && Point_Count(f) >= 1) {
    const auto [lo, hi] = std::minmax_element(f.Point_Time.begin(), f.Point_Time.end());
    double span = *hi - *lo;
    if (!(span > 0)) span = std::max(1.0, std::abs(*lo));
    return {*lo - 0.1 * span, *hi + 0.1 * span};
  }
  return {0.0, computation_time > 0 ? computation_time : 72.0};
}

std::vector<std::pair<double, double>> Function_Preview_Samples(const Function& f, double t0, double t1,
                                                                int n) {
  n = std::max(n, 1);
  const bool piecewise = Active_Form(f) == Function_Form::Piecewise;
  std::vector<double> times;
  times.reserve(static_cast<std::size_t>(n + 1 + Point_Count(f)));
  for (int i = 0; i <= n; ++i)
    times.push_back(t0 + (t1 - t0) * i / n);
  if (piecewise)
    for (double t : f.Point_Time)
      if (t > t0 && t < t1) times.push_back(t);
  std::sort(times.begin(), times.end());
  times.erase(std::unique(times.begin(), times.end()), times.end());
  std::vector<std::pair<double, double>> samples;
  samples.reserve(times.size() + static_cast<std::size_t>(Point_Count(f)));
  for (double t : times) {
    samples.emplace_back(t, Evaluate_Function(f, t));
    if (!piecewise) continue;
    // Where points repeat a time the function jumps: the later values are drawn at that time too,
    // so the jump shows as a vertical step. The cut-off holds for them as for any value.
    for (int i = 2; i <= Point_Count(f); ++i) {
      if (f.Point_Time[i] != t || f.Point_Time[i - 1] != t) continue;
      double v = f.Point_Value[i];
      if (f.Has_Cut_Off != 0 && v < f.Cut_Off_Value) v = f.Cut_Off_Value;
      samples.emplace_back(t, v);
    }
  }
  return samples;
}

void Plot_Function_Frame(Plot_Surface& surface, const Function_Session& s, double computation_time) {
  constexpr Plot_Colour black{0, 0, 0}, grey{160, 160, 160}, curve{200, 0, 0};
  surface.Clear();
  const double width = surface.Pixel_Width(), height = surface.Pixel_Height();
  // Room for the scale texts on the left and the captions below and above.
  const double left = 60, right = width - 15, top = 25, bottom = height - 40;
  if (right <= left || bottom <= top) return;

  const auto [t0, t1] = Function_Preview_Range(s.current, s.family, computation_time);
  const auto samples = Function_Preview_Samples(s.current, t0, t1, 200);
  const Function_Unit_Kinds kinds = Function_Family_Unit_Kinds(s.family);
  auto shown_time = [&](double t) { return To_Display(s, kinds.time_kind, t, false); };
  auto shown_value = [&](double v) { return To_Display(s, kinds.value_kind, v, false); };

  double v_min = shown_value(samples.front().second), v_max = v_min;
  for (const auto& [t, v] : samples) {
    v_min = std::min(v_min, shown_value(v));
    v_max = std::max(v_max, shown_value(v));
  }
  // A flat curve gets a band around it, so it lies in the middle of the frame.
  if (v_max - v_min < 1e-12 * std::max(1.0, std::abs(v_max))) {
    const double pad = std::max(1.0, std::abs(v_max) * 0.1);
    v_min -= pad;
    v_max += pad;
  } else {
    const double pad = 0.05 * (v_max - v_min);
    v_min -= pad;
    v_max += pad;
  }
  const double x_min = shown_time(t0), x_max = shown_time(t1);
  auto px = [&](double x) { return left + (x - x_min) / (x_max - x_min) * (right - left); };
  auto py = [&](double y) { return bottom - (y - v_min) / (v_max - v_min) * (bottom - top); };

  // The zero line, when it lies inside.
  if (v_min < 0 && v_max > 0) surface.Line(left, py(0), right, py(0), grey, Line_Style::Dashed, 1);
  if (x_min < 0 && x_max > 0) surface.Line(px(0), top, px(0), bottom, grey, Line_Style::Dashed, 1);
  surface.Line(left, top, right, top, black, Line_Style::Solid, 1);
  surface.Line(right, top, right, bottom, black, Line_Style::Solid, 1);
  surface.Line(right, bottom, left, bottom, black, Line_Style::Solid, 1);
  surface.Line(left, bottom, left, top, black, Line_Style::Solid, 1);

  for (std::size_t i = 1; i < samples.size(); ++i) {
    const auto& a = samples[i - 1];
    const auto& b = samples[i];
    surface.Line(px(shown_time(a.first)), py(shown_value(a.second)), px(shown_time(b.first)),
                 py(shown_value(b.second)), curve, Line_Style::Solid, 2);
  }

  const Function_Captions captions = Function_Family_Captions(s.family, s.metric);
  auto number = [](double v) { return Format_Number_Trimmed(v, 12, std::abs(v) >= 1e5 ? -2 : 2); };
  surface.Text(4, top - 6, number(v_max), 8, black);
  surface.Text(4, bottom - 12, number(v_min), 8, black);
  surface.Text(left, bottom + 4, number(x_min), 8, black);
  const std::string x_max_text = number(x_max);
  surface.Text(right - 7.0 * static_cast<double>(x_max_text.size()), bottom + 4, x_max_text, 8, black);
  surface.Text((left + right) / 2 - 40, bottom + 20, captions.x_caption, 9, black);
  surface.Text(left, 4, captions.y_caption, 9, black);
}

}  // namespace pvx
