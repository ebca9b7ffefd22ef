#include "ordering/class_map_of_bands4.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <fmt/format.h>
#include <numeric>

#include "frame/class_math1.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "ordering/band_map_ends.h"
#include "ordering/tour_solver.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

constexpr std::int32_t neighbour_rank = 30; // of the tour
constexpr double seconds_of_tour = 3600;    // the limit is by steps
constexpr std::int32_t rows_between_reports = 100;
constexpr double weight_of_stretch = 10; // of an end of a clone between two bands, against one clone's reading

} // namespace

// ---- distances, tour -----------------------------------------------------------------------------------------------

// Two bands are as far apart as clones end between them: clones whose stretches cover one of both only count whole,
// clones that were read to have one only, in which a band may have been lost, a little. Bands that no clone has both of
// are farther apart than any others.
bool class_map_of_bands4::make_distances(const band_map_clones &clones, square_array<double> &distances) const {
  frame_.local_process_text_set("DistMatr for BandMap");
  const auto n = static_cast<std::int32_t>(bands_.size());
  clone_sets covering(bands_.size(), clones.count()), having(bands_.size(), clones.count());
  for (std::size_t b = 0; b < bands_.size(); ++b) {
    for (std::size_t c = 0; c < clones.count(); ++c)
      if (stretches_[c].covers(static_cast<double>(b) + 1))
        covering.add(b, c);
    for (const std::int32_t c : bands_[b].clones)
      having.add(b, static_cast<std::size_t>(c));
  }
  distances.assign(n, 0);
  for (std::int32_t i = 1; i <= n; ++i) {
    if (i % rows_between_reports == 0) {
      frame_.progress(i, n);
      frame_.control_text_set(fmt::format("{} of {} sec ", i, n));
      if (frame_.stop_requested_get())
        return false;
    }
    for (std::int32_t j = i + 1; j <= n; ++j) {
      const auto a = static_cast<std::size_t>(i) - 1, b = static_cast<std::size_t>(j) - 1;
      distances(i, j) = distances(j, i) =
          n_common(covering[a], covering[b]) == 0
              ? (weight_of_stretch + 1) * static_cast<double>(clones.count())
              : weight_of_stretch * n_different(covering[a], covering[b]) + n_different(having[a], having[b]);
    }
  }
  frame_.local_process_text_set("DistMatr completed");
  return true;
}

// The search starts from the order in which the bands stand and never leaves it for a longer one.
bool class_map_of_bands4::order_by_tour(square_array<double> &distances) {
  frame_.local_process_text_set("Band Map ordering");
  random_source chance(options_.seed);
  tour_control control;
  control.steps = options_.steps;
  control.prove = false;
  control.stop = [this] { return !frame_.goes_on(); };
  std::string text;
  number_list order;
  std::int64_t cost = 0;
  const tour_report report =
      class_math_TSP(chance, control)
          .Run_Tourer(false, distances.count(), seconds_of_tour, neighbour_rank, distances, text, order, cost, false);
  frame_.control_text_set(number_text(report.seconds, 1) + "sec ");
  if (report.stopped || frame_.stop_requested_get())
    return false;
  std::vector<band_of_map> ordered;
  for (const std::int32_t place : order.members())
    ordered.push_back(std::move(bands_[static_cast<std::size_t>(place) - 1]));
  bands_ = std::move(ordered);
  frame_.local_process_text_set("BandMap completed");
  return true;
}

// ---- all work ------------------------------------------------------------------------------------------------------

bool class_map_of_bands4::compute(const band_map_clones &clones, const fs::path *folder) {
  if (!lay_out_clones(frame_, clones, stretches_))
    return false;
  if (!order_bands(frame_, clones, stretches_, bands_))
    return false;
  const auto n = static_cast<std::int32_t>(bands_.size());
  if (n > most_bands_of_tour) {
    frame_.note(fmt::format("The map has {} bands. More than {} aren't ordered by a tour.", n, most_bands_of_tour));
  } else {
    square_array<double> distances;
    if (!make_distances(clones, distances) || (folder && !print_distances(distances, *folder / "band_dist.txt")) ||
        !order_by_tour(distances))
      return false;
  }
  stretches_on(clones, bands_, stretches_);
  map_.clear();
  for (const band_of_map &band : bands_)
    map_.push_back(band.value);
  return true;
}

