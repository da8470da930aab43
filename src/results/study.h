// A parameter study read back: for each variant of a run set, whether its result family is there
// and complete, and the figures that decide between the variants, the largest temperature and the
// largest ratio Szz/ft, each with when and where it occurred.
//
// The variants may have been computed anywhere (one process, cores side by side, the tasks of a
// job array), so each family is read on its own and a missing or short one is told, not assumed.
#pragma once

#include <string>

#include "app/project.h"
#include "results/result_files.h"

namespace pvx {

// One variant of the run set as the run names it.
struct Study_Variant {
  int Variant = 0;
  std::string Material;       // the material the variant computes with
  std::string Results;        // path of its `.RES` index
  int Expected_Storages = 0;  // what the schedule stores, the initial state included
};

// The largest value of a variable over the run, and the stored record that shows it.
struct Study_Extreme {
  bool Found = false;
  double Run_Value = 0;     // the run's extreme from the index, sampled after every step
  double Stored_Value = 0;  // the largest value of the record at the stored step below
  int Stored = 0;           // the stored step the index points to
  double Time = 0;          // its time, hours
  int Node = 0;             // where: a mesh node, or the node of the element corner below
  int Element = 0;          // 0 for a node value
  int Corner = 0;
  double X = 0, Y = 0;  // position of the node, mm
};

enum class Study_State {
  Complete,    // every storage of the schedule is there
  Missing,     // no `.RES` index
  Unreadable,  // the index or a sibling cannot be read
  Incomplete,  // fewer storages than the schedule gives: the run ended early
  Mismatched   // more storages than the schedule gives: a family of another run
};

struct Study_Row {
  Study_Variant Variant;
  Study_State State = Study_State::Missing;
  std::string Problem;  // what is wrong with the family, for every state but Complete
  int Storages = 0;     // storages in the family
  bool Mechanical = false;
  Study_Extreme Temperature;  // variable 1, at a node
  Study_Extreme Szz_Ft;       // variable 19, at an element corner; only in a mechanical family
};

// Reads the family of one variant with the layout of its project's mesh. A family that is
// incomplete still gives its extremes: they are those of the storages it holds.
Study_Row Read_Study_Row(const Project& p, const Result_Layout& layout, const Study_Variant& variant);

// The largest nodal value of a temperature record (node buffer 1..Nodes); the first node wins a
// tie. False when the record has no node.
bool Largest_Node_Value(const Project& p, const Result_Layout& layout, const Plot_Buffers& buffers,
                        Study_Extreme& extreme);

// The largest corner value of a stress record for viewer variable 13..19 over elements 1..Elements,
// in element and corner order; the first wins a tie. False when the record has no corner.
bool Largest_Corner_Value(const Project& p, const Result_Layout& layout, const Plot_Buffers& buffers,
                          int variable, Study_Extreme& extreme);

}  // namespace pvx
