#include "frame/output_lock.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <map>
#include <optional>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "frame/clock.h"
#include "frame/failures.h"
#include "frame/files.h"
#include "frame/process_identity.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

constexpr const char *lock_name = "orb.lock";
constexpr const char *file_lock_ending = ".orb.lock";
constexpr std::size_t longest_lock = 64 * 1024; // of a file that may be anything

struct lock_holder {
  process_identity process;
  std::string command, since;
};

std::string one_line(std::string text) {
  for (char &c : text)
    c = static_cast<unsigned char>(c) < ' ' ? ' ' : c;
  return text;
}

std::string text_of(const lock_holder &holder) {
  const process_identity &process = holder.process;
  return "process\t" + std::to_string(process.number) + "\nstart\t" + std::to_string(process.start) + "\nhost\t" +
         one_line(process.host) + "\nspace\t" + one_line(process.space) + "\nsince\t" + holder.since + "\ncommand\t" +
         one_line(holder.command) + "\n";
}

// Nothing for a text that is no whole lock.
std::optional<lock_holder> holder_of(const std::string &text) {
  std::map<std::string, std::string> fields;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);)
    if (const std::size_t tab = line.find('\t'); tab != std::string::npos)
      fields[line.substr(0, tab)] = line.substr(tab + 1);
  if (!fields.contains("command") || !text.ends_with('\n'))
    return std::nullopt;
  lock_holder holder{{0, 0, fields["host"], fields["space"]}, fields["command"], fields["since"]};
  std::istringstream(fields["process"]) >> holder.process.number;
  std::istringstream(fields["start"]) >> holder.process.start;
  return holder.process.number > 0 ? std::optional(holder) : std::nullopt;
}

bool is_of_this_host(const lock_holder &holder) {
  return holder.process.host == this_process().host && holder.process.space == this_process().space;
}

bool is_stale(const std::optional<lock_holder> &holder) {
  return holder && is_of_this_host(*holder) && process_is_gone(holder->process.number, holder->process.start);
}

std::string words_on(const lock_holder &holder) {
  return "process " + std::to_string(holder.process.number) + " on " + holder.process.host + " since " + holder.since +
         ": " + holder.command;
}

[[noreturn]] void refuse(const fs::path &lock, const std::optional<lock_holder> &holder) {
  std::string why = holder ? "another command works there: " + words_on(*holder)
                           : "it is locked by " + lock.string() + ", which doesn't say by whom";
  if (!holder || !is_of_this_host(*holder))
    why += "; if that command is gone, remove " + lock.string();
  const std::string name = lock.filename().string();
  const bool is_folder = name == lock_name;
  throw file_error("can't write", is_folder ? lock.parent_path() : lock.parent_path() / fs::path(name).stem().stem(),
                   why);
}

// Empty when the file isn't there.
std::optional<std::string> text_of_file(const fs::path &file) {
  std::error_code failed;
  if (fs::file_size(file, failed) > longest_lock && !failed)
    return std::string();
  try {
    return file_bytes(file);
  } catch (const file_error &) {
    if (!fs::exists(fs::symlink_status(file, failed)))
      return std::nullopt;
    throw;
  }
}

void write_new(const fs::path &file, const std::string &text) {
  const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (descriptor < 0)
    throw file_error("can't write", file, std::strerror(errno));
  const ssize_t written = ::write(descriptor, text.data(), text.size());
  const int error = written < 0 ? errno : written != static_cast<ssize_t>(text.size()) ? ENOSPC : 0;
  if (::close(descriptor) == 0 && error == 0)
    return;
  const int why = error != 0 ? error : errno;
  ::unlink(file.c_str());
  throw file_error("can't write", file, std::strerror(why));
}

