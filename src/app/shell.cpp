#include "app/shell.h"

#include "app/units.h"

namespace pvx {

void Initialize_Program(Shell& shell, Project& p, bool decimal_comma) {
  shell.Mechanical_Iteration_Limit = 10;
  for (double& limit : shell.Mechanical_Limits)
    limit = 0.001;
  shell.Decimal_Comma = decimal_comma;
  New_Project(p);
  p.Replace_Material = True_Flag;
  p.Interface.clear();
  p.Mesh_Interface.clear();
  shell.Number_Formats.clear();
  for (int decimals = -5; decimals <= 10; ++decimals)
    if (decimals != 0) shell.Number_Formats.push_back(Number_Format_Pattern(decimals));
  Set_Graphical_Defaults(p);
}

void After_Opening(Project& p) {
  if (p.File_Version < 108) {
    p.Result_File_Name.clear();
    Set_Result_Names(p);
  }
  p.Project_Saved = False_Flag;
}

}  // namespace pvx
