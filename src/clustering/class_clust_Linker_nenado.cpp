#include "clustering/class_clust_Linker_nenado.h"

#include <algorithm>
#include <tuple>

#include "frame/files.h"
#include "frame/numbers.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

constexpr std::int32_t merges_between_checks = 1000;
constexpr std::int32_t size_to_sample = 1000;         // of the first of two clusters
constexpr std::int64_t pairs_compared_fully = 100000; // of two clusters
constexpr std::int32_t sampled_partner = 100;         // one of so many
constexpr std::int32_t clusters_between_reports = 20;

} // namespace

bool class_clust_Linker_nenado::link_in_queue::operator<(const link_in_queue &other) const {
  // of equal links the one of the lowest clusters comes first
  return std::tuple(value, -a, -b) < std::tuple(other.value, -other.a, -other.b);
}

number_list class_clust_Linker_nenado::clones_of(std::int32_t c) const {
  number_list clones;
  for (const std::int32_t element : clusters_[static_cast<std::size_t>(c)].elements)
    clones.add(list_(element));
  return clones;
}

void class_clust_Linker_nenado::note_link(std::int32_t a, std::int32_t b, double value) {
  if (value < rule_.cutoff)
    return;
  for (const auto &[from, to] : {std::pair{a, b}, std::pair{b, a}}) {
    double &link = clusters_[static_cast<std::size_t>(from)].links.try_emplace(to, value).first->second;
    link = std::max(link, value);
  }
}

void class_clust_Linker_nenado::links_of_net() {
  const class_net &net = signif_->net();
  std::vector<std::int32_t> cluster_of(static_cast<std::size_t>(net.number_of_vertices_get()) + 1, 0);
  for (std::size_t c = 1; c < clusters_.size(); ++c)
    for (const std::int32_t element : clusters_[c].elements)
      cluster_of[static_cast<std::size_t>(list_(element))] = static_cast<std::int32_t>(c);
  for (vertex_number v = 1; v <= net.number_of_vertices_get(); ++v)
    for (const net_edge &edge : net.edges_of_vertex(v)) {
      const std::int32_t a = cluster_of[static_cast<std::size_t>(v)],
                         b = cluster_of[static_cast<std::size_t>(edge.neighbour)];
      if (a > 0 && b > a)
        note_link(a, b, edge.value);
    }
}

double class_clust_Linker_nenado::best_link(const number_list &clones_1, const number_list &clones_2,
                                            class_clone_dist_my &metric) {
  const bool is_sampled =
      clones_1.count() > size_to_sample || std::int64_t{clones_1.count()} * clones_2.count() > pairs_compared_fully;
  const std::int32_t step = is_sampled ? sampled_partner : 1;
  double best = 0;
  for (const clone_number a : clones_1.members())
    for (std::int32_t k = 1; k <= clones_2.count(); k += step)
      best = std::max(best, metric.my_cutoff(a, clones_2(k)));
  return best;
}

bool class_clust_Linker_nenado::compare_pairs() {
  process_frame &frame = signif_->context().frame;
  class_clone_dist_my metric(signif_->context(), nullptr);
  metric.net_private_parameters_set_interface(rule_);
  metric.use_net_set(false);
  const auto n = static_cast<std::int32_t>(clusters_.size()) - 1;
  for (std::int32_t a = 1; a <= n; ++a) {
    const number_list clones_1 = clones_of(a);
    for (std::int32_t b = a + 1; b <= n; ++b) {
      const number_list clones_2 = clones_of(b);
      note_link(a, b, best_link(clones_1, clones_2, metric));
      if (b % clusters_between_reports != 0)
        continue;
      frame.local_process_text_set(std::to_string(a) + " (" + std::to_string(clones_1.count()) + ") with " +
                                   std::to_string(b) + " (" + std::to_string(clones_2.count()) + ")");
      if (frame.stop_requested_get())
        return false;
    }
  }
  return frame.goes_on();
}

bool class_clust_Linker_nenado::find_links() {
  process_frame &frame = signif_->context().frame;
  frame.step_text_set("initial connections");
  if (use_net_)
    links_of_net();
  else if (!compare_pairs())
    return false;
  frame.step_text_set("initial complited");
  return frame.goes_on();
}

void class_clust_Linker_nenado::control_of_sum() const {
  std::size_t sum = 0;
  for (const cluster &one : clusters_)
    sum += one.elements.size();
  if (sum != static_cast<std::size_t>(list_.count()))
    signif_->context().frame.program_end_now("control_of_sum: " + std::to_string(sum) +
                                             " =/= " + std::to_string(list_.count()));
}

// Both are closed and empty from here on; the new cluster takes over their links, the stronger one where both had one.
void class_clust_Linker_nenado::merge(std::int32_t a, std::int32_t b, double value, std::vector<link_in_queue> &queue) {
  const auto made = static_cast<std::int32_t>(clusters_.size());
  clusters_.emplace_back();
  cluster &united = clusters_.back();
  united.cutoff = value;
  for (const std::int32_t part : {a, b}) {
    cluster &old = clusters_[static_cast<std::size_t>(part)];
    united.elements.insert(united.elements.end(), old.elements.begin(), old.elements.end());
    for (const auto &[other, link] : old.links) {
      clusters_[static_cast<std::size_t>(other)].links.erase(part);
      if (other == a || other == b)
        continue;
      double &kept = united.links.try_emplace(other, link).first->second;
      kept = std::max(kept, link);
    }
    old = {};
    old.is_closed = true;
  }
  std::sort(united.elements.begin(), united.elements.end());
  for (const auto &[other, link] : united.links) {
    clusters_[static_cast<std::size_t>(other)].links[made] = link;
    queue.push_back({link, std::min(other, made), std::max(other, made)});
    std::push_heap(queue.begin(), queue.end());
  }
  ++n_merges_;
}

