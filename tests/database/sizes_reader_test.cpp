#include <cmath>
#include <cstdlib>
#include <map>
#include <sstream>

#include "frame/numbers.h"
#include "support/database_fixture.h"
#include "support/plain_lines.h"

using namespace orb_test;

namespace {

class sizes_reader : public database_fixture {};

// ---- the second formulation: whole lines, nested containers, a stable sort ----

struct slow_record {
  std::string header;
  std::vector<int> bands;
};

bool slow_number(std::string text, double &value) {
  for (char &c : text)
    if (c == ',')
      c = '.';
  std::string exponent;
  if (const auto e = text.find_first_of("eE"); e != std::string::npos) {
    exponent = text.substr(e + 1);
    if (exponent.size() < 2 || (exponent[0] != '+' && exponent[0] != '-'))
      return false;
    if (exponent.find_first_not_of("0123456789", 1) != std::string::npos)
      return false;
    text.resize(e);
  }
  const std::string digits = text.substr(!text.empty() && (text[0] == '+' || text[0] == '-') ? 1 : 0);
  if (digits.find_first_not_of("0123456789.") != std::string::npos ||
      digits.find_first_of("0123456789") == std::string::npos)
    return false;
  if (std::count(digits.begin(), digits.end(), '.') > 1)
    return false;
  value = std::strtod((text + (exponent.empty() ? "" : "e" + exponent)).c_str(), nullptr);
  return true;
}

std::string slow_load(const std::vector<std::string> &files) {
  std::vector<slow_record> records;
  for (const std::string &bytes : files) {
    bool in_record = false;
    for (const std::string &line : plainly_cut(bytes)) {
      double value = 0;
      if (in_record && slow_number(line, value)) {
        if (value == -1)
          in_record = false;
        else
          records.back().bands.push_back(static_cast<int>(std::floor(static_cast<float>(value))));
      } else if (line.empty()) {
        in_record = false;
      } else {
        records.push_back({line, {}});
        in_record = true;
      }
    }
  }
  std::stable_sort(records.begin(), records.end(),
                   [](const slow_record &a, const slow_record &b) { return a.header < b.header; });
  std::string text;
  for (std::size_t i = 0; i < records.size(); ++i) {
    bool copy = false;
    for (std::size_t k = 0; k < i; ++k)
      copy = copy || (records[k].header == records[i].header && records[k].bands == records[i].bands);
    if (copy)
      continue;
    std::istringstream words(records[i].header);
    std::string name;
    words >> name;
    text += name + ":";
    for (const int band : records[i].bands)
      text += std::to_string(band) + ",";
    text += "\n";
  }
  return text;
}

// Is one of the files names and nothing else?
bool has_file_without_bands(const std::vector<std::string> &files) {
  return std::any_of(files.begin(), files.end(), [](const std::string &file) {
    const std::string text = slow_load({file});
    return !text.empty() && text.find(",\n") == std::string::npos;
  });
}

std::string random_file(random_source &random) {
  static const char *const ends[] = {"\n", "\r\n", "\r"};
  const bool mixed = random.number_up_to(4) == 1, comma = random.number_up_to(3) == 1;
  const int one_end = random.number_up_to(3) - 1;
  std::string bytes;
  const auto line = [&](const std::string &text) {
    bytes += text + ends[mixed ? random.number_up_to(3) - 1 : one_end];
  };
  for (int record = random.number_up_to(12); record > 0; --record) {
    const int name = random.number_up_to(6);
    line(random.number_up_to(8) == 1 ? "15E24"
                                     : "C" + std::to_string(name) + (random.number_up_to(2) == 1 ? "\t3\tGel" : ""));
    double band = random.number_up_to(3); // few values, so that copies occur
    for (int n = random.number_up_to(4) - 1; n > 0; --n, band += random.number_up_to(2)) {
      std::string text = random.number_up_to(3) == 1 ? number_text(band + 0.25, 2) : number_text(band, 0);
      if (random.number_up_to(9) == 1)
        text = "1" + text + "e-1";
      if (comma)
        std::replace(text.begin(), text.end(), '.', ',');
      line(text);
      if (text.find('e') != std::string::npos)
        band = 1000 * band; // keeps the order, whatever was written
    }
    switch (random.number_up_to(5)) {
    case 1:
      break; // no end mark
    case 2:
      line("");
      break;
    case 3:
      line(comma ? "-1,0" : "-1.0");
      break;
    default:
      line("-1");
      for (int empty = random.number_up_to(3) - 1; empty > 0; --empty)
        line("");
    }
  }
  if (random.number_up_to(3) == 1 && !bytes.empty())
    bytes.pop_back(); // half a line end, or none
  return bytes;
}

} // namespace

