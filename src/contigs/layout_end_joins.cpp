// Joins of end stretches.
#include <cmath>
#include <tuple>

#include "contigs/layout_joins.h"
#include "frame/worker_blocks.h"

namespace orb {

namespace {

constexpr double margin_of_two_clones = 4;
constexpr double share_of_rival = 0.6, share_of_other_end = 0.9;
constexpr double least_behind = 0.7, surely_behind = 0.85; // of what lies behind an end clone, to be shown by it
constexpr double least_behind_of_few = 0.5;                // the same where chimeras at ends are hardly expected
// Of what lies next to the other end, to be shown too: a chimera whose second part lies further in shows less. (Of 91
// true joins of E. coli libraries 8 lay below, some of them with a chimera on the other side.)
constexpr double least_across = 0.5;
constexpr double share_of_end_clone = 0.125; // of a clone: as far from an end as an arm may lie that matches it
// In place of `most_false_ends`, for clones that show only a part of what lies behind them. (With 0.25 90 E. coli
// libraries have 388 clones sitting wrongly for 323, and 2 % fewer contigs. Clones that show nearly all need a limit
// too: many begin at the same few places where bands are far apart. Without one it is 325 for 196, and 4 % fewer
// contigs.)
constexpr double most_false_untold = 0.05;
constexpr double least_of_other_side = 2.5; // score, of a join of one side where chimeras are many

} // namespace

// Ends of pieces that changed are made anew, and so are single clones that found a piece; ids are never given twice.
void layout_joiner::refresh_ends() {
  ends_known_.resize(layout_.pieces.size(), 0);
  for (std::size_t id = 0; id < ends_.size(); ++id) {
    const contig_end &e = ends_[id];
    const bool lives =
        e.is_single() ? layout_.piece(e.outermost) < 0 : ends_known_[static_cast<std::size_t>(e.piece)] != 0;
    end_lives_[id] = end_lives_[id] != 0 && lives;
  }
  std::erase_if(candidates_, [&](const end_candidate &c) {
    return end_lives_[static_cast<std::size_t>(c.p)] == 0 || end_lives_[static_cast<std::size_t>(c.q)] == 0;
  });
  struct wanted {
    std::int32_t piece;
    bool right;
  };
  std::vector<wanted> missing;
  for (std::size_t p = 0; p < layout_.pieces.size(); ++p)
    if (!layout_.pieces[p].empty() && ends_known_[p] == 0) {
      missing.push_back({static_cast<std::int32_t>(p), false});
      missing.push_back({static_cast<std::int32_t>(p), true});
      ends_known_[p] = 1;
    }
  const std::size_t first = ends_.size();
  ends_.resize(first + missing.size());
  run_in_blocks(
      0, static_cast<std::int64_t>(missing.size()) - 1, 64, 1, threads_,
      [&](std::int64_t from, std::int64_t to, int) {
        for (auto i = static_cast<std::size_t>(from); i <= static_cast<std::size_t>(to); ++i)
          ends_[first + i] = end_of_piece(layout_, missing[i].piece, missing[i].right);
      },
      [&](std::int64_t) { return go_on_(); });
  for (clone_number c = 1; c <= layout_.clones.n; ++c)
    if (layout_.piece(c) < 0 && !layout_.is_suspect(c) && single_known_[static_cast<std::size_t>(c)] == 0) {
      single_known_[static_cast<std::size_t>(c)] = 1;
      ends_.push_back(end_of_single(layout_, c));
    }
  end_lives_.resize(ends_.size(), 1);
  for (std::size_t id = first; id < ends_.size(); ++id)
    new_ends_.push_back(static_cast<std::int64_t>(id));
}

layout_joiner::end_candidate layout_joiner::judge(const contig_end &p, const contig_end &q, double need) const {
  end_candidate found;
  found.match = matcher_.match(p, q);
  if (found.match.score < need)
    return found;
  matcher_.score_without_loose(p, q, found.match);
  found.flush = matcher_.flush(p, q, found.match.overlap);
  return found;
}

void layout_joiner::judge_candidates(double need) {
  false_ends_ = chance_of_two_ends(share_of_end_clone * layout_.scale.median_bands);
  for (end_candidate &found : candidates_) {
    const auto [smaller, larger] = std::minmax(found.match.score_without_1, found.match.score_without_2);
    found.support = smaller >= need  ? join_support::both_sides
                    : larger >= need ? join_support::one_side
                                     : join_support::two_clones;
    found.good = found.flush && carried_by_good_clones(end(found.p), end(found.q), found, need);
  }
}

// An end clone that is a chimera looks like a good one: where its loose bands carry a join, more is asked.
bool layout_joiner::carried_by_good_clones(const contig_end &p, const contig_end &q, const end_candidate &found,
                                           double need) const {
  const end_match &match = found.match;
  if (found.support == join_support::both_sides)
    return true;
  const bool too_few = one_is_too_few(false_ends_, most_false_ends, p.piece, q.piece);
  bool told = true; // that the clones in question go on from their contigs' ends
  for (const auto &[end, other, without] :
       {std::tuple(&p, &q, match.score_without_1), std::tuple(&q, &p, match.score_without_2)}) {
    if (without >= need)
      continue;
    if (const double across = share_shown(layout_, *other, end->outermost, match.overlap);
        across >= 0 && across < least_across)
      return false;
    if (end->shown_behind >= 0 && end->shown_behind < (too_few ? least_behind : least_behind_of_few))
      return false;
    told = told && end->shown_behind >= surely_behind;
  }
  if (found.support == join_support::two_clones)
    return match.score >= need + margin_of_two_clones && !too_few;
  const bool believed =
      told ? false_ends_ <= most_false_ends : !one_is_too_few(false_ends_, most_false_untold, p.piece, q.piece);
  return believed || std::min(match.score_without_1, match.score_without_2) >= least_of_other_side;
}

// `b` may be new too: then the larger of both has the pair.
void layout_joiner::judge_new(std::int64_t a, std::int64_t b, double need, std::vector<end_candidate> &found) const {
  if (b == a || (b > a && std::binary_search(new_ends_.begin(), new_ends_.end(), b)))
    return;
  const contig_end &p = end(a), &q = end(b);
  if ((p.is_single() && q.is_single()) || (!p.is_single() && p.piece == q.piece))
    return;
  end_candidate candidate = judge(p, q, need);
  if (candidate.match.score < need)
    return;
  candidate.p = a;
  candidate.q = b;
  found.push_back(candidate);
}

// Only pairs with a new end: what was found for the others holds.
void layout_joiner::match_new_ends() {
  std::vector<std::int64_t> living;
  for (std::size_t id = 0; id < ends_.size(); ++id)
    if (end_lives_[id] != 0)
      living.push_back(static_cast<std::int64_t>(id));
  const double need = score_of_ends(static_cast<double>(living.size()));
  std::vector<std::vector<end_candidate>> found(new_ends_.size());
  const end_index index(layout_, ends_, living);
  measure_pieces();
  struct worker_place {
    end_index::scratch counts;
    std::vector<std::int64_t> mates;
  };
  std::vector<worker_place> places(static_cast<std::size_t>(worker_count(threads_)));
  run_in_blocks(
      0, static_cast<std::int64_t>(new_ends_.size()) - 1, 256, 4, threads_,
      [&](std::int64_t from, std::int64_t to, int worker) {
        worker_place &place = places[static_cast<std::size_t>(worker)];
        for (auto i = static_cast<std::size_t>(from); i <= static_cast<std::size_t>(to); ++i) {
          const std::int64_t a = new_ends_[i];
          if (end_lives_[static_cast<std::size_t>(a)] == 0)
            continue;
          index.look_up(end(a), need, place.counts, place.mates);
          for (const std::int64_t b : place.mates)
            judge_new(a, b, need, found[i]);
        }
      },
      [&](std::int64_t) { return go_on_(); });
  for (const auto &row : found)
    candidates_.insert(candidates_.end(), row.begin(), row.end());
  new_ends_.clear();
  judge_candidates(need);
}

bool layout_joiner::share_an_overlap(const contig_end &a, const contig_end &b) const {
  std::vector<clone_number> around{a.outermost};
  if (!a.is_single())
    outermost(a.piece, a.right, around);
  for (const clone_number c : around)
    for (const scored_edge &edge : layout_.net.of(c))
      if (layout_.is_overlap(edge) && (b.is_single() ? edge.to == b.outermost : layout_.piece(edge.to) == b.piece))
        return true;
  return false;
}

// The two ends of a contig hardly longer than a clone are much alike: what fits the other one as well is no rival here.
bool layout_joiner::fits_other_end(const end_candidate &of, std::int64_t at, std::int64_t rival) const {
  if (end(at).is_single() || end(rival).is_single())
    return false;
  return std::any_of(candidates_.begin(), candidates_.end(), [&](const end_candidate &c) {
    const std::int64_t mate = c.p == rival ? c.q : c.q == rival ? c.p : -1;
    return mate >= 0 && mate != at && end(mate).piece == end(at).piece && c.flush &&
           c.match.score >= share_of_other_end * of.match.score;
  });
}

bool layout_joiner::is_rivalled(const end_candidate &candidate, std::int64_t of, std::int64_t mate) const {
  for (const end_candidate &other : candidates_) {
    if (other.p != of && other.q != of)
      continue;
    const std::int64_t rival = other.p == of ? other.q : other.p;
    if (rival == mate || other.support > candidate.support)
      continue;
    if (other.good && other.support < candidate.support)
      return true;
    if (fits_other_end(other, of, rival))
      continue;
    const bool stronger =
        other.match.score > candidate.match.score || (other.match.score == candidate.match.score && rival < mate);
    if (stronger)
      return true;
    if (other.match.score > share_of_rival * candidate.match.score && !end(rival).is_single() &&
        !share_an_overlap(end(rival), end(mate)))
      return true;
  }
  return false;
}

std::int32_t layout_joiner::join_end_stretches() {
  refresh_ends();
  match_new_ends();
  if (!go_on_())
    return 0;
  // What stretches of several clones tell goes first: an end clone that is a chimera can outshine it.
  std::vector<end_candidate> accepted;
  for (const join_support support : {join_support::both_sides, join_support::one_side, join_support::two_clones}) {
    for (const end_candidate &candidate : candidates_)
      if (candidate.good && candidate.support == support && !is_rivalled(candidate, candidate.p, candidate.q) &&
          !is_rivalled(candidate, candidate.q, candidate.p))
        accepted.push_back(candidate);
    if (!accepted.empty() || !one_clone_counts_)
      break;
  }
  std::sort(accepted.begin(), accepted.end(), [](const end_candidate &a, const end_candidate &b) {
    return a.match.score != b.match.score ? a.match.score > b.match.score : a.p != b.p ? a.p < b.p : a.q < b.q;
  });
  std::int32_t joined = 0;
  std::vector<char> used(layout_.pieces.size() + accepted.size() + 1, 0); // a contig takes part in one join a round
  for (const end_candidate &one : accepted) {
    const contig_end p = end(one.p), q = end(one.q);
    const bool is_free = (p.is_single() || used[static_cast<std::size_t>(p.piece)] == 0) &&
                         (q.is_single() || used[static_cast<std::size_t>(q.piece)] == 0) &&
                         (!p.is_single() || layout_.piece(p.outermost) < 0) &&
                         (!q.is_single() || layout_.piece(q.outermost) < 0);
    if (!is_free)
      continue;
    layout_join told;
    told.kind = join_kind::end_stretch;
    told.support = one.support;
    told.a = p.outermost;
    told.b = q.outermost;
    told.score = one.match.score;
    told.common = one.match.common;
    told.n_a = one.match.n_1;
    told.n_b = one.match.n_2;
    join({p.piece, p.is_single() ? p.outermost : 0, p.right}, {q.piece, q.is_single() ? q.outermost : 0, q.right},
         one.match.overlap, told);
    for (const contig_end &e : {p, q})
      if (!e.is_single())
        used[static_cast<std::size_t>(e.piece)] = 1;
    ++joined;
  }
  return joined;
}

} // namespace orb
