// Nets made from the current one: by another rule, of one cutoff, with clones disconnected.
#pragma once

#include <filesystem>

#include "metrics/overlap_rule.h"
#include "net/class_clone_net_signif.h"

namespace orb {

struct net_by_rule_options {
  bool same_metric = true;   // `net_in` was made with the rule's metric: its values and codes are kept
  bool with_markers = false; // overlaps that common markers vouch for are added; all pairs of clones are looked at
};

// The net of all clones by `rule` from the overlaps of `net_in`, whose vertices are the clones 1..N. False, and `net`
// as it was, after a stop request. `net` may be `net_in`, and either may be the current net, whose settings stay.
bool create_net_by_rule(class_clone_net_signif &signif, const class_net &net_in, const overlap_rule &rule,
                        const net_by_rule_options &options, class_net &net);

// The net of all clones by a rule, from the current net when one is loaded, saved in the native form; the current net
// stays. An empty `file` is asked for, and is then the file that was written. False when cancelled or stopped.
bool create_subnet_significant_connections_type(class_clone_net_signif &signif, const overlap_rule &rule,
                                                std::filesystem::path &file);

// The current net without the overlaps of the listed clones, which stay as marked vertices; saved as above, and the
// current net stays. Numbers that are no vertices are passed over.
bool create_sub_net_list_disconnect(class_clone_net_signif &signif, const number_list &list,
                                    std::filesystem::path &file);

} // namespace orb
