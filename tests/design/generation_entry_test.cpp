// The generation dialogs' numbers: typed texts read by the entry rule in either unit system, the
// fields shown and read back unchanged, and the circles the dialogs open with.
#include "design/generation_entry.h"

#include <gtest/gtest.h>

#include <tuple>

#include "app/units.h"
#include "panel_fixtures.h"

namespace pvx {
namespace {

Project Metric_Project(bool metric) {
  Project p;
  New_Project(p);
  p.Metric_Units = metric ? True_Flag : False_Flag;
  for (const auto& [name, interface] : {std::pair{"JOINT", true}, {"C30", false}, {"C35", false}}) {
    p.Material.add({});
    p.Material.last().Name = name;
    p.Material.last().Is_Interface = interface;
  }
  return p;
}

TEST(Generation_Entry, TypedTextsAreReadByTheEntryRuleInTheProjectsUnits) {
  const double in = Convert_Unit(false, Unit_Length_mm, 1.0);  // mm per typed inch
  struct Row {
    bool metric, decimal_comma;
    Circle_Texts typed;
    bool ok;
    Circle_Request expected;  // mm
    const char* message;
  };
  const Row rows[] = {
      {true, false, {"1000", "750.5", "600", "", "16", "C30"}, true, {1000, 750.5, 600, 0, 16, "C30"}, ""},
      // Either decimal sign; a count is rounded to a whole number.
      {true,
       true,
       {"1000,5", "-2.5", "600", "250,0", "24.4", "C35"},
       true,
       {1000.5, -2.5, 600, 250, 24, "C35"},
       ""},
      {false, false, {"10", "0", "20", "5", "8", "C30"}, true, {10 * in, 0, 20 * in, 5 * in, 8, "C30"}, ""},
      {true, false, {"1000", "750", "6x0", "0", "16", "C30"}, false, {}, "Outer radius: "},
      {true, false, {"1000", "750", "600", "0", "sixteen", "C30"}, false, {}, "Segments: "},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.typed.Radius + " " + row.typed.Segments);
    const Project p = Metric_Project(row.metric);
    Circle_Request read{1, 2, 3, 0, 8, "C30"};
    const Circle_Request before = read;
    std::string message;
    ASSERT_EQ(Read_Circle_Texts(p, row.typed, row.decimal_comma, read, message), row.ok);
    if (!row.ok) {
      EXPECT_EQ(message, std::string(row.message) + Number_Error_Message);
      EXPECT_EQ(std::tuple(read.X, read.Radius, read.Segments),
                std::tuple(before.X, before.Radius, before.Segments));
      continue;
    }
    EXPECT_NEAR(read.X, row.expected.X, 1e-9);
    EXPECT_NEAR(read.Y, row.expected.Y, 1e-9);
    EXPECT_NEAR(read.Radius, row.expected.Radius, 1e-9);
    EXPECT_NEAR(read.Inner_Radius, row.expected.Inner_Radius, 1e-9);
    EXPECT_EQ(read.Segments, row.expected.Segments);
    EXPECT_EQ(read.Material, row.expected.Material);
  }
}

TEST(Generation_Entry, AHoleShownInInchesReadsBackWithinTheFieldsThousandth) {
  const Project p = Metric_Project(false);
  const Hole_Request shown{3, 1000, 700, 150, 16};
  const Hole_Texts t = Show_Hole_Request(p, shown);
  EXPECT_EQ(t.Radius, "5.906");  // 150 mm
  Hole_Request read;
  std::string message;
  ASSERT_TRUE(Read_Hole_Texts(p, t, false, read, message)) << message;
  EXPECT_EQ(std::tuple(read.Macro, read.Segments), std::tuple(3, 16));
  // Three decimals of an inch, and the two length factors that are not each other's inverse.
  EXPECT_NEAR(read.X, 1000, 0.02);
  EXPECT_NEAR(read.Radius, 150, 0.02);
}

TEST(Generation_Entry, TheDialogsOpenOnTheFramesMiddleAndTheMacrosMiddle) {
  Project p = Metric_Project(true);
  Set_Graphical_Defaults(p);  // 0..2000 by 0..1500
  const Circle_Request c = Default_Circle_Request(p);
  // No macro yet: the first material that is no interface.
  EXPECT_EQ(std::tuple(c.X, c.Y, c.Radius, c.Inner_Radius, c.Segments, c.Material),
            std::tuple(1000.0, 750.0, 150.0, 0.0, 16, std::string("C30")));

  // On a circular grid that is shown: its centre and radii, a segment per angle step, rounded to a
  // multiple of 4 for a disc.
  p.Circ_Grid_Visible = True_Flag;
  std::tie(p.Circ_X_Center, p.Circ_Y_Center, p.Circ_Outer_Radius, p.Circ_Inner_Radius) =
      std::tuple(5, 6, 900, 400);
  p.Circ_Angle_Increment = 25;  // 14.4 steps
  const Circle_Request ring = Default_Circle_Request(p);
  EXPECT_EQ(std::tuple(ring.X, ring.Y, ring.Radius, ring.Inner_Radius, ring.Segments),
            std::tuple(5.0, 6.0, 900.0, 400.0, 14));
  p.Circ_Inner_Radius = 0;
  EXPECT_EQ(Default_Circle_Request(p).Segments, 12);

  // A wall of 1600 x 800 mm: its middle, a third of the way to its long sides.
  test::Add_Nodes(p, {{200, 300}, {1800, 300}, {1800, 1100}, {200, 1100}});
  test::Add_Macros(p, {{1, 2, 3, 4}});
  p.Macro[1].Material = "C35";
  p.Current_Macro = 1;
  const Hole_Request h = Default_Hole_Request(p, 1);
  EXPECT_EQ(std::tuple(h.Macro, h.X, h.Y, h.Segments), std::tuple(1, 1000.0, 700.0, 16));
  EXPECT_NEAR(h.Radius, 400.0 / 3, 1e-9);
  EXPECT_EQ(Default_Circle_Request(p).Material, "C35");  // the current macro's
  EXPECT_EQ(Default_Hole_Request(p, 2).Macro, 0);
}

}  // namespace
}  // namespace pvx
