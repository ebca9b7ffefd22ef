// The single analyses of a list of clones.
#include "contigs/class_contig_process.h"

#include <array>

#include "clustering/class_clustering.h"
#include "contigs/list_axis.h"
#include "database/class_markers.h"
#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "lists/class_list_of_clones.h"
#include "ordering/class_map_of_bands4.h"

namespace orb {

namespace fs = std::filesystem;

// ---- tables --------------------------------------------------------------------------------------------------------

bool class_contig_process::print_consecuent(const number_list &list, const std::string &start, const std::string &name,
                                            const fs::path &folder, std::vector<std::int32_t> &gaps) {
  const metric_context &context = signif_->context();
  files_written_.push_back(folder / (start + name + ".txt"));
  return class_list_of_clones(context.frame, context.settings)
      .print_consecuent_dist(list.count(), list, name, files_written_.back(), gaps, true, rule_, context);
}

bool class_contig_process::print_all_pairs(const number_list &list, const std::string &name, const fs::path &folder) {
  const metric_context &context = signif_->context();
  files_written_.push_back(folder / ("All_dist_" + name + ".txt"));
  const pairs_of_table pairs = !inputs_.from_net_only   ? pairs_of_table::ask
                               : *inputs_.from_net_only ? pairs_of_table::from_net_only
                                                        : pairs_of_table::all;
  return class_list_of_clones(context.frame, context.settings)
      .print_all_dist(list, name, files_written_.back(), rule_, context, &signif_->net(), pairs);
}

void class_contig_process::print_markers(const number_list &list, const std::string &name, const fs::path &folder) {
  const metric_context &context = signif_->context();
  if (context.database.markers().total_number_of_markers_get() == 0)
    return;
  files_written_.push_back(folder / ("Consec_markers_" + name + ".txt"));
  context.database.markers().print_marker_presence_for_list_of_clones(context.frame, context.database, list,
                                                                      list.count(), files_written_.back(), name);
}

// ---- order ---------------------------------------------------------------------------------------------------------

bool class_contig_process::detail_control_of_clone_ordering(const number_list &list, const std::string &name,
                                                            const fs::path &folder, gap_table &gaps) {
  return print_consecuent(list, "Consec_dist_", name, folder, gaps[0]) &&
         (!options_.option_JK_ordering || order_clones(list, name, folder, gaps));
}

bool class_contig_process::order_clones(const number_list &list, const std::string &name, const fs::path &folder,
                                        gap_table &gaps) {
  ordering_task task;
  task.list = list;
  task.name = name;
  task.rule = rule_;
  task.flag = false; // the consensus and solution files
  task.folder = folder;
  task.number = static_cast<std::uint64_t>(n_lists_);
  if (!find_axis(*signif_, task))
    return false;
  class_clone_ord_and_verif orderer(signif_->context(), &signif_->net(), ordering_);
  std::vector<ordering_work> works;
  if (!orderer.compute_all(std::span(&task, 1), works))
    return false;
  fs::path file;
  orderer.write(works.front(), file);
  files_written_.push_back(file);
  number_list initial, ordered;
  class_clone_ord_and_verif::create_list_of_clones_after_ordering(
      list, list.count(), works.front().clone_is_not_excluded, class_clone_ord_and_verif::order_of(works.front()),
      initial, ordered);
  return print_consecuent(initial, "Consec_dist_NoBuriedInit_", name, folder, gaps[1]) &&
         print_consecuent(ordered, "Consec_dist_NoBuriedORB_", name, folder, gaps[2]);
}

// ---- drawings ------------------------------------------------------------------------------------------------------

bool class_contig_process::draw_marked(const number_list &list, const std::string &name) {
  const metric_context &context = signif_->context();
  class_list_of_clones lists(context.frame, context.settings);
  number_list mark_1, mark_2;
  const auto read = [&](fs::path file, const char *title, number_list &mark) {
    if (file.empty())
      file = context.frame.open_file_dialog(title);
    std::string ignored;
    return !file.empty() && lists.run_reading_file_with_list_of_clones(file, mark, ignored, context.database);
  };
  if ((options_.option_mark_MTP || options_.option_mark_two_lists) &&
      !read(inputs_.mark_1, "Open file with first list of marked clones", mark_1))
    return false;
  if (options_.option_mark_two_lists && !read(inputs_.mark_2, "Open file with second list of marked clones", mark_2))
    return false;
  class_clone_net_draw draw(*signif_, rule_);
  drawing_options panel = drawing_;
  panel.nets_for_cutoffs = panel.nets_for_cutoffs || options_.option_several_metrics;
  draw.options_set(panel);
  const bool drawn = draw.quick_run_two_lists_of_marking(list, name, context.frame.working_folder_get(), rule_.burying,
                                                         -1, mark_1, mark_2);
  files_written_.insert(files_written_.end(), draw.files_written().begin(), draw.files_written().end());
  return drawn;
}

bool class_contig_process::draw_of_folder(const number_list &list, const std::string &name, const fs::path &folder,
                                          const topology &found) {
  class_clone_net_draw draw(*signif_, rule_);
  draw.options_set(drawing_);
  const number_list none;
  return draw.quick_run(list, name, folder, rule_.burying, -1, options_.option_mark_MTP ? found.MTP : none) &&
         draw.quick_run_two_lists_of_marking(list, "MTP_" + name, folder, rule_.burying, -1, found.MTP, found.far);
}

// ---- clusters and neighbours ---------------------------------------------------------------------------------------

bool class_contig_process::cluster(const number_list &list, const std::string &name) {
  const metric_context &context = signif_->context();
  class_clustering clustering(context.frame, context.settings, &context.database);
  clustering.clustering_start(list.count(), list, name, rule_.distance_index, rule_.cutoff, rule_.burying);
  if (options_.option_read_clustering) {
    if (!(inputs_.clusters.empty() ? clustering.read_clusterization()
                                   : clustering.read_clusterization(inputs_.clusters)))
      return false;
  } else if (options_.option_clusterization_test) {
    class_clone_dist_my metric(context, &signif_->net());
    metric.net_private_parameters_set_interface(rule_);
    clustering.clusterization_slow(true, metric); // prints the clusters too
    files_written_.push_back(context.frame.path_in_working_folder("\\test_clustering.txt"));
    return goes_on();
  } else {
    clustering.run_clusterization_fast(*signif_);
  }
  if (!goes_on())
    return false;
  fs::path folder;
  std::string caption;
  std::int32_t min_size = -1;
  clustering.print_clusters(min_size, false, "", true, true, folder, caption);
  files_written_.push_back(folder);
  return true;
}

// How many pairs of a vertex's neighbours are joined themselves.
static std::int64_t joined_neighbours(const class_net &net, vertex_number v, position_table &is_neighbour) {
  is_neighbour.start(net.number_of_vertices_get());
  for (const net_edge &edge : net.edges_of_vertex(v))
    is_neighbour.set(edge.neighbour, 1);
  std::int64_t n = 0;
  for (const net_edge &edge : net.edges_of_vertex(v))
    for (const net_edge &further : net.edges_of_vertex(edge.neighbour))
      n += further.neighbour > edge.neighbour && is_neighbour.has(further.neighbour);
  return n;
}

// A clone of a linear contig has neighbours that hang together without it: those on its left are joined to those on its
// right by the ones between them. Where they fall apart it may be a chimera, or a lonely bridge.
bool class_contig_process::map_bands(const number_list &list, bool simulated) {
  const metric_context &context = signif_->context();
  const fs::path folder = context.frame.working_folder_get();
  const band_map_clones clones = band_map_clones_of(context.database, list);
  band_map_options options;
  options.seed = context.settings.seed;
  class_map_of_bands4 map(context.frame, options);
  if (simulated) {
    band_map_simulation wanted;
    wanted.seed = context.settings.seed;
    band_map_quality quality;
    if (!map.simulate_make_all_work(numbers_of_bands(clones), clones.metric, wanted, folder, quality))
      return false;
    files_written_.push_back(folder / "band_map_simulation.txt");
  } else if (!map.make_all_work(clones, folder)) {
    return false;
  }
  for (const std::string &name : map.names_of_files())
    files_written_.push_back(folder / name);
  return true;
}

void class_contig_process::topology_comparison(const number_list &list, const std::string &name) {
  constexpr std::int32_t n_ranks = 2, vertices_between_looks = 1000;
  const metric_context &context = signif_->context();
  class_net net;
  number_list position;
  signif_->create_net_general_run(list, rule_, net, position);
  const fs::path path = context.frame.path_in_working_folder("\\Topology_" + name + ".txt");
  result_file file(path);
  file.line("clone\tneighbours\tjoined_pairs\tparts_1\tparts_2\tverdict");
  net_workspace workspace;
  position_table is_neighbour;
  std::vector<std::int32_t> n_in_rank;
  for (vertex_number v = 1; v <= net.number_of_vertices_get(); ++v) {
    const std::int64_t n = net.number_of_edges_for_vertex_total_get(v);
    std::array<std::int32_t, n_ranks> parts{};
    for (std::int32_t rank = 1; rank <= n_ranks; ++rank)
      net.vertex_net_characteristics(v, false, 0, n_in_rank, parts[static_cast<std::size_t>(rank) - 1], rank,
                                     workspace);
    const double share = n > 1 ? static_cast<double>(joined_neighbours(net, v, is_neighbour)) /
                                     (static_cast<double>(n) * static_cast<double>(n - 1) / 2)
                               : 0;
    const char *verdict = n == 0 ? "alone" : parts[1] > 2 ? "branch" : parts[1] > 1 ? "bridge" : "";
    n_doubtful_ += parts[1] > 1;
    file.line(context.database.name_of_clone_get(list(position(v))) + '\t' + std::to_string(n) + '\t' +
              number_text(share, 2) + '\t' + std::to_string(parts[0]) + '\t' + std::to_string(parts[1]) + '\t' +
              verdict);
    if (v % vertices_between_looks == 0 && !context.frame.goes_on())
      return;
  }
  file.commit();
  files_written_.push_back(path);
}

// ---- a list of a folder --------------------------------------------------------------------------------------------

class_contig_process::topology class_contig_process::contig_topology_and_MTP(const number_list &list,
                                                                             const std::string &name,
                                                                             const fs::path &folder) {
  const metric_context &context = signif_->context();
  contig_shape shape;
  signif_->contigomer(list, rule_, shape);
  topology found;
  found.radius = shape.radius;
  found.diam = shape.diameter;
  found.width = shape.width;
  if (shape.width >= 0) // without that the path holds no more than a clone to begin with
    for (const std::int32_t position : shape.path.members())
      found.MTP.add(list(position));
  for (const std::int32_t position : shape.far.members())
    found.far.add(list(position));
  found.important = found.MTP;
  for (const clone_number clone : found.far.members())
    found.important.add(clone);
  class_list_of_clones lists(context.frame, context.settings);
  lists.print_list_of_clones(found.MTP, folder / ("MTP_" + name + ".txt"), context.database);
  if (!found.far.empty())
    lists.print_list_of_clones(found.far, folder / ("far_from_MTP_" + name + ".txt"), context.database);
  return found;
}

// Which gaps are told goes by the family of the pair tables, as in the report lines of contigs.
static std::vector<std::size_t> gap_entries(const project_settings &settings) {
  const std::int16_t family = settings.table_format_column_subset;
  if (family >= 0 && family <= 2)
    return {2, 6};
  return family == 3 ? std::vector<std::size_t>{4} : std::vector<std::size_t>{};
}

std::string class_contig_process::header_of_report() const {
  const std::size_t n = gap_entries(signif_->context().settings).size();
  const auto fields = [n](const std::string &word) {
    return (n > 0 ? word + '\t' : "") + (n > 1 ? word + "_m\t" : "");
  };
  std::string header = "i\tcontig\tclones\t" + fields("gaps") + "radius\tdiam\twidth\t" + fields("gaps_our");
  header.pop_back();
  return header;
}

std::string class_contig_process::gaps_of_column(const gap_table &gaps, std::size_t column) const {
  std::string text;
  for (const std::size_t entry : gap_entries(signif_->context().settings))
    text += (entry < gaps[column].size() ? std::to_string(gaps[column][entry]) : "0") + '\t';
  return text;
}

bool class_contig_process::process_file_with_contig(const fs::path &path, const fs::path &folder, std::int32_t i,
                                                    growing_file &report, growing_file &MTPs,
                                                    growing_file &MTP_plus_far) {
  const metric_context &context = signif_->context();
  class_list_of_clones lists(context.frame, context.settings);
  number_list list;
  std::string name;
  if (!lists.run_reading_file_with_list_of_clones(path, list, name, context.database))
    return false;
  gap_table gaps(n_gap_columns);
  if (options_.option_test_of_all_dist && !print_all_pairs(list, name, folder))
    return false;
  if (options_.option_test_of_ordering || options_.option_test_of_all_dist)
    print_markers(list, name, folder);
  const topology found = contig_topology_and_MTP(list, name, folder);
  if (options_.option_test_of_ordering && !print_consecuent(found.MTP, "Consec_dist_MTP_", name, folder, gaps[3]))
    return false;
  if (options_.option_nets_for_cutoffs && !draw_of_folder(list, name, folder, found))
    return false;
  if ((options_.option_test_of_ordering || options_.option_JK_ordering) &&
      !detail_control_of_clone_ordering(list, name, folder, gaps))
    return false;
  std::string row = std::to_string(i) + '\t' + name + '\t' + std::to_string(list.count()) + '\t' +
                    gaps_of_column(gaps, 0) + std::to_string(found.radius) + '\t' + std::to_string(found.diam) + '\t' +
                    std::to_string(found.width) + '\t' + gaps_of_column(gaps, 2);
  row.pop_back();
  report.line(row);
  for (const clone_number clone : found.MTP.members())
    MTPs.line(context.database.name_of_clone_get(clone));
  for (const clone_number clone : found.important.members())
    MTP_plus_far.line(context.database.name_of_clone_get(clone));
  return true;
}

} // namespace orb