bool class_map_of_bands4::make_map(const band_map_clones &clones) {
  if (!compute(clones, nullptr))
    return false;
  sort_clones_based_on_band_map(clones);
  return true;
}

bool class_map_of_bands4::make_all_work(const band_map_clones &clones, const fs::path &folder) {
  print_frequencies(clones, folder / "test_band_frec_M_W.txt");
  if (!compute(clones, &folder))
    return false;
  print_map(folder / "band_map.txt");
  frame_.local_process_text_set("ok");
  sort_clones_based_on_band_map(clones);
  print_sorted_clones(clones, folder / "band_map_all_clones.txt");
  return true;
}

void class_map_of_bands4::sort_clones_based_on_band_map(const band_map_clones &clones) {
  alignments_.assign(clones.count(), {});
  std::vector<std::int32_t> starts, places;
  for (std::size_t i = 0; i < clones.count(); ++i) {
    alignments_[i].align_clone_to_Band_Map(map_, static_cast<std::int32_t>(i) + 1, clones.bands[i], clones.metric);
    starts.push_back(alignments_[i].adres_start());
  }
  class_math1::quicksort_long(starts, places, 0, static_cast<std::int32_t>(starts.size()) - 1, true);
  order_ = std::move(places);
  order_.resize(clones.count());
}

// ---- simulation ----------------------------------------------------------------------------------------------------

void class_map_of_bands4::simulate_band_map(std::int32_t n_bands, const band_map_metric &metric, random_source &chance,
                                            std::vector<band_value> &map) {
  map.clear();
  for (std::int32_t i = 0; i < n_bands; ++i)
    map.push_back(chance.number_up_to(metric.n_positions));
}

std::vector<band_value> class_map_of_bands4::simulate_read_clone_from_band_map(std::span<const band_value> map,
                                                                               std::int32_t first, std::int32_t last,
                                                                               const band_map_metric &metric,
                                                                               const band_map_simulation &wanted,
                                                                               random_source &chance) {
  std::vector<band_value> bands;
  for (std::int32_t i = first; i <= last; ++i) {
    const double error = (2 * chance.uniform() - 1) * wanted.error;
    if (chance.uniform() >= wanted.lost)
      bands.push_back(std::clamp(map[static_cast<std::size_t>(i)] + static_cast<band_value>(std::lround(error)), 1,
                                 metric.n_positions));
    if (chance.uniform() < wanted.added)
      bands.push_back(chance.number_up_to(metric.n_positions));
  }
  std::sort(bands.begin(), bands.end());
  return bands;
}

simulated_band_map
class_map_of_bands4::simulate_read_clones_from_band_map(std::span<const std::int32_t> numbers_of_bands,
                                                        const band_map_metric &metric,
                                                        const band_map_simulation &wanted, band_map_clones &clones) {
  random_source chance(wanted.seed, 1);
  simulated_band_map made;
  const double sum = std::accumulate(numbers_of_bands.begin(), numbers_of_bands.end(), 0.0);
  const std::int32_t longest =
      numbers_of_bands.empty() ? 1 : *std::max_element(numbers_of_bands.begin(), numbers_of_bands.end());
  const auto length = std::max(static_cast<std::int32_t>(sum / wanted.coverage), longest);
  simulate_band_map(length, metric, chance, made.map);
  clones = {};
  clones.metric = metric;
  for (const std::int32_t n : numbers_of_bands) {
    const std::int32_t first = chance.number_up_to(length - n + 1) - 1;
    made.first.push_back(first);
    made.last.push_back(first + n - 1);
    clones.bands.push_back(simulate_read_clone_from_band_map(made.map, first, first + n - 1, metric, wanted, chance));
    clones.names.push_back("S" + std::to_string(clones.names.size() + 1));
  }
  return made;
}

} // namespace orb
