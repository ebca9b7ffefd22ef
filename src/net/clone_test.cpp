#include "net/clone_test.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numeric>

#include "frame/worker_batch.h"
#include "frame/worker_blocks.h"

namespace orb {

namespace {

constexpr double chance_of_a_tie = 1e-4;
constexpr std::size_t most_poles = 6;
// Members that the smaller side must have, by the clones of the cut.
constexpr std::array<std::int32_t, clone_cut::most_cut + 1> least_members{3, 7, 10, 14};
// Of two clones that hide each other. With fewer neighbours good clones that bridge a thin place look the same. (With
// 25 in place of 15, 90 E. coli libraries have 198 clones sitting wrongly for 142, and 2 % fewer contigs.)
constexpr std::int32_t pair_members = 3, pair_neighbours = 15;

// Neighbours in a place that is deep, or as many as the deepest fifth of the clones has where that are fewer. (Human X
// at 5-fold coverage without chimeras has 32 and 42 suspects in two libraries; by those with 16 neighbours 9 and 8
// chimeras are expected, with 12 8 and 16.)
constexpr double deep_place = 16, deepest_share = 0.2;
// Of a chimera, for one of a good clone: its two parts reach neighbours of two places. (1.2 to 1.6 in three genomes.
// With 1.5 90 E. coli libraries have 186 clones sitting wrongly for 140, and 1 % fewer contigs.)
constexpr double neighbours_of_chimera = 1.4;

constexpr std::int32_t most_common = 512;

// P(k or more) of chance with mean l.
double chance_of(std::int32_t k, double l) {
  double term = std::exp(-l), below = 0;
  for (std::int32_t i = 0; i < k; ++i) {
    below += term;
    term *= l / (i + 1);
  }
  return 1 - below;
}

// By k: the largest mean at which chance gives k common bands or more in fewer than one case in ten thousand.
std::vector<double> largest_means() {
  std::vector<double> means(most_common + 1, 0);
  for (std::int32_t k = 1; k <= most_common; ++k) {
    double low = means[static_cast<std::size_t>(k) - 1], high = k;
    for (int i = 0; i < 40; ++i) {
      const double middle = (low + high) / 2;
      (chance_of(k, middle) < chance_of_a_tie ? low : high) = middle;
    }
    means[static_cast<std::size_t>(k)] = low;
  }
  return means;
}

} // namespace

void clone_neighbourhood::make(const clone_bands &clones, const band_scale &scale, const scored_net &net,
                               clone_number clone, std::span<const char> left_out) {
  n_bands_ = clones.count(clone);
  least_bands_ = std::max(3.0, 6 * scale.r);
  neighbours_.clear();
  chance_.clear();
  poles_.clear();
  for (const scored_edge &edge : net.of(clone))
    if (edge.score >= scale.cutoff && left_out[static_cast<std::size_t>(edge.to)] == 0)
      neighbours_.push_back(edge.to);
  const auto n = static_cast<std::int32_t>(neighbours_.size());
  if (n < fewest || n > most) {
    neighbours_.clear();
    return;
  }
  const std::size_t n_neighbours = neighbours_.size();
  const auto own = clones.of(clone).first(std::min(clones.of(clone).size(), words * 64));
  bands_.assign(n_neighbours, {});
  n_shown_.assign(n_neighbours, 0);
  for (auto &found : common_)
    found.resize(std::max(found.size(), own.size() + 1));
  for (std::size_t u = 0; u < n_neighbours; u += 2) {
    const auto other = u + 1 < n_neighbours ? clones.of(neighbours_[u + 1]) : std::span<const band_value>();
    const auto [n_1, n_2] =
        merge_with_two(own, clones.of(neighbours_[u]), other, clones.t, common_[0].data(), common_[1].data());
    note_shown(own, u, std::span(common_[0]).first(n_1));
    note_shown(own, std::min(u + 1, n_neighbours - 1), std::span(common_[1]).first(n_2));
  }
  for (const clone_number u : neighbours_)
    chance_.push_back(scale.chance_of_match(clones.count(u)));
  tie_neighbours();
  choose_poles();
}

void clone_neighbourhood::note_shown(std::span<const band_value> own, std::size_t u,
                                     std::span<const common_pair> common) {
  for (const common_pair &both : common) {
    const auto i = static_cast<std::size_t>(both.own - own.data());
    bands_[u][i / 64] |= std::uint64_t{1} << (i % 64);
  }
  n_shown_[u] += static_cast<std::int32_t>(common.size());
}

void clone_neighbourhood::tie_neighbours() {
  static const std::vector<double> largest_mean = largest_means();
  const std::size_t n_words = std::min(words, static_cast<std::size_t>(n_bands_) / 64 + 1);
  const std::size_t n = neighbours_.size();
  ties_.assign(n * n, 0);
  tied_to_.resize(std::max(tied_to_.size(), n));
  for (std::size_t u = 0; u < n; ++u)
    tied_to_[u].clear();
  for (std::size_t u = 0; u < n; ++u)
    for (std::size_t v = u + 1; v < n; ++v) {
      std::int32_t common = 0;
      for (std::size_t w = 0; w < n_words; ++w)
        common += std::popcount(bands_[u][w] & bands_[v][w]);
      if (common == 0 ||
          chance_[u] * n_shown_[v] + chance_[v] * n_shown_[u] > largest_mean[static_cast<std::size_t>(common)])
        continue;
      ties_[u * n + v] = ties_[v * n + u] = 1;
      tied_to_[u].push_back(static_cast<std::int32_t>(v));
      tied_to_[v].push_back(static_cast<std::int32_t>(u));
    }
}

// Neighbours with few ties lie far out; they are the poles between which a cut is looked for.
void clone_neighbourhood::choose_poles() {
  std::vector<std::int32_t> order(neighbours_.size());
  std::iota(order.begin(), order.end(), 0);
  const auto ties = [&](std::int32_t u) { return tied_to_[static_cast<std::size_t>(u)].size(); };
  const auto shown = [&](std::int32_t u) { return n_shown_[static_cast<std::size_t>(u)]; };
  std::stable_sort(order.begin(), order.end(), [&](std::int32_t u, std::int32_t v) {
    return ties(u) != ties(v) ? ties(u) < ties(v) : shown(u) > shown(v);
  });
  for (const std::int32_t u : order) {
    if (poles_.size() == most_poles)
      break;
    if (shown(u) >= least_bands_ &&
        std::none_of(poles_.begin(), poles_.end(), [&](std::int32_t pole) { return tied(u, pole); }))
      poles_.push_back(u);
  }
}

// One more walk that shares no vertex with those found: on vertices split into an entry (2v) and an exit (2v + 1),
// along ties and back along walks found.
bool clone_neighbourhood::augment(std::int32_t from, std::int32_t to) {
  const auto n = static_cast<std::int32_t>(neighbours_.size());
  came_from_.assign(2 * static_cast<std::size_t>(n), -1);
  queue_.assign(1, 2 * from + 1);
  came_from_[static_cast<std::size_t>(2 * from + 1)] = 2 * from + 1;
  const auto reach = [&](std::int32_t node, std::int32_t before) {
    if (came_from_[static_cast<std::size_t>(node)] >= 0)
      return;
    came_from_[static_cast<std::size_t>(node)] = before;
    queue_.push_back(node);
  };
  for (std::size_t at = 0; at < queue_.size() && came_from_[static_cast<std::size_t>(2 * to)] < 0; ++at) {
    const std::int32_t node = queue_[at], v = node / 2;
    const auto i = static_cast<std::size_t>(v);
    if (node % 2 == 1) { // exit: along ties, or back through the vertex when a walk goes through it
      for (const std::int32_t w : tied_to_[i])
        if (w != from)
          reach(2 * w, node);
      if (v != from && flow_from_[i] >= 0)
        reach(2 * v, node);
    } else if (flow_from_[i] < 0) { // entry of a free vertex
      reach(2 * v + 1, node);
    } else if (flow_from_[i] != from) { // entry of a used one: back along its walk
      reach(2 * flow_from_[i] + 1, node);
    }
  }
  if (came_from_[static_cast<std::size_t>(2 * to)] < 0)
    return false;
  std::vector<std::pair<std::int32_t, std::int32_t>> added, removed; // ties
  for (std::int32_t node = 2 * to; node != 2 * from + 1; node = came_from_[static_cast<std::size_t>(node)]) {
    const std::int32_t before = came_from_[static_cast<std::size_t>(node)];
    if (before / 2 == node / 2)
      continue;
    (before % 2 == 1 ? added : removed).emplace_back(before / 2, node / 2);
  }
  for (const auto &[v, w] : removed) // the walk w -> v is taken back
    flow_to_[static_cast<std::size_t>(w)] = flow_from_[static_cast<std::size_t>(v)] = -1;
  for (const auto &[v, w] : added) {
    if (v != from)
      flow_to_[static_cast<std::size_t>(v)] = w;
    if (w != to)
      flow_from_[static_cast<std::size_t>(w)] = v;
  }
  return true;
}

std::int32_t clone_neighbourhood::least_cut(std::int32_t from, std::int32_t to, std::vector<std::int32_t> &cut) {
  const std::size_t n = neighbours_.size();
  flow_from_.assign(n, -1);
  flow_to_.assign(n, -1);
  cut.clear();
  std::size_t walks = 0;
  while (augment(from, to))
    if (++walks > clone_cut::most_cut)
      return -1;
  // entries that the last search reached, whose exits it didn't
  for (std::size_t v = 0; v < n; ++v)
    if (came_from_[2 * v] >= 0 && came_from_[2 * v + 1] < 0 && static_cast<std::int32_t>(v) != to)
      cut.push_back(static_cast<std::int32_t>(v));
  return static_cast<std::int32_t>(walks);
}

void clone_neighbourhood::component(std::int32_t pole, std::span<const std::int32_t> cut,
                                    std::vector<std::int32_t> &members) {
  mark_.assign(neighbours_.size(), 0);
  for (const std::int32_t v : cut)
    mark_[static_cast<std::size_t>(v)] = 1;
  members.assign(1, pole);
  mark_[static_cast<std::size_t>(pole)] = 1;
  for (std::size_t at = 0; at < members.size(); ++at)
    for (const std::int32_t w : tied_to_[static_cast<std::size_t>(members[at])])
      if (mark_[static_cast<std::size_t>(w)] == 0) {
        mark_[static_cast<std::size_t>(w)] = 1;
        members.push_back(w);
      }
  std::sort(members.begin(), members.end());
}

std::vector<std::int32_t> clone_neighbourhood::bands_of_side(std::span<const std::int32_t> side) const {
  band_set once{}, twice{};
  for (const std::int32_t u : side)
    for (std::size_t w = 0; w < words; ++w) {
      const std::uint64_t shown = bands_[static_cast<std::size_t>(u)][w];
      twice[w] |= once[w] & shown;
      once[w] |= shown;
    }
  const band_set &counted = side.size() > 1 ? twice : once;
  std::vector<std::int32_t> places;
  for (std::int32_t i = 0; i < n_bands_ && i < static_cast<std::int32_t>(words * 64); ++i)
    if ((counted[static_cast<std::size_t>(i) / 64] >> (i % 64) & 1) != 0)
      places.push_back(i);
  return places;
}

std::int32_t clone_neighbourhood::count_bands(std::span<const std::int32_t> side) const {
  return static_cast<std::int32_t>(bands_of_side(side).size());
}

void clone_neighbourhood::find_cut(clone_cut &best) {
  best = {};
  std::int32_t best_value = 0;
  clone_cut found;
  for (std::size_t p = 0; p < poles_.size(); ++p)
    for (std::size_t q = p + 1; q < poles_.size(); ++q) {
      if (least_cut(poles_[p], poles_[q], found.between) < 0)
        continue;
      component(poles_[p], found.between, found.side_1);
      component(poles_[q], found.between, found.side_2);
      const std::int32_t value = found.n_smaller() - 2 * static_cast<std::int32_t>(found.between.size());
      if (best.exists() && value <= best_value)
        continue;
      if (std::min(count_bands(found.side_1), count_bands(found.side_2)) < least_bands_)
        continue;
      best = found;
      best_value = value;
    }
}

namespace {

// All clones of a library and what is known of each.
class suspect_search {
public:
  suspect_search(const clone_bands &clones, const band_scale &scale, const scored_net &net, int threads,
                 const std::function<bool(double)> &go_on)
      : clones_(clones), scale_(scale), net_(net), threads_(threads), go_on_(go_on),
        found_(static_cast<std::size_t>(clones.n) + 1), marked_(static_cast<std::size_t>(clones.n) + 1, 0),
        places_(static_cast<std::size_t>(worker_count(threads))) {}

