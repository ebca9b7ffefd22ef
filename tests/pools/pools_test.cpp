// Schemes of pools, cases and tables of probes by hand; hypotheses on simulated probes.
#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "pools/pool_hypotheses.h"
#include "pools/pools_deconvolution.h"
#include "pools/pools_search.h"
#include "support/pools_generator.h"

using namespace orb;

namespace {

// Six clones in a row along a genome, two each in the wells of three plates, and what is asked of them.
class small_pools : public testing::Test, public net_fixture {
protected:
  small_pools() : net_fixture(row_of_clones()) {
    for (clone_number clone = 1; clone <= 6; ++clone)
      database.name_of_clone_set(clone, "X00" + std::to_string((clone + 1) / 2) + (clone % 2 ? "A01" : "B02"));
    database.sort_clones_by_name(frame);
    wishes.prefix = "X";
    wishes.sizes = {3, 2, 4};
    EXPECT_TRUE(
        load("h\nh\n1\tA1\tx\t1\tA1\n1\tb2\t\t1\tA2\n2 A1 x 2 B3\n2\tB2\t\t2\tB4\n3\tA1\t\t3\tA1\n\n9\tA1\t\t1\tB1\n"))
        << last_message(); // "X001b02" and "X009A01" aren't clones
    record = {};
  }
  static generated_library row_of_clones() {
    generated_library wanted;
    wanted.n_clones = 6;
    wanted.coverage = 3;
    return wanted;
  }
  bool load(const std::string &text) {
    return pools.read_pools_recoding(frame, database, write("r.txt", text), wishes);
  }
  bool find(const std::string &text, pools_search_wishes asked = {}) {
    asked.file = write("positive.txt", text);
    found = {};
    record = {};
    return work_with_list_of_positive_pools_run(pools, signif, rule, asked, found);
  }
  clone_number clone(const char *name) const { return database.clone_number_get(name); }
  positive_pools marks(const pool_lists &lists) const { return {pools.sizes(), lists}; }

  pools_wishes wishes;
  class_pools3D pools;
  pools_search_result found;
};

} // namespace

TEST_F(small_pools, a_scheme_knows_its_wells) {
  EXPECT_EQ(pools.n_coded_clones_get(), 4);
  EXPECT_EQ(pools.n_unknown_names_get(), 2);
  EXPECT_EQ(pools.clone_in_pool(3, 2, 2), clone("X002A01"));
  EXPECT_EQ(pools.clone_in_pool(2, 1, 1), -1);
  EXPECT_EQ(pools.position_of_clone_in_pools_text_get(clone("X002B02")), "P2_B4");
  EXPECT_EQ(pools.position_of_clone_in_pools_text_get(clone("X003B02")), "no");
  EXPECT_EQ(number_from_letter('B') + number_from_letter('z') + number_from_letter('1'), 2 + 26 - 1);
  EXPECT_EQ(letter_from_number(frame, 3, true) + letter_from_number(frame, 26, false), "Cz");
  EXPECT_EQ(letter_from_number(frame, 27, true), "");
  EXPECT_EQ(last_message(), "Number 27>26 (total number of letters)");
  pools.print_filling_of_tables(folder / "filling_of_tables.txt");
  const std::string first_plate = "P1\r\ncoor\t1\t2\t3\t4\r\nA\t*\t \t \t \r\nB\t \t \t \t \r\nP2\r\n";
  EXPECT_EQ(bytes("filling_of_tables.txt").substr(0, first_plate.size()), first_plate);
  pools.pools_for_list_of_clones(database, {clone("X003A01"), clone("X001B02")}, "l", folder);
  EXPECT_EQ(bytes("pools_for_clones_l.txt"), "i\tclone\tpools\r\n1\tX003A01\tP3_A1\r\n2\tX001B02\tno\r\n");
}

TEST_F(small_pools, a_recoding_that_cant_be_read_leaves_the_scheme) {
  for (const auto &[text, told] : std::vector<std::pair<std::string, std::string>>{
           {"h\nh\n1\tA1\t\t1\n", "fewer than five fields.\r\nfile"},
           {"h\nh\n1\tA1\t\t1\tA1\n\nx\tA1\t\t1\tA1\n", "no number.\r\nfile"},
           {"h\nh\n1\t11\t\t1\tA1\n", "The source well"},
           {"h\nh\n1\tA1\t\t4\tA1\n", "outside of the scheme"},
           {"h\nh\n1\tA1\t\t1\tC1\n", "outside of the scheme"},
           {"h\nh\n9\tA1\t\t1\tA1\n", "no clone of the library. The first name is X009A01."}}) {
    EXPECT_FALSE(load(text)) << text;
    EXPECT_NE(last_message().find(told), std::string::npos) << last_message();
    EXPECT_EQ(pools.n_coded_clones_get(), 4);
  }
  EXPECT_NE(record.messages[1].find("line 5"), std::string::npos) << record.messages[1];
}

