#include "pools/pool_hypotheses.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <numeric>
#include <set>

namespace orb {

namespace {

constexpr std::size_t most_seeds = 40;            // places to begin with
constexpr std::size_t most_next_seeds = 20;       // the same for each further place
constexpr double least_gain = 1e-9;               // of a place that is grown again
constexpr std::size_t most_kept = 8;              // hypotheses that get a further place
constexpr double chance_of_member_at_seed = 0.45; // that a neighbour of a clone of the place is positive too
constexpr double weight_of_absent = 0.7;          // neighbours that are no members aren't independent of each other

// Logarithms of the chance that a clone which overlaps `adjacent` of `n` members of a place covers it, and that it
// doesn't: it rises with the share.
class chances_of_members {
public:
  chances_of_members() {
    for (std::size_t adjacent = 0; adjacent <= most; ++adjacent)
      for (std::size_t n = 0; n <= most; ++n) {
        const double share = (static_cast<double>(adjacent) + 0.5) / (static_cast<double>(n) + 1.0);
        const double p = 1 / (1 + std::exp(2.8 - 4.5 * share));
        ln_yes_[adjacent][n] = std::log(p);
        ln_no_[adjacent][n] = std::log(1 - p);
      }
  }
  double ln_yes(std::int32_t adjacent, std::int32_t n) const { return ln_yes_[place(adjacent)][place(n)]; }
  double ln_no(std::int32_t adjacent, std::int32_t n) const { return ln_no_[place(adjacent)][place(n)]; }

private:
  static constexpr std::size_t most = 48; // clones of a hypothesis
  static std::size_t place(std::int32_t n) { return std::min(static_cast<std::size_t>(n), most); }

  std::array<std::array<double, most + 1>, most + 1> ln_yes_{}, ln_no_{};
};
const chances_of_members chances;

} // namespace

std::vector<clone_number> pool_hypothesis::clones() const {
  std::vector<clone_number> all;
  for (const auto &place : places)
    all.insert(all.end(), place.begin(), place.end());
  std::sort(all.begin(), all.end());
  all.erase(std::unique(all.begin(), all.end()), all.end());
  return all;
}

pool_hypotheses::pool_hypotheses(const class_pools3D &pools, class_clone_net_signif &signif, const overlap_rule &rule,
                                 const hypothesis_options &options)
    : pools_(pools), options_(options) {
  pools_.pool_error_rates_set(options.missing_rate, options.false_rate);
  number_list place_of_vertex; // the list is ascending: the identity
  signif.create_net_general_run(pools_.coded_clones(), rule, net_, place_of_vertex);
  number_the_pools();
  make_costs();
}

void pool_hypotheses::number_the_pools() {
  place_.assign(1, {});
  pools_of_.assign(1, {});
  for (const clone_number clone : pools_.coded_clones().members()) {
    pool_place place{};
    pools_.find_clone_in_pools(clone, place);
    place_.push_back(place);
    std::array<std::int32_t, 3> pools_of{};
    std::int32_t first = 0;
    for (std::size_t d = 0; d < n_pool_dimensions; ++d) {
      pools_of[d] = first + place[d] - 1;
      first += pools_.sizes()[d];
    }
    pools_of_.push_back(pools_of);
    n_pools_ = static_cast<std::size_t>(first);
  }
}

// Every pool has the same rates here.
void pool_hypotheses::make_costs() {
  constexpr double cost_without_clones = 1000; // of a positive pool, which can't be then
  const double ln_missing = std::log(options_.missing_rate), ln_no_false = std::log(1 - options_.false_rate);
  for (std::int32_t c = 0; c <= most_clones; ++c)
    for (std::int32_t n = 0; n <= most_clones; ++n) {
      const double ln_negative = c * ln_missing + std::max(n - c, 0) * ln_no_false;
      const auto i = static_cast<std::size_t>(c), j = static_cast<std::size_t>(n);
      cost_of_pool_[0][i][j] = -ln_negative;
      cost_of_pool_[1][i][j] = ln_negative < 0 ? -std::log(1 - std::exp(ln_negative)) : cost_without_clones;
    }
}

// The search for one probe. Sets of clones are sets of vertices of the net of coded clones.
class hypothesis_search {
public:
  hypothesis_search(const pool_hypotheses &of, const positive_pools &positive) : of_(of), positive_(positive) {
    n_adjacent_.assign(of.place_.size(), 0);
    is_member_.assign(of.place_.size(), 0);
    prepare_pools();
    find_candidates();
  }

  std::vector<pool_hypothesis> run() {
    if (n_positive_ == 0)
      return {};
    std::vector<state> frontier{nothing()};
    for (std::int32_t level = 1; level <= of_.options_.max_places && !frontier.empty(); ++level)
      frontier = with_one_place_more(frontier, level == 1 ? most_seeds : most_next_seeds);
    return best_of_all();
  }

