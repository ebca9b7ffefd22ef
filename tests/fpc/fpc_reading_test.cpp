// .fpc files read: every form in which they are met, registries written and read back, bands from .cor files, contigs
// that are specified by hand, two assemblies compared.
#include <gtest/gtest.h>

#include <algorithm>
#include <fmt/format.h>
#include <set>

#include "fpc/fpc_blocks.h"
#include "fpc/fpc_comparison.h"
#include "fpc/fpc_dates.h"
#include "fpc/fpc_fingerprints.h"
#include "fpc/fpc_reading.h"
#include "fpc/fpc_writing.h"
#include "fpc/sizes_uniting.h"
#include "support/clustering_helpers.h"

namespace {

using namespace orb_test;
using texts = std::vector<std::string>;

class fpc_reading : public testing::Test {
protected:
  library lib_{40};
  class_FPCfrom_export reader_{lib_.frame, lib_.settings, lib_.database};
  void SetUp() override { lib_.database.contigs_set(fresh()); }

  std::shared_ptr<class_FPCto_import> fresh() {
    auto registry = std::make_shared<class_FPCto_import>(lib_.frame, lib_.settings, lib_.database);
    registry->clear_all_run(0, false);
    return registry;
  }
  bool read(const std::string &text, fpc_reading_options options = {}) {
    lib_.write("a.fpc", text);
    options.print = options.print.value_or(false);
    return reader_.read_clusterization_from_FPC(lib_.folder / "a.fpc", options);
  }
  const class_FPCto_import &contigs() const { return *lib_.database.contigs(); }
  bool said(const std::string &start) const {
    return std::any_of(lib_.record.messages.begin(), lib_.record.messages.end(),
                       [&](const std::string &message) { return message.starts_with(start); });
  }
  std::string contig_of(clone_number clone) const {
    return contigs().name_of_cluster_get(contigs().clone_in_cluster_get(clone));
  }
};

// What a block says, on a line.
std::string text_of(const fpc_clone_block &block) {
  std::string text = fmt::format("{}|{}|{}|{}|{}|{}", block.name, block.contig, block.left, block.right,
                                 block.old_contig, block.gel_number);
  text += fmt::format("|{} {}|", block.first_band.value_or(-1), block.n_bands.value_or(-1));
  for (const std::string_view marker : block.markers)
    text += std::string(marker) + ",";
  return text + fmt::format("|{}|{}{}", block.created, block.modified, block.map_is_wrong ? "|wrong" : "");
}

TEST_F(fpc_reading, forms_of_the_field) {
  const std::string head = "// fpc project p\n// 9.4  Date: x  User: y\n// Contigs 2  Clones 3  Markers 0  Bands 9\n"
                           "// Framework Chromosome  Label Chr\n// Tol 7  Gel length 3300  Cut 3.2e-16 Min 3\n";
  const struct {
    const char *block, *text;
  } cases[] = {
      {"BAC : \"C1\"\nMap \"ctg7\" Ends Left 3.000\nMap \"ctg7\" Ends Right 13.500 Oldctg cl 2\nGel_number  g 1 \n"
       "Bands  12 34\nPositive_Probe \"m a\" New\nPositive_STS \"b\"\nCreation_date 111 2 3 4 5\nModified_date 98 1 1 "
       "0 "
       "0\n",
       "C1|ctg7|3|13.5|cl 2|g 1|12 34|m a,b,|111 2 3 4 5|98 1 1 0 0"},
      {"Clone : C1\nMap ctg7 Ends Left -4\nMap ctg7 Ends Right 2,5\nFpc_remark \"x\"\nRemark \"y\"\nShotgun None\n"
       "Approximate_match_to_cosmid \"C2\"\nPseudo_match_to_x \"C2\"\nFp_number \"f\"\nPositive_Locus l1\n",
       "C1|ctg7|-4|2.5|||-1 -1|l1,||"},
      {"BAC : \"C1\"\nExact_match_to_C2\nMap \"ctg1\" Ends Left 0\nMap \"ctg1\" Ends Right 5\n", "C1|ctg1|0|5|||-1 "
                                                                                                 "-1|||"},
      {"BAC : \"C1\"\nMap \"ctg1\" Ends Left 1\nMap \"ctg2\" Ends Right 5\nGel_number 3\n",
       "C1||0|0||3|-1 -1||||wrong"},
      {"BAC : \"C1\"\nMap \"ctg1\" Ends Left x\nMap \"ctg1\" Ends Right 5\n", "C1||0|0|||-1 -1||||wrong"},
      {"BAC : \"C1\"\nMap \"ctg0\" Ends Left 1\nMap \"ctg0\" Ends Right 5\nBands 4 x\n", "C1||0|0|||4 -1|||"},
      {"BAC : \"C1\"\nGel_number 3\n", ""}, // too short
      {"Marker_STS : \"C1\"\nGel_number 3\nBands 1 2\n", ""},
  };
  for (const auto &c : cases)
    for (const char *parted : {"\n", "\n\n", "  \n", "\t\n"})
      for (const bool crlf : {false, true}) {
        std::string bytes = head + parted + c.block + parted + "Contigdata 1\n\nBAC : \"C9\"\nx\ny\n";
        for (std::size_t at = 0; crlf && (at = bytes.find('\n', at)) != std::string::npos; at += 2)
          bytes.replace(at, 1, "\r\n");
        lib_.write("a.fpc", bytes);
        fpc_file_reader reader(lib_.folder / "a.fpc");
        fpc_clone_block block;
        const bool found = reader.next(block);
        EXPECT_EQ(found ? text_of(block) : "", c.text) << bytes;
        EXPECT_FALSE(reader.next(block));
        EXPECT_EQ(*reader.head().tolerance, 7);
        EXPECT_EQ(*reader.head().gel_length, 3300);
        EXPECT_NEAR(*reader.head().cutoff, 15.4949, 1e-9);
      }
  const struct {
    const char *word;
    double exponent;
  } cutoffs[] = {{"1e-12", 12}, {"1e-400", 400}, {"0.001", 3}, {"17", 17}, {"0", -1}, {"x", -1}};
  for (const auto &c : cutoffs) {
    lib_.write("a.fpc", std::string("// fpc project\n// Cut ") + c.word + "\n");
    EXPECT_EQ(head_of_fpc_file(lib_.folder / "a.fpc").cutoff.value_or(-1), c.exponent) << c.word;
  }
  double date = 0;
  for (const char *day : {"111 2 3 4 5", "98 12 31 23 59", "100 2 29 0 0"}) {
    ASSERT_TRUE(date_of_fpc_file(day, date)) << day;
    EXPECT_EQ(date_text_of_fpc_file(date), day);
  }
  EXPECT_FALSE(date_of_fpc_file("211 2 3 4 5", date));
}

TEST_F(fpc_reading, what_is_told_and_where_clones_go) {
  std::string many = "// fpc project p\n";
  const auto add = [&](const std::string &name, const std::string &map) {
    many += "\nBAC : \"" + name + "\"\n" + map + "Gel_number 1\nBands 1 2\n";
  };
  const auto map = [](const std::string &contig, int left, int right) {
    return fmt::format("Map \"{0}\" Ends Left {1}\nMap \"{0}\" Ends Right {2}\n", contig, left, right);
  };
  add("C1", map("ctg3", 5, 20));
  add("C2", map("ctg3", 1, 10));
  add("C2", "");
  add("C3", "Map \"ctg3\" Ends Left 5\nMap \"ctg4\" Ends Right 5\n");
  add("C4", "");
  add("nobody", map("ctg9", 1, 2));
  ASSERT_TRUE(read(many));
  EXPECT_TRUE(said("Problematic clone information:BAC : \"C3\";Map \"ctg3\" Ends Left 5;Map \"ctg4\" Ends Right 5"));
  EXPECT_TRUE(said("Number of unknown clones = 1"));
  EXPECT_TRUE(said("In total, 1 clones have duplicates in FPC assembly!"));
  EXPECT_TRUE(said("In total, 36 clones are not presented in FPC assembly!"));
  EXPECT_TRUE(said("In total, 38 clones not in FPC contigs!"));
  EXPECT_EQ(lib_.file("unknownClones.txt"), "nobody\r\n");
  EXPECT_EQ(contig_of(1), "ctg3");
  EXPECT_EQ(contig_of(3), "ctg_C3");
  cluster_id id = contigs().clone_in_cluster_get(1);
  EXPECT_EQ(contigs().length_of_cluster_bands_get(id), 20);
  EXPECT_FALSE(contigs().cluster_information_get(contigs().clone_in_cluster_get(3)).min_and_max_known);
  // 20 bands of 1200 base pairs
  EXPECT_NE(lib_.file("contig_statistics_1200.txt").find("Totatal length contigs\t24\tkbp"), std::string::npos);

  const std::shared_ptr<class_FPCto_import> before = lib_.database.contigs();
  add("C1", map("ctg8", 1, 2));
  EXPECT_THROW(read(many), program_end);
  EXPECT_EQ(lib_.database.contigs(), before);

  fpc_reading_options keep;
  keep.keep_current = true;
  ASSERT_TRUE(read("// fpc project\n\nBAC : \"C1\"\n" + map("ctg3", 7, 30), keep));
  EXPECT_EQ(contigs().length_of_cluster_bands_get(id), 30);
  lib_.database.contigs_are_specified_set(false);
  EXPECT_FALSE(read("// fpc project\n", keep));
  EXPECT_EQ(lib_.record.messages.back(), "Contigs are not specified!");
}

TEST_F(fpc_reading, other_plates_only_when_asked_for) {
  lib_.database.name_of_clone_set(5, "a002B");
  lib_.database.sort_clones_by_name(lib_.frame);
  const std::string text = "// fpc project\n\nBAC : \"a001B\"\nMap \"ctg1\" Ends Left 2\nMap \"ctg1\" Ends Right 9\n";
  ASSERT_TRUE(read(text));
  EXPECT_EQ(contig_of(5), "ctg_a002B");
  fpc_reading_options options;
  options.other_plates = true;
  ASSERT_TRUE(read(text, options));
  EXPECT_EQ(contig_of(5), "ctg1");
  EXPECT_EQ(class_FPCfrom_export::change_clone_plate_1_2("x020y"), "x022y");
}

// Contigs, coordinates, markers and dates of a registry as text. Clones alone have no lines about their place in a
// file.
std::string text_of(const class_FPCto_import &registry, const class_DB_of_clones &database) {
  std::string text;
  for (clone_number clone = 1; clone <= database.total_number_of_clones_get(); ++clone) {
    const cluster_id id = registry.clone_in_cluster_get(clone);
    const clone_information &at = registry.clone_information_get(clone);
    if (registry.cluster_is_contig_get(id)) {
      const cluster_information &cluster = registry.cluster_information_get(id);
      text += fmt::format("{} of {}: {} {} in {} {}", registry.clones_of_cluster(id).front(),
                          registry.n_clones_in_cluster_get(id), at.coor_left, at.coor_right, cluster.min_left,
                          cluster.max_right);
    }
    text += fmt::format(" {} {} {} ", at.gel_number, date_text_of_fpc_file(at.creation_date),
                        date_text_of_fpc_file(at.modification_date));
    std::vector<std::string> markers;
    for (const std::int32_t marker : database.markers().markers_of_clone(clone))
      markers.push_back(database.markers().name_of_marker_get(marker));
    std::sort(markers.begin(), markers.end()); // numbers of markers go by their first appearance
    for (const std::string &marker : markers)
      text += marker + ",";
    text += "\n";
  }
  return text;
}

class random_registry {
public:
  explicit random_registry(library &lib, std::uint64_t seed) : lib_(lib), chance_(seed) {
    auto registry = std::make_shared<class_FPCto_import>(lib.frame, lib.settings, lib.database);
    registry->clear_all_run(0, false);
    const std::int32_t n = lib.database.total_number_of_clones_get();
    std::map<std::string, number_list> clusters;
    for (clone_number clone = 1; clone <= n; ++clone) {
      clusters[name_of_cluster(number(12))].add(clone);
      set_values(clone, *registry);
    }
    for (const auto &[name, list] : clusters) {
      registry->add_new_cluster(list, name, "long " + name, false);
      registry->make_min_and_max_coor_for_cluster(registry->n_list_of_all_cluster_names_get());
    }
    add_markers(n);
    lib.database.contigs_set(registry);
    lib.database.contigs_are_specified_set(true);
  }

private:
  std::int32_t number(std::int32_t below) { return chance_.number_up_to(below) - 1; }
  static std::string name_of_cluster(std::int32_t i) {
    return i == 0 ? "Singletones" : i == 1 ? "cl a b" : "cl_" + std::to_string(i * i);
  }
  void set_values(clone_number clone, class_FPCto_import &registry) {
    clone_information values = registry.clone_information_get(clone);
    values.coor_left = number(400) / 8.0 - 10; // three decimals hold it
    values.coor_right = values.coor_left + number(100);
    values.gel_number = number(2) == 0 ? "" : "gel " + std::to_string(number(9));
    for (double *date : {&values.creation_date, &values.modification_date})
      date_of_fpc_file(
          fmt::format("{} {} {} {} {}", number(200), number(12) + 1, number(28) + 1, number(24), number(60)), *date);
    registry.clone_information_set(clone, values);
  }
  void add_markers(std::int32_t n) {
    class_markers &markers = lib_.database.markers();
    markers.redim_private_arrays(n, 0, 0);
    number_list numbers;
    std::vector<bool> are_new;
    for (clone_number clone = 1; clone <= n; ++clone) {
      std::vector<std::string> names{""};
      for (std::int32_t k = number(4); k > 0; --k)
        names.push_back("m " + std::to_string(number(9)));
      if (names.size() > 1)
        markers.add_clone_with_markers_new(lib_.frame, clone, names, static_cast<std::int32_t>(names.size()) - 1,
                                           numbers, are_new);
    }
    markers.finish_of_adding();
  }

