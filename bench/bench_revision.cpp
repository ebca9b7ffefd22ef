// Q revision by rank, beside the definition taken literally on a sample of vertices; the ratio is printed at the end.
//   bench_revision [arguments of library_arguments.h] [options of Google Benchmark]; arguments of a row: clones, rank
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <map>

#include "bench_library.h"
#include "library_arguments.h"
#include "support/plain_revision.h"

namespace orb {
namespace {

generated_library wanted;
constexpr double longest_sample = 5;                  // seconds
constexpr double cutoff = 15, additional_cutoff = 25; // the second one as a revision proposes it

struct seconds_of_all {
  double revision = 0, plain = 0;
};
std::map<std::pair<std::int64_t, std::int64_t>, seconds_of_all> results; // by clones and rank

double now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

const bench_library &library_of(std::int64_t n_clones) {
  static std::map<std::int64_t, std::unique_ptr<bench_library>> made;
  auto &library = made[n_clones];
  wanted.n_clones = static_cast<std::int32_t>(n_clones);
  if (!library)
    library = std::make_unique<bench_library>(wanted, cutoff);
  return *library;
}

void revision(benchmark::State &state) {
  auto &library = const_cast<bench_library &>(library_of(state.range(0)));
  const auto r = static_cast<std::int32_t>(state.range(1));
  class_net marked;
  std::int32_t n_Q = 0;
  for (auto _ : state) {
    const double start = now();
    library.signif.identify_all_Q_connections(library.signif.net(), r, marked, -1, false, {}, n_Q);
    library.signif.identify_all_Q_clones(library.signif.net(), r, additional_cutoff, marked, -1, false, {}, {}, n_Q);
    const double took = now() - start;
    state.SetIterationTime(took);
    results[{state.range(0), r}].revision = took;
  }
  state.counters["records"] = library.signif.net().number_of_edges_get();
}

void definition_on_a_sample(benchmark::State &state) {
  const class_net &net = library_of(state.range(0)).signif.net();
  const auto r = static_cast<int>(state.range(1));
  const std::int32_t n = net.number_of_vertices_get(), stride = std::max(n / 100, 1);
  for (auto _ : state) {
    const double start = now();
    std::int32_t n_looked_at = 0;
    for (vertex_number v = 1; v <= n && now() - start < longest_sample; v += stride, ++n_looked_at) {
      for (const net_edge &edge : net.edges_of_vertex(v))
        benchmark::DoNotOptimize(plain_revision::is_Q_overlap(net, v, edge.neighbour, r));
      benchmark::DoNotOptimize(plain_revision::is_Q_clone(net, v, r, additional_cutoff));
    }
    const double took = now() - start;
    state.SetIterationTime(took);
    results[{state.range(0), r}].plain = took / n_looked_at * n;
  }
}

BENCHMARK(revision)->ArgsProduct({{20000, 80000}, {1, 2}})->Iterations(1)->UseManualTime()->Unit(benchmark::kSecond);
BENCHMARK(definition_on_a_sample)
    ->ArgsProduct({{20000, 80000}, {1, 2}})
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kSecond);

} // namespace
} // namespace orb

int main(int argc, char **argv) {
  orb::take_library_arguments(argc, argv, orb::wanted);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv))
    return 2;
  benchmark::RunSpecifiedBenchmarks();
  for (const auto &[what, seconds] : orb::results)
    std::printf(
        "%lld clones, rank %lld: %.2f s; the definition taken literally would take %.0f s, %.0f times as long\n",
        static_cast<long long>(what.first), static_cast<long long>(what.second), seconds.revision, seconds.plain,
        seconds.plain / seconds.revision);
  return 0;
}
