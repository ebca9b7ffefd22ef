// Nets for lists, elongation, edges between selected nodes, filling of clusters: the dialog and what its OK does.
#include "frame/numbers.h"
#include "viewer/net_view.h"

namespace orb {

namespace {

// Without a dialog of a window the frame asks for the fields that are shown, one by one.
void ask_for_fields(process_frame &frame, form_netElng &form) {
  if (form.cutoff_is_shown) {
    const std::string cutoff = frame.input({form_netElng::l_Cutoff, form.title, form.t_Cutoff});
    if (!cutoff.empty())
      form.t_Cutoff = cutoff;
    question use_net;
    use_net.text = std::string(form_netElng::ch_useNet_caption) + "?";
    use_net.title = form.title;
    use_net.by_default = use_net.to_go_on = form.ch_useNet ? answer::yes : answer::no;
    if (form.ch_useNet_is_enabled)
      form.ch_useNet = frame.yes(use_net);
  }
  if (form.rank_is_shown) {
    frame.note(form.l_ranks);
    const std::string rank = frame.input({form_netElng::l_rank, form.title, form.t_rank});
    if (!rank.empty())
      form.t_rank = rank;
  }
}

// What a step gives in place of the dialog: CUTOFF, "net" or "bands", RANK, with commas between them.
void fill_fields(const std::string &value, form_netElng &form) {
  const std::size_t first = value.find(','), second = first == std::string::npos ? first : value.find(',', first + 1);
  form.t_Cutoff = value.substr(0, first);
  if (first != std::string::npos && form.ch_useNet_is_enabled)
    form.ch_useNet = value.substr(first + 1, second == std::string::npos ? second : second - first - 1) == "net";
  if (second != std::string::npos && form.rank_is_shown)
    form.t_rank = value.substr(second + 1);
}

std::string text_of_fields(const form_netElng &form) {
  return number_text_shortest(form.cutoff) + (form.use_net ? ",net" : ",bands") +
         (form.rank_is_shown ? "," + std::to_string(form.rank) : "");
}

} // namespace

bool net_view::elongation_form_ok(form_netElng &form, const std::string &value) {
  bool taken = false;
  if (value == "cancel") {
    // the dialog was closed when something was done already
  } else if (!value.empty()) {
    fill_fields(value, form);
    taken = form.ok(sources_.frame);
  } else {
    taken = ask_elongation_form(form);
  }
  if (taken)
    step_value_set(text_of_fields(form));
  else
    step_is_void();
  return taken;
}

bool net_view::ask_elongation_form(form_netElng &form) {
  if (window_.elongation_dialog)
    return window_.elongation_dialog(form);
  ask_for_fields(sources_.frame, form);
  return form.ok(sources_.frame);
}

void net_view::make_net(elongation_mode mode, const std::string &value) {
  if (mode == elongation_mode::net_from_list && panels_.TextSelVertices.empty()) {
    sources_.frame.message("TextSelVertices is empty!");
    return;
  }
  const std::string names = panels_.TextSelVertices;
  form_netElng form;
  form.start(sources_, mode);
  if (!elongation_form_ok(form, value))
    return;
  class_net_elng made;
  bool ok = false;
  if (mode == elongation_mode::net_from_list)
    made.make_net_for_clones_from_text(sources_, names, form.cutoff, form.use_net, ok);
  else
    made.read_list_of_clones_and_make_net(sources_, form.cutoff, form.use_net, ok);
  if (made.n_vertices_get() == 0)
    return;
  history_.reset();
  open() = std::move(made);
  open().make_cluster_info(sources_);
  reset_for(net().net_name_get());
  tell("Net with " + std::to_string(net().n_vertices_get()) + " nodes were created.");
  run_optimization();
  history_.begin_here();
  history_.content_is_new(); // nothing was saved yet
}

void net_view::add_edges(bool redo, const std::string &value) {
  if (!needs_selection())
    return;
  history_.store_pending();
  if (redo) {
    history_.store_net_snapshot();
    open().DeleteEdgesBetweenSelectedNodes();
  }
  if (net().n_vertices_get() < 2 || net().Get_nOfSelectedNodes() < 2)
    return;
  form_netElng form;
  form.start(sources_, elongation_mode::add_connections);
  bool ok = false;
  std::int32_t n_added = 0;
  if (elongation_form_ok(form, value))
    open().add_edges_between_selected_clones(sources_, form.cutoff, form.use_net, ok, n_added);
  else {
    step_counts_ = true; // what was pending is stored all the same, and with Redo the edges are gone
    step_value_set("cancel");
    if (redo)
      history_.change_is_pending_set();
  }
  if (n_added > 0)
    snapshot();
  else
    redraw_after_change();
}

void net_view::elongate(const std::string &value) {
  if (!needs_selection())
    return;
  form_netElng form;
  form.start(sources_, elongation_mode::elongate_first);
  if (!elongation_form_ok(form, value))
    return;
  elongation_candidates candidates;
  std::int32_t n_small_ranks = 0, n_added = 0;
  std::string text;
  if (!net().text_rank(sources_, form.cutoff, form.use_net, candidates, n_small_ranks, text))
    return;
  form.start(sources_, elongation_mode::elongate_second, text, n_small_ranks);
  if (!elongation_form_ok(form, value))
    return;
  history_.store_pending();
  open().elongate(sources_, form.cutoff, form.use_net, form.rank, candidates, n_added);
  tell(n_added == 0   ? "No clones to add."
       : n_added == 1 ? "1 clone added."
                      : std::to_string(n_added) + " clones added.");
  if (n_added > 0)
    run_optimization();
}

void net_view::fill_clusters(const std::string &value) {
  if (!needs_selection())
    return;
  form_netElng form;
  form.start(sources_, elongation_mode::fill_clusters);
  if (!elongation_form_ok(form, value))
    return;
  history_.store_pending();
  std::int32_t n_added = 0;
  open().fill_clusters(sources_, form.cutoff, form.use_net, n_added);
  if (n_added > 0)
    run_optimization();
}

} // namespace orb
