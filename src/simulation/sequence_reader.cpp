#include "simulation/sequence_reader.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fmt/format.h>
#include <sys/stat.h>
#include <zlib.h>

#include "frame/class_serv_raznoe.h"
#include "frame/failures.h"

namespace orb {

namespace {

constexpr std::size_t block_size = 1 << 20;
constexpr std::size_t longest_name = 1000;

// What a byte of a sequence line means: a letter number, or one of these.
constexpr std::uint8_t passed_over = 5, line_end = 6, no_letter = 7;

constexpr std::array<std::uint8_t, 256> meanings() {
  std::array<std::uint8_t, 256> table{};
  for (std::uint8_t &meaning : table)
    meaning = no_letter;
  const auto set = [&table](std::string_view letters, std::uint8_t meaning) {
    for (const char letter : letters) {
      table[static_cast<unsigned char>(letter)] = meaning;
      if (letter >= 'A' && letter <= 'Z')
        table[static_cast<unsigned char>(letter) + 32] = meaning;
    }
  };
  set("A", 1);
  set("C", 2);
  set("G", 3);
  set("T", 4);
  set("NRYKMSWBDHVUX,", 0); // U is no letter of DNA, X masks one
  set(" \t", passed_over);
  set("\n\r", line_end);
  return table;
}

constexpr std::array<std::uint8_t, 256> meaning_of = meanings();

} // namespace

sequence_reader::sequence_reader(const std::filesystem::path &file) : path_(file), buffer_(block_size) {
  struct stat about {};
  if (::stat(path_.c_str(), &about) != 0)
    throw file_error("can't open", path_, std::strerror(errno));
  if (S_ISDIR(about.st_mode))
    throw file_error("can't open", path_, std::strerror(EISDIR));
  size_ = about.st_size;
  errno = 0;
  file_ = ::gzopen(path_.c_str(), "rb");
  if (file_ == nullptr)
    throw file_error("can't open", path_, std::strerror(errno != 0 ? errno : ENOMEM));
  ::gzbuffer(file_, 1 << 18);
  letters_.reserve(block_size);
}

sequence_reader::~sequence_reader() {
  ::gzclose_r(file_);
}

std::int64_t sequence_reader::position() const {
  return static_cast<std::int64_t>(::gzoffset(file_));
}

std::string sequence_reader::place_of_line(std::int64_t line) const {
  return fmt::format("file {}, line {}", path_.string(), line);
}

bool sequence_reader::fill() {
  const int got = ::gzread(file_, buffer_.data(), static_cast<unsigned>(buffer_.size()));
  if (got <= 0) {
    int number = Z_OK;
    const char *reason = ::gzerror(file_, &number);
    if (number != Z_OK && number != Z_STREAM_END)
      throw file_error("can't read", path_, number == Z_ERRNO ? std::strerror(errno) : reason);
    return false;
  }
  const bool at_begin = end_ == 0;
  at_ = 0;
  end_ = static_cast<std::size_t>(got);
  if (at_begin && end_ >= 3 && std::memcmp(buffer_.data(), "\xef\xbb\xbf", 3) == 0)
    at_ = 3; // the mark of UTF-8
  return true;
}

// CR, LF and CR LF each end a line.
void sequence_reader::line_ended(char end) {
  if (!(end == '\n' && last_line_end_ == '\r'))
    ++line_;
  last_line_end_ = end;
  line_begins_ = true;
}

sequence_reader::piece sequence_reader::refuse(unsigned char character) {
  const std::string shown = character > 32 && character < 127 ? fmt::format("\"{}\"", static_cast<char>(character))
                                                              : fmt::format("the byte {}", static_cast<int>(character));
  problem_ = fmt::format("This is no DNA sequence: {} in {}", shown, place());
  return piece::refused;
}

// The rest of a header line that lies in the buffer.
sequence_reader::piece sequence_reader::take_header() {
  while (at_ < end_) {
    const char c = buffer_[at_++];
    if (c == '\n' || c == '\r') {
      in_header_ = false;
      has_record_ = true;
      line_of_record_ = line_;
      line_ended(c);
      return piece::record;
    }
    if (c == 0)
      return refuse(0);
    name_is_whole_ = name_is_whole_ || c == ' ' || c == '\t' || name_.size() >= longest_name;
    if (!name_is_whole_)
      name_ += c;
  }
  return piece::letters; // goes on in the next block
}

// A memchr a piece of line: nearly always nothing is found.
void sequence_reader::count_letters_U(std::string_view letters) {
  if (letters.find('U') == std::string_view::npos && letters.find('u') == std::string_view::npos)
    return;
  if (n_letters_U_ == 0)
    place_of_first_U_ = place();
  n_letters_U_ += std::count(letters.begin(), letters.end(), 'U') + std::count(letters.begin(), letters.end(), 'u');
}

// Letters up to the next header or the end of the buffer.
sequence_reader::piece sequence_reader::take_letters() {
  letters_.resize(end_ - at_);
  std::uint8_t *out = letters_.data();
  piece found = piece::letters;
  while (at_ < end_) {
    std::uint8_t meaning = 0;
    const std::size_t begin = at_;
    while (at_ < end_ && (meaning = meaning_of[static_cast<unsigned char>(buffer_[at_])]) < line_end) {
      *out = meaning;
      out += meaning != passed_over;
      ++at_;
    }
    if (at_ > begin)
      line_begins_ = false, last_line_end_ = 0;
    count_letters_U({buffer_.data() + begin, at_ - begin});
    if (at_ == end_)
      break;
    const char c = buffer_[at_];
    if (meaning == line_end) {
      line_ended(c);
    } else if (c == '>' && line_begins_) {
      in_header_ = true;
      name_is_whole_ = false;
      break;
    } else {
      found = refuse(static_cast<unsigned char>(c));
      break;
    }
    ++at_;
  }
  letters_.resize(static_cast<std::size_t>(out - letters_.data()));
  return found;
}

sequence_reader::piece sequence_reader::next() {
  for (;;) {
    if (at_ == end_ && !fill()) {
      if (!in_header_)
        return piece::end;
      in_header_ = false; // a header that ends with the file
      return piece::record;
    }
    if (in_header_) {
      if (line_begins_) { // at its ">"
        ++at_;
        line_begins_ = false;
        last_line_end_ = 0;
        name_.clear();
      }
      const piece found = take_header();
      if (found != piece::letters)
        return found;
      continue;
    }
    if (!has_record_ && buffer_[at_] != '>' && meaning_of[static_cast<unsigned char>(buffer_[at_])] < passed_over) {
      has_record_ = true;
      name_ = class_serv_raznoe::extract_pure_file_name(path_.string());
      return piece::record;
    }
    if (!has_record_ && meaning_of[static_cast<unsigned char>(buffer_[at_])] < no_letter) {
      // blanks and line ends before the first record, one at a time
      if (meaning_of[static_cast<unsigned char>(buffer_[at_])] == line_end)
        line_ended(buffer_[at_]);
      ++at_;
      continue;
    }
    const piece found = take_letters();
    if (found == piece::refused || !letters_.empty())
      return found;
  }
}

} // namespace orb
