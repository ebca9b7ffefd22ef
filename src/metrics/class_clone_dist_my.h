// The one gate through which later stages ask whether a pair overlaps: from the loaded net when it can, otherwise
// through the band comparison.
#pragma once

#include <cstdint>

#include "graph/class_net.h"
#include "metrics/class_clone_dist_calc.h"
#include "metrics/overlap_rule.h"

namespace orb {

class class_clone_dist_my {
public:
  // `net`: the loaded net, asked only while use_net is on; may be null, and must outlive this object.
  class_clone_dist_my(const metric_context &context, const class_net *net);

  // By a rule; whether the net is asked, and believed, goes by the settings of the project.
  void net_private_parameters_set_interface(const overlap_rule &rule);
  void net_private_parameters_set(std::int16_t distance_index, double limit_r, double burying, bool use_net,
                                  bool same_metric_as_net);
  std::int16_t distance_index_get() const { return rule_.distance_index; }
  // Whether weights are summed goes by another metric from now on.
  void distance_index_set(std::int16_t index);
  double limit_r_get() const { return rule_.cutoff; }
  void limit_r_set(double limit) { rule_.cutoff = limit; }
  double pogloshenie_border_get() const { return rule_.burying; } // burying fraction
  void pogloshenie_border_set(double border) { rule_.burying = border; }
  bool use_net_get() const { return use_net_; }
  void use_net_set(bool use) { use_net_ = use; }
  bool same_metric_as_net_get() const { return same_metric_as_net_; }
  void same_metric_as_net_set(bool same) { same_metric_as_net_ = same; }

  void cutoff_and_burring_calculation(clone_number clone_1, clone_number clone_2, double &value,
                                      std::int16_t &burying_index, bool &significant);
  double my_cutoff(clone_number clone_1, clone_number clone_2);
  bool overlap_is_significant(clone_number clone_1, clone_number clone_2);

private:
  void rule_set(const overlap_rule &rule);

  const metric_context *context_;
  const class_net *net_;
  class_clone_dist_calc calc_;
  overlap_rule rule_;
  bool use_net_ = false;
  bool same_metric_as_net_ = false;
};

} // namespace orb
