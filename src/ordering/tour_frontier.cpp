// The search of what a lower bound leaves open.
//
// Let M be the longest distance. Every path is a set of pieces, made of edges shorter than M, that are joined by steps
// which cost M at the most; so a shortest path is a cheapest linear forest of the shorter edges, where each piece costs
// M and one M comes back. With the multipliers of the bound every edge gets a reduced cost, and an end of a piece costs
// M / 2 and its vertex's multiplier. An edge can only lie in a path shorter than the known one when the cheapest 1-tree
// that is forced to hold it stays below; for a contig few edges pass that test. Over them runs a dynamic programme that
// takes one vertex after the other. Its state is what the vertices with undecided edges (the frontier) look like:
// alone, inside a piece, or its end, and then where the other end is.
#include <algorithm>
#include <array>
#include <cstring>

#include "ordering/open_graph.h"
#include "ordering/tour_proof.h"
#include "ordering/vertex_order.h"

namespace orb {

namespace {

constexpr std::size_t most_slots = 28;          // of the frontier
constexpr std::int32_t poll_stride = 256;       // states
constexpr std::size_t most_records = 4'000'000; // of kept states, over all layers: 48 MB
constexpr std::size_t states_beyond = 1000;     // of a layer, once there are so many

std::size_t place(std::int32_t i) {
  return static_cast<std::size_t>(i);
}

// What stands in a slot of the frontier, besides the slot of the other end of its piece (its own: it is alone).
constexpr std::uint8_t slot_unused = 255, slot_inside = 254, slot_end_is_past = 253;

struct frontier_state {
  alignas(8) std::array<std::uint8_t, 32> mate;
  reduced_cost cost = 0;  // of edges and ends
  reduced_cost edges = 0; // of edges alone
  std::int32_t n_edges = 0, n_ends = 0;
  std::int32_t trace = -1;
  reduced_cost least = 0; // no path through this state costs less
};

// How a state came about: the edges that the vertex taken last got, as places among those to the frontier; -1: none.
struct trace_record {
  std::int32_t before;
  std::int8_t first, second;
};

// The states of one layer, one for each look of the frontier.
class state_layer {
public:
  void clear() {
    states.clear();
    std::fill(table_.begin(), table_.end(), -1);
  }
  // Keeps the cheaper of two that look the same.
  void add(const frontier_state &state) {
    if (2 * (states.size() + 1) > table_.size())
      grow();
    const std::size_t at = find(state.mate);
    if (table_[at] < 0) {
      table_[at] = static_cast<std::int32_t>(states.size());
      states.push_back(state);
    } else if (frontier_state &known = states[place(table_[at])]; state.cost < known.cost) {
      known = state;
    }
  }
  // Keeps the states of the smallest `least`; false when there were more.
  bool cut(std::size_t most) {
    if (states.size() <= most)
      return true;
    std::sort(states.begin(), states.end(), [](const frontier_state &x, const frontier_state &y) {
      return x.least != y.least ? x.least < y.least : x.mate < y.mate;
    });
    states.resize(most);
    return false;
  }

  std::vector<frontier_state> states;

private:
  static std::size_t hash(const std::array<std::uint8_t, 32> &mate) {
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i < mate.size(); i += 8) {
      std::uint64_t word = 0;
      std::memcpy(&word, mate.data() + i, 8);
      sum = (sum ^ word) * 0x9e3779b97f4a7c15u;
      sum ^= sum >> 29;
    }
    return static_cast<std::size_t>(sum);
  }
  std::size_t find(const std::array<std::uint8_t, 32> &mate) const {
    std::size_t at = hash(mate) & (table_.size() - 1);
    while (table_[at] >= 0 && states[place(table_[at])].mate != mate)
      at = (at + 1) & (table_.size() - 1);
    return at;
  }
  void grow() {
    table_.assign(std::max<std::size_t>(1024, 2 * table_.size()), -1);
    for (std::size_t i = 0; i < states.size(); ++i)
      table_[find(states[i].mate)] = static_cast<std::int32_t>(i);
  }
  std::vector<std::int32_t> table_;
};

class frontier_search {
public:
  frontier_search(const reduced_instance &instance, const open_graph &graph, vertex_order order, reduced_cost limit,
                  std::size_t most_states, const search_clock &clock)
      : instance_(instance), graph_(graph), order_(std::move(order)), rest_(costs_of_rests(graph, order_.vertices)),
        limit_(limit), most_states_(most_states), clock_(clock), walk_(graph) {
    slot_of_.assign(place(instance.n) + 1, 0);
  }

