#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "support/slow_assembly.h"

using namespace orb_test;

namespace {

const std::string header =
    "i\tcluster\tn_clones\tcontig\tcutoff\tdiam\twidth\tn_gaps\tn_rank_MTP>1\tUser_remark\tfull_name";
const std::string details_header = "cluster_name\tn_clones\tn_clones_MTP\tcluster_path\ti\tclone\tclone_name\tn_bands\t"
                                   "n_common\tcoor_left\tcoor_right\tn_common_coor";

// n clones of `length` bands, each a step further on an axis with a band every 100 units.
void add_chain(library_data &data, int origin, int n, int length = 20, int step = 5) {
  for (int k = 0; k < n; ++k) {
    std::vector<std::int32_t> bands;
    for (int i = 0; i < length; ++i)
      bands.push_back(100 * (origin + k * step + i));
    data.add("K" + std::to_string(origin) + "_" + std::to_string(k + 1), bands);
  }
}

lines with_header(const std::string &first, const lines &rest) {
  lines all{first};
  all.insert(all.end(), rest.begin(), rest.end());
  return all;
}

std::map<std::string, lines> files_of_contigs(const std::filesystem::path &run) {
  std::map<std::string, lines> found;
  for (const auto &entry : std::filesystem::recursive_directory_iterator(run)) {
    const std::string name = std::filesystem::relative(entry.path(), run).generic_string();
    if (entry.is_regular_file() && name.find('/') != std::string::npos)
      found[name] = lines_of_file(entry.path());
  }
  return found;
}

// Without drawings and the order of the clones unless asked: its rows would count gaps.
class_contig_adapt_clust make_run(contig_session &session, const slow_parameters &p, bool with_order = false) {
  contig_files files;
  files.drawings = with_order;
  class_contig_adapt_clust run(session.signif, session.rule, files);
  run.detail_control_set(with_order);
  run.print_all_dist_on_set(with_order);
  run.main_parameters_set(p.n_clones_max, p.minimal_cluster_size, p.width_max, p.step, p.n_steps, false, 2, 3);
  return run;
}

} // namespace

struct random_case {
  std::uint64_t seed;
  int n_clones, n_axis;
  double chimeras, cutoff;
  slow_parameters parameters;
  bool fast = true;
};

TEST(adaptive_clustering, gives_the_files_of_the_slow_formulation) {
  const random_case cases[] = {
      {3, 100, 700, 0.2, 7, {40, 6, 1, 1.5, 4}}, {1, 100, 700, 0.2, 7, {40, 6, 1, 1.5, 4}, false},
      {5, 100, 700, 0.2, 7, {1200, 6, 1, 3, 6}}, {4, 100, 700, 0.2, 7, {40, 2, 1, 2, 2}},
      {2, 100, 700, 0.2, 7, {1200, 4, 0, 1, 3}}, {9, 80, 150, 0.3, 7, {20, 3, 2, 1, 5}},
      {6, 100, 700, 0.2, 7, {25, 6, 0, 2, 0}},
  };
  for (const random_case &given : cases) {
    SCOPED_TRACE("seed " + std::to_string(given.seed));
    const library_data data = random_library(given.seed, given.n_clones, given.n_axis, given.chimeras);
    contig_session session(data, given.cutoff);
    session.settings.fast_clustering = given.fast;
    slow_assembly slow(data, given.cutoff, given.parameters);
    slow.run();
    class_contig_adapt_clust run = make_run(session, given.parameters);
    run.adaptive_clustering_all_run(session.database);
    const std::filesystem::path folder = session.run();
    EXPECT_EQ(lines_of_file(folder / "report_clusters.txt"), with_header(header, slow.clusters));
    EXPECT_EQ(lines_of_file(folder / "report_contigs.txt"), with_header(header, slow.contigs));
    EXPECT_EQ(lines_of_file(folder / "clones_in_MTP_details.txt"), with_header(details_header, slow.details));
    EXPECT_EQ(lines_of_file(folder / "clones_in_MTP.txt"), slow.MTP);
    EXPECT_EQ(lines_of_file(folder / "clones_in_MTP_and_bridges.txt"), slow.bridges);
    auto files = files_of_contigs(folder);
    std::erase_if(files, [](const auto &file) { // tables, which have tests of their own
      return file.first.find("Consec_dist") != std::string::npos || file.first.find("markers") != std::string::npos;
    });
    EXPECT_TRUE(files == slow.files);
    EXPECT_EQ(run.result().n_clones_alone, slow.n_clones_alone);
    EXPECT_TRUE(run.result().completed);
    EXPECT_GT(slow.clusters.size(), 2u); // the case has something to say
  }
}

