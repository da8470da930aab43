#include "design/editor_fields.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "app/units.h"
#include "design/time_function.h"

namespace pvx {

namespace {

// ---- Field makers ------------------------------------------------------------------------------
// `access` is a generic lambda giving the record (or the shown row of its table) inside the copy.

template <class Access, class R, class T>
Editor_Field Number(std::string caption, int kind, int decimals, Access access, T R::*member) {
  Editor_Field f;
  f.type = Field_Type::Number;
  f.caption = std::move(caption);
  f.unit_kind = kind;
  f.decimals = decimals;
  f.get = [access, member](const Editor_Copy& c) { return static_cast<double>(access(c).*member); };
  f.set = [access, member](Editor_Copy& c, double v) { access(c).*member = static_cast<T>(v); };
  return f;
}

template <class Access, class R>
Editor_Field Integer(std::string caption, Access access, std::int16_t R::*member) {
  Editor_Field f = Number(std::move(caption), 0, 0, access, member);
  f.type = Field_Type::Integer;
  return f;
}

template <class Access, class R>
Editor_Field Function_Field(std::string caption, Function_Family family, Access access,
                            std::int16_t R::*member) {
  Editor_Field f = Integer(std::move(caption), access, member);
  f.type = Field_Type::Function_Number;
  f.family = family;
  return f;
}

template <class Access, class R>
Editor_Field Check(std::string caption, Access access, Flag R::*member) {
  Editor_Field f;
  f.type = Field_Type::Check;
  f.caption = std::move(caption);
  f.decimals = 0;
  f.get = [access, member](const Editor_Copy& c) { return access(c).*member != 0 ? 1.0 : 0.0; };
  f.set = [access, member](Editor_Copy& c, double v) { access(c).*member = As_Flag(v != 0); };
  return f;
}

// Two options over one flag: the first option sets it, the second clears it (or the reverse).
template <class Access, class R>
Editor_Field Flag_Option(std::string caption, std::vector<std::string> options, bool first_is_true,
                         Access access, Flag R::*member) {
  Editor_Field f;
  f.type = Field_Type::Option;
  f.caption = std::move(caption);
  f.options = std::move(options);
  f.decimals = 0;
  f.get = [=](const Editor_Copy& c) { return ((access(c).*member != 0) == first_is_true) ? 0.0 : 1.0; };
  f.set = [=](Editor_Copy& c, double v) { access(c).*member = As_Flag((v == 0) == first_is_true); };
  return f;
}

template <class Access>
Editor_Field Material_Field(std::string caption, Material_Filter filter, Access access) {
  Editor_Field f;
  f.type = Field_Type::Material;
  f.caption = std::move(caption);
  f.filter = filter;
  f.get_text = [access](const Editor_Copy& c) { return access(c); };
  f.set_text = [access](Editor_Copy& c, const std::string& t) { access(c) = t; };
  return f;
}

Editor_Field Row(Editor_Field f) {
  f.row_field = true;
  return f;
}

Editor_Field Minimum(Editor_Field f, double minimum, std::string message) {
  f.minimum = minimum;
  f.limit_message = std::move(message);
  return f;
}

template <class Rows, class Add>
Editor_Field Row_Selector(std::string caption, Rows rows, Add add) {
  Editor_Field f;
  f.type = Field_Type::Row_Selector;
  f.caption = std::move(caption);
  f.decimals = 0;
  f.get = [](const Editor_Copy& c) { return static_cast<double>(c.Row); };
  f.set = [](Editor_Copy& c, double v) { c.Row = static_cast<int>(v); };
  f.row_count = rows;
  if constexpr (!std::is_same_v<Add, std::nullptr_t>) f.add_row = add;
  return f;
}

// ---- The editors -------------------------------------------------------------------------------

const auto thermal_row = [](auto& c) -> auto& {
  return c.Border.Thermal_Periods[c.Row];
};
const auto hygral_row = [](auto& c) -> auto& {
  return c.Border.Hygral_Periods[c.Row];
};

std::vector<Editor_Field> Thermal_Period_Rows(const Project& p) {
  std::vector<Editor_Field> v;
  const Thermal_Period period_default = p.Thermal_Period_Default;
  v.push_back(Row_Selector(
      "Period no:", [](const Editor_Copy& c) { return c.Border.Thermal_Periods.count(); },
      [period_default](Editor_Copy& c) { c.Border.Thermal_Periods.add(period_default); }));
  v.push_back(Row(Number("From [hours]:", 0, 2, thermal_row, &Thermal_Period::From)));
  v.push_back(Row(Number("Until [hours]:", 0, 2, thermal_row, &Thermal_Period::Until)));
  return v;
}

std::vector<Editor_Field> Border_Thermal_Fields(const Project& p) {
  std::vector<Editor_Field> v;
  v.push_back(Check(
      "Thermal active", [](auto& c) -> auto& { return c.Border; }, &Border::Thermal_Active));
  for (auto& f : Thermal_Period_Rows(p))
    v.push_back(std::move(f));
  v.push_back(Row(Function_Field("Temperature function:", Function_Family::Temperature, thermal_row,
                                 &Thermal_Period::Temperature_Function)));
  return v;
}

std::vector<Editor_Field> Convection_Fields(const Project& p) {
  std::vector<Editor_Field> v = Thermal_Period_Rows(p);
  const auto non_negative = "A coefficient cannot be below 0.";
  v.push_back(Row(Minimum(
      Number("Coeff. [{}]:", Unit_Convection, 2, thermal_row, &Thermal_Period::Convection_Coefficient), 0,
      non_negative)));
  v.push_back(Row(Function_Field("Radiation function:", Function_Family::Radiation, thermal_row,
                                 &Thermal_Period::Radiation_Function)));
  v.push_back(Row(Number("es", 0, 3, thermal_row, &Thermal_Period::Es)));
  v.push_back(Row(Number("ea", 0, 3, thermal_row, &Thermal_Period::Ea)));
  v.push_back(Row(Number("er", 0, 3, thermal_row, &Thermal_Period::Er)));
  return v;
}

std::vector<Editor_Field> Border_Hygral_Fields(const Project& p) {
  std::vector<Editor_Field> v;
  const Hygral_Period period_default = p.Hygral_Period_Default;
  v.push_back(Check(
      "Hygral active", [](auto& c) -> auto& { return c.Border; }, &Border::Hygral_Active));
  v.push_back(Row_Selector(
      "Period no:", [](const Editor_Copy& c) { return c.Border.Hygral_Periods.count(); },
      [period_default](Editor_Copy& c) { c.Border.Hygral_Periods.add(period_default); }));
  v.push_back(Row(Number("From [hours]:", 0, 2, hygral_row, &Hygral_Period::From)));
  v.push_back(Row(Number("Until [hours]:", 0, 2, hygral_row, &Hygral_Period::Until)));
  v.push_back(Row(Flag_Option("Boundary:", {"Evaporation", "Water pressure"}, false, hygral_row,
                              &Hygral_Period::Is_Water_Pressure)));
  v.push_back(Row(Function_Field("Potential function:", Function_Family::Moisture_Potential, hygral_row,
                                 &Hygral_Period::Potential_Function)));
  v.push_back(Row(Minimum(Number("Transfer coefficient [{}]:", Unit_Transfer, -3, hygral_row,
                                 &Hygral_Period::Transfer_Coefficient),
                          0, "A coefficient cannot be below 0.")));
  Editor_Field kind;
  kind.type = Field_Type::Option;
  kind.caption = "Pressure:";
  kind.options = {"Function", "Constant level"};
  kind.decimals = 0;
  kind.row_field = true;
  kind.get = [](const Editor_Copy& c) {
    return c.Border.Hygral_Periods[c.Row].Pressure_Kind == 2 ? 1.0 : 0.0;
  };
  kind.set = [](Editor_Copy& c, double x) {
    c.Border.Hygral_Periods[c.Row].Pressure_Kind = static_cast<std::int16_t>(x != 0 ? 2 : 1);
  };
  v.push_back(kind);
  v.push_back(Row(Function_Field("Water pressure function:", Function_Family::Water_Pressure, hygral_row,
                                 &Hygral_Period::Water_Pressure_Function)));
  v.push_back(
      Row(Number("Constant level [{}]:", Unit_Length_m, 3, hygral_row, &Hygral_Period::Constant_Level)));
  return v;
}

template <class Access, class R>
void Time_Fields(std::vector<Editor_Field>& v, Access access, double R::*from, double R::*until) {
  v.push_back(Number("Present from [hours]:", 0, 2, access, from));
  v.push_back(Number("Until [hours]:", 0, 2, access, until));
}

std::vector<Editor_Field> Prescribed_Fields(Editor_Kind kind) {
  std::vector<Editor_Field> v;
  auto add = [&](auto access, auto type_tag) {
    using R = decltype(type_tag);
    Time_Fields(v, access, &R::Present_From, &R::Until);
    v.push_back(Function_Field("Temperature function:", Function_Family::Temperature, access,
                               &R::Temperature_Function));
  };
  if (kind == Editor_Kind::PointT) {
    const auto a = [](auto& c) -> auto& {
      return c.Point_T;
    };
    add(a, Point_T{});
    v.push_back(Number("X [{}]:", Unit_Length_mm, 3, a, &Point_T::X));
    v.push_back(Number("Y [{}]:", Unit_Length_mm, 3, a, &Point_T::Y));
  } else if (kind == Editor_Kind::LineT) {
    add(
        [](auto& c) -> auto& { return c.Line_T; }, Line_T{});
  } else {
    const auto a = [](auto& c) -> auto& {
      return c.Area_T;
    };
    add(a, Area_T{});
    v.push_back(Number("X1 [{}]:", Unit_Length_mm, 3, a, &Area_T::X1));
    v.push_back(Number("Y1 [{}]:", Unit_Length_mm, 3, a, &Area_T::Y1));
    v.push_back(Number("X2 [{}]:", Unit_Length_mm, 3, a, &Area_T::X2));
    v.push_back(Number("Y2 [{}]:", Unit_Length_mm, 3, a, &Area_T::Y2));
  }
  return v;
}

std::vector<Editor_Field> Support_Fields(bool line) {
  std::vector<Editor_Field> v;
  const auto a = [](auto& c) -> auto& {
    return c.Support;
  };
  Time_Fields(v, a, &Support::Present_From, &Support::Until);
  // Fixed and spring exclude each other: one option group over the two flags.
  Editor_Field kind;
  kind.type = Field_Type::Option;
  kind.caption = "Support:";
  kind.options = {"Fixed", "Spring"};
  kind.decimals = 0;
  kind.get = [](const Editor_Copy& c) { return c.Support.Is_Spring != 0 ? 1.0 : 0.0; };
  kind.set = [](Editor_Copy& c, double x) {
    c.Support.Is_Spring = As_Flag(x != 0);
    c.Support.Is_Fixed = As_Flag(x == 0);
  };
  v.push_back(kind);
  v.push_back(Check("Offset", a, &Support::Has_Offset));
  v.push_back(Check("Function:", a, &Support::Has_Function));
  v.push_back(Function_Field("Displacement function:", Function_Family::Displacement, a,
                             &Support::Displacement_Function));
  v.push_back(Function_Field("Spring function:", Function_Family::Spring, a, &Support::Spring_Function));
  v.push_back(Number("Angle [Degr.]", 0, 2, a, &Support::Angle));
  if (line) {
    v.push_back(Flag_Option("Angle from:", {"Global", "Local"}, true, a, &Support::Is_Global));
  } else {
    v.push_back(Number("X [{}]:", Unit_Length_mm, 3, a, &Support::X));
    v.push_back(Number("Y [{}]:", Unit_Length_mm, 3, a, &Support::Y));
  }
  return v;
}

std::vector<Editor_Field> Load_Fields(bool line) {
  std::vector<Editor_Field> v;
  const auto a = [](auto& c) -> auto& {
    return c.Load;
  };
  Time_Fields(v, a, &Load::Present_From, &Load::Until);
  // Level, function or (neither) the constant value.
  Editor_Field kind;
  kind.type = Field_Type::Option;
  kind.caption = "Load given by:";
  kind.options = {"Value", "Level [m]", "Function"};
  kind.decimals = 0;
  kind.get = [](const Editor_Copy& c) {
    return c.Load.Is_Level != 0 ? 1.0 : c.Load.Is_Function != 0 ? 2.0 : 0.0;
  };
  kind.set = [](Editor_Copy& c, double x) {
    c.Load.Is_Level = As_Flag(x == 1);
    c.Load.Is_Function = As_Flag(x == 2);
  };
  v.push_back(kind);
  const int kind_of_value = line ? Unit_Stress : Unit_Line_Force;
  v.push_back(Number("Value [{}]", kind_of_value, 2, a, &Load::Value));
  v.push_back(Number("Factor [{}]", kind_of_value, 3, a, &Load::Factor));
  v.push_back(Number("Level [{}]", Unit_Length_m, 3, a, &Load::Level));
  v.push_back(Function_Field("Load function:", Function_Family::Load, a, &Load::Load_Function));
  v.push_back(Number("Angle [Degr.]", 0, 2, a, &Load::Angle));
  v.push_back(Flag_Option("Angle from:", {"Global", "Local"}, true, a, &Load::Is_Global));
  if (!line) {
    v.push_back(Number("X [{}]:", Unit_Length_mm, 3, a, &Load::X));
    v.push_back(Number("Y [{}]:", Unit_Length_mm, 3, a, &Load::Y));
  }
  return v;
}

std::vector<Editor_Field> Circuit_Fields() {
  std::vector<Editor_Field> v;
  const auto a = [](auto& c) -> auto& {
    return c.Circuit;
  };
  Editor_Field pipes = Integer("Number of pipes", a, &Circuit::Pipe_Count);
  pipes.read_only = true;
  v.push_back(pipes);
  const auto positive = "The value must be above 0.";
  Editor_Field diameter = Number("Diameter pipes [{}]:", Unit_Length_mm, 3, a, &Circuit::Diameter);
  diameter.minimum = 1e-9;
  diameter.limit_message = positive;
  v.push_back(diameter);
  v.push_back(Minimum(Number("Transfer coeff. [{}]:", Unit_Convection, 2, a, &Circuit::Transfer_Coefficient),
                      0, "A coefficient cannot be below 0."));
  v.push_back(Minimum(Number("Capacity liquid [{}]:", Unit_Capacity, 2, a, &Circuit::Liquid_Capacity), 0,
                      "A capacity cannot be below 0."));
  v.push_back(Function_Field("Temperature function:", Function_Family::Temperature, a,
                             &Circuit::Temperature_Function));
  v.push_back(Function_Field("Flow function:", Function_Family::Flow, a, &Circuit::Flow_Function));
  v.push_back(
      Flag_Option("Inlet:", {"Connected to outlet (closed circuit)", "Connected to temperature function"},
                  true, a, &Circuit::Closed_Circuit));
  v.push_back(Row_Selector(
      "Distance no:", [](const Editor_Copy& c) { return c.Circuit.Distance.count(); }, nullptr));
  Editor_Field distance;
  distance.type = Field_Type::Number;
  distance.caption = "Out of plane distances between: [{}]";
  distance.unit_kind = Unit_Length_m;
  distance.decimals = 3;
  distance.row_field = true;
  distance.get = [](const Editor_Copy& c) { return c.Circuit.Distance[c.Row]; };
  distance.set = [](Editor_Copy& c, double x) { c.Circuit.Distance[c.Row] = x; };
  // The water heats up over the length of a stretch, and divides by it.
  v.push_back(Minimum(distance, 1e-9, "A distance must be above 0: the water heats up along it."));
  v.push_back(Number("Active from [hours]", 0, 2, a, &Circuit::Active_From));
  v.push_back(Number("Until: [hours]", 0, 2, a, &Circuit::Active_Until));
  return v;
}

std::vector<Editor_Field> Macro_Fields(bool with_material) {
  std::vector<Editor_Field> v;
  const auto a = [](auto& c) -> auto& {
    return c.Macro;
  };
  if (with_material) {
    v.push_back(Material_Field(
        "Material:", Material_Filter::Any, [](auto& c) -> auto& { return c.Macro.Material; }));
  }
  v.push_back(Number("Temperature [{}]", Unit_Temperature, 2, a, &Macro::Temperature));
  v.push_back(Number("Moisture potential [-]", 0, 3, a, &Macro::Potential));
  v.push_back(
      Minimum(Number("Maturity [hours]", 0, 2, a, &Macro::Maturity), 0, "A maturity cannot be below 0."));
  Editor_Field thickness = Number("Thickness [{}]", Unit_Length_mm, 3, a, &Macro::Thickness);
  thickness.minimum = 1e-9;
  thickness.limit_message = "The thickness must be above 0.";
  v.push_back(thickness);
  v.push_back(Number("Present from [hours]", 0, 2, a, &Macro::Present_From));
  v.push_back(Number("Until [hours]", 0, 2, a, &Macro::Present_Until));
  v.push_back(Number("Dead weight applied at [hours]", 0, 2, a, &Macro::Dead_Weight_At));
  v.push_back(Minimum(Number("Moisture content [{}]", Unit_Density, 2, a, &Macro::Moisture_Content), 0,
                      "A moisture content cannot be below 0."));
  return v;
}

std::vector<Editor_Field> Rebar_Fields() {
  std::vector<Editor_Field> v;
  const auto a = [](auto& c) -> auto& {
    return c.Rebar;
  };
  v.push_back(Material_Field(
      "Material:", Material_Filter::Reinforcement, [](auto& c) -> auto& { return c.Rebar.Material; }));
  Editor_Field diameter = Number("Diameter [{}]", Unit_Length_mm, 3, a, &Rebar::Diameter);
  diameter.minimum = 1e-9;
  diameter.limit_message = "The value must be above 0.";
  v.push_back(diameter);
  v.push_back(Number("Lateral coef", 0, 3, a, &Rebar::Lateral_Coefficient));
  v.push_back(Number("X1 [{}]:", Unit_Length_mm, 3, a, &Rebar::X1));
  v.push_back(Number("Y1 [{}]:", Unit_Length_mm, 3, a, &Rebar::Y1));
  v.push_back(Number("X2 [{}]:", Unit_Length_mm, 3, a, &Rebar::X2));
  v.push_back(Number("Y2 [{}]:", Unit_Length_mm, 3, a, &Rebar::Y2));
  v.push_back(Number("From [hours]:", 0, 2, a, &Rebar::From));
  v.push_back(Number("Until [hours]:", 0, 2, a, &Rebar::Until));
  return v;
}

std::vector<Editor_Field> Interface_Fields() {
  std::vector<Editor_Field> v;
  v.push_back(Material_Field(
      "Layer material:", Material_Filter::Interface,
      [](auto& c) -> auto& { return c.Interface.Layer_Material; }));
  v.push_back(Integer(
      "Layer type:", [](auto& c) -> auto& { return c.Interface; }, &Interface::Layer_Type));
  return v;
}

std::vector<Editor_Field> Out_Of_Plane_Fields() {
  std::vector<Editor_Field> v;
  const auto a = [](auto& c) -> auto& {
    return c.Out_Of_Plane;
  };
  Editor_Field mode;
  mode.type = Field_Type::Option;
  mode.caption = "Mode:";
  mode.options = {"Plane stress", "Axisymmetrical", "Plane strain"};
  mode.decimals = 0;
  mode.get = [](const Editor_Copy& c) {
    return c.Out_Of_Plane.Axisymmetric != 0 ? 1.0 : c.Out_Of_Plane.Plane_Strain != 0 ? 2.0 : 0.0;
  };
  mode.set = [](Editor_Copy& c, double x) {
    c.Out_Of_Plane.Plane_Stress = As_Flag(x == 0);
    c.Out_Of_Plane.Axisymmetric = As_Flag(x == 1);
    c.Out_Of_Plane.Plane_Strain = As_Flag(x == 2);
  };
  v.push_back(mode);
  v.push_back(Minimum(Number("Ro [{}] =", Unit_Length_mm, 3, a, &Out_Of_Plane::Offset_Radius), 0,
                      "Ro cannot be below 0."));
  v.push_back(Flag_Option("Rotation:", {"Fixed", "Free"}, true, a, &Out_Of_Plane::Rotation_X_Fixed));
  v.push_back(Flag_Option("Rotation:", {"Fixed", "Free"}, true, a, &Out_Of_Plane::Rotation_Y_Fixed));
  v.push_back(Flag_Option("Dilatation:", {"Fixed", "Free"}, true, a, &Out_Of_Plane::Dilatation_Fixed));
  return v;
}

std::vector<Editor_Field> Node_Fields() {
  std::vector<Editor_Field> v;
  const auto a = [](auto& c) -> auto& {
    return c;
  };
  v.push_back(Number("X [{}]:", Unit_Length_mm, 3, a, &Editor_Copy::Node_X));
  v.push_back(Number("Y [{}]:", Unit_Length_mm, 3, a, &Editor_Copy::Node_Y));
  return v;
}

std::string Trimmed(std::string s) {
  const auto first = s.find_first_not_of(' ');
  return first == std::string::npos ? std::string() : s.substr(first);
}

bool Is_Text_Entry(Field_Type t) {
  return t == Field_Type::Number || t == Field_Type::Integer || t == Field_Type::Function_Number ||
         t == Field_Type::Row_Selector;
}

}  // namespace

const char* Editor_Form_Name(Editor_Kind kind) {
  static const char* const names[Editor_Kind_Count] = {
      "frmBorT",      "frmBorH",      "frmConvection", "frmPointT", "frmLineT",   "frmAreaT",
      "frmSupportP",  "frmSupportL",  "frmLoadP",      "frmLoadL",  "frmCircuit", "frmMacroProp",
      "frmReinforce", "frmInterface", "frmOutofPlane", "frmNode"};
  return names[static_cast<int>(kind)];
}

const char* Editor_Title(Editor_Kind kind) {
  static const char* const titles[Editor_Kind_Count] = {"Thermal border conditions",
                                                        "Hygral border conditions",
                                                        "Convection and radiation",
                                                        "Prescribed temperature in a point",
                                                        "Prescribed temperature on a line",
                                                        "Prescribed temperature in an area",
                                                        "Point support",
                                                        "Line support",
                                                        "Point load",
                                                        "Line load",
                                                        "Cooling circuit",
                                                        "Macro properties",
                                                        "Reinforcement",
                                                        "Interface",
                                                        "Out of plane",
                                                        "Node"};
  return titles[static_cast<int>(kind)];
}

bool Open_Editor(const Project& p, Editor_Kind kind, int index, Editor_Session& s, std::string& message) {
  s = Editor_Session{};
  s.kind = kind;
  s.index = index;
  s.metric = p.Metric_Units != 0;
  Editor_Copy& c = s.copy;
  auto found = [&](bool ok) {
    if (!ok) message = Editor_No_Record_Message;
    return ok;
  };
  switch (kind) {
    case Editor_Kind::BorT:
    case Editor_Kind::BorH:
    case Editor_Kind::Convection:
      if (!found(p.Border.valid(index))) return false;
      c.Border = p.Border[index];
      // A border always has a period of each kind to show.
      if (c.Border.Thermal_Periods.empty()) c.Border.Thermal_Periods.add(p.Thermal_Period_Default);
      if (c.Border.Hygral_Periods.empty()) c.Border.Hygral_Periods.add(p.Hygral_Period_Default);
      s.fields = kind == Editor_Kind::BorT   ? Border_Thermal_Fields(p)
                 : kind == Editor_Kind::BorH ? Border_Hygral_Fields(p)
                                             : Convection_Fields(p);
      break;
    case Editor_Kind::PointT:
      if (!found(p.Point_T.valid(index))) return false;
      c.Point_T = p.Point_T[index];
      s.fields = Prescribed_Fields(kind);
      break;
    case Editor_Kind::LineT:
      if (!found(p.Line_T.valid(index))) return false;
      c.Line_T = p.Line_T[index];
      s.fields = Prescribed_Fields(kind);
      break;
    case Editor_Kind::AreaT:
      if (!found(p.Area_T.valid(index))) return false;
      c.Area_T = p.Area_T[index];
      s.fields = Prescribed_Fields(kind);
      break;
    case Editor_Kind::SupportP:
    case Editor_Kind::SupportL: {
      const auto& table = kind == Editor_Kind::SupportP ? p.Point_Support : p.Line_Support;
      if (!found(table.valid(index))) return false;
      c.Support = table[index];
      s.fields = Support_Fields(kind == Editor_Kind::SupportL);
      break;
    }
    case Editor_Kind::LoadP:
    case Editor_Kind::LoadL: {
      const auto& table = kind == Editor_Kind::LoadP ? p.Point_Load : p.Line_Load;
      if (!found(table.valid(index))) return false;
      c.Load = table[index];
      s.fields = Load_Fields(kind == Editor_Kind::LoadL);
      break;
    }
    case Editor_Kind::Circuit:
      if (!found(p.Circuit.valid(index))) return false;
      c.Circuit = p.Circuit[index];
      if (c.Circuit.Distance.count() != c.Circuit.Pipe_Count + 1)
        c.Circuit.Distance.resize(c.Circuit.Pipe_Count + 1,
                                  c.Circuit.Distance.empty() ? 0.0 : c.Circuit.Distance.last());
      s.fields = Circuit_Fields();
      break;
    case Editor_Kind::MacroProp:
      if (index == 0) {
        static_cast<Macro_Values&>(c.Macro) = p.Macro_Defaults;
      } else {
        if (!found(p.Macro.valid(index))) return false;
        c.Macro = p.Macro[index];
      }
      s.fields = Macro_Fields(index != 0);
      break;
    case Editor_Kind::Reinforce:
      if (!found(p.Rebar.valid(index))) return false;
      c.Rebar = p.Rebar[index];
      s.fields = Rebar_Fields();
      break;
    case Editor_Kind::Interface:
      if (!found(p.Interface.valid(index))) return false;
      c.Interface = p.Interface[index];
      s.fields = Interface_Fields();
      break;
    case Editor_Kind::OutofPlane:
      c.Out_Of_Plane = p.Out_Of_Plane;
      s.fields = Out_Of_Plane_Fields();
      break;
    case Editor_Kind::Node:
      if (!found(index >= 1 && index <= Node_Count(p))) return false;
      c.Node_X = p.Node_X[index];
      c.Node_Y = p.Node_Y[index];
      s.fields = Node_Fields();
      break;
  }
  s.original = c;
  return true;
}

std::string Field_Caption(const Editor_Session& s, int field) {
  const Editor_Field& f = s.fields[static_cast<std::size_t>(field)];
  std::string caption = f.caption;
  const auto at = caption.find("{}");
  if (at != std::string::npos) caption.replace(at, 2, Unit_Name(f.unit_kind, s.metric));
  return caption;
}

std::string Field_Text(const Editor_Session& s, int field) {
  const Editor_Field& f = s.fields[static_cast<std::size_t>(field)];
  if (f.type == Field_Type::Material) return f.get_text(s.copy);
  double value = f.get(s.copy);
  if (!s.metric && f.unit_kind != 0) value = Convert_Unit(true, f.unit_kind, value);
  return Trimmed(Format_Number(value, 40, f.decimals));
}

int Editor_Row_Count(const Editor_Session& s) {
  for (const auto& f : s.fields)
    if (f.type == Field_Type::Row_Selector) return f.row_count(s.copy);
  return 0;
}

bool Enter_Field(Editor_Session& s, int field, std::string_view text, Project& p, const Editor_Question& ask,
                 std::string& message) {
  message.clear();
  Editor_Field& f = s.fields[static_cast<std::size_t>(field)];
  if (!Is_Text_Entry(f.type) || f.read_only) return false;
  if (f.type == Field_Type::Number) {
    double value = Check_Number(text, s.decimal_comma, &message);
    if (!message.empty()) return false;
    if (!s.metric && f.unit_kind != 0) value = Convert_Unit(false, f.unit_kind, value);
    if (value < f.minimum || value > f.maximum) {
      message = f.limit_message;
      return false;
    }
    f.set(s.copy, value);
    return true;
  }
  const std::int16_t typed = Check_Integer(text, s.decimal_comma, &message);
  if (!message.empty()) return false;
  switch (f.type) {
    case Field_Type::Function_Number: {
      const auto old = static_cast<std::int16_t>(f.get(s.copy));
      f.set(s.copy, Enter_Function_Number(p, f.family, typed, old, ask));
      return true;
    }
    case Field_Type::Row_Selector: {
      const int rows = f.row_count(s.copy);
      if (typed < 1) {
        s.copy.Row = 1;
      } else if (typed <= rows) {
        s.copy.Row = typed;
      } else if (f.add_row) {
        // One row at a time: a number further above the count gives the next row.
        f.add_row(s.copy);
        s.copy.Row = f.row_count(s.copy);
      } else {
        message = Field_Caption(s, field) + " 1 to " + std::to_string(rows);
        return false;
      }
      return true;
    }
    default:
      if (typed < f.minimum || typed > f.maximum) {
        message = f.limit_message;
        return false;
      }
      f.set(s.copy, typed);
      return true;
  }
}

void Set_Field_Value(Editor_Session& s, int field, double value) {
  const Editor_Field& f = s.fields[static_cast<std::size_t>(field)];
  if (f.set && !f.read_only) f.set(s.copy, value);
}

void Set_Field_Text(Editor_Session& s, int field, const std::string& text) {
  const Editor_Field& f = s.fields[static_cast<std::size_t>(field)];
  if (f.set_text) f.set_text(s.copy, text);
}

std::vector<std::string> Material_Choices(const Project& p, Material_Filter filter) {
  std::vector<std::string> names;
  for (const auto& m : p.Material) {
    if (filter == Material_Filter::Interface && !m.Is_Interface) continue;
    if (filter == Material_Filter::Reinforcement && !m.Is_Reinforcement) continue;
    names.push_back(m.Name);
  }
  return names;
}

namespace {

// The copy as Apply would write it: what follows from the fields typed.
Editor_Copy Completed(const Editor_Copy& copy, const Editor_Copy& original) {
  Editor_Copy c = copy;
  c.Row = original.Row;
  for (auto& period : c.Border.Thermal_Periods) {
    period.Radiation_On = As_Flag(period.Es != 0 || period.Ea != 0 || period.Er != 0);
    period.Convection_On = As_Flag(period.Convection_Coefficient != 0);
  }
  if (c.Support.Has_Offset != original.Support.Has_Offset) c.Support.Reference_Value = 0;
  if (c.Area_T.X1 > c.Area_T.X2) std::swap(c.Area_T.X1, c.Area_T.X2);
  if (c.Area_T.Y1 > c.Area_T.Y2) std::swap(c.Area_T.Y1, c.Area_T.Y2);
  Rebar& r = c.Rebar;
  const double dx = r.X2 - r.X1, dy = r.Y2 - r.Y1;
  const double length = std::hypot(dx, dy);
  if (length > 0) {
    r.Length = length;
    r.Direction_Cos = dx / length;
    r.Direction_Sin = dy / length;
  } else {
    // A bar of zero length keeps a length and a direction, so nothing divides by zero.
    r.Length = 100;
    r.Direction_Cos = 1;
    r.Direction_Sin = 0;
  }
  return c;
}

bool Same_Record(Editor_Kind kind, const Editor_Copy& a, const Editor_Copy& b) {
  switch (kind) {
    case Editor_Kind::BorT:
    case Editor_Kind::BorH:
    case Editor_Kind::Convection:
      return a.Border == b.Border;
    case Editor_Kind::PointT:
      return a.Point_T == b.Point_T;
    case Editor_Kind::LineT:
      return a.Line_T == b.Line_T;
    case Editor_Kind::AreaT:
      return a.Area_T == b.Area_T;
    case Editor_Kind::SupportP:
    case Editor_Kind::SupportL:
      return a.Support == b.Support;
    case Editor_Kind::LoadP:
    case Editor_Kind::LoadL:
      return a.Load == b.Load;
    case Editor_Kind::Circuit:
      return a.Circuit == b.Circuit;
    case Editor_Kind::MacroProp:
      return a.Macro == b.Macro;
    case Editor_Kind::Reinforce:
      return a.Rebar == b.Rebar;
    case Editor_Kind::Interface:
      return a.Interface == b.Interface;
    case Editor_Kind::OutofPlane:
      return a.Out_Of_Plane == b.Out_Of_Plane;
    case Editor_Kind::Node:
      return a.Node_X == b.Node_X && a.Node_Y == b.Node_Y;
  }
  return true;
}

}  // namespace

bool Editor_Changed(const Editor_Session& s) {
  return !Same_Record(s.kind, Completed(s.copy, s.original), Completed(s.original, s.original));
}

void Apply_Editor(const Editor_Session& s, Project& p) {
  const Editor_Copy c = Completed(s.copy, s.original);
  const int i = s.index;
  switch (s.kind) {
    case Editor_Kind::BorT:
    case Editor_Kind::BorH:
    case Editor_Kind::Convection:
      p.Border[i] = c.Border;
      break;
    case Editor_Kind::PointT:
      p.Point_T[i] = c.Point_T;
      break;
    case Editor_Kind::LineT:
      p.Line_T[i] = c.Line_T;
      break;
    case Editor_Kind::AreaT:
      p.Area_T[i] = c.Area_T;
      break;
    case Editor_Kind::SupportP:
      p.Point_Support[i] = c.Support;
      break;
    case Editor_Kind::SupportL:
      p.Line_Support[i] = c.Support;
      break;
    case Editor_Kind::LoadP:
      p.Point_Load[i] = c.Load;
      break;
    case Editor_Kind::LoadL:
      p.Line_Load[i] = c.Load;
      break;
    case Editor_Kind::Circuit:
      p.Circuit[i] = c.Circuit;
      break;
    case Editor_Kind::MacroProp:
      if (i != 0) p.Macro[i] = c.Macro;
      // The next macro starts from the values of the last one applied.
      p.Macro_Defaults = static_cast<const Macro_Values&>(c.Macro);
      break;
    case Editor_Kind::Reinforce:
      if (c.Rebar.X1 != s.original.Rebar.X1 || c.Rebar.X2 != s.original.Rebar.X2 ||
          c.Rebar.Y1 != s.original.Rebar.Y1 || c.Rebar.Y2 != s.original.Rebar.Y2)
        p.Mesh_Valid = False_Flag;
      p.Rebar[i] = c.Rebar;
      break;
    case Editor_Kind::Interface:
      p.Interface[i] = c.Interface;
      break;
    case Editor_Kind::OutofPlane:
      p.Out_Of_Plane = c.Out_Of_Plane;
      break;
    case Editor_Kind::Node:
      if (c.Node_X != s.original.Node_X || c.Node_Y != s.original.Node_Y) p.Mesh_Valid = False_Flag;
      p.Node_X[i] = c.Node_X;
      p.Node_Y[i] = c.Node_Y;
      break;
  }
}

}  // namespace pvx
