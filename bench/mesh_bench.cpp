// Replaying a splitting history: the time to rebuild a mesh of about 1,000, 5,000 and 25,000
// elements from its macros and its list of cuts, as stepping back or opening a project does.
#include <benchmark/benchmark.h>

#include <cmath>
#include <string>

#include "app/project.h"
#include "mesh/initial_mesh.h"
#include "mesh/split_history.h"

namespace {

using namespace pvx;

// A 2 x 2 block of macros, 2000 x 2000 mm, with borders on the outline and interfaces between the
// macros, refined by cuts in turn across X and across Y through the widest column or row until the mesh has
// about `target` elements. With `division` 2 every cut adds one column or row of elements across the whole
// block, which makes the longest history for a given size.
Project Make_History(int target, int division) {
  Project p;
  New_Project(p);
  for (int j = 0; j < 3; ++j)
    for (int i = 0; i < 3; ++i)
      Add_Node(p, 1000.0 * i, 1000.0 * j);
  auto macro = [&](int a, int b, int c, int d) {
    Macro m;
    m.Material = "C30/37";
    m.Corner = {{static_cast<std::int16_t>(a), static_cast<std::int16_t>(b), static_cast<std::int16_t>(c),
                 static_cast<std::int16_t>(d)}};
    p.Macro.add(m);
  };
  macro(1, 2, 5, 4);
  macro(2, 3, 6, 5);
  macro(5, 6, 9, 8);
  macro(4, 5, 8, 7);
  const int outline[8][2] = {{1, 2}, {2, 3}, {3, 6}, {6, 9}, {9, 8}, {8, 7}, {7, 4}, {4, 1}};
  for (const auto& side : outline) {
    Border b;
    b.Node_A = static_cast<std::int16_t>(side[0]);
    b.Node_B = static_cast<std::int16_t>(side[1]);
    b.Thermal_Periods.add(Thermal_Period{});
    p.Border.add(b);
  }
  const int inner[4][2] = {{2, 5}, {5, 8}, {4, 5}, {5, 6}};
  for (const auto& side : inner) {
    Interface f;
    f.Node_A = side[0];
    f.Node_B = side[1];
    p.Interface.add(f);
  }
  Mesh_Session s;
  std::string message;
  Make_Initial_Mesh(p, s, message);
  bool across_x = true;
  while (p.Mesh_Element.count() < target) {
    // The element with the longest side along X (to cut across X) or along Y (otherwise), so that
    // the columns and rows stay of like size.
    int element = 1, side = 1;
    double longest = -1;
    for (int el = 1; el <= p.Mesh_Element.count(); ++el) {
      const Mesh_Element& e = p.Mesh_Element[el];
      for (int j = 1; j <= 4; ++j) {
        const Mesh_Node& a = p.Mesh_Node[e.Corner[j]];
        const Mesh_Node& b = p.Mesh_Node[e.Corner[j % 4 + 1]];
        const double along = across_x ? std::fabs(b.X - a.X) : std::fabs(b.Y - a.Y);
        if (along > longest) {
          longest = along;
          element = el;
          side = j;
        }
      }
    }
    s.Parameters.PickedElement = element;
    s.Parameters.PickedSide = side;
    s.Parameters.Division = division;
    s.Parameters.RatioOption = Ratio_Equal;
    if (!Split_Execution(p, s, message)) break;
    across_x = !across_x;
  }
  return p;
}

void Replay(benchmark::State& state, int division) {
  Project p = Make_History(static_cast<int>(state.range(0)), division);
  Mesh_Session s;
  for (auto _ : state) {
    int applied = 0;
    std::string message;
    Repeat_Splitting(p, s, p.Split.count(), applied, message);
    benchmark::DoNotOptimize(p.Mesh_Element.count());
  }
  state.counters["elements"] = p.Mesh_Element.count();
  state.counters["nodes"] = p.Mesh_Node.count();
  state.counters["cuts"] = p.Split.count();
  state.counters["mesh_borders"] = p.Mesh_Border.count();
  state.counters["mesh_interfaces"] = p.Mesh_Interface.count();
  state.SetComplexityN(p.Mesh_Element.count());
}

void BM_Replay_Halving(benchmark::State& state) {
  Replay(state, 2);
}
void BM_Replay_Quarters(benchmark::State& state) {
  Replay(state, 4);
}

BENCHMARK(BM_Replay_Halving)->Arg(1000)->Arg(5000)->Arg(25000)->Unit(benchmark::kMillisecond)->Complexity();
BENCHMARK(BM_Replay_Quarters)->Arg(1000)->Arg(5000)->Arg(25000)->Unit(benchmark::kMillisecond)->Complexity();

}  // namespace
