#include "results/study.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "results/result_variables.h"
#include "results/run_index.h"
#include "results/viewer_values.h"

namespace pvx {

namespace {

void Place_At_Node(const Project& p, int node, Study_Extreme& x) {
  x.Node = node;
  if (p.Mesh_Node.valid(node)) {
    x.X = p.Mesh_Node[node].X;
    x.Y = p.Mesh_Node[node].Y;
  }
}

// The record at the stored step where the index puts the run's largest value of `variable`, and
// the place of the largest value in it. A row the run never sampled has no stored step and is
// left unfound.
bool Read_Largest(const Project& p, Result_Family& family, const Run_Index& index, int variable,
                  Study_Extreme& x, std::string& message) {
  const Extreme_Row& row = index.Extremes[variable];
  const int stored = row.StoredIndexOfMax;
  if (stored < 1 || stored > Storage_Count(index)) return true;
  Plot_Buffers buffers;
  Dimension_Plot_Buffers(family.Layout, buffers);
  if (!Read_Result_Variable(family, 1, Slot_Of_Variable(variable), stored, variable, false, buffers, message))
    return false;
  x.Run_Value = row.PeriodMax;
  x.Stored = stored;
  x.Time = index.Storage_Time[stored];
  if (variable == 1)
    Largest_Node_Value(p, family.Layout, buffers, x);
  else
    Largest_Corner_Value(p, family.Layout, buffers, variable, x);
  return true;
}

}  // namespace

bool Largest_Node_Value(const Project& p, const Result_Layout& layout, const Plot_Buffers& buffers,
                        Study_Extreme& extreme) {
  int best = 0;
  for (int n = 1; n <= static_cast<int>(layout.Nodes) && buffers.Node.valid(n); ++n)
    if (best == 0 || buffers.Node[n] > buffers.Node[best]) best = n;
  extreme.Found = best > 0;
  if (best == 0) return false;
  extreme.Stored_Value = buffers.Node[best];
  extreme.Element = extreme.Corner = 0;
  Place_At_Node(p, best, extreme);
  return true;
}

bool Largest_Corner_Value(const Project& p, const Result_Layout& layout, const Plot_Buffers& buffers,
                          int variable, Study_Extreme& extreme) {
  extreme.Found = false;
  for (int e = 1; e <= static_cast<int>(layout.Elements); ++e) {
    double f[4];
    if (!Corner_Values(p, buffers, variable, e, f)) continue;
    for (int c = 1; c <= 4; ++c) {
      if (extreme.Found && !(f[c - 1] > extreme.Stored_Value)) continue;
      extreme.Found = true;
      extreme.Stored_Value = f[c - 1];
      extreme.Element = e;
      extreme.Corner = c;
      Place_At_Node(p, p.Mesh_Element[e].Corner[c], extreme);
    }
  }
  return extreme.Found;
}

Study_Row Read_Study_Row(const Project& p, const Result_Layout& layout, const Study_Variant& variant) {
  Study_Row row;
  row.Variant = variant;
  row.Mechanical = layout.Mechanical;
  const std::filesystem::path path(variant.Results);
  std::error_code ec;
  if (!std::filesystem::is_regular_file(path, ec)) {
    row.State = Study_State::Missing;
    row.Problem = "no " + path.filename().string();
    return row;
  }

  // The index alone first: a run that ended before its first storage leaves an index with none,
  // which the family reader refuses, yet it is a short run and not a damaged file.
  std::ifstream in(path, std::ios::binary);
  const std::vector<unsigned char> bytes{std::istreambuf_iterator<char>(in),
                                         std::istreambuf_iterator<char>()};
  Run_Index index;
  std::string detail;
  if (!in.good() && !in.eof()) detail = "it cannot be read";
  if (!detail.empty() || !Parse_Run_Index(bytes.data(), bytes.size(), p.File_Version, index, detail)) {
    row.State = Study_State::Unreadable;
    row.Problem = "its index is damaged: " + detail;
    return row;
  }
  row.Storages = Storage_Count(index);
  const int expected = variant.Expected_Storages;
  if (expected > 0 && row.Storages != expected) {
    row.State = row.Storages < expected ? Study_State::Incomplete : Study_State::Mismatched;
    row.Problem = row.Storages < expected
                      ? std::to_string(row.Storages) + " of " + std::to_string(expected) + " storages"
                      : std::to_string(row.Storages) + " storages where the schedule gives " +
                            std::to_string(expected) + ": the family of another run";
  } else {
    row.State = Study_State::Complete;
  }
  if (row.Storages == 0) return row;

  Result_Family family;
  family.Layout = layout;
  std::string message;
  if (!Set_Output_Names(family, {variant.Results, variant.Results}, "", message) ||
      !Open_All_Result_Sets(family, p.File_Version, message) ||
      !Read_Run_Index(family, 1, p.File_Version, false, index, message)) {
    row.State = Study_State::Unreadable;
    row.Problem = "a file of the family is missing or shorter than its index says";
    return row;
  }
  const bool stresses = layout.Mechanical && Slot_Exists(layout, Slot_Of_Variable(19));
  if (!Read_Largest(p, family, index, 1, row.Temperature, message) ||
      (stresses && !Read_Largest(p, family, index, 19, row.Szz_Ft, message))) {
    row.State = Study_State::Unreadable;
    row.Problem = "a record of the family cannot be read";
  }
  return row;
}

}  // namespace pvx
