// The two generation dialogs of the design panel without their windows: what they open with, their
// typed numbers read by the program's entry rule and unit system, and what they tell the user after
// a generation. The dialogs themselves only show texts and hand them over.
#pragma once

#include <string>
#include <vector>

#include "design/circular.h"

namespace pvx {

// The texts of the fields as the user typed them, lengths in the project's unit system.
struct Circle_Texts {
  std::string X, Y, Radius, Inner_Radius, Segments, Material;
};
struct Hole_Texts {
  std::string Macro, X, Y, Radius, Segments;
};

// What a dialog opens with: the request shown in the project's units (mm or in), lengths with three
// decimals.
Circle_Texts Show_Circle_Request(const Project& p, const Circle_Request& c);
Hole_Texts Show_Hole_Request(const Project& p, const Hole_Request& h);

// A first circle: on the circular grid when it is shown or snapped to (its centre and radii, a
// segment for each of its angle steps round the whole circle, a multiple of 4 for a disc); else at
// the middle of the panel's frame, a tenth of the frame's smaller extent as its radius, a full disc
// of 16 segments. Of the current macro's material, or the first plain material of the database.
Circle_Request Default_Circle_Request(const Project& p);
// A hole in the middle of a macro (the mean of its corners), of a third of the distance from there
// to the nearest side (so that it keeps its margin), with 16 segments. A macro that does not exist
// gives macro 0 and a radius of 0.
Hole_Request Default_Hole_Request(const Project& p, int macro);

// Reads the typed texts: every number by the entry rule (either decimal sign), lengths from the
// project's unit system to mm, counts as whole numbers. False, with the number message naming the
// field ("Outer radius: Fout gekonstateerd in opgegeven getal"), when a text is no number; the
// request is then unchanged. Whether the numbers make a circle is Generate_Circle's and
// Generate_Hole's to judge.
bool Read_Circle_Texts(const Project& p, const Circle_Texts& t, bool decimal_comma, Circle_Request& c,
                       std::string& message);
bool Read_Hole_Texts(const Project& p, const Hole_Texts& t, bool decimal_comma, Hole_Request& h,
                     std::string& message);

// The materials a ring or disc may be made of: the database's, less the interface and reinforcement
// materials, in database order.
std::vector<std::string> Plain_Material_Names(const Project& p);

// One line on what a generation made ("16 macros and 17 nodes added, 0 nodes reused; corner angles
// 47.5 to 135.0 degrees."), and, when the project had a mesh, that the mesh was made from the macros
// as they were before and is not the new design's until it is made again.
std::string Generation_Summary(const Generation_Result& r, bool had_mesh);

inline constexpr const char* Stale_Mesh_Note =
    "The mesh was made from the macros as they were before: in the mesh panel, \"Clean\" starts it "
    "again from the new macros.";

}  // namespace pvx
