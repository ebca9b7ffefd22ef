#include "contigs/contig_reports.h"

#include "contigs/run_reports.h"
#include "lists/class_list_of_clones.h"

namespace orb {

std::filesystem::path report_path(const class_contig_analysis &contig, const std::filesystem::path &file,
                                  const std::string &start) {
  if (!file.empty())
    return file;
  return contig.dir_name_to_output_ok_get() / (start + cluster_file_name(contig.cluster_name_get()) + ".txt");
}

static void print_list(const class_contig_analysis &contig, const number_list &list,
                       const std::filesystem::path &file) {
  const metric_context &context = contig.context();
  class_list_of_clones(context.frame, context.settings).print_list_of_clones(list, file, context.database);
}

void print_clones_of_cluster(const class_contig_analysis &contig, const std::filesystem::path &file) {
  print_list(contig, contig.list_of_clones(), report_path(contig, file, ""));
}

void print_list_of_clones_MTP(const class_contig_analysis &contig, const std::filesystem::path &file) {
  print_list(contig, contig.list_of_clones_MTP(), report_path(contig, file, "MTP_"));
}

void print_list_of_clones_unoverlapped_with_diam_path(const class_contig_analysis &contig,
                                                      const std::filesystem::path &file) {
  if (!contig.list_of_clones_far().empty())
    print_list(contig, contig.list_of_clones_far(), report_path(contig, file, far_clones_start));
}

// The same file as above: it replaces the former. Deliberate.
void print_list_of_clones_unoverlapped_with_diam_path_NewCutoff(const class_contig_analysis &contig,
                                                                const std::filesystem::path &file) {
  if (!contig.list_of_clones_far_NewCutoff().empty())
    print_list(contig, contig.list_of_clones_far_NewCutoff(), report_path(contig, file, far_clones_start));
}

void print_list_of_clones_with_coordinates(const class_contig_analysis &contig, const std::filesystem::path &file) {
  if (!contig.clone_coor_known_get())
    return;
  const class_DB_of_clones &database = contig.context().database;
  result_file out(report_path(contig, file, "coor_"));
  out.line(coordinates_header);
  const number_list &list = contig.list_of_clones();
  for (std::int32_t position = 1; position <= list.count(); ++position) {
    const auto place = static_cast<std::size_t>(position) - 1;
    out.line(database.name_of_clone_get(list(position)) + '\t' + std::to_string(contig.coor_left_of_list()[place]) +
             '\t' + std::to_string(contig.coor_right_of_list()[place]));
  }
  out.commit();
}

static void print_details_of_MTP(const class_contig_analysis &contig, growing_file &file) {
  const class_DB_of_clones &database = contig.context().database;
  const number_list &MTP = contig.list_of_clones_MTP();
  const std::string start = contig.cluster_name_get() + '\t' + std::to_string(contig.list_of_clones().count()) + '\t' +
                            std::to_string(MTP.count()) + '\t' + contig.cluster_name_long_get() + '\t';
  for (std::int32_t i = 1; i <= MTP.count(); ++i) {
    const clone_number clone = MTP(i), previous = i > 1 ? MTP(i - 1) : 0;
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
    if (contig.clone_coor_known_get()) {
      const std::int32_t left = contig.clone_coor_left_get(clone);
      line += '\t' + std::to_string(left) + '\t' + std::to_string(contig.clone_coor_right_get(clone));
      if (i > 1)
        line += '\t' + std::to_string(contig.clone_coor_right_get(previous) - left + 1);
    }
    file.line(line);
  }
}

std::string header_of_MTP_details() {
  return "cluster_name\tn_clones\tn_clones_MTP\tcluster_path\ti\tclone\tclone_name\tn_bands\tn_common\tcoor_left\t"
         "coor_right\tn_common_coor";
}

void print_list_of_clones_MTP_update_files_with_all_MTPs(const class_contig_analysis &contig, growing_file *file_names,
                                                         growing_file *file_details) {
  if (file_names != nullptr) {
    for (const clone_number clone : contig.list_of_clones_MTP().members())
      file_names->line(contig.context().database.name_of_clone_get(clone));
  }
  if (file_details != nullptr)
    print_details_of_MTP(contig, *file_details);
}

static void gap_fields(const class_contig_analysis &contig, const std::vector<std::int32_t> &gaps, std::string &line) {
  const auto add = [&](std::size_t metric) { line += std::to_string(metric < gaps.size() ? gaps[metric] : 0) + '\t'; };
  // The family of metrics is that of the pair tables: 3 shows the Sulston score, those below it the tables' scores.
  const std::int16_t family = contig.context().settings.table_format_column_subset;
  if (family >= 0 && family <= 2) {
    add(2);
    add(6);
  } else if (family == 3) {
    add(4);
  }
}

std::string report_line_get(const class_contig_analysis &contig) {
  std::string line = contig.cluster_name_get() + '\t' + std::to_string(contig.list_of_clones().count()) + '\t';
  gap_fields(contig, contig.gaps_initial(), line);
  line += std::to_string(contig.net_radius_get()) + '\t' + std::to_string(contig.net_diam_get()) + '\t' +
          std::to_string(contig.net_width_get()) + '\t';
  gap_fields(contig, contig.gaps_NoBuriedORB(), line);
  return line + contig.cluster_name_long_get();
}

} // namespace orb
