// Giving the nodes of the open net their places: the first ones, the run loop of the springs, and unfolding.
#include <algorithm>

#include "frame/numbers.h"
#include "viewer/initial_position.h"
#include "viewer/net_layout.h"
#include "viewer/net_view.h"

namespace orb {

namespace {

// The view is idle again however the work ends, also where the program is to end.
class running_process {
public:
  explicit running_process(view_process &process) : process_(process) { process_ = view_process::running; }
  running_process(const running_process &) = delete;
  running_process &operator=(const running_process &) = delete;
  ~running_process() { process_ = view_process::idle; }

private:
  view_process &process_;
};

} // namespace

// The first places. True: steps follow; otherwise all is drawn.
bool net_view::place_first() {
  class_net_elng &net = open();
  for (node_elng &node : net.nodes_for_layout())
    node.vx = node.vy = 0;
  const layout_start start =
      initial_position_choose(sources_.frame, net.n_vertices_get(), net.unfrozen().count(), net.coor_are_known_get());
  switch (start) {
  case layout_start::nothing:
    return false;
  case layout_start::steps_of_defrosted: // the selection ends empty, as if the user had done it by the menu
    net.SelectAll();
    net.SelectedNodesCoorUnFroze();
    net.UnselectAll();
    return true;
  case layout_start::steps:
    if (net.n_vertices_get() == 1) {
      net.nodes_for_layout()[1].is_coor_known = true;
      net.coor_are_known_set(true);
      net.FrozeAllNodes();
      net.coorLimitsUpdate();
    }
    return true;
  case layout_start::circle:
    lay_out_on_circle(net);
    break;
  case layout_start::circle_by_clusters:
    lay_out_by_clusters(net, sources_.chance);
    break;
  case layout_start::growth:
    lay_out_by_growth(net, sources_.frame);
    break;
  }
  return false;
}

void net_view::run_optimization() {
  history_.store_pending();
  {
    const running_process runs(process_);
    if (place_first())
      steps_run();
  }
  geometry_.fit_at_zoom_1(window_.surface.size(), net().box());
  snapshot();
}

void net_view::steps_run() {
  constexpr std::int32_t steps_of_a_redraw = 10;
  spring_run springs(net(), threads_);
  for (std::int32_t i = 1; i <= most_steps_; ++i) {
    const spring_step step = springs.step(use_exp_, springs_, sources_.frame);
    tell("Steps = " + std::to_string(i) + " Energy = " + number_text(step.energy, 3));
    if (i % steps_of_a_redraw == 0) {
      springs.put_into(open());
      geometry_.fit_at_zoom_1(window_.surface.size(), net().box());
      picture_.moves = true;
      redraw_net();
      picture_.moves = false;
    }
    if (is_at_rest(i, step))
      break;
    if (!step.go_on || process_ == view_process::stop_asked || !sources_.frame.goes_on()) {
      if (step_in_hand_ > 0) // the same steps end here again
        steps_.insert(steps_.begin() + static_cast<std::ptrdiff_t>(step_in_hand_++) - 1,
                      "stop-after=" + std::to_string(i));
      break;
    }
  }
  most_steps_ = most_steps_of_a_run;
  springs.put_into(open());
}

void net_view::stop_after(std::int32_t steps) {
  most_steps_ = std::clamp(steps, 1, most_steps_of_a_run);
  note_step("stop-after=" + std::to_string(most_steps_));
}

// Not the simulation: all nodes get places by the distances along the edges.
void net_view::layout_multilevel() {
  history_.store_pending();
  const surface_size size = window_.surface.size();
  const double aspect = size.width > 0 && size.height > 0 ? size.width / size.height : 1;
  bool whole = false;
  {
    const running_process runs(process_);
    whole = lay_out_multilevel(open(), {aspect, sources_.chance.next(), threads_}, sources_.frame);
  }
  geometry_.fit_at_zoom_1(size, net().box());
  snapshot();
  tell(whole ? "The net is unfolded" : "Stopped: the net is unfolded in part");
}

void net_view::process_pressed() {
  if (process_ == view_process::running)
    process_ = view_process::stop_asked;
  else if (process_ == view_process::idle)
    run_optimization();
}

} // namespace orb