TEST_F(small_pools, lists_of_positive_pools_are_read_in_either_order) {
  pool_lists lists, other;
  ASSERT_TRUE(read_list_of_positive_pools(frame, write("a.txt", "Plates: 2\nP1\nP3\ncolumns: 1\n4\nrows: 2\nA\nb\n"),
                                          pools.sizes(), lists));
  ASSERT_TRUE(read_list_of_positive_pools(
      frame, write("a.txt", "Plates: 2\r\nP1\r\nP3\r\nrows: 2\r\nA\r\nb\r\ncolumns: 1\r\n4\r\n"), pools.sizes(),
      other));
  EXPECT_EQ(lists, other);
  EXPECT_EQ(lists[pool_plates], (number_list{1, 3}));
  EXPECT_EQ(lists[pool_rows], (number_list{1, 2}));
  for (const auto &[text, line] :
       std::vector<std::pair<std::string, std::string>>{{"Plates: x\n", "line 1"},
                                                        {"Plates: 1\nPx\n", "line 2"},
                                                        {"Plates: 1\nP4\n", "line 2"},
                                                        {"Plates: 1\nP1\ncolumns: 999999999\n1\n", "line 4"},
                                                        {"Plates: 1\nP1\ncolumns: 1\n1\nrows: 1\n7\n", "line 6"}}) {
    EXPECT_FALSE(read_list_of_positive_pools(frame, write("a.txt", text), pools.sizes(), lists)) << text;
    EXPECT_NE(last_message().find(line), std::string::npos) << last_message();
    EXPECT_TRUE(lists[pool_rows].unreadable());
  }
}

TEST_F(small_pools, each_number_of_found_clones_has_its_answer) {
  struct known_case {
    const char *pools, *answer;
  };
  for (const known_case &one :
       {known_case{"Plates: 1\nP1\ncolumns: 1\n1\nrows: 1\nA\n", "Uniqe clone in overlapping succesfully found :)"},
        {"Plates: 1\nP1\ncolumns: 2\n1\n2\nrows: 1\nA\n",
         "Only one clone found, but more were expected => problem!!! :("},
        {"Plates: 1\nP1\ncolumns: 1\n4\nrows: 1\nB\n", "No clones in overlapping of pools => problem!!! :("},
        {"Plates: 1\nP2\ncolumns: 3\n2\n3\n4\nrows: 1\nB\n",
         "Only 2 clones found, but more were expected => problem!!! :("}}) {
    EXPECT_TRUE(find(one.pools));
    EXPECT_EQ(last_message(), one.answer);
  }
  EXPECT_EQ(bytes("clones_PxPxP.txt"), "X002A01\r\nX002B02\r\n");
  EXPECT_NE(bytes("in pools.txt").find("2\tX002B02\tP2_B4\t\t\t+\t\t\t\t+\t\t\t\t\t+\r\n"), std::string::npos)
      << bytes("in pools.txt");
  EXPECT_FALSE(find("Plates: 0\ncolumns: 1\n4\nrows: 1\nB\n")) << "an empty list";
}

TEST_F(small_pools, the_rank_is_asked_and_large_ones_are_doubted) {
  const std::string two = "Plates: 2\nP1\nP2\ncolumns: 2\n1\n3\nrows: 2\nA\nB\n";
  struct known_case {
    const char *rank;
    bool doubted;
  };
  for (const known_case &one : {known_case{"abc", false}, {"-2", false}, {"0", false}, {"11", true}}) {
    book = {};
    answer("2 clones found. Do you want to subdivide found clones into groups of linked and exclude singletones?",
           "yes");
    answer("Inuput rank of additional clones:", one.rank);
    ASSERT_TRUE(find(two)) << last_message();
    EXPECT_EQ(record.questions.size(), one.doubted ? 3u : 2u);
    EXPECT_EQ(record.questions.back() == "Rank=11 is too mach. Are you sure? (or use 1)", one.doubted);
    EXPECT_TRUE(last_message().starts_with("N=")) << last_message();
    EXPECT_EQ(bytes("clustering_report.txt").substr(0, 39), "cluster\tclones\tfound\tpools\tunexplained\r");
  }
  EXPECT_TRUE(find(two, {{}, false, {}}));
  EXPECT_TRUE(record.questions.empty());
}

TEST_F(small_pools, what_a_group_leaves_unexplained_is_named) {
  const std::vector<clone_number> group{clone("X001A01"), clone("X002A01"), clone("X003B02")};
  const positive_pools positive = marks({number_list{1, 3}, number_list{1, 2}, number_list{1, 4}});
  EXPECT_EQ(pools.text_of_unexplained_pools(group, positive), "(P2) P3 (3) 4");
  const positive_pools just = marks({number_list{1, 2}, number_list{1, 2}, number_list{1, 3}});
  EXPECT_EQ(pools.text_of_unexplained_pools(group, just), "all positive pools are explained");
  double score = 0;
  bool exact = false, all_explained = false;
  pools.putatively_positive_clones_based_on_likelyhood(group, just, score, exact, all_explained);
  EXPECT_TRUE(exact && all_explained);
  // n is 3, and one clone in each of six pools: plates 1, 2, rows A, B, columns 1, 3; 3 pools are empty and negative
  EXPECT_NEAR(score, -6 * std::log(1 - 0.3 * 0.81) - 3 * std::log(0.729), 1e-9);
  pools.putatively_positive_clones_based_on_likelyhood(group, positive, score, exact, all_explained);
  EXPECT_FALSE(exact || all_explained);
  EXPECT_NEAR(score,
              -4 * std::log(1 - 0.3 * 0.81) - 2 * std::log(0.3 * 0.81) - 2 * std::log(1 - 0.729) - std::log(0.729),
              1e-9);
}

