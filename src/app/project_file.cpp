#include "app/project_file.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>

#include "app/border_periods.h"

namespace pvx {

namespace {

// ---------------------------------------------------------------------------------------------
// Writing. One call writes one record (a value and a line end) unless a line is open, in which
// case the values are joined by commas until the line is closed.

class Writer {
 public:
  static constexpr bool reading = false;

  bool ok() const { return error_.empty(); }
  const std::string& error() const { return error_; }
  std::string take() { return std::move(out_); }

  void begin_line() {
    in_line_ = true;
    first_ = true;
  }
  void end_line() {
    in_line_ = false;
    out_ += "\r\n";
  }

  void i16(std::int16_t& v) { value(std::to_string(v)); }
  void i32(std::int32_t& v) { value(std::to_string(v)); }
  void f32(float& v) { value(Number_Text(v)); }
  void f64(double& v) { value(Number_Text(v)); }
  void flag(Flag& v) { value(v != 0 ? "#TRUE#" : "#FALSE#"); }
  // A flag that the file holds as a number (-1 or 0).
  void flag_number(Flag& v) { value(v != 0 ? "-1" : "0"); }
  void text(std::string& v) {
    // Texts are quoted with no escaping: a quote or a line end inside would end the value early.
    std::string clean = v;
    for (char& c : clean) {
      if (c == '"') c = '\'';
      if (c == '\r' || c == '\n') c = ' ';
    }
    value("\"" + clean + "\"");
  }

  // Writes the count of a table of i16 or i32 width and returns it for the loop that follows.
  int count_i16(int current, int /*values_per_entry*/, bool /*nonpositive_is_empty*/ = false,
                int /*capacity*/ = std::numeric_limits<int>::max()) {
    if (current > std::numeric_limits<std::int16_t>::max()) {
      fail("a table has more entries than the file can count");
      return 0;
    }
    std::int16_t c = static_cast<std::int16_t>(current);
    i16(c);
    return current;
  }
  int count_i32(int current, int /*values_per_entry*/, bool /*nonpositive_is_empty*/ = false,
                int /*capacity*/ = std::numeric_limits<int>::max()) {
    std::int32_t c = current;
    i32(c);
    return current;
  }

  void fail(const std::string& why) {
    if (error_.empty()) error_ = why;
  }

  static std::string Number_Text(double v) {
    char buffer[64];
    auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, v);
    (void)ec;
    return Exponent_Upper(std::string(buffer, end));
  }
  static std::string Number_Text(float v) {
    char buffer[64];
    auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, v);
    (void)ec;
    return Exponent_Upper(std::string(buffer, end));
  }

 private:
  // "1e-08" is written "1E-08", as the format has always had it.
  static std::string Exponent_Upper(std::string s) {
    for (char& c : s)
      if (c == 'e') c = 'E';
    return s;
  }

  void value(const std::string& v) {
    if (in_line_) {
      if (!first_) out_ += ',';
      first_ = false;
      out_ += v;
    } else {
      out_ += v;
      out_ += "\r\n";
    }
  }

  std::string out_;
  std::string error_;
  bool in_line_ = false;
  bool first_ = true;
};

// ---------------------------------------------------------------------------------------------
// Reading. Values are taken one at a time: a value ends at a comma, a line end or the end of the
// text, whatever the record structure was. After the first fault every read gives 0 and every
// count 0, so the loops over tables end at once.

class Reader {
 public:
  static constexpr bool reading = true;

  explicit Reader(const std::string& text) : s_(text) {}

  bool ok() const { return error_.empty(); }
  const std::string& error() const { return error_; }
  bool at_end() {
    skip_blanks_and_line_ends();
    return pos_ >= s_.size();
  }

  void begin_line() {}
  void end_line() {}

