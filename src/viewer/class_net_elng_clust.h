// The table that overrides the clusters of an open net: a text table with a heading, captions of nodes in its first
// column and names of clusters in a column that the user chooses; other columns can stand behind the captions.
//
// Clusters have numbers from 1 in the order of their names.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "drawing/palette.h"
#include "frame/class_text_table.h"
#include "frame/process_frame.h"
#include "frame/random_source.h"

namespace orb {

// How the nodes of a cluster look: entries of the palette, and a shape.
struct cluster_appearance {
  std::int32_t fill = 0, border = 0;
  std::int16_t shape = 0;
};

class class_net_elng_clust {
public:
  // Forgets the table.
  void start0();
  bool is_loaded() const { return !cluster_names_.empty(); }
  const std::filesystem::path &file_name_get() const { return file_name_; }
  std::int32_t cluster_column_get() const { return column_; }
  std::int32_t n_columns_get() const { return table_.n_columns_get(); }
  const std::string &heading_get(std::int32_t column) const { return table_.text_in_cell_get(1, column); }

  // Asks for the file and reads two columns, 100,000 rows at most. False, and the table as it was, when cancelled or
  // refused; messages say why. Looks are drawn anew with each table. Throw file_error.
  bool readClusteringFile(process_frame &frame, random_source &chance);
  // A named file: six columns and 1,000,000 rows at most.
  bool readClusteringFile_run(process_frame &frame, const std::filesystem::path &file, random_source &chance);
  // The same file again, with another column of clusters.
  bool readClusteringFile_newColSelected(process_frame &frame, std::int32_t column, random_source &chance);

  std::int32_t n_clusters_get() const { return static_cast<std::int32_t>(n_rows_of_cluster_.size()) - 1; }
  std::int32_t iClusterOfRow_get(std::int32_t row) const;          // of the table; 0: none
  std::int32_t cluster_of_caption(std::string_view caption) const; // 0: the caption isn't in the table
  const std::string &cluster_name_get(std::int32_t cluster) const {
    return cluster_names_[static_cast<std::size_t>(cluster)];
  }
  std::int32_t n_rows_of_cluster_get(std::int32_t cluster) const {
    return n_rows_of_cluster_[static_cast<std::size_t>(cluster)];
  }
  const cluster_appearance &cluster_look_get(std::int32_t cluster) const {
    return cluster_look_[static_cast<std::size_t>(cluster)];
  }
  // Empty for a caption that isn't in the table.
  std::string sClusterName_forNodeName_get(std::string_view caption) const;
  // Captions of the rows of a cluster, in the order of the table.
  std::vector<std::string> sNodeCaptionsList_forCluster_get(std::string_view cluster_name) const;
  // The caption with the shown columns of its row behind it; as it is for one that isn't in the table, or when no
  // column is shown.
  std::string sCaptionForNode(const std::string &caption) const;
  void column_is_shown_set(std::int32_t column, bool shown);
  bool column_is_shown_get(std::int32_t column) const;

private:
  bool update_clusterInfo(process_frame &frame, const std::filesystem::path &file, std::int32_t column,
                          std::int32_t n_rows_max, std::int32_t n_columns_max, random_source &chance);
  bool update_clusterInfo__a(process_frame &frame, const std::filesystem::path &file, std::int32_t n_rows_max,
                             std::int32_t n_columns_max);
  void update_clusterInfo__b(std::int32_t column);
  void cluster_look_make(random_source &chance);
  std::int32_t row_of(std::string_view caption) const; // 0: none

  std::filesystem::path file_name_;
  class_text_table table_;
  std::int32_t column_ = 0;
  std::vector<std::string> caption_names_, cluster_names_; // sorted without repeats, from 1; empty: nothing is loaded
  std::vector<std::int32_t> row_of_caption_;               // by place in caption_names_: its first row
  std::vector<std::int32_t> cluster_of_row_, n_rows_of_cluster_;
  std::vector<cluster_appearance> cluster_look_; // from 1
  std::vector<bool> column_is_shown_;
};

} // namespace orb
