// The pair loop on generated libraries: pairs a second, on one thread and on all.
// Usage: bench_net [--benchmark_filter=...]; arguments of a row: clones, threads (0: all).
#include <benchmark/benchmark.h>

#include "library_generator.h"
#include "net/class_clone_net_signif.h"

namespace orb {
namespace {

struct bench_library {
  process_frame frame;
  project_settings settings;
  class_DB_of_clones database;
  class_usable_values usable_values;
  class_clone_dist_table table;
  metric_context context{frame, settings, database, usable_values, table};
  class_clone_net_signif signif{context};
};

void pair_loop(benchmark::State &state) {
  bench_library library;
  generate_library(library.frame, {.n_clones = static_cast<std::int32_t>(state.range(0))}, library.database,
                   library.usable_values);
  library.settings.threads = static_cast<int>(state.range(1));
  std::int64_t n_pairs = 0;
  for (auto _ : state) {
    net_creation_summary summary;
    library.signif.create_net_in_memory(summary);
    n_pairs += summary.n_pairs;
  }
  state.counters["pairs/s"] = benchmark::Counter(static_cast<double>(n_pairs), benchmark::Counter::kIsRate);
  state.counters["records"] = library.signif.net().number_of_edges_get();
}

// The same work through an object for each pair, as later stages ask for single pairs.
void single_pairs(benchmark::State &state) {
  bench_library library;
  const auto n = static_cast<std::int32_t>(state.range(0));
  generate_library(library.frame, {.n_clones = n}, library.database, library.usable_values);
  class_clone_dist_calc calc(library.context);
  std::int64_t n_pairs = 0;
  for (auto _ : state)
    for (clone_number i = 1; i <= n; i += n / 10)
      for (clone_number j = i + 1; j <= n; ++j, ++n_pairs)
        benchmark::DoNotOptimize(calc.minus_log10_p_value_of_clone_overlapping(i, j, 4));
  state.counters["pairs/s"] = benchmark::Counter(static_cast<double>(n_pairs), benchmark::Counter::kIsRate);
}

void revision(benchmark::State &state) {
  bench_library library;
  generate_library(library.frame, {.n_clones = 4000}, library.database, library.usable_values);
  net_creation_summary summary;
  library.signif.create_net_in_memory(summary);
  class_net marked;
  std::int32_t n_Q = 0;
  for (auto _ : state) {
    const auto r = static_cast<std::int32_t>(state.range(0));
    library.signif.identify_all_Q_connections(library.signif.net(), r, marked, -1, false, {}, n_Q);
    library.signif.identify_all_Q_clones(library.signif.net(), r, marked, -1, false, {}, {}, n_Q);
  }
  state.counters["records/s"] =
      benchmark::Counter(static_cast<double>(state.iterations()) * library.signif.net().number_of_edges_get(),
                         benchmark::Counter::kIsRate);
}

BENCHMARK(pair_loop)->ArgsProduct({{2000, 8000}, {1, 0}})->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(single_pairs)->Arg(2000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(revision)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
} // namespace orb
BENCHMARK_MAIN();