  std::vector<clone_suspect> run() {
    std::vector<clone_number> all(static_cast<std::size_t>(clones_.n));
    std::iota(all.begin(), all.end(), 1);
    bool goes_on = test(all);
    for (std::size_t x = 0; goes_on && x <= clone_cut::most_cut; ++x)
      goes_on = mark_until_none_is_new(all, x);
    if (!goes_on)
      return {};
    std::vector<clone_suspect> suspects;
    for (const clone_number clone : all)
      if (marked_[at(clone)] != 0)
        suspects.push_back(found_[at(clone)]);
    for (clone_suspect &pair : pairs_that_hide(all))
      suspects.push_back(std::move(pair));
    std::sort(suspects.begin(), suspects.end(),
              [](const clone_suspect &a, const clone_suspect &b) { return a.clone < b.clone; });
    return suspects;
  }

private:
  static std::size_t at(clone_number clone) { return static_cast<std::size_t>(clone); }

  bool test(const std::vector<clone_number> &clones) {
    constexpr std::int64_t in_item = 32;
    const auto n = static_cast<std::int64_t>(clones.size());
    return run_and_poll((n + in_item - 1) / in_item, threads_,
                        [&](std::int64_t item, int worker, const std::atomic<bool> &stopped) {
                          for (std::int64_t i = (item - 1) * in_item; i < std::min(n, item * in_item) && !stopped; ++i)
                            test_one(clones[static_cast<std::size_t>(i)], places_[static_cast<std::size_t>(worker)]);
                        },
                        [&](std::int64_t done) {
                          return go_on_(n == 0 ? 1 : static_cast<double>(done * in_item) / static_cast<double>(n));
                        });
  }

