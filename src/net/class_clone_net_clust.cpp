#include "net/class_clone_net_clust.h"

#include <cmath>

#include "frame/class_serv_raznoe.h"
#include "frame/numbers.h"
#include "net/q_mark.h"

namespace orb {

namespace {

constexpr std::int16_t largest_rank = 50;
constexpr double most_steps = 32767;
constexpr const char *status = "Removing QQ :";

// The value given, or the reply of an input box; NaN for a reply that is no number.
double given_or_asked(process_frame &frame, const std::optional<double> &given, const std::string &prompt,
                      const std::string &by_default) {
  if (given)
    return *given;
  double value = std::nan("");
  number_from_text_silent(frame.input({prompt, "ORB", by_default}), value);
  return value;
}

} // namespace

void class_clone_net_clust::start(process_frame &frame, const cutoff_ladder_options &options) {
  *this = class_clone_net_clust();
  // Taken before it is cut to a whole number: 0.5 is above 0, but no step.
  const double steps = std::floor(
      given_or_asked(frame, options.N_cutoff_steps, "N_cutoff_steps", std::to_string(number_of_cutoff_steps_get())));
  if (steps >= 1 && steps <= most_steps)
    N_cutoff_steps_ = static_cast<std::int16_t>(steps);
  const double minimal =
      given_or_asked(frame, options.minimal_cutoff, "minimal_cutoff", number_text(minimal_cutoff_get(), 4));
  if (minimal >= 0 && std::isfinite(minimal))
    minimal_cutoff_ = minimal;
  const double step = given_or_asked(frame, options.cutoff_step, "cutoff_step", number_text(cutoff_step_get(), 4));
  if (step >= 0 && std::isfinite(step))
    cutoff_step_ = step;
  const auto n = static_cast<std::size_t>(N_cutoff_steps_) + 1;
  net_type_.resize(n);
  net_noQQ_.resize(n);
  net_noQQ_comul_.resize(n);
}

bool class_clone_net_clust::one_of_net_get(std::int32_t i, std::int32_t kind, class_net &net) const {
  if (i < 0 || static_cast<std::size_t>(i) >= net_type_.size() || kind < 1 || kind > 3)
    return false;
  const std::vector<class_net> &nets = kind == 1 ? net_type_ : kind == 2 ? net_noQQ_ : net_noQQ_comul_;
  net = nets[static_cast<std::size_t>(i)];
  return true;
}

// What is found to be Q is left out, first overlaps, then clones. False after a stop request.
bool class_clone_net_clust::remove_Qs(class_clone_net_signif &signif, const class_net &net, std::int32_t max_rank,
                                      class_net &without_Q_overlaps, class_net &without_Qs) const {
  process_frame &frame = signif.context().frame;
  class_net marked;
  std::int32_t n_Q = 0;
  signif.identify_all_Q_connections(net, max_rank, marked, q_mark, false, {}, n_Q);
  if (frame.stop_requested_get())
    return false;
  marked.create_sub_net_without_edges_index(q_mark, without_Q_overlaps);
  without_Q_overlaps.test_neighbours_sorted();
  signif.identify_all_Q_clones(without_Q_overlaps, max_rank, additional_cutoff_, marked, q_mark, false, {}, {}, n_Q);
  if (frame.stop_requested_get())
    return false;
  marked.create_sub_net_with_disconnected_vertices_index(q_mark, without_Qs);
  without_Qs.test_neighbours_sorted();
  return true;
}

void class_clone_net_clust::save(process_frame &frame, const class_net &net, const std::string &name, std::int32_t i) {
  const auto file =
      frame.path_in_working_folder("\\" + name + "_" + number_text(current_minimal_value_get(i), 2) + ".txt");
  if (net.save_net_type(frame, file))
    files_written_.push_back(file);
}

bool class_clone_net_clust::fill_step(const class_net &net, class_clone_net_signif &signif, std::int32_t max_rank,
                                      std::int32_t i) {
  process_frame &frame = signif.context().frame;
  const auto at = static_cast<std::size_t>(i);
  net.create_sub_net_without_edges_small_or_large_value(current_minimal_value_get(i), net_type_[at], true);
  net_type_[at].test_neighbours_sorted();
  save(frame, net_type_[at], "net_type", i);
  class_net without_Q_overlaps;
  if (!remove_Qs(signif, net_type_[at], max_rank, without_Q_overlaps, net_noQQ_[at]))
    return false;
  save(frame, without_Q_overlaps, "net_type_noQconnections", i);
  net_noQQ_comul_[at] = net_noQQ_[at];
  save(frame, net_noQQ_[at], "net_type_noQQ", i);
  frame.control_text_set(status + number_text(current_minimal_value_get(i), 2));
  return frame.goes_on();
}

// Leaves out of the i-th net what the one below it lacks.
void class_clone_net_clust::comulate(const class_net &net, std::int32_t i) {
  class_net &own = net_noQQ_comul_[static_cast<std::size_t>(i)];
  const class_net &lower = net_noQQ_comul_[static_cast<std::size_t>(i) - 1];
  const vertex_number n = net.number_of_vertices_get();
  class_net made;
  made.inicializate_net(n, own.number_of_edges_get());
  position_table in_lower;
  for (vertex_number v = 1; v <= n; ++v) {
    const bool is_Q = own.index_of_vertex_get(v) == q_mark || lower.index_of_vertex_get(v) == q_mark;
    const std::int16_t index = is_Q ? q_mark : net.index_of_vertex_get(v);
    made.add_vertex_fast(index);
    if (index == q_mark)
      continue;
    in_lower.start(n);
    for (const net_edge &edge : lower.edges_of_vertex(v))
      in_lower.set(edge.neighbour, 1);
    for (const net_edge &edge : own.edges_of_vertex(v))
      if (in_lower.has(edge.neighbour))
        made.add_edge_fast(v, edge.neighbour, edge.value, edge.index1, edge.index2);
  }
  made.finish_of_adding();
  made.test_neighbours_sorted();
  own = std::move(made);
}

bool class_clone_net_clust::create_nets(const class_net &net, class_clone_net_signif &signif, std::int32_t max_rank,
                                        std::optional<double> additional_cutoff) {
  process_frame &frame = signif.context().frame;
  additional_cutoff_ = additional_cutoff;
  if (max_rank < 1 || max_rank > largest_rank)
    max_rank = class_serv_raznoe::parameter_get_fromInputBox_Integer(frame, "max rank", "ORB", 1, 1, largest_rank);
  frame.control_text_set(status);
  const auto n = static_cast<std::int32_t>(net_type_.size());
  for (std::int32_t i = 0; i < n; ++i)
    if (!fill_step(net, signif, max_rank, i))
      return false;
  for (std::int32_t i = 1; i < n; ++i) {
    if (!frame.goes_on())
      return false;
    comulate(net, i);
    save(frame, net_noQQ_comul_[static_cast<std::size_t>(i)], "net_type_noQQ_comul", i);
  }
  frame.control_text_set(std::string(status) + "ok");
  return true;
}

bool create_all_nets_run(class_clone_net_signif &signif, const cutoff_ladder_options &options,
                         class_clone_net_clust &ladder) {
  process_frame &frame = signif.context().frame;
  ladder.start(frame, options);
  frame.process_start(status);
  if (!ladder.create_nets(signif.net(), signif, options.max_rank, options.additional_cutoff)) {
    frame.process_stopped_manually();
    return false;
  }
  frame.all_panels_reset();
  return true;
}

} // namespace orb
