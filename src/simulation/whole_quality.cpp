#include "simulation/whole_quality.h"

#include <algorithm>
#include <cmath>

#include "simulation/order_quality.h"
#include "simulation/path_quality.h"

namespace orb {

namespace {

constexpr double tau_of_a_right_order = 0.9;
constexpr double far_apart = 2; // bands on the map

// Pairs of a member of the first and one of the second that stands left of it; both ascend by truth.
double descending_pairs(std::span<const order_point> first, std::span<const order_point> second) {
  double n = 0;
  for (const order_point &a : first)
    n += static_cast<double>(std::lower_bound(second.begin(), second.end(), a.truth,
                                              [](const order_point &b, std::int64_t x) { return b.truth < x; }) -
                             second.begin());
  return n;
}

void sort_by_map(std::vector<order_point> &points) {
  std::sort(points.begin(), points.end(), [](const order_point &a, const order_point &b) {
    return a.map != b.map ? a.map < b.map : a.truth < b.truth;
  });
}

// Expected neighbours out of order when points of equal map value stand in random order.
neighbour_order expected_order(std::vector<order_point> points) {
  neighbour_order found;
  found.n = points.empty() ? 0 : static_cast<double>(points.size()) - 1;
  sort_by_map(points);
  std::span<const order_point> before;
  for (std::size_t begin = 0, end = 0; begin < points.size(); begin = end) {
    while (end < points.size() && points[end].map == points[begin].map)
      ++end;
    const std::span<const order_point> here(points.data() + begin, end - begin);
    const auto n = static_cast<double>(here.size());
    found.out += descending_pairs(here, here) / n; // of n - 1 neighbours, each any pair of the n in any order
    if (!before.empty()) {
      const double out = descending_pairs(before, here) / (static_cast<double>(before.size()) * n);
      found.out += out;
      if (here.front().map - before.front().map >= far_apart) {
        found.n_far += 1;
        found.out_far += out;
      }
    }
    before = here;
  }
  return found;
}

std::int32_t turned_runs(std::vector<order_point> points) {
  sort_by_map(points);
  std::int32_t runs = 0;
  bool was_out = false;
  for (std::size_t i = 1; i < points.size(); ++i) {
    const bool out = points[i].truth < points[i - 1].truth;
    runs += out && !was_out;
    was_out = out;
  }
  return runs;
}

} // namespace

void neighbour_order::add(const neighbour_order &other) {
  n += other.n;
  out += other.out;
  n_far += other.n_far;
  out_far += other.out_far;
  floor += other.floor;
}

void whole_quality::add(const whole_quality &other) {
  n_clones += other.n_clones;
  clones_by_tau += other.clones_by_tau;
  n_clones_right += other.n_clones_right;
  n_turned += other.n_turned;
  n_wrong += other.n_wrong;
  lefts.add(other.lefts);
  centres.add(other.centres);
  n_path += other.n_path;
  n_fewest += other.n_fewest;
  length_of_paths += other.length_of_paths;
}

whole_quality whole_quality_of(const std::vector<whole_point> &points) {
  whole_quality quality;
  if (points.empty())
    return quality;
  quality.n_clones = static_cast<std::int32_t>(points.size());
  std::vector<order_point> centres, lefts;
  for (const whole_point &p : points)
    centres.push_back({p.left + p.right, p.begin + p.end});
  const rank_pairs pairs = rank_pairs_of(centres);
  const bool turned = pairs.discordant > pairs.concordant;
  double low = points.front().left, high = points.front().right;
  true_position begin = points.front().begin, end = points.front().end;
  for (const whole_point &p : points) {
    low = std::min(low, p.left);
    high = std::max(high, p.right);
    begin = std::min(begin, p.begin);
    end = std::max(end, p.end);
    // a contig read backwards has its right ends for left ones
    lefts.push_back({turned ? -p.right : p.left, p.begin});
  }
  if (turned)
    for (order_point &p : centres)
      p.map = -p.map;
  quality.clones_by_tau = std::abs(pairs.tau()) * static_cast<double>(quality.n_clones);
  quality.n_clones_right = std::abs(pairs.tau()) >= tau_of_a_right_order ? quality.n_clones : 0;
  quality.n_turned = turned_runs(centres);
  const double a_band = std::max(1.0, static_cast<double>(end - begin) / std::max(1.0, high - low));
  const auto in_whole_bands = [&](std::vector<order_point> exact, double unit) {
    for (order_point &p : exact)
      p.map = std::floor(static_cast<double>(p.truth - begin) / unit);
    return expected_order(std::move(exact)).out;
  };
  quality.lefts = expected_order(lefts);
  quality.lefts.floor = in_whole_bands(lefts, a_band);
  quality.centres = expected_order(centres);
  quality.centres.floor = in_whole_bands(centres, a_band); // halves of bands: sums of two ends
  return quality;
}

std::int32_t clones_apart(std::vector<true_stretch> of_contig, const true_map &truth) {
  std::vector<true_place> places;
  std::vector<std::int32_t> place_of;
  places_of_stretches(of_contig, places, place_of);
  std::vector<std::int32_t> joined(places.size(), 0); // number of the place with those that it is one with
  for (std::size_t p = 1; p < places.size(); ++p) {
    const bool one = places[p].begin - places[p - 1].end <= gap_of_sequence &&
                     truth.chromosome_of(places[p].begin) == truth.chromosome_of(places[p - 1].begin);
    joined[p] = joined[p - 1] + (one ? 0 : 1);
  }
  std::vector<std::pair<std::int32_t, true_clone>> there; // each clone once a place
  std::vector<true_clone> all;
  for (std::size_t i = 0; i < of_contig.size(); ++i) {
    there.emplace_back(joined[static_cast<std::size_t>(place_of[i])], of_contig[i].clone);
    all.push_back(of_contig[i].clone);
  }
  std::sort(there.begin(), there.end());
  there.erase(std::unique(there.begin(), there.end()), there.end());
  std::sort(all.begin(), all.end());
  all.erase(std::unique(all.begin(), all.end()), all.end());
  std::size_t most = 0;
  for (std::size_t begin = 0, end = 0; begin < there.size(); begin = end) {
    while (end < there.size() && there[end].first == there[begin].first)
      ++end;
    most = std::max(most, end - begin);
  }
  return static_cast<std::int32_t>(all.size() - most);
}

void add_path(std::vector<true_stretch> of_path, std::vector<true_stretch> of_contig, std::int32_t n_path,
              whole_quality &quality) {
  if (of_path.empty())
    return;
  std::vector<true_place> covered, ignored_places;
  std::vector<std::int32_t> ignored;
  places_of_stretches(of_path, covered, ignored);
  places_of_stretches(of_contig, ignored_places, ignored); // sorts them
  quality.n_path += n_path;
  quality.n_fewest += fewest_stretches_covering(of_contig, covered);
  for (const true_place &place : covered)
    quality.length_of_paths += place.length();
}

} // namespace orb
