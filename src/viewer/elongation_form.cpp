#include "viewer/elongation_form.h"

#include <algorithm>
#include <cmath>

#include "frame/numbers.h"

namespace orb {

namespace {

std::string title_of(elongation_mode mode) {
  switch (mode) {
  case elongation_mode::add_connections:
    return "Add connections";
  case elongation_mode::net_of_all:
    return "Create net";
  default:
    return "Add clones";
  }
}

// More decimals for a smaller cutoff.
std::string cutoff_text(double cutoff) {
  return number_text(cutoff, cutoff > 0.05 ? 2 : cutoff > 0.005 ? 3 : cutoff > 0.0005 ? 4 : 6);
}

} // namespace

void form_netElng::start(const net_sources &sources, elongation_mode wanted, const std::string &ranks_text,
                         std::int32_t proposed_rank) {
  mode = wanted;
  title = title_of(wanted);
  rank_is_shown = wanted == elongation_mode::elongate_second;
  cutoff_is_shown = !rank_is_shown;
  rank = proposed_rank;
  t_rank = std::to_string(proposed_rank);
  l_ranks = ranks_text;
  if (rank_is_shown)
    return;
  cutoff = sources.rule.cutoff;
  t_Cutoff = cutoff_text(cutoff);
  ch_useNet = ch_useNet_is_enabled = use_net = sources.net_is_loaded();
  cutoff_min_net = ch_useNet ? sources.signif.net().minimal_edge_value_get() : 0;
  l_CutoffNet = ch_useNet ? number_text(cutoff_min_net, 2) : "No";
  if (!ch_useNet)
    sources.frame.message("NB! No calculated net of significant overlaps will be used!");
}

bool form_netElng::ok(process_frame &frame) {
  const auto stays = [&frame](const char *text) {
    frame.message(text);
    return false;
  };
  double wanted_rank = 0, wanted_cutoff = 0;
  if (!number_parse(t_rank, wanted_rank))
    return stays("Rank should be numerical!");
  if (wanted_rank < 0)
    return stays("Rank should be positive!");
  if (!number_parse(t_Cutoff, wanted_cutoff) || !std::isfinite(wanted_cutoff))
    return stays("Cutoff should be numerical!");
  use_net = ch_useNet;
  if (use_net && wanted_cutoff < cutoff_min_net) {
    question liberal;
    liberal.title = "Use loaded net";
    liberal.text = "Cutoff value " + number_text(wanted_cutoff, 2) + " < " + number_text(cutoff_min_net, 2) +
                   " = Minimal value on net!\r\nAre you sure want to consider overlaps only from the loaded net?";
    liberal.explanation = "The loaded net holds no overlaps below its own cutoff. Yes goes on without them; no goes "
                          "back to the dialog.";
    if (!frame.yes(liberal))
      return false;
    cutoff_min_net = wanted_cutoff;
  }
  cutoff = wanted_cutoff;
  rank = static_cast<std::int32_t>(std::min(std::floor(wanted_rank), double{INT32_MAX}));
  if (mode == elongation_mode::elongate_second && rank > 1 && !use_net) {
    frame.message("No net, hence only rank=1 will be used!");
    rank = 1;
  }
  return true;
}

} // namespace orb