  void i16(std::int16_t& v) {
    v = static_cast<std::int16_t>(
        integer(std::numeric_limits<std::int16_t>::min(), std::numeric_limits<std::int16_t>::max(), "i16"));
  }
  void i32(std::int32_t& v) {
    v = static_cast<std::int32_t>(
        integer(std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max(), "i32"));
  }
  void f32(float& v) {
    std::string t = token("f32");
    float x = 0;
    if (ok() && !Parse_Float(t, x))
      fail("a single-precision number was expected, found \"" + Shorten(t) + "\"");
    v = ok() ? x : 0.0f;
  }
  void f64(double& v) {
    std::string t = token("f64");
    double x = 0;
    if (ok() && !Parse_Double(t, x)) fail("a number was expected, found \"" + Shorten(t) + "\"");
    v = ok() ? x : 0.0;
  }
  void flag(Flag& v) {
    v = As_Flag(integer(std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max(),
                        "flag") != 0);
  }
  void flag_number(Flag& v) { flag(v); }
  void text(std::string& v) {
    skip_blanks();
    v.clear();
    if (!ok()) return;
    if (pos_ >= s_.size()) {
      fail("the file ends where a text was expected");
      return;
    }
    if (s_[pos_] == '"') {
      std::size_t close = s_.find('"', pos_ + 1);
      if (close == std::string::npos) {
        fail("a text is not closed by a quote");
        return;
      }
      v = s_.substr(pos_ + 1, close - pos_ - 1);
      pos_ = close + 1;
      skip_blanks();
      if (pos_ < s_.size() && s_[pos_] != ',' && s_[pos_] != '\r' && s_[pos_] != '\n') {
        fail("a text is followed by \"" + Shorten(s_.substr(pos_, 20)) + "\"");
        return;
      }
      delimiter();
    } else {
      v = token("text");
    }
  }

  // Reads the count of a table. A negative count is a damaged file, except where the table may
  // be given as empty by any count below 1. A count that could not possibly be followed by its
  // entries in the rest of the file (each value takes at least one character) is refused too, so
  // that a damaged count never makes the reader allocate without bound.
  int count_i16(int /*current*/, int values_per_entry, bool nonpositive_is_empty = false,
                int capacity = std::numeric_limits<int>::max()) {
    std::int16_t c = 0;
    i16(c);
    return checked_count(c, values_per_entry, nonpositive_is_empty, capacity);
  }
  int count_i32(int /*current*/, int values_per_entry, bool nonpositive_is_empty = false,
                int capacity = std::numeric_limits<int>::max()) {
    std::int32_t c = 0;
    i32(c);
    return checked_count(c, values_per_entry, nonpositive_is_empty, capacity);
  }

  void fail(const std::string& why) {
    if (error_.empty())
      error_ =
          why + " (value " + std::to_string(values_read_) + ", line " + std::to_string(line_at(pos_)) + ")";
  }

 private:
  int checked_count(long long c, int values_per_entry, bool nonpositive_is_empty, int capacity) {
    if (!ok()) return 0;
    if (c <= 0) {
      if (c < 0 && !nonpositive_is_empty) fail("a negative count");
      return 0;
    }
    if (c > capacity) {
      fail("a count of " + std::to_string(c) + " is beyond the capacity of " + std::to_string(capacity));
      return 0;
    }
    const long long remaining = static_cast<long long>(s_.size() - pos_);
    if (c * std::max(values_per_entry, 1) > remaining) {
      fail("a count of " + std::to_string(c) + " is more than the rest of the file can hold");
      return 0;
    }
    return static_cast<int>(c);
  }

  long long integer(long long lo, long long hi, const char* kind) {
    std::string t = token(kind);
    if (!ok()) return 0;
    if (t == "#TRUE#") return -1;
    if (t == "#FALSE#") return 0;
    double x = 0;
    if (!Parse_Double(t, x)) {
      fail(std::string("a whole number was expected, found \"") + Shorten(t) + "\"");
      return 0;
    }
    double r = std::nearbyint(x);
    if (r < static_cast<double>(lo) || r > static_cast<double>(hi)) {
      fail(std::string("the number ") + Shorten(t) + " does not fit a " + kind);
      return 0;
    }
    return static_cast<long long>(r);
  }

  void skip_blanks() {
    while (pos_ < s_.size() && (s_[pos_] == ' ' || s_[pos_] == '\t'))
      ++pos_;
  }
  void skip_blanks_and_line_ends() {
    while (pos_ < s_.size() && (s_[pos_] == ' ' || s_[pos_] == '\t' || s_[pos_] == '\r' || s_[pos_] == '\n'))
      ++pos_;
  }

  // Consumes the end of a value: one comma (and a line end right behind it), or one line end.
  void delimiter() {
    if (pos_ >= s_.size()) return;
    if (s_[pos_] == ',') {
      ++pos_;
      skip_blanks();
      if (pos_ < s_.size() && (s_[pos_] == '\r' || s_[pos_] == '\n')) line_end();
    } else {
      line_end();
    }
  }
  void line_end() {
    if (pos_ < s_.size() && s_[pos_] == '\r') ++pos_;
    if (pos_ < s_.size() && s_[pos_] == '\n') ++pos_;
  }

  std::string token(const char* kind) {
    if (!ok()) return {};
    skip_blanks();
    if (pos_ >= s_.size()) {
      fail(std::string("the file ends where a value (") + kind + ") was expected");
      return {};
    }
    std::size_t start = pos_;
    while (pos_ < s_.size() && s_[pos_] != ',' && s_[pos_] != '\r' && s_[pos_] != '\n')
      ++pos_;
    std::size_t end = pos_;
    while (end > start && (s_[end - 1] == ' ' || s_[end - 1] == '\t'))
      --end;
    delimiter();
    ++values_read_;
    return s_.substr(start, end - start);
  }

