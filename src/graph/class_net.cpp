// Building a net, and looking at single records.
#include "graph/class_net.h"

#include <algorithm>
#include <cassert>
#include <limits>
#include <stdexcept>

namespace orb {

namespace {

constexpr std::int64_t largest_number = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t most_records_reserved = 1 << 16; // more are taken as they come

} // namespace

std::int32_t class_net::max_n_edges_for_n_of_vertices(std::int32_t n, std::int32_t n_max_per_vertex) const {
  std::int64_t estimate = std::int64_t{n} * 10;
  if ((private_n_vertices_ < n_max_per_vertex || n_max_per_vertex < 0) && n < 2000)
    estimate = std::int64_t{n} * (n - 1);
  else if (n_max_per_vertex >= 1)
    estimate = std::int64_t{n} * n_max_per_vertex;
  return static_cast<std::int32_t>(std::min(estimate, largest_number));
}

void class_net::inicializate_net(std::int32_t n_vertices, std::int64_t n_edges_max) {
  const std::int64_t room =
      n_vertices < 30000 ? std::min(std::int64_t{n_vertices} * n_vertices + 2, n_edges_max) : n_edges_max;
  vertices_.clear();
  vertices_.reserve(static_cast<std::size_t>(n_vertices) + 2);
  vertices_.emplace_back();
  edges_.clear();
  edges_.reserve(static_cast<std::size_t>(std::clamp(room, std::int64_t{0}, most_records_reserved)) + 1);
  edges_.emplace_back();
  private_n_vertices_ = 0;
  private_n_edges_ = 0;
  minimal_edge_value_known_ = false;
}

void class_net::add_vertex_fast(std::int16_t index) {
  ++private_n_vertices_;
  vertices_.push_back({private_n_edges_ + 1, index});
}

void class_net::add_edge_fast(vertex_number, vertex_number neighbour, double value, std::int16_t index1,
                              std::int16_t index2) {
  // One is kept free for the sentinel's address.
  if (private_n_edges_ >= largest_number - 1)
    throw std::length_error("The net has too many overlaps: a net holds at most 2147483646 records. Raise the cutoff.");
  ++private_n_edges_;
  edges_.push_back({neighbour, index1, index2, value});
}

void class_net::finish_of_adding() {
  vertices_.resize(static_cast<std::size_t>(private_n_vertices_) + 1);
  vertices_.push_back({private_n_edges_ + 1, 0});
  // The flag outlives a rebuilding, but must not claim what the new records don't keep.
  if (neighbours_are_sorted_)
    test_neighbours_sorted();
}

bool class_net::test_neighbours_sorted() {
  neighbours_are_sorted_ = true;
  for (vertex_number v = 1; v <= private_n_vertices_ && neighbours_are_sorted_; ++v) {
    const auto run = edges_of_vertex(v);
    neighbours_are_sorted_ = std::is_sorted(
        run.begin(), run.end(), [](const net_edge &a, const net_edge &b) { return a.neighbour < b.neighbour; });
  }
  return neighbours_are_sorted_;
}

void class_net::edge_of_vertex(process_frame &frame, vertex_number v, std::int32_t k, vertex_number &neighbour,
                               double &value, std::int16_t &index1, std::int16_t &index2) const {
  const auto run = edges_of_vertex(v);
  if (k < 1 || static_cast<std::size_t>(k) > run.size()) {
    frame.alarm("Error: neighbour_number > number_of_neighbours(vertex)");
    k = static_cast<std::int32_t>(run.size());
  }
  const net_edge read = k >= 1 ? run[static_cast<std::size_t>(k) - 1] : net_edge{};
  neighbour = read.neighbour;
  value = read.value;
  index1 = read.index1;
  index2 = read.index2;
}

namespace {

// Place (from 1) of `to` in a run; 0 when it isn't there.
std::int32_t place_by_scan(std::span<const net_edge> run, vertex_number to) {
  for (std::size_t i = 0; i < run.size(); ++i)
    if (run[i].neighbour == to)
      return static_cast<std::int32_t>(i) + 1;
  return 0;
}

std::int32_t place_by_bisection(std::span<const net_edge> run, vertex_number to) {
  const auto n = static_cast<std::int32_t>(run.size());
  const auto at = [run](std::int32_t k) { return run[static_cast<std::size_t>(k) - 1].neighbour; };
  if (n == 0)
    return 0;
  if (at(1) == to)
    return 1;
  if (at(n) == to)
    return n;
  if (n == 1 || to < at(1) || to > at(n))
    return 0;
  std::int32_t lo = 1, hi = n;
  while (lo + 1 < hi) {
    const std::int32_t mid = (lo + hi) / 2;
    if (at(mid) == to)
      return mid;
    (at(mid) < to ? lo : hi) = mid;
  }
  return 0;
}

// Number of common neighbours of two ascending runs, counted up to `enough`.
std::int32_t common_neighbours(std::span<const net_edge> a, std::span<const net_edge> b, std::int32_t enough) {
  std::int32_t count = 0;
  std::size_t i = 0, j = 0;
  while (i < a.size() && j < b.size() && count < enough) {
    if (a[i].neighbour < b[j].neighbour) {
      ++i;
    } else if (a[i].neighbour > b[j].neighbour) {
      ++j;
    } else {
      ++count, ++i, ++j;
    }
  }
  return count;
}

} // namespace

void class_net::edge_is_exist(vertex_number a, vertex_number b, vertex_number &from, vertex_number &to, std::int32_t &k,
                              bool &swapped, bool &exists) const {
  swapped = !(number_of_edges_for_vertex_total_get(a) < number_of_edges_for_vertex_total_get(b));
  from = swapped ? b : a;
  to = swapped ? a : b;
  const auto run = edges_of_vertex(from);
  k = neighbours_are_sorted_ ? place_by_bisection(run, to) : place_by_scan(run, to);
  exists = k > 0;
}

void class_net::edge_is_exist_slow(vertex_number a, vertex_number b, std::int32_t &k, edge_adress &e,
                                   bool &exists) const {
  k = place_by_scan(edges_of_vertex(a), b);
  exists = k > 0;
  e = exists ? adress_of_first_edge_get(a) + k - 1 : 0;
}

bool class_net::overlap_of_pair(vertex_number a, vertex_number b, double &value, std::int16_t &index1,
                                std::int16_t &index2) const {
  vertex_number from, to;
  std::int32_t k;
  bool swapped, exists;
  edge_is_exist(a, b, from, to, k, swapped, exists);
  value = 0;
  index1 = index2 = 0;
  if (!exists)
    return false;
  const net_edge &found = edges_of_vertex(from)[static_cast<std::size_t>(k) - 1];
  value = found.value;
  index1 = found.index1;
  index2 = swapped ? burial_code_mirrored(found.index2) : found.index2;
  return true;
}

void class_net::edge_is_side_of_treangle(vertex_number v, std::int32_t k, bool &yes) const {
  const auto run = edges_of_vertex(v);
  assert(k >= 1 && static_cast<std::size_t>(k) <= run.size());
  yes = common_neighbours(run, edges_of_vertex(run[static_cast<std::size_t>(k) - 1].neighbour), 1) > 0;
}

void class_net::n_vertices_connecting_vertices(vertex_number a, vertex_number b, std::int32_t &count) const {
  count = common_neighbours(edges_of_vertex(a), edges_of_vertex(b), std::numeric_limits<std::int32_t>::max());
}

double class_net::minimal_edge_value_get() const {
  if (!minimal_edge_value_known_) {
    const auto smallest = std::min_element(edges_.begin() + (edges_.empty() ? 0 : 1), edges_.end(),
                                           [](const net_edge &a, const net_edge &b) { return a.value < b.value; });
    minimal_edge_value_ = smallest == edges_.end() ? 0 : smallest->value;
    minimal_edge_value_known_ = true;
  }
  return minimal_edge_value_;
}

void class_net::number_of_vertices_with_index_get(std::int16_t index, std::int32_t &n) const {
  n = 0;
  for (vertex_number v = 1; v <= private_n_vertices_; ++v)
    n += index_of_vertex_get(v) == index;
}

} // namespace orb
