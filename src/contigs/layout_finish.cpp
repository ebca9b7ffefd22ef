#include "contigs/layout_finish.h"

#include <cmath>
#include <numeric>

#include "contigs/layout_loose_bands.h"
#include "contigs/layout_path.h"
#include "frame/worker_batch.h"

namespace orb {

namespace {

constexpr double margin = 3;               // of a window, in lengths of the longest clone
constexpr double middle = 1.5;             // of what two windows share, in the same
constexpr std::int32_t clones_around = 10; // to either side, for the means of doubts
constexpr double doubtful_columns = 0.5;   // share of bands in no column, of a clone that no path may use

struct placed_clone {
  laid_clone place;
  float no_column = 0;
  std::size_t window = 0, at = 0; // whose core it is in, and its place in the piece
};

// A stretch of a piece, by places among its clones: the core that it stands for, within what it looks at.
struct window {
  std::size_t piece = 0; // in order of the call
  std::size_t core_from = 0, core_to = 0, from = 0, to = 0;
  std::vector<placed_clone> placed; // from..to-1, in the piece's order
  shown_columns shown;              // of those
};

class contig_finisher {
public:
  contig_finisher(const clone_layout &layout, std::span<const std::int32_t> pieces, std::size_t clones_in_window)
      : layout_(layout), pieces_(pieces), clones_in_window_(clones_in_window) {
    for (std::size_t p = 0; p < pieces.size(); ++p)
      add_windows(p);
  }

  bool run(int threads, const std::function<bool(double)> &poll, std::vector<laid_contig> &contigs) {
    const auto n_windows = static_cast<std::int64_t>(windows_.size()), n_pieces = std::ssize(pieces_);
    const auto of_whole = [&](std::int64_t done) {
      return poll(static_cast<double>(done) / static_cast<double>(n_windows + n_pieces + 1));
    };
    if (!run_and_poll(
            n_windows, threads,
            [&](std::int64_t i, int, const std::atomic<bool> &stopped) {
              place_window(windows_[static_cast<std::size_t>(i) - 1], stopped);
            },
            of_whole))
      return false;
    contigs.resize(pieces_.size());
    return run_and_poll(
        n_pieces, threads,
        [&](std::int64_t i, int, const std::atomic<bool> &stopped) {
          if (!stopped)
            finish(static_cast<std::size_t>(i) - 1, contigs[static_cast<std::size_t>(i) - 1]);
        },
        [&](std::int64_t done) { return of_whole(n_windows + done); });
  }

private:
  const std::vector<clone_number> &members(std::size_t p) const {
    return layout_.pieces[static_cast<std::size_t>(pieces_[p])];
  }
  double centre(std::size_t p, std::size_t i) const { return layout_.centre[static_cast<std::size_t>(members(p)[i])]; }

  void add_windows(std::size_t p) {
    const std::size_t n = members(p).size(), n_windows = std::max<std::size_t>(1, n / clones_in_window_);
    first_window_.push_back(windows_.size());
    for (std::size_t k = 0; k < n_windows; ++k) {
      window made;
      made.piece = p;
      made.core_from = made.from = n * k / n_windows;
      made.core_to = made.to = n * (k + 1) / n_windows;
      const double low = centre(p, made.from) - margin * layout_.most_bands;
      const double high = centre(p, made.to - 1) + margin * layout_.most_bands;
      while (made.from > 0 && centre(p, made.from - 1) > low)
        --made.from;
      while (made.to < n && centre(p, made.to) < high)
        ++made.to;
      windows_.push_back(std::move(made));
    }
  }

