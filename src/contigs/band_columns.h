// The consensus band map of a stretch of clones: each column is a band of the genome, with the clones that show it, and
// the columns in their order are the axis of the contig.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <span>
#include <vector>

#include "metrics/two_merges.h"
#include "net/band_scale.h"

namespace orb {

struct laid_clone {
  clone_number clone = 0;
  double left = 0, right = 0;
};

struct band_column {
  double place = 0;        // on the axis of the clones
  double from = 0, to = 0; // the stretch that fits best: between ends of clones nothing tells where in it the band lies
  double value = 0;        // mean of its bands
  std::size_t first = 0;
  std::int32_t n_members = 0; // band_columns::members[first ..]
  std::int32_t group = 0;     // columns of bands of like size: one band of a clone may be a member of several
};

// Chances of a band: to stand in a clone that doesn't cover its column, and to be missing in one that does.
struct column_chances {
  double stray = 0.02, missing = 0.05;
};

class band_columns {
public:
  band_columns(const clone_bands &clones, const band_scale &scale) : clones_(clones), scale_(scale) {}

  // Columns of clones that lie as given, ascending by left end; places on the same axis.
  // `same_groups`: bands go together as in the call before, which had the same clones, if in another order.
  void make(std::span<const laid_clone> laid, const column_chances &chances, const std::atomic<bool> &stopped,
            bool same_groups = false);

  const std::vector<band_column> &columns() const { return columns_; } // ascending by place
  // Places in `laid`, ascending.
  std::span<const std::int32_t> members(const band_column &column) const {
    return {members_.data() + column.first, static_cast<std::size_t>(column.n_members)};
  }
  // Of each member, whether it shows more columns of the group than it has bands there: one band stands for several.
  std::span<const char> shares_a_band(const band_column &column) const {
    return {shares_.data() + column.first, static_cast<std::size_t>(column.n_members)};
  }
  // Whether each band of a clone (by its place in `laid`) stands in a column.
  std::span<const char> in_column(std::int32_t at) const {
    const auto i = static_cast<std::size_t>(at);
    return {in_column_.data() + first_band_[i], first_band_[i + 1] - first_band_[i]};
  }

private:
  enum class stance : std::uint8_t { other, wanting, explained }; // of a clone to a group; `other`: doesn't show it
  struct step {
    double at, change;
  };
  struct clone_end {
    double at;
    std::int32_t clone; // place in `laid`
    bool is_right;
  };
  void number_entries(std::span<const laid_clone> laid);
  void group_entries(std::span<const laid_clone> laid, const std::atomic<bool> &stopped);
  void join_entries(std::span<const laid_clone> laid, const std::atomic<bool> &stopped);
  std::int32_t root(std::int32_t entry);
  void unite(std::int32_t x, std::int32_t y);
  void join_clones(std::span<const laid_clone> laid, std::int32_t clone, std::int32_t other_1, std::int32_t other_2);
  void order_ends(std::span<const laid_clone> laid);
  void place_group(std::span<const laid_clone> laid, const column_chances &chances,
                   std::span<const std::int32_t> entries);
  std::int32_t take_stances(std::span<const laid_clone> laid, std::span<const std::int32_t> entries,
                            std::size_t without, double slack);
  void forget_stances(std::span<const std::int32_t> entries);
  void take_steps(std::span<const laid_clone> laid, const column_chances &chances, std::size_t leftmost, double high);
  bool best_place(const column_chances &chances, band_column &column);
  void keep_fits(std::span<const laid_clone> laid, std::span<const std::int32_t> entries);
  void note_shared_bands(std::size_t first_column, std::span<const std::int32_t> entries);
  // A number of an entry that doesn't depend on how the clones lie.
  std::size_t key_of(std::int32_t entry) const {
    const auto i = static_cast<std::size_t>(clone_of(entry));
    return key_of_first_[i] + (static_cast<std::size_t>(entry) - first_band_[i]);
  }
  std::int32_t clone_of(std::int32_t entry) const { return clone_of_entry_[static_cast<std::size_t>(entry)]; }

  const clone_bands &clones_;
  const band_scale &scale_;
  double longest_ = 0; // stretch of a clone
  std::vector<band_column> columns_;
  std::vector<std::int32_t> members_;
  std::vector<char> shares_;               // parallel to them
  std::vector<char> in_column_;            // by entry: bands of all clones on end
  std::vector<std::size_t> first_band_;    // by place in `laid`
  std::vector<std::size_t> key_of_first_;  // by place in `laid`
  std::vector<std::int32_t> group_of_key_; // of bands that may be one: the key of one of them
  std::vector<std::int32_t> clone_of_entry_, parent_, group_;
  std::vector<band_value> value_of_entry_;
  std::array<std::vector<common_pair>, 2> matched_; // of the two clones in hand
  std::vector<clone_end> ends_;                     // along the axis
  std::vector<std::size_t> ends_before_;            // by place in `laid`: ends further left than its left end
  std::vector<std::size_t> first_reaching_;         // by place in `laid`: the first that may reach its left end
  std::vector<step> steps_;                         // of the group in hand: n_steps_
  std::size_t n_steps_ = 0;
  std::vector<stance> stance_;          // by place in `laid`
  std::vector<std::int32_t> n_columns_; // by place in `laid`: of the group in hand
  std::vector<band_column> fits_;       // of the group in hand
};

// Three passes of columns and ends: afterwards `laid` lies on the axis of its columns, unit one column. Its clones
// stand in the order of which `columns`, those of the last pass, speak.
void lay_by_columns(const band_scale &scale, std::vector<laid_clone> &laid, band_columns &columns,
                    const std::atomic<bool> &stopped);

} // namespace orb
