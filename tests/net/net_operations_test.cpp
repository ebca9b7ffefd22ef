// Contaminations, nets derived from the current one, the text of a net, clones around a list.
#include <algorithm>
#include <gtest/gtest.h>
#include <map>

#include "database/class_markers.h"
#include "net/clone_net_questions.h"
#include "net/contamination.h"
#include "net/derived_nets.h"
#include "net/net_as_text.h"
#include "net/pair_by_rule.h"
#include "net/relevant_clones.h"
#include "support/net_fixture.h"
#include "support/net_helpers.h"

namespace orb {
namespace {

using orb_test::same_records;

void name_clones(net_fixture &f, const std::vector<std::string> &names) {
  for (std::size_t i = 0; i < names.size(); ++i)
    f.database.name_of_clone_set(static_cast<clone_number>(i) + 1, names[i]);
  f.database.sort_clones_by_name(f.frame);
  f.record = {};
}

// Every edge by itself, the name taken apart with text functions.
std::vector<std::string> plainly_contaminated(const net_fixture &f, double cutoff, int max) {
  std::set<clone_number> marked;
  const auto name_of = [&](clone_number c) { return f.database.name_of_clone_get(c); };
  const auto column = [](const std::string &name) { return std::atoi(name.substr(name.size() - 2).c_str()); };
  for (const auto &[pair, edge] : orb_test::edges_of(f.signif.net())) {
    const std::string a = name_of(pair.first), b = name_of(pair.second);
    if (edge.value >= cutoff && a != b && a.size() > 2 && b.size() > 2 &&
        a.substr(0, a.size() - 3) == b.substr(0, b.size() - 3) && std::abs(a[a.size() - 3] - b[b.size() - 3]) <= max &&
        std::abs(column(a) - column(b)) <= max)
      marked.insert({pair.first, pair.second});
  }
  std::vector<std::string> names;
  for (const clone_number c : marked)
    names.push_back(name_of(c));
  return names;
}

TEST(contamination, neighbouring_wells_of_one_plate) {
  random_source chance(3);
  for (int run = 0; run < 20; ++run) {
    net_fixture f({.n_clones = 30, .bands_in_clone = 4});
    std::vector<std::string> names;
    for (int i = 1; i <= 30; ++i) {
      const std::string column = std::to_string(100 + chance.number_up_to(24)).substr(1);
      names.push_back((chance.uniform() < 0.1 ? "" : "00" + std::to_string(chance.number_up_to(2))) +
                      std::string(1, static_cast<char>('A' + chance.number_up_to(16) - 1)) + column);
    }
    name_clones(f, names);
    std::vector<plain_edge> edges;
    for (vertex_number a = 1; a <= 30; ++a)
      for (vertex_number b = a + 1; b <= 30; ++b)
        if (chance.uniform() < 0.3)
          edges.push_back({a, b, 15.0 + chance.number_up_to(10)});
    f.signif.net() = net_of_edges(30, edges);
    contamination_result result;
    ASSERT_TRUE(search_for_contamination(f.signif, {18, 4, {}}, result));
    std::string expected;
    for (const std::string &name : plainly_contaminated(f, 18, 4))
      expected += name + "\r\n";
    EXPECT_EQ(file_bytes(f.folder / "cl_contominat_18.00_4.txt"), expected);
  }
}

TEST(contamination, texts_and_defaults) {
  net_fixture f({.n_clones = 6, .bands_in_clone = 4});
  name_clones(f, {"007A05", "007B10", "007B11", "A05", "A06", "007Axx"});
  f.signif.net() = net_of_edges(6, {{1, 2, 16.004}, {1, 3}, {4, 5}, {1, 6}});
  contamination_result result;
  ASSERT_TRUE(search_for_contamination(f.signif, {}, result));
  EXPECT_EQ(f.record.questions, (std::vector<std::string>{"Cutoff for overlap:", "Max dist between wells:"}));
  const std::string form = "Currently clone name is: .....<letter><cifra><cifra>, e.g., 007A05";
  EXPECT_EQ(f.record.messages, std::vector<std::string>{form}); // the rounded proposal isn't a lower cutoff
  EXPECT_EQ(result.clones, (number_list{1, 2, 4, 5}));          // wells alone lie on one plate, the one without a name
  f.record = {};
  ASSERT_TRUE(search_for_contamination(f.signif, {10, 0.5, f.folder / "c.txt"}, result));
  EXPECT_EQ(f.record.messages,
            (std::vector<std::string>{
                "Cutoff was not changed (should be at least equal to the most weak overlap in the net)!",
                "maxDist was not changed (should be at least equal to 1)!", form}));
  EXPECT_EQ(file_bytes(f.folder / "c.txt"), "007A05\r\n007B10\r\nA05\r\nA06\r\n");
  f.frame.stop_requested_set(true);
  EXPECT_FALSE(search_for_contamination(f.signif, {10, 6, f.folder / "d.txt"}, result));
  EXPECT_FALSE(std::filesystem::exists(f.folder / "d.txt"));
}

TEST(net_as_text, bytes_of_the_pair_loop) {
  net_fixture f({.n_clones = 120, .bands_in_clone = 20});
  class_net net;
  f.signif.create_net_without_using_previous_net(number_list::range(1, 120), 120, 4, 5, 0.5, net);
  f.signif.net() = net;
  f.signif.net_is_loaded_set();
  net_creation_summary summary;
  ASSERT_TRUE(
      f.signif.create_file_with_significant_connections(rule_of_metric(4, 7), {f.folder / "loop.txt", 1}, summary));
  std::filesystem::path file = f.folder / "net.txt";
  ASSERT_TRUE(save_net_as_text_net(f.context, net, {4, 7}, file));
  const std::string bytes = file_bytes(file);
  EXPECT_EQ(bytes, file_bytes(f.folder / "loop.txt"));
  EXPECT_NE(bytes.find("\tabs"), std::string::npos);
  file.clear();
  f.answer_always("Print significant overlaps to text file", "");
  EXPECT_FALSE(save_net_as_text_net(f.context, net, {4, 7}, file));
  file = f.folder / "stopped.txt";
  f.frame.stop_requested_set(true);
  EXPECT_FALSE(save_net_as_text_net(f.context, net, {4, 7}, file));
  EXPECT_FALSE(std::filesystem::exists(file));
}

TEST(derived_nets, by_another_rule) {
  net_fixture f({.n_clones = 60, .bands_in_clone = 20});
  class_markers &markers = f.database.markers();
  number_list numbers;
  std::vector<bool> is_new;
  markers.redim_private_arrays(60, 1, 2);
  for (const clone_number clone : {1, 60})
    markers.add_clone_with_markers_new(f.frame, clone, {"", "m"}, 1, numbers, is_new);
  markers.finish_of_adding();
  const number_list all = number_list::range(1, 60);
  class_net low, high, made;
  const overlap_rule strict{4, 9};
  f.signif.create_net_without_using_previous_net(all, 60, 4, 4, 0.9, low);
  f.signif.create_net_without_using_previous_net(all, 60, 4, 9, 0.9, high);
  ASSERT_TRUE(create_net_by_rule(f.signif, low, strict, {}, made));
  EXPECT_TRUE(same_records(made, high));
  // The share of common bands as the other metric: its values of the pairs that the first one joined, and no others.
  const overlap_rule share{0, 100};
  ASSERT_TRUE(create_net_by_rule(f.signif, low, share, {false, false}, made));
  pair_by_rule pair(f.context, share);
  orb_test::edge_map expected;
  for (const auto &[ends, edge] : orb_test::edges_of(low)) {
    net_edge anew = edge;
    if (pair.overlaps(ends.first, ends.second, anew.value, anew.index2))
      expected[ends] = anew;
  }
  EXPECT_TRUE(same_records(made, [&] {
    class_net net;
    net.inicializate_net(60, 1);
    for (vertex_number v = 1; v <= 60; ++v) {
      net.add_vertex_fast(0);
      for (const auto &[ends, edge] : expected)
        if (ends.first == v)
          net.add_edge_fast(v, ends.second, edge.value, edge.index1, edge.index2);
    }
    net.finish_of_adding();
    return net;
  }()));
  EXPECT_LT(made.number_of_edges_get(), low.number_of_edges_get());
  // A pair with a common marker needn't be in the net.
  class_net weak_only = net_of_edges(60, {});
  ASSERT_TRUE(create_net_by_rule(f.signif, weak_only, {4, 0}, {true, true}, made));
  EXPECT_EQ(made.number_of_edges_get(), 2);
  EXPECT_EQ(made.edges_of_vertex(60)[0].neighbour, 1);
  ASSERT_TRUE(create_net_by_rule(f.signif, weak_only, {0, 0}, {false, true}, made)); // likewise by another metric
  EXPECT_EQ(made.number_of_edges_get(), 2);
  f.frame.stop_requested_set(true);
  EXPECT_FALSE(create_net_by_rule(f.signif, low, strict, {}, made));
  EXPECT_EQ(made.number_of_edges_get(), 2);
}

TEST(derived_nets, saved_and_the_current_one_stays) {
  net_fixture f({.n_clones = 6, .bands_in_clone = 6});
  f.signif.net() = net_of_edges(6, {{1, 2}, {1, 3}, {2, 3, 30}, {3, 4, 31}, {4, 5}});
  f.signif.net().change_vertex_index(1, -1);
  f.signif.net_is_loaded_set();
  std::filesystem::path file;
  const auto saved = [&] {
    class_net net;
    bool ok = false;
    net.read_net_type(f.frame, file, ok, 6);
    EXPECT_TRUE(ok);
    return net;
  };
  f.answer_always("Save net of significant clone overlaps in the ORB-specific format", (f.folder / "a.ORBns").string());
  ASSERT_TRUE(create_subnet_significant_connections_type(f.signif, {4, 30}, file));
  EXPECT_EQ(file, f.folder / "a.ORBns");
  EXPECT_EQ(saved().number_of_edges_get(), 4); // 2-3, 3-4
  file = f.folder / "b.ORBns";
  ASSERT_TRUE(create_sub_net_list_disconnect(f.signif, {3, 77}, file));
  const class_net without = saved();
  EXPECT_EQ(without.number_of_edges_get(), 4); // 1-2, 4-5: the marked clone 1 keeps its overlap
  EXPECT_EQ(without.index_of_vertex_get(3), -2);
  EXPECT_EQ(
      std::count(f.record.log.begin(), f.record.log.end(),
                 "Net of significant clone overlaps without disconnected clones saved\r\n\tto file " + file.string()),
      1);
  EXPECT_EQ(f.signif.net().number_of_edges_get(), 10);
}

TEST(relevant_clones, ranks_are_those_of_plain_walks) {
  random_source chance(5);
  net_fixture f({.n_clones = 40, .bands_in_clone = 4});
  for (int run = 0; run < 30; ++run) {
    const class_net net = orb_test::net_of(38, orb_test::random_edges(38, 40, 5, 3, chance));
    const std::set<vertex_number> start{chance.number_up_to(38), chance.number_up_to(38)};
    const int n_rank = run % 5 - 1;
    const bool use_cutoff = run % 2 == 1;
    number_list list, ranks, expected, expected_ranks, start_list{*start.rbegin(), *start.begin(), *start.begin()};
    const auto plain = orb_test::plain_ranks(net, start, std::max(n_rank, 0), use_cutoff, 15);
    for (vertex_number v = 1; v <= 38 && n_rank >= 0; ++v)
      if (plain[static_cast<std::size_t>(v)] >= 0) {
        expected.add(v);
        expected_ranks.add(plain[static_cast<std::size_t>(v)]);
      }
    if (n_rank >= 0) { // a clone that the net lacks
      start_list.add(40);
      expected.add(40);
      expected_ranks.add(0);
    }
    if (use_cutoff)
      create_relevant_clones_using_net2(f.context, start_list, n_rank, 15, false, net, list, ranks);
    else
      create_relevant_clones_using_net(f.context, start_list, n_rank, false, net, list, ranks);
    EXPECT_EQ(list, expected);
    EXPECT_EQ(ranks, expected_ranks);
  }
  number_list list, ranks;
  const auto file = create_relevant_clones_using_net(f.context, {3, 1}, 0, true, net_of_edges(40, {}), list, ranks);
  EXPECT_EQ(file, f.folder / "found_clones_Nof_1.00_relevants_plus1.txt");
  EXPECT_EQ(file_bytes(file), f.database.name_of_clone_get(1) + "\r\n" + f.database.name_of_clone_get(3) + "\r\n");
}

// The passes as they are told, every pair compared anew.
void plain_pumping(const net_fixture &f, const overlap_rule &rule, const pumping_options &options, number_list &list,
                   number_list &step) {
  pair_by_rule pair(f.context, rule);
  for (const clone_number clone : options.start_list.members()) {
    list.add(clone);
    step.add(0);
  }
  const number_list candidates =
      options.candidates.value_or(number_list::range(1, f.database.total_number_of_clones_get()));
  const auto has = [](const number_list &in, clone_number clone) {
    return std::find(in.members().begin(), in.members().end(), clone) != in.members().end();
  };
  for (bool added = true; added;) {
    added = false;
    for (const clone_number clone : candidates.members()) {
      std::int32_t found = -1;
      for (std::int32_t i = 1; i <= list.count() && !has(list, clone) && !has(options.black_list, clone); ++i) {
        if (options.n_rank_limit >= 0 && step(i) >= options.n_rank_limit)
          continue;
        if (!pair.overlaps(clone, list(i)))
          continue;
        if (found < 0 || (options.n_rank_limit >= 0 && step(i) + 1 < found))
          found = step(i) + 1;
      }
      if (found < 0)
        continue;
      list.add(clone);
      step.add(found);
      added = true;
      break;
    }
  }
}

TEST(pumping, finds_what_the_plain_passes_find) {
  const overlap_rule rule{4, 6};
  for (int run = 0; run < 16; ++run) {
    net_fixture f({.n_clones = 70, .bands_in_clone = 20, .coverage = 10, .seed = static_cast<std::uint64_t>(run) + 1});
    pumping_options options;
    options.start_list = run % 2 == 0 ? number_list{5} : number_list{9, 5};
    options.n_rank_limit = run % 4 - 1;
    if (run >= 8)
      options.black_list = {1, 2, 3, 4, 5, 6, 7, 8, 10, 11, 12};
    if (run >= 12)
      options.candidates = {70, 33, 34, 33, 1, 60, 61, 62, 50, 51, 52, 20, 21, 22, 23};
    options.print = true;
    number_list list, step;
    plain_pumping(f, rule, options, list, step);
    pumping_result result;
    nasos_clones(f.context, rule, options, result);
    EXPECT_TRUE(result.completed);
    EXPECT_EQ(result.list, list) << run;
    EXPECT_EQ(result.step, step) << run;
    EXPECT_EQ(f.record.panels.back(), "3: Ok: " + std::to_string(list.count()));
    std::string names;
    for (const clone_number clone : list.members())
      names += f.database.name_of_clone_get(clone) + "\r\n";
    EXPECT_EQ(file_bytes(f.folder / ("found_clones_Sulston_1988_6.00_" + f.database.name_of_clone_get(list(1)) +
                                     "_plus" + std::to_string(options.n_rank_limit) + ".txt")),
              names);
    if (run == 0) {
      EXPECT_GT(list.count(), 31);
      f.frame.stop_requested_set(true);
      nasos_clones(f.context, rule, options, result);
      EXPECT_FALSE(result.completed);
      EXPECT_EQ(result.list.count(), 2); // seen at the first clone that is added
    }
  }
}

TEST(clone_questions, ranks_along_a_contig) {
  net_fixture f({.n_clones = 8, .bands_in_clone = 6});
  name_clones(f, {"c1", "c2", "c3", "c4", "c5", "c6", "c7", "c8"});
  f.signif.net() = net_of_edges(8, {{1, 2}, {2, 3}, {3, 4}, {4, 5}, {2, 6}});
  f.signif.net_is_loaded_set();
  f.write("contig.txt", "c1\nc2\nc3\nc4\nc6\nc3\n");
  f.write("asked.txt", "c6\nc7\n");
  f.answer_always("Open file with list of clones of contig", (f.folder / "contig.txt").string());
  ranks_of_interesting_clones result;
  ASSERT_TRUE(contig_test_Ranks_relative_to_start_of_diam_path_run(f.signif, {}, {}, f.folder / "asked.txt", result));
  EXPECT_EQ(result.shape.diameter, 4);
  const std::int32_t start = result.shape.path(1); // from an end: 4, or 1 or 6
  EXPECT_EQ(file_bytes(f.folder / "ranks_of_interesting_clones.txt"),
            "i\tclone\trank (from start of diametric path)\r\n1\tc6\t" +
                std::to_string(start == 4   ? 3
                               : start == 1 ? 2
                                            : 0) +
                "\r\n2\tc7\t-1\r\n");
  const std::string table = file_bytes(f.folder / "Consec_dist_MTP_new.txt");
  EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 5);
  EXPECT_EQ(f.record.messages.back(),
            "Clone c7 of list_of_clones_interesting() 2 is not presented in list_of_clones()?!");
  EXPECT_FALSE(
      contig_test_Ranks_relative_to_start_of_diam_path_run(f.signif, {}, {}, {}, result)); // second one cancelled
  EXPECT_EQ(f.record.questions.back(), "Open file with clones to select");
}

} // namespace
} // namespace orb
