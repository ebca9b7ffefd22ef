// A linear order from a minimum spanning tree: the longest path on it (Prim 1957).
#pragma once

#include <cstdint>
#include <vector>

#include "frame/lists.h"
#include "frame/process_frame.h"
#include "ordering/square_array.h"

namespace orb {

class class_MSTTourer {
public:
  explicit class_MSTTourer(process_frame &frame) : frame_(&frame) {}

  // The longest path on a minimum spanning tree of vertices 1..n. `matrix`: 1-based, symmetric. `connected`: no edge of
  // the tree is at or above `threshold`.
  void callMST(const square_array<std::int32_t> &matrix, std::int32_t n, number_list &path, std::int32_t &n_path,
               std::int32_t threshold, bool &connected);
  // Edges of the tree in the order in which they are taken, from vertex 1. Edges at or above the threshold are never
  // looked at: what can't be reached hangs on vertex 1 by an edge of the value `threshold`. O(n^2).
  void makeMST(const square_array<std::int32_t> &matrix, std::int32_t n, std::int32_t threshold, number_list &from,
               number_list &to, number_list &value, bool &connected);
  // Ranks are steps from one end of the path. A vertex without edges ends the program.
  void longest_path_on_tree(std::int32_t n, const number_list &from, const number_list &to, number_list &ranks,
                            number_list &path, std::int32_t &n_path);
  // Neighbours of vertex v: adjacency.neighbours[first[v]] up to first[v + 1] - 1.
  struct tree_adjacency {
    std::vector<std::int32_t> first, neighbours;
  };
  // Steps from `start` by a breadth-first walk; reaching fewer than n vertices ends the program.
  void make_distRank_by_tree(std::int32_t start, std::int32_t n, const tree_adjacency &adjacency, number_list &ranks);
  // Self-test on a chain of 20 vertices; shows its result in a message box.
  void callMST_test();

private:
  process_frame *frame_;
};

} // namespace orb