TEST(adaptive_clustering, leaves_the_reports_of_a_run) {
  library_data data;
  add_chain(data, 1, 8);
  contig_session session(data, 8);
  class_contig_adapt_clust run = make_run(session, {});
  run.adaptive_clustering_all_run(session.database);
  const std::filesystem::path folder = session.run();
  EXPECT_EQ(run.result().folder, folder);
  for (const char *name :
       {"FPC_like.fpc", "FPC_like_pp.fpc", "contig_statistics_1200.txt", "coordinates_of_clones.txt"})
    EXPECT_TRUE(std::filesystem::is_regular_file(folder / name)) << name;
  EXPECT_EQ(lines_of_file(folder / "report_contigs.txt")[1], "1\tcl_1\t8\tTrue\t8.00\t5\t1\t0\t0\t\tall");
  EXPECT_EQ(lines_of_file(folder / "cl_1" / "coor_cl_1.txt")[8],
            "K1_8\t1\t20"); // the end farthest from the first clone
  ASSERT_EQ(run.result().clusters.size(), 1u);
  EXPECT_EQ(run.result().clusters[0].length_bands, 55);
  EXPECT_TRUE(run.result().clusters[0].is_contig);
  EXPECT_EQ(session.record.messages.front(), "Adaptive clustering is completed");
  EXPECT_EQ(session.record.log[0], "Adaptive clustering");
  EXPECT_EQ(session.record.log[1], "Contigs folder created: " + folder.filename().string());
  EXPECT_EQ(session.frame.working_folder_get(), session.folder);
  // The second run of the same second gets a folder of its own.
  std::filesystem::create_directory(session.folder / "other");
  run.adaptive_clustering_all_run(session.database);
  run.adaptive_clustering_all_run(session.database);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(session.folder), {}), 4);
}

struct edge_case {
  const char *what;
  slow_parameters parameters;
  std::vector<int> chains; // numbers of clones
  lines clusters;          // rows without the header
  std::size_t n_contigs;
  int n_alone;
};

TEST(adaptive_clustering, edge_cases) {
  const edge_case cases[] = {
      {"a library of one clone", {}, {1}, {}, 0, 1},
      {"all alone", {}, {1, 1, 1}, {"1\tcl_1\t3\tFalse\t8.00\t\t\t\t\tNot connected\tall"}, 0, 3},
      {"a heap", {}, {5}, {"1\tcl_1\t5\tFalse\t8.00\t3\t1\t0\t0\t\tall"}, 0, 0},
      {"too large at the top", {4, 2, 1, 3, 0}, {6}, {"1\tcl_1\t6\tTrue\t8.00\t\t\t\t\tToo large\tall"}, 1, 0},
      {"too large below the top, then apart",
       {4, 2, 1, 12, 1},
       {6},
       {"1\tcl_1\t6\tFalse\t8.00\t\t\t\t\tToo large\tall",
        "2\tcl_2\t6\tFalse\t20.00\t\t\t\t\tNot connected\tall_pr20.00"},
       0,
       6},
      {"too wide without a ladder: cut once more at the same cutoff, then kept",
       {100, 2, -1, 3, 0},
       {6},
       {"1\tcl_1\t6\tFalse\t8.00\t4\t1\t0\t0\t\tall",
        "2\tcl_2\t6\tTrue\t8.00\t4\t1\t0\t0\tWide: may join apart places\tall_pr8.00"},
       1,
       0},
      {"parts of equal size",
       {},
       {6, 6},
       {"1\tcl_1\t12\tFalse\t8.00\t\t\t\t\tNot connected\tall", "2\tcl_2\t6\tTrue\t8.00\t4\t1\t0\t0\t\tall_cl8.00_6_2",
        "3\tcl_3\t6\tTrue\t8.00\t4\t1\t0\t0\t\tall_cl8.00_6_2"},
       2,
       0},
  };
  for (const edge_case &given : cases) {
    SCOPED_TRACE(given.what);
    library_data data;
    int origin = 1;
    for (const int n : given.chains) {
      add_chain(data, origin, n);
      origin += 200;
    }
    contig_session session(data, 8);
    class_contig_adapt_clust run = make_run(session, given.parameters);
    run.adaptive_clustering_all_run(session.database);
    EXPECT_EQ(lines_of_file(session.run() / "report_clusters.txt"), with_header(header, given.clusters));
    EXPECT_EQ(lines_of_file(session.run() / "report_contigs.txt").size(), given.n_contigs + 1);
    EXPECT_EQ(run.result().n_clones_alone, given.n_alone);
    EXPECT_EQ(std::filesystem::is_regular_file(session.run() / "Heaps" / "cl_1.txt"),
              data.count() > 1 && data.count() < given.parameters.minimal_cluster_size);
  }
}