  int line_at(std::size_t pos) const {
    return 1 + static_cast<int>(
                   std::count(s_.begin(), s_.begin() + static_cast<long>(std::min(pos, s_.size())), '\n'));
  }

  static std::string Shorten(const std::string& t) { return t.size() > 40 ? t.substr(0, 40) + "..." : t; }

  // A number as the file holds it: plain decimal with a point, an optional exponent (E or D).
  static bool Number_Syntax(const std::string& t, std::string& canonical) {
    canonical.clear();
    std::size_t i = 0;
    if (i < t.size() && (t[i] == '+' || t[i] == '-')) {
      if (t[i] == '-') canonical += '-';
      ++i;
    }
    int digits = 0;
    while (i < t.size() && std::isdigit(static_cast<unsigned char>(t[i])))
      canonical += t[i++], ++digits;
    if (i < t.size() && t[i] == '.') {
      canonical += t[i++];
      while (i < t.size() && std::isdigit(static_cast<unsigned char>(t[i])))
        canonical += t[i++], ++digits;
    }
    if (digits == 0) return false;
    if (i < t.size() && (t[i] == 'E' || t[i] == 'e' || t[i] == 'D' || t[i] == 'd')) {
      canonical += 'e';
      ++i;
      if (i < t.size() && (t[i] == '+' || t[i] == '-')) canonical += t[i++];
      int exponent_digits = 0;
      while (i < t.size() && std::isdigit(static_cast<unsigned char>(t[i])))
        canonical += t[i++], ++exponent_digits;
      if (exponent_digits == 0) return false;
    }
    return i == t.size();
  }
  static bool Parse_Double(const std::string& t, double& x) {
    std::string c;
    if (!Number_Syntax(t, c)) return false;
    auto [end, ec] = std::from_chars(c.data(), c.data() + c.size(), x);
    return ec == std::errc() && end == c.data() + c.size() && std::isfinite(x);
  }
  static bool Parse_Float(const std::string& t, float& x) {
    std::string c;
    if (!Number_Syntax(t, c)) return false;
    auto [end, ec] = std::from_chars(c.data(), c.data() + c.size(), x);
    return ec == std::errc() && end == c.data() + c.size() && std::isfinite(x);
  }

  const std::string& s_;
  std::size_t pos_ = 0;
  std::size_t values_read_ = 0;
  std::string error_;
};

// ---------------------------------------------------------------------------------------------
// The file order, once for both directions. `io` is a Writer or a Reader; `version` is the
// version being written or read, clamped to 109. A table is sized to the count just read before
// its entries are read into it.

template <class IO>
void Exchange_Macro_Values(IO& io, Macro_Values& m) {
  io.f32(m.Dead_Weight_At);
  io.f32(m.Present_From);
  io.f32(m.Maturity);
  io.f32(m.Potential);
  io.f32(m.Temperature);
  io.f32(m.Thickness);
  io.f32(m.Present_Until);
  io.f32(m.Moisture_Content);
}

template <class IO>
void Exchange_Function(IO& io, Function& f) {
  io.flag_number(f.Is_Constant);
  io.f64(f.Constant_Value);
  io.flag_number(f.Is_Periodical);
  int sines = io.count_i16(Sine_Count(f), 3);
  if constexpr (IO::reading) Resize_Sines(f, sines);
  io.f64(f.Average);
  for (int k = 1; k <= sines && io.ok(); ++k) {
    io.f64(f.Amplitude[k]);
    io.f64(f.Frequency[k]);
    io.f64(f.Phase_Shift[k]);
  }
  io.flag_number(f.Is_Piecewise);
  int points = io.count_i16(Point_Count(f), 2);
  if constexpr (IO::reading) Resize_Points(f, points);
  for (int k = 1; k <= points && io.ok(); ++k) {
    io.f64(f.Point_Time[k]);
    io.f64(f.Point_Value[k]);
  }
  io.flag_number(f.Has_Cut_Off);
  io.f64(f.Cut_Off_Value);
}

template <class IO>
void Exchange_Function_Family(IO& io, Table<Function>& table) {
  int n = io.count_i16(table.count(), 8);
  if constexpr (IO::reading) table.resize(n);
  for (int k = 1; k <= n && io.ok(); ++k)
    Exchange_Function(io, table[k]);
}

