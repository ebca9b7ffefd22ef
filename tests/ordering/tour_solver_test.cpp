// The tour solver as its callers use it: limits, ends, files, messages; and the spanning tree.
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <numeric>
#include <optional>

#include "frame/files.h"
#include "ordering/distance_file.h"
#include "ordering/spanning_tree_tourer.h"
#include "ordering/tour_proof.h"
#include "ordering/tour_solver.h"
#include "support/scripted_frame.h"

namespace {

using namespace orb;

square_array<double> points_in_plane(std::int32_t n, std::uint64_t seed) {
  random_source random(seed);
  std::vector<double> x(static_cast<std::size_t>(n) + 1), y(x.size());
  for (std::size_t i = 1; i < x.size(); ++i) {
    x[i] = 1000 * random.uniform();
    y[i] = 1000 * random.uniform();
  }
  square_array<double> matrix(n);
  for (std::int32_t i = 1; i <= n; ++i)
    for (std::int32_t j = 1; j < i; ++j) { // the solver reads below the diagonal only
      const auto a = static_cast<std::size_t>(i), b = static_cast<std::size_t>(j);
      matrix(i, j) = std::sqrt((x[a] - x[b]) * (x[a] - x[b]) + (y[a] - y[b]) * (y[a] - y[b]));
    }
  return matrix;
}

struct solved {
  tour_report report;
  std::string text;
  number_list order;
  std::int64_t cost = -1;
};
solved solve(const square_array<double> &matrix, double seconds, const tour_control &control, bool free_ends = false,
             std::optional<std::int32_t> n = {}, std::uint64_t seed = 1) {
  random_source random(seed);
  class_math_TSP tourer(random, control);
  solved out;
  out.report = tourer.Run_Tourer(false, n.value_or(matrix.count()), seconds, 30, matrix, out.text, out.order, out.cost,
                                 free_ends);
  return out;
}

std::int64_t exact_cost(const square_array<double> &matrix) {
  const std::int32_t n = matrix.count();
  square_array<std::int32_t> dist(n);
  for (std::int32_t i = 1; i <= n; ++i)
    for (std::int32_t j = 1; j < i; ++j)
      dist(i, j) = dist(j, i) = static_cast<std::int32_t>(matrix(i, j) + 0.0001);
  path_order order;
  return shortest_path_by_subsets(dist, n, 0, 0, order);
}

bool holds_all(const number_list &list, std::int32_t n) {
  std::vector<std::int32_t> sorted(list.members().begin(), list.members().end());
  std::sort(sorted.begin(), sorted.end());
  for (std::int32_t i = 0; i < n; ++i)
    if (i >= static_cast<std::int32_t>(sorted.size()) || sorted[static_cast<std::size_t>(i)] != i + 1)
      return false;
  return static_cast<std::int32_t>(sorted.size()) == n;
}

TEST(tour_solver, few_vertices_and_wrong_counts) {
  square_array<double> matrix(2);
  matrix(2, 1) = 7.99995; // a whole number that came out too small
  EXPECT_EQ(solve(matrix, 1, {}, false, -5).report.message, "TSP: n<0");
  EXPECT_EQ(solve(matrix, 1, {}, false, 40000).report.message, "TSP: n>32765");
  EXPECT_EQ(solve(matrix, 1, {}, false, 0).text, "");
  EXPECT_EQ(solve(matrix, 1, {}, false, 1).text, "1");
  const solved two = solve(matrix, 1, {});
  EXPECT_EQ(two.text, "1 2");
  EXPECT_EQ(two.order, (number_list{1, 2}));
  EXPECT_EQ(two.cost, 8);
}

TEST(tour_solver, small_instances_are_proven_and_the_guided_search_finds_the_same) {
  for (std::int32_t n = 3; n <= 10; ++n) {
    const square_array<double> matrix = points_in_plane(n, static_cast<std::uint64_t>(n));
    const std::int64_t optimum = exact_cost(matrix);
    const solved proven = solve(matrix, 2, {}), guided = solve(matrix, 2, {.steps = 3000, .prove = false});
    EXPECT_TRUE(proven.report.proven);
    EXPECT_EQ(proven.cost, optimum);
    EXPECT_FALSE(guided.report.proven);
    EXPECT_EQ(guided.report.steps, 3000);
    EXPECT_EQ(guided.cost, optimum) << "n " << n;
    EXPECT_TRUE(holds_all(guided.order, n));
  }
}

TEST(tour_solver, given_ends_stay_whatever_the_distances) {
  square_array<double> three(3);
  three(2, 1) = 9000;
  three(3, 2) = 9000;
  three(3, 1) = 1;
  for (const bool prove : {true, false}) {
    const solved ends = solve(three, 1, {.steps = 500, .prove = prove}, true);
    EXPECT_EQ(ends.text, "1 2 3");
    EXPECT_EQ(ends.cost, 18000);
    const square_array<double> matrix = points_in_plane(30, 4);
    const solved more = solve(matrix, 1, {.steps = 2000, .prove = prove}, true);
    EXPECT_EQ(more.order(1), 1);
    EXPECT_EQ(more.order(30), 30);
    EXPECT_TRUE(holds_all(more.order, 30));
  }
}

TEST(tour_solver, steps_repeat_to_the_byte_and_seeds_differ) {
  const square_array<double> matrix = points_in_plane(120, 9);
  const tour_control control{.steps = 300, .prove = false};
  const solved first = solve(matrix, 0, control), second = solve(matrix, 50, control);
  EXPECT_EQ(first.text, second.text); // the time limit has no say
  EXPECT_EQ(first.report.steps, 300);
  EXPECT_NE(first.text, solve(matrix, 0, {.steps = 3000, .prove = false}, false, {}, 2).text);
  const solved a = solve(points_in_plane(90, 2), 1, {.steps = 50}), b = solve(points_in_plane(90, 2), 1, {.steps = 50});
  EXPECT_EQ(a.text, b.text);
  EXPECT_LE(a.cost, solve(points_in_plane(90, 2), 1, {.steps = 50, .prove = false}).cost);
}

TEST(tour_solver, time_limit_zero_ends_after_the_first_step) {
  const solved none = solve(points_in_plane(60, 1), 0, {});
  EXPECT_EQ(none.report.steps, 1);
  EXPECT_TRUE(holds_all(none.order, 60));
}

// By how much it does is measured in bench/; here it would go on for hours.
TEST(tour_solver, a_search_ends_at_its_limit) {
  for (const bool prove : {true, false}) {
    const solved limited = solve(points_in_plane(250, 6), 0.3, {.prove = prove});
    EXPECT_FALSE(limited.report.proven);
    EXPECT_TRUE(holds_all(limited.order, 250));
  }
}

TEST(tour_solver, the_stop_flag_ends_it_soon) {
  const square_array<double> matrix = points_in_plane(200, 3);
  for (const bool prove : {true, false}) {
    std::int64_t n_asked = 0;
    const auto stopped_at = [&](std::int64_t moment) {
      n_asked = 0;
      return solve(matrix, 0, {.steps = 300, .prove = prove, .stop = [&] { return ++n_asked >= moment; }});
    };
    EXPECT_FALSE(stopped_at(1'000'000'000).report.stopped);
    const std::int64_t n_whole = n_asked;
    EXPECT_GT(n_whole, prove ? 3000 : 300) << "too long a stride somewhere";
    for (std::int64_t moment = 1; moment < n_whole; moment += 1 + moment / 3) {
      const solved ended = stopped_at(moment);
      EXPECT_TRUE(ended.report.stopped) << moment;
      EXPECT_TRUE(holds_all(ended.order, 200)) << moment;
      EXPECT_LE(n_asked, moment + 10) << "the loops around the one that saw it end at their next look";
    }
  }
}

// ---- "Input.dis" ---------------------------------------------------------------------------------------------------

TEST(distance_file, written_instances_are_read_back) {
  const temporary_folder folder;
  EXPECT_EQ(distance_file_text(2, 30, number_list{1, 2, 4}.members(), number_list{900, 10000, 877}.members()),
            "3,2,30\r\n1 2 4\r\n1\t2\t900\r\n1\t3\t10000\r\n2\t3\t877\r\n");
  random_source random(2);
  for (std::int32_t n = 1; n <= 6; ++n) {
    number_list numbers;
    for (std::int32_t k = 0; k < n * (n - 1) / 2; ++k)
      numbers.add(random.number_up_to(10000));
    const std::string text = distance_file_text(0.5, 30, number_list::range(1, n).members(), numbers.members());
    distance_instance read;
    std::string problem;
    ASSERT_TRUE(read_distance_file(folder.write("Input.dis", text), read, problem)) << problem;
    EXPECT_EQ(read.n, n);
    EXPECT_EQ(read.time_limit, 0.5);
    std::int32_t k = 0;
    for (std::int32_t i = 1; i <= n; ++i)
      for (std::int32_t j = i + 1; j <= n; ++j)
        EXPECT_TRUE(read.dist(i, j) == numbers(++k) && read.dist(j, i) == numbers(k));
  }
}

TEST(distance_file, given_by_hand_with_gaps_and_solved) {
  const temporary_folder folder;
  const auto file = folder.write("Input.dis", "4 1, 30\n1,3,10.6\n3 2 5\n2,4,7\n");
  random_source random;
  class_math_TSP tourer(random);
  solved out;
  out.report = tourer.Run_Tourer(true, 0, 0, 0, {}, out.text, out.order, out.cost, false, file);
  EXPECT_EQ(out.cost, 11 + 5 + 7);
  EXPECT_EQ(out.text, "4 2 3 1");
}

TEST(distance_file, bad_input_is_named_with_its_line) {
  const temporary_folder folder;
  struct bad_file {
    const char *text, *problem_start;
  };
  for (const bad_file &bad : {bad_file{"", "The file of distances is empty"},
                              bad_file{"5,2\n", "Number of vertices, time limit and neighbour rank are expected"},
                              bad_file{"-1,2,30\n", "Number of vertices, time limit and neighbour rank are expected"},
                              bad_file{"3,2,30\n1 2 3\n1\t9\t5\n", "Two vertices from 1 to 3 and their distance"},
                              bad_file{"3,2,30\n1\t2\n", "Two vertices from 1 to 3 and their distance"},
                              bad_file{"30000,2,30\n1\t2\t3\n", "The file tells of 30000 vertices and has 1 dist"}}) {
    distance_instance read;
    read.n = 77;
    std::string problem;
    EXPECT_FALSE(read_distance_file(folder.write("Input.dis", bad.text), read, problem));
    EXPECT_EQ(problem.rfind(bad.problem_start, 0), 0u) << problem;
    EXPECT_NE(problem.find("line "), std::string::npos);
    EXPECT_EQ(read.n, 77);
  }
}

// ---- spanning trees ------------------------------------------------------------------------------------------------

struct mst_fixture : testing::Test, scripted_frame {
  class_MSTTourer tourer{frame};
};

TEST_F(mst_fixture, trees_weigh_no_more_than_naive_ones) {
  random_source random(8);
  for (std::int32_t n = 3; n <= 12; ++n) {
    square_array<std::int32_t> matrix(n);
    struct edge {
      std::int32_t d, a, b;
    };
    std::vector<edge> edges;
    for (std::int32_t i = 1; i <= n; ++i)
      for (std::int32_t j = i + 1; j <= n; ++j) {
        matrix(i, j) = matrix(j, i) = random.number_up_to(50);
        edges.push_back({matrix(i, j), i, j});
      }
    std::sort(edges.begin(), edges.end(), [](const edge &x, const edge &y) { return x.d < y.d; });
    std::vector<std::int32_t> component(static_cast<std::size_t>(n) + 1);
    std::iota(component.begin(), component.end(), 0);
    std::int64_t naive = 0, sum = 0;
    std::int32_t largest = 0;
    for (const edge &e : edges) { // Kruskal with relabelled components
      const std::int32_t a = component[static_cast<std::size_t>(e.a)], b = component[static_cast<std::size_t>(e.b)];
      if (a == b)
        continue;
      std::replace(component.begin(), component.end(), a, b);
      naive += e.d;
      largest = e.d;
    }
    number_list from, to, value;
    bool connected = false;
    tourer.makeMST(matrix, n, 1000, from, to, value, connected);
    for (const std::int32_t d : value.members())
      sum += d;
    EXPECT_EQ(sum, naive);
    EXPECT_TRUE(connected);
    tourer.makeMST(matrix, n, largest, from, to, value, connected);
    EXPECT_FALSE(connected); // the largest edge is at the threshold
    EXPECT_EQ(from.count(), n - 1);
  }
}

TEST_F(mst_fixture, the_longest_path_of_a_tree_and_its_failures) {
  //   1 - 2 - 3 - 4     path 6 5 2 3 4 or its mirror image
  //       |
  //       5 - 6
  number_list ranks, path;
  std::int32_t n_path = 0;
  tourer.longest_path_on_tree(6, {1, 2, 3, 2, 5}, {2, 3, 4, 5, 6}, ranks, path, n_path);
  EXPECT_EQ(path, (number_list{6, 5, 2, 3, 4}));
  EXPECT_EQ(n_path, 5);
  EXPECT_THROW(tourer.longest_path_on_tree(4, {1, 2, 1}, {2, 3, 3}, ranks, path, n_path), program_end);
  EXPECT_THROW(tourer.longest_path_on_tree(4, {1, 3, 3}, {2, 4, 4}, ranks, path, n_path), program_end);
  EXPECT_EQ(record.messages, (std::vector<std::string>{"longest_path_on_tree: Error: nConnections(4) = 0",
                                                       "make_distRank_by_tree ERROR: m=2<4=n"}));
}

TEST_F(mst_fixture, few_vertices_and_the_self_test) {
  square_array<std::int32_t> matrix(2);
  matrix(1, 2) = matrix(2, 1) = 5;
  number_list path;
  std::int32_t n_path = -1;
  bool connected = false;
  tourer.callMST(matrix, 0, path, n_path, 5, connected);
  EXPECT_TRUE(path.empty() && connected);
  tourer.callMST(matrix, 2, path, n_path, 5, connected);
  EXPECT_EQ(path, (number_list{1, 2}));
  EXPECT_FALSE(connected);
  tourer.callMST(matrix, 2, path, n_path, 6, connected);
  EXPECT_TRUE(connected);
  tourer.callMST_test();
  EXPECT_EQ(record.messages, std::vector<std::string>{"connected=True\r\nnPath=20"});
}

} // namespace
