// Clusters refined down a ladder of nets with rising cutoffs: a tree whose leaves are the clusters of all steps, and
// whose atoms are the vertices of the nets.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "frame/files.h"
#include "frame/lists.h"
#include "frame/process_frame.h"
#include "graph/class_net.h"

namespace orb {

struct tree_leaf {
  std::int32_t adres_of_root = -1; // the parent leaf; -1: the root; of an atom: the leaf in which it stands now
  std::string name;
  std::int32_t number_of_sub_leafs = 0, number_of_atoms = 0;
  std::int32_t h_for_zero = 0; // depth below the root; of an atom one more than that of its leaf
  std::int16_t index = 0;
  double cutoff = 0; // at which the leaf arose
};

// What the leaves of one depth, or of one index, look like by their sizes.
struct tree_statistics {
  std::int32_t heap = 0;    // atoms in leaves that are too small
  std::int32_t N_in_rs = 0; // atoms in leaves of a good size
  std::int32_t min = 0, max = 0;
  double mean = 0;
  std::vector<std::int32_t> in_range, too_large; // leaves
  std::string line;                              // all of this in words
};

class class_tree {
public:
  static constexpr std::int32_t standard_min_rs = 6, standard_max_rs = 500; // a good size of a cluster

  explicit class_tree(process_frame &frame) : frame_(&frame) {}

  // Leaf 0 is the root, with all atoms; leaves 1..n are the atoms, with names(1..n). `max_leafs`: room that is
  // expected.
  void inicializate_tree(std::int32_t n_atoms, const std::vector<std::string> &names, std::int32_t max_leafs);
  std::int32_t n_atoms_get() const { return n_atoms_; }
  std::int32_t current_number_of_leafs_get() const { return static_cast<std::int32_t>(leafs_.size()) - 1; }
  std::int32_t leaf_adres_of_root_get(std::int32_t leaf) const { return at(leaf).adres_of_root; }
  double leaf_cutoff_get(std::int32_t leaf) const { return at(leaf).cutoff; }
  std::int32_t leaf_h_for_zero_get(std::int32_t leaf) const { return at(leaf).h_for_zero; }
  std::int32_t leaf_number_of_atoms_get(std::int32_t leaf) const { return at(leaf).number_of_atoms; }
  std::int32_t leaf_number_of_sub_leafs_get(std::int32_t leaf) const { return at(leaf).number_of_sub_leafs; }
  const std::string &leaf_name_get(std::int32_t leaf) const { return at(leaf).name; }
  std::int16_t leaf_index_get(std::int32_t leaf) const { return at(leaf).index; }

  // Climbs from the atom; `depth`: the steps to the leaf. A leaf below 1 holds the atoms that have no parent.
  void atom_in_leaf_get(std::int32_t atom, std::int32_t leaf, std::int32_t &depth, bool &yes) const;
  void make_list_of_atoms(std::int32_t leaf, number_list &list) const; // ascending
  void make_list_of_sub_leaf(std::int32_t leaf, number_list &list) const;
  // Names, one a line.
  void print_atoms_of_leaf_into_file(result_file &file, std::int32_t leaf) const;

  // The components of the net on the leaf's atoms become its sub-leaves, in the order of their smallest atoms.
  void clustering_of_leaf(std::int32_t leaf, const class_net &net, double cutoff);
  // Of leaves that aren't atoms: those of a depth; for a depth of -1 those of an index.
  tree_statistics statistics_of_tree(std::int32_t h_interest, std::int16_t index_interest, std::int32_t min_rs,
                                     std::int32_t max_rs) const;
  // The same, shown in a box.
  tree_statistics run_statistics_of_tree(std::int32_t h_interest, std::int16_t index_interest, std::int32_t min_rs,
                                         std::int32_t max_rs) const;
  // Walks a ladder: files(0) is the report that grows by a line a step, files(1..n) native nets with cutoffs(1..n).
  // Only leaves of more than `max_rs` atoms, the largest good size, are refined further. False after a stop request,
  // and when a net can't be read or has another number of vertices.
  bool adaptive_clustering(const std::vector<std::filesystem::path> &files, const std::vector<double> &cutoffs,
                           std::int32_t n, std::int32_t min_rs = standard_min_rs,
                           std::int32_t max_rs = standard_max_rs);

private:
  const tree_leaf &at(std::int32_t leaf) const { return leafs_[static_cast<std::size_t>(leaf)]; }
  tree_leaf &at(std::int32_t leaf) { return leafs_[static_cast<std::size_t>(leaf)]; }
  std::span<const std::int32_t> atoms_of(std::int32_t leaf) const;

  process_frame *frame_;
  std::int32_t n_atoms_ = 0;
  std::vector<tree_leaf> leafs_;
  // The atoms of every leaf stand next to each other here, those of its sub-leaves within its own.
  std::vector<std::int32_t> atoms_; // from 0
  std::vector<std::size_t> first_;  // by leaf: where its atoms begin; of no use for atoms
  net_workspace workspace_;
};

} // namespace orb
