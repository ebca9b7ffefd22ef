#include "contigs/run_reports.h"

#include <system_error>
#include <vector>

#include "frame/class_serv_raznoe.h"
#include "frame/numbers.h"

namespace orb {

namespace {

constexpr std::size_t n_row_fields = 11;

// Creates the folder unless it exists; throws file_error.
bool create_new_folder(const std::filesystem::path &folder) {
  std::error_code error;
  const bool created = std::filesystem::create_directory(folder, error);
  if (error)
    throw file_error("can't create folder", folder, error.message());
  return created;
}

} // namespace

std::filesystem::path make_run_folder(process_frame &frame, const std::filesystem::path &in) {
  const std::string base = "ORB_contigs_" + frame.clock().date_and_time_string();
  std::string name = base;
  for (int k = 2; !create_new_folder(in / name); ++k)
    name = base + "_" + std::to_string(k);
  frame.log_line("Contigs folder created: " + name);
  return in / name;
}

void run_reports::open(process_frame &frame, const std::filesystem::path &folder) {
  folder_contigs = folder.empty() ? make_run_folder(frame, frame.working_folder_get()) : folder;
  create_folder(folder_contigs);
  folder_heaps = folder_contigs / heaps_folder_name;
  create_new_folder(folder_heaps);
  if (!folder.empty())
    for (const auto &entry : std::filesystem::directory_iterator(folder))
      if (entry.is_directory())
        remove_stale_temporaries(entry.path());
  open_files(!folder.empty());
  contigs.line(cluster_report_header());
  clusters.line(cluster_report_header());
  flush();
}

void run_reports::open_files(bool continued) {
  const auto opened = [&](const char *name) {
    return continued ? growing_file::continued(folder_contigs / name) : growing_file(folder_contigs / name, true);
  };
  contigs = opened(report_contigs_name);
  clusters = opened(report_clusters_name);
  clones_in_MTP = opened("clones_in_MTP.txt");
  clones_in_MTP_details = opened("clones_in_MTP_details.txt");
  clones_in_MTP_and_bridges = opened("clones_in_MTP_and_bridges.txt");
}

void run_reports::flush() {
  for (growing_file *file : {&contigs, &clusters, &clones_in_MTP, &clones_in_MTP_details, &clones_in_MTP_and_bridges})
    if (file->is_open())
      file->flush();
}

void run_reports::close() {
  for (growing_file *file : {&contigs, &clusters, &clones_in_MTP, &clones_in_MTP_details, &clones_in_MTP_and_bridges})
    if (file->is_open())
      file->close();
}

void run_reports::end_here() {
  for (growing_file *file : {&contigs, &clusters, &clones_in_MTP, &clones_in_MTP_details, &clones_in_MTP_and_bridges})
    file->end_here();
}

std::string cluster_report_header() {
  return "i\tcluster\tn_clones\tcontig\tcutoff\tdiam\twidth\tn_gaps\tn_rank_MTP>1\tUser_remark\tfull_name";
}

std::string cluster_row_text(const cluster_row &row) {
  std::string line = std::to_string(row.id) + '\t' + row.name + '\t' + std::to_string(row.n_clones) + '\t' +
                     (row.contig ? "True" : "False") + '\t' + number_text(row.cutoff, 2) + '\t';
  if (row.diam < 0) {
    line += "\t\t\t\t";
  } else {
    for (const std::int32_t value : {row.diam, row.width, row.n_gaps, row.n_far})
      line += std::to_string(value) + '\t';
  }
  return line + row.remark + '\t' + row.full_name;
}

bool cluster_row_read(std::string_view line, cluster_row &row, std::string &why) {
  const std::vector<std::string_view> fields = class_serv_raznoe::fields_of(line);
  const auto refused = [&why](const char *reason) {
    why = reason;
    return false;
  };
  if (fields.size() != n_row_fields)
    return refused("a row has 11 fields separated by tabs");
  row = cluster_row{};
  if (!whole_number_parse(fields[0], row.id) || row.id < 1)
    return refused("\"i\" is no number above 0");
  row.name = fields[1];
  if (row.name.empty())
    return refused("the cluster has no name");
  if (!whole_number_parse(fields[2], row.n_clones) || row.n_clones < 1)
    return refused("\"n_clones\" is no number above 0");
  if (fields[3] != "True" && fields[3] != "False")
    return refused("\"contig\" is neither True nor False");
  row.contig = fields[3] == "True";
  if (!number_parse(fields[4], row.cutoff))
    return refused("\"cutoff\" is no number");
  const bool analysed = !fields[5].empty();
  std::int32_t *const values[] = {&row.diam, &row.width, &row.n_gaps, &row.n_far};
  for (std::size_t k = 0; k < 4; ++k) {
    if (fields[5 + k].empty() == analysed)
      return refused("of diam, width, n_gaps and n_rank_MTP>1 some are empty");
    if (analysed && (!whole_number_parse(fields[5 + k], *values[k]) || *values[k] < 0))
      return refused("one of diam, width, n_gaps and n_rank_MTP>1 is no number");
  }
  row.remark = fields[9];
  row.full_name = fields[10];
  return true;
}

} // namespace orb
