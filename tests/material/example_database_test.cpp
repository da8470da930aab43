// The bundled example database: it reads, its materials give the values of their classes, and any
// piece of it reads to a material table or a message, never to a crash.
#include <gtest/gtest.h>

#include <string>

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
  // C35/45 with weighted maturity at C = 1.3: 25.3155 degree-hours per hour at 20 oC, so 672 hours
  // are 17012 degree-hours, where the table gives the class value 43.
  ASSERT_EQ(m[2].Name, "C35/45 CEM III/B");
  EXPECT_NEAR(m[2].Fc.Abscissa[5], 672 * 25.3155078, 0.01);
  EXPECT_NEAR(Mechanical_Property(m[2], m[2].Fc, 20, 672, 672 * 25.3155078), 43, 1e-5);
  // The isotherm table gives its own grid points.
  EXPECT_NEAR(Isotherm_Table_Water(0.8, 20, 0.6, m[2].Isotherm_Table_Data), 69.2, 1e-12);
  EXPECT_NEAR(Isotherm_Table_Water(0.3, 40, 1.0, m[2].Isotherm_Table_Data), 132.0, 1e-12);
  // The mass concrete's heat is tabulated: its largest rise (47 K) times the wet capacity. The
  // pore water of the subsoil freezes at 0 oC. The steel has a modulus of 200 GPa.
  EXPECT_EQ(m[3].Heat_H, 47 * 2450);
  EXPECT_EQ(m[5].Name, "Subsoil sand");
  EXPECT_DOUBLE_EQ(Thermal_Capacity(m[5], 0, 0, -0.2, 0.2), 62000);
  EXPECT_EQ(m[9].Steel_Stress_A[2] / m[9].Steel_Strain_A[2], 200);
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
  int refused = 0;
  // Every byte at the start and around the last line, elsewhere every line end and each seventh
  // byte, and a few cuts in the notes behind the last material; the whole text last.
  for (std::size_t cut = 0; cut <= text.size(); ++cut) {
    const bool near_an_end =
        cut < 200 || (cut + 50 > last_line && cut < last_line + 60) || cut == text.size();
    if (!near_an_end && (cut > last_line ? cut % 97 != 0 : cut % 7 != 0 && text[cut - 1] != '\n')) continue;
    Table<Material> materials = kept;
    Database_Report report;
    const bool ok = Read_Database_Text(std::string_view(text).substr(0, cut), {}, materials, colours, report);
    refused += !ok;
    EXPECT_EQ(ok, report.Fault == Database_Fault::None) << cut;
    EXPECT_EQ(ok, report.Message.empty()) << cut;
    EXPECT_EQ(materials.count(), ok ? 9 : 1) << cut;
    EXPECT_TRUE(ok ? cut >= last_line : materials == kept) << cut;
    EXPECT_TRUE(ok || cut < text.size());
  }
  EXPECT_GT(refused, 1000);
}

}  // namespace
}  // namespace pvx
