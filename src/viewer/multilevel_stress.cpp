#include "viewer/multilevel_stress.h"

#include <array>
#include <cmath>
#include <utility>

#include "frame/random_source.h"
#include "frame/worker_blocks.h"
#include "viewer/pivot_placing.h"

namespace orb {

namespace {

// More pivots cost time and leave the picture as it is.
constexpr std::int32_t most_pivots = 100, most_pivots_of_large = 200, least_nodes_of_large = 20'000;
constexpr std::int32_t most_nodes_of_one_start = 2000;
constexpr int n_starts = 12; // of larger components
constexpr int sweeps_by_pivots = 8, sweeps_by_edges = 30;
constexpr std::int64_t nodes_of_block = 1 << 16, nodes_of_piece = 256; // between two polls; for a worker at a time

// A node on its pivot has no direction to be pushed in; this keeps the quotient finite.
constexpr float next_to_nothing = 1e-9f;

// Where others want a node: the sum of their weighted wishes.
struct pull {
  float x = 0, y = 0, weight = 0;
};

// Each pivot wants the node at (x, y) at their distance, in the direction where it is. A pivot speaks for the nodes
// around it, but not for more than there may be in half the distance: those nearer say it better. The sums are kept
// apart by lane, so that they are the same in registers of any width.
pull pull_of_pivots(const pivot_distances &pivots, std::int32_t v, const plane_points &pivot_at, float density, float x,
                    float y) {
  constexpr std::int32_t lanes = pivot_distances::lanes;
  const float *steps = pivots.row(v), *share = pivots.share.data();
  const float *pivot_x = pivot_at.x.data(), *pivot_y = pivot_at.y.data();
  std::array<float, lanes> to_x{}, to_y{}, weight{};
  for (std::int32_t p = 0; p < pivots.stride; p += lanes)
    for (std::int32_t k = 0; k < lanes; ++k) {
      const float distance = steps[p + k], dx = x - pivot_x[p + k], dy = y - pivot_y[p + k];
      const float nodes_between = 1.0f + density * distance;
      const float w = (share[p + k] < nodes_between ? share[p + k] : nodes_between) / (distance * distance);
      const float stretch = distance / std::sqrt(dx * dx + dy * dy + next_to_nothing);
      const auto lane = static_cast<std::size_t>(k);
      to_x[lane] += w * (pivot_x[p + k] + stretch * dx);
      to_y[lane] += w * (pivot_y[p + k] + stretch * dy);
      weight[lane] += w;
    }
  pull sum;
  for (std::size_t k = 0; k < lanes; ++k) {
    sum.x += to_x[k];
    sum.y += to_y[k];
    sum.weight += weight[k];
  }
  return sum;
}

// The two levels of all nodes. In a sweep every node goes where the others want it, all at once.
class node_placing {
public:
  node_placing(const component_graph &graph, const pivot_distances &pivots, const layout_work &work,
               plane_points &points)
      : graph_(graph), pivots_(pivots), work_(work), points_(points), next_(points),
        density_(0.5f * static_cast<float>(graph.neighbour.size()) / static_cast<float>(graph.count())) {
    pivot_at_.x.resize(static_cast<std::size_t>(pivots.stride));
    pivot_at_.y = pivot_at_.x;
  }

  // As short as a sweep, and isn't stopped.
  void start(const pivot_placing &placed, std::uint64_t seed) {
    for (std::size_t p = 0; p < pivots_.pivot.size(); ++p) {
      pivot_at_.x[p] = static_cast<float>(placed.x()[p]);
      pivot_at_.y[p] = static_cast<float>(placed.y()[p]);
    }
    for_all_nodes([this, seed](std::int32_t v) { start_node(v, seed); }, [] { return true; });
  }
  bool sweep_by_pivots() {
    return for_all_nodes(
        [this](std::int32_t v) {
          const auto at = static_cast<std::size_t>(v);
          settle(v, pull_of_pivots(pivots_, v, pivot_at_, density_, points_.x[at], points_.y[at]));
        },
        work_.goes_on);
  }
  bool sweep_by_edges() {
    const bool done = for_all_nodes([this](std::int32_t v) { move_by_edges(v); }, work_.goes_on);
    for (std::size_t p = 0; done && p < pivots_.pivot.size(); ++p) {
      pivot_at_.x[p] = points_.x[static_cast<std::size_t>(pivots_.pivot[p])];
      pivot_at_.y[p] = points_.y[static_cast<std::size_t>(pivots_.pivot[p])];
    }
    return done;
  }

private:
  // `place_next` gives every node its new place, which counts when all have theirs.
  template <class placer> bool for_all_nodes(const placer &place_next, const std::function<bool()> &goes_on) {
    const bool done = run_in_blocks(
        0, graph_.count() - 1, nodes_of_block, nodes_of_piece, graph_.count() <= nodes_of_piece ? 1 : work_.threads,
        [&](std::int64_t first, std::int64_t last, int) {
          for (std::int64_t v = first; v <= last; ++v)
            place_next(static_cast<std::int32_t>(v));
        },
        [&](std::int64_t) { return goes_on(); });
    if (done)
      std::swap(points_, next_);
    return done;
  }

