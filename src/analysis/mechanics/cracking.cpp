#include "analysis/mechanics/cracking.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace pvx {

namespace {

constexpr int Max_Curve_Points = 21;
constexpr double Never = std::numeric_limits<double>::infinity();

// The equivalent uniaxial strain of a point and the stress along the direction it belongs to.
struct Governing {
  double strain = 0;  // equivalent strain
  double stress = 0;  // stress of the governing direction, before any cut
  double s1p = 0;     // largest in-plane principal stress
};

// From the strain less the creep strain, so that a point that creeps open under a constant stress
// does not count as cracking. Out of plane the zz direction competes with the largest in-plane one.
Governing Governing_Of(const Crack_Conditions& c, const Mech_Point& p) {
  const Components& s = p.Stress[0];
  Components e;
  for (std::size_t i = 0; i < 4; ++i)
    e[i] = p.Strain[0][i] - p.Creep_Strain[i];
  const double mean = (e[0] + e[1]) / 2;
  const double radius = std::sqrt((e[0] - e[1]) * (e[0] - e[1]) + e[2] * e[2]) / 2;
  const double ea = mean + radius, eb = mean - radius;
  const double nu = c.nu;
  Governing g;
  g.s1p = (s[0] + s[1]) / 2 + std::sqrt((s[0] - s[1]) * (s[0] - s[1]) / 4 + s[2] * s[2]);
  if (c.Plane_Stress) {
    g.strain = (ea + nu * eb) / (1 - nu * nu);
    g.stress = g.s1p;
    return g;
  }
  const double d = (1 - 2 * nu) * (1 + nu);
  const double q1 = ((1 - nu) * ea + nu * (eb + e[3])) / d;
  const double q3 = ((1 - nu) * e[3] + nu * (ea + eb)) / d;
  const bool zz = q3 > q1;
  g.strain = zz ? q3 : q1;
  g.stress = zz ? s[3] : g.s1p;
  return g;
}

// Stiffness factor of the line from the curve point (em, sc) down to zero stress at strain er.
double Unloading_Factor(double em, double er, double sc, double E) {
  return er >= em ? 0.0 : sc / ((em - er) * E);
}

// The common end of both laws: keeps the largest strain and the factor, cuts the stress down to
// the curve value sc and records the crack. et is the strain at which the point cracks.
void Cut_And_Record(const Crack_Conditions& c, const Governing& g, double et, double em, double sc,
                    double factor, Mech_Point& p) {
  p.Largest_Strain[0] = em;
  p.Stiffness_Factor[0] = std::min(factor, p.Stiffness_Factor_Start[0]);
  Components& s = p.Stress[0];
  if (g.stress > sc) {
    if (c.Plane_Stress) {
      const double r = sc / g.s1p;
      s[0] *= r;
      s[1] *= r;
      s[2] *= r;
      s[3] = 0;
    } else {
      const double r = sc / g.stress;
      for (double& x : s)
        x *= r;
    }
  }
  // The width is the strain reached less the elastic part of the stress before the cut, over the
  // band. Without a modulus there is no elastic part.
  const double inverse_E = c.E > 0 ? 1 / c.E : 0.0;
  const double w = (em - std::max(g.stress, 0.0) * inverse_E) * c.Band;
  p.Crack_Opening = std::max(w, 0.0);
  p.Cracked = em > et;
  p.Crack_Strain = p.Cracked ? em - sc * inverse_E : 0.0;
}

void Set_Band(const Crack_Conditions& c, Mech_Point& p) {
  if (p.Half_Band == 0) p.Half_Band = c.Band / 2;
}

// Strain per unit of crack width: the crack is smeared over the band 2 L.
double Per_Width(const Mech_Point& p) {
  return p.Half_Band > 0 ? 0.5 / p.Half_Band : 0.0;
}

}  // namespace

Bilinear_Values Bilinear_Of(const Softening& law) {
  if (law.EPFL_Active) return {law.aft, law.EPFL_w1, law.EPFL_w2, law.Beta};
  return {law.s1, law.w1, law.w2, law.alfa};
}

void Bilinear_Crack(const Crack_Conditions& c, const Bilinear_Values& v, Mech_Point& point) {
  Set_Band(c, point);
  const double per_width = Per_Width(point);
  const double ft = c.ft, s = v.s1 * ft;
  // A point without a modulus carries no stress that could crack it.
  const double inverse_E = c.E > 0 ? 1 / c.E : 0.0;
  const double et = c.E > 0 ? ft * inverse_E : Never;
  // A knee or an end that falls before the point before it would turn the curve back on itself;
  // it becomes a steep drop instead.
  double e1 = s * inverse_E + v.w1 * per_width;
  if (e1 <= et) e1 = et + 1e-5;
  double e2 = v.w2 * per_width;
  if (e2 <= e1) e2 = e1 + 1e-5;

  const Governing g = Governing_Of(c, point);
  const double em = std::max(point.Largest_Strain_Start[0], g.strain);
  double sc = ft, factor = point.Stiffness_Factor_Start[0];
  if (em >= et) {
    if (em <= e1)
      sc = ft + (s - ft) * (em - et) / (e1 - et);
    else if (em < e2)
      sc = s * (em - e2) / (e1 - e2);
    else
      sc = 0;
    factor = Unloading_Factor(em, v.alfa * (em - sc * inverse_E), sc, c.E);
  }
  Cut_And_Record(c, g, et, em, sc, factor, point);
}

