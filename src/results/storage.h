// What one stored step holds, as the analysis hands it to the result writer and to the sampling of
// the extremes. The analysis keeps its fields in its own arrays; these records only point at them,
// in the order of the result records, so that nothing is copied on the way to the disk.
#pragma once

#include <cstdint>
#include <span>

namespace pvx {

// The cooling circuit selected for display, at the time of the step.
struct Circuit_Sample {
  bool Present = false;        // false when the project has no circuit
  double First_Station = 0;    // water temperature at the inlet station, oC
  double Last_Station = 0;     // water temperature at the last station, oC
  double Flow = 0;             // the circuit's flow function at the step's time, m3/h
  double Liquid_Capacity = 0;  // kJ/m3K
};

// All fields of one step, in working units (oC, hours, kg/m3, MPa, mm, kN), double precision; they
// are narrowed to single precision as they are written. N nodes, E elements, Nx doubled nodes,
// R reaction entries, I interface elements, B bar elements. Values per element point run element
// outer, point inner (4E values); the points are in the order (-g,-g), (+g,-g), (+g,+g), (-g,+g).
struct Field_Values {
  // Per mesh node, in node-number order (N values).
  std::span<const double> Temperature;
  std::span<const double> Potential;
  // Per element point (4E values).
  std::span<const double> Maturity;
  std::span<const double> Hydration;  // degree of hydration
  std::span<const double> C_Maturity;
  std::span<const double> Moisture_Content;
  std::span<const double> Tensile_Strength;
  std::span<const double> Compressive_Strength;

  // Mechanical analysis only.
  std::span<const double> Displacement;   // 2(N + Nx): Ux, Uy of node 1, then of node 2, ...
  std::span<const double> Corner_Stress;  // 16E: per element, per corner: Sxx, Syy, Sxy, Szz
  std::span<const double> Crack_Opening;  // 4E
  // 4E flags, non-zero where the point is cracked; a point that is not cracked stores an opening
  // of 0. Left empty, every opening is taken as it is.
  std::span<const std::int16_t> Cracked;
  std::span<const double> Reaction;  // R
  // 4I: per interface element the normal stress at its first and second integration point, then
  // the shear stress at the first and second.
  std::span<const double> Interface_Stress;
  // 5B: per bar element the normal stress, the shear stress at its first and second station, the
  // slip at its first and second station.
  std::span<const double> Bar_Values;

  Circuit_Sample Circuit;
};

}  // namespace pvx