template <class IO>
void Exchange_Thermal_Period(IO& io, Thermal_Period& t) {
  io.flag(t.Convection_On);
  io.f64(t.Convection_Coefficient);
  io.flag(t.Radiation_On);
  io.f64(t.Es);
  io.f64(t.Ea);
  io.f64(t.Er);
  io.f64(t.From);
  io.f64(t.Until);
  io.i16(t.Temperature_Function);
  io.i16(t.Radiation_Function);
  if constexpr (IO::reading) {
    // The switches decide, whatever numbers stand behind them.
    if (t.Convection_On == 0) t.Convection_Coefficient = 0;
    if (t.Radiation_On == 0) t.Es = t.Ea = t.Er = 0;
  }
}

template <class IO>
void Exchange_Hygral_Period(IO& io, Hygral_Period& h) {
  io.f64(h.From);
  io.f64(h.Until);
  io.i16(h.Potential_Function);
  io.f64(h.Transfer_Coefficient);
  io.i16(h.Pressure_Kind);
  io.flag(h.Is_Water_Pressure);
  io.i16(h.Water_Pressure_Function);
  io.f64(h.Constant_Level);
}

// A design border has hygral periods in the file; a mesh border has not (the reader gives it those
// of its design border, see border_periods.h).
template <class IO>
void Exchange_Border(IO& io, Border& b, bool with_hygral_periods) {
  io.i16(b.Node_A);
  io.i16(b.Node_B);
  io.flag_number(b.Thermal_Active);
  io.flag_number(b.Hygral_Active);
  int thermal = io.count_i16(b.Thermal_Periods.count(), 10);
  if constexpr (IO::reading) b.Thermal_Periods.resize(thermal);
  for (int k = 1; k <= thermal && io.ok(); ++k)
    Exchange_Thermal_Period(io, b.Thermal_Periods[k]);
  if (!with_hygral_periods) {
    if constexpr (IO::reading) b.Hygral_Periods.clear();
    return;
  }
  int hygral = io.count_i16(b.Hygral_Periods.count(), 8);
  if constexpr (IO::reading) b.Hygral_Periods.resize(hygral);
  for (int k = 1; k <= hygral && io.ok(); ++k)
    Exchange_Hygral_Period(io, b.Hygral_Periods[k]);
}

template <class IO>
void Exchange_Circuit(IO& io, Circuit& c) {
  io.f64(c.Liquid_Capacity);
  io.f64(c.Diameter);
  io.f64(c.Active_Until);
  io.i16(c.Flow_Function);
  io.i16(c.Temperature_Function);
  io.flag(c.Closed_Circuit);
  io.f64(c.Active_From);
  io.f64(c.Transfer_Coefficient);
  if constexpr (!IO::reading) {
    if (c.Pipe_Node.count() != c.Pipe_Count || c.Pipe_Connection.count() != c.Pipe_Count ||
        c.Distance.count() != c.Pipe_Count + 1)
      Resize_Pipes(c, std::max<int>(c.Pipe_Count, 0));
  }
  int pipes = io.count_i16(c.Pipe_Count, 11);
  if constexpr (IO::reading) Resize_Pipes(c, pipes);
  for (int k = 1; k <= pipes && io.ok(); ++k) {
    io.i16(c.Pipe_Node[k]);
    io.f64(c.Distance[k]);
    for (int j = 1; j <= 9; ++j)
      io.i16(c.Pipe_Connection[k][j]);
  }
  if constexpr (IO::reading) {
    if (!io.ok()) return;
  }
  io.f64(c.Distance[pipes + 1]);
}

template <class IO>
void Exchange_Support(IO& io, Support& s) {
  io.f64(s.Angle);
  io.i16(s.Element);
  io.f64(s.Until);
  io.f64(s.Local_Y);
  io.flag(s.Is_Fixed);
  io.flag(s.Has_Offset);
  io.i16(s.Displacement_Function);
  io.flag(s.Is_Global);
  io.i16(s.Node_A);
  io.i16(s.Node_B);
  io.flag(s.Has_Function);
  io.f64(s.Local_X);
  io.flag(s.Is_Spring);
  io.i16(s.Spring_Function);
  io.f64(s.Present_From);
  io.f64(s.X);
  io.f64(s.Y);
}

template <class IO>
void Exchange_Load(IO& io, Load& l) {
  io.f64(l.Angle);
  io.f64(l.Work_Value);
  io.i16(l.Element);
  io.f64(l.Until);
  io.f64(l.Local_Y);
  io.f64(l.Factor);
  io.f64(l.Value);
  io.flag(l.Is_Level);
  io.i16(l.Load_Function);
  io.flag(l.Is_Global);
  io.i16(l.Node_A);
  io.i16(l.Node_B);
  io.f64(l.Node_Spacing);
  io.f64(l.Level);
  io.flag(l.Is_Function);
  io.f64(l.Local_X);
  io.f64(l.Work_Offset);
  io.f64(l.Present_From);
  io.f64(l.X);
  io.f64(l.Y);
}