void Table_Crack(const Crack_Conditions& c, const Softening& law, double alfa, Mech_Point& point) {
  Set_Band(c, point);
  const Components& s = point.Stress[0];
  const double angle = 0.5 * std::atan2(2 * s[2], s[0] - s[1]);
  point.Crack_Cos = std::cos(angle);
  point.Crack_Sin = std::sin(angle);

  // The curve in strain: point 1 is the cracking point on the elastic line, the others lie the
  // width of their crack, smeared over the band, beyond it. A table of mode 1 smears over the
  // material's own band length instead of the element's.
  const double inverse_E = c.E > 0 ? 1 / c.E : 0.0;
  const double per_width = law.Mode == 1 && c.Mode_Band > 0 ? 1 / c.Mode_Band : Per_Width(point);
  const int n = std::min({law.Crack_Width.count(), law.Strength_Factor.count(), Max_Curve_Points});
  double strain[Max_Curve_Points], stress[Max_Curve_Points];
  stress[0] = n > 0 ? law.Strength_Factor[1] * c.ft : c.ft;
  strain[0] = c.E > 0 ? stress[0] * inverse_E : Never;
  for (int i = 1; i < n; ++i) {
    stress[i] = law.Strength_Factor[i + 1] * c.ft;
    strain[i] = stress[i] * inverse_E + law.Crack_Width[i + 1] * per_width;
    if (strain[i] <= strain[i - 1]) strain[i] = strain[i - 1] + 1e-6;
  }
  const double et = strain[0];

  const Governing g = Governing_Of(c, point);
  const double em = std::max(point.Largest_Strain_Start[0], g.strain);
  double sc = stress[0], factor = point.Stiffness_Factor_Start[0];
  if (em >= et) {
    sc = 0;  // beyond the last point
    for (int i = 1; i < n; ++i)
      if (em <= strain[i]) {
        sc = stress[i - 1] + (stress[i] - stress[i - 1]) * (em - strain[i - 1]) / (strain[i] - strain[i - 1]);
        break;
      }
    // The unloading line pivots about the crack strain the point had at the start of the step, so
    // that within a step alfa acts only on the crack growth of that step. A crack that opens in this
    // step has no earlier crack strain to pivot about: its unloading runs parallel to the elastic
    // line, which keeps its factor until the next step.
    const double dm = point.Crack_Strain_Start;
    const double open = em - sc * inverse_E;
    const double er = dm > 0 ? dm + (open - dm) * alfa : open;
    factor = Unloading_Factor(em, er, sc, c.E);
  }
  Cut_And_Record(c, g, et, em, sc, factor, point);
}

double Apply_EPFL_Damage(const Softening& law, double& ft, Mech_Point& point) {
  const Components& s = point.Stress_Start[0];
  const double R = std::sqrt((s[0] - s[1]) * (s[0] - s[1]) / 4 + s[2] * s[2]);
  const double tension = std::max((s[0] + s[1]) / 2 + R, s[3]);
  double factor = 1;
  if (tension > 0 && ft > 0) {
    const double x = tension * law.Ct / ft;
    if (x > 0.001) factor = std::sinh(x) / x;
  }

  const Components& e = point.Creep_Strain_Start;
  const double creep =
      std::max((e[0] + e[1]) / 2 + std::sqrt((e[0] - e[1]) * (e[0] - e[1]) + e[2] * e[2]) / 2, e[3]);
  point.Creep_Max = std::max(point.Creep_Max_Start, creep);
  // Acr below 0 would raise the strength and give a negative base to the power: held at 0.
  const double damage = std::max(0.0, law.Acr * (1 - std::exp(-law.Bcr * point.Creep_Max)));
  ft *= 1 - std::pow(damage, law.Ccr);
  point.Ft_Copy = ft;
  return factor;
}

void Draw_Element_Factors(const Table<const Material*>& element_material, unsigned first_state,
                          Table<double>& strength_factor, Table<double>& volume_factor) {
  const int n = element_material.count();
  strength_factor.clear();
  strength_factor.resize(n, 1.0);
  volume_factor.clear();
  volume_factor.resize(n, 1.0);
  std::mt19937 generator(first_state);
  std::uniform_real_distribution<double> uniform(0.0, 1.0);
  for (int e = 1; e <= n; ++e) {
    const Material* m = element_material[e];
    if (!m || !m->Statistics_Active || !(m->Statistics_Factor > 0)) continue;
    // A spread of 100 % or more could draw a strength of zero or less, an element that cracks under
    // no load at all, or a negative volume: the spread stops just short of that.
    const double v = std::min(m->Statistics_Factor, 0.99);
    strength_factor[e] = 2 * v * (uniform(generator) - 0.5) + 1;
    volume_factor[e] = 2 * v * (uniform(generator) - 0.5) + 1;
  }
}

}  // namespace pvx
