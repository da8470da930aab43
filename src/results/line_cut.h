// The line cut: one result variable along a straight line drawn across the section.
//
// The line is intersected with the mesh element by element. An element that the line crosses
// yields one straight piece of the graph, from where the line enters it to where it leaves it, with
// the variable interpolated linearly along the sides it crosses. The graph's horizontal axis is the
// position along the line, 0 at its start and 1 at its end.
//
// How the "Results from linecut" window drives it:
//   release of the line   Determine_Intersections with the line's two ends in model mm, then
//                         Plot_Cut_Extents for the graph (and Cut_Picture_X, Cut_Picture_Y).
//   axis texts            Cut_Axis_Title, Cut_Distance_Title, Cut_Length_Label.
//   the store button      Store_Line_Cut with the name of the save dialog.
#pragma once

#include <cstdint>
#include <string>

#include "app/project.h"
#include "results/result_files.h"

namespace pvx {

// The program's texts of the line cut.
inline constexpr const char* Line_Cut_Caption = "Results from linecut";
inline constexpr const char* Store_Line_Cut_Caption = "Store results from linecut in a file";
inline constexpr const char* Store_Line_Cut_Title = "Store linecut data";
inline constexpr const char* Store_Line_Cut_Filter = "(*.txt)|*.txt";
inline constexpr const char* Line_Cut_Saved_Prefix = "The linecut data is saved correctly under filename ";
inline constexpr const char* Fixed_Axis_Message = "Maximum < Minimum";
inline constexpr const char* Line_Cut_Header = "Piece   X-start   Y-start   X-end  Y-end    V-start    V-end";

// One piece of the cut: the part of the line within one element. Position 1 is where the line
// enters the element (the first side hit in side order), position 2 where it leaves it.
struct Cut_Piece {
  Array1<double, 2> X, Y;      // the ends in the model, mm
  Array1<double, 2> Fraction;  // along the line: 0 at its start, 1 at its end
  Array1<double, 2> Value;     // the variable at the ends (in CutStrength: the tensile strength)
  std::int32_t Element = 0;    // the element crossed
  bool operator==(const Cut_Piece&) const = default;
};

struct Line_Cut {
  std::int16_t Variable = 0;
  double CutLength = 0;          // the length of the line in the model, mm
  Table<Cut_Piece> CutPieces;    // one per crossed element, in element order
  Table<Cut_Piece> CutStrength;  // the same pieces, with the tensile strength in Value
  double X1 = 0, Y1 = 0;         // the line's start, model mm
  double X2 = 0, Y2 = 0;         // its end
};
inline int CutCount(const Line_Cut& cut) {
  return cut.CutPieces.count();
}

// Whether a variable can be cut: it has a value at every element corner (the contour variables and
// the total displacement 20).
bool Is_Cut_Variable(int variable);
// Whether the graph of a variable shows the tensile strength beside it: the stresses 13 to 18.
bool Cut_Shows_Strength(int variable);

// Intersects the line from (x1, y1) to (x2, y2), model mm, with every element that is shown at
// `time` (Element_Shown). For each side j of an element, from corner j to corner j + 1, with side
// vector e and line vector d = (x2 - x1, y2 - y1):
//   D = -ex dy + ey dx; t, the crossing's place along the line, must lie in [0, 1) and s, its place
//   along the side, in [0, 1]; the value there is (1 - s) Va + s Vb of the side's corner values
//   (Corner_Values), and the strength likewise of the corners' tensile strength (element buffer B,
//   column 1; 0 without it);
//   a side with D exactly 0 that lies on the line gives its corners within the line; one parallel
//   to it elsewhere gives nothing.
// A point met from two sides (a corner) counts once. The element's piece runs from the first to the
// last point along the line; an element with one point (the line ends inside it, or only touches a
// corner) gives none. A piece along a side shared by two elements is taken from the first of them
// only, so that a line along the mesh lines has neither gaps nor doubled pieces. A variable without
// corner values gives no piece at all.
Line_Cut Determine_Intersections(const Project& p, const Plot_Buffers& buffers, int variable, double time,
                                 double x1, double y1, double x2, double y2);

// The settings of the graph: "Fixed axis" with its "Minimum" and "Maximum" boxes, and the "Factor"
// box that scales the strength curve (its default is the viewer's FtFactor).
struct Cut_Graph_Settings {
  bool Fixed = false;
  double Minimum = 0, Maximum = 0;
  double Factor = 1;
};

// The graph's extents: fractions along the line and values.
struct Cut_Extents {
  double Fraction_Min = 0, Fraction_Max = 1;
  double Value_Min = 0, Value_Max = 1;
  bool operator==(const Cut_Extents&) const = default;
};

// The extents of the graph of a cut:
//  1. the fractions and values of all pieces, from the smallest to the largest; for 13 to 18 the
//     strength and the strength times the factor as well, so that both strength curves fit;
//  2. with a fixed axis the values from its boxes; a maximum below the minimum is refused with
//     Fixed_Axis_Message in `message` (false returns) and the values of the pieces are kept;
//  3. an extent that is not positive is made one long from its lower end;
//  4. variable 40 (degree of hydration) always shows 0 to 1.
// A cut without pieces has the extents 0 to 1 both ways.
bool Plot_Cut_Extents(const Line_Cut& cut, const Cut_Graph_Settings& settings, Cut_Extents& extents,
                      std::string& message);

// The picture of the graph, in twips: fractions from X = 570 over 2700, values from Y = 1700 up
// over 1400.
inline constexpr double Cut_Picture_Left = 570, Cut_Picture_Width = 2700;
inline constexpr double Cut_Picture_Bottom = 1700, Cut_Picture_Height = 1400;
double Cut_Picture_X(const Cut_Extents& extents, double fraction);
double Cut_Picture_Y(const Cut_Extents& extents, double value);

// The right-hand label of the horizontal axis: the length the graph spans, (Fraction_Max -
// Fraction_Min) CutLength / 1000 in metres, or in yards, with decimals 3 in 7 places.
std::string Cut_Length_Label(const Line_Cut& cut, const Cut_Extents& extents, bool metric);

// The title of the graph's value axis ("Temperature [oC]", ...); "" for a variable without one.
std::string Cut_Axis_Title(int variable, bool metric);
// "Distance [m]" or "Distance [yd]".
std::string Cut_Distance_Title(bool metric);
// The variable's name in the stored file, after "Variable is ": the axis title, but "Major
// principle stresses", "Minor principle stresses", "Ratio  Szz/ft" and "D.o.h [-]" for 13, 14, 19
// and 40; "" for a variable without a name.
std::string Cut_Variable_Name(int variable, bool metric);

// The text of the stored file, CR LF line ends: "Variable is " + name (left out without a name),
// the header line, then per piece its number (width 3) and, with the end of smaller X first (end 1
// on equal X), X and Y of both ends (decimals 1, width 10) and the values at both ends (decimals
// 3, width 10), one blank between the fields.
std::string Line_Cut_Text(const Line_Cut& cut, bool metric);

// Writes Line_Cut_Text to `path` through a temporary file beside it and a rename, so a failed write
// leaves an older file as it was. On success `message` is Line_Cut_Saved_Prefix + path; on failure
// Write_Failed_Message + path. An empty path (the dialog left without a name) writes nothing and
// returns false with an empty message.
bool Store_Line_Cut(const std::string& path, const Line_Cut& cut, bool metric, std::string& message);

}  // namespace pvx
