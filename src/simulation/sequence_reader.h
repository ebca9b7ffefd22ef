// Reads DNA as letter numbers, block by block, from plain or gzip files in FASTA form or without any headers.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

struct gzFile_s;

namespace orb {

class sequence_reader {
public:
  // Throws file_error when the file can't be opened.
  explicit sequence_reader(const std::filesystem::path &file);
  ~sequence_reader();
  sequence_reader(const sequence_reader &) = delete;
  sequence_reader &operator=(const sequence_reader &) = delete;

  enum class piece {
    record,  // a record begins: `name`
    letters, // the next letters of the record
    refused, // this is no DNA sequence: `problem`
    end
  };
  // Letters before the first header belong to a record named by the file. Throws file_error when reading fails or a
  // gzip stream is damaged or cut off.
  piece next();

  const std::string &name() const { return name_; } // first word of the header, at most 1000 characters
  // 1 A, 2 C, 3 G, 4 T; 0 N, ",", and the letters of IUPAC-IUB 1984 that stand for more than one base.
  const std::vector<std::uint8_t> &letters() const { return letters_; }
  // Letters U so far: no letter of DNA, taken for an unknown one; RNA has them in place of T. With the first one's
  // place.
  std::int64_t n_letters_U() const { return n_letters_U_; }
  const std::string &place_of_first_U() const { return place_of_first_U_; }
  const std::string &problem() const { return problem_; }    // what stands where: "... in file NAME, line N"
  std::string place() const { return place_of_line(line_); } // "file NAME, line N"
  std::string place_of_record() const { return place_of_line(line_of_record_); } // of its header
  std::int64_t position() const;                                                 // bytes of the file consumed so far
  std::int64_t size() const { return size_; }                                    // of the file

private:
  std::string place_of_line(std::int64_t line) const;
  bool fill();
  piece take_header();
  piece take_letters();
  void line_ended(char end);
  void count_letters_U(std::string_view letters);
  piece refuse(unsigned char character);

  std::filesystem::path path_;
  gzFile_s *file_ = nullptr;
  std::int64_t size_ = 0, line_ = 1, line_of_record_ = 1;
  std::vector<char> buffer_;
  std::size_t at_ = 0, end_ = 0;
  std::vector<std::uint8_t> letters_;
  std::int64_t n_letters_U_ = 0;
  std::string place_of_first_U_;
  std::string name_, problem_;
  bool line_begins_ = true, in_header_ = false, name_is_whole_ = false, has_record_ = false;
  char last_line_end_ = 0;
};

} // namespace orb
