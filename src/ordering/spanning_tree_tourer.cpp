#include "ordering/spanning_tree_tourer.h"

#include <algorithm>
#include <string>

namespace orb {

namespace {

std::size_t place(std::int32_t i) {
  return static_cast<std::size_t>(i);
}

class_MSTTourer::tree_adjacency adjacency_of_edges(std::int32_t n, const number_list &from, const number_list &to) {
  class_MSTTourer::tree_adjacency adjacency;
  adjacency.first.assign(place(n) + 2, 0);
  for (std::int32_t e = 1; e <= from.count(); ++e) {
    ++adjacency.first[place(from(e))];
    ++adjacency.first[place(to(e))];
  }
  std::int32_t sum = 0;
  for (std::int32_t &first : adjacency.first) { // number of neighbours -> start of the run
    const std::int32_t count = first;
    first = sum;
    sum += count;
  }
  adjacency.neighbours.resize(place(sum));
  std::vector<std::int32_t> next = adjacency.first;
  for (std::int32_t e = 1; e <= from.count(); ++e) {
    adjacency.neighbours[place(next[place(from(e))]++)] = to(e);
    adjacency.neighbours[place(next[place(to(e))]++)] = from(e);
  }
  return adjacency;
}

// The first place of the largest member.
std::int32_t first_of_largest(const number_list &list) {
  const auto members = list.members();
  return static_cast<std::int32_t>(std::max_element(members.begin(), members.end()) - members.begin()) + 1;
}

} // namespace

void class_MSTTourer::makeMST(const square_array<std::int32_t> &matrix, std::int32_t n, std::int32_t threshold,
                              number_list &from, number_list &to, number_list &value, bool &connected) {
  from.clear();
  to.clear();
  value.clear();
  connected = true;
  if (n < 1)
    return;
  // Vertices not yet taken, in a doubly linked list with an end marker at both sides: 0 and n + 1.
  std::vector<std::int32_t> previous(place(n) + 2), next(place(n) + 2);
  for (std::int32_t v = 0; v <= n + 1; ++v) {
    previous[place(v)] = v - 1;
    next[place(v)] = v + 1;
  }
  std::vector<std::int32_t> nearest(place(n) + 1, threshold), nearest_from(place(n) + 1, 1);
  const auto unlink = [&](std::int32_t v) {
    next[place(previous[place(v)])] = next[place(v)];
    previous[place(next[place(v)])] = previous[place(v)];
  };
  unlink(1);
  for (std::int32_t newest = 1, k = 1; k < n; ++k) {
    std::int32_t smallest = 0;
    for (std::int32_t v = next[0]; v <= n; v = next[place(v)]) {
      if (matrix(newest, v) < nearest[place(v)]) {
        nearest[place(v)] = matrix(newest, v);
        nearest_from[place(v)] = newest;
      }
      if (smallest == 0 || nearest[place(v)] < nearest[place(smallest)])
        smallest = v;
    }
    if (smallest == 0) {
      frame_->alarm("Error in program :(");
      return;
    }
    from.add(nearest_from[place(smallest)]);
    to.add(smallest);
    value.add(nearest[place(smallest)]);
    connected = connected && nearest[place(smallest)] < threshold;
    unlink(smallest);
    newest = smallest;
  }
  if (next[0] != n + 1)
    frame_->alarm("Error in program :(");
}

void class_MSTTourer::make_distRank_by_tree(std::int32_t start, std::int32_t n, const tree_adjacency &adjacency,
                                            number_list &ranks) {
  ranks.resize(n);
  std::fill(ranks.members().begin(), ranks.members().end(), -1);
  std::vector<std::int32_t> walk{start};
  ranks(start) = 0;
  for (std::size_t at = 0; at < walk.size(); ++at) {
    const std::int32_t v = walk[at];
    for (std::int32_t k = adjacency.first[place(v)]; k < adjacency.first[place(v) + 1]; ++k) {
      const std::int32_t w = adjacency.neighbours[place(k)];
      if (ranks(w) >= 0)
        continue;
      ranks(w) = ranks(v) + 1;
      walk.push_back(w);
    }
  }
  const auto m = static_cast<std::int32_t>(walk.size());
  if (m < n)
    frame_->program_end_now("make_distRank_by_tree ERROR: m=" + std::to_string(m) + "<" + std::to_string(n) + "=n");
}

void class_MSTTourer::longest_path_on_tree(std::int32_t n, const number_list &from, const number_list &to,
                                           number_list &ranks, number_list &path, std::int32_t &n_path) {
  const tree_adjacency adjacency = adjacency_of_edges(n, from, to);
  for (std::int32_t v = 1; v <= n; ++v)
    if (adjacency.first[place(v) + 1] == adjacency.first[place(v)])
      frame_->program_end_now("longest_path_on_tree: Error: nConnections(" + std::to_string(v) + ") = 0");
  make_distRank_by_tree(1, n, adjacency, ranks);
  const std::int32_t a = first_of_largest(ranks);
  make_distRank_by_tree(a, n, adjacency, ranks);
  const std::int32_t b = first_of_largest(ranks), largest = ranks(b);
  path.clear();
  path.add(b);
  while (path.count() < largest + 1) {
    const std::int32_t v = path(path.count());
    for (std::int32_t k = adjacency.first[place(v)]; k < adjacency.first[place(v) + 1]; ++k)
      if (const std::int32_t w = adjacency.neighbours[place(k)]; ranks(w) < largest - path.count() + 2) {
        path.add(w);
        break;
      }
  }
  n_path = path.count();
}

void class_MSTTourer::callMST(const square_array<std::int32_t> &matrix, std::int32_t n, number_list &path,
                              std::int32_t &n_path, std::int32_t threshold, bool &connected) {
  connected = true;
  if (n <= 2) {
    path = number_list::range(1, std::max(n, 0));
    n_path = path.count();
    connected = n < 2 || matrix(2, 1) < threshold;
    return;
  }
  number_list from, to, value, ranks;
  makeMST(matrix, n, threshold, from, to, value, connected);
  longest_path_on_tree(n, from, to, ranks, path, n_path);
}

void class_MSTTourer::callMST_test() {
  constexpr std::int32_t n = 20;
  square_array<std::int32_t> matrix(n);
  for (std::int32_t i = 1; i <= n; ++i)
    for (std::int32_t j = 1; j <= n; ++j)
      matrix(i, j) = 10 * (i > j ? i - j : j - i);
  number_list path;
  std::int32_t n_path = 0;
  bool connected = false;
  callMST(matrix, n, path, n_path, 1000, connected);
  frame_->message(std::string("connected=") + (connected ? "True" : "False") + "\r\nnPath=" + std::to_string(n_path));
}

} // namespace orb
