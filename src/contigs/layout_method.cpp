#include "contigs/layout_method.h"

#include <atomic>
#include <memory>
#include <numeric>

#include "contigs/layout_ends.h"
#include "contigs/layout_joins.h"
#include "contigs/piece_positions.h"
#include "frame/worker_batch.h"
#include "frame/worker_blocks.h"

namespace orb {

namespace {

constexpr int most_check_rounds = 8, most_join_rounds = 30, most_joined_rounds = 3;
constexpr std::size_t clones_in_part = 512;
// Of what lies at an end, to be shown by a clone that alone ties it to another: a chimera's places go on past its arms.
// (Of 11 good ones of E. coli libraries one lay below, of 3 chimeras all.)
constexpr double least_shown_of_bridge = 0.4;

class layout_run {
public:
  layout_run(const clone_bands &clones, const class_net &net, const layout_options &options,
             const layout_progress &progress)
      : clones_(clones), options_(options), progress_(progress), scale_(band_scale_of(clones, options.seed)),
        goes_on_([this] { return progress_.go_on(0); }),
        net_(net, clones, scale_, scale_.weak_cutoff(), options.threads, goes_on_), layout_(clones_, scale_, net_),
        workers_(static_cast<std::size_t>(worker_count(options.threads))) {}

  layout_result run() {
    result_.scale = scale_;
    count_overlaps();
    if (!goes_on_() || !find_clone_suspects() || !lay_pieces() || !join_pieces() || !check_joined() ||
        !finish_contigs())
      return std::move(result_);
    std::erase_if(result_.suspects, [&](const clone_suspect &s) { return !layout_.is_suspect(s.clone); });
    result_.joins = layout_.joins;
    result_.completed = true;
    return std::move(result_);
  }

private:
  void step(const std::string &name) { progress_.step(name); }

  void count_overlaps() {
    std::int64_t records = 0;
    for (clone_number c = 1; c <= clones_.n; ++c) {
      result_.n_of_stacks += layout_.is_of_stack(c);
      for (const scored_edge &edge : net_.of(c))
        records += edge.score >= scale_.cutoff;
    }
    result_.n_overlaps = records / 2;
    result_.n_overlaps_below = (net_.n_left_out() + static_cast<std::int64_t>(net_.n_records()) - records) / 2;
  }

  bool find_clone_suspects() {
    step("Clone test");
    result_.suspects = find_suspects(clones_, scale_, net_, options_.threads, progress_.go_on);
    for (const clone_suspect &found : result_.suspects)
      layout_.suspect[static_cast<std::size_t>(found.clone)] = suspect_reason::two_sides;
    layout_.telling = find_telling(clones_, scale_, net_, result_.suspects);
    return goes_on_();
  }

  // What hangs together by backbone overlaps and joins among these clones; single clones are no piece.
  void make_pieces(std::vector<clone_number> clones, std::vector<std::int32_t> &made) {
    std::sort(clones.begin(), clones.end());
    std::vector<std::pair<clone_number, clone_number>> joins;
    for (const layout_spring &spring : layout_.springs) {
      joins.emplace_back(spring.a, spring.b);
      joins.emplace_back(spring.b, spring.a);
    }
    std::sort(joins.begin(), joins.end());
    std::vector<clone_number> waiting;
    constexpr std::int32_t unseen = -2;
    for (const clone_number c : clones)
      layout_.piece_of[static_cast<std::size_t>(c)] = unseen;
    for (const clone_number start : clones) {
      if (layout_.piece(start) != unseen)
        continue;
      const auto piece = static_cast<std::int32_t>(layout_.pieces.size());
      const auto take = [&](clone_number c) {
        if (layout_.piece(c) != unseen)
          return;
        layout_.piece_of[static_cast<std::size_t>(c)] = piece;
        waiting.push_back(c);
      };
      waiting.clear();
      take(start);
      for (std::size_t at = 0; at < waiting.size(); ++at) {
        const clone_number c = waiting[at];
        for (const scored_edge &edge : net_.of(c))
          if (is_backbone(layout_, c, edge))
            take(edge.to);
        for (auto join = std::lower_bound(joins.begin(), joins.end(), std::pair<clone_number, clone_number>(c, 0));
             join != joins.end() && join->first == c; ++join)
          take(join->second);
      }
      if (waiting.size() == 1) {
        layout_.piece_of[static_cast<std::size_t>(start)] = -1;
        continue;
      }
      layout_.pieces.push_back(waiting);
      made.push_back(piece);
    }
  }

