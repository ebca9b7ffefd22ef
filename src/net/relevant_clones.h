// Clones around a list: those within some steps of it in a net, or found by comparing clones, without a net.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "graph/class_net.h"
#include "metrics/metric_context.h"
#include "metrics/overlap_rule.h"

namespace orb {

// The clones (ascending) within n_rank steps of the start clones; ranks(i): steps from the start to list(i). n_rank 0:
// the start clones, ascending and each once; negative: none. A start clone that is no vertex of the net has no
// neighbours. With `print` the list goes to a file, whose name is returned; it is empty otherwise.
std::filesystem::path create_relevant_clones_using_net(const metric_context &context, const number_list &start_list,
                                                       std::int32_t n_rank, bool print, const class_net &net,
                                                       number_list &list, number_list &ranks);
// The same along overlaps of at least a cutoff.
std::filesystem::path create_relevant_clones_using_net2(const metric_context &context, const number_list &start_list,
                                                        std::int32_t n_rank, double cutoff, bool print,
                                                        const class_net &net, number_list &list, number_list &ranks);
// Writes found_clones_METRIC_CUTOFF_NAME_plusK.txt of the working folder and returns its path. An empty name: that of
// the list's first clone.
std::filesystem::path print_relevant_clones(const metric_context &context, const number_list &list,
                                            const overlap_rule &rule, std::string name, std::int32_t k);

struct pumping_options {
  number_list start_list;                // clones of the database
  std::int32_t n_rank_limit = -1;        // steps from the start; negative: no limit
  std::optional<number_list> candidates; // only these may be added; unset: all clones
  number_list black_list;                // never added: barred clones, when contigs are specified
  bool print = false; // print_relevant_clones with this name and the limit, on the way and at the end
  std::string name;
};

struct pumping_result {
  number_list list, step; // in order of finding; step(i): steps from the start to list(i)
  bool completed = false; // false after a stop request: the list is what was found until then
  std::filesystem::path file;
};

// Widens a list by clones that overlap its members by the rule, until no more is found. Compares N times as many pairs
// as the list gets members, each pair once.
void nasos_clones(const metric_context &context, const overlap_rule &rule, const pumping_options &options,
                  pumping_result &result);

} // namespace orb
