// The pair loop: the scan of each set of instructions against the plain merge of every pair, in the same run.
//   bench_net [--clones=20000] [--bands=100] [--spread=0.5] [--coverage=15] [--tolerance=12] [--skewed] [--bins]
//   [--cutoff=15]
//             [--threads=0] [options of Google Benchmark]
// The merges run on a sample of rows and are scaled up to all pairs.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

#include "frame/worker_blocks.h"
#include "library_arguments.h"
#include "pairs/half_net.h"

namespace orb {
namespace {

generated_library wanted{.n_clones = 20000};
double cutoff = 15;
int threads = 0;
std::map<std::string, double> seconds_of_path;
// Of all pairs, scaled up from a sample: the merge as one writes it down, and the one without jumps that the kernel
// uses.
double seconds_of_plain_merge = 0, seconds_of_merge_without_jumps = 0;

struct library_and_table {
  process_frame frame;
  project_settings settings;
  class_DB_of_clones database;
  class_usable_values usable_values;
  class_clone_dist_table table;
  metric_context context{frame, settings, database, usable_values, table};
  class_clone_dist_FPC significant;

  library_and_table() {
    generate_library(frame, wanted, database, usable_values);
    significant.fill_sulston_significant_table(cutoff, class_clone_dist_FPC::proposed_table_size(database), database,
                                               usable_values);
  }
  pair_kernel kernel() { return {context, rule_of_metric(4, cutoff), &significant, threads}; }
};

library_and_table &library() {
  static library_and_table made;
  return made;
}

double seconds_of(const std::function<void()> &work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

std::int32_t row_of_sample(std::int64_t k, std::int32_t n) {
  return static_cast<std::int32_t>(k * n / std::min(n, 200)) + 1;
}

// Everything from the library in memory to the overlaps of each clone.
void pair_loop(const scan_path &path, half_net &half, pair_kernel &kernel, const pair_elements &elements) {
  overlap_rows rows(kernel, elements, row_partners::of_higher_number, threads, &path);
  half.compare(
      rows, elements.count(), [](std::int32_t, std::int32_t) { return true; }, [](std::int64_t) { return true; });
}

void scanned(benchmark::State &state, const scan_path &path) {
  const pair_elements elements = pair_elements::of_library(library().database, false);
  std::size_t n_overlaps = 0;
  for (auto _ : state) {
    pair_kernel kernel = library().kernel();
    half_net half;
    const double seconds = seconds_of([&] { pair_loop(path, half, kernel, elements); });
    state.SetIterationTime(seconds);
    double &best = seconds_of_path[path.name];
    best = best == 0 ? seconds : std::min(best, seconds);
    n_overlaps = 0;
    for (std::int32_t e = 1; e <= elements.count(); ++e)
      n_overlaps += half.row(e).size();
  }
  const double n = elements.count();
  state.counters["pairs/s"] = benchmark::Counter(n * (n - 1) / 2, benchmark::Counter::kIsIterationInvariantRate);
  state.counters["overlaps"] = static_cast<double>(n_overlaps);
}

// A sample of rows, pair by pair, on the same number of threads; all pairs would take so many seconds.
template <class row_function> double sampled_seconds(std::int32_t n, row_function &&row) {
  const std::int32_t n_sample = std::min(n, 200);
  std::int64_t n_pairs = 0;
  for (std::int32_t k = 0; k < n_sample; ++k)
    n_pairs += n - row_of_sample(k, n);
  const double seconds = seconds_of([&] {
    run_in_blocks(0, n_sample - 1, n_sample, 1, threads,
                  [&](std::int64_t k, std::int64_t, int worker) { row(row_of_sample(k, n), worker); }, {});
  });
  return seconds / static_cast<double>(n_pairs) * n * (n - 1.0) / 2;
}

void note(benchmark::State &state, double seconds, double &best) {
  state.SetIterationTime(seconds);
  best = best == 0 ? seconds : std::min(best, seconds);
}

// Common bands by two pointers and three cases, then the table; the few pairs that pass it are not even scored.
void plain_merge(benchmark::State &state) {
  const class_DB_of_clones &database = library().database;
  const std::int32_t n = database.total_number_of_clones_get();
  const std::int32_t t = wanted.bin_numbers ? 0 : wanted.tolerance;
  for (auto _ : state)
    note(state,
         sampled_seconds(n,
                         [&](std::int32_t row, int) {
                           std::int32_t n_kept = 0;
                           for (clone_number other = row + 1; other <= n; ++other) {
                             std::int32_t k = 0;
                             const auto own = database.bands_of_clone(row), others = database.bands_of_clone(other);
                             merge_bands(own, others, t, [&](band_value, band_value) { ++k; });
                             n_kept += k >= library().significant.sulston_significant_table_get(
                                                static_cast<std::int32_t>(own.size()),
                                                static_cast<std::int32_t>(others.size()));
                           }
                           benchmark::DoNotOptimize(n_kept);
                         }),
         seconds_of_plain_merge);
}

// The kernel pair by pair; what it keeps is compared with what the scan kept.
void merge_without_jumps(benchmark::State &state) {
  const pair_elements elements = pair_elements::of_library(library().database, false);
  const std::int32_t n = elements.count();
  pair_kernel kernel = library().kernel();
  half_net half;
  pair_loop(best_scan_path(), half, kernel, elements);
  std::vector<std::vector<pair_record>> rows(static_cast<std::size_t>(n) + 1);
  for (auto _ : state)
    note(state,
         sampled_seconds(n,
                         [&](std::int32_t row, int worker) {
                           auto &records = rows[static_cast<std::size_t>(row)];
                           records.clear();
                           pair_record record;
                           for (std::int32_t partner = row + 1; partner <= n; ++partner)
                             if (kernel.element_pair(elements, row, partner, worker, record))
                               records.push_back(record);
                         }),
         seconds_of_merge_without_jumps);
  const auto same = [](const pair_record &a, const pair_record &b) {
    return a.partner == b.partner && a.code == b.code && a.value == b.value;
  };
  for (std::int32_t k = 0; k < std::min(n, 200); ++k) {
    const std::int32_t row = row_of_sample(k, n);
    const auto &records = rows[static_cast<std::size_t>(row)];
    if (!std::equal(records.begin(), records.end(), half.row(row).begin(), half.row(row).end(), same))
      state.SkipWithError("the scan and the merge differ");
  }
}

// Takes this program's own arguments out of the list.
void take_arguments(int &argc, char **argv) {
  take_library_arguments(argc, argv, wanted);
  int kept = 1;
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (argument.starts_with("--clones="))
      wanted.n_clones = std::atoi(argument.c_str() + 9);
    else if (argument.starts_with("--cutoff="))
      cutoff = std::atof(argument.c_str() + 9);
    else if (argument.starts_with("--threads="))
      threads = std::atoi(argument.c_str() + 10);
    else
      argv[kept++] = argv[i];
  }
  argc = kept;
}

} // namespace
} // namespace orb

int main(int argc, char **argv) {
  using namespace orb;
  take_arguments(argc, argv);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv))
    return 2;
  for (const scan_path &path : all_scan_paths())
    if (path.runs_here())
      benchmark::RegisterBenchmark(path.name, [&path](benchmark::State &state) { scanned(state, path); })
          ->UseManualTime()
          ->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("plain_merge", plain_merge)->UseManualTime()->Unit(benchmark::kSecond)->Iterations(3);
  benchmark::RegisterBenchmark("merge_without_jumps", merge_without_jumps)
      ->UseManualTime()
      ->Unit(benchmark::kSecond)
      ->Iterations(3);
  benchmark::RunSpecifiedBenchmarks();
  std::printf("\n%d clones, all pairs on %d threads: plain merge %.1f s, without jumps %.1f s\n", wanted.n_clones,
              worker_count(threads), seconds_of_plain_merge, seconds_of_merge_without_jumps);
  for (const auto &[name, seconds] : seconds_of_path)
    std::printf("%-8s %8.4f s  %6.0f times the plain merge, %6.0f times that without jumps\n", name.c_str(), seconds,
                seconds_of_plain_merge / seconds, seconds_of_merge_without_jumps / seconds);
  return 0;
}
