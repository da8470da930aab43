// The Project: everything the engineer draws and enters, the mesh made from it, the calculation
// periods and the list of runs.
//
// The model has two layers. The design layer (nodes, macros, borders, interfaces, bars, circuits,
// prescribed temperatures, supports, loads) is what the user edits. The mesh layer (mesh nodes,
// elements, mesh borders, interfaces, bars and supports) is derived from it by mesh generation and
// by `Set_Prescribed_Data`.
//
// Conventions that every reader of these tables relies on:
// - Tables are numbered from 1 (see table.h); a table's count is its size.
// - Integer fields keep the widths of the project file (i16 = int16_t, i32 = int32_t), so a count
//   or reference that does not fit is refused where it is made, never silently wrapped.
// - A flag is 16 bits with true = -1 and false = 0; a test is "non-zero means true".
// - Everything refers to a table entry by its number; a material by its name; a time function by
//   its number within its family.
// - Values are in working units: mm, hours, degrees Celsius, kg/m3, W/m2K, kJ/m3K, MPa, N, N/mm,
//   m3/h. The Imperial system changes only what is shown and typed.
#pragma once

#include <cstdint>
#include <string>

#include "app/table.h"
#include "material/material.h"

namespace pvx {

using Flag = std::int16_t;
inline constexpr Flag True_Flag = -1;
inline constexpr Flag False_Flag = 0;
inline constexpr Flag As_Flag(bool b) {
  return b ? True_Flag : False_Flag;
}

// Fixed capacities of the mesh layer.
inline constexpr int Max_Mesh_Elements = 25000;
inline constexpr int Max_Mesh_Rebars = 25000;
inline constexpr int Max_Mesh_Interfaces = 1001;
// Element corners and most node references are i16: no mesh node can be numbered above this.
inline constexpr int Max_I16_Reference = 32767;

// The eight initial and time values shared by a macro and the elements cut from it.
struct Macro_Values {
  float Temperature = 20;        // initial temperature, oC
  float Potential = 1;           // initial moisture potential, [-]
  float Maturity = 0;            // initial maturity, hours
  float Thickness = 1;           // out-of-plane thickness, mm
  float Present_From = 0;        // hours
  float Present_Until = 1000;    // hours
  float Dead_Weight_At = 1001;   // time at which dead weight is applied, hours
  float Moisture_Content = 130;  // initial moisture content, kg/m3
  bool operator==(const Macro_Values&) const = default;
};

// A quadrilateral region of one material. Side j runs from corner j to corner j+1, side 4 back
// to corner 1; two macros that share a side hold its two nodes in opposite order.
struct Macro : Macro_Values {
  std::string Material;
  Array1<std::int16_t, 4> Corner;  // design node numbers
  bool operator==(const Macro&) const = default;
};

// One time function. All three forms are kept filled; the flags say which one is in use.
// The sine tables have one entry per term and the point tables one entry per point; the counts
// are their sizes (`Sine_Count`, `Point_Count`).
struct Function {
  Flag Is_Constant = False_Flag;
  Flag Is_Periodical = False_Flag;
  Flag Is_Piecewise = False_Flag;
  Flag Has_Cut_Off = False_Flag;
  double Cut_Off_Value = 0;
  double Constant_Value = 0;
  double Average = 0;
  Table<double> Frequency;  // [1/day]
  Table<double> Amplitude;
  Table<double> Phase_Shift;  // [hours]
  Table<double> Point_Time;   // hours; a displacement for the family `Spring`
  Table<double> Point_Value;
  bool operator==(const Function&) const = default;
};
inline int Sine_Count(const Function& f) {
  return f.Frequency.count();
}
inline int Point_Count(const Function& f) {
  return f.Point_Time.count();
}
void Resize_Sines(Function& f, int n);
void Resize_Points(Function& f, int n);

// The eight families, in the order of the project file.
enum class Function_Family {
  Temperature = 1,
  Radiation,
  Flow,
  Displacement,
  Spring,
  Moisture_Potential,
  Water_Pressure,
  Load
};
inline constexpr int Function_Family_Count = 8;
// "Temperature", "Radiation", ..., "Moisture Potential", "Water Pressure", "Load".
const char* Function_Family_Word(Function_Family family);

struct Thermal_Period {
  double From = 0, Until = 72;            // hours
  std::int16_t Temperature_Function = 1;  // family Temperature
  double Convection_Coefficient = 21;     // W/m2K
  std::int16_t Radiation_Function = 1;    // family Radiation
  double Es = 0, Ea = 0, Er = 0;          // emissivity coefficients
  Flag Radiation_On = True_Flag;          // one of Es, Ea, Er is non-zero
  Flag Convection_On = True_Flag;         // the coefficient is non-zero
  bool operator==(const Thermal_Period&) const = default;
};

struct Hygral_Period {
  double From = 0, Until = 8768;             // hours
  std::int16_t Potential_Function = 1;       // family Moisture Potential
  double Transfer_Coefficient = 1e-8;        // evaporation transfer coefficient
  Flag Is_Water_Pressure = False_Flag;       // true "Water pressure", false "Evaporation"
  std::int16_t Water_Pressure_Function = 1;  // family Water Pressure
  std::int16_t Pressure_Kind = 1;            // 1 follows a function, 2 "Constant level"
  double Constant_Level = 30;                // m
  bool operator==(const Hygral_Period&) const = default;
};

// A macro side that carries climate conditions; at the mesh layer, one mesh side on such a side.
struct Border {
  std::int16_t Node_A = 0, Node_B = 0;  // in the direction of the macro side
  Flag Thermal_Active = False_Flag;
  Flag Hygral_Active = False_Flag;
  Table<Thermal_Period> Thermal_Periods;
  Table<Hygral_Period> Hygral_Periods;
  bool operator==(const Border&) const = default;
};

// A shared macro side on which a layer material replaces the perfect bond.
struct Interface {
  std::int32_t Node_A = 0, Node_B = 0;  // Node_A has the smaller X, of equal X the smaller Y
  std::string Layer_Material;           // a material with its INTE flag set
  std::int16_t Layer_Type = 0;
  // Mesh interfaces only (the file keeps these three of the run-time data).
  Flag Active = False_Flag;
  double Local_X = 0, Local_Y = 0;
  bool operator==(const Interface&) const = default;
};

// A reinforcement bar; design and mesh bars share the record.
struct Rebar {
  std::string Material;  // a material with its REIN flag set
  std::int16_t Material_Number = 0;
  Flag Active = False_Flag;
  double Diameter = 16;  // mm
  double Lateral_Coefficient = 0;
  double X1 = 0, X2 = 0, Y1 = 0, Y2 = 0;           // end points, mm
  double From = 0, Until = 1000;                   // hours
  double Length = 100;                             // mm; a bar of zero length holds 100
  double Direction_Cos = 1, Direction_Sin = 0;     // unit vector from end 1 to end 2
  Array1<std::int32_t, 12> Dof;                    // equation numbers of a mesh bar
  std::int32_t Element_Number = 0;                 // element that holds a mesh bar
  Array1<double, 4> Node_Factor_A, Node_Factor_B;  // shape weights of the ends in that element
  double Bar_Offset = 0;
  bool operator==(const Rebar&) const = default;
};

// A cooling circuit: Pipe_Count pipes cross the section, pipe i at design node Pipe_Node(i).
// Distance has one entry more than there are pipes. Resize with `Resize_Pipes`.
struct Circuit {
  std::int16_t Pipe_Count = 2;                     // "Number of pipes"
  Table<std::int16_t> Pipe_Node;                   // Pipe_Count entries
  double Diameter = 28;                            // mm
  double Transfer_Coefficient = 1000;              // W/m2/K
  double Liquid_Capacity = 4180;                   // kJ/m3/K
  std::int16_t Temperature_Function = 1;           // family Temperature
  std::int16_t Flow_Function = 1;                  // family Flow
  Flag Closed_Circuit = False_Flag;                // "Connected to outlet (closed circuit)"
  Table<double> Distance;                          // m, Pipe_Count + 1 entries
  double Active_From = 0, Active_Until = 36;       // hours
  Table<Array1<std::int16_t, 9>> Pipe_Connection;  // per pipe, connection data to the mesh
  bool operator==(const Circuit&) const = default;
};
void Resize_Pipes(Circuit& c, int pipe_count);

// Prescribed temperatures on a point, a macro side and a rectangle.
struct Point_T {
  double Present_From = 0, Until = 1000;
  std::int16_t Temperature_Function = 1;
  double X = 0, Y = 0;
  std::int16_t Element = 0;  // found by Set_Prescribed_Data
  double Local_X = 0, Local_Y = 0;
  bool operator==(const Point_T&) const = default;
};
struct Line_T {
  double Present_From = 0, Until = 1000;
  std::int16_t Temperature_Function = 1;
  std::int16_t Node_A = 0, Node_B = 0;  // design nodes of a macro side
  bool operator==(const Line_T&) const = default;
};
struct Area_T {
  double Present_From = 0, Until = 1000;
  std::int16_t Temperature_Function = 1;
  double X1 = 0, Y1 = 0, X2 = 0, Y2 = 0;  // X1 <= X2, Y1 <= Y2
  bool operator==(const Area_T&) const = default;
};
// A mesh node whose temperature is held, rebuilt before each run.
struct Prescribed_Node {
  std::int16_t Temperature_Function = 1;
  std::int32_t Mesh_Node = 0;
  double From = 0, Until = 0;
  bool operator==(const Prescribed_Node&) const = default;
};

// Point, line and mesh supports share this record.
struct Support {
  double Present_From = 0, Until = 10000;
  Flag Is_Fixed = True_Flag;
  Flag Has_Offset = False_Flag;    // displacements count from the state at Present_From
  Flag Has_Function = False_Flag;  // the fixed direction follows a displacement function
  double Reference_Value = 0;      // run-time reference of the offset
  Flag Is_Spring = False_Flag;
  double Angle = -90;  // degrees
  std::int16_t Displacement_Function = 1;
  std::int16_t Spring_Function = 1;
  Flag Is_Global = True_Flag;  // line support: angle from the X axis, else from the side
  double X = 0, Y = 0;
  std::int16_t Element = 0;
  double Local_X = 0, Local_Y = 0;
  std::int16_t Node_A = 0, Node_B = 0;
  double Effective_Thickness = 0;  // thickness, or radius when axisymmetric
  double Segment_Length = 0;
  double Support_Diagonal = 0;  // working value of the assembly, never stored
  Array1<std::int32_t, 4> Dof;  // mesh supports only
  bool operator==(const Support&) const = default;
};

// Point, line and mesh loads share this record. With neither Is_Level nor Is_Function the load is
// the constant Value.
struct Load {
  double Present_From = 0, Until = 1000;
  double Value = 1000;  // MPa, or N/mm for a point
  double Factor = 1;
  Flag Is_Level = True_Flag;       // given by "Level [m]"
  Flag Is_Function = False_Flag;   // given by "Function"
  double Level = 20;               // m
  double Angle = 0;                // degrees
  std::int16_t Load_Function = 1;  // family Load
  Flag Is_Global = True_Flag;
  double X = 0, Y = 0;
  std::int16_t Element = 0;
  double Local_X = 0, Local_Y = 0;
  std::int16_t Node_A = 0, Node_B = 0;
  double Node_Spacing = 0;
  double Work_Value = 1;
  double Work_Offset = 0;
  double Effective_Thickness = 0;
  bool operator==(const Load&) const = default;
};

// Out-of-plane settings; exactly one of the three mode flags is true.
struct Out_Of_Plane {
  Flag Plane_Stress = True_Flag;
  Flag Axisymmetric = False_Flag;
  double Offset_Radius = 0;  // mm, distance of the Y axis from the axis of revolution
  Flag Plane_Strain = False_Flag;
  Flag Rotation_X_Fixed = False_Flag;
  Flag Rotation_Y_Fixed = False_Flag;
  Flag Dilatation_Fixed = False_Flag;
  bool operator==(const Out_Of_Plane&) const = default;
};

struct Period {
  double From = 0, Until = 72, Storage_Each = 1, Time_Increment = 0.25;  // hours
  bool operator==(const Period&) const = default;
};

struct Mesh_Node {
  double X = 0, Y = 0;  // mm
  bool operator==(const Mesh_Node&) const = default;
};

struct Mesh_Element : Macro_Values {
  std::string Material;  // copied from the macro
  std::int16_t Macro_Number = 0;
  Array1<std::int16_t, 4> Corner;  // mesh nodes, in the order of the macro
  Array1<std::int32_t, 8> Dof;     // mechanical equations; 2n-1, 2n for mesh node n by default
  bool operator==(const Mesh_Element&) const = default;
};

// One cut of the splitting history: the element and side it starts from, and the cumulative
// fractions of its division (the division is their count).
struct Split_Record {
  std::int16_t Element = 0, Side = 0;
  Table<double> Fractions;
  bool operator==(const Split_Record&) const = default;
};

// A polygon carried along from older files; no command makes one.
struct Polygon {
  std::string Name;
  Array1<std::int16_t, 4> Corner;
  bool operator==(const Polygon&) const = default;
};

struct Project {
  // Header.
  std::int16_t File_Version = 108;
  std::string Project_File;
  std::string Material_Database_Path;
  std::string Project_Text[4];
  std::string Result_File_Name;
  Flag Metric_Units = True_Flag;
  Flag Constant_Shear = False_Flag;
  Flag Project_Saved = False_Flag;
  Flag Replace_Material = True_Flag;
  Flag Mechanical_Included = False_Flag;
  Flag Mesh_Valid = False_Flag;
  std::int32_t Doubled_Node_Count = 0;

