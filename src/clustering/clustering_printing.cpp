// Printing a partition as a folder of lists, and reading the plain list of cluster numbers back.
#include <algorithm>

#include "clustering/class_clustering.h"
#include "database/class_clone_serv.h"
#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/numbers.h"

namespace orb {

std::string class_clustering::auto_cluster_name(const std::string &caption, std::int32_t cluster, std::int32_t size) {
  if (cluster < 1)
    return "heap_" + caption + "_" + std::to_string(size);
  return caption + "_" + std::to_string(cluster) + "_" + std::to_string(size);
}

void class_clustering::print_clusters_run(std::string caption, std::int32_t &min_size) {
  frame_->local_process_text_set("Printing of clasters");
  std::filesystem::path folder;
  print_clusters(min_size, false, "", true, elements_are_clones_, folder, caption);
  frame_->local_process_text_set("Clusters are printed");
}

void class_clustering::print_clusters(std::int32_t &min_size, bool print_data, const std::string &suffix,
                                      bool drop_empty, bool elements_are_clones, std::filesystem::path &folder,
                                      std::string &caption) {
  elements_are_clones_ = elements_are_clones;
  if (min_size < 0)
    min_size = STANDARD_MIN_cluster_SIZE;
  const std::string date_and_time = class_serv_raznoe::date_and_time_string(*frame_);
  if (folder.empty())
    folder = frame_->path_in_working_folder("\\clusters_" + folder_name_dobaffka_ + suffix + date_and_time);
  create_folder(folder);
  print_clusterization(folder);
  create_arrays_for_clusters(drop_empty, true);
  if (caption.empty())
    caption = frame_->input(
        {"Input caption for clusters: <caption>_<cluster number>_<size>", "Printing of clusters", "cluster"});
  const std::string size_text = frame_->input(
      {"Input minimal cluster size (smaller united to Heap):", "Printing of clusters", std::to_string(min_size)});
  whole_number_parse(size_text, min_size);

  number_list heap, list;
  for (std::int32_t c = 1; c <= private_n_of_clusters_; ++c) {
    read_from_arrays_for_clusters(c, list);
    if (list.count() < min_size)
      for (const std::int32_t element : list.members())
        heap.add(element);
    else
      print_one_cluster(print_data, caption, c, list, folder);
  }
  print_one_cluster(print_data, caption, 0, heap, folder);
}

void class_clustering::print_clusterization(const std::filesystem::path &folder) const {
  result_file file(folder / "clusterization.txt");
  for (const std::int32_t number : cluster_number_.members())
    file.line(std::to_string(number));
  file.commit();
}

void class_clustering::print_one_cluster(bool print_data, const std::string &caption, std::int32_t cluster,
                                         const number_list &list, const std::filesystem::path &folder) const {
  std::string name = auto_cluster_name(caption, cluster, list.count());
  for (char &c : name)
    if (c == '/' || c == '\\')
      c = '_'; // the caption names files, not folders
  result_file file(folder / (name + ".txt"));
  for (const std::int32_t element : list.members())
    file.line(name_of_element_get(element));
  file.commit();
  if (!print_data || database_ == nullptr)
    return;
  result_file data(folder / ("Data_" + name + ".txt"));
  for (const std::int32_t element : list.members())
    class_clone_serv::add_clone_to_file_with_bands(clone_number_get(element), data, *database_);
  data.commit();
}

bool class_clustering::read_clusterization() {
  const std::filesystem::path file = frame_->open_file_dialog("Open file with clusterization");
  return !file.empty() && read_clusterization(file);
}

bool class_clustering::read_clusterization(const std::filesystem::path &path) {
  const auto refuse = [this](const std::string &text) { return frame_->refuse(text); };
  line_reader file(path);
  number_list numbers;
  numbers.reserve(n_elements_);
  std::int64_t n_lines = 0;
  for (std::string_view line; file.next(line);) {
    if (++n_lines > n_elements_)
      continue; // only counted
    std::int32_t number = 0;
    if (!whole_number_parse(line, number) || number < 1 || number > n_elements_)
      return refuse("A cluster number from 1 to " + std::to_string(n_elements_) + " was expected (" + file.place() +
                    ").");
    numbers.add(number);
  }
  if (n_lines != n_elements_)
    return refuse("Wrong number of elements with clusterization results: n_exp=" + std::to_string(n_elements_) +
                  ", n_obs=" + std::to_string(n_lines) + "\r\n" + file.place());
  cluster_number_for_all_elements_set(numbers);
  return true;
}

} // namespace orb
