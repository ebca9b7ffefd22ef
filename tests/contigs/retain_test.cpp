// Re-analysis with an old tiling path: the path against a plain shortest-path formulation, and the tables.
#include <gtest/gtest.h>

#include <map>

#include "support/contig_test_library.h"

using namespace orb_test;

namespace {

std::vector<std::string> fields_of(const std::string &line) {
  std::vector<std::string> fields{""};
  for (const char c : line) {
    if (c == '\t')
      fields.emplace_back();
    else
      fields.back() += c;
  }
  return fields;
}

// Clones of one preference on the least path between two clones, by relaxing all edges until nothing changes: how many
// clones that aren't preferred lie on it, both ends counted. -1: no path.
int fewest_not_preferred(const contig_session &session, const std::vector<int> &clones,
                         const std::vector<std::int16_t> &index, int start, int end) {
  std::map<int, int> cost{{start, index[std::size_t(start)] == 2 ? 0 : 1}};
  for (bool changed = true; changed;) {
    changed = false;
    for (const auto &[a, c] : std::map<int, int>(cost))
      for (const net_edge &edge : session.signif.net().edges_of_vertex(a)) {
        const int b = edge.neighbour, next = c + (index[std::size_t(b)] == 2 ? 0 : 1);
        if (edge.value < session.rule.cutoff || std::find(clones.begin(), clones.end(), b) == clones.end())
          continue;
        if (!cost.count(b) || cost[b] > next) {
          cost[b] = next;
          changed = true;
        }
      }
  }
  return cost.count(end) ? cost[end] : -1;
}

class_contig_adapt_clust given_clusters_run(contig_session &session) {
  contig_files files;
  files.drawings = files.pair_tables = false;
  class_contig_adapt_clust run(session.signif, session.rule, files);
  run.detail_control_set(false);
  run.print_all_dist_on_set(false);
  run.main_parameters_set(5000, 2, 5000, 0, 0, false, 5, 5);
  run.given_clusters_answers_set(true, false);
  return run;
}

// The library cut into contigs, which stay in the registry.
void make_contigs(contig_session &session) {
  contig_files files;
  files.drawings = files.pair_tables = false;
  class_contig_adapt_clust run(session.signif, session.rule, files);
  run.detail_control_set(false);
  run.main_parameters_set(1200, 3, 1, 2, 3, false, 2, 3);
  run.adaptive_clustering_all_run(session.database);
}

void write_names(const contig_session &session, const char *file, const std::vector<int> &clones) {
  std::ofstream out(session.folder / file);
  for (const int clone : clones)
    out << session.database.name_of_clone_get(clone) << "\n";
}

} // namespace

