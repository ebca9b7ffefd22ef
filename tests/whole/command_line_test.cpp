// The command line as scripts rely on it: help, wrong commands, exit statuses, what is refused and what stays
// untouched.
#include <nlohmann/json.hpp>
#include <sstream>
#include <vector>

#include "commands/verbs.h"
#include "support/program_run.h"

using whole::outcome;
namespace fs = std::filesystem;

class command_line : public whole::program_test {
protected:
  std::vector<std::string> files_beginning_with(const std::string &start) const {
    std::vector<std::string> names;
    for (const fs::directory_entry &entry : fs::directory_iterator(folder))
      if (const std::string name = entry.path().filename().string(); name.starts_with(start))
        names.push_back(name);
    return names;
  }
};

// Scripts and habits rest on these words: a change of them is seen in help.txt.
TEST_F(command_line, help_is_as_it_stands_in_help_txt) {
  std::string shown = "$ orb --help\n" + orb("--help").out;
  for (const orb::verb &row : orb::table_of_verbs()) {
    const outcome help = orb(row.name + " --help");
    EXPECT_EQ(help.status, 0) << row.name;
    EXPECT_EQ(help.err, "") << row.name;
    EXPECT_NE(help.out.find("Example:\n  orb " + row.name + " "), std::string::npos) << help.out;
    shown += "$ orb " + row.name + " --help\n" + help.out;
  }
  std::istringstream now(shown), before(whole::bytes_of(ORB_SOURCE_DIR "/tests/whole/help.txt"));
  std::string line_now, line_before, of;
  for (int number = 1;; ++number) {
    const bool is_now = bool(std::getline(now, line_now)), is_before = bool(std::getline(before, line_before));
    if (!is_now && !is_before)
      break;
    of = is_now && line_now.starts_with("$ orb") ? line_now : of;
    ASSERT_TRUE(is_now && is_before && line_now == line_before)
        << "line " << number << " of tests/whole/help.txt, in " << of
        << "\n  it says: " << (is_before ? line_before : "(its end)")
        << "\n  the program: " << (is_now ? line_now : "(its end)")
        << "\nIf the new text is meant, tools/renew-help writes the file anew.";
  }
}

TEST_F(command_line, mistakes_end_with_status2_and_name_the_nearest_known_word) {
  struct {
    std::string arguments, said;
  } const cases[]{
      {"", "a command is missing"},
      {"asemble x", "unknown command asemble; did you mean assemble?"},
      {"load " + example + " --out l.ORBdb --tolerence 5", "unknown option --tolerence; did you mean --tolerance?"},
      {"load " + example + " --out l.ORBdb --cutoff 5", "unknown option --cutoff"},
      {"load " + example, "--out is required"},
      {"list", "a word is missing that says what to do"},
      {"lst sort l a", "did you mean list sort?"},
      {"marker read l a", "did you mean markers read?"},
      {"list srot l a --out b", "unknown command list srot; did you mean list sort?"},
      {"net " + example + " --out n.ORBns --metric Sulston", "no metric \"Sulston\"; known are k2mn, Nof"},
      {"net " + example + " --out n.ORBns --metric KK2mn", "--cutoff is required"},
      {"net " + example + " --out n.ORBns --metric Special --cutoff 1", "--metric Special"},
      {"net " + example + " --out n.ORBns --start 5", "--start and --parts belong to --text"},
      {"assemble " + example + " --out d --additional-cutoff 15",
       "Additional cutoff has to be more than current cutoff"},
      {"assemble " + example + " --out d --additional-cutoff x",
       "Additional cutoff has to be numeric and more than current cutoff"},
      {"assemble " + example + " --out d --preset 6", "--preset"},
      {"assemble " + example + " --out d --step nan", "--step: \"nan\" isn't a number from 0 to 1000000"},
      {"assemble " + example + " --out d --max-clones 0", "--max-clones: \"0\""},
      {"net " + example + " --out n.ORBns --cutoff -5", "--cutoff: \"-5\""},
      {"load " + example + " --out l.ORBdb --plain-text", "--plain-text wants one text file of clones"},
  };
  for (const auto &c : cases) {
    const outcome seen = orb(c.arguments);
    EXPECT_EQ(seen.status, 2) << c.arguments << "\n" << seen.err;
    EXPECT_NE(seen.err.find(c.said), std::string::npos) << c.arguments << "\n" << seen.err;
    EXPECT_EQ(seen.out, "");
  }
  EXPECT_FALSE(fs::exists(folder / "l.ORBdb"));
  EXPECT_FALSE(fs::exists(folder / "n.ORBns"));
}

