// One pair of clones: how many bands they share, and what score that gives. A start operation brings the counts into
// the object, value operations turn them into scores.
#pragma once

#include <cstdint>
#include <memory>

#include "frame/lists.h"
#include "metrics/class_clone_dist_FPC.h"
#include "metrics/class_clone_dist_general.h"
#include "metrics/class_clone_dist_table.h"
#include "metrics/metric_context.h"
#include "metrics/pair_score.h"

namespace orb {

class class_clone_dist_calc {
public:
  // `weights`: the start operations sum the weights of bands too, whatever is scored. A metric that lives on abundances
  // gets them in `minus_log10_p_value_of_clone_overlapping` in any case. `context` must outlive the object.
  explicit class_clone_dist_calc(const metric_context &context, bool weights = false)
      : context_(&context), weights_(weights) {}

  void start_of_distance_calculation(clone_number clone_1, clone_number clone_2);
  void start_of_distance_calculation_alternative_tollerance(clone_number clone_1, clone_number clone_2,
                                                            bool alternative, std::int16_t alternative_t);
  void start_indirect_without_clones(std::int32_t n1, std::int32_t n2, double x_iid, double x_fr);

  std::int32_t number_of_bands1_get() const { return counts_.n1; }
  std::int32_t number_of_bands2_get() const { return counts_.n2; }
  double x_iid_get() const { return counts_.x_iid; }
  double x_fr_get() const { return counts_.x_fr; }
  double list_weight1_get() const { return counts_.weight1; } // 0 without weights
  double list_weight2_get() const { return counts_.weight2; }
  bool FPC_table_defined_get() const { return FPC_table_defined_; }
  void FPC_table_defined_set(bool defined) { FPC_table_defined_ = defined; }
  // The table-holding member, shared between objects.
  const std::shared_ptr<class_clone_dist_FPC> &FPC_member() const { return FPC_; }
  void FPC_member_set(std::shared_ptr<class_clone_dist_FPC> member) { FPC_ = std::move(member); }

  // 0 none, 1 clone 1 buried in clone 2, 2 the reverse, 3 both.
  std::int16_t burring_index_get(double border) const;
  double value_k2mn_get() const;
  double value_kk2mn_get() const;
  double minus_log10_p_value_iid_get() const;
  double minus_log10_p_value_fr_get() const;
  double minus_log10_p_value_of_clone_overlapping(clone_number clone_1, clone_number clone_2,
                                                  std::int16_t distance_index);
  double minus_log10_p_value_of_clone_overlapping_no_clones(std::int32_t n_common_markers, std::int16_t distance_index);

private:
  struct band_comparison {
    std::int32_t tolerance;
    std::int16_t index; // of the tolerance: 0 compares numbers of bins
    bool bins;          // bands are such numbers
  };
  void count_common_bands(const band_comparison &how, bool weights, bool class_frequencies);
  void count_with_weights(const band_comparison &how, bool class_frequencies);

  const metric_context *context_;
  bool weights_;
  clone_number clone_1_ = 0, clone_2_ = 0;
  pair_counts counts_;
  bool FPC_table_defined_ = false;
  std::shared_ptr<class_clone_dist_FPC> FPC_;
  number_list list_1_, list_2_; // work lists of counting with weights
};

} // namespace orb
