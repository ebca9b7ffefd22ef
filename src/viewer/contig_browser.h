// Picking one contig out of the table that a run wrote, and the file to open for it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "frame/process_frame.h"

namespace orb {

// A row of report_contigs.txt or report_clusters.txt. Numbers are wider than the table's old readers had them, so that
// no large cluster is misread.
class C_Contig {
public:
  bool is_used_get() const { return is_used_; }
  void is_used_set(bool used) { is_used_ = used; }
  const std::string &full_Name_get() const { return full_Name_; }
  void full_Name_set(std::string name) { full_Name_ = std::move(name); }
  const std::string &user_remark_get() const { return user_remark_; }
  void user_remark_set(std::string remark) { user_remark_ = std::move(remark); }
  std::int32_t n_rank_MTP_more_1_get() const { return n_rank_MTP_more_1_; }
  void n_rank_MTP_more_1_set(std::int32_t n) { n_rank_MTP_more_1_ = n; }
  std::int32_t n_gaps_get() const { return n_gaps_; }
  void n_gaps_set(std::int32_t n) { n_gaps_ = n; }
  std::int32_t i_width_get() const { return i_width_; }
  void i_width_set(std::int32_t width) { i_width_ = width; }
  std::int32_t diam_get() const { return diam_; }
  void diam_set(std::int32_t diam) { diam_ = diam; }
  double cutoff_get() const { return cutoff_; }
  void cutoff_set(double cutoff) { cutoff_ = cutoff; }
  bool bcontig_get() const { return bcontig_; }
  void bcontig_set(bool is_contig) { bcontig_ = is_contig; }
  std::int32_t n_clones_get() const { return n_clones_; }
  void n_clones_set(std::int32_t n) { n_clones_ = n; }
  const std::string &cluster_get() const { return cluster_; }
  void cluster_set(std::string name) { cluster_ = std::move(name); }
  std::int32_t n_cluster_get() const { return n_cluster_; }
  void n_cluster_set(std::int32_t n) { n_cluster_ = n; }

private:
  bool is_used_ = false;
  std::string full_Name_, user_remark_;
  std::int32_t n_rank_MTP_more_1_ = 0, n_gaps_ = 0, i_width_ = 0, diam_ = 0;
  double cutoff_ = 0;
  bool bcontig_ = false;
  std::int32_t n_clones_ = 0;
  std::string cluster_;
  std::int32_t n_cluster_ = 0;
};

// Contigs from 1.
class clsContigs {
public:
  // Adds a line of the table; a field that is missing or no number is 0. False for a line without a name.
  bool AddContig(std::string_view line, std::int32_t index);
  C_Contig *GetContigByRef(std::int32_t index); // null when out of range
  C_Contig GetContig(std::int32_t index) const; // an empty one when out of range
  std::int32_t GetCount() const { return static_cast<std::int32_t>(contigs_.size()) - 1; }

private:
  std::vector<C_Contig> contigs_{1};
};

// The dialog: what it shows, and what its events do.
class FrmContigSelect {
public:
  // Reads the table; false when it can't be read, and then the list is empty. Its heading line isn't looked at.
  bool SetContigsName(const std::filesystem::path &table);
  const clsContigs &contigs() const { return contigs_; }
  std::int32_t GetSelectedIndex() const { return selected_; } // 0: none
  const std::string &TxtClustersCapture() const { return heading_; }
  const std::vector<std::string> &TxtClusters() const { return rows_; } // from 0
  const std::string &status() const { return status_; }

  // A click on a line of the list, from 1.
  void row_clicked(std::int32_t row);
  // "Go": finds the file of the chosen row; GetNetFileName is empty when there is none.
  void CmdSelect();
  const std::filesystem::path &GetNetFileName() const { return file_; }
  // The caller separates the cluster into contigs in place of showing a net.
  bool is_to_be_separated() const;

private:
  std::filesystem::path file_with_ending(const std::filesystem::path &folder) const;

  std::filesystem::path table_, file_;
  clsContigs contigs_;
  std::int32_t selected_ = 0;
  std::string heading_, status_;
  std::vector<std::string> rows_;
};

} // namespace orb
