#include "net/clone_net_questions.h"

#include "frame/files.h"
#include "lists/class_list_of_clones.h"

namespace orb {

namespace {

// Path and ranks, and the table along the path, by a rule. False after a stop request.
bool shape_and_table_of_path(class_clone_net_signif &signif, const overlap_rule &rule, const number_list &contig,
                             ranks_of_interesting_clones &result) {
  const metric_context &context = signif.context();
  signif.contigomer_clone_ordering_run(contig, rule, result.clones, true, true, result.shape, result.ranks);
  if (context.frame.stop_requested_get())
    return false;
  const auto table = context.frame.path_in_working_folder("\\Consec_dist_MTP_new.txt");
  std::vector<std::int32_t> gaps;
  const number_list &path = result.shape.path;
  if (!class_list_of_clones(context.frame, context.settings)
           .print_consecuent_dist(path.count(), path, "MTP_new", table, gaps, true, rule, context))
    return false;
  result.files_written.push_back(table);
  return true;
}

void print_ranks(const metric_context &context, ranks_of_interesting_clones &result) {
  const auto path = context.frame.path_in_working_folder("\\ranks_of_interesting_clones.txt");
  result_file table(path);
  table.line("i\tclone\trank (from start of diametric path)");
  for (std::int32_t i = 1; i <= result.clones.count(); ++i)
    table.line(std::to_string(i) + "\t" + context.database.name_of_clone_get(result.clones(i)) + "\t" +
               std::to_string(result.ranks(i)));
  table.commit();
  result.files_written.push_back(path);
}

} // namespace

bool clone_net_characteristics_run(class_clone_net_signif &signif, clone_number clone, std::int32_t n_rank,
                                   clone_net_characteristics &result) {
  const class_net &net = signif.net();
  if (clone < 1 || clone > net.number_of_vertices_get())
    return false;
  result = {};
  net.vertex_net_characteristics(clone, false, 0, result.n_in_rank, result.n_clusters, n_rank, signif.workspace());
  signif.context().frame.message("N_clusters = " + std::to_string(result.n_clusters));
  return true;
}

bool contig_test_Ranks_relative_to_start_of_diam_path_run(class_clone_net_signif &signif, const overlap_rule &rule,
                                                          std::filesystem::path file_of_contig,
                                                          const std::filesystem::path &file_of_interesting,
                                                          ranks_of_interesting_clones &result) {
  const metric_context &context = signif.context();
  process_frame &frame = context.frame;
  class_list_of_clones lists(frame, context.settings);
  number_list contig;
  std::string name;
  result = {};
  frame.step_text_set("Contig loading");
  if (file_of_contig.empty())
    file_of_contig = frame.open_file_dialog("Open file with list of clones of contig");
  if (file_of_contig.empty() ||
      !lists.run_reading_file_with_list_of_clones(file_of_contig, contig, name, context.database))
    return false;
  frame.step_text_set("Contig is loaded");
  frame.step_text_set("List of clones interesting loading");
  if (!lists.run_reading_file_with_list_of_clones(file_of_interesting, result.clones, name, context.database))
    return false;
  frame.step_text_set("List of clones interesting is loaded");
  frame.process_start("Ranks relative to start of diam path");
  if (!contig.empty())
    lists.sort_list_of_clones_and_delete_repeats(contig); // a clone is one vertex, however often it is listed
  if (!shape_and_table_of_path(signif, rule, contig, result)) {
    frame.process_stopped_manually();
    return false;
  }
  print_ranks(context, result);
  frame.all_panels_reset();
  return true;
}

} // namespace orb
