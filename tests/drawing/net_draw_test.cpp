// Drawings of nets: the palette, whole small files byte by byte, marks and captions, series, the GraphML form.
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <limits>

#include "drawing/class_clone_net_draw.h"
#include "drawing/mark_vertices.h"
#include "drawing/palette.h"
#include "support/net_fixture.h"

namespace orb {
namespace {

// Clones 1..5 with names and numbers of bands that are known, over a net whose values cross the scales.
struct drawing_fixture : net_fixture {
  class_clone_net_draw draw{signif, rule};
  drawing_fixture() : net_fixture({.n_clones = 5, .bands_in_clone = 6}) {
    for (clone_number clone = 1; clone <= 5; ++clone)
      database.name_of_clone_set(clone, "B" + std::to_string(clone));
    database.sort_clones_by_name(frame);
    class_net net;
    net.inicializate_net(5, 8);
    const auto both = [&](vertex_number own, vertex_number other, double value, std::int16_t code) {
      net.add_edge_fast(own, other, value, 0, code);
    };
    net.add_vertex_fast(0), both(1, 2, 17.26, 1), both(1, 3, 55, 0);
    net.add_vertex_fast(0), both(2, 1, 17.26, 2), both(2, 3, 14.9, 1);
    net.add_vertex_fast(0), both(3, 1, 55, 0), both(3, 2, 14.9, 2), both(3, 4, 15, 3);
    net.add_vertex_fast(0), both(4, 3, 15, 3);
    net.add_vertex_fast(0);
    net.finish_of_adding();
    net.test_neighbours_sorted();
    signif.net() = std::move(net);
    signif.net_is_loaded_set();
    record = {};
  }
  std::string bands(clone_number clone) const { return std::to_string(database.number_of_bands_in_clone_get(clone)); }
  std::string bytes_of(const std::string &name) const { return file_bytes(folder / name); }
  std::string lines(std::initializer_list<std::string> wanted) const {
    std::string text;
    for (const std::string &line : wanted)
      text += line + "\r\n";
    return text;
  }
};

TEST(palette, scales_turn_values_into_colours) {
  const struct {
    std::int32_t set;
    double scale;
    std::vector<std::pair<double, int>> cases; // value, index
  } table[] = {
      {0, 1, {{0, 10}, {999, 10}}},
      {1, 1, {{0, 10}, {0.2, 5}, {0.4, 7}, {0.65, 4}, {0.8, 1}, {1, 0}, {1.2, 0}, {-1, 0}}},
      {2, 1000, {{29, 0}, {30, 0}, {40, 1}, {59, 1}, {60, 4}, {80, 7}, {110, 5}, {120, 9}, {149, 9}, {150, 10}}},
      {3, 1, {{4, 0}, {5, 0}, {10, 3}, {15, 1}, {20, 6}, {25, 2}, {30, 4}, {35, 7}, {40, 5}, {45, 9}, {50, 10}}},
      {4, 1, {{3, 0}, {6, 3}, {9, 1}, {12, 6}, {15, 2}, {18, 4}, {21, 7}, {24, 5}, {27, 9}, {30, 10}, {1e300, 10}}},
      {-1, 0, {{4.9, 0}, {5, 4}, {10, 1}, {15, 6}, {20, 2}, {25, 4}, {30, 7}, {35, 5}, {40, 8}, {45, 9}, {50, 10}}},
      {6, 50, {{0, 0}, {5, 3}, {10, 1}, {15, 6}, {20, 2}, {25, 4}, {30, 7}, {35, 5}, {40, 8}, {45, 9}, {500, 10}}},
      {7, 1, {{10, 0}, {100.5, 5}, {200, 7}, {300, 10}, {301, 0}}},
      {5, 50, {{-3, 0}, {std::numeric_limits<double>::quiet_NaN(), 0}}},
  };
  for (const auto &scale : table)
    for (const auto &[value, index] : scale.cases)
      EXPECT_EQ(color_for_value(value, scale.scale, scale.set), index) << "set " << scale.set << ", value " << value;
}

TEST(palette, names_and_values) {
  EXPECT_EQ(color_from_name("Orange"), 255 + 256 * 128);
  EXPECT_EQ(color_from_name("gray"), color_from_name("GRAY"));
  EXPECT_EQ(color_from_name("no colour"), 0);
  EXPECT_EQ(color_from_name("Pink"), color_from_name("magenta"));
  EXPECT_EQ(palette_colour(nearest_palette_color(color_from_name("PINK"))).name, "MAGENTA"); // the lower entry
  EXPECT_EQ(palette_colour(nearest_palette_color(250)).name, "RED");
  EXPECT_EQ(palette_colour(palette_selection_colour).name, "YELLOW");
  std::string_view name;
  for (std::int32_t index = 0; index < n_scale_colours; ++index) {
    ASSERT_TRUE(color_name_of_scale(index, name));
    EXPECT_TRUE(name == "Black" || color_from_name(name) != 0) << name; // each is in the palette
  }
  EXPECT_FALSE(color_name_of_scale(11, name));
  for (std::int16_t shape = 0; shape < n_shapes; ++shape)
    EXPECT_EQ(shape_from_name(shape_name(shape)), shape);
  EXPECT_EQ(shape_from_name("BOX"), 0); // exact
  random_source chance(5);
  bool seen_last = false;
  for (int i = 0; i < 2000; ++i) {
    const std::int32_t colour = random_color(chance, false, false, 3);
    EXPECT_TRUE(colour != 12 && colour != 13 && colour != 3 && colour >= 1 && colour <= 16);
    seen_last = seen_last || colour == 16;
  }
  EXPECT_TRUE(seen_last);
}

TEST(net_drawing, room_is_told_once) {
  net_fixture f({.n_clones = 3, .bands_in_clone = 6});
  class_net_draw draw(f.frame);
  draw.inicialisate_net(2234);
  EXPECT_EQ(draw.max_n_edges_get(), 2234 * 2234);
  draw.inicialisate_net(2235);
  EXPECT_EQ(draw.max_n_edges_get(), 5000000);
  EXPECT_TRUE(f.record.messages.empty());
  draw.inicialisate_net(100101);
  EXPECT_EQ(f.record.messages.back(), "n=100101>100100=MAX_n_vertices. Not all will be shown!");
  draw.inicialisate_net(1);
  draw.add_vertex("a", 0, 1, 5, 10);
  draw.add_edge(1, 1, 3, "", 0, 1, 0, false);
  draw.add_edge(1, 1, 3, "", 0, 1, 0, true);
  EXPECT_EQ(f.record.messages.size(), 1U);
  draw.add_edge(1, 1, 3, "", 0, 1, 0, true);
  EXPECT_EQ(f.record.messages.back(), "private_n_vectors=1 >= max=1. Not all will be printed!");
  draw.add_edge(1, 1, 3, "", 0, 1, 0, false);
  draw.add_vertex("b", 0, 1, 5, 10);
  EXPECT_EQ(f.record.messages.size(), 2U);
  draw.inicialisate_net(1);
  draw.add_vertex("a", 0, 1, 5, 10);
  draw.add_vertex("b", 0, 1, 5, 10);
  EXPECT_EQ(f.record.messages.back(), "private_n_vertices >= max!=1, will not be shown!");
  draw.inicialisate_net(1);
  draw.add_edge(1, 1, 3, "", 0, 1, 0, false);
  draw.add_edge(1, 1, 3, "", 0, 1, 0, false);
  EXPECT_EQ(f.record.messages.back(), "private_n_edges=1 >= max=1. Not all will be printed!");
}

TEST(net_drawing, hostile_texts_and_unknown_numbers) {
  drawing_fixture f;
  class_net_draw draw(f.frame);
  draw.inicialisate_net(3);
  draw.add_vertex("a\"b\t<&>\xE9\xC3\xA9\r\n", 9, 1, 11, 10);
  draw.add_vertex(std::string("\0\xED\xA0\x80\xEF\xBF\xBE", 7), 1, -2, 5, 11);
  draw.add_edge(1, 2, 4, "\"l\"", 3, 1, 7, false);
  draw.add_edge(1, 3, 4, "nowhere", 3, 1, 0, false); // its vertex is not there
  draw.print_net_pajek(f.folder / "h.net", -1, "two\r\nlines");
  EXPECT_EQ(f.bytes_of("h.net"), f.lines({"*Network two  lines", "*Vertices 2",
                                          "1 \"a'b <&>\xE9\xC3\xA9  \" sh ellipse x_fact 1 y_fact 1 ic Black bc Black",
                                          "2 \" \xED\xA0\x80\xEF\xBF\xBE\" sh box x_fact -2 y_fact -2 ic Blue bc Black",
                                          "*Arcs 0", "*Edges 1", "1 2 1 w 1 c Gray p Solid l \"'l'\""}));
  EXPECT_EQ(f.record.messages, (std::vector<std::string>{"Unknown color 11!", "Unknown pattern 7!"})); // once each
  std::string xml;
  xml_text_append(xml, draw.vertex(1).caption);
  xml += '|';
  xml_text_append(xml, draw.vertex(2).caption);
  EXPECT_EQ(xml, "a&quot;b&#9;&lt;&amp;&gt;\xC3\xA9\xC3\xA9&#13;&#10;| \xC3\xAD\xC2\xA0\xC2\x80 ");
}

TEST(clone_drawing, file_of_a_marked_list_to_the_byte) {
  drawing_fixture f;
  drawing_options options;
  options.mark_relations = true;
  options.caption_number = true;
  f.draw.options_set(options);
  ASSERT_TRUE(f.draw.quick_run_two_lists_of_marking({3, 1, 2, 5, 4}, "MTP_cl 1/2", f.folder, 0.9, -1, {2, 3}, {5, 3}));
  ASSERT_EQ(f.draw.files_written().size(), 1U);
  EXPECT_EQ(f.draw.files_written()[0].filename(), "Net_control_MTP_cl 1_2_Sulston_1988_15.net");
  const auto caption = [&](int clone, int k) {
    return std::to_string(k) + " \"B" + std::to_string(clone) + "[" + f.bands(clone) + "]<" + std::to_string(k) + ">";
  };
  EXPECT_EQ(file_bytes(f.draw.files_written()[0]),
            f.lines({"*Network MTP_cl 1/2", "*Vertices 5",
                     caption(3, 1) + "(2)(2)\" sh box x_fact 1 y_fact 1 ic Red bc White",
                     caption(1, 2) + "\" sh ellipse x_fact 1 y_fact 1 ic Blue bc White",
                     caption(2, 3) + "(1)\" sh ellipse x_fact 1 y_fact 1 ic Red bc Black",
                     caption(5, 4) + "(1)\" sh box x_fact 1 y_fact 1 ic Blue bc Black",
                     caption(4, 5) + "\" sh ellipse x_fact 1 y_fact 1 ic Blue bc White", "*Arcs 3",
                     "1 5 1 w 3 c White p Solid l \"\"", "5 1 1 w 3 c White p Solid l \"\"",
                     "2 3 1 w 3 c White p Solid l \"\"", "*Edges 3", "1 2 1 w 1 c Black p Solid l \"55.0\"",
                     "1 5 1 w 1 c Orange p Solid l \"15.0\"", "2 3 1 w 1 c Orange p Solid l \"17.3\""}));
  EXPECT_TRUE(f.record.messages.empty());
}

TEST(clone_drawing, options_captions_and_marks) {
  drawing_fixture f;
  drawing_options options;
  options.caption_n_bands = false;
  options.mark_buried = false;
  options.cutoff_by_color = false;
  options.caption_cutoff = false;
  options.file = f.folder / "one.txt"; // a single form keeps the name to the letter
  f.draw.options_set(options);
  f.draw.start_nets_of_clones_draw(3, {1, 2, -1, 3}, "c", f.folder); // two clones: -1 is none, 3 is the fourth
  f.draw.run_create_caption_for_vertex_corresponding_to_clone(f.database);
  EXPECT_EQ(f.draw.clone_caption_get(2), "B2<2>");
  options.caption_name = false;
  f.draw.options_set(options);
  EXPECT_EQ(f.draw.create_caption_for_clone(2, f.database), "2");
  f.draw.mark_clones({2, 99, -1}, mark_kind::original_name, 0, "!", true);
  EXPECT_EQ(f.draw.clone_caption_get(1), "");
  EXPECT_EQ(f.draw.clone_caption_get(2), "B2!(1)");
  f.draw.mark_clones({1, 1}, mark_kind::size, 4, "", false);
  f.draw.mark_clones({1}, mark_kind::border_colour, 7, "", false);
  f.draw.mark_clones({2}, mark_kind::shape, 6, "", false);
  f.draw.mark_clones({2}, mark_kind::caption, 6, "?", false);
  ASSERT_TRUE(f.draw.print_files_for_drawing_net(0.9, false, 16.5, true, drawing_kind::overlaps, f.database));
  EXPECT_EQ(f.bytes_of("one.txt"),
            f.lines({"*Network c", "*Vertices 2", "1 \"\" sh ellipse x_fact 4 y_fact 4 ic Blue bc Red",
                     "2 \"B2!(1)?\" sh triangle_Down x_fact 1 y_fact 1 ic Blue bc Black", "*Arcs 0", "*Edges 1",
                     "1 2 1 w 1 c Black p Solid l \"\""}));
  EXPECT_EQ(f.bytes_of("for_Net_control_Sulston_1988 c.txt"),
            f.lines({"edge\ti\tname\tj\tname\tval\tlabel", "1\t1\t\t2\tB2!(1)?\t17.3\t"}));
  f.draw.start_nets_of_clones_draw(2, {1, 2}, "in/out", {}); // a folder of its own
  EXPECT_TRUE(std::filesystem::is_directory(f.draw.folder_get()));
  EXPECT_TRUE(f.draw.folder_get().filename().string().starts_with("Net_control_in_out_"));
}

TEST(clone_drawing, series_of_cutoffs) {
  drawing_fixture f;
  drawing_options options;
  options.nets_for_cutoffs = options.mark_relations = options.write_graphml = true;
  options.file = f.folder / "s.net";
  f.draw.options_set(options);
  ASSERT_TRUE(f.draw.quick_run({1, 2, 3, 4, 5}, "c", f.folder, 0.9, -1, {}));
  EXPECT_EQ(f.draw.files_written().size(), 22U);
  const auto has = [&](const std::string &file, const std::string &text) {
    return f.bytes_of(file).find(text) != std::string::npos;
  };
  EXPECT_TRUE(has("s_10.net", "*Arcs 4\r\n") && has("s_10.net", "*Edges 4\r\n"));
  EXPECT_TRUE(has("s_14.net", "*Edges 4\r\n") && has("s_18.net", "*Edges 1\r\n"));
  EXPECT_TRUE(has("s_50.net", "*Vertices 5\r\n") && has("s_50.net", "*Arcs 4\r\n") && has("s_50.net", "*Edges 1\r\n"));
  EXPECT_TRUE(has("s_50.graphml", "<data key=\"g_cutoff\">50</data>"));
  class_clone_net_draw of_counts(f.signif, rule_of_metric(class_clone_dist_general::DISTANCE_INDEX_k_get(), 15));
  of_counts.options_set(options);
  EXPECT_FALSE(of_counts.quick_run({1, 2, 3}, "c", f.folder, 0.9, -1, {})); // no series for this metric
  EXPECT_TRUE(of_counts.files_written().empty());
  options.nets_for_cutoffs = options.write_graphml = false;
  f.draw.options_set(options);
  ASSERT_TRUE(f.draw.quick_run({1, 2, 3}, "c", f.folder, 0.9, -1, {}, true));
  for (const char *metric : {"Sulston_1988", "Nof", "Lnn", "LnnMarkers"})
    EXPECT_TRUE(std::filesystem::exists(f.folder / ("s_" + std::string(metric) + ".net"))) << metric;
  EXPECT_TRUE(has("s_Sulston_1988.net", "*Edges 2\r\n"));
}

// Overlaps of the loaded net, of each pair, and of the comparison on all cores give the same drawing.
TEST(clone_drawing, all_ways_to_the_pairs_agree) {
  net_fixture f({.n_clones = 620, .bands_in_clone = 30, .coverage = 25});
  f.rule.cutoff = 6;
  net_creation_summary summary;
  ASSERT_TRUE(f.signif.create_net_in_memory(f.rule, summary));
  class_clone_net_draw draw(f.signif, f.rule);
  drawing_options options;
  options.mark_relations = true;
  draw.options_set(options);
  for (const std::int32_t n : {60, 560}) { // without a net: each pair by itself; all cores
    number_list list;
    for (std::int32_t i = 1; i <= n; ++i)
      list.add((i * 37) % 620 + 1);
    list(n) = list(1); // a clone twice
    std::vector<std::string> files;
    for (const bool use_net : {true, false}) {
      f.settings.use_file_with_connections = use_net;
      f.settings.same_metric_as_net = false; // its values have two decimals
      ASSERT_TRUE(draw.quick_run(list, "c", f.folder, 0.9, -1, {}));
      files.push_back(file_bytes(draw.files_written().back()));
    }
    const std::string with_itself = "\r\n1 " + std::to_string(n) + " 1 w 1"; // a clone overlaps itself; no net says so
    EXPECT_EQ(files[0].find(with_itself), std::string::npos);
    EXPECT_NE(files[1].find(with_itself), std::string::npos);
    list.resize(n - 1);
    for (const bool use_net : {true, false}) {
      f.settings.use_file_with_connections = use_net;
      ASSERT_TRUE(draw.quick_run(list, "c", f.folder, 0.9, -1, {}));
      files.push_back(file_bytes(draw.files_written().back()));
    }
    EXPECT_EQ(files[2], files[3]);
    EXPECT_EQ(files[2].find("*Edges 0\r\n"), std::string::npos);
    EXPECT_EQ(files[2].find("*Arcs 0\r\n"), std::string::npos);
  }
  f.frame.stop_requested_set(true);
  EXPECT_FALSE(draw.quick_run({1, 2}, "stopped", f.folder, 0.9, -1, {}));
  EXPECT_FALSE(std::filesystem::exists(f.folder / "Net_control_stopped_Sulston_1988_6.net"));
}

TEST(clone_drawing, other_kinds) {
  drawing_fixture f;
  f.draw.diagonals_set([](clone_number a, clone_number b) { return a + b == 3 || a + b == 9; }); // 1-2, 4-5
  ASSERT_TRUE(f.draw.quick_run({1, 2, 3, 4, 5}, "d", f.folder, 0.9, -1, {}, false, false, drawing_kind::diagonals));
  EXPECT_NE(file_bytes(f.draw.files_written().back())
                .find(f.lines({"*Edges 4", "1 2 1 w 1 c Red p Solid l \"17.3\"", "1 3 1 w 1 c Blue p Solid l \"55.0\"",
                               "3 4 1 w 1 c Blue p Solid l \"15.0\"", "4 5 1 w 1 c Yellow p Solid l \"0.0\""})),
            std::string::npos);
  f.write("all.txt", "B1 B2 B3");
  f.write("marked.txt", "B2");
  f.answer_always("Mark some clones?", "yes");
  f.answer_always("Open file with all", (f.folder / "all.txt").string());
  f.answer_always("Open file with clones to be", (f.folder / "marked.txt").string());
  // clones 1 and 2 have the same bands: they overlap by Sulston's score alone, as there are no tags
  f.database.inicalise_database(f.frame, 5, 0);
  for (clone_number clone = 1; clone <= 5; ++clone) {
    std::vector<band_value> bands;
    for (band_value band = 1; band <= 30; ++band)
      bands.push_back(band * 1500 + (clone > 2 ? clone * 100 : 0));
    f.database.name_of_clone_set(clone, "B" + std::to_string(clone));
    f.database.ListOfBands_from_real_database_fast_all_bands_set(clone, bands);
  }
  f.database.total_number_of_clones_set(5);
  f.database.sort_clones_by_name(f.frame);
  make_band_statistics(f.frame, f.database, f.usable_values);
  ASSERT_TRUE(f.draw.compare_nets_for_two_metrics_quick_run({}, {}, f.folder, f.database));
  EXPECT_EQ(f.draw.files_written().back().filename(), "Net_control_all_Sulston_1988_10.net");
  const std::string compared = file_bytes(f.draw.files_written().back());
  EXPECT_NE(compared.find("*Edges 1\r\n1 2 1 w 1 c Red p Solid l \"0.0/"), std::string::npos) << compared;
  EXPECT_NE(compared.find("ic Red bc White"), std::string::npos);
}

TEST(clone_drawing, every_list_of_a_folder) {
  drawing_fixture f;
  f.write("all.txt", "B1 B2 B3 B4 B5");
  create_folder(f.folder / "lists");
  f.write("lists/b.txt", "B2");
  f.write("lists/a.txt", "B1 B3");
  f.write("lists/c.csv", "B4");
  ASSERT_TRUE(f.draw.nets_with_shown_list_of_clones(f.folder / "all.txt", f.folder / "lists/b.txt", f.database));
  EXPECT_EQ(f.record.messages.back(), "Analysis of all 2 files from the selected folder is completed.");
  ASSERT_EQ(f.draw.files_written().size(), 2U);
  EXPECT_EQ(f.draw.files_written()[0], f.folder / "Nets_marked" / "Net_control_a_Sulston_1988_15.net");
  EXPECT_EQ(f.frame.working_folder_get(), f.folder);
  EXPECT_FALSE(f.draw.nets_with_shown_list_of_clones({}, {}, f.database)); // cancelled
}

TEST(clone_drawing, graphml_form) {
  drawing_fixture f;
  f.database.name_of_clone_set(2, "B\"2\" <&\t\xFF");
  drawing_options options;
  options.mark_relations = options.write_graphml = true;
  f.draw.options_set(options);
  f.draw.mark_names_set({"tiling path", "far", ""});
  const std::vector<std::int32_t> left{1, 5, 12}, right{10, 14, 20};
  f.draw.quick_run_coordinates_set(left, right);
  ASSERT_TRUE(f.draw.quick_run_two_lists_of_marking({1, 2, 3}, "g", f.folder, 0.9, 14, {2, 3}, {2}));
  ASSERT_EQ(f.draw.files_written().size(), 2U);
  const std::string xml = file_bytes(f.draw.files_written()[1]);
  EXPECT_NE(xml.find("<node id=\"n2\"><data key=\"v_label\">B&quot;2&quot; &lt;&amp;&#9;\xC3\xBF[" + f.bands(2) +
                     "]&lt;2&gt;</data><data key=\"v_shape\">box</data>"),
            std::string::npos)
      << xml;
  EXPECT_NE(xml.find("<data key=\"v_buried\">true</data><data key=\"v_marks\">tiling path;far</data>"
                     "<data key=\"v_x\">9.5</data><data key=\"v_y\">2</data></node>"),
            std::string::npos);
  EXPECT_NE(xml.find("<data key=\"v_x\">16</data><data key=\"v_y\">1</data></node>"), std::string::npos);
  EXPECT_NE(xml.find("<edge source=\"n1\" target=\"n2\"><data key=\"e_label\">17.3</data><data key=\"e_value\">17.26"
                     "</data><data key=\"e_color\">#ff8000</data><data key=\"e_color_name\">Orange</data><data "
                     "key=\"e_width\">1</data><data key=\"e_pattern\">Solid</data><data key=\"e_first\">n1</data><data "
                     "key=\"e_second\">n2</data><data key=\"e_burial\">1</data>"
                     "<data key=\"e_arc\">false</data></edge>"),
            std::string::npos);
  // It says that it was skipped where a module is missing. The modules are the system's, so is the interpreter.
  const std::string python = std::filesystem::exists("/usr/bin/python3") ? "/usr/bin/python3" : "python3";
  const auto check = [&](const std::filesystem::path &graphml) {
    return std::system((python + " '" ORB_SOURCE_DIR "/tests/whole/check_drawing.py' '" +
                        f.draw.files_written()[0].string() + "' '" + graphml.string() + "'")
                           .c_str());
  };
  EXPECT_EQ(check(f.draw.files_written()[1]), 0);
  f.write("damaged.graphml", std::string(xml).replace(xml.find("17.26"), 5, "18.26"));
  const bool skipped = std::system((python + " -c 'import igraph, networkx' 2> /dev/null").c_str()) != 0;
  EXPECT_EQ(check(f.folder / "damaged.graphml") == 0, skipped);
}

TEST(mark_vertices, each_list_is_marked_in_its_way) {
  drawing_fixture f;
  const auto file = [&f](const char *name, const char *text) {
    std::ofstream(f.folder / name) << text;
    return f.folder / name;
  };
  form_mark_vertices form(f.signif, f.rule);
  EXPECT_FALSE(form.start()) << "cancelled";
  ASSERT_TRUE(form.start(file("all.txt", "B1\nB2\nB3\nB4\n")));
  EXPECT_EQ(form.l_vertices(), "4 clones from all.txt");
  EXPECT_EQ(form_mark_vertices::Combo1(0).size(), 11u);
  EXPECT_EQ(form_mark_vertices::Combo1(3).at(1), "box");
  EXPECT_EQ(form_mark_vertices::Combo1(5), std::vector<std::string>{"------"});
  const auto mark = [&](int by, int value, const std::filesystem::path &list) {
    form.mark_by_index = by;
    form.Combo1_index = value;
    ASSERT_TRUE(form.Command_load(list));
  };
  mark(0, 7, file("red.txt", "B2\nB5\n")); // B5 isn't drawn
  EXPECT_EQ(form.l_list_name(), "red.txt");
  EXPECT_EQ(form.l_n_vertices(), "2 clones from red.txt");
  mark(3, 1, file("boxes.txt", "B3\n"));
  mark(2, 3, file("large.txt", "B3\nB4\n"));
  form.t_cutoff = "much";
  EXPECT_FALSE(form.ok(f.folder / "m.net"));
  EXPECT_EQ(f.record.messages.back(), "Cutoff should be numerical!");
  form.t_cutoff = "20";
  ASSERT_TRUE(form.ok(f.folder / "m.net"));
  const std::string drawn = f.bytes_of("m.net");

  form_mark_vertices again(f.signif, f.rule); // as the texts of its marks say
  ASSERT_TRUE(again.start(form.list_file()));
  for (const vertex_mark &wanted : form.marks())
    ASSERT_TRUE(again.mark(vertex_mark::of(wanted.text()).value())) << wanted.text();
  again.t_cutoff = form.t_cutoff;
  ASSERT_TRUE(again.ok(f.folder / "again.net"));
  EXPECT_EQ(f.bytes_of("again.net"), drawn);
  EXPECT_EQ(vertex_mark::of("caption=LOD=5=l.txt").value().caption, "LOD=5");
  EXPECT_EQ(vertex_mark::of("name==l.txt").value().file, "l.txt");
  for (const char *wrong :
       {"color=Redd=l.txt", "colour=Red=l.txt", "size=11=l.txt", "size=0=l.txt", "shape=box", "name==", ""})
    EXPECT_FALSE(vertex_mark::of(wrong)) << wrong;

  std::string_view red;
  color_name_of_scale(7, red);
  const auto line_of = [&drawn](const std::string &clone) {
    const std::size_t at = drawn.find("\"" + clone);
    return drawn.substr(at, drawn.find('\r', at) - at);
  };
  EXPECT_NE(line_of("B2").find("sh ellipse x_fact 1 y_fact 1 ic " + std::string(red)), std::string::npos) << drawn;
  EXPECT_NE(line_of("B3").find("sh box x_fact 4 y_fact 4"), std::string::npos) << drawn;
  EXPECT_NE(line_of("B4").find("sh ellipse x_fact 4 y_fact 4"), std::string::npos) << drawn;
  EXPECT_NE(drawn.find("*Edges 1\r\n1 3 "), std::string::npos) << "only one overlap is at least 20\n" << drawn;
}

} // namespace
} // namespace orb
