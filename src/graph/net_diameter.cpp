// The diametric path of a net, and the net's width around it.
#include <algorithm>
#include <array>
#include <cassert>
#include <functional>

#include "graph/class_net.h"
#include "graph/layer_walk.h"
#include "graph/many_walks.h"

namespace orb {

namespace {

using look_at_stop = std::function<bool()>;

// Largest rank of a walk from each of the starts. All reach the same vertices where each record has its mirror.
std::vector<std::int32_t> eccentricities(const class_net &net, std::span<const vertex_number> starts,
                                         const look_at_stop &go_on) {
  std::vector<std::int32_t> result(starts.size(), 0);
  many_walks walks(net, go_on);
  for (std::size_t first = 0; first < starts.size() && !walks.stopped(); first += walks_at_once) {
    const std::size_t n = std::min(walks_at_once, starts.size() - first);
    walks.start(static_cast<std::int32_t>(n));
    for (std::size_t s = 0; s < n; ++s)
      walks.add_start(starts[first + s], walk_bits{1} << s);
    std::int32_t rank = 0;
    for (walk_bits going = walks.step(); going != 0; going = walks.step()) {
      ++rank;
      for_each_walk(going, [&](std::size_t s) { result[first + s] = rank; });
    }
  }
  return result;
}

// How wide the net is at starts whose eccentricity is at least 2: small for a narrow end. Counts vertices of rank 2
// that lie outside a ball of 2 steps: around the whole of rank 3, or, when there is no rank 3, around that vertex of
// rank 2 that leaves the fewest.
class end_widths {
public:
  end_widths(const class_net &net, const look_at_stop &go_on)
      : n_vertices_(net.number_of_vertices_get()), walks_(net, go_on), balls_(net, go_on),
        second_(static_cast<std::size_t>(n_vertices_) + 1, 0) {}

  // Of at most 64 starts; `widths` gets as many entries.
  void find(std::span<const vertex_number> starts, std::vector<std::int32_t> &widths) {
    walks_.start(static_cast<std::int32_t>(starts.size()));
    for (std::size_t s = 0; s < starts.size(); ++s)
      walks_.add_start(starts[s], walk_bits{1} << s);
    walks_.step();
    walks_.step();
    for (const vertex_number v : second_list_)
      second_[at(v)] = 0;
    second_list_.assign(walks_.layer().begin(), walks_.layer().end());
    for (const vertex_number v : second_list_)
      second_[at(v)] = walks_.reached_now(v);
    widths.assign(starts.size(), 0);
    const walk_bits all = ~walk_bits{0} >> (walks_at_once - starts.size());
    const walk_bits with_third = walks_.step();
    around_third(with_third, widths);
    around_one_of_second(all & ~with_third, widths);
  }
  bool stopped() const { return walks_.stopped() || balls_.stopped(); }

private:
  static std::size_t at(vertex_number v) { return static_cast<std::size_t>(v); }

  void around_third(walk_bits wanted, std::vector<std::int32_t> &widths) {
    if (wanted == 0)
      return;
    balls_.start(std::popcount(wanted));
    for (const vertex_number v : walks_.layer())
      balls_.add_start(v, walks_.reached_now(v));
    balls_.step();
    balls_.step();
    for (const vertex_number v : second_list_)
      for_each_walk(second_[at(v)] & wanted & ~balls_.reached(v), [&](std::size_t s) { ++widths[s]; });
  }

  // One ball serves all walks in whose second layer its middle lies, and a walk is done when a ball leaves nothing: as
  // a rule the first one does.
  void around_one_of_second(walk_bits wanted, std::vector<std::int32_t> &widths) {
    if (wanted == 0)
      return;
    for (const vertex_number v : second_list_)
      for_each_walk(second_[at(v)] & wanted, [&](std::size_t s) { ++widths[s]; });
    for_each_walk(wanted, [&](std::size_t s) {
      if (--widths[s] <= 0)
        wanted &= ~(walk_bits{1} << s);
    });
    for (std::size_t i = 0; i < second_list_.size() && wanted != 0 && !balls_.stopped(); ++i) {
      const walk_bits of_ball = second_[at(second_list_[i])] & wanted;
      if (of_ball == 0)
        continue;
      balls_.start(1);
      balls_.add_start(second_list_[i], 1);
      balls_.step();
      balls_.step();
      std::array<std::int32_t, walks_at_once> outside{};
      for (const vertex_number v : second_list_)
        if (balls_.reached(v) == 0)
          for_each_walk(second_[at(v)] & of_ball, [&](std::size_t s) { ++outside[s]; });
      for_each_walk(of_ball, [&](std::size_t s) {
        widths[s] = std::min(widths[s], outside[s]);
        if (widths[s] == 0)
          wanted &= ~(walk_bits{1} << s);
      });
    }
  }