  library &lib_;
  random_source chance_;
};

TEST_F(fpc_reading, random_registries_read_back_to_the_same) {
  for (std::uint64_t seed = 1; seed <= 40; ++seed) {
    random_registry made(lib_, seed);
    const std::string before = text_of(contigs(), lib_.database);
    const std::shared_ptr<class_FPCto_import> registry = lib_.database.contigs();
    const class_markers markers = lib_.database.markers();
    for (const bool pp : {false, true}) {
      write_fpc_file(lib_.frame, lib_.database, *registry, number_list::range(1, 40), lib_.folder / "w.fpc", pp,
                     lib_.folder);
      lib_.database.markers() = class_markers();
      fpc_reading_options options;
      options.print = false;
      ASSERT_TRUE(reader_.read_clusterization_from_FPC(lib_.folder / "w.fpc", options));
      EXPECT_EQ(text_of(contigs(), lib_.database), before) << "seed " << seed << (pp ? " pp" : " plain");
      for (clone_number clone = 1; clone <= 40 && !pp; ++clone) {
        const cluster_id id = registry->clone_in_cluster_get(clone);
        EXPECT_TRUE(!registry->cluster_is_contig_get(id) || contig_of(clone) == registry->name_of_cluster_get(id));
      }
      EXPECT_EQ(reader_.summary().n_read, 40);
      lib_.database.markers() = markers;
    }
  }
}

TEST_F(fpc_reading, specified_contigs) {
  lib_.write("zone.txt", "C9\n# z1 - remark: near m1\nC1, C2\nC3 nobody\n# z2\nC2\nC4\n# z1 -x\nC5\n");
  ASSERT_TRUE(reader_.run_read_specified_contigs(lib_.folder / "zone.txt"));
  for (const char *text : {"Problematic clone! C9", "Unknown clone! nobody", "Duplicate clone! C2",
                           "Duplicate contig name! z1", "Problematic clone! C5"})
    EXPECT_TRUE(said(text)) << text;
  EXPECT_EQ(contig_of(3), "z1");
  EXPECT_EQ(contig_of(4), "z2");
  EXPECT_EQ(contig_of(5), "all_clones_out_of_zone");
  EXPECT_EQ(contigs().cluster_information_get(1).user_remark, "near m1");
  EXPECT_EQ(lib_.file("all_clones_of_zone.txt"), "C1\r\nC2\r\nC3\r\nC4\r\n");
  lib_.write("list.txt", "C1\r\nC2\r\n");
  EXPECT_FALSE(reader_.run_read_specified_contigs(lib_.folder / "list.txt")) << "no contig is specified there";
  EXPECT_EQ(contig_of(3), "z1");
}

// ---- bands ---------------------------------------------------------------------------------------------------------

class fpc_bands : public fpc_reading {
protected:
  bool load(const std::string &fpc, const std::string &cor) {
    lib_.write("p.fpc", fpc);
    lib_.write("p.cor", cor);
    fingerprint_records records;
    band_statistics statistics;
    class_DB_of_clones database;
    database.parameters_from(lib_.database);
    prepare_band_statistics(database, statistics);
    const bool read =
        read_fpc_fingerprints(lib_.frame, lib_.settings, lib_.folder / "p.fpc", database, records, statistics);
    read_.clear();
    for (std::size_t i = 0; i < records.count(); ++i) {
      read_ += std::string(records.header(i)) + ":";
      for (const band_value band : records.bands(i))
        read_ += " " + std::to_string(band);
      read_ += "\n";
    }
    return read;
  }
  static std::string clone(const std::string &name, int start, int count) {
    return fmt::format("\nBAC : \"{}\"\nGel_number 1\nBands {} {}\n", name, start, count);
  }
  std::string read_;
};

TEST_F(fpc_bands, stand_in_the_file_beside) {
  const std::string cor("\x01\x00\x00\x05\x00\x05\x00\x03", 8); // 256, 5, 5, 3
  EXPECT_TRUE(load("// fpc project\n" + clone("a", 1, 3) + clone("b", 4, 1) + clone("c", 0, 0), cor));
  EXPECT_EQ(read_, "a: 5 5 256\nb: 3\nc:\n"); // bands of equal size are two
  const struct {
    int start, count;
    const char *said;
  } wrong[] = {{0, 1, "The bands of clone a would be the numbers 0 to 0 of the .cor file, which holds 4."},
               {4, 2, "The bands of clone a would be the numbers 4 to 5 of the .cor file, which holds 4."},
               {2000000000, 2000000000, "The bands of clone a would be"},
               {1, -1, "The bands of clone a would be"}};
  for (const auto &c : wrong) {
    EXPECT_FALSE(load("// fpc project\n" + clone("a", c.start, c.count), cor)) << c.start;
    EXPECT_TRUE(said(c.said)) << c.said;
    EXPECT_NE(lib_.record.messages.back().find("p.fpc, line 3"), std::string::npos);
  }
  EXPECT_FALSE(load("// fpc project\n" + clone("a", 1, 1), "abc"));
  EXPECT_NE(lib_.record.messages.back().find("has 3 bytes"), std::string::npos);
  EXPECT_THROW(load("// fpc project\n" + clone("a", 1, 501), std::string(2000, '\1')), program_end);
  EXPECT_THROW(load("// fpc project\n" + clone("a", 1, 1), "\xFF\xFF"), program_end) << "beyond the gel length";
  std::filesystem::remove(lib_.folder / "p.cor");
  fingerprint_records records;
  band_statistics statistics;
  EXPECT_FALSE(
      read_fpc_fingerprints(lib_.frame, lib_.settings, lib_.folder / "p.fpc", lib_.database, records, statistics));
  EXPECT_NE(lib_.record.messages.back().find("p.cor beside it, and there is no such file"), std::string::npos);
}

TEST_F(fpc_bands, parameters_of_the_head) {
  const library_parameters standard;
  fpc_head head;
  EXPECT_EQ(parameters_of_fpc(head, standard).n_bands, standard.n_bands);
  head.tolerance = 7;
  head.gel_length = 3300;
  const library_parameters found = parameters_of_fpc(head, standard);
  EXPECT_EQ(found.tolerance, 7);
  EXPECT_EQ(found.gel_length, 3300);
  EXPECT_EQ(found.n_bands, 236);
  head.tolerance = 0;
  EXPECT_EQ(parameters_of_fpc(head, standard).n_bands, 3300);
}

TEST_F(fpc_bands, files_of_a_folder_united) {
  lib_.write("s/b.sizes", "B\n2\n-1");
  lib_.write("s/a.sizes", "A\r\n1\r\n-1\r\n");
  lib_.write("s/c.txt", "no");
  run_reload_new_version_of_database(lib_.frame, lib_.folder / "s/b.sizes", lib_.folder / "u.sizes", 9);
  EXPECT_EQ(lib_.file("u.sizes"), "A\r\n1\r\n-1\r\nB\r\n2\r\n-1\r\n");
  lib_.answer("Input number of files (if not all=2):", "1");
  run_reload_new_version_of_database(lib_.frame, lib_.folder / "s/b.sizes", lib_.folder / "u.sizes");
  EXPECT_EQ(lib_.file("u.sizes"), "A\r\n1\r\n-1\r\n");
}

// ---- comparison ----------------------------------------------------------------------------------------------------

TEST_F(fpc_reading, assemblies_compared_as_by_plain_sets) {
  random_source chance(3);
  class_usable_values usable_values;
  class_clone_dist_table table;
  const metric_context context{lib_.frame, lib_.settings, lib_.database, usable_values, table};
  class_clone_net_signif signif(context);
  class_net &net = signif.net();
  net.inicializate_net(40, 80);
  for (clone_number clone = 1; clone <= 40; ++clone) { // a chain
    net.add_vertex_fast(0);
    for (const clone_number other : {clone - 1, clone + 1})
      if (other >= 1 && other <= 40)
        net.add_edge_fast(clone, other, std::min(clone, other), 0, 0);
  }
  net.finish_of_adding();
  for (int round = 0; round < 30; ++round) {
    std::array<std::vector<std::int32_t>, 2> of; // by clone
    std::array<std::shared_ptr<class_FPCto_import>, 2> sides;
    for (std::size_t s = 0; s < 2; ++s) {
      sides[s] = fresh();
      of[s].assign(41, 0);
      std::map<std::int32_t, number_list> lists;
      for (clone_number clone = 1; clone <= 40; ++clone) {
        const auto c = static_cast<std::int32_t>(chance.number_up_to(2) == 1 ? clone / 5 : chance.number_up_to(9));
        of[s][static_cast<std::size_t>(clone)] = c;
        lists[c].add(clone);
      }
      for (const auto &[c, list] : lists) {
        sides[s]->add_new_cluster(list, "k" + std::to_string(c), "", false);
        if (list.count() < 2)
          of[s][static_cast<std::size_t>(list(1))] = -1; // alone
      }
    }
    const fpc_comparison found = compare_assemblies(signif, {}, *sides[0], *sides[1], lib_.folder);
    std::map<std::int32_t, std::set<std::int32_t>> parts, back;
    for (std::size_t clone = 1; clone <= 40; ++clone)
      if (of[0][clone] >= 0 && of[1][clone] >= 0) {
        parts[of[0][clone]].insert(of[1][clone]);
        back[of[1][clone]].insert(of[0][clone]);
      }
    std::int32_t n_split = 0, n_joined = 0;
    for (const auto &[c, others] : parts) {
      n_split += others.size() > 1;
      n_joined += std::any_of(others.begin(), others.end(), [&](std::int32_t o) { return back[o].size() > 1; });
    }
    EXPECT_EQ(found.of_file.n_split, n_split);
    EXPECT_EQ(found.of_file.n_joined, n_joined);
    EXPECT_EQ(found.of_run.n_split,
              std::count_if(back.begin(), back.end(), [](const auto &b) { return b.second.size() > 1; }));
  }
  const auto one = fresh(), two = fresh();
  one->add_new_cluster({1, 2, 3, 4}, "all", "", false);
  two->add_new_cluster({1, 2}, "left", "", false);
  two->add_new_cluster({3, 4}, "right", "", false);
  compare_assemblies(signif, {}, *one, *two, lib_.folder);
  EXPECT_EQ(lib_.file("links_of_file.txt"), "contig\tpart_1\tpart_2\tn_overlaps\tclone_1\tclone_2\tscore\r\n"
                                            "all\tleft\tright\t1\tC2\tC3\t2.00\r\n");
  // clones that lie apart in the net: the pair that comes nearest to an overlap
  const auto three = fresh();
  three->add_new_cluster({1, 2}, "left", "", false);
  three->add_new_cluster({9, 10}, "far", "", false);
  const auto four = fresh();
  four->add_new_cluster({1, 2, 9, 10}, "all", "", false);
  compare_assemblies(signif, {}, *four, *three, lib_.folder);
  EXPECT_NE(lib_.file("links_of_file.txt").find("\r\nall\tleft\tfar\t0\tC"), std::string::npos)
      << lib_.file("links_of_file.txt");
  compare_assemblies(signif, {}, *one, *two, lib_.folder);
  EXPECT_EQ(lib_.file("contigs_of_run.txt"), "contig\tn_clones\tverdict\tn_alone\tin_other\r\n"
                                             "left\t2\tjoined\t0\tall:2\r\nright\t2\tjoined\t0\tall:2\r\n");
}

} // namespace
