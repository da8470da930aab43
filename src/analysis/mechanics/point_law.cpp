#include "analysis/mechanics/point_law.h"

#include "analysis/mechanics/creep.h"

namespace pvx {

Point_Law Law_Of(const Material& m) {
  if (m.Model_Name == "Linear Elastic") return Point_Law::Linear_Elastic;
  if (m.Model_Name == "Maxwell Chain") return Point_Law::Maxwell_Chain;
  if (m.Model_Name == "Burger Model") return Point_Law::Burger_Model;
  return Point_Law::Other;
}

// A Maxwell chain creeps (creep.h); a chain without units has nothing to creep with and stays
// elastic. A Burger model and every other model are taken as linear elastic with the material's
// E-modulus until their own branches are written. The run says so in a warning.
double Effective_Modulus(const Material& m, const Point_Conditions& c) {
  switch (Law_Of(m)) {
    case Point_Law::Maxwell_Chain:
      if (Chain_Size(m) > 0) return Maxwell_Effective_Modulus(m, c.E, c.M, Creep_Time_Step(m, c.dt, c.T));
      break;
    case Point_Law::Linear_Elastic:
    case Point_Law::Burger_Model:
    case Point_Law::Other:
      break;
  }
  return c.E;
}

void Update_Point_Stress(const Material& m, const Point_Conditions& c, const Components& unit_increment,
                         Mech_Point& point) {
  switch (Law_Of(m)) {
    case Point_Law::Maxwell_Chain:
      if (Chain_Size(m) > 0) {
        Maxwell_Update(m, c.E, c.M, Creep_Time_Step(m, c.dt, c.T), unit_increment, point);
        point.Creep_Strain = c.Compliance ? Creep_Strain_Of(c.Compliance, c.E, point) : Components{};
        break;
      }
      [[fallthrough]];
    case Point_Law::Linear_Elastic:
    case Point_Law::Burger_Model:
    case Point_Law::Other:
      for (std::size_t i = 0; i < 4; ++i)
        point.Stress[0][i] = point.Stress_Start[0][i] + c.E * unit_increment[i];
      point.Creep_Strain = Components{};
      break;
  }
}

}  // namespace pvx
