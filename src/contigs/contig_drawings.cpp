// Drawings of one contig's net.
#include "contigs/class_contig_analysis.h"
#include "contigs/cutoff_keeper.h"
#include "contigs/run_reports.h"
#include "frame/numbers.h"

namespace orb {

void class_contig_analysis::draw_with_MTP(const std::string &title, const number_list &far,
                                          const drawing_options &options) const {
  class_clone_net_draw draw(*signif_);
  draw.options_set(options);
  draw.mark_names_set({"tiling path", "far", ""});
  if (clone_coor_known_)
    draw.quick_run_coordinates_set(coor_left_of_list(), coor_right_of_list());
  draw.quick_run_two_lists_of_marking(list_of_clones_, title, dir_name_to_output_ok_, absorb_, -1, list_of_clones_MTP_,
                                      far);
}

void class_contig_analysis::print_files_with_net_Pajek(bool with_whole_cluster, const drawing_options &options) {
  const std::string name = cluster_file_name(cluster_name_);
  if (with_whole_cluster) {
    class_clone_net_draw draw(*signif_);
    draw.options_set(options);
    number_list first;
    if (!list_of_clones_.empty())
      first.add(list_of_clones_(1));
    draw.quick_run(list_of_clones_, name, dir_name_to_output_ok_, absorb_, -1, first);
  }
  draw_with_MTP("MTP_" + name, list_of_clones_far_, options);
}

void class_contig_analysis::check_contig_with_MTP_new_cutoff_print_net_Pajek(const drawing_options &options) {
  project_settings &settings = signif_->context().settings;
  const cutoff_keeper keeper(settings);
  settings.cutoff = cutoff_new_;
  draw_with_MTP("MTP_" + cluster_file_name(cluster_name_) + "_cutoff" + number_text(cutoff_new_, 2),
                list_of_clones_far_NewCutoff_, options);
}

void class_contig_analysis::draw_retained_MTP(const number_list &MTP, const number_list &not_used,
                                              const drawing_options &options) const {
  constexpr double absorb = 0.9; // whatever the run's own burying fraction is
  class_clone_net_draw draw(*signif_);
  draw.options_set(options);
  draw.mark_names_set({"new tiling path", "not used", "tiling path"});
  if (clone_coor_known_)
    draw.quick_run_coordinates_set(coor_left_of_list(), coor_right_of_list());
  draw.quick_run_three_lists_of_marking(list_of_clones_, "MTP_new_" + cluster_file_name(cluster_name_),
                                        dir_name_to_output_ok_, absorb, -1, MTP, not_used, list_of_clones_MTP_);
}

} // namespace orb
