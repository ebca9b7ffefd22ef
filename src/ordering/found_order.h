// What an ordering found, in short: taken from its work, or read back from the files that an earlier run left.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "ordering/class_clone_ord_and_verif.h"

namespace orb {

struct found_order {
  std::vector<std::int16_t> clone_is_not_excluded; // 1..n by position in the list; 0: buried
  number_list order;                               // places among the clones that aren't excluded, along the path
  std::int32_t n_windows = 0, n_weak_joins = 0;    // 0: ordered as a whole
};

found_order found_order_of(const ordering_work &work);

// From "order_control_..." in the task's folder, when the ordering of the task with this number of jackknife runs came
// to its end there; nothing when its files aren't all there, or tell of another list.
std::optional<found_order> read_found_order(const ordering_task &task, const class_DB_of_clones &database,
                                            std::int32_t n_jackknife);

} // namespace orb
