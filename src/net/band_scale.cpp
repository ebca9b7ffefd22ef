#include "net/band_scale.h"

#include "frame/random_source.h"
#include "metrics/band_merge.h"
#include "metrics/class_clone_dist_FPC.h"

namespace orb {

namespace {

constexpr std::int32_t n_drawn_pairs = 20000;
constexpr int n_refinements = 10;
constexpr double reference_bands = 110;
constexpr double least_positions = 10, most_positions = 1e7;

struct drawn_pair {
  double common = 0, product = 0; // of the numbers of bands
};

std::vector<drawn_pair> draw_pairs(const clone_bands &clones, std::uint64_t seed) {
  std::vector<drawn_pair> pairs;
  random_source chance(seed, 0x5ca1e);
  for (std::int32_t i = 0; clones.n > 1 && i < n_drawn_pairs; ++i) {
    const clone_number a = chance.number_up_to(clones.n), b = chance.number_up_to(clones.n);
    const double product = static_cast<double>(clones.count(a)) * clones.count(b);
    if (a != b && product > 0)
      pairs.push_back({static_cast<double>(common_bands(clones.of(a), clones.of(b), clones.t)), product});
  }
  return pairs;
}

// Pairs that truly overlap are those with far more common bands than chance gives: they are left out, which changes
// what chance gives, and so on.
double positions_of(const std::vector<drawn_pair> &pairs) {
  double n = 0;
  for (int round = 0; round <= n_refinements; ++round) {
    double common = 0, product = 0;
    for (const drawn_pair &pair : pairs) {
      const double expected = round == 0 ? 0 : pair.product / n;
      if (round > 0 && pair.common > expected + 3 * std::sqrt(expected) + 1)
        continue;
      common += pair.common;
      product += pair.product;
    }
    if (!(common > 0))
      return n > 0 ? n : most_positions;
    n = std::clamp(product / common, least_positions, most_positions);
  }
  return n;
}

} // namespace

clone_bands::clone_bands(const class_DB_of_clones &of)
    : database(&of), n(of.total_number_of_clones_get()),
      t(of.taking_tollerance_into_account_index_get() > 0 ? of.tollerance_get() : 0) {}

double band_scale::score(std::int32_t k, std::int32_t n_1, std::int32_t n_2) const {
  if (k < 1 || n_1 < 1 || n_2 < 1)
    return 0;
  return class_clone_dist_FPC::minus_log10_p_value_of_positions(k, n_1, n_2, n_positions);
}

double band_scale::overlap(std::int32_t k, std::int32_t n_1, std::int32_t n_2) const {
  const double most = std::min(n_1, n_2);
  double o = k / shown_again;
  for (int round = 0; round < 4; ++round) {
    const double by_chance = std::max(0.0, n_1 - o) * std::max(0.0, n_2 - o) / n_positions;
    o = std::max(0.0, (k - by_chance) / shown_again);
  }
  return std::min(o, most);
}

band_scale band_scale_of(const clone_bands &clones, std::uint64_t seed) {
  band_scale scale;
  scale.n_positions = positions_of(draw_pairs(clones, seed));
  const double n = clones.n;
  scale.cutoff = std::log10(std::max(1.0, n * (n - 1) / 2)) + 1;
  std::vector<std::int32_t> counts;
  for (clone_number clone = 1; clone <= clones.n; ++clone)
    counts.push_back(clones.count(clone));
  if (counts.empty())
    return scale;
  const auto middle = counts.begin() + static_cast<std::ptrdiff_t>(counts.size() / 2);
  std::nth_element(counts.begin(), middle, counts.end());
  scale.median_bands = *middle;
  scale.l = std::clamp(scale.median_bands / reference_bands, 1 / reference_bands, 1.0);
  scale.r = std::sqrt(scale.l);
  return scale;
}

std::int32_t positions_of_library(const band_scale &scale) {
  return static_cast<std::int32_t>(std::lround(scale.n_positions));
}

double cutoff_of_net(const band_scale &scale) {
  return std::floor(scale.weak_cutoff() * 100) / 100; // rounded down: the net has all that the layout looks at
}

least_common_table::least_common_table(const clone_bands &clones, const band_scale &scale, double cutoff) {
  std::int32_t most = 0;
  std::vector<char> occurs;
  for (clone_number clone = 1; clone <= clones.n; ++clone) {
    most = std::max(most, clones.count(clone));
    occurs.resize(static_cast<std::size_t>(most) + 1, 0);
    occurs[static_cast<std::size_t>(clones.count(clone))] = 1;
  }
  width_ = static_cast<std::size_t>(most) + 1;
  table_.assign(width_ * width_, 1);
  for (std::size_t a = 1; a < width_; ++a) {
    std::int32_t k = 1; // can't fall when the other clone grows
    for (std::size_t b = a; b < width_; ++b) {
      if (occurs[a] == 0 || occurs[b] == 0)
        continue;
      while (k <= static_cast<std::int32_t>(a) &&
             scale.score(k, static_cast<std::int32_t>(a), static_cast<std::int32_t>(b)) < cutoff)
        ++k;
      table_[a * width_ + b] = table_[b * width_ + a] = static_cast<std::int16_t>(k);
    }
  }
}

} // namespace orb
