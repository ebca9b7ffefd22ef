// Simulated libraries: what is drawn, printed and read back.
#include <algorithm>
#include <map>
#include <set>
#include <sstream>

#include "database/class_DB_of_clones_read.h"
#include "frame/numbers.h"
#include "simulation/class_simul_clones.h"
#include "simulation/true_positions.h"
#include "support/sequence_helpers.h"

namespace {

using namespace orb;
using namespace orb_test;

class simulated_library : public sequence_test {
protected:
  simulated_library() {
    frame.working_folder_set(folder);
    random_source chance(21);
    texts = {random_sequence(300000, 150, chance), random_sequence(700, 1e9, chance),
             random_sequence(150000, 150, chance)};
    texts[2].replace(50000, 300, std::string(300, 'N'));     // a short gap
    texts[2].replace(90000, 20000, std::string(20000, 'N')); // a long one
    std::string file;
    for (std::size_t i = 0; i < texts.size(); ++i)
      file += ">c" + std::to_string(i + 1) + " a chromosome\n" + texts[i] + "\n";
    write_bytes(folder / "genome.fa", file);
    draw.mean_length = 20000;
    draw.length_deviation = 8000;
    draw.chimera_chance = 0.4;
    draw.n_clones = 800;
    draw.min_bands = 30;
    draw.max_bands = 60;
  }

  // All files of a library as name and bytes.
  std::map<std::string, std::string> files_of_library(const clone_draw &wanted, number_list &kept) {
    class_Simul_CutEnzyme bands(frame);
    class_simul_clones clones(frame, bands, wanted);
    EXPECT_TRUE(clones.start_Simul_CutEnzyme_CloneEnds_run_if_needed(folder / "genome.fa"));
    EXPECT_TRUE(clones.create_clones());
    EXPECT_TRUE(clones.print_list_of_clones_with_bands_run(std::nullopt, std::nullopt, kept));
    std::map<std::string, std::string> files;
    for (const fs::directory_entry &entry : fs::directory_iterator(folder))
      if (entry.path().extension() != ".fa" && entry.path().extension() != ".log")
        files[entry.path().filename().string()] = bytes_of(entry.path());
    return files;
  }

