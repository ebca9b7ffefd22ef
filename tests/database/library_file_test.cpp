#include <algorithm>

#include "database/band_statistics.h"
#include "database/database_tests.h"
#include "database/library_file.h"
#include "support/database_fixture.h"

using namespace orb_test;

namespace {

class library_file : public database_fixture {
protected:
  void fill(class_DB_of_clones &db, random_source &random, std::int32_t n) {
    static const std::vector<std::string> odd_names{"a,b", "\"", "x\"y", "", " ", "\"q\"", "#TRUE#"};
    db.inicalise_database(frame, n, 1);
    for (clone_number i = 1; i <= n; ++i) {
      const auto pick = static_cast<std::size_t>(random.number_up_to(30));
      db.name_of_clone_set(i, pick < odd_names.size() ? odd_names[pick]
                                                      : "C" + std::to_string(random.number_up_to(4 * n)));
      std::vector<band_value> bands(static_cast<std::size_t>(random.number_up_to(9)) - 1);
      for (band_value &band : bands)
        band = random.number_up_to(200) - 1;
      std::sort(bands.begin(), bands.end());
      db.ListOfBands_from_real_database_fast_all_bands_set(i, bands);
    }
    db.total_number_of_clones_set(n);
  }
  // 0 loaded, 1 refused, 11 the program ended because of wrong data.
  int load_status(const fs::path &path) {
    try {
      return load_file(path, true) ? 0 : 1;
    } catch (const program_end &end) {
      return 10 + static_cast<int>(end.status());
    }
  }
};

const std::string good =
    "\"\",2,0,60000,12,1,#FALSE#,4,2250,0\r\n\"A\"\r\n\"B\"\r\n1\r\n3\r\n4\r\n10\r\n20\r\n30\r\n0\r\n";

} // namespace

TEST_F(library_file, what_is_written_reads_back_equal) {
  random_source random(3);
  for (int round = 0; round < 60; ++round) {
    class_DB_of_clones db;
    db.tollerance_parameters_set(static_cast<std::int16_t>(random.number_up_to(5) - 1),
                                 random.number_up_to(3) == 1 ? 0 : 1);
    db.total_number_of_different_bands_set_by_eff_len(2000 + random.uniform());
    db.total_number_of_different_bands_FPC_set(random.number_up_to(3000));
    if (round % 4 == 0)
      db.index_of_band_type_set(5); // a kind without stored bands
    if (round % 3 == 0)
      db.database_title_set("title, with \"quotes\"");
    db.database_spare_index_set(static_cast<std::int16_t>(random.number_up_to(100) - 50));
    fill(db, random, random.number_up_to(40));
    db.sort_clones_by_name(frame);
    DataBase_in_typical_file_print(folder / "1.ORBdb", db);
    ASSERT_TRUE(load_file(folder / "1.ORBdb", true)) << last_message();
    EXPECT_EQ(broken_promise(database), "");
    EXPECT_EQ(text_of(database), text_of(db));
    EXPECT_EQ(database.database_title_get(), db.database_title_get());
    EXPECT_EQ(database.max_band_length_get(), db.max_band_length_get());
    EXPECT_EQ(database.total_number_of_different_bands_get(), db.total_number_of_different_bands_get());
    EXPECT_EQ(library_checksum(database), library_checksum(db));
    DataBase_in_typical_file_print(folder / "2.ORBdb", database);
    EXPECT_EQ(file_bytes(folder / "2.ORBdb"), file_bytes(folder / "1.ORBdb"));
    EXPECT_TRUE(is_library_file(folder / "1.ORBdb"));
  }
}

TEST_F(library_file, is_written_to_the_byte) {
  ASSERT_EQ(load_status(write("good.ORBdb", good)), 0) << last_message();
  DataBase_in_typical_file_print(folder / "again.ORBdb", database);
  std::string sorted = good;
  EXPECT_EQ(file_bytes(folder / "again.ORBdb"), sorted.replace(sorted.find("#FALSE#"), 7, "#TRUE#"));
  database.killbands();
  EXPECT_THROW(DataBase_in_typical_file_print(folder / "again.ORBdb", database), file_error);
}

TEST_F(library_file, brings_its_parameters_and_raises_the_capacity) {
  database.max_number_of_real_clones_set(1);
  ASSERT_EQ(load_status(write("l.ORBdb", "\"t\",2,7,3300,7,0,#TRUE#,4,236,1\n\"A\"\n\"B\"\n1\n3\n4\n1\n236\n3\n99\n")),
            0);
  EXPECT_EQ(database.total_number_of_different_bands_get(), 236);
  EXPECT_EQ(database.tollerance_get(), 7);
  EXPECT_EQ(database.index_of_band_type_get(), 1);
  EXPECT_EQ(database.max_number_of_real_clones_get(), 2);
  EXPECT_EQ(database.band_array()[4], 99); // the spare value
  EXPECT_EQ(usable_values.min_n_different_bands_in_clone_get(), 1);
}