TEST(adaptive_clustering, stopped_run_keeps_what_was_finished) {
  library_data data;
  for (int k = 0; k < 6; ++k)
    add_chain(data, 1 + 200 * k, 7);
  slow_assembly slow(data, 8, {});
  slow.run();
  for (const std::size_t n_processed : {1u, 4u, 7u}) { // clusters done when the stop comes; 7: all
    contig_session session(data, 8);
    session.on_yield = [&session, n_processed] {
      const std::string done = "4: " + std::to_string(n_processed);
      const auto &panels = session.record.panels;
      return std::find(panels.begin(), panels.end(), done) != panels.end();
    };
    class_contig_adapt_clust run = make_run(session, {});
    run.adaptive_clustering_all_run(session.database);
    EXPECT_FALSE(run.result().completed);
    EXPECT_TRUE(session.frame.was_stopped());
    EXPECT_FALSE(session.frame.process_is_running());
    EXPECT_EQ(session.record.log.back(), "Adaptive clustering has aborted.");
    EXPECT_FALSE(std::filesystem::exists(session.run() / "FPC_like.fpc"));
    const lines rows(slow.clusters.begin(), slow.clusters.begin() + static_cast<std::ptrdiff_t>(n_processed));
    EXPECT_EQ(lines_of_file(session.run() / "report_clusters.txt"), with_header(header, rows));
    run_folder finished;
    ASSERT_TRUE(read_run_folder(session.frame, session.run(), finished));
    EXPECT_EQ(finished.clusters.size(), n_processed - 1);
    for (std::size_t c = 0; c + 1 < n_processed; ++c)
      EXPECT_EQ(finished.coordinates[c].size(), 7u);
  }
}

// A contig is in the reports as soon as it has its order: a stop among the orders loses the unfinished ones only.
TEST(adaptive_clustering, a_stop_among_the_orders_keeps_the_finished_contigs) {
  library_data data;
  for (int k = 0; k < 6; ++k)
    add_chain(data, 1 + 300 * k, 12);
  contig_session whole(data, 8);
  make_run(whole, {}, true).adaptive_clustering_all_run(whole.database);
  const lines all = lines_of_file(whole.run() / "report_contigs.txt");
  ASSERT_EQ(all.size(), 7u);
  contig_session session(data, 8);
  bool stop = false;
  session.on_panel = [&stop](const std::string &text) { stop = stop || text.starts_with("Orders "); };
  session.on_yield = [&stop] { return stop; };
  class_contig_adapt_clust run = make_run(session, {}, true);
  run.adaptive_clustering_all_run(session.database);
  EXPECT_TRUE(session.frame.was_stopped());
  const lines kept = lines_of_file(session.run() / "report_contigs.txt");
  EXPECT_GE(kept.size(), 2u) << "a header and what was finished";
  EXPECT_TRUE(std::includes(all.begin() + 1, all.end(), kept.begin() + 1, kept.end(),
                            [&all](const std::string &a, const std::string &b) { // by their places in the whole report
                              return std::find(all.begin(), all.end(), a) < std::find(all.begin(), all.end(), b);
                            }));
}

// Contigs and heaps that touch nothing, chains too wide for one level, and a contig long enough for windows.
library_data mixed_library() {
  library_data data;
  for (int k = 0; k < 5; ++k)
    add_chain(data, 1 + 400 * k, 12);
  add_chain(data, 2501, 4);
  for (int twist = 0; twist < 3; ++twist)
    add_chain(data, 3001 + 7 * twist, 9, 20, 4 + twist);
  add_chain(data, 5001, 520, 40, 5);
  return data;
}