  void test_one(clone_number clone, clone_neighbourhood &place) {
    clone_cut cut;
    place.make(clones_, scale_, net_, clone, marked_);
    place.find_cut(cut);
    clone_suspect &kept = found_[at(clone)];
    kept = {};
    kept.clone = clone;
    if (!cut.exists() || cut.n_smaller() < pair_members) // never a suspect
      return;
    const auto named = [&](const std::vector<std::int32_t> &members) {
      std::vector<clone_number> names;
      for (const std::int32_t u : members)
        names.push_back(place.neighbours()[static_cast<std::size_t>(u)]);
      return names;
    };
    kept.between = named(cut.between);
    kept.side_1 = named(cut.side_1);
    kept.side_2 = named(cut.side_2);
    kept.bands_1 = place.bands_of_side(cut.side_1);
    kept.bands_2 = place.bands_of_side(cut.side_2);
  }

  static std::int32_t n_smaller(const clone_suspect &kept) {
    return static_cast<std::int32_t>(std::min(kept.side_1.size(), kept.side_2.size()));
  }

  // Each clone taken out may uncover others: those tied through it.
  bool mark_until_none_is_new(const std::vector<clone_number> &all, std::size_t x) {
    std::vector<clone_number> looked_at = all;
    while (!looked_at.empty()) {
      std::vector<clone_number> fresh, touched;
      for (const clone_number clone : looked_at) {
        const clone_suspect &kept = found_[at(clone)];
        if (marked_[at(clone)] == 0 && kept.between.size() <= x &&
            n_smaller(kept) >= least_members[kept.between.size()])
          fresh.push_back(clone);
      }
      for (const clone_number clone : fresh)
        marked_[at(clone)] = 1;
      for (const clone_number clone : fresh)
        for (const scored_edge &edge : net_.of(clone))
          if (marked_[at(edge.to)] == 0 && edge.score >= scale_.cutoff)
            touched.push_back(edge.to);
      std::sort(touched.begin(), touched.end());
      touched.erase(std::unique(touched.begin(), touched.end()), touched.end());
      if (!test(touched))
        return false;
      looked_at = std::move(touched);
    }
    return true;
  }

