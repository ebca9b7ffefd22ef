// The evaluation of contigs against true places.
#include <gtest/gtest.h>

#include <algorithm>
#include <bitset>
#include <cmath>
#include <set>

#include "frame/files.h"
#include "simulation/folder_of_contigs_test.h"
#include "simulation/true_positions.h"
#include "support/evaluation_helpers.h"
#include "support/scripted_frame.h"

using namespace orb;
using namespace orb_test;

TEST(true_positions, of_all_line_ends_with_parts_apart) {
  const temporary_folder folder;
  scripted_frame at;
  placed_clones truth;
  ASSERT_TRUE(read_true_positions(at.frame,
                                  folder.write("truth.tsv", "\xEF\xBB\xBF"
                                                            "clone\tpart\tchromosome\tstart\tend\r\n"
                                                            "A\t1\tchr X\t0\t10\rB\t1\t2\t5\t5\n\r\n"
                                                            " A \t2\t2\t2147483000\t2147483647"),
                                  truth));
  ASSERT_EQ(truth.clones.size(), 2u);
  EXPECT_EQ(truth.chromosomes, (std::vector<std::string>{"chr X", "2"}));
  EXPECT_EQ(truth.clones[0].name, "A");
  ASSERT_EQ(truth.clones[0].n_parts(), 2);
  EXPECT_EQ(truth.clones[0].parts[1].chromosome, 2);
  EXPECT_EQ(truth.clones[0].parts[1].part_end, 2147483647);
  EXPECT_EQ(truth.clones[0].length, 657);
  const true_map map(truth);
  EXPECT_TRUE(map.is_chimeric(map.find("A")));
  EXPECT_FALSE(map.is_placed(map.find("B"))) << "an empty stretch is no place";
  EXPECT_EQ(map.find("C"), -1);
  EXPECT_EQ(map.genome_length(), 10 + 2147483647LL);
}

TEST(true_positions, damage_is_told_with_its_line_and_changes_nothing) {
  const temporary_folder folder;
  const struct {
    const char *text;
    int line;
  } cases[] = {{"", 0},
               {"clone\tpart\tstart\tend\n", 1},
               {"clone\tpart\tchromosome\tstart\tend\textra\n", 1},
               {"clone\tpart\tchromosome\tstart\tend\n", 1},
               {"clone\tpart\tchromosome\tstart\tend\nA\t1\tc\t1\t2\nB\t1\tc\t1\n", 3},
               {"clone\tpart\tchromosome\tstart\tend\nA\t1\tc\t1\t2\t3\n", 2},
               {"clone\tpart\tchromosome\tstart\tend\n\t1\tc\t1\t2\n", 2},
               {"clone\tpart\tchromosome\tstart\tend\nA\t1\t\t1\t2\n", 2},
               {"clone\tpart\tchromosome\tstart\tend\nA\t2\tc\t1\t2\n", 2},
               {"clone\tpart\tchromosome\tstart\tend\nA\t1\tc\t1\t2\nA\t1\tc\t1\t2\n", 3},
               {"clone\tpart\tchromosome\tstart\tend\nA\t0\tc\t1\t2\n", 2},
               {"clone\tpart\tchromosome\tstart\tend\nA\t1\tc\t-1\t2\n", 2},
               {"clone\tpart\tchromosome\tstart\tend\nA\t1\tc\t3\t2\n", 2},
               {"clone\tpart\tchromosome\tstart\tend\nA\t1\tc\t1\t2147483648\n", 2},
               {"clone\tpart\tchromosome\tstart\tend\nA\t1\tc\t1\t1e9\n", 2},
               {"clone\tpart\tchromosome\tstart\tend\nA\t999999999\tc\t1\t2\n", 2}};
  for (const auto &one : cases) {
    scripted_frame at;
    placed_clones truth = truth_of({{"kept", 1, 0, 5}}, 1);
    const auto file = folder.write("truth.tsv", one.text);
    EXPECT_FALSE(read_true_positions(at.frame, file, truth)) << one.text;
    ASSERT_EQ(at.record.messages.size(), 1u) << one.text;
    EXPECT_TRUE(at.record.messages[0].ends_with("\r\nfile " + file.string() + ", line " + std::to_string(one.line)))
        << at.record.messages[0];
    EXPECT_TRUE(at.frame.data_failed());
    EXPECT_EQ(truth.clones.size(), 1u);
  }
  scripted_frame at;
  placed_clones truth;
  EXPECT_THROW(read_true_positions(at.frame, folder.path() / "absent", truth), file_error);
}

