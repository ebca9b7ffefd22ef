// The whole revision of a net for a ladder of cutoffs: at each cutoff the net without weaker overlaps, the same without
// Q-overlaps and Q-clones, and the latter without what was found to be Q at any lower cutoff.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "graph/class_net.h"
#include "net/class_clone_net_signif.h"

namespace orb {

// What the dialogs ask; a value that is not set is asked for, one that the dialog would refuse leaves the default.
struct cutoff_ladder_options {
  std::optional<double> N_cutoff_steps;    // steps above the first cutoff: above 0, at most 32767
  std::optional<double> minimal_cutoff;    // on the scale of the net's values: not negative
  std::optional<double> cutoff_step;       // not negative
  std::int32_t max_rank = 0;               // steps around a clone or an overlap, 1..50; else asked for
  std::optional<double> additional_cutoff; // walks of the Q-clones use overlaps from there on only
};

class class_clone_net_clust {
public:
  // Sets the ladder and forgets former nets.
  void start(process_frame &frame, const cutoff_ladder_options &options);
  // Fills the ladder from a net and saves each net in the working folder, in the native form. False after a stop
  // request: nets and files of the steps done remain. Memory: three nets a step.
  bool create_nets(const class_net &net, class_clone_net_signif &signif, std::int32_t max_rank,
                   std::optional<double> additional_cutoff = {});

  std::int16_t number_of_cutoff_steps_get() const { return N_cutoff_steps_; }
  double minimal_cutoff_get() const { return minimal_cutoff_; }
  double cutoff_step_get() const { return cutoff_step_; }
  double current_minimal_value_get(std::int32_t i) const { return i * cutoff_step_ + minimal_cutoff_; }
  // i from 0 to the number of steps. kind 1: the net at the cutoff; 2: without Qs; 3: without Qs of this and all lower
  // cutoffs. False, and `net` as it was, for another place or kind.
  bool one_of_net_get(std::int32_t i, std::int32_t kind, class_net &net) const;
  const std::vector<std::filesystem::path> &files_written() const { return files_written_; }

private:
  bool remove_Qs(class_clone_net_signif &signif, const class_net &net, std::int32_t max_rank,
                 class_net &without_Q_overlaps, class_net &without_Qs) const;
  bool fill_step(const class_net &net, class_clone_net_signif &signif, std::int32_t max_rank, std::int32_t i);
  void comulate(const class_net &net, std::int32_t i);
  void save(process_frame &frame, const class_net &net, const std::string &name, std::int32_t i);

  std::int16_t N_cutoff_steps_ = 4;
  double minimal_cutoff_ = 22.0;
  double cutoff_step_ = 3.0;
  std::optional<double> additional_cutoff_;
  std::vector<class_net> net_type_, net_noQQ_, net_noQQ_comul_; // 0..N_cutoff_steps
  std::vector<std::filesystem::path> files_written_;
};

// The command: start and create_nets on the current net, which stays as it is.
bool create_all_nets_run(class_clone_net_signif &signif, const cutoff_ladder_options &options,
                         class_clone_net_clust &ladder);

} // namespace orb
