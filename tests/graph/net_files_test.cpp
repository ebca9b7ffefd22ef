// The native file: what is written reads back equal, and a damaged file is refused and changes nothing.
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <limits>

#include "frame/files.h"
#include "support/net_helpers.h"

namespace {

using namespace orb_test;

template <class number> std::string replaced(std::string bytes, std::size_t offset, number value) {
  std::memcpy(bytes.data() + offset, &value, sizeof(value));
  return bytes;
}

class native_file : public testing::Test {
protected:
  scripted_frame scripted_;
  std::filesystem::path path_ = scripted_.folder / "net.one.ORBns";

  class_net sample() {
    random_source chance(5);
    class_net net = net_of(30, random_edges(30, 80, 6, 4, chance));
    net.change_vertex_index(3, -1);
    net.change_edge_index(7, -9);
    return net;
  }
};

TEST_F(native_file, reads_back_equal) {
  const class_net net = sample();
  net.save_net_type(scripted_.frame, path_);
  EXPECT_EQ(scripted_.record.panels.back(), "3: Saving net in ORB format...");
  EXPECT_EQ(scripted_.record.log.back(), "File " + path_.string() + " ...Saved.");
  class_net read;
  bool ok = false;
  scripted_.record.log.clear();
  read.read_net_type(scripted_.frame, path_, ok, 30);
  ASSERT_TRUE(ok);
  EXPECT_TRUE(same_records(read, net));
  EXPECT_TRUE(read.neighbours_are_sorted_get());
  EXPECT_FALSE(net.neighbours_are_sorted_get());
  EXPECT_EQ(read.title_of_net_get(), "net.one");
  EXPECT_EQ(read.FullFileNameGet(), path_.string());
  EXPECT_EQ(scripted_.record.log,
            (std::vector<std::string>{"Read net significant file '" + path_.string() + "'", " ...Done"}));
  const std::string n = std::to_string(net.number_of_edges_get());
  EXPECT_EQ(scripted_.record.panels.back(), "3: Read " + n + " of " + n + " (100.00%)");

  const std::string bytes = file_bytes(path_);
  read.save_net_type(scripted_.frame, {}); // the default name in the working folder
  EXPECT_EQ(file_bytes(scripted_.folder / "net.ORBns"), bytes);
}

TEST_F(native_file, layout) {
  edge_map edges;
  edges[{1, 2}] = {2, 5, 1, 14.5};
  net_of(2, edges).save_net_type(scripted_.frame, path_);
  std::string wanted("\2\0\0\0\1\0\0\0"
                     "\1\0\0\0\xff\xff"
                     "\2\0\0\0\0\0"
                     "\2\0\0\0\0\0"
                     "\2\0\0\0",
                     30);
  wanted += std::string("\0\0\0\0\0\0\x2d\x40\5\0\1\0", 12);
  EXPECT_EQ(file_bytes(path_), wanted);
  net_of(4, {}).save_net_type(scripted_.frame, path_);
  EXPECT_EQ(std::filesystem::file_size(path_), 8u + 6 * 5);
}

TEST_F(native_file, wrong_number_of_clones) {
  sample().save_net_type(scripted_.frame, path_);
  class_net read = net_of(2, {});
  bool ok = true;
  read.read_net_type(scripted_.frame, path_, ok, 31);
  EXPECT_FALSE(ok);
  const std::string text = "Problem with file " + path_.string() +
                           "! \r\nThe number of clones in net significant overlaps file\r\n is not the same as in "
                           "database: \r\nnv_expected=31 <> nv=30.";
  EXPECT_EQ(scripted_.record.messages,
            std::vector<std::string>{text + "\r\nNet of significant overlaps was not loaded."});
  EXPECT_EQ(scripted_.record.log.back(), " ...Failed");
  EXPECT_EQ(scripted_.record.log[scripted_.record.log.size() - 2], text);
  EXPECT_TRUE(scripted_.frame.data_failed());
  EXPECT_EQ(read.number_of_vertices_get(), 2);
  read.read_net_type(scripted_.frame, path_, ok, -1); // any number
  EXPECT_TRUE(ok);
}

TEST_F(native_file, damaged_files_are_refused_with_the_place) {
  const class_net net = sample();
  net.save_net_type(scripted_.frame, path_);
  const std::string good = file_bytes(path_);
  const auto n_edges = net.number_of_edges_get();
  const std::size_t edges = 8 + 6 * 31;
  const double no_number = std::numeric_limits<double>::quiet_NaN(), endless = std::numeric_limits<double>::infinity();
  const struct {
    std::string bytes;
    const char *place;
  } cases[] = {{"", "it has 0 bytes"},
               {good.substr(0, 7), "it has 7 bytes"},
               {good.substr(0, good.size() - 1), "but the file has"},
               {good + "x", "but the file has"},
               {replaced(good, 0, std::int32_t{-1}), "(byte offset 0)"},
               {replaced(good, 0, std::numeric_limits<std::int32_t>::max()), "but the file has"},
               {replaced(good, 4, std::int32_t{-5}), "(byte offset 4)"},
               {replaced(good, 4, std::numeric_limits<std::int32_t>::max()), "but the file has"},
               {replaced(good, 8, std::int32_t{2}), "(byte offset 8)"},
               {replaced(good, 8 + 6 * 10, std::int32_t{1}), "(byte offset 68)"},
               {replaced(good, 8 + 6 * 30, n_edges), "(byte offset 188)"},
               {replaced(good, 8 + 6 * 29, n_edges + 2), "(byte offset 188)"},
               {replaced(good, edges + 16 * 3, std::int32_t{0}), "(byte offset 242)"},
               {replaced(good, edges + 16 * 3, std::int32_t{31}), "(byte offset 242)"},
               {replaced(good, edges + 16 * 2 + 4, no_number), "(byte offset 230)"},
               {replaced(good, edges + 4, endless), "(byte offset 198)"},
               {replaced(good, edges + 4, -1.0), "below 0 (byte offset 198)"},
               {replaced(good, edges + 14, std::int16_t{4}), "burial code 4 (byte offset 208)"},
               {replaced(good, edges, std::int32_t{1}), "to that vertex itself (byte offset 194)"},
               {replaced(good, 8 + 6 * 30 + 4, std::int16_t{-1}), "mark of vertex 31 is -1 (byte offset 192)"},
               {replaced(good, 12, std::int16_t{1}), "mark of vertex 1 is 1 (byte offset 12)"}};
  const class_net before = net_of(3, {});
  for (const auto &c : cases) {
    write_bytes(path_, c.bytes);
    class_net read = net_of(3, {});
    bool ok = true;
    scripted_.record.messages.clear();
    read.read_net_type(scripted_.frame, path_, ok, -1);
    EXPECT_FALSE(ok) << c.place;
    EXPECT_TRUE(same_records(read, before));
    ASSERT_EQ(scripted_.record.messages.size(), 1u) << c.place;
    EXPECT_NE(scripted_.record.messages[0].find(c.place), std::string::npos) << scripted_.record.messages[0];
    EXPECT_NE(scripted_.record.messages[0].find(path_.string()), std::string::npos);
  }
  EXPECT_THROW(class_net().save_net_type(scripted_.frame, scripted_.folder / "none" / "a.ORBns"), file_error);
  class_net read;
  bool ok = true;
  EXPECT_THROW(read.read_net_type(scripted_.frame, scripted_.folder / "missing.ORBns", ok, -1), file_error);
  EXPECT_THROW(read.read_net_type(scripted_.frame, scripted_.folder, ok, -1), file_error);
}

// An overlap that doesn't stand once at both ends, alike, is damage; the order of a run is not.
TEST_F(native_file, overlaps_stand_once_at_both_ends) {
  const auto read_back = [&](const edge_map &edges) {
    net_of(6, edges).save_net_type(scripted_.frame, path_);
    class_net read;
    bool ok = false;
    scripted_.record.messages.clear();
    read.read_net_type(scripted_.frame, path_, ok, -1);
    return ok ? std::string("whole") : scripted_.record.messages.back();
  };
  edge_map good;
  for (const auto &[a, b] : {std::pair{1, 2}, {1, 5}, {2, 3}, {3, 5}, {4, 5}})
    join(good, a, b, 10 + a, static_cast<std::int16_t>(b % 4));
  EXPECT_EQ(read_back(good), "whole");
  for (const auto &[pair, edge] : edge_map(good)) {
    edge_map lost = good, other_value = good;
    lost.erase(pair);
    const std::string wanted = "vertex " + std::to_string(pair.second) + " with vertex " + std::to_string(pair.first) +
                               " doesn't stand at its other end";
    EXPECT_NE(read_back(lost).find(wanted), std::string::npos) << read_back(lost);
    other_value[pair].value += 1e-9;
    EXPECT_NE(read_back(other_value).find("another score"), std::string::npos) << read_back(other_value);
  }
  class_net net; // runs that descend, then an overlap that stands twice at both ends
  for (const bool twice : {false, true}) {
    net.inicializate_net(3, 6);
    for (const auto &run : twice ? std::vector<std::vector<int>>{{2, 2}, {1, 1}, {}}
                                 : std::vector<std::vector<int>>{{3, 2}, {3, 1}, {2, 1}}) {
      net.add_vertex_fast(0);
      for (const int neighbour : run)
        net.add_edge_fast(0, neighbour, 5, 0, 0);
    }
    net.finish_of_adding();
    net.save_net_type(scripted_.frame, path_);
    bool ok = twice;
    class_net read;
    read.read_net_type(scripted_.frame, path_, ok, -1);
    EXPECT_EQ(ok, !twice);
  }
  EXPECT_NE(scripted_.record.messages.back().find("stands there twice (byte offset "), std::string::npos);
}

// Any bytes either give a net whose every record can be walked, or are refused.
TEST_F(native_file, survives_random_damage) {
  sample().save_net_type(scripted_.frame, path_);
  const std::string good = file_bytes(path_);
  random_source chance(17);
  int n_read = 0;
  for (int round = 0; round < 400; ++round) {
    std::string bytes = good;
    for (std::int32_t k = chance.number_up_to(3); k > 0; --k)
      bytes[static_cast<std::size_t>(chance.number_up_to(static_cast<std::int32_t>(bytes.size()))) - 1] =
          static_cast<char>(chance.number_up_to(256) - 1);
    if (round % 5 == 0)
      bytes.resize(static_cast<std::size_t>(chance.number_up_to(static_cast<std::int32_t>(good.size()))));
    write_bytes(path_, bytes);
    class_net read;
    bool ok = false;
    read.read_net_type(scripted_.frame, path_, ok, -1);
    if (!ok)
      continue;
    ++n_read;
    std::int32_t n_classes = 0;
    number_list classes;
    read.clustering_based_on_net(classes, n_classes);
    EXPECT_GE(n_classes, 1);
  }
  EXPECT_GT(n_read, 0); // damage in marks and in most bytes of values can't be seen
}

TEST_F(native_file, stops_before_a_record) {
  sample().save_net_type(scripted_.frame, path_);
  front_end stopping = null_front_end();
  stopping.yield = [] { return true; };
  process_frame frame(stopping);
  class_net read = net_of(3, {});
  bool ok = true;
  read.read_net_type(frame, path_, ok, -1);
  EXPECT_FALSE(ok);
  EXPECT_EQ(read.number_of_vertices_get(), 3);
  EXPECT_FALSE(frame.data_failed());
}

TEST_F(native_file, diagnostic_text) {
  edge_map edges;
  join(edges, 1, 2, 9.996, 1);
  class_net net = net_of(2, edges);
  net.title_of_net_set("two");
  net.save_net_in_text({"", "A", "B"}, scripted_.folder / "net.txt");
  EXPECT_EQ(file_bytes(scripted_.folder / "net.txt"), "two\r\nn_vereces\t2\r\nn_edges\t2\r\n"
                                                      "\r\n1\tA\t-1\t1\r\n1\t1\t2\tB\t0\t1\t10.00\t0\t1\r\n"
                                                      "\r\n2\tB\t0\t1\r\n1\t2\t1\tA\t-1\t1\t10.00\t0\t2\r\n");
}

} // namespace
