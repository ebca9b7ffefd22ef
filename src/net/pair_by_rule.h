// One pair of clones against a rule: the one place where operations outside of the pair loop score a pair.
#pragma once

#include <memory>

#include "metrics/class_clone_dist_calc.h"
#include "metrics/metric_context.h"
#include "metrics/overlap_rule.h"

namespace orb {

class pair_by_rule {
public:
  pair_by_rule(const metric_context &context, const overlap_rule &rule) : rule_(rule), calc_(context, rule.weights) {}

  // A table of the least significant k, made for the rule's cutoff: counts below it score 0 without computation.
  void significant_table_set(std::shared_ptr<class_clone_dist_FPC> table) {
    calc_.FPC_member_set(std::move(table));
    calc_.FPC_table_defined_set(true);
  }
  // Does the pair's score reach the cutoff? Code: 0 none, 1 clone a is buried in b, 2 the reverse, 3 both.
  bool overlaps(clone_number a, clone_number b, double &value, std::int16_t &code) {
    value = calc_.minus_log10_p_value_of_clone_overlapping(a, b, rule_.distance_index);
    code = calc_.burring_index_get(rule_.burying);
    return value >= rule_.cutoff;
  }
  bool overlaps(clone_number a, clone_number b) {
    double value = 0;
    std::int16_t code = 0;
    return overlaps(a, b, value, code);
  }

private:
  overlap_rule rule_;
  class_clone_dist_calc calc_;
};

} // namespace orb
