// Reading text files line by line whatever their line ends, and writing result files that are never half there.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace orb {

// What some programs put in front of a text in UTF-8.
inline constexpr std::string_view encoding_mark = "\xEF\xBB\xBF";

// A buffered reader of lines that end with CR, LF or CR LF, in any mixture. Throws file_error when the file can't be
// opened or read. No allocation for a line that lies inside the buffer (64 KiB and growing with the longest line). An
// encoding mark at the beginning of the file belongs to no line.
class line_reader {
public:
  explicit line_reader(const std::filesystem::path &path);
  ~line_reader();
  line_reader(const line_reader &) = delete;
  line_reader &operator=(const line_reader &) = delete;

  // The next line without its end; false at the end of the file. The view holds until the next call. A last line
  // without an end counts; an empty rest behind the last end doesn't.
  bool next(std::string_view &line);
  std::int64_t line_number() const { return line_number_; } // of the line last read, from 1
  std::int64_t position() const { return position_; }       // bytes consumed so far
  std::int64_t size() const { return size_; }               // of the whole file
  bool at_end();
  // Back to the first line.
  void rewind();
  const std::filesystem::path &path() const { return path_; }
  // "file NAME, line N", the place named in messages about bad input.
  std::string place() const;

private:
  bool fill();
  std::filesystem::path path_;
  std::FILE *file_ = nullptr;
  std::vector<char> buffer_;
  std::size_t begin_ = 0, end_ = 0;
  bool eof_ = false;
  std::int64_t line_number_ = 0, position_ = 0, size_ = 0;
};

// A result file: written to a temporary name beside the target and renamed by `commit`; gone when not committed.
// Throws file_error when it can't be created, written (a full disk) or renamed.
class result_file {
public:
  explicit result_file(std::filesystem::path target);
  ~result_file();
  result_file(const result_file &) = delete;
  result_file &operator=(const result_file &) = delete;

  void write(std::string_view bytes);
  void line(std::string_view text) { // text and CR LF
    write(text);
    write("\r\n");
  }
  void commit();
  const std::filesystem::path &path() const { return target_; }

private:
  void flush();
  std::filesystem::path target_, temporary_;
  int descriptor_ = -1;
  std::string buffer_;
};

// A file that grows while a run goes on (run reports, text net): every line is on disk when `line` returns, unless
// `buffered` is asked for, in which case `flush` and the end of its life see to it.
// One that is `continued` holds what a stopped run wrote. The run that goes on writes all of it again: what is there
// already is passed over, so that nothing is ever missing, and from the first difference on the file is written anew.
class growing_file {
public:
  growing_file() = default;
  explicit growing_file(const std::filesystem::path &path, bool buffered = false); // emptied when it exists
  static growing_file continued(const std::filesystem::path &path);                // buffered; made when it isn't there
  ~growing_file();
  growing_file(growing_file &&) noexcept;
  growing_file &operator=(growing_file &&) noexcept;

  bool is_open() const { return descriptor_ >= 0; }
  void line(std::string_view text); // text and CR LF
  void flush();
  void close();
  std::size_t length();             // bytes, with those that wait
  void back_to(std::size_t length); // what was written since `length()` said so is gone
  void end_here();                  // nothing of an earlier run stands behind what was written; then closes

private:
  void pass_over_what_is_there();
  void cut(std::size_t length);

  std::filesystem::path path_;
  int descriptor_ = -1;
  bool buffered_ = false;
  std::string buffer_;
  std::string former_;       // bytes of an earlier run
  std::size_t n_passed_ = 0; // of these
};

// A file that is needed for a while: gone with the object. An empty path is none.
class passing_file {
public:
  explicit passing_file(std::filesystem::path path = {}) : path_(std::move(path)) {}
  ~passing_file() {
    std::error_code failed;
    if (!path_.empty())
      std::filesystem::remove(path_, failed);
  }
  passing_file(const passing_file &) = delete;
  passing_file &operator=(const passing_file &) = delete;
  const std::filesystem::path &path() const { return path_; }

private:
  std::filesystem::path path_;
};

// What a temporary file has behind the name that it will have: it differs between the files of this process, and names
// the process and its host.
std::string temporary_suffix();
// Removes the temporary files in a folder, not below it, that processes of this host left that are gone; `beginning`:
// only those whose name begins so. What can't be removed stays.
void remove_stale_temporaries(const std::filesystem::path &folder, std::string_view beginning = {});

// Makes a new file that takes up `size` bytes of its disk; false when it can't.
bool set_room_aside(const std::filesystem::path &file, std::size_t size);

// The whole file as bytes; throws file_error.
std::string file_bytes(const std::filesystem::path &path);
// Size in bytes and CRC-32 of a file's bytes; throws file_error.
struct file_checksum {
  std::uint64_t size = 0;
  std::uint32_t crc32 = 0;
};
file_checksum checksum_of_file(const std::filesystem::path &path);
// Continues a CRC-32 over more bytes; start with 0.
std::uint32_t crc32_of(std::string_view bytes, std::uint32_t start = 0);
// Creates the folder and its parents; throws file_error.
void create_folder(const std::filesystem::path &folder);
// Checks by creating and removing a file that something can be written there; throws file_error.
void check_folder_is_writable(const std::filesystem::path &folder);

} // namespace orb
