// Ordering and jackknife on small libraries: exact files, the same result for any number of threads, stops, failures.
#include <filesystem>
#include <gtest/gtest.h>
#include <map>

#include "frame/files.h"
#include "graph/class_net.h"
#include "ordering/class_clone_ord_and_verif.h"
#include "support/library_generator.h"
#include "support/scripted_frame.h"

namespace {

using namespace orb;
namespace fs = std::filesystem;

struct ordering_fixture : testing::Test, scripted_frame {
  project_settings settings;
  overlap_rule rule;
  class_DB_of_clones database;
  class_usable_values usable_values;
  class_clone_dist_table table;
  metric_context context{frame, settings, database, usable_values, table};

  // Windows on an axis of bands that lie far apart: cA 1-10, cB 4-13, cC 8-17, cD 11-20, and cE 5-12, buried in cB.
  // Scores are 1000 k^2 / (n1 n2): 490 for 7 common bands of 10, 360 for 6, 90 for 3.
  void load_windows() {
    const std::vector<std::pair<std::int32_t, std::int32_t>> windows{{1, 10}, {4, 13}, {8, 17}, {11, 20}, {5, 12}};
    database.tollerance_parameters_set(4, 1);
    database.inicalise_database(frame, 5, 50);
    for (clone_number c = 1; c <= 5; ++c) {
      std::vector<band_value> bands;
      for (std::int32_t b = windows[static_cast<std::size_t>(c) - 1].first;
           b <= windows[static_cast<std::size_t>(c) - 1].second; ++b)
        bands.push_back(1000 + 100 * b);
      database.name_of_clone_set(c, std::string("c") + "ABCDE"[c - 1]);
      database.ListOfBands_from_real_database_fast_all_bands_set(c, bands);
    }
    database.total_number_of_clones_set(5);
    database.sort_clones_by_name(frame);
    make_band_statistics(frame, database, usable_values);
    rule = rule_of_metric(class_clone_dist_general::DISTANCE_INDEX_k2_frac_mn_get(), 100);
    record = {};
  }
  void load_generated(std::int32_t n) {
    generate_library(frame, {.n_clones = n, .bands_in_clone = 30, .coverage = 8, .seed = 4}, database, usable_values);
    rule.cutoff = 8;
    record = {};
  }
  std::map<std::string, std::string> files() const {
    std::map<std::string, std::string> out;
    for (const auto &entry : fs::directory_iterator(folder))
      out[entry.path().filename().string()] = file_bytes(entry.path());
    return out;
  }
  std::string tail() const {
    return "ctg_" + class_clone_dist_general::name_of_cutoff_distance(rule.distance_index) + "_Cf100.0_p0.90.txt";
  }
};

const number_list shuffled_windows{3, 1, 5, 4, 2}; // cC, cA, cE, cD, cB

const std::string old_order = "Old order:\r\n1\t3\tcC\r\n2\t1\tcA\r\n4\t4\tcD\r\n5\t2\tcB\r\n\r\n\r\n\r\n";
const std::string diagonal =
    "\r\n\r\n\r\nDiagonal:\r\nnew_i\told_i\told_old_i\tclone\tSum_Pij\tVar\tcA\tcB\tcC\tcD\r\n";

TEST_F(ordering_fixture, files_without_jackknife) {
  load_windows();
  class_clone_ord_and_verif ordering(context, nullptr);
  fs::path file_order;
  std::vector<std::int16_t> clone_is_not_excluded;
  number_list order, without_buried, ordered;
  ASSERT_TRUE(ordering.run_JK_on_bands_new(shuffled_windows, 5, rule, "ctg", false, {}, file_order,
                                           clone_is_not_excluded, order));
  EXPECT_EQ(clone_is_not_excluded, (std::vector<std::int16_t>{1, 1, 1, 0, 1, 1}));
  EXPECT_EQ(order, (number_list{2, 4, 1, 3}));
  class_clone_ord_and_verif::create_list_of_clones_after_ordering(shuffled_windows, 5, clone_is_not_excluded, order,
                                                                  without_buried, ordered);
  EXPECT_EQ(without_buried, (number_list{3, 1, 4, 2}));
  EXPECT_EQ(ordered, (number_list{1, 2, 3, 4}));
  EXPECT_EQ(file_order.filename(), "ORB_order_" + tail());

  // 510 + 640 + 510 over 4 clones; the old order has no link at all
  const std::string orders = "i_JK\t1\t2\t3\t4\tLength (old=7500.000000)\r\n"
                             "0\t2\t4\t1\t3\t415.000000\r\nConsens\t2\t4\t1\t3\t415.000000\r\n";
  const std::string rows = "1\t2\t2\tcA\r\n2\t4\t5\tcB\r\n3\t1\t1\tcC\r\n4\t3\t4\tcD\r\n";
  const std::map<std::string, std::string> expected{
      {"order_control_" + tail(), old_order + "Optimal order\r\n" + orders + diagonal + rows},
      {"consens_control_" + tail(), old_order + "Consensus order\r\n" + orders + diagonal + rows},
      {"solution_DiagViewer_" + tail(), "cC cA cD cB\r\n2 4 1 3\r\n"},
      {"ORB_order_" + tail(), "cA\r\ncB\r\ncC\r\ncD\r\n"}};
  EXPECT_EQ(files(), expected);
  EXPECT_EQ(record.panels.back(), "2: Ok");
}

TEST_F(ordering_fixture, files_with_the_instance_in_the_folder_of_the_contig) {
  load_windows();
  class_clone_ord_and_verif ordering(context, nullptr, {.t_JK_N = 2, .t_JK_alpha = 0});
  fs::path file_order;
  fs::create_directory(folder / "ctg");
  ordering.run_JK_on_bands(shuffled_windows, 5, rule, "ctg", true, folder / "ctg", file_order);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1); // nothing beside the contig's folder
  const std::string instance = "4,2,30\r\n1 2 4 5\r\n1\t2\t10000\r\n1\t3\t510\r\n1\t4\t640\r\n2\t3\t10000\r\n"
                               "2\t4\t510\r\n3\t4\t10000\r\n";
  std::map<std::string, std::string> found;
  for (const auto &entry : fs::directory_iterator(folder / "ctg"))
    found[entry.path().filename().string()] = file_bytes(entry.path());
  const std::string orders = "i_JK\t1\t2\t3\t4\tLength (old=7500.000000)\r\n0\t2\t4\t1\t3\t415.000000\r\n"
                             "1\t2\t4\t1\t3\t415.000000\r\n2\t2\t4\t1\t3\t415.000000\r\n"
                             "Consens\t2\t4\t1\t3\t415.000000\r\n";
  // each of the three runs counts, and the sum is divided by 2
  const std::string rows = "1\t2\t2\tcA\t1.50\t0.75\t\t1.50\t\t\r\n2\t4\t5\tcB\t3.00\t1.50\t1.50\t\t1.50\t\r\n"
                           "3\t1\t1\tcC\t3.00\t1.50\t\t1.50\t\t1.50\r\n4\t3\t4\tcD\t1.50\t0.75\t\t\t1.50\t\r\n";
  const std::map<std::string, std::string> expected{
      {"Input.dis", instance},
      {"Input0.dis", instance},
      {"Input1.dis", instance},
      {"Input2.dis", instance},
      {"order_control_" + tail(), old_order + "Optimal order\r\n" + orders + diagonal + rows},
      {"ORB_order_" + tail(), "cA\r\ncB\r\ncC\r\ncD\r\n"}};
  EXPECT_EQ(found, expected);
  EXPECT_NE(std::find(record.panels.begin(), record.panels.end(), "2: JK from 2"), record.panels.end());
  EXPECT_NE(std::find(record.panels.begin(), record.panels.end(), "3: JK2"), record.panels.end());
}