  // Display settings of the design panel, kept in the file.
  Flag Rect_Grid_Snap = False_Flag, Rect_Grid_Visible = False_Flag;
  double Grid_X_Min = 0, Grid_X_Max = 0, Grid_X_Increment = 0;
  double Grid_Y_Min = 0, Grid_Y_Max = 0, Grid_Y_Increment = 0;
  Flag Circ_Grid_Snap = False_Flag, Circ_Grid_Visible = False_Flag;
  double Circ_X_Center = 0, Circ_Y_Center = 0;
  double Circ_Outer_Radius = 0, Circ_Inner_Radius = 0;
  double Circ_Start_Angle = 0, Circ_End_Angle = 0, Circ_Angle_Increment = 0;
  double Snap_Size = 10;
  float Mouse_Radius = 3;  // pixels
  std::int16_t Snap_Mode = 0;
  double Reserved_Value_1 = 0, Reserved_Value_2 = 0;

  // Design layer. Node_X and Node_Y always have the same count (`Node_Count`).
  Table<double> Node_X, Node_Y;
  Table<pvx::Polygon> Polygon;
  Table<pvx::Macro> Macro;
  Macro_Values Macro_Defaults;
  std::int32_t Current_Macro = 0;
  std::int32_t Current_Node = 0;

  // The eight function families, each with at least one entry.
  Table<Function> Temperature_Functions, Radiation_Functions, Flow_Functions, Displacement_Functions,
      Spring_Functions, Potential_Functions, Water_Pressure_Functions, Load_Functions;