TEST_F(command_line, what_would_be_ignored_or_come_out_as_something_else_is_refused) {
  ASSERT_EQ(orb("load " + example + " --out l.ORBdb").status, 0);
  ASSERT_EQ(orb("net l.ORBdb --out n.ORBns").status, 0);
  whole::write_bytes(folder / "a.txt", "EC001A01\nEC001A03\nEC001A04\n");
  struct {
    std::string arguments, said;
  } const cases[]{
      {"load l.ORBdb --out m.ORBdb --name-format-in 1", "can't be used on a library file"},
      {"draw l.ORBdb n.ORBns a.txt --out a.png", "the ending .png names no form of drawings"},
      {"draw l.ORBdb n.ORBns a.txt --out a", "no ending names no form"},
      {"draw l.ORBdb n.ORBns a.txt --out a.net --several-metrics", "--several-metrics needs tables of p-values"},
  };
  for (const auto &c : cases) {
    const outcome seen = orb(c.arguments);
    EXPECT_EQ(seen.status, 2) << c.arguments << "\n" << seen.err;
    EXPECT_NE(seen.err.find(c.said), std::string::npos) << c.arguments << "\n" << seen.err;
  }
  EXPECT_TRUE(files_beginning_with("a.p").empty());
  ASSERT_EQ(orb("draw l.ORBdb n.ORBns a.txt --out a.graphml").status, 0);
  EXPECT_TRUE(whole::bytes_of(folder / "a.graphml").starts_with("<?xml")) << "the ending decides";
  ASSERT_EQ(orb("draw l.ORBdb n.ORBns a.txt --out b.png --format net").status, 0);
  EXPECT_TRUE(whole::bytes_of(folder / "b.png").starts_with("*"));
}

TEST_F(command_line, wrong_fingerprints_end_with_the_text_file_and_line) {
  std::string many = "BIG\t501\tGel\n";
  for (int i = 0; i < 501; ++i)
    many += std::to_string(100 + i) + "\n";
  struct {
    std::string content;
    std::vector<std::string> said;
  } const cases[]{
      {"A1\t3\tGel\n10\n30\n20\n-1\n", {"Wrong ordered bands 2 and 3(30>20) in clone 1 A1", "bad.sizes"}},
      {"A1\n10\n-1\n\nA2\n-5\n20\n-1\n", {"Wrong band 1(-5<0) in clone 2 A2", "bad.sizes"}},
      {"A1\n10\n60001\n-1\n", {"Wrong band 2(60001>60000=max) in clone 1 A1", "bad.sizes", "line"}},
      {many + "-1\n",
       {"DB_of_clones.MAX_number_of_bands_in_clone_get < n_different_bands_in_clone: _500 < 501", "bad.sizes"}},
      {std::string("\0\1\2\3binary\0\n", 12), {"bad.sizes"}},
      {"", {"NB! No clones was readen!"}},
      {"\n# About ORB\n\nORB turns fingerprints\ninto contigs.\n",
       {"not one band", "It begins: # About ORB", "bad.sizes"}},
  };
  for (const auto &c : cases) {
    whole::write_bytes(folder / "in" / "bad.sizes", c.content);
    const outcome seen = orb("load in --out l.ORBdb");
    EXPECT_EQ(seen.status, 1) << seen.err;
    for (const std::string &said : c.said)
      EXPECT_NE(seen.err.find(said), std::string::npos) << said << "\n" << seen.err;
    EXPECT_FALSE(fs::exists(folder / "l.ORBdb"));
    EXPECT_EQ(files_beginning_with("l.ORBdb"), std::vector<std::string>{"l.ORBdb.run.json"});
    EXPECT_EQ(nlohmann::json::parse(whole::bytes_of(folder / "l.ORBdb.run.json"))["state"], "failed");
  }
}

