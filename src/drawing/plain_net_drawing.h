// A net drawn as it is: a vertex for each of its vertices with a caption of its own, an edge for each pair that it
// joins, all in one look.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "graph/class_net.h"
#include "metrics/overlap_rule.h"
#include "net/class_clone_net_signif.h"

namespace orb {

// Writes a Pajek file. `captions` by vertex, element 0 unused. Each joined pair is one edge from the lower number to
// the higher, also when only one of the two has the record; its label is the value with so many decimals. Throws
// file_error.
bool plain_net_to_pajek(process_frame &frame, const class_net &net, const std::vector<std::string> &captions,
                        int decimals, std::string_view title, const std::filesystem::path &file);

struct super_clone_options {
  std::filesystem::path file_all;    // clones of the net; empty: asked for
  std::filesystem::path file_united; // clones to be one vertex; empty: asked for
};

// The net of a list of clones by a rule, with some of them contracted to one vertex, as net_SuperClone.net of the
// working folder. Clones to unite that aren't in the net are passed over, after a message. False when cancelled or
// stopped, or when no clone is left to be united; `file`: what was written.
bool create_sub_net_list_into_one_vertex_run(class_clone_net_signif &signif, const overlap_rule &rule,
                                             const super_clone_options &options, std::filesystem::path &file);

} // namespace orb
