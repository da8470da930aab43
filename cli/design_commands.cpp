// pvx design: generates circular sections in a project, as the design panel's generators do: a ring
// or a full disc of macros (--circle), or a round hole in a macro (--hole); prints what was made and
// saves the project under a new name.
#include <cmath>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "app/project.h"
#include "commands.h"
#include "design/circular.h"
#include "project_io.h"

namespace pvx::cli {

namespace {

struct Design_Options {
  std::string path;
  std::vector<double> circle;  // X Y R
  double inner = 0;
  std::vector<double> hole;  // MACRO X Y R
  int segments = 0;
  std::string material;
  std::string write;
};

void Print_Result(const Generation_Result& r, std::ostream& out) {
  out << fmt::format("Macros added:     {}\n", r.Macros_Added);
  out << fmt::format("Nodes added:      {}\n", r.Nodes_Added);
  out << fmt::format("Nodes reused:     {}\n", r.Nodes_Reused);
  out << fmt::format("Macros cut:       {}\n", r.Macros_Split);
  out << fmt::format("Corner angles:    {:.1f} to {:.1f} degrees\n", r.Smallest_Angle, r.Largest_Angle);
}

bool Run_Design(const Design_Options& o, std::ostream& out, std::ostream& err) {
  if (o.circle.empty() == o.hole.empty()) {
    err << "Give either --circle X Y R or --hole MACRO X Y R.\n";
    return false;
  }
  Project p;
  Design_Undo undo;
  Generation_Result result;
  bool had_mesh = false;
  if (!o.circle.empty()) {
    // The material must be one of the database, which is read with the project.
    if (!Open_Project_With_Database(o.path, p, err)) return false;
    Circle_Request c;
    c.X = o.circle[0];
    c.Y = o.circle[1];
    c.Radius = o.circle[2];
    c.Inner_Radius = o.inner;
    c.Segments = o.segments;
    c.Material = o.material;
    had_mesh = p.Mesh_Element.count() > 0;
    result = Generate_Circle(p, undo, c);
  } else {
    if (!Open_Project(o.path, p, err)) return false;
    const double macro = o.hole[0];
    if (macro != std::floor(macro) || macro < 1 || macro > Max_I16_Reference) {
      err << fmt::format("Macro {} does not exist.\n", o.hole[0]);
      return false;
    }
    Hole_Request h;
    h.Macro = static_cast<int>(macro);
    h.X = o.hole[1];
    h.Y = o.hole[2];
    h.Radius = o.hole[3];
    h.Segments = o.segments;
    had_mesh = p.Mesh_Element.count() > 0;
    result = Generate_Hole(p, undo, h);
  }
  if (!result.Done) {
    err << result.Message << "\n";
    return false;
  }
  out << fmt::format("Project:          {}\n", p.Project_File);
  Print_Result(result, out);
  out << fmt::format("Macros:           {}\n", p.Macro.count());
  out << fmt::format("Nodes:            {}\n", Node_Count(p));
  // The stored mesh and its cuts belong to the macros as they were.
  if (had_mesh)
    out << "The mesh was made from the macros as they were before: its first new cut, pvx mesh --position 0 "
           "--cut ..., starts it again "
           "from the new macros.\n";
  if (!o.write.empty() && !Save_Project_As(p, o.write, out, err)) return false;
  return true;
}

}  // namespace

void Add_Design_Commands(CLI::App& app, int& status) {
  auto o = std::make_shared<Design_Options>();
  auto* design = app.add_subcommand(
      "design", "Generate a ring or a full disc of macros (--circle), or a round hole in a macro (--hole)");
  design->add_option("PROJECT", o->path, "Project file (.PVX)")->required();
  auto* circle = design->add_option("--circle", o->circle, "Centre and outer radius of a ring or disc, mm")
                     ->expected(3)
                     ->type_name("X Y R");
  auto* hole = design->add_option("--hole", o->hole, "A hole in macro MACRO: centre and radius, mm")
                   ->expected(4)
                   ->type_name("MACRO X Y R");
  circle->excludes(hole);
  design->add_option("--inner", o->inner, "Inner radius of a ring, mm (0, the default: a full disc)")
      ->needs(circle);
  design->add_option("--segments", o->segments, "Sides of the polygon round the circle")->required();
  auto* material =
      design->add_option("--material", o->material, "Material of the ring or disc")->needs(circle);
  hole->excludes(material);
  design->add_option("--write", o->write, "Save the project with the new macros under this name");
  design->callback([&status, o] {
    if (!o->circle.empty() && o->material.empty()) {
      std::cerr << "A ring or disc needs its --material.\n";
      status = Exit_Failure;
      return;
    }
    status = Run_Design(*o, std::cout, std::cerr) ? Exit_Ok : Exit_Failure;
  });
}

}  // namespace pvx::cli
