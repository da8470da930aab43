// A thermal result family with cooling circuits, written as the analysis writes one: C.PVX with
// one square element and the given circuits, and C.RES with two storages, its siblings and the
// circuits' histories in C.COO.
#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "app/project_file.h"
#include "results/result_files.h"
#include "support/temp_dir.h"

namespace pvx::test {

// One pipe section (three stations), two records, exact in single precision.
inline Circuit_History Two_Record_History() {
  Circuit_History h;
  h.History.add({0.5, 1.5f, 2.5f, {10, 11.25f, 12.5f}});
  h.History.add({12.3, 2, -0.75f, {9.5f, 10, 10.75f}});
  return h;
}

// Writes the family and returns its project, whose circuit c has the pipe count that its history's
// stations need.
inline Project Write_Cooling_Family(const Temp_Dir& dir, const Table<Circuit_History>& histories) {
  Project p;
  New_Project(p);
  p.File_Version = 109;
  p.Result_File_Name = "C.RES";
  for (auto [x, y] : {std::pair{0, 0}, {100, 0}, {100, 100}, {0, 100}})
    p.Mesh_Node.add({double(x), double(y)});
  Mesh_Element e;
  e.Material = "C";
  e.Corner = {{1, 2, 3, 4}};
  p.Mesh_Element.add(e);
  for (const Circuit_History& h : histories) {
    Circuit c = p.Circuit_Default;
    Resize_Pipes(c, h.History.empty() ? 1 : h.History[1].Water.count() - 2);
    p.Circuit.add(c);
  }
  Write_Text(dir.file("C.PVX"), Write_Project_Text(p, 109, "db.txt"));
  Result_Family family;
  family.Layout = Result_Layout_Of(p, false);
  std::string message;
  EXPECT_TRUE(Set_Output_Names(family, {"C.RES", "C.RES"}, dir.path().string(), message));
  EXPECT_TRUE(Open_Result_Files(family, 1, 1, 109, message)) << message;
  Run_Index index;
  index.Step_Time = {1};
  for (const double time : {0.0, 1.0}) {
    const std::vector<double> nodes(4, 20 + time), points(4, time);
    Field_Values f;
    f.Temperature = f.Potential = nodes;
    f.Maturity = f.Hydration = f.C_Maturity = f.Moisture_Content = f.Tensile_Strength =
        f.Compressive_Strength = points;
    EXPECT_TRUE(Record_Storage(family, 1, f, time, index, message)) << message;
  }
  EXPECT_TRUE(Write_Cooling_Data(family, 1, histories, message)) << message;
  EXPECT_TRUE(Write_Run_Index(family, 1, index, message)) << message;
  EXPECT_TRUE(Close_Result_Files(family, 1, message)) << message;
  return p;
}

}  // namespace pvx::test