// Kendall's tau by its definition, pair by pair.
TEST(order_quality, equals_the_count_of_all_pairs) {
  std::mt19937 chance(7);
  for (int round = 0; round < 300; ++round) {
    std::vector<order_point> points(chance() % 40);
    for (order_point &point : points)
      point = {static_cast<double>(chance() % 20), static_cast<std::int64_t>(chance() % (round % 2 ? 12 : 1000))};
    std::int64_t concordant = 0, discordant = 0, untied_map = 0, untied_truth = 0;
    for (std::size_t i = 0; i < points.size(); ++i)
      for (std::size_t j = 0; j < i; ++j) {
        const double product = (points[i].map - points[j].map) * static_cast<double>(points[i].truth - points[j].truth);
        concordant += product > 0;
        discordant += product < 0;
        untied_map += points[i].map != points[j].map;
        untied_truth += points[i].truth != points[j].truth;
      }
    const rank_pairs counts = rank_pairs_of(points);
    EXPECT_EQ(counts.concordant, concordant);
    EXPECT_EQ(counts.discordant, discordant);
    EXPECT_EQ(counts.untied_map, untied_map);
    EXPECT_EQ(counts.untied_truth, untied_truth);
    const order_quality found = order_quality_of(points);
    std::vector<order_point> turned = points;
    for (order_point &point : turned)
      point.truth = -point.truth;
    const order_quality other = order_quality_of(turned);
    EXPECT_EQ(found.tau(), other.tau()) << "a contig has no orientation";
    if (concordant != discordant) {
      EXPECT_EQ(found.n_out_of_order, other.n_out_of_order);
    }
    if (found.tau()) {
      EXPECT_NEAR(*found.tau(), std::abs(counts.tau()), 1e-12);
    }
  }
}

TEST(order_quality, worked_case) {
  // Truth 1 2 4 3 5 against the map: one pair of ten out of order; a tie on the map is no pair.
  const order_quality found = order_quality_of({{1, 100}, {2, 200}, {3, 400}, {4, 300}, {5, 500}, {5, 450}});
  EXPECT_EQ(found.n_neighbours, 4);
  EXPECT_EQ(found.n_out_of_order, 1);
  EXPECT_EQ(found.shift, 100);
  EXPECT_EQ(found.concordant, 13);
  EXPECT_EQ(found.discordant, 1);
  EXPECT_NEAR(*found.tau(), 12 / std::sqrt(14.0 * 15.0), 1e-12);
  EXPECT_FALSE(order_quality_of({{1, 1}}).tau().has_value());
}

// The fewest by trying all subsets.
TEST(path_quality, cover_equals_the_best_of_all_subsets) {
  std::mt19937 chance(11);
  for (int round = 0; round < 300; ++round) {
    std::vector<true_stretch> all;
    for (std::size_t n = 1 + chance() % 9, i = 0; i < n; ++i) {
      const auto begin = static_cast<true_position>(chance() % 50);
      all.push_back({begin, begin + 1 + static_cast<true_position>(chance() % 25), static_cast<true_clone>(i)});
    }
    std::vector<true_stretch> chosen;
    std::copy_if(all.begin(), all.end(), std::back_inserter(chosen),
                 [&](const true_stretch &) { return chance() % 2; });
    std::vector<true_place> places;
    std::vector<std::int32_t> ignored, place_of;
    places_of_stretches(chosen, places, ignored);
    std::vector<true_place> all_places;
    places_of_stretches(all, all_places, place_of);
    const auto bits_of = [](auto begin, auto end, auto &&takes) {
      std::bitset<80> covered;
      for (auto at = begin; at != end; ++at)
        if (takes(at))
          for (auto base = at->begin; base < at->end; ++base)
            covered.set(static_cast<std::size_t>(base));
      return covered;
    };
    const auto wanted = bits_of(places.begin(), places.end(), [](auto) { return true; });
    int best = 99;
    for (unsigned subset = 0; subset < 1u << all.size(); ++subset) {
      const auto covered = bits_of(all.begin(), all.end(), [&](auto at) { return subset >> (at - all.begin()) & 1; });
      if ((wanted & ~covered).none())
        best = std::min(best, std::popcount(subset));
    }
    EXPECT_EQ(fewest_stretches_covering(all, places), best);
  }
}