  // Takes all vertices. False when the time was over. Then `n_cut` tells in how many layers states were left out, and
  // `found` whether there is a path within the limit; its edges come from `edges`.
  bool run();
  std::int32_t n_cut = 0;
  bool found = false;
  std::vector<std::int32_t> edges() const;

private:
  void take(std::int32_t v);
  void expand(const frontier_state &state);
  bool join(frontier_state &state, std::size_t choice) const;
  bool leave(frontier_state &state, std::int32_t v) const;
  void keep(frontier_state &state, std::int32_t before, std::int8_t first, std::int8_t second);

  const reduced_instance &instance_;
  const open_graph &graph_;
  vertex_order order_;
  rest_costs rest_;
  reduced_cost limit_;
  std::size_t most_states_;
  const search_clock &clock_;
  frontier_walk walk_;
  std::vector<std::uint8_t> slot_of_; // by vertex
  std::uint32_t slots_in_use_ = 0;    // a bit each
  std::size_t n_taken_ = 0;
  std::vector<std::int32_t> back_edges_, left_; // of the vertex being taken: edges to the frontier; who leaves it
  std::uint8_t slot_ = 0;                       // its own
  state_layer now_, next_;
  std::vector<trace_record> new_trace_; // of next_, by the state's trace
  std::vector<trace_record> trace_;     // of all layers that were kept
  std::vector<std::vector<std::int32_t>> back_edges_of_layer_;
};

// Adds a back edge to the state; false when an end of it is inside a piece or both are ends of the same one.
bool frontier_search::join(frontier_state &state, std::size_t choice) const {
  const kept_edge &e = graph_.edges[place(back_edges_[choice])];
  const std::uint8_t s = slot_of_[place(e.a)], t = slot_of_[place(e.b)];
  const std::uint8_t end_s = state.mate[s], end_t = state.mate[t];
  if (end_s == slot_inside || end_t == slot_inside || end_s == t)
    return false;
  if (end_s != s)
    state.mate[s] = slot_inside;
  if (end_t != t)
    state.mate[t] = slot_inside;
  if (end_s != slot_end_is_past)
    state.mate[end_s] = end_t;
  if (end_t != slot_end_is_past)
    state.mate[end_t] = end_s;
  state.cost += e.cost;
  state.edges += e.cost;
  ++state.n_edges;
  return true;
}

// v leaves the frontier; false when it would have to be an end and can't be one.
bool frontier_search::leave(frontier_state &state, std::int32_t v) const {
  const std::uint8_t s = slot_of_[place(v)], other = state.mate[s];
  state.mate[s] = slot_unused;
  if (other == slot_inside)
    return true;
  if (graph_.may_end[place(v)] == 0)
    return false;
  const std::int32_t ends = other == s ? 2 : 1;
  state.cost += ends * instance_.end(v);
  state.n_ends += ends;
  if (other != s && other != slot_end_is_past)
    state.mate[other] = slot_end_is_past;
  return true;
}

void frontier_search::keep(frontier_state &state, std::int32_t before, std::int8_t first, std::int8_t second) {
  for (const std::int32_t v : left_)
    if (!leave(state, v))
      return;
  if (n_taken_ == order_.vertices.size()) {
    state.least = state.cost - instance_.longest * path_bound::scale - instance_.twice_multipliers;
  } else {
    // Pieces so far have to be joined: those between ends that are past by steps of length M, the others by edges.
    const std::int32_t to_join = static_cast<std::int32_t>(n_taken_) - state.n_edges - 1;
    const std::int32_t long_joints = std::max(state.n_ends - 1, 0) / 2;
    state.least = state.edges + rest_.tree[n_taken_] + (to_join - long_joints) * rest_.edge[n_taken_] +
                  long_joints * graph_.smallest_joint + instance_.smallest + instance_.second -
                  instance_.twice_multipliers;
  }
  if (state.least > limit_)
    return;
  state.trace = static_cast<std::int32_t>(new_trace_.size());
  new_trace_.push_back({before, first, second});
  next_.add(state);
}

// Everything that the vertex being taken can get: no edge to the frontier, one, two.
void frontier_search::expand(const frontier_state &state) {
  frontier_state alone = state;
  alone.mate[slot_] = slot_;
  frontier_state work = alone;
  keep(work, state.trace, -1, -1);
  for (std::size_t i = 0; i < back_edges_.size(); ++i) {
    frontier_state one = alone;
    if (!join(one, i))
      continue;
    work = one;
    keep(work, state.trace, static_cast<std::int8_t>(i), -1);
    for (std::size_t j = i + 1; j < back_edges_.size(); ++j) {
      work = one;
      if (join(work, j))
        keep(work, state.trace, static_cast<std::int8_t>(i), static_cast<std::int8_t>(j));
    }
  }
}

void frontier_search::take(std::int32_t v) {
  slot_ = static_cast<std::uint8_t>(__builtin_ctz(~slots_in_use_));
  slot_of_[place(v)] = slot_;
  slots_in_use_ |= 1u << slot_;
  back_edges_.clear();
  for (const std::int32_t e : graph_.touching[place(v)])
    if (walk_.taken[place(other_end(graph_.edges[place(e)], v))] != 0)
      back_edges_.push_back(e);
  walk_.take(v, left_);
  ++n_taken_;
  for (const std::int32_t w : left_)
    slots_in_use_ &= ~(1u << slot_of_[place(w)]);
}

bool frontier_search::run() {
  frontier_state start;
  start.mate.fill(slot_unused);
  now_.add(start);
  for (const std::int32_t v : order_.vertices) {
    take(v);
    next_.clear();
    new_trace_.clear();
    for (std::size_t i = 0; i < now_.states.size(); ++i) {
      if (i % poll_stride == 0 && clock_.over())
        return false;
      expand(now_.states[i]);
    }
    n_cut += next_.cut(trace_.size() < most_records ? most_states_ : states_beyond) ? 0 : 1;
    // only what was kept is remembered
    for (frontier_state &state : next_.states) {
      trace_.push_back(new_trace_[place(state.trace)]);
      state.trace = static_cast<std::int32_t>(trace_.size()) - 1;
    }
    back_edges_of_layer_.push_back(back_edges_);
    std::swap(now_, next_);
  }
  found = !now_.states.empty();
  return true;
}

std::vector<std::int32_t> frontier_search::edges() const {
  std::vector<std::int32_t> out;
  std::int32_t at = now_.states.front().trace;
  for (std::size_t layer = back_edges_of_layer_.size(); layer-- > 0; at = trace_[place(at)].before) {
    const trace_record &record = trace_[place(at)];
    for (const std::int8_t choice : {record.first, record.second})
      if (choice >= 0)
        out.push_back(back_edges_of_layer_[layer][place(choice)]);
  }
  return out;
}

} // namespace

