// The lexical rules of the database: what one read takes from the file, and which numbers a line
// holds.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>
#include <vector>

#include "material/database.h"

namespace pvx {
namespace {

struct Lines {
  std::string text;  // the reader looks at it through a view: keep it alive
  Database_Reader reader;
  Database_Report report;
  explicit Lines(std::string t, bool decimal_comma = false) : text(std::move(t)) {
    reader.Text = text;
    reader.Decimal_Comma = decimal_comma;
  }
  bool Next() { return Read_Database_Line(reader, report); }
  std::vector<double> Numbers() const {
    return std::vector<double>(reader.Number + 1, reader.Number + 1 + reader.Number_Count);
  }
};

TEST(Database_Line, NumbersArePickedOutOfTheWords) {
  std::string forty;
  std::vector<double> one_to_forty;
  for (int i = 1; i <= 40; ++i) {
    forty += std::to_string(i) + " ";
    one_to_forty.push_back(i);
  }
  // The E of a word is dropped, a lower-case e is scanned as upper case, a digit inside a unit is a
  // number like any other, a lone point is an empty number (0, counted), and a number too small to
  // hold is 0.
  // clang-format off
  const std::pair<std::string, std::vector<double>> rows[] = {
      {"E = 30000 MPa", {30000}}, {"1.5E3", {1500}}, {"1.5e3", {1500}}, {"1.5 E3", {1.5, 3}},
      {"class C20 concrete 1800", {20, 1800}}, {"-2.5E-3;+4", {-0.0025, 4}},
      {"Density 2400 kg/m3", {2400, 3}},
      {"no numbers here", {}}, {" ", {}}, {"the end.", {0}}, {"1E-400", {0}}, {"\"2,5\"", {2.5}},
      {forty, one_to_forty}};
  // clang-format on
  for (const auto& [line, numbers] : rows) {
    SCOPED_TRACE(line);
    Lines l(line + "\n1 2 3\n7\n");
    ASSERT_TRUE(l.Next()) << l.report.Message;
    EXPECT_EQ(l.Numbers(), numbers);
  }
}

TEST(Database_Line, KeyRawTextAndLineCount) {
  // A value ends at a line end or at a comma outside quotes; a comma inside one is a decimal sign.
  Lines l("   mecHanical data 1 2 3\nNO\n  x/yz\n2,5\r\n\"2,5 kg\" dropped, 7\r\nlast");
  // The raw value, its key (none when shorter than four characters), a continuation mark, the numbers.
  // clang-format off
  const std::tuple<std::string, std::string, bool, std::vector<double>> rows[] = {
      {"   mecHanical data 1 2 3", "MECH", false, {1, 2, 3}},
      {"NO", "", false, {}},  {"  x/yz", "X/YZ", true, {}},
      {"2", "", false, {2}},                    {"5", "", false, {5}},  {"2,5 kg", "2,5 ", false, {2.5}},
      {" 7", "", false, {7}},                   {"last", "LAST", false, {}}};
  // clang-format on
  int line = 0;
  for (const auto& [raw, key, continuation, numbers] : rows) {
    SCOPED_TRACE(raw);
    ASSERT_TRUE(l.Next());
    EXPECT_EQ(std::tie(l.reader.Raw_Line, l.reader.Key, l.reader.Continuation),
              std::tie(raw, key, continuation));
    EXPECT_EQ(l.Numbers(), numbers);
    // The slots beyond the count are 0, also after a line with more numbers.
    EXPECT_EQ(std::count(std::begin(l.reader.Number) + 1, std::end(l.reader.Number), 0.0),
              40 - numbers.size());
    EXPECT_EQ(l.reader.Database_Line_Number, ++line);
  }
  // Past the end of the text.
  EXPECT_FALSE(l.Next());
  EXPECT_EQ(l.report.Fault, Database_Fault::Corrupted);
  EXPECT_EQ(l.report.Message, "Material DataBase is corrupted");
}

TEST(Database_Line, BothDecimalSignsInBothLocales) {
  // A token, whether it is a number, and its value. The first decimal sign of either kind counts.
  // clang-format off
  const std::tuple<const char*, bool, double> rows[] = {
      {"2,5", true, 2.5}, {"2.5", true, 2.5}, {"-1,25E2", true, -125}, {"", true, 0}, {",", true, 0},
      {".", true, 0},
      {"1.2.3", false, 0}, {"1,2,3", false, 0}, {"1,2.3", false, 0}, {"-", false, 0}, {"+", false, 0},
      {"--1", false, 0}, {"1-", false, 0}, {"3E", false, 0}, {"1E+", false, 0}, {"E5", false, 0},
      {"1EE3", false, 0}, {"1E400", false, 0}};
  // clang-format on
  for (bool comma : {false, true})
    for (const auto& [token, number, value] : rows) {
      bool ok = !number;
      const double read = Parse_Database_Number(token, comma, ok);
      EXPECT_EQ(ok, number) << token << " " << comma;
      EXPECT_TRUE(!number || read == value) << token << " " << comma;
    }
}

TEST(Database_Line, SpoiltTokensAndTooManyNumbersAreSyntaxErrors) {
  // The text, the line of the fault, and that line as the message shows it.
  const std::tuple<std::string, int, std::string> rows[] = {{"ok\n3Elements\n", 2, "3Elements"},
                                                            {"E-modulus 30000", 1, "E-modulus 30000"},
                                                            {"a\nb\n1.2.3 x", 3, "1.2.3 x"}};
  for (const auto& [text, line, shown] : rows) {
    SCOPED_TRACE(text);
    Lines l(text);
    for (int i = 1; i < line; ++i)
      EXPECT_TRUE(l.Next());
    EXPECT_FALSE(l.Next());
    EXPECT_EQ(l.report.Fault, Database_Fault::Syntax);
    EXPECT_EQ(l.report.Line, line);
    EXPECT_EQ(l.report.Message, "Syntax error in line " + std::to_string(line) + "\n" + shown);
  }
}

}  // namespace
}  // namespace pvx