// Links whose clusters are gone or closed by now are passed over where they come up.
bool class_clust_Linker_nenado::merge_clusters() {
  std::vector<link_in_queue> queue;
  for (std::size_t c = 1; c < clusters_.size(); ++c)
    for (const auto &[other, value] : clusters_[c].links)
      if (other > static_cast<std::int32_t>(c))
        queue.push_back({value, static_cast<std::int32_t>(c), other});
  std::make_heap(queue.begin(), queue.end());
  for (std::int64_t steps = 1; !queue.empty(); ++steps) {
    const link_in_queue best = queue.front();
    std::pop_heap(queue.begin(), queue.end());
    queue.pop_back();
    cluster &a = clusters_[static_cast<std::size_t>(best.a)], &b = clusters_[static_cast<std::size_t>(best.b)];
    if (steps % merges_between_checks == 0) {
      control_of_sum();
      if (!signif_->context().frame.goes_on())
        return false;
    }
    if (a.is_closed || b.is_closed)
      continue;
    if (a.elements.size() + b.elements.size() >= static_cast<std::size_t>(largest_group))
      a.is_closed = b.is_closed = true;
    else
      merge(best.a, best.b, best.value, queue);
  }
  control_of_sum();
  return true;
}

void class_clust_Linker_nenado::put_into(class_clustering &clustering, std::vector<std::int32_t> &number_of) const {
  number_list numbers;
  numbers.resize(list_.count());
  number_of.assign(clusters_.size(), 0);
  std::int32_t n = 0;
  for (std::size_t c = 1; c < clusters_.size(); ++c) {
    if (clusters_[c].elements.empty())
      continue;
    number_of[c] = ++n;
    for (const std::int32_t element : clusters_[c].elements)
      numbers(element) = n;
  }
  clustering.cluster_number_for_all_elements_set(numbers);
  clustering.create_arrays_for_clusters(false, false);
}

void class_clust_Linker_nenado::print_cutoffs(const class_clustering &clustering,
                                              const std::vector<std::int32_t> &number_of, const fs::path &path) const {
  result_file file(path);
  file.line("clusters: N=" + std::to_string(clustering.number_of_clusters_get()));
  const auto row = [&](std::size_t c) {
    return std::to_string(number_of[c]) + '\t' + std::to_string(clusters_[c].elements.size()) + '\t' +
           number_text(clusters_[c].cutoff, 2);
  };
  file.line("i\tn\tmin_cutoff");
  for (std::size_t c = 1; c < clusters_.size(); ++c)
    if (number_of[c] > 0)
      file.line(row(c));
  file.write("\r\n\r\n\r\n\r\n\r\n");
  file.line("cutoff():");
  for (std::size_t c = 1; c < clusters_.size(); ++c) {
    if (number_of[c] == 0)
      continue;
    file.write("\r\n\r\n");
    file.line("clust\tn\tsmallest cutoff");
    file.line(row(c));
    file.line("link\twith\tcutoff");
    std::int32_t i = 0;
    for (const auto &[other, value] : clusters_[c].links)
      if (number_of[static_cast<std::size_t>(other)] < number_of[c])
        file.line(std::to_string(++i) + '\t' + std::to_string(number_of[static_cast<std::size_t>(other)]) + '\t' +
                  number_text(value, 2));
  }
  file.commit();
}

bool class_clust_Linker_nenado::grouping_of_clusters(const number_list &cluster_numbers, std::int32_t n,
                                                     const number_list &list, std::int32_t n_clusters,
                                                     class_clustering &clustering, fs::path &folder,
                                                     std::int32_t &min_size) {
  list_ = list;
  n_merges_ = 0;
  clusters_.assign(static_cast<std::size_t>(n_clusters) + 1, {});
  for (std::int32_t element = 1; element <= n; ++element)
    clusters_[static_cast<std::size_t>(cluster_numbers(element))].elements.push_back(element);
  for (cluster &one : clusters_) {
    one.is_closed = one.elements.size() > static_cast<std::size_t>(STANDARD_MIN_cluster_SIZE);
    one.cutoff = rule_.cutoff; // what is given holds together at the cutoff in use at least
  }
  if (!find_links() || !merge_clusters())
    return false;
  clustering.clustering_start_no_metric("Linker", n, list);
  std::vector<std::int32_t> number_of;
  put_into(clustering, number_of);
  std::string caption = "Linker";
  clustering.print_clusters(min_size, false, "", false, true, folder, caption);
  print_cutoffs(clustering, number_of, folder / "clustering_cutoffs.txt");
  return true;
}

void class_clust_Linker_nenado::create_list_of_connections_for_two_lists_of_clones(
    const number_list &list1, const number_list &list2, std::vector<std::pair<clone_number, clone_number>> &pairs,
    std::int32_t &n) const {
  pairs.clear();
  const bool swapped = list2.count() < list1.count();
  const number_list &walked = swapped ? list2 : list1, &other = swapped ? list1 : list2;
  const auto members = other.members();
  for (const clone_number clone : walked.members())
    for (const net_edge &edge : signif_->net().edges_of_vertex(clone)) {
      if (!std::binary_search(members.begin(), members.end(), edge.neighbour))
        continue;
      if (swapped)
        pairs.emplace_back(edge.neighbour, clone);
      else
        pairs.emplace_back(clone, edge.neighbour);
    }
  n = static_cast<std::int32_t>(pairs.size());
}

} // namespace orb
