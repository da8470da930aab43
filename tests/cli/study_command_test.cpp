// pvx study and the reading behind it: one row per variant of a run set, checked against the index
// that pvx results reads from the same family and against a family whose values are known in
// closed form; a family that is missing, short or damaged is told as such, with exit status 1.
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "cli_support.h"
#include "project_io.h"
#include "results/study.h"

namespace pvx {
namespace {

// The lines of a text, or the cells of a CSV line (an empty last cell included).
std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::stringstream in(text);
  for (std::string part; std::getline(in, part, separator);)
    parts.push_back(part);
  if (separator == ',' && !text.empty() && text.back() == separator) parts.emplace_back();
  return parts;
}

// Every row is its family's extremes; then a variant whose run stopped early and one whose family
// is gone get rows that say so, and exit status 1.
TEST(Pvx_Study, EveryVariantIsTheExtremeOfItsFamilyOrSaysWhatIsWrongWithIt) {
  test::Temp_Dir dir;
  Project p;
  const std::string project = test::Three_Variants(dir, p);
  const test::Pvx_Run run = test::Pvx({"run", project});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(test::Pvx({"study", project, "--count"}).out, "3\n");
  const test::Pvx_Run csv = test::Pvx({"study", project, "--csv"});
  const test::Pvx_Run table = test::Pvx({"study", project});
  ASSERT_EQ(csv.status, 0) << csv.err;
  ASSERT_EQ(table.status, 0) << table.err;
  const auto rows = Split(csv.out, '\n'), lines = Split(table.out, '\n');
  ASSERT_EQ(rows.size(), 4u) << csv.out;
  ASSERT_EQ(lines.size(), 4u) << table.out;
  const int materials[] = {1, 2, 4};
  for (int k = 1; k <= 3; ++k) {
    SCOPED_TRACE(k);
    const auto row = Split(rows[static_cast<std::size_t>(k)], ',');
    ASSERT_EQ(row.size(), 23u);
    const std::string family = k == 1 ? "W.RES" : fmt::format("W{}.RES", k);
    const std::string& material = p.Material[materials[k - 1]].Name;
    EXPECT_EQ(std::vector<std::string>(row.begin(), row.begin() + 5),
              (std::vector<std::string>{std::to_string(k), material, family, "complete", ""}));
    // The family's index as pvx results reads it: every storage of the schedule, and the run's
    // extremes with the stored steps that hold them.
    const auto index = nlohmann::json::parse(test::Pvx({"results", dir.file(family), "--json"}).out);
    EXPECT_EQ(row[5], std::to_string(index["storages"].get<int>()));
    EXPECT_EQ(row[6], row[5]);
    for (const auto& [variable, value, time, stored] :
         {std::tuple{1, 7, 9, 10}, std::tuple{19, 14, 16, 17}}) {
      const auto& e = index["extremes"][static_cast<std::size_t>(variable - 1)];
      const int at = e["stored_index_of_max"].get<int>();
      EXPECT_NEAR(std::stod(row[value]), e["period_max"].get<double>(), 1e-8 * e["period_max"].get<double>())
          << variable;
      EXPECT_EQ(row[stored], std::to_string(at)) << variable;
      EXPECT_EQ(std::stod(row[time]), index["storage_times"][static_cast<std::size_t>(at - 1)].get<double>());
    }
    // The table says the same.
    const std::string& line = lines[static_cast<std::size_t>(k)];
    for (const std::string& text :
         {fmt::format("{}  ", k), material, family, fmt::format("{:.2f} oC", std::stod(row[7])),
          fmt::format("node {} at (", row[11]), fmt::format("{:.3f}", std::stod(row[14])),
          fmt::format("element {}, corner {} (node {}) at (", row[18], row[19], row[20])})
      EXPECT_NE(line.find(text), std::string::npos) << text << " in " << line;
  }

  // Variant 2 again with an iteration limit its first step does not meet: it stops after the
  // initial state. Variant 3's family is gone.
  ASSERT_EQ(test::Pvx({"run", project, "--variant", "2", "--iterations", "3"}).status, 1);
  for (const auto& entry : std::filesystem::directory_iterator(dir.path()))
    if (entry.path().filename().string().starts_with("W3.")) std::filesystem::remove(entry.path());

  const test::Pvx_Run short_csv = test::Pvx({"study", project, "--csv"});
  EXPECT_EQ(short_csv.status, 1);
  const auto short_rows = Split(short_csv.out, '\n');
  ASSERT_EQ(short_rows.size(), 4u) << short_csv.out;
  EXPECT_EQ(short_rows[1], rows[1]);
  EXPECT_EQ(
      short_rows[2].find(fmt::format("2,{},W2.RES,incomplete,1 of 37 storages,1,37,", p.Material[2].Name)),
      0u)
      << short_rows[2];
  EXPECT_EQ(short_rows[3],
            fmt::format("3,{},W3.RES,missing,no W3.RES,0,37,,,,,,,,,,,,,,,,", p.Material[4].Name));
  const test::Pvx_Run short_table = test::Pvx({"study", project});
  EXPECT_EQ(short_table.status, 1);
  EXPECT_NE(short_table.out.find(" incomplete: 1 of 37 storages; so far "), std::string::npos)
      << short_table.out;
  EXPECT_NE(short_table.out.find(" missing: no W3.RES\n"), std::string::npos) << short_table.out;
  EXPECT_EQ(short_table.err,
            "2 of 3 variants have no complete result family: compute them again with pvx run " + project +
                " --variant K for K in 2,3, or as the tasks --array=2,3 of a job array\n");

  // Without material variants the design is computed once as it stands: one task.
  std::filesystem::copy_file(test::Source_Path("examples/WALL.PVX"), dir.file("WALL.PVX"));
  EXPECT_EQ(test::Pvx({"study", dir.file("WALL.PVX"), "--count"}).out, "1\n");
}

// ---- The reading of one family: the two-element family of known values, as written or damaged.

TEST(Read_Study_Row, StateAndExtremesOfAFamily) {
  using Damage = void (*)(const test::Temp_Dir&);
  struct Case {
    const char* name;
    int expected_storages;
    Damage damage;
    Study_State state;
    const char* problem;
  };
  const Damage none = [](const test::Temp_Dir&) {};
  const Case cases[] = {
      {"as scheduled", 2, none, Study_State::Complete, ""},
      {"schedule unknown", 0, none, Study_State::Complete, ""},
      {"run ended early", 3, none, Study_State::Incomplete, "2 of 3 storages"},
      {"another run's", 1, none, Study_State::Mismatched,
       "2 storages where the schedule gives 1: the family of another run"},
      {"no index", 2, [](const test::Temp_Dir& d) { std::filesystem::remove(d.file("R.RES")); },
       Study_State::Missing, "no R.RES"},
      {"index cut short", 2,
       [](const test::Temp_Dir& d) { std::filesystem::resize_file(d.file("R.RES"), 20); },
       Study_State::Unreadable, "its index is damaged: the file is too short for 2 steps"},
      {"a sibling cut short", 2,
       [](const test::Temp_Dir& d) { std::filesystem::resize_file(d.file("R.REA"), 4); },
       Study_State::Unreadable, "a file of the family is missing or shorter than its index says"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    test::Temp_Dir dir;
    test::Write_Two_Element_Family(dir);
    // The index's Szz/ft row as a run samples it: 0.2 at a step between storages, stored step 2.
    Run_Index index;
    std::string message;
    ASSERT_TRUE(Read_Run_Index_File(dir.file("R.RES"), Run_Index_Version, false, index, message));
    index.Extremes[19] = {0, 0.2, 0, 0.2, 1, 2};
    const auto header = Encode_Run_Index(index, Storage_Count(index));
    std::string bytes = test::Read_Text(dir.file("R.RES"));
    test::Write_Text(dir.file("R.RES"),
                     bytes.replace(0, header.size(), std::string(header.begin(), header.end())));
    Project p;
    std::ostringstream err;
    ASSERT_TRUE(cli::Open_Project(dir.file("R.PVX"), p, err)) << err.str();
    const Result_Layout layout = cli::Layout_Of_Family(p, dir.file("R.RES"));
    c.damage(dir);

    const Study_Row row = Read_Study_Row(p, layout, {1, "C", dir.file("R.RES"), c.expected_storages});
    EXPECT_EQ(row.State, c.state);
    EXPECT_EQ(row.Problem, c.problem);
    const Study_Extreme &t = row.Temperature, &s = row.Szz_Ft;
    if (c.damage != none) {
      EXPECT_FALSE(t.Found || s.Found);
      continue;
    }
    // At stored step 2 (2 hours) node n holds 20 + n + 2: node 6 at (200, 100) is the warmest.
    ASSERT_TRUE(t.Found);
    EXPECT_EQ(std::tuple(t.Run_Value, t.Stored_Value, t.Stored, t.Time), std::tuple(28.0, 28.0, 2, 2.0));
    EXPECT_EQ(std::tuple(t.Node, t.Element, t.X, t.Y), std::tuple(6, 0, 200.0, 100.0));
    // Corner k has Szz = k against ft 25 in element 1 and 75 in element 2: 4 / 25 at element 1,
    // corner 4 (node 4 at (0, 100)) beats 8 / 75.
    ASSERT_TRUE(s.Found);
    EXPECT_EQ(std::tuple(s.Run_Value, s.Stored, s.Time), std::tuple(0.2, 2, 2.0));
    EXPECT_NEAR(s.Stored_Value, 4.0 / 25, 1e-7);
    EXPECT_EQ(std::tuple(s.Element, s.Corner, s.Node, s.X, s.Y), std::tuple(1, 4, 4, 0.0, 100.0));
  }
}

}  // namespace
}  // namespace pvx
