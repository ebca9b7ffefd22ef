#include "net/reading_spread.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "metrics/band_merge.h"
#include "net/band_scale.h"

namespace orb {

namespace {

constexpr std::int64_t most_bands_sampled = 100000;
constexpr std::int64_t n_merges = 1000000;
constexpr std::int32_t fewest_compared = 24;
constexpr std::size_t most_pairs = 4000;
constexpr std::size_t enough_of_one_name = 20;
// Of a match, at the tolerances by which alike clones are looked for.
constexpr double rough_chances[] = {0.12, 0.2, 0.3, 0.4};
constexpr double clearly_more = 1.1;     // pairs
constexpr std::size_t n_strangers = 4;   // that a clone of an alike pair is set against
constexpr double least_overlap = 0.5;    // of alike clones
constexpr std::int32_t least_bands = 5;  // of such
constexpr std::int32_t first_width = 12; // of the distances looked at, doubled until the readings are well inside
constexpr int most_doublings = 9;
// The curve is flat at its top, the more so where bands are whole base pairs: between these a tolerance grows to no
// use, and of tolerances that some thousand readings can't tell apart the smallest meets least chance.
constexpr double share_of_information = 0.995;
constexpr std::int32_t tolerances_looked_at = 5; // like bands end well within half of these, beyond is chance
constexpr double least_readings = 300, least_deviations = 10;
constexpr double usual_share_common = 0.5; // of the bands of two clones that overlap

using clone_pair = std::pair<clone_number, clone_number>;

// What a band tells for an overlap, on average, when it finds a match with chance `if_common` rather than `by_chance`.
double information_of(double if_common, double by_chance) {
  const auto part = [](double p, double q) { return p > 0 && q > 0 ? p * std::log(p / q) : 0; };
  return part(if_common, by_chance) + part(1 - if_common, 1 - by_chance);
}

// The largest tolerance at which a match by chance is no more likely.
std::int32_t rough_tolerance(const band_places &places, double n, double chance) {
  std::int32_t low = 1, high = 1;
  while (high < (1 << 20) && places.chance_of_match(high, n) <= chance)
    high *= 2;
  while (low + 1 < high) {
    const std::int32_t middle = (low + high) / 2;
    (places.chance_of_match(middle, n) <= chance ? low : high) = middle;
  }
  return low;
}

std::vector<clone_pair> pairs_of_one_name(const class_DB_of_clones &database) {
  std::vector<clone_pair> pairs;
  if (!database.clone_name_sorted_is_created_get() || !database.IsDBContainRepeatsCloneNames_get())
    return pairs;
  for (std::int32_t i = 2; i <= database.total_number_of_clones_get() && pairs.size() < most_pairs; ++i)
    if (database.clone_name_sorted_get(i) == database.clone_name_sorted_get(i - 1))
      pairs.emplace_back(database.clone_name_sorted_initial_adress_get(i - 1),
                         database.clone_name_sorted_initial_adress_get(i));
  return pairs;
}

class alike_clones {
public:
  alike_clones(const class_DB_of_clones &database, const band_places &places, double n, std::int32_t t)
      : database_(database), t_(t) {
    scale_.n_positions = 1 / std::max(places.share_within(t), 1e-7);
    scale_.median_bands = n;
  }

  bool are(clone_number a, clone_number b, double least_score) const {
    const std::int32_t n_a = database_.number_of_bands_in_clone_get(a), n_b = database_.number_of_bands_in_clone_get(b);
    const std::int32_t least = std::min(n_a, n_b);
    if (least < least_bands)
      return false;
    const std::int32_t k = common_bands(database_.bands_of_clone(a), database_.bands_of_clone(b), t_);
    return k >= least_overlap * least && scale_.overlap(k, n_a, n_b) >= least_overlap * least &&
           scale_.score(k, n_a, n_b) >= least_score;
  }

