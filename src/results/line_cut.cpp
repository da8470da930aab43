#include "results/line_cut.h"

#include <algorithm>
#include <cmath>

#include "app/project_file.h"
#include "app/units.h"
#include "results/viewer_geometry.h"
#include "results/viewer_values.h"

namespace pvx {

bool Is_Cut_Variable(int variable) {
  return variable == 20 || Is_Contour_Variable(variable);
}

bool Cut_Shows_Strength(int variable) {
  return variable >= 13 && variable <= 18;
}

Line_Cut Determine_Intersections(const Project& p, const Plot_Buffers& b, int variable, double time,
                                 double x1, double y1, double x2, double y2) {
  Line_Cut cut;
  cut.Variable = static_cast<std::int16_t>(variable);
  cut.X1 = x1, cut.Y1 = y1, cut.X2 = x2, cut.Y2 = y2;
  const double dx = x2 - x1, dy = y2 - y1;
  cut.CutLength = std::sqrt(dx * dx + dy * dy);
  if (!Is_Cut_Variable(variable)) return cut;

  for (int e = 1; e <= p.Mesh_Element.count(); ++e) {
    if (!Element_Shown(p.Mesh_Element[e], time)) continue;
    double x[4], y[4], f[4], ft[4] = {0, 0, 0, 0};
    if (!Element_Corners(p, e, x, y) || !Corner_Values(p, b, variable, e, f)) continue;
    Corner_Strengths(b, e, ft);
    // Where the line meets the element's outline: a side it crosses (its far corner included, so
    // that a line through a corner finds it from both sides), and the corners of a side that lies on
    // the line. Points met twice count once.
    struct Crossing {
      double t, x, y, value, strength;
    };
    Crossing found[8];
    int count = 0;
    auto add = [&](double t, double s, int j, int k) {
      for (int i = 0; i < count; ++i)
        if (std::fabs(found[i].t - t) <= 1e-12) return;
      found[count++] = {t, x[j] + s * (x[k] - x[j]), y[j] + s * (y[k] - y[j]), (1 - s) * f[j] + s * f[k],
                        (1 - s) * ft[j] + s * ft[k]};
    };
    bool along_side = false;
    for (int j = 0; j < 4; ++j) {
      const int k = (j + 1) % 4;
      const double ex = x[k] - x[j], ey = y[k] - y[j];
      const double D = -ex * dy + ey * dx;
      if (D == 0) {
        // A side on the line gives its corners that lie within the line.
        const double off = (x[j] - x1) * dy - (y[j] - y1) * dx;
        if (cut.CutLength == 0 || std::fabs(off) > 1e-9 * cut.CutLength * std::hypot(ex, ey)) continue;
        for (const int c : {j, k}) {
          const double t = ((x[c] - x1) * dx + (y[c] - y1) * dy) / (cut.CutLength * cut.CutLength);
          if (t >= 0 && t < 1) add(t, c == j ? 0.0 : 1.0, j, k);
        }
        along_side = true;
        continue;
      }
      const double t = ((y1 - y[j]) * ex - (x1 - x[j]) * ey) / D;
      if (!(t >= 0 && t < 1)) continue;
      const double s = ((y1 - y[j]) * dx - (x1 - x[j]) * dy) / D;
      if (!(s >= 0 && s <= 1)) continue;
      add(t, s, j, k);
    }
    // One point: the line ends inside the element or touches it at a corner; no piece.
    if (count < 2) continue;
    // The first and the last point along the line (a convex element has no others).
    int first = 0, last = 0;
    for (int i = 1; i < count; ++i) {
      if (found[i].t < found[first].t) first = i;
      if (found[i].t > found[last].t) last = i;
    }
    // A piece along a side shared by two elements is taken once, from the first of them.
    if (along_side) {
      bool taken = false;
      for (const Cut_Piece& c : cut.CutPieces)
        taken = taken || (std::fabs(std::min(c.Fraction[1], c.Fraction[2]) - found[first].t) <= 1e-12 &&
                          std::fabs(std::max(c.Fraction[1], c.Fraction[2]) - found[last].t) <= 1e-12);
      if (taken) continue;
    }
    Cut_Piece piece, strength;
    const int ends[2] = {std::min(first, last), std::max(first, last)};  // in the order they were met
    for (int end = 1; end <= 2; ++end) {
      const Crossing& c = found[ends[end - 1]];
      piece.X[end] = strength.X[end] = c.x;
      piece.Y[end] = strength.Y[end] = c.y;
      piece.Fraction[end] = strength.Fraction[end] = c.t;
      piece.Value[end] = c.value;
      strength.Value[end] = c.strength;
    }
    piece.Element = strength.Element = e;
    cut.CutPieces.add(piece);
    cut.CutStrength.add(strength);
  }
  return cut;
}

bool Plot_Cut_Extents(const Line_Cut& cut, const Cut_Graph_Settings& settings, Cut_Extents& extents,
                      std::string& message) {
  bool ok = true;
  extents = Cut_Extents{};
  bool first = true;
  auto take = [&](double fraction, double value) {
    if (first) {
      extents.Fraction_Min = extents.Fraction_Max = fraction;
      extents.Value_Min = extents.Value_Max = value;
      first = false;
      return;
    }
    extents.Fraction_Min = std::min(extents.Fraction_Min, fraction);
    extents.Fraction_Max = std::max(extents.Fraction_Max, fraction);
    extents.Value_Min = std::min(extents.Value_Min, value);
    extents.Value_Max = std::max(extents.Value_Max, value);
  };
  const bool strength = Cut_Shows_Strength(cut.Variable);
  for (int i = 1; i <= CutCount(cut); ++i)
    for (int end = 1; end <= 2; ++end) {
      const Cut_Piece& piece = cut.CutPieces[i];
      take(piece.Fraction[end], piece.Value[end]);
      if (strength && cut.CutStrength.valid(i)) {
        const double ft = cut.CutStrength[i].Value[end];
        take(piece.Fraction[end], ft);
        take(piece.Fraction[end], ft * settings.Factor);
      }
    }
  if (settings.Fixed) {
    if (settings.Maximum < settings.Minimum) {
      message = Fixed_Axis_Message;
      ok = false;
    } else {
      extents.Value_Min = settings.Minimum;
      extents.Value_Max = settings.Maximum;
    }
  }
  if (!(extents.Fraction_Max > extents.Fraction_Min)) extents.Fraction_Max = extents.Fraction_Min + 1;
  if (!(extents.Value_Max > extents.Value_Min)) extents.Value_Max = extents.Value_Min + 1;
  if (cut.Variable == 40) {
    extents.Value_Min = 0;
    extents.Value_Max = 1;
  }
  return ok;
}

double Cut_Picture_X(const Cut_Extents& e, double fraction) {
  return Cut_Picture_Left +
         (fraction - e.Fraction_Min) * Cut_Picture_Width / (e.Fraction_Max - e.Fraction_Min);
}

double Cut_Picture_Y(const Cut_Extents& e, double value) {
  return Cut_Picture_Bottom - (value - e.Value_Min) * Cut_Picture_Height / (e.Value_Max - e.Value_Min);
}

std::string Cut_Length_Label(const Line_Cut& cut, const Cut_Extents& e, bool metric) {
  const double metres = (e.Fraction_Max - e.Fraction_Min) * cut.CutLength / 1000;
  return Format_Number(metric ? metres : Convert_Unit(true, Unit_Length_m, metres), 7, 3);
}

std::string Cut_Axis_Title(int variable, bool metric) {
  auto pick = [metric](const char* m, const char* i) { return std::string(metric ? m : i); };
  switch (variable) {
    case 1:
      return pick("Temperature [oC]", "Temperature [oF]");
    case 2:
      return "Maturity [hours]";
    case 3:
      return "C-Maturity [oChours]";
    case 4:
      return "Moisture Potential [-]";
    case 5:
      return pick("Moisture Content [kg/m3]", "Moisture Content [lb/yd3]");
    case 9:
      return pick("Tensile strength [MPa]", "Tensile strength [ksi]");
    case 10:
      return pick("Compressive strength [MPa]", "Compressive strength [ksi]");
    case 11:
      return pick("Displacements Ux [mm]", "Displacements Ux [in]");
    case 12:
      return pick("Displacements Uy [mm]", "Displacements Uy [in]");
    case 13:
      return pick("Major stresses [MPa]", "Major stresses [ksi]");
    case 14:
      return pick("Minor stresses [MPa]", "Minor stresses [ksi]");
    case 15:
      return pick("Stresses Szz [MPa]", "Stresses Szz [ksi]");
    case 16:
      return pick("Stresses Sxx [MPa]", "Stresses Sxx [ksi]");
    case 17:
      return pick("Stresses Syy [MPa]", "Stresses Syy [ksi]");
    case 18:
      return pick("Stresses Sxy [MPa]", "Stresses Sxy [ksi]");
    case 19:
      return "Ratio Szz/ft";
    case 20:
      return pick("Total displacements [mm]", "Total displacements [in]");
    case 22:
      return pick("Crack opening [mm]", "Crack opening [in]");
    case 40:
      return "D.o.h. [-]";
    default:
      return "";
  }
}

std::string Cut_Distance_Title(bool metric) {
  return metric ? "Distance [m]" : "Distance [yd]";
}

std::string Cut_Variable_Name(int variable, bool metric) {
  switch (variable) {
    case 13:
      return metric ? "Major principle stresses [MPa]" : "Major principle stresses [ksi]";
    case 14:
      return metric ? "Minor principle stresses [MPa]" : "Minor principle stresses [ksi]";
    case 19:
      return "Ratio  Szz/ft";
    case 40:
      return "D.o.h [-]";
    default:
      return Cut_Axis_Title(variable, metric);
  }
}

namespace {

void Add_Line(std::string& out, const std::string& line) {
  out += line;
  out += "\r\n";
}

}  // namespace

std::string Line_Cut_Text(const Line_Cut& cut, bool metric) {
  std::string out;
  const std::string name = Cut_Variable_Name(cut.Variable, metric);
  if (!name.empty()) Add_Line(out, "Variable is " + name);
  Add_Line(out, Line_Cut_Header);
  for (int i = 1; i <= CutCount(cut); ++i) {
    const Cut_Piece& c = cut.CutPieces[i];
    const int a = c.X[2] < c.X[1] ? 2 : 1, b = 3 - a;
    Add_Line(out, Format_Number(i, 3, 0) + ' ' + Format_Number(c.X[a], 10, 1) + ' ' +
                      Format_Number(c.Y[a], 10, 1) + ' ' + Format_Number(c.X[b], 10, 1) + ' ' +
                      Format_Number(c.Y[b], 10, 1) + ' ' + Format_Number(c.Value[a], 10, 3) + ' ' +
                      Format_Number(c.Value[b], 10, 3));
  }
  return out;
}

bool Store_Line_Cut(const std::string& path, const Line_Cut& cut, bool metric, std::string& message) {
  message.clear();
  if (path.empty()) return false;  // the dialog was left without a name
  if (!Write_File_Replacing(path, Line_Cut_Text(cut, metric))) {
    message = Write_Failed_Message + path;
    return false;
  }
  message = Line_Cut_Saved_Prefix + path;
  return true;
}

}  // namespace pvx