  Table<pvx::Border> Border;
  std::int16_t Current_Border = 0;
  Thermal_Period Thermal_Period_Default;
  Hygral_Period Hygral_Period_Default;

  Table<pvx::Interface> Interface;
  pvx::Interface Interface_Template;

  Table<pvx::Rebar> Rebar;
  pvx::Rebar Rebar_Template;
  std::int32_t Current_Rebar = 0;

  Table<pvx::Circuit> Circuit;
  pvx::Circuit Circuit_Default;
  std::int16_t Current_Circuit = 0;

  Table<pvx::Point_T> Point_T;
  Table<pvx::Line_T> Line_T;
  Table<pvx::Area_T> Area_T;
  pvx::Line_T Line_T_Default;

  Table<Support> Point_Support, Line_Support;
  Support Support_Default;
  Table<Load> Point_Load, Line_Load;
  Load Load_Default;

  pvx::Out_Of_Plane Out_Of_Plane;

  // Calculation periods.
  double Computation_Time = 72;
  // The damped start of the temperature steps: so many backward Euler steps after the start and
  // after every change of a cooling circuit's operation, against the overshoot of the trapezoidal
  // rule at a sudden change; 0 (the default) computes every step by the trapezoidal rule.
  std::int16_t Damped_Start_Steps = 0;
  Table<pvx::Period> Period;

