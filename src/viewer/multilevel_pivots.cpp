#include "viewer/multilevel_pivots.h"

#include <algorithm>
#include <cassert>
#include <limits>

#include "frame/worker_blocks.h"

namespace orb {

namespace {

constexpr std::int32_t not_met = std::numeric_limits<std::int32_t>::max();

// Lowers `steps` and `nearest` of the nodes that are nearer to the new pivot than to those before. Nothing behind a
// node that isn't can be, so the walk stays in the pivot's own region and all of them cost little more than one.
void claim_region(const component_graph &graph, std::int32_t pivot, std::int32_t number,
                  std::vector<std::int32_t> &steps, std::vector<std::int32_t> &nearest,
                  std::vector<std::int32_t> &order) {
  const auto claim = [&](std::int32_t v, std::int32_t distance) {
    steps[static_cast<std::size_t>(v)] = distance;
    nearest[static_cast<std::size_t>(v)] = number;
    order.push_back(v);
  };
  order.clear();
  claim(pivot, 0);
  for (std::size_t at = 0; at < order.size(); ++at) {
    const std::int32_t distance = steps[static_cast<std::size_t>(order[at])] + 1;
    for (const std::int32_t next : graph.neighbours(order[at]))
      if (distance < steps[static_cast<std::size_t>(next)])
        claim(next, distance);
  }
}

// Scratch of a worker.
struct walk_memory {
  std::vector<std::int32_t> steps, order;
};

// The column of one pivot.
void fill_column(const component_graph &graph, std::int32_t p, walk_memory &memory, pivot_distances &found) {
  memory.steps.assign(static_cast<std::size_t>(graph.count()), not_met);
  memory.order.clear();
  const auto meet = [&](std::int32_t v, std::int32_t distance) {
    memory.steps[static_cast<std::size_t>(v)] = distance;
    memory.order.push_back(v);
    found.steps[static_cast<std::size_t>(v) * static_cast<std::size_t>(found.stride) + static_cast<std::size_t>(p)] =
        distance;
  };
  meet(found.pivot[static_cast<std::size_t>(p)], 0);
  for (std::size_t at = 0; at < memory.order.size(); ++at) {
    const std::int32_t distance = memory.steps[static_cast<std::size_t>(memory.order[at])] + 1;
    for (const std::int32_t next : graph.neighbours(memory.order[at]))
      if (memory.steps[static_cast<std::size_t>(next)] == not_met)
        meet(next, distance);
  }
}

} // namespace

bool find_pivots(const component_graph &graph, std::int32_t n_pivots, const layout_work &work, pivot_distances &found) {
  const std::int32_t n = graph.count(), n_found = std::min(n, n_pivots);
  assert(n > 0 && n_pivots > 0);
  std::vector<std::int32_t> steps(static_cast<std::size_t>(n), not_met), nearest(steps.size()), order;
  found = {};
  for (std::int32_t next = 0; found.count() < n_found;
       next = static_cast<std::int32_t>(std::max_element(steps.begin(), steps.end()) - steps.begin())) {
    claim_region(graph, next, found.count(), steps, nearest, order);
    found.pivot.push_back(next);
    if (!work.goes_on())
      return false;
  }
  found.stride = (n_found + pivot_distances::lanes - 1) / pivot_distances::lanes * pivot_distances::lanes;
  found.share.assign(static_cast<std::size_t>(found.stride), 0.0f);
  for (const std::int32_t p : nearest)
    found.share[static_cast<std::size_t>(p)] += 1;
  found.steps.assign(static_cast<std::size_t>(n) * static_cast<std::size_t>(found.stride), 0);
  std::vector<walk_memory> memory(static_cast<std::size_t>(worker_count(work.threads)));
  return run_in_blocks(
      0, n_found - 1, worker_count(work.threads), 1, work.threads,
      [&](std::int64_t first, std::int64_t last, int worker) {
        for (std::int64_t p = first; p <= last; ++p)
          fill_column(graph, static_cast<std::int32_t>(p), memory[static_cast<std::size_t>(worker)], found);
      },
      [&](std::int64_t) { return work.goes_on(); });
}

} // namespace orb
