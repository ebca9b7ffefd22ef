#include "contigs/layout_joins.h"

#include <cmath>
#include <map>

#include "frame/worker_batch.h"

namespace orb {

namespace {

constexpr double many_suspects = 0.04;
constexpr double attach_consistent = 0.8, attach_suspect = 0.9, attach_cover = 0.85, attach_not_linked = 0.25;
constexpr std::int32_t attach_suspect_edges = 3;
constexpr std::size_t n_outermost = 3;
constexpr std::size_t most_places = 4; // of a clone: either side of a neighbour or two, those that most overlaps want

} // namespace

layout_joiner::layout_joiner(clone_layout &layout, int threads, const go_on_function &go_on)
    : layout_(layout), threads_(threads), go_on_(go_on), matcher_(layout),
      single_known_(static_cast<std::size_t>(layout.clones.n) + 1, 0) {
  std::int64_t suspects = 0;
  for (const suspect_reason reason : layout.suspect)
    suspects += reason != suspect_reason::none;
  careful_ = static_cast<double>(suspects) > many_suspects * layout.clones.n;
}

void layout_joiner::forget_touched() {
  for (const std::int32_t piece : touched_) {
    const auto p = static_cast<std::size_t>(piece);
    if (p < ends_known_.size())
      ends_known_[p] = 0;
    if (p < changed_.size())
      changed_[p] = 1;
  }
  touched_.clear();
}

// ---- attaching ----

double layout_joiner::overlap_at(clone_number clone, double centre, clone_number other) const {
  const double half = layout_.n_of(clone) / 2;
  return std::min(centre + half, layout_.right(other)) - std::max(centre - half, layout_.left(other));
}

// Each overlap wants the clone on one of two sides of its neighbour: the places that most can live with first.
std::vector<layout_joiner::wish> layout_joiner::wishes_of(clone_number clone,
                                                          std::span<const scored_edge *const> edges) const {
  const double n = layout_.n_of(clone), r = layout_.scale.r;
  std::vector<wish> wishes;
  const auto try_centre = [&](double centre) {
    wish one{centre, 0, 0};
    for (const scored_edge *edge : edges) {
      const double off = std::abs(overlap_at(clone, centre, edge->to) - edge->overlap);
      one.consistent += off <= 6 * r + 0.12 * layout_.fewer_bands(clone, edge->to);
      one.error += std::min(off, 20 * r);
    }
    if (one.consistent > 0)
      wishes.push_back(one);
  };
  const std::size_t stride = 1 + edges.size() / clone_layout::most_overlaps;
  for (std::size_t i = 0; i < edges.size(); i += stride) {
    const scored_edge *edge = edges[i];
    const double away = (n + layout_.n_of(edge->to)) / 2 - edge->overlap;
    try_centre(layout_.centre[static_cast<std::size_t>(edge->to)] - away);
    try_centre(layout_.centre[static_cast<std::size_t>(edge->to)] + away);
  }
  std::sort(wishes.begin(), wishes.end(), [](const wish &x, const wish &y) {
    return x.consistent != y.consistent ? x.consistent > y.consistent
           : x.error != y.error         ? x.error < y.error
                                        : x.centre < y.centre;
  });
  return wishes;
}

// Clones of the piece that it would lie over there without sharing bands.
std::int32_t layout_joiner::not_linked_at(clone_number clone, std::int32_t piece, double centre) const {
  const double n = layout_.n_of(clone);
  const auto &members = layout_.pieces[static_cast<std::size_t>(piece)];
  const auto near = std::lower_bound(members.begin(), members.end(), centre - n, [&](clone_number c, double x) {
    return layout_.centre[static_cast<std::size_t>(c)] <= x;
  });
  std::int32_t count = 0;
  for (auto at = near; at != members.end() && layout_.centre[static_cast<std::size_t>(*at)] < centre + n; ++at)
    count += overlap_at(clone, centre, *at) > clone_layout::sure_share * layout_.fewer_bands(clone, *at) &&
             !layout_.linked(clone, *at);
  return count;
}

// The best of a few places apart from each other: a neighbour at an end can't tell its two sides, other clones do.
void layout_joiner::choose_place(clone_number clone, std::int32_t piece, std::span<const wish> wishes,
                                 wanted_place &place) const {
  std::vector<double> tried;
  for (const wish &one : wishes) {
    const auto is_near = [&](double x) { return std::abs(x - one.centre) <= 6 * layout_.scale.r; };
    if (tried.size() == most_places || std::any_of(tried.begin(), tried.end(), is_near))
      continue;
    const std::int32_t not_linked = not_linked_at(clone, piece, one.centre);
    if (tried.empty() || one.consistent - not_linked > place.n_consistent - place.n_not_linked) {
      place.n_consistent = one.consistent;
      place.n_not_linked = not_linked;
      place.centre = one.centre;
    }
    tried.push_back(one.centre);
  }
}

bool layout_joiner::place_clone(clone_number clone, std::int32_t piece, wanted_place &place) const {
  std::vector<const scored_edge *> edges;
  for (const scored_edge &edge : layout_.net.of(clone))
    if (layout_.is_overlap(edge) && layout_.piece(edge.to) == piece)
      edges.push_back(&edge);
  place = {};
  place.n_edges = static_cast<std::int32_t>(edges.size());
  choose_place(clone, piece, wishes_of(clone, edges), place);
  double low = 1e300, high = -1e300;
  for (const scored_edge *edge : edges) {
    low = std::min(low, layout_.left(edge->to));
    high = std::max(high, layout_.right(edge->to));
  }
  const double n = layout_.n_of(clone);
  place.covered = std::max(0.0, std::min(high, place.centre + n / 2) - std::max(low, place.centre - n / 2)) / n;
  return place.n_consistent > 0;
}

bool layout_joiner::may_attach(clone_number clone, std::int32_t, const wanted_place &place) const {
  const bool suspect = layout_.is_suspect(clone);
  std::int32_t all = 0; // overlaps with other pieces speak against it too
  for (const scored_edge &edge : layout_.net.of(clone))
    all += layout_.is_overlap(edge) && layout_.piece(edge.to) >= 0;
  if (place.n_consistent < (suspect ? attach_suspect : attach_consistent) * (suspect ? all : place.n_edges))
    return false;
  if (place.n_not_linked > attach_not_linked * place.n_consistent)
    return false;
  return !suspect || (place.n_consistent >= attach_suspect_edges && place.covered > attach_cover);
}

// Clones in no piece that have neighbours in one that is not what it was when they were looked at.
std::vector<clone_number> layout_joiner::clones_to_attach() {
  changed_.resize(layout_.pieces.size(), 1);
  std::vector<clone_number> found;
  for (clone_number c = 1; c <= layout_.clones.n; ++c) {
    const auto run = layout_.net.of(c);
    if (layout_.piece(c) < 0 && std::any_of(run.begin(), run.end(), [&](const scored_edge &edge) {
          return layout_.piece(edge.to) >= 0 && changed_[static_cast<std::size_t>(layout_.piece(edge.to))] != 0;
        }))
      found.push_back(c);
  }
  std::fill(changed_.begin(), changed_.end(), 0);
  return found;
}

layout_joiner::attached_clone layout_joiner::place_among_neighbours(clone_number clone) const {
  std::map<std::int32_t, std::int32_t> neighbours; // by piece
  for (const scored_edge &edge : layout_.net.of(clone))
    if (layout_.is_overlap(edge) && layout_.piece(edge.to) >= 0)
      ++neighbours[layout_.piece(edge.to)];
  std::int32_t piece = -1, most = 0;
  for (const auto &[p, count] : neighbours)
    if (count > most) {
      most = count;
      piece = p;
    }
  wanted_place place;
  if (piece >= 0 && place_clone(clone, piece, place) && may_attach(clone, piece, place))
    return {clone, piece, place.centre};
  return {};
}

std::int32_t layout_joiner::attach_clones() {
  const std::vector<clone_number> waiting = clones_to_attach();
  std::vector<attached_clone> found(waiting.size());
  if (!run_and_poll(
          std::ssize(waiting), threads_,
          [&](std::int64_t i, int, const std::atomic<bool> &) {
            const auto at = static_cast<std::size_t>(i) - 1;
            found[at] = place_among_neighbours(waiting[at]);
          },
          [&](std::int64_t) { return go_on_(); }))
    return 0;
  std::erase_if(found, [](const attached_clone &one) { return one.clone == 0; });
  for (const attached_clone &one : found) {
    layout_.piece_of[static_cast<std::size_t>(one.clone)] = one.piece;
    layout_.centre[static_cast<std::size_t>(one.clone)] = one.centre;
    layout_.pieces[static_cast<std::size_t>(one.piece)].push_back(one.clone);
    touched_.push_back(one.piece);
    changed_[static_cast<std::size_t>(one.piece)] = 1;
  }
  std::sort(touched_.begin(), touched_.end());
  touched_.erase(std::unique(touched_.begin(), touched_.end()), touched_.end());
  for (const std::int32_t piece : touched_)
    layout_.sort_piece(piece);
  return static_cast<std::int32_t>(found.size());
}

// ---- joining two ends ----

void layout_joiner::flip(std::int32_t piece) {
  auto &members = layout_.pieces[static_cast<std::size_t>(piece)];
  for (const clone_number c : members)
    layout_.centre[static_cast<std::size_t>(c)] = -layout_.centre[static_cast<std::size_t>(c)];
  layout_.sort_piece(piece);
}

void layout_joiner::outermost(std::int32_t piece, bool right, std::vector<clone_number> &clones) const {
  clones.clear();
  const auto is_farther = [&](clone_number a, clone_number b) {
    const double x = layout_.outer_end(a, right), y = layout_.outer_end(b, right);
    return x != y ? x > y : a < b;
  };
  const std::size_t n = std::min(n_outermost, layout_.pieces[static_cast<std::size_t>(piece)].size());
  for (double depth = layout_.most_bands; clones.size() < n; depth *= 2) {
    clones.clear();
    layout_.for_end(piece, right, depth, [&](clone_number c) { clones.push_back(c); });
  }
  std::partial_sort(clones.begin(), clones.begin() + static_cast<std::ptrdiff_t>(n), clones.end(), is_farther);
  clones.resize(n);
}

std::int32_t layout_joiner::piece_of_side(const side &at) {
  if (at.piece >= 0)
    return at.piece;
  const auto piece = static_cast<std::int32_t>(layout_.pieces.size());
  layout_.pieces.push_back({at.single});
  layout_.piece_of[static_cast<std::size_t>(at.single)] = piece;
  layout_.centre[static_cast<std::size_t>(at.single)] = 0;
  return piece;
}

void layout_joiner::join(const side &p, const side &q, double overlap, layout_join told) {
  const std::int32_t kept = piece_of_side(p), gone = piece_of_side(q);
  if (p.piece >= 0 && !p.right)
    flip(kept);
  if (q.piece >= 0 && q.right)
    flip(gone);
  std::vector<clone_number> ends_p, ends_q;
  outermost(kept, true, ends_p);
  outermost(gone, false, ends_q);
  const double shift = layout_.right(ends_p.front()) - overlap - layout_.left(ends_q.front());
  auto &members = layout_.pieces[static_cast<std::size_t>(kept)];
  for (const clone_number c : layout_.pieces[static_cast<std::size_t>(gone)]) {
    layout_.centre[static_cast<std::size_t>(c)] += shift;
    layout_.piece_of[static_cast<std::size_t>(c)] = kept;
    members.push_back(c);
  }
  layout_.pieces[static_cast<std::size_t>(gone)].clear();
  layout_.sort_piece(kept);
  for (const clone_number a : ends_p)
    for (const clone_number b : ends_q)
      layout_.springs.push_back(
          {a, b, std::abs(layout_.centre[static_cast<std::size_t>(a)] - layout_.centre[static_cast<std::size_t>(b)])});
  told.overlap = overlap;
  told.witnesses = ends_p;
  told.witnesses.insert(told.witnesses.end(), ends_q.begin(), ends_q.end());
  layout_.joins.push_back(std::move(told));
  for (const std::int32_t piece : {kept, gone}) {
    touched_.push_back(piece);
    if (static_cast<std::size_t>(piece) < ends_known_.size())
      ends_known_[static_cast<std::size_t>(piece)] = 0;
    if (static_cast<std::size_t>(piece) < changed_.size())
      changed_[static_cast<std::size_t>(piece)] = 1;
  }
  std::sort(touched_.begin(), touched_.end());
  touched_.erase(std::unique(touched_.begin(), touched_.end()), touched_.end());
}

} // namespace orb