// All that a genome of some hundred bases lets one count base by base.
TEST(map_quality, equals_counting_base_by_base) {
  for (unsigned seed = 1; seed <= 200; ++seed) {
    const random_case made = random_run(seed);
    const true_map truth(made.truth);
    const map_quality found = map_quality_of({&made.run, {}, nullptr, 0}, truth);
    std::set<true_position> in_contigs, in_clones;
    for (true_clone clone = 0; clone < truth.n_clones(); ++clone)
      for (const true_stretch &stretch : truth.stretches(clone))
        for (true_position base = stretch.begin; base < stretch.end; ++base)
          in_clones.insert(base);
    std::size_t c = 0, n_wrong = 0, n_false = 0;
    std::set<std::string> in_clusters;
    for (std::size_t cluster = 0; cluster < made.run.clusters.size(); ++cluster) {
      in_clusters.insert(made.run.clones[cluster].begin(), made.run.clones[cluster].end());
      if (!made.run.clusters[cluster].contig)
        continue;
      const contig_quality &contig = found.contigs[c++];
      // Grow places by joining what overlaps until nothing changes.
      std::vector<true_stretch> all;
      for (const std::string &name : made.run.clones[cluster])
        if (const true_clone clone = truth.find(name); clone >= 0)
          all.insert(all.end(), truth.stretches(clone).begin(), truth.stretches(clone).end());
      std::vector<std::size_t> group(all.size());
      for (std::size_t i = 0; i < all.size(); ++i)
        group[i] = i;
      for (bool changed = true; changed;) {
        changed = false;
        for (std::size_t i = 0; i < all.size(); ++i)
          for (std::size_t j = 0; j < all.size(); ++j)
            if (all[i].overlaps(all[j]) && group[i] < group[j]) {
              group[j] = group[i];
              changed = true;
            }
      }
      std::map<std::size_t, std::set<true_clone>> clones_of;
      for (std::size_t i = 0; i < all.size(); ++i)
        clones_of[group[i]].insert(all[i].clone);
      std::size_t most = 0;
      for (const auto &[g, clones] : clones_of)
        most = std::max(most, clones.size());
      EXPECT_EQ(static_cast<std::size_t>(contig.main.n_clones), most) << seed;
      const auto in_main = [&](true_clone clone) {
        for (const true_stretch &stretch : truth.stretches(clone))
          if (stretch.begin >= contig.main.begin && stretch.end <= contig.main.end)
            return true;
        return false;
      };
      std::set<std::size_t> counted;
      for (std::size_t i = 0; i < all.size(); ++i)
        if (!in_main(all[i].clone) || all[i].begin == contig.main.begin)
          counted.insert(group[i]);
      EXPECT_EQ(static_cast<std::size_t>(contig.n_places), counted.size()) << seed;
      for (std::size_t i = 0; i < all.size(); ++i)
        if (counted.contains(group[i]))
          for (true_position base = all[i].begin; base < all[i].end; ++base)
            in_contigs.insert(base);
      std::int32_t wrong = 0;
      for (const std::string &name : made.run.clones[cluster])
        if (const true_clone clone = truth.find(name); clone >= 0 && truth.is_placed(clone))
          wrong += !in_main(clone);
      EXPECT_EQ(contig.n_wrong, wrong) << seed;
      n_wrong += static_cast<std::size_t>(wrong);
      const auto &path = made.run.tiling_path[cluster];
      for (std::size_t i = 1; i < path.size(); ++i) {
        const true_clone a = truth.find(path[i - 1]), b = truth.find(path[i]);
        n_false += a >= 0 && b >= 0 && truth.is_placed(a) && truth.is_placed(b) && !truth.overlap(a, b);
      }
    }
    EXPECT_EQ(static_cast<std::size_t>(found.n_wrong), n_wrong);
    EXPECT_EQ(found.misplaced.size(), n_wrong);
    EXPECT_EQ(found.false_path_steps.size(), n_false) << seed;
    EXPECT_EQ(static_cast<std::size_t>(found.length_in_contigs), in_contigs.size()) << seed;
    EXPECT_EQ(static_cast<std::size_t>(found.length_of_islands), in_clones.size()) << seed;
    EXPECT_EQ(found.n_placed_contigs - found.n_islands_with_contig, static_cast<std::int32_t>(found.breaks.size()));
    std::int32_t alone = 0;
    for (true_clone clone = 0; clone < truth.n_clones(); ++clone)
      alone += truth.is_placed(clone) && !in_clusters.contains(truth.name(clone));
    EXPECT_EQ(found.n_alone, alone);
  }
}

