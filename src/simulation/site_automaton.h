// Finds the cuts of all enzymes in one pass over the letters.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "simulation/class_Simul_CutEnzyme.h"

namespace orb {

// The sites as one automaton (Aho and Corasick 1975): each letter is one look into a table, whatever the number of
// enzymes. Finds what partial matches kept for each enzyme find: every site that occurs, those that overlap too.
class site_automaton {
public:
  // Sites are made of letters 1 to 4; an enzyme whose site has others, or none, never cuts.
  site_automaton(const std::vector<enzyme_rec> &enzymes, bool with_breaks);

  // The start of a sequence: entry 0 goes into `cuts`.
  void begin(cut_list &cuts);
  // Goes on with letters 0 to 4. Equal positions are in the order of the enzymes, breaks behind them.
  void feed(std::span<const std::uint8_t> letters, cut_list &cuts);
  // The end of the sequence: the last entry.
  void finish(cut_list &cuts) const;
  std::int32_t letters_so_far() const { return position_; }

private:
  struct cut_of_state {
    std::int32_t enzyme, letters_behind_cut;
  };
  void add_site(const enzyme_rec &enzyme, std::int32_t number);
  void link_states();
  void add_break(cut_list &cuts, std::int32_t position);
  static void add_in_order(cut_list &cuts, std::int32_t position, std::int32_t enzyme);

  static constexpr std::int32_t none = -1;
  std::vector<std::int32_t> next_;                 // [4 * state + letter - 1]: 4 * the next state
  std::vector<std::vector<cut_of_state>> cuts_of_; // by state
  std::vector<std::uint8_t> has_cuts_;             // by state
  bool with_breaks_ = false;
  std::int32_t state_ = 0; // times 4
  std::int32_t position_ = 0;
  std::int32_t last_break_ = -2; // its letter, from 0
};

} // namespace orb
