// The summary names the contigs that lack something, with the reason and what helps.
#include <gtest/gtest.h>

#include "reports/contig_summary_text.h"

namespace {

using namespace orb;

contig_summary contig(const std::string &name, std::int32_t n_clones, std::int32_t length, std::int32_t width,
                      const std::string &remark = {}) {
  return {name, n_clones, length, 15, width, 5, true, remark};
}

TEST(contig_summary_text, contigs_without_map_or_order_are_named_with_what_helps) {
  adapt_clust_result result;
  for (int i = 1; i <= 12; ++i)
    result.clusters.push_back(contig("big_" + std::to_string(i), 1300, 0, -1, "Too large"));
  result.clusters.push_back(contig("loose", 20, 0, -1, "Not connected"));
  result.clusters.push_back(contig("wide", 301, 90, 3));
  for (const auto &[n_clones, width] : {std::pair{300, 9}, {301, 2}, {5000, 1}})
    result.clusters.push_back(contig("whole", n_clones, 90, width));
  contig_figures figures = contig_figures_of(result, 6);
  const std::string text = text_of_contigs(figures);
  const auto has = [&](const std::string &part) { return text.find(part) != std::string::npos; };
  EXPECT_TRUE(has("(none keeps them whole): 12, with 15,600 clones:\n  big_1 (1,300 clones), ")) << text;
  EXPECT_TRUE(has("big_10 (1,300 clones) and 2 more.\n"));
  EXPECT_FALSE(has("big_11 (1"));
  EXPECT_TRUE(has("not connected at the cutoff (a lower --cutoff may join them): 1, with 20 clones:\n  loose (20"));
  EXPECT_TRUE(has("Contigs without order, of more than 300 clones and wider than 2 "));
  EXPECT_TRUE(has(": 1, with 301 clones:\n  wide (301 clones).\n"));
  EXPECT_FALSE(has("whole (")) << "these have both";
  EXPECT_FALSE(has("in windows"));
  figures.ordering = false;
  figures.windows = {2, 30, 1};
  const std::string other = text_of_contigs(figures);
  EXPECT_EQ(other.find("without order"), std::string::npos) << "it wasn't asked for";
  EXPECT_NE(other.find(": 2. Weak joins of their windows (see order_control_): 1 of 30.\n"), std::string::npos);
}

// A contig that stayed wide to the end is named with what it may mean and the way on; one of allowed width isn't.
TEST(contig_summary_text, wide_contigs_are_named) {
  adapt_clust_result result;
  result.clusters.push_back(contig("cl_7", 2100, 900, 4, "Wide: may join apart places"));
  result.clusters.back().n_far = 31;
  result.clusters.push_back(contig("cl_8", 100, 90, 1));
  const std::string text = text_of_contigs(contig_figures_of(result, 6));
  EXPECT_NE(text.find(": 1 contigs, with 2,100 clones, 31 of them far from their tiling path:\n  cl_7 (2,100 clones, "
                      "width 4, 31 far).\n"),
            std::string::npos)
      << text;
  EXPECT_NE(text.find("--clone-test or --method layout"), std::string::npos);
  result.clusters.erase(result.clusters.begin());
  EXPECT_EQ(text_of_contigs(contig_figures_of(result, 6)).find("--clone-test"), std::string::npos);
}

} // namespace