namespace {

// Chromosome 1: island 0-600 with contig cl_1 (A B C D and the chimera X, whose other half lies on chromosome 2) and
// cl_2 (E F G), which overlap by 50; island 700-800 with H alone. Chromosome 2: 0-300, where P and Q, joined to cl_1
// by X, sit wrongly.
struct worked_case {
  placed_clones truth = truth_of({{"A", 1, 0, 100},
                                  {"B", 1, 50, 200},
                                  {"C", 1, 150, 300},
                                  {"D", 1, 90, 180},
                                  {"X", 1, 200, 280},
                                  {"X", 2, 0, 100},
                                  {"E", 1, 250, 400},
                                  {"F", 1, 350, 500},
                                  {"G", 1, 490, 600},
                                  {"H", 1, 700, 800},
                                  {"P", 2, 50, 200},
                                  {"Q", 2, 150, 300}},
                                 2);
  run_folder run;
  std::vector<clone_order> orders{std::vector<std::string>{"C", "B", "A"}, std::nullopt, std::nullopt};
  std::vector<std::string> Q_clones{"X", "H", "other"};
  worked_case() {
    add_cluster(
        run, "cl_1", true,
        {{"A", 1, 20}, {"B", 11, 40}, {"C", 31, 60}, {"D", 51, 70}, {"X", 50, 80}, {"P", 71, 100}, {"Q", 91, 120}},
        {"A", "B", "C", "P", "Q"});
    add_cluster(run, "cl_2", true, {{"E", 1, 30}, {"F", 21, 50}, {"G", 41, 63}, {"new", 50, 60}}, {"E", "F", "G"});
    add_cluster(run, "cl_3", false, {{"H", 0, 0}, {"gone", 0, 0}}, {}, false);
  }
};

} // namespace

TEST(map_quality, worked_case) {
  const worked_case made;
  const true_map truth(made.truth);
  const map_quality found = map_quality_of({&made.run, made.orders, &made.Q_clones, 0}, truth);
  EXPECT_EQ(found.n_clones_true, 11);
  EXPECT_EQ(found.n_clones_in_contigs, 11);
  EXPECT_EQ(found.n_heaps, 1);
  EXPECT_EQ(found.n_clones_in_heaps, 2);
  EXPECT_EQ(found.n_unknown, 2);
  EXPECT_EQ(found.n_alone, 0);
  EXPECT_EQ(found.n_joining, 1);
  EXPECT_EQ(found.n_wrong, 2);
  ASSERT_EQ(found.misplaced.size(), 2u);
  EXPECT_EQ(truth.name(found.misplaced[0].clone), "P");
  EXPECT_EQ(found.misplaced[0].distance, -1) << "another chromosome";
  ASSERT_EQ(found.joining.size(), 1u);
  EXPECT_EQ(truth.name(found.joining[0].clone), "X");
  EXPECT_EQ(found.contigs[0].n_places, 2);
  EXPECT_EQ(found.genome_length, 1100);
  EXPECT_EQ(found.length_in_contigs, 900);
  EXPECT_EQ(found.length_of_clones, 1480);
  EXPECT_EQ(found.n_islands, 3);
  EXPECT_EQ(found.length_of_islands, 1000);
  EXPECT_EQ(found.n_islands_with_contig, 1);
  ASSERT_EQ(found.breaks.size(), 1u);
  EXPECT_EQ(found.breaks[0].gap, -50);
  EXPECT_EQ(found.bands->N50, 120);
  EXPECT_EQ(found.bands->L50, 1);
  EXPECT_EQ(found.base_pairs->N50, 350);
  EXPECT_EQ(found.base_pairs->L50, 1);
  EXPECT_NEAR(found.density->mean, 183 / 0.65, 1e-9);
  EXPECT_NEAR(found.density->most, 120 / 0.3, 1e-9);
  // By coordinates A B C D, of which D truly lies between A and B (of equal middles neither); E F G.
  EXPECT_EQ(found.coordinates->n_clones, 7);
  EXPECT_EQ(found.coordinates->n_out_of_order, 1);
  EXPECT_EQ(found.coordinates->discordant, 1);
  ASSERT_EQ(found.ordering.has_value(), true);
  EXPECT_EQ(found.ordering->n_out_of_order, 0) << "the order may run either way";
  EXPECT_NEAR(*found.ordering->tau(), 1, 1e-12);
  EXPECT_EQ(found.path->n_clones, 8);
  EXPECT_EQ(found.path->n_steps, 6);
  EXPECT_EQ(found.path->n_false_steps, 1);
  ASSERT_EQ(found.false_path_steps.size(), 1u);
  EXPECT_EQ(found.false_path_steps[0].place, 3);
  EXPECT_EQ(found.path->n_fewest, 6);
  EXPECT_EQ(found.path->length_covered, 650);
  EXPECT_EQ(found.Q_clones->n_chimeric_found, 1);
  EXPECT_EQ(found.Q_clones->n_good_lost, 1);
  EXPECT_EQ(found.Q_clones->n_unknown, 1);
  EXPECT_TRUE(found.Q_clones->missed.empty());
  EXPECT_EQ(map_quality_of({&made.run, {}, nullptr, 5000}, truth).genome_length, 5000);
}

