// The files of a drawing: which thresholds, which names.
#include <algorithm>
#include <cmath>

#include "drawing/class_clone_net_draw.h"
#include "frame/files.h"

namespace orb {

namespace {

constexpr std::int32_t n_thresholds_of_series = 11;

// First threshold and step of the series of a metric; false when it has none.
bool thresholds_of_metric(std::int16_t index, double &first, double &step) {
  using metrics = class_clone_dist_general;
  const auto set = [&](double first_of_metric, double step_of_metric) {
    first = first_of_metric;
    step = step_of_metric;
    return true;
  };
  if (index == metrics::DISTANCE_INDEX_k2_frac_mn_get())
    return set(40, 20);
  if (index == metrics::DISTANCE_INDEX_Nof_get())
    return set(5, 5);
  if (index == metrics::DISTANCE_INDEX_Lnn_get() || index == metrics::DISTANCE_INDEX_LnnMarkers_get())
    return set(3, 3);
  if (index == metrics::DISTANCE_INDEX_Sulston_1988_get() || index == metrics::DISTANCE_INDEX_Soderlund_1997_get())
    return set(10, 4);
  return false;
}

std::string whole_part(double threshold) {
  return std::to_string(static_cast<std::int64_t>(std::floor(std::clamp(threshold, -1e15, 1e15))));
}

} // namespace

bool class_clone_net_draw::print_files_for_drawing_net(double burying_border, bool all_metrics, double cutoff,
                                                       bool print_values, drawing_kind kind,
                                                       const class_DB_of_clones &database) {
  using metrics = class_clone_dist_general;
  if (!all_metrics)
    return draw_one_metric(burying_border, -1, cutoff, options_.nets_for_cutoffs, kind, print_values, false, database);
  bool all_drawn = true;
  for (const std::int16_t distance : {metrics::DISTANCE_INDEX_Sulston_1988_get(), metrics::DISTANCE_INDEX_Nof_get(),
                                      metrics::DISTANCE_INDEX_Lnn_get(), metrics::DISTANCE_INDEX_LnnMarkers_get()})
    all_drawn =
        draw_one_metric(burying_border, distance, -1, options_.nets_for_cutoffs, kind, print_values, true, database) &&
        all_drawn;
  return all_drawn;
}

bool class_clone_net_draw::print_files_for_drawing_net_for_given_distance_index(double burying_border,
                                                                                std::int16_t distance, double cutoff,
                                                                                bool nets_for_cutoffs,
                                                                                drawing_kind kind, bool print_values,
                                                                                const class_DB_of_clones &database) {
  return draw_one_metric(burying_border, distance, cutoff, nets_for_cutoffs, kind, print_values, false, database);
}

bool class_clone_net_draw::draw_one_metric(double burying_border, std::int16_t distance, double cutoff,
                                           bool nets_for_cutoffs, drawing_kind kind, bool print_values,
                                           bool one_of_several, const class_DB_of_clones &database) {
  const metric_context &context = signif_->context();
  metric_ = class_clone_dist_my(context, &signif_->net());
  metric_.net_private_parameters_set_interface(rule_);
  metric_.pogloshenie_border_set(burying_border);
  if (distance >= 0 && distance != metric_.distance_index_get()) {
    metric_.distance_index_set(distance);
    metric_.same_metric_as_net_set(false); // the values of the net are those of another metric
  }
  series wanted;
  wanted.put_in_names = nets_for_cutoffs;
  wanted.metric_put_in_names = one_of_several;
  double first = cutoff < 0 ? metric_.limit_r_get() : cutoff, step = 0;
  if (nets_for_cutoffs && !thresholds_of_metric(metric_.distance_index_get(), first, step))
    return false;
  for (std::int32_t t = 0; t < (nets_for_cutoffs ? n_thresholds_of_series : 1); ++t)
    wanted.thresholds.push_back(first + t * step);
  metric_.limit_r_set(first); // what is below the lowest threshold neither shows an edge nor marks a burial
  if (!fill_drawing(burying_border, kind, database))
    return false;
  for (const double threshold : wanted.thresholds)
    if (!write_drawing(threshold, wanted))
      return false;
  if (print_values) {
    const std::string metric = class_clone_dist_general::name_of_cutoff_distance(metric_.distance_index_get());
    const std::filesystem::path table =
        folder_ / ("for_Net_control_" + metric + " " + name_in_file_name(caption_of_net_) + ".txt");
    net_draw_.print_all_edges_values(table);
    files_written_.push_back(table);
  }
  return true;
}

bool class_clone_net_draw::write_drawing(double threshold, const series &wanted) {
  if (options_.write_pajek) {
    const std::filesystem::path file = file_of_drawing(threshold, wanted, ".net");
    if (!net_draw_.print_net_pajek(file, threshold, caption_of_net_))
      return false;
    files_written_.push_back(file);
  }
  if (options_.write_graphml) {
    const std::filesystem::path file = file_of_drawing(threshold, wanted, ".graphml");
    details_.metric = class_clone_dist_general::name_of_cutoff_distance(metric_.distance_index_get());
    details_.cutoff = threshold;
    if (!print_net_graphml(net_draw_, file, threshold, caption_of_net_, details_))
      return false;
    files_written_.push_back(file);
  }
  return true;
}

std::filesystem::path class_clone_net_draw::file_of_drawing(double threshold, const series &wanted,
                                                            std::string_view extension) const {
  const std::string metric = class_clone_dist_general::name_of_cutoff_distance(metric_.distance_index_get());
  if (options_.file.empty())
    return folder_ / ("Net_control_" + name_in_file_name(caption_of_net_) + "_" + metric + "_" + whole_part(threshold) +
                      std::string(extension));
  // The named file itself when it is the only one; otherwise each form gets its own extension.
  const std::string own = options_.file.extension().string();
  const bool one_form = options_.write_pajek != options_.write_graphml;
  std::string name = options_.file.stem().string();
  if (wanted.metric_put_in_names)
    name += "_" + metric;
  if (wanted.put_in_names)
    name += "_" + whole_part(threshold);
  return options_.file.parent_path() / (name + (one_form && !own.empty() ? own : std::string(extension)));
}

} // namespace orb
