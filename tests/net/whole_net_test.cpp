// The net of a whole library: against a naive double loop, in memory and through text, in parts and resumed.
#include <gtest/gtest.h>

#include <algorithm>

#include "frame/class_serv_raznoe.h"
#include "frame/numbers.h"
#include "metrics/class_clone_text_distance.h"
#include "support/net_fixture.h"

namespace orb {
namespace {

double two_decimals(double value) {
  number_parse(number_text(value, 2), value);
  return value;
}

// Each pair by itself, each direction by itself, versions of a name united when the library has any.
class_net naive_net(net_fixture &f) {
  const auto &database = f.database;
  const std::int32_t n = database.total_number_of_clones_get();
  const auto versions = [&](clone_number i) {
    const std::int32_t count = database.IsDBContainRepeatsCloneNames_get() ? database.nRepeatsCloneName_get(i) : 1;
    if (count < 1)
      return number_list();
    return count == 1 ? number_list({i}) : database.clone_number_get_with_repeats(database.name_of_clone_get(i));
  };
  class_clone_dist_calc calc(f.context);
  auto table = std::make_shared<class_clone_dist_FPC>();
  table->fill_sulston_significant_table(f.rule.cutoff, 215, database, f.usable_values);
  calc.FPC_member_set(table);
  calc.FPC_table_defined_set(true); // what lies below the table scores 0, which matters where 0 is significant
  class_net net;
  net.inicializate_net(n, n);
  for (clone_number i = 1; i <= n; ++i) {
    net.add_vertex_fast(0);
    for (clone_number j = 1; j <= n; ++j) {
      if (i == j)
        continue;
      double best = -1e300;
      std::int16_t code = 0;
      const number_list versions_i = versions(i), versions_j = versions(j);
      for (const clone_number a : versions_i.members())
        for (const clone_number b : versions_j.members()) {
          const double value = calc.minus_log10_p_value_of_clone_overlapping(a, b, f.rule.distance_index);
          if (value < best)
            continue;
          best = value;
          code = calc.burring_index_get(f.rule.burying);
        }
      if (best >= f.rule.cutoff)
        net.add_edge_fast(i, j, two_decimals(best), 0, code);
    }
  }
  net.finish_of_adding();
  return net;
}

struct library_case {
  const char *what;
  std::int16_t metric;
  double cutoff;
  generated_library library;
  double excluded = 0; // excluded bands as a share of all band positions
};

const library_case library_cases[] = {
    {"Sulston", 4, 5, {.n_clones = 90, .bands_in_clone = 30}},
    {"Sulston, bins", 4, 5, {.n_clones = 90, .bands_in_clone = 30, .bin_numbers = true, .seed = 2}},
    {"Sulston, tolerance 0",
     4,
     3,
     {.n_clones = 60, .bands_in_clone = 30, .tolerance = 0, .measuring_error = 0, .seed = 3}},
    {"Sulston, clones without bands", 4, 2, {.n_clones = 60, .bands_in_clone = 2, .skewed = true, .seed = 4}},
    {"Sulston, everything is kept", 4, 0, {.n_clones = 30, .bands_in_clone = 4, .seed = 5}},
    {"Sulston, repeated names", 4, 4, {.n_clones = 90, .bands_in_clone = 30, .seed = 6, .n_names = 40}},
    {"Sulston, excluded bands", 4, 4, {.n_clones = 60, .bands_in_clone = 30, .seed = 7}, 0.04},
    {"k2mn, ties between versions",
     0,
     150,
     {.n_clones = 80, .bands_in_clone = 6, .measuring_error = 1, .seed = 8, .n_names = 30}},
    {"Soderlund", 5, 2, {.n_clones = 40, .bands_in_clone = 30, .skewed = true, .seed = 9}},
    {"KK2mn", 3, 1500, {.n_clones = 60, .bands_in_clone = 20, .skewed = true, .seed = 10}},
    {"SulstonFrec", 13, 6, {.n_clones = 60, .bands_in_clone = 30, .skewed = true, .seed = 11}},
    {"SulstonFrec, excluded bands", 13, 4, {.n_clones = 60, .bands_in_clone = 30, .seed = 12}, 0.04},
    {"LnnSulston", 8, 2, {.n_clones = 25, .bands_in_clone = 8, .seed = 13}},
    {"KK2mn, bins", 3, 1000, {.n_clones = 50, .bands_in_clone = 20, .bin_numbers = true, .seed = 14}},
};

TEST(whole_net, memory_equals_text_equals_the_double_loop_for_any_number_of_threads) {
  for (const library_case &c : library_cases) {
    SCOPED_TRACE(c.what);
    net_fixture f(c.library);
    f.rule = rule_of_metric(c.metric, c.cutoff);
    if (c.excluded > 0) {
      random_source chance(1);
      f.usable_values.create_band_is_not_excluded(f.frame, c.excluded, f.database, chance);
    }
    const class_net naive = naive_net(f);
    EXPECT_GT(naive.number_of_edges_get(), 0);
    const std::string expected = f.native_bytes(naive);
    for (const int threads : {1, 4}) {
      f.settings.threads = threads;
      net_creation_summary summary;
      f.progress.clear();
      ASSERT_TRUE(f.signif.create_net_in_memory(f.rule, summary));
      const std::int64_t n = f.database.total_number_of_clones_get(), n_pairs = n * (n - 1) / 2;
      EXPECT_TRUE(std::is_sorted(f.progress.begin(), f.progress.end()));
      EXPECT_EQ(f.progress.back(), std::pair(n_pairs, n_pairs));
      EXPECT_TRUE(f.signif.net().neighbours_are_sorted_get());
      EXPECT_TRUE(f.settings.same_metric_as_net);
      EXPECT_TRUE(f.native_bytes(f.signif.net()) == expected) << threads << " threads";
    }
    f.settings.use_file_with_connections = false;
    f.answer_always("Do you want to load", "yes");
    f.answer_always("Save net of significant", (f.folder / "saved.ORBns").string());
    net_creation_summary summary;
    ASSERT_TRUE(f.signif.create_file_with_significant_connections(f.rule, {f.folder / "net.txt", 1}, summary));
    EXPECT_TRUE(f.settings.use_file_with_connections);
    EXPECT_TRUE(file_bytes(f.folder / "saved.ORBns") == expected);
    EXPECT_TRUE(f.native_bytes(f.signif.net()) == expected);
    const bool repeats = f.database.IsDBContainRepeatsCloneNames_get();
    EXPECT_EQ(
        std::count_if(f.record.questions.begin(), f.record.questions.end(),
                      [](const std::string &text) { return text.starts_with("NB! your database contains several"); }),
        repeats ? 3 : 0);
  }
}

// Weights go by the rule of each call: after a metric of abundances and a table with columns of weights the net of
// another metric is the one from before, and isn't even touched by a band without a frequency, which ends all weighing.
TEST(whole_net, weights_follow_the_rule_and_not_what_was_compared_before) {
  net_fixture f({.n_clones = 520, .bands_in_clone = 12, .skewed = true, .seed = 15});
  const overlap_rule plain = rule_of_metric(class_clone_dist_general::DISTANCE_INDEX_Sulston_1988_get(), 6),
                     weighted = rule_of_metric(class_clone_dist_general::DISTANCE_INDEX_KK2_frac_mn_get(), 1500);
  EXPECT_FALSE(plain.weights);
  EXPECT_TRUE(weighted.weights);
  const number_list few = number_list::range(1, 60), many = number_list::range(1, 510); // pair by pair; all cores
  const auto nets_of = [&](const overlap_rule &rule) {
    net_creation_summary summary;
    f.settings.use_file_with_connections = false;
    EXPECT_TRUE(f.signif.create_net_in_memory(rule, summary));
    std::vector<std::string> bytes{f.native_bytes(f.signif.net())};
    f.settings.use_file_with_connections = false;
    for (const number_list &list : {few, many}) {
      class_net net;
      number_list places;
      f.signif.create_net_general_run(list, rule, net, places);
      bytes.push_back(f.native_bytes(net));
      f.signif.create_net_without_using_previous_net(list, list.count(), rule.distance_index, rule.cutoff, rule.burying,
                                                     net);
      EXPECT_TRUE(f.native_bytes(net) == bytes.back());
    }
    return bytes;
  };
  const std::vector<std::string> plain_first = nets_of(plain), weighted_after = nets_of(weighted);
  class_clone_text_distance::table_format_select(f.settings, 3);
  class_clone_text_distance(f.context, plain).text_of_distance(1, 2);
  EXPECT_TRUE(nets_of(plain) == plain_first);
  EXPECT_TRUE(nets_of(weighted) == weighted_after);
  EXPECT_TRUE(plain_first != weighted_after);
  f.database.frecuency_of_band_in_clones_set(f.database.bands_of_clone(1)[0], 0);
  net_creation_summary summary;
  EXPECT_THROW(f.signif.create_net_in_memory(weighted, summary), program_end);
  EXPECT_THROW(f.signif.create_net_in_memory({plain.distance_index, plain.cutoff, plain.burying, true}, summary),
               program_end);
  EXPECT_TRUE(nets_of(plain) == plain_first);
}

TEST(whole_net, a_resumed_text_net_is_the_tail_of_the_whole_one) {
  net_fixture f({.n_clones = 80, .bands_in_clone = 30});
  f.rule.cutoff = 5;
  net_creation_summary summary;
  ASSERT_TRUE(f.signif.create_file_with_significant_connections(f.rule, {f.folder / "whole.txt", 1}, summary));
  const std::string whole = file_bytes(f.folder / "whole.txt");
  EXPECT_EQ(f.record.messages[0], "Pre-calculation is finished.");
  EXPECT_EQ(f.record.messages[1],
            "File with net of significant clone overlaps is created.\rMaximal significant overlaps "
            "for one clone n_max=" +
                std::to_string(summary.n_overlaps_max_found) + ".");
  f.answer_always("Start from ...", "37");
  ASSERT_TRUE(f.signif.create_file_with_significant_connections(f.rule, {f.folder / "tail.txt", 0}, summary));
  const std::string tail = file_bytes(f.folder / "tail.txt");
  EXPECT_TRUE(tail.starts_with("clone\t37\t"));
  EXPECT_TRUE(whole.ends_with(tail) && tail.size() < whole.size());
  EXPECT_TRUE(whole.starts_with("clone\t1\tC100001\t"));
  // one of the records, letter by letter
  const net_edge &edge = (f.settings.use_file_with_connections = false, f.signif.create_net_in_memory(f.rule, summary),
                          f.signif.net().edges_of_vertex(1).front());
  const std::string line = "\r\n" + std::to_string(edge.neighbour) + "\t" +
                           f.database.name_of_clone_get(edge.neighbour) + "\t" + number_text(edge.value, 2) +
                           (edge.index2 != 0 ? "\tabs" + std::to_string(edge.index2) : "") + "\r\n";
  EXPECT_EQ(whole.find(line), whole.find("\r\n"));
}

TEST(whole_net, parts_joined_equal_the_whole) {
  // Rows come from a loaded net here: 60001 clones are quick then.
  net_fixture f({.n_clones = 60001, .bands_in_clone = 2, .coverage = 0.5});
  class_net net;
  net.inicializate_net(60001, 4);
  for (vertex_number v = 1; v <= 60001; ++v) {
    net.add_vertex_fast(0);
    if (v <= 2)
      net.add_edge_fast(v, 3 - v, 15.5, 0, v == 1 ? 1 : 2);
    if (v == 1000 || v == 60001)
      net.add_edge_fast(v, 61001 - v, 20.25, 0, 0);
  }
  net.finish_of_adding();
  f.signif.net() = net;
  f.signif.net_is_loaded_set();
  net_creation_summary summary;
  ASSERT_TRUE(f.signif.create_file_with_significant_connections(f.rule, {f.folder / "whole.txt", 1}, summary));
  f.answer_always("NB! Nomber of clones N=60001 is large.\rTo optimize", "yes");
  ASSERT_TRUE(f.signif.create_file_with_significant_connections(f.rule, {f.folder / "parts.txt", 1}, summary));
  EXPECT_TRUE(file_bytes(f.folder / "parts" / "parts_61.txt").starts_with("clone\t60001\t"));
  const auto joined = class_serv_raznoe::merge_files_of_folder_sort_del_rep_run(f.frame, f.folder / "parts");
  EXPECT_TRUE(file_bytes(joined) == file_bytes(f.folder / "whole.txt"));
  // Resumed within a part: the names still sort in clone order.
  std::filesystem::remove_all(f.folder / "parts");
  ASSERT_TRUE(f.signif.create_file_with_significant_connections(f.rule, {f.folder / "parts.txt", 59000}, summary));
  EXPECT_TRUE(file_bytes(f.folder / "parts" / "parts_59_59000.txt").starts_with("clone\t59000\t"));
  EXPECT_TRUE(file_bytes(f.folder / "parts" / "parts_60.txt").starts_with("clone\t59001\t"));
}

TEST(whole_net, too_many_overlaps_are_asked_about_once_at_501) {
  struct {
    std::int32_t n_clones;
    const char *reply;
    std::size_t questions;
    bool made;
  } const cases[] = {{501, "yes", 0, true}, {502, "yes", 1, true}, {502, "no", 1, false}};
  for (const bool text : {false, true})
    for (const auto &c : cases) {
      net_fixture f({.n_clones = c.n_clones, .bands_in_clone = 2});
      f.rule.cutoff = -1; // each clone overlaps with all others
      f.answer_always("NB! clone 1 (C100001) has too many (501) significant overlaps at selected cutoff level.\r "
                      "Continue with this cutoff?",
                      c.reply);
      net_creation_summary summary;
      const bool made =
          text ? f.signif.create_file_with_significant_connections(f.rule, {f.folder / "net.txt", 1}, summary)
               : f.signif.create_net_in_memory(f.rule, summary);
      EXPECT_EQ(made, c.made);
      EXPECT_EQ(summary.completed, c.made);
      EXPECT_EQ(
          static_cast<std::size_t>(std::count_if(f.record.questions.begin(), f.record.questions.end(),
                                                 [](const std::string &q) { return q.starts_with("NB! clone"); })),
          c.questions);
      const std::string &last = f.record.messages.back();
      if (!c.made) {
        EXPECT_EQ(last, "NB! Process was stopped!");
        EXPECT_EQ(f.signif.net().number_of_vertices_get(), 0);
      } else if (c.n_clones == 502) {
        EXPECT_TRUE(last.ends_with("n_max=501.\rIn total, 502 clones with more than 500 significant overlaps were "
                                   "found.\rYou can continue, but we recommend to be careful with these clones\r(say, "
                                   "try to exlude them or increase cutoff stringency)."));
      } else {
        EXPECT_TRUE(last.ends_with("n_max=500."));
      }
    }
}

TEST(whole_net, a_stop_keeps_the_old_net_and_what_was_written) {
  net_fixture f({.n_clones = 700, .bands_in_clone = 30});
  net_creation_summary summary;
  f.frame.process_start("x");
  front_end stopping = null_front_end();
  process_frame *frame = nullptr;
  stopping.panel_set = [&](panel which, const std::string &text, panel_colour) {
    if (which == panel::local_process && text.ends_with(" from 700"))
      frame->stop_requested_set(true);
  };
  process_frame stopped(stopping);
  stopped.working_folder_set(f.folder);
  frame = &stopped;
  metric_context context{stopped, f.settings, f.database, f.usable_values, f.table};
  class_clone_net_signif signif(context);
  EXPECT_FALSE(signif.create_net_in_memory(f.rule, summary));
  EXPECT_FALSE(summary.completed);
  EXPECT_EQ(signif.net().number_of_vertices_get(), 0);
  EXPECT_TRUE(stopped.was_stopped());
  EXPECT_FALSE(signif.create_file_with_significant_connections(f.rule, {f.folder / "net.txt", 1}, summary));
  EXPECT_TRUE(file_bytes(f.folder / "net.txt").starts_with("clone\t1\t"));
  EXPECT_FALSE(f.settings.use_file_with_connections);
}

} // namespace
} // namespace orb
