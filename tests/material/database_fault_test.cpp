// Every fault of a database gives the program's message, and no fault leaves a part of a database
// behind.
#include <gtest/gtest.h>

#include <string>

#include "database_samples.h"
#include "support/temp_dir.h"

namespace pvx {
namespace {

using namespace test;

TEST(Database_Fault, ThermalSection) {
  EXPECT_EQ(Fault_Of(With(Base, "THERMAL", "TERMAL")), "Error 9a");
  EXPECT_EQ(Fault_Of(With(Base, "2400 capacity", "2400 2 capacity")), "error 1");
  EXPECT_EQ(Fault_Of(With(Base, "2400 capacity", "capacity")), "error 1");
  EXPECT_EQ(Fault_Of(With(Base, "2400 capacity", "1800 2400 0 capacity")), "illegal water content");
  EXPECT_EQ(Fault_Of(With(Base, "2.3 conductivity", "2.3 1 conductivity")), "error 1");
  EXPECT_EQ(Fault_Of(With(Base, "2.3 conductivity", "1 2 3 4 conductivity")), "error 1");
  EXPECT_EQ(Fault_Of(With(Base, "2.3 conductivity", "1 2 0 conductivity")), "illegal water content");
  EXPECT_EQ(Fault_Of(With(Base, "4000 activation", "4000 1 2 activation")), "error 2");
  EXPECT_EQ(Fault_Of(With(Base, "4000 activation", "activation")), "error 2");
  EXPECT_EQ(Fault_Of(With(Base, "293 reference", "reference")), "error 3");
  EXPECT_EQ(Fault_Of(With(Base, "293 reference", "293 reference\nC_ME")), "error 4");
  EXPECT_EQ(Fault_Of(With(Base, "293 reference", "293 reference\nC_ME 1.3 2")), "error 4");
  EXPECT_EQ(Fault_Of(With(Base, "293 reference", "293 reference\nMOIS 5")), "error 5");
  const std::string heat = "CORE heat 100000 0.05 4";
  EXPECT_EQ(Fault_Of(With(Base, heat, "CONS")), "error 6");
  EXPECT_EQ(Fault_Of(With(Base, heat, "CONS 1 2 3 4")), "error 6");
  EXPECT_EQ(Fault_Of(With(Base, heat, "CORE 1 2")), "error 7");
  EXPECT_EQ(Fault_Of(With(Base, heat, "CORE 1 2 3 4 5 6")), "error 7");
  EXPECT_EQ(Fault_Of(With(Base, heat, "DANI 1 2")), "error 8");
  EXPECT_EQ(Fault_Of(With(Base, heat, "DANI 1 2 3 4 5 6")), "error 8");
  EXPECT_EQ(Fault_Of(With(Base, heat, "PIWI")), "error 8");
  EXPECT_EQ(Fault_Of(With(Base, heat, "PIWI 2 1 0 1")), "error 8");
  EXPECT_EQ(Fault_Of(With(Base, heat, "HEAT 1")), "Error 9");
}

TEST(Database_Fault, HygralSectionLineByLine) {
  EXPECT_EQ(Fault_Of(With(Base, "HYGRAL", "MOISTURE")), "Error 9b");
  const std::pair<const char*, const char*> lines[] = {{"0.5 ratio", "Error 9c"},
                                                       {"300 cement", "Error 9d"},
                                                       {"0.015 air", "Error 9d1"},
                                                       {"1.05 limit", "Error 9d2"},
                                                       {"1 temperature flag", "Error 9e"},
                                                       {"20 fixed temperature", "Error 9f"},
                                                       {"1 hydration flag", "Error 9g"},
                                                       {"0.8 default hydration", "Error 9h"},
                                                       {"0.00001 first diffusion", "Error 9h"},
                                                       {"0.8 second diffusion", "Error 9i"},
                                                       {"0.05 third diffusion", "Error 9j"},
                                                       {"0.25 consumption", "Error 9k"},
                                                       {"0 saturated flag", "Error 9l"},
                                                       {"0.000000001 permeability", "Error 9m"}};
  for (const auto& [line, message] : lines) {
    SCOPED_TRACE(line);
    // Three numbers are too many on every line; none is too few on all but the third diffusion.
    EXPECT_EQ(Fault_Of(With(Base, line, "1 2 3")), message);
    if (std::string(message) != "Error 9j") {
      EXPECT_EQ(Fault_Of(With(Base, line, "nothing")), message);
    }
  }
  // Two numbers are allowed on lines 1 and 8 only.
  EXPECT_EQ(Fault_Of(With(Base, "300 cement", "300 2 cement")), "Error 9d");
  EXPECT_EQ(Fault_Of(With(Base, "0.05 third diffusion", "0.05 1 third")), "Error 9j");
}

TEST(Database_Fault, MechanicalSectionAndProperties) {
  EXPECT_EQ(Fault_Of(With(Base, "MECHANICAL", "STRUCTURAL")), "Error 15");
  EXPECT_EQ(Fault_Of(With(Base, "CONS 0.00001 thermal dilatation", "CONS 1 2")), "Error 10");
  EXPECT_EQ(Fault_Of(With(Base, "CONS 0.00001 thermal dilatation", "CONS")), "Error 10");
  EXPECT_EQ(Fault_Of(With(Base, "CONS 0 hygral", "TABLE 0")), "Error 15");
  EXPECT_EQ(Fault_Of(With(Base, "MATU 2 modulus", "MATU 1 modulus")), "Error 11");
  EXPECT_EQ(Fault_Of(With(Base, "MATU 2 modulus", "MATU 0 modulus")), "Error 11");
  EXPECT_EQ(Fault_Of(With(Base, "MATU 2 modulus", "MATU modulus")), "Error 12");
  EXPECT_EQ(Fault_Of(With(Base, "MATU 2 modulus", "MATU 2 3 modulus")), "Error 12");
  EXPECT_EQ(Fault_Of(With(Base, "10 1000", "10 1000 5")), "Error 13");
  EXPECT_EQ(Fault_Of(With(Base, "100 30000", "100")), "Error 13");
  EXPECT_EQ(Fault_Of(With(Base, "100 30000", "10 30000")), "Error 14");  // equal is not rising
  EXPECT_EQ(Fault_Of(With(Base, "100 30000", "5 30000")), "Error 14");
  EXPECT_EQ(Fault_Of(With(Base, "NO STATISTICS", "STATISTICS 0.1 0.2")), "Error variation");
  EXPECT_EQ(Fault_Of(With(Base, "NO STATISTICS", "STATISTICS")), "Error variation");
  EXPECT_EQ(Fault_Of(With(Base, "2400 dead weight", "dead weight")), "Problems with Dead Weight");
  EXPECT_EQ(Fault_Of(With(Base, "2400 dead weight", "2400 2 dead weight")), "Problems with Dead Weight");
}

TEST(Database_Fault, SofteningAndChain) {
  const std::string isot = "ISOT softening 0.3 0.03 0.2";
  EXPECT_EQ(Fault_Of(With(Base, isot, "ISOT 0.3 0.03")), "Error max3");
  EXPECT_EQ(Fault_Of(With(Base, isot, "EPFL 1 2 3 4")), "Error max6");
  EXPECT_EQ(Fault_Of(With(Base, isot, "EPFL 1 2 3 4 5 6 7 8 9")), "Error max6");
  EXPECT_EQ(Fault_Of(With(Base, isot, "ISOM 3 0.5")), "Error ISOM first line (3 numbers needed)");
  EXPECT_EQ(Fault_Of(With(Base, isot, "ISOM 1 0.5 0")), "Error ISOM first line (No points out of range.");
  EXPECT_EQ(Fault_Of(With(Base, isot, "ISOM 22 0.5 0")), "Error ISOM first line (No points out of range.");
  EXPECT_EQ(Fault_Of(With(Base, isot, "ISOM 2 0.5 0\n0 1\n0.1")),
            "Error ISOM (at least 2 numbers needed for a point).");
  EXPECT_EQ(Fault_Of(With(Base, isot, "ISOM 2 0.5 0\n0 1\n0 0")),
            "Error ISOM (WW of points should always increase).");
  // 21 points are allowed.
  std::string points = "ISOM 21 0.5 0";
  for (int i = 0; i < 21; ++i) {
    points += '\n';
    points += std::to_string(i);
    points += ' ';
    points += std::to_string(1 - i / 20.0);
  }
  EXPECT_EQ(Read_One(With(Base, isot, points)).Softening_Law.Crack_Width.count(), 21);

  std::string chain = With(Base, "Linear Elastic", "Maxwell Chain");
  chain = chain.substr(0, chain.find("ISOT softening")) + "Temp\nHum\nStress\nTransient\n";
  const std::string tail = "NO Softening\nseparator\n";
  EXPECT_EQ(Fault_Of(chain + "0 units\n"), "Error max1");
  EXPECT_EQ(Fault_Of(chain + "51 units\n"), "Error max1");
  EXPECT_EQ(Fault_Of(chain + "2 units\n1 10 100\n"), "Error max3");
  EXPECT_EQ(Fault_Of(chain + "2 units\n1 10\n0.5 0.5\n0.5\n"), "Error max3");
  EXPECT_EQ(Read_One(chain + "2 units\n1 10\n0.5 0.5\n0.4 0.6\n" + tail).Chain_Coefficient[2][2], 0.6);
  // The limit is a setting.
  Database_Settings small;
  small.Chain_Size_Limit = 1;
  EXPECT_EQ(Fault_Of(chain + "2 units\n1 10\n0.5 0.5\n0.4 0.6\n" + tail, small), "Error max1");
  // Above 40 units the line of times cannot be written.
  std::string times;
  for (int i = 1; i <= 41; ++i)
    times += std::to_string(i) + " ";
  const Read_Result r = Read(chain + "41 units\n" + times + "\n");
  EXPECT_FALSE(r.ok);
  EXPECT_EQ(r.report.Fault, Database_Fault::Syntax);
}

TEST(Database_Fault, Reinforcement) {
  const std::string steel = "1\nSteel\nREIN\n";
  const std::string rest = "0 0\n1 10\n1000\n1\n0\n0.000012\n";
  EXPECT_EQ(Read(steel + "2\n0 0\n2.5 500\n2\n" + rest).ok, true);
  EXPECT_EQ(Fault_Of(steel + "1\n0 0\n"), "Problems with reinforcement data");
  EXPECT_EQ(Fault_Of(steel + "2\n0 0\n2.5\n"), "Problems with reinforcement data");
  EXPECT_EQ(Fault_Of(steel + "2\n0 0\n2.5 500 3\n"), "Problems with reinforcement data");
  EXPECT_EQ(Fault_Of(steel + "2\n0 0\n2.5 500\n1\n"), "Problems with reinforcement data");
  EXPECT_EQ(Fault_Of(steel + "2\n0 0\n2.5 500\n2\n0 0\n1\n"), "Problems with reinforcement data");
}

Database_Report Report_Of(const std::string& text) {
  const Read_Result r = Read(text);
  EXPECT_FALSE(r.ok);
  return r.report;
}

TEST(Database_Fault, RunTimeFaultsAreCorruption) {
  for (const std::string& text : {
           std::string(""),                                        // an empty file
           Base.substr(0, Base.find("Linear Elastic")),            // the end inside a record
           With(Base, "1 100 materials and format", "2 100"),      // fewer materials than said
           With(Base, "1 100 materials and format", "-1 100"),     // a negative count
           With(Base, "1 100 materials and format", "40000 100"),  // a count beyond 16 bits
           With(Base, "MATU 2 modulus", "MATU 70000 modulus"),     // likewise a point count
           With(Base, "CONS 0.2 poisson", "CONS 1E39"),            // beyond a single
           With(Base, "2400 capacity", "2000 20 0 1 capacity"),    // latent pairs beyond 40
           With(Base, "293 reference", "293 reference\nC_ME 1"),   // weighted maturity of C = 1
           With(Base, "293 reference", "293 reference\nC_ME -2"),  // or of a negative C
           std::string("1\nJoint\nINTE 3\n1\n2\n3\n4\n31\n") +
               [] {  // interface data beyond 100
                 std::string p;
                 for (int i = 0; i < 31; ++i)
                   p += "1 2\n";
                 return p;
               }(),
       }) {
    SCOPED_TRACE(text.substr(0, 60));
    const Database_Report report = Report_Of(text);
    EXPECT_EQ(report.Fault, Database_Fault::Corrupted);
    EXPECT_EQ(report.Message, "Material DataBase is corrupted");
  }
  // Thirty points fill the interface data to index 100 exactly.
  std::string thirty = "1\nJoint\nINTE 3\n1\n2\n3\n4\n30\n";
  for (int i = 1; i <= 30; ++i)
    thirty += std::to_string(i) + " " + std::to_string(-i) + "\n";
  const Material joint = Read_One(thirty);
  EXPECT_EQ(joint.Interface_Data[99], 30);
  EXPECT_EQ(joint.Interface_Data[100], -30);
}

TEST(Database_Fault, SyntaxErrorsNameTheLineAndItsText) {
  const Database_Report report = Report_Of(With(Base, "2.3 conductivity", "2.3.1 conductivity"));
  EXPECT_EQ(report.Fault, Database_Fault::Syntax);
  EXPECT_EQ(report.Line, 6);
  EXPECT_EQ(report.Message, "Syntax error in line 6\n2.3.1 conductivity");
}

TEST(Database_Fault, AFaultLeavesTheTableInHandUntouched) {
  Table<Material> materials;
  Table<std::int32_t> colours;
  Database_Report report;
  ASSERT_TRUE(Read_Database_Text(Base, {}, materials, colours, report));
  const Table<Material> before = materials;
  const Table<std::int32_t> colours_before = colours;
  // A second material that fails late, after the first was read whole.
  std::string two = With(Base, "1 100 materials and format", "2 100") + Base.substr(Base.find('\n') + 1);
  two = two.substr(0, two.rfind("ISOT softening")) + "ISOT 1\n";
  EXPECT_FALSE(Read_Database_Text(two, {}, materials, colours, report));
  EXPECT_EQ(report.Message, "Error max3");
  EXPECT_TRUE(materials == before);
  EXPECT_TRUE(colours == colours_before);
  // The same through the file, for every kind of fault, and for a missing file.
  Temp_Dir dir;
  const std::pair<std::string, std::string> faults[] = {
      {two, "Error max3"},
      {With(Base, "2.3 conductivity", "2..3"), "Syntax error in line 6\n2..3"},
      {Base.substr(0, Base.find("HYGRAL")), "Material DataBase is corrupted"}};
  for (const auto& [text, message] : faults) {
    Write_Text(dir.file("bad.txt"), text);
    std::string got;
    EXPECT_FALSE(Read_Material_Database(dir.file("bad.txt"), materials, colours, got));
    EXPECT_EQ(got, message);
    EXPECT_TRUE(materials == before);
    EXPECT_TRUE(colours == colours_before);
  }
  std::string got;
  EXPECT_FALSE(Read_Material_Database(dir.file("none.txt"), materials, colours, got));
  EXPECT_EQ(got, "Material Database (" + dir.file("none.txt") +
                     ") could not be opened. Do you want to browse for this file ?");
  EXPECT_FALSE(Read_Material_Database(dir.path().string(), materials, colours, got));  // a folder
  EXPECT_TRUE(materials == before);
}

TEST(Database_Fault, AGoodFileReplacesTheTable) {
  Temp_Dir dir;
  Write_Text(dir.file("good.txt"), Base);
  Table<Material> materials = {Material{}, Material{}, Material{}};
  Table<std::int32_t> colours = {1, 2, 3};
  std::string message = "old";
  ASSERT_TRUE(Read_Material_Database(dir.file("good.txt"), materials, colours, message));
  EXPECT_EQ(message, "");
  EXPECT_EQ(materials.count(), 1);
  EXPECT_EQ(materials[1].Name, "Test concrete");
  EXPECT_EQ(colours.count(), 1);
  // Line ends of any platform read the same.
  std::string crlf;
  for (char c : Base)
    crlf += c == '\n' ? std::string("\r\n") : std::string(1, c);
  Write_Text(dir.file("crlf.txt"), crlf);
  Table<Material> again;
  ASSERT_TRUE(Read_Material_Database(dir.file("crlf.txt"), again, colours, message)) << message;
  EXPECT_TRUE(again == materials);
}

}  // namespace
}  // namespace pvx
