// The bundled example database: it reads, holds what it says, and any piece of it reads to a
// material table or a message, never to a crash.
#include <gtest/gtest.h>

#include <string>

#include "material/database.h"
#include "material/properties.h"
#include "support/temp_dir.h"

namespace pvx {
namespace {

const std::string Example = test::Source_Path("examples/PVX-Concrete.txt");

Table<Material> Read_Example() {
  Table<Material> materials;
  Table<std::int32_t> colours;
  std::string message;
  EXPECT_TRUE(Read_Material_Database(Example, materials, colours, message)) << message;
  EXPECT_EQ(colours.count(), materials.count());
  return materials;
}

const Material* Find(const Table<Material>& materials, const std::string& name) {
  for (const Material& m : materials)
    if (m.Name == name) return &m;
  return nullptr;
}

TEST(Example_Database, HoldsTheMaterialsItNames) {
  const Table<Material> materials = Read_Example();
  ASSERT_EQ(materials.count(), 9);
  const char* names[] = {"C30/37 CEM I",
                         "C35/45 CEM III/B",
                         "C25/30 CEM I mass concrete",
                         "Existing C30/37 hardened concrete",
                         "Subsoil sand",
                         "Construction joint",
                         "Sliding layer of two foils",
                         "Rough joint with softening",
                         "B500B reinforcing steel"};
  for (int i = 1; i <= 9; ++i)
    EXPECT_EQ(materials[i].Name, names[i - 1]);
}

TEST(Example_Database, ThePlainConcreteHasAllThreeSections) {
  const Table<Material> materials = Read_Example();
  const Material* c = Find(materials, "C30/37 CEM I");
  ASSERT_NE(c, nullptr);
  EXPECT_TRUE(c->Has_Thermal && c->Has_Hygral && c->Has_Mechanical && c->Has_Maturity_Law);
  EXPECT_EQ(c->Heat_Model, "CORE");
  EXPECT_EQ(c->Model_Name, "Linear Elastic");
  // Class values of C30/37 at 28 days (672 hours): fcm 38, fctm 2.9, Ecm 33000 MPa.
  EXPECT_DOUBLE_EQ(Table_Value(c->Fc, 20, 672), 38);
  EXPECT_NEAR(Table_Value(c->Ft, 20, 672), 2.9, 1e-6);
  EXPECT_DOUBLE_EQ(Table_Value(c->E, 20, 1e5), 33000);
  EXPECT_DOUBLE_EQ(Table_Value(c->E, 20, 18), 16000);  // halfway 12000 (12 h) .. 20000 (24 h)
  // Heat 132000 kJ/m3 over a capacity of 2400 kJ/m3K: an adiabatic rise of 55 K.
  EXPECT_DOUBLE_EQ(c->Heat_H / c->Capacity_Wet, 55);
  EXPECT_TRUE(c->Diffusion_Bazant);
  EXPECT_DOUBLE_EQ(Diffusion_Coefficient(*c, 1.0), 1.2e-5);
  EXPECT_TRUE(c->Softening_Law.Has_Softening);
}

TEST(Example_Database, EveryModelAndSofteningFormIsThere) {
  const Table<Material> materials = Read_Example();
  const Material& slag = *Find(materials, "C35/45 CEM III/B");
  EXPECT_EQ(slag.Heat_Model, "DANI");
  EXPECT_TRUE(slag.Dutch_Active && slag.dQ_Active && slag.Isotherm_Table && slag.Crack_Diffusion_Active);
  EXPECT_FALSE(slag.Diffusion_Bazant);
  EXPECT_EQ(slag.Model_Name, "Maxwell Chain");
  EXPECT_EQ(Chain_Size(slag), 4);
  EXPECT_EQ(slag.Chain_Coefficient.count(), Point_Count(slag.E));
  EXPECT_TRUE(slag.Stress_Level_Active);  // format 100 has the stress-level line
  EXPECT_EQ(slag.Softening_Law.Crack_Width.count(), 4);
  // Weighted maturity at C = 1.3: 25.3155 degree-hours per hour at 20 oC, so 672 hours become
  // 17012 degree-hours, and the table value at 28 days stays the class value 43.
  EXPECT_NEAR(slag.Fc.Abscissa[5], 672 * 25.3155078, 0.01);
  EXPECT_NEAR(Mechanical_Property(slag, slag.Fc, 20, 672, 672 * 25.3155078), 43, 1e-5);
  // The isotherm table reproduces its own grid points.
  EXPECT_NEAR(Isotherm_Table_Water(0.8, 20, 0.6, slag.Isotherm_Table_Data), 69.2, 1e-12);
  EXPECT_NEAR(Isotherm_Table_Water(0.3, 40, 1.0, slag.Isotherm_Table_Data), 132.0, 1e-12);

  const Material& mass = *Find(materials, "C25/30 CEM I mass concrete");
  EXPECT_EQ(mass.Heat_Model, "PIWI");
  EXPECT_EQ(mass.Heat_H, 47 * 2450);  // the largest rise times the wet capacity
  EXPECT_TRUE(mass.Capacity_By_Water && mass.Conductivity_By_Water && mass.Humidity_Active);
  EXPECT_FALSE(mass.Has_Hygral);
  EXPECT_EQ(mass.Model_Name, "Burger Model");
  EXPECT_TRUE(mass.Transient_Creep && mass.Humidity_Class);
  EXPECT_TRUE(mass.Softening_Law.EPFL_Active);
  EXPECT_EQ(mass.Softening_Law.Ccr, 1);

  const Material& old = *Find(materials, "Existing C30/37 hardened concrete");
  EXPECT_EQ(old.Heat_Model, "CONS");
  EXPECT_EQ(old.Heat_H, 0);
  EXPECT_FALSE(old.Softening_Law.Has_Softening);

  const Material& sand = *Find(materials, "Subsoil sand");
  EXPECT_EQ(sand.Model_Name, "Soil");
  EXPECT_TRUE(sand.Soil_Nonlinear);
  EXPECT_TRUE(sand.Latent_Active);
  EXPECT_DOUBLE_EQ(Thermal_Capacity(sand, 0, 0, -0.2, 0.2), 62000);  // freezing of the pore water

  EXPECT_EQ(Find(materials, "Construction joint")->Interface_Type, 1);
  EXPECT_EQ(Find(materials, "Sliding layer of two foils")->Interface_Type, 2);
  const Material& rough = *Find(materials, "Rough joint with softening");
  EXPECT_EQ(rough.Interface_Type, 3);
  EXPECT_EQ(rough.Interface_Data[40], 4);
  const Material& steel = *Find(materials, "B500B reinforcing steel");
  EXPECT_TRUE(steel.Is_Reinforcement);
  EXPECT_EQ(steel.Steel_Stress_A[2] / steel.Steel_Strain_A[2], 200);  // MPa per 1/1000: 200 GPa
}

TEST(Example_Database, OffersInterfacesAndBarsOnlyWhenItHasThem) {
  Table<Material> materials = Read_Example();
  EXPECT_TRUE(Has_Interface_Material(materials));
  EXPECT_TRUE(Has_Reinforcement_Material(materials));
  materials.resize(5);  // the concretes and the soil only
  EXPECT_FALSE(Has_Interface_Material(materials));
  EXPECT_FALSE(Has_Reinforcement_Material(materials));
  EXPECT_EQ(Database_Caption("PVX-Concrete.txt", "KIVA version 8.6.2"),
            "PVX-Concrete.txt - KIVA version 8.6.2");
}

TEST(Example_Database, EveryPieceReadsOrGivesAMessage) {
  const std::string text = test::Read_Text(Example);
  ASSERT_FALSE(text.empty());
  // The last line the reader needs is the steel's thermal dilatancy; a piece that stops before
  // it cannot be a whole database.
  const std::size_t last_line = text.find("1.2E-5 thermal dilatancy");
  ASSERT_NE(last_line, std::string::npos);
  Table<Material> kept = {Material{}};
  kept[1].Name = "kept";
  const Table<Material> before = kept;
  Table<std::int32_t> colours = {7};
  int read = 0, refused = 0;
  // Every byte at the start and around the last line, elsewhere every line end and each seventh
  // byte, and a few cuts in the notes behind the last material.
  for (std::size_t cut = 0; cut <= text.size(); ++cut) {
    const bool near_an_end = cut < 200 || (cut + 50 > last_line && cut < last_line + 60);
    if (!near_an_end && cut % 7 != 0 && text[cut - 1] != '\n') continue;
    if (cut > last_line + 60 && cut % 97 != 0) continue;  // the notes behind the last material
    Table<Material> materials = kept;
    Database_Report report;
    const bool ok = Read_Database_Text(std::string_view(text).substr(0, cut), {}, materials, colours, report);
    if (ok) {
      ++read;
      EXPECT_GE(cut, last_line) << cut;
      EXPECT_EQ(materials.count(), 9);
      EXPECT_EQ(report.Fault, Database_Fault::None);
    } else {
      ++refused;
      EXPECT_FALSE(report.Message.empty()) << cut;
      EXPECT_NE(report.Fault, Database_Fault::None) << cut;
      EXPECT_TRUE(materials == before) << cut;
    }
  }
  EXPECT_GT(read, 1);
  EXPECT_GT(refused, 1000);
}

}  // namespace
}  // namespace pvx
