// Ranks, local characteristics of a vertex and of an edge, and the path through preferred vertices.
#include <algorithm>
#include <cassert>
#include <limits>

#include "graph/class_net.h"
#include "graph/component_lists.h"
#include "graph/layer_walk.h"

namespace orb {

namespace {

// Ranks beyond the number of vertices are all empty; that many of them are held when a caller asks for more.
constexpr std::int32_t empty_ranks_held = 1000;

} // namespace

void class_net::calculate_ranks_of_vertices(const number_list &start_list, number_list &ranks, int mode,
                                            bool use_cutoff, double cutoff, std::int32_t &n_rank,
                                            number_list &reached_list, std::vector<std::int32_t> &n_in_rank,
                                            bool &connected) const {
  if (mode == 2)
    n_rank = private_n_vertices_;
  layer_walk walk(*this);
  walk.run(start_list.members(), n_rank, use_cutoff, cutoff);

  ranks.resize(private_n_vertices_);
  reached_list.clear();
  reached_list.reserve(static_cast<std::int32_t>(walk.reached().size()));
  for (vertex_number v = 1; v <= private_n_vertices_; ++v) {
    ranks(v) = mode == 0 ? std::max(walk.rank(v), 0) : walk.rank(v);
    if (walk.rank(v) >= 0)
      reached_list.add(v);
  }
  const std::int32_t held = std::max(private_n_vertices_, std::min(n_rank, private_n_vertices_ + empty_ranks_held));
  n_in_rank.assign(static_cast<std::size_t>(held) + 1, 0);
  for (std::int32_t r = 0; r <= walk.eccentricity() && r <= n_rank; ++r)
    n_in_rank[static_cast<std::size_t>(r)] = static_cast<std::int32_t>(walk.layer(r).size());
  if (mode == 2) {
    connected = walk.reached_all();
    n_rank = walk.eccentricity();
  }
}

namespace {

struct walk_limits {
  bool use_cutoff;
  double cutoff;
  bool takes(const net_edge &edge) const { return !use_cutoff || edge.value >= cutoff; }
};

// One vertex and what lies within n_rank steps of it, step by step, into workspace.wave; workspace.position gives the
// place of each (from 0). In a heap, where each vertex has thousands of neighbours, a step over the records of all that
// was reached before is the square of that; there it is cheaper to ask those that weren't reached yet, each until it
// has found one neighbour that was (Beamer, Asanovic and Patterson 2012). The ball is the same; within a step its order
// isn't.
class ball_walk {
public:
  ball_walk(const class_net &net, const walk_limits &limits, const component_lists *components,
            net_workspace &workspace)
      : net_(net), limits_(limits), components_(components), ball_(workspace.wave), position_(workspace.position) {}

  void run(vertex_number v, std::int32_t n_rank, std::vector<std::int32_t> &n_in_rank) {
    position_.start(net_.number_of_vertices_get());
    ball_.clear();
    n_records_left_ = components_ != nullptr ? components_->n_records_of_component(v) : 0;
    reach(v);
    n_in_rank.assign(static_cast<std::size_t>(std::max(n_rank, 0)) + 1, 0);
    n_in_rank[0] = 1;
    std::size_t first = 0;
    for (std::int32_t step = 0; step < n_rank; ++step) {
      const std::size_t end = ball_.size();
      const std::int64_t n_records_of_step = n_records_;
      n_records_ = 0;
      if (components_ != nullptr && n_records_of_step > n_records_left_)
        ask_the_rest(v, first, end);
      else
        for (std::size_t i = first; i < end; ++i)
          reach_neighbours(ball_[i]);
      if (ball_.size() == end)
        break;
      n_in_rank[static_cast<std::size_t>(step) + 1] = static_cast<std::int32_t>(ball_.size() - end);
      first = end;
    }
  }

private:
  void reach(vertex_number v) {
    position_.set(v, static_cast<std::int32_t>(ball_.size()));
    ball_.push_back(v);
    const std::int64_t n = net_.number_of_edges_for_vertex_total_get(v);
    n_records_ += n;
    n_records_left_ -= n;
  }
  void reach_neighbours(vertex_number v) {
    for (const net_edge &edge : net_.edges_of_vertex(v))
      if (!position_.has(edge.neighbour) && limits_.takes(edge))
        reach(edge.neighbour);
  }
  // Those of the last step stand at `first` .. `end` - 1; what is reached now stands behind them.
  void ask_the_rest(vertex_number v, std::size_t first, std::size_t end) {
    const auto is_of_last_step = [&](const net_edge &edge) {
      if (!position_.has(edge.neighbour) || !limits_.takes(edge))
        return false;
      const auto place = static_cast<std::size_t>(position_.get(edge.neighbour));
      return place >= first && place < end;
    };
    for (const vertex_number u : components_->members_of_component(v)) {
      const auto run = net_.edges_of_vertex(u);
      if (!position_.has(u) && std::any_of(run.begin(), run.end(), is_of_last_step))
        reach(u);
    }
  }

