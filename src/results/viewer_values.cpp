#include "results/viewer_values.h"

#include <charconv>
#include <cmath>

#include "app/units.h"
#include "results/plot.h"
#include "results/result_variables.h"
#include "results/viewer_geometry.h"

namespace pvx {

bool Is_Contour_Variable(int variable) {
  switch (variable) {
    case 1:
    case 2:
    case 3:
    case 4:
    case 5:
    case 9:
    case 10:
    case 22:
    case 40:
      return true;
    default:
      return variable >= 11 && variable <= 19;
  }
}

int Displacement_Index(const Project& p, int element, int corner) {
  const Mesh_Element& e = p.Mesh_Element[element];
  const int dof = e.Dof[2 * corner - 1];
  if (dof > 0) return dof;
  return 2 * e.Corner[corner] - 1;
}

namespace {

double Node_Value(const Plot_Buffers& b, int index) {
  return b.Node.valid(index) ? static_cast<double>(b.Node[index]) : 0.0;
}

}  // namespace

bool Corner_Values(const Project& p, const Plot_Buffers& b, int variable, int element, double (&f)[4]) {
  if (!p.Mesh_Element.valid(element)) return false;
  const Mesh_Element& el = p.Mesh_Element[element];
  const bool element_rows = b.Element_A.valid(element);
  for (int c = 1; c <= 4; ++c) {
    double& out = f[c - 1];
    switch (variable) {
      case 1:
      case 4:
        out = Node_Value(b, el.Corner[c]);
        break;
      case 11:
      case 12:
      case 20: {
        const int i = Displacement_Index(p, element, c);
        const double ux = Node_Value(b, i), uy = Node_Value(b, i + 1);
        out = variable == 11 ? ux : variable == 12 ? uy : std::sqrt(ux * ux + uy * uy);
        break;
      }
      case 2:
      case 3:
      case 5:
      case 9:
      case 10:
      case 22:
      case 40:
        if (!element_rows) return false;
        out = b.Element_A[element][c][1];
        break;
      case 13:
      case 14:
      case 15:
      case 16:
      case 17:
      case 18:
      case 19: {
        if (!element_rows) return false;
        const auto& s = b.Element_A[element][c];
        if (variable == 13)
          out = Major_Principal(s[1], s[2], s[3]);
        else if (variable == 14)
          out = Minor_Principal(s[1], s[2], s[3]);
        else if (variable == 15)
          out = s[4];
        else if (variable == 19)
          out = b.Element_B.valid(element) ? Ratio_Szz_Ft(s[4], b.Element_B[element][c][1]) : 0.0;
        else
          out = s[variable - 15];  // 16 Sxx, 17 Syy, 18 Sxy
        break;
      }
      default:
        return false;
    }
  }
  return true;
}

bool Corner_Strengths(const Plot_Buffers& b, int element, double (&ft)[4]) {
  if (!b.Element_B.valid(element)) return false;
  for (int c = 1; c <= 4; ++c)
    ft[c - 1] = b.Element_B[element][c][1];
  return true;
}

double Ratio_Szz_Ft(double szz, double ft) {
  return ft > 0 && szz > 0 ? szz / ft : 0.0;
}

const char* Distribution_Title(int variable) {
  switch (variable) {
    case 1:
      return "Temperature distribution at ";
    case 2:
      return "Maturity distribution at ";
    case 3:
      return "C-Maturity distribution at ";
    case 4:
      return "Moisture potential distribution at ";
    case 5:
      return "Moisture content distribution at ";
    case 9:
      return "Tensile strength distribution at ";
    case 10:
      return "Compressive strength distribution at ";
    case 11:
      return "Displacements Ux at ";
    case 12:
      return "Displacements Uy at ";
    case 13:
      return "Major stress at ";
    case 14:
      return "Minor stress at ";
    case 15:
      return "Stresses Szz at ";
    case 16:
      return "Stresses Sxx at ";
    case 17:
      return "Stresses Syy at ";
    case 18:
      return "Stresses Sxy at ";
    case 19:
      return "Ratio Szz/ft ";
    case 20:
      return "Deformations at ";
    case 21:
      return "Point reactions at ";
    case 22:
      return "Crack opening distribution at ";
    case 30:
      return "Normal stresses in interfaces at ";
    case 31:
      return "Shear stresses in interfaces at ";
    case 32:
      return "Normal stresses in rebars at ";
    case 33:
      return "Shear stresses at rebars at ";
    case 34:
      return "Slip of rebars at ";
    case 40:
      return "D.o.h. distribution at ";
    default:
      return "";
  }
}

std::string Distribution_Title_At(int variable, double time) {
  const bool short_time = variable == 20 || variable == 21 || (variable >= 30 && variable <= 34);
  const std::string t = short_time ? Format_Number(time, 10, 1) : Format_Number(time, 14, 6);
  return std::string(Distribution_Title(variable)) + t + " hours";
}

std::string Extreme_Unit(int variable, bool metric) {
  switch (variable) {
    case 1:
      return metric ? " oC" : " oF";
    case 2:
      return " hours";
    case 3:
      return " oChours";
    case 4:
    case 19:
    case 40:
      return " [-]";
    case 5:
      return metric ? " kg/m3" : " lb/yd3";
    case 9:
    case 10:
    case 13:
    case 14:
    case 15:
    case 16:
    case 17:
    case 18:
      return metric ? " MPa" : " ksi";
    case 11:
    case 12:
    case 20:
    case 22:
      return metric ? " mm" : " in";
    case 21:
      return metric ? " [kN]" : " [kip]";
    case 30:
    case 31:
    case 32:
    case 33:
      return metric ? " [MPa]" : " [ksi]";
    case 34:
      return metric ? " [mm]" : " [in]";
    default:
      return "";
  }
}

std::string Point_Value_Unit(int variable, bool metric) {
  switch (variable) {
    case 22:
      return "";
    case 40:
      return " ";
    case 21:
      return metric ? " [kN]" : " [kip]";
    default:
      return Extreme_Unit(variable, metric);
  }
}

bool Value_At_Point(const Project& p, const Plot_Buffers& b, int variable, int element, double u, double v,
                    bool metric, Point_Reading& r) {
  double f[4];
  if (variable == 19) {
    // The ratio of the interpolated fields, not the interpolated corner ratios.
    if (!Corner_Values(p, b, 15, element, f)) return false;
  } else if (!Corner_Values(p, b, variable, element, f)) {
    return false;
  }
  r = Point_Reading{};
  r.Value = Bilinear_Value(f, u, v);
  Element_Point(p, element, u, v, r.X, r.Y);
  r.X_Text = Coordinate_Text(r.X);
  r.Y_Text = Coordinate_Text(r.Y);
  if (variable >= 13 && variable <= 19) {
    double ft[4];
    if (Corner_Strengths(b, element, ft)) {
      r.Has_Strength = true;
      r.Strength = Bilinear_Value(ft, u, v);
    }
  }
  if (variable == 19) {
    r.Value = Ratio_Szz_Ft(r.Value, r.Strength);
    r.Text = Format_Number(r.Value, 10, 2);
  } else if (variable >= 13) {
    r.Text = Format_Number(r.Value, 10, 2) + "  (ft= " + Format_Number(r.Strength, 6, 2) +
             (metric ? "] Mpa" : "] ksi");
  } else if (variable == 11 || variable == 12 || variable == 20) {
    r.Text = Format_Number(r.Value, 10, 3) + Point_Value_Unit(variable, metric);
  } else {
    r.Text = Format_Number(r.Value, 10, 2) + Point_Value_Unit(variable, metric);
  }
  return true;
}

std::string Coordinate_Text(double value) {
  std::string t = Format_Number(value, 30, 2);
  const auto first = t.find_first_not_of(' ');
  return first == std::string::npos ? t : t.substr(first);
}

Extreme_Labels Extreme_Labels_Of(const Run_Index& index, int variable, bool metric) {
  Extreme_Labels l;
  const int row = Extreme_Row_Of_Variable(variable);
  if (row < 1 || row > Result_Variable_Count) return l;
  const Extreme_Row& r = index.Extremes[row];
  const Scale_Label_Format f = Scale_Label_Format_Of(variable);
  const int low_decimals = f.Has_Low ? f.Low_Decimals : f.High_Decimals;
  const int low_width = f.Has_Low ? f.Low_Width : f.High_Width;
  const std::string unit = Extreme_Unit(variable, metric);
  l.Maximum = "Maximum: " + Format_Number(r.PeriodMax, f.High_Width, f.High_Decimals) + unit;
  l.Minimum = "Minimum: " + Format_Number(r.PeriodMin, low_width, low_decimals) + unit;
  l.Scale_Maximum = Scale_Box_Text(r.ScaleMax);
  l.Scale_Minimum = Scale_Box_Text(r.ScaleMin);
  return l;
}

std::string Scale_Box_Text(double value) {
  char text[64];
  // The results are stored in single precision, so a scale value has no more digits worth
  // showing than single precision holds (65.00245, not 65.00244552467068).
  const auto result = std::to_chars(text, text + sizeof text, static_cast<float>(value));
  return std::string(text, result.ptr);
}

}  // namespace pvx
