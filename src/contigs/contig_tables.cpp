#include "contigs/contig_tables.h"

#include <algorithm>
#include <limits>
#include <unordered_map>

#include "contigs/contig_reports.h"
#include "database/class_markers.h"
#include "frame/files.h"

namespace orb {

namespace {

// "name(position)", or the name alone.
std::string marker_text(const class_markers &markers, std::int32_t marker) {
  const std::string &position = markers.position_of_marker_get(marker);
  return markers.name_of_marker_get(marker) + (position.empty() ? "" : "(" + position + ")");
}

} // namespace

void print_all_dist(const class_contig_analysis &contig, pairs_of_table pairs, const std::filesystem::path &file) {
  const metric_context &context = contig.context();
  class_list_of_clones(context.frame, context.settings)
      .print_all_dist(contig.list_of_clones(), contig.cluster_name_get(), report_path(contig, file, "All_dist_"),
                      contig.rule(), context, &contig.signif().net(), pairs);
}

static std::vector<std::int32_t> print_consecutive(const class_contig_analysis &contig, const number_list &list,
                                                   const std::string &start, const std::filesystem::path &file,
                                                   bool print_to_file) {
  const metric_context &context = contig.context();
  std::vector<std::int32_t> gaps;
  class_list_of_clones(context.frame, context.settings)
      .print_consecuent_dist(list.count(), list, contig.cluster_name_get(), report_path(contig, file, start), gaps,
                             print_to_file, contig.rule(), context);
  return gaps;
}

std::vector<std::int32_t> print_consecuent_dist_MTP(const class_contig_analysis &contig, bool print_to_file,
                                                    const std::filesystem::path &file) {
  return print_consecutive(contig, contig.list_of_clones_MTP(), "Consec_dist_MTP_", file, print_to_file);
}

std::vector<std::int32_t> print_consecuent_dist_initial_list_of_clones(const class_contig_analysis &contig,
                                                                       bool print_to_file,
                                                                       const std::filesystem::path &file) {
  return print_consecutive(contig, contig.list_of_clones(), "Consec_dist_", file, print_to_file);
}

std::vector<std::int32_t> print_consecuent_dist_NoBuriedInit(const class_contig_analysis &contig, bool print_to_file,
                                                             const std::filesystem::path &file) {
  return print_consecutive(contig, contig.list_NoBuriedInit(), "Consec_dist_NoBuriedInit_", file, print_to_file);
}

std::vector<std::int32_t> print_consecuent_dist_NoBuriedORB(const class_contig_analysis &contig, bool print_to_file,
                                                            const std::filesystem::path &file) {
  return print_consecutive(contig, contig.list_NoBuriedORB(), "Consec_dist_NoBuriedORB_", file, print_to_file);
}

void print_markers(const class_contig_analysis &contig, const std::filesystem::path &file) {
  const metric_context &context = contig.context();
  context.database.markers().print_marker_presence_for_list_of_clones(
      context.frame, context.database, contig.list_of_clones(), contig.list_of_clones().count(),
      report_path(contig, file, "clones_and_markers_"), "");
}

// The markers of the contig's clones; along the axis where it is known: by the last left end of a clone that bears
// them.
static number_list markers_by_coordinates(const class_contig_analysis &contig) {
  const class_markers &markers = contig.context().database.markers();
  number_list found;
  markers.create_list_of_markers_for_list_of_clones(contig.list_of_clones(), contig.list_of_clones().count(), found);
  if (!contig.clone_coor_known_get() || found.count() < 2)
    return found;
  std::vector<std::int32_t> key(static_cast<std::size_t>(markers.total_number_of_markers_get()) + 1,
                                std::numeric_limits<std::int32_t>::min());
  for (std::int32_t position = 1; position <= contig.list_of_clones().count(); ++position)
    for (const std::int32_t marker : markers.markers_of_clone(contig.list_of_clones()(position))) {
      std::int32_t &largest = key[static_cast<std::size_t>(marker)];
      largest = std::max(largest, contig.coor_left_of_list()[static_cast<std::size_t>(position) - 1]);
    }
  const auto members = found.members();
  std::stable_sort(members.begin(), members.end(), [&key](std::int32_t a, std::int32_t b) {
    return key[static_cast<std::size_t>(a)] < key[static_cast<std::size_t>(b)];
  });
  return found;
}

namespace {

// What the row of each clone looks up.
struct marker_rows {
  const class_contig_analysis &contig;
  const class_DB_of_clones &database;
  number_list columns;                                         // markers
  std::vector<std::int32_t> column_of;                         // by marker
  std::unordered_map<clone_number, std::int32_t> place_in_MTP; // the first one of a clone that stands there twice

  explicit marker_rows(const class_contig_analysis &of)
      : contig(of), database(of.context().database), columns(markers_by_coordinates(of)),
        column_of(static_cast<std::size_t>(database.markers().total_number_of_markers_get()) + 1, 0) {
    for (std::int32_t c = 1; c <= columns.count(); ++c)
      column_of[static_cast<std::size_t>(columns(c))] = c;
    for (std::int32_t i = 1; i <= contig.list_of_clones_MTP().count(); ++i)
      place_in_MTP.emplace(contig.list_of_clones_MTP()(i), i);
  }
  std::string head() const {
    std::string text = "i\tclone\tMTP\tcoor_left\tcoor_right";
    for (const std::int32_t marker : columns.members())
      (text += '\t') += marker_text(database.markers(), marker);
    return text;
  }
  std::string row(std::int32_t position) const {
    const clone_number clone = contig.list_of_clones()(position);
    const auto at = static_cast<std::size_t>(position) - 1;
    std::string text = std::to_string(position) + '\t' + database.name_of_clone_get(clone) + '\t';
    text += contig.clone_coor_known_get() ? std::to_string(contig.coor_left_of_list()[at]) + '\t' +
                                                std::to_string(contig.coor_right_of_list()[at])
                                          : std::string("Unknown\tUnknown");
    const auto place = place_in_MTP.find(clone);
    (text += '\t') += place != place_in_MTP.end() ? std::to_string(place->second) : "False";
    const auto bears = database.markers().markers_of_clone(clone);
    std::vector<std::int32_t> of_clone(bears.begin(), bears.end());
    std::sort(of_clone.begin(), of_clone.end(), [this](std::int32_t a, std::int32_t b) {
      return column_of[static_cast<std::size_t>(a)] < column_of[static_cast<std::size_t>(b)];
    });
    for (const std::int32_t marker : of_clone)
      (text += '\t') += marker_text(database.markers(), marker);
    return text;
  }
};

} // namespace

// The fields of a row stand in another order than the head says, and its markers aren't padded into columns:
// deliberate, the readers of this table expect it so.
void print_clones_indicateMTP_coordinates_and_markers(const class_contig_analysis &contig,
                                                      const std::filesystem::path &file) {
  const marker_rows rows(contig);
  result_file out(report_path(contig, file, "clones_MTP_coor_and_markers_"));
  std::string zones;
  rows.database.markers().string_of_zones(contig.list_of_clones(), zones);
  out.line(zones);
  out.line(rows.head());
  for (std::int32_t position = 1; position <= contig.list_of_clones().count(); ++position)
    out.line(rows.row(position));
  out.commit();
}

} // namespace orb
