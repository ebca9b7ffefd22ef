// Joins by overlaps between two ends, and bridges: clones in thin places that the clone test took for two.
#include <cmath>
#include <set>

#include "contigs/layout_checks.h"
#include "contigs/layout_joins.h"
#include "metrics/band_merge.h"

namespace orb {

namespace {

constexpr double agrees_within = 15; // times r, of the overlap of contigs that two edges imply
constexpr double share_agreeing = 0.7, share_not_linked = 0.5, share_of_rival = 0.6;
// Of what lies within the overlap of two ends that overlaps join, to be found in both: clones of two arrays of repeats
// share bands, but their contigs don't go on alike. (Without it 27 libraries of human X have 1,134 clones sitting
// wrongly for 626, and 1.4 % fewer contigs; with 0.7 623 and 1 % more, in 90 of E. coli 2 % more.)
constexpr double share_in_both = 0.4;
constexpr std::size_t edges_of_one_clone = 3, edges_careful = 5, clones_a_side = 2;
constexpr double bridge_share = 0.85, bridge_within = 10;
constexpr std::int32_t few_neighbours = 3; // of a clone in a contig: hardly any of its bands lies under two of them
constexpr double as_rival = 2.5;           // times the tolerances, of a bridge that only rules out others
// Of what lies at the ends that a clone bridges, to be shown by it. (Of 10 good ones of E. coli libraries, those that
// the bands of both ends don't tell, none showed less than 0.68; of 3 chimeras none as much at both ends.)
constexpr double least_shown = 0.66;
constexpr double least_meeting = 4;         // score of two ends that a single clone bridges
constexpr double most_chance_bridges = 0.5; // expected; above it a bridge needs another beside it
// Clones that would lie wrongly, as expected by chance: for two long contigs one clone is too few where for short ones
// it may do.
constexpr double most_clones_at_risk = 5;

double median_of(std::vector<double> &values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

} // namespace

// Reaches of all pieces, once a round: joins ask for them again and again.
void layout_joiner::measure_pieces() {
  reach_.assign(layout_.pieces.size(), {0, 0});
  for (std::size_t p = 0; p < layout_.pieces.size(); ++p)
    if (!layout_.pieces[p].empty())
      for (const bool right : {false, true})
        reach_[p][right ? 1 : 0] = layout_.reach_of(static_cast<std::int32_t>(p), right);
}

double layout_joiner::edge_of(const side &at) const {
  return reach_[static_cast<std::size_t>(at.piece)][at.right ? 1 : 0];
}

double layout_joiner::beyond(const side &at, clone_number c) const {
  return at.piece < 0 ? 0 : edge_of(at) - layout_.outer_end(c, at.right);
}

// Bands of a clone that clones of a contig show: of two of its neighbours there, or of one where there are few, without
// those that it would show by chance.
double layout_joiner::footprint(clone_number clone, const side &at) const {
  const auto own = layout_.clones.of(clone);
  std::vector<std::int32_t> shown(own.size(), 0);
  std::int32_t n_neighbours = 0;
  double not_by_chance = 1;
  for (const scored_edge &edge : layout_.net.of(clone)) {
    if (layout_.piece(edge.to) != at.piece || edge.end != edge_end::kept)
      continue;
    ++n_neighbours;
    not_by_chance *= 1 - layout_.scale.chance_of_match(layout_.n_of(edge.to));
    const auto other = layout_.clones.of(edge.to);
    for (std::size_t i = 0, j = 0; i < own.size() && j < other.size();) {
      const std::int32_t d = own[i] - other[j];
      if (std::abs(d) <= layout_.clones.t) {
        ++shown[i];
        ++i, ++j;
      } else if (d < 0) {
        ++i;
      } else {
        ++j;
      }
    }
  }
  const bool few = n_neighbours <= few_neighbours;
  const auto n = static_cast<double>(own.size());
  const auto k = static_cast<double>(
      std::count_if(shown.begin(), shown.end(), [few](std::int32_t c) { return c >= (few ? 1 : 2); }));
  if (!few)
    return std::min(n, k / band_scale::shown_again);
  const double share = n_neighbours == 1 ? band_scale::shown_again : 1; // of what lies under two, one shows nearly all
  return std::clamp((k - n * (1 - not_by_chance)) / std::max(0.1, share - (1 - not_by_chance)), 0.0, n);
}

// Each overlap between two contigs, once for each pair of ends that it may join.
void layout_joiner::gather_edge_pairs(std::vector<std::pair<std::pair<side, side>, edge_pair>> &pairs) {
  contacts_.clear();
  for (clone_number u = 1; u <= layout_.clones.n; ++u) {
    if (layout_.is_suspect(u))
      continue;
    for (const scored_edge &edge : layout_.net.of(u)) {
      const clone_number v = edge.to;
      const std::int32_t p = layout_.piece(u), q = layout_.piece(v);
      const bool in_order = p != q && (q < 0 ? p >= 0 : p > q); // once, a single clone second; two singles never
      if (!in_order || layout_.is_suspect(v) || edge.end != edge_end::kept || edge.score < layout_.scale.weak_cutoff())
        continue;
      const bool single = q < 0;
      contacts_.emplace_back(p, single ? -v : q);
      const double most = single ? 0.95 * layout_.fewer_bands(u, v) : std::max(layout_.n_of(u), layout_.n_of(v));
      for (const bool right_p : {false, true})
        for (const bool right_q : {false, true}) {
          if (single && right_q)
            continue;
          edge_pair found{u, v, 0, edge.overlap, edge.score};
          found.implied = beyond({p, 0, right_p}, u) + edge.overlap + (single ? 0 : beyond({q, 0, right_q}, v));
          if (found.implied <= most)
            pairs.push_back({{side{p, 0, right_p}, side{single ? -1 : q, single ? v : 0, right_q}}, found});
        }
    }
  }
  std::sort(contacts_.begin(), contacts_.end());
}

layout_joiner::laid_ends layout_joiner::lay_ends(const side &p, const side &q, double overlap) const {
  laid_ends ends;
  const auto lay = [&](const side &at, const auto &add) {
    if (at.piece < 0)
      add(at.single, 0.0);
    else
      layout_.for_end(at.piece, at.right, overlap, [&](clone_number c) { add(c, beyond(at, c)); });
  };
  lay(p, [&](clone_number c, double d) { ends.p.push_back({c, -d - layout_.n_of(c), -d}); });
  lay(q, [&](clone_number c, double d) { ends.q.push_back({c, d - overlap, d - overlap + layout_.n_of(c)}); });
  return ends;
}

std::int32_t layout_joiner::predicted_not_linked(const laid_ends &ends) const {
  std::int32_t n = 0;
  for (const laid_clone &a : ends.p)
    for (const laid_clone &b : ends.q) {
      const double common = std::min(a.right, b.right) - std::max(a.left, b.left);
      n += common > clone_layout::sure_share * layout_.fewer_bands(a.clone, b.clone) &&
           !layout_.linked(a.clone, b.clone);
    }
  return n;
}

layout_joiner::edge_candidate
layout_joiner::judge_edges(const side &p, const side &q,
                           std::span<const std::pair<std::pair<side, side>, edge_pair>> of) const {
  edge_candidate found;
  found.p = p;
  found.q = q;
  std::vector<double> implied;
  for (const auto &one : of)
    implied.push_back(one.second.implied);
  found.overlap = median_of(implied);
  std::set<clone_number> clones_p, clones_q;
  for (const auto &one : of) {
    const edge_pair &edge = one.second;
    if (std::abs(edge.implied - found.overlap) > agrees_within * layout_.scale.r)
      continue;
    ++found.n_agreeing;
    found.weight += edge.score;
    clones_p.insert(edge.u);
    clones_q.insert(edge.v);
    found.u = edge.u;
    found.v = edge.v;
  }
  const bool single = q.piece < 0;
  // overlaps of the two contigs, also such as fit no two ends
  const auto [from, to] = std::equal_range(
      contacts_.begin(), contacts_.end(), std::pair<std::int32_t, std::int32_t>(p.piece, single ? -q.single : q.piece));
  const auto all = static_cast<double>(to - from);
  if (found.n_agreeing < share_agreeing * all)
    return found;
  const bool of_one = clones_p.size() < clones_a_side || clones_q.size() < clones_a_side;
  const std::size_t least = careful_ ? edges_careful : of_one ? edges_of_one_clone : clones_a_side;
  if (static_cast<std::size_t>(found.n_agreeing) < least ||
      (of_one && (!one_clone_counts_ || one_is_too_few(false_ends_, most_false_ends, p.piece, q.piece))))
    return found;
  const laid_ends ends = lay_ends(p, q, found.overlap);
  if (predicted_not_linked(ends) > share_not_linked * found.n_agreeing ||
      evidence_apart(layout_, ends.p, ends.q) >= most_evidence_apart)
    return found;
  if (single) {
    const double n = layout_.n_of(q.single), off = found.overlap - footprint(q.single, p), r = layout_.scale.r;
    if (off > 8 * r + 0.1 * n || -off > 5 * r + 0.05 * n)
      return found;
  } else if (!matcher_.flush(end_of_piece(layout_, p.piece, p.right), end_of_piece(layout_, q.piece, q.right),
                             found.overlap, share_in_both)) {
    return found;
  }
  found.good = true;
  return found;
}

std::int32_t layout_joiner::join_by_edges() {
  measure_pieces();
  std::vector<std::pair<std::pair<side, side>, edge_pair>> pairs;
  gather_edge_pairs(pairs);
  std::stable_sort(pairs.begin(), pairs.end(), [](const auto &a, const auto &b) { return a.first < b.first; });
  std::vector<edge_candidate> candidates;
  for (std::size_t i = 0; i < pairs.size();) {
    std::size_t end = i;
    while (end < pairs.size() && pairs[end].first == pairs[i].first)
      ++end;
    candidates.push_back(
        judge_edges(pairs[i].first.first, pairs[i].first.second, std::span(pairs).subspan(i, end - i)));
    i = end;
    if (!go_on_())
      return 0;
  }
  std::stable_sort(candidates.begin(), candidates.end(),
                   [](const edge_candidate &a, const edge_candidate &b) { return a.weight > b.weight; });
  const auto is_rivalled = [&](const edge_candidate &one, const side &at, const side &mate) {
    return std::any_of(candidates.begin(), candidates.end(), [&](const edge_candidate &other) {
      const bool here = (other.p == at && !(other.q == mate)) || (other.q == at && !(other.p == mate));
      const bool same_mate = (other.p == at ? other.q : other.p).same_contig(mate);
      return here && !same_mate && other.weight > share_of_rival * one.weight;
    });
  };
  std::int32_t joined = 0;
  std::set<std::pair<std::int32_t, clone_number>> used;
  for (const edge_candidate &one : candidates) {
    const std::pair<std::int32_t, clone_number> contig_p{one.p.piece, 0}, contig_q{one.q.piece, one.q.single};
    if (!one.good || used.contains(contig_p) || used.contains(contig_q) || is_rivalled(one, one.p, one.q) ||
        is_rivalled(one, one.q, one.p))
      continue;
    layout_join told;
    told.kind = join_kind::edges;
    told.a = one.u;
    told.b = one.v;
    told.score = one.weight;
    told.common = one.n_agreeing;
    join(one.p, one.q, one.overlap, told);
    used.insert(contig_p);
    used.insert(contig_q);
    ++joined;
  }
  return joined;
}

// A chimera's two pieces go on beyond its arms; a good clone in a thin place ends in both.
bool layout_joiner::bridge_to(clone_number clone, bridge_candidate &found) const {
  std::set<std::int32_t> pieces;
  std::int32_t all = 0;
  for (const scored_edge &edge : layout_.net.of(clone))
    if (layout_.is_overlap(edge) && !layout_.is_suspect(edge.to)) {
      ++all;
      if (layout_.piece(edge.to) >= 0)
        pieces.insert(layout_.piece(edge.to));
    }
  std::vector<bridge_arm> arms;
  for (const std::int32_t piece : pieces) {
    const bridge_arm arm = arm_in(clone, piece);
    if (arm.n > 0)
      arms.push_back(arm);
  }
  if (arms.size() != 2 || arms[0].n + arms[1].n < bridge_share * all)
    return false;
  const double n = layout_.n_of(clone), r = layout_.scale.r, together = arms[0].overlap + arms[1].overlap;
  const double off = std::max(arms[0].off, arms[1].off);
  if (off > as_rival * bridge_off(n) || together < (1 - as_rival * 0.15) * n ||
      together > (1 + as_rival * 0.15) * n + as_rival * 5 * r)
    return false;
  found = {clone, arms[0].at, arms[1].at, arms[0].overlap, arms[1].overlap, static_cast<double>(arms[0].n + arms[1].n)};
  found.good = off <= bridge_off(n) && together >= 0.85 * n && together <= 1.15 * n + 5 * r;
  return true;
}

// The end of a piece at which most of the clone's overlaps with it agree how far the clone reaches in.
layout_joiner::bridge_arm layout_joiner::arm_in(clone_number clone, std::int32_t piece) const {
  bridge_arm best{{piece, 0, false}, 0, 0, 0};
  for (const bool right : {false, true}) {
    const side at{piece, 0, right};
    std::vector<double> implied;
    for (const scored_edge &edge : layout_.net.of(clone))
      if (layout_.is_overlap(edge) && layout_.piece(edge.to) == piece)
        implied.push_back(beyond(at, edge.to) + edge.overlap);
    std::vector<double> sorted = implied;
    const double middle = median_of(sorted);
    const auto agreeing = std::count_if(implied.begin(), implied.end(), [&](double x) {
      return std::abs(x - middle) <= bridge_within * layout_.scale.r;
    });
    if (static_cast<double>(agreeing) < share_agreeing * static_cast<double>(implied.size()) ||
        middle > layout_.n_of(clone))
      continue;
    if (agreeing > best.n)
      best = {at, middle, std::abs(middle - footprint(clone, at)), static_cast<std::int32_t>(agreeing)};
  }
  return best;
}

double layout_joiner::bridge_off(double n) const {
  return 6 * layout_.scale.r + 0.06 * n;
}

// Counted where good clones hardly look like chimeras, and by those that contradict their layout: where bands are few
// these are most of all. (Without them 8 agarose-like libraries with chimeras have 77 clones sitting wrongly for none.)
// What lies in a contig all the same, or fits two ends, is a good clone of a thin place, nearly always. One more than
// were seen: few may be none by luck.
double layout_joiner::chimeras_expected() const {
  const auto counts = [&](clone_number c) {
    bridge_candidate found;
    return layout_.is_suspect(c) && layout_.piece(c) < 0 && !bridge_to(c, found);
  };
  double misfits = 0;
  for (clone_number c = 1; c <= layout_.clones.n; ++c)
    misfits += layout_.suspect[static_cast<std::size_t>(c)] == suspect_reason::misfit && counts(c);
  const auto &seen = layout_.telling.clones;
  return static_cast<double>(1 + std::count_if(seen.begin(), seen.end(), counts)) / layout_.telling.share + misfits;
}

// Chimeras, expected in the library, whose both arms lie by chance within so many bands of a contig's end.
double layout_joiner::chance_of_two_ends(double within) const {
  double length = 0, ends = 0;
  for (std::size_t p = 0; p < layout_.pieces.size(); ++p)
    if (!layout_.pieces[p].empty()) {
      length += reach_[p][0] + reach_[p][1];
      ends += 2;
    }
  const double at_an_end = length > 0 ? 2 * within * ends / length : 1;
  return chimeras_expected() * at_an_end * at_an_end;
}

bool layout_joiner::one_is_too_few(double n_false, double most, std::int32_t p, std::int32_t q) const {
  const auto size = [&](std::int32_t piece) {
    return piece < 0 ? 1.0 : static_cast<double>(layout_.pieces[static_cast<std::size_t>(piece)].size());
  };
  return n_false > most || n_false * std::min(size(p), size(q)) > most_clones_at_risk;
}

double layout_joiner::chance_of_false_bridges() {
  measure_pieces();
  return chance_of_two_ends(bridge_off(layout_.scale.median_bands));
}

// Whether two ends share more bands than chance would give those of unrelated contigs: the ends of a good clone's two
// contigs touch or nearly do, while those that a chimera ties by chance have nothing in common.
bool layout_joiner::ends_meet(const side &p, const side &q) const {
  const contig_end end_p = end_of_piece(layout_, p.piece, p.right), end_q = end_of_piece(layout_, q.piece, q.right);
  return matcher_.match(end_p, end_q).score >= least_meeting;
}

// Other bridges that lead from one of its ends elsewhere.
bool layout_joiner::is_rivalled(const bridge_candidate &one, std::span<const bridge_candidate> candidates) const {
  const auto elsewhere = [&](const side &at, const side &mate) {
    return std::any_of(candidates.begin(), candidates.end(), [&](const bridge_candidate &other) {
      return (other.p == at && !(other.q == mate)) || (other.q == at && !(other.p == mate));
    });
  };
  return elsewhere(one.p, one.q) || elsewhere(one.q, one.p);
}

// An end whose stretch matches that of a third contig, if not well enough for a join, needs no bridge elsewhere.
bool layout_joiner::leads_elsewhere(const side &at, const side &mate) const {
  const auto is_at = [&](const contig_end &e) { return e.piece == at.piece && e.right == at.right; };
  return std::any_of(candidates_.begin(), candidates_.end(), [&](const end_candidate &c) {
    if (!one_clone_counts_ && c.support != join_support::both_sides)
      return false;
    return (is_at(end(c.p)) && end(c.q).piece != mate.piece) || (is_at(end(c.q)) && end(c.p).piece != mate.piece);
  });
}

bool layout_joiner::is_seconded(const bridge_candidate &one, std::span<const bridge_candidate> candidates) {
  return std::count_if(candidates.begin(), candidates.end(), [&](const bridge_candidate &other) {
           return (other.p == one.p && other.q == one.q) || (other.p == one.q && other.q == one.p);
         }) > 1;
}

// Whether the clone shows what lies at both ends that it bridges: a chimera's contigs go on past its arms.
bool layout_joiner::shows_both_ends(const bridge_candidate &one) const {
  const auto shows = [&](const side &at, double overlap) {
    const double shown = share_shown(layout_, end_of_piece(layout_, at.piece, at.right), one.clone, overlap);
    return shown < 0 || shown >= least_shown;
  };
  return shows(one.p, one.overlap_p) && shows(one.q, one.overlap_q);
}

// Whether one clone is enough: where its ends overlap, their bands tell. `chance`: false ones expected.
bool layout_joiner::is_believed(const bridge_candidate &one, std::span<const bridge_candidate> candidates,
                                double chance) const {
  const double overlap = one.overlap_p + one.overlap_q - layout_.n_of(one.clone);
  const laid_ends ends = lay_ends(one.p, one.q, overlap);
  const double apart = overlap > 0 ? evidence_apart(layout_, ends.p, ends.q) : 0;
  if (apart <= sure_bridge)
    return true;
  if (!one.good || apart >= most_evidence_apart || !shows_both_ends(one))
    return false;
  if (is_seconded(one, candidates))
    return true;
  if (!one_clone_counts_ || chance > most_chance_bridges)
    return false;
  return !one_is_too_few(chance, most_chance_bridges, one.p.piece, one.q.piece) || ends_meet(one.p, one.q);
}

// The clone first, at p's end, then q onto it.
void layout_joiner::join_over(const bridge_candidate &one) {
  layout_join told;
  told.kind = join_kind::bridge;
  told.a = told.b = told.bridge = one.clone;
  told.common = static_cast<std::int32_t>(one.weight);
  layout_.suspect[static_cast<std::size_t>(one.clone)] = suspect_reason::none;
  const std::int32_t kept = one.p.piece;
  join(one.p, side{-1, one.clone, false}, one.overlap_p, told);
  layout_.joins.pop_back();
  const side grown{kept, 0, true}; // p was turned so that the clone is at its right end
  std::vector<clone_number> last;
  outermost(kept, true, last);
  const double beyond_clone = layout_.right(last.front()) - layout_.right(one.clone);
  join(grown, one.q, one.overlap_q + beyond_clone, told);
}

std::int32_t layout_joiner::join_by_bridges() {
  measure_pieces();
  std::vector<bridge_candidate> candidates;
  for (clone_number c = 1; c <= layout_.clones.n; ++c) {
    bridge_candidate found;
    if (layout_.is_suspect(c) && layout_.piece(c) < 0 && bridge_to(c, found))
      candidates.push_back(found);
  }
  const double chance = chance_of_two_ends(bridge_off(layout_.scale.median_bands));
  std::int32_t joined = 0;
  std::set<std::int32_t> used;
  for (const bridge_candidate &one : candidates) {
    if (!is_believed(one, candidates, chance) || leads_elsewhere(one.p, one.q) || leads_elsewhere(one.q, one.p) ||
        used.contains(one.p.piece) || used.contains(one.q.piece) || is_rivalled(one, candidates))
      continue;
    join_over(one);
    used.insert(one.p.piece);
    used.insert(one.q.piece);
    ++joined;
  }
  return joined;
}

} // namespace orb
