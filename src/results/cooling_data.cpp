#include "results/cooling_data.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string_view>

namespace pvx {

namespace {

// "1e-08" is written "1E-08", as the project file writes it.
template <class T>
void Put_Number(std::string& out, T v) {
  char buffer[64];
  auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, v);
  (void)ec;
  for (char* c = buffer; c != end; ++c)
    out += *c == 'e' ? 'E' : *c;
}

class Tokens {
 public:
  explicit Tokens(std::string_view text) : s_(text) {}

  // The next value; empty at the end of the text.
  std::string_view next() {
    skip();
    const std::size_t start = pos_;
    while (pos_ < s_.size() && !Separator(s_[pos_]))
      ++pos_;
    return s_.substr(start, pos_ - start);
  }
  // Characters left, an upper bound of the values there can still be.
  std::size_t remaining() const { return s_.size() - pos_; }

 private:
  static bool Separator(char c) { return c == ',' || c == '\r' || c == '\n' || c == ' ' || c == '\t'; }
  void skip() {
    // Blanks around a value and one comma or any line ends between values.
    while (pos_ < s_.size() && Separator(s_[pos_]))
      ++pos_;
  }
  std::string_view s_;
  std::size_t pos_ = 0;
};

template <class T>
bool Parse(std::string_view t, T& v) {
  if (t.empty()) return false;
  if (t.front() == '+') t.remove_prefix(1);
  const auto [end, ec] = std::from_chars(t.data(), t.data() + t.size(), v);
  return ec == std::errc() && end == t.data() + t.size();
}

}  // namespace

std::string Cooling_Corrupted(const std::string& name) {
  return "File " + name +
         " is corrupted. Computed data on water temperatures in cooling pipes is not available";
}

void Append_History_Record(Circuit_History& circuit, double time, double flow, const Table<float>& water,
                           double liquid_capacity) {
  History_Record r;
  r.Time = time;
  r.Flow = static_cast<float>(flow);
  r.Water = water;
  const double rise = water.empty() ? 0.0 : double{water.last()} - double{water[1]};
  r.Capacity = static_cast<float>(rise * flow * liquid_capacity / 3600);
  circuit.History.add(r);
}

std::string Encode_Cooling_Text(const Table<Circuit_History>& circuits) {
  std::string out;
  for (const Circuit_History& c : circuits) {
    Put_Number(out, c.History.count());
    out += "\r\n";
    for (const History_Record& r : c.History) {
      Put_Number(out, r.Time);
      out += ',';
      Put_Number(out, r.Flow);
      out += ',';
      Put_Number(out, r.Capacity);
      for (float w : r.Water) {
        out += ',';
        Put_Number(out, w);
      }
      out += "\r\n";
    }
  }
  return out;
}

bool Parse_Cooling_Text(const std::string& text, const Table<int>& stations, Table<Circuit_History>& circuits,
                        std::string& detail) {
  Tokens tokens(text);
  circuits.clear();
  circuits.resize(stations.count());
  for (int c = 1; c <= stations.count(); ++c) {
    const std::string where = "circuit " + std::to_string(c);
    int count = 0;
    if (!Parse(tokens.next(), count) || count < 0 || count > std::numeric_limits<std::int16_t>::max()) {
      detail = where + ": no valid number of records";
      return false;
    }
    const int n = stations[c];
    if (n < 0) {
      detail = where + ": negative number of stations";
      return false;
    }
    // Every value takes at least one character and one separator.
    const auto values = static_cast<std::uint64_t>(count) * (3 + static_cast<std::uint64_t>(n));
    if (values > tokens.remaining() / 2 + 1) {
      detail = where + ": the file is too short for " + std::to_string(count) + " records";
      return false;
    }
    Table<History_Record>& history = circuits[c].History;
    history.resize(count);
    for (int k = 1; k <= count; ++k) {
      History_Record& r = history[k];
      r.Water.resize(n);
      bool ok =
          Parse(tokens.next(), r.Time) && Parse(tokens.next(), r.Flow) && Parse(tokens.next(), r.Capacity);
      for (int s = 1; ok && s <= n; ++s)
        ok = Parse(tokens.next(), r.Water[s]);
      if (!ok) {
        detail = where + ", record " + std::to_string(k) + ": a number is missing or malformed";
        return false;
      }
    }
  }
  return true;
}

}  // namespace pvx