  double cost_of(const std::vector<std::vector<clone_number>> &places) {
    state made = nothing();
    const std::span<const clone_number> coded = of_.pools_.coded_clones().members();
    for (const std::vector<clone_number> &clones : places) {
      vertices place;
      for (const clone_number clone : clones)
        place.push_back(
            static_cast<vertex_number>(std::lower_bound(coded.begin(), coded.end(), clone) - coded.begin()) + 1);
      made = laid(made, place);
    }
    return made.cost;
  }

private:
  static constexpr std::int32_t most_clones = pool_hypotheses::most_clones;
  using vertices = std::vector<vertex_number>;
  // A hypothesis in the making.
  struct state {
    std::vector<std::int32_t> count; // clones by pool
    std::vector<vertices> places;
    std::vector<double> costs_of_places;
    double cost = 0;
    std::int32_t n() const {
      std::int32_t sum = 0;
      for (const vertices &place : places)
        sum += static_cast<std::int32_t>(place.size());
      return sum;
    }
  };

  state nothing() const { return {std::vector<std::int32_t>(of_.n_pools_, 0), {}, {}, 0}; }

  void prepare_pools() {
    for (std::size_t d = 0; d < n_pool_dimensions; ++d)
      for (std::int32_t pool = 1; pool <= of_.pools_.sizes()[d]; ++pool)
        is_positive_.push_back(positive_.has(d, pool));
    n_positive_ = positive_.count();
  }
  double cost_of(std::size_t pool, std::int32_t c, std::int32_t n) const {
    return of_.cost_of_pool_[is_positive_[pool] ? 1 : 0][static_cast<std::size_t>(c)][static_cast<std::size_t>(n)];
  }
  double score_of(const std::vector<std::int32_t> &count, std::int32_t n) const {
    double score = 0;
    for (std::size_t pool = 0; pool < count.size(); ++pool)
      score += cost_of(pool, count[pool], n);
    return score;
  }
  // How the score of n + 1 clones changes by a clone in its three pools.
  double change_by(const std::vector<std::int32_t> &count, vertex_number v, std::int32_t n) const {
    double change = 0;
    for (const std::int32_t pool : of_.pools_of_[static_cast<std::size_t>(v)]) {
      const std::int32_t c = count[static_cast<std::size_t>(pool)];
      change += cost_of(static_cast<std::size_t>(pool), c + 1, n) - cost_of(static_cast<std::size_t>(pool), c, n);
    }
    return change;
  }
  void put(std::vector<std::int32_t> &count, vertex_number v, std::int32_t change) const {
    for (const std::int32_t pool : of_.pools_of_[static_cast<std::size_t>(v)])
      count[static_cast<std::size_t>(pool)] += change;
  }
  bool is_usable(vertex_number v) const { return n_positive_of_[static_cast<std::size_t>(v)] >= 2; }

  // Places to begin with: clones whose three pools are positive, or two of them where those are few; how much better
  // their neighbours show than clones by chance.
  void find_candidates() {
    const auto n = static_cast<vertex_number>(of_.place_.size()) - 1;
    n_positive_of_.assign(of_.place_.size(), 0);
    std::array<std::int32_t, 4> n_with{};
    for (vertex_number v = 1; v <= n; ++v)
      ++n_with[static_cast<std::size_t>(n_positive_of_[static_cast<std::size_t>(v)] = static_cast<std::int8_t>(
                                            positive_.n_of(of_.place_[static_cast<std::size_t>(v)])))];
    const std::int32_t least = n_with[3] < static_cast<std::int32_t>(most_seeds) ? 2 : 3;
    const double chance = std::clamp(n_with[3] / double(std::max(n, 1)), 1e-4, 0.4);
    const double weight_yes = std::log(chance_of_member_at_seed / chance);
    const double weight_no = std::log((1 - chance_of_member_at_seed) / (1 - chance));
    for (vertex_number v = 1; v <= n; ++v) {
      if (n_positive_of_[static_cast<std::size_t>(v)] < least)
        continue;
      double weight = 0;
      for (const net_edge &edge : of_.net_.edges_of_vertex(v))
        weight += n_positive_of_[static_cast<std::size_t>(edge.neighbour)] == 3 ? weight_yes : weight_no;
      if (n_positive_of_[static_cast<std::size_t>(v)] == 2)
        weight += std::log(of_.options_.missing_rate);
      seeds_.push_back({v, weight});
    }
  }