  const class_net &net_;
  const walk_limits limits_;
  const component_lists *components_;
  std::vector<vertex_number> &ball_;
  position_table &position_;
  std::int64_t n_records_ = 0;      // of what the step in hand reached
  std::int64_t n_records_left_ = 0; // of what isn't reached in the component
};

std::int32_t root_of(std::vector<std::int32_t> &label, std::int32_t i) {
  while (label[static_cast<std::size_t>(i)] != i) {
    std::int32_t &above = label[static_cast<std::size_t>(i)];
    above = label[static_cast<std::size_t>(above)];
    i = above;
  }
  return i;
}

// Components of the ball without its centre v. A record counts from its lower end, as in a flat neighbour list.
std::int32_t components_of_ball(const class_net &net, vertex_number v, net_workspace &workspace) {
  const std::vector<vertex_number> &ball = workspace.wave;
  workspace.label.resize(ball.size());
  for (std::size_t i = 0; i < ball.size(); ++i)
    workspace.label[i] = static_cast<std::int32_t>(i);
  auto n = static_cast<std::int32_t>(ball.size()) - 1;
  for (std::size_t i = 0; i < ball.size(); ++i) {
    if (ball[i] == v)
      continue;
    for (const net_edge &edge : net.edges_of_vertex(ball[i])) {
      if (n == 1)
        return n;
      if (edge.neighbour <= ball[i] || edge.neighbour == v || !workspace.position.has(edge.neighbour))
        continue;
      const std::int32_t a = root_of(workspace.label, static_cast<std::int32_t>(i));
      const std::int32_t b = root_of(workspace.label, workspace.position.get(edge.neighbour));
      if (a == b)
        continue;
      workspace.label[static_cast<std::size_t>(std::max(a, b))] = std::min(a, b);
      --n;
    }
  }
  return n;
}

} // namespace

void class_net::vertex_net_characteristics(vertex_number v, bool use_cutoff, double cutoff,
                                           std::vector<std::int32_t> &n_in_rank, std::int32_t &n_clusters,
                                           std::int32_t n_rank, net_workspace &workspace,
                                           const component_lists *components) const {
  ball_walk(*this, {use_cutoff, cutoff}, components, workspace).run(v, n_rank, n_in_rank);
  // The cutoff limits the walk only: inside the neighbourhood every record joins.
  n_clusters = components_of_ball(*this, v, workspace);
}

// Every vertex of the ball hangs on v or on w by a path that doesn't use their edge, so there are one or two
// components. Both sides are walked side by side, and the first record between them settles it; without one the walk
// costs the ball.
void class_net::edge_net_characteristic(vertex_number v, std::int32_t k, std::int32_t &n_clusters, std::int32_t n_rank,
                                        net_workspace &workspace) const {
  const auto run = edges_of_vertex(v);
  assert(k >= 1 && static_cast<std::size_t>(k) <= run.size());
  const vertex_number w = run[static_cast<std::size_t>(k) - 1].neighbour;
  position_table &side = workspace.position; // the end on which a vertex hangs
  side.start(private_n_vertices_);
  side.set(v, v);
  side.set(w, w);
  std::vector<vertex_number> &ball = workspace.wave;
  ball.assign({v, w});
  n_clusters = 1;
  std::size_t first = 0;
  for (std::int32_t step = 0; step <= n_rank; ++step) { // the last step only looks
    for (const std::size_t end = ball.size(); first < end; ++first) {
      const vertex_number from = ball[first];
      const vertex_number side_of_from = side.get(from);
      for (const net_edge &edge : edges_of_vertex(from)) {
        const vertex_number to = edge.neighbour;
        if (side.has(to)) {
          const bool is_the_edge = (from == v && to == w) || (from == w && to == v);
          if (side.get(to) != side_of_from && !is_the_edge)
            return;
        } else if (step < n_rank) {
          side.set(to, side_of_from);
          ball.push_back(to);
        }
      }
    }
  }
  n_clusters = 2;
}

namespace {

// From an end that isn't preferred to the first preferred neighbour in which it is buried.
vertex_number moved_to_preferred(const class_net &net, vertex_number v, const std::vector<char> &preferred) {
  if (preferred[static_cast<std::size_t>(v)] != 0)
    return v;
  for (const net_edge &edge : net.edges_of_vertex(v))
    if (preferred[static_cast<std::size_t>(edge.neighbour)] != 0 && (edge.index2 == 1 || edge.index2 == 3))
      return edge.neighbour;
  return v;
}

} // namespace

void class_net::find_path_maximally_using_vertices_from_list(process_frame &frame, double cutoff, vertex_number &start,
                                                             vertex_number &end, const number_list &list,
                                                             number_list &path, bool show_message) const {
  const auto size = static_cast<std::size_t>(private_n_vertices_) + 1;
  std::vector<char> preferred(size, 0);
  for (const vertex_number v : list.members())
    preferred[static_cast<std::size_t>(v)] = 1;
  start = moved_to_preferred(*this, start, preferred);
  end = moved_to_preferred(*this, end, preferred);

  // From the end; `next` leads from a vertex one step on towards it. Preferred vertices are walked through at once,
  // others wait for the next sweep.
  std::vector<std::int32_t> dist(size, -1);
  std::vector<vertex_number> next(size, 0), walked{end}, waiting;
  dist[static_cast<std::size_t>(end)] = 1;
  while (dist[static_cast<std::size_t>(start)] < 0 && !walked.empty()) {
    for (std::size_t i = 0; i < walked.size(); ++i) {
      const vertex_number v = walked[i];
      for (const net_edge &edge : edges_of_vertex(v)) {
        const auto w = static_cast<std::size_t>(edge.neighbour);
        if (!(edge.value >= cutoff) || dist[w] >= 0)
          continue;
        dist[w] = dist[static_cast<std::size_t>(v)] + 1;
        next[w] = v;
        (preferred[w] != 0 ? walked : waiting).push_back(edge.neighbour);
      }
    }
    walked.swap(waiting);
    waiting.clear();
  }
  path.clear();
  if (dist[static_cast<std::size_t>(start)] < 0) {
    if (show_message)
      frame.alarm("net is unlinked!");
    return;
  }
  for (vertex_number v = start; v != 0; v = next[static_cast<std::size_t>(v)])
    path.add(v);
}

} // namespace orb