TEST_F(command_line, missing_inputs_and_unwritable_outputs_end_with_status3) {
  fs::create_directories(folder / "empty");
  whole::write_bytes(folder / "other" / "notes.txt", "hello\n");
  const outcome missing = orb("load nowhere --out l.ORBdb");
  EXPECT_EQ(missing.status, 3);
  EXPECT_NE(missing.err.find("Path nowhere not found!"), std::string::npos) << missing.err;
  EXPECT_EQ(orb("load empty --out l.ORBdb").status, 3);
  const outcome other = orb("assemble other --out d");
  EXPECT_EQ(other.status, 3);
  EXPECT_NE(other.err.find("notes.txt"), std::string::npos) << "what lies there is told: " << other.err;
  whole::write_bytes(folder / "file", "x");
  EXPECT_EQ(orb("load " + example + " --out file/l.ORBdb").status, 3);
  EXPECT_EQ(orb("net nowhere.ORBdb --out n.ORBns").status, 3);
  whole::write_bytes(folder / "l.ORBdb", "precious");
  const outcome there = orb("load " + example + " --out l.ORBdb");
  EXPECT_EQ(there.status, 3);
  EXPECT_NE(there.err.find("--force"), std::string::npos);
  EXPECT_EQ(whole::bytes_of(folder / "l.ORBdb"), "precious");
  EXPECT_EQ(orb("load " + example + " --out l.ORBdb --force").status, 0);
}

TEST_F(command_line, a_full_disk_leaves_no_half_file_and_status3) {
  // A limit on file size fails the write as a full disk does.
  const outcome seen = orb("load " + example + " --out l.ORBdb", "trap '' XFSZ; ulimit -f 64;");
  EXPECT_EQ(seen.status, 3) << seen.err;
  EXPECT_NE(seen.err.find("l.ORBdb"), std::string::npos) << seen.err;
  EXPECT_EQ(files_beginning_with("l.ORBdb"), std::vector<std::string>{"l.ORBdb.run.json"}) << "why it failed";
}

TEST_F(command_line, damaged_libraries_and_foreign_nets_are_refused) {
  ASSERT_EQ(orb("load " + example + " --out l.ORBdb").status, 0);
  ASSERT_EQ(orb("net l.ORBdb --out n.ORBns").status, 0);
  const std::string library = whole::bytes_of(folder / "l.ORBdb"), net = whole::bytes_of(folder / "n.ORBns");

  whole::write_bytes(folder / "short.ORBdb", library.substr(0, library.size() / 2));
  whole::write_bytes(folder / "junk.ORBdb", "no quotes,5\r\n");
  for (const std::string name : {"short.ORBdb", "junk.ORBdb"}) {
    const outcome seen = orb("net " + name + " --out x.ORBns");
    EXPECT_EQ(seen.status, 1) << seen.err;
    EXPECT_NE(seen.err.find(name), std::string::npos) << seen.err;
  }
  EXPECT_NE(orb("net junk.ORBdb --out x.ORBns").err.find("Problem with file!\nFingerprint data was not loaded."),
            std::string::npos);

  whole::write_bytes(folder / "cut.ORBns", net.substr(0, net.size() - 5));
  std::string out_of_range = net;
  out_of_range[8 + 6 * 424 + 3] = '\x7f';
  whole::write_bytes(folder / "range.ORBns", out_of_range);
  whole::write_bytes(folder / "plates" / "p.sizes", "A1\n10\n20\n-1\nA2\n10\n30\n-1\n");
  whole::write_bytes(folder / "few.ORBns", net);
  for (const std::string name : {"cut.ORBns", "range.ORBns"}) {
    const outcome seen = orb("revise l.ORBdb " + name + " --out x.ORBns");
    EXPECT_EQ(seen.status, 1) << seen.err;
    EXPECT_NE(seen.err.find(name), std::string::npos) << seen.err;
    EXPECT_NE(seen.err.find("byte"), std::string::npos) << seen.err;
  }
  const outcome other_size = orb("revise plates few.ORBns --out x.ORBns");
  EXPECT_EQ(other_size.status, 1);
  EXPECT_NE(other_size.err.find("nv_expected=2 <> nv=423."), std::string::npos) << other_size.err;
  // the same number of clones, but the record names another library
  ASSERT_EQ(orb("load " + example + " --out l2.ORBdb --tolerance-index 0").status, 0);
  const outcome other_library = orb("revise l2.ORBdb n.ORBns --out x.ORBns");
  EXPECT_EQ(other_library.status, 1);
  EXPECT_NE(other_library.err.find("another library"), std::string::npos) << other_library.err;
  EXPECT_FALSE(fs::exists(folder / "x.ORBns"));
}

