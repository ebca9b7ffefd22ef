#include "simulation/site_automaton.h"

#include <algorithm>

namespace orb {

site_automaton::site_automaton(const std::vector<enzyme_rec> &enzymes, bool with_breaks)
    : next_(4, none), cuts_of_(1), with_breaks_(with_breaks) {
  for (std::size_t e = 1; e < enzymes.size(); ++e)
    add_site(enzymes[e], static_cast<std::int32_t>(e));
  link_states();
}

void site_automaton::add_site(const enzyme_rec &enzyme, std::int32_t number) {
  const auto letters = std::span(enzyme.letter_index).subspan(1);
  if (letters.empty() || std::find(letters.begin(), letters.end(), 0) != letters.end())
    return;
  std::size_t state = 0;
  for (const std::int16_t letter : letters) {
    const std::size_t place = 4 * state + static_cast<std::size_t>(letter) - 1;
    if (next_[place] == none) {
      next_[place] = static_cast<std::int32_t>(cuts_of_.size());
      cuts_of_.emplace_back();
      next_.insert(next_.end(), 4, none);
    }
    state = static_cast<std::size_t>(next_[place]);
  }
  cuts_of_[state].push_back({number, enzyme.site_length - enzyme.cut_after});
}

// Breadth first: a state without a step on a letter takes that of the longest state that is its end, whose cuts it has
// as well. Steps are then multiplied by 4, so that the inner loop only adds.
void site_automaton::link_states() {
  std::vector<std::size_t> ends(cuts_of_.size(), 0), queue;
  for (std::size_t letter = 0; letter < 4; ++letter) {
    std::int32_t &step = next_[letter];
    if (step == none)
      step = 0;
    else
      queue.push_back(static_cast<std::size_t>(step));
  }
  for (std::size_t i = 0; i < queue.size(); ++i) {
    const std::size_t state = queue[i];
    cuts_of_[state].insert(cuts_of_[state].end(), cuts_of_[ends[state]].begin(), cuts_of_[ends[state]].end());
    for (std::size_t letter = 0; letter < 4; ++letter) {
      std::int32_t &step = next_[4 * state + letter];
      const std::int32_t of_end = next_[4 * ends[state] + letter];
      if (step == none) {
        step = of_end;
      } else {
        ends[static_cast<std::size_t>(step)] = static_cast<std::size_t>(of_end);
        queue.push_back(static_cast<std::size_t>(step));
      }
    }
  }
  for (std::int32_t &step : next_)
    step *= 4;
  for (const auto &cuts : cuts_of_)
    has_cuts_.push_back(cuts.empty() ? 0 : 1);
}

void site_automaton::begin(cut_list &cuts) {
  state_ = position_ = 0;
  last_break_ = -2;
  cuts.clear();
  cuts.add(0, with_breaks_ ? 0 : 1);
}

void site_automaton::finish(cut_list &cuts) const {
  cuts.add(position_, with_breaks_ ? 0 : 1);
}

// A cut lies some letters before the end of its site, so that a few cuts found later belong before it.
void site_automaton::add_in_order(cut_list &cuts, std::int32_t position, std::int32_t enzyme) {
  cuts.add(position, enzyme);
  const auto is_behind = [&](std::size_t i) {
    return cuts.position[i] > position ||
           (cuts.position[i] == position && (cuts.enzyme[i] > enzyme || cuts.enzyme[i] <= 0));
  };
  for (std::size_t i = cuts.position.size() - 1; i > 1 && is_behind(i - 1); --i) {
    std::swap(cuts.position[i], cuts.position[i - 1]);
    std::swap(cuts.enzyme[i], cuts.enzyme[i - 1]);
  }
}

// A run of unknown letters holds two entries, however long it is.
void site_automaton::add_break(cut_list &cuts, std::int32_t position) {
  const bool goes_on = last_break_ == position - 1;
  last_break_ = position;
  if (goes_on && cuts.enzyme.back() < 0)
    cuts.position.back() = position;
  else
    cuts.add(position, goes_on ? -1 : 0);
}

void site_automaton::feed(std::span<const std::uint8_t> letters, cut_list &cuts) {
  const std::int32_t *const next = next_.data();
  const std::uint8_t *const has_cuts = has_cuts_.data();
  std::int32_t state = state_, position = position_;
  for (const std::uint8_t letter : letters) {
    if (letter == 0) {
      state = 0;
      if (with_breaks_)
        add_break(cuts, position);
      ++position;
      continue;
    }
    state = next[state + letter - 1];
    ++position;
    if (has_cuts[state / 4] != 0)
      for (const cut_of_state &cut : cuts_of_[static_cast<std::size_t>(state) / 4])
        add_in_order(cuts, position - cut.letters_behind_cut, cut.enzyme);
  }
  state_ = state;
  position_ = position;
}

} // namespace orb
