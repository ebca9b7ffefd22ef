// The tiling path of a laid contig: fewest clones from end to end, each step over an overlap that fits the layout.
#pragma once

#include <functional>
#include <span>
#include <vector>

#include "contigs/band_columns.h"

namespace orb {

// Columns that each clone of a laid contig shows, by which steps are judged: a column is a band at a place, and so
// tells far more than a band that two clones have in common anywhere.
class shown_columns {
public:
  void add(std::span<const std::int32_t> columns) { // of the next clone, ascending
    all_.insert(all_.end(), columns.begin(), columns.end());
    first_.push_back(all_.size());
  }
  std::span<const std::int32_t> of(std::size_t at) const {
    return {all_.data() + first_[at], first_[at + 1] - first_[at]};
  }
  std::int32_t common(std::size_t a, std::size_t b) const;

private:
  std::vector<std::size_t> first_{0};
  std::vector<std::int32_t> all_;
};

struct path_step_rule {
  const band_scale &scale;
  // Whether v may follow u when they share so many columns, and what the step costs.
  bool may_follow(const laid_clone &u, const laid_clone &v, std::int32_t common, double &cost) const;
  bool are_in_order(const laid_clone &u, const laid_clone &v) const;
};

// Columns that the clones at two places of `laid` share.
using common_columns = std::function<std::int32_t(std::size_t, std::size_t)>;

// `laid` ascending by left end; `is_usable` by place. Several paths where no step leads on: together they cover what
// can be covered.
std::vector<std::vector<clone_number>> tiling_paths(const path_step_rule &rule, std::span<const laid_clone> laid,
                                                    std::span<const char> is_usable, const common_columns &common);

} // namespace orb
