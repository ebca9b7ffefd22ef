// A chosen set of analyses over one list of clones, over all clones, or over a folder of lists, without the loop that
// cuts clusters again and again.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "drawing/class_clone_net_draw.h"
#include "frame/files.h"
#include "metrics/overlap_rule.h"
#include "net/class_clone_net_signif.h"
#include "ordering/class_clone_ord_and_verif.h"

namespace orb {

// The panel "Options for analysis".
struct contig_process_options {
  bool option_test_of_ordering = false; // consecutive distances of the list
  bool option_test_of_all_dist = false; // distances of all pairs
  bool option_nets_for_cutoffs = false; // drawing of the net
  bool option_mark_MTP = false;         // marks of one list in it
  bool option_mark_two_lists = false;   // marks of two lists
  bool option_JK_ordering = false;
  bool option_unused = false; // always off
  bool option_clustering = false;
  bool option_read_clustering = false; // an existing one in place of a new one
  bool option_several_metrics = false; // drawings for several cutoffs
  bool option_clusterization_test = false;
  bool option_band_map = false;       // consensus map of the bands
  bool option_band_map_simul = false; // the same of simulated clones
  bool option_topology = false;       // clones whose neighbours don't hang together

  // Leaves every field as it is: deliberate, so that the presets only add.
  void off_all_options() {}
  void standart_options_one_cluster() { off_all_options(); }
  void option_clustering_only();
  void standart_options_folder_of_clusters();
};

// What the analyses would ask for; empty names and unset values are asked for when they are needed.
struct contig_process_inputs {
  std::filesystem::path list;           // of clones; of a folder: the folder itself
  std::filesystem::path mark_1, mark_2; // lists that are marked in the drawing
  std::filesystem::path clusters;       // cluster numbers that are read
  std::optional<bool> from_net_only;    // tables of all pairs
};

class class_contig_process {
public:
  class_contig_process(class_clone_net_signif &signif, const overlap_rule &rule, const contig_process_options &options,
                       const contig_process_inputs &inputs, const drawing_options &drawing,
                       const ordering_options &ordering);

  // One list, or all clones; the files go to the working folder. False when cancelled, refused or stopped. Throws
  // file_error.
  bool controling_of_ordering_contig(bool all_database);
  // All lists of a folder, into a new folder of the working folder, whose three reports have a part for each list.
  bool process_folder_of_contigs();

  const std::vector<std::filesystem::path> &files_written() const { return files_written_; }
  std::int32_t n_lists_get() const { return n_lists_; }
  std::int32_t n_doubtful_get() const { return n_doubtful_; } // clones of a bad topology

private:
  static constexpr std::size_t n_gap_columns = 4; // the list, it and the order without buried clones, the tiling path
  using gap_table = std::vector<std::vector<std::int32_t>>;
  struct topology {
    std::int32_t radius = 0, diam = 0, width = -1;
    number_list MTP, far, important;
  };

  bool goes_on() const { return !signif_->context().frame.stop_requested_get(); }
  bool detail_control_of_clone_ordering(const number_list &list, const std::string &name,
                                        const std::filesystem::path &folder, gap_table &gaps);
  bool order_clones(const number_list &list, const std::string &name, const std::filesystem::path &folder,
                    gap_table &gaps);
  bool print_consecuent(const number_list &list, const std::string &start, const std::string &name,
                        const std::filesystem::path &folder, std::vector<std::int32_t> &gaps);
  bool print_all_pairs(const number_list &list, const std::string &name, const std::filesystem::path &folder);
  void print_markers(const number_list &list, const std::string &name, const std::filesystem::path &folder);
  bool draw_marked(const number_list &list, const std::string &name);
  bool draw_of_folder(const number_list &list, const std::string &name, const std::filesystem::path &folder,
                      const topology &found);
  bool cluster(const number_list &list, const std::string &name);
  bool map_bands(const number_list &list, bool simulated);
  void topology_comparison(const number_list &list, const std::string &name);
  topology contig_topology_and_MTP(const number_list &list, const std::string &name,
                                   const std::filesystem::path &folder);
  bool process_file_with_contig(const std::filesystem::path &file, const std::filesystem::path &folder, std::int32_t i,
                                growing_file &report, growing_file &MTPs, growing_file &MTP_plus_far);
  std::string header_of_report() const;
  std::string gaps_of_column(const gap_table &gaps, std::size_t column) const;

  class_clone_net_signif *signif_;
  overlap_rule rule_;
  contig_process_options options_;
  contig_process_inputs inputs_;
  drawing_options drawing_;
  ordering_options ordering_;
  std::vector<std::filesystem::path> files_written_;
  std::int32_t n_lists_ = 0, n_doubtful_ = 0;
};

} // namespace orb
