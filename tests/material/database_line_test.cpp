// The lexical rules of the database: what one read takes from the file, and which numbers a line
// holds.
#include <gtest/gtest.h>

#include <string>
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

std::vector<double> Numbers_Of(const std::string& line) {
  Lines l(line);
  EXPECT_TRUE(l.Next()) << line << ": " << l.report.Message;
  return l.Numbers();
}

TEST(Database_Line, NumbersArePickedOutOfTheWords) {
  EXPECT_EQ(Numbers_Of("E = 30000 MPa"), std::vector<double>{30000});  // the E of the word is dropped
  EXPECT_EQ(Numbers_Of("1.5E3"), std::vector<double>{1500});
  EXPECT_EQ(Numbers_Of("1.5e3"), std::vector<double>{1500});  // scanned in upper case
  EXPECT_EQ(Numbers_Of("1.5 E3"), (std::vector<double>{1.5, 3}));
  EXPECT_EQ(Numbers_Of("class C20 concrete 1800"), (std::vector<double>{20, 1800}));
  EXPECT_EQ(Numbers_Of("-2.5E-3;+4"), (std::vector<double>{-0.0025, 4}));
  EXPECT_EQ(Numbers_Of("Density 2400 kg"), std::vector<double>{2400});
  // A digit inside a unit is a number like any other.
  EXPECT_EQ(Numbers_Of("Density 2400 kg/m3"), (std::vector<double>{2400, 3}));
  EXPECT_EQ(Numbers_Of("no numbers here"), std::vector<double>{});
  EXPECT_EQ(Numbers_Of(" "), std::vector<double>{});
  // A lone point is an empty number: 0, counted, not an error.
  EXPECT_EQ(Numbers_Of("the end."), std::vector<double>{0});
  EXPECT_EQ(Numbers_Of("1E-400"), std::vector<double>{0});  // too small to hold: 0
}

TEST(Database_Line, KeyRawTextAndContinuation) {
  Lines l("   mecHanical data\nNO\n  x/yz\n");
  ASSERT_TRUE(l.Next());
  EXPECT_EQ(l.reader.Key, "MECH");
  EXPECT_EQ(l.reader.Raw_Line, "   mecHanical data");
  EXPECT_FALSE(l.reader.Continuation);
  ASSERT_TRUE(l.Next());
  EXPECT_EQ(l.reader.Key, "");  // shorter than four characters
  ASSERT_TRUE(l.Next());
  EXPECT_EQ(l.reader.Key, "X/YZ");
  EXPECT_TRUE(l.reader.Continuation);
  EXPECT_EQ(l.reader.Database_Line_Number, 3);
}

TEST(Database_Line, ACommaEndsTheValueUnlessQuoted) {
  Lines l("2,5\r\n\"2,5 kg\" dropped, 7\r\nlast");
  ASSERT_TRUE(l.Next());
  EXPECT_EQ(l.Numbers(), std::vector<double>{2});
  ASSERT_TRUE(l.Next());
  EXPECT_EQ(l.Numbers(), std::vector<double>{5});
  ASSERT_TRUE(l.Next());
  EXPECT_EQ(l.reader.Raw_Line, "2,5 kg");
  EXPECT_EQ(l.Numbers(), std::vector<double>{2.5});  // a comma inside a value is a decimal sign
  ASSERT_TRUE(l.Next());
  EXPECT_EQ(l.reader.Raw_Line, " 7");
  ASSERT_TRUE(l.Next());
  EXPECT_EQ(l.reader.Raw_Line, "last");
  EXPECT_EQ(l.reader.Database_Line_Number, 5);  // every value counts as a line
  // Past the end of the text.
  EXPECT_FALSE(l.Next());
  EXPECT_EQ(l.report.Fault, Database_Fault::Corrupted);
  EXPECT_EQ(l.report.Message, "Material DataBase is corrupted");
}

TEST(Database_Line, BothDecimalSignsInBothLocales) {
  for (bool comma : {false, true}) {
    SCOPED_TRACE(comma);
    bool ok = false;
    EXPECT_EQ(Parse_Database_Number("2,5", comma, ok), 2.5);
    EXPECT_TRUE(ok);
    EXPECT_EQ(Parse_Database_Number("2.5", comma, ok), 2.5);
    EXPECT_TRUE(ok);
    EXPECT_EQ(Parse_Database_Number("-1,25E2", comma, ok), -125);
    EXPECT_TRUE(ok);
    for (const char* empty : {"", ",", "."}) {
      EXPECT_EQ(Parse_Database_Number(empty, comma, ok), 0);
      EXPECT_TRUE(ok);
    }
    for (const char* bad :
         {"1.2.3", "1,2,3", "1,2.3", "-", "+", "--1", "1-", "3E", "1E+", "E5", "1EE3", "1E400"}) {
      Parse_Database_Number(bad, comma, ok);
      EXPECT_FALSE(ok) << bad;
    }
  }
  Lines l("\"2,5\"\n", true);
  ASSERT_TRUE(l.Next());
  EXPECT_EQ(l.Numbers(), std::vector<double>{2.5});
}

std::string Syntax_Message_Of(const std::string& text, int line) {
  Lines l(text);
  for (int i = 1; i < line; ++i)
    EXPECT_TRUE(l.Next());
  EXPECT_FALSE(l.Next());
  EXPECT_EQ(l.report.Fault, Database_Fault::Syntax);
  EXPECT_EQ(l.report.Line, line);
  return l.report.Message;
}

TEST(Database_Line, SpoiltTokensAndTooManyNumbersAreSyntaxErrors) {
  EXPECT_EQ(Syntax_Message_Of("ok\n3Elements\n", 2), "Syntax error in line 2\n3Elements");
  EXPECT_EQ(Syntax_Message_Of("E-modulus 30000", 1), "Syntax error in line 1\nE-modulus 30000");
  EXPECT_EQ(Syntax_Message_Of("a\nb\n1.2.3 x", 3), "Syntax error in line 3\n1.2.3 x");
  std::string forty, forty_one;
  for (int i = 1; i <= 40; ++i)
    forty += std::to_string(i) + " ";
  forty_one = forty + "41";
  Lines ok(forty);
  ASSERT_TRUE(ok.Next());
  EXPECT_EQ(ok.reader.Number_Count, 40);
  EXPECT_EQ(ok.reader.Number[40], 40);
  EXPECT_EQ(Syntax_Message_Of(forty_one, 1), "Syntax error in line 1\n" + forty_one);
}

TEST(Database_Line, SlotsBeyondTheCountAreZero) {
  Lines l("1 2 3 4 5 6\n7\n");
  ASSERT_TRUE(l.Next());
  ASSERT_TRUE(l.Next());
  EXPECT_EQ(l.reader.Number_Count, 1);
  for (int i = 2; i <= Max_Database_Numbers; ++i)
    EXPECT_EQ(l.reader.Number[i], 0);
}

}  // namespace
}  // namespace pvx
