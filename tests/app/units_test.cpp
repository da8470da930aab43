#include "app/units.h"

#include <gtest/gtest.h>

#include <cmath>

namespace pvx {
namespace {

constexpr bool Point = false;
constexpr bool Comma = true;

TEST(Check_Number, EitherDecimalSignIsTakenInEitherLocale) {
  for (bool locale : {Point, Comma}) {
    std::string message;
    EXPECT_EQ(Check_Number("2.5", locale, &message), 2.5);
    EXPECT_EQ(Check_Number("2,5", locale, &message), 2.5);
    EXPECT_EQ(Check_Number("-0.125", locale, &message), -0.125);
    EXPECT_EQ(Check_Number(" 3 ", locale, &message), 3);
    EXPECT_EQ(Check_Number("1.5E3", locale, &message), 1500);
    EXPECT_EQ(Check_Number("2e-2", locale, &message), 0.02);
    EXPECT_EQ(Check_Number(".5", locale, &message), 0.5);
    EXPECT_EQ(message, "");
  }
}

TEST(Check_Number, EmptyAndLoneSeparatorsAreZeroWithoutMessage) {
  for (const char* text : {"", ",", ".", "  "}) {
    std::string message;
    EXPECT_EQ(Check_Number(text, Point, &message), 0);
    EXPECT_EQ(Check_Number(text, Comma, &message), 0);
    EXPECT_EQ(message, "") << text;
  }
}

TEST(Check_Number, TwoSeparatorsOrLettersAreRefused) {
  struct Case {
    const char* text;
    bool locale;
  };
  for (Case c : {Case{"1.000,5", Comma}, Case{"1,000.5", Point}, Case{"1.2.3", Point}, Case{"abc", Point},
                 Case{"12a", Comma}, Case{"1e", Point}, Case{"--1", Point}, Case{"1e400", Point}}) {
    std::string message;
    EXPECT_EQ(Check_Number(c.text, c.locale, &message), 0) << c.text;
    EXPECT_EQ(message, "Fout gekonstateerd in opgegeven getal") << c.text;
  }
}

TEST(Check_Integer, RoundsHalvesToEvenAndRefusesWhatDoesNotFit) {
  std::string message;
  EXPECT_EQ(Check_Integer("2.5", Point, &message), 2);
  EXPECT_EQ(Check_Integer("3.5", Point, &message), 4);
  EXPECT_EQ(Check_Integer("-2,6", Point, &message), -3);
  EXPECT_EQ(Check_Integer("32767", Point, &message), 32767);
  EXPECT_EQ(message, "");
  EXPECT_EQ(Check_Integer("40000", Point, &message), 0);
  EXPECT_EQ(message, "Fout gekonstateerd in opgegeven getal");
}

TEST(Normalize_Number, ReplacesTheFirstCommaOnlyInACommaLocale) {
  EXPECT_EQ(Normalize_Number("2,5", Comma), "2.5");
  EXPECT_EQ(Normalize_Number("1,2,3", Comma), "1.2,3");
  EXPECT_EQ(Normalize_Number("2,5", Point), "2,5");
  EXPECT_EQ(Normalize_Number(",", Comma), ",");
  EXPECT_EQ(Normalize_Number("", Comma), "");
}

TEST(Format_Number, FixedDecimalsRightAlignedOrAStar) {
  EXPECT_EQ(Format_Number(12345.6, 6, 2), "*");  // "12345.60" has 8 characters
  EXPECT_EQ(Format_Number(12345.6, 8, 2), "12345.60");
  EXPECT_EQ(Format_Number(3.14159, 8, 2), "    3.14");
  EXPECT_EQ(Format_Number(-123.456, 9, 1), "   -123.5");
  EXPECT_EQ(Format_Number(0.5, 3, 0), "  1");  // halves away from zero
  EXPECT_EQ(Format_Number(-2.5, 3, 0), " -3");
  EXPECT_EQ(Format_Number(2.675, 5, 2), " 2.68");  // as typed, not as the nearest binary value
  EXPECT_EQ(Format_Number(9.9996, 6, 3), "10.000");
  EXPECT_EQ(Format_Number(999.5, 3, 0), "*");
  EXPECT_EQ(Format_Number(0.0004, 6, 3), " 0.000");
  EXPECT_EQ(Format_Number(0.0005, 6, 3), " 0.001");
  EXPECT_EQ(Format_Number(-0.0004, 6, 3), " 0.000");  // no minus sign on a zero
  EXPECT_EQ(Format_Number(0, 4, 2), "0.00");
  EXPECT_EQ(Format_Number(1e20, 21, 0), "100000000000000000000");
  EXPECT_EQ(Format_Number(0.1, 14, 10), "  0.1000000000");
  EXPECT_EQ(Format_Number(7, 1, 0), "7");
}

TEST(Format_Number, ScientificPatterns) {
  EXPECT_EQ(Format_Number(0.000123, 10, -2), "  1.23e-04");
  EXPECT_EQ(Format_Number(123456, 10, -3), " 1.235e+05");
  EXPECT_EQ(Format_Number(-9.96, 8, -1), "-1.0e+01");
  EXPECT_EQ(Format_Number(0, 8, -2), "0.00e+00");
  EXPECT_EQ(Format_Number(1.5e-120, 12, -5), "1.50000e-120");
  EXPECT_EQ(Format_Number(2.5, 7, -1), "2.5e+00");
  EXPECT_EQ(Format_Number(2.5, 6, -1), "*");
}

TEST(Format_Number, DecimalsOutsideTheTableGiveAnEmptyNumber) {
  EXPECT_EQ(Format_Number(1, 10, 11), "");
  EXPECT_EQ(Format_Number(1, 10, -6), "");
  EXPECT_EQ(Number_Format_Pattern(-5), "0.00000e+00");
  EXPECT_EQ(Number_Format_Pattern(0), "0");
  EXPECT_EQ(Number_Format_Pattern(10), "0.0000000000");
}

TEST(Convert_Unit, LengthAndMassFactorsAreNotEachOthersInverse) {
  EXPECT_NEAR(Convert_Unit(true, Unit_Length_mm, 100), 3.937, 1e-12);
  EXPECT_NEAR(Convert_Unit(false, Unit_Length_mm, 3.937), 99.9998, 1e-9);
  EXPECT_EQ(Format_Number(Convert_Unit(false, Unit_Length_mm, Convert_Unit(true, Unit_Length_mm, 100)), 9, 4),
            "  99.9998");
  EXPECT_NEAR(Convert_Unit(true, Unit_Mass, 1), 2.204623, 1e-12);
  EXPECT_NEAR(Convert_Unit(false, Unit_Mass, 1), 0.45359237, 1e-15);
}

TEST(Convert_Unit, KnownEquivalents) {
  // Independent values: 1 ksi = 6.894757 MPa, 1 lbf = 4.448222 N, 1 yd3 = 0.764555 m3,
  // 1 W/m2K = 0.176110 Btu/(h ft2 F), 1 W/m2 = 0.316998 Btu/(h ft2), 1 Btu = 1.055056 kJ.
  EXPECT_NEAR(Convert_Unit(false, Unit_Stress, 1), 6.894757, 1e-6);
  EXPECT_NEAR(Convert_Unit(false, Unit_Stress_2, 1), 6.894757, 1e-6);
  EXPECT_NEAR(Convert_Unit(false, Unit_Force_N, 1), 4.448222, 1e-6);
  EXPECT_NEAR(Convert_Unit(true, Unit_Volume_Rate, 0.764554857984), 1, 1e-12);
  EXPECT_NEAR(Convert_Unit(true, Unit_Convection, 1), 0.176110, 1e-6);
  EXPECT_NEAR(Convert_Unit(true, Unit_Radiation, 1), 0.316998, 1e-6);
  EXPECT_NEAR(Convert_Unit(false, Unit_Energy, 1), 1.055056, 1e-6);
  EXPECT_NEAR(Convert_Unit(true, Unit_Temperature, 100), 212, 1e-12);
  EXPECT_NEAR(Convert_Unit(false, Unit_Temperature, 212), 100, 1e-12);
  EXPECT_NEAR(Convert_Unit(true, Unit_Temperature_K, 273.15), 32, 1e-12);
  EXPECT_NEAR(Convert_Unit(false, Unit_Temperature_K, 212), 373.15, 1e-12);
  EXPECT_NEAR(Convert_Unit(true, Unit_Length_m, 0.9144), 1, 1e-12);
  EXPECT_NEAR(Convert_Unit(true, Unit_Speed, 0.44704), 1, 1e-12);
  EXPECT_NEAR(Convert_Unit(true, Unit_Per_Degree, 1.8), 1, 1e-12);
  EXPECT_NEAR(Convert_Unit(true, Unit_Line_Force, 1), 5.710147, 1e-6);  // N/mm to lbf/in
}

TEST(Convert_Unit, FactorKindsGoBackToWhereTheyCameFrom) {
  for (int kind = 4; kind <= Unit_Kind_Count; ++kind) {
    const double back = Convert_Unit(false, kind, Convert_Unit(true, kind, 123.456));
    EXPECT_NEAR(back, 123.456, 1e-10) << kind;
  }
}

TEST(Convert_Unit, UnknownKindsGiveZero) {
  EXPECT_EQ(Convert_Unit(true, 0, 5), 0);
  EXPECT_EQ(Convert_Unit(false, 24, 5), 0);
  EXPECT_EQ(Convert_Unit(true, -3, 5), 0);
}

}  // namespace
}  // namespace pvx
