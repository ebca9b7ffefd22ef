// New names for clones, and lines of names brought to the names of the library.
#include "database/clone_name_files.h"

#include "support/database_fixture.h"

namespace orb_test {
namespace {

class clone_name_files : public database_fixture {
protected:
  clone_name_files() {
    const std::vector<std::string> names{"A1", "B2", "A1", "C3", "D4"};
    database.inicalise_database(frame, 5, 10);
    for (clone_number clone = 1; clone <= 5; ++clone) {
      database.ListOfBands_from_real_database_fast_all_bands_set(clone, std::vector<band_value>{100});
      database.name_of_clone_set(clone, names[static_cast<std::size_t>(clone) - 1]);
    }
    database.total_number_of_clones_set(5);
    database.sort_clones_by_name(frame);
    record = {};
  }
  std::string names() const {
    std::string text;
    for (clone_number clone = 1; clone <= 5; ++clone)
      text += database.name_of_clone_get(clone) + " ";
    return text;
  }
  bool load(const fs::path &file) {
    return load_new_clone_names(
        frame, database, file, [this] { ++n_saved; }, summary);
  }
  bool extract(const lists_of_names_options &options) {
    return extract_lists_of_clone_names(frame, database, options, written);
  }

  new_names_summary summary;
  fs::path written;
  int n_saved = 0;
  static constexpr const char *save_question = "Do you want to save new version of clone database?";
};

TEST_F(clone_name_files, new_names) {
  // Both versions of A1; a swap, since old names are those before; no change; comments; an unknown name; no old name.
  const fs::path file =
      write("new.txt", "X1\tA1\r\nC3\tB2\nB2\tC3\trest\r\n\r\nD4\tD4\n#skip\tD4\n\tD4\nY\tnobody\nZ\n");
  book.add({"Open file with new names of clones...", file.string(), false});
  book.add({save_question, "yes", false});
  ASSERT_TRUE(load({}));
  EXPECT_EQ(names(), "X1 C3 X1 B2 D4 ");
  EXPECT_EQ(file_bytes(folder / "not_found.txt"), "nobody\r\n\r\n");
  EXPECT_EQ(record.messages.back(),
            "Loaded file with new names for some clones:\rTotal number of lines = 8\rNumber of "
            "correct old names=6\r(out of total number of clones=5)\rTotal number of changes=4");
  EXPECT_EQ(n_saved, 1);
  EXPECT_EQ(database.clone_number_get("C3"), 2); // sorted again
  const std::string logged = "Loading new names for clones " + file.string();
  EXPECT_EQ(std::count(record.log.begin(), record.log.end(), logged), 2);
}

TEST_F(clone_name_files, nothing_changes_without_a_whole_file) {
  EXPECT_FALSE(load({})); // cancelled
  EXPECT_FALSE(fs::exists(folder / "not_found.txt"));
  const fs::path good = write("good.txt", "X1\tA1\n");
  EXPECT_FALSE(load(write("bytes.txt", std::string("X1\tA1\nY\t\0\2", 11))));
  EXPECT_TRUE(frame.data_failed());
  frame.stop_requested_set(true);
  EXPECT_FALSE(load(good));
  EXPECT_EQ(names(), "A1 B2 A1 C3 D4 ");
  EXPECT_TRUE(load(write("same.txt", "A1\tA1\n")));
  EXPECT_TRUE(std::find(record.questions.begin(), record.questions.end(), save_question) == record.questions.end());
  EXPECT_TRUE(load(good)); // and "no" to the question
  EXPECT_EQ(record.questions.back(), save_question);
  EXPECT_EQ(n_saved, 0);
}

TEST_F(clone_name_files, lists_of_names) {
  // D4 by its letters and digits, C3 by dropping characters, an unknown one; clone order; an empty line stays a line.
  const fs::path file = write("lists.txt", "D4,B2,  D-4 ,B2\nC_3.xyz,nobody,B2\n\nQ\n");
  ASSERT_TRUE(extract({file, false, {}}));
  EXPECT_EQ(written, folder / "column_with_clone_names.txt");
  EXPECT_EQ(file_bytes(written), "B2,D4\r\nB2,C3\r\n\r\n\r\n");
  book.add({"Need to exclude some clones?", "yes", true});
  book.add({"Open file with clone names to exclude", write("out.txt", "B2\nnobody\n").string(), false});
  ASSERT_TRUE(extract({file, {}, {}}));
  EXPECT_EQ(file_bytes(written), "D4\r\nC3\r\n\r\n\r\n");
  ASSERT_TRUE(extract({file, true, write("empty.txt", "")}));
  EXPECT_EQ(record.messages, std::vector<std::string>{"no lines!"});
  EXPECT_EQ(file_bytes(written), "B2,D4\r\nB2,C3\r\n\r\n\r\n");
  fs::remove(written);
  EXPECT_FALSE(extract({file, {}, {}})); // the second dialog cancelled
  EXPECT_FALSE(extract({write("bytes.txt", std::string("A1\0", 3)), false, {}}));
  frame.stop_requested_set(true);
  EXPECT_FALSE(extract({file, false, {}}));
  EXPECT_FALSE(fs::exists(written));
}

} // namespace
} // namespace orb_test
