// The diametric path of a net, and the net's width around it.
#include <algorithm>
#include <cassert>

#include "graph/class_net.h"
#include "graph/layer_walk.h"

namespace orb {

namespace {

std::int32_t number_outside(std::span<const vertex_number> list, const layer_walk &ball) {
  return static_cast<std::int32_t>(
      std::count_if(list.begin(), list.end(), [&ball](vertex_number v) { return ball.rank(v) < 0; }));
}

// How wide the net is at the start of `walk` (its eccentricity is at least 2): small for a narrow end. Counts vertices
// of rank 2 that lie outside a ball of 2 steps: around the whole of rank 3, or, when there is no rank 3, around that
// vertex of rank 2 that leaves the fewest.
std::int32_t end_width_of_start(const layer_walk &walk, layer_walk &ball) {
  constexpr std::int32_t ball_steps = 2;
  const auto second = walk.layer(2);
  if (walk.eccentricity() >= 3) {
    ball.run(walk.layer(3), ball_steps);
    return number_outside(second, ball);
  }
  auto smallest = static_cast<std::int32_t>(second.size()) - 1;
  for (std::size_t i = 0; i < second.size() && smallest > 0; ++i) {
    ball.run(second[i], ball_steps);
    smallest = std::min(smallest, number_outside(second, ball));
  }
  return smallest;
}

// The rules by which a start is kept as the best.
struct best_start {
  std::int32_t &diameter;
  vertex_number &start;
  bool use_end_width;
  number_list &end_width;

  void consider(vertex_number c, const layer_walk &walk, layer_walk &ball) {
    const std::int32_t e = walk.eccentricity();
    if (e + 1 > diameter) {
      diameter = e + 1;
      start = c;
    }
    if (diameter != e + 1 || !use_end_width || e < 2)
      return;
    end_width(c) = end_width_of_start(walk, ball);
    if (c != start && end_width(c) < end_width(start))
      start = c;
  }
};

} // namespace

void class_net::calculate_net_diam_and_width_FindBestStartOfDiamPath_new(bool &connected, std::int32_t &radius,
                                                                         std::int32_t &diameter, vertex_number &start,
                                                                         bool use_end_width,
                                                                         number_list &end_width) const {
  end_width.clear();
  end_width.resize(private_n_vertices_); // a vertex that is never a candidate counts 0
  diameter = 0;
  start = 1;
  radius = private_n_vertices_;
  connected = false;
  if (private_n_vertices_ < 1)
    return;
  layer_walk walk(*this), ball(*this);
  walk.run_all(1);
  connected = walk.reached_all();
  if (!connected)
    return;

  const auto farthest = walk.layer(walk.eccentricity());
  std::vector<vertex_number> candidates(farthest.begin(), farthest.end());
  std::sort(candidates.begin(), candidates.end());
  start = candidates.front();
  best_start best{diameter, start, use_end_width, end_width};
  for (const vertex_number c : candidates) {
    walk.run_all(c);
    best.consider(c, walk, ball);
  }
  radius = diameter / 2;
}

void class_net::calculate_net_diam_and_width_FindBestStartOfDiamPath(bool &connected, std::int32_t &radius,
                                                                     std::int32_t &diameter, vertex_number &start,
                                                                     bool use_end_width, number_list &end_width) const {
  end_width.clear();
  end_width.resize(private_n_vertices_);
  diameter = 0;
  start = 1;
  radius = private_n_vertices_;
  connected = false;
  layer_walk walk(*this), ball(*this);
  best_start best{diameter, start, use_end_width, end_width};
  for (vertex_number c = 1; c <= private_n_vertices_; ++c) {
    walk.run_all(c);
    connected = walk.reached_all();
    if (!connected)
      return;
    radius = std::min(radius, walk.eccentricity());
    best.consider(c, walk, ball);
  }
}

void class_net::create_one_of_diam_path(process_frame &frame, vertex_number start, const number_list &weights,
                                        number_list &path, number_list &ranks) const {
  layer_walk walk(*this);
  walk.run_all(start);
  ranks.resize(private_n_vertices_);
  for (vertex_number v = 1; v <= private_n_vertices_; ++v)
    ranks(v) = walk.rank(v);
  path.clear();
  if (!walk.reached_all())
    return;

  const std::int32_t m = walk.eccentricity();
  const auto farthest = walk.layer(m);
  vertex_number v = *std::min_element(farthest.begin(), farthest.end(), [&weights](vertex_number a, vertex_number b) {
    return weights(a) != weights(b) ? weights(a) < weights(b) : a < b;
  });
  path.resize(m + 1);
  path(1) = start;
  path(m + 1) = v;
  for (std::int32_t r = m - 1; r >= 1; --r) {
    const auto run = edges_of_vertex(v);
    const auto back =
        std::find_if(run.begin(), run.end(), [&ranks, r](const net_edge &edge) { return ranks(edge.neighbour) == r; });
    if (back == run.end())
      frame.program_end_now("problem with algorithm for diam_path");
    v = back->neighbour;
    path(r + 1) = v;
  }
}

void class_net::calculate_net_diam_and_width(process_frame &frame, bool use_end_width, std::int32_t &radius,
                                             std::int32_t &diameter, number_list &path, std::int32_t &width,
                                             number_list &far_vertices, number_list &ranks_from_path,
                                             number_list &ranks_from_start) const {
  bool connected = false;
  vertex_number start = 1;
  number_list end_width;
  calculate_net_diam_and_width_FindBestStartOfDiamPath_new(connected, radius, diameter, start, use_end_width,
                                                           end_width);
  path = number_list{start};
  far_vertices.clear();
  width = -1;
  if (!connected) {
    for (number_list *ranks : {&ranks_from_path, &ranks_from_start}) {
      ranks->resize(private_n_vertices_);
      std::fill(ranks->members().begin(), ranks->members().end(), -1);
    }
    return;
  }
  create_one_of_diam_path(frame, start, end_width, path, ranks_from_start);
  layer_walk walk(*this);
  walk.run_all(path.members());
  width = walk.eccentricity();
  ranks_from_path.resize(private_n_vertices_);
  for (vertex_number v = 1; v <= private_n_vertices_; ++v) {
    ranks_from_path(v) = walk.rank(v);
    if (walk.rank(v) >= 2)
      far_vertices.add(v);
  }
}

} // namespace orb