TEST_F(ordering_fixture, the_order_file_holds_the_shortest_order_and_the_last_run_is_handed_on) {
  load_generated(30);
  class_clone_ord_and_verif ordering(context, nullptr, {.t_JK_N = 4, .t_JK_alpha = 0.5});
  ordering_task task;
  task.list = number_list::range(1, 30);
  task.rule = rule;
  task.name = "ctg";
  task.folder = folder;
  std::vector<ordering_work> works;
  ASSERT_TRUE(ordering.compute_all(std::span(&task, 1), works));
  const ordering_work &work = works.front();
  ASSERT_NE(work.runs.front().order, work.runs.back().order) << "half of the bands are left out";
  fs::path file_order;
  ordering.write(work, file_order);
  std::string names;
  for (const std::int32_t p : work.runs.front().order)
    names += database.name_of_clone_get(task.list(work.list_not_excluded(p))) + "\r\n";
  EXPECT_EQ(file_bytes(file_order), names);
  EXPECT_EQ(class_clone_ord_and_verif::order_of(work), number_list(work.runs.back().order));
}

TEST_F(ordering_fixture, a_buried_clone_of_two_leaves_one_and_none_leaves_none) {
  load_windows();
  class_clone_ord_and_verif ordering(context, nullptr);
  fs::path file_order;
  ordering.run_JK_on_bands({5, 2}, 2, rule, "ctg", false, {}, file_order);
  EXPECT_EQ(file_bytes(file_order), "cB\r\n");
  ordering.run_JK_on_bands({5, 2}, 0, rule, "none", false, {}, file_order);
  EXPECT_EQ(file_bytes(file_order), "");
}

