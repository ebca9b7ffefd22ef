#include "contigs/layout_checks.h"

#include <algorithm>
#include <cmath>

#include "metrics/band_merge.h"

namespace orb {

namespace {

constexpr std::size_t of_stack = 120; // overlaps
constexpr std::int32_t least_against = 3, least_pairs = 6;
constexpr double near_bridge = 143;      // times l, and a clone's length: how far around a bridge clones are looked at
constexpr double off_place = 4;          // times r: as far as a place in a thin part of a contig may be off
constexpr double most_false_bridges = 2; // expected; with more, contigs of two places are no longer rare
constexpr double least_overlap = 4;      // times r, of two clones that can tell
constexpr std::size_t enough_to_tell = 300; // clones of a side: a stack of thousands says no more than a part of it
constexpr float share_of_misfit = 0.2F;
constexpr double too_far_share = 0.5, too_far_bands = 10;

void check_edges(const clone_layout &layout, clone_number a, layout_neighbours &around, layout_verdict &verdict) {
  const auto run = layout.net.of(a);
  const std::size_t stride = layout.is_of_stack(a) ? 1 + run.size() / of_stack : 1;
  for (std::size_t i = 0; i < run.size(); i += stride) {
    const scored_edge &edge = run[i];
    if (edge.to < a || !layout.is_overlap(edge) || layout.piece(edge.to) != layout.piece(a))
      continue;
    dropped_edge found{a, edge.to, edge_end::kept, 0, 0, edge.overlap, layout.overlap_laid(a, edge.to)};
    if (found.overlap - found.overlap_laid >
        too_far_share * layout.fewer_bands(a, edge.to) + too_far_bands * layout.scale.r) {
      found.why = edge_end::too_far;
    } else {
      count_third_clones(layout, around, a, edge.to, found.n_for, found.n_against);
      if (found.n_against >= least_against && found.n_against > found.n_for)
        found.why = edge_end::third_clones;
    }
    if (found.why != edge_end::kept)
      verdict.edges.push_back(found);
  }
}

} // namespace

void count_third_clones(const clone_layout &layout, layout_neighbours &around, clone_number a, clone_number b,
                        std::int32_t &n_for, std::int32_t &n_against) {
  n_for = n_against = 0;
  const auto look = [&](clone_number from, clone_number to) {
    const neighbour_place other = around.place_of(to);
    ascending_overlaps overlaps(layout.net.of(to));
    for (const neighbour_place &w : around.of(from)) {
      if (w.clone == to || !w.should_be_linked(other))
        continue;
      const scored_edge *edge = overlaps.find(w.clone);
      const bool in_net = edge != nullptr && edge->score >= layout.scale.linked_cutoff();
      ++(in_net || around.linked_by_bands(w.clone, to) ? n_for : n_against);
    }
  };
  look(a, b);
  look(b, a);
}

void count_neighbour_pairs(const clone_layout &layout, layout_neighbours &around, clone_number clone,
                           std::int32_t &n_pairs, std::int32_t &n_not_linked) {
  n_pairs = n_not_linked = 0;
  const auto all = around.of(clone);
  for (std::size_t i = 0; i < all.size(); ++i) {
    ascending_overlaps overlaps(layout.net.of(all[i].clone));
    for (std::size_t j = i + 1; j < all.size(); ++j) {
      if (!all[i].should_be_linked(all[j]))
        continue;
      ++n_pairs;
      const scored_edge *edge = overlaps.find(all[j].clone);
      const bool in_net = edge != nullptr && edge->score >= layout.scale.linked_cutoff();
      n_not_linked += in_net || around.linked_by_bands(all[i].clone, all[j].clone) ? 0 : 1;
    }
  }
}

namespace {

// Depth-first search of a piece along its overlaps and joins, without recursion: numbers in order of discovery, the
// last number below each clone, and the lowest number that a clone or what is below it leads back to.
struct piece_search {
  const clone_layout &layout;
  std::int32_t piece;
  std::vector<std::int32_t> number, last, low, parent; // by place in the piece
  std::vector<std::int32_t> place;                     // by clone - lowest clone; -1: elsewhere
  clone_number lowest = 0;
  std::vector<std::pair<std::int32_t, std::int32_t>> joins; // places

  piece_search(const clone_layout &of, std::int32_t of_piece) : layout(of), piece(of_piece) {
    const auto &all = members();
    const auto [least, most] = std::minmax_element(all.begin(), all.end());
    lowest = *least;
    place.assign(static_cast<std::size_t>(*most - *least) + 1, -1);
    for (std::size_t i = 0; i < all.size(); ++i)
      place[static_cast<std::size_t>(all[i] - lowest)] = static_cast<std::int32_t>(i);
    for (const layout_spring &spring : layout.springs)
      if (layout.piece(spring.a) == piece && layout.piece(spring.b) == piece) {
        joins.emplace_back(place_of(spring.a), place_of(spring.b));
        joins.emplace_back(place_of(spring.b), place_of(spring.a));
      }
    std::sort(joins.begin(), joins.end());
    for (auto *list : {&number, &last, &low, &parent})
      list->assign(all.size(), -1);
    std::int32_t next = 0;
    for (std::int32_t i = 0; i < static_cast<std::int32_t>(all.size()); ++i)
      if (number[at(i)] < 0)
        search(i, next);
  }