TEST_F(command_line, a_library_file_brings_its_parameters) {
  ASSERT_EQ(orb("load " + example + " --out l.ORBdb --preset 5").status, 0);
  const auto shown = nlohmann::json::parse(orb("info l.ORBdb --json").out);
  EXPECT_EQ(shown[0]["parameters"]["tolerance"], 5);
  EXPECT_EQ(shown[0]["parameters"]["n-bands"], 6000);
  const outcome refused = orb("net l.ORBdb --out n.ORBns --tolerance-index 0");
  EXPECT_EQ(refused.status, 2) << refused.err;
  const outcome won = orb("net l.ORBdb --out n.ORBns --n-bands 3000 --tolerance 7");
  EXPECT_EQ(won.status, 0) << won.err;
  EXPECT_NE(won.err.find("The n-bands of the command line, 3000, is used in place of the library's, 6000."),
            std::string::npos);
  ASSERT_EQ(orb("net " + example + " --out direct.ORBns --n-bands 3000 --tolerance 7").status, 0);
  EXPECT_EQ(whole::bytes_of(folder / "n.ORBns"), whole::bytes_of(folder / "direct.ORBns"));
  ASSERT_EQ(orb("load " + example + " --out bins.ORBdb --preset 5 --tolerance-index 0").status, 0);
  EXPECT_EQ(orb("net bins.ORBdb --out n2.ORBns --tolerance 7").status, 2);
}

// Each habit of a broken file is told with its line, by info and by a load; whole files of another habit are silent.
TEST_F(command_line, doubtful_fingerprints_are_told_and_strict_refuses_them) {
  struct {
    const char *content;
    std::vector<std::string> told;
  } const cases[]{
      {"A\t3\tGel\n1\n2\n-1\n", {"the header of clone A announces 3 bands and 2 follow (file f.sizes, line 1)"}},
      {"A\n1\n2\n-1\nB\n1\n", {"the file ends in the record of clone B, without -1 (file f.sizes, line 6)"}},
      {"A\n1\n1e3\n5\n-1\n",
       {"header \"1e3\" is like a number; its clone gets it as name (file f.sizes, line 3)",
        "\"1e3\" ends the record of clone A, without -1 (file f.sizes, line 3)"}},
      {" A\n1\n-1\n", {"header \" A\" begins with a blank, so that its clone has no name (file f.sizes, line 1)"}},
      {"A\n1\n\nB\n2\n15E24 12 plate\n7\n", {}}, // no record has a -1
      {"007\t2\tGel\n1\n2\n-1\n", {}},
  };
  for (const auto &c : cases) {
    whole::write_bytes(folder / "f.sizes", c.content);
    EXPECT_EQ(nlohmann::json::parse(orb("info f.sizes --json").out)[0]["problems"], c.told) << c.content;
    const outcome taken = orb("load f.sizes --out f.ORBdb --force"),
                  strict = orb("load f.sizes --out s.ORBdb --strict");
    EXPECT_EQ(taken.status, 0) << taken.err;
    EXPECT_EQ(strict.status, c.told.empty() ? 0 : 1) << strict.err;
    EXPECT_EQ(fs::exists(folder / "s.ORBdb"), c.told.empty());
    for (const std::string &doubt : c.told)
      EXPECT_NE(taken.err.find(doubt), std::string::npos) << taken.err;
    EXPECT_EQ(taken.err.find("Warning") == std::string::npos, c.told.empty()) << taken.err;
    fs::remove(folder / "s.ORBdb");
    fs::remove(folder / "s.ORBdb.run.json");
  }
}