TEST_F(sizes_reader, agrees_with_a_slow_formulation_on_messy_folders) {
  random_source random(7);
  int compared = 0;
  apply_parameters(12, 1, 5000);
  for (int round = 0; round < 300; ++round) {
    std::vector<std::string> files;
    const fs::path path = folder / ("round" + std::to_string(round));
    for (int f = 0; f < random.number_up_to(3); ++f) {
      files.push_back(random_file(random));
      write(path.filename().string() + "/f" + std::to_string(f) + (f == 1 ? ".SIZES" : ".sizes"), files.back());
    }
    write(path.filename().string() + "/f0.txt", "X\n1\n-1\n");
    bool loaded = false;
    try {
      loaded = load_sizes(path);
    } catch (const program_end &end) { // a random file that isn't ascending
      ASSERT_NE(std::string(end.what()).find("Wrong"), std::string::npos) << end.what();
      continue;
    }
    if (!loaded) {
      EXPECT_TRUE(slow_load(files).empty() || has_file_without_bands(files)) << last_message();
      continue;
    }
    EXPECT_FALSE(has_file_without_bands(files)) << "round " << round;
    ++compared;
    EXPECT_EQ(text_of(database), slow_load(files)) << "round " << round;
    EXPECT_EQ(broken_promise(database), "");
    EXPECT_EQ(reader.summary().n_records - reader.summary().n_copies_dropped, database.total_number_of_clones_get());
  }
  EXPECT_GT(compared, 100);
}

TEST_F(sizes_reader, records_of_every_shape) {
  const std::vector<std::array<std::string, 3>> cases{
      {"the end of the file closes", "A\t2\tGel\n10\n20.9", "A:10,20,\n"},
      {"the next header closes", "A\n10\nB\n5\n-1\n", "A:10,\nB:5,\n"},
      {"-1.0 closes", "A\n10\n-1.0\nB\n5\n", "A:10,\nB:5,\n"},
      {"an empty line closes, a number follows as a header", "A\n10\n\n20\n30\n", "20:30,\nA:10,\n"},
      {"a header as the last line", "A\n10\nB", "A:10,\nB:\n"},
      {"15E24 is a name", "15E24\n7\n15E24b\n8\n", "15E24:7,\n15E24b:8,\n"},
      {"1e+2 is a number", "A\n7\n1e+2\n", "A:7,100,\n"},
      {"decimal commas and blanks around numbers", "A\n 7,9 \n\t8,1\n", "A:7,8,\n"},
      {"values pass through float32", "A\n999999.98\n", "A:1000000,\n"},
      {"a line of blanks is empty", "A\n1\n  \t\nB\n2\n", "A:1,\nB:2,\n"},
      {"a mark of the encoding is no name",
       "\xEF\xBB\xBF"
       "A\n1\n",
       "A:1,\n"},
      {"bands 0 and at the gel length", "A\n0.5\n1000000\n", "A:0,1000000,\n"}};
  for (const auto &[what, bytes, expected] : cases) {
    apply_parameters(12, 1, 1e6);
    ASSERT_TRUE(load_sizes(write("one.sizes", bytes))) << what << last_message();
    EXPECT_EQ(text_of(database), expected) << what;
  }
}

TEST_F(sizes_reader, bin_numbers_of_lengths) {
  apply_parameters(7, 0, 3300);
  ASSERT_TRUE(load_sizes(write("a.sizes", "A\n0\n13.9\n14\n3299\n-1\n")));
  EXPECT_EQ(text_of(database), "A:1,1,2,236,\n");
  EXPECT_EQ(database.total_number_of_different_bands_get(), 236);
  EXPECT_THROW(load_sizes(write("a.sizes", "A\n3318\n-1\n")), program_end); // bin 238 of 236
  EXPECT_EQ(last_message(),
            "Wrong band 1(238>236=max) in clone 1 A\r\nfile " + (folder / "a.sizes").string() + ", line 2");
}