  // Two chimeras of the same places, each all that ties the other's sides.
  std::vector<clone_suspect> pairs_that_hide(const std::vector<clone_number> &all) {
    const auto is_tied_by_one = [&](const clone_suspect &kept) {
      if (kept.between.size() != 1 || n_smaller(kept) < pair_members || marked_[at(kept.clone)] != 0)
        return false;
      std::int32_t neighbours = 0;
      for (const scored_edge &edge : net_.of(kept.clone))
        neighbours += edge.score >= scale_.cutoff && marked_[at(edge.to)] == 0;
      return neighbours >= pair_neighbours;
    };
    std::vector<clone_suspect> pairs;
    for (const clone_number clone : all) {
      const clone_suspect &kept = found_[at(clone)];
      if (!is_tied_by_one(kept))
        continue;
      const clone_suspect &other = found_[at(kept.between.front())];
      if (!is_tied_by_one(other) || other.between.front() != clone)
        continue;
      pairs.push_back(kept);
      pairs.back().partner = other.clone;
    }
    return pairs;
  }

  const clone_bands &clones_;
  const band_scale &scale_;
  const scored_net &net_;
  int threads_;
  const std::function<bool(double)> &go_on_;
  std::vector<clone_suspect> found_; // by clone, as it was last tested
  std::vector<char> marked_;
  std::vector<clone_neighbourhood> places_;
};

} // namespace

std::vector<clone_suspect> find_suspects(const clone_bands &clones, const band_scale &scale, const scored_net &net,
                                         int threads, const std::function<bool(double)> &go_on) {
  return suspect_search(clones, scale, net, threads, go_on).run();
}

telling_suspects find_telling(const clone_bands &clones, const band_scale &scale, const scored_net &net,
                              std::span<const clone_suspect> suspects) {
  std::vector<std::int32_t> neighbours(static_cast<std::size_t>(clones.n) + 1, 0);
  for (clone_number c = 1; c <= clones.n; ++c)
    for (const scored_edge &edge : net.of(c))
      neighbours[static_cast<std::size_t>(c)] += edge.score >= scale.cutoff;
  std::vector<std::int32_t> ascending(neighbours.begin() + 1, neighbours.end());
  std::sort(ascending.begin(), ascending.end());
  if (ascending.empty())
    return {};
  const double n = clones.n;
  const double of_fifth = ascending[static_cast<std::size_t>((1 - deepest_share) * (n - 1))];
  const double least = std::min(deep_place, neighbours_of_chimera * of_fifth);
  telling_suspects found;
  found.share = static_cast<double>(std::count_if(ascending.begin(), ascending.end(),
                                                  [&](std::int32_t k) { return neighbours_of_chimera * k >= least; })) /
                n;
  for (const clone_suspect &suspect : suspects) // where others tie the sides it is mostly a good one
    if (suspect.between.empty() && neighbours[static_cast<std::size_t>(suspect.clone)] >= least)
      found.clones.push_back(suspect.clone);
  return found;
}

} // namespace orb
