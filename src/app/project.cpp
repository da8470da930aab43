#include "app/project.h"

namespace pvx {

void Resize_Sines(Function& f, int n) {
  f.Frequency.resize(n);
  f.Amplitude.resize(n);
  f.Phase_Shift.resize(n);
}

void Resize_Points(Function& f, int n) {
  f.Point_Time.resize(n);
  f.Point_Value.resize(n);
}

void Resize_Pipes(Circuit& c, int pipe_count) {
  c.Pipe_Count = static_cast<std::int16_t>(pipe_count);
  c.Pipe_Node.resize(pipe_count);
  c.Pipe_Connection.resize(pipe_count);
  // New stretches take the length of the last one: a stretch of no length cannot carry water.
  c.Distance.resize(pipe_count + 1, c.Distance.empty() ? 0.0 : c.Distance.last());
}

const char* Function_Family_Word(Function_Family family) {
  switch (family) {
    case Function_Family::Temperature:
      return "Temperature";
    case Function_Family::Radiation:
      return "Radiation";
    case Function_Family::Flow:
      return "Flow";
    case Function_Family::Displacement:
      return "Displacement";
    case Function_Family::Spring:
      return "Spring";
    case Function_Family::Moisture_Potential:
      return "Moisture Potential";
    case Function_Family::Water_Pressure:
      return "Water Pressure";
    case Function_Family::Load:
      return "Load";
  }
  return "";
}

int Add_Node(Project& p, double x, double y) {
  p.Node_X.add(x);
  return p.Node_Y.add(y);
}

void Set_Result_Names(Project& p) {
  p.Element_Replaced.clear();
  Set_Result_File_Names(p);
}

void Set_Result_File_Names(Project& p) {
  const int runs = Number_Of_Runs(p);
  if (p.Replace_Material != 0 && runs >= 1) {
    p.Result_Names.assign(static_cast<std::size_t>(runs) + 1, p.Result_File_Name);
    const std::string& name = p.Result_File_Name;
    const std::string stem = name.size() >= 4 ? name.substr(0, name.size() - 4) : std::string();
    for (int i = 2; i <= runs; ++i)
      p.Result_Names[static_cast<std::size_t>(i)] = stem + std::to_string(i) + ".RES";
  } else {
    p.Result_Names.assign(2, p.Result_File_Name);
  }
}

Table<Function>& Function_Table(Project& p, Function_Family family) {
  switch (family) {
    case Function_Family::Temperature:
      return p.Temperature_Functions;
    case Function_Family::Radiation:
      return p.Radiation_Functions;
    case Function_Family::Flow:
      return p.Flow_Functions;
    case Function_Family::Displacement:
      return p.Displacement_Functions;
    case Function_Family::Spring:
      return p.Spring_Functions;
    case Function_Family::Moisture_Potential:
      return p.Potential_Functions;
    case Function_Family::Water_Pressure:
      return p.Water_Pressure_Functions;
    case Function_Family::Load:
      return p.Load_Functions;
  }
  return p.Temperature_Functions;
}

const Table<Function>& Function_Table(const Project& p, Function_Family family) {
  return Function_Table(const_cast<Project&>(p), family);
}

namespace {

enum class Form { Constant, Periodical, Piecewise };

struct Function_Default {
  Form form;
  double constant, average, amplitude, frequency;
  double t1, v1, t2, v2;
  bool cut_off;
  double cut_off_value;
};

Function Make_Function(const Function_Default& d) {
  Function f;
  f.Is_Constant = As_Flag(d.form == Form::Constant);
  f.Is_Periodical = As_Flag(d.form == Form::Periodical);
  f.Is_Piecewise = As_Flag(d.form == Form::Piecewise);
  f.Constant_Value = d.constant;
  f.Average = d.average;
  Resize_Sines(f, 1);
  f.Amplitude[1] = d.amplitude;
  f.Frequency[1] = d.frequency;
  f.Phase_Shift[1] = 0;
  Resize_Points(f, 2);
  f.Point_Time[1] = d.t1;
  f.Point_Value[1] = d.v1;
  f.Point_Time[2] = d.t2;
  f.Point_Value[2] = d.v2;
  f.Has_Cut_Off = As_Flag(d.cut_off);
  f.Cut_Off_Value = d.cut_off_value;
  return f;
}

}  // namespace

Function Default_Function(Function_Family family) {
  switch (family) {
    case Function_Family::Temperature:
      return Make_Function({Form::Constant, 20, 15, 3, 1, 0, 15, 72, 15, false, -100});
    case Function_Family::Radiation:
      return Make_Function({Form::Periodical, 300, 250, 400, 1, 0, 250, 72, 250, true, 0});
    case Function_Family::Flow:
      return Make_Function({Form::Constant, 1, 0.75, 0.25, 1, 0, 1, 36, 1, true, 0});
    case Function_Family::Displacement:
      return Make_Function({Form::Constant, 1, 1, 0.2, 1, 0, 0, 72, 1, false, -100});
    case Function_Family::Spring:
      return Make_Function({Form::Piecewise, 1, 1, 0.2, 1, -1, -1, 0, 0, false, -1000});
    case Function_Family::Moisture_Potential:
      return Make_Function({Form::Constant, 0.7, 0.7, 0.15, 1, 0, 0.6, 72, 0.6, false, 0});
    case Function_Family::Water_Pressure:
      return Make_Function({Form::Constant, 30, 10, 4, 1, 0, 5, 72, 5, false, 0});
    case Function_Family::Load:
      return Make_Function({Form::Constant, 1, 0.5, 0.5, 1, 0, 1, 72, 1, true, 0});
  }
  return {};
}

void Set_Graphical_Defaults(Project& p) {
  p.Rect_Grid_Snap = True_Flag;
  p.Rect_Grid_Visible = True_Flag;
  p.Grid_X_Min = 0;
  p.Grid_X_Max = 2000;
  p.Grid_Y_Min = 0;
  p.Grid_Y_Max = 1500;
  p.Grid_X_Increment = 100;
  p.Grid_Y_Increment = 100;
  p.Circ_Grid_Snap = False_Flag;
  p.Circ_Grid_Visible = False_Flag;
  p.Circ_X_Center = 0;
  p.Circ_Y_Center = 0;
  p.Circ_Outer_Radius = 1000;
  p.Circ_Inner_Radius = 750;
  p.Circ_Start_Angle = 0;
  p.Circ_End_Angle = 90;
  p.Circ_Angle_Increment = 5;
}

void New_Project(Project& p) {
  p = Project{};
  for (int k = 1; k <= Function_Family_Count; ++k) {
    auto family = static_cast<Function_Family>(k);
    Function_Table(p, family).add(Default_Function(family));
  }
  p.Circuit_Default.Pipe_Count = 2;
  Resize_Pipes(p.Circuit_Default, 2);
  p.Circuit_Default.Distance[1] = 5;
  p.Circuit_Default.Distance[2] = 10;
  p.Circuit_Default.Distance[3] = 5;
  p.Period.add(pvx::Period{0, 72, 1, 0.25});
  p.Computation_Time = 72;
}

}  // namespace pvx
