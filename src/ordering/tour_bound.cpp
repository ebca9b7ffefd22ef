// The ascent to a lower bound. A path through 1..n is a tour with a vertex 0 at distance 0 from all others; a 1-tree is
// a spanning tree of 1..n and two edges of vertex 0. With a multiplier for each vertex, added to all its edges and
// taken twice from the sum, a tour keeps its cost, and no tour costs less than the cheapest 1-tree.
#include <algorithm>
#include <cmath>
#include <limits>

#include "ordering/tour_proof.h"

namespace orb {

namespace {

// Prim's algorithm on the full matrix; arrays are kept between calls.
class one_tree {
public:
  one_tree(const square_array<std::int32_t> &dist, std::int32_t n)
      : dist_(dist), n_(n), key_(place(n) + 1), degree(place(n) + 1), parent(place(n) + 1), left_(place(n) + 1) {}

  // The cheapest 1-tree less twice the multipliers, all in units of 1 / scale.
  double build(const std::vector<double> &multiplier) {
    start();
    double sum = 0, twice = 0;
    std::int32_t newest = 1;
    for (std::int32_t n_left = n_ - 1; n_left > 0; --n_left) {
      const std::int32_t at = nearest_of_left(multiplier, newest, n_left);
      newest = left_[place(at)];
      left_[place(at)] = left_[place(n_left - 1)];
      sum += key_[place(newest)] + multiplier[place(newest)];
      ++degree[place(newest)];
      ++degree[place(parent[place(newest)])];
      sequence.push_back(newest);
    }
    for (std::int32_t v = 1; v <= n_; ++v)
      twice += 2 * multiplier[place(v)];
    return sum + two_edges_of_vertex_0(multiplier) - twice;
  }

  static std::size_t place(std::int32_t i) { return static_cast<std::size_t>(i); }

private:
  void start() {
    std::fill(degree.begin(), degree.end(), 0);
    std::fill(key_.begin(), key_.end(), std::numeric_limits<double>::max());
    for (std::int32_t v = 2; v <= n_; ++v)
      left_[place(v - 2)] = v;
    sequence.assign(1, 1);
    parent[1] = 0;
  }

  // Brings the keys of the vertices that are left up to date and finds the smallest; its place among them.
  std::int32_t nearest_of_left(const std::vector<double> &multiplier, std::int32_t newest, std::int32_t n_left) {
    const std::int32_t *row = dist_.row(newest);
    const double own = multiplier[place(newest)];
    std::int32_t best = 0;
    double smallest = std::numeric_limits<double>::max();
    for (std::int32_t i = 0; i < n_left; ++i) {
      const std::size_t v = place(left_[place(i)]);
      const double through = row[v] * path_bound::scale + own; // the vertex's own multiplier comes later
      if (through < key_[v]) {
        key_[v] = through;
        parent[v] = newest;
      }
      const double compared = key_[v] + multiplier[v];
      if (compared < smallest) {
        smallest = compared;
        best = i;
      }
    }
    return best;
  }

  double two_edges_of_vertex_0(const std::vector<double> &multiplier) {
    std::int32_t a = 1, b = 2;
    if (multiplier[place(b)] < multiplier[place(a)])
      std::swap(a, b);
    for (std::int32_t v = 3; v <= n_; ++v) {
      if (multiplier[place(v)] < multiplier[place(a)]) {
        b = a;
        a = v;
      } else if (multiplier[place(v)] < multiplier[place(b)]) {
        b = v;
      }
    }
    ++degree[place(a)];
    ++degree[place(b)];
    return multiplier[place(a)] + multiplier[place(b)];
  }

  const square_array<std::int32_t> &dist_;
  std::int32_t n_;
  std::vector<double> key_; // cheapest edge into the tree, without the vertex's own multiplier

public:
  std::vector<std::int32_t> degree, parent, sequence;

private:
  std::vector<std::int32_t> left_;
};

} // namespace

path_bound ascend_bound(const square_array<std::int32_t> &dist, std::int32_t n, std::int64_t upper,
                        std::int32_t n_iterations, const search_clock &clock) {
  const auto place = [](std::int32_t i) { return static_cast<std::size_t>(i); };
  one_tree tree(dist, n);
  path_bound best;
  best.bound = -std::numeric_limits<double>::max();
  std::vector<double> multiplier(place(n) + 1, 0);
  std::vector<std::int32_t> degree_before(place(n) + 1, 2);
  const double goal = static_cast<double>(upper) * path_bound::scale;
  double share = 1; // of the step that would reach the goal were the bound linear (Polyak 1969)
  std::int32_t without_better = 0;
  for (std::int32_t k = 0; k < n_iterations; ++k) {
    const double bound = tree.build(multiplier);
    if (bound > best.bound) {
      best = {bound, multiplier, tree.parent, tree.sequence};
      without_better = 0;
    } else if (++without_better == 15) {
      share *= 0.8;
      without_better = 0;
    }
    double square = 0;
    for (std::int32_t v = 1; v <= n; ++v)
      square += (tree.degree[place(v)] - 2) * (tree.degree[place(v)] - 2);
    if (square == 0 || best.bound > goal - path_bound::scale || clock.over())
      break; // a tour, or as good as the known path
    const double step = share * std::max(goal - bound, path_bound::scale) / square;
    for (std::int32_t v = 1; v <= n; ++v) {
      const double smooth = 0.7 * tree.degree[place(v)] + 0.3 * degree_before[place(v)] - 2; // damps the zigzag
      multiplier[place(v)] = std::nearbyint(multiplier[place(v)] + step * smooth);
      degree_before[place(v)] = tree.degree[place(v)];
    }
    if (step < 0.2)
      break; // below the grain of the numbers
  }
  return best;
}

} // namespace orb
