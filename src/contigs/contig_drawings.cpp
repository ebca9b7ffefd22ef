#include "contigs/contig_drawings.h"

#include "clustering/cluster_file_name.h"
#include "frame/numbers.h"

namespace orb {

namespace {

class_clone_net_draw drawing_of(const class_contig_analysis &contig, const overlap_rule &rule,
                                const drawing_options &options) {
  class_clone_net_draw draw(contig.signif(), rule);
  draw.options_set(options);
  return draw;
}

void give_coordinates(const class_contig_analysis &contig, class_clone_net_draw &draw) {
  if (contig.clone_coor_known_get())
    draw.quick_run_coordinates_set(contig.coor_left_of_list(), contig.coor_right_of_list());
}

void draw_with_MTP(const class_contig_analysis &contig, const overlap_rule &rule, const std::string &title,
                   const number_list &far, const drawing_options &options) {
  class_clone_net_draw draw = drawing_of(contig, rule, options);
  draw.mark_names_set({"tiling path", "far", ""});
  give_coordinates(contig, draw);
  draw.quick_run_two_lists_of_marking(contig.list_of_clones(), title, contig.dir_name_to_output_ok_get(), rule.burying,
                                      -1, contig.list_of_clones_MTP(), far);
}

} // namespace

void print_files_with_net_Pajek(const class_contig_analysis &contig, bool with_whole_cluster,
                                const drawing_options &options) {
  const std::string name = cluster_file_name(contig.cluster_name_get());
  if (with_whole_cluster) {
    class_clone_net_draw draw = drawing_of(contig, contig.rule(), options);
    number_list first;
    if (!contig.list_of_clones().empty())
      first.add(contig.list_of_clones()(1));
    draw.quick_run(contig.list_of_clones(), name, contig.dir_name_to_output_ok_get(), contig.rule().burying, -1, first);
  }
  draw_with_MTP(contig, contig.rule(), "MTP_" + name, contig.list_of_clones_far(), options);
}

void check_contig_with_MTP_new_cutoff_print_net_Pajek(const class_contig_analysis &contig,
                                                      const drawing_options &options) {
  const double cutoff = contig.cutoff_new_get();
  draw_with_MTP(contig, at_cutoff(contig.rule(), cutoff),
                "MTP_" + cluster_file_name(contig.cluster_name_get()) + "_cutoff" + number_text(cutoff, 2),
                contig.list_of_clones_far_NewCutoff(), options);
}

// With the standard burying fraction, whatever the contig's own is: deliberate.
void draw_retained_MTP(const class_contig_analysis &contig, const number_list &MTP, const number_list &not_used,
                       const drawing_options &options) {
  class_clone_net_draw draw = drawing_of(contig, contig.rule(), options);
  draw.mark_names_set({"new tiling path", "not used", "tiling path"});
  give_coordinates(contig, draw);
  draw.quick_run_three_lists_of_marking(contig.list_of_clones(),
                                        "MTP_new_" + cluster_file_name(contig.cluster_name_get()),
                                        contig.dir_name_to_output_ok_get(), overlap_rule::standard_burying, -1, MTP,
                                        not_used, contig.list_of_clones_MTP());
}

} // namespace orb
