// The .fpc file, as exact texts, and its dates.
#include <gtest/gtest.h>

#include <algorithm>

#include "database/class_markers.h"
#include "fpc/fpc_dates.h"
#include "fpc/fpc_writing.h"
#include "support/clustering_helpers.h"

namespace {

using namespace orb_test;
using texts = std::vector<std::string>;

class fpc_files : public five_clones_in_contigs {
protected:
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
  print_FPC_like_file_run(lib_.frame, lib_.settings, lib_.database, contigs_, "\\FPC_like.fpc", "\\FPC_like_pp.fpc",
                          lib_.folder, true);
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
  print_FPC_like_file_run(lib_.frame, lib_.settings, lib_.database, contigs_, lib_.folder / "a.fpc",
                          lib_.folder / "b.fpc", lib_.folder, true);
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
    write_fpc_file(lib_.frame, lib_.database, contigs_, {1}, lib_.folder / "g", true, lib_.folder);
    const std::string bytes = lib_.file("g.fpc");
    EXPECT_NE(bytes.find(map_lines("ctg1", c.left, c.right, "\n")), std::string::npos) << c.entry << bytes;
    EXPECT_NE(bytes.find("// Contigs 1  Clones 1 "), std::string::npos);
  }
  lib_.answer("For Browse", "yes");
  write_fpc_file(lib_.frame, lib_.database, contigs_, {1}, {}, true, {});
  EXPECT_TRUE(std::filesystem::exists(lib_.folder / "FPC_like_ForGBrowse.fpc"));
  write_fpc_file(lib_.frame, lib_.database, contigs_, {1}, {}, true, {});
  EXPECT_TRUE(std::filesystem::exists(lib_.folder / "FPC_like.fpc"));
}

TEST_F(fpc_files, long_names_and_chosen_clones) {
  write_fpc_file(lib_.frame, lib_.database, contigs_, {2, 3}, lib_.folder / "n.fpc", false, lib_.folder, true);
  const std::string bytes = lib_.file("n.fpc");
  EXPECT_NE(bytes.find("Map \"all_pr18.00\" Ends Left 1.000"), std::string::npos);
  EXPECT_NE(bytes.find("\r\nall_pr18.00\r\nUser_remark \"\"\r\nTrace_remark \"cl_2\"\r\n"), std::string::npos);
  lib_.write("chosen.txt", "");
  lib_.answer("Open file with list of selected clones", (lib_.folder / "chosen.txt").string());
  print_FPC_like_file_run(lib_.frame, lib_.settings, lib_.database, contigs_, lib_.folder / "o.fpc", {}, lib_.folder,
                          false);
  EXPECT_EQ(lib_.record.messages.back(), "list_of_clones(0)=0");
  EXPECT_FALSE(std::filesystem::exists(lib_.folder / "o.fpc"));
}

TEST(fpc_dates, both_ways) {
  double date = 5;
  for (const char *text : {"11 2 3 4 5", "00 2 29 0 0", "24 12 31 23 59"}) {
    ASSERT_TRUE(date_from_FPC_format_get(text, date)) << text;
    EXPECT_EQ(str_date_from_FPC_format_get(date), text);
  }
  date = 5;
  for (const char *text : {"", "11 2 3 4", "11 2 3 4 5 6", "11 13 3 4 5", "11 2 30 4 5", "11 2 3 24 5", "11 2 x 4 5",
                           "-1 2 3 4 5", "11 2 0 4 5"})
    EXPECT_FALSE(date_from_FPC_format_get(text, date)) << text;
  EXPECT_EQ(date, 5);
}

} // namespace
