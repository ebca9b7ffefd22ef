// The .fpc file and the tables of contigs, as exact texts.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "clustering/contig_statistics.h"
#include "clustering_helpers.h"
#include "database/class_markers.h"

namespace {

using namespace orb_test;
using texts = std::vector<std::string>;

// Five clones of 11 to 15 bands: C1 and C3 in "cl_2", C2 alone in "cl_3", C4 and C5 in "Singletones".
class fpc_files : public testing::Test {
protected:
  library lib_{5};
  class_FPCto_import contigs_{lib_.frame, lib_.settings, lib_.database};
  void SetUp() override {
    contigs_.clear_all_and_create_cluster_AllDB(5, "cl_1", "all");
    contigs_.cluster_off_clusterName("cl_1");
    contigs_.add_new_cluster({1, 3}, "cl_2", "all_pr18.00", false);
    contigs_.add_new_cluster({2}, "cl_3", "all_b", false);
    contigs_.add_new_cluster({4, 5}, "Singletones", "", false);
    contigs_.clone_coordinates_set(1, 3, 13);
    contigs_.clone_coordinates_set(3, 1, 13);
    contigs_.clone_coordinates_set(2, 1, 12);
    for (cluster_id id = 1; id <= 3; ++id)
      contigs_.make_min_and_max_coor_for_cluster(id);
  }
  // A clone record without its empty line; `map` stands as it is.
  static std::string record(const std::string &name, const std::string &map, const std::string &bands,
                            const std::string &probe, const std::string &end) {
    return end + "BAC : \"" + name + "\"" + end + map + "Gel_number " + end + "Bands  " + bands + end + probe +
           "Creation_date 111 2 3 4 5" + end + "Modified_date 111 2 3 4 5" + end;
  }
  static std::string map_lines(const std::string &contig, const std::string &left, const std::string &right,
                               const std::string &end) {
    return "Map \"" + contig + "\" Ends Left " + left + end + "Map \"" + contig + "\" Ends Right " + right +
           " Oldctg cl_2" + end;
  }
};

TEST_F(fpc_files, plain_flavour) {
  contigs_.cluster_user_remark_set(2, "Zones: z");
  contigs_.print_FPC_like_file_run("\\FPC_like.fpc", "\\FPC_like_pp.fpc", lib_.folder, true);
  EXPECT_EQ(lib_.record.messages, texts{"Printing of FPC like files .fpc is completed."});
  EXPECT_EQ(std::count(lib_.record.panels.begin(), lib_.record.panels.end(), "1: Printing of .fpc files"), 1);
  EXPECT_EQ(lib_.file("FPC_like.fpc"),
            "// fpc project ORB\r\n// Contigs 1  Clones 5  Markers 0  Bands 166\r\n" +
                record("C1", map_lines("cl_2", "3.000", "13.000", "\r\n"), "1 11", "", "\r\n") +
                record("C2", "", "12 12", "", "\r\n") +
                record("C3", map_lines("cl_2", "1.000", "13.000", "\r\n"), "24 13", "", "\r\n") +
                record("C4", "", "37 14", "", "\r\n") + record("C5", "", "51 15", "", "\r\n") +
                "\nContigdata 4\n\n\r\ncl_2\r\nUser_remark \"Zones: z\"\r\nTrace_remark \"\"\r\n\r\n");
}

TEST_F(fpc_files, pp_flavour_with_markers) {
  number_list numbers;
  std::vector<bool> are_new;
  lib_.database.markers().redim_private_arrays(5, 5, 5);
  lib_.database.markers().add_clone_with_markers_new(lib_.frame, 3, {"", "mA"}, 1, numbers, are_new);
  lib_.database.markers().finish_of_adding();
  contigs_.cluster_trace_remark_set(2, "t");
  contigs_.print_FPC_like_file_run(lib_.folder / "a.fpc", lib_.folder / "b.fpc", lib_.folder, true);
  EXPECT_EQ(lib_.file("b.fpc"),
            "// fpc project ORB\n// Contigs 1  Clones 5  Markers 1  Bands 166\n" +
                record("C1", map_lines("ctg1", "3.000", "13.000", "\n"), "1 11", "", "\n") +
                record("C2", "", "12 12", "", "\n") +
                record("C3", map_lines("ctg1", "1.000", "13.000", "\n"), "24 13", "Positive_Probe \"mA\" New\n", "\n") +
                record("C4", "", "37 14", "", "\n") + record("C5", "", "51 15", "", "\n") +
                "\nMarkerdata\n\nMarker_STS : \"mA\"\nCreation_date 11 2 3 4 5\nModified_date 11 2 3 4 5\n"
                "\nContigdata 4\n\n\nctg1\nUser_remark \"cl_2\"\nTrace_remark \"t\"\n\n");
  EXPECT_EQ(lib_.file("a.fpc").find("Markerdata"), std::string::npos);
  EXPECT_EQ(lib_.file("rename_for_FPC.tsv"), "c\tname\tFPCname\tnClones\tminLeftCoor\tmaxRightCoor\r\n"
                                             "2\tcl_2\tctg1\t2\t1.000\t13.000\r\n3\tcl_3\tC2\t1\t1\t12\r\n"
                                             "4\tSingletones\r\n");
}

TEST_F(fpc_files, for_a_genome_browser) {
  const struct {
    const char *entry, *left, *right;
  } cases[] = {{"2", "4.000", "26.000"}, {"0", "2.400", "15.600"}, {"x", "2.400", "15.600"}, {"-1", "2.400", "15.600"}};
  for (const auto &c : cases) {
    lib_.answer("For Browse (i.e., left coor in ctg start from zero, coor in kb)?", "yes");
    lib_.answer("Virtual band size:", c.entry);
    contigs_.write_fpc_file({1}, lib_.folder / "g", true, lib_.folder);
    const std::string bytes = lib_.file("g.fpc");
    EXPECT_NE(bytes.find(map_lines("ctg1", c.left, c.right, "\n")), std::string::npos) << c.entry << bytes;
    EXPECT_NE(bytes.find("// Contigs 1  Clones 1 "), std::string::npos);
  }
  lib_.answer("For Browse", "yes");
  contigs_.write_fpc_file({1}, {}, true, {});
  EXPECT_TRUE(std::filesystem::exists(lib_.folder / "FPC_like_ForGBrowse.fpc"));
  contigs_.write_fpc_file({1}, {}, true, {});
  EXPECT_TRUE(std::filesystem::exists(lib_.folder / "FPC_like.fpc"));
}

TEST_F(fpc_files, long_names_and_chosen_clones) {
  contigs_.write_fpc_file({2, 3}, lib_.folder / "n.fpc", false, lib_.folder, true);
  const std::string bytes = lib_.file("n.fpc");
  EXPECT_NE(bytes.find("Map \"all_pr18.00\" Ends Left 1.000"), std::string::npos);
  EXPECT_NE(bytes.find("\r\nall_pr18.00\r\nUser_remark \"\"\r\nTrace_remark \"cl_2\"\r\n"), std::string::npos);
  lib_.write("chosen.txt", "");
  lib_.answer("Open file with list of selected clones", (lib_.folder / "chosen.txt").string());
  contigs_.print_FPC_like_file_run(lib_.folder / "o.fpc", {}, lib_.folder, false);
  EXPECT_EQ(lib_.record.messages.back(), "list_of_clones(0)=0");
  EXPECT_FALSE(std::filesystem::exists(lib_.folder / "o.fpc"));
}

TEST_F(fpc_files, table_of_coordinates) {
  contigs_.print_coordinates_of_clones({3, 2, 4}, lib_.folder / "coordinates_of_clones.txt");
  EXPECT_EQ(
      lib_.file("coordinates_of_clones.txt"),
      "BAC\tctg\tnClonesInCtg\tcoorLeft\tcoorRight\tcoorLeftMinInCtg\tcoorRightMaxInCtg\tcoor/coorMax\r\n"
      "C3\tcl_2\t2\t1\t13\t1\t13\t0.0769\r\nC2\tcl_3\t1\t1\t12\t1\t12\t0.0833\r\nC4\tSingletones\t2\t\t\t\t\t\r\n");
  contigs_.print_coordinates_of_clones({}, lib_.folder / "none.txt");
  EXPECT_EQ(lib_.record.messages, texts{"list_of_clones(0)=0"});
}

TEST_F(fpc_files, statistics_table) {
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