  void place_window(window &at, const std::atomic<bool> &stopped) const {
    std::vector<laid_clone> laid;
    for (std::size_t i = at.from; i < at.to; ++i)
      laid.push_back({members(at.piece)[i], layout_.left(members(at.piece)[i]), layout_.right(members(at.piece)[i])});
    band_columns columns(layout_.clones, layout_.scale);
    lay_by_columns(layout_.scale, laid, columns, stopped);
    if (stopped)
      return;
    std::vector<std::vector<std::int32_t>> shown_by(laid.size());
    for (std::size_t c = 0; c < columns.columns().size(); ++c)
      for (const std::int32_t m : columns.members(columns.columns()[c]))
        shown_by[static_cast<std::size_t>(m)].push_back(static_cast<std::int32_t>(c));
    std::vector<std::int32_t> by_clone(laid.size());
    std::iota(by_clone.begin(), by_clone.end(), 0);
    const auto clone_at = [&](std::int32_t i) { return laid[static_cast<std::size_t>(i)].clone; };
    std::sort(by_clone.begin(), by_clone.end(),
              [&](std::int32_t a, std::int32_t b) { return clone_at(a) < clone_at(b); });
    for (std::size_t i = at.from; i < at.to; ++i) {
      const auto found = *std::lower_bound(by_clone.begin(), by_clone.end(), members(at.piece)[i],
                                           [&](std::int32_t a, clone_number c) { return clone_at(a) < c; });
      const auto shown = columns.in_column(found);
      placed_clone placed{laid[static_cast<std::size_t>(found)], 1, 0, i};
      if (!shown.empty())
        placed.no_column =
            static_cast<float>(std::count(shown.begin(), shown.end(), 0)) / static_cast<float>(shown.size());
      at.placed.push_back(placed);
      at.shown.add(shown_by[static_cast<std::size_t>(found)]);
    }
  }

  // How much further right the second window's axis must lie for the clones of the middle of what both share.
  double shift_between(const window &a, const window &b) const {
    std::vector<double> shifts;
    const double cut = centre(a.piece, b.core_from), reach = middle * layout_.most_bands;
    for (std::size_t i = std::max(a.from, b.from); i < std::min(a.to, b.to); ++i) {
      if (std::abs(centre(a.piece, i) - cut) > reach)
        continue;
      const laid_clone &x = a.placed[i - a.from].place, &y = b.placed[i - b.from].place;
      shifts.push_back((x.left + x.right - y.left - y.right) / 2);
    }
    if (shifts.empty())
      return 0;
    const auto half = shifts.begin() + static_cast<std::ptrdiff_t>(shifts.size() / 2);
    std::nth_element(shifts.begin(), half, shifts.end());
    return std::round(*half); // ends stay between columns, which a map in whole bands tells apart
  }

  void finish(std::size_t p, laid_contig &contig) {
    const std::size_t end = p + 1 < first_window_.size() ? first_window_[p + 1] : windows_.size();
    std::vector<placed_clone> all;
    double shift = 0;
    for (std::size_t k = first_window_[p]; k < end; ++k) {
      window &at = windows_[k];
      if (k > first_window_[p])
        shift += shift_between(windows_[k - 1], at);
      for (std::size_t i = at.core_from; i < at.core_to; ++i) {
        placed_clone placed = at.placed[i - at.from];
        placed.window = k;
        placed.place.left += shift;
        placed.place.right += shift;
        all.push_back(placed);
      }
    }
    std::sort(all.begin(), all.end(), [](const placed_clone &x, const placed_clone &y) {
      return x.place.left != y.place.left ? x.place.left < y.place.left : x.place.clone < y.place.clone;
    });
    take_places(all, contig);
    find_doubts(pieces_[p], contig);
    contig.loose_bands = clones_of_loose_bands(layout_.clones, contig);
    find_paths(all, contig);
  }

  static void take_places(const std::vector<placed_clone> &all, laid_contig &contig) {
    const double first = std::round(all.front().place.left);
    for (const placed_clone &placed : all) {
      const double left = placed.place.left - first, right = placed.place.right - first;
      contig.clones.push_back(placed.place.clone);
      contig.left_exact.push_back(static_cast<float>(left + 1));
      contig.right_exact.push_back(static_cast<float>(right));
      contig.left.push_back(std::max(1, static_cast<std::int32_t>(std::lround(left)) + 1));
      contig.right.push_back(std::max(contig.left.back(), static_cast<std::int32_t>(std::lround(right))));
      contig.doubt.push_back({placed.no_column});
    }
  }

