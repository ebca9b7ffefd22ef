#include <gtest/gtest.h>

#include "frame/class_serv_raznoe.h"
#include "frame/failures.h"
#include "frame/files.h"
#include "frame/process_frame.h"
#include "frame/random_source.h"
#include "support/plain_lines.h"
#include "support/temporary_folder.h"

namespace orb {
namespace {

using orb_test::plainly_cut;

using texts = std::vector<std::string>;

texts lines_of(const std::filesystem::path &path) {
  texts lines;
  line_reader reader(path);
  for (std::string_view line; reader.next(line);)
    lines.emplace_back(line);
  EXPECT_TRUE(reader.at_end());
  EXPECT_EQ(reader.position(), reader.size());
  EXPECT_EQ(reader.line_number(), static_cast<std::int64_t>(lines.size()));
  return lines;
}

TEST(line_reader, any_mixture_of_line_ends_around_the_buffer_ends) {
  const temporary_folder folder;
  random_source chance(7);
  const char *const ends[] = {"\r", "\n", "\r\n", "\n\r"};
  for (int round = 0; round < 60; ++round) {
    std::string bytes(round % 5 == 0 ? encoding_mark : "");
    const std::int32_t longest = round % 3 == 0 ? 200000 : 12;
    const std::int32_t n_lines = round % 3 == 0 ? 6 : 20000;
    for (std::int32_t i = 0; i < n_lines; ++i) {
      // high bytes, which a trick with words could take for line ends
      bytes.append(static_cast<std::size_t>(chance.number_up_to(longest)) - 1, static_cast<char>(chance.next() | 0x80));
      if (chance.uniform() < 0.5)
        bytes += "\x0b\x0c\x0e";
      bytes += ends[chance.number_up_to(4) - 1];
    }
    if (round % 2 == 0)
      bytes += "last";
    const texts read = lines_of(folder.write("mixed", bytes)), expected = plainly_cut(bytes);
    ASSERT_EQ(read.size(), expected.size());
    ASSERT_EQ(read, expected);
  }
}

TEST(line_reader, a_line_end_in_two_halves_at_every_place_near_the_buffer_end) {
  const temporary_folder folder;
  for (std::size_t length = 65533; length <= 65540; ++length)
    for (const char *end : {"\r\n", "\r", "\n", ""})
      for (const std::string_view mark : {std::string_view(), encoding_mark}) {
        const std::string bytes = std::string(mark) + std::string(length, 'x') + end + "y\r\n";
        ASSERT_EQ(lines_of(folder.write("halves", bytes)), plainly_cut(bytes)) << length;
      }
}

TEST(line_reader, places_rewinding_and_failures) {
  const temporary_folder folder;
  const std::filesystem::path path = folder.write("a.txt", std::string(encoding_mark) + "one\r\n\r\nthree");
  line_reader reader(path);
  std::string_view line;
  reader.next(line);
  EXPECT_EQ(reader.position(), 8);
  reader.next(line);
  EXPECT_EQ(line, "");
  EXPECT_EQ(reader.place(), "file " + path.string() + ", line 2");
  reader.rewind();
  EXPECT_TRUE(reader.next(line));
  EXPECT_EQ(line, "one");
  EXPECT_TRUE(lines_of(folder.write("empty", "")).empty());
  EXPECT_TRUE(lines_of(folder.write("mark", std::string(encoding_mark))).empty());
  try {
    line_reader absent(folder.path() / "absent");
    FAIL();
  } catch (const file_error &error) {
    EXPECT_EQ(error.what(), "can't open " + (folder.path() / "absent").string() + ": No such file or directory");
  }
  EXPECT_THROW(line_reader{folder.path()}, file_error);
}

TEST(result_file, appears_with_commit_only_and_replaces_whole) {
  const temporary_folder folder;
  const std::filesystem::path path = folder.write("r.txt", "old");
  const std::string long_text(300000, 'z');
  {
    result_file dropped(path);
    dropped.line(long_text);
  }
  EXPECT_EQ(file_bytes(path), "old");
  {
    result_file kept(path);
    kept.line("a");
    kept.write(long_text);
    EXPECT_EQ(file_bytes(path), "old");
    kept.commit();
  }
  EXPECT_EQ(file_bytes(path), "a\r\n" + long_text);
  EXPECT_EQ(class_serv_raznoe::ListOfFilesInFolder(folder.path(), "").size(), 1u); // nothing temporary is left
}

TEST(result_file, a_full_disk_and_unwritable_places_are_errors) {
  const temporary_folder folder;
  if (std::filesystem::exists("/dev/full")) {
    result_file full("/dev/full");
    full.line("a");
    EXPECT_THROW(full.commit(), file_error);
    growing_file growing("/dev/full");
    EXPECT_THROW(growing.line("a"), file_error);
  }
  const std::filesystem::path file = folder.write("file", "x");
  EXPECT_THROW(result_file(file / "below.txt"), file_error);
  EXPECT_THROW(result_file(folder.path() / "absent" / "r.txt"), file_error);
  EXPECT_THROW(result_file{folder.path()}, file_error);
  EXPECT_THROW(growing_file(file / "below.txt"), file_error);
  EXPECT_THROW(create_folder(file / "below"), file_error);
  EXPECT_THROW(create_folder(file), file_error);
  EXPECT_THROW(check_folder_is_writable(file), file_error);
  EXPECT_NO_THROW(check_folder_is_writable(folder.path()));
}

TEST(result_file, devices_are_written_and_links_followed_in_place) {
  const temporary_folder folder;
  result_file null("/dev/null");
  null.line("x");
  null.commit();
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
  const std::filesystem::path link = folder.path() / "link";
  std::filesystem::create_symlink(folder.write("real", "old"), link);
  result_file through(link);
  through.write("new");
  through.commit();
  EXPECT_TRUE(std::filesystem::is_symlink(link));
  EXPECT_EQ(file_bytes(folder.path() / "real"), "new");
}

TEST(growing_file, lines_are_on_disk_at_once_unless_buffered) {
  const temporary_folder folder;
  const std::filesystem::path path = folder.write("g", "old"), other = folder.path() / "h";
  growing_file plain(path), buffered(other, true);
  plain.line("1");
  buffered.line("2");
  EXPECT_EQ(file_bytes(path), "1\r\n");
  EXPECT_EQ(file_bytes(other), "");
  buffered.close();
  EXPECT_EQ(file_bytes(other), "2\r\n");
  EXPECT_THROW(buffered.line("3"), file_error);
}

TEST(growing_file, takes_back_what_was_written_since) {
  const temporary_folder folder;
  const std::filesystem::path path = folder.path() / "g";
  for (const int more : {0, 1, 40000}) { // these many lines fill the room before writing
    growing_file file(path, true);
    file.line("kept");
    const std::size_t length = file.length();
    EXPECT_EQ(length, 6u);
    for (int k = 0; k < more; ++k)
      file.line("left out");
    file.back_to(length);
    file.line("after");
    file.close();
    EXPECT_EQ(file_bytes(path), "kept\r\nafter\r\n") << more;
  }
  growing_file again = growing_file::continued(path);
  again.line("kept");
  const std::size_t length = again.length();
  EXPECT_EQ(length, 6u) << "of a former run's file what is written again counts";
  again.back_to(length);
  again.close();
  EXPECT_EQ(file_bytes(path), "kept\r\n");
}

TEST(growing_file, continued_it_passes_over_what_is_there) {
  const temporary_folder folder;
  const auto continued = [&](const std::string &former, const std::vector<std::string> &lines, bool to_its_end) {
    const std::filesystem::path path = folder.write("g", former);
    growing_file file = growing_file::continued(path);
    for (const std::string &line : lines) {
      file.line(line);
      file.flush();
    }
    if (to_its_end)
      file.end_here();
    else
      file.close();
    return file_bytes(path);
  };
  const std::string both = "one\r\ntwo\r\n";
  for (const char *former : {"", "o", "one\r", "one\r\n", "one\r\ntw", "one\r\ntwo\r\n", "other\r\nthing\r\nmore\r\n"})
    for (const bool to_its_end : {false, true})
      EXPECT_EQ(continued(former, {"one", "two"}, to_its_end), both) << former;
  EXPECT_EQ(continued(both + "three\r\n", {"one"}, false), both + "three\r\n") << "stopped again";
  EXPECT_EQ(continued(both + "three\r\n", {"one"}, true), "one\r\n");
  EXPECT_EQ(continued(both, {}, true), "");
}

TEST(checksums, known_value_and_continuation) {
  const temporary_folder folder;
  const file_checksum sum = checksum_of_file(folder.write("c", "123456789"));
  EXPECT_EQ(sum.size, 9u);
  EXPECT_EQ(sum.crc32, 0xcbf43926u);
  EXPECT_EQ(crc32_of("56789", crc32_of("1234")), sum.crc32);
}

TEST(folders, lists_in_byte_order_without_case_of_the_extension) {
  const temporary_folder folder;
  for (const char *name : {"b.sizes", "B.SIZES", "a10.sizes", "a2.sizes", "x.txt", ".sizes", "sizes", ".b.sizes"})
    folder.write(name, "");
  std::filesystem::create_directory(folder.path() / "folder.sizes");
  const auto list = [&](std::string_view extension) {
    return class_serv_raznoe::create_ordered_list_of_files_in_folder(folder.path(), extension);
  };
  EXPECT_EQ(list("sizes"), (texts{"B.SIZES", "a10.sizes", "a2.sizes", "b.sizes"}));
  EXPECT_EQ(list("").size(), 6u);
  EXPECT_THROW(class_serv_raznoe::ListOfFilesInFolder(folder.path() / "absent", ""), file_error);
}

TEST(folders, current_folder_comes_and_goes_and_parts_are_joined_in_order) {
  const temporary_folder folder;
  process_frame frame(null_front_end(), folder.path());
  const std::filesystem::path former = class_serv_raznoe::create_folder_and_make_it_current(frame, "\\parts");
  EXPECT_EQ(former, folder.path());
  EXPECT_EQ(frame.working_folder_get(), folder.path() / "parts");
  folder.write("parts/n_2.txt", "z\nsame");
  folder.write("parts/n_1.txt", "same\r\nsame\r\nb");
  const std::filesystem::path merged =
      class_serv_raznoe::merge_files_of_folder_sort_del_rep_run(frame, frame.working_folder_get() / "");
  EXPECT_EQ(merged, folder.path() / "parts_merged.txt");
  EXPECT_EQ(file_bytes(merged), "same\r\nsame\r\nb\r\nz\r\nsame\r\n");
  class_serv_raznoe::finish_of_work_with_folder(frame, former);
  EXPECT_EQ(frame.working_folder_get(), folder.path());
}

// Texts resumed inside a part are named by the first clone, without zeros before the number.
TEST(folders, parts_are_joined_by_the_numbers_in_their_names) {
  const temporary_folder folder;
  process_frame frame(null_front_end(), folder.path());
  const char *in_order[] = {"n.txt",    "n_01.txt",   "n_01_90.txt",  "n_01_501.txt",
                            "n_02.txt", "n_10_7.txt", "n_010_70.txt", "n_10_70.txt"};
  std::string expected;
  for (const char *name : in_order) {
    folder.write(std::string("parts/") + name, name);
    expected += std::string(name) + "\r\n";
  }
  EXPECT_EQ(file_bytes(class_serv_raznoe::merge_files_of_folder_sort_del_rep_run(frame, folder.path() / "parts")),
            expected);
}

TEST(file_type, line_ends_and_decimal_signs) {
  struct one_case {
    const char *bytes;
    bool readable, point, crlf, crlf_at_start;
  };
  const one_case cases[] = {{"a\r\n1.5\r\n", true, true, true, true},
                            {"1,5\n2\n", true, false, false, false},
                            {"1,5\r2.5\r", false, false, false, false},
                            {"1,5\n2.5", true, false, false, false}, // the last line isn't complete
                            {"a,b\n1.5.2\n", true, true, false, false},
                            {"", true, true, false, false}};
  const temporary_folder folder;
  answer_book book;
  for (const one_case &c : cases) {
    front_end_record record;
    process_frame frame(scripted_front_end(book, record));
    const std::filesystem::path path = folder.write("f", c.bytes);
    bool readable = false, point = false, crlf = false;
    class_serv_raznoe::read_first_symbols_of_file_and_detect_type(frame, 1000, path, readable, point, crlf);
    EXPECT_EQ(readable, c.readable) << c.bytes;
    EXPECT_EQ(point, c.point) << c.bytes;
    EXPECT_EQ(crlf, c.crlf) << c.bytes;
    EXPECT_EQ(class_serv_raznoe::IsAscii13(path), c.crlf_at_start) << c.bytes;
    const texts expected{"Contradiction in format of non-integer numbers in file " + path.string() + ", Can't read!"};
    EXPECT_EQ(record.messages, readable ? texts{} : expected);
  }
}

} // namespace
} // namespace orb