TEST(map_quality, a_chimera_within_one_place_folds_it) {
  const placed_clones places = truth_of(
      {{"A", 1, 0, 100}, {"B", 1, 50, 200}, {"X", 1, 150, 190}, {"X", 1, 10, 60}, {"Y", 1, 0, 50}, {"Y", 1, 40, 90}},
      1);
  run_folder run;
  add_cluster(run, "cl_1", true, {{"A", 0, 0}, {"B", 0, 0}, {"X", 0, 0}, {"Y", 0, 0}}, {}, false);
  const true_map truth(places);
  const map_quality found = map_quality_of({&run, {}, nullptr, 0}, truth);
  EXPECT_EQ(found.n_wrong, 0);
  ASSERT_EQ(found.folding.size(), 1u) << "Y's stretches overlap";
  EXPECT_EQ(truth.name(found.folding[0].clone), "X");
  EXPECT_EQ(found.folding[0].distance, 90);
}

TEST(map_quality, what_a_run_lacks_is_not_known) {
  run_folder run;
  add_cluster(run, "cl_1", true, {{"A", 0, 0}, {"B", 0, 0}}, {}, false);
  const placed_clones places = truth_of({{"A", 1, 0, 10}, {"B", 1, 5, 20}}, 1);
  const true_map truth(places);
  const map_quality found = map_quality_of({&run, {}, nullptr, 0}, truth);
  EXPECT_FALSE(found.bands || found.coordinates || found.ordering || found.density || found.path || found.Q_clones);
  EXPECT_EQ(found.base_pairs->N50, 20);
  EXPECT_FALSE(map_quality_of({&run, {}, nullptr, 0}, true_map(truth_of({}, 0))).base_pairs);
}

TEST(evaluation_files, orders_and_Q_clones) {
  const temporary_folder folder;
  const std::string head = "i\tIndex\tCloneName\tnBands\t\r\n";
  run_folder run;
  run.folder = folder.path();
  add_cluster(run, "cl_1", true, {{"A", 0, 0}, {"B", 0, 0}, {"C", 0, 0}}, {}, false);
  std::filesystem::create_directory(folder.path() / "cl_1");
  const auto write = [&](const std::string &text) { folder.write("cl_1/Consec_dist_NoBuriedORB_cl_1.txt", text); };
  std::vector<clone_order> orders;
  scripted_frame at;
  ASSERT_TRUE(read_orders_of_run(at.frame, run, orders));
  EXPECT_FALSE(orders[0].has_value());
  write(head + "1\t7\tC\t5\t\r\n2\t8\tA\t\r\nZones of markers:\t1A\r\n");
  ASSERT_TRUE(read_orders_of_run(at.frame, run, orders));
  EXPECT_EQ(*orders[0], (std::vector<std::string>{"C", "A"}));
  for (const std::string &damaged :
       {std::string(), std::string("x\r\n"), head + "2\t7\tC\r\n", head + "1\t7\r\n", head + "1\t7\tD\r\n",
        head + "1\t7\tC\r\n2\t7\tC\r\n", head + "Zones of markers:\r\n1\t7\tC\r\n"}) {
    write(damaged);
    scripted_frame refusing;
    EXPECT_FALSE(read_orders_of_run(refusing.frame, run, orders)) << damaged;
    ASSERT_EQ(refusing.record.messages.size(), 1u);
    EXPECT_NE(refusing.record.messages[0].find(".txt, line "), std::string::npos);
    EXPECT_EQ(orders[0]->size(), 2u) << "kept";
  }
  std::filesystem::remove(folder.path() / "cl_1/Consec_dist_NoBuriedORB_cl_1.txt");
  folder.write("cl_1/ORB_order_cl_1_Sulston_1988_Cf15.0_p0.90.txt", "B\r\nC\r\n");
  ASSERT_TRUE(read_orders_of_run(at.frame, run, orders));
  EXPECT_EQ(*orders[0], (std::vector<std::string>{"B", "C"}));
  std::vector<std::string> names;
  const auto report =
      folder.write("cutoff15_Q_clones.txt", "k\tclone\tname\tn_bands\r\n1\t4\tA\t50\r\n2\t9\tB\t60\r\n");
  ASSERT_TRUE(read_Q_clones(at.frame, report, names));
  EXPECT_EQ(names, (std::vector<std::string>{"A", "B"}));
  ASSERT_TRUE(read_Q_clones(at.frame, folder.write("list", "C\nA B\n\n"), names));
  EXPECT_EQ(names, (std::vector<std::string>{"C", "A B"}));
  EXPECT_FALSE(read_Q_clones(at.frame, folder.write("bad", "k\tclone\tname\n1\t4\n"), names));
  EXPECT_FALSE(read_Q_clones(at.frame, folder.write("bad", "A\nB\t3\n"), names));
  EXPECT_TRUE(at.record.messages.back().ends_with("bad, line 2"));
  EXPECT_EQ(names.size(), 2u);
  EXPECT_EQ(Q_clone_reports_of_folder(folder.path()), std::vector<std::filesystem::path>{report});
}

