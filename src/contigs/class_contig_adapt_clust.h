// Adaptive clustering: the library starts as one cluster; a cluster that isn't connected is split by single linkage, a
// connected one that is too large or too wide comes back at a higher cutoff, and one that passes becomes a contig with
// a folder of files.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "clustering/class_FPCto_import.h"
#include "contigs/class_contig_analysis.h"
#include "contigs/contig_drawings.h"
#include "contigs/contig_tables.h"
#include "contigs/layout_method.h"
#include "contigs/retained_tiling_path.h"
#include "contigs/run_reports.h"
#include "ordering/found_order.h"

namespace orb {

// One final cluster, for summaries.
struct contig_summary {
  std::string name;
  std::int32_t n_clones = 0;
  std::int32_t length_bands = 0; // 0: no coordinates
  double cutoff = 0;
  std::int32_t width = -1; // -1: not analysed
  std::int32_t n_clones_MTP = 0;
  bool is_contig = false;  // at least the minimal size; else a heap
  std::string remark = {}; // of the report
  std::int32_t n_far = -1; // clones far from the tiling path
};

// Whether a contig of this size and width gets an order: large ones only when they are narrow.
bool is_shape_to_order(std::int32_t n_clones, std::int32_t width);
inline constexpr std::int32_t n_clones_of_any_width = 300; // larger contigs are ordered when narrow only
inline constexpr std::int32_t width_to_order = 3;          // narrow: below this

// What became of contigs too long to be ordered in one search.
struct window_totals {
  std::int32_t n_contigs = 0, n_joins = 0, n_weak_joins = 0;
};

struct adapt_clust_result {
  std::filesystem::path folder;         // of the run
  std::vector<contig_summary> clusters; // final clusters of 2 and more clones, in the order in which they became final
  std::int32_t n_clones_alone = 0;      // in final clusters of one
  window_totals windows;
  bool completed = false;
};

// What a run writes of a contig besides its lists and reports, and how.
struct contig_files {
  bool pair_tables = true;                    // of all pairs and of consecutive clones
  pairs_of_table pairs = pairs_of_table::all; // of the tables of all pairs
  ordering_options ordering;
  bool drawings = true; // of nets
  drawing_options drawing;
};

// What a layout found, for summaries.
struct layout_figures {
  double n_positions = 0, cutoff = 0;
  std::int64_t n_overlaps = 0, n_overlaps_below = 0;
  std::int32_t n_suspects = 0, n_misfits = 0, n_dropped = 0, n_joins = 0, n_weak_joins = 0;
  std::int32_t n_of_stacks = 0; // clones of which a part of the overlaps was looked at
};

// One entry of the work list on its way through a test.
struct cluster_test {
  std::string name, name_long;         // the long name may grow in the test
  std::int32_t level = 0;              // of the ladder of cutoffs
  bool is_connected = false;           // known before, or found out by the test
  bool use_maximal_subcluster = false; // go on with the largest part of a cluster that isn't connected
  bool increase_cutoff = false;        // until few clones stray from the path
  bool by_layout = false;              // to which no limit of width applies
  // What the test found.
  bool final = false;    // the cluster is kept as it is
  bool analysed = false; // it counts as a contig
  bool too_large = false;
  cluster_id id = 0; // 0: no such cluster
  std::int32_t n_clones = 0;
  double cutoff = 0;
  std::int32_t diam = -1, width = -1, n_far = -1; // -1: not analysed
  std::int32_t n_gaps = 0;
  std::shared_ptr<class_contig_analysis> contig;
};

class class_contig_adapt_clust {
public:
  // `rule`: with the cutoff at which a run begins. `signif` must outlive the object.
  class_contig_adapt_clust(class_clone_net_signif &signif, const overlap_rule &rule, const contig_files &files = {});

  void main_parameters_set(std::int32_t n_clones_max, std::int32_t minimal_cluster_size, std::int32_t width_max,
                           double step_cutoff, std::int32_t n_steps, bool excluding_branching,
                           std::int32_t rank_relative_to_diam_path, std::int32_t minimal_branch_size);
  void detail_control_set(bool on) { detail_control_ = on; }
  void print_all_dist_on_set(bool on) { print_all_dist_on_ = on; }
  // The next run works in this folder, in which a stopped one of the same library, net and parameters may have left its
  // files: it takes the orders that are there and makes all else again, so that all ends as if nothing had happened.
  void folder_to_continue_set(std::filesystem::path folder) { folder_to_continue_ = std::move(folder); }
  double cutoff_curent_get(std::int32_t level) const;

