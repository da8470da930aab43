// The continuum element of the mechanical analysis: a bilinear four-node quadrilateral with 2 x 2
// integration points, its strain operator in the three out-of-plane forms and the elastic matrices
// for a unit modulus.
//
// Strain components, in this order everywhere in the mechanical analysis: exx, eyy, gxy (the
// engineering shear strain) and ezz. The columns of the operator follow the element's equations:
// x and y of corner 1, ..., x and y of corner 4, then, in the generalised plane strain form, the
// three unknowns of the out-of-plane strain ezz = c0 + c1 x + c2 y shared by the whole section.
//
// Units: mm and N/mm2. An element of the plane forms has its thickness as out-of-plane factor; the
// axisymmetric form works per radian, with the radius in the weight of each point.
#pragma once

#include "app/project.h"

namespace pvx {

inline constexpr int Element_Corner_Dofs = 8;
inline constexpr int Max_Element_Dofs = 11;

enum class Section_Form {
  Plane_Stress,              // szz = 0
  Axisymmetric,              // x is the distance from the axis less Offset_Radius; zz is the hoop direction
  Generalised_Plane_Strain,  // ezz linear over the section, with three unknowns of its own
};

// How the project's section is to be computed.
struct Section {
  Section_Form Form = Section_Form::Plane_Stress;
  double Offset_Radius = 0;     // mm, axisymmetric only
  bool Constant_Shear = false;  // shear strain taken at the element centre
};
Section Section_Of(const Project& p);

inline int Element_Dof_Count(const Section& s) {
  return s.Form == Section_Form::Generalised_Plane_Strain ? Max_Element_Dofs : Element_Corner_Dofs;
}

// Corner coordinates of an element, mm, in corner order.
struct Corner_Coordinates {
  double x[4] = {}, y[4] = {};
};
Corner_Coordinates Corners_Of(const Project& p, const Mesh_Element& e);

// The strain operator at one point: strain = B u over the element's unknowns.
struct Strain_Operator {
  double B[4][Max_Element_Dofs] = {};
  double Jacobian = 0;  // the plain Jacobian determinant at the point: the area it stands for, mm2
};

// Fills the strain operator at integration point `point` (1..4, in the order (-g,-g), (+g,-g),
// (+g,+g), (-g,+g), g = 1/sqrt(3)). `weight` is the Jacobian determinant at the point (all Gauss
// weights are 1), times the radius in the axisymmetric form; `thickness_factor` is the element's
// thickness in the plane forms and 1 in the axisymmetric one. With the constant shear option the
// shear row is taken at the element centre, which keeps bending of a coarse mesh from locking.
void Element_B_Matrix(const Corner_Coordinates& corners, const Section& section, int point, double thickness,
                      Strain_Operator& B, double& weight, double& thickness_factor);

// The stiffness D and compliance C of an isotropic material with a modulus of 1 and Poisson ratio
// nu, for the components exx, eyy, gxy, ezz. In plane stress row and column 4 are zero.
struct Elastic_Matrices {
  double D[4][4] = {};
  double C[4][4] = {};
};
void Set_Elastic_Matrices(double nu, bool plane_stress, Elastic_Matrices& m);

// Nodal values to integration point `point`, with fixed weights: 0.6222 for the corner of the
// point, 0.16667 for each of its neighbours and 0.04446 for the opposite corner. They are the
// bilinear weights at the point, rounded so that they add up to 1.
inline constexpr double Own_Corner_Weight = 0.6222;
inline constexpr double Next_Corner_Weight = 0.16667;
inline constexpr double Opposite_Corner_Weight = 0.04446;
double Interpolate_To_Point(const double corner_values[4], int point);

}  // namespace pvx