TEST_F(ordering_fixture, distances_come_from_the_net_when_asked) {
  load_windows();
  class_net net;
  net.inicializate_net(5, 4);
  for (vertex_number v = 1; v <= 5; ++v) {
    net.add_vertex_fast(0);
    if (v == 1)
      net.add_edge_fast(1, 2, 33, 0, 1);
    if (v == 2)
      net.add_edge_fast(2, 1, 33, 0, 2);
  }
  net.finish_of_adding();
  net.test_neighbours_sorted();
  class_clone_ord_and_verif ordering(context, &net);
  class_clone_dist_calc calc(context);
  std::int16_t buried = -1;
  double Rij = 0;
  ordering.calculate_Rij(3, 2, rule_of_metric(0, 100, 0.6), calc, buried, Rij);
  EXPECT_TRUE(Rij == 640 && buried == 3);
  ordering.calculate_Rij(3, 2, rule_of_metric(0, 360, 0.9), calc, buried, Rij);
  EXPECT_TRUE(Rij == 10000 && buried == 0); // at the cutoff is no link
  settings.net_in_ordering = true;
  ordering.calculate_Rij(3, 2, rule_of_metric(0, 100, 0.6), calc, buried, Rij);
  EXPECT_TRUE(Rij == 10000 && buried == 0); // unknown to the net
  ordering.calculate_Rij(2, 1, rule_of_metric(0, 100, 0.6), calc, buried, Rij);
  EXPECT_TRUE(Rij == 510 && buried == 2); // the score is computed, the code is the net's
  ordering.calculate_Rij(2, 1, rule_of_metric(0, 0.5, 0.6), calc, buried, Rij);
  EXPECT_EQ(Rij, 510);
  ordering.calculate_Rij(1, 4, rule_of_metric(0, 0.5, 0.6), calc, buried, Rij);
  EXPECT_EQ(Rij, 999); // a score below 1 counts as 1, above this cutoff
}

// Contigs, their runs and their exclusions draw from generators of their own.
TEST_F(ordering_fixture, any_number_of_threads_gives_the_same_files) {
  load_generated(90);
  std::vector<ordering_task> tasks;
  for (std::int32_t first = 1; first <= 61; first += 30)
    tasks.push_back({number_list::range(first, first + 29),
                     rule,
                     "c" + std::to_string(first),
                     true,
                     {},
                     static_cast<std::uint64_t>(first)});
  std::map<std::string, std::string> of_one_thread;
  for (const int threads : {1, 3}) {
    settings.threads = threads;
    class_clone_ord_and_verif ordering(context, nullptr,
                                       {.steps = 40, .t_JK_N = 3, .t_JK_alpha = 0.02, .prove = false});
    std::vector<ordering_work> works;
    ASSERT_TRUE(ordering.compute_all(tasks, works));
    std::map<std::string, std::string> texts;
    for (const ordering_work &work : works) {
      ASSERT_TRUE(work.completed);
      const std::string name = work.task.name;
      texts[name + "order"] = class_clone_ord_and_verif::print_order_control(work, 0, database);
      texts[name + "consensus"] = class_clone_ord_and_verif::print_order_control(work, 4, database);
      EXPECT_NE(work.runs[0].distances, work.runs[1].distances); // bands were left out
      EXPECT_NE(work.runs[1].distances, work.runs[2].distances); // other ones each time
      fs::path file_order;
      ordering.write(work, file_order);
    }
    for (auto &[name, bytes] : files())
      texts[name] = bytes;
    EXPECT_FALSE(usable_values.JK_on_bands_get());
    if (of_one_thread.empty())
      of_one_thread = texts;
    EXPECT_EQ(texts, of_one_thread);
  }
}

TEST_F(ordering_fixture, stopped_at_once_or_midway_writes_nothing) {
  load_generated(120);
  for (const int yields_before : {1, 12}) {
    int yields = 0;
    on_yield = [&] { return ++yields == yields_before; };
    class_clone_ord_and_verif ordering(context, nullptr, {.seconds = 3600, .t_JK_N = 4, .prove = false});
    fs::path file_order = "left";
    std::vector<std::int16_t> flags;
    number_list order;
    EXPECT_FALSE(
        ordering.run_JK_on_bands_new(number_list::range(1, 120), 120, rule, "ctg", true, {}, file_order, flags, order));
    EXPECT_TRUE(file_order.empty() && order.empty() && flags.empty());
    EXPECT_TRUE(files().empty());
    on_yield = {};
    frame.stop_requested_set(false);
  }
}

TEST_F(ordering_fixture, too_many_excluded_bands_end_the_program_and_too_few_are_logged) {
  load_windows();
  fs::path file_order;
  class_clone_ord_and_verif far_too_many(context, nullptr, {.t_JK_N = 1, .t_JK_alpha = 0.81});
  EXPECT_THROW(far_too_many.run_JK_on_bands(shuffled_windows, 5, rule, "ctg", true, {}, file_order), program_end);
  EXPECT_EQ(record.messages, std::vector<std::string>{"Too mach bands are excluded!"});
  EXPECT_TRUE(files().empty());
  class_clone_ord_and_verif more_than_there_are(context, nullptr, {.t_JK_N = 3, .t_JK_alpha = 0.5});
  more_than_there_are.run_JK_on_bands(shuffled_windows, 5, rule, "ctg", true, {}, file_order);
  EXPECT_EQ(std::count_if(record.log.begin(), record.log.end(),
                          [](const std::string &line) { return line.rfind("No band is left to exclude: ", 0) == 0; }),
            1); // once for the contig
}

} // namespace
