// The bundled example database: it reads, its materials give the values of their classes, and any
// piece of it reads to a material table or a message, never to a crash.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "material/database.h"
#include "material/properties.h"
#include "support/temp_dir.h"

namespace pvx {
namespace {

const std::string Example = test::Source_Path("examples/PVX-Concrete.txt");

TEST(Example_Database, ItsMaterialsGiveTheValuesOfTheirClasses) {
  Table<Material> m;
  Table<std::int32_t> colours;
  std::string message;
  ASSERT_TRUE(Read_Material_Database(Example, m, colours, message)) << message;
  ASSERT_EQ(m.count(), 9);
  ASSERT_EQ(m[1].Name, "C30/37 CEM I");
  // Class values of C30/37 at 28 days (672 hours): fcm 38, fctm 2.9, Ecm 33000 MPa; E halfway
  // between 12000 (12 h) and 20000 (24 h) at 18 h. Heat 132000 kJ/m3 over a capacity of 2400
  // kJ/m3K: an adiabatic rise of 55 K.
  EXPECT_DOUBLE_EQ(Table_Value(m[1].Fc, 20, 672), 38);
  EXPECT_NEAR(Table_Value(m[1].Ft, 20, 672), 2.9, 1e-6);
  EXPECT_DOUBLE_EQ(Table_Value(m[1].E, 20, 1e5), 33000);
  EXPECT_DOUBLE_EQ(Table_Value(m[1].E, 20, 18), 16000);
  EXPECT_DOUBLE_EQ(m[1].Heat_H / m[1].Capacity_Wet, 55);
  // The mass concrete's heat is tabulated: its largest rise (47 K) times the wet capacity.
  EXPECT_EQ(m[3].Heat_H, 47 * 2450);
  // The design panel offers interfaces and bars only when the database has them.
  EXPECT_TRUE(Has_Interface_Material(m) && Has_Reinforcement_Material(m));
  m.resize(5);  // the concretes and the soil only
  EXPECT_FALSE(Has_Interface_Material(m) || Has_Reinforcement_Material(m));
}

TEST(Example_Database, EveryPieceReadsOrGivesAMessage) {
  const std::string text = test::Read_Text(Example);
  // The last line the reader needs is the steel's thermal dilatancy; a piece that stops before it
  // cannot be a whole database.
  const std::size_t last_line = text.find("1.2E-5 thermal dilatancy");
  ASSERT_NE(last_line, std::string::npos);
  Table<Material> kept = {Material{}};
  kept[1].Name = "kept";
  Table<std::int32_t> colours = {7};
  // A cut at the start of every line up to that one is refused; one at the next line, or none, reads.
  std::vector<std::size_t> cuts;
  std::size_t at = 0;
  for (; at <= last_line; at = text.find('\n', at) + 1)
    cuts.push_back(at);
  cuts.insert(cuts.end(), {at, text.size()});
  for (const std::size_t cut : cuts) {
    Table<Material> materials = kept;
    Database_Report report;
    const bool ok = Read_Database_Text(std::string_view(text).substr(0, cut), {}, materials, colours, report);
    EXPECT_EQ(ok, cut > last_line) << cut;
    EXPECT_EQ(ok, report.Fault == Database_Fault::None && report.Message.empty()) << cut;
    EXPECT_TRUE(ok ? materials.count() == 9 : materials == kept) << cut;
  }
  EXPECT_GT(cuts.size(), 300u);
}

}  // namespace
}  // namespace pvx
