// Is a clone two? The bands of a chimera, a clone of parts from different places, are seen again by two sets of its
// neighbours that have nothing in common among these bands. Whether the neighbours overlap each other elsewhere isn't
// asked, so that other chimeras between the same two places can't hide it.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "metrics/two_merges.h"
#include "net/scored_net.h"

namespace orb {

// The best way to take a clone's neighbours apart.
struct clone_cut {
  static constexpr std::size_t most_cut = 3;
  // Places among the neighbours, ascending: those that tie the two sides together, and the sides.
  std::vector<std::int32_t> between, side_1, side_2;
  std::int32_t n_smaller() const { // members of the smaller side
    return static_cast<std::int32_t>(std::min(side_1.size(), side_2.size()));
  }
  bool exists() const { return !side_1.empty() && !side_2.empty(); }
};

// What one clone and its neighbours look like: which bands of the clone each neighbour shows again.
class clone_neighbourhood {
public:
  static constexpr std::int32_t fewest = 4, most = 500; // neighbours of a clone that can be tested

  // Neighbours by overlaps of score >= `scale.cutoff` that aren't `left_out` (by clone number).
  void make(const clone_bands &clones, const band_scale &scale, const scored_net &net, clone_number clone,
            std::span<const char> left_out);
  // Best poles, least cut between them. No cut when there is none of up to clone_cut::most_cut vertices that leaves
  // enough bands on both sides.
  void find_cut(clone_cut &best);

  std::span<const clone_number> neighbours() const { return neighbours_; }
  // For tests and reports.
  bool tied(std::int32_t u, std::int32_t v) const {
    return ties_[static_cast<std::size_t>(u) * neighbours_.size() + static_cast<std::size_t>(v)] != 0;
  }
  // Bands of the clone (places in its list) that two of these neighbours show, or one where there is one.
  std::vector<std::int32_t> bands_of_side(std::span<const std::int32_t> side) const;
  // Least vertex cut between two that aren't tied; -1 and nothing when it needs more than clone_cut::most_cut.
  std::int32_t least_cut(std::int32_t from, std::int32_t to, std::vector<std::int32_t> &cut);

private:
  static constexpr std::size_t words = 8; // of up to 512 bands
  using band_set = std::array<std::uint64_t, words>;
  void note_shown(std::span<const band_value> own, std::size_t u, std::span<const common_pair> common);
  void tie_neighbours();
  void choose_poles();
  bool augment(std::int32_t from, std::int32_t to);
  std::int32_t count_bands(std::span<const std::int32_t> side) const;
  void component(std::int32_t pole, std::span<const std::int32_t> cut, std::vector<std::int32_t> &members);

  std::int32_t n_bands_ = 0;
  double least_bands_ = 6; // of a pole and of a side
  std::vector<clone_number> neighbours_;
  std::array<std::vector<common_pair>, 2> common_; // of the two neighbours in hand
  std::vector<band_set> bands_;
  std::vector<std::int32_t> n_shown_; // bands of the clone in each neighbour
  std::vector<double> chance_;        // that a band is found in it by chance
  std::vector<char> ties_;            // square
  std::vector<std::vector<std::int32_t>> tied_to_;
  std::vector<std::int32_t> poles_;
  // of the search for augmenting walks: flow through each vertex, and where it comes from and goes to
  std::vector<std::int32_t> flow_from_, flow_to_, queue_, came_from_;
  std::vector<char> mark_;
};

struct clone_suspect {
  clone_number clone = 0;
  clone_number partner = 0; // of a pair that hides each other; 0: none
  // Clones, and the places of their bands in the clone's list.
  std::vector<clone_number> between, side_1, side_2;
  std::vector<std::int32_t> bands_1, bands_2;
};

// Clones of two places, ascending. Equal for any number of threads. Empty after `go_on` answered false.
std::vector<clone_suspect> find_suspects(const clone_bands &clones, const band_scale &scale, const scored_net &net,
                                         int threads, const std::function<bool(double)> &go_on);

// Of a library's suspects those in deep places, where a good clone hardly looks like two: by them chimeras are counted.
// (Of the good clones of human X one in 75 with 6 to 11 neighbours is a suspect, of those with 16 and more one in 700.)
struct telling_suspects {
  std::vector<clone_number> clones; // ascending
  double share = 1;                 // of all chimeras, that lie in such places
};
telling_suspects find_telling(const clone_bands &clones, const band_scale &scale, const scored_net &net,
                              std::span<const clone_suspect> suspects);

} // namespace orb
