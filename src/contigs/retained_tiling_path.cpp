// Re-analysis of contigs with an older tiling path that is to be kept in use.
#include "contigs/retained_tiling_path.h"

#include <algorithm>

#include "contigs/class_contig_adapt_clust.h"
#include "contigs/contig_reports.h"
#include "frame/numbers.h"

namespace orb {

const char *MTP_preference_text(std::int16_t preference) {
  return preference == preferred_in_MTP ? "sequenced" : preference == allowed_in_MTP ? "old_MTP" : "unknown";
}

void retain_files::open(const process_frame &frame) {
  const auto opened = [&frame](const char *name) { return growing_file(frame.path_in_working_folder(name), true); };
  MTP_new = opened("\\list_of_clones_MTP_new.tsv");
  not_used = opened("\\list_of_clones_from_allow_to_use_not_used.tsv");
  overlaps = opened("\\old_MTP_all_overlaps_from_net.tsv");
  review = opened("\\table_for_Review.txt");
  // The header names a "CTG SIZE" for which the rows have no field: deliberate.
  review.line("BAC_ID\tCTG_ID\tSTART\tSTOP\tCTG SIZE\tBAC_#\tMTP_BAC_#\tcomment1\tcomment2");
  flush();
}

void retain_files::flush() {
  for (growing_file *file : {&MTP_new, &not_used, &overlaps, &review})
    file->flush();
}

void retain_files::close() {
  for (growing_file *file : {&MTP_new, &not_used, &overlaps, &review})
    file->close();
}

// ---- what is asked -------------------------------------------------------------------------------------------------

bool class_contig_adapt_clust::find_MTP_maximally_using_clones_from_list_make_index_inMTPpreference(
    const retained_path_options &options, std::vector<std::int16_t> &index_inMTPpreference, number_list &sequenced,
    number_list &allowed) {
  const metric_context &context = signif_->context();
  class_list_of_clones lists(context.frame, context.settings);
  const auto read = [&](std::filesystem::path file, const char *title, number_list &list) {
    if (file.empty())
      file = context.frame.open_file_dialog(title);
    std::int32_t count = 0;
    return !file.empty() && lists.run_reading_file_with_list_of_clones_rep(file, list, count, context.database);
  };
  if (!read(options.old_MTP, "Open file with old MTP", allowed))
    return false;
  sequenced.clear();
  if (!options.no_sequenced && !read(options.sequenced, "Open file with sequenced clones", sequenced))
    return false;
  for (const clone_number clone : sequenced.members())
    allowed.add(clone);
  if (!allowed.empty())
    lists.sort_list_of_clones_and_delete_repeats(allowed);
  index_inMTPpreference.assign(static_cast<std::size_t>(context.database.total_number_of_clones_get()) + 1,
                               no_MTP_preference);
  for (const clone_number clone : allowed.members())
    index_inMTPpreference[static_cast<std::size_t>(clone)] = allowed_in_MTP;
  for (const clone_number clone : sequenced.members())
    index_inMTPpreference[static_cast<std::size_t>(clone)] = preferred_in_MTP;
  return true;
}

static retained_clusters clusters_asked_for(process_frame &frame) {
  const std::string entry = frame.input({"What contigs to process?\r0 - All clusters in use\r"
                                         "1 - Only with allowed to use (old MTP) clones\r"
                                         "2 - Only with prefered to use (sequenced) clones",
                                         "", "1"});
  return entry == "0"   ? retained_clusters::all_in_use
         : entry == "2" ? retained_clusters::with_preferred
                        : retained_clusters::with_allowed;
}

// A clone that the contigs don't know is kept like one that is alone in a cluster.
void class_contig_adapt_clust::put_clones_alone_into_clusters(const number_list &allowed,
                                                              const std::vector<std::int16_t> &index,
                                                              retained_clusters wanted) {
  const class_DB_of_clones &database = signif_->context().database;
  class_FPCto_import &registry = *signif_->context().database.contigs();
  for (const clone_number clone : allowed.members())
    if (registry.clone_in_cluster_get(clone) == 0 &&
        index[static_cast<std::size_t>(clone)] >= static_cast<std::int16_t>(wanted))
      registry.add_new_cluster({clone}, "ctg_" + database.name_of_clone_get(clone), "", false);
  registry.add_new_cluster_finish();
}

bool class_contig_adapt_clust::process_clusters_without_adaptive_clustering_Retain_run(
    const retained_path_options &options) {
  const metric_context &context = signif_->context();
  if (context.frame.process_is_running() || context.database.contigs() == nullptr)
    return false;
  std::vector<std::int16_t> index;
  number_list sequenced, allowed;
  if (!find_MTP_maximally_using_clones_from_list_make_index_inMTPpreference(options, index, sequenced, allowed))
    return false;
  const retained_clusters wanted = options.clusters ? *options.clusters : clusters_asked_for(context.frame);
  put_clones_alone_into_clusters(allowed, index, wanted);
  const class_FPCto_import &registry = *context.database.contigs();
  std::vector<char> is_marked(static_cast<std::size_t>(registry.n_list_of_all_cluster_names_get()) + 1,
                              wanted == retained_clusters::all_in_use);
  if (wanted != retained_clusters::all_in_use)
    for (const clone_number clone : allowed.members())
      if (index[static_cast<std::size_t>(clone)] >= static_cast<std::int16_t>(wanted))
        is_marked[static_cast<std::size_t>(registry.clone_in_cluster_get(clone))] = 1;
  const std::vector<std::string> names =
      names_of_clusters_in_use([&](cluster_id id) { return is_marked[static_cast<std::size_t>(id)] != 0; });
  result_file selected(context.frame.path_in_working_folder("\\selected_contigs.txt"));
  for (std::size_t i = 1; i < names.size(); ++i)
    selected.line(names[i]);
  selected.commit();
  process_clusters_without_adaptive_clustering_Retain(names, static_cast<std::int32_t>(names.size()) - 1, index);
  return true;
}

// ---- the work ------------------------------------------------------------------------------------------------------

void class_contig_adapt_clust::process_clusters_without_adaptive_clustering_Retain(
    const std::vector<std::string> &names, std::int32_t n, const std::vector<std::int16_t> &index_inMTPpreference) {
  const metric_context &context = signif_->context();
  if (context.frame.process_is_running() || context.database.contigs() == nullptr)
    return;
  in_a_process(
      "Re-analysis of contigs", "Test of clusters is completed", context.database,
      [&](run_reports &reports) {
        context.frame.step_text_set("Test of given clusters");
        retain_files files;
        files.open(context.frame);
        given_clusters_loop(names, n, reports, context.database, [&](std::int32_t i, const cluster_test &test) {
          retain_in_contig(i, test, index_inMTPpreference, files);
        });
        files.close();
      },
      false);
}

// Places of the clones of `list` by where they lie on the axis: the first with the smallest left end, the first with
// the largest right end.
static std::pair<std::int32_t, std::int32_t> outermost_clones(const class_contig_analysis &contig,
                                                              const number_list &list) {
  std::int32_t leftmost = 1, rightmost = 1;
  for (std::int32_t i = 2; i <= list.count(); ++i) {
    if (contig.clone_coor_left_get(list(i)) < contig.clone_coor_left_get(list(leftmost)))
      leftmost = i;
    if (contig.clone_coor_right_get(list(i)) > contig.clone_coor_right_get(list(rightmost)))
      rightmost = i;
  }
  return {leftmost, rightmost};
}

void class_contig_adapt_clust::find_MTP_maximally_using_clones_from_list(
    const class_contig_analysis &contig, const std::vector<std::int16_t> &index_inMTPpreference, number_list &MTP,
    number_list &not_used, growing_file *file, bool &unlinked) {
  const metric_context &context = signif_->context();
  number_list list; // the contig's clones that may be used, in list order
  for (const clone_number clone : contig.list_of_clones().members())
    if (index_inMTPpreference[static_cast<std::size_t>(clone)] > no_MTP_preference)
      list.add(clone);
  number_list path; // places in `list`
  // Without coordinates (a cluster that isn't connected, or too large) no clone is known to lie outermost, and no path
  // can be chosen: as if it were unlinked.
  if (!list.empty() && contig.clone_coor_known_get()) {
    class_net net;
    number_list place_of_vertex, preferred, vertices;
    signif_->create_net_general_run(list, contig.rule(), net, place_of_vertex);
    const auto [leftmost, rightmost] = outermost_clones(contig, list);
    vertex_number start = 0, end = 0;
    for (vertex_number v = 1; v <= place_of_vertex.count(); ++v) {
      const std::int32_t place = place_of_vertex(v);
      start = place == leftmost ? v : start;
      end = place == rightmost ? v : end;
      if (index_inMTPpreference[static_cast<std::size_t>(list(place))] == preferred_in_MTP)
        preferred.add(v);
    }
    net.find_path_maximally_using_vertices_from_list(context.frame, contig.rule().cutoff, start, end, preferred,
                                                     vertices, false);
    for (const vertex_number v : vertices.members())
      path.add(place_of_vertex(v));
  }
  unlinked = path.empty();
  if (unlinked)
    path = number_list::range(1, list.count());
  std::vector<char> on_path(static_cast<std::size_t>(list.count()) + 1, 0);
  MTP.clear();
  for (const std::int32_t place : path.members()) {
    MTP.add(list(place));
    on_path[static_cast<std::size_t>(place)] = 1;
  }
  not_used.clear();
  for (std::int32_t place = 1; place <= list.count(); ++place)
    if (on_path[static_cast<std::size_t>(place)] == 0)
      not_used.add(list(place));
  if (file != nullptr)
    print_coordinates_of_selected_clones_for_Retain(contig, list, index_inMTPpreference, *file, MTP,
                                                    contig.rule().cutoff, unlinked);
}

// ---- the tables ----------------------------------------------------------------------------------------------------

namespace {

struct retained_contig {
  std::int32_t i; // number of the cluster in the run
  const class_contig_analysis &contig;
  const class_DB_of_clones &database;
  const std::vector<std::int16_t> &index;
  number_list MTP{}, not_used{};
  bool unlinked = false;
};

std::string coordinates_text(const class_contig_analysis &contig, clone_number clone) {
  return std::to_string(contig.clone_coor_left_get(clone)) + '\t' + std::to_string(contig.clone_coor_right_get(clone));
}

// i, cluster, k, clone number and name, its preference, its coordinates.
std::string clone_fields(const retained_contig &found, std::int32_t k, clone_number clone) {
  return std::to_string(found.i) + '\t' + found.contig.cluster_name_get() + '\t' + std::to_string(k) + '\t' +
         std::to_string(clone) + '\t' + found.database.name_of_clone_get(clone) + '\t' +
         MTP_preference_text(found.index[static_cast<std::size_t>(clone)]) + '\t' +
         coordinates_text(found.contig, clone);
}

// Band counts of the previous clone and of this one, and their common bands; "-" where there is no step.
std::string step_fields(const retained_contig &found, std::int32_t k) {
  const clone_number clone = found.MTP(k);
  if (k == 1 || found.unlinked)
    return std::to_string(found.database.number_of_bands_in_clone_get(clone)) + "\t-\t-" +
           (found.unlinked ? "\told MTP is unlinked" : "");
  std::int32_t n_previous = 0, n_this = 0;
  double common = 0;
  found.database.number_of_band_overlaps_fast_tolr_index1(found.MTP(k - 1), clone, n_previous, n_this, common,
                                                          found.database.tollerance_get());
  return std::to_string(n_previous) + '\t' + std::to_string(n_this) + '\t' +
         std::to_string(static_cast<std::int32_t>(common));
}

std::string review_line(const retained_contig &found, std::int32_t k) {
  const clone_number clone = found.MTP(k);
  std::string line = found.database.name_of_clone_get(clone) + '\t' + found.contig.cluster_name_get() + '\t' +
                     coordinates_text(found.contig, clone) + '\t' +
                     std::to_string(found.contig.n_list_of_clones_get()) + '\t' + std::to_string(found.MTP.count());
  if (found.index[static_cast<std::size_t>(clone)] < preferred_in_MTP) {
    line += "\tnew";
    if (k >= 2 && k < found.MTP.count())
      line += "\tinternal";
  }
  return line;
}

void print_retained(const retained_contig &found, retain_files &files) {
  const std::string summary = std::to_string(found.i) + '\t' + found.contig.cluster_name_get() + '\t' +
                              std::to_string(found.MTP.count()) + '\t' + std::to_string(found.not_used.count());
  files.MTP_new.line(summary);
  files.not_used.line(summary);
  for (std::int32_t k = 1; k <= found.not_used.count(); ++k)
    files.not_used.line(clone_fields(found, k, found.not_used(k)));
  for (std::int32_t k = 1; k <= found.MTP.count(); ++k) {
    files.MTP_new.line(clone_fields(found, k, found.MTP(k)) + '\t' + step_fields(found, k));
    files.review.line(review_line(found, k));
  }
  files.flush();
}

} // namespace

void class_contig_adapt_clust::retain_in_contig(std::int32_t i, const cluster_test &test,
                                                const std::vector<std::int16_t> &index, retain_files &files) {
  const metric_context &context = signif_->context();
  std::shared_ptr<class_contig_analysis> contig = test.contig;
  if (contig == nullptr) { // a clone alone isn't analysed by the test, but may be one to be kept
    contig = std::make_shared<class_contig_analysis>(*signif_, rule_of_level(test.level));
    contig->cluster_name_set(test.name);
    number_list list;
    context.database.contigs()->list_of_clones_get(test.id, list);
    contig->list_of_clones_set(list, list.count());
    contig->contig_topology_analyse_and_MTP_and_ordering_without_TSP();
  }
  retained_contig found{i, *contig, context.database, index};
  const std::size_t finished = files.overlaps.length();
  find_MTP_maximally_using_clones_from_list(*contig, index, found.MTP, found.not_used, &files.overlaps, found.unlinked);
  if (stopped()) {
    files.overlaps.back_to(finished);
    return;
  }
  print_retained(found, files);
  files.flush();
  if (files_.drawings && test.contig != nullptr)
    draw_retained_MTP(*contig, found.MTP, found.not_used, files_.drawing);
}

void print_coordinates_of_selected_clones_for_Retain(const class_contig_analysis &contig, const number_list &list,
                                                     const std::vector<std::int16_t> &index, growing_file &file,
                                                     const number_list &MTP, double cutoff, bool unlinked) {
  const class_DB_of_clones &database = contig.context().database;
  process_frame &frame = contig.context().frame;
  const class_net &net = contig.signif().net();
  std::vector<std::pair<clone_number, std::int32_t>> places; // of the clones in the list
  for (std::int32_t i = 1; i <= list.count(); ++i)
    places.emplace_back(list(i), i);
  std::sort(places.begin(), places.end());
  const auto place_of = [&places](clone_number clone) { // 0: not in the list
    const auto found = std::lower_bound(places.begin(), places.end(), std::pair(clone, 0));
    return found != places.end() && found->first == clone ? found->second : 0;
  };
  std::vector<char> on_MTP(places.size() + 1, 0);
  for (const clone_number clone : MTP.members())
    on_MTP[static_cast<std::size_t>(place_of(clone))] = 1;
  const auto block = [&](clone_number clone) {
    return std::to_string(clone) + '\t' + database.name_of_clone_get(clone) + '\t' +
           (index[static_cast<std::size_t>(clone)] == preferred_in_MTP ? "sequenced" : "") + '\t' +
           (on_MTP[static_cast<std::size_t>(place_of(clone))] != 0 ? "MTP" : "") + '\t' +
           std::to_string(database.number_of_bands_in_clone_get(clone)) + '\t' + coordinates_text(contig, clone) + '\t';
  };
  std::vector<std::pair<std::int32_t, double>> joined; // place in the list, value of the overlap
  std::int64_t k = 0;
  for (std::int32_t i = 1; i <= list.count() && frame.goes_on(); ++i) {
    joined.clear();
    if (list(i) <= net.number_of_vertices_get())
      for (const net_edge &edge : net.edges_of_vertex(list(i)))
        if (const std::int32_t j = place_of(edge.neighbour); j > 0)
          joined.emplace_back(j, edge.value);
    std::sort(joined.begin(), joined.end());
    const std::string start = std::to_string(i) + '\t' + contig.cluster_name_get() + '\t' +
                              contig.cluster_name_long_get() + '\t' + std::to_string(contig.list_of_clones().count()) +
                              '\t' + number_text(cutoff, 2) + '\t';
    for (const auto &[j, value] : joined) {
      std::int32_t n_1 = 0, n_2 = 0;
      double common = 0;
      database.number_of_band_overlaps_fast_tolr_index1(list(i), list(j), n_1, n_2, common, database.tollerance_get());
      file.line(start + std::to_string(++k) + '\t' + block(list(i)) + block(list(j)) +
                std::to_string(static_cast<std::int32_t>(common)) + '\t' + number_text(value, 2) + '\t' +
                (value >= cutoff ? "Signif" : "NonSignif") + (unlinked ? "\told MTP from ctg is Unlinked" : ""));
    }
  }
}

} // namespace orb