  std::vector<std::string> texts;
  clone_draw draw;
};

TEST_F(simulated_library, clones_lie_between_sites_of_one_chromosome_and_no_long_gap) {
  class_Simul_CutEnzyme bands(frame);
  class_simul_clones clones(frame, bands, draw);
  ASSERT_TRUE(clones.start_Simul_CutEnzyme_CloneEnds_run_if_needed(folder / "genome.fa"));
  EXPECT_EQ(clones.clonable_length(), 300000 + 700 + 150000 - 20000);
  ASSERT_TRUE(clones.create_clones());
  ASSERT_EQ(clones.n_clones(), 800);
  std::vector<std::set<std::int32_t>> ends(texts.size()); // where clones may end, plainly
  for (std::size_t c = 0; c < texts.size(); ++c) {
    ends[c] = {0, static_cast<std::int32_t>(texts[c].size())};
    for (std::size_t at = texts[c].find("AAGCTT"); at != std::string::npos; at = texts[c].find("AAGCTT", at + 1))
      ends[c].insert(static_cast<std::int32_t>(at) + 1);
  }
  ends[2].insert({90000, 110000});
  std::map<std::int32_t, int> n_with_parts, n_on;
  std::int64_t length = 0, n_parts = 0, n_at_gap = 0;
  for (const simul_clone &clone : clones.clones().clones) {
    ++n_with_parts[clone.n_parts()];
    std::int32_t sum = 0, bins = 0;
    for (const clone_part &part : clone.parts) {
      const std::set<std::int32_t> &known = ends[static_cast<std::size_t>(part.chromosome) - 1];
      ASSERT_TRUE(known.count(part.part_start) == 1 && known.count(part.part_end) == 1);
      ASSERT_EQ(std::distance(known.find(part.part_start), known.find(part.part_end)),
                part.part_bin_end - part.part_bin_start);
      ASSERT_FALSE(part.chromosome == 3 && part.part_start < 110000 && part.part_end > 90000);
      n_at_gap += part.chromosome == 3 && (part.part_end == 90000 || part.part_start == 110000);
      sum += part.part_end - part.part_start;
      bins += part.part_bin_end - part.part_bin_start;
      ++n_on[part.chromosome];
    }
    EXPECT_EQ(sum, clone.length);
    EXPECT_EQ(bins, clone.n_bins);
    length += sum;
    n_parts += clone.n_parts();
  }
  EXPECT_GT(n_at_gap, 10);
  EXPECT_EQ(n_on.size(), texts.size());
  EXPECT_NEAR(n_on[1] / double(n_parts), 300000 / 430700.0, 0.06);
  EXPECT_NEAR(double(length) / double(n_parts), 18500, 1500); // a little less than 20000: ends cut clones off
  EXPECT_NEAR(n_with_parts[1], 800 * 0.6, 50);
  EXPECT_NEAR(n_with_parts[4], 800 * 0.064, 25);
  EXPECT_EQ(n_with_parts.rbegin()->first, 4);
}

// The bands of a clone by the plain formulation, from the letters themselves.
std::vector<double> plain_bands(const class_Simul_CutEnzyme &bands, const simul_clone &clone,
                                const std::vector<std::string> &texts) {
  std::vector<cut_list> parts;
  for (const clone_part &part : clone.parts) {
    std::vector<std::int32_t> position, enzyme;
    std::int32_t n = 0;
    bands.cut_band_after_letter_and_enz_from_s(std::string_view(texts[static_cast<std::size_t>(part.chromosome) - 1])
                                                   .substr(static_cast<std::size_t>(part.part_start),
                                                           static_cast<std::size_t>(part.part_end - part.part_start)),
                                               position, enzyme, n, true);
    enzyme.front() = enzyme.back() = 1; // ends of parts are ends of bands
    cut_list &cuts = parts.emplace_back();
    for (std::size_t i = 0; i < position.size(); ++i)
      cuts.add(position[i], enzyme[i]);
  }
  random_source unused;
  std::vector<double> list;
  band_reading_sums sums;
  bands.list_of_bands_for_several_parts(parts, true, unused, list, sums);
  return list;
}

std::map<std::string, std::vector<double>> records_of(const std::string &text) {
  std::map<std::string, std::vector<double>> records;
  std::istringstream lines(text);
  std::string name;
  for (std::string line; std::getline(lines, line);) {
    line.pop_back(); // CR
    double value = 0;
    if (line.ends_with("\tGel"))
      records[name = line.substr(0, line.find('\t'))];
    else if (number_parse(line, value) && value != -1)
      records[name].push_back(value);
  }
  return records;
}

TEST_F(simulated_library, fingerprints_are_those_of_the_letters_and_the_filter_keeps_its_limits) {
  class_Simul_CutEnzyme bands(frame);
  bands.max_error_in_band_size_scoring_set(0);
  class_simul_clones clones(frame, bands, draw);
  ASSERT_TRUE(clones.start_Simul_CutEnzyme_CloneEnds_run_if_needed(folder / "genome.fa"));
  ASSERT_TRUE(clones.create_clones());
  number_list kept;
  ASSERT_TRUE(clones.print_list_of_clones_with_bands_run(true, false, kept));
  const auto records = records_of(bytes_of(folder / "DataBase_Simul.txt"));
  EXPECT_EQ(static_cast<std::size_t>(kept.count()), records.size());
  std::set<std::size_t> n_bands_kept;
  for (const simul_clone &clone : clones.clones().clones) {
    const std::vector<double> plain = plain_bands(bands, clone, texts);
    EXPECT_EQ(static_cast<std::size_t>(clone.n_bands_obs_no_errors), plain.size());
    const bool usable = plain.size() >= 30 && plain.size() <= 60;
    ASSERT_EQ(records.count(clone.name), usable ? 1u : 0u);
    if (usable) {
      EXPECT_EQ(records.at(clone.name), plain);
      n_bands_kept.insert(plain.size());
    }
  }
  EXPECT_TRUE(n_bands_kept.count(30) == 1 && n_bands_kept.count(60) == 1); // both limits are kept
  EXPECT_LT(kept.count(), 700);
}

TEST_F(simulated_library, files_are_the_same_for_any_number_of_threads_and_differ_by_seed) {
  number_list kept, kept_again;
  draw.threads = 1;
  const auto one = files_of_library(draw, kept);
  draw.threads = 4;
  const auto four = files_of_library(draw, kept_again);
  EXPECT_EQ(one, four);
  EXPECT_EQ(kept, kept_again);
  for (const char *name : {"all_clones.txt", "statistics_all_clones.txt", "selected_clones.txt", "clones.txt",
                           "statistics_selected_clones.txt", "clone_bin_coverage.txt", "DataBase_Simul.txt"})
    EXPECT_EQ(one.count(name), 1u) << name;
  EXPECT_EQ(one.at("DataBase_Simul.txt"), one.at("DataBase_Simul.sizes"));
  draw.seed = 2;
  EXPECT_NE(files_of_library(draw, kept_again).at("DataBase_Simul.txt"), one.at("DataBase_Simul.txt"));
}

TEST_F(simulated_library, is_read_as_a_library_and_its_truth_as_truth) {
  number_list kept;
  const auto files = files_of_library(draw, kept);
  placed_clones truth, table;
  ASSERT_TRUE(read_true_positions(frame, folder / "truth.tsv", truth));
  ASSERT_TRUE(read_table_of_clones(frame, folder / "selected_clones.txt", table));
  ASSERT_EQ(truth.clones.size(), static_cast<std::size_t>(kept.count()));
  ASSERT_EQ(table.clones.size(), truth.clones.size());
  for (std::size_t i = 0; i < truth.clones.size(); ++i) {
    EXPECT_EQ(truth.clones[i].name, table.clones[i].name);
    EXPECT_EQ(truth.clones[i].length, table.clones[i].length);
    std::size_t k = 0; // the truth leaves parts without a letter out
    for (const clone_part &part : table.clones[i].parts)
      if (part.part_start < part.part_end) {
        const clone_part &same = truth.clones[i].parts.at(k++);
        EXPECT_EQ(table.chromosomes[static_cast<std::size_t>(part.chromosome) - 1],
                  truth.chromosomes[static_cast<std::size_t>(same.chromosome) - 1]);
        EXPECT_EQ(part.part_start, same.part_start);
        EXPECT_EQ(part.part_end, same.part_end);
      }
    EXPECT_EQ(k, truth.clones[i].parts.size());
  }
  for (const bool folder_reader : {true, false}) {
    project_settings settings;
    class_DB_of_clones database;
    class_usable_values usable_values;
    database.total_number_of_different_bands_set_by_eff_len(60000);
    class_DB_of_clones_read reader(frame, settings);
    bool loaded = false;
    if (folder_reader)
      reader.read_database_from_folder_of_sizes_files(folder, false, true, loaded, database, usable_values);
    else
      loaded = reader.open_file_with_clones(0, folder / "DataBase_Simul.txt", false, true, database, usable_values);
    ASSERT_TRUE(loaded);
    const auto records = records_of(files.at("DataBase_Simul.txt"));
    ASSERT_EQ(static_cast<std::size_t>(database.total_number_of_clones_get()), records.size());
    for (clone_number c = 1; c <= database.total_number_of_clones_get(); ++c)
      EXPECT_EQ(database.bands_of_clone(c).size(), records.at(database.name_of_clone_get(c)).size());
  }
}

TEST_F(simulated_library, coverage_table_counts_the_bins_of_the_kept_clones) {
  class_Simul_CutEnzyme bands(frame);
  class_simul_clones clones(frame, bands, draw);
  ASSERT_TRUE(clones.start_Simul_CutEnzyme_CloneEnds_run_if_needed(folder / "genome.fa"));
  ASSERT_TRUE(clones.create_clones());
  number_list list{3, 700, 41};
  clones.print_bin_coverage(list, "\\clone_bin_coverage.txt");
  std::int64_t bins = 0, sum = 0;
  for (const clone_number c : list.members())
    bins += clones.clones().clones[static_cast<std::size_t>(c) - 1].n_bins;
  std::istringstream lines(bytes_of(folder / "clone_bin_coverage.txt"));
  std::string line;
  std::getline(lines, line);
  EXPECT_EQ(line, "bin\tTimes\r");
  for (std::int64_t bin = 1; std::getline(lines, line); ++bin) {
    ASSERT_TRUE(line.starts_with(std::to_string(bin) + "\t"));
    sum += std::stoll(line.substr(line.find('\t')));
  }
  EXPECT_EQ(sum, bins);
}

TEST_F(simulated_library, texts_of_the_dialogues) {
  write_bytes(folder / "genome.fa", ">x\n" + texts[0] + "\n");
  draw = {};
  draw.coverage = 15;
  class_Simul_CutEnzyme bands(frame);
  class_simul_clones clones(frame, bands, draw);
  book.add({"Open file with sequence", (folder / "genome.fa").string()});
  book.add({"Input number of clones", "many"}); // no number: the suggestion stays
  book.add({"Do you want to exclude", "yes"});
  ASSERT_TRUE(clones.create_clones());
  EXPECT_EQ(clones.n_clones(), 36); // 15 * 300000 / 126500
  number_list kept;
  ASSERT_TRUE(clones.print_list_of_clones_with_bands_run(std::nullopt, std::nullopt, kept));
  const std::int32_t bins = clones.cut_clone_ends().n_cuts_get();
  const double b = 300000.0 / bins, g = 300000.0 / bands.n_cuts_get();
  ASSERT_EQ(seen.messages.size(), 6u) << testing::PrintToString(seen.messages);
  EXPECT_EQ(seen.messages[2],
            "Mean length of clone bin = " + number_text_thousands(static_cast<std::int64_t>(b)) +
                number_text(b, 1).substr(number_text(b, 1).size() - 2) + " bp,\rPr(Cut in bin end) = " +
                number_text(b / 115000, 5) + "\rMean length of real band = " + number_text(g, 1) +
                " bp\rMean length of clone (STDV) = 126500 (44000) bp\rMean number of bins per clone (STDV) = " +
                number_text(126500 / b, 1) + " (" + number_text(44000 / b, 1) +
                ")\rMean number of real bands per clone = " + number_text(115000 / g, 1) +
                "\rPr(artificial merging of clones) = 0.1");
  EXPECT_TRUE(seen.messages[3].starts_with("NB! For ORB presence of copies of chimerical clones is critical!\r"));
  EXPECT_EQ(seen.messages[4],
            "Seqence length = 300000 bp\rMean clone length = 126500 bp\r1/5 of clones usualy excluded "
            "out from the analysis because of too low or too high number of bands.\rTo have coverage "
            "about x 15 you need about 36 clones");
  EXPECT_EQ(seen.messages[5], "Clones are created.");
  EXPECT_EQ(seen.questions,
            (std::vector<std::string>{"Open file with sequence...", "Input number of clones (36): ",
                                      "Do you want to exclude too short (<50 bands) and too long (>250 bands) clones?",
                                      "Do you want to use observed number of bands (after noising band size and band "
                                      "missing) instead of putative number of bands (no errors)?"}));
  EXPECT_TRUE(clones.start_Simul_CutEnzyme_CloneEnds_run_if_needed());
  EXPECT_EQ(seen.messages.back(), "File with sequence is already selected: " + (folder / "genome.fa").string());
  const std::string statistics = bytes_of(folder / "statistics_all_clones.txt");
  EXPECT_TRUE(statistics.starts_with("N_clones\t36\r\nseqence length (bp)\t300000\r\nTotal number of bands\t" +
                                     std::to_string(bands.n_cuts_get()) + "\r\nTotal number of bins\t" +
                                     std::to_string(bins) + "\r\n"));
}

TEST_F(simulated_library, short_and_empty_stretches) {
  class_Simul_CutEnzyme bands(frame);
  draw.mean_length = 1e6; // clones longer than the sequence are the sequence's end to end
  draw.length_deviation = 0;
  draw.n_clones = 100;
  std::string text;
  while (text.size() < 704)
    text += "ACGT"; // no site at all
  write_bytes(folder / "genome.fa", ">x\n" + text + "\n");
  class_simul_clones longer(frame, bands, draw);
  ASSERT_TRUE(longer.start_Simul_CutEnzyme_CloneEnds_run_if_needed(folder / "genome.fa"));
  ASSERT_TRUE(longer.create_clones());
  for (const simul_clone &clone : longer.clones().clones)
    for (const clone_part &part : clone.parts)
      EXPECT_TRUE(part.part_start == 0 && (part.part_end == 704 || part.part_end == 0)); // one bin, forward or back
  draw.mean_length = 0.1; // a draw below one bin is a part without a letter and without bands
  class_simul_clones empty(frame, bands, draw);
  ASSERT_TRUE(empty.start_Simul_CutEnzyme_CloneEnds_run_if_needed(folder / "genome.fa"));
  ASSERT_TRUE(empty.create_clones());
  for (const simul_clone &clone : empty.clones().clones)
    EXPECT_TRUE(clone.length == 0 && clone.n_bands_more_0 == 0 && clone.n_bands_obs == 0);
  write_bytes(folder / "genome.fa", ">x\n" + std::string(30000, 'N') + "\n");
  class_simul_clones none(frame, bands, draw);
  EXPECT_FALSE(none.start_Simul_CutEnzyme_CloneEnds_run_if_needed(folder / "genome.fa"));
  EXPECT_FALSE(none.is_sequence_read());
}

TEST_F(simulated_library, table_of_clones_is_read_back_and_bad_ones_are_refused) {
  class_Simul_CutEnzyme bands(frame);
  class_simul_clones clones(frame, bands, draw);
  ASSERT_TRUE(clones.start_Simul_CutEnzyme_CloneEnds_run_if_needed(folder / "genome.fa"));
  ASSERT_TRUE(clones.create_clones());
  const std::string written = bytes_of(folder / "all_clones.txt");
  ASSERT_TRUE(clones.file_clones_with_parts_read_run(folder / "all_clones.txt"));
  clones.print_table_of_clones(number_list::range(1, clones.n_clones()), "\\again.txt");
  EXPECT_EQ(bytes_of(folder / "again.txt"), written);
  number_list kept; // clones of a table can be printed: they are found in the sequence again
  const std::string before = clones.clones().clones[7].name;
  EXPECT_TRUE(clones.print_list_of_clones_with_bands(number_list{8}, true, false, false, kept));
  EXPECT_EQ(kept, number_list{8});

  const std::string row = "1\tC1\t1\t9\t1\t5\t5\t5\t30\t2\t10\t20\t100\t120";
  write_bytes(folder / "one.txt", "any heading\nN_clones\t1\n\n" + row + "\n");
  placed_clones placed;
  ASSERT_TRUE(read_table_of_clones(frame, folder / "one.txt", placed));
  EXPECT_EQ(placed.clones.at(0).parts.at(1).part_end, 120);
  const std::vector<std::pair<std::string, std::string>> bad{
      {"", "The table of clones holds no clone.\rfile @, line 0"},
      {"N_clones\tx\n", "N_clones is no number.\rfile @, line 1"},
      {"N_clones\t2000000000\n" + row, "The table of clones says N_clones = 2000000000 and holds 1.\rfile @, line 2"},
      {row + "\n" + row, "Clone C1 stands there twice.\rfile @, line 2"},
      {row + "\nend", "A line of the table of clones doesn't begin with a number.\rfile @, line 2"},
      {row.substr(0, row.rfind('\t')), "Clone C1 has no start and end that fit in its stretch 2.\rfile @, line 1"},
      {"1\tC1\t1\t9", "A row of the table of clones is too short.\rfile @, line 1"},
      {"1\tC1\t1\t9\t-1\t5\t5\t5\t10\t1\t10\t20",
       "A count in the table of clones is no whole number from 0 on.\rfile @, line 1"},
      {"1\tC1\t1\t9\t1\t5\t5\t5\t10\t2000000000\t10\t20", "The number of parts is none from 1 to 100.\rfile @, line 1"},
      {"1\tC1\t1\t9\t1\t5\t5\t5\t10\t1\t20\t10",
       "Clone C1 has no start and end that fit in its stretch 1.\rfile @, line 1"},
      {"1\tC1\t1\t9\t1\t5\t5\t5\t11\t1\t10\t20", "The parts of clone C1 don't add up to its length.\rfile @, line 1"}};
  for (auto [bytes, message] : bad) {
    write_bytes(folder / "bad.txt", bytes);
    message.replace(message.rfind('@'), 1, (folder / "bad.txt").string());
    EXPECT_FALSE(read_table_of_clones(frame, folder / "bad.txt", placed)) << bytes;
    EXPECT_EQ(seen.messages.back(), message);
    EXPECT_EQ(placed.clones.size(), 1u);
  }
  // clones of another sequence aren't printed
  ASSERT_TRUE(clones.file_clones_with_parts_read_run(folder / "one.txt"));
  EXPECT_FALSE(clones.print_list_of_clones_with_bands(number_list{1}, true, false, false, kept));
}

TEST_F(simulated_library, a_stop_leaves_no_half_file) {
  bool stop = false;
  front_end shown = scripted_front_end(book, seen);
  shown.yield = [&] { return stop; };
  process_frame own(shown, folder);
  class_Simul_CutEnzyme bands(own);
  class_simul_clones clones(own, bands, draw);
  ASSERT_TRUE(clones.start_Simul_CutEnzyme_CloneEnds_run_if_needed(folder / "genome.fa"));
  ASSERT_TRUE(clones.create_clones());
  stop = true;
  number_list kept;
  draw.n_clones = 5000; // more than a block
  class_simul_clones more(own, bands, draw);
  EXPECT_FALSE(more.start_Simul_CutEnzyme_CloneEnds_run_if_needed(folder / "genome.fa"));
  stop = false;
  own.stop_requested_set(false);
  ASSERT_TRUE(more.start_Simul_CutEnzyme_CloneEnds_run_if_needed(folder / "genome.fa"));
  ASSERT_TRUE(more.create_clones());
  stop = true;
  EXPECT_FALSE(more.print_list_of_clones_with_bands_run(true, true, kept));
  EXPECT_TRUE(own.was_stopped());
  EXPECT_FALSE(fs::exists(folder / "DataBase_Simul.txt"));
  EXPECT_FALSE(more.create_clones());
  EXPECT_EQ(more.n_clones(), 0);
}

} // namespace
