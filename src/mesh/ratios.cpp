#include "mesh/ratios.h"

#include <cmath>

#include "app/units.h"

namespace pvx {

void Fit_Ratio_Tables(Splitting_Parameters& s) {
  if (s.Division < 1) s.Division = 1;
  s.Ratios.resize(s.Division, 1.0);
  s.UserRatios.resize(s.Division, 1.0);
}

namespace {

// r[1] = r[n] = 1 and the weights grow by `factor` from both ends towards the middle.
void Mirrored(Table<double>& r, int n, double factor) {
  r[1] = 1;
  r[n] = 1;
  for (int i = 2, j = n - 1; j >= i; ++i, --j) {
    r[i] = factor * r[i - 1];
    r[j] = r[i];
  }
}

}  // namespace

void Set_Ratios(const Project& p, Splitting_Parameters& s) {
  if (s.RatioOption == Ratio_At_Pointer) s.Division = 2;
  Fit_Ratio_Tables(s);
  const int n = s.Division;
  Table<double>& r = s.Ratios;
  switch (s.RatioOption) {
    case Ratio_Doubling:
      r[1] = 1;
      for (int i = 2; i <= n; ++i)
        r[i] = 2 * r[i - 1];
      break;
    case Ratio_Doubling_Mirror:
      Mirrored(r, n, 2);
      break;
    case Ratio_Geometric:
      r[1] = s.FactorA;
      for (int i = 2; i <= n; ++i)
        r[i] = s.FactorA * r[i - 1];
      break;
    case Ratio_Geometric_Mirror:
      Mirrored(r, n, s.FactorA);
      break;
    case Ratio_User:
      for (int i = 1; i <= n; ++i)
        r[i] = s.UserRatios[i];
      break;
    case Ratio_At_Pointer: {
      r[1] = 1;
      r[2] = 1;
      const int e = s.PickedElement, side = s.PickedSide;
      if (!p.Mesh_Element.valid(e) || side < 1 || side > 4) break;
      const Mesh_Element& el = p.Mesh_Element[e];
      const int na = el.Corner[side], nb = el.Corner[side % 4 + 1];
      if (!p.Mesh_Node.valid(na) || !p.Mesh_Node.valid(nb)) break;
      const Mesh_Node& a = p.Mesh_Node[na];
      const Mesh_Node& b = p.Mesh_Node[nb];
      const double dx = b.X - a.X, dy = b.Y - a.Y;
      const double length = std::sqrt(dx * dx + dy * dy);
      if (length == 0) break;
      const double along = ((s.Pointer_X - a.X) * dx + (s.Pointer_Y - a.Y) * dy) / length;
      if (along > 0 && along < length) {
        r[1] = along;
        r[2] = length - along;
      }
      break;
    }
    default:  // Ratio_Equal
      for (int i = 1; i <= n; ++i)
        r[i] = 1;
      break;
  }
  double sum = r[1];
  for (int i = 2; i <= n; ++i) {
    sum += r[i];
    r[i] = sum;
  }
  for (int i = 1; i <= n; ++i)
    r[i] /= sum;
}

bool Enter_Division(std::string_view text, bool decimal_comma, Splitting_Parameters& s,
                    std::string& message) {
  message.clear();
  const int value = Check_Integer(text, decimal_comma, &message);
  if (!message.empty()) return false;
  if (value < 2) {
    message = Division_Message;
    return false;
  }
  s.Division = value;
  Fit_Ratio_Tables(s);
  return true;
}

bool Enter_Factor_A(std::string_view text, bool decimal_comma, Splitting_Parameters& s,
                    std::string& message) {
  message.clear();
  const double value = Check_Number(text, decimal_comma, &message);
  if (!message.empty()) return false;
  if (value < 0) {
    message = Factor_A_Message;
    return false;
  }
  s.FactorA = value;
  return true;
}

bool Enter_User_Ratio(std::string_view text, bool decimal_comma, int k, Splitting_Parameters& s,
                      std::string& message) {
  message.clear();
  const double value = Check_Number(text, decimal_comma, &message);
  if (!message.empty()) return false;
  if (value < 0) {
    message = User_Ratio_Message;
    return false;
  }
  Fit_Ratio_Tables(s);
  if (k < 1 || k > s.UserRatios.count()) return false;
  s.UserRatios[k] = value;
  return true;
}

std::string Generated_Nodes_Label(const Project& p) {
  return "Generated nodes    : " + std::to_string(p.Mesh_Node.count());
}
std::string Generated_Elements_Label(const Project& p) {
  return "Generated elements : " + std::to_string(p.Mesh_Element.count());
}

}  // namespace pvx