  std::vector<clone_pair> found(const asked_whether_to_go_on &goes_on) const {
    const std::int32_t n = database_.total_number_of_clones_get();
    const std::vector<clone_number> compared = clones_to_compare(n);
    const bool all = static_cast<std::int32_t>(compared.size()) == n;
    const double least_score = std::log10(std::max(1.0, static_cast<double>(compared.size()) * n)) + 1;
    std::vector<clone_pair> pairs;
    for (const clone_number a : compared) {
      if (!goes_on())
        break;
      for (clone_number b = all ? a + 1 : 1; b <= n && pairs.size() < most_pairs; ++b)
        if (a != b && are(a, b, least_score))
          pairs.emplace_back(a, b);
    }
    return pairs;
  }

private:
  const class_DB_of_clones &database_;
  std::int32_t t_;
  band_scale scale_;
};

// Distances up to `most` between the bands of a and of b.
void add_distances(std::span<const band_value> a, std::span<const band_value> b, std::int32_t most,
                   std::vector<std::int64_t> &n_at_distance) {
  std::size_t from = 0;
  for (const band_value band : a) {
    while (from < b.size() && b[from] < band - most)
      ++from;
    for (std::size_t j = from; j < b.size() && b[j] <= band + most; ++j)
      ++n_at_distance[static_cast<std::size_t>(std::abs(b[j] - band))];
  }
}

double sum_of(const std::vector<std::int64_t> &counts, std::size_t from, std::size_t to) {
  return static_cast<double>(
      std::accumulate(counts.begin() + std::ptrdiff_t(from), counts.begin() + std::ptrdiff_t(to), std::int64_t{0}));
}

// Readings of one band that lie at most so far apart, for the first half of the distances.
std::vector<double> readings_up_to(const band_distances &distances) {
  const std::size_t half = distances.alike.size() / 2;
  const double strange = sum_of(distances.strange, half, distances.strange.size());
  const double scale = strange > 0 ? sum_of(distances.alike, half, distances.alike.size()) / strange : 0;
  std::vector<double> readings;
  double sum = 0;
  for (std::size_t d = 0; d < half; ++d)
    readings.push_back(sum += double(distances.alike[d]) - scale * double(distances.strange[d]));
  return readings;
}

} // namespace

band_places::band_places(const class_DB_of_clones &database) {
  const std::int64_t n = database.first_band_adress_get(database.total_number_of_clones_get() + 1) - 1;
  const std::int64_t sampled = std::min(n, most_bands_sampled);
  bands_.reserve(static_cast<std::size_t>(sampled));
  for (std::int64_t i = 0; i < sampled; ++i)
    bands_.push_back(database.band_array()[1 + i * n / sampled]);
  std::sort(bands_.begin(), bands_.end());
}

double band_places::share_within(std::int32_t t) const {
  const auto n = static_cast<double>(bands_.size());
  if (bands_.size() < 2)
    return 0;
  double pairs = 0;
  std::size_t from = 0;
  for (std::size_t i = 0; i < bands_.size(); ++i) {
    while (bands_[i] - bands_[from] > t)
      ++from;
    pairs += static_cast<double>(i - from);
  }
  return 2 * pairs / (n * (n - 1));
}

double band_places::chance_of_match(std::int32_t t, double n) const {
  return 1 - std::pow(1 - std::min(1.0, share_within(t)), n);
}

std::vector<clone_number> clones_to_compare(std::int32_t n) {
  const auto wanted = static_cast<std::int32_t>(n_merges / std::max(n, 1));
  const std::int32_t n_compared = std::min(n, std::max(wanted, fewest_compared));
  std::vector<clone_number> clones;
  for (std::int32_t i = 0; i < n_compared; ++i)
    clones.push_back(1 + static_cast<clone_number>(std::int64_t{i} * n / n_compared));
  return clones;
}

double median_of_band_counts(const class_DB_of_clones &database) {
  std::vector<std::int32_t> counts;
  for (clone_number clone = 1; clone <= database.total_number_of_clones_get(); ++clone)
    counts.push_back(database.number_of_bands_in_clone_get(clone));
  if (counts.empty())
    return 0;
  const auto middle = counts.begin() + static_cast<std::ptrdiff_t>(counts.size() / 2);
  std::nth_element(counts.begin(), middle, counts.end());
  return *middle;
}

reading_spread tolerance_by_distances(const band_distances &distances, const band_places &places, double n) {
  reading_spread spread;
  const std::vector<double> readings = readings_up_to(distances);
  const double sum = readings.empty() ? 0 : readings.back();
  const double deviation = std::sqrt(sum_of(distances.alike, 0, readings.size()));
  if (readings.size() < 2 || sum < least_readings || sum < least_deviations * deviation)
    return spread;
  std::vector<double> information; // of a band, by tolerance
  for (std::size_t d = 0; d < readings.size(); ++d) {
    const double chance = places.chance_of_match(static_cast<std::int32_t>(d), n);
    const double common = usual_share_common * std::clamp(readings[d] / sum, 0.0, 1.0);
    information.push_back(information_of(common + (1 - common) * chance, chance));
  }
  const double enough = share_of_information * *std::max_element(information.begin(), information.end());
  const auto t = std::find_if(information.begin(), information.end(), [&](double told) { return told >= enough; });
  spread.tolerance = std::max(1, static_cast<std::int32_t>(t - information.begin()));
  spread.share_within = std::clamp(readings[static_cast<std::size_t>(spread.tolerance)] / sum, 0.0, 1.0);
  spread.n_readings = std::llround(sum);
  return spread;
}

namespace {

// The readings of one band reach beyond the tolerance; what chance gives has to be seen behind them.
reading_spread spread_of_pairs(const class_DB_of_clones &database, const std::vector<clone_pair> &pairs,
                               const band_places &places, double n) {
  reading_spread spread;
  std::int32_t most = first_width;
  for (int doubling = 0; doubling < most_doublings; ++doubling, most *= 2) {
    band_distances distances(most);
    for (std::size_t i = 0; i < pairs.size(); ++i) {
      const auto bands = database.bands_of_clone(pairs[i].first);
      add_distances(bands, database.bands_of_clone(pairs[i].second), most, distances.alike);
      for (std::size_t k = 1; k <= n_strangers; ++k) { // from other places of the list: mostly of the genome too
        const clone_pair &other = pairs[(i + k * pairs.size() / (n_strangers + 1)) % pairs.size()];
        add_distances(bands, database.bands_of_clone(other.second), most, distances.strange);
      }
    }
    const reading_spread wider = tolerance_by_distances(distances, places, n);
    if (wider.tolerance > 0)
      spread = wider;
    if (spread.tolerance > 0 && tolerances_looked_at * spread.tolerance <= most)
      break;
  }
  return spread;
}

reading_spread spread_at(const class_DB_of_clones &database, const band_places &places, double n, std::int32_t rough,
                         const asked_whether_to_go_on &goes_on) {
  const alike_clones alike(database, places, n, rough);
  std::vector<clone_pair> pairs;
  for (const clone_pair &pair : pairs_of_one_name(database)) // one name on two clones is a mistake, not two readings
    if (alike.are(pair.first, pair.second, 0))
      pairs.push_back(pair);
  const bool of_one_name = pairs.size() >= enough_of_one_name;
  if (!of_one_name)
    pairs = alike.found(goes_on);
  reading_spread spread = spread_of_pairs(database, pairs, places, n);
  spread.n_pairs = static_cast<std::int32_t>(pairs.size());
  spread.of_one_name = of_one_name;
  return spread;
}

} // namespace

// Where a rough tolerance is too small, only clones that were read alike by luck are found with it. The one that finds
// most speaks for the library.
reading_spread spread_of_readings(const class_DB_of_clones &database, const asked_whether_to_go_on &goes_on) {
  const band_places places(database);
  const double n = median_of_band_counts(database);
  reading_spread best;
  std::int32_t before = 0;
  for (const double chance : rough_chances) {
    const std::int32_t rough = rough_tolerance(places, n, chance);
    if (rough == before || !goes_on())
      continue;
    before = rough;
    const reading_spread found = spread_at(database, places, n, rough, goes_on);
    if (best.n_pairs == 0 || found.n_pairs > clearly_more * best.n_pairs)
      best = found;
    if (best.tolerance > 0 && best.tolerance <= rough && static_cast<std::size_t>(best.n_pairs) == most_pairs)
      break;
  }
  return best;
}

} // namespace orb
