// The material law of one integration point: the modulus of the step for the tangent matrix and
// the stress update from a strain increment, with creep (a Maxwell chain or a Burger body) and
// tensile cracking. Dispatched on the material's model name, so that a law is one more branch here
// and nothing else changes. Everything a law needs comes in through Point_Conditions and the point's
// own state, so a test can drive one point through any history without a mesh.
#pragma once

#include "analysis/mechanics/mechanical_state.h"
#include "material/material.h"

namespace pvx {

enum class Point_Law {
  Linear_Elastic,  // "Linear Elastic"
  Maxwell_Chain,   // "Maxwell Chain"
  Burger_Model,    // "Burger Model"
  Other,           // any other name: no stress at all
};
Point_Law Law_Of(const Material& m);

// A point softens (its tension is limited by a crack law) when its material has a softening curve
// or the damage block, which brings its own.
bool Is_Softening(const Material& m);

// What the law of a point is told about the point and the step.
struct Point_Conditions {
  double E = 0;   // E-modulus at the point's temperature and maturity, MPa
  double dt = 0;  // step length, hours
  double T = 20;  // temperature, oC (the mean over the step at the point's corner)
  double M = 0;   // maturity, in the unit of the material's mechanical tables
  double H = 1;   // relative humidity at the point's corner
  double dT = 0;  // absolute change of temperature over the step, oC
  double dH = 0;  // absolute change of humidity over the step
  double Nu = 0;  // Poisson ratio
  bool Plane_Stress = false;
  double Band = 0;           // crack band width of the point, 2 sqrt(area it stands for), mm
  double Volume_Factor = 1;  // the element's random factor on the characteristic volume
};

// The modulus of the step that multiplies the unit-modulus stiffness in the tangent matrix: the
// creep law's effective modulus (from the start-of-step stresses), times the point's stiffness
// factor when it softens.
double Effective_Modulus(const Material& m, const Point_Conditions& c, const Mech_Point& point);

// The current stress rows of the point from its start-of-step rows and the mechanical strain
// increment of the step (total less free), then the crack law when the point softens. The point's
// current total strain must already hold start + increment; point.Ft and point.Fc hold the
// strengths of the step.
void Update_Point_Stress(const Material& m, const Point_Conditions& c, const Components& strain_increment,
                         Mech_Point& point);

}  // namespace pvx
