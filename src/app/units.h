// Number entry and units: the reading of a typed number whichever decimal sign the user types,
// the conversion between S.I. and the English Imperial System for display and entry, and the
// formatting of every number the program shows or writes as text.
//
// Stored values are always in working units (mm, hours, oC, MPa, ...); conversion happens only
// where a value is shown or typed.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace pvx {

inline constexpr const char* Number_Error_Message = "Fout gekonstateerd in opgegeven getal";

// True if the user's locale writes 1.1 as "1,1". Tested once at start-up.
bool Locale_Uses_Decimal_Comma();

// Reads a typed number. Empty text, a lone "," and a lone "." give 0 with no message. Either
// decimal sign is accepted for one sign in the text. On a text that is no number, `message` gets
// Number_Error_Message (when given) and 0 is returned.
double Check_Number(std::string_view text, bool decimal_comma, std::string* message = nullptr);
// As Check_Number, rounded to the nearest integer (halves to even); a value outside the 16-bit
// range is refused with the same message.
std::int16_t Check_Integer(std::string_view text, bool decimal_comma, std::string* message = nullptr);
// In a decimal-comma locale the first "," is replaced by "."; "", "," and "." stay as they are.
std::string Normalize_Number(std::string_view text, bool decimal_comma);

// Formats by `decimals`: -5..-1 scientific with that many decimals ("0.00e+00" for -2), 0 an
// integer, 1..10 fixed with that many decimals. The text is right-aligned in `width` characters;
// a text longer than `width` gives "*"; decimals outside -5..10 give "".
std::string Format_Number(double value, int width, int decimals);
// The same text without the blanks that align it, for a label.
std::string Format_Number_Trimmed(double value, int width, int decimals);

// The pattern of Format_Number for a number of decimals, as the scales show it ("0.00e+00").
std::string Number_Format_Pattern(int decimals);

// Kinds of quantity for Convert_Unit, by the S.I. unit they convert.
enum Unit_Kind : int {
  Unit_Length_mm = 1,
  Unit_Mass = 2,
  Unit_Temperature = 3,
  Unit_Stress = 4,
  Unit_Area = 5,
  Unit_Volume_Rate = 6,
  Unit_Length_m = 7,
  Unit_Force_N = 8,
  Unit_Force_kN = 9,
  Unit_Density = 10,
  Unit_Line_Force = 11,
  Unit_Stress_2 = 12,
  Unit_Speed = 13,
  Unit_Convection = 14,
  Unit_Transfer = 15,  // the hygral transfer coefficient of a border, m/h
  Unit_Capacity = 16,
  Unit_Radiation = 17,
  Unit_Energy = 18,
  Unit_Stress_Gradient = 19,
  Unit_Per_Degree = 20,
  Unit_Heat = 21,
  Unit_Temperature_K = 22,
  Unit_Stiffness = 23
};
inline constexpr int Unit_Kind_Count = 23;

// Converts between S.I. and Imperial: to_imperial true takes a stored S.I. value to display,
// false takes a typed Imperial value back. A kind outside 1..23 gives 0. Lengths and masses use
// the factors of the program in both directions, which are not each other's inverse.
double Convert_Unit(bool to_imperial, int kind, double value);

// The unit text of a kind in either system ("mm" / "in", "W/m2K" / "BtuIT/hft2oF").
const char* Unit_Name(int kind, bool metric);

}  // namespace pvx