template <class IO>
void Exchange_Rebar(IO& io, Rebar& r) {
  io.flag(r.Active);
  io.f64(r.Direction_Cos);
  io.f64(r.Diameter);
  for (int k = 1; k <= 12; ++k)
    io.i32(r.Dof[k]);
  io.i32(r.Element_Number);
  io.f64(r.Bar_Offset);
  io.f64(r.Lateral_Coefficient);
  io.f64(r.Length);
  io.text(r.Material);
  io.i16(r.Material_Number);
  for (int k = 1; k <= 4; ++k) {
    io.f64(r.Node_Factor_A[k]);
    io.f64(r.Node_Factor_B[k]);
  }
  io.f64(r.Direction_Sin);
  io.f64(r.Until);
  io.f64(r.From);
  io.f64(r.X1);
  io.f64(r.Y1);
  io.f64(r.X2);
  io.f64(r.Y2);
}

template <class IO>
void Exchange_Interface(IO& io, Interface& i, bool mesh) {
  if (mesh) io.flag(i.Active);
  io.i32(i.Node_A);
  io.i32(i.Node_B);
  io.text(i.Layer_Material);
  io.i16(i.Layer_Type);
  if (mesh) {
    io.f64(i.Local_Y);
    io.f64(i.Local_X);
  }
}

template <class IO, class T, class F>
void Exchange_Table_I16(IO& io, Table<T>& table, int values_per_entry, F&& each,
                        int capacity = std::numeric_limits<int>::max()) {
  int n = io.count_i16(table.count(), values_per_entry, false, capacity);
  if constexpr (IO::reading) table.resize(n);
  for (int k = 1; k <= n && io.ok(); ++k)
    each(table[k]);
}

template <class IO, class T, class F>
void Exchange_Table_I32(IO& io, Table<T>& table, int values_per_entry, F&& each,
                        int capacity = std::numeric_limits<int>::max()) {
  int n = io.count_i32(table.count(), values_per_entry, false, capacity);
  if constexpr (IO::reading) table.resize(n);
  for (int k = 1; k <= n && io.ok(); ++k)
    each(table[k]);
}

