#include "app/units.h"

#include <gtest/gtest.h>

#include <tuple>

namespace pvx {
namespace {

TEST(Check_Number, ReadsEitherDecimalSignInEitherLocaleAndRefusesTheRest) {
  const std::pair<const char*, double> read[] = {{"2.5", 2.5}, {"2,5", 2.5},    {"-0.125", -0.125},
                                                 {" 3 ", 3},   {"1.5E3", 1500}, {"2e-2", 0.02},
                                                 {".5", 0.5},  {"1D2", 100},    {"", 0},
                                                 {",", 0},     {".", 0},        {"  ", 0}};
  const char* const refused[] = {"1.000,5", "1,000.5", "1.2.3", "abc", "12a", "1e", "--1", "1e400"};
  for (const bool comma : {false, true}) {
    for (const auto& [text, value] : read) {
      std::string message;
      EXPECT_EQ(Check_Number(text, comma, &message), value) << text << comma;
      EXPECT_EQ(message, "") << text << comma;
    }
    for (const char* text : refused) {
      std::string message;
      EXPECT_EQ(Check_Number(text, comma, &message), 0) << text << comma;
      EXPECT_EQ(message, Number_Error_Message) << text << comma;
    }
  }
  // A comma locale stores the first comma as a point; "," stays as it is.
  EXPECT_EQ(Normalize_Number("1,2,3", true), "1.2,3");
  EXPECT_EQ(Normalize_Number("2,5", false), "2,5");
  EXPECT_EQ(Normalize_Number(",", true), ",");
  // An integer rounds halves to even and refuses, as 0, what a sixteen-bit integer cannot hold.
  const std::pair<const char*, int> integers[] = {{"2.5", 2},       {"3.5", 4},         {"-2,6", -3},
                                                  {"32767", 32767}, {"-32768", -32768}, {"32767.5", 0},
                                                  {"-32769", 0},    {"40000", 0},       {"x", 0}};
  for (const auto& [text, value] : integers) {
    std::string message;
    EXPECT_EQ(Check_Integer(text, false, &message), value) << text;
    EXPECT_EQ(message, value == 0 ? Number_Error_Message : "") << text;
  }
}

TEST(Format_Number, FixedAndScientificRightAlignedOrAStar) {
  // value, width, decimals (negative: scientific), text. "12345.60" has 8 characters; halves go away
  // from zero; 2.675 rounds as typed, not as the nearest binary value 2.67499...; a zero has no
  // minus sign; decimals outside -5..10 give an empty text.
  // clang-format off
  const std::tuple<double, int, int, const char*> cases[] = {
      {12345.6, 6, 2, "*"},           {12345.6, 8, 2, "12345.60"},       {3.14159, 8, 2, "    3.14"},
      {-123.456, 9, 1, "   -123.5"},  {0.5, 3, 0, "  1"},                {-2.5, 3, 0, " -3"},
      {2.675, 5, 2, " 2.68"},         {9.9996, 6, 3, "10.000"},          {999.5, 3, 0, "*"},
      {0.0005, 6, 3, " 0.001"},       {-0.0004, 6, 3, " 0.000"},         {0.1, 14, 10, "  0.1000000000"},
      {1e16, 17, 0, "10000000000000000"}, {0.000123, 10, -2, "  1.23e-04"}, {123456, 10, -3, " 1.235e+05"},
      {-9.96, 8, -1, "-1.0e+01"},     {0, 8, -2, "0.00e+00"},            {1.5e-120, 12, -5, "1.50000e-120"},
      {2.5, 6, -1, "*"},              {1, 10, 11, ""},                   {1, 10, -6, ""},
  };
  // clang-format on
  for (const auto& [value, width, decimals, text] : cases)
    EXPECT_EQ(Format_Number(value, width, decimals), text) << value << " " << width << " " << decimals;
}

TEST(Convert_Unit, KnownEquivalentsInBothDirections) {
  // Independent values: 1 in = 25.4 mm, 1 lb = 0.45359237 kg, t oF = 1.8 t oC + 32, 1 ksi =
  // 6.894757 MPa, 1 lbf = 4.448222 N, 1 yd3 = 0.764554857984 m3, 1 W/m2K = 0.176110 Btu/(h ft2 oF),
  // 1 W/m2 = 0.316998 Btu/(h ft2), 1 Btu = 1.055056 kJ, 1 mph = 0.44704 m/s, 1 N/mm = 5.710147 lbf/in,
  // 1 yd/h = 0.9144 m/h.
  // Lengths and masses show with the rounded factor and come back with the exact one: 2.204623 lb
  // shown for 1 kg, 1 lb typed is 0.45359237 kg. (That 100 mm shows as 3.937 in, and 3.937 in
  // typed is 99.9998 mm, is walked through by the editors' tests.)
  // direction (true: to imperial), kind, S.I. value, imperial value, tolerance.
  const std::tuple<bool, int, double, double, double> cases[] = {
      {true, Unit_Mass, 1, 2.204623, 1e-12},         {false, Unit_Mass, 0.45359237, 1, 1e-15},
      {true, Unit_Temperature, 100, 212, 1e-12},     {true, Unit_Temperature, -40, -40, 1e-12},
      {false, Unit_Temperature, 100, 212, 1e-12},    {false, Unit_Temperature, 0, 32, 1e-12},
      {true, Unit_Temperature_K, 273.15, 32, 1e-12}, {false, Unit_Temperature_K, 373.15, 212, 1e-12},
      {false, Unit_Stress, 6.894757, 1, 1e-6},       {false, Unit_Stress_2, 6.894757, 1, 1e-6},
      {false, Unit_Force_N, 4.448222, 1, 1e-6},      {false, Unit_Energy, 1.055056, 1, 1e-6},
      {true, Unit_Convection, 1, 0.176110, 1e-6},    {true, Unit_Radiation, 1, 0.316998, 1e-6},
      {true, Unit_Volume_Rate, 0.76455486, 1, 1e-8}, {true, Unit_Length_m, 0.9144, 1, 1e-12},
      {true, Unit_Speed, 0.44704, 1, 1e-12},         {true, Unit_Per_Degree, 1.8, 1, 1e-12},
      {true, Unit_Line_Force, 1, 5.710147, 1e-6},    {true, Unit_Transfer, 0.9144, 1, 1e-12},
  };
  for (const auto& [to_imperial, kind, si, imperial, tolerance] : cases)
    EXPECT_NEAR(Convert_Unit(to_imperial, kind, to_imperial ? si : imperial), to_imperial ? imperial : si,
                tolerance)
        << kind << (to_imperial ? " to imperial" : " to S.I.");
  // Every other kind goes back to where it came from; kinds outside 1..23 give 0.
  for (int kind = Unit_Stress; kind <= Unit_Kind_Count; ++kind)
    EXPECT_NEAR(Convert_Unit(false, kind, Convert_Unit(true, kind, 123.456)), 123.456, 1e-10) << kind;
  for (const int kind : {-3, 0, 24})
    EXPECT_EQ(Convert_Unit(true, kind, 5), 0) << kind;
}

}  // namespace
}  // namespace pvx
