// How well maps of bands are found where the map is known: clones of 60 to 120 bands, with bands lost and added. Prints
// a table.
#include <chrono>
#include <cstdlib>
#include <fmt/format.h>
#include <vector>

#include "ordering/class_map_of_bands4.h"

// band_map_accuracy [clones [coverage [maps]]]
int main(int n_words, char **words) {
  using namespace orb;
  const auto number_of = [&](int i, double otherwise) { return n_words > i ? std::atof(words[i]) : otherwise; };
  const auto n_clones = static_cast<std::size_t>(number_of(1, 300));
  const int n_maps = static_cast<int>(number_of(3, 5));
  fmt::print("| lost and false | bands found | bands true | neighbours right | tau of the clones | seconds |\n");
  fmt::print("|---|---|---|---|---|---|\n");
  for (const double share : {0.0, 0.03, 0.06}) {
    band_map_quality sum;
    const auto start = std::chrono::steady_clock::now();
    for (int k = 1; k <= n_maps; ++k) {
      random_source chance(static_cast<std::uint64_t>(k), 3);
      std::vector<std::int32_t> numbers(n_clones);
      for (std::int32_t &n : numbers)
        n = 59 + chance.number_up_to(61);
      band_map_simulation wanted;
      wanted.coverage = number_of(2, 10);
      wanted.lost = wanted.added = share;
      wanted.seed = static_cast<std::uint64_t>(k);
      process_frame frame;
      class_map_of_bands4 maker(frame, {});
      band_map_clones clones;
      const simulated_band_map truth =
          class_map_of_bands4::simulate_read_clones_from_band_map(numbers, band_map_metric{}, wanted, clones);
      maker.make_map(clones);
      const band_map_quality found = maker.quality_against(truth, clones);
      sum.bands_found += found.bands_found / n_maps;
      sum.bands_true += found.bands_true / n_maps;
      sum.neighbours_right += found.neighbours_right / n_maps;
      sum.tau += found.tau / n_maps;
    }
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    fmt::print("| {:.0f} % | {:.2f} % | {:.2f} % | {:.2f} % | {:.4f} | {:.1f} |\n", 100 * share, 100 * sum.bands_found,
               100 * sum.bands_true, 100 * sum.neighbours_right, sum.tau, seconds / n_maps);
  }
}