  // Mesh layer.
  Table<pvx::Mesh_Node> Mesh_Node;
  Table<pvx::Mesh_Element> Mesh_Element;  // at most Max_Mesh_Elements
  Table<pvx::Border> Mesh_Border;
  Table<pvx::Interface> Mesh_Interface;  // at most Max_Mesh_Interfaces
  Table<pvx::Rebar> Mesh_Rebar;          // at most Max_Mesh_Rebars
  Table<Support> Mesh_Support;
  Table<Load> Mesh_Load;                        // rebuilt before each run, never stored
  Table<pvx::Prescribed_Node> Prescribed_Node;  // rebuilt before each run, never stored

  // Splitting history.
  Table<Split_Record> Split;
  std::int16_t Split_Position = 0;

  // Runs: the material variants and the result names made from them. Result_Names has entries
  // 0..Number_Of_Runs (entry 0 repeats entry 1).
  Table<std::int16_t> Run_Material;
  std::vector<std::string> Result_Names;
  std::vector<bool> Element_Replaced;

  // Penalty factors on a matrix diagonal where a temperature or a displacement is held.
  double Prescribed_Penalty = 1000.0;
  double Support_Penalty = 1000.0;

  // Materials of the database, in database order, with their display colours (RGB).
  Table<pvx::Material> Material;
  Table<std::int32_t> Material_Color;

  bool operator==(const Project&) const = default;
};

inline int Node_Count(const Project& p) {
  return p.Node_X.count();
}
int Add_Node(Project& p, double x, double y);
inline int Number_Of_Runs(const Project& p) {
  return p.Run_Material.count();
}

// The result file names of the runs: with material variants and at least one run, entries 0 and 1
// are Result_File_Name and entry i > 1 is Result_File_Name less its last four characters ("B.RES"
// gives "B2.RES"); otherwise one name. Element_Replaced is emptied, as when a file is read.
void Set_Result_Names(Project& p);
// The same names, with Element_Replaced kept: the elements chosen for replacement before a run.
void Set_Result_File_Names(Project& p);

// The table of one function family.
Table<Function>& Function_Table(Project& p, Function_Family family);
const Table<Function>& Function_Table(const Project& p, Function_Family family);

// The first entry of each family in a new Project (all three forms filled in).
Function Default_Function(Function_Family family);

// Fills the whole model with the values of a new Project.
void New_Project(Project& p);

// The graphical defaults of the program's start and of "New": the rectangular grid on and
// visible from 0 to 2000 by 0 to 1500 in steps of 100; the circular grid off.
void Set_Graphical_Defaults(Project& p);

}  // namespace pvx
