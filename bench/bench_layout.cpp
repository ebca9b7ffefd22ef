// Layouts of nets of intervals with 2 of 1,000 edges between any two clones: the multilevel layout with Spearman's
// correlation of steps and distance in the picture, the growth, and a step of the springs.
#include <benchmark/benchmark.h>

#include "support/layout_nets.h"
#include "viewer/growth_layout.h"
#include "viewer/multilevel_layout.h"
#include "viewer/spring_layout.h"

namespace orb {
namespace {

constexpr double degree = 13, false_share = 0.002;

std::vector<layout_edge> net_of(std::int32_t n, double share) {
  return interval_net(n, n > 20000 ? 10 : degree, share, 1); // 400,000 edges at 80,000 nodes
}

// The second argument: false edges among 100,000.
void multilevel(benchmark::State &state) {
  process_frame frame;
  const auto n = static_cast<std::int32_t>(state.range(0));
  const std::vector<layout_edge> edges = net_of(n, static_cast<double>(state.range(1)) / 100'000);
  std::vector<float> x, y;
  for (auto _ : state)
    multilevel_layout({n, edges}, {}, frame, x, y);
  state.counters["edges"] = static_cast<double>(edges.size());
  state.counters["correlation"] = distance_correlation({n, edges}, x, y);
}
BENCHMARK(multilevel)
    ->ArgsProduct({{2000, 10000, 20000, 80000}, {0, 30, 200}})
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime();

void growth(benchmark::State &state) {
  process_frame frame;
  const auto n = static_cast<std::int32_t>(state.range(0));
  const std::vector<layout_edge> edges = net_of(n, false_share);
  class_net_elngKK growing;
  for (auto _ : state) {
    growing.KK_inicializate(n, static_cast<std::int32_t>(edges.size()));
    for (std::int32_t i = 0; i < n; ++i)
      growing.add_node({}, false);
    for (const layout_edge &edge : edges)
      growing.add_edge(edge, false);
    growing.startKK(frame);
  }
  std::vector<float> x(static_cast<std::size_t>(n) + 1), y(x);
  for (std::int32_t i = 1; i <= n; ++i) {
    x[static_cast<std::size_t>(i)] = growing.node_Xcoor_get(i);
    y[static_cast<std::size_t>(i)] = growing.node_Ycoor_get(i);
  }
  state.counters["correlation"] = distance_correlation({n, edges}, x, y);
}
BENCHMARK(growth)
    ->Arg(2000)
    ->Arg(10000)
    ->Arg(20000)
    ->Arg(80000)
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime();

// The second argument: whether the repulsion is cut.
void spring_step(benchmark::State &state) {
  process_frame frame;
  const auto n = static_cast<std::int32_t>(state.range(0));
  const std::vector<layout_edge> edges = net_of(n, false_share);
  spring_nodes nodes;
  nodes.resize(n);
  multilevel_layout({n, edges}, {}, frame, nodes.x, nodes.y);
  spring_layout layout;
  layout.make_KamadaKawaii_Arrays({n, edges}, std::vector<std::uint8_t>(static_cast<std::size_t>(n) + 1, 0));
  spring_values values;
  bool warned = false;
  for (auto _ : state)
    layout.CalcPositionsNodes_KamadaKawaii_step(state.range(1) != 0, values, nodes, warned, frame);
}
BENCHMARK(spring_step)
    ->ArgsProduct({{1000, 5000, 20000}, {0, 1}})
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime();

} // namespace
} // namespace orb

BENCHMARK_MAIN();