TEST_F(sizes_reader, copies_are_dropped_and_repeated_names_reported) {
  write("lib/1.sizes", "B\t2\n1\n2\n-1\nA\t1\n5\n-1\nA\t1\n5\n-1\n");
  write("lib/2.sizes", "A\t1\n6\n-1\nA\t1\n5\n-1\nB\t2\n1\n2\n-1\nA\t2\n5\n7\n");
  ASSERT_TRUE(load_sizes(folder / "lib"));
  EXPECT_EQ(text_of(database), "A:5,\nA:6,\nA:5,7,\nB:1,2,\n");
  ASSERT_EQ(record.messages.size(), 2u);
  EXPECT_EQ(record.messages[0],
            "NB! Exact repeats are found in fingerprint data!\rIn total, 2 clones repeated more than once. 3 exact "
            "copies of clone fingerprints will be exccluded from the analysis!");
  EXPECT_EQ(record.messages[1],
            "Loaded database contain 1 repeated clones (see file repeats.txt)!\rRepeats should be deleted!");
  EXPECT_EQ(file_bytes(folder / "repeats.txt"), "clone\ttimes (Total 2)\r\n1\tA\t3\r\n");
  EXPECT_DOUBLE_EQ(database.frecuency_of_band_in_clones_get(0), 10.0 / 4); // the statistics still count the copies
  EXPECT_EQ(usable_values.min_n_different_bands_in_clone_get(), 1);
  EXPECT_EQ(loads, 1);
}

TEST_F(sizes_reader, bad_input_leaves_everything_untouched) {
  ASSERT_TRUE(load_sizes(write("good.sizes", "G\n1\n2\n-1\n")));
  const std::string before = text_of(database);
  std::string bands_501, ten_million = "A\n";
  for (int i = 1; i <= 501; ++i)
    bands_501 += std::to_string(i) + "\n";
  for (int i = 0; i < 1000000; ++i)
    ten_million += "7\n";
  const std::string too_many = "DB_of_clones.MAX_number_of_bands_in_clone_get < n_different_bands_in_clone: _500 < ";
  struct bad_file {
    std::string bytes, message;
    int line; // 0: no place behind the message
    bool ends;
  };
  const std::vector<bad_file> cases{
      {"B\n1\n-1\nA b\n\xA0\n-5\n7\n", "Wrong band 1(-5<0) in clone 3 \xA0", 6, true},
      {"A b\n5\n9\n7\n-1\n", "Wrong ordered bands 2 and 3(9>7) in clone 1 A", 4, true},
      {"A\n5\n60001\n-1\n", "Wrong band 2(60001>60000=max) in clone 1 A", 3, true},
      {"A\n5\n1e+30\n-1\n", "Wrong band 2(2147483647>60000=max) in clone 1 A", 3, true},
      {"A\n5\n-3\n7\n", "Wrong ordered bands 1 and 2(5>-3) in clone 1 A", 3, true},
      {"A\n" + bands_501 + "-1\n", too_many + "501", 502, true},
      {ten_million, too_many + "1000000", 502, true},
      {std::string("A\n5\n\0\n7\n", 8), "File NAME is no text: byte 0 at offset 4", 0, false},
      {"\x1F\x8B\x08", "File NAME is no text: byte 31 at offset 0", 0, false},
      {std::string(70000, '\n') + std::string("B\n1\nA\0B\n", 9),
       "File NAME is no text: byte 0 at offset 1 of the line", 70003, false},
      {"\n\n", "NB! No clones was readen!", 0, false},
      {"", "NB! No clones was readen!", 0, false}};
  for (const bad_file &bad : cases) {
    const fs::path path = write("bad/bad.sizes", bad.bytes);
    std::string expected = bad.message;
    if (const auto at = expected.find("NAME"); at != std::string::npos)
      expected.replace(at, 4, path.string());
    if (bad.line > 0)
      expected += "\r\nfile " + path.string() + ", line " + std::to_string(bad.line);
    for (const fs::path &input : {path, path.parent_path()}) {
      const int status = [&] {
        try {
          return load_sizes(input) ? 0 : 1;
        } catch (const program_end &end) {
          return 10 + static_cast<int>(end.status());
        }
      }();
      EXPECT_EQ(status, bad.ends ? 11 : 1);
      EXPECT_EQ(last_message(), expected);
    }
    EXPECT_EQ(text_of(database), before);
    EXPECT_EQ(usable_values.min_n_different_bands_in_clone_get(), 2);
  }
  EXPECT_TRUE(frame.data_failed());
  EXPECT_EQ(loads, 1);
}