  // For each of these pieces, the largest first so that no worker is left with it at the end.
  bool for_pieces(std::vector<std::int32_t> pieces,
                  const std::function<void(std::int32_t, int, const std::atomic<bool> &)> &body) {
    std::stable_sort(pieces.begin(), pieces.end(), [&](std::int32_t a, std::int32_t b) {
      return layout_.pieces[static_cast<std::size_t>(a)].size() > layout_.pieces[static_cast<std::size_t>(b)].size();
    });
    const auto n = static_cast<std::int64_t>(pieces.size());
    return run_and_poll(
        n, options_.threads,
        [&](std::int64_t i, int worker, const std::atomic<bool> &stopped) {
          body(pieces[static_cast<std::size_t>(i) - 1], worker, stopped);
        },
        [&](std::int64_t done) {
          return progress_.go_on(n == 0 ? 1 : static_cast<double>(done) / static_cast<double>(n));
        });
  }

  bool lay(const std::vector<std::int32_t> &pieces, bool from_scratch) {
    return for_pieces(pieces, [&](std::int32_t piece, int worker, const std::atomic<bool> &stopped) {
      auto &place = workers_[static_cast<std::size_t>(worker)];
      if (!place)
        place = std::make_unique<piece_positions>(layout_);
      place->lay(piece, from_scratch, stopped);
    });
  }

  bool lay_pieces() {
    step("Positions in pieces");
    std::vector<clone_number> good;
    for (clone_number c = 1; c <= clones_.n; ++c)
      if (!layout_.is_suspect(c))
        good.push_back(c);
    std::vector<std::int32_t> touched;
    make_pieces(good, touched);
    return lay_and_check(touched, most_check_rounds);
  }

  // Lays pieces, takes what contradicts their layouts out, lays what they fall into, and so on.
  bool lay_and_check(std::vector<std::int32_t> &touched, int rounds) {
    for (int round = 0; round < rounds && !touched.empty(); ++round) {
      std::vector<std::int32_t> contradicted;
      if (!lay(touched, true) || !check(touched, contradicted))
        return false;
      take_apart(contradicted, touched);
    }
    return lay(touched, true);
  }

  // Pieces of what is left of these.
  void take_apart(const std::vector<std::int32_t> &pieces, std::vector<std::int32_t> &made) {
    made.clear();
    for (const std::int32_t piece : pieces) {
      std::vector<clone_number> members;
      for (const clone_number c : layout_.pieces[static_cast<std::size_t>(piece)]) {
        if (layout_.is_suspect(c))
          layout_.piece_of[static_cast<std::size_t>(c)] = -1;
        else
          members.push_back(c);
      }
      layout_.pieces[static_cast<std::size_t>(piece)].clear();
      make_pieces(members, made);
    }
  }

  // A chimera of which both parts end where a contig does holds two of them together, and few clones are laid over
  // others: but their bands say that they don't belong there, or the end that it hides matches that of a third contig.
  bool leave_out_bridges(const std::vector<std::int32_t> &pieces, std::vector<std::int32_t> &contradicted) {
    std::vector<contig_end> ends;
    for (const std::int32_t piece : pieces)
      for (const bool right : {false, true})
        ends.push_back(end_of_piece(layout_, piece, right));
    // Where chimeras are many, ends many and contigs short, what one clone alone holds together is as well false.
    const double n_false = layout_joiner(layout_, options_.threads, goes_on_).chance_of_false_bridges();
    for (const std::int32_t piece : pieces) {
      if (!goes_on_())
        return false;
      for (const lone_bridge &bridge : lone_bridges(layout_, piece)) {
        if (!goes_on_())
          return false;
        if (layout_.is_suspect(bridge.clone))
          continue;
        const contig_end left = hidden_end(bridge.left, true), right = hidden_end(bridge.right, false);
        if (goes_on_from(bridge.clone, left) && goes_on_from(bridge.clone, right) &&
            (hangs_one_clone(bridge) || (is_believed(layout_, bridge, n_false) && !leads_elsewhere(left, piece, ends) &&
                                         !leads_elsewhere(right, piece, ends))))
          continue;
        layout_.suspect[static_cast<std::size_t>(bridge.clone)] = suspect_reason::misfit;
        result_.misfits.push_back(bridge.clone);
        if (std::find(contradicted.begin(), contradicted.end(), piece) == contradicted.end())
          contradicted.push_back(piece);
      }
    }
    return true;
  }

