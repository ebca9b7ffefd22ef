// The one kernel that compares many pairs: the flat arrays of the library in, significant overlaps out. It holds what
// can be computed once for all pairs, touches no frame, and is lent to worker threads.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "graph/class_net.h"
#include "metrics/band_frequencies.h"
#include "metrics/band_merge_lanes.h"
#include "metrics/metric_context.h"
#include "metrics/overlap_rule.h"
#include "metrics/pair_score.h"
#include "pairs/least_common.h"
#include "pairs/score_memory.h"

namespace orb {

// A significant overlap of an element with a partner element.
struct pair_record {
  std::int32_t partner = 0;
  std::int16_t code = 0;          // burial code as seen from the row's element
  std::int16_t code_mirrored = 0; // as seen from the partner: for united versions not always the mirror of the other
  double value = 0;               // unrounded
};

// Elements 1..n of a net to be made, each with the clones that speak for it: one, or all versions of a name, or none
// for a later version, which has no overlaps.
class pair_elements {
public:
  // Element i is the i-th clone of the list.
  static pair_elements of_list(std::span<const clone_number> clones);
  // Element i is clone i; versions are united when asked.
  static pair_elements of_library(const class_DB_of_clones &database, bool unite_versions);

  std::int32_t count() const { return static_cast<std::int32_t>(first_.size()) - 2; }
  std::span<const clone_number> clones_of(std::int32_t element) const {
    const auto e = static_cast<std::size_t>(element);
    return {clones_.data() + first_[e], first_[e + 1] - first_[e]};
  }

private:
  std::vector<std::size_t> first_; // 1..n+1
  std::vector<clone_number> clones_;
};

class pair_kernel {
public:
  // `significant`: table of the least significant k for the rule's cutoff, or null; metrics without one pass it by.
  // Throws zero_frequency when weights are needed and a band has no frequency. `threads` as in the settings.
  pair_kernel(const metric_context &context, const overlap_rule &rule, const class_clone_dist_FPC *significant,
              int threads);

  // What is known of the common bands that a significant pair must have.
  const least_common_bands &least_common() const { return *least_common_; }
  std::span<const band_value> bands_compared(clone_number clone) const {
    return exclude_bands_ ? usable_bands_of(clone) : bands_of(clone);
  }
  std::int32_t size(clone_number clone) const {
    return least_common_->size_of(static_cast<std::int32_t>(bands_compared(clone).size()),
                                  with_weights_ ? weight_of_clone_[static_cast<std::size_t>(clone)] : 0);
  }
  // No pair of bands farther apart matches.
  std::int32_t tolerance() const { return with_weights_ ? list_tolerance(context_.database) : t_; }

  // True when the score of the pair reaches the cutoff. Exact: the same numbers as class_clone_dist_calc gives.
  // `worker`: number of the calling worker, below worker_count(threads).
  bool pair(clone_number a, clone_number b, int worker, double &value, std::int16_t &code);
  // The same for many pairs of clones; `significant(k, value, code)` is called for the k-th when it is significant.
  template <class significant_function>
  void pairs(std::span<const std::pair<clone_number, clone_number>> pairs, int worker,
             significant_function &&significant) {
    std::size_t k = 0;
    double value = 0;
    std::int16_t code = 0;
    constexpr std::size_t n_lanes = band_merge_lanes::n_lanes, ahead = 2 * n_lanes; // bands lie all over the memory
    for (std::size_t l = 0; count_together_ && l < std::min(ahead, pairs.size()); ++l)
      lanes_.fetch(pairs[l]);
    for (; count_together_ && k + n_lanes <= pairs.size(); k += n_lanes) {
      std::int32_t common[n_lanes];
      for (std::size_t l = k + ahead; l < std::min(k + ahead + n_lanes, pairs.size()); ++l)
        lanes_.fetch(pairs[l]);
      lanes_.count(pairs.data() + k, t_, common);
      for (std::size_t l = 0; l < n_lanes; ++l)
        if (pair_of_common(pairs[k + l].first, pairs[k + l].second, common[l], worker, value, code))
          significant(k + l, value, code);
    }
    for (; k < pairs.size(); ++k)
      if (pair(pairs[k].first, pairs[k].second, worker, value, code))
        significant(k, value, code);
  }
  // Overlap of two elements by the best pair of their clones.
  bool element_pair(const pair_elements &elements, std::int32_t element, std::int32_t partner, int worker,
                    pair_record &record);

private:
  bool pair_of_common(clone_number a, clone_number b, std::int32_t common, int worker, double &value,
                      std::int16_t &code);
  bool pair_of_counts(clone_number a, clone_number b, pair_counts &counts, int worker, double &value,
                      std::int16_t &code);
  void weigh_clones();
  double largest_weight() const;
  bool united_pair(std::span<const clone_number> clones_1, std::span<const clone_number> clones_2, int worker,
                   pair_record &record);
  void count_plain(clone_number a, clone_number b, pair_counts &counts) const;
  void count_with_weights(clone_number a, clone_number b, pair_counts &counts) const;
  double score(clone_number a, clone_number b, const pair_counts &counts, int worker);
  void leave_excluded_bands_out();
  std::span<const band_value> bands_of(clone_number clone) const {
    const auto c = static_cast<std::size_t>(clone);
    return {bands_ + first_[c], static_cast<std::size_t>(first_[c + 1] - first_[c])};
  }
  std::span<const band_value> usable_bands_of(clone_number clone) const {
    const auto c = static_cast<std::size_t>(clone);
    return {usable_bands_.data() + first_usable_[c], static_cast<std::size_t>(first_usable_[c + 1] - first_usable_[c])};
  }
  std::int32_t n_bands(clone_number clone) const {
    const auto c = static_cast<std::size_t>(clone);
    return first_[c + 1] - first_[c];
  }

  const metric_context &context_;
  std::int16_t distance_index_;
  double cutoff_, burying_;
  const class_clone_dist_FPC *significant_;
  bool skip_by_table_; // a pair below its table entry can't reach the cutoff
  bool with_weights_;  // weights of bands are summed
  bool exclude_bands_; // excluded bands count in no match (without weights only: with them the lists are filtered)
  bool with_markers_;
  bool score_by_counts_;        // the score depends on the counts alone
  bool count_together_ = false; // common bands by the merge of several pairs at once
  std::int32_t t_;
  double most_; // no count exceeds the number of band positions
  band_frequencies frequencies_;
  const band_value *bands_;
  const band_adress *first_;
  std::vector<band_value> usable_bands_; // without excluded bands
  std::vector<band_adress> first_usable_, no_bands_;
  std::vector<double> weight_of_clone_;  // sum of -ln f over its bands
  std::vector<score_memory> remembered_; // one a worker
  band_merge_lanes lanes_;
  std::unique_ptr<least_common_bands> least_common_;
};

} // namespace orb
