// Tables about the contigs of the registry: N50-style statistics, and coordinates of clones.
#include "clustering/contig_statistics.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "clustering/class_FPCto_import.h"
#include "frame/files.h"
#include "frame/numbers.h"

namespace orb {

length_statistic length_statistic_get(std::span<const double> ascending, int p) {
  const double total = std::accumulate(ascending.begin(), ascending.end(), 0.0);
  double sum = 0;
  for (std::size_t i = 0; i < ascending.size(); ++i) {
    sum += ascending[i];
    if (sum * 100 > (100 - p) * total)
      return {ascending[i], static_cast<std::int32_t>(ascending.size() - i)};
  }
  return {};
}

namespace {

class statistics_table {
public:
  statistics_table(const std::filesystem::path &path, double band_size) : file_(path), band_size_(band_size) {
    file_.line("Virtual band size\t" + number_text_shortest(band_size) + "\tbp");
  }

  void contigs_of_at_least(std::int32_t n_clones_min, const class_FPCto_import &registry) {
    std::vector<double> lengths;
    std::int64_t n_clones = 0;
    for (const cluster_id id : registry.current_list_of_clusters_in_use_get().members()) {
      if (registry.n_clones_in_cluster_get(id) < n_clones_min)
        continue;
      lengths.push_back(registry.length_of_cluster_bands_get(id));
      n_clones += registry.n_clones_in_cluster_get(id);
    }
    std::sort(lengths.begin(), lengths.end());
    const double total = std::accumulate(lengths.begin(), lengths.end(), 0.0);
    file_.line("");
    file_.line("Minimal number of clones\t" + std::to_string(n_clones_min));
    file_.line("Number of contigs\t" + std::to_string(lengths.size()));
    file_.line("Totatal length contigs\t" + kilobases(total) + "\tkbp");
    file_.line("Totatal number of clones in contigs\t" + std::to_string(n_clones));
    for (int p = 10; p <= 90; p += 10) {
      const length_statistic found = length_statistic_get(lengths, p);
      const std::string part = std::to_string(p);
      file_.line("N" + part + "=\t" + kilobases(found.length) + "\tkbp\tL" + part + "=\t" +
                 std::to_string(found.n_contigs) + "\tcontigs");
    }
  }

  void commit() { file_.commit(); }

private:
  std::string kilobases(double bands) const { return number_text(std::floor(band_size_ * bands / 1000), 0); }

  result_file file_;
  double band_size_; // base pairs
};

} // namespace

std::filesystem::path class_FPCto_import::print_N50_statistics() {
  const std::string text = frame_->input({"Virtual band size (bp, for contig length calculation):", "", "1200"});
  double band_size = standard_band_size;
  if (!number_parse(text, band_size) || !(band_size >= 1 && band_size <= largest_band_size))
    band_size = standard_band_size;
  const std::filesystem::path file =
      frame_->path_in_working_folder("\\contig_statistics_" + number_text_shortest(band_size) + ".txt");
  statistics_table table(file, band_size);
  for (std::int32_t n_clones_min = 2; n_clones_min <= 11; ++n_clones_min)
    table.contigs_of_at_least(n_clones_min, *this);
  table.commit();
  return file;
}

void class_FPCto_import::print_coordinates_of_clones(const number_list &list, const std::filesystem::path &path) {
  if (list.empty()) {
    frame_->alarm("list_of_clones(0)=0");
    return;
  }
  check_clone_numbers(list);
  result_file file(path);
  file.line("BAC\tctg\tnClonesInCtg\tcoorLeft\tcoorRight\tcoorLeftMinInCtg\tcoorRightMaxInCtg\tcoor/coorMax");
  for (const clone_number clone : list.members()) {
    const cluster_id id = clone_in_cluster_get(clone);
    std::string line = database_->name_of_clone_get(clone) + "\t" + name_of_cluster_get(id) + "\t" +
                       std::to_string(n_clones_in_cluster_get(id));
    if (id > 0 && cluster_information_get(id).min_and_max_known) {
      const cluster_information &cluster = cluster_information_get(id);
      const double left = clone_coor_left(clone);
      for (const double coor : {left, clone_coor_right(clone), cluster.min_left, cluster.max_right})
        line += "\t" + number_text_shortest(coor);
      line += "\t" + (cluster.max_right > 0 ? number_text(left / cluster.max_right, 4) : std::string());
    } else {
      line += "\t\t\t\t\t";
    }
    file.line(line);
  }
  file.commit();
}

} // namespace orb
