#include "simulation/order_quality.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace orb {

namespace {

std::int64_t pairs_among(std::int64_t n) {
  return n * (n - 1) / 2;
}

// Pairs of a sorted sequence whose members `same` holds equal.
template <class Same> std::int64_t tied_pairs(std::span<const order_point> sorted, Same same) {
  std::int64_t tied = 0;
  for (std::size_t begin = 0, end = 0; begin < sorted.size(); begin = end) {
    while (end < sorted.size() && same(sorted[begin], sorted[end]))
      ++end;
    tied += pairs_among(static_cast<std::int64_t>(end - begin));
  }
  return tied;
}

// Sorts by truth and counts the pairs that stood in the wrong order.
std::int64_t exchanges_of_sort(std::vector<order_point> &points) {
  std::vector<order_point> merged(points.size());
  std::int64_t exchanges = 0;
  for (std::size_t width = 1; width < points.size(); width *= 2) {
    for (std::size_t begin = 0; begin < points.size(); begin += 2 * width) {
      const std::size_t middle = std::min(begin + width, points.size()), end = std::min(middle + width, points.size());
      std::size_t left = begin, right = middle;
      for (std::size_t to = begin; to < end; ++to) {
        const bool from_right = left == middle || (right < end && points[right].truth < points[left].truth);
        if (from_right && left < middle)
          exchanges += static_cast<std::int64_t>(middle - left);
        merged[to] = points[from_right ? right++ : left++];
      }
    }
    points.swap(merged);
  }
  return exchanges;
}

} // namespace

double rank_pairs::tau() const {
  if (untied_map == 0 || untied_truth == 0)
    return 0;
  return static_cast<double>(concordant - discordant) /
         (std::sqrt(static_cast<double>(untied_map)) * std::sqrt(static_cast<double>(untied_truth)));
}

rank_pairs rank_pairs_of(std::vector<order_point> points) {
  std::sort(points.begin(), points.end(), [](const order_point &a, const order_point &b) {
    return a.map != b.map ? a.map < b.map : a.truth < b.truth;
  });
  const auto same_map = [](const order_point &a, const order_point &b) { return a.map == b.map; };
  const auto same_truth = [](const order_point &a, const order_point &b) { return a.truth == b.truth; };
  const std::int64_t all = pairs_among(static_cast<std::int64_t>(points.size()));
  const std::int64_t tied_map = tied_pairs(points, same_map);
  const std::int64_t tied_both = tied_pairs(
      points, [&](const order_point &a, const order_point &b) { return same_map(a, b) && same_truth(a, b); });
  rank_pairs counts;
  counts.discordant = exchanges_of_sort(points);
  const std::int64_t tied_truth = tied_pairs(points, same_truth);
  counts.concordant = all - tied_map - tied_truth + tied_both - counts.discordant;
  counts.untied_map = all - tied_map;
  counts.untied_truth = all - tied_truth;
  return counts;
}

std::optional<double> order_quality::tau() const {
  if (untied <= 0)
    return std::nullopt;
  return static_cast<double>(concordant - discordant) / untied;
}

void order_quality::add(const order_quality &other) {
  n_clones += other.n_clones;
  n_neighbours += other.n_neighbours;
  n_out_of_order += other.n_out_of_order;
  n_apart += other.n_apart;
  shift += other.shift;
  concordant += other.concordant;
  discordant += other.discordant;
  untied += other.untied;
}

order_quality order_quality_of(std::vector<order_point> points) {
  order_quality found;
  found.n_clones = static_cast<std::int32_t>(points.size());
  std::stable_sort(points.begin(), points.end(),
                   [](const order_point &a, const order_point &b) { return a.map < b.map; });
  std::int32_t n_up = 0, n_down = 0;
  std::int64_t shift_up = 0, shift_down = 0;
  for (std::size_t i = 1; i < points.size(); ++i) {
    const std::int64_t step = points[i].truth - points[i - 1].truth;
    if (step == 0 || points[i].map == points[i - 1].map)
      continue;
    ++(step > 0 ? n_up : n_down);
    (step > 0 ? shift_up : shift_down) += std::abs(step);
  }
  rank_pairs counts = rank_pairs_of(std::move(points));
  found.untied =
      std::sqrt(static_cast<double>(counts.untied_map)) * std::sqrt(static_cast<double>(counts.untied_truth));
  const bool reversed =
      counts.discordant > counts.concordant || (counts.discordant == counts.concordant && n_down > n_up);
  if (reversed) {
    std::swap(counts.concordant, counts.discordant);
    std::swap(n_up, n_down);
    std::swap(shift_up, shift_down);
  }
  found.n_neighbours = n_up + n_down;
  found.n_out_of_order = n_down;
  found.shift = shift_down;
  found.concordant = counts.concordant;
  found.discordant = counts.discordant;
  return found;
}

} // namespace orb
