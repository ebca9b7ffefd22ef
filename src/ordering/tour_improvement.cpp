// Iterated local search on a path: 2-opt moves and moves of pieces of up to three vertices (Or 1976) among near
// neighbours, after small double bridges (Martin, Otto and Felten 1991). The path is a tour with a vertex 0 at distance
// 0 from all others; every change is a row of reversals, so that a vain try is taken back by the same reversals.
#include <algorithm>
#include <cmath>
#include <numeric>

#include "frame/random_source.h"
#include "ordering/tour_proof.h"

namespace orb {

namespace {

constexpr std::int32_t n_near = 10;            // neighbours looked at
constexpr std::int32_t longest_piece = 3;      // vertices moved at once
constexpr std::int32_t longest_of_bridge = 30; // vertices of a part of a double bridge
constexpr int poll_stride = 16;                // kicks
constexpr double warmth_at_start = 0.3;        // of the grain of the distances: losses that pass a kick, on average

std::size_t place(std::int32_t i) {
  return static_cast<std::size_t>(i);
}

class path_improver {
public:
  path_improver(const square_array<std::int32_t> &dist, std::int32_t n)
      : dist_(dist), size_(n + 1), at_(place(size_)), where_(place(size_)), queued_(place(size_), 0) {
    find_near();
  }

  void start(const path_order &order) {
    at_[0] = 0;
    std::copy(order.begin(), order.end(), at_.begin() + 1);
    for (std::int32_t i = 0; i < size_; ++i)
      where_[place(at_[place(i)])] = i;
  }
  // Edges by ascending length, each taken while it makes no fork and no circle.
  void start_greedily();
  // From the first vertex behind vertex 0.
  path_order order() const {
    path_order out;
    for (std::int32_t v = next(0); v != 0; v = next(v))
      out.push_back(v);
    return out;
  }

  // Local search from the queued vertices; the sum of the gains.
  std::int64_t improve(const search_clock &clock);
  void queue_all() {
    for (std::int32_t v = 0; v < size_; ++v)
      queue(v);
  }
  // One double bridge and the local search after it; taken back when the path got longer by more than `allowed`. The
  // gain, below 0 for a loss.
  std::int64_t try_bridge(random_source &random, double allowed, const search_clock &clock);
  // How much the distances differ that a vertex has to choose from: mean over the vertices of the third nearest less
  // the nearest.
  double grain() const;

private:
  std::int32_t d(std::int32_t a, std::int32_t b) const { return a == 0 || b == 0 ? 0 : dist_(a, b); }
  std::int32_t next(std::int32_t v) const {
    const std::int32_t i = where_[place(v)] + 1;
    return at_[place(i == size_ ? 0 : i)];
  }
  std::int32_t previous(std::int32_t v) const {
    const std::int32_t i = where_[place(v)];
    return at_[place(i == 0 ? size_ - 1 : i - 1)];
  }
  std::int32_t step(std::int32_t v, bool forward) const { return forward ? next(v) : previous(v); }
  void queue(std::int32_t v) {
    if (queued_[place(v)] == 0) {
      queued_[place(v)] = 1;
      queue_.push_back(v);
    }
  }
  void find_near();
  void reverse(std::int32_t i, std::int32_t j);
  void exchange(std::int32_t a, std::int32_t b, std::int32_t c, std::int32_t e);
  std::int64_t improve_vertex(std::int32_t a);
  std::int64_t move_piece(std::int32_t a, std::int32_t b, std::int32_t c, bool forward);