  // The runs below do nothing while another process runs. All of them make a new folder with reports in the working
  // folder, follow the stop flag, and poll between clusters. They throw
  // file_error when a result can't be written. Cost: near linear in the overlap records for each level of the ladder.

  // The whole library; the registry of the database is replaced and holds the result.
  void adaptive_clustering_all_run(class_DB_of_clones &database);
  // The same by layout (layout_method.h), from the current net; what each decision rests on goes to layout_reports.h's
  // files beside the reports. Clones aren't ordered besides: their places are the order.
  void layout_all_run(class_DB_of_clones &database);
  const layout_figures &laid() const { return laid_; }
  // Clusters of the registry by name, with their long names (both from 1, element 0 unused), cut again and again until
  // each part passes.
  void adaptive_clustering_run(const std::vector<std::string> &names, const std::vector<std::string> &names_long,
                               std::int32_t n, class_DB_of_clones &database);
  // All clusters in use of the registry, tested without re-cutting.
  void process_clusters_without_adaptive_clustering_all_run();
  // The same for given names (from 1, element 0 unused); a name that isn't in the registry is passed over.
  void process_clusters_without_adaptive_clustering(const std::vector<std::string> &names, std::int32_t n,
                                                    class_DB_of_clones &database);
  // All contigs in use as another program made them, with parameters of its own: none is too large, too small or too
  // wide, and the ladder has one step. With `flag` the re-analysis below, otherwise the test above. False when
  // cancelled.
  bool test_all_FPC_contigs(bool flag, const retained_path_options &options = {});
  // How far clones lie from the tiling path is measured at this cutoff, in place of that at which the run began.
  void check_cutoff_set(double cutoff) { check_cutoff_ = cutoff; }
  // The two questions that the runs over given clusters ask; once set they aren't asked.
  void given_clusters_answers_set(std::optional<bool> use_maximal_subcluster, std::optional<bool> increase_cutoff);

  // Re-analysis of the clusters in use with an older tiling path: which of its clones, and of the clones sequenced
  // since, make a path through each cluster. Asks for what `options` leaves open. Writes the reports of a run and in
  // its folder four tables, see retained_tiling_path.h, and a drawing of each contig. False when cancelled.
  bool process_clusters_without_adaptive_clustering_Retain_run(const retained_path_options &options);
  // The same for given names (from 1, element 0 unused), with preferences by clone number.
  void process_clusters_without_adaptive_clustering_Retain(const std::vector<std::string> &names, std::int32_t n,
                                                           const std::vector<std::int16_t> &index_inMTPpreference);
  // Reads the two lists; a clone of both is preferred. `allowed`: both lists together, ascending, without repeats.
  bool
  find_MTP_maximally_using_clones_from_list_make_index_inMTPpreference(const retained_path_options &options,
                                                                       std::vector<std::int16_t> &index_inMTPpreference,
                                                                       number_list &sequenced, number_list &allowed);
  // A path through the contig's clones of preference above 0, at the contig's cutoff, from the leftmost to the
  // rightmost one and through preferred ones where it can; `not_used`: the others of them. `unlinked`: there is none,
  // and then all of them are the path. The pairs of these clones go to `file` unless it is null.
  void find_MTP_maximally_using_clones_from_list(const class_contig_analysis &contig,
                                                 const std::vector<std::int16_t> &index_inMTPpreference,
                                                 number_list &MTP, number_list &not_used, growing_file *file,
                                                 bool &unlinked);

  // One cluster through the decision table of the method, with its files. Its rows in the reports and the order of its
  // clones follow with report_tested_clusters: contigs are ordered side by side. A stop request ends it early, and then
  // nothing of this cluster will be in the reports.
  void test_cluster(cluster_test &test, run_reports &reports, class_DB_of_clones &database);
  // Orders the contigs tested since it ran last, and brings the rows of all of them into the reports in the sequence of
  // the tests: each as soon as it and all before it have their orders. What a stop request leaves without an order
  // isn't reported.
  void report_tested_clusters(run_reports &reports);
  const adapt_clust_result &result() const { return result_; }

private:
  // Clusters still to be tested and those tested before them, from 1; it only grows.
  struct work_list {
    std::vector<std::string> names{1}, names_long{1};
    std::vector<std::int32_t> level{0};
    std::vector<char> is_connected{0};
    std::int32_t count() const { return static_cast<std::int32_t>(names.size()) - 1; }
    void add(std::string name, std::string name_long, std::int32_t level_of_it, bool connected);
  };