  // Whether an end that a piece hides matches that of another piece.
  bool leads_elsewhere(const contig_end &hidden, std::int32_t piece, const std::vector<contig_end> &ends) const {
    const end_matcher matcher(layout_);
    const double need = score_of_ends(static_cast<double>(ends.size()));
    return std::any_of(ends.begin(), ends.end(), [&](const contig_end &other) {
      if (other.piece == piece)
        return false;
      end_match match = matcher.match(hidden, other);
      if (match.score < need)
        return false;
      matcher.score_without_loose(hidden, other, match);
      return std::min(match.score_without_1, match.score_without_2) >= need &&
             matcher.flush(hidden, other, match.overlap);
    });
  }

  // A single clone beyond the bridge has too few bands for an end of its own.
  static bool hangs_one_clone(const lone_bridge &bridge) { return bridge.left.size() < 2 || bridge.right.size() < 2; }

  // Whether a clone shows what lies at an end that it reaches over; -1, too few bands to tell, is taken for yes.
  bool goes_on_from(clone_number clone, const contig_end &end) const {
    const double overlap = layout_.outer_end(end.outermost, end.right) + layout_.outer_end(clone, !end.right);
    const double shown = share_shown(layout_, end, clone, overlap);
    return shown < 0 || shown >= least_shown_of_bridge;
  }

  // The end that a part of a piece would have by itself.
  contig_end hidden_end(const std::vector<clone_number> &part, bool right) {
    layout_.pieces.push_back(part);
    contig_end end = end_of_piece(layout_, static_cast<std::int32_t>(layout_.pieces.size()) - 1, right);
    layout_.pieces.pop_back();
    return end;
  }

  // Joins and attached clones can fold a contig that was right before.
  bool check_joined() {
    for (int round = 0; round < most_joined_rounds; ++round) {
      step("Checking contigs");
      std::vector<std::int32_t> pieces, contradicted, made;
      for (std::size_t p = 0; p < layout_.pieces.size(); ++p)
        if (!layout_.pieces[p].empty())
          pieces.push_back(static_cast<std::int32_t>(p));
      if (!check(pieces, contradicted) || !leave_out_bridges(pieces, contradicted))
        return false;
      if (contradicted.empty())
        return true;
      take_apart(contradicted, made);
      const auto is_apart = [&](clone_number a, clone_number b) {
        return layout_.piece(a) < 0 || layout_.piece(a) != layout_.piece(b);
      };
      std::erase_if(layout_.springs, [&](const layout_spring &s) { return is_apart(s.a, s.b); });
      std::erase_if(layout_.joins, [&](const layout_join &j) { return is_apart(j.a, j.b); });
      if (!lay_and_check(made, most_joined_rounds) || !join_pieces())
        return false;
    }
    return true;
  }

  // Clones are looked at in parts, so that one large piece has all threads.
  bool check(const std::vector<std::int32_t> &pieces, std::vector<std::int32_t> &contradicted) {
    struct part {
      std::int32_t piece;
      std::size_t from, to;
    };
    std::vector<part> parts;
    for (const std::int32_t piece : pieces)
      for (std::size_t from = 0, n = layout_.pieces[static_cast<std::size_t>(piece)].size(); from < n;
           from += clones_in_part)
        parts.push_back({piece, from, std::min(n, from + clones_in_part)});
    std::vector<layout_verdict> of_parts(parts.size()), verdicts(layout_.pieces.size());
    std::vector<float> misfit(static_cast<std::size_t>(clones_.n) + 1, -1);
    std::vector<layout_neighbours> around(workers_.size(), layout_neighbours(layout_));
    const auto check_part = [&](std::int64_t i, int worker, const std::atomic<bool> &stopped) {
      const part &at = parts[static_cast<std::size_t>(i) - 1];
      of_parts[static_cast<std::size_t>(i) - 1] =
          check_clones(layout_, at.piece, at.from, at.to, around[static_cast<std::size_t>(worker)], misfit, stopped);
    };
    if (!run_and_poll(static_cast<std::int64_t>(parts.size()), options_.threads, check_part,
                      [&](std::int64_t) { return goes_on_(); }))
      return false;
    for (std::size_t i = 0; i < parts.size(); ++i) {
      auto &edges = verdicts[static_cast<std::size_t>(parts[i].piece)].edges;
      edges.insert(edges.end(), of_parts[i].edges.begin(), of_parts[i].edges.end());
    }
    if (!for_pieces(pieces, [&](std::int32_t piece, int, const std::atomic<bool> &) {
          verdicts[static_cast<std::size_t>(piece)].misfits = misfits_of(layout_, piece, misfit);
        }))
      return false;
    for (const std::int32_t piece : pieces) {
      const layout_verdict &verdict = verdicts[static_cast<std::size_t>(piece)];
      for (const dropped_edge &edge : verdict.edges) {
        net_.end_both(edge.a, edge.b, edge.why);
        result_.dropped.push_back(edge);
      }
      for (const clone_number c : verdict.misfits) {
        layout_.suspect[static_cast<std::size_t>(c)] = suspect_reason::misfit;
        result_.misfits.push_back(c);
      }
      if (!verdict.edges.empty() || !verdict.misfits.empty())
        contradicted.push_back(piece);
    }
    return true;
  }

