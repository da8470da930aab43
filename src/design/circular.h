// Circular sections generated instead of clicked: a ring or a full disc of macros round a centre
// ("Generation of circular polygons"), and a round hole made in a macro ("Generation of holes").
//
// Both build quadrilateral macros that meet side to side, as hand-drawn ones must, so that they
// mesh by strip cuts like any other macros. Every generated macro is counter-clockwise and convex,
// with all corner angles between Min_Macro_Angle and Max_Macro_Angle; a request whose macros would
// break that is refused, never made half. A new corner that falls within the panel's node
// tolerance (Mouse_Radius, in mm, as for merging nodes) of an existing node takes that node. Each
// generation is one undo step.
//
// The polygon of a circle of N segments has its corners on the circle at 45 + 360 k / N degrees,
// so that rings and discs of the same centre, radius and segments share their corners, and a disc
// fills a ring's opening side to side. A hole turns its polygon to fit the macro's corners, which
// for a square macro round the same centre gives the same corners again.
#pragma once

#include <string>

#include "design/panel_undo.h"

namespace pvx {

inline constexpr int Min_Circle_Segments = 8;
inline constexpr int Max_Circle_Segments = 256;
// The corner angles every generated macro keeps, in degrees.
inline constexpr double Min_Macro_Angle = 30;
inline constexpr double Max_Macro_Angle = 150;
// A hole keeps at least this share of its radius between the circle and every side of its macro.
inline constexpr double Hole_Margin = 0.25;

// "Generation of circular polygons". An inner radius of 0 asks for a full disc, whose number of
// segments must be a multiple of 4.
struct Circle_Request {
  double X = 0, Y = 0;      // centre, mm
  double Radius = 0;        // outer radius, mm
  double Inner_Radius = 0;  // mm; 0 for a full disc
  int Segments = 0;         // sides of the polygon round the circle
  std::string Material;     // a plain material of the database
};

// "Generation of holes": a circle inside macro `Macro`.
struct Hole_Request {
  int Macro = 0;
  double X = 0, Y = 0;  // centre, mm
  double Radius = 0;    // mm
  int Segments = 0;
};

// What a generation did, or why it did nothing.
struct Generation_Result {
  bool Done = false;
  std::string Message;   // the reason of a refusal
  int Macros_Added = 0;  // new macro records (a replaced macro's own record not counted)
  int Nodes_Added = 0;   // new design nodes
  int Nodes_Reused = 0;  // generated corners that took an existing node
  int Macros_Split = 0;  // neighbouring macros cut into strips (holes only)
  double Smallest_Angle = 0, Largest_Angle = 0;  // over the generated macros, degrees
};

// The message of the first check that a request fails, empty when it passes: radius, inner radius,
// segments and material.
std::string Check_Circle_Request(const Project& p, const Circle_Request& c);

// A ring of macros between the two radii, in as many concentric rings as keep the macros about as
// long as wide; or a full disc: a square block of (N/4) x (N/4) macros at the centre, whose edge has
// as many sides as the polygon, and rings of N macros from that edge out to the circle. (A single
// middle macro could only be ringed by four.) Refused when the macros would overlap an existing
// macro, or sides would be shorter than twice the node tolerance.
Generation_Result Generate_Circle(Project& p, Design_Undo& undo, const Circle_Request& c);

// Replaces the macro by rows of macros round the hole, the first with one side each on the hole's
// polygon, between lines from the centre through the polygon's corners; the macro's corners are
// joined to the polygon's corners nearest their directions. The sides of the macro are divided
// where those lines meet them. A neighbouring macro that shares a divided side is cut into strips
// at the same points, and so on through the strip, so that every macro still meets its neighbours
// side to side; borders, heating mats, line supports, line loads and interfaces on a divided side
// are divided with it. A macro much longer than wide, whose macros round the hole would not be
// well shaped, is first cut across into a block about as long as wide round the centre and end
// blocks of its own shape. Refused when the circle is not well inside the macro, when the macros
// round it would still not be well shaped (a hole close to a corner), when a strip through the
// neighbours would come back to a macro it has cut, or when a cooling pipe lies in the hole.
Generation_Result Generate_Hole(Project& p, Design_Undo& undo, const Hole_Request& h);

}  // namespace pvx
