// The runs and what both of them do with a list; the analyses of a list and of a folder stand in
// contig_process_parts.cpp.
#include "contigs/class_contig_process.h"

#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "lists/class_list_of_clones.h"

namespace orb {

namespace fs = std::filesystem;

void contig_process_options::option_clustering_only() {
  off_all_options();
  option_clustering = true;
}

void contig_process_options::standart_options_folder_of_clusters() {
  off_all_options();
  option_test_of_ordering = option_nets_for_cutoffs = option_mark_MTP = option_JK_ordering = true;
}

class_contig_process::class_contig_process(class_clone_net_signif &signif, const overlap_rule &rule,
                                           const contig_process_options &options, const contig_process_inputs &inputs,
                                           const drawing_options &drawing, const ordering_options &ordering)
    : signif_(&signif), rule_(rule), options_(options), inputs_(inputs), drawing_(drawing), ordering_(ordering) {}

bool class_contig_process::controling_of_ordering_contig(bool all_database) {
  const metric_context &context = signif_->context();
  process_frame &frame = context.frame;
  frame.step_text_set("Contig loading");
  number_list list;
  std::string name = "All_DataBase";
  if (all_database)
    list = number_list::range(1, context.database.total_number_of_clones_get());
  else if (!class_list_of_clones(frame, context.settings)
                .run_reading_file_with_list_of_clones(inputs_.list, list, name, context.database))
    return false;
  frame.process_start("Analysis of " + name);
  frame.step_text_set("Contig loaded");
  n_lists_ = 1;
  const fs::path folder = frame.working_folder_get();
  gap_table gaps(n_gap_columns);
  if (options_.option_test_of_ordering && !print_consecuent(list, "Consec_dist_", name, folder, gaps[0]))
    return false;
  if (options_.option_test_of_all_dist && !print_all_pairs(list, name, folder))
    return false;
  if (options_.option_test_of_ordering || options_.option_test_of_all_dist)
    print_markers(list, name, folder);
  if (!all_database && options_.option_nets_for_cutoffs && !draw_marked(list, name))
    return false;
  if (options_.option_JK_ordering && !order_clones(list, name, folder, gaps))
    return false;
  if (options_.option_clustering && !cluster(list, name))
    return false;
  if (options_.option_band_map && !map_bands(list, false))
    return false;
  if (options_.option_band_map_simul && !map_bands(list, true))
    return false;
  if (options_.option_topology)
    topology_comparison(list, name);
  if (!goes_on())
    return false;
  frame.process_done();
  return true;
}

bool class_contig_process::process_folder_of_contigs() {
  process_frame &frame = signif_->context().frame;
  fs::path lists = inputs_.list;
  if (lists.empty())
    lists = frame.open_file_dialog("Click any file from directory").parent_path();
  if (lists.empty())
    return false;
  const std::vector<std::string> names = class_serv_raznoe::create_ordered_list_of_files_in_folder(lists, "");
  frame.process_start("Analysis of a folder of lists");
  const fs::path former = class_serv_raznoe::create_folder_and_make_it_current(
      frame, class_serv_raznoe::date_and_time_string(frame) + "Results of preprocessing");
  const fs::path folder = frame.working_folder_get();
  files_written_.push_back(folder);
  growing_file report(folder / "report.txt"), MTPs(folder / "MTPs.txt"), MTP_plus_far(folder / "MTP_plus_far.txt");
  report.line(header_of_report());
  const auto n = static_cast<std::int32_t>(names.size());
  bool done = true;
  for (std::int32_t i = 1; done && i <= n; ++i) {
    const std::string &name = names[static_cast<std::size_t>(i) - 1];
    frame.step_text_set("Process <" + name + "> (" + std::to_string(i) + " of " + std::to_string(n) + ")");
    frame.progress(i - 1, n);
    done = process_file_with_contig(lists / name, folder, i, report, MTPs, MTP_plus_far) && frame.goes_on();
    n_lists_ += done;
  }
  class_serv_raznoe::finish_of_work_with_folder(frame, former);
  if (!done)
    return false;
  frame.process_done();
  frame.message("Analysis of all " + std::to_string(n) + " clusters from the selected folder is completed.");
  return true;
}

} // namespace orb
