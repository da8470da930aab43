#include "analysis/mechanics/point_law.h"

#include "analysis/mechanics/cracking.h"
#include "analysis/mechanics/creep.h"
#include "analysis/mechanics/element.h"

namespace pvx {

Point_Law Law_Of(const Material& m) {
  if (m.Model_Name == "Linear Elastic") return Point_Law::Linear_Elastic;
  if (m.Model_Name == "Maxwell Chain") return Point_Law::Maxwell_Chain;
  if (m.Model_Name == "Burger Model") return Point_Law::Burger_Model;
  return Point_Law::Other;
}

bool Is_Softening(const Material& m) {
  return m.Softening_Law.Has_Softening || m.Softening_Law.EPFL_Active;
}

namespace {

// A chain without units has nothing to creep with: it is taken as linear elastic.
Point_Law Effective_Law(const Material& m) {
  const Point_Law law = Law_Of(m);
  return law == Point_Law::Maxwell_Chain && Chain_Size(m) == 0 ? Point_Law::Linear_Elastic : law;
}

double Step_Of(const Material& m, const Point_Conditions& c, const Mech_Point& point) {
  return Creep_Time_Step(m, Creep_Step{c.dt, c.T, c.H, point.Ft, point.Fc}, point);
}

bool Damage_Active(const Material& m) {
  return m.Softening_Law.EPFL_Active && m.Softening_Law.Ct > 0;
}

// Transient creep takes an extra share of the start stress per degree and per unit of humidity
// that the point goes through in the step.
double Transient_Share(const Material& m, const Point_Conditions& c) {
  if (!m.Transient_Creep) return 0;
  return m.Transient_a * c.dT + Transient_b(m, c.H) * c.dH;
}

}  // namespace

double Effective_Modulus(const Material& m, const Point_Conditions& c, const Mech_Point& point) {
  double E = 0;
  switch (Effective_Law(m)) {
    case Point_Law::Linear_Elastic:
      E = c.E;
      break;
    case Point_Law::Maxwell_Chain:
      E = Maxwell_Effective_Modulus(m, c.E, c.M, Step_Of(m, c, point));
      break;
    case Point_Law::Burger_Model:
      E = Burger_Effective_Modulus(Burger_At(m, c.T, c.M), Step_Of(m, c, point));
      // A Burger body with the damage block loses tangent stiffness to the damage as well as to the
      // crack: its point enters the matrix with the square of its factor.
      if (m.Softening_Law.EPFL_Active) E *= point.Stiffness_Factor[0];
      break;
    case Point_Law::Other:
      return 0;  // a model without a stress law carries nothing
  }
  return Is_Softening(m) ? E * point.Stiffness_Factor[0] : E;
}

void Update_Point_Stress(const Material& m, const Point_Conditions& c, const Components& strain_increment,
                         Mech_Point& point) {
  const Point_Law law = Effective_Law(m);
  if (law == Point_Law::Other) {
    point.Stress[0] = Components{};
    point.Creep_Strain = Components{};
    return;
  }
  Elastic_Matrices em;
  Set_Elastic_Matrices(c.Nu, c.Plane_Stress, em);
  const bool softening = Is_Softening(m);
  if (softening) {
    // A cracked point is as much softer as its factor says; fully cracked it has no compliance
    // left to speak of, and its creep strain becomes its whole strain.
    const double f = point.Stiffness_Factor_Start[0];
    for (auto& row : em.D)
      for (double& d : row)
        d *= f;
    for (auto& row : em.C)
      for (double& x : row)
        x = f > 0 ? x / f : 0.0;
  }
  Components s{};
  for (std::size_t i = 0; i < 4; ++i)
    for (std::size_t j = 0; j < 4; ++j)
      s[i] += em.D[i][j] * strain_increment[j];

  double ft = point.Ft;
  double E_of_creep = c.E;  // the modulus the creep strain is measured against
  switch (law) {
    case Point_Law::Linear_Elastic:
      for (std::size_t i = 0; i < 4; ++i)
        point.Stress[0][i] = point.Stress_Start[0][i] + c.E * s[i];
      point.Creep_Strain = Components{};
      break;
    case Point_Law::Maxwell_Chain: {
      double dt_star = Step_Of(m, c, point);
      if (Damage_Active(m)) dt_star *= Apply_EPFL_Damage(m.Softening_Law, ft, point);
      Maxwell_Update(m, c.E, c.M, dt_star, s, Transient_Share(m, c), point);
      point.Creep_Strain = Creep_Strain_Of(em.C, c.E, point);
      break;
    }
    case Point_Law::Burger_Model: {
      const Burger_Constants b = Burger_At(m, c.T, c.M);
      double dt_star = Step_Of(m, c, point);
      if (Damage_Active(m)) dt_star *= Apply_EPFL_Damage(m.Softening_Law, ft, point);
      Burger_Update(b, dt_star, em.D, em.C, s, Transient_Share(m, c), point);
      E_of_creep = b.A;
      break;
    }
    case Point_Law::Other:
      break;
  }
  if (!softening) return;

  const Softening& law_of_crack = m.Softening_Law;
  const Crack_Conditions cc{c.Nu, ft, E_of_creep, c.Band, c.Plane_Stress, law_of_crack.Lch * c.Volume_Factor};
  if (law_of_crack.Crack_Width.count() > 0)
    Table_Crack(cc, law_of_crack, law_of_crack.EPFL_Active ? law_of_crack.Beta : law_of_crack.alfa, point);
  else
    Bilinear_Crack(cc, Bilinear_Of(law_of_crack), point);
  // The units of a chain carry the cut total in their old proportions, so that the next step
  // relaxes what the crack left, not what the uncracked point would have held.
  if (law == Point_Law::Maxwell_Chain) Scale_Chain_Units(point, Chain_Size(m), point.Stiffness_Factor[0]);
}

}  // namespace pvx
