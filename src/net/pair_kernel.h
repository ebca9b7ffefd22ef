// The one kernel that compares many pairs: the flat arrays of the library in, significant overlaps out. It holds what
// can be computed once for all pairs, touches no frame, and is lent to worker threads.
#pragma once

#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

#include "graph/class_net.h"
#include "metrics/band_frequencies.h"
#include "metrics/metric_context.h"
#include "metrics/pair_score.h"

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
  // `significant`: table of the least significant k for `cutoff`, or null; metrics without one pass it by. Throws
  // zero_frequency when weights are needed and a band has no frequency. `threads` as in the settings.
  pair_kernel(const metric_context &context, std::int16_t distance_index, double cutoff, double burying,
              const class_clone_dist_FPC *significant, int threads);

  // True when the score of the pair reaches the cutoff. Exact: the same numbers as class_clone_dist_calc gives.
  // `worker`: number of the calling worker, below worker_count(threads).
  bool pair(clone_number a, clone_number b, int worker, double &value, std::int16_t &code);
  // Appends the significant overlaps of an element with the partners first..last (itself left out) in ascending order.
  void row(const pair_elements &elements, std::int32_t element, std::int32_t first, std::int32_t last, int worker,
           std::vector<pair_record> &records);

private:
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
  std::int32_t n_bands(clone_number clone) const {
    const auto c = static_cast<std::size_t>(clone);
    return first_[c + 1] - first_[c];
  }

  const metric_context &context_;
  std::int16_t distance_index_;
  double cutoff_, burying_;
  const class_clone_dist_FPC *significant_;
  bool skip_by_table_; // a pair below its table entry can't reach the cutoff
  bool with_weights_;  // the full mode
  bool exclude_bands_; // excluded bands count in no match (plain mode only: the full mode reads filtered lists)
  bool with_markers_;
  bool remember_scores_; // few different counts, each of them dear
  std::int32_t t_;
  double most_; // no count exceeds the number of band positions
  band_frequencies frequencies_;
  const band_value *bands_;
  const band_adress *first_;
  std::vector<band_value> usable_bands_; // without excluded bands
  std::vector<band_adress> first_usable_, no_bands_;
  std::vector<double> weight_of_clone_;                               // sum of -ln f over its bands
  std::vector<std::unordered_map<std::uint64_t, double>> remembered_; // one a worker: counts -> score
};

} // namespace orb
