// Making a partition: connected components of a net, or of pairs tested one by one.
#include "clustering/class_clustering.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "metrics/class_clone_dist_my.h"
#include "net/class_clone_net_signif.h"

namespace orb {

void class_clustering::clusterization_fast(std::int32_t n, const std::vector<vertex_number> &neighbours,
                                           const std::vector<edge_adress> &adress_of_start) {
  label_forest forest;
  forest.start(n);
  for (std::int32_t i = 1; i <= n; ++i)
    for (edge_adress e = adress_of_start[static_cast<std::size_t>(i)];
         e < adress_of_start[static_cast<std::size_t>(i) + 1]; ++e) {
      const vertex_number j = neighbours[static_cast<std::size_t>(e)];
      if (forest.label_get(i) != forest.label_get(j))
        forest.join(i, j);
    }
  clustering_start_n_elements_set(n);
  forest.number_clusters(cluster_number_, n_elements_in_cluster_, private_n_of_clusters_);
}

void class_clustering::clustering_based_on_net(const class_net &net) {
  std::vector<vertex_number> neighbours;
  std::vector<edge_adress> adress_of_start;
  net.save_net_into_arrayes(neighbours, adress_of_start, false);
  clusterization_fast(net.number_of_vertices_get(), neighbours, adress_of_start);
}

namespace {

bool is_identity(const number_list &list) {
  for (std::int32_t i = 1; i <= list.count(); ++i)
    if (list(i) != i)
      return false;
  return true;
}

// Renames the vertices of a flat neighbour list: vertex v becomes element number(v).
void rename_vertices(const number_list &number, std::vector<vertex_number> &neighbours,
                     std::vector<edge_adress> &adress_of_start) {
  const std::vector<vertex_number> old_neighbours = std::move(neighbours);
  const std::vector<edge_adress> old_start = std::move(adress_of_start);
  number_list vertex_of;
  vertex_of.resize(number.count());
  for (vertex_number v = 1; v <= number.count(); ++v)
    vertex_of(number(v)) = v;
  neighbours.assign(1, 0);
  adress_of_start.assign(old_start.size(), 1);
  for (std::int32_t i = 1; i <= number.count(); ++i) {
    const auto v = static_cast<std::size_t>(vertex_of(i));
    for (edge_adress e = old_start[v]; e < old_start[v + 1]; ++e)
      neighbours.push_back(number(old_neighbours[static_cast<std::size_t>(e)]));
    adress_of_start[static_cast<std::size_t>(i) + 1] = static_cast<edge_adress>(neighbours.size());
  }
}

} // namespace

void class_clustering::run_clusterization_fast(class_clone_net_signif &nets) {
  frame_->local_process_text_set("Starting clastering");
  class_net net;
  number_list net_list;
  nets.create_net_general(list_of_clones_, n_elements_, metric_.distance, metric_.cutoff, metric_.burying, net,
                          net_list);
  std::vector<vertex_number> neighbours;
  std::vector<edge_adress> adress_of_start;
  net.save_net_into_arrayes(neighbours, adress_of_start, false);
  // The net numbers the clones ascending; the list may stand in another order.
  if (!is_identity(net_list))
    rename_vertices(net_list, neighbours, adress_of_start);
  frame_->local_process_text_set("Clustering...");
  clusterization_fast(n_elements_, neighbours, adress_of_start);
  frame_->local_process_text_set("ok");
}

void class_clustering::clusterization_slow(bool print, class_clone_dist_my &metric) {
  metric.distance_index_set(metric_.distance);
  metric.limit_r_set(metric_.cutoff);
  metric.pogloshenie_border_set(metric_.burying);
  clusterization_slow(print, [this, &metric, print](std::int32_t i, std::int32_t j, double &score) {
    if (!metric.overlap_is_significant(clone_number_get(i), clone_number_get(j)))
      return false;
    if (print)
      score = metric.my_cutoff(clone_number_get(i), clone_number_get(j));
    return true;
  });
}

namespace {

// test_clustering.txt: every joining with the labels as they then stand, and the clusters at the end.
class joining_record {
public:
  joining_record(const process_frame &frame, std::int32_t n)
      : file_(frame.path_in_working_folder("\\test_clustering.txt")), n_(n) {
    file_.line("i\tj\tcutoff" + element_numbers());
  }
  void joined(std::int32_t i, std::int32_t j, double score, const label_forest &forest) {
    std::string line = std::to_string(i) + "\t" + std::to_string(j) + "\t" + number_text(score, 2);
    for (std::int32_t k = 1; k <= n_; ++k)
      line += "\t" + std::to_string(forest.label_get(k));
    file_.line(line);
  }
  void finish(std::int32_t n_clusters, const number_list &cluster_number) {
    file_.line("");
    file_.line("");
    file_.line("n\\i" + element_numbers());
    std::string line = std::to_string(n_clusters);
    for (const std::int32_t c : cluster_number.members())
      line += "\t" + std::to_string(c);
    file_.line(line);
    file_.commit();
  }

private:
  std::string element_numbers() const {
    std::string text;
    for (std::int32_t k = 1; k <= n_; ++k)
      text += "\t" + std::to_string(k);
    return text;
  }
  result_file file_;
  std::int32_t n_;
};

} // namespace

void class_clustering::clusterization_slow(bool print, const pair_test &test) {
  constexpr std::int32_t joinings_between_reports = 100;
  const std::int32_t n = n_elements_;
  std::unique_ptr<joining_record> record;
  if (print)
    record = std::make_unique<joining_record>(*frame_, n);
  label_forest forest;
  forest.start(n);
  std::int32_t n_joinings = 0;
  constexpr std::int32_t elements_between_looks = 50;
  for (std::int32_t i = 1; i <= n && !frame_->stop_requested_get(); ++i) {
    if (i % elements_between_looks == 0 && !frame_->goes_on())
      break;
    for (std::int32_t j = i + 1; j <= n; ++j) {
      double score = 0;
      if (forest.label_get(i) == forest.label_get(j) || forest.joined(i, j) || !test(i, j, score))
        continue;
      forest.join(i, j);
      if (record)
        record->joined(i, j, score, forest);
      if (++n_joinings % joinings_between_reports == 0)
        frame_->local_process_text_set("Clustering: i=" + std::to_string(i) + ", j=" + std::to_string(j) +
                                       ", n=" + std::to_string(n_joinings));
    }
  }
  forest.number_clusters(cluster_number_, n_elements_in_cluster_, private_n_of_clusters_);
  if (!record)
    return;
  record->finish(private_n_of_clusters_, cluster_number_);
  std::int32_t min_size = -1;
  print_clusters_run("", min_size);
}

} // namespace orb