search_outcome search_below(const square_array<std::int32_t> &dist, std::int32_t n, const path_bound &bound,
                            std::int32_t most_states, const search_clock &clock, path_order &order) {
  const reduced_instance instance(dist, n, bound);
  const reduced_cost limit = static_cast<double>(cost_of_path(dist, order) - 1) * path_bound::scale;
  reduced_cost room = limit - bound.bound;
  if (room < 0)
    return {true, 0};
  bool complete = true;
  open_graph graph;
  vertex_order vertices;
  while (true) {
    if (clock.over())
      return {false, 1};
    graph = open_part(instance, room);
    // Each vertex has at most as many edges to those taken before as the frontier has slots.
    if (graph.edges.size() <= most_slots * place(n)) {
      vertices = best_vertex_order(graph, order, clock);
      if (vertices.widest <= most_slots)
        break;
    }
    complete = false; // too much is open: a part of it may still hold a better path
    room /= 2;
  }
  frontier_search search(instance, graph, std::move(vertices), limit, static_cast<std::size_t>(most_states), clock);
  if (!search.run())
    return {false, 1};
  if (search.found) {
    const path_order better = path_of_edges(graph, search.edges(), n);
    if (cost_of_path(dist, better) < cost_of_path(dist, order))
      order = better;
  }
  return {complete && search.n_cut == 0, search.n_cut / static_cast<double>(n)};
}

} // namespace orb
