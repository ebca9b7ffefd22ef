#include "metrics/class_clone_dist_my.h"

namespace orb {

class_clone_dist_my::class_clone_dist_my(const metric_context &context, const class_net *net)
    : context_(&context), net_(net), calc_(context) {}

void class_clone_dist_my::rule_set(const overlap_rule &rule) {
  rule_ = rule;
  calc_ = class_clone_dist_calc(*context_, rule.weights);
}

void class_clone_dist_my::distance_index_set(std::int16_t index) {
  if (index != rule_.distance_index)
    rule_set(rule_of_metric(index, rule_.cutoff, rule_.burying));
}

void class_clone_dist_my::net_private_parameters_set_interface(const overlap_rule &rule) {
  rule_set(rule);
  use_net_ = context_->settings.use_file_with_connections;
  same_metric_as_net_ = context_->settings.same_metric_as_net;
}

void class_clone_dist_my::net_private_parameters_set(std::int16_t distance_index, double limit_r, double burying,
                                                     bool use_net, bool same_metric_as_net) {
  rule_set(rule_of_metric(distance_index, limit_r, burying));
  use_net_ = use_net;
  same_metric_as_net_ = same_metric_as_net;
}

void class_clone_dist_my::cutoff_and_burring_calculation(clone_number clone_1, clone_number clone_2, double &value,
                                                         std::int16_t &burying_index, bool &significant) {
  value = 0;
  burying_index = 0;
  significant = false;
  if (use_net_) {
    std::int16_t mark = 0;
    // A pair that the net doesn't know can't overlap: no band comparison at all.
    if (net_ == nullptr || !net_->overlap_of_pair(clone_1, clone_2, value, mark, burying_index)) {
      value = 0;
      burying_index = 0;
      return;
    }
    if (same_metric_as_net_) {
      significant = value >= rule_.cutoff;
      return;
    }
  }
  value = calc_.minus_log10_p_value_of_clone_overlapping(clone_1, clone_2, rule_.distance_index);
  burying_index = calc_.burring_index_get(rule_.burying);
  significant = value >= rule_.cutoff;
}

double class_clone_dist_my::my_cutoff(clone_number clone_1, clone_number clone_2) {
  double value = 0;
  std::int16_t burying_index = 0;
  bool significant = false;
  cutoff_and_burring_calculation(clone_1, clone_2, value, burying_index, significant);
  return value;
}

bool class_clone_dist_my::overlap_is_significant(clone_number clone_1, clone_number clone_2) {
  double value = 0;
  std::int16_t burying_index = 0;
  bool significant = false;
  cutoff_and_burring_calculation(clone_1, clone_2, value, burying_index, significant);
  return significant;
}

} // namespace orb
