#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstring>
#include <sys/stat.h>

#include "frame/failures.h"
#include "frame/files.h"

namespace orb {

namespace {

constexpr std::size_t start_size = 64 * 1024;

// Bytes of `word` that are 0 have their high bit set in the result; above the lowest such byte there may be wrong ones.
std::uint64_t zero_bytes(std::uint64_t word) {
  return (word - 0x0101010101010101u) & ~word & 0x8080808080808080u;
}

// The first CR or LF in [at, end) of `bytes`; `end` when there is none.
std::size_t first_line_end(const char *bytes, std::size_t at, std::size_t end) {
  if constexpr (std::endian::native == std::endian::little) {
    for (; at + 8 <= end; at += 8) {
      std::uint64_t word = 0;
      std::memcpy(&word, bytes + at, 8);
      const std::uint64_t hit = zero_bytes(word ^ 0x0a0a0a0a0a0a0a0au) | zero_bytes(word ^ 0x0d0d0d0d0d0d0d0du);
      if (hit != 0)
        return at + static_cast<std::size_t>(std::countr_zero(hit)) / 8;
    }
  }
  while (at < end && bytes[at] != '\n' && bytes[at] != '\r')
    ++at;
  return at;
}

} // namespace

line_reader::line_reader(const std::filesystem::path &path) : path_(path), file_(std::fopen(path.c_str(), "rb")) {
  if (file_ == nullptr)
    throw file_error("can't open", path_, std::strerror(errno));
  struct stat about {};
  if (::fstat(::fileno(file_), &about) == 0) {
    if (S_ISDIR(about.st_mode)) {
      std::fclose(file_);
      throw file_error("can't open", path_, std::strerror(EISDIR));
    }
    size_ = about.st_size;
  }
  std::setvbuf(file_, nullptr, _IONBF, 0); // the reader has a buffer of its own
  buffer_.resize(start_size);
}

line_reader::~line_reader() {
  std::fclose(file_);
}

// Moves the unread rest to the front of the buffer and reads behind it; a full buffer is doubled. False at the end.
bool line_reader::fill() {
  if (eof_)
    return false;
  if (begin_ > 0) {
    std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
    end_ -= begin_;
    begin_ = 0;
  }
  if (end_ == buffer_.size())
    buffer_.resize(buffer_.size() * 2);
  const std::size_t got = std::fread(buffer_.data() + end_, 1, buffer_.size() - end_, file_);
  if (got == 0) {
    if (std::ferror(file_) != 0)
      throw file_error("can't read", path_, std::strerror(errno));
    eof_ = true;
  }
  end_ += got;
  if (position_ == 0 && std::string_view(buffer_.data(), end_).starts_with(encoding_mark)) {
    begin_ = encoding_mark.size();
    position_ = static_cast<std::int64_t>(begin_);
  }
  return got > 0;
}

bool line_reader::next(std::string_view &line) {
  std::size_t looked_at = begin_;
  for (;;) {
    const std::size_t at = first_line_end(buffer_.data(), looked_at, end_);
    // a CR at the end of the buffer may be half of a CR LF
    const bool whole = at < end_ && (buffer_[at] == '\n' || at + 1 < end_ || eof_);
    if (whole || eof_) {
      if (begin_ == end_)
        return false;
      line = std::string_view(buffer_.data() + begin_, at - begin_);
      std::size_t behind = std::min(at + 1, end_);
      if (whole && buffer_[at] == '\r' && behind < end_ && buffer_[behind] == '\n')
        ++behind;
      position_ += static_cast<std::int64_t>(behind - begin_);
      begin_ = behind;
      ++line_number_;
      return true;
    }
    const std::size_t ahead = at - begin_;
    fill();
    looked_at = begin_ + ahead;
  }
}

bool line_reader::at_end() {
  while (begin_ == end_ && !eof_)
    fill();
  return begin_ == end_;
}

void line_reader::rewind() {
  if (std::fseek(file_, 0, SEEK_SET) != 0)
    throw file_error("can't read again", path_, std::strerror(errno));
  begin_ = end_ = 0;
  line_number_ = position_ = 0;
  eof_ = false;
}

std::string line_reader::place() const {
  return "file " + path_.string() + ", line " + std::to_string(line_number_);
}

} // namespace orb
