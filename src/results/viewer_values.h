// What the result viewer shows of one variable: the four corner values of an element, the value
// and its text at a point, the titles of the pictures and the labels of the extremes and scales.
//
// All values come from the plot buffers as Read_Result_Variable leaves them, already in display
// units; `metric` only chooses the unit texts. Variables are the viewer's numbers: 1..40 of the
// extreme table, with 30..34 for the interface and rebar rows.
#pragma once

#include <string>

#include "app/project.h"
#include "results/result_files.h"
#include "results/run_index.h"

namespace pvx {

// Whether a variable is drawn as contours over the elements (not the deformed mesh 20, the
// reactions 21, nor the interface and rebar charts 30..34, nor the circuit variables 6..8).
bool Is_Contour_Variable(int variable);

// The index of node `node`'s displacement pair in the node buffer of a displacement record: the
// element's equation numbers for corner p when the mesh has them (interfaces give a corner its
// doubled node), else 2n - 1 and 2n of the corner's node n. Returns the index of Ux; Uy follows.
int Displacement_Index(const Project& p, int element, int corner);

// The four corner values of element `element` for a contour variable (and 20, as the magnitude of
// the displacement), in corner order; false for a variable without corner values or an element
// outside the buffers.
//   1, 4: the node buffer at the corner's node;
//   2, 3, 5, 9, 10, 22, 40: element buffer A, row p, column 1;
//   11, 12: Ux, Uy of the corner; 20: sqrt(Ux^2 + Uy^2);
//   13, 14: major and minor principal stress of row p; 15..18: Szz, Sxx, Syy, Sxy of row p;
//   19: Szz / ft of row p, with ft from element buffer B.
bool Corner_Values(const Project& p, const Plot_Buffers& buffers, int variable, int element, double (&f)[4]);

// The tensile strength at the four corners (element buffer B, column 1).
bool Corner_Strengths(const Plot_Buffers& buffers, int element, double (&ft)[4]);

// Szz / ft when ft > 0 and Szz > 0, else 0: only tension against a real strength counts.
double Ratio_Szz_Ft(double szz, double ft);

// The title of a picture ("Temperature distribution at "); "" for a variable without one.
const char* Distribution_Title(int variable);
// The title followed by the time in hours and " hours": decimals 6 in 14 places, or decimals 1 in
// 10 places for 20, 21 and 30..34.
std::string Distribution_Title_At(int variable, double time);

// The unit text after the extremes on a variable's page (" oC" or " oF", " MPa" or " ksi", ...).
std::string Extreme_Unit(int variable, bool metric);

// The unit text after a value at a point (22 has none, 40 a blank).
std::string Point_Value_Unit(int variable, bool metric);

// What the pointer shows at local point (u, v) of an element.
struct Point_Reading {
  double Value = 0;
  bool Has_Strength = false;  // 13..19: the tensile strength at the point
  double Strength = 0;
  double X = 0, Y = 0;         // the model position, by the same bilinear map
  std::string Text;            // the value's text for the label next to the pointer
  std::string X_Text, Y_Text;  // the coordinate labels, pattern "0.00"
};

// The value of the current variable at (u, v) of `element`, bilinear in the corner values, with its
// text:
//   19: the ratio of the interpolated Szz and ft (0 unless both are positive), decimals 2, width 10;
//   13..18: decimals 2, width 10, then "  (ft= " + ft in decimals 2, width 6 + "] Mpa" (or "] ksi");
//   11, 12, 20: decimals 3, width 10, then the unit; all others decimals 2, width 10, then the unit.
// False for a variable without corner values.
bool Value_At_Point(const Project& p, const Plot_Buffers& buffers, int variable, int element, double u,
                    double v, bool metric, Point_Reading& reading);

// A coordinate label: the number with two decimals ("12.50", "-3.00").
std::string Coordinate_Text(double value);

// The texts of a variable's page: under "Extreme values in period:" the lines "Maximum: " and
// "Minimum: " with value and unit, and the two boxes of "Scale Values:".
struct Extreme_Labels {
  std::string Maximum, Minimum;              // "Maximum: " + value + unit, "Minimum: " + value + unit
  std::string Scale_Maximum, Scale_Minimum;  // the box texts
};
Extreme_Labels Extreme_Labels_Of(const Run_Index& index, int variable, bool metric);

// A scale box's text: the number trimmed, in the shortest form that reads back to the same value.
std::string Scale_Box_Text(double value);

}  // namespace pvx
