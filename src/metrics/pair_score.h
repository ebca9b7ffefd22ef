// From the counts of a pair to its score and burial code. No state and no frame: worker threads call these.
#pragma once

#include <cstdint>

#include "database/class_DB_of_clones.h"
#include "database/class_usable_values.h"
#include "metrics/class_clone_dist_FPC.h"
#include "metrics/class_clone_dist_table.h"

namespace orb {

struct pair_counts {
  std::int32_t n1 = 0, n2 = 0;     // bands of each clone, after exclusions when those apply
  double x_iid = 0;                // common bands, k
  double x_fr = 0;                 // sum of -ln f over the common bands; k where no weights are computed
  double weight1 = 0, weight2 = 0; // sum of -ln f over all bands of each clone; 0 where no weights are computed
};

// k^2 / (n1 n2); 0 when n1 n2 is below 1.
double share_of_common(double k, std::int32_t n1, std::int32_t n2);

// 0 none, 1 clone 1 is buried in clone 2 (at least the fraction `border` of its bands is common), 2 the reverse, 3
// both.
std::int16_t burying_code_of_counts(const pair_counts &counts, double border);

// The score of the counts by a metric (Sulston et al. 1988 for index 4, Soderlund et al. 1997 for 5). `significant`:
// table of the least significant k, null for none; with it a count below the entry scores exactly 0.
double score_of_counts(const pair_counts &counts, std::int32_t n_common_markers, std::int16_t distance_index,
                       const class_DB_of_clones &database, const class_usable_values &usable_values,
                       const class_clone_dist_table &table, const class_clone_dist_FPC *significant);

} // namespace orb
