#include "net/net_as_text.h"

#include "frame/files.h"
#include "frame/numbers.h"

namespace orb {

namespace {

constexpr clone_number clones_between_polls = 500;

std::string proposed_name(const overlap_rule &rule) {
  return "signif_overlaps_" + class_clone_dist_general::name_of_cutoff_distance(rule.distance_index) + "_" +
         number_text(rule.cutoff, 2) + ".txt";
}

} // namespace

void text_net_overlap_append(std::string &lines, const class_DB_of_clones &database, clone_number partner, double value,
                             std::int16_t code) {
  lines += "\r\n";
  whole_number_append(lines, partner);
  lines += '\t';
  lines += database.name_of_clone_get(partner);
  lines += '\t';
  number_text_append(lines, value, 2);
  if (code != 0) {
    lines += "\tabs";
    whole_number_append(lines, code);
  }
}

std::string text_net_block(const class_DB_of_clones &database, clone_number clone, std::int32_t n,
                           const std::string &lines) {
  return "clone\t" + std::to_string(clone) + "\t" + database.name_of_clone_get(clone) + "\t" + std::to_string(n) +
         lines;
}

bool save_net_as_text_net(const metric_context &context, const class_net &net, const overlap_rule &rule,
                          std::filesystem::path &file) {
  process_frame &frame = context.frame;
  const class_DB_of_clones &database = context.database;
  if (file.empty())
    file = frame.save_file_dialog_checked("Print significant overlaps to text file", proposed_name(rule),
                                          "Text files (*.txt)|*.txt");
  if (file.empty())
    return false;
  frame.process_start("Print to text file");
  const clone_number n = database.total_number_of_clones_get();
  result_file output(file);
  std::string lines;
  for (clone_number i = 1; i <= n; ++i) {
    lines.clear();
    std::int32_t n_overlaps = 0;
    if (i <= net.number_of_vertices_get())
      for (const net_edge &edge : net.edges_of_vertex(i))
        if (edge.value >= rule.cutoff) {
          text_net_overlap_append(lines, database, edge.neighbour, edge.value, edge.index2);
          ++n_overlaps;
        }
    output.line(text_net_block(database, i, n_overlaps, lines));
    if (i % clones_between_polls != 0 && i != n)
      continue;
    frame.progress(i, n);
    frame.local_process_text_set(std::to_string(i) + " from " + std::to_string(n));
    if (frame.stop_requested_get()) {
      frame.process_stopped_manually();
      return false;
    }
  }
  output.commit();
  frame.all_panels_reset();
  frame.log_line("File " + file.string() + " saved.");
  return true;
}

} // namespace orb