  void settle(std::int32_t v, const pull &sum) {
    next_.x[static_cast<std::size_t>(v)] = sum.x / sum.weight;
    next_.y[static_cast<std::size_t>(v)] = sum.y / sum.weight;
  }

  // Near the nearest pivots, no two nodes at the same place.
  void start_node(std::int32_t v, std::uint64_t seed) {
    pull sum;
    for (std::int32_t p = 0; p < pivots_.count(); ++p) {
      const float near = 1.0f / (pivots_.row(v)[p] * pivots_.row(v)[p]), w = near * near;
      sum.x += w * pivot_at_.x[static_cast<std::size_t>(p)];
      sum.y += w * pivot_at_.y[static_cast<std::size_t>(p)];
      sum.weight += w;
    }
    random_source chance(seed, static_cast<std::uint64_t>(v) + 1);
    settle(v, sum);
    next_.x[static_cast<std::size_t>(v)] += static_cast<float>(0.5 * chance.uniform() - 0.25);
    next_.y[static_cast<std::size_t>(v)] += static_cast<float>(0.5 * chance.uniform() - 0.25);
  }

  void move_by_edges(std::int32_t v) {
    const float x = points_.x[static_cast<std::size_t>(v)], y = points_.y[static_cast<std::size_t>(v)];
    pull sum = pull_of_pivots(pivots_, v, pivot_at_, density_, x, y);
    for (const std::int32_t other : graph_.neighbours(v)) {
      const float at_x = points_.x[static_cast<std::size_t>(other)], at_y = points_.y[static_cast<std::size_t>(other)];
      const float dx = x - at_x, dy = y - at_y;
      const float stretch = 1.0f / std::sqrt(dx * dx + dy * dy + next_to_nothing);
      sum.x += at_x + stretch * dx;
      sum.y += at_y + stretch * dy;
      sum.weight += 1;
    }
    settle(v, sum);
  }

  const component_graph &graph_;
  const pivot_distances &pivots_;
  const layout_work &work_;
  plane_points &points_, next_;
  plane_points pivot_at_;
  float density_; // nodes that half a step more brings
};

} // namespace

void place_in_layers(const component_graph &graph, plane_points &points) {
  const auto n = static_cast<std::size_t>(graph.count());
  points.x.assign(n, 0.0f);
  points.y.assign(n, 0.0f);
  for (std::size_t v = 1; v < n; ++v) {
    // nodes are numbered as they were met: the lowest neighbour is who met this one
    points.x[v] = points.x[static_cast<std::size_t>(graph.neighbours(static_cast<std::int32_t>(v)).front())] + 1;
    points.y[v] = points.x[v] == points.x[v - 1] ? points.y[v - 1] + 1 : 0.0f;
  }
}

bool place_component(const component_graph &graph, std::uint64_t seed, const layout_work &work, plane_points &points) {
  if (graph.count() <= 2)
    return true; // as they stand in layers
  pivot_distances pivots;
  const std::int32_t n_pivots = graph.count() < least_nodes_of_large ? most_pivots : most_pivots_of_large;
  if (!find_pivots(graph, n_pivots, work, pivots))
    return false;
  node_placing nodes(graph, pivots, work, points);
  pivot_placing best;
  const int n_tried = graph.count() <= most_nodes_of_one_start ? 1 : n_starts;
  bool goes_on = best.run(pivots, seed, n_tried, work);
  if (best.x().empty())
    return false;
  nodes.start(best, seed);
  for (int sweep = 0; goes_on && sweep < sweeps_by_pivots; ++sweep)
    goes_on = nodes.sweep_by_pivots();
  for (int sweep = 0; goes_on && sweep < sweeps_by_edges; ++sweep)
    goes_on = nodes.sweep_by_edges();
  return goes_on;
}

} // namespace orb