TEST_F(sizes_reader, missing_paths_and_folders_without_fingerprints) {
  const std::string place = folder.string();
  EXPECT_FALSE(load_sizes(folder / "none"));
  EXPECT_EQ(last_message(), "Path " + place + "/none not found!");
  fs::create_directories(folder / "empty");
  EXPECT_FALSE(load_sizes(folder / "empty"));
  EXPECT_EQ(last_message(), "No files *.sizes were found in folder " + place + "/empty; it is empty");
  for (const char *name : {"b.txt", "a.txt", "c", "d/x", "e", "f"})
    write(std::string("other/") + name, "1");
  EXPECT_FALSE(load_sizes(folder / "other"));
  EXPECT_EQ(last_message(), "No files *.sizes were found in folder " + place +
                                "/other; 6 entries lie there: a.txt, b.txt, c, d/, e, ...");
  EXPECT_FALSE(load_sizes("/dev/null"));
  EXPECT_EQ(last_message(), "Can't read from archive /dev/null!");
  EXPECT_FALSE(load_sizes("")); // the dialog is cancelled
  EXPECT_EQ(record.questions.back(), "Open any file with bands from folder");
}

TEST_F(sizes_reader, a_stop_request_keeps_what_was_there) {
  ASSERT_TRUE(load_sizes(write("good.sizes", "G\n1\n2\n-1\n")));
  frame.stop_requested_set(true);
  EXPECT_FALSE(load_sizes(write("next.sizes", "H\n1\n-1\nI\n2\n-1\n")));
  EXPECT_EQ(text_of(database), "G:1,2,\n");
}

TEST_F(sizes_reader, plain_text_keeps_its_order_and_copies) {
  const std::string bytes = "B\n3\n\n4\n-1\n\n\nA\r\n1\nC\n\n\nA\n1\n-1\n\n\n";
  ASSERT_TRUE(load_file(write("clones.txt", bytes), false));
  EXPECT_EQ(text_of(database), "B:3,4,\nA:1,\nC:\nA:1,\n");
  EXPECT_EQ(database.nRepeatsCloneName_get(2) + database.nRepeatsCloneName_get(4), 2 - database.clone_number_get("A"));
  EXPECT_THROW(load_file(write("clones.txt", "B\n3\n\n-1.0\n"), false), program_end); // only "-1" ends a clone here
  EXPECT_EQ(last_message(),
            "Wrong ordered bands 1 and 2(3>-1) in clone 1 B\r\nfile " + (folder / "clones.txt").string() + ", line 4");
  EXPECT_EQ(database.total_number_of_clones_get(), 4);
  reader.open_file_with_clones(2, write("clones.txt", bytes), false, true, database, usable_values);
  EXPECT_EQ(database.max_number_of_real_clones_get(), 4); // raised
  EXPECT_THROW(load_file(folder / "none.txt", false), file_error);
}

TEST_F(sizes_reader, counting_without_storing) {
  ASSERT_TRUE(load_sizes(write("a.sizes", "A\n1\n-1\nA\n1\n-1\n"), false));
  EXPECT_EQ(text_of(database), ":\n:\n"); // copies are found only when storing
  EXPECT_EQ(database.next_free_band_adress_get(), 1);
}

TEST_F(sizes_reader, a_real_library) {
  ASSERT_TRUE(load_sizes(fs::path(ORB_SOURCE_DIR) / "examples/ecoli536"));
  EXPECT_EQ(database.total_number_of_clones_get(), 423);
  EXPECT_EQ(reader.summary().n_records, 426);
  EXPECT_EQ(reader.summary().n_copies_dropped, 3);
  EXPECT_EQ(reader.summary().n_files, 2);
  EXPECT_EQ(broken_promise(database), "");
  EXPECT_EQ(database.bands_of_clone(database.clone_number_get("EC001A01")).front(), 1533);
}