// Everything behind record 2 (the database name), which the caller handles.
template <class IO>
void Exchange_Body(IO& io, Project& p, int version) {
  for (auto& line : p.Project_Text)
    io.text(line);

  io.flag(p.Rect_Grid_Snap);
  io.flag(p.Rect_Grid_Visible);
  io.f64(p.Grid_X_Min);
  io.f64(p.Grid_X_Max);
  io.f64(p.Grid_Y_Min);
  io.f64(p.Grid_Y_Max);
  io.f64(p.Grid_X_Increment);
  io.f64(p.Grid_Y_Increment);
  io.flag(p.Circ_Grid_Snap);
  io.flag(p.Circ_Grid_Visible);
  io.f64(p.Circ_X_Center);
  io.f64(p.Circ_Y_Center);
  io.f64(p.Circ_Outer_Radius);
  if (version >= Version_Inner_Radius) {
    io.f64(p.Circ_Inner_Radius);
  } else if constexpr (IO::reading) {
    p.Circ_Inner_Radius = 750;
  }
  io.f64(p.Circ_Start_Angle);
  io.f64(p.Circ_End_Angle);
  io.f64(p.Circ_Angle_Increment);
  io.f64(p.Snap_Size);
  io.f32(p.Mouse_Radius);
  io.i16(p.Snap_Mode);
  io.f64(p.Reserved_Value_1);
  io.f64(p.Reserved_Value_2);

  // Design nodes and polygons: a count below 1 means none.
  int nodes = io.count_i32(Node_Count(p), 2, true);
  if constexpr (IO::reading) {
    p.Node_X.resize(nodes);
    p.Node_Y.resize(nodes);
  }
  for (int k = 1; k <= nodes && io.ok(); ++k) {
    io.begin_line();
    io.f64(p.Node_X[k]);
    io.f64(p.Node_Y[k]);
    io.end_line();
  }
  int polygons = io.count_i16(p.Polygon.count(), 5, true);
  if constexpr (IO::reading) p.Polygon.resize(polygons);
  for (int k = 1; k <= polygons && io.ok(); ++k) {
    io.text(p.Polygon[k].Name);
    io.begin_line();
    for (int j = 1; j <= 4; ++j)
      io.i16(p.Polygon[k].Corner[j]);
    io.end_line();
  }

  Exchange_Table_I16(io, p.Macro, 13, [&](Macro& m) {
    io.text(m.Material);
    for (int j = 1; j <= 4; ++j)
      io.i16(m.Corner[j]);
    Exchange_Macro_Values(io, m);
  });

  Exchange_Function_Family(io, p.Temperature_Functions);
  Exchange_Function_Family(io, p.Radiation_Functions);
  Exchange_Function_Family(io, p.Flow_Functions);
  Exchange_Function_Family(io, p.Displacement_Functions);
  Exchange_Function_Family(io, p.Spring_Functions);
  Exchange_Function_Family(io, p.Potential_Functions);
  Exchange_Function_Family(io, p.Water_Pressure_Functions);
  if (version >= Version_Load_Family) Exchange_Function_Family(io, p.Load_Functions);

  Exchange_Table_I16(io, p.Border, 6, [&](Border& b) { Exchange_Border(io, b, true); });
  Exchange_Table_I16(io, p.Circuit, 10, [&](Circuit& c) { Exchange_Circuit(io, c); });

  io.flag(p.Mesh_Valid);
  io.i32(p.Current_Macro);
  io.i32(p.Current_Node);
  io.i16(p.Current_Circuit);
  io.i16(p.Current_Border);

  Exchange_Table_I16(io, p.Split, 3, [&](Split_Record& s) {
    io.i16(s.Element);
    io.i16(s.Side);
    int division = io.count_i16(s.Fractions.count(), 1);
    if constexpr (IO::reading) s.Fractions.resize(division);
    for (int k = 1; k <= division && io.ok(); ++k)
      io.f64(s.Fractions[k]);
  });
  if constexpr (IO::reading) p.Split_Position = static_cast<std::int16_t>(p.Split.count());

  Exchange_Table_I32(io, p.Mesh_Node, 2, [&](Mesh_Node& n) {
    io.f64(n.X);
    io.f64(n.Y);
  });

  Exchange_Table_I32(
      io, p.Mesh_Element, 13,
      [&](Mesh_Element& e) {
        io.text(e.Material);
        for (int j = 1; j <= 4; ++j)
          io.i16(e.Corner[j]);
        io.i16(e.Macro_Number);
        Exchange_Macro_Values(io, e);
        if (version >= Version_Dof) {
          for (int j = 1; j <= 8; ++j)
            io.i32(e.Dof[j]);
        } else if constexpr (IO::reading) {
          for (int j = 1; j <= 4; ++j) {
            e.Dof[2 * j - 1] = 2 * e.Corner[j] - 1;
            e.Dof[2 * j] = 2 * e.Corner[j];
          }
        }
      },
      Max_Mesh_Elements);

  Exchange_Table_I16(io, p.Mesh_Border, 5, [&](Border& b) { Exchange_Border(io, b, false); });

  io.f64(p.Computation_Time);
  Exchange_Table_I16(io, p.Period, 4, [&](Period& t) {
    io.f64(t.From);
    io.f64(t.Until);
    io.f64(t.Storage_Each);
    io.f64(t.Time_Increment);
  });

  Out_Of_Plane& o = p.Out_Of_Plane;
  io.flag(o.Plane_Stress);
  io.flag(o.Plane_Strain);
  io.flag(o.Axisymmetric);
  io.f64(o.Offset_Radius);
  io.flag(o.Rotation_X_Fixed);
  io.flag(o.Rotation_Y_Fixed);
  io.flag(o.Dilatation_Fixed);

  int areas = io.count_i16(p.Area_T.count(), 7);
  int lines = io.count_i16(p.Line_T.count(), 5);
  int points = io.count_i16(p.Point_T.count(), 5);
  if constexpr (IO::reading) {
    p.Area_T.resize(areas);
    p.Line_T.resize(lines);
    p.Point_T.resize(points);
  }
  for (int k = 1; k <= areas && io.ok(); ++k) {
    Area_T& a = p.Area_T[k];
    io.f64(a.Present_From);
    io.f64(a.Until);
    io.i16(a.Temperature_Function);
    io.f64(a.X1);
    io.f64(a.X2);
    io.f64(a.Y1);
    io.f64(a.Y2);
  }
  for (int k = 1; k <= lines && io.ok(); ++k) {
    Line_T& l = p.Line_T[k];
    io.f64(l.Present_From);
    io.f64(l.Until);
    io.i16(l.Temperature_Function);
    io.i16(l.Node_A);
    io.i16(l.Node_B);
  }
  for (int k = 1; k <= points && io.ok(); ++k) {
    Point_T& t = p.Point_T[k];
    io.f64(t.Present_From);
    io.f64(t.Until);
    io.i16(t.Temperature_Function);
    io.f64(t.X);
    io.f64(t.Y);
  }

  Exchange_Table_I16(io, p.Point_Support, 17, [&](Support& s) { Exchange_Support(io, s); });
  Exchange_Table_I16(io, p.Line_Support, 17, [&](Support& s) { Exchange_Support(io, s); });

  if (version >= Version_Mesh_Supports) {
    Exchange_Table_I16(io, p.Mesh_Support, 17, [&](Support& s) {
      Exchange_Support(io, s);
      if (version >= Version_Dof) {
        for (int j = 1; j <= 4; ++j)
          io.i32(s.Dof[j]);
      } else if constexpr (IO::reading) {
        s.Dof[1] = 2 * s.Node_A - 1;
        s.Dof[2] = 2 * s.Node_A;
        s.Dof[3] = 2 * s.Node_B - 1;
        s.Dof[4] = 2 * s.Node_B;
      }
    });
  } else if constexpr (IO::reading) {
    p.Mesh_Support.clear();
  }

  if (version >= Version_Loads) {
    int point_loads = io.count_i16(p.Point_Load.count(), 20);
    int line_loads = io.count_i16(p.Line_Load.count(), 20);
    if constexpr (IO::reading) {
      p.Point_Load.resize(point_loads);
      p.Line_Load.resize(line_loads);
    }
    for (int k = 1; k <= point_loads && io.ok(); ++k)
      Exchange_Load(io, p.Point_Load[k]);
    for (int k = 1; k <= line_loads && io.ok(); ++k)
      Exchange_Load(io, p.Line_Load[k]);
  } else if constexpr (IO::reading) {
    p.Point_Load.clear();
    p.Line_Load.clear();
  }

  io.text(p.Result_File_Name);
  io.flag(p.Replace_Material);
  io.flag(p.Mechanical_Included);
  if (p.Replace_Material != 0) {
    Exchange_Table_I16(io, p.Run_Material, 1, [&](std::int16_t& m) { io.i16(m); });
  } else if constexpr (IO::reading) {
    p.Run_Material.clear();
  }

  io.i32(p.Doubled_Node_Count);

  int interfaces = io.count_i16(p.Interface.count(), 4);
  int mesh_interfaces = io.count_i16(p.Mesh_Interface.count(), 7, false, Max_Mesh_Interfaces);
  if constexpr (IO::reading) {
    p.Interface.resize(interfaces);
    p.Mesh_Interface.resize(mesh_interfaces);
  }
  for (int k = 1; k <= interfaces && io.ok(); ++k)
    Exchange_Interface(io, p.Interface[k], false);
  for (int k = 1; k <= mesh_interfaces && io.ok(); ++k)
    Exchange_Interface(io, p.Mesh_Interface[k], true);

  Exchange_Table_I32(io, p.Rebar, 40, [&](Rebar& r) { Exchange_Rebar(io, r); });
  Exchange_Table_I32(
      io, p.Mesh_Rebar, 40, [&](Rebar& r) { Exchange_Rebar(io, r); }, Max_Mesh_Rebars);

  io.flag(p.Constant_Shear);

  if (version >= Version_Colours) {
    Exchange_Table_I16(io, p.Material_Color, 1, [&](std::int32_t& c) { io.i32(c); });
  } else if constexpr (IO::reading) {
    p.Material_Color.clear();
  }

  if (version >= Version_Damped_Start) {
    io.i16(p.Damped_Start_Steps);
  } else if constexpr (IO::reading) {
    p.Damped_Start_Steps = 0;
  }
}

