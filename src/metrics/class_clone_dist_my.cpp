#include "metrics/class_clone_dist_my.h"

namespace orb {

class_clone_dist_my::class_clone_dist_my(const metric_context &context, const class_net *net)
    : context_(&context), net_(net), calc_(context) {}

void class_clone_dist_my::net_private_parameters_set_interface() {
  const project_settings &settings = context_->settings;
  net_private_parameters_set(settings.distance_index, settings.cutoff, settings.burying,
                             settings.use_file_with_connections, settings.same_metric_as_net);
}

void class_clone_dist_my::net_private_parameters_set(std::int16_t distance_index, double limit_r, double burying,
                                                     bool use_net, bool same_metric_as_net) {
  distance_index_ = distance_index;
  metric_is_selected(context_->settings, distance_index);
  limit_r_ = limit_r;
  pogloshenie_border_ = burying;
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
      significant = value >= limit_r_;
      return;
    }
  }
  value = calc_.minus_log10_p_value_of_clone_overlapping(clone_1, clone_2, distance_index_);
  burying_index = calc_.burring_index_get(pogloshenie_border_);
  significant = value >= limit_r_;
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
