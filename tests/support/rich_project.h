// A Project with every table filled with distinct, awkward values: numbers that need all their
// digits to read back, exponents, negative values, texts with blanks and commas.
#pragma once

#include "app/project.h"

namespace pvx::test {

inline Project Rich_Project() {
  Project p;
  New_Project(p);
  Set_Graphical_Defaults(p);
  p.Project_Text[0] = "Wall, slab and pipes";
  p.Project_Text[1] = "  leading blanks";
  p.Project_Text[2] = "";
  p.Project_Text[3] = "line 4: 1,5 m";
  p.Grid_X_Increment = 0.1 + 0.2;  // needs 17 digits
  p.Circ_Inner_Radius = 612.5;
  p.Circ_X_Center = -1.0e-7;
  p.Mouse_Radius = 0.1f;
  p.Snap_Mode = 1;
  p.Reserved_Value_1 = 1.0 / 3.0;
  p.Reserved_Value_2 = -2.5e17;
  for (int k = 1; k <= 6; ++k)
    Add_Node(p, 100.0 * k + 0.25, -50.0 * k / 3.0);
  p.Polygon.add(Polygon{"old polygon", {{1, 2, 3, 4}}});
  for (int k = 1; k <= 2; ++k) {
    Macro m;
    m.Material = k == 1 ? "C30/37 CEM I" : "Soil, sand";
    m.Corner = {{static_cast<std::int16_t>(k), 2, 5, 6}};
    m.Temperature = 12.5f + k;
    m.Potential = 0.95f;
    m.Maturity = 1.0f / 7.0f;
    m.Thickness = 1000;
    m.Present_From = 0.5f * k;
    m.Present_Until = 800;
    m.Dead_Weight_At = 24;
    m.Moisture_Content = 127.3f;
    p.Macro.add(m);
  }
  p.Current_Macro = 2;
  p.Current_Node = 5;

  Function periodic = Default_Function(Function_Family::Temperature);
  periodic.Is_Constant = False_Flag;
  periodic.Is_Periodical = True_Flag;
  Resize_Sines(periodic, 3);
  for (int k = 1; k <= 3; ++k) {
    periodic.Frequency[k] = k;
    periodic.Amplitude[k] = 5.0 / k;
    periodic.Phase_Shift[k] = 0.3 * k;
  }
  Resize_Points(periodic, 4);
  for (int k = 1; k <= 4; ++k) {
    periodic.Point_Time[k] = 24.0 * (k - 1);
    periodic.Point_Value[k] = 10 + 0.7 * k;
  }
  p.Temperature_Functions.add(periodic);
  Function load = Default_Function(Function_Family::Load);
  load.Constant_Value = 2.75;
  p.Load_Functions.add(load);
  p.Spring_Functions[1].Cut_Off_Value = -999.125;

  Border b;
  b.Node_A = 1;
  b.Node_B = 2;
  b.Thermal_Active = True_Flag;
  b.Hygral_Active = True_Flag;
  Thermal_Period t;
  t.Convection_Coefficient = 5.5;
  t.Es = 0.7;
  t.Ea = 0.9;
  t.Er = 0.1;
  t.Temperature_Function = 2;
  b.Thermal_Periods.add(t);
  Thermal_Period off;  // both switches off: the numbers behind them are zero
  off.From = 72;
  off.Until = 200;
  off.Convection_On = False_Flag;
  off.Convection_Coefficient = 0;
  off.Radiation_On = False_Flag;
  b.Thermal_Periods.add(off);
  Hygral_Period h;
  h.Transfer_Coefficient = 2.5e-9;
  h.Is_Water_Pressure = True_Flag;
  h.Pressure_Kind = 2;
  h.Constant_Level = 12.5;
  b.Hygral_Periods.add(h);
  b.Hygral_Periods.add(Hygral_Period{});
  p.Border.add(b);
  Border b2 = b;
  b2.Node_A = 2;
  b2.Node_B = 5;
  b2.Thermal_Active = False_Flag;
  p.Border.add(b2);
  p.Current_Border = 1;

  Circuit c = p.Circuit_Default;
  Resize_Pipes(c, 3);
  for (int k = 1; k <= 3; ++k) {
    c.Pipe_Node[k] = static_cast<std::int16_t>(k + 1);
    c.Distance[k] = 2.5 * k;
    for (int j = 1; j <= 9; ++j)
      c.Pipe_Connection[k][j] = static_cast<std::int16_t>(10 * k + j);
  }
  c.Distance[4] = 7.25;
  c.Closed_Circuit = True_Flag;
  c.Flow_Function = 1;
  p.Circuit.add(c);
  p.Current_Circuit = 1;

  p.Split.add(Split_Record{1, 2, {0.25, 0.5, 1.0}});
  p.Split.add(Split_Record{3, 4, {0.1, 1.0}});
  p.Split_Position = 2;
  p.Mesh_Valid = True_Flag;

  for (int k = 1; k <= 9; ++k)
    p.Mesh_Node.add(Mesh_Node{10.0 * (k % 3) + 0.001, 20.0 * (k / 3)});
  for (int k = 1; k <= 4; ++k) {
    Mesh_Element e;
    e.Material = "C30/37 CEM I";
    e.Macro_Number = 1;
    e.Corner = {{static_cast<std::int16_t>(k), static_cast<std::int16_t>(k + 1),
                 static_cast<std::int16_t>(k + 4), static_cast<std::int16_t>(k + 3)}};
    for (int j = 1; j <= 4; ++j) {
      e.Dof[2 * j - 1] = 2 * e.Corner[j] - 1;
      e.Dof[2 * j] = 2 * e.Corner[j];
    }
    if (k == 4) e.Dof = {{91, 92, 93, 94, 95, 96, 97, 98}};  // renumbered, as after node doubling
    e.Temperature = 20.5f;
    e.Thickness = 1000;
    p.Mesh_Element.add(e);
  }
  Border mb = b;
  mb.Hygral_Periods.clear();  // the file keeps no hygral periods of mesh borders
  p.Mesh_Border.add(mb);

  p.Computation_Time = 336;
  p.Period.clear();
  p.Period.add(Period{0, 24, 2, 0.5});
  p.Period.add(Period{24, 336, 12, 3});

  p.Out_Of_Plane.Plane_Stress = False_Flag;
  p.Out_Of_Plane.Axisymmetric = True_Flag;
  p.Out_Of_Plane.Offset_Radius = 150;
  p.Out_Of_Plane.Rotation_Y_Fixed = True_Flag;

  p.Area_T.add(Area_T{0, 48, 2, -10, -20, 110, 120});
  p.Line_T.add(Line_T{1, 49, 1, 3, 4});
  p.Point_T.add(Point_T{2, 50, 2, 33.3, 44.4, 0, 0, 0});

  Support s;
  s.X = 12.5;
  s.Y = -3;
  s.Element = 2;
  s.Local_X = 0.25;
  s.Local_Y = 0.75;
  s.Has_Function = True_Flag;
  s.Displacement_Function = 1;
  p.Point_Support.add(s);
  Support ls;
  ls.Node_A = 1;
  ls.Node_B = 2;
  ls.Is_Global = False_Flag;
  ls.Is_Spring = True_Flag;
  ls.Angle = 45;
  p.Line_Support.add(ls);
  Support ms = ls;
  ms.Node_A = 3;
  ms.Node_B = 4;
  ms.Dof = {{11, 12, 13, 14}};
  p.Mesh_Support.add(ms);

  Load pl;
  pl.X = 5;
  pl.Y = 6;
  pl.Value = 1500.5;
  pl.Is_Level = False_Flag;
  p.Point_Load.add(pl);
  Load ll;
  ll.Node_A = 2;
  ll.Node_B = 5;
  ll.Is_Function = True_Flag;
  ll.Is_Level = False_Flag;
  ll.Load_Function = 2;
  ll.Node_Spacing = 25;
  ll.Work_Offset = -1.5;
  p.Line_Load.add(ll);

  p.Result_File_Name = "RICH.RES";
  p.Replace_Material = True_Flag;
  p.Mechanical_Included = True_Flag;
  p.Run_Material.add(1);
  p.Run_Material.add(3);
  p.Doubled_Node_Count = 2;

  Interface i;
  i.Node_A = 2;
  i.Node_B = 5;
  i.Layer_Material = "Joint";
  i.Layer_Type = 2;
  p.Interface.add(i);
  Interface mi = i;
  mi.Active = True_Flag;
  mi.Local_X = 0.5;
  mi.Local_Y = 0.125;
  p.Mesh_Interface.add(mi);

  Rebar r;
  r.Material = "B500";
  r.Material_Number = 4;
  r.Active = True_Flag;
  r.Diameter = 12;
  r.X1 = 10;
  r.Y1 = 20;
  r.X2 = 40;
  r.Y2 = 60;
  r.Length = 50;
  r.Direction_Cos = 0.6;
  r.Direction_Sin = 0.8;
  for (int k = 1; k <= 12; ++k)
    r.Dof[k] = 100 + k;
  r.Element_Number = 3;
  for (int k = 1; k <= 4; ++k) {
    r.Node_Factor_A[k] = 0.25 * k;
    r.Node_Factor_B[k] = 1 - 0.25 * k;
  }
  r.Bar_Offset = 1e-3;
  p.Rebar.add(r);
  p.Mesh_Rebar.add(r);
  p.Mesh_Rebar.add(r);

  p.Constant_Shear = True_Flag;
  p.Material_Color.add(0xC8C8C8);
  p.Material_Color.add(0x0000E1);
  p.Material_Color.add(0x00FF80);
  return p;
}

}  // namespace pvx::test