  const square_array<std::int32_t> &dist_;
  std::int32_t size_;                    // vertices with vertex 0
  std::vector<std::int32_t> at_, where_; // vertex at a position, position of a vertex; both from 0
  std::vector<std::int32_t> near_;       // n_near_ of each vertex from 0, nearest first; vertex 0 leads
  std::int32_t n_near_ = 0;
  std::vector<std::uint8_t> queued_;
  std::vector<std::int32_t> queue_;
  std::size_t queue_begin_ = 0;
  std::vector<std::pair<std::int32_t, std::int32_t>> reversals_; // since the last start of a try
};

void path_improver::find_near() {
  const std::int32_t n = size_ - 1;
  n_near_ = std::min(n_near, n - 1) + 1;
  near_.assign(place(size_) * place(n_near_), 0);
  std::vector<std::int32_t> others(place(n));
  for (std::int32_t v = 1; v <= n; ++v) {
    std::iota(others.begin(), others.end(), 1);
    others.erase(others.begin() + v - 1);
    const auto nearer = [&](std::int32_t a, std::int32_t b) {
      return dist_(v, a) != dist_(v, b) ? dist_(v, a) < dist_(v, b) : a < b;
    };
    std::partial_sort(others.begin(), others.begin() + n_near_ - 1, others.end(), nearer);
    std::copy_n(others.begin(), n_near_ - 1, near_.begin() + static_cast<std::ptrdiff_t>(v) * n_near_ + 1);
    others.push_back(0);
  }
}

void path_improver::start_greedily() {
  struct edge {
    std::int32_t d, a, b;
  };
  std::vector<edge> edges;
  for (std::int32_t v = 1; v < size_; ++v)
    for (std::int32_t k = 1; k < n_near_; ++k) {
      const std::int32_t w = near_[place(v) * place(n_near_) + place(k)];
      edges.push_back({dist_(v, w), std::min(v, w), std::max(v, w)});
    }
  std::sort(edges.begin(), edges.end(), [](const edge &x, const edge &y) {
    return x.d != y.d ? x.d < y.d : x.a != y.a ? x.a < y.a : x.b < y.b;
  });
  std::vector<std::int32_t> other_end(place(size_)); // of the piece that ends here
  std::iota(other_end.begin(), other_end.end(), 0);
  std::vector<std::pair<std::int32_t, std::int32_t>> joined(place(size_), {0, 0});
  for (const edge &e : edges) {
    auto &at_a = joined[place(e.a)], &at_b = joined[place(e.b)];
    if (at_a.second != 0 || at_b.second != 0 || other_end[place(e.a)] == e.b || at_a.first == e.b)
      continue;
    (at_a.first == 0 ? at_a.first : at_a.second) = e.b;
    (at_b.first == 0 ? at_b.first : at_b.second) = e.a;
    const std::int32_t end_a = other_end[place(e.a)], end_b = other_end[place(e.b)];
    other_end[place(end_a)] = end_b;
    other_end[place(end_b)] = end_a;
  }
  path_order order;
  std::vector<std::uint8_t> taken(place(size_), 0);
  for (std::int32_t v = 1; v < size_; ++v) {
    if (taken[place(v)] != 0 || joined[place(v)].second != 0)
      continue; // walked already, or inside a piece
    for (std::int32_t before = 0, here = v; here != 0;) {
      order.push_back(here);
      taken[place(here)] = 1;
      const auto &[x, y] = joined[place(here)];
      const std::int32_t onward = x != before ? x : y;
      before = here;
      here = onward;
    }
  }
  start(order);
}

// The positions i to j (onward, past the end if need be), or the rest of the tour, which comes to the same.
void path_improver::reverse(std::int32_t i, std::int32_t j) {
  reversals_.emplace_back(i, j);
  std::int32_t length = j - i + (j < i ? size_ : 0) + 1;
  if (2 * length > size_) {
    const std::int32_t begin = j + 1 == size_ ? 0 : j + 1;
    j = i == 0 ? size_ - 1 : i - 1;
    i = begin;
    length = size_ - length;
  }
  for (std::int32_t k = length / 2; k > 0; --k) {
    std::swap(at_[place(i)], at_[place(j)]);
    where_[place(at_[place(i)])] = i;
    where_[place(at_[place(j)])] = j;
    i = i + 1 == size_ ? 0 : i + 1;
    j = j == 0 ? size_ - 1 : j - 1;
  }
}

// Edges a-b and c-e become a-c and b-e; b follows a as e follows c, or both precede.
void path_improver::exchange(std::int32_t a, std::int32_t b, std::int32_t c, std::int32_t e) {
  if (next(a) == b)
    reverse(where_[place(b)], where_[place(c)]);
  else
    reverse(where_[place(a)], where_[place(e)]);
}

// Moves a piece that begins at a and leads away from its neighbour b so that a comes beside c. `forward`: b follows a.
std::int64_t path_improver::move_piece(std::int32_t a, std::int32_t b, std::int32_t c, bool forward) {
  std::int32_t end = a;
  for (std::int32_t length = 1; length <= longest_piece; ++length) {
    if (length > 1)
      end = step(end, !forward);
    if (end == c || end == b)
      return 0;
    const std::int32_t behind = step(end, !forward);
    if (behind == b)
      return 0;
    const std::int64_t removed = std::int64_t{d(a, b)} + d(end, behind) - d(b, behind) - d(a, c);
    // seen from b through the piece onward: c with what follows it, or what precedes it with c
    for (const bool onward : {true, false}) {
      const std::int32_t f = step(c, onward ? !forward : forward);
      if (f == a || f == end)
        continue;
      const std::int64_t gain = removed + d(c, f) - d(end, f);
      if (gain <= 0)
        continue;
      const std::int32_t x = onward ? c : f, y = onward ? f : c;
      exchange(b, a, x, y);
      exchange(b, x, behind, end);
      if (onward && length > 1)
        exchange(x, end, a, y);
      for (const std::int32_t v : {a, b, c, f, end, behind})
        queue(v);
      return gain;
    }
  }
  return 0;
}

// The first move found at a that betters the path; its gain, 0 for none.
std::int64_t path_improver::improve_vertex(std::int32_t a) {
  for (const bool forward : {true, false}) {
    const std::int32_t b = step(a, forward);
    const std::int32_t ab = d(a, b);
    for (std::int32_t k = 0; k < n_near_; ++k) {
      const std::int32_t c = near_[place(a) * place(n_near_) + place(k)];
      if (c == a || c == b)
        continue;
      if (d(a, c) >= ab)
        break;
      const std::int32_t e = step(c, forward);
      const std::int64_t gain = std::int64_t{ab} + d(c, e) - d(a, c) - d(b, e);
      if (gain > 0) {
        exchange(a, b, c, e);
        for (const std::int32_t v : {a, b, c, e})
          queue(v);
        return gain;
      }
      if (const std::int64_t gain_of_piece = move_piece(a, b, c, forward); gain_of_piece > 0)
        return gain_of_piece;
    }
  }
  return 0;
}

std::int64_t path_improver::improve(const search_clock &clock) {
  std::int64_t gain = 0;
  std::uint32_t polls = 0;
  while (queue_begin_ < queue_.size()) {
    const std::int32_t v = queue_[queue_begin_++];
    queued_[place(v)] = 0;
    for (std::int64_t better = improve_vertex(v); better > 0; better = improve_vertex(v)) {
      gain += better;
      if ((++polls & 255) == 0 && clock.over())
        break;
    }
    if ((++polls & 255) == 0 && clock.over())
      break;
  }
  for (; queue_begin_ < queue_.size(); ++queue_begin_)
    queued_[place(queue_[queue_begin_])] = 0;
  queue_.clear();
  queue_begin_ = 0;
  return gain;
}

double path_improver::grain() const {
  double sum = 0;
  const std::int32_t other = std::min(3, n_near_ - 1);
  for (std::int32_t v = 1; v < size_; ++v) {
    const std::size_t first = place(v) * place(n_near_);
    sum += dist_(v, near_[first + place(other)]) - dist_(v, near_[first + 1]);
  }
  return sum / (size_ - 1);
}

std::int64_t path_improver::try_bridge(random_source &random, double allowed, const search_clock &clock) {
  reversals_.clear();
  const std::int32_t longest = std::min(longest_of_bridge, size_ / 4);
  const auto onward = [&](std::int32_t i, std::int32_t by) { return (i + by) % size_; };
  const std::int32_t p = random.number_up_to(size_) - 1, l1 = random.number_up_to(longest),
                     l2 = random.number_up_to(longest);
  const std::int32_t a = at_[place(p)], b = at_[place(onward(p, 1))], c = at_[place(onward(p, l1))],
                     e = at_[place(onward(p, l1 + 1))], f = at_[place(onward(p, l1 + l2))],
                     g = at_[place(onward(p, l1 + l2 + 1))];
  std::int64_t gain = std::int64_t{d(a, b)} + d(c, e) + d(f, g) - d(a, e) - d(f, b) - d(c, g);
  reverse(onward(p, 1), onward(p, l1 + l2));
  reverse(onward(p, 1), onward(p, l2));
  reverse(onward(p, l2 + 1), onward(p, l1 + l2));
  for (const std::int32_t v : {a, b, c, e, f, g})
    queue(v);
  gain += improve(clock);
  if (static_cast<double>(gain) >= -allowed)
    return gain;
  for (std::size_t k = reversals_.size(); k-- > 0;) {
    const auto [i, j] = reversals_[k];
    reverse(i, j);
  }
  return 0;
}

} // namespace

std::int64_t improve_path(const square_array<std::int32_t> &dist, std::int32_t n, std::int64_t n_kicks,
                          const search_clock &clock, path_order &order) {
  if (n < 5) { // too few for a double bridge; callers solve these exactly
    if (order.empty())
      for (std::int32_t v = 1; v <= n; ++v)
        order.push_back(v);
    return cost_of_path(dist, order);
  }
  path_improver improver(dist, n);
  if (order.empty())
    improver.start_greedily();
  else
    improver.start(order);
  improver.queue_all();
  improver.improve(clock);
  // Its own generator, so that whoever calls keeps the row of its draws; another one for each number of kicks.
  random_source random(static_cast<std::uint64_t>(n), static_cast<std::uint64_t>(n_kicks));
  path_order best = improver.order();
  const std::int64_t start = cost_of_path(dist, best);
  std::int64_t cost = start, best_cost = start;
  // Small losses are let pass, the smaller the longer it goes on (Kirkpatrick, Gelatt and Vecchi 1983).
  const double warmth = warmth_at_start * improver.grain();
  for (std::int64_t k = 0; k < n_kicks && (k % poll_stride != 0 || !clock.over()); ++k) {
    const double left = 1 - static_cast<double>(k) / static_cast<double>(n_kicks);
    cost -= improver.try_bridge(random, -warmth * left * std::log(1 - random.uniform()), clock);
    if (cost < best_cost) {
      best_cost = cost;
      best = improver.order();
    }
  }
  order = std::move(best);
  return best_cost;
}

} // namespace orb
