#include "clustering/class_tree.h"

#include <algorithm>

#include "frame/numbers.h"

namespace orb {

namespace fs = std::filesystem;

void class_tree::inicializate_tree(std::int32_t n_atoms, const std::vector<std::string> &names,
                                   std::int32_t max_leafs) {
  constexpr std::int32_t most_reserved = 1 << 22;
  n_atoms_ = n_atoms;
  leafs_.clear();
  leafs_.reserve(static_cast<std::size_t>(std::clamp(max_leafs, n_atoms + 1, std::max(most_reserved, n_atoms + 1))));
  tree_leaf &root = leafs_.emplace_back();
  root.number_of_atoms = n_atoms;
  atoms_.clear();
  for (std::int32_t atom = 1; atom <= n_atoms; ++atom) {
    leafs_.push_back({0, names[static_cast<std::size_t>(atom)], 0, 1, 1, 0, 0});
    atoms_.push_back(atom);
  }
  first_.assign(leafs_.size(), 0);
}

void class_tree::atom_in_leaf_get(std::int32_t atom, std::int32_t leaf, std::int32_t &depth, bool &yes) const {
  depth = 0;
  std::int32_t above = at(atom).adres_of_root;
  if (leaf < 1) {
    yes = above < 1;
    return;
  }
  for (depth = 1; above > 0 && above != leaf; ++depth)
    above = at(above).adres_of_root;
  yes = above == leaf;
}

std::span<const std::int32_t> class_tree::atoms_of(std::int32_t leaf) const {
  return std::span(atoms_).subspan(first_[static_cast<std::size_t>(leaf)],
                                   static_cast<std::size_t>(at(leaf).number_of_atoms));
}

void class_tree::make_list_of_atoms(std::int32_t leaf, number_list &list) const {
  if (leaf >= 1 && leaf <= n_atoms_) {
    list = number_list{leaf};
    return;
  }
  list = number_list(atoms_of(leaf));
  std::sort(list.members().begin(), list.members().end());
}

void class_tree::make_list_of_sub_leaf(std::int32_t leaf, number_list &list) const {
  list.clear();
  for (std::int32_t other = n_atoms_ + 1; other <= current_number_of_leafs_get(); ++other)
    if (at(other).adres_of_root == leaf)
      list.add(other);
}

void class_tree::print_atoms_of_leaf_into_file(result_file &file, std::int32_t leaf) const {
  number_list list;
  make_list_of_atoms(leaf, list);
  for (const std::int32_t atom : list.members())
    file.line(at(atom).name);
}

void class_tree::clustering_of_leaf(std::int32_t leaf, const class_net &net, double cutoff) {
  number_list list, component;
  make_list_of_atoms(leaf, list);
  class_net part;
  net.create_sub_net(list, list.count(), true, nullptr, part, workspace_);
  std::int32_t k = 0;
  part.clustering_based_on_net(component, k);
  const std::int32_t n_before = current_number_of_leafs_get();
  const std::string start = leaf == 0 ? "" : at(leaf).name + "_";
  for (std::int32_t c = 1; c <= k; ++c)
    leafs_.push_back({leaf, start + std::to_string(c), 0, 0, at(leaf).h_for_zero + 1, 0, cutoff});
  at(leaf).number_of_sub_leafs = k;
  for (std::int32_t i = 1; i <= list.count(); ++i) {
    tree_leaf &atom = at(list(i));
    if (atom.adres_of_root != leaf)
      frame_->alarm("problem! atom_" + std::to_string(list(i)) + " in leaf " + std::to_string(atom.adres_of_root) +
                    ", not in leaf " + std::to_string(leaf));
    atom.adres_of_root = n_before + component(i);
    ++atom.h_for_zero;
    tree_leaf &child = at(atom.adres_of_root);
    child.number_of_sub_leafs = ++child.number_of_atoms;
  }
  std::size_t next = first_[static_cast<std::size_t>(leaf)];
  for (std::int32_t c = 1; c <= k; ++c) {
    first_.push_back(next);
    next += static_cast<std::size_t>(at(n_before + c).number_of_atoms);
  }
  std::vector<std::size_t> place(first_.end() - k, first_.end());
  for (std::int32_t i = 1; i <= list.count(); ++i)
    atoms_[place[static_cast<std::size_t>(component(i)) - 1]++] = list(i);
}

static std::string line_of_statistics(const class_tree &tree, std::int32_t h_interest, std::int16_t index_interest,
                                      std::int32_t min_rs, std::int32_t max_rs, const tree_statistics &found) {
  std::string line = "Tree statistics: n_leafs_total=" + std::to_string(tree.current_number_of_leafs_get()) +
                     (h_interest >= 0 ? ", h_interest=" + std::to_string(h_interest)
                                      : ", index_itirest=" + std::to_string(index_interest)) +
                     ", min_rs=" + std::to_string(min_rs) + ", max_rs=" + std::to_string(max_rs) +
                     ", heap=" + std::to_string(found.heap) + ", N_in_rs=" + std::to_string(found.N_in_rs);
  if (found.N_in_rs > 0)
    line += ", min=" + std::to_string(found.min) + ", max=" + std::to_string(found.max) +
            ", k=" + std::to_string(found.in_range.size()) + ", mean=" + number_text(found.mean, 1);
  line += ", k_large=" + std::to_string(found.too_large.size());
  for (const std::int32_t leaf : found.too_large)
    line += ", N_" + std::to_string(leaf) + "=" + std::to_string(tree.leaf_number_of_atoms_get(leaf));
  return line;
}

tree_statistics class_tree::statistics_of_tree(std::int32_t h_interest, std::int16_t index_interest,
                                               std::int32_t min_rs, std::int32_t max_rs) const {
  tree_statistics found;
  for (std::int32_t leaf = 0; leaf <= current_number_of_leafs_get(); ++leaf) {
    const bool is_atom = leaf >= 1 && leaf <= n_atoms_; // which only says where it stands
    if (is_atom || (h_interest >= 0 ? at(leaf).h_for_zero != h_interest : at(leaf).index != index_interest))
      continue;
    const std::int32_t n = at(leaf).number_of_atoms;
    if (n < min_rs) {
      found.heap += n;
    } else if (n > max_rs) {
      found.too_large.push_back(leaf);
    } else {
      found.min = found.in_range.empty() ? n : std::min(found.min, n);
      found.max = std::max(found.max, n);
      found.N_in_rs += n;
      found.in_range.push_back(leaf);
    }
  }
  if (!found.in_range.empty())
    found.mean = static_cast<double>(found.N_in_rs) / static_cast<double>(found.in_range.size());
  found.line = line_of_statistics(*this, h_interest, index_interest, min_rs, max_rs, found);
  return found;
}

tree_statistics class_tree::run_statistics_of_tree(std::int32_t h_interest, std::int16_t index_interest,
                                                   std::int32_t min_rs, std::int32_t max_rs) const {
  tree_statistics found = statistics_of_tree(h_interest, index_interest, min_rs, max_rs);
  frame_->message(found.line);
  return found;
}

bool class_tree::adaptive_clustering(const std::vector<fs::path> &files, const std::vector<double> &cutoffs,
                                     std::int32_t n, std::int32_t min_rs, std::int32_t max_rs) {
  growing_file report(files[0]);
  std::vector<std::int32_t> work{0};
  for (std::int32_t step = 1; step <= n; ++step) {
    frame_->step_text_set("Net " + std::to_string(step) + " of " + std::to_string(n));
    class_net net;
    bool ok = false;
    net.read_net_type(*frame_, files[static_cast<std::size_t>(step)], ok, -1);
    if (!ok || net.number_of_vertices_get() != n_atoms_)
      return ok ? frame_->refuse("The net " + files[static_cast<std::size_t>(step)].string() + " has " +
                                 std::to_string(net.number_of_vertices_get()) + " vertices, and the tree " +
                                 std::to_string(n_atoms_) + " atoms.")
                : false;
    for (const std::int32_t leaf : work) {
      clustering_of_leaf(leaf, net, cutoffs[static_cast<std::size_t>(step)]);
      if (!frame_->goes_on())
        return false;
    }
    const tree_statistics found = run_statistics_of_tree(step, 0, min_rs, max_rs);
    report.line(found.line);
    work = found.too_large;
  }
  return true;
}

} // namespace orb
