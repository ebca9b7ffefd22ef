#include "frame/files.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <zlib.h>

#include "frame/failures.h"
#include "frame/process_identity.h"

namespace orb {

namespace {

constexpr std::size_t write_buffer = 256 * 1024;

std::string reason_of(int error) {
  return std::strerror(error);
}

[[noreturn]] void fail(const char *action, const std::filesystem::path &path, int error) {
  throw file_error(action, path, reason_of(error));
}

// 0, or the system's error number.
int write_whole(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written >= 0)
      bytes.remove_prefix(static_cast<std::size_t>(written));
    else if (errno != EINTR)
      return errno;
  }
  return 0;
}

// Process numbers count within a host, and within a container: eight hexadecimal digits for both.
const std::string &mark_of_this_host() {
  static const std::string mark = [] {
    char digits[9];
    std::snprintf(digits, sizeof digits, "%08x", crc32_of(this_process().host + this_process().space));
    return std::string(digits);
  }();
  return mark;
}

// The process that made the temporary file of this name on this host; 0 when it is none.
std::int64_t maker_of_temporary(const std::string &name) {
  const std::size_t begin = name.rfind(".tmp");
  int end = 0;
  long long process = 0, count = 0;
  if (begin == std::string::npos ||
      std::sscanf(name.c_str() + begin, ".tmp%lld_%lld_%n", &process, &count, &end) != 2 || process <= 0 || count < 0)
    return 0;
  const std::string suffix = ".tmp" + std::to_string(process) + "_" + std::to_string(count) + "_" +
                             mark_of_this_host(); // blanks, zeros, signs
  return begin > 0 && name.substr(begin) == suffix ? process : 0;
}

} // namespace

std::string temporary_suffix() {
  static std::atomic<unsigned> count{0};
  return ".tmp" + std::to_string(::getpid()) + "_" + std::to_string(count++) + "_" + mark_of_this_host();
}

void remove_stale_temporaries(const std::filesystem::path &folder, std::string_view beginning) {
  std::error_code failed;
  for (std::filesystem::directory_iterator at(folder, failed), end; !failed && at != end; at.increment(failed)) {
    const std::string name = at->path().filename().string();
    const std::int64_t process = name.starts_with(beginning) ? maker_of_temporary(name) : 0;
    if (std::error_code ignored; process > 0 && at->is_regular_file(ignored) && process_is_gone(process))
      std::filesystem::remove(at->path(), ignored);
  }
}

// ---- result_file ---------------------------------------------------------------------------------------------------

// A device or a pipe is written directly: there is nothing to rename over. A symbolic link stays; what it points to
// is replaced.
result_file::result_file(std::filesystem::path target) : target_(std::move(target)) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(target_, error);
  if (std::filesystem::is_directory(status))
    fail("can't write", target_, EISDIR);
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
    descriptor_ = ::open(target_.c_str(), O_WRONLY | O_CLOEXEC);
  } else {
    std::filesystem::path real = target_;
    if (std::filesystem::is_symlink(std::filesystem::symlink_status(target_, error)))
      real = std::filesystem::weakly_canonical(target_, error);
    if (error)
      real = target_;
    temporary_ = real;
    temporary_ += temporary_suffix();
    descriptor_ = ::open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  }
  if (descriptor_ < 0)
    fail("can't write", target_, errno);
  buffer_.reserve(write_buffer + 4096);
}

result_file::~result_file() {
  if (descriptor_ < 0)
    return;
  ::close(descriptor_);
  if (!temporary_.empty())
    ::unlink(temporary_.c_str());
}

void result_file::write(std::string_view bytes) {
  buffer_.append(bytes);
  if (buffer_.size() >= write_buffer)
    flush();
}

void result_file::flush() {
  if (descriptor_ < 0)
    fail("can't write", target_, EBADF);
  const int error = write_whole(descriptor_, buffer_);
  buffer_.clear();
  if (error != 0)
    fail("can't write", target_, error);
}

void result_file::commit() {
  flush();
  const int closed = ::close(std::exchange(descriptor_, -1));
  const int close_error = errno;
  if (temporary_.empty()) {
    if (closed != 0)
      fail("can't write", target_, close_error);
    return;
  }
  std::string final_name = temporary_.string();
  final_name.resize(final_name.rfind(".tmp"));
  if (closed == 0 && ::rename(temporary_.c_str(), final_name.c_str()) == 0)
    return;
  const int error = closed != 0 ? close_error : errno;
  ::unlink(temporary_.c_str());
  fail("can't write", target_, error);
}

// ---- growing_file --------------------------------------------------------------------------------------------------

growing_file::growing_file(const std::filesystem::path &path, bool buffered) : path_(path), buffered_(buffered) {
  descriptor_ = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0666);
  if (descriptor_ < 0)
    fail("can't write", path_, errno);
}

growing_file growing_file::continued(const std::filesystem::path &path) {
  growing_file file;
  file.path_ = path;
  file.buffered_ = true;
  file.descriptor_ = ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
  if (file.descriptor_ < 0)
    fail("can't write", path, errno);
  file.former_ = file_bytes(path);
  return file;
}

growing_file::~growing_file() {
  if (descriptor_ < 0)
    return;
  try {
    flush(); // `close` is for those who want to know whether it worked
  } catch (const file_error &) {
  }
  ::close(descriptor_);
}

growing_file::growing_file(growing_file &&other) noexcept
    : path_(std::move(other.path_)), descriptor_(std::exchange(other.descriptor_, -1)), buffered_(other.buffered_),
      buffer_(std::move(other.buffer_)), former_(std::move(other.former_)), n_passed_(other.n_passed_) {}

