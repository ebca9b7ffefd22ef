#include "contigs/net_of_clusters.h"

#include "clustering/class_clustering.h"
#include "database/class_clone_serv.h"
#include "drawing/plain_net_drawing.h"
#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/text_lines.h"

namespace orb {

namespace {

constexpr const char *caption_of_united = "ClusteringNew";

// The clones of one list file get the cluster. False when it is no text.
bool read_cluster(const metric_context &context, const std::filesystem::path &file, std::int32_t cluster,
                  number_list &cluster_of) {
  process_frame &frame = context.frame;
  const project_settings &settings = context.settings;
  line_reader lines(file);
  std::string_view line;
  while (lines.next(line)) {
    if (!is_line_of_text(frame, lines, line))
      return false;
    const std::string_view text = trimmed(line);
    if (text.empty())
      continue;
    const std::string name = class_clone_serv::extract_clone_name(text, settings.clone_name_format_input,
                                                                  settings.clone_name_format_output, settings);
    const clone_number clone = context.database.clone_number_get(name);
    if (clone >= 1)
      cluster_of(clone) = cluster;
    else
      frame.alarm("Unknown clone '" + name + "' (line " + std::to_string(lines.line_number()) + ") in file " +
                  file.string());
  }
  return true;
}

// Names of clusters, and the clones that have one. False when stopped or refused.
bool read_clusters(const metric_context &context, const std::filesystem::path &folder, net_of_clusters &result) {
  process_frame &frame = context.frame;
  if (!context.database.clone_name_sorted_is_created_get())
    context.database.sort_clones_by_name(frame);
  number_list cluster_of;
  cluster_of.resize(context.database.total_number_of_clones_get());
  result.names.assign(1, {});
  for (const std::string &name : class_serv_raznoe::create_ordered_list_of_files_in_folder(folder, "txt")) {
    result.names.push_back(class_serv_raznoe::extract_pure_file_name(name));
    frame.local_process_text_set(name);
    if (frame.stop_requested_get() ||
        !read_cluster(context, folder / name, static_cast<std::int32_t>(result.names.size()) - 1, cluster_of))
      return false;
  }
  for (clone_number clone = 1; clone <= cluster_of.count(); ++clone)
    if (cluster_of(clone) >= 1) {
      result.clones.add(clone);
      result.cluster_of_clone.add(cluster_of(clone));
    }
  return true;
}

std::filesystem::path save_in_text(process_frame &frame, const class_net &net, const std::vector<std::string> &names,
                                   const std::string &file_name) {
  const auto file = frame.path_in_working_folder(file_name);
  net.save_net_in_text(names, file);
  return file;
}

// The united clusters as sets of the old clusters, by their names.
void print_as_clusters(const metric_context &context, const net_of_clusters_options &options,
                       const net_of_clusters &result) {
  const std::int32_t n = result.united_of_cluster.count();
  class_clustering clustering(context.frame, context.settings);
  // A folder of its own: both are made within a second, and names of lists are alike.
  clustering.clustering_start_no_metric(std::string(caption_of_united) + "_of_clusters_", n, {});
  clustering.elements_are_clones_set(false);
  clustering.name_of_element_resize(n);
  for (std::int32_t c = 1; c <= n; ++c)
    clustering.name_of_element_set(c, result.names[static_cast<std::size_t>(c)]);
  clustering.cluster_number_for_all_elements_set(result.united_of_cluster);
  std::int32_t min_size = options.min_size;
  clustering.print_clusters_run(options.caption, min_size);
}

// The same as lists of clones. A united cluster without clones isn't printed, and those behind it move up.
void print_as_clones(const metric_context &context, const net_of_clusters_options &options, net_of_clusters &result) {
  number_list sizes, new_number, cluster_of;
  sizes.resize(result.n_united);
  new_number.resize(result.n_united);
  for (const std::int32_t c : result.cluster_of_clone.members())
    ++sizes(result.united_of_cluster(c));
  std::int32_t n_used = 0;
  for (std::int32_t c = 1; c <= result.n_united; ++c)
    new_number(c) = sizes(c) > 0 ? ++n_used : 0;
  for (const std::int32_t c : result.cluster_of_clone.members())
    cluster_of.add(new_number(result.united_of_cluster(c)));
  class_clustering clustering(context.frame, context.settings, &context.database);
  clustering.clustering_start_no_metric(caption_of_united, result.clones.count(), result.clones);
  clustering.cluster_number_for_all_elements_set(cluster_of);
  clustering.name_of_cluster_resize(n_used);
  result.united_names.assign(1, {});
  for (std::int32_t c = 1; c <= result.n_united; ++c) {
    result.united_names.push_back(class_clustering::auto_cluster_name(caption_of_united, c, sizes(c)));
    if (new_number(c) > 0)
      clustering.name_of_cluster_set(new_number(c), result.united_names.back());
  }
  std::int32_t min_size = options.min_size;
  clustering.print_clusters_run(options.caption, min_size);
}

} // namespace

std::filesystem::path net_of_clusters_to_pajek(process_frame &frame, const class_net &net,
                                               const std::vector<std::string> &names, const std::string &suffix) {
  constexpr int decimals = 1;
  const auto file = frame.path_in_working_folder("\\NetOfClusters" + suffix + ".net");
  plain_net_to_pajek(frame, net, names, decimals, "NetOfClusters", file);
  return file;
}

void unite_clusters_along_liniar_parts(const metric_context &context, const net_of_clusters_options &options,
                                       net_of_clusters &result) {
  process_frame &frame = context.frame;
  number_list degree;
  result.net.find_and_unite_liniar_parts_of_net(frame, result.united_of_cluster, result.n_united, degree);
  print_as_clusters(context, options, result);
  print_as_clones(context, options, result);
  result.net.create_factor_net(result.united_of_cluster, result.n_united, result.united_net);
  result.files_written.push_back(save_in_text(frame, result.united_net, result.united_names, "\\net2.txt"));
  result.files_written.push_back(net_of_clusters_to_pajek(frame, result.united_net, result.united_names, "AutoMerg"));
}

bool create_net_of_clusters(class_clone_net_signif &signif, const overlap_rule &rule,
                            const net_of_clusters_options &options, net_of_clusters &result) {
  const metric_context &context = signif.context();
  process_frame &frame = context.frame;
  result = {};
  const std::filesystem::path file =
      options.any_file.empty() ? frame.open_file_dialog("Open any file from the folder") : options.any_file;
  if (file.empty())
    return false;
  const std::filesystem::path of_file = file.parent_path().empty() ? "." : file.parent_path();
  frame.process_start("Net of clusters");
  if (!read_clusters(context, std::filesystem::is_directory(file) ? file : of_file, result)) {
    if (frame.stop_requested_get())
      frame.process_stopped_manually();
    else
      frame.process_aborted();
    return false;
  }
  class_net net;
  number_list net_list; // the list is ascending, so that vertex v is its member v
  signif.create_net_general(result.clones, result.clones.count(), rule.distance_index, rule.cutoff, rule.burying, net,
                            net_list);
  if (!frame.goes_on()) {
    frame.process_stopped_manually();
    return false;
  }
  net.create_factor_net(result.cluster_of_clone, static_cast<std::int32_t>(result.names.size()) - 1, result.net);
  result.files_written.push_back(save_in_text(frame, result.net, result.names, "\\net1.txt"));
  result.files_written.push_back(net_of_clusters_to_pajek(frame, result.net, result.names, ""));
  unite_clusters_along_liniar_parts(context, options, result);
  if (frame.stop_requested_get()) {
    frame.process_stopped_manually();
    return false;
  }
  frame.all_panels_reset();
  return true;
}

} // namespace orb