  void find_doubts(std::int32_t piece, laid_contig &contig) const {
    const band_scale &scale = layout_.scale;
    for (std::size_t i = 0; i < contig.clones.size(); ++i) {
      const clone_number c = contig.clones[i];
      std::int32_t edges = 0, odd = 0, pairs = 0, not_linked = 0;
      for (const scored_edge &edge : layout_.net.of(c)) {
        if (edge.score < scale.cutoff)
          continue;
        ++edges;
        odd += edge.end != edge_end::kept || layout_.piece(edge.to) != piece ||
               std::abs(layout_.overlap_laid(c, edge.to) - edge.overlap) >
                   8 * scale.r + 0.15 * layout_.fewer_bands(c, edge.to);
      }
      for (std::size_t j = i + 1; j < contig.clones.size() && contig.left[j] < contig.right[i] && j < i + 200; ++j)
        if (layout_.should_be_linked(c, contig.clones[j])) {
          ++pairs;
          not_linked += !layout_.linked(c, contig.clones[j]);
        }
      contig.doubt[i].odd_edges = edges == 0 ? 1 : static_cast<float>(odd) / static_cast<float>(edges);
      contig.doubt[i].not_linked = pairs == 0 ? 0 : static_cast<float>(not_linked) / static_cast<float>(pairs);
    }
    const auto n = static_cast<std::int32_t>(contig.clones.size());
    for (std::int32_t i = 0; i < n; ++i) {
      const std::int32_t from = std::max(0, i - clones_around), to = std::min(n - 1, i + clones_around);
      float no_column = 0, odd = 0;
      for (std::int32_t j = from; j <= to; ++j) {
        no_column += contig.doubt[static_cast<std::size_t>(j)].no_column;
        odd += contig.doubt[static_cast<std::size_t>(j)].odd_edges;
      }
      clone_doubt &doubt = contig.doubt[static_cast<std::size_t>(i)];
      doubt.no_column_around = no_column / static_cast<float>(to - from + 1);
      doubt.odd_edges_around = odd / static_cast<float>(to - from + 1);
    }
  }

  void find_paths(const std::vector<placed_clone> &all, laid_contig &contig) const {
    std::vector<laid_clone> laid;
    std::vector<char> usable;
    for (const placed_clone &placed : all) {
      laid.push_back(placed.place);
      usable.push_back(!layout_.is_suspect(placed.place.clone) && placed.no_column <= doubtful_columns &&
                       !std::binary_search(contig.loose_bands.begin(), contig.loose_bands.end(), placed.place.clone));
    }
    const path_step_rule rule{layout_.scale};
    const common_columns common = [&](std::size_t u, std::size_t v) { return columns_shared(all[u], all[v]); };
    contig.paths = tiling_paths(rule, laid, usable, common);
    if (contig.paths.empty()) {
      std::fill(usable.begin(), usable.end(), 1);
      contig.paths = tiling_paths(rule, laid, usable, common);
    }
  }

  // Columns are those of a window: one that knows both clones.
  std::int32_t columns_shared(const placed_clone &u, const placed_clone &v) const {
    for (const std::size_t k : {u.window, v.window}) {
      const window &at = windows_[k];
      if (u.at >= at.from && u.at < at.to && v.at >= at.from && v.at < at.to)
        return at.shown.common(u.at - at.from, v.at - at.from);
    }
    return 0;
  }

  const clone_layout &layout_;
  std::span<const std::int32_t> pieces_;
  std::size_t clones_in_window_;
  std::vector<std::size_t> first_window_; // by piece
  std::vector<window> windows_;
};

} // namespace

bool finish_pieces(const clone_layout &layout, std::span<const std::int32_t> pieces, int threads,
                   const std::function<bool(double)> &poll, std::vector<laid_contig> &contigs,
                   std::size_t clones_in_window) {
  return contig_finisher(layout, pieces, clones_in_window).run(threads, poll, contigs);
}

} // namespace orb