TEST(retain, path_uses_as_few_clones_that_are_not_sequenced_as_can_be) {
  int n_linked = 0, n_unlinked = 0, n_dropped = 0;
  for (std::uint64_t seed = 1; seed <= 6; ++seed) {
    const library_data data = random_library(seed, 120, 260, 0);
    contig_session session(data, 9);
    make_contigs(session);
    random_source random(seed + 100);
    std::vector<int> old_path, sequenced;
    for (int clone = 1; clone <= data.count(); ++clone) {
      if (random.uniform() < (seed % 2 ? 0.6 : 0.25))
        old_path.push_back(clone);
      if (random.uniform() < 0.2)
        sequenced.push_back(clone);
    }
    write_names(session, "old.txt", old_path);
    write_names(session, "done.txt", sequenced);
    class_contig_adapt_clust run = given_clusters_run(session);
    retained_path_options wanted;
    wanted.old_MTP = session.folder / "old.txt";
    wanted.sequenced = session.folder / "done.txt";
    wanted.clusters = retained_clusters::all_in_use;
    std::vector<std::int16_t> index;
    number_list is_sequenced, allowed;
    ASSERT_TRUE(
        run.find_MTP_maximally_using_clones_from_list_make_index_inMTPpreference(wanted, index, is_sequenced, allowed));
    for (int clone = 1; clone <= data.count(); ++clone)
      EXPECT_EQ(index[std::size_t(clone)], std::count(sequenced.begin(), sequenced.end(), clone) ? 2
                                           : std::count(old_path.begin(), old_path.end(), clone) ? 1
                                                                                                 : 0);
    for (const cluster_id id : session.database.contigs()->current_list_of_clusters_in_use_get().members()) {
      number_list list, MTP, not_used;
      session.database.contigs()->list_of_clones_get(id, list);
      class_contig_analysis contig(session.signif, session.rule);
      contig.list_of_clones_set(list, list.count());
      contig.contig_topology_analyse_and_MTP_and_ordering_without_TSP();
      if (!contig.clone_coor_known_get())
        continue;
      bool unlinked = false;
      run.find_MTP_maximally_using_clones_from_list(contig, index, MTP, not_used, nullptr, unlinked);
      std::vector<int> usable;
      for (const int clone : list.members())
        if (index[std::size_t(clone)] > 0)
          usable.push_back(clone);
      ASSERT_EQ(MTP.count() + not_used.count(), int(usable.size()));
      if (usable.empty() || unlinked) {
        EXPECT_TRUE(unlinked);
        EXPECT_TRUE(std::equal(usable.begin(), usable.end(), MTP.members().begin(), MTP.members().end()));
        n_unlinked += !usable.empty();
        continue;
      }
      int not_preferred = 0;
      for (int k = 1; k <= MTP.count(); ++k) {
        not_preferred += index[std::size_t(MTP(k))] == 2 ? 0 : 1;
        if (k > 1) {
          EXPECT_GE(common_bands(data, MTP(k - 1), MTP(k)), 9);
        }
      }
      EXPECT_EQ(not_preferred, fewest_not_preferred(session, usable, index, MTP(1), MTP(MTP.count())));
      // The ends are the outermost clones, or sequenced ones next to them.
      for (const int end : {MTP(1), MTP(MTP.count())}) {
        bool outermost = true;
        for (const int clone : usable)
          outermost =
              outermost && (end == MTP(1) ? contig.clone_coor_left_get(clone) >= contig.clone_coor_left_get(end)
                                          : contig.clone_coor_right_get(clone) <= contig.clone_coor_right_get(end));
        EXPECT_TRUE(outermost || index[std::size_t(end)] == 2);
      }
      ++n_linked;
      n_dropped += not_used.count();
    }
  }
  EXPECT_GT(n_linked, 10);
  EXPECT_GT(n_unlinked, 2);
  EXPECT_GT(n_dropped, 20);
}

// A chain of five clones in which only neighbours overlap, by 12 bands; N lies one band further than A3, so that
// either of them joins A2 and A4. And a cluster without old clones.
static library_data two_chains() {
  library_data data;
  const auto add = [&data](const std::string &name, int start) {
    std::vector<std::int32_t> bands;
    for (int i = 0; i < 20; ++i)
      bands.push_back(100 * (start + i));
    data.add(name, bands);
  };
  for (int k = 1; k <= 5; ++k)
    add("A" + std::to_string(k), 8 * k);
  add("N", 25);
  for (int k = 1; k <= 5; ++k)
    add("B" + std::to_string(k), 500 + 8 * k);
  return data;
}

