// The dialog that asks for cutoff and rank before a net is made or grows: what it shows, and the rules of its OK.
#pragma once

#include <cstdint>
#include <string>

#include "viewer/net_sources.h"

namespace orb {

// Who opens the dialog, and what its OK leads to.
enum class elongation_mode : std::int16_t {
  net_from_file = 0,   // read_list_of_clones_and_make_net
  add_connections = 1, // add_edges_between_selected_clones
  fill_clusters = 2,
  elongate_first = 3,  // text_rank
  elongate_second = 4, // elongate; the cutoff of the first step stays
  net_from_list = 5,   // make_net_for_clones_from_text
  net_of_all = 6,
};

// Evidence from sequences would add a box "Based on sequences" with a cutoff of its own; there is none.
struct form_netElng {
  elongation_mode mode = elongation_mode::net_from_file;
  // What OK leaves.
  std::int32_t rank = 1;
  double cutoff = 0;
  bool use_net = false;
  double cutoff_min_net = 0; // of the loaded net; after a yes to a lower cutoff that one

  // What is shown; the user changes the texts and the box.
  std::string title;
  std::string t_Cutoff, t_rank = "1";
  std::string l_CutoffNet, l_ranks;
  bool ch_useNet = false, ch_useNet_is_enabled = false;
  bool rank_is_shown = false, cutoff_is_shown = true;
  static constexpr const char *l_Cutoff = "- Log_10 (Cutoff)  = ", *l_rank = "Rank =", *ch_useNet_caption = "Use net";

  // Opens: fields get their first values. `proposed_rank` and the text of the first step are for the second one, which
  // keeps cutoff and use of the net.
  void start(const net_sources &sources, elongation_mode wanted, const std::string &ranks_text = {},
             std::int32_t proposed_rank = 1);
  // False: a message or a question told why, and the dialog stays.
  bool ok(process_frame &frame);
};

} // namespace orb
