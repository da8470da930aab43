#include "app/units.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <locale>
#include <sstream>

namespace pvx {

bool Locale_Uses_Decimal_Comma() {
  try {
    std::ostringstream s;
    s.imbue(std::locale(""));
    s << 1.1;
    return s.str().find(',') != std::string::npos;
  } catch (...) {
    // An unknown locale name in the environment: the classic locale writes a point.
    return false;
  }
}

namespace {

std::string_view Trim(std::string_view t) {
  while (!t.empty() && (t.front() == ' ' || t.front() == '\t'))
    t.remove_prefix(1);
  while (!t.empty() && (t.back() == ' ' || t.back() == '\t'))
    t.remove_suffix(1);
  return t;
}

bool Is_Digit(char c) {
  return c >= '0' && c <= '9';
}

// Parses [+-] digits [sep digits] [(E|D) [+-] digits] with `sep` the locale's decimal sign and at
// least one digit in the mantissa. Returns false on anything else.
bool Parse_Decimal(std::string_view t, char sep, double& value) {
  std::string canonical;
  canonical.reserve(t.size());
  std::size_t i = 0;
  if (i < t.size() && (t[i] == '+' || t[i] == '-')) {
    if (t[i] == '-') canonical += '-';
    ++i;
  }
  int mantissa_digits = 0;
  while (i < t.size() && Is_Digit(t[i])) {
    canonical += t[i++];
    ++mantissa_digits;
  }
  if (i < t.size() && t[i] == sep) {
    canonical += '.';
    ++i;
    while (i < t.size() && Is_Digit(t[i])) {
      canonical += t[i++];
      ++mantissa_digits;
    }
  }
  if (mantissa_digits == 0) return false;
  if (i < t.size() && (t[i] == 'e' || t[i] == 'E' || t[i] == 'd' || t[i] == 'D')) {
    canonical += 'e';
    ++i;
    if (i < t.size() && (t[i] == '+' || t[i] == '-')) canonical += t[i++];
    int exponent_digits = 0;
    while (i < t.size() && Is_Digit(t[i])) {
      canonical += t[i++];
      ++exponent_digits;
    }
    if (exponent_digits == 0) return false;
  }
  if (i != t.size()) return false;
  const char* first = canonical.data();
  const char* last = first + canonical.size();
  auto [end, ec] = std::from_chars(first, last, value);
  return ec == std::errc() && end == last && std::isfinite(value);
}

}  // namespace

double Check_Number(std::string_view text, bool decimal_comma, std::string* message) {
  std::string_view t = Trim(text);
  if (t.empty() || t == "," || t == ".") return 0;
  std::string s(t);
  // One separator of either kind is taken as the decimal sign of the locale.
  if (!decimal_comma) {
    if (auto k = s.find(','); k != std::string::npos) s[k] = '.';
  } else {
    if (auto k = s.find('.'); k != std::string::npos) s[k] = ',';
  }
  double value = 0;
  if (!Parse_Decimal(s, decimal_comma ? ',' : '.', value)) {
    if (message) *message = Number_Error_Message;
    return 0;
  }
  return value;
}

std::int16_t Check_Integer(std::string_view text, bool decimal_comma, std::string* message) {
  std::string local;
  double v = Check_Number(text, decimal_comma, &local);
  if (!local.empty()) {
    if (message) *message = local;
    return 0;
  }
  double r = std::nearbyint(v);  // the default rounding mode takes halves to even
  if (r < std::numeric_limits<std::int16_t>::min() || r > std::numeric_limits<std::int16_t>::max()) {
    if (message) *message = Number_Error_Message;
    return 0;
  }
  return static_cast<std::int16_t>(r);
}

std::string Normalize_Number(std::string_view text, bool decimal_comma) {
  std::string s(text);
  if (s.empty() || s == "," || s == ".") return s;
  if (decimal_comma) {
    if (auto k = s.find(','); k != std::string::npos) s[k] = '.';
  }
  return s;
}

namespace {

// A positive decimal number d1.d2d3... x 10^exponent, digits without leading zeros.
struct Decimal {
  std::string digits;
  int exponent = 0;
};

// The shortest decimal digits that read back to |value| (value finite and non-zero).
Decimal To_Decimal(double value) {
  char buffer[64];
  auto [end, ec] =
      std::to_chars(buffer, buffer + sizeof buffer, std::fabs(value), std::chars_format::scientific);
  (void)ec;
  std::string_view s(buffer, static_cast<std::size_t>(end - buffer));
  Decimal d;
  std::size_t e = s.find('e');
  for (std::size_t i = 0; i < e; ++i)
    if (Is_Digit(s[i])) d.digits += s[i];
  int exponent = 0;
  std::from_chars(s.data() + e + 1 + (s[e + 1] == '+' ? 1 : 0), s.data() + s.size(), exponent);
  d.exponent = exponent;
  return d;
}

// Rounds to `keep` significant digits, halves away from zero. keep may be 0 or negative, in which
// case the result is 0 (digits empty) or one unit in the place of the last digit kept.
Decimal Round_Digits(Decimal d, int keep) {
  if (keep >= static_cast<int>(d.digits.size())) return d;
  if (keep < 0) return Decimal{};
  const bool up = d.digits[static_cast<std::size_t>(keep)] >= '5';
  d.digits.resize(static_cast<std::size_t>(keep));
  if (up) {
    int i = keep - 1;
    while (i >= 0 && d.digits[static_cast<std::size_t>(i)] == '9')
      d.digits[static_cast<std::size_t>(i--)] = '0';
    if (i >= 0) {
      ++d.digits[static_cast<std::size_t>(i)];
    } else {
      d.digits.insert(d.digits.begin(), '1');
      ++d.exponent;
    }
  }
  while (!d.digits.empty() && d.digits.back() == '0')
    d.digits.pop_back();
  if (d.digits.empty()) d.exponent = 0;
  return d;
}

char Digit_At(const Decimal& d, int index) {
  return index >= 0 && index < static_cast<int>(d.digits.size()) ? d.digits[static_cast<std::size_t>(index)]
                                                                 : '0';
}

std::string Fixed_Text(double value, int decimals) {
  if (value == 0) return decimals > 0 ? "0." + std::string(static_cast<std::size_t>(decimals), '0') : "0";
  Decimal d = To_Decimal(value);
  // The digit of 10^-decimals has index exponent + decimals in the digit string.
  const int keep = d.exponent + 1 + decimals;
  if (keep == 0) {
    // Only the first digit decides whether the result is one unit of the last place or zero.
    d = d.digits[0] >= '5' ? Decimal{"1", d.exponent + 1} : Decimal{};
  } else {
    d = Round_Digits(d, keep);
  }
  std::string out;
  if (!d.digits.empty() && value < 0) out += '-';
  // Digit index k of d stands for the place 10^(exponent - k).
  const int e = d.digits.empty() ? 0 : d.exponent;
  for (int place = std::max(e, 0); place >= 0; --place)
    out += d.digits.empty() ? '0' : Digit_At(d, e - place);
  if (decimals > 0) {
    out += '.';
    for (int k = 1; k <= decimals; ++k)
      out += d.digits.empty() ? '0' : Digit_At(d, e + k);
  }
  return out;
}

std::string Scientific_Text(double value, int decimals) {
  Decimal d;
  if (value != 0) d = Round_Digits(To_Decimal(value), decimals + 1);
  std::string out;
  if (!d.digits.empty() && value < 0) out += '-';
  out += Digit_At(d, 0);
  if (decimals > 0) {
    out += '.';
    for (int k = 1; k <= decimals; ++k)
      out += Digit_At(d, k);
  }
  const int e = d.digits.empty() ? 0 : d.exponent;
  out += e < 0 ? "e-" : "e+";
  std::string ed = std::to_string(e < 0 ? -e : e);
  if (ed.size() < 2) ed.insert(ed.begin(), '0');
  out += ed;
  return out;
}

}  // namespace

std::string Number_Format_Pattern(int decimals) {
  if (decimals < -5 || decimals > 10) return "";
  if (decimals < 0) return "0." + std::string(static_cast<std::size_t>(-decimals), '0') + "e+00";
  if (decimals == 0) return "0";
  return "0." + std::string(static_cast<std::size_t>(decimals), '0');
}

std::string Format_Number_Trimmed(double value, int width, int decimals) {
  const std::string text = Format_Number(value, width, decimals);
  const auto first = text.find_first_not_of(' ');
  return first == std::string::npos ? std::string() : text.substr(first);
}

std::string Format_Number(double value, int width, int decimals) {
  if (decimals < -5 || decimals > 10) return "";
  std::string text;
  if (std::isnan(value)) {
    text = "NaN";
  } else if (std::isinf(value)) {
    text = value < 0 ? "-Inf" : "Inf";
  } else {
    text = decimals < 0 ? Scientific_Text(value, -decimals) : Fixed_Text(value, decimals);
  }
  if (static_cast<int>(text.size()) > width) return "*";
  return std::string(static_cast<std::size_t>(width) - text.size(), ' ') + text;
}

namespace {

// Multiplier from S.I. to Imperial of the kinds that are plain factors.
double Factor(int kind) {
  switch (kind) {
    case 4:
    case 12:
      return 645.16 / 4448.2216152605;
    case 5:
      return 1 / 0.83612736;
    case 6:
      return 1 / 0.764554857984;
    case 7:
      return 1 / 0.9144;
    case 8:
    case 9:
      return 1 / 4.4482216152605;
    case 10:
      return 0.764554857984 / 0.45359237;
    case 11:
      return 25.4 / 4.4482216152605;
    case 13:
      return 1 / 0.44704;
    case 14:
      return 334.45094400000005 / 1899.100534716;
    case 15:
      // The hygral transfer coefficient acts in m/h (with the diffusion coefficient in m2/h and
      // lengths in m): shown in yd/h, as metres are shown in yards.
      return 1 / 0.9144;
    case 16:
      return 0.764554857984 / 1.8991005347160002;
    case 17:
      return 334.45094400000005 / 1055.05585262;
    case 18:
      return 1 / 1.05505585262;
    case 19:
      return 16387.064 / 4448.2216152605;
    case 20:
      return 1 / 1.8;
    case 21:
      return 0.764554857984 / 1.05505585262;
    case 23:
      return 4448.2216152605 / 1161.288;
    default:
      return 0;
  }
}

}  // namespace

double Convert_Unit(bool to_imperial, int kind, double value) {
  switch (kind) {
    // Lengths and masses keep the rounded factor one way and the exact one back: 100 mm shows as
    // 3.937 in, and 3.937 in typed gives 99.9998 mm.
    case 1:
      return to_imperial ? value * 0.03937 : value * 25.4;
    case 2:
      return to_imperial ? value * 2.204623 : value * 0.45359237;
    case 3:
      return to_imperial ? value * 1.8 + 32 : (value - 32) / 1.8;
    case 22:
      return to_imperial ? (value - 273.15) * 1.8 + 32 : (value - 32) / 1.8 + 273.15;
    default:
      break;
  }
  const double f = Factor(kind);
  if (f == 0) return 0;
  return to_imperial ? value * f : value / f;
}

const char* Unit_Name(int kind, bool metric) {
  static const char* const names[Unit_Kind_Count + 1][2] = {
      {"", ""},
      {"mm", "in"},
      {"kg", "lb"},
      {"oC", "oF"},
      {"MPa", "ksi"},
      {"m2", "yd2"},
      {"m3/h", "yd3/h"},
      {"m", "yd"},
      {"N", "lbf"},
      {"kN", "kip"},
      {"kg/m3", "lb/yd3"},
      {"N/mm", "lbf/in"},
      {"MPa", "ksi"},
      {"m/s", "mph"},
      {"W/m2K", "BtuIT/hft2oF"},
      {"m/h", "yd/h"},
      {"kJ/m3K", "BtuIT/yd3oF"},
      {"W/m2", "BtuIT/hft2"},
      {"kJ", "Btu"},
      {"MPa/mm", "ksi/in"},
      {"1/oC", "1/oF"},
      {"kJ/m3", "Btu/yd3"},
      {"K", "oF"},
      {"", ""},
  };
  if (kind < 1 || kind > Unit_Kind_Count) return "";
  return names[kind][metric ? 0 : 1];
}

}  // namespace pvx