int Clamp_Version(int version) {
  return std::min(version, Current_File_Version);
}

}  // namespace

int Save_Version(const Project& p) {
  return p.Damped_Start_Steps != 0 ? Version_Damped_Start : Version_Colours;
}

std::string Write_Project_Text(const Project& p, int version, const std::string& database_record) {
  Writer w;
  Project copy = p;
  std::int16_t v = static_cast<std::int16_t>(version);
  w.i16(v);
  std::string db = database_record;
  w.text(db);
  Exchange_Body(w, copy, Clamp_Version(version));
  return w.take();
}

bool Parse_Project_Text(const std::string& text, Project& p, std::string& database_record,
                        Read_Report& report) {
  New_Project(p);
  Reader r(text);
  std::int16_t version = 0;
  r.i16(version);
  r.text(database_record);
  if (r.ok()) {
    p.File_Version = version;
    Exchange_Body(r, p, Clamp_Version(version));
  }
  if (!r.ok()) {
    report.message = File_Cannot_Be_Opened;
    report.detail = r.error();
    return false;
  }
  // The file holds no hygral periods of mesh borders; without them a specimen would never dry.
  Restore_Mesh_Hygral_Periods(p);
  return true;
}

bool Write_File_Replacing(const std::string& path, const std::string& text) {
  namespace fs = std::filesystem;
  const std::string temporary = path + ".saving";
  bool ok = false;
  {
    std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
    if (out) {
      out.write(text.data(), static_cast<std::streamsize>(text.size()));
      out.flush();
      ok = static_cast<bool>(out);
    }
  }
  std::error_code ec;
  if (ok) {
    fs::rename(temporary, path, ec);
    ok = !ec;
  }
  if (!ok) fs::remove(temporary, ec);
  return ok;
}