  bool join_pieces() {
    step("Joining contigs");
    layout_joiner joiner(layout_, options_.threads, goes_on_);
    const auto settle = [&] { // what grew is laid again
      while (joiner.attach_clones() > 0 && goes_on_()) {
      }
      std::vector<std::int32_t> grown;
      for (const std::int32_t piece : joiner.touched())
        if (!layout_.pieces[static_cast<std::size_t>(piece)].empty())
          grown.push_back(piece);
      const bool done = lay(grown, false);
      joiner.forget_touched();
      return done && goes_on_();
    };
    const auto rounds_of = [&](std::int32_t (layout_joiner::*join)()) {
      for (int round = 0; round < most_join_rounds; ++round) {
        const std::int32_t joined = (joiner.*join)();
        if (!settle())
          return false;
        if (joined == 0)
          break;
      }
      return true;
    };
    if (!settle())
      return false;
    for (const bool one_clone_counts : {false, true}) {
      joiner.believe_one_clone(one_clone_counts);
      for (const auto join :
           {&layout_joiner::join_end_stretches, &layout_joiner::join_by_edges, &layout_joiner::join_end_stretches,
            &layout_joiner::join_by_bridges, &layout_joiner::join_end_stretches})
        if (!rounds_of(join))
          return false;
    }
    return true;
  }

  // A suspect that lies in a contig, where nearly all of its overlaps want it, was a good clone of a thin place. (Of
  // 593 in libraries of three genomes 28 were chimeras, of 9,866 in no contig 9,077.)
  void acquit_attached() {
    for (clone_number c = 1; c <= clones_.n; ++c)
      if (suspect_reason &why = layout_.suspect[static_cast<std::size_t>(c)];
          layout_.piece(c) >= 0 && why == suspect_reason::two_sides)
        why = suspect_reason::none;
  }

  bool finish_contigs() {
    step("Columns of bands");
    std::vector<std::int32_t> pieces;
    for (std::size_t p = 0; p < layout_.pieces.size(); ++p)
      if (layout_.pieces[p].size() > 1)
        pieces.push_back(static_cast<std::int32_t>(p));
      else
        for (const clone_number c : layout_.pieces[p])
          layout_.piece_of[static_cast<std::size_t>(c)] = -1;
    acquit_attached();
    if (!finish_pieces(layout_, pieces, options_.threads, progress_.go_on, result_.contigs))
      return false;
    std::sort(result_.contigs.begin(), result_.contigs.end(), [](const laid_contig &a, const laid_contig &b) {
      return a.clones.size() != b.clones.size() ? a.clones.size() > b.clones.size()
                                                : a.clones.front() < b.clones.front();
    });
    for (clone_number c = 1; c <= clones_.n; ++c)
      if (layout_.piece(c) < 0)
        result_.alone.push_back(c);
    return true;
  }

  const clone_bands &clones_;
  const layout_options &options_;
  const layout_progress &progress_;
  band_scale scale_;
  go_on_function goes_on_;
  scored_net net_;
  clone_layout layout_;
  std::vector<std::unique_ptr<piece_positions>> workers_;
  layout_result result_;
};

} // namespace

layout_result lay_contigs(const clone_bands &clones, const class_net &net, const layout_options &options,
                          const layout_progress &progress) {
  return layout_run(clones, net, options, progress).run();
}

} // namespace orb
