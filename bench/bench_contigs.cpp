// From a loaded net to the FPC-like files: adaptive clustering of a library at 15-fold coverage, with all its files.
// The time has to grow no faster than the library: the ratio of the largest to the smallest is printed at the end.
//   bench_contigs [options of Google Benchmark]
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <map>
#include <numeric>

#include "contigs/class_contig_adapt_clust.h"
#include "library_generator.h"
#include "metrics/class_clone_dist_calc.h"

namespace {

using namespace orb;

std::map<std::int64_t, std::map<std::int64_t, double>> seconds_by_clones; // by cutoff, then by number of clones

// A session with the library loaded and its net made; in a folder of its own.
struct loaded_library {
  std::filesystem::path folder =
      std::filesystem::temp_directory_path() / ("orb_bench_contigs_" + std::to_string(::getpid()));
  process_frame frame;
  project_settings settings;
  class_DB_of_clones database;
  class_usable_values usable_values;
  class_clone_dist_table table;
  metric_context context{frame, settings, database, usable_values, table};
  class_clone_net_signif signif{context};

  loaded_library(std::int32_t n_clones, double cutoff) {
    settings.cutoff = cutoff;
    std::filesystem::create_directories(folder);
    frame.working_folder_set(folder);
    generated_library wanted;
    wanted.n_clones = n_clones;
    std::vector<std::int32_t> starts; // first fragment of each clone
    generate_library(frame, wanted, database, usable_values, &starts);
    make_net(n_clones, starts);
  }
  ~loaded_library() { std::filesystem::remove_all(folder); }

  // Only clones whose windows meet are compared: what the pair loop finds beyond them is chance, and below the cutoff.
  void make_net(std::int32_t n, const std::vector<std::int32_t> &starts) {
    std::vector<clone_number> by_start(static_cast<std::size_t>(n));
    std::iota(by_start.begin(), by_start.end(), 1);
    const auto start_of = [&starts](clone_number clone) { return starts[static_cast<std::size_t>(clone)]; };
    std::sort(by_start.begin(), by_start.end(),
              [&](clone_number a, clone_number b) { return start_of(a) < start_of(b); });
    std::vector<std::vector<std::pair<clone_number, double>>> runs(static_cast<std::size_t>(n));
    class_clone_dist_calc calc(context);
    for (std::size_t i = 0; i < by_start.size(); ++i) {
      const clone_number a = by_start[i];
      const std::int32_t end = start_of(a) + database.number_of_bands_in_clone_get(a);
      for (std::size_t j = i + 1; j < by_start.size() && start_of(by_start[j]) < end; ++j) {
        const clone_number b = by_start[j];
        const double value = calc.minus_log10_p_value_of_clone_overlapping(a, b, settings.distance_index);
        if (value < settings.cutoff)
          continue;
        runs[static_cast<std::size_t>(a) - 1].emplace_back(b, value);
        runs[static_cast<std::size_t>(b) - 1].emplace_back(a, value);
      }
    }
    class_net &net = signif.net();
    net.inicializate_net(n, n);
    for (auto &run : runs) {
      std::sort(run.begin(), run.end());
      net.add_vertex_fast(0);
      for (const auto &[neighbour, value] : run)
        net.add_edge_fast(0, neighbour, value, 0, 0);
    }
    net.finish_of_adding();
    net.test_neighbours_sorted();
    signif.net_is_loaded_set();
  }
};

void adaptive_clustering(benchmark::State &state) {
  loaded_library library(static_cast<std::int32_t>(state.range(0)), static_cast<double>(state.range(1)));
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    class_contig_adapt_clust run(library.signif);
    run.adaptive_clustering_all_run(library.database);
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    state.SetIterationTime(took.count());
    seconds_by_clones[state.range(1)][state.range(0)] = took.count();
    state.counters["final_clusters"] = static_cast<double>(run.result().clusters.size());
    state.counters["clones_alone"] = run.result().n_clones_alone;
    state.counters["overlap_records"] = library.signif.net().number_of_edges_get();
  }
}

// Clones and cutoff: at 15 the library hangs together, at 70 it comes in many contigs, heaps and clones alone.
BENCHMARK(adaptive_clustering)
    ->ArgsProduct({{4000, 8000}, {15, 70}})
    ->ArgNames({"clones", "cutoff"})
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv))
    return 2;
  benchmark::RunSpecifiedBenchmarks();
  for (const auto &[cutoff, seconds] : seconds_by_clones) {
    if (seconds.size() < 2)
      continue;
    std::printf("cutoff %lld: %lld clones take %.2f times the time of %lld\n", static_cast<long long>(cutoff),
                static_cast<long long>(seconds.rbegin()->first), seconds.rbegin()->second / seconds.begin()->second,
                static_cast<long long>(seconds.begin()->first));
  }
  return 0;
}
