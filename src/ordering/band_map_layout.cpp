#include "ordering/band_map_layout.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "graph/label_forest.h"
#include "metrics/band_merge.h"
#include "ordering/spanning_tree_tourer.h"
#include "ordering/square_array.h"

namespace orb {

namespace {

constexpr double least_share_of_link = 0.25, least_bands_of_link = 5; // of the smaller clone
constexpr std::int32_t units_in_band = 10;                            // of the integer distances of the tree
constexpr std::int32_t no_link = 1000000;
constexpr int n_rounds = 4; // in which each clone is laid anew
constexpr double gap_between_parts = 10;

class clone_layout {
public:
  clone_layout(process_frame &frame, const band_map_clones &clones)
      : frame_(frame), clones_(clones), n_(static_cast<std::int32_t>(clones.count())), overlap_(n_, 0),
        middle_(clones.count() + 1, 0), is_laid_(clones.count() + 1, false) {}

  bool run(std::vector<clone_stretch> &stretches) {
    if (!count_overlaps())
      return false;
    label_forest parts;
    parts.start(n_);
    for (std::int32_t i = 1; i <= n_; ++i)
      for (std::int32_t j = i + 1; j <= n_; ++j)
        if (is_link(i, j))
          parts.join(i, j);
    double end = 0;
    for (std::int32_t root = 1; root <= n_; ++root) {
      number_list part;
      for (std::int32_t i = root; i <= n_; ++i)
        if (parts.find_root(i) == root)
          part.add(i);
      if (!part.empty() && !lay_part(part, end))
        return false;
    }
    stretches.clear();
    for (std::int32_t i = 1; i <= n_; ++i)
      stretches.push_back({middle(i) - size(i) / 2, middle(i) + size(i) / 2});
    return true;
  }

private:
  double size(std::int32_t i) const {
    return static_cast<double>(clones_.bands[static_cast<std::size_t>(i) - 1].size());
  }
  double &middle(std::int32_t i) { return middle_[static_cast<std::size_t>(i)]; }

  // Common bands without those that are equal by chance.
  bool count_overlaps() {
    const double width = (2.0 * clones_.metric.tolerance + 1) / std::max(clones_.metric.n_positions, 1);
    for (std::int32_t i = 1; i <= n_; ++i) {
      frame_.progress(i, n_);
      if (!frame_.goes_on())
        return false;
      for (std::int32_t j = i + 1; j <= n_; ++j) {
        const double common = common_bands(clones_.bands[static_cast<std::size_t>(i) - 1],
                                           clones_.bands[static_cast<std::size_t>(j) - 1], clones_.metric.tolerance);
        const double by_chance = size(i) * size(j) * width;
        const double true_share = std::max(1 - (size(i) + size(j)) * width, 0.2);
        overlap_(i, j) = overlap_(j, i) =
            std::clamp((common - by_chance) / true_share, 0.0, std::min(size(i), size(j)));
      }
    }
    return true;
  }
  bool is_link(std::int32_t i, std::int32_t j) const {
    return overlap_(i, j) >= std::max(least_bands_of_link, least_share_of_link * std::min(size(i), size(j)));
  }
  // Between the middles of two linked clones.
  double step(std::int32_t i, std::int32_t j) const { return (size(i) + size(j)) / 2 - overlap_(i, j); }

  bool lay_part(const number_list &part, double &end) {
    lay_backbone(part);
    if (!lay_others(part))
      return false;
    for (int round = 0; round < n_rounds; ++round)
      for (const std::int32_t i : part.members()) {
        if (!frame_.goes_on())
          return false;
        middle(i) = best_middle(i, part);
      }
    double left = std::numeric_limits<double>::max(), right = -left;
    for (const std::int32_t i : part.members()) {
      left = std::min(left, middle(i) - size(i) / 2);
      right = std::max(right, middle(i) + size(i) / 2);
    }
    for (const std::int32_t i : part.members())
      middle(i) += end - left;
    end += right - left + gap_between_parts;
    return true;
  }

  void lay_backbone(const number_list &part) {
    const std::int32_t n = part.count();
    square_array<std::int32_t> steps(n, 0);
    for (std::int32_t a = 1; a <= n; ++a)
      for (std::int32_t b = a + 1; b <= n; ++b)
        steps(a, b) = steps(b, a) =
            is_link(part(a), part(b)) ? static_cast<std::int32_t>(units_in_band * step(part(a), part(b))) : no_link;
    number_list path;
    std::int32_t n_path = 0;
    bool connected = false;
    class_MSTTourer(frame_).callMST(steps, n, path, n_path, no_link, connected);
    for (std::int32_t k = 1; k <= n_path; ++k) {
      const std::int32_t i = part(path(k));
      middle(i) = k == 1 ? 0 : middle(part(path(k - 1))) + step(part(path(k - 1)), i);
      is_laid_[static_cast<std::size_t>(i)] = true;
    }
  }

  // The one that shares most with what lies there comes first.
  bool lay_others(const number_list &part) {
    std::vector<double> most(static_cast<std::size_t>(n_) + 1, 0);
    const auto note = [&](std::int32_t laid) {
      for (const std::int32_t i : part.members())
        most[static_cast<std::size_t>(i)] = std::max(most[static_cast<std::size_t>(i)], overlap_(i, laid));
    };
    for (const std::int32_t i : part.members())
      if (is_laid_[static_cast<std::size_t>(i)])
        note(i);
    for (;;) {
      std::int32_t next = 0;
      for (const std::int32_t i : part.members())
        if (!is_laid_[static_cast<std::size_t>(i)] &&
            (next == 0 || most[static_cast<std::size_t>(i)] > most[static_cast<std::size_t>(next)]))
          next = i;
      if (next == 0)
        return true;
      if (!frame_.goes_on())
        return false;
      middle(next) = best_middle(next, part);
      is_laid_[static_cast<std::size_t>(next)] = true;
      note(next);
    }
  }

  double common_length(double middle_i, std::int32_t i, std::int32_t j) {
    const double left = std::max(middle_i - size(i) / 2, middle(j) - size(j) / 2);
    const double right = std::min(middle_i + size(i) / 2, middle(j) + size(j) / 2);
    return std::max(right - left, 0.0);
  }

  // Of the places that the overlap with one linked clone asks for, that which fits the overlaps with all best.
  double best_middle(std::int32_t i, const number_list &part) {
    double best = middle(i), least = std::numeric_limits<double>::max();
    const auto look_at = [&](double there) {
      double misfit = 0;
      for (const std::int32_t j : part.members())
        if (j != i && is_laid_[static_cast<std::size_t>(j)])
          misfit += std::abs(overlap_(i, j) - common_length(there, i, j));
      if (misfit < least) {
        least = misfit;
        best = there;
      }
    };
    if (is_laid_[static_cast<std::size_t>(i)])
      look_at(middle(i));
    for (const std::int32_t j : part.members())
      if (j != i && is_laid_[static_cast<std::size_t>(j)] && is_link(i, j)) {
        look_at(middle(j) - step(i, j));
        look_at(middle(j) + step(i, j));
        look_at(middle(j));
      }
    return best;
  }

  process_frame &frame_;
  const band_map_clones &clones_;
  const std::int32_t n_;
  square_array<double> overlap_; // by clones, from 1
  std::vector<double> middle_;   // from 1
  std::vector<bool> is_laid_;
};

} // namespace

bool lay_out_clones(process_frame &frame, const band_map_clones &clones, std::vector<clone_stretch> &stretches) {
  return clone_layout(frame, clones).run(stretches);
}

} // namespace orb
