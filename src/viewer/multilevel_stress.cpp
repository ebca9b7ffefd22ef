#include "viewer/multilevel_stress.h"

#include <array>
#include <cmath>
#include <numeric>
#include <utility>

#include "frame/random_source.h"
#include "frame/worker_blocks.h"
#include "viewer/pivot_placing.h"
#include "viewer/wanted_lengths.h"

namespace orb {

namespace {

// More pivots cost time and leave the picture as it is.
constexpr std::int32_t most_pivots = 100, most_pivots_of_large = 200, least_nodes_of_large = 20'000;
constexpr int n_starts = 4; // most end in the same picture
constexpr int sweeps_by_pivots = 8, sweeps_by_edges = 30, rounds_in_order = 8, sweeps_of_round = 4;
constexpr std::int64_t nodes_of_block = 1 << 16, nodes_of_piece = 256; // between two polls; for a worker at a time

constexpr float voice_of_neighbours = 0.8f; // of a node, beside its pivots'

// A node on its pivot has no direction to be pushed in; this keeps the quotient finite.
constexpr float next_to_nothing = 1e-9f;

struct plane_point {
  float x = 0, y = 0;
};

// The levels of all nodes. In a sweep every node goes where the others want it, all at once.
class node_placing {
public:
  node_placing(const component_graph &graph, const pivot_distances &pivots, const layout_work &work,
               plane_points &points)
      : graph_(graph), pivots_(pivots), work_(work), points_(points), next_(points), wanted_(pivots) {
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
    return for_all_nodes([this](std::int32_t v) { settle(v, wish_of_pivots(v)); }, work_.goes_on);
  }
  bool sweep_by_edges() {
    const bool done = for_all_nodes([this](std::int32_t v) { move_by_edges(v); }, work_.goes_on);
    for (std::size_t p = 0; done && p < pivots_.pivot.size(); ++p) {
      pivot_at_.x[p] = points_.x[static_cast<std::size_t>(pivots_.pivot[p])];
      pivot_at_.y[p] = points_.y[static_cast<std::size_t>(pivots_.pivot[p])];
    }
    return done;
  }
  // From here on the order of the lengths counts, no longer the lengths.
  void follow_lengths() { wanted_.follow(points_, pivot_at_); }
  void enlarge() {
    const auto factor = static_cast<float>(wanted_.enlargement(points_, pivot_at_));
    for (std::vector<float> *places : {&points_.x, &points_.y})
      for (float &place : *places)
        place *= factor;
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

  void settle(std::int32_t v, plane_point at) {
    next_.x[static_cast<std::size_t>(v)] = at.x;
    next_.y[static_cast<std::size_t>(v)] = at.y;
  }

  // Near the nearest pivots, no two nodes at the same place.
  void start_node(std::int32_t v, std::uint64_t seed) {
    plane_point sum;
    float weight = 0;
    for (std::int32_t p = 0; p < pivots_.count(); ++p) {
      const auto steps = static_cast<float>(pivots_.row(v)[p]);
      const float near = 1.0f / (steps * steps + next_to_nothing), w = near * near;
      sum.x += w * pivot_at_.x[static_cast<std::size_t>(p)];
      sum.y += w * pivot_at_.y[static_cast<std::size_t>(p)];
      weight += w;
    }
    random_source chance(seed, static_cast<std::uint64_t>(v) + 1);
    const auto aside_x = static_cast<float>(0.5 * chance.uniform() - 0.25);
    const auto aside_y = static_cast<float>(0.5 * chance.uniform() - 0.25);
    settle(v, {sum.x / weight + aside_x, sum.y / weight + aside_y});
  }

  // Each pivot wants the node at the length of their steps, in the direction where it is, and speaks for all nodes
  // around it. The sums are kept apart by lane, so that they are the same in registers of any width.
  plane_point wish_of_pivots(std::int32_t v) const {
    constexpr std::int32_t lanes = pivot_distances::lanes;
    const float x = points_.x[static_cast<std::size_t>(v)], y = points_.y[static_cast<std::size_t>(v)];
    const std::int32_t *steps = pivots_.row(v);
    const float *share = pivots_.share.data(), *wanted = wanted_.data();
    const float *pivot_x = pivot_at_.x.data(), *pivot_y = pivot_at_.y.data();
    std::array<float, lanes> to_x{}, to_y{};
    for (std::int32_t p = 0; p < pivots_.stride; p += lanes)
      for (std::int32_t k = 0; k < lanes; ++k) {
        const float dx = x - pivot_x[p + k], dy = y - pivot_y[p + k];
        const float stretch = wanted[steps[p + k]] / std::sqrt(dx * dx + dy * dy + next_to_nothing);
        const auto lane = static_cast<std::size_t>(k);
        to_x[lane] += share[p + k] * (pivot_x[p + k] + stretch * dx);
        to_y[lane] += share[p + k] * (pivot_y[p + k] + stretch * dy);
      }
    const auto n = static_cast<float>(graph_.count()); // the sum of all shares
    return {std::accumulate(to_x.begin(), to_x.end(), 0.0f) / n, std::accumulate(to_y.begin(), to_y.end(), 0.0f) / n};
  }

  // By pivots alone the picture shows what is far no better, but nodes with the same steps crowd in columns and edges
  // come out of any length.
  void move_by_edges(std::int32_t v) {
    const float x = points_.x[static_cast<std::size_t>(v)], y = points_.y[static_cast<std::size_t>(v)];
    const plane_point far = wish_of_pivots(v);
    plane_point near;
    for (const std::int32_t other : graph_.neighbours(v)) {
      const float at_x = points_.x[static_cast<std::size_t>(other)], at_y = points_.y[static_cast<std::size_t>(other)];
      const float dx = x - at_x, dy = y - at_y;
      const float stretch = 1.0f / std::sqrt(dx * dx + dy * dy + next_to_nothing);
      near.x += at_x + stretch * dx;
      near.y += at_y + stretch * dy;
    }
    const float near_share = voice_of_neighbours / static_cast<float>(graph_.neighbours(v).size());
    settle(v, {(1 - voice_of_neighbours) * far.x + near_share * near.x,
               (1 - voice_of_neighbours) * far.y + near_share * near.y});
  }

  const component_graph &graph_;
  const pivot_distances &pivots_;
  const layout_work &work_;
  plane_points &points_, next_;
  plane_points pivot_at_;
  wanted_lengths wanted_;
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
  bool goes_on = best.run(pivots, seed, n_starts, work);
  if (best.x().empty())
    return false;
  nodes.start(best, seed);
  for (int sweep = 0; goes_on && sweep < sweeps_by_pivots; ++sweep)
    goes_on = nodes.sweep_by_pivots();
  for (int sweep = 0; goes_on && sweep < sweeps_by_edges; ++sweep)
    goes_on = nodes.sweep_by_edges();
  for (int sweep = 0; goes_on && sweep < rounds_in_order * sweeps_of_round; ++sweep) {
    if (sweep % sweeps_of_round == 0)
      nodes.follow_lengths();
    goes_on = nodes.sweep_by_edges();
  }
  nodes.enlarge();
  return goes_on;
}

} // namespace orb
