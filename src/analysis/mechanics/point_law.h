// The material law of one integration point: the modulus of the step for the tangent matrix and
// the stress update from a strain increment. Dispatched on the material's model name, so that a
// creep or crack law is one more branch here and needs nothing else to change.
#pragma once

#include "analysis/mechanics/mechanical_state.h"
#include "material/material.h"

namespace pvx {

enum class Point_Law {
  Linear_Elastic,  // "Linear Elastic"
  Maxwell_Chain,   // "Maxwell Chain"
  Burger_Model,    // "Burger Model"
  Other,           // any other name
};
Point_Law Law_Of(const Material& m);

// What the law of a point is told about the point and the step.
struct Point_Conditions {
  double E = 0;   // E-modulus at the point's temperature and maturity, MPa
  double dt = 0;  // step length, hours
  double T = 0;   // temperature at the point, oC
  double M = 0;   // maturity at the point, in the unit of the material's mechanical tables
  // The unit-modulus compliance, for the creep strain; without it the creep strain is left at 0.
  const double (*Compliance)[4] = nullptr;
};

// The modulus of the step that multiplies the unit-modulus stiffness in the tangent matrix.
double Effective_Modulus(const Material& m, const Point_Conditions& c);

// The current stress rows of the point from its start-of-step rows and the unit stress increment
// (the unit-modulus stiffness applied to the mechanical strain increment of the step), and the
// current creep strain.
void Update_Point_Stress(const Material& m, const Point_Conditions& c, const Components& unit_increment,
                         Mech_Point& point);

}  // namespace pvx
