#include "design/time_function.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fstream>
#include <sstream>

namespace pvx {

namespace {

double Periodical_Value(const Function& f, double t) {
  // The three term tables are kept the same size; should a damaged record differ, only the
  // complete terms count.
  const int terms = std::min({f.Frequency.count(), f.Amplitude.count(), f.Phase_Shift.count()});
  double sum = f.Average;
  for (int k = 1; k <= terms; ++k)
    sum += f.Amplitude[k] * std::sin(f.Frequency[k] * Function_Day_Factor * (t - f.Phase_Shift[k]));
  return sum;
}

double Piecewise_Value(const Function& f, double t) {
  return Piecewise_Linear(f.Point_Time, f.Point_Value, t);
}

}  // namespace

double Piecewise_Linear(const Table<double>& times, const Table<double>& values, double t) {
  const int points = std::min(times.count(), values.count());
  if (points < 1) return 0;
  if (t <= times[1]) return values[1];
  for (int i = 2; i <= points; ++i) {
    if (t <= times[i]) {
      const double span = times[i] - times[i - 1];
      if (span <= 0) return values[i - 1];
      return values[i - 1] + (values[i] - values[i - 1]) * (t - times[i - 1]) / span;
    }
  }
  return values[points];
}

double Evaluate_Function(const Function& f, double t) {
  double result = 0;
  if (f.Is_Constant != 0)
    result = f.Constant_Value;
  else if (f.Is_Periodical != 0)
    result = Periodical_Value(f, t);
  else if (f.Is_Piecewise != 0)
    result = Piecewise_Value(f, t);
  if (f.Has_Cut_Off != 0 && result < f.Cut_Off_Value) result = f.Cut_Off_Value;
  return result;
}

Function_Form Active_Form(const Function& f) {
  if (f.Is_Constant != 0) return Function_Form::Constant;
  if (f.Is_Periodical != 0) return Function_Form::Periodical;
  if (f.Is_Piecewise != 0) return Function_Form::Piecewise;
  return Function_Form::Constant;
}

void Set_Function_Form(Function& f, Function_Form form) {
  f.Is_Constant = As_Flag(form == Function_Form::Constant);
  f.Is_Periodical = As_Flag(form == Function_Form::Periodical);
  f.Is_Piecewise = As_Flag(form == Function_Form::Piecewise);
}

int Add_Sine_Term(Function& f) {
  f.Amplitude.add(3);
  f.Frequency.add(1);
  return f.Phase_Shift.add(0);
}

bool Delete_Sine_Term(Function& f, int k) {
  if (Sine_Count(f) <= 1 || !f.Frequency.valid(k)) return false;
  f.Frequency.remove(k);
  if (f.Amplitude.valid(k)) f.Amplitude.remove(k);
  if (f.Phase_Shift.valid(k)) f.Phase_Shift.remove(k);
  return true;
}

int Add_Point_Row(Function& f) {
  const int n = Point_Count(f);
  Resize_Points(f, n);  // both tables the same size before growing them
  if (n == 0) {
    f.Point_Time.add(0);
    return f.Point_Value.add(0);
  }
  double spacing = n >= 2 ? f.Point_Time[n] - f.Point_Time[n - 1] : 0;
  if (!(spacing > 0)) spacing = 1;
  f.Point_Time.add(f.Point_Time[n] + spacing);
  return f.Point_Value.add(f.Point_Value[n]);
}

bool Delete_Point_Row(Function& f, int row, std::string& message) {
  if (Point_Count(f) <= 2) {
    message = At_Least_Two_Points_Message;
    return false;
  }
  if (!f.Point_Time.valid(row)) return false;
  f.Point_Time.remove(row);
  if (f.Point_Value.valid(row)) f.Point_Value.remove(row);
  return true;
}

void Delete_All_But_Two_Rows(Function& f) {
  if (Point_Count(f) > 2) Resize_Points(f, 2);
}

Function_Captions Function_Family_Captions(Function_Family family, bool metric) {
  const char* time = "Time [hours]";
  switch (family) {
    case Function_Family::Temperature:
      return {"Temperature function ", time, metric ? "Temperature [oC]" : "Temperature [oF]",
              "Average Temperature"};
    case Function_Family::Radiation:
      return {"Radiation function ", time, metric ? "Radiation [W/m2]" : "Radiation [BtuIT/hft2]",
              "Average radiation"};
    case Function_Family::Flow:
      return {"Flow rate function ", time, metric ? "Flow rate [m3/h]" : "Flow rate [yd3/h]", "Average rate"};
    case Function_Family::Displacement:
      return {"Displacement function ", time, metric ? "Displacement [mm]" : "Displacement [in]",
              "Average displacement"};
    case Function_Family::Spring:
      return {"Spring function ", metric ? "Displ. [mm]" : "Displ. [in]",
              metric ? "Line Force [N/mm] or Line Stress [MPa]" : "Line Force [lbf/in] or Line Stress [ksi]",
              "Average"};
    case Function_Family::Moisture_Potential:
      return {"Potential function ", time, "Moisture Potential [-]", "Average Potential"};
    case Function_Family::Water_Pressure:
      return {"Water pressure function", time, metric ? "Water pressure [m]" : "Water pressure [yd]",
              "Average Pressure"};
    case Function_Family::Load:
      return {"Load Function ", time, "Load [-]", "Average Load"};
  }
  return {"", time, "", ""};
}

Function_Unit_Kinds Function_Family_Unit_Kinds(Function_Family family) {
  switch (family) {
    case Function_Family::Temperature:
      return {0, 3};
    case Function_Family::Radiation:
      return {0, 17};
    case Function_Family::Flow:
      return {0, 6};
    case Function_Family::Displacement:
      return {0, 1};
    case Function_Family::Spring:
      // The ordinate is a line force or a line stress; the line force is the one the editor
      // names first, and the one a line support works with.
      return {1, 11};
    case Function_Family::Water_Pressure:
      return {0, 7};
    case Function_Family::Moisture_Potential:
    case Function_Family::Load:
      return {0, 0};
  }
  return {0, 0};
}

std::string Function_Number_Question(Function_Family family, int count) {
  return std::string("The actual number of ") + Function_Family_Word(family) + " functions is " +
         std::to_string(count) + " !  Do you want to add a function ?";
}

std::int16_t Enter_Function_Number(Project& p, Function_Family family, int typed, std::int16_t old_number,
                                   const std::function<bool(const std::string& question)>& ask) {
  if (typed < 1) return 1;
  Table<Function>& table = Function_Table(p, family);
  const int count = table.count();
  if (typed <= count) return static_cast<std::int16_t>(typed);
  // The family table is counted in 16 bits; a full family takes no further function.
  if (count >= Max_I16_Reference || count < 1) return old_number;
  if (!ask || !ask(Function_Number_Question(family, count))) return old_number;
  const Function copy = table.last();
  return static_cast<std::int16_t>(table.add(copy));
}

namespace {

bool Is_Separator(char c) {
  return c == ',' || c == '\n' || c == '\r' || c == ' ' || c == '\t';
}

bool Parse_Finite(std::string_view token, double& value) {
  if (!token.empty() && token.front() == '+') token.remove_prefix(1);
  if (token.empty()) return false;
  const char* end = token.data() + token.size();
  auto [ptr, ec] = std::from_chars(token.data(), end, value);
  return ec == std::errc() && ptr == end && std::isfinite(value);
}

}  // namespace

bool Parse_Function_Points(std::string_view text, Table<double>& times, Table<double>& values,
                           Function_File_Report& report) {
  Table<double> t, v;
  std::size_t pos = 0;
  int line = 1;
  int numbers = 0;
  while (pos < text.size()) {
    while (pos < text.size() && Is_Separator(text[pos])) {
      if (text[pos] == '\n') ++line;
      ++pos;
    }
    if (pos >= text.size()) break;
    const std::size_t start = pos;
    while (pos < text.size() && !Is_Separator(text[pos]))
      ++pos;
    const std::string_view token = text.substr(start, pos - start);
    double value = 0;
    if (!Parse_Finite(token, value)) {
      report.message = Function_File_Cannot_Be_Opened;
      report.detail =
          "line " + std::to_string(line) + ": \"" + std::string(token.substr(0, 40)) + "\" is not a number";
      return false;
    }
    if (numbers % 2 == 0)
      t.add(value);
    else
      v.add(value);
    ++numbers;
  }
  if (numbers % 2 != 0) {
    report.message = Function_File_Cannot_Be_Opened;
    report.detail = "the last time has no value";
    return false;
  }
  if (t.count() < 2) {
    report.message = At_Least_Two_Points_Message;
    report.detail = "the file holds " + std::to_string(t.count()) + " pairs";
    return false;
  }
  if (t.count() > Max_I16_Reference) {
    report.message = Function_File_Cannot_Be_Opened;
    report.detail = "more than " + std::to_string(Max_I16_Reference) + " points";
    return false;
  }
  times = std::move(t);
  values = std::move(v);
  return true;
}

namespace {

bool Read_Whole_File(const std::string& path, std::string& text, Function_File_Report& report) {
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    report.message = Function_File_Cannot_Be_Opened;
    report.detail = "cannot open " + path;
    return false;
  }
  std::ostringstream s;
  s << in.rdbuf();
  if (in.bad()) {
    report.message = Function_File_Cannot_Be_Opened;
    report.detail = "cannot read " + path;
    return false;
  }
  text = s.str();
  return true;
}

}  // namespace

bool Read_Function_File(const std::string& path, Function& f, Function_File_Report& report) {
  return Read_Function_File(path, Function_Family::Temperature, Unit_Converter(), f, report);
}

bool Read_Function_File(const std::string& path, Function_Family family, const Unit_Converter& from_imperial,
                        Function& f, Function_File_Report& report) {
  std::string text;
  if (!Read_Whole_File(path, text, report)) return false;
  Table<double> times, values;
  if (!Parse_Function_Points(text, times, values, report)) return false;
  if (from_imperial) {
    const Function_Unit_Kinds kinds = Function_Family_Unit_Kinds(family);
    for (int i = 1; i <= times.count(); ++i) {
      if (kinds.time_kind != 0) times[i] = from_imperial(false, kinds.time_kind, times[i]);
      if (kinds.value_kind != 0) values[i] = from_imperial(false, kinds.value_kind, values[i]);
    }
  }
  f.Point_Time = std::move(times);
  f.Point_Value = std::move(values);
  return true;
}

}  // namespace pvx