std::map<std::string, std::string> bytes_of_files(const std::filesystem::path &run) {
  std::map<std::string, std::string> found;
  for (const auto &entry : std::filesystem::recursive_directory_iterator(run))
    if (entry.is_regular_file())
      found[std::filesystem::relative(entry.path(), run).string()] = orb::file_bytes(entry.path());
  return found;
}

std::map<std::string, std::filesystem::file_time_type> times_of_orders(const std::filesystem::path &run) {
  std::map<std::string, std::filesystem::file_time_type> found;
  for (const auto &entry : std::filesystem::recursive_directory_iterator(run))
    if (entry.path().filename().string().starts_with("ORB_order_"))
      found[entry.path().filename()] = entry.last_write_time();
  return found;
}

// Whatever a run was doing when it was stopped, the one that goes on in its folder leaves what an undisturbed one does,
// takes each order that is there, and loses no row meanwhile.
TEST(adaptive_clustering, a_stopped_run_is_gone_on_with) {
  const pinned_clock clock(1700000000);
  const library_data data = mixed_library();
  slow_parameters parameters;
  parameters.n_clones_max = 1000;
  contig_session whole(data, 8);
  class_contig_adapt_clust undisturbed = make_run(whole, parameters, true);
  undisturbed.adaptive_clustering_all_run(whole.database);
  ASSERT_TRUE(undisturbed.result().completed);
  ASSERT_GE(undisturbed.result().windows.n_contigs, 1);
  const auto wanted = bytes_of_files(whole.run());
  bool came_to_its_end = false;
  for (int n_yields = 2; !came_to_its_end; n_yields = n_yields * 5 / 3 + 1) {
    contig_session session(data, 8);
    int yields = 0;
    session.on_yield = [&] { return ++yields > n_yields; };
    make_run(session, parameters, true).adaptive_clustering_all_run(session.database);
    const std::filesystem::path folder = session.run();
    came_to_its_end = !session.frame.was_stopped();
    if (came_to_its_end)
      for (const auto &entry : std::filesystem::directory_iterator(folder / "cl_2"))
        if (entry.path().filename().string().starts_with("ORB_order_"))
          std::filesystem::remove(entry.path()); // as if killed before it
    const auto rows = [&folder] { return lines_of_file(folder / "report_clusters.txt"); };
    const lines former = rows();
    std::size_t least_rows = former.size();
    const auto orders = times_of_orders(folder);
    contig_session later(data, 8); // as if in another process
    later.on_panel = [&](const std::string &) { least_rows = std::min(least_rows, rows().size()); };
    class_contig_adapt_clust run = make_run(later, parameters, true);
    run.folder_to_continue_set(folder);
    run.adaptive_clustering_all_run(later.database);
    ASSERT_TRUE(run.result().completed) << n_yields;
    // Where a contig was finished before one that stands ahead of it, the rows behind are written anew.
    const lines all = rows();
    if (former.size() <= all.size() && std::equal(former.begin(), former.end(), all.begin())) {
      EXPECT_EQ(least_rows, former.size()) << n_yields;
    }
    const auto orders_now = times_of_orders(folder);
    for (const auto &[name, time] : orders)
      EXPECT_TRUE(orders_now.at(name) == time) << name << " was searched again";
    EXPECT_EQ(run.result().windows.n_joins, undisturbed.result().windows.n_joins);
    EXPECT_EQ(run.result().windows.n_weak_joins, undisturbed.result().windows.n_weak_joins);
    const auto found = bytes_of_files(folder);
    EXPECT_EQ(found.size(), wanted.size());
    for (const auto &[name, bytes] : wanted)
      EXPECT_TRUE(found.contains(name) && found.at(name) == bytes) << name << " after " << n_yields;
  }
}

TEST(adaptive_clustering, a_failing_file_leaves_cutoff_and_process_in_order) {
  library_data data;
  add_chain(data, 1, 8);
  contig_session session(data, 8);
  // The folder of the run is taken away before the first cluster is written.
  session.on_panel = [&session](const std::string &text) {
    if (text.starts_with("Process 1 of")) {
      const std::filesystem::path run = session.run();
      std::filesystem::remove_all(run);
      std::ofstream(run) << "a file in its place";
    }
  };
  class_contig_adapt_clust run = make_run(session, {});
  EXPECT_THROW(run.adaptive_clustering_all_run(session.database), file_error);
  EXPECT_FALSE(session.frame.process_is_running());
  EXPECT_EQ(session.frame.working_folder_get(), session.folder);
}

