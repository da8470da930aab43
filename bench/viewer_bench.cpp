// Cost of the viewer's picture of one variable over a full mesh: 157 x 157 = 24649 elements with a
// smooth temperature field, drawn by Plot_Distribution (contours, title, scale bar, extremes)
// through the QPainter bridge onto an 800 x 600 image, and through a surface that discards every
// call, so that the difference is the painting alone.
#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>

#include "qt_surface.h"
#include "results/viewer_plot.h"

namespace {

using namespace pvx;

class Discarding_Surface : public Plot_Surface {
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

struct Viewer_Mesh {
  static constexpr int N = 157;  // elements per side
  Project project;
  Picture_State picture;
  Viewer_State state;

  Viewer_Mesh() {
    Set_Defaults(picture, project);
    const double h = 1500.0 / N;
    Result_Layout layout;
    layout.Nodes = (N + 1) * (N + 1);
    layout.Elements = N * N;
    Dimension_Plot_Buffers(layout, state.Buffers);
    double low = 1e30, high = -1e30;
    for (int j = 0; j <= N; ++j)
      for (int i = 0; i <= N; ++i) {
        const double x = 250 + i * h, y = j * h;
        const int n = project.Mesh_Node.add({x, y});
        // A temperature-like field: warm core, cool edges, a gentle slope.
        const double t = 20 +
                         30 * std::sin(std::numbers::pi * x / 2000) * std::sin(std::numbers::pi * y / 1500) +
                         0.002 * x;
        state.Buffers.Node[n] = static_cast<float>(t);
        low = std::min(low, t);
        high = std::max(high, t);
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
    state.CurrentVariable = 1;
    state.Index.Storage_Time = {0};
    state.Index.Extremes[1] = {low, high, low, high, 1, 1};
    state.Buffers.CurrentMin = low;
    state.Buffers.CurrentMax = high;
    Compute_Scale(picture, project, 800 * 15, 600 * 15, 15);
  }
};

Viewer_Mesh& Mesh() {
  static Viewer_Mesh mesh;
  return mesh;
}

void Ensure_Gui_Application() {
  if (QGuiApplication::instance() != nullptr) return;
  if (std::getenv("QT_QPA_PLATFORM") == nullptr) setenv("QT_QPA_PLATFORM", "offscreen", 1);
  static int argc = 1;
  static char name[] = "bench_viewer_bench";
  static char* argv[] = {name, nullptr};
  static QGuiApplication* application = new QGuiApplication(argc, argv);
  (void)application;
}

void BM_Distribution_Picture_Qt(benchmark::State& st) {
  Ensure_Gui_Application();
  Viewer_Mesh& mesh = Mesh();
  QImage image(800, 600, QImage::Format_RGB32);
  int drawn = 0;
  for (auto _ : st) {
    QPainter painter(&image);
    Qt_Surface surface(painter, image.size());
    drawn = Plot_Distribution(surface, mesh.picture, mesh.project, mesh.state).Elements_Drawn;
    painter.end();
    benchmark::DoNotOptimize(image.constBits());
  }
  st.counters["elements"] = drawn;
}
BENCHMARK(BM_Distribution_Picture_Qt)->Unit(benchmark::kMillisecond);

void BM_Distribution_Picture_Discarded(benchmark::State& st) {
  Viewer_Mesh& mesh = Mesh();
  Discarding_Surface surface;
  int drawn = 0;
  for (auto _ : st) {
    surface.fills = 0;
    drawn = Plot_Distribution(surface, mesh.picture, mesh.project, mesh.state).Elements_Drawn;
  }
  st.counters["elements"] = drawn;
  st.counters["fills"] = static_cast<double>(surface.fills);
}
BENCHMARK(BM_Distribution_Picture_Discarded)->Unit(benchmark::kMillisecond);

}  // namespace
