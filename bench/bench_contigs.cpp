// From a loaded net to the FPC-like files: adaptive clustering of a library, or its layout, with its files but without
// ordering, pair tables and drawings.
// The time has to grow no faster than the library: the ratio of the largest to the smallest is printed at the end.
//   bench_contigs [arguments of library_arguments.h] [options of Google Benchmark]
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <map>

#include "bench_library.h"
#include "contigs/class_contig_adapt_clust.h"
#include "library_arguments.h"

namespace {

using namespace orb;

generated_library wanted;
std::map<std::int64_t, std::map<std::int64_t, double>>
    seconds_by_clones; // by cutoff (below 0: layout), then by number of clones

void run_contigs(benchmark::State &state, bool by_layout) {
  wanted.n_clones = static_cast<std::int32_t>(state.range(0));
  bench_library library(wanted, static_cast<double>(state.range(1)));
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    contig_files files;
    files.pair_tables = files.drawings = false;
    class_contig_adapt_clust run(library.signif, library.rule, files);
    run.detail_control_set(false);
    run.print_all_dist_on_set(false);
    if (by_layout)
      run.layout_all_run(library.database);
    else
      run.adaptive_clustering_all_run(library.database);
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    state.SetIterationTime(took.count());
    seconds_by_clones[by_layout ? -state.range(1) : state.range(1)][state.range(0)] = took.count();
    state.counters["final_clusters"] = static_cast<double>(run.result().clusters.size());
    state.counters["clones_alone"] = run.result().n_clones_alone;
    state.counters["overlap_records"] = library.signif.net().number_of_edges_get();
  }
}

void adaptive_clustering(benchmark::State &state) {
  run_contigs(state, false);
}

void layout(benchmark::State &state) {
  run_contigs(state, true);
}

// Clones and cutoff: at 15 the library hangs together, at 70 it comes in many contigs, heaps and clones alone.
BENCHMARK(adaptive_clustering)
    ->ArgsProduct({{20000, 80000}, {15, 70}})
    ->ArgNames({"clones", "cutoff"})
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

// At about the cutoff that the layout would choose.
BENCHMARK(layout)
    ->ArgsProduct({{5000, 20000, 80000}, {9}})
    ->ArgNames({"clones", "cutoff"})
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv) {
  take_library_arguments(argc, argv, wanted);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv))
    return 2;
  benchmark::RunSpecifiedBenchmarks();
  for (const auto &[cutoff, seconds] : seconds_by_clones) {
    if (seconds.size() < 2)
      continue;
    std::printf("%s %lld: %lld clones take %.2f times the time of %lld\n", cutoff < 0 ? "layout at" : "cutoff",
                static_cast<long long>(cutoff < 0 ? -cutoff : cutoff), static_cast<long long>(seconds.rbegin()->first),
                seconds.rbegin()->second / seconds.begin()->second, static_cast<long long>(seconds.begin()->first));
  }
  return 0;
}
