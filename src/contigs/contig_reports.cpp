// The report files of one contig.
#include "contigs/class_contig_analysis.h"
#include "contigs/run_reports.h"

namespace orb {

void class_contig_analysis::dir_name_to_output_set(const std::filesystem::path &folder, bool own_folder) {
  dir_name_to_output_ = folder;
  dir_name_to_output_ok_ = folder;
  if (!own_folder)
    return;
  dir_name_to_output_ok_ = folder / cluster_file_name(cluster_name_);
  create_folder(dir_name_to_output_ok_);
}

std::filesystem::path class_contig_analysis::report_path(const std::filesystem::path &file,
                                                         const std::string &start) const {
  if (!file.empty())
    return file;
  return dir_name_to_output_ok_ / (start + cluster_file_name(cluster_name_) + ".txt");
}

void class_contig_analysis::print_list(const number_list &list, const std::filesystem::path &file) const {
  const metric_context &context = signif_->context();
  class_list_of_clones(context.frame, context.settings).print_list_of_clones(list, file, context.database);
}

void class_contig_analysis::print_clones_of_cluster(const std::filesystem::path &file) {
  print_list(list_of_clones_, report_path(file, ""));
}

void class_contig_analysis::print_list_of_clones_MTP(const std::filesystem::path &file) {
  print_list(list_of_clones_MTP_, report_path(file, "MTP_"));
}

void class_contig_analysis::print_list_of_clones_unoverlapped_with_diam_path(const std::filesystem::path &file) {
  if (!list_of_clones_far_.empty())
    print_list(list_of_clones_far_, report_path(file, "far_from_MTP_"));
}

// The same file as above: it replaces the former. Deliberate.
void class_contig_analysis::print_list_of_clones_unoverlapped_with_diam_path_NewCutoff(
    const std::filesystem::path &file) {
  if (!list_of_clones_far_NewCutoff_.empty())
    print_list(list_of_clones_far_NewCutoff_, report_path(file, "far_from_MTP_"));
}

void class_contig_analysis::print_list_of_clones_with_coordinates(const std::filesystem::path &file) {
  if (!clone_coor_known_)
    return;
  const class_DB_of_clones &database = signif_->context().database;
  result_file out(report_path(file, "coor_"));
  out.line(coordinates_header);
  for (std::int32_t position = 1; position <= list_of_clones_.count(); ++position) {
    const auto place = static_cast<std::size_t>(position);
    out.line(database.name_of_clone_get(list_of_clones_(position)) + '\t' + std::to_string(coor_left_[place]) + '\t' +
             std::to_string(coor_right_[place]));
  }
  out.commit();
}

std::string class_contig_analysis::header_of_MTP_details() {
  return "cluster_name\tn_clones\tn_clones_MTP\tcluster_path\ti\tclone\tclone_name\tn_bands\tn_common\tcoor_left\t"
         "coor_right\tn_common_coor";
}

void class_contig_analysis::print_list_of_clones_MTP_update_files_with_all_MTPs(growing_file *file_names,
                                                                                growing_file *file_details) {
  if (file_names != nullptr) {
    for (const clone_number clone : list_of_clones_MTP_.members())
      file_names->line(signif_->context().database.name_of_clone_get(clone));
  }
  if (file_details != nullptr)
    print_details_of_MTP(*file_details);
}

void class_contig_analysis::print_details_of_MTP(growing_file &file) const {
  const class_DB_of_clones &database = signif_->context().database;
  const std::string start = cluster_name_ + '\t' + std::to_string(list_of_clones_.count()) + '\t' +
                            std::to_string(list_of_clones_MTP_.count()) + '\t' + cluster_name_long_ + '\t';
  for (std::int32_t i = 1; i <= list_of_clones_MTP_.count(); ++i) {
    const clone_number clone = list_of_clones_MTP_(i), previous = i > 1 ? list_of_clones_MTP_(i - 1) : 0;
    std::string line = start + std::to_string(i) + '\t' + std::to_string(clone) + '\t' +
                       database.name_of_clone_get(clone) + '\t' +
                       std::to_string(database.number_of_bands_in_clone_get(clone)) + '\t';
    if (i > 1) {
      std::int32_t n_previous = 0, n_this = 0;
      double common = 0;
      database.number_of_band_overlaps_fast_tolr_index1(previous, clone, n_previous, n_this, common,
                                                        database.tollerance_get());
      line += std::to_string(static_cast<std::int32_t>(common));
    }
    if (clone_coor_known_) {
      const std::int32_t left = clone_coor_left_get(clone);
      line += '\t' + std::to_string(left) + '\t' + std::to_string(clone_coor_right_get(clone));
      if (i > 1)
        line += '\t' + std::to_string(clone_coor_right_get(previous) - left + 1);
    }
    file.line(line);
  }
}

void class_contig_analysis::gap_fields(const std::vector<std::int32_t> &gaps, std::string &line) const {
  const auto add = [&](std::size_t metric) { line += std::to_string(metric < gaps.size() ? gaps[metric] : 0) + '\t'; };
  // The family of metrics is that of the pair tables: 3 shows the Sulston score, those below it the tables' scores.
  const std::int16_t family = signif_->context().settings.table_format_column_subset;
  if (family >= 0 && family <= 2) {
    add(2);
    add(6);
  } else if (family == 3) {
    add(4);
  }
}

std::string class_contig_analysis::report_line_get() const {
  std::string line = cluster_name_ + '\t' + std::to_string(list_of_clones_.count()) + '\t';
  gap_fields(gaps_initial_, line);
  line += std::to_string(net_radius_) + '\t' + std::to_string(net_diam_) + '\t' + std::to_string(net_width_) + '\t';
  gap_fields(gaps_NoBuriedORB_, line);
  return line + cluster_name_long_;
}

} // namespace orb
