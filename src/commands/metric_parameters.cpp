#include "commands/metric_parameters.h"

#include "commands/row_steps.h"
#include "frame/numbers.h"
#include "metrics/class_clone_dist_general.h"

namespace orb {

void describe_metric(parameter_list &list, metric_parameters &p) {
  const char *group = "Overlaps";
  list.add("metric", p.metric, "name or index")
      .captioned("Metric")
      .unset(class_clone_dist_general::name_of_cutoff_distance(overlap_rule{}.distance_index))
      .in_group(group);
  list.add("cutoff", p.cutoff, "least score of an overlap")
      .limits(0, 1e300)
      .captioned("-Log_10 (Cutoff) = ")
      .unset("the metric's standard")
      .in_group(group);
  list.add("burying", p.burying, "burying fraction")
      .limits(0, 1)
      .captioned("Fraction of common bands resulting buring")
      .unset_is(overlap_rule::standard_burying)
      .in_group(group);
}

std::int16_t metric_index_of(const std::string &metric) {
  std::int16_t index = class_clone_dist_general::index_of_name(metric);
  std::int32_t number = -1;
  if (index < 0 && whole_number_parse(metric, number) && number >= 0 &&
      number <= class_clone_dist_general::number_distance_index_get())
    index = static_cast<std::int16_t>(number);
  if (index >= 0)
    return index;
  std::string names;
  for (std::int16_t i = 0; i <= class_clone_dist_general::number_distance_index_get(); ++i)
    names += (i ? ", " : "") + class_clone_dist_general::name_of_cutoff_distance(i);
  throw usage_error("--metric: no metric \"" + metric + "\"; known are " + names);
}

overlap_rule rule_of(const metric_parameters &p, const project_state &project, const parts_there &there) {
  const std::int16_t index = p.metric.empty() ? overlap_rule{}.distance_index : metric_index_of(p.metric);
  const std::string name = class_clone_dist_general::name_of_cutoff_distance(index);
  const bool will_be_loaded = there.has(project_part::pvalue_tables) && !project.has(project_part::pvalue_tables);
  const std::string useless = class_clone_dist_general::why_only_zero(
      index, will_be_loaded || tables_serve_metric(project, index), there.has(project_part::markers));
  if (!useless.empty())
    throw usage_error("--metric " + name + ": " + useless);
  const double standard = class_clone_dist_general::standard_cutoff(index);
  if (!p.cutoff && standard < 0)
    throw usage_error("--cutoff is required: the metric " + name + " has no standard one");
  return rule_of_metric(index, p.cutoff.value_or(standard), p.burying.value_or(overlap_rule::standard_burying));
}

void settle_use_of_net(project_state &project) {
  if (!project.has(project_part::net))
    return;
  using family = class_clone_dist_general;
  project_settings &settings = project.settings();
  const overlap_rule &rule = project.rule();
  const class_net &net = project.signif().net();
  const std::optional<overlap_rule> &made_by = project.rule_of_net();
  const bool is_same = !made_by || made_by->distance_index == rule.distance_index;
  if (!is_same && settings.same_metric_as_net)
    project.frame().note("The net was made with " + family::name_of_cutoff_distance(made_by->distance_index) +
                         "; its overlaps are scored again with " +
                         family::name_of_cutoff_distance(rule.distance_index) + ".");
  settings.same_metric_as_net = is_same;
  // A net that nobody recorded the making of begins a little above its cutoff.
  constexpr double usual_gap = 0.1;
  const double smallest = net.minimal_edge_value_get();
  if (is_same && rule.cutoff < (made_by ? made_by->cutoff : smallest - usual_gap))
    project.frame().alarm("NB! Selected cutoff level " + number_text(rule.cutoff, 4) + "<" + number_text(smallest, 4) +
                          " =Min(edge_value)\rin the loaded net of significant clone overlaps:\r" +
                          net.title_of_net_get());
}

} // namespace orb