// False when the file is there already. The name appears with its whole text. A server may have made the link although
// its answer was lost: the number of links tells.
bool make_whole(const fs::path &file, const std::string &text) {
  fs::path own = file;
  own += temporary_suffix();
  write_new(own, text);
  const passing_file passing(own);
  if (::link(own.c_str(), file.c_str()) == 0)
    return true;
  const int error = errno;
  struct stat about {};
  if (::stat(own.c_str(), &about) == 0 && about.st_nlink == 2)
    return true;
  if (error == EEXIST)
    return false;
  if (error != EPERM && error != ENOSYS && error != EOPNOTSUPP && error != EMLINK)
    throw file_error("can't write", file, std::strerror(error));
  std::error_code failed;
  if (fs::exists(fs::symlink_status(file, failed)))
    return false;
  write_new(file, text); // file systems without links
  return true;
}

} // namespace

output_lock::output_lock(fs::path lock, const std::string &command)
    : lock_(std::move(lock)), text_(text_of({this_process(), command, program_clock().iso_date()})) {
  take();
}

output_lock::output_lock(output_lock &&other) noexcept
    : lock_(std::exchange(other.lock_, {})), text_(std::move(other.text_)), taken_over_(std::move(other.taken_over_)) {}

// What isn't ours any more, because somebody took the lock away, stays.
output_lock::~output_lock() {
  if (lock_.empty())
    return;
  try {
    if (text_of_file(lock_) == text_)
      ::unlink(lock_.c_str());
  } catch (const std::exception &) { // it can't be read: then nor is it known to be ours
  }
}

void output_lock::take() {
  constexpr int most_tries = 20; // others may come and go meanwhile
  for (int i = 0; i < most_tries; ++i) {
    if (make_whole(lock_, text_))
      return;
    const std::optional<std::string> found = text_of_file(lock_);
    if (!found)
      continue;
    const std::optional<lock_holder> holder = holder_of(*found);
    if (!is_stale(holder)) {
      const fs::path lock = std::exchange(lock_, {});
      refuse(lock, holder);
    }
    if (replace(*found)) {
      taken_over_ =
          "A command that is gone had left " + lock_.string() + ", which was taken over (" + words_on(*holder) + ").";
      return;
    }
  }
  throw file_error("can't write", std::exchange(lock_, {}), "other commands come and go there");
}

// Who replaces a lock holds a second one meanwhile, and looks again behind it: of several that found the same old lock
// one only gets it. False when the lock has changed.
bool output_lock::replace(const std::string &stale) {
  fs::path turn = lock_;
  turn += ".taking";
  if (!make_whole(turn, text_)) {
    const std::optional<std::string> found = text_of_file(turn);
    if (!found)
      return false;
    throw file_error("can't write", std::exchange(lock_, {}),
                     is_stale(holder_of(*found))
                         ? "a command was killed while it took it over; remove it and " + turn.string()
                         : "another command takes it over just now");
  }
  const passing_file passing(turn);
  if (text_of_file(lock_) != stale)
    return false;
  fs::path own = lock_;
  own += temporary_suffix();
  write_new(own, text_);
  if (::rename(own.c_str(), lock_.c_str()) == 0)
    return true;
  const int error = errno;
  ::unlink(own.c_str());
  throw file_error("can't write", std::exchange(lock_, {}), std::strerror(error));
}

output_lock output_lock::of_folder(const fs::path &folder, const std::string &command) {
  output_lock held(folder / lock_name, command);
  std::vector<fs::path> of_files;
  for (const fs::directory_entry &entry : fs::directory_iterator(folder))
    if (entry.path().filename().string().ends_with(file_lock_ending))
      of_files.push_back(entry.path());
  for (const fs::path &lock : of_files)
    const output_lock for_a_moment(lock, command); // a stale one goes with it
  remove_stale_temporaries(folder);
  return held;
}

output_lock output_lock::of_file(const fs::path &file, const std::string &command) {
  fs::path lock = file;
  lock += file_lock_ending;
  output_lock held(lock, command);
  const fs::path folder = file.parent_path().empty() ? fs::path(".") : file.parent_path();
  const fs::path of_folder = folder / lock_name;
  if (const std::optional<std::string> found = text_of_file(of_folder))
    if (const auto holder = holder_of(*found); !is_stale(holder))
      refuse(of_folder, holder);
  remove_stale_temporaries(folder, file.filename().string());
  return held;
}

} // namespace orb
