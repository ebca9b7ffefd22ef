// The stages of a run on standard error: on a terminal one line that is written over while its stage runs, elsewhere a
// line for each stage that is done, and one a minute of a stage that lasts.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "frame/progress_estimate.h"

namespace orb {

class stage_line {
public:
  // Neither when `lines` is off; without `progress` only the last line of each stage.
  stage_line(bool lines, bool progress);

  // Stage i of n, both from 1.
  void begin(int i, int n, const std::string &name);
  // Done of total, in units that only this piece of work knows; a smaller total or less done begins another piece.
  void progress(std::int64_t done, std::int64_t total);
  // A counter beside it, "1000 clones (about 12.00%) loaded"; shown on a terminal only.
  void counter(const std::string &text);
  // The stage's last line: what it made and how long it took; nothing when no stage has begun.
  void end(const std::string &summary);
  // Takes the open line off the terminal, so that other text can follow.
  void clear();

private:
  using clock = std::chrono::steady_clock;
  void draw();
  std::string text_of_progress() const;

  bool lines_, progress_, terminal_;
  bool is_open_ = false; // a line stands on the terminal
  std::string label_, counter_;
  progress_estimate estimate_;
  clock::time_point stage_began_{}, drawn_{}, written_{};
};

// The columns of the terminal at standard error; 80 when it doesn't say.
int width_of_terminal();
// At most so many columns, cut between characters.
std::string clipped(const std::string &text, int columns);

} // namespace orb
