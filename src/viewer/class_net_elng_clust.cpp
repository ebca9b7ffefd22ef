#include "viewer/class_net_elng_clust.h"

#include <algorithm>

#include "frame/class_math1.h"
#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/text_lines.h"

namespace orb {

namespace {

constexpr std::int32_t rows_at_first = 100000, columns_at_first = 2;
constexpr std::int32_t rows_by_name = 1000000, columns_by_name = 6;
constexpr std::int32_t column_of_captions = 1, column_of_clusters = 2;
constexpr std::int64_t lines_between_polls = 10000;
constexpr std::int32_t white = 12, black = 1; // of the palette

// Sorts and drops repeats; strings stand from 1.
void make_set(std::vector<std::string> &texts) {
  std::int32_t n = static_cast<std::int32_t>(texts.size()) - 1;
  class_math1::sort_list_of_string_and_delete_repeats(texts, n);
  texts.resize(static_cast<std::size_t>(n) + 1);
}

std::int32_t place_in(std::string_view text, const std::vector<std::string> &sorted) {
  if (sorted.size() < 2)
    return 0;
  const auto at = std::lower_bound(sorted.begin() + 1, sorted.end(), text);
  return at != sorted.end() && *at == text ? static_cast<std::int32_t>(at - sorted.begin()) : 0;
}

} // namespace

void class_net_elng_clust::start0() {
  *this = {};
}

bool class_net_elng_clust::readClusteringFile(process_frame &frame, random_source &chance) {
  const std::filesystem::path file =
      frame.open_file_dialog("Open file with table of cluster name for nodes: <node_caption> <cluster_name>");
  return !file.empty() && update_clusterInfo(frame, file, column_of_clusters, rows_at_first, columns_at_first, chance);
}

bool class_net_elng_clust::readClusteringFile_run(process_frame &frame, const std::filesystem::path &file,
                                                  random_source &chance) {
  return update_clusterInfo(frame, file, column_of_clusters, rows_by_name, columns_by_name, chance);
}

bool class_net_elng_clust::readClusteringFile_newColSelected(process_frame &frame, std::int32_t column,
                                                             random_source &chance) {
  return is_loaded() && column > column_of_captions && column <= columns_by_name &&
         update_clusterInfo(frame, file_name_, column, rows_by_name, columns_by_name, chance);
}

bool class_net_elng_clust::update_clusterInfo(process_frame &frame, const std::filesystem::path &file,
                                              std::int32_t column, std::int32_t n_rows_max, std::int32_t n_columns_max,
                                              random_source &chance) {
  class_net_elng_clust read;
  if (!read.update_clusterInfo__a(frame, file, n_rows_max, n_columns_max))
    return false;
  read.update_clusterInfo__b(column);
  read.cluster_look_make(chance);
  if (read.file_name_ == file_name_)
    read.column_is_shown_ = column_is_shown_;
  *this = std::move(read);
  return true;
}

bool class_net_elng_clust::update_clusterInfo__a(process_frame &frame, const std::filesystem::path &file,
                                                 std::int32_t n_rows_max, std::int32_t n_columns_max) {
  line_reader lines(file);
  std::string_view line;
  std::vector<std::string_view> cells;
  std::int32_t n_rows = 0;
  while (n_rows < n_rows_max && lines.next(line)) {
    if (!is_line_of_text(frame, lines, line))
      return false;
    class_serv_raznoe::cut_string_views(line, cells, n_columns_max);
    ++n_rows;
    for (std::size_t i = cells.size(); i > 0; --i) // the last one first, so that the row is made in one go
      table_.text_in_cell_set(n_rows, static_cast<std::int32_t>(i), cells[i - 1]);
    if (n_rows % lines_between_polls == 0 && !frame.goes_on())
      return false;
  }
  if (n_rows < 2)
    return frame.refuse(
        "A table of clusters is a heading and rows of a caption, a tab and a name of a cluster\r\nfile " +
        file.string());
  if (!lines.at_end())
    frame.doubt("Only " + std::to_string(n_rows_max) + " rows of a table of clusters are taken", lines.place());
  file_name_ = file;
  return true;
}

void class_net_elng_clust::update_clusterInfo__b(std::int32_t column) {
  column_ = column;
  const std::int32_t n_rows = table_.n_rows_get();
  const auto cluster_name = [&](std::int32_t row) -> const std::string & {
    const std::string &name = table_.text_in_cell_get(row, column);
    return name.empty() ? table_.text_in_cell_get(row, column_of_captions) : name;
  };
  caption_names_.assign(1, {});
  cluster_names_.assign(1, {});
  for (std::int32_t row = 2; row <= n_rows; ++row) {
    if (table_.text_in_cell_get(row, column_of_captions).empty())
      continue;
    caption_names_.push_back(table_.text_in_cell_get(row, column_of_captions));
    cluster_names_.push_back(cluster_name(row));
  }
  make_set(caption_names_);
  make_set(cluster_names_);
  row_of_caption_.assign(caption_names_.size(), 0);
  n_rows_of_cluster_.assign(cluster_names_.size(), 0);
  cluster_of_row_.assign(static_cast<std::size_t>(n_rows) + 1, 0);
  for (std::int32_t row = 2; row <= n_rows; ++row) {
    const std::int32_t caption = place_in(table_.text_in_cell_get(row, column_of_captions), caption_names_);
    if (caption == 0)
      continue;
    if (row_of_caption_[static_cast<std::size_t>(caption)] == 0)
      row_of_caption_[static_cast<std::size_t>(caption)] = row;
    const std::int32_t cluster = place_in(cluster_name(row), cluster_names_);
    cluster_of_row_[static_cast<std::size_t>(row)] = cluster;
    ++n_rows_of_cluster_[static_cast<std::size_t>(cluster)];
  }
}

void class_net_elng_clust::cluster_look_make(random_source &chance) {
  cluster_look_.assign(n_rows_of_cluster_.size(), {white, black, 0});
  for (std::size_t i = 1; i < cluster_look_.size(); ++i) {
    cluster_appearance &look = cluster_look_[i];
    if (n_rows_of_cluster_[i] > 1)
      look.fill = random_color(chance, false, false, 0);
    look.border = random_color(chance, false, false, look.fill);
    look.shape = random_shape(chance);
  }
}

std::int32_t class_net_elng_clust::row_of(std::string_view caption) const {
  const std::int32_t place = place_in(caption, caption_names_);
  return place > 0 ? row_of_caption_[static_cast<std::size_t>(place)] : 0;
}

std::int32_t class_net_elng_clust::iClusterOfRow_get(std::int32_t row) const {
  return row >= 1 && static_cast<std::size_t>(row) < cluster_of_row_.size()
             ? cluster_of_row_[static_cast<std::size_t>(row)]
             : 0;
}

std::int32_t class_net_elng_clust::cluster_of_caption(std::string_view caption) const {
  return iClusterOfRow_get(row_of(caption));
}

std::string class_net_elng_clust::sClusterName_forNodeName_get(std::string_view caption) const {
  const std::int32_t cluster = cluster_of_caption(caption);
  return cluster > 0 ? cluster_name_get(cluster) : std::string();
}

std::vector<std::string> class_net_elng_clust::sNodeCaptionsList_forCluster_get(std::string_view cluster_name) const {
  std::vector<std::string> captions;
  const std::int32_t cluster = place_in(cluster_name, cluster_names_);
  for (std::int32_t row = 2; cluster > 0 && row <= table_.n_rows_get(); ++row)
    if (iClusterOfRow_get(row) == cluster)
      captions.push_back(table_.text_in_cell_get(row, column_of_captions));
  return captions;
}

std::string class_net_elng_clust::sCaptionForNode(const std::string &caption) const {
  const std::int32_t row = row_of(caption);
  std::string shown;
  for (std::int32_t column = column_of_captions + 1; row > 0 && column <= table_.n_columns_get(); ++column) {
    if (!column_is_shown_get(column))
      continue;
    const std::string &cell = table_.text_in_cell_get(row, column);
    shown += (shown.empty() ? " (" : ", ") + (cell.empty() ? "-" : cell);
  }
  return shown.empty() ? caption : caption + shown + ")";
}

void class_net_elng_clust::column_is_shown_set(std::int32_t column, bool shown) {
  if (column < 1 || column > columns_by_name)
    return;
  column_is_shown_.resize(columns_by_name + 1, false);
  column_is_shown_[static_cast<std::size_t>(column)] = shown;
}

bool class_net_elng_clust::column_is_shown_get(std::int32_t column) const {
  return column >= 1 && static_cast<std::size_t>(column) < column_is_shown_.size() &&
         column_is_shown_[static_cast<std::size_t>(column)];
}

} // namespace orb
