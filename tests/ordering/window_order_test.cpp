// Contigs too long for one search: windows along the axis, how their orders are joined, what the files say of it.
#include <gtest/gtest.h>
#include <numeric>

#include "frame/files.h"
#include "ordering/class_clone_ord_and_verif.h"
#include "support/library_generator.h"
#include "support/scripted_frame.h"

namespace {

using namespace orb;

std::vector<std::int32_t> numbers_to(std::int32_t n) {
  std::vector<std::int32_t> all(static_cast<std::size_t>(n));
  std::iota(all.begin(), all.end(), 1);
  return all;
}

std::vector<std::int32_t> shuffled(std::vector<std::int32_t> values, random_source &random) {
  for (std::size_t i = values.size(); i > 1; --i)
    std::swap(values[i - 1], values[static_cast<std::size_t>(random.number_up_to(static_cast<std::int32_t>(i))) - 1]);
  return values;
}

// Kendall's tau by the definition, whichever way the order runs.
double tau_of(const std::vector<double> &values) {
  std::int64_t sum = 0;
  for (std::size_t i = 0; i < values.size(); ++i)
    for (std::size_t j = i + 1; j < values.size(); ++j)
      sum += values[i] < values[j] ? 1 : values[i] > values[j] ? -1 : 0;
  const auto n = static_cast<double>(values.size());
  return std::abs(static_cast<double>(sum)) / (n * (n - 1) / 2);
}

TEST(window_joining, windows_cover_the_axis_and_overlap_enough_and_no_clone_lies_in_three) {
  for (std::int32_t n = most_in_one_search + 1; n < 4000; n += 7) {
    std::vector<int> times(static_cast<std::size_t>(n), 0);
    std::int32_t covered = 0;
    for (const axis_window &window : windows_along_axis(n)) {
      ASSERT_TRUE(window.first == 0 || covered - window.first == 60) << n;
      covered = window.last + 1;
      for (std::int32_t r = window.first; r <= window.last; ++r)
        ASSERT_LE(++times[static_cast<std::size_t>(r)], 2) << n;
    }
    ASSERT_EQ(covered, n);
  }
}

// The axis is rough: true places moved by up to `roughness`. Orders of windows are true, or nonsense.
TEST(window_joining, true_orders_in_any_direction_join_truly_and_any_orders_keep_every_clone) {
  random_source random(7);
  for (int round = 0; round < 60; ++round) {
    const std::int32_t n = most_in_one_search + random.number_up_to(1500), roughness = round % 3 * 12;
    std::vector<std::pair<std::int32_t, std::int32_t>> by_axis; // rough place, clone: clone c truly stands at c
    for (const std::int32_t c : numbers_to(n))
      by_axis.emplace_back(c + random.number_up_to(2 * roughness + 1), c);
    std::sort(by_axis.begin(), by_axis.end());
    std::vector<std::int32_t> rank(static_cast<std::size_t>(n) + 1);
    for (std::int32_t r = 0; r < n; ++r)
      rank[static_cast<std::size_t>(by_axis[static_cast<std::size_t>(r)].second)] = r;
    const bool is_true = round % 2 == 0;
    std::vector<path_order> orders;
    for (const axis_window &window : windows_along_axis(n)) {
      orders.emplace_back();
      for (std::int32_t r = window.first; r <= window.last; ++r)
        orders.back().push_back(by_axis[static_cast<std::size_t>(r)].second);
      std::sort(orders.back().begin(), orders.back().end());
      if (!is_true)
        orders.back() = shuffled(orders.back(), random);
      else if (random.number_up_to(2) == 1)
        std::reverse(orders.back().begin(), orders.back().end());
    }
    std::vector<window_join> joins;
    path_order joined = join_windows(rank, orders, joins);
    ASSERT_EQ(joins.size(), orders.size() - 1);
    for (const window_join &join : joins) {
      ASSERT_EQ(join.n_agreeing == join.n_shared, is_true);
      ASSERT_EQ(join.is_weak(), !is_true);
    }
    if (is_true && roughness == 0) {
      ASSERT_EQ(joined, numbers_to(n));
    } else if (is_true) {
      ASSERT_GT(tau_of(std::vector<double>(joined.begin(), joined.end())), 0.999);
    }
    std::sort(joined.begin(), joined.end());
    ASSERT_EQ(joined, numbers_to(n)) << "every clone once";
  }
}

// The first window has the middle of what it shares the wrong way round: cut there, the order would break three times.
TEST(window_joining, the_cut_goes_where_both_orders_part_the_clones_alike) {
  std::vector<std::int32_t> rank = numbers_to(501);
  rank.insert(rank.begin(), 0);
  const std::vector<axis_window> windows = windows_along_axis(501);
  std::vector<path_order> orders;
  for (const axis_window &window : windows) {
    orders.push_back(numbers_to(window.last + 1));
    orders.back().erase(orders.back().begin(), orders.back().begin() + window.first);
  }
  std::reverse(orders[0].end() - 45, orders[0].end() - 15);
  std::vector<window_join> joins;
  const path_order joined = join_windows(rank, orders, joins);
  int breaks = 0;
  for (std::size_t i = 1; i < joined.size(); ++i)
    breaks += std::abs(joined[i] - joined[i - 1]) != 1;
  EXPECT_LE(breaks, 2);
  EXPECT_EQ(joins[0].n_agreeing, 60 - 29);
  EXPECT_TRUE(joins[0].is_weak() && !joins[1].is_weak());
}

TEST(window_joining, pieces_without_a_link_are_laid_along_the_axis) {
  random_source random(3);
  std::vector<std::int32_t> rank = numbers_to(100);
  rank.insert(rank.begin(), 0);
  std::vector<path_order> pieces;
  for (std::int32_t begin = 1; begin <= 100;) {
    const std::int32_t end = std::min(begin + random.number_up_to(9), 101);
    pieces.emplace_back();
    for (std::int32_t v = begin; v < end; ++v)
      pieces.back().push_back(v);
    if (random.number_up_to(2) == 1)
      std::reverse(pieces.back().begin(), pieces.back().end());
    begin = end;
  }
  for (std::size_t i = pieces.size(); i > 1; --i)
    std::swap(pieces[i - 1], pieces[static_cast<std::size_t>(random.number_up_to(static_cast<std::int32_t>(i))) - 1]);
  EXPECT_EQ(pieces_along_axis(rank, pieces), numbers_to(100));
}

// One contig of clones with known places; the axis has errors of half a clone.
struct long_contig : testing::Test, scripted_frame {
  project_settings settings;
  class_DB_of_clones database;
  class_usable_values usable_values;
  class_clone_dist_table table;
  metric_context context{frame, settings, database, usable_values, table};
  ordering_task task;
  std::vector<double> middles; // by clone

