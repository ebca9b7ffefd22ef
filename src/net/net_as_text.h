// The text form of a net: one block a clone, in clone order, lines ending with CR LF:
//   clone <tab> number <tab> name <tab> n
//   partner's number <tab> name <tab> value "0.00" [<tab> "abs" burial code, absent for code 0]     n times
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "graph/class_net.h"
#include "metrics/metric_context.h"
#include "metrics/overlap_rule.h"

namespace orb {

// The line of one overlap, with the line end in front of it, at the end of `lines`.
void text_net_overlap_append(std::string &lines, const class_DB_of_clones &database, clone_number partner, double value,
                             std::int16_t code);
// A clone's block, without a line end behind it: n overlaps, whose lines are `lines`.
std::string text_net_block(const class_DB_of_clones &database, clone_number clone, std::int32_t n,
                           const std::string &lines);

// Writes the overlaps of a net that reach the rule's cutoff as a text net, for all clones of the database; a clone
// beyond the net has none. An empty `file` is asked for, and is then the file that was written. False, and no file,
// when cancelled or stopped. Throws file_error.
bool save_net_as_text_net(const metric_context &context, const class_net &net, const overlap_rule &rule,
                          std::filesystem::path &file);

} // namespace orb