TEST_F(library_file, damaged_files_are_refused_and_change_nothing) {
  ASSERT_EQ(load_status(write("good.ORBdb", good)), 0);
  const std::string before = text_of(database);
  const std::string problem = "Problem with file!\rFingerprint data was not loaded.",
                    damaged = "The library file is damaged: ";
  struct damage {
    std::string what, with, message;
    int line, n_messages = 1, status = 1;
  };
  const std::vector<damage> cases{
      {"\"\",2", ",2", problem, 1},
      {"\"\",2", "\"\",x", problem, 1},
      {"\"\",2", "\"\",-2", problem, 1},
      {"60000", "1e+12", problem, 1},
      {",12,1", ",-1,1", problem, 1},
      {",12,1", ",99999,1", problem, 1},
      {"2250", "0", problem, 1},
      {",2250,0", "", problem, 1},
      {"\"\",2", "\"\",1000", "DataBase Error: declared number of clones 1000 is higher than the observed=9", 10, 2},
      {good.substr(good.find("4\r\n10")), "",
       "DataBase Error: declared number of clones 2 is higher than the observed=4", 5},
      {"\"\",2", "\"\",3", damaged + "the name isn't in double quotes", 4},
      {"\r\n1\r\n", "\r\n2\r\n", damaged + "the first address of bands isn't 1", 4},
      {"\r\n3\r\n", "\r\n0\r\n", damaged + "addresses of bands don't ascend", 5},
      {"\r\n3\r\n", "\r\n9\r\n", damaged + "an address of bands lies behind the 4 that the file declares", 5},
      {"\r\n3\r\n", "\r\nx\r\n", damaged + "the address of a clone's bands is no number", 5},
      {",4,2250", ",5,2250", damaged + "the last address of bands isn't the 5 that the file declares", 6},
      {"\r\n20\r\n", "\r\n2O\r\n", damaged + "a band is no number", 8},
      {"30\r\n0\r\n", "30\r\n", "DataBase Error: declared number of bands 4 is higher than the observed=3", 9},
      {"30\r\n0\r\n", "30\r\n0\r\n1\r\n", damaged + "there are more lines than it declares", 11},
      {"\r\n20\r\n", "\r\n2\r\n", "Wrong ordered bands 1 and 2(10>2) in clone 1 A", 8, 1, 11},
      {"\r\n30\r\n", "\r\n-30\r\n", "Wrong band 1(-30<0) in clone 2 B", 9, 1, 11},
      {"\r\n20\r\n", "\r\n60001\r\n", "Wrong band 2(60001>60000=max) in clone 1 A", 8, 1, 11}};
  const fs::path path = folder / "bad.ORBdb";
  for (const damage &one : cases) {
    std::string bytes = good;
    ASSERT_NE(bytes.find(one.what), std::string::npos);
    write("bad.ORBdb", bytes.replace(bytes.find(one.what), one.what.size(), one.with));
    record.messages.clear();
    EXPECT_EQ(load_status(path), one.status) << one.message;
    EXPECT_EQ(record.messages, std::vector<std::string>(static_cast<std::size_t>(one.n_messages),
                                                        one.message + "\r\nfile " + path.string() + ", line " +
                                                            std::to_string(one.line)));
    EXPECT_EQ(text_of(database), before);
  }
  write("bad.ORBdb", "\"\",1,0,60000,12,1,#FALSE#,502,2250,0\n\"A\"\n1\n502\n");
  EXPECT_EQ(load_status(path), 11);
  EXPECT_EQ(last_message(),
            "DB_of_clones.MAX_number_of_bands_in_clone_get < n_different_bands_in_clone: _500 < 501\r\nfile " +
                path.string() + ", line 4");
  write("bad.ORBdb", "\"\",0,0,60000,12,1,#FALSE#,1,2250,0\n1\n0\n");
  EXPECT_EQ(load_status(path), 1);
  EXPECT_EQ(last_message(), "NB! No clones was readen!\r\nfile " + path.string());
  EXPECT_EQ(loads, 1);
}

