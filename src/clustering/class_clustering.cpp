// The partition itself: sizes, numbers, grouped list.
#include "clustering/class_clustering.h"

#include <algorithm>
#include <cmath>

#include "metrics/class_clone_dist_general.h"

namespace orb {

class_clustering::class_clustering(process_frame &frame, const project_settings &settings,
                                   const class_DB_of_clones *database)
    : frame_(&frame), settings_(&settings), database_(database) {}

void class_clustering::clustering_start_n_elements_set(std::int32_t n) {
  n_elements_ = n;
  cluster_number_.clear();
  cluster_number_.resize(n);
}

void class_clustering::clustering_start_no_metric(const std::string &folder_suffix, std::int32_t n,
                                                  const number_list &list) {
  clustering_start_n_elements_set(n);
  folder_name_dobaffka_ = folder_suffix;
  list_of_clones_ = list;
}

void class_clustering::clustering_start(std::int32_t n, const number_list &list, const std::string &folder_suffix,
                                        std::int16_t distance, double cutoff, double burying) {
  metric_ = {distance, cutoff, burying};
  const int tolerance = database_ != nullptr ? database_->tollerance_get() : 0;
  const std::string caption = "T" + std::to_string(tolerance) + "_" +
                              std::to_string(static_cast<std::int64_t>(std::floor(cutoff))) + "_" +
                              class_clone_dist_general::name_of_cutoff_distance(distance);
  clustering_start_no_metric(folder_suffix + "_" + caption, n, list);
}

void class_clustering::start_sizes(std::int32_t n_clusters) {
  private_n_of_clusters_ = n_clusters;
  n_elements_in_cluster_.clear();
  n_elements_in_cluster_.resize(n_clusters);
}

void class_clustering::number_of_clusters_set(std::int32_t n) {
  private_n_of_clusters_ = n;
  if (n_elements_in_cluster_.count() < n)
    n_elements_in_cluster_.resize(n);
}

void class_clustering::name_of_cluster_resize(std::int32_t n) {
  const auto size = static_cast<std::size_t>(n) + 1;
  if (size < name_of_cluster_.size())
    names_are_indexed_ = false;
  name_of_cluster_.resize(size);
}

void class_clustering::name_of_cluster_set(std::int32_t cluster, std::string name) {
  if (name_of_cluster_.size() <= static_cast<std::size_t>(cluster))
    name_of_cluster_resize(cluster);
  std::string &place = name_of_cluster_[static_cast<std::size_t>(cluster)];
  if (!place.empty()) {
    names_are_indexed_ = false;
  } else if (names_are_indexed_ && !name.empty()) {
    std::int32_t &first = cluster_of_name_.try_emplace(name, cluster).first->second;
    first = std::min(first, cluster);
  }
  place = std::move(name);
}

void class_clustering::index_names() const {
  cluster_of_name_.clear();
  for (std::size_t c = 1; c < name_of_cluster_.size(); ++c)
    if (!name_of_cluster_[c].empty())
      cluster_of_name_.try_emplace(name_of_cluster_[c], static_cast<std::int32_t>(c));
  names_are_indexed_ = true;
}

std::string class_clustering::name_of_cluster_get(std::int32_t cluster) const {
  return cluster >= 1 && static_cast<std::size_t>(cluster) < name_of_cluster_.size()
             ? name_of_cluster_[static_cast<std::size_t>(cluster)]
             : std::string();
}

void class_clustering::name_of_element_set(std::int32_t element, std::string name) {
  if (name_of_element_.size() <= static_cast<std::size_t>(element))
    name_of_element_resize(element);
  name_of_element_[static_cast<std::size_t>(element)] = std::move(name);
}

std::string class_clustering::name_of_element_get(std::int32_t element) const {
  if (elements_are_clones_ && database_ != nullptr)
    return database_->name_of_clone_get(clone_number_get(element));
  return static_cast<std::size_t>(element) < name_of_element_.size()
             ? name_of_element_[static_cast<std::size_t>(element)]
             : std::string();
}

clone_number class_clustering::clone_number_get(std::int32_t element) const {
  return element <= list_of_clones_.count() ? list_of_clones_(element) : element;
}

void class_clustering::search_for_cluster_in_current_clustering(std::string_view text, std::int32_t &cluster) const {
  if (!names_are_indexed_)
    index_names();
  const auto found = cluster_of_name_.find(std::string(text));
  cluster = found != cluster_of_name_.end() && found->second <= private_n_of_clusters_ ? found->second : 0;
}

void class_clustering::put_all_elements_into_single_cluster() {
  start_sizes(1);
  n_elements_in_cluster_(1) = n_elements_;
  for (std::int32_t &number : cluster_number_.members())
    number = 1;
}

void class_clustering::count_sizes_and_gaps(const number_list &numbers, std::int32_t &max_cluster,
                                            std::int32_t &n_used) {
  const std::int32_t largest_allowed = std::max(n_elements_, private_n_of_clusters_) + 1;
  n_elements_in_cluster_.clear();
  n_elements_in_cluster_.resize(largest_allowed);
  max_cluster = 0;
  n_used = 0;
  for (std::int32_t i = 1; i <= n_elements_; ++i) {
    const std::int32_t c = numbers(i);
    if (c < 1 || c > largest_allowed)
      frame_->program_end_now("Cluster number must be from 1 to " + std::to_string(largest_allowed) + ", but it is " +
                              std::to_string(c) + " for element " + std::to_string(i));
    if (++n_elements_in_cluster_(c) == 1)
      ++n_used;
    max_cluster = std::max(max_cluster, c);
  }
}

namespace {

// "End now?": yes ends the program; either way the data were wrong.
void ask_to_end(process_frame &frame, const std::string &text) {
  if (frame.yes({.text = text, .title = {}, .by_default = answer::no, .to_go_on = answer::no, .marks_failure = true}))
    throw program_end(text, exit_status::run_failed);
}

} // namespace

void class_clustering::ask_about_gaps(std::int32_t max_cluster, std::int32_t n_used) const {
  const std::string used = std::to_string(n_used);
  ask_to_end(*frame_,
             "max_cluster > private_n_of_clusters: " + std::to_string(max_cluster) + ">" + used + ". End now?");
  for (std::int32_t c = 1; c <= max_cluster; ++c)
    if (n_elements_in_cluster_(c) == 0)
      ask_to_end(*frame_, "Cluster " + std::to_string(c) + " is not presented in " + used + " clusters. End now?");
}

void class_clustering::cluster_number_for_all_elements_set(const number_list &numbers) {
  std::int32_t max_cluster = 0, n_used = 0;
  count_sizes_and_gaps(numbers, max_cluster, n_used);
  if (max_cluster > n_used)
    ask_about_gaps(max_cluster, n_used);
  private_n_of_clusters_ = max_cluster;
  if (&numbers != &cluster_number_)
    for (std::int32_t i = 1; i <= n_elements_; ++i)
      cluster_number_(i) = numbers(i);
}

void class_clustering::cluster_number_for_all_elements_set_go() {
  const std::int32_t rest = private_n_of_clusters_ + 1;
  bool any = false;
  for (std::int32_t &number : cluster_number_.members())
    if (number <= 0) {
      number = rest;
      any = true;
    }
  if (any) {
    name_of_cluster_set(rest, NAME_OF_SET_OF_ELEMENTS_NOT_IN_CLUSTERS);
    private_n_of_clusters_ = rest;
  }
  cluster_number_for_all_elements_set(cluster_number_);
}

void class_clustering::create_arrays_for_clusters(bool drop_empty, bool renumber) {
  std::vector<std::int32_t> map(static_cast<std::size_t>(private_n_of_clusters_) + 2, 0);
  std::int32_t n_new = 0, sum = 0;
  array_starts_.clear();
  array_ends_.clear();
  array_starts_.resize(private_n_of_clusters_);
  array_ends_.resize(private_n_of_clusters_);
  for (std::int32_t c = 1; c <= private_n_of_clusters_; ++c) {
    const std::int32_t size = n_elements_in_cluster_(c);
    if (drop_empty && size < 1)
      continue;
    map[static_cast<std::size_t>(c)] = ++n_new;
    array_starts_(n_new) = sum + 1;
    array_ends_(n_new) = sum += size;
  }
  if (sum != n_elements_) {
    const std::string text = "Problem! nnn =/= n_elements :  nnn=" + std::to_string(sum) +
                             ",  n_elements=" + std::to_string(n_elements_) + ". Ok = continue, Cancel = Stop";
    if (frame_->ask({.text = text,
                     .title = {},
                     .by_default = answer::yes,
                     .choice = answer_choice::ok_cancel,
                     .marks_failure = true}) != answer::yes)
      throw program_end(text, exit_status::run_failed);
  }
  for (std::int32_t c = n_new + 1; c <= private_n_of_clusters_; ++c) {
    array_starts_(c) = sum + 1;
    array_ends_(c) = sum;
  }
  // Elements of a deleted cluster may still stand one above their set, see delete_cluster.
  const bool has_rest = name_of_cluster_get(private_n_of_clusters_) == NAME_OF_SET_OF_ELEMENTS_NOT_IN_CLUSTERS;
  if (has_rest)
    map.back() = map[static_cast<std::size_t>(private_n_of_clusters_)];
  list_of_elements_by_clusters_.clear();
  list_of_elements_by_clusters_.resize(std::max(n_elements_, sum));
  place_elements(map);
  if (!drop_empty || !renumber)
    return;
  for (std::int32_t &number : cluster_number_.members())
    number = map[static_cast<std::size_t>(number)];
  for (std::int32_t c = 1; c <= private_n_of_clusters_; ++c)
    if (const std::int32_t c_new = map[static_cast<std::size_t>(c)]; c_new > 0 && c_new != c)
      name_of_cluster_set(c_new, name_of_cluster_get(c));
  if (name_of_cluster_.size() > static_cast<std::size_t>(n_new) + 1)
    name_of_cluster_resize(n_new);
  start_sizes(n_new);
  for (std::int32_t c = 1; c <= n_new; ++c)
    n_elements_in_cluster_(c) = array_ends_(c) - array_starts_(c) + 1;
}

void class_clustering::place_elements(const std::vector<std::int32_t> &map) {
  std::vector<std::int32_t> next(map.size(), 0);
  for (std::int32_t c = 1; c <= private_n_of_clusters_; ++c)
    next[static_cast<std::size_t>(c)] = array_starts_(c);
  for (std::int32_t i = 1; i <= n_elements_; ++i) {
    const std::int32_t c = cluster_number_(i);
    const bool known = c >= 0 && static_cast<std::size_t>(c) < map.size();
    const std::int32_t c_new = known ? map[static_cast<std::size_t>(c)] : 0;
    if (c_new == 0)
      frame_->program_end_now("Problem! Element " + std::to_string(i) +
                              " is not in claster with size>0, c=" + std::to_string(c));
    std::int32_t &place = next[static_cast<std::size_t>(c_new)];
    if (place > array_ends_(c_new))
      frame_->program_end_now("Problem! i_in_cluster(c_new) > array_ends : c_old=" + std::to_string(c) +
                              ", c_new=" + std::to_string(c_new) + ", i_in_cluster=" + std::to_string(place) +
                              ", array_ends=" + std::to_string(array_ends_(c_new)));
    list_of_elements_by_clusters_(place++) = i;
  }
}

std::int32_t class_clustering::element_of_cluster_get(std::int32_t cluster, std::int32_t k) const {
  const bool known = cluster >= 1 && cluster <= array_starts_.count();
  const std::int32_t first = known ? array_starts_(cluster) : 0, last = known ? array_ends_(cluster) : -1;
  if (k < 1 || k > last - first + 1)
    frame_->program_end_now("problem with selecting of element from cluster: cluster=" + std::to_string(cluster) +
                            ", element=" + std::to_string(k) + ", but a0=" + std::to_string(first) +
                            ", a1=" + std::to_string(last) + ", a1-a0+1=" + std::to_string(last - first + 1));
  return list_of_elements_by_clusters_(first + k - 1);
}

void class_clustering::read_from_arrays_for_clusters(std::int32_t cluster, number_list &list, bool allocate) const {
  list.clear();
  const bool known = cluster >= 1 && cluster <= array_starts_.count();
  const std::int32_t size = known ? array_ends_(cluster) - array_starts_(cluster) + 1 : 0;
  if (allocate)
    list.reserve(std::max(size, 2));
  for (std::int32_t k = 0; k < size; ++k)
    list.add(list_of_elements_by_clusters_(array_starts_(cluster) + k));
}

void class_clustering::order_of_elements_in_cluster_set(std::int32_t cluster, const number_list &order) {
  number_list former;
  read_from_arrays_for_clusters(cluster, former);
  for (std::int32_t k = 1; k <= former.count(); ++k)
    list_of_elements_by_clusters_(array_starts_(cluster) + k - 1) = former(order(k));
}

void class_clustering::delete_cluster(std::int32_t cluster, bool rebuild) {
  if (cluster < 1 || cluster > private_n_of_clusters_) {
    frame_->alarm("Can't delete non-existing cluster!");
    return;
  }
  const bool has_rest = name_of_cluster_get(private_n_of_clusters_) == NAME_OF_SET_OF_ELEMENTS_NOT_IN_CLUSTERS;
  if (cluster == private_n_of_clusters_ && has_rest) {
    frame_->alarm("Can't delete set of elements that not in clusters!");
    return;
  }
  const std::int32_t size = n_elements_in_cluster_(cluster);
  std::int32_t rest = has_rest ? private_n_of_clusters_ : 0;
  if (size > 0) {
    if (!has_rest) {
      rest = private_n_of_clusters_ + 1;
      number_of_clusters_set(rest);
      n_elements_in_cluster_(rest) = 0;
      name_of_cluster_set(rest, NAME_OF_SET_OF_ELEMENTS_NOT_IN_CLUSTERS);
    }
    n_elements_in_cluster_(rest) += size;
  }
  bool problem = false;
  for (std::int32_t &number : cluster_number_.members()) {
    if (number == cluster) {
      // The set's number from before the shift: one above its place until the next renumbering. Deliberate.
      if (rest > 0)
        number = rest;
      else
        problem = true;
    } else if (number > cluster) {
      --number;
    }
  }
  if (problem)
    frame_->alarm("Problem in delition of cluster!");
  for (std::int32_t c = cluster; c < private_n_of_clusters_; ++c) {
    n_elements_in_cluster_(c) = n_elements_in_cluster_(c + 1);
    name_of_cluster_set(c, name_of_cluster_get(c + 1));
  }
  name_of_cluster_set(private_n_of_clusters_, "");
  --private_n_of_clusters_;
  if (rebuild)
    create_arrays_for_clusters(true, true);
}

} // namespace orb
