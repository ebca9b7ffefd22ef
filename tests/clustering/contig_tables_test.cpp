// The tables of contigs, as exact texts.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "clustering/contig_statistics.h"
#include "database/class_markers.h"
#include "support/clustering_helpers.h"

namespace {

using namespace orb_test;
using texts = std::vector<std::string>;

using contig_tables = five_clones_in_contigs;

TEST_F(contig_tables, table_of_coordinates) {
  contigs_.print_coordinates_of_clones({3, 2, 4}, lib_.folder / "coordinates_of_clones.txt");
  EXPECT_EQ(
      lib_.file("coordinates_of_clones.txt"),
      "BAC\tctg\tnClonesInCtg\tcoorLeft\tcoorRight\tcoorLeftMinInCtg\tcoorRightMaxInCtg\tcoor/coorMax\r\n"
      "C3\tcl_2\t2\t1\t13\t1\t13\t0.0769\r\nC2\tcl_3\t1\t1\t12\t1\t12\t0.0833\r\nC4\tSingletones\t2\t\t\t\t\t\r\n");
  contigs_.print_coordinates_of_clones({}, lib_.folder / "none.txt");
  EXPECT_EQ(lib_.record.messages, texts{"list_of_clones(0)=0"});
}

TEST_F(contig_tables, statistics_table) {
  contigs_.print_N50_statistics();
  const std::string bytes = lib_.file("contig_statistics_1200.txt");
  // contigs of 13 and (unknown coordinates) 0 bands
  const std::string head = "Virtual band size\t1200\tbp\r\n\r\nMinimal number of clones\t2\r\nNumber of contigs\t2\r\n"
                           "Totatal length contigs\t15\tkbp\r\nTotatal number of clones in contigs\t4\r\n"
                           "N10=\t15\tkbp\tL10=\t1\tcontigs\r\n";
  EXPECT_EQ(bytes.substr(0, head.size()), head);
  const std::string tail = "Minimal number of clones\t11\r\nNumber of contigs\t0\r\nTotatal length contigs\t0\tkbp\r\n"
                           "Totatal number of clones in contigs\t0\r\nN10=\t0\tkbp\tL10=\t0\tcontigs\r\n";
  EXPECT_NE(bytes.find(tail), std::string::npos);
  EXPECT_EQ(std::count(bytes.begin(), bytes.end(), '\n'), 1 + 10 * 14);
  for (const char *entry : {"0.5", "many", "1E+300"}) {
    std::filesystem::remove(lib_.folder / "contig_statistics_1200.txt");
    lib_.answer("Virtual band size (bp, for contig length calculation):", entry);
    contigs_.print_N50_statistics();
    EXPECT_EQ(lib_.file("contig_statistics_1200.txt"), bytes) << entry;
  }
}

// Np by its meaning: the longest contigs, taken until they hold at least p percent of all bands.
TEST(length_statistic, equals_counting_from_the_longest) {
  random_source chance(41);
  for (int round = 0; round < 300; ++round) {
    std::vector<double> lengths;
    for (std::int32_t k = chance.number_up_to(12); k > 0; --k)
      lengths.push_back(chance.number_up_to(20));
    std::sort(lengths.begin(), lengths.end());
    const double total = std::accumulate(lengths.begin(), lengths.end(), 0.0);
    for (int p = 10; p <= 90; p += 10) {
      double held = 0;
      std::size_t n = 0;
      while (held * 100 < p * total)
        held += lengths[lengths.size() - ++n];
      const length_statistic got = length_statistic_get(lengths, p);
      ASSERT_EQ(got.n_contigs, static_cast<std::int32_t>(n));
      ASSERT_EQ(got.length, lengths[lengths.size() - n]);
    }
  }
  EXPECT_EQ(length_statistic_get({}, 50).n_contigs, 0);
  EXPECT_EQ(length_statistic_get(std::vector<double>{7.0}, 50).length, 7);
}

} // namespace