  std::int32_t n_vertices_;
  many_walks walks_, balls_;
  std::vector<walk_bits> second_; // by vertex: the walks that have it at rank 2
  std::vector<vertex_number> second_list_;
};

// The best start among candidates, in their order: the farthest reaching one, of equals the narrower end, when end
// widths are wanted. `end_width` is filled for those that reached farthest when their turn came.
struct best_start {
  std::int32_t diameter = 0;
  vertex_number start = 1;
};

best_start find_best_start(const class_net &net, std::span<const vertex_number> candidates,
                           std::span<const std::int32_t> reach, bool use_end_width, const look_at_stop &go_on,
                           number_list &end_width) {
  best_start best;
  std::vector<std::size_t> narrow; // places of candidates whose end width counts
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    best.diameter = std::max(best.diameter, reach[i] + 1);
    if (use_end_width && reach[i] >= 2 && reach[i] + 1 == best.diameter)
      narrow.push_back(i);
  }
  const auto farthest = std::find(reach.begin(), reach.end(), best.diameter - 1);
  best.start = candidates[static_cast<std::size_t>(farthest - reach.begin())];
  if (narrow.empty())
    return best;
  end_widths search(net, go_on);
  std::vector<vertex_number> starts;
  std::vector<std::int32_t> widths;
  for (std::size_t first = 0; first < narrow.size() && !search.stopped(); first += walks_at_once) {
    starts.clear();
    for (std::size_t i = first; i < std::min(first + walks_at_once, narrow.size()); ++i)
      starts.push_back(candidates[narrow[i]]);
    search.find(starts, widths);
    for (std::size_t s = 0; s < starts.size(); ++s)
      end_width(starts[s]) = widths[s];
  }
  for (const std::size_t i : narrow)
    if (reach[i] + 1 == best.diameter && end_width(candidates[i]) < end_width(best.start))
      best.start = candidates[i];
  return best;
}

bool reaches_all_from_first(std::int32_t n_vertices, layer_walk &walk) {
  if (n_vertices < 1)
    return false;
  walk.run_all(1);
  return walk.reached_all();
}

} // namespace

void class_net::calculate_net_diam_and_width_FindBestStartOfDiamPath_new(process_frame &frame, bool &connected,
                                                                         std::int32_t &radius, std::int32_t &diameter,
                                                                         vertex_number &start, bool use_end_width,
                                                                         number_list &end_width) const {
  end_width.clear();
  end_width.resize(private_n_vertices_); // a vertex that is never a candidate counts 0
  diameter = 0;
  start = 1;
  radius = private_n_vertices_;
  layer_walk walk(*this);
  connected = reaches_all_from_first(private_n_vertices_, walk);
  if (!connected)
    return;

  const auto farthest = walk.layer(walk.eccentricity());
  std::vector<vertex_number> candidates(farthest.begin(), farthest.end());
  std::sort(candidates.begin(), candidates.end());
  const look_at_stop go_on = [&frame] { return frame.goes_on(); };
  const auto reach = eccentricities(*this, candidates, go_on);
  const best_start best = find_best_start(*this, candidates, reach, use_end_width, go_on, end_width);
  diameter = best.diameter;
  start = best.start;
  radius = diameter / 2;
}

void class_net::calculate_net_diam_and_width_FindBestStartOfDiamPath(process_frame &frame, bool &connected,
                                                                     std::int32_t &radius, std::int32_t &diameter,
                                                                     vertex_number &start, bool use_end_width,
                                                                     number_list &end_width) const {
  end_width.clear();
  end_width.resize(private_n_vertices_);
  diameter = 0;
  start = 1;
  radius = private_n_vertices_;
  layer_walk walk(*this);
  connected = reaches_all_from_first(private_n_vertices_, walk);
  if (!connected)
    return;
  const number_list all = number_list::range(1, private_n_vertices_);
  const look_at_stop go_on = [&frame] { return frame.goes_on(); };
  const auto reach = eccentricities(*this, all.members(), go_on);
  const best_start best = find_best_start(*this, all.members(), reach, use_end_width, go_on, end_width);
  diameter = best.diameter;
  start = best.start;
  radius = *std::min_element(reach.begin(), reach.end());
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
  calculate_net_diam_and_width_FindBestStartOfDiamPath_new(frame, connected, radius, diameter, start, use_end_width,
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