  // A cluster whose rows wait for the order of its clones, or for those of clusters before it.
  struct tested_cluster {
    cluster_row row;
    std::shared_ptr<class_contig_analysis> contig;
    bool analysed = false, to_be_ordered = false, is_ordered = false;
  };
  // The rule at the cutoff of a level.
  overlap_rule rule_of_level(std::int32_t level) const { return at_cutoff(rule_, cutoff_curent_get(level)); }
  bool stopped() const { return signif_->context().frame.stop_requested_get(); }
  // Takes the place of the contigs that are loaded.
  std::shared_ptr<class_FPCto_import> new_registry(class_DB_of_clones &database) const;
  void in_a_process(const std::string &process_name, const std::string &end_message, class_DB_of_clones &database,
                    const std::function<void(run_reports &)> &work, bool with_FPC_files = true);
  void open_contig_folder_and_reports(run_reports &reports);
  static std::int64_t clones_of(const std::vector<std::string> &names, const class_FPCto_import &registry);
  void adaptive_clustering_loop(work_list &work, run_reports &reports, class_DB_of_clones &database);
  void add_subclusters_as_clusters(std::int32_t parent, work_list &work, class_contig_analysis &contig,
                                   class_FPCto_import &registry);
  struct given_clusters_answers {
    std::optional<bool> use_maximal_subcluster, increase_cutoff;
  };
  given_clusters_answers answers_of_given_clusters();
  // Tests clusters by name; `tested` follows each. The reports are finished.
  void given_clusters_loop(const std::vector<std::string> &names, std::int32_t n, run_reports &reports,
                           class_DB_of_clones &database,
                           const std::function<void(std::int32_t, const cluster_test &)> &tested);
  std::vector<std::string> names_of_clusters_in_use(const std::function<bool(cluster_id)> &is_wanted) const;
  void put_clones_alone_into_clusters(const number_list &allowed, const std::vector<std::int16_t> &index,
                                      retained_clusters wanted);
  void retain_in_contig(std::int32_t i, const cluster_test &test, const std::vector<std::int16_t> &index,
                        retain_files &files);
  void make_contig_for_cluster(cluster_test &test, const class_FPCto_import &registry);
  void keep_largest_subcluster(cluster_test &test);
  void print_clones_not_in(const number_list &all, const number_list &kept, const std::string &name);
  void increase_cutoff_for_MTP(cluster_test &test, bool ask);
  void analyse_contig_and_decide(cluster_test &test);
  void print_cluster_files(cluster_test &test, const run_reports &reports, class_FPCto_import &registry);
  void print_contig_files(std::int32_t n_clones, class_contig_analysis &contig);
  bool is_to_be_ordered(const cluster_test &test) const;
  void report_cluster(const tested_cluster &tested, run_reports &reports);
  void take_order(class_clone_ord_and_verif &orderer, const ordering_work &work, tested_cluster &tested);
  void take_earlier_order(const ordering_task &task, tested_cluster &tested);
  void note_order(const found_order &found, tested_cluster &tested);
  void count_gaps_of_order(tested_cluster &tested);
  cluster_row row_of_test(const cluster_test &test) const;
  void print_contig_into_common_files(const tested_cluster &tested, const std::string &row, run_reports &reports);
  void note_result(const cluster_test &test, const class_FPCto_import &registry);
  void laid_contigs_loop(const layout_result &found, run_reports &reports, class_DB_of_clones &database);
  void test_laid_contig(const laid_contig &laid, cluster_test &test, run_reports &reports,
                        class_FPCto_import &registry);
  void print_library_reports(const run_reports &reports, class_DB_of_clones &database);

  class_clone_net_signif *signif_;
  overlap_rule rule_; // of the run: with the cutoff of level 0
  contig_files files_;
  std::filesystem::path folder_to_continue_;
  std::optional<double> check_cutoff_;
  given_clusters_answers answers_;
  std::vector<tested_cluster> tested_;
  std::int32_t n_to_be_ordered_ = 0; // of these
  std::int32_t n_clones_max_ = 1200, minimal_cluster_size_ = 6, width_max_ = 1;
  double step_cutoff_ = 3;
  std::int32_t n_steps_ = 6;
  bool excluding_branching_ = false;
  std::int32_t rank_relative_to_diam_path_ = 2, minimal_branch_size_ = 3;
  bool detail_control_ = true, print_all_dist_on_ = true;
  adapt_clust_result result_;
  layout_figures laid_;
};

} // namespace orb
