// pvx plot: the picture the result viewer shows of one variable at one stored step, drawn headless
// by the same plotting code through the QPainter bridge into a PNG (or JPEG, BMP) or an SVG file.
#include <QImage>
#include <QSize>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>

#include <fmt/format.h>

#include "app/project.h"
#include "app/project_file.h"
#include "commands.h"
#include "gui_application.h"
#include "project_io.h"
#include "qt_surface.h"
#include "results/plot.h"
#include "results/result_variables.h"
#include "results/viewer_plot.h"
#include "results/viewer_state.h"

namespace pvx::cli {

namespace {

struct Plot_Options {
  std::string path;
  std::string project;
  std::string png, svg;
  std::string size = "800x600";
  int variable = 0;
  int stored = 1;
  bool at_max = false;
  bool imperial = false;
};

// The messages of the viewer go to the error stream; nothing is asked and no movie runs.
class Batch_Host : public Viewer_Host {
 public:
  explicit Batch_Host(std::ostream& err) : err_(err) {}
  void Show_Message(const std::string& text) override { err_ << text << "\n"; }
  bool Ask_Yes_No(const std::string&) override { return false; }
  bool Movie_Button_Down() override { return false; }
  void Show_Picture() override {}
  void Yield() override {}

 private:
  std::ostream& err_;
};

std::string Lower(std::string t) {
  for (char& c : t)
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return t;
}

bool Parse_Size(const std::string& text, int& width, int& height) {
  const auto x = Lower(text).find('x');
  if (x == std::string::npos) return false;
  try {
    std::size_t used = 0;
    width = std::stoi(text.substr(0, x), &used);
    if (used != x) return false;
    height = std::stoi(text.substr(x + 1), &used);
    if (used != text.size() - x - 1) return false;
  } catch (...) {
    return false;
  }
  return width >= 50 && height >= 50 && width <= 20000 && height <= 20000;
}

// The picture transformation. A picture of its own shows the whole mesh: the window is the mesh's
// extent with a small border (the viewer's zoom window), not the design frame, which a mesh may
// outgrow. Without a mesh the frame serves.
void Fit_Picture(Picture_State& picture, const Project& p, int width, int height) {
  if (!p.Mesh_Node.empty()) {
    double x1 = p.Mesh_Node[1].X, x2 = x1, y1 = p.Mesh_Node[1].Y, y2 = y1;
    for (const Mesh_Node& n : p.Mesh_Node) {
      x1 = std::min(x1, n.X);
      x2 = std::max(x2, n.X);
      y1 = std::min(y1, n.Y);
      y2 = std::max(y2, n.Y);
    }
    const double border = 0.02 * std::max({x2 - x1, y2 - y1, 1.0});
    picture.Zoomed = true;
    picture.ZoomX1 = x1 - border;
    picture.ZoomX2 = x2 + border;
    picture.ZoomY1 = y1 - border;
    picture.ZoomY2 = y2 + border;
  }
  constexpr double twips = 15;  // a display of 96 dots per inch
  Compute_Scale(picture, p, width * twips, height * twips, twips);
}

int Plot(const Plot_Options& o, std::ostream& out, std::ostream& err) {
  if (o.png.empty() == o.svg.empty()) {
    err << "Give one picture file: --png OUT.png or --svg OUT.svg\n";
    return Exit_Failure;
  }
  const std::string target = o.png.empty() ? o.svg : o.png;
  const std::string extension = Lower(std::filesystem::path(target).extension().string());
  const bool svg = !o.svg.empty();
  if (svg ? extension != ".svg"
          : (extension != ".png" && extension != ".jpg" && extension != ".jpeg" && extension != ".bmp")) {
    err << fmt::format("Unknown picture extension \"{}\" of {}: {}\n", extension, target,
                       svg ? "--svg writes .svg" : "--png writes .png, .jpg, .jpeg or .bmp");
    return Exit_Failure;
  }
  int width = 0, height = 0;
  if (!Parse_Size(o.size, width, height)) {
    err << fmt::format("Picture size \"{}\" is not WIDTHxHEIGHT in pixels, 50 to 20000 each\n", o.size);
    return Exit_Failure;
  }
  const int slot = Slot_Of_Variable(o.variable);
  if (slot == 0) {
    err << fmt::format(
        "Result variable {} has no picture: give 1 to 5, 9 to 22, 30 to 34 (interfaces, rebars) or 40\n",
        o.variable);
    return Exit_Failure;
  }
  if (!std::filesystem::exists(o.path)) {
    err << Results_Not_Available(o.path) << "\n";
    return Exit_Failure;
  }
  const std::string project_path = o.project.empty() ? Find_Project_Of(o.path) : o.project;
  if (project_path.empty()) {
    err << "A picture is drawn on the mesh of its project, and no single project beside the results names "
           "them: give --project\n";
    return Exit_Failure;
  }
  Project p;
  if (!Open_Project(project_path, p, err)) return Exit_Failure;

  Result_Family family;
  family.Layout = Layout_Of_Family(p, o.path);
  if (!Slot_Exists(family.Layout, slot)) {
    err << fmt::format("Result variable {} ({}) is not in the results of this project\n", o.variable,
                       Viewer_Variable_Name(o.variable));
    return Exit_Failure;
  }
  Batch_Host host(err);
  std::string message;
  if (!Set_Output_Names(family, {o.path, o.path}, "", message) ||
      !Open_All_Result_Sets(family, p.File_Version, message)) {
    err << message << "\n";
    return Exit_Failure;
  }
  Viewer_State s;
  s.Metric = !o.imperial;
  s.Project_Version = p.File_Version;
  s.CurrentVariable = static_cast<std::int16_t>(o.variable);
  if (!Load_Run(s, family, 1, host)) return Exit_Failure;
  const int storages = Storage_Count(s.Index);
  // The stored step at which the variable reaches the largest value of the run, as the index
  // found it while the run went on.
  const int stored = o.at_max && o.variable >= 1 && o.variable <= Result_Variable_Count
                         ? s.Index.Extremes[o.variable].StoredIndexOfMax
                         : o.stored;
  if (stored < 1 || stored > storages) {
    err << fmt::format("Stored step {} is not in the results (1 to {})\n", stored, storages);
    return Exit_Failure;
  }
  if (!Pick_Stored_Step(s, family, stored, host)) return Exit_Failure;

  Picture_State picture;
  Fit_Picture(picture, p, width, height);
  Ensure_Gui_Application();
  Distribution_Picture drawn;
  auto draw = [&](Plot_Surface& surface) { drawn = Plot_Distribution(surface, picture, p, s); };
  const QSize size(width, height);
  if (svg) {
    if (!Draw_To_Svg(target, size, draw, message)) {
      err << message << "\n";
      return Exit_Failure;
    }
  } else if (!Store_Picture(Draw_To_Image(size, draw), target, message)) {
    err << message << "\n";
    return Exit_Failure;
  }
  out << fmt::format("{} ({}x{}): {}\n", target, width, height, drawn.Title);
  return Exit_Ok;
}

}  // namespace

void Add_Plot_Commands(CLI::App& app, int& status) {
  auto* plot = app.add_subcommand(
      "plot", "Draw the picture of one result variable at one stored step into a PNG or SVG file");
  auto o = std::make_shared<Plot_Options>();
  plot->add_option("RESULTS", o->path, "Result index file (.RES)")->required();
  plot->add_option("--var", o->variable, "Result variable (1 to 40; 30 to 34 interfaces, rebars)")
      ->required();
  auto* stored = plot->add_option("--stored", o->stored, "Stored step (1 = initial state)");
  plot->add_flag("--at-max", o->at_max, "Draw the stored step at which the variable is largest")
      ->excludes(stored);
  plot->add_option("--png", o->png, "Picture file to write (.png; .jpg and .bmp too)");
  plot->add_option("--svg", o->svg, "SVG file to write");
  plot->add_option("--size", o->size, "Picture size in pixels, WIDTHxHEIGHT (default 800x600)");
  plot->add_option("--project", o->project, "Project file of the results (.PVX): its mesh and version");
  plot->add_flag("--imperial", o->imperial, "Show values in the English Imperial System");
  plot->callback([&status, o, stored] {
    if (!o->at_max && stored->count() == 0) {
      std::cerr << "--stored or --at-max is required\n";
      status = Exit_Failure;
      return;
    }
    status = Plot(*o, std::cout, std::cerr);
  });
}

}  // namespace pvx::cli
