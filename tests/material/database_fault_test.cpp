// Every fault of a database gives the program's message, and no fault leaves a part of a database
// behind.
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "database_samples.h"
#include "support/temp_dir.h"

namespace pvx {
namespace {

using namespace test;

TEST(Database_Fault, EachFormatFaultGivesItsMessage) {
  const std::string heat = "CORE heat 100000 0.05 4", isot = "ISOT softening 0.3 0.03 0.2";
  const std::string cap = "2400 capacity", cond = "2.3 conductivity", matu = "MATU 2 modulus";
  // A line of the concrete, the message, and the texts that take its place.
  // clang-format off
  const std::tuple<std::string, std::string, std::vector<std::string>> rows[] = {
      {"2400 dead weight", "Problems with Dead Weight", {"dead weight", "2400 2 dead weight"}},
      {"THERMAL", "Error 9a", {"TERMAL"}},            {"HYGRAL", "Error 9b", {"MOISTURE"}},
      {cap, "error 1", {"2400 2 capacity", "capacity"}},
      {cap, "illegal water content", {"1800 2400 0 capacity"}},
      {cond, "error 1", {"2.3 1 conductivity", "1 2 3 4 conductivity"}},
      {cond, "illegal water content", {"1 2 0 conductivity"}},
      {"4000 activation", "error 2", {"4000 1 2 activation", "activation"}},
      {"293 reference", "error 3", {"reference"}},
      {"293 reference", "error 5", {"293 reference\nMOIS 5"}},
      {"293 reference", "error 4", {"293 reference\nC_ME", "293 reference\nC_ME 1.3 2"}},
      {heat, "error 6", {"CONS", "CONS 1 2 3 4"}},     {heat, "error 7", {"CORE 1 2", "CORE 1 2 3 4 5 6"}},
      {heat, "error 8", {"DANI 1 2", "DANI 1 2 3 4 5 6", "PIWI", "PIWI 2 1 0 1"}},
      {heat, "Error 9", {"HEAT 1"}},
      // Two numbers are allowed on the first and the eighth line of the hygral block only.
      {"300 cement", "Error 9d", {"300 2 cement"}},    {"0.05 third diffusion", "Error 9j", {"0.05 1 third"}},
      {"MECHANICAL", "Error 15", {"STRUCTURAL"}},      {"CONS 0 hygral", "Error 15", {"TABLE 0"}},
      {"CONS 0.00001 thermal dilatation", "Error 10", {"CONS 1 2", "CONS"}},
      {matu, "Error 11", {"MATU 1 modulus", "MATU 0 modulus"}},
      {matu, "Error 12", {"MATU modulus", "MATU 2 3 modulus"}},
      {"10 1000", "Error 13", {"10 1000 5"}},          {"100 30000", "Error 13", {"100"}},
      {"100 30000", "Error 14", {"10 30000", "5 30000"}},  // equal is not rising
      {"NO STATISTICS", "Error variation", {"STATISTICS 0.1 0.2", "STATISTICS"}},
      {isot, "Error max3", {"ISOT 0.3 0.03"}},
      {isot, "Error max6", {"EPFL 1 2 3 4", "EPFL 1 2 3 4 5 6 7 8 9"}},
      {isot, "Error ISOM first line (3 numbers needed)", {"ISOM 3 0.5"}},
      {isot, "Error ISOM first line (No points out of range.", {"ISOM 1 0.5 0", "ISOM 22 0.5 0"}},
      {isot, "Error ISOM (at least 2 numbers needed for a point).", {"ISOM 2 0.5 0\n0 1\n0.1"}},
      {isot, "Error ISOM (WW of points should always increase).", {"ISOM 2 0.5 0\n0 1\n0 0"}}};
  // clang-format on
  for (const auto& [line, message, faults] : rows)
    for (const std::string& fault : faults)
      EXPECT_EQ(Fault_Of(Base_With(line, fault)), message) << fault;
  // Records that end otherwise: a beginning, the message, and the endings.
  // clang-format off
  const std::string chain = Chain_Head() + "Temp\nHum\nStress\nTransient\n", steel = "1\nSteel\nREIN\n";
  const std::tuple<std::string, std::string, std::vector<std::string>> ends[] = {
      {Before(Base_With("Linear Elastic", "Soil"), "MATU 2 modulus"), "Soil 1",
       {"NONLinear 2 3\n", "NO Tension\n", "NONLinear 2\n0 0\n0.1\n", "elastic\n"}},
      {chain, "Error max1", {"0 units\n", "51 units\n"}},
      {chain, "Error max3", {"2 units\n1 10 100\n", "2 units\n1 10\n0.5 0.5\n0.5\n"}},
      {steel, "Problems with reinforcement data", {"1\n0 0\n", "2\n0 0\n2.5\n", "2\n0 0\n2.5 500 3\n",
                                                   "2\n0 0\n2.5 500\n1\n", "2\n0 0\n2.5 500\n2\n0 0\n1\n"}}};
  // clang-format on
  for (const auto& [head, message, endings] : ends)
    for (const std::string& ending : endings)
      EXPECT_EQ(Fault_Of(head + ending), message) << ending;
  // Before format 100 there is no stress-level line: "Stress level" is then the transient line,
  // and the chain size is read from the transient line (0.00001 is not 1..50).
  EXPECT_EQ(Fault_Of(Chain_Text(99)), "Error max1");
  // Each line of the hygral block has its own message; three numbers are too many on every line,
  // none too few on all but the third diffusion.
  const char* messages[] = {"Error 9c", "Error 9d", "Error 9d1", "Error 9d2", "Error 9e",
                            "Error 9f", "Error 9g", "Error 9h",  "Error 9h",  "Error 9i",
                            "Error 9j", "Error 9k", "Error 9l",  "Error 9m"};
  std::size_t at = Base.find("HYGRAL\n") + 7;
  for (const char* message : messages) {
    const std::string line = Base.substr(at, Base.find('\n', at) - at);
    at += line.size() + 1;
    SCOPED_TRACE(line);
    EXPECT_EQ(Fault_Of(Base_With(line, "1 2 3")), message);
    if (line == "0.05 third diffusion") continue;
    EXPECT_EQ(Fault_Of(Base_With(line, "nothing")), message);
  }
}

TEST(Database_Fault, CountsUpToTheirLimitsReadAndBeyondThemAreCorruption) {
  auto joint = [](int points) {  // interface points from index 40 on, two numbers each
    std::string text = "1\nJoint\nINTE 3\n1\n2\n3\n4\n" + std::to_string(points) + "\n";
    for (int i = 1; i <= points; ++i)
      text += std::to_string(i) + " " + std::to_string(-i) + "\n";
    return text;
  };
  EXPECT_EQ(Read_One(joint(30)).Interface_Data[100], -30);
  std::string points = "ISOM 21 0.5 0";
  for (int i = 0; i < 21; ++i)
    points.append("\n").append(std::to_string(i)).append(" ").append(std::to_string(1 - i / 20.0));
  EXPECT_EQ(Read_One(Base_With("ISOT softening 0.3 0.03 0.2", points)).Softening_Law.Crack_Width.count(), 21);
  // The chain size limit is a setting.
  const std::string chain = Chain_Head() + "Temp\nHum\nStress\nTransient\n";
  const std::string two = chain + "2 units\n1 10\n0.5 0.5\n0.4 0.6\nNO S\nseparator\n";
  EXPECT_EQ(Read_One(two).Chain_Coefficient[2][2], 0.6);
  EXPECT_EQ(Fault_Of(two, {.Chain_Size_Limit = 1}), "Error max1");
  EXPECT_TRUE(Read(chain + "1 units\n10\n1\n1\nNO S\nseparator\n", {.Chain_Size_Limit = 1}).ok);
  // An end of the text inside a record, or a value beyond its field, is corruption.
  const std::string count = "1 100 materials and format", reference = "293 reference";
  for (const std::string& text : {std::string(), Before(Base, "Linear Elastic"), Base_With(count, "2 100"),
                                  Base_With(count, "-1 100"), Base_With(count, "40000 100"),  // 16 bits
                                  Base_With("MATU 2 modulus", "MATU 70000 modulus"),
                                  Base_With("CONS 0.2 poisson", "CONS 1E39"),          // beyond a single
                                  Base_With("2400 capacity", "2000 20 0 1 capacity"),  // 20 latent pairs
                                  Base_With(reference, "293 reference\nC_ME 1"),       // no weighted maturity
                                  Base_With(reference, "293 reference\nC_ME -2"), joint(31)}) {
    SCOPED_TRACE(text.substr(0, 60));
    const Read_Result r = Read(text);
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.report.Fault, Database_Fault::Corrupted);
    EXPECT_EQ(r.report.Message, "Material DataBase is corrupted");
  }
  // Above 40 units the line of times cannot be written.
  std::string times;
  for (int i = 1; i <= 41; ++i)
    times += std::to_string(i) + " ";
  const Read_Result r = Read(chain + "41 units\n" + times + "\n");
  EXPECT_EQ(r.report.Fault, Database_Fault::Syntax);
  EXPECT_EQ(r.report.Message, "Syntax error in line 43\n" + times);
}

TEST(Database_Fault, OnlyAWholeDatabaseReplacesTheTable) {
  Table<Material> materials;
  Table<std::int32_t> colours;
  Database_Report report;
  ASSERT_TRUE(Read_Database_Text(Base, {}, materials, colours, report));
  const Table<Material> before = materials;
  const Table<std::int32_t> colours_before = colours;
  // A second material that fails late, after the first was read whole.
  std::string two = Base_With("1 100 materials and format", "2 100") + Base.substr(Base.find('\n') + 1);
  two = two.substr(0, two.rfind("ISOT softening")) + "ISOT 1\n";
  EXPECT_FALSE(Read_Database_Text(two, {}, materials, colours, report));
  EXPECT_EQ(report.Message, "Error max3");
  EXPECT_TRUE(materials == before && colours == colours_before);
  // The same through a file, and one that cannot be opened (whose question is checked by the batch
  // tool's tests).
  test::Temp_Dir dir;
  Write_Text(dir.file("bad.txt"), Before(Base, "HYGRAL"));
  std::string got;
  EXPECT_FALSE(Read_Material_Database(dir.file("bad.txt"), materials, colours, got));
  EXPECT_EQ(got, "Material DataBase is corrupted");
  EXPECT_FALSE(Read_Material_Database(dir.path().string(), materials, colours, got));  // a folder
  EXPECT_TRUE(materials == before);
  // A good file, with line ends of any platform, replaces the table and clears the message.
  std::string crlf;
  for (char c : Base)
    crlf += c == '\n' ? std::string("\r\n") : std::string(1, c);
  Write_Text(dir.file("crlf.txt"), crlf);
  materials = {Material{}, Material{}, Material{}};
  colours = {1, 2, 3};
  ASSERT_TRUE(Read_Material_Database(dir.file("crlf.txt"), materials, colours, got)) << got;
  EXPECT_TRUE(got.empty() && materials == before && colours == colours_before);
}

}  // namespace
}  // namespace pvx
