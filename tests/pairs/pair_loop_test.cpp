// The pair loop: rows that come through the scan against rows of the plain kernel, for each set of instructions and
// number of threads; the bound and the least counts against slow formulations.
#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include "database/class_markers.h"
#include "metrics/class_clone_dist_general.h"
#include "metrics/class_clone_dist_simul.h"
#include "pairs/half_net.h"
#include "pairs/overlap_rows.h"
#include "support/net_fixture.h"

namespace orb {
namespace {

using family = class_clone_dist_general;

struct loop_case {
  const char *what;
  std::int16_t metric;
  double cutoff;
  generated_library library;
  bool preprocessed = true; // the scores know the table of the least significant k
  double excluded = 0;
  bool limited = true; // the metric and cutoff set a limit, so that the scan runs
  enum { none, made, read } tables = none;
};

// Tables for clones of 10 to 50 bands; read ones hold the fits alone.
void make_tables(net_fixture &f, const loop_case &c) {
  if (c.tables == loop_case::none)
    return;
  f.table.table_parameters_set(10, 20, 2, 1);
  ASSERT_TRUE(f.table.create_tables_of_both_modes(4000, f.database, {f.frame, f.usable_values, 1, 2}));
  if (c.tables == loop_case::read) {
    ASSERT_TRUE(f.table.run_read_tables(f.frame, f.folder));
  }
}

const loop_case loop_cases[] = {
    {"Sulston", 4, 5, {.n_clones = 560, .bands_in_clone = 30}},
    {"Sulston, several chunks", 4, 3, {.n_clones = 4700, .bands_in_clone = 4, .seed = 2}},
    {"Sulston, no table", 4, 5, {.n_clones = 300, .bands_in_clone = 30, .seed = 3}, false},
    {"Sulston, no table, all but everything is kept", 4, 0.5, {.n_clones = 200, .bands_in_clone = 9, .seed = 4}, false},
    {"Sulston, low cutoff", 4, 0.01, {.n_clones = 200, .bands_in_clone = 9, .seed = 4}},
    {"Sulston, large clones", 4, 20, {.n_clones = 300, .bands_in_clone = 240, .seed = 5}},
    {"Sulston, bins", 4, 5, {.n_clones = 540, .bands_in_clone = 30, .bin_numbers = true, .seed = 6}},
    {"Sulston, t = 0", 4, 3, {.n_clones = 540, .bands_in_clone = 30, .tolerance = 0, .measuring_error = 0, .seed = 7}},
    {"Sulston, t = 1", 4, 3, {.n_clones = 540, .bands_in_clone = 30, .tolerance = 1, .measuring_error = 1, .seed = 8}},
    {"Sulston, t = 300, skewed",
     4,
     8,
     {.n_clones = 540, .bands_in_clone = 60, .skewed = true, .tolerance = 300, .seed = 9}},
    {"Sulston, crowded", 4, 9, {.n_clones = 540, .bands_in_clone = 80, .skewed = true, .seed = 23}},
    {"Sulston, long gel",
     4,
     4,
     {.n_clones = 300, .bands_in_clone = 30, .tolerance = 900, .gel_length = 5000000, .seed = 24}},
    {"Sulston, short gel",
     4,
     2,
     {.n_clones = 400, .bands_in_clone = 40, .tolerance = 2, .gel_length = 300, .measuring_error = 1, .seed = 10}},
    {"Sulston, clones without bands",
     4,
     2,
     {.n_clones = 540, .bands_in_clone = 2, .spread = 1, .skewed = true, .seed = 11}},
    {"Sulston, versions of names", 4, 4, {.n_clones = 560, .bands_in_clone = 30, .seed = 12, .n_names = 300}},
    {"Sulston, excluded bands", 4, 4, {.n_clones = 500, .bands_in_clone = 30, .seed = 13}, true, 0.04},
    {"Sulston, everything is kept", 4, 0, {.n_clones = 60, .bands_in_clone = 8, .seed = 14}, true, 0, false},
    {"k2mn", 0, 150, {.n_clones = 540, .bands_in_clone = 20, .seed = 15}},
    {"k2mn with markers", 10, 350, {.n_clones = 300, .bands_in_clone = 20, .seed = 16}},
    {"Soderlund", 5, 8, {.n_clones = 300, .bands_in_clone = 30, .skewed = true, .seed = 17}},
    {"KK2mn", 3, 4000, {.n_clones = 300, .bands_in_clone = 20, .skewed = true, .seed = 18}},
    {"KK2mn, bins, excluded bands",
     3,
     2000,
     {.n_clones = 300, .bands_in_clone = 20, .bin_numbers = true, .seed = 19},
     true,
     0.1},
    {"SulstonFrec", 13, 6, {.n_clones = 300, .bands_in_clone = 30, .skewed = true, .seed = 20}},
    {"SulstonFrec, excluded bands", 13, 4, {.n_clones = 300, .bands_in_clone = 30, .seed = 21}, true, 0.04},
    {"Nof, sizes outside", 1, 9, {.n_clones = 540, .bands_in_clone = 36, .seed = 25}, false, 0, true, loop_case::made},
    {"Nof, read", 1, 5, {.n_clones = 300, .bands_in_clone = 30, .seed = 26}, false, 0, true, loop_case::read},
    {"Nof, everything is kept",
     1,
     0,
     {.n_clones = 60, .bands_in_clone = 20, .seed = 27},
     false,
     0,
     false,
     loop_case::made},
    {"Lnn", 2, 8, {.n_clones = 540, .bands_in_clone = 30, .seed = 28}, false, 0, true, loop_case::read},
    {"Lnn with simulated counts, excluded bands",
     2,
     5,
     {.n_clones = 200, .bands_in_clone = 30, .skewed = true, .seed = 29},
     false,
     0.04,
     false,
     loop_case::made},
    {"LnnSulston", 8, 2, {.n_clones = 25, .bands_in_clone = 8, .seed = 22}, true, 0, false},
};

using rows = std::vector<std::vector<pair_record>>;

bool operator_equal(const pair_record &a, const pair_record &b) {
  return a.partner == b.partner && a.value == b.value && a.code == b.code && a.code_mirrored == b.code_mirrored;
}

rows rows_of(net_fixture &f, const loop_case &c, const pair_elements &elements, row_partners partners,
             std::int32_t first, int threads, const scan_path *path) {
  class_clone_dist_FPC significant;
  significant.fill_sulston_significant_table(c.cutoff, class_clone_dist_FPC::proposed_table_size(f.database),
                                             f.database, f.usable_values);
  pair_kernel kernel(f.context, rule_of_metric(c.metric, c.cutoff), c.preprocessed ? &significant : nullptr, threads);
  EXPECT_EQ(kernel.least_common().exists(), c.limited);
  overlap_rows made(kernel, elements, partners, threads, path);
  rows all(static_cast<std::size_t>(elements.count()) + 1);
  std::int32_t next = first;
  EXPECT_TRUE(made.run(
      first,
      [&](std::int32_t begin, std::int32_t last) {
        EXPECT_EQ(begin, next);
        next = last + 1;
        for (std::int32_t e = begin; e <= last; ++e)
          all[static_cast<std::size_t>(e)].assign(made.row(e).begin(), made.row(e).end());
        return true;
      },
      [](std::int64_t) { return true; }));
  EXPECT_EQ(next, elements.count() + 1);
  return all;
}

void expect_same(const rows &found, const rows &expected) {
  ASSERT_EQ(found.size(), expected.size());
  for (std::size_t e = 1; e < found.size(); ++e)
    ASSERT_TRUE(std::equal(found[e].begin(), found[e].end(), expected[e].begin(), expected[e].end(), operator_equal))
        << "row " << e;
}

TEST(pair_loop, the_scan_keeps_the_pairs_of_the_plain_kernel_on_every_path) {
  for (const loop_case &c : loop_cases) {
    SCOPED_TRACE(c.what);
    net_fixture f(c.library);
    make_tables(f, c);
    if (c.excluded > 0) {
      random_source chance(1);
      f.usable_values.create_band_is_not_excluded(f.frame, c.excluded, f.database, chance);
    }
    if (c.metric == family::DISTANCE_INDEX_k2_frac_mn_Markers_get()) {
      number_list numbers;
      std::vector<bool> is_new;
      f.database.markers().redim_private_arrays(f.database.total_number_of_clones_get(), 9, 99);
      for (clone_number clone = 3; clone <= 300; clone += 7)
        f.database.markers().add_clone_with_markers_new(f.frame, clone, {"", "a", clone % 2 ? "b" : "c"}, 2, numbers,
                                                        is_new);
      f.database.markers().finish_of_adding();
    }
    const pair_elements elements = pair_elements::of_library(f.database, f.database.IsDBContainRepeatsCloneNames_get());
    const std::int32_t n = elements.count();
    for (const row_partners partners : {row_partners::of_higher_number, row_partners::all}) {
      const rows expected = rows_of(f, c, elements, partners, 1, 2, nullptr);
      if (partners == row_partners::all) { // rows from a later one on
        rows tail = expected;
        const std::int32_t start = n - n / 3;
        std::fill(tail.begin(), tail.begin() + start, std::vector<pair_record>());
        expect_same(rows_of(f, c, elements, partners, start, 2, &best_scan_path()), tail);
      }
      std::size_t n_kept = 0;
      for (const auto &row : expected)
        n_kept += row.size();
      EXPECT_GT(n_kept, 0u);
      for (const scan_path &path : all_scan_paths()) {
        if (!path.runs_here())
          continue;
        SCOPED_TRACE(path.name);
        const bool best = path.scan == best_scan_path().scan;
        for (const int threads : {1, 2})
          if (best || threads == 1)
            expect_same(rows_of(f, c, elements, partners, 1, threads, &path), expected);
      }
    }
  }
}

TEST(pair_loop, bands_at_the_ends_of_the_axis_and_equal_bands) {
  net_fixture f({.n_clones = 600, .bands_in_clone = 4, .gel_length = 1000});
  random_source chance(3);
  const band_value ends[] = {1, 1, 2, 13, 14, 987, 988, 999, 1000, 1000};
  f.database.inicalise_database(f.frame, 600, 600 * 500);
  std::vector<band_value> bands;
  for (clone_number clone = 1; clone <= 600; ++clone) {
    bands.clear();
    for (std::int32_t i = chance.number_up_to(9); i > 0; --i)
      bands.push_back(ends[chance.number_up_to(10) - 1]);
    std::sort(bands.begin(), bands.end());
    f.database.name_of_clone_set(clone, "E" + std::to_string(1000 + clone));
    f.database.ListOfBands_from_real_database_fast_all_bands_set(clone, bands);
  }
  f.database.total_number_of_clones_set(600);
  f.database.sort_clones_by_name(f.frame);
  make_band_statistics(f.frame, f.database, f.usable_values);
  const loop_case c{"", 4, 7, {}};
  const pair_elements elements = pair_elements::of_library(f.database, false);
  const rows expected = rows_of(f, c, elements, row_partners::all, 1, 1, nullptr);
  for (const scan_path &path : all_scan_paths())
    if (path.runs_here())
      expect_same(rows_of(f, c, elements, row_partners::all, 1, 2, &path), expected);
}

// The scan alone, bit by bit: random rows, lists with repeats, least counts from 1 to all of a clone's bands.
TEST(pair_loop, every_path_counts_the_bits_of_the_rows) {
  random_source chance(7);
  constexpr std::size_t n_rows = 40;
  struct alignas(64) row {
    std::uint64_t words[words_of_row];
  };
  std::vector<row> table(n_rows);
  for (std::size_t r = 1; r < n_rows; ++r) // row 0 stays empty
    for (std::uint64_t &word : table[r].words)
      for (int bit = 0; bit < 64; ++bit)
        word |= std::uint64_t{chance.uniform() < 0.05 * static_cast<double>(r % 20)} << bit;
  for (const std::int32_t n_bands : {1, 7, 8, 9, 63, 64, 65, 120, 127, 129, 500, 511, 513, 1300}) {
    std::vector<std::uint16_t> words, kinds;
    std::vector<std::uint32_t> first;
    std::vector<scan_plan> plans;
    const std::int32_t n_padded = (n_bands + 7) / 8 * 8;
    for (std::uint16_t clone = 0; clone < 12; ++clone) {
      first.push_back(static_cast<std::uint32_t>(words.size()));
      for (std::int32_t i = 0; i < n_padded; ++i)
        words.push_back(i < n_bands ? static_cast<std::uint16_t>(words_of_row * chance.number_up_to(n_rows - 1)) : 0);
      kinds.push_back(clone);
      plans.push_back({clone == 5, n_padded, clone == 6 ? 0 : chance.number_up_to(n_bands)});
    }
    const scan_task task{table.front().words, words.data(), first.data(), kinds.data(), plans.data(), 0, 11};
    std::vector<scan_survivor> expected;
    for (std::int32_t clone = 0; clone < 12; ++clone) {
      const auto c = static_cast<std::size_t>(clone);
      scan_survivor survivor{clone, {}};
      bool some = false;
      for (std::size_t p = 0; p < partners_of_block && !plans[c].out; ++p) {
        std::int32_t count = 0;
        for (std::int32_t i = 0; i < n_bands; ++i)
          count +=
              (table[words[first[c] + static_cast<std::size_t>(i)] / words_of_row].words[p / 64] >> p % 64 & 1) != 0;
        if (count >= plans[c].least) {
          survivor.partners[p / 64] |= std::uint64_t{1} << p % 64;
          some = true;
        }
      }
      if (some)
        expected.push_back(survivor);
    }
    for (const scan_path &path : all_scan_paths()) {
      if (!path.runs_here())
        continue;
      SCOPED_TRACE(std::string(path.name) + " " + std::to_string(n_bands));
      std::vector<scan_survivor> found(12);
      found.resize(static_cast<std::size_t>(path.scan(task, found.data())));
      ASSERT_EQ(found.size(), expected.size());
      for (std::size_t i = 0; i < found.size(); ++i) {
        EXPECT_EQ(found[i].clone, expected[i].clone);
        EXPECT_TRUE(std::equal(found[i].partners, found[i].partners + words_of_row, expected[i].partners));
      }
    }
  }
}

// The least count is the first k whose score reaches the cutoff, by trying all of them.
TEST(pair_loop, least_counts_are_those_of_a_search_from_1) {
  struct {
    std::int16_t metric;
    std::vector<double> cutoffs;
  } const metrics[] = {{family::DISTANCE_INDEX_Sulston_1988_get(), {0.5, 1, 4.7, 15, 60}},
                       {family::DISTANCE_INDEX_Soderlund_1997_get(), {0.5, 1, 15, 60}},
                       {family::DISTANCE_INDEX_k2_frac_mn_get(), {1e-9, 4.5, 250, 1000, 1001}}};
  for (const bool skewed : {false, true})
    for (const std::int16_t t : {std::int16_t{0}, std::int16_t{12}, std::int16_t{200}}) {
      net_fixture f({.n_clones = 20, .bands_in_clone = 60, .skewed = skewed, .tolerance = t});
      for (const auto &[metric, cutoffs] : metrics)
        for (const double cutoff : cutoffs) {
          const least_common_bands least(f.context, metric, cutoff, nullptr, 0);
          ASSERT_TRUE(least.exists());
          for (const std::int32_t n1 : {0, 1, 2, 3, 10, 40, 90, 215})
            for (const std::int32_t n2 : {0, 1, 5, 41, 90, 200}) {
              std::int32_t k = 1;
              for (; k <= std::min(n1, n2); ++k) {
                pair_counts counts{n1, n2, static_cast<double>(k), static_cast<double>(k), 0, 0};
                if (score_of_counts(counts, 0, metric, f.database, f.usable_values, f.table, nullptr) >= cutoff)
                  break;
              }
              EXPECT_EQ(least(n1, n2), k) << "metric " << metric << " cutoff " << cutoff << " n " << n1 << " " << n2;
            }
        }
    }
  net_fixture f({.n_clones = 20});
  EXPECT_FALSE(least_common_bands(f.context, 4, 0.3, nullptr, 0).exists());
  EXPECT_FALSE(least_common_bands(f.context, 5, 0.3, nullptr, 0).exists());
  EXPECT_FALSE(least_common_bands(f.context, 0, 0, nullptr, 0).exists());
}

TEST(pair_loop, stops_between_chunks_and_within) {
  net_fixture f({.n_clones = 9000, .bands_in_clone = 10});
  class_clone_dist_FPC significant;
  significant.fill_sulston_significant_table(8, 215, f.database, f.usable_values);
  pair_kernel kernel(f.context, rule_of_metric(4, 8), &significant, 2);
  const pair_elements elements = pair_elements::of_library(f.database, false);
  for (const int stop_at : {1, 2, 3}) {
    overlap_rows made(kernel, elements, row_partners::all, 2);
    int asked = 0;
    std::int32_t done = 0;
    const bool completed = made.run(
        1, [&](std::int32_t, std::int32_t last) { return done = last, true; },
        [&](std::int64_t) { return ++asked < stop_at; });
    EXPECT_FALSE(completed);
    EXPECT_EQ(asked, stop_at);
    EXPECT_LT(done, 9000);
  }
  // Without a scan a single row can take long.
  pair_kernel slow(f.context, rule_of_metric(family::DISTANCE_INDEX_LnnSulston_get(), 8), nullptr, 2);
  overlap_rows made(slow, elements, row_partners::all, 2);
  EXPECT_FALSE(made.run(
      1, [](std::int32_t, std::int32_t) { return true; }, [](std::int64_t) { return false; }));
}

// The half comes in several parts; the whole holds each of its records at both ends and no other.
TEST(half_net, becomes_the_whole) {
  net_fixture f({.n_clones = 5000, .bands_in_clone = 4, .seed = 2});
  pair_kernel kernel(f.context, rule_of_metric(4, 3), nullptr, 2);
  const pair_elements elements = pair_elements::of_library(f.database, false);
  overlap_rows made(kernel, elements, row_partners::of_higher_number, 2);
  half_net half;
  int n_parts = 0;
  ASSERT_TRUE(half.compare(
      made, 5000, [&](std::int32_t, std::int32_t) { return ++n_parts > 0; }, [](std::int64_t) { return true; }));
  EXPECT_GT(n_parts, 2);
  std::map<std::pair<vertex_number, vertex_number>, std::pair<double, std::int16_t>> wanted, got;
  for (vertex_number v = 1; v <= 5000; ++v)
    for (const pair_record &record : half.row(v)) {
      wanted[{v, record.partner}] = {-record.value, record.code};
      wanted[{record.partner, v}] = {-record.value, record.code_mirrored};
    }
  class_net net;
  half_net broken_off = half;
  EXPECT_EQ(broken_off.mirrored_into(net, {}, [] { return false; }), half_net::mirror_end::stopped);
  EXPECT_EQ(net.number_of_vertices_get(), 0);
  EXPECT_EQ(half.mirrored_into(
                net, [](double value) { return -value; }, [] { return true; }),
            half_net::mirror_end::done);
  for (vertex_number v = 1; v <= net.number_of_vertices_get(); ++v)
    for (const net_edge &edge : net.edges_of_vertex(v))
      got[{v, edge.neighbour}] = {edge.value, edge.index2};
  EXPECT_GT(wanted.size(), 1000U);
  EXPECT_EQ(static_cast<std::size_t>(net.number_of_edges_get()), wanted.size());
  EXPECT_TRUE(got == wanted);
  EXPECT_TRUE(net.neighbours_are_sorted_get());
}

} // namespace
} // namespace orb