  void load(std::int32_t n, double spread) {
    std::vector<std::int32_t> starts;
    generate_library(frame, {.n_clones = n, .bands_in_clone = 30, .spread = spread, .coverage = 10, .seed = 9},
                     database, usable_values, &starts);
    random_source random(5);
    task = {};
    task.rule.cutoff = 8;
    task.name = "ctg";
    middles.assign(1, 0);
    for (clone_number c = 1; c <= n; ++c) {
      middles.push_back(starts[static_cast<std::size_t>(c)] + database.number_of_bands_in_clone_get(c) / 2.0);
      task.list.add(c);
      task.axis.push_back(static_cast<std::int32_t>(2 * middles.back()) + random.number_up_to(31) - 15);
    }
    record = {};
  }
  std::vector<double> places_of(const ordering_work &work) const {
    std::vector<double> places;
    for (const std::int32_t p : work.runs.front().order)
      places.push_back(middles[static_cast<std::size_t>(task.list(work.list_not_excluded(p)))]);
    return places;
  }
  ordering_work work_of(const ordering_options &options) {
    class_clone_ord_and_verif ordering(context, nullptr, options);
    std::vector<ordering_work> works;
    EXPECT_TRUE(ordering.compute_all(std::span(&task, 1), works));
    return works.front();
  }
};

TEST_F(long_contig, windows_are_as_good_as_one_search_and_true_to_the_known_places) {
  load(640, 0);
  task.rule.burying = 1.01; // none is buried
  const ordering_work in_windows = work_of({});
  task.axis.clear();
  const ordering_work whole = work_of({.seconds = 4});
  ASSERT_GT(in_windows.windows.size(), 3u);
  ASSERT_FALSE(whole.in_windows());
  const ordering_run &run = in_windows.runs.front(), &of_all = whole.runs.front();
  EXPECT_LE(run.length, of_all.length * 1.0005);
  EXPECT_EQ(run.length_old, of_all.length_old);
  EXPECT_EQ(in_windows.n_weak_joins(), 0);
  path_order sorted = run.order;
  std::sort(sorted.begin(), sorted.end());
  EXPECT_EQ(sorted, numbers_to(640));
  EXPECT_GT(tau_of(places_of(in_windows)), 0.998);
}

// Without buried clones some neighbours hardly overlap: nothing but the axis tells which way the next piece runs.
TEST_F(long_contig, where_a_link_lacks_the_axis_tells) {
  load(3000, 0.5);
  task.rule.cutoff = 14;
  const ordering_work work = work_of({});
  ASSERT_TRUE(work.in_windows());
  EXPECT_GT(work.runs.front().length, 1000) << "some steps are no links";
  EXPECT_EQ(work.n_weak_joins(), 0);
  EXPECT_GT(tau_of(places_of(work)), 0.998);
}

TEST_F(long_contig, near_pairs_find_the_clones_that_all_pairs_find_buried) {
  load(1500, 0.5);
  std::vector<std::int16_t> of_all, of_near;
  class_clone_ord_and_verif::create_clone_is_not_excluded(task.list, 1500, task.rule, of_all, context);
  class_clone_ord_and_verif::create_clone_is_not_excluded(task.list, 1500, task.rule, of_near, context, nullptr,
                                                          task.axis);
  EXPECT_EQ(of_near, of_all);
  EXPECT_GT(std::count(of_all.begin(), of_all.end(), 0), 300);
}

TEST_F(long_contig, files_tell_of_the_windows_and_are_the_same_for_any_number_of_threads) {
  load(560, 0);
  task.rule.burying = 1.01;
  std::string control, distances;
  for (const int threads : {1, 3}) {
    settings.threads = threads;
    const ordering_options quick{.steps = 40, .t_JK_N = 1, .t_JK_alpha = 0.02, .prove = false};
    const ordering_work work = work_of(quick);
    class_clone_ord_and_verif ordering(context, nullptr, quick);
    std::filesystem::path file_order;
    ordering.write(work, file_order);
    const std::string control_now = class_clone_ord_and_verif::print_order_control(work, 0, database);
    const std::string distances_now = file_bytes(folder / "Input1.dis");
    EXPECT_NE(distances_now, file_bytes(folder / "Input0.dis")) << "bands were left out";
    EXPECT_TRUE(threads == 1 || (control_now == control && distances_now == distances));
    control = control_now;
    distances = distances_now;
    EXPECT_EQ(number_list(work.consensus.order).count(), 560);
  }
  EXPECT_NE(control.find("Windows:\r\nwindow\tfirst_i\tlast_i\tproven\tn_shared\tn_agree\tjoin\r\n1\t1\t160\tFalse\r\n"
                         "2\t101\t260\tFalse\t60\t"),
            std::string::npos);
  EXPECT_NE(control.find("\t2:"), std::string::npos) << "neighbours by place, without empty columns";
  EXPECT_EQ(control.find("\t\t"), std::string::npos);
  distance_instance read;
  std::string problem;
  EXPECT_TRUE(read_distance_file(folder / "Input.dis", read, problem)) << problem;
  EXPECT_EQ(read.n, 560);
}

TEST_F(long_contig, stopped_in_a_window_or_before_writes_nothing) {
  load(1300, 0);
  for (const int yields_before : {1, 6, 30}) {
    int yields = 0;
    on_yield = [&] { return ++yields == yields_before; };
    class_clone_ord_and_verif ordering(context, nullptr, {.seconds = 3600, .prove = false});
    std::vector<ordering_work> works;
    EXPECT_FALSE(ordering.compute_all(std::span(&task, 1), works));
    on_yield = {};
    frame.stop_requested_set(false);
  }
}

} // namespace
