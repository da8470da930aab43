// pvx mesh: builds the mesh of a project from its macros and its splitting history, optionally
// adds one cut and turns the cooling circuits into pipe holes, prints the counts and saves.
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "app/project.h"
#include "commands.h"
#include "mesh/mesh_session.h"
#include "mesh/pipe_holes.h"
#include "mesh/ratios.h"
#include "mesh/split_history.h"
#include "project_io.h"

namespace pvx::cli {

namespace {

struct Mesh_Options {
  std::string path;
  int position = -1;     // -1: the position of the file (the whole history)
  std::vector<int> cut;  // element, side
  int division = 0;
  int option = Ratio_Equal;
  double factor = 1.5;
  std::vector<double> weights;  // user weights of option 5
  std::vector<double> pointer;  // x, y of option 6
  bool integrate = false;
  bool json = false;
  std::string write;
};

void Print_Counts(const Project& p, const Mesh_Session& s, bool json, std::ostream& out) {
  if (json) {
    nlohmann::json j;
    j["project"] = p.Project_File;
    j["mesh_nodes"] = p.Mesh_Node.count();
    j["mesh_elements"] = p.Mesh_Element.count();
    j["mesh_borders"] = p.Mesh_Border.count();
    j["mesh_interfaces"] = p.Mesh_Interface.count();
    j["history_length"] = p.Split.count();
    j["history_position"] = p.Split_Position;
    j["circuits_integrated"] = s.Circuits_Integrated;
    out << j.dump(2) << "\n";
    return;
  }
  out << fmt::format("Project:          {}\n", p.Project_File);
  out << fmt::format("Mesh nodes:       {}\n", p.Mesh_Node.count());
  out << fmt::format("Mesh elements:    {}\n", p.Mesh_Element.count());
  out << fmt::format("Mesh borders:     {}\n", p.Mesh_Border.count());
  out << fmt::format("Mesh interfaces:  {}\n", p.Mesh_Interface.count());
  out << fmt::format("History length:   {}\n", p.Split.count());
  out << fmt::format("History position: {}\n", p.Split_Position);
  out << fmt::format("Circuits:         {}\n", s.Circuits_Integrated ? "integrated" : "not integrated");
}

bool Run_Mesh(const Mesh_Options& o, std::ostream& out, std::ostream& err) {
  Project p;
  if (!Open_Project(o.path, p, err)) return false;
  const int count = p.Split.count();
  if (o.position > count) {
    err << fmt::format("The splitting history has {} cuts; position {} does not exist.\n", count, o.position);
    return false;
  }
  Mesh_Session s;
  std::string message;
  int applied = 0;
  const bool replayed = Repeat_Splitting(p, s, o.position >= 0 ? o.position : count, applied, message);
  p.Split_Position = static_cast<std::int16_t>(applied);
  if (!replayed) {
    err << message << "\n";
    return false;
  }

  if (!o.cut.empty()) {
    Splitting_Parameters& par = s.Parameters;
    par.PickedElement = o.cut[0];
    par.PickedSide = o.cut[1];
    par.RatioOption = o.option;
    if (o.division < 2 && o.option != Ratio_At_Pointer) {
      err << Division_Message << "\n";
      return false;
    }
    if (o.factor < 0) {
      err << Factor_A_Message << "\n";
      return false;
    }
    par.Division = o.option == Ratio_At_Pointer ? 2 : o.division;
    par.FactorA = o.factor;
    Fit_Ratio_Tables(par);
    for (int k = 1; k <= par.Division && k <= static_cast<int>(o.weights.size()); ++k) {
      if (o.weights[static_cast<std::size_t>(k - 1)] < 0) {
        err << User_Ratio_Message << "\n";
        return false;
      }
      par.UserRatios[k] = o.weights[static_cast<std::size_t>(k - 1)];
    }
    if (o.option == Ratio_At_Pointer) {
      if (o.pointer.size() != 2) {
        err << "The cut at the pointer needs the point: --pointer X Y\n";
        return false;
      }
      par.Pointer_X = o.pointer[0];
      par.Pointer_Y = o.pointer[1];
    }
    if (!Split_Execution(p, s, message)) {
      err << message << "\n";
      return false;
    }
  }

  if (o.integrate && !Integrate_Circuits(p, s, message)) {
    err << message << "\n";
    return false;
  }
  p.Mesh_Valid = As_Flag(p.Mesh_Element.count() > 0);
  Print_Counts(p, s, o.json, out);
  if (!o.write.empty()) {
    // The saving messages go to the error stream when the counts are JSON, to keep that parseable.
    if (!Save_Project_As(p, o.write, o.json ? err : out, err)) return false;
  }
  return true;
}

}  // namespace

void Add_Mesh_Commands(CLI::App& app, int& status) {
  auto o = std::make_shared<Mesh_Options>();
  auto* mesh = app.add_subcommand(
      "mesh", "Build the mesh from the macros and the splitting history; add a cut, integrate the circuits");
  mesh->add_option("PROJECT", o->path, "Project file (.PVX)")->required();
  mesh->add_option("--position", o->position, "Replay only the first K cuts of the history")
      ->check(CLI::NonNegativeNumber);
  auto* cut = mesh->add_option("--cut", o->cut, "Cut side SIDE (1..4) of element ELEMENT and its strip")
                  ->expected(2)
                  ->type_name("ELEMENT SIDE");
  mesh->add_option("--division", o->division, "Number of parts of the cut")->needs(cut);
  mesh->add_option(
          "--option", o->option,
          "Grading: 0 equal, 1 doubling, 2 doubling from both ends, 3 factor a, 4 factor a from both "
          "ends, 5 user weights, 6 into two at a point")
      ->check(CLI::Range(0, 6))
      ->needs(cut);
  mesh->add_option("--factor", o->factor, "The factor a of options 3 and 4")->needs(cut);
  mesh->add_option("--weights", o->weights, "The weights of option 5 (missing ones are 1)")->needs(cut);
  mesh->add_option("--pointer", o->pointer, "The point of option 6 (model coordinates, mm)")
      ->expected(2)
      ->type_name("X Y")
      ->needs(cut);
  mesh->add_flag("--integrate", o->integrate, "Make the cooling circuits into pipe holes");
  mesh->add_flag("--json", o->json, "Print the counts as JSON");
  mesh->add_option("--write", o->write, "Save the project with the new mesh under this name");
  mesh->callback([&status, o] { status = Run_Mesh(*o, std::cout, std::cerr) ? Exit_Ok : Exit_Failure; });
}

}  // namespace pvx::cli