growing_file &growing_file::operator=(growing_file &&other) noexcept {
  std::swap(path_, other.path_);
  std::swap(descriptor_, other.descriptor_);
  std::swap(buffered_, other.buffered_);
  std::swap(buffer_, other.buffer_);
  std::swap(former_, other.former_);
  std::swap(n_passed_, other.n_passed_);
  return *this;
}

void growing_file::line(std::string_view text) {
  if (descriptor_ < 0)
    fail("can't write", path_, EBADF);
  buffer_.append(text);
  buffer_.append("\r\n");
  if (!buffered_ || buffer_.size() >= write_buffer)
    flush();
}

void growing_file::flush() {
  if (descriptor_ < 0)
    fail("can't write", path_, EBADF);
  if (!former_.empty())
    pass_over_what_is_there();
  const int error = write_whole(descriptor_, buffer_);
  buffer_.clear();
  if (error != 0)
    fail("can't write", path_, error);
}

void growing_file::pass_over_what_is_there() {
  const std::size_t n = std::min(buffer_.size(), former_.size() - n_passed_);
  const auto begin = former_.begin() + static_cast<std::ptrdiff_t>(n_passed_);
  const auto differs = std::mismatch(begin, begin + static_cast<std::ptrdiff_t>(n), buffer_.begin()).second;
  n_passed_ += static_cast<std::size_t>(differs - buffer_.begin());
  buffer_.erase(buffer_.begin(), differs);
  if (buffer_.empty() && n_passed_ < former_.size())
    return;
  cut(n_passed_);
}

void growing_file::cut(std::size_t length) {
  former_.clear();
  if (::ftruncate(descriptor_, static_cast<off_t>(length)) != 0)
    fail("can't write", path_, errno);
}

std::size_t growing_file::length() {
  flush();
  if (!former_.empty())
    return n_passed_; // the same bytes so far
  const off_t end = ::lseek(descriptor_, 0, SEEK_END);
  if (end < 0)
    fail("can't write", path_, errno);
  return static_cast<std::size_t>(end);
}

void growing_file::back_to(std::size_t length) {
  buffer_.clear();
  cut(length);
}

void growing_file::end_here() {
  flush();
  if (!former_.empty())
    cut(n_passed_);
  close();
}

void growing_file::close() {
  if (descriptor_ < 0)
    return;
  flush();
  if (::close(std::exchange(descriptor_, -1)) != 0)
    fail("can't write", path_, errno);
}

// ---- whole files and folders ----

bool set_room_aside(const std::filesystem::path &file, std::size_t size) {
  const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (descriptor < 0)
    return false;
  const bool done = ::posix_fallocate(descriptor, 0, static_cast<off_t>(size)) == 0;
  ::close(descriptor);
  if (!done)
    ::unlink(file.c_str());
  return done;
}

namespace {

struct input_descriptor {
  explicit input_descriptor(const std::filesystem::path &path) : number(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
    if (number < 0)
      fail("can't open", path, errno);
  }
  ~input_descriptor() { ::close(number); }
  input_descriptor(const input_descriptor &) = delete;
  input_descriptor &operator=(const input_descriptor &) = delete;
  int number;
};

// Bytes read, 0 at the end.
std::size_t read_some(const input_descriptor &file, const std::filesystem::path &path, char *to, std::size_t room) {
  for (;;) {
    const ssize_t got = ::read(file.number, to, room);
    if (got >= 0)
      return static_cast<std::size_t>(got);
    if (errno != EINTR)
      fail("can't read", path, errno);
  }
}

} // namespace

std::string file_bytes(const std::filesystem::path &path) {
  const input_descriptor file(path);
  struct stat about {};
  const bool regular = ::fstat(file.number, &about) == 0 && S_ISREG(about.st_mode);
  // one byte more than a regular file has, so that one read finds its end
  std::string bytes(regular ? static_cast<std::size_t>(about.st_size) + 1 : std::size_t{64} * 1024, '\0');
  std::size_t length = 0;
  while (const std::size_t got = read_some(file, path, bytes.data() + length, bytes.size() - length)) {
    length += got;
    if (length == bytes.size())
      bytes.resize(bytes.size() * 2);
  }
  bytes.resize(length);
  return bytes;
}

std::uint32_t crc32_of(std::string_view bytes, std::uint32_t start) {
  return static_cast<std::uint32_t>(
      ::crc32_z(start, reinterpret_cast<const unsigned char *>(bytes.data()), bytes.size()));
}

file_checksum checksum_of_file(const std::filesystem::path &path) {
  const input_descriptor file(path);
  std::vector<char> buffer(write_buffer);
  file_checksum sum;
  while (const std::size_t got = read_some(file, path, buffer.data(), buffer.size())) {
    sum.size += got;
    sum.crc32 = crc32_of({buffer.data(), got}, sum.crc32);
  }
  return sum;
}

void create_folder(const std::filesystem::path &folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (!error && !std::filesystem::is_directory(folder, error) && !error)
    error = std::make_error_code(std::errc::not_a_directory);
  if (error)
    throw file_error("can't create folder", folder, error.message());
}

void check_folder_is_writable(const std::filesystem::path &folder) {
  const std::filesystem::path probe = folder / (".orb_writable" + temporary_suffix());
  const int descriptor = ::open(probe.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (descriptor < 0)
    fail("can't write into folder", folder, errno);
  const int error = write_whole(descriptor, "x");
  ::close(descriptor);
  ::unlink(probe.c_str());
  if (error != 0)
    fail("can't write into folder", folder, error);
}

} // namespace orb
