#include "viewer/doubtful_edges.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <numeric>
#include <utility>

namespace orb {

namespace {

class doubtful_search {
public:
  explicit doubtful_search(const component_graph &graph)
      : graph_(graph), n_(graph.first.size() - 1), kept_(graph.neighbour.size(), 0),
        to_end_(n_, std::numeric_limits<std::int32_t>::max()), met_(n_, 0), steps_(n_, 0), joined_(n_) {
    std::iota(joined_.begin(), joined_.end(), 0);
  }

  // By entry of `neighbour`: whether it stays.
  const std::vector<std::uint8_t> &run() {
    for (std::int32_t v = 0; v < count(); ++v)
      for (std::int32_t at = begin(v); at < begin(v + 1); ++at)
        kept_[place(at)] = has_common_neighbour(v, graph_.neighbour[place(at)]) ? 1 : 0;
    for (std::int32_t v = 0; v < count(); ++v)
      if (met_[place(v)] == 0)
        measure_piece(v);
    join_pieces();
    return kept_;
  }

private:
  struct joint {
    std::int32_t to_end, a, b; // a < b
  };
  static std::size_t place(std::int32_t v) { return static_cast<std::size_t>(v); }
  std::int32_t count() const { return static_cast<std::int32_t>(n_); }
  std::int32_t begin(std::int32_t v) const { return graph_.first[place(v)]; }

  bool has_common_neighbour(std::int32_t a, std::int32_t b) const {
    auto few = graph_.neighbours(a), many = graph_.neighbours(b);
    if (few.size() > many.size())
      std::swap(few, many);
    return std::any_of(few.begin(), few.end(),
                       [&](std::int32_t v) { return std::binary_search(many.begin(), many.end(), v); });
  }

  // Into `order_` and `steps_`: the piece of `start`. `mark` is another one in each walk over a piece.
  void walk_piece(std::int32_t start, std::uint8_t mark) {
    order_.assign(1, start);
    steps_[place(start)] = 0;
    met_[place(start)] = mark;
    for (std::size_t i = 0; i < order_.size(); ++i)
      for (std::int32_t at = begin(order_[i]); at < begin(order_[i] + 1); ++at)
        if (const std::int32_t next = graph_.neighbour[place(at)]; kept_[place(at)] != 0 && met_[place(next)] != mark) {
          met_[place(next)] = mark;
          steps_[place(next)] = steps_[place(order_[i])] + 1;
          order_.push_back(next);
        }
  }

  // Steps of each node from the nearer of the two ends.
  void measure_piece(std::int32_t start) {
    walk_piece(start, 1);
    for (std::uint8_t mark = 2; mark <= 3; ++mark) {
      walk_piece(order_.back(), mark); // who is met last lies at an end
      for (const std::int32_t v : order_)
        to_end_[place(v)] = std::min(to_end_[place(v)], steps_[place(v)]);
    }
    for (const std::int32_t v : order_)
      joined_[place(v)] = order_.front();
  }

  std::int32_t piece_of(std::int32_t v) {
    while (joined_[place(v)] != v)
      v = joined_[place(v)] = joined_[place(joined_[place(v)])];
    return v;
  }
  bool is_alone(std::int32_t v) const {
    return std::none_of(kept_.begin() + begin(v), kept_.begin() + begin(v + 1), [](std::uint8_t k) { return k != 0; });
  }

  void join_pieces() {
    std::vector<joint> joints;
    std::vector<std::pair<std::int32_t, std::int32_t>> staying;
    std::vector<std::uint8_t> alone(n_);
    for (std::int32_t v = 0; v < count(); ++v)
      alone[place(v)] = is_alone(v) ? 1 : 0;
    for (std::int32_t a = 0; a < count(); ++a)
      for (std::int32_t at = begin(a); at < begin(a + 1); ++at) {
        const std::int32_t b = graph_.neighbour[place(at)];
        if (kept_[place(at)] != 0 || b < a)
          continue;
        if (alone[place(a)] != 0 || alone[place(b)] != 0)
          staying.emplace_back(a, b);
        else
          joints.push_back({std::max(to_end_[place(a)], to_end_[place(b)]), a, b});
      }
    for (const auto &[a, b] : staying)
      join(a, b);
    std::stable_sort(joints.begin(), joints.end(), [](const joint &a, const joint &b) { return a.to_end < b.to_end; });
    for (const joint &one : joints)
      if (piece_of(one.a) != piece_of(one.b))
        join(one.a, one.b);
  }
  void join(std::int32_t a, std::int32_t b) {
    joined_[place(piece_of(a))] = piece_of(b);
    keep(a, b);
    keep(b, a);
  }
  void keep(std::int32_t from, std::int32_t to) {
    const auto neighbours = graph_.neighbours(from);
    const auto found = std::lower_bound(neighbours.begin(), neighbours.end(), to);
    kept_[place(begin(from)) + static_cast<std::size_t>(found - neighbours.begin())] = 1;
  }

  const component_graph &graph_;
  std::size_t n_;
  std::vector<std::uint8_t> kept_;
  std::vector<std::int32_t> to_end_;
  std::vector<std::uint8_t> met_;
  std::vector<std::int32_t> steps_, order_, joined_;
};

} // namespace

void drop_doubtful_edges(component_graph &graph) {
  doubtful_search search(graph);
  const std::vector<std::uint8_t> &kept = search.run();
  std::size_t to = 0, at = 0;
  for (std::size_t v = 0; v + 1 < graph.first.size(); ++v) {
    const auto end = static_cast<std::size_t>(graph.first[v + 1]);
    graph.first[v] = static_cast<std::int32_t>(to);
    for (; at < end; ++at)
      if (kept[at] != 0)
        graph.neighbour[to++] = graph.neighbour[at];
  }
  graph.first.back() = static_cast<std::int32_t>(to);
  graph.neighbour.resize(to);
}

} // namespace orb