  static std::size_t at(std::int32_t i) { return static_cast<std::size_t>(i); }
  const std::vector<clone_number> &members() const { return layout.pieces[at(piece)]; }
  std::int32_t place_of(clone_number c) const { return place[static_cast<std::size_t>(c - lowest)]; }
  template <class function> void for_next(std::int32_t i, const function &look) const {
    for (const scored_edge &edge : layout.net.of(members()[at(i)]))
      if (layout.is_overlap(edge) && layout.piece(edge.to) == piece)
        look(place_of(edge.to));
    for (auto join = std::lower_bound(joins.begin(), joins.end(), std::pair<std::int32_t, std::int32_t>(i, 0));
         join != joins.end() && join->first == i; ++join)
      look(join->second);
  }

  void search(std::int32_t root, std::int32_t &next) {
    std::vector<std::int32_t> stack{root}, found; // those found last are entered first
    std::vector<std::int32_t> entered;
    while (!stack.empty()) {
      const std::int32_t i = stack.back();
      if (number[at(i)] >= 0) { // done, or left after all below it
        stack.pop_back();
        if (last[at(i)] < 0)
          leave(i, next);
        continue;
      }
      number[at(i)] = low[at(i)] = next++;
      for_next(i, [&](std::int32_t j) {
        if (number[at(j)] < 0) {
          parent[at(j)] = i; // of the last that saw it: the one below which it is entered
          stack.push_back(j);
        }
      });
    }
  }
  void leave(std::int32_t i, std::int32_t next) {
    last[at(i)] = next - 1;
    for_next(i, [&](std::int32_t j) {
      if (parent[at(j)] == i && number[at(j)] > number[at(i)])
        low[at(i)] = std::min(low[at(i)], low[at(j)]);
      else if (j != parent[at(i)])
        low[at(i)] = std::min(low[at(i)], number[at(j)]);
    });
  }
  bool is_below(std::int32_t i, std::int32_t top) const {
    return number[at(i)] >= number[at(top)] && number[at(i)] <= last[at(top)];
  }
};

} // namespace

namespace {

// Calls `look(c, top)` for each clone without which what is below `top` would be a part by itself: by places.
template <class function> void for_cut_clones(const piece_search &search, const function &look) {
  for (std::int32_t top = 0; top < static_cast<std::int32_t>(search.members().size()); ++top) {
    const std::int32_t i = search.parent[piece_search::at(top)];
    if (i >= 0 && search.low[piece_search::at(top)] >= search.number[piece_search::at(i)])
      look(i, top);
  }
}

void make_ascending(std::vector<clone_number> &clones) {
  std::sort(clones.begin(), clones.end());
  clones.erase(std::unique(clones.begin(), clones.end()), clones.end());
}

} // namespace

std::vector<clone_number> forking_clones(const clone_layout &layout, std::int32_t piece) {
  const piece_search search(layout, piece);
  const auto &members = search.members();
  const auto at = [](std::int32_t i) { return static_cast<std::size_t>(i); };
  std::vector<clone_number> found;
  for_cut_clones(search, [&](std::int32_t i, std::int32_t top) {
    const clone_number c = members[at(i)];
    const double x = layout.centre[at(c)], reach = layout.n_of(c);
    std::vector<clone_number> below, rest;
    const auto first = std::lower_bound(members.begin(), members.end(), x - reach,
                                        [&](clone_number d, double y) { return layout.centre[at(d)] < y; });
    for (auto d = first; d != members.end() && layout.centre[at(*d)] <= x + reach; ++d)
      if (*d != c)
        (search.is_below(search.place_of(*d), top) ? below : rest).push_back(*d);
    std::int32_t against = 0;
    for (const clone_number a : below)
      for (const clone_number b : rest)
        against += layout.should_be_linked(a, b) && !layout.linked(a, b);
    if (against >= least_against)
      found.push_back(c);
  });
  make_ascending(found);
  return found;
}

double evidence_apart(const clone_layout &layout, std::span<const laid_clone> first,
                      std::span<const laid_clone> second) {
  struct meeting {
    double overlap;
    std::size_t a, b;
  };
  std::vector<meeting> meetings;
  const double off = off_place * layout.scale.r, least = least_overlap * layout.scale.r;
  const std::size_t step_a = 1 + first.size() / enough_to_tell, step_b = 1 + second.size() / enough_to_tell;
  for (std::size_t a = 0; a < first.size(); a += step_a)
    for (std::size_t b = 0; b < second.size(); b += step_b)
      if (const double overlap =
              std::min(first[a].right, second[b].right) - std::max(first[a].left, second[b].left) - off;
          overlap >= least)
        meetings.push_back({overlap, a, b});
  std::sort(meetings.begin(), meetings.end(), [](const meeting &x, const meeting &y) {
    return x.overlap != y.overlap ? x.overlap > y.overlap : x.a != y.a ? x.a < y.a : x.b < y.b;
  });
  // Each clone once: what it shares with clones of one place is much the same.
  std::vector<char> used_a(first.size(), 0), used_b(second.size(), 0);
  double evidence = 0;
  for (const meeting &m : meetings) {
    if (used_a[m.a] != 0 || used_b[m.b] != 0)
      continue;
    used_a[m.a] = used_b[m.b] = 1;
    const clone_number u = first[m.a].clone, v = second[m.b].clone;
    const double n_u = layout.n_of(u), n_v = layout.n_of(v), n = layout.scale.n_positions;
    const double by_chance = n_u * n_v / n;
    const double overlap = std::min({m.overlap, n_u, n_v});
    const double expected = band_scale::shown_again * overlap + (n_u - overlap) * (n_v - overlap) / n;
    const double k = common_bands(layout.clones.of(u), layout.clones.of(v), layout.clones.t);
    evidence += k * std::log(by_chance / expected) + expected - by_chance;
  }
  return evidence;
}

namespace {

double mean_centre(const clone_layout &layout, std::span<const clone_number> clones) {
  double sum = 0;
  for (const clone_number c : clones)
    sum += layout.centre[static_cast<std::size_t>(c)];
  return sum / static_cast<double>(std::max<std::size_t>(1, clones.size()));
}

} // namespace

std::vector<lone_bridge> lone_bridges(const clone_layout &layout, std::int32_t piece) {
  const piece_search search(layout, piece);
  const auto &members = search.members();
  std::vector<lone_bridge> found;
  for_cut_clones(search, [&](std::int32_t i, std::int32_t top) {
    lone_bridge bridge{members[piece_search::at(i)], {}, {}};
    const double x = layout.centre[static_cast<std::size_t>(bridge.clone)];
    const double reach = near_bridge * layout.scale.l + layout.most_bands;
    const auto first = std::lower_bound(members.begin(), members.end(), x - reach, [&](clone_number c, double y) {
      return layout.centre[static_cast<std::size_t>(c)] < y;
    });
    for (auto c = first; c != members.end() && layout.centre[static_cast<std::size_t>(*c)] <= x + reach; ++c)
      if (*c != bridge.clone)
        (search.is_below(search.place_of(*c), top) ? bridge.left : bridge.right).push_back(*c);
    if (bridge.left.empty() || bridge.right.empty())
      return;
    if (mean_centre(layout, bridge.left) > mean_centre(layout, bridge.right))
      std::swap(bridge.left, bridge.right);
    found.push_back(std::move(bridge));
  });
  std::stable_sort(found.begin(), found.end(),
                   [](const lone_bridge &a, const lone_bridge &b) { return a.clone < b.clone; });
  return found;
}

bool is_believed(const clone_layout &layout, const lone_bridge &bridge, double n_false) {
  const auto all_laid = [&](const std::vector<clone_number> &clones) {
    std::vector<laid_clone> all;
    for (const clone_number c : clones)
      all.push_back({c, layout.left(c), layout.right(c)});
    return all;
  };
  const double apart = evidence_apart(layout, all_laid(bridge.left), all_laid(bridge.right));
  return apart < (n_false > most_false_bridges ? sure_bridge : most_evidence_apart);
}

layout_verdict check_clones(const clone_layout &layout, std::int32_t piece, std::size_t from, std::size_t to,
                            layout_neighbours &around, std::vector<float> &share_not_linked,
                            const std::atomic<bool> &stopped) {
  layout_verdict verdict;
  around.forget();
  const auto &members = layout.pieces[static_cast<std::size_t>(piece)];
  for (std::size_t i = from; i < to && !stopped; ++i) {
    check_edges(layout, members[i], around, verdict);
    std::int32_t n_pairs = 0, n_not_linked = 0;
    count_neighbour_pairs(layout, around, members[i], n_pairs, n_not_linked);
    if (n_pairs >= least_pairs)
      share_not_linked[static_cast<std::size_t>(members[i])] =
          static_cast<float>(n_not_linked) / static_cast<float>(n_pairs);
  }
  return verdict;
}

std::vector<clone_number> misfits_of(const clone_layout &layout, std::int32_t piece,
                                     const std::vector<float> &share_not_linked) {
  const auto share = [&](clone_number c) { return share_not_linked[static_cast<std::size_t>(c)]; };
  std::vector<clone_number> misfits;
  for (const clone_number c : layout.pieces[static_cast<std::size_t>(piece)]) {
    if (share(c) <= share_of_misfit || layout.is_suspect(c))
      continue;
    bool largest = true;
    for (const scored_edge &edge : layout.net.of(c))
      if (layout.is_overlap(edge) && layout.piece(edge.to) == piece)
        largest = largest && (share(edge.to) < share(c) || (share(edge.to) == share(c) && edge.to > c));
    if (largest)
      misfits.push_back(c);
  }
  for (const clone_number c : forking_clones(layout, piece))
    if (!layout.is_suspect(c) && std::find(misfits.begin(), misfits.end(), c) == misfits.end())
      misfits.push_back(c);
  return misfits;
}

} // namespace orb
