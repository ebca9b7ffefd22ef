#include "reports/clone_stacks.h"

#include <algorithm>
#include <fmt/format.h>

#include "frame/numbers.h"
#include "graph/label_forest.h"

namespace orb {

namespace {

constexpr std::int64_t times_middle = 10; // a clone above that is in a stack
constexpr std::int32_t least_depth = 50;  // below it a pile does no harm
constexpr std::size_t stacks_shown = 5, names_shown = 3;

std::int32_t middle_depth(const class_net &net) {
  std::vector<std::int32_t> depths;
  for (vertex_number v = 1; v <= net.number_of_vertices_get(); ++v)
    if (const std::int32_t depth = net.number_of_edges_for_vertex_total_get(v); depth > 0)
      depths.push_back(depth);
  if (depths.empty())
    return 0;
  const auto middle = depths.begin() + static_cast<std::ptrdiff_t>((depths.size() - 1) / 2);
  std::nth_element(depths.begin(), middle, depths.end());
  return *middle;
}

} // namespace

clone_stacks find_clone_stacks(const class_net &net) {
  clone_stacks stacks;
  stacks.middle_depth = middle_depth(net);
  const vertex_number n = net.number_of_vertices_get();
  const auto is_deep = [&](vertex_number v) {
    const std::int32_t depth = net.number_of_edges_for_vertex_total_get(v);
    return depth >= least_depth && depth > times_middle * stacks.middle_depth;
  };
  label_forest forest;
  forest.start(n);
  for (vertex_number v = 1; v <= n; ++v) {
    if (!is_deep(v))
      continue;
    for (const net_edge &edge : net.edges_of_vertex(v))
      if (edge.neighbour > v && forest.label_get(edge.neighbour) != forest.label_get(v) && is_deep(edge.neighbour))
        forest.join(v, edge.neighbour);
  }
  std::vector<std::size_t> stack_of(static_cast<std::size_t>(n) + 1, 0); // by root, from 1
  for (vertex_number v = 1; v <= n; ++v) {
    if (!is_deep(v))
      continue;
    std::size_t &stack = stack_of[static_cast<std::size_t>(forest.find_root(v))];
    if (stack == 0) {
      stacks.members.emplace_back();
      stack = stacks.members.size();
    }
    stacks.members[stack - 1].push_back(v);
  }
  std::stable_sort(stacks.members.begin(), stacks.members.end(),
                   [](const auto &a, const auto &b) { return a.size() > b.size(); });
  return stacks;
}

std::string text_of_stacks(const clone_stacks &stacks, const class_DB_of_clones &database) {
  if (stacks.members.empty())
    return {};
  std::string text = fmt::format(
      "Clones with more than {} times the overlaps of others (their median is {}) pile up, in stacks: {}.\n",
      times_middle, stacks.middle_depth, number_text_thousands(stacks.members.size()));
  for (std::size_t i = 0; i < std::min(stacks_shown, stacks.members.size()); ++i) {
    const auto &clones = stacks.members[i];
    text += fmt::format("  {} clones: ", number_text_thousands(clones.size()));
    for (std::size_t k = 0; k < std::min(names_shown, clones.size()); ++k)
      text += (k > 0 ? ", " : "") + database.name_of_clone_get(clones[k]);
    text += clones.size() > names_shown ? ", ...\n" : "\n";
  }
  if (stacks.members.size() > stacks_shown)
    text += fmt::format("  and {} smaller stacks\n", number_text_thousands(stacks.members.size() - stacks_shown));
  return text + fmt::format("Look at them (orb info LIB --clone {}): clones of an organelle or of a repeat tell "
                            "nothing about the map; net.disconnect takes a list of them out of a net.",
                            database.name_of_clone_get(stacks.members.front().front()));
}

} // namespace orb