std::string getdir(const std::string& path) {
  std::size_t k = path.find_last_of("/\\");
  return k == std::string::npos ? std::string() : path.substr(0, k + 1);
}

std::string File_Part(const std::string& path) {
  std::size_t k = path.find_last_of("/\\");
  return k == std::string::npos ? path : path.substr(k + 1);
}

std::string Join_Path(const std::string& work_directory, const std::string& name) {
  if (work_directory.empty()) return name;
  const char last = work_directory.back();
  if (last == '/' || last == '\\') return work_directory + name;
  return work_directory + "/" + name;
}

namespace {

bool Read_Whole_File(const std::string& path, std::string& text) {
  std::error_code ec;
  if (!std::filesystem::is_regular_file(path, ec)) return false;
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  std::ostringstream s;
  s << in.rdbuf();
  if (in.bad()) return false;
  text = s.str();
  return true;
}

// Directory names compared as text ignoring case and a trailing separator.
bool Same_Directory(std::string a, std::string b) {
  auto strip = [](std::string& s) {
    while (s.size() > 1 && (s.back() == '/' || s.back() == '\\'))
      s.pop_back();
    for (char& c : s)
      c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  };
  strip(a);
  strip(b);
  return a == b;
}

}  // namespace

bool Read_Project(const std::string& path, const std::string& work_directory, Project& p,
                  Read_Report& report) {
  std::string text;
  if (!Read_Whole_File(path, text)) {
    report.message = File_Cannot_Be_Opened;
    report.detail = "the file does not exist or cannot be read";
    return false;
  }
  Project fresh;
  std::string database_record;
  if (!Parse_Project_Text(text, fresh, database_record, report)) return false;
  fresh.Project_File = path;
  fresh.Project_Saved = False_Flag;
  // The database is looked for in the work directory, whatever directory the file names.
  fresh.Material_Database_Path = Join_Path(work_directory, File_Part(database_record));
  Set_Result_Names(fresh);
  p = std::move(fresh);
  return true;
}

bool Save_Project(Project& p, const std::string& work_directory, Save_Report& report) {
  namespace fs = std::filesystem;
  p.Project_Saved = False_Flag;
  const std::string& target = p.Project_File;
  if (target.empty()) {
    report.error = "No project file name given.";
    return false;
  }

  std::string database_record;
  const std::string& database = p.Material_Database_Path;
  if (database.empty()) {
    database_record.clear();  // a project that never had a database names none
  } else if (Same_Directory(getdir(database), work_directory)) {
    database_record = File_Part(database);
  } else {
    // Keep the project self-contained: the database travels with it as <project>.txt.
    std::string copy = target.size() >= 3 ? target.substr(0, target.size() - 3) + "txt" : target + ".txt";
    std::error_code ec;
    fs::copy_file(database, copy, fs::copy_options::overwrite_existing, ec);
    if (!ec) {
      const std::string short_name = File_Part(copy);
      report.messages.push_back("Material Database File is saved as:  " + short_name);
      database_record = short_name;
      p.Material_Database_Path = Join_Path(work_directory, short_name);
    } else {
      report.messages.push_back(
          "With making a copy of file (" + database + ") to file (" + copy +
          ") an error occured ! The complete path is stored of the original database in the "
          ".PVX file ! ");
      database_record = database;
    }
  }

  const int version = Save_Version(p);
  p.File_Version = static_cast<std::int16_t>(version);
  Writer w;
  std::int16_t v = static_cast<std::int16_t>(version);
  w.i16(v);
  w.text(database_record);
  Exchange_Body(w, p, version);
  if (!w.ok()) {
    report.error = "The project cannot be saved: " + w.error() + ".";
    return false;
  }
  const std::string text = w.take();

  if (!Write_File_Replacing(target, text)) {
    report.error = "File " + target + " cannot be written.";
    return false;
  }
  p.Project_Saved = True_Flag;
  return true;
}

}  // namespace pvx