TEST_F(command_line, the_kind_of_a_wrong_input_is_named) {
  ASSERT_EQ(orb("load " + example + " --out l.ORBdb").status, 0);
  ASSERT_EQ(orb("net l.ORBdb --out n.ORBns").status, 0);
  whole::write_bytes(folder / "list.txt", "EC001A01\nEC001A05\n");
  struct {
    const char *arguments, *told;
  } const cases[]{
      {"net n.ORBns --out x.ORBns", "n.ORBns looks like this: net of significant overlaps. Wanted: fingerprints"},
      {"revise l.ORBdb l.ORBdb --out x.ORBns", "l.ORBdb looks like this: library. Wanted: a net"},
      {"revise l.ORBdb list.txt --out x.ORBns", "list.txt looks like this: list of clones. Wanted: a net"},
      {"list sort l.ORBdb n.ORBns --out x.txt", "n.ORBns looks like this: net of significant overlaps. Wanted: a list"},
  };
  for (const auto &c : cases) {
    const outcome seen = orb(c.arguments);
    EXPECT_EQ(seen.status, 1) << c.arguments;
    EXPECT_NE(seen.err.find(c.told), std::string::npos) << seen.err;
  }
}

TEST_F(command_line, info_knows_what_runs_and_other_programs_write) {
  ASSERT_EQ(orb("assemble " + example + " --out d", "SOURCE_DATE_EPOCH=1").status, 0);
  whole::write_bytes(folder / "m.txt", "EC001A01\tm1\nEC001A02\tm2,m1\n");
  ASSERT_EQ(orb("report d --markers m.txt --out tables").status, 0);
  const std::string run = "d/ORB_contigs_1970-01-01_00-00-01/";
  struct {
    std::string path, kind, figure;
    int value;
  } const cases[]{
      {run + "FPC_like.fpc", "FPC assembly", "clones", 423},
      {run + "cl_5/Net_control_MTP_cl_5_Sulston_1988_15.net", "drawing of a net (Pajek)", "vertices", 59},
      {example + "/truth.tsv", "table of true positions", "clones", 423},
      {run + "cl_5/MTP_cl_5.txt", "list of clones", "names", 9},
      {run + "coordinates_of_clones.txt", "table of coordinates", "clones", 423},
      {"tables/new_markers_in_clones.ORB", "markers in the native form", "", 0},
      {"tables", "results folder", "", 0},
      {run + "report_contigs.txt", "table", "", 0},
  };
  for (const auto &c : cases) {
    const outcome seen = orb("info --json " + c.path);
    ASSERT_EQ(seen.status, 0) << seen.err;
    const auto shown = nlohmann::json::parse(seen.out)[0];
    EXPECT_EQ(shown["kind"], c.kind) << c.path;
    if (!c.figure.empty()) {
      EXPECT_EQ(shown[c.figure], c.value) << shown;
    }
  }
  const outcome unknown = orb("info d --clone nobody");
  EXPECT_EQ(unknown.status, 1);
  EXPECT_NE(unknown.out.find("contig: none: the library has no clone of this name"), std::string::npos) << unknown.out;
  EXPECT_EQ(orb("help list sort").out, orb("list sort --help").out);
  // a net made at 15 begins at 15.01, and is one of cutoff 15 all the same
  fs::remove(folder / "d/run.json");
  const outcome drawn = orb("draw d/CloneBandSizes.ORBdb d/net_signif_Sulston_1988_15.00.ORBns " + run +
                            "cl_5/MTP_cl_5.txt --out x.net --cutoff 15");
  EXPECT_EQ(drawn.err.find("NB!"), std::string::npos) << drawn.err;
  EXPECT_NE(orb("draw d/CloneBandSizes.ORBdb d/net_signif_Sulston_1988_15.00.ORBns " + run +
                "cl_5/MTP_cl_5.txt --out y.net --cutoff 10")
                .err.find("NB! Selected cutoff level 10.0000<15.0"),
            std::string::npos);
}