  std::vector<vertex_number> seeds_for(const state &base, std::size_t most) const {
    std::vector<std::pair<double, vertex_number>> order;
    std::set<vertex_number> members;
    for (const vertices &place : base.places)
      members.insert(place.begin(), place.end());
    const std::int32_t n = base.n();
    for (const seed &one : seeds_)
      if (!members.contains(one.v))
        order.emplace_back(-one.weight + (n > 0 ? change_by(base.count, one.v, n + 1) : 0), one.v);
    const std::size_t taken = std::min(most, order.size());
    std::partial_sort(order.begin(), order.begin() + static_cast<std::ptrdiff_t>(taken), order.end());
    std::vector<vertex_number> made;
    for (std::size_t i = 0; i < taken; ++i)
      made.push_back(order[i].second);
    return made;
  }

  std::vector<state> with_one_place_more(const std::vector<state> &frontier, std::size_t n_seeds) {
    std::vector<state> made;
    for (const state &base : frontier)
      for (const vertex_number v : seeds_for(base, n_seeds))
        if (state grown = grown_at(base, v); !grown.places.empty())
          if (const auto key = key_of(grown); known_.emplace(key, grown).second)
            made.push_back(std::move(grown));
    std::stable_sort(made.begin(), made.end(), [](const state &a, const state &b) { return a.cost < b.cost; });
    if (made.size() > most_kept)
      made.resize(most_kept);
    for (state &one : made)
      if (refine(one))
        known_.emplace(key_of(one), one);
    return made;
  }

  // A place that was grown first also took clones for the pools of those that came later, and clones that no longer pay
  // once others are in: each place is made anew among the others as long as that costs less. False when nothing
  // changed.
  bool refine(state &made) {
    bool is_changed = false;
    // what is made anew stands last, so that the first one is always the one that was left longest
    for (std::size_t n_kept = 0; n_kept < made.places.size();) {
      state best = made_anew(made);
      if (best.cost < made.cost - least_gain) {
        is_changed = true;
        n_kept = 0;
      } else {
        ++n_kept;
      }
      made = std::move(best);
    }
    return is_changed;
  }

  // The cheapest of: the first place as it is, without one of its members, grown from one of them.
  state made_anew(const state &from) {
    const vertices place = from.places.front();
    state base = from;
    for (const vertex_number v : place)
      put(base.count, v, -1);
    base.places.erase(base.places.begin());
    base.costs_of_places.erase(base.costs_of_places.begin());
    state best = laid(base, place);
    const auto look_at = [&](state other) {
      if (!other.places.empty() && other.cost < best.cost - least_gain)
        best = std::move(other);
    };
    for (const vertex_number v : place) {
      vertices rest = place;
      std::erase(rest, v);
      if (!rest.empty())
        look_at(laid(base, rest));
      look_at(grown_at(base, v));
    }
    return best;
  }

  // With these clones as one place more.
  state laid(const state &base, const vertices &members) {
    state made = base;
    begin_place(base);
    vertices place;
    for (const vertex_number v : members)
      take(made, place, v);
    close_place(made, place, score_of(made.count, base.n() + static_cast<std::int32_t>(place.size())));
    return made;
  }

  static std::vector<vertices> key_of(const state &made) {
    std::vector<vertices> key = made.places;
    std::sort(key.begin(), key.end());
    return key;
  }

  // Adds clones around a seed as long as that costs less.
  state grown_at(const state &base, vertex_number seed_vertex) {
    state made = base;
    std::int32_t n = base.n();
    if (n + 1 > most_clones)
      return {};
    begin_place(base);
    vertices place;
    double cost = 0;
    for (vertex_number v = seed_vertex; v != 0; v = n < most_clones ? best_to_add(made, place, n, cost) : 0) {
      take(made, place, v);
      cost = score_of(made.count, ++n);
    }
    close_place(made, std::move(place), cost);
    return made;
  }

  void take(state &made, vertices &place, vertex_number v) {
    place.push_back(v);
    is_member_[static_cast<std::size_t>(v)] = 1;
    put(made.count, v, 1);
    for (const net_edge &edge : of_.net_.edges_of_vertex(v))
      if (n_adjacent_[static_cast<std::size_t>(edge.neighbour)]++ == 0)
        adjacent_.push_back(edge.neighbour);
  }

  void close_place(state &made, vertices place, double cost_of_pools) {
    std::sort(place.begin(), place.end());
    made.costs_of_places.push_back(cost_of_place(place));
    made.cost = std::accumulate(made.costs_of_places.begin(), made.costs_of_places.end(), cost_of_pools);
    made.places.push_back(std::move(place));
  }

  // Nothing of the place before is left in the tables; members of the other places are known.
  void begin_place(const state &base) {
    for (const vertex_number v : adjacent_)
      n_adjacent_[static_cast<std::size_t>(v)] = 0;
    adjacent_.clear();
    std::fill(is_member_.begin(), is_member_.end(), char{0});
    for (const vertices &members : base.places)
      for (const vertex_number v : members)
        is_member_[static_cast<std::size_t>(v)] = 1;
  }
  std::int32_t n_adjacent(vertex_number v) const { return n_adjacent_[static_cast<std::size_t>(v)]; }

