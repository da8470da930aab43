// The design layers drawn over a small model in the default frame.
#include <gtest/gtest.h>

#include <string>

#include "results/plot.h"
#include "support/recording_surface.h"

namespace pvx {
namespace {

using testing::Recording_Surface;

// One 400 x 300 macro at (100, 200), a second beside it sharing its right side, an interface on
// that side, and a thermal border under the first; all in the default 2000 x 1500 frame at
// 5/18 px/mm (picture 9000 x 7200 twips).
struct Design_Picture {
  Project p;
  Picture_State s;
  Recording_Surface surface{600, 480};

  Design_Picture() {
    Set_Defaults(s, p);
    Add_Node(p, 100, 200);
    Add_Node(p, 500, 200);
    Add_Node(p, 500, 500);
    Add_Node(p, 100, 500);
    Add_Node(p, 900, 200);
    Add_Node(p, 900, 500);
    Macro m;
    m.Corner[1] = 1, m.Corner[2] = 2, m.Corner[3] = 3, m.Corner[4] = 4;
    p.Macro.add(m);
    m.Corner[1] = 2, m.Corner[2] = 5, m.Corner[3] = 6, m.Corner[4] = 3;
    p.Macro.add(m);
    Interface f;
    f.Node_A = 2, f.Node_B = 3;
    p.Interface.add(f);
    Border b;
    b.Node_A = 1, b.Node_B = 2, b.Thermal_Active = True_Flag;
    p.Border.add(b);
    Set_Scale(s, p, 9600, 7800, 15);
  }
  double px(double x) const { return World_To_X(s, x); }
  double py(double y) const { return World_To_Y(s, y); }
};

TEST(Plot_Design, LayersFromGridPointsUpToTheInterfaces) {
  Design_Picture d;
  Plot_Design(d.surface, d.s, d.p, Border_Layer::None, false);
  // Clear; 21 x 16 grid points; 8 macro sides; 6 nodes; 4 frame sides; 2 axes; 1 interface.
  const std::string expected =
      "X" + std::string(336, 'C') + std::string(8, 'L') + std::string(6, 'C') + std::string(4 + 2 + 1, 'L');
  EXPECT_EQ(d.surface.Order, expected);
  const auto& grid = d.surface.Circles;
  EXPECT_DOUBLE_EQ(grid[0].X, 22);  // (0, 0)
  EXPECT_DOUBLE_EQ(grid[0].Y, 438);
  EXPECT_DOUBLE_EQ(grid[335].X, 578);  // (2000, 1500)
  EXPECT_DOUBLE_EQ(grid[335].Y, 22);
  EXPECT_EQ(grid[0].Colour, Grey);

  const auto& side = d.surface.Lines[0];  // side 1 of macro 1: node 1 to node 2
  EXPECT_DOUBLE_EQ(side.X1, d.px(100));
  EXPECT_DOUBLE_EQ(side.Y1, d.py(200));
  EXPECT_DOUBLE_EQ(side.X2, d.px(500));
  EXPECT_DOUBLE_EQ(side.Y2, d.py(200));
  const auto& closing = d.surface.Lines[3];  // side 4 back to corner 1
  EXPECT_DOUBLE_EQ(closing.X1, d.px(100));
  EXPECT_DOUBLE_EQ(closing.Y1, d.py(500));
  EXPECT_DOUBLE_EQ(closing.Y2, d.py(200));

  const auto& node = d.surface.Circles[336 + 4];  // node 5
  EXPECT_DOUBLE_EQ(node.X, d.px(900));
  EXPECT_EQ(node.Colour, Blue);

  const auto& frame = d.surface.Lines[8];
  EXPECT_EQ(frame.Style, Line_Style::Dashed);
  EXPECT_DOUBLE_EQ(frame.X1, 22);
  EXPECT_DOUBLE_EQ(frame.X2, 578);
  const auto& x_axis = d.surface.Lines[12];
  EXPECT_DOUBLE_EQ(x_axis.Y1, 438);
  EXPECT_DOUBLE_EQ(x_axis.Y2, 438);
  const auto& interface = d.surface.Lines.back();
  EXPECT_EQ(interface.Colour, Green);
  EXPECT_EQ(interface.Width, 3);
  EXPECT_DOUBLE_EQ(interface.X1, d.px(500));
  EXPECT_DOUBLE_EQ(interface.Y2, d.py(500));
}

TEST(Plot_Design, BorderLinesOnlyInTheirOwnMode) {
  Design_Picture d;
  Plot_Design(d.surface, d.s, d.p, Border_Layer::Thermal, false);
  ASSERT_EQ(d.surface.Lines.size(), 8u + 4 + 2 + 1 + 1);
  EXPECT_EQ(d.surface.Lines.back().Colour, Red);
  EXPECT_DOUBLE_EQ(d.surface.Lines.back().X2, d.px(500));
  Design_Picture h;
  Plot_Design(h.surface, h.s, h.p, Border_Layer::Hygral, false);  // the border is not hygral
  EXPECT_EQ(h.surface.Lines.size(), 8u + 4 + 2 + 1);
}

TEST(Plot_Design, FlagsAndTheCircularGrid) {
  Design_Picture d;
  d.s.Show_Grid = d.s.Show_Macros = d.s.Show_Points = d.s.Show_Frame = false;
  d.p.Grid_X_Min = 50;  // the y axis now lies outside the frame
  Plot_Design(d.surface, d.s, d.p, Border_Layer::None, false);
  EXPECT_EQ(d.surface.Order, "XLL");  // x axis and interface
  // The circular grid: (90 - 0) / 5 + 1 = 19 angles on two circles, the outer one first.
  Design_Picture c;
  c.p.Rect_Grid_Visible = False_Flag;
  c.p.Circ_Grid_Visible = True_Flag;
  c.s.Show_Points = false;
  Plot_Design(c.surface, c.s, c.p, Border_Layer::None, false);
  ASSERT_EQ(c.surface.Circles.size(), 38u);
  EXPECT_DOUBLE_EQ(c.surface.Circles[0].X, c.px(1000));  // 0 degrees, radius 1000
  EXPECT_DOUBLE_EQ(c.surface.Circles[0].Y, c.py(0));
  EXPECT_DOUBLE_EQ(c.surface.Circles[18].X, c.px(0));  // 90 degrees
  EXPECT_DOUBLE_EQ(c.surface.Circles[18].Y, c.py(1000));
  EXPECT_DOUBLE_EQ(c.surface.Circles[19].X, c.px(750));  // inner circle
}

TEST(Plot_Design, MeshPanelDrawsTheElementsInPlaceOfTheMacros) {
  Design_Picture d;
  d.s.Show_Grid = false;
  for (double x : {100.0, 300.0, 500.0})
    for (double y : {200.0, 500.0})
      d.p.Mesh_Node.add({x, y});
  for (int i = 0; i < 2; ++i) {  // nodes by column: (100,200) (100,500) (300,200) ...
    Mesh_Element e;
    e.Corner[1] = static_cast<std::int16_t>(2 * i + 1);
    e.Corner[2] = static_cast<std::int16_t>(2 * i + 3);
    e.Corner[3] = static_cast<std::int16_t>(2 * i + 4);
    e.Corner[4] = static_cast<std::int16_t>(2 * i + 2);
    d.p.Mesh_Element.add(e);
  }
  Border b;
  b.Node_A = 3, b.Node_B = 5, b.Thermal_Active = True_Flag;
  d.p.Mesh_Border.add(b);
  Plot_Design(d.surface, d.s, d.p, Border_Layer::Thermal, true);
  // 8 element sides, 6 design nodes, frame, axes, no mesh interfaces, one mesh border.
  EXPECT_EQ(d.surface.Order, std::string("X").append(8, 'L').append(6, 'C').append(7, 'L'));
  EXPECT_DOUBLE_EQ(d.surface.Lines[4].X1, d.px(300));  // element 2 starts at node 3
  EXPECT_DOUBLE_EQ(d.surface.Lines.back().X1, d.px(300));
  EXPECT_DOUBLE_EQ(d.surface.Lines.back().X2, d.px(500));
}

}  // namespace
}  // namespace pvx
