#include "ui/console/standard_input.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdlib.h>
#include <unistd.h>

#include "frame/files.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

// What the help calls an option whose text may come from a pipe.
bool takes_text(const verb_option &option) {
  static const std::vector<std::string> types{"INPUT", "LIB", "LIST", "LIST2", "FINGERPRINTS"};
  return std::find(types.begin(), types.end(), option.rows.front()->type_shown) != types.end();
}

fs::path new_folder() {
  std::string name = (fs::temp_directory_path() / "orb-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr)
    throw file_error("can't create folder", name, std::strerror(errno));
  return name;
}

void copy_standard_input(const fs::path &file) {
  result_file kept(file);
  std::string block(std::size_t{64} * 1024, '\0');
  for (;;) {
    const ssize_t got = ::read(STDIN_FILENO, block.data(), block.size());
    if (got == 0)
      break;
    if (got < 0 && errno != EINTR)
      throw file_error("can't read", "standard input", std::strerror(errno));
    if (got > 0)
      kept.write({block.data(), static_cast<std::size_t>(got)});
  }
  kept.commit();
}

} // namespace

standard_input::standard_input(verb_run &call) {
  const verb_option *wanted = nullptr;
  for (const verb_option &option : call.options()) {
    if (!takes_text(option) || option.rows.front()->text() != "-")
      continue;
    if (wanted != nullptr)
      throw usage_error(wanted->name + " and " + option.name + " can't both be standard input");
    wanted = &option;
  }
  if (wanted == nullptr)
    return;
  folder_ = new_folder();
  copy_standard_input(folder_ / "standard_input");
  call.set(wanted->name, (folder_ / "standard_input").string());
}

standard_input::~standard_input() {
  std::error_code failed;
  if (!folder_.empty())
    fs::remove_all(folder_, failed);
}

} // namespace orb