TEST(retain, tables_of_a_worked_case) {
  contig_session session(two_chains(), 8);
  make_contigs(session);
  session.record.questions.clear();
  write_names(session, "old.txt", {1, 2, 3, 4, 5});
  write_names(session, "done.txt", {6});
  class_contig_adapt_clust run = given_clusters_run(session);
  retained_path_options wanted;
  wanted.old_MTP = session.folder / "old.txt";
  wanted.sequenced = session.folder / "done.txt"; // and which contigs: asked, the default is 1
  ASSERT_TRUE(run.process_clusters_without_adaptive_clustering_Retain_run(wanted));
  EXPECT_TRUE(run.result().completed);
  EXPECT_EQ(session.record.questions.front(),
            "What contigs to process?\r0 - All clusters in use\r1 - Only with allowed to use (old MTP) clones\r"
            "2 - Only with prefered to use (sequenced) clones");
  ASSERT_EQ(lines_of_file(session.folder / "selected_contigs.txt").size(), 1u) << "the other chain has no old clone";
  const std::string name = lines_of_file(session.folder / "selected_contigs.txt")[0], start = "1\t" + name + "\t";
  // Through the sequenced N in place of A3. The axis runs from A5 to A1.
  EXPECT_EQ(lines_of_file(run.result().folder / "list_of_clones_MTP_new.tsv"),
            (lines{start + "5\t1", start + "1\t5\tA5\told_MTP\t1\t20\t20\t-\t-",
                   start + "2\t4\tA4\told_MTP\t9\t28\t20\t20\t12", start + "3\t6\tN\tsequenced\t18\t37\t20\t20\t13",
                   start + "4\t2\tA2\told_MTP\t25\t44\t20\t20\t11", start + "5\t1\tA1\told_MTP\t33\t52\t20\t20\t12"}));
  EXPECT_EQ(lines_of_file(run.result().folder / "list_of_clones_from_allow_to_use_not_used.tsv"),
            (lines{start + "5\t1", start + "1\t3\tA3\told_MTP\t17\t36"}));
  const std::string of_contig = "\t6\t5";
  EXPECT_EQ(
      lines_of_file(run.result().folder / "table_for_Review.txt"),
      (lines{"BAC_ID\tCTG_ID\tSTART\tSTOP\tCTG SIZE\tBAC_#\tMTP_BAC_#\tcomment1\tcomment2",
             "A5\t" + name + "\t1\t20" + of_contig + "\tnew", "A4\t" + name + "\t9\t28" + of_contig + "\tnew\tinternal",
             "N\t" + name + "\t18\t37" + of_contig, "A2\t" + name + "\t25\t44" + of_contig + "\tnew\tinternal",
             "A1\t" + name + "\t33\t52" + of_contig + "\tnew"}));
  const lines pairs = lines_of_file(run.result().folder / "old_MTP_all_overlaps_from_net.tsv");
  ASSERT_EQ(pairs.size(), 14u); // 7 pairs, both ways round
  const std::string of_A2 = "2\t" + name + "\t\t6\t8.00\t", block = "\t2\tA2\t\tMTP\t20\t25\t44\t";
  EXPECT_EQ(pairs[2], of_A2 + "3" + block + "3\tA3\t\t\t20\t17\t36\t12\t12.00\tSignif");
  EXPECT_EQ(pairs[3], of_A2 + "4" + block + "6\tN\tsequenced\tMTP\t20\t18\t37\t11\t11.00\tSignif");
  EXPECT_EQ(fields_of(pairs.back())[5], "14");
  EXPECT_TRUE(std::filesystem::exists(session.run() / "report_contigs.txt"));
}