  // The neighbour of the place in hand by which the n clones would cost least, the first one of equals; 0 when none
  // lowers the cost.
  vertex_number best_to_add(const state &made, const vertices &place, std::int32_t n, double cost) const {
    const double with_one_more = score_of(made.count, n + 1);
    const auto k = static_cast<std::int32_t>(place.size());
    vertex_number taken = 0;
    for (const vertex_number v : adjacent_) {
      if (!is_usable(v) || is_member_[static_cast<std::size_t>(v)] != 0)
        continue;
      const double would = with_one_more + change_by(made.count, v, n + 1) + chances.ln_no(n_adjacent(v), k) -
                           chances.ln_yes(n_adjacent(v), k);
      if (would < cost || (taken != 0 && would == cost && v < taken)) {
        cost = would;
        taken = v;
      }
    }
    return taken;
  }

  // Of `place` by itself, which was the last to be grown.
  double cost_of_place(const vertices &place) {
    const auto k = static_cast<std::int32_t>(place.size());
    double cost = std::log(double(of_.place_.size()));
    std::sort(adjacent_.begin(), adjacent_.end()); // sums don't depend on the way by which it grew
    for (const vertex_number v : adjacent_)
      if (!std::binary_search(place.begin(), place.end(), v))
        cost -= weight_of_absent * chances.ln_no(n_adjacent(v), k);
    if (k > 1)
      for (const vertex_number v : place)
        cost -= chances.ln_yes(n_adjacent(v), k - 1);
    return cost;
  }

  // Those at other places than a better one with as many of them.
  std::vector<pool_hypothesis> best_of_all() const {
    std::vector<const state *> order;
    for (const auto &[key, made] : known_)
      order.push_back(&made);
    std::stable_sort(order.begin(), order.end(), [](const state *a, const state *b) { return a->cost < b->cost; });
    std::vector<const state *> kept;
    for (const state *one : order) {
      if (kept.size() == static_cast<std::size_t>(of_.options_.best))
        break;
      if (std::none_of(kept.begin(), kept.end(), [&](const state *other) { return same_places(*one, *other); }))
        kept.push_back(one);
    }
    std::vector<pool_hypothesis> made;
    double sum = 0;
    for (const state *one : kept)
      sum += std::exp(kept.front()->cost - one->cost);
    for (const state *one : kept) {
      made.push_back(hypothesis_of(*one));
      made.back().share = std::exp(kept.front()->cost - one->cost) / sum;
    }
    return made;
  }

  static bool same_places(const state &a, const state &b) {
    const auto shares = [](const vertices &x, const vertices &y) {
      return std::any_of(x.begin(), x.end(),
                         [&](vertex_number v) { return std::binary_search(y.begin(), y.end(), v); });
    };
    return a.places.size() == b.places.size() && std::all_of(a.places.begin(), a.places.end(), [&](const vertices &x) {
             return std::any_of(b.places.begin(), b.places.end(), [&](const vertices &y) { return shares(x, y); });
           });
  }

  pool_hypothesis hypothesis_of(const state &of) const {
    pool_hypothesis made;
    for (const vertices &place : key_of(of)) {
      made.places.emplace_back();
      for (const vertex_number v : place)
        made.places.back().push_back(of_.pools_.coded_clones()(v));
    }
    made.cost = of.cost;
    of_.pools_.putatively_positive_clones_based_on_likelyhood(made.clones(), positive_, made.score, made.exact,
                                                              made.all_explained);
    return made;
  }

  struct seed {
    vertex_number v;
    double weight;
  };

  const pool_hypotheses &of_;
  const positive_pools &positive_;
  std::vector<bool> is_positive_; // by pool through all dimensions
  std::int32_t n_positive_ = 0;
  std::vector<std::int8_t> n_positive_of_; // of the three pools, by vertex
  std::vector<seed> seeds_;
  vertices adjacent_;                    // clones that overlap members of the place in hand
  std::vector<std::int32_t> n_adjacent_; // how many of these, by vertex
  std::vector<char> is_member_;          // of any place of the hypothesis in hand, by vertex
  std::map<std::vector<vertices>, state> known_;
};

std::vector<pool_hypothesis> pool_hypotheses::ranked(const positive_pools &positive) const {
  return hypothesis_search(*this, positive).run();
}

double pool_hypotheses::cost_of(const positive_pools &positive,
                                const std::vector<std::vector<clone_number>> &places) const {
  return hypothesis_search(*this, positive).cost_of(places);
}

} // namespace orb
