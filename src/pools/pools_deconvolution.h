// The clones behind each probe of a table of positive pools: those in all three positive pools, as groups that overlaps
// hold together.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "net/class_clone_net_signif.h"
#include "pools/class_pools3D.h"

namespace orb {

struct deconvolved_probe {
  bool unclear = false;                   // too many groups of single clones
  bool largest_decides = false;           // the largest group alone explains all positive pools: it is the only one
  std::vector<number_list> groups;        // that are reported
  std::vector<std::int32_t> n_candidates; // of each: clones in three positive pools
};

class pools_deconvolution {
public:
  pools_deconvolution(const class_pools3D &pools, class_clone_net_signif &signif, const overlap_rule &rule)
      : pools_(pools), signif_(signif), rule_(rule) {}

  // False after a stop request.
  bool deconvolve(const positive_pools &positive, deconvolved_probe &made) const;
  // The lines of a probe behind the one of the table: what the empty set leaves unexplained, "unclear" or its groups.
  std::string text_of(const probe &of, const deconvolved_probe &made) const;

private:
  std::int32_t n_candidates(const number_list &group, const positive_pools &positive) const;
  void report_groups(const std::vector<number_list> &groups, const positive_pools &positive,
                     deconvolved_probe &made) const;
  void add_block(const number_list &group, std::int32_t n_candidates, const probe &of, bool decides,
                 std::string &text) const;

  const class_pools3D &pools_;
  class_clone_net_signif &signif_;
  const overlap_rule &rule_;
};

struct deconvolution_summary {
  std::int64_t n_probes = 0, n_with_groups = 0, n_unclear = 0;
  std::filesystem::path file;
};

// All probes of a table (an empty path asks) into res_for_deconv.txt, beside the table unless a folder is given. False,
// and no file, when it was cancelled or stopped or the table can't be read. Throws file_error.
bool for_deconv(const class_pools3D &pools, class_clone_net_signif &signif, const overlap_rule &rule,
                std::filesystem::path table, const std::filesystem::path &folder, deconvolution_summary &summary);

} // namespace orb