// Which files a cluster of each size gets, with and without tables and order, and the gaps in the reports.
TEST(adaptive_clustering, every_file_of_a_cluster) {
  library_data data;
  add_chain(data, 1, 2);
  add_chain(data, 201, 7);
  for (const bool all : {true, false}) {
    contig_session session(data, 8);
    class_contig_adapt_clust run = make_run(session, {}, all);
    run.adaptive_clustering_all_run(session.database);
    const std::filesystem::path folder = session.run();
    std::set<std::string> names;
    for (const auto &[name, text] : files_of_contigs(folder))
      names.insert(name);
    const std::string tail = "cl_3_Sulston_1988_Cf8.0_p0.90.txt";
    std::set<std::string> expected{"Heaps/cl_2.txt",
                                   "Heaps/clones_and_markers_cl_2.txt",
                                   "Heaps/clones_MTP_coor_and_markers_cl_2.txt",
                                   "cl_1/cl_1.txt",
                                   "cl_1/clones_and_markers_cl_1.txt",
                                   "cl_3/cl_3.txt",
                                   "cl_3/clones_and_markers_cl_3.txt",
                                   "cl_3/clones_MTP_coor_and_markers_cl_3.txt",
                                   "cl_3/Consec_dist_MTP_cl_3.txt",
                                   "cl_3/Consec_dist_cl_3.txt",
                                   "cl_3/MTP_cl_3.txt",
                                   "cl_3/coor_cl_3.txt"};
    if (all)
      for (const std::string &name :
           {std::string("Heaps/All_dist_cl_2.txt"), std::string("cl_1/All_dist_cl_1.txt"),
            std::string("cl_3/All_dist_cl_3.txt"), "cl_3/ORB_order_" + tail, "cl_3/order_control_" + tail,
            std::string("cl_3/Input.dis"), std::string("cl_3/Input0.dis"),
            std::string("cl_3/Net_control_MTP_cl_3_Sulston_1988_8.net"),
            std::string("cl_3/Net_control_MTP_cl_3_cutoff8.00_Sulston_1988_8.net"),
            std::string("cl_3/Consec_dist_NoBuriedInit_cl_3.txt"),
            std::string("cl_3/Consec_dist_NoBuriedORB_cl_3.txt")})
        expected.insert(name);
    EXPECT_EQ(names, expected);
    // Of the whole run alone, not of the orders and tables in it: clones in final clusters.
    EXPECT_EQ(session.progress, (std::vector<std::pair<std::int64_t, std::int64_t>>{{2, 9}, {9, 9}}));
    if (!all)
      continue;
    // A chain is ordered along its axis; its far ends don't overlap with their neighbours' neighbours.
    lines order = lines_of_file(folder / "cl_3" / ("ORB_order_" + tail));
    if (order.front() > order.back())
      std::reverse(order.begin(), order.end());
    EXPECT_EQ(order, (lines{"K201_1", "K201_2", "K201_3", "K201_4", "K201_5", "K201_6", "K201_7"}));
    const lines table = lines_of_file(folder / "cl_3" / "All_dist_cl_3.txt");
    EXPECT_EQ(table.size(), 1u + 7 * 6 / 2);
    const lines coordinates = lines_of_file(folder / "cl_3" / "clones_MTP_coor_and_markers_cl_3.txt");
    EXPECT_EQ(coordinates[0], "Zones of markers:");
    EXPECT_EQ(coordinates[1], "i\tclone\tMTP\tcoor_left\tcoor_right");
    EXPECT_EQ(coordinates[2].substr(0, 9), "1\tK201_1\t");
    EXPECT_EQ(coordinates.size(), 9u);
  }
}

TEST(adaptive_clustering, heaps_have_their_distances_apart) {
  library_data data;
  add_chain(data, 1, 3);
  add_chain(data, 201, 4);
  contig_session session(data, 8);
  class_contig_adapt_clust run = make_run(session, {1200, 6, 1, 3, 2}, true);
  run.adaptive_clustering_all_run(session.database);
  const std::filesystem::path heaps = session.run() / "Heaps";
  for (const char *name : {"Input", "Input0"}) {
    EXPECT_TRUE(lines_of_file(heaps / (std::string(name) + "_cl_2.dis")).at(0).starts_with("3,"));
    EXPECT_TRUE(lines_of_file(heaps / (std::string(name) + "_cl_3.dis")).at(0).starts_with("4,"));
  }
  EXPECT_FALSE(std::filesystem::exists(heaps / "Input.dis"));
}