TEST_F(small_pools, a_table_of_probes_is_answered_line_by_line) {
  const std::string blank = "none\t\t\t\t\t\t\t\t\t", one = "one\t+\t\t\tx\t\t1", wrong(12, '\t');
  write("probes.txt", "heads\r\n" + blank + "\r\n\r\n" + one + "\r\n");
  deconvolution_summary summary;
  ASSERT_TRUE(for_deconv(pools, signif, rule, folder / "probes.txt", {}, summary)) << last_message();
  EXPECT_EQ(bytes("res_for_deconv.txt"), "heads\r\n" + blank + "\r\nall positive pools are explained\r\n" + one +
                                             "\r\nP1 A 1\r\nX001A01\tP1_A1\tPCR\r\n"
                                             "all positive pools are explained\t3\t1\t1\tX001A01,X001A01\r\n");
  EXPECT_EQ(summary.n_probes, 2);
  write("probes.txt", "heads\r\n" + blank + "\t+\r\n");
  EXPECT_FALSE(for_deconv(pools, signif, rule, folder / "probes.txt", {}, summary));
  EXPECT_NE(last_message().find("line 2"), std::string::npos) << last_message();
}

// ---- simulated probes ----

// Groups are components of the candidates, found by walking over all pairs; a block of many clones stops at 30.
TEST(simulated_pools, groups_are_the_linked_candidates) {
  pools_generator made(6, 3, 2 * 16 * 24);
  const class_net &net = made.library.signif.net();
  const pools_deconvolution work(made.pools, made.library.signif, made.library.rule);
  int n_with_groups = 0;
  for (int i = 0; i < 60; ++i) {
    const simulated_probe probe = made.draw_probe();
    deconvolved_probe found;
    ASSERT_TRUE(work.deconvolve(probe.positive, found));
    n_with_groups += found.groups.empty() ? 0 : 1;
    for (const number_list &group : found.groups)
      for (std::int32_t a = 1; a <= group.count() && group.count() > 1; ++a) {
        bool linked = false;
        for (const net_edge &edge : net.edges_of_vertex(group(a)))
          linked = linked ||
                   std::find(group.members().begin(), group.members().end(), edge.neighbour) != group.members().end();
        EXPECT_TRUE(linked);
      }
  }
  EXPECT_GT(n_with_groups, 30);
  positive_pools all(made.pools.sizes());
  for (std::size_t d = 0; d < n_pool_dimensions; ++d)
    for (std::int32_t pool = 1; pool <= made.pools.sizes()[d]; ++pool)
      all.set(d, pool);
  deconvolved_probe found;
  ASSERT_TRUE(work.deconvolve(all, found));
  const std::string text = work.text_of({"", "all", all, all.count()}, found);
  const std::size_t end = text.find("...\r\n");
  ASSERT_NE(end, std::string::npos);
  EXPECT_EQ(std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(end), '\n') % 31, 0)
      << "30 and the empty set's line";
}

TEST(simulated_pools, hypotheses_find_the_places) {
  pools_generator made(9, 2, 6 * 16 * 24);
  const pool_hypotheses hypotheses(made.pools, made.library.signif, made.library.rule, {});
  int n_places = 0, n_found = 0, n_told = 0, n_better_unseen = 0;
  for (int i = 0; i < 300; ++i) {
    const simulated_probe probe = made.draw_probe();
    const std::vector<pool_hypothesis> ranked = hypotheses.ranked(probe.positive);
    ASSERT_FALSE(ranked.empty());
    EXPECT_NEAR(ranked.front().cost, hypotheses.cost_of(probe.positive, ranked.front().places), 1e-9);
    n_better_unseen += hypotheses.cost_of(probe.positive, probe.places) < ranked.front().cost - 1e-9 ? 1 : 0;
    EXPECT_NEAR(std::accumulate(ranked.begin(), ranked.end(), 0.0, [](double s, auto &h) { return s + h.share; }), 1,
                1e-9);
    EXPECT_LE(ranked.front().cost, ranked.back().cost);
    n_told += static_cast<int>(ranked.front().places.size());
    n_places += static_cast<int>(probe.places.size());
    const std::vector<clone_number> told = ranked.front().clones();
    for (const auto &place : probe.places)
      n_found += std::any_of(place.begin(), place.end(),
                             [&](clone_number clone) { return std::binary_search(told.begin(), told.end(), clone); });
  }
  EXPECT_GT(n_found, 0.92 * n_places);
  EXPECT_LT(n_told, 1.06 * n_places);
  EXPECT_LE(n_better_unseen, 3) << "the search passed over the truth, which costs less than what it told";
}