TEST_F(command_line, a_dash_is_standard_input) {
  ASSERT_EQ(orb("load " + example + " --out l.ORBdb").status, 0);
  whole::write_bytes(folder / "named.txt", "EC001A05\nEC001A01\nnobody\n");
  const outcome list = orb("list sort l.ORBdb - --out s.txt", "", "named.txt");
  EXPECT_EQ(whole::bytes_of(folder / "s.txt"), "EC001A01\r\nEC001A05\r\n") << list.err;
  EXPECT_NE(list.err.find("Clone nobody isn't in the library"), std::string::npos) << list.err;
  EXPECT_NE(list.err.find("line 3"), std::string::npos) << list.err;
  const outcome bands = orb("load - --out p.ORBdb", "", example + "/EC001.sizes");
  EXPECT_EQ(bands.status, 0) << bands.err;
  ASSERT_EQ(orb("load " + example + "/EC001.sizes --out q.ORBdb").status, 0);
  EXPECT_EQ(whole::bytes_of(folder / "p.ORBdb"), whole::bytes_of(folder / "q.ORBdb"));
  EXPECT_EQ(orb("list unite l.ORBdb - - --out u.txt").status, 2);
}

TEST_F(command_line, info_lists_what_a_load_would_refuse_and_proposes_parameters) {
  struct {
    std::string content;
    double preset, gel_length;
    std::vector<std::string> problems;
    std::string nothing;
  } const cases[]{
      {"A\n100\n3300.9\n-1\nA\n100\n3300.9\n-1\nA\n7\n-1\n", 1, 3300, {}, ""},
      {"A\n100,5\n39000\n-1\n", 3, 40000, {}, ""},
      {"A\n100\n2000000\n-1\n", 0, 0, {}, "the largest band is longer than any gel"},
      {"A\n200\n100\n-1\nB\n-4\n70500\n-1\n",
       0,
       0,
       {"band 100 after a larger one (file f.sizes, line 3)", "negative band -4 (file f.sizes, line 6)"},
       "a load would refuse these fingerprints"},
  };
  for (const auto &c : cases) {
    whole::write_bytes(folder / "f.sizes", c.content);
    const auto shown = nlohmann::json::parse(orb("info f.sizes --json").out)[0];
    EXPECT_EQ(shown.value("nothing proposed", ""), c.nothing) << shown;
    EXPECT_EQ(whole::proposed(shown, "preset"), c.preset) << shown;
    EXPECT_EQ(whole::proposed(shown, "gel-length"), c.gel_length) << shown;
    EXPECT_EQ(shown["problems"].get<std::vector<std::string>>(), c.problems) << shown;
  }
  whole::write_bytes(folder / "f.sizes", cases[0].content);
  const auto first = nlohmann::json::parse(orb("info f.sizes --json").out)[0];
  EXPECT_EQ(first["records"], 3);
  EXPECT_EQ(first["exact copies"], 1);
  EXPECT_EQ(first["repeated names"], 1);
}
