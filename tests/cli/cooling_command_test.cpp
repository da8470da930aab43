// pvx results --cooling on a family whose circuit histories are known, and on families without
// circuits or with a damaged history.
#include <gtest/gtest.h>

#include "cli_support.h"
#include "support/cooling_family.h"

namespace pvx {
namespace {

using test::Pvx;

TEST(CoolingCommand, TablesAndCsvOfEveryCircuitAndTheMessagesWithout) {
  test::Temp_Dir dir;
  Table<Circuit_History> circuits{test::Two_Record_History(), {}};
  circuits[2].History.add({1, 0, 0, {20, 21, 22, 23}});
  test::Write_Cooling_Family(dir, circuits);
  // 9.5 oC is 49.1 oF; 2 m3/h is 2 / 0.764554857984 = 2.616 yd3/h; -0.75 kW is -0.711 Btu/s.
  const std::pair<std::vector<std::string>, std::string> cases[] = {
      {{"--csv"},
       "circuit,time_h,flow_m3_per_h,capacity_kW,water_1,water_2,water_3,water_4\n"
       "1,0.5,1.5,2.5,10,11.25,12.5,\n1,12.3,2,-0.75,9.5,10,10.75,\n2,1,0,0,20,21,22,23\n"},
      {{},
       "Circuit 1: 1 pipe section, 2 records; water in oC\n"
       "    time h    flow m3/h    capacity kW      inlet  station 2     outlet\n"
       "      0.50        1.500          2.500      10.00      11.25      12.50\n"},
      {{"--imperial"}, "\n     12.30        2.616         -0.711      49.10      50.00      51.35\n"},
  };
  for (const auto& [options, text] : cases) {
    std::vector<std::string> arguments{"results", dir.file("C.RES"), "--cooling"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const test::Pvx_Run run = Pvx(arguments);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find(text), std::string::npos) << text << "\n" << run.out;
  }
  test::Write_Text(dir.file("C.COO"), "2\r\n0.5,1.5\r\n");
  const test::Pvx_Run damaged = Pvx({"results", dir.file("C.RES"), "--cooling"});
  EXPECT_EQ(damaged.status, 1);
  EXPECT_EQ(damaged.err, Cooling_Corrupted(dir.file("C.COO")) + "\n");

  test::Write_Two_Element_Family(dir);  // no circuits
  const test::Pvx_Run none = Pvx({"results", dir.file("R.RES"), "--cooling"});
  EXPECT_EQ(none.status, 0) << none.err;
  EXPECT_EQ(none.out, "The results have no cooling circuits.\n");
}

}  // namespace
}  // namespace pvx
