#include "contigs/piece_positions.h"

#include <cmath>
#include <functional>
#include <limits>
#include <queue>

namespace orb {

namespace {

// Rounds of the robust least squares: first on backbone overlaps with a width that narrows, then on all.
struct round_of_solving {
  double sigma; // times r
  bool all_edges;
};
constexpr round_of_solving rounds[] = {{20, false}, {20, false}, {20, false}, {10, false}, {10, false}, {10, false},
                                       {6, false},  {6, false},  {6, false},  {6, false},  {6, true},   {6, true},
                                       {6, true},   {6, true},   {6, true},   {6, true}};
constexpr std::size_t first_round_of_all = 10;
constexpr std::int32_t long_in_ranks = 4000;
constexpr double weight_of_long = 0.02;
// Overlaps of two clones of a stack that are so far apart in the first order are left out: the clones between them say
// the same, and the work grows with the square of the distance.
constexpr auto most_between = static_cast<std::int32_t>(clone_layout::most_overlaps);

} // namespace

bool is_backbone(const clone_layout &layout, clone_number a, const scored_edge &edge) {
  return layout.is_overlap(edge) && !layout.is_suspect(a) && !layout.is_suspect(edge.to) &&
         edge.overlap >= backbone_share * layout.fewer_bands(a, edge.to);
}

void piece_positions::shortest_ways(std::span<const clone_number> members, std::int32_t from,
                                    std::vector<double> &ways) {
  ways.assign(members.size(), std::numeric_limits<double>::infinity());
  using entry = std::pair<double, std::int32_t>;
  std::priority_queue<entry, std::vector<entry>, std::greater<>> next;
  ways[static_cast<std::size_t>(from)] = 0;
  next.emplace(0, from);
  const auto reach = [&](std::int32_t rank, double way) {
    if (way < ways[static_cast<std::size_t>(rank)]) {
      ways[static_cast<std::size_t>(rank)] = way;
      next.emplace(way, rank);
    }
  };
  while (!next.empty()) {
    const auto [way, rank] = next.top();
    next.pop();
    if (way > ways[static_cast<std::size_t>(rank)])
      continue;
    const clone_number a = members[static_cast<std::size_t>(rank)];
    for (const scored_edge &edge : layout_.net.of(a)) {
      const std::int32_t other = rank_[static_cast<std::size_t>(edge.to)];
      if (other < 0 || !is_backbone(layout_, a, edge))
        continue;
      const double step = std::max(0.5 * layout_.scale.r, (layout_.n_of(a) + layout_.n_of(edge.to)) / 2 - edge.overlap);
      reach(other, way + step);
    }
    const auto [from_here, to_here] = std::equal_range(links_.begin(), links_.end(), link{rank, 0, 0},
                                                       [](const link &x, const link &y) { return x.from < y.from; });
    for (auto at = from_here; at != to_here; ++at)
      reach(at->to, way + at->length);
  }
}

void piece_positions::first_centres(std::vector<clone_number> &members) {
  const auto farthest = [&](const std::vector<double> &ways) {
    std::int32_t found = 0;
    for (std::size_t i = 0; i < ways.size(); ++i)
      if (std::isfinite(ways[i]) && ways[i] > ways[static_cast<std::size_t>(found)])
        found = static_cast<std::int32_t>(i);
    return found;
  };
  links_.clear();
  for (const layout_spring &spring : layout_.springs) {
    const std::int32_t a = rank_[static_cast<std::size_t>(spring.a)], b = rank_[static_cast<std::size_t>(spring.b)];
    if (a < 0 || b < 0)
      continue;
    links_.push_back({a, b, spring.distance});
    links_.push_back({b, a, spring.distance});
  }
  std::stable_sort(links_.begin(), links_.end(), [](const link &x, const link &y) { return x.from < y.from; });
  shortest_ways(members, 0, ways_a_);
  const std::int32_t a = farthest(ways_a_);
  shortest_ways(members, a, ways_a_);
  shortest_ways(members, farthest(ways_a_), ways_b_);
  for (std::size_t i = 0; i < members.size(); ++i) {
    const double x = (ways_a_[i] - ways_b_[i]) / 2;
    layout_.centre[static_cast<std::size_t>(members[i])] = std::isfinite(x) ? x : 0;
  }
}

void piece_positions::gather_terms(std::int32_t piece) {
  const auto &members = layout_.pieces[static_cast<std::size_t>(piece)];
  terms_.clear();
  for (const clone_number a : members)
    for (const scored_edge &edge : layout_.net.of(a)) {
      const std::int32_t low = rank_[static_cast<std::size_t>(a)], high = rank_[static_cast<std::size_t>(edge.to)];
      if (high <= low || !layout_.is_overlap(edge))
        continue;
      if (high - low > most_between && layout_.is_of_stack(a) && layout_.is_of_stack(edge.to))
        continue;
      const double not_shared = layout_.fewer_bands(a, edge.to) - edge.overlap;
      const double weight = 1 / (1 + 0.05 / layout_.scale.l * std::max(0.0, not_shared));
      terms_.push_back({low, high, static_cast<float>(layout_.n_of(a)), static_cast<float>(layout_.n_of(edge.to)),
                        edge.overlap, static_cast<float>(weight), is_backbone(layout_, a, edge), false});
    }
  for (const layout_spring &spring : layout_.springs) {
    std::int32_t low = rank_[static_cast<std::size_t>(spring.a)], high = rank_[static_cast<std::size_t>(spring.b)];
    if (low < 0 || high < 0 || low == high)
      continue;
    if (low > high)
      std::swap(low, high);
    terms_.push_back({low, high, 0, 0, static_cast<float>(spring.distance), 1, true, true});
  }
}

void piece_positions::solve_round(std::int32_t piece, double sigma, bool all_edges, const std::atomic<bool> &stopped) {
  const auto &members = layout_.pieces[static_cast<std::size_t>(piece)];
  start_.resize(members.size());
  for (std::size_t i = 0; i < members.size(); ++i)
    start_[i] = layout_.centre[static_cast<std::size_t>(members[i])];
  springs_.clear();
  for (const pair_term &term : terms_) {
    if (!all_edges && !term.backbone)
      continue;
    const double d = start_[static_cast<std::size_t>(term.high)] - start_[static_cast<std::size_t>(term.low)];
    double target = term.overlap, weight = 1; // of a spring: the distance itself
    if (!term.spring) {
      const double inside = std::abs(term.bands_high - term.bands_low) / 2;
      target = (term.bands_low + term.bands_high) / 2 - term.overlap;
      if (target <= inside + 1e-6 ||
          term.overlap > 0.93 * std::min(term.bands_low, term.bands_high)) { // contained: anywhere within
        if (std::abs(d) <= inside)
          continue;
        target = inside;
      }
      const double residual = (std::abs(d) - target) / sigma;
      weight = term.weight / (1 + residual * residual);
      if (term.high - term.low > long_in_ranks && weight < weight_of_long * term.weight)
        continue;
    }
    springs_.push_back({term.low, term.high, d < 0 ? -target : target, weight});
  }
  solver_.solve(springs_, start_, x_, stopped);
  for (std::size_t i = 0; i < members.size(); ++i)
    layout_.centre[static_cast<std::size_t>(members[i])] = x_[i];
}

void piece_positions::lay(std::int32_t piece, bool from_scratch, const std::atomic<bool> &stopped) {
  auto &members = layout_.pieces[static_cast<std::size_t>(piece)];
  const auto rank_members = [&] {
    layout_.sort_piece(piece);
    for (std::size_t i = 0; i < members.size(); ++i)
      rank_[static_cast<std::size_t>(members[i])] = static_cast<std::int32_t>(i);
  };
  if (from_scratch) {
    std::sort(members.begin(), members.end());
    for (std::size_t i = 0; i < members.size(); ++i)
      rank_[static_cast<std::size_t>(members[i])] = static_cast<std::int32_t>(i);
    first_centres(members);
  }
  rank_members();
  gather_terms(piece);
  for (std::size_t round = from_scratch ? 0 : first_round_of_all; round < std::size(rounds) && !stopped; ++round)
    solve_round(piece, rounds[round].sigma * layout_.scale.r, rounds[round].all_edges, stopped);
  layout_.sort_piece(piece);
  for (const clone_number c : members)
    rank_[static_cast<std::size_t>(c)] = -1;
}

} // namespace orb
