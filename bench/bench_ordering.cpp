// The tour solver on contigs of generated libraries: how many searches end with a proof, how much of their time limit
// that saves, and how far the orders are from the shortest.
// Usage: bench_ordering [seconds for the best known, 60]
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <numeric>

#include "bench_library.h"
#include "ordering/class_clone_ord_and_verif.h"
#include "ordering/tour_proof.h"

namespace orb {
namespace {

// Connected clones at the cutoff, as the stages before ordering leave them; at most 300 of one contig.
std::vector<ordering_task> contigs_of(bench_library &library) {
  number_list class_number;
  std::int32_t n_classes = 0;
  library.signif.net().clustering_based_on_net(class_number, n_classes);
  std::vector<ordering_task> tasks(static_cast<std::size_t>(n_classes));
  std::vector<clone_number> by_place(static_cast<std::size_t>(library.database.total_number_of_clones_get()));
  std::iota(by_place.begin(), by_place.end(), 1);
  std::sort(by_place.begin(), by_place.end(), [&](clone_number a, clone_number b) {
    return library.starts[static_cast<std::size_t>(a)] < library.starts[static_cast<std::size_t>(b)];
  });
  for (const clone_number clone : by_place) {
    ordering_task &task = tasks[static_cast<std::size_t>(class_number(clone)) - 1];
    if (task.list.count() < 300)
      task.list.add(clone);
  }
  std::erase_if(tasks, [](const ordering_task &task) { return task.list.count() < 3; });
  random_source chance(7);
  for (ordering_task &task : tasks) { // lists come in the order of the library, not of the genome
    auto clones = task.list.members();
    for (std::size_t i = clones.size(); i > 1; --i)
      std::swap(clones[i - 1], clones[static_cast<std::size_t>(chance.number_up_to(static_cast<std::int32_t>(i))) - 1]);
    task.rule = library.rule;
    task.number = static_cast<std::uint64_t>(&task - tasks.data());
  }
  return tasks;
}

void print_share_proven(const char *name, const generated_library &wanted, double cutoff) {
  bench_library library(wanted, cutoff);
  const std::vector<ordering_task> tasks = contigs_of(library);
  class_clone_ord_and_verif ordering(library.context, nullptr, {.seconds = 2});
  std::vector<ordering_work> works;
  const search_clock clock;
  ordering.compute_all(tasks, works);
  const double wall = clock.seconds_used();
  std::int32_t n_proven = 0, largest = 0;
  double used = 0;
  for (const ordering_work &work : works) {
    n_proven += work.proven();
    used += work.runs.front().report.seconds;
    largest = std::max(largest, work.n_used());
  }
  const auto n = static_cast<double>(works.size());
  std::printf("%-34s %5zu %8d %8.1f%% %10.3f %10.2f %9.2f%%\n", name, works.size(), largest, 100 * n_proven / n, used,
              wall, 100 * (1 - used / (2 * n)));
}

square_array<double> matrix_of(bench_library &library, std::int32_t n, bool shuffled) {
  std::vector<clone_number> by_place(library.starts.size() - 1);
  std::iota(by_place.begin(), by_place.end(), 1);
  std::sort(by_place.begin(), by_place.end(), [&](clone_number a, clone_number b) {
    return library.starts[static_cast<std::size_t>(a)] < library.starts[static_cast<std::size_t>(b)];
  });
  by_place.resize(static_cast<std::size_t>(n));
  if (shuffled)
    std::sort(by_place.begin(), by_place.end());
  const number_list list{std::span<const std::int32_t>(by_place)};
  class_clone_ord_and_verif ordering(library.context, nullptr);
  square_array<double> matrix;
  std::int32_t n_used = 0, rank = 0;
  double seconds = 0;
  ordering.print_distance_matrix(list, number_list::range(1, n), library.rule, library.context, matrix, n_used, seconds,
                                 rank);
  return matrix;
}

// Points in the plane: no contig looks like this, and the bound leaves a gap.
square_array<double> matrix_of_points(std::int32_t n, std::uint64_t seed) {
  random_source chance(seed);
  std::vector<double> x(static_cast<std::size_t>(n) + 1), y(x.size());
  for (std::size_t i = 1; i < x.size(); ++i) {
    x[i] = 1000 * chance.uniform();
    y[i] = 1000 * chance.uniform();
  }
  square_array<double> matrix(n);
  for (std::int32_t i = 1; i <= n; ++i)
    for (std::int32_t j = 1; j <= n; ++j) {
      const auto a = static_cast<std::size_t>(i), b = static_cast<std::size_t>(j);
      matrix(i, j) = std::hypot(x[a] - x[b], y[a] - y[b]);
    }
  return matrix;
}

struct search_result {
  std::int64_t cost = 0;
  tour_report report;
};
search_result searched(const square_array<double> &matrix, double seconds, bool prove) {
  random_source chance(1);
  class_math_TSP tourer(chance, {.prove = prove});
  search_result result;
  std::string text;
  number_list order;
  result.report = tourer.Run_Tourer(false, matrix.count(), seconds, 30, matrix, text, order, result.cost, false);
  return result;
}

void print_quality(const char *name, const square_array<double> &matrix, double seconds_best) {
  const std::int32_t n = matrix.count();
  const search_result with_proof = searched(matrix, 2, true), guided = searched(matrix, 2, false);
  square_array<std::int32_t> dist(n);
  for (std::int32_t i = 1; i <= n; ++i)
    for (std::int32_t j = 1; j <= n; ++j)
      dist(i, j) = i == j ? 0 : static_cast<std::int32_t>(matrix(std::max(i, j), std::min(i, j)) + 0.0001);
  std::int64_t best = with_proof.cost;
  const char *reference = "proven";
  path_order order;
  if (n <= 15) {
    best = shortest_path_by_subsets(dist, n, 0, 0, order);
    reference = "exact";
  } else if (!with_proof.report.proven) {
    best = std::min({best, guided.cost, improve_path(dist, n, 1'000'000'000, search_clock(seconds_best), order)});
    reference = "best known";
  }
  const auto above = [&](std::int64_t cost) {
    return 100 * (static_cast<double>(cost) / static_cast<double>(best) - 1);
  };
  std::printf("%-30s %4d %10lld %-10s %8.3f s %8.3f%% %12.3f%%\n", name, n, static_cast<long long>(best), reference,
              with_proof.report.seconds, above(with_proof.cost), above(guided.cost));
}

void print_share_table() {
  std::printf("Searches of 2 s at the most, all contigs of a library side by side\n%-34s %5s %8s %9s %10s %10s %10s\n",
              "library", "tours", "largest", "proven", "search s", "wall s", "saved");
  print_share_proven("1000 clones, 10 x, cutoff 15", {.n_clones = 1000, .coverage = 10}, 15);
  print_share_proven("3000 clones, 15 x, cutoff 60", {.n_clones = 3000, .coverage = 15}, 60);
  print_share_proven("3000 clones, 20 x, cutoff 80", {.n_clones = 3000, .coverage = 20}, 80);
  print_share_proven("2000 clones, 5 x, cutoff 10", {.n_clones = 2000, .coverage = 5}, 10);
  print_share_proven("1500 clones, 40 bands, error 10",
                     {.n_clones = 1500, .bands_in_clone = 40, .coverage = 12, .measuring_error = 10}, 10);
}

void print_quality_table(double seconds_best) {
  std::printf("\nCost above the best, after a search of 2 s\n%-30s %4s %10s %-10s %10s %9s %13s\n", "instance", "n",
              "best", "which is", "used", "search", "guided alone");
  bench_library plain({.n_clones = 600, .coverage = 15}, 15), strict({.n_clones = 600, .coverage = 8, .seed = 2}, 40),
      noisy({.n_clones = 600, .bands_in_clone = 40, .coverage = 15, .measuring_error = 11, .seed = 3}, 8);
  for (const std::int32_t n : {8, 12, 15, 50, 150, 300}) {
    print_quality("clones, 15 x", matrix_of(plain, n, true), seconds_best);
    print_quality("clones, 8 x, gaps", matrix_of(strict, n, true), seconds_best);
    print_quality("clones, 15 x, 40 noisy bands", matrix_of(noisy, n, true), seconds_best);
    print_quality("points in the plane", matrix_of_points(n, static_cast<std::uint64_t>(n)), seconds_best);
  }
}

} // namespace
} // namespace orb

int main(int argc, char **argv) {
  const double seconds_best = argc > 1 ? std::atof(argv[1]) : 60;
  orb::print_share_table();
  orb::print_quality_table(seconds_best);
}
