// Export of a result family for post-processing elsewhere: every stored step of every quantity the
// family holds, as a ParaView time series (VTK XML unstructured grids and a .pvd collection) or as
// plain CSV tables.
//
// What one stored step becomes:
// - Points: the mesh nodes, x and y in mm, z = 0. The node copies that joints and bars add to the
//   displacement record are not points: a point carries the displacement of its own mesh node, as
//   the viewer draws it. Cells: the elements, as VTK_QUAD (9), their corners in the mesh's order.
// - Point data: "Temperature [oC]", "Moisture potential [-]"; in a mechanical family also
//   "Displacement [mm]" (Ux, Uy, 0 as a 3-vector, for Warp By Vector) and "Total displacement [mm]".
// - Cell data, for each quantity kept at the four integration points of an element (maturity,
//   C-maturity, degree of hydration, moisture content, tensile and compressive strength, and in a
//   mechanical family the crack opening): the mean, the minimum and the maximum over the four points,
//   as three scalar arrays "<quantity> mean [unit]", "<quantity> min [unit]", "<quantity> max [unit]".
//   Scalars colour a mesh directly; a 4-component array would be coloured by its magnitude, which
//   means nothing for four maturities. The extremes keep what a mean hides: the widest crack of an
//   element, its weakest point.
// - Cell data of a mechanical family: the corner stresses as the mean over the four corners of an
//   element, "Stress Sxx [MPa]", "Stress Syy [MPa]", "Stress Sxy [MPa]", "Stress Szz [MPa]".
// Values are the metric values of the files. The records hold singles, and so do the arrays
// (Float32); means and magnitudes are formed in double and narrowed once.
//
// Files, for a family named B (the `.RES` name without extension: WALL, WALL2, ...):
// - VTK: DIR/B.pvd, the collection, names DIR/B/B_0001.vtu, one grid per stored step (numbered by
//   stored step, at least four digits), each with its storage time in hours as its timestep. The
//   grids are appended raw binary, little-endian, with 64-bit block headers, or ASCII on request.
// - CSV: one long table per kind, a row per node (per element) and stored step, stored step outer:
//   DIR/B_nodes.csv with "time [hours]", "stored", "node", "x [mm]", "y [mm]", then one column per
//   point array component ("Ux [mm]", "Uy [mm]" for the displacement), and DIR/B_elements.csv with
//   "time [hours]", "stored", "element", "x [mm]", "y [mm]" (the mean of its corners), then one
//   column per cell array. One table per kind filters and pivots by time in any tool.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "app/project.h"
#include "results/result_files.h"

namespace pvx {

// One named array of a step: `Components` values per point or cell, tuple after tuple.
struct Export_Array {
  std::string Name;  // with its unit: "Temperature [oC]"
  int Components = 1;
  // The table column of each component; an empty name leaves that component out of the tables
  // (the z of the displacement).
  std::vector<std::string> Columns;
  std::vector<float> Values;
};

// The grid: the mesh nodes and the elements by their corners (0-based node numbers).
struct Export_Mesh {
  std::vector<double> X, Y;  // mm
  std::vector<std::array<std::int64_t, 4>> Cells;
};
Export_Mesh Export_Mesh_Of(const Project& p);

// The arrays of one stored step.
struct Export_Step {
  int Stored = 0;
  double Time = 0;  // hours
  std::vector<Export_Array> Point_Data, Cell_Data;
};

// Reads stored step `stored` of run `variant` of a family opened for reading, whose index is read,
// through Read_Result_Variable into `buffers` (dimensioned for the family's layout), and forms the
// arrays described above. On failure `message` is the reader's.
bool Read_Export_Step(Result_Family& family, int variant, const Run_Index& index, int stored,
                      Plot_Buffers& buffers, Export_Step& step, std::string& message);

enum class Vtk_Encoding { Binary, Ascii };

// The .vtu document of one step on the grid.
std::string Vtu_Document(const Export_Mesh& mesh, const Export_Step& step, Vtk_Encoding encoding);

// One entry of a collection: the time in hours and the file, relative to the collection.
struct Pvd_Entry {
  double Time = 0;
  std::string File;
};
std::string Pvd_Document(const std::vector<Pvd_Entry>& entries);

// The header row of the node and of the element table, and the rows of one step.
std::string Csv_Node_Header(const Export_Step& step);
std::string Csv_Element_Header(const Export_Step& step);
std::string Csv_Node_Rows(const Export_Mesh& mesh, const Export_Step& step);
std::string Csv_Element_Rows(const Export_Mesh& mesh, const Export_Step& step);

// Where an export goes; an empty folder leaves that form out. Folders are created when missing.
struct Export_Target {
  std::string Vtk_Folder;
  std::string Csv_Folder;
  Vtk_Encoding Encoding = Vtk_Encoding::Binary;
};

// Writes every stored step of run `variant` (opened, its index read) under the name `name`: the
// collection with its grids, the two tables. `written` receives the collection and the tables.
// A mesh that does not fit the family's layout is refused before anything is written; a file that
// cannot be written gives Write_Failed_Message with its path.
bool Export_Run(Result_Family& family, int variant, const Run_Index& index, const Export_Mesh& mesh,
                const std::string& name, const Export_Target& target, std::vector<std::string>& written,
                std::string& message);

}  // namespace pvx
