// Where enzymes cut a sequence, and the tables of bands between the cuts.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace orb {

// The cuts of one sequence. Entry 0 stands for its start and the last entry for its end: position 0 and length, with
// enzyme 1 where an end counts as the end of a band, else 0. The cuts between them ascend by position.
// A position is the number of letters before the cut. Enzymes are numbered from 1; below 1 stand the breaks:
//   0   before a letter that is none of A, C, G, T, or before the first of a run of them
//  -1   before the last letter of such a run: the breaks between would only hold parts of one letter
struct cut_list {
  std::vector<std::int32_t> position;
  std::vector<std::int8_t> enzyme;

  std::int32_t n_cuts() const { return static_cast<std::int32_t>(position.size()) - 1; } // entries behind the first
  void clear() {
    position.clear();
    enzyme.clear();
  }
  void add(std::int32_t at, std::int32_t by) {
    position.push_back(at);
    enzyme.push_back(static_cast<std::int8_t>(by));
  }
  // Between entries i - 1 and i lies nothing but letters of a run of unknown ones.
  bool is_inside_of_run(std::size_t i) const { return enzyme[i] < 0; }
  friend bool operator==(const cut_list &, const cut_list &) = default;
};

// A record of a sequence file.
struct digested_chromosome {
  std::string name;
  cut_list cuts;
  std::int32_t length() const { return cuts.position.empty() ? 0 : cuts.position.back(); }
};

// Letters in the parts between cuts, by what became of them.
struct band_length_sums {
  std::int64_t too_long = 0; // parts longer than the table
  std::int64_t broken = 0;   // parts that a break ends
  std::int64_t both_ends_1 = 0, different_ends = 0, same_other_ends = 0;
  friend bool operator==(const band_length_sums &, const band_length_sums &) = default;
};

// How many bands have which length and which enzymes at their ends. Lengths 0 to max_length, enzymes 1 to n_enzymes.
struct band_table {
  std::int32_t max_length = 0, n_enzymes = 0;
  std::vector<std::int32_t> band_presented_times; // [length][enzyme]
  std::vector<std::int32_t> both_ends;            // [length][right enzyme][left enzyme]; empty when it isn't wanted
  band_length_sums sums;

  void start(std::int32_t longest, std::int32_t enzymes, bool with_both_ends) {
    max_length = longest;
    n_enzymes = enzymes;
    const auto cells = (static_cast<std::size_t>(longest) + 1) * (static_cast<std::size_t>(enzymes) + 1);
    band_presented_times.assign(cells, 0);
    both_ends.assign(with_both_ends ? cells * (static_cast<std::size_t>(enzymes) + 1) : 0, 0);
    sums = {};
  }
  std::size_t cell(std::int32_t length, std::int32_t enzyme) const {
    return static_cast<std::size_t>(length) * (static_cast<std::size_t>(n_enzymes) + 1) +
           static_cast<std::size_t>(enzyme);
  }
  std::int32_t &times(std::int32_t length, std::int32_t enzyme) { return band_presented_times[cell(length, enzyme)]; }
  std::int32_t times(std::int32_t length, std::int32_t enzyme) const {
    return band_presented_times[cell(length, enzyme)];
  }
  std::size_t pair_cell(std::int32_t length, std::int32_t right, std::int32_t left) const {
    return cell(length, right) * (static_cast<std::size_t>(n_enzymes) + 1) + static_cast<std::size_t>(left);
  }
};

// Parts between cuts: how many there are, are too long for a band, and are seen as bands.
struct band_counts {
  std::int32_t more_0 = 0;     // of at least one letter
  std::int32_t too_long = 0;   // above the longest band of the tables
  std::int32_t ok_colored = 0; // of observable length, a label at one end and the other end there
  band_counts &operator+=(const band_counts &other) {
    more_0 += other.more_0;
    too_long += other.too_long;
    ok_colored += other.ok_colored;
    return *this;
  }
  friend bool operator==(const band_counts &, const band_counts &) = default;
};

// What a reading of bands adds up.
struct band_reading_sums {
  double observed_length = 0; // base pairs, of the bands inside the window, before close ones merge
  std::int64_t n_observed = 0;
  double lost_length = 0; // of bands lost, outside the window, or merged into others
  band_reading_sums &operator+=(const band_reading_sums &other) {
    observed_length += other.observed_length;
    n_observed += other.n_observed;
    lost_length += other.lost_length;
    return *this;
  }
};

} // namespace orb