// Bytes flipped, doubled, cut off: a load is refused with a message, or gives a database that keeps its promises.
TEST_F(library_file, survives_damage_of_any_kind) {
  random_source random(11);
  class_DB_of_clones db;
  db.total_number_of_different_bands_set_by_eff_len(250);
  apply_parameters(12, 1, 250);
  fill(db, random, 12);
  DataBase_in_typical_file_print(folder / "whole.ORBdb", db);
  const std::string library = file_bytes(folder / "whole.ORBdb");
  const std::string sizes = "A1\t3\tGel\r\n10.5\r\n20\r\n30,5\r\n-1\r\n\r\nA2\n7\nA3\n-1\nA2\n7\n-1\n9\n";
  static const std::string bytes_to_put = "0123456789-+.,eE\"#\r\n\t A\0\xFF";
  int loaded = 0, refused = 0;
  for (int round = 0; round < 500; ++round) {
    const bool as_library = round % 2 == 0;
    std::string bytes = as_library ? library : sizes;
    for (int k = random.number_up_to(3); k > 0; --k) {
      const auto at = static_cast<std::size_t>(random.number_up_to(static_cast<std::int32_t>(bytes.size()))) - 1;
      const char put =
          bytes_to_put[static_cast<std::size_t>(random.number_up_to(static_cast<std::int32_t>(bytes_to_put.size()))) -
                       1];
      switch (random.number_up_to(4)) {
      case 1:
        bytes[at] = put;
        break;
      case 2:
        bytes.insert(at, 1, put);
        break;
      case 3:
        bytes.erase(at, 1);
        break;
      default:
        if (random.number_up_to(4) == 1)
          bytes.resize(at);
      }
      if (bytes.empty())
        bytes = "\n";
    }
    const fs::path path = write("fuzzed", bytes);
    apply_parameters(12, 1, 250);
    const std::size_t messages = record.messages.size();
    bool success = false;
    try {
      success = as_library ? load_file(path, true) : load_sizes(path);
    } catch (const program_end &end) {
      ASSERT_EQ(end.status(), exit_status::run_failed);
    }
    ++(success ? loaded : refused);
    if (success)
      ASSERT_EQ(broken_promise(database), "") << bytes;
    else
      ASSERT_GT(record.messages.size(), messages) << bytes;
  }
  EXPECT_GT(loaded, 50);
  EXPECT_GT(refused, 100);
}

TEST_F(library_file, saving_by_dialog) {
  ASSERT_EQ(load_status(write("good.ORBdb", good)), 0);
  const std::string title = "Save lists of bands for clones in the ORB-specific format";
  EXPECT_EQ(save_library_run(frame, database), fs::path());
  EXPECT_EQ(last_message(), "NB! File in ORB specific format was not created!");
  book.add({title, (folder / "saved.ORBdb").string(), false});
  EXPECT_EQ(save_library_run(frame, database), folder / "saved.ORBdb");
  EXPECT_EQ(last_message(), "Lists of bands for clones in the ORB-specific format are saved.");
  EXPECT_TRUE(is_library_file(folder / "saved.ORBdb"));
  EXPECT_FALSE(is_library_file(write("other", "a,b\n")));
  EXPECT_FALSE(is_library_file(folder / "none"));
}

TEST_F(library_file, lists_and_tests_of_a_database) {
  ASSERT_TRUE(load_sizes(write("a.sizes", "A\n1\n2\n-1\nB\n-1\nA\n3\n-1\n")));
  print_names_of_all_clones(frame, database);
  EXPECT_EQ(file_bytes(folder / "DB.txt"), "A\r\nA\r\nB\r\n");
  book.add({"Need number of bands?", "yes", false});
  print_names_of_all_clones(frame, database);
  EXPECT_EQ(file_bytes(folder / "DB.txt"), "A\t2\r\nA\t1\r\nB\t0\r\n");
  book.add({"Repeats=1, Not_eq=0. Make file without repeats? (You will need to select file with DataBase again)", "yes",
            false});
  number_list written;
  test_database_on_repeats(frame, database, false, [&written](const number_list &list) { written = list; });
  EXPECT_EQ(written, (number_list{1, 3}));
  book.add({"Open .sizes file to test", write("t.sizes", "A,1\n7,5\n15E24\n").string(), false});
  test_for_Reviewer(frame);
  EXPECT_EQ(file_bytes(folder / "testRes.txt"),
            "A,1\tFalse\t-\tA.1\tFalse\t-\r\n7,5\tTrue\t7.5000\r\n15E24\tFalse\t-\t15E24\tFalse\t-\r\n");
}

TEST_F(library_file, statistics_follow_changed_parameters) {
  ASSERT_TRUE(load_sizes(write("a.sizes", "A\n10\n500\n-1\n")));
  apply_parameters(12, 1, 600);
  EXPECT_TRUE(make_band_statistics(frame, database, usable_values));
  EXPECT_DOUBLE_EQ(database.frecuency_of_band_in_clones_get(512), 1);
  apply_parameters(12, 1, 400);
  EXPECT_FALSE(make_band_statistics(frame, database, usable_values));
  EXPECT_EQ(last_message(), "Wrong band 2(500>400=max) in clone 1 A");
  apply_parameters(12, 1, 1e12);
  EXPECT_FALSE(make_band_statistics(frame, database, usable_values));
}