// At whichever moment it is stopped, the pairs are those of the contigs in the other tables, whole.
TEST(retain, stopped_it_keeps_whole_contigs_in_each_table) {
  contig_session session(two_chains(), 8);
  make_contigs(session);
  write_names(session, "old.txt", {1, 2, 3, 4, 5, 7, 8, 9, 10, 11});
  const auto contigs_of = [](const lines &rows, std::size_t column) {
    std::map<std::string, int> count;
    for (const std::string &row : rows)
      ++count[fields_of(row)[column]];
    return count;
  };
  std::map<std::string, int> pairs_of; // of an undisturbed run, which comes last
  std::vector<std::pair<std::map<std::string, int>, std::map<std::string, int>>> stopped;
  for (int stop_at = 1; pairs_of.empty(); ++stop_at) {
    class_contig_adapt_clust run = given_clusters_run(session);
    retained_path_options wanted;
    wanted.old_MTP = session.folder / "old.txt";
    wanted.no_sequenced = true;
    wanted.clusters = retained_clusters::all_in_use;
    int yields = 0;
    session.on_yield = [&] { return ++yields == stop_at; };
    run.process_clusters_without_adaptive_clustering_Retain_run(wanted);
    session.on_yield = {};
    const auto paths = contigs_of(lines_of_file(run.result().folder / "list_of_clones_MTP_new.tsv"), 1);
    const auto pairs = contigs_of(lines_of_file(run.result().folder / "old_MTP_all_overlaps_from_net.tsv"), 1);
    if (run.result().completed)
      pairs_of = pairs;
    else
      stopped.emplace_back(paths, pairs);
  }
  EXPECT_EQ(pairs_of.size(), 2u);
  for (const auto &[paths, pairs] : stopped) {
    EXPECT_EQ(paths.size(), pairs.size());
    for (const auto &[name, n] : pairs)
      EXPECT_EQ(n, pairs_of.at(name)) << name;
  }
}

TEST(retain, old_clones_in_two_parts_stay_and_a_missing_list_changes_nothing) {
  contig_session session(two_chains(), 8);
  make_contigs(session);
  write_names(session, "old.txt", {1, 2, 5}); // A2 and A5 don't overlap
  class_contig_adapt_clust run = given_clusters_run(session);
  retained_path_options wanted;
  wanted.old_MTP = session.folder / "old.txt";
  wanted.no_sequenced = true;
  wanted.clusters = retained_clusters::with_allowed;
  ASSERT_TRUE(run.process_clusters_without_adaptive_clustering_Retain_run(wanted));
  const lines path = lines_of_file(run.result().folder / "list_of_clones_MTP_new.tsv");
  ASSERT_EQ(path.size(), 4u);
  for (std::size_t i = 1; i < path.size(); ++i)
    EXPECT_TRUE(path[i].ends_with("\told_MTP\t" + fields_of(path[i])[6] + "\t" + fields_of(path[i])[7] +
                                  "\t20\t-\t-\told MTP is unlinked"))
        << path[i];
  EXPECT_TRUE(lines_of_file(run.result().folder / "old_MTP_all_overlaps_from_net.tsv")
                  .at(0)
                  .ends_with("\tSignif\told MTP from ctg is Unlinked"));
  wanted.old_MTP.clear(); // the dialog is cancelled
  EXPECT_FALSE(run.process_clusters_without_adaptive_clustering_Retain_run(wanted));
  EXPECT_EQ(session.record.questions.back(), "Open file with old MTP");
}

TEST(retain, a_clone_that_no_contig_knows_is_kept_alone) {
  contig_session session(two_chains(), 8);
  auto registry = std::make_shared<class_FPCto_import>(session.frame, session.settings, session.database);
  registry->clear_all_run(0, false);
  registry->add_new_cluster({1, 2}, "pair", "", false);
  session.database.contigs_set(registry);
  write_names(session, "old.txt", {1});
  write_names(session, "done.txt", {9});
  class_contig_adapt_clust run = given_clusters_run(session);
  retained_path_options wanted;
  wanted.old_MTP = session.folder / "old.txt";
  wanted.sequenced = session.folder / "done.txt";
  wanted.clusters = retained_clusters::with_allowed;
  ASSERT_TRUE(run.process_clusters_without_adaptive_clustering_Retain_run(wanted));
  const lines path = lines_of_file(run.result().folder / "list_of_clones_MTP_new.tsv");
  ASSERT_EQ(path.size(), 4u);
  EXPECT_EQ(path[2], "2\tctg_B3\t1\t0");
  EXPECT_EQ(path[3], "2\tctg_B3\t1\t9\tB3\tsequenced\t1\t20\t20\t-\t-");
}
