// The whole of adaptive clustering once more, slow and by the book: sets, maps and tables of the library's size. It
// gives the lines of the reports and files that a run has to write.
#pragma once

#include <map>
#include <set>

#include "support/contig_test_library.h"

namespace orb_test {

struct slow_parameters {
  int n_clones_max = 1200, minimal_cluster_size = 6, width_max = 1;
  double step = 3;
  int n_steps = 6;
};

class slow_assembly {
public:
  slow_assembly(const library_data &data, double cutoff, slow_parameters parameters)
      : data_(data), base_(cutoff), p_(parameters) {}
  void run();

  lines clusters, contigs, details, MTP, bridges;
  std::map<std::string, lines> files; // by path in the run folder
  int n_clones_alone = 0;

private:
  using clone_set = std::set<int>;
  using rank_map = std::map<int, int>; // clones reached only
  struct entry {
    std::vector<int> list;
    std::string name_long;
    int level;
    bool connected;
  };
  struct shape {
    std::vector<int> path, MTP, far;
    int diam = 0, width = -1;
  };

  const std::string &name(int c) const { return data_.names[static_cast<std::size_t>(c)]; }
  int n_bands(int c) const { return static_cast<int>(data_.bands[static_cast<std::size_t>(c)].size()); }
  bool joined(int a, int b, double cutoff) const { return a != b && common_bands(data_, a, b) >= cutoff; }
  double cutoff_of(int level) const { return base_ + std::min(level, p_.n_steps) * p_.step; }
  rank_map ranks(const std::vector<int> &list, double cutoff, clone_set from, int limit) const;
  int end_width(const std::vector<int> &list, double cutoff, int start) const;
  std::vector<int> diametric_path(const std::vector<int> &list, double cutoff) const;
  void lay_out(const std::vector<int> &list, double cutoff, const shape &s);
  void lay_path(const std::vector<int> &path);
  int common_with_pair(int c, int a, int b) const;
  shape analyse(const std::vector<int> &list, double cutoff);
  std::vector<std::vector<int>> parts(const std::vector<int> &list, double cutoff) const;
  bool test(std::size_t m, entry &e, std::vector<std::vector<int>> &of_parts);
  void write_contig(const std::string &folder, const std::string &cluster, const entry &e, const shape &s,
                    const std::vector<int> &far_at_base);
  lines names(const std::vector<int> &list) const;

  const library_data &data_;
  double base_;
  slow_parameters p_;
  std::map<int, int> left_, right_; // coordinates of the cluster in hand
};

} // namespace orb_test
