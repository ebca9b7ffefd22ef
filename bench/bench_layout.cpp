// Layouts of nets of intervals with false edges: the multilevel layout with Spearman's correlation of steps and
// distance in the picture, the growth, and a step of the springs.
#include <benchmark/benchmark.h>

#include "support/layout_nets.h"
#include "viewer/growth_layout.h"
#include "viewer/multilevel_layout.h"
#include "viewer/spring_layout.h"

namespace orb {
namespace {

constexpr double degree = 13, false_share = 0.002;

// Which false edges a net has.
enum kind : std::int64_t {
  none,
  of_clones,      // between any two, 2 for 1,000 clones
  of_edges,       // between any two, 2 of 1,000 edges
  in_chromosomes, // 2 of 1,000 edges, within lines of 1,000 clones
  near_by         // 2 of 1,000 edges, at most 40 clones' lengths away
};

std::vector<layout_edge> net_of(std::int32_t n, kind wanted, double share) {
  const double clone_degree = n > 20000 ? 10 : degree; // 400,000 edges at 80,000 nodes
  switch (wanted) {
  case none:
    return interval_net(n, clone_degree, 0, 1);
  case of_clones:
    return interval_net(n, clone_degree, share * 2 / clone_degree, 1);
  case in_chromosomes:
    return interval_lines(n, 1000, clone_degree, share, 1);
  case near_by:
    return interval_net(n, clone_degree, share, 1, 40);
  case of_edges:
    break;
  }
  return interval_net(n, clone_degree, share, 1);
}

// Arguments: nodes, kind, whether doubtful edges are left out. "correlation" is with the steps along all edges,
// "without_false" with those in the net that has no false edges.
void multilevel(benchmark::State &state) {
  process_frame frame;
  const auto n = static_cast<std::int32_t>(state.range(0));
  const auto wanted = static_cast<kind>(state.range(1));
  const std::vector<layout_edge> edges = net_of(n, wanted, false_share), right = net_of(n, wanted, 0);
  std::vector<float> x, y;
  for (auto _ : state)
    multilevel_layout({n, edges}, {.without_doubtful = state.range(2) != 0}, frame, x, y);
  state.counters["edges"] = static_cast<double>(edges.size());
  state.counters["correlation"] = distance_correlation({n, edges}, x, y);
  state.counters["without_false"] = distance_correlation({n, right}, x, y);
}
BENCHMARK(multilevel)
    ->ArgsProduct({{2000, 10000, 20000, 80000}, {none, of_clones, of_edges, in_chromosomes, near_by}, {0, 1}})
    ->ArgNames({"", "false", "unfolded"})
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime();

void growth(benchmark::State &state) {
  process_frame frame;
  const auto n = static_cast<std::int32_t>(state.range(0));
  const std::vector<layout_edge> edges = net_of(n, of_edges, false_share);
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
  const std::vector<layout_edge> edges = net_of(n, of_edges, false_share);
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
