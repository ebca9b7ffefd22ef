// The runs and their loops; the test of one cluster stands in cluster_testing.cpp.
#include "contigs/class_contig_adapt_clust.h"

#include <algorithm>

#include "contigs/contig_reports.h"
#include "contigs/kept_registry.h"
#include "fpc/fpc_writing.h"
#include "frame/numbers.h"

namespace orb {

namespace {

constexpr std::int32_t stride_of_clones_alone = 100; // clusters of one clone between two looks at the user
constexpr std::int32_t stride_of_parts = 500;        // parts entered between two status texts

// A run works in its own folder; this puts the former one back on every way out.
class working_folder_keeper {
public:
  explicit working_folder_keeper(process_frame &frame) : frame_(frame), former_(frame.working_folder_get()) {}
  ~working_folder_keeper() { frame_.working_folder_set(former_); }
  working_folder_keeper(const working_folder_keeper &) = delete;
  working_folder_keeper &operator=(const working_folder_keeper &) = delete;

private:
  process_frame &frame_;
  std::filesystem::path former_;
};

} // namespace

class_contig_adapt_clust::class_contig_adapt_clust(class_clone_net_signif &signif, const overlap_rule &rule,
                                                   const contig_files &files)
    : signif_(&signif), rule_(rule), files_(files) {}

void class_contig_adapt_clust::main_parameters_set(std::int32_t n_clones_max, std::int32_t minimal_cluster_size,
                                                   std::int32_t width_max, double step_cutoff, std::int32_t n_steps,
                                                   bool excluding_branching, std::int32_t rank_relative_to_diam_path,
                                                   std::int32_t minimal_branch_size) {
  n_clones_max_ = n_clones_max;
  minimal_cluster_size_ = minimal_cluster_size;
  width_max_ = width_max;
  step_cutoff_ = step_cutoff;
  n_steps_ = std::max(n_steps, 0); // below the base there is no level at which a cluster would be kept
  excluding_branching_ = excluding_branching;
  rank_relative_to_diam_path_ = rank_relative_to_diam_path;
  minimal_branch_size_ = minimal_branch_size;
}

double class_contig_adapt_clust::cutoff_curent_get(std::int32_t level) const {
  return rule_.cutoff + std::min(level, n_steps_) * step_cutoff_;
}

void class_contig_adapt_clust::work_list::add(std::string name, std::string name_long, std::int32_t level_of_it,
                                              bool connected) {
  names.push_back(std::move(name));
  names_long.push_back(std::move(name_long));
  level.push_back(level_of_it);
  is_connected.push_back(connected ? 1 : 0);
}

std::shared_ptr<class_FPCto_import> class_contig_adapt_clust::new_registry(class_DB_of_clones &database) const {
  const metric_context &context = signif_->context();
  auto registry = std::make_shared<class_FPCto_import>(context.frame, context.settings, database);
  database.contigs_are_specified_set(true);
  database.contigs_set(registry);
  return registry;
}

void class_contig_adapt_clust::adaptive_clustering_all_run(class_DB_of_clones &database) {
  if (signif_->context().frame.process_is_running())
    return;
  const auto registry = new_registry(database);
  const std::int32_t n_clones = database.total_number_of_clones_get();
  registry->clear_all_and_create_cluster_AllDB(n_clones >= 100001 ? 2 : 2 * n_steps_ + 1, "", "");
  const std::vector<std::string> names{"", "cl_1"}, names_long{"", "all"};
  registry->clear_all_and_create_cluster_AllDB(2 * n_steps_ + 1, names[1], names_long[1]);
  adaptive_clustering_run(names, names_long, 1, database);
}

// What all runs share: one process, one folder of reports, the FPC-like files at the end unless the user stopped.
void class_contig_adapt_clust::in_a_process(const std::string &process_name, const std::string &end_message,
                                            class_DB_of_clones &database,
                                            const std::function<void(run_reports &)> &work, bool with_FPC_files) {
  process_frame &frame = signif_->context().frame;
  result_ = {};
  const working_folder_keeper keeper(frame);
  run_reports reports;
  bool ended_early = false;
  try {
    frame.process_start(process_name);
    open_contig_folder_and_reports(reports);
    work(reports);
    ended_early = stopped();
    if (ended_early)
      reports.close();
    else
      reports.end_here();
  } catch (...) {
    frame.process_aborted();
    throw;
  }
  if (ended_early) {
    frame.process_aborted();
    return;
  }
  frame.message(end_message);
  frame.all_panels_reset();
  if (with_FPC_files)
    print_FPC_like_file_run(frame, signif_->context().settings, database, *database.contigs(),
                            reports.folder_contigs / "FPC_like.fpc", reports.folder_contigs / "FPC_like_pp.fpc",
                            reports.folder_contigs, true);
  print_library_reports(reports, database);
  keep_registry(*database.contigs(), database, reports.folder_contigs);
  result_.completed = true;
}

void class_contig_adapt_clust::open_contig_folder_and_reports(run_reports &reports) {
  reports.open(signif_->context().frame, folder_to_continue_);
  signif_->context().frame.working_folder_set(reports.folder_contigs);
  result_.folder = reports.folder_contigs;
}

// Tables of the whole library, in the run's folder.
void class_contig_adapt_clust::print_library_reports(const run_reports &reports, class_DB_of_clones &database) {
  database.contigs()->print_N50_statistics();
  database.contigs()->print_coordinates_of_clones(number_list::range(1, database.total_number_of_clones_get()),
                                                  reports.folder_contigs / "coordinates_of_clones.txt");
}

void class_contig_adapt_clust::adaptive_clustering_run(const std::vector<std::string> &names,
                                                       const std::vector<std::string> &names_long, std::int32_t n,
                                                       class_DB_of_clones &database) {
  if (signif_->context().frame.process_is_running() || database.contigs() == nullptr)
    return;
  in_a_process("Adaptive clustering", "Adaptive clustering is completed", database, [&](run_reports &reports) {
    work_list work;
    for (std::int32_t i = 1; i <= n; ++i)
      work.add(names[static_cast<std::size_t>(i)], names_long[static_cast<std::size_t>(i)], 0, false);
    adaptive_clustering_loop(work, reports, database);
  });
}

std::int64_t class_contig_adapt_clust::clones_of(const std::vector<std::string> &names,
                                                 const class_FPCto_import &registry) {
  std::int64_t n_clones = 0;
  for (const std::string &name : names) {
    cluster_id id = 0;
    bool not_found = false;
    registry.search_for_cluster(name, id, not_found);
    n_clones += not_found ? 0 : registry.n_clones_in_cluster_get(id);
  }
  return n_clones;
}

void class_contig_adapt_clust::adaptive_clustering_loop(work_list &work, run_reports &reports,
                                                        class_DB_of_clones &database) {
  process_frame &frame = signif_->context().frame;
  class_FPCto_import &registry = *database.contigs();
  progress_of_whole in_final_clusters(frame, clones_of(work.names, registry));
  reports.clones_in_MTP_details.line(header_of_MTP_details());
  for (std::int32_t i = 1; !stopped() && i <= work.count(); ++i) {
    const auto entry = static_cast<std::size_t>(i);
    cluster_test test;
    test.name = work.names[entry];
    test.name_long = work.names_long[entry];
    test.level = work.level[entry];
    test.is_connected = work.is_connected[entry] != 0;
    cluster_id id = 0;
    bool not_found = false;
    registry.search_for_cluster(test.name, id, not_found);
    const bool shown = not_found || registry.n_clones_in_cluster_get(id) > 1 || i % stride_of_clones_alone == 0;
    if (shown)
      frame.step_text_set("Process " + std::to_string(i) + " of currently " + std::to_string(work.count()) +
                          " clusters: " + test.name + "...");
    test_cluster(test, reports, database);
    work.is_connected[entry] = test.is_connected ? 1 : 0;
    if (!stopped() && test.final) {
      note_result(test, registry);
      in_final_clusters.add(test.n_clones);
    }
    if (!stopped() && !test.final) {
      registry.cluster_off_clusterName(test.name);
      add_subclusters_as_clusters(i, work, *test.contig, registry);
    }
    if (shown)
      frame.control_text_set(std::to_string(i));
  }
  report_tested_clusters(reports);
}

// A connected cluster that failed comes back whole, one level up; one that fell apart leaves its parts, connected at
// its own level.
void class_contig_adapt_clust::add_subclusters_as_clusters(std::int32_t parent, work_list &work,
                                                           class_contig_analysis &contig,
                                                           class_FPCto_import &registry) {
  const class_clustering &clustering = contig.clustering();
  const auto entry = static_cast<std::size_t>(parent);
  const bool raised = work.is_connected[entry] != 0;
  const std::int32_t level = work.level[entry] + (raised ? 1 : 0);
  const std::int32_t n_parts = clustering.number_of_clusters_get();
  const std::string cutoff = number_text(cutoff_curent_get(level), 2);
  const std::string name_long = work.names_long[entry] + (raised ? "_pr" : "_cl") + cutoff;
  number_list part, clones;
  for (std::int32_t k = 1; k <= n_parts; ++k) {
    clustering.read_from_arrays_for_clusters(k, part, false);
    clones.clear();
    for (std::int32_t j = 1; j <= part.count(); ++j)
      clones.add(clustering.get_actual_clone_number(part(j)));
    std::string name_of_part = name_long;
    if (!raised)
      name_of_part += "_" + std::to_string(clones.count()) + "_" + std::to_string(n_parts);
    const std::string name = "cl_" + std::to_string(work.count() + 1);
    registry.add_new_cluster(clones, name, name_of_part, false);
    work.add(name, std::move(name_of_part), level, !raised);
    if (k % stride_of_parts == 0)
      signif_->context().frame.clones_text_set(std::to_string(k) + " of " + std::to_string(n_parts));
  }
  registry.add_new_cluster_finish();
}

std::vector<std::string>
class_contig_adapt_clust::names_of_clusters_in_use(const std::function<bool(cluster_id)> &is_wanted) const {
  const class_FPCto_import &registry = *signif_->context().database.contigs();
  std::vector<std::string> names{""};
  for (const cluster_id id : registry.current_list_of_clusters_in_use_get().members())
    if (is_wanted(id))
      names.push_back(registry.name_of_cluster_get(id));
  return names;
}

void class_contig_adapt_clust::process_clusters_without_adaptive_clustering_all_run() {
  class_DB_of_clones &database = signif_->context().database;
  if (database.contigs() == nullptr)
    return;
  const std::vector<std::string> names = names_of_clusters_in_use([](cluster_id) { return true; });
  process_clusters_without_adaptive_clustering(names, static_cast<std::int32_t>(names.size()) - 1, database);
}

void class_contig_adapt_clust::process_clusters_without_adaptive_clustering(const std::vector<std::string> &names,
                                                                            std::int32_t n,
                                                                            class_DB_of_clones &database) {
  if (signif_->context().frame.process_is_running() || database.contigs() == nullptr)
    return;
  in_a_process("Test of given clusters", "Test of clusters is completed", database, [&](run_reports &reports) {
    given_clusters_loop(names, n, reports, database, [](std::int32_t, const cluster_test &) {});
  });
}

bool class_contig_adapt_clust::test_all_FPC_contigs(bool flag, const retained_path_options &options) {
  constexpr std::int32_t any_size = 5000, smallest = 2, any_width = 5000;
  main_parameters_set(any_size, smallest, any_width, 0, 0, false, 5, 5);
  if (flag)
    return process_clusters_without_adaptive_clustering_Retain_run(options);
  process_clusters_without_adaptive_clustering_all_run();
  return true;
}

void class_contig_adapt_clust::given_clusters_answers_set(std::optional<bool> use_maximal_subcluster,
                                                          std::optional<bool> increase_cutoff) {
  answers_ = {use_maximal_subcluster, increase_cutoff};
}

class_contig_adapt_clust::given_clusters_answers class_contig_adapt_clust::answers_of_given_clusters() {
  given_clusters_answers answers = answers_;
  question asked;
  asked.to_go_on = answer::no; // a yes changes what is tested
  asked.text = "Use maximal connected subcluster?";
  if (!answers.use_maximal_subcluster)
    answers.use_maximal_subcluster = signif_->context().frame.yes(asked);
  asked.text = "Increase cutoff to make cluster linear (for MTP selection)?";
  if (!answers.increase_cutoff)
    answers.increase_cutoff = signif_->context().frame.yes(asked);
  return answers;
}

void class_contig_adapt_clust::given_clusters_loop(
    const std::vector<std::string> &names, std::int32_t n, run_reports &reports, class_DB_of_clones &database,
    const std::function<void(std::int32_t, const cluster_test &)> &tested) {
  process_frame &frame = signif_->context().frame;
  const class_FPCto_import &registry = *database.contigs();
  const given_clusters_answers answers = answers_of_given_clusters();
  progress_of_whole in_tested_clusters(frame, clones_of(names, registry));
  reports.clones_in_MTP_details.line(header_of_MTP_details());
  for (std::int32_t i = 1; !stopped() && i <= n; ++i) {
    cluster_test test;
    test.name = names[static_cast<std::size_t>(i)];
    cluster_id id = 0;
    bool not_found = false;
    registry.search_for_cluster(test.name, id, not_found);
    if (not_found)
      continue;
    const std::int32_t n_clones = registry.n_clones_in_cluster_get(id);
    const bool shown = n_clones > 1 || i % stride_of_clones_alone == 0;
    if (shown)
      frame.step_text_set("test cluster --> " + std::to_string(i) + " of " + std::to_string(n) + ": " + test.name +
                          " " + std::to_string(n_clones) + " ...");
    // The number of clones stands where the level is expected, so that a ladder of several steps would be climbed to
    // its top: deliberate.
    test.level = n_clones;
    test.use_maximal_subcluster = *answers.use_maximal_subcluster;
    test.increase_cutoff = *answers.increase_cutoff;
    test_cluster(test, reports, database);
    if (!stopped()) {
      note_result(test, registry);
      tested(i, test);
      in_tested_clusters.add(n_clones);
    }
    if (shown)
      frame.control_text_set(std::to_string(i) + " contigs done.");
  }
  report_tested_clusters(reports);
}

void class_contig_adapt_clust::note_result(const cluster_test &test, const class_FPCto_import &registry) {
  if (test.id == 0)
    return;
  if (test.contig == nullptr) {
    result_.n_clones_alone += test.n_clones;
    return;
  }
  contig_summary summary;
  summary.name = test.name;
  summary.n_clones = test.n_clones;
  summary.length_bands = static_cast<std::int32_t>(registry.length_of_cluster_bands_get(test.id));
  summary.cutoff = test.cutoff;
  summary.width = test.width;
  summary.n_clones_MTP = test.contig->list_of_clones_MTP().count();
  summary.n_far = test.n_far;
  summary.is_contig = test.n_clones >= minimal_cluster_size_;
  summary.remark = row_of_test(test).remark;
  result_.clusters.push_back(std::move(summary));
}

} // namespace orb