TEST(test_folder_of_contigs, report_and_tables) {
  const temporary_folder folder;
  worked_case made;
  scripted_frame at;
  at.frame.working_folder_set(folder.path());
  ASSERT_TRUE(test_folder_of_contigs(at.frame, made.run, made.orders, made.truth, {"C"}));
  const std::string report = file_bytes(folder.path() / "report.txt");
  EXPECT_TRUE(report.starts_with("Results of preprocessing "));
  EXPECT_EQ(report.substr(report.find("\r\n") + 2),
            "f\tctg\tn_clones\tn_Qclones\tn_unburied\tx_start\tx_end\tx_start_noQQ\tx_end_no_QQ\tn_clust\t"
            "n_clust_nonQ\tn>\tn<\r\n"
            "1\tcl_1\t7\t2\t3\t1:0\t2:300\t1:0\t2:300\t2\t2\t2\t1\tNB!\r\n"
            "Unknown clone new in contig cl_2\r\n"
            "2\tcl_2\t4\t0\t-\t1:250\t1:600\t1:250\t1:600\t1\t1\t2\t0\tNB!\r\n");
  EXPECT_EQ(at.record.messages, std::vector<std::string>{"Unknown clone new in contig cl_2"});
  EXPECT_TRUE(std::count(at.record.panels.begin(), at.record.panels.end(), "2: Process <cl_2> (2 of 2)"));
  EXPECT_TRUE(std::count(at.record.panels.begin(), at.record.panels.end(), "2: All 2 completed"));
  EXPECT_EQ(file_bytes(folder.path() / "clones_coor_cl_1.txt"),
            "clone\tcoor_left\tcoor_right\tQ\tparts\tchromosome\tstart\tend\r\nA\t1\t20\t\t1\tchr1\t0\t100\r\n"
            "B\t11\t40\t\t1\tchr1\t50\t200\r\nC\t31\t60\tQ\t1\tchr1\t150\t300\r\nD\t51\t70\t\t1\tchr1\t90\t180\r\n"
            "X\t50\t80\tQ\t2\tchr1\t200\t280\tchr2\t0\t100\r\nP\t71\t100\t\t1\tchr2\t50\t200\r\n"
            "Q\t91\t120\t\t1\tchr2\t150\t300\r\n");
  EXPECT_EQ(file_bytes(folder.path() / "clones_coor_noQQ_cl_1.txt").find("\nX"), std::string::npos);

  scripted_frame stopped;
  const temporary_folder empty;
  stopped.frame.working_folder_set(empty.path());
  stopped.frame.stop_requested_set(true);
  EXPECT_FALSE(test_folder_of_contigs(stopped.frame, made.run, made.orders, made.truth, {}));
  EXPECT_TRUE(std::filesystem::is_empty(empty.path())) << "no half report";
  scripted_frame cancelling;
  EXPECT_FALSE(test_folder_of_contigs(cancelling.frame, {}, made.truth, {}));
  EXPECT_EQ(cancelling.record.questions, std::vector<std::string>{"Click any file from directory"});
}
