#include "simulation/evaluation_files.h"

#include <algorithm>
#include <string_view>
#include <unordered_set>

#include "contigs/run_reports.h"
#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/numbers.h"

namespace orb {

namespace {

constexpr std::string_view head_of_order = "i\tIndex\tCloneName\t";
constexpr std::string_view start_of_zones = "Zones of markers:"; // a last line where the run knew markers
constexpr std::string_view head_of_Q_clones = "k\tclone\tname", head_of_suspects = "clone\twhy\tpartner";
constexpr std::string_view end_of_Q_report = "Q_clones.txt";
constexpr std::int32_t name_column = 2; // from 0, of both tables

bool refuse(process_frame &frame, const std::string &text, const std::string &place) {
  return frame.refuse(text + "\r\n" + place);
}

bool is_file(const std::filesystem::path &path) {
  std::error_code error;
  return std::filesystem::is_regular_file(path, error);
}

// The clones of a cluster that an order hasn't named yet.
class clones_to_order {
public:
  clones_to_order(process_frame &frame, const std::vector<std::string> &clones)
      : frame_(frame), left_(clones.begin(), clones.end()) {}
  // False with a message: not in the cluster, or named before.
  bool take(std::string_view name, const line_reader &lines, std::vector<std::string> &order) {
    const auto found = left_.find(name);
    if (found == left_.end())
      return refuse(frame_, "Clone " + std::string(name) + " of the order is not in its cluster, or stands twice.",
                    lines.place());
    left_.erase(found);
    order.emplace_back(name);
    return true;
  }

private:
  process_frame &frame_;
  std::unordered_multiset<std::string_view> left_;
};

bool read_order_table(process_frame &frame, const std::filesystem::path &file, const std::vector<std::string> &clones,
                      std::vector<std::string> &order) {
  clones_to_order left(frame, clones);
  line_reader lines(file);
  std::string_view line;
  if (!lines.next(line) || !line.starts_with(head_of_order))
    return refuse(frame, "This is no table of consecutive clones: its first line is not the header.", lines.place());
  std::vector<std::string_view> fields;
  bool zones = false;
  while (lines.next(line)) {
    if (zones)
      return refuse(frame, "A row stands behind the zones of markers.", lines.place());
    zones = line.starts_with(start_of_zones);
    if (zones)
      continue;
    std::int32_t i = 0;
    if (class_serv_raznoe::cut_string_views(line, fields, name_column + 2) <= name_column ||
        !whole_number_parse(fields[0], i) || static_cast<std::size_t>(i) != order.size() + 1)
      return refuse(frame, "A row begins with its number, the clone's number and name, separated by tabs.",
                    lines.place());
    if (!left.take(fields[name_column], lines, order))
      return false;
  }
  return true;
}

bool read_order_list(process_frame &frame, const std::filesystem::path &file, const std::vector<std::string> &clones,
                     std::vector<std::string> &order) {
  clones_to_order left(frame, clones);
  line_reader lines(file);
  std::string_view line;
  while (lines.next(line))
    if (!left.take(line, lines, order))
      return false;
  return true;
}

// The one ORB_order_NAME_....txt of a folder; its tail tells metric and cutoff. Empty when there is none or several.
std::filesystem::path list_of_order(const std::filesystem::path &folder, const std::string &name) {
  std::filesystem::path found;
  std::error_code failed;
  for (const std::filesystem::directory_entry &entry : std::filesystem::directory_iterator(folder, failed))
    if (entry.path().filename().string().starts_with("ORB_order_" + name + "_")) {
      if (!found.empty())
        return {};
      found = entry.path();
    }
  return found;
}

} // namespace

bool read_orders_of_run(process_frame &frame, const run_folder &run, std::vector<clone_order> &orders) {
  std::vector<clone_order> read(run.clusters.size());
  for (std::size_t c = 0; c < run.clusters.size(); ++c) {
    if (!run.clusters[c].contig)
      continue;
    const std::string name = cluster_file_name(run.clusters[c].name);
    const std::filesystem::path folder = run.folder / name;
    const std::filesystem::path table = folder / ("Consec_dist_NoBuriedORB_" + name + ".txt");
    if (is_file(table)) {
      if (!read_order_table(frame, table, run.clones[c], read[c].emplace()))
        return false;
    } else if (const std::filesystem::path list = list_of_order(folder, name); !list.empty()) {
      if (!read_order_list(frame, list, run.clones[c], read[c].emplace()))
        return false;
    }
  }
  orders = std::move(read);
  return true;
}

bool read_Q_clones(process_frame &frame, const std::filesystem::path &file, std::vector<std::string> &names) {
  line_reader lines(file);
  std::vector<std::string> read;
  std::vector<std::string_view> fields;
  std::string_view line;
  bool table = false;
  auto column = name_column;
  while (lines.next(line)) {
    const bool of_layout = line.starts_with(head_of_suspects);
    if (lines.line_number() == 1 && (of_layout || line.starts_with(head_of_Q_clones))) {
      table = true;
      column = of_layout ? 0 : name_column;
      continue;
    }
    if (line.empty())
      continue;
    const std::int32_t n = class_serv_raznoe::cut_string_views(line, fields, name_column + 2);
    if (table ? n <= column || fields[column].empty() : n != 1)
      return refuse(frame,
                    table ? "A row of the report of Q-clones has no name of a clone."
                          : "A list of Q-clones is the report of a revision, or names, one a line.",
                    lines.place());
    read.emplace_back(fields[table ? column : 0]);
  }
  names = std::move(read);
  return true;
}

std::vector<std::filesystem::path> Q_clone_reports_of_folder(const std::filesystem::path &folder) {
  std::vector<std::filesystem::path> found;
  std::error_code failed;
  for (const std::filesystem::directory_entry &entry : std::filesystem::directory_iterator(folder, failed))
    if (entry.path().filename().string().ends_with(end_of_Q_report) && is_file(entry.path()))
      found.push_back(entry.path());
  std::sort(found.begin(), found.end());
  return found;
}

} // namespace orb
