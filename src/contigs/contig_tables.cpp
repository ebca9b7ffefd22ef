// Tables of one contig: pairs, consecutive clones, markers; and the verified order of its clones.
#include <algorithm>
#include <limits>
#include <unordered_map>

#include "contigs/class_contig_analysis.h"
#include "contigs/run_reports.h"
#include "database/class_markers.h"
#include "lists/class_list_of_clones.h"

namespace orb {

namespace {

// "name(position)", or the name alone.
std::string marker_text(const class_markers &markers, std::int32_t marker) {
  const std::string &position = markers.position_of_marker_get(marker);
  return markers.name_of_marker_get(marker) + (position.empty() ? "" : "(" + position + ")");
}

} // namespace

void class_contig_analysis::print_all_dist(pairs_of_table pairs, const std::filesystem::path &file) {
  const metric_context &context = signif_->context();
  class_list_of_clones(context.frame, context.settings)
      .print_all_dist(list_of_clones_, cluster_name_, report_path(file, "All_dist_"), context, &signif_->net(), pairs);
}

void class_contig_analysis::print_consecutive(const number_list &list, const std::string &start,
                                              const std::filesystem::path &file, bool print_to_file,
                                              std::vector<std::int32_t> &gaps) const {
  const metric_context &context = signif_->context();
  class_list_of_clones(context.frame, context.settings)
      .print_consecuent_dist(list.count(), list, cluster_name_, report_path(file, start), gaps, print_to_file, context);
}

void class_contig_analysis::print_consecuent_dist_MTP(bool print_to_file, const std::filesystem::path &file) {
  print_consecutive(list_of_clones_MTP_, "Consec_dist_MTP_", file, print_to_file, gaps_MTP_);
}

void class_contig_analysis::print_consecuent_dist_initial_list_of_clones(bool print_to_file,
                                                                         const std::filesystem::path &file) {
  print_consecutive(list_of_clones_, "Consec_dist_", file, print_to_file, gaps_initial_);
}

void class_contig_analysis::print_consecuent_dist_NoBuriedInit(bool print_to_file, const std::filesystem::path &file) {
  print_consecutive(list_NoBuriedInit_, "Consec_dist_NoBuriedInit_", file, print_to_file, gaps_NoBuriedInit_);
}

void class_contig_analysis::print_consecuent_dist_NoBuriedORB(bool print_to_file, const std::filesystem::path &file) {
  print_consecutive(list_NoBuriedORB_, "Consec_dist_NoBuriedORB_", file, print_to_file, gaps_NoBuriedORB_);
}

void class_contig_analysis::print_markers(const std::filesystem::path &file) {
  const metric_context &context = signif_->context();
  context.database.markers().print_marker_presence_for_list_of_clones(context.frame, context.database, list_of_clones_,
                                                                      list_of_clones_.count(),
                                                                      report_path(file, "clones_and_markers_"), "");
}

// The markers of the contig's clones; along the axis where it is known: by the last left end of a clone that bears
// them.
number_list class_contig_analysis::markers_by_coordinates() const {
  const class_markers &markers = signif_->context().database.markers();
  number_list found;
  markers.create_list_of_markers_for_list_of_clones(list_of_clones_, list_of_clones_.count(), found);
  if (!clone_coor_known_ || found.count() < 2)
    return found;
  std::vector<std::int32_t> key(static_cast<std::size_t>(markers.total_number_of_markers_get()) + 1,
                                std::numeric_limits<std::int32_t>::min());
  for (std::int32_t position = 1; position <= list_of_clones_.count(); ++position)
    for (const std::int32_t marker : markers.markers_of_clone(list_of_clones_(position))) {
      std::int32_t &largest = key[static_cast<std::size_t>(marker)];
      largest = std::max(largest, coor_left_[static_cast<std::size_t>(position)]);
    }
  const auto members = found.members();
  std::stable_sort(members.begin(), members.end(), [&key](std::int32_t a, std::int32_t b) {
    return key[static_cast<std::size_t>(a)] < key[static_cast<std::size_t>(b)];
  });
  return found;
}

// The fields of a row stand in another order than the head says, and its markers aren't padded into columns:
// deliberate, the readers of this table expect it so.
void class_contig_analysis::print_clones_indicateMTP_coordinates_and_markers(const std::filesystem::path &file) {
  const class_DB_of_clones &database = signif_->context().database;
  const class_markers &markers = database.markers();
  const number_list columns = markers_by_coordinates();
  std::vector<std::int32_t> column_of(static_cast<std::size_t>(markers.total_number_of_markers_get()) + 1, 0);
  result_file out(report_path(file, "clones_MTP_coor_and_markers_"));
  std::string text;
  markers.string_of_zones(list_of_clones_, text);
  out.line(text);
  text = "i\tclone\tMTP\tcoor_left\tcoor_right";
  for (std::int32_t c = 1; c <= columns.count(); ++c) {
    column_of[static_cast<std::size_t>(columns(c))] = c;
    (text += '\t') += marker_text(markers, columns(c));
  }
  out.line(text);
  std::unordered_map<clone_number, std::int32_t> place_in_MTP; // the first one of a clone that stands there twice
  for (std::int32_t i = 1; i <= list_of_clones_MTP_.count(); ++i)
    place_in_MTP.emplace(list_of_clones_MTP_(i), i);
  std::vector<std::int32_t> of_clone;
  for (std::int32_t position = 1; position <= list_of_clones_.count(); ++position) {
    const clone_number clone = list_of_clones_(position);
    const auto at = static_cast<std::size_t>(position);
    text = std::to_string(position) + '\t' + database.name_of_clone_get(clone) + '\t';
    text += clone_coor_known_ ? std::to_string(coor_left_[at]) + '\t' + std::to_string(coor_right_[at])
                              : std::string("Unknown\tUnknown");
    const auto place = place_in_MTP.find(clone);
    (text += '\t') += place != place_in_MTP.end() ? std::to_string(place->second) : "False";
    const auto bears = markers.markers_of_clone(clone);
    of_clone.assign(bears.begin(), bears.end());
    std::sort(of_clone.begin(), of_clone.end(), [&column_of](std::int32_t a, std::int32_t b) {
      return column_of[static_cast<std::size_t>(a)] < column_of[static_cast<std::size_t>(b)];
    });
    for (const std::int32_t marker : of_clone)
      (text += '\t') += marker_text(markers, marker);
    out.line(text);
  }
  out.commit();
}

ordering_task class_contig_analysis::detail_control_task(std::uint64_t number) const {
  ordering_task task;
  task.list = list_of_clones_;
  task.absorb = absorb_;
  task.name = cluster_file_name(cluster_name_);
  task.flag = true;
  task.folder = dir_name_to_output_ok_;
  task.number = number;
  task.cutoff = signif_->context().settings.cutoff;
  return task;
}

void class_contig_analysis::detail_control_done(const ordering_work &work) {
  order_ORB_ = class_clone_ord_and_verif::order_of(work);
  class_clone_ord_and_verif::create_list_of_clones_after_ordering(list_of_clones_, list_of_clones_.count(),
                                                                  work.clone_is_not_excluded, order_ORB_,
                                                                  list_NoBuriedInit_, list_NoBuriedORB_);
  order_init_ = number_list::range(1, list_NoBuriedInit_.count());
}

bool class_contig_analysis::detail_control_of_clone_ordering(const ordering_options &options, std::uint64_t number) {
  const metric_context &context = signif_->context();
  class_clone_ord_and_verif orderer(context, &signif_->net(), options);
  const ordering_task task = detail_control_task(number);
  std::vector<ordering_work> works;
  if (!orderer.compute_all(std::span(&task, 1), works))
    return false;
  std::filesystem::path file_order;
  orderer.write(works.front(), file_order);
  detail_control_done(works.front());
  return true;
}

} // namespace orb
