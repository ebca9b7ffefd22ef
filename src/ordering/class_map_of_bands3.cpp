#include "ordering/class_map_of_bands3.h"

#include <algorithm>
#include <cmath>

namespace orb {

namespace {

constexpr double share_of_least_width = 0.7; // of the clone's number of bands
constexpr double read_badly = 0.02;          // chance that a band is off by more than the tolerance, but not by twice

bool is_similar_to_one_of(band_value band, std::span<const band_value> ascending, std::int32_t tolerance) {
  const auto at = std::lower_bound(ascending.begin(), ascending.end(), band - tolerance);
  return at != ascending.end() && *at <= band + tolerance;
}

} // namespace

band_map_weights::band_map_weights(const band_map_metric &metric, double n_bands) {
  const double width = (2.0 * metric.tolerance + 1) / std::max(metric.n_positions, 1);
  const double by_chance = std::clamp(1 - std::exp(-n_bands * width), 0.001, 0.5);
  present = std::log((1 - metric.lost - read_badly) / by_chance);
  absent = std::log(metric.lost / (1 - 2 * by_chance + by_chance * by_chance));
  doubtful = std::log(read_badly / (by_chance * (1 - by_chance)));
}

best_stretch best_stretch_of(std::span<const double> scores, std::int32_t least_width) {
  const auto n = static_cast<std::int32_t>(scores.size());
  best_stretch best;
  if (n == 0)
    return best;
  least_width = std::clamp(least_width, 1, n);
  // best_end[i]: the end from i on with the largest sum in front of it, the first of equals
  std::vector<double> sum(static_cast<std::size_t>(n) + 1, 0);
  for (std::int32_t i = 1; i <= n; ++i)
    sum[static_cast<std::size_t>(i)] = sum[static_cast<std::size_t>(i) - 1] + scores[static_cast<std::size_t>(i) - 1];
  std::vector<std::int32_t> best_end(static_cast<std::size_t>(n) + 1, n);
  for (std::int32_t i = n - 1; i >= 1; --i) {
    const std::int32_t behind = best_end[static_cast<std::size_t>(i) + 1];
    best_end[static_cast<std::size_t>(i)] =
        sum[static_cast<std::size_t>(i)] >= sum[static_cast<std::size_t>(behind)] ? i : behind;
  }
  for (std::int32_t first = 1; first + least_width - 1 <= n; ++first) {
    const std::int32_t last = best_end[static_cast<std::size_t>(first + least_width - 1)];
    const double score = sum[static_cast<std::size_t>(last)] - sum[static_cast<std::size_t>(first) - 1];
    if (best.first == 0 || score > best.score)
      best = {first, last, score};
  }
  return best;
}

void class_map_of_bands3::align_clone_to_Band_Map(std::span<const band_value> map, std::int32_t clone_number,
                                                  std::span<const band_value> bands, const band_map_metric &metric) {
  clone_number_ = clone_number;
  bands_ = number_list(bands);
  map_presence_.assign(map.size() + 1, 0);
  for (std::size_t i = 0; i < map.size(); ++i)
    map_presence_[i + 1] = is_similar_to_one_of(map[i], bands, metric.tolerance)       ? 1
                           : is_similar_to_one_of(map[i], bands, 2 * metric.tolerance) ? 2
                                                                                       : 0;
  adres_start_ = adres_end_ = 0;
  if (!map.empty() && !bands.empty())
    find_best_stretch(band_map_weights(metric, static_cast<double>(bands.size())));
  score_best_stretch(map, metric.tolerance);
}

void class_map_of_bands3::find_best_stretch(const band_map_weights &weights) {
  const double of_presence[]{weights.absent, weights.present, weights.doubtful};
  std::vector<double> scores;
  for (std::size_t i = 1; i < map_presence_.size(); ++i)
    scores.push_back(of_presence[map_presence_[i]]);
  const auto least = static_cast<std::int32_t>(share_of_least_width * number_of_bands_in_clone());
  const best_stretch best = best_stretch_of(scores, least);
  adres_start_ = best.first;
  adres_end_ = best.last;
  trait_ = best.score;
}

void class_map_of_bands3::score_best_stretch(std::span<const band_value> map, std::int32_t tolerance) {
  n_absent_ = 0;
  if (adres_start_ == 0)
    trait_ = 0;
  std::vector<band_value> stretch;
  for (std::int32_t i = std::max(adres_start_, 1); i <= adres_end_; ++i) {
    n_absent_ += band_of_map_presentance(i) == 0 ? 1 : 0;
    stretch.push_back(map[static_cast<std::size_t>(i) - 1]);
  }
  std::sort(stretch.begin(), stretch.end());
  clone_presence_.assign(static_cast<std::size_t>(bands_.count()) + 1, 0);
  false_bands_.clear();
  for (std::int32_t i = 1; i <= bands_.count(); ++i) {
    clone_presence_[static_cast<std::size_t>(i)] = is_similar_to_one_of(bands_(i), stretch, tolerance) ? 1 : 0;
    if (!band_of_clone_presentance(i))
      false_bands_.add(bands_(i));
  }
}

} // namespace orb