TEST(given_clusters, are_tested_without_cutting) {
  library_data data;
  add_chain(data, 1, 6);
  add_chain(data, 201, 3);
  for (const bool largest : {false, true}) {
    contig_session session(data, 8);
    class_contig_adapt_clust run = make_run(session, {5000, 2, 5000, 0, 0});
    auto registry = std::make_shared<class_FPCto_import>(session.frame, session.settings, session.database);
    registry->clear_all_and_create_cluster_AllDB(1, "a/b", "whole");
    session.database.contigs_set(registry);
    if (largest)
      session.book.add({"Use maximal connected subcluster?", "yes"});
    run.process_clusters_without_adaptive_clustering_all_run();
    EXPECT_EQ(session.record.questions[0], "Use maximal connected subcluster?");
    EXPECT_EQ(session.record.questions[1], "Increase cutoff to make cluster linear (for MTP selection)?");
    EXPECT_EQ(session.record.messages.front(), "Test of clusters is completed");
    EXPECT_EQ(session.frame.working_folder_get(), session.folder);
    const lines rows = lines_of_file(session.run() / "report_clusters.txt");
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[1], largest ? "1\ta/b\t6\tTrue\t8.00\t4\t1\t0\t0\t\t_only_6_of_9_not_all_linked"
                               : "1\ta/b\t9\tFalse\t8.00\t\t\t\t\tNot connected\t");
    const std::filesystem::path lost = session.run() / "non_in_a_b.txt";
    ASSERT_EQ(std::filesystem::exists(lost), largest);
    if (largest) {
      EXPECT_EQ(lines_of_file(lost), (lines{"K201_1", "K201_2", "K201_3"}));
    }
    run_folder read;
    ASSERT_TRUE(read_run_folder(session.frame, session.run(), read));
    ASSERT_EQ(read.clusters.size(), 1u); // kept as it is, whatever the test said
    EXPECT_EQ(read.clones[0].size(), largest ? 6u : 9u);
  }
}

struct rise_case {
  library_data data;
  double cutoff;
  std::string row; // begins so
  std::string end; // ends so
};

TEST(given_clusters, cutoff_rises_until_few_clones_stray) {
  // A chain that hangs together by 15 common bands, with six arms of three clones that hang on by 9: at 10 the arms
  // fall off before fewer clones stray, so the old cutoff stands.
  library_data arms;
  add_chain(arms, 1, 12);
  int fresh = 2000;
  for (int arm = 0; arm < 6; ++arm) {
    std::vector<std::int32_t> before = arms.bands[static_cast<std::size_t>(4 + arm)];
    for (int k = 0; k < 3; ++k) {
      std::vector<std::int32_t> bands(before.end() - 9, before.end());
      for (int i = 0; i < 11; ++i)
        bands.push_back(100 * ++fresh);
      arms.add("A" + std::to_string(arm) + "_" + std::to_string(k), bands);
      before = arms.bands.back();
    }
  }
  const rise_case cases[] = {
      {arms, 8, "1\tx\t30\tTrue\t8.00\t9\t3\t", "\t\t"},
      {random_library(41, 60, 100, 0.3), 5, "1\tx\t58\tTrue\t7.00\t4\t1\t",
       "_only_58_of_60_not_all_linked_cutoff_increased_from_5.00_to_7.00"},
  };
  for (const rise_case &given : cases) {
    contig_session session(given.data, given.cutoff);
    class_contig_adapt_clust run = make_run(session, {5000, 2, 5000, 0, 0});
    auto registry = std::make_shared<class_FPCto_import>(session.frame, session.settings, session.database);
    registry->clear_all_and_create_cluster_AllDB(1, "x", "whole");
    session.database.contigs_set(registry);
    session.book.add({"Use maximal", "yes"});
    session.book.add({"Increase cutoff", "yes"});
    run.process_clusters_without_adaptive_clustering({"", "none", "x"}, 2, session.database);
    const lines rows = lines_of_file(session.run() / "report_clusters.txt");
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[1].substr(0, given.row.size()), given.row);
    EXPECT_EQ(rows[1].substr(rows[1].size() - given.end.size()), given.end);
  }
}
