// Cost of one contour picture of a full mesh: 158 x 158 = 24964 elements with a smooth field,
// drawn to a surface that only counts its fills, so the figure is the plotting logic alone.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "results/plot.h"

namespace {

using namespace pvx;

class Null_Surface : public Plot_Surface {
 public:
  double Pixel_Width() const override { return 800; }
  double Pixel_Height() const override { return 600; }
  double Twips_Per_Pixel() const override { return 15; }
  void Clear() override {}
  void Refresh() override {}
  void Line(double, double, double, double, Plot_Colour, Line_Style, int) override {}
  void Box(double, double, double, double, Plot_Colour) override {}
  void Circle(double, double, double, Plot_Colour) override {}
  void Text(double, double, std::string_view, int, Plot_Colour) override {}
  void Fill_Polygon(const Pixel_Point (&vertex)[3], Plot_Colour) override {
    ++fills;
    benchmark::DoNotOptimize(vertex);
  }
  void Set_Wait_Pointer(bool) override {}
  long fills = 0;
};

struct Contour_Mesh {
  static constexpr int N = 158;
  Project project;
  Picture_State state;
  std::vector<double> node_value;
  double low = 0, high = 0;

  Contour_Mesh() {
    Set_Defaults(state, project);
    const double h = 1500.0 / N;  // a 1500 mm square in the default frame
    for (int j = 0; j <= N; ++j)
      for (int i = 0; i <= N; ++i) {
        const double x = 250 + i * h, y = j * h;
        project.Mesh_Node.add({x, y});
        // A temperature-like field: warm core, cool edges, a gentle slope.
        node_value.push_back(
            20 + 30 * std::sin(std::numbers::pi * x / 2000) * std::sin(std::numbers::pi * y / 1500) +
            0.002 * x);
      }
    project.Mesh_Element.reserve(N * N);
    for (int j = 0; j < N; ++j)
      for (int i = 0; i < N; ++i) {
        Mesh_Element e;
        const int n1 = j * (N + 1) + i + 1;
        e.Corner[1] = static_cast<std::int16_t>(n1);
        e.Corner[2] = static_cast<std::int16_t>(n1 + 1);
        e.Corner[3] = static_cast<std::int16_t>(n1 + N + 2);
        e.Corner[4] = static_cast<std::int16_t>(n1 + N + 1);
        project.Mesh_Element.add(e);
      }
    low = *std::min_element(node_value.begin(), node_value.end());
    high = *std::max_element(node_value.begin(), node_value.end());
    // A picture of 800 x 600 pixels.
    Compute_Scale(state, project, 800 * 15, 600 * 15, 15);
  }
};

void BM_Contour_Picture(benchmark::State& st) {
  static const Contour_Mesh mesh;
  Null_Surface surface;
  for (auto _ : st) {
    surface.fills = 0;
    for (int e = 1; e <= mesh.project.Mesh_Element.count(); ++e) {
      const Mesh_Element& el = mesh.project.Mesh_Element[e];
      const double v[4] = {mesh.node_value[static_cast<std::size_t>(el.Corner[1] - 1)],
                           mesh.node_value[static_cast<std::size_t>(el.Corner[2] - 1)],
                           mesh.node_value[static_cast<std::size_t>(el.Corner[3] - 1)],
                           mesh.node_value[static_cast<std::size_t>(el.Corner[4] - 1)]};
      Plot_Element_Contours(surface, mesh.state, mesh.project, e, v, mesh.low, mesh.high);
    }
    Plot_Scale_Bar(surface, 1, mesh.low, mesh.high, mesh.low, mesh.high);
  }
  st.counters["elements"] = mesh.project.Mesh_Element.count();
  st.counters["fills"] = static_cast<double>(surface.fills);
}
BENCHMARK(BM_Contour_Picture)->Unit(benchmark::kMillisecond);

}  // namespace
