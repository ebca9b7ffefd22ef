// The digest: cuts, bands, readings.
#include <algorithm>
#include <cmath>
#include <map>

#include "frame/numbers.h"
#include "simulation/class_Simul_CutEnzyme.h"
#include "simulation/site_automaton.h"
#include "support/sequence_helpers.h"

namespace {

using namespace orb;
using namespace orb_test;

// A list of cuts whose runs of breaks are held by the first and the last.
cut_list with_short_runs(const std::vector<std::int32_t> &position, const std::vector<std::int32_t> &enzyme) {
  cut_list cuts;
  const auto is_break = [&](std::size_t i) { return i > 0 && i + 1 < position.size() && enzyme[i] == 0; };
  for (std::size_t i = 0; i < position.size(); ++i) {
    const bool goes_on = is_break(i) && is_break(i - 1) && position[i - 1] == position[i] - 1;
    const bool more = is_break(i) && is_break(i + 1) && position[i + 1] == position[i] + 1;
    if (!(goes_on && more))
      cuts.add(position[i], goes_on ? -1 : enzyme[i]);
  }
  return cuts;
}

cut_list plain_cuts(const class_Simul_CutEnzyme &cutter, const std::string &text) {
  std::vector<std::int32_t> position, enzyme;
  std::int32_t n = 0;
  cutter.cut_band_after_letter_and_enz_from_s(text, position, enzyme, n, true);
  return with_short_runs(position, enzyme);
}

std::string in_lines(const std::string &text, std::size_t width, const std::string &line_end) {
  std::string lines;
  for (std::size_t i = 0; i < text.size(); i += width)
    lines += text.substr(i, width) + line_end;
  return lines;
}

class digest : public sequence_test {
protected:
  class_Simul_CutEnzyme cutter{frame};
};

TEST_F(digest, streamed_files_give_the_cuts_of_the_plain_formulation) {
  random_source chance(11);
  std::vector<std::string> texts;
  std::string file;
  const char *line_ends[] = {"\n", "\r\n", "\r"};
  for (int k = 0; k < 9; ++k) {
    std::string text = random_sequence(k == 4 ? 1500000 : 1 + chance.next() % 3000, 40, chance);
    for (int run = 0; run < k; ++run)
      text.replace(chance.next() % text.size(), 0, std::string(1 + chance.next() % 5, "NRYB"[run % 4]));
    file += ">chr" + std::to_string(k) + " more > words" + line_ends[k % 3];
    std::string shown = text;
    for (char &letter : shown)
      letter = chance.uniform() < 0.5 ? static_cast<char>(std::tolower(letter)) : letter;
    file += in_lines(shown, 1 + chance.next() % 90, line_ends[k % 3]) + line_ends[k % 3];
    for (char &letter : text)
      letter = std::string("RYB").find(letter) != std::string::npos ? 'N' : letter;
    texts.push_back(text);
  }
  write_bytes(folder / "a.fa", file);
  write_gzip(folder / "b", file);
  for (const char *name : {"a.fa", "b"}) {
    class_Simul_CutEnzyme fresh(frame);
    ASSERT_TRUE(fresh.read_sequence_and_create_real_band_map(folder / name, true)) << seen.messages.back();
    ASSERT_EQ(fresh.chromosomes().size(), texts.size());
    std::int64_t n = 0, length = 0;
    for (std::size_t k = 0; k < texts.size(); ++k) {
      EXPECT_EQ(fresh.chromosomes()[k].name, "chr" + std::to_string(k));
      EXPECT_EQ(fresh.chromosomes()[k].cuts, plain_cuts(cutter, texts[k])) << name << k;
      n += fresh.chromosomes()[k].cuts.n_cuts();
      length += static_cast<std::int64_t>(texts[k].size());
    }
    EXPECT_EQ(fresh.n_cuts_get(), n);
    EXPECT_EQ(fresh.sequence_length_get(), length);
    EXPECT_EQ(seen.messages.back(), std::to_string(n) + " points found.");
  }
  ASSERT_TRUE(cutter.read_sequence_and_create_real_band_map(folder / "a.fa", false));
  for (const digested_chromosome &chromosome : cutter.chromosomes()) // without breaks the ends are ends of bands
    EXPECT_EQ(std::count_if(chromosome.cuts.enzyme.begin(), chromosome.cuts.enzyme.end(), [](int e) { return e < 1; }),
              0);
}

// Each enzyme with a list of partial matches, as long as they go on matching.
cut_list by_partial_matches(const std::vector<enzyme_rec> &enzymes, const std::string &text) {
  std::vector<std::pair<std::int32_t, std::int32_t>> found;
  for (std::size_t e = 1; e < enzymes.size(); ++e) {
    std::vector<std::size_t> partial;
    for (std::size_t i = 0; i < text.size(); ++i) {
      partial.push_back(0);
      std::vector<std::size_t> kept;
      for (const std::size_t k : partial)
        if (enzymes[e].site[k] == text[i])
          kept.push_back(k + 1);
      if (!kept.empty() && kept.front() == enzymes[e].site.size()) {
        found.emplace_back(i + 1 - kept.front() + static_cast<std::size_t>(enzymes[e].cut_after), e);
        kept.erase(kept.begin());
      }
      partial = kept;
    }
  }
  std::sort(found.begin(), found.end());
  cut_list cuts;
  cuts.add(0, 1);
  for (const auto &[position, enzyme] : found)
    cuts.add(position, enzyme);
  cuts.add(static_cast<std::int32_t>(text.size()), 1);
  return cuts;
}

TEST(automaton, finds_what_partial_matches_find_for_any_sites) {
  random_source chance(5);
  for (int round = 0; round < 300; ++round) {
    std::vector<enzyme_rec> enzymes(1);
    for (std::size_t e = 1; e <= 1 + chance.next() % 5; ++e) {
      enzyme_rec enzyme;
      for (std::size_t k = 1 + chance.next() % 4; k > 0; --k)
        enzyme.site += "ACGT"[chance.next() % 2];
      class_Simul_CutEnzyme::LetterIndexes_get(enzyme.site, enzyme.letter_index);
      enzyme.site_length = static_cast<std::int32_t>(enzyme.site.size());
      enzyme.cut_after = static_cast<std::int32_t>(chance.next() % (enzyme.site.size() + 1));
      enzymes.push_back(enzyme);
    }
    std::string text;
    std::vector<std::uint8_t> letters;
    for (std::size_t i = chance.next() % 60; i > 0; --i) {
      text += "ACGT"[chance.next() % 3];
      letters.push_back(static_cast<std::uint8_t>(class_Simul_CutEnzyme::LetterIndex_get(text.back())));
    }
    site_automaton automaton(enzymes, false);
    cut_list cuts;
    automaton.begin(cuts);
    const std::size_t half = letters.size() / 2;
    automaton.feed(std::span(letters).first(half), cuts);
    automaton.feed(std::span(letters).subspan(half), cuts);
    automaton.finish(cuts);
    ASSERT_EQ(cuts, by_partial_matches(enzymes, text)) << text;
  }
}

TEST_F(digest, finders_of_texts_and_letters_agree_on_the_default_set_and_differ_where_told) {
  random_source chance(3);
  const std::string text = random_sequence(5000, 30, chance) + "N,,A";
  std::vector<std::int16_t> letters;
  class_Simul_CutEnzyme::LetterIndexes_get(text, letters);
  std::vector<std::int32_t> p1, e1, p2, e2;
  std::int32_t n1 = 0, n2 = 0;
  cutter.cut_band_after_letter_and_enz_from_s(text, p1, e1, n1, true);
  cutter.cut_band_after_letter_and_enz_from_LetterIndexes(letters, 1, static_cast<std::int32_t>(text.size()), p2, e2,
                                                          n2, true);
  EXPECT_EQ(p1, p2);
  EXPECT_EQ(e1, e2);
  EXPECT_EQ(n1, n2);
  cutter.cut_band_after_letter_and_enz_from_s("gaattcGAATT", p1, e1, n1, false); // case counts; a tail of 5
  EXPECT_EQ(p1, (std::vector<std::int32_t>{0, 11}));
  EXPECT_EQ(e1, (std::vector<std::int32_t>{1, 1}));
  cutter.cut_band_after_letter_and_enz_from_s("AGGCC", p1, e1, n1, false);
  EXPECT_EQ(p1, (std::vector<std::int32_t>{0, 3, 5}));
  cutter.start_for_cut_genome_into_clones(); // a site of 6 letters as enzyme 1 is known to the general finder only
  class_Simul_CutEnzyme::LetterIndexes_get("CaagcttC", letters);
  cutter.cut_band_after_letter_and_enz_from_s("CAAGCTTC", p1, e1, n1, false);
  cutter.cut_band_after_letter_and_enz_from_LetterIndexes(letters, 1, 8, p2, e2, n2, false);
  EXPECT_EQ(p1, (std::vector<std::int32_t>{0, 8}));
  EXPECT_EQ(p2, (std::vector<std::int32_t>{0, 2, 8}));
}

TEST_F(digest, band_table_counts_ends_by_their_rules) {
  // right end 2, left end 1 | 2,2 | left 2, right 1: 4 shorter | the same, too short | both 1 | break | too long
  cut_list cuts;
  for (const auto &[position, enzyme] : {std::pair{0, 1},
                                         {100, 2},
                                         {160, 2},
                                         {230, 1},
                                         {231, 3},
                                         {235, 1},
                                         {300, 1},
                                         {350, 0},
                                         {1000, -1},
                                         {1010, 1},
                                         {1700, 1}})
    cuts.add(position, enzyme);
  band_table table;
  cutter.start_table(table, true);
  cutter.create_band_presented_times(cuts, false, table);
  std::map<std::pair<int, int>, int> times;
  for (std::int32_t d = 0; d <= table.max_length; ++d)
    for (std::int32_t e = 1; e <= 5; ++e)
      if (table.times(d, e) > 0)
        times[{d, e}] = table.times(d, e);
  EXPECT_EQ(times, (std::map<std::pair<int, int>, int>{{{100, 1}, 1},
                                                       {{100, 2}, 1},
                                                       {{60, 2}, 2},
                                                       {{70, 1}, 1},
                                                       {{66, 2}, 1},
                                                       {{1, 3}, 1},
                                                       {{1, 1}, 1},
                                                       {{4, 1}, 1},
                                                       {{65, 1}, 2}}));
  EXPECT_EQ(table.both_ends[table.pair_cell(70, 1, 2)], 1); // always at the whole length
  EXPECT_EQ(table.both_ends[table.pair_cell(4, 1, 3)], 1);
  EXPECT_EQ(table.sums, (band_length_sums{690, 50 + 650 + 10, 65, 100 + 70 + 1 + 4, 60}));
  cutter.start_table(table, false);
  cutter.create_band_presented_times(cuts, true, table); // the first, those beside 1 and 4 letters and the last are out
  EXPECT_EQ(table.times(60, 2), 2);
  EXPECT_EQ(table.times(100, 2) + table.times(70, 1) + table.times(65, 1), 0);
  // counts: a run of unknown letters is no band
  EXPECT_EQ(cutter.calculate_real_number_of_bands(cuts, 0, cuts.n_cuts()), (band_counts{9, 1, 3}));
  const auto alone = cutter.calculate_real_number_of_bands_NONRIGHT(cuts, 0, cuts.n_cuts());
  EXPECT_EQ(alone[2], (band_counts{8, 1, 3}));
  EXPECT_EQ(alone[3], (band_counts{7, 1, 0}));
}

TEST_F(digest, agarose_shows_each_fragment_once_where_it_came_to_a_stop) {
  cutter.start_for_agarose();
  cutter.min_band_length_set(600);
  cutter.max_band_length_set(30000);
  cutter.max_error_in_band_size_scoring_set(3.5);
  cutter.merge_distance_set(7);
  cut_list cuts;
  for (const std::int32_t position : {0, 600, 1000, 31000, 33000, 35000, 70000}) // 400 and 35000 aren't seen
    cuts.add(position, 1);
  EXPECT_EQ(cutter.calculate_real_number_of_bands(cuts, 0, cuts.n_cuts()).ok_colored, 4);
  random_source chance(4);
  std::vector<double> bands;
  band_reading_sums sums;
  cutter.list_of_bands_for_several_parts({cuts}, true, chance, bands, sums);
  EXPECT_EQ(bands, (std::vector<double>{0, 942, 3300})); // 3300 (1/2000 - 1/30000) / (1/600 - 1/30000); two are one
  double farthest = 0;
  for (int round = 0; round < 300; ++round) {
    cutter.list_of_bands_for_several_parts({cuts}, false, chance, bands, sums);
    ASSERT_TRUE(std::is_sorted(bands.begin(), bands.end()) && bands.front() >= 0 && bands.back() <= 3300);
    for (const double band : bands)
      if (band > 500 && band < 2000)
        farthest = std::max(farthest, std::abs(band - 942));
  }
  EXPECT_TRUE(farthest > 7 && farthest < 11.5) << farthest;
}

TEST_F(digest, runs_of_unknown_letters_count_as_if_each_were_a_break) {
  random_source chance(8);
  for (int round = 0; round < 50; ++round) {
    std::string text = random_sequence(2000, 20, chance);
    for (int run = 0; run < 4; ++run)
      text.replace(chance.next() % text.size(), 0, std::string(1 + chance.next() % 900, 'N'));
    std::vector<std::int32_t> position, enzyme;
    std::int32_t n = 0;
    cutter.cut_band_after_letter_and_enz_from_s(text, position, enzyme, n, true);
    cut_list every;
    for (std::size_t i = 0; i < position.size(); ++i)
      every.add(position[i], enzyme[i]);
    for (const bool clustered : {false, true}) {
      band_table one, two;
      cutter.start_table(one, true);
      cutter.start_table(two, true);
      cutter.create_band_presented_times(every, clustered, one);
      cutter.create_band_presented_times(with_short_runs(position, enzyme), clustered, two);
      ASSERT_EQ(one.band_presented_times, two.band_presented_times);
      ASSERT_EQ(one.both_ends, two.both_ends);
      ASSERT_EQ(one.sums, two.sums);
    }
  }
}

TEST_F(digest, readings_draw_in_the_told_order) {
  band_table table;
  cutter.start_table(table, false);
  table.times(49, 2) = 1; // too short unless misread
  table.times(100, 2) = 2;
  table.times(300, 3) = 1;
  table.times(500, 5) = 40;
  table.times(200, 1) = 7; // no colour, no draw
  for (const double lost : {0.0, 0.3, 1.0}) {
    cutter.probability_to_miss_band_set(lost);
    random_source chance(4), same(4);
    std::vector<double> expected, bands;
    double lost_length = 0;
    const auto read = [&](std::int32_t length, std::int32_t term) {
      double size = -1;
      if (!(lost > same.uniform())) {
        same.uniform(); // the dropped one
        const bool small = same.uniform() < 0.9;
        size = length + (2 * same.uniform() - 1) * (small ? 0.2 : 0.6);
      }
      if (size >= 50 && size <= 500)
        expected.push_back(term + size * 30);
      else
        lost_length += length;
    };
    for (const auto &[length, term, count] : {std::tuple{49, 15000, 1}, {100, 15000, 2}, {300, 0, 1}, {500, 45000, 40}})
      for (int k = 0; k < count; ++k)
        read(length, term);
    band_reading_sums sums;
    cutter.cutSingleSeqByEnzymes_and_createListOfBands_run(table, false, chance, bands, sums);
    EXPECT_EQ(bands, expected);
    EXPECT_EQ(sums.lost_length, lost_length);
    EXPECT_EQ(bands.empty(), lost == 1.0);
    EXPECT_EQ(chance.next(), same.next());
  }
  table.times(100, 2) = 20000;
  random_source chance;
  std::vector<double> bands;
  band_reading_sums sums;
  cutter.cutSingleSeqByEnzymes_and_createListOfBands_run(table, true, chance, bands, sums);
  EXPECT_EQ(bands.size(), 10000u);
}

TEST_F(digest, close_bands_merge) {
  const auto merged = [this](std::vector<double> bands, double &lost) {
    band_reading_sums sums;
    cutter.sort_bands_and_exclude_repeats_based_on_tolerance(bands, sums);
    lost = sums.lost_length;
    return bands;
  };
  double lost = 0;
  EXPECT_EQ(merged({1533.4}, lost), std::vector<double>{1533.4}); // a lone one stays as it is
  // compared with the last kept: 3012 goes, 3013 stays though it is near 3012; the constants hold for any scale
  cutter.scale_set(10);
  cutter.shift_of_scaled_bands_set(10000);
  EXPECT_EQ(merged({18000.9, 3013, 3000.5, 3012, 18005}, lost), (std::vector<double>{3000, 3013, 18000}));
  EXPECT_DOUBLE_EQ(lost, 3012 / 30.0 + 3005 / 30.0);
}

TEST_F(digest, chance_that_two_readings_agree) {
  const auto value = [](double length, double tolerance, double p) {
    double probability = -1;
    class_Simul_CutEnzyme::probability_diff_obs_less_tolerance_get(length, tolerance, p, probability);
    return probability;
  };
  EXPECT_EQ(value(0, 0.4, 0.9), 1);
  EXPECT_EQ(value(-1, 0.4, 0.9), 1);
  EXPECT_NEAR(value(0.2, 0.4, 0.9), 0.81 + 0.01 * 5 / 9 + 0.18 * 0.4 / 0.6, 1e-12);
  random_source chance(2); // and it is about what readings do
  int n = 0;
  const auto error = [&chance] { return (chance.uniform() < 0.9 ? 1 : 3) * 0.2 * (2 * chance.uniform() - 1); };
  for (int i = 0; i < 100000; ++i)
    n += std::abs(error() - error()) < 0.3 ? 1 : 0;
  EXPECT_NEAR(n / 1e5, value(0.2, 0.3, 0.9), 0.01);
}

TEST_F(digest, scaling_dialogue) {
  const std::string tolerance = "tolerance, bp", shift = "shift in size", scale = "scale, e.g.,",
                    low = "min_band_length, e.g.,", high = "max_band_length, e.g.,", order = "List of Enzymes",
                    change = "Chanche ordering?";
  const auto run = [this](std::vector<prepared_answer> answers, class_Simul_CutEnzyme &object) {
    for (prepared_answer &prepared : answers)
      book.add(prepared);
    bool ok = false;
    object.update_parameters_of_scalaling(ok);
    return ok;
  };
  cutter.max_error_in_band_size_scoring_set(0.22); // is shown as 0.4, and an unchanged entry keeps it
  EXPECT_TRUE(run({}, cutter));
  EXPECT_EQ(cutter.max_error_in_band_size_scoring_get(), 0.22);
  EXPECT_EQ(cutter.max_band_table_get(), 600);
  EXPECT_TRUE(run({{tolerance, "0.5"}, {shift, "10000"}, {scale, "10"}, {low, "60"}, {high, "1200"}}, cutter));
  EXPECT_EQ(cutter.max_error_in_band_size_scoring_get(), 0.25);
  EXPECT_EQ(cutter.enzyme_list()[2].term, 10000);
  EXPECT_EQ(cutter.enzyme_list()[5].term, 30000);
  EXPECT_EQ(cutter.max_band_table_get(), 1205);
  EXPECT_EQ(seen.questions[8], "List of Enzymes and scaling shift:\r     HaeIII (no color): term(1) = 0 - no need\r"
                               "     EcoRI (Green):     term(2) = 10000\r     BamHI (Blue):      term(3) = 0\r"
                               "     XbaI (Yellow):     term(4) = 20000\r     XhoI (Red):        term(5) = 30000\r"
                               "If list of enzymes is different then program should be stopped.\r"
                               "List and ordering is ok?");
  EXPECT_TRUE(run({{shift, "20000"}}, cutter)); // from the first windows, not from the last
  EXPECT_EQ(cutter.enzyme_list()[5].term, 60000);
  EXPECT_TRUE(run({{order, "no"}, {change, "yes"}, {"Enzime XbaI (Yellow), term =", "7"}}, cutter));
  EXPECT_EQ(cutter.enzyme_list()[4].term, 7);
  for (const auto &[prompt, name] : {std::pair{tolerance, "tolerance"}, {shift, "shift_in_size_of_scaled_bands"}})
    for (const std::string text : {"abc", "-3", "0"}) {
      EXPECT_FALSE(run({{prompt, text}}, cutter));
      EXPECT_EQ(seen.messages.back(),
                std::string("NB! Error in the input. ") + name + "=" + text + " (was not chanched!).");
    }
  EXPECT_THROW(run({{order, "no"}, {change, "no"}}, cutter), program_end);
}

TEST_F(digest, refuses_what_is_no_sequence) {
  struct bad_file {
    std::string bytes, message; // "@": the place
  };
  const std::vector<bad_file> files{
      {"", "Sequence is empty!\rfile @, line 1"},
      {"\r\n\n", "Sequence is empty!\rfile @, line 3"},
      {">only a header", "Sequence is empty!\rfile @, line 1"},
      {">a\nACGT\n>b\nACQT\n", "This is no DNA sequence: \"Q\" in file @, line 4"},
      {">a\r\nACGT\r\nA1\r\n", "This is no DNA sequence: \"1\" in file @, line 3"},
      {"ACGT>b\nACG\n", "This is no DNA sequence: \">\" in file @, line 1"},
      {std::string("ACG\n\0AC", 7), "This is no DNA sequence: the byte 0 in file @, line 2"},
      {std::string(">a\0b\nAC", 7), "This is no DNA sequence: the byte 0 in file @, line 1"},
      {"\x89PNG\r\n\x1a\n", "This is no DNA sequence: the byte 137 in file @, line 1"},
      {"@read\nACGT\n+\nIIII\n", "This is no DNA sequence: \"@\" in file @, line 1"},
      {">a\nAC\n>a\nGT\n", "Two records are called a: file @, line 3"}};
  write_bytes(folder / "good", "\xef\xbb\xbf> \nGAATTCaagg ccTT\n>two\n\n>three\nR,\n");
  ASSERT_TRUE(cutter.read_sequence_and_create_real_band_map(folder / "good", true));
  const auto names = [this] {
    std::string text;
    for (const digested_chromosome &chromosome : cutter.chromosomes())
      text += chromosome.name + ":" + std::to_string(chromosome.length()) + " ";
    return text;
  };
  EXPECT_EQ(names(), "record_1:14 three:2 ");
  for (const bad_file &bad : files) {
    const fs::path file = folder / "bad";
    write_bytes(file, bad.bytes);
    std::string message = bad.message;
    message.replace(message.rfind('@'), 1, file.string());
    EXPECT_FALSE(cutter.read_sequence_and_create_real_band_map(file, true)) << bad.bytes;
    EXPECT_EQ(seen.messages.back(), message);
    EXPECT_EQ(names(), "record_1:14 three:2 "); // as before
  }
  EXPECT_TRUE(frame.data_failed());
  write_gzip(folder / "whole.gz", random_sequence(100000, 50, *std::make_unique<random_source>(1)));
  const std::string whole = bytes_of(folder / "whole.gz");
  write_bytes(folder / "cut.gz", whole.substr(0, whole.size() / 2));
  std::string wrong = whole;
  wrong[whole.size() / 2] = static_cast<char>(wrong[whole.size() / 2] ^ 0x55);
  write_bytes(folder / "wrong.gz", wrong);
  for (const char *name : {"cut.gz", "wrong.gz", "missing", "."})
    EXPECT_THROW(cutter.read_sequence_and_create_real_band_map(folder / name, true), file_error) << name;
}

TEST_F(digest, letters_of_RNA_are_warned_of) {
  write_bytes(folder / "rna.fa", ">r\nACGT\nGGUCuu\n");
  ASSERT_TRUE(cutter.read_sequence_and_create_real_band_map(folder / "rna.fa", true));
  ASSERT_EQ(seen.warnings.size(), 1u);
  EXPECT_TRUE(seen.warnings[0].starts_with("The sequence holds 3 letters U")) << seen.warnings[0];
  EXPECT_NE(seen.warnings[0].find("rna.fa, line 3"), std::string::npos) << seen.warnings[0];
}

TEST_F(digest, files_of_the_working_folder) {
  frame.working_folder_set(folder);
  cutter.max_error_in_band_size_scoring_set(0);
  random_source chance;
  const std::string gap(96, 'A'); // 100 letters between the first two cuts, 103 between the others
  cutter.cut_sequence_by_enzymes_test("GGCC" + gap + "TGAATTC" + gap + "GGCC", chance);
  EXPECT_EQ(bytes_of(folder / "my_bands.txt"), "my_clone\t2\tGel\r\n17970.0\r\n18000.0\r\n-1\r\n");
  write_bytes(folder / "s.fa", ">s\nGGCC" + gap + "TGAATTC" + gap + "GGCC\n");
  ASSERT_TRUE(cutter.read_sequence_and_create_real_band_map(folder / "s.fa", true));
  cutter.print_seq_statistics(150);
  const std::string text = bytes_of(folder / "enz_EcoRI_statistics.txt");
  EXPECT_TRUE(text.starts_with("Len\tHaeIII\tEcoRI\tBamHI\tXbaI\tXhoI\r\n1\t0\t0\t0\t0\t0\r\n")) << text;
  EXPECT_NE(text.find("\r\n100\t1\t0\t0\t0\t0\r\n"), std::string::npos);
  EXPECT_NE(text.find("\r\n103\t1\t0\t0\t0\t0\r\n"), std::string::npos);
  EXPECT_TRUE(text.ends_with("Length of part\t150\r\nLength of part = 0.000\r\npart\tstart\tend\tchromosome\tcuts\r\n"
                             "1\t0.000\t0.000\ts\t1\r\n2\t0.000\t0.000\ts\t0\r\n"));
}

} // namespace
